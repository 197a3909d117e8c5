#include <vornik/toolkit.h>

#include <algorithm>
#include <cmath>

#include "metric/reduction.h"
#include "metric/sizes.h"
#include "metric/tensor.h"

namespace trelk::vornik {

namespace {

using vornik1d::clamp_metric_sizes;
using vornik1d::dual_basis;
using vornik1d::inverse_square_guarded;
using vornik1d::packed_rows;
using vornik1d::quadratic_form;
using vornik1d::recompose_metric;
using vornik1d::reduced_pair;
using vornik1d::tensor;
using vornik1d::vector;

template <std::size_t N>
bool is_zero(tensor<N> const& m)
{
    return std::all_of(m.values, m.values + packed_rows<N>, [](double v) { return v == 0; });
}

/// True if a reduction was sound: the tensor with `values` along the reduced directions is `m` again. q is
/// the dual basis of the directions. Rounding can make a nearly singular tensor look definite.
template <std::size_t N>
bool is_rebuilt(tensor<N> const& m, vector<N> const& values, vector<N> const (&q)[N])
{
    constexpr double tolerance = 1e-6; // of the largest entry
    auto const rebuilt = recompose_metric(values, q);
    double scale = 0;
    for (double const v : m.values) scale = std::max(scale, std::abs(v));
    for (std::size_t k = 0; k < packed_rows<N>; ++k)
        if (!(std::abs(rebuilt[k] - m[k]) <= tolerance * scale)) return false; // also a NaN
    return true;
}

/// Takes the larger of the two quadratic values along each direction of the common basis. False if the first
/// tensor cannot be reduced.
template <std::size_t N>
bool intersect(tensor<N> const& first, tensor<N> const& second, tensor<N>& result)
{
    reduced_pair<N> pair;
    if (!reduce_metric_pair(first, second, pair)) return false;
    vector<N> q[N];
    dual_basis(pair.p, q);

    vector<N> along_first;
    vector<N> along_second;
    vector<N> larger;
    for (std::size_t i = 0; i < N; ++i) {
        along_first[i] = quadratic_form(first.values, pair.p[i]);
        along_second[i] = quadratic_form(second.values, pair.p[i]);
        larger[i] = std::max(along_first[i], along_second[i]);
    }
    if (!is_rebuilt(first, along_first, q) || !is_rebuilt(second, along_second, q)) return false;
    result = recompose_metric(larger, q);
    return true;
}

/// The power of two that brings the largest entry of both tensors near 1. Scaling by it is exact, and
/// products of the scaled tensors neither overflow nor underflow.
template <std::size_t N>
int exponent_of(tensor<N> const& first, tensor<N> const& second)
{
    double scale = 0;
    for (std::size_t k = 0; k < packed_rows<N>; ++k)
        scale = std::max({scale, std::abs(first[k]), std::abs(second[k])});
    int exponent = 0;
    if (std::isfinite(scale)) std::frexp(scale, &exponent);
    return exponent;
}

template <std::size_t N>
tensor<N> scaled(tensor<N> m, int exponent)
{
    for (double& v : m.values) v = std::ldexp(v, exponent);
    return m;
}

template <std::size_t N>
bool iso_to_aniso(dense1D<double> const& sizes, dense2D<double>& metrics)
{
    std::size_t const n = sizes.size();
    dense2D<double> result;
    if (!result.resize(packed_rows<N>, n)) return false;
    for (std::size_t j = 0; j < n; ++j) {
        tensor<N> m{};
        for (std::size_t i = 0; i < N; ++i) m(i, i) = inverse_square_guarded(sizes[j]);
        std::copy_n(m.values, packed_rows<N>, result.col(j));
    }
    metrics = result;
    return true;
}

} // namespace

void bound_metrics(dense1D<double>& sizes, double low, double high) noexcept
{
    for (double& h : sizes) h = std::min(std::max(h, low), high);
}

template <std::size_t N>
void bound_metric(symmetric_fixed<double, N>& metric, double first, double second) noexcept
{
    clamp_metric_sizes(metric, 0.0, std::min(first, second)); // false: nothing was out of bounds
}

template <std::size_t N>
void minimum_metric(symmetric_fixed<double, N> const& first, symmetric_fixed<double, N> const& second,
    symmetric_fixed<double, N>& result) noexcept
{
    bool const are_equal = std::equal(first.values, first.values + packed_rows<N>, second.values);
    if (are_equal || is_zero(second)) {
        result = first;
        return;
    }
    if (is_zero(first)) {
        result = second;
        return;
    }
    int const exponent = exponent_of(first, second);
    auto const a = scaled(first, -exponent);
    auto const b = scaled(second, -exponent);
    tensor<N> common{};
    if (!intersect(a, b, common) && !intersect(b, a, common))
        for (std::size_t k = 0; k < packed_rows<N>; ++k) common[k] = a[k] + b[k];
    result = scaled(common, exponent);
}

template void bound_metric(symmetric_fixed<double, 2>&, double, double) noexcept;
template void bound_metric(symmetric_fixed<double, 3>&, double, double) noexcept;
template void minimum_metric(symmetric_fixed<double, 2> const&, symmetric_fixed<double, 2> const&,
    symmetric_fixed<double, 2>&) noexcept;
template void minimum_metric(symmetric_fixed<double, 3> const&, symmetric_fixed<double, 3> const&,
    symmetric_fixed<double, 3>&) noexcept;

bool metrics_iso_to_aniso2d(dense1D<double> const& sizes, dense2D<double>& metrics) noexcept
{
    return iso_to_aniso<2>(sizes, metrics);
}

bool metrics_iso_to_aniso3d(dense1D<double> const& sizes, dense2D<double>& metrics) noexcept
{
    return iso_to_aniso<3>(sizes, metrics);
}

} // namespace trelk::vornik

#include <vornik/toolkit.h>

#include <algorithm>

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

/// In the common basis of the pair the larger of the two values along each direction; false where the first
/// tensor cannot be reduced.
template <std::size_t N>
bool intersect(tensor<N> const& first, tensor<N> const& second, tensor<N>& result)
{
    reduced_pair<N> pair;
    if (!reduce_metric_pair(first, second, pair)) return false;
    vector<N> values;
    for (std::size_t i = 0; i < N; ++i) {
        double const along_first = quadratic_form(first.values, pair.p[i]);
        values[i] = std::max(along_first, pair.lambda[i] * along_first);
    }
    vector<N> q[N];
    dual_basis(pair.p, q);
    result = recompose_metric(values, q);
    return true;
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
    tensor<N> common{};
    if (!intersect(first, second, common) && !intersect(second, first, common))
        for (std::size_t k = 0; k < packed_rows<N>; ++k) common[k] = first[k] + second[k];
    result = common;
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

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <random>
#include <utility>
#include <vector>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "metric/metric_interpolator.h"
#include "metric/tensor.h"

template <std::size_t N>
using tensor = trelk::vornik1d::tensor<N>;

/// The tensor that asks for one size in every direction.
template <std::size_t N>
tensor<N> isotropic(double size)
{
    tensor<N> m{};
    for (std::size_t i = 0; i < N; ++i) m(i, i) = 1 / (size * size);
    return m;
}

/// Packed side by side, as a matrix has them in its columns.
template <std::size_t N>
std::vector<tensor<N>> isotropic(std::vector<double> const& sizes)
{
    static_assert(sizeof(tensor<N>) == trelk::vornik1d::packed_rows<N> * sizeof(double));
    std::vector<tensor<N>> tensors;
    for (double const size : sizes) tensors.push_back(isotropic<N>(size));
    return tensors;
}

/// What a library call makes; targets are sizes or tensors.
template <class Targets>
struct output
{
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> mesh;
    trelk::dense1D<double> params;
    Targets targets;

    /// Keeps the coordinates of the first `count` nodes, and nothing else.
    void reset(std::size_t count)
    {
        static_cast<void>(coords.resize(coords.rows(), count)); // to fewer: cannot fail
        mesh.clear(), params.clear(), targets.clear();
    }
};

/// Whether a packed tensor is the expected one, to a billionth of its first entry.
template <std::size_t N>
bool are_close(tensor<N> const& expected, double const* actual)
{
    return std::equal(std::begin(expected.values), std::end(expected.values), actual,
        [&](double a, double b) { return std::abs(b - a) <= 1e-9 * expected[0]; });
}

/// Whether nodes placed by sizes and by isotropic tensors agree to a billionth of their size: those from
/// column `first` on, which have the middle of the list of targets.
template <std::size_t N>
bool same_nodes(output<trelk::dense1D<double>> const& by_sizes,
    output<trelk::dense2D<double>> const& by_tensors, std::size_t first)
{
    std::size_t const cols = by_sizes.coords.cols();
    std::size_t const listed = by_sizes.targets.size();
    if (cols <= first || listed < cols - first) return false;
    if (by_tensors.coords.cols() != cols || by_tensors.targets.cols() != listed) return false;

    std::size_t const margin = (listed - (cols - first)) / 2;
    for (std::size_t j = first, target = margin; j < cols; ++j, ++target) {
        double const size = by_sizes.targets[target];
        double const* const a = by_sizes.coords.col(j);
        auto const is_near = [&](double x, double y) { return std::abs(y - x) <= 1e-9 * size; };
        if (!std::equal(a, a + N, by_tensors.coords.col(j), is_near) ||
            !are_close<N>(isotropic<N>(size), by_tensors.targets.col(target)))
            return false;
    }
    return true;
}

template <std::size_t N>
using tensor_pairs = std::vector<std::pair<tensor<N>, tensor<N>>>;

/// Positive definite: sums of z z^T over the rows z of triangular matrices with a positive diagonal.
template <std::size_t N>
tensor_pairs<N> random_pairs(std::size_t count)
{
    std::mt19937_64 random(20240229);
    std::uniform_real_distribution<double> one_to_three(1, 3);
    std::uniform_real_distribution<double> either_sign(-1, 1);
    auto const draw = [&] {
        trelk::vornik1d::vector<N> ones;
        trelk::vornik1d::vector<N> rows[N] = {};
        for (std::size_t i = 0; i < N; ++i) {
            ones[i] = 1;
            rows[i][i] = one_to_three(random);
            for (std::size_t j = i + 1; j < N; ++j) rows[i][j] = either_sign(random);
        }
        return trelk::vornik1d::recompose_metric(ones, rows);
    };
    tensor_pairs<N> pairs(count);
    for (auto& [m0, m1] : pairs) m0 = draw(), m1 = draw();
    return pairs;
}

/// Whether interpolators of all pairs give these tensors at their ends.
template <std::size_t N>
bool all_reproduced(tensor_pairs<N> const& pairs)
{
    return std::ranges::all_of(pairs, [](auto const& pair) {
        trelk::vornik1d::metric_interpolator<N> interpolator;
        return interpolator.build(pair.first, pair.second) &&
               are_close<N>(pair.first, interpolator.evaluate(0).values) &&
               are_close<N>(pair.second, interpolator.evaluate(1).values);
    });
}

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "front_door.h"
#include "metric/tensor.h"

// Code shared by the generators of metrics from line elements.

namespace trelk::vornik1d {

/// The square of the size across an element of squared length `square`. A positive `size` is a length, a
/// negative one is a multiple of the element's length. 0 and NaN mean the element's length.
inline double square_of_size(double size, double square)
{
    if (size > 0) return size * size;
    return size < 0 ? square * (size * size) : square;
}

/// The tensor with the given values along orthogonal unit axes. The axis of a value of 0 has no effect, even
/// if it is not finite.
template <std::size_t N>
tensor<N> tensor_along(vector<N> const& values, vector<N> const (&axes)[N])
{
    vector<N> used[N] = {};
    for (std::size_t i = 0; i < N; ++i)
        if (values[i] != 0) used[i] = axes[i];
    return recompose_metric(values, used);
}

/// Intersects the tensor of a column with `m`. A column that has no tensor yet is all zero and gets `m`.
template <std::size_t N>
void merge_into(tensor<N> m, double* column)
{
    vornik::minimum_metric(m, tensor_at<N>(column), m);
    std::copy_n(m.values, packed_rows<N>, column);
}

/// Extends `metrics` to the column of `largest_node`. New columns are zero. False if memory runs out.
template <std::size_t N>
[[nodiscard]] bool make_columns(std::size_t largest_node, dense2D<double>& metrics)
{
    std::size_t const columns = std::max(largest_node + 1, filled_columns(metrics));
    return metrics.resize(packed_rows<N>, columns, 0.0);
}

/// Makes the checks that all generators from elements share, in the documented order, and extends `metrics`.
/// There is at least one element. Returns 0 or the status of the exported function.
template <std::size_t N>
int prepare_generation(
    dense2D<double> const& coords, dense2D<unsigned> const& connect, dense2D<double>& metrics)
{
    if (coords.rows() < N) return bad_argument(1);
    std::size_t const largest_node = largest_entry(connect);
    if (connect.rows() != 2 || largest_node >= coords.cols()) return bad_argument(2);
    if (!metrics.empty() && metrics.rows() != packed_rows<N>) return bad_argument(4);
    return make_columns<N>(largest_node, metrics) ? 0 : no_storage;
}

/// The unit tangent and the squared length of an element.
template <std::size_t N>
struct element_direction
{
    vector<N> tangent;
    double square;
};

/// Calls `visit(e, direction)` for each element e whose length is neither 0 nor infinite nor NaN.
template <std::size_t N, class Visit>
void for_each_direction(dense2D<double> const& coords, dense2D<unsigned> const& connect, Visit visit)
{
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        auto const v = edge_vector<N>(coords.col(connect(0, e)), coords.col(connect(1, e)));
        double const square = dot(v, v);
        if (square == 0 || !std::isfinite(square)) continue;
        double const r = 1 / std::sqrt(square);
        visit(e, element_direction<N>{r != 1 ? v * r : v, square});
    }
}

} // namespace trelk::vornik1d

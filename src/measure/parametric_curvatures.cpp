#include <vornik1d/vornik1d.h>

#include <cmath>
#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "front_door.h"

namespace trelk::vornik1d {

namespace {

/// Adds the turning of each element to `result` at both of its nodes, and its parameter range to `weights`. S
/// is the sum of the tangents at the element's nodes, D their difference, du the parameter range. With the
/// mean tangent S / 2 and the second derivative D / du the curvature is 4 |S x D| / |S|^3 / du. The turning
/// is this without the division by du.
template <std::size_t N>
void add_turning(dense1D<double> const& params, dense2D<unsigned> const& connect,
    dense2D<double> const& tangents, dense1D<double>& result, dense1D<double>& weights)
{
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        unsigned const a = connect(0, e);
        unsigned const b = connect(1, e);
        auto const sum = vector_at<N>(tangents.col(a)) + vector_at<N>(tangents.col(b));
        double const square = dot(sum, sum);
        if (square == 0) continue;

        auto const product = cross(sum, edge_vector<N>(tangents.col(a), tangents.col(b)));
        double const turning = std::sqrt(dot(product, product) / (square * square * square)) * 4.0;
        double const range = std::abs(params[b] - params[a]);
        result[a] += turning;
        result[b] += turning;
        weights[a] += range;
        weights[b] += range;
    }
}

} // namespace

int parametric_curvatures(dense1D<double> const& params, dense2D<unsigned> const& connect,
    dense2D<double> const& tangents, dense1D<double>& result) noexcept
{
    result.clear();
    if (connect.empty()) return 0;
    std::size_t const nodes = params.size();
    if (!vornik::check_IDs(connect, vornik::element_type::edge, nodes)) return bad_argument(2);
    if (!is_planar_or_spatial(tangents) || tangents.cols() != nodes) return bad_argument(3);
    dense1D<double> weights;
    if (!result.resize(nodes, 0.0) || !weights.resize(nodes, 0.0)) return no_storage;

    by_dimension(tangents, [&](auto dim) { add_turning<dim>(params, connect, tangents, result, weights); });
    for (std::size_t node = 0; node < nodes; ++node)
        if (weights[node] != 0) result[node] /= weights[node];
    return 0;
}

} // namespace trelk::vornik1d

#include <vornik/toolkit.h>

#include <algorithm>
#include <cmath>

#include "arrays/columns.h"
#include "arrays/vectors.h"
#include "metric/tensor.h"

namespace trelk::vornik {

namespace {

using vornik1d::distance;
using vornik1d::edge_vector;
using vornik1d::packed_rows;
using vornik1d::quadratic_form;
using vornik1d::tensor;
using vornik1d::tensor_at;

/// Calls `bound(from, to)` for both directions of each edge, first forwards over all edges, then backwards.
template <class Bound>
void sweep(dense2D<unsigned> const& connect, std::size_t node_count, Bound bound)
{
    if (connect.rows() < 2) return;
    auto const visit = [&](std::size_t e) {
        unsigned const a = connect(0, e);
        unsigned const b = connect(1, e);
        if (a >= node_count || b >= node_count) return;
        bound(a, b);
        bound(b, a);
    };
    std::size_t const edges = connect.cols();
    for (std::size_t e = 0; e < edges; ++e) visit(e);
    for (std::size_t e = edges; e-- > 0;) visit(e);
}

template <std::size_t N>
void bound_tensors(dense2D<double> const& coords, dense2D<unsigned> const& connect, double max_gradation,
    dense2D<double>& target)
{
    auto const bound = [&](unsigned from, unsigned to) {
        auto const d = edge_vector<N>(coords.col(from), coords.col(to));
        auto own = tensor_at<N>(target.col(to));
        bound_growth(tensor_at<N>(target.col(from)), d, max_gradation, own);
        std::copy_n(own.values, packed_rows<N>, target.col(to));
    };
    sweep(connect, std::min(coords.cols(), target.cols()), bound);
}

} // namespace

template <std::size_t N>
void bound_growth(symmetric_fixed<double, N> const& from, vector_fixed<double, N> const& edge,
    double max_gradation, symmetric_fixed<double, N>& metric) noexcept
{
    double const growth = 1 + max_gradation * std::sqrt(quadratic_form(from.values, edge));
    if (!std::isfinite(growth)) return;
    tensor<N> grown = from;
    for (double& v : grown.values) v /= growth * growth;
    minimum_metric(metric, grown, metric);
}

template void bound_growth(symmetric_fixed<double, 2> const&, vector_fixed<double, 2> const&, double,
    symmetric_fixed<double, 2>&) noexcept;
template void bound_growth(symmetric_fixed<double, 3> const&, vector_fixed<double, 3> const&, double,
    symmetric_fixed<double, 3>&) noexcept;

void bound_metric_gradations(dense2D<double> const& coords, dense2D<unsigned> const& connect, element_type,
    dense1D<unsigned> const&, bool, int, double max_gradation, dense1D<double>& target) noexcept
{
    if (!(max_gradation >= 0)) return;
    auto const bound = [&](unsigned from, unsigned to) {
        target[to] = std::min(target[to], target[from] + max_gradation * distance(coords, from, to));
    };
    sweep(connect, std::min(coords.cols(), target.size()), bound);
}

void bound_metric_gradations(dense2D<double> const& coords, dense2D<unsigned> const& connect, element_type,
    dense1D<unsigned> const&, bool, int, double max_gradation, dense2D<double>& target) noexcept
{
    if (!(max_gradation >= 0)) return;
    if (coords.rows() == 2 && target.rows() == packed_rows<2>)
        bound_tensors<2>(coords, connect, max_gradation, target);
    if (coords.rows() == 3 && target.rows() == packed_rows<3>)
        bound_tensors<3>(coords, connect, max_gradation, target);
}

} // namespace trelk::vornik

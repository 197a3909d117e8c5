#include "line/curvature_limit.h"

#include <algorithm>
#include <cmath>

#include <vornik1d/vornik1d.h>

#include "metric/sizes.h"

namespace trelk::vornik1d {

namespace {

/// Calls `limit(node, bound)` with the bound on sizes that the curvature sets at each node of the chain.
template <class Limit>
int limit_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    double deviation_tolerance, double min_size, Limit limit) noexcept
{
    dense1D<double> curvature;
    int const status = curvatures(coords, chain, curvature);
    if (status != 0) return status;

    double const size_at_unit_curvature = std::sqrt(-8 * deviation_tolerance);
    for (std::size_t k = 0; k < chain.size(); ++k) {
        double bound = largest;
        if (curvature[k] > 0) bound = size_at_unit_curvature / curvature[k];
        limit(chain[k], min_size > bound ? min_size : bound);
    }
    return 0;
}

} // namespace

int limit_sizes_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense1D<double>& sizes, double deviation_tolerance, double min_size) noexcept
{
    return limit_by_curvature(coords, chain, deviation_tolerance, min_size, [&](unsigned node, double bound) {
        double& size = sizes[node];
        size = size >= 0 ? std::min(size, bound) : 0.0;
    });
}

template <int N>
int limit_metrics_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense2D<double>& metrics, double deviation_tolerance, double min_size) noexcept
{
    return limit_by_curvature(coords, chain, deviation_tolerance, min_size, [&](unsigned node, double bound) {
        auto metric = tensor_at<N>(metrics.col(node));
        clamp_metric_sizes(metric, 0.0, bound); // where it changes nothing, nothing is what is written back
        std::copy_n(metric.values, packed_rows<N>, metrics.col(node));
    });
}

template int limit_metrics_by_curvature<2>(
    dense2D<double> const&, dense1D<unsigned> const&, dense2D<double>&, double, double) noexcept;
template int limit_metrics_by_curvature<3>(
    dense2D<double> const&, dense1D<unsigned> const&, dense2D<double>&, double, double) noexcept;

} // namespace trelk::vornik1d

#include "line/curvature_limit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <vornik1d/vornik1d.h>

namespace trelk::vornik1d {

int limit_sizes_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense1D<double>& sizes, double deviation_tolerance, double min_size) noexcept
{
    dense1D<double> curvature;
    int const status = curvatures(coords, chain, curvature);
    if (status != 0) return status;

    double const size_at_unit_curvature = std::sqrt(-8 * deviation_tolerance);
    for (std::size_t k = 0; k < chain.size(); ++k) {
        double limit = std::numeric_limits<double>::max();
        if (curvature[k] > 0) limit = size_at_unit_curvature / curvature[k];
        double const bound = min_size > limit ? min_size : limit;

        double& size = sizes[chain[k]];
        size = size >= 0 ? std::min(size, bound) : 0.0;
    }
    return status;
}

} // namespace trelk::vornik1d

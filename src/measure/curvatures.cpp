#include <vornik1d/vornik1d.h>

#include <vornik/toolkit.h>

#include "front_door.h"
#include "measure/chain_curvatures.h"

namespace trelk::vornik1d {

int curvatures(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double>& result) noexcept
{
    result.clear();
    if (indices.empty()) return 0;
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (!vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (!result.resize(indices.size())) return no_storage;

    by_dimension(coords, [&](auto dim) {
        for_each_curvature<dim>(
            indices.size(), [&](std::size_t k) { return coords.col(indices[k]); },
            [&](std::size_t k, double curvature) { result[k] = curvature; });
    });
    return 0;
}

} // namespace trelk::vornik1d

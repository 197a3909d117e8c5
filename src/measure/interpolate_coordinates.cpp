#include <vornik1d/vornik1d.h>

#include <algorithm>

#include "arrays/search.h"
#include "front_door.h"
#include "measure/chain_position.h"

namespace trelk::vornik1d {

int interpolate_coordinates(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense1D<unsigned> const& new_indices,
    dense1D<double> const& new_params) noexcept
{
    if (params.size() != indices.size()) return bad_argument(2);
    if (!is_non_decreasing(params)) return bad_argument(3);
    if (new_params.size() != new_indices.size()) return bad_argument(4);
    if (!is_non_decreasing(new_params)) return bad_argument(5);
    if (indices.empty()) return 0;

    auto const move = [&](std::size_t m, std::size_t from, std::size_t to, double r) {
        unsigned const a = indices[from];
        unsigned const b = indices[to];
        unsigned const target = new_indices[m];
        if (std::max({a, b, target}) >= coords.cols()) return; // ignored: no such column

        double const* const pa = coords.col(a);
        double const* const pb = coords.col(b);
        double* const point = coords.col(target);
        for (std::size_t i = 0; i < coords.rows(); ++i) point[i] = (pb[i] - pa[i]) * r + pa[i];
    };
    locate_on_chain(params.begin(), params.size(), new_params.begin(), new_params.size(), move);
    return 0;
}

} // namespace trelk::vornik1d

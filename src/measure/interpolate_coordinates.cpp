#include <vornik1d/vornik1d.h>

#include <algorithm>

#include "arrays/search.h"
#include "front_door.h"

namespace trelk::vornik1d {

namespace {

/// Where a parameter value falls on a chain: at fraction r of the way from chain entry `from` to `to`.
struct chain_position
{
    std::size_t from;
    std::size_t to;
    double r;
};

/// `k` is the first entry whose parameter is not less than `u`; where there is none, the last entry counts.
chain_position position_at(dense1D<double> const& params, std::size_t k, double u)
{
    if (k == 0) return {0, 0, 0};
    if (k == params.size()) return {k - 1, k - 1, 0};
    double const lo = params[k - 1];
    double const hi = params[k];
    return {k - 1, k, hi > lo ? (u - lo) / (hi - lo) : 0};
}

} // namespace

int interpolate_coordinates(dense2D<double>& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, dense1D<unsigned> const& new_indices,
    dense1D<double> const& new_params) noexcept
{
    if (params.size() != indices.size()) return bad_argument(2);
    if (!is_non_decreasing(params)) return bad_argument(3);
    if (new_params.size() != new_indices.size()) return bad_argument(4);
    if (!is_non_decreasing(new_params)) return bad_argument(5);
    if (indices.empty()) return 0;

    double const* const first = params.begin();
    double const* const end = params.end();
    double const* cursor = first;
    for (std::size_t m = 0; m < new_indices.size(); ++m) {
        double const u = new_params[m];
        cursor = first_not_below(cursor, end, u);
        auto const at = position_at(params, static_cast<std::size_t>(cursor - first), u);

        unsigned const a = indices[at.from];
        unsigned const b = indices[at.to];
        unsigned const target = new_indices[m];
        if (std::max({a, b, target}) >= coords.cols()) continue; // no such column: passed over

        double const* const pa = coords.col(a);
        double const* const pb = coords.col(b);
        double* const point = coords.col(target);
        for (std::size_t i = 0; i < coords.rows(); ++i) point[i] = (pb[i] - pa[i]) * at.r + pa[i];
    }
    return 0;
}

} // namespace trelk::vornik1d

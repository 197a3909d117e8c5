#pragma once

#include <cstddef>

#include "arrays/search.h"

namespace trelk::vornik1d {

/// Calls `visit(m, from, to, r)` for each value m of `new_params`: the value lies at fraction r of the way
/// from chain entry `from` to entry `to`. Both lists are non-decreasing.
template <class Visit>
void locate_on_chain(
    double const* params, std::size_t count, double const* new_params, std::size_t new_count, Visit visit)
{
    double const* const end = params + count;
    double const* cursor = params;
    for (std::size_t m = 0; m < new_count; ++m) {
        double const u = new_params[m];
        cursor = advance_to(cursor, end, u);
        auto const k = static_cast<std::size_t>(cursor - params);
        if (k == 0)
            visit(m, 0, 0, 0.0);
        else if (k == count)
            visit(m, k - 1, k - 1, 0.0);
        else {
            double const lo = params[k - 1];
            double const hi = params[k];
            visit(m, k - 1, k, hi > lo ? (u - lo) / (hi - lo) : 0.0);
        }
    }
}

} // namespace trelk::vornik1d

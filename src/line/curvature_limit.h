#pragma once

#include <cmath>
#include <cstddef>

#include <vornik1d/vornik1d.h>

#include "measure/chain_curvatures.h"
#include "placement/line.h"
#include "rules.h"

namespace trelk::vornik1d {

/// Sets `bounded` to the targets of `chain`, limited by curvature. A size h at curvature c is limited so that
/// (h * c)^2 / 8 <= -`rule.deviation_tolerance`. The left side is the sagitta of a chord of length h on a
/// circle of curvature c, divided by the circle's radius. The limit is at least `rule.min_size`. False if
/// memory runs out.
template <class Targets>
[[nodiscard]] bool limit_targets_by_curvature(
    line_view<Targets> const& chain, line_rule const& rule, typename Targets::list& bounded)
{
    bounded.clear();
    if (!Targets::reserve(bounded, chain.count) || !Targets::resize(bounded, chain.count)) return false;

    double const size_at_unit_curvature = std::sqrt(-8 * rule.deviation_tolerance);
    for_each_curvature<Targets::dimension>(
        chain.count, [&](std::size_t k) { return chain.point(k); },
        [&](std::size_t k, double curvature) {
            double const limit = size_at_unit_curvature / curvature; // infinite if the curvature is 0
            double* const target = bounded.data() + Targets::width * k;
            Targets::copy(chain.target(k), target);
            Targets::bound(target, rule.min_size > limit ? rule.min_size : limit);
        });
    return true;
}

} // namespace trelk::vornik1d

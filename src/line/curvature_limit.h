#pragma once

#include <cmath>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

#include "line/span_rule.h"
#include "metric/sizes.h"
#include "placement/line.h"

namespace trelk::vornik1d {

/// Bounds the sizes that the targets of `chain` ask for, so that at curvature c a size h obeys (h * c)^2 / 8
/// <= -`rule.deviation_tolerance`: the sagitta of a chord of length h on a circle of curvature c, relative to
/// the circle's radius. The bound is at least `rule.min_size`. Without storage for the curvatures the targets
/// stay as they are.
template <class Targets>
void limit_sizes_by_curvature(dense2D<double> const& coords, line<Targets>& chain, span_rule const& rule)
{
    dense1D<double> curvature;
    if (curvatures(coords, chain.nodes, curvature) != 0) return;

    double const size_at_unit_curvature = std::sqrt(-8 * rule.deviation_tolerance);
    for (std::size_t k = 0; k < chain.size(); ++k) {
        double const limit = curvature[k] > 0 ? size_at_unit_curvature / curvature[k] : largest;
        Targets::bound(chain.targets, k, rule.min_size > limit ? rule.min_size : limit);
    }
}

} // namespace trelk::vornik1d

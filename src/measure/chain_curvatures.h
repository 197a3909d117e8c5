#pragma once

#include <cstddef>

#include "arrays/vectors.h"

namespace trelk::vornik1d {

/// Length and direction of a segment. The direction is 0 if the length is 0.
template <std::size_t N>
struct segment_direction
{
    double length;
    vector<N> unit{};

    segment_direction(double const* a, double const* b)
    {
        auto const d = edge_vector<N>(a, b);
        length = norm(d);
        if (length > 0)
            for (std::size_t r = 0; r < N; ++r) unit[r] = d[r] / length;
    }
};

/// Change of the unit tangent, divided by the mean length of two adjacent segments; 0 if a length is 0.
template <std::size_t N>
double turn(segment_direction<N> const& before, segment_direction<N> const& after)
{
    if (!(before.length > 0 && after.length > 0)) return 0;
    return 2 * norm(before.unit - after.unit) / (after.length + before.length);
}

/// Calls `visit(k, curvature)` for each of the `count` entries of a chain; `point(i)` is the position of
/// entry i. Each end has the curvature of the entry next to it. With fewer than 3 entries all curvatures are
/// 0.
template <std::size_t N, class Point, class Visit>
void for_each_curvature(std::size_t count, Point point, Visit visit)
{
    if (count < 3) {
        for (std::size_t k = 0; k < count; ++k) visit(k, 0.0);
        return;
    }
    segment_direction<N> before(point(0), point(1));
    for (std::size_t k = 1; k + 1 < count; ++k) {
        segment_direction<N> const after(point(k), point(k + 1));
        double const curvature = turn(before, after);
        if (k == 1) visit(0, curvature);
        visit(k, curvature);
        if (k + 2 == count) visit(count - 1, curvature);
        before = after;
    }
}

} // namespace trelk::vornik1d

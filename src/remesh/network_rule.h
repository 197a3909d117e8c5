#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "front_door.h"
#include "rules.h"

namespace trelk::vornik1d {

/// The rule that the arguments of `remesh_lines` stand for.
inline remesh_rule network_rule(double default_size, bool force_even, double max_angle,
    double deviation_tolerance, double max_gradation, double min_size, unsigned min_elements,
    unsigned max_elements)
{
    element_rule const elements{
        .force_even = force_even, .min_elements = min_elements, .max_elements = max_elements};
    line_rule const line{elements, network_tolerance(deviation_tolerance), min_size};
    spline_rule const spline{line, default_size, max_gradation};
    return {spline, max_angle};
}

/// Checks the arguments of `remesh_lines` in the documented order. Returns 0 or the status of the fullest
/// overload. `connect` is not empty.
inline int check_network(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    remesh_rule const& rule, dense1D<unsigned> const& hard_edges)
{
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (!vornik::check_IDs(connect, vornik::element_type::edge, coords.cols())) return bad_argument(2);
    if (!(rule.default_size >= 0)) return bad_argument(3);
    if (!vornik::check_IDs(hard_edges, connect.cols())) return bad_argument(7);
    if (!(rule.max_angle >= 0)) return bad_argument(9);
    if (!(rule.max_gradation >= 0)) return bad_argument(11);
    if (!(rule.min_size >= 0)) return bad_argument(12);
    if (rule.min_elements > rule.max_elements) return bad_argument(13);
    return 0;
}

} // namespace trelk::vornik1d

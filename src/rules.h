#pragma once

#include <cmath>
#include <cstdint>

#include <vornik1d/vornik1d.h>

#include "special_values.h"

// How a line is to be meshed. Each rule extends the one before it, so that one record serves a call and all
// the functions below it.

namespace trelk::vornik1d {

/// Into how many elements a line is to be cut.
struct element_rule
{
    bool force_even = false;
    std::uint64_t min_elements = 1;
    std::uint64_t max_elements = no_limit;
};

/// How a polyline is to be meshed. A `deviation_tolerance` of 0 means no tolerance.
struct line_rule : element_rule
{
    double deviation_tolerance = 0;
    double min_size = 0;
};

/// How a spline is to be meshed. A `deviation_tolerance` of `largest` means no tolerance.
struct spline_rule : line_rule
{
    double default_size = 0;
    double max_gradation = 0;
};

/// How a network of lines is to be meshed. A `deviation_tolerance` of 0 means polylines that follow their
/// nodes, one of plus or minus `largest` means splines without a tolerance.
struct remesh_rule : spline_rule
{
    double max_angle = 0;
};

/// The tolerance that a caller gives, or `none` if the caller's value means no tolerance: 0, NaN, and the
/// largest double of either sign.
inline double tolerance_or(double none, double deviation_tolerance)
{
    bool const is_none = deviation_tolerance == 0 || std::isnan(deviation_tolerance) ||
                         std::abs(deviation_tolerance) == largest;
    return is_none ? none : deviation_tolerance;
}

inline double line_tolerance(double deviation_tolerance) { return tolerance_or(0, deviation_tolerance); }
inline double spline_tolerance(double deviation_tolerance)
{
    return tolerance_or(largest, deviation_tolerance);
}

/// The largest double passes: it selects splines.
inline double network_tolerance(double deviation_tolerance)
{
    return std::isnan(deviation_tolerance) ? 0 : deviation_tolerance;
}

} // namespace trelk::vornik1d

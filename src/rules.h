#pragma once

#include <cmath>
#include <cstdint>

#include "metric/sizes.h"

// How a line is to be meshed. Each rule extends the one before it, so that one record serves a call and all
// the functions below it.

namespace trelk::vornik1d {

/// No limit on a count of elements or nodes: the largest 32-bit number.
constexpr std::uint64_t unlimited = 4294967295;

/// Into how many elements a line is to be cut.
struct element_rule
{
    bool force_even = false;
    std::uint64_t min_elements = 1;
    std::uint64_t max_elements = unlimited;
};

/// How a polyline is to be meshed.
struct line_rule : element_rule
{
    double deviation_tolerance = 0; // 0: no tolerance
    double min_size = 0;
};

/// How a spline is to be meshed. Here `largest` means no tolerance.
struct spline_rule : line_rule
{
    double default_size = 0;
    double max_gradation = 0;
};

/// How a network of lines is to be meshed.
struct remesh_rule : spline_rule
{
    double max_angle = 0;
};

/// The tolerance of a polyline in its rule. The largest double, of either sign, means no tolerance. A NaN
/// passes: it is neither positive nor negative, so it has no effect.
inline double line_tolerance(double deviation_tolerance)
{
    return std::abs(deviation_tolerance) == largest ? 0 : deviation_tolerance;
}

/// The tolerance of a spline in its rule. 0 and NaN mean no tolerance. The negated largest double passes: it
/// bounds nothing, like every value below -10.
inline double spline_tolerance(double deviation_tolerance)
{
    bool const is_off = deviation_tolerance == 0 || std::isnan(deviation_tolerance);
    return is_off ? largest : deviation_tolerance;
}

} // namespace trelk::vornik1d

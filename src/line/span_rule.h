#pragma once

#include "placement/line.h"

namespace trelk::vornik1d {

/// How a chain is to be meshed. `deviation_tolerance` is cleaned: no NaN, no largest double.
struct span_rule : element_rule
{
    double deviation_tolerance;
    double min_size;
};

} // namespace trelk::vornik1d

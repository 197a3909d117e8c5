#pragma once

#include <algorithm>
#include <cmath>

#include "line_mesh.h"

/// Target sizes in kilometres: smallest at the harbour, which is the origin, and growing with the distance
/// from it.
struct size_field
{
    double finest = 0.5;
    double coarsest = 8.0;
    double growth = 0.05;

    double at(point const& where) const
    {
        return std::min(finest + growth * std::hypot(where.x, where.y), coarsest);
    }

    /// The distance from the harbour at which a size is reached.
    double radius(double size) const { return (size - finest) / growth; }
};

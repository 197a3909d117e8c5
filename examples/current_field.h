#pragma once

#include <algorithm>
#include <cmath>

#include "line_mesh.h"

/// A current along an arc, and the sizes it asks for, in kilometres. The size across the current is smallest
/// on its axis and grows with the distance from it. The size along the current is longer by a constant
/// factor.
struct current_field
{
    point centre = {-240.0, 240.0}; // of the arc
    double radius = 316.0;
    double finest = 0.5;
    double coarsest = 6.0;
    double growth = 0.05;
    double stretch = 4.0;

    double size_across(point const& where) const
    {
        return std::min(finest + growth * std::abs(distance(centre, where) - radius), coarsest);
    }

    /// The distance from the axis at which a size across the current is reached.
    double offset(double size) const { return (size - finest) / growth; }

    /// e e^T / h^2 + f f^T / k^2, with the size h along the unit vector e across the current, and k along f.
    tensor metric(point const& where) const
    {
        double const from_centre = distance(centre, where);
        double const ex = (where.x - centre.x) / from_centre;
        double const ey = (where.y - centre.y) / from_centre;
        double const h = size_across(where);
        double const k = stretch * h;
        double const across = 1.0 / (h * h);
        double const along = 1.0 / (k * k);
        return {across * ex * ex + along * ey * ey, (across - along) * ex * ey,
            across * ey * ey + along * ex * ex};
    }
};

#pragma once

#include <cstddef>

#include "line_mesh.h"

/// What there is to know of a mesh of lines. Lengths are metric: an element that its targets ask for has
/// length 1.
struct summary
{
    std::size_t lines = 0;
    std::size_t nodes = 0;
    std::size_t elements = 0;
    double shortest = 0.0;
    double mean = 0.0;
    double longest = 0.0;
    /// The largest distance of a node of the original from the mesh of its line.
    double deviation = 0.0;
};

/// The distance of a position from the segment from a to b, all of as many coordinates as there are rows.
double distance_to_segment(double const* p, double const* a, double const* b, std::size_t rows);

/// The distance of a position, which has as many coordinates as the mesh, from a line of the mesh.
double distance_to_line(double const* p, line const& chain, line_mesh const& mesh);

summary summarize(line_mesh const& mesh, line_mesh const& original);

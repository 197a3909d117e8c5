#pragma once

#include <cstddef>

#include "line_mesh.h"

/// Figures about a mesh of lines. Lengths are metric: an element with its target length has length 1.
struct summary
{
    std::size_t lines = 0;
    std::size_t nodes = 0;
    std::size_t elements = 0;
    double shortest = 0.0;
    double mean = 0.0;
    double longest = 0.0;
    /// The largest distance of an original node from the mesh of its line.
    double deviation = 0.0;
};

/// The distance of p from the segment from a to b. Each has `rows` coordinates.
double distance_to_segment(double const* p, double const* a, double const* b, std::size_t rows);

/// The distance of p from a line of the mesh. p has as many coordinates as the mesh.
double distance_to_line(double const* p, line const& chain, line_mesh const& mesh);

summary summarize(line_mesh const& mesh, line_mesh const& original);

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

summary summarize(line_mesh const& mesh, line_mesh const& original);

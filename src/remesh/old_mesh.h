#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

namespace trelk::vornik1d {

/// The mesh to be replaced, with data of its nodes and elements. Lists may be empty or too short.
struct old_mesh
{
    dense2D<unsigned> connect; // 2 rows
    dense1D<double> const& sizes;
    dense1D<unsigned> const& colors;
    dense1D<unsigned> const& hard_nodes;
    dense1D<unsigned> const& hard_edges;
    unsigned max_node;

    unsigned color_of(unsigned element) const { return element < colors.size() ? colors[element] : no_color; }
};

} // namespace trelk::vornik1d

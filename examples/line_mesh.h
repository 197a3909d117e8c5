#pragma once

#include <vector>

#include <vornik1d/vornik1d.h>

struct point
{
    double x = 0.0;
    double y = 0.0;
};

/// A chain of nodes, each given by its column of the coordinates, with the target size at each of them.
struct line
{
    trelk::dense1D<unsigned> nodes;
    trelk::dense1D<double> sizes;

    /// Whether the line ends with the node it starts with.
    bool closed() const { return nodes[0] == nodes[nodes.size() - 1]; }
};

struct line_mesh
{
    trelk::dense2D<double> coords;
    std::vector<line> lines;

    point node(unsigned index) const { return {coords(0, index), coords(1, index)}; }
};

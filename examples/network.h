#pragma once

#include <vector>

#include <vornik1d/vornik1d.h>

#include "line_mesh.h"

/// Lines that meet at their ends, as elements of two nodes in the order of travel, each with the colour of its
/// line.
struct network
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
    trelk::dense1D<unsigned> colors;

    point node(unsigned index) const { return {coords(0, index), coords(1, index)}; }
};

/// Gives nodes of the lines that are at one place one number, the lowest of theirs.
void join_nodes(line_mesh& lines);

/// The lines as elements. `colors` has one for each line.
network to_network(line_mesh const& lines, std::vector<unsigned> const& colors);

/// The elements of a colour, strung together to lines.
line_mesh lines_of_color(network const& mesh, unsigned color);

/// The colours of the elements that meet at each node, ascending.
std::vector<std::vector<unsigned>> colors_at_nodes(network const& mesh);

/// Where three or more elements meet.
std::vector<point> junctions(network const& mesh);

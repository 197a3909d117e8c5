#pragma once

#include <vector>

#include <vornik1d/vornik1d.h>

#include "line_mesh.h"

/// Lines that meet at their ends, as elements of two nodes in the order of travel. An element has the colour
/// of its line.
struct network
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
    trelk::dense1D<unsigned> colors;

    point node(unsigned index) const { return {coords(0, index), coords(1, index)}; }
};

/// Gives nodes at the same place the same number: the lowest of their numbers.
void join_nodes(line_mesh& lines);

/// The lines as elements. `colors` has one entry per line.
network to_network(line_mesh const& lines, std::vector<unsigned> const& colors);

/// The elements of a colour, joined to lines.
line_mesh lines_of_color(network const& mesh, unsigned color);

/// For each node: the colours of the elements that meet there, ascending.
std::vector<std::vector<unsigned>> colors_at_nodes(network const& mesh);

/// The places at which at least three elements meet.
std::vector<point> junctions(network const& mesh);

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "shapes.h"

/// Lines that meet: open and closed ones, with junctions, corners and elements turned round.
struct network
{
    drawn_line nodes;
    std::vector<std::pair<unsigned, unsigned>> elements;
    std::vector<unsigned> lines; // the number of the line that each element belongs to
};
network draw_network(generator& g, std::size_t lines, std::size_t most_nodes);

/// Elements of `rows` nodes, of which those behind the first two are any.
node_matrix connectivity(generator& g, network const& net, std::size_t rows);

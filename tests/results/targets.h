#pragma once

#include <cstddef>

#include "random.h"
#include "world.h"

// Random arguments of meshers beside the shape of the line.

/// n sizes about `scale`.
real_list draw_sizes(generator& g, std::size_t n, double scale);
/// n tensors that ask for sizes about `scale`; 3 rows in the plane, 6 in space.
real_matrix draw_tensors(generator& g, std::size_t rows, std::size_t n, double scale);
/// n values that do not fall.
real_list draw_params(generator& g, std::size_t n);
/// n entries of 0, 1, 2, ... or of another order of nodes.
node_list draw_chain(generator& g, std::size_t nodes, std::size_t n);

struct element_limits
{
    bool force_even;
    unsigned min_elements;
    unsigned max_elements;
};
element_limits draw_limits(generator& g);

/// A deviation tolerance of any kind.
double draw_tolerance(generator& g, double scale);

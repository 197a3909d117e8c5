#pragma once

#include <cstddef>

#include <trelk/dense2D.h>

#include "remesh/hbuckets_set.h"

namespace trelk::vornik1d {

/// Adds to `break_nodes` the nodes at which a line of two-node elements must be cut for its shape: its ends,
/// its corners, and where two elements meet head to head.
///
/// A corner is a node at which the direction changes by more than `max_angle` degrees or by more than a right
/// angle. A segment not longer than `min_size` has no direction, and no corner at its ends. `neighbors` is
/// that of `get_neighbors`. Without storage the set is not complete.
template <std::size_t N>
void find_break_nodes(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    dense2D<unsigned> const& neighbors, double max_angle, double min_size, hbuckets_set& break_nodes);

} // namespace trelk::vornik1d

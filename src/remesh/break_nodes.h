#pragma once

#include <cstddef>

#include <trelk/dense2D.h>

#include "remesh/hbuckets_set.h"

namespace trelk::vornik1d {

/// Adds to `break_nodes` the nodes at which lines of two-node elements must be cut because of their shape:
/// ends, corners, and nodes at which two elements both end.
///
/// A corner is a node at which the direction changes by more than `max_angle` degrees or by at least a right
/// angle. A segment that is not longer than `min_size` has no corners. `neighbors` is the result of
/// `get_neighbors`. If memory runs out, the set is not complete.
template <std::size_t N>
void find_break_nodes(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    dense2D<unsigned> const& neighbors, double max_angle, double min_size, hbuckets_set& break_nodes);

} // namespace trelk::vornik1d

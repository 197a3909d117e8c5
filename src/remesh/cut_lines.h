#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "remesh/chains.h"
#include "remesh/hbuckets_set.h"
#include "remesh/old_mesh.h"
#include "rules.h"

namespace trelk::vornik1d {

/// Lines cut into chains, with the sizes and colours for their meshes.
struct cut_lines
{
    dense1D<unsigned> break_nodes; // ascending; empty unless the caller wants the list
    hbuckets_set hard_edges;
    line_chains chains;
    dense1D<double> node_sizes; // by node number
    dense1D<unsigned> chain_colors;
};

/// Cuts the lines at break nodes into chains, and lists the break nodes if `lists_break_nodes`. False
/// if memory runs out.
template <std::size_t N>
[[nodiscard]] bool cut_into_chains(dense2D<double> const& coords, old_mesh const& old,
    remesh_rule const& rule, bool lists_break_nodes, cut_lines& lines);

/// Sets the sizes at the old nodes: the given size, otherwise the default size. At a chain end the default is
/// lowered to the length of the shortest chain that meets there, or to `rule.min_size` if that is larger.
/// False if memory runs out.
template <std::size_t N>
[[nodiscard]] bool set_node_sizes(
    dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule, cut_lines& lines);

/// Gives each chain the first colour along it, or a new colour if it has none. False if memory runs out.
[[nodiscard]] bool set_chain_colors(old_mesh const& old, cut_lines& lines);

} // namespace trelk::vornik1d

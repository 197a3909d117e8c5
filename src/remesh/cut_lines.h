#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "remesh/chains.h"
#include "remesh/hbuckets_set.h"
#include "remesh/old_mesh.h"
#include "rules.h"

namespace trelk::vornik1d {

/// Lines cut into chains, and what the chains are to be meshed by.
struct cut_lines
{
    dense1D<unsigned> break_nodes; // ascending
    hbuckets_set hard_edges;
    line_chains chains;
    dense1D<double> node_sizes; // by the numbers of old nodes
    dense1D<unsigned> chain_colors;
};

/// Cuts the lines at break nodes into chains; lists these nodes if that is asked for. Returns 0 or the status of the exported function.
template <std::size_t N>
int cut_into_chains(dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule,
    bool lists_break_nodes, cut_lines& lines);

/// Sets the sizes at the old nodes: the default one, at the ends of chains no more than their lengths; given
/// sizes win. False without storage.
template <std::size_t N>
[[nodiscard]] bool set_node_sizes(
    dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule, cut_lines& lines);

/// Gives each chain the first colour along it, or one of its own. False without storage.
[[nodiscard]] bool set_chain_colors(old_mesh const& old, cut_lines& lines);

} // namespace trelk::vornik1d

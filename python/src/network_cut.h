#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "remesh/cut_lines.h"
#include "rules.h"

// A network cut into chains that can be remeshed apart from one another, in any order and on any machine. Put
// together in the order of the chains, their meshes are the mesh of one call of `remesh_lines`, bit for bit.

namespace trelk::vornik1d {

/// What is given for a network. Lists may be empty or too short.
struct network_input
{
    dense2D<double> coords;
    dense2D<unsigned> connect; // 2 rows
    dense1D<double> sizes;
    dense1D<unsigned> colors;
    dense1D<unsigned> hard_nodes;
    dense1D<unsigned> hard_edges;
};

/// Some chains of a network, one after the other. Chain c has counts[c] elements and counts[c] + 1 nodes, so
/// that chains share no node. The first and the last node of a closed chain have the same number.
struct chain_batch
{
    dense1D<unsigned> nodes; // their numbers in the network
    dense2D<double> coords;
    dense1D<double> sizes;
    dense1D<unsigned> counts;
    dense1D<unsigned> hard;   // numbers of the chains that are hard edges
    dense1D<unsigned> fewest; // the least number of elements of each open chain; may be empty
};

/// The mesh of a batch. Node k of the batch keeps the number k. New nodes follow.
struct batch_mesh
{
    dense2D<double> new_coords;
    dense2D<unsigned> connect;
    dense1D<unsigned> counts;      // elements of each chain
    dense1D<unsigned> raised;      // numbers of the chains that got more elements than their sizes ask for
    dense1D<unsigned> short_loops; // numbers of the chains that still have too few elements
};

/// A network and its chains.
class network_cut
{
public:
    /// Returns 0 or the status of the fullest overload of `remesh_lines`. The network must stay unchanged
    /// as long as this object is used.
    [[nodiscard]] int cut(network_input const& network, remesh_rule const& rule);

    cut_lines const& lines() const { return lines_; }

    /// The elements of chain c, an array of `lines().chains.element_count(c)` entries.
    unsigned const* elements(std::size_t c) const
    {
        return lines_.chains.chain_elements.data() + lines_.chains.chain_starts[c];
    }

    /// The chains from `first` up to, not including, `last`. May be called from several threads. False if
    /// memory runs out.
    [[nodiscard]] bool gather(std::size_t first, std::size_t last, chain_batch& batch) const;

private:
    network_input network_;
    cut_lines lines_;
};

/// Meshes a batch. Closed chains with fewer than `min_loop_elements` elements are meshed again, with sizes
/// from `loop_sizes`. So are open chains with fewer elements than in `fewest`. Returns 0 or the status of the
/// fullest overload of `remesh_lines`.
[[nodiscard]] int mesh_batch(
    chain_batch const& batch, remesh_rule const& rule, unsigned min_loop_elements, batch_mesh& mesh);

} // namespace trelk::vornik1d

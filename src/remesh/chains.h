#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "remesh/hbuckets_set.h"

namespace trelk::vornik1d {

/// The elements of a mesh in chains: runs in which each element starts at the end node of the one before.
/// They reach from break node to break node or around a loop, but begin too where two elements start at one
/// node, and end where they meet an earlier chain. Chain c has the entries from `chain_starts[c]` to
/// `chain_starts[c + 1]` of `chain_elements`, in the order of travel.
struct line_chains
{
    dense1D<unsigned> chain_starts;
    dense1D<unsigned> chain_elements;

    std::size_t size() const noexcept { return chain_starts.size() - 1; }
    std::size_t element_count(std::size_t c) const noexcept { return chain_starts[c + 1] - chain_starts[c]; }

    /// Elements of the longest chain.
    std::size_t longest() const noexcept
    {
        std::size_t result = 0;
        for (std::size_t c = 0; c < size(); ++c) result = std::max(result, element_count(c));
        return result;
    }

    /// The elements of chain c, a view.
    dense1D<unsigned> chain(std::size_t c) const noexcept
    {
        return chain_elements.sub_vector(chain_starts[c], element_count(c));
    }
};

/// Puts every element into a chain: first the chains that begin at a break node, by rising first element,
/// then the others, each from the lowest element that is left. Node numbers, those of `break_nodes` too, are below
/// `node_count`. False without storage.
[[nodiscard]] bool extract_chains(dense2D<unsigned> const& connect, dense2D<unsigned> const& neighbors,
    hbuckets_set const& break_nodes, std::size_t node_count, line_chains& chains);

} // namespace trelk::vornik1d

#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "remesh/hbuckets_set.h"

namespace trelk::vornik1d {

/// The elements of a mesh in chains. In a chain each element starts at the end node of the one before. A
/// chain reaches from break node to break node, or around a loop. A chain can also start where two elements
/// start at one node, and end where it meets an earlier chain.
///
/// The elements of chain c are `chain_elements` from `chain_starts[c]` up to, not including,
/// `chain_starts[c + 1]`, in the order of travel.
struct line_chains
{
    dense1D<unsigned> chain_starts;
    dense1D<unsigned> chain_elements;

    std::size_t size() const noexcept { return chain_starts.size() - 1; }
    std::size_t element_count(std::size_t c) const noexcept { return chain_starts[c + 1] - chain_starts[c]; }

    /// The number of elements of the longest chain.
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

/// Puts every element into a chain: first the chains that start at a break node, in the order of their first
/// elements; then the others, each from the lowest remaining element. All node numbers are below
/// `node_count`. An element without a neighbour at its second node ends at a break node. False if memory runs
/// out.
[[nodiscard]] bool extract_chains(dense2D<unsigned> const& connect, dense2D<unsigned> const& neighbors,
    hbuckets_set const& break_nodes, std::size_t node_count, line_chains& chains);

} // namespace trelk::vornik1d

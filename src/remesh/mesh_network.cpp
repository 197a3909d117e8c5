#include "remesh/mesh_network.h"

#include <algorithm>
#include <cstddef>

#include <vornik1d/vornik1d.h>

#include "arrays/append.h"
#include "remesh/chain_mesher.h"

namespace trelk::vornik1d {

namespace {

/// How many of the old elements are in the chains meshed so far, the current one included. This serves to
/// estimate the final length of the result lists.
struct progress
{
    std::size_t old_elements;
    std::size_t replaced_elements = 0;

    /// The expected final length of a list that has `present` values now, with a small margin.
    std::size_t forecast(std::size_t present) const
    {
        constexpr double least_share = 0.01;
        constexpr double margin = 1.02;
        double const share = static_cast<double>(replaced_elements) / static_cast<double>(old_elements);
        return static_cast<std::size_t>(margin * static_cast<double>(present) / std::max(share, least_share));
    }
};

/// Appends an element between each pair of consecutive nodes. False if memory runs out.
[[nodiscard]] bool append_elements(
    dense1D<unsigned> const& nodes, progress const& so_far, dense2D<unsigned>& connect)
{
    std::size_t const present = filled_columns(connect);
    std::size_t const needed = present + nodes.size() - 1;
    if (!reserve_foreseen(connect, 2, needed, so_far.forecast(needed))) return false;
    static_cast<void>(connect.resize(2, needed)); // there is room
    unsigned* column = connect.col(present);
    for (std::size_t k = 1; k < nodes.size(); ++k) *column++ = nodes[k - 1], *column++ = nodes[k];
    return true;
}

/// Gives `color` to the elements that have no colour yet. False if memory runs out.
[[nodiscard]] bool append_colors(unsigned color, progress const& so_far, new_mesh& mesh)
{
    std::size_t const needed = mesh.connect.cols();
    return reserve_foreseen(mesh.colors, needed, so_far.forecast(needed)) &&
           mesh.colors.resize(needed, color);
}

} // namespace

template <std::size_t N>
int mesh_network(dense2D<double>& coords, old_mesh const& old, remesh_rule const& rule,
    cut_lines const& lines, new_mesh& mesh)
{
    chain_mesher<N> mesher(coords, rule);
    if (!mesher.reserve(lines.chains.longest())) return no_storage;

    std::size_t const base_columns = coords.cols();
    bool const has_colors = !lines.chain_colors.empty();
    bool const has_hard_edges = lines.hard_edges.keys() > 0;
    progress so_far{old.connect.cols()};
    for (std::size_t c = 0; c < lines.chains.size(); ++c) {
        auto const elements = lines.chains.chain(c);
        so_far.replaced_elements += elements.size();
        mesher.set_chain(old.connect, elements);
        // Both nodes of a hard edge are break nodes, so it is a chain of its own.
        bool const is_hard = has_hard_edges && lines.hard_edges.contains(elements[0]);
        if (!is_hard) {
            mesher.expect_columns(base_columns + so_far.forecast(coords.cols() - base_columns));
            if (int const status = mesher.run(lines.node_sizes); status != 0) return status;
        }
        if (!append_elements(is_hard ? mesher.chain_nodes() : mesher.mesh(), so_far, mesh.connect) ||
            (has_colors && !append_colors(lines.chain_colors[c], so_far, mesh)))
            return no_storage;
    }
    return 0;
}

template int mesh_network<2>(
    dense2D<double>&, old_mesh const&, remesh_rule const&, cut_lines const&, new_mesh&);
template int mesh_network<3>(
    dense2D<double>&, old_mesh const&, remesh_rule const&, cut_lines const&, new_mesh&);

} // namespace trelk::vornik1d

#include "remesh/cut_lines.h"

#include <algorithm>
#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "remesh/break_nodes.h"

namespace trelk::vornik1d {

namespace {

constexpr auto edge = vornik::element_type::edge;

/// Initialises a set for about `keys` keys.
[[nodiscard]] bool prepare(hbuckets_set& set, std::size_t keys)
{
    constexpr std::size_t start = 23;
    return set.init(start, start) && (keys <= set.buckets() || set.rehash(keys));
}

/// Collects the break nodes. False if memory runs out.
template <std::size_t N>
[[nodiscard]] bool add_break_nodes(dense2D<double> const& coords, old_mesh const& old,
    remesh_rule const& rule, dense2D<unsigned> const& neighbors, hbuckets_set& break_nodes)
{
    find_break_nodes<N>(coords, old.connect, neighbors, rule.max_angle, rule.min_size, break_nodes);
    for (unsigned const e : old.hard_edges) {
        break_nodes.insert(old.connect(0, e));
        break_nodes.insert(old.connect(1, e));
    }
    for (unsigned const node : old.hard_nodes)
        if (node <= old.max_node) break_nodes.insert(node);
    if (!old.colors.empty()) {
        dense2D<unsigned> boundary;
        if (vornik::get_colors_boundaries(old.connect, neighbors, old.colors, edge, false, true, boundary) !=
            0)
            return false;
        for (unsigned const node : boundary.as_vector()) break_nodes.insert(node);
    }
    return break_nodes.is_complete();
}

[[nodiscard]] bool list_keys(hbuckets_set const& set, dense1D<unsigned>& keys)
{
    if (!keys.reserve(set.keys())) return false;
    set.for_each([&](unsigned key) { keys.push_back(key); });
    std::sort(keys.begin(), keys.end());
    return true;
}

/// Lowers the sizes at the ends of a chain to its length; then sets the sizes that are given along it.
template <std::size_t N>
void set_sizes_along(dense2D<double> const& coords, old_mesh const& old, double min_size,
    dense1D<unsigned> const& elements, dense1D<double>& node_sizes)
{
    unsigned const first = old.connect(0, elements[0]);
    double chain_length = 0;
    unsigned last = first;
    for (unsigned const e : elements) {
        unsigned const next = old.connect(1, e);
        chain_length += norm(edge_vector<N>(coords.col(last), coords.col(next)));
        last = next;
    }
    if (min_size > chain_length) chain_length = min_size;
    for (unsigned const end : {first, last}) node_sizes[end] = std::min(node_sizes[end], chain_length);

    auto const set_given = [&](unsigned node) {
        if (node < old.sizes.size() && old.sizes[node] > 0) node_sizes[node] = old.sizes[node];
    };
    if (old.sizes.empty()) return;
    set_given(first);
    for (unsigned const e : elements) set_given(old.connect(1, e));
}

} // namespace

template <std::size_t N>
bool cut_into_chains(dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule,
    bool lists_break_nodes, cut_lines& lines)
{
    constexpr std::size_t elements_per_break = 100; // a guess
    std::size_t const hard = old.hard_edges.size();
    std::size_t const breaks = old.connect.cols() / elements_per_break + old.hard_nodes.size() + hard;
    hbuckets_set break_nodes;
    if (!prepare(break_nodes, breaks) || !prepare(lines.hard_edges, hard)) return false;
    lines.hard_edges.insert_range(old.hard_edges.begin(), old.hard_edges.end());
    if (!lines.hard_edges.is_complete()) return false;

    dense2D<unsigned> neighbors;
    if (vornik::get_neighbors(old.connect, edge, false, neighbors) != 0) return false;
    if (!add_break_nodes<N>(coords, old, rule, neighbors, break_nodes)) return false;
    if (lists_break_nodes && !list_keys(break_nodes, lines.break_nodes)) return false;
    std::size_t const nodes = std::size_t{old.max_node} + 1;
    return extract_chains(old.connect, neighbors, break_nodes, nodes, lines.chains);
}

template <std::size_t N>
bool set_node_sizes(
    dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule, cut_lines& lines)
{
    if (!lines.node_sizes.resize(std::size_t{old.max_node} + 1, rule.default_size)) return false;
    for (std::size_t c = 0; c < lines.chains.size(); ++c)
        set_sizes_along<N>(coords, old, rule.min_size, lines.chains.chain(c), lines.node_sizes);
    return true;
}

bool set_chain_colors(old_mesh const& old, cut_lines& lines)
{
    bool const has_colors =
        std::any_of(old.colors.begin(), old.colors.end(), [](unsigned color) { return color != no_color; });
    unsigned next_color = has_colors ? vornik::max_ID(old.colors) + 1 : 0;
    if (!lines.chain_colors.reserve(lines.chains.size())) return false;
    for (std::size_t c = 0; c < lines.chains.size(); ++c) {
        auto const elements = lines.chains.chain(c);
        auto const* const colored = std::find_if(
            elements.begin(), elements.end(), [&](unsigned e) { return old.color_of(e) != no_color; });
        lines.chain_colors.push_back(colored != elements.end() ? old.color_of(*colored) : next_color++);
    }
    return true;
}

template bool cut_into_chains<2>(
    dense2D<double> const&, old_mesh const&, remesh_rule const&, bool, cut_lines&);
template bool cut_into_chains<3>(
    dense2D<double> const&, old_mesh const&, remesh_rule const&, bool, cut_lines&);
template bool set_node_sizes<2>(dense2D<double> const&, old_mesh const&, remesh_rule const&, cut_lines&);
template bool set_node_sizes<3>(dense2D<double> const&, old_mesh const&, remesh_rule const&, cut_lines&);

} // namespace trelk::vornik1d

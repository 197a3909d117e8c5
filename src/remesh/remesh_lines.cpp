#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "front_door.h"
#include "metric/sizes.h"
#include "remesh/break_nodes.h"
#include "remesh/chains.h"
#include "remesh/hbuckets_set.h"

namespace trelk::vornik1d {

namespace {

constexpr auto edge = vornik::element_type::edge;
constexpr unsigned no_color = vornik::none;

/// The mesh to be replaced, and what is known of its nodes and elements. Lists may be empty or too short.
struct old_mesh
{
    dense2D<unsigned> connect; // 2 rows
    dense1D<double> const& sizes;
    dense1D<unsigned> const& colors;
    dense1D<unsigned> const& hard_nodes;
    dense1D<unsigned> const& hard_edges;
    unsigned max_node;
};

struct remesh_rule
{
    double default_size;
    bool force_even;
    double max_angle;
    double deviation_tolerance;
    double max_gradation;
    double min_size;
    unsigned min_elements;
    unsigned max_elements;
};

/// The lines cut into chains, and the sizes at the old nodes, by node number.
struct cut_lines
{
    hbuckets_set break_nodes;
    hbuckets_set hard_edges;
    line_chains chains;
    dense1D<double> node_sizes;
    dense1D<unsigned> chain_colors;
};

/// Brings an empty set to life, for about `keys` keys.
[[nodiscard]] bool prepare(hbuckets_set& set, std::size_t keys)
{
    constexpr std::size_t start = 23;
    return set.init(start, start, 1.0) && (keys <= set.buckets() || set.rehash(keys));
}

int add_break_nodes(dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule,
    dense2D<unsigned> const& neighbors, hbuckets_set& break_nodes)
{
    by_dimension(coords, [&](auto dim) {
        find_break_nodes<dim>(coords, old.connect, neighbors, rule.max_angle, rule.min_size, break_nodes);
    });
    for (unsigned const e : old.hard_edges) {
        break_nodes.insert(old.connect(0, e));
        break_nodes.insert(old.connect(1, e));
    }
    for (unsigned const node : old.hard_nodes)
        if (node <= old.max_node) break_nodes.insert(node);
    if (!old.colors.empty()) {
        dense2D<unsigned> boundary;
        int const status =
            vornik::get_colors_boundaries(old.connect, neighbors, old.colors, edge, false, true, boundary);
        if (status < 0) return status;
        for (unsigned const node : boundary.as_vector()) break_nodes.insert(node);
    }
    return break_nodes.is_complete() ? 0 : no_storage;
}

/// Cuts the lines at break nodes into chains.
int cut(dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule, cut_lines& lines)
{
    constexpr std::size_t elements_a_break = 100; // a guess: a break in as many
    std::size_t const hard = old.hard_edges.size();
    std::size_t const breaks = old.connect.cols() / elements_a_break + old.hard_nodes.size() + hard;
    if (!prepare(lines.break_nodes, breaks) || !prepare(lines.hard_edges, hard)) return no_storage;
    lines.hard_edges.insert_range(old.hard_edges.begin(), old.hard_edges.end());
    if (!lines.hard_edges.is_complete()) return no_storage;

    dense2D<unsigned> neighbors;
    int status = vornik::get_neighbors(old.connect, edge, false, neighbors);
    if (status >= 0) status = add_break_nodes(coords, old, rule, neighbors, lines.break_nodes);
    if (status < 0) return status;
    return extract_chains(old.connect, neighbors, lines.break_nodes, lines.chains) ? 0 : no_storage;
}

/// Sets the sizes at the old nodes: the default one, at the ends of chains no more than their lengths; given
/// sizes win.
[[nodiscard]] bool set_node_sizes(
    dense2D<double> const& coords, old_mesh const& old, remesh_rule const& rule, cut_lines& lines)
{
    dense1D<double>& sizes = lines.node_sizes;
    dense1D<unsigned> nodes;
    if (!sizes.resize(std::size_t{old.max_node} + 1, rule.default_size) ||
        !nodes.reserve(lines.chains.longest() + 1))
        return false;
    for (std::size_t c = 0; c < lines.chains.size(); ++c) {
        double chain_length = 0;
        if (!chain_node_list(old.connect, lines.chains.chain(c), nodes)) return false;
        static_cast<void>(length(coords, nodes, chain_length)); // the nodes have been checked
        if (rule.min_size > chain_length) chain_length = rule.min_size;
        for (unsigned const end : {nodes[0], nodes[nodes.size() - 1]})
            sizes[end] = std::min(sizes[end], chain_length);
        for (unsigned const node : nodes)
            if (node < old.sizes.size() && old.sizes[node] > 0) sizes[node] = old.sizes[node];
    }
    return true;
}

/// Gives each chain the first colour along it, or one of its own.
[[nodiscard]] bool set_chain_colors(old_mesh const& old, cut_lines& lines)
{
    auto const color_of = [&](unsigned e) { return e < old.colors.size() ? old.colors[e] : no_color; };
    bool const has_colors =
        std::any_of(old.colors.begin(), old.colors.end(), [](unsigned color) { return color != no_color; });
    unsigned next_color = has_colors ? vornik::max_ID(old.colors) + 1 : 0;
    if (!lines.chain_colors.reserve(lines.chains.size())) return false;
    for (std::size_t c = 0; c < lines.chains.size(); ++c) {
        auto const elements = lines.chains.chain(c);
        auto const* const colored = std::find_if(
            elements.begin(), elements.end(), [&](unsigned e) { return color_of(e) != no_color; });
        lines.chain_colors.push_back(colored != elements.end() ? color_of(*colored) : next_color++);
    }
    return true;
}

/// Meshes chains, one after the other; the lists are kept from chain to chain.
class chain_mesher
{
public:
    chain_mesher(dense2D<double>& coords, remesh_rule const& rule) : coords_(coords), rule_(rule) {}

    /// Makes room for chains of up to `elements` elements.
    [[nodiscard]] bool reserve(std::size_t elements)
    {
        return chain_sizes_.reserve(elements + 1) && extended_nodes_.reserve(elements + 3) &&
               extended_sizes_.reserve(elements + 3);
    }

    /// Meshes a chain with the sizes that `node_sizes` has at its nodes; `mesh` is then the result. Returns
    /// the status of the mesher that made it.
    int run(dense1D<unsigned> const& nodes, dense1D<double> const& node_sizes)
    {
        chain_sizes_.clear();
        for (unsigned const node : nodes) chain_sizes_.push_back(node_sizes[node]);

        double const tolerance = rule_.deviation_tolerance;
        if (tolerance == 0) return run_line(nodes);

        double deviation = 0;
        std::size_t const base_columns = coords_.cols();
        int const status = run_spline(nodes, deviation);
        if (status < 0 || tolerance < 0 || !(deviation > tolerance)) return status;
        truncate(coords_, base_columns); // the spline strays
        return run_line(nodes);
    }

    dense1D<unsigned> const& mesh() const { return out_indices_; }

private:
    void clear_outputs()
    {
        out_indices_.clear();
        out_params_.clear();
        out_sizes_.clear();
    }

    /// With a guide node at either end: around the joint of a closed chain, free ends of an open one.
    int run_spline(dense1D<unsigned> const& nodes, double& deviation)
    {
        std::size_t const last = nodes.size() - 1;
        bool const is_closed = nodes[0] == nodes[last];
        extended_nodes_.clear();
        extended_nodes_.push_back(is_closed ? nodes[last - 1] : nodes[0]);
        for (unsigned const node : nodes) extended_nodes_.push_back(node);
        extended_nodes_.push_back(is_closed ? nodes[1] : nodes[last]);
        extended_sizes_.clear();
        extended_sizes_.push_back(chain_sizes_[0]);
        for (double const size : chain_sizes_) extended_sizes_.push_back(size);
        extended_sizes_.push_back(chain_sizes_[last]);

        clear_outputs();
        return mesh_spline(coords_, extended_nodes_, extended_sizes_, rule_.force_even, rule_.min_elements,
            rule_.max_elements, rule_.deviation_tolerance, rule_.min_size, rule_.default_size,
            rule_.max_gradation, out_indices_, out_params_, out_sizes_, deviation);
    }

    int run_line(dense1D<unsigned> const& nodes)
    {
        constexpr double exact = 1e-12; // of the chain's length: holds the mesh to the polyline
        double tolerance = rule_.deviation_tolerance;
        if (tolerance == 0) {
            static_cast<void>(length(coords_, nodes, tolerance)); // the nodes have been checked
            tolerance *= exact;
        }
        clear_outputs();
        return mesh_line(coords_, nodes, chain_sizes_, rule_.force_even, rule_.min_elements,
            rule_.max_elements, tolerance, rule_.min_size, out_indices_, out_params_, out_sizes_);
    }

    dense2D<double>& coords_;
    remesh_rule const& rule_;
    dense1D<double> chain_sizes_;
    dense1D<unsigned> extended_nodes_;
    dense1D<double> extended_sizes_;
    dense1D<unsigned> out_indices_;
    dense1D<double> out_params_;
    dense1D<double> out_sizes_;
};

/// Meshes all chains but the hard edges, which pass as they are.
int mesh_chains(dense2D<double>& coords, old_mesh const& old, remesh_rule const& rule, cut_lines const& lines,
    dense2D<unsigned>& new_connect, dense1D<unsigned>& new_colors)
{
    chain_mesher mesher(coords, rule);
    dense1D<unsigned> nodes;
    std::size_t const longest = lines.chains.longest();
    if (!mesher.reserve(longest) || !nodes.reserve(longest + 1)) return no_storage;

    for (std::size_t c = 0; c < lines.chains.size(); ++c) {
        auto const elements = lines.chains.chain(c);
        bool const is_hard = elements.size() == 1 && lines.hard_edges.contains(elements[0]);
        if (!chain_node_list(old.connect, elements, nodes)) return no_storage;

        int status = is_hard ? 0 : mesher.run(nodes, lines.node_sizes);
        std::size_t const before = new_connect.cols();
        if (status >= 0) status = indices_to_connectE2(is_hard ? nodes : mesher.mesh(), new_connect);
        if (status < 0) return status;
        if (!new_colors.push_back_n(lines.chain_colors[c], new_connect.cols() - before)) return no_storage;
    }
    return 0;
}

[[nodiscard]] bool list_keys(hbuckets_set const& set, dense1D<unsigned>& keys)
{
    if (!keys.reserve(set.keys())) return false;
    set.for_each([&](unsigned key) { keys.push_back(key); });
    std::sort(keys.begin(), keys.end());
    return true;
}

} // namespace

int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size,
    dense1D<double> const& sizes, dense1D<unsigned>& colors, dense1D<unsigned>& hard_nodes,
    dense1D<unsigned> const& hard_edges, bool force_even, double max_angle, double deviation_tolerance,
    double max_gradation, double min_size, unsigned min_elements, unsigned max_elements) noexcept
{
    if (connect.empty()) return 0;
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (!vornik::check_IDs(connect, edge, coords.cols())) return bad_argument(2);
    if (!(default_size >= 0)) return bad_argument(3);
    if (!vornik::check_IDs(hard_edges, connect.cols())) return bad_argument(7);
    if (!(max_angle >= 0)) return bad_argument(9);
    if (!(max_gradation >= 0)) return bad_argument(11);
    if (!(min_size >= 0)) return bad_argument(12);
    if (min_elements > max_elements) return bad_argument(13);

    dense2D<unsigned> const elements = connect.sub_matrix(0, 0, 2, connect.cols());
    old_mesh const old{elements, sizes, colors, hard_nodes, hard_edges, largest_entry(elements)};
    remesh_rule const rule{default_size, force_even, max_angle,
        std::isnan(deviation_tolerance) ? 0 : deviation_tolerance, max_gradation, min_size, min_elements,
        max_elements};
    cut_lines lines;
    if (int const status = cut(coords, old, rule, lines); status < 0) return status;
    if (!set_node_sizes(coords, old, rule, lines) || !set_chain_colors(old, lines)) return no_storage;

    std::size_t const base_columns = coords.cols();
    dense2D<unsigned> new_connect;
    dense1D<unsigned> new_colors;
    dense1D<unsigned> break_nodes;
    int status = mesh_chains(coords, old, rule, lines, new_connect, new_colors);
    if (status >= 0 && !list_keys(lines.break_nodes, break_nodes)) status = no_storage;
    auto const old_colors = colors;
    if (status >= 0) {
        colors = new_colors; // first, since `hard_nodes` may be the same object
        if (!hard_nodes.reserve(break_nodes.size())) status = no_storage;
    }
    if (status < 0) {
        colors = old_colors;
        truncate(coords, base_columns);
        return status;
    }
    connect.shallow_copy(new_connect);
    hard_nodes.clear();
    static_cast<void>(append_values(break_nodes, hard_nodes)); // there is room
    return 0;
}

int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size,
    dense1D<unsigned>& colors, bool force_even, double max_angle, double deviation_tolerance,
    double max_gradation, double min_size, unsigned min_elements, unsigned max_elements) noexcept
{
    dense1D<unsigned> hard_nodes;
    int const status = remesh_lines(coords, connect, default_size, {}, colors, hard_nodes, {}, force_even,
        max_angle, deviation_tolerance, max_gradation, min_size, min_elements, max_elements);
    return status < -4 ? status + 3 : status; // there are three arguments less
}

int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size, bool force_even,
    double max_angle, double deviation_tolerance, double max_gradation, double min_size,
    unsigned min_elements, unsigned max_elements) noexcept
{
    dense1D<unsigned> colors;
    dense1D<unsigned> hard_nodes;
    int const status = remesh_lines(coords, connect, default_size, {}, colors, hard_nodes, {}, force_even,
        max_angle, deviation_tolerance, max_gradation, min_size, min_elements, max_elements);
    return status < -7 ? status + 4 : status; // there are four arguments less
}

} // namespace trelk::vornik1d

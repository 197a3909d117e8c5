#include "network_cut.h"

#include <algorithm>
#include <numeric>

#include <vornik1d/helpers.h>

#include "arrays/columns.h"
#include "remesh/mesh_network.h"
#include "remesh/network_rule.h"
#include "remesh/old_mesh.h"

namespace trelk::vornik1d {

namespace {

/// The nodes and elements of a batch, chain by chain.
class batch_chains
{
public:
    [[nodiscard]] bool build(chain_batch const& batch)
    {
        std::size_t const count = batch.counts.size();
        std::size_t const elements =
            std::accumulate(batch.counts.begin(), batch.counts.end(), std::size_t{0});
        if (!connect.resize(2, elements) || !chains.chain_starts.resize(count + 1) ||
            !chains.chain_elements.resize(elements))
            return false;
        std::iota(chains.chain_elements.begin(), chains.chain_elements.end(), 0U);
        unsigned e = 0;
        for (std::size_t c = 0; c < count; ++c) {
            chains.chain_starts[c] = e;
            unsigned const start = first_node(c);
            unsigned const end = start + batch.counts[c];
            for (unsigned k = start; k < end; ++k, ++e) connect(0, e) = k, connect(1, e) = k + 1;
            if (batch.nodes[start] == batch.nodes[end]) connect(1, e - 1) = start;
        }
        chains.chain_starts[count] = e;
        return true;
    }

    unsigned first_node(std::size_t c) const { return chains.chain_starts[c] + static_cast<unsigned>(c); }
    bool is_closed(std::size_t c) const
    {
        return connect(0, chains.chain_starts[c]) == connect(1, chains.chain_starts[c + 1] - 1);
    }

    dense2D<unsigned> connect;
    line_chains chains;
};

remesh_options options_of(remesh_rule const& rule)
{
    remesh_options options;
    options.deviation_tolerance = rule.deviation_tolerance;
    options.max_angle = rule.max_angle;
    options.max_gradation = rule.max_gradation;
    options.min_size = rule.min_size;
    options.force_even = rule.force_even;
    options.min_elements = static_cast<unsigned>(rule.min_elements);
    options.max_elements = static_cast<unsigned>(rule.max_elements);
    return options;
}

/// A chain as a network of its own, and its mesh with more elements.
struct raised_mesh
{
    dense2D<double> coords;
    dense2D<unsigned> connect;
    std::size_t old_nodes = 0;

    /// Returns 0 or the status of `remesh_lines`. `is_helped`: the chain now has `min_elements` elements.
    int mesh(chain_batch const& batch, unsigned first_node, unsigned count, bool is_closed,
        remesh_rule const& rule, unsigned min_elements, bool& is_helped)
    {
        old_nodes = is_closed ? count : count + 1;
        remesh_options options = options_of(rule);
        if (!coords.copy(batch.coords.sub_matrix(0, first_node, batch.coords.rows(), old_nodes)) ||
            !connect.resize(2, count) || !options.sizes.copy(batch.sizes.sub_vector(first_node, old_nodes)))
            return no_storage;
        for (unsigned k = 0; k < count; ++k) connect(0, k) = k, connect(1, k) = k + 1 < old_nodes ? k + 1 : 0;

        if (is_closed) {
            dense1D<double> sizes;
            int const status = loop_sizes(coords, connect, rule.default_size, options, min_elements, sizes);
            if (status < 0) return status;
            options.sizes = sizes;
        } else {
            options.min_elements = min_elements;
        }
        int const status = remesh_lines(coords, connect, rule.default_size, options);
        is_helped = connect.cols() >= min_elements;
        return status;
    }
};

/// Puts the meshes of the chains together again, with other meshes for some of them.
class loop_raiser
{
public:
    loop_raiser(chain_batch const& batch, batch_chains const& lines, remesh_rule const& rule,
        unsigned min_elements, batch_mesh& mesh)
        : batch_(batch), lines_(lines), rule_(rule), min_elements_(min_elements), mesh_(mesh)
    {}

    /// The least number of elements of a chain.
    unsigned fewest(std::size_t c) const
    {
        if (lines_.is_closed(c)) return min_elements_;
        return c < batch_.fewest.size() ? std::min(batch_.fewest[c], most_elements()) : 0;
    }

    /// Whether a chain has too few elements. Chains of length 0 and hard edges do not count.
    bool is_short(std::size_t c) const
    {
        if (mesh_.counts[c] >= fewest(c)) return false;
        if (std::binary_search(batch_.hard.begin(), batch_.hard.end(), c)) return false;
        double const* const start = batch_.coords.col(lines_.first_node(c));
        std::size_t const rows = batch_.coords.rows();
        double const* const end = start + rows * batch_.counts[c];
        for (double const* node = start; node != end; node += rows)
            if (!std::equal(node, node + rows, start)) return true;
        return false;
    }

    int run()
    {
        batch_mesh result;
        std::size_t element = 0;
        unsigned base = old_nodes(); // of the new nodes of the chain
        for (std::size_t c = 0; c < mesh_.counts.size(); ++c) {
            std::size_t const end = element + mesh_.counts[c];
            unsigned const new_nodes = count_new_nodes(element, end);
            raised_mesh loop;
            bool is_helped = false;
            bool const was_short = is_short(c);
            if (was_short) {
                int const status = loop.mesh(batch_, lines_.first_node(c), batch_.counts[c],
                    lines_.is_closed(c), rule_, fewest(c), is_helped);
                if (status != 0) return status;
            }
            bool const is_raised = was_short && loop.connect.cols() > mesh_.counts[c];
            bool const is_kept = is_raised ? put_loop(loop, lines_.first_node(c), result)
                                           : put_chain(element, end, base, new_nodes, result);
            auto const count = static_cast<unsigned>(is_raised ? loop.connect.cols() : mesh_.counts[c]);
            auto const number = static_cast<unsigned>(c);
            if (!is_kept || !result.counts.push_back(count) ||
                (is_raised && !result.raised.push_back(number)) ||
                (was_short && !is_helped && !result.short_loops.push_back(number)))
                return no_storage;
            element = end;
            base += new_nodes;
        }
        mesh_ = result;
        return 0;
    }

private:
    unsigned most_elements() const { return static_cast<unsigned>(rule_.max_elements); }
    unsigned old_nodes() const { return static_cast<unsigned>(batch_.nodes.size()); }

    unsigned count_new_nodes(std::size_t begin, std::size_t end) const
    {
        unsigned count = 0;
        for (std::size_t e = begin; e + 1 < end; ++e) count += mesh_.connect(1, e) >= old_nodes();
        return count;
    }

    static bool put_nodes(
        dense2D<double> const& coords, std::size_t first, std::size_t count, batch_mesh& result)
    {
        return count == 0 ||
               append_columns(coords.sub_matrix(0, first, coords.rows(), count), result.new_coords);
    }

    static bool put_element(unsigned a, unsigned b, batch_mesh& result)
    {
        std::size_t const e = result.connect.cols();
        if (!result.connect.reserve(2, e + 1, 2) || !result.connect.resize(2, e + 1)) return false;
        result.connect(0, e) = a, result.connect(1, e) = b;
        return true;
    }

    bool put_chain(
        std::size_t begin, std::size_t end, unsigned base, unsigned new_nodes, batch_mesh& result) const
    {
        unsigned const first = old_nodes() + static_cast<unsigned>(columns(result.new_coords));
        auto const renumber = [&](unsigned node) { return node < old_nodes() ? node : node - base + first; };
        if (!put_nodes(mesh_.new_coords, base - old_nodes(), new_nodes, result)) return false;
        for (std::size_t e = begin; e < end; ++e)
            if (!put_element(renumber(mesh_.connect(0, e)), renumber(mesh_.connect(1, e)), result))
                return false;
        return true;
    }

    bool put_loop(raised_mesh const& loop, unsigned first_node, batch_mesh& result) const
    {
        auto const old = static_cast<unsigned>(loop.old_nodes);
        unsigned const first = old_nodes() + static_cast<unsigned>(columns(result.new_coords));
        auto const renumber = [&](unsigned node) {
            return node < old ? first_node + node : node - old + first;
        };
        if (!put_nodes(loop.coords, old, loop.coords.cols() - old, result)) return false;
        for (std::size_t e = 0; e < loop.connect.cols(); ++e)
            if (!put_element(renumber(loop.connect(0, e)), renumber(loop.connect(1, e)), result))
                return false;
        return true;
    }

    static std::size_t columns(dense2D<double> const& matrix) { return matrix.empty() ? 0 : matrix.cols(); }

    chain_batch const& batch_;
    batch_chains const& lines_;
    remesh_rule const& rule_;
    unsigned min_elements_;
    batch_mesh& mesh_;
};

template <std::size_t N>
int mesh_chains(
    chain_batch const& batch, remesh_rule const& rule, unsigned min_loop_elements, batch_mesh& mesh)
{
    batch_chains chains;
    cut_lines lines;
    dense2D<double> coords;
    std::size_t const count = batch.counts.size();
    if (!chains.build(batch) || !lines.chain_colors.resize(count) || !coords.copy(batch.coords) ||
        !mesh.counts.resize(count, 0))
        return no_storage;
    lines.chains = chains.chains;
    lines.node_sizes = batch.sizes;
    std::iota(lines.chain_colors.begin(), lines.chain_colors.end(), 0U);
    if (!lines.hard_edges.init(batch.hard.size() + 1, batch.hard.size() + 1)) return no_storage;
    for (unsigned const c : batch.hard) lines.hard_edges.insert(chains.chains.chain_starts[c]);
    if (!lines.hard_edges.is_complete()) return no_storage;

    dense1D<double> const no_sizes;
    dense1D<unsigned> const none;
    old_mesh const old{.connect = chains.connect,
        .sizes = no_sizes,
        .colors = none,
        .hard_nodes = none,
        .hard_edges = none,
        .max_node = static_cast<unsigned>(batch.nodes.size() - 1)};
    new_mesh made;
    if (int const status = mesh_network<N>(coords, old, rule, lines, made); status != 0) return status;

    for (unsigned const c : made.colors) ++mesh.counts[c];
    mesh.connect = made.connect;
    std::size_t const old_nodes = batch.nodes.size();
    if (coords.cols() > old_nodes &&
        !mesh.new_coords.copy(coords.sub_matrix(0, old_nodes, N, coords.cols() - old_nodes)))
        return no_storage;

    auto const wanted = static_cast<unsigned>(std::min<std::uint64_t>(min_loop_elements, rule.max_elements));
    loop_raiser raiser(batch, chains, rule, wanted, mesh);
    for (std::size_t c = 0; c < count; ++c)
        if (raiser.is_short(c)) return raiser.run();
    return 0;
}

} // namespace

int network_cut::cut(network_input const& network, remesh_rule const& rule)
{
    network_ = network;
    if (int const status = check_network(network.coords, network.connect, rule, network.hard_edges);
        status != 0)
        return status;
    old_mesh const old{.connect = network_.connect,
        .sizes = network_.sizes,
        .colors = network_.colors,
        .hard_nodes = network_.hard_nodes,
        .hard_edges = network_.hard_edges,
        .max_node = largest_entry(network_.connect)};
    return by_dimension(network.coords, [&](auto dim) {
        bool const is_cut = cut_into_chains<dim>(network_.coords, old, rule, true, lines_) &&
                            set_node_sizes<dim>(network_.coords, old, rule, lines_) &&
                            set_chain_colors(old, lines_);
        return is_cut ? 0 : no_storage;
    });
}

bool network_cut::gather(std::size_t first, std::size_t last, chain_batch& batch) const
{
    auto const& starts = lines_.chains.chain_starts;
    std::size_t const count = starts[last] - starts[first] + (last - first);
    std::size_t const rows = network_.coords.rows();
    if (!batch.nodes.resize(count) || !batch.coords.resize(rows, count) || !batch.sizes.resize(count) ||
        !batch.counts.resize(last - first))
        return false;
    std::size_t k = 0;
    auto const put = [&](unsigned node) {
        batch.nodes[k] = node;
        std::copy_n(network_.coords.col(node), rows, batch.coords.col(k));
        batch.sizes[k++] = lines_.node_sizes[node];
    };
    bool const has_hard_edges = lines_.hard_edges.keys() > 0;
    for (std::size_t c = first; c < last; ++c) {
        unsigned const* const chain = elements(c);
        auto const elements_of_chain = static_cast<unsigned>(lines_.chains.element_count(c));
        batch.counts[c - first] = elements_of_chain;
        put(network_.connect(0, chain[0]));
        for (unsigned e = 0; e < elements_of_chain; ++e) put(network_.connect(1, chain[e]));
        if (has_hard_edges && lines_.hard_edges.contains(chain[0]) &&
            !batch.hard.push_back(static_cast<unsigned>(c - first)))
            return false;
    }
    return true;
}

int mesh_batch(
    chain_batch const& batch, remesh_rule const& rule, unsigned min_loop_elements, batch_mesh& mesh)
{
    return by_dimension(
        batch.coords, [&](auto dim) { return mesh_chains<dim>(batch, rule, min_loop_elements, mesh); });
}

} // namespace trelk::vornik1d

#pragma once

// Inline helpers for steps at which people go wrong. They stand on the exported functions, throw nothing, and
// run in linear time unless they say otherwise.

#include <algorithm>
#include <cstddef>

#include <vornik/neighbors.h>
#include <vornik1d/vornik1d.h>

namespace trelk::vornik1d {

/// @defgroup helpers Helpers
/// `#include <vornik1d/helpers.h>`: status texts, guide nodes, neighbours, and sizes for closed loops.
/// @{

/// Puts a status into words: "success", "argument 4 is wrong", "no memory ...". Arguments are counted from 1
/// in the overload that was called. For an overload with options, pass the options too: the text then names
/// the argument or option, for example "max_angle is wrong".
[[nodiscard]] inline char const* status_text(int status) noexcept
{
    constexpr char const* texts[] = {"success", "argument 1 is wrong", "argument 2 is wrong",
        "argument 3 is wrong", "argument 4 is wrong", "argument 5 is wrong", "argument 6 is wrong",
        "argument 7 is wrong", "argument 8 is wrong", "argument 9 is wrong", "argument 10 is wrong",
        "argument 11 is wrong", "argument 12 is wrong", "argument 13 is wrong"};
    if (status >= 0) return texts[0]; // `mesh_reorient` returns a count
    if (status > -14) return texts[-status];
    bool const is_memory = status == no_storage || status == -196 || status == -195; // short `remesh_lines`
    return is_memory ? "no memory, or sizes so small that 32-bit numbers cannot name the nodes"
                     : "unknown status";
}

/// Puts a status of `remesh_lines` into words.
[[nodiscard]] inline char const* status_text(int status, remesh_options const&) noexcept
{
    switch (status) {
    case -1:
        return "coords is wrong";
    case -2:
        return "connect, or the coords of its nodes, are wrong";
    case -3:
        return "default_size, or an entry of sizes, is wrong";
    case -5:
        return "min_elements is wrong";
    case -7:
        return "hard_edges is wrong";
    case -9:
        return "max_angle is wrong";
    case -11:
        return "max_gradation is wrong";
    case -12:
        return "min_size is wrong";
    case -13:
        return "min_elements is above max_elements";
    default:
        return status_text(status);
    }
}

/// Puts a status of `mesh_line` into words.
[[nodiscard]] inline char const* status_text(int status, line_options const&) noexcept
{
    switch (status) {
    case -1:
        return "coords is wrong";
    case -2:
        return "the chain, or the coords of its nodes, are wrong";
    case -3:
        return "params is wrong";
    case -4:
        return "sizes or metrics are wrong";
    case -6:
        return "min_elements or max_elements is wrong";
    case -11:
        return "out_metrics has the wrong row count";
    default:
        return status_text(status);
    }
}

/// Puts a status of `mesh_spline` into words.
[[nodiscard]] inline char const* status_text(int status, spline_options const&) noexcept
{
    switch (status) {
    case -1:
        return "coords is wrong";
    case -2:
        return "the chain is wrong; it needs guide nodes at both ends, see with_guides";
    case -3:
        return "sizes or metrics are wrong";
    case -5:
        return "min_elements or max_elements is wrong";
    case -8:
        return "min_size is wrong";
    case -13:
        return "out_metrics has the wrong row count";
    default:
        return status_text(status);
    }
}

/// @cond inside
namespace helpers_detail {

/// Positions in a chain: its entries and a guide before and after them. Empty if the chain is too short or
/// memory runs out.
inline dense1D<unsigned> guided_positions(dense1D<unsigned> const& chain, bool closed) noexcept
{
    std::size_t n = chain.size();
    if (closed && n > 1 && chain[0] == chain[n - 1]) --n;
    dense1D<unsigned> result;
    if (n < (closed ? 3U : 2U) || n >= no_limit || !result.resize(closed ? n + 3 : n + 2)) return {};

    auto const last = static_cast<unsigned>(n - 1);
    result[0] = closed ? last : 0;
    for (unsigned k = 0; k <= last; ++k) result[k + 1] = k;
    result[n + 1] = closed ? 0 : last;
    if (closed) result[n + 2] = 1;
    return result;
}

} // namespace helpers_detail
/// @endcond

/// Adds the guide nodes that `mesh_spline` needs to a chain.
///
/// An open chain a, b, ..., z becomes a, a, b, ..., z, z. A closed chain a, b, ..., z becomes z, a, b, ...,
/// z, a, b; its first node may or may not be repeated at its end.
///
/// @return a new list, which is empty if an open chain has fewer than 2 nodes, a closed one fewer than 3, or
///         if memory runs out. `mesh_spline` then returns -2.
[[nodiscard]] inline dense1D<unsigned> with_guides(dense1D<unsigned> const& chain, bool closed) noexcept
{
    dense1D<unsigned> result = helpers_detail::guided_positions(chain, closed);
    for (unsigned& entry : result) entry = chain[entry];
    return result;
}

/// The sizes that go with `with_guides(chain, closed)`, from a size per entry of `chain`.
/// @return a new list; empty if `sizes` is shorter than `chain`, and where the other overload is empty.
[[nodiscard]] inline dense1D<double> with_guides(
    dense1D<unsigned> const& chain, dense1D<double> const& sizes, bool closed) noexcept
{
    dense1D<unsigned> const positions = helpers_detail::guided_positions(chain, closed);
    dense1D<double> result;
    if (sizes.size() < chain.size() || !result.resize(positions.size())) return {};
    for (std::size_t k = 0; k < positions.size(); ++k) result[k] = sizes[positions[k]];
    return result;
}

/// The tensors that go with `with_guides(chain, closed)`, from a column per entry of `chain`.
/// @return a new matrix; empty if `metrics` has fewer columns than `chain` entries, and where the first
///         overload is empty.
[[nodiscard]] inline dense2D<double> with_guides(
    dense1D<unsigned> const& chain, dense2D<double> const& metrics, bool closed) noexcept
{
    dense1D<unsigned> const positions = helpers_detail::guided_positions(chain, closed);
    dense2D<double> result;
    if (metrics.cols() < chain.size() || !result.resize(metrics.rows(), positions.size())) return {};
    for (std::size_t k = 0; k < positions.size(); ++k)
        std::copy_n(metrics.col(positions[k]), metrics.rows(), result.col(k));
    return result;
}

/// Finds the neighbours that `mesh_reorient` needs.
///
/// Two elements are neighbours at a node where they alone meet. At an end of a line, and where three or more
/// elements meet, an element has no neighbour (4294967295).
///
/// @param connect  an element per column, its end nodes in rows 0 and 1, at least 2 rows.
/// @return as many rows as `connect`: row 0 of column e is the neighbour of element e at its second node, row
///         1 the one at its first node. Empty if `connect` is empty or has 1 row, or if memory runs out;
///         `mesh_reorient` then returns -2.
[[nodiscard]] inline dense2D<unsigned> neighbors_of(dense2D<unsigned> const& connect) noexcept
{
    dense2D<unsigned> result;
    if (connect.rows() < 2 || !vornik::find_neighbors(connect, result)) return {};
    if (!result.empty() && !result.resize(connect.rows(), connect.cols(), vornik::none)) return {};
    return result;
}

/// @cond inside
namespace helpers_detail {

/// The closed chains of a network: chains that begin and end at one node.
class closed_chains
{
public:
    dense1D<unsigned> labels; ///< For each element the number of its closed chain, or `no_color`.

    /// Follows the chains of `connect`, which are cut at `break_nodes`. False if memory runs out.
    [[nodiscard]] bool find(dense2D<double> const& coords, dense2D<unsigned> const& connect,
        dense1D<unsigned> const& break_nodes) noexcept
    {
        std::size_t const n = coords.cols();
        std::size_t const count = connect.cols();
        dense1D<unsigned> is_visited;
        if (!ends_.resize(n, 0) || !next_.resize(n, no_color) || !is_visited.resize(count, 0) ||
            !labels.resize(count, no_color))
            return false;
        constexpr unsigned arrives = 1, leaves = 2, is_end = 4;
        for (unsigned e = 0; e < count; ++e) {
            unsigned& start = ends_[connect(0, e)];
            start |= (start & leaves) != 0 ? is_end : leaves;
            unsigned& end = ends_[connect(1, e)];
            end |= (end & arrives) != 0 ? is_end : arrives;
            next_[connect(0, e)] = e;
        }
        for (unsigned& at_node : ends_) at_node = at_node == (arrives | leaves) ? 0 : 1;
        for (unsigned const node : break_nodes) ends_[node] = 1;

        for (bool const from_ends : {true, false}) // then rings without an end
            for (unsigned e = 0; e < count; ++e)
                if (is_visited[e] == 0 && (!from_ends || ends_[connect(0, e)] != 0))
                    if (!follow(coords, connect, e, is_visited)) return false;
        return true;
    }

    std::size_t size() const noexcept { return lengths_.size(); }

    /// Lowers the sizes at the nodes of closed chain `c` to its length divided by `parts`. If other chains
    /// meet it at its end node, the size there is only lowered to the length of `c`, and only if it is fixed
    /// from outside.
    void lower_sizes(std::size_t c, dense2D<unsigned> const& connect, double parts, double default_size,
        double min_size, dense1D<double>& sizes) const noexcept
    {
        for (std::size_t k = starts_[c]; k < starts_[c + 1]; ++k) {
            unsigned const node = connect(0, elements_[k]);
            bool const is_end = ends_[node] != 0;
            if (is_end && !(sizes[node] > lengths_[c] || min_size > lengths_[c])) continue;
            double const size = sizes[node] > 0 ? sizes[node] : default_size;
            sizes[node] = std::min(size, is_end ? lengths_[c] : lengths_[c] / parts);
        }
    }

private:
    /// Follows the chain that begins with element `first`, and keeps it if it is closed.
    bool follow(dense2D<double> const& coords, dense2D<unsigned> const& connect, unsigned first,
        dense1D<unsigned>& is_visited) noexcept
    {
        std::size_t const start = elements_.size();
        dense1D<unsigned> nodes;
        unsigned e = first;
        for (;;) {
            is_visited[e] = 1;
            if (!elements_.push_back(e) || !nodes.push_back(connect(0, e))) return false;
            unsigned const end = connect(1, e);
            if (end == connect(0, first) || ends_[end] != 0) break;
            e = next_[end];
        }
        double chain_length = 0;
        bool const is_closed = connect(1, e) == connect(0, first);
        if (!nodes.push_back(connect(1, e))) return false;
        if (!is_closed || length(coords, nodes, chain_length) != 0 || !(chain_length > 0))
            return elements_.resize(start);

        for (std::size_t k = start; k < elements_.size(); ++k)
            labels[elements_[k]] = static_cast<unsigned>(size());
        return (!starts_.empty() || starts_.push_back(0)) && lengths_.push_back(chain_length) &&
               starts_.push_back(static_cast<unsigned>(elements_.size()));
    }

    dense1D<unsigned> ends_; // by node: not 0 if chains end there
    dense1D<unsigned> next_; // by node: the element that leaves it
    dense1D<unsigned> elements_;
    dense1D<unsigned> starts_; // of each closed chain in `elements_`, and their end
    dense1D<double> lengths_;
};

/// Remeshes a copy of a network. `colors` and `break_nodes` become those of the new mesh.
inline int try_remesh(dense2D<double> const& coords, dense2D<unsigned> const& connect, double default_size,
    remesh_options options, dense1D<unsigned>& colors, dense1D<unsigned>& break_nodes) noexcept
{
    dense2D<double> new_coords;
    dense2D<unsigned> new_connect = connect; // replaced, not changed
    if (!new_coords.copy(coords)) return no_storage;
    options.colors = &colors, options.break_nodes = &break_nodes;
    return remesh_lines(new_coords, new_connect, default_size, options);
}

} // namespace helpers_detail
/// @endcond

/// Finds sizes with which `remesh_lines` keeps closed loops from collapsing.
///
/// A ring of length 10 and size 5 becomes 2 elements, and then a single element from a node to itself. This
/// function lowers the sizes at the nodes of such rings until each has `min_elements` elements:
///
/// ```cpp
/// dense1D<double> sizes;
/// int status = loop_sizes(coords, connect, 5.0, options, 3, sizes);
/// if (status > 0) std::puts("some loops collapse nevertheless");
/// options.sizes = sizes;
/// if (status >= 0) status = remesh_lines(coords, connect, 5.0, options);
/// ```
///
/// With tolerance 0 a loop that is saved keeps all its nodes, as other bent lines do. A positive tolerance
/// makes it coarse.
///
/// A closed loop is a chain that begins and ends at one node, whether other chains meet it there or not. A
/// ring with two corners or hard nodes consists of two chains, and is not a closed loop. If no loop has too
/// few elements, `sizes` equals `options.sizes` with zeros appended.
///
/// The sizes of other chains stay, with one exception: at a node where other chains meet a loop, a given size
/// or a `min_size` above the length of the loop is lowered to that length.
///
/// @param coords, connect, default_size, options  as `remesh_lines` will get them; none is changed.
/// @param min_elements  the least number of elements of a closed loop, usually 3. Loops of length 0 do not
///                 count.
/// @param[out] sizes    replaced by a size per node, 0 where the default holds; unchanged on a failure.
/// @return 0, also for an empty `connect`; n > 0 if n loops still have too few elements (`status_text` does
///         not know that this is no success); -5 if `min_elements` is above `options.max_elements`; otherwise
///         as `remesh_lines`. A lack of memory can show in `remesh_lines` alone.
///
/// Cost: remeshes copies of the network, once if it has no loop, usually 2 to 6 times if loops collapse, at
/// most 100 times. It gives up after 25 trials in which no loop has gained an element.
[[nodiscard]] inline int loop_sizes(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    double default_size, remesh_options const& options, unsigned min_elements,
    dense1D<double>& sizes) noexcept
{
    constexpr int most_trials = 100;
    constexpr int most_idle_trials = 25; // in which no loop gains elements
    dense1D<double> result;
    dense1D<unsigned> colors;
    dense1D<unsigned> break_nodes;
    if (!result.copy(options.sizes) || (options.colors && !colors.copy(*options.colors))) return no_storage;
    if (connect.empty()) return sizes = result, 0;
    if (min_elements > options.max_elements) return -5;

    remesh_options trial = options;
    if (options.min_elements <= options.max_elements) // otherwise -13
        trial.min_elements = std::min(options.min_elements, 1U), trial.max_elements = 1;
    int status = helpers_detail::try_remesh(coords, connect, default_size, trial, colors, break_nodes);
    if (status != 0) return status;

    helpers_detail::closed_chains loops;
    dense1D<double> parts; // into which each loop is cut by its sizes
    dense1D<unsigned> counts;
    if (!loops.find(coords, connect, break_nodes) || !parts.resize(loops.size(), min_elements) ||
        !result.resize(std::max(result.size(), coords.cols()), 0) || !counts.resize(loops.size()))
        return no_storage;

    int unhelped = 0;
    int idle = 0;
    std::size_t most_elements = 0;
    for (int k = 0; k < most_trials && idle < most_idle_trials && loops.size() > 0; ++k) {
        trial = options;
        trial.sizes = result;
        trial.hard_nodes = break_nodes;
        dense1D<unsigned> same_break_nodes;
        if (!colors.copy(loops.labels)) return no_storage;
        status = helpers_detail::try_remesh(coords, connect, default_size, trial, colors, same_break_nodes);
        if (status != 0) return status;

        std::fill(counts.begin(), counts.end(), 0);
        for (unsigned const label : colors)
            if (label < loops.size()) ++counts[label];
        unhelped = 0;
        std::size_t elements = 0;
        for (std::size_t c = 0; c < loops.size(); ++c) {
            elements += std::min(counts[c], min_elements);
            if (counts[c] >= min_elements) continue;
            loops.lower_sizes(c, connect, parts[c], default_size, options.min_size, result);
            double const largest_step = idle < 5 ? 1.25 : 2;
            parts[c] *= std::clamp(1.02 * min_elements / std::max(counts[c], 1U), 1.02, largest_step);
            ++unhelped;
        }
        if (unhelped == 0) break;
        idle = elements > most_elements ? 0 : idle + 1;
        most_elements = std::max(most_elements, elements);
    }
    sizes = result;
    return unhelped;
}

/// @}

} // namespace trelk::vornik1d

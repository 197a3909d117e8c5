#include <vornik1d/vornik1d.h>

#include <cstddef>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "remesh/cut_lines.h"
#include "remesh/mesh_network.h"
#include "remesh/network_rule.h"
#include "remesh/old_mesh.h"

namespace trelk::vornik1d {

namespace {

/// Lists that an overload may not have. `hard_nodes` is null if `colors` is.
struct network_lists
{
    dense1D<double> const& sizes;
    dense1D<unsigned> const& hard_edges;
    dense1D<unsigned>* colors;
    dense1D<unsigned>* hard_nodes;
};

/// Replaces the caller's mesh; on false all lists are as they were.
[[nodiscard]] bool publish(new_mesh const& mesh, dense1D<unsigned> const& break_nodes,
    dense2D<unsigned>& connect, network_lists const& lists)
{
    dense1D<unsigned> const old_colors = lists.colors ? *lists.colors : dense1D<unsigned>();
    if (lists.colors) *lists.colors = mesh.colors; // first, since `hard_nodes` may be the same object
    if (lists.hard_nodes) {
        if (!lists.hard_nodes->reserve(break_nodes.size())) {
            *lists.colors = old_colors;
            return false;
        }
        lists.hard_nodes->clear();
        static_cast<void>(append_values(break_nodes, *lists.hard_nodes)); // there is room
    }
    connect.shallow_copy(mesh.connect);
    return true;
}

/// Remeshes lines whose arguments have been checked. On a failure the caller's objects are as they were.
template <std::size_t N>
int remesh_network(
    dense2D<double>& coords, dense2D<unsigned>& connect, remesh_rule const& rule, network_lists const& lists)
{
    dense2D<unsigned> const elements = connect.sub_matrix(0, 0, 2, connect.cols());
    dense1D<unsigned> const none;
    old_mesh const old{.connect = elements,
        .sizes = lists.sizes,
        .colors = lists.colors ? *lists.colors : none,
        .hard_nodes = lists.hard_nodes ? *lists.hard_nodes : none,
        .hard_edges = lists.hard_edges,
        .max_node = largest_entry(elements)};
    cut_lines lines;
    if (!cut_into_chains<N>(coords, old, rule, lists.hard_nodes != nullptr, lines)) return no_storage;
    if (!set_node_sizes<N>(coords, old, rule, lines)) return no_storage;
    if (lists.colors && !set_chain_colors(old, lines)) return no_storage;

    std::size_t const base_columns = coords.cols();
    new_mesh mesh;
    int status = mesh_network<N>(coords, old, rule, lines, mesh);
    if (status == 0 && !publish(mesh, lines.break_nodes, connect, lists)) status = no_storage;
    if (status != 0) truncate(coords, base_columns);
    return status;
}

/// Checks the arguments and remeshes. Returns the status of the fullest overload.
int check_and_remesh(
    dense2D<double>& coords, dense2D<unsigned>& connect, remesh_rule const& rule, network_lists const& lists)
{
    if (connect.empty()) return 0;
    if (int const status = check_network(coords, connect, rule, lists.hard_edges); status != 0) return status;

    return by_dimension(coords, [&](auto dim) { return remesh_network<dim>(coords, connect, rule, lists); });
}

} // namespace

int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size,
    dense1D<double> const& sizes, dense1D<unsigned>& colors, dense1D<unsigned>& hard_nodes,
    dense1D<unsigned> const& hard_edges, bool force_even, double max_angle, double deviation_tolerance,
    double max_gradation, double min_size, unsigned min_elements, unsigned max_elements) noexcept
{
    return check_and_remesh(coords, connect,
        network_rule(default_size, force_even, max_angle, deviation_tolerance, max_gradation, min_size,
            min_elements, max_elements),
        {.sizes = sizes, .hard_edges = hard_edges, .colors = &colors, .hard_nodes = &hard_nodes});
}

int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size,
    dense1D<unsigned>& colors, bool force_even, double max_angle, double deviation_tolerance,
    double max_gradation, double min_size, unsigned min_elements, unsigned max_elements) noexcept
{
    int const status = check_and_remesh(coords, connect,
        network_rule(default_size, force_even, max_angle, deviation_tolerance, max_gradation, min_size,
            min_elements, max_elements),
        {.sizes = {}, .hard_edges = {}, .colors = &colors, .hard_nodes = nullptr});
    return status < -4 ? status + 3 : status; // three arguments less before the one at fault
}

int remesh_lines(dense2D<double>& coords, dense2D<unsigned>& connect, double default_size, bool force_even,
    double max_angle, double deviation_tolerance, double max_gradation, double min_size,
    unsigned min_elements, unsigned max_elements) noexcept
{
    int const status = check_and_remesh(coords, connect,
        network_rule(default_size, force_even, max_angle, deviation_tolerance, max_gradation, min_size,
            min_elements, max_elements),
        {.sizes = {}, .hard_edges = {}, .colors = nullptr, .hard_nodes = nullptr});
    return status < -7 ? status + 4 : status; // four arguments less before the one at fault
}

} // namespace trelk::vornik1d

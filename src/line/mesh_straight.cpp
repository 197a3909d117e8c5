#include <vornik1d/vornik1d.h>

#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "arrays/hand_over.h"
#include "front_door.h"
#include "line/line_mesher.h"
#include "placement/line.h"
#include "placement/target_lists.h"
#include "rules.h"

namespace trelk::vornik1d {

namespace {

/// Meshes each segment by the targets at its ends and lists the nodes of the whole chain. False if memory
/// runs out.
template <class Targets>
[[nodiscard]] bool mesh_segments(dense2D<double>& coords, dense1D<unsigned> const& indices,
    typename Targets::list const& targets, bool force_even, dense1D<unsigned>& nodes)
{
    constexpr double ends[] = {0, 1};
    std::size_t const ld = Targets::ld(targets);
    line_mesher<Targets> mesher(coords, false);
    if (!nodes.push_back(indices[0])) return false;
    for (std::size_t i = 0; i + 1 < indices.size(); ++i) {
        line_view<Targets> const segment{.nodes = indices.data() + i,
            .params = ends,
            .targets = targets.data() + ld * i,
            .target_ld = ld,
            .count = 2};
        if (mesher.run(segment, {{.force_even = force_even}}) != 0) return false;
        truncate(nodes, nodes.size() - 1); // the last node of a segment is the first one of the next
        if (!append_values(mesher.mesh().nodes, nodes)) return false;
    }
    return true;
}

/// Meshes a chain and appends the mesh to the caller's list. On a failure the list and `coords` are as
/// before.
template <std::size_t N, class List>
int mesh_chain(dense2D<double>& coords, dense1D<unsigned> const& indices, List targets, bool force_even,
    dense1D<unsigned>& out_indices)
{
    if (!detach_from(coords, targets)) return no_storage;

    std::size_t const base_columns = coords.cols();
    dense1D<unsigned> nodes;
    if (mesh_segments<targets_in<List, N>>(coords, indices, targets, force_even, nodes) &&
        hand_over(nodes, out_indices))
        return 0;

    truncate(coords, base_columns);
    return no_storage;
}

/// Checks the arguments in the documented order, and meshes. A chain without entries changes nothing.
template <class List>
int check_and_mesh(dense2D<double>& coords, dense1D<unsigned> const& indices, List const& targets,
    bool force_even, dense1D<unsigned>& out_indices)
{
    std::size_t const n = indices.size();
    if (n == 0) return 0;
    if (n == 1 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (!are_valid_targets(targets, n)) return bad_argument(3);
    if (!is_planar_or_spatial(coords)) return bad_argument(1); // after the values of the targets
    if (!fit_dimension(targets, coords)) return bad_argument(3);

    return by_dimension(
        coords, [&](auto dim) { return mesh_chain<dim>(coords, indices, targets, force_even, out_indices); });
}

/// Meshes a chain by one size for all entries.
int mesh_uniformly(dense2D<double>& coords, dense1D<unsigned> const& indices, unsigned element_count,
    bool force_even, dense1D<unsigned>& out_indices)
{
    if (indices.size() < 2 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    double length = 0;
    for (std::size_t i = 1; i < indices.size(); ++i) length += distance(coords, indices[i - 1], indices[i]);
    dense1D<double> sizes;
    if (!sizes.resize(indices.size(), length / element_count)) return no_storage;
    return check_and_mesh(coords, indices, sizes, force_even, out_indices);
}

/// Meshes the segment between two nodes.
int mesh_between(dense2D<double>& coords, unsigned node_a, unsigned node_b, double size_a, double size_b,
    bool force_even, dense1D<unsigned>& out_indices)
{
    if (node_a >= coords.cols()) return bad_argument(2);
    if (node_b >= coords.cols()) return bad_argument(3);
    if (!(size_a > 0)) return bad_argument(4);
    if (!(size_b > 0)) return bad_argument(5);

    unsigned nodes[] = {node_a, node_b};
    double end_sizes[] = {size_a, size_b};
    dense1D<unsigned> const indices(2, &nodes[0]);
    dense1D<double> const sizes(2, &end_sizes[0]);
    if (indices.empty() || sizes.empty()) return no_storage;
    return check_and_mesh(coords, indices, sizes, force_even, out_indices);
}

} // namespace

int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    return check_and_mesh(coords, indices, sizes, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices, dense2D<double> const& metrics,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    return check_and_mesh(coords, indices, metrics, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices, unsigned element_count,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    if (element_count == 0) return 0;
    return mesh_uniformly(coords, indices, element_count, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, double size_a, double size_b,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    return mesh_between(coords, node_a, node_b, size_a, size_b, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, unsigned element_count,
    dense1D<unsigned>& out_indices) noexcept
{
    if (element_count == 0) return 0;
    if (node_a >= coords.cols()) return bad_argument(2);
    if (node_b >= coords.cols()) return bad_argument(3);

    double const size = distance(coords, node_a, node_b) * (1.0 / element_count);
    return mesh_between(coords, node_a, node_b, size, size, false, out_indices);
}

int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, unsigned node_c,
    unsigned element_count, dense1D<unsigned>& out_indices) noexcept
{
    if (element_count == 0) return 0;
    if (node_a >= coords.cols()) return bad_argument(2);
    if (node_b >= coords.cols()) return bad_argument(3);
    if (node_c >= coords.cols()) return bad_argument(4);

    unsigned nodes[] = {node_a, node_b, node_c};
    dense1D<unsigned> const indices(3, &nodes[0]);
    if (indices.empty()) return no_storage;
    return mesh_uniformly(coords, indices, element_count, false, out_indices);
}

} // namespace trelk::vornik1d

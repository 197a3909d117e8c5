#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/append.h"
#include "arrays/vectors.h"

namespace trelk::vornik1d {

/// The line to be meshed: a view of nodes in the order of travel, with a parameter and a target for each.
/// `Targets` defines what a target is. The pointers are raw, for fast loops; call `over` after `coords` has
/// grown.
template <class Targets>
struct line_view
{
    double const* points = nullptr;
    std::size_t ld = Targets::dimension;
    unsigned const* nodes = nullptr; // columns of `points`; null means 0, 1, 2, ...
    double const* params = nullptr;
    double const* targets = nullptr;
    std::size_t target_ld = Targets::width;
    std::size_t count = 0;

    std::size_t last() const { return count - 1; }

    unsigned node(std::size_t i) const { return nodes ? nodes[i] : static_cast<unsigned>(i); }
    double const* point(std::size_t i) const { return points + ld * (nodes ? nodes[i] : i); }
    double const* target(std::size_t i) const { return targets + target_ld * i; }

    /// The same line with the points in `coords`.
    line_view over(dense2D<double> const& coords) const
    {
        line_view result = *this;
        result.points = coords.data();
        result.ld = coords.ld();
        return result;
    }

    /// The same line with the targets of a list, one per entry.
    line_view with_targets(typename Targets::list const& list) const
    {
        line_view result = *this;
        result.targets = list.data();
        result.target_ld = Targets::ld(list);
        return result;
    }

    /// The `size` entries that start at `first`.
    line_view part(std::size_t first, std::size_t size) const
    {
        line_view result = *this;
        result.nodes += first;
        result.params += first;
        result.targets += target_ld * first;
        result.count = size;
        return result;
    }
};

/// A view of the nodes that have been placed on a line. Entry 0 and the last entry are the line's ends; the
/// new nodes are between them.
template <class Targets>
struct placed_line
{
    vector<Targets::dimension> first_point;
    vector<Targets::dimension> last_point;
    double const* points; // of the first new node
    std::size_t ld;
    double const* params;
    double const* targets;
    std::size_t new_nodes;

    std::size_t last() const { return new_nodes + 1; }

    double const* point(std::size_t i) const
    {
        if (i == 0) return first_point.values;
        return i > new_nodes ? last_point.values : points + ld * (i - 1);
    }
    double const* target(std::size_t i) const { return targets + Targets::width * i; }
};

/// A mesh under construction: the numbers of the accepted nodes, and parameters and targets of the accepted
/// nodes and of the latest placement. If the caller does not ask for them, only those of the latest placement
/// are kept.
template <class Targets>
struct line_mesh
{
    dense1D<unsigned> nodes;
    dense1D<double> params;
    typename Targets::list targets;

    /// Empties the lists; their memory is kept for reuse.
    void clear() noexcept
    {
        nodes.clear();
        params.clear();
        targets.clear();
    }
};

/// Appends a list that is no longer needed. If `target` has no memory of its own, it takes over that of
/// `source`.
template <class List>
[[nodiscard]] bool hand_over(List const& source, List& target, bool (&append)(List const&, List&)) noexcept
{
    if (target.data() != nullptr) return append(source, target);
    target = source;
    return true;
}

/// Appends a mesh to the caller's lists; a list without memory takes over that of the mesh. On false the
/// lists are as they were. Also correct if lists share memory or are one object.
template <class Targets>
[[nodiscard]] bool publish(line_mesh<Targets> const& mesh, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, typename Targets::list& out_targets) noexcept
{
    dense1D<unsigned> const indices_before = out_indices;
    typename Targets::list const targets_before = out_targets;
    std::size_t const added = mesh.nodes.size();
    auto const has_room = [added](auto& list) { return !list.data() || make_room(list, added); };
    if ((!out_targets.data() || Targets::make_room(out_targets, added)) && has_room(out_indices) &&
        has_room(out_params) && hand_over(mesh.targets, out_targets, Targets::append) &&
        hand_over(mesh.nodes, out_indices, append_values) &&
        hand_over(mesh.params, out_params, append_values))
        return true;

    // If there is room for each, this can only fail if parameters and targets are one object.
    out_indices = indices_before;
    out_targets = targets_before;
    return false;
}

} // namespace trelk::vornik1d

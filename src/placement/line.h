#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/append.h"
#include "arrays/vectors.h"

namespace trelk::vornik1d {

/// A view of nodes in the order of travel, with a parameter value and a target for each: what is to be meshed.
/// It holds bare pointers, since loops run along it; `over` renews the one that the growth of `coords` ends.
/// `Targets` tells what a target is.
template <class Targets>
struct line_view
{
    double const* points = nullptr;
    std::size_t ld = Targets::dimension;
    unsigned const* nodes = nullptr; // columns of `points`; null stands for 0, 1, 2, ...
    double const* params = nullptr;
    double const* targets = nullptr;
    std::size_t target_ld = Targets::width;
    std::size_t count = 0;

    std::size_t last() const { return count - 1; }

    double const* point(std::size_t i) const { return points + ld * (nodes ? nodes[i] : i); }
    double const* target(std::size_t i) const { return targets + target_ld * i; }

    /// The same line, its nodes being columns of `coords`.
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

    /// `size` entries from `first` on.
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

/// The nodes that stand between the two ends of a line, as a placement leaves them: a view, in which entry 0 and
/// the last one are the ends. Points and lists are those of `line_mesh`.
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

/// A mesh as it is made: the node numbers of what is settled, and parameters and targets of that and of the
/// nodes in work. Where nobody asks for the values of the mesh, those of the nodes in work stand alone.
template <class Targets>
struct line_mesh
{
    dense1D<unsigned> nodes;
    dense1D<double> params;
    typename Targets::list targets;

    /// Empties the lists; their storage stays for reuse.
    void clear() noexcept
    {
        nodes.clear();
        params.clear();
        targets.clear();
    }
};

/// Appends the values of a list that is not needed any more: one without storage takes over that of `source`.
template <class List>
[[nodiscard]] bool hand_over(List const& source, List& target, bool (&append)(List const&, List&)) noexcept
{
    if (target.data() != nullptr) return append(source, target);
    target = source;
    return true;
}

/// Appends a mesh to the caller's lists, which take over its storage where they have none; on false they are as
/// they were. Also correct when the lists share storage or are one object.
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

    // Once there is room for each, nothing fails but parameters that are one object with the targets.
    out_indices = indices_before;
    out_targets = targets_before;
    return false;
}

} // namespace trelk::vornik1d

#pragma once

#include <cstddef>

#include <trelk/dense2D.h>

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

    /// The `size` entries that start at `first`, of a line with node numbers.
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

} // namespace trelk::vornik1d

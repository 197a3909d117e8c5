#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

#include "arrays/columns.h"
#include "line/curvature_limit.h"
#include "line/span_rule.h"
#include "placement/line.h"

namespace trelk::vornik1d {

/// Meshes one chain by its targets alone, in passes: each places nodes along the polyline of the pass before,
/// whose nodes have been moved back onto the chain, until the node count stops falling. (It can fall because
/// the later polyline cuts the chain's corners and is shorter in metric length.)
///
/// The new nodes are appended to `coords` as the last pass placed them; `mesh` is replaced. False without
/// storage, with `coords` as it was.
template <class Targets>
[[nodiscard]] bool mesh_span(
    dense2D<double>& coords, line<Targets> const& chain, span_rule const& rule, line<Targets>& mesh)
{
    constexpr int N = Targets::dimension;
    std::size_t const n = chain.size();
    if (!can_be_numbered(n)) return false;

    // Once there is a second pass, or the targets are bounded, columns 0 to n - 1 hold the chain's nodes and
    // those behind them the nodes of the latest pass; `numbered` is the chain in these numbers.
    dense2D<double> work_coords;
    line<Targets> numbered;
    dense2D<double> const* points = &coords;
    line<Targets> const* start = &chain;
    if (rule.deviation_tolerance < 0) {
        if (!gather_chain(coords, chain, work_coords, numbered) || !numbered.targets.copy(chain.targets))
            return false;
        limit_sizes_by_curvature(work_coords, numbered, rule);
        points = &work_coords;
        start = &numbered;
    }

    dense2D<double> new_coords;
    line<Targets> buffers[2]; // the mesh of one pass is the chain of the next
    line<Targets> const* work = start;
    std::size_t m = 0;
    std::size_t previous = unlimited;
    for (std::size_t pass = 0;; ++pass) {
        line<Targets>& next = buffers[pass % 2];
        if (!place_between_ends(*points, *work, rule, new_coords, next)) return false;
        work = &next;
        m = new_coords.cols();
        std::size_t const columns = n + m;
        if (!can_be_numbered(std::max(n, coords.cols()) + m)) return false;

        bool const is_straight = n == 2; // one pass is exact
        bool const cannot_fall = m + 1 == rule.min_elements;
        if (is_straight || columns >= previous || cannot_fall) break;

        if (pass == 0) {
            if (!work_coords.reserve(N, columns)) return false;
            if (start == &chain && !gather_chain(coords, chain, work_coords, numbered)) return false;
            points = &work_coords;
        }
        truncate(work_coords, n);
        if (!add_new_nodes(new_coords, 0, static_cast<unsigned>(n - 1), work_coords, next)) return false;
        // The nodes of the first pass lie on the chain already; later ones lie on chords of the pass before.
        // Refused are parameters that rounding has made fall, and the nodes then stay where they are.
        if (pass > 0)
            static_cast<void>(interpolate_coordinates(
                work_coords, numbered.nodes, numbered.params, work->nodes, work->params));
        previous = columns;
    }

    mesh = *work;
    return add_new_nodes(new_coords, chain.nodes[0], chain.nodes[n - 1], coords, mesh);
}

} // namespace trelk::vornik1d

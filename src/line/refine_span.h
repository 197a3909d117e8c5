#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/columns.h"
#include "line/deviation.h"
#include "line/mesh_span.h"
#include "line/refinement_step.h"
#include "line/span_rule.h"
#include "placement/line.h"

namespace trelk::vornik1d {

/// Meshes a chain anew where its mesh strays from its interior nodes by `rule.deviation_tolerance` or more,
/// and examines the new meshes in the same way.
///
/// `mesh` is the mesh under examination; its new nodes stand in `coords` from column `base_columns` on. If it
/// is rejected, `mesh` and those columns are replaced. The element limits of `rule` do not count here.
///
/// The work is a list of ranges, taken from left to right, so that neither the stack nor the memory grows
/// with the number of splits in a row. False without storage: `coords` then holds new nodes that belong to no
/// mesh.
template <class Targets>
[[nodiscard]] bool refine_span(dense2D<double>& coords, line<Targets> const& chain, span_rule rule,
    std::size_t base_columns, line<Targets>& mesh)
{
    constexpr int N = Targets::dimension;
    rule.min_elements = 1;
    rule.max_elements = unlimited;

    dense1D<span_task> pending; // the leftmost range is the last entry
    auto const schedule = [&pending](span_task const& task, refinement_step const& step) {
        if (step.what == action::remesh) return pending.push_back(step.again);
        std::size_t const split = task.first + step.split;
        return pending.push_back({split, task.last}) && pending.push_back({task.first, split});
    };
    auto const examine = [&rule](dense2D<double> const& nodes, line<Targets> const& range,
                             span_task const& task, line<Targets> const& its_mesh) {
        auto const scan = scan_deviation<N>(
            nodes, range.nodes, range.params, its_mesh.nodes, its_mesh.params, rule.deviation_tolerance);
        return decide(scan, task, its_mesh.elements(), rule.force_even);
    };

    std::size_t const n = chain.size();
    span_task const whole{0, n - 1};
    refinement_step const first_step = examine(coords, chain, whole, mesh);
    if (first_step.what == action::keep) return true;

    // Columns 0 to n - 1 hold the chain's nodes, those behind them the nodes of the meshes that are kept.
    dense2D<double> work_coords;
    line<Targets> numbered;
    if (!gather_chain(coords, chain, work_coords, numbered) || !schedule(whole, first_step)) return false;

    line<Targets> refined;
    line<Targets> range_mesh;
    while (!pending.empty()) {
        span_task const task = pending[pending.size() - 1];
        truncate(pending, pending.size() - 1);

        auto const range = numbered.part(task.first, task.last - task.first + 1);
        std::size_t const mark = work_coords.cols();
        rule.min_elements = task.min_elements;
        if (!mesh_span(work_coords, range, rule, range_mesh)) return false;

        refinement_step const step = examine(work_coords, range, task, range_mesh);
        if (step.what == action::keep) {
            if (refined.size() > 0) refined.drop_last(); // it is the first node of this mesh too
            if (!refined.append(range_mesh)) return false;
        } else {
            truncate(work_coords, mark);
            if (!schedule(task, step)) return false;
        }
    }

    for (unsigned& node : refined.nodes)
        node = node < n ? chain.nodes[node] : static_cast<unsigned>(base_columns + (node - n));
    mesh = refined;
    truncate(coords, base_columns);
    auto const new_columns = work_coords.sub_matrix(0, n, N, work_coords.cols() - n);
    return can_be_numbered(base_columns + new_columns.cols()) && append_columns(new_columns, coords);
}

} // namespace trelk::vornik1d

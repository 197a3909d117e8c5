#pragma once

#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

#include "arrays/append.h"
#include "line/curvature_limit.h"
#include "line/deviation.h"
#include "line/range_mesher.h"
#include "line/refinement_step.h"
#include "placement/line.h"
#include "placement/line_mesh.h"
#include "placement/place_nodes.h"
#include "rules.h"

namespace trelk::vornik1d {

/// The workspace that meshes polylines, one after the other. Its memory is reused from line to line.
template <class Targets>
class line_mesher
{
public:
    /// New nodes become columns of `coords`. `keeps_values`: the mesh has parameters and targets too.
    line_mesher(dense2D<double>& coords, bool keeps_values)
        : coords_(coords), keeps_values_(keeps_values), mesher_(coords, mesh_)
    {}

    /// Meshes `chain`: at least two nodes, columns of `coords`. `mesh` is then the result. Returns 0 or
    /// `no_storage`; in the latter case the caller must remove the new columns of `coords`.
    int run(line_view<Targets> chain, line_rule const& rule)
    {
        mesh_.nodes.clear();
        if (rule.deviation_tolerance > 0) return mesh_and_refine(chain, rule);
        if (rule.deviation_tolerance < 0) {
            if (!limit_targets_by_curvature(chain.over(coords_), rule, bounded_)) return no_storage;
            chain = chain.with_targets(bounded_);
        }
        int const status = mesh_range(chain, nullptr, rule, false);
        if (status != 0) return status;
        return accept(chain) ? 0 : no_storage;
    }

    line_mesh<Targets> const& mesh() const { return mesh_; }

    /// Sets how many columns `coords` is expected to have in the end.
    void expect_columns(std::size_t columns) { mesher_.expect_columns(columns); }

private:
    int mesh_and_refine(line_view<Targets> const& chain, line_rule const& rule)
    {
        // Each range is measured many times, so the lengths of segments are computed once.
        if (!segment_lengths_.reserve(chain.count, 2)) return no_storage;
        double* const lengths = segment_lengths_.data();
        for_each_metric_length<Targets>(
            chain.over(coords_), [&](std::size_t s, double length) { lengths[s] = length; });

        if (int const status = mesh_range(chain, lengths, rule, chain.count > 2); status != 0) return status;
        if (mesher_.count() + 1 < rule.max_elements) return refine(chain, lengths, rule);
        return accept(chain) ? 0 : no_storage;
    }

    /// Meshes a range of a chain, or all of it, after the nodes accepted so far. `is_examined`: `examine`
    /// will be called, which needs parameters.
    int mesh_range(
        line_view<Targets> const& range, double const* lengths, element_rule const& rule, bool is_examined)
    {
        std::size_t const accepted = mesh_.nodes.size(); // the last one is the range's first node
        std::size_t const first_value = keeps_values_ && accepted > 0 ? accepted - 1 : 0;
        return mesher_.run(range, lengths, rule, first_value, {keeps_values_ || is_examined, keeps_values_});
    }

    /// Decides what to do about the mesh of a range.
    refinement_step examine(line_view<Targets> const& range, range_task const& task, line_rule const& rule)
    {
        auto const scan =
            scan_deviation(range.over(coords_), mesher_.mesh_of(range), rule.deviation_tolerance);
        return decide(scan, task, mesher_.count() + 1, rule.force_even, stalled_elements_);
    }

    /// Does what `examine` has decided. False if memory runs out.
    [[nodiscard]] bool carry_out(
        refinement_step const& step, line_view<Targets> const& range, range_task const& task)
    {
        if (step.what == action::keep) return accept(range);
        if (step.what == action::remesh) return pending_.push_back(step.again);
        std::size_t const split = task.first + step.split;
        return pending_.push_back({.first = split, .last = task.last}) &&
               pending_.push_back({.first = task.first, .last = split});
    }

    /// Meshes parts of a chain again if the deviation of their mesh is at least the tolerance, and examines
    /// the new meshes in the same way. The element limits of `rule` are ignored here.
    ///
    /// The work is a list of ranges, taken from left to right. So the call stack does not grow with the
    /// number of splits, and an accepted mesh stays where it was placed.
    int refine(line_view<Targets> const& chain, double const* lengths, line_rule const& rule)
    {
        stalled_elements_ = 0;
        pending_.clear(); // the next range, the leftmost one, is the last entry
        range_task task{.first = 0, .last = chain.last()};
        auto range = chain;
        for (;;) {
            if (!carry_out(examine(range, task, rule), range, task)) return no_storage;
            if (pending_.empty()) return 0;

            task = pending_[pending_.size() - 1];
            truncate(pending_, pending_.size() - 1);
            range = chain.part(task.first, task.last - task.first + 1);
            element_rule const piece{rule.force_even, task.min_elements, no_limit};
            int const status = mesh_range(range, lengths + task.first, piece, range.count > 2);
            if (status != 0) return status;
        }
    }

    /// Accepts the latest mesh as that of a range. False if memory runs out.
    [[nodiscard]] bool accept(line_view<Targets> const& range)
    {
        return mesher_.accept(range.node(0), range.node(range.last()));
    }

    dense2D<double>& coords_;
    bool keeps_values_;
    line_mesh<Targets> mesh_;
    range_mesher<Targets> mesher_;
    typename Targets::list bounded_;
    dense1D<double> segment_lengths_;
    dense1D<range_task> pending_;
    std::uint64_t stalled_elements_ = 0;
};

} // namespace trelk::vornik1d

#pragma once

#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

#include "arrays/append.h"
#include "arrays/vectors.h"
#include "line/curvature_limit.h"
#include "line/deviation.h"
#include "line/range_mesher.h"
#include "line/refinement_step.h"
#include "placement/line.h"
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
        stalled_elements_ = 0;
        if (rule.deviation_tolerance < 0) {
            if (!limit_targets_by_curvature(chain.over(coords_), rule, bounded_)) return no_storage;
            chain = chain.with_targets(bounded_);
        }
        bool const may_be_refined = rule.deviation_tolerance > 0 && chain.count > 2;
        double* lengths = nullptr;
        if (may_be_refined) {
            if (!segment_lengths_.reserve(chain.count, 2)) return no_storage;
            lengths = segment_lengths_.data();
            measure_segments(chain.over(coords_), lengths);
        }

        if (int const status = mesh_range(chain, lengths, rule, may_be_refined); status != 0) return status;
        if (!(rule.deviation_tolerance > 0 && mesher_.count() + 1 < rule.max_elements))
            return accept(chain) ? 0 : no_storage;
        return refine(chain, lengths, rule);
    }

    line_mesh<Targets> const& mesh() const { return mesh_; }

    /// Sets how many columns `coords` is expected to have in the end.
    void expect_columns(std::size_t columns) { mesher_.expect_columns(columns); }

private:
    static void measure_segments(line_view<Targets> const& chain, double* lengths)
    {
        constexpr std::size_t N = Targets::dimension;
        for (std::size_t s = 0; s < chain.last(); ++s)
            lengths[s] = Targets::metric_length(
                edge_vector<N>(chain.point(s), chain.point(s + 1)), chain.target(s), chain.target(s + 1));
    }

    /// Meshes a range of a chain, or all of it, after the nodes accepted so far. `is_examined`: `examine`
    /// will be called, which needs parameters.
    int mesh_range(
        line_view<Targets> const& range, double const* lengths, element_rule const& rule, bool is_examined)
    {
        std::size_t const settled = mesh_.nodes.size(); // the last one is the range's first node
        std::size_t const at = keeps_values_ && settled > 0 ? settled - 1 : 0;
        return mesher_.run(range, lengths, rule, at, {keeps_values_ || is_examined, keeps_values_});
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
        return pending_.push_back({split, task.last}) && pending_.push_back({task.first, split});
    }

    /// Meshes parts of a chain again if the deviation of their mesh is at least the tolerance, and examines
    /// the new meshes in the same way. The element limits of `rule` are ignored here.
    ///
    /// The work is a list of ranges, taken from left to right. So the call stack does not grow with the
    /// number of splits, and an accepted mesh stays where it was placed.
    int refine(line_view<Targets> const& chain, double const* lengths, line_rule const& rule)
    {
        pending_.clear(); // the next range, the leftmost one, is the last entry
        range_task task{0, chain.last()};
        auto range = chain;
        for (;;) {
            if (!carry_out(examine(range, task, rule), range, task)) return no_storage;
            if (pending_.empty()) return 0;

            task = pending_[pending_.size() - 1];
            truncate(pending_, pending_.size() - 1);
            range = chain.part(task.first, task.last - task.first + 1);
            element_rule const piece{rule.force_even, task.min_elements, unlimited};
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

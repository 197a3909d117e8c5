#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik/toolkit.h>
#include <vornik1d/vornik1d.h>

#include "metric/param_sampling.h"
#include "placement/line.h"
#include "placement/line_mesh.h"
#include "placement/node_placer.h"
#include "rules.h"
#include "special_values.h"
#include "spline/bend_nodes.h"
#include "spline/curvature_sizes.h"
#include "spline/sample_spline.h"

namespace trelk::vornik1d {

constexpr int not_finite = -1; // the status that `mesh_spline` returns for such a chain

/// The workspace that meshes splines, one after the other. Its memory is reused from one spline to the next.
template <class Targets>
class spline_mesher
{
public:
    static constexpr std::size_t N = Targets::dimension;

    /// New nodes become columns of `coords`. `keeps_values`: the mesh has parameters and targets too.
    spline_mesher(dense2D<double>& coords, bool keeps_values)
        : coords_(coords), keeps_values_(keeps_values), placer_(coords, mesh_)
    {}

    /// Samples the spline through `chain`: columns of `coords`, the first and the last being guide nodes. If
    /// its deviation exceeds `most_deviation`, the spline cannot be meshed afterwards. Returns 0,
    /// `no_storage`, or `not_finite` if a node or the curve's length is not finite.
    int sample(dense1D<unsigned> const& chain, spline_rule const& rule, double most_deviation)
    {
        guided_chain<N> const nodes(coords_, chain.data(), chain.size());
        if (!are_finite(nodes)) return not_finite;
        if (!find_bend_nodes(nodes, bends_, bend_params_) ||
            !bend_sizes_.begin(nodes.count, rule.deviation_tolerance))
            return no_storage;
        // If all nodes are bends, the sampled spans are also those of the bends.
        all_bend_ = bends_.size() == nodes.count;
        // The samples are ten times closer to the curve than the mesh must be.
        bool const is_sampled = sample_spline(nodes, 0.1 * rule.deviation_tolerance, 0.5 * rule.min_size,
            most_deviation, all_bend_ ? &bend_sizes_ : nullptr, curve_);
        if (!std::isfinite(curve_.spline_length)) return not_finite;
        return is_sampled ? 0 : no_storage;
    }

    /// The largest distance of the sampled spline from the polyline through its nodes.
    double deviation() const { return curve_.deviation; }

    /// Meshes the spline sampled last by the targets at its nodes, guide nodes excluded. `mesh` is then the
    /// result. Returns 0 or `no_storage`.
    int mesh_sampled(
        dense1D<unsigned> const& chain, line_view<Targets> const& targets, spline_rule const& rule)
    {
        if (!carry_targets(targets, rule) || !bound_by_curvature(rule) || !bound_by_gradation(rule))
            return no_storage;

        line_view<Targets> const polyline{.points = curve_.samples.data(),
            .params = curve_.sample_params.data(),
            .targets = targets_.data(),
            .count = curve_.samples.cols()};
        wanted_values const wanted{keeps_values_, keeps_values_};
        placer_.start_line(0);
        bool const is_planned =
            placer_.plan(polyline.last(), rule, [&](double* cum) { return measure<Targets>(polyline, cum); });
        if (!is_planned || placer_.place(polyline, wanted) != 0 || !placer_.set_ends(polyline, wanted))
            return no_storage;
        mesh_.nodes.clear();
        return placer_.accept(chain[1], chain[chain.size() - 2]) ? 0 : no_storage;
    }

    line_mesh<Targets> const& mesh() const { return mesh_; }

    /// Sets how many columns `coords` is expected to have in the end.
    void expect_columns(std::size_t columns) { placer_.expect_columns(columns); }

private:
    static bool are_finite(guided_chain<N> const& chain)
    {
        for (std::size_t i = 0; i < chain.count; ++i)
            for (std::size_t r = 0; r < N; ++r)
                if (!std::isfinite(chain.point(i)[r])) return false;
        return true;
    }

    double* target(std::size_t k) { return targets_.data() + Targets::width * k; }

    /// Sets the targets at the samples. A sample at a node has the node's target. Between nodes the targets
    /// are interpolated, or have the default size if there are a default size and a gradation.
    [[nodiscard]] bool carry_targets(line_view<Targets> const& node_targets, spline_rule const& rule)
    {
        std::size_t const samples = curve_.samples.cols();
        targets_.clear();
        if (!Targets::reserve(targets_, samples) || !Targets::resize(targets_, samples)) return false;
        if (rule.default_size > 0 && rule.max_gradation > 0) {
            for (std::size_t k = 0; k < samples; ++k) Targets::fill(rule.default_size, target(k));
            for (std::size_t k = 0; k < curve_.node_samples.size(); ++k)
                Targets::copy(node_targets.target(k), target(curve_.node_samples[k]));
            return true;
        }
        typename Targets::sampler sampler(curve_.node_params, node_targets.targets, node_targets.target_ld);
        for (std::size_t k = 0; k < samples; ++k) sampler.find(curve_.sample_params[k], target(k));
        return true;
    }

    /// Lowers the targets at the samples to the sizes that keep chords within the tolerance of the curve.
    [[nodiscard]] bool bound_by_curvature(spline_rule const& rule)
    {
        guided_chain<N> const bends(coords_, bends_.data(), bends_.size());
        if (!all_bend_ && !bend_sizes_.build(bends, rule.deviation_tolerance)) return false;
        vornik::bound_metrics(limits_, rule.min_size, std::max(curve_.spline_length, rule.min_size));
        if (!are_parameters(bend_params_) || !are_queries(bend_params_, curve_.sample_params)) return false;

        param_search search(bend_params_);
        for (std::size_t k = 0; k < curve_.sample_params.size(); ++k)
            Targets::bound(target(k), search.find_value(curve_.sample_params[k], limits_.data()));
        return true;
    }

    /// Lowers the targets so that they do not grow too fast from sample to sample, in a forward and a
    /// backward sweep.
    [[nodiscard]] bool bound_by_gradation(spline_rule const& rule)
    {
        if (!(rule.max_gradation > 0 && rule.max_gradation < largest)) return true;

        std::size_t const edges = curve_.samples.cols() - 1;
        if (!edge_lengths_.reserve(edges, 2)) return false;
        auto const edge = [&](std::size_t e) {
            return edge_vector<N>(curve_.samples.col(e), curve_.samples.col(e + 1));
        };
        double* const lengths = edge_lengths_.data();
        for (std::size_t e = 0; e < edges; ++e) lengths[e] = norm(edge(e));

        auto const visit = [&](std::size_t e) {
            Targets::bound_growth(target(e), edge(e), lengths[e], rule.max_gradation, target(e + 1));
            Targets::bound_growth(target(e + 1), edge(e), lengths[e], rule.max_gradation, target(e));
        };
        for (std::size_t e = 0; e < edges; ++e) visit(e);
        for (std::size_t e = edges; e-- > 0;) visit(e);
        return true;
    }

    dense2D<double>& coords_;
    bool keeps_values_;
    line_mesh<Targets> mesh_;
    node_placer<Targets> placer_;
    spline_samples curve_;
    typename Targets::list targets_; // at the samples
    dense1D<unsigned> bends_;
    dense1D<double> bend_params_;
    dense1D<double> limits_; // at the bends
    curvature_sizes<N> bend_sizes_{limits_};
    bool all_bend_ = false;
    dense1D<double> edge_lengths_; // between the samples
};

} // namespace trelk::vornik1d

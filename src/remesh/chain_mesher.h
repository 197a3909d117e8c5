#pragma once

#include <cmath>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <vornik/toolkit.h>

#include "arrays/search.h"
#include "line/chord_length.h"
#include "line/line_mesher.h"
#include "placement/line.h"
#include "placement/size_targets.h"
#include "rules.h"
#include "spline/spline_mesher.h"

namespace trelk::vornik1d {

// Statuses of a chain that cannot be meshed. They are those that the exported meshers return for the chain.
constexpr int unusable_length = -2; // 0 or NaN
constexpr int unusable_params = -3; // because the length is infinite
constexpr int unusable_sizes = -3;
constexpr int unusable_limits = -5; // no elements are allowed

/// The workspace that meshes chains, one after the other. Its memory is reused from chain to chain.
template <std::size_t N>
class chain_mesher
{
public:
    chain_mesher(dense2D<double>& coords, remesh_rule const& rule)
        : coords_(coords), rule_(rule), lines_(coords, false), splines_(coords, false)
    {}

    /// Makes room for chains of up to `elements` elements.
    [[nodiscard]] bool reserve(std::size_t elements)
    {
        return nodes_.reserve(elements + 3) && sizes_.reserve(elements + 1) && params_.reserve(elements + 1);
    }

    /// Sets how many columns `coords` is expected to have in the end.
    void expect_columns(std::size_t columns)
    {
        lines_.expect_columns(columns);
        splines_.expect_columns(columns);
    }

    /// Selects a chain of elements.
    void set_chain(dense2D<unsigned> const& connect, dense1D<unsigned> const& elements)
    {
        // A guide node comes before and after the nodes. For a closed chain the guide nodes are the
        // neighbours of its joint. For an open chain they repeat the end nodes, so the spline's ends are
        // free.
        std::size_t const last = elements.size() + 1;
        static_cast<void>(nodes_.resize(last + 2)); // there is room
        unsigned* const nodes = nodes_.data();
        nodes[1] = connect(0, elements[0]);
        for (std::size_t k = 0; k < elements.size(); ++k) nodes[k + 2] = connect(1, elements[k]);
        bool const is_closed = nodes[1] == nodes[last];
        nodes[0] = is_closed ? nodes[last - 1] : nodes[1];
        nodes[last + 1] = is_closed ? nodes[2] : nodes[last];
    }

    /// The chain's nodes, a view.
    dense1D<unsigned> chain_nodes() const { return nodes_.sub_vector(1, nodes_.size() - 2); }

    /// Meshes the chain with the sizes of its nodes in `node_sizes`. `mesh` is then the result. Returns 0 or
    /// the status of the exported function.
    int run(dense1D<double> const& node_sizes)
    {
        static_cast<void>(sizes_.resize(nodes_.size() - 2)); // there is room
        for (std::size_t k = 0; k < sizes_.size(); ++k) sizes_[k] = node_sizes[nodes_[k + 1]];

        double const tolerance = rule_.deviation_tolerance;
        if (tolerance == 0) return run_line();
        int const status = sample_spline();
        if (status != 0) return status;
        return tolerance > 0 && splines_.deviation() > tolerance ? run_line() : run_spline();
    }

    /// The nodes of the latest mesh, in the order of travel.
    dense1D<unsigned> const& mesh() const { return *mesh_; }

private:
    using targets = size_targets<N>;

    line_view<targets> chain() const
    {
        return {.nodes = nodes_.data() + 1,
            .params = params_.data(),
            .targets = sizes_.data(),
            .count = sizes_.size()};
    }

    /// Checks that are due only if the chain is meshed: a hard edge is not meshed.
    int check_rule() const
    {
        if (!vornik::are_valid_metrics(sizes_)) return unusable_sizes;
        return rule_.min_elements == 0 ? unusable_limits : 0;
    }

    int sample_spline()
    {
        if (int const status = check_rule(); status != 0) return status;
        double const tolerance = rule_.deviation_tolerance;
        return splines_.sample(nodes_, spline(), tolerance > 0 ? tolerance : any_deviation);
    }

    int run_spline()
    {
        mesh_ = &splines_.mesh().nodes;
        return splines_.mesh_sampled(nodes_, chain(), spline());
    }

    int run_line()
    {
        constexpr double exact = 1e-12; // times the chain's length: keeps the mesh on the polyline
        static_cast<void>(params_.resize(sizes_.size())); // there is room
        double const length = set_chord_lengths<N>(coords_, chain_nodes(), params_.data());
        if (length == 0 || std::isnan(length)) return unusable_length;
        if (!is_non_decreasing(params_)) return unusable_params;
        if (int const status = check_rule(); status != 0) return status;

        line_rule rule = rule_;
        rule.deviation_tolerance =
            line_tolerance(rule_.deviation_tolerance == 0 ? length * exact : rule_.deviation_tolerance);
        mesh_ = &lines_.mesh().nodes;
        return lines_.run(chain(), rule);
    }

    spline_rule spline() const
    {
        spline_rule rule = rule_;
        rule.deviation_tolerance = spline_tolerance(rule_.deviation_tolerance);
        return rule;
    }

    dense2D<double>& coords_;
    remesh_rule const& rule_;
    line_mesher<targets> lines_;
    spline_mesher<targets> splines_;
    dense1D<unsigned> nodes_;
    dense1D<double> sizes_;
    dense1D<double> params_;
    dense1D<unsigned> const* mesh_ = nullptr;
};

} // namespace trelk::vornik1d

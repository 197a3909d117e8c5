#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include <vornik/toolkit.h>

#include "arrays.h"
#include "arrays/columns.h"
#include "front_door.h"
#include "placement/line.h"
#include "placement/place_nodes.h"
#include "placement/target_lists.h"
#include "remesh/cut_lines.h"
#include "remesh/old_mesh.h"

// What sizes ask for before a call: metric lengths of chains and networks, by the library's own code.

inline std::size_t count_of(reals const& sizes) { return sizes.size(); }
inline std::size_t count_of(matrix const& metrics) { return metrics.cols(); }

/// Metric length of a chain. `lengths`, unless null, gets the length of each segment. NaN if the arguments do
/// not fit together; the call itself reports why.
template <class List>
double chain_metric_length(matrix const& coords, nodes const& chain, List const& targets, double* lengths)
{
    using namespace trelk::vornik1d;
    if (!is_planar_or_spatial(coords) || chain.size() < 2 ||
        !trelk::vornik::check_IDs(chain, coords.cols()) || count_of(targets) < chain.size() ||
        !fit_dimension(targets, coords))
        return std::numeric_limits<double>::quiet_NaN();
    double sum = 0;
    by_dimension(coords, [&](auto dim) {
        using target_type = targets_in<List, dim>;
        line_view<target_type> const line{.points = coords.data(),
            .ld = coords.ld(),
            .nodes = chain.data(),
            .targets = targets.data(),
            .target_ld = target_type::ld(targets),
            .count = chain.size()};
        for_each_metric_length<target_type>(line, [&](std::size_t s, double length) {
            if (lengths) lengths[s] = length;
            sum += length;
        });
    });
    return sum;
}

/// What the elements of a network ask for.
struct network_request
{
    double metric_length = 0;
    bool is_steep = false; // sizes change so fast that chains can lose elements
};

template <std::size_t N>
network_request request_of(matrix const& coords, connectivity const& connect, double default_size,
    reals const& sizes, double* lengths)
{
    using namespace trelk::vornik1d;
    double const* const points = coords.data();
    std::size_t const ld = coords.ld();
    unsigned const* ends = connect.data();
    double const inverse = mean_inverse_size(default_size, default_size);
    auto const size_at = [&](unsigned node) {
        return node < sizes.size() && sizes[node] > 0 ? sizes[node] : default_size;
    };
    // A steep part of a chain costs it at most as many elements as the ratio of the sizes there.
    constexpr double harmless_ratio = 4;
    double steep_low = largest;
    double steep_high = 0;
    network_request result;
    for (std::size_t e = 0; e < connect.cols(); ++e, ends += connect.ld()) {
        auto const edge = edge_vector<N>(points + ld * ends[0], points + ld * ends[1]);
        double length = norm(edge);
        if (sizes.empty())
            length *= inverse;
        else {
            double const from = size_at(ends[0]);
            double const to = size_at(ends[1]);
            if (std::abs(to - from) > length) {
                steep_low = std::min({steep_low, from, to});
                steep_high = std::max({steep_high, from, to});
            }
            length = size_targets<N>::metric_length(edge, &from, &to);
        }
        if (lengths) lengths[e] = length;
        result.metric_length += length;
    }
    result.is_steep = steep_high > harmless_ratio * steep_low;
    return result;
}

/// The same for either dimension. The metric length is NaN if the arguments do not fit together.
inline network_request request_of(matrix const& coords, connectivity const& connect, double default_size,
    reals const& sizes, double* lengths)
{
    using namespace trelk::vornik1d;
    network_request result{std::numeric_limits<double>::quiet_NaN(), false};
    if (!is_planar_or_spatial(coords) || connect.empty() ||
        !trelk::vornik::check_IDs(connect, trelk::vornik::element_type::edge, coords.cols()))
        return result;
    by_dimension(
        coords, [&](auto dim) { result = request_of<dim>(coords, connect, default_size, sizes, lengths); });
    return result;
}

/// The library's chains of a network with usable arguments, and the sizes at its nodes. False if memory runs
/// out.
template <std::size_t N>
bool cut_network(matrix const& coords, trelk::vornik1d::old_mesh const& old,
    trelk::vornik1d::remesh_rule const& rule, trelk::vornik1d::cut_lines& lines)
{
    return cut_into_chains<N>(coords, old, rule, false, lines) && set_node_sizes<N>(coords, old, rule, lines);
}

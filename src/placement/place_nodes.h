#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/vector_fixed.h>

#include "arrays/vectors.h"
#include "placement/size_law.h"

namespace trelk::vornik1d {

/// Places nodes at equal steps of metric length along a polyline, between its two end nodes.
///
/// `field` carries the targets at the chain's entries. It answers, for segment s from entry s to s + 1 along
/// the vector d,
///
///     field.metric_length(s, d)    the segment's metric length
///     field.resize(count)          gives the output `count` targets; false without storage
///     field.clear()                empties it
///     field.enter(s, d)            turns to segment s; false where nothing can be placed on it
///     field.position(t)            position in that segment of the fraction t of its metric length
///     field.place(k, u)            stores target k of the output, at position u of that segment
///
/// The chain has at least two entries, each a column of `coords`; `params` has one value per entry or none.
/// `new_coords` and `new_params` are replaced: one column and, where `params` has values, one value per new
/// node. Around the values of the new nodes, parameters and targets have `margin` entries more on either
/// side, for the caller to stitch the ends on. A chain of metric length below `min_metric_length`, or NaN,
/// gets no node, and the outputs are empty then; a negative `min_metric_length` lets every chain pass.
/// `round_up` asks for steps that are no longer than 1.
///
/// Returns the metric length of the chain, or 0.0 with empty outputs where storage is not available or a
/// segment cannot be entered.
template <int N, class Field>
double place_nodes(dense2D<double> const& coords, dense1D<unsigned> const& indices,
    dense1D<double> const& params, Field& field, double min_metric_length, bool force_even,
    std::uint64_t min_elements, std::uint64_t max_elements, dense2D<double>& new_coords,
    dense1D<double>& new_params, std::size_t margin, bool round_up = false)
{
    auto const clear = [&] {
        new_coords.clear();
        new_params.clear();
        field.clear();
        return 0.0;
    };
    clear();

    std::size_t const last = indices.size() - 1;
    dense1D<double> cumulated;
    if (!cumulated.resize(last + 1)) return 0;
    double* const cum = cumulated.data();
    unsigned const* const nodes = indices.data();

    double length = 0;
    cum[0] = 0;
    for (std::size_t s = 0; s < last; ++s) {
        length += field.metric_length(s, edge_vector<N>(coords.col(nodes[s]), coords.col(nodes[s + 1])));
        cum[s + 1] = length;
    }

    std::uint64_t const n = element_count(length, force_even, min_elements, max_elements, round_up);
    bool const is_too_short = min_metric_length >= 0 && !(length >= min_metric_length); // or NaN
    if (is_too_short || n == 1) return length;

    double const step = length / static_cast<double>(n);
    std::size_t const count = n - 1;
    bool const with_params = !params.empty();
    std::size_t const listed = count + 2 * margin;
    if (!new_coords.resize(N, count) || (with_params && !new_params.resize(listed)) || !field.resize(listed))
        return clear();

    double* point = new_coords.data();
    double* const param = with_params ? new_params.data() + margin : nullptr;
    double const* a = nullptr;
    vector_fixed<double, N> d{};
    double param0 = 0;
    double param_step = 0;

    std::size_t j = 1; // the first entry at or behind the target
    std::size_t entered = 0;
    for (std::size_t k = 0; k < count; ++k, point += N) {
        double const target = static_cast<double>(k + 1) * step;
        while (cum[j] < target && j < last) ++j; // an infinite target stays on the last segment
        std::size_t const s = j - 1;
        if (entered != j) {
            entered = j;
            a = coords.col(nodes[s]);
            d = edge_vector<N>(a, coords.col(nodes[j]));
            if (with_params) param0 = params[s], param_step = params[j] - params[s];
            if (!field.enter(s, d)) return clear();
        }

        // An infinite metric length has no fractions: 0 in place of NaN.
        double const t = cum[j] > cum[s] ? std::max(0.0, (target - cum[s]) / (cum[j] - cum[s])) : 0;
        double const u = field.position(t);
        field.place(margin + k, u);
        for (std::size_t r = 0; r < N; ++r) point[r] = d[r] * u + a[r];
        if (with_params) param[k] = param_step * u + param0;
    }
    return length;
}

} // namespace trelk::vornik1d

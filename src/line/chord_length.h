#pragma once

#include <cmath>
#include <cstddef>

#include "placement/line.h"

namespace trelk::vornik1d {

/// Sets `params` to the normalised chord length at the entries of a chain; returns its length. Where that is 0 or
/// NaN there are no parameters; where it is infinite they may be NaN.
template <std::size_t N>
double set_chord_lengths(dense2D<double> const& coords, dense1D<unsigned> const& chain, double* params)
{
    std::size_t const n = chain.size();
    double const* const points = coords.data();
    std::size_t const ld = coords.ld();
    double length = 0;
    params[0] = 0;
    for (std::size_t i = 1; i < n; ++i) {
        length += norm(edge_vector<N>(points + ld * chain[i - 1], points + ld * chain[i]));
        params[i] = length;
    }
    double const r = 1 / length;
    if (r != 1)
        for (std::size_t i = 0; i < n; ++i) params[i] *= r;
    params[n - 1] = 1;
    return length;
}

} // namespace trelk::vornik1d

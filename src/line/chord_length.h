#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/vectors.h"

namespace trelk::vornik1d {

/// Sets `params` to the normalised chord lengths at the entries of a chain; returns the chain's length. If
/// the length is 0 or NaN, the parameters are not usable; if it is infinite, they may be NaN.
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

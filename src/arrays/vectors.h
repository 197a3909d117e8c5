#pragma once

#include <cmath>
#include <cstddef>

#include <trelk/vector_fixed.h>

namespace trelk::vornik1d {

/// Vector from `a` to `b`, N coordinates each.
template <std::size_t N>
vector_fixed<double, N> edge_vector(double const* a, double const* b)
{
    vector_fixed<double, N> d;
    for (std::size_t r = 0; r < N; ++r) d[r] = b[r] - a[r];
    return d;
}

/// Euclidean length, summed in the order of the components.
template <std::size_t N>
double norm(vector_fixed<double, N> const& d)
{
    double square = 0;
    for (std::size_t r = 0; r < N; ++r) square += d[r] * d[r];
    return std::sqrt(square);
}

inline vector_fixed<double, 3> cross(vector_fixed<double, 3> const& a, vector_fixed<double, 3> const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

} // namespace trelk::vornik1d

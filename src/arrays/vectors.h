#pragma once

#include <cmath>
#include <cstddef>

#include <trelk/vector_fixed.h>

namespace trelk::vornik1d {

// The innermost loops call the functions of this header. A compiler that does not inline them doubles the
// cost of such a loop.
#define VORNIK1D_INLINE [[gnu::always_inline]] inline

template <std::size_t N>
using vector = vector_fixed<double, N>;

template <std::size_t N>
VORNIK1D_INLINE vector<N> operator+(vector<N> a, vector<N> const& b)
{
    for (std::size_t r = 0; r < N; ++r) a[r] += b[r];
    return a;
}

template <std::size_t N>
VORNIK1D_INLINE vector<N> operator-(vector<N> a, vector<N> const& b)
{
    for (std::size_t r = 0; r < N; ++r) a[r] -= b[r];
    return a;
}

template <std::size_t N>
VORNIK1D_INLINE vector<N> operator*(vector<N> a, double factor)
{
    for (std::size_t r = 0; r < N; ++r) a[r] *= factor;
    return a;
}

template <std::size_t N>
VORNIK1D_INLINE vector<N> operator*(double factor, vector<N> const& a)
{
    return a * factor;
}

/// The N coordinates at `values`, for example a column of a matrix.
template <std::size_t N>
VORNIK1D_INLINE vector<N> vector_at(double const* values)
{
    vector<N> v;
    for (std::size_t r = 0; r < N; ++r) v[r] = values[r];
    return v;
}

/// Vector from `a` to `b`, N coordinates each.
template <std::size_t N>
VORNIK1D_INLINE vector<N> edge_vector(double const* a, double const* b)
{
    return vector_at<N>(b) - vector_at<N>(a);
}

/// Summed in the order of the components.
template <std::size_t N>
VORNIK1D_INLINE double dot(vector<N> const& a, vector<N> const& b)
{
    double sum = a[0] * b[0];
    for (std::size_t r = 1; r < N; ++r) sum += a[r] * b[r];
    return sum;
}

/// Euclidean length.
template <std::size_t N>
VORNIK1D_INLINE double norm(vector<N> const& d)
{
    if constexpr (N == 1)
        return std::abs(d[0]); // exact, even if the square overflows or underflows
    else
        return std::sqrt(dot(d, d));
}

/// Scales a vector to length 1. A vector of length 0 stays as it is.
template <std::size_t N>
VORNIK1D_INLINE void normalize(vector<N>& v)
{
    double const square = dot(v, v);
    double const length = square == 0 ? 1 : std::sqrt(square);
    for (double& x : v.values) x /= length;
}

/// The cross product; in the plane it has one component.
VORNIK1D_INLINE vector<1> cross(vector<2> const& a, vector<2> const& b)
{
    return {a[0] * b[1] - a[1] * b[0]};
}

VORNIK1D_INLINE vector<3> cross(vector<3> const& a, vector<3> const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

} // namespace trelk::vornik1d

#pragma once

#include <cstddef>
#include <type_traits>

#include <trelk/dense2D.h>
#include <vornik1d/vornik1d.h>

// Code shared by the exported functions: status codes, checks, and the choice of the dimension.

#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__ > 0)
#error "The checks of arguments rely on IEEE 754 comparisons with NaN: build without -ffast-math."
#endif

namespace trelk::vornik1d {

/// Status of a call whose argument at `position`, counted from 1, is invalid.
constexpr int bad_argument(int position) { return -position; }

inline bool is_planar_or_spatial(dense2D<double> const& coords) noexcept
{
    return coords.rows() == 2 || coords.rows() == 3;
}

/// Calls `body` with the row count of `coords`, 2 or 3, as a compile-time constant.
template <class Body>
decltype(auto) by_dimension(dense2D<double> const& coords, Body&& body)
{
    return coords.rows() == 2 ? body(std::integral_constant<std::size_t, 2>())
                              : body(std::integral_constant<std::size_t, 3>());
}

} // namespace trelk::vornik1d

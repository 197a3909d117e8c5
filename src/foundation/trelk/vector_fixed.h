#pragma once

#include <cstddef>

namespace trelk {

/// N numbers, held in place: `vector_fixed<double, 2> point{1.0, 2.0}`.
template <class T, std::size_t N>
struct vector_fixed
{
    T values[N]; ///< The numbers.

    /// @{
    /// Number i, i < N: not tested.
    constexpr T& operator[](std::size_t i) noexcept { return values[i]; }
    constexpr T const& operator[](std::size_t i) const noexcept { return values[i]; }
    /// @}
};

} // namespace trelk

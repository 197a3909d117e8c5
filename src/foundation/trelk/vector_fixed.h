#pragma once

#include <cstddef>
#include <type_traits>

namespace trelk {

/// N numbers, held in place: `vector_fixed<double, 2> point{1, 2}`.
template <class T, std::size_t N>
struct vector_fixed
{
    T values[N]; ///< The numbers.

    /// Indeterminate numbers; `vector_fixed<double, 2>{}` has zeros.
    vector_fixed() noexcept = default;

    /// Exactly N numbers, so that a braced list says by its length whether a point is in the plane or in space.
    template <class... Numbers,
        class = std::enable_if_t<sizeof...(Numbers) == N && (std::is_arithmetic_v<Numbers> && ...)>>
    constexpr vector_fixed(Numbers... numbers) noexcept : values{static_cast<T>(numbers)...}
    {}

    /// @{
    /// Number i, which must be below N; not tested.
    constexpr T& operator[](std::size_t i) noexcept { return values[i]; }
    constexpr T const& operator[](std::size_t i) const noexcept { return values[i]; }
    /// @}
};

} // namespace trelk

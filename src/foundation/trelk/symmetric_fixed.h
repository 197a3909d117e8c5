#pragma once

#include <cstddef>

namespace trelk {

/// A symmetric N x N tensor, held in place as its upper triangle, column by column: (m00, m01, m11) for
/// N = 2, (m00, m01, m11, m02, m12, m22) for N = 3.
template <class T, std::size_t N>
struct symmetric_fixed
{
    T values[N * (N + 1) / 2];

    /// Entry (i, j), which is entry (j, i).
    constexpr T& operator()(std::size_t i, std::size_t j) noexcept { return values[place(i, j)]; }
    constexpr T const& operator()(std::size_t i, std::size_t j) const noexcept { return values[place(i, j)]; }

    /// Packed value k.
    constexpr T& operator[](std::size_t k) noexcept { return values[k]; }
    constexpr T const& operator[](std::size_t k) const noexcept { return values[k]; }

private:
    static constexpr std::size_t place(std::size_t i, std::size_t j) noexcept
    {
        return i <= j ? i + j * (j + 1) / 2 : j + i * (i + 1) / 2;
    }
};

} // namespace trelk

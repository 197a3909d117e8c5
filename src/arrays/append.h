#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/vector_fixed.h>

namespace trelk::vornik1d {

/// True when 32-bit node numbers, of which the largest one means "none", can name `count` nodes.
constexpr bool can_be_numbered(std::size_t count) noexcept { return count <= 4294967295; }

/// Keeps the first `count` values or columns, of which there are as many. Cutting cannot fail.
template <class T>
void truncate(dense1D<T>& list, std::size_t count) noexcept
{
    static_cast<void>(list.resize(count));
}

template <class T>
void truncate(dense2D<T>& matrix, std::size_t count) noexcept
{
    static_cast<void>(matrix.resize(matrix.rows(), count));
}

/// Columns of a matrix that hold something: those of a matrix without rows do not count.
inline std::size_t filled_columns(dense2D<double> const& matrix) noexcept
{
    return matrix.empty() ? 0 : matrix.cols();
}

/// Room to ask for when `added` values or columns join `present` ones: doubling at least, so that appending
/// again and again stays linear.
constexpr std::size_t grown(std::size_t present, std::size_t added) noexcept
{
    return std::max(added, present) + present;
}

/// Appends `point` as a new last column of `matrix`, which must be empty or have N rows. False leaves it as
/// it was, but for its capacity.
template <std::size_t N>
[[nodiscard]] bool append_point(vector_fixed<double, N> const& point, dense2D<double>& matrix) noexcept
{
    if (!matrix.empty() && matrix.rows() != N) return false;

    std::size_t const cols = filled_columns(matrix);
    if (cols >= matrix.room() / std::max<std::size_t>(matrix.ld(), 1))
        static_cast<void>(matrix.reserve(N, std::max<std::size_t>(2 * cols, 4))); // resize tries with less
    if (!matrix.resize(N, cols + 1)) return false;
    std::copy_n(point.values, N, matrix.col(cols));
    return true;
}

/// Makes room for `added` more values, so that appending them cannot fail.
template <class T>
[[nodiscard]] bool make_room(dense1D<T>& target, std::size_t added) noexcept
{
    return target.reserve(target.size() + added, 2);
}

/// Appends the values of `source` to `target`. False leaves `target` as it was, but for its capacity.
template <class T>
[[nodiscard]] bool append_values(dense1D<T> const& source, dense1D<T>& target) noexcept
{
    if (source.empty()) return true;

    std::size_t const added = source.size();
    std::size_t const present = target.size();
    if (present + added > target.room())
        static_cast<void>(target.reserve(grown(present, added))); // resize tries with less
    if (!target.resize(present + added)) return false;
    std::copy_n(source.begin(), added, target.begin() + present);
    return true;
}

} // namespace trelk::vornik1d

#pragma once

#include <algorithm>
#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>
#include <trelk/vector_fixed.h>

namespace trelk::vornik1d {

/// Keeps the first `count` values or columns; there are at least that many. This cannot fail.
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

/// The column count; 0 for a matrix without rows.
template <class T>
std::size_t filled_columns(dense2D<T> const& matrix) noexcept
{
    return matrix.empty() ? 0 : matrix.cols();
}

/// Makes room for `added` more values or columns of `rows` rows, so that appending them cannot fail. The
/// memory grows by doubling, so that the cost of many calls stays linear.
template <class T>
[[nodiscard]] bool make_room(dense1D<T>& list, std::size_t added) noexcept
{
    return list.reserve(list.size() + added, 2);
}

template <class T>
[[nodiscard]] bool make_room(dense2D<T>& matrix, std::size_t rows, std::size_t added) noexcept
{
    return matrix.reserve(rows, filled_columns(matrix) + added, 2);
}

/// Appends `added` values or columns, which are indeterminate. On false only the capacity may have changed.
template <class T>
[[nodiscard]] bool extend(dense1D<T>& list, std::size_t added) noexcept
{
    return make_room(list, added) && list.resize(list.size() + added);
}

template <class T>
[[nodiscard]] bool extend(dense2D<T>& matrix, std::size_t rows, std::size_t added) noexcept
{
    return make_room(matrix, rows, added) && matrix.resize(rows, filled_columns(matrix) + added);
}

/// The capacity to ask for if `needed` values do not fit and `foreseen` are expected in the end: `foreseen`,
/// but between 9/8 and 2 times `needed`, so that the cost of appending stays linear.
constexpr std::size_t room_to_ask(std::size_t needed, std::size_t foreseen) noexcept
{
    return std::clamp(foreseen, needed + needed / 8, 2 * needed);
}

/// Makes room for `needed` values, or columns of `rows` rows, in all; `foreseen` are expected in the end.
template <class T>
[[nodiscard]] bool reserve_foreseen(dense1D<T>& list, std::size_t needed, std::size_t foreseen) noexcept
{
    return needed <= list.room() || list.reserve(room_to_ask(needed, foreseen)) || list.reserve(needed, 2);
}

template <class T>
[[nodiscard]] bool reserve_foreseen(
    dense2D<T>& matrix, std::size_t rows, std::size_t needed, std::size_t foreseen) noexcept
{
    return needed <= matrix.room() / std::max(matrix.ld(), rows) ||
           matrix.reserve(rows, room_to_ask(needed, foreseen)) || matrix.reserve(rows, needed, 2);
}

/// Appends `point` as the last column of `matrix`, which must be empty or have N rows. On false only its
/// capacity may have changed.
template <std::size_t N>
[[nodiscard]] bool append_point(vector_fixed<double, N> const& point, dense2D<double>& matrix) noexcept
{
    if (!matrix.empty() && matrix.rows() != N) return false;

    std::size_t const cols = filled_columns(matrix);
    constexpr std::size_t least_room = 4;
    if (!matrix.reserve(N, std::max(cols + 1, least_room), 2) || !matrix.resize(N, cols + 1)) return false;
    std::copy_n(point.values, N, matrix.col(cols));
    return true;
}

/// Appends the values of `source` to `target`. On false only the capacity of `target` may have changed.
template <class T>
[[nodiscard]] bool append_values(dense1D<T> const& source, dense1D<T>& target) noexcept
{
    if (source.empty()) return true;

    std::size_t const added = source.size();
    std::size_t const present = target.size();
    if (!extend(target, added)) return false;
    std::copy_n(source.begin(), added, target.begin() + present);
    return true;
}

} // namespace trelk::vornik1d

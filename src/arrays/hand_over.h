#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/append.h"
#include "arrays/columns.h"

// Results that become the caller's lists: a list without memory takes over that of the result, to another one
// the result is appended.

namespace trelk::vornik1d {

/// Makes room for a result, so that handing it over cannot fail.
template <class T>
[[nodiscard]] bool make_room_for(dense1D<T> const& result, dense1D<T>& list) noexcept
{
    return !list.data() || make_room(list, result.size());
}

[[nodiscard]] inline bool make_room_for(dense2D<double> const& result, dense2D<double>& matrix) noexcept
{
    return !matrix.data() || make_room(matrix, result.rows(), result.cols());
}

/// Hands over a result that is no longer needed. On false only the capacity of `list` may have changed.
template <class T>
[[nodiscard]] bool hand_over(dense1D<T> const& result, dense1D<T>& list) noexcept
{
    if (list.data()) return append_values(result, list);
    list = result;
    return true;
}

[[nodiscard]] inline bool hand_over(dense2D<double> const& result, dense2D<double>& matrix) noexcept
{
    if (matrix.data()) return append_columns(result, matrix);
    matrix = result;
    return true;
}

} // namespace trelk::vornik1d

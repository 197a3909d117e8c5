#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik1d {

/// Appends to `target` the columns of `source` that `columns` names, in that order. `target` takes the row
/// count of `source`. False leaves it as it was, but for its capacity; an empty list changes nothing.
[[nodiscard]] bool gather_columns(
    dense2D<double> const& source, dense1D<unsigned> const& columns, dense2D<double>& target) noexcept;

/// Appends all columns of `source` to `target`, in the same way.
[[nodiscard]] bool append_columns(dense2D<double> const& source, dense2D<double>& target) noexcept;

/// The largest entry; 0 for an empty matrix.
unsigned largest_entry(dense2D<unsigned> const& connect) noexcept;

/// Appends to `target` the values of `source` that `selection` names, in that order. False leaves it as it
/// was, but for its capacity.
[[nodiscard]] bool gather_values(
    dense1D<double> const& source, dense1D<unsigned> const& selection, dense1D<double>& target) noexcept;

} // namespace trelk::vornik1d

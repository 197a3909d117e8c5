#pragma once

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik1d {

/// Appends all columns of `source` to `target`, which takes its row count. False leaves it as it was, but for its
/// capacity; an empty matrix changes nothing.
[[nodiscard]] bool append_columns(dense2D<double> const& source, dense2D<double>& target) noexcept;

/// The largest entry; 0 for an empty matrix.
unsigned largest_entry(dense2D<unsigned> const& connect) noexcept;

/// Appends to `target` the values of `source` that `selection` names, in that order. False leaves it as it
/// was, but for its capacity.
[[nodiscard]] bool gather_values(
    dense1D<double> const& source, dense1D<unsigned> const& selection, dense1D<double>& target) noexcept;

} // namespace trelk::vornik1d

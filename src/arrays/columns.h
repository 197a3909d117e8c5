#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik1d {

/// Appends all columns of `source` to `target`, which gets the row count of `source`. An empty `source`
/// changes nothing. On false only the capacity of `target` may have changed.
[[nodiscard]] bool append_columns(dense2D<double> const& source, dense2D<double>& target) noexcept;

/// The distance between the points in columns a and b, whatever their number of coordinates.
double distance(dense2D<double> const& points, std::size_t a, std::size_t b) noexcept;

/// The largest entry of a connectivity that is not empty.
unsigned largest_entry(dense2D<unsigned> const& connect) noexcept;

/// Appends the values of `source` at the positions in `selection` to `target`. On false only the capacity of
/// `target` may have changed.
[[nodiscard]] bool gather_values(
    dense1D<double> const& source, dense1D<unsigned> const& selection, dense1D<double>& target) noexcept;

} // namespace trelk::vornik1d

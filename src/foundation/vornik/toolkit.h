#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

namespace trelk::vornik {

/// Kind of a mesh's elements; lines know the two-node one alone.
enum class element_type { edge = 2 };

/// True when every entry of `indices` is below `bound`; an empty list passes.
bool check_IDs(dense1D<unsigned> const& indices, std::size_t bound) noexcept;

/// True when the end nodes of all elements are below `bound`. `connect` has one element per column, its end
/// nodes in rows 0 and 1; fewer than 2 rows fail, an empty connectivity passes.
bool check_IDs(dense2D<unsigned> const& connect, element_type type, std::size_t bound) noexcept;

/// True when every size is positive and finite; an empty list passes.
bool are_valid_metrics(dense1D<double> const& sizes) noexcept;

/// True when every column is a finite, positive definite tensor, packed as in `symmetric_fixed`: 3 rows in
/// the plane, 6 in space. An empty list passes, whatever its row count.
bool are_valid_metrics(dense2D<double> const& metrics) noexcept;

} // namespace trelk::vornik

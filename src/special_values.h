#pragma once

#include <cstddef>
#include <limits>

// Numbers with a meaning of their own. This header depends on nothing, so that every layer can use it.

namespace trelk::vornik1d {

/// Means no limit of a size, an eigenvalue or a tolerance.
constexpr double largest = std::numeric_limits<double>::max();

/// True if 32-bit node numbers can name `count` nodes. The largest 32-bit number means "none".
constexpr bool can_be_numbered(std::size_t count) noexcept { return count <= 4294967295; }

} // namespace trelk::vornik1d

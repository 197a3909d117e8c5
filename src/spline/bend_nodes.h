#pragma once

#include <cstddef>

#include <trelk/dense1D.h>

#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// Keeps those of a spline's nodes at which its chain bends, with both ends and both guide nodes, and finds
/// their normalised chord length along the chain: 0 at the first two, 1 at the last two.
///
/// Both lists are replaced. False without storage for them.
template <std::size_t N>
[[nodiscard]] bool find_bend_nodes(
    guided_chain<N> const& chain, dense1D<unsigned>& bends, dense1D<double>& bend_params);

} // namespace trelk::vornik1d

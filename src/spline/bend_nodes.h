#pragma once

#include <cstddef>

#include <trelk/dense1D.h>

#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// Lists the nodes at which a spline's chain bends, with both ends and both guide nodes, and their normalised
/// chord lengths along the chain: 0 for the first two, 1 for the last two.
///
/// Both lists are replaced. False if memory runs out.
template <std::size_t N>
[[nodiscard]] bool find_bend_nodes(
    guided_chain<N> const& chain, dense1D<unsigned>& bends, dense1D<double>& bend_params);

} // namespace trelk::vornik1d

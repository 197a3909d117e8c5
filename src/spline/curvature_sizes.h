#pragma once

#include <cstddef>

#include <trelk/dense1D.h>

#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// The element size at each node of a chain of 4 or more that keeps chords within `tolerance` of the spline
/// through it, as `chordal_size` reads it: the size by the mean curvature of the spans on either side,
/// weighted by their chords. `largest` beside a span without curvature.
///
/// `bend_sizes` is replaced. False without storage.
template <std::size_t N>
[[nodiscard]] bool curvature_sizes(
    guided_chain<N> const& bends, double tolerance, dense1D<double>& bend_sizes);

} // namespace trelk::vornik1d

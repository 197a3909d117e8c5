#pragma once

#include <cstddef>
#include <limits>
#include <type_traits>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "spline/curvature_sizes.h"
#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// The largest deviation to allow if every deviation is accepted.
constexpr double any_deviation = std::numeric_limits<double>::infinity();

/// A polyline that approximates a spline. Its parameter runs from 0 to 1. Over a span it grows in proportion
/// to the span's parameter t, by the speed |a1| at the span's first node. The speed equals the chord's
/// length, unless the span has a tangent at its second node only.
struct spline_samples
{
    dense2D<double> samples; // a point per column, curve nodes included
    dense1D<double> sample_params;
    dense1D<double> node_params;
    dense1D<unsigned> node_samples; // the column of each curve node
    double spline_length = 0;       // the sum of |a1|
    double deviation = 0;           // the largest distance of a sample from its span's chord
};

/// Samples the spline through a chain at equal steps of t in each span. The step is chosen so that chords
/// stay within `sample_tolerance`, as `chordal_size` defines it; it is at least `min_step`. Each span has at
/// least one sample between its nodes. Sampling ends as soon as the deviation exceeds `most_deviation`; only
/// the length is then completed.
///
/// Each span is added to `sizes`, unless `sizes` is null.
///
/// `curve` is replaced. False if memory runs out, or if the samples exceed 32-bit numbers; `spline_length` is
/// then complete too, unless memory has run out for the nodes already.
template <std::size_t N>
[[nodiscard]] bool sample_spline(guided_chain<N> const& chain, double sample_tolerance, double min_step,
    double most_deviation, std::type_identity_t<curvature_sizes<N>>* sizes, spline_samples& curve);

} // namespace trelk::vornik1d

#pragma once

#include <cstddef>
#include <type_traits>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "spline/curvature_sizes.h"
#include "spline/spline_span.h"

namespace trelk::vornik1d {

/// A polyline that stands for a spline. The parameter runs from 0 to 1 along it, in each span in proportion
/// to the span's own parameter and by its speed |a1| at the first node, which is the chord unless the span
/// lacks a tangent there alone.
struct spline_samples
{
    dense2D<double> samples; // a point per column; the curve nodes are among them
    dense1D<double> sample_params;
    dense1D<double> node_params;
    dense1D<unsigned> node_samples; // the column of each curve node
    double spline_length = 0;       // the sum of |a1|
    double deviation = 0;           // the largest distance of a sample from its span's chord
};

/// Samples the spline through a chain at equal steps of t in each span: so finely that the chords stay within
/// `sample_tolerance`, as `chordal_size` reads it, but no finer than `min_step`, and with one point between the
/// nodes at least. Once the deviation is above `most_deviation` the curve is of no use: only its length goes on.
///
/// The spans are handed to `sizes` too, unless it is null.
///
/// `curve` is replaced. False without storage, or without 32-bit numbers for the samples; it has its
/// `spline_length` then too, unless there is not even storage for the nodes.
template <std::size_t N>
[[nodiscard]] bool sample_spline(guided_chain<N> const& chain, double sample_tolerance, double min_step,
    double most_deviation, std::type_identity_t<curvature_sizes<N>>* sizes, spline_samples& curve);

} // namespace trelk::vornik1d

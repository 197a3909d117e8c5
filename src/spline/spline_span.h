#pragma once

#include <cstddef>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/vectors.h"

// The spline's model: a chain of cubics in Hermite form, each built from the nodes at its two ends and a
// guide node on either side.

namespace trelk::vornik1d {

/// The piece of curve x(t) = a0 + a1 t + a2 t^2 + a3 t^3 from one node, t = 0, to the next, t = 1.
template <std::size_t N>
struct spline_span
{
    vector<N> a0{};
    vector<N> a1{};
    vector<N> a2{};
    vector<N> a3{};
    double chord = 0; // distance between the two nodes
};

/// The span from node i1 to node i2, with the guide nodes i0 and i3; all are columns of `coords`, of N rows.
///
/// The tangent at a node has the direction of q u + p v, where u and v are the unit vectors along the chords
/// before and behind it, p and q the lengths of these; where the neighbour chord is no longer than a
/// hundredth of the span's, r u + v takes its place, with the bare length r and u along the neighbour. Each
/// span gives it the length of its own chord. A span without the tangent at one end is quadratic, without
/// both straight. There is none where i0 = i1 or i2 = i3, or where it would point across the chord or against
/// it.
template <std::size_t N>
spline_span<N> spline_coefficients(
    dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3);

/// The way from one node to the next.
template <std::size_t N>
struct spline_chord
{
    vector<N> d;
    vector<N> unit; // 0 for a chord of length 0
    double length;
};

/// The spans of the spline through a chain of 4 nodes or more, the first and the last of which are guide
/// nodes, in order. Each is what `spline_coefficients` gives, but no chord is measured more than once.
template <std::size_t N>
class spline_spans
{
public:
    spline_spans(dense2D<double> const& coords, dense1D<unsigned> const& chain);

    std::size_t size() const { return chain_.size() - 3; }

    /// The next one; call it `size()` times at most.
    spline_span<N> next();

private:
    dense2D<double> const& coords_;
    dense1D<unsigned> const& chain_;
    std::size_t at_ = 0; // of the span's first guide node
    spline_chord<N> before_;
    spline_chord<N> own_;
};

/// Offset of the curve's point at t from the span's first node.
template <std::size_t N>
vector<N> span_offset(spline_span<N> const& span, double t)
{
    return ((span.a3 * t + span.a2) * t + span.a1) * t;
}

/// x'(t).
template <std::size_t N>
vector<N> span_derivative(spline_span<N> const& span, double t)
{
    return (span.a3 * (3 * t) + 2 * span.a2) * t + span.a1;
}

/// Curvature along a span: |x' x x''| / |x'|^3 in 1/length. `largest` where the derivative vanishes.
template <std::size_t N>
class span_curvature
{
public:
    explicit span_curvature(spline_span<N> const& span)
        : span_(span), c12_(cross(span.a1, span.a2)), c13_(cross(span.a1, span.a3)),
          c23_(cross(span.a2, span.a3))
    {}

    double operator()(double t) const;

private:
    spline_span<N> const& span_;
    decltype(cross(vector<N>(), vector<N>())) c12_, c13_, c23_;
};

/// Mean of the curvature over t, by three Gauss points; `largest` if it is so at one of them.
template <std::size_t N>
double span_mean_curvature(spline_span<N> const& span);

/// Length of the curve, by four Gauss points.
template <std::size_t N>
double span_arc_length(spline_span<N> const& span);

/// The length of chord that stays within a tolerance of an arc of the given curvature: 2 sqrt(e (2 - e))
/// times its radius, with e the sagitta in units of the radius. A tolerance that is not negative is the
/// sagitta, a negative one is -e. `largest` where the curvature is not positive, or e is 1 or more.
double chordal_size(double curvature, double tolerance);

} // namespace trelk::vornik1d

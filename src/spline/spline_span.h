#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <trelk/dense2D.h>

#include "arrays/vectors.h"
#include "special_values.h"

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

/// The straight line from one node to the next.
template <std::size_t N>
struct spline_chord
{
    vector<N> d;
    vector<N> unit; // 0 for a chord of length 0
    double length;

    VORNIK1D_INLINE spline_chord(double const* from, double const* to)
        : d(edge_vector<N>(from, to)), unit(d), length(dot(d, d))
    {
        if (length == 0) return;
        length = std::sqrt(length);
        unit = d * (1 / length);
    }
};

/// The tangent at the end that a span shares with a neighbour chord. Its length is that of the span's chord.
///
/// The direction is q u + p v: u and v are the unit vectors along the chords before and after the node, p and
/// q their lengths. If the neighbour is at most 1 % as long as the span's own chord, the direction is r u +
/// v: r is the neighbour's length, u its unit vector, and v that of the own chord. False if the tangent does
/// not point along the own chord.
template <std::size_t N>
VORNIK1D_INLINE bool find_tangent(
    spline_chord<N> const& neighbour, spline_chord<N> const& own, vector<N>& tangent)
{
    constexpr double least_neighbour = 0.01; // in lengths of the span's chord
    constexpr double least_cosine = 0.0001;  // times the length of the tangent, which is at most 1

    bool const is_ratio = neighbour.length > least_neighbour * own.length;
    double const r = is_ratio ? own.length / neighbour.length : neighbour.length;
    double const w = 1 / (1 + r);
    tangent = (1 - w) * neighbour.unit + w * own.unit;
    if (!(dot(tangent, own.unit) > least_cosine)) return false;

    double const scale = own.length / norm(tangent);
    if (scale != 1) tangent = tangent * scale;
    return true;
}

/// The span along the chord `own`, from the node at `start`. A free end has no tangent. With one tangent the
/// span is quadratic, with none it is straight.
template <std::size_t N>
VORNIK1D_INLINE spline_span<N> build_span(double const* start, bool is_start_free, bool is_end_free,
    spline_chord<N> const& before, spline_chord<N> const& own, spline_chord<N> const& after)
{
    vector<N> t1;
    vector<N> t2;
    bool const has_t1 = !is_start_free && find_tangent(before, own, t1);
    bool const has_t2 = !is_end_free && find_tangent(after, own, t2);

    spline_span<N> span;
    span.a0 = vector_at<N>(start);
    span.chord = own.length;
    if (has_t1 && has_t2) {
        span.a1 = t1;
        span.a2 = 3 * own.d - (2 * t1 + t2);
        span.a3 = (t1 + t2) - 2 * own.d;
    } else if (has_t1) {
        span.a1 = t1;
        span.a2 = own.d - t1;
    } else if (has_t2) {
        span.a1 = 2 * own.d - t2;
        span.a2 = t2 - own.d;
    } else
        span.a1 = own.d;
    return span;
}

/// A chain of at least 4 nodes, columns of `coords`: the spline's nodes, with a guide node before and after
/// them. An end is free if its guide node is the same node.
template <std::size_t N>
struct guided_chain
{
    double const* points;
    std::size_t ld;
    unsigned const* nodes;
    std::size_t count;

    guided_chain(dense2D<double> const& coords, unsigned const* chain, std::size_t size)
        : points(coords.data()), ld(coords.ld()), nodes(chain), count(size)
    {}

    std::size_t spans() const { return count - 3; }
    VORNIK1D_INLINE double const* point(std::size_t i) const { return points + ld * nodes[i]; }
    VORNIK1D_INLINE spline_chord<N> chord(std::size_t i) const { return {point(i), point(i + 1)}; }
};

/// The spans of a spline in order. No chord is measured more than once.
template <std::size_t N>
class spline_spans
{
public:
    explicit spline_spans(guided_chain<N> const& chain)
        : chain_(chain), before_(chain.chord(0)), own_(chain.chord(1))
    {}

    /// The next span; call it at most `spans()` times.
    spline_span<N> next()
    {
        unsigned const* const i = chain_.nodes + first_;
        auto const after = chain_.chord(first_ + 2);
        auto const span =
            build_span(chain_.point(first_ + 1), i[0] == i[1], i[2] == i[3], before_, own_, after);
        ++first_;
        before_ = own_;
        own_ = after;
        return span;
    }

private:
    guided_chain<N> chain_;
    std::size_t first_ = 0; // entry of the next span's first guide node
    spline_chord<N> before_;
    spline_chord<N> own_;
};

/// The span from node i1 to node i2, with the guide nodes i0 and i3; all are columns of `coords`.
template <std::size_t N>
spline_span<N> spline_coefficients(
    dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3)
{
    unsigned const chain[] = {i0, i1, i2, i3};
    return spline_spans<N>({coords, chain, 4}).next();
}

/// Offset of the curve's point at t from the span's first node.
template <std::size_t N>
VORNIK1D_INLINE vector<N> span_offset(spline_span<N> const& span, double t)
{
    return ((span.a3 * t + span.a2) * t + span.a1) * t;
}

/// x'(t).
template <std::size_t N>
VORNIK1D_INLINE vector<N> span_derivative(spline_span<N> const& span, double t)
{
    return (span.a3 * (3 * t) + 2 * span.a2) * t + span.a1;
}

/// Curvature along a span at M values of t: |x' x x''| / |x'|^3 in 1/length; `largest` if x' is 0.
/// The loops have no branches, so that the compiler can vectorise them.
template <std::size_t N, std::size_t M>
void find_curvatures(spline_span<N> const& span, double const (&t)[M], double (&curvature)[M])
{
    auto const c12 = cross(span.a1, span.a2);
    auto const c13 = cross(span.a1, span.a3);
    auto const c23 = cross(span.a2, span.a3);
    double speed[M];
    double product[M];
    for (std::size_t i = 0; i < M; ++i) {
        speed[i] = norm(span_derivative(span, t[i]));
        product[i] = norm((c23 * t[i] + c13) * 3 * t[i] + c12); // half that of x' and x''
    }
    for (std::size_t i = 0; i < M; ++i) {
        double const value = 2 * product[i] / (speed[i] * speed[i] * speed[i]);
        curvature[i] = speed[i] == 0 ? largest : value;
    }
}

/// Mean of the curvature over t, by three Gauss points; `largest` if the curvature is `largest` at one of
/// them.
template <std::size_t N>
double span_mean_curvature(spline_span<N> const& span)
{
    constexpr double t[] = {0.11270166537925852, 0.8872983346207415, 0.5};
    double k[3];
    find_curvatures(span, t, k);
    if (k[0] >= largest || k[1] >= largest || k[2] >= largest) return largest;
    return (k[0] + k[1]) * 0.2777777777777778 + k[2] * 0.4444444444444444;
}

/// Length of the curve, by four Gauss points.
template <std::size_t N>
double span_arc_length(spline_span<N> const& span)
{
    constexpr double node[] = {-0.339981043584856, 0.339981043584856, -0.861136311594053, 0.861136311594053};
    constexpr double weight[] = {0.652145154862546, 0.652145154862546, 0.347854845137454, 0.347854845137454};
    double speed[4]; // the nodes lie in [-1, 1]
    for (std::size_t i = 0; i < 4; ++i) speed[i] = norm(span_derivative(span, (node[i] + 1) / 2));
    double sum = 0;
    for (std::size_t i = 0; i < 4; ++i) sum += weight[i] * speed[i];
    return 0.5 * sum;
}

/// The longest chord of an arc whose sagitta is within a tolerance: 2 sqrt(e (2 - e)) times the radius. Here
/// e is the sagitta in units of the radius. A tolerance of at least 0 is the sagitta; a negative one is -e.
/// `largest` if the curvature is not positive or e is at least 1.
inline double chordal_size(double curvature, double tolerance)
{
    double const e = tolerance >= 0 ? curvature * tolerance : -tolerance;
    double const size = std::sqrt((2 - e) * e * 4) * (1 / curvature);
    return curvature > 0 && !(e >= 1) ? size : largest; // no branch, so that loops are vectorised
}

/// The smallest chordal size at M curvatures.
template <std::size_t M>
double least_chordal_size(double const (&curvature)[M], double tolerance)
{
    double size[M];
    for (std::size_t i = 0; i < M; ++i) size[i] = chordal_size(curvature[i], tolerance);
    double least = largest;
    for (double const s : size) least = std::min(least, s); // ignores a NaN
    return least;
}

} // namespace trelk::vornik1d

#include "spline/spline_span.h"

#include <algorithm>
#include <cmath>

#include "metric/sizes.h"

namespace trelk::vornik1d {

namespace {

template <std::size_t N>
struct measured_chord
{
    double length;
    vector<N> unit; // 0 for a chord of length 0
};

template <std::size_t N>
measured_chord<N> measure(dense2D<double> const& coords, unsigned from, unsigned to)
{
    auto const d = edge_vector<N>(coords.col(from), coords.col(to));
    double const square = dot(d, d);
    if (square == 0 || square == 1) return {square, d};
    double const length = std::sqrt(square);
    return {length, d * (1 / length)};
}

/// The tangent at the end that the span shares with a neighbour chord; false where it has none.
template <std::size_t N>
bool find_tangent(measured_chord<N> const& neighbour, measured_chord<N> const& own, vector<N>& tangent)
{
    constexpr double least_neighbour = 0.01; // in lengths of the span's chord
    constexpr double least_cosine = 0.0001;  // times the length of the mean of the unit vectors, at most 1

    // Beside a very short neighbour the span's own direction counts nearly alone.
    bool const is_ratio = neighbour.length > least_neighbour * own.length;
    double const r = is_ratio ? own.length / neighbour.length : neighbour.length;
    double const w = 1 / (1 + r);
    tangent = (1 - w) * neighbour.unit + w * own.unit;
    if (!(dot(tangent, own.unit) > least_cosine)) return false;

    double const scale = own.length / norm(tangent);
    if (scale != 1) tangent = tangent * scale;
    return true;
}

} // namespace

template <std::size_t N>
spline_span<N> spline_coefficients(
    dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3)
{
    auto const own = measure<N>(coords, i1, i2);
    vector<N> start;
    vector<N> end;
    bool const has_start = i0 != i1 && find_tangent(measure<N>(coords, i0, i1), own, start);
    bool const has_end = i2 != i3 && find_tangent(measure<N>(coords, i2, i3), own, end);

    auto const d = edge_vector<N>(coords.col(i1), coords.col(i2));
    spline_span<N> span;
    span.a0 = vector_at<N>(coords.col(i1));
    span.chord = own.length;
    if (has_start && has_end) {
        span.a1 = start;
        span.a2 = 3 * d - (2 * start + end);
        span.a3 = (start + end) - 2 * d;
    } else if (has_start) {
        span.a1 = start;
        span.a2 = d - start;
    } else if (has_end) {
        span.a1 = 2 * d - end;
        span.a2 = end - d;
    } else
        span.a1 = d;
    return span;
}

template <std::size_t N>
double span_curvature<N>::operator()(double t) const
{
    double const speed = norm(span_derivative(span_, t));
    if (speed == 0) return largest;
    auto const half_product = (c23_ * t + c13_) * 3 * t + c12_; // of x' and x''
    return 2 * norm(half_product) / (speed * speed * speed);
}

template <std::size_t N>
double span_mean_curvature(spline_span<N> const& span)
{
    span_curvature<N> const curvature(span);
    double const k1 = curvature(0.11270166537925852);
    double const k2 = curvature(0.8872983346207415);
    double const k3 = curvature(0.5);
    if (k1 >= largest || k2 >= largest || k3 >= largest) return largest;
    return (k1 + k2) * 0.2777777777777778 + k3 * 0.4444444444444444;
}

template <std::size_t N>
double span_arc_length(spline_span<N> const& span)
{
    constexpr struct
    {
        double node, weight; // on [-1, 1]
    } gauss[] = {{-0.339981043584856, 0.652145154862546}, {0.339981043584856, 0.652145154862546},
        {-0.861136311594053, 0.347854845137454}, {0.861136311594053, 0.347854845137454}};
    double sum = 0;
    for (auto const& [node, weight] : gauss) sum += weight * norm(span_derivative(span, (node + 1) / 2));
    return 0.5 * sum;
}

double chordal_size(double curvature, double tolerance)
{
    if (!(curvature > 0)) return largest;
    double const e = tolerance >= 0 ? curvature * tolerance : -tolerance;
    return e >= 1 ? largest : std::sqrt((2 - e) * e * 4) * (1 / curvature);
}

template spline_span<2> spline_coefficients(dense2D<double> const&, unsigned, unsigned, unsigned, unsigned);
template spline_span<3> spline_coefficients(dense2D<double> const&, unsigned, unsigned, unsigned, unsigned);
template class span_curvature<2>;
template class span_curvature<3>;
template double span_mean_curvature(spline_span<2> const&);
template double span_mean_curvature(spline_span<3> const&);
template double span_arc_length(spline_span<2> const&);
template double span_arc_length(spline_span<3> const&);

} // namespace trelk::vornik1d

#include "spline/spline_span.h"

#include <algorithm>
#include <cmath>

#include "metric/sizes.h"

namespace trelk::vornik1d {

namespace {

template <std::size_t N>
spline_chord<N> measure(dense2D<double> const& coords, unsigned from, unsigned to)
{
    auto const d = edge_vector<N>(coords.col(from), coords.col(to));
    double const square = dot(d, d);
    if (square == 0 || square == 1) return {d, d, square};
    double const length = std::sqrt(square);
    return {d, d * (1 / length), length};
}

/// The tangent at the end that the span shares with a neighbour chord; false where it has none.
template <std::size_t N>
bool find_tangent(spline_chord<N> const& neighbour, spline_chord<N> const& own, vector<N>& tangent)
{
    constexpr double least_neighbour = 0.01; // in lengths of the span's chord
    constexpr double least_cosine = 0.0001;  // times the length of the tangent, which is at most 1

    // Beside a very short neighbour its bare length stands for the ratio: the own direction has weight 1 / (1
    // + length).
    bool const is_ratio = neighbour.length > least_neighbour * own.length;
    double const r = is_ratio ? own.length / neighbour.length : neighbour.length;
    double const w = 1 / (1 + r);
    tangent = (1 - w) * neighbour.unit + w * own.unit;
    if (!(dot(tangent, own.unit) > least_cosine)) return false;

    double const scale = own.length / norm(tangent);
    if (scale != 1) tangent = tangent * scale;
    return true;
}

/// The span along the chord `own`, from the node at `start`; at a free end there is no tangent.
template <std::size_t N>
spline_span<N> build_span(double const* start, bool is_start_free, bool is_end_free,
    spline_chord<N> const& before, spline_chord<N> const& own, spline_chord<N> const& behind)
{
    vector<N> t1;
    vector<N> t2;
    bool const has_t1 = !is_start_free && find_tangent(before, own, t1);
    bool const has_t2 = !is_end_free && find_tangent(behind, own, t2);

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

} // namespace

template <std::size_t N>
spline_span<N> spline_coefficients(
    dense2D<double> const& coords, unsigned i0, unsigned i1, unsigned i2, unsigned i3)
{
    return build_span<N>(coords.col(i1), i0 == i1, i2 == i3, measure<N>(coords, i0, i1),
        measure<N>(coords, i1, i2), measure<N>(coords, i2, i3));
}

template <std::size_t N>
spline_spans<N>::spline_spans(dense2D<double> const& coords, dense1D<unsigned> const& chain)
    : coords_(coords), chain_(chain), before_(measure<N>(coords, chain[0], chain[1])),
      own_(measure<N>(coords, chain[1], chain[2]))
{}

template <std::size_t N>
spline_span<N> spline_spans<N>::next()
{
    unsigned const* const i = chain_.begin() + at_++;
    auto const behind = measure<N>(coords_, i[2], i[3]);
    auto const span = build_span(coords_.col(i[1]), i[0] == i[1], i[2] == i[3], before_, own_, behind);
    before_ = own_;
    own_ = behind;
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
template class spline_spans<2>;
template class spline_spans<3>;
template class span_curvature<2>;
template class span_curvature<3>;
template double span_mean_curvature(spline_span<2> const&);
template double span_mean_curvature(spline_span<3> const&);
template double span_arc_length(spline_span<2> const&);
template double span_arc_length(spline_span<3> const&);

} // namespace trelk::vornik1d

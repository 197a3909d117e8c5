#include "spline/sample_spline.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "arrays/append.h"
#include "special_values.h"

namespace trelk::vornik1d {

namespace {

/// The longest step allowed along a span: the smallest chordal size at five places, at least `min_step`.
template <std::size_t N>
double sampling_step(spline_span<N> const& span, double sample_tolerance, double min_step)
{
    constexpr double t[] = {0, 0.25, 0.5, 0.75, 1};
    double curvature[5];
    find_curvatures(span, t, curvature);
    return std::max(least_chordal_size(curvature, sample_tolerance), min_step);
}

/// The number of steps of t in a span: at least 2, also if the ratio is NaN.
std::uint64_t count_steps(double length, double step)
{
    constexpr std::uint64_t too_many = std::uint64_t{unlimited} + 1;
    if (step >= largest) return 2;
    double const ratio = length / step;
    if (!(ratio > 2)) return 2;
    double const count = std::ceil(ratio);
    return count < static_cast<double>(too_many) ? static_cast<std::uint64_t>(count) : too_many;
}

/// Makes room for `count` samples in all.
template <std::size_t N>
[[nodiscard]] bool make_samples(std::size_t count, spline_samples& curve)
{
    return can_be_numbered(count) && curve.samples.reserve(N, count, 2) &&
           curve.sample_params.reserve(count, 2);
}

/// Appends a span's first node and the `steps` - 1 samples after it; there is room for them. `start` is the
/// node's parameter before normalisation. Returns the largest squared distance of a sample from the chord.
template <std::size_t N>
double append_span(spline_span<N> const& span, std::uint64_t steps, double start, spline_samples& curve)
{
    std::size_t const first = curve.sample_params.size();
    std::size_t const end = first + steps;
    if (!curve.samples.resize(N, end) || !curve.sample_params.resize(end)) return 0; // there is room
    double* point = curve.samples.col(first);
    double* param = curve.sample_params.data() + first;
    if (!point || !param) return 0;
    auto const append = [&](double at, vector<N> const& position) {
        *param++ = at;
        point = std::copy_n(position.values, N, point);
    };

    double const speed = norm(span.a1);
    double const dt = 1 / static_cast<double>(steps);
    auto const chord = span.a1 + span.a2 + span.a3;
    double const chord_square = dot(chord, chord);
    double largest_square = 0;
    append(start, span.a0);
    for (std::uint64_t j = 1; j < steps; ++j) {
        double const t = static_cast<double>(j) * dt;
        auto const offset = span_offset(span, t);
        auto const area = cross(offset, chord);
        append(speed * t + start, span.a0 + offset);
        largest_square = std::max(largest_square, dot(area, area));
    }
    // One division at the end: dividing all values by the same number keeps their order.
    return largest_square != 0 ? largest_square / chord_square : 0;
}

void scale(dense1D<double>& values, double factor)
{
    for (double& v : values) v *= factor;
}

} // namespace

template <std::size_t N>
bool sample_spline(guided_chain<N> const& chain, double sample_tolerance, double min_step,
    double most_deviation, std::type_identity_t<curvature_sizes<N>>* sizes, spline_samples& curve)
{
    curve.samples.clear();
    curve.sample_params.clear();
    curve.spline_length = curve.deviation = 0;
    std::size_t const nodes = chain.spans() + 1;
    if (!curve.node_params.reserve(nodes, 2) || !curve.node_samples.reserve(nodes, 2) ||
        !make_samples<N>(2 * nodes - 1, curve))
        return false;
    static_cast<void>(curve.node_params.resize(nodes)); // there is room
    static_cast<void>(curve.node_samples.resize(nodes));
    double* const node_params = curve.node_params.data();
    unsigned* const node_samples = curve.node_samples.data();

    double largest_square = 0;
    double& length = curve.spline_length;
    bool has_room = true;
    bool is_usable = true;
    spline_spans<N> spans(chain);
    for (std::size_t k = 0; k + 1 < nodes; ++k) {
        auto const span = spans.next();
        // The length is completed without samples: the caller needs it to tell a bad chain from lack of
        // memory.
        if (is_usable && has_room) {
            std::uint64_t const steps =
                count_steps(span_arc_length(span), sampling_step(span, sample_tolerance, min_step));
            std::size_t const first = curve.sample_params.size();
            has_room = make_samples<N>(first + steps + 1, curve);
            if (has_room) {
                node_params[k] = length;
                node_samples[k] = static_cast<unsigned>(first);
                double const square = append_span(span, steps, length, curve);
                if (square > largest_square) {
                    largest_square = square;
                    curve.deviation = std::sqrt(square);
                    is_usable = !(curve.deviation > most_deviation);
                }
                if (is_usable && sizes) sizes->add(span);
            }
        }
        length += norm(span.a1);
    }
    if (!has_room || !is_usable) return has_room;

    if (length > 0) {
        scale(curve.sample_params, 1 / length);
        scale(curve.node_params, 1 / length);
    }
    if (sizes) sizes->finish();
    node_samples[nodes - 1] = static_cast<unsigned>(curve.sample_params.size());
    node_params[nodes - 1] = 1;
    curve.sample_params.push_back(1); // there is room
    return append_point(vector_at<N>(chain.point(nodes)), curve.samples);
}

template bool sample_spline(
    guided_chain<2> const&, double, double, double, curvature_sizes<2>*, spline_samples&);
template bool sample_spline(
    guided_chain<3> const&, double, double, double, curvature_sizes<3>*, spline_samples&);

} // namespace trelk::vornik1d

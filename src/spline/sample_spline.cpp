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
    constexpr std::uint64_t too_many = 4294967296; // more than can be numbered
    if (step >= largest) return 2;
    double const ratio = length / step;
    if (!(ratio > 2)) return 2;
    double const count = std::ceil(ratio);
    return count < static_cast<double>(too_many) ? static_cast<std::uint64_t>(count) : too_many;
}

void scale(dense1D<double>& values, double factor)
{
    for (double& v : values) v *= factor;
}

/// Builds the samples of a spline span by span. Between two spans the caller adds to `curve.spline_length`.
template <std::size_t N>
class spline_sampler
{
public:
    spline_sampler(double sample_tolerance, double min_step, spline_samples& curve)
        : sample_tolerance_(sample_tolerance), min_step_(min_step), curve_(curve)
    {}

    /// Starts a spline of `nodes` nodes. False if memory runs out.
    [[nodiscard]] bool begin(std::size_t nodes)
    {
        curve_.samples.clear();
        curve_.sample_params.clear();
        curve_.spline_length = curve_.deviation = 0;
        if (!curve_.node_params.reserve(nodes, 2) || !curve_.node_samples.reserve(nodes, 2) ||
            !make_samples(2 * nodes - 1))
            return false;
        static_cast<void>(curve_.node_params.resize(nodes)); // there is room
        static_cast<void>(curve_.node_samples.resize(nodes));
        return true;
    }

    /// Appends the first node of a span and the samples between its nodes. False if memory runs out.
    [[nodiscard]] bool add(spline_span<N> const& span)
    {
        std::uint64_t const steps =
            count_steps(span_arc_length(span), sampling_step(span, sample_tolerance_, min_step_));
        std::size_t const first = curve_.sample_params.size();
        if (!make_samples(first + steps + 1)) return false; // one more: the last node

        curve_.node_params[nodes_] = curve_.spline_length;
        curve_.node_samples[nodes_++] = static_cast<unsigned>(first);
        double const square = append_samples(span, steps);
        if (square > largest_square_) {
            largest_square_ = square;
            curve_.deviation = std::sqrt(square);
        }
        return true;
    }

    /// Appends the last node and brings the parameters into the range from 0 to 1.
    void finish(vector<N> const& last_point)
    {
        if (curve_.spline_length > 0) {
            scale(curve_.sample_params, 1 / curve_.spline_length);
            scale(curve_.node_params, 1 / curve_.spline_length);
        }
        curve_.node_params[nodes_] = 1;
        curve_.node_samples[nodes_] = static_cast<unsigned>(curve_.sample_params.size());
        curve_.sample_params.push_back(1);                           // there is room
        static_cast<void>(append_point(last_point, curve_.samples)); // there is room
    }

private:
    /// Makes room for `count` samples in all.
    [[nodiscard]] bool make_samples(std::size_t count)
    {
        return can_be_numbered(count) && curve_.samples.reserve(N, count, 2) &&
               curve_.sample_params.reserve(count, 2);
    }

    /// Appends a span's first node and the `steps` - 1 samples after it; there is room for them. Parameters
    /// are not normalised yet. Returns the largest squared distance of a sample from the chord.
    double append_samples(spline_span<N> const& span, std::uint64_t steps)
    {
        std::size_t const first = curve_.sample_params.size();
        std::size_t const end = first + steps;
        if (!curve_.samples.resize(N, end) || !curve_.sample_params.resize(end)) return 0; // there is room
        double* point = curve_.samples.col(first);
        double* param = curve_.sample_params.data() + first;
        if (!point || !param) return 0;
        auto const append = [&](double at, vector<N> const& position) {
            *param++ = at;
            point = std::copy_n(position.values, N, point);
        };

        double const start = curve_.spline_length;
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

    double sample_tolerance_;
    double min_step_;
    spline_samples& curve_;
    std::size_t nodes_ = 0; // added so far
    double largest_square_ = 0;
};

} // namespace

template <std::size_t N>
bool sample_spline(guided_chain<N> const& chain, double sample_tolerance, double min_step,
    double most_deviation, std::type_identity_t<curvature_sizes<N>>* sizes, spline_samples& curve)
{
    std::size_t const nodes = chain.spans() + 1;
    spline_sampler<N> sampler(sample_tolerance, min_step, curve);
    if (!sampler.begin(nodes)) return false;

    bool has_room = true;
    bool is_usable = true;
    spline_spans<N> spans(chain);
    for (std::size_t k = 0; k < chain.spans(); ++k) {
        auto const span = spans.next();
        // The length is completed even without samples: the caller needs it to tell a bad chain from a lack
        // of memory.
        if (has_room && is_usable) {
            has_room = sampler.add(span);
            is_usable = !(curve.deviation > most_deviation);
            if (has_room && is_usable && sizes) sizes->add(span);
        }
        curve.spline_length += norm(span.a1);
    }
    if (!has_room || !is_usable) return has_room;

    if (sizes) sizes->finish();
    sampler.finish(vector_at<N>(chain.point(nodes)));
    return true;
}

template bool sample_spline(
    guided_chain<2> const&, double, double, double, curvature_sizes<2>*, spline_samples&);
template bool sample_spline(
    guided_chain<3> const&, double, double, double, curvature_sizes<3>*, spline_samples&);

} // namespace trelk::vornik1d

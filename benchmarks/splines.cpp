#include <cmath>
#include <cstddef>
#include <numbers>
#include <string>

#include <benchmark/benchmark.h>

#include "calls.h"
#include "chains.h"
#include "race.h"

namespace {

/// Whether the mesh's nodes are as far from the waves as `most` at most, measured across.
template <std::size_t N>
bool is_on_waves(trelk::dense2D<double> const& coords, double most)
{
    for (std::size_t j = 0; j < coords.cols(); ++j) {
        auto const expected = wave_point(coords(0, j));
        for (std::size_t r = 1; r < N; ++r)
            if (!(std::abs(coords(r, j) - expected[r]) <= most)) return false;
    }
    return true;
}

/// A spline through the chain's points; `tolerance` is in units of the square of a mean segment.
template <std::size_t N>
void spline(benchmark::State& state, std::size_t segments, double tolerance, std::size_t new_nodes)
{
    auto chain = make_chain<N>(segments, new_nodes);
    auto const input = with_guides(to_input(chain));
    double const segment = 1 / static_cast<double>(segments);
    double const sag = tolerance * segment * segment;
    auto const run = [&](auto& out) { return mesh_spline(input, sag, out); };

    std::size_t count = 0;
    auto const checked_label = [&]() -> std::string {
        // Without a tolerance there are two samples a span, and so the mesh follows the polyline.
        constexpr double turn = 2 * std::numbers::pi * waves;
        double const chord_sag = 0.125 * amplitude * turn * turn * segment * segment;
        auto out = before_call(input);
        if (run(out) != 0 || !is_on_waves<N>(out.coords, 1.5 * chord_sag)) return "";
        count = out.coords.cols() - segments - 1;
        return to_label(out.hash());
    };
    auto const label = checked_label();
    if (label.empty()) return disagree(state, "mesh_spline strays from the curve");

    time_calls(
        state, {"new_node", count}, [&] { return before_call(input); }, run);
    state.counters["nodes_per_span"] = static_cast<double>(count) / static_cast<double>(segments);
    state.SetLabel(label);
}

template <std::size_t N>
void enlist_dimension(std::string const& function)
{
    struct
    {
        char const* name;
        double tolerance;
        std::size_t nodes_per_span;
    } const cases[] = {{"off", 0, 1}, {"on", 2, 10}};
    for (auto const& [name, tolerance, nodes_per_span] : cases)
        for (std::size_t segments = 1000; segments <= 100'000; segments *= 10)
            enlist(function + "/tolerance:" + name + "/segments:" + std::to_string(segments),
                200.0 * static_cast<double>(segments * (1 + nodes_per_span)), spline<N>, segments, tolerance,
                segments * nodes_per_span);
}

} // namespace

void enlist_splines()
{
    enlist_dimension<2>("mesh_spline/2d");
    enlist_dimension<3>("mesh_spline/3d");
}

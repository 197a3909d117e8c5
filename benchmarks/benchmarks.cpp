#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

#include <malloc.h>

#include <benchmark/benchmark.h>
#include <vornik1d/vornik1d.h>

#include "bare_loop.h"
#include "chains.h"
#include "metric/metric_interpolator.h"
#include "placement/place_nodes_aniso.h"
#include "placement/place_nodes_iso.h"
#include "race.h"
#include "remesh.h"
#include "spline/sample_spline.h"
#include "tensors.h"

using namespace trelk;

namespace {

constexpr unsigned no_limit = std::numeric_limits<unsigned>::max();

/// What the bare loop works on, and the same arrays as arguments of the library. Storage is alike on both
/// sides: outputs are kept from call to call, what else a side needs it allocates in each call, and all of it
/// is warm, since `keep_freed_storage` leaves no call to ask the kernel.
template <std::size_t N>
struct contest
{
    contest(std::size_t entries, size_pattern pattern, std::size_t new_nodes)
        : chain(make_chain<N>(entries, pattern, new_nodes)), coords(N, entries, chain.points.front().data()),
          indices(entries), params(entries, chain.params.data()), sizes(entries, chain.sizes.data())
    {
        std::iota(indices.begin(), indices.end(), 0U);
        run_bare_loop();
    }

    void run_bare_loop() { bare::place(chain, nodes); }

    bare::line<N> chain;
    bare::line<N> nodes;
    dense2D<double> coords;
    dense1D<unsigned> indices;
    dense1D<double> params;
    dense1D<double> sizes;
};

template <class Values>
bool same_bits(Values const& expected, std::size_t count, double const* values)
{
    return expected.size() == count &&
           std::memcmp(expected.data(), values, count * sizeof expected.front()) == 0;
}

template <std::size_t N>
void place_nodes_iso(
    benchmark::State& state, std::size_t entries, size_pattern pattern, std::size_t new_nodes)
{
    contest<N> c(entries, pattern, new_nodes);
    dense2D<double> coords;
    dense1D<double> sizes;
    dense1D<double> params;
    auto const library = [&] {
        vornik1d::place_nodes_iso<N>(
            c.coords, c.indices, c.params, c.sizes, 0.0, false, 1, no_limit, coords, sizes, params);
    };

    library();
    if (!same_bits(c.nodes.points, coords.cols(), coords.data()) ||
        !same_bits(c.nodes.sizes, sizes.size(), sizes.data()) ||
        !same_bits(c.nodes.params, params.size(), params.data())) {
        disagree(state, "place_nodes_iso and the bare loop do not agree");
        return;
    }
    race(
        state, {"bare", "node", new_nodes}, [&] { c.run_bare_loop(); }, [] {}, library);
}

/// `mesh_line` places nodes twice, the second time along the first mesh; the bare loop does so once.
template <std::size_t N>
void mesh_line(benchmark::State& state, std::size_t entries, size_pattern pattern, std::size_t new_nodes)
{
    contest<N> c(entries, pattern, new_nodes);
    dense1D<unsigned> mesh;
    dense1D<double> params;
    dense1D<double> sizes;
    auto const prepare = [&] {
        static_cast<void>(c.coords.resize(N, entries)); // to fewer: cannot fail
        mesh.clear(), params.clear(), sizes.clear();
    };
    auto const library = [&] {
        return vornik1d::mesh_line(
            c.coords, c.indices, c.params, c.sizes, false, 1, no_limit, 0.0, 0.0, mesh, params, sizes);
    };

    int const status = library();
    bare::line<N> second;
    bare::place(with_ends(c.chain, c.nodes), second);
    auto const expected = with_ends(c.chain, second);
    if (status != 0 || !same_bits(second.points, c.coords.cols() - entries, c.coords.col(entries)) ||
        !same_bits(expected.sizes, sizes.size(), sizes.data()) ||
        !same_bits(expected.params, params.size(), params.data())) {
        disagree(state, "mesh_line and two passes of the bare loop do not agree");
        return;
    }
    race(
        state, {"bare", "node", new_nodes}, [&] { c.run_bare_loop(); }, prepare, library);
}

/// Tensors beside the sizes that they are made of: the same nodes, by more work. Such tensors have no axes
/// that it would take time to find; `build_interpolators` is for those that have.
template <std::size_t N>
struct tensor_contest : contest<N>
{
    using contest<N>::contest;

    std::vector<tensor<N>> tensors = isotropic<N>(this->chain.sizes);
    dense2D<double> metrics{vornik1d::packed_rows<N>, tensors.size(), tensors.front().values};
    output<dense1D<double>> by_sizes;
    output<dense2D<double>> by_tensors;
};

template <std::size_t N>
void place_nodes_aniso(
    benchmark::State& state, std::size_t entries, size_pattern pattern, std::size_t new_nodes)
{
    tensor_contest<N> c(entries, pattern, new_nodes);
    auto const iso = [&, &out = c.by_sizes] {
        vornik1d::place_nodes_iso<N>(c.coords, c.indices, c.params, c.sizes, 0.0, false, 1, no_limit,
            out.coords, out.targets, out.params);
    };
    auto const aniso = [&, &out = c.by_tensors] {
        vornik1d::place_nodes_aniso<N>(c.coords, c.indices, c.params, c.metrics, 0.0, false, 1, no_limit,
            out.coords, out.targets, out.params);
    };

    iso(), aniso();
    if (!same_nodes<N>(c.by_sizes, c.by_tensors, 0)) {
        disagree(state, "place_nodes_aniso and place_nodes_iso do not agree");
        return;
    }
    race(
        state, {"iso", "node", new_nodes}, iso, [] {}, aniso);
}

template <std::size_t N>
void mesh_line_aniso(
    benchmark::State& state, std::size_t entries, size_pattern pattern, std::size_t new_nodes)
{
    tensor_contest<N> c(entries, pattern, new_nodes);
    bool const copied = c.by_sizes.coords.copy(c.coords) && c.by_tensors.coords.copy(c.coords);
    auto const mesh = [&c](auto const& targets, auto& out) {
        return vornik1d::mesh_line(out.coords, c.indices, c.params, targets, false, 1, no_limit, 0.0, 0.0,
            out.mesh, out.params, out.targets);
    };
    auto const iso = [&] { return mesh(c.sizes, c.by_sizes); };
    auto const aniso = [&] { return mesh(c.metrics, c.by_tensors); };
    auto const prepare = [&] { c.by_sizes.reset(entries), c.by_tensors.reset(entries); };

    if (!copied || iso() != 0 || aniso() != 0 || !same_nodes<N>(c.by_sizes, c.by_tensors, entries)) {
        disagree(state, "mesh_line by tensors and by sizes do not agree");
        return;
    }
    race(state, {"iso", "node", new_nodes}, iso, prepare, aniso);
}

/// A spline through the chain's points, beside the placement on its samples alone. Under `tolerance`, times the
/// square of a mean segment, curvature bounds no size, so that both sides place by the same sizes.
template <std::size_t N>
void mesh_spline(benchmark::State& state, std::size_t nodes, double tolerance, std::size_t new_nodes)
{
    contest<N> c(nodes, size_pattern::smooth, new_nodes);
    auto const with_guides = [](auto const& values) {
        auto result = trelk::dense1D<std::decay_t<decltype(values[0])>>();
        result.push_back(values[0]);
        for (auto const value : values) result.push_back(value);
        result.push_back(values[values.size() - 1]);
        return result;
    };
    auto const chain = with_guides(c.indices);
    auto const sizes = with_guides(c.sizes);
    double const segment = 1 / static_cast<double>(nodes);
    double const sag = tolerance * segment * segment;

    vornik1d::spline_samples curve;
    dense1D<double> sample_sizes;
    double const sample_sag = sag > 0 ? 0.1 * sag : std::numeric_limits<double>::max();
    bool const is_sampled =
        vornik1d::sample_spline<N>(c.coords, chain, sample_sag, 0, curve) &&
        vornik1d::interpolate_metrics(curve.node_params, c.sizes, curve.sample_params, sample_sizes) == 0;
    std::size_t const samples = curve.samples.cols();
    dense1D<unsigned> polyline(samples);
    std::iota(polyline.begin(), polyline.end(), 0U);
    output<dense1D<double>> placed;
    auto const place = [&] {
        vornik1d::place_nodes_iso<N>(curve.samples, polyline, curve.sample_params, sample_sizes, 0.0, false,
            1, no_limit, placed.coords, placed.targets, placed.params);
    };

    output<dense1D<double>> meshed;
    double deviation = 0;
    auto const library = [&] {
        return vornik1d::mesh_spline(meshed.coords, chain, sizes, false, 1, no_limit, sag, 0.0, 0.0, 0.0,
            meshed.mesh, meshed.params, meshed.targets, deviation);
    };
    bool const is_meshed = is_sampled && meshed.coords.copy(c.coords) && library() == 0;
    place();
    std::size_t const count = placed.coords.cols();
    if (!is_meshed || meshed.coords.cols() != nodes + count ||
        std::memcmp(meshed.coords.col(nodes), placed.coords.data(), count * N * sizeof(double)) != 0) {
        disagree(state, "mesh_spline and the placement on its samples do not agree");
        return;
    }
    race(
        state, {"place", "node", count}, place, [&] { meshed.reset(nodes); }, library);
    double const samples_per_node = static_cast<double>(samples) / static_cast<double>(count);
    state.counters["ns_per_sample"] = state.counters["ns_per_node"] / samples_per_node;
    state.counters["samples_per_span"] = static_cast<double>(samples) / static_cast<double>(nodes);
}

template <std::size_t N>
void build_all(tensor_pairs<N> const& pairs)
{
    for (auto const& [m0, m1] : pairs) {
        vornik1d::metric_interpolator<N> interpolator;
        benchmark::DoNotOptimize(interpolator.build(m0, m1));
        benchmark::DoNotOptimize(interpolator);
    }
}

/// In space, beside the plane: pairs of tensors whose axes have nothing to do with each other.
void build_interpolators(benchmark::State& state)
{
    auto const in_plane = random_pairs<2>(1000);
    auto const in_space = random_pairs<3>(1000);
    if (!all_reproduced(in_plane) || !all_reproduced(in_space)) {
        disagree(state, "an interpolator does not give the tensors that it was built on");
        return;
    }
    race(
        state, {"2d", "build", in_space.size()}, [&] { build_all(in_plane); }, [] {},
        [&] { build_all(in_space); });
}

using contender = void (*)(benchmark::State&, std::size_t, size_pattern, std::size_t);

void enlist(std::string const& name, contender run, size_pattern pattern,
    std::vector<int> const& nodes_per_10_segments, std::size_t most_entries = 1'000'000)
{
    for (int const density : nodes_per_10_segments)
        for (std::size_t entries = 1000; entries <= most_entries; entries *= 10) {
            std::size_t const new_nodes = (entries - 1) * static_cast<std::size_t>(density) / 10;
            auto const work = static_cast<std::int64_t>(entries + new_nodes);
            auto const per_segment = std::to_string(density / 10) + '.' + std::to_string(density % 10);
            auto const chain = "/entries:" + std::to_string(entries) + "/per_segment:" + per_segment;
            benchmark::RegisterBenchmark((name + chain).c_str(), run, entries, pattern, new_nodes)
                ->Iterations(std::max<std::int64_t>(25, 20'000'000 / work))
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
}

template <std::size_t N>
void enlist_splines(std::string const& name)
{
    struct
    {
        char const* name;
        double tolerance;
        std::size_t nodes_per_span;
    } const cases[] = {{"off", 0, 1}, {"on", 2, 10}};
    for (auto const& [tolerance_name, tolerance, nodes_per_span] : cases)
        for (std::size_t nodes = 100; nodes <= 100'000; nodes *= 10) {
            std::size_t const new_nodes = (nodes - 1) * nodes_per_span;
            auto const title = name + "/nodes:" + std::to_string(nodes) + "/tolerance:" + tolerance_name;
            benchmark::RegisterBenchmark(title.c_str(), mesh_spline<N>, nodes, tolerance, new_nodes)
                ->Iterations(std::max<std::int64_t>(25, static_cast<std::int64_t>(2'000'000 / nodes)))
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
}

/// Otherwise large blocks go back to the kernel or stay, depending on the cases run before, and the kernel's
/// work on fresh pages can take longer than all that is to be timed.
void keep_freed_storage()
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
}

} // namespace

int main(int argc, char** argv)
{
    keep_freed_storage();
    enlist("place_nodes_iso/2d", place_nodes_iso<2>, size_pattern::smooth, {3, 10, 40});
    enlist("place_nodes_iso/2d/rough", place_nodes_iso<2>, size_pattern::rough, {10});
    enlist("place_nodes_iso/3d", place_nodes_iso<3>, size_pattern::smooth, {10});
    enlist("mesh_line/2d", mesh_line<2>, size_pattern::smooth, {3, 10, 40});
    enlist("mesh_line/3d", mesh_line<3>, size_pattern::smooth, {10});
    enlist("place_nodes_aniso/2d", place_nodes_aniso<2>, size_pattern::smooth, {10, 40}, 100'000);
    enlist("place_nodes_aniso/3d", place_nodes_aniso<3>, size_pattern::smooth, {10}, 100'000);
    enlist("mesh_line_aniso/2d", mesh_line_aniso<2>, size_pattern::smooth, {10, 40}, 100'000);
    enlist("mesh_line_aniso/3d", mesh_line_aniso<3>, size_pattern::smooth, {10}, 100'000);
    enlist_splines<2>("mesh_spline/2d");
    enlist_splines<3>("mesh_spline/3d");
    enlist_remeshing();
    benchmark::RegisterBenchmark("metric_interpolator/build/3d", build_interpolators)
        ->Iterations(1000)
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return all_agree ? 0 : 1;
}

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include <malloc.h>

#include <benchmark/benchmark.h>
#include <vornik1d/vornik1d.h>

#include "bare_loop.h"
#include "chains.h"
#include "placement/place_nodes_iso.h"
#include "race.h"

using namespace trelk;

namespace {

constexpr unsigned no_limit = std::numeric_limits<unsigned>::max();

bool all_agree = true;

/// The two sides must give the same bits, or the one is no floor of the other.
void disagree(benchmark::State& state, char const* message)
{
    all_agree = false;
    state.SkipWithError(message);
}

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
        state, new_nodes, [&] { c.run_bare_loop(); }, [] {}, library);
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
        state, new_nodes, [&] { c.run_bare_loop(); }, prepare, library);
}

using contender = void (*)(benchmark::State&, std::size_t, size_pattern, std::size_t);

void enlist(std::string const& name, contender run, size_pattern pattern,
    std::vector<int> const& nodes_per_10_segments)
{
    for (int const density : nodes_per_10_segments)
        for (std::size_t entries = 1000; entries <= 1'000'000; entries *= 10) {
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

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return all_agree ? 0 : 1;
}

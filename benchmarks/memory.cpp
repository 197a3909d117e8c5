// What calls ask of the allocator: how often, and how much at most beside the memory of old and new mesh.

#include <cstddef>
#include <string>

#include <benchmark/benchmark.h>

#include "allocations.h"
#include "calls.h"
#include "networks.h"

namespace {

bool all_succeed = true;

template <class Prepare, class Input, class Run>
void count(benchmark::State& state, Input const& input, Prepare const& prepare, Run const& run)
{
    for (auto _ : state) {
        auto call = prepare();
        start_counting();
        int const status = run(call);
        auto const asked = stop_counting();
        if (status != 0) {
            all_succeed = false;
            return state.SkipWithError("the call fails");
        }
        state.counters["allocations"] = static_cast<double>(asked.count);
        state.counters["peak_over_old_and_new"] = static_cast<double>(old_bytes(input) + asked.peak) /
                                                  static_cast<double>(old_and_new_bytes(input, call));
    }
}

/// The tolerance is in units of the square of a mean segment; the sagitta of a segment is up to 4.4 of these.
void count_mesh_line(benchmark::State& state, std::size_t segments, std::size_t new_nodes, double tolerance)
{
    auto chain = make_chain<2>(segments, new_nodes);
    auto const input = to_input(chain);
    auto const n = static_cast<double>(segments);
    count(
        state, input, [&] { return before_call(input); },
        [&](auto& out) { return mesh_line(input, tolerance / (n * n), out); });
}

void count_tensors(benchmark::State& state, std::size_t segments, std::size_t new_nodes)
{
    auto chain = make_chain<2>(segments, new_nodes);
    auto const input = with_tensors<2>(to_input(chain), 5);
    count(
        state, input, [&] { return before_call(input); },
        [&](auto& out) { return mesh_line(input, 0.0, out); });
}

void count_mesh_spline(benchmark::State& state, std::size_t segments, std::size_t new_nodes)
{
    auto chain = make_chain<2>(segments, new_nodes);
    auto const input = with_guides(to_input(chain));
    count(
        state, input, [&] { return before_call(input); },
        [&](auto& out) { return mesh_spline(input, 0.0, out); });
}

template <class Read>
void count_remeshing(benchmark::State& state, Read const& read, regime const& r)
{
    network const lines = read();
    count(
        state, lines, [&] { return before_call(lines); },
        [&](auto& mesh) { return remesh_lines(lines.size, r.tolerance, mesh); });
}

template <class... Case>
void enlist(std::string const& name, Case&&... case_and_arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), std::forward<Case>(case_and_arguments)...)->Iterations(1);
}

void enlist_lines()
{
    for (int const density : {3, 10, 40})
        for (std::size_t segments = 1000; segments <= 1'000'000; segments *= 10) {
            std::size_t const new_nodes = segments * static_cast<std::size_t>(density) / 10;
            auto const size = "/per_segment:" + std::to_string(density / 10) + '.' +
                              std::to_string(density % 10) + "/segments:" + std::to_string(segments);
            enlist("mesh_line/sizes/2d" + size, count_mesh_line, segments, new_nodes, 0.0);
            enlist("mesh_line/tolerance/2d" + size, count_mesh_line, segments, new_nodes, 20.0);
            enlist("mesh_line/turning_tensors/2d" + size, count_tensors, segments, new_nodes);
            enlist("mesh_spline/2d" + size, count_mesh_spline, segments, new_nodes);
        }
}

void enlist_remeshing()
{
    for (auto const& r : regimes) {
        auto const tolerance = std::string("/tolerance:") + r.name;
        for (std::size_t elements = 1000; elements <= 10'000'000; elements *= 10) {
            auto const read = [elements] { return make_coast(elements); };
            enlist("remesh_lines/coast" + tolerance + "/elements:" + std::to_string(elements),
                count_remeshing<decltype(read)>, read, r);
        }
        enlist(
            "remesh_lines/borders" + tolerance, count_remeshing<decltype(&read_borders)>, &read_borders, r);
    }
}

} // namespace

int main(int argc, char** argv)
{
    enlist_lines();
    enlist_remeshing();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return all_succeed ? 0 : 1;
}

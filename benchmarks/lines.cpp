#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <vornik1d/vornik1d.h>

#include "calls.h"
#include "chains.h"
#include "race.h"

using namespace trelk;

namespace {

template <class T>
bool same_bits(std::size_t expected_count, T const* expected, std::size_t count, double const* values)
{
    return expected_count == count && std::memcmp(expected, values, count * sizeof(T)) == 0;
}

/// Times one pass of the bare loop, into fresh arrays.
template <std::size_t N>
auto bare_pass(bare::line<N> const& chain)
{
    return [&chain] {
        // what the loop makes outlives the clock
        return fresh_nanoseconds([] { return std::vector<bare::nodes<N>>(); },
            [&chain](auto& made) { return made.emplace_back(bare::place(chain)).count; });
    };
}

/// The label of what `mesh_line` makes; empty if that is not what the bare loop makes in two passes.
template <std::size_t N>
std::string checked_label(bare::line<N> const& chain, sized_chain const& input, std::size_t new_nodes)
{
    auto out = before_call(input);
    int const status = mesh_line(input, 0.0, out);
    auto const second = bare::place(with_ends(chain, bare::place(chain)));
    auto const expected = with_ends(chain, second);
    std::size_t const old_nodes = chain.size();
    bool const agree =
        status == 0 && second.count == new_nodes &&
        same_bits(new_nodes, second.points.get(), out.coords.cols() - old_nodes, out.coords.col(old_nodes)) &&
        same_bits(expected.size(), expected.sizes.data(), out.targets.size(), out.targets.begin()) &&
        same_bits(expected.size(), expected.params.data(), out.params.size(), out.params.begin());
    return agree ? to_label(out.hash()) : "";
}

/// `mesh_line` places nodes twice, the second time along the first mesh; the bare loop does so once.
template <std::size_t N>
void by_sizes(benchmark::State& state, std::size_t segments, std::size_t new_nodes)
{
    auto chain = make_chain<N>(segments, new_nodes);
    auto const input = to_input(chain);
    auto const label = checked_label(chain, input, new_nodes);
    if (label.empty()) return disagree(state, "mesh_line and two passes of the bare loop do not agree");

    race(
        state, {"new_node", new_nodes}, [&] { return before_call(input); },
        [&](auto& out) { return mesh_line(input, 0.0, out); }, "bare", bare_pass(chain));
    state.SetLabel(label);
}

/// A line that is refined until its nodes are within a tolerance, in units of the square of a mean segment; with 0
/// to a billionth of a segment, so that the mesh has all of them but those between which the line is straight.
void refined(benchmark::State& state, std::size_t segments, std::size_t new_nodes, double tolerance)
{
    auto chain = make_chain<2>(segments, new_nodes);
    auto const input = to_input(chain);
    double const segment = 1 / static_cast<double>(segments);
    double const most = tolerance > 0 ? tolerance * segment * segment : 1e-9 * segment;
    auto const run = [&](auto& out) { return mesh_line(input, most, out); };
    auto const checked_label = [&]() -> std::string {
        auto out = before_call(input);
        if (run(out) != 0) return "";
        auto const is_old = [&](unsigned node) { return node < chain.size(); };
        auto const held = static_cast<double>(std::count_if(out.mesh.begin(), out.mesh.end(), is_old));
        state.counters["new_per_old"] =
            static_cast<double>(out.coords.cols()) / static_cast<double>(chain.size()) - 1;
        return tolerance > 0 || held > 0.98 * static_cast<double>(chain.size()) ? to_label(out.hash()) : "";
    };
    auto const label = checked_label();
    if (label.empty()) return disagree(state, "mesh_line leaves nodes out that it is held to");

    time_calls(
        state, {"old_node", chain.size()}, [&] { return before_call(input); }, run);
    state.SetLabel(label);
}

/// Whether two meshes have the same nodes, but for what rounding makes of sums over all of them.
bool are_close(std::size_t old_nodes, chain_output<dense1D<double>> const& by_sizes,
    chain_output<dense2D<double>> const& by_tensors)
{
    if (by_tensors.coords.cols() != by_sizes.coords.cols()) return false;
    double const most = 1e-12 * static_cast<double>(by_sizes.coords.cols()); // in elements
    for (std::size_t j = old_nodes; j < by_sizes.coords.cols(); ++j)
        for (std::size_t r = 0; r < by_sizes.coords.rows(); ++r)
            if (!(std::abs(by_tensors.coords(r, j) - by_sizes.coords(r, j)) <=
                    most * by_sizes.targets[j - old_nodes + 1]))
                return false;
    return true;
}

/// The label of what `mesh_line` makes by tensors; empty if it does not fit what it makes by sizes: the same nodes
/// by tensors that are the same in all directions, and by others as many, to a hundredth.
std::string checked_label(
    sized_chain const& sizes, tensor_chain const& tensors, bool is_isotropic, std::size_t& new_nodes)
{
    auto out = before_call(tensors);
    auto expected = before_call(sizes);
    if (mesh_line(tensors, 0.0, out) != 0 || mesh_line(sizes, 0.0, expected) != 0) return "";

    std::size_t const old_nodes = sizes.indices.size();
    if (is_isotropic && !are_close(old_nodes, expected, out)) return "";

    new_nodes = out.coords.cols() - old_nodes;
    auto const by_sizes = static_cast<double>(expected.coords.cols() - old_nodes);
    bool const as_many = std::abs(static_cast<double>(new_nodes) - by_sizes) <= 0.01 * by_sizes;
    return as_many ? to_label(out.hash()) : "";
}

/// Tensors beside the sizes that they are made of. With a stretch of 1 they are the same in all directions; with
/// another one they turn with the line, as those of a flow do, and so do their common bases from node to node.
template <std::size_t N>
void by_tensors(benchmark::State& state, std::size_t segments, std::size_t new_nodes, double stretch)
{
    auto chain = make_chain<N>(segments, new_nodes);
    auto const sizes = to_input(chain);
    auto const tensors = with_tensors<N>(sizes, stretch);
    std::size_t count = 0;
    auto const label = checked_label(sizes, tensors, stretch == 1, count);
    if (label.empty()) return disagree(state, "mesh_line by tensors and by sizes do not agree");

    auto const run = [](auto const& input) {
        return [&input](auto& out) { return mesh_line(input, 0.0, out); };
    };
    race(
        state, {"new_node", count}, [&] { return before_call(tensors); }, run(tensors), "sizes",
        [&] { return fresh_nanoseconds([&] { return before_call(sizes); }, run(sizes)); });
    state.SetLabel(label);
}

/// The label of what `mesh_straight` makes; empty if that is not what the bare loop makes of each segment.
std::string checked_straight_label(
    bare::line<2> const& chain, sized_chain const& input, std::size_t& new_nodes)
{
    auto out = before_call(input);
    if (mesh_straight(input, out) != 0) return "";

    unsigned const* mesh = out.mesh.begin();
    for (std::size_t s = 0; s + 1 < chain.size(); ++s) {
        bare::line<2> segment;
        segment.points = {chain.points[s], chain.points[s + 1]};
        segment.sizes = {chain.sizes[s], chain.sizes[s + 1]};
        segment.params = {0, 1};
        auto const placed = bare::place(segment);
        if (mesh[0] != s || mesh[placed.count + 1] != s + 1) return "";
        for (std::size_t k = 0; k < placed.count; ++k)
            if (!same_bits(1, &placed.points[k], 1, out.coords.col(mesh[k + 1]))) return "";
        mesh += placed.count + 1;
    }
    new_nodes = out.coords.cols() - chain.size();
    return to_label(out.hash());
}

/// Each segment on its own, beside one pass of the bare loop along the whole line.
void straight(benchmark::State& state, std::size_t segments, std::size_t new_nodes)
{
    auto chain = make_chain<2>(segments, new_nodes);
    auto const input = to_input(chain);
    std::size_t count = 0;
    auto const label = checked_straight_label(chain, input, count);
    if (label.empty()) return disagree(state, "mesh_straight and the bare loop on a segment do not agree");

    race(
        state, {"new_node", count}, [&] { return before_call(input); },
        [&](auto& out) { return mesh_straight(input, out); }, "bare", bare_pass(chain));
    state.SetLabel(label);
}

std::string title(std::string const& function, std::size_t segments, int nodes_per_10_segments)
{
    auto const density =
        std::to_string(nodes_per_10_segments / 10) + '.' + std::to_string(nodes_per_10_segments % 10);
    return function + "/per_segment:" + density + "/segments:" + std::to_string(segments);
}

/// For each number of segments and of new nodes per segment, with those that are to be made.
template <class Add>
void for_chains(std::string const& function, std::initializer_list<int> nodes_per_10_segments, Add const& add,
    std::size_t most_segments = 1'000'000)
{
    for (int const density : nodes_per_10_segments)
        for (std::size_t segments = 1000; segments <= most_segments; segments *= 10)
            add(title(function, segments, density), segments,
                segments * static_cast<std::size_t>(density) / 10);
}

} // namespace

void enlist_lines()
{
    using sized_case = void (*)(benchmark::State&, std::size_t, std::size_t);
    using tensor_case = void (*)(benchmark::State&, std::size_t, std::size_t, double);
    constexpr double ns_per_node = 100; // roughly, old and new, both sides
    auto const sizes = [](sized_case run) {
        return [run](std::string const& name, std::size_t segments, std::size_t new_nodes) {
            enlist(name, ns_per_node * static_cast<double>(segments + new_nodes), run, segments, new_nodes);
        };
    };
    auto const tensors = [](tensor_case run, double stretch) {
        return [run, stretch](std::string const& name, std::size_t segments, std::size_t new_nodes) {
            enlist(name, 3 * ns_per_node * static_cast<double>(segments + new_nodes), run, segments,
                new_nodes, stretch);
        };
    };
    auto const within = [](double tolerance) {
        return [tolerance](std::string const& name, std::size_t segments, std::size_t new_nodes) {
            double const expected = 30 * std::pow(static_cast<double>(segments), 1.6);
            enlist(name, expected, refined, segments, new_nodes, tolerance);
        };
    };
    for_chains("mesh_line/sizes/2d", {3, 10, 40}, sizes(by_sizes<2>));
    for_chains("mesh_line/sizes/3d", {10}, sizes(by_sizes<3>));
    for_chains("mesh_line/tolerance/2d", {10}, within(20), 100'000);
    for_chains("mesh_line/held/2d", {10}, within(0), 100'000);
    for_chains("mesh_line/tensors/2d", {3, 10, 40}, tensors(by_tensors<2>, 1));
    for_chains("mesh_line/turning_tensors/2d", {10}, tensors(by_tensors<2>, 5));
    for_chains("mesh_line/turning_tensors/3d", {10}, tensors(by_tensors<3>, 5));
    for_chains("mesh_straight/2d", {40}, sizes(straight));
}

#include <cmath>
#include <cstddef>
#include <string>

#include <benchmark/benchmark.h>

#include "calls.h"
#include "networks.h"
#include "race.h"

namespace {

/// Whether the elements have sizes near the target on the whole: the line is between what it was and half of
/// that, in elements that are up to a fifth longer than the target in the mean.
bool is_plausible(network const& lines, remeshing const& mesh)
{
    auto const length = [](auto const& coords, auto const& connect) {
        double sum = 0;
        for (std::size_t e = 0; e < connect.cols(); ++e) {
            double const* const a = coords.col(connect(0, e));
            double const* const b = coords.col(connect(1, e));
            sum += std::hypot(b[0] - a[0], b[1] - a[1]);
        }
        return sum;
    };
    double const before = length(lines.coords, lines.connect);
    double const after = length(mesh.coords, mesh.connect);
    return after > 0.5 * before && after < 1.2 * before &&
           after < 1.2 * lines.size * static_cast<double>(mesh.connect.cols());
}

template <class Read>
void remesh(benchmark::State& state, Read const& read, regime const& r)
{
    network const lines = read();
    auto const run = [&](auto& mesh) { return remesh_lines(lines.size, r.tolerance, mesh); };
    std::size_t const old_elements = lines.connect.cols();
    std::size_t new_elements = 0;
    auto const checked_label = [&]() -> std::string {
        auto mesh = before_call(lines);
        if (run(mesh) != 0 || !is_plausible(lines, mesh)) return "";
        new_elements = mesh.connect.cols();
        return to_label(mesh.hash());
    };
    auto const label = checked_label();
    if (label.empty()) return disagree(state, "remesh_lines goes wrong");

    // Splines make as many elements as they want; what is held to the old nodes depends on these.
    bool const is_spline = r.tolerance < 0;
    time_calls(
        state, {is_spline ? "new_element" : "old_element", is_spline ? new_elements : old_elements},
        [&] { return before_call(lines); }, run);
    state.counters["new_per_old"] = static_cast<double>(new_elements) / static_cast<double>(old_elements);
    state.SetLabel(label);
}

} // namespace

void enlist_remeshing()
{
    constexpr double ns_per_element = 1000; // roughly
    for (auto const& r : regimes) {
        auto const tolerance = std::string("/tolerance:") + r.name;
        for (std::size_t elements = 1000; elements <= 10'000'000; elements *= 10) {
            auto const read = [elements] { return make_coast(elements); };
            enlist("remesh_lines/coast" + tolerance + "/elements:" + std::to_string(elements),
                ns_per_element * static_cast<double>(elements), remesh<decltype(read)>, read, r);
        }
        enlist("remesh_lines/borders" + tolerance, ns_per_element * 4000, remesh<decltype(&read_borders)>,
            &read_borders, r);
    }
}

// Meshes roads that cross a geological fault. The line of the fault gives the tensors at the crossings: short
// elements across the fault, long ones along it. So a road that crosses at a right angle gets short elements
// there, and a road almost parallel to the fault gets long ones. Sizes can't make this difference.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <new>
#include <numbers>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include <vornik1d/vornik1d.h>

#include "demo.h"
#include "drawing.h"
#include "figure.h"
#include "line_mesh.h"

namespace {

/// Lengths are in kilometres.
struct options
{
    std::filesystem::path output = ".";
    double across = 0.1;
    double coarsest = 1.2;
    double growth = 0.3;
};

/// A road by its nodes. It crosses the fault at the middle node, at an angle in degrees.
struct road
{
    double angle;
    std::array<unsigned, 5> nodes;
};

struct map_of_roads
{
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> fault;
    std::vector<road> roads;
};

unsigned add_node(trelk::dense2D<double>& coords, double x, double y)
{
    auto const node = static_cast<unsigned>(coords.cols());
    if (!coords.resize(2, node + 1)) throw std::bad_alloc();
    coords(0, node) = x;
    coords(1, node) = y;
    return node;
}

map_of_roads make_map()
{
    map_of_roads result;
    auto& coords = result.coords;
    for (int k = 0; k <= 8; ++k) {
        double const x = 2.0 * k;
        result.fault.push_back(add_node(coords, x, 0.8 * std::sin(0.25 * x)));
    }
    for (auto const& crossing : {std::pair(1U, 90.0), {3U, 50.0}, {5U, 25.0}, {7U, 10.0}}) {
        unsigned const at = crossing.first;
        double const angle = crossing.second;
        double const rise = coords(1, at + 1) - coords(1, at - 1);
        double const course = std::atan2(rise, 4.0) + angle * std::numbers::pi / 180.0;
        double const tx = std::cos(course);
        double const ty = std::sin(course);
        auto const place = [&](double s) { // a bend to the left
            double const offset = 0.03 * s * s;
            return add_node(
                coords, coords(0, at) + s * tx - offset * ty, coords(1, at) + s * ty + offset * tx);
        };
        result.roads.push_back({angle, {place(-3.0), place(-1.5), at, place(1.5), place(3.0)}});
    }
    return result;
}

/// At the nodes of the fault: size `across` across it, the length of its elements along it. At all nodes: at
/// most `coarsest` in any direction.
trelk::dense2D<double> make_tensors(map_of_roads const& map, options const& chosen)
{
    trelk::dense2D<unsigned> fault;
    require_success(trelk::vornik1d::indices_to_connectE2(map.fault, fault), "indices_to_connectE2");
    trelk::dense2D<double> tensors;
    require_success(trelk::vornik1d::metrics_gen_aniso2d(map.coords, fault, chosen.across, tensors),
        "metrics_gen_aniso2d, from elements");

    trelk::dense2D<double> east;
    trelk::dense1D<unsigned> all_nodes;
    if (!east.resize(2, map.coords.cols())) throw std::bad_alloc();
    for (unsigned node = 0; node < east.cols(); ++node) {
        east(0, node) = 1.0;
        all_nodes.push_back(node);
    }
    require_success(
        trelk::vornik1d::metrics_gen_aniso2d(east, all_nodes, chosen.coarsest, chosen.coarsest, tensors),
        "metrics_gen_aniso2d, from directions");
    return tensors;
}

/// Tensors that ask for the smallest size of the given ones in every direction.
trelk::dense2D<double> make_isotropic(trelk::dense2D<double> const& tensors)
{
    trelk::dense2D<double> result;
    if (!result.copy(tensors)) throw std::bad_alloc();
    for (std::size_t k = 0; k < result.cols(); ++k) {
        double const mean = 0.5 * (result(0, k) + result(2, k));
        double const largest = mean + std::hypot(0.5 * (result(0, k) - result(2, k)), result(1, k));
        std::ranges::copy(tensor{largest, 0.0, largest}, result.col(k));
    }
    return result;
}

/// Appends a mesh of the spline through three nodes. `before` and `after` are its guide nodes.
void mesh_between(unsigned before, std::array<unsigned, 3> const& nodes, unsigned after,
    trelk::dense2D<double> const& tensors, options const& chosen, line_mesh& mesh)
{
    trelk::dense1D<unsigned> chain;
    trelk::dense2D<double> targets;
    if (!targets.resize(3, 5)) throw std::bad_alloc();
    for (unsigned const node : {before, nodes[0], nodes[1], nodes[2], after}) {
        std::copy_n(tensors.col(node), 3, targets.col(chain.size()));
        chain.push_back(node);
    }
    line& result = mesh.lines.emplace_back();
    trelk::vornik1d::spline_options options;
    options.max_gradation = chosen.growth;
    options.out_metrics = &result.metrics;
    require_success(
        trelk::vornik1d::mesh_spline(mesh.coords, chain, targets, result.nodes, options), "mesh_spline");
}

/// Meshes each road from its crossing to its two ends. The node at the crossing stays.
line_mesh mesh_roads(map_of_roads const& map, trelk::dense2D<double> const& tensors, options const& chosen)
{
    line_mesh result;
    if (!result.coords.copy(map.coords)) throw std::bad_alloc();
    for (auto const& [angle, n] : map.roads) {
        mesh_between(n[3], {n[2], n[1], n[0]}, n[0], tensors, chosen, result);
        mesh_between(n[1], {n[2], n[3], n[4]}, n[4], tensors, chosen, result);
    }
    return result;
}

/// Prints the length that tensors ask for at the start of a line, and the length of its first element.
void print_row(double angle, line_mesh const& by_tensors, line_mesh const& by_sizes, std::size_t side)
{
    auto const first_length = [&](line_mesh const& mesh) {
        auto const& nodes = mesh.lines[side].nodes;
        return distance(mesh.node(nodes[0]), mesh.node(nodes[1]));
    };
    line const& chain = by_tensors.lines[side];
    point const a = by_tensors.node(chain.nodes[0]);
    point const b = by_tensors.node(chain.nodes[1]);
    double const asked = distance(a, b) / metric_distance(chain.target(0), a, b);
    std::printf("%5.0f %9s %9.3f %9.3f %9zu %9.3f %9zu\n", angle, side % 2 == 0 ? "right" : "left", asked,
        first_length(by_tensors), chain.nodes.size() - 1, first_length(by_sizes),
        by_sizes.lines[side].nodes.size() - 1);
}

std::size_t count_elements(line_mesh const& mesh)
{
    std::size_t result = 0;
    for (line const& chain : mesh.lines) result += chain.nodes.size() - 1;
    return result;
}

void run(options const& chosen)
{
    map_of_roads const map = make_map();
    auto const tensors = make_tensors(map, chosen);
    line_mesh const by_tensors = mesh_roads(map, tensors, chosen);
    line_mesh const by_sizes = mesh_roads(map, make_isotropic(tensors), chosen);

    std::puts("                            first element by            first element by");
    std::puts("angle      side     asked   tensors  elements     sizes  elements");
    for (std::size_t k = 0; k < by_tensors.lines.size(); ++k)
        print_row(map.roads[k / 2].angle, by_tensors, by_sizes, k);

    line_mesh fault;
    fault.coords = map.coords;
    fault.lines.emplace_back().nodes = map.fault;
    line_mesh everything = by_tensors;
    everything.lines.push_back(fault.lines[0]);
    rectangle const whole = widened(bounds(everything), 0.3);
    auto const crossing = [&](road const& crossed) {
        point const middle = by_tensors.node(crossed.nodes[2]);
        return rectangle{{middle.x - 1.4, middle.y - 0.6}, 2.8, 1.2};
    };
    std::array const regions = {whole, crossing(map.roads.front()), crossing(map.roads.back())};
    std::array const inks = {vermilion, blue};
    std::array const meshes = {&by_sizes, &by_tensors};
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t column,
                              std::size_t row) {
        map_frame const view(page, frame, regions[row], map_ground);
        view.lines(fault, light_grey, row == 0 ? 4.0 : 8.0);
        view.lines(*meshes[column], inks[column], row == 0 ? 1.0 : 1.6);
        view.nodes(*meshes[column], inks[column], row == 0 ? 3.2 : 6.0);
        for (std::size_t k = 0; row > 0 && k < meshes[column]->lines.size(); k += 2) {
            line const& chain = meshes[column]->lines[k];
            view.unit_ball(meshes[column]->node(chain.nodes[0]), chain.target(0), black, 1.2);
        }
        if (row == 0) view.box(regions[1], black, 1.0), view.box(regions[2], black, 1.0);
        view.scale_bar(row == 0 ? 2.0 : 0.5, row == 0 ? "2 km" : "0.5 km", black);
    };
    auto const title = [&](char const* name, std::size_t k) {
        return heading{name, std::to_string(count_elements(*meshes[k])) + " elements", inks[k]};
    };
    std::filesystem::create_directories(chosen.output);
    save_columns(chosen.output / "fault", {title("Sizes", 0), title("Tensors", 1)},
        {whole.height / whole.width, 1.2 / 2.8, 1.2 / 2.8},
        {"Roads cross a fault, the grey band. Across the fault, elements should be " + in_km(chosen.across) +
                " long at the crossing.",
            "Sizes ask for this length in every direction, tensors only across the fault. Circles and",
            "ellipses show the target at a crossing: the distance from centre to rim. The lower maps",
            "enlarge the parts in the boxes."},
        draw_map);
}

void add_options(CLI::App& app, options& chosen)
{
    app.add_option("output", chosen.output, "folder for fault.svg and fault.png");
    app.add_option("--across", chosen.across, "size across the fault, km")->check(CLI::PositiveNumber);
    app.add_option("--coarsest", chosen.coarsest, "largest size in any direction, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--growth", chosen.growth, "max_gradation: growth of sizes per length")
        ->check(CLI::PositiveNumber);
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("fault", "Meshes roads that cross a fault, by tensors made from the line of the fault.",
        argc, argv, add_options, run);
}

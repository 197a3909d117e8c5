// Meshes a coast along which an ocean current flows. Elements should be short across the current and can be
// long along it. Tensors ask for both lengths. Sizes ask for the short length in every direction.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "current_field.h"
#include "demo.h"
#include "drawing.h"
#include "figure.h"
#include "line_mesh.h"

namespace {

struct options : demo_options
{
    current_field current;
};

void set_tensors(line_mesh& coast, current_field const& current)
{
    for (line& chain : coast.lines) {
        if (!chain.metrics.resize(3, chain.nodes.size())) throw std::bad_alloc();
        for (std::size_t i = 0; i < chain.nodes.size(); ++i)
            std::ranges::copy(current.metric(coast.node(chain.nodes[i])), chain.metrics.col(i));
    }
}

/// The axis of the current, and lines on both sides of it. On each line the size across the current is a
/// power of two times the smallest size. Labels are on the left.
void draw_current(map_frame const& map, current_field const& current)
{
    constexpr double label_angle = -0.5; // open water off Vesterålen
    auto const [x, y] = current.centre;
    map.circle(current.centre, current.radius, pale_blue, 5.0);
    for (int k = 1; std::ldexp(current.finest, k) < current.coarsest; ++k) {
        double const size = std::ldexp(current.finest, k);
        double const left = current.radius - current.offset(size);
        map.circle(current.centre, left, light_grey, 0.8);
        map.circle(current.centre, current.radius + current.offset(size), light_grey, 0.8);
        map.label({x + left * std::cos(label_angle), y + left * std::sin(label_angle)}, in_km(size), grey);
    }
}

/// The caption, in lines as long as the figure is wide.
std::vector<std::string> caption(current_field const& current)
{
    std::string const finest = in_km(current.finest);
    return {
        "Dots are nodes, the pale line is the input, and the blue band is the axis of an ocean current. On",
        "the axis, elements should be " + finest +
            " long across the current. Labels on the lines beside it give",
        "this length there. Sizes ask for this length in every direction. Tensors ask for " +
            brief(current.stretch) + " times this length",
        "along the current. Circles and ellipses show the target: the distance from centre to rim. The lower",
        "maps enlarge the part in the box.",
    };
}

void run(options const& chosen)
{
    line_mesh const coast = read_lines(chosen.input, chosen.position);
    line_mesh by_sizes = coast;
    line_mesh by_tensors = coast;
    set_sizes(by_sizes, [&](point const& where) { return chosen.current.size_across(where); });
    set_tensors(by_tensors, chosen.current);

    print_heading();
    std::vector<panel> panels = {
        present("Input", {by_tensors}, coast, black),
        present("Sizes", mesh_lines(by_sizes, chosen.tolerance), coast, vermilion),
        present("Tensors", mesh_lines(by_tensors, chosen.tolerance), coast, blue),
    };
    panels[1].with_targets = panels[2].with_targets = true;

    std::filesystem::create_directories(chosen.output);
    auto const backdrop = [&](map_frame const& map) { draw_current(map, chosen.current); };
    scene const view = {coast, backdrop, chosen.harbour, chosen.detail_area(), caption(chosen.current)};
    save_figure(chosen.output / "current", view, panels);
}

void add_options(CLI::App& app, options& chosen)
{
    chosen.detail = {46.0, 89.0, 52.0};
    add_coast_options(app, chosen, "current");
    app.add_option("--finest", chosen.current.finest, "size across the current on its axis, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--coarsest", chosen.current.coarsest, "largest size across the current, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--growth", chosen.current.growth, "growth of the size across in km per km from the axis")
        ->check(CLI::PositiveNumber);
    app.add_option("--stretch", chosen.current.stretch, "size along the current divided by size across it")
        ->check(CLI::PositiveNumber);
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("current",
        "Meshes a coast by metric tensors: short elements across a current, long ones along it.", argc, argv,
        add_options, run);
}

// Meshes a coast with elements that are short near a harbour and longer far from it. The first mesh follows
// these target sizes alone and cuts corners. The second one also stays within a tolerance of the coast.

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "demo.h"
#include "drawing.h"
#include "figure.h"
#include "line_mesh.h"
#include "size_field.h"

namespace {

struct options : demo_options
{
    size_field sizes;
};

/// Rings around the harbour, on which the target size is a power of two times the smallest size.
void draw_size_rings(map_frame const& map, size_field const& sizes)
{
    constexpr double label_angle = -1.68; // a little west of south: open water off Lofoten
    for (int k = 1; std::ldexp(sizes.finest, k) < sizes.coarsest; ++k) {
        double const size = std::ldexp(sizes.finest, k);
        double const radius = sizes.radius(size);
        map.circle({}, radius, light_grey, 0.8);
        map.label({radius * std::cos(label_angle), radius * std::sin(label_angle)}, in_km(size), grey);
    }
}

void run(options const& chosen)
{
    line_mesh coast = read_lines(chosen.input, chosen.position);
    set_sizes(coast, [&](point const& where) { return chosen.sizes.at(where); });

    print_heading();
    std::vector<panel> const panels = {
        present("Input", {coast}, coast, black),
        present("By size alone", mesh_lines(coast, 0.0), coast, vermilion),
        present("Within " + in_km(chosen.tolerance), mesh_lines(coast, chosen.tolerance), coast, blue),
    };

    std::filesystem::create_directories(chosen.output);
    auto const backdrop = [&](map_frame const& map) { draw_size_rings(map, chosen.sizes); };
    std::vector<std::string> const caption = {
        "Dots are nodes, and the pale line is the input. A label on a ring around the harbour gives the "
        "target size",
        "there. The lower maps enlarge the part in the box.",
    };
    scene const view = {coast, backdrop, chosen.harbour, chosen.detail_area(), caption};
    save_figure(chosen.output / "coastline", view, panels);
}

void add_options(CLI::App& app, options& chosen)
{
    add_coast_options(app, chosen, "coastline");
    app.add_option("--finest", chosen.sizes.finest, "target size at the harbour, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--coarsest", chosen.sizes.coarsest, "largest target size, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--growth", chosen.sizes.growth, "growth of the target size in km per km from the harbour")
        ->check(CLI::PositiveNumber);
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("coastline", "Meshes a coast by target sizes that grow with the distance from a harbour.",
        argc, argv, add_options, run);
}

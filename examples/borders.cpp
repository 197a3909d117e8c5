// Remeshes the borders and coasts of countries. Lines that meet stay joined, and each pair of neighbours
// keeps its colour. The table compares three meshes, with tolerance 0, a positive one and a negative one. The
// picture shows the input beside the mesh with the positive tolerance.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <map>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include <vornik1d/vornik1d.h>

#include "demo.h"
#include "drawing.h"
#include "figure.h"
#include "geojson.h"
#include "line_inks.h"
#include "line_mesh.h"
#include "network.h"
#include "network_summary.h"

namespace {

/// Lengths are in kilometres, angles in degrees.
struct options
{
    std::filesystem::path input = "data/europe-borders.geojson";
    std::filesystem::path output = ".";
    std::array<double, 2> origin = {16.5, 45.5};
    std::array<double, 3> map = {0.0, 10.0, 1200.0};
    std::array<double, 3> detail = {-118.0, 77.0, 290.0};
    double size = 15.0;
    double min_size = 5.0;
    double max_angle = 90.0;
    double tolerance = 5.0;
    double sagitta = 0.2;
};

struct country
{
    char const* name;
    point position; // of the name: longitude and latitude in degrees
};
constexpr std::array names = {country{"Italy", {13.25, 46.05}}, country{"Austria", {14.6, 46.85}},
    country{"Slovenia", {14.75, 46.1}}, country{"Croatia", {15.9, 45.7}}, country{"Hungary", {16.6, 46.82}},
    country{"Bosnia", {16.5, 44.8}}};

/// Gives lines between the same two neighbours the same number.
std::vector<unsigned> number_by_sides(line_mesh const& borders)
{
    std::map<std::vector<std::string>, unsigned> numbers;
    std::vector<unsigned> colors;
    for (line const& border : borders.lines) {
        auto const next = static_cast<unsigned>(numbers.size());
        colors.push_back(numbers.try_emplace(border.between, next).first->second);
    }
    return colors;
}

/// Target sizes by node. On islands: a sixth of the shore, at most the default, so that no island shrinks to
/// a line. Elsewhere: 0, which stands for the default.
trelk::dense1D<double> island_sizes(line_mesh const& borders, double default_size)
{
    trelk::dense1D<double> sizes;
    if (!sizes.resize(borders.coords.cols(), 0.0)) throw std::bad_alloc();
    for (line const& border : borders.lines) {
        if (!border.closed()) continue;
        double shore = 0.0;
        require_success(trelk::vornik1d::length(borders.coords, border.nodes, shore), "length");
        for (unsigned const node : border.nodes) sizes[node] = std::min(shore / 6.0, default_size);
    }
    return sizes;
}

struct remeshing
{
    network mesh;
    std::size_t break_nodes = 0;
    double milliseconds = 0.0;
};

remeshing remesh(
    network const& original, trelk::dense1D<double> const& sizes, double tolerance, options const& chosen)
{
    remeshing result;
    auto& [coords, connect, colors] = result.mesh;
    if (!coords.copy(original.coords) || !connect.copy(original.connect) || !colors.copy(original.colors))
        throw std::bad_alloc();

    trelk::dense1D<unsigned> break_nodes;
    trelk::vornik1d::remesh_options options;
    options.deviation_tolerance = tolerance;
    options.max_angle = chosen.max_angle;
    options.min_size = chosen.min_size;
    options.sizes = sizes;
    options.colors = &colors;
    options.break_nodes = &break_nodes;
    auto const start = std::chrono::steady_clock::now();
    require_success(trelk::vornik1d::remesh_lines(coords, connect, chosen.size, options), "remesh_lines");
    std::chrono::duration<double, std::milli> const elapsed = std::chrono::steady_clock::now() - start;
    result.break_nodes = break_nodes.size();
    result.milliseconds = elapsed.count();
    return result;
}

void print_table_heading()
{
    std::printf("%60s %26s %24s\n", "", "length of elements", "largest distance, km");
    std::printf("%-22s %9s %6s %6s %9s %13s %8s %8s %8s %11s %12s %8s\n", "", "elements", "nodes", "break",
        "junctions", "elements with", "shortest", "longest", "longest", "old node to", "new node to", "time");
    std::printf("%-22s %9s %6s %6s %9s %13s %8s %8s %8s %11s %12s %8s\n", "", "", "", "nodes", "kept",
        "other colour", "km", "km", "/ target", "new mesh", "old mesh", "ms");
}

struct result
{
    network mesh;
    network_summary summary;
};

/// Prints a row of the table.
result present(std::string const& title, remeshing const& shown, network const& original,
    std::vector<double> const& targets)
{
    network_summary const s = summarize(shown.mesh, original, targets);
    std::printf("%-22s %9zu %6zu %6zu %9zu %13zu %8.2f %8.2f %8.3f %11.3f %12.3f %8.2f\n", title.c_str(),
        s.elements, s.nodes, shown.break_nodes, s.junctions, s.other_colors, s.shortest, s.longest,
        s.longest_to_target, s.original_off_mesh, s.mesh_off_original, shown.milliseconds);
    return {shown.mesh, s};
}

std::vector<heading> headings(
    options const& chosen, network_summary const& before, network_summary const& after)
{
    auto const lengths = [](network_summary const& s) {
        std::array<char, 96> text;
        std::snprintf(text.data(), text.size(), "%zu elements, %.1f to %.0f km long", s.elements, s.shortest,
            s.longest);
        return std::string(text.data());
    };
    return {{"Input", lengths(before), black},
        {"Remeshed, target size " + in_km(chosen.size),
            lengths(after) + "; all " + std::to_string(after.junctions) + " junctions kept", black}};
}

std::vector<std::string> caption(options const& chosen)
{
    return {
        "Dots are nodes. At a black dot three or more borders meet in one node, before and after remeshing.",
        "Each border keeps its colour. The pale line is the input. Elements are shorter than " +
            in_km(chosen.size) + " in tight",
        "bends, on short borders and around small islands. The counts are for the whole data set, of which",
        "the maps show the middle.",
    };
}

rectangle area(std::array<double, 3> const& middle_and_width, double shape)
{
    auto const [east, north, width] = middle_and_width;
    return {{east - 0.5 * width, north - 0.5 * shape * width}, width, shape * width};
}

/// Draws the input beside the result, and below them an enlarged part with the names of countries.
void draw(options const& chosen, std::vector<color> const& inks, result const& before, result const& after)
{
    constexpr std::array shapes = {0.7, 0.68}; // height over width: of the map, and of the enlarged part
    constexpr double page_width = 800.0;       // points
    rectangle const region = area(chosen.map, shapes[0]);
    rectangle const detail = area(chosen.detail, shapes[1]);
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t column,
                              std::size_t row) {
        bool const is_detail = row == 1;
        network const& mesh = column == 0 ? before.mesh : after.mesh;
        map_frame const map(page, frame, is_detail ? detail : region, map_ground);
        if (is_detail) {
            for (auto const& [name, position] : names)
                map.label(project(position, {chosen.origin[0], chosen.origin[1]}), name, grey);
        }
        if (is_detail && column == 1)
            for (unsigned number = 0; number < inks.size(); ++number)
                map.lines(lines_of_color(before.mesh, number), light_grey, 2.4);
        for (unsigned number = 0; number < inks.size(); ++number) {
            line_mesh const lines = lines_of_color(mesh, number);
            map.lines(lines, inks[number], is_detail ? 1.6 : 0.8);
            map.nodes(lines, inks[number], is_detail ? 5.0 : 2.6);
        }
        for (point const& junction : junctions(mesh)) {
            map.dot(junction, map_ground, is_detail ? 9.5 : 5.0);
            map.dot(junction, black, is_detail ? 8.0 : 4.2);
        }
        map.box(detail, black, is_detail ? 2.4 : 1.2);
        double const bar = is_detail ? chosen.size : 200.0;
        map.scale_bar(bar, in_km(bar), black);
    };
    save_columns(chosen.output / "borders", headings(chosen, before.summary, after.summary),
        {shapes.begin(), shapes.end()}, caption(chosen), draw_map, page_width);
}

void run(options const& chosen)
{
    line_mesh borders = read_lines(chosen.input, chosen.origin);
    join_nodes(borders);
    std::vector<unsigned> const colors = number_by_sides(borders);
    network const original = to_network(borders, colors);
    auto const sizes = island_sizes(borders, chosen.size);
    std::vector<double> targets(sizes.begin(), sizes.end());
    std::ranges::replace(targets, 0.0, chosen.size);

    auto const remeshed = [&](std::string const& title, double tolerance) {
        return present(title, remesh(original, sizes, tolerance, chosen), original, targets);
    };
    print_table_heading();
    result const before = present("Input", {original}, original, targets);
    remeshed("Tolerance 0", 0.0);
    result const after = remeshed("Tolerance " + in_km(chosen.tolerance), chosen.tolerance);
    remeshed("Relative sagitta " + brief(chosen.sagitta), -chosen.sagitta);

    std::filesystem::create_directories(chosen.output);
    draw(chosen, choose_inks(borders, colors), before, after);
}

void add_options(CLI::App& app, options& chosen)
{
    app.add_option(
        "input", chosen.input, "GeoJSON file of LineStrings, with the countries on both sides of each");
    app.add_option("output", chosen.output, "folder for borders.svg and borders.png");
    app.add_option("--size", chosen.size, "target size of elements, km")->check(CLI::PositiveNumber);
    app.add_option("--min-size", chosen.min_size, "minimum size by curvature, km")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--max-angle", chosen.max_angle, "largest change of direction that is no corner, degrees")
        ->check(CLI::NonNegativeNumber);
    app.add_option(
           "--tolerance", chosen.tolerance, "positive deviation_tolerance, km; the picture shows this mesh")
        ->check(CLI::PositiveNumber);
    app.add_option("--sagitta", chosen.sagitta, "negative deviation_tolerance, without its sign")
        ->check(CLI::PositiveNumber);
    app.add_option("--origin", chosen.origin, "longitude and latitude of the maps' origin, degrees");
    app.add_option(
        "--map", chosen.map, "upper maps: km east and north of the origin to their middle, width in km");
    app.add_option("--detail", chosen.detail,
        "lower maps: km east and north of the origin to their middle, width in km");
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("borders", "Remeshes the borders of countries. Borders that meet stay joined.", argc,
        argv, add_options, run);
}

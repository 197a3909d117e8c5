// Remeshes the borders and coasts of countries: lines that meet stay joined where they meet, and each pair of
// neighbours keeps its colour. Once the mesh is held to the lines as they are; then they may be splines, which
// elements follow within a distance, or within a part of the radius of curvature.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <limits>
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
    std::array<double, 3> detail = {-105.0, 28.0, 400.0};
    double size = 40.0;
    double min_size = 1.0;
    double max_angle = 60.0;
    double tolerance = 2.0;
    double sagitta = 0.2;
};

struct country
{
    char const* name;
    point position; // of the name: longitude and latitude in degrees
};
constexpr std::array names = {country{"Italy", {12.9, 45.95}}, country{"Austria", {14.2, 46.85}},
    country{"Slovenia", {14.75, 46.1}}, country{"Croatia", {15.85, 45.35}}, country{"Hungary", {17.0, 46.85}},
    country{"Bosnia", {16.5, 44.8}}};

/// Numbers the lines by what is on either side of them.
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

/// Target sizes by node, 0 where the default is to do: on islands a sixth of their shores if that is less, so
/// that none shrinks to a line.
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
    constexpr unsigned no_limit = std::numeric_limits<unsigned>::max();
    remeshing result;
    auto& [coords, connect, colors] = result.mesh;
    if (!coords.copy(original.coords) || !connect.copy(original.connect) || !colors.copy(original.colors))
        throw std::bad_alloc();

    trelk::dense1D<unsigned> hard_nodes;
    trelk::dense1D<unsigned> const hard_edges;
    auto const start = std::chrono::steady_clock::now();
    require_success(trelk::vornik1d::remesh_lines(coords, connect, chosen.size, sizes, colors, hard_nodes,
                        hard_edges, /* force_even */ false, chosen.max_angle, tolerance,
                        /* max_gradation */ 0.0, chosen.min_size, /* min_elements */ 1, no_limit),
        "remesh_lines");
    std::chrono::duration<double, std::milli> const elapsed = std::chrono::steady_clock::now() - start;
    result.break_nodes = hard_nodes.size();
    result.milliseconds = elapsed.count();
    return result;
}

void print_table_heading()
{
    std::printf("%55s %7s %9s %21s %7s\n", "junctions", "other", "longest", "km off: old nodes new", "time");
    std::printf("%-21s %6s %9s %6s %9s %7s %9s %10s %10s %7s\n", "", "nodes", "elements", "breaks", "kept",
        "colour", "/ target", "from new", "from old", "ms");
}

std::string subtitle(network_summary const& s)
{
    if (s.original_off_mesh == 0.0) return std::to_string(s.nodes) + " nodes";
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%zu nodes, %.1f km off at most", s.nodes, s.original_off_mesh);
    return text.data();
}

struct result
{
    heading head;
    network mesh;
};

/// Prints a row on a mesh, and gives what the figure shows of it.
result present(std::string const& title, remeshing const& shown, network const& original,
    std::vector<double> const& targets)
{
    network_summary const s = summarize(shown.mesh, original, targets);
    std::printf("%-21s %6zu %9zu %6zu %9zu %7zu %9.3f %10.3f %10.3f %7.2f\n", title.c_str(), s.nodes,
        s.elements, shown.break_nodes, s.junctions, s.other_colors, s.longest, s.original_off_mesh,
        s.mesh_off_original, shown.milliseconds);
    return {{title, subtitle(s), black}, shown.mesh};
}

std::vector<std::string> caption(options const& chosen)
{
    return {
        "Dots are nodes, black ones where three lines meet; the pale line is the input. Each pair of",
        "neighbours has one colour along its border. Elements should be " + in_km(chosen.size) +
            " long, and less",
        "where they follow bends, on short lines and around islands. Of bends whose radius is below the",
        "tolerance no nodes are asked for, so that a mesh may be farther off there.",
    };
}

/// Draws the whole region, and below a part of it with the names of countries.
void draw(options const& chosen, line_mesh const& borders, std::vector<color> const& inks,
    std::vector<result> const& results)
{
    constexpr color sea = {0.94, 0.96, 0.98};
    auto const [east, north, width] = chosen.detail;
    rectangle const detail = {{east - 0.5 * width, north - 0.4 * width}, width, 0.8 * width};
    rectangle const region = widened(bounds(borders), 20.0);
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t column,
                              std::size_t row) {
        bool const is_detail = row == 1;
        double const scale = is_detail ? 1.8 : 1.0;
        network const& mesh = results[column].mesh;
        map_frame const map(page, frame, is_detail ? detail : region, sea);
        map.lines(borders, light_grey, 1.6 * scale);
        if (is_detail)
            for (auto const& [name, position] : names)
                map.label(project(position, {chosen.origin[0], chosen.origin[1]}), name, grey);
        for (unsigned number = 0; number < inks.size(); ++number) {
            line_mesh const lines = lines_of_color(mesh, number);
            map.lines(lines, inks[number], 0.8 * scale);
            map.nodes(lines, inks[number], 1.8 * scale);
        }
        for (point const& junction : junctions(mesh)) map.dot(junction, black, 2.8 * scale);
        map.box(detail, black, is_detail ? 2.4 : 1.2);
        double const bar = is_detail ? 50.0 : 500.0;
        map.scale_bar(bar, in_km(bar), black);
    };

    std::vector<heading> headings;
    headings.reserve(results.size());
    for (result const& shown : results) headings.push_back(shown.head);
    save_columns(
        chosen.output / "borders", headings, {region.height / region.width, 0.8}, caption(chosen), draw_map);
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

    print_table_heading();
    std::vector<result> results = {present("Input", {original}, original, targets)};
    auto const add = [&](std::string const& title, double tolerance) {
        results.push_back(present(title, remesh(original, sizes, tolerance, chosen), original, targets));
    };
    add("Tolerance 0", 0.0);
    add("Tolerance " + in_km(chosen.tolerance), chosen.tolerance);
    add("Relative sagitta " + brief(chosen.sagitta), -chosen.sagitta);

    std::filesystem::create_directories(chosen.output);
    draw(chosen, borders, choose_inks(borders, colors), results);
}

void add_options(CLI::App& app, options& chosen)
{
    app.add_option(
        "input", chosen.input, "GeoJSON file of LineStrings, with the countries beside each of them");
    app.add_option("output", chosen.output, "folder for borders.svg and borders.png");
    app.add_option("--size", chosen.size, "target size of elements, km")->check(CLI::PositiveNumber);
    app.add_option("--min-size", chosen.min_size, "least size by curvature, km")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--max-angle", chosen.max_angle, "largest change of direction that is no corner, degrees")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--tolerance", chosen.tolerance, "km that a spline may stray from the lines")
        ->check(CLI::PositiveNumber);
    app.add_option("--sagitta", chosen.sagitta, "distance of elements from a spline over its radius")
        ->check(CLI::PositiveNumber);
    app.add_option("--origin", chosen.origin, "longitude and latitude of the maps' origin, degrees");
    app.add_option(
        "--detail", chosen.detail, "part to enlarge: km east and north of the origin, width in km");
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("borders", "Remeshes the borders of countries, which stay joined where they meet.", argc,
        argv, add_options, run);
}

// Meshes two curves of which some points are known: the section of a wing in the plane, and a knot in space.
// A spline runs through the known points. Elements are short where the spline bends, and shorter for a
// smaller tolerance. A limit on growth sets how fast they become longer away from the bends.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <new>
#include <numbers>
#include <string>
#include <tuple>
#include <vector>

#include <CLI/CLI.hpp>

#include <vornik1d/helpers.h>

#include "curves.h"
#include "demo.h"
#include "drawing.h"
#include "figure.h"
#include "line_mesh.h"
#include "summary.h"

namespace {

/// Lengths are in chords of the section.
struct options
{
    std::filesystem::path output = ".";
    std::string digits = "2412";
    unsigned points = 60;
    std::array<double, 3> tolerances = {0.002, 0.0005, 0.0001};
    double growth = 0.2;
};

constexpr std::array<color, 3> inks = {vermilion, blue, green};

/// A closed curve and the spline through some of its points.
struct curve
{
    std::string name;
    bool has_corner;                // at the point where it begins and ends
    line_mesh exact;                // many points of the curve
    line_mesh input;                // the known points
    trelk::dense1D<unsigned> chain; // the known points, with guide nodes
    line_mesh spline;               // many points of the spline
};

/// The points of a closed curve at equal steps of an angle.
template <class Shape>
line_mesh sample(Shape const& shape, std::size_t count)
{
    constexpr std::size_t dimension = std::tuple_size_v<decltype(shape.at(0.0))>;
    line_mesh result;
    auto& nodes = result.lines.emplace_back().nodes;
    if (!result.coords.resize(dimension, count) || !nodes.reserve(count + 1)) throw std::bad_alloc();
    for (std::size_t k = 0; k < count; ++k) {
        double const turn = static_cast<double>(k) / static_cast<double>(count);
        std::ranges::copy(shape.at(2.0 * std::numbers::pi * turn), result.coords.col(k));
        nodes.push_back(static_cast<unsigned>(k));
    }
    nodes.push_back(0);
    return result;
}

/// The spline of a chain, as a closed curve. Each span covers the same angle.
template <int N>
struct spline
{
    trelk::dense2D<double> coords;
    trelk::dense1D<unsigned> chain;

    std::size_t spans() const { return chain.size() - 3; }

    std::array<double, N> at(double angle) const
    {
        double const place = angle / (2.0 * std::numbers::pi) * static_cast<double>(spans());
        auto const i = std::min(static_cast<std::size_t>(place), spans() - 1);
        trelk::vector_fixed<double, N> where{};
        require_success(trelk::vornik1d::spline_point(coords, chain[i], chain[i + 1], chain[i + 2],
                            chain[i + 3], place - static_cast<double>(i), where),
            "spline_point");
        return std::to_array(where.values);
    }
};

template <class Shape>
curve known_at(unsigned points, std::string const& name, Shape const& shape, bool has_corner)
{
    constexpr std::size_t samples = 2400;
    constexpr int dimension = std::tuple_size_v<decltype(shape.at(0.0))>;
    curve result = {name, has_corner, sample(shape, samples), sample(shape, points), {}, {}};
    // The curve is smooth across the ends of its chain, unless there is a corner.
    result.chain = trelk::vornik1d::with_guides(result.input.lines[0].nodes, /* closed */ !has_corner);
    if (result.chain.empty()) throw std::bad_alloc();
    spline<dimension> const through = {result.input.coords, result.chain};
    result.spline = sample(through, through.spans() * (samples / points + 1));
    return result;
}

line_mesh mesh_by_curvature(curve const& shape, double tolerance, double growth)
{
    constexpr double target_size = 0.2; // unless curvature or growth bounds it

    line_mesh result;
    trelk::dense1D<double> sizes;
    if (!result.coords.copy(shape.input.coords) || !sizes.resize(shape.chain.size(), target_size))
        throw std::bad_alloc();
    line& mesh = result.lines.emplace_back();
    trelk::vornik1d::spline_options options;
    options.deviation_tolerance = tolerance;
    options.min_size = 0.0005; // limits the number of samples at kinks of the spline
    options.max_gradation = growth;
    options.min_elements = 3; // two elements enclose nothing
    options.out_sizes = &mesh.sizes;
    require_success(
        trelk::vornik1d::mesh_spline(result.coords, shape.chain, sizes, mesh.nodes, options), "mesh_spline");
    return result;
}

std::vector<double> element_lengths(line_mesh const& mesh)
{
    auto const& nodes = mesh.lines[0].nodes;
    std::vector<double> lengths;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        double squared = 0.0;
        for (std::size_t d = 0; d < mesh.coords.rows(); ++d)
            squared += std::pow(mesh.coords(d, nodes[i]) - mesh.coords(d, nodes[i - 1]), 2);
        lengths.push_back(std::sqrt(squared));
    }
    return lengths;
}

/// The largest ratio of the lengths of two neighbouring elements. A corner is skipped.
double largest_growth(std::vector<double> const& lengths, bool has_corner)
{
    double result = 1.0;
    double before = has_corner ? lengths.front() : lengths.back();
    for (double const length : lengths) {
        result = std::max({result, length / before, before / length});
        before = length;
    }
    return result;
}

/// The largest distance of a node of one mesh from the line of the other.
double largest_distance(line_mesh const& samples, line_mesh const& mesh)
{
    double result = 0.0;
    for (std::size_t k = 0; k < samples.coords.cols(); ++k)
        result = std::max(result, distance_to_line(samples.coords.col(k), mesh.lines[0], mesh));
    return result;
}

void print_table_heading()
{
    std::printf("%36s  %-18s %8s %21s\n", "", "length of elements", "largest", "largest distance from");
    std::printf("%-10s %10s %8s %6s %9s %9s %8s %10s %10s\n", "", "tolerance", "elements", "nodes",
        "shortest", "longest", "growth", "the spline", "the curve");
}

struct meshing_result
{
    line_mesh mesh;
    std::size_t elements;
    double distance; // the largest one from the curve
};

/// Meshes a curve and prints a row on the mesh.
meshing_result present(curve const& shape, double tolerance, double growth)
{
    line_mesh const mesh = mesh_by_curvature(shape, tolerance, growth);
    std::vector<double> const lengths = element_lengths(mesh);
    auto const [shortest, longest] = std::ranges::minmax(lengths);
    line const& chain = mesh.lines[0];
    double const from_curve = largest_distance(shape.exact, mesh);
    std::printf("%-10s %10g %8zu %6zu %9.5f %9.5f %8.3f %10.6f %10.6f\n", shape.name.c_str(), tolerance,
        lengths.size(), chain.nodes.size() - (chain.closed() ? 1 : 0), shortest, longest,
        largest_growth(lengths, shape.has_corner), largest_distance(shape.spline, mesh), from_curve);
    return {mesh, lengths.size(), from_curve};
}

/// Widths of pens, and of the dots on nodes and on the known points.
struct pens
{
    double exact;
    double known;
    double mesh;
    double nodes;

    pens scaled(double by) const { return {by * exact, by * known, by * mesh, by * nodes}; }
};

void draw_flat(
    map_frame const& map, curve const& shape, line_mesh const& mesh, color const& ink, pens const& widths)
{
    map.lines(shape.exact, light_grey, widths.exact);
    map.nodes(shape.input, light_grey, widths.known);
    map.lines(mesh, ink, widths.mesh);
    map.nodes(mesh, ink, widths.nodes);
}

/// The line of a mesh in pieces of some elements each.
std::vector<line_mesh> pieces(line_mesh const& mesh, std::size_t elements)
{
    auto const& nodes = mesh.lines[0].nodes;
    std::vector<line_mesh> result;
    for (std::size_t i = 0; i + 1 < nodes.size(); i += elements) {
        line_mesh& piece = result.emplace_back();
        piece.coords = mesh.coords;
        piece.lines.emplace_back().nodes = nodes.sub_vector(i, elements + 1);
    }
    return result;
}

/// Draws a curve in space from above. Higher parts are thicker and cover lower ones.
void draw_stacked(
    map_frame const& map, curve const& shape, line_mesh const& mesh, color const& ink, pens const& widths)
{
    struct layer
    {
        double height;
        std::function<void()> draw;
    };
    std::vector<layer> layers;
    // A layer is `lift` times its order above the strand: over its lower layers, but under a strand that
    // crosses above.
    constexpr double lift = 0.05;
    auto const add = [&](std::vector<line_mesh> const& parts, double order, auto const& draw) {
        for (line_mesh const& part : parts) {
            double const height = part.coords(2, part.lines[0].nodes[0]);
            pens const by = widths.scaled(1.0 + 2.0 * height);
            layers.push_back({height + order * lift, [=] { draw(part, by); }});
        }
    };
    add(pieces(shape.exact, 20), 0.0, [&](line_mesh const& part, pens const& by) {
        map.clear(part, 2.5 * by.exact);
        map.lines(part, light_grey, by.exact);
    });
    add(pieces(shape.input, 1), 1.0, [&](line_mesh const& part, pens const& by) {
        map.dot(part.node(part.lines[0].nodes[0]), light_grey, by.known);
    });
    add(pieces(mesh, 1), 2.0, [&](line_mesh const& part, pens const& by) {
        map.lines(part, ink, by.mesh);
        map.nodes(part, ink, by.nodes);
    });
    std::ranges::stable_sort(layers, {}, &layer::height);
    for (layer const& next : layers) next.draw();
}

/// What a column of the picture shows.
struct column
{
    meshing_result section;
    meshing_result knot;
};

std::string off_by(double distance)
{
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "at most %.5f away", distance);
    return text.data();
}

std::vector<std::string> caption(options const& chosen)
{
    return {
        "Top: wing section NACA " + chosen.digits +
            ". Middle: its leading edge. Bottom: a knot in space, from",
        "above. Coloured dots are nodes of the mesh, pale dots the known points, and the pale line is the",
        "true curve. Labels give the largest distance of the curve from the mesh, in chords of the section.",
        "Elements are short in bends. Away from them, sizes grow by at most " + brief(chosen.growth) +
            " per length.",
    };
}

std::vector<heading> headings(options const& chosen, std::vector<column> const& columns)
{
    std::vector<heading> result;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        auto const& [section, knot] = columns[k];
        result.push_back({"Tolerance " + brief(chosen.tolerances[k]),
            std::to_string(section.elements) + " elements on the section, " + std::to_string(knot.elements) +
                " on the knot",
            inks[k]});
    }
    return result;
}

void save_picture(
    options const& chosen, curve const& section, curve const& knot, std::vector<column> const& columns)
{
    rectangle const whole = widened(bounds(section.exact), 0.05);
    rectangle const nose = {{-0.014, -0.052}, 0.15, 0.12};
    rectangle const plan = widened(bounds(knot.exact), 0.05);

    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t k, std::size_t row) {
        std::array<rectangle, 3> const regions = {whole, nose, plan};
        auto const& [flat, stacked] = columns[k];
        map_frame const map(page, frame, regions[row], map_ground);
        if (row == 0) {
            draw_flat(map, section, flat.mesh, inks[k], {2.0, 5.0, 0.8, 3.0});
            map.box(nose, black, 1.2);
        } else if (row == 1) {
            draw_flat(map, section, flat.mesh, inks[k], {4.0, 9.0, 1.2, 4.4});
            map.label({0.07, 0.011}, off_by(flat.distance), inks[k]);
            map.scale_bar(0.02, brief(0.02), black);
            map.box(nose, black, 2.4);
        } else {
            draw_stacked(map, knot, stacked.mesh, inks[k], {3.6, 6.5, 1.0, 3.0});
            map.label({-0.06, 0.0}, off_by(stacked.distance), inks[k]);
            map.scale_bar(0.1, brief(0.1), black);
        }
    };

    auto const shape = [](rectangle const& region) { return region.height / region.width; };
    std::filesystem::create_directories(chosen.output);
    save_columns(chosen.output / "airfoil", headings(chosen, columns),
        {shape(whole), shape(nose), shape(plan)}, caption(chosen), draw_map);
}

void run(options const& chosen)
{
    naca_section const closed_form(chosen.digits);
    curve const section = known_at(chosen.points, "NACA " + chosen.digits, closed_form, true);
    curve const knot = known_at(chosen.points, "Knot", torus_knot(), false);

    print_table_heading();
    std::vector<column> columns;
    for (double const tolerance : chosen.tolerances)
        columns.push_back(
            {present(section, tolerance, chosen.growth), present(knot, tolerance, chosen.growth)});
    save_picture(chosen, section, knot, columns);
}

std::string fault_of_digits(std::string const& digits)
{
    bool const are_four_digits =
        digits.size() == 4 && digits.find_first_not_of("0123456789") == std::string::npos;
    return are_four_digits && digits.substr(2) != "00" ? "" : "not four digits, the last two above 00";
}

void add_options(CLI::App& app, options& chosen)
{
    app.add_option("output", chosen.output, "folder for airfoil.svg and airfoil.png");
    app.add_option("--section", chosen.digits, "section of the NACA four-digit series")
        ->check(fault_of_digits);
    app.add_option("--points", chosen.points, "number of known points of each curve")
        ->check(CLI::Range(4, 1000));
    app.add_option(
           "--tolerances", chosen.tolerances, "positive deviation_tolerance of each of the three meshes")
        ->check(CLI::PositiveNumber);
    app.add_option("--growth", chosen.growth, "max_gradation: growth of sizes per length of the curve")
        ->check(CLI::PositiveNumber);
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("airfoil",
        "Meshes a wing section and a knot along splines through some of their points. "
        "Lengths are in chords of the section.",
        argc, argv, add_options, run);
}

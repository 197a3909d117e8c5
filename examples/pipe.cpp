// Draws the centre line of a pipe with an expansion loop in space. Straight runs are translations, elbows are
// rotations. Each piece starts from the last node of the piece before. Elements are short in the elbows and
// grow along the runs.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <limits>
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

using vector3 = trelk::vector_fixed<double, 3>;

/// Lengths are in metres.
struct options
{
    std::filesystem::path output = ".";
    double radius = 0.6;
    double fine = 0.1;
    double coarse = 0.5;
};

vector3 scaled(vector3 const& v, double by) { return {v[0] * by, v[1] * by, v[2] * by}; }

vector3 cross(vector3 const& a, vector3 const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// A pipe that is drawn piece by piece, with its heading.
struct pipe
{
    trelk::dense2D<double> coords;
    trelk::dense2D<unsigned> connect;
    vector3 heading;
    double exact_length = 0.0;
    line_mesh runs, elbows;

    unsigned end() const { return static_cast<unsigned>(coords.cols() - 1); }

    /// Goes straight on. Sizes are `fine` at both ends and `coarse` in the middle.
    void run(double length, double fine, double coarse)
    {
        vector3 const half = scaled(heading, 0.5 * length);
        for (auto const& [size_a, size_b] : {std::array{fine, coarse}, {coarse, fine}}) {
            trelk::dense1D<unsigned> nodes;
            require_success(trelk::vornik1d::extrude_translate(coords, end(), half, {size_a, size_b}, nodes),
                "extrude_translate");
            add(nodes, runs);
        }
        exact_length += length;
    }

    /// Turns by a right angle towards a direction across the heading.
    void turn(vector3 const& towards, double radius, double size)
    {
        constexpr double angle = 0.5 * std::numbers::pi;
        double const* const from = coords.col(end());
        vector3 const center = {
            from[0] + radius * towards[0], from[1] + radius * towards[1], from[2] + radius * towards[2]};
        vector3 const rotation = scaled(cross(heading, towards), angle);
        trelk::dense1D<unsigned> nodes;
        require_success(trelk::vornik1d::extrude_rotate(
                            coords, end(), center, rotation, {size, size, /* force_even */ true}, nodes),
            "extrude_rotate");
        heading = towards;
        exact_length += radius * angle;
        add(nodes, elbows);
    }

private:
    void add(trelk::dense1D<unsigned> const& nodes, line_mesh& to)
    {
        require_success(trelk::vornik1d::indices_to_connectE2(nodes, connect), "indices_to_connectE2");
        to.lines.emplace_back().nodes = nodes;
    }
};

pipe draw_pipe(options const& chosen)
{
    constexpr vector3 along = {1, 0, 0}, aside = {0, 1, 0}, back = {0, -1, 0}, up = {0, 0, 1},
                      down = {0, 0, -1};
    struct
    {
        double length;
        vector3 then;
    } const pieces[] = {{2.5, aside}, {1.0, up}, {1.0, along}, {2.0, down}, {1.0, back}, {1.0, along}};

    pipe result;
    if (!result.coords.resize(3, 1, 0.0)) throw std::bad_alloc();
    result.heading = along;
    for (auto const& [length, then] : pieces) {
        result.run(length, chosen.fine, chosen.coarse);
        result.turn(then, chosen.radius, chosen.fine);
    }
    result.run(2.5, chosen.fine, chosen.coarse);
    result.runs.coords = result.elbows.coords = result.coords;
    return result;
}

void print_row(char const* name, line_mesh const& mesh)
{
    std::size_t elements = 0;
    double shortest = std::numeric_limits<double>::infinity();
    double longest = 0.0;
    for (line const& piece : mesh.lines)
        for (std::size_t i = 1; i < piece.nodes.size(); ++i) {
            trelk::dense1D<unsigned> const element = piece.nodes.sub_vector(i - 1, 2);
            double length = 0.0;
            require_success(trelk::vornik1d::length(mesh.coords, element, length), "length");
            shortest = std::min(shortest, length);
            longest = std::max(longest, length);
            ++elements;
        }
    std::printf("%-12s %6zu %9zu %9.4f %9.4f\n", name, mesh.lines.size(), elements, shortest, longest);
}

/// The view from the right, in front and above. All axes have the same scale.
line_mesh in_perspective(line_mesh const& mesh)
{
    line_mesh result = {{}, mesh.lines};
    if (!result.coords.resize(2, mesh.coords.cols())) throw std::bad_alloc();
    double const c = std::sqrt(0.75);
    for (std::size_t k = 0; k < mesh.coords.cols(); ++k) {
        double const* const p = mesh.coords.col(k);
        result.coords(0, k) = c * (p[0] + p[1]);
        result.coords(1, k) = p[2] + 0.5 * (p[1] - p[0]);
    }
    return result;
}

void run(options const& chosen)
{
    pipe const drawn = draw_pipe(chosen);
    std::puts("pieces        count  elements  shortest   longest");
    print_row("runs", drawn.runs);
    print_row("elbows", drawn.elbows);
    double length = 0.0;
    require_success(trelk::vornik1d::length(drawn.coords, drawn.connect, length), "length");
    double const* const end = drawn.coords.col(drawn.end());
    std::printf(
        "Length of the mesh: %.4f m, of the exact pipe: %.4f m. Distance of the end from the axis: %.1e m.\n",
        length, drawn.exact_length, std::hypot(end[1], end[2]));

    line_mesh const runs = in_perspective(drawn.runs);
    line_mesh const elbows = in_perspective(drawn.elbows);
    rectangle const whole = widened(bounds(runs), 0.3);
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t, std::size_t) {
        map_frame const view(page, frame, whole, map_ground);
        for (auto const& [mesh, ink] : {std::pair(&runs, blue), {&elbows, vermilion}}) {
            view.lines(*mesh, ink, 1.2);
            view.nodes(*mesh, ink, 4.0);
        }
    };
    std::filesystem::create_directories(chosen.output);
    save_columns(chosen.output / "pipe",
        {{"Expansion loop", std::to_string(drawn.connect.cols()) + " elements", black}},
        {whole.height / whole.width},
        {"Blue: straight runs, made by translation. Red: elbows, made by rotation. The target size is " +
                brief(chosen.fine) + " m in the elbows",
            "and grows to " + brief(chosen.coarse) + " m in the middle of the runs."},
        draw_map, /* page_width */ 720.0);
}

void add_options(CLI::App& app, options& chosen)
{
    app.add_option("output", chosen.output, "folder for pipe.svg and pipe.png");
    app.add_option("--radius", chosen.radius, "radius of the elbows, m")->check(CLI::PositiveNumber);
    app.add_option("--fine", chosen.fine, "size in the elbows, m")->check(CLI::PositiveNumber);
    app.add_option("--coarse", chosen.coarse, "size in the middle of a run, m")->check(CLI::PositiveNumber);
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("pipe", "Draws the centre line of a pipe by translations and rotations.", argc, argv,
        add_options, run);
}

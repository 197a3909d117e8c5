// Meshes a coast with elements that are short near a harbour and grow with the distance from it: by these
// target sizes alone, which lets the mesh cut corners, and then under a tolerance that holds it to the coast.

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <vornik1d/vornik1d.h>

#include "figure.h"
#include "geojson.h"
#include "line_mesh.h"
#include "size_field.h"
#include "summary.h"

namespace {

struct options
{
    std::filesystem::path input = "data/lofoten-coast.geojson";
    std::filesystem::path output = ".";
    double tolerance = 0.5;
    size_field sizes;
    std::string harbour = "Svolvær";
    std::array<double, 2> position = {14.571, 68.219};
    std::array<double, 3> detail = {-18.0, -1.0, 60.0};
};

/// Reads the coast into the plane, with the harbour at the origin, and sets the target sizes at its nodes.
line_mesh read_coast(options const& chosen)
{
    line_mesh coast = read_geojson(chosen.input);
    point const harbour = {chosen.position[0], chosen.position[1]};
    for (std::size_t j = 0; j < coast.coords.cols(); ++j) {
        auto const [x, y] = project({coast.coords(0, j), coast.coords(1, j)}, harbour);
        coast.coords(0, j) = x;
        coast.coords(1, j) = y;
    }
    for (line& chain : coast.lines) {
        for (unsigned const node : chain.nodes) {
            if (!chain.sizes.push_back(chosen.sizes.at(coast.node(node)))) throw std::bad_alloc();
        }
    }
    return coast;
}

struct meshing
{
    line_mesh mesh;
    double milliseconds = 0.0;
};

meshing mesh_coast(line_mesh const& coast, double tolerance)
{
    constexpr unsigned no_limit = std::numeric_limits<unsigned>::max();
    meshing result;
    auto& [coords, lines] = result.mesh;
    if (!coords.copy(coast.coords)) throw std::bad_alloc();

    auto const start = std::chrono::steady_clock::now();
    for (line const& chain : coast.lines) {
        line& mesh = lines.emplace_back();
        unsigned const min_elements = chain.closed() ? 3 : 1; // two elements enclose nothing
        trelk::dense1D<double> params;
        int const status = trelk::vornik1d::mesh_line(coords, chain.nodes, chain.sizes, false, min_elements,
            no_limit, tolerance, 0.0, mesh.nodes, params, mesh.sizes);
        if (status != 0) throw std::runtime_error("mesh_line failed with status " + std::to_string(status));
    }
    std::chrono::duration<double, std::milli> const elapsed = std::chrono::steady_clock::now() - start;
    result.milliseconds = elapsed.count();
    return result;
}

void print_heading()
{
    std::printf("%-18s %5s %6s %9s  %-27s %9s %7s\n", "", "", "", "", "metric length of elements",
        "deviation", "time");
    std::printf("%-18s %5s %6s %9s  %8s %8s %9s %9s %7s\n", "", "lines", "nodes", "elements", "shortest",
        "mean", "longest", "km", "ms");
}

void print_row(std::string const& title, summary const& s, double milliseconds)
{
    std::printf("%-18s %5zu %6zu %9zu  %8.3f %8.3f %9.3f %9.3f", title.c_str(), s.lines, s.nodes, s.elements,
        s.shortest, s.mean, s.longest, s.deviation);
    if (milliseconds > 0.0) std::printf(" %7.2f", milliseconds);
    std::puts("");
}

std::string subtitle(summary const& s)
{
    std::string const nodes = std::to_string(s.nodes) + " nodes";
    if (s.deviation == 0.0) return nodes;
    std::array<char, 32> km;
    std::snprintf(km.data(), km.size(), "%.2f km", s.deviation);
    return nodes + ", up to " + km.data() + " off the coast";
}

void run(options const& chosen)
{
    line_mesh const coast = read_coast(chosen);
    std::vector<panel> panels;
    auto const present = [&](std::string const& title, meshing const& shown, color const& ink) {
        summary const s = summarize(shown.mesh, coast);
        print_row(title, s, shown.milliseconds);
        panels.push_back({title, subtitle(s), shown.mesh, ink});
    };

    // Colours that colour-blind readers can tell apart.
    constexpr color black = {0.2, 0.2, 0.2};
    constexpr color vermilion = {0.84, 0.37, 0.0};
    constexpr color blue = {0.0, 0.45, 0.7};
    print_heading();
    present("Input", {coast}, black);
    present("Tolerance 0", mesh_coast(coast, 0.0), vermilion);
    present("Tolerance " + in_km(chosen.tolerance), mesh_coast(coast, chosen.tolerance), blue);

    auto const [east, north, width] = chosen.detail;
    double const height = 0.8 * width;
    rectangle const detail = {{east - 0.5 * width, north - 0.5 * height}, width, height};
    std::filesystem::create_directories(chosen.output);
    save_figure(chosen.output / "coastline", {coast, chosen.sizes, chosen.harbour, detail}, panels);
}

} // namespace

int main(int argc, char** argv)
{
    options chosen;
    CLI::App app("Meshes a coast by target sizes that grow with the distance from a harbour.");
    app.option_defaults()->always_capture_default();
    app.add_option("input", chosen.input, "GeoJSON file of LineStrings");
    app.add_option("output", chosen.output, "folder for coastline.svg and coastline.png");
    app.add_option("--tolerance", chosen.tolerance, "km that the mesh may stray from the coast")
        ->check(CLI::PositiveNumber);
    app.add_option("--finest", chosen.sizes.finest, "target size at the harbour, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--coarsest", chosen.sizes.coarsest, "limit of the target sizes, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--growth", chosen.sizes.growth, "growth of the target size per km from the harbour")
        ->check(CLI::PositiveNumber);
    app.add_option("--harbour", chosen.harbour, "name of the harbour");
    app.add_option("--position", chosen.position, "longitude and latitude of the harbour, degrees");
    app.add_option("--detail", chosen.detail,
        "part to enlarge: km east and north of the harbour to its middle, width in km");

    try {
        app.parse(argc, argv);
        run(chosen);
    } catch (CLI::ParseError const& error) {
        return app.exit(error) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (std::exception const& error) {
        std::fprintf(stderr, "coastline: %s\n", error.what());
        return EXIT_FAILURE;
    }
}

#include "demo.h"

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <new>
#include <stdexcept>

#include <vornik1d/vornik1d.h>

#include "geojson.h"
#include "summary.h"

namespace {

std::string subtitle(summary const& s)
{
    std::string nodes = std::to_string(s.nodes) + " nodes";
    if (s.deviation == 0.0) return nodes;
    std::array<char, 32> km;
    std::snprintf(km.data(), km.size(), "%.2f km", s.deviation);
    return nodes + ", at most " + km.data() + " from the coast";
}

} // namespace

rectangle demo_options::detail_area() const
{
    auto const [east, north, width] = detail;
    double const height = 0.8 * width;
    return {{east - 0.5 * width, north - 0.5 * height}, width, height};
}

void add_coast_options(CLI::App& app, demo_options& chosen, std::string const& picture)
{
    app.add_option("input", chosen.input, "GeoJSON file of LineStrings");
    app.add_option("output", chosen.output, "folder for " + picture + ".svg and " + picture + ".png");
    app.add_option("--tolerance", chosen.tolerance, "largest distance of the coast from the mesh, km")
        ->check(CLI::PositiveNumber);
    app.add_option("--harbour", chosen.harbour, "name of the harbour");
    app.add_option("--position", chosen.position, "longitude and latitude of the harbour, degrees");
    app.add_option("--detail", chosen.detail,
        "part to enlarge: km east and north of the harbour to its middle, width in km");
}

void require_success(int status, std::string const& function)
{
    if (status != 0) throw std::runtime_error(function + " failed with status " + std::to_string(status));
}

line_mesh read_lines(std::filesystem::path const& input, std::array<double, 2> const& origin)
{
    line_mesh result = read_geojson(input);
    for (std::size_t j = 0; j < result.coords.cols(); ++j) {
        auto const [x, y] = project({result.coords(0, j), result.coords(1, j)}, {origin[0], origin[1]});
        result.coords(0, j) = x;
        result.coords(1, j) = y;
    }
    return result;
}

void set_sizes(line_mesh& coast, std::function<double(point const&)> const& size_at)
{
    for (line& chain : coast.lines)
        for (unsigned const node : chain.nodes)
            if (!chain.sizes.push_back(size_at(coast.node(node)))) throw std::bad_alloc();
}

meshing mesh_lines(line_mesh const& coast, double tolerance)
{
    meshing result;
    auto& coords = result.mesh.coords;
    if (!coords.copy(coast.coords)) throw std::bad_alloc();

    auto const start = std::chrono::steady_clock::now();
    for (line const& chain : coast.lines) {
        line& mesh = result.mesh.lines.emplace_back();
        trelk::vornik1d::line_options options;
        options.deviation_tolerance = tolerance;
        options.min_elements = chain.closed() ? 3 : 1; // two elements enclose nothing
        options.out_sizes = &mesh.sizes;
        options.out_metrics = &mesh.metrics;
        auto const mesh_by = [&](auto const& targets) {
            return trelk::vornik1d::mesh_line(coords, chain.nodes, targets, mesh.nodes, options);
        };
        int const status = chain.metrics.empty() ? mesh_by(chain.sizes) : mesh_by(chain.metrics);
        require_success(status, "mesh_line");
    }
    std::chrono::duration<double, std::milli> const elapsed = std::chrono::steady_clock::now() - start;
    result.milliseconds = elapsed.count();
    return result;
}

void print_heading()
{
    std::printf("%-18s %5s %6s %9s  %-27s %9s %7s\n", "", "", "", "", "metric length of elements", "distance",
        "time");
    std::printf("%-18s %5s %6s %9s  %8s %8s %9s %9s %7s\n", "", "lines", "nodes", "elements", "shortest",
        "mean", "longest", "km", "ms");
}

panel present(std::string const& title, meshing const& shown, line_mesh const& coast, color const& ink)
{
    summary const s = summarize(shown.mesh, coast);
    std::printf("%-18s %5zu %6zu %9zu  %8.3f %8.3f %9.3f %9.3f", title.c_str(), s.lines, s.nodes, s.elements,
        s.shortest, s.mean, s.longest, s.deviation);
    if (shown.milliseconds > 0.0) std::printf(" %7.2f", shown.milliseconds);
    std::puts("");
    return {{title, subtitle(s), ink}, shown.mesh};
}

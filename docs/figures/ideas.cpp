#include "figures.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace trelk;

void draw_metric_length(std::filesystem::path const& folder)
{
    dense2D<double> coords = nodes_at({{0, 0}, {10, 0}});
    auto const chain = list_of<unsigned>({0, 1});
    auto const sizes = list_of<double>({0.4, 2.2});
    dense1D<unsigned> mesh;
    dense1D<double> mesh_sizes;
    vornik1d::line_options options;
    options.out_sizes = &mesh_sizes;
    require_success(vornik1d::mesh_line(coords, chain, sizes, mesh, options));

    std::size_t const elements = mesh.size() - 1;
    double const metric_length = 10.0 * std::log(2.2 / 0.4) / (2.2 - 0.4);
    double const bottom = -1.7;
    auto const draw = [&](map_frame const& map) {
        map.lines(polyline({{0, 0.4}, {10, 2.2}}), grey, 1.2);
        for (std::size_t k = 0; k <= elements; ++k) {
            double const x = coords(0, mesh[k]);
            double const even = 10.0 * static_cast<double>(k) / static_cast<double>(elements);
            map.lines(polyline({{x, 0}, {x, mesh_sizes[k]}}), medium_grey, 0.8);
            map.lines(polyline({{x, 0}, {even, bottom}}), pale_blue, 0.8);
            map.dot({even, bottom}, vermilion, 5.0);
            map.label({even, bottom - 0.35}, std::to_string(k), vermilion);
        }
        draw_mesh(map, one_line(coords, mesh), blue);
        map.lines(polyline({{0, bottom}, {10, bottom}}), vermilion, 1.2);
        map.label({-1.1, 0}, "the line", blue);
        map.label({-1.1, 0.4}, "size 0.4", grey);
        map.label({10.75, 2.2}, "size 2.2", grey);
        map.label({-1.1, bottom}, "equal steps", vermilion);
    };
    std::string const step = short_number(metric_length / static_cast<double>(elements));
    save_panels(folder / "metric-length", {{{-2.1, -2.4}, 13.7, 5.1}},
        {{{counted(elements), "each of metric length " + step, blue}, draw}});
}

std::vector<point> circle_points(std::size_t n, double radius)
{
    std::vector<point> result;
    for (std::size_t k = 0; k < n; ++k) {
        double const angle = 2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n);
        result.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    return result;
}

void draw_tensors(std::filesystem::path const& folder)
{
    constexpr std::size_t n = 96;
    dense2D<double> by_sizes = nodes_at(circle_points(n, 2.0));
    dense2D<double> by_tensors = nodes_at(circle_points(n, 2.0));
    dense1D<unsigned> chain = first_nodes(n);
    chain.push_back(0); // back to the start
    dense1D<unsigned> size_mesh, tensor_mesh;

    //! [tensors]
    dense1D<double> const sizes(n + 1, 0.5);
    dense2D<double> metrics;
    if (!metrics.resize(3, n + 1)) throw std::bad_alloc();
    for (std::size_t i = 0; i < n + 1; ++i) {
        metrics(0, i) = 1.0 / (1.0 * 1.0); // along x: size 1
        metrics(1, i) = 0.0;
        metrics(2, i) = 1.0 / (0.25 * 0.25); // along y: size 0.25
    }
    vornik1d::line_options options;
    options.min_elements = 3; // the line is closed
    require_success(vornik1d::mesh_line(by_sizes, chain, sizes, size_mesh, options));
    require_success(vornik1d::mesh_line(by_tensors, chain, metrics, tensor_mesh, options));
    //! [tensors]

    auto const draw = [](map_frame const& map, dense2D<double> const& coords, dense1D<unsigned> const& nodes,
                          tensor const& target, color const& ink) {
        line_mesh const mesh = one_line(coords, nodes);
        for (std::size_t i = 0; i + 4 < nodes.size(); i += 4)
            map.unit_ball(mesh.node(nodes[i]), target, medium_grey, 0.8);
        draw_mesh(map, mesh, ink);
    };
    save_panels(folder / "sizes-and-tensors", {{{-3.2, -2.7}, 6.4, 5.4}},
        {{{"Sizes", "0.5 in every direction: " + counted(size_mesh.size() - 1), blue},
             [&](map_frame const& map) {
                 draw(map, by_sizes, size_mesh, {4.0, 0.0, 4.0}, blue);
             }},
            {{"Tensors", "1 along x, 0.25 along y: " + counted(tensor_mesh.size() - 1), vermilion},
                [&](map_frame const& map) {
                    draw(map, by_tensors, tensor_mesh, {1.0, 0.0, 16.0}, vermilion);
                }}});
}

/// A closed line with wide and tight bends.
std::vector<point> bay(std::size_t n)
{
    std::vector<point> result;
    for (point const& p : circle_points(n, 1.0)) {
        double const angle = std::atan2(p.y, p.x);
        double const radius = 1.0 + 0.35 * std::cos(3.0 * angle) + 0.1 * std::sin(8.0 * angle);
        result.push_back({radius * p.x, radius * p.y});
    }
    return result;
}

void draw_tolerance(std::filesystem::path const& folder)
{
    constexpr std::size_t n = 240;
    dense1D<unsigned> chain = first_nodes(n);
    chain.push_back(0);
    std::vector<point> places = bay(n);
    places.push_back(places.front());
    line_mesh const input = polyline(places);

    struct
    {
        double tolerance;
        std::string title;
        std::string meaning;
        color ink;
    } const ways[] = {{0.0, "0", "sizes alone", blue}, {0.05, "0.05", "a distance", vermilion},
        {-0.01, "-0.01", "relative to the radius", green}};
    std::vector<picture_panel> panels;
    for (auto const& [tolerance, title, meaning, ink] : ways) {
        dense2D<double> coords = nodes_at(bay(n));
        dense1D<double> const sizes(n + 1, 0.6);
        dense1D<unsigned> mesh;
        vornik1d::line_options options;
        options.deviation_tolerance = tolerance;
        options.min_elements = 3;
        require_success(vornik1d::mesh_line(coords, chain, sizes, mesh, options));
        panels.push_back({{"Tolerance " + title, meaning + ": " + counted(mesh.size() - 1), ink},
            [=, result = one_line(coords, mesh), shade = ink](map_frame const& map) {
                map.lines(input, light_grey, 3.0);
                draw_mesh(map, result, shade);
            }});
    }
    save_panels(folder / "tolerance", {widened(bounds(input), 0.1)}, panels);
}

void draw_spline(std::filesystem::path const& folder)
{
    std::vector<point> const places = {{0, 0}, {1, 1.4}, {2.2, 1.5}, {2.9, 0.3}, {3.9, 0}, {4.6, 1.2}};
    dense2D<double> by_line = nodes_at(places);
    dense2D<double> by_spline = nodes_at(places);
    dense1D<unsigned> line_nodes, spline_nodes;
    dense1D<double> const line_sizes(6, 0.8);
    vornik1d::line_options line_options;
    line_options.deviation_tolerance = 0.01;
    require_success(vornik1d::mesh_line(by_line, first_nodes(6), line_sizes, line_nodes, line_options));

    //! [spline]
    // An open curve through the nodes 0 to 5. The guide nodes repeat its ends.
    dense1D<unsigned> const chain{0, 0, 1, 2, 3, 4, 5, 5};
    dense1D<double> const sizes(8, 0.8);
    vornik1d::spline_options options;
    options.deviation_tolerance = 0.01;
    require_success(vornik1d::mesh_spline(by_spline, chain, sizes, spline_nodes, options));
    //! [spline]

    line_mesh const known = polyline(places);
    auto const draw = [&](map_frame const& map, line_mesh const& mesh, color const& ink) {
        map.nodes(known, light_grey, 10.0);
        draw_mesh(map, mesh, ink);
    };
    save_panels(folder / "splines", {{{-0.4, -0.4}, 5.4, 2.4}},
        {{{"mesh_line", "along the chords: " + counted(line_nodes.size() - 1), blue},
             [&](map_frame const& map) { draw(map, one_line(by_line, line_nodes), blue); }},
            {{"mesh_spline", "along the curve: " + counted(spline_nodes.size() - 1), vermilion},
                [&](map_frame const& map) { draw(map, one_line(by_spline, spline_nodes), vermilion); }}});
}

void draw_gradation(std::filesystem::path const& folder)
{
    constexpr unsigned n = 21;
    std::vector<point> places;
    for (unsigned k = 0; k < n; ++k) places.push_back({0.5 * k, 0.0});
    dense1D<unsigned> chain = list_of<unsigned>({0});
    for (unsigned k = 0; k < n; ++k) chain.push_back(k);
    chain.push_back(n - 1);
    dense1D<double> sizes(n + 2, 1.0);
    sizes[9] = 0.1; // of node 8

    struct result
    {
        line_mesh mesh;
        line_mesh law;
        std::string text;
        color ink;
    };
    std::vector<result> results;
    for (auto const& [gradation, ink] :
        {std::pair<double, color>(0.0, blue), {0.4, vermilion}, {0.15, green}}) {
        dense2D<double> coords = nodes_at(places);
        dense1D<unsigned> mesh;
        dense1D<double> mesh_sizes;
        vornik1d::spline_options options;
        options.default_size = 1.0;
        options.max_gradation = gradation;
        options.out_sizes = &mesh_sizes;
        require_success(vornik1d::mesh_spline(coords, chain, sizes, mesh, options));
        std::vector<point> law;
        for (std::size_t i = 0; i < mesh.size(); ++i) law.push_back({coords(0, mesh[i]), mesh_sizes[i]});
        std::string const growth = gradation > 0.0 ? "max_gradation " + short_number(gradation) : "no limit";
        results.push_back(
            {one_line(coords, mesh), polyline(law), growth + ": " + counted(mesh.size() - 1), ink});
    }

    rectangle const region = {{-0.3, -0.3}, 10.6, 1.9};
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t, std::size_t row) {
        map_frame const map(page, frame, region, map_ground);
        auto const& [mesh, law, text, ink] = results[row];
        map.lines(law, grey, 1.2);
        draw_mesh(map, mesh, ink);
        map.label({8.0, 1.3}, text, ink);
        map.label({1.2, 1.3}, "target size", grey);
    };
    double const shape = region.height / region.width;
    save_columns(folder / "gradation",
        {{"A limit on the growth of sizes", "one node has size 0.1, all others have size 1", black}},
        {shape, shape, shape}, {}, draw_map, picture_width);
}

/// A network: a straight line with a branch and a corner, then an arc on which the colour changes.
void draw_corners(std::filesystem::path const& folder)
{
    dense2D<double> coords;
    dense2D<unsigned> connect;
    dense1D<unsigned> colors;
    dense1D<unsigned> path;
    auto const add = [&](point const& p) {
        double const values[] = {p.x, p.y};
        std::size_t const node = coords.cols();
        if (!coords.resize(2, node + 1)) throw std::bad_alloc();
        coords(0, node) = values[0];
        coords(1, node) = values[1];
        path.push_back(static_cast<unsigned>(node));
    };
    auto const finish = [&](unsigned color_number) {
        require_success(vornik1d::indices_to_connectE2(path, connect));
        colors.push_back_n(color_number, connect.cols() - colors.size()) ? void() : throw std::bad_alloc();
        unsigned const last = path[path.size() - 1];
        path.clear();
        path.push_back(last);
    };
    for (int k = 0; k <= 20; ++k) add({0.2 * k, 0.0}); // node 10 is the junction
    for (int k = 1; k <= 8; ++k) add({4.0, 0.2 * k});
    finish(0);
    for (int k = 1; k <= 32; ++k) { // an arc, on which the colour changes
        double const angle = std::numbers::pi * k / 32;
        add({2.8 + 1.2 * std::cos(angle), 1.6 + 1.2 * std::sin(angle)});
        if (k == 12) finish(1);
    }
    finish(2);
    path.clear();
    path.push_back(10);
    for (int k = 1; k <= 8; ++k) add({2.0, -0.15 * k});
    finish(3);
    dense2D<unsigned> old_connect;
    dense1D<unsigned> old_colors;
    if (!old_connect.copy(connect) || !old_colors.copy(colors)) throw std::bad_alloc();

    //! [remesh]
    dense1D<unsigned> break_nodes;
    vornik1d::remesh_options options;
    options.deviation_tolerance = 0.02;
    options.max_angle = 30.0;
    options.colors = &colors;
    options.hard_nodes = {4};
    options.break_nodes = &break_nodes;
    require_success(vornik1d::remesh_lines(coords, connect, /* default_size */ 0.5, options));
    // Now break_nodes holds node 4 and all other nodes at which lines were cut.
    //! [remesh]

    std::array<color, 4> const inks = {blue, vermilion, green, grey};
    auto const draw = [&](map_frame const& map, dense2D<unsigned> const& elements,
                          dense1D<unsigned> const& colors_of) {
        for (std::size_t e = 0; e < elements.cols(); ++e)
            draw_mesh(map, one_line(coords, list_of<unsigned>({elements(0, e), elements(1, e)})),
                inks[colors_of[e] % 4]);
    };
    save_panels(folder / "corners-and-colours", {{{-0.6, -1.6}, 5.6, 4.8}},
        {{{"Before", counted(old_connect.cols()) + " in four colours", black},
             [&](map_frame const& map) { draw(map, old_connect, old_colors); }},
            {{"After", counted(connect.cols()) + "; rings mark the break nodes", black},
                [&](map_frame const& map) {
                    draw(map, connect, colors);
                    for (unsigned const node : break_nodes)
                        map.circle({coords(0, node), coords(1, node)}, 0.1, black, 1.2);
                    map.label({0.15, -0.3}, "end", black);
                    map.label({0.8, 0.3}, "hard node", black);
                    map.label({2.0, 0.3}, "junction", black);
                    map.label({4.4, -0.3}, "corner", black);
                    map.label({3.0, 1.6}, "colours change", black);
                }}});
}

void draw_counts(std::filesystem::path const& folder)
{
    std::vector<double> const lengths = {0.7, 1.4, 1.5, 2.4, 2.5, 2.8, 2.9, 3.4, 3.5};
    auto const draw = [&](map_frame const& map, bool force_even, color const& ink) {
        double y = 0.0;
        for (double const length : lengths) {
            y -= 0.35;
            dense2D<double> coords = nodes_at({{0, y}, {length, y}});
            dense1D<unsigned> mesh;
            require_success(vornik1d::mesh_straight(coords, 0, 1, 1.0, 1.0, force_even, mesh));
            draw_mesh(map, one_line(coords, mesh), ink);
            map.label({-0.35, y}, short_number(length), black);
            map.label({3.9, y}, std::to_string(mesh.size() - 1), ink);
        }
    };
    save_panels(folder / "counts", {{{-0.8, -3.5}, 5.1, 3.5}},
        {{{"Any count", "size 1; left: length, right: number of elements", blue},
             [&](map_frame const& map) { draw(map, false, blue); }},
            {{"force_even", "at least 2; 4 if the length is at least 2.83", vermilion},
                [&](map_frame const& map) { draw(map, true, vermilion); }}});
}

void draw_outputs(std::filesystem::path const& folder)
{
    std::vector<point> const places = {{0, 0}, {2, 1.2}, {4, 0.9}, {6, 0}};
    dense2D<double> coords = nodes_at(places);
    dense1D<unsigned> mesh;

    //! [outputs]
    auto const chain = list_of<unsigned>({0, 1, 2, 3});
    dense1D<double> const sizes(4, 1.6);
    require_success(vornik1d::mesh_line(coords, chain, sizes, mesh));
    //! [outputs]

    auto const number = [](map_frame const& map, point const& p, std::size_t node, color const& ink) {
        map.label({p.x, p.y + 0.3}, std::to_string(node), ink);
    };
    save_panels(folder / "outputs", {{{-0.5, -0.5}, 7.0, 2.4}},
        {{{"Before", "4 nodes; the chain is 0, 1, 2, 3", grey},
             [&](map_frame const& map) {
                 draw_mesh(map, polyline(places), grey);
                 for (std::size_t k = 0; k < 4; ++k) number(map, places[k], k, grey);
             }},
            {{"After",
                 std::to_string(coords.cols()) + " nodes; the mesh uses " + std::to_string(mesh.size()) +
                     " of them",
                 blue},
                [&](map_frame const& map) {
                    draw_mesh(map, polyline(places), light_grey);
                    draw_mesh(map, one_line(coords, mesh), blue);
                    for (std::size_t k = 1; k < 3; ++k) number(map, places[k], k, grey);
                    for (unsigned const node : mesh)
                        map.label({coords(0, node), coords(1, node) - 0.27}, std::to_string(node), blue);
                }}});
}

void draw_status(std::filesystem::path const& folder)
{
    std::vector<point> const places = {{0, 0}, {2, 1.2}, {4, 0.9}, {6, 0}};
    dense2D<double> coords = nodes_at(places);
    dense1D<unsigned> mesh;

    //! [status]
    auto chain = list_of<unsigned>({0, 1, 2, 4}); // there is no node 4
    dense1D<double> const sizes(4, 1.0);
    int const refused = vornik1d::mesh_line(coords, chain, sizes, mesh);
    std::size_t const nodes_after_refusal = coords.cols(); // 4, as before
    chain[3] = 3;
    int const done = vornik1d::mesh_line(coords, chain, sizes, mesh);
    //! [status]

    std::string const kept = std::to_string(nodes_after_refusal) + " nodes";
    save_panels(folder / "status", {{{-0.4, -0.4}, 6.8, 2.0}},
        {{{"Status " + std::to_string(refused), "argument 2 is wrong; coords still has " + kept, vermilion},
             [&](map_frame const& map) {
                 draw_mesh(map, polyline({places[0], places[1], places[2]}), grey);
                 map.nodes(polyline({places[3]}), grey, 5.0);
             }},
            {{"Status " + std::to_string(done), "chain corrected, called again: " + counted(mesh.size() - 1),
                 blue},
                [&](map_frame const& map) {
                    draw_mesh(map, polyline(places), light_grey);
                    draw_mesh(map, one_line(coords, mesh), blue);
                }}});
}

void draw_threads(std::filesystem::path const& folder)
{
    struct island
    {
        dense2D<double> coords;
        dense1D<unsigned> mesh;
        int status = 0;
    };
    constexpr std::size_t n = 120;
    std::vector<island> islands(8);
    for (std::size_t k = 0; k < islands.size(); ++k) {
        std::vector<point> places = bay(n);
        double const scale = 0.6 + 0.1 * static_cast<double>(k * 3 % 5);
        point const middle = {2.7 * static_cast<double>(k % 4), k < 4 ? 0.0 : -2.5};
        for (point& p : places) p = {middle.x + scale * p.x, middle.y + scale * p.y};
        islands[k].coords = nodes_at(places);
    }

    //! [threads]
    auto const mesh_island = [](island& own) { // writes to no memory that another thread uses
        dense1D<unsigned> chain = first_nodes(n);
        dense1D<double> const sizes(n + 1, 0.4);
        vornik1d::line_options options;
        options.deviation_tolerance = 0.02;
        options.min_elements = 3;
        own.status = vornik1d::no_storage;
        if (chain.push_back(0)) own.status = vornik1d::mesh_line(own.coords, chain, sizes, own.mesh, options);
    };
    constexpr std::size_t thread_count = 3;
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < thread_count; ++t)
        threads.emplace_back([&, t] {
            for (std::size_t k = t; k < islands.size(); k += thread_count) mesh_island(islands[k]);
        });
    for (std::thread& one : threads) one.join();
    //! [threads]

    std::array<color, thread_count> const inks = {blue, vermilion, green};
    for (island const& one : islands) require_success(one.status);
    save_panels(folder / "threads-and-memory", {{{-1.3, -3.85}, 11.1, 5.4}},
        {{{"Eight islands on three threads", "one colour per thread; each island has its own matrix", black},
            [&](map_frame const& map) {
                for (std::size_t k = 0; k < islands.size(); ++k)
                    draw_mesh(map, one_line(islands[k].coords, islands[k].mesh), inks[k % thread_count]);
            }}});
}

} // namespace

void draw_ideas(std::filesystem::path const& folder)
{
    draw_metric_length(folder);
    draw_tensors(folder);
    draw_tolerance(folder);
    draw_spline(folder);
    draw_gradation(folder);
    draw_corners(folder);
    draw_counts(folder);
    draw_outputs(folder);
    draw_status(folder);
    draw_threads(folder);
}

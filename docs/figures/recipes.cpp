#include "figures.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include "summary.h"

namespace {

/// A part of what a recipe printed: a line "# TITLE" and the rows of numbers after it.
struct block
{
    std::string title;
    std::vector<std::vector<double>> rows;

    /// The rows as places. x is in the given column, y in the next one.
    std::vector<point> places(std::size_t column = 0) const
    {
        std::vector<point> result;
        for (auto const& row : rows) result.push_back({row.at(column), row.at(column + 1)});
        return result;
    }
};

std::vector<block> read(std::filesystem::path const& results, std::string const& recipe)
{
    std::ifstream file(results / (recipe + ".txt"));
    std::vector<block> blocks;
    for (std::string text; std::getline(file, text);) {
        if (text.rfind("# ", 0) == 0)
            blocks.push_back({text.substr(2), {}});
        else if (!text.empty()) {
            std::istringstream numbers(text);
            std::vector<double> row;
            for (double number = 0.0; numbers >> number;) row.push_back(number);
            blocks.at(blocks.size() - 1).rows.push_back(row);
        }
    }
    if (blocks.empty()) throw std::runtime_error(recipe + " has printed nothing");
    return blocks;
}

/// Throws unless the result of a recipe is as its page says.
void require(bool promise, std::string const& text)
{
    if (!promise) throw std::runtime_error("broken promise of a recipe: " + text);
}

/// A region with the given corner and width, and the shape of another one.
rectangle like(rectangle const& shape, point const& corner, double width)
{
    return {corner, width, width * shape.height / shape.width};
}

void draw_even_spacing(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    line_mesh const spiral = polyline(blocks.at(0).places());
    line_mesh const mesh = polyline(blocks.at(1).places());
    std::size_t const given = spiral.coords.cols();
    std::size_t const elements = mesh.coords.cols() - 1;
    require(elements == 40, "40 elements");
    save_panels(stem, {widened(bounds(spiral), 1.0)},
        {{{"Given", std::to_string(given) + " nodes, closest in the middle", grey},
             [&](map_frame const& map) { draw_mesh(map, spiral, grey, 0.6); }},
            {{counted(elements), "equally long along the line", blue}, [&](map_frame const& map) {
                 map.lines(spiral, light_grey, 4.0);
                 draw_mesh(map, mesh, blue);
             }}});
}

void draw_boundary_layer(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    std::vector<point> const line = blocks.at(0).places();
    double const first = distance(line.at(0), line.at(1));
    double const ratio = distance(line.at(1), line.at(2)) / first;
    require(
        std::abs(first / 0.005 - 1.0) < 0.1 && std::abs(ratio / 1.25 - 1.0) < 0.02, "first element, growth");

    rectangle const whole = {{-0.05, -0.05}, 2.1, 0.65};
    rectangle const detail = like(whole, {0.85, 0.1}, 0.3);
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t, std::size_t row) {
        map_frame const map(page, frame, row == 0 ? whole : detail, map_ground);
        for (block const& part : blocks)
            draw_mesh(
                map, polyline(part.places()), part.title == "wall" ? vermilion : blue, row == 0 ? 0.7 : 1.0);
        map.box(detail, black, row == 0 ? 1.2 : 2.4);
    };
    std::string const text = "first element " + short_number(first) + ", ratio " + short_number(ratio) +
                             "; the lower picture enlarges the part in the box";
    double const shape = whole.height / whole.width;
    save_columns(stem,
        {{std::to_string(blocks.size() - 1) + " lines of " + counted(line.size() - 1), text, blue}},
        {shape, shape}, {}, draw_map, picture_width);
}

void draw_airfoil(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    line_mesh const known = polyline(blocks.at(0).places());
    line_mesh const mesh = polyline(blocks.at(1).places());
    rectangle const whole = {{-0.05, -0.1}, 1.1, 0.2};
    rectangle const nose = {{-0.01, -0.042}, 0.18, 0.084};
    auto const draw_map = [&](canvas const& page, rectangle const& frame, std::size_t, std::size_t row) {
        map_frame const map(page, frame, row == 0 ? whole : nose, map_ground);
        map.nodes(known, light_grey, row == 0 ? 7.0 : 11.0);
        draw_mesh(map, mesh, blue, row == 0 ? 0.7 : 1.0);
        map.box(nose, black, row == 0 ? 1.2 : 2.4);
    };
    save_columns(stem,
        {{counted(mesh.coords.cols() - 1),
            "pale dots: the given points; the lower picture enlarges the part in the box", blue}},
        {whole.height / whole.width, nose.height / nose.width}, {}, draw_map, picture_width);
}

void draw_coastline(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    line_mesh const coast = polyline(blocks.at(0).places());
    point const harbour = blocks.at(1).places().at(0);
    line_mesh const mesh = polyline(blocks.at(2).places());
    double off = 0.0;
    for (unsigned const node : coast.lines[0].nodes)
        off = std::max(off, distance_to_line(coast.coords.col(node), mesh.lines[0], mesh));
    require(off <= 0.3, "distance from the coast");
    rectangle const whole = widened(bounds(coast), 1.0);
    rectangle const detail = like(whole, {harbour.x - 3.0, harbour.y - 3.5}, 6.0);
    auto const draw = [&](map_frame const& map, double scale) {
        map.lines(coast, light_grey, 4.0 * scale);
        map.dot(harbour, vermilion, 12.0 * scale);
        draw_mesh(map, mesh, blue, scale);
    };
    save_panels(stem, {whole, detail},
        {{{counted(mesh.coords.cols() - 1),
              std::to_string(coast.coords.cols()) + " before; at most " + short_number(off) +
                  " from the coast",
              blue},
             [&](map_frame const& map) {
                 draw(map, 0.7);
                 map.box(detail, black, 1.2);
             }},
            {{"At the harbour", "elements are shortest at the red dot", blue},
                [&](map_frame const& map) { draw(map, 1.0); }}});
}

void draw_vessel(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    color const inks[] = {blue, vermilion, green};
    std::size_t elements = 0;
    for (block const& branch : blocks) elements += branch.rows.size() - 1;
    require(blocks.at(0).rows.back().at(0) == blocks.at(1).rows.at(0).at(0), "branches meet");
    save_panels(stem, {{{-6.0, -16.5}, 70.0, 31.0}},
        {{{counted(elements), "half as long as the radius; circles show the radius at each node", blue},
            [&](map_frame const& map) {
                for (block const& branch : blocks)
                    for (auto const& row : branch.rows)
                        map.circle({row.at(0), row.at(1)}, row.at(3), light_grey, 0.8);
                for (std::size_t k = 0; k < blocks.size(); ++k)
                    draw_mesh(map, polyline(blocks[k].places()), inks[k % 3], 0.8);
            }}});
}

void draw_beams(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    std::map<std::string, color> const inks = {
        {"section 0", blue}, {"section 1", vermilion}, {"section 2", green}};
    double longest = 0.0;
    for (block const& element : blocks)
        longest = std::max(longest, distance(element.places().at(0), element.places().at(2)));
    require(longest <= 1.2, "longest beam");
    save_panels(stem, {{{-0.6, -0.5}, 10.2, 7.0}},
        {{{counted(blocks.size()) + " of three nodes",
              "columns blue, beams red, braces green; small dots are middle nodes", black},
            [&](map_frame const& map) {
                for (block const& element : blocks) {
                    std::vector<point> const p = element.places();
                    map.lines(polyline(p), inks.at(element.title), 1.6);
                    map.dot(p.at(0), inks.at(element.title), 6.0);
                    map.dot(p.at(1), inks.at(element.title), 3.2);
                    map.dot(p.at(2), inks.at(element.title), 6.0);
                }
            }}});
}

void draw_matching_nodes(std::vector<block> const& blocks, std::filesystem::path const& stem)
{
    struct way_out
    {
        color ink;
        point shift;
    };
    std::map<std::string, way_out> const regions = {{"region 0", {blue, {-0.1, -0.04}}},
        {"region 1", {vermilion, {0.0, 0.1}}}, {"region 2", {green, {0.1, -0.04}}}};
    rectangle const area = {{-0.2, -0.15}, 1.4, 1.35};
    auto const draw = [&](map_frame const& map, bool is_apart) {
        for (block const& element : blocks) {
            auto const& [ink, shift] = regions.at(element.title);
            std::vector<point> places = element.places(1);
            if (is_apart)
                for (point& p : places) p = {p.x + shift.x, p.y + shift.y};
            draw_mesh(map, polyline(places), is_apart ? ink : black, 0.8);
        }
    };
    // Inner elements belong to two regions and have the same nodes in both.
    std::map<std::pair<double, double>, int> uses;
    for (block const& element : blocks)
        ++uses[std::minmax({element.rows.at(0).at(0), element.rows.at(1).at(0)})];
    auto const shared = std::ranges::count_if(uses, [](auto const& use) { return use.second == 2; });
    require(shared > 0 && static_cast<std::size_t>(shared) + uses.size() == blocks.size(), "shared elements");
    save_panels(stem, {area},
        {{{"The mesh", counted(uses.size()), black}, [&](map_frame const& map) { draw(map, false); }},
            {{"Its three regions", std::to_string(shared) + " elements belong to two of them", black},
                [&](map_frame const& map) { draw(map, true); }}});
}

} // namespace

void draw_recipes(std::filesystem::path const& results, std::filesystem::path const& folder)
{
    draw_even_spacing(read(results, "even_spacing"), folder / "even-spacing");
    draw_boundary_layer(read(results, "boundary_layer"), folder / "boundary-layer");
    draw_airfoil(read(results, "airfoil"), folder / "airfoil");
    draw_coastline(read(results, "coastline"), folder / "coastline");
    draw_vessel(read(results, "vessel"), folder / "vessel");
    draw_beams(read(results, "beams"), folder / "beams");
    draw_matching_nodes(read(results, "matching_nodes"), folder / "matching-nodes");
}

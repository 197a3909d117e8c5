#include "line_inks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "demo.h"

namespace {

constexpr color coast_ink = {0.42, 0.45, 0.5};
constexpr std::array inks = {vermilion, blue, green, color{0.8, 0.2, 0.55}, color{0.9, 0.6, 0.0},
    color{0.25, 0.65, 0.95}, color{0.5, 0.3, 0.75}, color{0.5, 0.65, 0.0}};

double least_distance(std::vector<point> const& some, std::vector<point> const& others)
{
    double result = std::numeric_limits<double>::infinity();
    for (point const& a : some)
        for (point const& b : others) result = std::min(result, distance(a, b));
    return result;
}

} // namespace

std::vector<color> choose_inks(line_mesh const& lines, std::vector<unsigned> const& colors)
{
    std::vector<std::vector<point>> borders(*std::ranges::max_element(colors) + 1); // nodes by colour
    for (std::size_t l = 0; l < lines.lines.size(); ++l) {
        line const& chain = lines.lines[l];
        if (std::ranges::count(chain.between, "sea") > 0) continue;
        for (unsigned const node : chain.nodes) borders[colors[l]].push_back(lines.node(node));
    }

    std::vector<color> result;
    std::array<std::vector<point>, inks.size()> drawn; // nodes by ink
    for (auto const& nodes : borders) {
        if (nodes.empty()) {
            result.push_back(coast_ink);
            continue;
        }
        auto& farthest = *std::ranges::max_element(
            drawn, {}, [&](std::vector<point> const& others) { return least_distance(nodes, others); });
        farthest.insert(farthest.end(), nodes.begin(), nodes.end());
        result.push_back(inks[static_cast<std::size_t>(&farthest - drawn.data())]);
    }
    return result;
}

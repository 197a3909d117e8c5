#include "network.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <new>
#include <utility>

#include "demo.h"

void join_nodes(line_mesh& lines)
{
    std::map<std::pair<double, double>, unsigned> lowest;
    for (line& chain : lines.lines) {
        for (unsigned& node : chain.nodes) {
            auto const [x, y] = lines.node(node);
            node = lowest.try_emplace({x, y}, node).first->second;
        }
    }
}

network to_network(line_mesh const& lines, std::vector<unsigned> const& colors)
{
    network result;
    result.coords = lines.coords;
    for (std::size_t l = 0; l < lines.lines.size(); ++l) {
        auto const& nodes = lines.lines[l].nodes;
        require_success(trelk::vornik1d::indices_to_connectE2(nodes, result.connect), "indices_to_connectE2");
        if (!result.colors.push_back_n(colors[l], nodes.size() - 1)) throw std::bad_alloc();
    }
    return result;
}

line_mesh lines_of_color(network const& mesh, unsigned color)
{
    line_mesh result;
    result.coords = mesh.coords;
    unsigned const* before = nullptr;
    for (std::size_t e = 0; e < mesh.connect.cols(); ++e) {
        if (mesh.colors[e] != color) continue;
        unsigned const* const element = mesh.connect.col(e);
        if (before == nullptr || before[1] != element[0])
            if (!result.lines.emplace_back().nodes.push_back(element[0])) throw std::bad_alloc();
        if (!result.lines.back().nodes.push_back(element[1])) throw std::bad_alloc();
        before = element;
    }
    return result;
}

std::vector<std::vector<unsigned>> colors_at_nodes(network const& mesh)
{
    std::vector<std::vector<unsigned>> result(mesh.coords.cols());
    for (std::size_t e = 0; e < mesh.connect.cols(); ++e)
        for (unsigned const node : {mesh.connect(0, e), mesh.connect(1, e)})
            result[node].push_back(mesh.colors[e]);
    for (auto& colors : result) std::ranges::sort(colors);
    return result;
}

std::vector<point> junctions(network const& mesh)
{
    std::vector<point> result;
    auto const colors = colors_at_nodes(mesh);
    for (unsigned node = 0; node < colors.size(); ++node)
        if (colors[node].size() >= 3) result.push_back(mesh.node(node));
    return result;
}

#include "network_summary.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "summary.h"

namespace {

struct neighbour
{
    std::size_t element = 0;
    double distance = std::numeric_limits<double>::infinity();
};

neighbour nearest(point const& where, network const& mesh)
{
    double const position[] = {where.x, where.y};
    neighbour result;
    for (std::size_t e = 0; e < mesh.connect.cols(); ++e) {
        double const distance = distance_to_segment(
            position, mesh.coords.col(mesh.connect(0, e)), mesh.coords.col(mesh.connect(1, e)), 2);
        if (distance < result.distance) result = {e, distance};
    }
    return result;
}

/// The largest distance of a node of `from` from the elements of `to`. Nodes without elements are ignored.
double largest_distance(network const& from, network const& to)
{
    double result = 0.0;
    auto const colors = colors_at_nodes(from);
    for (unsigned node = 0; node < colors.size(); ++node)
        if (!colors[node].empty()) result = std::max(result, nearest(from.node(node), to).distance);
    return result;
}

/// True inside a line, where two elements of one colour meet, and at nodes without elements.
bool within_line(std::vector<unsigned> const& colors)
{
    return colors.empty() || (colors.size() == 2 && colors[0] == colors[1]);
}

void require_same_topology(network const& mesh, network const& original)
{
    auto const found = colors_at_nodes(mesh);
    auto expected = colors_at_nodes(original);
    expected.resize(found.size()); // new nodes are inside lines
    for (std::size_t node = 0; node < found.size(); ++node) {
        bool const is_same =
            within_line(expected[node]) ? within_line(found[node]) : found[node] == expected[node];
        if (!is_same)
            throw std::runtime_error("other lines meet at node " + std::to_string(node) + " than before");
    }
}

} // namespace

network_summary summarize(network const& mesh, network const& original, std::vector<double> const& targets)
{
    require_same_topology(mesh, original);

    network_summary result;
    result.elements = mesh.connect.cols();
    result.junctions = junctions(mesh).size();
    auto const colors = colors_at_nodes(mesh);
    result.nodes =
        colors.size() - static_cast<std::size_t>(std::ranges::count(colors, std::vector<unsigned>()));

    result.shortest = std::numeric_limits<double>::infinity();
    double target = 0.0; // of the chain, read at the original node at which it begins
    for (std::size_t e = 0; e < mesh.connect.cols(); ++e) {
        if (mesh.connect(0, e) < targets.size()) target = targets[mesh.connect(0, e)];
        point const a = mesh.node(mesh.connect(0, e));
        point const b = mesh.node(mesh.connect(1, e));
        double const length = distance(a, b);
        result.shortest = std::min(result.shortest, length);
        result.longest = std::max(result.longest, length);
        result.longest_to_target = std::max(result.longest_to_target, length / target);
        point const middle = {0.5 * (a.x + b.x), 0.5 * (a.y + b.y)};
        if (original.colors[nearest(middle, original).element] != mesh.colors[e]) ++result.other_colors;
    }
    result.original_off_mesh = largest_distance(original, mesh);
    result.mesh_off_original = largest_distance(mesh, original);
    return result;
}

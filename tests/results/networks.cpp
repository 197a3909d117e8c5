#include "networks.h"

#include <algorithm>

namespace {

using point = trelk::vector_fixed<double, 3>;

/// Appends a line of new nodes, which may begin or end at nodes that there are, or close.
void add_line(generator& g, std::size_t n, unsigned number, network& net)
{
    auto& points = net.nodes.points;
    bool const is_ring = n > 2 && g.chance(0.25);
    auto const line = is_ring ? draw_ring(g, n) : draw_line(g, n);
    net.nodes.is_smooth = net.nodes.is_smooth && line.is_smooth;
    std::size_t const old_nodes = points.size();
    std::vector<unsigned> chain;
    if (old_nodes > 0 && !is_ring && g.chance(0.4)) chain.push_back(g.node(old_nodes));
    point const origin = chain.empty() ? point{g.between(-9, 9), g.between(-9, 9), 0} : points[chain[0]];
    for (std::size_t k = chain.size(); k < n; ++k) {
        point p = line.points[k];
        for (std::size_t r = 0; r < 3; ++r) p[r] += origin[r];
        chain.push_back(static_cast<unsigned>(points.size()));
        points.push_back(p);
    }
    if (is_ring || g.chance(0.1))
        chain.push_back(chain[0]);
    else if (old_nodes > 0 && g.chance(0.2))
        chain.push_back(g.node(old_nodes));
    if (g.chance(0.3)) std::reverse(chain.begin(), chain.end());
    for (std::size_t k = 1; k < chain.size(); ++k) {
        net.elements.emplace_back(chain[k - 1], chain[k]);
        net.lines.push_back(number);
    }
}

void swap_elements(network& net, std::size_t i, std::size_t j)
{
    std::swap(net.elements[i], net.elements[j]);
    std::swap(net.lines[i], net.lines[j]);
}

} // namespace

network draw_network(generator& g, std::size_t lines, std::size_t most_nodes)
{
    network net{{{}, true}, {}, {}};
    for (unsigned number = 0; number < lines; ++number) add_line(g, draw_count(g, most_nodes), number, net);

    if (g.chance(0.3))
        for (auto& [from, to] : net.elements)
            if (g.chance(0.1)) std::swap(from, to);
    if (g.chance(0.1)) { // an element twice, and one from a node to itself
        net.elements.push_back(net.elements[g.below(net.elements.size())]);
        unsigned const node = net.elements[0].first;
        net.elements.emplace_back(node, node);
        net.lines.resize(net.elements.size(), 0);
    }
    if (g.chance(0.4))
        for (std::size_t k = net.elements.size(); k > 1; --k) swap_elements(net, k - 1, g.below(k));
    for (std::size_t further = g.below(3); further > 0; --further)
        net.nodes.points.push_back({0, 0, 0}); // which no element has
    return net;
}

node_matrix connectivity(generator& g, network const& net, std::size_t rows)
{
    auto connect = matrix_of(rows, net.elements.size(), 0U);
    for (std::size_t e = 0; e < connect.cols(); ++e)
        for (std::size_t i = 0; i < rows; ++i) {
            auto const& [from, to] = net.elements[e];
            connect(i, e) = i == 0 ? from : i == 1 ? to : g.node(net.nodes.points.size());
        }
    return connect;
}

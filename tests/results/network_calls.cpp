// remesh_lines
#include <cmath>

#include "networks.h"
#include "overloads.h"
#include "targets.h"

using namespace trelk;

namespace {

struct remesh_settings
{
    double default_size;
    double max_angle;
    double tolerance;
    double max_gradation;
    double min_size;
    element_limits limits;
};

remesh_settings draw_settings(generator& g, double scale, bool is_smooth)
{
    constexpr double angles[] = {0, 1e-5, 1, 20, 45, 60, 89.9, 90, 90.1, 120, 180, 1e300, infinity};
    constexpr double gradations[] = {largest_double, infinity};
    remesh_settings s{};
    s.default_size = scale * g.octaves(-3, 4);
    s.max_angle = g.chance(0.5) ? 40 : g.pick(angles);
    s.tolerance = g.chance(0.2) ? 0 : draw_tolerance(g, scale);
    if (g.chance(0.4)) s.max_gradation = g.octaves(-5, 1);
    if (g.chance(0.04)) s.max_gradation = g.pick(gradations);
    if (!is_smooth || g.chance(0.3)) s.min_size = scale * g.octaves(-5, 1);
    s.limits = draw_limits(g);
    return s;
}

void draw_colors(generator& g, network const& net, node_list& colors)
{
    if (g.chance(0.4)) return;
    unsigned const palette = 1 + g.node(5);
    unsigned const top = g.chance(0.05) ? no_limit - palette : 0;
    bool const is_patchy = g.chance(0.3);
    std::size_t const n = net.elements.size();
    colors = node_list(g.chance(0.3) ? g.below(n + 3) : n);
    for (std::size_t e = 0; e < colors.size(); ++e) {
        colors[e] = top + (is_patchy ? g.node(palette) : net.lines[e < n ? e : 0] % palette);
        if (g.chance(0.1)) colors[e] = no_limit;
    }
}

void draw_cuts(generator& g, network const& net, world& w)
{
    std::size_t const nodes = net.nodes.points.size();
    for (std::size_t k = g.chance(0.4) ? 1 + g.below(6) : 0; k > 0; --k)
        w.hard_nodes.push_back(g.chance(0.1) ? no_limit - g.node(3) : g.node(nodes + 2));
    if (g.chance(0.2)) w.hard_nodes.push_back(static_cast<unsigned>(nodes - 1));
    for (std::size_t k = g.chance(0.4) ? 1 + g.below(6) : 0; k > 0; --k)
        w.hard_edges.push_back(g.node(net.elements.size()));
    if (g.chance(0.03) && !w.hard_edges.empty()) w.hard_edges[0] = no_limit;
}

void draw_node_sizes(generator& g, std::size_t nodes, double scale, real_list& sizes)
{
    if (g.chance(0.5)) return;
    sizes = draw_sizes(g, g.chance(0.4) ? g.below(nodes + 1) : nodes, scale);
    double const part = g.unit();
    for (double& size : sizes)
        if (g.chance(part)) size = g.chance(0.5) ? 0 : -size;
    if (g.chance(0.03) && !sizes.empty()) sizes[0] = odd_number(g) > 1 ? infinity : not_a_number;
}

void spoil(generator& g, world& w, remesh_settings& s)
{
    std::size_t const e = g.below(w.connect.cols());
    double const odd = g.chance(0.5) ? not_a_number : -1;
    s.limits.max_elements = s.limits.max_elements < 40 ? s.limits.max_elements : 40;
    switch (g.below(11)) {
    case 0:
        w.coords = matrix_of(1 + 3 * g.below(2), w.coords.cols(), 1.0);
        break;
    case 1:
        w.connect(g.below(w.connect.rows()), e) = g.chance(0.5) ? no_limit : 4000;
        break;
    case 2:
        w.connect = w.connect.sub_matrix(0, 0, 1, e + 1);
        break;
    case 3:
        s.default_size = odd;
        break;
    case 4:
        s.max_angle = odd;
        break;
    case 5:
        s.max_gradation = odd;
        break;
    case 6:
        s.min_size = odd;
        break;
    case 7:
        s.limits.min_elements = 41;
        break;
    case 8:
        s.limits.min_elements = 0;
        break;
    case 9:
        s.default_size = g.chance(0.5) ? 0 : infinity;
        break;
    default:
        w.coords(0, w.connect(0, e)) = g.chance(0.5) ? not_a_number : infinity;
        s.limits.force_even = false; // an odd count would lift the limits
    }
}

enum class arguments { all, colors, none };

template <arguments which>
int call(generator& g, world& w)
{
    std::size_t const lines = g.chance(0.05) ? 40 : 1 + g.below(6);
    auto const net = draw_network(g, lines, 120);
    frame const at = draw_frame(g);
    w.coords = coordinates(net.nodes, 2 + g.below(2), at);
    w.connect = connectivity(g, net, g.chance(0.1) ? 3 : 2);
    auto s = draw_settings(g, at.scale, net.nodes.is_smooth);
    if (which != arguments::none) draw_colors(g, net, w.colors);
    if (which == arguments::all) {
        draw_cuts(g, net, w);
        draw_node_sizes(g, w.coords.cols(), at.scale, w.sizes);
    }
    if (g.chance(0.08)) spoil(g, w, s);
    w.mix_storage(g);

    auto const& [is_even, least, most] = s.limits;
    if constexpr (which == arguments::all) {
        auto& hard_nodes = g.chance(0.03) ? w.colors : w.hard_nodes;
        auto const& hard_edges = g.chance(0.03) ? hard_nodes : w.hard_edges;
        return vornik1d::remesh_lines(w.coords, w.connect, s.default_size, w.sizes, w.colors, hard_nodes,
            hard_edges, is_even, s.max_angle, s.tolerance, s.max_gradation, s.min_size, least, most);
    } else if constexpr (which == arguments::colors)
        return vornik1d::remesh_lines(w.coords, w.connect, s.default_size, w.colors, is_even, s.max_angle,
            s.tolerance, s.max_gradation, s.min_size, least, most);
    else
        return vornik1d::remesh_lines(w.coords, w.connect, s.default_size, is_even, s.max_angle, s.tolerance,
            s.max_gradation, s.min_size, least, most);
}

} // namespace

void add_network_overloads(std::vector<overload>& all)
{
    all.push_back({"remesh_lines/all", 7500, call<arguments::all>});
    all.push_back({"remesh_lines/colors", 2400, call<arguments::colors>});
    all.push_back({"remesh_lines", 2400, call<arguments::none>});
}

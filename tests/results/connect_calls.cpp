// Functions on connectivities, and the version
#include "networks.h"
#include "overloads.h"
#include "targets.h"

using namespace trelk;

namespace {

node_matrix draw_connectivity(generator& g, std::size_t lines, std::size_t rows)
{
    auto const net = draw_network(g, lines, 30);
    return connectivity(g, net, rows);
}

template <std::size_t nodes>
int append_elements(generator& g, world& w)
{
    std::size_t const elements = g.below(30);
    std::size_t const n = elements == 0 ? g.below(2) : elements * (nodes - 1) + 1;
    w.indices = draw_chain(g, 50, n + (g.chance(0.1) ? 1 : 0));
    if (g.chance(0.5)) w.connect = draw_connectivity(g, 1, g.chance(0.1) ? 1 + g.below(5) : nodes);
    w.mix_storage(g);
    if constexpr (nodes == 2)
        return vornik1d::indices_to_connectE2(w.indices, w.connect);
    else if constexpr (nodes == 3)
        return vornik1d::indices_to_connectE3(w.indices, w.connect);
    else
        return vornik1d::indices_to_connectE4(w.indices, w.connect);
}

int split(generator& g, world& w)
{
    auto const net = draw_network(g, 2, 30);
    if (!g.chance(0.05)) w.connect = connectivity(g, net, g.chance(0.1) ? 2 + g.below(3) : 3);
    if (g.chance(0.5)) w.out_connect = connectivity(g, net, g.chance(0.1) ? 3 : 2);
    w.mix_storage(g);
    return vornik1d::split_into_linear(w.connect, w.out_connect);
}

int cut_down(generator& g, world& w)
{
    if (!g.chance(0.05)) w.connect = draw_connectivity(g, 2, 1 + g.below(5));
    w.mix_storage(g);
    return vornik1d::convert_into_linear(w.connect);
}

enum class conversion { into_another, in_place, quadratic, cubic };

template <conversion kind>
int convert(generator& g, world& w)
{
    auto const net = draw_network(g, 1 + g.below(3), 30);
    frame const at = draw_frame(g);
    w.coords = coordinates(net.nodes, g.chance(0.05) ? 4 : 1 + g.below(3), at);
    if (!g.chance(0.04)) w.connect = connectivity(g, net, g.chance(0.05) ? 1 : 2 + g.below(3));
    if (!w.connect.empty() && g.chance(0.05)) w.connect(0, 0) = no_limit;
    if (g.chance(0.3)) w.out_connect = matrix_of(2, 3, 4U);
    unsigned const extra_nodes = g.node(6);
    w.mix_storage(g);
    if constexpr (kind == conversion::into_another) {
        auto& result = g.chance(0.05) ? w.connect : w.out_connect;
        return vornik1d::convert_into_high_order(w.coords, w.connect, extra_nodes, result);
    } else if constexpr (kind == conversion::in_place)
        return vornik1d::convert_into_high_order(w.coords, w.connect, extra_nodes);
    else if constexpr (kind == conversion::quadratic)
        return vornik1d::convert_into_quadratic(w.coords, w.connect);
    else
        return vornik1d::convert_into_cubic(w.coords, w.connect);
}

int turn_all(generator& g, world& w)
{
    if (!g.chance(0.05)) w.connect = draw_connectivity(g, 2, 1 + g.below(4));
    w.mix_storage(g);
    return vornik1d::flip(w.connect);
}

/// The neighbours of each element: those that alone share a node with it.
node_matrix find_neighbors(node_matrix const& connect)
{
    auto neighbors = matrix_of(2, connect.cols(), no_limit);
    for (std::size_t e = 0; e < connect.cols(); ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            std::size_t ends = 0;
            for (std::size_t f = 0; f < connect.cols(); ++f)
                for (std::size_t k = 0; k < 2; ++k)
                    if (connect(k, f) == connect(i, e)) {
                        ++ends;
                        if (f != e) neighbors(1 - i, e) = static_cast<unsigned>(f);
                    }
            if (ends != 2 || connect(0, e) == connect(1, e)) neighbors(1 - i, e) = no_limit;
        }
    return neighbors;
}

int reorient(generator& g, world& w)
{
    w.connect = draw_connectivity(g, 1 + g.below(4), 2);
    for (std::size_t e = 0; e < w.connect.cols(); ++e)
        if (g.chance(0.3)) std::swap(w.connect(0, e), w.connect(1, e));
    std::size_t const n = w.connect.cols();
    w.out_connect = find_neighbors(w.connect);
    if (g.chance(0.1)) *w.out_connect.col(g.below(n)) = g.node(n + 2);
    if (g.chance(0.04)) w.out_connect = matrix_of(2, n + 1, 0U);
    if (g.chance(0.04)) w.connect(0, 0) = no_limit;
    if (g.chance(0.04)) w.connect = w.connect.sub_matrix(0, 0, 1, n);
    if (g.chance(0.02)) w.connect = {};
    unsigned const start = g.node(n + (g.chance(0.1) ? 1 : 0));
    w.mix_storage(g);
    return vornik1d::mesh_reorient(w.connect, w.out_connect, start, static_cast<int>(g.below(3)) - 1);
}

int version_call(generator&, world& w)
{
    for (char const* c = vornik1d::version(); *c != 0; ++c) w.indices.push_back(static_cast<unsigned>(*c));
    return 0;
}

} // namespace

void add_connect_overloads(std::vector<overload>& all)
{
    all.push_back({"indices_to_connectE2", 450, append_elements<2>});
    all.push_back({"indices_to_connectE3", 450, append_elements<3>});
    all.push_back({"indices_to_connectE4", 450, append_elements<4>});
    all.push_back({"split_into_linear", 450, split});
    all.push_back({"convert_into_linear", 450, cut_down});
    all.push_back({"convert_into_high_order/another", 750, convert<conversion::into_another>});
    all.push_back({"convert_into_high_order/in_place", 750, convert<conversion::in_place>});
    all.push_back({"convert_into_quadratic", 450, convert<conversion::quadratic>});
    all.push_back({"convert_into_cubic", 450, convert<conversion::cubic>});
    all.push_back({"flip", 300, turn_all});
    all.push_back({"mesh_reorient", 1200, reorient});
    all.push_back({"version", 1, version_call});
}

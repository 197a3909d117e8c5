// Functions that measure lines, move nodes along them, and work on the parameter axis
#include "networks.h"
#include "overloads.h"
#include "targets.h"

using namespace trelk;

namespace {

std::size_t draw_rows(generator& g)
{
    constexpr std::size_t odd_rows[] = {0, 1, 4};
    return g.chance(0.05) ? g.pick(odd_rows) : 2 + g.below(2);
}

/// A chain in `coords`, at times with an odd number or node.
void draw_chain_arguments(generator& g, world& w)
{
    std::size_t const n = draw_count(g, 100);
    std::size_t const rows = draw_rows(g);
    w.coords = draw_coordinates(g, n, rows);
    w.indices = draw_chain(g, n, g.chance(0.1) ? g.below(3) : n);
    if (rows > 0 && g.chance(0.05)) w.coords(rows - 1, g.below(n)) = odd_number(g);
    if (g.chance(0.05) && !w.indices.empty()) w.indices[g.below(w.indices.size())] = no_limit;
}

void draw_mesh_arguments(generator& g, std::size_t rows, world& w)
{
    auto const net = draw_network(g, 1 + g.below(4), 60);
    w.coords = coordinates(net.nodes, rows, draw_frame(g));
    w.connect = connectivity(g, net, 2 + (g.chance(0.1) ? 1 : 0));
    if (g.chance(0.03)) w.connect = matrix_of(1, 2, 0U);
    if (g.chance(0.03)) w.connect = {};
    if (g.chance(0.04) && !w.connect.empty()) w.connect(0, 0) = static_cast<unsigned>(w.coords.cols());
    if (rows > 0 && g.chance(0.05)) w.coords(g.below(rows), 0) = odd_number(g);
}

int curvature_call(generator& g, world& w)
{
    draw_chain_arguments(g, w);
    fill_outputs(g, 3, w);
    w.mix_storage(g);
    return vornik1d::curvatures(w.coords, w.indices, w.out_sizes);
}

int chain_length(generator& g, world& w)
{
    draw_chain_arguments(g, w);
    w.mix_storage(g);
    return vornik1d::length(w.coords, w.indices, w.number);
}

int mesh_length(generator& g, world& w)
{
    draw_mesh_arguments(g, draw_rows(g), w);
    w.mix_storage(g);
    return vornik1d::length(w.coords, w.connect, w.number);
}

int parametric_call(generator& g, world& w)
{
    draw_mesh_arguments(g, draw_rows(g), w);
    w.params = draw_params(g, w.coords.cols() - (g.chance(0.04) ? 1 : 0));
    if (g.chance(0.05)) w.params[0] = odd_number(g);
    fill_outputs(g, 3, w);
    w.mix_storage(g);
    return vornik1d::parametric_curvatures(w.params, w.connect, w.coords, w.out_sizes);
}

int normal_call(generator& g, world& w)
{
    // Whole exponents or none: the power function's last bits change with the C library.
    constexpr double exponents[] = {
        0, 0, 1, -1, 2, -2, infinity, -infinity, largest_double, -largest_double, not_a_number};
    draw_mesh_arguments(g, g.chance(0.04) ? 3 : 2, w);
    fill_outputs(g, 3, w);
    w.mix_storage(g);
    double const exponent = g.pick(exponents);
    return vornik1d::normals(w.coords, w.connect, exponent, g.chance(0.5), w.out_metrics);
}

int interpolate_call(generator& g, world& w)
{
    std::size_t const n = draw_count(g, 60);
    w.coords = draw_coordinates(g, n + 20, g.below(5));
    w.indices = draw_chain(g, n, g.chance(0.05) ? g.below(2) : n);
    w.params = draw_params(g, w.indices.size() + (g.chance(0.04) ? 1 : 0));
    std::size_t const moved = g.below(30);
    for (std::size_t k = 0; k < moved; ++k)
        w.out_indices.push_back(g.chance(0.1) ? g.node(n + 30) : static_cast<unsigned>(n) + g.node(20));
    w.out_params = draw_params(g, moved + (g.chance(0.04) ? 1 : 0));
    double const stretch = w.params.empty() ? 1 : static_cast<double>(n) / static_cast<double>(moved + 1);
    for (double& param : w.out_params) param *= stretch;
    for (auto* params : {&w.params, &w.out_params})
        if (g.chance(0.04) && !params->empty()) (*params)[g.below(params->size())] = odd_number(g);
    w.mix_storage(g);
    return vornik1d::interpolate_coordinates(w.coords, w.indices, w.params, w.out_indices, w.out_params);
}

int sort_call(generator& g, world& w)
{
    std::size_t const n = g.below(200);
    w.params = real_list(n);
    for (double& param : w.params) param = g.chance(0.3) ? odd_number(g) : g.between(-1, 1);
    for (std::size_t k = g.chance(0.04) ? 1 : 0; k < n; ++k) w.indices.push_back(g.node(30));
    w.mix_storage(g);
    return vornik1d::sort(w.params, w.indices);
}

int subdivide_call(generator& g, world& w)
{
    std::size_t const n = draw_count(g, 100);
    w.params = draw_params(g, n);
    if (g.chance(0.3))
        for (double& param : w.params) param = g.between(-5, 5);
    w.sizes = draw_sizes(g, n - (g.chance(0.02) ? 1 : 0), 1);
    if (g.chance(0.1))
        for (double& size : w.sizes) size = g.chance(0.5) ? size : -size;
    w.indices = draw_chain(g, n, g.chance(0.03) ? g.below(2) : n);
    if (g.chance(0.03) && !w.indices.empty()) w.indices[0] = static_cast<unsigned>(n);
    auto limits = draw_limits(g);
    if (g.chance(0.1)) {
        w.params[g.below(n)] = odd_number(g);
        w.sizes[g.below(n - 1)] = odd_number(g);
        limits.max_elements = limits.max_elements < 40 ? limits.max_elements : 40;
    }
    fill_outputs(g, 3, w);
    w.mix_storage(g);
    auto& new_indices = g.chance(0.05) ? w.indices : w.out_indices;
    return vornik1d::subdivide(w.params, w.sizes, w.indices, g.chance(0.3), limits.force_even,
        limits.min_elements, limits.max_elements, new_indices);
}

} // namespace

void add_measure_overloads(std::vector<overload>& all)
{
    all.push_back({"curvatures", 900, curvature_call});
    all.push_back({"length/chain", 900, chain_length});
    all.push_back({"length/mesh", 600, mesh_length});
    all.push_back({"parametric_curvatures", 900, parametric_call});
    all.push_back({"normals", 900, normal_call});
    all.push_back({"interpolate_coordinates", 1200, interpolate_call});
    all.push_back({"sort", 600, sort_call});
    all.push_back({"subdivide", 1500, subdivide_call});
}

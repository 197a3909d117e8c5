// mesh_straight
#include "overloads.h"
#include "shapes.h"
#include "targets.h"

using namespace trelk;

namespace {

double draw_arguments(generator& g, world& w)
{
    constexpr std::size_t odd_rows[] = {0, 1, 4};
    std::size_t const rows = g.chance(0.03) ? g.pick(odd_rows) : 2 + g.below(2);
    std::size_t const n = draw_count(g, 100);
    std::size_t const further = g.below(3);
    frame const at = draw_frame(g);
    w.coords = coordinates(draw_line(g, n + further), rows, at);
    w.indices = draw_chain(g, n + further, g.chance(0.04) ? g.below(2) : n);
    if (g.chance(0.03) && n <= w.indices.size()) w.indices[n - 1] = static_cast<unsigned>(n + further);
    fill_outputs(g, 3, w);
    return at.scale;
}

int by_sizes(generator& g, world& w)
{
    double const scale = draw_arguments(g, w);
    w.sizes = draw_sizes(g, w.coords.cols() - (g.chance(0.03) ? 2 : 0), scale);
    if (g.chance(0.03)) w.sizes[0] = g.chance(0.5) ? infinity : -1;
    w.mix_storage(g);
    auto& out_indices = g.chance(0.05) ? w.indices : w.out_indices;
    return vornik1d::mesh_straight(w.coords, w.indices, w.sizes, g.chance(0.5), out_indices);
}

int by_tensors(generator& g, world& w)
{
    constexpr double odd[] = {0, -1, not_a_number, infinity};
    double const scale = draw_arguments(g, w);
    std::size_t const rows = g.chance(0.03) ? 2 + g.below(6) : (w.coords.rows() == 2 ? 3 : 6);
    w.metrics = draw_tensors(g, rows, w.coords.cols() - (g.chance(0.03) ? 2 : 0), scale);
    double const factor = g.chance(0.03) ? 1e-170 : 1; // such tensors can't be reduced
    for (std::size_t j = 0; j < w.metrics.cols(); ++j)
        for (std::size_t r = 0; r < rows; ++r) w.metrics(r, j) *= factor;
    if (!w.metrics.empty() && g.chance(0.02)) w.metrics(0, 0) = g.pick(odd);
    w.mix_storage(g);
    return vornik1d::mesh_straight(w.coords, w.indices, w.metrics, g.chance(0.5), w.out_indices);
}

int by_count(generator& g, world& w)
{
    draw_arguments(g, w);
    w.mix_storage(g);
    unsigned const elements = g.node(200);
    return vornik1d::mesh_straight(w.coords, w.indices, elements, g.chance(0.5), w.out_indices);
}

int segment_by_sizes(generator& g, world& w)
{
    double const scale = draw_arguments(g, w);
    w.mix_storage(g);
    unsigned const a = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    unsigned const b = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    auto const sizes = draw_sizes(g, 2, scale);
    double const size_a = g.chance(0.05) ? -sizes[0] : sizes[0];
    double const size_b = g.chance(0.05) ? infinity * (g.chance(0.5) ? 1 : -1) : sizes[1];
    return vornik1d::mesh_straight(w.coords, a, b, size_a, size_b, g.chance(0.5), w.out_indices);
}

int segment_by_count(generator& g, world& w)
{
    draw_arguments(g, w);
    w.mix_storage(g);
    unsigned const a = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    unsigned const b = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    return vornik1d::mesh_straight(w.coords, a, b, g.node(200), w.out_indices);
}

int two_segments(generator& g, world& w)
{
    draw_arguments(g, w);
    w.mix_storage(g);
    unsigned const a = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    unsigned const b = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    unsigned const c = g.node(w.coords.cols() + (g.chance(0.1) ? 1 : 0));
    return vornik1d::mesh_straight(w.coords, a, b, c, g.node(200), w.out_indices);
}

} // namespace

void add_straight_overloads(std::vector<overload>& all)
{
    all.push_back({"mesh_straight/sizes", 1200, by_sizes});
    all.push_back({"mesh_straight/tensors", 1200, by_tensors});
    all.push_back({"mesh_straight/count", 900, by_count});
    all.push_back({"mesh_straight/segment/sizes", 900, segment_by_sizes});
    all.push_back({"mesh_straight/segment/count", 600, segment_by_count});
    all.push_back({"mesh_straight/two_segments/count", 600, two_segments});
}

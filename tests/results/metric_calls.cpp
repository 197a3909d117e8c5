// interpolate_metrics and metrics_gen_aniso
#include <algorithm>

#include "networks.h"
#include "overloads.h"
#include "targets.h"

using namespace trelk;

namespace {

/// Parameters to interpolate at: some of those given, and some between them.
void draw_new_params(generator& g, world& w, real_list& wanted)
{
    auto const& params = w.params;
    wanted = real_list(g.chance(0.04) ? 0 : 1 + g.below(40));
    for (double& param : wanted) {
        double const fraction = g.unit();
        double const range = params[params.size() - 1] - params[0];
        param = g.chance(0.3) ? params[g.below(params.size())] : params[0] + fraction * range;
    }
    if (!g.chance(0.03)) std::sort(wanted.begin(), wanted.end());
    if (g.chance(0.04) && !wanted.empty()) wanted[g.below(wanted.size())] = odd_number(g);
}

int interpolate_sizes(generator& g, world& w)
{
    std::size_t const n = draw_count(g, 100);
    w.params = draw_params(g, n);
    w.sizes = draw_sizes(g, n - (g.chance(0.02) ? 1 : 0), 1);
    if (g.chance(0.2)) w.sizes[g.below(w.sizes.size())] = odd_number(g);
    real_list wanted;
    draw_new_params(g, w, wanted);
    if (g.chance(0.03)) w.params[g.below(n)] = odd_number(g);
    if (g.chance(0.02)) w.params = w.params.sub_vector(0, 1);
    fill_outputs(g, 3, w);
    w.mix_storage(g);
    auto& result = g.chance(0.05) ? w.sizes : w.out_sizes;
    return vornik1d::interpolate_metrics(w.params, w.sizes, wanted, result);
}

int interpolate_tensors(generator& g, world& w)
{
    constexpr std::size_t odd_rows[] = {0, 1, 2, 4};
    std::size_t const n = draw_count(g, 40);
    std::size_t const rows = g.chance(0.1) ? g.pick(odd_rows) : 3 + 3 * g.below(2);
    w.params = draw_params(g, n);
    w.metrics = draw_tensors(g, rows, n - (g.chance(0.02) ? 1 : 0), 1);
    if (rows > 0 && g.chance(0.2)) w.metrics(rows - 1, g.below(w.metrics.cols())) = odd_number(g);
    constexpr double factors[] = {1e-240, 1e-140, 1e-120, 1e100, 1e150};
    double const factor = g.chance(0.15) ? g.pick(factors) : 1;
    std::size_t const scaled = g.chance(0.5) ? 1 : w.metrics.cols();
    for (std::size_t j = 0; j < scaled && rows > 0; ++j)
        for (std::size_t r = 0; r < rows; ++r) w.metrics(r, j) *= factor;
    real_list wanted;
    draw_new_params(g, w, wanted);
    if (g.chance(0.03)) w.params[g.below(n)] = odd_number(g);
    fill_outputs(g, 3, w);
    w.mix_storage(g);
    return vornik1d::interpolate_metrics(w.params, w.metrics, wanted, w.out_metrics);
}

/// A length of about 1, or one whose powers leave the range of numbers.
double draw_unit(generator& g)
{
    constexpr double units[] = {1e-75, 1e-40, 1e40, 1e75};
    return g.chance(0.15) ? g.pick(units) : 1;
}

/// Tensors to merge into: none, or some that ask for something at some of the nodes.
void draw_present(generator& g, std::size_t rows, std::size_t nodes, double unit, world& w)
{
    if (g.chance(0.5)) return;
    w.metrics = draw_tensors(g, rows, 1 + g.below(nodes + 2), unit);
    for (std::size_t j = 0; j < w.metrics.cols(); ++j)
        if (g.chance(0.2)) std::fill_n(w.metrics.col(j), rows, 0.0);
    if (g.chance(0.1)) w.metrics(g.below(rows), 0) = odd_number(g);
    if (g.chance(0.1)) w.metrics(rows - 1, 0) *= 1e-15;
}

int from_directions(generator& g, world& w)
{
    std::size_t const n = draw_count(g, 40);
    w.coords = draw_coordinates(g, n, g.chance(0.04) ? 3 : 2);
    w.indices = draw_chain(g, n, g.below(n + 1));
    if (g.chance(0.03) && !w.indices.empty()) w.indices[0] = static_cast<unsigned>(n);
    double const unit = draw_unit(g);
    draw_present(g, g.chance(0.04) ? 6 : 3, n, unit, w);
    double const along = unit * (g.chance(0.1) ? odd_number(g) : g.octaves(-6, 2));
    double const across = unit * (g.chance(0.1) ? odd_number(g) : g.octaves(-6, 2));
    w.mix_storage(g);
    return vornik1d::metrics_gen_aniso2d(w.coords, w.indices, along, across, w.metrics);
}

/// A size in length units, one relative to elements, or an odd one.
double draw_size_across(generator& g)
{
    if (g.chance(0.1)) return odd_number(g);
    double const size = g.octaves(-6, 2);
    return g.chance(0.4) ? -size : size;
}

template <std::size_t N, bool with_binormal>
int from_elements(generator& g, world& w)
{
    auto const net = draw_network(g, 1 + g.below(3), 30);
    std::size_t const nodes = net.nodes.points.size();
    double const unit = draw_unit(g);
    frame const at = unit == 1 ? draw_frame(g) : frame{.scale = unit};
    w.coords = coordinates(net.nodes, N - (g.chance(0.03) ? 1 : 0), at);
    w.connect = connectivity(g, net, g.chance(0.03) ? 3 : 2);
    if (g.chance(0.03)) w.connect(0, 0) = static_cast<unsigned>(nodes);
    if (g.chance(0.02)) w.connect = {};
    draw_present(g, g.chance(0.04) ? 4 : (N == 2 ? 3 : 6), nodes, unit, w);
    double const normal = unit * draw_size_across(g);
    double const binormal = unit * draw_size_across(g);
    w.mix_storage(g);
    if constexpr (N == 2)
        return vornik1d::metrics_gen_aniso2d(w.coords, w.connect, normal, w.metrics);
    else if constexpr (with_binormal)
        return vornik1d::metrics_gen_aniso3d(w.coords, w.connect, normal, binormal, w.metrics);
    else
        return vornik1d::metrics_gen_aniso3d(w.coords, w.connect, normal, w.metrics);
}

} // namespace

void add_metric_overloads(std::vector<overload>& all)
{
    all.push_back({"interpolate_metrics/sizes", 1500, interpolate_sizes});
    all.push_back({"interpolate_metrics/tensors", 1800, interpolate_tensors});
    all.push_back({"metrics_gen_aniso2d/directions", 1500, from_directions});
    all.push_back({"metrics_gen_aniso2d/elements", 1500, from_elements<2, false>});
    all.push_back({"metrics_gen_aniso3d/normal", 1500, from_elements<3, false>});
    all.push_back({"metrics_gen_aniso3d/binormal", 1500, from_elements<3, true>});
}

// spline_point and mesh_spline
#include <cmath>

#include "overloads.h"
#include "shapes.h"
#include "targets.h"

using namespace trelk;

namespace {

template <std::size_t N>
int point_call(generator& g, world& w)
{
    std::size_t const n = 4 + g.below(8);
    w.coords = draw_coordinates(g, n, g.chance(0.04) ? 5 - N : N);
    unsigned i[4];
    unsigned const first = g.node(n - 3);
    for (unsigned k = 0; k < 4; ++k) i[k] = g.chance(0.15) ? g.node(n + 1) : first + k;
    if (g.chance(0.2)) i[0] = i[1];
    if (g.chance(0.2)) i[3] = i[2];
    double t = g.chance(0.7) ? g.unit() : g.between(-2, 3);
    if (g.chance(0.05)) t = odd_number(g);
    w.mix_storage(g);
    vector_fixed<double, N> point{};
    for (std::size_t r = 0; r < N; ++r) point[r] = w.point[r];
    int const status = vornik1d::spline_point(w.coords, i[0], i[1], i[2], i[3], t, point);
    for (std::size_t r = 0; r < N; ++r) w.point[r] = point[r];
    return status;
}

/// The chain with its guide nodes: of an open curve, of a closed one, or any. Tells whether it is as smooth
/// as the nodes are.
bool draw_guided_chain(generator& g, std::size_t n, bool is_ring, world& w)
{
    std::size_t const kind = g.below(5);
    auto const last = static_cast<unsigned>(n - 1);
    if (kind == 0) w.indices.push_back(g.chance(0.5) ? last : 0);
    w.indices.push_back(kind < 2 ? last : 0);
    for (unsigned k = 0; k < n; ++k) w.indices.push_back(k);
    if (kind < 2) w.indices.push_back(0);
    w.indices.push_back(kind < 2 ? 1 : last);
    for (std::size_t k = 0; kind == 4 && k < w.indices.size(); ++k)
        if (g.chance(0.1)) w.indices[k] = k > 0 && g.chance(0.5) ? w.indices[k - 1] : g.node(n);
    return kind == 2 || kind == 3 || (kind == 1 && is_ring);
}

struct spline_settings
{
    element_limits limits;
    double tolerance;
    double min_size;
    double default_size;
    double max_gradation;
};

spline_settings draw_settings(generator& g, double scale, bool is_smooth)
{
    constexpr double gradations[] = {largest_double, infinity, not_a_number, -1};
    spline_settings s{draw_limits(g), draw_tolerance(g, scale), 0, 0, 0};
    // Where a curve has kinks, the least size alone bounds the number of samples.
    if (!is_smooth || g.chance(0.5)) s.min_size = scale * g.octaves(-6, 1);
    if (g.chance(0.5)) s.default_size = scale * g.octaves(-3, 3);
    if (g.chance(0.5)) s.max_gradation = g.octaves(-5, 1);
    if (g.chance(0.1)) s.max_gradation = g.pick(gradations);
    return s;
}

void spoil(generator& g, bool tensors, world& w, spline_settings& s)
{
    std::size_t const n = w.indices.size();
    std::size_t const k = g.below(n);
    double const odd = odd_number(g);
    s.min_size = s.min_size > 0.01 ? s.min_size : 0.01;
    s.limits.max_elements = s.limits.max_elements < 40 ? s.limits.max_elements : 40;
    switch (g.below(10)) {
    case 0:
        w.coords = matrix_of(1 + 3 * g.below(2), n, 1.0);
        break;
    case 1:
        w.indices[k] = g.chance(0.5) ? no_limit : static_cast<unsigned>(w.coords.cols());
        break;
    case 2:
        w.indices = w.indices.sub_vector(0, g.below(4));
        break;
    case 3:
        w.sizes = w.sizes.sub_vector(0, n - 1), w.metrics = w.metrics.sub_matrix(0, 0, 6, n - 1);
        break;
    case 4:
        w.metrics = w.metrics.sub_matrix(0, 0, 2, n);
        [[fallthrough]];
    case 5:
        w.out_metrics = matrix_of(2 + g.below(5), 2, 1.0);
        break;
    case 6:
        if (tensors)
            w.metrics(g.below(w.metrics.rows()), k) = odd;
        else
            w.sizes[k] = odd > 1e-9 || !(odd > 0) ? odd : 1e-9;
        break;
    case 7:
        s.min_size = g.chance(0.5) ? -1 : not_a_number;
        break;
    case 8:
        s.default_size = odd;
        break;
    default:
        w.coords(g.below(w.coords.rows()), w.indices[k]) = g.chance(0.5) ? not_a_number : infinity;
    }
}

template <bool tensors>
int mesh_call(generator& g, world& w)
{
    std::size_t const rows = 2 + g.below(2);
    std::size_t const n = draw_count(g, tensors ? 80 : 300);
    bool const is_tiny = g.chance(0.03); // the squares of its lengths underflow
    frame const at = is_tiny ? frame{.scale = g.between(1, 4) * 1e-162} : draw_frame(g);
    bool const is_ring = n > 2 && g.chance(0.3);
    auto const line = is_ring ? draw_ring(g, n) : draw_line(g, n);
    w.coords = coordinates(line, rows, at);
    bool const is_plain = draw_guided_chain(g, n, is_ring, w);
    std::size_t const entries = w.indices.size() + g.below(2);
    double const scale = is_tiny ? 1 : at.scale;
    if (tensors)
        w.metrics = draw_tensors(g, rows == 2 ? 3 : 6, entries, scale);
    else
        w.sizes = draw_sizes(g, entries, scale);
    fill_outputs(g, rows == 2 ? 3 : 6, w);
    auto s = draw_settings(g, scale, line.is_smooth && is_plain && n > 3);
    if (is_tiny)
        s.tolerance = -0.01, s.min_size = 0, s.limits = {false, 1, 40};
    else if (g.chance(0.1))
        spoil(g, tensors, w, s);
    w.mix_storage(g);

    auto& out_indices = g.chance(0.03) ? w.indices : w.out_indices;
    auto& out_params = g.chance(0.03) ? w.out_sizes : w.out_params;
    auto& deviation = g.chance(0.02) && !w.coords.empty() && at.offset == 0 ? w.coords(0, 0) : w.number;
    auto const& [is_even, least, most] = s.limits;
    if constexpr (tensors)
        return vornik1d::mesh_spline(w.coords, w.indices, w.metrics, is_even, least, most, s.tolerance,
            s.min_size, s.default_size, s.max_gradation, out_indices, out_params, w.out_metrics, deviation);
    else
        return vornik1d::mesh_spline(w.coords, w.indices, w.sizes, is_even, least, most, s.tolerance,
            s.min_size, s.default_size, s.max_gradation, out_indices, out_params, w.out_sizes, deviation);
}

} // namespace

void add_spline_overloads(std::vector<overload>& all)
{
    all.push_back({"spline_point/plane", 1200, point_call<2>});
    all.push_back({"spline_point/space", 1200, point_call<3>});
    all.push_back({"mesh_spline/sizes", 4500, mesh_call<false>});
    all.push_back({"mesh_spline/tensors", 3000, mesh_call<true>});
}

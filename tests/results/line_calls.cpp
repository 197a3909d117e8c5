// mesh_line
#include <cmath>

#include "overloads.h"
#include "shapes.h"
#include "targets.h"

using namespace trelk;

namespace {

/// A chain for `mesh_line`, with parameters and targets; `tensors` tells which.
double draw_arguments(generator& g, bool tensors, world& w)
{
    std::size_t const rows = 2 + g.below(2);
    std::size_t const n = draw_count(g, 300);
    frame const at = draw_frame(g);
    std::size_t const further = g.below(4);
    w.coords =
        coordinates(g.chance(0.9) ? draw_line(g, n + further) : draw_ring(g, n + further + 1), rows, at);
    w.indices = draw_chain(g, n + further, n);
    w.params = draw_params(g, n);
    if (tensors)
        w.metrics = draw_tensors(g, rows == 2 ? 3 : 6, n + further, at.scale);
    else
        w.sizes = draw_sizes(g, n + further, at.scale);
    fill_outputs(g, rows == 2 ? 3 : 6, w);
    return at.scale;
}

/// Makes the chain straight and even, with sizes that take turns, so that new nodes fall on its own or just
/// beside them.
void put_in_step(generator& g, world& w, element_limits& limits)
{
    std::size_t const n = w.indices.size();
    double const step = g.between(0.5, 2);
    double const sizes[] = {step * g.octaves(-2, 2), step * g.octaves(-2, 2)};
    for (std::size_t k = 0; k < n; ++k) {
        for (std::size_t r = 0; r < w.coords.rows(); ++r) w.coords(r, k) = step * static_cast<double>(k);
        w.indices[k] = static_cast<unsigned>(k);
        w.sizes[k] = sizes[k % 2];
    }
    limits.min_elements = limits.max_elements = (1 + g.node(3)) * static_cast<unsigned>(n - 1);
}

/// Makes all tensors so small that they can't be reduced.
void make_irreducible(real_matrix& metrics)
{
    double const factor = metrics.rows() == 3 ? 1e-140 : 1e-240;
    for (std::size_t j = 0; j < metrics.cols(); ++j)
        for (std::size_t r = 0; r < metrics.rows(); ++r) metrics(r, j) *= factor;
}

/// Makes one tensor so thin that rounding decides on the sign of what it measures along the chain.
void make_thin(generator& g, world& w)
{
    std::size_t const rows = w.coords.rows();
    std::size_t const k = g.below(w.indices.size() - 1);
    double const* const a = w.coords.col(w.indices[k]);
    double const* const b = w.coords.col(w.indices[k + 1]);
    double square = 0;
    for (std::size_t r = 0; r < rows; ++r) square += (b[r] - a[r]) * (b[r] - a[r]);
    if (!(square > 0)) return;
    double const across = w.metrics(0, k);
    double* entry = w.metrics.col(g.chance(0.5) ? k : k + 1);
    for (std::size_t j = 0; j < rows; ++j)
        for (std::size_t i = 0; i <= j; ++i) {
            double const part = (b[i] - a[i]) * (b[j] - a[j]) / square;
            *entry++ = across * ((i == j ? 1 : 0) - (1 - 0x1p-52) * part);
        }
}

/// Stretches the range of parameters to the limits of numbers.
void stretch_params(generator& g, real_list& params)
{
    constexpr double ends[] = {1e308, largest_double, infinity};
    std::size_t const end = g.below(3);
    if (end != 0) params[0] = -g.pick(ends);
    if (end != 1) params[params.size() - 1] = g.pick(ends);
}

/// Puts a fault into one of the arguments, or something else that is odd; `limits` keep the mesh small.
void spoil(generator& g, bool tensors, world& w, element_limits& limits)
{
    std::size_t const n = w.indices.size();
    std::size_t const k = g.below(n);
    double const odd = odd_number(g);
    constexpr double factors[] = {1e100, 1e-100, 1e306, 1e307};
    double const factor = g.pick(factors);
    switch (g.below(12)) {
    case 0:
        w.coords = matrix_of(1 + 3 * g.below(2), n, 1.0);
        break;
    case 1:
        w.indices[k] = g.chance(0.5) ? no_limit : static_cast<unsigned>(w.coords.cols());
        break;
    case 2:
        w.indices = w.indices.sub_vector(0, g.below(2));
        break;
    case 3:
        w.params = w.params.sub_vector(0, n - 1);
        break;
    case 4:
        w.params[k] = odd;
        break;
    case 5:
        w.sizes = w.sizes.sub_vector(0, n - 1), w.metrics = w.metrics.sub_matrix(0, 0, 6, n - 1);
        break;
    case 6:
        w.metrics = w.metrics.sub_matrix(0, 0, 2, n);
        [[fallthrough]];
    case 7:
        w.out_metrics = matrix_of(2 + g.below(5), 2, 1.0);
        break;
    case 8:
        if (tensors)
            w.metrics(g.below(w.metrics.rows()), k) = odd;
        else
            w.sizes[k] = odd > 1e-9 || !(odd > 0) ? odd : 1e-9;
        break;
    case 9:
        for (std::size_t r = 0; tensors && r < w.metrics.rows(); ++r) w.metrics(r, k) *= factor;
        break;
    default:
        w.coords(g.below(w.coords.rows()), w.indices[k]) = odd;
    }
    limits.max_elements = limits.max_elements < 40 ? limits.max_elements : 40;
}

/// One call in any overload. Outputs can be one object with an input or with each other.
template <bool with_params, bool tensors>
int call(generator& g, world& w)
{
    double const scale = draw_arguments(g, tensors, w);
    auto limits = draw_limits(g);
    if (!tensors && g.chance(0.05)) put_in_step(g, w, limits);
    if (tensors && g.chance(0.1)) make_thin(g, w);
    if (with_params && g.chance(0.03)) stretch_params(g, w.params);
    double tolerance = draw_tolerance(g, scale);
    if (tensors && g.chance(0.05)) {
        make_irreducible(w.metrics);
        tolerance = std::abs(tolerance); // a bound on some would make them differ by too much
    }
    double min_size = g.chance(0.5) ? 0 : scale * g.octaves(-7, 1);
    if (g.chance(0.02)) min_size = odd_number(g);
    if (g.chance(0.12)) {
        spoil(g, tensors, w, limits);
        if (tolerance > 0) tolerance = 0; // which would lift the limits
    }
    w.mix_storage(g);

    auto& out_indices = g.chance(0.03) ? w.indices : w.out_indices;
    auto& out_params = g.chance(0.03) ? w.params : w.out_params;
    auto& one_of_sizes = g.chance(0.5) ? w.sizes : w.out_params;
    auto& out_sizes = g.chance(0.03) ? one_of_sizes : w.out_sizes;
    auto& out_metrics = g.chance(0.03) ? w.metrics : w.out_metrics;
    auto const& [is_even, least, most] = limits;
    if constexpr (with_params && tensors)
        return vornik1d::mesh_line(w.coords, w.indices, w.params, w.metrics, is_even, least, most, tolerance,
            min_size, out_indices, out_params, out_metrics);
    else if constexpr (with_params)
        return vornik1d::mesh_line(w.coords, w.indices, w.params, w.sizes, is_even, least, most, tolerance,
            min_size, out_indices, out_params, out_sizes);
    else if constexpr (tensors)
        return vornik1d::mesh_line(w.coords, w.indices, w.metrics, is_even, least, most, tolerance, min_size,
            out_indices, out_params, out_metrics);
    else
        return vornik1d::mesh_line(w.coords, w.indices, w.sizes, is_even, least, most, tolerance, min_size,
            out_indices, out_params, out_sizes);
}

} // namespace

void add_line_overloads(std::vector<overload>& all)
{
    all.push_back({"mesh_line/params/sizes", 6000, call<true, false>});
    all.push_back({"mesh_line/sizes", 6000, call<false, false>});
    all.push_back({"mesh_line/params/tensors", 6000, call<true, true>});
    all.push_back({"mesh_line/tensors", 6000, call<false, true>});
}

#include <vornik1d/vornik1d.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "front_door.h"
#include "metric/sizes.h"
#include "placement/line.h"
#include "placement/size_targets.h"
#include "placement/tensor_targets.h"
#include "spline/bend_nodes.h"
#include "spline/curvature_sizes.h"
#include "spline/sample_spline.h"

namespace trelk::vornik1d {

namespace {

/// How a spline is to be meshed. `deviation_tolerance` is cleaned: `largest` where there is none.
struct spline_rule : element_rule
{
    double deviation_tolerance;
    double min_size;
    double default_size;
    double max_gradation;
};

double clean_tolerance(double deviation_tolerance)
{
    bool const is_off =
        deviation_tolerance == 0 || deviation_tolerance == -largest || std::isnan(deviation_tolerance);
    return is_off ? largest : deviation_tolerance;
}

bool are_finite(dense2D<double> const& coords, dense1D<unsigned> const& indices)
{
    return std::all_of(indices.begin(), indices.end(), [&](unsigned node) {
        double const* const point = coords.col(node);
        return std::all_of(point, point + coords.rows(), [](double x) { return std::isfinite(x); });
    });
}

/// Targets at the samples from those at the curve nodes: between these by interpolation, or of default size.
template <class Targets>
[[nodiscard]] bool carry_targets(spline_samples const& curve, typename Targets::list const& node_targets,
    spline_rule const& rule, typename Targets::list& sample_targets)
{
    if (!(rule.default_size > 0 && rule.max_gradation > 0))
        return interpolate_metrics(curve.node_params, node_targets, curve.sample_params, sample_targets) == 0;

    if (!Targets::fill(sample_targets, curve.samples.cols(), rule.default_size)) return false;
    for (std::size_t k = 0; k < curve.node_samples.size(); ++k)
        Targets::copy_entry(node_targets, k, sample_targets, curve.node_samples[k]);
    return true;
}

/// Lowers the targets at the samples to the sizes that keep chords within the tolerance of the curve.
template <class Targets>
[[nodiscard]] bool bound_by_curvature(dense2D<double> const& coords, dense1D<unsigned> const& indices,
    spline_samples const& curve, spline_rule const& rule, typename Targets::list& sample_targets)
{
    constexpr int N = Targets::dimension;
    dense1D<unsigned> bends;
    dense1D<double> bend_params;
    dense1D<double> bend_sizes;
    dense1D<double> limits;
    if (!bend_nodes<N>(coords, indices, bends, bend_params) ||
        !curvature_sizes<N>(coords, bends, rule.deviation_tolerance, bend_sizes))
        return false;

    vornik::bound_metrics(bend_sizes, rule.min_size, std::max(curve.spline_length, rule.min_size));
    if (interpolate_metrics(bend_params, bend_sizes, curve.sample_params, limits) != 0) return false;
    for (std::size_t k = 0; k < limits.size(); ++k) Targets::bound(sample_targets, k, limits[k]);
    return true;
}

/// Lowers the targets so that they do not grow too fast from sample to sample.
template <class Targets>
[[nodiscard]] bool bound_by_gradation(
    dense2D<double> const& samples, double max_gradation, typename Targets::list& sample_targets)
{
    if (!(max_gradation > 0 && max_gradation < largest)) return true;

    std::size_t const edges = samples.cols() - 1;
    dense2D<unsigned> connect;
    if (!connect.resize(2, edges)) return false;
    for (std::size_t e = 0; e < edges; ++e)
        connect(0, e) = static_cast<unsigned>(e), connect(1, e) = static_cast<unsigned>(e + 1);
    vornik::bound_metric_gradations(samples, connect, vornik::element_type::edge, {}, true,
        Targets::gradation_mode, max_gradation, sample_targets);
    return true;
}

/// Meshes a spline and appends the mesh to the caller's lists. On a failure all is as before.
template <class Targets>
int mesh_curve(dense2D<double>& coords, dense1D<unsigned> const& indices,
    typename Targets::list const& targets, spline_rule const& rule, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, typename Targets::list& out_targets, double& deviation)
{
    constexpr int N = Targets::dimension;
    if (!are_finite(coords, indices)) return bad_argument(1);

    std::size_t const n = indices.size();
    spline_samples curve;
    // Ten times closer to the curve than the mesh is to be.
    bool const is_sampled =
        sample_spline<N>(coords, indices, 0.1 * rule.deviation_tolerance, 0.5 * rule.min_size, curve);
    if (!std::isfinite(curve.spline_length)) return bad_argument(1);
    if (!is_sampled) return no_storage;

    line<Targets> polyline;
    polyline.params = curve.sample_params;
    if (!polyline.nodes.resize(curve.samples.cols()) ||
        !carry_targets<Targets>(curve, Targets::part(targets, 1, n - 2), rule, polyline.targets) ||
        !bound_by_curvature<Targets>(coords, indices, curve, rule, polyline.targets) ||
        !bound_by_gradation<Targets>(curve.samples, rule.max_gradation, polyline.targets))
        return no_storage;
    std::iota(polyline.nodes.begin(), polyline.nodes.end(), 0U);

    std::size_t const base_columns = coords.cols();
    bool const deviation_may_move =
        coords.holds(deviation) || out_params.holds(deviation) || out_targets.holds(deviation);
    dense2D<double> new_coords;
    line<Targets> mesh;
    if (place_between_ends(curve.samples, polyline, rule, new_coords, mesh) &&
        add_new_nodes(new_coords, indices[1], indices[n - 2], coords, mesh) &&
        publish(mesh, out_indices, out_params, out_targets)) {
        if (!deviation_may_move) deviation = curve.deviation; // an entry of what has grown may be gone
        return 0;
    }
    truncate(coords, base_columns);
    return no_storage;
}

} // namespace

int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, double default_size, double max_gradation, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense1D<double>& out_sizes, double& deviation) noexcept
{
    deviation = 0;
    std::size_t const n = indices.size();
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (n < 4 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (sizes.size() < n || !vornik::are_valid_metrics(sizes.sub_vector(0, n))) return bad_argument(3);
    if (min_elements > max_elements || min_elements == 0) return bad_argument(5);
    if (!(min_size >= 0)) return bad_argument(8);

    spline_rule const rule{{force_even, min_elements, max_elements}, clean_tolerance(deviation_tolerance),
        min_size, default_size, max_gradation};
    return by_dimension(coords, [&](auto dim) {
        return mesh_curve<size_targets<dim>>(
            coords, indices, sizes, rule, out_indices, out_params, out_sizes, deviation);
    });
}

int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices, dense2D<double> const& metrics,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, double default_size, double max_gradation, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense2D<double>& out_metrics, double& deviation) noexcept
{
    deviation = 0;
    std::size_t const n = indices.size();
    std::size_t const rows = metric_rows(coords);
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (n < 4 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (metrics.cols() < n) return bad_argument(3);
    if (!vornik::are_valid_metrics(metrics.sub_matrix(0, 0, metrics.rows(), n))) return bad_argument(3);
    if (metrics.rows() != rows) return bad_argument(3);
    if (min_elements > max_elements || min_elements == 0) return bad_argument(5);
    if (!(min_size >= 0)) return bad_argument(8);
    if (!out_metrics.empty() && out_metrics.rows() != rows) return bad_argument(13);

    spline_rule const rule{{force_even, min_elements, max_elements}, clean_tolerance(deviation_tolerance),
        min_size, default_size, max_gradation};
    return by_dimension(coords, [&](auto dim) {
        return mesh_curve<tensor_targets<dim>>(
            coords, indices, metrics, rule, out_indices, out_params, out_metrics, deviation);
    });
}

} // namespace trelk::vornik1d

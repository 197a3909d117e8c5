#include <vornik1d/vornik1d.h>

#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "front_door.h"
#include "placement/line.h"
#include "placement/line_mesh.h"
#include "placement/target_lists.h"
#include "rules.h"
#include "spline/spline_mesher.h"

namespace trelk::vornik1d {

namespace {

spline_rule rule_of(bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, double default_size, double max_gradation)
{
    element_rule const elements{
        .force_even = force_even, .min_elements = min_elements, .max_elements = max_elements};
    line_rule const line{elements, spline_tolerance(deviation_tolerance), min_size};
    return {line, default_size, max_gradation};
}

/// Meshes a spline and appends the mesh to the caller's lists. On a failure the lists and `coords` are as
/// before.
template <std::size_t N, class List>
int mesh_curve(dense2D<double>& coords, dense1D<unsigned> const& indices, List targets,
    spline_rule const& rule, dense1D<unsigned>& out_indices, dense1D<double>& out_params, List& out_targets,
    double& deviation)
{
    using target_type = targets_in<List, N>;
    if (!detach_from(coords, targets)) return no_storage;

    std::size_t const base_columns = coords.cols();
    bool const deviation_may_move =
        coords.holds(deviation) || out_params.holds(deviation) || out_targets.holds(deviation);
    std::size_t const ld = target_type::ld(targets);
    line_view<target_type> const node_targets{.targets = targets.data() + ld, .target_ld = ld};
    spline_mesher<target_type> mesher(coords, true);
    int status = mesher.sample(indices, rule, any_deviation);
    if (status == 0) status = mesher.mesh_sampled(indices, node_targets, rule);
    if (status == 0 && !publish(mesher.mesh(), out_indices, out_params, out_targets)) status = no_storage;
    if (status != 0) {
        truncate(coords, base_columns);
        return status;
    }
    if (!deviation_may_move) deviation = mesher.deviation(); // otherwise its memory may be gone
    return 0;
}

/// Checks the arguments in the documented order, and meshes.
template <class List>
int check_and_mesh(dense2D<double>& coords, dense1D<unsigned> const& indices, List const& targets,
    spline_rule const& rule, dense1D<unsigned>& out_indices, dense1D<double>& out_params, List& out_targets,
    double& deviation)
{
    deviation = 0;
    std::size_t const n = indices.size();
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (n < 4 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (!check_targets(targets, n, coords)) return bad_argument(3);
    if (rule.min_elements > rule.max_elements || rule.min_elements == 0) return bad_argument(5);
    if (!(rule.min_size >= 0)) return bad_argument(8);
    if (!can_be_appended_to(out_targets, coords)) return bad_argument(13);

    return by_dimension(coords, [&](auto dim) {
        return mesh_curve<dim>(
            coords, indices, targets, rule, out_indices, out_params, out_targets, deviation);
    });
}

} // namespace

int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, double default_size, double max_gradation, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense1D<double>& out_sizes, double& deviation) noexcept
{
    return check_and_mesh(coords, indices, sizes,
        rule_of(force_even, min_elements, max_elements, deviation_tolerance, min_size, default_size,
            max_gradation),
        out_indices, out_params, out_sizes, deviation);
}

int mesh_spline(dense2D<double>& coords, dense1D<unsigned> const& indices, dense2D<double> const& metrics,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, double default_size, double max_gradation, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, dense2D<double>& out_metrics, double& deviation) noexcept
{
    return check_and_mesh(coords, indices, metrics,
        rule_of(force_even, min_elements, max_elements, deviation_tolerance, min_size, default_size,
            max_gradation),
        out_indices, out_params, out_metrics, deviation);
}

} // namespace trelk::vornik1d

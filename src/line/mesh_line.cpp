#include <vornik1d/vornik1d.h>

#include <cmath>
#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/search.h"
#include "front_door.h"
#include "line/chord_length.h"
#include "line/line_mesher.h"
#include "placement/line.h"
#include "placement/line_mesh.h"
#include "placement/target_lists.h"
#include "rules.h"

namespace trelk::vornik1d {

namespace {

line_rule rule_of(bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size)
{
    element_rule const elements{
        .force_even = force_even, .min_elements = min_elements, .max_elements = max_elements};
    return {elements, line_tolerance(deviation_tolerance), min_size};
}

/// Meshes a chain and appends the mesh to the caller's lists. On a failure the lists and `coords` are as
/// before.
template <std::size_t N, class List>
int mesh_chain(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> params,
    List targets, line_rule const& rule, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    List& out_targets)
{
    using target_type = targets_in<List, N>;
    if (!detach_from(coords, params) || !detach_from(coords, targets)) return no_storage;

    std::size_t const base_columns = coords.cols();
    line_mesher<target_type> mesher(coords, true);
    line_view<target_type> const chain{.nodes = indices.data(),
        .params = params.data(),
        .targets = targets.data(),
        .target_ld = target_type::ld(targets),
        .count = indices.size()};
    int status = mesher.run(chain, rule);
    if (status == 0 && !publish(mesher.mesh(), out_indices, out_params, out_targets)) status = no_storage;
    if (status != 0) truncate(coords, base_columns);
    return status;
}

/// Makes the remaining checks in the documented order, and meshes. `targets_argument` is the position of the
/// targets.
template <class List>
int check_and_mesh(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& params,
    int targets_argument, List const& targets, line_rule const& rule, dense1D<unsigned>& out_indices,
    dense1D<double>& out_params, List& out_targets)
{
    std::size_t const n = indices.size();
    if (params.size() != n || !is_non_decreasing(params)) return bad_argument(3);
    if (!check_targets(targets, n, coords)) return bad_argument(targets_argument);
    if (rule.min_elements > rule.max_elements || rule.min_elements == 0)
        return bad_argument(targets_argument + 2);
    if (!can_be_appended_to(out_targets, coords)) return bad_argument(targets_argument + 7);
    if (!vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    return by_dimension(coords, [&](auto dim) {
        return mesh_chain<dim>(coords, indices, params, targets, rule, out_indices, out_params, out_targets);
    });
}

template <class List>
int mesh_by_params(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& params,
    List const& targets, line_rule const& rule, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    List& out_targets)
{
    out_params.clear();
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (indices.size() < 2) return bad_argument(2);
    return check_and_mesh(coords, indices, params, 4, targets, rule, out_indices, out_params, out_targets);
}

template <class List>
int mesh_by_chord_length(dense2D<double>& coords, dense1D<unsigned> const& indices, List const& targets,
    line_rule const& rule, dense1D<unsigned>& out_indices, dense1D<double>& out_params, List& out_targets)
{
    std::size_t const n = indices.size();
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (n < 2 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    dense1D<double> params;
    if (!params.resize(n)) return no_storage;
    double const length = by_dimension(
        coords, [&](auto dim) { return set_chord_lengths<dim>(coords, indices, params.data()); });
    if (length == 0 || std::isnan(length)) return bad_argument(2);

    out_params.clear();
    return check_and_mesh(coords, indices, params, 3, targets, rule, out_indices, out_params, out_targets);
}

} // namespace

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& params,
    dense1D<double> const& sizes, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense1D<double>& out_sizes) noexcept
{
    return mesh_by_params(coords, indices, params, sizes,
        rule_of(force_even, min_elements, max_elements, deviation_tolerance, min_size), out_indices,
        out_params, out_sizes);
}

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& params,
    dense2D<double> const& metrics, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense2D<double>& out_metrics) noexcept
{
    return mesh_by_params(coords, indices, params, metrics,
        rule_of(force_even, min_elements, max_elements, deviation_tolerance, min_size), out_indices,
        out_params, out_metrics);
}

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense1D<double>& out_sizes) noexcept
{
    return mesh_by_chord_length(coords, indices, sizes,
        rule_of(force_even, min_elements, max_elements, deviation_tolerance, min_size), out_indices,
        out_params, out_sizes);
}

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense2D<double> const& metrics,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense2D<double>& out_metrics) noexcept
{
    return mesh_by_chord_length(coords, indices, metrics,
        rule_of(force_even, min_elements, max_elements, deviation_tolerance, min_size), out_indices,
        out_params, out_metrics);
}

} // namespace trelk::vornik1d

#include <vornik1d/vornik1d.h>

#include <cmath>
#include <limits>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "front_door.h"
#include "line/mesh_span.h"
#include "line/refine_span.h"
#include "line/span_rule.h"
#include "placement/line.h"
#include "placement/size_targets.h"
#include "placement/tensor_targets.h"

namespace trelk::vornik1d {

namespace {

/// The largest double, of either sign, switches tolerances off, and so does a NaN.
double clean_tolerance(double deviation_tolerance)
{
    constexpr double off = std::numeric_limits<double>::max();
    bool const is_off = std::isnan(deviation_tolerance) || std::abs(deviation_tolerance) == off;
    return is_off ? 0 : deviation_tolerance;
}

/// Meshes a chain and appends the mesh to the caller's lists. On a failure these and `coords` are as before.
template <class Targets>
int mesh_chain(dense2D<double>& coords, line<Targets> const& chain, span_rule const& rule,
    dense1D<unsigned>& out_indices, dense1D<double>& out_params, typename Targets::list& out_targets)
{
    std::size_t const base_columns = coords.cols();
    line<Targets> mesh;
    bool is_done = mesh_span(coords, chain, rule, mesh);
    if (is_done && rule.deviation_tolerance > 0 && mesh.elements() < rule.max_elements)
        is_done = refine_span(coords, chain, rule, base_columns, mesh);
    if (is_done && publish(mesh, out_indices, out_params, out_targets)) return 0;

    truncate(coords, base_columns);
    return no_storage;
}

/// Sets `params` to the chord length from the first chain entry to each one; returns the last of them.
template <int N>
double chord_lengths(dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double>& params)
{
    double length = 0;
    for (std::size_t i = 1; i < indices.size(); ++i) {
        auto const d = edge_vector<N>(coords.col(indices[i - 1]), coords.col(indices[i]));
        length += norm(d);
        params[i] = length;
    }
    return length;
}

/// Checks what is the same for sizes and tensors before they are looked at, in the order of the contract.
int check_chain(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double> const& params)
{
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (indices.size() < 2) return bad_argument(2);
    if (params.size() != indices.size() || !is_non_decreasing(params)) return bad_argument(3);
    return 0;
}

/// Meshes by normalised chord length: `mesh(params)` is the call that takes parameters. Without them in the
/// argument list, codes of arguments behind them move up by one.
template <class Mesh>
int mesh_by_chord_length(dense2D<double> const& coords, dense1D<unsigned> const& indices, Mesh mesh)
{
    std::size_t const n = indices.size();
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (n < 2 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    dense1D<double> params;
    if (!params.resize(n, 0.0)) return no_storage;
    double const total =
        by_dimension(coords, [&](auto dim) { return chord_lengths<dim>(coords, indices, params); });
    if (total == 0 || std::isnan(total)) return bad_argument(2);
    double const r = 1 / total;
    if (r != 1)
        for (double& param : params) param *= r;
    params[n - 1] = 1;

    int const status = mesh(params);
    return status < -3 && status != no_storage ? status + 1 : status;
}

} // namespace

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& params,
    dense1D<double> const& sizes, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense1D<double>& out_sizes) noexcept
{
    out_params.clear();
    std::size_t const n = indices.size();
    if (int const status = check_chain(coords, indices, params); status != 0) return status;
    if (sizes.size() < n || !vornik::are_valid_metrics(sizes.sub_vector(0, n))) return bad_argument(4);
    if (min_elements > max_elements || min_elements == 0) return bad_argument(6);
    if (!vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    span_rule const rule{
        {force_even, min_elements, max_elements}, clean_tolerance(deviation_tolerance), min_size};
    return by_dimension(coords, [&](auto dim) {
        line<size_targets<dim>> const chain{indices, params, sizes.sub_vector(0, n)};
        return mesh_chain(coords, chain, rule, out_indices, out_params, out_sizes);
    });
}

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& params,
    dense2D<double> const& metrics, bool force_even, unsigned min_elements, unsigned max_elements,
    double deviation_tolerance, double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense2D<double>& out_metrics) noexcept
{
    out_params.clear();
    std::size_t const n = indices.size();
    std::size_t const rows = metric_rows(coords);
    if (int const status = check_chain(coords, indices, params); status != 0) return status;
    if (metrics.cols() < n) return bad_argument(4);
    if (!vornik::are_valid_metrics(metrics.sub_matrix(0, 0, metrics.rows(), n))) return bad_argument(4);
    if (metrics.rows() != rows) return bad_argument(4);
    if (min_elements > max_elements || min_elements == 0) return bad_argument(6);
    if (!out_metrics.empty() && out_metrics.rows() != rows) return bad_argument(11);
    if (!vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    span_rule const rule{
        {force_even, min_elements, max_elements}, clean_tolerance(deviation_tolerance), min_size};
    return by_dimension(coords, [&](auto dim) {
        line<tensor_targets<dim>> const chain{indices, params, metrics.sub_matrix(0, 0, rows, n)};
        return mesh_chain(coords, chain, rule, out_indices, out_params, out_metrics);
    });
}

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense1D<double>& out_sizes) noexcept
{
    return mesh_by_chord_length(coords, indices, [&](dense1D<double> const& params) {
        return mesh_line(coords, indices, params, sizes, force_even, min_elements, max_elements,
            deviation_tolerance, min_size, out_indices, out_params, out_sizes);
    });
}

int mesh_line(dense2D<double>& coords, dense1D<unsigned> const& indices, dense2D<double> const& metrics,
    bool force_even, unsigned min_elements, unsigned max_elements, double deviation_tolerance,
    double min_size, dense1D<unsigned>& out_indices, dense1D<double>& out_params,
    dense2D<double>& out_metrics) noexcept
{
    return mesh_by_chord_length(coords, indices, [&](dense1D<double> const& params) {
        return mesh_line(coords, indices, params, metrics, force_even, min_elements, max_elements,
            deviation_tolerance, min_size, out_indices, out_params, out_metrics);
    });
}

} // namespace trelk::vornik1d

#include <vornik1d/vornik1d.h>

#include <cmath>
#include <initializer_list>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "front_door.h"
#include "placement/line.h"

namespace trelk::vornik1d {

namespace {

dense1D<double> part_of(dense1D<double> const& sizes, std::size_t first, std::size_t count)
{
    return sizes.sub_vector(first, count);
}

dense2D<double> part_of(dense2D<double> const& metrics, std::size_t first, std::size_t count)
{
    return metrics.sub_matrix(0, first, metrics.rows(), count);
}

/// Meshes segment after segment by the targets at its ends, and takes all back on a failure.
template <class Targets>
int mesh_segments(dense2D<double>& coords, dense1D<unsigned> const& indices, Targets const& targets,
    bool force_even, dense1D<unsigned>& out_indices)
{
    constexpr unsigned no_limit = unlimited;
    constexpr double no_tolerance = 1.7976931348623157e308;
    std::size_t const base_columns = coords.cols();
    std::size_t const n = indices.size();

    dense1D<unsigned> mesh;
    dense1D<double> ends;
    dense1D<double> mesh_params;
    int status = ends.push_back(0) && ends.push_back(1) ? 0 : no_storage;
    for (std::size_t i = 0; i + 1 < n && status == 0; ++i) {
        Targets mesh_targets;
        status = mesh_line(coords, indices.sub_vector(i, 2), ends, part_of(targets, i, 2), force_even, 1,
            no_limit, no_tolerance, 0.0, mesh, mesh_params, mesh_targets);
        // The end node of a segment is the first one of the next.
        if (status == 0) truncate(mesh, mesh.size() - 1);
    }
    if (status == 0 && !(mesh.push_back(indices[n - 1]) && append_values(mesh, out_indices)))
        status = no_storage;
    if (status != 0) truncate(coords, base_columns);
    return status;
}

/// A list of a few values; empty where there is no storage.
template <class T>
dense1D<T> list_of(std::initializer_list<T> values)
{
    dense1D<T> result;
    if (!result.reserve(values.size())) return result;
    for (T const value : values) result.push_back(value);
    return result;
}

double distance(dense2D<double> const& coords, unsigned a, unsigned b)
{
    double square = 0;
    for (std::size_t r = 0; r < coords.rows(); ++r)
        square += (coords(r, b) - coords(r, a)) * (coords(r, b) - coords(r, a));
    return std::sqrt(square);
}

} // namespace

int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices, dense1D<double> const& sizes,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    std::size_t const n = indices.size();
    if (n == 0) return 0;
    if (n == 1 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (sizes.size() < n || !vornik::are_valid_metrics(sizes.sub_vector(0, n))) return bad_argument(3);

    return mesh_segments(coords, indices, sizes, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices, dense2D<double> const& metrics,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    std::size_t const n = indices.size();
    if (n == 0) return 0;
    if (n == 1 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (metrics.cols() < n || !vornik::are_valid_metrics(part_of(metrics, 0, n))) return bad_argument(3);
    if (is_planar_or_spatial(coords) && metrics.rows() != metric_rows(coords)) return bad_argument(3);

    return mesh_segments(coords, indices, metrics, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, dense1D<unsigned> const& indices, unsigned element_count,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    if (element_count == 0) return 0;
    if (indices.size() < 2 || !vornik::check_IDs(indices, coords.cols())) return bad_argument(2);

    double length = 0;
    for (std::size_t i = 1; i < indices.size(); ++i) length += distance(coords, indices[i - 1], indices[i]);
    dense1D<double> sizes;
    if (!sizes.resize(indices.size(), length / element_count)) return no_storage;
    return mesh_straight(coords, indices, sizes, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, double size_a, double size_b,
    bool force_even, dense1D<unsigned>& out_indices) noexcept
{
    if (node_a >= coords.cols()) return bad_argument(2);
    if (node_b >= coords.cols()) return bad_argument(3);
    if (!(size_a > 0)) return bad_argument(4);
    if (!(size_b > 0)) return bad_argument(5);

    auto const indices = list_of({node_a, node_b});
    auto const sizes = list_of({size_a, size_b});
    if (indices.empty() || sizes.empty()) return no_storage;
    return mesh_straight(coords, indices, sizes, force_even, out_indices);
}

int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, unsigned element_count,
    dense1D<unsigned>& out_indices) noexcept
{
    if (element_count == 0) return 0;
    if (node_a >= coords.cols()) return bad_argument(2);
    if (node_b >= coords.cols()) return bad_argument(3);

    double const size = distance(coords, node_a, node_b) * (1.0 / element_count);
    return mesh_straight(coords, node_a, node_b, size, size, false, out_indices);
}

int mesh_straight(dense2D<double>& coords, unsigned node_a, unsigned node_b, unsigned node_c,
    unsigned element_count, dense1D<unsigned>& out_indices) noexcept
{
    if (element_count == 0) return 0;
    if (node_a >= coords.cols()) return bad_argument(2);
    if (node_b >= coords.cols()) return bad_argument(3);
    if (node_c >= coords.cols()) return bad_argument(4);

    auto const indices = list_of({node_a, node_b, node_c});
    if (indices.empty()) return no_storage;
    return mesh_straight(coords, indices, element_count, false, out_indices);
}

} // namespace trelk::vornik1d

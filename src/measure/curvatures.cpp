#include <vornik1d/vornik1d.h>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "front_door.h"

namespace trelk::vornik1d {

namespace {

template <int N>
struct segment
{
    double length;
    vector_fixed<double, N> unit; // its direction; zero for a segment of length 0
};

template <int N>
segment<N> segment_between(double const* a, double const* b)
{
    auto const d = edge_vector<N>(a, b);
    segment<N> s{norm(d), {}};
    if (s.length > 0)
        for (std::size_t r = 0; r < N; ++r) s.unit[r] = d[r] / s.length;
    return s;
}

/// Change of the unit tangent over the mean length of two adjacent segments; 0 beside a segment of length 0.
template <int N>
double turn(segment<N> const& before, segment<N> const& after)
{
    if (!(before.length > 0 && after.length > 0)) return 0;
    auto const change = edge_vector<N>(after.unit.values, before.unit.values);
    return 2 * norm(change) / (after.length + before.length);
}

/// `result` has one value per chain entry; the chain has at least 3.
template <int N>
void curvatures_of(dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double>& result)
{
    std::size_t const n = indices.size();
    auto before = segment_between<N>(coords.col(indices[0]), coords.col(indices[1]));
    for (std::size_t j = 1; j + 1 < n; ++j) {
        auto const after = segment_between<N>(coords.col(indices[j]), coords.col(indices[j + 1]));
        result[j] = turn(before, after);
        before = after;
    }
    result[0] = result[1];
    result[n - 1] = result[n - 2];
}

} // namespace

int curvatures(
    dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<double>& result) noexcept
{
    result.clear();
    if (indices.empty()) return 0;
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (!vornik::check_IDs(indices, coords.cols())) return bad_argument(2);
    if (!result.resize(indices.size(), 0.0)) return no_storage;
    if (indices.size() < 3) return 0;

    by_dimension(coords, [&](auto dim) { curvatures_of<dim>(coords, indices, result); });
    return 0;
}

} // namespace trelk::vornik1d

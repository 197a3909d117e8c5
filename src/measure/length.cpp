#include <vornik1d/vornik1d.h>

#include <cstddef>

#include <vornik/toolkit.h>

#include "arrays/append.h"
#include "arrays/vectors.h"
#include "front_door.h"

namespace trelk::vornik1d {

namespace {

template <std::size_t N>
double distance(dense2D<double> const& coords, unsigned a, unsigned b)
{
    return norm(edge_vector<N>(coords.col(a), coords.col(b)));
}

} // namespace

int length(dense2D<double> const& coords, dense1D<unsigned> const& indices, double& result) noexcept
{
    result = 0;
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (indices.size() < 2) return bad_argument(2);

    std::size_t const nodes = coords.cols();
    if (indices[0] >= nodes) return bad_argument(2);
    double sum = 0;
    int const status = by_dimension(coords, [&](auto dim) {
        for (std::size_t k = 1; k < indices.size(); ++k) {
            if (indices[k] >= nodes) return bad_argument(2);
            sum += distance<dim>(coords, indices[k - 1], indices[k]);
        }
        return 0;
    });
    result = sum;
    return status;
}

int length(dense2D<double> const& coords, dense2D<unsigned> const& connect, double& result) noexcept
{
    result = 0;
    if (!is_planar_or_spatial(coords)) return bad_argument(1);
    if (!vornik::check_IDs(connect, vornik::element_type::edge, coords.cols())) return bad_argument(2);

    std::size_t const elements = filled_columns(connect);
    double sum = 0;
    by_dimension(coords, [&](auto dim) {
        for (std::size_t e = 0; e < elements; ++e) sum += distance<dim>(coords, connect(0, e), connect(1, e));
    });
    result = sum;
    return 0;
}

} // namespace trelk::vornik1d

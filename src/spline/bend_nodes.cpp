#include "spline/bend_nodes.h"

#include <algorithm>

#include "arrays/vectors.h"

namespace trelk::vornik1d {

template <std::size_t N>
bool bend_nodes(dense2D<double> const& coords, dense1D<unsigned> const& indices, dense1D<unsigned>& bends,
    dense1D<double>& bend_params)
{
    // On a squared area over a squared length: what counts is how far, in length units of the model, one
    // chord strays from the direction of the other.
    constexpr double straight_limit = 1e-24;

    bends.clear();
    bend_params.clear();
    std::size_t const n = indices.size();
    if (!bends.reserve(n) || !bend_params.reserve(n)) return false;
    auto const keep = [&](unsigned node, double param) {
        bends.push_back(node);
        bend_params.push_back(param);
    };

    keep(indices[0], 0);
    keep(indices[1], 0);
    double length = 0;
    auto before = edge_vector<N>(coords.col(indices[0]), coords.col(indices[1]));
    for (std::size_t j = 1; j + 2 < n; ++j) {
        auto const behind = edge_vector<N>(coords.col(indices[j]), coords.col(indices[j + 1]));
        auto const area = cross(before, behind);
        double const longer = std::max(dot(behind, behind), dot(before, before));
        if (j > 1 && dot(area, area) > straight_limit * longer) keep(indices[j], length);
        length += norm(behind);
        before = behind;
    }
    if (length > 0)
        for (double& param : bend_params) param *= 1 / length;
    keep(indices[n - 2], 1);
    keep(indices[n - 1], 1);
    return true;
}

template bool bend_nodes<2>(
    dense2D<double> const&, dense1D<unsigned> const&, dense1D<unsigned>&, dense1D<double>&);
template bool bend_nodes<3>(
    dense2D<double> const&, dense1D<unsigned> const&, dense1D<unsigned>&, dense1D<double>&);

} // namespace trelk::vornik1d

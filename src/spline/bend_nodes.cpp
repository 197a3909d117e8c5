#include "spline/bend_nodes.h"

#include <algorithm>
#include <cmath>

namespace trelk::vornik1d {

template <std::size_t N>
bool find_bend_nodes(guided_chain<N> const& chain, dense1D<unsigned>& bends, dense1D<double>& bend_params)
{
    // On a squared area over a squared length: the distance, in length units of the model, of the end of the
    // shorter chord from the line along the longer one.
    constexpr double straight_limit = 1e-24;

    bends.clear();
    bend_params.clear();
    std::size_t const n = chain.count;
    if (!bends.reserve(n, 2) || !bend_params.reserve(n, 2)) return false;
    unsigned* const nodes = bends.data();
    double* const params = bend_params.data();
    std::size_t kept = 0;
    auto const keep = [&](unsigned node, double param) {
        nodes[kept] = node;
        params[kept++] = param;
    };

    keep(chain.nodes[0], 0);
    keep(chain.nodes[1], 0);
    double length = 0;
    vector<N> before{};
    double square_before = 0;
    for (std::size_t j = 1; j + 2 < n; ++j) {
        auto const after = edge_vector<N>(chain.point(j), chain.point(j + 1));
        double const square = dot(after, after);
        auto const area = cross(before, after); // 0 for the first chord
        double const longer = std::max(square, square_before);
        if (dot(area, area) > straight_limit * longer) keep(chain.nodes[j], length);
        length += std::sqrt(square);
        before = after;
        square_before = square;
    }
    if (length > 0)
        for (std::size_t k = 0; k < kept; ++k) params[k] *= 1 / length;
    keep(chain.nodes[n - 2], 1);
    keep(chain.nodes[n - 1], 1);
    return bends.resize(kept) && bend_params.resize(kept); // there is room
}

template bool find_bend_nodes(guided_chain<2> const&, dense1D<unsigned>&, dense1D<double>&);
template bool find_bend_nodes(guided_chain<3> const&, dense1D<unsigned>&, dense1D<double>&);

} // namespace trelk::vornik1d

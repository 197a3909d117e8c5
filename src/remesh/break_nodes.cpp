#include "remesh/break_nodes.h"

#include <algorithm>
#include <cmath>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"

namespace trelk::vornik1d {

namespace {

/// The square of the smallest cosine that counts as smooth. The cap corresponds to about 1e-6 radians;
/// because of it straight lines are smooth in spite of rounding.
double smooth_limit(double max_angle)
{
    constexpr double degree = 0.017453292519943295;
    constexpr double cap = 0.999999999999;
    double const cosine = std::cos((std::isinf(max_angle) ? 90 : max_angle) * degree);
    return std::min(cosine * cosine, cap);
}

} // namespace

template <std::size_t N>
void find_break_nodes(dense2D<double> const& coords, dense2D<unsigned> const& connect,
    dense2D<unsigned> const& neighbors, double max_angle, double min_size, hbuckets_set& break_nodes)
{
    double const limit = smooth_limit(max_angle);
    double const least_square = min_size * min_size;
    for (std::size_t e = 0; e < connect.cols(); ++e) {
        unsigned const a = connect(0, e);
        unsigned const b = connect(1, e);
        if (neighbors(1, e) == vornik::none) break_nodes.insert(a);
        unsigned const next = neighbors(0, e);
        if (next == vornik::none) {
            break_nodes.insert(b);
            continue;
        }

        unsigned const c = connect(0, next);
        unsigned const d = connect(1, next);
        if (d == b) { // both end at b
            break_nodes.insert(b);
            if (c == a) break_nodes.insert(a); // and both start at a
            continue;
        }

        auto const u = edge_vector<N>(coords.col(a), coords.col(b));
        auto const v = edge_vector<N>(coords.col(c), coords.col(d));
        double const u_square = dot(u, u);
        double const v_square = dot(v, v);
        double const product = dot(u, v);
        bool const have_directions = u_square > least_square && v_square > least_square;
        bool const is_smooth = product > 0 && product * product >= (u_square * limit) * v_square;
        if (have_directions && !is_smooth) break_nodes.insert(b);
    }
}

template void find_break_nodes<2>(dense2D<double> const&, dense2D<unsigned> const&, dense2D<unsigned> const&,
    double, double, hbuckets_set&);
template void find_break_nodes<3>(dense2D<double> const&, dense2D<unsigned> const&, dense2D<unsigned> const&,
    double, double, hbuckets_set&);

} // namespace trelk::vornik1d

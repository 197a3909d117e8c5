#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include <trelk/dense1D.h>
#include <trelk/dense2D.h>

#include "arrays/search.h"
#include "arrays/vectors.h"

// How far the interior nodes of a chain lie from a mesh of it.

namespace trelk::vornik1d {

struct deviation_scan
{
    double worst = 0;
    double mean = 0;

    /// The tolerance and one rounding unit at the size of the coordinates.
    double threshold = 0;

    /// The chain entry with the largest weighted deviation; the last one if none has any.
    std::size_t split = 0;
};

/// Distance of p from the infinite line through a and b; 0 where a and b are one point.
template <int N>
double distance_from_line(double const* p, double const* a, double const* b)
{
    auto const u = edge_vector<N>(a, b);
    double const area = norm(cross(u, edge_vector<N>(a, p))); // of a parallelogram
    double const length = norm(u);
    return length > 0 ? area / length : area;
}

/// Measures the distance of each interior chain node from the line through the mesh element that covers its
/// parameter value: chain and mesh are paired by parameter, not by nearest distance.
template <int N>
deviation_scan scan_deviation(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense1D<double> const& params, dense1D<unsigned> const& mesh, dense1D<double> const& mesh_params,
    double deviation_tolerance)
{
    std::size_t const n = chain.size();
    double const first_param = params[0];
    double const r = 1 / (params[n - 1] - first_param);
    double const* const first = mesh_params.begin();
    double const* const end = mesh_params.end();
    double const* cursor = first;

    deviation_scan scan;
    scan.split = n - 1;
    double sum = 0;
    double best_weighted = 0;
    double magnitude = 0;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        double const* const point = coords.col(chain[i]);
        double const param = params[i];

        // NaN or overflow can leave no mesh parameter at or above this one; the last element is taken then.
        cursor = std::min(first_not_below(cursor, end, param), end - 1);
        auto const k = static_cast<std::size_t>(cursor - first);
        unsigned const b = mesh[k];
        unsigned const a = k > 0 ? mesh[k - 1] : b;
        double const distance = distance_from_line<N>(point, coords.col(a), coords.col(b));

        scan.worst = std::max(scan.worst, distance);
        sum += distance;
        for (std::size_t j = 0; j < N; ++j) magnitude = std::max(magnitude, std::abs(point[j]));

        // 1 at the ends of the parameter range, 2 in the middle: favours a split near the middle.
        double const t = (param - first_param) * r;
        double const weighted = ((1 - t) * t * 4 + 1) * distance;
        if (weighted > best_weighted) best_weighted = weighted, scan.split = i;
    }
    if (n > 2) scan.mean = sum / static_cast<double>(n - 2);
    scan.threshold = magnitude * std::numeric_limits<double>::epsilon() + deviation_tolerance;
    return scan;
}

} // namespace trelk::vornik1d

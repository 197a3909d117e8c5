#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "arrays/search.h"
#include "arrays/vectors.h"
#include "placement/line.h"

// The deviation of a mesh from its chain: the distances of the chain's interior nodes from the mesh.

namespace trelk::vornik1d {

struct deviation_scan
{
    double worst = 0;
    double mean = 0;

    /// The tolerance plus one rounding unit of the largest coordinate.
    double threshold = 0;

    /// The chain entry with the largest weighted deviation; the last entry if all are 0.
    std::size_t split = 0;
};

/// The mesh element that covers a parameter value: it ends at the first mesh node whose parameter is not
/// below the value. The values are non-decreasing.
template <class Targets>
class covering_element
{
public:
    explicit covering_element(placed_line<Targets> const& mesh)
        : mesh_(mesh), cursor_(mesh.params), end_(mesh.params + mesh.last() + 1),
          is_sorted_(is_non_decreasing(cursor_, end_))
    {
        set_edge(0);
    }

    void move_to(double param)
    {
        // Mesh parameters can decrease by rounding, or be NaN. Binary search then defines the element.
        double const* const found =
            is_sorted_ ? advance_to(cursor_, end_, param) : first_not_below(cursor_, end_, param);
        // Because of NaN or overflow there may be none; then it is the last element.
        double const* const next = std::min(found, end_ - 1);
        if (next == cursor_) return;
        cursor_ = next;
        set_edge(static_cast<std::size_t>(cursor_ - mesh_.params));
    }

    /// Distance of `point` from the infinite line through the element; 0 if the element has length 0.
    double distance(double const* point) const
    {
        double const area = norm(cross(edge_, vector_at<N>(point) - start_)); // of a parallelogram
        return length_ > 0 ? area / length_ : area;
    }

private:
    static constexpr std::size_t N = Targets::dimension;

    void set_edge(std::size_t end)
    {
        start_ = vector_at<N>(mesh_.point(end > 0 ? end - 1 : 0));
        edge_ = vector_at<N>(mesh_.point(end)) - start_;
        length_ = norm(edge_);
    }

    placed_line<Targets> const& mesh_;
    double const* cursor_;
    double const* end_;
    bool is_sorted_;
    vector<N> start_;
    vector<N> edge_;
    double length_;
};

/// Measures the distance of each interior chain node from the line through the mesh element that covers its
/// parameter. The element is found by parameter, not by the nearest distance.
template <class Targets>
deviation_scan scan_deviation(
    line_view<Targets> const& chain, placed_line<Targets> const& mesh, double deviation_tolerance)
{
    std::size_t const n = chain.count;
    deviation_scan scan;
    scan.split = n - 1;
    scan.threshold = deviation_tolerance;
    if (n == 2) return scan;

    double const first_param = chain.params[0];
    double const r = 1 / (chain.params[n - 1] - first_param);
    covering_element<Targets> element(mesh);
    double sum = 0;
    double best_weighted = 0;
    double magnitude = 0;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        double const* const point = chain.point(i);
        double const param = chain.params[i];
        element.move_to(param);
        double const distance = element.distance(point);

        scan.worst = std::max(scan.worst, distance);
        sum += distance;
        for (std::size_t j = 0; j < Targets::dimension; ++j)
            magnitude = std::max(magnitude, std::abs(point[j]));

        // The weight is 1 at the ends of the parameter range and 2 in the middle, to favour a split near the
        // middle.
        double const t = (param - first_param) * r;
        double const weighted = ((1 - t) * t * 4 + 1) * distance;
        if (weighted > best_weighted) best_weighted = weighted, scan.split = i;
    }
    scan.mean = sum / static_cast<double>(n - 2);
    scan.threshold = magnitude * std::numeric_limits<double>::epsilon() + deviation_tolerance;
    return scan;
}

} // namespace trelk::vornik1d

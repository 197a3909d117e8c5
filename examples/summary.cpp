#include "summary.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// The length of an element that the targets at its ends measure as l0 and l1: the integral of 1 / h along
/// it, with h, the size in its direction, linear between the ends.
double metric_length(double l0, double l1)
{
    if (l0 == l1) return l0;
    double const growth = (l0 - l1) / l1; // of h
    return l0 * (std::log1p(growth) / growth);
}

} // namespace

double distance_to_segment(double const* p, double const* a, double const* b, std::size_t rows)
{
    double squared_length = 0.0;
    double along = 0.0;
    for (std::size_t d = 0; d < rows; ++d) {
        squared_length += (b[d] - a[d]) * (b[d] - a[d]);
        along += (p[d] - a[d]) * (b[d] - a[d]);
    }
    double const t = squared_length > 0.0 ? std::clamp(along / squared_length, 0.0, 1.0) : 0.0;
    double squared_distance = 0.0;
    for (std::size_t d = 0; d < rows; ++d) {
        double const difference = p[d] - (a[d] + t * (b[d] - a[d]));
        squared_distance += difference * difference;
    }
    return std::sqrt(squared_distance);
}

double distance_to_line(double const* p, line const& chain, line_mesh const& mesh)
{
    auto const& coords = mesh.coords;
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < chain.nodes.size(); ++i) {
        nearest = std::min(nearest, distance_to_segment(p, coords.col(chain.nodes[i - 1]),
                                        coords.col(chain.nodes[i]), coords.rows()));
    }
    return nearest;
}

summary summarize(line_mesh const& mesh, line_mesh const& original)
{
    summary result;
    result.shortest = std::numeric_limits<double>::infinity();
    double total = 0.0;

    for (std::size_t l = 0; l < mesh.lines.size(); ++l) {
        line const& chain = mesh.lines[l];
        result.elements += chain.nodes.size() - 1;
        result.nodes += chain.nodes.size() - (chain.closed() ? 1 : 0);

        for (std::size_t i = 1; i < chain.nodes.size(); ++i) {
            point const a = mesh.node(chain.nodes[i - 1]);
            point const b = mesh.node(chain.nodes[i]);
            double const length = metric_length(
                metric_distance(chain.target(i - 1), a, b), metric_distance(chain.target(i), a, b));
            result.shortest = std::min(result.shortest, length);
            result.longest = std::max(result.longest, length);
            total += length;
        }
        for (unsigned const node : original.lines[l].nodes)
            result.deviation =
                std::max(result.deviation, distance_to_line(original.coords.col(node), chain, mesh));
    }
    result.lines = mesh.lines.size();
    result.mean = total / static_cast<double>(result.elements);
    return result;
}

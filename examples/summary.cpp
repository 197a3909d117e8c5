#include "summary.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// The integral of 1 / h along the element, with h linear between the sizes at its ends.
double metric_length(double length, double h0, double h1)
{
    double const growth = (h1 - h0) / h0;
    return length / h0 * (growth == 0.0 ? 1.0 : std::log1p(growth) / growth);
}

double distance(point const& a, point const& b) { return std::hypot(b.x - a.x, b.y - a.y); }

double distance_to_element(point const& p, point const& a, point const& b)
{
    double const ux = b.x - a.x;
    double const uy = b.y - a.y;
    double const squared_length = ux * ux + uy * uy;
    if (squared_length == 0.0) return distance(p, a);
    double const t = ((p.x - a.x) * ux + (p.y - a.y) * uy) / squared_length;
    if (t <= 0.0) return distance(p, a);
    if (t >= 1.0) return distance(p, b);
    return distance(p, {a.x + t * ux, a.y + t * uy});
}

double distance_to_line(point const& p, line const& chain, line_mesh const& mesh)
{
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < chain.nodes.size(); ++i) {
        nearest = std::min(
            nearest, distance_to_element(p, mesh.node(chain.nodes[i - 1]), mesh.node(chain.nodes[i])));
    }
    return nearest;
}

} // namespace

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
            double const length =
                metric_length(distance(mesh.node(chain.nodes[i - 1]), mesh.node(chain.nodes[i])),
                    chain.sizes[i - 1], chain.sizes[i]);
            result.shortest = std::min(result.shortest, length);
            result.longest = std::max(result.longest, length);
            total += length;
        }
        for (unsigned const node : original.lines[l].nodes)
            result.deviation = std::max(result.deviation, distance_to_line(original.node(node), chain, mesh));
    }
    result.lines = mesh.lines.size();
    result.mean = total / static_cast<double>(result.elements);
    return result;
}

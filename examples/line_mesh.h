#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include <vornik1d/vornik1d.h>

struct point
{
    double x = 0.0;
    double y = 0.0;
};

inline double distance(point const& a, point const& b) { return std::hypot(b.x - a.x, b.y - a.y); }

/// A metric tensor in the plane, packed as the library packs it: m00, m01, m11.
using tensor = std::array<double, 3>;

/// The length from `a` to `b` as the tensor measures it.
inline double metric_distance(tensor const& m, point const& a, point const& b)
{
    double const dx = b.x - a.x;
    double const dy = b.y - a.y;
    return std::sqrt(m[0] * dx * dx + 2.0 * m[1] * dx * dy + m[2] * dy * dy);
}

/// A chain of node numbers, with a target at each node: a size in `sizes`, or a tensor in a column of
/// `metrics`. The other list is empty.
struct line
{
    trelk::dense1D<unsigned> nodes;
    trelk::dense1D<double> sizes;
    trelk::dense2D<double> metrics;
    /// The names of the two sides of the line, if its file has them.
    std::vector<std::string> between = {};

    /// Whether the line ends with its first node.
    bool closed() const { return nodes[0] == nodes[nodes.size() - 1]; }

    /// The target at entry i. A size asks for the same length in all directions.
    tensor target(std::size_t i) const
    {
        if (!metrics.empty()) return {metrics(0, i), metrics(1, i), metrics(2, i)};
        double const m = 1.0 / (sizes[i] * sizes[i]);
        return {m, 0.0, m};
    }
};

struct line_mesh
{
    trelk::dense2D<double> coords;
    std::vector<line> lines;

    point node(unsigned index) const { return {coords(0, index), coords(1, index)}; }
};

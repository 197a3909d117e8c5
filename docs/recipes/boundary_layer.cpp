// Draws lines away from a wall. The first element is 0.005 long, in the unit of the coordinates. Each further
// element is 1.25 times as long as the one before.

#include <cmath>
#include <cstdio>

#include <vornik1d/vornik1d.h>

int main()
{
    using namespace trelk;

    // The wall is flat, with a bump. It runs from left to right, because normals point to the left of its
    // direction.
    constexpr unsigned n = 81;
    dense2D<double> coords(2, n);
    dense1D<unsigned> chain(n);
    if (coords.cols() != n || chain.size() != n) return 1; // no memory
    for (unsigned k = 0; k < n; ++k) {
        double const x = 0.025 * k;
        coords(0, k) = x;
        coords(1, k) = 0.12 * std::exp(-std::pow((x - 1.0) / 0.3, 2.0));
        chain[k] = k;
    }
    dense1D<double> const wall_sizes(n, 0.08);
    vornik1d::line_options options;
    options.deviation_tolerance = 0.002;
    options.max_elements = 1000;
    dense1D<unsigned> wall;
    if (vornik1d::mesh_line(coords, chain, wall_sizes, wall, options) != 0) return 1;

    // If sizes change linearly with slope ln(ratio), elements grow by that ratio.
    double const first = 0.005, ratio = 1.25, thickness = 0.4;
    double const slope = std::log(ratio);
    double const size_at_wall = first * slope / (ratio - 1.0);
    double const size_at_end = size_at_wall + slope * thickness;

    dense2D<unsigned> wall_connect;
    dense2D<double> normals;
    if (vornik1d::indices_to_connectE2(wall, wall_connect) != 0) return 1;
    if (vornik1d::normals(coords, wall_connect, /* exponent */ 0.0, /* unit_length */ true, normals) != 0)
        return 1;
    for (unsigned const node : wall) {
        vector_fixed<double, 2> const path = {thickness * normals(0, node), thickness * normals(1, node)};
        dense1D<unsigned> line;
        if (vornik1d::extrude_translate(coords, node, path, {size_at_wall, size_at_end}, line) != 0) return 1;

        std::printf("# line from the wall\n");
        for (unsigned const p : line) std::printf("%.9g %.9g\n", coords(0, p), coords(1, p));
    }
    std::printf("# wall\n");
    for (unsigned const p : wall) std::printf("%.9g %.9g\n", coords(0, p), coords(1, p));
}

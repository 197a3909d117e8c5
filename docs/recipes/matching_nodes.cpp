// Remeshes the borders of three regions that meet at a point, each border once for both sides. Then takes the
// boundary of each region from the mesh.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

#include <vornik1d/vornik1d.h>

using namespace trelk;

struct network
{
    dense2D<double> coords;
    dense2D<unsigned> connect;
    dense1D<unsigned> colors;

    /// Adds a border of 40 elements between two nodes, straight or with waves, with a colour.
    bool add(unsigned from, unsigned to, double waves, unsigned color)
    {
        std::size_t const base = connect.cols();
        dense1D<unsigned> nodes;
        if (vornik1d::mesh_straight(coords, from, to, 40, nodes) != 0) return false;
        double const dx = coords(0, to) - coords(0, from), dy = coords(1, to) - coords(1, from);
        for (std::size_t k = 1; k + 1 < nodes.size(); ++k) {
            double const t = static_cast<double>(k) / 40.0;
            double const shift = waves * 4.0 * t * (1.0 - t) * std::sin(12.0 * t);
            coords(0, nodes[k]) -= shift * dy;
            coords(1, nodes[k]) += shift * dx;
        }
        return vornik1d::indices_to_connectE2(nodes, connect) == 0 &&
               colors.push_back_n(color, connect.cols() - base);
    }
};

int main()
{
    // Node 0 is the triple point. Nodes 1 to 3 are the ends of borders on the outline, 4 and 5 its other
    // corners.
    network mesh{{{0.5, 0.45}, {0.5, 0}, {0, 1}, {1, 1}, {0, 0}, {1, 0}}, {}, {}};
    bool const is_complete = mesh.add(0, 1, 0.05, 0) && mesh.add(0, 2, 0.05, 1) && mesh.add(0, 3, 0.05, 2) &&
                             mesh.add(1, 4, 0.0, 3) && mesh.add(4, 2, 0.0, 3) && mesh.add(2, 3, 0.0, 4) &&
                             mesh.add(3, 5, 0.0, 5) && mesh.add(5, 1, 0.0, 5);
    if (!is_complete) return 1;

    vornik1d::remesh_options options;
    options.deviation_tolerance = 0.01;
    options.max_angle = 30.0;
    options.max_gradation = 0.3;
    options.min_size = 0.005;
    options.max_elements = 1000;
    options.sizes = {0.03}; // of node 0, the triple point; other nodes have the default
    options.colors = &mesh.colors;
    if (vornik1d::remesh_lines(mesh.coords, mesh.connect, /* default_size */ 0.15, options) != 0) return 1;

    // Elements keep the colours of their borders. So the boundary of a region is the elements with its
    // colours.
    unsigned const colors_of_regions[3][3] = {{0, 1, 3}, {1, 2, 4}, {2, 0, 5}};
    for (int r = 0; r < 3; ++r) {
        auto const& own = colors_of_regions[r];
        for (std::size_t e = 0; e < mesh.connect.cols(); ++e) {
            if (std::find(std::begin(own), std::end(own), mesh.colors[e]) == std::end(own)) continue;
            std::printf("# region %d\n", r);
            for (unsigned const end : {mesh.connect(0, e), mesh.connect(1, e)})
                std::printf("%u %g %g\n", end, mesh.coords(0, end), mesh.coords(1, end));
        }
    }
}

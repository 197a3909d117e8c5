// Cuts a line into 40 elements that are equally long along the line.

#include <cmath>
#include <cstdio>

#include <vornik1d/vornik1d.h>

int main()
{
    using namespace trelk;

    // The line, here a spiral.
    constexpr unsigned n = 200;
    dense2D<double> coords(2, n);
    dense1D<unsigned> chain(n);
    if (coords.cols() != n || chain.size() != n) return 1; // no memory
    std::printf("# line\n");
    for (unsigned k = 0; k < n; ++k) {
        double const angle = 0.06 * k;
        coords(0, k) = angle * std::cos(angle);
        coords(1, k) = angle * std::sin(angle);
        chain[k] = k;
        std::printf("%g %g\n", coords(0, k), coords(1, k));
    }

    constexpr unsigned count = 40;
    double length = 0.0;
    if (vornik1d::length(coords, chain, length) != 0) return 1;
    dense1D<double> const sizes(n, length / count);
    vornik1d::line_options options;
    options.min_elements = options.max_elements = count;
    dense1D<unsigned> mesh;
    if (vornik1d::mesh_line(coords, chain, sizes, mesh, options) != 0) return 1;

    std::printf("\n# mesh\n");
    for (unsigned const node : mesh) std::printf("%g %g\n", coords(0, node), coords(1, node));
}

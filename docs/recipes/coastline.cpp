// Meshes the coast of an island, with short elements near a harbour. The mesh stays within a tolerance of the
// coast.

#include <cmath>
#include <cstdio>

#include <vornik1d/vornik1d.h>

int main()
{
    using namespace trelk;

    // The coast is a closed line with bends of all sizes. Put yours here, projected to the plane.
    constexpr unsigned n = 1500;
    dense2D<double> coords(2, n);
    dense1D<unsigned> chain(n + 1);
    if (coords.cols() != n || chain.size() != n + 1) return 1; // no memory
    std::printf("# coast\n");
    for (unsigned k = 0; k < n; ++k) {
        double const angle = 2.0 * std::acos(-1.0) * k / n;
        double radius = 10.0;
        for (int wave = 2; wave < 60; ++wave)
            radius += 4.0 * std::pow(wave, -1.3) * std::sin(wave * angle + wave * wave);
        coords(0, k) = radius * std::cos(angle);
        coords(1, k) = radius * std::sin(angle);
        chain[k] = k;
        std::printf("%g %g\n", coords(0, k), coords(1, k));
    }
    chain[n] = 0; // a closed line ends with its first node

    unsigned const harbour = 250;
    dense1D<double> sizes;
    for (unsigned const node : chain) {
        double const dx = coords(0, node) - coords(0, harbour);
        double const dy = coords(1, node) - coords(1, harbour);
        if (!sizes.push_back(0.1 + 0.2 * std::hypot(dx, dy))) return 1;
    }
    vornik1d::line_options options;
    options.deviation_tolerance = 0.3;
    options.min_elements = 3; // fewer enclose nothing
    dense1D<unsigned> mesh;
    if (vornik1d::mesh_line(coords, chain, sizes, mesh, options) != 0) return 1;

    std::printf("\n# harbour\n%g %g\n", coords(0, harbour), coords(1, harbour));
    std::printf("\n# mesh\n");
    for (unsigned const node : mesh) std::printf("%g %g\n", coords(0, node), coords(1, node));
}

// Meshes two sides of a rectangle by sizes that are fine at their common corner, and prints the nodes.

#include <cstdio>

#include <vornik1d/vornik1d.h>

int main()
{
    using namespace trelk;

    double corners[] = {0, 0, 10, 0, 10, 6}; // three nodes: (0, 0), (10, 0), (10, 6)
    dense2D<double> coords(2, 3, corners);
    dense1D<unsigned> chain(3), mesh;
    dense1D<double> sizes(3, 1.0), params, mesh_sizes;
    for (unsigned k = 0; k < 3; ++k) chain[k] = k;
    sizes[1] = 0.2;

    int const status = vornik1d::mesh_line(coords, chain, sizes, /* force_even */ false, /* min_elements */ 1,
        /* max_elements */ 1000, /* deviation_tolerance */ 0.01, /* min_size */ 0.0, mesh, params,
        mesh_sizes);
    if (status != 0) return 1; // -1, -2, ...: that argument is at fault; -199: no storage

    for (unsigned const node : mesh) std::printf("%g %g\n", coords(0, node), coords(1, node));
}

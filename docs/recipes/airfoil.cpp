// Meshes a wing section along the spline through its points. Elements are short where the curve bends and at
// the trailing edge.

#include <cmath>
#include <cstdio>

#include <vornik1d/vornik1d.h>

int main()
{
    using namespace trelk;

    // The section is NACA 0012 with a closed trailing edge. Points run from there over the upper side to the
    // nose and back along the lower side. The trailing edge is a corner, so the curve is open: two nodes at
    // one place.
    constexpr unsigned n = 61;
    double const pi = std::acos(-1.0);
    dense2D<double> coords;
    if (!coords.resize(2, n)) return 1;
    std::printf("# points\n");
    for (unsigned k = 0; k < n; ++k) {
        double const s = std::cos(pi * k / (n - 1));
        double const x = s * s;
        double const y =
            0.6 * (0.2969 * std::abs(s) + x * (-0.1260 + x * (-0.3516 + x * (0.2843 - x * 0.1036))));
        coords(0, k) = x;
        coords(1, k) = std::copysign(y, s);
        std::printf("%g %g\n", coords(0, k), coords(1, k));
    }

    dense1D<unsigned> chain;
    bool is_complete = chain.push_back(0); // the guide nodes repeat the first and the last node
    for (unsigned k = 0; k < n; ++k) is_complete = chain.push_back(k) && is_complete;
    is_complete = chain.push_back(n - 1) && is_complete;
    if (!is_complete) return 1;

    double const coarse = 0.08;
    dense1D<double> sizes(n + 2, coarse);
    if (sizes.size() != n + 2) return 1;
    sizes[1] = sizes[n] = 0.004; // at the trailing edge
    dense1D<unsigned> mesh;
    dense1D<double> params, mesh_sizes;
    double deviation = 0.0;
    int const status = vornik1d::mesh_spline(coords, chain, sizes, /* force_even */ false,
        /* min_elements */ 3, /* max_elements */ 10000, /* deviation_tolerance */ 2e-4, /* min_size */ 1e-4,
        /* default_size */ coarse, /* max_gradation */ 0.25, mesh, params, mesh_sizes, deviation);
    if (status != 0) return 1;

    std::printf("\n# mesh\n");
    for (unsigned const node : mesh) std::printf("%g %g\n", coords(0, node), coords(1, node));
}

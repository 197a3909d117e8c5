// Meshes a wing section along the spline through its points. Elements are short where the curve bends and at
// the trailing edge.

#include <cmath>
#include <cstdio>
#include <numeric>

#include <vornik1d/helpers.h>

int main()
{
    using namespace trelk;

    // The section is NACA 0012 with a closed trailing edge. Points run from there over the upper side to the
    // nose and back along the lower side. The trailing edge is a corner, so the curve is open: two nodes at
    // one place.
    constexpr unsigned n = 61;
    double const pi = std::acos(-1.0);
    dense2D<double> coords(2, n);
    if (coords.cols() != n) return 1; // no memory
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

    double const coarse = 0.08;
    dense1D<unsigned> chain(n);
    dense1D<double> sizes(n, coarse);
    if (chain.size() != n || sizes.size() != n) return 1;
    std::iota(chain.begin(), chain.end(), 0U);
    sizes[0] = sizes[n - 1] = 0.004; // at the trailing edge
    vornik1d::spline_options options;
    options.deviation_tolerance = 2e-4;
    options.min_size = 1e-4;
    options.default_size = coarse;
    options.max_gradation = 0.25;
    options.min_elements = 3;
    options.max_elements = 10000;
    dense1D<unsigned> mesh;
    int const status = vornik1d::mesh_spline(coords, vornik1d::with_guides(chain, /* closed */ false),
        vornik1d::with_guides(chain, sizes, /* closed */ false), mesh, options);
    if (status != 0) return 1;

    std::printf("\n# mesh\n");
    for (unsigned const node : mesh) std::printf("%g %g\n", coords(0, node), coords(1, node));
}

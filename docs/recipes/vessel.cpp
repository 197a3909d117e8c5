// Meshes the centre line of a vessel that forks. Elements are half as long as the radius. The radius is
// carried to the new nodes. Lengths are in mm.

#include <cmath>
#include <cstdio>

#include <vornik1d/helpers.h>

using namespace trelk;

/// Meshes a branch and prints its nodes, each with its radius.
bool mesh_branch(dense2D<double>& coords, dense1D<unsigned> const& nodes, dense1D<double> const& radii)
{
    // The parameter of a known node is its normalised chord length: 0 at the first node, 1 at the last.
    std::size_t const n = nodes.size();
    dense1D<double> node_params(n, 0.0);
    if (n < 2 || node_params.size() != n) return false;
    for (std::size_t k = 1; k < n; ++k) {
        double const* const p = coords.col(nodes[k - 1]);
        double const* const q = coords.col(nodes[k]);
        node_params[k] = node_params[k - 1] + std::hypot(q[0] - p[0], q[1] - p[1], q[2] - p[2]);
    }
    double const total = node_params[n - 1];
    for (double& param : node_params) param /= total;

    dense1D<double> sizes;
    if (!sizes.copy(radii)) return false;
    for (double& size : sizes) size *= 0.5;
    dense1D<unsigned> mesh;
    dense1D<double> params, mesh_radii;
    vornik1d::spline_options options;
    options.deviation_tolerance = 0.1;
    options.min_size = 0.1;
    options.max_elements = 10000;
    options.out_params = &params;
    int status = vornik1d::mesh_spline(coords, vornik1d::with_guides(nodes, /* closed */ false),
        vornik1d::with_guides(nodes, sizes, /* closed */ false), mesh, options);
    if (status == 0) status = vornik1d::interpolate_metrics(node_params, radii, params, mesh_radii);
    if (status != 0) return false;

    std::printf("# branch\n");
    for (std::size_t k = 0; k < mesh.size(); ++k) {
        double const* const p = coords.col(mesh[k]);
        std::printf("%g %g %g %g\n", p[0], p[1], p[2], mesh_radii[k]);
    }
    return true;
}

int main()
{
    // Three branches of 9 known nodes. They meet at node 8, the last node of the first branch.
    dense2D<double> coords;
    dense1D<unsigned> branches[3];
    dense1D<double> radii[3];
    double const first_radii[] = {4.0, 2.8, 2.2}, last_radii[] = {3.4, 1.6, 1.2};
    if (!coords.resize(3, 25)) return 1;
    unsigned node = 0;
    for (unsigned b = 0; b < 3; ++b)
        for (unsigned k = 0; k < 9; ++k) {
            double const t = k / 8.0;
            double const side = b == 0 ? 0.0 : b == 1 ? 1.0 : -1.2;
            bool const is_fork = b > 0 && k == 0;
            if (!is_fork) {
                coords(0, node) = b == 0 ? 30.0 * t : 30.0 + 28.0 * t;
                coords(1, node) = b == 0 ? 3.0 * std::sin(3.0 * t) : 0.42 + side * 14.0 * t * (1.4 - 0.6 * t);
                coords(2, node) = b == 0 ? 2.0 * t * t : 2.0 + 5.0 * side * t;
            }
            bool const is_known = branches[b].push_back(is_fork ? 8 : node++) &&
                                  radii[b].push_back(first_radii[b] + t * (last_radii[b] - first_radii[b]));
            if (!is_known) return 1;
        }
    for (unsigned b = 0; b < 3; ++b)
        if (!mesh_branch(coords, branches[b], radii[b])) return 1;
}

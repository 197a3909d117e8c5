// Remeshes three roads that meet at a junction. Each element keeps the number of its road, and the junction stays.

#include <cstdio>
#include <vornik1d/helpers.h>

using namespace trelk;
using namespace trelk::vornik1d;

int main()
{
    dense2D<double> coords{{0, 0}, {4, 1}, {8, 0}, {11, 3}, {8, -5}};
    dense2D<unsigned> connect{{0, 1}, {1, 2}, {2, 3}, {2, 4}};
    dense1D<unsigned> roads{1, 1, 2, 3}; // one per element
    remesh_options options;
    options.deviation_tolerance = 0.1; // a smooth curve, if it stays this near to the road
    options.sizes = {0, 0, 0.5};       // finer at node 2, the junction
    options.colors = &roads;
    int const status = remesh_lines(coords, connect, 2.0, options);
    if (status != 0) return std::puts(status_text(status, options)), 1;
    for (std::size_t e = 0; e < connect.cols(); ++e)
        std::printf("road %u: (%.2f, %.2f) to (%.2f, %.2f)\n", roads[e], coords(0, connect(0, e)),
            coords(1, connect(0, e)), coords(0, connect(1, e)), coords(1, connect(1, e)));
}

// The program of the README: replaces two sides of a rectangle by elements of length about 2, and prints their ends.

#include <cstdio>
#include <vornik1d/vornik1d.h>

int main()
{
    trelk::dense2D<double> coords{{0, 0}, {10, 0}, {10, 6}}; // three nodes, one per brace
    trelk::dense2D<unsigned> connect{{0, 1}, {1, 2}};        // two elements, by their end nodes
    int const status = trelk::vornik1d::remesh_lines(coords, connect, 2.0);
    for (auto const element : connect.columns())
        for (unsigned const node : element) // prints its two ends
            std::printf("%g %g\n", coords(0, node), coords(1, node));
    return status; // 0 for success
}

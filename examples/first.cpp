// The program of the README: remeshes two sides of a rectangle and prints the elements.

#include <cstdio>
#include <vornik1d/vornik1d.h>

int main()
{
    double corners[] = {0, 0, 10, 0, 10, 6}; // three nodes: (0, 0), (10, 0), (10, 6)
    trelk::dense2D<double> coords(2, 3, corners);
    trelk::dense2D<unsigned> connect;
    trelk::dense1D<unsigned> chain(3);
    if (chain.size() != 3) return 1; // no memory
    for (unsigned k = 0; k < 3; ++k) chain[k] = k;
    int status = trelk::vornik1d::indices_to_connectE2(chain, connect);
    if (status == 0) // elements of length 0.5, cut at corners of more than 40 degrees
        status = trelk::vornik1d::remesh_lines(coords, connect, 0.5, false, 40, 0, 0, 0, 1, 4294967295);
    for (std::size_t e = 0; status == 0 && e < connect.cols(); ++e)
        std::printf("%u %u\n", connect(0, e), connect(1, e));
    return status; // what it means is listed in the header, for each function
}

// Cuts the members of a frame into beam elements of three nodes, at most 1.2 m long. Joints keep their
// numbers.

#include <cmath>
#include <cstdio>

#include <vornik1d/vornik1d.h>

int main()
{
    using namespace trelk;

    // Members between two joints, each with the number of its section. Joints follow below, in m.
    struct
    {
        unsigned a, b, section;
    } const members[] = {{0, 1, 0}, {1, 2, 0}, {3, 4, 0}, {4, 5, 0}, {6, 7, 0}, {1, 4, 1}, {2, 5, 1},
        {4, 7, 1}, {0, 4, 2}, {5, 7, 2}};

    constexpr double longest = 1.2;
    dense2D<double> coords{{0, 0}, {0, 3}, {0, 6}, {5, 0}, {5, 3}, {5, 6}, {9, 0}, {9, 3}};
    dense2D<unsigned> connect;
    dense1D<unsigned> sections;
    for (auto const& [a, b, section] : members) {
        double const length = std::hypot(coords(0, b) - coords(0, a), coords(1, b) - coords(1, a));
        auto const count = static_cast<unsigned>(std::ceil(length / longest));
        dense1D<unsigned> nodes;
        if (vornik1d::mesh_straight(coords, a, b, count, nodes) != 0) return 1;
        if (vornik1d::indices_to_connectE2(nodes, connect) != 0) return 1;
        if (!sections.push_back_n(section, count)) return 1;
    }
    if (vornik1d::convert_into_quadratic(coords, connect) != 0) return 1; // rows 0 and 1: ends, row 2: middle

    for (std::size_t e = 0; e < connect.cols(); ++e) {
        std::printf("# section %u\n", sections[e]);
        for (unsigned const row : {0U, 2U, 1U})
            std::printf("%g %g\n", coords(0, connect(row, e)), coords(1, connect(row, e)));
    }
}

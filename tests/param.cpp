#include <gtest/gtest.h>

#include <cmath>

#include "support.h"

using namespace trelk;

TEST(sort, pairs_by_parameter_then_by_node)
{
    auto params = reals({2, -0.0, 1, not_a_number, 0.0, 2, -infinity, not_a_number, 2});
    auto indices = nodes({7, 4, 1, 9, 3, 3, 8, 2, 5});
    auto const view = params;
    ASSERT_EQ(vornik1d::sort(params, indices), 0);
    EXPECT_EQ(indices, (nodes{8, 3, 4, 1, 3, 5, 7, 2, 9}));
    EXPECT_EQ(view.sub_vector(0, 7), (reals{-infinity, 0, 0, 1, 2, 2, 2})); // in place
    EXPECT_TRUE(!std::signbit(params[1]) && std::signbit(params[2]) && std::isnan(params[7]));
}

TEST(subdivide, counts)
{
    struct
    {
        double length;
        bool round_up, force_even;
        unsigned fewest, most;
        std::size_t elements;
        double size_a = 1, size_b = 1;
    } const rows[] = {
        {1.4142, false, false, 1, 99, 1}, {1.4143, false, false, 1, 99, 2}, {2.8284, false, true, 1, 99, 2},
        {2.8285, false, true, 1, 99, 4}, {1.2, true, false, 1, 99, 2}, {1.0, true, false, 1, 99, 1},
        {2.5, true, true, 1, 99, 4}, {2.5, true, false, 1, 2, 3}, {2.5, true, true, 1, 2, 4},
        {2.5, false, true, 3, 3, 4}, {0, false, false, 5, 9, 5}, {7, false, false, 2, 3, 3},
        {3, false, false, 3, 9, 3, -1, -1},           // a negative metric length is none
        {3, false, false, 3, 9, 3, -1, 1},            // nor is NaN
        {3e200, false, false, 1, 9, 3, 1e200, 1e200}, // without squares
    };
    for (auto const& row : rows) {
        auto params = reals({0, row.length});
        auto sizes =
            reals({row.size_a, row.size_b, 7}); // numbers follow the params, also if there are more sizes
        auto mesh = nodes({9});
        ASSERT_EQ(vornik1d::subdivide(
                      params, sizes, {1, 0}, mesh, {row.round_up, row.force_even, row.fewest, row.most}),
            0);
        ASSERT_EQ(mesh.size(), row.elements + 2) << &row - rows;
        EXPECT_EQ(mesh[1], 1U);
        EXPECT_EQ(mesh[row.elements + 1], 0U);
        for (unsigned k = 2; k <= row.elements; ++k) EXPECT_EQ(mesh[k], k);
        EXPECT_EQ(params.size(), row.elements + 1);
        EXPECT_EQ(sizes.size(), row.elements + 2);
    }
}

TEST(subdivide, places_as_on_a_straight_line_in_the_plane)
{
    random_numbers random(2);
    for (int trial = 0; trial < 50; ++trial) {
        dense1D<double> params, sizes;
        point_list line;
        for (double at = 0; line.size() < 12; line.push_back({0, at})) {
            params.push_back(at += random.between(-0.2, 0.7)); // up and down
            sizes.push_back(random.between(0.1, 1));
        }
        unsigned const count = 2 + random.below(50);
        meshing in_plane = chain_of(columns(line), 1);
        in_plane.sizes = sizes;
        in_plane.min_elements = in_plane.max_elements = count; // one placement
        in_plane = in_plane.copy();
        dense1D<unsigned> mesh;
        ASSERT_EQ(in_plane.run() +
                      vornik1d::subdivide(params, sizes, nodes_up_to(12), false, false, count, count, mesh),
            0);
        ASSERT_EQ(params.size(), 12 + count - 1);
        for (std::size_t k = 0; k + 1 < count; ++k) {
            ASSERT_NEAR(params[12 + k], in_plane.coords(1, 12 + k), 1e-12);
            ASSERT_NEAR(sizes[12 + k], in_plane.out_sizes[2 + k], 1e-12);
        }
    }
}

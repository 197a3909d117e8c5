#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "place.h"
#include "support.h"

using namespace trelk;

TEST(sort, pairs_by_parameter_then_by_node)
{
    auto params = reals({2, -0.0, 1, not_a_number, 0.0, 2, -infinity, not_a_number, 2});
    auto indices = nodes({7, 4, 1, 9, 3, 3, 8, 2, 5});
    auto const view = params;
    ASSERT_EQ(vornik1d::sort(params, indices), 0);
    EXPECT_EQ(values_of(indices), (std::vector<unsigned>{8, 3, 4, 1, 3, 5, 7, 2, 9}));
    EXPECT_EQ(view[0], -infinity); // in place
    EXPECT_FALSE(std::signbit(params[1]));
    EXPECT_TRUE(std::signbit(params[2]));
    EXPECT_TRUE(std::isnan(params[7]));
    params.push_back(-9);
    EXPECT_EQ(vornik1d::sort(params, indices), -1);
    EXPECT_EQ(params[9], -9);
    ASSERT_TRUE(indices.resize(12, 1));
    EXPECT_EQ(vornik1d::sort(params, indices), -1);
}

TEST(subdivide, counts)
{
    struct
    {
        double length;
        bool round_up, force_even;
        unsigned fewest, most;
        std::size_t elements;
    } const rows[] = {
        {1.4, false, false, 1, 99, 1},
        {1.2, true, false, 1, 99, 2},
        {1.0, true, false, 1, 99, 1},
        {2.5, true, true, 1, 99, 4},
        {2.5, true, false, 1, 2, 3},
        {2.5, true, true, 1, 2, 4},
        {2.5, false, true, 3, 3, 4},
        {0, false, false, 5, 9, 5},
        {7, false, false, 2, 3, 3},
    };
    for (auto const& row : rows) {
        auto params = reals({0, row.length});
        auto sizes = reals({1, 1});
        auto mesh = nodes({9});
        ASSERT_EQ(vornik1d::subdivide(
                      params, sizes, nodes({1, 0}), row.round_up, row.force_even, row.fewest, row.most, mesh),
            0);
        ASSERT_EQ(mesh.size(), row.elements + 2) << &row - rows;
        EXPECT_EQ(mesh[1], 1U);
        EXPECT_EQ(mesh[row.elements + 1], 0U);
        for (unsigned k = 2; k <= row.elements; ++k) EXPECT_EQ(mesh[k], k);
        EXPECT_EQ(params.size(), row.elements + 1);
        EXPECT_EQ(sizes.size(), row.elements + 1);
    }
}

TEST(subdivide, places_as_on_a_straight_line_in_the_plane)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> any(0.1, 1);
    for (int trial = 0; trial < 50; ++trial) {
        dense1D<double> params, sizes;
        std::vector<std::vector<double>> points;
        double at = 0;
        for (int k = 0; k < 12; ++k) {
            params.push_back(at += any(random) - 0.3); // up and down
            sizes.push_back(any(random));
            points.push_back({0, at});
        }
        meshing in_plane = chain_of(columns(points), 1);
        in_plane.sizes = sizes;
        auto const expected = place(in_plane);
        dense1D<unsigned> mesh;
        ASSERT_EQ(vornik1d::subdivide(params, sizes, nodes_up_to(12), false, false, 1, no_limit, mesh), 0);
        std::size_t const added = expected.coords.cols();
        ASSERT_EQ(mesh.size(), added + 2);
        ASSERT_EQ(values_of(sizes.sub_vector(12, added)), values_of(expected.sizes));
        for (std::size_t k = 0; k < added; ++k) ASSERT_EQ(params[12 + k], expected.coords(1, k));
    }
}

TEST(subdivide, statuses_and_odd_sizes)
{
    auto params = reals({0, 1, 2});
    auto sizes = reals({1, -1, 0.5});
    dense1D<unsigned> mesh;
    auto const run = [&](dense1D<unsigned> const& chain, unsigned fewest) {
        return vornik1d::subdivide(params, sizes, chain, false, false, fewest, 100, mesh);
    };
    EXPECT_EQ(run(nodes({1}), 0), -2);
    EXPECT_EQ(run(nodes({1, 3}), 0), -2);
    EXPECT_EQ(run(nodes({1, 2}), 0), -6);
    EXPECT_EQ(run(nodes({1, 2}), 101), -6);
    params.push_back(9);
    EXPECT_EQ(run(nodes({1, 2}), 0), -6);
    EXPECT_EQ(run(nodes({1, 2}), 1), -2);
    sizes.push_back(0);
    EXPECT_EQ(mesh.size(), 0U);
    // Whatever the sizes, new points lie within the chain.
    for (double const h : {-1.0, 0.0, -1e-300, infinity, not_a_number}) {
        sizes[1] = h;
        ASSERT_EQ(run(nodes({0, 1, 2, 3}), 7), 0);
    }
    for (double const p : params) EXPECT_TRUE(p >= 0 && p <= 9) << p;
}

TEST(subdivide, odd_input)
{
    auto const mesh_of = [](std::vector<double> const& at, std::vector<double> const& h,
                             std::vector<unsigned> const& chain, unsigned fewest) {
        auto params = list(at);
        auto sizes = list(h);
        dense1D<unsigned> mesh;
        EXPECT_EQ(vornik1d::subdivide(params, sizes, list(chain), false, false, fewest, 9, mesh), 0);
        return values_of(mesh);
    };
    // Numbers follow the params, also behind sizes that are more; the ends are those of the chain.
    EXPECT_EQ(mesh_of({0, 2, 3}, {1, 1, 1, 7}, {0, 2, 1}, 1), (std::vector<unsigned>{0, 3, 4, 5, 1}));
    EXPECT_EQ(mesh_of({0, 3}, {-1, -1}, {0, 1}, 3).size(), 4U);           // a negative metric length is one
    EXPECT_EQ(mesh_of({0, 3}, {-1, 1}, {0, 1}, 3).size(), 4U);            // so is a NaN
    EXPECT_EQ(mesh_of({0, 3e200}, {1e200, 1e200}, {0, 1}, 1).size(), 4U); // without squares
}

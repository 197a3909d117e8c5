#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "support.h"

using namespace trelk;

using numbers = std::vector<unsigned>;

TEST(refinement, pins_a_corner_under_its_own_number)
{
    meshing m = chain_of(columns({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 1.2}, {3, 2.2}}), 0.47);
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.pinned(), (numbers{0, 5}));
    m = chain_of(m.coords.sub_matrix(0, 0, 2, 6), 0.47);
    m.deviation_tolerance = 1e-3;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.pinned(), (numbers{0, 3, 5}));
    EXPECT_TRUE(std::is_sorted(m.out_params.begin(), m.out_params.end()));
    EXPECT_EQ(std::count(m.out_params.begin(), m.out_params.end(), 3.0), 1);
}

TEST(refinement, meshes_an_arc_again_with_one_element_more)
{
    meshing m = chain_of(arc(64, 2), 0.5);
    ASSERT_EQ(m.run(), 0);
    ASSERT_EQ(m.elements(), 4U);
    for (bool const even : {false, true}) {
        m = chain_of(arc(64, 2), 0.5);
        m.force_even = even;
        m.deviation_tolerance = 0.0306; // the sagitta of 1/4 of the arc is 0.0311
        ASSERT_EQ(m.run(), 0);
        EXPECT_EQ(m.elements(), even ? 6U : 5U);
        EXPECT_EQ(m.pinned(), (numbers{0, 64}));
    }
}

TEST(refinement, splits_at_the_first_of_equals_and_near_the_middle)
{
    // Two bumps of one height on a straight line.
    auto const bumps = [](unsigned first, unsigned second) {
        dense2D<double> coords;
        EXPECT_TRUE(coords.resize(2, 11, 0.0));
        for (unsigned k = 0; k < 11; ++k) coords(0, k) = k;
        coords(1, first) = coords(1, second) = 1;
        meshing m = chain_of(coords, 100);
        m.deviation_tolerance = 0.9999;
        EXPECT_EQ(m.run(), 0);
        return m.pinned();
    };
    EXPECT_EQ(bumps(3, 7), (numbers{0, 3, 10}));
    EXPECT_EQ(bumps(2, 5), (numbers{0, 5, 10}));
}

TEST(refinement, threshold_is_reached_by_equality_and_follows_the_coordinates)
{
    // One bump of height 1 over a chord along the x axis; the threshold is 1 + 2^-52 * 1 at tolerance 1.
    for (auto const& [tolerance, is_refined] :
        {std::pair(1.0, false), {1 - 0x1p-52, true}, {1 - 0x1p-51, true}, {2.0, false}}) {
        meshing m = chain_of(columns({{0, 0}, {0.5, 1}, {1, 0}}), 100);
        m.deviation_tolerance = tolerance;
        ASSERT_EQ(m.run(), 0);
        EXPECT_EQ(m.elements(), is_refined ? 2U : 1U) << tolerance;
    }
    meshing far = chain_of(columns({{1e6, 1e6}, {1e6 + 1, 1e6 + 1e-10}, {1e6 + 2, 1e6}}), 100);
    far.deviation_tolerance = 1e-12;
    ASSERT_EQ(far.run(), 0);
    EXPECT_EQ(far.elements(), 1U);
}

TEST(refinement, holds_random_chains_to_the_tolerance)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> uniform(-1, 1);
    for (int round = 0; round < 300; ++round) {
        std::size_t const rows = 2 + random() % 2;
        std::size_t const n = 3 + random() % 60;
        std::vector<std::vector<double>> points(n, std::vector<double>(rows));
        for (std::size_t k = 1; k < n; ++k)
            for (std::size_t r = 0; r < rows; ++r)
                points[k][r] = points[k - 1][r] + (r == 0) + 0.7 * uniform(random);
        meshing m = chain_of(columns(points), 0.2 + std::abs(uniform(random)) * 10);
        m.force_even = random() % 2 == 0;
        m.deviation_tolerance = std::pow(10, -3 * std::abs(uniform(random)));
        ASSERT_EQ(m.run(), 0);

        auto const mesh = m.mesh();
        ASSERT_TRUE(!m.force_even || m.elements() % 2 == 0);
        auto next = unsigned(n); // new nodes take consecutive columns in the order of travel
        for (unsigned const node : mesh) ASSERT_TRUE(node < n || node == next++);
        ASSERT_EQ(next, m.coords.cols());

        // Chain node k lies near the line of the element that covers parameter k: Pythagoras, not areas.
        for (std::size_t k = 1, e = 1; k + 1 < n; ++k) {
            while (m.out_params[e] < double(k)) ++e;
            double along = 0, square = 0, norm = 0;
            for (std::size_t r = 0; r < rows; ++r) {
                double const u = m.coords(r, mesh[e]) - m.coords(r, mesh[e - 1]);
                double const w = points[k][r] - m.coords(r, mesh[e - 1]);
                along += u * w, square += w * w, norm += u * u;
            }
            ASSERT_LT(std::sqrt(std::max(0.0, square - along * along / norm)), m.deviation_tolerance + 1e-7);
        }
    }
}

TEST(refinement, always_ends)
{
    auto const five = columns({{0, 0}, {0.5, 1}, {0.6, 1}, {0.7, 1}, {1, 0}});
    for (bool const even : {false, true})
        for (auto const& params :
            {reals({-1e308, -1e300, 0, 1e300, 1e308}), reals({0, 5e-324, 5e-324, 1e-323, 1e-323}),
                reals({-infinity, 0, 0, 0, infinity}), reals({1, 1, 1, 1, 1})}) {
            meshing m = chain_of(five, 0.1);
            m.params = params;
            m.force_even = even;
            m.deviation_tolerance = 0.01;
            EXPECT_EQ(m.run(), 0);
            EXPECT_EQ(m.out_params.size(), m.mesh().size());
        }

    // A metric length that is NaN places nothing, so the count stays odd.
    meshing odd = chain_of(columns({{0, 0}, {not_a_number, 0}, {1, 0}}), 1);
    odd.force_even = true;
    odd.deviation_tolerance = 0.1;
    EXPECT_EQ(odd.run(), 0);

    // A detour between nodes of one parameter value, which no number of elements brings nearer, and a
    // deviation that sinks with their number, but not below 4: split after a thousand trials.
    meshing detour = chain_of(
        columns({{-0.0271828, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 0}, {2, 0}}), 1);
    detour.params = reals({0, 1, 1, 1, 1, 1, 1, 1, 2});
    detour.sizes = reals({.1, .1, 1e9, 1e9, 1e9, 1e9, 1e9, .1, .1});
    detour.deviation_tolerance = 1 - 1e-9;
    ASSERT_EQ(detour.run(), 0);
    EXPECT_EQ(detour.pinned(), (numbers{0, 2, 8}));

    meshing sinking = chain_of(columns({{0, 0}, {10, 0}, {14, .5}, {14, .5}, {14, .5}, {10, 1}}), 1);
    sinking.params = reals({0, 1, 1, 1, 1, 1});
    sinking.sizes = reals({.1, .1, 1e12, 1e12, 1e12, 1e12});
    sinking.min_elements = 100;
    sinking.deviation_tolerance = 4 - 4e-9;
    ASSERT_EQ(sinking.run(), 0);
    EXPECT_LT(sinking.elements(), 100U);

    // A deviation that is the threshold exactly, whatever the number of elements.
    meshing equal = chain_of(
        columns({{0, 0}, {1e-30, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 2}}), 0.5);
    equal.params = reals({0, 1, 1, 1, 1, 1, 1, 1, 1, 2});
    equal.min_elements = 50;
    equal.deviation_tolerance = 1 - 0x1p-52;
    ASSERT_EQ(equal.run(), 0);
    EXPECT_LT(equal.elements(), 50U);
}

TEST(refinement, a_line_split_at_every_node)
{
    unsigned const n = 200000;
    dense2D<double> zigzag;
    ASSERT_TRUE(zigzag.resize(2, n));
    for (unsigned k = 0; k < n; ++k) zigzag(0, k) = k, zigzag(1, k) = k % 2;
    meshing m = chain_of(zigzag, 3);
    m.deviation_tolerance = 1e-3;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.pinned().size(), n);
}

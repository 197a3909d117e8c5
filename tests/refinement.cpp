#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support.h"

using namespace trelk;

TEST(refinement, pins_corners_that_count_under_their_own_numbers)
{
    // Heights over a straight line from 0 to 10, tolerance, and the nodes that stay.
    struct
    {
        std::vector<double> heights;
        double size, tolerance;
        numbers pinned;
    } const rows[] = {
        {{0, 0, 0, 1.2, 1.2, 1.2}, 0.47, 1e-3, {0, 2, 3, 5}}, {{0, 0, 0, 1.2, 1.2, 1.2}, 0.47, 0, {0, 5}},
        {{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}, 100, 0.9999, {0, 3, 10}}, // of equals the first
        {{0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0}, 100, 0.9999, {0, 5, 10}}, // or the one nearer to the middle
    };
    for (auto const& row : rows) {
        double const step = 10 / double(row.heights.size() - 1);
        point_list line;
        for (double const h : row.heights) line.push_back({step * double(line.size()), h});
        meshing m = chain_of(columns(line), row.size);
        m.deviation_tolerance = row.tolerance;
        ASSERT_EQ(m.run(), 0);
        EXPECT_EQ(m.pinned(), row.pinned) << &row - rows;
    }
    // One bump of height 1 over a chord along the x axis; the threshold is 1 + 2^-52 * 1 at tolerance 1.
    for (auto const& [tolerance, is_refined] :
        {std::pair(1.0, false), {1 - 0x1p-52, true}, {1 - 0x1p-51, true}, {2.0, false}}) {
        meshing m = chain_of(columns({{0, 0}, {0.5, 1}, {1, 0}}), 100);
        m.deviation_tolerance = tolerance;
        ASSERT_EQ(m.run(), 0);
        EXPECT_EQ(m.elements(), is_refined ? 2U : 1U) << tolerance;
    }
    for (bool const along_x : {false, true}) { // 1e-10 beside a straight line is rounding at 1e6
        point_list line = {{1e6, 0}, {1e6 + 1e-10, 1}, {1e6, 2}};
        for (auto& point : line)
            if (along_x) std::swap(point[0], point[1]);
        meshing far = chain_of(columns(line), 100);
        far.deviation_tolerance = 1e-12;
        ASSERT_EQ(far.run(), 0);
        EXPECT_EQ(far.elements(), 1U);
    }
}

TEST(refinement, holds_random_chains_to_the_tolerance)
{
    random_numbers random(5);
    for (int round = 0; round < 300; ++round) {
        std::size_t const rows = 2 + random.below(2), n = 3 + random.below(60);
        point_list corners(n, std::vector<double>(rows));
        for (std::size_t k = 1; k < n; ++k)
            for (std::size_t r = 0; r < rows; ++r)
                corners[k][r] = corners[k - 1][r] + (r == 0 ? 1 : 0) + random.between(-0.7, 0.7);
        meshing m = chain_of(columns(corners), random.between(0.2, 10));
        m.force_even = random.below(2) == 0;
        m.deviation_tolerance = std::pow(10, random.between(-3, 0));
        ASSERT_EQ(m.run(), 0);

        auto const mesh = m.mesh();
        ASSERT_TRUE(!m.force_even || m.elements() % 2 == 0);
        ASSERT_TRUE(std::is_sorted(m.out_params.begin(), m.out_params.end()));
        auto next = unsigned(n); // new nodes take consecutive columns in the order of travel
        for (std::size_t k = 0; k < mesh.size(); ++k)
            ASSERT_TRUE(mesh[k] < n ? m.out_params[k] == double(mesh[k]) : mesh[k] == next++);
        ASSERT_EQ(next, m.coords.cols());

        // Chain node k lies near the line of the element that covers parameter k: Pythagoras, not areas.
        for (std::size_t k = 1, e = 1; k + 1 < n; ++k) {
            while (m.out_params[e] < double(k)) ++e;
            double along = 0, square = 0, norm = 0;
            for (std::size_t r = 0; r < rows; ++r) {
                double const u = m.coords(r, mesh[e]) - m.coords(r, mesh[e - 1]);
                double const w = corners[k][r] - m.coords(r, mesh[e - 1]);
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
            m.force_even = even, m.deviation_tolerance = 0.01;
            ASSERT_EQ(m.run(), 0);
            EXPECT_EQ(m.out_params.size(), m.mesh().size());
        }

    // A metric length that is NaN places nothing, so the count stays odd.
    meshing odd = chain_of(columns({{0, 0}, {not_a_number, 0}, {1, 0}}), 1);
    odd.force_even = true, odd.deviation_tolerance = 0.1;
    ASSERT_EQ(odd.run(), 0);
    EXPECT_EQ(odd.elements(), 1U);

    // A detour between nodes of one parameter value, which no number of elements brings nearer,: split after a
    // thousand trials.
    meshing detour = chain_of(
        columns({{-0.0271828, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 0}, {2, 0}}), 1);
    detour.params = reals({0, 1, 1, 1, 1, 1, 1, 1, 2});
    detour.sizes = reals({.1, .1, 1e9, 1e9, 1e9, 1e9, 1e9, .1, .1});
    detour.deviation_tolerance = 1 - 1e-9;
    ASSERT_EQ(detour.run(), 0);
    EXPECT_EQ(detour.pinned(), (numbers{0, 2, 8}));

    // A deviation that is the threshold exactly, whatever the number of elements.
    meshing equal = chain_of(
        columns({{0, 0}, {1e-30, 0}, {1, 0}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 2}}), 0.5);
    equal.params = reals({0, 1, 1, 1, 1, 1, 1, 1, 1, 2});
    equal.min_elements = 50, equal.deviation_tolerance = 1 - 0x1p-52;
    ASSERT_EQ(equal.run(), 0);
    EXPECT_LT(equal.elements(), 50U);
}

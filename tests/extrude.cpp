#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using point2 = vector_fixed<double, 2>;
using point3 = vector_fixed<double, 3>;

constexpr double pi = std::numbers::pi;

TEST(extrude, counted_forms)
{
    auto coords = columns({{9, 9}, {1, 2}});
    auto indices = nodes({5});
    ASSERT_EQ(extrude_translate(coords, 1, point2{49, 98}, 49, indices), 0);
    ASSERT_EQ(indices.size(), 51U);
    EXPECT_EQ(indices[1], 1U);
    for (unsigned k = 1; k <= 49; ++k) {
        EXPECT_EQ(indices[1 + k], 1 + k);
        EXPECT_NEAR(coords(0, 1 + k), 1 + k, 1e-13);
    }
    EXPECT_EQ(coords(1, 50), 100); // exactly
    ASSERT_EQ(extrude_translate(coords, 0, point2{0, 0}, 2, indices), 0);
    EXPECT_EQ(values_of(coords)[52], (std::vector<double>{9, 9}));

    dense2D<double> fresh; // a matrix without rows takes those of the point
    ASSERT_TRUE(fresh.resize(0, 3));
    ASSERT_EQ(extrude_translate(fresh, point3{1, 2, 3}, point3{3, 0, 0}, 3, indices), 0);
    EXPECT_EQ(
        values_of(fresh), (std::vector<std::vector<double>>{{1, 2, 3}, {2, 2, 3}, {3, 2, 3}, {4, 2, 3}}));
}

TEST(extrude, sizes_set_the_steps)
{
    dense2D<double> coords;
    dense1D<unsigned> indices;
    ASSERT_EQ(extrude_translate(coords, point2{0, 0}, point2{0, 9}, 1, 1, true, indices), 0);
    EXPECT_EQ(indices.size(), 1U + 10); // the boundary of 8 and 10 is their geometric mean, 8.94
    ASSERT_EQ(extrude_translate(coords, 0, point2{0, 0.1}, 1, 1, false, indices), 0);
    EXPECT_EQ(indices.size(), 11U + 2);

    EXPECT_EQ(extrude_translate(coords, 0, point2{not_a_number, 0}, 0.0, 1, false, indices), -4);

    // The path of a rotation in space is as long as the distance from its axis, not from its centre, says.
    dense2D<double> space;
    indices.clear();
    ASSERT_EQ(extrude_rotate(space, point3{1, 0, 5}, point3{}, point3{0, 0, 1}, 0.1, 0.1, false, indices), 0);
    EXPECT_EQ(indices.size(), 11U);
    ASSERT_EQ(extrude_rotate(space, point3{1e307, 0, 0}, point3{}, point3{0, 0, 6}, 1, indices), 0);
    EXPECT_NEAR(space(0, 12) / 1e307, std::cos(6.0), 1e-14); // its squares are finite

    // A metric length of ln(4) / 0.3 = 4.6 makes five steps, each 4^(1/5) times as long as the one before.
    coords.clear(), indices.clear();
    ASSERT_EQ(extrude_rotate(coords, point2{1, 0}, point2{0, 0}, -1.0, 0.1, 0.4, false, indices), 0);
    ASSERT_EQ(indices.size(), 6U);
    double before = 0;
    for (unsigned k = 1; k <= 5; ++k) {
        double const turn = -std::atan2(coords(1, k), coords(0, k));
        EXPECT_NEAR(turn, (std::pow(4, k / 5.0) - 1) / 3, 1e-12);
        EXPECT_GT(turn, before);
        before = turn;
    }
}

TEST(extrude, rotates_alike_in_plane_and_space)
{
    for (double const angle : {1e-9, 0.0999, 0.1001, -2.0, 2 * pi, 7.0}) {
        dense2D<double> plane, space;
        dense1D<unsigned> indices;
        ASSERT_EQ(extrude_rotate(plane, point2{3, 1}, point2{1, 1}, angle, 10, indices), 0);
        ASSERT_EQ(
            extrude_rotate(space, point3{3, 1, 5}, point3{1, 1, -4}, point3{0, 0, angle}, 10, indices), 0);
        // A tenth of the turn at a time, about a tilted axis as the image of that: no z any more.
        for (unsigned k = 0; k <= 10; ++k) {
            EXPECT_NEAR(plane(0, k), 1 + 2 * std::cos(angle * k / 10), 1e-14);
            EXPECT_NEAR(plane(1, k), 1 + 2 * std::sin(angle * k / 10), 1e-14);
            EXPECT_NEAR(space(0, k), plane(0, k), 1e-14);
            EXPECT_NEAR(space(1, k), plane(1, k), 1e-14);
            EXPECT_NEAR(space(2, k), 5, 1e-14);
        }
        // About another axis: in ten turns as in one.
        point3 const axis{angle / 3, -angle / 3 * 2, angle / 3 * 2};
        point3 const tenth{axis[0] / 10, axis[1] / 10, axis[2] / 10};
        space.clear();
        ASSERT_EQ(extrude_rotate(space, point3{1, 2, 3}, point3{-1, 0, 2}, axis, 10, indices), 0);
        for (unsigned k = 0; k < 10; ++k) {
            ASSERT_EQ(extrude_rotate(space, k, point3{-1, 0, 2}, tenth, 1, indices), 0);
            for (std::size_t r = 0; r < 3; ++r) EXPECT_NEAR(space(r, 11 + k), space(r, k + 1), 2e-14);
        }
    }
}

/// Expects the statuses of the four forms of one motion in N dimensions. `draw(path, start, rest...)` calls
/// them along a path, or along one of length 0; `size_a` is the status for the first size, and `no_elements`
/// that for a count of 0 from a node.
template <std::size_t N, class Draw>
static void expect_statuses(Draw draw, int size_a, int no_elements)
{
    dense2D<double> coords = columns({std::vector<double>(N, 5)});
    auto indices = nodes({9});
    auto const run = [&](bool has_path, auto start, auto... steps) {
        auto const before = values_of(coords);
        int const status = draw(has_path, coords, start, steps..., indices);
        if (status == 0) return indices.size() == 1 ? 0 : 1;
        EXPECT_EQ(values_of(coords), before);
        EXPECT_EQ(indices.size(), 1U);
        return status;
    };
    vector_fixed<double, N> const point{};
    EXPECT_EQ(draw(true, coords, point, 1e9, 1e9, true, indices), 0);
    EXPECT_EQ(indices.size(), 4U); // an even number of steps
    EXPECT_EQ(draw(true, coords, 0U, 1e9, 1e9, true, indices), 0);
    EXPECT_EQ(indices.size(), 7U);
    ASSERT_TRUE(indices.resize(1) && coords.resize(N, 1));
    EXPECT_EQ(run(true, point, 0U), 0);
    EXPECT_EQ(run(true, 0U, 0U), no_elements);
    EXPECT_EQ(run(true, 1U, 3U), -2);
    EXPECT_EQ(run(true, 1U, 0.0, 0.0, false), -2);
    EXPECT_EQ(run(false, point, 0.0, 0.0, false), -3);
    EXPECT_EQ(run(false, 0U, 0.0, 0.0, false), -3);
    EXPECT_EQ(run(true, point, not_a_number, 0.0, false), size_a);
    EXPECT_EQ(run(true, 0U, 0.0, 0.0, false), size_a);
    EXPECT_EQ(run(true, point, 1.0, -1.0, false), size_a - 1);
    EXPECT_EQ(run(true, 0U, 1.0, 0.0, false), size_a - 1);
    EXPECT_EQ(run(true, 0U, 1.0, not_a_number, false), size_a - 1);
    EXPECT_EQ(run(true, point, 4294967295U), -199);
    EXPECT_EQ(run(true, 0U, 4294967295U), -199);
    EXPECT_EQ(run(true, point, 1e-300, 1e-300, false), -199);
    EXPECT_EQ(run(true, 0U, 1e-300, 1e-300, false), -199);
    coords = columns({std::vector<double>(5 - N, 5)});
    EXPECT_EQ(run(true, point, 3U), -1);
    EXPECT_EQ(run(true, 1U, 3U), -1);
    EXPECT_EQ(run(false, point, 0.0, 0.0, false), -1);
    EXPECT_EQ(run(false, 1U, 0.0, 0.0, false), -1);
}

TEST(extrude, statuses)
{
    auto const shift2 = [](bool has_path, auto& coords, auto start, auto&&... rest) {
        return extrude_translate(coords, start, has_path ? point2{1, 0} : point2{}, rest...);
    };
    auto const shift3 = [](bool has_path, auto& coords, auto start, auto&&... rest) {
        return extrude_translate(coords, start, has_path ? point3{1, 0, 0} : point3{}, rest...);
    };
    auto const turn2 = [](bool has_path, auto& coords, auto start, auto&&... rest) {
        return extrude_rotate(coords, start, point2{9, 9}, has_path ? 1.0 : 0.0, rest...);
    };
    auto const turn3 = [](bool has_path, auto& coords, auto start, auto&&... rest) {
        return extrude_rotate(coords, start, point3{9, 9, 9}, has_path ? point3{1, 0, 0} : point3{}, rest...);
    };
    expect_statuses<2>(shift2, -4, 0);
    expect_statuses<3>(shift3, -4, 0);
    expect_statuses<2>(turn2, -5, 0);
    expect_statuses<3>(turn3, -5, -5);
}

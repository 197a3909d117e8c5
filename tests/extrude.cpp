#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using point2 = vector_fixed<double, 2>;
using point3 = vector_fixed<double, 3>;

using doubles = std::vector<double>;

TEST(extrude, counted_forms)
{
    auto coords = columns({{9, 9}, {1, 2}});
    auto indices = nodes({5});
    ASSERT_EQ(extrude_translate(coords, 1, point2{49, 98}, 49, indices), 0);
    ASSERT_EQ(indices.size(), 51U);
    for (unsigned k = 0; k <= 49; ++k) {
        EXPECT_EQ(indices[1 + k], 1 + k);
        EXPECT_NEAR(coords(0, 1 + k), 1 + k, 1e-13);
    }
    EXPECT_EQ(coords(1, 50), 100); // exactly
    ASSERT_EQ(extrude_translate(coords, 0, point2{0, 0}, 2, indices), 0);
    EXPECT_EQ(coords.sub_matrix(0, 52, 2, 1), (dense2D<double>{{9, 9}}));

    EXPECT_EQ(extrude_translate(coords, 0, point2{1, 0}, 4294967295, indices), -199); // more than numbers
    EXPECT_EQ(extrude_translate(coords, point2{1, 0}, point2{1, 0}, 4294967295, indices), -199);
    EXPECT_EQ(extrude_translate(coords, 0, point2{1, 0}, {1e-300, 1e-300}, indices), -199);
    EXPECT_EQ(coords.cols() + indices.size(), 53U + 54);

    dense2D<double> fresh; // a matrix without rows takes those of the point
    ASSERT_TRUE(fresh.resize(0, 3));
    ASSERT_EQ(extrude_translate(fresh, point3{1, 2, 3}, point3{3, 0, 0}, 3, indices), 0);
    EXPECT_EQ(fresh, (dense2D<double>{{1, 2, 3}, {2, 2, 3}, {3, 2, 3}, {4, 2, 3}}));
}

TEST(extrude, sizes_set_the_steps)
{
    dense2D<double> coords, space;
    dense1D<unsigned> indices;
    auto const elements = [&](int status) {
        std::size_t const size = indices.size();
        indices.clear();
        return status == 0 ? size - 1 : 99;
    };
    // The boundary of 8 and 10 is their geometric mean, 8.94; there is one element at least.
    EXPECT_EQ(elements(extrude_translate(coords, {0, 0}, {0, 9}, {1, 1, true}, indices)), 10U);
    EXPECT_EQ(elements(extrude_translate(coords, 0, point2{0, 0.1}, {1, 1}, indices)), 1U);
    // The path of a rotation in space is as long as the distance from its axis, not from its centre, says.
    EXPECT_EQ(
        elements(extrude_rotate(space, point3{1, 0, 5}, point3{}, point3{0, 0, 1}, {0.1, 0.1}, indices)),
        10U);
    EXPECT_EQ(
        elements(extrude_rotate(space, point3{1e307, 0, 0}, point3{}, point3{0, 0, 6}, 1, indices)), 1U);
    EXPECT_NEAR(space(0, 12) / 1e307, std::cos(6.0), 1e-14); // its squares are finite

    // A metric length of ln(4) / 0.3 = 4.6 makes five steps, each 4^(1/5) times as long as the one before.
    coords.clear();
    ASSERT_EQ(extrude_rotate(coords, {1, 0}, {0, 0}, -1.0, {0.1, 0.4}, indices), 0);
    ASSERT_EQ(indices.size(), 6U);
    for (unsigned k = 1; k <= 5; ++k)
        EXPECT_NEAR(-std::atan2(coords(1, k), coords(0, k)), (std::pow(4, k / 5.0) - 1) / 3, 1e-12);
}

TEST(extrude, overloads_that_take_both_sizes)
{
    // As above, a path of length 1 with sizes 0.1 and 0.4: five elements, or four if their number is to be even.
    dense2D<double> coords{{1, 0}}, space{{1, 0, 0}};
    point2 const start2{1, 0}, up2{0, 1};
    point3 const start3{1, 0, 0}, up3{0, 1, 0}, turn{0, 0, 1};
    for (bool const even : {false, true}) {
        end_sizes const sizes = {0.1, 0.4, even};
        nodes out[8];
        EXPECT_EQ(extrude_translate(coords, start2, up2, sizes, out[0]), 0);
        EXPECT_EQ(extrude_translate(coords, 0, up2, sizes, out[1]), 0);
        EXPECT_EQ(extrude_rotate(coords, start2, point2{}, 1, sizes, out[2]), 0);
        EXPECT_EQ(extrude_rotate(coords, 0, point2{}, 1, sizes, out[3]), 0);
        EXPECT_EQ(extrude_translate(space, start3, up3, sizes, out[4]), 0);
        EXPECT_EQ(extrude_translate(space, 0, up3, sizes, out[5]), 0);
        EXPECT_EQ(extrude_rotate(space, start3, point3{}, turn, sizes, out[6]), 0);
        EXPECT_EQ(extrude_rotate(space, 0, point3{}, turn, sizes, out[7]), 0);
        for (nodes const& mesh : out) {
            ASSERT_EQ(mesh.size(), even ? 5U : 6U);
            auto const& all = &mesh - out < 4 ? coords : space;
            EXPECT_NEAR(all(1, mesh[1]), (std::pow(4, 1 / double(mesh.size() - 1)) - 1) / 3, 1e-3);
        }
    }
}

TEST(extrude, rotates_alike_in_plane_and_space)
{
    for (double const angle : {1e-9, 0.0999, 0.1001, 0.999, 1.001, -2.0, 2 * std::numbers::pi, 7.0}) {
        dense2D<double> plane, space;
        dense1D<unsigned> indices;
        ASSERT_EQ(extrude_rotate(plane, point2{3, 1}, point2{1, 1}, angle, 10, indices), 0);
        ASSERT_EQ(
            extrude_rotate(space, point3{3, 1, 5}, point3{1, 1, -4}, point3{0, 0, angle}, 10, indices), 0);
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

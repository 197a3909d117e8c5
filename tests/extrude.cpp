#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using point2 = vector_fixed<double, 2>;
using point3 = vector_fixed<double, 3>;

constexpr double pi = std::numbers::pi;

TEST(extrude, statuses_of_all_forms)
{
    // Each row tells the argument at fault and the status by translation and by rotation; a count of 0 and
    // the sizes exclude each other.
    struct
    {
        std::size_t rows;
        unsigned start;
        double path, size_a, size_b;
        int translate, rotate;
    } const table[] = {
        {4, 9, 0, 0, 0, -1, -1},
        {0, 9, 0, 0, 0, -1, -1}, // rows of the motion are put here
        {0, 1, 0, 0, 0, -3, -3},
        {0, 1, 1, not_a_number, -1, -4, -5},
        {0, 1, 1, 1, -1, -5, -6},
        {0, 1, 1, 1e-12, 1e-12, -199, -199},
        {0, 1, 1, 0.5, 0.5, 0, 0},
    };
    auto const check = [](auto start_point, auto path, auto turn, auto const& row, bool is_first) {
        std::size_t const rows = row.rows > 0 ? row.rows : sizeof start_point / sizeof(double);
        dense2D<double> coords;
        ASSERT_TRUE(coords.resize(rows, 2, 0.5));
        coords(0, 1) = 2;
        decltype(start_point) const center{};
        auto const before = values_of(coords);
        auto indices = nodes({7});
        bool const bad_start = row.start == 9 && !is_first;
        auto const expect = [&](int expected, int status) {
            EXPECT_EQ(status, expected);
            if (expected < 0) {
                EXPECT_EQ(values_of(coords), before);
                EXPECT_EQ(indices.size(), 1U);
            }
            ASSERT_TRUE(coords.resize(rows, 2) && indices.resize(1));
        };
        int const by_node = bad_start ? -2 : row.translate;
        expect(by_node, extrude_translate(coords, row.start, path, row.size_a, row.size_b, false, indices));
        expect(bad_start ? -2 : row.rotate,
            extrude_rotate(coords, row.start, center, turn, row.size_a, row.size_b, false, indices));
        if (bad_start) return; // a point is never bad
        expect(row.translate,
            extrude_translate(coords, start_point, path, row.size_a, row.size_b, false, indices));
        expect(row.rotate,
            extrude_rotate(coords, start_point, center, turn, row.size_a, row.size_b, false, indices));
    };
    for (auto const& row : table) {
        bool const is_first = &row == table;
        check(point2{2, 0.5}, point2{row.path, 0}, row.path, row, is_first);
        check(point3{2, 0.5, 0.5}, point3{row.path, 0, 0}, point3{0, 0, row.path}, row, is_first);
    }
}

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

    // From a point into an empty matrix; counts of 0 look at nothing, but for one form.
    dense2D<double> fresh;
    EXPECT_EQ(extrude_translate(coords, point3{1, 2, 3}, point3{}, 0, indices), 0);
    EXPECT_EQ(extrude_translate(coords, 99, point3{}, 0, indices), 0);
    EXPECT_EQ(extrude_rotate(coords, point3{}, point3{}, point3{}, 0, indices), 0);
    EXPECT_EQ(extrude_rotate(coords, point2{}, point2{}, 1, 0, indices), 0);
    EXPECT_EQ(extrude_rotate(coords, 99, point2{}, 1, 0, indices), 0);
    EXPECT_EQ(extrude_rotate(coords, 99, point3{}, point3{}, 0, indices), -5);
    EXPECT_EQ(extrude_rotate(coords, 99, point2{}, 1, 4, indices), -2);
    EXPECT_EQ(extrude_translate(coords, point3{}, point3{}, 1, indices), -1);
    EXPECT_EQ(extrude_rotate(fresh, point2{}, point2{}, 1, 4294967295, indices), -199);
    EXPECT_EQ(fresh.rows(), 0U);
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

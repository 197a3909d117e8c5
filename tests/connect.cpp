#include <gtest/gtest.h>

#include <vornik/toolkit.h>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using elements = std::vector<std::vector<unsigned>>;

TEST(indices_to_connect, appends_elements_along_a_list)
{
    struct
    {
        decltype(&indices_to_connectE2) append;
        elements along_seven;
        std::vector<std::size_t> refused;
    } const rows[] = {
        {indices_to_connectE2, {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}}, {1}},
        {indices_to_connectE3, {{0, 2, 1}, {2, 4, 3}, {4, 6, 5}}, {1, 2, 4, 6}},
        {indices_to_connectE4, {{0, 3, 1, 2}, {3, 6, 4, 5}}, {1, 2, 3, 5, 6, 8}},
    };
    for (auto const& [append, expected, refused] : rows) {
        dense2D<unsigned> connect;
        ASSERT_TRUE(connect.resize(7, 0)); // without columns the row count does not matter
        EXPECT_EQ(append(nodes({}), connect), 0);
        ASSERT_EQ(append(nodes_up_to(7), connect), 0);
        EXPECT_EQ(values_of(connect), expected);
        ASSERT_EQ(append(nodes_up_to(7), connect), 0);
        EXPECT_EQ(connect.cols(), 2 * expected.size());
        for (std::size_t const count : refused) EXPECT_EQ(append(nodes_up_to(count), connect), -1) << count;
        auto wrong = columns<unsigned>({{1, 2, 3, 4, 5}});
        EXPECT_EQ(append(nodes_up_to(7), wrong), -2);
        EXPECT_EQ(values_of(wrong), (elements{{1, 2, 3, 4, 5}}));
    }
}

TEST(convert, splits_and_cuts_elements)
{
    auto const quadratic = columns<unsigned>({{0, 1, 5}, {1, 2, 6}});
    auto halves = columns<unsigned>({{7, 8}});
    ASSERT_EQ(split_into_linear(quadratic, halves), 0);
    EXPECT_EQ(values_of(halves), (elements{{7, 8}, {0, 5}, {5, 1}, {1, 6}, {6, 2}}));
    dense2D<unsigned> wrong;
    ASSERT_TRUE(wrong.resize(3, 0));
    EXPECT_EQ(split_into_linear(quadratic, wrong), -2);
    EXPECT_EQ(split_into_linear(halves, wrong), -1);
    EXPECT_EQ(split_into_linear(dense2D<unsigned>(), wrong), 0);

    auto cut = quadratic;
    EXPECT_EQ(convert_into_linear(cut), 0);
    EXPECT_EQ(values_of(cut), (elements{{0, 1}, {1, 2}}));
    EXPECT_EQ(convert_into_linear(cut), -1);
    EXPECT_EQ(convert_into_linear(wrong), 0);
}

TEST(convert, adds_interior_nodes)
{
    auto coords = columns({{0, 0, 0}, {3, 6, 9}, {9, 6, 3}});
    auto const linear = columns<unsigned>({{0, 1}, {2, 1}});
    dense2D<unsigned> cubic;
    ASSERT_EQ(convert_into_high_order(coords, linear, 2, cubic), 0);
    EXPECT_EQ(values_of(cubic), (elements{{0, 1, 3, 4}, {2, 1, 5, 6}}));
    EXPECT_EQ(values_of(coords.sub_matrix(0, 3, 3, 4)),
        (std::vector<std::vector<double>>{{1, 2, 3}, {2, 4, 6}, {7, 6, 5}, {5, 6, 7}}));

    // In place, from elements of any order; what cannot be done leaves all as it was.
    ASSERT_EQ(convert_into_quadratic(coords, cubic), 0);
    EXPECT_EQ(values_of(cubic), (elements{{0, 1, 7}, {2, 1, 8}}));
    cubic(1, 1) = 9;
    EXPECT_EQ(convert_into_cubic(coords, cubic), -2);
    EXPECT_EQ(convert_into_high_order(coords, cubic, 4294967295), -2);
    EXPECT_EQ(convert_into_high_order(coords, cubic, 0), 0);
    EXPECT_EQ(values_of(cubic), (elements{{0, 1, 7}, {2, 9, 8}}));
    cubic(1, 1) = 1;
    EXPECT_EQ(convert_into_high_order(coords, cubic, 4294967295), -199);
    EXPECT_EQ(coords.cols(), 9U);

    auto out = cubic;
    dense2D<double> four_rows;
    EXPECT_EQ(convert_into_high_order(four_rows, linear, 1, out), -1);
    EXPECT_EQ(out.cols(), 2U);
    EXPECT_EQ(convert_into_high_order(coords, linear, 0, out), 0);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(convert_into_high_order(coords, out, 1, cubic), 0);
    EXPECT_EQ(convert_into_quadratic(coords, out), 0);
    ASSERT_TRUE(four_rows.resize(4, 9));
    EXPECT_EQ(convert_into_quadratic(four_rows, out), -1);
    EXPECT_EQ(convert_into_cubic(four_rows, out), -1);
}

TEST(flip, reverses_columns)
{
    auto connect = columns<unsigned>({{0, 1, 5}, {1, 2, 6}});
    EXPECT_EQ(flip(connect), 0);
    EXPECT_EQ(values_of(connect), (elements{{5, 1, 0}, {6, 2, 1}}));
    connect.clear();
    EXPECT_EQ(flip(connect), 0);
}

TEST(mesh_reorient, statuses_and_counts)
{
    auto const run = [](elements const& mesh, unsigned start, int all_components, elements const& expected) {
        auto connect = columns(mesh);
        dense2D<unsigned> neighbors, after;
        EXPECT_EQ(vornik::get_neighbors(connect, vornik::element_type::edge, false, neighbors), 0);
        int const flips = mesh_reorient(connect, neighbors, start, all_components);
        EXPECT_EQ(values_of(connect), expected);
        EXPECT_EQ(vornik::get_neighbors(connect, vornik::element_type::edge, false, after), 0);
        EXPECT_EQ(values_of(neighbors), values_of(after)); // kept in step
        return flips;
    };
    elements const line = {{0, 1}, {2, 1}, {2, 3}};
    EXPECT_EQ(run(line, 0, 0, {{0, 1}, {1, 2}, {2, 3}}), 1);
    EXPECT_EQ(run(line, 1, 0, {{1, 0}, {2, 1}, {3, 2}}), 2);
    EXPECT_EQ(run({{0, 1}, {2, 1}, {2, 0}}, 1, 0, {{1, 0}, {2, 1}, {0, 2}}), 2);
    elements const parts = {{0, 1}, {2, 1}, {5, 6}, {7, 6}, {8, 9}, {10, 9}};
    EXPECT_EQ(run(parts, 2, 0, {{0, 1}, {2, 1}, {5, 6}, {6, 7}, {8, 9}, {10, 9}}), 1);
    EXPECT_EQ(run(parts, 2, 1, {{0, 1}, {2, 1}, {5, 6}, {6, 7}, {8, 9}, {9, 10}}), 2);

    // By neighbours that are told, where more than two elements meet: each end is followed once, first come first.
    struct
    {
        elements mesh, sides;
        int all_components, turns;
        elements expected;
    } const told[] = {
        {{{0, 1}, {0, 1}, {1, 0}}, {{2, 1}, {2, 0}, {1, 1}}, 0, 2, {{0, 1}, {0, 1}, {1, 0}}},
        {{{2, 1}, {3, 0}, {1, 2}, {1, 0}, {3, 1}}, {{3, 2}, {3, 4}, {0, 4}, {1, 2}, {2, 1}}, 0, 4,
            {{2, 1}, {0, 3}, {2, 1}, {1, 0}, {3, 1}}},
        {{{0, 1}, {2, 1}, {2, 3}}, {{1, 3}, {0, 2}, {3, 1}}, 0, 1, {{0, 1}, {1, 2}, {2, 3}}},
        {{{0, 1}, {4294967294, 2}, {3, 2}}, {{9, 9}, {2, 9}, {1, 9}}, -1, 1,
            {{0, 1}, {4294967294, 2}, {2, 3}}},
    };
    for (auto const& row : told) {
        auto mesh = columns(row.mesh);
        auto sides = columns(row.sides);
        EXPECT_EQ(mesh_reorient(mesh, sides, 0, row.all_components), row.turns) << &row - told;
        EXPECT_EQ(values_of(mesh), row.expected) << &row - told;
    }

    auto connect = columns(line);
    auto neighbors = columns<unsigned>({{1, 9}, {2, 0}, {9, 1}}); // the second column the wrong way round
    EXPECT_EQ(mesh_reorient(connect, neighbors, 3, 0), -3);
    EXPECT_EQ(mesh_reorient(connect, neighbors, 0, 0), -2);
    EXPECT_EQ(values_of(connect)[1], (std::vector<unsigned>{1, 2})); // turned before that
    dense2D<unsigned> fewer = neighbors.sub_matrix(0, 0, 2, 2);
    EXPECT_EQ(mesh_reorient(connect, fewer, 3, 0), -2);
    dense2D<unsigned> one_row = connect.sub_matrix(0, 0, 1, 3);
    EXPECT_EQ(mesh_reorient(connect, one_row, 3, 0), -2);
    EXPECT_EQ(mesh_reorient(one_row, neighbors, 3, 0), -1);
    dense2D<unsigned> one = connect.sub_matrix(0, 0, 2, 1);
    EXPECT_EQ(mesh_reorient(one, fewer, 0, 0), -2);
    connect(0, 0) = 4294967295;
    EXPECT_EQ(mesh_reorient(connect, fewer, 3, 0), -1);
    dense2D<unsigned> empty;
    EXPECT_EQ(mesh_reorient(empty, fewer, 3, 0), 0);
}

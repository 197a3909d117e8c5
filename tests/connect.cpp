#include <gtest/gtest.h>

#include <vornik1d/helpers.h>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

TEST(indices_to_connect, appends_elements_along_a_list)
{
    struct
    {
        decltype(&indices_to_connectE2) append;
        element_list along_seven;
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
        EXPECT_EQ(connect, columns(expected));
        ASSERT_EQ(append(nodes_up_to(7), connect), 0);
        EXPECT_EQ(connect.cols(), 2 * expected.size());
        for (std::size_t const count : refused) EXPECT_EQ(append(nodes_up_to(count), connect), -1) << count;
        auto wrong = columns<unsigned>({{1, 2, 3, 4, 5}});
        EXPECT_EQ(append(nodes_up_to(7), wrong), -2);
        EXPECT_EQ(wrong, (dense2D<unsigned>{{1, 2, 3, 4, 5}}));
    }
}

TEST(convert, splits_and_cuts_elements)
{
    auto const quadratic = columns<unsigned>({{0, 1, 5}, {1, 2, 6}});
    auto halves = columns<unsigned>({{7, 8}});
    ASSERT_EQ(split_into_linear(quadratic, halves), 0);
    EXPECT_EQ(halves, (dense2D<unsigned>{{7, 8}, {0, 5}, {5, 1}, {1, 6}, {6, 2}}));
    auto cut = quadratic;
    EXPECT_EQ(convert_into_linear(cut), 0);
    EXPECT_EQ(cut, (dense2D<unsigned>{{0, 1}, {1, 2}}));
}

TEST(convert, adds_interior_nodes)
{
    auto coords = columns({{0, 0, 0}, {3, 6, 9}, {9, 6, 3}});
    auto const linear = columns<unsigned>({{0, 1}, {2, 1}});
    dense2D<unsigned> cubic;
    ASSERT_EQ(convert_into_high_order(coords, linear, 2, cubic), 0);
    EXPECT_EQ(cubic, (dense2D<unsigned>{{0, 1, 3, 4}, {2, 1, 5, 6}}));
    EXPECT_EQ(coords.sub_matrix(0, 3, 3, 4), (dense2D<double>{{1, 2, 3}, {2, 4, 6}, {7, 6, 5}, {5, 6, 7}}));

    // In place, from elements of any order; what cannot be done leaves all as it was.
    ASSERT_EQ(convert_into_quadratic(coords, cubic), 0);
    EXPECT_EQ(cubic, (dense2D<unsigned>{{0, 1, 7}, {2, 1, 8}}));
    EXPECT_EQ(convert_into_high_order(coords, cubic, 0), 0);
    EXPECT_EQ(convert_into_high_order(coords, cubic, 4294967295), -199);
    cubic(1, 1) = 9;
    EXPECT_EQ(convert_into_cubic(coords, cubic), -2);
    EXPECT_EQ(convert_into_high_order(coords, cubic, 4294967295), -2);
    EXPECT_EQ(cubic, (dense2D<unsigned>{{0, 1, 7}, {2, 9, 8}}));
    EXPECT_EQ(coords.cols(), 9U);
}

TEST(flip, reverses_columns)
{
    for (auto const& [mesh, flipped] :
        {std::pair<element_list, element_list>({{0, 1, 5}, {1, 2, 6}}, {{5, 1, 0}, {6, 2, 1}}),
            {{{0, 1}, {1, 2}}, {{1, 0}, {2, 1}}}, {{}, {}}}) {
        auto connect = columns<unsigned>(mesh);
        EXPECT_EQ(flip(connect), 0);
        EXPECT_EQ(connect, columns(flipped));
    }
}

TEST(mesh_reorient, turns_elements_like_the_first)
{
    element_list const line = {{0, 1}, {2, 1}, {2, 3}};
    element_list const parts = {{0, 1}, {2, 1}, {5, 6}, {7, 6}, {9, 8}, {9, 10}};
    struct
    {
        element_list mesh;
        unsigned start;
        int all_components, turns;
        element_list expected,
            sides = {}; // neighbours if they are told: each end is followed once, first come first
    } const rows[] = {
        {line, 0, 0, 1, {{0, 1}, {1, 2}, {2, 3}}},
        {line, 1, 0, 2, {{1, 0}, {2, 1}, {3, 2}}},
        {{{0, 1}, {2, 1}, {2, 0}}, 1, 0, 2, {{1, 0}, {2, 1}, {0, 2}}},
        {parts, 2, 0, 1, {{0, 1}, {2, 1}, {5, 6}, {6, 7}, {9, 8}, {9, 10}}},
        {parts, 3, 0, 1, {{0, 1}, {2, 1}, {6, 5}, {7, 6}, {9, 8}, {9, 10}}},
        {parts, 2, 1, 2, {{0, 1}, {2, 1}, {5, 6}, {6, 7}, {9, 8}, {10, 9}}},
        {{{0, 1}, {0, 1}, {1, 0}}, 0, 0, 2, {{0, 1}, {0, 1}, {1, 0}}, {{2, 1}, {2, 0}, {1, 1}}},
        {{{2, 1}, {3, 0}, {1, 2}, {1, 0}, {3, 1}}, 0, 0, 4, {{2, 1}, {0, 3}, {2, 1}, {1, 0}, {3, 1}},
            {{3, 2}, {3, 4}, {0, 4}, {1, 2}, {2, 1}}},
        {{{0, 1}, {4294967294, 2}, {3, 2}}, 0, -1, 1, {{0, 1}, {4294967294, 2}, {2, 3}},
            {{9, 9}, {2, 9}, {1, 9}}},
    };
    for (auto const& row : rows) {
        auto mesh = columns(row.mesh), sides = columns(row.sides);
        bool const are_told = !row.sides.empty();
        if (!are_told) sides = neighbors_of(mesh);
        EXPECT_EQ(mesh_reorient(mesh, sides, row.start, row.all_components), row.turns) << &row - rows;
        EXPECT_EQ(mesh, columns(row.expected)) << &row - rows;
        EXPECT_TRUE(are_told || sides == neighbors_of(mesh)); // kept in step
    }

    auto connect = columns(line);
    auto neighbors = columns<unsigned>({{1, 9}, {2, 0}, {9, 1}}); // the second column the wrong way round
    EXPECT_EQ(mesh_reorient(connect, neighbors, 0, 0), -2);
    EXPECT_EQ(connect(0, 1), 1U); // turned before that
}

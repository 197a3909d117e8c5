#include <gtest/gtest.h>

#include <vornik/toolkit.h>

#include "support.h"

using namespace trelk;

TEST(toolkit, checks_node_numbers)
{
    EXPECT_TRUE(vornik::check_IDs(nodes({}), 0));
    EXPECT_TRUE(vornik::check_IDs(nodes({0, 2}), 3));
    EXPECT_FALSE(vornik::check_IDs(nodes({0, 3}), 3));

    auto const edge = vornik::element_type::edge;
    dense2D<unsigned> connect;
    EXPECT_TRUE(vornik::check_IDs(connect, edge, 0));
    ASSERT_TRUE(connect.resize(3, 2, 1));
    connect(2, 1) = 99; // an interior node, which is not looked at
    EXPECT_TRUE(vornik::check_IDs(connect, edge, 2));
    EXPECT_FALSE(vornik::check_IDs(connect, edge, 1));
    EXPECT_FALSE(vornik::check_IDs(connect.sub_matrix(0, 0, 1, 2), edge, 100));
}

TEST(toolkit, usable_targets_are_positive_and_finite)
{
    EXPECT_TRUE(vornik::are_valid_metrics(reals({1e-320, 1, 1e308})));
    for (double const bad : {0.0, -0.0, -1.0, infinity, not_a_number})
        EXPECT_FALSE(vornik::are_valid_metrics(reals({1, bad}))) << bad;

    // In space: l l^T with unit diagonal, but for one pivot.
    auto const pivots = [](double p0, double p1, double p2) -> std::vector<double> {
        return {p0, 2 * p0, 4 * p0 + p1, 3 * p0, 6 * p0 + 5 * p1, 9 * p0 + 25 * p1 + p2};
    };
    EXPECT_TRUE(vornik::are_valid_metrics(columns({{2, 1, 1}, {1, 0, 1e-9}})));
    EXPECT_TRUE(vornik::are_valid_metrics(columns({pivots(1, 1, 1)})));
    for (auto const& bad : {std::vector<double>{1, 1, 1}, {-1, 0, -1}, {1, not_a_number, 1}, {infinity, 0, 1},
             {1, 0}, {1, 0, 1, 0}, pivots(-1, 1, 1), pivots(1, -1, 1), pivots(1, 1, -1)})
        EXPECT_FALSE(vornik::are_valid_metrics(columns({bad}))) << testing::PrintToString(bad);
}

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

TEST(toolkit, the_lower_of_two_bounds_counts)
{
    for (auto const& [first, second] : {std::pair(0.5, 2.0), {2.0, 0.5}}) {
        symmetric_fixed<double, 2> metric{0.01, 0, 100}; // sizes 10 and 0.1
        vornik::bound_metric(metric, first, second);
        EXPECT_DOUBLE_EQ(metric[0], 4);
        EXPECT_DOUBLE_EQ(metric[2], 100);
    }
}

TEST(toolkit, refuses_what_is_no_line_mesh)
{
    auto const edge = vornik::element_type::edge;
    auto const line = columns<unsigned>({{0, 1}, {1, 2}});
    auto const one_row = columns<unsigned>({{0, 1}}).sub_matrix(0, 0, 1, 1);
    auto const colors = nodes({3, 4});
    auto const neighbors = columns<unsigned>({{1, 9}, {9, 0}});
    dense2D<unsigned> result = line;
    EXPECT_EQ(vornik::get_neighbors({}, edge, false, result), 0);
    EXPECT_TRUE(result.empty());
    EXPECT_EQ(vornik::get_neighbors(one_row, edge, false, result), -1);
    EXPECT_EQ(vornik::get_colors_boundaries(line, neighbors, colors, edge, false, false, result), 0);
    EXPECT_EQ(values_of(result), (std::vector<std::vector<unsigned>>{{1}}));
    EXPECT_EQ(vornik::get_colors_boundaries({}, neighbors, colors, edge, false, false, result), 0);
    EXPECT_TRUE(result.empty());
    EXPECT_EQ(vornik::get_colors_boundaries(one_row, neighbors, colors, edge, false, false, result), -1);
    for (auto const& wrong : {neighbors.sub_matrix(0, 0, 2, 1), neighbors.sub_matrix(0, 0, 1, 2)})
        EXPECT_EQ(vornik::get_colors_boundaries(line, wrong, colors, edge, false, false, result), -2);
}

TEST(toolkit, gradation_passes_over_what_it_cannot_bound)
{
    auto const edge = vornik::element_type::edge;
    auto const coords = columns({{0, 0}, {1, 0}});
    auto const beyond = columns<unsigned>({{0, 2}, {2, 1}});
    auto const pair = columns<unsigned>({{0, 1}});
    auto const flat = columns({{1, 0, 1}, {1e-4, 0, 1e-4}});
    auto const deep = columns({{1, 0, 1, 0, 0, 1}, {1e-4, 0, 1e-4, 0, 0, 1e-4}});
    for (auto const& [mesh, growth] :
        {std::pair(beyond, 0.3), {pair, -1.0}, {pair, not_a_number}, {pair.sub_matrix(0, 0, 1, 1), 0.3}}) {
        auto sizes = reals({1, 100});
        auto metrics = columns(values_of(flat));
        vornik::bound_metric_gradations(coords, mesh, edge, {}, true, -1, growth, sizes);
        vornik::bound_metric_gradations(coords, mesh, edge, {}, true, 0, growth, metrics);
        EXPECT_EQ(sizes[1], 100);
        EXPECT_EQ(values_of(metrics), values_of(flat));
    }
    for (auto const& [rows, tensors] : {std::pair(2U, deep), {3U, flat}}) { // tensors of the other dimension
        auto points = columns({std::vector<double>(rows, 0), std::vector<double>(rows, 1)});
        auto metrics = columns(values_of(tensors));
        vornik::bound_metric_gradations(points, pair, edge, {}, true, 0, 0.3, metrics);
        EXPECT_EQ(values_of(metrics), values_of(tensors));
    }
    auto metrics = columns(values_of(flat));
    vornik::bound_metric_gradations(columns({{0, 0}, {infinity, 0}}), pair, edge, {}, true, 0, 0.3, metrics);
    EXPECT_EQ(values_of(metrics), values_of(flat));
}

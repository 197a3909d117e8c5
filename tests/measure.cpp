#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include <vornik1d/vornik1d.h>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

TEST(curvatures, of_known_chains)
{
    dense1D<double> c;
    auto const corner = columns({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {1, 0, 0.5}, {1, 0, 0.5}, {1, 0, 9}});
    ASSERT_EQ(curvatures(corner, nodes({0, 1, 2}), c), 0);
    for (double const v : c) EXPECT_DOUBLE_EQ(v, std::sqrt(2.0));
    ASSERT_EQ(curvatures(corner, nodes({1, 2, 3, 4, 5}), c), 0); // a reversal, then a repeated node
    EXPECT_EQ(values_of(c), (std::vector<double>{4 / 1.5, 4 / 1.5, 0, 0, 0}));
    ASSERT_EQ(curvatures(corner, nodes({0, 2}), c), 0);
    EXPECT_EQ(values_of(c), (std::vector<double>{0, 0}));

    constexpr unsigned n = 100;
    dense2D<double> circle;
    ASSERT_TRUE(circle.resize(2, n));
    for (unsigned k = 0; k < n; ++k) {
        circle(0, k) = 5 * std::cos(2 * std::numbers::pi * k / n);
        circle(1, k) = 5 * std::sin(2 * std::numbers::pi * k / n);
    }
    ASSERT_EQ(curvatures(circle, nodes_up_to(n), c), 0);
    for (double const v : c) EXPECT_NEAR(v, 1 / 5.0, 1e-12); // exact for an inscribed polygon
}

TEST(curvatures, statuses)
{
    auto c = reals({1, 2});
    EXPECT_EQ(curvatures(columns({{1, 2, 3, 4, 5}}), {}, c), 0);
    EXPECT_TRUE(c.empty());
    c = reals({1, 2});
    EXPECT_EQ(curvatures(columns({{1, 2, 3, 4, 5}}), nodes({0}), c), -1);
    EXPECT_TRUE(c.empty());
    c = reals({1, 2});
    EXPECT_EQ(curvatures(columns({{1, 2}}), nodes({0, 1}), c), -2);
    EXPECT_TRUE(c.empty());
    EXPECT_EQ(curvatures(columns({{1, 2}}), nodes({0}), c), 0);
    EXPECT_EQ(values_of(c), (std::vector<double>{0}));
}

TEST(interpolate_coordinates, agrees_with_linear_search)
{
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        std::size_t const n = 1 + random() % 8;
        std::size_t const m = random() % 12;
        dense2D<double> coords;
        ASSERT_TRUE(coords.resize(1 + random() % 4, n + m));
        for (std::size_t j = 0; j < n + m; ++j)
            for (std::size_t i = 0; i < coords.rows(); ++i) coords(i, j) = double(random() % 100);
        auto const sorted = [&](std::size_t count) {
            std::vector<double> values(count);
            for (double& v : values) v = double(random() % 12); // repeats, and some beyond the chain
            std::sort(values.begin(), values.end());
            return values;
        };
        auto const params = sorted(n);
        auto const new_params = sorted(m);
        std::vector<unsigned> targets(m);
        for (unsigned& t : targets) t = unsigned(random() % (n + m)); // chain nodes among them

        auto expected = values_of(coords);
        for (std::size_t k = 0; k < m; ++k) {
            std::size_t at = 0;
            while (at < n && params[at] < new_params[k]) ++at;
            auto const from = expected[at == n ? n - 1 : at == 0 ? 0 : at - 1];
            auto const to = expected[std::min(at, n - 1)];
            double const r =
                at == 0 || at == n ? 0 : (new_params[k] - params[at - 1]) / (params[at] - params[at - 1]);
            for (std::size_t i = 0; i < coords.rows(); ++i)
                expected[targets[k]][i] = (to[i] - from[i]) * r + from[i];
        }
        ASSERT_EQ(interpolate_coordinates(
                      coords, nodes_up_to(unsigned(n)), list(params), list(targets), list(new_params)),
            0);
        ASSERT_EQ(values_of(coords), expected);
    }
}

TEST(interpolate_coordinates, statuses)
{
    auto coords = columns({{0, 0}, {2, 4}, {9, 9}});
    auto const before = values_of(coords);
    EXPECT_EQ(interpolate_coordinates(coords, nodes({0, 1}), reals({0}), nodes({2}), reals({1, 0})), -2);
    EXPECT_EQ(interpolate_coordinates(coords, nodes({0, 1}), reals({1, 0}), nodes({2}), reals({})), -3);
    EXPECT_EQ(
        interpolate_coordinates(coords, nodes({0, 1}), reals({0, not_a_number}), nodes({2}), reals({})), -3);
    EXPECT_EQ(interpolate_coordinates(coords, nodes({0, 1}), reals({0, 1}), nodes({2}), reals({1, 0})), -4);
    EXPECT_EQ(
        interpolate_coordinates(coords, nodes({0, 1}), reals({0, 1}), nodes({2, 2}), reals({1, 0})), -5);
    EXPECT_EQ(interpolate_coordinates(coords, {}, {}, nodes({2}), reals({1})), 0);
    EXPECT_EQ(interpolate_coordinates(coords, nodes({0, 7}), reals({0, 1}), nodes({2, 7}), reals({1, 1})), 0);
    EXPECT_EQ(values_of(coords), before);
    EXPECT_EQ(interpolate_coordinates(coords, nodes({0, 7}), reals({0, 1}), nodes({7, 2}), reals({0, 0})), 0);
    EXPECT_EQ(coords(0, 2), 0); // passed over the first, moved the second
}

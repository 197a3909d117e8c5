#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

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
    ASSERT_EQ(curvatures(arc(50, 6), nodes_up_to(51), c), 0);
    for (double const v : c) EXPECT_NEAR(v, 1, 1e-12); // exact for equal chords of a circle
}

TEST(curvatures, statuses)
{
    auto const status = [](dense2D<double> const& coords, dense1D<unsigned> const& chain) {
        dense1D<double> result;
        int const code = curvatures(coords, chain, result);
        EXPECT_EQ(result.size(), code == 0 ? chain.size() : 0U);
        return code;
    };
    EXPECT_EQ(status(columns({{1, 2, 3, 4, 5}}), nodes({})), 0);
    EXPECT_EQ(status(columns({{1, 2, 3, 4, 5}}), nodes({0})), -1);
    EXPECT_EQ(status(columns({{1, 2}}), nodes({0, 1})), -2);
    EXPECT_EQ(status(columns({{1, 2}}), nodes({0})), 0);
    auto const line = arc(5, 1);
    auto const chain = nodes_up_to(6);
    failing_allocations const none(0, failing_allocations::extent::all_behind);
    EXPECT_EQ(status(line, chain), -199);
}

TEST(interpolate_coordinates, agrees_with_linear_search)
{
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        std::size_t const n = 1 + random() % 8;
        std::size_t const m = random() % 12;
        std::vector<std::vector<double>> expected(n + m, std::vector<double>(1 + random() % 4));
        for (auto& point : expected)
            for (double& x : point) x = double(random() % 100);
        auto coords = columns(expected);
        auto const sorted = [&](std::size_t count) { // with repeats, and some beyond the chain
            std::vector<double> values(count);
            for (double& v : values) v = double(random() % 12);
            std::sort(values.begin(), values.end());
            return values;
        };
        auto const params = sorted(n);
        auto const new_params = sorted(m);
        std::vector<unsigned> targets(m);
        for (unsigned& t : targets) t = unsigned(random() % (n + m)); // chain nodes among them

        for (std::size_t k = 0; k < m; ++k) {
            std::size_t at = 0;
            while (at < n && params[at] < new_params[k]) ++at;
            bool const is_inside = at > 0 && at < n;
            auto const from = expected[is_inside ? at - 1 : std::min(at, n - 1)];
            auto const to = expected[std::min(at, n - 1)];
            double const r = is_inside ? (new_params[k] - params[at - 1]) / (params[at] - params[at - 1]) : 0;
            for (std::size_t i = 0; i < from.size(); ++i)
                expected[targets[k]][i] = (to[i] - from[i]) * r + from[i];
        }
        ASSERT_EQ(
            interpolate_coordinates(coords, nodes_up_to(n), list(params), list(targets), list(new_params)),
            0);
        ASSERT_EQ(values_of(coords), expected);
    }
}

TEST(interpolate_coordinates, statuses)
{
    auto coords = columns({{0, 0}, {2, 4}, {9, 9}});
    auto const before = values_of(coords);
    auto const status = [&](std::vector<unsigned> const& chain, std::vector<double> const& params,
                            std::vector<unsigned> const& targets, std::vector<double> const& new_params) {
        return interpolate_coordinates(coords, list(chain), list(params), list(targets), list(new_params));
    };
    EXPECT_EQ(status({0, 1}, {0}, {2}, {1, 0}), -2);
    EXPECT_EQ(status({0, 1}, {1, 0}, {2}, {}), -3);
    EXPECT_EQ(status({0, 1}, {0, not_a_number}, {2}, {}), -3);
    EXPECT_EQ(status({0, 1}, {0, 1}, {2}, {1, 0}), -4);
    EXPECT_EQ(status({0, 1}, {0, 1}, {2, 2}, {1, 0}), -5);
    EXPECT_EQ(status({}, {}, {2}, {1}), 0);
    EXPECT_EQ(status({0, 7}, {0, 1}, {2, 7}, {1, 1}), 0);
    EXPECT_EQ(values_of(coords), before);
    EXPECT_EQ(status({1, 7}, {0, 1}, {7, 2}, {0, 0}), 0); // passes over the first, moves the second
    EXPECT_EQ(coords(1, 2), 4);
}

#include <gtest/gtest.h>

#include <cmath>

#include <vornik/toolkit.h>
#include <vornik1d/helpers.h>

#include "support.h"

using namespace trelk;

constexpr auto edge = vornik::element_type::edge;

TEST(toolkit, usable_targets_are_positive_and_finite)
{
    EXPECT_TRUE(vornik::are_valid_metrics(reals({1e-320, 1, 1e308})));
    for (double const bad : {0.0, -0.0, -1.0, infinity, not_a_number})
        EXPECT_FALSE(vornik::are_valid_metrics(reals({1, bad}))) << bad;

    EXPECT_TRUE(vornik::are_valid_metrics(columns({{2, 1, 1}, {1, 0, 1e-9}, {4, 4, 4.1}})));
    // In space, but for the last pivot: [4 4 6; 4 5 8; 6 8 13].
    EXPECT_TRUE(vornik::are_valid_metrics(columns({{4, 4, 5, 6, 8, 13.1}})));
    for (auto const& bad : {std::vector<double>{1, 1, 1}, {-1, 0, -1}, {1, not_a_number, 1}, {infinity, 0, 1},
             {4, 4, 3.9}, {1, 0}, {1, 0, 1, 0}, {4, 4, 5, 6, 8, 12.9}, {4, 4, 3.9, 6, 8, 99},
             {-4, -4, -3, 6, 8, 13.1}, {1, 0, 1, 0, 0, infinity}})
        EXPECT_FALSE(
            vornik::are_valid_metrics(columns({{1, 0, 1, 0, 0, 1}, bad}).sub_matrix(0, 1, bad.size(), 1)))
            << testing::PrintToString(bad);
}

TEST(toolkit, neighbors_agree_with_brute_force)
{
    random_numbers random(4);
    for (unsigned trial = 0; trial < 300; ++trial) {
        element_list mesh(1 + random.below(30));
        unsigned const factor = trial % 2 == 0 ? 1 : 120'000'000; // near numbers and far ones
        for (auto& ends : mesh) ends = {random.below(35) * factor + 7, random.below(35) * factor + 7};
        element_list expected(mesh.size());
        for (std::size_t e = 0; e < mesh.size(); ++e)
            for (std::size_t i = 0; i < 2; ++i) {
                numbers owners;
                for (unsigned f = 0; f < mesh.size(); ++f)
                    for (unsigned const end : mesh[f])
                        if (end == mesh[e][1 - i]) owners.push_back(f);
                bool const is_pair = owners.size() == 2 && owners[0] != owners[1];
                expected[e].push_back(is_pair ? owners[owners[0] == e ? 1 : 0] : vornik::none);
            }
        ASSERT_EQ(vornik1d::neighbors_of(columns(mesh)), columns(expected));
    }
    EXPECT_TRUE(vornik1d::neighbors_of(columns<unsigned>({{1}, {2}})).empty());
    auto const line = columns<unsigned>({{0, 1}, {1, 2}}), too_few = columns<unsigned>({{1, 9}});
    dense2D<unsigned> ends;
    EXPECT_EQ(vornik::get_colors_boundaries(line, too_few, {3, 4}, edge, false, false, ends), -2);
}

TEST(toolkit, gradation_bounds_growth_along_edges)
{
    random_numbers random(3);
    std::size_t const n = 40;
    auto const coords = arc(n, 3, 3);
    dense2D<unsigned> edges;
    ASSERT_EQ(vornik1d::indices_to_connectE2(nodes_up_to(n + 1), edges), 0);
    ASSERT_TRUE(edges.resize(2, n + 1, 4000000000)); // the last one is passed over
    dense1D<double> sizes(n + 1);
    for (double& h : sizes) h = random.between(0.01, 2);
    std::vector<double> const asked(sizes.begin(), sizes.end());
    dense2D<double> metrics;
    ASSERT_TRUE(vornik::metrics_iso_to_aniso3d(sizes, metrics));
    vornik::bound_metric_gradations(coords, edges, edge, {}, true, -1, 0.3, sizes);
    vornik::bound_metric_gradations(coords, edges, edge, {}, true, 0, 0.3, metrics);
    auto flat = metrics.sub_matrix(0, 0, 3, n + 1); // tensors of the plane in space
    vornik::bound_metric_gradations(coords, edges, edge, {}, true, 0, 0.1, flat);
    double const step = 2 * std::sin(1.5 / double(n));
    for (std::size_t k = 0; k <= n; ++k) {
        double least = infinity;
        for (std::size_t i = 0; i <= n; ++i)
            least = std::min(least, asked[i] + 0.3 * step * std::abs(double(i) - double(k)));
        EXPECT_NEAR(sizes[k], least, 1e-12);
        EXPECT_NEAR(1 / std::sqrt(metrics(5, k)), least, 1e-9);
    }
    vornik::bound_metric_gradations(coords, edges, edge, {}, true, -1, 0, sizes); // no growth at all
    EXPECT_EQ(*std::max_element(sizes.begin(), sizes.end()), *std::min_element(asked.begin(), asked.end()));
}

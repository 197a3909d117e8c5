#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "metric/complete_frame.h"
#include "metric/tensor.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

// The size that a tensor asks for along a unit vector.
template <std::size_t N>
static double size_along(dense2D<double> const& metrics, std::size_t node, vector<N> const& d)
{
    return 1 / std::sqrt(quadratic_form(metrics.col(node), d));
}

TEST(complete_frame, is_right_handed_and_orthonormal)
{
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    for (int trial = 0; trial < 100; ++trial) {
        vector<3> t{normal(random), normal(random), normal(random)};
        vector<3> u{normal(random), normal(random), normal(random)};
        vector<3> w{};
        if (trial % 3 == 0) u = {};
        if (trial % 3 == 1) t = {0, -3, 0}, u = {0, 5, 0};
        if (trial % 10 == 0) t = {};
        auto const hint = u;
        auto const along = t;
        complete_frame(t, u, w);
        EXPECT_NEAR(norm(t), 1, 1e-15);
        EXPECT_NEAR(norm(u), 1, 1e-15);
        EXPECT_NEAR(norm(cross(t, u) - w), 0, 1e-15);
        EXPECT_NEAR(dot(t, u), 0, 1e-15);
        EXPECT_GE(dot(u, hint), 0);
        EXPECT_GE(dot(t, along), 0);
    }
    vector<3> t{0, 0, 2};
    vector<3> u{};
    vector<3> w{};
    complete_frame(t, u, w);
    EXPECT_EQ(u[0], 1);
    EXPECT_EQ(w[1], 1);
    t = u = {};
    complete_frame(t, u, w);
    EXPECT_EQ(t[0], 1);
}

TEST(metrics_gen, from_directions)
{
    auto const directions = columns({{1, 0}, {0.6, 0.8}, {0, 2}});
    dense2D<double> metrics = columns({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {5, 6, 7}});
    ASSERT_EQ(metrics_gen_aniso2d(directions, nodes({1, 2, 1}), 0.5, 2, metrics), 0);
    ASSERT_EQ(metrics.cols(), 5U);
    EXPECT_NEAR((size_along<2>(metrics, 1, {0.6, 0.8})), 0.5, 1e-15);
    EXPECT_NEAR((size_along<2>(metrics, 1, {-0.8, 0.6})), 2, 1e-14);
    EXPECT_NEAR((size_along<2>(metrics, 2, {0, 1})), 0.25, 1e-15); // the vector is 2 long
    EXPECT_EQ(values_of(metrics)[0], (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(values_of(metrics)[4], (std::vector<double>{5, 6, 7}));

    auto const before = values_of(metrics);
    auto const run = [&](dense2D<double> const& d, unsigned node, double along, double across) {
        return metrics_gen_aniso2d(d, nodes({node}), along, across, metrics);
    };
    EXPECT_EQ(metrics_gen_aniso2d(metrics, nodes({}), -1, -1, metrics), 0);
    EXPECT_EQ(run(metrics, 9, -1, -1), -1);
    EXPECT_EQ(run(directions, 3, -1, -1), -2);
    EXPECT_EQ(run(directions, 2, not_a_number, -1), -3);
    EXPECT_EQ(run(directions, 2, 1, 0), -4);
    EXPECT_EQ(values_of(metrics), before);
    ASSERT_TRUE(metrics.resize(2, 3));
    EXPECT_EQ(run(directions, 2, 1, 1), -5);
}

TEST(metrics_gen, from_random_elements)
{
    std::mt19937 random(8);
    std::normal_distribution<double> normal;
    for (int trial = 0; trial < 200; ++trial) {
        vector<3> const a{normal(random), normal(random), normal(random)};
        vector<3> const b{normal(random), normal(random), normal(random)};
        auto const coords = columns({{a[0], a[1], a[2]}, {b[0], b[1], b[2]}});
        auto const connect = columns<unsigned>({{0, 1}});
        vector<3> t = b - a;
        double const length = norm(t);
        double const size = trial % 3 == 0 ? -0.3 : trial % 3 == 1 ? 0.7 : 0;
        double const across = size < 0 ? 0.3 * length : size > 0 ? size : length;
        dense2D<double> metrics, two_sizes;
        ASSERT_EQ(metrics_gen_aniso3d(coords, connect, size, metrics), 0);
        ASSERT_EQ(metrics_gen_aniso3d(coords, connect, size, -0.1, two_sizes), 0);
        vector<3> u{normal(random), normal(random), normal(random)};
        vector<3> w{};
        complete_frame(t, u, w);
        for (std::size_t node = 0; node < 2; ++node) {
            EXPECT_NEAR(size_along<3>(metrics, node, t), length, 1e-12 * length);
            EXPECT_NEAR(size_along<3>(metrics, node, u), across, 1e-11 * across);
            EXPECT_NEAR(size_along<3>(two_sizes, node, w), std::max(across, 0.1 * length), 1e-11 * across);
        }
        // Of a tensor that was there and the new one the finer counts.
        for (double const h : {0.1 * std::min(across, length), 10 * std::max(across, length)}) {
            double const q = 1 / (h * h);
            auto merged = columns({{q, 0, q, 0, 0, q}});
            ASSERT_EQ(metrics_gen_aniso3d(coords, connect, size, merged), 0);
            EXPECT_EQ(merged.cols(), 2U);
            EXPECT_NEAR(size_along<3>(merged, 0, t), std::min(h, length), 1e-9 * length);
            EXPECT_NEAR(size_along<3>(merged, 0, u), std::min(h, across), 1e-9 * across);
        }
        // In the plane, by the projection.
        vector<2> d{b[0] - a[0], b[1] - a[1]};
        double const flat = norm(d);
        metrics.clear();
        ASSERT_EQ(metrics_gen_aniso2d(coords, connect, -2, metrics), 0);
        EXPECT_NEAR((size_along<2>(metrics, 1, d * (1 / flat))), flat, 1e-12 * flat);
        EXPECT_NEAR((size_along<2>(metrics, 1, {-d[1] / flat, d[0] / flat})), 2 * flat, 1e-11 * flat);
        ASSERT_EQ(metrics_gen_aniso2d(coords, connect, flat, metrics), 0); // the finer across counts
        EXPECT_NEAR((size_along<2>(metrics, 1, {-d[1] / flat, d[0] / flat})), flat, 1e-9 * flat);
    }
}

TEST(metrics_gen, bends_have_a_plane)
{
    // A right angle in the plane z = 0, with directions of travel that oppose each other, and a straight
    // piece.
    auto const coords = columns({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 2, 0}});
    for (auto const& mesh :
        {std::vector<std::vector<unsigned>>{{0, 1}, {1, 2}, {2, 3}}, {{1, 0}, {1, 2}, {3, 2}}}) {
        dense2D<double> metrics;
        ASSERT_EQ(metrics_gen_aniso3d(coords, columns(mesh), 0.1, 0.5, metrics), 0);
        EXPECT_NEAR((size_along<3>(metrics, 1, {0, 0, 1})), 0.5, 1e-12);
        EXPECT_NEAR((size_along<3>(metrics, 1, {1, 0, 0})), 0.1, 1e-12);
        EXPECT_NEAR((size_along<3>(metrics, 1, {0, 1, 0})), 0.1, 1e-12);
        EXPECT_NEAR((size_along<3>(metrics, 2, {1, 0, 0})), 0.5, 1e-12);
        EXPECT_NEAR((size_along<3>(metrics, 0, {0, 1, 0})), 0.5, 1e-12);
    }
    // A neighbour of length 0 counts as a bend without a plane; an element of length 0 gives nothing.
    auto const folded = columns({{0, 0, 0}, {0, 0, 1}, {0, 0, 1}});
    dense2D<double> metrics;
    ASSERT_EQ(metrics_gen_aniso3d(folded, columns<unsigned>({{0, 1}, {1, 2}}), 0.1, 0.5, metrics), 0);
    EXPECT_NEAR((size_along<3>(metrics, 1, {1, 0, 0})), 0.1, 1e-12);
    EXPECT_NEAR((size_along<3>(metrics, 1, {0, 1, 0})), 0.5, 1e-12);
    EXPECT_EQ(metrics(5, 2), 0);

    auto const connect = columns<unsigned>({{0, 3}});
    auto wrong = columns({{1, 0, 1}});
    dense2D<unsigned> const no_elements;
    EXPECT_EQ(metrics_gen_aniso2d(wrong, no_elements, 1, wrong), 0);
    EXPECT_EQ(metrics_gen_aniso3d(wrong, no_elements, 1, wrong), 0);
    EXPECT_EQ(metrics_gen_aniso3d(wrong, no_elements, 1, 1, wrong), 0);
    EXPECT_EQ(metrics_gen_aniso3d(columns({{0, 0}}), connect, 1, wrong), -1);
    EXPECT_EQ(metrics_gen_aniso3d(columns({{0, 0}}), connect, 1, 1, wrong), -1);
    EXPECT_EQ(metrics_gen_aniso3d(folded, connect, 1, wrong), -2);
    EXPECT_EQ(metrics_gen_aniso3d(folded, connect, 1, 1, wrong), -2);
    EXPECT_EQ(metrics_gen_aniso2d(coords, columns<unsigned>({{0, 1, 2}}), 1, wrong), -2);
    EXPECT_EQ(metrics_gen_aniso3d(coords, connect, 1, wrong), -4);
    EXPECT_EQ(metrics_gen_aniso3d(coords, connect, 1, 1, wrong), -4);
    wrong = columns({{1, 0}});
    EXPECT_EQ(metrics_gen_aniso2d(coords, connect, 1, wrong), -4);
    EXPECT_EQ(metrics_gen_aniso2d(columns({{0}}), connect, 1, wrong), -1);
    wrong.clear();
    ASSERT_TRUE(wrong.resize(0, 4)); // no columns, whatever their number says
    EXPECT_EQ(metrics_gen_aniso2d(columns({{infinity, 0}}), nodes({0}), infinity, infinity, wrong), 0);
    EXPECT_EQ(values_of(wrong)[0], (std::vector<double>{0, 0, 0}));
    wrong.clear();
    ASSERT_EQ(metrics_gen_aniso2d(coords, columns<unsigned>({{0, 2}}), not_a_number, wrong), 0);
    EXPECT_NEAR((size_along<2>(wrong, 0, {-std::sqrt(0.5), std::sqrt(0.5)})), std::sqrt(2), 1e-14);
    // A bend begins at an angle of 1e-12.
    for (double const off : {0.0, 4e-13, 7e-13}) {
        wrong.clear();
        auto const bent = columns({{0, 0, 0}, {1, 0, 0}, {3, 2 * off, 0}});
        ASSERT_EQ(metrics_gen_aniso3d(bent, columns<unsigned>({{0, 1}, {1, 2}}), 0.1, 0.5, wrong), 0);
        EXPECT_NEAR((size_along<3>(wrong, 1, {0, 1, 0})), off > 5e-13 ? 0.1 : 0.5, 1e-9);
    }
    // Of elements cut to their ends, inner nodes that still lie in their storage do not count.
    auto cut = columns<unsigned>({{0, 1, 99}, {1, 2, 99}});
    ASSERT_EQ(vornik1d::convert_into_linear(cut), 0);
    wrong.clear();
    ASSERT_EQ(metrics_gen_aniso2d(coords, cut, 1, wrong), 0);
    EXPECT_EQ(wrong.cols(), 3U);
    // What has no finite length asks for nothing.
    dense2D<double> of_infinite;
    auto const endless = columns({{0, 0, 0}, {infinity, 0, 0}});
    ASSERT_EQ(metrics_gen_aniso3d(endless, columns<unsigned>({{0, 1}}), 1, of_infinite), 0);
    EXPECT_EQ(values_of(of_infinite), (std::vector<std::vector<double>>(2, std::vector<double>(6, 0))));
}

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "arrays/vectors.h"
#include "metric/tensor.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

// Expects the size `along` in the direction of t, and `across` in all others.
template <std::size_t N>
static void expect_sizes(double const* metric, vector<N> t, double along, double across)
{
    t = t * (1 / norm(t));
    double const low = 1 / (across * across), high = 1 / (along * along);
    for (std::size_t j = 0, k = 0; j < N; ++j)
        for (std::size_t i = 0; i <= j; ++i, ++k)
            EXPECT_NEAR(
                metric[k], (high - low) * t[i] * t[j] + (i == j ? low : 0), 1e-9 * std::max(low, high));
}

TEST(metrics_gen, from_directions)
{
    auto const directions = columns({{1, 0}, {0.6, 0.8}, {0, 2}});
    dense2D<double> metrics = columns({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {5, 6, 7}});
    ASSERT_EQ(metrics_gen_aniso2d(directions, nodes({1, 2, 1}), 0.5, 2, metrics), 0);
    ASSERT_EQ(metrics.cols(), 5U);
    expect_sizes<2>(metrics.col(1), {0.6, 0.8}, 0.5, 2);
    expect_sizes<2>(metrics.col(2), {0, 1}, 0.25, 1); // the vector is 2 long
    EXPECT_EQ(metrics.sub_matrix(0, 0, 3, 1), dense2D<double>(3, 1));
    EXPECT_EQ(metrics.sub_matrix(0, 4, 3, 1), (dense2D<double>{{5, 6, 7}}));

    ASSERT_TRUE(metrics.resize(0, 4)); // no columns, whatever their number says
    EXPECT_EQ(metrics_gen_aniso2d(columns({{infinity, 0}}), nodes({0}), infinity, infinity, metrics), 0);
    EXPECT_EQ(metrics, (dense2D<double>{{0, 0, 0}}));
}

TEST(metrics_gen, from_random_elements)
{
    random_numbers random(8);
    auto const any = [&] { return random.between(-1, 1); };
    auto const connect = columns<unsigned>({{0, 1}});
    for (int trial = 0; trial < 200; ++trial) {
        auto const coords = columns({{any(), any(), any()}, {any(), any(), any()}});
        auto const t = edge_vector<3>(coords.col(0), coords.col(1));
        auto const flat = edge_vector<2>(coords.col(0), coords.col(1));
        // An absolute size across, one relative to the length, or the length.
        double const size = trial % 4 == 0 ? -0.3 : trial % 4 == 1 ? 0.7 : trial % 4 == 2 ? 0 : not_a_number;
        auto const across = [size](double length) {
            return size < 0 ? 0.3 * length : size > 0 ? size : length;
        };
        dense2D<double> in_space, by_two, in_plane;
        ASSERT_EQ(metrics_gen_aniso3d(coords, connect, size, in_space), 0);
        ASSERT_EQ(metrics_gen_aniso3d(coords, connect, size, -0.1, by_two), 0); // straight: the larger one
        ASSERT_EQ(metrics_gen_aniso2d(coords, connect, size, in_plane), 0);     // by the projection
        double const length = norm(t), wide = across(length);
        for (std::size_t node = 0; node < 2; ++node) {
            expect_sizes(in_space.col(node), t, length, wide);
            expect_sizes(by_two.col(node), t, length, std::max(wide, 0.1 * length));
            expect_sizes(in_plane.col(node), flat, norm(flat), across(norm(flat)));
        }
        // Of a tensor that was there and the new one the finer counts.
        for (double const h :
            {0.1 * std::min(wide, length), 0.5 * (wide + length), 10 * std::max(wide, length)}) {
            double const q = 1 / (h * h);
            auto merged = columns({{q, 0, q, 0, 0, q}});
            ASSERT_EQ(metrics_gen_aniso3d(coords, connect, size, merged), 0);
            expect_sizes(merged.col(0), t, std::min(h, length), std::min(h, wide));
            expect_sizes(merged.col(1), t, length, wide);
        }
    }
}

TEST(metrics_gen, bends_have_a_plane)
{
    // A right angle, with directions of travel that oppose each other, and a straight piece; in the plane z = 0 and
    // turned about the x axis.
    double const tilts[][2] = {{1, 0}, {0.6, 0.8}};
    for (auto const& [c, s] : tilts)
        for (auto const& mesh : {element_list{{0, 1}, {1, 2}, {2, 3}}, {{1, 0}, {1, 2}, {3, 2}}}) {
            auto const coords = columns({{0, 0, 0}, {1, 0, 0}, {1, c, s}, {1, 2 * c, 2 * s}});
            dense2D<double> metrics;
            ASSERT_EQ(metrics_gen_aniso3d(coords, columns(mesh), 0.1, 0.5, metrics), 0);
            expect_sizes<3>(metrics.col(0), {1, 0, 0}, 1, 0.5);
            expect_sizes<3>(metrics.col(1), {0, -s, c}, 0.5, 0.1); // across the plane of the bend
            expect_sizes<3>(metrics.col(2), {0, c, s}, 1, 0.5);
        }
    // A bend begins at an angle of 1e-12.
    auto const three = columns<unsigned>({{0, 1}, {1, 2}});
    for (double const off : {0.0, 4e-13, 7e-13}) {
        dense2D<double> metrics;
        auto const bent = columns({{0, 0, 0}, {1, 0, 0}, {3, 2 * off, 0}});
        ASSERT_EQ(metrics_gen_aniso3d(bent, three, 0.1, 0.5, metrics), 0);
        EXPECT_NEAR(1 / std::sqrt(metrics(2, 1)), off > 5e-13 ? 0.1 : 0.5, 1e-9);
    }
    // A neighbour of length 0 counts as a bend without a plane; an element of length 0, or of none that is finite,
    // gives nothing.
    dense2D<double> metrics;
    auto const folded = columns({{0, 0, 0}, {0, 0, 1}, {0, 0, 1}});
    ASSERT_EQ(metrics_gen_aniso3d(folded, three, 0.1, 0.5, metrics), 0);
    EXPECT_NEAR(metrics(0, 1) * metrics(2, 1), 1 / (0.01 * 0.25), 1e-9);
    EXPECT_EQ(metrics.sub_matrix(0, 2, 6, 1), dense2D<double>(6, 1));
    metrics.clear();
    ASSERT_EQ(
        metrics_gen_aniso3d(columns({{0, 0, 0}, {infinity, 0, 0}}), columns<unsigned>({{0, 1}}), 1, metrics),
        0);
    EXPECT_EQ(metrics, dense2D<double>(6, 2));
    // Of elements cut to their ends, inner nodes that still lie in their memory do not count.
    auto cut = columns<unsigned>({{0, 1, 99}, {1, 2, 99}});
    metrics.clear();
    ASSERT_EQ(convert_into_linear(cut) + metrics_gen_aniso2d(folded, cut, 1, metrics), 0);
    EXPECT_EQ(metrics.cols(), 3U);
}

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "arrays/append.h"
#include "arrays/columns.h"
#include "place.h"
#include "placement/size_law.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

constexpr std::uint64_t most = UINT64_MAX;

// Integral of 1/h over [u0, u1], h linear from h0 at 0 to h1 at 1: Gauss's rule, 3 points on each of 512
// parts.
static double integral_of_inverse(double h0, double h1, double u0, double u1)
{
    auto const inverse = [&](double u) { return 1 / (h0 + (h1 - h0) * u); };
    double const half = (u1 - u0) / 1024;
    double const off = half * std::sqrt(0.6);
    double sum = 0;
    for (int part = 0; part < 512; ++part) {
        double const middle = u0 + (2 * part + 1) * half;
        sum += 8 * inverse(middle) + 5 * (inverse(middle - off) + inverse(middle + off));
    }
    return sum * half / 9;
}

TEST(size_law, agrees_with_quadrature_on_both_sides_of_every_limit)
{
    for (double const x : {-0.9, -0.75, -0.0101, -0.01, -0.0099, -1e-5, -1.1e-12, -0.9e-12, 0.0}) {
        double const h0 = 3;
        double const h1 = h0 * (1 + x);
        double const mean = integral_of_inverse(h0, h1, 0, 1);
        EXPECT_NEAR(mean_inverse_size(h0, h1) / mean, 1, 6e-13) << x;
        EXPECT_EQ(mean_inverse_size(h0, h1), mean_inverse_size(h1, h0));
        for (double const t : {1e-9, 0.1, 0.5, 0.9, 1 - 1e-9}) {
            double const u = size_law(h0, h1).position(t);
            EXPECT_NEAR(integral_of_inverse(h0, h1, 0, u) / mean, t, 5e-10) << x << ' ' << t;
            EXPECT_NEAR(size_law(h1, h0).position(1 - t), 1 - u, 1e-15) << x << ' ' << t;
        }
    }
    EXPECT_EQ(mean_inverse_size(0, 5), 0);
    EXPECT_EQ(mean_inverse_size(4, 4), 0.25);
    EXPECT_EQ(size_law(2, 2).position(0.3), 0.3);
    EXPECT_EQ(size_law(1, 3).position(1), 1);
    for (double const odd : {0.0, -1.0, infinity, not_a_number, 1e-310, 1e308})
        for (double const u : {size_law(odd, 1).position(0.25), size_law(1, odd).position(0.25)})
            EXPECT_TRUE(u >= 0 && u <= 1) << odd;
}

TEST(element_count, rounds_geometrically_and_clamps_in_order)
{
    struct
    {
        double length;
        std::uint64_t step, multiple;
    } const roundings[] = {{0, 1, 1}, {0.3, 2, 2}, {1.41, 1, 1}, {1.42, 1, 2}, {2.44, 1, 2}, {2.45, 1, 3},
        {5.477225575051661, 1, 6}, {2.82, 2, 2}, {2.83, 2, 4}, {1e6 + 0.4999, 1, 1000000},
        {1e6 + 0.5, 1, 1000001}, {not_a_number, 1, 1}, {-7, 2, 2}, {infinity, 1, most},
        {infinity, 2, most - 1}, {1e300, 7, most / 7 * 7}, {18446744073709549568.0, 1, most - 2046}};
    for (auto const& r : roundings)
        EXPECT_EQ(round_to_multiple(r.length, r.step), r.multiple) << r.length << ' ' << r.step;

    EXPECT_EQ(element_count(5.6, {false, 9, 4}), 4U);
    EXPECT_EQ(element_count(1, {true, 3, 3}), 4U);
    EXPECT_EQ(element_count(infinity, {true, 1, most}), most - 1);
    EXPECT_EQ(element_count(1.9e19, {true, 1, most}), most - 1);
    EXPECT_EQ(element_count(1.9e19, {true, 1, most}, true), most); // beyond it is no even number
    EXPECT_EQ(element_count(infinity, {false, 1, most}, true), most);
}

TEST(placement, nodes_stand_at_equal_metric_steps)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> uniform(-1, 1);
    // Ratios near 1.01 are left out: from 1.0084 on the series of the position, by 0.2 x^4, is off by more.
    std::vector<double> const ratios = {1, 1, 1 + 1e-13, 1.0001, 1.005, 1.03, 1.3, 2, 7};
    for (int round = 0; round < 200; ++round) {
        std::size_t const n = 2 + random() % 30;
        std::size_t const rows = 2 + random() % 2;
        std::vector<std::vector<double>> points(n, std::vector<double>(rows));
        for (auto& point : points)
            for (double& x : point) x = random() % 4 == 0 ? 0.5 : uniform(random);
        meshing m = chain_of(columns(points), 0.2);
        m.force_even = random() % 2 == 0;
        for (std::size_t i = 1; i < n; ++i) {
            double const ratio = ratios[random() % ratios.size()];
            m.sizes[i] = m.sizes[i - 1] * (m.sizes[i - 1] > 0.2 ? 1 / ratio : ratio);
        }
        auto const p = place(m);

        // A parameter is a chain entry plus the position behind it.
        auto const metric_length = [&](double from, double to) {
            double sum = 0;
            for (auto s = std::size_t(from); s + 1 < n && double(s) < to; ++s) {
                double square = 0;
                for (std::size_t r = 0; r < rows; ++r) square += std::pow(points[s + 1][r] - points[s][r], 2);
                sum +=
                    std::sqrt(square) * integral_of_inverse(m.sizes[s], m.sizes[s + 1],
                                            std::max(from - double(s), 0.0), std::min(to - double(s), 1.0));
            }
            return sum;
        };
        double const total = metric_length(0, double(n - 1));
        ASSERT_NEAR(p.length / total, 1, 1e-12);
        auto const count = double(p.params.size() + 1);
        double from = 0;
        for (std::size_t k = 0; k < p.params.size(); ++k) {
            double const to = p.params[k];
            ASSERT_NEAR(metric_length(from, to) * count / total, 1, 1e-9) << round << ' ' << k;
            from = to;

            auto const s = std::min(std::size_t(to), n - 2);
            double const u = to - double(s);
            ASSERT_NEAR(p.sizes[k], m.sizes[s] + (m.sizes[s + 1] - m.sizes[s]) * u, 1e-12);
            for (std::size_t r = 0; r < rows; ++r)
                ASSERT_NEAR(p.coords(r, k), points[s][r] + (points[s + 1][r] - points[s][r]) * u, 1e-12);
        }
    }
}

TEST(placement, degenerate_chains_end_well)
{
    meshing m = chain_of(columns({{0, 0}, {1, 0}, {1, 0}, {2, 0}}), 1);
    // A target on a chain entry lies at the end of the segment before it: none lies on one of length 0.
    EXPECT_EQ(values_of(place(m).params), (std::vector<double>{1}));
    m.sizes[0] = m.sizes[1] = 0; // takes its segment out of the metric length
    EXPECT_EQ(place(m).length, 1);

    meshing point = chain_of(columns({{1, 0}, {1, 0}}), 2); // no length: all nodes repeat the first
    point.min_elements = 4;
    EXPECT_EQ(values_of(place(point).params), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(values_of(place(point).sizes), (std::vector<double>{2, 2, 2}));

    // Lengths and sizes beyond arithmetic do not lead off the chain.
    for (double const odd : {infinity, not_a_number, 1e308, 1e-320})
        for (auto const& sizes : {reals({odd, 1, 1, odd}), reals({1, odd, -odd, 1}), reals({1, 1, 1, 1})}) {
            m = chain_of(columns({{0, 0}, {1e308, 0}, {-1e308, odd}, {0, 1}}), 1);
            m.sizes = sizes, m.force_even = true, m.max_elements = 7;
            auto const p = place(m);
            EXPECT_LE(p.coords.cols(), 7U);
            EXPECT_TRUE(p.sizes.size() == p.coords.cols() && p.params.size() == p.coords.cols());
        }
}

TEST(append, grows_by_doubling_and_fails_without_change)
{
    dense2D<double> m;
    for (std::size_t k = 0; k < 9; ++k) {
        ASSERT_TRUE(append_point(vector_fixed<double, 3>{double(k), 1, 2}, m));
        EXPECT_EQ(m.room(), k < 4 ? 12U : k < 8 ? 24U : 48U); // so that appending stays linear
        EXPECT_EQ(m(0, k), double(k));
    }
    EXPECT_FALSE(append_point(vector_fixed<double, 2>{1, 2}, m));
    ASSERT_TRUE(append_columns(m.sub_matrix(0, 7, 3, 2), m) && append_columns(m.sub_matrix(0, 9, 3, 2), m));
    EXPECT_EQ(m(0, 9), 7);
    EXPECT_EQ(m(0, 12), 8);

    auto v = reals({1, 2});
    ASSERT_TRUE(append_values(v, v) && append_values(v.sub_vector(1, 2), v));
    EXPECT_EQ(values_of(v), (std::vector<double>{1, 2, 1, 2, 2, 1}));

    auto const many = m.as_vector();
    failing_allocations const none(0, failing_allocations::extent::all_behind);
    while (m.cols() < 16) ASSERT_TRUE(append_point(vector_fixed<double, 3>{}, m));
    EXPECT_FALSE(
        append_point(vector_fixed<double, 3>{}, m) || append_columns(m, m) || append_values(many, v));
    EXPECT_EQ(m.cols() + v.size(), 22U);
}

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "placement/size_law.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

// Integral of 1/h over [u0, u1], h linear from h0 at 0 to h1 at 1: Gauss's rule, 3 points on each of 512 parts.
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
    for (double const x : {-0.9, -0.75, -0.0101, -0.01, -0.0099, -1e-5, -1e-8, -1.1e-12, -0.9e-12, 0.0}) {
        double const h0 = 3;
        double const h1 = h0 * (1 + x);
        double const mean = integral_of_inverse(h0, h1, 0, 1);
        EXPECT_NEAR(mean_inverse_size(h0, h1) / mean, 1, 6e-13) << x;
        EXPECT_EQ(mean_inverse_size(h0, h1), mean_inverse_size(h1, h0));
        for (double const t : {0.0, 1e-9, 0.1, 0.5, 0.9, 1 - 1e-9, 1.0}) {
            double const u = size_law(h0, h1).position(t);
            EXPECT_NEAR(integral_of_inverse(h0, h1, 0, u) / mean, t, 5e-10) << x << ' ' << t;
            EXPECT_NEAR(size_law(h1, h0).position(1 - t), 1 - u, 1e-15) << x << ' ' << t;
        }
    }
    EXPECT_EQ(mean_inverse_size(0, 5), 0);
    for (double const odd : {0.0, -1.0, infinity, not_a_number, 1e-310, 1e308})
        for (double const u : {size_law(odd, 1).position(0.25), size_law(1, odd).position(0.25)})
            EXPECT_TRUE(u >= 0 && u <= 1) << odd;
}

TEST(placement, nodes_stand_at_equal_metric_steps)
{
    random_numbers random(11);
    // Ratios near 1.01 are left out: from 1.0084 on the series of the position, by 0.2 x^4, is off by more.
    double const ratios[] = {1, 1, 1 + 1e-13, 1.0001, 1.005, 1.03, 1.3, 2, 7};
    for (int round = 0; round < 200; ++round) {
        std::size_t const n = 2 + random.below(30), rows = 2 + random.below(2);
        point_list corners(n, std::vector<double>(rows));
        for (auto& corner : corners)
            for (double& x : corner) x = random.below(4) == 0 ? 0.5 : random.between(-1, 1);
        meshing m = chain_of(columns(corners), 0.2);
        for (std::size_t i = 1; i < n; ++i) {
            double const ratio = ratios[random.below(9)];
            m.sizes[i] = m.sizes[i - 1] * (m.sizes[i - 1] > 0.2 ? 1 / ratio : ratio);
        }
        m.min_elements = m.max_elements = 2 + random.below(99); // one placement, along the chain itself
        ASSERT_EQ(m.run(), 0);
        ASSERT_EQ(m.elements(), m.max_elements);

        // A parameter is a chain entry plus the position after it.
        auto const metric_length = [&](double from, double to) {
            double sum = 0;
            for (auto s = std::size_t(from); s + 1 < n && double(s) < to; ++s) {
                double square = 0;
                for (std::size_t r = 0; r < rows; ++r)
                    square += std::pow(corners[s + 1][r] - corners[s][r], 2);
                sum +=
                    std::sqrt(square) * integral_of_inverse(m.sizes[s], m.sizes[s + 1],
                                            std::max(from - double(s), 0.0), std::min(to - double(s), 1.0));
            }
            return sum;
        };
        double const step = metric_length(0, double(n - 1)) / double(m.elements());
        for (std::size_t k = 1; k <= m.elements(); ++k) {
            double const to = m.out_params[k];
            ASSERT_NEAR(metric_length(m.out_params[k - 1], to) / step, 1, 1e-8) << round << ' ' << k;
            auto const s = std::min(std::size_t(to), n - 2);
            double const u = to - double(s);
            ASSERT_NEAR(m.out_sizes[k + 1], m.sizes[s] + (m.sizes[s + 1] - m.sizes[s]) * u, 1e-12);
            double const* const point = m.coords.col(m.mesh()[k]);
            for (std::size_t r = 0; r < rows; ++r)
                ASSERT_NEAR(point[r], corners[s][r] + (corners[s + 1][r] - corners[s][r]) * u, 1e-12);
        }
    }
}

TEST(placement, does_not_lead_off_degenerate_chains)
{
    auto const params = [](point_list const& corners, std::vector<double> const& sizes, unsigned count) {
        meshing m = chain_of(columns(corners), 1);
        m.sizes = reals(sizes), m.min_elements = m.max_elements = count;
        EXPECT_EQ(m.run(), 0);
        for (double const p : m.out_params) EXPECT_TRUE(p >= 0 && p <= double(corners.size() - 1));
        return m.out_params;
    };
    // A node on a chain entry ends the segment before it: none lies on one of length 0.
    EXPECT_EQ(params({{0, 0}, {1, 0}, {1, 0}, {2, 0}}, {1, 1, 1, 1}, 2), (reals{0, 1, 3}));
    // No length at all: all nodes repeat the first.
    EXPECT_EQ(params({{1, 0}, {1, 0}}, {2, 2}, 4), (reals{0, 0, 0, 0, 1}));
    // Beyond arithmetic.
    for (auto const& sizes : {std::vector<double>{1e-320, 1, 1, 1e308}, {1, 1e308, 1e-320, 1}, {1, 1, 1, 1}})
        for (double const odd : {infinity, 1e308, 1e-320})
            EXPECT_LE(params({{0, 0}, {1e308, 0}, {-1e308, odd}, {0, 1}}, sizes, 7).size(), 8U);
}

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "placement/append.h"
#include "placement/place_nodes_iso.h"
#include "placement/size_law.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

constexpr std::uint64_t largest = UINT64_MAX;

// Integral of 1/h over [u0, u1] where h runs linearly from h0 at 0 to h1 at 1: Gauss's rule with 5 points on
// 512 parts.
static double integral_of_inverse(double h0, double h1, double u0, double u1)
{
    constexpr double at[] = {0, 0.5384693101056831, 0.9061798459386640};
    constexpr double weight[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
    auto const inverse = [&](double u) { return 1 / (h0 + (h1 - h0) * u); };
    double const half = (u1 - u0) / 1024;
    double sum = 0;
    for (int part = 0; part < 512; ++part) {
        double const middle = u0 + (2 * part + 1) * half;
        sum += weight[0] * inverse(middle);
        for (int k = 1; k < 3; ++k)
            sum += weight[k] * (inverse(middle - at[k] * half) + inverse(middle + at[k] * half));
    }
    return sum * half;
}

struct placement
{
    double length = 0;
    dense2D<double> coords;
    dense1D<double> sizes, params;
};

static placement place(dense2D<double> const& coords, dense1D<unsigned> const& chain,
    dense1D<double> const& params, dense1D<double> const& sizes, bool force_even = false,
    std::uint64_t min_elements = 1, std::uint64_t max_elements = no_limit, double min_metric_length = 0)
{
    placement p;
    auto const run = coords.rows() == 2 ? place_nodes_iso<2> : place_nodes_iso<3>;
    p.length = run(coords, chain, params, sizes, min_metric_length, force_even, min_elements, max_elements,
        p.coords, p.sizes, p.params);
    return p;
}

TEST(size_law, agrees_with_quadrature_on_both_sides_of_every_limit)
{
    for (double const x : {-0.99, -0.75, -0.0101, -0.01, -0.0099, -1e-5, -1.1e-12, -0.9e-12, 0.0}) {
        double const h0 = 3;
        double const h1 = h0 * (1 + x);
        double const mean = integral_of_inverse(h0, h1, 0, 1);
        EXPECT_NEAR(mean_inverse_size(h0, h1) / mean, 1, 6e-13) << x;
        EXPECT_EQ(mean_inverse_size(h0, h1), mean_inverse_size(h1, h0));
        for (double const t : {1e-9, 0.1, 0.5, 0.9, 1 - 1e-9}) {
            double const u = size_law_position(t, h0, h1);
            double const reached = integral_of_inverse(h0, h1, 0, u) / mean;
            EXPECT_NEAR(reached, t, 5e-10) << x << ' ' << t;
            EXPECT_NEAR(size_law_position(1 - t, h1, h0), 1 - u, 1e-15) << x << ' ' << t;
        }
    }
    EXPECT_EQ(mean_inverse_size(0, 5), 0);
    EXPECT_EQ(mean_inverse_size(5, 0), 0);
    EXPECT_EQ(mean_inverse_size(4, 4), 0.25);
}

TEST(size_law, position_stays_on_the_segment)
{
    EXPECT_EQ(size_law_position(0, 1, 3), 0);
    EXPECT_EQ(size_law_position(1, 1, 3), 1);
    EXPECT_EQ(size_law_position(0.3, 2, 2), 0.3);
    EXPECT_EQ(size_law_position(0.3, 2, 2 * (1 + 1e-13)), 1 - (1 - 0.3));
    EXPECT_EQ(size_law_position(-1, 1, 3), 0);
    EXPECT_EQ(size_law_position(1.5, 1, 3), 1);
    for (double const t : {0.25, 0.5})
        for (double const odd : {0.0, -1.0, infinity, not_a_number, 1e-310, 1e308})
            for (double const u : {size_law_position(t, odd, 1), size_law_position(t, 1, odd)})
                EXPECT_TRUE(u >= 0 && u <= 1) << t << ' ' << odd;
    EXPECT_EQ(size_law_position(not_a_number, 1, 3), 0);
}

TEST(element_count, rounds_geometrically_and_clamps_in_order)
{
    struct
    {
        double length;
        std::uint64_t step, multiple;
    } const roundings[] = {{0, 1, 1}, {0.3, 2, 2}, {1.41, 1, 1}, {1.42, 1, 2}, {2.44, 1, 2}, {2.45, 1, 3},
        {2.82, 2, 2}, {2.83, 2, 4}, {std::sqrt(6.0) * (1 - 1e-15), 1, 2}, {1e6 + 0.4999, 1, 1000000},
        {1e6 + 0.5, 1, 1000001}, {not_a_number, 1, 1}, {-7, 2, 2}, {-infinity, 1, 1}, {infinity, 1, largest},
        {infinity, 2, largest - 1}, {1e300, 7, largest / 7 * 7}, {18446744073709549568.0, 1, largest - 2046},
        {18446744073709549568.0, 1000, 18446744073709549000U}};
    for (auto const& r : roundings)
        EXPECT_EQ(round_to_multiple(r.length, r.step), r.multiple) << r.length << ' ' << r.step;

    EXPECT_EQ(element_count(5.6, false, 1, no_limit), 6U);
    EXPECT_EQ(element_count(5.6, false, 9, no_limit), 9U);
    EXPECT_EQ(element_count(5.6, false, 9, 4), 4U);
    EXPECT_EQ(element_count(5.6, true, 1, 5), 6U);
    EXPECT_EQ(element_count(0.3, true, 1, no_limit), 2U);
    EXPECT_EQ(element_count(infinity, true, 1, largest), largest - 1);
    EXPECT_EQ(element_count(1, true, 3, 3), 4U);
}

TEST(placement, nodes_stand_at_equal_metric_steps)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> uniform(-1, 1);
    // From |x| = 0.0084 on, the series of the position is off by more than is asked here (0.2 x^4).
    std::vector<double> const ratios = {1, 1, 1 + 1e-13, 1.0001, 1.005, 1.03, 1.3, 2, 7};
    for (int round = 0; round < 200; ++round) {
        std::size_t const n = 2 + random() % 30;
        std::size_t const rows = 2 + random() % 2;
        dense2D<double> coords;
        dense1D<double> sizes, params;
        ASSERT_TRUE(coords.resize(rows, n));
        double h = 0.2;
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t r = 0; r < rows; ++r)
                coords(r, i) = random() % 8 == 0 && i > 0 ? coords(r, i - 1) : uniform(random);
            sizes.push_back(h);
            params.push_back(double(i));
            double const ratio = ratios[random() % ratios.size()];
            h = h > 0.02 && (h > 2 || random() % 2 == 0) ? h / ratio : h * ratio;
        }
        auto const p = place(coords, nodes_up_to(unsigned(n)), params, sizes, random() % 2 == 0);

        // The parameter is the chain entry plus the position behind it.
        auto const metric_length = [&](double from, double to) {
            double sum = 0;
            for (auto s = std::size_t(from); s + 1 < n && double(s) < to; ++s) {
                double square = 0;
                for (std::size_t r = 0; r < rows; ++r) square += std::pow(coords(r, s + 1) - coords(r, s), 2);
                sum +=
                    std::sqrt(square) * integral_of_inverse(sizes[s], sizes[s + 1],
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
            ASSERT_NEAR(p.sizes[k], sizes[s] + (sizes[s + 1] - sizes[s]) * u, 1e-12);
            for (std::size_t r = 0; r < rows; ++r)
                ASSERT_NEAR(p.coords(r, k), coords(r, s) + (coords(r, s + 1) - coords(r, s)) * u, 1e-12);
        }
    }
}

TEST(placement, closed_form_of_one_segment)
{
    auto const p = place(columns({{0, 0}, {10, 0}}), nodes({0, 1}), {}, reals({1, 3}));
    EXPECT_NEAR(p.length, 5 * std::log(3.0), 1e-14);
    ASSERT_EQ(p.coords.cols(), 5U);
    EXPECT_TRUE(p.params.empty());
    for (std::size_t k = 0; k < 5; ++k) {
        double const size = std::pow(3.0, double(k + 1) / 6.0);
        EXPECT_NEAR(p.sizes[k], size, 1e-14);
        EXPECT_NEAR(p.coords(0, k), 10 * (size - 1) / 2, 1e-13);
    }
}

TEST(placement, symmetries)
{
    auto const flat = columns({{0, 0}, {1, 2}, {1, 2}, {4, 1}, {5, 5}});
    auto const space = columns({{0, 0, 0}, {1, 2, 0}, {1, 2, 0}, {4, 1, 0}, {5, 5, 0}});
    auto const scaled = columns({{0, 0}, {8, 16}, {8, 16}, {32, 8}, {40, 40}});
    auto const sizes = reals({0.5, 0.7, 0.7001, 1, 0.2});
    auto const p = place(flat, nodes({0, 1, 2, 3, 4}), {}, sizes);
    auto const q = place(space, nodes({0, 1, 2, 3, 4}), {}, sizes);
    auto const s = place(scaled, nodes({0, 1, 2, 3, 4}), {}, reals({4, 5.6, 5.6008, 8, 1.6}));
    auto const mirrored = place(flat, nodes({4, 3, 2, 1, 0}), {}, reals({0.2, 1, 0.7001, 0.7, 0.5}));
    std::size_t const count = p.coords.cols();
    ASSERT_GT(count, 10U);
    ASSERT_EQ(mirrored.coords.cols(), count);
    EXPECT_EQ(values_of(q.sizes), values_of(p.sizes));
    for (std::size_t k = 0; k < count; ++k)
        for (std::size_t r = 0; r < 2; ++r) {
            EXPECT_EQ(q.coords(r, k), p.coords(r, k));
            EXPECT_NEAR(s.coords(r, k), 8 * p.coords(r, k), 1e-13);
            EXPECT_NEAR(mirrored.coords(r, count - 1 - k), p.coords(r, k), 1e-13);
        }
}

TEST(placement, degenerate_chains_end_well)
{
    auto const line = columns({{0, 0}, {1, 0}, {1, 0}, {2, 0}});
    auto const chain = nodes({0, 1, 2, 3});
    // No length: all new nodes repeat the first one.
    auto const point = place(line, nodes({1, 2}), reals({3, 4}), reals({1, 2}), false, 4);
    EXPECT_EQ(point.length, 0);
    EXPECT_EQ(values_of(point.params), (std::vector<double>{3, 3, 3}));
    EXPECT_EQ(values_of(point.sizes), (std::vector<double>{1, 1, 1}));
    // A target on a chain entry lies at the end of the segment before it, whatever follows.
    auto const half = place(line, chain, reals({0, 1, 5, 6}), reals({1, 1, 9, 9}), false, 2, 2);
    auto const halves = place(line, chain, reals({0, 1, 5, 6}), reals({1, 1, 1, 1}));
    EXPECT_NEAR(half.params[0], 5.0 / 9, 1e-15);
    EXPECT_EQ(values_of(halves.params), (std::vector<double>{1}));
    EXPECT_EQ(halves.coords(0, 0), 1);
    // A size of 0 takes its segments out of the metric length.
    EXPECT_EQ(place(line, chain, {}, reals({0, 0, 1, 1})).length, 1);
    // Nothing is placed on a line that is too short or has no length that counts.
    EXPECT_EQ(place(line, chain, {}, reals({1, 1, 1, 1}), false, 1, no_limit, 2.5).coords.cols(), 0U);
    EXPECT_EQ(place(line, chain, {}, reals({1, 1, 1, 1}), false, 1, no_limit, 2).coords.cols(), 1U);
    EXPECT_TRUE(
        std::isnan(place(columns({{0, 0}, {not_a_number, 0}}), nodes({0, 1}), {}, reals({1, 1})).length));
    // Lengths and sizes beyond arithmetic do not lead off the chain.
    for (double const odd : {infinity, not_a_number, 1e308, 1e-320})
        for (auto const& sizes : {reals({odd, 1, 1, odd}), reals({1, odd, -odd, 1}), reals({1, 1, 1, 1})}) {
            auto const p = place(columns({{0, 0}, {1e308, 0}, {-1e308, odd}, {0, 1}}), chain,
                reals({0, 1, 2, 3}), sizes, true, 3, 7);
            EXPECT_LE(p.coords.cols(), 7U);
            EXPECT_EQ(p.sizes.size(), p.coords.cols());
            EXPECT_EQ(p.params.size(), p.coords.cols());
        }
    // More nodes than there is storage for.
    auto const many = place(line, chain, {}, reals({1, 1, 1, 1}), false, largest, largest);
    EXPECT_EQ(many.length, 0);
    EXPECT_TRUE(many.coords.empty() && many.sizes.empty());
}

TEST(append, grows_by_doubling_and_fails_without_change)
{
    dense2D<double> m;
    for (std::size_t k = 0; k < 9; ++k) {
        ASSERT_TRUE(append_point(vector_fixed<double, 3>{double(k), 1, 2}, m));
        EXPECT_EQ(m.room(), k < 4 ? 12U : k < 8 ? 24U : 48U);
        EXPECT_EQ(m(0, k), double(k));
    }
    EXPECT_FALSE(append_point(vector_fixed<double, 2>{1, 2}, m));

    auto v = reals({1, 2});
    ASSERT_TRUE(append_values(v, v));
    ASSERT_TRUE(append_values(v.sub_vector(1, 2), v));
    EXPECT_EQ(values_of(v), (std::vector<double>{1, 2, 1, 2, 2, 1}));

    failing_allocations const none(0, failing_allocations::extent::all_behind);
    while (m.room() >= 3 * (m.cols() + 1)) ASSERT_TRUE(append_point(vector_fixed<double, 3>{}, m));
    EXPECT_FALSE(append_point(vector_fixed<double, 3>{}, m));
    EXPECT_EQ(m.cols(), 16U);
    EXPECT_FALSE(append_values(dense1D<double>(m.as_vector()), v));
    EXPECT_EQ(v.size(), 6U);
}

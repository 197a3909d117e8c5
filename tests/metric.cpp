#include <gtest/gtest.h>

#include <cmath>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "metric/tensor.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

random_numbers any(17);

template <std::size_t N>
vector<N> random_direction()
{
    vector<N> d;
    for (double& x : d.values) x = any.between(-1, 1);
    return d;
}

/// Unit vectors that are independent, but not at right angles.
template <std::size_t N>
struct random_basis
{
    vector<N> axes[N];

    random_basis()
    {
        for (std::size_t i = 0; i < N; ++i) {
            axes[i] = random_direction<N>() * 0.4;
            axes[i][i] += 1;
            normalize(axes[i]);
        }
    }
};

/// The tensor that is diagonal in a dual basis, with the given sizes.
template <std::size_t N>
tensor<N> of_sizes(vector<N> const& sizes, random_basis<N> const& q)
{
    vector<N> values;
    for (std::size_t i = 0; i < N; ++i) values[i] = 1 / (sizes[i] * sizes[i]);
    return recompose_metric(values, q.axes);
}

template <std::size_t N>
void expect_near(double const* m, tensor<N> const& expected, double relative)
{
    double scale = 0;
    for (double const v : expected.values) scale = std::max(scale, std::abs(v));
    for (std::size_t k = 0; k < packed_rows<N>; ++k) ASSERT_NEAR(m[k], expected[k], relative * scale) << k;
}

template <std::size_t N>
dense2D<double> pair_of(tensor<N> const& first, tensor<N> const& second)
{
    return columns(
        {{first.values, first.values + packed_rows<N>}, {second.values, second.values + packed_rows<N>}});
}

/// A pair of tensors is diagonal in one basis, in which sizes run linearly from one to the other, and the smaller
/// of two sizes is that of the intersection.
template <std::size_t N>
void check_pairs()
{
    for (int round = 0; round < 500; ++round) {
        random_basis<N> const q;
        double const decades = round % 2 == 0 ? 1 : 2.5;
        vector<N> h0, h1, between, smaller;
        for (std::size_t i = 0; i < N; ++i) {
            h0[i] = std::pow(10, any.between(-decades, decades));
            h1[i] = round % 10 == 0 && i == 0 ? infinity : std::pow(10, any.between(-decades, decades));
            between[i] = 0.7 * h0[i] + 0.3 * h1[i];
            smaller[i] = std::min(h0[i], h1[i]);
        }
        auto const m0 = of_sizes(h0, q), m1 = of_sizes(h1, q);
        dense2D<double> result;
        ASSERT_EQ(interpolate_metrics(reals({0, 1}), pair_of(m0, m1), reals({0, 0.3, 1}), result), 0);
        double const close = decades > 2 ? 1e-4 : 1e-8;
        expect_near(result.col(0), m0, 0);
        expect_near(result.col(1), of_sizes(between, q), close);
        expect_near(result.col(2), m1, 0);

        tensor<N> both{}, turned{};
        vornik::minimum_metric(m0, m1, both);
        vornik::minimum_metric(m1, m0, turned);
        expect_near(both.values, of_sizes(smaller, q), close);
        expect_near(turned.values, both, close);
        for (int const e : {-900, -300, 300, 900}) { // powers of two do not change it
            tensor<N> c = m0, d = m1, scaled{};
            for (double& v : c.values) v = std::ldexp(v, e);
            for (double& v : d.values) v = std::ldexp(v, e);
            vornik::minimum_metric(c, d, scaled);
            for (std::size_t k = 0; k < packed_rows<N>; ++k)
                ASSERT_EQ(std::ldexp(scaled[k], -e), both[k]) << e;
        }

        // A bound in all directions is the intersection with an isotropic tensor.
        double const h = std::pow(10, any.between(-1, 1));
        tensor<N> round_one{}, bounded = m0, expected{};
        for (std::size_t i = 0; i < N; ++i) round_one(i, i) = 1 / (h * h);
        vornik::bound_metric(bounded, h, largest_double);
        vornik::minimum_metric(m0, round_one, expected);
        expect_near(bounded.values, expected, close);
        bounded = m0;
        vornik::bound_metric(bounded, 1e3 * h, h); // the lower of two bounds counts
        expect_near(bounded.values, expected, close);
    }
}

} // namespace

TEST(metric, pairs_are_interpolated_and_intersected_in_their_common_basis)
{
    check_pairs<2>();
    check_pairs<3>();
}

TEST(metric, intersection_of_tensors_that_ask_for_nothing_or_are_not_definite)
{
    tensor<3> const zero{}, m = of_sizes<3>({1, 0.5, 0.3}, {});
    for (auto const& [first, second] : {std::pair(zero, m), {m, zero}, {m, m}}) {
        tensor<3> result{7, 7, 7, 7, 7, 7};
        vornik::minimum_metric(first, second, result);
        EXPECT_TRUE(std::equal(result.values, result.values + 6, m.values)); // bit for bit
    }
    tensor<2> flat{4, 0, 0};
    vornik::minimum_metric(flat, {0, 0, 9}, flat); // neither is definite; the result is one of the two
    expect_near<2>(flat.values, {4, 0, 9}, 0);

    // Singular but for rounding, and at scales whose squares over- and underflow: what is asked is held.
    for (int round = 0; round < 1000; ++round) {
        auto const first = recompose_metric<3>({1, 0, 0}, {random_direction<3>(), {}, {}});
        auto const second =
            round % 2 == 0 ? m : recompose_metric<3>({1, 0, 0}, {random_direction<3>(), {}, {}});
        double const scale = std::ldexp(1.0, 20 * (round % 31) - 300);
        tensor<3> a, b, result{};
        for (std::size_t k = 0; k < 6; ++k) a[k] = scale * first[k], b[k] = scale * second[k];
        vornik::minimum_metric(a, b, result);
        for (int k = 0; k < 8; ++k) {
            auto const d = random_direction<3>();
            double const asked = std::max(quadratic_form(a.values, d), quadratic_form(b.values, d));
            ASSERT_GT(quadratic_form(result.values, d), asked * (1 - 1e-4)) << round;
            ASSERT_LT(quadratic_form(result.values, d),
                4 * scale * (first[0] + first[2] + first[5] + second[0] + second[2] + second[5]));
        }
    }
}

TEST(interpolate_metrics, values)
{
    auto const params = reals({0, 1, 1, 3});
    auto const wanted = reals({0, 0.5, 1, 1 + 1e-13, 2, 3});
    auto const four = reals({2, 4, 6, 0});
    reals const expected = {2, 3, 4, 6, 0, 0};
    dense1D<double> values;
    dense2D<double> metrics, row, no_rows;
    ASSERT_EQ(interpolate_metrics(params, four, wanted, values), 0);
    EXPECT_EQ(values, expected);
    ASSERT_TRUE(row.resize(2, 4, 9.0)); // a single row is a list of values, here of a larger matrix
    for (std::size_t k = 0; k < 4; ++k) row(0, k) = four[k];
    ASSERT_EQ(interpolate_metrics(params, row.sub_matrix(0, 0, 1, 4), wanted, metrics), 0);
    EXPECT_EQ(metrics.as_vector(), expected);
    ASSERT_TRUE(no_rows.resize(0, 4));
    EXPECT_EQ(interpolate_metrics(params, no_rows, wanted, metrics), 0);
    EXPECT_EQ(metrics.rows() + metrics.cols(), 6U);
}

TEST(interpolate_metrics, tensors_that_cannot_be_reduced_or_are_far_apart)
{
    // A pair whose first tensor is not definite repeats the result before.
    auto const pivots = [](double p0, double p1,
                            double p2) -> std::vector<double> { // l l^T with unit diagonal
        return {p0, 2 * p0, 4 * p0 + p1, 3 * p0, 6 * p0 + 5 * p1, 9 * p0 + 25 * p1 + p2};
    };
    dense2D<double> metrics;
    for (auto const& bad :
        {pivots(-1, 1, 1), pivots(1, -1, 1), pivots(1, 1, -1), pivots(1, 0, 1), pivots(1, 1, 0)}) {
        ASSERT_EQ(interpolate_metrics(reals({0, 1, 2}), columns({pivots(1, 4, 9), bad, pivots(1, 1, 1)}),
                      reals({0, 1.5, 2}), metrics),
            0);
        EXPECT_EQ(metrics, columns({pivots(1, 4, 9), pivots(1, 4, 9), pivots(1, 1, 1)}));
    }
    // Sizes 0.1 to 1000 along axes that have nothing to do with each other: one eigenvalue of the pair rounds
    // to a negative one.
    auto const far_apart = columns({{34.017305908122658, -33.867086265824035, 33.717531981206307,
                                        -6.7638646232478941, 6.7339957502392842, 97.176627835619485},
        {20.165197877320921, 39.619765305036651, 77.843317500995866, -6.33708916672638, -12.45085713917147,
            1.9914879213987171}});
    ASSERT_EQ(interpolate_metrics(reals({0, 1}), far_apart, reals({0.5, 1 - 1e-9}), metrics), 0);
    for (std::size_t k = 0; k < 6; ++k) {
        EXPECT_LT(std::abs(metrics(k, 0)), 100);
        EXPECT_NEAR(metrics(k, 1), far_apart(k, 1), 1e-2);
    }
}

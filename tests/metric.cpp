#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include <vornik/toolkit.h>

#include "metric/eigen.h"
#include "metric/metric_interpolator.h"
#include "metric/reduction.h"
#include "metric/sizes.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

std::mt19937 random_bits(17);

double uniform(double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(random_bits);
}

template <std::size_t N>
vector<N> random_direction()
{
    vector<N> d;
    for (double& x : d.values) x = uniform(-1, 1);
    return d;
}

/// R^T D R for a random matrix R near a rotation, with condition up to about 10^`decades`.
template <std::size_t N>
tensor<N> random_tensor(double decades)
{
    vector<N> basis[N];
    for (std::size_t i = 0; i < N; ++i) { // Gram and Schmidt
        basis[i] = random_direction<N>();
        for (std::size_t k = 0; k < i; ++k) {
            double const along = dot(basis[i], basis[k]);
            for (std::size_t r = 0; r < N; ++r) basis[i][r] -= along * basis[k][r];
        }
        double const length = norm(basis[i]);
        for (double& x : basis[i].values) x /= length;
    }
    vector<N> values;
    for (double& v : values.values) v = std::pow(10, uniform(0, decades));
    return recompose_metric(values, basis);
}

/// a^T M b.
template <std::size_t N>
double bilinear_form(tensor<N> const& m, vector<N> const& a, vector<N> const& b)
{
    double sum = 0;
    for (std::size_t i = 0; i < N; ++i)
        for (std::size_t j = 0; j < N; ++j) sum += a[i] * m(i, j) * b[j];
    return sum;
}

template <std::size_t N>
double largest_entry(tensor<N> const& m)
{
    double result = 0;
    for (double const v : m.values) result = std::max(result, std::abs(v));
    return result;
}

template <std::size_t N>
void expect_near(tensor<N> const& m, tensor<N> const& expected, double relative)
{
    for (std::size_t k = 0; k < packed_rows<N>; ++k)
        ASSERT_NEAR(m[k], expected[k], relative * largest_entry(expected)) << k;
}

template <std::size_t N>
void check_pairs()
{
    for (int round = 0; round < 500; ++round) {
        double const decades = round % 2 == 0 ? 8 : 5;
        auto const m0 = random_tensor<N>(decades);
        auto const m1 = random_tensor<N>(8);
        metric_interpolator<N> pair;
        ASSERT_TRUE(pair.build(m0, m1));
        for (std::size_t i = 0; i < N; ++i)
            for (std::size_t j = 0; j < i; ++j) {
                ASSERT_LT(std::abs(bilinear_form(m0, pair.p[i], pair.p[j])), 1e-12 * largest_entry(m0));
                ASSERT_LT(std::abs(bilinear_form(m1, pair.p[i], pair.p[j])), 1e-10 * largest_entry(m1));
            }
        vector<N> along_second;
        for (std::size_t i = 0; i < N; ++i) along_second[i] = quadratic_form(m1.values, pair.p[i]);
        expect_near(recompose_metric(pair.a0, pair.q), m0, 1e-10);
        expect_near(recompose_metric(along_second, pair.q), m1, 1e-10);
        // By its eigenvalues it is rebuilt to rounding times the condition of the first tensor.
        expect_near(recompose_metric(pair.a1, pair.q), m1, decades < 6 ? 1e-10 : 5e-8);
        expect_near(pair.evaluate(0), m0, 1e-10);

        tensor<N> both;
        vornik::minimum_metric(m0, m1, both);
        for (std::size_t k = 0; k < 200; ++k) {
            auto const d = k < N ? pair.p[k] : random_direction<N>();
            double const asked = std::max(bilinear_form(m0, d, d), bilinear_form(m1, d, d));
            double const held = bilinear_form(both, d, d);
            ASSERT_GT(held, asked * (1 - 1e-6));
            // Along the common directions it touches them.
            ASSERT_LT(k < N ? held : asked, asked * (1 + 1e-6));
        }
    }
}

} // namespace

TEST(metric, pairs_are_reduced_interpolated_and_intersected)
{
    check_pairs<2>();
    check_pairs<3>();
}

TEST(metric, intersection_of_tensors_that_ask_for_nothing_or_are_not_definite)
{
    tensor<3> const zero{};
    tensor<3> const m = random_tensor<3>(2);
    tensor<3> result;
    for (auto const& [first, second] : {std::pair(zero, m), {m, zero}, {m, m}}) {
        vornik::minimum_metric(first, second, result);
        EXPECT_TRUE(std::equal(result.values, result.values + 6, m.values)); // bit for bit
    }
    tensor<2> flat{4, 0, 0};
    vornik::minimum_metric(flat, {0, 0, 9}, flat); // neither is definite; the result is one of the two
    expect_near(flat, {4, 0, 9}, 0);

    // Singular but for rounding, and at scales whose squares over- and underflow: what is asked is held.
    for (int round = 0; round < 2000; ++round) {
        vector<3> const axis[] = {random_direction<3>(), {}, {}};
        vector<3> const other[] = {random_direction<3>(), {}, {}};
        auto const first = recompose_metric({1, 0, 0}, axis);
        auto const second = round % 2 == 0 ? m : recompose_metric({1, 0, 0}, other);
        double const scale = std::ldexp(1.0, 20 * (round % 31) - 300);
        tensor<3> a, b;
        for (std::size_t k = 0; k < 6; ++k) a[k] = scale * first[k], b[k] = scale * second[k];
        vornik::minimum_metric(a, b, result);
        for (int k = 0; k < 8; ++k) {
            auto const d = random_direction<3>();
            double const asked = std::max(bilinear_form(a, d, d), bilinear_form(b, d, d));
            ASSERT_GT(bilinear_form(result, d, d), asked * (1 - 1e-4)) << round;
        }
    }
}

TEST(metric, indefinite_tensors_have_no_factor)
{
    // l l^T with unit diagonal, but for the pivots.
    auto const factor = [](double p0, double p1, double p2, tensor<3>& u) {
        return cholesky_factor_3d(
            {p0, 2 * p0, 4 * p0 + p1, 3 * p0, 6 * p0 + 5 * p1, 9 * p0 + 25 * p1 + p2}, u);
    };
    tensor<3> u{};
    EXPECT_TRUE(factor(1, 4, 9, u));
    EXPECT_TRUE(u(0, 0) == 1 && u(1, 1) == 2 && u(2, 2) == 3);
    EXPECT_TRUE(factor(1, 1, 0, u));
    EXPECT_FALSE(factor(-1, 1, 1, u) || factor(1, -1, 1, u) || factor(1, 1, -1, u) || factor(1, 0, 1, u));
}

TEST(metric, sizes_are_clamped_along_the_axes)
{
    tensor<2> m{2.5, 1.5, 2.5}; // 1 along (1, -1), 4 along (1, 1)
    auto sizes = reals({0.1, 1, 9});
    vornik::bound_metrics(sizes, 0.5, 2);
    EXPECT_EQ(values_of(sizes), (std::vector<double>{0.5, 1, 2}));
    EXPECT_FALSE(clamp_metric_sizes(m, 0, 0));
    EXPECT_FALSE(clamp_metric_sizes(m, 0.4, 2));
    EXPECT_TRUE(clamp_metric_sizes(m, 0, 0.7));
    expect_near(m, {(4 + 1 / 0.49) / 2, (4 - 1 / 0.49) / 2, (4 + 1 / 0.49) / 2}, 1e-14);
    vornik::bound_metric(m, 0.5, largest);
    expect_near(m, {4, 0, 4}, 1e-14);
    EXPECT_TRUE(clamp_metric_sizes(m, 0.8, 0));
    expect_near(m, {1 / 0.64, 0, 1 / 0.64}, 1e-14);
    tensor<3> flat{4, 0, 0, 0, 0, 1};
    EXPECT_TRUE(clamp_metric_sizes(flat, 0, 2));
    expect_near(flat, {4, 0, 0.25, 0, 0, 1}, 1e-15);
    for (double const bad : {not_a_number, infinity}) {
        tensor<2> m2{bad, 0, 1};
        tensor<3> m3{bad, 0, 1, 0, 0, 1};
        EXPECT_FALSE(clamp_metric_sizes(m2, 0, 0.5));
        EXPECT_FALSE(clamp_metric_sizes(m3, 0, 0.5));
        EXPECT_TRUE(m2[2] == 1 && m3[5] == 1);
    }

    // Beside an axis of size 1e-10 rounding can lose the other one, which is reported.
    int lost = 0;
    for (int percent = 1; percent < 100; ++percent) {
        double const slope = percent / 100.0;
        double const cosine = 1 / std::sqrt(1 + slope * slope);
        tensor<2> thin{1e20 * cosine * cosine, 1e20 * cosine * cosine * slope, 0};
        thin[2] = thin[1] * slope;
        tensor<2> const before = thin;
        bool const is_sound = clamp_metric_sizes(thin, 0, 0.5);
        vector<2> values{};
        bool const is_bounded = symmetric_eigenvalues_2d(thin[0], thin[1], thin[2], values) && values[0] > 0;
        bool const has_changed = !std::equal(thin.values, thin.values + 3, before.values);
        EXPECT_EQ(is_sound, has_changed && is_bounded) << slope;
        lost += has_changed && !is_bounded ? 1 : 0;
    }
    EXPECT_GT(lost, 10);
}

TEST(metric, sizes_and_eigenvalues_at_the_ends_of_the_scale)
{
    vector<3> values{4, -4e-13, largest};
    inverse_sqrt_guarded(values); // 4e-13 is rounding beside the largest, which stands for a size of 0
    EXPECT_EQ(std::vector<double>(values.values, values.values + 3), (std::vector<double>{0.5, largest, 0}));
    EXPECT_EQ(inverse_square_guarded(1e-155), largest);
    EXPECT_EQ(inverse_square_guarded(1e155), 0);
    EXPECT_EQ(inverse_square_guarded(not_a_number), largest);

    // A tensor that cancels, of either sign: the small eigenvalue comes from the determinant, 1e-9.
    for (double const sign : {1.0, -1.0}) {
        vector<2> pair;
        ASSERT_TRUE(symmetric_eigenvalues_2d(sign * 1e9, 0, sign * 1e-18, pair));
        EXPECT_NEAR(pair[sign > 0 ? 0 : 1], sign * 1e-18, 1e-32);
    }
    vector<2> none;
    EXPECT_FALSE(symmetric_eigenvalues_2d(1e308, 0, 1e308, none));
}

TEST(metric, second_tensor_of_a_pair_may_be_singular)
{
    metric_interpolator<2> pair;
    ASSERT_TRUE(pair.build({1, 0, 1}, {4, 0, 0})); // an unlimited size along the second axis
    expect_near(pair.evaluate(1), {4, 0, 0}, 1e-15);
    EXPECT_NEAR(pair.evaluate(0.5)[0], 1 / 0.5625, 1e-15);
    EXPECT_FALSE(pair.build({4, 0, 0}, {1, 0, 1}));
    EXPECT_EQ(pair.h1[0], 0);
}

TEST(metric, gradation_bounds_growth_along_edges)
{
    std::size_t const n = 40;
    auto const coords = arc(n, 3, 3);
    dense2D<unsigned> edges;
    ASSERT_TRUE(edges.resize(2, n));
    dense1D<double> sizes(n + 1);
    for (unsigned k = 0; k < n; ++k) edges(0, k) = k, edges(1, k) = k + 1;
    for (double& h : sizes) h = uniform(0.01, 2);
    dense2D<double> metrics;
    ASSERT_TRUE(vornik::metrics_iso_to_aniso3d(sizes, metrics));
    auto const edge = vornik::element_type::edge;
    vornik::bound_metric_gradations(coords, edges, edge, {}, true, -1, 0.3, sizes);
    vornik::bound_metric_gradations(coords, edges, edge, {}, true, 0, 0.3, metrics);
    double const step = 2 * std::sin(1.5 / double(n));
    for (std::size_t k = 0; k <= n; ++k) {
        EXPECT_LE(std::abs(sizes[k] - sizes[k > 0 ? k - 1 : k]), 0.3 * step * (1 + 1e-12));
        EXPECT_NEAR(1 / std::sqrt(metrics(5, k)), sizes[k], 1e-9);
    }
}

TEST(interpolate_metrics, values_and_tensors)
{
    auto const params = reals({0, 1, 1, 3});
    auto const wanted = reals({0, 0.5, 1, 1 + 1e-13, 2, 3});
    dense1D<double> values;
    ASSERT_EQ(interpolate_metrics(params, reals({2, 4, 6, 0}), wanted, values), 0);
    EXPECT_EQ(values_of(values), (std::vector<double>{2, 3, 4, 6, 0, 0}));

    // Sizes 1 to 2 along the first axis and 1 to 4 along the second.
    dense2D<double> metrics;
    auto const ends = columns({{1, 0, 1}, {0.25, 0, 0.0625}});
    ASSERT_EQ(interpolate_metrics(reals({0, 1}), ends, reals({0, 0.5, 1}), metrics), 0);
    EXPECT_EQ(values_of(metrics.sub_matrix(0, 2, 3, 1)), values_of(ends.sub_matrix(0, 1, 3, 1)));
    EXPECT_NEAR(metrics(0, 1), 1 / 2.25, 1e-15);
    EXPECT_NEAR(metrics(2, 1), 1 / 6.25, 1e-15);
    ASSERT_EQ(
        interpolate_metrics(reals({0, 1}), columns({{0, 0, 0}, {1, 0, 1}}), reals({0.5, 1}), metrics), 0);
    EXPECT_EQ(values_of(metrics), (std::vector<std::vector<double>>{{0, 0, 0}, {1, 0, 1}}));
    auto const repeated =
        columns({{1, 0, 4, 0, 0, 9}, {1, 0, 4, 0, 0, 9}, {1, 1, 1, 0, 0, 0}, {1, 0, 1, 0, 0, 1}});
    ASSERT_EQ(interpolate_metrics(reals({0, 1, 2, 3}), repeated, reals({0.5, 2.5}), metrics), 0);
    for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(metrics(k, 0), repeated(k, 0), 1e-14);
    EXPECT_EQ(metrics(5, 1), metrics(5, 0)); // a pair that cannot be reduced
    auto const row = columns({{2, 9}, {4, 9}}).sub_matrix(0, 0, 1, 2);
    ASSERT_EQ(interpolate_metrics(reals({0, 1}), row, reals({0.5}), metrics), 0);
    EXPECT_EQ(values_of(metrics), (std::vector<std::vector<double>>{{3}}));
}

TEST(interpolate_metrics, statuses)
{
    struct
    {
        std::vector<double> params, values, wanted;
        int status;
    } const rows[] = {{{0}, {}, {}, 0}, {{0}, {1}, {0}, -1}, {{1, 0}, {1}, {2, 0}, -1},
        {{0, 1}, {1}, {2, 0}, -2}, {{0, 1}, {1, 2}, {1, 0}, -3}, {{0, 1}, {1, 2}, {-1, 1}, -3},
        {{0, 1}, {1, 2}, {1, 2}, -3}, {{0, 1}, {1, 2}, {not_a_number}, -3}};
    for (auto const& row : rows) {
        auto values = reals({1, 2});
        auto tensors = columns({{1, 0, 1}});
        dense2D<double> metrics;
        ASSERT_TRUE(metrics.resize(3, row.values.size(), 1.0));
        EXPECT_EQ(
            interpolate_metrics(list(row.params), list(row.values), list(row.wanted), values), row.status);
        EXPECT_EQ(interpolate_metrics(list(row.params), metrics, list(row.wanted), tensors), row.status);
        EXPECT_TRUE(values.empty() && tensors.empty());
    }
    dense2D<double> tensors, no_rows;
    EXPECT_EQ(interpolate_metrics(reals({0, 1}), columns({{1, 2}, {1, 2}}), reals({0}), tensors), -2);
    ASSERT_TRUE(no_rows.resize(0, 2));
    EXPECT_EQ(interpolate_metrics(reals({0, 1}), no_rows, reals({0, 1, 1}), tensors), 0);
    EXPECT_EQ(tensors.rows(), 0U);
    EXPECT_EQ(tensors.cols(), 3U);
}

TEST(metric_interpolator, stays_finite_between_tensors_of_extreme_aspect)
{
    // Sizes 0.1 to 1000 along axes that have nothing to do with each other: one eigenvalue of the pair rounds
    // to a negative one.
    tensor<3> const m0{34.017305908122658, -33.867086265824035, 33.717531981206307, -6.7638646232478941,
        6.7339957502392842, 97.176627835619485};
    tensor<3> const m1{20.165197877320921, 39.619765305036651, 77.843317500995866, -6.33708916672638,
        -12.45085713917147, 1.9914879213987171};
    metric_interpolator<3> interpolator;
    ASSERT_TRUE(interpolator.build(m0, m1));
    for (std::size_t k = 0; k < 6; ++k) {
        EXPECT_LT(std::abs(interpolator.evaluate(0.5)[k]), 100);
        EXPECT_NEAR(interpolator.evaluate(1)[k], m1[k], 1e-6);
    }
}

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <vornik/toolkit.h>

#include "arrays/vectors.h"
#include "metric/sizes.h"
#include "spline/bend_nodes.h"
#include "spline/curvature_sizes.h"
#include "spline/sample_spline.h"
#include "spline/spline_span.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

static dense2D<double> circle(std::size_t n, std::size_t rows = 2)
{
    double const angle = 2 * std::numbers::pi * (1 - 1 / double(n));
    return arc(n - 1, angle, rows);
}

// Upper side of a cambered NACA 0012 section from its tail to the nose, and back below: Jacobs, Ward,
// Pinkerton, NACA Report 460, 1933.
static dense2D<double> airfoil(std::size_t half)
{
    std::vector<std::vector<double>> points(2 * half + 1);
    for (std::size_t k = 0; k <= 2 * half; ++k) {
        double const x = (1 + std::cos(std::numbers::pi * double(k) / double(half))) / 2;
        double const y =
            0.6 * (0.2969 * std::sqrt(x) + x * (-0.126 + x * (-0.3516 + x * (0.2843 - x * 0.1036))));
        points[k] = {x, 0.1 * x * (1 - x) + (k < half ? y : -y)};
    }
    return columns(points);
}

template <std::size_t N>
static double curvature_at(spline_span<N> const& span, double t)
{
    double curvature[1];
    find_curvatures(span, {t}, curvature);
    return curvature[0];
}

template <std::size_t N>
static void compare_with_differences()
{
    std::mt19937_64 random(5);
    std::normal_distribution<double> normal;
    for (int trial = 0; trial < 200; ++trial) {
        std::vector<std::vector<double>> points(4, std::vector<double>(N));
        for (std::size_t i = 1; i < 4; ++i)
            for (std::size_t r = 0; r < N; ++r) points[i][r] = points[i - 1][r] + normal(random) + (r == 0);
        auto const coords = columns(points);
        auto const at = [&](double t) {
            vector<N> point;
            EXPECT_EQ(spline_point(coords, 0, 1, 2, 3, t, point), 0);
            return point;
        };
        EXPECT_EQ(at(0)[1], coords(1, 1));
        EXPECT_NEAR(norm(at(1) - vector_at<N>(coords.col(2))), 0, 1e-14);

        // Central differences are exact for a cubic but for (step^2) x'''.
        double const step = 1e-4;
        auto const span = spline_coefficients<N>(coords, 0, 1, 2, 3);
        auto const curvature = [&](double t) { return curvature_at(span, t); };
        for (double const t : {0.0, 0.3, 0.8, 1.0}) {
            auto const first = (at(t + step) - at(t - step)) * (0.5 / step);
            auto const second = (at(t + step) - 2 * at(t) + at(t - step)) * (1 / (step * step));
            double const speed = norm(first);
            if (speed < 0.2) continue;
            double const expected = norm(cross(first, second)) / std::pow(speed, 3);
            EXPECT_NEAR(curvature(t), expected, 1e-4 * (1 + expected)) << trial << ' ' << t;
        }
        double const(&gauss)[3][2] = {{0.5 - std::sqrt(0.15), 5}, {0.5, 8}, {0.5 + std::sqrt(0.15), 5}};
        double mean = 0;
        for (auto const& [t, weight] : gauss) mean += weight * curvature(t) / 18;
        EXPECT_NEAR(span_mean_curvature(span), mean, 1e-9 * mean) << trial;
    }
}

TEST(spline_span, agrees_with_differences)
{
    compare_with_differences<2>();
    compare_with_differences<3>();
}

TEST(spline_span, kinds)
{
    auto const coords = columns({{0, 0}, {1, 0}, {2, 1}, {3, 1}, {1, 0}, {1.5, 0.5}, {0.99, 0}, {0, -1}});
    struct
    {
        unsigned i0, i3;
        double a1[2], a2[2], a3[2];
    } const rows[] = {
        {0, 3, {1.34164, 0.447214}, {-1.02492, 1.65836}, {0.683282, -1.10557}},
        {1, 3, {0.658359, 1.55279}, {0.341641, -0.552786}, {0, 0}},
        {0, 2, {1.34164, 0.447214}, {-0.341641, 0.552786}, {0, 0}}, {1, 2, {1, 1}, {0, 0}, {0, 0}},
        {7, 2, {1, 1}, {0, 0}, {0, 0}}, // the tangent goes straight on
        {4, 2, {1, 1}, {0, 0}, {0, 0}}, // at the place of node 1, but another node: along the chord
        {5, 2, {1, 1}, {0, 0}, {0, 0}}, // against the chord: dropped, where ratios alone would not show it
        {6, 2, {1.006997, 0.992954}, {-0.006997, 0.007046}, {0, 0}}, // too short to count in full
    };
    for (auto const& row : rows) {
        auto const span = spline_coefficients<2>(coords, row.i0, 1, 2, row.i3);
        EXPECT_NEAR(span.chord, std::sqrt(2), 1e-15);
        for (std::size_t r = 0; r < 2; ++r) {
            EXPECT_NEAR(span.a1[r], row.a1[r], 5e-6) << &row - rows;
            EXPECT_NEAR(span.a2[r], row.a2[r], 5e-6) << &row - rows;
            EXPECT_NEAR(span.a3[r], row.a3[r], 5e-6) << &row - rows;
        }
    }
    // The kind with a tangent against the chord is quadratic, even if both ends have a guide node.
    EXPECT_EQ(norm(spline_coefficients<2>(coords, 5, 1, 2, 3).a3), 0);
    EXPECT_GT(norm(spline_coefficients<2>(coords, 4, 1, 2, 3).a3), 0.1);
    auto const at_one_place = spline_coefficients<2>(coords, 0, 1, 4, 3);
    EXPECT_EQ(at_one_place.chord + norm(at_one_place.a1) + norm(at_one_place.a2), 0);
    EXPECT_EQ(curvature_at(at_one_place, 0.5), largest);
    EXPECT_EQ(span_mean_curvature(at_one_place), largest);
}

TEST(spline_span, chordal_size_is_a_chord_within_the_sagitta)
{
    for (double const k : {1e-3, 1.0, 40.0})
        for (double const e : {1e-8, 0.01, 0.5, 0.999}) {
            double const half = chordal_size(k, e / k) / 2;
            EXPECT_NEAR(1 / k - std::sqrt((1 / k - half) * (1 / k + half)), e / k, 1e-12 / k);
            EXPECT_NEAR(chordal_size(k, -e), 2 * half, 1e-12 * half);
        }
    for (double const tolerance : {1.0, 1.5, -1.0, -1.5, infinity})
        EXPECT_EQ(chordal_size(1, tolerance), largest);
    for (double const k : {0.0, -0.0, not_a_number}) EXPECT_EQ(chordal_size(k, 0.01), largest);
    EXPECT_GT(chordal_size(largest, -0.01), 0); // a denormal
}

TEST(spline_span, reproduces_a_circle_to_fourth_order)
{
    double off_before = 0;
    double length_before = 0;
    for (unsigned n = 8; n <= 512; n *= 2) {
        auto const coords = circle(n);
        auto const span = spline_coefficients<2>(coords, n - 1, 0, 1, 2);
        double off = 0;
        for (int i = 0; i <= 100; ++i)
            off = std::max(off, std::abs(norm(span_offset(span, 0.01 * i) + span.a0) - 1));
        double const length = std::abs(span_arc_length(span) * n / (2 * std::numbers::pi) - 1);
        if (n > 8) {
            EXPECT_NEAR(std::log2(off_before / off), 4, 0.04) << n;
            EXPECT_NEAR(std::log2(length_before / length), 4, 0.06) << n;
        }
        off_before = off, length_before = length;
    }
    EXPECT_LT(off_before, 2e-10);
}

TEST(spline_point, statuses)
{
    vector<2> plane{5, 6};
    vector<3> space{5, 6, 7};
    auto const coords = columns({{0, 0}, {1, 0}});
    EXPECT_EQ(spline_point(coords, 9, 9, 9, 9, 0, space), -1);
    EXPECT_EQ(spline_point(coords, 2, 2, 2, 2, 0, plane), -2);
    EXPECT_EQ(spline_point(coords, 1, 2, 2, 2, 0, plane), -3);
    EXPECT_EQ(spline_point(coords, 1, 1, 2, 2, 0, plane), -4);
    EXPECT_EQ(spline_point(coords, 1, 1, 1, 2, 0, plane), -5);
    EXPECT_EQ(plane[0] + space[2], 12);
    EXPECT_EQ(spline_point(coords, 0, 0, 1, 1, -1, plane), 0);
    EXPECT_EQ(plane[0], -1);
}

template <std::size_t N>
static guided_chain<N> guided(meshing const& m)
{
    return {m.coords, m.indices.data(), m.indices.size()};
}

TEST(sample_spline, follows_the_curve_within_its_tolerance)
{
    for (std::size_t const rows : {2U, 3U})
        for (double const tolerance : {1e-2, 1e-4}) {
            meshing const m = spline_of(circle(12, rows), 1, true);
            spline_samples curve;
            ASSERT_TRUE(rows == 2 ? sample_spline(guided<2>(m), tolerance, 0, infinity, nullptr, curve)
                                  : sample_spline(guided<3>(m), tolerance, 0, infinity, nullptr, curve));
            std::size_t const count = curve.samples.cols();
            ASSERT_EQ(curve.sample_params.size(), count);
            EXPECT_TRUE(std::is_sorted(curve.sample_params.begin(), curve.sample_params.end()));
            EXPECT_EQ(curve.sample_params[0], 0);
            EXPECT_EQ(curve.sample_params[count - 1], 1);
            for (std::size_t k = 0; k + 2 < m.indices.size(); ++k) {
                std::size_t const at = curve.node_samples[k];
                EXPECT_EQ(curve.sample_params[at], curve.node_params[k]);
                for (std::size_t r = 0; r < rows; ++r)
                    EXPECT_EQ(curve.samples(r, at), m.coords(r, m.indices[k + 1]));
            }
            // On a circle a mean chord tells the distance from the curve.
            double const chord = curve.spline_length / double(count - 1);
            EXPECT_LT(chord * chord / 8, tolerance);
            EXPECT_GT(chord * chord / 8, 0.4 * std::min(tolerance, 0.02));
            EXPECT_NEAR(curve.deviation, 1 - std::cos(std::numbers::pi / 12), 0.0008);
            EXPECT_NEAR(curve.spline_length, 24 * std::sin(std::numbers::pi / 12), 1e-12);
        }
}

TEST(sample_spline, steps_of_a_span)
{
    auto const samples = [](meshing const& m, double tolerance, double min_step) {
        spline_samples curve;
        EXPECT_TRUE(sample_spline(guided<2>(m), tolerance, min_step, infinity, nullptr, curve));
        return curve.samples.cols();
    };
    meshing const straight = spline_of(columns({{0, 0}, {1, 0}, {3, 0}}), 1);
    EXPECT_EQ(samples(straight, 1e-9, 0), 5U);
    meshing const bent = spline_of(columns({{0, 0}, {1, 0}, {1, 1}}), 1);
    EXPECT_EQ(samples(bent, 100, 0), 5U);
    EXPECT_EQ(samples(bent, largest, 0.01), 5U);
    spline_span<2> const span = spline_coefficients<2>(bent.coords, 0, 0, 1, 2);
    double const length = span_arc_length(span);
    EXPECT_EQ(samples(bent, 1e-9, length / 8), 17U); // a whole ratio is not rounded up
    EXPECT_EQ(samples(bent, 1e-9, length / 8.001), 19U);
    EXPECT_EQ(samples(bent, 1e-9, 50), 5U);
    spline_samples curve;
    EXPECT_FALSE(sample_spline(guided<2>(bent), 1e-300, 0, infinity, nullptr, curve)); // at once
    EXPECT_FALSE(sample_spline(guided<2>(bent), -1e-30, 0, infinity, nullptr, curve));
}

TEST(bend_nodes, drops_what_lies_straight)
{
    meshing const m = spline_of(columns({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {2, 3}, {2 + 1e-13, 4}, {2, 6}}), 1);
    dense1D<unsigned> bends;
    dense1D<double> params, sizes;
    ASSERT_TRUE(find_bend_nodes(guided<2>(m), bends, params));
    EXPECT_EQ(values_of(bends), (std::vector<unsigned>{0, 0, 2, 6, 6}));
    EXPECT_EQ(values_of(params), (std::vector<double>{0, 0, 0.25, 1, 1}));
    ASSERT_TRUE(curvature_sizes<2>(sizes).build({m.coords, bends.data(), bends.size()}, -0.02));
    // The mean at the corner, weighted by its chords, 2 and 6.
    EXPECT_EQ(sizes[0], sizes[1]);
    EXPECT_NEAR(sizes[2], (2 * sizes[1] + 6 * sizes[3]) / 8, 1e-12);
    EXPECT_EQ(sizes[4], sizes[3]);
    // No mean is taken across a straight span.
    ASSERT_TRUE(curvature_sizes<2>(sizes).build(guided<2>(m), -0.02));
    EXPECT_EQ(sizes[2], largest);
    EXPECT_LT(sizes[3], 1);
}

TEST(mesh_spline, statuses_in_the_order_of_the_checks)
{
    // Each row breaks one argument more, from the last check to the first.
    meshing m = spline_of(arc(4, 1), 0.1);
    m.use_tensors();
    struct
    {
        void (*damage)(meshing&);
        int by_sizes, by_tensors;
    } const rows[] = {
        {[](meshing& c) { c.coords(1, 0) = infinity; }, -1, -1},
        {[](meshing& c) { ASSERT_TRUE(c.out_metrics.resize(4, 1, 1.0)); }, -1, -13},
        {[](meshing& c) { c.min_size = -1e-9; }, -8, -8},
        {[](meshing& c) { c.min_size = not_a_number; }, -8, -8},
        {[](meshing& c) { c.min_elements = 0; }, -5, -5},
        {[](meshing& c) { c.min_elements = 3, c.max_elements = 2; }, -5, -5},
        {[](meshing& c) { c.sizes[6] = -1, c.metrics(0, 6) = -1; }, -3, -3},
        {[](meshing& c) {
             ASSERT_TRUE(vornik::metrics_iso_to_aniso3d(reals({1, 1, 1, 1, 1, 1, 1}), c.metrics));
         },
            -3, -3},
        {[](meshing& c) { c.sizes = c.sizes.sub_vector(0, 6), c.metrics = c.metrics.sub_matrix(0, 0, 3, 6); },
            -3, -3},
        {[](meshing& c) { c.indices[6] = 5; }, -2, -2},
        {[](meshing& c) { c.indices = c.indices.sub_vector(0, 3); }, -2, -2},
        {[](meshing& c) { ASSERT_TRUE(c.coords.resize(4, 5, 0.0)); }, -1, -1},
    };
    for (auto const& row : rows) {
        row.damage(m);
        for (bool const by_tensors : {false, true}) {
            meshing call = m;
            if (!by_tensors) call.metrics.clear();
            auto const before = call.untouched();
            ASSERT_EQ(call.run(), by_tensors ? row.by_tensors : row.by_sizes) << &row - rows;
            EXPECT_EQ(call.untouched(), before);
            EXPECT_EQ(call.out_params.size(), 2U);
            EXPECT_EQ(call.deviation, 0);
        }
    }
    for (double const tolerance : {0.0, 1e-300}) { // of a finite curve without a finite length
        m = spline_of(columns({{0, 0}, {1, 1}, {2, 0}, {1.7e308, 0}}), 1);
        m.deviation_tolerance = tolerance;
        EXPECT_EQ(m.run(), -1);
    }
}

TEST(mesh_spline, appends_and_keeps_only_the_ends)
{
    meshing m = spline_of(arc(6, 2), 0.3);
    ASSERT_EQ(m.run(), 0);
    ASSERT_EQ(m.elements(), 7U);
    EXPECT_EQ(m.mesh(), (std::vector<unsigned>{0, 7, 8, 9, 10, 11, 12, 6}));
    EXPECT_EQ(m.out_params[2], 0);
    EXPECT_EQ(m.out_params[9], 1);
    EXPECT_NEAR(m.out_params[5], 3 / 7.0, 0.01);
    EXPECT_EQ(m.out_sizes.size(), 9U);
    EXPECT_NEAR(m.deviation, 1 - std::cos(1 / 6.0), 0.004); // the ends have one tangent only
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.out_indices.size(), 17U);
    EXPECT_EQ(m.coords.cols(), 19U);
    m = spline_of(arc(6, 2), 0.3);
    m.use_tensors();
    ASSERT_EQ(m.run(), 0);
    auto const once = values_of(m.out_metrics);
    ASSERT_EQ(m.run(), 0);
    auto const twice = values_of(m.out_metrics);
    ASSERT_EQ(twice.size(), 2 * once.size());
    EXPECT_TRUE(std::equal(once.begin(), once.end(), twice.begin()));
    EXPECT_EQ(once.back(), twice.back());

    // An entry of a list that has to grow for the result cannot take the deviation.
    meshing inside = spline_of(arc(6, 2), 0.01);
    auto const call = [&inside](double& deviation) {
        return vornik1d::mesh_spline(inside.coords, inside.indices, inside.sizes, false, 1, 1000, 0.0, 0.0,
            0.0, 0.0, inside.out_indices, inside.out_params, inside.out_sizes, deviation);
    };
    EXPECT_EQ(call(inside.coords(0, 0)) + call(inside.out_params[0]) + call(inside.out_sizes[0]), 0);
    EXPECT_EQ(inside.coords(0, 0) + inside.out_sizes[0], 0);
    EXPECT_EQ(inside.out_params[0], 0);

    meshing closed = spline_of(circle(9), 0.3, true);
    ASSERT_EQ(closed.run(), 0);
    EXPECT_EQ(closed.mesh().front(), closed.mesh().back());
    EXPECT_EQ(closed.elements(), 21U);
}

TEST(mesh_spline, an_airfoil_by_curvature_and_gradation)
{
    for (double const tolerance : {1e-3, 1e-4, 1e-5}) {
        meshing m = spline_of(airfoil(120), 0.1);
        m.deviation_tolerance = tolerance;
        m.min_size = 1e-5;
        m.max_gradation = 0.2;
        m.default_size = 0.1;
        ASSERT_EQ(m.run(), 0);

        // Distance of the curve, finely sampled, from the mesh.
        spline_samples curve;
        ASSERT_TRUE(sample_spline(guided<2>(m), 1e-8, 0, infinity, nullptr, curve));
        auto const mesh = m.mesh();
        std::vector<double> nearest(curve.samples.cols(), 1);
        for (std::size_t i = 1; i < mesh.size(); ++i) {
            auto const u = edge_vector<2>(m.coords.col(mesh[i - 1]), m.coords.col(mesh[i]));
            for (std::size_t j = 0; j < nearest.size(); ++j) {
                auto const v = edge_vector<2>(m.coords.col(mesh[i - 1]), curve.samples.col(j));
                nearest[j] = std::min(nearest[j], norm(v - std::clamp(dot(u, v) / dot(u, u), 0.0, 1.0) * u));
            }
            double const growth = m.out_sizes[i + 1] - m.out_sizes[i];
            EXPECT_LT(std::abs(growth), 0.2 * norm(u) * 1.01);
            EXPECT_NEAR(norm(u) / (m.out_sizes[i] + 0.5 * growth), 1, 0.08);
        }
        double const worst = *std::max_element(nearest.begin(), nearest.end());
        EXPECT_LT(worst, 1.2 * tolerance); // a tenth for the samples, a tenth for means of the curvature
        EXPECT_GT(worst, 0.9 * tolerance);

        // Mirrored, it has the mirrored mesh.
        meshing mirrored = m;
        mirrored.coords = airfoil(120);
        for (std::size_t node = 0; node < 241; ++node) mirrored.coords(1, node) *= -1;
        mirrored.out_indices = nodes({77});
        ASSERT_EQ(mirrored.run(), 0);
        ASSERT_EQ(mirrored.mesh(), mesh);
        for (unsigned const node : mesh) EXPECT_EQ(mirrored.coords(1, node), -m.coords(1, node));
    }
}

TEST(mesh_spline, space_scale_and_isotropic_tensors_change_nothing)
{
    std::mt19937_64 random(11);
    std::normal_distribution<double> normal;
    for (int trial = 0; trial < 40; ++trial) {
        std::vector<std::vector<double>> points(12, {0, 0, 0});
        for (std::size_t i = 1; i < 12; ++i)
            points[i] = {
                points[i - 1][0] + 0.3 + std::abs(normal(random)), points[i - 1][1] + normal(random), 0};
        meshing in_space = spline_of(columns(points), 1, trial % 2 == 0);
        for (double& h : in_space.sizes) h = std::exp(normal(random)) / 2;
        in_space.deviation_tolerance = trial % 3 == 0 ? -0.02 : trial % 3 == 1 ? 0.01 : 0;
        in_space.min_size = 0.05;
        in_space.max_gradation = 0.3;
        in_space.default_size = trial % 5 == 0 ? 2 : 0;
        meshing in_plane = in_space;
        in_plane.coords = columns(points);
        for (auto& point : points) point.pop_back();
        in_plane.coords = columns(points);

        meshing scaled = in_plane;
        // What counts as a bend is a matter of lengths, so that a tiny line has none; without a tolerance
        // none is asked for.
        double const scale = std::ldexp(1, in_plane.deviation_tolerance == 0 ? -166 : 166);
        ASSERT_TRUE(scaled.coords.copy(in_plane.coords) && scaled.sizes.copy(in_plane.sizes));
        for (std::size_t j = 0; j < 12; ++j) scaled.coords(0, j) *= scale, scaled.coords(1, j) *= scale;
        for (double& h : scaled.sizes) h *= scale;
        scaled.min_size *= scale, scaled.default_size *= scale;
        if (scaled.deviation_tolerance > 0) scaled.deviation_tolerance *= scale;

        meshing by_tensors = in_plane;
        ASSERT_TRUE(by_tensors.coords.copy(in_plane.coords));
        by_tensors.use_tensors();

        for (meshing* const m : {&in_plane, &in_space, &scaled, &by_tensors}) {
            m->out_indices = nodes({77});
            m->out_params = reals({});
            m->out_sizes = reals({0.7});
            ASSERT_EQ(m->run(), 0);
            ASSERT_EQ(m->mesh(), in_plane.mesh());
            double const unit = m == &scaled ? scale : 1;
            double const close = m == &by_tensors ? 1e-9 : 0;
            EXPECT_NEAR(m->deviation, in_plane.deviation * unit, 1e-12 * unit);
            for (std::size_t j = 0; j < in_plane.coords.cols(); ++j)
                for (std::size_t r = 0; r < 2; ++r)
                    ASSERT_NEAR(m->coords(r, j), in_plane.coords(r, j) * unit, close) << trial;
        }
    }
}

TEST(mesh_spline, regimes_of_default_size)
{
    auto const sizes = [](double default_size, double max_gradation, double tolerance) {
        meshing m = spline_of(columns({{0, 0}, {1, 0}, {2, 0}, {3, 0}}), 0.25);
        m.default_size = default_size;
        m.max_gradation = max_gradation;
        m.deviation_tolerance = tolerance;
        EXPECT_EQ(m.run(), 0);
        return values_of(m.out_sizes.sub_vector(1, 1000));
    };
    auto const greatest = [](std::vector<double> const& h) { return *std::max_element(h.begin(), h.end()); };
    EXPECT_EQ(greatest(sizes(0.5, 0, 0)), 0.25);
    EXPECT_EQ(greatest(sizes(0, 0.1, 0)), 0.25);
    EXPECT_NEAR(greatest(sizes(0.5, 0.1, 0)), 0.3, 0.02); // half a length of 1 at 0.1 from each node
    EXPECT_GT(greatest(sizes(0.5, largest_double, 0)), 0.4);
    EXPECT_EQ(sizes(0.1, 1, 0).front(), 0.25); // a node keeps its size, samples beside it have less
}

TEST(mesh_spline, degenerate_lines_end_well)
{
    auto const finite = [](meshing const& m) {
        for (std::size_t j = 0; j < m.coords.cols(); ++j)
            for (std::size_t r = 0; r < 2; ++r)
                if (!std::isfinite(m.coords(r, j))) return false;
        return true;
    };
    std::vector<std::vector<std::vector<double>>> const lines = {
        {{1, 1}, {1, 1}, {1, 1}, {1, 1}},                   // at one place
        {{0, 0}, {1, 0}, {1, 0}, {2, 1}},                   // a node twice
        {{0, 0}, {1, 0}, {0, 0}, {1, 0}},                   // to and fro
        {{0, 0}, {1, 0}, {0.5, 0}, {2, 0}},                 // a reversal
        {{0, 0}, {1e-300, 0}, {1e-300, 1e-300}, {0, 0}},    // squares underflow
        {{0, 0}, {1e150, 0}, {1e150, 1e150}, {0, 1e150}},   // fourth powers overflow
        {{0, 0}, {1e-160, 1e-170}, {1, 1e-320}, {1e90, 0}}, // scales apart
    };
    for (auto const& points : lines)
        for (bool const is_closed : {false, true})
            for (double const tolerance :
                {0.0, 0.01, -0.01, 1e-300, -1e-300, -largest_double, not_a_number, infinity})
                for (double const min_size : {0.0, 0.01, infinity})
                    for (bool const by_tensors : {false, true}) {
                        meshing m = spline_of(columns(points), 0.1, is_closed);
                        if (by_tensors) m.use_tensors();
                        m.deviation_tolerance = tolerance;
                        m.min_size = min_size;
                        m.max_elements = 1000;
                        m.max_gradation = 0.5;
                        int const status = m.run();
                        ASSERT_TRUE(status == 0 || status == -199) << status;
                        EXPECT_TRUE(finite(m)) << points[2][0] << ' ' << tolerance << ' ' << min_size;
                        EXPECT_LE(m.out_indices.size(), 1002U);
                    }
}

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "arrays/vectors.h"
#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

static dense2D<double> circle(std::size_t n, std::size_t rows = 2)
{
    return arc(n - 1, 2 * std::numbers::pi * (1 - 1 / double(n)), rows);
}

// Upper side of a cambered NACA 0012 section from its tail to the nose, and back below: Jacobs, Ward,
// Pinkerton, NACA Report 460, 1933.
static dense2D<double> airfoil(std::size_t half)
{
    point_list outline(2 * half + 1);
    for (std::size_t k = 0; k <= 2 * half; ++k) {
        double const x = (1 + std::cos(std::numbers::pi * double(k) / double(half))) / 2;
        double const y =
            0.6 * (0.2969 * std::sqrt(x) + x * (-0.126 + x * (-0.3516 + x * (0.2843 - x * 0.1036))));
        outline[k] = {x, 0.1 * x * (1 - x) + (k < half ? y : -y)};
    }
    return columns(outline);
}

template <std::size_t N>
static vector<N> point_at(dense2D<double> const& coords, numbers const& i, double t)
{
    vector<N> point{};
    EXPECT_EQ(spline_point(coords, i[0], i[1], i[2], i[3], t, point), 0);
    return point;
}

// Between nodes with tangents m1 and m2 the curve is Bezier's of P1, P1 + m1/3, P2 - m2/3, P2. A tangent is that of
// the parabola through three nodes, at chord lengths, and as long as the chord; a free end leaves a parabola.
template <std::size_t N>
static void compare_with_bezier()
{
    random_numbers random(5);
    for (int trial = 0; trial < 200; ++trial) {
        dense2D<double> coords;
        ASSERT_TRUE(coords.resize(N, 4, 0.0));
        for (std::size_t i = 1; i < 4; ++i)
            for (std::size_t r = 0; r < N; ++r)
                coords(r, i) = coords(r, i - 1) + random.between(-1, 1) + (r == 0 ? 1.2 : 0);
        vector<N> const p[] = {vector_at<N>(coords.col(0)), vector_at<N>(coords.col(1)),
            vector_at<N>(coords.col(2)), vector_at<N>(coords.col(3))};
        auto const d = p[2] - p[1];
        auto const tangent = [&](std::size_t i) {
            double const before = norm(p[i] - p[i - 1]), after = norm(p[i + 1] - p[i]);
            auto const parabola = (p[i] - p[i - 1]) * (after / before) + (p[i + 1] - p[i]) * (before / after);
            return parabola * (norm(d) / norm(parabola));
        };
        bool const is_start_free = random.below(3) == 0, is_end_free = random.below(3) == 0;
        if ((!is_start_free && dot(tangent(1), d) < 0.1) || (!is_end_free && dot(tangent(2), d) < 0.1))
            continue;
        vector<N> m1 = is_start_free ? d : tangent(1);
        vector<N> m2 = is_end_free ? 2 * d - m1 : tangent(2);
        if (is_start_free) m1 = 2 * d - m2;
        numbers const chain = {is_start_free ? 1U : 0U, 1, 2, is_end_free ? 2U : 3U};
        for (double const t : {-0.5, 0.0, 0.3, 0.8, 1.0}) {
            vector<N> b[] = {p[1], p[1] + m1 * (1 / 3.0), p[2] - m2 * (1 / 3.0), p[2]};
            for (std::size_t level = 3; level > 0; --level) // de Casteljau
                for (std::size_t i = 0; i < level; ++i) b[i] = b[i] * (1 - t) + b[i + 1] * t;
            EXPECT_LT(norm(point_at<N>(coords, chain, t) - b[0]), 1e-12 * (1 + norm(d))) << trial << ' ' << t;
        }
        EXPECT_EQ(point_at<N>(coords, chain, 0)[1], coords(1, 1));
    }
}

TEST(spline_point, is_on_the_cubic_with_tangents_of_parabolas)
{
    compare_with_bezier<2>();
    compare_with_bezier<3>();

    auto const coords = columns({{0, 0}, {1, 0}, {2, 1}, {1, 0}, {1.5, 0.5}, {0, -1}, {0.99, 0}});
    auto const off = [&](unsigned guide, unsigned like) {
        return norm(point_at<2>(coords, {guide, 1, 2, 2}, 0.3) - point_at<2>(coords, {like, 1, 2, 2}, 0.3));
    };
    EXPECT_GT(off(0, 1), 0.01);
    EXPECT_EQ(off(4, 1), 0);     // the tangent would point against the chord: none
    EXPECT_LT(off(3, 5), 1e-15); // at the place of the node, but another one: the tangent goes straight on
    // A neighbour of 0.01 beside a chord of 1.41 counts as 0.01 times its direction and once that of the chord.
    auto const slope = point_at<2>(coords, {6, 1, 2, 2}, 1e-6) - point_at<2>(coords, {6, 1, 2, 2}, -1e-6);
    EXPECT_NEAR(slope[1] / slope[0], std::sqrt(0.5) / (0.01 + std::sqrt(0.5)), 1e-8);
    // At one place, there is no curve.
    EXPECT_EQ(norm(point_at<2>(coords, {0, 1, 3, 2}, 0.7) - vector<2>{1, 0}), 0);
}

TEST(mesh_spline, curvature_bounds_sizes_by_the_sagitta)
{
    // On a circle of radius 1 an element with sagitta e is 2 sqrt(e (2 - e)) long.
    double const asked = 0.9;
    for (auto const& [tolerance, floor, size] :
        {std::tuple(0.02, 0.0, 2 * std::sqrt(0.02 * 1.98)), {-0.02, 0.0, 2 * std::sqrt(0.02 * 1.98)},
            {1e-4, 0.0, 2 * std::sqrt(1e-4 * 1.9999)}, {-0.02, 0.6, 0.6}, {1.0, 0.0, asked},
            {-1.0, 0.0, asked}, {-1.5, 0.0, asked}, {infinity, 0.0, asked}, {0.0, 0.0, asked}})
        for (std::size_t const rows : {2U, 3U}) {
            meshing m = spline_of(circle(64, rows), asked, true);
            m.deviation_tolerance = tolerance, m.min_size = floor;
            ASSERT_EQ(m.run(), 0);
            EXPECT_EQ(m.mesh().front(), m.mesh().back());
            EXPECT_EQ(m.elements(), unsigned(std::lround(2 * std::numbers::pi / size)));
            for (std::size_t k = 1; k < m.out_sizes.size(); ++k) EXPECT_NEAR(m.out_sizes[k], size, 1e-4);
            EXPECT_NEAR(m.deviation, 1 - std::cos(std::numbers::pi / 64), 2e-5);
        }
}

TEST(mesh_spline, nodes_beside_a_straight_line_bend_from_1e_12_on)
{
    auto const elements = [](double off, bool is_backwards) {
        point_list line = {{0, -1}, {0, 0}, {10, 0}, {11, off}, {11, 1}};
        if (is_backwards) std::reverse(line.begin(), line.end());
        meshing m = spline_of(columns(line), 3);
        m.deviation_tolerance = -0.02;
        EXPECT_EQ(m.run(), 0);
        return m.elements();
    };
    for (bool const is_backwards : {false, true}) {
        EXPECT_EQ(elements(4e-13, is_backwards), elements(0, is_backwards));
        EXPECT_LT(
            elements(4e-12, is_backwards), elements(0, is_backwards)); // it has the size of a straight span
    }
}

TEST(mesh_spline, nodes_lie_on_the_curve_at_their_parameters)
{
    // Small elements on samples that are held to a tenth of the tolerance; the parameter grows with t by the speed
    // at the start of a span.
    double const tolerance = 0.01;
    point_list const bent = {{0, 0, 0}, {1, 0, 0.3}, {1, 2, 0}, {4, 2, 1}, {5, 1, 1}};
    for (std::size_t const rows : {2U, 3U}) {
        auto corners = bent;
        for (auto& corner : corners) corner.resize(rows);
        meshing m = spline_of(columns(corners), 0.01);
        m.deviation_tolerance = tolerance;
        auto const at = [&](std::size_t span, double t) {
            numbers const chain(m.indices.begin() + span, m.indices.begin() + span + 4);
            if (rows == 3) return point_at<3>(m.coords, chain, t);
            auto const p = point_at<2>(m.coords, chain, t);
            return vector<3>{p[0], p[1], 0};
        };
        double start[5] = {};
        for (std::size_t k = 0; k < 4; ++k) start[k + 1] = start[k] + norm(at(k, 1e-6) - at(k, -1e-6)) / 2e-6;
        ASSERT_EQ(m.run(), 0);
        double worst = 0;
        for (std::size_t k = 1; k + 1 < m.mesh().size(); ++k) {
            double const param = m.out_params[k + 2] * start[4];
            auto const span = std::size_t(std::lower_bound(start, start + 5, param) - start) - 1;
            auto point = vector_at<3>(m.coords.col(m.mesh()[k]));
            if (rows == 2) point[2] = 0;
            worst = std::max(
                worst, norm(point - at(span, (param - start[span]) / (start[span + 1] - start[span]))));
        }
        EXPECT_LT(worst, 0.15 * tolerance);
        EXPECT_GT(worst, 0.05 * tolerance);
    }
}

TEST(mesh_spline, an_airfoil_by_curvature_and_gradation)
{
    for (double const tolerance : {1e-3, 1e-4, 1e-5}) {
        meshing m = spline_of(airfoil(120), 0.1);
        m.deviation_tolerance = tolerance, m.min_size = 1e-5, m.max_gradation = 0.2, m.default_size = 0.1;
        ASSERT_EQ(m.run(), 0);

        // Distance of points of the curve from the mesh.
        std::vector<vector<2>> curve;
        for (std::size_t span = 0; span + 3 < m.indices.size(); ++span)
            for (int i = 0; i < 20; ++i)
                curve.push_back(point_at<2>(m.coords, {&m.indices[span], &m.indices[span] + 4}, 0.05 * i));
        std::vector<double> nearest(curve.size(), 1);
        auto const mesh = m.mesh();
        for (std::size_t i = 1; i < mesh.size(); ++i) {
            auto const a = vector_at<2>(m.coords.col(mesh[i - 1])),
                       u = vector_at<2>(m.coords.col(mesh[i])) - a;
            for (std::size_t j = 0; j < curve.size(); ++j) {
                auto const v = curve[j] - a;
                nearest[j] = std::min(nearest[j], norm(v - std::clamp(dot(u, v) / dot(u, u), 0.0, 1.0) * u));
            }
            double const growth = m.out_sizes[i + 1] - m.out_sizes[i];
            EXPECT_LT(std::abs(growth), 0.2 * norm(u) * 1.01);
            EXPECT_NEAR(norm(u) / (m.out_sizes[i] + 0.5 * growth), 1, 0.08);
        }
        double const worst = *std::max_element(nearest.begin(), nearest.end());
        EXPECT_LT(worst, 1.2 * tolerance); // a tenth for the samples, a tenth for means of the curvature
        EXPECT_GT(worst, 0.9 * tolerance);
    }
}

TEST(mesh_spline, default_size_and_gradation)
{
    // Nodes of size 0.25 at distances of 1 on a straight line.
    struct
    {
        double default_size, max_gradation, least, greatest, close;
    } const rows[] = {{0.5, 0, 0.25, 0.25, 0}, {0, 0.1, 0.25, 0.25, 0}, {0.5, 0.1, 0.25, 0.3, 0.02},
        {0.5, largest_double, 0.25, 0.5, 0.1},
        {0.1, 1, 0.1, 0.25, 0}}; // in the last one samples have less than nodes
    for (auto const& row : rows) {
        meshing m = spline_of(columns({{0, 0}, {1, 0}, {2, 0}, {3, 0}}), 0.25);
        m.default_size = row.default_size, m.max_gradation = row.max_gradation;
        ASSERT_EQ(m.run(), 0);
        auto const [least, greatest] = std::minmax_element(m.out_sizes.begin() + 1, m.out_sizes.end());
        EXPECT_NEAR(*least, row.least, row.close) << &row - rows;
        EXPECT_NEAR(*greatest, row.greatest, row.close) << &row - rows;
    }
}

TEST(mesh_spline, degenerate_lines_end_well)
{
    point_list const lines[] = {
        {{1, 1}, {1, 1}, {1, 1}, {1, 1}},                   // at one place
        {{0, 0}, {1, 0}, {1, 0}, {2, 1}},                   // a node twice
        {{0, 0}, {1, 0}, {0, 0}, {1, 0}},                   // to and fro
        {{0, 0}, {1, 0}, {0.5, 0}, {2, 0}},                 // a reversal
        {{0, 0}, {1e-300, 0}, {1e-300, 1e-300}, {0, 0}},    // squares underflow
        {{0, 0}, {1e150, 0}, {1e150, 1e150}, {0, 1e150}},   // fourth powers overflow
        {{0, 0}, {1e-160, 1e-170}, {1, 1e-320}, {1e90, 0}}, // scales apart
    };
    for (auto const& line : lines)
        for (bool const is_closed : {false, true})
            for (double const tolerance :
                {0.0, 0.01, -0.01, 1e-300, -1e-300, -largest_double, not_a_number, infinity})
                for (double const min_size : {0.0, 0.01, infinity})
                    for (bool const by_tensors : {false, true}) {
                        meshing m = spline_of(columns(line), 0.1, is_closed);
                        if (by_tensors) m.use_tensors();
                        m.deviation_tolerance = tolerance, m.min_size = min_size;
                        m.max_elements = 1000, m.max_gradation = 0.5;
                        // Such a tolerance takes more samples than there are numbers.
                        int const status = m.run();
                        EXPECT_TRUE(status == 0 || (status == -199 && std::abs(tolerance) == 1e-300))
                            << status;
                        for (std::size_t j = 0; j < m.coords.cols(); ++j)
                            EXPECT_TRUE(std::isfinite(m.coords(0, j)) && std::isfinite(m.coords(1, j)));
                        EXPECT_LE(m.out_indices.size(), 1002U);
                    }
}

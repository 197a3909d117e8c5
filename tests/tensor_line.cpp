#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

#include <vornik/toolkit.h>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

std::mt19937 random_bits(23);

double uniform(double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(random_bits);
}

meshing random_chain(std::size_t rows)
{
    std::vector<std::vector<double>> points(3 + random_bits() % 30, std::vector<double>(rows));
    for (std::size_t k = 1; k < points.size(); ++k)
        for (std::size_t r = 0; r < rows; ++r)
            points[k][r] = points[k - 1][r] + (r == 0) + uniform(-0.7, 0.7);
    meshing m = chain_of(columns(points), 1);
    for (double& h : m.sizes) h = uniform(0.1, 1);
    double const tolerances[] = {-0.01, 0, 0.05};
    m.deviation_tolerance = tolerances[random_bits() % 3];
    m.force_even = random_bits() % 2 == 0;
    m.with_params = random_bits() % 2 == 0;
    return m;
}

/// A chain and tensors of random axes, each with sizes 0.1 to 1, in coordinates turned by `angle` and scaled.
meshing turned(meshing const& chain, double angle, double scale)
{
    meshing t = chain;
    t.out_indices = nodes({77});
    t.out_params = reals({});
    EXPECT_TRUE(t.coords.copy(chain.coords) && t.metrics.resize(3, chain.sizes.size()));
    double const c = std::cos(angle), s = std::sin(angle);
    for (std::size_t k = 0; k < chain.sizes.size(); ++k) {
        double const x = chain.coords(0, k), y = chain.coords(1, k);
        t.coords(0, k) = scale * (c * x - s * y);
        t.coords(1, k) = scale * (s * x + c * y);
        double const a = 5 * chain.sizes[k] + angle, h = chain.sizes[k] * scale;
        double const e0 = 1 / (h * h), e1 = 16 * e0;
        t.metrics(0, k) = e0 * std::cos(a) * std::cos(a) + e1 * std::sin(a) * std::sin(a);
        t.metrics(1, k) = (e0 - e1) * std::cos(a) * std::sin(a);
        t.metrics(2, k) = e0 * std::sin(a) * std::sin(a) + e1 * std::cos(a) * std::cos(a);
    }
    return t;
}

} // namespace

TEST(tensor_line, isotropic_tensors_mesh_as_sizes_do)
{
    for (int round = 0; round < 300; ++round) {
        meshing m = random_chain(2 + std::size_t(round % 2));
        meshing t = m;
        t.use_tensors();
        ASSERT_TRUE(
            t.coords.copy(m.coords) && t.out_indices.copy(m.out_indices) && t.out_params.copy(m.out_params));
        ASSERT_EQ(m.run(), 0);
        ASSERT_EQ(t.run(), 0);
        ASSERT_EQ(t.mesh(), m.mesh()) << round;
        for (std::size_t j = 0; j < m.coords.cols(); ++j)
            for (std::size_t r = 0; r < m.coords.rows(); ++r)
                ASSERT_NEAR(t.coords(r, j), m.coords(r, j), 1e-9);
        ASSERT_EQ(t.out_metrics.cols(), m.mesh().size());
        for (std::size_t k = 0; k < t.out_metrics.cols(); ++k)
            ASSERT_NEAR(1 / std::sqrt(t.out_metrics(0, k)), m.out_sizes[k + 1], 1e-9);
    }
}

TEST(tensor_line, turns_and_scales_with_its_space)
{
    for (int round = 0; round < 100; ++round) {
        meshing const chain = random_chain(2);
        auto straight = turned(chain, 0, 1);
        auto scaled = turned(chain, 0, 0x1p20);
        auto rotated = turned(chain, 0.7, 1);
        if (chain.deviation_tolerance > 0) scaled.deviation_tolerance *= 0x1p20;
        for (auto* t : {&straight, &scaled, &rotated}) {
            ASSERT_EQ(t->run(), 0);
            ASSERT_EQ(t->mesh(), straight.mesh());
        }
        for (std::size_t j = 0; j < straight.coords.cols(); ++j) {
            double const x = straight.coords(0, j), y = straight.coords(1, j);
            ASSERT_EQ(scaled.coords(0, j), x * 0x1p20);
            ASSERT_EQ(scaled.coords(1, j), y * 0x1p20);
            ASSERT_NEAR(rotated.coords(0, j), std::cos(0.7) * x - std::sin(0.7) * y, 1e-9);
            ASSERT_NEAR(rotated.coords(1, j), std::sin(0.7) * x + std::cos(0.7) * y, 1e-9);
        }
    }
}

TEST(tensor_line, statuses)
{
    struct
    {
        void (*damage)(meshing&);
        int with_params, without;
    } const rows[] = {
        {[](meshing& t) { t.indices[1] = 99; }, -2, -2},
        {[](meshing& t) {
             t.out_metrics = columns({{1, 0, 1, 0, 0, 1}});
         },
            -11, -2},
        {[](meshing& t) { t.indices[1] = 1; }, -11, -10},
        {[](meshing& t) { t.min_elements = 0; }, -6, -5},
        {[](meshing& t) { ASSERT_TRUE(vornik::metrics_iso_to_aniso3d(t.sizes, t.metrics)); }, -4, -3},
        {[](meshing& t) { t.metrics(0, 1) = -1; }, -4, -3},
        {[](meshing& t) { t.metrics = t.metrics.sub_matrix(0, 0, 6, 2); }, -4, -3},
        {[](meshing& t) { t.params[2] = -1; }, -3, -3},
    };
    meshing t = turned(chain_of(arc(3, 1), 0.1), 0, 1);
    ASSERT_TRUE(t.out_metrics.resize(7, 0)); // no column: any row count will do
    for (auto const& row : rows) {
        row.damage(t);
        auto const before = t.untouched();
        for (bool const with_params : {false, true}) {
            t.with_params = with_params;
            ASSERT_EQ(t.run(), with_params ? row.with_params : row.without) << &row - rows;
            ASSERT_EQ(t.untouched(), before);
        }
    }
}

TEST(tensor_line, outputs_without_rows_have_no_columns)
{
    for (std::size_t const columns : {std::size_t(3), std::size_t(SIZE_MAX)}) {
        meshing t = turned(chain_of(arc(3, 1), 0.1), 0, 1);
        ASSERT_TRUE(t.out_metrics.resize(0, columns));
        ASSERT_EQ(t.run(), 0);
        EXPECT_EQ(t.out_metrics.cols(), t.mesh().size());
    }
}

TEST(mesh_straight, cuts_each_segment_on_its_own)
{
    auto const line = columns({{0, 0}, {1, 0}, {1, 3}});
    auto const ends = nodes({0, 1, 2});
    dense2D<double> coords;
    auto const status = [&](auto... arguments) {
        EXPECT_TRUE(coords.copy(line));
        auto mesh = nodes({9});
        int const code = mesh_straight(coords, arguments..., mesh);
        EXPECT_EQ(mesh[0], 9U);
        auto const new_nodes = std::count_if(mesh.begin() + 1, mesh.end(), [](unsigned k) { return k >= 3; });
        EXPECT_EQ(coords.cols(), 3 + std::size_t(new_nodes)) << code;
        return code == 0 ? int(mesh.size()) - 2 : code; // elements
    };
    EXPECT_EQ(status(ends, 4U, false), 4);
    EXPECT_EQ(coords(1, 3), 1);
    EXPECT_EQ(status(ends, 4U, true), 6); // 1 becomes 2, 3 becomes 4
    EXPECT_EQ(status(0U, 1U, 2U, 4U), 4);
    EXPECT_EQ(status(0U, 1U, 49U), 49);
    EXPECT_EQ(status(0U, 1U, 0.25, 0.25, false), 4);
    EXPECT_EQ(status(ends, reals({1, 1, 0.5}), false), 5);
    EXPECT_EQ(status(ends, columns({{1, 0, 1}, {1, 0, 1}, {4, 0, 4}}), false), 5);
    EXPECT_EQ(version(), std::string("5.6.0.0"));

    auto const tensors = [](std::size_t n, double entry = 1) {
        return columns(std::vector<std::vector<double>>(n, {entry, 0, 1}));
    };
    EXPECT_EQ(status(nodes({}), reals({}), false), -1); // success, and no element
    EXPECT_EQ(status(nodes({}), tensors(0), false), -1);
    EXPECT_EQ(status(nodes({7}), 0U, false), -1);
    EXPECT_EQ(status(7U, 8U, 0U), -1);
    EXPECT_EQ(status(7U, 8U, 9U, 0U), -1);
    EXPECT_EQ(status(nodes({}), 1U, false), -2);
    for (auto const& chain : {nodes({0}), nodes({0, 3})}) {
        EXPECT_EQ(status(chain, reals({1, 1}), false), -2);
        EXPECT_EQ(status(chain, tensors(2), false), -2);
        EXPECT_EQ(status(chain, 3U, false), -2);
    }
    EXPECT_EQ(status(ends, reals({1, 1}), false), -3);
    EXPECT_EQ(status(ends, tensors(2), false), -3);
    EXPECT_EQ(status(ends, tensors(3, -1), false), -3);
    EXPECT_EQ(status(ends, columns({{1, 0, 1, 0, 0, 1}, {1, 0, 1, 0, 0, 1}, {1, 0, 1, 0, 0, 1}}), false), -3);
    EXPECT_EQ(status(nodes({1, 1}), 3U, false), -3);
    EXPECT_EQ(status(7U, 8U, 1.0, 1.0, false), -2);
    EXPECT_EQ(status(0U, 8U, 1.0, 1.0, false), -3);
    EXPECT_EQ(status(0U, 1U, 0.0, 0.0, false), -4);
    EXPECT_EQ(status(0U, 1U, 1.0, not_a_number, false), -5);
    EXPECT_EQ(status(7U, 8U, 3U), -2);
    EXPECT_EQ(status(0U, 8U, 3U), -3);
    EXPECT_EQ(status(1U, 1U, 3U), -4);
    EXPECT_EQ(status(7U, 8U, 9U, 3U), -2);
    EXPECT_EQ(status(0U, 8U, 9U, 3U), -3);
    EXPECT_EQ(status(0U, 1U, 8U, 3U), -4);
    EXPECT_EQ(status(1U, 1U, 1U, 3U), -3);

    dense2D<double> odd = columns({{0, 0, 0, 0}, {1, 0, 0, 0}});
    auto mesh = nodes({9});
    EXPECT_EQ(mesh_straight(odd, nodes({0, 1}), reals({1, 1}), false, mesh), -1);
    EXPECT_EQ(mesh_straight(odd, nodes({0, 1}), tensors(2), false, mesh), -1);
    EXPECT_EQ(mesh_straight(odd, nodes({0, 1}), 2, false, mesh), -1);
    EXPECT_EQ(mesh_straight(odd, 0, 1, 1.0, 1.0, false, mesh), -1);
    EXPECT_EQ(mesh_straight(odd, 0, 1, 2, mesh), -1);
    EXPECT_EQ(mesh_straight(odd, 0, 1, 0, 2, mesh), -1);
    EXPECT_EQ(mesh.size(), 1U);
}

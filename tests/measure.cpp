#include <gtest/gtest.h>

#include <cmath>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

TEST(curvatures, of_known_chains)
{
    dense1D<double> c;
    auto const corner = columns({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {1, 0, 0.5}, {1, 0, 0.5}, {1, 0, 9}});
    ASSERT_EQ(curvatures(corner, nodes({0, 1, 2}), c), 0);
    for (double const v : c) EXPECT_DOUBLE_EQ(v, std::sqrt(2.0));
    ASSERT_EQ(curvatures(corner, nodes({1, 2, 3, 4, 5}), c), 0); // a reversal, then a repeated node
    EXPECT_EQ(values_of(c), (std::vector<double>{4 / 1.5, 4 / 1.5, 0, 0, 0}));
    ASSERT_EQ(curvatures(corner, nodes({0, 2}), c), 0);
    EXPECT_EQ(values_of(c), (std::vector<double>{0, 0}));
    ASSERT_EQ(curvatures(arc(50, 6), nodes_up_to(51), c), 0);
    for (double const v : c) EXPECT_NEAR(v, 1, 1e-12); // exact for equal chords of a circle
}

TEST(curvatures, statuses)
{
    auto const status = [](dense2D<double> const& coords, dense1D<unsigned> const& chain) {
        dense1D<double> result;
        int const code = curvatures(coords, chain, result);
        EXPECT_EQ(result.size(), code == 0 ? chain.size() : 0U);
        return code;
    };
    EXPECT_EQ(status(columns({{1, 2, 3, 4, 5}}), nodes({})), 0);
    EXPECT_EQ(status(columns({{1, 2, 3, 4, 5}}), nodes({0})), -1);
    EXPECT_EQ(status(columns({{1, 2}}), nodes({0, 1})), -2);
    EXPECT_EQ(status(columns({{1, 2}}), nodes({0})), 0);
    auto const line = arc(5, 1);
    auto const chain = nodes_up_to(6);
    failing_allocations const none(0, failing_allocations::extent::all_behind);
    EXPECT_EQ(status(line, chain), -199);
}

TEST(interpolate_coordinates, moves_nodes_onto_the_chain)
{
    // A chain of five nodes, two of them at one parameter; node 3 is moved too and bends it for those behind.
    auto coords = columns({{0, 0, 1}, {4, 0, 1}, {4, 8, 1}, {8, 8, 1}, {0, 8, 1}, {}, {}, {}, {}, {}, {}});
    auto const params = reals({0, 1, 1, 2, 4});
    auto const targets = nodes({5, 6, 7, 8, 3, 9, 10});
    ASSERT_EQ(interpolate_coordinates(
                  coords, nodes_up_to(5), params, targets, reals({-1, 0.25, 1, 1.5, 1.5, 3, 9})),
        0);
    std::vector<std::vector<double>> const expected = {
        {0, 0, 1}, {1, 0, 1}, {4, 0, 1}, {6, 8, 1}, {3, 8, 1}, {0, 8, 1}};
    EXPECT_EQ(values_of(coords.sub_matrix(0, 5, 3, 6)), expected);
    EXPECT_EQ(values_of(coords.sub_matrix(0, 3, 3, 1)), (std::vector<std::vector<double>>{{6, 8, 1}}));
}

TEST(interpolate_coordinates, statuses)
{
    auto coords = columns({{0, 0}, {2, 4}, {9, 9}});
    auto const before = values_of(coords);
    auto const status = [&](std::vector<unsigned> const& chain, std::vector<double> const& params,
                            std::vector<unsigned> const& targets, std::vector<double> const& new_params) {
        return interpolate_coordinates(coords, list(chain), list(params), list(targets), list(new_params));
    };
    EXPECT_EQ(status({0, 1}, {0}, {2}, {1, 0}), -2);
    EXPECT_EQ(status({0, 1}, {1, 0}, {2}, {}), -3);
    EXPECT_EQ(status({0, 1}, {0, not_a_number}, {2}, {}), -3);
    EXPECT_EQ(status({0, 1}, {0, 1}, {2}, {1, 0}), -4);
    EXPECT_EQ(status({0, 1}, {0, 1}, {2, 2}, {1, 0}), -5);
    EXPECT_EQ(status({}, {}, {2}, {1}), 0);
    EXPECT_EQ(status({0, 7}, {0, 1}, {2, 7}, {1, 1}), 0);
    EXPECT_EQ(values_of(coords), before);
    EXPECT_EQ(status({1, 7}, {0, 1}, {7, 2}, {0, 0}), 0); // passes over the first, moves the second
    EXPECT_EQ(coords(1, 2), 4);
}

TEST(length, of_chains_and_meshes)
{
    auto const coords = columns({{0, 0, 0}, {3, 4, 0}, {3, 4, 12}});
    double result = 7;
    EXPECT_EQ(vornik1d::length(coords, nodes({0, 1, 2, 1}), result), 0);
    EXPECT_EQ(result, 29);
    EXPECT_EQ(vornik1d::length(coords, nodes({0, 1, 3, 2}), result), -2);
    EXPECT_EQ(result, 5);
    for (auto const& chain : {nodes({}), nodes({1}), nodes({3, 0})}) {
        EXPECT_EQ(vornik1d::length(coords, chain, result), -2);
        EXPECT_EQ(result, 0);
    }
    auto connect = columns<unsigned>({{0, 1, 99}, {2, 1, 99}});
    EXPECT_EQ(vornik1d::length(coords, connect, result), 0);
    EXPECT_EQ(result, 17);
    connect(1, 1) = 3;
    EXPECT_EQ(vornik1d::length(coords, connect, result), -2);
    EXPECT_EQ(vornik1d::length(dense2D<double>(), connect, result), -1);
    EXPECT_EQ(vornik1d::length(dense2D<double>(), nodes({0, 1}), result), -1);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(vornik1d::length(coords, dense2D<unsigned>(), result), 0);
}

TEST(parametric_curvatures, of_a_circle_and_of_odd_elements)
{
    // A circle of radius 2 by its angle, which runs up and down along the elements: curvature 1/2, as near as
    // the mean tangent of an element tells.
    std::size_t const n = 100;
    dense1D<double> params(n), result;
    dense2D<double> plane, space;
    dense2D<unsigned> connect;
    ASSERT_TRUE(plane.resize(2, n) && space.resize(3, n) && connect.resize(2, n - 1));
    for (unsigned k = 0; k < n; ++k) {
        double const angle = params[k] = 0.01 * k;
        plane(0, k) = -2 * std::sin(angle), plane(1, k) = 2 * std::cos(angle);
        space(0, k) = plane(0, k), space(1, k) = 0.6 * plane(1, k), space(2, k) = 0.8 * plane(1, k);
        if (k > 0) connect(k % 2, k - 1) = k, connect(1 - k % 2, k - 1) = k - 1;
    }
    for (auto const* const tangents : {&plane, &space}) {
        ASSERT_EQ(vornik1d::parametric_curvatures(params, connect, *tangents, result), 0);
        for (double const c : result) EXPECT_NEAR(c, 0.5, 2e-5);
    }
    // Opposite tangents, one node at both ends, and parameters that do not differ.
    auto const tangents = columns({{1, 0}, {-1, 0}, {0, 1}, {1, 1}});
    auto const odd = columns<unsigned>({{0, 1}, {2, 2}, {2, 3}});
    ASSERT_EQ(vornik1d::parametric_curvatures(reals({0, 1, 5, 5}), odd, tangents, result), 0);
    double const sum = 8 / std::pow(5, 1.5);
    EXPECT_EQ(result[0] + result[1], 0);
    EXPECT_NEAR(result[2], sum, 1e-15);
    EXPECT_NEAR(result[3], sum, 1e-15);

    EXPECT_EQ(vornik1d::parametric_curvatures(params, odd, tangents, result), -3);
    EXPECT_TRUE(result.empty());
    EXPECT_EQ(
        vornik1d::parametric_curvatures(reals({0, 1, 5, 5}), odd, columns({{1}, {1}, {1}, {1}}), result), -3);
    EXPECT_EQ(vornik1d::parametric_curvatures(reals({0, 1, 5}), odd, tangents, result), -2);
    EXPECT_EQ(vornik1d::parametric_curvatures(params, dense2D<unsigned>(), tangents, result), 0);
}

TEST(normals, of_an_angle)
{
    // Elements of length 1 and 3 at a right angle; one of length 0; a node apart.
    auto const coords = columns({{0, 0}, {1, 0}, {1, 3}, {1, 3}, {9, 9}});
    auto const connect = columns<unsigned>({{0, 1, 77}, {1, 2, 77}, {2, 3, 77}});
    double const h = std::sqrt(0.5);
    struct
    {
        double exponent;
        bool unit_length;
        double x, y; // at the corner
    } const rows[] = {{0, false, -0.5, 0.5}, {0, true, -h, h}, {1, false, -0.75, 0.25},
        {-1, false, -0.25, 0.75}, {largest_double, true, -1, 0}, {infinity, false, -1, 0},
        {not_a_number, false, -1, 0}, {-largest_double, false, 0, 1}, {-infinity, true, 0, 1}};
    for (auto const& row : rows) {
        dense2D<double> result, backwards;
        ASSERT_EQ(vornik1d::normals(coords, connect, row.exponent, row.unit_length, result), 0);
        auto const reversed = columns<unsigned>({{2, 3}, {1, 2}, {0, 1}});
        ASSERT_EQ(vornik1d::normals(coords, reversed, row.exponent, row.unit_length, backwards), 0);
        EXPECT_EQ(values_of(backwards), values_of(result));
        EXPECT_EQ(values_of(result)[0], (std::vector<double>{0, 1}));
        EXPECT_NEAR(result(0, 1), row.x, 1e-15) << row.exponent;
        EXPECT_NEAR(result(1, 1), row.y, 1e-15) << row.exponent;
        EXPECT_EQ(values_of(result.sub_matrix(0, 2, 2, 3)),
            (std::vector<std::vector<double>>{{-1, 0}, {0, 0}, {0, 0}}));
    }
    dense2D<double> result;
    for (double const exponent : {largest_double, -largest_double}) { // of equal lengths the first counts
        auto const square = columns({{0, 0}, {1, 0}, {1, 1}});
        ASSERT_EQ(vornik1d::normals(square, columns<unsigned>({{0, 1}, {1, 2}}), exponent, false, result), 0);
        EXPECT_EQ(values_of(result)[1], (std::vector<double>{0, 1}));
    }
    auto const tiny = columns({{0, 0}, {0.1, 0}}); // a weight of 1e-305
    ASSERT_EQ(vornik1d::normals(tiny, columns<unsigned>({{0, 1}}), 305, false, result), 0);
    EXPECT_NEAR(result(1, 0), 1, 1e-9);
    auto back = columns<unsigned>({{0, 1}, {2, 1}});
    ASSERT_EQ(vornik1d::normals(columns({{0, 0}, {1, 0}, {2, 0}}), back, 0, true, result), 0);
    EXPECT_EQ(result(1, 1), 0); // of opposite ones
    back(1, 1) = 5;
    EXPECT_EQ(vornik1d::normals(coords, back, 0, true, result), -2);
    EXPECT_EQ(vornik1d::normals(columns({{0, 0, 0}}), back, 0, true, result), -1);
    EXPECT_TRUE(result.empty());
    EXPECT_EQ(vornik1d::normals(coords, dense2D<unsigned>(), 0, true, result), 0);
    EXPECT_EQ(vornik1d::normals(dense2D<double>(), back, 0, true, result), 0);
}

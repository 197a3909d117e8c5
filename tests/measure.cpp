#include <gtest/gtest.h>

#include <cmath>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using doubles = std::vector<double>;

TEST(curvatures, of_known_chains)
{
    auto const corner = columns({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {1, 0, 0.5}, {1, 0, 0.5}, {1, 0, 9}});
    struct
    {
        numbers chain;
        doubles expected;
    } const rows[] = {
        {{0, 1, 2}, doubles(3, std::sqrt(2.0))},
        {{1, 2, 3, 4, 5}, {4 / 1.5, 4 / 1.5, 0, 0, 0}}, // a reversal, then a repeated node
        {{0, 2}, {0, 0}},
        {{3}, {0}},
        {{}, {}},
    };
    dense1D<double> result;
    for (auto const& [chain, expected] : rows) {
        ASSERT_EQ(curvatures(corner, nodes(chain), result), 0);
        ASSERT_EQ(result.size(), expected.size());
        for (std::size_t k = 0; k < expected.size(); ++k) EXPECT_DOUBLE_EQ(result[k], expected[k]);
    }
    for (std::size_t const rows_of_coords : {2U, 3U}) {
        ASSERT_EQ(curvatures(arc(50, 6, rows_of_coords), nodes_up_to(51), result), 0);
        for (double const c : result) EXPECT_NEAR(c, 1, 1e-12); // exact for equal chords of a circle
    }
}

TEST(interpolate_coordinates, moves_nodes_onto_the_chain)
{
    // A chain of five nodes, two of them at one parameter; node 3 is moved too and bends it for those after it.
    auto coords = columns({{0, 0, 1}, {4, 0, 1}, {4, 8, 1}, {8, 8, 1}, {0, 8, 1}, {}, {}, {}, {}, {}, {}});
    auto const params = reals({0, 1, 1, 2, 4});
    auto const targets = nodes({5, 6, 7, 8, 3, 9, 10});
    ASSERT_EQ(interpolate_coordinates(
                  coords, nodes_up_to(5), params, targets, reals({-1, 0.25, 1, 1.5, 1.5, 3, 9})),
        0);
    EXPECT_EQ(coords.sub_matrix(0, 5, 3, 6),
        (dense2D<double>{{0, 0, 1}, {1, 0, 1}, {4, 0, 1}, {6, 8, 1}, {3, 8, 1}, {0, 8, 1}}));
    EXPECT_EQ(coords.sub_matrix(0, 3, 3, 1), (dense2D<double>{{6, 8, 1}}));

    // Nodes that there are not are passed over, at the end of the chain and of what is moved.
    coords = columns({{0, 0}, {2, 4}, {9, 9}});
    auto const run = [&](numbers const& chain, doubles const& at, numbers const& moved, doubles const& to) {
        return interpolate_coordinates(coords, nodes(chain), reals(at), nodes(moved), reals(to));
    };
    EXPECT_EQ(run({0, 7}, {0, 1}, {2, 7}, {1, 1}) + run({7, 1}, {0, 1}, {2}, {0.5}), 0);
    EXPECT_EQ(coords, (dense2D<double>{{0, 0}, {2, 4}, {9, 9}}));
    EXPECT_EQ(run({1, 7}, {0, 1}, {7, 2}, {0, 0}), 0);
    EXPECT_EQ(coords(1, 2), 4);
}

TEST(length, of_chains_and_meshes)
{
    auto const coords = columns({{0, 0, 0}, {3, 4, 0}, {3, 4, 12}});
    double result = 7;
    auto const expect = [&](int status, int expected, double length) {
        EXPECT_EQ(status, expected);
        EXPECT_EQ(result, length); // of what comes before a node that there is not
    };
    expect(vornik1d::length(coords, nodes({0, 1, 2, 1}), result), 0, 29);
    expect(vornik1d::length(coords, nodes({0, 1, 3, 2}), result), -2, 5);
    for (auto const& chain : {nodes({}), nodes({1}), nodes({3, 0})})
        expect(vornik1d::length(coords, chain, result), -2, 0);
    expect(vornik1d::length(coords, columns<unsigned>({{0, 1, 99}, {2, 1, 99}}), result), 0, 17);
    expect(vornik1d::length(coords, columns<unsigned>({{0, 1}, {2, 3}}), result), -2, 0);
    expect(vornik1d::length(dense2D<double>(), columns<unsigned>({{0, 1}}), result), -1, 0);
    expect(vornik1d::length(coords.sub_matrix(0, 0, 2, 3), nodes({0, 1, 2}), result), 0, 5);
}

TEST(parametric_curvatures, of_a_circle_and_of_odd_elements)
{
    // A circle of radius 2 by its angle, which runs up and down along the elements: curvature 1/2, as near as
    // the mean tangent of an element tells.
    dense1D<double> params(100), result;
    dense2D<unsigned> connect;
    ASSERT_TRUE(connect.resize(2, 99));
    for (unsigned k = 0; k < 100; ++k) {
        params[k] = 0.01 * k;
        if (k > 0) connect(k % 2, k - 1) = k, connect(1 - k % 2, k - 1) = k - 1;
    }
    for (std::size_t const rows : {2U, 3U}) {
        auto tangents = arc(99, 0.99, rows);
        for (double& x : tangents.as_vector()) x *= 2;
        ASSERT_EQ(vornik1d::parametric_curvatures(params, connect, tangents, result), 0);
        for (double const c : result) EXPECT_NEAR(c, 0.5, 2e-5);
    }
    // Opposite tangents, one node at both ends, and parameters that do not differ.
    auto const tangents = columns({{1, 0}, {-1, 0}, {0, 1}, {1, 1}});
    auto const odd = columns<unsigned>({{0, 1}, {2, 2}, {2, 3}});
    auto const four = reals({0, 1, 5, 5});
    ASSERT_EQ(vornik1d::parametric_curvatures(four, odd, tangents, result), 0);
    EXPECT_EQ(result[0] + result[1], 0);
    for (std::size_t const k : {2U, 3U}) EXPECT_NEAR(result[k], 8 / std::pow(5, 1.5), 1e-15);
}

TEST(normals, of_an_angle)
{
    // Elements of length 1 and 3 at a right angle; one of length 0; a node apart.
    auto const coords = columns({{0, 0}, {1, 0}, {1, 3}, {1, 3}, {9, 9}});
    auto const connect = columns<unsigned>({{0, 1, 77}, {1, 2, 77}, {2, 3, 77}});
    auto const backwards = columns<unsigned>({{2, 3}, {1, 2}, {0, 1}});
    double const h = std::sqrt(0.5);
    struct
    {
        double exponent;
        bool unit_length;
        double x, y; // at the corner
    } const rows[] = {{0, false, -0.5, 0.5}, {0, true, -h, h}, {1, false, -0.75, 0.25},
        {-1, false, -0.25, 0.75}, {largest_double, true, -1, 0}, {infinity, false, -1, 0},
        {not_a_number, false, -1, 0}, {-largest_double, false, 0, 1}, {-infinity, true, 0, 1}};
    dense2D<double> result;
    for (auto const& row : rows)
        for (auto const& mesh : {connect, backwards}) {
            ASSERT_EQ(vornik1d::normals(coords, mesh, row.exponent, row.unit_length, result), 0);
            EXPECT_NEAR(result(0, 1), row.x, 1e-15) << row.exponent;
            EXPECT_NEAR(result(1, 1), row.y, 1e-15) << row.exponent;
            result(0, 1) = result(1, 1) = 0;
            EXPECT_EQ(result, (dense2D<double>{{0, 1}, {0, 0}, {-1, 0}, {0, 0}, {0, 0}}));
        }
    for (double const exponent : {largest_double, -largest_double}) { // of equal lengths the first counts
        auto const square = columns({{0, 0}, {1, 0}, {1, 1}});
        ASSERT_EQ(vornik1d::normals(square, columns<unsigned>({{0, 1}, {1, 2}}), exponent, false, result), 0);
        EXPECT_EQ(result.sub_matrix(0, 1, 2, 1), (dense2D<double>{{0, 1}}));
    }
    auto const tiny = columns({{0, 0}, {0.1, 0}}); // a weight of 1e-305
    ASSERT_EQ(vornik1d::normals(tiny, columns<unsigned>({{0, 1}}), 305, false, result), 0);
    EXPECT_NEAR(result(1, 0), 1, 1e-9);
    auto const back = columns<unsigned>({{0, 1}, {2, 1}});
    ASSERT_EQ(vornik1d::normals(columns({{0, 0}, {1, 0}, {2, 0}}), back, 0, true, result), 0);
    EXPECT_EQ(result(1, 1), 0); // of opposite ones
}

#include <gtest/gtest.h>

#include <cmath>

#include "meshing.h"

using namespace trelk;

TEST(mesh_line, statuses_in_the_order_of_the_checks)
{
    // Each row breaks one argument more, from the last check to the first; the code with and without params.
    meshing m = chain_of(arc(4, 1), 0.1);
    struct
    {
        void (*damage)(meshing&);
        int with_params;
        int without;
    } const rows[] = {
        {[](meshing& c) { c.indices[1] = 5; }, -2, -2},
        {[](meshing& c) { c.min_elements = 0; }, -6, -2},
        {[](meshing& c) { c.min_elements = 3, c.max_elements = 2; }, -6, -2},
        {[](meshing& c) { c.indices[1] = 1; }, -6, -5},
        {[](meshing& c) { c.sizes[4] = 0; }, -4, -3},
        {[](meshing& c) { c.sizes = c.sizes.sub_vector(0, 4); }, -4, -3},
        {[](meshing& c) { c.params[2] = 0.5; }, -3, -3},
        {[](meshing& c) { c.params[2] = not_a_number; }, -3, -3},
        {[](meshing& c) { c.params.push_back(9); }, -3, -3},
        {[](meshing& c) { c.indices = nodes({2}); }, -2, -2},
        {[](meshing& c) { c.indices = nodes({}); }, -2, -2},
        {[](meshing& c) { ASSERT_TRUE(c.coords.resize(4, 5, 0.0)); }, -1, -1},
        {[](meshing& c) { c.coords.clear(); }, -1, -1},
    };
    for (auto const& row : rows) {
        row.damage(m);
        auto const before = m.untouched();
        for (bool const with_params : {false, true}) {
            m.with_params = with_params;
            m.out_params = reals({-7, -8});
            int const status = m.run();
            ASSERT_EQ(status, with_params ? row.with_params : row.without) << &row - rows;
            ASSERT_EQ(m.untouched(), before);
            ASSERT_EQ(m.out_params.size(), !with_params && status >= -2 ? 2U : 0U) << &row - rows;
        }
    }
}

TEST(mesh_line, chord_lengths_beyond_arithmetic)
{
    for (auto const& [far, status] : {std::pair(0.0, -2), {infinity, -3}, {1e-170, -2}, {not_a_number, -2}}) {
        meshing m = chain_of(columns({{0, 0}, {far, 0}, {0, 0}}), 1);
        m.with_params = false;
        EXPECT_EQ(m.run(), status) << far;
    }
}

TEST(mesh_line, appends_to_lists_and_replaces_parameters)
{
    meshing m = chain_of(columns({{9, 9}, {0, 0}, {1, 0}, {1, 1}}), 0.25);
    m.indices = nodes({1, 2, 3});
    m.params = reals({5, 6, 8});
    m.sizes = reals({0.25, 0.25, 0.25, not_a_number}); // what is too much is not looked at
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.mesh(), (std::vector<unsigned>{1, 4, 5, 6, 7, 8, 9, 10, 3}));
    EXPECT_EQ(m.out_indices[0], 77U);
    EXPECT_EQ(m.out_sizes.size(), m.out_indices.size());
    EXPECT_EQ(m.out_params.size(), m.mesh().size());
    EXPECT_EQ(m.out_params[0], 5);
    EXPECT_EQ(m.out_params[8], 8);
    EXPECT_EQ(m.coords(0, 4), 0.25);
    EXPECT_EQ(m.coords(1, 10), 0.75);

    auto const first_params = values_of(m.out_params);
    auto const first_mesh = m.mesh();
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(values_of(m.out_params), first_params);
    EXPECT_EQ(m.mesh().size(), 2 * first_mesh.size());
    EXPECT_EQ(m.coords.cols(), 18U);
}

TEST(mesh_line, arguments_may_share_storage)
{
    meshing m = chain_of(arc(20, 3), 0.1);
    m.deviation_tolerance = 1e-4;
    meshing own = m;
    own.indices = nodes_up_to(21);
    own.sizes = dense1D<double>(21, 0.1);
    ASSERT_TRUE(own.coords.copy(m.coords) && own.params.copy(m.params) &&
                own.out_indices.copy(m.out_indices) && own.out_params.copy(m.out_params) &&
                own.out_sizes.copy(m.out_sizes));
    ASSERT_EQ(own.run(), 0);

    m.out_indices = m.indices;
    m.out_sizes = m.sizes;
    ASSERT_EQ(m.run(), 0);
    auto const added = m.out_indices.sub_vector(21, own.mesh().size());
    EXPECT_EQ(values_of(added), own.mesh());
    EXPECT_EQ(values_of(m.coords), values_of(own.coords));

    // One list for two outputs holds both, one behind the other.
    dense1D<double> both;
    dense1D<unsigned> out_indices;
    ASSERT_EQ(vornik1d::mesh_line(m.coords, own.indices, own.params, own.sizes, false, 1, no_limit, 0, 0,
                  out_indices, both, both),
        0);
    EXPECT_EQ(both.size(), 2 * out_indices.size());
}

TEST(mesh_line, tolerances_that_are_switched_off)
{
    std::vector<std::vector<std::vector<double>>> results;
    for (double const off : {0.0, -0.0, largest_double, -largest_double, not_a_number}) {
        meshing m = chain_of(arc(10, 3), 0.8);
        m.deviation_tolerance = off;
        ASSERT_EQ(m.run(), 0);
        results.push_back(values_of(m.coords));
        EXPECT_EQ(results.back(), results.front());
    }
}

TEST(mesh_line, curvature_bounds_sizes)
{
    // On a circle of radius 1 the curvature is 1: h^2 / 8 = tolerance.
    for (std::size_t const rows : {2U, 3U}) {
        meshing m = chain_of(arc(200, 3, rows), 0.9);
        m.sizes[100] = 0.004;
        m.deviation_tolerance = -0.02;
        ASSERT_EQ(m.run(), 0);
        EXPECT_NEAR(m.out_sizes[1], 0.4, 1e-10);

        m = chain_of(arc(200, 3, rows), 0.9);
        m.sizes[0] = 0.25;
        m.deviation_tolerance = -0.02;
        m.min_size = 0.5; // floor of the bound, not of the sizes
        ASSERT_EQ(m.run(), 0);
        EXPECT_NEAR(m.out_sizes[1], 0.25, 1e-15);
        EXPECT_NEAR(m.out_sizes[m.out_sizes.size() - 1], 0.5, 1e-10);
    }
    // A reversal in a point: no bound but min_size, and the sizes' own law.
    meshing straight = chain_of(columns({{0, 0}, {1, 0}, {2, 0}}), 0.5);
    straight.deviation_tolerance = -1e-9;
    ASSERT_EQ(straight.run(), 0);
    EXPECT_EQ(straight.elements(), 4U);
}

TEST(mesh_line, counts)
{
    meshing m = chain_of(arc(10, 2), 0.3);
    m.max_elements = 5;
    m.force_even = true;
    m.deviation_tolerance = 1e-6;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.elements(), 6U); // an even count wins, and a count at the limit is not refined

    m = chain_of(arc(10, 2), 0.3);
    m.min_elements = m.max_elements = 13;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.elements(), 13U);

    m = chain_of(arc(10, 2), 100);
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.mesh(), (std::vector<unsigned>{0, 10}));
    EXPECT_EQ(values_of(m.out_params), (std::vector<double>{0, 10}));

    // Sizes too small for any storage: the limit on the count decides.
    m = chain_of(arc(10, 2), 1e-300);
    m.max_elements = 1000;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.elements(), 1000U);
}

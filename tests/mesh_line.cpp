#include <gtest/gtest.h>

#include "support.h"

using namespace trelk;

TEST(mesh_line, statuses_in_the_order_of_the_checks)
{
    // Each row breaks one argument more, from the last check to the first; the codes with and without params.
    meshing m = chain_of(arc(4, 1), 0.1);
    struct
    {
        void (*damage)(meshing&);
        int with_params, without;
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
    // Chord lengths beyond arithmetic.
    for (auto const& [far, status] : {std::pair(0.0, -2), {infinity, -3}, {1e-170, -2}, {not_a_number, -2}}) {
        m = chain_of(columns({{0, 0}, {far, 0}, {0, 0}}), 1);
        m.with_params = false;
        EXPECT_EQ(m.run(), status) << far;
    }
}

TEST(mesh_line, appends_to_lists_and_replaces_parameters)
{
    meshing m = chain_of(columns({{9, 9}, {0, 0}, {1, 0}, {1, 1}}), 0.25);
    m.indices = nodes({1, 2, 3});
    m.params = reals({5, 6, 8});
    m.sizes[3] = not_a_number; // what is too much is not looked at
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(m.mesh(), (std::vector<unsigned>{1, 4, 5, 6, 7, 8, 9, 10, 3}));
    EXPECT_EQ(values_of(m.out_params), (std::vector<double>{5, 5.25, 5.5, 5.75, 6, 6.5, 7, 7.5, 8}));
    EXPECT_EQ(m.coords(1, 10), 0.75);
    EXPECT_EQ(m.out_indices[0], 77U);

    auto const first_params = values_of(m.out_params);
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(values_of(m.out_params), first_params);
    EXPECT_EQ(m.out_indices.size(), 19U);
    EXPECT_EQ(m.out_sizes.size(), 19U);
    EXPECT_EQ(m.coords.cols(), 18U);
}

TEST(mesh_line, arguments_may_share_storage)
{
    meshing own = chain_of(arc(20, 3), 0.1);
    own.deviation_tolerance = 1e-4;
    meshing m = own;
    ASSERT_TRUE(m.coords.copy(own.coords) && m.indices.copy(own.indices) && m.sizes.copy(own.sizes));
    ASSERT_EQ(own.run(), 0);
    m.out_indices = m.indices;
    m.out_sizes = m.sizes;
    ASSERT_EQ(m.run(), 0);
    EXPECT_EQ(values_of(m.out_indices.sub_vector(21, 1000)), own.mesh());
    EXPECT_EQ(values_of(m.coords), values_of(own.coords));
}

TEST(mesh_line, coordinates_may_be_rows_of_a_larger_matrix)
{
    for (bool const by_tensors : {false, true}) {
        meshing plain = chain_of(arc(20, 3), 0.1);
        meshing m = plain;
        dense2D<double> larger;
        ASSERT_TRUE(larger.resize(3, 21, 9.0));
        for (std::size_t k = 0; k < 21; ++k) std::copy_n(plain.coords.col(k), 2, larger.col(k));
        m.coords = larger.sub_matrix(0, 0, 2, 21);
        if (by_tensors) m.use_tensors(), plain.use_tensors();
        for (int twice = 0; twice < 2; ++twice) { // the second time, onto what the first has appended
            ASSERT_EQ(m.run() + plain.run(), 0);
            EXPECT_EQ(values_of(m.coords), values_of(plain.coords));
            EXPECT_EQ(values_of(m.out_metrics), values_of(plain.out_metrics));
        }
        EXPECT_EQ(larger(2, 5), 9);
    }
}

TEST(mesh_line, tolerance_regimes_without_refinement)
{
    // On a circle of radius 1 a negative tolerance bounds sizes by h^2 / 8 = -tolerance, but not below
    // min_size.
    struct
    {
        double tolerance, min_size, first, last;
    } const rows[] = {{-0.02, 0, 0.25, 0.4}, {-0.02, 0.5, 0.25, 0.5}, {0, 0.5, 0.25, 0.9},
        {largest_double, 0, 0.25, 0.9}, {-largest_double, 0, 0.25, 0.9}, {not_a_number, 0, 0.25, 0.9},
        {-infinity, 0, 0.25, 0.9}};
    for (auto const& row : rows)
        for (std::size_t const dimension : {2U, 3U}) {
            meshing m = chain_of(arc(200, 3, dimension), 0.9);
            m.sizes[0] = 0.25;
            m.deviation_tolerance = row.tolerance;
            m.min_size = row.min_size;
            ASSERT_EQ(m.run(), 0);
            EXPECT_NEAR(m.out_sizes[1], row.first, 1e-10);
            EXPECT_NEAR(m.out_sizes[m.out_sizes.size() - 1], row.last, 1e-10);
        }
    // What is straight keeps its sizes, and so do entries with a twin on either side.
    for (double const tolerance : {-1e-9, -1e9}) {
        meshing m = chain_of(columns({{0, 0}, {1, 2}, {1, 2}, {1, 2}, {4, 8}}), 0.5);
        m.deviation_tolerance = tolerance;
        ASSERT_EQ(m.run(), 0);
        EXPECT_EQ(m.elements(), 18U);
    }
}

TEST(mesh_line, counts)
{
    auto const elements = [](double size, bool even, unsigned fewest, unsigned most, double tolerance) {
        meshing m = chain_of(arc(10, 2), size);
        m.force_even = even, m.min_elements = fewest, m.max_elements = most,
        m.deviation_tolerance = tolerance;
        EXPECT_EQ(m.run(), 0);
        return m.elements();
    };
    EXPECT_EQ(elements(0.3, true, 1, 5, 1e-6), 6U); // an even count wins; one at the limit is not refined
    EXPECT_EQ(elements(0.3, false, 13, 13, 0), 13U);
    EXPECT_EQ(elements(100, false, 1, no_limit, 0), 1U);
    EXPECT_EQ(elements(1e-300, false, 1, 1000, 0), 1000U);
    EXPECT_GT(elements(0.3, false, 1, 8, 1e-4), 8U); // refinement is not bound by the limit
}

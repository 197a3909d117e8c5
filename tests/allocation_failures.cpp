#include <gtest/gtest.h>

#include <vornik/toolkit.h>

#include "support.h"

using namespace trelk;
using extent = failing_allocations::extent;

namespace {

enum class by { sizes, chord_length, tensors, segments, spline, tensor_spline };

/// Makes allocation number `number` of a call fail, alone or with all behind it. What reports it leaves the
/// arguments as they were; what need not (a placement without storage places nothing) leaves a sound mesh.
/// Returns the status, or 1 when there was no such allocation.
int status_without(by way, double tolerance, std::size_t number, extent which)
{
    bool const as_spline = way == by::spline || way == by::tensor_spline;
    auto const points = arc(30, 4, 2 + number % 2);
    meshing m = as_spline ? spline_of(points, 0.15) : chain_of(points, 0.15);
    m.coords(0, 15) += 0.3; // a corner, so that refinement splits
    m.deviation_tolerance = tolerance;
    m.with_params = way != by::chord_length;
    m.max_gradation = 0.3;
    m.default_size = tolerance > 0 ? 0.5 : 0;
    if (way == by::tensors || way == by::tensor_spline) m.use_tensors();
    auto const before = m.untouched();
    int status = 0;
    {
        failing_allocations const failing(number, which);
        status = way == by::segments
                     ? vornik1d::mesh_straight(m.coords, m.indices, m.sizes, false, m.out_indices)
                     : m.run();
        if (!failing_allocations::have_failed()) return 1;
    }
    if (status == 0) {
        EXPECT_EQ(m.out_sizes.size() - 1 + m.out_metrics.cols(), way == by::segments ? 0 : m.mesh().size());
        for (unsigned const node : m.mesh()) EXPECT_LT(node, m.coords.cols());
        return status;
    }
    EXPECT_EQ(m.untouched(), before) << number;
    EXPECT_TRUE(m.out_metrics.empty());
    // Where the parameters themselves have no storage, the call has not come to its outputs.
    bool const is_early = way == by::segments || as_spline || (way == by::chord_length && number < 2);
    EXPECT_EQ(m.out_params.size(), is_early ? 2U : 0U) << number;
    return status;
}

} // namespace

TEST(allocation_failures, leave_the_arguments_as_they_were)
{
    for (by const way :
        {by::sizes, by::chord_length, by::tensors, by::segments, by::spline, by::tensor_spline})
        for (double const tolerance : {-0.01, 0.0, 0.02})
            for (extent const which : {extent::one, extent::all_behind}) {
                int refused = 0;
                for (std::size_t number = 0;; ++number) {
                    int const status = status_without(way, tolerance, number, which);
                    if (status == 1) break;
                    ASSERT_TRUE(status == 0 || status == -199) << status;
                    if (status != 0) ++refused;
                }
                EXPECT_GT(refused, 3);
            }
}

TEST(allocation_failures, leave_a_network_as_it_was)
{
    for (double const tolerance : {0.0, 0.01, -0.01})
        for (extent const which : {extent::one, extent::all_behind})
            for (std::size_t number = 0;; ++number) {
                auto coords = arc(30, 4);
                coords(0, 15) += 0.3;
                dense2D<unsigned> connect;
                auto colors = nodes({1, 1, 2});
                auto hard_nodes = nodes({7, 9});
                auto const hard_edges = nodes({20});
                ASSERT_EQ(vornik1d::indices_to_connectE2(nodes_up_to(31), connect), 0);
                auto const before = std::tuple(
                    values_of(coords), values_of(connect), values_of(colors), values_of(hard_nodes));
                int status = 0;
                {
                    failing_allocations const failing(number, which);
                    status = vornik1d::remesh_lines(coords, connect, 0.05, {}, colors, hard_nodes, hard_edges,
                        false, 40, tolerance, 0.3, 0.01, 1, no_limit);
                    if (!failing_allocations::have_failed()) break;
                }
                ASSERT_TRUE(status == 0 || status == -199) << status;
                auto const after = std::tuple(
                    values_of(coords), values_of(connect), values_of(colors), values_of(hard_nodes));
                ASSERT_EQ(before == after, status != 0) << number;
                if (status != 0) continue;
                EXPECT_EQ(values_of(hard_nodes), (std::vector<unsigned>{0, 2, 7, 9, 14, 15, 20, 21, 30}));
                EXPECT_NE(values_of(connect), std::get<1>(before)) << number;
            }
}

TEST(allocation_failures, leave_no_node_without_its_place)
{
    for (bool const by_tensors : {false, true})
        for (extent const which : {extent::one, extent::all_behind})
            for (std::size_t number = 0;; ++number) {
                meshing m = chain_of(columns({{0, 0}, {1, 1}}), 0.1);
                if (by_tensors) m.use_tensors();
                int status = 0;
                {
                    failing_allocations const failing(number, which);
                    status = m.run();
                    if (!failing_allocations::have_failed()) break;
                }
                if (status != 0) continue;
                auto const elements = static_cast<double>(m.elements());
                for (std::size_t j = 2; j < m.coords.cols(); ++j)
                    ASSERT_NEAR(m.coords(0, j) * elements, static_cast<double>(j - 1), 1e-9) << number;
            }
}

TEST(allocation_failures, of_lists_that_are_one_object)
{
    int refused = 0;
    for (extent const which : {extent::one, extent::all_behind})
        for (std::size_t number = 0;; ++number) {
            meshing m = spline_of(arc(5, 2), 0.01);
            auto values = reals({1, 2, 3});
            auto const before = m.untouched();
            int status = 0;
            {
                failing_allocations const failing(number, which);
                status = vornik1d::mesh_spline(m.coords, m.indices, m.sizes, false, 1, no_limit, 0, 0, 0, 0,
                    m.out_indices, values, values, m.deviation);
                if (!failing_allocations::have_failed()) break;
            }
            EXPECT_EQ(values.size(), status == 0 ? 3 + 2 * m.mesh().size() : 3) << number;
            if (status == 0) continue;
            EXPECT_EQ(m.untouched(), before) << number;
            ++refused;
        }
    for (extent const which : {extent::one, extent::all_behind})
        for (std::size_t number = 0;; ++number) {
            auto values = reals({1, 9});
            dense1D<unsigned> new_indices;
            auto const ends = nodes({0, 1});
            failing_allocations const failing(number, which);
            int const status = vornik1d::subdivide(values, values, ends, false, false, 50, 50, new_indices);
            if (!failing_allocations::have_failed()) break;
            if (status == 0) continue;
            EXPECT_EQ(values.size() + new_indices.size(), 2U) << number;
            ++refused;
        }
    EXPECT_GT(refused, 20);
}

TEST(allocation_failures, lose_no_break_node)
{
    // Corners whose numbers share a bucket in a set that has to grow.
    constexpr unsigned stride = 97;
    constexpr unsigned corners = 100;
    dense2D<double> coords;
    dense1D<unsigned> chain;
    dense2D<unsigned> connect;
    ASSERT_TRUE(coords.resize(2, std::size_t{stride} * corners, 0.0));
    for (unsigned k = 0; k < corners; ++k) {
        unsigned const node = stride * k;
        chain.push_back(node);
        coords(0, node) = k, coords(1, node) = k % 2;
    }
    ASSERT_EQ(vornik1d::indices_to_connectE2(chain, connect), 0);
    for (extent const which : {extent::one, extent::five})
        for (std::size_t number = 0; number < 60; ++number) {
            auto new_coords = coords;
            auto new_connect = connect;
            dense1D<unsigned> colors, hard_nodes;
            failing_allocations const failing(number, which);
            int const status = vornik1d::remesh_lines(
                new_coords, new_connect, 9, {}, colors, hard_nodes, {}, false, 40, 0, 0, 0, 1, no_limit);
            ASSERT_TRUE(status == 0 || status == -199) << status;
            EXPECT_EQ(hard_nodes.size(), status == 0 ? corners : 0U) << number;
        }
}

TEST(allocation_failures, of_sets_that_outgrow_their_plan)
{
    // Hard edges that share a bucket, and more breaks than there is room planned for.
    constexpr std::size_t n = std::size_t(97) * 50;
    dense2D<double> coords;
    dense2D<unsigned> connect;
    dense1D<unsigned> hard_edges;
    ASSERT_TRUE(coords.resize(2, n + 1));
    for (std::size_t k = 0; k <= n; ++k) coords(0, k) = double(k), coords(1, k) = double(k % 2);
    ASSERT_EQ(vornik1d::indices_to_connectE2(nodes_up_to(n + 1), connect), 0);
    for (unsigned k = 0; k < 50; ++k) hard_edges.push_back(97 * k);
    int refused = 0;
    for (std::size_t number = 0; number < 40; ++number) { // no further than the chains
        auto new_connect = connect;
        dense1D<unsigned> colors, hard_nodes;
        failing_allocations const failing(number, extent::one);
        int const status = vornik1d::remesh_lines(
            coords, new_connect, 0, {}, colors, hard_nodes, hard_edges, false, 40, 0, 0, 0, 1, no_limit);
        refused += status == -199 ? 1 : 0;
        EXPECT_TRUE(status == -199 || status == -3) << status; // the size is 0
    }
    EXPECT_GT(refused, 25);
}

namespace {

/// Arguments for every function: a wave of eight nodes.
struct arguments
{
    dense2D<double> plane = arc(7, 2), space = arc(7, 2, 3), metrics;
    dense2D<unsigned> connect, quadratic = columns<unsigned>({{0, 2, 1}, {2, 4, 3}}), neighbors, out_connect;
    dense2D<unsigned> far_apart = columns<unsigned>({{0, 4000000000}, {7, 9}});
    dense1D<unsigned> indices = nodes_up_to(8), out_indices = nodes({9});
    dense1D<double> params = reals({0, 1, 2, 3, 4, 5, 6, 7}), sizes = reals({1, 1, .2, .2, 1, 1, 1, 1}),
                    result;
    dense2D<double> matrix, row;

    arguments()
    {
        static_cast<void>(row.resize(1, 8, 0.5));
        static_cast<void>(vornik1d::indices_to_connectE2(indices, connect));
        static_cast<void>(vornik::get_neighbors(connect, vornik::element_type::edge, false, neighbors));
    }

    /// What a failure must leave alone.
    auto untouched() const
    {
        return std::tuple(values_of(plane), values_of(space), values_of(connect), values_of(neighbors),
            values_of(out_connect), values_of(indices), values_of(out_indices), values_of(params),
            values_of(sizes));
    }
};

} // namespace

TEST(allocation_failures, of_the_smaller_functions)
{
    using namespace vornik1d;
    using point2 = vector_fixed<double, 2>;
    using point3 = vector_fixed<double, 3>;
    constexpr auto edge = vornik::element_type::edge;
    int (*const calls[])(arguments&) = {
        [](arguments& a) { return indices_to_connectE4(a.indices.sub_vector(0, 7), a.out_connect); },
        [](arguments& a) { return split_into_linear(a.quadratic, a.out_connect); },
        [](arguments& a) { return convert_into_cubic(a.space, a.connect); },
        [](arguments& a) { return parametric_curvatures(a.params, a.connect, a.plane, a.result); },
        [](arguments& a) { return normals(a.plane, a.connect, 1, true, a.matrix); },
        [](arguments& a) { return curvatures(a.space, a.indices, a.result); },
        [](arguments& a) { return interpolate_metrics(a.params, a.sizes, a.params, a.result); },
        [](arguments& a) { return interpolate_metrics(a.params, a.space, a.params, a.matrix); },
        [](arguments& a) { return interpolate_metrics(a.params, a.row, a.params, a.matrix); },
        [](arguments& a) { return metrics_gen_aniso2d(a.plane, a.indices, 1, 2, a.metrics); },
        [](arguments& a) { return metrics_gen_aniso2d(a.plane, a.connect, 1, a.metrics); },
        [](arguments& a) { return metrics_gen_aniso3d(a.space, a.connect, 1, a.metrics); },
        [](arguments& a) { return metrics_gen_aniso3d(a.space, a.connect, 1, 2, a.metrics); },
        [](arguments& a) {
            return extrude_translate(a.plane, point2{}, point2{3, 4}, 5, a.out_indices);
        },
        [](arguments& a) {
            return extrude_translate(a.space, 0, point3{3, 4, 5}, 1, 1, true, a.out_indices);
        },
        [](arguments& a) {
            return extrude_rotate(
                a.space, point3{}, point3{9, 9, 9}, point3{0, 0, 1}, 1, 1, false, a.out_indices);
        },
        [](arguments& a) { return vornik1d::sort(a.params, a.indices); },
        [](arguments& a) { return -199 * (mesh_reorient(a.connect, a.neighbors, 3, 1) == -199); },
        [](arguments& a) {
            dense2D<unsigned> result;
            return vornik::get_neighbors(a.far_apart, edge, false, result);
        },
        [](arguments& a) {
            dense2D<unsigned> result;
            return vornik::get_colors_boundaries(
                a.connect, a.neighbors, a.indices, edge, false, true, result);
        },
        [](arguments& a) {
            return subdivide(a.params, a.sizes, a.indices, true, true, 1, 99, a.out_indices);
        },
        [](arguments& a) { return mesh_straight(a.plane, a.indices, 20, false, a.out_indices); },
        [](arguments& a) { return mesh_straight(a.plane, 0, 1, 2, 9, a.out_indices); },
        [](arguments& a) { return mesh_straight(a.plane, 0, 1, .1, .1, false, a.out_indices); },
    };
    constexpr std::ptrdiff_t placements = 4; // the last ones
    int refused = 0;
    for (auto const& call : calls) {
        arguments complete;
        ASSERT_EQ(call(complete), 0);
        for (extent const which : {extent::one, extent::all_behind})
            for (std::size_t number = 0;; ++number) {
                arguments a;
                auto const before = a.untouched();
                int status = 0;
                {
                    failing_allocations const failing(number, which);
                    status = call(a);
                    if (!failing_allocations::have_failed()) break;
                }
                ASSERT_TRUE(status == 0 || status == -199) << number << ' ' << status;
                if (status != 0) ++refused;
                bool const may_be_coarser = &call >= std::end(calls) - placements; // said in the header
                if (status != 0 || !may_be_coarser) {
                    ASSERT_EQ(a.untouched(), status != 0 ? before : complete.untouched()) << number;
                }
            }
    }
    EXPECT_GT(refused, 100);
}

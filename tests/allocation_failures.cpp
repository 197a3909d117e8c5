#include <gtest/gtest.h>

#include <vornik/toolkit.h>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;
using overload = meshing::overload;

namespace {

/// Arguments for every function: a wave of eight nodes.
struct arguments
{
    dense2D<double> plane = arc(7, 2), space = arc(7, 2, 3), row, metrics, matrix;
    dense2D<unsigned> connect, quadratic = columns<unsigned>({{0, 2, 1}, {2, 4, 3}}), neighbors, out_connect;
    dense2D<unsigned> far_apart = columns<unsigned>({{0, 4000000000}, {7, 9}});
    dense1D<unsigned> indices = nodes_up_to(8), out_indices = nodes({9});
    dense1D<double> params = reals({0, 1, 2, 3, 4, 5, 6, 7}), sizes = reals({1, 1, .2, .2, 1, 1, 1, 1}),
                    result;

    arguments()
    {
        EXPECT_TRUE(row.resize(1, 8, 0.5));
        EXPECT_EQ(indices_to_connectE2(indices, connect), 0);
        EXPECT_EQ(vornik::get_neighbors(connect, vornik::element_type::edge, false, neighbors), 0);
    }

    /// What a failure must leave alone.
    auto untouched() const
    {
        return std::tie(plane, space, connect, neighbors, out_connect, indices, out_indices, params, sizes);
    }
};

} // namespace

TEST(allocation_failures, leave_arguments_alone_or_change_nothing_in_the_result)
{
    using point = vector_fixed<double, 3>;
    int (*const calls[])(arguments&) = {
        [](arguments& a) { return indices_to_connectE4(a.indices.sub_vector(0, 7), a.out_connect); },
        [](arguments& a) { return split_into_linear(a.quadratic, a.out_connect); },
        [](arguments& a) { return convert_into_cubic(a.space, a.connect); },
        [](arguments& a) { return curvatures(a.plane, a.indices, a.result); },
        [](arguments& a) { return parametric_curvatures(a.params, a.connect, a.plane, a.result); },
        [](arguments& a) { return normals(a.plane, a.connect, 1, true, a.matrix); },
        [](arguments& a) { return interpolate_metrics(a.params, a.sizes, a.params, a.result); },
        [](arguments& a) { return interpolate_metrics(a.params, a.row, a.params, a.matrix); },
        [](arguments& a) { return metrics_gen_aniso2d(a.plane, a.indices, 1, 2, a.metrics); },
        [](arguments& a) { return metrics_gen_aniso3d(a.space, a.connect, 1, 2, a.metrics); },
        [](arguments& a) {
            return extrude_translate(a.space, point{}, point{3, 4, 5}, 1, 1, true, a.out_indices);
        },
        [](arguments& a) { return vornik1d::sort(a.params, a.indices); },
        [](arguments& a) { return -199 * (mesh_reorient(a.connect, a.neighbors, 3, 1) == -199); },
        [](arguments& a) {
            return vornik::get_neighbors(a.far_apart, vornik::element_type::edge, false, a.out_connect);
        },
        // The header says of these that they may place fewer nodes.
        [](arguments& a) {
            return subdivide(a.params, a.sizes, a.indices, true, true, 1, 99, a.out_indices);
        },
        [](arguments& a) { return mesh_straight(a.plane, a.indices, 20, false, a.out_indices); },
        [](arguments& a) { return mesh_straight(a.plane, 0, 1, .1, .1, false, a.out_indices); },
    };
    for (auto const& call : calls) {
        arguments const given;
        arguments complete;
        ASSERT_EQ(call(complete), 0);
        bool const may_be_coarser = &call >= std::end(calls) - 3;
        int const refused = for_each_failure([] { return arguments(); }, call,
            [&](arguments const& a, int status) {
                if (status != 0 || !may_be_coarser) {
                    EXPECT_EQ(a.untouched(), (status != 0 ? given : complete).untouched()) << &call - calls;
                }
            });
        EXPECT_GT(refused, 2) << &call - calls;
    }
}

TEST(allocation_failures, leave_lines_and_splines_alone_or_a_sound_mesh)
{
    for (auto const which : {overload::line, overload::line_by_chord_length, overload::spline})
        for (bool const by_tensors : {false, true})
            for (double const tolerance : {-0.01, 0.0, 0.02}) {
                auto curve = arc(30, 4, by_tensors ? 3 : 2);
                curve(0, 15) += 0.3; // a corner, so that refinement splits
                meshing given = which == overload::spline ? spline_of(curve, 0.15) : chain_of(curve, 0.15);
                given.which = which, given.deviation_tolerance = tolerance, given.max_gradation = 0.3;
                if (by_tensors) given.use_tensors();
                int const refused = for_each_failed_copy(given, [&](meshing const& m, int status) {
                    EXPECT_EQ(m.inputs(), given.inputs());
                    EXPECT_TRUE(status == 0 || m.untouched() == given.untouched());
                    if (status != 0) return;
                    EXPECT_EQ(m.out_sizes.size() - 1 + m.out_metrics.cols(), m.mesh().size());
                    for (unsigned const node : m.mesh()) EXPECT_LT(node, m.coords.cols());
                });
                EXPECT_GT(refused, 10);
            }
}

TEST(allocation_failures, leave_no_node_without_its_place)
{
    for (bool const by_tensors : {false, true}) {
        meshing given = chain_of(columns({{0, 0}, {1, 1}}), 0.1);
        if (by_tensors) given.use_tensors();
        for_each_failed_copy(given, [](meshing const& m, int status) {
            for (std::size_t j = 2; j < m.coords.cols() && status == 0; ++j)
                EXPECT_NEAR(m.coords(0, j) * double(m.elements()), double(j - 1), 1e-9);
        });
    }
}

TEST(allocation_failures, leave_a_network_alone_or_lose_no_break_node)
{
    for (double const tolerance : {0.0, 0.01, -0.01}) {
        remeshing given = network_of(arc(30, 4), 0.05);
        given.coords(0, 15) += 0.3;
        given.colors = nodes({1, 1, 2}), given.hard_nodes = nodes({7, 9}), given.hard_edges = nodes({20});
        given.deviation_tolerance = tolerance, given.max_gradation = 0.3, given.min_size = 0.01;
        double const length = length_of(given.coords, given.connect);
        for_each_failed_copy(given, [&](remeshing const& r, int status) {
            EXPECT_TRUE(status == 0 || r.untouched() == given.untouched());
            if (status != 0) return;
            EXPECT_EQ(r.hard_nodes, (nodes{0, 2, 7, 9, 14, 15, 20, 21, 30}));
            EXPECT_NEAR(length_of(r.coords, r.connect), length, 0.04 * length); // chords at the coarsest
            EXPECT_EQ(r.colors.size(), r.connect.cols());
        });
    }
}

TEST(allocation_failures, of_sets_that_outgrow_their_plan)
{
    // Hard edges that share a bucket, and more breaks than there is room planned for.
    constexpr unsigned n = 97 * 25;
    dense2D<double> zigzag;
    ASSERT_TRUE(zigzag.resize(2, n + 1));
    for (unsigned k = 0; k <= n; ++k) zigzag(0, k) = k, zigzag(1, k) = k % 2;
    remeshing given = network_of(zigzag, 0.7);
    for (unsigned k = 0; k < 25; ++k) given.hard_edges.push_back(97 * k);
    auto const check = [](remeshing const& r, int status) {
        EXPECT_EQ(r.hard_nodes.size(), status == 0 ? n + 1 : 0);
        EXPECT_LE(r.connect.cols(), status == 0 ? 2 * (n - 25) + 25 : n); // a hard edge that is lost is cut
    };
    EXPECT_GT(for_each_failed_copy(given, check, 50), 60);
}

TEST(allocation_failures, of_lists_that_are_one_object)
{
    auto const given = spline_of(arc(5, 2), 0.01);
    auto const spline = [](meshing& m) {
        return mesh_spline(m.coords, m.indices, m.sizes, false, 1, no_limit, 0, 0, 0, 0, m.out_indices,
            m.out_params, m.out_params, m.deviation);
    };
    auto const check = [&](meshing const& m, int status) {
        EXPECT_EQ(m.out_params.size(), status == 0 ? 2 + 2 * m.mesh().size() : 2);
        EXPECT_TRUE(status == 0 || m.untouched() == given.untouched());
    };
    EXPECT_GT(for_each_failure([&] { return given.copy(); }, spline, check), 20);
    auto const axis = [](meshing& m) {
        return subdivide(m.sizes, m.sizes, m.indices, false, false, 50, 50, m.out_indices);
    };
    auto const check_axis = [&](meshing const& m, int status) {
        EXPECT_EQ(m.sizes.size() + m.out_indices.size() == given.sizes.size() + 1, status != 0);
    };
    EXPECT_GT(for_each_failure([&] { return given.copy(); }, axis, check_axis), 5);
}

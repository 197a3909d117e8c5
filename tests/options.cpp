// The overloads that take options, and the helpers: both stand on the exported functions.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include <vornik1d/helpers.h>

#include "support.h"

using namespace trelk;
using namespace trelk::vornik1d;

namespace {

/// A network with a ring of 12 nodes, a ring on a stem, and a bent open line; `count` nodes on each ring.
struct rings
{
    dense2D<double> coords;
    dense2D<unsigned> connect;

    explicit rings(unsigned count = 12)
    {
        EXPECT_TRUE(coords.resize(2, 2 * count + 5, 0.0));
        for (unsigned r = 0; r < 2; ++r) {
            dense1D<unsigned> ring;
            for (unsigned k = 0; k <= count; ++k) ring.push_back(r * count + k % count);
            for (unsigned k = 0; k < count; ++k) {
                coords(0, r * count + k) = 8.0 * r + std::cos(2 * M_PI * k / count);
                coords(1, r * count + k) = std::sin(2 * M_PI * k / count);
            }
            EXPECT_EQ(indices_to_connectE2(ring, connect), 0);
        }
        for (unsigned k = 0; k < 5; ++k) coords(0, 2 * count + k) = 11.0 + k;
        EXPECT_EQ(indices_to_connectE2({2 * count + 1, 2 * count, count}, connect), 0); // a stem
        EXPECT_EQ(indices_to_connectE2({2 * count + 2, 2 * count + 3, 2 * count + 4}, connect), 0);
    }
};

/// Elements of each chain that begins and ends at one node.
std::vector<std::size_t> elements_of_rings(
    dense2D<unsigned> const& connect, dense1D<unsigned> const& break_nodes)
{
    std::vector<std::size_t> result;
    for (std::size_t first = 0, e = 0; e < connect.cols(); ++e) {
        bool const is_break = std::binary_search(break_nodes.begin(), break_nodes.end(), connect(1, e)) ||
                              connect(1, e) == connect(0, first);
        if (!is_break) continue;
        if (connect(0, first) == connect(1, e)) result.push_back(e + 1 - first);
        first = e + 1;
    }
    return result;
}

} // namespace

TEST(options, mesh_as_the_full_argument_lists_do)
{
    for (double const tolerance : {0.0, 0.01, -0.01}) {
        rings a(40), b(40), c(40);
        dense1D<unsigned> colors{3, 3, 5}, colors_b{3, 3, 5}, break_nodes, hard_nodes_b{7};
        remesh_options options;
        options.deviation_tolerance = tolerance;
        options.max_angle = 30, options.max_gradation = 0.4, options.min_size = 0.01;
        options.force_even = true, options.min_elements = 2, options.max_elements = 50;
        options.sizes = {0.1, 0, 0.4}, options.colors = &colors, options.hard_nodes = {7},
        options.break_nodes = &break_nodes;
        options.hard_edges = {4, 5};
        EXPECT_EQ(remesh_lines(a.coords, a.connect, 0.7, options), 0);
        EXPECT_EQ(remesh_lines(b.coords, b.connect, 0.7, {0.1, 0, 0.4}, colors_b, hard_nodes_b, {4, 5}, true,
                      30, tolerance, 0.4, 0.01, 2, 50),
            0);
        EXPECT_TRUE(a.coords == b.coords && a.connect == b.connect);
        EXPECT_TRUE(colors == colors_b && break_nodes == hard_nodes_b);

        rings d(40);
        options = {};
        options.deviation_tolerance = tolerance;
        EXPECT_EQ(remesh_lines(c.coords, c.connect, 0.7, options), 0);
        EXPECT_EQ(remesh_lines(d.coords, d.connect, 0.7, false, 40, tolerance, 0, 0, 1, no_limit), 0);
        EXPECT_TRUE(c.coords == d.coords && c.connect == d.connect);

        using overload = meshing::overload;
        for (auto const which : {overload::line, overload::line_by_chord_length, overload::spline})
            for (bool const by_tensors : {false, true}) {
                meshing full =
                    which == overload::spline ? spline_of(arc(30, 3), 0.3) : chain_of(arc(30, 3), 0.3);
                full.which = which, full.deviation_tolerance = tolerance, full.force_even = true;
                full.min_elements = 3, full.max_elements = 40, full.min_size = 0.02;
                full.default_size = 0.2, full.max_gradation = 0.3;
                if (by_tensors) full.use_tensors();
                meshing m = full.copy();
                line_options line;
                spline_options spline;
                auto const set = [&](auto& o) {
                    o.deviation_tolerance = tolerance, o.force_even = true, o.min_elements = 3;
                    o.max_elements = 40, o.min_size = 0.02, o.out_params = &m.out_params;
                    o.out_sizes = &m.out_sizes, o.out_metrics = &m.out_metrics;
                };
                set(line), set(spline);
                if (which == overload::line) line.params = m.params;
                spline.default_size = 0.2, spline.max_gradation = 0.3, spline.deviation = &m.deviation;
                auto const run = [&](auto const& targets) {
                    if (which != overload::spline)
                        return mesh_line(m.coords, m.indices, targets, m.out_indices, line);
                    return mesh_spline(m.coords, m.indices, targets, m.out_indices, spline);
                };
                ASSERT_EQ(full.run(), 0);
                ASSERT_EQ(by_tensors ? run(m.metrics) : run(m.sizes), 0);
                EXPECT_TRUE(m.coords == full.coords && m.out_indices == full.out_indices);
                EXPECT_TRUE(m.out_params == full.out_params && m.out_sizes == full.out_sizes);
                EXPECT_TRUE(m.out_metrics == full.out_metrics && m.deviation == full.deviation);
            }
    }
    dense2D<double> coords{{0, 0}, {1, 0}}, same{{0, 0}, {1, 0}};
    dense1D<unsigned> a, b;
    EXPECT_EQ(mesh_straight(coords, 0, 1, {0.1, 0.5, true}, a), 0);
    EXPECT_EQ(extrude_translate(coords, {1, 0}, {1, 1}, {0.1, 0.5}, a), 0);
    EXPECT_EQ(extrude_rotate(coords, 0, {0, 1}, 1.5, {0.1, 0.5}, a), 0);
    EXPECT_EQ(mesh_straight(same, 0, 1, 0.1, 0.5, true, b), 0);
    EXPECT_EQ(extrude_translate(same, {1, 0}, {1, 1}, 0.1, 0.5, false, b), 0);
    EXPECT_EQ(extrude_rotate(same, 0, {0, 1}, 1.5, 0.1, 0.5, false, b), 0);
    EXPECT_TRUE(a == b && coords == same);

    dense1D<double> params{0, 1}, sizes{0.3, 0.3};
    dense1D<unsigned> points;
    EXPECT_EQ(subdivide(params, sizes, {0, 1}, points, {true, true, 1, no_limit}), 0);
    EXPECT_EQ(points.size(), 5U); // 3.33 rounded up to 4
}

TEST(options, return_the_statuses_of_the_fullest_overload)
{
    dense2D<double> coords{{0, 0}, {1, 0}};
    dense2D<double> metrics{{1, 0, 1}, {1, 0, 1}}, one_row{{1}};
    dense1D<unsigned> out;
    line_options few, odd, wrong;
    few.min_elements = 0, odd.params = {1, 0}, wrong.out_metrics = &one_row;
    EXPECT_EQ(mesh_line(coords, {0, 2}, {0.1, 0.1}, out), -2);
    EXPECT_EQ(mesh_line(coords, {0, 1}, {0.1, 0.1}, out, odd), -3);
    EXPECT_EQ(mesh_line(coords, {0, 1}, {0.1, -1.0}, out), -4);
    EXPECT_EQ(mesh_line(coords, {0, 1}, {0.1, 0.1}, out, few), -6);
    EXPECT_EQ(mesh_line(coords, {0, 1}, metrics, out, wrong), -11);
    EXPECT_EQ(mesh_line(coords, {0, 1}, {1e-30, 1e-30}, out), no_storage);
    dense2D<unsigned> connect{{0, 1}};
    remesh_options options;
    options.min_size = -1;
    EXPECT_EQ(remesh_lines(coords, connect, 0.1, options), -12);
    EXPECT_TRUE(out.empty() && coords.cols() == 2 && connect.cols() == 1);
    EXPECT_EQ(mesh_line(coords, {0, 1}, {1, 1}, out), 0); // no matrix of 1 x 1
    EXPECT_EQ(mesh_straight(coords, {0, 1}, {1, 1}, false, out), 0);

    EXPECT_EQ(std::string("success"), status_text(0));
    EXPECT_EQ(std::string("argument 13 is wrong"), status_text(-13));
    EXPECT_EQ(std::string(status_text(-195)), status_text(no_storage));
    EXPECT_EQ(std::string(status_text(-14)), "unknown status");
    EXPECT_EQ(std::string(status_text(-12, options)), "min_size is wrong");
    EXPECT_EQ(std::string(status_text(no_storage, few)), status_text(no_storage, spline_options()));
}

TEST(helpers, guide_nodes_keep_all_nodes_of_a_curve)
{
    EXPECT_EQ(with_guides({4, 5, 6}, false), (dense1D<unsigned>{4, 4, 5, 6, 6}));
    EXPECT_EQ(with_guides({4, 5, 6}, true), (dense1D<unsigned>{6, 4, 5, 6, 4, 5}));
    EXPECT_EQ(with_guides({4, 5, 6, 4}, true), (dense1D<unsigned>{6, 4, 5, 6, 4, 5}));
    EXPECT_EQ(
        with_guides({4, 5, 6, 4}, dense1D<double>{1, 2, 3, 9}, true), (dense1D<double>{3, 1, 2, 3, 1, 2}));
    EXPECT_EQ(with_guides({4, 5}, dense2D<double>{{1, 0, 1}, {2, 0, 2}}, false),
        (dense2D<double>{{1, 0, 1}, {1, 0, 1}, {2, 0, 2}, {2, 0, 2}}));
    EXPECT_TRUE(with_guides({4}, false).empty() && with_guides({4, 5, 4}, true).empty());
    EXPECT_TRUE(with_guides({4, 5}, dense1D<double>{1}, false).empty());

    dense2D<double> coords = arc(20, 6);
    dense1D<unsigned> const chain = nodes_up_to(21);
    dense1D<unsigned> mesh;
    ASSERT_EQ(mesh_spline(
                  coords, with_guides(chain, true), with_guides(chain, dense1D<double>(21, 0.2), true), mesh),
        0);
    EXPECT_EQ(mesh[0], 0U);
    EXPECT_EQ(mesh[mesh.size() - 1], 0U);
}

TEST(helpers, neighbors_let_shuffled_lines_be_oriented)
{
    std::mt19937 random(5);
    std::vector<std::vector<unsigned>> elements;
    for (unsigned k = 0; k < 50; ++k) elements.push_back({k, k + 1});
    std::shuffle(elements.begin(), elements.end(), random);
    for (auto& element : elements)
        if (random() % 2 == 0) std::swap(element[0], element[1]);
    auto connect = columns(elements);
    auto neighbors = neighbors_of(connect);
    EXPECT_GT(mesh_reorient(connect, neighbors, 0, 1), 0);
    std::vector<int> starts(51);
    for (auto const element : connect.columns()) ++starts[element[0]];
    EXPECT_EQ(
        std::count(starts.begin(), starts.end(), 1), 50); // each node but the last one starts one element
    EXPECT_TRUE(neighbors_of(columns<unsigned>({{1}, {2}})).empty());
}

TEST(helpers, loops_do_not_collapse)
{
    for (double const tolerance : {0.0, 0.3, -0.5})
        for (double const size : {0.2, 5.0, 1e9}) {
            rings plain, kept;
            remesh_options options;
            options.deviation_tolerance = tolerance;
            options.max_gradation = 0.3;
            dense1D<double> sizes;
            ASSERT_EQ(loop_sizes(kept.coords, kept.connect, size, options, 4, sizes), 0);
            EXPECT_TRUE(kept.coords == plain.coords && kept.connect == plain.connect);
            dense1D<unsigned> breaks, plain_breaks;
            options.break_nodes = &plain_breaks;
            ASSERT_EQ(remesh_lines(plain.coords, plain.connect, size, options), 0);
            options.sizes = sizes, options.break_nodes = &breaks;
            ASSERT_EQ(remesh_lines(kept.coords, kept.connect, size, options), 0);

            auto const before = elements_of_rings(plain.connect, plain_breaks);
            auto const after = elements_of_rings(kept.connect, breaks);
            ASSERT_EQ(after.size(), 2U);
            EXPECT_GE(std::min(after[0], after[1]), 4U);
            if (std::min(before[0], before[1]) >= 4) {
                EXPECT_EQ(plain.coords, kept.coords);
            }
            EXPECT_EQ(
                plain.connect.cols() - before[0] - before[1], kept.connect.cols() - after[0] - after[1]);
        }
    rings r;
    dense1D<double> sizes{7};
    remesh_options options;
    EXPECT_EQ(loop_sizes(r.coords, r.connect, -1, options, 3, sizes), -3);
    options.max_elements = 2;
    EXPECT_EQ(loop_sizes(r.coords, r.connect, 5, options, 3, sizes), -5);
    EXPECT_EQ(sizes, dense1D<double>{7});
}

TEST(helpers, leave_sizes_alone_without_memory)
{
    int status = no_storage;
    for (std::size_t first = 0; status != 0; ++first) {
        ASSERT_LT(first, 5000U);
        rings const r;
        dense1D<double> sizes{7};
        failing_allocations const failing(first, failing_allocations::extent::all_behind);
        status = loop_sizes(r.coords, r.connect, 5, {}, 3, sizes);
        EXPECT_TRUE(status == 0 || status == no_storage) << status;
        EXPECT_EQ(sizes.size(), status == 0 ? r.coords.cols() : 1U);
    }
}

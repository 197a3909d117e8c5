#include <gtest/gtest.h>

#include <cmath>
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

TEST(helpers, put_statuses_into_words)
{
    EXPECT_EQ(std::string("success"), status_text(0));
    EXPECT_EQ(std::string("argument 13 is wrong"), status_text(-13));
    EXPECT_EQ(std::string(status_text(-195)), status_text(no_storage));
    EXPECT_EQ(std::string(status_text(-14)), "unknown status");
    EXPECT_EQ(std::string(status_text(-12, remesh_options())), "min_size is wrong");
    EXPECT_EQ(
        std::string(status_text(no_storage, line_options())), status_text(no_storage, spline_options()));
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
    options.min_elements = 3;
    EXPECT_EQ(loop_sizes(r.coords, r.connect, 5, options, 2, sizes), -13);
    EXPECT_EQ(sizes, dense1D<double>{7});

    auto const run = [](auto& given) {
        return loop_sizes(given.first.coords, given.first.connect, 5, {}, 3, given.second);
    };
    auto const check = [](auto const& given, int status) {
        EXPECT_EQ(given.second.size(), status == 0 ? given.first.coords.cols() : 1U);
    };
    EXPECT_GT(for_each_failure([] { return std::pair(rings(), reals{7}); }, run, check), 20);
}

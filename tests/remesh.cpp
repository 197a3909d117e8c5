#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include <vornik/toolkit.h>

#include "support.h"

using namespace trelk;

// Element ends at each node.
static std::map<unsigned, int> valences(dense2D<unsigned> const& connect)
{
    std::map<unsigned, int> ends;
    for (std::size_t e = 0; e < connect.cols(); ++e) ++ends[connect(0, e)], ++ends[connect(1, e)];
    return ends;
}

static std::map<unsigned, int> counts(dense1D<unsigned> const& colors)
{
    std::map<unsigned, int> result;
    for (unsigned const color : colors) ++result[color];
    return result;
}

// Lines of random shape, some closed, some from a node of another one, in both directions.
static remeshing random_network(random_numbers& random)
{
    point_list corners;
    element_list mesh;
    std::size_t const dimension = 2 + random.below(2);
    for (unsigned line = 0; line < 4; ++line) {
        bool const is_branch = line > 0 && random.below(2) == 0;
        auto const first = is_branch ? random.below(unsigned(corners.size())) : unsigned(corners.size());
        if (!is_branch) corners.push_back({10.0 * line, random.between(-1, 1), random.between(-1, 1)});
        auto at = corners[first];
        unsigned last = first;
        for (std::size_t k = 1 + random.below(12); k > 0; --k) {
            at = {at[0] + random.between(0.3, 0.9), at[1] + random.between(-0.5, 0.5), at[2] + 0.1};
            corners.push_back(at);
            auto const next = unsigned(corners.size() - 1);
            mesh.push_back(random.below(8) == 0 ? numbers{next, last} : numbers{last, next});
            last = next;
        }
        if (random.below(3) == 0 && last > first + 1) mesh.push_back({last, first});
        if (random.below(5) == 0) mesh.push_back(mesh.back()); // twice
    }
    for (std::size_t k = mesh.size(); k > 1; --k) std::swap(mesh[k - 1], mesh[random.below(unsigned(k))]);
    for (auto& corner : corners) corner.resize(dimension);
    remeshing r;
    r.coords = columns(corners), r.connect = columns(mesh);
    for (unsigned k = random.below(30); k > 0; --k)
        r.colors.push_back(random.below(3) == 0 ? vornik::none : k / 5);
    for (unsigned k = random.below(3); k > 0; --k)
        r.hard_edges.push_back(random.below(unsigned(mesh.size())));
    for (unsigned k = random.below(3); k > 0; --k)
        r.hard_nodes.push_back(random.below(unsigned(corners.size())));
    return r;
}

TEST(remesh_lines, random_networks_keep_what_holds_them_together)
{
    random_numbers random(7);
    for (int trial = 0; trial < 400; ++trial) {
        remeshing r = random_network(random);
        r.force_even = trial % 2 == 0;
        r.deviation_tolerance = trial % 3 == 0 ? 0 : trial % 3 == 1 ? 0.05 : -0.05;
        r.min_size = 0.01;
        remeshing const old = r.copy();
        ASSERT_EQ(r.run(), 0) << trial;

        // As many lines end at each break node as before; all other nodes are passed through.
        auto const old_ends = valences(old.connect), ends = valences(r.connect);
        std::map<unsigned, int> breaks;
        for (unsigned const node : r.hard_nodes) breaks[node] = 1;
        EXPECT_EQ(breaks.size(), r.hard_nodes.size());
        EXPECT_TRUE(std::is_sorted(r.hard_nodes.begin(), r.hard_nodes.end()));
        for (auto const& [node, count] : old_ends)
            ASSERT_EQ(count, breaks.count(node) == 1 ? ends.at(node) : 2) << trial;
        for (auto const& [node, count] : ends) ASSERT_TRUE(count == 2 || breaks.count(node) == 1) << trial;
        for (unsigned const node : old.hard_nodes) ASSERT_EQ(breaks.count(node), old_ends.count(node));
        for (unsigned const e : old.hard_edges) {
            auto const is_old = [&](auto element) {
                return element[0] == old.connect(0, e) && element[1] == old.connect(1, e);
            };
            auto const mesh = r.connect.columns();
            ASSERT_TRUE(std::any_of(mesh.begin(), mesh.end(), is_old));
        }
        ASSERT_EQ(r.colors.size(), r.connect.cols());
        for (auto const& [color, count] : counts(r.colors)) ASSERT_NE(color, vornik::none);
        double const length = length_of(old.coords, old.connect);
        ASSERT_NEAR(
            length_of(r.coords, r.connect), length, (r.deviation_tolerance == 0 ? 1e-9 : 0.25) * length);

        // Without colours of their own each chain gets one.
        remeshing by_chain = old.copy();
        by_chain.colors.clear(), by_chain.hard_edges.clear();
        ASSERT_EQ(by_chain.run(), 0);
        auto const chains = counts(by_chain.colors);
        ASSERT_EQ(chains.rbegin()->first + 1, chains.size());
        for (auto const& [color, count] : chains) ASSERT_TRUE(!r.force_even || count % 2 == 0) << trial;
    }
}

TEST(remesh_lines, break_nodes_and_chains)
{
    // Sizes so large that each chain is one element: with a colour a chain, the mesh is the list of chains.
    double const s = std::sin(0.3), c = std::cos(0.3);
    auto const coords = columns({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {1, 1}, {2 + c, s}, {3, 0}, {0, 2},
        {0.1, 0.2}, {0.2, 0.4}, {0.3, 0.6}, {0.5, 1}});
    struct
    {
        element_list mesh;
        double max_angle, min_size;
        numbers breaks;
        element_list chains;
    } const rows[] = {
        {{{1, 2}, {0, 1}, {2, 6}}, 40, 0, {0, 6}, {{0, 6}}},            // in any order of columns
        {{{0, 1}, {1, 2}, {2, 3}}, 40, 0, {0, 2, 3}, {{0, 2}, {2, 3}}}, // a corner
        {{{0, 1}, {1, 2}, {2, 3}}, 40, 1, {0, 3}, {{0, 3}}},            // no segment is longer
        {{{0, 1}, {1, 2}, {2, 3}}, 40, 0.999, {0, 2, 3}, {{0, 2}, {2, 3}}},
        {{{0, 2}, {2, 3}}, 40, 1, {0, 3}, {{0, 3}}}, // one of the two is
        {{{3, 2}, {2, 0}}, 40, 1, {0, 3}, {{3, 0}}},
        {{{0, 8}, {8, 9}, {9, 10}, {10, 11}}, 0, 0, {0, 11}, {{0, 11}}}, // straight but for rounding
        {{{1, 2}, {2, 5}}, 17.1, 0, {1, 2, 5}, {{1, 2}, {2, 5}}},        // 0.3 radians are 17.19 degrees
        {{{1, 2}, {2, 5}}, 17.3, 0, {1, 5}, {{1, 5}}},
        {{{1, 2}, {2, 5}}, 180 - 17.3, 0, {1, 5}, {{1, 5}}}, // beyond 90 the supplement
        {{{1, 2}, {2, 5}}, infinity, 0, {1, 5}, {{1, 5}}},
        {{{0, 1}, {2, 1}}, 40, 0, {0, 1, 2}, {{0, 1}, {2, 1}}},                    // head to head
        {{{1, 0}, {1, 2}}, 40, 0, {0, 2}, {{1, 0}, {1, 2}}},                       // tail to tail
        {{{0, 1}, {1, 2}, {1, 4}}, 40, 0, {0, 1, 2, 4}, {{0, 1}, {1, 2}, {1, 4}}}, // a fork
        {{{0, 1}, {0, 1}}, 40, 0, {0, 1}, {{0, 1}, {0, 1}}},                       // twice
        {{{0, 1}, {1, 0}}, 40, 0, {0, 1}, {{0, 1}, {1, 0}}},                       // to and fro
        {{{0, 1}, {1, 0}}, 40, 1, {}, {{0, 0}}},
        {{{3, 4}, {4, 1}, {1, 2}, {2, 3}}, 89, 0, {1, 2, 3, 4}, {{3, 4}, {4, 1}, {1, 2}, {2, 3}}},
    };
    for (auto const& row : rows) {
        remeshing r;
        r.coords = coords, r.connect = columns(row.mesh);
        r.default_size = 100, r.deviation_tolerance = -2;
        r.max_angle = row.max_angle, r.min_size = row.min_size;
        ASSERT_EQ(r.run(), 0);
        EXPECT_EQ(r.hard_nodes, nodes(row.breaks)) << &row - rows;
        EXPECT_EQ(r.connect, columns(row.chains)) << &row - rows;
        EXPECT_EQ(r.colors.size(), row.chains.size());
        EXPECT_EQ(r.coords.cols(), coords.cols());
    }
}

TEST(remesh_lines, colors_and_hard_elements_cut)
{
    // Four elements of length 1 in a row, and a square loop apart.
    remeshing r;
    r.coords = columns({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {9, 0}, {10, 0}, {10, 1}, {9, 1}});
    r.connect = columns<unsigned>(
        {{0, 1, 7}, {1, 2, 7}, {2, 3, 7}, {3, 4, 7}, {5, 6, 7}, {6, 7, 7}, {7, 8, 7}, {8, 5, 7}});
    auto const old_connect = r.connect;
    r.colors = nodes({3, vornik::none, 5}), r.hard_edges = nodes({3}), r.hard_nodes = nodes({99, 8});
    r.max_angle = 120; // the corners of the square stay
    r.sizes = reals({0.25, 0, not_a_number});
    r.default_size = 0.5;
    ASSERT_EQ(r.run(), 0);
    EXPECT_EQ(r.hard_nodes, (nodes{0, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(
        old_connect.sub_matrix(0, 0, 3, 1), (dense2D<unsigned>{{0, 1, 7}})); // another view of the old mesh
    ASSERT_EQ(r.connect.rows(), 2U);
    // 3 has no neighbour of another colour, and 5 comes after an element without: one chain from 0 to 3, in the
    // colour 3, of 4 ln(2) + 4 = 6.8 elements. The hard edge has the next colour, 6, then the sides of the square.
    EXPECT_EQ(counts(r.colors), (std::map<unsigned, int>{{3, 7}, {6, 1}, {7, 2}, {8, 2}, {9, 2}, {10, 2}}));
    EXPECT_EQ(r.connect.sub_matrix(0, 7, 2, 1), (dense2D<unsigned>{{3, 4}}));

    remeshing line = network_of(columns({{0, 0}, {1, 0}, {2, 0}, {3, 0}}), 9), limited = line.copy(),
              hard = line.copy();
    line.colors = nodes({3, 3, 5});
    limited.min_elements = limited.max_elements = 5;
    hard.connect = columns<unsigned>({{0, 1}, {1, 3}, {3, 2}}), hard.max_angle = 180, hard.min_size = 9;
    hard.hard_nodes = nodes({3}); // the largest number
    ASSERT_EQ(line.run() + limited.run() + hard.run(), 0);
    EXPECT_EQ(line.hard_nodes, (nodes{0, 2, 3}));
    EXPECT_EQ(line.connect, (dense2D<unsigned>{{0, 2}, {2, 3}}));
    EXPECT_EQ(line.colors, (nodes{3, 5}));
    EXPECT_EQ(limited.connect.cols(), 5U);
    EXPECT_EQ(hard.hard_nodes, (nodes{0, 2, 3}));
}

TEST(remesh_lines, the_default_size_gives_way_to_the_shortest_chain_at_a_node)
{
    for (auto const& [min_size, size_of_1, elements] : // 4 ln(4) / 1.5 = 3.7
        {std::tuple(0.0, 0.0, 4U + 4 + 1), {1.0, 0.0, 3U + 3 + 1}, {0.0, 4.0, 1U + 1 + 1}})
        for (bool const is_turned : {false, true}) {
            remeshing fork;
            fork.coords = columns({{0, 0}, {4, 0}, {4, 0.5}, {8, 0}});
            fork.connect = columns<unsigned>({{0, 1}, {1, 2}, {1, 3}});
            if (is_turned) fork.connect(0, 1) = 2, fork.connect(1, 1) = 1;
            fork.default_size = 2, fork.min_size = min_size, fork.sizes = reals({0, size_of_1});
            ASSERT_EQ(fork.run(), 0);
            EXPECT_EQ(fork.connect.cols(), elements);
        }
}

TEST(remesh_lines, takes_a_failed_mesh_back)
{
    // The second chain has a size of 0 at its end.
    for (double const tolerance : {0.0, 1e-3, -0.1}) {
        remeshing r = network_of(arc(10, 3), 0);
        r.hard_nodes = nodes({4}), r.sizes = dense1D<double>(10, 0.05), r.deviation_tolerance = tolerance;
        remeshing const before = r.copy();
        EXPECT_EQ(r.run(), -3);
        EXPECT_EQ(r.untouched(), before.untouched());
    }
}

TEST(remesh_lines, takes_a_spline_that_strays_by_the_tolerance_but_by_no_more)
{
    auto const curve = columns({{0, 0}, {1, 0}, {2, 0.3}, {3, 0.9}, {4, 1}});
    meshing spline = spline_of(curve, 0.4).copy();
    spline.deviation_tolerance = 1, spline.min_size = 9; // two samples a span, whatever the tolerance
    ASSERT_EQ(spline.run(), 0);
    // Otherwise it keeps to the line, with nothing of the spline left behind.
    for (double const tolerance :
        {spline.deviation, std::nextafter(spline.deviation, 0), 1e-9, 0.0, not_a_number}) {
        remeshing r = network_of(curve, 0.4).copy();
        r.sizes = dense1D<double>(5, 0.4), r.min_size = 9, r.deviation_tolerance = tolerance;
        double const length = length_of(r.coords, r.connect);
        ASSERT_EQ(r.run(), 0);
        EXPECT_EQ(r.coords == spline.coords, tolerance == spline.deviation);
        EXPECT_NEAR(length_of(r.coords, r.connect), length, tolerance > 1e-3 ? 0.1 : 1e-9);
        EXPECT_LE(r.coords.cols(), 5 + r.connect.cols() - 1);
    }
}

TEST(remesh_lines, hands_chains_with_their_guides_to_the_spline)
{
    point_list const pentagon = {{0, 0}, {2, 0.5}, {3, 2}, {1, 3}, {-1, 1}};
    for (bool const is_closed : {false, true}) {
        meshing spline = spline_of(columns(pentagon), 0.1, is_closed);
        remeshing r = network_of(columns(pentagon), 0.4);
        if (is_closed) {
            ASSERT_EQ(vornik1d::indices_to_connectE2(nodes({4, 0}), r.connect), 0);
        }
        for (std::size_t k = 0; k < spline.sizes.size(); ++k)
            spline.sizes[k] = 0.1 + 0.02 * (spline.indices[k] % 3);
        for (unsigned node = 0; node < 5; ++node) r.sizes.push_back(0.1 + 0.02 * (node % 3));
        r.max_angle = 90, r.min_size = 100; // no corners
        spline.min_size = r.min_size, spline.default_size = r.default_size;
        spline.force_even = r.force_even = is_closed;
        spline.max_gradation = r.max_gradation = 0.5, spline.max_elements = r.max_elements = 25;
        spline.deviation_tolerance = r.deviation_tolerance = -0.001;
        ASSERT_EQ(spline.run() + r.run(), 0);
        EXPECT_EQ(r.coords, spline.coords);
        EXPECT_EQ(r.connect.cols(), is_closed ? 26U : 25U);
    }
}

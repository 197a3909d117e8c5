#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <random>
#include <unordered_set>

#include <vornik/toolkit.h>

#include "remesh/hbuckets_set.h"
#include "support.h"

using namespace trelk;
using vornik1d::hbuckets_set;
using elements = std::vector<std::vector<unsigned>>;

static std::vector<unsigned> keys_of(hbuckets_set const& set)
{
    std::vector<unsigned> keys;
    set.for_each([&](unsigned key) { keys.push_back(key); });
    std::sort(keys.begin(), keys.end());
    return keys;
}

TEST(hbuckets_set, holds_what_an_unordered_set_holds)
{
    std::mt19937 random(3);
    for (unsigned const range : {10U, 3000U, 4294967295U}) {
        hbuckets_set set;
        std::unordered_set<unsigned> expected;
        ASSERT_TRUE(set.init(23, 23));
        for (int step = 0; step < 3000; ++step) {
            unsigned const few[] = {unsigned(random() % range), unsigned(random() % range), 0, 4294967295};
            std::size_t const before = expected.size();
            if (step % 10 == 0) {
                expected.insert(few, few + 4);
                ASSERT_EQ(set.insert_range(few, few + 4), expected.size() - before);
            } else {
                expected.insert(few[0]);
                set.insert(few[0]);
            }
            ASSERT_EQ(set.keys(), expected.size());
            ASSERT_LE(set.keys(), 2 * set.buckets());
            ASSERT_TRUE(set.contains(few[0]));
            ASSERT_EQ(set.contains(few[1]), expected.count(few[1]) == 1);
        }
        std::vector<unsigned> sorted(expected.begin(), expected.end());
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(keys_of(set), sorted);
        EXPECT_TRUE(set.is_complete());
    }
}

TEST(hbuckets_set, grows_by_the_table)
{
    hbuckets_set set;
    EXPECT_FALSE(set.contains(0)); // not yet alive
    ASSERT_TRUE(set.init(0, 5));
    EXPECT_EQ(set.buckets(), 23U);
    EXPECT_EQ(set.used(), 23U);
    for (unsigned k = 0; k < 46; ++k) set.insert(23 * k); // all in one bucket
    EXPECT_EQ(set.used(), 23U + 45);
    set.insert(0); // the 47th, though it is there
    EXPECT_EQ(set.buckets(), 97U);
    EXPECT_EQ(set.keys(), 46U);
    EXPECT_EQ(set.used(), 97U); // 23 and 97 have no common factor: no two keys share a bucket
    unsigned const range[200] = {1};
    EXPECT_EQ(set.insert_range(range, range + 200), 1U); // 246 keys may come
    EXPECT_EQ(set.buckets(), 389U);
    EXPECT_EQ(vornik1d::next_prime_size(98), 193U);
    EXPECT_EQ(vornik1d::next_prime_size(5000000000), 4294967291U);
    EXPECT_FALSE(set.init(4294967290, 4294967291));
    EXPECT_EQ(set.buckets(), 23U);
}

TEST(hbuckets_set, knows_what_it_has_no_storage_for)
{
    std::mt19937 random(5);
    for (std::size_t refused = 0; refused < 12; ++refused)
        for (auto const extent :
            {failing_allocations::extent::one, failing_allocations::extent::all_behind}) {
            std::unordered_set<unsigned> expected;
            hbuckets_set set;
            {
                failing_allocations const some(refused, extent);
                bool const is_alive = set.init(10, 23);
                EXPECT_TRUE(is_alive || !set.contains(0));
                for (int step = 0; step < 300; ++step) {
                    unsigned const pair[] = {unsigned(random() % 500), unsigned(random() % 500)};
                    step % 3 == 0 ? void(set.insert_range(pair, pair + 2)) : set.insert(pair[0]);
                    for (unsigned const key : pair)
                        if (set.contains(key)) expected.insert(key);
                }
            }
            EXPECT_EQ(set.keys(), keys_of(set).size());
            EXPECT_LE(set.keys(), expected.size());
            EXPECT_TRUE(set.keys() == expected.size() || !set.is_complete());
            for (unsigned const key : keys_of(set)) EXPECT_TRUE(set.contains(key));
        }
    hbuckets_set set;
    EXPECT_FALSE(set.init(4294967295, 23) || set.init(4294967290, 4294967290)); // more than links can count
    EXPECT_TRUE(set.rehash(90));
    EXPECT_EQ(set.buckets(), 97U);
}

static std::vector<unsigned> brute_neighbors(elements const& mesh)
{
    std::vector<unsigned> result;
    for (std::size_t e = 0; e < mesh.size(); ++e)
        for (std::size_t i = 0; i < 2; ++i) {
            unsigned const node = mesh[e][1 - i];
            std::vector<unsigned> owners;
            for (unsigned f = 0; f < mesh.size(); ++f)
                for (unsigned const end : mesh[f])
                    if (end == node) owners.push_back(f);
            bool const is_pair = owners.size() == 2 && owners[0] != owners[1];
            result.push_back(is_pair ? owners[owners[0] == e ? 1 : 0] : vornik::none);
        }
    return result;
}

TEST(get_neighbors, agrees_with_brute_force)
{
    std::mt19937 random(4);
    for (unsigned trial = 0; trial < 300; ++trial) {
        elements mesh(1 + random() % 30);
        // Near numbers and far ones.
        unsigned const factor = trial % 2 == 0 ? 1 : 120'000'000;
        for (auto& ends : mesh)
            ends = {unsigned(random() % 35) * factor + 7, unsigned(random() % 35) * factor + 7};
        dense2D<unsigned> neighbors;
        ASSERT_EQ(vornik::get_neighbors(columns(mesh), vornik::element_type::edge, false, neighbors), 0);
        ASSERT_EQ(values_of(neighbors.as_vector()), brute_neighbors(mesh));
    }
}

// A call of `remesh_lines` with all its arguments.
struct remeshing
{
    dense2D<double> coords;
    dense2D<unsigned> connect;
    double default_size = 0.3;
    dense1D<double> sizes;
    dense1D<unsigned> colors, hard_nodes, hard_edges;
    bool force_even = false;
    double max_angle = 40, deviation_tolerance = 0, max_gradation = 0, min_size = 0;
    unsigned min_elements = 1, max_elements = no_limit;

    int run()
    {
        return vornik1d::remesh_lines(coords, connect, default_size, sizes, colors, hard_nodes, hard_edges,
            force_even, max_angle, deviation_tolerance, max_gradation, min_size, min_elements, max_elements);
    }
    int run_with_colors()
    {
        return vornik1d::remesh_lines(coords, connect, default_size, colors, force_even, max_angle,
            deviation_tolerance, max_gradation, min_size, min_elements, max_elements);
    }
    int run_plain()
    {
        return vornik1d::remesh_lines(coords, connect, default_size, force_even, max_angle,
            deviation_tolerance, max_gradation, min_size, min_elements, max_elements);
    }
    auto untouched() const
    {
        return std::tuple(values_of(coords), values_of(connect), values_of(colors), values_of(hard_nodes));
    }
};

// Element ends at each node.
static std::map<unsigned, int> valences(dense2D<unsigned> const& connect)
{
    std::map<unsigned, int> ends;
    for (std::size_t e = 0; e < connect.cols(); ++e) ++ends[connect(0, e)], ++ends[connect(1, e)];
    return ends;
}

// A network: lines of random shape, some closed, some from a node of another one, in both directions.
static remeshing random_network(std::mt19937& random)
{
    std::normal_distribution<double> normal;
    std::vector<std::vector<double>> points;
    elements mesh;
    std::size_t const dimension = 2 + random() % 2;
    for (unsigned line = 0; line < 4; ++line) {
        bool const is_branch = line > 0 && random() % 2 == 0;
        auto const first = static_cast<unsigned>(is_branch ? random() % points.size() : points.size());
        if (!is_branch) points.push_back({10.0 * line, normal(random), normal(random)});
        auto at = points[first];
        unsigned last = first;
        for (std::size_t k = 1 + random() % 12; k > 0; --k) {
            at = {at[0] + 0.3 + 0.4 * std::abs(normal(random)), at[1] + 0.3 * normal(random), at[2] + 0.1};
            points.push_back(at);
            auto const next = static_cast<unsigned>(points.size() - 1);
            mesh.push_back(random() % 8 == 0 ? std::vector{next, last} : std::vector{last, next});
            last = next;
        }
        if (random() % 3 == 0 && last > first + 1) mesh.push_back({last, first});
        if (random() % 5 == 0) mesh.push_back(mesh.back()); // twice
    }
    std::shuffle(mesh.begin(), mesh.end(), random);
    for (auto& point : points) point.resize(dimension);
    remeshing r;
    r.coords = columns(points);
    r.connect = columns(mesh);
    for (unsigned k = 0; k < random() % 30; ++k) r.colors.push_back(random() % 3 == 0 ? vornik::none : k / 5);
    for (unsigned k = 0; k < random() % 3; ++k) r.hard_edges.push_back(unsigned(random() % mesh.size()));
    for (unsigned k = 0; k < random() % 3; ++k) r.hard_nodes.push_back(unsigned(random() % points.size()));
    return r;
}

TEST(remesh_lines, random_networks_keep_what_holds_them_together)
{
    std::mt19937 random(7);
    for (int trial = 0; trial < 400; ++trial) {
        remeshing r = random_network(random);
        r.force_even = trial % 2 == 0;
        r.deviation_tolerance = trial % 3 == 0 ? 0 : trial % 3 == 1 ? 0.05 : -0.05;
        r.min_size = 0.01;
        double old_length = 0;
        ASSERT_EQ(vornik1d::length(r.coords, r.connect, old_length), 0);
        auto const old_connect = r.connect;
        std::size_t const old_nodes = r.coords.cols();
        auto const hard_edges = values_of(r.hard_edges);
        ASSERT_EQ(r.run(), 0) << trial;

        // As many lines end at each break node as before; all other nodes are passed through.
        auto const old_ends = valences(old_connect);
        auto const ends = valences(r.connect);
        std::unordered_set<unsigned> const breaks(r.hard_nodes.begin(), r.hard_nodes.end());
        EXPECT_TRUE(std::is_sorted(r.hard_nodes.begin(), r.hard_nodes.end()));
        for (auto const& [node, count] : old_ends) {
            bool const is_break = breaks.count(node) == 1;
            ASSERT_TRUE(is_break ? ends.at(node) == count : count == 2) << trial;
        }
        for (auto const& [node, count] : ends) ASSERT_TRUE(count == 2 || breaks.count(node) == 1) << trial;
        for (unsigned const e : hard_edges) {
            std::vector const edge{old_connect(0, e), old_connect(1, e)};
            auto const mesh = values_of(r.connect);
            ASSERT_NE(std::find(mesh.begin(), mesh.end(), edge), mesh.end());
        }
        double new_length = 0;
        ASSERT_EQ(vornik1d::length(r.coords, r.connect, new_length), 0);
        ASSERT_NEAR(new_length, old_length, (r.deviation_tolerance == 0 ? 1e-9 : 1) * old_length) << trial;

        // Without colours of their own each chain gets one.
        remeshing by_chain = r;
        by_chain.connect = old_connect;
        ASSERT_TRUE(by_chain.coords.resize(r.coords.rows(), old_nodes));
        by_chain.colors = {};
        ASSERT_EQ(by_chain.run_with_colors(), 0);
        std::map<unsigned, int> counts;
        for (unsigned const color : by_chain.colors) ++counts[color];
        ASSERT_EQ(counts.rbegin()->first + 1, counts.size());
        for (auto const& [color, count] : counts) ASSERT_TRUE(!r.force_even || count % 2 == 0) << trial;
    }
}

TEST(remesh_lines, break_nodes_and_chains)
{
    // Sizes so large that each chain is one element: with a colour a chain, the mesh is the list of chains.
    double const s = std::sin(0.3);
    double const c = std::cos(0.3);
    auto const coords = columns({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {1, 1}, {2 + c, s}, {3, 0}});
    struct
    {
        elements mesh;
        double max_angle, min_size;
        std::vector<unsigned> breaks;
        elements chains;
    } const rows[] = {
        {{{1, 2}, {0, 1}, {2, 6}}, 40, 0, {0, 6}, {{0, 6}}},            // in any order of columns
        {{{0, 1}, {1, 2}, {2, 3}}, 40, 0, {0, 2, 3}, {{0, 2}, {2, 3}}}, // a corner
        {{{0, 1}, {1, 2}, {2, 3}}, 40, 1, {0, 3}, {{0, 3}}},            // no segment is longer
        {{{0, 1}, {1, 2}, {2, 3}}, 40, 0.999, {0, 2, 3}, {{0, 2}, {2, 3}}},
        {{{1, 2}, {2, 5}}, 17.1, 0, {1, 2, 5}, {{1, 2}, {2, 5}}}, // 0.3 radians are 17.19 degrees
        {{{1, 2}, {2, 5}}, 17.3, 0, {1, 5}, {{1, 5}}},
        {{{1, 2}, {2, 5}}, 180 - 17.3, 0, {1, 5}, {{1, 5}}}, // beyond 90 the supplement
        {{{1, 2}, {2, 5}}, infinity, 0, {1, 5}, {{1, 5}}},
        {{{0, 1}, {1, 2}}, 0, 0, {0, 2}, {{0, 2}}},
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
        r.coords = coords;
        r.connect = columns(row.mesh);
        r.default_size = 100, r.deviation_tolerance = -2;
        r.max_angle = row.max_angle, r.min_size = row.min_size;
        ASSERT_EQ(r.run(), 0);
        EXPECT_EQ(values_of(r.hard_nodes), row.breaks) << &row - rows;
        EXPECT_EQ(values_of(r.connect), row.chains) << &row - rows;
        EXPECT_EQ(r.colors.size(), row.chains.size());
        EXPECT_EQ(r.coords.cols(), coords.cols());
    }
}

TEST(remesh_lines, colors_hard_elements_and_sizes)
{
    // Four elements of length 1 in a row, and a square loop apart.
    remeshing r;
    r.coords = columns({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}, {9, 0}, {10, 0}, {10, 1}, {9, 1}});
    r.connect = columns<unsigned>(
        {{0, 1, 7}, {1, 2, 7}, {2, 3, 7}, {3, 4, 7}, {5, 6, 7}, {6, 7, 7}, {7, 8, 7}, {8, 5, 7}});
    auto const old_connect = r.connect;
    r.colors = nodes({3, vornik::none, 5});
    r.hard_edges = nodes({3});
    r.hard_nodes = nodes({99, 7});
    r.max_angle = 120; // the corners of the square stay
    r.sizes = reals({0.25, 0, not_a_number});
    r.default_size = 0.5;
    ASSERT_EQ(r.run(), 0);
    EXPECT_EQ(values_of(r.hard_nodes), (std::vector<unsigned>{0, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(values_of(old_connect)[0], (std::vector<unsigned>{0, 1, 7})); // another view of the old mesh
    ASSERT_EQ(r.connect.rows(), 2U);

    // 3 has no neighbour of another colour, and 5 is behind an element without: one chain from 0 to 3, in the
    // colour 3. The hard edge has the next colour, 6, then the sides of the square.
    std::map<unsigned, int> counts;
    for (unsigned const color : r.colors) ++counts[color];
    EXPECT_EQ(counts.size(), 6U);
    EXPECT_EQ(counts[3], 7); // size 0.25 to 0.5 along 1, then 0.5: 4 ln(2) + 4 = 6.8
    EXPECT_EQ(counts[6], 1);
    EXPECT_EQ(counts[10], 2);
    EXPECT_EQ(r.connect(0, 7), 3U);
    EXPECT_EQ(r.connect(1, 7), 4U);

    // The default size gives way to the length of the shortest chain at a node.
    remeshing fork;
    fork.coords = columns({{0, 0}, {4, 0}, {4, 0.5}, {8, 0}});
    fork.connect = columns<unsigned>({{0, 1}, {1, 2}, {1, 3}});
    fork.default_size = 2;
    remeshing with_floor = fork;
    remeshing with_size = fork;
    ASSERT_TRUE(with_floor.coords.copy(fork.coords) && with_size.coords.copy(fork.coords));
    with_floor.min_size = 1;
    with_size.sizes = reals({0, 4});
    ASSERT_EQ(fork.run() + with_floor.run() + with_size.run(), 0);
    EXPECT_EQ(fork.connect.cols(), 4U + 4 + 1); // 4 ln(4) / 1.5 = 3.7
    EXPECT_EQ(with_floor.connect.cols(), 3U + 3 + 1);
    EXPECT_EQ(with_size.connect.cols(), 1U + 1 + 1);
}

TEST(remesh_lines, statuses_in_the_order_of_the_checks)
{
    // Each row breaks one argument more, from the last check to the first.
    remeshing r;
    r.coords = columns({{0, 0}, {1, 0}, {2, 0}});
    r.connect = columns<unsigned>({{0, 1}, {1, 2}});
    r.colors = nodes({4});
    r.deviation_tolerance = -0.1;
    struct
    {
        void (*damage)(remeshing&);
        int full, with_colors, plain;
    } const rows[] = {
        {[](remeshing& c) { c.min_elements = 0; }, -5, -2, -5}, // of the mesher
        {[](remeshing& c) { c.default_size = 0; }, -3, -3, -3},
        {[](remeshing& c) { c.min_elements = 3, c.max_elements = 2; }, -13, -10, -9},
        {[](remeshing& c) { c.min_size = not_a_number; }, -12, -9, -8},
        {[](remeshing& c) { c.max_gradation = -1; }, -11, -8, -7},
        {[](remeshing& c) { c.max_angle = not_a_number; }, -9, -6, -5},
        {[](remeshing& c) {
             c.hard_edges = nodes({0, 2});
         },
            -7, -6, -5},
        {[](remeshing& c) { c.default_size = -1; }, -3, -3, -3},
        {[](remeshing& c) { c.connect(1, 1) = 3; }, -2, -2, -2},
        {[](remeshing& c) { ASSERT_TRUE(c.coords.resize(1, 3)); }, -1, -1, -1},
        {[](remeshing& c) { c.connect.clear(); }, 0, 0, 0},
    };
    for (auto const& row : rows) {
        row.damage(r);
        auto const before = r.untouched();
        EXPECT_EQ(r.run(), row.full) << &row - rows;
        EXPECT_EQ(r.run_with_colors(), row.with_colors) << &row - rows;
        EXPECT_EQ(r.run_plain(), row.plain) << &row - rows;
        EXPECT_EQ(r.untouched(), before) << &row - rows;
    }
}

TEST(remesh_lines, takes_a_failed_mesh_back)
{
    // The second chain has a size of 0 at its end; a spline that strays leaves nothing behind.
    remeshing r;
    r.coords = arc(10, 3);
    for (unsigned k = 0; k < 10; ++k)
        ASSERT_EQ(vornik1d::indices_to_connectE2(nodes({k, k + 1}), r.connect), 0);
    r.hard_nodes = nodes({4});
    r.sizes = dense1D<double>(10, 0.05);
    r.default_size = 0;
    r.deviation_tolerance = 1e-3;
    auto const before = r.untouched();
    EXPECT_EQ(r.run(), -3);
    EXPECT_EQ(r.untouched(), before);

    r.default_size = 0.05;
    r.deviation_tolerance = 0;
    remeshing by_spline = r;
    ASSERT_TRUE(by_spline.coords.copy(r.coords) && by_spline.hard_nodes.copy(r.hard_nodes));
    by_spline.deviation_tolerance = 1e-9; // less than the spline strays
    remeshing unheld = by_spline;
    ASSERT_TRUE(unheld.coords.copy(r.coords) && unheld.hard_nodes.copy(r.hard_nodes));
    unheld.deviation_tolerance = not_a_number; // as 0
    remeshing held = by_spline;
    ASSERT_TRUE(held.coords.copy(r.coords) && held.hard_nodes.copy(r.hard_nodes));
    held.deviation_tolerance = 0.1;
    ASSERT_EQ(r.run() + by_spline.run() + held.run() + unheld.run(), 0);
    EXPECT_EQ(values_of(unheld.coords), values_of(r.coords));
    EXPECT_EQ(values_of(by_spline.coords), values_of(r.coords));
    EXPECT_NE(values_of(held.coords), values_of(r.coords));
    EXPECT_EQ(values_of(held.connect), values_of(r.connect)); // numbered in the same way
}

TEST(remesh_lines, takes_a_spline_that_strays_by_the_tolerance_but_by_no_more)
{
    auto const points = columns({{0, 0}, {1, 0}, {2, 0.3}, {3, 0.9}, {4, 1}});
    meshing spline = spline_of(points, 0.4);
    spline.deviation_tolerance = 1, spline.min_size = 9; // two samples a span, whatever the tolerance
    ASSERT_EQ(spline.run(), 0);
    for (bool const is_less : {false, true}) {
        remeshing r;
        ASSERT_TRUE(r.coords.copy(points));
        ASSERT_EQ(vornik1d::indices_to_connectE2(nodes_up_to(5), r.connect), 0);
        r.sizes = dense1D<double>(5, 0.4), r.min_size = 9;
        r.deviation_tolerance = is_less ? std::nextafter(spline.deviation, 0) : spline.deviation;
        ASSERT_EQ(r.run(), 0);
        EXPECT_EQ(values_of(r.coords) != values_of(spline.coords), is_less);
    }
}

TEST(remesh_lines, hands_chains_with_their_guides_to_the_spline)
{
    for (bool const is_closed : {false, true}) {
        meshing spline = spline_of(arc(11, 2 * std::numbers::pi * 11 / 12), 0.1, is_closed);
        spline.deviation_tolerance = -0.001, spline.min_size = 0.15;
        spline.default_size = 0.4, spline.max_gradation = 0.5, spline.max_elements = 25;
        remeshing r;
        ASSERT_TRUE(r.coords.copy(spline.coords));
        ASSERT_EQ(vornik1d::indices_to_connectE2(
                      spline.indices.sub_vector(1, spline.indices.size() - 2), r.connect),
            0);
        for (std::size_t k = 0; k < spline.sizes.size(); ++k)
            spline.sizes[k] = 0.1 + 0.02 * (spline.indices[k] % 3);
        for (unsigned node = 0; node < 12; ++node) r.sizes.push_back(0.1 + 0.02 * (node % 3));
        r.deviation_tolerance = -0.001, r.min_size = 0.15;
        r.default_size = 0.4, r.max_gradation = 0.5, r.max_elements = 25;
        ASSERT_EQ(spline.run() + r.run(), 0);
        EXPECT_EQ(values_of(r.coords), values_of(spline.coords));
    }
}

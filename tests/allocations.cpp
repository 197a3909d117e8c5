#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "support.h"

using namespace trelk;

// What a call asks of the allocator is bounded by a constant and the doublings of its lists, whatever the number of
// chains, of ranges that are refined, and of passes.

namespace {

constexpr double most_at_first = 130; // for a thousand elements or nodes
constexpr double most_a_doubling = 6; // of as many: some lists grow

/// Counts the allocations of `run`, blocks of values and the records that share them alike.
template <class Run>
std::size_t allocations_of(Run run)
{
    failing_allocations const none(SIZE_MAX, failing_allocations::extent::one);
    run();
    return failing_allocations::count();
}

double most_allocations(std::size_t size)
{
    return most_at_first + most_a_doubling * std::log2(static_cast<double>(size) / 1000);
}

/// Lines of 1 to 60 elements in long and short waves, every fifth one closed, of `elements` elements in all.
struct waves
{
    dense2D<double> coords;
    dense2D<unsigned> connect;

    explicit waves(std::size_t elements)
    {
        for (std::size_t line = 0; connect.cols() < elements; ++line) {
            std::size_t const wanted = 1 + line * 7919 % 60;
            auto const size = std::min(wanted, elements - connect.cols());
            auto const first = static_cast<unsigned>(coords.cols());
            dense1D<unsigned> chain;
            EXPECT_TRUE(coords.resize(2, first + size + 1));
            for (std::size_t k = 0; k <= size; ++k) {
                auto const x = static_cast<double>(k);
                coords(0, first + k) = x;
                coords(1, first + k) =
                    9 * static_cast<double>(line) + std::sin(0.2 * x) + 0.3 * std::sin(2.5 * x);
                chain.push_back(first + static_cast<unsigned>(k));
            }
            if (line % 5 == 0 && size > 3) chain[size] = first;
            EXPECT_EQ(vornik1d::indices_to_connectE2(chain, connect), 0);
        }
    }
};

} // namespace

TEST(allocations, of_remesh_lines_do_not_grow_with_chains_and_ranges)
{
    for (double const tolerance : {0.0, 0.05, -0.02})
        for (double const max_gradation : {0.0, 0.4})
            for (std::size_t const elements : {1000U, 10000U, 100000U}) {
                waves network(elements);
                dense1D<unsigned> colors, hard_nodes, const_edges;
                auto const count = allocations_of([&] {
                    ASSERT_EQ(
                        vornik1d::remesh_lines(network.coords, network.connect, 0.7, {}, colors, hard_nodes,
                            const_edges, false, 60, tolerance, max_gradation, 0.01, 1, no_limit),
                        0);
                });
                EXPECT_GT(network.connect.cols(), elements / 2);
                EXPECT_LT(static_cast<double>(count), most_allocations(elements))
                    << tolerance << ' ' << elements;
            }
}

TEST(allocations, of_mesh_line_do_not_grow_with_ranges)
{
    for (std::size_t const nodes : {1000U, 10000U, 100000U})
        for (bool const by_tensors : {false, true}) {
            dense2D<double> coords;
            ASSERT_TRUE(coords.resize(2, nodes));
            for (std::size_t k = 0; k < nodes; ++k)
                coords(0, k) = double(k), coords(1, k) = double(k * k % 7);
            meshing m = chain_of(coords, 3);
            if (by_tensors) m.use_tensors();
            m.deviation_tolerance = 0.01;
            auto const count = allocations_of([&] { ASSERT_EQ(m.run(), 0); });
            EXPECT_GT(m.pinned().size(), nodes / 2);
            EXPECT_LT(static_cast<double>(count), most_allocations(nodes)) << nodes;
        }
}

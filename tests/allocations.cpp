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
    return most_at_first + most_a_doubling * std::log2(double(size) / 1000);
}

/// Waves of 1 to 60 elements, every fifth one closed, of about `elements` elements in all.
remeshing waves(unsigned elements)
{
    remeshing r;
    EXPECT_TRUE(r.coords.resize(2, elements + 1));
    for (unsigned k = 0; k <= elements; ++k)
        r.coords(0, k) = k, r.coords(1, k) = std::sin(0.2 * k) + 0.3 * std::sin(2.5 * k);
    for (unsigned first = 0, line = 0; first < elements; ++line) {
        unsigned const size = std::min(1 + line * 7919 % 60, elements - first);
        dense1D<unsigned> chain;
        for (unsigned k = 0; k <= size; ++k)
            chain.push_back(k == size && line % 5 == 0 && k > 3 ? first : first + k);
        EXPECT_EQ(vornik1d::indices_to_connectE2(chain, r.connect), 0);
        first += size + 1;
    }
    r.default_size = 0.7, r.max_angle = 60, r.min_size = 0.01;
    return r;
}

} // namespace

TEST(allocations, of_remesh_lines_do_not_grow_with_chains_and_ranges)
{
    for (auto const& [tolerance, gradation] : {std::pair(0.0, 0.0), {0.05, 0.4}, {-0.02, 0.4}})
        for (unsigned const elements : {1000U, 30000U}) {
            remeshing network = waves(elements);
            network.deviation_tolerance = tolerance, network.max_gradation = gradation;
            auto const count = allocations_of([&] { ASSERT_EQ(network.run(), 0); });
            EXPECT_GT(network.connect.cols(), elements / 2);
            EXPECT_LT(double(count), most_allocations(elements)) << tolerance << ' ' << elements;
        }
}

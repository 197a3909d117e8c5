#include <gtest/gtest.h>

#include <thread>

#include <vornik1d/vornik1d.h>

#include "support.h"

using namespace trelk;

// Calls that share what they read, and nothing that they write, run side by side: for the thread sanitizer.
TEST(threads, calls_on_views_of_shared_input)
{
    unsigned const n = 200;
    dense2D<double> coords;
    ASSERT_TRUE(coords.resize(2, n));
    for (unsigned k = 0; k < n; ++k) coords(0, k) = k, coords(1, k) = k % 3;
    auto const chain = nodes_up_to(n);
    dense1D<double> const sizes(n, 0.4);

    std::vector<std::thread> threads;
    threads.reserve(4);
    std::vector<dense2D<double>> results(4);
    for (auto& result : results)
        threads.emplace_back([&] {
            dense1D<unsigned> out_indices;
            dense1D<double> out_params, out_sizes;
            for (int round = 0; round < 20; ++round)
                if (!result.copy(coords) || vornik1d::mesh_line(result, chain, sizes, false, 1, no_limit, 0.1,
                                                0, out_indices, out_params, out_sizes) != 0)
                    return;
        });
    for (auto& thread : threads) thread.join();
    EXPECT_GT(results[0].cols(), n);
    for (auto const& result : results) EXPECT_EQ(values_of(result), values_of(results[0]));
}

#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "support.h"

// Calls that share what they read, and nothing that they write, run side by side: for the thread sanitizer.
TEST(threads, calls_on_views_of_shared_input)
{
    meshing input = chain_of(arc(200, 40), 0.1);
    input.deviation_tolerance = 0.01;
    std::array<meshing, 4> calls;
    std::vector<std::thread> threads;
    for (meshing& call : calls) {
        call.indices = input.indices, call.params = input.params, call.sizes = input.sizes;
        call.deviation_tolerance = input.deviation_tolerance;
        threads.emplace_back([&] {
            for (int round = 0; round < 20 && call.coords.copy(input.coords); ++round) call.run();
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_GT(calls[0].coords.cols(), 300U);
    for (meshing const& call : calls) EXPECT_EQ(values_of(call.coords), values_of(calls[0].coords));
}

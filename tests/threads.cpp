#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <map>
#include <thread>

#include "batches.h"
#include "support.h"

using namespace trelk;

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
    for (meshing const& call : calls) EXPECT_EQ(call.coords, calls[0].coords);
}

// A network of rings and forks, cut into batches that two threads remesh, is the one that a single call makes.
TEST(threads, batches_of_a_network)
{
    network_mesh network;
    for (unsigned k = 0; k < 40; ++k) {
        auto const first = static_cast<unsigned>(network.coords.cols());
        auto const ring = arc(12, 6 + 0.01 * k);
        ASSERT_TRUE(network.coords.resize(2, first + 13));
        for (std::size_t i = 0; i < 13; ++i) {
            network.coords(0, first + i) = ring(0, i) + 3 * k;
            network.coords(1, first + i) = ring(1, i);
        }
        auto chain = nodes_up_to(13);
        for (unsigned& node : chain) node += first;
        chain.push_back(first + (k % 3 == 0 ? 0 : 5)); // a ring, or a line that meets itself
        ASSERT_EQ(vornik1d::indices_to_connectE2(chain, network.connect), 0);
    }
    remesh_request const request = {0.1};
    auto const positions = [](network_mesh const& mesh) {
        std::map<std::array<double, 4>, int> result;
        for (std::size_t e = 0; e < mesh.connect.cols(); ++e) {
            double const* const a = mesh.coords.col(mesh.connect(0, e));
            double const* const b = mesh.coords.col(mesh.connect(1, e));
            ++result[{a[0], a[1], b[0], b[1]}];
        }
        return result;
    };
    std::vector<network_mesh> joined;
    for (std::size_t const count : {1U, 2U, 2U}) {
        network_batches batches(network, 50);
        EXPECT_EQ(batches.components(), 40U);
        ASSERT_EQ(batches.size(), 10U);
        std::atomic<std::size_t> next = 0;
        std::vector<std::thread> threads;
        for (std::size_t t = 0; t < count; ++t)
            threads.emplace_back([&] {
                for (std::size_t k = next++; k < batches.size(); k = next++) batches.remesh(k, request);
            });
        for (auto& thread : threads) thread.join();
        joined.push_back(batches.join([](std::size_t n, auto const& put) {
            for (std::size_t k = n; k-- > 0;) put(k);
        }));
        EXPECT_EQ(joined.back().coords, joined.front().coords);
        EXPECT_EQ(joined.back().connect, joined.front().connect);
    }
    network_mesh whole;
    ASSERT_TRUE(whole.coords.copy(network.coords) && whole.connect.copy(network.connect));
    ASSERT_EQ(vornik1d::remesh_lines(
                  whole.coords, whole.connect, request.size, false, request.max_angle, 0, 0, 0, 1, no_limit),
        0);
    EXPECT_EQ(positions(joined[0]), positions(whole));
}

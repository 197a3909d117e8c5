// Remeshes a large network on several cores with oneTBB. The library starts no threads, but calls on
// different containers can run at the same time. So the network is split into batches of components that
// share no node, and a task remeshes each batch. The result is the same for any number of threads. Its
// elements are those of a single call.

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <new>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include "batches.h"
#include "demo.h"

namespace {

struct options
{
    std::size_t elements = 1'000'000;
    std::size_t batch = 2000;
    int threads = tbb::this_task_arena::max_concurrency();
    int rounds = 3;
    remesh_request request = {0.06};
};

/// Makes islands on a grid, in turn a ring and a star of five crooked arms that meet.
class island_maker
{
public:
    explicit island_maker(std::size_t elements)
    {
        // A star has one node more than elements.
        if (!made_.coords.reserve(2, elements + elements / 60 + 100) ||
            !made_.connect.reserve(2, elements + 100))
            throw std::bad_alloc();
        auto const side =
            static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(elements) / 60.0)));
        for (std::size_t k = 0; made_.connect.cols() < elements; ++k) {
            std::size_t const row = k / side;
            place_ = {4.0 * static_cast<double>(k % side), 4.0 * static_cast<double>(row)};
            phase_ = 0.37 * static_cast<double>(k);
            k % 2 == 0 ? draw_ring() : draw_star();
        }
    }

    network_mesh const& made() const { return made_; }

private:
    unsigned add_node(double radius, double angle)
    {
        auto const node = static_cast<unsigned>(made_.coords.cols());
        if (!made_.coords.resize(2, node + 1)) throw std::bad_alloc();
        made_.coords(0, node) = place_[0] + radius * std::cos(angle);
        made_.coords(1, node) = place_[1] + radius * std::sin(angle);
        return node;
    }

    void add_element(unsigned a, unsigned b)
    {
        std::size_t const e = made_.connect.cols();
        if (!made_.connect.resize(2, e + 1)) throw std::bad_alloc();
        made_.connect(0, e) = a;
        made_.connect(1, e) = b;
    }

    void draw_ring()
    {
        constexpr unsigned count = 60;
        unsigned const first = add_node(1.2 + 0.2 * std::sin(phase_), 0.0);
        unsigned before = first;
        for (unsigned k = 1; k < count; ++k) {
            double const angle = 2.0 * std::numbers::pi * k / count;
            unsigned const next = add_node(1.2 + 0.2 * std::sin(5.0 * angle + phase_), angle);
            add_element(before, next);
            before = next;
        }
        add_element(before, first);
    }

    void draw_star()
    {
        unsigned const middle = add_node(0.0, 0.0);
        for (unsigned arm = 0; arm < 5; ++arm) {
            unsigned before = middle;
            for (unsigned k = 1; k <= 12; ++k) {
                double const angle = 0.4 * std::numbers::pi * arm + 0.3 * std::sin(0.8 * k + phase_);
                unsigned const next = add_node(0.12 * k, angle);
                add_element(before, next);
                before = next;
            }
        }
    }

    network_mesh made_;
    std::array<double, 2> place_ = {0.0, 0.0};
    double phase_ = 0.0;
};

template <class Run>
double seconds(Run run)
{
    auto const start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Splits, remeshes and joins the network. `for_each(n, body)` calls `body(i)` for all i below n.
template <class ForEach>
network_mesh remesh(network_mesh const& network, options const& chosen, ForEach for_each)
{
    network_batches batches(network, chosen.batch);
    for_each(batches.size(), [&](std::size_t k) { batches.remesh(k, chosen.request); });
    return batches.join(for_each);
}

void remesh_whole(network_mesh& mesh, remesh_request const& request)
{
    require_success(
        trelk::vornik1d::remesh_lines(mesh.coords, mesh.connect, request.size, options_of(request)),
        "remesh_lines");
}

bool are_equal(network_mesh const& a, network_mesh const& b)
{
    return a.coords == b.coords && a.connect == b.connect;
}

/// The elements by the positions of their ends, sorted.
std::vector<std::array<double, 4>> sorted_elements(network_mesh const& mesh)
{
    std::vector<std::array<double, 4>> result(mesh.connect.cols());
    for (std::size_t e = 0; e < result.size(); ++e) {
        double const* const a = mesh.coords.col(mesh.connect(0, e));
        double const* const b = mesh.coords.col(mesh.connect(1, e));
        result[e] = {a[0], a[1], b[0], b[1]};
    }
    std::ranges::sort(result);
    return result;
}

void require(bool holds, std::string const& what)
{
    if (!holds) throw std::runtime_error(what);
}

void run(options const& chosen)
{
    network_mesh const network = island_maker(chosen.elements).made();
    network_batches const batches(network, chosen.batch);
    std::printf("%zu elements, %zu components in %zu batches\n", network.connect.cols(), batches.components(),
        batches.size());

    auto const in_turn = [](std::size_t n, auto const& body) {
        for (std::size_t k = 0; k < n; ++k) body(k);
    };
    tbb::task_arena arena(chosen.threads);
    auto const side_by_side = [&arena](std::size_t n, auto const& body) {
        arena.execute([&] { tbb::parallel_for(std::size_t{0}, n, body); });
    };

    double by_one_call = std::numeric_limits<double>::infinity();
    double on_one = by_one_call;
    double on_all = by_one_call;
    for (int round = 0; round < chosen.rounds; ++round) {
        network_mesh whole;
        network_mesh serial;
        network_mesh parallel;
        if (!whole.coords.copy(network.coords) || !whole.connect.copy(network.connect))
            throw std::bad_alloc();
        by_one_call = std::min(by_one_call, seconds([&] { remesh_whole(whole, chosen.request); }));
        on_one = std::min(on_one, seconds([&] { serial = remesh(network, chosen, in_turn); }));
        on_all = std::min(on_all, seconds([&] { parallel = remesh(network, chosen, side_by_side); }));
        require(sorted_elements(serial) == sorted_elements(whole),
            "The elements differ from those of a single call.");
        require(are_equal(parallel, serial), "The mesh differs from the serial one.");
    }
    std::printf("Single call                  %8.3f s, best of %d\n", by_one_call, chosen.rounds);
    std::printf("Batches on one thread        %8.3f s\n", on_one);
    std::printf("Batches on %d threads         %8.3f s: the same mesh, %.2f times as fast as on one thread\n",
        chosen.threads, on_all, on_one / on_all);
}

void add_options(CLI::App& app, options& chosen)
{
    app.add_option("--elements", chosen.elements, "minimum number of elements in the network")
        ->check(CLI::Range(1, 100'000'000));
    app.add_option("--batch", chosen.batch, "minimum number of elements in a batch")
        ->check(CLI::PositiveNumber);
    app.add_option("--threads", chosen.threads, "number of threads")->check(CLI::PositiveNumber);
    app.add_option("--rounds", chosen.rounds, "number of measurements; the best one counts")
        ->check(CLI::PositiveNumber);
    app.add_option("--size", chosen.request.size, "target size")->check(CLI::PositiveNumber);
    app.add_option("--tolerance", chosen.request.deviation_tolerance, "deviation_tolerance of remesh_lines");
}

} // namespace

int main(int argc, char** argv)
{
    return run_demo("parallel", "Remeshes a large network on several cores.", argc, argv, add_options, run);
}

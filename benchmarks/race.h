#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

#include <benchmark/benchmark.h>

inline double median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Time that this thread has had of a core: what else runs on the machine does not count.
inline double thread_nanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e9 * static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec);
}

template <class Body>
double nanoseconds(Body const& body)
{
    double const start = thread_nanoseconds();
    body();
    benchmark::ClobberMemory();
    return thread_nanoseconds() - start;
}

/// Times the bare loop and the library in turn, so that both meet the same machine, and reports the medians.
/// `prepare` runs before the two, untimed.
template <class Bare, class Prepare, class Library>
void race(benchmark::State& state, std::size_t new_nodes, Bare bare, Prepare prepare, Library library)
{
    std::vector<double> bare_times;
    std::vector<double> library_times;
    for (auto _ : state) {
        bool const bare_first = bare_times.size() % 2 == 0;
        prepare();
        if (bare_first) bare_times.push_back(nanoseconds(bare));
        library_times.push_back(nanoseconds(library));
        if (!bare_first) bare_times.push_back(nanoseconds(bare));
        state.SetIterationTime(1e-9 * library_times.back());
    }

    double const bare_time = median(bare_times);
    double const library_time = median(library_times);
    state.counters["bare_ns_per_node"] = bare_time / static_cast<double>(new_nodes);
    state.counters["ns_per_node"] = library_time / static_cast<double>(new_nodes);
    state.counters["ratio"] = library_time / bare_time;
}

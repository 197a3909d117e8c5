#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <string>
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

inline bool all_agree = true;

/// The two sides of a race must give the same, or the one is no measure of the other.
inline void disagree(benchmark::State& state, char const* message)
{
    all_agree = false;
    state.SkipWithError(message);
}

/// What a race reports: nanoseconds per unit of work, of which a run does `count`.
struct measure
{
    std::string rival;
    std::string unit;
    std::size_t count;
};

/// Times the library and its rival in turn, so that both meet the same machine, and reports the medians.
/// `prepare` runs before the two, untimed.
template <class Rival, class Prepare, class Library>
void race(benchmark::State& state, measure const& m, Rival rival, Prepare prepare, Library library)
{
    std::vector<double> rival_times;
    std::vector<double> library_times;
    for (auto _ : state) {
        bool const rival_first = rival_times.size() % 2 == 0;
        prepare();
        if (rival_first) rival_times.push_back(nanoseconds(rival));
        library_times.push_back(nanoseconds(library));
        if (!rival_first) rival_times.push_back(nanoseconds(rival));
        state.SetIterationTime(1e-9 * library_times.back());
    }

    double const rival_time = median(rival_times);
    double const library_time = median(library_times);
    state.counters[m.rival + "_ns_per_" + m.unit] = rival_time / static_cast<double>(m.count);
    state.counters["ns_per_" + m.unit] = library_time / static_cast<double>(m.count);
    state.counters["ratio"] = library_time / rival_time;
}

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include <malloc.h>

#include <benchmark/benchmark.h>

// Memory is as a program has it that makes such calls in a loop: the default allocator, left to itself, and in each
// call outputs that are empty and work memory that is new. So each timed call of a side follows one of the same
// side, all of which has been freed: pages that the allocator has kept from that are warm, those that it has given
// back to the kernel are not. Its thresholds depend on all blocks freed before, so the figures hold for a process
// that runs one case; scripts/benchmark starts one for each. Under `--first_touch` all freed memory goes back to
// the kernel before each timed call, as for a program that makes one call.
//
// Inputs are made before the clock starts, in memory of their own. Outputs are destroyed after it has stopped, on
// both sides; work memory is freed within the call.

inline bool is_first_touch = false;

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

/// Times `run` on what `prepare` makes, which keeps the outputs until the clock has stopped.
template <class Prepare, class Run>
double fresh_nanoseconds(Prepare const& prepare, Run const& run)
{
    if (is_first_touch) {
        malloc_trim(0);
    } else {
        auto earlier = prepare();
        benchmark::DoNotOptimize(run(earlier));
    }

    auto call = prepare();
    double const start = thread_nanoseconds();
    auto const result = run(call);
    benchmark::ClobberMemory();
    double const end = thread_nanoseconds();
    benchmark::DoNotOptimize(result);
    return end - start;
}

inline bool all_agree = true;

/// A result that is wrong is worth no measurement; the program fails.
inline void disagree(benchmark::State& state, char const* message)
{
    all_agree = false;
    state.SkipWithError(message);
}

inline std::string to_label(std::uint64_t hash)
{
    std::string label;
    for (int shift = 60; shift >= 0; shift -= 4) label += "0123456789abcdef"[hash >> shift & 15];
    return label;
}

/// Nanoseconds are reported per unit of work, of which a call does `count`.
struct work
{
    std::string unit;
    std::size_t count;
};

inline void report(benchmark::State& state, work const& w, std::vector<double> const& times)
{
    state.counters["ns_per_" + w.unit] = median(times) / static_cast<double>(w.count);
}

/// Times calls of the library.
template <class Prepare, class Run>
void time_calls(benchmark::State& state, work const& w, Prepare const& prepare, Run const& run)
{
    std::vector<double> times;
    for (auto _ : state) {
        times.push_back(fresh_nanoseconds(prepare, run));
        state.SetIterationTime(1e-9 * times.back());
    }
    report(state, w, times);
}

/// Times calls of the library and `rival` in turn, so that both meet the same machine.
template <class Prepare, class Run, class Rival>
void race(benchmark::State& state, work const& w, Prepare const& prepare, Run const& run,
    std::string const& rival_name, Rival const& rival)
{
    std::vector<double> times;
    std::vector<double> rival_times;
    for (auto _ : state) {
        bool const rival_first = times.size() % 2 == 0;
        if (rival_first) rival_times.push_back(rival());
        times.push_back(fresh_nanoseconds(prepare, run));
        if (!rival_first) rival_times.push_back(rival());
        state.SetIterationTime(1e-9 * times.back());
    }
    report(state, w, times);
    double const rival_time = median(rival_times);
    state.counters[rival_name + "_ns"] = rival_time / static_cast<double>(w.count);
    state.counters["over_" + rival_name] = median(times) / rival_time;
}

/// How often a case is timed that takes about so many nanoseconds: for half a second, but at least 5 times, or
/// once if it takes seconds.
inline std::int64_t rounds(double nanoseconds)
{
    std::int64_t const least = nanoseconds < 2e9 ? 5 : 1;
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(5e8 / nanoseconds), least, 1000);
}

template <class... Case>
void enlist(std::string const& name, double nanoseconds, Case&&... case_and_arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), std::forward<Case>(case_and_arguments)...)
        ->Iterations(rounds(nanoseconds))
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

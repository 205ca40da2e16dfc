// Two ways of doing the same work, timed in turns within one run, so that whatever else the machine
// does falls on both.
//
// Reported are the medians: milliseconds of processor time of each, and of the ratios of the pairs.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <vector>

namespace paired {

inline double thread_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

inline double median(std::vector<double>& values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

template <typename Work> double time_of(Work work, int repetitions) {
    const double start = thread_seconds();
    for (int i = 0; i < repetitions; ++i) {
        work();
        benchmark::ClobberMemory();
    }
    return (thread_seconds() - start) / repetitions;
}

// repetitions: how often each piece of work is done in one timing, for work that takes
// microseconds.
template <typename Ours, typename Theirs>
void compare(benchmark::State& state, Ours ours, Theirs theirs, int repetitions = 1) {
    std::vector<double> our_times;
    std::vector<double> their_times;
    std::vector<double> ratios;
    ours();
    theirs();
    bool ours_first = true;
    for (auto turn : state) {
        (void)turn;
        double mine = 0;
        double other = 0;
        if (ours_first) {
            mine = time_of(ours, repetitions);
            other = time_of(theirs, repetitions);
        } else {
            other = time_of(theirs, repetitions);
            mine = time_of(ours, repetitions);
        }
        ours_first = !ours_first;
        our_times.push_back(mine * 1e3);
        their_times.push_back(other * 1e3);
        ratios.push_back(mine / other);
    }
    state.counters["ours_ms"] = median(our_times);
    state.counters["theirs_ms"] = median(their_times);
    state.counters["ratio"] = median(ratios);
}

} // namespace paired

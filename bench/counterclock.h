// counterclock.h - how fast the time-stamp counter counts.

#ifndef RAKOVA_BENCH_COUNTERCLOCK_H
#define RAKOVA_BENCH_COUNTERCLOCK_H

#include <chrono>

#include "rkticker.h"

// The counter and the steady clock at one moment.
struct CounterClockPair {
    unsigned long long count;
    std::chrono::steady_clock::time_point time;
};

// The clock is read between two reads of the counter; of many tries the shortest bracket counts, so that an
// interrupt in one of them does no harm.
inline CounterClockPair readCounterAndClock() {
    CounterClockPair best{};
    unsigned long long shortest = ~0ull;
    for (int i = 0; i < 100; ++i) {
        unsigned long long before = kel_get_cpu_counter();
        auto time = std::chrono::steady_clock::now();
        unsigned long long bracket = kel_get_cpu_counter() - before;
        if (bracket >= shortest) continue;
        shortest = bracket;
        best = {before + bracket / 2, time};
    }
    return best;
}

// Counts a second, right to about one in a million. Takes a quarter of a second at the first call.
inline double counterFrequency() {
    static const double frequency = [] {
        CounterClockPair begin = readCounterAndClock();
        while (std::chrono::steady_clock::now() - begin.time < std::chrono::milliseconds(250)) {
        }
        CounterClockPair end = readCounterAndClock();
        std::chrono::duration<double> seconds = end.time - begin.time;
        return static_cast<double>(end.count - begin.count) / seconds.count();
    }();
    return frequency;
}

#endif

// start_bench.cpp - from the start of a program of 400 tests to its first measurement.

#include <benchmark/benchmark.h>

#include <time.h>

#include <fstream>

#include "child.h"
#include "workdir.h"

static double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The program notes the time of its first measurement on the same clock.
static void startToFirstMeasurement(benchmark::State &state) {
    WorkDir dir;
    for (auto _ : state) {
        double begin = now();
        bool ok = runChild({START_PROGRAM, dir.path()}, dir.path("console.txt")).ok;
        double first = 0.0;
        std::ifstream(dir.path("first")) >> first;
        if (!ok || first < begin) {
            state.SkipWithError("the program measured nothing");
            break;
        }
        state.SetIterationTime(first - begin);
    }
}

BENCHMARK(startToFirstMeasurement)->Unit(benchmark::kMillisecond)->UseManualTime();

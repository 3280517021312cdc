// memory_bench.cpp - peak memory of a run of the block difference measures.

#include <benchmark/benchmark.h>

#include "child.h"
#include "workdir.h"

// What this process had at most is the least that a child is charged with: a spawned child begins in the
// memory of its parent.
static double ownPeak() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss);
}

static void peakMemory(benchmark::State &state) {
    WorkDir dir;
    double const mebi = 1024.0; // ru_maxrss is in KiB
    double peak = 0.0;
    for (auto _ : state) {
        ChildOutcome run = runChild(
            {RAKOVA_PROGRAM, "-B", "-LPERF", "-tCSAD", "-trk_SADn", "-tCSUMD", "-r", "-l" + dir.path()},
            dir.path("console.txt"));
        if (!run.ok) {
            state.SkipWithError("the run failed");
            break;
        }
        peak = static_cast<double>(run.usage.ru_maxrss) / mebi;
    }
    state.counters["peak_MiB"] = peak;
    state.counters["launcher_MiB"] = ownPeak() / mebi;
}

BENCHMARK(peakMemory)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

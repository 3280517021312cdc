// clocks_bench.cpp - clocks a call by the manual loop, beside the time of Google Benchmark for the same
// calls.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <climits>

#include "counterclock.h"
#include "kernels.h"
#include "kmmeasure.h"

template <int (*Kernel)()>
static rkResult kernelLoop(int count, long long *clocks) {
    return kmTimLoop<Kernel, kmNoReset>(count, clocks, "kernel");
}

// What a test of the function would put into its row.
template <int (*Kernel)()>
static double manualClocks(int calls) {
    rkTool tool;
    tool.setMethodLoop(calls);
    tool.timing(kernelLoop<Kernel>, nullptr, nullptr, nullptr);
    return tool.m_funcClocks;
}

// Both sides make the same number of calls, one right behind the other. What Google Benchmark measured
// becomes clocks by its own rate counters, so no figure takes the way over a printed text.
template <int (*Kernel)()>
static void clocksACall(benchmark::State &state) {
    using benchmark::Counter;
    double frequency = counterFrequency();
    for (auto _ : state) Kernel();
    double manual = manualClocks<Kernel>(static_cast<int>(std::min<long long>(state.iterations(), INT_MAX)));
    state.counters["manual_clocks"] = manual;
    state.counters["benchmark_clocks"] =
        Counter(1.0 / frequency, Counter::kIsIterationInvariantRate | Counter::kInvert);
    state.counters["ratio"] = Counter(manual / frequency, Counter::kIsIterationInvariantRate);
}

BENCHMARK_TEMPLATE(clocksACall, emptyKernel)->UseRealTime();
BENCHMARK_TEMPLATE(clocksACall, kernel20)->UseRealTime();
BENCHMARK_TEMPLATE(clocksACall, kernel200)->UseRealTime();
BENCHMARK_TEMPLATE(clocksACall, kernel2000)->UseRealTime();

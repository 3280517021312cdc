// suites_bench.cpp - what a run of each suite takes: time, rows and peak memory.

#include <benchmark/benchmark.h>

#include <time.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include "child.h"
#include "workdir.h"

using Arguments = std::vector<std::string>;
// The keys that select the tests of a suite, by the name of its source file.
using Suites = std::map<std::string, std::set<std::string>>;

// -e lists number, function, test and source of each test between tabs.
static Suites suitesOf(std::string const &list) {
    Suites suites;
    std::ifstream file(list);
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        std::string number, function, test, source;
        fields >> number >> function >> test >> source;
        bool isSuite = source.size() > 4 && source.compare(source.size() - 4, 4, ".cpp") == 0;
        if (isSuite) suites[source].insert({"-f=" + function, "-t=" + test});
    }
    return suites;
}

static int rowsIn(std::string const &table) {
    int rows = 0;
    std::ifstream file(table);
    for (std::string line; std::getline(file, line);) rows += line.compare(0, 3, "kel") == 0;
    return rows;
}

static double now() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The processor's frequency is measured from one full second to the next. Runs that start at a full second
// all spend the same time on it.
static double waitForFullSecond() {
    double begin = now(), second = std::ceil(begin);
    std::this_thread::sleep_for(std::chrono::duration<double>(second - begin));
    return now();
}

static void runSuite(benchmark::State &state, std::set<std::string> const &selection) {
    WorkDir dir;
    Arguments args = {RAKOVA_PROGRAM, "-B", "-LPERF", "-r", "-l" + dir.path()};
    args.insert(args.end(), selection.begin(), selection.end());
    ChildOutcome run{};
    for (auto _ : state) {
        double begin = waitForFullSecond();
        run = runChild(args, dir.path("console.txt"));
        state.SetIterationTime(now() - begin);
        if (!run.ok) {
            state.SkipWithError("the run failed");
            return;
        }
    }
    state.counters["rows"] = rowsIn(dir.path("rakova.csv"));
    state.counters["peak_MiB"] = static_cast<double>(run.usage.ru_maxrss) / 1024.0;
}

// A run without a test comes first: its time, most of it that of the frequency's measurement, is in all
// others.
int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    WorkDir dir;
    runChild({RAKOVA_PROGRAM, "-e"}, dir.path("tests"));
    Suites suites = suitesOf(dir.path("tests"));
    if (suites.empty()) return 1;
    suites[""] = {"-t=none"};
    for (auto const &[source, selection] : suites) {
        benchmark::RegisterBenchmark(source.empty() ? "none" : source.c_str(),
                                     [keys = selection](benchmark::State &state) { runSuite(state, keys); })
            ->Unit(benchmark::kSecond)
            ->UseManualTime()
            ->Iterations(1);
    }
    return benchmark::RunSpecifiedBenchmarks() == 0;
}

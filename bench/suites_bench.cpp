// suites_bench.cpp - what a run of each class of tests takes: time, rows and peak memory.

#include <benchmark/benchmark.h>

#include <time.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

#include "child.h"
#include "workdir.h"

using Arguments = std::vector<std::string>;

// -e lists number, function, test and source of each test between tabs.
static std::set<std::string> classesIn(std::string const &list) {
    std::set<std::string> classes;
    std::ifstream file(list);
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        std::string number, function, test, source;
        fields >> number >> function >> test >> source;
        bool isSuite = source.size() > 4 && source.compare(source.size() - 4, 4, ".cpp") == 0;
        if (isSuite) classes.insert(test);
    }
    return classes;
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

// The processor's frequency is measured from one full second to the next. Runs that start at the same place
// between two of them all spend the same time on it.
static double waitForStart() {
    double begin = now(), start = std::ceil(begin) + 0.1;
    std::this_thread::sleep_for(std::chrono::duration<double>(start - begin));
    return now();
}

static void runClass(benchmark::State &state, std::string const &name) {
    WorkDir dir;
    Arguments args = {RAKOVA_PROGRAM, "-B", "-LPERF", "-r", "-l" + dir.path(), "-t=" + name};
    ChildOutcome run{};
    for (auto _ : state) {
        double begin = waitForStart();
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
    std::set<std::string> classes = classesIn(dir.path("tests"));
    if (classes.empty()) return 1;
    classes.insert("(none)");
    for (std::string const &name : classes) {
        benchmark::RegisterBenchmark(name.c_str(), [name](benchmark::State &state) { runClass(state, name); })
            ->Unit(benchmark::kSecond)
            ->UseManualTime()
            ->Iterations(1);
    }
    return benchmark::RunSpecifiedBenchmarks() == 0;
}

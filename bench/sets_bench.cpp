// sets_bench.cpp - what a parameter set costs beside its measured calls.

#include <benchmark/benchmark.h>

#include "kernels.h"
#include "km.h"
#include "kmmeasure.h"
#include "rk.h"
#include "workdir.h"

static const int setsOfARow = 100; // values of the inner parameter

static rkStepIterator<int> Outer, Inner;
static int s_outerValues;

static rkResult oneCall(int count, long long *clocks) {
    return kmTimLoop<emptyKernel, kmNoReset>(count, clocks, "emptyKernel");
}

// Makes no data: what is left is the harness.
class TrivialTest : public kmTest {
public:
    TrivialTest() : kmTest(oneCall, nullptr, "keliTrivial_8u32s_C1R", __FILE__, "TrivialTest//KM_REG") {}

    bool canStart() override {
        Outer.init("outer", 1, s_outerValues, 1, StepPlus, "number of the row");
        Inner.init("inner", 1, setsOfARow, 1, StepPlus, "number in the row");
        m_parms.push_back(&Outer);
        m_parms.push_back(&Inner);
        m_tool.setMethodLoop(1);
        return true;
    }
};

// The console and the table of results of a session, in files.
class Output {
public:
    explicit Output(WorkDir const &dir) {
        rkCpuTicker::m_freqMHz = 1000; // no measurement of it in the middle of ours
        g_ostrm.setOutLevel(MsgError | MsgWarning | MsgResult);
        m_good = g_ostrm.addStream(dir.path("console.txt").c_str(), false) &&
                 g_cstrm.addStream(dir.path("table.csv").c_str(), false);
        rkSession().putTableTitle();
    }
    ~Output() {
        g_ostrm.close();
        g_cstrm.close();
    }
    bool good() const { return m_good; }

private:
    bool m_good;
};

static void costOfASet(benchmark::State &state) {
    using benchmark::Counter;
    WorkDir dir;
    Output output(dir);
    if (!output.good()) {
        state.SkipWithError("no files");
        return;
    }
    TrivialTest test;
    s_outerValues = static_cast<int>(state.range(0)) / setsOfARow;
    for (auto _ : state) {
        if (test.run() != rkResSuccess) {
            state.SkipWithError("the test failed");
            break;
        }
    }
    double sets = static_cast<double>(state.range(0));
    state.counters["us_per_set"] =
        Counter(sets * 1e-6, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

// The greater and the smaller number show whether the cost goes with the number of sets.
BENCHMARK(costOfASet)->Arg(1000)->Arg(10000)->Arg(40000)->Unit(benchmark::kMillisecond)->UseRealTime();

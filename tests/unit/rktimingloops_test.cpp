// rktimingloops_test.cpp - single measuring runs and the timed loops.

#include <gtest/gtest.h>

#include <string>

#include "capture.h"
#include "rkctrl.h"
#include "rkmemory.h"
#include "rkobject.h"
#include "rkpriority.h"
#include "rkticker.h"
#include "rktool.h"
#include "rktrace.h"
#include "scriptedclocks.h"

using std::string;
using Counts = std::vector<int>;

namespace {

// What the scripted call and its preparation have seen, in order: i init, c call, r reset of the data.
string s_course;
std::vector<int> s_statuses; // of the calls in order; 0 behind the end
size_t s_numCalls;
long long s_leastClocks; // a call lasts at least so long

int call() {
    s_course += 'c';
    unsigned long long begin = kel_get_cpu_counter();
    while (static_cast<long long>(kel_get_cpu_counter() - begin) < s_leastClocks) {
    }
    size_t i = s_numCalls++;
    return i < s_statuses.size() ? s_statuses[i] : 0;
}

int init() {
    s_course += 'i';
    return 0;
}

// Test data whose reset can be seen.
struct Data : rkObject {
    Data() : m_block(rkMalloc(16, 0, 0, this)) {}
    ~Data() { rkFree(m_block); }
    bool setReservedCopy() override {
        s_course += 'r';
        return true;
    }
    void *m_block;
};

rkResult statusAsResult(int status) {
    return status < 0 ? rkResLibError : status > 0 ? rkResLibWarning : rkResSuccess;
}

class RkTimingLoops : public testing::Test {
protected:
    RkTimingLoops() {
        s_course = "";
        s_statuses.clear();
        s_numCalls = 0;
        s_leastClocks = 0;
        rkTool::m_pCheckStatus = nullptr;
        tool.m_funcCall = call;
        g_ctrl87.init();
        g_ssx.init();
    }
    ~RkTimingLoops() override {
        rkTool::m_pCheckStatus = nullptr;
        rkTool::m_priority = 0;
    }

    rkTool tool;
    long long clocks = -7;
    double perCall = -7.0;
};

// What surrounds the function under test.
string s_step;
bool s_raised;
rkResult observe(int count, long long *clocks) {
    s_step = g_trace.getCurName().c_str();
    s_raised = _bSavedPrio;
    *clocks = 10LL * count;
    return rkResSuccess;
}
rkResult observeStat(int *count, long long *clocks) {
    return observe(*count, clocks);
}

rkResult shorterStat(int *count, long long *clocks) {
    *count = -1;
    *clocks = 500;
    return rkResLibError;
}

} // namespace

// ---- loop of calls ------------------------------------------------------------

TEST_F(RkTimingLoops, LoopCallsOnceMoreToWarmUp) {
    EXPECT_EQ(tool.timCall_Loop(3, &clocks, false), rkResSuccess);
    EXPECT_EQ(s_course, "cccc");
    EXPECT_GE(clocks, 0);
}

TEST_F(RkTimingLoops, LoopOfNoneOnlyWarmsUp) {
    EXPECT_EQ(tool.timCall_Loop(0, &clocks, false), rkResSuccess);
    EXPECT_EQ(s_course, "c");
}

TEST_F(RkTimingLoops, LoopPreparesEveryCall) {
    tool.m_funcInit = init;
    tool.timCall_Loop(2, &clocks, false);
    EXPECT_EQ(s_course, "icicic");
}

TEST_F(RkTimingLoops, LoopResetsTheDataOfEveryTimedCall) {
    Data data;
    tool.timCall_Loop(2, &clocks, true);
    EXPECT_EQ(s_course, "crcrc") << "not of the one that warms up";
}

TEST_F(RkTimingLoops, LoopResetsAfterThePreparation) {
    Data data;
    tool.m_funcInit = init;
    tool.timCall_Loop(2, &clocks, true);
    EXPECT_EQ(s_course, "icircirc");
}

TEST_F(RkTimingLoops, LoopCountsTheClocksOfTheTimedCalls) {
    s_leastClocks = 5000;
    tool.timCall_Loop(4, &clocks, false);
    EXPECT_GE(clocks, 4 * 5000);
}

TEST_F(RkTimingLoops, LoopEndsAtANegativeStatus) {
    s_statuses = {0, 0, -5};
    EXPECT_EQ(tool.timCall_Loop(9, &clocks, false), rkResSuccess) << "nobody judges a status";
    EXPECT_EQ(s_course, "ccc");
}

TEST_F(RkTimingLoops, LoopGoesOnAtAPositiveStatusAndKeepsIt) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {0, 2, 0};
    EXPECT_EQ(tool.timCall_Loop(3, &clocks, false), rkResLibWarning);
    EXPECT_EQ(s_course, "cccc");
}

TEST_F(RkTimingLoops, LoopKeepsTheStatusOfTheWarmingCall) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {3};
    EXPECT_EQ(tool.timCall_Loop(3, &clocks, false), rkResLibWarning);
}

TEST_F(RkTimingLoops, LoopLetsANegativeStatusBeJudged) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {2, 0, -5};
    EXPECT_EQ(tool.timCall_Loop(9, &clocks, false), rkResLibError);
}

TEST_F(RkTimingLoops, LoopIsNotBegunIfTheWarmingCallFails) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {-5};
    EXPECT_EQ(tool.timCall_Loop(9, &clocks, false), rkResLibError);
    EXPECT_EQ(s_course, "c");
    EXPECT_EQ(clocks, -7);
}

TEST_F(RkTimingLoops, LoopGoesOnAfterAFailedWarmingCallThatNobodyJudges) {
    s_statuses = {-5};
    EXPECT_EQ(tool.timCall_Loop(2, &clocks, false), rkResSuccess);
    EXPECT_EQ(s_course, "ccc");
}

TEST_F(RkTimingLoops, LoopWithoutACallIsAnInternalError) {
    CaptureLog log(1);
    tool.m_funcCall = nullptr;
    EXPECT_EQ(tool.timCall_Loop(2, &clocks, false), rkResError);
    EXPECT_EQ(log.text(), "RK internal error: file ../rakova/api/src/rktool, line 758\n");
}

// ---- calls timed by themselves ------------------------------------------------

TEST_F(RkTimingLoops, StatisticMakesASecondCallAfterEachTimedOne) {
    int calls = 3;
    clocks = 0;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResSuccess);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(s_course,
              "c"
              "cc"
              "cc"
              "cc");
}

TEST_F(RkTimingLoops, StatisticPreparesAndResetsForTheTimedCallAlone) {
    Data data;
    int calls = 2;
    clocks = 0;
    tool.m_funcInit = init;
    tool.timCall_Stat(&calls, &clocks, true);
    EXPECT_EQ(s_course,
              "ic"
              "ircc"
              "ircc");
}

TEST_F(RkTimingLoops, StatisticStopsAtItsLeastCallsIfTheClocksAreReached) {
    s_leastClocks = 5000;
    int calls = 12;
    clocks = 10000;
    tool.timCall_Stat(&calls, &clocks, false);
    EXPECT_EQ(calls, 12);
    EXPECT_GE(clocks, 12 * 5000);
}

TEST_F(RkTimingLoops, StatisticGoesOnUntilTheClocksAreReached) {
    s_leastClocks = 100;
    int calls = 0;
    clocks = 10000;
    tool.timCall_Stat(&calls, &clocks, false);
    EXPECT_GE(calls, 1);
    EXPECT_LE(calls, 100) << "each call has 100 clocks at least";
    EXPECT_GE(clocks, 10000);
}

TEST_F(RkTimingLoops, StatisticOfNoneMakesNone) {
    int calls = 0;
    clocks = 0;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResSuccess);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(clocks, 0);
    EXPECT_EQ(s_course, "c");
}

TEST_F(RkTimingLoops, StatisticEndsAtANegativeStatusOfTheSecondCall) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {0, 0, 0, 0, -5};
    int calls = 9;
    clocks = 0;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResLibError);
    EXPECT_EQ(calls, 1) << "the second one was not finished";
    EXPECT_EQ(s_course, "ccccc");
}

TEST_F(RkTimingLoops, StatisticKeepsAPositiveStatusOfTheSecondCall) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {0, -5, 4};
    int calls = 1;
    clocks = 0;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResLibWarning)
        << "it replaces that of the timed call";
}

TEST_F(RkTimingLoops, StatisticKeepsTheStatusOfTheTimedCall) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {3, 0, 0};
    int calls = 1;
    clocks = 0;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResSuccess) << "the warming call's is forgotten";
    s_numCalls = 0;
    s_statuses = {0, 4, 0};
    calls = 1;
    clocks = 0;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResLibWarning);
}

TEST_F(RkTimingLoops, StatisticIsNotBegunIfTheWarmingCallFails) {
    rkTool::m_pCheckStatus = statusAsResult;
    s_statuses = {-5};
    int calls = 9;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResLibError);
    EXPECT_EQ(s_course, "c");
    EXPECT_EQ(calls, 9);
    EXPECT_EQ(clocks, -7);
}

TEST_F(RkTimingLoops, StatisticWithoutACallIsAnInternalError) {
    CaptureLog log(1);
    tool.m_funcCall = nullptr;
    int calls = 1;
    EXPECT_EQ(tool.timCall_Stat(&calls, &clocks, false), rkResError);
    EXPECT_EQ(log.text(), "RK internal error: file ../rakova/api/src/rktool, line 795\n");
}

// ---- runs ---------------------------------------------------------------------

TEST_F(RkTimingLoops, RunGivesTheClocksOfACall) {
    ScriptedClocks script({{12.5}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(perCall, 12.5);
    EXPECT_EQ(tool.m_numClocks, 100);
    EXPECT_EQ(tool.m_result, rkResSuccess);
    EXPECT_EQ(s_course, "") << "the test's own loop goes before its call";
}

TEST_F(RkTimingLoops, RunOfZeroClocksIsTriedOnceMore) {
    ScriptedClocks script({{0.0}, {3.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(script.m_counts, (Counts{8, 8}));
    EXPECT_EQ(perCall, 3.0);
}

TEST_F(RkTimingLoops, RunOfZeroClocksIsNotTriedAThirdTime) {
    ScriptedClocks script({{0.0}, {0.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(perCall, 0.0);
}

TEST_F(RkTimingLoops, RunThatFailsIsNotTriedAgain) {
    ScriptedClocks script({{0.0, rkResLibError}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(tool.m_result, rkResLibError);
    EXPECT_EQ(perCall, 0.0);
}

TEST_F(RkTimingLoops, RunThroughTheStatisticPathIsForUsedCallsUnlessALoopIsForced) {
    ScriptedClocks script({{2.0}});
    tool.m_funcStat = ScriptedClocks::stat;
    tool.m_useCalls = true;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(script.m_counts, (Counts{8}));
    EXPECT_EQ(s_course, "");
    tool.runTimFunc(8, &perCall, true);
    EXPECT_EQ(s_course.substr(0, 9), "ccccccccc") << "the loop of the call, warmed up";
}

TEST_F(RkTimingLoops, RunOfACallThroughTheStatisticPathMakesSecondCalls) {
    tool.m_useCalls = true;
    s_leastClocks = 10;
    tool.runTimFunc(3, &perCall, false);
    EXPECT_EQ(s_course, "ccccccc");
    EXPECT_GE(perCall, 10.0);
}

TEST_F(RkTimingLoops, RunThatEndsAtItsFirstCallHasNoClocks) {
    tool.m_funcStat = shorterStat;
    tool.m_useCalls = true;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(perCall, 0.0);
    EXPECT_EQ(tool.m_result, rkResLibError);
}

TEST_F(RkTimingLoops, RunOfNoLoopsHasNoClocks) {
    tool.m_funcLoop = observe;
    tool.runTimFunc(0, &perCall, false);
    EXPECT_EQ(perCall, 0.0);
}

TEST_F(RkTimingLoops, RunWithoutAFunctionIsAnInternalError) {
    CaptureLog log(1);
    tool.m_funcCall = nullptr;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(tool.m_result, rkResError);
    EXPECT_EQ(log.text(), "RK internal error: file ../rakova/api/src/rktool, line 248\n");
}

TEST_F(RkTimingLoops, RunOfCallsWithoutAFunctionIsAnInternalErrorOfItsOwn) {
    CaptureLog log(1);
    tool.m_funcCall = nullptr;
    tool.m_useCalls = true;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(tool.m_result, rkResError);
    EXPECT_EQ(log.text(), "RK internal error: file ../rakova/api/src/rktool, line 257\n");
}

// ---- surroundings -------------------------------------------------------------

// What holds of the run that was observed, and behind it.
static void expectGuarded() {
    EXPECT_EQ(s_step, "kelFunctionCalls");
    EXPECT_TRUE(s_raised);
    EXPECT_FALSE(_bSavedPrio);
    EXPECT_NE(g_ctrl87.getCW(), 0u);
    EXPECT_NE(g_ssx.get(), 0u);
    EXPECT_TRUE(g_trace.empty());
}

TEST_F(RkTimingLoops, RunIsTracedGuardedAndRaised) {
    rkTool::m_priority = 4; // saves the priority and changes nothing
    tool.m_funcLoop = observe;
    tool.runTimFunc(8, &perCall, false);
    expectGuarded();
}

TEST_F(RkTimingLoops, StatisticRunIsTracedGuardedAndRaised) {
    rkTool::m_priority = 4;
    tool.m_funcStat = observeStat;
    int calls = 8;
    tool.runTimFuncStat(0, &calls, &perCall);
    EXPECT_EQ(perCall, 10.0);
    expectGuarded();
}

TEST_F(RkTimingLoops, GuardsClearTheX87FlagsAndKeepTheSumOfAllRuns) {
    ScriptedClocks script({{1.0, rkResSuccess, true}, {1.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.runTimFunc(8, &perCall, false);
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(g_ctrl87.m_base->getSW() & 63u, 0u) << "the last run was clean";
    EXPECT_TRUE(g_ctrl87.badStatus());
}

TEST_F(RkTimingLoops, RunIsPreparedOnceIfABadStatusIsToBeAvoided) {
    tool.m_funcLoop = observe;
    tool.m_funcInit = init;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(s_course, "");
    tool.m_avoidBad = true;
    tool.runTimFunc(8, &perCall, false);
    EXPECT_EQ(s_course, "i");
    EXPECT_NE(string(g_trace.m_traceLog.c_str()).find("trace into   initFunc call\n"), string::npos);
}

// ---- with the data's set and use ----------------------------------------------

TEST_F(RkTimingLoops, RunWithDataResetsAndHasNeitherGuardNorPriority) {
    Data data;
    rkTool::m_priority = 4;
    _bSavedPrio = true; // any set or reset of the priority would clear or keep it
    tool.m_useData = true;
    s_leastClocks = 10;
    tool.runTimFunc(2, &perCall, false);
    EXPECT_EQ(s_course, "crcrc");
    EXPECT_GE(perCall, 10.0);
    EXPECT_EQ(g_ctrl87.getCW(), 0u);
    EXPECT_EQ(g_ssx.get(), 0u);
    EXPECT_TRUE(_bSavedPrio);
    _bSavedPrio = false;
}

TEST_F(RkTimingLoops, RunWithDataThroughTheStatisticPathMakesJustSoManyCalls) {
    Data data;
    tool.m_useData = true;
    tool.m_useCalls = true;
    s_leastClocks = 10;
    tool.runTimFunc(2, &perCall, false);
    EXPECT_EQ(s_course, "crccrcc");
}

TEST_F(RkTimingLoops, RunWithDataNeedsACall) {
    tool.m_useData = true;
    tool.m_funcCall = nullptr;
    tool.m_funcLoop = observe;
    tool.m_result = rkResLibError;
    tool.m_numClocks = 99;
    tool.runTimFunc(2, &perCall, false);
    EXPECT_EQ(tool.m_result, rkResNotRun);
    EXPECT_EQ(tool.m_numClocks, 0);
    EXPECT_EQ(perCall, -7.0);
}

TEST_F(RkTimingLoops, StatisticRunWithDataNeedsACall) {
    tool.m_useData = true;
    tool.m_funcCall = nullptr;
    tool.m_funcStat = observeStat;
    tool.m_result = rkResLibError;
    int calls = 2;
    tool.runTimFuncStat(0, &calls, &perCall);
    EXPECT_EQ(tool.m_result, rkResNotRun);
    EXPECT_EQ(perCall, -7.0);
    EXPECT_EQ(calls, 2);
}

TEST_F(RkTimingLoops, StatisticRunWithDataResetsAndHasNoGuard) {
    Data data;
    tool.m_useData = true;
    tool.m_funcStat = observeStat;
    int calls = 2;
    s_step = "";
    tool.runTimFuncStat(0, &calls, &perCall);
    EXPECT_EQ(s_course, "crccrcc");
    EXPECT_EQ(s_step, "") << "the test's own routine does not reset data";
    EXPECT_EQ(g_ctrl87.getCW(), 0u);
}

TEST_F(RkTimingLoops, StatisticRunOfNoCallsHasNoClocks) {
    int calls = 0;
    tool.runTimFuncStat(0, &calls, &perCall);
    EXPECT_EQ(perCall, 0.0);
    EXPECT_EQ(tool.m_result, rkResSuccess);
}

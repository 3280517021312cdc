// rktool_test.cpp - settings, texts and entries of the timing engine.

#include <gtest/gtest.h>

#include <limits.h>

#include <string>

#include "capture.h"
#include "rktool.h"
#include "rktrace.h"
#include "scriptedclocks.h"

using std::string;
using Counts = std::vector<int>;

namespace {

string accuracyStr(double a) {
    return rkTool::getAccuracyStr(a).c_str();
}

string clockStr(long long n) {
    return rkTool::clockStr(n).c_str();
}

int s_calls;
int countCall() {
    ++s_calls;
    return 0;
}
int noInit() {
    return 0;
}

bool wasTraced(char const *step) {
    return string(g_trace.m_traceLog.c_str()).find(string("trace into   ") + step + "\n") != string::npos;
}

} // namespace

// ---- settings -----------------------------------------------------------------

TEST(RkTool, StartsWithTheSessionsDefaults) {
    rkTool tool;
    EXPECT_EQ(tool.m_result, rkResNotRun);
    EXPECT_EQ(tool.m_funcClocks, 0.0);
    EXPECT_EQ(tool.m_loops, 0);
    EXPECT_EQ(tool.m_accuracy, 0.05);
    EXPECT_EQ(tool.m_method, rkTool::Auto);
    EXPECT_EQ(tool.m_numLoops, 10);
    EXPECT_EQ(tool.m_firstLoops, 1);
    EXPECT_EQ(tool.m_maxLoops, 2048);
    EXPECT_FALSE(tool.m_useCalls);
    EXPECT_FALSE(tool.m_useData);
    EXPECT_EQ(tool.m_minClocks, 100);
    EXPECT_EQ(tool.m_minCalls, 12);
    EXPECT_EQ(tool.m_maxClocks, 10000);
    EXPECT_FALSE(tool.m_avoidBad);
    EXPECT_FALSE(tool.m_avoidBadNow);
    EXPECT_STREQ(tool.m_resultText.c_str(), "");
    EXPECT_STREQ(tool.m_comment.c_str(), "");
    EXPECT_EQ(tool.m_numClocks, 0);
    EXPECT_EQ(tool.m_actualAccuracy, 1.0);
    EXPECT_EQ(tool.m_autoFirstLoops, 0);
    EXPECT_EQ(tool.m_autoMaxLoops, 0);
    EXPECT_NE(tool.m_startTime, 0);
    EXPECT_EQ(tool.m_startTime, tool.m_stopTime);
    EXPECT_EQ(tool.m_funcLoop, nullptr);
    EXPECT_EQ(tool.m_funcStat, nullptr);
    EXPECT_EQ(tool.m_funcCall, nullptr);
    EXPECT_EQ(tool.m_funcInit, nullptr);
    EXPECT_EQ(rkTool::m_pCheckStatus, nullptr);
    EXPECT_EQ(rkTool::m_priority, 0);
}

TEST(RkTool, AutoParametersDifferFromIterativeDefaults) {
    rkTool tool;
    int first = -1, max = -1;
    long long clocks = -1;
    tool.getAutoParameters(first, max, clocks);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(max, 2048);
    EXPECT_EQ(clocks, 10);
}

TEST(RkTool, LoopCountIsAtLeastOne) {
    rkTool tool;
    int n = -7;
    tool.setMethodLoop(0);
    EXPECT_TRUE(tool.getMethodLoop(n));
    EXPECT_EQ(n, 1);
    tool.setMethodLoop(1024);
    EXPECT_TRUE(tool.getMethodLoop(n));
    EXPECT_EQ(n, 1024);
}

TEST(RkTool, StatisticSettingsAreNotChecked) {
    rkTool tool;
    int calls = 7;
    long long clocks = 7;
    tool.setMethodStat(-3, -4);
    EXPECT_TRUE(tool.getMethodStat(calls, clocks));
    EXPECT_EQ(calls, -3);
    EXPECT_EQ(clocks, -4);
}

TEST(RkTool, BestWithFirstLoopsZeroStartsAtOneAndKeepsItsLimit) {
    rkTool tool;
    int first = -7, max = -7;
    long long clocks = -7;
    tool.setMethodBest(0, 5, 100);
    EXPECT_TRUE(tool.getMethodBest(first, max, clocks));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(max, 5);
    EXPECT_EQ(clocks, 100);
}

TEST(RkTool, BestLimitIsAtLeastEightTimesTheFirstLoops) {
    rkTool tool;
    tool.setMethodBest(4, 5, 100);
    EXPECT_EQ(tool.m_maxLoops, 32);
    tool.setMethodBest(4, 33, 100);
    EXPECT_EQ(tool.m_maxLoops, 33);
}

TEST(RkTool, GreatestFirstLoopsDoNotOverflowTheLimit) {
    rkTool tool;
    tool.setMethodBest(INT_MAX, 5, 100);
    EXPECT_EQ(tool.m_firstLoops, INT_MAX);
    EXPECT_EQ(tool.m_maxLoops, INT_MAX);
    tool.setMethodBest(INT_MIN, 5, 100);
    EXPECT_EQ(tool.m_firstLoops, 1);
    EXPECT_EQ(tool.m_maxLoops, 5);
}

TEST(RkTool, SettingsOfAnotherMethodLeaveTheArguments) {
    rkTool tool;
    int a = -7, b = -7;
    long long c = -7;
    EXPECT_TRUE(tool.getMethodAuto());
    EXPECT_FALSE(tool.getMethodLoop(a));
    EXPECT_FALSE(tool.getMethodStat(a, c));
    EXPECT_FALSE(tool.getMethodBest(a, b, c));
    EXPECT_EQ(a, -7);
    EXPECT_EQ(b, -7);
    EXPECT_EQ(c, -7);
    tool.setMethodLoop(3);
    EXPECT_FALSE(tool.getMethodAuto());
    tool.setMethodAuto();
    EXPECT_TRUE(tool.getMethodAuto());
}

TEST(RkTool, LoopFactorShiftsTheBoundsOfAuto) {
    rkTool tool;
    tool.setLoopFactor(-2);
    EXPECT_EQ(tool.m_autoFirstLoops, 4);
    EXPECT_EQ(tool.m_autoMaxLoops, 8192);
    tool.setLoopFactor(3);
    EXPECT_EQ(tool.m_autoFirstLoops, 0) << "nothing is left, so the default serves";
    EXPECT_EQ(tool.m_autoMaxLoops, 256);
    tool.setLoopFactor(0);
    EXPECT_EQ(tool.m_autoFirstLoops, 0);
    EXPECT_EQ(tool.m_autoMaxLoops, 0);
}

TEST(RkTool, LoopFactorOfAnySizeStaysInTheRange) {
    rkTool tool;
    for (int f : {-31, -32, -1000, INT_MIN}) {
        tool.setLoopFactor(f);
        EXPECT_EQ(tool.m_autoFirstLoops, INT_MAX) << f;
        EXPECT_EQ(tool.m_autoMaxLoops, INT_MAX) << f;
    }
    for (int f : {32, 1000, INT_MAX}) {
        tool.setLoopFactor(f);
        EXPECT_EQ(tool.m_autoMaxLoops, 0) << f;
    }
}

TEST(RkTool, CopyTakesTheMethodAndItsSettings) {
    rkTool session;
    session.setMethodStat(40, 5000);
    session.m_comment = "nCalls=3";
    rkTool copy;
    copy = session;
    int calls = 0;
    long long clocks = 0;
    ASSERT_TRUE(copy.getMethodStat(calls, clocks));
    EXPECT_EQ(calls, 40);
    EXPECT_EQ(clocks, 5000);
    copy.setMethodLoop(3);
    copy.m_comment = "changed";
    EXPECT_EQ(session.m_method, rkTool::Statistic);
    EXPECT_STREQ(session.m_comment.c_str(), "nCalls=3");
}

TEST(RkTool, ResetForgetsTheMeasurementAndKeepsTheSettings) {
    rkTool tool;
    tool.setMethodBest(2, 64, 500);
    tool.m_accuracy = 0.02;
    tool.m_avoidBad = true;
    tool.m_result = rkResLibError;
    tool.setFuncTicks(12.5);
    EXPECT_EQ(tool.m_funcClocks, 12.5);
    tool.m_numClocks = 99;
    tool.m_loops = 16;
    tool.m_actualAccuracy = 0.01;
    tool.m_resultText = "spoiled";
    tool.m_comment = "spoiled";
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.m_funcStat = ScriptedClocks::stat;
    tool.m_funcCall = countCall;
    tool.m_funcInit = noInit;
    tool.m_startTime = tool.m_stopTime = 5;
    tool.reset();
    EXPECT_EQ(tool.m_result, rkResNotRun);
    EXPECT_EQ(tool.m_funcClocks, 0.0);
    EXPECT_EQ(tool.m_numClocks, 0);
    EXPECT_EQ(tool.m_loops, 0);
    EXPECT_EQ(tool.m_actualAccuracy, 1.0);
    EXPECT_STREQ(tool.m_resultText.c_str(), "");
    EXPECT_STREQ(tool.m_comment.c_str(), "");
    EXPECT_EQ(tool.m_funcLoop, nullptr);
    EXPECT_EQ(tool.m_funcStat, nullptr);
    EXPECT_EQ(tool.m_funcCall, nullptr);
    EXPECT_EQ(tool.m_funcInit, nullptr);
    EXPECT_EQ(tool.m_startTime, 5);
    EXPECT_GT(tool.m_stopTime, 5);
    EXPECT_EQ(tool.m_method, rkTool::Iterative);
    EXPECT_EQ(tool.m_maxLoops, 64);
    EXPECT_EQ(tool.m_accuracy, 0.02);
    EXPECT_TRUE(tool.m_avoidBad);
}

// ---- texts --------------------------------------------------------------------

TEST(RkTool, AccuracyHasTwoDecimalsBelowATenthOfAPercent) {
    EXPECT_EQ(accuracyStr(0.0005), "0.05%");
    EXPECT_EQ(accuracyStr(0.0), "0.00%");
    EXPECT_EQ(accuracyStr(0.000994), "0.10%") << "the format is chosen before rounding";
}

TEST(RkTool, AccuracyHasOneDecimalFromATenthOfAPercentOn) {
    EXPECT_EQ(accuracyStr(0.05), "5.0%");
    EXPECT_EQ(accuracyStr(0.002), "0.2%");
    EXPECT_EQ(accuracyStr(1.0), "100.0%");
}

TEST(RkTool, AccuracyOfAnySizeStaysInItsText) {
    EXPECT_EQ(accuracyStr(1e300).size(), 306u); // 303 digits, point, decimal, percent sign
}

TEST(RkTool, ClocksAreWrittenWholeUpToTheGreatestInteger) {
    EXPECT_EQ(clockStr(0), "0");
    EXPECT_EQ(clockStr(-5), "-5");
    EXPECT_EQ(clockStr(2147483647), "2147483647");
}

TEST(RkTool, GreaterClocksEndInZeros) {
    EXPECT_EQ(clockStr(2147483648LL), "2147483640");
    EXPECT_EQ(clockStr(123456789012LL), "123456789000");
    EXPECT_EQ(clockStr(LLONG_MAX), "922337203" + string(10, '0'));
}

TEST(RkTool, ResultIsOnlyRaisedAndItsTextGoesWithIt) {
    rkTool tool;
    tool.updateResult(rkResSuccess);
    EXPECT_EQ(tool.m_result, rkResSuccess);
    EXPECT_STREQ(tool.m_resultText.c_str(), "successfully");
    tool.updateResult(rkResLibError);
    tool.updateResult(rkResLibWarning);
    EXPECT_EQ(tool.m_result, rkResLibError);
    EXPECT_STREQ(tool.m_resultText.c_str(), "lib function error");
}

TEST(RkTool, InternalErrorNamesPlaceAndLine) {
    CaptureLog log(1);
    rkInternalError("../rakova/api/src/rktool", 795);
    EXPECT_EQ(log.text(), "RK internal error: file ../rakova/api/src/rktool, line 795\n");
}

// ---- entries ------------------------------------------------------------------

TEST(RkTool, TimingWithoutAFunctionIsAnErrorWithAMessage) {
    CaptureLog log(1);
    rkTool tool;
    EXPECT_EQ(tool.timing(nullptr, nullptr, nullptr, noInit), rkResError);
    EXPECT_EQ(log.text(),
              " Internal test problem: The test cannot execute standard timing.\n"
              " No one of funcLoop, funcStat or funcCall is registered in the test.\n");
}

TEST(RkTool, UnknownMethodIsAnInternalError) {
    CaptureLog log(1);
    rkTool tool;
    tool.m_method = 4;
    EXPECT_EQ(tool.timing(nullptr, nullptr, countCall, nullptr), rkResError);
    EXPECT_EQ(log.text(), "RK internal error: file ../rakova/api/src/rktool, line 746\n");
    EXPECT_EQ(tool.m_result, rkResError);
}

TEST(RkTool, TimingForgetsWhatWasMeasuredBefore) {
    rkTool tool;
    tool.setMethodLoop(5);
    tool.m_result = rkResLibError;
    tool.m_comment = "spoiled";
    ScriptedClocks clocks({{7.0}});
    EXPECT_EQ(tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr), rkResSuccess);
    EXPECT_STREQ(tool.m_comment.c_str(), "nLps=5");
}

TEST(RkTool, AutoSearchesBetweenTheDefaultBounds) {
    CaptureLog log(15);
    rkTool tool;
    ScriptedClocks clocks({{10.0}, {10.0}});
    EXPECT_EQ(tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4}));
    EXPECT_NE(log.text().find("        maxLoops   = 2048\n"), string::npos);
    EXPECT_TRUE(wasTraced("autoTiming"));
}

TEST(RkTool, AutoSearchesBetweenShiftedBounds) {
    CaptureLog log(15);
    rkTool tool;
    tool.setLoopFactor(-3);
    ScriptedClocks clocks({{10.0}, {10.0}});
    EXPECT_EQ(tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{8, 32}));
    EXPECT_NE(log.text().find("        maxLoops   = 16384\n"), string::npos);
}

TEST(RkTool, IterativeSearchesBetweenTheUsersBounds) {
    CaptureLog log(15);
    rkTool tool;
    tool.setMethodBest(2, 99, 20);
    ScriptedClocks clocks({{10.0}, {10.0}});
    EXPECT_EQ(tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{2, 8}));
    EXPECT_NE(log.text().find("        minClocks  = 20\n"), string::npos);
    EXPECT_NE(log.text().find("        maxLoops   = 99\n"), string::npos);
    EXPECT_TRUE(wasTraced("iterativeTiming"));
}

// ---- Manual -------------------------------------------------------------------

TEST(RkTool, ManualMeasuresOnceAtItsCount) {
    CaptureLog log(15);
    rkTool tool;
    tool.setMethodLoop(1024);
    tool.m_useCalls = true; // does not concern this method
    ScriptedClocks clocks({{25.0}});
    EXPECT_EQ(tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1024}));
    EXPECT_EQ(tool.m_funcClocks, 25.0);
    EXPECT_EQ(tool.m_numClocks, 25600);
    EXPECT_EQ(tool.m_actualAccuracy, 0.0);
    EXPECT_STREQ(tool.m_comment.c_str(), "nLps=1024");
    EXPECT_EQ(log.text(),
              "    Manual method: \n"
              "        numLoops   = 1024\n"
              "        funcClocks = 25\n"
              "        result     = successfully\n");
    EXPECT_TRUE(wasTraced("customLoopTiming"));
    EXPECT_TRUE(wasTraced("runTimFunc"));
}

TEST(RkTool, ManualOfATestThatHasOnlyStatisticMakesExactlySoManyCalls) {
    CaptureLog log(7);
    rkTool tool;
    tool.setMethodLoop(17);
    ScriptedClocks clocks({{5.0}});
    EXPECT_EQ(tool.timing(nullptr, ScriptedClocks::stat, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(log.text(),
              " ATTENTION! The test cannot execute Manual loop timing.\n"
              " Statistic timing will be run instead.\n");
    EXPECT_EQ(clocks.m_counts, (Counts{17}));
    int calls = 0;
    long long least = -1;
    ASSERT_TRUE(tool.getMethodStat(calls, least)) << "the change of method stays";
    EXPECT_EQ(calls, 17);
    EXPECT_EQ(least, 0);
    EXPECT_STREQ(tool.m_comment.c_str(), "nCalls=17");
}

TEST(RkTool, ManualOfATestThatHasOnlyACallLoopsOverIt) {
    rkTool tool;
    tool.setMethodLoop(17);
    s_calls = 0;
    EXPECT_EQ(tool.timing(nullptr, nullptr, countCall, nullptr), rkResSuccess);
    EXPECT_EQ(s_calls, 1 + 17) << "one to warm up";
}

// ---- Statistic ----------------------------------------------------------------

TEST(RkTool, StatisticMeasuresOnce) {
    CaptureLog log(15);
    rkTool tool;
    tool.setMethodStat(12, 10000000000LL);
    ScriptedClocks clocks({{500.0}});
    EXPECT_EQ(tool.timing(nullptr, ScriptedClocks::stat, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(tool.m_funcClocks, 500.0);
    EXPECT_EQ(tool.m_actualAccuracy, 0.0);
    EXPECT_STREQ(tool.m_comment.c_str(), "nCalls=12");
    EXPECT_EQ(log.text(),
              "    Statistical method:\n"
              "        minCalls   = 12\n"
              "        maxClocks  = 10000000000\n"
              "        numCalls   = 12\n"
              "        funcClocks = 500\n"
              "        result     = successfully\n");
    EXPECT_TRUE(wasTraced("statisticTiming"));
    EXPECT_TRUE(wasTraced("runTimFuncStat"));
}

TEST(RkTool, StatisticOfATestThatHasOnlyALoopRunsItManually) {
    CaptureLog log(7);
    rkTool tool;
    tool.setMethodStat(30, 10000);
    ScriptedClocks clocks({{5.0}});
    EXPECT_EQ(tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr), rkResSuccess);
    EXPECT_EQ(log.text(),
              " ATTENTION! The test cannot execute Statistic timing.\n"
              " Manual loop timing will be run instead.\n");
    EXPECT_EQ(clocks.m_counts, (Counts{30}));
    int loops = 0;
    ASSERT_TRUE(tool.getMethodLoop(loops));
    EXPECT_EQ(loops, 30);
}

static rkResult statThatEndsAtItsFirstCall(int *count, long long *clocks) {
    *count = -1;
    *clocks = 700;
    return rkResLibError;
}

TEST(RkTool, StatisticThatEndsAtItsFirstCallHasNoClocks) {
    rkTool tool;
    tool.setMethodStat(12, 10000);
    EXPECT_EQ(tool.timing(nullptr, statThatEndsAtItsFirstCall, nullptr, nullptr), rkResLibError);
    EXPECT_EQ(tool.m_funcClocks, 0.0);
    EXPECT_STREQ(tool.m_comment.c_str(), "nCalls=-1");
}

// ---- old form -----------------------------------------------------------------

static rkTool *s_toolSeen;
static rkResult oldTest(rkTool &tool, int loops) {
    s_toolSeen = &tool;
    tool.m_numClocks = 30LL * loops;
    return rkResSuccess;
}

TEST(RkTool, OldFormLeavesItsClocksInTheTool) {
    rkTool tool;
    tool.setMethodLoop(50);
    EXPECT_EQ(tool.timing(oldTest), rkResSuccess);
    EXPECT_EQ(s_toolSeen, &tool);
    EXPECT_EQ(tool.m_numClocks, 1500);
    EXPECT_EQ(tool.m_funcClocks, 30.0);
}

TEST(RkTool, OldFormWithoutAFunctionIsAnError) {
    CaptureLog log(1);
    rkTool tool;
    EXPECT_EQ(tool.timing(static_cast<rkTool::FuncOld>(nullptr)), rkResError);
    EXPECT_NE(log.text().find(" Internal test problem: "), string::npos);
}

// rkbesttiming_test.cpp - the search for a loop count, step by step, on scripted clocks.

#include <gtest/gtest.h>

#include <limits.h>

#include <string>

#include "capture.h"
#include "scriptedclocks.h"

using std::string;
using Counts = std::vector<int>;

namespace {

class RkBestTiming : public ScriptedSearch {};

} // namespace

// ---- arithmetic ---------------------------------------------------------------

TEST(RkBestTimingArithmetic, TwoValuesDifferByTheirDistanceOverTheirMean) {
    EXPECT_DOUBLE_EQ(rkTool::computeAccuracy(300.0, 100.0), 1.0);
    EXPECT_DOUBLE_EQ(rkTool::computeAccuracy(100.0, 300.0), 1.0);
    EXPECT_DOUBLE_EQ(rkTool::computeAccuracy(103.0, 97.0), 0.06);
    EXPECT_EQ(rkTool::computeAccuracy(50.0, 50.0), 0.0);
}

TEST(RkBestTimingArithmetic, ManyValuesDifferByTheGreatestDistanceFromTheirMean) {
    double const x[] = {90.0, 100.0, 140.0, 70.0};
    EXPECT_DOUBLE_EQ(rkTool::computeAccuracy(x, 4), 0.4);
    EXPECT_EQ(rkTool::computeAccuracy(x, 1), 0.0);
}

TEST(RkBestTimingArithmetic, ZerosDoNotDifferAndRaiseNoFlag) {
    double const zeros[] = {0.0, 0.0, 0.0};
    g_ssx.clear();
    EXPECT_EQ(rkTool::computeAccuracy(zeros[0], zeros[1]), 0.0);
    EXPECT_EQ(rkTool::computeAccuracy(zeros, 3), 0.0);
    g_ssx.stop();
    EXPECT_FALSE(g_ssx.badStatus());
}

TEST(RkBestTimingArithmetic, BestIsTheLeast) {
    double const x[] = {104.0, 102.5, 103.0};
    EXPECT_EQ(rkTool::computeBest(x, 3), 102.5);
    EXPECT_EQ(rkTool::computeBest(x, 1), 104.0);
}

TEST(RkBestTimingArithmetic, NoValuesGiveZero) {
    double const spoiled[] = {-1.0};
    EXPECT_EQ(rkTool::computeAccuracy(spoiled, 0), 0.0);
    EXPECT_EQ(rkTool::computeBest(spoiled, 0), 0.0);
}

// ---- prior measurement --------------------------------------------------------

TEST_F(RkBestTiming, PriorMeasurementIsAccuracyErrorBelowTheLeastClocks) {
    ScriptedClocks clocks({{9.0}, {10.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    EXPECT_EQ(tool.startIterations(10, 91), rkResAccuracyError);
    EXPECT_EQ(tool.m_loops, 10);
    EXPECT_EQ(tool.m_result, rkResSuccess) << "too few clocks are no error of the function";
    EXPECT_EQ(tool.startIterations(10, 100), rkResSuccess) << "just as many as asked for";
    EXPECT_EQ(tool.m_funcClocks, 10.0);
}

TEST_F(RkBestTiming, PriorMeasurementReturnsAnErrorOfTheFunction) {
    ScriptedClocks clocks({{1.0, rkResLibError}});
    tool.m_funcLoop = ScriptedClocks::loop;
    EXPECT_EQ(tool.startIterations(1, 100), rkResLibError);
}

TEST_F(RkBestTiming, TooFewClocksAtOneLoopTryTenAndMoveTheLimit) {
    ScriptedClocks clocks({{5.0}, {5.0}, {5.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 10, 40}));
    EXPECT_EQ(comment(), "nLps=40");
}

TEST_F(RkBestTiming, LimitIsTenfoldAfterATenfoldStep) {
    // Disagreement to the end: 40, 80 and so on up to 20480, the last one three times in all.
    std::vector<ScriptedRun> runs{{5.0}, {5.0}};
    for (int i = 0; i < 10; ++i) runs.push_back({i % 2 ? 5.0 : 10.0});
    runs.push_back({10.0});
    runs.push_back({10.0});
    ScriptedClocks clocks(runs);
    EXPECT_EQ(autoTiming(), rkResAccuracyWarning);
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(clocks.m_counts.back(), 20480);
    EXPECT_EQ(tool.m_loops, 20480);
}

TEST_F(RkBestTiming, NoClocksAtAllAreAccuracyErrorAfterTwoTriesAtOneAndAtTenLoops) {
    ScriptedClocks clocks({{0.0}, {0.0}, {0.0}, {0.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyError);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 1, 10, 10}));
    EXPECT_EQ(comment(), "") << "no count was found";
}

TEST_F(RkBestTiming, FirstLoopsOfTheUserAboveOneAreNotRaised) {
    tool.setMethodBest(4, 100, 1000);
    ScriptedClocks clocks({{249.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyError);
    EXPECT_EQ(clocks.m_counts, (Counts{4}));
}

TEST_F(RkBestTiming, FirstLoopsAtTheLimitEndAfterThePriorMeasurement) {
    ScriptedClocks clocks({{100.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.bestTiming(8, 8, 10);
    EXPECT_EQ(clocks.m_counts, (Counts{8}));
    EXPECT_EQ(comment(), "nLps=8 acc=100.0%");
    EXPECT_EQ(tool.m_result, rkResAccuracyWarning);
    EXPECT_EQ(tool.m_funcClocks, 100.0);
}

// ---- doubling -----------------------------------------------------------------

TEST_F(RkBestTiming, AgreementWithinOnePercentEndsTheSearch) {
    ScriptedClocks clocks({{100.0}, {200.0}, {150.0}, {149.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 8, 16}));
    EXPECT_EQ(tool.m_funcClocks, 149.0) << "the last value, not the least of the walk";
    EXPECT_EQ(tool.m_loops, 16);
    EXPECT_EQ(comment(), "nLps=16");
    EXPECT_EQ(resultText(), "successfully");
}

TEST_F(RkBestTiming, OnePercentItselfNeedsNoRepetition) {
    // 2 * 1 / 200 is the same double as 0.01.
    ScriptedClocks clocks({{100.5}, {99.5}});
    tool.setMethodBest(2, 64, 10);
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{2, 8}));
    EXPECT_EQ(tool.m_actualAccuracy, 0.01);
}

TEST_F(RkBestTiming, TargetItselfIsAgreement) {
    ScriptedClocks clocks({{300.0}, {100.0}, {100.0}, {100.0}});
    tool.m_accuracy = 1.0;
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4, 4}));
}

TEST_F(RkBestTiming, AgreementWithinThreePercentIsRepeatedAndTheLeastIsTheAnswer) {
    ScriptedClocks clocks({{100.0}, {103.0}, {102.0}, {104.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4, 4}));
    EXPECT_EQ(tool.m_funcClocks, 102.0);
    EXPECT_DOUBLE_EQ(tool.m_actualAccuracy, 1.0 / 103.0);
    EXPECT_EQ(comment(), "nLps=4");
}

TEST_F(RkBestTiming, RepetitionsThatDisagreeStartTheWalkAgainFromFourTimesTheirCount) {
    ScriptedClocks clocks({{100.0}, {103.0}, {120.0}, {103.0}, {103.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4, 4, 16}));
    EXPECT_EQ(tool.m_funcClocks, 103.0);
    EXPECT_EQ(comment(), "nLps=16");
}

TEST_F(RkBestTiming, WalkAgainComparesWithTheBestOfTheRepetitions) {
    // 100 is 1 % off the best (101) and 9 % off the mean of 101, 127 and 101.
    ScriptedClocks clocks({{98.0}, {101.0}, {127.0}, {101.0}, {100.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4, 4, 16}));
    EXPECT_DOUBLE_EQ(tool.m_actualAccuracy, 2.0 / 201.0);
}

TEST_F(RkBestTiming, WalkGivesUpIfItSeesNoClocks) {
    ScriptedClocks clocks({{100.0}, {0.0}, {0.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyError);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4})) << "each reading of zero is tried once more";
}

TEST_F(RkBestTiming, ReadingOfZeroThatTurnsOutWellGoesOn) {
    ScriptedClocks clocks({{0.0}, {100.0}, {100.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 1, 4}));
}

// ---- limit --------------------------------------------------------------------

TEST_F(RkBestTiming, AccuracyNotReachedAtTheLimitIsTold) {
    tool.setMethodBest(1, 8, 10);
    ScriptedClocks clocks({{100.0}, {200.0}, {100.0}, {200.0}, {300.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyWarning);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 8, 8, 8}));
    EXPECT_EQ(comment(), "nLps=8 acc=50.0%");
    EXPECT_EQ(resultText(), "successfullyactual accuracy = 50.0%");
    EXPECT_EQ(tool.m_funcClocks, 100.0);
}

TEST_F(RkBestTiming, AccuracyRemarkLeavesAWorseResultAndItsText) {
    tool.setMethodBest(1, 8, 10);
    ScriptedClocks clocks({{100.0}, {200.0, rkResLibWarning}, {100.0}, {200.0}, {300.0}});
    EXPECT_EQ(autoTiming(), rkResLibWarning);
    EXPECT_EQ(comment(), "nLps=8 acc=50.0%");
    EXPECT_EQ(resultText(), "lib function warning");
}

TEST_F(RkBestTiming, RepetitionAtTheLimitCanStillReachTheAccuracy) {
    tool.setMethodBest(1, 8, 10);
    ScriptedClocks clocks({{100.0}, {200.0}, {100.0}, {100.0}, {102.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(comment(), "nLps=8");
}

TEST_F(RkBestTiming, DoublingStopsBelowALimitBetweenTwoPowersAndStartsAgainAtTheLimit) {
    tool.setMethodBest(1, 10, 10);
    ScriptedClocks clocks({{100.0}, {200.0}, {100.0}, {200.0}, {300.0}, {100.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 8, 8, 8, 10}));
    EXPECT_EQ(comment(), "nLps=10");
}

TEST_F(RkBestTiming, GreatestLimitNeitherOverflowsNorRunsForEver) {
    // Every run disagrees with the one before: 1, 4 and so on to 2^30, two more, then the limit itself.
    std::vector<ScriptedRun> runs{{100.0}};
    for (int i = 0; i < 29; ++i) runs.push_back({i % 2 ? 100.0 : 200.0});
    runs.insert(runs.end(), {{100.0}, {200.0}, {200.0}, {100.0}, {200.0}});
    ScriptedClocks clocks(runs);
    tool.setMethodBest(1, INT_MAX, 10);
    EXPECT_EQ(autoTiming(), rkResAccuracyWarning);
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(clocks.m_counts[29], 1 << 30);
    EXPECT_EQ(clocks.m_counts[30], 1 << 30);
    EXPECT_EQ(clocks.m_counts[31], 1 << 30);
    EXPECT_EQ(clocks.m_counts[32], INT_MAX);
    EXPECT_EQ(tool.m_loops, INT_MAX);
}

TEST_F(RkBestTiming, TenfoldStepOfTheGreatestLimitDoesNotOverflow) {
    tool.setMethodBest(1, INT_MAX, 100);
    ScriptedClocks clocks({{50.0}, {50.0}, {50.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 10, 40}));
}

TEST_F(RkBestTiming, WalkFromNoLoopsGetsToItsLimit) {
    ScriptedClocks clocks({{100.0}, {200.0}, {100.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    EXPECT_EQ(tool.continueIterations(0, 4), rkResAccuracyWarning);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 2, 4}));
}

// ---- errors -------------------------------------------------------------------

TEST_F(RkBestTiming, ErrorInThePriorMeasurementEndsTheSearch) {
    ScriptedClocks clocks({{100.0, rkResLibError}});
    EXPECT_EQ(autoTiming(), rkResLibError);
    EXPECT_EQ(comment(), "");
    EXPECT_EQ(resultText(), "lib function error");
}

TEST_F(RkBestTiming, AccuracyErrorOfTheFunctionItselfEndsTheSearch) {
    ScriptedClocks clocks({{100.0, rkResAccuracyError}});
    EXPECT_EQ(autoTiming(), rkResAccuracyError);
}

TEST_F(RkBestTiming, ErrorInTheWalkEndsTheSearch) {
    ScriptedClocks clocks({{100.0}, {200.0}, {0.0, rkResLibError}});
    EXPECT_EQ(autoTiming(), rkResLibError);
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(comment(), "");
}

TEST_F(RkBestTiming, ErrorInARepetitionEndsTheSearch) {
    ScriptedClocks clocks({{100.0}, {103.0}, {103.0, rkResDataError}});
    EXPECT_EQ(autoTiming(), rkResDataError);
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(comment(), "");
}

TEST_F(RkBestTiming, WarningOfTheFunctionDoesNotEndTheSearch) {
    ScriptedClocks clocks({{100.0, rkResLibWarning}, {100.0}});
    EXPECT_EQ(autoTiming(), rkResLibWarning);
    EXPECT_EQ(comment(), "nLps=4");
}

// ---- repetition ---------------------------------------------------------------

TEST_F(RkBestTiming, RepetitionAtTheCountInUseCountsTheLastMeasurement) {
    ScriptedClocks clocks({{104.0}, {105.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.m_loops = 16;
    tool.m_funcClocks = 103.0;
    EXPECT_EQ(tool.repeatTiming(16, 3), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{16, 16}));
    EXPECT_EQ(tool.m_funcClocks, 103.0);
    EXPECT_DOUBLE_EQ(tool.m_actualAccuracy, 1.0 / 104.0);
}

TEST_F(RkBestTiming, RepetitionAtAnotherCountMeasuresAll) {
    ScriptedClocks clocks({{100.0}, {200.0}, {300.0}});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.m_loops = 16;
    tool.m_funcClocks = 50.0;
    EXPECT_EQ(tool.repeatTiming(8, 3), rkResAccuracyWarning);
    EXPECT_EQ(clocks.m_counts, (Counts{8, 8, 8}));
    EXPECT_EQ(tool.m_loops, 8);
    EXPECT_EQ(tool.m_funcClocks, 100.0);
    EXPECT_DOUBLE_EQ(tool.m_actualAccuracy, 0.5);
}

TEST_F(RkBestTiming, RepetitionOfTheLastMeasurementAloneMeasuresNothing) {
    ScriptedClocks clocks({});
    tool.m_funcLoop = ScriptedClocks::loop;
    tool.m_loops = 8;
    tool.m_funcClocks = 50.0;
    EXPECT_EQ(tool.repeatTiming(8, 1), rkResSuccess);
    EXPECT_EQ(tool.m_funcClocks, 50.0);
}

// ---- statistic path -----------------------------------------------------------

TEST_F(RkBestTiming, SearchThroughTheStatisticPathCountsCalls) {
    ScriptedClocks clocks({{100.0}, {103.0}, {120.0}, {103.0}, {103.0}});
    tool.m_useCalls = true;
    tool.timing(nullptr, ScriptedClocks::stat, nullptr, nullptr);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4, 4, 16}));
    EXPECT_EQ(comment(), "nCalls=16");
}

TEST_F(RkBestTiming, StatisticPathIsLeftIfNoFunctionCanServeIt) {
    ScriptedClocks clocks({{100.0}, {100.0}});
    tool.m_useCalls = true;
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_FALSE(tool.m_useCalls);
    EXPECT_EQ(comment(), "nLps=4");
}

// ---- course -------------------------------------------------------------------

TEST_F(RkBestTiming, CourseOfASearchIsToldAtLevelEight) {
    CaptureLog log(15);
    ScriptedClocks clocks({{5.0}, {100.0}, {200.0}, {194.0}, {192.0}, {196.0}});
    autoTiming();
    EXPECT_EQ(log.text(),
              "    Auto method: start\n"
              "        minClocks  = 10\n"
              "    Prior Measurement: \n"
              "        numLoops   = 1\n"
              "        numClocks  = 5\n"
              "        funcClocks = 5\n"
              "        result     = accuracy error\n"
              "    Prior Measurement: \n"
              "        numLoops   = 10\n"
              "        numClocks  = 1000\n"
              "        funcClocks = 100\n"
              "        result     = successfully\n"
              "    Iteration Measurement: \n"
              "        startLoops = 40\n"
              "        maxLoops   = 20480\n"
              "        stopLoops  = 80\n"
              "        stopClocks = 15520\n"
              "        accuracy   = 0.0305\n"
              "        funcClocks = 194\n"
              "        result     = successfully\n"
              "    Simple Measurements: \n"
              "        numLoops   = 80\n"
              "        numClocks  = 15360\n"
              "        funcClocks = 192\n"
              "        numLoops   = 80\n"
              "        numClocks  = 15680\n"
              "        funcClocks = 196\n"
              "        accuracy   = 0.0103\n"
              "        bestClocks = 192\n"
              "        result     = successfully\n"
              "    Auto method: stop\n");
}

TEST_F(RkBestTiming, CourseOfASearchForCallsSaysCalls) {
    CaptureLog log(15);
    tool.m_useCalls = true;
    ScriptedClocks clocks({{100.0}, {100.0}});
    tool.timing(nullptr, ScriptedClocks::stat, nullptr, nullptr);
    EXPECT_EQ(log.text(),
              "    Auto method: start\n"
              "        minClocks  = 10\n"
              "    Prior Measurement: \n"
              "        numCalls   = 1\n"
              "        numClocks  = 100\n"
              "        funcClocks = 100\n"
              "        result     = successfully\n"
              "    Iteration Measurement: \n"
              "        startLoops = 4\n"
              "        maxLoops   = 2048\n"
              "        stopLoops  = 4\n"
              "        stopClocks = 400\n"
              "        accuracy   = 0\n"
              "        funcClocks = 100\n"
              "        result     = successfully\n"
              "    Auto method: stop\n");
}

TEST_F(RkBestTiming, CourseOfAnErrorEndsWithExit) {
    CaptureLog log(15);
    ScriptedClocks clocks({{100.0, rkResLibError}});
    autoTiming();
    EXPECT_EQ(log.text(),
              "    Auto method: start\n"
              "        minClocks  = 10\n"
              "    Prior Measurement: \n"
              "        numLoops   = 1\n"
              "        numClocks  = 100\n"
              "        funcClocks = 100\n"
              "        result     = lib function error\n"
              "    Auto method: exit\n");
}

TEST_F(RkBestTiming, CourseOfGivingUpEndsWithExit) {
    CaptureLog log(15);
    tool.setMethodBest(2, 16, 3000000000LL);
    ScriptedClocks clocks({{100.0}});
    autoTiming();
    EXPECT_EQ(log.text(),
              "    Auto method: start\n"
              "        minClocks  = 3000000000\n"
              "    Prior Measurement: \n"
              "        numLoops   = 2\n"
              "        numClocks  = 200\n"
              "        funcClocks = 100\n"
              "        result     = accuracy error\n"
              "    Auto method: exit\n");
}

TEST_F(RkBestTiming, CourseOfAnAttemptThatFailsSaysSo) {
    CaptureLog log(15);
    tool.m_avoidBad = true;
    ScriptedClocks clocks({{100.0},
                           {100.0, rkResSuccess, true},
                           {100.0},
                           {100.0, rkResSuccess, true},
                           {100.0},
                           {100.0},
                           {100.0}});
    autoTiming();
    string text = log.text();
    size_t stop = text.find("        stopLoops  = ");
    ASSERT_NE(stop, string::npos);
    EXPECT_EQ(text.substr(stop),
              "        stopLoops  = 2\n"
              "        stopClocks = 400\n"
              "        accuracy   = 0\n"
              "        funcClocks = 100\n"
              "        result     = modified control status\n"
              "-- Status    87: ?Invalid \n"
              "-- Attempting to avoid bad control status\n"
              "    Reduce loops to avoid bad ctrl status.\n"
              "    Simple Measurements: \n"
              "        numLoops   = 2\n        numClocks  = 200\n        funcClocks = 100\n"
              "        numLoops   = 2\n        numClocks  = 200\n        funcClocks = 100\n"
              "        numLoops   = 2\n        numClocks  = 200\n        funcClocks = 100\n"
              "        numLoops   = 2\n        numClocks  = 200\n        funcClocks = 100\n"
              "        numLoops   = 2\n        numClocks  = 200\n        funcClocks = 100\n"
              "-- Status    87: ?Invalid \n"
              "        accuracy   = 0\n"
              "        bestClocks = 100\n"
              "        result     = modified control status\n"
              "    Cannot avoid bad ctrl status\n"
              "-- Attempt fails: Bad control status repeats.\n"
              "    Auto method: stop\n");
}

TEST_F(RkBestTiming, FailedMeasurementOfAQuietRunIsToldByItsResultAlone) {
    CaptureLog log(7);
    ScriptedClocks clocks({{0.0}, {0.0}, {0.0}, {0.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyError);
    EXPECT_EQ(log.text(), "");
}

// rkbeststatus_test.cpp - the search for a loop count when a run leaves a bad control status.

#include <gtest/gtest.h>

#include <string>

#include "capture.h"
#include "scriptedclocks.h"

using std::string;
using Counts = std::vector<int>;

namespace {

class RkBestStatus : public ScriptedSearch {};

int s_inits;
int countInit() {
    ++s_inits;
    return 0;
}

} // namespace

TEST_F(RkBestStatus, BadStatusIsAvoidedByHalfTheLoops) {
    CaptureLog log(7);
    tool.m_avoidBad = true;
    ScriptedClocks clocks(
        {{100.0}, {200.0}, {100.0, rkResSuccess, true}, {201.0}, {199.0}, {200.0}, {200.0}, {200.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 8, 4, 4, 4, 4, 4}))
        << "the measurement before counts as the first";
    EXPECT_EQ(log.text(),
              "-- Status    87: ?Invalid \n"
              "-- Attempting to avoid bad control status\n"
              "-- Attempt is successful\n");
    EXPECT_EQ(tool.m_funcClocks, 199.0);
    EXPECT_EQ(comment(), "nLps=4");
    EXPECT_FALSE(g_ctrl87.badStatus()) << "what had been seen was cleared";
}

TEST_F(RkBestStatus, BadStatusThatRepeatsStays) {
    CaptureLog log(7);
    tool.m_avoidBad = true;
    ScriptedClocks clocks({{100.0},
                           {200.0},
                           {100.0, rkResSuccess, true},
                           {200.0},
                           {200.0},
                           {200.0, rkResSuccess, true},
                           {200.0},
                           {200.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess) << "a bad status is judged by the test, not by the search";
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(log.text(),
              "-- Status    87: ?Invalid \n"
              "-- Attempting to avoid bad control status\n"
              "-- Status    87: ?Invalid \n"
              "-- Attempt fails: Bad control status repeats.\n");
    EXPECT_TRUE(g_ctrl87.badStatus());
    EXPECT_EQ(comment(), "nLps=4");
}

TEST_F(RkBestStatus, AttemptBeyondTwiceTheAccuracyFails) {
    CaptureLog log(7);
    tool.m_avoidBad = true;
    // 200 and five more with a mean of 204 and 225 as the farthest: 10.2 %.
    ScriptedClocks clocks(
        {{100.0}, {200.0}, {100.0, rkResSuccess, true}, {225.0}, {200.0}, {200.0}, {200.0}, {200.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyWarning);
    EXPECT_EQ(log.text(),
              "-- Status    87: ?Invalid \n"
              "-- Attempting to avoid bad control status\n"
              "-- Attempt fails: Accuracy is unsatisfactory.\n");
    EXPECT_EQ(comment(), "nLps=4 acc=10.2%");
}

TEST_F(RkBestStatus, AttemptSucceedsBetweenOnceAndTwiceTheAccuracy) {
    CaptureLog log(7);
    tool.m_avoidBad = true;
    // 200 and five more with a mean of 203 and 218 as the farthest: 7.4 %.
    ScriptedClocks clocks(
        {{100.0}, {200.0}, {100.0, rkResSuccess, true}, {218.0}, {200.0}, {200.0}, {200.0}, {200.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyWarning);
    EXPECT_EQ(log.text(),
              "-- Status    87: ?Invalid \n"
              "-- Attempting to avoid bad control status\n"
              "-- Attempt is successful\n");
    EXPECT_EQ(comment(), "nLps=4 acc=7.4%");
}

TEST_F(RkBestStatus, ErrorInTheAttemptEndsTheSearch) {
    CaptureLog log(7);
    tool.m_avoidBad = true;
    ScriptedClocks clocks({{100.0}, {200.0}, {100.0, rkResSuccess, true}, {200.0}, {200.0, rkResLibError}});
    EXPECT_EQ(autoTiming(), rkResLibError);
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(log.text(),
              "-- Status    87: ?Invalid \n"
              "-- Attempting to avoid bad control status\n");
    EXPECT_EQ(comment(), "");
}

TEST_F(RkBestStatus, BadStatusInARepetitionEndsTheSearchWithItsValues) {
    CaptureLog log(7);
    tool.m_avoidBad = true;
    ScriptedClocks clocks({{100.0}, {103.0}, {120.0, rkResSuccess, true}, {103.0}});
    EXPECT_EQ(autoTiming(), rkResAccuracyWarning);
    EXPECT_TRUE(clocks.allServed());
    EXPECT_EQ(log.text(), "-- Status    87: ?Invalid \n");
    EXPECT_EQ(comment(), "nLps=4 acc=10.4%");
}

TEST_F(RkBestStatus, BadStatusIsNotAvoidedUnlessAsked) {
    CaptureLog log(7);
    ScriptedClocks clocks({{100.0}, {100.0, rkResSuccess, true}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(log.text(), "");
    EXPECT_TRUE(g_ctrl87.badStatus());
}

TEST_F(RkBestStatus, BadStatusInARepetitionDoesNotEndTheSearchUnlessAsked) {
    CaptureLog log(7);
    ScriptedClocks clocks({{100.0}, {103.0}, {120.0, rkResSuccess, true}, {103.0}, {103.0}});
    EXPECT_EQ(autoTiming(), rkResSuccess);
    EXPECT_EQ(clocks.m_counts, (Counts{1, 4, 4, 4, 16}));
    EXPECT_EQ(log.text(), "");
}

TEST_F(RkBestStatus, AvoidingPreparesEveryRun) {
    tool.m_avoidBad = true;
    s_inits = 0;
    ScriptedClocks clocks({{100.0}, {200.0}, {200.0}});
    tool.timing(ScriptedClocks::loop, nullptr, nullptr, countInit);
    EXPECT_EQ(s_inits, 3);
}

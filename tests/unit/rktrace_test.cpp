// rktrace_test.cpp - the steps of the program and the log of them.

#include "rktrace.h"

#include <gtest/gtest.h>
#include <string.h>

#include "rkstream.h"
#include "tempdir.h"

// Names of the open steps, latest first, each followed by a blank.
static std::string steps(rkTrace const &trace) {
    std::string text;
    for (rkString const &name : trace) text += str(name) + " ";
    return text;
}

TEST(RkTrace, OutermostEntryHasSixStarsAndANestedOneSeven) {
    rkTrace trace;
    trace.traceIn("outer");
    trace.traceIn("inner");
    EXPECT_EQ(str(trace.m_traceLog),
              "****** trace into   outer\n"
              "******* trace into   inner\n");
}

TEST(RkTrace, ExitLineHasAsManyStarsAsItsEntry) {
    rkTrace trace;
    trace.traceIn("outer");
    trace.traceIn("inner");
    trace.traceOut("inner");
    trace.traceOut("outer");
    EXPECT_EQ(str(trace.m_traceLog),
              "****** trace into   outer\n"
              "******* trace into   inner\n"
              "******* trace out of inner\n"
              "****** trace out of outer\n");
    EXPECT_EQ(trace.m_level.length(), 0);
    EXPECT_TRUE(trace.empty());
}

TEST(RkTrace, CurrentNameIsTheLatest) {
    rkTrace trace;
    EXPECT_EQ(str(trace.getCurName()), "");
    trace.traceIn("outer");
    trace.traceIn("inner");
    EXPECT_EQ(str(trace.getCurName()), "inner");
    trace.traceOut("inner");
    EXPECT_EQ(str(trace.getCurName()), "outer");
}

TEST(RkTrace, StepWithoutItsOwnExitIsClosedByItsCallers) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceIn("c");
    trace.traceIn("d");
    trace.traceOut("b");
    EXPECT_EQ(steps(trace), "a ");
    EXPECT_EQ(str(trace.m_level), "*");
}

TEST(RkTrace, LatestOfEqualNamesIsClosed) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceIn("a");
    trace.traceOut("a");
    EXPECT_EQ(steps(trace), "b a ");
}

TEST(RkTrace, UnknownExitKeepsTheNamesAndTakesAllStars) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceOut("unknown");
    EXPECT_EQ(steps(trace), "b a ");
    EXPECT_EQ(str(trace.m_level), "");
}

TEST(RkTrace, ExitsSurviveWithoutStars) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.clearText();
    trace.traceOut("b");
    trace.traceOut("a");
    trace.traceOut("a");
    EXPECT_EQ(str(trace.m_traceLog),
              "***** trace out of b\n"
              "***** trace out of a\n"
              "***** trace out of a\n");
    EXPECT_TRUE(trace.empty());
    EXPECT_EQ(trace.m_level.length(), 0);
}

TEST(RkTrace, ClearTextKeepsTheNames) {
    rkTrace trace;
    trace.clearText();
    trace.traceIn("a");
    trace.clearText();
    EXPECT_EQ(str(trace.m_traceLog), "");
    EXPECT_EQ(str(trace.m_level), "");
    EXPECT_EQ(steps(trace), "a ");
}

TEST(RkTrace, SetCurNameForgetsWhatWasEnteredLater) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceIn("c");
    trace.traceIn("d");
    trace.setCurName("b");
    EXPECT_EQ(steps(trace), "b a ");
    EXPECT_EQ(str(trace.m_level), "**");
}

TEST(RkTrace, SetCurNameStopsAtTheLatestOfEqualNames) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.traceIn("a");
    trace.traceIn("c");
    trace.setCurName("a");
    EXPECT_EQ(steps(trace), "a b a ");
}

TEST(RkTrace, SetCurNameOfAnUnknownNameChangesNothing) {
    rkTrace trace;
    trace.traceIn("a");
    trace.traceIn("b");
    trace.setCurName("unknown");
    trace.setCurName("");
    EXPECT_EQ(steps(trace), "b a ");
    EXPECT_EQ(str(trace.m_level), "**");
}

TEST(RkTrace, LogKeepsItsBlockAndTheLatestLines) {
    rkTrace trace;
    trace.traceIn("first");
    char const *block = trace.m_traceLog.m_buffer;
    for (int i = 0; i < 5000; ++i) {
        trace.traceIn("step");
        trace.traceOut("step");
    }
    trace.traceIn("last");
    std::string log = str(trace.m_traceLog);
    EXPECT_EQ(trace.m_traceLog.m_buffer, block);
    EXPECT_EQ(strlen(trace.m_traceLog.c_str()), log.size()); // nothing older stands behind
    EXPECT_LE(log.size(), 64u * 1024);
    EXPECT_GE(log.size(), 31u * 1024);
    EXPECT_EQ(log.substr(0, 7), "*******"); // begins with a whole line
    EXPECT_EQ(log.find("first"), std::string::npos);
    std::string end = "******* trace out of step\n******* trace into   last\n";
    EXPECT_EQ(log.substr(log.size() - end.size()), end);
}

TEST(RkTrace, NameLongerThanTheLogIsCut) {
    rkTrace trace;
    std::string name(200 * 1024, 'n');
    trace.traceIn("short");
    trace.traceIn(name.c_str());
    trace.traceOut(name.c_str());
    EXPECT_LE(trace.m_traceLog.length(), 64 * 1024);
    EXPECT_EQ(steps(trace), "short ");
}

TEST(RkTrace, LogThatWasReplacedIsReservedAgain) {
    rkTrace trace;
    trace.traceIn("a");
    trace.m_traceLog = "x";
    trace.traceIn("b");
    EXPECT_EQ(str(trace.m_traceLog), "******* trace into   b\n");
}

class TraceOutput : public testing::Test {
protected:
    TraceOutput() {
        g_trace.clear();
        g_trace.clearText();
        g_ostrm.addStream(m_dir / "log", false);
    }
    ~TraceOutput() override { g_ostrm.close(); }
    std::string written() { return fileText(m_dir / "log"); }

    TempDir m_dir;
};

TEST_F(TraceOutput, LinesGoToTheLogAtOnceWhenTheLevelIsOn) {
    g_ostrm.setOutLevel(23);
    g_trace.traceIn("step");
    EXPECT_EQ(written(), "****** trace into   step\n");
    g_trace.traceOut("step");
    EXPECT_EQ(written(), "****** trace into   step\n****** trace out of step\n");
    EXPECT_EQ(g_ostrm.msgLevel(), MsgResult);
    EXPECT_TRUE(g_ostrm.m_msgStack.empty());
}

TEST_F(TraceOutput, NothingIsWrittenWhenTheLevelIsOff) {
    g_ostrm.setOutLevel(39); // numerically above the level of traces
    g_trace.traceIn("step");
    g_trace.traceOut("step");
    g_ostrm.flush();
    EXPECT_EQ(written(), "");
    EXPECT_EQ(str(g_trace.m_traceLog), "****** trace into   step\n****** trace out of step\n");
}

// So a run that dies shows what came in front of the step, whichever of the higher levels is on.
TEST_F(TraceOutput, StepsBringOutWhatIsBufferedAtAnyLevelNumericallyAboveTraces) {
    for (OutputLevel level : {39, 71}) {
        std::string before = written();
        g_ostrm.setOutLevel(level);
        g_ostrm << MsgError << "text" << EndMessage;
        g_trace.traceIn("step");
        EXPECT_EQ(written(), before + "text") << level;
        g_ostrm << MsgError << "more" << EndMessage;
        g_trace.traceOut("step");
        EXPECT_EQ(written(), before + "textmore") << level;
        EXPECT_TRUE(g_ostrm.m_msgStack.empty());
    }
}

TEST_F(TraceOutput, StepsLeaveTheBufferAloneBelowTheLevelOfTraces) {
    g_ostrm.setOutLevel(15);
    g_ostrm << MsgError << "text" << EndMessage;
    g_trace.traceIn("step");
    g_trace.traceOut("step");
    EXPECT_EQ(written(), "");
}

TEST_F(TraceOutput, FlushComparesTheLevelsAsNumbers) {
    g_ostrm.setOutLevel(MsgError);
    g_ostrm << MsgError << "text" << EndMessage;
    g_trace.flush(); // the message level is 4 again, above 1
    EXPECT_EQ(written(), "");
    g_ostrm.setOutLevel(64);
    g_trace.flush();
    EXPECT_EQ(written(), "text");
}

TEST(RkTraced, StepRunsBetweenEntryAndExit) {
    g_trace.clear();
    int result = rkTraced("work", [] {
        EXPECT_EQ(str(g_trace.getCurName()), "work");
        return 5;
    });
    EXPECT_EQ(result, 5);
    rkTraced("quiet", [] {});
    EXPECT_EQ(str(g_trace.getCurName()), "");
}

TEST(RkTraced, StepThatThrowsStaysOpen) {
    g_trace.clear();
    auto fail = [] { throw 1; };
    EXPECT_THROW(rkTraced("broken", fail), int);
    EXPECT_EQ(str(g_trace.getCurName()), "broken");
}

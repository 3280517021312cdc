// rktestloop_test.cpp - the walk over the parameter sets of a test.

#include <gtest/gtest.h>

#include "capture.h"
#include "freshstart.h"
#include "rkctrl.h"
#include "scriptedtest.h"
#include "text.h"

using std::string;

namespace {

// Writes down the values of its two parameters at each measurement.
class Walking : public ScriptedTest {
public:
    rkResult runTiming() override {
        for (rkParameter *p : m_declared) m_walk += p->valueString().c_str();
        m_walk += " ";
        return ScriptedTest::runTiming();
    }
    string m_walk;
};

} // namespace

TEST(RkTestLoop, ATestWithoutParametersRunsOnce) {
    ScriptedTest test;
    test.run();
    EXPECT_EQ(test.m_steps, "SitfFE");
}

TEST(RkTestLoop, AParameterWithoutValuesIsToldAsAnEmptyList) {
    ScriptedTest test;
    Counted none("size", 0);
    test.m_declared = {&none};
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResDataError);
    EXPECT_TRUE(holds(log.text(), "-- One of argument list for timing is empty\n"));
    EXPECT_EQ(test.m_steps, "SFE");
}

TEST(RkTestLoop, TheLastParameterTurnsFastest) {
    Walking test;
    Counted outer("outer", 3), inner("inner", 2);
    test.m_declared = {&outer, &inner};
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_EQ(test.m_walk, "11 12 21 22 31 32 ");
}

TEST(RkTestLoop, WhenNoSetHasDataTheTestFails) {
    ScriptedTest test;
    Counted size("size", 2);
    test.m_declared = {&size};
    test.m_dataFails = {true, true};
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResDataError);
    EXPECT_TRUE(holds(log.text(), "-- Error while initialization of function data\n"));
    EXPECT_EQ(test.m_steps, "SififFE");
}

TEST(RkTestLoop, OneSetWithoutDataIsLeftOutWithoutOutput) {
    Walking test;
    Counted size("size", 3);
    test.m_declared = {&size};
    test.m_dataFails = {false, true, false};
    CaptureLog log(7);
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_EQ(test.m_walk, "1 3 ");
    EXPECT_FALSE(holds(log.text(), "size=2"));
}

TEST(RkTestLoop, AnErrorEndsTheWalkAndHeldBackRowsStillGoOut) {
    ScriptedTest test;
    rkDefault<int> mode(2, "mode");
    mode.addDeprecated(2, "oldTwo");
    Counted size("size", 3);
    test.m_declared = {&size, &mode};
    test.m_results = {rkResSuccess, rkResAccuracyError};
    rkTest::m_numParmsColm = 3;
    rkTest::m_numResultColm = 5;
    CaptureTable table;
    EXPECT_EQ(test.run(), rkResAccuracyError);
    EXPECT_EQ(test.m_timed, 2u);
    EXPECT_EQ(table.text(),
              "keliScript_8u,1,2,nLps=8,100, ,0.1,-\nkeliScript_8u,1,oldTwo,deprecated,100, ,0.1,-\n");
}

TEST(RkTestLoop, WarningsLetTheWalkGoOnAndTheWorstCounts) {
    ScriptedTest test;
    Counted size("size", 3);
    test.m_declared = {&size};
    test.m_results = {rkResLibWarning, rkResAccuracyWarning, rkResSuccess};
    CaptureLog log(7);
    EXPECT_EQ(test.run(), rkResLibWarning);
    EXPECT_EQ(test.m_timed, 3u);
}

TEST(RkTestLoop, AtTheLevelOfErrorsAWarningDoesNotCountButGoesToTheOutput) {
    class Watching : public ScriptedTest {
    public:
        void outputResult(rkResult r) override { m_shown = r; }
        rkResult m_shown = rkResNotRun;
    } test;
    test.m_results = {rkResLibWarning};
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_EQ(test.m_shown, rkResLibWarning);
}

TEST(RkTestLoop, AtTheLevelOfErrorsAWarningDoesNotLowerAnError) {
    ScriptedTest test;
    CaptureLog log(1);
    test.m_results = {rkResLibWarning};
    struct Worse : ScriptedTest {
        rkResult runTiming() override {
            ScriptedTest::runTiming();
            m_currentResult = rkResLibError; // as the status check does
            return rkResLibWarning;
        }
    } worse;
    EXPECT_EQ(worse.run(), rkResLibError);
}

TEST(RkTestLoop, AMeasurementWithoutResultIsAnInternalProblem) {
    ScriptedTest test;
    test.m_results = {rkResNotRun};
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResError);
    EXPECT_TRUE(
        holds(log.text(), "-- Internal test problem: runTiming() function returns undefined result\n"));
}

TEST(RkTestLoop, ATestWithNoRoutineCannotBeTimed) {
    class Empty : public rkTest {
    public:
        Empty() : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), "empty", "f", "Empty") {}
    } test;
    rkCpuTicker::m_freqMHz = 1000;
    EXPECT_EQ(test.runTiming(), rkResNotRun);
}

TEST(RkTestLoop, WarningLevelIsRaisedToPerformanceWhileMeasuring) {
    class Level : public ScriptedTest {
    public:
        rkResult runTiming() override {
            m_level = g_ostrm.outLevel();
            return ScriptedTest::runTiming();
        }
        OutputLevel m_level = 0;
    } test;
    CaptureLog log(3);
    test.run();
    EXPECT_EQ(test.m_level, 7);
    EXPECT_EQ(g_ostrm.outLevel(), 3);
}

TEST(RkTestLoop, EachSetStartsItsVectorsAtTheSameMisalignment) {
    class Shifts : public ScriptedTest {
    public:
        bool initData() override {
            m_seen += rkTest::m_vectorShift == 0 && rkTest::m_vectorNum == 0 ? "0" : "x";
            rkTest::m_vectorShift = 4096;
            rkTest::m_vectorNum = 3;
            return ScriptedTest::initData();
        }
        string m_seen;
    } test;
    Counted size("size", 3);
    test.m_declared = {&size};
    test.run();
    EXPECT_EQ(test.m_seen, "000");
}

TEST(RkTestLoop, LinesWithTheSameParametersAreADataWarning) {
    rkTest::m_numParmsColm = 2;
    rkTest::m_numResultColm = 6;
    for (OutputLevel level : {7, 1}) {
        ScriptedTest test;
        rkIterator<int> size("size", "");
        size.add(4);
        size.add(4);
        test.m_declared = {&size};
        CaptureLog log(level);
        EXPECT_EQ(test.run(), level == 7 ? rkResDataWarning : rkResSuccess);
        EXPECT_EQ(holds(log.text(), "-- Warning: duplicate lines in performance table (csv-file)\n"),
                  level == 7);
    }
}

TEST(RkTestLoop, ConstantsGoOutOnceBeforeTheFirstSetWithData) {
    class Constants : public ScriptedTest {
    public:
        void constToOstrm() override { m_steps += "c"; }
    } test;
    Counted size("size", 3);
    test.m_declared = {&size};
    test.m_dataFails = {true};
    test.run();
    EXPECT_EQ(test.m_steps, "SifictfitfFE");
}

TEST(RkTestLoop, ABadStatusRaisesTheResultAndIsPrinted) {
    class BadStatus : public ScriptedTest {
    public:
        rkResult runTiming() override {
            g_ctrl87.m_sw |= 1;
            return ScriptedTest::runTiming();
        }
    } test;
    CaptureLog log(7);
    EXPECT_EQ(test.run(), rkResCtrlStatusWarning);
    EXPECT_TRUE(test.m_bad87);
    EXPECT_FALSE(test.m_badSsx);
    EXPECT_TRUE(holds(log.text(), "-- Status    87: ?Invalid \n"));
    EXPECT_FALSE(holds(log.text(), "SSX"));
}

TEST(RkTestLoop, WithHotOnlyATestThatCallsItselfColdIsNotMeasured) {
    class Cold : public ScriptedTest {
    public:
        bool isHotLine() override { return false; }
    } test;
    rkTest::m_hot = 2;
    CaptureLog log(7);
    test.run();
    EXPECT_TRUE(holds(log.text(), "  measuring is omitted: not hot line\n"));
    EXPECT_EQ(test.m_timed, 0u);
}

TEST(RkTestLoop, SetAndUseKeepsTheVectorsFirst) {
    class Owner : public rkObject {
    public:
        bool reserveCopy() override { return ++m_reserved != 0; }
        int m_reserved = 0;
    } owner;
    void *block = rkTest::allocate(16, 0, &owner);
    g_tool.m_useData = true;
    ScriptedTest test;
    test.run();
    EXPECT_EQ(owner.m_reserved, 1);
    rkTest::deallocate(block);
}

// ---- data in and out of the cache --------------------------------------------------

namespace {

// Its data never fit.
class NeverFits : public rkCacheIteratorInt {
public:
    using rkCacheIteratorInt::rkCacheIteratorInt;
    bool repeatValue() override { return ++m_repeats < 3; }
    int m_repeats = 0;
};

class CacheTest : public ScriptedTest {
public:
    explicit CacheTest(rkIterator<int> &size) : m_size(size) {}
    bool canStart() override {
        m_cacheIterator = new NeverFits(m_size, &m_object, nullptr);
        m_parms.push_back(m_cacheIterator);
        return true;
    }
    class Huge : public rkObject {
    public:
        int objectSize() const override { return 1; } // too small for every state
    } m_object;
    rkIterator<int> &m_size;
};

} // namespace

TEST(RkTestLoop, DataThatNeverFitTheCacheEndTheTest) {
    rkTest::m_cache = true;
    Counted size("size", 1);
    CacheTest test(size);
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResDataError);
    EXPECT_EQ(test.m_timed, 0u);
    EXPECT_EQ(test.m_set, 3) << "the first values and two repeats";
    EXPECT_TRUE(holds(log.text(), "-- Fail to allocate inCache data\n")) << log.text();
    EXPECT_TRUE(holds(log.text(), "inCache:size=1 \n")) << log.text();
}

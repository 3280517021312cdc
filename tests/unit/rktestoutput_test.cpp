// rktestoutput_test.cpp - the lines of output of a test.

#include <gtest/gtest.h>
#include <unistd.h>

#include "capture.h"
#include "freshstart.h"
#include "rksession.h"
#include "scriptedtest.h"

using std::string;

namespace {

class Output : public ScriptedTest {
public:
    using ScriptedTest::ScriptedTest;
    double getDivisor() override { return m_divisor; }
    double getFlops() override { return m_flops; }
    rkString getUnit() override { return "px"; }
    double m_divisor = 1.0, m_flops = -1.0;
};

// A table of the function, two parameters and the results.
class Rows : public CaptureTable {
public:
    Rows() {
        rkTest::m_numParmsColm = 3;
        rkTest::m_numResultColm = 5;
    }
};

string format(double v) {
    Output test;
    return test.formatClocks(v).c_str();
}

string fmt(rkString s) {
    return s.c_str();
}

} // namespace

// ---- numbers ---------------------------------------------------------------------

TEST(RkTestOutput, ClocksKeepThreeDigitsOrMore) {
    EXPECT_EQ(format(12345.6), "12346");
    EXPECT_EQ(format(100.0), "100");
    EXPECT_EQ(format(12.34), "12.3");
    EXPECT_EQ(format(1.234), "1.23");
    EXPECT_EQ(format(0.1234), "0.123");
    EXPECT_EQ(format(0.01234), "0.0123");
    EXPECT_EQ(format(0.001234), "0.00123");
    EXPECT_EQ(format(0.0001234), "0.000123");
}

TEST(RkTestOutput, NothingMeasuredIsAnEmptyText) {
    EXPECT_EQ(format(0.0), "");
    EXPECT_EQ(format(-3.0), "");
}

TEST(RkTestOutput, HugeAndTinyClocksHaveAnExponent) {
    EXPECT_EQ(format(12345678.9), "1.235e+07");
    EXPECT_EQ(format(0.00005), "5.000e-05");
    EXPECT_EQ(format(10000000.0), "10000000") << "the limit itself is written out";
}

TEST(RkTestOutput, HalfAThousandthHasSixDecimals) {
    EXPECT_EQ(format(0.0005), "0.000500");
}

TEST(RkTestOutput, TheFormatIsChosenBeforeRounding) {
    EXPECT_EQ(format(99.96), "100.0");
}

TEST(RkTestOutput, ClocksPerUnitAreDividedByTheUnitsOfACall) {
    Output test;
    test.m_divisor = 256.0;
    test.setTimingResult(512.0, "mine");
    EXPECT_DOUBLE_EQ(test.performance(false), 2.0);
    EXPECT_EQ(fmt(test.m_tool.m_comment), "mine");
}

TEST(RkTestOutput, MillionOperationsASecondComeFromClocksAndFrequency) {
    Output test;
    test.m_flops = 64.0;
    test.setTimingResult(128.0, "");
    EXPECT_DOUBLE_EQ(test.performance(true), 500.0); // at 1000 MHz
    test.setTimingResult(0.0, "");
    EXPECT_EQ(fmt(test.perfString(true)), "") << "no clocks, no rate";
}

TEST(RkTestOutput, ATestWithoutOperationsHasAnEmptyRate) {
    Output test;
    test.setTimingResult(128.0, "");
    EXPECT_EQ(fmt(test.perfString(true)), "");
    EXPECT_FALSE(test.isFloatFunction());
}

TEST(RkTestOutput, TimeOfACallIsInMicroseconds) {
    Output test;
    test.setTimingResult(1500.0, "");
    EXPECT_EQ(fmt(test.usecString(test.m_tool)), "1.5");
}

TEST(RkTestOutput, FieldsArePaddedOnTheSideOfTheSign) {
    EXPECT_EQ(fmt(sFormat(rkString("ab"), 5)), "   ab");
    EXPECT_EQ(fmt(sFormat(rkString("ab"), -5)), "ab   ");
    EXPECT_EQ(fmt(sFormat(rkString("abcdef"), 5)), "abcdef");
    EXPECT_EQ(fmt(sFormat(1.25, 6)), "  1.25");
    EXPECT_EQ(fmt(sFormat(42, -4)), "42  ");
    EXPECT_EQ(fmt(sFormat(42LL, 4)), "  42");
}

TEST(RkTestOutput, WholeNumbersThatAreTooLongFallBackToTheShortForm) {
    EXPECT_EQ(fmt(sFormat(1234567890, 9)), " 1.23e+09");
    EXPECT_EQ(fmt(sFormat(123456789, 5)), "123456789") << "9 characters stay";
    EXPECT_EQ(fmt(sFormat(123456789012LL, 9)), " 1.23e+11");
}

// ---- the console -------------------------------------------------------------------

TEST(RkTestOutput, AResultLineLeadsToTheClocksPerUnit) {
    Output test;
    test.m_divisor = 256.0;
    test.setTimingResult(512.0, "nLps=64");
    test.m_tool.m_actualAccuracy = 0.05;
    EXPECT_EQ(fmt(test.testResultString()),
              "  acc=5.0%   nLps=64     perf=      512/      256=     2.00 clocks");
}

TEST(RkTestOutput, ManualAndStatisticTellNoAccuracy) {
    Output test;
    test.setTimingResult(5.0, "nLps=1");
    for (int method : {rkTool::Manual, rkTool::Statistic}) {
        test.m_tool.m_method = method;
        EXPECT_EQ(fmt(test.testResultString()), "  nLps=1      perf=        5/        1=     5.00 clocks");
    }
    test.m_tool.m_method = rkTool::Iterative;
    EXPECT_EQ(fmt(test.testResultString()).substr(0, 6), "  acc=");
}

TEST(RkTestOutput, AWarningNamesItselfItsParametersAndItsPerformance) {
    Output test;
    Counted size("size", 1);
    test.m_parms.push_back(&size);
    size.firstValue();
    test.m_tool.m_method = rkTool::Manual;
    test.setTimingResult(5.0, "nLps=1");
    CaptureLog log(7);
    test.outputResult(rkResLibWarning);
    EXPECT_EQ(log.text(),
              "-- lib function warning on test parameters:\nsize=1 \n-- performance:\n"
              "  nLps=1      perf=        5/        1=     5.00 clocks\n");
}

TEST(RkTestOutput, AnErrorIsToldAtTheLevelOfErrorsAndLeavesNoRow) {
    Output test;
    CaptureLog log(1);
    Rows rows;
    test.outputResult(rkResDataError);
    EXPECT_EQ(log.text(), "-- test data error on test parameters:\n\n");
    EXPECT_EQ(rows.text(), "");
}

TEST(RkTestOutput, NoResultWritesNothing) {
    Output test;
    CaptureLog log(127);
    Rows rows;
    test.outputResult(rkResNotRun);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(rows.text(), "");
}

TEST(RkTestOutput, WarningsStaySilentAtTheLevelOfErrorsButTheirRowIsWritten) {
    Output test;
    test.setTimingResult(5.0, "c");
    CaptureLog log(1);
    Rows rows;
    test.outputResult(rkResLibWarning);
    EXPECT_EQ(log.text(), "");
    EXPECT_NE(rows.text(), "");
}

// ---- rows --------------------------------------------------------------------------

TEST(RkTestOutput, ARowHasFunctionParametersAndResultsInTheirColumns) {
    Output test("keliName");
    Counted size("size", 1);
    test.m_parms.push_back(&size);
    size.firstValue();
    test.m_divisor = 2.0;
    test.m_flops = 10.0;
    test.setTimingResult(50.0, "nLps=4");
    Rows rows;
    test.outputResult(rkResSuccess);
    EXPECT_EQ(rows.text(), "keliName,1,-,nLps=4,25.0,px,0.05,200\n");
}

TEST(RkTestOutput, ZeroClocksLeaveClocksAndRateEmpty) {
    Output test("f");
    test.m_flops = 10.0;
    test.setTimingResult(0.0, "c");
    Rows rows;
    test.outputResult(rkResSuccess);
    EXPECT_EQ(rows.text(), "f,-,-,c,-,px,0,-\n");
}

TEST(RkTestOutput, HotFunctionsAreMarkedInTheInterestColumn) {
    g_pHotList = new rkList<rkString>;
    g_pHotList->push_back("f");
    Output hot("f"), cold("g");
    Rows rows;
    rkTest::m_numResultColm = 6;
    for (Output *test : {&hot, &cold}) {
        test->setTimingResult(5.0, "c");
        test->outputResult(rkResSuccess);
    }
    EXPECT_EQ(rows.text(), "f,-,-,c,5.00,px,0.005,-,Hot\ng,-,-,c,5.00,px,0.005,-,-\n");
}

TEST(RkTestOutput, TheCommentOfTheCacheStandsInFront) {
    Counted size("size", 1);
    Output test;
    test.m_cacheIterator = new rkCacheIteratorInt(size, nullptr, nullptr);
    test.m_cacheIterator->m_value = 1;
    test.setTimingResult(1.0, "nLps=2");
    EXPECT_EQ(fmt(test.getComment()), "outofCache nLps=2");
    test.m_deprecatedFlag = true;
    EXPECT_EQ(fmt(test.getComment()), "deprecated");
}

TEST(RkTestOutput, WithoutADeprecatedParameterNoSecondRowIsHeldBack) {
    Output test("f");
    Rows rows;
    test.putTableResult_Deprecated(rkResSuccess);
    g_cstrm.linePostponeOut(8);
    EXPECT_EQ(rows.text(), "");
}

TEST(RkTestOutput, ADeprecatedValueGivesASecondRowThatIsHeldBack) {
    Output test("f");
    rkDefault<int> mode(1, "mode");
    mode.addDeprecated(1, "one");
    test.m_parms.push_back(&mode);
    test.setTimingResult(5.0, "c");
    Rows rows;
    test.outputResult(rkResSuccess);
    EXPECT_EQ(rows.text(), "f,1,-,c,5.00,px,0.005,-\n");
    g_cstrm.linePostponeOut(8);
    EXPECT_EQ(rows.text(), "f,1,-,c,5.00,px,0.005,-\nf,one,-,deprecated,5.00,px,0.005,-\n");
    EXPECT_FALSE(test.m_deprecatedFlag);
}

TEST(RkTestOutput, NameRowsHoldTheNamesOfTheParameters) {
    Output test("f");
    Counted size("size", 1);
    test.m_parms.push_back(&size);
    Rows rows;
    Capture<rkCStream> names(g_qstrm);
    rkSession::m_nameMode = 1;
    test.putTableName();
    EXPECT_EQ(rows.text(), "f,size,-,parmNames,-,-,-,-\n");
    EXPECT_EQ(names.text(), "");
    rkSession::m_nameMode = 2;
    test.putTableName();
    EXPECT_EQ(names.text(), "f,size,-,parmNames,-,-,-,-\n");
}

TEST(RkTestOutput, WhatIsShownOfASetIsInTheTableAlready) {
    class Watching : public Output {
    public:
        using Output::Output;
        rkString getComment()
            override { // the last of the texts of a row that a test file may have of its own
            m_shown += shown();
            return Output::getComment();
        }
        string shown() const {
            char text[2000];
            ssize_t n = pread(m_file, text, sizeof text, 0);
            return n > 0 ? string(text, n) : string();
        }
        int m_file = -1;
        string m_shown;
    } test("f");
    for (OutputLevel level : {MsgError | MsgWarning | MsgResult, MsgResult | MsgTrace}) {
        CaptureLog log(level);
        test.m_file = fileno(log.m_stream.m_file);
        test.m_shown = "";
        test.setTimingResult(5.0, "c");
        test.outputResult(rkResSuccess);
        EXPECT_EQ(test.m_shown.find("perf="), string::npos) << test.m_shown;
        EXPECT_NE(test.shown().find("perf="), string::npos) << test.shown();
    }
}

TEST(RkTestOutput, AFaultInTheNameRowLeavesTheTablesInTheirPlaces) {
    class NoNames : public Output {
    public:
        void parmsNameToCstrm() override { throw rkException(rkString("no names")); }
    } test;
    rkSession::m_nameMode = 2;
    Rows rows;
    Capture<rkCStream> names(g_qstrm);
    EXPECT_EQ(test.run(), rkResException);
    Output next("next");
    next.setTimingResult(5.0, "c");
    next.outputResult(rkResSuccess);
    EXPECT_EQ(rows.text(), "next,-,-,c,5.00,px,0.005,-\n");
    EXPECT_EQ(names.text(), "");
}

TEST(RkTitle, TheTitleRowCountsTheColumns) {
    rkSession session;
    CaptureTable table;
    session.putTableTitle();
    EXPECT_EQ(table.text(),
              "funcBase,funcDataType,funcDescriptor,Len/Size,Parm1,Parm2,Parm3,Parm4,scaleFactor,"
              "Comment,Clocks,per,Time (usec),MFlops\n");
    EXPECT_EQ(rkTest::m_numParmsColm, 9);
    EXPECT_EQ(rkTest::m_numResultColm, 5);
}

TEST(RkTitle, HotRunsHaveAnInterestColumnAndNamesATableOfTheirOwn) {
    rkSession session;
    session.m_nameMode = 2;
    rkTest::m_hot = 1;
    CaptureTable table;
    Capture<rkCStream> names(g_qstrm);
    session.putTableTitle();
    EXPECT_EQ(rkTest::m_numResultColm, 6);
    EXPECT_EQ(table.text(), names.text());
    EXPECT_EQ(table.text().substr(table.text().size() - 17), ",MFlops,Interest\n");
}

TEST(RkTitle, ADerivedSessionCanHaveThePlainTitles) {
    class Plain : public rkSession {
        void funcTitleToCStream() override { rkFuncTitleToCStream(); }
        void parmsTitleToCStream() override { rkParmsTitleToCStream(); }
    } session;
    CaptureTable table;
    session.putTableTitle();
    EXPECT_EQ(
        table.text(),
        "function,Parm1,Parm2,Parm3,Parm4,Parm5,Parm6,Parm7,Parm8,Comment,Clocks,per,Time (usec),MFlops\n");
}

// ---- how a test is made --------------------------------------------------------------

namespace {

rkResult someLoop(int, long long *) {
    return rkResSuccess;
}
rkResult someStat(int *, long long *) {
    return rkResSuccess;
}
rkResult someOld(rkTool &, int) {
    return rkResSuccess;
}
int someCall() {
    return 0;
}

string registration(rkTest &test) {
    return test.regInfo().c_str();
}

} // namespace

TEST(RkRegInfo, ListsTheRoutinesAndTheOneThatMeasures) {
    rkTest test(someCall, someCall, someLoop, someStat, "f", "s", "Class//KM_REG_I");
    EXPECT_EQ(
        registration(test),
        "   Test has been registered by KM_REG_I macro with loopMethod, statMethod, funcCall, funcInit.\n"
        "   loopMethod is called for measuring.");
    test.m_tool.setMethodStat(1, 1);
    EXPECT_TRUE(registration(test).find("\n   statMethod is called") != string::npos);
    test.m_tool.m_useData = true;
    EXPECT_TRUE(registration(test).find("\n   funcCall with Set&Use is called") != string::npos);
}

TEST(RkRegInfo, ATestWithoutRoutinesSaysSo) {
    rkTest test(rkFuncLoop(nullptr), rkFuncStat(nullptr), "f", "s", "Class");
    EXPECT_EQ(
        registration(test),
        "   Test has been registered without any function to call.\n No standard timing method is available");
}

TEST(RkRegInfo, NamesTheRoutineForEveryKindOfTest) {
    rkTest old(someOld, "f", "s", "C");
    EXPECT_EQ(registration(old),
              "   Test has been registered with oldMethod.\n   oldMethod is called for measuring.");
    rkTest call(someCall, nullptr, nullptr, nullptr, "f", "s", "C");
    EXPECT_EQ(registration(call),
              "   Test has been registered with funcCall.\n   funcCall is called for measuring.");
    rkTest stat(rkFuncLoop(nullptr), someStat, "f", "s", "C");
    EXPECT_TRUE(registration(stat).find("\n   statMethod is called") != string::npos);
    rkTest loop(someLoop, rkFuncStat(nullptr), "f", "s", "C");
    loop.m_tool.setMethodStat(1, 1);
    EXPECT_TRUE(registration(loop).find("\n   loopMethod is called") != string::npos);
    rkTest both(someLoop, someStat, "f", "s", "C");
    both.m_tool.m_useCalls = true;
    EXPECT_TRUE(registration(both).find("\n   statMethod is called") != string::npos)
        << "the search goes by calls";
}

TEST(RkRegInfo, TheLineIsWrittenAtTheLevelOfPerformance) {
    Output test;
    {
        CaptureLog log(3);
        test.outputRegInfo();
        EXPECT_EQ(log.text(), "");
    }
    CaptureLog log(7);
    test.outputRegInfo();
    EXPECT_EQ(log.text(), fmt(test.regInfo()) + "\n");
}

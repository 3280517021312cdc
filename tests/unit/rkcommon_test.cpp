// rkcommon_test.cpp - tests of rkcommon.

#include <gtest/gtest.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkcommon.h"
#include "rkiterator.h"
#include "rkmemory.h"
#include "rkregister.h"
#include "rksession.h"
#include "rktool.h"
#include "tempdir.h"

namespace {

enum Ask { AskTiming = 1, AskParams = 2, AskMisalign = 4 };

std::string bar() {
    return " " + std::string(78, '*') + "\n";
}

// A title in its frame, the blanks counted by hand.
std::string framed(int left, std::string const &title, int right) {
    return bar() + " *" + std::string(left, ' ') + title + std::string(right, ' ') + "*\n" + bar();
}

std::string timingTitle() {
    return framed(23, "Specify timing method, please", 24);
}

std::string paramsTitle() {
    return framed(19, "Specify common test parameters, please", 19);
}

std::string misalignTitle() {
    return framed(21, "Specify vectors alignment, please", 22);
}

std::string endTitle() {
    return framed(24, "End of common specifications", 24);
}

// A session with a user who types the answers. Everything that it sets begins with other values.
class RkCommon : public testing::Test {
protected:
    RkCommon() {
        g_tool.m_method = -1;
        g_tool.m_accuracy = -1;
        rkSetVectorShift(4096);
        rkSetVectorAlign(63);
        rkSetAlignSrc(true);
        rkSetAlignByByte(true);
    }
    // Answers all groups of the mask and returns what was asked.
    std::string answer(int mask, std::string const &answers) {
        ConsoleScript console(answers);
        m_session.addAskMode(mask);
        m_session.readCommonData();
        return console.questions();
    }
    double accuracyOf(char const *percent) {
        g_istrm.m_data.set("Accuracy", percent);
        readAccuracy(rkTool::Auto);
        return g_tool.m_accuracy;
    }
    TempDir m_dir;
    CaptureLog m_log;
    rkSession m_session;
};

void presetManual(rkTool &tool) {
    tool.setMethodLoop(77);
}

void presetStatistic(rkTool &tool) {
    tool.setMethodStat(44, 5555);
}

void presetEndlessStatistic(rkTool &tool) {
    tool.setMethodStat(44, 5000000000ll);
}

void presetIterative(rkTool &tool) {
    tool.setMethodBest(4, 64, 999);
}

} // namespace

// ---- without a console --------------------------------------------------------

TEST_F(RkCommon, BatchTakesTheDefaultsWithoutQuestionOrTitle) {
    EXPECT_EQ("", answer(0, "never read\n"));
    EXPECT_EQ(" Method = Auto\n Accuracy = 5\n AlignVectorsBy = element\n VectorAlign = 0\n", m_log.text());
    EXPECT_TRUE(g_tool.getMethodAuto());
    EXPECT_DOUBLE_EQ(0.05, g_tool.m_accuracy);
    EXPECT_FALSE(rkGetAlignByByte());
    EXPECT_EQ(0, rkGetVectorAlign());
    EXPECT_EQ(512, rkGetVectorShift());
    EXPECT_TRUE(rkGetAlignSrc()) << "not touched without a misalignment";
}

TEST_F(RkCommon, ConsoleOfAnEarlierGroupIsDetached) {
    g_istrm.setIStream(&c_in);
    EXPECT_FALSE(m_session.readTimingMethod());
    EXPECT_FALSE(g_istrm.hasConsole());
    g_istrm.setIStream(&c_in);
    EXPECT_FALSE(m_session.readDataOffset());
    EXPECT_FALSE(g_istrm.hasConsole());
}

TEST_F(RkCommon, AbbreviatedMethodFromData) {
    g_istrm.m_data.set("Method=man");
    g_istrm.m_data.set("NumLoops=33");
    m_session.readTimingMethod();
    EXPECT_EQ(" Method = Manual\n NumLoops = 33\n", m_log.text());
    int loops = 0;
    EXPECT_TRUE(g_tool.getMethodLoop(loops));
    EXPECT_EQ(33, loops);
    EXPECT_EQ(-1, g_tool.m_accuracy) << "only searching methods have one";
}

TEST_F(RkCommon, UnknownMethodLeavesAuto) {
    g_istrm.m_data.set("Method=x");
    m_session.readTimingMethod();
    EXPECT_EQ("-Invalid value of Method = x\n Method = Auto\n Accuracy = 5\n", m_log.text());
    EXPECT_TRUE(g_tool.getMethodAuto());
}

TEST_F(RkCommon, StatisticHasShortDefaults) {
    g_istrm.m_data.set("Method=Stat");
    m_session.readTimingMethod();
    EXPECT_EQ(" Method = Statistic\n NumCalls = 3\n TotalCpuClocks = 10000\n", m_log.text());
    int calls = 0;
    long long clocks = 0;
    EXPECT_TRUE(g_tool.getMethodStat(calls, clocks));
    EXPECT_EQ(3, calls);
    EXPECT_EQ(10000, clocks);
    EXPECT_EQ(-1, g_tool.m_accuracy);
}

TEST_F(RkCommon, IterativeTakesTheBoundsOfAuto) {
    g_istrm.m_data.set("Method=ITER");
    m_session.readTimingMethod();
    EXPECT_EQ(" Method = Iterative\n StartNumLoops = 1\n StopNumLoops = 2048\n Accuracy = 5\n", m_log.text());
    int first = 0, max = 0;
    long long clocks = 0;
    EXPECT_TRUE(g_tool.getMethodBest(first, max, clocks));
    EXPECT_EQ(1, first);
    EXPECT_EQ(2048, max);
    EXPECT_EQ(10, clocks) << "not Iterative's own 100";
    EXPECT_DOUBLE_EQ(0.05, g_tool.m_accuracy);
}

TEST_F(RkCommon, ManualHasTenLoops) {
    g_istrm.m_data.set("Method=Manual");
    m_session.readTimingMethod();
    int loops = 0;
    EXPECT_TRUE(g_tool.getMethodLoop(loops));
    EXPECT_EQ(10, loops);
}

TEST_F(RkCommon, IniFileGivesWhatDataDoNot) {
    ASSERT_TRUE(g_istrm.setIniFile(
        m_dir.write("f.ini",
                    "[Rakova]\nMethod=Manual\nNumLoops=50\nVectorAlign=8\nMisalignFirstVectorOnly=yes\n"),
        false));
    g_istrm.m_data.set("NumLoops=60");
    EXPECT_EQ("", answer(0, ""));
    EXPECT_EQ(
        " Method = Manual\n NumLoops = 60\n AlignVectorsBy = element\n VectorAlign = 8\n"
        " MisalignFirstVectorOnly = yes\n",
        m_log.text());
    EXPECT_EQ(60, g_tool.m_numLoops);
    EXPECT_EQ(8, rkGetVectorAlign());
}

TEST_F(RkCommon, DataAndIniAreNotAskedAtTheConsole) {
    ASSERT_TRUE(g_istrm.setIniFile(m_dir.write("f.ini", "[Rakova]\nMethod=Statistic\n"), false));
    g_istrm.m_data.set("NumCalls=7");
    EXPECT_EQ("\n TotalCpuClocks [10000] = ", answer(AskTiming, "123\n"));
    EXPECT_EQ(7, g_tool.m_minCalls);
    EXPECT_EQ(123, g_tool.m_maxClocks);
}

// ---- presets ------------------------------------------------------------------

TEST_F(RkCommon, PresetManualIsTheDefaultOfItsQuestions) {
    rkRegTimingMethod(presetManual);
    m_session.readTimingMethod();
    EXPECT_EQ(" Method = Manual\n NumLoops = 77\n", m_log.text());
    EXPECT_EQ(77, g_tool.m_numLoops);
}

TEST_F(RkCommon, PresetStatisticIsTheDefaultOfItsQuestions) {
    rkRegTimingMethod(presetStatistic);
    m_session.readTimingMethod();
    EXPECT_EQ(" Method = Statistic\n NumCalls = 44\n TotalCpuClocks = 5555\n", m_log.text());
    EXPECT_EQ(44, g_tool.m_minCalls);
    EXPECT_EQ(5555, g_tool.m_maxClocks);
}

TEST_F(RkCommon, PresetClocksAreCutToWhatTheParameterHolds) {
    rkRegTimingMethod(presetEndlessStatistic);
    m_session.readTimingMethod();
    EXPECT_EQ(2147483647, g_tool.m_maxClocks);
}

TEST_F(RkCommon, PresetIterativeKeepsItsClocks) {
    rkRegTimingMethod(presetIterative);
    m_session.readTimingMethod();
    EXPECT_EQ(" Method = Iterative\n StartNumLoops = 4\n StopNumLoops = 64\n Accuracy = 5\n", m_log.text());
    EXPECT_EQ(4, g_tool.m_firstLoops);
    EXPECT_EQ(64, g_tool.m_maxLoops);
    EXPECT_EQ(999, g_tool.m_minClocks);
}

TEST_F(RkCommon, PresetOfAnotherMethodDoesNotCount) {
    rkRegTimingMethod(presetManual);
    g_istrm.m_data.set("Method=Iterative");
    m_session.readTimingMethod();
    EXPECT_EQ(1, g_tool.m_firstLoops);
    EXPECT_EQ(2048, g_tool.m_maxLoops);
    EXPECT_EQ(10, g_tool.m_minClocks);
}

// ---- accuracy -----------------------------------------------------------------

TEST_F(RkCommon, AccuracyInPercent) {
    EXPECT_DOUBLE_EQ(0.01, accuracyOf("1"));
    EXPECT_DOUBLE_EQ(0.07, accuracyOf("7"));
}

TEST_F(RkCommon, AccuracyOfFiftyIsTheLast) {
    EXPECT_EQ(0.5, accuracyOf("50"));
}

TEST_F(RkCommon, AccuracyOfFiftyOneIsAny) {
    EXPECT_EQ(500.0, accuracyOf("51"));
}

TEST_F(RkCommon, AccuracyOfZeroIsAny) {
    EXPECT_EQ(500.0, accuracyOf("0"));
    EXPECT_EQ(500.0, accuracyOf("-3"));
}

TEST_F(RkCommon, AccuracyIsReadForSearchingMethodsAlone) {
    for (int method : {rkTool::Manual, rkTool::Statistic}) {
        readAccuracy(method);
        EXPECT_EQ(-1, g_tool.m_accuracy);
    }
    EXPECT_EQ("", m_log.text());
    readAccuracy(rkTool::Iterative);
    EXPECT_EQ(0.05, g_tool.m_accuracy);
}

// ---- questions ----------------------------------------------------------------

TEST_F(RkCommon, AsksForTheTimingMethod) {
    EXPECT_EQ("\n Method {Auto|Manual|Statistic|Iterative} [Auto] = \n Accuracy, % [5] = ",
              answer(AskTiming, "\n9\n"));
    EXPECT_EQ(timingTitle() + " Method = Auto\n Accuracy = 9\n AlignVectorsBy = element\n VectorAlign = 0\n" +
                  endTitle(),
              m_log.text());
    EXPECT_DOUBLE_EQ(0.09, g_tool.m_accuracy);
}

TEST_F(RkCommon, AsksForLoops) {
    EXPECT_EQ("\n Method {Auto|Manual|Statistic|Iterative} [Auto] = \n NumLoops [10] = ",
              answer(AskTiming, "m\n20\n"));
    EXPECT_EQ(20, g_tool.m_numLoops);
}

TEST_F(RkCommon, AsksForCallsAndClocks) {
    EXPECT_EQ(
        "\n Method {Auto|Manual|Statistic|Iterative} [Auto] = \n NumCalls [3] = \n TotalCpuClocks [10000] = ",
        answer(AskTiming, "s\n20\n30\n"));
    EXPECT_EQ(20, g_tool.m_minCalls);
    EXPECT_EQ(30, g_tool.m_maxClocks);
}

TEST_F(RkCommon, AsksForBounds) {
    EXPECT_EQ(
        "\n Method {Auto|Manual|Statistic|Iterative} [Auto] = \n StartNumLoops [1] = "
        "\n StopNumLoops [2048] = \n Accuracy, % [5] = ",
        answer(AskTiming, "i\n2\n512\n\n"));
    EXPECT_EQ(2, g_tool.m_firstLoops);
    EXPECT_EQ(512, g_tool.m_maxLoops);
}

TEST_F(RkCommon, AsksForTheMisalignment) {
    EXPECT_EQ(
        "\n AlignVectorsBy {byte|element} [element] = \n VectorAlign by Byte, 0..63 [0] = "
        "\n MisalignFirstVectorOnly {yes|no} [no] = ",
        answer(AskMisalign, "by\n70\ny\n"));
    EXPECT_EQ(" Method = Auto\n Accuracy = 5\n" + misalignTitle() +
                  " AlignVectorsBy = byte\n VectorAlign = 6\n MisalignFirstVectorOnly = yes\n" + endTitle(),
              m_log.text());
    EXPECT_TRUE(rkGetAlignByByte());
    EXPECT_EQ(6, rkGetVectorAlign());
    EXPECT_TRUE(rkGetAlignSrc());
    EXPECT_EQ(4096, rkGetVectorShift()) << "not set with a misalignment";
}

TEST_F(RkCommon, PromptNamesTheUnitOfTheMisalignment) {
    EXPECT_EQ("\n AlignVectorsBy {byte|element} [element] = \n VectorAlign by Element, 0..63 [0] = ",
              answer(AskMisalign, "\n\n"));
}

TEST_F(RkCommon, MisalignmentOfAllVectors) {
    answer(AskMisalign, "\n5\n\n");
    EXPECT_EQ(5, rkGetVectorAlign());
    EXPECT_FALSE(rkGetAlignSrc());
}

TEST_F(RkCommon, MutualShiftIsReadFromNoSource) {
    g_istrm.m_data.set("MutualVectorShift=1024");
    EXPECT_EQ("\n AlignVectorsBy {byte|element} [element] = \n VectorAlign by Element, 0..63 [0] = ",
              answer(AskMisalign, "\n\n2048\n"));
    EXPECT_EQ(512, rkGetVectorShift());
}

TEST_F(RkCommon, MisalignmentOfSeventyIsSix) {
    g_istrm.m_data.set("VectorAlign=70");
    m_session.readDataOffset();
    EXPECT_EQ(6, rkGetVectorAlign());
}

TEST_F(RkCommon, MisalignmentOfSixtyFourIsNone) {
    g_istrm.m_data.set("VectorAlign=64");
    m_session.readDataOffset();
    EXPECT_EQ(0, rkGetVectorAlign());
    EXPECT_EQ(512, rkGetVectorShift());
}

TEST_F(RkCommon, NegativeMisalignmentKeepsItsSign) {
    g_istrm.m_data.set("VectorAlign=-1");
    m_session.readDataOffset();
    EXPECT_EQ(-1, rkGetVectorAlign());
}

TEST_F(RkCommon, BadMisalignmentIsReported) {
    g_istrm.m_data.set("VectorAlign=x");
    m_session.readDataOffset();
    EXPECT_EQ(" AlignVectorsBy = element\n-Invalid value of VectorAlign = x\n VectorAlign = 0\n",
              m_log.text());
    EXPECT_EQ(0, rkGetVectorAlign());
}

// ---- common parameters --------------------------------------------------------

TEST_F(RkCommon, CommonParametersAreAskedOnceInTheirOrder) {
    rkDefault<int> size(16, "size", "Size of block");
    rkIterator<int> step("step", "");
    step.add(1);
    rkRegParm(size);
    rkRegParm(step);
    EXPECT_EQ("\n Size of block [16] = \n step [1] = ", answer(AskParams, "8\n2;3\n"));
    EXPECT_EQ(" Method = Auto\n Accuracy = 5\n" + paramsTitle() +
                  " size = 8\n step = 2; 3\n AlignVectorsBy = element\n VectorAlign = 0\n" + endTitle(),
              m_log.text());
    EXPECT_FALSE(size.m_readable);
    EXPECT_FALSE(step.m_readable);

    ConsoleScript later("99\n");
    g_istrm.setIStream(&c_in);
    size.fromIStream(g_istrm);
    EXPECT_EQ("", later.questions());
    EXPECT_EQ(8, size.value());
}

TEST_F(RkCommon, CommonParametersComeFromDataWithoutAConsole) {
    rkDefault<int> size(16, "size");
    rkRegParm(size);
    g_istrm.m_data.set("size=24");
    g_istrm.setIStream(&c_in);
    EXPECT_FALSE(m_session.readTestParameters());
    EXPECT_FALSE(g_istrm.hasConsole());
    EXPECT_EQ(" size = 24\n", m_log.text());
    EXPECT_EQ(24, size.value());
    EXPECT_FALSE(size.m_readable);
}

TEST_F(RkCommon, WithoutCommonParametersThereIsNoTitleForThem) {
    EXPECT_EQ("", answer(AskParams, ""));
    EXPECT_EQ(" Method = Auto\n Accuracy = 5\n AlignVectorsBy = element\n VectorAlign = 0\n", m_log.text());
}

TEST_F(RkCommon, EmptyListOfCommonParametersIsNotAsked) {
    rkDefault<int> size(16, "size");
    rkRegParm(size);
    g_pParmList->clear();
    m_session.addAskMode(AskParams);
    EXPECT_FALSE(m_session.readTestParameters());
    EXPECT_EQ("", m_log.text());
}

TEST_F(RkCommon, EveryGroupTellsWhetherItAsked) {
    ConsoleScript console("");
    rkDefault<int> size(16, "size");
    rkRegParm(size);
    m_session.addAskMode(AskTiming | AskParams | AskMisalign);
    EXPECT_TRUE(m_session.readTimingMethod());
    EXPECT_TRUE(m_session.readTestParameters());
    EXPECT_TRUE(m_session.readDataOffset());
}

TEST_F(RkCommon, AllGroupsAreClosedByOneEnd) {
    answer(AskTiming | AskMisalign, "\n\n\n\n");
    EXPECT_EQ(timingTitle() + " Method = Auto\n Accuracy = 5\n" + misalignTitle() +
                  " AlignVectorsBy = element\n VectorAlign = 0\n" + endTitle(),
              m_log.text());
}

TEST_F(RkCommon, EndOfTheInputTakesTheDefaults) {
    answer(AskTiming | AskMisalign, "");
    EXPECT_TRUE(g_tool.getMethodAuto());
    EXPECT_DOUBLE_EQ(0.05, g_tool.m_accuracy);
    EXPECT_EQ(0, rkGetVectorAlign());
}

// ---- the two settings ---------------------------------------------------------

TEST(DefaultAlign, IsTakenModulo64WithItsSign) {
    DefaultAlign align(0, "VectorAlign");
    EXPECT_EQ(6, align.validItem("70"));
    EXPECT_EQ(63, align.validItem("63"));
    EXPECT_EQ(0, align.validItem("64"));
    EXPECT_EQ(-1, align.validItem("-1"));
    EXPECT_EQ(-1, align.validItem("-65"));
}

TEST(DefaultAlign, BadTextIsRefused) {
    DefaultAlign align(0, "VectorAlign");
    try {
        align.translate("x");
        FAIL();
    } catch (rkException &e) {
        EXPECT_STREQ("Invalid value of VectorAlign = x", e.info());
    }
}

TEST(DefaultShift, LosesItsLowSixBits) {
    DefaultShift shift(512, "MutualVectorShift");
    EXPECT_EQ(512, shift.validItem("512"));
    EXPECT_EQ(512, shift.validItem("575"));
    EXPECT_EQ(0, shift.validItem("63"));
    EXPECT_EQ(-64, shift.validItem("-1"));
}

TEST(DefaultShift, BadTextIsRefused) {
    DefaultShift shift(512, "MutualVectorShift");
    try {
        shift.translate("x");
        FAIL();
    } catch (rkException &e) {
        EXPECT_STREQ("Invalid value of MutualVectorShift = x", e.info());
    }
}

// ---- the frame ----------------------------------------------------------------

TEST(EnterTitle, CentresItsText) {
    EXPECT_EQ(framed(38, "", 38), str(rkSession::getEnterTitle("")));
    EXPECT_EQ(framed(37, "ab", 37), str(rkSession::getEnterTitle("ab")));
    EXPECT_EQ(framed(36, "abc", 37), str(rkSession::getEnterTitle("abc")));
}

TEST(EnterTitle, WidestTextThatFits) {
    std::string text(76, 'x');
    EXPECT_EQ(framed(0, text, 0), str(rkSession::getEnterTitle(text.c_str())));
}

TEST(EnterTitle, LongTextStandsOutOfItsFrame) {
    for (int length : {77, 80, 200}) {
        std::string text(length, 'x');
        EXPECT_EQ(framed(0, text, 0), str(rkSession::getEnterTitle(text.c_str())));
    }
}

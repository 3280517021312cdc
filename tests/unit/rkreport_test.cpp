// rkreport_test.cpp - tests of the blocks of the report.

#include "rkreport.h"

#include <gtest/gtest.h>

#include <ctime>
#include <initializer_list>
#include <string>

#include "capture.h"
#include "rkconditions.h"
#include "rkcpu.h"
#include "rkhost.h"
#include "rkregister.h"
#include "rksession.h"
#include "rkticker.h"

namespace {

const std::string kSeparator = "+" + std::string(77, '-') + "+\n";
const time_t kStart = 1000000000;

rkTest *newTest(char const *name, char const *info = "rk_Test/a description/KM_REG",
                char const *file = "some/path/source.cpp") {
    rkTest *test =
        new rkTest(static_cast<rkFuncLoop>(nullptr), static_cast<rkFuncStat>(nullptr), name, file, info);
    test->m_startTime = kStart;
    test->m_endTime = kStart + 75;
    return test;
}

// Deletes its tests at the end of the case; the library's lists begin empty.
class Tests : public rkTestList {
public:
    Tests() {
        m_startTime = kStart;
        m_endTime = kStart;
        if (g_pLibInfoList) g_pLibInfoList->clear();
        if (g_pLibFuncList) g_pLibFuncList->clear();
    }
    ~Tests() override {
        for (rkTest *test : *this) delete test;
    }
    rkTest *add(char const *name, char const *info = "rk_Test/a description/KM_REG",
                char const *file = "some/path/source.cpp") {
        push_back(newTest(name, info, file));
        return *--end();
    }
};

// Without its line feed; the hour depends on the time zone.
std::string timeOf(time_t time) {
    std::string text = ctime(&time);
    text.pop_back();
    return text;
}

std::string framed(std::string const &left, std::string const &right = "") {
    std::string line = "| " + left;
    line.resize(78 - right.size(), ' ');
    return line + right + "|\n";
}

std::string contents(rkList<rkString> const &list) {
    std::string all;
    for (rkString const &text : list) all += std::string(text.c_str()) + ";";
    return all;
}

template <class Block>
std::string onConsole(Block &block, OutputLevel level, MessageLevel message = MsgError) {
    CaptureLog log(level);
    g_ostrm << message;
    g_ostrm << block;
    EXPECT_EQ(g_ostrm.msgLevel(), message);
    g_ostrm << EndMessage;
    return log.text();
}

template <class Block>
std::string inTable(Block &block) {
    rkCStream table;
    Capture<rkCStream> file(table);
    table << block;
    return file.text();
}

int codeAvx() {
    return 70;
}

// A title must not measure the frequency, which takes seconds.
class RkReportTitleTest : public ::testing::Test {
protected:
    void SetUp() override {
        rkCpuTicker::m_freqMHz = 2000;
        kel_GetCpuType = codeAvx;
        m_cpu = cpuInfo().c_str();
        m_os = rkOS().text();
        m_host = rkHost().text();
    }
    Tests m_tests;
    std::string m_cpu, m_os, m_host;
};

} // namespace

// ---- title --------------------------------------------------------------------

TEST_F(RkReportTitleTest, PairsInTheirOrder) {
    rkReportTitle title(m_tests);
    EXPECT_EQ(contents(title),
              "CPU;" + m_cpu + ";OS;" + m_os + ";Computer;" + m_host + ";Start;" + timeOf(kStart) + ";");
    EXPECT_STREQ(title.m_format.c_str(), " %-9s: %s");
}

TEST_F(RkReportTitleTest, ConsoleBlockHasALineForEachLibrary) {
    rkRegLibInfo("kelvc 1.0");
    rkRegLibInfo("keli 1.1");
    rkReportTitle title(m_tests);
    EXPECT_EQ(onConsole(title, 7), kSeparator + framed("CPU      : " + m_cpu) + framed("OS       : " + m_os) +
                                       framed("Computer : " + m_host) + framed("Library  : kelvc 1.0") +
                                       framed("Library  : keli 1.1") + framed("Test     : Timing") +
                                       framed("", timeOf(kStart)) + kSeparator);
}

TEST_F(RkReportTitleTest, GoesOutAtTheLevelOfErrorsWhateverTheMessage) {
    rkReportTitle title(m_tests);
    EXPECT_EQ(onConsole(title, 1, MsgData), onConsole(title, 7));
    EXPECT_EQ(onConsole(title, 2), "");
}

TEST_F(RkReportTitleTest, TextLongerThanTheFrameHasNoRightBorder) {
    std::string longText(70, 'x');
    rkRegLibInfo(longText.c_str());
    rkReportTitle title(m_tests);
    EXPECT_NE(onConsole(title, 7).find("| Library  : " + longText + "\n"), std::string::npos);
}

TEST_F(RkReportTitleTest, TableHasALineForEachPair) {
    rkRegLibInfo("kelvc 1.0");
    rkReportTitle title(m_tests);
    EXPECT_EQ(inTable(title), "CPU," + m_cpu + "\nOS," + m_os + "\nComputer," + m_host +
                                  "\nLibrary,kelvc 1.0\nStart," + timeOf(kStart) + "\n");
}

// ---- end ----------------------------------------------------------------------

static std::string summary(std::initializer_list<char const *> values) {
    static char const *const keys[] = {".Number of tests", ".Successes      ", ".Failures       ",
                                       "...Fails        ", ".....-FAIL      ", ".....-EXCPTFAIL ",
                                       "...Warnings     ", ".....-WARNING   ", ".....-BADSTSWRN ",
                                       "...Undefined    ", ".Total time     "};
    std::string all;
    char const *const *key = keys;
    for (char const *value : values) all += std::string(*key++) + ";" + value + ";";
    return all;
}

TEST(RkReportEnd, WithoutTestsAllIsZero) {
    Tests tests;
    rkReportEnd end(tests);
    EXPECT_EQ(contents(end), summary({"0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "00:00:00"}));
    EXPECT_STREQ(end.m_format.c_str(), "");
}

// Every count is a power of two, so that each sum tells what is in it.
TEST(RkReportEnd, EachCounterIsInTheSumsItBelongsTo) {
    Tests tests;
    for (int i = 0; i < 12; ++i) tests.m_counts[i] = 1 << i;
    tests.m_total = 4095;
    tests.m_endTime = kStart + 3661;
    rkReportEnd end(tests);
    const int ok = 2, badStatus = 8, warnings = 4 + 16 + 32, fails = 128 + 256 + 512, exceptions = 1024;
    const int failures = badStatus + warnings + fails + exceptions;
    auto text = [](int n) { return std::to_string(n); };
    EXPECT_EQ(contents(end),
              summary({text(4095).c_str(), text(ok).c_str(), text(failures).c_str(),
                       text(exceptions + fails).c_str(), text(fails).c_str(), text(exceptions).c_str(),
                       text(badStatus + warnings).c_str(), text(warnings).c_str(), text(badStatus).c_str(),
                       text(4095 - ok - failures).c_str(), "01:01:01"}));
}

TEST(RkReportEnd, ResultOf6IsUndefinedAndNothingElse) {
    Tests tests;
    tests.plus(rkResWarning);
    rkReportEnd end(tests);
    EXPECT_EQ(contents(end), summary({"1", "0", "0", "0", "0", "0", "0", "0", "0", "1", "00:00:00"}));
}

TEST(RkReportEnd, ResultOf11IsUndefinedAndNothingElse) {
    Tests tests;
    tests.plus(rkResError);
    rkReportEnd end(tests);
    EXPECT_EQ(contents(end), summary({"1", "0", "0", "0", "0", "0", "0", "0", "0", "1", "00:00:00"}));
}

TEST(RkReportEnd, ConsoleBlock) {
    Tests tests;
    tests.m_total = 3;
    tests.m_counts[rkResSuccess] = 2;
    tests.m_counts[rkResException] = 1;
    tests.m_endTime = kStart + 59;
    rkReportEnd end(tests);
    std::string expected =
        kSeparator + framed("RK Summary") + framed(".Number of tests : 3") + framed(".Successes       : 2") +
        framed(".Failures        : 1") + framed("...Fails         : 1") + framed(".....-FAIL       : 0") +
        framed(".....-EXCPTFAIL  : 1") + framed("...Warnings      : 0") + framed(".....-WARNING    : 0") +
        framed(".....-BADSTSWRN  : 0") + framed("...Undefined     : 0") +
        framed(".Total time      : 00:00:59") + kSeparator;
    EXPECT_EQ(onConsole(end, 1, MsgData), expected);
    EXPECT_EQ(onConsole(end, 2), "");
}

TEST(RkReportEnd, TableBeginsWithAMark) {
    Tests tests;
    tests.m_total = 3;
    tests.m_counts[rkResSuccess] = 2;
    tests.m_endTime = kStart + 5;
    rkReportEnd end(tests);
    EXPECT_EQ(inTable(end),
              "END_DATA\n"
              ".Number of tests,3\n"
              ".Successes      ,2\n"
              ".Failures       ,0\n"
              "...Fails        ,0\n"
              ".....-FAIL      ,0\n"
              ".....-EXCPTFAIL ,0\n"
              "...Warnings     ,0\n"
              ".....-WARNING   ,0\n"
              ".....-BADSTSWRN ,0\n"
              "...Undefined    ,1\n"
              ".Total time     ,00:00:05\n");
}

// ---- test title ---------------------------------------------------------------

TEST(RkReportTestTitle, OutputLevelAtConstructionDecidesWhatIsTold) {
    Tests tests;
    rkTest *test = tests.add("keliX");
    g_ostrm.setOutLevel(1);
    EXPECT_EQ(contents(rkReportTestTitle(test)), "Function;keliX;" + timeOf(kStart) + ";");
    g_ostrm.setOutLevel(2);
    EXPECT_EQ(
        contents(rkReportTestTitle(test)),
        "Function;keliX;" + timeOf(kStart) + ";Test;rk_Test;;Source;source.cpp;;Description;a description;;");
}

TEST(RkReportTestTitle, FullFormIsAFramedBlock) {
    Tests tests;
    g_ostrm.setOutLevel(3);
    rkReportTestTitle title(tests.add("keliX"));
    EXPECT_EQ(onConsole(title, 3), kSeparator + framed("Function  : keliX", timeOf(kStart)) +
                                       framed("Test      : rk_Test") + framed("Source    : source.cpp") +
                                       framed("Description : a description") + kSeparator);
}

TEST(RkReportTestTitle, ShortFormIsOneLineBetweenBorders) {
    Tests tests;
    g_ostrm.setOutLevel(7);
    rkReportTestTitle title(tests.add("keliX"));
    EXPECT_EQ(onConsole(title, 2, MsgWarning), framed("Function  : keliX", timeOf(kStart)));
    EXPECT_EQ(onConsole(title, 1), framed("Function  : keliX", timeOf(kStart)));
}

TEST(RkReportTestTitle, KeepsToTheMessageLevel) {
    Tests tests;
    rkReportTestTitle title(tests.add("keliX"));
    EXPECT_EQ(onConsole(title, 7, MsgProcess), "");
}

TEST(RkReportTestTitle, TableGetsTwoCellsOfALineThatStaysOpen) {
    Tests tests;
    rkReportTestTitle timing(tests.add("keliX")), information(tests.add("__rkX")),
        later(tests.add("keli__rkX"));
    rkCStream table;
    Capture<rkCStream> file(table);
    table << timing;
    EXPECT_EQ(file.text(), "");
    table.lineOut(0);
    table << information;
    table.lineOut(0);
    table << later;
    table.lineOut(0);
    EXPECT_EQ(file.text(), "keliX,Timing\n__rkX,Information\nkeli__rkX,Timing\n");
}

// ---- test result --------------------------------------------------------------

TEST(RkReportTestResult, WithoutATestIsTheHeaderOfTheSummary) {
    rkReportTestResult header(nullptr);
    EXPECT_EQ(inTable(header),
              "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time "
              "(sec.),SrcName,Result,ExeName\n");
}

TEST(RkReportTestResult, FieldsOfATest) {
    Tests tests;
    rkTest *test = tests.add("keliX");
    test->m_result = rkResDataError;
    rkReportTestResult result(test);
    EXPECT_STREQ(result.m_resultName.c_str(), "DATAFAIL");
    EXPECT_STREQ(result.m_name.c_str(), "keliX");
    EXPECT_EQ(result.m_time.c_str(), timeOf(kStart + 75));
    EXPECT_STREQ(result.m_comment.c_str(), "");
}

TEST(RkReportTestResult, TestThatWasNotRunSaysSo) {
    Tests tests;
    rkReportTestResult result(tests.add("keliX"));
    EXPECT_STREQ(result.m_resultName.c_str(), "UNDEFINED");
    EXPECT_STREQ(result.m_comment.c_str(), "--No measurements have been done\n");
}

TEST(RkReportTestResult, SummaryRowContinuesTheTitlesTwoCells) {
    Tests tests;
    rkTest *test = tests.add("keliX");
    test->m_result = rkResSuccess;
    rkSession::m_exePath = "/some/where/rakova";
    rkReportTestTitle title(test);
    rkReportTestResult result(test);
    rkCStream table;
    Capture<rkCStream> file(table);
    table << title;
    table << result;
    EXPECT_EQ(file.text(), "keliX,Timing,-,-,-,-,rk_Test,75,source.cpp,OK,rakova\n");
}

TEST(RkReportTestResult, BadStatesAreQuestionMarksInTheirOwnCells) {
    Tests tests;
    rkTest *test = tests.add("keliX");
    test->m_result = rkResCtrlStatusWarning;
    rkSession::m_exePath = "rakova";
    test->m_bad87 = true;
    EXPECT_STREQ(rkReportTestResult(test).m_csvLine.c_str(),
                 "-,?,-,-,rk_Test,75,source.cpp,BADSTSWRN,rakova");
    test->m_bad87 = false;
    test->m_badSsx = true;
    EXPECT_STREQ(rkReportTestResult(test).m_csvLine.c_str(),
                 "-,-,-,?,rk_Test,75,source.cpp,BADSTSWRN,rakova");
}

TEST(RkReportTestResult, EmptyLineIsNotWritten) {
    rkReportTestResult result(nullptr);
    result.m_csvLine = "";
    EXPECT_EQ(inTable(result), "");
}

TEST(RkReportTestResult, FullFormIsFramed) {
    Tests tests;
    rkTest *test = tests.add("keliX");
    test->m_result = rkResSuccess;
    rkReportTestResult result(test);
    std::string line = framed("-OK         keliX", timeOf(kStart + 75));
    EXPECT_EQ(onConsole(result, 7), kSeparator + line + kSeparator);
    EXPECT_EQ(onConsole(result, 3, MsgData), kSeparator + line + kSeparator);
}

TEST(RkReportTestResult, ShortFormIsTheLineAlone) {
    Tests tests;
    rkTest *test = tests.add("keliX");
    test->m_result = rkResException;
    rkReportTestResult result(test);
    EXPECT_EQ(onConsole(result, 1), framed("-EXCPTFAIL  keliX", timeOf(kStart + 75)));
    EXPECT_EQ(onConsole(result, 2), "");
}

// ---- list of functions --------------------------------------------------------

static const std::string kTestsHeader = "   #;Function;Test;Source;\n;";

TEST(RkReportList, TestedFunctionsAreNumbered) {
    Tests tests;
    tests.add("keliA", "rk_A//KM_REG", "a.cpp");
    tests.add("keliB", "rk_B//KM_REG", "b.cpp");
    rkConditions all;
    EXPECT_EQ(contents(rkReportList(tests, all, 0)),
              kTestsHeader + "   1;keliA;rk_A;a.cpp;\n;   2;keliB;rk_B;b.cpp;\n;");
}

TEST(RkReportList, TestsThatAreNotSelectedAreLeftOutOfTheNumbers) {
    Tests tests;
    tests.add("keliA", "rk_A//KM_REG", "a.cpp");
    tests.add("keliB", "rk_B//KM_REG", "b.cpp");
    RunCondition_f onlyB("liB");
    rkConditions conditions;
    conditions.push_back(&onlyB);
    EXPECT_EQ(contents(rkReportList(tests, conditions, 0)), kTestsHeader + "   1;keliB;rk_B;b.cpp;\n;");
}

TEST(RkReportList, AllFunctionsOfTheLibraryAreMarked) {
    Tests tests;
    tests.add("keliA");
    rkRegLibFunc("keliA");
    rkRegLibFunc("keliB");
    rkConditions all;
    EXPECT_EQ(contents(rkReportList(tests, all, 1)), "Exist;Function;\n;+;keliA;\n;-;keliB;\n;");
}

TEST(RkReportList, MissingFunctionsAlone) {
    Tests tests;
    tests.add("keliA");
    tests.add("keliC");
    for (char const *name : {"keliA", "keliB", "keliC", "keliD"}) rkRegLibFunc(name);
    rkConditions all;
    EXPECT_EQ(contents(rkReportList(tests, all, -1)), "Exist;Function;\n;-;keliB;\n;-;keliD;\n;");
}

TEST(RkReportList, WithoutALibraryListTheTestsAreListed) {
    Tests tests;
    tests.add("keliA", "rk_A//KM_REG", "a.cpp");
    rkConditions all;
    const std::string expected = kTestsHeader + "   1;keliA;rk_A;a.cpp;\n;";
    EXPECT_EQ(contents(rkReportList(tests, all, 1)), expected);
    rkRegLibFunc("keliInit"); // a utility only
    EXPECT_EQ(contents(rkReportList(tests, all, 1)), expected);
    EXPECT_EQ(contents(rkReportList(tests, all, -1)), expected);
}

TEST(RkReportList, UtilitiesWantNoTest) {
    Tests tests;
    for (char const *name :
         {"keliInitX", "keliXClose", "keliAlloc", "kelsMalloc_16s", "kelsFree", "keliPutValX",
          "keliRotateCenter", "keliResizeShift", "keliDrawText", "keliGetX", "keliSetX", "keliXGet"})
        rkRegLibFunc(name);
    for (char const *name : {"keliGet_8u", "keliSet_8u", "keliGetSet_8u", "keliinit", "keliTarget_8u"})
        rkRegLibFunc(name);
    rkConditions all;
    EXPECT_EQ(contents(rkReportList(tests, all, 1)),
              "Exist;Function;\n;-;keliGet_8u;\n;-;keliSet_8u;\n;-;keliinit;\n;-;keliTarget_8u;\n;");
}

TEST(RkReportList, PresenceIsByTheWholeName) {
    Tests tests;
    tests.add("keliA");
    EXPECT_TRUE(rkReportList::presentInTestList("keliA", tests));
    EXPECT_FALSE(rkReportList::presentInTestList("keli", tests));
    EXPECT_FALSE(rkReportList::presentInTestList("keliAB", tests));
}

TEST(RkReportList, ConsoleHasATabBehindEachCell) {
    Tests tests;
    tests.add("keliA", "rk_A//KM_REG", "a.cpp");
    rkConditions all;
    rkReportList list(tests, all, 0);
    EXPECT_EQ(onConsole(list, 7), "   #\tFunction\tTest\tSource\t\n   1\tkeliA\trk_A\ta.cpp\t\n");
}

TEST(RkReportList, ConsoleKeepsToTheMessageLevel) {
    Tests tests;
    rkConditions all;
    rkReportList list(tests, all, 0);
    EXPECT_EQ(onConsole(list, 7, MsgData), "");
    EXPECT_EQ(onConsole(list, 4, MsgResult), "   #\tFunction\tTest\tSource\t\n");
}

TEST(RkReportList, TableHasALineForEachRow) {
    Tests tests;
    tests.add("keliA", "rk_A//KM_REG", "a.cpp");
    rkConditions all;
    rkReportList list(tests, all, 0);
    EXPECT_EQ(inTable(list), "   #,Function,Test,Source\n   1,keliA,rk_A,a.cpp\n");
}

// rkoption_test.cpp - tests of rkoption: what the keys say.

#include "optionfixture.h"

namespace {

// ---- arguments -------------------------------------------------------------------------

TEST(RkOption, AskLevelAddsItsLetters) {
    EXPECT_EQ(getAskLevel("Timing"), 1);
    EXPECT_EQ(getAskLevel("Params"), 2);
    EXPECT_EQ(getAskLevel("Misalign"), 4);
    EXPECT_EQ(getAskLevel("TimingParams"), 3);
    EXPECT_EQ(getAskLevel("MPT"), 7);
}

TEST(RkOption, AskLevelWithoutALetterIsAll) {
    EXPECT_EQ(getAskLevel(""), 15);
    EXPECT_EQ(getAskLevel("All"), 15);
    EXPECT_EQ(getAskLevel("timing"), 15);
}

TEST(RkOption, OutputLevelOfEachLetter) {
    EXPECT_EQ(getLevel("E"), 1);
    EXPECT_EQ(getLevel("W"), 3);
    EXPECT_EQ(getLevel("P"), 7);
    EXPECT_EQ(getLevel("I"), 15);
    EXPECT_EQ(getLevel("T"), 23);
    EXPECT_EQ(getLevel("M"), 39);
    EXPECT_EQ(getLevel("D"), 71);
}

TEST(RkOption, OutputLevelScansTheWholeWord) {
    EXPECT_EQ(getLevel("ERR"), 1);
    EXPECT_EQ(getLevel("WARN"), 3);
    EXPECT_EQ(getLevel("PERF"), 7);
    EXPECT_EQ(getLevel("INFO"), 15);
    EXPECT_EQ(getLevel("TRACE"), 23);
    EXPECT_EQ(getLevel("DATA"), 87);
    EXPECT_EQ(getLevel("EM"), 39);
    EXPECT_EQ(getLevel("WT"), 23);
}

TEST(RkOption, OutputLevelWithoutALetterIsNone) {
    EXPECT_EQ(getLevel(""), 0);
    EXPECT_EQ(getLevel("x"), 0);
    EXPECT_EQ(getLevel("perf"), 0);
}

TEST(RkOption, PriorityGoesByTheFirstLetter) {
    EXPECT_EQ(getPriority("HIGH"), 1);
    EXPECT_EQ(getPriority("NORMAL"), 2);
    EXPECT_EQ(getPriority("LOW"), 3);
    EXPECT_EQ(getPriority("xHIGH"), 0);
    EXPECT_EQ(getPriority("high"), 0);
    EXPECT_EQ(getPriority(""), 0);
}

std::string condition(rkString text) {
    int kind = getCondition(text);
    return std::to_string(kind) + " " + text.c_str();
}

TEST(RkOption, ConditionCutsItsPrefix) {
    EXPECT_EQ(condition("abc"), "0 abc");
    EXPECT_EQ(condition("+abc"), "1 abc");
    EXPECT_EQ(condition("-abc"), "2 abc");
    EXPECT_EQ(condition("=abc"), "3 abc");
    EXPECT_EQ(condition("--abc"), "2 -abc");
}

TEST(RkOption, ConditionWithoutAPatternIsEmpty) {
    EXPECT_EQ(condition(""), "4 ");
    EXPECT_EQ(condition("+"), "4 ");
    EXPECT_EQ(condition("-"), "4 ");
    EXPECT_EQ(condition("="), "4 ");
}

class RkOptionTest : public OptionFixture {
protected:
    // The texts that a key gives at the four exit levels, joined.
    std::string atExitLevels(char key, rkString arg = "") {
        std::string text;
        for (int level = 0; level <= 3; ++level) {
            rkSession::m_exitLevel = level;
            text += info(key, arg).compare(0, 8, "ignored ") == 0 ? "i" : "s";
        }
        return text;
    }
};

// ---- report texts ------------------------------------------------------------------------

TEST_F(RkOptionTest, PlainKeysSayWhatTheyDo) {
    EXPECT_EQ(info('B'), "batch mode");
    EXPECT_EQ(info('P'), "read tested function names from ini-file if any");
    EXPECT_EQ(info('Q'), "exit after function parameter name table creation and don't run tests\n");
    EXPECT_EQ(info('S'), "include to measurement data set & use time");
    EXPECT_EQ(info('C'), "test data size will be in cache and out of cache if that is supported by test");
    EXPECT_EQ(info('F', "keliA"), "start testing from keliA function");
    EXPECT_EQ(info('v'), "type the version number of the Rakova and exit");
}

TEST_F(RkOptionTest, AskKeyListsItsGroups) {
    EXPECT_EQ(info('A', "T"), "ask timing method from console");
    EXPECT_EQ(info('A', "M"), "ask data misalignment from console");
    EXPECT_EQ(info('A', "TimingParams"), "ask timing method, common parameters from console");
    EXPECT_EQ(info('A', "All"),
              "ask timing method, common parameters, data misalignment, each test parameters from console");
}

TEST_F(RkOptionTest, LevelKeyListsItsLevels) {
    EXPECT_EQ(info('L', "ERR"), "write errors to console");
    EXPECT_EQ(info('L', "PERF"), "write errors,warnings,performance results to console");
    EXPECT_EQ(info('L', "I"), "write errors,warnings,performance results,measurement process to console");
    EXPECT_EQ(info('L', "M"), "write errors,warnings,performance results,memory info to console");
    EXPECT_EQ(info('L', "DATA"),
              "write errors,warnings,performance results,tracing info,data info to console");
    EXPECT_EQ(info('L', "x"), "ignored: incorrect level of console output");
    EXPECT_EQ(info('L'), "ignored: incorrect level of console output");
}

TEST_F(RkOptionTest, DataKeyChecksItsForm) {
    EXPECT_EQ(info('d', "Method=man"), "set RK parameter Method=man");
    EXPECT_EQ(info('d', "Method="), "set RK parameter Method=");
    EXPECT_EQ(info('d'), "ignored: empty data argument");
    EXPECT_EQ(info('d', "Method"), "ignored: incorrect data format");
    EXPECT_EQ(info('d', "=man"), "ignored: incorrect data format");
    EXPECT_EQ(info('d', " \t=man"), "ignored: incorrect data format");
}

TEST_F(RkOptionTest, FileKeysShowTheirPath) {
    EXPECT_EQ(info('i', "a"), "read RK parameters from " + in("a.ini"));
    EXPECT_EQ(info('I', "a"), "write RK parameters to " + in("a.ini") + " and exit");
    EXPECT_EQ(info('o', "a"), "write console output to " + out("a.txt"));
    EXPECT_EQ(info('O', "a"), "add console output to " + out("a.txt"));
    EXPECT_EQ(info('r', "a"), "write performance result table to " + out("a.csv"));
    EXPECT_EQ(info('R', "a"), "add performance result table to " + out("a.csv"));
    EXPECT_EQ(info('q', "a"), "write function parameter name lines to " + out("a_name.csv"));
    EXPECT_EQ(info('u', "a"), "write summary table to " + out("a_sum.csv"));
    EXPECT_EQ(info('U', "a"), "add summary table to " + out("a_sum.csv"));
    EXPECT_EQ(info('g', "a"), "create file " + out("a.end") + " at the end of RK work");
}

TEST_F(RkOptionTest, FileKeysWithoutAnArgumentUseTheDefaultName) {
    EXPECT_EQ(info('i'), "read RK parameters from " + in("prog.ini"));
    EXPECT_EQ(info('o'), "write console output to " + out("prog.txt"));
    EXPECT_EQ(info('r'), "write performance result table to " + out("prog.csv"));
    EXPECT_EQ(info('q'), "write function parameter name lines to " + out("prog_name.csv"));
    EXPECT_EQ(info('u'), "write summary table to " + out("prog_sum.csv"));
    EXPECT_EQ(info('g'), "create file " + out("prog.end") + " at the end of RK work");
}

TEST_F(RkOptionTest, NameLinesIntoTheResultTable) {
    EXPECT_EQ(info('q', "+"), "add function parameter name lines to csv files defined by -r & -R keys");
}

TEST_F(RkOptionTest, DirectoryAndNameKeys) {
    EXPECT_EQ(info('n', "title"), "name ini-file and output files as title.<proper-ext>");
    EXPECT_EQ(info('n'), "ignored: empty default name");
    EXPECT_EQ(info('p', "data"), "open test data files & ini-file in data");
    EXPECT_EQ(info('p'), "ignored: empty directory name");
    EXPECT_EQ(info('l', "logs"), "open output files in logs");
    EXPECT_EQ(info('l'), "ignored: empty directory name");
}

TEST_F(RkOptionTest, FunctionPatterns) {
    EXPECT_EQ(info('f', "SAD"), "test functions containing 'SAD'");
    EXPECT_EQ(info('f', "+SAD"), "don't test functions without 'SAD' in the name");
    EXPECT_EQ(info('f', "-SAD"), "don't test functions containing 'SAD'");
    EXPECT_EQ(info('f', "=SAD"), "test function equal to 'SAD'");
    EXPECT_EQ(info('f'), "ignored: empty function pattern");
    EXPECT_EQ(info('f', "="), "ignored: empty function pattern");
}

TEST_F(RkOptionTest, TestPatterns) {
    EXPECT_EQ(info('t', "SAD"), "run tests containing SAD");
    EXPECT_EQ(info('t', "+SAD"), "don't run tests which doesn't contain SAD");
    EXPECT_EQ(info('t', "-SAD"), "don't run tests containing SAD");
    EXPECT_EQ(info('t', "=SAD"), "run test equal to SAD");
    EXPECT_EQ(info('t'), "ignored: empty test pattern");
}

TEST_F(RkOptionTest, PriorityWords) {
    EXPECT_EQ(info('Y', "HIGH"), "set high process priority");
    EXPECT_EQ(info('Y', "NORMAL"), "set normal process priority");
    EXPECT_EQ(info('Y', "LOW"), "set low process priority");
    EXPECT_EQ(info('Y', "x"), "ignored: incorrect process priority value");
    EXPECT_EQ(info('Y'), "ignored: incorrect process priority value");
}

TEST_F(RkOptionTest, HotKey) {
    EXPECT_EQ(info('H'), "add 'Interest' column to table file");
    EXPECT_EQ(info('H', "x"), "add 'Interest' column to table file");
    EXPECT_EQ(info('H', "O"), "run tests for hot functions only");
    EXPECT_EQ(info('H', "ONLY"), "run tests for hot functions only");
}

TEST_F(RkOptionTest, ProcessorKey) {
    EXPECT_EQ(info('T', "AVX"), "call kelInitStaticCpu ( kelCpuAVX )");
    EXPECT_EQ(info('T', "nonsense"), "ignored: incorrect CPU type");
    EXPECT_EQ(info('T'), "ignored: incorrect CPU type");
    kelEnvironment = nullptr;
    EXPECT_EQ(info('T', "AVX"), "ignored: <kelcore.h> is not included before <km.h> in test files");
}

TEST_F(RkOptionTest, ThreadsKey) {
    EXPECT_EQ(info('N', "2"), "call kelSetNumThreads(2)");
    EXPECT_EQ(info('N', "0"), "ignored: incorrect number of threads");
    EXPECT_EQ(info('N', "-2"), "ignored: incorrect number of threads");
    EXPECT_EQ(info('N', "x"), "ignored: incorrect number of threads");
    EXPECT_EQ(info('N'), "ignored: incorrect number of threads");
    kelEnvironment = nullptr;
    EXPECT_EQ(info('N', "2"), "ignored: <kelcore.h> is not included before <km.h> in test files");
}

TEST_F(RkOptionTest, SortKey) {
    EXPECT_EQ(info('s'), "sort functions");
    EXPECT_EQ(info('s', "-"), "don't sort functions");
}

TEST_F(RkOptionTest, EnumerationKey) {
    EXPECT_EQ(info('e'), "enumerate tested functions and exit");
    EXPECT_EQ(info('e', "+"), "enumerate applied and not applied library functions and exit");
    EXPECT_EQ(info('e', "-"), "enumerate not applied library functions and exit");
}

TEST_F(RkOptionTest, HelpKeys) {
    EXPECT_EQ(info('h'), "type short help and exit");
    EXPECT_EQ(info('h', "h"), "type extended help and exit");
    EXPECT_EQ(info('h', "B"), "type extended help for -B key and exit");
    EXPECT_EQ(info('?'), "type short help with hidden key sand exit");
    EXPECT_EQ(info('?', "?"), "type extended help with hidden keys and exit");
    EXPECT_EQ(info('?', "B"), "type extended help for -B key and exit");
}

// ---- exit levels -----------------------------------------------------------------------------

TEST_F(RkOptionTest, ExitTextNamesTheKeyThatEndsTheRun) {
    char const *const texts[] = {"ignored", "ignored because of -e option", "ignored because of -h option",
                                 "ignored because of -v option"};
    for (int level = 0; level <= 3; ++level) {
        rkSession::m_exitLevel = level;
        EXPECT_STREQ(rkSession::getExitInfo().c_str(), texts[level]);
    }
}

TEST_F(RkOptionTest, ExitLevelIsReachedFromBelow) {
    rkSession::m_exitLevel = 2;
    EXPECT_TRUE(rkSession::isExit(1));
    EXPECT_TRUE(rkSession::isExit(2));
    EXPECT_FALSE(rkSession::isExit(3));
}

TEST_F(RkOptionTest, KeysOfTheRunGiveWayToAnyExit) {
    for (char key : std::string("BAdiIPLqQuUFYSC")) EXPECT_EQ(atExitLevels(key, "E=1"), "siii") << key;
}

TEST_F(RkOptionTest, KeysThatAListingUsesGiveWayToHelpAndVersion) {
    for (char key : std::string("ftHs")) EXPECT_EQ(atExitLevels(key, "a"), "ssii") << key;
}

TEST_F(RkOptionTest, KeysOfFilesAndHelpNeverGiveWay) {
    for (char key : std::string("oOrRgnplTNvh?")) EXPECT_EQ(atExitLevels(key, "1"), "ssss") << key;
}

TEST_F(RkOptionTest, EnumerationGivesWayToHelpAlone) {
    EXPECT_EQ(atExitLevels('e'), "ssis");
}

// ---- absurd arguments ------------------------------------------------------------------------

TEST_F(RkOptionTest, EveryKeyTakesAbsurdArguments) {
    const std::string absurd[] = {std::string(10000, 'x'),
                                  "\xff\xfe\x80",
                                  "%s%n%d",
                                  "=",
                                  "====",
                                  "\n\r\t",
                                  "../../../..",
                                  ".",
                                  "\"\"\"",
                                  "0x",
                                  "99999999999999999999"};
    for (rkOption *option : pSession->m_options) {
        for (std::string const &arg : absurd) {
            EXPECT_GT(option->m_info(arg.c_str()).length(), 0) << option->m_key << arg;
            if (std::string("oOrRquU").find(option->m_key) == std::string::npos) {
                option->m_apply(arg.c_str(), pSession);
            }
        }
    }
}

TEST_F(RkOptionTest, EveryRowHasItsTextsAndFunctions) {
    for (rkOption *option : pSession->m_options) {
        EXPECT_NE(option->m_info, nullptr) << option->m_key;
        EXPECT_NE(option->m_apply, nullptr) << option->m_key;
        EXPECT_EQ(rkFindOptionText(option->m_key).m_key, option->m_key);
    }
}

TEST(RkOption, UnknownKeyHasEmptyTexts) {
    rkOptionText const &text = rkFindOptionText('x');
    EXPECT_EQ(text.m_key, 0);
    EXPECT_STREQ(text.m_help, "");
    EXPECT_STREQ(rkOptionDescr(text).c_str(), "");
}

} // namespace

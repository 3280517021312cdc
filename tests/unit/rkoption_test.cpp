// rkoption_test.cpp - tests of rkoption: what the keys say and do.

#include "rkoption.h"

#include "sessionfixture.h"

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

// ---- report texts ------------------------------------------------------------------------

// Keys on a session with a library core, so that all rows are there.
class RkOptionTest : public SessionFixture {
protected:
    void SetUp() override {
        SessionFixture::SetUp();
        rkRegKelEnvironment(FakeCore::bind);
        setKelEnvironment();
        pSession->initSession();
        rkSession::m_exePath = m_dir / "prog";
        rkSession::setInDir("in");
        rkSession::setOutDir("out");
        rkSession::setDefName("");
        std::filesystem::create_directory(path("out"));
    }
    std::string info(char key, rkString arg = "") { return pSession->getOption(key)->m_info(arg).c_str(); }
    void apply(char key, rkString arg = "") { pSession->getOption(key)->m_apply(arg, pSession); }
    std::string in(std::string const &name) const { return path("in/" + name); }
    std::string out(std::string const &name) const { return path("out/" + name); }
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

// ---- effects ---------------------------------------------------------------------------------

TEST_F(RkOptionTest, ModesOfTheSession) {
    apply('B');
    EXPECT_TRUE(pSession->m_batch);
    apply('A', "T");
    apply('A', "M");
    EXPECT_EQ(pSession->m_askMode, 5);
    apply('L', "W");
    apply('L', "M");
    EXPECT_EQ(pSession->m_levelMode, 39);
    apply('L', "x");
    EXPECT_EQ(pSession->m_levelMode, 39);
}

TEST_F(RkOptionTest, DataGoesIntoTheParameterInput) {
    apply('d', "x=1");
    apply('d', "x=2");
    rkString value;
    ASSERT_TRUE(g_istrm.m_data.get("x", value));
    EXPECT_STREQ(value.c_str(), "2");
}

TEST_F(RkOptionTest, LastIniFileCounts) {
    apply('i', "a");
    EXPECT_EQ(pSession->m_iniName.c_str(), in("a.ini"));
    EXPECT_FALSE(pSession->m_iniWrite);
    apply('I', "b");
    EXPECT_EQ(pSession->m_iniName.c_str(), in("b.ini"));
    EXPECT_TRUE(pSession->m_iniWrite);
}

TEST_F(RkOptionTest, OutputFilesAreOpenedAtOnce) {
    apply('o', "a");
    apply('r', "a");
    apply('q', "a");
    apply('u', "a");
    EXPECT_TRUE(exists("out/a.txt"));
    EXPECT_TRUE(exists("out/a.csv"));
    EXPECT_TRUE(exists("out/a_name.csv"));
    EXPECT_TRUE(exists("out/a_sum.csv"));
    EXPECT_EQ(rkSession::m_nameMode, 2);
    EXPECT_FALSE(pSession->m_unopenedFile);
}

TEST_F(RkOptionTest, SmallKeysReplaceAndCapitalsAppend) {
    for (char const *name :
         {"out/w.txt", "out/a.txt", "out/w.csv", "out/a.csv", "out/w_sum.csv", "out/a_sum.csv"}) {
        write(name, "old\n");
    }
    apply('o', "w");
    apply('O', "a");
    apply('r', "w");
    apply('R', "a");
    apply('u', "w");
    apply('U', "a");
    EXPECT_EQ(read("out/w.txt"), "");
    EXPECT_EQ(read("out/w.csv"), "");
    EXPECT_EQ(read("out/w_sum.csv"), "");
    EXPECT_EQ(read("out/a.txt"), "old\n");
    EXPECT_EQ(read("out/a.csv"), "old\n");
    EXPECT_EQ(read("out/a_sum.csv"), "old\n");
}

TEST_F(RkOptionTest, FileThatCannotBeOpenedIsRemembered) {
    for (char key : std::string("oOrRquU")) {
        pSession->m_unopenedFile = false;
        apply(key, "missing/dir/x");
        EXPECT_TRUE(pSession->m_unopenedFile) << key;
    }
}

TEST_F(RkOptionTest, QPlusSetsBitOneAndOpensNoFile) {
    apply('q', "+");
    EXPECT_EQ(rkSession::m_nameMode, 1);
    EXPECT_TRUE(g_qstrm.empty());
    EXPECT_TRUE(std::filesystem::is_empty(path("out")));
}

TEST_F(RkOptionTest, SignalFileIsOnlyNamed) {
    apply('g', "a");
    EXPECT_EQ(pSession->m_sglName.c_str(), out("a.end"));
    EXPECT_FALSE(exists("out/a.end"));
}

TEST_F(RkOptionTest, DirectoriesAreNotSetByTheirApply) {
    apply('p', "elsewhere");
    apply('l', "elsewhere");
    apply('n', "elsewhere");
    EXPECT_EQ(rkSession::m_inDir.c_str(), in(""));
    EXPECT_EQ(rkSession::m_outDir.c_str(), out(""));
    EXPECT_STREQ(rkSession::m_defName.c_str(), "prog");
}

template <class Condition>
bool isLast(rkConditions &conditions, char const *pattern) {
    RunCondition *last = *--conditions.end();
    return dynamic_cast<Condition *>(last) && last->m_pattern == pattern;
}

TEST_F(RkOptionTest, FunctionConditions) {
    rkConditions &conditions = *pSession->m_conditions;
    apply('f', "a");
    EXPECT_TRUE(isLast<RunCondition_f>(conditions, "a"));
    apply('f', "+b");
    EXPECT_TRUE(isLast<RunCondition_fAnd>(conditions, "b"));
    apply('f', "-c");
    EXPECT_TRUE(isLast<RunCondition_fNot>(conditions, "c"));
    apply('f', "=d");
    EXPECT_TRUE(isLast<RunCondition_fEqual>(conditions, "d"));
    EXPECT_EQ(conditions.size(), 4);
}

TEST_F(RkOptionTest, TestConditions) {
    rkConditions &conditions = *pSession->m_conditions;
    apply('t', "a");
    EXPECT_TRUE(isLast<RunCondition_t>(conditions, "a"));
    apply('t', "+b");
    EXPECT_TRUE(isLast<RunCondition_tAnd>(conditions, "b"));
    apply('t', "-c");
    EXPECT_TRUE(isLast<RunCondition_tNot>(conditions, "c"));
    apply('t', "=d");
    EXPECT_TRUE(isLast<RunCondition_tEqual>(conditions, "d"));
    EXPECT_EQ(conditions.size(), 4);
}

TEST_F(RkOptionTest, EmptyPatternAddsNoCondition) {
    for (char key : std::string("ft")) {
        for (char const *arg : {"", "+", "-", "="}) apply(key, arg);
    }
    EXPECT_TRUE(pSession->m_conditions->empty());
}

TEST_F(RkOptionTest, SwitchesOfTheTests) {
    apply('P');
    apply('Q');
    apply('S');
    apply('C');
    apply('F', "keliA");
    EXPECT_TRUE(rkTest::m_pressing);
    EXPECT_TRUE(rkSession::m_nameExit);
    EXPECT_TRUE(g_tool.m_useData);
    EXPECT_TRUE(rkTest::m_cache);
    EXPECT_STREQ(rkTestList::m_startFunc.c_str(), "keliA");
}

TEST_F(RkOptionTest, BadPriorityLeavesTheGoodOne) {
    apply('Y', "LOW");
    EXPECT_EQ(rkTool::m_priority, 3);
    apply('Y', "x");
    EXPECT_EQ(rkTool::m_priority, 3);
}

TEST_F(RkOptionTest, LastHotKeyCounts) {
    apply('H', "ONLY");
    EXPECT_EQ(rkTest::m_hot, 2);
    apply('H');
    EXPECT_EQ(rkTest::m_hot, 1);
}

TEST_F(RkOptionTest, ProcessorAndThreads) {
    apply('T', "AVX");
    EXPECT_EQ(s_cpuType, 70);
    apply('T', "nonsense");
    EXPECT_EQ(s_cpuType, -1);
    apply('N', "3");
    EXPECT_EQ(s_numThreads, 3);
}

TEST_F(RkOptionTest, LastSortKeyCounts) {
    apply('s', "-");
    EXPECT_TRUE(pSession->m_noSort);
    apply('s');
    EXPECT_FALSE(pSession->m_noSort);
}

TEST_F(RkOptionTest, EnumerationModes) {
    apply('e', "+");
    EXPECT_EQ(pSession->m_enumMode, 1);
    apply('e', "-");
    EXPECT_EQ(pSession->m_enumMode, -1);
    apply('e');
    EXPECT_EQ(pSession->m_enumMode, 0);
}

TEST_F(RkOptionTest, HelpArguments) {
    apply('h');
    EXPECT_EQ(s_hintArg, 1);
    EXPECT_TRUE(s_hintHide);
    apply('h', "Lxyz");
    EXPECT_EQ(s_hintArg, 'L');
    apply('?');
    EXPECT_EQ(s_hintArg, 1);
    EXPECT_FALSE(s_hintHide);
    apply('?', "?");
    EXPECT_EQ(s_hintArg, '?');
    apply('v');
    EXPECT_TRUE(s_version);
}

TEST_F(RkOptionTest, MemoryKeyHasFunctionsAndTextButNoRow) {
    EXPECT_EQ(pSession->getOption('m'), nullptr);
    rkOptionAction const &memory = rkFindOptionAction('m');
    EXPECT_EQ(memory.m_info("a").c_str(), "write memory info table to " + out("a_mem.csv"));
    memory.m_apply("a", pSession);
    EXPECT_TRUE(exists("out/a_mem.csv"));
    EXPECT_EQ(g_mstrm.size(), 1);
    EXPECT_STREQ(rkFindOptionText('m').m_help,
                 "-m[<file-name>]  = create *_mem.csv file and write memory info\n");
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

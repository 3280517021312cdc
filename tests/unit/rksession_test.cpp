// rksession_test.cpp - tests of rksession: the keys as a whole, and whole runs.

#include "rksession.h"

#include <stdio_ext.h>

#include <time.h>

#include "sessionfixture.h"

namespace {

const std::string banner = "\nTarvo(R) Kelvara. Rakova 2.0, Mar 16 2010\n";
const std::string hookLine = "\nKEL Core library functions have been integrated into RK\n";

class Session : public SessionFixture {};

// ---- the command line ----------------------------------------------------------------------

TEST_F(Session, NoKeysAtAllGiveAnEmptyReportAndTheDefaults) {
    std::filesystem::current_path(m_dir.path());
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "");
    EXPECT_EQ(pSession->m_askMode, 3);
    EXPECT_EQ(pSession->m_levelMode, 1);
    EXPECT_FALSE(pSession->m_batch);
    EXPECT_FALSE(pSession->m_noSort);
    EXPECT_EQ(pSession->m_enumMode, 100);
    EXPECT_EQ(g_ostrm.outLevel(), 7);
}

TEST_F(Session, KeysAreReported) {
    EXPECT_TRUE(parse({"-B", "-L", "PERF"}));
    EXPECT_EQ(log(),
              "Command line options: \n-B: batch mode\n"
              "-LPERF: write errors,warnings,performance results to console\n");
    EXPECT_EQ(pSession->m_askMode, 0);
    EXPECT_EQ(pSession->m_levelMode, 7);
    EXPECT_STREQ(pSession->m_report.c_str(), "");
}

TEST_F(Session, CfgFileGivesTheKeys) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-B -L PERF\n-v\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(),
              "Command line options: read from prog.cfg file\n-B: batch mode\n"
              "-LPERF: write errors,warnings,performance results to console\n");
    EXPECT_FALSE(s_version);
}

TEST_F(Session, CfgFileOfTheProgramIsFoundFromElsewhere) {
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::current_path(path("elsewhere"));
    write("prog.cfg", "-B\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "Command line options: read from " + path("prog.cfg") + " file\n-B: batch mode\n");
}

TEST_F(Session, CfgFileOfTheCurrentDirectoryGoesFirst) {
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::current_path(path("elsewhere"));
    write("prog.cfg", "-v\n");
    write("elsewhere/prog.cfg", "-B\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "Command line options: read from prog.cfg file\n-B: batch mode\n");
}

TEST_F(Session, CfgFileGoesBeforeTheBuiltInLine) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-B\n");
    rkRegCmdLine("-v");
    EXPECT_TRUE(parse({}));
    EXPECT_TRUE(pSession->m_batch);
    EXPECT_FALSE(s_version);
}

TEST_F(Session, BuiltInLineGivesTheKeys) {
    std::filesystem::current_path(m_dir.path());
    rkRegCmdLine("-B -L");
    rkRegCmdLine("WARN");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(),
              "Command line options: set by _FORCE_CMDLINE preprocessor definition\n-B: batch mode\n"
              "-LWARN: write errors,warnings to console\n");
}

TEST_F(Session, AnyArgumentShutsOutCfgFileAndBuiltInLine) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-B\n");
    rkRegCmdLine("-B");
    EXPECT_TRUE(parse({"-P"}));
    EXPECT_FALSE(pSession->m_batch);
    EXPECT_EQ(log(), "Command line options: \n-P: read tested function names from ini-file if any\n");
}

TEST_F(Session, EmptyCfgFileHasNoKeys) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "Command line options: read from prog.cfg file\n");
}

TEST_F(Session, DirectoryIsNoCfgFile) {
    std::filesystem::current_path(m_dir.path());
    std::filesystem::create_directory(path("prog.cfg"));
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(log(), "");
}

TEST_F(Session, CfgLineIsCutAt1023Characters) {
    std::filesystem::current_path(m_dir.path());
    write("prog.cfg", "-F" + std::string(2000, 'x') + "\n");
    EXPECT_TRUE(parse({}));
    EXPECT_EQ(rkTestList::m_startFunc.length(), 1021);
}

TEST_F(Session, LongAndStrangeArgumentsAreReportedAsGiven) {
    std::string word(10000, 'x'), bytes = "\xff\xfe\xe4%s%n";
    EXPECT_TRUE(parse({"-F" + word, "-f", bytes, "-\xe4" + bytes}));
    EXPECT_EQ(log(), "Command line options: \n-F" + word + ": start testing from " + word + " function\n-f" +
                         bytes + ": test functions containing '" + bytes + "'\n-\xe4" + bytes +
                         ": ignored: incorrect option key\n");
}

TEST_F(Session, MissingProgramNameIsSurvived) {
    std::filesystem::current_path(m_dir.path());
    setKelEnvironment();
    pSession->initSession();
    char *none[] = {nullptr};
    EXPECT_TRUE(pSession->parseCommandLine(0, none));
    EXPECT_STREQ(rkSession::m_exePath.c_str(), "");
}

TEST_F(Session, UnknownKeyIsIgnoredAloud) {
    EXPECT_TRUE(parse({"-x", "-m"}));
    EXPECT_EQ(
        log(),
        "Command line options: \n-x: ignored: incorrect option key\n-m: ignored: incorrect option key\n");
}

TEST_F(Session, WithoutALibraryItsKeysAreUnknown) {
    EXPECT_TRUE(parse({"-TAVX", "-N2"}));
    EXPECT_EQ(log(),
              "Command line options: \n-TAVX: ignored: incorrect option key\n"
              "-N2: ignored: incorrect option key\n");
    EXPECT_EQ(s_cpuType, -1);
    EXPECT_EQ(s_numThreads, 0);
}

TEST_F(Session, LastDirectoryCountsAndBothAreReported) {
    EXPECT_TRUE(parse({"-pone", "-ptwo"}));
    EXPECT_EQ(rkSession::m_inDir.c_str(), path("two/"));
    EXPECT_EQ(log(),
              "Command line options: \n-pone: open test data files & ini-file in one\n"
              "-ptwo: open test data files & ini-file in two\n");
}

TEST_F(Session, DirectoriesAndNameHoldForKeysInFrontOfThem) {
    std::filesystem::create_directory(path("logs"));
    EXPECT_TRUE(parse({"-o", "-llogs", "-ntitle"}));
    EXPECT_TRUE(exists("logs/title.txt"));
    EXPECT_TRUE(holds(log(), "-o: write console output to " + path("logs/title.txt") + "\n"));
}

TEST_F(Session, RelativeOutputDirectoryCountsFromTheProgram) {
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::current_path(path("elsewhere"));
    EXPECT_TRUE(parse({"-llogs"}));
    EXPECT_EQ(rkSession::m_outDir.c_str(), path("logs/"));
}

TEST_F(Session, NameWithADotGetsNoExtension) {
    EXPECT_TRUE(parse({"-o./out"}));
    EXPECT_TRUE(exists("out"));
    EXPECT_FALSE(exists("out.txt"));
}

TEST_F(Session, HelpGoesBeforeEnumeration) {
    EXPECT_TRUE(parse({"-h", "-e"}));
    EXPECT_EQ(rkSession::m_exitLevel, 2);
    EXPECT_EQ(log(),
              "Command line options: \n-h: type short help and exit\n-e: ignored because of -h option\n");
}

TEST_F(Session, QuestionMarkIsHelpToo) {
    EXPECT_TRUE(parse({"-v", "-e", "-?"}));
    EXPECT_EQ(rkSession::m_exitLevel, 2);
}

TEST_F(Session, EnumerationGoesBeforeTheVersion) {
    EXPECT_TRUE(parse({"-v", "-e"}));
    EXPECT_EQ(rkSession::m_exitLevel, 1);
    EXPECT_TRUE(holds(log(), "-e: enumerate tested functions and exit\n"));
}

TEST_F(Session, VersionAloneIsLevelThree) {
    EXPECT_TRUE(parse({"-v", "-B"}));
    EXPECT_EQ(rkSession::m_exitLevel, 3);
    EXPECT_TRUE(holds(log(), "-B: ignored because of -v option\n"));
}

TEST_F(Session, SlashHelpEqualsDashHelp) {
    EXPECT_TRUE(parse({"/h"}));
    EXPECT_EQ(rkSession::m_exitLevel, 2);
    EXPECT_EQ(s_hintArg, 1);
    EXPECT_EQ(log(), "Command line options: \n-h: type short help and exit\n");
}

TEST_F(Session, FileIsOpenedAlsoWithHelp) {
    EXPECT_TRUE(parse({"-h", "-o", "log"}));
    EXPECT_TRUE(exists("log.txt"));
}

TEST_F(Session, LogGetsTheReport) {
    EXPECT_TRUE(parse({"-olog"}));
    g_ostrm.flush();
    EXPECT_EQ(read("log.txt"), log());
    EXPECT_TRUE(holds(log(), "-olog: write console output to "));
}

TEST_F(Session, UnopenedFileIsFatalBehindTheWholeReport) {
    EXPECT_FALSE(parse({"-rmissing/dir/x", "-B"}));
    EXPECT_TRUE(holds(log(), "-B: batch mode\nFATAL ERROR: can't open output file for writing\n"));
    EXPECT_TRUE(pSession->m_batch);
}

TEST_F(Session, UnwritableIniFileIsFatal) {
    EXPECT_FALSE(parse({"-Imissing/dir/x"}));
    EXPECT_TRUE(holds(log(), "FATAL ERROR: can't open ini-file for writing\n"));
}

TEST_F(Session, UnreadableIniFileIsSaidOnce) {
    EXPECT_TRUE(parse({"-inone"}));
    EXPECT_EQ(log(), "Command line options: \n-inone: read RK parameters from " + path("none.ini") +
                         "\n-- Can't open file " + path("none.ini") + " to read: \n");
}

TEST_F(Session, ReadableIniFileIsAttached) {
    write("prog.ini", "[Rakova]\nMethod=Manual\n");
    EXPECT_TRUE(parse({"-i"}));
    ASSERT_NE(g_istrm.m_iniFile, nullptr);
    EXPECT_STREQ(g_istrm.m_iniFile->read("Rakova", "Method", "poison").c_str(), "Manual");
}

TEST_F(Session, BatchModeGoesBeforeAskMode) {
    EXPECT_TRUE(parse({"-AAll", "-B"}));
    EXPECT_EQ(pSession->m_askMode, 0);
}

TEST_F(Session, AskModesAreCombined) {
    EXPECT_TRUE(parse({"-AT", "-AM"}));
    EXPECT_EQ(pSession->m_askMode, 5);
}

TEST_F(Session, FunctionPatternWithoutTextAddsNoCondition) {
    EXPECT_TRUE(parse({"-f"}));
    EXPECT_EQ(log(), "Command line options: \n-f: ignored: empty function pattern\n");
    EXPECT_TRUE(pSession->m_conditions->empty());
}

TEST_F(Session, QPlusSetsBitOneAndOpensNoFile) {
    EXPECT_TRUE(parse({"-q+"}));
    EXPECT_EQ(rkSession::m_nameMode, 1);
    EXPECT_TRUE(g_qstrm.empty());
}

TEST_F(Session, ParsingResetsTheModes) {
    pSession->m_enumMode = 1;
    pSession->m_noSort = pSession->m_unopenedFile = true;
    rkSession::m_nameMode = 3;
    rkSession::m_nameExit = true;
    pSession->m_iniName = "poison";
    EXPECT_TRUE(parse({"-B"}));
    EXPECT_EQ(pSession->m_enumMode, 100);
    EXPECT_FALSE(pSession->m_noSort);
    EXPECT_FALSE(pSession->m_unopenedFile);
    EXPECT_EQ(rkSession::m_nameMode, 0);
    EXPECT_FALSE(rkSession::m_nameExit);
    EXPECT_STREQ(pSession->m_iniName.c_str(), "");
}

// ---- between the keys and the tests --------------------------------------------------------

TEST_F(Session, CommonDataIsReadAtTheLevelOfResults) {
    pSession->m_levelMode = 23;
    pSession->beginCommonData();
    EXPECT_EQ(g_ostrm.outLevel(), 7);
    pSession->endCommonData();
    EXPECT_EQ(g_ostrm.outLevel(), 23);
}

TEST_F(Session, ConsoleStaysAttachedOnlyForTheParametersOfEachTest) {
    pSession->m_askMode = 7;
    g_istrm.setIStream(&c_in);
    pSession->endCommonData();
    EXPECT_FALSE(g_istrm.hasConsole());
    pSession->m_askMode = 15;
    g_istrm.setIStream(&c_in);
    pSession->endCommonData();
    EXPECT_TRUE(g_istrm.hasConsole());
}

// Notes what a test can see while common parameters are selected.
class SpyTest : public rkTest {
public:
    explicit SpyTest(rkString name, rkString info = "SpyClass/text")
        : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), name, "spy.cpp", info) {}
    bool canStart() override {
        m_batchSeen = pSession->m_batch;
        m_askSeen = pSession->m_askMode;
        return true;
    }
    void loopData() override {
        ++m_runs;
        raiseResult(s_result);
    }
    static inline bool m_batchSeen = false;
    static inline int m_askSeen = -1, m_runs = 0;
    static inline rkResult s_result = rkResSuccess;
};

TEST_F(Session, NothingIsAskedWhileParametersAreSelected) {
    static rkDefault<int> parm(1, "n");
    rkRegParm(parm);
    rkRegTest(new SpyTest("a"));
    pSession->m_conditions = new rkConditions;
    pSession->m_askMode = 3;
    pSession->selectTestParameters();
    EXPECT_TRUE(SpyTest::m_batchSeen);
    EXPECT_EQ(SpyTest::m_askSeen, 0);
    EXPECT_FALSE(pSession->m_batch);
    EXPECT_EQ(pSession->m_askMode, 3);
    EXPECT_TRUE(g_pParmList->empty());
}

// ---- whole runs -----------------------------------------------------------------------------

class SessionRun : public SessionFixture {
protected:
    void SetUp() override {
        SessionFixture::SetUp();
        std::filesystem::current_path(m_dir.path());
    }
    std::string m_text;
};

TEST_F(SessionRun, WithoutTestFilesTheProcessorIsReported) {
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_TRUE(holds(m_text, "__rkTarvoCpu"));
    EXPECT_TRUE(holds(m_text, "    Tarvo(R) Processor Identification\n"));
    EXPECT_TRUE(holds(m_text, ".Number of tests : 1 "));
    EXPECT_TRUE(holds(m_text, ".Successes       : 1 "));
}

TEST_F(SessionRun, PartsComeInTheirOrder) {
    EXPECT_EQ(run({"-B"}, m_text), 0);
    size_t at = 0;
    for (char const *part : {"Command line options: \n-B: batch mode\n", "Sorting functions...\n",
                             "| CPU      : ", " Method = Auto", "__rkTarvoCpu", "-OK", "| RK Summary"}) {
        size_t found = m_text.find(part, at);
        ASSERT_NE(found, std::string::npos) << part << "\n" << m_text;
        at = found;
    }
}

TEST_F(SessionRun, VersionPrintsTheBannerAlone) {
    EXPECT_EQ(run({"-v"}, m_text), 0);
    EXPECT_EQ(m_text,
              "Command line options: \n-v: type the version number of the Rakova and exit\n" + banner);
}

TEST_F(SessionRun, VersionLeavesTheTableEmpty) {
    EXPECT_EQ(run({"-v", "-rtable"}, m_text), 0);
    EXPECT_TRUE(exists("table.csv"));
    EXPECT_EQ(read("table.csv"), "");
}

TEST_F(SessionRun, HelpBeginsWithTheBanner) {
    EXPECT_EQ(run({"-h"}, m_text), 0);
    EXPECT_TRUE(holds(m_text, "-h: type short help and exit\n" + banner + "QUICK HELP\n-B   "));
    EXPECT_FALSE(holds(m_text, "RK Summary"));
}

TEST_F(SessionRun, LogGetsTheHelp) {
    EXPECT_EQ(run({"-h", "-olog"}, m_text), 0);
    EXPECT_EQ(read("log.txt"), m_text);
}

TEST_F(SessionRun, BoundLibraryIsSaidTwice) {
    rkRegKelEnvironment(FakeCore::bind);
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_EQ(countOf(m_text, hookLine), 2);
    EXPECT_EQ(m_text.find(hookLine), 0u);
    EXPECT_LT(m_text.find("-B: batch mode"), m_text.rfind(hookLine));
    EXPECT_LT(m_text.rfind(hookLine), m_text.find("Sorting functions"));
}

TEST_F(SessionRun, ProcessorAndThreadsAreSetBetweenTheTwo) {
    rkRegKelEnvironment(FakeCore::bind);
    EXPECT_EQ(run({"-B", "-TAVX", "-N2"}, m_text), 0);
    EXPECT_TRUE(holds(m_text,
                      "\n--calling kelInitCpu( kelCpuAVX=70 )\n--status = kelStsNoErr\n"
                      "\n--calling kelSetNumThreads( 2 )\n--status = kelStsNoErr\n" +
                          hookLine));
}

TEST_F(SessionRun, MissingFunctionsAreSaid) {
    rkRegMissing("keliA");
    rkRegMissing("keliB");
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_TRUE(
        holds(m_text, "-- Left out, this build of the library has no keliA, keliB\nSorting functions"));
}

TEST_F(SessionRun, NothingMissingNothingSaid) {
    g_pMissingList = new rkList<rkString>;
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_FALSE(holds(m_text, "Left out"));
}

TEST_F(SessionRun, SortLineReachesNoLog) {
    EXPECT_EQ(run({"-B", "-olog"}, m_text), 0);
    EXPECT_TRUE(holds(m_text, "Sorting functions...\n"));
    EXPECT_FALSE(holds(read("log.txt"), "Sorting functions"));
    EXPECT_TRUE(holds(read("log.txt"), "RK Summary"));
}

TEST_F(SessionRun, WithoutSortingTheLineIsMissing) {
    EXPECT_EQ(run({"-B", "-s-"}, m_text), 0);
    EXPECT_FALSE(holds(m_text, "Sorting functions"));
}

TEST_F(SessionRun, WithoutConditionsAllTestsRunInTheOrderOfTheirNames) {
    for (char const *name : {"keliC", "keliA", "keliB"}) rkRegTest(new SpyTest(name));
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_EQ(SpyTest::m_runs, 3);
    size_t at = 0;
    for (char const *name : {"__rkTarvoCpu", "keliA", "keliB", "keliC"}) {
        at = m_text.find("| Function  : " + std::string(name) + " ", at);
        ASSERT_NE(at, std::string::npos) << name;
    }
}

TEST_F(SessionRun, ParameterFunctionIsCalledOnce) {
    static int calls = 0;
    rkRegParmFunc([] { ++calls; });
    run({"-B"}, m_text);
    EXPECT_EQ(calls, 1);
}

TEST_F(SessionRun, StoppedRunDoesNotCallTheParameterFunction) {
    static int calls = 0;
    rkRegParmFunc([] { ++calls; });
    run({"-v"}, m_text);
    EXPECT_EQ(calls, 0);
}

TEST_F(SessionRun, ErrorOfATestIsTheExitStatus) {
    SpyTest::s_result = rkResAccuracyError;
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-B", "-fkeliA"}, m_text), 1);
    EXPECT_EQ(SpyTest::m_runs, 1);
}

TEST_F(SessionRun, WarningOfATestIsNot) {
    SpyTest::s_result = rkResLibWarning;
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-B", "-fkeliA"}, m_text), 0);
    EXPECT_EQ(SpyTest::m_runs, 1);
}

TEST_F(SessionRun, HotOnlyFindsAnEmptyListAndRunsNothing) {
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-B", "-HO"}, m_text), 0);
    ASSERT_NE(g_pHotList, nullptr);
    EXPECT_TRUE(g_pHotList->empty());
    EXPECT_EQ(SpyTest::m_runs, 0);
    EXPECT_TRUE(holds(m_text, ".Number of tests : 0 "));
}

// ---- lists of tests ------------------------------------------------------------------------------

TEST_F(SessionRun, EnumerationListsTheTestsSorted) {
    rkRegTest(new SpyTest("keliB"));
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-e"}, m_text), 0);
    EXPECT_TRUE(holds(m_text, "-e: enumerate tested functions and exit\n   #\tFunction\tTest\tSource\t\n"));
    ASSERT_TRUE(holds(m_text, "\tkeliA\tSpyClass\tspy.cpp\t\n"));
    EXPECT_LT(m_text.find("\tkeliA\t"), m_text.find("\tkeliB\t"));
    EXPECT_TRUE(holds(m_text, "\t__rkTarvoCpu\t"));
    EXPECT_EQ(SpyTest::m_runs, 0);
    EXPECT_FALSE(holds(m_text, "Sorting functions"));
    EXPECT_FALSE(holds(m_text, "Tarvo(R) Kelvara"));
    EXPECT_FALSE(holds(m_text, "RK Summary"));
}

TEST_F(SessionRun, EnumerationOfTheLibraryIsUnsorted) {
    for (char const *name : {"keliB", "keliA"}) {
        rkRegTest(new SpyTest(name));
        rkRegLibFunc(name);
    }
    rkRegLibFunc("keliNone");
    EXPECT_EQ(run({"-e+"}, m_text), 0);
    EXPECT_LT(m_text.find("keliB\t"), m_text.find("keliA\t"));
    EXPECT_TRUE(holds(m_text, "-\tkeliNone\t\n"));
    EXPECT_TRUE(holds(m_text, "+\tkeliA\t\n"));
}

TEST_F(SessionRun, EnumerationOfTheUntestedIsUnsorted) {
    rkRegTest(new SpyTest("keliA"));
    for (char const *name : {"keliA", "keliZ", "keliY"}) rkRegLibFunc(name);
    EXPECT_EQ(run({"-e-"}, m_text), 0);
    EXPECT_FALSE(holds(m_text, "keliA"));
    EXPECT_LT(m_text.find("keliZ\t"), m_text.find("keliY\t"));
}

TEST_F(SessionRun, EnumerationWithoutALibraryListKeepsTheOrderOfRegistration) {
    rkRegTest(new SpyTest("keliB"));
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-e+"}, m_text), 0);
    ASSERT_TRUE(holds(m_text, "\tkeliA\t"));
    EXPECT_LT(m_text.find("\tkeliB\t"), m_text.find("\tkeliA\t"));
}

TEST_F(SessionRun, EnumerationUnsortedByKey) {
    rkRegTest(new SpyTest("keliB"));
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-e", "-s-"}, m_text), 0);
    ASSERT_TRUE(holds(m_text, "\tkeliA\t"));
    EXPECT_LT(m_text.find("\tkeliB\t"), m_text.find("\tkeliA\t"));
}

TEST_F(SessionRun, VersionAndEnumerationGiveBannerAndList) {
    EXPECT_EQ(run({"-v", "-e"}, m_text), 0);
    EXPECT_TRUE(holds(m_text, banner + "   #\tFunction"));
}

TEST_F(SessionRun, EnumerationGoesIntoTheResultTable) {
    EXPECT_EQ(run({"-e", "-rtable"}, m_text), 0);
    EXPECT_TRUE(holds(read("table.csv"), "   #,Function,Test,Source\n"));
}

// ---- what a run leaves behind -------------------------------------------------------------------

TEST_F(SessionRun, SignalFileTellsDurationAndEnd) {
    EXPECT_EQ(run({"-B", "-gdone"}, m_text), 0);
    std::string text = read("done.end");
    ASSERT_EQ(text.size(), 9u + 26u);
    EXPECT_EQ(text.substr(0, 6), "00:00:");
    EXPECT_EQ(text[8], '\n');
    time_t now = time(nullptr);
    EXPECT_EQ(text.substr(text.size() - 6), std::string(ctime(&now)).substr(20) + "\n");
}

TEST_F(SessionRun, SignalFileIsWrittenAlsoForAStoppedRun) {
    EXPECT_EQ(run({"-v", "-gdone"}, m_text), 0);
    EXPECT_TRUE(exists("done.end"));
}

TEST_F(SessionRun, UnopenedFileEndsTheRunWithStatusZeroAndSignal) {
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-B", "-rmissing/dir/x", "-gdone"}, m_text), 0);
    EXPECT_TRUE(holds(m_text, "FATAL ERROR: can't open output file for writing\n"));
    EXPECT_EQ(SpyTest::m_runs, 0);
    EXPECT_FALSE(holds(m_text, "RK Summary"));
    EXPECT_TRUE(exists("done.end"));
}

TEST_F(SessionRun, NoSignalFileWithoutItsKey) {
    EXPECT_EQ(run({"-v"}, m_text), 0);
    EXPECT_TRUE(std::filesystem::is_empty(m_dir.path()));
}

TEST_F(SessionRun, TablesAndLogAreWrittenOutAtTheEnd) {
    EXPECT_EQ(run({"-B", "-olog", "-rtable", "-utotal", "-qnames"}, m_text), 0);
    EXPECT_TRUE(holds(read("table.csv"), "CPU,"));
    EXPECT_TRUE(holds(read("table.csv"), "funcBase,funcDataType,funcDescriptor,"));
    EXPECT_TRUE(holds(read("names_name.csv"), "CPU,"));
    EXPECT_TRUE(holds(read("total_sum.csv"), "Function,Class,Control87,"));
    EXPECT_TRUE(holds(read("total_sum.csv"), "END_DATA"));
    EXPECT_TRUE(holds(read("log.txt"), "RK Summary"));
}

TEST_F(SessionRun, ConsoleNeverRunsAheadOfTheTable) {
    FILE *before = stdout;
    run({"-v"}, m_text);
    EXPECT_EQ(before, stdout);
    EXPECT_EQ(__flbf(stdout), 0); // not line buffered
    EXPECT_GT(__fbufsize(stdout), 1u);
}

// ---- sessions of other classes -------------------------------------------------------------------

class StoppedSession : public rkSession {
public:
    bool startSession() override { return false; }
};

TEST_F(SessionRun, SessionCanStopItsRun) {
    replaceSession<StoppedSession>();
    rkRegTest(new SpyTest("keliA"));
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_EQ(m_text, "Command line options: \n-B: batch mode\n");
    EXPECT_EQ(SpyTest::m_runs, 0);
}

TEST_F(SessionRun, CommonDataGoThroughTheirSlot) {
    class QuietSession : public rkSession {
    public:
        void readCommonData() override { ++m_reads; }
        int m_reads = 0;
    };
    QuietSession *session = replaceSession<QuietSession>();
    EXPECT_EQ(run({"-B"}, m_text), 0);
    EXPECT_EQ(session->m_reads, 1);
    EXPECT_FALSE(holds(m_text, "Method = "));
}

} // namespace

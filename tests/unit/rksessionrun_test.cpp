// rksessionrun_test.cpp - tests of rksession: whole runs, and what stands between the keys and the tests.

#include <stdio_ext.h>
#include <time.h>

#include "rksession.h"
#include "sessionfixture.h"

namespace {

const std::string banner = "\nTarvo(R) Kelvara. Rakova 2.0, Mar 16 2010\n";
const std::string hookLine = "\nKEL Core library functions have been integrated into RK\n";

class SessionRun : public SessionFixture {
protected:
    void SetUp() override {
        SessionFixture::SetUp();
        std::filesystem::current_path(m_dir.path());
    }
    std::string m_text;
};

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

// ---- between the keys and the tests --------------------------------------------------------

TEST_F(SessionRun, CommonDataIsReadAtTheLevelOfResults) {
    pSession->m_levelMode = 23;
    pSession->beginCommonData();
    EXPECT_EQ(g_ostrm.outLevel(), 7);
    pSession->endCommonData();
    EXPECT_EQ(g_ostrm.outLevel(), 23);
}

TEST_F(SessionRun, ConsoleStaysAttachedOnlyForTheParametersOfEachTest) {
    pSession->m_askMode = 7;
    g_istrm.setIStream(&c_in);
    pSession->endCommonData();
    EXPECT_FALSE(g_istrm.hasConsole());
    pSession->m_askMode = 15;
    g_istrm.setIStream(&c_in);
    pSession->endCommonData();
    EXPECT_TRUE(g_istrm.hasConsole());
}

TEST_F(SessionRun, NothingIsAskedWhileParametersAreSelected) {
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

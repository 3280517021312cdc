// rksession.cpp - the sequence of a run.

#include "rksession.h"

#include <fcntl.h>
#include <stdio.h>
#include <time.h>
#include <unistd.h>

#include "rkcstream.h"
#include "rkinfotest.h"
#include "rkistream.h"
#include "rkregister.h"
#include "rkreport.h"

int rkSession::m_nameMode = 0;
bool rkSession::m_nameExit = false;
int rkSession::m_exitLevel = 0;

char s_hintArg = 0;
bool s_hintHide = true;
bool s_version = false;
int s_cpuType = -1;
int s_numThreads = 0;
const char *RK_version = "2.0";

static const OutputLevel resultsLevel = MsgError | MsgWarning | MsgResult;

void rkSession::initSession() {
    m_conditions = new rkConditions;
    m_askMode = 0;
    m_batch = false;
    m_noSort = false;
    m_enumMode = 100;
    m_levelMode = MsgError;
    buildKeyTable();
}

// A file that is opened while one of these is closed would take its place, and the console text would land in
// it.
static void keepStandardFiles() {
    for (int file = 0; file <= STDERR_FILENO; ++file) {
        if (fcntl(file, F_GETFD) == -1) open("/dev/null", O_RDWR);
    }
}

// Full buffering keeps the console from running ahead of the tables: both are flushed at the same places.
static void openConsole() {
    keepStandardFiles();
    setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
    g_ostrm.setMsgLevel(MsgResult);
    g_ostrm.push_back(&c_out);
}

static void flushAll() {
    g_ostrm.flush();
    g_cstrm.flush();
    g_qstrm.flush();
    g_ustrm.flush();
    g_mstrm.flush();
    fflush(stdout);
}

static void registerInfoTest() {
    const rkFuncLoop noLoop = nullptr;
    const rkFuncStat noStat = nullptr;
    rkRegTest(new __rkTarvoCpuTest(noLoop, noStat, "__rkTarvoCpu", "../rakova/api/src/rk",
                                   "__rkTarvoCpuTest/Tarvo CPU information"));
}

// True if there is anything to run.
bool rkSession::start(int argc, char **argv) {
    return parseCommandLine(argc, argv) && startSession() && !quickOutput();
}

int rkSession::run(int argc, char **argv) {
    openConsole();
    setKelEnvironment();
    initSession();
    registerInfoTest();
    pTestList->m_startTime = time(nullptr);
    int status = 0;
    bool started = start(argc, argv);
    if (started) status = runTests();
    pTestList->m_endTime = time(nullptr);
    if (started) outputFooter();
    outputSignal();
    deleteTestList();
    flushAll();
    return status;
}

static void bindLibrary() {
    if (kelEnvironment) {
        initStaticCpu();
        setNumThreads();
        setKelEnvironment();
    }
    setKelLibInfo();
}

static void reportMissing() {
    if (!g_pMissingList || g_pMissingList->empty()) return;
    rkString names("");
    for (rkString &name : *g_pMissingList) names << (names.length() > 0 ? ", " : "") << name;
    g_ostrm << MsgError << "-- Left out, this build of the library has no " << names << "\n" << EndMessage;
}

// Past g_ostrm, so that a log does not get this line.
static void sortTests() {
    printf("Sorting functions...");
    pTestList->sortFunc();
    putchar('\n');
}

int rkSession::runTests() {
    bindLibrary();
    reportMissing();
    if (!m_noSort) sortTests();
    outputHeader();
    if (s_parmFunc) s_parmFunc();
    selectTestParameters();
    beginCommonData();
    readCommonData();
    endCommonData();
    if (!g_pHotList) g_pHotList = new rkList<rkString>;
    putTableTitle();
    return pTestList->runTests(*m_conditions);
}

static void putBanner() {
    g_ostrm << "\nTarvo(R) Kelvara. Rakova " << RK_version << ", "
            << "Mar 16 2010"
            << "\n";
}

bool rkSession::quickOutput() {
    if (s_version || s_hintArg) putBanner();
    if (s_hintArg) {
        hint(s_hintArg, s_hintHide);
        return true;
    }
    if (m_enumMode > 1) return s_version;
    if (m_enumMode == 0 && !m_noSort) pTestList->sortFunc();
    listTests(m_enumMode);
    return true;
}

void rkSession::listTests(int mode) {
    rkReportList list(*pTestList, *m_conditions, mode);
    g_ostrm << list;
    g_cstrm << list;
}

// No question may be asked while the tests tell their parameters.
void rkSession::selectTestParameters() {
    if (!g_pParmList) return;
    bool batch = m_batch;
    int askMode = m_askMode;
    m_batch = true;
    m_askMode = 0;
    pTestList->selectCommonParms(*m_conditions, *g_pParmList);
    m_batch = batch;
    m_askMode = askMode;
}

void rkSession::beginCommonData() {
    g_ostrm.setOutLevel(resultsLevel);
}

void rkSession::endCommonData() {
    const int askEachTest = 8;
    g_ostrm.setOutLevel(m_levelMode);
    if (!(m_askMode & askEachTest)) g_istrm.setIStream(nullptr);
}

// The title takes a second or two at its first use: it measures the processor's frequency.
void rkSession::outputHeader() {
    g_ostrm.flush();
    rkReportTitle title(*pTestList);
    g_ostrm << title;
    g_cstrm << title;
    g_qstrm << title;
    g_ustrm << title;
    rkReportTestResult summaryHeader(nullptr);
    g_ustrm << summaryHeader;
}

void rkSession::outputFooter() {
    rkReportEnd end(*pTestList);
    g_ostrm << MsgError << end << EndMessage;
    g_ustrm << end;
}

void rkSession::outputSignal() {
    if (m_sglName.length() == 0) return;
    o_stream file(m_sglName, io_stream::Write | io_stream::AsIs, true);
    int seconds = static_cast<int>(difftime(pTestList->m_endTime, pTestList->m_startTime));
    file << rkReportFormat::getTimeStr(seconds) << "\n";
    file << ctime(&pTestList->m_endTime) << "\n";
}

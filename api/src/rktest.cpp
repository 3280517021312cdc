// rktest.cpp - the life cycle of a test.

#include "rktest.h"

#include "rkconditions.h"
#include "rkctrl.h"
#include "rkexception.h"
#include "rkpriority.h"
#include "rkregister.h"
#include "rkreport.h"
#include "rksession.h"
#include "rktrace.h"

rkResult rkTest::m_currentResult = rkResNotRun;
int rkTest::m_numParmsColm;
int rkTest::m_numResultColm;
int rkTest::m_hot;
bool rkTest::m_pressing;
bool rkTest::m_cache;
int rkTest::m_vectorNum;
int rkTest::m_vectorShift;

// What the console must come back to when a step is left in its middle.
OutputLevel OldOutLevel = 1;
static int g_oldMsgDepth;

rkTestInfo::rkTestInfo(rkString const &text) {
    int first = text.find("/", 0);
    if (first == rkString::npos) {
        m_name = text;
        return;
    }
    m_name = text.substr(0, first);
    int second = text.find("/", first + 1);
    m_descr = second == rkString::npos ? text.substr(first + 1) : text.substr(first + 1, second - first - 1);
    if (second != rkString::npos) m_marks = text.substr(second + 1);
}

rkTest::rkTest(rkString name, rkString file, rkString info)
    : m_startTime(time(nullptr)),
      m_endTime(time(nullptr)),
      m_name(name),
      m_file(file.getFileName()),
      m_info(info),
      m_result(rkResNotRun),
      m_funcLoop(nullptr),
      m_funcStat(nullptr),
      m_funcCall(nullptr),
      m_funcInit(nullptr),
      m_funcOld(nullptr),
      m_cacheIterator(nullptr) {
    rkTest::initSettings();
}

rkTest::rkTest(rkTool::FuncOld old, rkString name, rkString file, rkString info) : rkTest(name, file, info) {
    m_funcOld = old;
}

rkTest::rkTest(rkFuncLoop loop, rkFuncStat stat, rkString name, rkString file, rkString info)
    : rkTest(name, file, info) {
    m_funcLoop = loop;
    m_funcStat = stat;
}

rkTest::rkTest(rkFuncCall call, rkFuncInit init, rkFuncLoop loop, rkFuncStat stat, rkString name,
               rkString file, rkString info)
    : rkTest(loop, stat, name, file, info) {
    m_funcCall = call;
    m_funcInit = init;
}

rkTest::~rkTest() {
    delete m_cacheIterator;
}

void rkTest::initSettings() {
    m_currentResult = rkResNotRun;
    m_firstPass = true;
    m_bad87 = m_badSsx = false;
    m_deprecatedFlag = false;
    delete m_cacheIterator;
    m_cacheIterator = nullptr;
    m_cacheOverflow = false;
    m_parms.clear();
}

static bool isHotName(rkString const &name) {
    if (!g_pHotList) return false;
    for (auto i = g_pHotList->begin(); i != g_pHotList->end(); ++i) {
        if (*i == name) return true;
    }
    return false;
}

bool rkTest::isHotLine() {
    return isHotName(m_name);
}

bool rkTest::tobeRun(rkConditions &conditions) {
    if (!conditions.tobeRun(this)) return false;
    return m_hot != 2 || isHotName(m_name);
}

int rkTest::compareFunc(rkTest const *other) const {
    return m_name.compare(other->m_name);
}

rkResult rkTest::run() {
    if (!runGuarded()) return rkResNotRun;
    m_result = m_currentResult;
    m_endTime = time(nullptr);
    rkTraced("testResult", [this] {
        rkReportTestResult testResult(this);
        g_ostrm << testResult;
        g_ustrm << testResult;
    });
    g_ostrm.flush();
    g_cstrm.flush();
    g_ustrm.flush();
    rkTraced("endTest", [this] { endTest(); });
    return m_result;
}

// False if the test is to be left out. Signals and exceptions of the test end here.
bool rkTest::runGuarded() {
    OldOutLevel = g_ostrm.outLevel();
    g_oldMsgDepth = g_ostrm.m_msgStack.size();
    rkSignalGuard guard;
    try {
        if (_setjmp(tsSignal::m_jmpbuf)) throw rkException(tsSignal::getInfo());
        return steps();
    } catch (rkException &e) {
        onException(e);
        return true;
    }
}

bool rkTest::steps() {
    m_result = rkResSuccess;
    m_currentResult = rkResNotRun;
    m_tool = g_tool;
    if (m_info.m_marks.find("Ibs", 0) != rkString::npos) m_tool.m_avoidBad = true;
    g_trace.clearText();
    if (!rkTraced("setIniSection", [this] { return setIniSection(m_name); })) return false;
    rkTraced("beginTest", [this] { beginTest(); });
    OldOutLevel = g_ostrm.outLevel();
    m_startTime = time(nullptr);
    outputTitle();
    if (rkTraced("canStart", [this] { return canStart(); })) {
        startedSteps();
    } else {
        g_ostrm << MsgError << "-- Can't start timing\n" << EndMessage;
        m_currentResult = rkResDataError;
    }
    rkTraced("flushStart", [this] { flushStart(); });
    return true;
}

void rkTest::outputTitle() {
    g_trace.traceIn("testTitle");
    rkReportTestTitle testTitle(this);
    g_trace.traceOut("testTitle");
    rkTraced("g_ostrm<<testTitle", [&] { g_ostrm << MsgError << testTitle << EndMessage; });
    rkTraced("g_ustrm<<testTitle", [&] { g_ustrm << testTitle; });
}

void rkTest::startedSteps() {
    if (m_cache && !m_cacheIterator) {
        g_ostrm << MsgError << "-- Can't run "
                << "In-Outof-Cache"
                << " timing: no program support for function " << m_name << "\n"
                << EndMessage;
        return;
    }
    rkTraced("parmsFromIstrm", [this] { parmsFromIstrm(); });
    putTableName();
    if (g_istrm.iniIsWritten() || rkSession::m_nameExit) {
        m_currentResult = rkResSuccess; // only names and parameters are wanted
        return;
    }
    outputRegInfo();
    rkTraced("loopData", [this] { loopData(); });
}

// Puts the console back to where a guarded stretch began.
static void restoreLevels(OutputLevel level, int msgDepth) {
    g_ostrm.setOutLevel(level);
    while (g_ostrm.m_msgStack.size() > msgDepth) g_ostrm.restoreMsgLevel();
}

// A fault in a primitive jumps past the end of the measured stretch, where the priority and the
// floating-point units would come back.
void rkTest::onException(rkException &e) {
    rkResetPriority();
    initCtrlStatus();
    closeTable();
    g_ostrm.m_held = false;
    m_currentResult = rkResException;
    restoreLevels(OldOutLevel, g_oldMsgDepth);
    g_ostrm << MsgError << e.msg() << " in " << g_trace.getCurName() << "\n" << EndMessage;
}

void rkTest::startAndStop() {
    OutputLevel level = g_ostrm.outLevel();
    int msgDepth = g_ostrm.m_msgStack.size();
    g_ostrm.setOutLevel(MsgError);
    dryPass(msgDepth);
    g_ostrm.setOutLevel(level);
}

void rkTest::dryPass(int msgDepth) {
    rkSignalGuard guard;
    try {
        if (_setjmp(tsSignal::m_jmpbuf)) throw rkException(tsSignal::getInfo());
        beginTest();
        canStart();
        flushStart();
        endTest();
    } catch (rkException &e) {
        restoreLevels(MsgError, msgDepth);
        g_ostrm << MsgError << e.msg() << " in startAndStop of " << m_name << " test\n" << EndMessage;
    }
}

bool rkTest::setIniSection(rkString name) {
    rkIniFile *ini = g_istrm.m_iniFile;
    if (m_pressing && ini && !ini->sectionExist(name)) return false;
    if (g_istrm.iniIsWritten()) ini->write(name);
    g_istrm.setIniSection(name);
    return true;
}

void rkTest::regCacheParm(rkIterator<int> &parm, rkObject *object, rkCacheIterator::SetNewValue set) {
    if (m_cache && !m_cacheIterator) {
        m_cacheIterator = new rkCacheIteratorInt(parm, object, set);
        m_parms.push_back(m_cacheIterator);
    } else {
        m_parms.push_back(&parm);
    }
}

void rkTest::parmsFromIstrm() {
    for (auto i = m_parms.begin(); i != m_parms.end(); ++i) (*i)->fromIStream(g_istrm);
}

void rkTest::parmsToOstrm() {
    for (auto i = m_parms.begin(); i != m_parms.end(); ++i) (*i)->toOStream(g_ostrm);
}

void rkTest::parmsToCstrm() {
    for (auto i = m_parms.begin(); i != m_parms.end(); ++i) (*i)->toCStream(g_cstrm);
}

void rkTest::parmsNameToCstrm() {
    for (auto i = m_parms.begin(); i != m_parms.end(); ++i) (*i)->nameToCStream(g_cstrm);
}

bool rkTest::setDeprecatedFlag(bool on) {
    m_deprecatedFlag = on;
    bool any = false;
    for (auto i = m_parms.begin(); i != m_parms.end(); ++i) {
        if (!on) {
            (*i)->setDeprecatedFlag(false);
        } else if ((*i)->isDeprecatedParm()) {
            if (!(*i)->setDeprecatedFlag(true)) return false;
            any = true;
        }
    }
    return any;
}

void rkTest::setTimingResult(double clocks, rkString comment) {
    m_tool.m_funcClocks = clocks;
    m_tool.m_comment = comment;
}

void rkTest::initCtrlStatus() {
    g_ctrl87.init();
    g_ssx.init();
}

void rkTest::badCtrlStatus(bool &x87, bool &ssx) {
    x87 = g_ctrl87.badStatus();
    ssx = g_ssx.badStatus();
}

void rkTest::clearCtrlStatus() {
    g_ctrl87.clear();
    g_ssx.clear();
}

void rkTest::printCtrlStatus(bool x87, bool ssx) {
    if (x87) g_ostrm << MsgWarning << "-- Status    87: " << g_ctrl87.strSW() << "\n" << EndMessage;
    if (ssx) g_ostrm << MsgWarning << "-- Status    SSX: " << g_ssx.strExceptionState() << "\n" << EndMessage;
}

rkResult rkTest::checkCtrlStatus() {
    bool x87 = false, ssx = false;
    badCtrlStatus(x87, ssx);
    if (x87) m_bad87 = true;
    if (ssx) m_badSsx = true;
    if (x87 || ssx) printCtrlStatus(x87, ssx);
    clearCtrlStatus();
    return x87 || ssx ? rkResCtrlStatusWarning : rkResNotRun;
}

void __rkInfoTest::loopData() {
    g_ostrm << MsgError;
    printInformation();
    g_ostrm << EndMessageFlush;
    m_currentResult = rkResSuccess;
}

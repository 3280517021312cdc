// rktool.cpp - the entries of the timing engine, its settings and texts.

#include "rktool.h"

#include <limits.h>
#include <stdio.h>

#include "rkctrl.h"
#include "rkstream.h"
#include "rkticker.h"
#include "rktrace.h"

static const int autoFirstLoops = 1;
static const int autoMaxLoops = 2048;
static const long long autoMinClocks = 10;

rkTool g_tool;

rkResult (*rkTool::m_pCheckStatus)(int status) = nullptr;
int rkTool::m_priority = 0;

void rkInternalError(char const *path, int line) {
    g_ostrm << MsgError << "RK internal error: file " << path << ", line " << line << "\n" << EndMessageFlush;
}

rkTool::rkTool()
    : m_result(rkResNotRun),
      m_funcClocks(0.0),
      m_loops(0),
      m_accuracy(0.05),
      m_method(Auto),
      m_numLoops(10),
      m_firstLoops(1),
      m_maxLoops(2048),
      m_useCalls(false),
      m_useData(false),
      m_minClocks(100),
      m_minCalls(12),
      m_maxClocks(10000),
      m_avoidBad(false),
      m_avoidBadNow(false),
      m_numClocks(0),
      m_actualAccuracy(1.0),
      m_autoFirstLoops(0),
      m_autoMaxLoops(0),
      m_startTime(time(nullptr)),
      m_stopTime(m_startTime),
      m_funcLoop(nullptr),
      m_funcStat(nullptr),
      m_funcCall(nullptr),
      m_funcInit(nullptr) {}

void rkTool::reset() {
    m_actualAccuracy = 1.0;
    m_result = rkResNotRun;
    m_funcClocks = 0.0;
    m_numClocks = 0;
    m_loops = 0;
    m_resultText = "";
    m_comment = "";
    m_funcLoop = nullptr;
    m_funcStat = nullptr;
    m_funcCall = nullptr;
    m_funcInit = nullptr;
    m_stopTime = time(nullptr);
}

// ---- settings -----------------------------------------------------------------

static int saturated(long long n) {
    return n > INT_MAX ? INT_MAX : static_cast<int>(n);
}

static int shifted(int value, int right) {
    if (right >= 0) return right > 31 ? 0 : value >> right;
    int left = right < -31 ? 31 : -right;
    return saturated(static_cast<long long>(value) << left);
}

void rkTool::getAutoParameters(int &first, int &max, long long &clocks) const {
    first = autoFirstLoops;
    max = autoMaxLoops;
    clocks = autoMinClocks * rkCpuTicker::getClockFactor();
}

void rkTool::setMethodAuto() {
    m_method = Auto;
}

void rkTool::setMethodLoop(int n) {
    m_method = Manual;
    m_numLoops = n < 1 ? 1 : n;
}

void rkTool::setMethodStat(int calls, long long clocks) {
    m_method = Statistic;
    m_minCalls = calls;
    m_maxClocks = clocks;
}

void rkTool::setMethodBest(int first, int max, long long clocks) {
    m_method = Iterative;
    m_minClocks = clocks;
    m_firstLoops = first < 1 ? 1 : first;
    long long eightFirst = 8LL * first;
    m_maxLoops = eightFirst > max ? saturated(eightFirst) : max;
}

bool rkTool::getMethodAuto() const {
    return m_method == Auto;
}

bool rkTool::getMethodLoop(int &n) const {
    if (m_method != Manual) return false;
    n = m_numLoops;
    return true;
}

bool rkTool::getMethodStat(int &calls, long long &clocks) const {
    if (m_method != Statistic) return false;
    calls = m_minCalls;
    clocks = m_maxClocks;
    return true;
}

bool rkTool::getMethodBest(int &first, int &max, long long &clocks) const {
    if (m_method != Iterative) return false;
    first = m_firstLoops;
    max = m_maxLoops;
    clocks = m_minClocks;
    return true;
}

void rkTool::setLoopFactor(int f) {
    m_autoFirstLoops = f == 0 ? 0 : shifted(autoFirstLoops, f);
    m_autoMaxLoops = f == 0 ? 0 : shifted(autoMaxLoops, f);
}

// ---- texts --------------------------------------------------------------------

rkString rkTool::getAccuracyStr(double a) {
    double percent = a * 100.0;
    char text[400]; // the greatest double has 309 digits
    snprintf(text, sizeof text, percent < 0.1 ? "%.2f%c" : "%.1f%c", percent, '%');
    return text;
}

rkString rkTool::clockStr(long long n) {
    rkString suffix;
    while (static_cast<double>(n) > 2147483647.0) {
        n /= 10;
        suffix += '0';
    }
    rkString text;
    text << n;
    return text + suffix;
}

void rkTool::updateResult(rkResult r) {
    if (r <= m_result) return;
    m_result = r;
    m_resultText = rkResultString(r);
}

// ---- entries ------------------------------------------------------------------

static rkTool::FuncOld s_funcOld = nullptr;
static rkTool *s_tool = nullptr;

static rkResult _funcLoop(int loops, long long *clocks) {
    rkResult r = s_funcOld(*s_tool, loops);
    *clocks = rkCpuTicker::getClockFactor() * s_tool->m_numClocks;
    return r;
}

rkResult rkTool::timing(FuncOld old) {
    s_funcOld = old;
    s_tool = this;
    return timing(old ? _funcLoop : nullptr, nullptr, nullptr, nullptr);
}

static void attention(char const *text) {
    g_ostrm << MsgError << text << EndMessage;
}

rkResult rkTool::timing(rkFuncLoop loop, rkFuncStat stat, rkFuncCall call, rkFuncInit init) {
    reset();
    if (!loop && !stat && !call) {
        g_ostrm << MsgError << " Internal test problem: The test cannot execute standard timing.\n"
                << " No one of funcLoop, funcStat or funcCall is registered in the test.\n"
                << EndMessageFlush;
        return rkResError;
    }
    m_funcLoop = loop;
    m_funcStat = stat;
    m_funcCall = call;
    m_funcInit = init;
    if (m_method == Auto) {
        rkTraced("autoTiming", [this] { autoLoopTiming(); });
    } else if (m_method == Manual) {
        if (!loop && !call) {
            attention(
                " ATTENTION! The test cannot execute Manual loop timing.\n"
                " Statistic timing will be run instead.\n");
            setMethodStat(m_numLoops, 0);
            return timing(nullptr, stat, nullptr, init);
        }
        rkTraced("customLoopTiming", [this] { customLoopTiming(); });
    } else if (m_method == Statistic) {
        if (!stat && !call) {
            attention(
                " ATTENTION! The test cannot execute Statistic timing.\n"
                " Manual loop timing will be run instead.\n");
            setMethodLoop(m_minCalls);
            return timing(loop, nullptr, nullptr, init);
        }
        rkTraced("statisticTiming", [this] { statisticTiming(); });
    } else if (m_method == Iterative) {
        rkTraced("iterativeTiming", [this] { bestTiming(m_firstLoops, m_maxLoops, m_minClocks); });
    } else {
        rkInternalError("../rakova/api/src/rktool", 746);
        m_result = rkResError;
    }
    return m_result;
}

// ---- methods ------------------------------------------------------------------

void rkTool::autoLoopTiming() {
    int first, max;
    long long clocks;
    getAutoParameters(first, max, clocks);
    if (m_autoFirstLoops != 0) first = m_autoFirstLoops;
    if (m_autoMaxLoops != 0) max = m_autoMaxLoops;
    bestTiming(first, max, clocks);
}

static void showOutcome(rkTool const &tool) {
    g_ostrm << MsgProcess << "        funcClocks = " << tool.m_funcClocks << "\n"
            << "        result     = " << rkResultString(tool.m_result) << "\n"
            << EndMessage;
}

void rkTool::customLoopTiming() {
    if (g_ostrm.isOn(MsgProcess)) {
        g_ostrm << MsgProcess << "    Manual method: \n"
                << "        numLoops   = " << m_numLoops << "\n"
                << EndMessage;
    }
    rkTraced("runTimFunc", [this] { runTimFunc(m_numLoops, &m_funcClocks, true); });
    m_actualAccuracy = 0.0;
    m_comment << "nLps=" << m_numLoops;
    if (g_ostrm.isOn(MsgProcess)) showOutcome(*this);
}

void rkTool::statisticTiming() {
    if (g_ostrm.isOn(MsgProcess)) {
        g_ostrm << MsgProcess << "    Statistical method:\n"
                << "        minCalls   = " << m_minCalls << "\n"
                << "        maxClocks  = " << clockStr(m_maxClocks) << "\n"
                << EndMessage;
    }
    int calls = m_minCalls;
    rkTraced("runTimFuncStat", [this, &calls] { runTimFuncStat(m_maxClocks, &calls, &m_funcClocks); });
    m_actualAccuracy = 0.0;
    m_comment << "nCalls=" << calls;
    if (!g_ostrm.isOn(MsgProcess)) return;
    g_ostrm << MsgProcess << "        numCalls   = " << calls << "\n" << EndMessage;
    showOutcome(*this);
}

// rktimingloops.cpp - single measuring runs, and the timed loops of a test that has only a call.

#include <limits.h>

#include "rkctrl.h"
#include "rkpriority.h"
#include "rktest.h"
#include "rkticker.h"
#include "rktool.h"
#include "rktrace.h"

static char const *const sourcePath = "../rakova/api/src/rktool";

static rkResult internalError(int line) {
    rkInternalError(sourcePath, line);
    return rkResError;
}

// A routine that ended at its first call gives a count of -1.
static double clocksPerCall(long long clocks, int calls) {
    return calls > 0 ? static_cast<double>(clocks) / static_cast<double>(calls) : 0.0;
}

// ---- guards -------------------------------------------------------------------

void rkTool::ctrlStart() {
    g_ctrl87.start();
    g_ssx.start();
}

void rkTool::ctrlStop() {
    g_ctrl87.stop();
    g_ssx.stop();
}

// ---- runs ---------------------------------------------------------------------

static rkResult callRoutine(rkTool &tool, int *calls, bool useLoop) {
    if (useLoop) {
        if (tool.m_funcLoop) return tool.m_funcLoop(*calls, &tool.m_numClocks);
        if (tool.m_funcCall) return tool.timCall_Loop(*calls, &tool.m_numClocks, false);
        return internalError(248);
    }
    if (tool.m_funcStat) return tool.m_funcStat(calls, &tool.m_numClocks);
    if (tool.m_funcCall) return tool.timCall_Stat(calls, &tool.m_numClocks, false);
    return internalError(257);
}

static rkResult runGuarded(rkTool &tool, int *calls, bool useLoop) {
    if (tool.m_avoidBad && tool.m_funcInit) rkTraced("initFunc call", [&] { tool.m_funcInit(); });
    rkTool::ctrlStart();
    rkResult r = rkTraced("kelFunctionCalls", [&] {
        rkSetPriority(rkTool::m_priority);
        rkResult outcome = callRoutine(tool, calls, useLoop);
        rkResetPriority();
        return outcome;
    });
    rkTool::ctrlStop();
    return r;
}

static rkResult runWithData(rkTool &tool, int *calls, bool useLoop) {
    return rkTraced("kelFunctionCalls", [&] {
        return useLoop ? tool.timCall_Loop(*calls, &tool.m_numClocks, true)
                       : tool.timCall_Stat(calls, &tool.m_numClocks, true);
    });
}

void rkTool::runTimFunc(int n, double *out, bool forceLoop) {
    if (m_useData && !m_funcCall) {
        m_numClocks = 0;
        m_result = rkResNotRun;
        return;
    }
    bool useLoop = forceLoop || !m_useCalls;
    int calls = n;
    for (int attempt = 0; attempt < 2; ++attempt) {
        calls = n;
        m_numClocks = 0;
        updateResult(m_useData ? runWithData(*this, &calls, useLoop) : runGuarded(*this, &calls, useLoop));
        if (rkIsError(m_result) || m_numClocks > 0) break;
    }
    *out = clocksPerCall(m_numClocks, calls);
}

static rkResult runStatGuarded(rkTool &tool, int *calls, long long *clocks) {
    rkTool::ctrlStart();
    rkSetPriority(rkTool::m_priority);
    rkResult r = rkTraced("kelFunctionCalls", [&] {
        return tool.m_funcStat ? tool.m_funcStat(calls, clocks) : tool.timCall_Stat(calls, clocks, false);
    });
    rkResetPriority();
    rkTool::ctrlStop();
    return r;
}

void rkTool::runTimFuncStat(long long clocks, int *calls, double *out) {
    if (m_useData && !m_funcCall) {
        m_result = rkResNotRun;
        return;
    }
    rkResult r = m_useData ? timCall_Stat(calls, &clocks, true) : runStatGuarded(*this, calls, &clocks);
    m_numClocks = clocks;
    *out = clocksPerCall(clocks, *calls);
    updateResult(r);
}

// ---- loops --------------------------------------------------------------------

static int warmUp(rkTool const &tool) {
    if (tool.m_funcInit) tool.m_funcInit();
    return tool.m_funcCall();
}

static bool refuses(int status) {
    return rkTool::m_pCheckStatus && status < 0;
}

static rkResult judge(int status) {
    return rkTool::m_pCheckStatus ? rkTool::m_pCheckStatus(status) : rkResSuccess;
}

// All calls together are timed, so what is absent is left out of the loop at compile time.
template <bool Init, bool Reset>
static unsigned long long timeLoop(int n, rkFuncCall call, rkFuncInit init, int *kept) {
    int last = 0;
    unsigned long long begin = kel_get_cpu_counter();
    for (int i = 0; i < n; ++i) {
        if constexpr (Init) init();
        if constexpr (Reset) rkTest::resetAllVectors();
        int status = call();
        if (status != 0) last = status;
        if (status < 0) break;
    }
    unsigned long long total = kel_get_cpu_counter() - begin;
    if (last != 0) *kept = last;
    return total;
}

rkResult rkTool::timCall_Loop(int n, long long *clocks, bool reset) {
    if (!m_funcCall) return internalError(758);
    int status = warmUp(*this);
    if (refuses(status)) return m_pCheckStatus(status);
    auto withInit = reset ? timeLoop<true, true> : timeLoop<true, false>;
    auto withoutInit = reset ? timeLoop<false, true> : timeLoop<false, false>;
    unsigned long long total = (m_funcInit ? withInit : withoutInit)(n, m_funcCall, m_funcInit, &status);
    *clocks = rkCpuTicker::getClockFactor() * static_cast<long long>(total);
    return judge(status);
}

static unsigned long long timeCall(rkFuncCall call, bool reset, int *status) {
    unsigned long long begin = kel_get_cpu_counter();
    if (reset) rkTest::resetAllVectors();
    *status = call();
    return kel_get_cpu_counter() - begin;
}

rkResult rkTool::timCall_Stat(int *calls, long long *clocks, bool reset) {
    if (!m_funcCall) return internalError(795);
    int status = warmUp(*this);
    if (refuses(status)) return m_pCheckStatus(status);
    long long const factor = rkCpuTicker::getClockFactor();
    unsigned long long total = 0;
    int i = 0;
    while (i < INT_MAX && (i < *calls || factor * static_cast<long long>(total) < *clocks)) {
        if (m_funcInit) m_funcInit();
        total += timeCall(m_funcCall, reset, &status);
        // The call between two timed ones is not timed on purpose.
        int between = m_funcCall();
        if (between != 0) status = between;
        if (between < 0) break;
        ++i;
    }
    *calls = i;
    *clocks = factor * static_cast<long long>(total);
    return judge(status);
}

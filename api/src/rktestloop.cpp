// rktestloop.cpp - the walk over the parameter sets of a test.

#include "rktest.h"
#include "rktrace.h"

extern OutputLevel OldOutLevel;

// The step that the walk is part of. Not on the stack: a fault in a primitive jumps over it there, and the
// text would be lost.
static rkString g_walkName;

void rkTest::loopData() {
    m_firstPass = true;
    g_walkName = g_trace.getCurName();
    g_cstrm.identicalLinesStart(m_numParmsColm);
    bool constsOut = false;
    do {
        g_trace.setCurName(g_walkName);
        m_vectorNum = m_vectorShift = 0; // every set starts at the same misalignment
        if (!rkTraced("canContinue", [this] { return canContinue(); })) {
            noMoreSets();
            break;
        }
        m_firstPass = false;
        doSet(constsOut);
        rkTraced("flushData", [this] { flushData(); });
    } while (!rkIsError(m_currentResult));
    closeLoop();
}

void rkTest::noMoreSets() {
    if (!m_firstPass) return;
    g_ostrm << MsgError << "-- One of argument list for timing is empty\n" << EndMessage;
    raiseResult(rkResDataError);
}

void rkTest::closeLoop() {
    if (m_currentResult == rkResNotRun) {
        g_ostrm << MsgError << "-- Error while initialization of function data\n" << EndMessage;
        raiseResult(rkResDataError);
    }
    g_cstrm.linePostponeOut(m_numResultColm + m_numParmsColm);
    if (!g_cstrm.identicalLinesStop()) return;
    g_ostrm << MsgWarning << "-- Warning: duplicate lines in performance table (csv-file)\n" << EndMessage;
    raiseResult(g_ostrm.outLevel() <= MsgError ? rkResSuccess : rkResDataWarning);
}

// An odometer whose last parameter turns fastest.
bool rkTest::canContinue() {
    if (m_parms.empty()) return m_firstPass;
    if (m_cacheIterator && m_cacheOverflow) return canRepeatForCache();
    if (m_firstPass) {
        for (auto i = m_parms.begin(); i != m_parms.end(); ++i) {
            if (!(*i)->firstValue()) return false;
        }
        return true;
    }
    for (auto i = m_parms.end(); i != m_parms.begin();) {
        --i;
        if ((*i)->nextValue()) return true;
        (*i)->firstValue();
    }
    return false;
}

// The same values once more with another size of the data.
bool rkTest::canRepeatForCache() {
    m_cacheOverflow = false;
    if (m_cacheIterator->repeatValue()) return true;
    g_ostrm << MsgError;
    m_cacheIterator->outputInfo();
    putTextParms();
    g_ostrm << "-- Fail to allocate " << m_cacheIterator->getComment() << " data\n" << EndMessage;
    raiseResult(rkResDataError);
    return false;
}

void rkTest::doSet(bool &constsOut) {
    if (!rkTraced("initData", [this] { return initData(); })) return;
    if (!constsOut) {
        outputConst();
        constsOut = true;
    }
    if (m_cacheIterator && !m_cacheIterator->validateSize()) {
        m_cacheOverflow = true;
        return;
    }
    putTextParms(MsgResult);
    if (m_tool.m_useData) rkTraced("reserveAllVectors", [] { reserveAllVectors(); });
    if (m_hot == 2 && !isHotLine()) {
        g_ostrm << "  measuring is omitted: not hot line\n";
        return;
    }
    judgeSet(measureSet());
}

rkResult rkTest::measureSet() {
    printAllMemoryBlocks("before function calls");
    OldOutLevel = g_ostrm.outLevel();
    initCtrlStatus();
    if (OldOutLevel == (MsgError | MsgWarning)) g_ostrm.setOutLevel(MsgError | MsgWarning | MsgResult);
    g_ostrm.flush(); // a user sees which set is running
    rkResult r = rkTraced("runTiming", [this] { return runTiming(); });
    g_ostrm.setOutLevel(OldOutLevel);
    return r;
}

// At a level that shows errors only, warnings do not count; the line of the set tells them all the same.
void rkTest::judgeSet(rkResult r) {
    if (r == rkResNotRun) {
        g_ostrm << MsgError << "-- Internal test problem: runTiming() function returns undefined result\n"
                << EndMessage;
        raiseResult(rkResError);
    } else {
        printAllMemoryBlocks("after function calls");
    }
    rkResult ctrl = checkCtrlStatus();
    if (r < ctrl) r = ctrl;
    bool warningsCount = g_ostrm.outLevel() > MsgError;
    raiseResult(rkIsWarning(r) && !warningsCount ? rkResSuccess : r);
    outputResult(r);
}

rkResult rkTest::runTiming() {
    if (m_funcLoop || m_funcStat || m_funcCall)
        return m_tool.timing(m_funcLoop, m_funcStat, m_funcCall, m_funcInit);
    if (m_funcOld) return m_tool.timing(m_funcOld);
    return rkResNotRun;
}

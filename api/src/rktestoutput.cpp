// rktestoutput.cpp - the lines of output of a test.

#include <stdio.h>

#include "rksession.h"
#include "rktest.h"
#include "rkticker.h"
#include "rktrace.h"

static int lineColms() {
    return rkTest::m_numResultColm + rkTest::m_numParmsColm;
}

// ---- names ---------------------------------------------------------------------

static bool s_namesInHand = false; // g_cstrm has the files of g_qstrm

static void exchangeTables() {
    g_cstrm.swap(g_qstrm);
    s_namesInHand = !s_namesInHand;
}

void rkTest::putTableName() {
    if (rkSession::m_nameMode & 1) putTableNameLine();
    if (!(rkSession::m_nameMode & 2)) return;
    exchangeTables();
    putTableNameLine();
    exchangeTables();
}

// A fault between the cells of a row leaves them in hand, where the next test would go on with them; one in a
// row of names leaves the files exchanged. Rows that were held back belong to sets that were measured.
void rkTest::closeTable() {
    g_cstrm.tableFlush();
    if (s_namesInHand) exchangeTables();
    g_cstrm.identicalLinesStart(0);
    g_cstrm.linePostponeOut(lineColms());
}

void rkTest::putTableNameLine() {
    rkTraced("funcToCstrm", [this] { funcToCstrm(); });
    rkTraced("parmsNameToCstrm", [this] { parmsNameToCstrm(); });
    g_cstrm.m_colmCount = m_numParmsColm;
    g_cstrm << "parmNames";
    g_cstrm.lineOut(lineColms());
}

// ---- a row of the table ----------------------------------------------------------

void rkTest::funcToCstrm() {
    g_cstrm << m_name;
}

void rkTest::putTableParms() {
    rkTraced("funcToCstrm", [this] { funcToCstrm(); });
    rkTraced("parmsToCstrm", [this] { parmsToCstrm(); });
    g_cstrm.m_colmCount =
        m_numParmsColm; // the results have their own columns, however many parameters there are
}

void rkTest::resultToCstrm(rkResult) {
    g_cstrm << getComment() << perfString(false) << getUnit() << usecString(m_tool) << perfString(true)
            << rkString(isHotLine() ? "Hot" : "");
}

void rkTest::putTableResult(rkResult r) {
    putTableParms();
    rkTraced("resultToCstrm", [&] { resultToCstrm(r); });
    g_cstrm.lineOut(lineColms());
}

// The row once more with the deprecated texts of its values; it goes out behind all others of the test.
void rkTest::putTableResult_Deprecated(rkResult r) {
    if (setDeprecatedFlag(true)) {
        putTableParms();
        resultToCstrm(r);
        g_cstrm.linePostpone();
    }
    setDeprecatedFlag(false);
}

rkString rkTest::getComment() {
    if (m_deprecatedFlag) return "deprecated";
    if (!m_cacheIterator) return m_tool.m_comment;
    rkString comment = m_cacheIterator->getComment();
    comment << " " << m_tool.m_comment;
    return comment;
}

// ---- numbers ---------------------------------------------------------------------

double rkTest::performance(bool flops) {
    if (!flops) return m_tool.m_funcClocks / getDivisor();
    if (!isFloatFunction() || m_tool.m_funcClocks == 0.0) return 0.0;
    return getFlops() * rkCpuTicker::getFreq() / m_tool.m_funcClocks;
}

rkString rkTest::perfString(bool flops) {
    return formatClocks(performance(flops));
}

// Three significant digits or more.
rkString rkTest::formatClocks(double v) {
    if (v <= 0.0) return "";
    char text[64];
    if (v < 0.0001 || v > 1e7) {
        snprintf(text, sizeof text, "%.3e", v);
        return text;
    }
    int decimals = 0;
    for (double limit = 100.0; v < limit && decimals < 6; limit /= 10.0) ++decimals;
    snprintf(text, sizeof text, "%.*f", decimals, v);
    return text;
}

rkString rkTest::usecString(rkTool const &tool) {
    rkString text;
    text << tool.m_funcClocks / rkCpuTicker::getFreq();
    return text;
}

rkString sFormat(rkString s, int w) {
    int blanks = (w < 0 ? -w : w) - s.length();
    if (blanks <= 0) return s;
    rkString padding;
    padding.resize(blanks, ' ');
    return w < 0 ? s + padding : padding + s;
}

rkString sFormat(double x, int w) {
    rkString text;
    text << x;
    return sFormat(text, w);
}

rkString sFormat(int n, int w) {
    rkString text;
    text << n;
    if (text.length() > (w < 0 ? -w : w) && text.length() > 9) return sFormat(static_cast<double>(n), w);
    return sFormat(text, w);
}

rkString sFormat(long long n, int w) {
    int small = static_cast<int>(n);
    return small == n ? sFormat(small, w) : sFormat(static_cast<double>(n), w);
}

// ---- the console -----------------------------------------------------------------

void rkTest::outputConst() {
    rkTraced("constToOstrm", [this] { constToOstrm(); });
}

void rkTest::outputRegInfo() {
    if (!g_ostrm.beginMessage(MsgResult)) return;
    g_ostrm << regInfo() << "\n";
    g_ostrm.endMessage();
}

// Buffered console text is let go behind the row only: a line that was shown is in the table.
void rkTest::outputResult(rkResult r) {
    if (r == rkResNotRun) return;
    g_ostrm.flush(); // all of the buffer is for this set
    g_ostrm.m_held = true;
    putTextError(r);
    putTextResult(r);
    if (!rkIsError(r)) {
        putTableResult(r);
        putTableResult_Deprecated(r);
    }
    g_ostrm.m_held = false;
    g_ostrm.flush();
}

void rkTest::putTextParms() {
    putTextParms(g_ostrm.msgLevel());
}

void rkTest::putTextParms(MessageLevel level) {
    if (!g_ostrm.isOn(level)) return;
    g_ostrm << level;
    if (m_cacheIterator) g_ostrm << m_cacheIterator->getComment() << ":";
    rkTraced("parmsToOstrm", [this] { parmsToOstrm(); });
    g_ostrm << "\n" << EndMessage;
}

void rkTest::putTextError(rkResult r) {
    if (r <= rkResSuccess) return;
    g_ostrm << (rkIsError(r) ? MsgError : MsgWarning) << "-- " << rkResultString(r)
            << " on test parameters:\n";
    putTextParms();
    g_ostrm << EndMessage;
}

void rkTest::putTextResult(rkResult r) {
    if (r < rkResSuccess || r > rkResWarning) return;
    if (!g_ostrm.beginMessage(r == rkResSuccess ? MsgResult : MsgWarning)) return;
    if (r > rkResSuccess) g_ostrm << "-- performance:\n";
    g_ostrm << testResultString() << "\n";
    g_ostrm.endMessage();
}

rkString rkTest::testResultString() {
    rkString text;
    if (m_tool.m_method == rkTool::Auto || m_tool.m_method == rkTool::Iterative) {
        text << "  acc=" << sFormat(rkTool::getAccuracyStr(m_tool.m_actualAccuracy), -5);
    }
    text << "  " << sFormat(m_tool.m_comment, -10);
    text << "  perf=" << sFormat(m_tool.m_funcClocks, 9) << "/" << sFormat(getDivisor(), 9) << "="
         << sFormat(perfString(false), 9) << " clocks";
    return text;
}

rkString rkTest::regInfo() {
    rkString text("   Test has been registered");
    if (m_info.m_marks.length() > 0) text << " by " << m_info.m_marks << " macro";
    struct {
        bool present;
        char const *name;
    } const routines[] = {{m_funcLoop != nullptr, "loopMethod"},
                          {m_funcStat != nullptr, "statMethod"},
                          {m_funcOld != nullptr, "oldMethod"},
                          {m_funcCall != nullptr, "funcCall"}};
    rkString list;
    for (auto const &routine : routines) {
        if (!routine.present) continue;
        if (list.length() > 0) list << ", ";
        list << routine.name;
    }
    if (list.length() == 0) {
        text << " without any function to call.\n No standard timing method is available";
        return text;
    }
    if (m_funcInit) list << ", funcInit";
    text << " with " << list << ".\n   " << measuringRoutine() << " is called for measuring.";
    return text;
}

rkString rkTest::measuringRoutine() {
    if (m_funcOld) return "oldMethod";
    if (m_funcCall && m_tool.m_useData) return "funcCall with Set&Use";
    if (m_funcCall && !m_funcLoop && !m_funcStat) return "funcCall";
    bool searching = m_tool.m_method == rkTool::Auto || m_tool.m_method == rkTool::Iterative;
    bool byLoop = m_tool.m_method == rkTool::Manual || (searching && !m_tool.m_useCalls);
    if (byLoop) return m_funcLoop ? "loopMethod" : "statMethod";
    return m_funcStat ? "statMethod" : "loopMethod";
}

// rkbesttiming.cpp - the search for a loop count that gives stable clocks.

#include <limits.h>
#include <math.h>

#include <memory>

#include "rkstream.h"
#include "rktest.h"
#include "rkticker.h"
#include "rktool.h"
#include "rktrace.h"

// Text for the user of a quiet run whose measurement failed. Nothing appends to it yet: the result tells.
static rkString info;

// The course of the measuring, a message a step.
template <class... Parts>
static void writeInfo(Parts const &...parts) {
    if (!g_ostrm.isOn(MsgProcess)) return;
    rkString text;
    (text << ... << parts);
    g_ostrm << MsgProcess << text << EndMessage;
}

static void writeError() {
    if (g_ostrm.outLevel() < MsgProcess) g_ostrm << MsgError << info << EndMessageFlush;
    info = "";
}

static char const *countWord(rkTool const &tool) {
    return tool.m_useCalls ? "numCalls" : "numLoops";
}

static int times(int n, int factor) {
    long long product = static_cast<long long>(n) * factor;
    return product > INT_MAX ? INT_MAX : static_cast<int>(product);
}

// ---- arithmetic ---------------------------------------------------------------

// Equal values do not differ, so two zeros give 0 without the division that would raise a flag.
double rkTool::computeAccuracy(double a, double b) {
    return a == b ? 0.0 : 2.0 * fabs(a - b) / (a + b);
}

double rkTool::computeAccuracy(double const *x, int n) {
    double sum = 0.0;
    for (int i = 0; i < n; ++i) sum += x[i];
    if (n < 1 || sum == 0.0) return 0.0;
    double mean = sum / n, greatest = 0.0;
    for (int i = 0; i < n; ++i) greatest = fmax(greatest, fabs(x[i] - mean) / mean);
    return greatest;
}

double rkTool::computeBest(double const *x, int n) {
    if (n < 1) return 0.0;
    double best = x[0];
    for (int i = 1; i < n; ++i) {
        if (x[i] < best) best = x[i];
    }
    return best;
}

// ---- control status -----------------------------------------------------------

static bool badCtrlStatus() {
    bool x87 = false, ssx = false;
    rkTest::badCtrlStatus(x87, ssx);
    return x87 || ssx;
}

static void printBadCtrlStatus(bool flag) {
    if (!flag) return;
    bool x87 = false, ssx = false;
    rkTest::badCtrlStatus(x87, ssx);
    if (x87 || ssx) rkTest::printCtrlStatus(x87, ssx);
}

// ---- steps --------------------------------------------------------------------

rkResult rkTool::startIterations(int loops, long long minClocks) {
    m_loops = loops;
    runTimFunc(loops, &m_funcClocks, false);
    if (rkIsError(m_result)) return m_result;
    bool tooFew = static_cast<double>(minClocks) > static_cast<double>(loops) * m_funcClocks;
    return tooFew ? rkResAccuracyError : rkResSuccess;
}

// Doubles the loop count until two successive measurements agree.
rkResult rkTool::continueIterations(int start, int max) {
    double prior = m_funcClocks;
    m_loops = start < max ? start : max;
    if (m_loops < 1) m_loops = 1; // a doubled 0 never gets to the limit
    for (;;) {
        runTimFunc(m_loops, &m_funcClocks, false);
        if (rkIsError(m_result)) return m_result;
        if (m_funcClocks <= 0.0) return rkResAccuracyError;
        m_actualAccuracy = computeAccuracy(m_funcClocks, prior);
        if (m_avoidBadNow && badCtrlStatus()) {
            m_loops >>= 1;
            m_funcClocks = prior;
            return rkResCtrlStatusWarning;
        }
        if (m_accuracy >= m_actualAccuracy) return rkResSuccess;
        if (m_loops > max / 2) return rkResAccuracyWarning;
        prior = m_funcClocks;
        m_loops *= 2;
    }
}

rkResult rkTool::repeatTiming(int loops, int n) {
    if (n < 1) return rkResSuccess;
    std::unique_ptr<double[]> clocks(new double[n]());
    int count = 0;
    if (m_loops == loops) clocks[count++] = m_funcClocks;
    m_loops = loops;
    for (; count < n; ++count) {
        rkTraced("runTimFunc", [&] { runTimFunc(loops, &clocks[count], false); });
        writeInfo("        ", countWord(*this), "   = ", loops, "\n", //
                  "        numClocks  = ", m_numClocks, "\n",         //
                  "        funcClocks = ", clocks[count], "\n");
        if (rkIsError(m_result)) return m_result;
    }
    m_actualAccuracy = computeAccuracy(clocks.get(), n);
    m_funcClocks = computeBest(clocks.get(), n);
    rkResult r = m_actualAccuracy > m_accuracy ? rkResAccuracyWarning : rkResSuccess;
    if (m_avoidBadNow && badCtrlStatus()) r = rkResCtrlStatusWarning;
    printBadCtrlStatus(m_avoidBadNow);
    writeInfo("        accuracy   = ", m_actualAccuracy, "\n", //
              "        bestClocks = ", m_funcClocks, "\n",     //
              "        result     = ", rkResultString(r), "\n");
    return r;
}

// ---- search -------------------------------------------------------------------

namespace {

enum SearchEnd { Found, Failed, TooFewClocks };

} // namespace

static rkResult measurePrior(rkTool &tool, int loops, long long minClocks) {
    writeInfo("    Prior Measurement: \n", "        ", countWord(tool), "   = ", loops, "\n");
    rkResult r = tool.startIterations(loops, minClocks);
    writeInfo("        numClocks  = ", tool.m_numClocks, "\n",  //
              "        funcClocks = ", tool.m_funcClocks, "\n", //
              "        result     = ", rkResultString(r), "\n");
    return r;
}

static rkResult iterate(rkTool &tool, int start, int limit) {
    writeInfo("    Iteration Measurement: \n", "        startLoops = ", start, "\n", //
              "        maxLoops   = ", limit, "\n");
    rkResult r = tool.continueIterations(start, limit);
    writeInfo("        stopLoops  = ", tool.m_loops, "\n",          //
              "        stopClocks = ", tool.m_numClocks, "\n",      //
              "        accuracy   = ", tool.m_actualAccuracy, "\n", //
              "        funcClocks = ", tool.m_funcClocks, "\n",     //
              "        result     = ", rkResultString(r), "\n");
    return r;
}

static void avoidBadStatus(rkTool &tool) {
    double tolerance = 2.0 * tool.m_accuracy;
    printBadCtrlStatus(tool.m_avoidBadNow);
    g_ostrm << MsgWarning << "-- Attempting to avoid bad control status\n" << EndMessage;
    writeInfo("    Reduce loops to avoid bad ctrl status.\n", "    Simple Measurements: \n");
    rkTest::clearCtrlStatus();
    rkResult r = tool.repeatTiming(tool.m_loops, 6);
    if (rkIsError(tool.m_result)) return;
    bool repeats = r == rkResCtrlStatusWarning;
    if (repeats || tool.m_actualAccuracy > tolerance) {
        writeInfo("    Cannot avoid bad ctrl status\n");
        g_ostrm << MsgWarning << "-- Attempt fails: "
                << (repeats ? "Bad control status repeats.\n" : "Accuracy is unsatisfactory.\n")
                << EndMessage;
    } else {
        g_ostrm << MsgWarning << "-- Attempt is successful\n" << EndMessage;
    }
}

// The first count that gives enough clocks; a tenfold step moves the limit with it.
static SearchEnd findFirstLoops(rkTool &tool, int loops, int &limit, long long minClocks) {
    for (;;) {
        rkResult r = measurePrior(tool, loops, minClocks);
        if (rkIsError(tool.m_result)) return Failed;
        if (r != rkResAccuracyError) return Found;
        if (loops > rkCpuTicker::getClockFactor()) return TooFewClocks;
        loops = times(loops, 10);
        limit = times(limit, 10);
    }
}

static SearchEnd findStableLoops(rkTool &tool, int limit) {
    int start = times(tool.m_loops, 4);
    while (tool.m_loops < limit) {
        rkResult r = iterate(tool, start, limit);
        if (rkIsError(tool.m_result)) return Failed;
        if (r == rkResAccuracyError) {
            if (start >= rkCpuTicker::getClockFactor()) return TooFewClocks;
            start = times(start, 10);
            limit = times(limit, 10);
            continue;
        }
        if (r == rkResCtrlStatusWarning) {
            avoidBadStatus(tool);
            return rkIsError(tool.m_result) ? Failed : Found;
        }
        if (tool.m_actualAccuracy <= 0.01) return Found;
        writeInfo("    Simple Measurements: \n");
        r = tool.repeatTiming(tool.m_loops, 3);
        if (rkIsError(tool.m_result)) return Failed;
        if (r != rkResAccuracyWarning) return Found;
        start = times(tool.m_loops, 4);
    }
    return Found;
}

static void giveUp(rkTool &tool) {
    tool.m_result = rkResAccuracyError;
    writeInfo("    Auto method: exit\n");
    writeError();
}

static void noteOutcome(rkTool &tool) {
    tool.m_comment << (tool.m_useCalls ? "nCalls=" : "nLps=") << tool.m_loops;
    if (tool.m_actualAccuracy > tool.m_accuracy) {
        rkString a = rkTool::getAccuracyStr(tool.m_actualAccuracy);
        tool.m_comment << " acc=" << a;
        if (tool.m_result < rkResAccuracyWarning) {
            tool.m_result = rkResAccuracyWarning;
            tool.m_resultText << "actual accuracy = " << a;
        }
    }
    writeInfo("    Auto method: stop\n");
}

void rkTool::bestTiming(int first, int max, long long minClocks) {
    info = "";
    m_avoidBadNow = m_avoidBad;
    if (m_useCalls && !m_funcStat && !m_funcCall) m_useCalls = false;
    writeInfo("    Auto method: start\n", "        minClocks  = ", clockStr(minClocks), "\n");
    int limit = max;
    SearchEnd end = findFirstLoops(*this, first, limit, minClocks);
    if (end == Found) end = findStableLoops(*this, limit);
    if (end == Found) {
        noteOutcome(*this);
    } else if (end == TooFewClocks) {
        giveUp(*this);
    } else {
        writeInfo("    Auto method: exit\n");
    }
}

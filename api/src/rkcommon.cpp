// rkcommon.cpp - what holds for all tests: timing method, common parameters, placement of vectors.

#include "rkcommon.h"

#include <limits.h>

#include "rkmemory.h"
#include "rkregister.h"
#include "rksession.h"
#include "rktool.h"

int DefaultAlign::validItem(rkString text) {
    return rkDefault<int>::validItem(text) % 64;
}

int DefaultShift::validItem(rkString text) {
    return rkDefault<int>::validItem(text) & ~63;
}

// Takes the value from wherever g_istrm has it.
template <class Parm>
static auto readParm(Parm &parm) {
    parm.fromIStream(g_istrm);
    return parm.value();
}

static int readInt(char const *name, int defaultValue) {
    rkDefault<int> parm(defaultValue, name);
    return readParm(parm);
}

// With asking the console answers, and the title stands above the questions.
static void attachConsole(bool asking, char const *title) {
    if (!asking) {
        g_istrm.deleteIStream();
        return;
    }
    g_istrm.setIStream(&c_in);
    g_ostrm << MsgError << rkSession::getEnterTitle(title) << EndMessage;
}

void rkSession::readCommonData() {
    bool asked = readTimingMethod();
    asked |= readTestParameters();
    asked |= readDataOffset();
    if (asked) g_ostrm << MsgError << getEnterTitle("End of common specifications") << EndMessage;
}

rkString rkSession::getEnterTitle(rkString text) {
    auto padTo = [](rkString &line, int column) {
        if (line.length() < column) line.resize(column, ' ');
    };
    rkString bar(" ");
    bar.resize(79, '*');
    bar << "\n";
    rkString line(" *");
    padTo(line, (80 - text.length()) >> 1);
    line << text;
    padTo(line, 78);
    return bar + line + "*\n" + bar;
}

static int readMethod(rkTool const &preset) {
    rkMapDefault<int> method(preset.m_method, "Method");
    method[rkTool::Auto] = "Auto";
    method[rkTool::Manual] = "Manual";
    method[rkTool::Statistic] = "Statistic";
    method[rkTool::Iterative] = "Iterative";
    return readParm(method);
}

static void readLoop(rkTool const &preset) {
    int loops = 10;
    preset.getMethodLoop(loops);
    g_tool.setMethodLoop(readInt("NumLoops", loops));
}

static void readStat(rkTool const &preset) {
    int calls = 3; // a statistic chosen by hand is short
    long long clocks = 10000;
    preset.getMethodStat(calls, clocks);
    calls = readInt("NumCalls", calls);
    clocks = readInt("TotalCpuClocks", clocks > INT_MAX ? INT_MAX : int(clocks));
    g_tool.setMethodStat(calls, clocks);
}

static void readBest(rkTool const &preset) {
    int first, max;
    long long clocks; // not asked
    preset.getAutoParameters(first, max, clocks);
    preset.getMethodBest(first, max, clocks);
    first = readInt("StartNumLoops", first);
    max = readInt("StopNumLoops", max);
    g_tool.setMethodBest(first, max, clocks);
}

static void readMethodSettings(int method, rkTool const &preset) {
    if (method == rkTool::Manual) {
        readLoop(preset);
    } else if (method == rkTool::Statistic) {
        readStat(preset);
    } else if (method == rkTool::Iterative) {
        readBest(preset);
    } else {
        g_tool.setMethodAuto();
    }
}

// A test program can preset the answers, and no more than them.
bool rkSession::readTimingMethod() {
    rkTool preset;
    if (initTimingMethod) {
        initTimingMethod(preset);
    } else {
        preset.setMethodAuto();
    }
    bool asking = m_askMode & 1;
    attachConsole(asking, "Specify timing method, please");
    int method = readMethod(preset);
    readMethodSettings(method, preset);
    readAccuracy(method);
    return asking;
}

// 0 and anything over 50 percent stand for a limit that no measurement reaches.
void readAccuracy(int method) {
    if (method != rkTool::Auto && method != rkTool::Iterative) return;
    rkDefault<int> percent(5, "Accuracy", "Accuracy, %");
    double accuracy = readParm(percent) * 0.01;
    if (accuracy < 0.01) accuracy = 10.0;
    if (accuracy > 0.5) accuracy = 500.0;
    g_tool.m_accuracy = accuracy;
}

// What is read here is not read again by the tests that share the parameter.
bool rkSession::readTestParameters() {
    if (!g_pParmList || g_pParmList->empty()) return false;
    bool asking = m_askMode & 2;
    attachConsole(asking, "Specify common test parameters, please");
    for (auto parm = g_pParmList->begin(); parm != g_pParmList->end(); ++parm) {
        (*parm)->fromIStream(g_istrm);
        (*parm)->m_readable = false;
    }
    return asking;
}

static bool readAlignByByte() {
    rkMapDefault<bool> byByte(false, "AlignVectorsBy");
    byByte[true] = "byte";
    byByte[false] = "element";
    return readParm(byByte);
}

static int readAlign(bool byByte) {
    DefaultAlign align(0, "VectorAlign",
                       byByte ? "VectorAlign by Byte, 0..63" : "VectorAlign by Element, 0..63");
    return readParm(align);
}

static bool readFirstOnly() {
    rkMapDefault<bool> firstOnly(false, "MisalignFirstVectorOnly");
    firstOnly[true] = "yes";
    firstOnly[false] = "no";
    return readParm(firstOnly);
}

// The mutual shift is never asked: without a misalignment it has its fixed value.
bool rkSession::readDataOffset() {
    bool asking = m_askMode & 4;
    attachConsole(asking, "Specify vectors alignment, please");
    bool byByte = readAlignByByte();
    rkSetAlignByByte(byByte);
    int align = readAlign(byByte);
    rkSetVectorAlign(align);
    if (align == 0) {
        DefaultShift shift(512, "MutualVectorShift", "MutualVectorShift in Bytes, divisible by 64");
        rkSetVectorShift(shift.value());
    } else {
        rkSetAlignSrc(readFirstOnly());
    }
    return asking;
}

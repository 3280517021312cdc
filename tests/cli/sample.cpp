// sample.cpp - a program of its own on the framework, that makes use of all that a test file may register.

#include <sched.h>
#include <sys/resource.h>

#include "rk.h"

// ---- parameters --------------------------------------------------------------

static rkStepIterator<int> size;   // common, of Alpha and Beta
static rkMapIterator<int> mode;    // common, of Beta
static rkIterator<int> depth;      // common, of Gamma
static rkIterator<int> alphaParm;  // of Alpha alone
static rkIterator<int> cachedSize; // of Cached

static void initCommon() {
    size.init("size", 1, 3, 2, StepPlus);
    mode.init("mode", "mode of the sample");
    mode[0] = "fast";
    mode[1] = "full";
    mode.add(0);
    depth.init("depth", "depth of the sample");
    depth.add(8);
}

// ---- tests --------------------------------------------------------------------

static rkResult loop(int count, long long *clocks) {
    rkCpuTicker ticker;
    ticker.start();
    for (volatile int i = 0; i < count; ++i) {
    }
    ticker.stop();
    *clocks = ticker.clocks();
    return rkResSuccess;
}

static rkResult stat(int *, long long *clocks) {
    *clocks = 1000;
    return rkResSuccess;
}

class SampleTest : public rkTest {
public:
    SampleTest(char const *name, char const *info) : rkTest(loop, stat, name, "cli/sample.cpp", info) {}
};

class Alpha : public SampleTest {
public:
    using SampleTest::SampleTest;
    bool canStart() override {
        alphaParm.init("alpha", "parameter of Alpha");
        alphaParm.add(5);
        m_parms.push_back(&size);
        m_parms.push_back(&alphaParm);
        return true;
    }
};

class Beta : public SampleTest {
public:
    using SampleTest::SampleTest;
    bool canStart() override {
        m_parms.push_back(&size);
        m_parms.push_back(&mode);
        return true;
    }
};

class Gamma : public SampleTest {
public:
    using SampleTest::SampleTest;
    bool canStart() override {
        m_parms.push_back(&depth);
        return true;
    }
};

class Cached : public SampleTest {
public:
    using SampleTest::SampleTest;
    bool canStart() override {
        cachedSize.init("bytes", "");
        cachedSize.add(1000);
        regCacheParm(cachedSize);
        return true;
    }
    bool initData() override { return (m_block = allocate(cachedSize.value(), 64)) != nullptr; }
    void flushData() override { deallocate(m_block); }
    void *m_block = nullptr;
};

static int niceInside, policyInside;

// Tells the priority that the measured stretch has.
class Nice : public rkTest {
public:
    Nice() : rkTest(niceLoop, rkFuncStat(nullptr), "sampleNice", "cli/sample.cpp", "Nice") {}
    static rkResult niceLoop(int count, long long *clocks) {
        niceInside = getpriority(PRIO_PROCESS, 0);
        policyInside = sched_getscheduler(0);
        return loop(count, clocks);
    }
    void flushData() override {
        g_ostrm << MsgError << "inside: nice=" << niceInside << " policy=" << policyInside << "\n"
                << EndMessage;
        g_ostrm << MsgError << "behind: nice=" << getpriority(PRIO_PROCESS, 0)
                << " policy=" << sched_getscheduler(0) << "\n"
                << EndMessage;
    }
};

// ---- session ------------------------------------------------------------------

class SampleSession : public rkSession {
public:
    bool startSession() override {
        g_ostrm << MsgError << "session of the sample\n" << EndMessage;
        return true;
    }
    void funcTitleToCStream() override { rkFuncTitleToCStream(); }
    void parmsTitleToCStream() override { rkParmsTitleToCStream(); }
};

// ---- registration ---------------------------------------------------------------

// A statistic of these values is what the questions offer.
static void presetTiming(rkTool &tool) {
    tool.setMethodStat(4, 500);
}

static unsigned int smallCache() {
    return 4096;
}

static bool presetMachine() {
    rkCpuTicker::m_freqMHz = 1000; // nothing to measure
    rkCacheIterator::m_cacheSource = smallCache;
    return true;
}

static const bool machine = presetMachine();
static const int reg_session = rkRegSession(new SampleSession);
static const int reg_line = rkRegCmdLine("-B -LPERF");
static const int reg_more = rkRegCmdLine("-f=sampleAlpha");
static const int reg_timing = rkRegTimingMethod(presetTiming);
static const int reg_init = rkRegParmFunc(initCommon);
static const int reg_size = rkRegParm(size);
static const int reg_mode = rkRegParm(mode);
static const int reg_depth = rkRegParm(depth);
static const int reg_hot = rkRegHotFunction("sampleBeta");
static const int reg_Gamma = rkRegTest(new Gamma("sampleGamma", "Gamma/third of the sample/KM_REG"));
static const int reg_Beta = rkRegTest(new Beta("sampleBeta", "Beta/second of the sample/KM_REG"));
static const int reg_Alpha = rkRegTest(new Alpha("sampleAlpha", "Alpha/first of the sample/KM_REG"));
static const int reg_Cached = rkRegTest(new Cached("sampleCached", "Cached"));
static const int reg_Nice = rkRegTest(new Nice);

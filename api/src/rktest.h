// rktest.h - the test of one function: its parameters, its walk, its measurement, its lines of output.

#ifndef RAKOVA_RKTEST_H
#define RAKOVA_RKTEST_H

#include <time.h>

#include "rkcache.h"
#include "rkmemory.h"
#include "rkstepiterator.h"
#include "rktool.h"

class rkConditions;
class rkException;

// A text cut at its first and second "/": name / description / marks.
struct rkTestInfo {
    explicit rkTestInfo(rkString const &text);
    rkString m_name; // the class of the test
    rkString m_descr;
    rkString m_marks; // the macro that registered it
};

// Lives from static initialisation to the end of the run. No failure of a test ends the session: signals and
// exceptions stop at run and startAndStop. What belongs to a primitive is reached through the virtual
// operations.
class rkTest {
public:
    // The last three: name of the function under test, source path, info text.
    rkTest(rkTool::FuncOld old, rkString name, rkString file, rkString info);
    rkTest(rkFuncLoop loop, rkFuncStat stat, rkString name, rkString file, rkString info);
    rkTest(rkFuncCall call, rkFuncInit init, rkFuncLoop loop, rkFuncStat stat, rkString name, rkString file,
           rkString info);
    rkTest(rkTest const &) = delete;
    rkTest &operator=(rkTest const &) = delete;

    virtual ~rkTest();
    virtual bool tobeRun(rkConditions &conditions);
    virtual rkResult run();
    virtual int compareFunc(rkTest const *other) const; // order of the list of tests
    virtual void putTableResult_Deprecated(rkResult r);
    virtual bool canStart() { return true; } // declares the parameters, may fix the timing method
    virtual void flushStart() {}
    virtual bool canContinue();              // the next parameter set; false at the end
    virtual bool initData() { return true; } // data of the set; false leaves the set out
    virtual void flushData() {}
    virtual rkResult runTiming();
    virtual double getFlops() { return -1.0; }  // floating-point operations of a call
    virtual double getDivisor() { return 1.0; } // units of work of a call
    virtual rkString getUnit() { return " "; }  // name of the unit
    virtual void funcToCstrm();
    virtual void parmsFromIstrm();
    virtual void parmsToOstrm();
    virtual void parmsToCstrm();
    virtual void parmsNameToCstrm();
    virtual void resultToCstrm(rkResult r);
    virtual void constToOstrm() {}
    virtual void beginTest() { initSettings(); }
    virtual void endTest() {}
    virtual rkString getComment();
    virtual bool isFloatFunction() { return getFlops() > 0.0; }
    virtual bool isHotLine();
    virtual void initSettings();
    virtual int printAllMemoryBlocks(rkString) { return 0; }
    virtual rkString formatClocks(double v);
    virtual rkString regInfo();
    virtual void putTableParms();
    virtual void putTableResult(rkResult r);
    virtual void putTextParms();
    virtual void putTextParms(MessageLevel level);
    virtual void loopData();
    virtual void outputResult(rkResult r);
    virtual void outputConst();
    virtual void outputRegInfo();
    virtual void putTextResult(rkResult r);

    // Appends the parameter, or in a -C run a cache iterator around it. One parameter of a test at most
    // varies so.
    void regCacheParm(rkIterator<int> &parm, rkObject *object = nullptr,
                      rkCacheIterator::SetNewValue set = nullptr);

    // Test data: tracked, aligned blocks, each shifted against the one before. Null on failure.
    // align < 0: that many times the vector alignment of the session.
    static void *allocate(int size, int align);
    static void *allocate(int size, int align, void *object);
    static void deallocate(void *pointer);
    static int reserveAllVectors(); // both return how many objects took part
    static int resetAllVectors();

    void startAndStop(); // one dry pass, to learn the parameters
    bool setDeprecatedFlag(bool on);
    void setTimingResult(double clocks, rkString comment); // for a test that does its own timing
    void putTableName();
    void putTextError(rkResult r);
    rkString testResultString();
    double performance(bool flops); // clocks a unit, or million operations a second
    rkString perfString(bool flops);
    rkString usecString(rkTool const &tool);
    bool setIniSection(rkString name); // false: the test is to be left out

    static void initCtrlStatus();
    static void badCtrlStatus(bool &x87, bool &ssx);
    static void clearCtrlStatus();
    static void printCtrlStatus(bool x87, bool ssx);
    rkResult checkCtrlStatus();
    static void raiseResult(rkResult r) {
        if (m_currentResult < r) m_currentResult = r;
    }

    bool m_deprecatedFlag;
    time_t m_startTime;
    time_t m_endTime;
    rkString m_name; // of the function: key for sorting, conditions, hot lines, ini sections
    rkString m_file;
    rkTestInfo m_info;
    rkTool m_tool;
    rkResult m_result;
    rkFuncLoop m_funcLoop;
    rkFuncStat m_funcStat;
    rkFuncCall m_funcCall;
    rkFuncInit m_funcInit;
    rkTool::FuncOld m_funcOld;
    bool m_firstPass;
    bool m_bad87; // bad status seen in this test
    bool m_badSsx;
    rkList<rkParameter *> m_parms;    // the first is the outermost; not owned
    rkCacheIterator *m_cacheIterator; // owned; null if the test has none
    bool m_cacheOverflow;

    static rkResult m_currentResult; // of the test that runs
    static int m_numParmsColm;
    static int m_numResultColm;
    static int m_hot;       // 0 off, 1 -H, 2 -HO
    static bool m_pressing; // -P
    static bool m_cache;    // -C
    static int m_vectorNum;
    static int m_vectorShift;

private:
    rkTest(rkString name, rkString file, rkString info);
    bool runGuarded();
    bool steps();
    void outputTitle();
    void startedSteps();
    void onException(rkException &e);
    void dryPass(int msgDepth);
    void doSet(bool &constsOut);
    rkResult measureSet();
    void judgeSet(rkResult r);
    void noMoreSets();
    bool canRepeatForCache();
    void closeLoop();
    void putTableNameLine();
    static void closeTable(); // behind a fault
    rkString measuringRoutine();
};

// A test that prints instead of measuring.
class __rkInfoTest : public rkTest {
public:
    using rkTest::rkTest;
    void loopData() override;
    void outputRegInfo() override {}
    virtual void printInformation() = 0;
};

// Fields of the console line, padded to |w|: behind the text for w below 0, else in front. A longer text
// stays.
rkString sFormat(rkString s, int w);
rkString sFormat(double x, int w);
rkString sFormat(int n, int w);
rkString sFormat(long long n, int w);

#endif

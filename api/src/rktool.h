// rktool.h - measures how many clocks one call of a function takes.

#ifndef RAKOVA_RKTOOL_H
#define RAKOVA_RKTOOL_H

#include <time.h>

#include "rkresult.h"
#include "rkstring.h"

// The four routines a test may have.
using rkFuncLoop = rkResult (*)(int count, long long *clocks);  // count calls, total clocks
using rkFuncStat = rkResult (*)(int *count, long long *clocks); // in: least values, out: what was done
using rkFuncCall = int (*)();                                   // one call; the library's status
using rkFuncInit = int (*)();                                   // preparation of one call

// g_tool carries the session's choice; each test measures with a copy of its own.
// Clocks are counts of the processor's time-stamp counter; accuracies are relative differences.
class rkTool {
public:
    enum Method { Auto = 0, Manual = 1, Statistic = 2, Iterative = 3 };
    using FuncOld = rkResult (*)(rkTool &tool, int loops);

    rkTool();
    rkTool(rkTool const &) = default;
    rkTool &operator=(rkTool const &) = default;
    virtual ~rkTool() = default;

    // first: loop count to begin with, max: its limit, clocks: least total of a measurement that can be
    // trusted
    void getAutoParameters(int &first, int &max, long long &clocks) const;
    void setMethodAuto();
    void setMethodLoop(int n);
    void setMethodStat(int calls, long long clocks);
    void setMethodBest(int first, int max, long long clocks);
    // True and the settings if that is the method; otherwise the arguments stay.
    bool getMethodAuto() const;
    bool getMethodLoop(int &n) const;
    bool getMethodStat(int &calls, long long &clocks) const;
    bool getMethodBest(int &first, int &max, long long &clocks) const;
    void setLoopFactor(int f); // shifts the bounds of Auto right by f, left by -f
    void setFuncTicks(double clocks) { m_funcClocks = clocks; }
    static rkString getAccuracyStr(double a); // in percent
    void reset();                             // what a measurement leaves; settings stay
    static void ctrlStart();
    static void ctrlStop();

    // The entries. REQUIRES for a good result: one of loop, stat, call. The answer is m_funcClocks.
    rkResult timing(FuncOld old);
    rkResult timing(rkFuncLoop loop, rkFuncStat stat, rkFuncCall call, rkFuncInit init);

    void autoLoopTiming();
    void customLoopTiming();
    void statisticTiming();
    void bestTiming(int first, int max, long long minClocks);
    rkResult startIterations(int loops, long long minClocks);
    rkResult continueIterations(int start, int max);
    rkResult repeatTiming(int loops, int n);
    void runTimFunc(int n, double *out, bool forceLoop);
    void runTimFuncStat(long long clocks, int *calls, double *out);
    rkResult timCall_Loop(int n, long long *clocks, bool reset);
    rkResult timCall_Stat(int *calls, long long *clocks, bool reset);
    void updateResult(rkResult r);

    static double computeAccuracy(double a, double b);     // 2 |a - b| / (a + b)
    static double computeAccuracy(double const *x, int n); // greatest distance from the mean, relative to it
    static double computeBest(double const *x, int n);     // the least
    static rkString clockStr(long long n);

    rkResult m_result;   // worst so far of this measurement
    double m_funcClocks; // the answer: clocks per call
    int m_loops;         // loop count in use
    double m_accuracy;   // target
    int m_method;
    int m_numLoops;        // Manual
    int m_firstLoops;      // Iterative
    int m_maxLoops;        // Iterative
    bool m_useCalls;       // Auto and Iterative time through the statistic path
    bool m_useData;        // data set and use are inside the measurement
    long long m_minClocks; // Iterative: least total clocks
    int m_minCalls;        // Statistic: least calls
    long long m_maxClocks; // Statistic: least sum of clocks
    bool m_avoidBad;       // try to get rid of a bad control status by fewer loops
    bool m_avoidBadNow;
    rkString m_resultText; // of the worst result, or the accuracy remark
    rkString m_comment;    // remark of the output line
    long long m_numClocks; // total of the last run
    double m_actualAccuracy;
    int m_autoFirstLoops; // 0: the default
    int m_autoMaxLoops;   // 0: the default
    time_t m_startTime;
    time_t m_stopTime;
    rkFuncLoop m_funcLoop;
    rkFuncStat m_funcStat;
    rkFuncCall m_funcCall;
    rkFuncInit m_funcInit;

    static rkResult (*m_pCheckStatus)(int status); // judges a status of funcCall; null: all are good
    static int m_priority;                         // 0 none, 1 high, 2 normal, 3 low
};

extern rkTool g_tool;

// "RK internal error: file ", path, ", line " and number, as a message of level 1.
void rkInternalError(char const *path, int line);

#endif

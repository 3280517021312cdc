// scriptedtest.h - a test whose steps are written down and whose results and clocks are scripted.

#ifndef RAKOVA_TESTS_SCRIPTEDTEST_H
#define RAKOVA_TESTS_SCRIPTEDTEST_H

#include <string>
#include <vector>

#include "rkregister.h"
#include "rktest.h"
#include "rkticker.h"

inline rkResult noLoop(int, long long *) {
    return rkResSuccess;
}

class ScriptedTest : public rkTest {
public:
    explicit ScriptedTest(rkString name = "keliScript_8u", rkString info = "Script//KM_REG")
        : rkTest(noLoop, rkFuncStat(nullptr), name, "some/where/script.cpp", info) {
        rkCpuTicker::m_freqMHz = 1000; // so that no test measures the frequency
    }

    bool canStart() override {
        m_steps += "S";
        for (rkParameter *p : m_declared) m_parms.push_back(p);
        return m_canStart;
    }
    bool initData() override {
        m_steps += "i";
        bool ok = m_set >= static_cast<int>(m_dataFails.size()) || !m_dataFails[m_set];
        ++m_set;
        return ok;
    }
    rkResult runTiming() override {
        m_steps += "t";
        m_tool.reset();
        m_tool.m_funcClocks = 100.0;
        m_tool.m_comment = "nLps=8";
        size_t n = m_timed++;
        return n < m_results.size() ? m_results[n] : rkResSuccess;
    }
    void flushData() override { m_steps += "f"; }
    void flushStart() override { m_steps += "F"; }
    void endTest() override { m_steps += "E"; }

    bool m_canStart = true;
    std::vector<rkParameter *> m_declared;
    std::vector<bool> m_dataFails;   // by set
    std::vector<rkResult> m_results; // by timed set; success behind them
    std::string m_steps;             // a letter for each step
    int m_set = 0;
    size_t m_timed = 0;
};

// A list parameter with values 1 to count.
class Counted : public rkIterator<int> {
public:
    Counted(char const *name, int count) : rkIterator<int>(name, "") {
        for (int i = 1; i <= count; ++i) add(i);
    }
};

#endif

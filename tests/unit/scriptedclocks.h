// scriptedclocks.h - a function under test whose clocks are written by the test, and a search on them.

#ifndef RAKOVA_TESTS_SCRIPTEDCLOCKS_H
#define RAKOVA_TESTS_SCRIPTEDCLOCKS_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "rkctrl.h"
#include "rktest.h"
#include "rktool.h"

// What one measuring run is to find.
struct ScriptedRun {
    double perCall; // clocks
    rkResult result = rkResSuccess;
    bool bad = false; // the run raises the x87 flag Invalid
};

// Serves the runs in order for as long as it lives; a run too many is a failure of the test and of the run.
class ScriptedClocks {
public:
    explicit ScriptedClocks(std::vector<ScriptedRun> runs) : m_runs(runs) { current() = this; }
    ScriptedClocks(std::initializer_list<ScriptedRun> runs) : m_runs(runs) { current() = this; }
    ~ScriptedClocks() { current() = nullptr; }
    ScriptedClocks(ScriptedClocks const &) = delete;
    ScriptedClocks &operator=(ScriptedClocks const &) = delete;

    static rkResult loop(int count, long long *clocks) { return current()->serve(count, clocks); }
    static rkResult stat(int *count, long long *clocks) { return current()->serve(*count, clocks); }

    bool allServed() const { return m_counts.size() == m_runs.size(); }

    std::vector<int> m_counts; // loop count of each run so far

private:
    static ScriptedClocks *&current() {
        static ScriptedClocks *s_current = nullptr;
        return s_current;
    }

    rkResult serve(int count, long long *clocks) {
        if (allServed()) {
            ADD_FAILURE() << "run " << m_counts.size() + 1 << ", with " << count
                          << " loops, is not in the script";
            return rkResError;
        }
        ScriptedRun const &run = m_runs[m_counts.size()];
        m_counts.push_back(count);
        *clocks = static_cast<long long>(run.perCall * count);
        if (run.bad) raiseInvalid();
        return run.result;
    }

    // 0 / 0 with the exception masked.
    static void raiseInvalid() {
        __asm__ volatile("fldz\n\tfldz\n\tfdivrp\n\tfstp %%st(0)" : : : "st", "st(1)");
    }

    std::vector<ScriptedRun> m_runs;
};

// A tool that searches for its loop count; everything but errors and warnings is silent unless a test asks
// for more.
class ScriptedSearch : public testing::Test {
protected:
    ScriptedSearch() { rkTest::initCtrlStatus(); }

    rkResult autoTiming() { return tool.timing(ScriptedClocks::loop, nullptr, nullptr, nullptr); }
    std::string comment() { return tool.m_comment.c_str(); }
    std::string resultText() { return tool.m_resultText.c_str(); }

    rkTool tool;
};

#endif

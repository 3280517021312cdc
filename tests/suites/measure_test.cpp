// measure_test.cpp - the two measuring loops and the registration, with functions that follow a script.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kmreg.h"

// Declared as the library's functions are; nothing has the second one.
extern "C" {
__attribute__((weak)) int keliScripted_8u(int *seen);
__attribute__((weak)) int keliNeverBuilt_8u(int argument);
}

namespace {

// ---- what the script says and what was done --------------------------------------

const unsigned long long work = 200000; // clocks that a slow step takes at least

std::vector<int> g_statuses; // of the calls in their order; 0 behind them
std::string g_steps;         // "c" a call, "r" a reset
bool g_slowCall, g_slowReset;
unsigned long long g_callClocks, g_resetClocks, g_firstCallClocks;
int g_argument; // read afresh by each call
std::vector<int> g_arguments;

unsigned long long spend(bool slow) {
    const unsigned long long begin = kel_get_cpu_counter();
    while (slow && kel_get_cpu_counter() - begin < work) {
    }
    return kel_get_cpu_counter() - begin;
}

int nextStatus() {
    size_t n = g_arguments.size();
    const unsigned long long spent = spend(g_slowCall);
    g_callClocks += spent;
    if (n == 0) g_firstCallClocks = spent;
    g_steps += "c";
    return n < g_statuses.size() ? g_statuses[n] : 0;
}

int call() {
    int status = nextStatus();
    g_arguments.push_back(g_argument);
    return status;
}

int rearm() {
    g_resetClocks += spend(g_slowReset);
    g_steps += "r";
    return 0;
}

char const *scriptedText(int status) {
    return status < 0 ? "a bad thing" : "a strange thing";
}

class Measure : public testing::Test {
protected:
    void SetUp() override {
        kel_GetStatusString = scriptedText;
        g_statuses.clear();
        g_steps.clear();
        g_arguments.clear();
        g_slowCall = g_slowReset = false;
        g_callClocks = g_resetClocks = g_firstCallClocks = 0;
    }

    rkResult loop(int count) { return kmTimLoop<call, kmNoReset>(count, &m_clocks, "keliScripted_8u"); }
    rkResult stat(int count, long long clocks) {
        m_count = count;
        m_clocks = clocks;
        return kmTimStat<call, kmNoReset>(&m_count, &m_clocks, "keliScripted_8u");
    }

    int m_count = -77;
    long long m_clocks = -77;
};

} // namespace

int keliScripted_8u(int *seen) {
    g_arguments.push_back(*seen);
    return nextStatus();
}

// ---- the manual loop --------------------------------------------------------------

TEST_F(Measure, TheManualLoopCallsOnceMoreThanItCounts) {
    EXPECT_EQ(loop(5), rkResSuccess);
    EXPECT_EQ(g_steps, "cccccc");
    EXPECT_GT(m_clocks, 0);
}

TEST_F(Measure, TheManualLoopWithCountZeroStillWarmsUp) {
    EXPECT_EQ(loop(0), rkResSuccess);
    EXPECT_EQ(g_steps, "c");
    EXPECT_GE(m_clocks, 0) << "what lies between the two reads of the counter";
}

TEST_F(Measure, TheWarmUpOfTheManualLoopIsNotCounted) {
    g_slowCall = true;
    const unsigned long long begin = kel_get_cpu_counter();
    loop(2);
    const unsigned long long all = kel_get_cpu_counter() - begin;
    EXPECT_LE(static_cast<unsigned long long>(m_clocks), all - g_firstCallClocks);
    EXPECT_GE(static_cast<unsigned long long>(m_clocks), g_callClocks - g_firstCallClocks);
}

TEST_F(Measure, TheManualLoopDoesNotStopAtAnError) {
    g_statuses = {0, -5, -6, 0};
    EXPECT_EQ(loop(3), rkResSuccess) << "the last status is 0";
    EXPECT_EQ(g_steps, "cccc");
}

TEST_F(Measure, TheManualLoopTakesTheLastStatusOnly) {
    g_statuses = {-1, 0, 3, -4};
    EXPECT_EQ(loop(3), rkResLibError);
    g_arguments.clear();
    g_statuses = {-1, 0, -4, 3};
    EXPECT_EQ(loop(3), rkResLibWarning);
}

TEST_F(Measure, TheStatusOfTheWarmUpIsAllThatCountZeroHas) {
    g_statuses = {-2};
    EXPECT_EQ(loop(0), rkResLibError);
}

// ---- the statistic loop -----------------------------------------------------------

TEST_F(Measure, TheStatisticLoopMakesTheLeastNumberOfCalls) {
    EXPECT_EQ(stat(7, 0), rkResSuccess);
    EXPECT_EQ(m_count, 7);
    EXPECT_EQ(g_steps, "cccccccc") << "and the warm-up";
}

TEST_F(Measure, TheStatisticLoopGoesOnToTheLeastNumberOfClocks) {
    g_slowCall = true;
    EXPECT_EQ(stat(1, 3 * work + 1), rkResSuccess);
    EXPECT_GT(m_clocks, static_cast<long long>(3 * work));
    EXPECT_GE(m_count, 1);
    EXPECT_EQ(static_cast<int>(g_steps.size()), m_count + 1);
}

TEST_F(Measure, TheStatisticLoopWithNoMinimumLeavesAfterTheWarmUp) {
    EXPECT_EQ(stat(0, 0), rkResSuccess);
    EXPECT_EQ(m_count, 0);
    EXPECT_EQ(m_clocks, 0);
    EXPECT_EQ(g_steps, "c");
}

TEST_F(Measure, TheStatisticLoopWithANegativeMinimumHasItsFirstPassLeftOut) {
    EXPECT_EQ(stat(-1, 0), rkResSuccess) << "index -1 is not less than -1";
    EXPECT_EQ(m_count, -1);
    EXPECT_EQ(g_steps, "");
}

TEST_F(Measure, AnErrorAtTheFirstCallStoresMinusOne) {
    g_statuses = {-8};
    EXPECT_EQ(stat(12, 10000), rkResLibError);
    EXPECT_EQ(m_count, -1);
    EXPECT_EQ(g_steps, "c");
}

TEST_F(Measure, TheStatisticLoopStopsAtTheFirstError) {
    g_statuses = {0, 0, 0, -8};
    EXPECT_EQ(stat(12, 0), rkResLibError);
    EXPECT_EQ(m_count, 2) << "the call that fails is not counted";
    EXPECT_EQ(g_steps, "cccc");
}

TEST_F(Measure, AWarningDoesNotStopTheStatisticLoop) {
    g_statuses = {0, 2};
    EXPECT_EQ(stat(6, 0), rkResLibWarning) << "remembered behind calls that went well";
    EXPECT_EQ(m_count, 6);
}

TEST_F(Measure, TheStatisticLoopRemembersTheWarningOfTheWarmUp) {
    g_statuses = {1};
    EXPECT_EQ(stat(3, 0), rkResLibWarning);
}

TEST_F(Measure, AnErrorBehindAWarningIsTheStatusOfTheStatisticLoop) {
    g_statuses = {1, 1, -1};
    EXPECT_EQ(stat(9, 0), rkResLibError);
}

TEST_F(Measure, TheStatisticLoopDropsTheClocksOfTheWarmUp) {
    g_slowCall = true;
    const unsigned long long begin = kel_get_cpu_counter();
    stat(2, 0);
    const unsigned long long all = kel_get_cpu_counter() - begin;
    EXPECT_LE(static_cast<unsigned long long>(m_clocks), all - g_firstCallClocks);
    EXPECT_GE(static_cast<unsigned long long>(m_clocks), g_callClocks - g_firstCallClocks);
}

// ---- the reset statement -----------------------------------------------------------

TEST_F(Measure, TheManualLoopResetsInFrontOfEveryCallInsideTheInterval) {
    g_slowReset = true;
    kmTimLoop<call, rearm>(3, &m_clocks, "keliScripted_8u");
    EXPECT_EQ(g_steps, "rcrcrcrc");
    EXPECT_GE(m_clocks, static_cast<long long>(3 * work));
}

TEST_F(Measure, TheStatisticLoopResetsOutsideTheIntervals) {
    g_slowReset = true;
    m_count = 3;
    m_clocks = 0;
    const unsigned long long begin = kel_get_cpu_counter();
    kmTimStat<call, rearm>(&m_count, &m_clocks, "keliScripted_8u");
    const unsigned long long all = kel_get_cpu_counter() - begin;
    EXPECT_EQ(g_steps, "rcrcrcrc") << "none in front of the pass that is not made";
    EXPECT_LE(static_cast<unsigned long long>(m_clocks), all - g_resetClocks);
}

// ---- registration -------------------------------------------------------------------

class Scripted : public kmTest {
public:
    using kmTest::kmTest;
};

static int s_resets;

KM_REG(Scripted, keliScripted_8u, &g_argument);
KM_REG(Scripted, keliNeverBuilt_8u, g_argument);

namespace consuming {
KM_REG_I(Scripted, keliScripted_8u, ++s_resets, &g_argument);
}

static rkTest *registered(char const *marks) {
    for (rkTest *test : *pTestList) {
        if (test->m_name == "keliScripted_8u" && test->m_info.m_marks == marks) return test;
    }
    return nullptr;
}

TEST_F(Measure, ARegistrationMakesATestOfTheFunction) {
    rkTest *test = registered("KM_REG");
    ASSERT_NE(test, nullptr);
    EXPECT_STREQ(test->m_info.m_name.c_str(), "Scripted");
    EXPECT_STREQ(test->m_info.m_descr.c_str(), "");
    EXPECT_STREQ(test->m_file.c_str(), "measure_test.cpp");
    EXPECT_EQ(test->m_funcInit, nullptr);
}

TEST_F(Measure, EveryCallReadsTheArgumentsAfresh) {
    rkTest *test = registered("KM_REG");
    ASSERT_NE(test, nullptr);
    g_argument = 1;
    test->m_funcCall();
    g_argument = 2;
    test->m_funcLoop(1, &m_clocks);
    g_argument = 3;
    m_count = 0;
    m_clocks = 0;
    test->m_funcStat(&m_count, &m_clocks);
    EXPECT_EQ(g_arguments, (std::vector<int>{1, 2, 2, 3}));
}

TEST_F(Measure, AFunctionThatConsumesItsInputHasAnInitFunction) {
    rkTest *test = registered("KM_REG_I");
    ASSERT_NE(test, nullptr);
    ASSERT_NE(test->m_funcInit, nullptr);
    EXPECT_EQ(test->m_funcInit(), 0);
    EXPECT_EQ(s_resets, 1);
    test->m_funcLoop(4, &m_clocks);
    EXPECT_EQ(s_resets, 6) << "one in front of each of five calls";
    m_count = 4;
    m_clocks = 0;
    test->m_funcStat(&m_count, &m_clocks);
    EXPECT_EQ(s_resets, 11);
}

TEST_F(Measure, AFunctionThatTheLibraryLacksIsAMissingNameAndNoTest) {
    for (rkTest *test : *pTestList) EXPECT_STRNE(test->m_name.c_str(), "keliNeverBuilt_8u");
    ASSERT_NE(g_pMissingList, nullptr);
    EXPECT_EQ(g_pMissingList->size(), 1);
    EXPECT_STREQ((*g_pMissingList->begin()).c_str(), "keliNeverBuilt_8u");
}

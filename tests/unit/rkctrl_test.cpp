// rkctrl_test.cpp - tests of the guards of the floating-point state.

#include <gtest/gtest.h>

#include <signal.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "rkctrl.h"
#include "rkfpu.h"
#include "scriptedcpu.h"

using std::string;

namespace {

class RkCtrl : public testing::Test {
protected:
    RkCtrl() {
        g_ctrl87.init();
        g_ssx.init();
    }
    ~RkCtrl() override {
        g_ctrl87.init();
        g_ssx.init();
    }
};

// The state that the first test of the process finds.
class Start : public testing::Environment {
public:
    void SetUp() override {
        m_cw = rk_get_cw_fpu();
        m_ssx = rk_get_ssx();
    }
    unsigned int m_cw = 0, m_ssx = 0;
};

Start *const s_start = static_cast<Start *>(testing::AddGlobalTestEnvironment(new Start));

// Raises Invalid (1) by 0 / 0.
void divideZeroByZero() {
    __asm__ volatile("fldz\n\tfldz\n\tfdivrp\n\tfstp %%st(0)" : : : "st", "st(1)");
}

// Raises Inexact (32) by 1 / 3.
void divideOneByThree() {
    int three = 3;
    __asm__ volatile("fld1\n\tfidivl %0\n\tfstp %%st(0)" : : "m"(three) : "st");
}

} // namespace

TEST(RkCtrlStart, DefaultsAreSetBeforeMain) {
    EXPECT_EQ(s_start->m_cw & 0xf3f, 512u | 59u);
    EXPECT_EQ(s_start->m_ssx & 0xff80, 32768u | 8064u);
}

// ---- x87 ----------------------------------------------------------------------

TEST_F(RkCtrl, StopGathersStatusAndControl) {
    divideZeroByZero();
    g_ctrl87.stop();
    EXPECT_EQ(g_ctrl87.getSW() & 63, 1u);
    EXPECT_EQ(g_ctrl87.getCW() & 0xf3f, 512u | 59u);
    EXPECT_STREQ(g_ctrl87.strSW().c_str(), "?Invalid ");
    EXPECT_STREQ(g_ctrl87.strCW().c_str(), "Near 53 Invalid Denormal Overflow Underflow Inexact ");
    EXPECT_TRUE(g_ctrl87.badStatus());
}

TEST_F(RkCtrl, StopTwiceKeepsTheFlagsOfBoth) {
    divideZeroByZero();
    g_ctrl87.stop();
    g_ctrl87.start();
    divideOneByThree();
    g_ctrl87.stop();
    EXPECT_EQ(rk_get_sw_fpu() & 63, 32u) << "start has cleared the first";
    EXPECT_EQ(g_ctrl87.getSW() & 63, 33u);
    EXPECT_STREQ(g_ctrl87.strSW().c_str(), "?Invalid _Inexact ");
    EXPECT_TRUE(g_ctrl87.badStatus());
}

TEST_F(RkCtrl, ControlWordThatChangedIsSeen) {
    rk_set_cw_fpu(2048, 3072);
    g_ctrl87.stop();
    EXPECT_EQ(string(g_ctrl87.strCW().c_str()).substr(0, 3), "Up ");
}

TEST_F(RkCtrl, InexactAloneIsNotBad) {
    divideOneByThree();
    g_ctrl87.stop();
    EXPECT_STREQ(g_ctrl87.strSW().c_str(), "_Inexact ");
    EXPECT_FALSE(g_ctrl87.badStatus());
}

TEST_F(RkCtrl, EveryExceptionButInexactIsBad) {
    for (unsigned int bit = 1; bit <= 16; bit *= 2) {
        g_ctrl87.m_sw = bit;
        g_ssx.m_ssx = bit;
        EXPECT_TRUE(g_ctrl87.badStatus()) << bit;
        EXPECT_TRUE(g_ssx.badStatus()) << bit;
    }
    g_ctrl87.m_sw = 0xffc0;
    g_ssx.m_ssx = 0xffc0;
    EXPECT_FALSE(g_ctrl87.badStatus());
    EXPECT_FALSE(g_ssx.badStatus());
}

TEST_F(RkCtrl, ClearEmptiesBothFieldsAndTheFlags) {
    divideZeroByZero();
    g_ctrl87.stop();
    g_ctrl87.clear();
    EXPECT_EQ(g_ctrl87.getSW(), 0u);
    EXPECT_EQ(g_ctrl87.getCW(), 0u);
    EXPECT_EQ(rk_get_sw_fpu() & 63, 0u);
    EXPECT_STREQ(g_ctrl87.strSW().c_str(), "Ok");
}

TEST_F(RkCtrl, ClearLeavesTheControlWordAndInitResetsIt) {
    rk_set_cw_fpu(2048, 3072);
    g_ctrl87.clear();
    EXPECT_EQ(rk_get_cw_fpu() & 3072, 2048u);
    g_ctrl87.m_sw = g_ctrl87.m_cw = 99;
    g_ctrl87.init();
    EXPECT_EQ(rk_get_cw_fpu() & 3072, 0u);
    EXPECT_EQ(g_ctrl87.getSW(), 0u);
    EXPECT_EQ(g_ctrl87.getCW(), 0u);
}

TEST_F(RkCtrl, StartKeepsWhatWasGathered) {
    g_ctrl87.m_sw = 1;
    g_ctrl87.m_cw = 512;
    g_ctrl87.start();
    EXPECT_EQ(g_ctrl87.getSW(), 1u);
    EXPECT_EQ(g_ctrl87.getCW(), 512u);
}

// A division by zero of the x87 unit traps, and so ends a process without a guard.
TEST(RkCtrlDeathTest, DivisionByZeroTraps) {
    EXPECT_EXIT(
        {
            signal(SIGFPE, SIG_DFL);
            g_ctrl87.init();
            __asm__ volatile("fld1\n\tfldz\n\tfdivrp\n\tfstp %%st(0)\n\tfwait" : : : "st", "st(1)");
        },
        testing::KilledBySignal(SIGFPE), "");
}

// ---- SIMD ---------------------------------------------------------------------

TEST_F(RkCtrl, StopGathersTheSimdWord) {
    rk_set_ssx(1, 1);
    g_ssx.stop();
    EXPECT_EQ(g_ssx.get() & ~32u, 32768u | 8064u | 1u);
    EXPECT_TRUE(g_ssx.badStatus());
    EXPECT_STREQ(g_ssx.strCW().c_str(),
                 "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero ");
}

TEST_F(RkCtrl, SimdStopTwiceKeepsTheFlagsOfBoth) {
    rk_set_ssx(1, 63);
    g_ssx.stop();
    rk_set_ssx(8, 63);
    g_ssx.stop();
    EXPECT_EQ(g_ssx.get() & 31, 9u);
}

TEST_F(RkCtrl, SimdStartLeavesTheFlags) {
    rk_set_ssx(2, 63);
    g_ssx.start();
    EXPECT_EQ(rk_get_ssx() & 31, 2u);
}

TEST_F(RkCtrl, SimdStartSpoilsTheRegisters) {
    unsigned long long low;
    g_ssx.start();
    __asm__ volatile("movq %%xmm7, %0" : "=r"(low));
    EXPECT_EQ(low, ~0ull);
}

TEST_F(RkCtrl, SimdClearEmptiesFieldAndFlagsAndLeavesTheRest) {
    rk_set_ssx(16384 | 1, 24576 | 63);
    g_ssx.stop();
    g_ssx.clear();
    EXPECT_EQ(g_ssx.get(), 0u);
    EXPECT_EQ(rk_get_ssx() & ~32u, 32768u | 8064u | 16384u);
    EXPECT_STREQ(g_ssx.strExceptionState().c_str(), "Ok");
}

TEST_F(RkCtrl, SimdInitSetsTheDefaults) {
    rk_set_ssx(16384 | 1, 24576 | 32768 | 63);
    g_ssx.m_ssx = 99;
    g_ssx.init();
    EXPECT_EQ(g_ssx.get(), 0u);
    EXPECT_EQ(rk_get_ssx(), 32768u | 8064u);
}

TEST_F(RkCtrl, SimdSideIsNeverBadWithoutSimd) {
    ScriptedCpu cpu;
    rkSSX none;
    none.m_ssx = 63;
    EXPECT_FALSE(none.badStatus());
    EXPECT_STREQ(none.strExceptionState().c_str(), "cpu has not SSX extension");
    none.stop();
    EXPECT_EQ(none.get(), 63u);
}

// ---- life with the defaults ---------------------------------------------------

TEST_F(RkCtrl, LongDoublesArePrintedUnderTheDefaults) {
    char text[64];
    snprintf(text, sizeof text, "%.3Lf %g", 1234.5L, 1e-310);
    EXPECT_EQ(string(text).substr(0, 9), "1234.500 ");
}

// rkctrlbase_test.cpp - tests of the control and status words.

#include <gtest/gtest.h>

#include <string>

#include "rkctrlbase.h"
#include "rkfpu.h"
#include "scriptedcpu.h"

using std::string;

namespace {

string strSW(unsigned int sw) {
    return ts87Base::strSW(sw).c_str();
}

string strCW(unsigned int cw) {
    return ts87Base::strCW(cw).c_str();
}

unsigned int control() {
    return rk_get_cw_fpu() & 0xf3f;
}

// 1 / 0, masked.
void divideByZero() {
    __asm__ volatile("fld1\n\tfldz\n\tfdivrp\n\tfstp %%st(0)" : : : "st", "st(1)");
}

// Both units in their defaults before and after.
class RkCtrlBase : public testing::Test {
protected:
    ~RkCtrlBase() override {
        base87.setDefault();
        baseSSX.setDefault();
    }

    string stateText(unsigned int value) { return baseSSX.strExceptionState(value).c_str(); }
    string textSSX(unsigned int value) { return baseSSX.strCW(value).c_str(); }

    ts87Base base87;
    tsSSXBase baseSSX;
};

} // namespace

// ---- texts --------------------------------------------------------------------

TEST_F(RkCtrlBase, StatusOfNoExceptionIsOk) {
    EXPECT_EQ(strSW(0), "Ok");
    EXPECT_EQ(strSW(0xffc0), "Ok") << "bits that are no exceptions";
    EXPECT_EQ(stateText(0), "Ok");
    EXPECT_EQ(stateText(0x9f80), "Ok");
}

TEST_F(RkCtrlBase, InexactHasNoQuestionMark) {
    EXPECT_EQ(strSW(32), "_Inexact ");
    EXPECT_EQ(stateText(32), "_Inexact ");
}

TEST_F(RkCtrlBase, StatusTextsStandInTheOrderOfTheirBits) {
    EXPECT_EQ(strSW(33), "?Invalid _Inexact ");
    EXPECT_EQ(strSW(63), "?Invalid ?Denormal ?Zerodivide ?Overflow ?Underflow _Inexact ");
    EXPECT_EQ(stateText(33), "?Invalid _Inexact ");
    EXPECT_EQ(stateText(63), "?Invalid ?Denormal ?Zerodivide ?Overflow ?Underflow _Inexact ");
}

TEST_F(RkCtrlBase, DefaultControlWordMasksAllButZerodivide) {
    EXPECT_EQ(strCW(base87.getCW()), "Near 53 Invalid Denormal Overflow Underflow Inexact ");
}

TEST_F(RkCtrlBase, DefaultSimdWordMasksAllAndFlushesToZero) {
    EXPECT_EQ(textSSX(baseSSX.get()),
              "Near Invalid Denormal Zerodivide Overflow Underflow Inexact FlushToZero ");
}

TEST_F(RkCtrlBase, ControlTextsTellRoundingAndPrecision) {
    EXPECT_EQ(strCW(0), "Near 24 ");
    EXPECT_EQ(strCW(1024 | 512), "Down 53 ");
    EXPECT_EQ(strCW(2048 | 768), "Up 64 ");
    EXPECT_EQ(strCW(3072 | 768 | 4), "Zero 64 Zerodivide ");
}

TEST_F(RkCtrlBase, PrecisionWithoutANameIsLeftOut) {
    EXPECT_EQ(strCW(256 | 1), "Near Invalid ");
}

TEST_F(RkCtrlBase, SimdTextsTellRoundingMasksAndFlush) {
    EXPECT_EQ(textSSX(0), "Near NoFlushToZero ");
    EXPECT_EQ(textSSX(8192 | 128), "Down Invalid NoFlushToZero ");
    EXPECT_EQ(textSSX(16384 | 256 | 512), "Up Denormal Zerodivide NoFlushToZero ");
    EXPECT_EQ(textSSX(24576 | 1024 | 2048 | 4096 | 32768), "Zero Overflow Underflow Inexact FlushToZero ");
}

// ---- x87 ----------------------------------------------------------------------

TEST_F(RkCtrlBase, DefaultsOfTheControlWord) {
    EXPECT_EQ(ts87Base::Precision, 512u);
    EXPECT_EQ(ts87Base::Rounding, 0u);
    EXPECT_EQ(ts87Base::Exception, 59u);
}

TEST_F(RkCtrlBase, ConstructionSetsTheDefault) {
    kel_set_cw_fpu(0xf3f);
    divideByZero();
    ts87Base fresh;
    EXPECT_EQ(control(), 512u | 59u);
    EXPECT_EQ(fresh.getSW() & 63, 0u);
}

TEST_F(RkCtrlBase, SetClearsTheFlagsFirst) {
    base87.disableExceptions();
    divideByZero();
    base87.set(2048, 3072 | 4); // unmasks what has just been raised
    EXPECT_EQ(base87.getSW() & 63, 0u);
    EXPECT_EQ(control(), 2048u | 512u | 59u);
}

TEST_F(RkCtrlBase, ClearLeavesTheControlWord) {
    base87.disableExceptions();
    divideByZero();
    base87.clear();
    EXPECT_EQ(base87.getSW() & 63, 0u);
    EXPECT_EQ(control(), 512u | 63u);
}

TEST_F(RkCtrlBase, ExceptionsAreUnmaskedAndMaskedTogether) {
    base87.enableExceptions();
    EXPECT_EQ(control(), 512u);
    base87.disableExceptions();
    EXPECT_EQ(control(), 512u | 63u);
}

TEST_F(RkCtrlBase, DisablingInexactMakesTheRaisedFlagsMasks) {
    base87.disableExceptions();
    divideByZero();
    base87.disableInexactException();
    EXPECT_EQ(control(), 512u | 32u | 4u);
    base87.clear();
    base87.disableInexactException();
    EXPECT_EQ(control(), 512u | 32u);
}

// ---- SIMD ---------------------------------------------------------------------

TEST_F(RkCtrlBase, DefaultsOfTheSimdWord) {
    EXPECT_EQ(tsSSXBase::Rounding, 0u);
    EXPECT_EQ(tsSSXBase::FlushZero, 32768u);
    EXPECT_EQ(tsSSXBase::Exception, 8064u);
    EXPECT_TRUE(baseSSX.m_hasSSX);
}

TEST_F(RkCtrlBase, SimdDefaultClearsFlagsAndLeavesDenormalsAreZero) {
    kel_set_cw_ssx(64 | 63 | 0x7f80);
    baseSSX.setDefault();
    EXPECT_EQ(rk_get_ssx(), 32768u | 8064u | 64u);
    kel_set_cw_ssx(8064);
    baseSSX.setDefault();
    EXPECT_EQ(rk_get_ssx(), 32768u | 8064u);
}

TEST_F(RkCtrlBase, SimdClearTakesTheFlagsAlone) {
    kel_set_cw_ssx(0xdf80 | 63);
    baseSSX.clear();
    EXPECT_EQ(rk_get_ssx(), 0xdf80u);
}

TEST_F(RkCtrlBase, SimdSetReturnsTheOldWord) {
    unsigned int old = rk_get_ssx();
    EXPECT_EQ(baseSSX.set(0, 32768), old);
    EXPECT_EQ(rk_get_ssx(), old & ~32768u);
}

TEST_F(RkCtrlBase, SimdExceptionsAreUnmaskedAndMaskedTogether) {
    baseSSX.clear();
    baseSSX.enableExceptions();
    unsigned int unmasked = rk_get_ssx();
    baseSSX.disableExceptions();
    unsigned int maskedAgain = rk_get_ssx();
    EXPECT_EQ(unmasked & 8064, 0u);
    EXPECT_EQ(maskedAgain & 8064, 8064u);
}

TEST_F(RkCtrlBase, DisablingInexactOfSimdKeepsTheOtherMasks) {
    kel_set_cw_ssx(8064 & ~4096u & ~128u);
    baseSSX.disableInexactException();
    unsigned int ssx = rk_get_ssx();
    baseSSX.setDefault();
    EXPECT_EQ(ssx & 8064, 8064u & ~128u);
}

// ---- without SIMD -------------------------------------------------------------

TEST_F(RkCtrlBase, ProcessorWithoutSimdIsNotTouched) {
    ScriptedCpu cpu;
    kel_set_cw_ssx(0x5f80);
    tsSSXBase none;
    EXPECT_FALSE(none.m_hasSSX);
    none.clear();
    none.enableExceptions();
    none.disableExceptions();
    none.disableInexactException();
    none.setDefault();
    none.destroy();
    EXPECT_EQ(none.get(), 0u);
    EXPECT_EQ(none.set(4711, 65535), 4711u);
    EXPECT_EQ(rk_get_ssx() & ~63u, 0x5f80u);
}

TEST_F(RkCtrlBase, ProcessorWithoutSimdSaysSo) {
    ScriptedCpu cpu;
    tsSSXBase none;
    EXPECT_STREQ(none.strExceptionState(63).c_str(), "cpu has not SSX extension");
    EXPECT_STREQ(none.strCW(63).c_str(), "cpu has not SSX extension");
}

// rkfpu_test.cpp - tests of the floating-point and SIMD registers.

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstring>
#include <limits>

#include "rkfpu.h"

namespace {

// A clean machine for each test, and the one before it afterwards.
class RkFpu : public testing::Test {
protected:
    RkFpu() : m_cw(rk_get_cw_fpu()), m_ssx(rk_get_ssx()) {
        rk_clear_fpu();
        kel_set_cw_fpu(0x37f); // all masked, 64 bits, nearest
        kel_clear_ssx();
    }
    ~RkFpu() override {
        rk_clear_fpu();
        kel_set_cw_fpu(m_cw & 0xffff);
        kel_set_cw_ssx(m_ssx);
    }

    unsigned int m_cw, m_ssx;
};

// 1 / 0 in the x87 unit, with the exception masked.
void divideByZero() {
    __asm__ volatile("fld1\n\tfldz\n\tfdivrp\n\tfstp %%st(0)" : : : "st", "st(1)");
}

double divided(double a, double b) {
    volatile double x = a, y = b;
    return x / y;
}

unsigned int control() {
    return rk_get_cw_fpu() & 0x1f3f;
}

} // namespace

// ---- x87 ----------------------------------------------------------------------

TEST_F(RkFpu, ControlWordIsReadAsWritten) {
    kel_set_cw_fpu(0x27b);
    EXPECT_EQ(control(), 0x23bu);
}

TEST_F(RkFpu, MaskedWriteChangesTheMaskedBitsAlone) {
    kel_set_cw_fpu(0x37f);
    EXPECT_EQ(rk_set_cw_fpu(0xc00 | 0x200, 0xc00) & 0x1f3f, 0x33fu) << "the old word";
    EXPECT_EQ(control(), 0xf3fu);
    rk_set_cw_fpu(0, 4);
    EXPECT_EQ(control(), 0xf3bu);
}

TEST_F(RkFpu, RoundingOfTheControlWordIsObeyed) {
    rk_set_cw_fpu(0x800, 0xc00); // up
    long rounded;
    double quarter = 2.25;
    __asm__ volatile("fldl %1\n\tfistpll %0" : "=m"(rounded) : "m"(quarter) : "st");
    EXPECT_EQ(rounded, 3);
}

TEST_F(RkFpu, StatusWordTellsTheException) {
    EXPECT_EQ(rk_get_sw_fpu() & 63, 0u);
    divideByZero();
    EXPECT_EQ(rk_get_sw_fpu() & 63, 4u);
    EXPECT_EQ(rk_get_sw_fpu() & 63, 4u) << "reading leaves it";
}

TEST_F(RkFpu, ClearingTellsWhatWasThere) {
    divideByZero();
    EXPECT_EQ(rk_clear_fpu() & 63, 4u);
    EXPECT_EQ(rk_get_sw_fpu() & 63, 0u);
    EXPECT_EQ(rk_clear_fpu() & 63, 0u);
}

TEST_F(RkFpu, FieldIsWrittenIfItDiffers) {
    EXPECT_EQ(kel_set_rcpc_fpu(0x200, 0x300) & 0x1f3f, 0x33fu);
    EXPECT_EQ(control(), 0x23fu);
    EXPECT_EQ(kel_set_rcpc_fpu(0x200, 0x300) & 0x1f3f, 0x23fu);
    EXPECT_EQ(control(), 0x23fu);
}

// ---- SIMD ---------------------------------------------------------------------

TEST_F(RkFpu, SimdWordIsReadAsWritten) {
    kel_set_cw_ssx(0x9f80);
    EXPECT_EQ(rk_get_ssx(), 0x9f80u);
}

TEST_F(RkFpu, MaskedSimdWriteChangesTheMaskedBitsAlone) {
    EXPECT_EQ(rk_set_ssx(0xffff, 0x8000), 0x1f80u) << "the old word";
    EXPECT_EQ(rk_get_ssx(), 0x9f80u);
    rk_set_ssx(0, 0x80);
    EXPECT_EQ(rk_get_ssx(), 0x9f00u);
}

TEST_F(RkFpu, SimdBitsThatDoNotExistAreNotWritten) {
    kel_set_cw_ssx(0xffff1f80u);
    EXPECT_EQ(rk_get_ssx(), 0x1f80u);
    rk_set_ssx(0xffffffffu, 0xffff0000u);
    EXPECT_EQ(rk_get_ssx(), 0x1f80u);
}

TEST_F(RkFpu, SimdFlagsTellTheException) {
    EXPECT_TRUE(std::isinf(divided(1.0, 0.0)));
    EXPECT_EQ(rk_get_ssx() & 63, 4u);
}

TEST_F(RkFpu, ClearingSimdTellsTheOldWordAndIsTheSame) {
    kel_set_cw_ssx(0xbf95);
    EXPECT_EQ(kel_clear_ssx(), 0xbf95u);
    EXPECT_EQ(rk_get_ssx(), 8064u);
}

TEST_F(RkFpu, SimdRoundingFieldIsWritten) {
    EXPECT_EQ(kel_set_rc_ssx(0x4000), 0x1f80u);
    EXPECT_EQ(rk_get_ssx(), 0x5f80u);
    EXPECT_EQ(divided(1.0, 3.0), std::nextafter(1.0 / 3.0, 1.0)) << "up";
    EXPECT_EQ(kel_set_rc_ssx(0x4000) & 0x6000, 0x4000u);
    kel_set_rc_ssx(0);
    EXPECT_EQ(rk_get_ssx() & 0x6000, 0u);
}

TEST_F(RkFpu, DenormalsAreZeroIsThereIfItCanBeSet) {
    // All processors of 64 bits have it; the word would fault otherwise.
    ASSERT_TRUE(kel_tst_daz_ssx());
    rk_set_ssx(64, 64);
    EXPECT_EQ(divided(std::numeric_limits<double>::denorm_min(), 1e-300), 0.0);
}

TEST_F(RkFpu, DestroyingSetsEveryBitOfAllSimdRegisters) {
    alignas(16) unsigned char regs[16][16];
    memset(regs, 0, sizeof regs);
    rk_destroy_ssx();
    __asm__ volatile(
        "movaps %%xmm0, 0(%0)\n\tmovaps %%xmm1, 16(%0)\n\tmovaps %%xmm2, 32(%0)\n\tmovaps %%xmm3, 48(%0)\n\t"
        "movaps %%xmm4, 64(%0)\n\tmovaps %%xmm5, 80(%0)\n\tmovaps %%xmm6, 96(%0)\n\tmovaps %%xmm7, "
        "112(%0)\n\t"
        "movaps %%xmm8, 128(%0)\n\tmovaps %%xmm9, 144(%0)\n\tmovaps %%xmm10, 160(%0)\n\t"
        "movaps %%xmm11, 176(%0)\n\tmovaps %%xmm12, 192(%0)\n\tmovaps %%xmm13, 208(%0)\n\t"
        "movaps %%xmm14, 224(%0)\n\tmovaps %%xmm15, 240(%0)"
        :
        : "r"(regs)
        : "memory");
    for (int reg = 0; reg < 16; ++reg) {
        for (int i = 0; i < 16; ++i) EXPECT_EQ(regs[reg][i], 255) << "register " << reg << " byte " << i;
    }
}

TEST_F(RkFpu, DestroyingRaisesNoFlag) {
    kel_clear_ssx();
    rk_destroy_ssx();
    EXPECT_EQ(rk_get_ssx(), 8064u);
}

// ---- doubles ------------------------------------------------------------------

TEST_F(RkFpu, InfinityIsNeitherFiniteNorNan) {
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(kel_isnan(infinity), 0);
    EXPECT_EQ(kel_isnan(-infinity), 0);
    EXPECT_EQ(kel_finite(infinity), 0);
    EXPECT_EQ(kel_finite(-infinity), 0);
}

TEST_F(RkFpu, NanIsNotFinite) {
    EXPECT_EQ(kel_isnan(std::numeric_limits<double>::quiet_NaN()), 1);
    EXPECT_EQ(kel_isnan(-std::numeric_limits<double>::quiet_NaN()), 1);
    EXPECT_EQ(kel_finite(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST_F(RkFpu, NumbersAreFinite) {
    for (double x :
         {0.0, -1.5, std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()}) {
        EXPECT_EQ(kel_isnan(x), 0) << x;
        EXPECT_EQ(kel_finite(x), 1) << x;
    }
}

// ---- portable word ------------------------------------------------------------

TEST_F(RkFpu, EachMaskHasItsPortableBit) {
    unsigned int const pairs[][2] = {{1, 16}, {4, 8}, {8, 4}, {16, 2}, {32, 1}, {2, 524288}};
    for (auto const &pair : pairs) {
        kel_set_cw_fpu(0x300 | pair[0]);
        EXPECT_EQ(kel_control87(0, 0), pair[1]) << pair[0];
        EXPECT_EQ(control(), 0x300 | pair[0]) << "an empty mask changes nothing";
    }
}

TEST_F(RkFpu, RoundingIsTheSameFieldTwoBitsDown) {
    for (unsigned int field = 0; field < 4; ++field) {
        kel_set_cw_fpu(0x33f | field << 10);
        EXPECT_EQ(kel_control87(0, 0) & 768, field << 8);
        kel_set_cw_fpu(0x33f);
        kel_control87(field << 8, 768);
        EXPECT_EQ(control(), 0x33f | field << 10);
    }
}

TEST_F(RkFpu, PrecisionOf53BitsIsRead) {
    kel_set_cw_fpu(0x23f);
    EXPECT_EQ(kel_control87(0, 0) & 196608, 65536u);
    EXPECT_EQ(control(), 0x23fu);
}

TEST_F(RkFpu, PrecisionOf24BitsReadsAsNoneSoThatAWriteMakesIt64) {
    kel_set_cw_fpu(0x03f);
    EXPECT_EQ(kel_control87(0, 0) & 196608, 0u);
    EXPECT_EQ(control(), 0x33fu);
}

TEST_F(RkFpu, PrecisionIsWritten) {
    kel_control87(65536, 196608);
    EXPECT_EQ(control(), 0x23fu);
    kel_control87(131072, 196608);
    EXPECT_EQ(control(), 0x03fu);
    kel_control87(0, 196608);
    EXPECT_EQ(control(), 0x33fu);
    kel_control87(196608, 196608);
    EXPECT_EQ(control(), 0x03fu) << "both bits";
}

TEST_F(RkFpu, InfinityControlIsReadAndWritten) {
    EXPECT_EQ(kel_control87(262144, 262144) & 262144, 262144u);
    EXPECT_EQ(control() & 4096, 4096u);
    EXPECT_EQ(kel_control87(0, 0) & 262144, 262144u);
    kel_control87(0, 262144);
    EXPECT_EQ(control() & 4096, 0u);
}

TEST_F(RkFpu, PortableWriteReturnsTheNewWord) {
    kel_set_cw_fpu(0x33f);
    EXPECT_EQ(kel_control87(0, 8), 524288u | 16 | 4 | 2 | 1) << "a division by zero unmasked";
    EXPECT_EQ(control(), 0x33bu);
}

TEST_F(RkFpu, PortableStatusHasTheFlags) {
    EXPECT_EQ(kel_status87(), 0u);
    divideByZero();
    EXPECT_EQ(kel_status87(), 8u);
    EXPECT_EQ(kel_clear87(), 8u);
    EXPECT_EQ(kel_status87(), 0u);
}

// kmfill_test.cpp - tests of the ways to fill a vector.

#include "km.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "vectors.h"

namespace {

const double two63 = 9223372036854775808.0;

} // namespace

// ---- conversion --------------------------------------------------------------

TEST(KmConvert, TruncatesTowardsZero) {
    EXPECT_EQ(kmConvert<Kel8s>(-1.9), -1);
    EXPECT_EQ(kmConvert<Kel8u>(1.9), 1);
    EXPECT_EQ(kmConvert<Kel32s>(-0.9), 0);
}

TEST(KmConvert, KeepsTheLowBitsAndNeverSaturates) {
    EXPECT_EQ(kmConvert<Kel8u>(300.0), 44);
    EXPECT_EQ(kmConvert<Kel8u>(-1.0), 255);
    EXPECT_EQ(kmConvert<Kel8s>(128.0), -128);
    EXPECT_EQ(kmConvert<Kel16s>(65537.0), 1);
    EXPECT_EQ(kmConvert<Kel32u>(4294967297.0), 1u);
    EXPECT_EQ(kmConvert<Kel32s>(2147483648.0), INT_MIN);
}

TEST(KmConvert, OutOf64BitsIsTheSmallestInteger) {
    EXPECT_EQ(kmConvert<Kel64s>(two63), INT64_MIN);
    EXPECT_EQ(kmConvert<Kel64s>(-1e30), INT64_MIN);
    EXPECT_EQ(kmConvert<Kel64s>(std::numeric_limits<double>::quiet_NaN()), INT64_MIN);
    EXPECT_EQ(kmConvert<Kel32s>(1e30), 0);
    EXPECT_EQ(kmConvert<Kel8u>(std::numeric_limits<double>::infinity()), 0);
}

TEST(KmConvert, UpperHalfOf64uHasTheTopBit) {
    EXPECT_EQ(kmConvert<Kel64u>(two63), 1ull << 63);
    EXPECT_EQ(kmConvert<Kel64u>(two63 + 4096.0), (1ull << 63) + 4096);
    EXPECT_EQ(kmConvert<Kel64u>(4096.0), 4096u);
    EXPECT_EQ(kmConvert<Kel64u>(-1.0), UINT64_MAX);
    EXPECT_EQ(kmConvert<Kel64u>(1e30), 1ull << 63);
}

TEST(KmConvert, FloatsAreRounded) {
    EXPECT_EQ(kmConvert<Kel32f>(1.00001), 1.00001f);
    EXPECT_EQ(kmConvert<Kel64f>(1.00001), 1.00001);
}

// ---- constants ---------------------------------------------------------------

TEST(KmVectorFill, FreshVectorHoldsTheDefaultConstant) {
    kmVector bytes(8), floats(544), complex(1568), shorts(1296);
    ASSERT_TRUE(bytes.createVector(3, 0) && floats.createVector(3, 0));
    ASSERT_TRUE(complex.createVector(1, 0) && shorts.createVector(1, 0));
    EXPECT_EQ(values(bytes), (Values{2, 2, 2}));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(floats.p32f[i], 1.00001f);
    EXPECT_EQ(complex.p32fc[0].im, 1.00001f);
    EXPECT_EQ(parts(shorts), (Values{2, 2}));
}

TEST(KmVectorFill, ConstantReachesEveryElementAndNoByteMore) {
    for (int n = 0; n <= 70; ++n) {
        kmVector v(16 | kmTypeComplex | kmTypeSigned);
        ASSERT_TRUE(v.createVector(71, SetZero, 0, 0));
        v.setDataConst(v.m_data, n, 5.0, -6.0);
        for (int i = 0; i < 71; ++i) {
            EXPECT_EQ(v.p16sc[i].re, i < n ? 5 : 0) << i << " of " << n;
            EXPECT_EQ(v.p16sc[i].im, i < n ? -6 : 0) << i << " of " << n;
        }
    }
}

TEST(KmVectorFill, ConstantGoesToEachPart) {
    kmVector v(1296);
    ASSERT_TRUE(v.createVector(2, SetValue, -3.7, 8.9));
    EXPECT_EQ(parts(v), (Values{-3, 8, -3, 8}));
}

TEST(KmVectorFill, ImaginaryConstantOfARealTypeIsIgnored) {
    kmVector v(272);
    ASSERT_TRUE(v.createVector(3, SetValue, 5.0, 9.0));
    EXPECT_EQ(values(v), (Values{5, 5, 5}));
}

TEST(KmVectorFill, LimitsGoToBothParts) {
    kmVector v(1296);
    ASSERT_TRUE(v.createVector(1, SetMax, 0.0, 0.0));
    EXPECT_EQ(parts(v), (Values{32767, 32767}));
    v.setMinValue();
    EXPECT_EQ(parts(v), (Values{-32768, -32768}));
}

TEST(KmVectorFill, EveryTypeTakesItsLimits) {
    const kmType integers[] = {8, 16, 32, 264, 272, 288, 544, 576};
    for (kmType type : integers) {
        kmVector v(type);
        ASSERT_TRUE(v.createVector(1, SetMax, 0.0, 0.0));
        double scale = type == 544 ? 1e-7 * v.maxValue() : 0.0; // rounding to single precision
        EXPECT_NEAR(v.getIndex(0), v.maxValue(), scale) << type;
        v.setVector(SetMin, 0.0, 0.0);
        EXPECT_NEAR(v.getIndex(0), v.minValue(), scale) << type;
    }
}

TEST(KmVectorFill, MaximumOf64BitsIsTheTopBit) {
    kmVector u(64), s(320);
    ASSERT_TRUE(u.createVector(1, SetMax, 0.0, 0.0) && s.createVector(1, SetMax, 0.0, 0.0));
    EXPECT_EQ(u.p64u[0], 1ull << 63);
    EXPECT_EQ(s.p64s[0], INT64_MIN);
}

TEST(KmVectorFill, ModesOfConstants) {
    kmVector v(1296);
    ASSERT_TRUE(v.createVector(1, SetZero, 9.0, 9.0));
    EXPECT_EQ(parts(v), (Values{0, 0}));
    v.setVector(SetOne, 9.0, 9.0);
    EXPECT_EQ(parts(v), (Values{1, 0}));
    v.setVector(SetDefault, 9.0, 9.0);
    EXPECT_EQ(parts(v), (Values{2, 2}));
}

TEST(KmVectorFill, UnknownModeLeavesTheData) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(2, SetValue, 77.0, 0.0));
    v.setVector(static_cast<SetMode>(8), 1.0, 2.0);
    v.setIndex(0, static_cast<SetMode>(8), 1.0, 2.0);
    EXPECT_EQ(values(v), (Values{77, 77}));
}

TEST(KmVectorFill, NothingHappensWithoutABlock) {
    kmVector v(8);
    v.setConst();
    v.setMaxValue();
    v.setJaehne();
    v.setSequence(0.0, 5.0);
    v.setIndex(0, SetOne, 0.0, 0.0);
    EXPECT_EQ(v.m_data, nullptr);
}

TEST(KmVectorFill, UndefinedTypeIsNotFilled) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(2, SetValue, 77.0, 0.0));
    v.m_type = 1032;
    kmVector::m_seed = 5;
    v.setConst();
    v.setRandom();
    v.setJaehne(1.0);
    v.setSequence(0.0, 1.0);
    v.setIndex(0, SetRandom, 0.0, 0.0);
    EXPECT_EQ(v.m_data[0], 77);
    EXPECT_EQ(v.m_data[1], 77);
    EXPECT_EQ(kmVector::m_seed, 5u);
}

// ---- the Jaehne pattern ------------------------------------------------------

TEST(KmVectorFill, JaehneOfBytesRunsOverTheWholeRange) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(8, 0));
    v.setJaehne();
    EXPECT_EQ(values(v), (Values{127, 152, 217, 252, 127, 2, 217, 102}));
}

TEST(KmVectorFill, JaehneOfDoublesIsTheChirpItself) {
    kmVector v(576);
    const int n = 37;
    ASSERT_TRUE(v.createVector(n, 0));
    v.setJaehne(3.0);
    for (int i = 0; i < n; ++i) EXPECT_EQ(v.p64f[i], std::sin((1.5707963267948966 / n) * i * i) * 3.0);
    v.setJaehne();
    EXPECT_EQ(v.p64f[5], std::sin((1.5707963267948966 / n) * 5 * 5));
}

TEST(KmVectorFill, JaehneOfSignedIntegersIsCentredOnZero) {
    kmVector v(264);
    ASSERT_TRUE(v.createVector(8, 0));
    v.setJaehne(1000.0); // limited to 127.5
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(v.p8s[i], std::trunc(std::sin((1.5707963267948966 / 8) * i * i) * 127.5));
    }
}

TEST(KmVectorFill, JaehneGivesBothPartsTheSameValue) {
    kmVector v(1296);
    ASSERT_TRUE(v.createVector(9, 0));
    v.setJaehne();
    for (int i = 0; i < 9; ++i) EXPECT_EQ(v.p16sc[i].re, v.p16sc[i].im);
    EXPECT_NE(v.p16sc[3].re, v.p16sc[4].re);
}

TEST(KmVectorFill, NegativeJaehneMagnitudeLeavesTheData) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(3, SetValue, 77.0, 0.0));
    v.setJaehne(-1.0);
    EXPECT_EQ(values(v), (Values{77, 77, 77}));
}

// ---- sequences ---------------------------------------------------------------

TEST(KmVectorFill, SequenceOfOneElementIsItsStart) {
    kmVector v(1296);
    ASSERT_TRUE(v.createVector(1, 0));
    v.setSequence(9.0, 50.0);
    EXPECT_EQ(parts(v), (Values{9, 0}));
}

TEST(KmVectorFill, SequenceOfTwoValuesEndsAtTheSecond) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(5, 0));
    v.setSequence(0.0, 8.0);
    EXPECT_EQ(values(v), (Values{0, 2, 4, 6, 8}));
}

TEST(KmVectorFill, SequenceWrapsToItsStart) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(6, 0));
    v.setSequence(1.0, 6.0, 2.0, true);
    EXPECT_EQ(values(v), (Values{1, 3, 5, 1, 3, 5}));
}

TEST(KmVectorFill, SequenceWithoutWrapStaysAtItsEnd) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(6, 0));
    v.setSequence(1.0, 6.0, 2.0, false);
    EXPECT_EQ(values(v), (Values{1, 3, 5, 6, 6, 6}));
}

TEST(KmVectorFill, SequenceIsLimitedToTheType) {
    kmVector v(264);
    ASSERT_TRUE(v.createVector(4, 0));
    v.setSequence(-1000.0, 1000.0, 200.0, true);
    EXPECT_EQ(values(v), (Values{-128, 72, -128, 72}));
}

TEST(KmVectorFill, SequenceGivesBothPartsTheSameValue) {
    kmVector v(1568);
    ASSERT_TRUE(v.createVector(3, 0));
    v.setSequence(0.0, 1.0, 0.5, true);
    EXPECT_EQ(parts(v), (Values{0, 0, 0.5, 0.5, 1, 1}));
}

TEST(KmVectorFill, SequenceModeDividesByTheCount) {
    kmVector v(576);
    ASSERT_TRUE(v.createVector(4, SetSequence, 0.0, 8.0));
    EXPECT_EQ(values(v), (Values{0, 2, 4, 6}));
}

TEST(KmVectorFill, SequenceModeOfIntegersStepsByOneAtLeast) {
    kmVector bytes(8), doubles(576);
    ASSERT_TRUE(bytes.createVector(4, SetSequence, 0.0, 2.0));
    ASSERT_TRUE(doubles.createVector(4, SetSequence, 0.0, 2.0));
    EXPECT_EQ(values(bytes), (Values{0, 1, 2, 0}));
    EXPECT_EQ(values(doubles), (Values{0, 0.5, 1, 1.5}));
}

// ---- single elements ---------------------------------------------------------

class KmVectorIndex : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(v.createVector(3, SetValue, 77.0, 77.0)); }
    Values after(SetMode mode, double a, double b) {
        v.setIndex(1, mode, a, b);
        return parts(v);
    }
    kmVector v{1296};
};

TEST_F(KmVectorIndex, DefaultEndsAsZero) {
    EXPECT_EQ(after(SetDefault, 5, 6), (Values{77, 77, 0, 0, 77, 77}));
}
TEST_F(KmVectorIndex, OutsideOfTheBlockNothingIsWrittenAndZeroIsRead) {
    for (int i : {3, 4, 1000000000, INT_MAX, -1, INT_MIN}) {
        v.setIndex(i, SetValue, 5, 6);
        EXPECT_EQ(v.getIndex(i), 0.0) << i;
        double re = 8.0, im = 9.0;
        v.getIndex(i, re, im);
        EXPECT_EQ(re, 8.0) << i;
        EXPECT_EQ(im, 9.0) << i;
    }
    EXPECT_EQ(parts(v), (Values{77, 77, 77, 77, 77, 77}));
}
TEST_F(KmVectorIndex, ZeroAndOne) {
    EXPECT_EQ(after(SetZero, 5, 6), (Values{77, 77, 0, 0, 77, 77}));
    EXPECT_EQ(after(SetOne, 5, 6), (Values{77, 77, 1, 0, 77, 77}));
}
TEST_F(KmVectorIndex, LimitsGoToTheRealPartAlone) {
    EXPECT_EQ(after(SetMax, 5, 6), (Values{77, 77, 32767, 0, 77, 77}));
    EXPECT_EQ(after(SetMin, 5, 6), (Values{77, 77, -32768, 0, 77, 77}));
}
TEST_F(KmVectorIndex, ValueAndSequence) {
    EXPECT_EQ(after(SetValue, 5, 6), (Values{77, 77, 5, 6, 77, 77}));
    EXPECT_EQ(after(SetSequence, 8, 9), (Values{77, 77, 8, 0, 77, 77}));
}
TEST_F(KmVectorIndex, RandomDrawsOnceForTheRealPart) {
    kmVector::m_seed = 7;
    double first = std::trunc(modelRange(7, 1, 10.0, 500.0)[0]);
    EXPECT_EQ(after(SetRandom, 10, 500), (Values{77, 77, first, 0, 77, 77}));
    uint32_t seed = 0;
    modelRandom(7, 1, &seed);
    EXPECT_EQ(kmVector::m_seed, seed);
}
TEST_F(KmVectorIndex, RandomWithEqualArgumentsTakesTheLimits) {
    kmVector::m_seed = 7;
    EXPECT_EQ(after(SetRandom, 4, 4), (Values{77, 77, -17957, 0, 77, 77}));
}

// ---- rows --------------------------------------------------------------------

// Misaligned rows are part of what is measured; what lies around them stays.
TEST(KmVectorFill, DataLevelFillsAMisalignedRowAndNothingElse) {
    unsigned char row[64];
    kmVector v(288);
    for (int fill = 0; fill < 4; ++fill) {
        memset(row, 0xee, sizeof(row));
        if (fill == 0) v.setDataConst(row + 5, 10, 1.0, 0.0);
        if (fill == 1) v.setDataRandom(row + 5, 10, 0.0, 1000.0);
        if (fill == 2) v.setDataSequence(row + 5, 10, 0.0, 100.0, 1.0, 1.0);
        if (fill == 3) v.setVectorJaehne(row + 5, 10, 100.0);
        for (int i = 0; i < 64; ++i) {
            bool around = i < 5 || i >= 45;
            EXPECT_TRUE(!around || row[i] == 0xee) << fill << " " << i;
        }
        EXPECT_NE(row[5 + 3], 0xee) << fill;
        EXPECT_NE(row[44], 0xee) << fill;
    }
}

TEST(KmVectorFill, RandomRowsGoOnWithOneAnother) {
    kmVector v(8);
    unsigned char rows[20];
    kmVector::m_seed = 7;
    v.setDataRandom(rows, 10, 0.0, 255.0);
    uint32_t seed = kmVector::m_seed;
    v.setDataRandom(rows + 10, 10, 0.0, 255.0);
    Values second = truncated(modelRange(seed, 10, 0.0, 255.0));
    for (int i = 0; i < 10; ++i) EXPECT_EQ(rows[10 + i], second[i]);
}

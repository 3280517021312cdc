// dct4x4_test.cpp - 4x4 samples out of the coefficients of a 2-4-8 block, against sums in doubles.

#include "../kelvara/blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// Orthonormal weight of sample n in coefficient k of four.
double basis4(int k, int n) {
    return k == 0 ? 0.5 : std::sqrt(0.5) * std::cos(M_PI * k * (2 * n + 1) / 8);
}

double sample(const Values<Kel16s> &coeffs, int row, int col) {
    double sum = 0;
    for (int v = 0; v < 4; ++v) {
        for (int h = 0; h < 4; ++h) sum += coeffs[8 * v + h] * basis4(v, row) * basis4(h, col) / 2;
    }
    return sum;
}

// slack: how far from a half the rounding may go wrong.
void expectModel(const Values<Kel16s> &x, int offset, double slack) {
    InPlace block(x, offset);
    ASSERT_EQ(kelStsNoErr, keliDCT8x4x2To4x4Inv_DV_16s_C1I(block.data()));
    for (int i = 0; i < 16; ++i) {
        const double exact = std::clamp(sample(x, i / 4, i % 4), -32768.0, 32767.0);
        EXPECT_LE(std::abs(exact - block[i]), 0.5 + slack) << "at " << i;
    }
    for (int i = 16; i < 64; ++i) EXPECT_EQ(x[i], block[i]) << "the rest stays";
    EXPECT_TRUE(block.surroundingsIntact());
}

// The 4x4 samples of 8x8 ones that went through the forward transform.
Values<Kel16s> reduced(const Values<Kel16s> &samples) {
    InPlace block(samples);
    EXPECT_EQ(kelStsNoErr, keliDCT2x4x8Frw_16s_C1I(block.data()));
    EXPECT_EQ(kelStsNoErr, keliDCT8x4x2To4x4Inv_DV_16s_C1I(block.data()));
    return block.values();
}

} // namespace

TEST(KelvaraDct4x4, EqualsTheSumsOfLowFrequencies) {
    std::mt19937 generator(1);
    for (int pass = 0; pass < 100; ++pass) {
        for (int offset : {0, 1, 2}) {
            expectModel(randomBlock<Kel16s>(generator, -128, 127), offset, 0.001);
            expectModel(randomBlock<Kel16s>(generator, -2048, 2047), offset, 0.001);
            expectModel(randomBlock<Kel16s>(generator, -32768, 32767), offset, 0.05);
        }
    }
}

TEST(KelvaraDct4x4, ExtremesAreLimited) {
    for (int value : {-32768, 32767}) {
        Values<Kel16s> x;
        x.fill(static_cast<Kel16s>(value));
        expectModel(x, 0, 0.05);
    }
}

TEST(KelvaraDct4x4, AFlatBlockKeepsItsLevel) {
    for (int level = -128; level < 128; ++level) {
        Values<Kel16s> samples;
        samples.fill(static_cast<Kel16s>(level));
        const auto result = reduced(samples);
        for (int i = 0; i < 16; ++i) EXPECT_EQ(level, result[i]);
    }
}

// Lines that are flat each: a row is the mean of two of them.
TEST(KelvaraDct4x4, RowsAreMeansOfTwoLines) {
    std::mt19937 generator(2);
    for (int pass = 0; pass < 200; ++pass) {
        const auto lines = randomBlock<Kel16s>(generator, -128, 127);
        Values<Kel16s> samples;
        for (int i = 0; i < 64; ++i) samples[i] = lines[i / 8];
        const auto result = reduced(samples);
        for (int i = 0; i < 16; ++i)
            EXPECT_LE(std::abs((lines[i / 4 * 2] + lines[i / 4 * 2 + 1]) / 2.0 - result[i]), 1.5) << i;
    }
}

// A slope stays one, at half the number of samples.
TEST(KelvaraDct4x4, ColumnsAreMeansOfTwoSamplesOfASlope) {
    Values<Kel16s> samples;
    for (int i = 0; i < 64; ++i) samples[i] = static_cast<Kel16s>(20 * (i % 8) - 70);
    const auto result = reduced(samples);
    for (int i = 0; i < 16; ++i) EXPECT_LE(std::abs(40 * (i % 4) - 60 - result[i]), 3) << i;
}

TEST(KelvaraDct4x4, DifferencesOfTheFieldsAreNotRead) {
    std::mt19937 generator(3);
    Values<Kel16s> x = randomBlock<Kel16s>(generator, -500, 500), other = x;
    for (int i = 0; i < 64; ++i) {
        if (i >= 32 || i % 8 >= 4) other[i] = static_cast<Kel16s>(-x[i] + 7);
    }
    InPlace first(x), second(other);
    ASSERT_EQ(kelStsNoErr, keliDCT8x4x2To4x4Inv_DV_16s_C1I(first.data()));
    ASSERT_EQ(kelStsNoErr, keliDCT8x4x2To4x4Inv_DV_16s_C1I(second.data()));
    for (int i = 0; i < 16; ++i) EXPECT_EQ(first[i], second[i]);
}

TEST(KelvaraDct4x4, NullIsRefused) {
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x4x2To4x4Inv_DV_16s_C1I(nullptr));
}

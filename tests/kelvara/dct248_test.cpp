// dct248_test.cpp - the 2-4-8 transform of DV, against the sums of the standard in doubles.

#include "blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

double c(int k) {
    return k == 0 ? 0.5 / std::sqrt(2.0) : 0.5;
}

// Weight of sample (x, z) of a field in coefficient (h, u).
double kernel(int h, int u, int x, int z) {
    return c(u) * c(h) * std::cos(M_PI * u * (2 * z + 1) / 8) * std::cos(M_PI * h * (2 * x + 1) / 16);
}

// SMPTE 314M: C(h,u) of the sums P(x,2z) + P(x,2z+1), C(h,u+4) of the differences.
double coefficient(const Values<Kel16s> &p, int row, int h) {
    const int u = row % 4, sign = row < 4 ? 1 : -1;
    double sum = 0;
    for (int z = 0; z < 4; ++z) {
        for (int x = 0; x < 8; ++x) sum += (p[16 * z + x] + sign * p[16 * z + 8 + x]) * kernel(h, u, x, z);
    }
    return sum;
}

// P(x,2z) of C(h,u) + C(h,u+4), P(x,2z+1) of C(h,u) - C(h,u+4).
double sample(const Values<Kel16s> &coeffs, int row, int x) {
    const int z = row / 2, sign = row % 2 == 0 ? 1 : -1;
    double sum = 0;
    for (int u = 0; u < 4; ++u) {
        for (int h = 0; h < 8; ++h) {
            sum += (coeffs[8 * u + h] + sign * coeffs[8 * (u + 4) + h]) * kernel(h, u, x, z);
        }
    }
    return sum;
}

struct Function {
    const char *name;
    KelStatus (*call)(Kel16s *);
    double (*model)(const Values<Kel16s> &, int, int);
};

const Function functions[] = {{"keliDCT2x4x8Frw_16s_C1I", keliDCT2x4x8Frw_16s_C1I, coefficient},
                              {"keliDCT2x4x8Inv_16s_C1I", keliDCT2x4x8Inv_16s_C1I, sample}};

// slack: how far from a half the rounding may go wrong.
void expectModel(const Function &f, const Values<Kel16s> &x, int offset, double slack) {
    InPlace block(x, offset);
    ASSERT_EQ(kelStsNoErr, f.call(block.data()));
    EXPECT_TRUE(block.surroundingsIntact());
    for (int i = 0; i < 64; ++i) {
        const double exact = std::max(-32768.0, std::min(32767.0, f.model(x, i / 8, i % 8)));
        EXPECT_LE(std::abs(exact - block[i]), 0.5 + slack) << f.name << " at " << i;
    }
}

} // namespace

TEST(KelvaraDct248, EqualsTheSumsOfTheStandard) {
    std::mt19937 generator(7);
    for (const Function &f : functions) {
        for (int pass = 0; pass < 50; ++pass) {
            for (int offset : {0, 1, 2}) {
                expectModel(f, randomBlock<Kel16s>(generator, -128, 127), offset, 0.001);
                expectModel(f, randomBlock<Kel16s>(generator, -1024, 1023), offset, 0.001);
                expectModel(f, randomBlock<Kel16s>(generator, -32768, 32767), offset, 0.05);
            }
        }
    }
}

TEST(KelvaraDct248, ExtremesAreLimited) {
    for (const Function &f : functions) {
        for (int value : {-32768, 32767}) {
            Values<Kel16s> x;
            x.fill(static_cast<Kel16s>(value));
            expectModel(f, x, 0, 0.2);
        }
    }
}

// Lines alike within each pair leave the differences empty; lines that alternate leave the sums empty.
TEST(KelvaraDct248, SumsAreTheUpperRowsAndDifferencesTheLower) {
    Values<Kel16s> alike, alternating;
    for (int i = 0; i < 64; ++i) {
        alike[i] = static_cast<Kel16s>(10 * (i / 16) + i % 8);
        alternating[i] = static_cast<Kel16s>(i / 8 % 2 ? -50 : 50);
    }
    InPlace first(alike), second(alternating);
    ASSERT_EQ(kelStsNoErr, keliDCT2x4x8Frw_16s_C1I(first.data()));
    ASSERT_EQ(kelStsNoErr, keliDCT2x4x8Frw_16s_C1I(second.data()));
    EXPECT_NE(0, first[0]);
    for (int i = 32; i < 64; ++i) EXPECT_EQ(0, first[i]);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(i == 32 ? 400 : 0, second[i]);
}

TEST(KelvaraDct248, SamplesComeBack) {
    std::mt19937 generator(8);
    for (int pass = 0; pass < 500; ++pass) {
        const auto x = randomBlock<Kel16s>(generator, -128, 127);
        InPlace block(x);
        ASSERT_EQ(kelStsNoErr, keliDCT2x4x8Frw_16s_C1I(block.data()));
        ASSERT_EQ(kelStsNoErr, keliDCT2x4x8Inv_16s_C1I(block.data()));
        for (int i = 0; i < 64; ++i) EXPECT_LE(std::abs(x[i] - block[i]), 1);
    }
}

TEST(KelvaraDct248, NullIsRefused) {
    for (const Function &f : functions) EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr));
}

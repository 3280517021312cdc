// h263quant_test.cpp - quantisation of H.263 both ways, against intervals and the text of the standard.

#include "blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Block = Values<Kel16s>;

// All forms of both directions.
struct Form {
    bool intra, adv, mod;

    int first() const { return intra && !adv; } // behind DC, which has a step of its own
    int low() const { return mod ? -1024 : -127; }
    int high() const { return mod ? 1023 : 127; }
};

const Form forms[] = {{false, false, false}, {false, false, true}, {true, false, false},
                      {true, false, true},   {true, true, false},  {true, true, true}};

KelStatus quantise(const Form &f, Kel16s *block, int QP, int *count) {
    return f.intra ? keliQuantIntra_H263_16s_C1I(block, QP, count, f.adv, f.mod)
                   : keliQuantInter_H263_16s_C1I(block, QP, count, f.mod);
}

KelStatus dequantise(const Form &f, Kel16s *block, int last, int QP) {
    return f.intra ? keliQuantInvIntra_H263_16s_C1I(block, last, QP, f.adv, f.mod)
                   : keliQuantInvInter_H263_16s_C1I(block, last, QP, f.mod);
}

// |x| - offset lies in the level's interval of two QP: an inter level has its offset half a QUANT, the
// fraction dropped, an advanced one minus a whole one.
void expectLevel(const Form &f, int x, int QP, int level) {
    const int offset = f.adv ? -QP : f.intra ? 0 : QP / 2;
    const int within = std::max(std::abs(x) - offset, 0), magnitude = std::abs(level);
    ASSERT_LE(2 * QP * magnitude, within) << x << " by " << QP;
    const int limit = x < 0 ? -f.low() : f.high();
    ASSERT_LE(magnitude, limit);
    if (magnitude < limit) {
        ASSERT_GT(2 * QP * (magnitude + 1), within) << x << " by " << QP;
    }
    if (level != 0) {
        ASSERT_EQ(x < 0, level < 0);
    }
}

void expectDc(int x, int level) {
    ASSERT_TRUE(level >= 1 && level <= 254);
    for (int other = 1; other <= 254; ++other)
        ASSERT_LE(std::abs(x - 8 * level), std::abs(x - 8 * other)) << x << ": " << other;
}

void expectForward(const Form &f, const Block &x, int QP, int offset) {
    SCOPED_TRACE(testing::Message() << "intra " << f.intra << ", advanced " << f.adv << ", QP " << QP);
    InPlace block(x, offset);
    Destination<int> count(1, offset);
    ASSERT_EQ(kelStsNoErr, quantise(f, block.data(), QP, count.data()));
    if (f.first()) expectDc(x[0], block[0]);
    int nonZero = 0;
    for (int i = f.first(); i < 64; ++i) {
        ASSERT_NO_FATAL_FAILURE(expectLevel(f, x[i], QP, block[i]));
        nonZero += block[i] != 0;
    }
    EXPECT_EQ(nonZero, count[0]);
    EXPECT_TRUE(block.surroundingsIntact());
    EXPECT_TRUE(count.surroundingsIntact());
}

// ITU-T H.263 6.2.1 and 6.2.2, in doubles.
int modelCoefficient(int level, int quant) {
    if (level == 0) return 0;
    double rec = quant * (2.0 * std::abs(level) + 1);
    if (quant % 2 == 0) rec -= 1;
    if (level < 0) rec = -rec;
    return static_cast<int>(std::max(-2048.0, std::min(2047.0, rec)));
}

int modelValue(const Form &f, int level, int i, int quant) {
    if (f.adv) return std::max(-32768, std::min(32767, 2 * quant * level));
    if (f.intra && i == 0) return std::max(-2048, std::min(2047, 8 * level));
    return modelCoefficient(level, quant);
}

void expectInverse(const Form &f, const Block &levels, int last, int QP, int offset) {
    InPlace block(levels, offset);
    ASSERT_EQ(kelStsNoErr, dequantise(f, block.data(), last, QP));
    for (int i = 0; i < 64; ++i) {
        ASSERT_EQ(i <= last ? modelValue(f, levels[i], i, QP) : levels[i], block[i])
            << i << " up to " << last << ", QP " << QP;
    }
    EXPECT_TRUE(block.surroundingsIntact());
}

Block all(int value) {
    Block block;
    block.fill(static_cast<Kel16s>(value));
    return block;
}

} // namespace

// ---- forward ---------------------------------------------------------------------------

TEST(KelvaraH263Quant, LevelsLieInTheirIntervals) {
    std::mt19937 generator(1);
    for (const Form &f : forms) {
        for (int QP = 1; QP <= 31; ++QP) {
            for (int offset : {0, 1, 2, 7}) {
                for (int range : {60, 300, 2048, 32768})
                    expectForward(f, randomBlock<Kel16s>(generator, -range, range - 1), QP, offset);
            }
        }
    }
}

TEST(KelvaraH263Quant, BordersOfIntervalsAreExact) {
    for (const Form &f : forms) {
        for (int QP = 1; QP <= 31; ++QP) {
            Block x;
            for (int i = 0; i < 64; ++i) x[i] = static_cast<Kel16s>(QP * ((i - 32) / 3) + i % 3 - 1);
            expectForward(f, x, QP, 0);
            for (int i = 0; i < 64; ++i) x[i] = static_cast<Kel16s>(x[i] + QP / 2);
            expectForward(f, x, QP, 0);
        }
    }
}

TEST(KelvaraH263Quant, FormsRoundEachInItsWay) {
    const Block x = {100, 19, 20, 24, 25, 30, -19, -20, -25, 9, 10, -9, -10, 29};
    const Block expected[] = {{4, 0, 0, 0, 1, 1, 0, 0, -1, 0, 0, 0, 0, 1},     // inter
                              {13, 0, 1, 1, 1, 1, 0, -1, -1, 0, 0, 0, 0, 1},   // intra
                              {5, 1, 1, 1, 1, 2, -1, -1, -1, 0, 1, 0, -1, 1}}; // advanced intra
    const int counts[] = {5, 7, 12};
    for (int i = 0; i < 3; ++i) {
        InPlace block(x);
        int count = -1;
        ASSERT_EQ(kelStsNoErr, quantise(forms[2 * i], block.data(), 10, &count));
        EXPECT_EQ(expected[i], block.values());
        EXPECT_EQ(counts[i], count);
    }
}

TEST(KelvaraH263Quant, LevelsAreLimitedToWhatEscapeCodesCarry) {
    for (const Form &f : forms) {
        for (int x : {-32768, 32767}) {
            InPlace block(all(x));
            int count = 0;
            ASSERT_EQ(kelStsNoErr, quantise(f, block.data(), 1, &count));
            EXPECT_EQ(x < 0 ? f.low() : f.high(), block[63]);
            EXPECT_EQ(64 - f.first(), count);
        }
    }
}

TEST(KelvaraH263Quant, IntraDcTakesTheNearestOfItsLevels) {
    for (int x = -2048; x <= 2047; ++x) {
        Block block = all(0);
        block[0] = static_cast<Kel16s>(x);
        int count = 0;
        ASSERT_EQ(kelStsNoErr, keliQuantIntra_H263_16s_C1I(block.data(), 31, &count, 0, 0));
        ASSERT_NO_FATAL_FAILURE(expectDc(x, block[0]));
        ASSERT_EQ(0, count) << "DC is not counted";
    }
}

// ---- inverse ---------------------------------------------------------------------------

TEST(KelvaraH263Quant, InverseEqualsTheStandard) {
    std::mt19937 generator(2);
    for (const Form &f : forms) {
        for (int QP = 1; QP <= 31; ++QP) {
            for (int last = -1; last < 64; ++last) {
                for (int range : {8, 128, 32768})
                    expectInverse(f, randomBlock<Kel16s>(generator, -range, range - 1), last, QP, last & 3);
            }
        }
    }
}

TEST(KelvaraH263Quant, KnownLevelsHaveTheirCoefficients) {
    Block odd = {0, 1, -1, 2, -2, 127}, even = odd;
    ASSERT_EQ(kelStsNoErr, keliQuantInvInter_H263_16s_C1I(odd.data(), 63, 5, 0));
    EXPECT_EQ((Block{0, 15, -15, 25, -25, 1275}), odd);
    ASSERT_EQ(kelStsNoErr, keliQuantInvInter_H263_16s_C1I(even.data(), 63, 6, 0));
    EXPECT_EQ((Block{0, 17, -17, 29, -29, 1529}), even);
}

TEST(KelvaraH263Quant, IntraDcAndLevelsBehindTheLastStay) {
    Block block = {100, 3, 3, 3};
    ASSERT_EQ(kelStsNoErr, keliQuantInvIntra_H263_16s_C1I(block.data(), 1, 7, 0, 0));
    EXPECT_EQ((Block{800, 49, 3, 3}), block);
    ASSERT_EQ(kelStsNoErr, keliQuantInvIntra_H263_16s_C1I(block.data(), -1, 7, 0, 0));
    EXPECT_EQ((Block{800, 49, 3, 3}), block);
}

TEST(KelvaraH263Quant, CoefficientsAreLimitedButNotInFrontOfAPrediction) {
    for (const Form &f : forms) {
        InPlace block(all(-1024));
        ASSERT_EQ(kelStsNoErr, dequantise(f, block.data(), 63, 15));
        EXPECT_EQ(f.adv ? -30720 : -2048, block[63]);
        EXPECT_EQ(f.adv ? -30720 : -2048, block[0]);
    }
}

TEST(KelvaraH263Quant, InverseOfExtremesDoesNotOverflow) {
    for (const Form &f : forms) {
        for (int level : {-32768, -1, 0, 1, 32767}) expectInverse(f, all(level), 63, 31, 0);
    }
}

// ---- both ways -------------------------------------------------------------------------

// By how much a coefficient is off: half the interval at most, but near zero, where it is wider.
TEST(KelvaraH263Quant, BothWaysComeBackWithinAStep) {
    std::mt19937 generator(3);
    for (const Form &f : forms) {
        for (int QP = f.mod ? 1 : 9; QP <= 31; ++QP) {
            const auto x = randomBlock<Kel16s>(generator, -2040, 2040);
            InPlace block(x);
            int count = 0;
            ASSERT_EQ(kelStsNoErr, quantise(f, block.data(), QP, &count));
            const Block levels = block.values();
            ASSERT_EQ(kelStsNoErr, dequantise(f, block.data(), 63, QP));
            for (int i = f.first(); i < 64; ++i) {
                const int off = std::abs(x[i] - block[i]);
                EXPECT_LT(off, levels[i] == 0 ? 2 * QP + QP / 2 : f.intra ? QP + 1 : QP + QP / 2 + 1);
            }
            if (f.first() && x[0] >= 8) {
                EXPECT_LE(std::abs(x[0] - block[0]), 8);
            }
        }
    }
}

// ---- arguments ---------------------------------------------------------------------------

TEST(KelvaraH263Quant, BadForwardArgumentsAreRefusedAndNothingIsWritten) {
    Destination<Kel16s> block(64);
    Destination<int> count(1);
    EXPECT_EQ(kelStsNullPtrErr, keliQuantIntra_H263_16s_C1I(nullptr, 99, count.data(), 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantIntra_H263_16s_C1I(block.data(), 2, nullptr, 9, 9));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantInter_H263_16s_C1I(nullptr, 99, count.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantInter_H263_16s_C1I(block.data(), 2, nullptr, 9));
    for (int QP : {-1, 0, 32}) {
        EXPECT_EQ(kelStsRangeErr, keliQuantIntra_H263_16s_C1I(block.data(), QP, count.data(), 0, 0));
        EXPECT_EQ(kelStsRangeErr, keliQuantInter_H263_16s_C1I(block.data(), QP, count.data(), 0));
    }
    for (int flag : {-1, 2}) {
        EXPECT_EQ(kelStsRangeErr, keliQuantIntra_H263_16s_C1I(block.data(), 2, count.data(), flag, 0));
        EXPECT_EQ(kelStsRangeErr, keliQuantIntra_H263_16s_C1I(block.data(), 2, count.data(), 0, flag));
        EXPECT_EQ(kelStsRangeErr, keliQuantInter_H263_16s_C1I(block.data(), 2, count.data(), flag));
    }
    EXPECT_TRUE(block.untouched());
    EXPECT_TRUE(count.untouched());
}

TEST(KelvaraH263Quant, BadInverseArgumentsAreRefusedAndNothingIsWritten) {
    Destination<Kel16s> block(64);
    EXPECT_EQ(kelStsNullPtrErr, keliQuantInvIntra_H263_16s_C1I(nullptr, 99, 2, 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantInvInter_H263_16s_C1I(nullptr, 99, 2, 0));
    const int bad[][4] = {{-2, 2, 0, 0},  {64, 2, 0, 0}, {63, 0, 0, 0},
                          {63, 32, 0, 0}, {63, 2, 0, 2}, {63, 2, 0, -1}};
    for (const auto &[last, QP, adv, mod] : bad) {
        EXPECT_EQ(kelStsRangeErr, keliQuantInvIntra_H263_16s_C1I(block.data(), last, QP, adv, mod));
        EXPECT_EQ(kelStsRangeErr, keliQuantInvInter_H263_16s_C1I(block.data(), last, QP, mod));
    }
    for (int flag : {-1, 2})
        EXPECT_EQ(kelStsRangeErr, keliQuantInvIntra_H263_16s_C1I(block.data(), 63, 2, flag, 0));
    EXPECT_TRUE(block.untouched());
}

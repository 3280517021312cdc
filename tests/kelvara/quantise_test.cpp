// quantise_test.cpp - quantisation both ways, against exact arithmetic and the text of the standards.

#include "blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const int scales[] = {1, 2, 3, 8, 11, 31, 62, 104, 112};

Values<Kel32f> reciprocalsOf(const Values<Kel16s> &weights) {
    Values<Kel32f> reciprocals;
    for (int i = 0; i < 64; ++i) reciprocals[i] = 1.0f / weights[i];
    return reciprocals;
}

struct Forward {
    const char *name;
    KelStatus (*call)(Kel16s *, int, const Kel32f *, int *);
    bool intra;
};

const Forward forward[] = {{"keliQuantIntra_MPEG2_16s_C1I", keliQuantIntra_MPEG2_16s_C1I, true},
                           {"keliQuant_MPEG2_16s_C1I", keliQuant_MPEG2_16s_C1I, false}};

struct Inverse {
    const char *name;
    KelStatus (*call)(Kel16s *, int, const Kel16s *);
    bool intra;
};

const Inverse inverse[] = {{"keliQuantInvIntra_MPEG2_16s_C1I", keliQuantInvIntra_MPEG2_16s_C1I, true},
                           {"keliQuantInv_MPEG2_16s_C1I", keliQuantInv_MPEG2_16s_C1I, false}};

// All in eighths of `scale`, where every product is exact: 8 * scale * |level| <= 128 * |x| * reciprocal +
// rounding < 8 * scale * (|level| + 1).
void expectLevel(int x, float reciprocal, int scale, bool intra, int level) {
    const long double quotient = 128.0L * std::abs(x) * reciprocal + (intra ? 3 * scale : 0);
    const int magnitude = std::abs(level);
    EXPECT_LE(magnitude, 2047);
    EXPECT_LE(8.0L * scale * magnitude, quotient);
    if (magnitude < 2047) {
        EXPECT_GT(8.0L * scale * (magnitude + 1), quotient);
    }
    if (level != 0) {
        EXPECT_EQ(x < 0, level < 0);
    }
}

void expectForward(const Forward &f, const Values<Kel16s> &x, const Values<Kel32f> &matrix, int scale,
                   int offset) {
    SCOPED_TRACE(testing::Message() << f.name << ", scale " << scale << ", offset " << offset);
    InPlace block(x, offset);
    Destination<Kel32f> reciprocals(64, offset);
    std::memcpy(static_cast<void *>(reciprocals.data()), matrix.data(), sizeof matrix);
    Destination<int> count(1, offset);
    ASSERT_EQ(kelStsNoErr, f.call(block.data(), scale, reciprocals.data(), count.data()));
    int nonZero = 0;
    for (int i = f.intra; i < 64; ++i) {
        expectLevel(x[i], matrix[i], scale, f.intra, block[i]);
        nonZero += block[i] != 0;
    }
    if (f.intra) {
        EXPECT_EQ(x[0], block[0]);
    }
    EXPECT_EQ(nonZero, count[0]);
    EXPECT_TRUE(block.surroundingsIntact());
    EXPECT_TRUE(count.surroundingsIntact());
}

// ISO/IEC 13818-2 7.4.2.3, 7.4.3 and 7.4.4 in doubles, which hold all products exactly.
Values<Kel16s> dequantised(const Values<Kel16s> &levels, const Values<Kel16s> &weights, int scale,
                           bool intra) {
    Values<Kel16s> result;
    double sum = 0;
    for (int i = 0; i < 64; ++i) {
        double value = levels[i];
        const double k = intra || value == 0 ? 0 : value > 0 ? 1 : -1;
        if (!intra || i > 0) value = std::trunc((2 * value + k) * weights[i] * scale / 32);
        result[i] = static_cast<Kel16s>(value > 2047 ? 2047 : value < -2048 ? -2048 : value);
        sum += result[i];
    }
    if (std::fmod(sum, 2) == 0) {
        const bool lastIsOdd = result[63] % 2 != 0;
        result[63] = static_cast<Kel16s>(lastIsOdd ? result[63] - 1 : result[63] + 1);
    }
    return result;
}

void expectInverse(const Inverse &f, const Values<Kel16s> &levels, const Values<Kel16s> &weights, int scale,
                   int offset) {
    SCOPED_TRACE(testing::Message() << f.name << ", scale " << scale << ", offset " << offset);
    InPlace block(levels, offset);
    SourceBlock<Kel16s> matrix(weights, offset);
    ASSERT_EQ(kelStsNoErr, f.call(block.data(), scale, matrix.data()));
    EXPECT_EQ(dequantised(levels, weights, scale, f.intra), block.values());
    EXPECT_TRUE(block.surroundingsIntact());
}

Values<Kel16s> all(int value) {
    Values<Kel16s> values;
    values.fill(static_cast<Kel16s>(value));
    return values;
}

} // namespace

// ---- forward ---------------------------------------------------------------------

TEST(KelvaraQuantise, LevelsLieInTheirIntervals) {
    std::mt19937 generator(1);
    for (const Forward &f : forward) {
        for (int scale : scales) {
            for (int offset : {0, 1, 2, 7}) {
                const auto matrix = reciprocalsOf(randomBlock<Kel16s>(generator, 1, 255));
                expectForward(f, randomBlock<Kel16s>(generator, -2048, 2047), matrix, scale, offset);
                expectForward(f, randomBlock<Kel16s>(generator, -100, 100), matrix, scale, offset);
                expectForward(f, randomBlock<Kel16s>(generator, -32768, 32767), matrix, scale, offset);
            }
        }
    }
}

// Multiples of the interval, one below and one above.
TEST(KelvaraQuantise, BordersOfIntervalsAreExact) {
    for (const Forward &f : forward) {
        for (int scale : scales) {
            Values<Kel16s> x;
            for (int i = 0; i < 64; ++i) x[i] = static_cast<Kel16s>(scale * ((i - 32) / 3) + i % 3 - 1);
            for (float reciprocal : {1.0f, 1 / 16.0f, 1 / 3.0f, 1 / 128.0f, 200.0f}) {
                Values<Kel32f> matrix;
                matrix.fill(reciprocal);
                expectForward(f, x, matrix, scale, 0);
            }
        }
    }
}

TEST(KelvaraQuantise, OnlyTheIntraFormRoundsUpFromFiveEighths) {
    Values<Kel32f> matrix;
    matrix.fill(1 / 16.0f); // so that x is the coefficient by the scale
    for (const Forward &f : forward) {
        Values<Kel16s> x = {100, 5, 4, -5, -4, 8, -8, 12, 13, -12, -13};
        InPlace block(x);
        int count = 0;
        ASSERT_EQ(kelStsNoErr, f.call(block.data(), 8, matrix.data(), &count));
        const Values<Kel16s> intra = {100, 1, 0, -1, 0, 1, -1, 1, 2, -1, -2};
        const Values<Kel16s> inter = {12, 0, 0, 0, 0, 1, -1, 1, 1, -1, -1};
        EXPECT_EQ(f.intra ? intra : inter, block.values());
        EXPECT_EQ(f.intra ? 8 : 7, count);
    }
}

TEST(KelvaraQuantise, LevelsAreLimitedWhateverTheMatrixHolds) {
    for (const Forward &f : forward) {
        for (float huge : {1e4f, 3e38f, INFINITY, NAN}) {
            Values<Kel32f> matrix;
            matrix.fill(huge);
            Values<Kel16s> x;
            for (int i = 0; i < 64; ++i) x[i] = static_cast<Kel16s>(i % 2 ? 2000 : -2000);
            InPlace block(x);
            int count = 0;
            ASSERT_EQ(kelStsNoErr, f.call(block.data(), 11, matrix.data(), &count));
            for (int i = 1; i < 64; ++i) {
                EXPECT_EQ(2047, std::abs(block[i])) << huge;
                if (!std::isnan(huge)) {
                    EXPECT_EQ(i % 2 == 0, block[i] < 0);
                }
            }
        }
    }
}

TEST(KelvaraQuantise, BadForwardArgumentsAreRefusedAndNothingIsWritten) {
    Values<Kel32f> matrix;
    matrix.fill(1);
    for (const Forward &f : forward) {
        Destination<Kel16s> block(64);
        Destination<int> count(1);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 11, matrix.data(), count.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(block.data(), 11, nullptr, count.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(block.data(), 11, matrix.data(), nullptr));
        EXPECT_EQ(kelStsNullPtrErr, f.call(block.data(), 0, matrix.data(), nullptr)) << "null goes first";
        for (int scale : {0, -1, 113, -2147483647 - 1, 2147483647}) {
            EXPECT_EQ(kelStsRangeErr, f.call(block.data(), scale, matrix.data(), count.data())) << scale;
        }
        EXPECT_TRUE(block.untouched());
        EXPECT_TRUE(count.untouched());
    }
}

// ---- inverse ---------------------------------------------------------------------

TEST(KelvaraQuantise, InverseEqualsTheStandard) {
    std::mt19937 generator(2);
    for (const Inverse &f : inverse) {
        for (int scale : scales) {
            for (int offset : {0, 1, 2, 7}) {
                const auto weights = randomBlock<Kel16s>(generator, 1, 255);
                expectInverse(f, randomBlock<Kel16s>(generator, -2047, 2047), weights, scale, offset);
                expectInverse(f, randomBlock<Kel16s>(generator, -8, 8), weights, scale, offset);
                expectInverse(f, randomBlock<Kel16s>(generator, -32768, 32767), weights, scale, offset);
            }
        }
    }
}

TEST(KelvaraQuantise, InverseOfExtremesDoesNotOverflow) {
    for (const Inverse &f : inverse) {
        for (int level : {-32768, -1, 0, 1, 32767}) {
            for (int weight : {-32768, -1, 0, 1, 32767}) expectInverse(f, all(level), all(weight), 112, 0);
        }
    }
}

TEST(KelvaraQuantise, SumOfABlockIsOddAfterTheInverse) {
    std::mt19937 generator(3);
    for (const Inverse &f : inverse) {
        for (int pass = 0; pass < 200; ++pass) {
            InPlace block(randomBlock<Kel16s>(generator, -50, 50));
            const auto weights = randomBlock<Kel16s>(generator, 1, 40);
            ASSERT_EQ(kelStsNoErr, f.call(block.data(), 5, weights.data()));
            int sum = 0;
            for (int i = 0; i < 64; ++i) sum += block[i];
            EXPECT_NE(0, sum % 2);
        }
    }
}

TEST(KelvaraQuantise, MismatchControlOfAnEmptyBlockSetsItsLastCoefficient) {
    for (const Inverse &f : inverse) {
        InPlace block(all(0));
        ASSERT_EQ(kelStsNoErr, f.call(block.data(), 2, all(16).data()));
        for (int i = 0; i < 64; ++i) EXPECT_EQ(i == 63 ? 1 : 0, block[i]);
    }
}

TEST(KelvaraQuantise, IntraDcIsNotScaledButCountsForMismatch) {
    Values<Kel16s> levels = all(0);
    levels[0] = 1001;
    InPlace odd(levels), even(levels);
    ASSERT_EQ(kelStsNoErr, keliQuantInvIntra_MPEG2_16s_C1I(odd.data(), 31, all(16).data()));
    EXPECT_EQ(1001, odd[0]);
    EXPECT_EQ(0, odd[63]) << "the sum is odd";
    levels[0] = 1000;
    InPlace block(levels);
    ASSERT_EQ(kelStsNoErr, keliQuantInvIntra_MPEG2_16s_C1I(block.data(), 31, all(16).data()));
    EXPECT_EQ(1000, block[0]);
    EXPECT_EQ(1, block[63]);
}

TEST(KelvaraQuantise, BadInverseArgumentsAreRefusedAndNothingIsWritten) {
    const Values<Kel16s> matrix = all(16);
    for (const Inverse &f : inverse) {
        Destination<Kel16s> block(64);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 11, matrix.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(block.data(), 11, nullptr));
        for (int scale : {0, -1, 113}) {
            EXPECT_EQ(kelStsRangeErr, f.call(block.data(), scale, matrix.data())) << scale;
        }
        EXPECT_TRUE(block.untouched());
    }
}

// Back from the level, a coefficient is off by no more than one interval of weight * scale / 16.
TEST(KelvaraQuantise, BothWaysComeBackWithinAnInterval) {
    std::mt19937 generator(4);
    for (int way = 0; way < 2; ++way) {
        for (int scale : scales) {
            const auto x = randomBlock<Kel16s>(generator, -2000, 2000);
            const auto weights = randomBlock<Kel16s>(generator, 16, 83);
            InPlace block(x);
            int count = 0;
            ASSERT_EQ(kelStsNoErr,
                      forward[way].call(block.data(), scale, reciprocalsOf(weights).data(), &count));
            ASSERT_EQ(kelStsNoErr, inverse[way].call(block.data(), scale, weights.data()));
            for (int i = 0; i < 64; ++i) {
                EXPECT_LE(std::abs(x[i] - block[i]), weights[i] * scale / 16.0 + 2)
                    << i << ", scale " << scale;
            }
        }
    }
}

// ---- DV --------------------------------------------------------------------------

TEST(KelvaraQuantiseDv, EachCoefficientIsMultipliedByItsStep) {
    std::mt19937 generator(5);
    for (int limit : {20, 255, 32767}) {
        for (int offset : {0, 1, 6}) {
            const auto x = randomBlock<Kel16s>(generator, -limit - 1, limit);
            const auto steps = randomBlock<Kel16s>(generator, -limit - 1, limit);
            InPlace block(x, offset);
            SourceBlock<Kel16s> matrix(steps, offset);
            ASSERT_EQ(kelStsNoErr, keliQuantInv_DV_16s_C1I(block.data(), matrix.data()));
            for (int i = 0; i < 64; ++i) {
                const double product = static_cast<double>(x[i]) * steps[i];
                EXPECT_EQ(std::max(-32768.0, std::min(32767.0, product)), block[i]);
            }
            EXPECT_TRUE(block.surroundingsIntact());
        }
    }
}

TEST(KelvaraQuantiseDv, BadArgumentsAreRefusedAndNothingIsWritten) {
    Destination<Kel16s> block(64);
    EXPECT_EQ(kelStsNullPtrErr, keliQuantInv_DV_16s_C1I(nullptr, all(1).data()));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantInv_DV_16s_C1I(block.data(), nullptr));
    EXPECT_TRUE(block.untouched());
}

// ---- zeros -----------------------------------------------------------------------

TEST(KelvaraCountZeros, CountsEachCoefficientThatIsZero) {
    std::mt19937 generator(6);
    for (int high : {0, 1, 3, 300}) {
        for (int slack : {0, 1, 5}) {
            const auto x = randomBlock<Kel16s>(generator, 0, high);
            SourceBlock<Kel16s> block(x, slack);
            Destination<int> count(1, slack);
            ASSERT_EQ(kelStsNoErr, keliCountZeros8x8_16s_C1(block.data(), count.data()));
            int zeros = 0;
            for (Kel16s value : x) zeros += value == 0;
            EXPECT_EQ(zeros, count[0]);
            EXPECT_TRUE(count.surroundingsIntact());
        }
    }
}

TEST(KelvaraCountZeros, AnyBitMakesACoefficientOther) {
    for (int bit = 0; bit < 16; ++bit) {
        Values<Kel16s> x = all(0);
        x[bit * 4 + 3] = static_cast<Kel16s>(1u << bit);
        int count = 0;
        ASSERT_EQ(kelStsNoErr, keliCountZeros8x8_16s_C1(x.data(), &count));
        EXPECT_EQ(63, count);
    }
}

TEST(KelvaraCountZeros, BadArgumentsAreRefusedAndNothingIsWritten) {
    Destination<int> count(1);
    EXPECT_EQ(kelStsNullPtrErr, keliCountZeros8x8_16s_C1(nullptr, count.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliCountZeros8x8_16s_C1(all(0).data(), nullptr));
    EXPECT_TRUE(count.untouched());
}

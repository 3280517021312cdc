// blocks_test.cpp - differences, copies, means and sums of blocks, against a model in exact fractions.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// A copy, or a mean with what the destination holds. Those without half samples disregard acc and rounding.
struct Copy {
    const char *name;
    KelStatus (*call)(const Kel8u *src, int srcStep, Kel8u *dst, int dstStep, int acc, int rounding);
    int width, height;
    bool mean, halfSamples;
};

template <KelStatus (*f)(const Kel8u *, int, Kel8u *, int)>
KelStatus full(const Kel8u *src, int srcStep, Kel8u *dst, int dstStep, int, int) {
    return f(src, srcStep, dst, dstStep);
}

const Copy copies[] = {
    {"keliCopy8x8_8u_C1R", full<keliCopy8x8_8u_C1R>, 8, 8, false, false},
    {"keliCopy16x16_8u_C1R", full<keliCopy16x16_8u_C1R>, 16, 16, false, false},
    {"keliAverage8x8_8u_C1IR", full<keliAverage8x8_8u_C1IR>, 8, 8, true, false},
    {"keliAverage16x16_8u_C1IR", full<keliAverage16x16_8u_C1IR>, 16, 16, true, false},
    {"keliCopy8x4HP_8u_C1R", keliCopy8x4HP_8u_C1R, 8, 4, false, true},
    {"keliCopy8x8HP_8u_C1R", keliCopy8x8HP_8u_C1R, 8, 8, false, true},
    {"keliCopy16x8HP_8u_C1R", keliCopy16x8HP_8u_C1R, 16, 8, false, true},
    {"keliCopy16x16HP_8u_C1R", keliCopy16x16HP_8u_C1R, 16, 16, false, true},
    {"keliInterpolateAverage8x4_8u_C1IR", keliInterpolateAverage8x4_8u_C1IR, 8, 4, true, true},
    {"keliInterpolateAverage8x8_8u_C1IR", keliInterpolateAverage8x8_8u_C1IR, 8, 8, true, true},
    {"keliInterpolateAverage16x8_8u_C1IR", keliInterpolateAverage16x8_8u_C1IR, 16, 8, true, true},
    {"keliInterpolateAverage16x16_8u_C1IR", keliInterpolateAverage16x16_8u_C1IR, 16, 16, true, true},
};

// Those without a sum disregard its place.
struct Difference {
    const char *name;
    KelStatus (*call)(const Kel8u *, int, const Kel8u *, int, Kel16s *, int, Kel32s *);
    int size;
    bool sum;
};

template <KelStatus (*f)(const Kel8u *, int, const Kel8u *, int, Kel16s *, int)>
KelStatus withoutSum(const Kel8u *src1, int step1, const Kel8u *src2, int step2, Kel16s *dst, int dstStep,
                     Kel32s *) {
    return f(src1, step1, src2, step2, dst, dstStep);
}

const Difference differences[] = {
    {"keliSub8x8_8u16s_C1R", withoutSum<keliSub8x8_8u16s_C1R>, 8, false},
    {"keliSub16x16_8u16s_C1R", withoutSum<keliSub16x16_8u16s_C1R>, 16, false},
    {"keliSubSAD8x8_8u16s_C1R", keliSubSAD8x8_8u16s_C1R, 8, true},
};

// The code of the position in the model, by acc: bit 0 is to the right, bit 1 down.
const int mcTypeOfAcc[] = {0, 8, 4, 12};
const int notAccs[] = {-1, 4, 8, 12, 1 << 30};

const Pattern patterns[] = {noise(1, 255), noise(2, 255), constant(255), constant(0), checkerboard(255)};

template <class T>
void set(DstBlock<T> &block, int rows, int width, const Pattern &value) {
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < width; ++col) {
            const T sample = static_cast<T>(value(row, col));
            char *p = reinterpret_cast<char *>(block.data()) + row * block.step() + col * sizeof(T);
            std::memcpy(p, &sample, sizeof sample);
        }
    }
}

int limited(int value) {
    return std::clamp(value, 0, 255);
}

void compare(const Copy &f, int acc, int rounding, const Pattern &pattern, int step, int slack) {
    const int w = f.width, h = f.height;
    RefBlock src(w, h, 1, mcTypeOfAcc[acc], w + step, slack, pattern);
    DstBlock<Kel8u> dst(h, w, w + 2 * step, slack), before(h, w, w);
    set(before, h, w, noise(acc + 10, 255));
    set(dst, h, w, [&](int row, int col) { return before(row, col); });
    ASSERT_EQ(kelStsNoErr,
              f.call(src.samples.data(), src.samples.step(), dst.data(), dst.step(), acc, rounding));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            const int value = src.predicted(row, col, rounding);
            const int mean = static_cast<int>(std::floor((value + before(row, col)) / 2.0 + 0.5));
            ASSERT_EQ(f.mean ? mean : value, dst(row, col)) << row << ", " << col;
        }
    }
}

void compareAll(const Copy &f) {
    for (int acc = 0; acc < (f.halfSamples ? 4 : 1); ++acc) {
        for (int rounding = 0; rounding < (f.halfSamples ? 2 : 1); ++rounding) {
            for (const Pattern &pattern : patterns) {
                for (int step : {0, 1, 17, 304}) {
                    SCOPED_TRACE(testing::Message() << f.name << ", acc " << acc << ", rounding " << rounding
                                                    << ", width + " << step);
                    compare(f, acc, rounding, pattern, step, step % 16);
                }
            }
        }
    }
}

void compare(const Difference &f, const PatternPair &pair, int step, int slack) {
    const int n = f.size;
    Source<Kel8u> src1(n, n, n + step, slack), src2(n, n, n + 3 * step);
    src1.fill(pair.src);
    src2.fill(pair.ref);
    DstBlock<Kel16s> dst(n, n, 2 * n + step, slack);
    Destination<Kel32s> sum(1, slack);
    ASSERT_EQ(kelStsNoErr,
              f.call(src1.data(), src1.step(), src2.data(), src2.step(), dst.data(), dst.step(), sum.data()));
    EXPECT_TRUE(dst.surroundingsIntact());
    int expected = 0;
    for (int row = 0; row < n; ++row) {
        for (int col = 0; col < n; ++col) {
            ASSERT_EQ(src1(row, col) - src2(row, col), dst(row, col)) << row << ", " << col;
            expected += std::abs(src1(row, col) - src2(row, col));
        }
    }
    EXPECT_TRUE(sum.surroundingsIntact());
    if (f.sum) {
        EXPECT_EQ(expected, sum[0]);
    } else {
        EXPECT_TRUE(sum.untouched());
    }
}

} // namespace

TEST(KelvaraBlocks, CopiesAndMeansEqualTheModel) {
    for (const Copy &f : copies) compareAll(f);
}

TEST(KelvaraBlocks, DifferencesAndTheirSumEqualTheModel) {
    for (const Difference &f : differences) {
        for (const PatternPair &pair : patternPairs(255)) {
            for (int step : {0, 1, 144}) {
                SCOPED_TRACE(testing::Message() << f.name << ", " << pair.name << ", width + " << step);
                compare(f, pair, step, step % 16);
            }
        }
    }
}

TEST(KelvaraBlocks, SumsOfBlockAndResidualAreLimited) {
    for (const Pattern &residual : {signedNoise(1, -255, 255), signedNoise(2, -32768, 32767), constant(32767),
                                    constant(-32768), constant(0)}) {
        for (int step : {0, 1, 304}) {
            Source<Kel16s> src(8, 8, 16 + step, step % 16);
            src.fill(residual);
            DstBlock<Kel8u> dst(8, 8, 8 + step, step % 16), before(8, 8, 8);
            set(before, 8, 8, noise(3, 255));
            set(dst, 8, 8, [&](int row, int col) { return before(row, col); });
            ASSERT_EQ(kelStsNoErr, keliAdd8x8_16s8u_C1IRS(src.data(), src.step(), dst.data(), dst.step()));
            EXPECT_TRUE(dst.surroundingsIntact());
            for (int i = 0; i < 64; ++i)
                EXPECT_EQ(limited(before(i / 8, i % 8) + src(i / 8, i % 8)), dst(i / 8, i % 8)) << i;
        }
    }
}

TEST(KelvaraBlocks, SumsOfBlockAndConstantAreLimited) {
    for (int value : {0, 7, -7, 255, -255, 256, -256, 32767, -32768}) {
        DstBlock<Kel8u> dst(8, 8, 11, 3), before(8, 8, 8);
        set(before, 8, 8, noise(4, 255));
        set(dst, 8, 8, [&](int row, int col) { return before(row, col); });
        ASSERT_EQ(kelStsNoErr, keliAddC8x8_16s8u_C1IR(static_cast<Kel16s>(value), dst.data(), dst.step()));
        EXPECT_TRUE(dst.surroundingsIntact());
        for (int i = 0; i < 64; ++i)
            EXPECT_EQ(limited(before(i / 8, i % 8) + value), dst(i / 8, i % 8)) << value << ", " << i;
    }
}

TEST(KelvaraBlocks, ResidualIsAddedAtHalfSamplePositions) {
    for (int acc = 0; acc < 4; ++acc) {
        for (int rounding : {0, 1}) {
            for (int step : {0, 1, 304}) {
                RefBlock ref(8, 8, 1, mcTypeOfAcc[acc], 8 + step, step % 16, noise(5, 255));
                Source<Kel16s> residual(8, 8, 16 + 3 * step);
                residual.fill(step ? signedNoise(6, -255, 255) : signedNoise(7, -32768, 32767));
                DstBlock<Kel8u> dst(8, 8, 8 + 2 * step, step % 16);
                ASSERT_EQ(kelStsNoErr,
                          keliAdd8x8HP_16s8u_C1RS(residual.data(), residual.step(), ref.samples.data(),
                                                  ref.samples.step(), dst.data(), dst.step(), acc, rounding));
                EXPECT_TRUE(dst.surroundingsIntact());
                for (int i = 0; i < 64; ++i) {
                    const int row = i / 8, col = i % 8;
                    EXPECT_EQ(limited(ref.predicted(row, col, rounding) + residual(row, col)), dst(row, col))
                        << "acc " << acc << ", rounding " << rounding << ", " << i;
                }
            }
        }
    }
}

// Columns go 0, 100, 0, 100 and all rows are alike: only half a sample to the right sees 50.
TEST(KelvaraBlocks, LowestBitOfThePositionIsToTheRight) {
    const int expected[] = {0, 50, 0, 50};
    for (int acc = 0; acc < 4; ++acc) {
        Source<Kel8u> src(9, 9, 9);
        src.fill([](int, int col) { return col % 2 * 100; });
        DstBlock<Kel8u> dst(8, 8, 8);
        ASSERT_EQ(kelStsNoErr, keliCopy8x8HP_8u_C1R(src.data(), 9, dst.data(), 8, acc, 0));
        EXPECT_EQ(expected[acc], dst(0, 0)) << acc;
    }
}

// Every half sample lies between 0 and 1: with rounding 1 the copy is 0. Its mean with a 1 is 0.5 then.
TEST(KelvaraBlocks, RoundingDoesNotConcernTheMeanOfTwoBlocks) {
    Source<Kel8u> src(8, 9, 9);
    src.fill([](int, int col) { return col % 2; });
    DstBlock<Kel8u> copy(8, 8, 8), mean(8, 8, 8);
    set(mean, 8, 8, constant(1));
    ASSERT_EQ(kelStsNoErr, keliCopy8x8HP_8u_C1R(src.data(), 9, copy.data(), 8, 1, 1));
    ASSERT_EQ(kelStsNoErr, keliInterpolateAverage8x8_8u_C1IR(src.data(), 9, mean.data(), 8, 1, 1));
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(0, copy(i / 8, i % 8));
        EXPECT_EQ(1, mean(i / 8, i % 8));
    }
}

// ---- bad arguments --------------------------------------------------------------------

TEST(KelvaraBlocks, CopiesAndMeansRefuseBadArguments) {
    for (const Copy &f : copies) {
        SCOPED_TRACE(f.name);
        Source<Kel8u> src(17, 17, 40);
        DstBlock<Kel8u> dst(17, 17, 40);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 40, dst.data(), 40, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), 40, nullptr, 40, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 0, dst.data(), 0, 0, 0));
        for (int step : {f.width - 1, 0, -40}) {
            EXPECT_EQ(kelStsStepErr, f.call(src.data(), step, dst.data(), 40, 0, 0)) << step;
            EXPECT_EQ(kelStsStepErr, f.call(src.data(), 40, dst.data(), step, 0, 0)) << step;
        }
        if (f.halfSamples) {
            for (int acc : notAccs)
                EXPECT_EQ(kelStsRangeErr, f.call(src.data(), 40, dst.data(), 40, acc, 0)) << acc;
            for (int rounding : notRoundControls)
                EXPECT_EQ(kelStsRangeErr, f.call(src.data(), 40, dst.data(), 40, 0, rounding)) << rounding;
            EXPECT_EQ(kelStsStepErr, f.call(src.data(), 0, dst.data(), 40, 9, 9));
        }
        EXPECT_TRUE(dst.untouched());
    }
}

TEST(KelvaraBlocks, DifferencesRefuseBadArguments) {
    for (const Difference &f : differences) {
        SCOPED_TRACE(f.name);
        Source<Kel8u> a(16, 16, 40), b(16, 16, 40);
        DstBlock<Kel16s> dst(16, 16, 40);
        Destination<Kel32s> sum(1);
        const Kel8u *p = a.data(), *q = b.data();
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 40, q, 40, dst.data(), 40, sum.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(p, 40, nullptr, 40, dst.data(), 40, sum.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(p, 40, q, 40, nullptr, 40, sum.data()));
        if (f.sum) {
            EXPECT_EQ(kelStsNullPtrErr, f.call(p, 0, q, 0, dst.data(), 40, nullptr));
        }
        for (int step : {f.size - 1, 0, -40}) {
            EXPECT_EQ(kelStsStepErr, f.call(p, step, q, 40, dst.data(), 40, sum.data())) << step;
            EXPECT_EQ(kelStsStepErr, f.call(p, 40, q, step, dst.data(), 40, sum.data())) << step;
        }
        EXPECT_EQ(kelStsStepErr, f.call(p, 40, q, 40, dst.data(), 2 * f.size - 1, sum.data()));
        EXPECT_TRUE(dst.untouched());
        EXPECT_TRUE(sum.untouched());
    }
}

TEST(KelvaraBlocks, SumsRefuseBadArguments) {
    Source<Kel16s> src(8, 8, 40);
    DstBlock<Kel8u> dst(8, 8, 40);
    EXPECT_EQ(kelStsNullPtrErr, keliAdd8x8_16s8u_C1IRS(nullptr, 40, dst.data(), 40));
    EXPECT_EQ(kelStsNullPtrErr, keliAdd8x8_16s8u_C1IRS(src.data(), 40, nullptr, 40));
    EXPECT_EQ(kelStsStepErr, keliAdd8x8_16s8u_C1IRS(src.data(), 15, dst.data(), 40));
    EXPECT_EQ(kelStsStepErr, keliAdd8x8_16s8u_C1IRS(src.data(), 40, dst.data(), 7));
    EXPECT_EQ(kelStsNullPtrErr, keliAddC8x8_16s8u_C1IR(1, nullptr, 40));
    EXPECT_EQ(kelStsStepErr, keliAddC8x8_16s8u_C1IR(1, dst.data(), 7));
    EXPECT_EQ(kelStsStepErr, keliAddC8x8_16s8u_C1IR(1, dst.data(), -8));
    EXPECT_TRUE(dst.untouched());
}

TEST(KelvaraBlocks, SumsAtHalfSamplesRefuseBadArguments) {
    Source<Kel16s> residual(8, 8, 40);
    Source<Kel8u> ref(9, 9, 40);
    DstBlock<Kel8u> dst(8, 8, 40);
    const auto call = [&](bool a, bool b, bool c, int stepA, int stepB, int stepC, int acc, int rounding) {
        return keliAdd8x8HP_16s8u_C1RS(a ? residual.data() : nullptr, stepA, b ? ref.data() : nullptr, stepB,
                                       c ? dst.data() : nullptr, stepC, acc, rounding);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(false, true, true, 40, 40, 40, 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(true, false, true, 40, 40, 40, 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(true, true, false, 40, 40, 40, 0, 0));
    EXPECT_EQ(kelStsStepErr, call(true, true, true, 15, 40, 40, 0, 0));
    EXPECT_EQ(kelStsStepErr, call(true, true, true, 40, 7, 40, 0, 0));
    EXPECT_EQ(kelStsStepErr, call(true, true, true, 40, 40, 7, 0, 0));
    for (int acc : notAccs) EXPECT_EQ(kelStsRangeErr, call(true, true, true, 40, 40, 40, acc, 0)) << acc;
    for (int rounding : notRoundControls)
        EXPECT_EQ(kelStsRangeErr, call(true, true, true, 40, 40, 40, 0, rounding)) << rounding;
    EXPECT_TRUE(dst.untouched());
}

// sumsdiff_test.cpp - differences of two blocks and their sums over blocks of 4x4.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

template <class T, class S>
struct SumsFunction {
    int size;
    KelStatus (*call)(const T *, int, const T *, int, S *, Kel16s *);
    int max; // greatest sample
};

const SumsFunction<Kel8u, Kel16s> functions8u[] = {
    {16, keliSumsDiff16x16Blocks4x4_8u16s_C1, 255},
    {8, keliSumsDiff8x8Blocks4x4_8u16s_C1, 255},
};

const SumsFunction<Kel16u, Kel32s> functions16u[] = {
    {16, keliSumsDiff16x16Blocks4x4_16u32s_C1R, 65535},
    {8, keliSumsDiff8x8Blocks4x4_16u32s_C1R, 65535},
};

// Walks the samples of the macroblock in raster order and finds the block of each.
template <class T, class S>
void compare(const SumsFunction<T, S> &f, const PatternPair &pair, int srcStep, int predStep, int slack) {
    SCOPED_TRACE(testing::Message() << f.size << ", " << pair.name << ", steps " << srcStep << " and "
                                    << predStep << ", slack " << slack);
    const int size = f.size, perRow = size / 4, blocks = perRow * perRow, bytes = sizeof(T);
    Source<T> src(size, size, srcStep * bytes, slack), pred(size, size, predStep * bytes, 3 * slack);
    src.fill(pair.src);
    pred.fill(pair.ref);

    std::vector<int> sums(blocks), differences(size * size);
    for (int row = 0; row < size; ++row) {
        for (int col = 0; col < size; ++col) {
            const int block = row / 4 * perRow + col / 4, difference = src(row, col) - pred(row, col);
            sums[block] += difference;
            differences[block * 16 + row % 4 * 4 + col % 4] = std::min(std::max(difference, -32768), 32767);
        }
    }

    Destination<S> gotSums(blocks, slack), gotSumsAlone(blocks, slack);
    Destination<Kel16s> gotDiff(size * size, slack);
    ASSERT_EQ(kelStsNoErr,
              f.call(src.data(), srcStep, pred.data(), predStep, gotSums.data(), gotDiff.data()));
    ASSERT_EQ(kelStsNoErr, f.call(src.data(), srcStep, pred.data(), predStep, gotSumsAlone.data(), nullptr));
    EXPECT_TRUE(gotSums.surroundingsIntact());
    EXPECT_TRUE(gotSumsAlone.surroundingsIntact());
    EXPECT_TRUE(gotDiff.surroundingsIntact());
    for (int i = 0; i < blocks; ++i) {
        EXPECT_EQ(sums[i], gotSums[i]) << "sum " << i;
        EXPECT_EQ(sums[i], gotSumsAlone[i]) << "sum without differences " << i;
    }
    for (int i = 0; i < size * size; ++i) EXPECT_EQ(differences[i], gotDiff[i]) << "difference " << i;
}

template <class T, class S>
void compareAll(const SumsFunction<T, S> &f) {
    for (const PatternPair &pair : patternPairs(f.max)) {
        for (int extra : {0, 1, 2, 10, 144}) {
            for (int slack : {0, 1, 2, 7}) {
                compare(f, pair, f.size + extra, f.size, slack);
                compare(f, pair, f.size, f.size + extra, slack);
            }
        }
    }
}

template <class T, class S>
void expectRefused(const SumsFunction<T, S> &f) {
    SCOPED_TRACE(f.size);
    Source<T> src(16, 16, 64), pred(16, 16, 64);
    Destination<S> sums(16);
    Destination<Kel16s> diff(256);
    const T *s = src.data(), *p = pred.data();
    EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 32, p, 32, sums.data(), diff.data()));
    EXPECT_EQ(kelStsNullPtrErr, f.call(s, 32, nullptr, 32, sums.data(), diff.data()));
    EXPECT_EQ(kelStsNullPtrErr, f.call(s, 32, p, 32, nullptr, diff.data()));
    for (int step : {f.size - 1, 0, -32}) {
        EXPECT_EQ(kelStsStepErr, f.call(s, step, p, 32, sums.data(), diff.data()));
        EXPECT_EQ(kelStsStepErr, f.call(s, 32, p, step, sums.data(), diff.data()));
    }
    EXPECT_TRUE(sums.untouched());
    EXPECT_TRUE(diff.untouched());
}

} // namespace

TEST(KelvaraSumsDiff, BytesEqualTheModel) {
    for (const auto &f : functions8u) compareAll(f);
}

TEST(KelvaraSumsDiff, WideSamplesEqualTheModel) {
    for (const auto &f : functions16u) compareAll(f);
}

TEST(KelvaraSumsDiff, BadArgumentsAreRefusedAndNothingIsWritten) {
    for (const auto &f : functions8u) expectRefused(f);
    for (const auto &f : functions16u) expectRefused(f);
}

// Steps count samples: 16 rows of step 18 take 286 of 400 samples, bytes or wide ones.
TEST(KelvaraSumsDiff, SixteenRowsOfStep18StayWithin400Samples) {
    Source<Kel8u> bytes(1, 286, 286);
    bytes.fill(noise(1, 255));
    Destination<Kel16s> sums(16), diff(256);
    EXPECT_EQ(kelStsNoErr, keliSumsDiff16x16Blocks4x4_8u16s_C1(bytes.data(), 18, bytes.data(), 18,
                                                               sums.data(), diff.data()));
    Source<Kel16u> wide(1, 286, 286 * 2);
    wide.fill(noise(1, 65535));
    Destination<Kel32s> wideSums(16);
    EXPECT_EQ(kelStsNoErr, keliSumsDiff16x16Blocks4x4_16u32s_C1R(wide.data(), 18, wide.data(), 18,
                                                                 wideSums.data(), diff.data()));
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(0, sums[i]);
        EXPECT_EQ(0, wideSums[i]);
    }
}

TEST(KelvaraSumsDiff, WideDifferencesAreCutTo16BitsAndTheirSumsAreNot) {
    Source<Kel16u> high(8, 8, 16), low(8, 8, 16);
    high.fill(constant(65535));
    low.fill(constant(0));
    Destination<Kel32s> sums(4);
    Destination<Kel16s> diff(64);
    ASSERT_EQ(kelStsNoErr,
              keliSumsDiff8x8Blocks4x4_16u32s_C1R(high.data(), 8, low.data(), 8, sums.data(), diff.data()));
    EXPECT_EQ(16 * 65535, sums[3]);
    EXPECT_EQ(32767, diff[63]);
    ASSERT_EQ(kelStsNoErr,
              keliSumsDiff8x8Blocks4x4_16u32s_C1R(low.data(), 8, high.data(), 8, sums.data(), diff.data()));
    EXPECT_EQ(-16 * 65535, sums[3]);
    EXPECT_EQ(-32768, diff[63]);
}

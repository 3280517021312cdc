// edges_test.cpp - the test of a 16x16 block for edges.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

KelStatus detect(const Kel8u *src, int step, int limit, int maxCount, Kel8u *result) {
    return keliEdgesDetect16x16_8u_C1R(src, step, limit, maxCount, result);
}

KelStatus detect(const Kel16u *src, int step, int limit, int maxCount, Kel8u *result) {
    return keliEdgesDetect16x16_16u_C1R(src, step, limit, maxCount, result);
}

// Compares every sample with every other one and keeps the pairs at distance 1.
template <class T>
int countPairs(const Source<T> &src, int limit) {
    int count = 0;
    for (int a = 0; a < 256; ++a) {
        for (int b = a + 1; b < 256; ++b) {
            const int distance = std::abs(a / 16 - b / 16) + std::abs(a % 16 - b % 16);
            if (distance == 1 && std::abs(src(a / 16, a % 16) - src(b / 16, b % 16)) > limit) ++count;
        }
    }
    return count;
}

template <class T>
int verdict(const Source<T> &src, int limit, int maxCount) {
    Destination<Kel8u> result(1, 3);
    const int step = src.step() / static_cast<int>(sizeof(T));
    EXPECT_EQ(kelStsNoErr, detect(src.data(), step, limit, maxCount, result.data()));
    EXPECT_TRUE(result.surroundingsIntact());
    return result[0];
}

// step counts samples.
template <class T>
void expectModel(const PatternPair &pair, int step, int slack, std::initializer_list<int> limits) {
    Source<T> src(16, 16, step * static_cast<int>(sizeof(T)), slack);
    src.fill(pair.src);
    for (int limit : limits) {
        SCOPED_TRACE(testing::Message() << pair.name << ", step " << step << ", limit " << limit);
        const int count = countPairs(src, limit);
        EXPECT_EQ(0, verdict(src, limit, count));
        EXPECT_EQ(0, verdict(src, limit, 480));
        if (count > 0) {
            EXPECT_EQ(1, verdict(src, limit, count - 1));
            EXPECT_EQ(1, verdict(src, limit, 0));
        }
    }
}

template <class T>
void expectRefused() {
    Source<T> src(16, 16, 16 * sizeof(T));
    Destination<Kel8u> result(1);
    const T *s = src.data(), *none = nullptr;
    EXPECT_EQ(kelStsNullPtrErr, detect(none, 16, 5, 12, result.data()));
    EXPECT_EQ(kelStsNullPtrErr, detect(s, 16, 5, 12, nullptr));
    EXPECT_EQ(kelStsStepErr, detect(s, 15, 5, 12, result.data()));
    EXPECT_EQ(kelStsStepErr, detect(s, -16, 5, 12, result.data()));
    EXPECT_EQ(kelStsRangeErr, detect(s, 16, -1, 12, result.data()));
    EXPECT_EQ(kelStsRangeErr, detect(s, 16, 5, -1, result.data()));
    EXPECT_TRUE(result.untouched());
}

} // namespace

TEST(KelvaraEdges, TheVerdictTurnsAtTheCountOfTheModel) {
    for (int step : {16, 17, 160}) {
        for (int slack : {0, 1, 5}) {
            for (const PatternPair &pair : patternPairs(255))
                expectModel<Kel8u>(pair, step, slack, {0, 1, 5, 9, 128, 254, 255, 1000});
            for (const PatternPair &pair : patternPairs(65535))
                expectModel<Kel16u>(pair, step, slack, {0, 9, 20000, 65534, 65535, 100000});
        }
    }
}

// A step of 100 between columns 7 and 8 gives 16 pairs; one of exactly the limit is no edge.
TEST(KelvaraEdges, OneVerticalEdgeIsSixteenPairs) {
    Source<Kel8u> src(16, 16, 16);
    src.fill([](int, int col) { return col < 8 ? 20 : 120; });
    EXPECT_EQ(1, verdict(src, 99, 15));
    EXPECT_EQ(0, verdict(src, 99, 16));
    EXPECT_EQ(0, verdict(src, 100, 0));
}

TEST(KelvaraEdges, SamplesOutsideOfTheBlockDoNotCount) {
    Source<Kel8u> src(16, 32, 32);
    src.fill([](int row, int col) { return col < 16 ? 50 : (row + col) % 2 * 255; });
    EXPECT_EQ(0, verdict(src, 0, 0));
}

// Two diagonals in a flat block: each of their 32 samples differs from four neighbours, in the corners and in
// the middle from two.
TEST(KelvaraEdges, TwoDiagonalsAre112Pairs) {
    Source<Kel16u> src(16, 16, 32);
    src.fill([](int row, int col) { return row == col || row == 15 - col ? 20 : 120; });
    EXPECT_EQ(1, verdict(src, 9, 111));
    EXPECT_EQ(0, verdict(src, 9, 112));
}

TEST(KelvaraEdges, BadArgumentsAreRefusedAndNothingIsWritten) {
    expectRefused<Kel8u>();
    expectRefused<Kel16u>();
}

// edges_test.cpp - the test of a 16x16 block for edges.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// Compares every sample with every other one and keeps the pairs at distance 1.
int countPairs(const Source<Kel8u> &src, int limit) {
    int count = 0;
    for (int a = 0; a < 256; ++a) {
        for (int b = a + 1; b < 256; ++b) {
            const int distance = std::abs(a / 16 - b / 16) + std::abs(a % 16 - b % 16);
            if (distance == 1 && std::abs(src(a / 16, a % 16) - src(b / 16, b % 16)) > limit) ++count;
        }
    }
    return count;
}

int verdict(const Source<Kel8u> &src, int limit, int maxCount) {
    Destination<Kel8u> result(1, 3);
    EXPECT_EQ(kelStsNoErr,
              keliEdgesDetect16x16_8u_C1R(src.data(), src.step(), limit, maxCount, result.data()));
    EXPECT_TRUE(result.surroundingsIntact());
    return result[0];
}

} // namespace

TEST(KelvaraEdges, TheVerdictTurnsAtTheCountOfTheModel) {
    for (const PatternPair &pair : patternPairs(255)) {
        for (int step : {16, 17, 160}) {
            for (int slack : {0, 1, 5}) {
                Source<Kel8u> src(16, 16, step, slack);
                src.fill(pair.src);
                for (int limit : {0, 1, 5, 9, 128, 254, 255, 1000}) {
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

TEST(KelvaraEdges, BadArgumentsAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(16, 16, 16);
    Destination<Kel8u> result(1);
    const Kel8u *s = src.data();
    EXPECT_EQ(kelStsNullPtrErr, keliEdgesDetect16x16_8u_C1R(nullptr, 16, 5, 12, result.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliEdgesDetect16x16_8u_C1R(s, 16, 5, 12, nullptr));
    EXPECT_EQ(kelStsStepErr, keliEdgesDetect16x16_8u_C1R(s, 15, 5, 12, result.data()));
    EXPECT_EQ(kelStsStepErr, keliEdgesDetect16x16_8u_C1R(s, -16, 5, 12, result.data()));
    EXPECT_EQ(kelStsRangeErr, keliEdgesDetect16x16_8u_C1R(s, 16, -1, 12, result.data()));
    EXPECT_EQ(kelStsRangeErr, keliEdgesDetect16x16_8u_C1R(s, 16, 5, -1, result.data()));
    EXPECT_TRUE(result.untouched());
}

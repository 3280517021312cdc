// scalelevels_test.cpp - levels of scaling lists, against the tables in full and the products of both ways.

#include "h264model.h"
#include "kelvc.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

struct ScaleLevels {
    Numbers inverse, forward;
};

ScaleLevels levels4x4(const Numbers &list, int qpRem) {
    const Given<Kel8u> src(list, qpRem);
    Destination<Kel16s> inverse(16, qpRem % 2), forward(16, qpRem % 3);
    EXPECT_EQ(kelStsNoErr,
              keliGenScaleLevel4x4_H264_8u16s_C1(src.data(), inverse.data(), forward.data(), qpRem));
    EXPECT_TRUE(inverse.surroundingsIntact() && forward.surroundingsIntact());
    return {numbersOf(inverse, 16), numbersOf(forward, 16)};
}

ScaleLevels levels8x8(const Numbers &list, int qpRem, int step) {
    Source<Kel8u> src(8, 8, step, qpRem);
    src.fill([&](int row, int col) { return static_cast<int>(list[8 * row + col]); });
    Destination<Kel16s> inverse(64, qpRem % 2), forward(64, qpRem % 3);
    EXPECT_EQ(kelStsNoErr,
              keliGenScaleLevel8x8_H264_8u16s_D2(src.data(), step, inverse.data(), forward.data(), qpRem));
    EXPECT_TRUE(inverse.surroundingsIntact() && forward.surroundingsIntact());
    return {numbersOf(inverse, 64), numbersOf(forward, 64)};
}

Numbers weights(std::mt19937 &generator, int n) {
    Numbers list(n);
    for (long long &x : list) x = 1 + generator() % 255;
    return list;
}

// A factor for weight 16, at another weight.
long long weighted(int factor, long long weight) {
    return std::min(32767LL, floorOf(factor * 16.0 / weight));
}

} // namespace

TEST(KelvaraScaleLevels, LevelsOf4x4AreProductsAndQuotients) {
    std::mt19937 generator(1);
    for (int round = 0; round < 60; ++round) {
        const int qpRem = round % 6;
        const Numbers list = weights(generator, 16);
        const ScaleLevels levels = levels4x4(list, qpRem);
        for (int i = 0; i < 16; ++i) {
            EXPECT_EQ(list[i] * normAdjust4x4[qpRem][i], levels.inverse[i]);
            EXPECT_EQ(weighted(forward4x4[qpRem][i], list[i]), levels.forward[i]);
        }
    }
}

TEST(KelvaraScaleLevels, LevelsOf8x8AreProductsAndQuotients) {
    std::mt19937 generator(2);
    for (int round = 0; round < 60; ++round) {
        const int qpRem = round % 6;
        const Numbers list = weights(generator, 64);
        const ScaleLevels levels = levels8x8(list, qpRem, 8 + round % 20);
        for (int i = 0; i < 64; ++i) {
            EXPECT_EQ(list[i] * of8x8(normAdjust8x8[qpRem], i), levels.inverse[i]);
            EXPECT_EQ(weighted(of8x8(forward8x8[qpRem], i), list[i]), levels.forward[i]);
        }
    }
}

TEST(KelvaraScaleLevels, FlatListGivesThePlainFactors) {
    for (int qpRem = 0; qpRem < 6; ++qpRem) {
        const ScaleLevels levels = levels4x4(Numbers(16, 16), qpRem);
        EXPECT_EQ(forwardFlat4x4(qpRem), levels.forward);
        EXPECT_EQ(flat4x4(qpRem), levels.inverse);
    }
}

// Both ways together are the identity: 2^21 for 4x4, with the norms of the transform 2^22 for 8x8.
TEST(KelvaraScaleLevels, ForwardTimesInverseIsConstant) {
    const double norm4[4] = {4, 5, 4, 5};
    const double norm8[8] = {8, 578 / 64.0, 5, 578 / 64.0, 8, 578 / 64.0, 5, 578 / 64.0};
    for (int qpRem = 0; qpRem < 6; ++qpRem) {
        const ScaleLevels small = levels4x4(Numbers(16, 16), qpRem),
                          large = levels8x8(Numbers(64, 16), qpRem, 8);
        for (int i = 0; i < 16; ++i) {
            const double whole = static_cast<double>(small.forward[i] * small.inverse[i]);
            EXPECT_NEAR(whole * norm4[i / 4] * norm4[i % 4] / (16 * std::pow(2.0, 21)), 1, 0.012) << i;
        }
        for (int i = 0; i < 64; ++i) {
            const double whole = static_cast<double>(large.forward[i] * large.inverse[i]);
            EXPECT_NEAR(whole * norm8[i / 8] * norm8[i % 8] / (64 * std::pow(2.0, 22)), 1, 0.012) << i;
        }
    }
}

TEST(KelvaraScaleLevels, SmallWeightsStopAtTheLimitOf16Bits) {
    for (int weight : {0, 1, 2}) {
        EXPECT_EQ(Numbers(16, 32767), levels4x4(Numbers(16, weight), 0).forward);
        EXPECT_EQ(Numbers(64, 32767), levels8x8(Numbers(64, weight), 0, 8).forward);
    }
    EXPECT_EQ(Numbers(16, 0), levels4x4(Numbers(16, 0), 3).inverse);
}

TEST(KelvaraScaleLevels, BadArgumentsAreRefused) {
    const Given<Kel8u> src(Numbers(64, 16));
    Destination<Kel16s> inverse(64), forward(64);
    const auto small = keliGenScaleLevel4x4_H264_8u16s_C1;
    const auto large = keliGenScaleLevel8x8_H264_8u16s_D2;
    EXPECT_EQ(kelStsNullPtrErr, small(nullptr, inverse.data(), forward.data(), 6));
    EXPECT_EQ(kelStsNullPtrErr, small(src.data(), nullptr, forward.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, small(src.data(), inverse.data(), nullptr, 0));
    EXPECT_EQ(kelStsNullPtrErr, large(nullptr, 7, inverse.data(), forward.data(), 6));
    EXPECT_EQ(kelStsNullPtrErr, large(src.data(), 8, nullptr, forward.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, large(src.data(), 8, inverse.data(), nullptr, 0));
    for (int step : {7, 0, -8})
        EXPECT_EQ(kelStsStepErr, large(src.data(), step, inverse.data(), forward.data(), 6));
    for (int qpRem : {-1, 6, INT32_MAX}) {
        EXPECT_EQ(kelStsRangeErr, small(src.data(), inverse.data(), forward.data(), qpRem));
        EXPECT_EQ(kelStsRangeErr, large(src.data(), 8, inverse.data(), forward.data(), qpRem));
    }
    EXPECT_TRUE(inverse.untouched() && forward.untouched());
}

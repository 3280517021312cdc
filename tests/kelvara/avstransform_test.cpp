// avstransform_test.cpp - the forward transform with quantisation and the weighted prediction of AVS against
// exact fractions, and the way there and back.

#include "avsmodel.h"
#include "kelvara_test.h"
#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using namespace avsmodel;

Numbers randomBlock(std::mt19937 &generator, int limit) {
    Numbers block(64);
    for (long long &x : block)
        x = static_cast<int>(generator() % static_cast<unsigned>(2 * limit + 1)) - limit;
    return block;
}

struct Levels {
    Numbers at;
    int count;
};

// Source and destination stand at odd addresses for an odd slack.
Levels levelsOf(const Numbers &block, int qp, int intra, int slack = 0) {
    Source<Kel16s> src(1, 64, 128, slack);
    src.fill([&](int, int i) { return static_cast<int>(block[static_cast<size_t>(i)]); });
    Destination<Kel16s> dst(64, slack);
    Destination<int> count(1, slack);
    EXPECT_EQ(kelStsNoErr,
              keliTransformQuant8x8Fwd_AVS_16s_C1(src.data(), dst.data(), count.data(), qp, intra));
    EXPECT_TRUE(dst.surroundingsIntact());
    EXPECT_TRUE(count.surroundingsIntact());
    Levels levels = {{}, count[0]};
    for (int i = 0; i < 64; ++i) levels.at.push_back(dst[i]);
    return levels;
}

void expectLevels(const Numbers &block, int qp, int intra, int slack = 0) {
    SCOPED_TRACE(testing::Message() << "QP " << qp << (intra ? ", intra" : ", inter"));
    const Levels levels = levelsOf(block, qp, intra, slack);
    const Numbers expected = quantised(transformed(block), qp, intra != 0);
    EXPECT_EQ(expected, levels.at);
    EXPECT_EQ(64 - std::count(expected.begin(), expected.end(), 0), levels.count);
}

} // namespace

// ---- forward transform and quantisation -------------------------------------------------------

TEST(KelvaraAvsTransformQuant, EveryLevelFollowsTheEquations) {
    std::mt19937 generator(1);
    for (int qp = 0; qp < 64; ++qp) {
        for (int limit : {3, 30, 255, 32767})
            for (int intra : {0, 1}) expectLevels(randomBlock(generator, limit), qp, intra, qp % 4);
    }
}

TEST(KelvaraAvsTransformQuant, BlocksAtTheEndOfTheirRangeHaveLimitedLevels) {
    int limited = 0;
    for (int qp = 0; qp < 64; ++qp) {
        for (int k = 0; k < 64; ++k) {
            Numbers block(64); // as far as coefficient k goes
            for (int i = 0; i < 64; ++i)
                block[static_cast<size_t>(i)] =
                    matrix[k / 8][i / 8] * matrix[k % 8][i % 8] < 0 ? -32768 : 32767;
            expectLevels(block, qp, 1);
            limited += levelsOf(block, qp, 1).at[static_cast<size_t>(k)] == 32767;
        }
    }
    EXPECT_GT(limited, 64);
}

TEST(KelvaraAvsTransformQuant, AFlatBlockHasOneLevelAndAnEmptyBlockNone) {
    const Levels flat = levelsOf(Numbers(64, 100), 0, 1);
    EXPECT_EQ(800, flat.at[0]); // the sum over 8
    EXPECT_EQ(1, flat.count);
    EXPECT_EQ(-800, levelsOf(Numbers(64, -100), 0, 1).at[0]);
    EXPECT_EQ(0, levelsOf(Numbers(64, 0), 0, 1).count);
}

// 8 over the step of QP 27 is 0.77: a third more makes a level of it, a sixth does not.
TEST(KelvaraAvsTransformQuant, IntraBlocksKeepMoreThanOthers) {
    EXPECT_EQ(1, levelsOf(Numbers(64, 1), 27, 1).at[0]);
    EXPECT_EQ(1, levelsOf(Numbers(64, 1), 27, 7).at[0]);
    EXPECT_EQ(0, levelsOf(Numbers(64, 1), 27, 0).at[0]);
    EXPECT_EQ(-1, levelsOf(Numbers(64, -1), 27, 1).at[0]);
    EXPECT_EQ(0, levelsOf(Numbers(64, -1), 27, 0).at[0]);
}

TEST(KelvaraAvsTransformQuant, DestinationMayBeTheSource) {
    std::mt19937 generator(2);
    const Numbers block = randomBlock(generator, 255);
    Kel16s data[64];
    std::copy(block.begin(), block.end(), data);
    int count = 0;
    EXPECT_EQ(kelStsNoErr, keliTransformQuant8x8Fwd_AVS_16s_C1(data, data, &count, 20, 1));
    EXPECT_EQ(levelsOf(block, 20, 1).at, Numbers(data, data + 64));
}

TEST(KelvaraAvsTransformQuant, BadArgumentsAreRefusedInOrder) {
    const Kel16s src[64] = {1};
    Destination<Kel16s> dst(64);
    Destination<int> count(1);
    EXPECT_EQ(kelStsNullPtrErr,
              keliTransformQuant8x8Fwd_AVS_16s_C1(nullptr, dst.data(), count.data(), 64, 1));
    EXPECT_EQ(kelStsNullPtrErr, keliTransformQuant8x8Fwd_AVS_16s_C1(src, nullptr, count.data(), 64, 1));
    EXPECT_EQ(kelStsNullPtrErr, keliTransformQuant8x8Fwd_AVS_16s_C1(src, dst.data(), nullptr, 64, 1));
    for (int qp : {-1, 64, INT_MIN, INT_MAX})
        EXPECT_EQ(kelStsRangeErr, keliTransformQuant8x8Fwd_AVS_16s_C1(src, dst.data(), count.data(), qp, 1));
    EXPECT_TRUE(dst.untouched());
    EXPECT_TRUE(count.untouched());
}

// ---- there and back -----------------------------------------------------------------------------

// As the transform keeps energy, the mean square error of the samples is that of the coefficients, and none
// of these is wrong by more than 21/31 of a step, or 52/62 of an inter block. Rounding adds less than a half.
TEST(KelvaraAvsTransformQuant, LevelsComeBackWithinTheStep) {
    std::mt19937 generator(3);
    for (int qp = 0; qp < 64; ++qp) {
        for (int intra : {0, 1}) {
            for (int limit : {1, 10, 60, 120}) {
                const Numbers block = randomBlock(generator, limit);
                Kel8u plane[256];
                std::fill(plane, plane + 256, Kel8u(128));
                Kel16s levels[64];
                const Numbers at = levelsOf(block, qp, intra).at;
                std::copy(at.begin(), at.end(), levels);
                Kel16s *pointer = levels;
                ASSERT_EQ(kelStsNoErr, keliReconstructLumaInter_AVS_16s8u_C1R(&pointer, plane, 16, 1, qp, 0));
                double squares = 0; // a sample that was cut off at its range is no worse for it
                for (int i = 0; i < 64; ++i)
                    squares +=
                        std::pow(plane[16 * (i / 8) + i % 8] - 128.0 - block[static_cast<size_t>(i)], 2);
                const double step = std::pow(2.0, qp / 8.0);
                EXPECT_LE(std::sqrt(squares / 64), (intra ? 21.0 / 31 : 52.0 / 62) * 1.02 * step + 0.5)
                    << qp << ", " << limit;
            }
        }
    }
}

TEST(KelvaraAvsTransformQuant, TheFinestQuantiserGivesBackWhatItGot) {
    std::mt19937 generator(4);
    int exact = 0;
    for (int round = 0; round < 200; ++round) {
        const Numbers block = randomBlock(generator, 127);
        const Numbers back = residual(dequantised(levelsOf(block, 0, 1).at, 0));
        for (size_t i = 0; i < 64; ++i) {
            EXPECT_NEAR(static_cast<double>(block[i]), static_cast<double>(back[i]), 2);
            exact += block[i] == back[i];
        }
    }
    EXPECT_GT(exact, 200 * 64 * 8 / 10);
}

// ---- weighted prediction ---------------------------------------------------------------------

namespace {

int weighted(int p, int scale, int shift) {
    return std::clamp(static_cast<int>(std::floor(p * scale / 32.0 + 0.5)) + shift, 0, 255);
}

void expectWeighted(KeliSize size, int srcExtra, int dstExtra, int scale, int shift, const Pattern &pattern,
                    int slack = 0) {
    SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << ", scale " << scale << ", shift "
                                    << shift);
    Source<Kel8u> src(size.height, size.width, size.width + srcExtra, slack);
    src.fill(pattern);
    DstBlock<Kel8u> dst(size.height, size.width, size.width + dstExtra, slack);
    ASSERT_EQ(kelStsNoErr, keliWeightPrediction_AVS_8u_C1R(src.data(), src.step(), dst.data(), dst.step(),
                                                           scale, shift, size));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            ASSERT_EQ(weighted(src(row, col), scale, shift), dst(row, col)) << row << ", " << col;
    }
}

} // namespace

TEST(KelvaraAvsWeightPrediction, SamplesFollowTheEquation) {
    const Pattern all = [](int row, int col) { return 16 * row + col; };
    for (int scale : {0, 1, 15, 16, 17, 31, 32, 33, 64, 128, 254, 255}) {
        for (int shift : {-128, -127, -1, 0, 1, 7, 126, 127})
            expectWeighted({16, 16}, 0, 0, scale, shift, all);
    }
}

TEST(KelvaraAvsWeightPrediction, BlocksMayHaveAnySizeStepAndAddress) {
    for (int width = 1; width <= 16; ++width) {
        for (int height = 1; height <= 16; ++height)
            expectWeighted({width, height}, height % 3 * 50, width % 4, 37, -5, noise(7, 255), width % 8);
    }
}

TEST(KelvaraAvsWeightPrediction, Scale32AndShift0ChangeNothing) {
    Kel8u block[256];
    for (int i = 0; i < 256; ++i) block[i] = static_cast<Kel8u>(i);
    EXPECT_EQ(kelStsNoErr, keliWeightPrediction_AVS_8u_C1R(block, 16, block, 16, 32, 0, {16, 16}));
    for (int i = 0; i < 256; ++i) EXPECT_EQ(i, block[i]);
}

TEST(KelvaraAvsWeightPrediction, DestinationMayBeTheSource) {
    Kel8u block[256];
    for (int i = 0; i < 256; ++i) block[i] = static_cast<Kel8u>(i);
    EXPECT_EQ(kelStsNoErr, keliWeightPrediction_AVS_8u_C1R(block, 16, block, 16, 20, 30, {16, 16}));
    for (int i = 0; i < 256; ++i) EXPECT_EQ(weighted(i, 20, 30), block[i]);
}

TEST(KelvaraAvsWeightPrediction, BadArgumentsAreRefusedInOrder) {
    const Kel8u src[256] = {};
    Destination<Kel8u> dst(256);
    const auto call = [&](int srcStep, int dstStep, int scale, int shift, KeliSize size) {
        return keliWeightPrediction_AVS_8u_C1R(src, srcStep, dst.data(), dstStep, scale, shift, size);
    };
    EXPECT_EQ(kelStsNullPtrErr, keliWeightPrediction_AVS_8u_C1R(nullptr, 0, dst.data(), 0, -1, 0, {0, 0}));
    EXPECT_EQ(kelStsNullPtrErr, keliWeightPrediction_AVS_8u_C1R(src, 0, nullptr, 0, -1, 0, {0, 0}));
    for (KeliSize size : {KeliSize{0, 8}, {8, 0}, {17, 8}, {8, 17}, {-1, 8}, {8, INT_MIN}})
        EXPECT_EQ(kelStsSizeErr, call(0, 0, -1, 0, size));
    for (int step : {15, 0, -16, INT_MIN}) {
        EXPECT_EQ(kelStsStepErr, call(step, 16, -1, 0, {16, 16}));
        EXPECT_EQ(kelStsStepErr, call(16, step, -1, 0, {16, 16}));
    }
    for (int scale : {-1, 256, INT_MIN, INT_MAX}) EXPECT_EQ(kelStsRangeErr, call(16, 16, scale, 0, {16, 16}));
    for (int shift : {-129, 128, INT_MIN, INT_MAX})
        EXPECT_EQ(kelStsRangeErr, call(16, 16, 32, shift, {16, 16}));
    EXPECT_TRUE(dst.untouched());
}

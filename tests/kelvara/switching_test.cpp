// switching_test.cpp - blocks of SP and SI slices, against the equations of ITU-T H.264 8.6.1 and 8.6.2.

#include "h264model.h"
#include "kelvc.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

// A_ij of 8.6.1
const int norms[16] = {16, 20, 16, 20, 20, 25, 20, 25, 16, 20, 16, 20, 20, 25, 20, 25};

struct Case {
    int qp, qs, switchPicture;
};

// The level at QS: `extra` is 1 for chroma DC, whose transform has another one behind it.
long long requantised(long long level, long long predicted, int i, int extra, const Case &c) {
    const auto nearest = [&](long long x) {
        const double steps = std::fabs(static_cast<double>(x)) * forward4x4[c.qs % 6][i];
        const long long magnitude = floorOf(steps / (std::pow(2.0, 15 + extra) * power(c.qs)) + 0.5);
        return x < 0 ? -magnitude : magnitude;
    };
    if (c.switchPicture) return level + nearest(predicted);
    const double scaled = static_cast<double>(level * normAdjust4x4[c.qp % 6][i] * norms[i]) * power(c.qp);
    return nearest(predicted + floorOf(scaled / (extra ? 32 : 64)));
}

Numbers blockModel(Numbers levels, const Numbers &predicted, const long long *dc, bool hasAC, const Case &c) {
    for (int i = 0; i < 16; ++i) {
        const bool isThere = i == 0 ? !dc : hasAC;
        levels[i] = requantised(isThere ? levels[i] : 0, predicted[i], i, 0, c);
    }
    Numbers scaled = scaled4x4(levels, c.qs, flat4x4(c.qs));
    if (dc) scaled[0] = *dc;
    Numbers samples = residual4x4(scaled);
    for (long long &x : samples) x = limitedTo<Kel16s>(x);
    return samples;
}

Case randomCase(std::mt19937 &generator) {
    return {static_cast<int>(generator() % 52), static_cast<int>(generator() % 52),
            static_cast<int>(generator() % 2)};
}

// The transform of a prediction.
Numbers predictedCoeffs(std::mt19937 &generator) {
    Numbers pred(16);
    for (long long &x : pred) x = generator() % 256;
    return product(core, pred, core);
}

} // namespace

TEST(KelvaraSwitching, BlocksFollowTheEquations) {
    std::mt19937 generator(1);
    const auto call = keliDequantTransformResidual_SISP_H264_16s_C1I;
    for (int round = 0; round < 3000; ++round) {
        const Case c = randomCase(generator);
        const Numbers levels = randomNumbers(generator, 16, std::max(1, 600 >> (c.qp / 6)));
        const Numbers predicted = predictedCoeffs(generator);
        const int hasAC = generator() % 3 ? 1 : 0, hasDC = generator() % 2;
        const long long dc = static_cast<long long>(generator() % 20000);
        const Given<Kel16s> pred(predicted, round % 3), scaledDC(Numbers(1, dc), 1);
        Changed<Kel16s> data(levels, round % 4);
        ASSERT_EQ(kelStsNoErr, call(data.data(), pred.data(), hasDC ? scaledDC.data() : nullptr, hasAC, c.qp,
                                    c.qs, c.switchPicture));
        ASSERT_EQ(blockModel(levels, predicted, hasDC ? &dc : nullptr, hasAC != 0, c), data.numbers())
            << "QP " << c.qp << ", QS " << c.qs << ", switching " << c.switchPicture;
        EXPECT_TRUE(data.surroundingsIntact());
    }
}

TEST(KelvaraSwitching, ChromaDCFollowsTheEquations) {
    std::mt19937 generator(2);
    for (int round = 0; round < 3000; ++round) {
        const Case c = randomCase(generator);
        const Numbers levels = randomNumbers(generator, 4, std::max(1, 600 >> (c.qp / 6)));
        Numbers predicted(4);
        for (long long &x : predicted) x = generator() % 4081;
        const Given<Kel16s> pred(predicted, round % 3);
        Changed<Kel16s> data(levels, round % 4);
        ASSERT_EQ(kelStsNoErr, keliTransformDequantChromaDC_SISP_H264_16s_C1I(data.data(), pred.data(), c.qp,
                                                                              c.qs, c.switchPicture));
        const Numbers transformed = transformedDC(predicted);
        Numbers sums;
        for (int i = 0; i < 4; ++i) {
            // all four have the factors of position 0
            sums.push_back(requantised(levels[i], transformed[i], 0, 1, c));
        }
        Numbers expected = scaledDC(sums, c.qs, 16 * normAdjust4x4[c.qs % 6][0]);
        for (long long &x : expected) x = limitedTo<Kel16s>(x);
        ASSERT_EQ(expected, data.numbers())
            << "QP " << c.qp << ", QS " << c.qs << ", switching " << c.switchPicture;
        EXPECT_TRUE(data.surroundingsIntact());
    }
}

// What the scheme is for: the picture of one prediction is met again, exactly, from another one.
TEST(KelvaraSwitching, SwitchingPictureReproducesThePrimaryOne) {
    std::mt19937 generator(3);
    const auto call = keliDequantTransformResidual_SISP_H264_16s_C1I;
    for (int round = 0; round < 500; ++round) {
        const Case c = {static_cast<int>(generator() % 52), static_cast<int>(generator() % 52), 0};
        const Numbers levels = randomNumbers(generator, 16, std::max(1, 300 >> (c.qp / 6)));
        const Numbers predicted = predictedCoeffs(generator), other = predictedCoeffs(generator);
        Numbers difference;
        for (int i = 0; i < 16; ++i) {
            const Case switching = {c.qp, c.qs, 1};
            difference.push_back(requantised(levels[i], predicted[i], i, 0, c) -
                                 requantised(0, other[i], i, 0, switching));
        }
        Changed<Kel16s> primary(levels), switched(difference);
        const Given<Kel16s> pred(predicted), otherPred(other);
        ASSERT_EQ(kelStsNoErr, call(primary.data(), pred.data(), nullptr, 1, c.qp, c.qs, 0));
        ASSERT_EQ(kelStsNoErr, call(switched.data(), otherPred.data(), nullptr, 1, c.qp, c.qs, 1));
        EXPECT_EQ(primary.numbers(), switched.numbers());
    }
}

// Without levels the samples are those of the prediction, quantised: finely, the prediction itself.
TEST(KelvaraSwitching, WithoutLevelsThePredictionComesBack) {
    std::mt19937 generator(4);
    for (int switchPicture : {0, 1}) {
        for (int round = 0; round < 100; ++round) {
            Kel8u pred[16];
            for (Kel8u &sample : pred) sample = static_cast<Kel8u>(generator());
            Kel16s coeffs[16];
            ASSERT_EQ(kelStsNoErr, keliTransformPrediction_H264_8u16s_C1(pred, 4, coeffs));
            Changed<Kel16s> data(Numbers(16));
            ASSERT_EQ(kelStsNoErr, keliDequantTransformResidual_SISP_H264_16s_C1I(
                                       data.data(), coeffs, nullptr, 1, 30, 0, switchPicture));
            for (int i = 0; i < 16; ++i) EXPECT_LE(std::abs(data[i] - pred[i]), 1);
        }
    }
}

TEST(KelvaraSwitching, WithoutACOnlyTheDCIsRead) {
    const Numbers predicted(16, 700);
    const Given<Kel16s> pred(predicted);
    for (int switchPicture : {0, 1}) {
        Changed<Kel16s> noise(Numbers{20, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
        Numbers alone(16);
        alone[0] = 20;
        Changed<Kel16s> model(alone);
        const auto call = keliDequantTransformResidual_SISP_H264_16s_C1I;
        ASSERT_EQ(kelStsNoErr, call(noise.data(), pred.data(), nullptr, 0, 20, 22, switchPicture));
        ASSERT_EQ(kelStsNoErr, call(model.data(), pred.data(), nullptr, 1, 20, 22, switchPicture));
        EXPECT_EQ(model.numbers(), noise.numbers());
    }
}

TEST(KelvaraSwitching, LevelsOfNoStreamStayWithinTheirMemory) {
    for (long long value : {32767, -32768}) {
        const Given<Kel16s> pred(Numbers(16, value));
        for (int switchPicture : {0, 1}) {
            Changed<Kel16s> block(Numbers(16, value)), dc(Numbers(4, value));
            EXPECT_EQ(kelStsNoErr, keliDequantTransformResidual_SISP_H264_16s_C1I(
                                       block.data(), pred.data(), nullptr, 1, 51, 51, switchPicture));
            EXPECT_EQ(kelStsNoErr, keliTransformDequantChromaDC_SISP_H264_16s_C1I(dc.data(), pred.data(), 51,
                                                                                  51, switchPicture));
            EXPECT_TRUE(block.surroundingsIntact() && dc.surroundingsIntact());
        }
    }
}

TEST(KelvaraSwitching, BadArgumentsAreRefused) {
    const Given<Kel16s> pred(Numbers(16, 9));
    Destination<Kel16s> data(16);
    const auto block = keliDequantTransformResidual_SISP_H264_16s_C1I;
    const auto chroma = keliTransformDequantChromaDC_SISP_H264_16s_C1I;
    EXPECT_EQ(kelStsNullPtrErr, block(nullptr, pred.data(), nullptr, 1, 99, 99, 0));
    EXPECT_EQ(kelStsNullPtrErr, block(data.data(), nullptr, nullptr, 1, 99, 99, 0));
    EXPECT_EQ(kelStsNullPtrErr, chroma(nullptr, pred.data(), 99, 99, 0));
    EXPECT_EQ(kelStsNullPtrErr, chroma(data.data(), nullptr, 99, 99, 0));
    for (int qp : {-1, 52, INT32_MAX}) {
        EXPECT_EQ(kelStsRangeErr, block(data.data(), pred.data(), nullptr, 1, qp, 20, 0));
        EXPECT_EQ(kelStsRangeErr, block(data.data(), pred.data(), nullptr, 1, 20, qp, 0));
        EXPECT_EQ(kelStsRangeErr, chroma(data.data(), pred.data(), qp, 20, 1));
        EXPECT_EQ(kelStsRangeErr, chroma(data.data(), pred.data(), 20, qp, 1));
    }
    EXPECT_TRUE(data.untouched());
}

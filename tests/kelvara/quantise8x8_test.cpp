// quantise8x8_test.cpp - the quantisers of 8x8 luma blocks of H.264, their inverses and the whole way.

#include "h264model.h"
#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

template <class T>
using Quantiser = KelStatus (*)(const T *, T *, int, int, const Kel16s *, const Kel16s *, int *, int *);
template <class T>
using Dequantiser = KelStatus (*)(T *, int, const Kel16s *);

const auto quantise16 = keliQuantLuma8x8_H264_16s_C1;
const auto quantise32 = keliQuantLuma8x8_H264_32s_C1;
const auto dequantise16 = keliQuantLuma8x8Inv_H264_16s_C1I;
const auto dequantise32 = keliQuantInvLuma8x8_H264_32s_C1I;

template <class T>
int maxQp6() {
    return sizeof(T) == 4 ? 14 : 8;
}

Numbers positive(std::mt19937 &generator, unsigned limit) {
    Numbers numbers(64);
    for (long long &x : numbers) x = 1 + generator() % limit;
    return numbers;
}

template <class T>
void expectLevels(Quantiser<T> quantiser, std::mt19937 &generator, long long limit) {
    for (int qp6 = 0; qp6 <= maxQp6<T>(); ++qp6) {
        for (int intra : {0, 1, -5}) {
            const Numbers coeffs = randomNumbers(generator, 64, limit), scan = randomScan(generator, 64);
            const Numbers scale = positive(generator, 32767);
            const Given<T> src(coeffs, qp6 % 3);
            const Given<Kel16s> positions(scan, 1), levels(scale, qp6 % 2);
            Destination<T> dst(64, qp6 % 4);
            Destination<int> count(1, 1), last(1, 2);
            ASSERT_EQ(kelStsNoErr, quantiser(src.data(), dst.data(), qp6, intra, positions.data(),
                                             levels.data(), count.data(), last.data()));
            Numbers expected;
            for (int i = 0; i < 64; ++i)
                expected.push_back(limitedTo<T>(level(coeffs[i], scale[i], 16 + qp6, intra != 0)));
            EXPECT_EQ(expected, numbersOf(dst, 64));
            EXPECT_EQ(countOf(expected), count[0]);
            EXPECT_EQ(lastOf(expected, scan), last[0]);
            EXPECT_TRUE(dst.surroundingsIntact() && count.surroundingsIntact() && last.surroundingsIntact());
        }
    }
}

template <class T>
void expectScaled(Dequantiser<T> dequantiser, std::mt19937 &generator, long long limit) {
    for (int qp6 = 0; qp6 <= maxQp6<T>(); ++qp6) {
        const Numbers levels = randomNumbers(generator, 64, std::max(2LL, limit >> qp6));
        const Numbers scale = positive(generator, 255 * 58);
        const Given<Kel16s> given(scale, qp6 % 2);
        Changed<T> data(levels, qp6 % 5);
        ASSERT_EQ(kelStsNoErr, dequantiser(data.data(), qp6, given.data()));
        Numbers expected = scaled8x8(levels, 6 * qp6, scale);
        for (long long &x : expected) x = limitedTo<T>(x);
        EXPECT_EQ(expected, data.numbers()) << qp6;
        EXPECT_TRUE(data.surroundingsIntact());
    }
}

} // namespace

// ---- quantisers ------------------------------------------------------------------------

TEST(KelvaraQuantise8x8, LevelsAreThoseOfTheFractions) {
    std::mt19937 generator(1);
    for (long long limit : {3, 400, 16320, 32767}) {
        expectLevels<Kel16s>(quantise16, generator, limit);
        expectLevels<Kel32s>(quantise32, generator, limit);
    }
    expectLevels<Kel32s>(quantise32, generator, INT32_MAX);
}

TEST(KelvaraQuantise8x8, BlockOfZerosHasNoLast) {
    const Given<Kel16s> src(Numbers(64)), scan(Numbers(64)), levels(Numbers(64, 100));
    Destination<Kel16s> dst(64);
    int count = 9, last = 9;
    ASSERT_EQ(kelStsNoErr,
              quantise16(src.data(), dst.data(), 3, 1, scan.data(), levels.data(), &count, &last));
    EXPECT_EQ(0, count);
    EXPECT_EQ(-1, last);
}

// ---- inverse ---------------------------------------------------------------------------

TEST(KelvaraQuantise8x8, InverseFollowsTheEquation) {
    std::mt19937 generator(2);
    for (int round = 0; round < 20; ++round) {
        expectScaled<Kel16s>(dequantise16, generator, round % 2 ? 100 : 2063);
        expectScaled<Kel32s>(dequantise32, generator, 20000);
    }
}

TEST(KelvaraQuantise8x8, LevelsOfNoStreamStayWithinTheirMemory) {
    const Given<Kel16s> levels(Numbers(64, 32767));
    for (long long value : {INT32_MAX, INT32_MIN}) {
        Changed<Kel32s> data(Numbers(64, value));
        EXPECT_EQ(kelStsNoErr, dequantise32(data.data(), 14, levels.data()));
        EXPECT_TRUE(data.surroundingsIntact());
    }
}

// ---- transforms ------------------------------------------------------------------------

// The 8x8 transform has its model with the function that works from block to block.
TEST(KelvaraQuantise8x8, ForwardTransformWorksInPlace) {
    std::mt19937 generator(3);
    for (int limit : {1, 255, 32767}) {
        const Numbers block = randomNumbers(generator, 64, limit);
        const Given<Kel16s> src(block);
        Destination<Kel16s> dst(64);
        Changed<Kel16s> data(block, limit % 4);
        ASSERT_EQ(kelStsNoErr, keliTransformFwdLuma8x8_H264_16s_C1(src.data(), dst.data()));
        ASSERT_EQ(kelStsNoErr, keliTransformLuma8x8Fwd_H264_16s_C1I(data.data()));
        EXPECT_EQ(numbersOf(dst, 64), data.numbers());
        EXPECT_TRUE(data.surroundingsIntact());
    }
    EXPECT_EQ(kelStsNullPtrErr, keliTransformLuma8x8Fwd_H264_16s_C1I(nullptr));
}

TEST(KelvaraQuantise8x8, ForwardTransformOfASingleLevelIsItsDC) {
    Changed<Kel16s> data(Numbers(64, -7));
    ASSERT_EQ(kelStsNoErr, keliTransformLuma8x8Fwd_H264_16s_C1I(data.data()));
    Numbers expected(64);
    expected[0] = -7 * 64;
    EXPECT_EQ(expected, data.numbers());
}

TEST(KelvaraQuantise8x8, InverseTransformIsAddedToThePrediction) {
    std::mt19937 generator(4);
    for (int round = 0; round < 60; ++round) {
        const Numbers coeffs = randomNumbers(generator, 64, round % 2 ? 3000 : 32767);
        const Given<Kel16s> src(coeffs, round % 3);
        const Given<Kel32s> wide(coeffs);
        Source<Kel8u> pred(8, 8, 8 + round % 20, round % 5);
        pred.fill(noise(static_cast<unsigned>(round), 255));
        Source<Kel16u> widePred(8, 8, 16);
        widePred.fill([&](int row, int col) { return pred(row, col); });
        DstBlock<Kel8u> dst(8, 8, 8 + round % 7, round % 4);
        DstBlock<Kel16u> model(8, 8, 16);
        ASSERT_EQ(kelStsNoErr, keliTransformLuma8x8InvAddPred_H264_16s8u_C1R(
                                   pred.data(), pred.step(), src.data(), dst.data(), dst.step()));
        ASSERT_EQ(kelStsNoErr, keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(
                                   widePred.data(), 16, wide.data(), model.data(), 16, 8));
        for (int i = 0; i < 64; ++i) ASSERT_EQ(model(i / 8, i % 8), dst(i / 8, i % 8)) << round << ", " << i;
        EXPECT_TRUE(dst.surroundingsIntact());
    }
}

TEST(KelvaraQuantise8x8, DCCoefficientMovesAllSamplesAndStopsAtTheirLimits) {
    Numbers coeffs(64);
    coeffs[0] = 10 * 64;
    const Given<Kel16s> src(coeffs);
    Source<Kel8u> pred(8, 8, 8);
    pred.fill([](int row, int col) { return 32 * row + 4 * col; });
    DstBlock<Kel8u> dst(8, 8, 8);
    ASSERT_EQ(kelStsNoErr,
              keliTransformLuma8x8InvAddPred_H264_16s8u_C1R(pred.data(), 8, src.data(), dst.data(), 8));
    for (int i = 0; i < 64; ++i) EXPECT_EQ(std::min(255, 4 * i + 10), dst(i / 8, i % 8));
}

// ---- the whole way -----------------------------------------------------------------------

// What comes back differs by what the quantiser dropped: at most two thirds of a step in each coefficient.
TEST(KelvaraQuantise8x8, InverseOfForwardIsWithinTheStep) {
    const double norms[8] = {8, 578 / 64.0, 5, 578 / 64.0, 8, 578 / 64.0, 5, 578 / 64.0};
    const int basis[8][8] = {{8, 8, 8, 8, 8, 8, 8, 8},     {12, 10, 6, 3, -3, -6, -10, -12},
                             {8, 4, -4, -8, -8, -4, 4, 8}, {10, -3, -12, -6, 6, 12, 3, -10},
                             {8, -8, -8, 8, 8, -8, -8, 8}, {6, -12, 3, 10, -10, -3, 12, -6},
                             {4, -8, 8, -4, -4, 8, -8, 4}, {3, -6, 10, -12, 12, -10, 6, -3}};
    const auto product = [&](const Numbers &block, int k) {
        double sum = 0;
        for (int i = 0; i < 64; ++i) sum += block[i] * basis[k / 8][i / 8] * basis[k % 8][i % 8] / 64.0;
        return sum;
    };
    Numbers order(64);
    for (int i = 0; i < 64; ++i) order[i] = i;
    const Given<Kel16s> scan(order);
    std::mt19937 generator(5);
    for (int qp = 0; qp <= 51; qp += 3) {
        Source<Kel8u> list(8, 8, 8);
        list.fill(constant(16));
        Kel16s inverse[64], forward[64];
        ASSERT_EQ(kelStsNoErr, keliGenScaleLevel8x8_H264_8u16s_D2(list.data(), 8, inverse, forward, qp % 6));
        const Numbers block = randomNumbers(generator, 64, 60);
        Changed<Kel16s> data(block);
        Kel16s levels[64];
        int count = 0, last = 0;
        ASSERT_EQ(kelStsNoErr, keliTransformLuma8x8Fwd_H264_16s_C1I(data.data()));
        ASSERT_EQ(kelStsNoErr,
                  quantise16(data.data(), levels, qp / 6, 1, scan.data(), forward, &count, &last));
        ASSERT_EQ(kelStsNoErr, dequantise16(levels, qp / 6, inverse));
        Source<Kel8u> pred(8, 8, 8);
        pred.fill(constant(128));
        DstBlock<Kel8u> dst(8, 8, 8);
        ASSERT_EQ(kelStsNoErr,
                  keliTransformLuma8x8InvAddPred_H264_16s8u_C1R(pred.data(), 8, levels, dst.data(), 8));
        Numbers error(64);
        for (int i = 0; i < 64; ++i) {
            ASSERT_TRUE(dst(i / 8, i % 8) > 0 &&
                        dst(i / 8, i % 8) < 255); // a limit would be an error of its own
            error[i] = dst(i / 8, i % 8) - 128 - block[i];
        }
        for (int k = 0; k < 64; ++k) {
            const double norm = norms[k / 8] * norms[k % 8];
            const double step = of8x8(normAdjust8x8[qp % 6], k) * std::pow(2.0, qp / 6) / 4 * norm / 64;
            // rounding to whole samples is half a sample each
            EXPECT_LE(std::abs(product(error, k)), step * 2 / 3 * 1.02 + 32 * 1.3) << qp << ", " << k;
        }
    }
}

// ---- arguments -------------------------------------------------------------------------

template <class T>
static void expectRefusals(Quantiser<T> quantiser, Dequantiser<T> dequantiser) {
    const Given<T> src(Numbers(64, 400));
    const Given<Kel16s> scan(Numbers(64, 63)), levels(Numbers(64, 99)), high(Numbers(64, 64)),
        low(Numbers(64, -1));
    Destination<T> dst(64);
    Destination<int> count(1), last(1);
    T *const to = dst.data();
    int *const n = count.data(), *const l = last.data();
    const Kel16s *const s = scan.data(), *const v = levels.data();
    EXPECT_EQ(kelStsNullPtrErr, quantiser(nullptr, to, -1, 0, s, v, n, l));
    EXPECT_EQ(kelStsNullPtrErr, quantiser(src.data(), nullptr, 2, 0, s, v, n, l));
    EXPECT_EQ(kelStsNullPtrErr, quantiser(src.data(), to, 2, 0, nullptr, v, n, l));
    EXPECT_EQ(kelStsNullPtrErr, quantiser(src.data(), to, 2, 0, s, nullptr, n, l));
    EXPECT_EQ(kelStsNullPtrErr, quantiser(src.data(), to, 2, 0, s, v, nullptr, l));
    EXPECT_EQ(kelStsNullPtrErr, quantiser(src.data(), to, 2, 0, s, v, n, nullptr));
    EXPECT_EQ(kelStsRangeErr, quantiser(src.data(), to, 2, 0, high.data(), v, n, l));
    EXPECT_EQ(kelStsRangeErr, quantiser(src.data(), to, 2, 0, low.data(), v, n, l));
    EXPECT_EQ(kelStsNullPtrErr, dequantiser(nullptr, -1, v));
    EXPECT_EQ(kelStsNullPtrErr, dequantiser(to, 2, nullptr));
    for (int qp6 : {-1, maxQp6<T>() + 1, INT32_MAX}) {
        EXPECT_EQ(kelStsRangeErr, quantiser(src.data(), to, qp6, 0, s, v, n, l)) << qp6;
        EXPECT_EQ(kelStsRangeErr, dequantiser(to, qp6, v)) << qp6;
    }
    EXPECT_TRUE(dst.untouched() && count.untouched() && last.untouched());
}

TEST(KelvaraQuantise8x8, BadArgumentsAreRefused) {
    expectRefusals<Kel16s>(quantise16, dequantise16);
    expectRefusals<Kel32s>(quantise32, dequantise32);
}

TEST(KelvaraQuantise8x8, InverseTransformRefusesBadArguments) {
    const Given<Kel16s> src(Numbers(64, 5));
    Source<Kel8u> pred(8, 8, 40);
    DstBlock<Kel8u> dst(8, 8, 40);
    const auto call = keliTransformLuma8x8InvAddPred_H264_16s8u_C1R;
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, src.data(), dst.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 40, nullptr, dst.data(), 40));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 40, src.data(), nullptr, 40));
    for (int step : {7, 0, -40}) {
        EXPECT_EQ(kelStsStepErr, call(pred.data(), step, src.data(), dst.data(), 40));
        EXPECT_EQ(kelStsStepErr, call(pred.data(), 40, src.data(), dst.data(), step));
    }
    EXPECT_TRUE(dst.untouched());
}

// transform4x4_test.cpp - the 4x4 transforms, against the matrix and the equations of ITU-T H.264 8.5.12.2.

#include "h264model.h"
#include "kelvc.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

template <class T>
using Transform = KelStatus (*)(const T *, T *);

template <class T>
Numbers result(Transform<T> transform, const Numbers &block, int misfit = 0) {
    const Given<T> src(block, misfit);
    Destination<T> dst(16, misfit);
    EXPECT_EQ(kelStsNoErr, transform(src.data(), dst.data()));
    EXPECT_TRUE(dst.surroundingsIntact());
    return numbersOf(dst, 16);
}

// In the type of the result.
template <class T>
Numbers limitedTo(Numbers numbers) {
    for (long long &x : numbers) x = h264::limitedTo<T>(x);
    return numbers;
}

template <class T>
void expectNulls(Transform<T> transform) {
    const Given<T> src(Numbers(16, 7));
    Destination<T> dst(16);
    EXPECT_EQ(kelStsNullPtrErr, transform(nullptr, dst.data()));
    EXPECT_EQ(kelStsNullPtrErr, transform(src.data(), nullptr));
    EXPECT_TRUE(dst.untouched());
}

const auto forward16 = keliTransformResidual4x4Fwd_H264_16s_C1;
const auto forward32 = keliTransformResidual4x4Fwd_H264_32s_C1;
const auto inverse16 = keliTransformResidual4x4Inv_H264_16s_C1;
const auto inverse32 = keliTransformResidual4x4Inv_H264_32s_C1;

} // namespace

// ---- forward ---------------------------------------------------------------------------

TEST(KelvaraTransform4x4, ForwardIsTheProductWithTheMatrix) {
    std::mt19937 generator(1);
    for (int limit : {1, 255, 900}) {
        for (int round = 0; round < 100; ++round) {
            const Numbers block = randomNumbers(generator, 16, limit);
            EXPECT_EQ(product(core, block, core), result(forward16, block, round % 5));
            EXPECT_EQ(product(core, block, core), result(forward32, block, round % 5));
        }
    }
}

TEST(KelvaraTransform4x4, WideForwardHasRoomForSamplesOf14Bits) {
    std::mt19937 generator(2);
    for (int round = 0; round < 100; ++round) {
        const Numbers block = randomNumbers(generator, 16, 16383);
        EXPECT_EQ(product(core, block, core), result(forward32, block));
    }
}

TEST(KelvaraTransform4x4, NarrowFormIsLimitedToItsRange) {
    std::mt19937 generator(3);
    int limitedOnes = 0;
    for (int round = 0; round < 100; ++round) {
        const Numbers block = randomNumbers(generator, 16, 32767), exact = product(core, block, core);
        EXPECT_EQ(limitedTo<Kel16s>(exact), result(forward16, block));
        limitedOnes += limitedTo<Kel16s>(exact) != exact;
    }
    EXPECT_GT(limitedOnes, 0);
}

TEST(KelvaraTransform4x4, PredictionIsTransformedFromItsRows) {
    for (int step : {4, 5, 16, 17}) {
        Source<Kel8u> pred(4, 4, step, step % 3);
        pred.fill(noise(static_cast<unsigned>(step), 255));
        Numbers block;
        for (int i = 0; i < 16; ++i) block.push_back(pred(i / 4, i % 4));
        Destination<Kel16s> dst(16, 1);
        ASSERT_EQ(kelStsNoErr, keliTransformPrediction_H264_8u16s_C1(pred.data(), step, dst.data()));
        EXPECT_EQ(product(core, block, core), numbersOf(dst, 16));
        EXPECT_TRUE(dst.surroundingsIntact());
    }
}

// ---- inverse ---------------------------------------------------------------------------

TEST(KelvaraTransform4x4, InverseFollowsTheEquations) {
    std::mt19937 generator(4);
    for (int limit : {3, 100, 5000, 32767}) {
        for (int round = 0; round < 100; ++round) {
            const Numbers coeffs = randomNumbers(generator, 16, limit);
            EXPECT_EQ(residual4x4(coeffs), result(inverse16, coeffs, round % 5));
            EXPECT_EQ(residual4x4(coeffs), result(inverse32, coeffs, round % 5));
        }
    }
}

TEST(KelvaraTransform4x4, WideInverseHasRoomForSamplesOf14Bits) {
    std::mt19937 generator(5);
    for (int round = 0; round < 100; ++round) {
        const Numbers coeffs = randomNumbers(generator, 16, 1 << 21);
        EXPECT_EQ(residual4x4(coeffs), result(inverse32, coeffs));
    }
}

// The basis of the inverse is that of the forward transform, its second and fourth function halved.
TEST(KelvaraTransform4x4, InverseIsTheProductWithTheBasisWhereNothingIsCutOff) {
    const Matrix doubled = {4, {2, 2, 2, 1, 2, 1, -2, -2, 2, -1, -2, 2, 2, -2, 2, -1}};
    std::mt19937 generator(6);
    for (int round = 0; round < 100; ++round) {
        Numbers coeffs = randomNumbers(generator, 16, 100);
        for (long long &x : coeffs) x *= 4 * 64;
        Numbers exact = product(doubled, coeffs, doubled);
        for (long long &x : exact) x /= 4 * 64;
        EXPECT_EQ(exact, result(inverse32, coeffs));
    }
}

// Halves that are cut off make the order of the passes visible.
TEST(KelvaraTransform4x4, InverseTakesTheRowsFirst) {
    Numbers turned(16), turnedBack(16);
    std::mt19937 generator(7);
    int different = 0;
    for (int round = 0; round < 200; ++round) {
        const Numbers coeffs = randomNumbers(generator, 16, 200);
        for (int i = 0; i < 16; ++i) turned[i] = coeffs[4 * (i % 4) + i / 4];
        const Numbers columnsFirst = result(inverse16, turned);
        for (int i = 0; i < 16; ++i) turnedBack[i] = columnsFirst[4 * (i % 4) + i / 4];
        different += turnedBack != result(inverse16, coeffs);
    }
    EXPECT_GT(different, 0);
}

TEST(KelvaraTransform4x4, CoefficientsOfNoStreamStayWithinTheirMemory) {
    for (long long value : {INT32_MAX, INT32_MIN}) {
        result(inverse32, Numbers(16, value));
        result(forward32, Numbers(16, value));
    }
}

// A coefficient's share of a sample is its square over the norm of its function.
TEST(KelvaraTransform4x4, InverseOfForwardIsTheBlock) {
    const double norms[4] = {4, 10, 4, 10}, basisNorms[4] = {4, 2.5, 4, 2.5};
    std::mt19937 generator(8);
    for (int round = 0; round < 1000; ++round) {
        const Numbers block = randomNumbers(generator, 16, 16383);
        Numbers coeffs = result(forward32, block);
        for (int i = 0; i < 16; ++i) {
            const double norm =
                std::sqrt(norms[i / 4] * norms[i % 4] * basisNorms[i / 4] * basisNorms[i % 4]);
            coeffs[i] = std::llround(coeffs[i] * 64.0 / norm);
        }
        EXPECT_EQ(block, result(inverse32, coeffs));
    }
}

TEST(KelvaraTransform4x4, SourceMayBeTheDestination) {
    std::mt19937 generator(9);
    const Numbers block = randomNumbers(generator, 16, 255);
    Changed<Kel16s> data(block, 1);
    ASSERT_EQ(kelStsNoErr, forward16(data.data(), data.data()));
    EXPECT_EQ(product(core, block, core), data.numbers());
}

// ---- arguments -------------------------------------------------------------------------

TEST(KelvaraTransform4x4, NullPointersAreRefused) {
    expectNulls(forward16);
    expectNulls(forward32);
    expectNulls(inverse16);
    expectNulls(inverse32);
}

TEST(KelvaraTransform4x4, PredictionRefusesBadArguments) {
    Source<Kel8u> pred(4, 4, 16);
    Destination<Kel16s> dst(16);
    const auto call = keliTransformPrediction_H264_8u16s_C1;
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, dst.data()));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 0, nullptr));
    for (int step : {3, 0, -16}) EXPECT_EQ(kelStsStepErr, call(pred.data(), step, dst.data()));
    EXPECT_TRUE(dst.untouched());
}

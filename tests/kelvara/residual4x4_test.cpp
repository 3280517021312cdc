// residual4x4_test.cpp - levels of 4x4 blocks to residuals and samples, and an encoder's way there and back.

#include "h264model.h"
#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

// A block to be reconstructed.
struct Case {
    int qp, hasAC;
    int hasDC; // a DC coefficient that is scaled already
    long long dc;
    Numbers coeffs;
    Numbers levels; // empty: the library's own
};

Case randomCase(std::mt19937 &generator, int maxQP, long long limit) {
    Case c;
    c.qp = static_cast<int>(generator() % static_cast<unsigned>(maxQP + 1));
    c.hasAC = generator() % 3 != 0;
    c.hasDC = generator() % 2;
    c.dc = static_cast<long long>(generator() % 20000) - 10000;
    c.coeffs = randomNumbers(generator, 16, std::max(2LL, limit >> (c.qp / 6)));
    if (generator() % 2) {
        for (int i = 0; i < 16; ++i) c.levels.push_back(1 + generator() % (255 * 29));
    }
    return c;
}

Numbers residualModel(const Case &c) {
    Numbers coeffs = c.coeffs;
    for (int i = 1; i < 16; ++i) coeffs[i] = c.hasAC ? coeffs[i] : 0;
    Numbers scaled = scaled4x4(coeffs, c.qp, c.levels.empty() ? flat4x4(c.qp) : c.levels);
    if (c.hasDC) scaled[0] = c.dc;
    return residual4x4(scaled);
}

template <class T>
struct Scalars {
    explicit Scalars(const Case &c)
        : dc(Numbers(1, c.dc), 1), levels(c.levels.empty() ? Numbers(1) : c.levels, 1) {
        pDC = c.hasDC ? dc.data() : nullptr;
        pLevels = c.levels.empty() ? nullptr : levels.data();
    }
    Given<T> dc;
    Given<Kel16s> levels;
    const T *pDC;
    const Kel16s *pLevels;
};

// call(pred, predStep, coeffs, dc, dst, dstStep, case, levels)
template <class Sample, class T, class Call>
void expectSamples(const Case &c, Call call, int white, int round) {
    const int width = 4 * static_cast<int>(sizeof(Sample));
    const Given<T> coeffs(c.coeffs, round % 3);
    const Scalars<T> scalars(c);
    Source<Sample> pred(4, 4, width + round % 17, round % 5);
    pred.fill(noise(static_cast<unsigned>(round), white));
    DstBlock<Sample> dst(4, 4, width + round % 9, round % 4);
    ASSERT_EQ(kelStsNoErr, call(pred.data(), pred.step(), coeffs.data(), scalars.pDC, dst.data(), dst.step(),
                                c, scalars.pLevels));
    const Numbers residual = residualModel(c);
    for (int i = 0; i < 16; ++i) {
        const long long sum = pred(i / 4, i % 4) + residual[i];
        ASSERT_EQ(limited(sum, 0, white), dst(i / 4, i % 4)) << "QP " << c.qp << ", sample " << i;
    }
    EXPECT_TRUE(dst.surroundingsIntact());
}

} // namespace

// ---- reconstruction ----------------------------------------------------------------------

TEST(KelvaraResidual4x4, SamplesOf8BitsFollowTheEquations) {
    std::mt19937 generator(1);
    const auto call = [](auto pred, int predStep, auto coeffs, auto dc, auto dst, int dstStep, const Case &c,
                         const Kel16s *levels) {
        return keliTransformQuantInvAddPred4x4_H264_16s_C1IR(pred, predStep, coeffs, dc, dst, dstStep, c.qp,
                                                             c.hasAC, levels);
    };
    for (int round = 0; round < 1000; ++round)
        expectSamples<Kel8u, Kel16s>(randomCase(generator, 51, 600), call, 255, round);
}

TEST(KelvaraResidual4x4, SamplesOfUpTo14BitsFollowTheEquations) {
    std::mt19937 generator(2);
    for (int bitDepth = 8; bitDepth <= 14; ++bitDepth) {
        const auto call = [bitDepth](auto pred, int predStep, auto coeffs, auto dc, auto dst, int dstStep,
                                     const Case &c, const Kel16s *levels) {
            return keliTransformQuantInvAddPred4x4_H264_32s_C1IR(pred, predStep, coeffs, dc, dst, dstStep,
                                                                 c.qp, c.hasAC, bitDepth, levels);
        };
        for (int round = 0; round < 200; ++round)
            expectSamples<Kel16u, Kel32s>(randomCase(generator, 87, 30000), call, (1 << bitDepth) - 1, round);
    }
}

TEST(KelvaraResidual4x4, PlainFormIsThatOfTheFlatList) {
    std::mt19937 generator(3);
    const auto call = [](auto pred, int predStep, auto coeffs, auto dc, auto dst, int dstStep, const Case &c,
                         const Kel16s *) {
        return keliDequantTransformResidualAndAdd_H264_16s_C1I(pred, coeffs, dc, dst, predStep, dstStep, c.qp,
                                                               c.hasAC);
    };
    for (int round = 0; round < 500; ++round) {
        Case c = randomCase(generator, 51, 600);
        c.levels.clear();
        expectSamples<Kel8u, Kel16s>(c, call, 255, round);
    }
}

// Nothing but the first level is in memory that may be read, or not even that.
TEST(KelvaraResidual4x4, WithoutACOnlyTheDCIsRead) {
    const Given<Kel16s> one(Numbers(1, 40));
    Source<Kel8u> pred(4, 4, 4);
    pred.fill(constant(100));
    Kel8u dst[16];
    const auto call = keliTransformQuantInvAddPred4x4_H264_16s_C1IR;
    ASSERT_EQ(kelStsNoErr, call(pred.data(), 4, one.data(), nullptr, dst, 4, 12, 0, nullptr));
    EXPECT_EQ(100 + (40 * 10 * 4 + 32) / 64, dst[15]);
    const Kel16s *behind = one.data() + 1; // the forbidden page
    const Given<Kel16s> dc(Numbers(1, -640));
    ASSERT_EQ(kelStsNoErr, call(pred.data(), 4, behind, dc.data(), dst, 4, 12, 0, nullptr));
    EXPECT_EQ(90, dst[15]);
}

TEST(KelvaraResidual4x4, DestinationMayBeThePrediction) {
    std::mt19937 generator(4);
    const Numbers coeffs = randomNumbers(generator, 16, 20);
    const Given<Kel16s> src(coeffs);
    Kel8u data[16], model[16], pred[16];
    for (int i = 0; i < 16; ++i) data[i] = pred[i] = static_cast<Kel8u>(13 * i);
    ASSERT_EQ(kelStsNoErr,
              keliDequantTransformResidualAndAdd_H264_16s_C1I(pred, src.data(), nullptr, model, 4, 4, 24, 1));
    ASSERT_EQ(kelStsNoErr,
              keliDequantTransformResidualAndAdd_H264_16s_C1I(data, src.data(), nullptr, data, 4, 4, 24, 1));
    EXPECT_EQ(0, std::memcmp(model, data, 16));
}

// The suite hands over the block's own first coefficient as the scaled one.
TEST(KelvaraResidual4x4, ScaledDCMayLieInTheBlock) {
    const Given<Kel16s> src(Numbers(16, 64));
    const Given<Kel16s> dc(Numbers(1, 64));
    Source<Kel8u> pred(4, 4, 4);
    pred.fill(constant(100));
    Kel8u own[16], other[16];
    const auto call = keliTransformQuantInvAddPred4x4_H264_16s_C1IR;
    ASSERT_EQ(kelStsNoErr, call(pred.data(), 4, src.data(), src.data(), own, 4, 2, 1, nullptr));
    ASSERT_EQ(kelStsNoErr, call(pred.data(), 4, src.data(), dc.data(), other, 4, 2, 1, nullptr));
    EXPECT_EQ(0, std::memcmp(own, other, 16));
}

TEST(KelvaraResidual4x4, LevelsOfNoStreamGiveSamplesOfTheDepth) {
    Source<Kel16u> pred(4, 4, 8);
    pred.fill(constant(65535));
    Kel16u dst[16];
    for (long long value : {INT32_MAX, INT32_MIN, 1 << 26}) {
        const Given<Kel32s> src(Numbers(16, value));
        for (int bitDepth : {8, 14}) {
            ASSERT_EQ(kelStsNoErr,
                      keliTransformQuantInvAddPred4x4_H264_32s_C1IR(pred.data(), 8, src.data(), nullptr, dst,
                                                                    8, 87, 1, bitDepth, nullptr));
            for (Kel16u sample : dst) EXPECT_LT(sample, 1 << bitDepth);
        }
    }
}

// ---- residuals in place --------------------------------------------------------------------

TEST(KelvaraResidual4x4, ResidualReplacesTheLevelsRowByRow) {
    std::mt19937 generator(5);
    for (int round = 0; round < 500; ++round) {
        Case c = randomCase(generator, 51, 2000);
        c.levels.clear();
        const int step = 8 + round % 11;
        DstBlock<Kel16s> data(4, 4, step, round % 3);
        for (int i = 0; i < 16; ++i) {
            const Kel16s x = static_cast<Kel16s>(c.coeffs[i]);
            std::memcpy(reinterpret_cast<unsigned char *>(data.data()) + i / 4 * step + i % 4 * 2, &x, 2);
        }
        const Scalars<Kel16s> scalars(c);
        ASSERT_EQ(kelStsNoErr,
                  keliDequantTransformResidual_H264_16s_C1I(data.data(), step, scalars.pDC, c.hasAC, c.qp));
        const Numbers expected = residualModel(c);
        for (int i = 0; i < 16; ++i)
            ASSERT_EQ(limitedTo<Kel16s>(expected[i]), data(i / 4, i % 4)) << c.qp << ", " << i;
        EXPECT_TRUE(data.surroundingsIntact());
    }
}

// ---- there and back -------------------------------------------------------------------------

// The error of a block, as coefficients, is what the quantiser dropped: at most two thirds of a step for
// intra, five sixths for inter.
template <class To, class Function>
static void expectWithinTheStep(Function quantise, int maxQP, int range, std::mt19937 &generator) {
    const double norms[4] = {4, 10, 4, 10};
    Numbers order(16);
    for (int i = 0; i < 16; ++i) order[i] = i;
    const Given<Kel16s> scan(order);
    for (int qp = 0; qp <= maxQP; ++qp) {
        for (int round = 0; round < 20; ++round) {
            const int intra = round % 2, weight = round % 4 < 2 ? 16 : 8 + round;
            const Given<Kel8u> list(Numbers(16, weight));
            Kel16s inverse[16], forward[16];
            ASSERT_EQ(kelStsNoErr, keliGenScaleLevel4x4_H264_8u16s_C1(list.data(), inverse, forward, qp % 6));
            const Numbers block = randomNumbers(generator, 16, range);
            const Given<Kel16s> src(block);
            To levels[16];
            Kel32s wide[16];
            int count = 0, last = 0;
            ASSERT_EQ(kelStsNoErr,
                      quantise(src.data(), levels, qp, &count, intra, scan.data(), &last, forward));
            for (int i = 0; i < 16; ++i) wide[i] = static_cast<Kel32s>(levels[i]);
            Source<Kel16u> pred(4, 4, 8);
            pred.fill(constant(8192));
            Kel16u samples[16];
            ASSERT_EQ(kelStsNoErr, keliTransformQuantInvAddPred4x4_H264_32s_C1IR(
                                       pred.data(), 8, wide, nullptr, samples, 8, qp, 1, 14, inverse));
            Numbers error(16);
            for (int i = 0; i < 16; ++i) {
                ASSERT_TRUE(samples[i] > 0 && samples[i] < 16383); // a limit would be an error of its own
                error[i] = samples[i] - 8192 - block[i];
            }
            const Numbers coeffs = product(core, error, core);
            for (int i = 0; i < 16; ++i) {
                // a level is as much of a coefficient as the two tables say, 2^21 or so together
                const double step = std::pow(2.0, 15 + qp / 6) / forward4x4[qp % 6][i] * weight / 16;
                const double whole = std::sqrt(norms[i / 4] * norms[i % 4]); // of the rounding to samples
                EXPECT_LE(std::abs(static_cast<double>(coeffs[i])),
                          step * (intra ? 2 / 3. : 5 / 6.) * 1.03 + 4 * whole)
                    << "QP " << qp << ", weight " << weight << ", coefficient " << i;
            }
        }
    }
}

TEST(KelvaraResidual4x4, InverseOfForwardIsWithinTheStep) {
    std::mt19937 generator(6);
    expectWithinTheStep<Kel16s>(keliTransformQuantFwd4x4_H264_16s_C1, 51, 255, generator);
    expectWithinTheStep<Kel32s>(keliTransformQuantFwd4x4_H264_16s32s_C1, 75, 4095, generator);
}

// At the finest quantisers nothing but the rounding of samples is left.
TEST(KelvaraResidual4x4, FineQuantisersGiveTheBlockBack) {
    std::mt19937 generator(7);
    Numbers order(16);
    for (int i = 0; i < 16; ++i) order[i] = i;
    const Given<Kel16s> scan(order);
    int exact = 0;
    for (int round = 0; round < 500; ++round) {
        const Numbers block = randomNumbers(generator, 16, 255);
        Changed<Kel16s> data(block);
        int count = 0, last = 0;
        ASSERT_EQ(kelStsNoErr,
                  keliTransformQuantResidual_H264_16s_C1I(data.data(), 0, &count, 1, scan.data(), &last));
        ASSERT_EQ(kelStsNoErr, keliDequantTransformResidual_H264_16s_C1I(data.data(), 8, nullptr, 1, 0));
        const Numbers back = data.numbers();
        for (int i = 0; i < 16; ++i) {
            EXPECT_LE(std::abs(back[i] - block[i]), 1);
            exact += back[i] == block[i];
        }
    }
    EXPECT_GT(exact, 500 * 16 * 9 / 10);
}

// ---- arguments -------------------------------------------------------------------------

TEST(KelvaraResidual4x4, BadArgumentsAreRefused) {
    const Given<Kel16s> src(Numbers(16, 9));
    Source<Kel8u> pred(4, 4, 20);
    DstBlock<Kel8u> dst(4, 4, 20);
    const auto full = [&](const Kel8u *p, int ps, const Kel16s *c, Kel8u *d, int ds, int qp) {
        return keliTransformQuantInvAddPred4x4_H264_16s_C1IR(p, ps, c, nullptr, d, ds, qp, 1, nullptr);
    };
    const auto plain = [&](const Kel8u *p, int ps, const Kel16s *c, Kel8u *d, int ds, int qp) {
        return keliDequantTransformResidualAndAdd_H264_16s_C1I(p, c, nullptr, d, ps, ds, qp, 1);
    };
    const auto check = [&](auto call) {
        EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, src.data(), dst.data(), 0, -1));
        EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 20, nullptr, dst.data(), 20, 20));
        EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 20, src.data(), nullptr, 20, 20));
        for (int step : {3, 0, -20}) {
            EXPECT_EQ(kelStsStepErr, call(pred.data(), step, src.data(), dst.data(), 20, -1));
            EXPECT_EQ(kelStsStepErr, call(pred.data(), 20, src.data(), dst.data(), step, -1));
        }
        for (int qp : {-1, 52, INT32_MAX})
            EXPECT_EQ(kelStsRangeErr, call(pred.data(), 20, src.data(), dst.data(), 20, qp));
    };
    check(full);
    check(plain);
    EXPECT_TRUE(dst.untouched());
}

TEST(KelvaraResidual4x4, WideFormRefusesBadArguments) {
    const Given<Kel32s> src(Numbers(16, 9));
    Source<Kel16u> pred(4, 4, 20);
    DstBlock<Kel16u> dst(4, 4, 20);
    const auto call = [&](const Kel16u *p, int ps, const Kel32s *c, Kel16u *d, int ds, int qp, int depth) {
        return keliTransformQuantInvAddPred4x4_H264_32s_C1IR(p, ps, c, nullptr, d, ds, qp, 1, depth, nullptr);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, src.data(), dst.data(), 0, -1, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 20, nullptr, dst.data(), 20, 20, 8));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 20, src.data(), nullptr, 20, 20, 8));
    for (int step : {7, 0, -20}) {
        EXPECT_EQ(kelStsStepErr, call(pred.data(), step, src.data(), dst.data(), 20, -1, 8));
        EXPECT_EQ(kelStsStepErr, call(pred.data(), 20, src.data(), dst.data(), step, -1, 8));
    }
    for (int qp : {-1, 88, INT32_MAX})
        EXPECT_EQ(kelStsRangeErr, call(pred.data(), 20, src.data(), dst.data(), 20, qp, 8));
    for (int depth : {7, 15, 0, -1, 40})
        EXPECT_EQ(kelStsRangeErr, call(pred.data(), 20, src.data(), dst.data(), 20, 20, depth));
    EXPECT_TRUE(dst.untouched());
}

TEST(KelvaraResidual4x4, InPlaceFormRefusesBadArguments) {
    DstBlock<Kel16s> data(4, 4, 20);
    const auto call = keliDequantTransformResidual_H264_16s_C1I;
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, nullptr, 1, -1));
    for (int step : {7, 0, -20}) EXPECT_EQ(kelStsStepErr, call(data.data(), step, nullptr, 1, -1));
    for (int qp : {-1, 52, INT32_MAX}) EXPECT_EQ(kelStsRangeErr, call(data.data(), 20, nullptr, 1, qp));
    EXPECT_TRUE(data.untouched());
}

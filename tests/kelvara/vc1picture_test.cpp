// vc1picture_test.cpp - Hadamard sums and range mapping of VC-1, against their definitions.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

// ---- Hadamard --------------------------------------------------------------------------------

int onesOf(int number) {
    int ones = 0;
    for (; number; number /= 2) ones += number % 2;
    return ones;
}

template <class T>
long long coefficient(const Source<T> &src, int v, int u) {
    long long sum = 0;
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) sum += (onesOf(v & y) + onesOf(u & x)) % 2 ? -src(y, x) : src(y, x);
    }
    return sum;
}

template <class T>
void expectHadamard(KelStatus (*function)(const T *, int, Kel16s *, Kel32s *), const Pattern &pattern,
                    int step, int slack) {
    Source<T> src(8, 8, step, slack);
    src.fill(pattern);
    Destination<Kel16s> dst(64, slack);
    Destination<Kel32s> total(1, slack);
    ASSERT_EQ(kelStsNoErr, function(src.data(), step, dst.data(), total.data()));
    EXPECT_TRUE(dst.surroundingsIntact());
    EXPECT_TRUE(total.surroundingsIntact());
    long long sum = 0;
    for (int i = 0; i < 64; ++i) {
        const long long value = coefficient(src, i / 8, i % 8);
        ASSERT_EQ(dst[i], std::clamp<long long>(value, -32768, 32767)) << i;
        sum += std::llabs(value);
    }
    EXPECT_EQ(total[0], sum);
}

template <class T>
void expectHadamardRefuses(KelStatus (*function)(const T *, int, Kel16s *, Kel32s *)) {
    const int row = 8 * sizeof(T);
    Source<T> src(8, 8, row);
    Destination<Kel16s> dst(64);
    Destination<Kel32s> sum(1);
    EXPECT_EQ(kelStsNullPtrErr, function(nullptr, 0, dst.data(), sum.data()));
    EXPECT_EQ(kelStsNullPtrErr, function(src.data(), 0, nullptr, sum.data()));
    EXPECT_EQ(kelStsNullPtrErr, function(src.data(), 0, dst.data(), nullptr));
    for (int step : {row - 1, 0, -row})
        EXPECT_EQ(kelStsStepErr, function(src.data(), step, dst.data(), sum.data()));
    EXPECT_TRUE(dst.untouched());
    EXPECT_TRUE(sum.untouched());
}

// ---- range mapping -----------------------------------------------------------------------------

int mapped(int sample, int parameter) {
    const double value = std::floor(((sample - 128.0) * (parameter + 9.0) + 4.0) / 8.0) + 128.0;
    return static_cast<int>(std::clamp(value, 0.0, 255.0));
}

void expectMapped(int width, int height, int srcStep, int dstStep, int parameter) {
    Source<Kel8u> src(height, width, srcStep, 3);
    src.fill(noise(static_cast<unsigned>(width + height), 255));
    DstBlock<Kel8u> dst(height, width, dstStep, 1);
    ASSERT_EQ(kelStsNoErr, keliRangeMapping_VC1_8u_C1R(src.data(), srcStep, dst.data(), dstStep,
                                                       {width, height}, parameter));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < height; ++row) {
        for (int col = 0; col < width; ++col) ASSERT_EQ(dst(row, col), mapped(src(row, col), parameter));
    }
}

} // namespace

// ---- Hadamard sums --------------------------------------------------------------------------

TEST(KelvaraVc1Hadamard, SumsOfSamplesWithTheSignsOfEachCoefficient) {
    for (unsigned seed = 1; seed < 60; ++seed)
        expectHadamard<Kel8u>(keliHadamard8x8Sum_VC1_8u16s, noise(seed, 255), 8 + seed % 20, seed % 5);
    for (const Pattern &pattern : {constant(0), constant(255), checkerboard(255)})
        expectHadamard<Kel8u>(keliHadamard8x8Sum_VC1_8u16s, pattern, 16, 0);
}

TEST(KelvaraVc1Hadamard, SumsOfDifferencesWithTheSignsOfEachCoefficient) {
    for (unsigned seed = 1; seed < 60; ++seed) {
        const int limit = seed % 3 ? 255 : 32767;
        expectHadamard<Kel16s>(keliHadamard8x8Sum_VC1_16s, signedNoise(seed, -limit, limit), 16 + seed % 20,
                               seed % 5);
    }
}

TEST(KelvaraVc1Hadamard, SumIsOfTheValuesBeforeTheyAreLimited) {
    for (const Pattern &pattern : {constant(32767), constant(-32768), checkerboard(-32768)})
        expectHadamard<Kel16s>(keliHadamard8x8Sum_VC1_16s, pattern, 32, 0);
    Source<Kel16s> src(8, 8, 16);
    src.fill(constant(-32768));
    Destination<Kel16s> dst(64);
    Kel32s sum = 0;
    ASSERT_EQ(kelStsNoErr, keliHadamard8x8Sum_VC1_16s(src.data(), 16, dst.data(), &sum));
    EXPECT_EQ(dst[0], -32768);
    EXPECT_EQ(sum, 64 * 32768);
}

TEST(KelvaraVc1Hadamard, BadArgumentsAreRefused) {
    expectHadamardRefuses<Kel8u>(keliHadamard8x8Sum_VC1_8u16s);
    expectHadamardRefuses<Kel16s>(keliHadamard8x8Sum_VC1_16s);
}

// ---- range mapping ----------------------------------------------------------------------------

TEST(KelvaraVc1RangeMap, EverySampleByEveryParameter) {
    for (int parameter = 0; parameter < 8; ++parameter) {
        Kel8u src[256], dst[256];
        for (int i = 0; i < 256; ++i) src[i] = static_cast<Kel8u>(i);
        ASSERT_EQ(kelStsNoErr, keliRangeMapping_VC1_8u_C1R(src, 256, dst, 256, {256, 1}, parameter));
        for (int i = 0; i < 256; ++i) ASSERT_EQ(dst[i], mapped(i, parameter)) << parameter;
    }
}

// (100 - 128) * 9 + 4 = -248, an eighth of it -31; (130 - 128) * 16 / 8 = 4.
TEST(KelvaraVc1RangeMap, HasTheValuesWorkedOutByHand) {
    const Kel8u src[4] = {100, 130, 0, 255};
    Kel8u dst[4];
    ASSERT_EQ(kelStsNoErr, keliRangeMapping_VC1_8u_C1R(src, 4, dst, 4, {4, 1}, 0));
    EXPECT_EQ(dst[0], 97);
    ASSERT_EQ(kelStsNoErr, keliRangeMapping_VC1_8u_C1R(src, 4, dst, 4, {4, 1}, 7));
    EXPECT_EQ(dst[1], 132);
    EXPECT_EQ(dst[2], 0);
    EXPECT_EQ(dst[3], 255);
}

TEST(KelvaraVc1RangeMap, WritesTheAreaAlone) {
    int parameter = 0;
    for (int width : {1, 2, 7, 16, 18, 33}) {
        for (int height : {1, 3, 16, 18})
            expectMapped(width, height, width + height % 3, width + height % 5, parameter++ % 8);
    }
}

TEST(KelvaraVc1RangeMap, RowsThatOverlapAreMappedFromTheTopDown) {
    Source<Kel8u> src(1, 17 * 16 + 18, 17 * 16 + 18);
    src.fill(noise(1, 255));
    Destination<Kel8u> dst(17 * 16 + 18);
    ASSERT_EQ(kelStsNoErr, keliRangeMapping_VC1_8u_C1R(src.data(), 16, dst.data(), 16, {18, 18}, 3));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int i = 0; i < 17 * 16 + 18; ++i) ASSERT_EQ(dst[i], mapped(src(0, i), 3));
}

TEST(KelvaraVc1RangeMap, BadArgumentsAreRefused) {
    Source<Kel8u> src(16, 16, 16);
    DstBlock<Kel8u> dst(16, 16, 16);
    const auto call = keliRangeMapping_VC1_8u_C1R;
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, dst.data(), 0, {0, 0}, -1));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), 0, nullptr, 0, {0, 0}, -1));
    for (KeliSize size : {KeliSize{0, 16}, KeliSize{16, 0}, KeliSize{-16, 16}, KeliSize{16, -16}})
        EXPECT_EQ(kelStsSizeErr, call(src.data(), 0, dst.data(), 0, size, -1));
    for (int step : {0, -1, -16}) {
        EXPECT_EQ(kelStsStepErr, call(src.data(), step, dst.data(), 16, {16, 16}, -1));
        EXPECT_EQ(kelStsStepErr, call(src.data(), 16, dst.data(), step, {16, 16}, -1));
    }
    for (int parameter : {-1, 8, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, call(src.data(), 16, dst.data(), 16, {16, 16}, parameter));
    EXPECT_TRUE(dst.untouched());
}

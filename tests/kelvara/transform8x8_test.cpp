// transform8x8_test.cpp - the 8x8 luma transforms, against the equations of ITU-T H.264 8.5.13 and its
// matrix.

#include "blocktest.h"
#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Line = std::array<long long, 8>;
using Plane = std::array<Line, 8>; // by row

// floor(x / 2^n)
long long cut(long long x, int n) {
    return static_cast<long long>(std::floor(static_cast<double>(x) / (1 << n)));
}

// The equations of the clause, by its numbers.
Line inverseLine(const Line &in) {
    Line a, b;
    a[0] = in[0] + in[4];
    a[1] = -in[3] + in[5] - in[7] - cut(in[7], 1);
    a[2] = in[0] - in[4];
    a[3] = in[1] + in[7] - in[3] - cut(in[3], 1);
    a[4] = cut(in[2], 1) - in[6];
    a[5] = -in[1] + in[7] + in[5] + cut(in[5], 1);
    a[6] = in[2] + cut(in[6], 1);
    a[7] = in[3] + in[5] + in[1] + cut(in[1], 1);
    b[0] = a[0] + a[6];
    b[1] = a[1] + cut(a[7], 2);
    b[2] = a[2] + a[4];
    b[3] = a[3] + cut(a[5], 2);
    b[4] = a[2] - a[4];
    b[5] = cut(a[3], 2) - a[5];
    b[6] = a[0] - a[6];
    b[7] = a[7] - cut(a[1], 2);
    return {b[0] + b[7], b[2] + b[5], b[4] + b[3], b[6] + b[1],
            b[6] - b[1], b[4] - b[3], b[2] - b[5], b[0] - b[7]};
}

// An encoder's line: sums of mirrored samples give the even coefficients, differences the odd ones, with the
// halves and quarters of the inverse.
Line forwardLine(const Line &in) {
    long long s[4], d[4];
    for (int k = 0; k < 4; ++k) {
        s[k] = in[k] + in[7 - k];
        d[k] = in[k] - in[7 - k];
    }
    const long long p = d[0] + d[1] + d[2] + cut(d[0], 1), q = d[1] - d[2] + d[3] + cut(d[3], 1);
    const long long r = d[0] - d[2] - d[3] - cut(d[2], 1), t = d[0] - d[1] + d[3] - cut(d[1], 1);
    return {s[0] + s[1] + s[2] + s[3], p + cut(q, 2), s[0] - s[3] + cut(s[1] - s[2], 1), r + cut(t, 2),
            s[0] - s[1] - s[2] + s[3], t - cut(r, 2), cut(s[0] - s[3], 1) - s[1] + s[2], cut(p, 2) - q};
}

Plane transposed(const Plane &plane) {
    Plane result;
    for (int i = 0; i < 64; ++i) result[i % 8][i / 8] = plane[i / 8][i % 8];
    return result;
}

// Rows, then columns.
Plane transformed(Plane plane, Line (*line)(const Line &)) {
    for (Line &row : plane) row = line(row);
    plane = transposed(plane);
    for (Line &col : plane) col = line(col);
    return transposed(plane);
}

// 8 times the basis: row k holds the samples of coefficient k.
const int basis[8][8] = {
    {8, 8, 8, 8, 8, 8, 8, 8},         {12, 10, 6, 3, -3, -6, -10, -12}, {8, 4, -4, -8, -8, -4, 4, 8},
    {10, -3, -12, -6, 6, 12, 3, -10}, {8, -8, -8, 8, 8, -8, -8, 8},     {6, -12, 3, 10, -10, -3, 12, -6},
    {4, -8, 8, -4, -4, 8, -8, 4},     {3, -6, 10, -12, 12, -10, 6, -3},
};

// The sum of the squares of a basis function.
double norm(int k) {
    double sum = 0;
    for (int value : basis[k]) sum += value * value / 64.0;
    return sum;
}

template <class Block>
Plane planeOf(const Block &block) {
    Plane plane;
    for (int i = 0; i < 64; ++i) plane[i / 8][i % 8] = block[i];
    return plane;
}

// The coefficients as products with the basis, which is exact for samples that are multiples of 64.
Plane product(const Plane &samples) {
    Plane result;
    for (int v = 0; v < 8; ++v) {
        for (int u = 0; u < 8; ++u) {
            long long sum = 0;
            for (int i = 0; i < 64; ++i) sum += basis[v][i / 8] * basis[u][i % 8] * samples[i / 8][i % 8];
            result[v][u] = sum / 64;
        }
    }
    return result;
}

// The other way round.
Plane inverseProduct(const Plane &coeffs) {
    Plane result;
    for (int i = 0; i < 64; ++i) {
        long long sum = 0;
        for (int k = 0; k < 64; ++k) sum += basis[k / 8][i / 8] * basis[k % 8][i % 8] * coeffs[k / 8][k % 8];
        result[i / 8][i % 8] = sum / 64;
    }
    return result;
}

Plane forward32(const Values<Kel16s> &values) {
    const SourceBlock<Kel16s> src(values);
    Destination<Kel32s> dst(64);
    EXPECT_EQ(kelStsNoErr, keliTransformFwdLuma8x8_H264_16s32s_C1(src.data(), dst.data()));
    EXPECT_TRUE(dst.surroundingsIntact());
    return planeOf(dst);
}

// Calls the inverse; the result is to be that of the transform before its rounding.
void expectInverse(const Values<Kel32s> &coeffs, const Plane &exact, int bitDepth, int step, int slack) {
    const int white = (1 << bitDepth) - 1;
    const SourceBlock<Kel32s> src(coeffs, slack);
    Source<Kel16u> pred(8, 8, 16 + step, slack);
    pred.fill(noise(static_cast<unsigned>(bitDepth), white));
    DstBlock<Kel16u> dst(8, 8, 16 + 3 * step, slack);
    ASSERT_EQ(kelStsNoErr, keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(
                               pred.data(), pred.step(), src.data(), dst.data(), dst.step(), bitDepth));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int i = 0; i < 64; ++i) {
        const int row = i / 8, col = i % 8;
        const long long sum = pred(row, col) + cut(exact[row][col] + 32, 6);
        ASSERT_EQ(std::clamp<long long>(sum, 0, white), dst(row, col)) << bitDepth << " bits, " << i;
    }
}

} // namespace

// ---- inverse ---------------------------------------------------------------------------

// The coefficients of a stream lie within 7 bits more than a sample.
TEST(KelvaraTransform8x8, InverseFollowsTheEquations) {
    std::mt19937 generator(1);
    for (int bitDepth = 1; bitDepth <= 16; ++bitDepth) {
        for (int round = 0; round < 60; ++round) {
            const int limit = round % 3 == 0 ? 1 << (7 + bitDepth) : round % 3 == 1 ? 1 << bitDepth : 9;
            const auto coeffs = randomBlock<Kel32s>(generator, -limit, limit - 1);
            const int step = round % 4 == 0 ? 0 : 7 * round;
            expectInverse(coeffs, transformed(planeOf(coeffs), inverseLine), bitDepth, step, round % 5);
        }
    }
}

TEST(KelvaraTransform8x8, InverseIsTheProductWithTheBasisWhereNothingIsCutOff) {
    std::mt19937 generator(2);
    for (int round = 0; round < 50; ++round) {
        auto coeffs = randomBlock<Kel32s>(generator, -64, 63);
        for (Kel32s &coeff : coeffs) coeff *= 64;
        expectInverse(coeffs, inverseProduct(planeOf(coeffs)), 12, 0, 0);
    }
}

TEST(KelvaraTransform8x8, EachCoefficientHasItsBasisFunction) {
    for (int k = 0; k < 64; ++k) {
        Values<Kel32s> coeffs{};
        coeffs[k] = 64 * 64;
        expectInverse(coeffs, inverseProduct(planeOf(coeffs)), 9, 0, 0);
    }
}

// Halves that are cut off make the order of the passes visible: the clause takes the rows first.
TEST(KelvaraTransform8x8, InverseTakesTheRowsFirst) {
    std::mt19937 generator(3);
    int different = 0;
    for (int round = 0; round < 100; ++round) {
        const auto coeffs = randomBlock<Kel32s>(generator, -500, 500);
        const Plane rowsFirst = transformed(planeOf(coeffs), inverseLine);
        const Plane columnsFirst = transposed(transformed(transposed(planeOf(coeffs)), inverseLine));
        for (int i = 0; i < 64; ++i)
            different += cut(rowsFirst[i / 8][i % 8] + 32, 6) != cut(columnsFirst[i / 8][i % 8] + 32, 6);
        expectInverse(coeffs, rowsFirst, 16, 0, 0);
    }
    EXPECT_GT(different, 0);
}

TEST(KelvaraTransform8x8, CoefficientsOfNoStreamGiveSamplesOfTheDepth) {
    std::mt19937 generator(4);
    Values<Kel32s> highest, lowest, any;
    highest.fill(INT32_MAX);
    lowest.fill(INT32_MIN);
    for (Kel32s &coeff : any) coeff = static_cast<Kel32s>(generator());
    for (const Values<Kel32s> &coeffs : {highest, lowest, any}) {
        const SourceBlock<Kel32s> src(coeffs);
        Source<Kel16u> pred(8, 8, 16);
        pred.fill(noise(5, 65535));
        for (int bitDepth : {1, 8, 16}) {
            DstBlock<Kel16u> dst(8, 8, 16);
            ASSERT_EQ(kelStsNoErr, keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(pred.data(), 16, src.data(),
                                                                                  dst.data(), 16, bitDepth));
            for (int i = 0; i < 64; ++i) EXPECT_LT(dst(i / 8, i % 8), 1 << bitDepth);
        }
    }
}

TEST(KelvaraTransform8x8, InverseRefusesBadArguments) {
    const SourceBlock<Kel32s> src(Values<Kel32s>{});
    Source<Kel16u> pred(8, 8, 40);
    DstBlock<Kel16u> dst(8, 8, 40);
    const auto call = keliTransformInvAddPredLuma8x8_H264_32s16u_C1R;
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, src.data(), dst.data(), 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 40, nullptr, dst.data(), 40, 8));
    EXPECT_EQ(kelStsNullPtrErr, call(pred.data(), 40, src.data(), nullptr, 40, 8));
    for (int step : {15, 0, -40}) {
        EXPECT_EQ(kelStsStepErr, call(pred.data(), step, src.data(), dst.data(), 40, 0));
        EXPECT_EQ(kelStsStepErr, call(pred.data(), 40, src.data(), dst.data(), step, 0));
    }
    for (int bitDepth : {-1, 0, 17, 32, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, call(pred.data(), 40, src.data(), dst.data(), 40, bitDepth)) << bitDepth;
    EXPECT_TRUE(dst.untouched());
}

// ---- forward ---------------------------------------------------------------------------

TEST(KelvaraTransform8x8, ForwardIsTheProductWithTheBasisWhereNothingIsCutOff) {
    std::mt19937 generator(6);
    for (int round = 0; round < 100; ++round) {
        auto values = randomBlock<Kel16s>(generator, -512, 511);
        for (Kel16s &value : values) value = static_cast<Kel16s>(value * 64);
        EXPECT_EQ(product(planeOf(values)), forward32(values));
    }
}

TEST(KelvaraTransform8x8, ForwardTakesTheRowsThenTheColumns) {
    std::mt19937 generator(7);
    for (int limit : {1, 3, 255, 32767}) {
        for (int round = 0; round < 100; ++round) {
            const auto values = randomBlock<Kel16s>(generator, -limit - 1, limit);
            EXPECT_EQ(transformed(planeOf(values), forwardLine), forward32(values));
        }
    }
}

TEST(KelvaraTransform8x8, NarrowFormIsTheWideOneWithinItsRange) {
    std::mt19937 generator(8);
    int limited = 0;
    for (int limit : {255, 32767}) {
        for (int offset : {0, 1, 2, 5}) {
            const auto values = randomBlock<Kel16s>(generator, -limit, limit);
            const SourceBlock<Kel16s> src(values, offset);
            Destination<Kel16s> dst(64, offset);
            ASSERT_EQ(kelStsNoErr, keliTransformFwdLuma8x8_H264_16s_C1(src.data(), dst.data()));
            EXPECT_TRUE(dst.surroundingsIntact());
            const Plane wide = forward32(values);
            for (int i = 0; i < 64; ++i) {
                const long long coeff = wide[i / 8][i % 8];
                EXPECT_EQ(std::clamp<long long>(coeff, -32768, 32767), dst[i]) << i;
                if (coeff != dst[i]) ++limited;
                if (limit == 255) {
                    EXPECT_EQ(coeff, dst[i]) << i;
                }
            }
        }
    }
    EXPECT_GT(limited, 0);
}

TEST(KelvaraTransform8x8, InverseOfTheForwardTransformGivesTheDifferencesBack) {
    std::mt19937 generator(9);
    for (int round = 0; round < 100; ++round) {
        const auto values = randomBlock<Kel16s>(generator, -255, 255);
        const Plane coeffs = forward32(values);
        Values<Kel32s> scaled;
        for (int i = 0; i < 64; ++i) {
            const double weight = 64 / (norm(i / 8) * norm(i % 8));
            scaled[i] = static_cast<Kel32s>(std::lround(coeffs[i / 8][i % 8] * weight));
        }
        const SourceBlock<Kel32s> src(scaled);
        Source<Kel16u> grey(8, 8, 16);
        grey.fill(constant(512));
        DstBlock<Kel16u> dst(8, 8, 16);
        ASSERT_EQ(kelStsNoErr, keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(grey.data(), 16, src.data(),
                                                                              dst.data(), 16, 10));
        for (int i = 0; i < 64; ++i) EXPECT_NEAR(512 + values[i], dst(i / 8, i % 8), 1) << i;
    }
}

TEST(KelvaraTransform8x8, ForwardRefusesNullPointers) {
    const SourceBlock<Kel16s> src(Values<Kel16s>{});
    Destination<Kel16s> narrow(64);
    Destination<Kel32s> wide(64);
    EXPECT_EQ(kelStsNullPtrErr, keliTransformFwdLuma8x8_H264_16s_C1(nullptr, narrow.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliTransformFwdLuma8x8_H264_16s_C1(src.data(), nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliTransformFwdLuma8x8_H264_16s32s_C1(nullptr, wide.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliTransformFwdLuma8x8_H264_16s32s_C1(src.data(), nullptr));
    EXPECT_TRUE(narrow.untouched());
    EXPECT_TRUE(wide.untouched());
}

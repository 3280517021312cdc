// h263sampling_test.cpp - up- and downsampling of H.263, against models sample by sample.

#include "kelvc.h"
#include "planemodel.h"

#include <gtest/gtest.h>

namespace {

using Bytes = DstBlock<Kel8u>;

void compareUpsampling(KeliSize size, const Pattern &pattern, int rounding, int fillColor) {
    const auto src = planeOf(size, size.width % 5, pattern);
    Bytes dst(2 * size.height, 2 * size.width, 2 * size.width + size.height % 4);
    ASSERT_EQ(kelStsNoErr, keliUpsampleFour_H263_8u_C1R(src->data(), src->step(), size, dst.data(),
                                                        dst.step(), rounding, fillColor));
    EXPECT_TRUE(dst.surroundingsIntact());
    const View view = {*src, size, fillColor < 0 ? std::optional<int>() : fillColor};
    for (int row = 0; row < 2 * size.height; ++row) {
        for (int col = 0; col < 2 * size.width; ++col)
            ASSERT_EQ(interpolated(view, (row - 0.5) / 2, (col - 0.5) / 2, rounding), dst(row, col))
                << row << ", " << col;
    }
}

// A sample between the row or column a and its neighbour b by the figures of the annex: inside a quarter of b
// counts, at the border there is no b.
template <class At>
int interpolatedTwice(const At &at, int row, int col, KeliSize size, double (*roundOff)(double)) {
    const int y = row / 2, x = col / 2, y2 = y + (row % 2 ? 1 : -1), x2 = x + (col % 2 ? 1 : -1);
    const bool above = y2 >= 0 && y2 < size.height, beside = x2 >= 0 && x2 < size.width;
    const double a = at(y, x);
    if (!above && !beside) return static_cast<int>(a);
    if (!above) return static_cast<int>(roundOff((3 * a + at(y, x2) + 2) / 4));
    if (!beside) return static_cast<int>(roundOff((3 * a + at(y2, x) + 2) / 4));
    return static_cast<int>(roundOff((9 * a + 3 * at(y, x2) + 3 * at(y2, x) + at(y2, x2) + 8) / 16));
}

double floorOf(double value) {
    return std::floor(value);
}
double truncOf(double value) {
    return std::trunc(value);
}

int spatial(const Plane &src, int row, int col, KeliSize size, int interpolation) {
    const bool wide = interpolation != 2, high = interpolation != 1;
    if (wide && high) return interpolatedTwice(src, row, col, size, floorOf);
    const int last = (wide ? size.width : size.height) - 1, i = wide ? col : row;
    const int near = i / 2, far = std::clamp(near + (i % 2 ? 1 : -1), 0, last);
    const int a = wide ? src(row, near) : src(near, col), b = wide ? src(row, far) : src(far, col);
    return static_cast<int>(std::floor(0.75 * a + 0.25 * b + 0.5));
}

void compareSpatial(KeliSize size, const Pattern &pattern, int interpolation) {
    const auto src = planeOf(size, size.width % 5, pattern);
    const int w = size.width * (interpolation != 2 ? 2 : 1), h = size.height * (interpolation != 1 ? 2 : 1);
    Bytes dst(h, w, w + size.height % 4);
    ASSERT_EQ(kelStsNoErr, keliSpatialInterpolation_H263_8u_C1R(src->data(), src->step(), size, dst.data(),
                                                                dst.step(), interpolation));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col)
            ASSERT_EQ(spatial(*src, row, col, size, interpolation), dst(row, col)) << row << ", " << col;
    }
}

void compareError(const Pattern &pattern, int step, int slack) {
    Source<Kel16s> src(8, 8, 16 + step, slack);
    src.fill(pattern);
    DstBlock<Kel16s> dst(16, 16, 32 + step, slack);
    ASSERT_EQ(kelStsNoErr, keliUpsampleFour8x8_H263_16s_C1R(src.data(), src.step(), dst.data(), dst.step()));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < 16; ++row) {
        for (int col = 0; col < 16; ++col)
            ASSERT_EQ(interpolatedTwice(src, row, col, {8, 8}, truncOf), dst(row, col)) << row << ", " << col;
    }
}

const KeliSize sizes[] = {{1, 1}, {1, 5}, {6, 1}, {2, 2}, {8, 8}, {17, 3}, {40, 33}};
const Pattern patterns[] = {noise(1, 255), noise(2, 255), constant(255), constant(0), checkerboard(255)};

} // namespace

// ---- factor of four --------------------------------------------------------------------------------

TEST(KelvaraH263, UpsamplingByFourEqualsTheModel) {
    for (KeliSize size : sizes) {
        for (const Pattern &pattern : patterns) {
            for (int rounding : {0, 1}) {
                for (int fillColor : {-1, 0, 64, 255}) {
                    SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << ", rounding "
                                                    << rounding << ", color " << fillColor);
                    ASSERT_NO_FATAL_FAILURE(compareUpsampling(size, pattern, rounding, fillColor));
                }
            }
        }
    }
}

TEST(KelvaraH263, DownsamplingByFourEqualsTheModel) {
    for (KeliSize size : {KeliSize{2, 2}, {2, 8}, {16, 16}, {34, 10}}) {
        for (const Pattern &pattern : patterns) {
            for (int rounding : {0, 1}) {
                const auto src = planeOf(size, size.height % 3, pattern);
                Bytes dst(size.height / 2, size.width / 2, size.width / 2 + 1);
                ASSERT_EQ(kelStsNoErr, keliDownsampleFour_H263_8u_C1R(src->data(), src->step(), size,
                                                                      dst.data(), dst.step(), rounding));
                EXPECT_TRUE(dst.surroundingsIntact());
                const View view = {*src, size, {}};
                for (int row = 0; row < size.height / 2; ++row) {
                    for (int col = 0; col < size.width / 2; ++col)
                        ASSERT_EQ(interpolated(view, 2 * row + 0.5, 2 * col + 0.5, rounding), dst(row, col));
                }
            }
        }
    }
}

TEST(KelvaraH263, RoundingTypeDecidesWhereHalvesGo) {
    const Kel8u src[] = {1, 1, 0, 0}; // the mean is a half
    Kel8u dst[1];
    ASSERT_EQ(kelStsNoErr, keliDownsampleFour_H263_8u_C1R(src, 2, {2, 2}, dst, 1, 0));
    EXPECT_EQ(0, dst[0]);
    ASSERT_EQ(kelStsNoErr, keliDownsampleFour_H263_8u_C1R(src, 2, {2, 2}, dst, 1, 1));
    EXPECT_EQ(1, dst[0]);
}

TEST(KelvaraH263, FactorOfFourFormsCheckTheirArguments) {
    const auto plane = planeOf({8, 8}, 0, noise(1, 255));
    const Kel8u *src = plane->data();
    Bytes dst(16, 16, 16);
    Kel8u *d = dst.data();
    EXPECT_EQ(kelStsNullPtrErr, keliUpsampleFour_H263_8u_C1R(nullptr, 8, {8, 8}, d, 16, 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliUpsampleFour_H263_8u_C1R(src, 8, {0, 8}, nullptr, 16, 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliDownsampleFour_H263_8u_C1R(nullptr, 8, {8, 8}, d, 4, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliDownsampleFour_H263_8u_C1R(src, 8, {0, 8}, nullptr, 4, 0));
    for (KeliSize size : {KeliSize{0, 8}, {8, 0}, {-8, 8}}) {
        EXPECT_EQ(kelStsSizeErr, keliUpsampleFour_H263_8u_C1R(src, 0, size, d, 16, 0, 0));
        EXPECT_EQ(kelStsSizeErr, keliDownsampleFour_H263_8u_C1R(src, 0, size, d, 4, 0));
    }
    for (KeliSize size : {KeliSize{1, 8}, {8, 1}, {7, 8}, {8, 7}})
        EXPECT_EQ(kelStsSizeErr, keliDownsampleFour_H263_8u_C1R(src, 8, size, d, 4, 0));
    EXPECT_EQ(kelStsStepErr, keliUpsampleFour_H263_8u_C1R(src, 7, {8, 8}, d, 16, 9, 0));
    EXPECT_EQ(kelStsStepErr, keliUpsampleFour_H263_8u_C1R(src, 8, {8, 8}, d, 15, 9, 0));
    EXPECT_EQ(kelStsStepErr, keliUpsampleFour_H263_8u_C1R(src, 8, {1 << 30, 8}, d, 15, 0, 0));
    EXPECT_EQ(kelStsStepErr, keliDownsampleFour_H263_8u_C1R(src, 7, {8, 8}, d, 4, 9));
    EXPECT_EQ(kelStsStepErr, keliDownsampleFour_H263_8u_C1R(src, 8, {8, 8}, d, 3, 9));
    for (int bad : {-1, 2}) {
        EXPECT_EQ(kelStsRangeErr, keliUpsampleFour_H263_8u_C1R(src, 8, {8, 8}, d, 16, bad, 0));
        EXPECT_EQ(kelStsRangeErr, keliDownsampleFour_H263_8u_C1R(src, 8, {8, 8}, d, 4, bad));
    }
    for (int color : {-2, 256})
        EXPECT_EQ(kelStsRangeErr, keliUpsampleFour_H263_8u_C1R(src, 8, {8, 8}, d, 16, 0, color));
    EXPECT_TRUE(dst.untouched());
}

// ---- spatial scalability -------------------------------------------------------------------------------

TEST(KelvaraH263, SpatialInterpolationEqualsTheModel) {
    for (KeliSize size : sizes) {
        for (const Pattern &pattern : patterns) {
            for (int interpolation : {1, 2, 3}) {
                SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << ", " << interpolation);
                ASSERT_NO_FATAL_FAILURE(compareSpatial(size, pattern, interpolation));
            }
        }
    }
}

TEST(KelvaraH263, SpatialInterpolationChecksItsArguments) {
    const auto plane = planeOf({8, 8}, 0, noise(1, 255));
    const Kel8u *src = plane->data();
    Bytes dst(16, 16, 16);
    Kel8u *d = dst.data();
    EXPECT_EQ(kelStsNullPtrErr, keliSpatialInterpolation_H263_8u_C1R(nullptr, 8, {8, 8}, d, 16, 3));
    EXPECT_EQ(kelStsNullPtrErr, keliSpatialInterpolation_H263_8u_C1R(src, 8, {0, 8}, nullptr, 16, 3));
    for (KeliSize size : {KeliSize{0, 8}, {8, 0}, {8, -8}})
        EXPECT_EQ(kelStsSizeErr, keliSpatialInterpolation_H263_8u_C1R(src, 0, size, d, 16, 3));
    for (int interpolation : {1, 2, 3}) {
        const int width = interpolation == 2 ? 8 : 16;
        EXPECT_EQ(kelStsStepErr,
                  keliSpatialInterpolation_H263_8u_C1R(src, 7, {8, 8}, d, width, interpolation));
        EXPECT_EQ(kelStsStepErr,
                  keliSpatialInterpolation_H263_8u_C1R(src, 8, {8, 8}, d, width - 1, interpolation));
    }
    for (int interpolation : {0, -1, 4, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, keliSpatialInterpolation_H263_8u_C1R(src, 8, {8, 8}, d, 16, interpolation));
    EXPECT_TRUE(dst.untouched());
}

// ---- reduced resolution -----------------------------------------------------------------------------------

TEST(KelvaraH263, UpsamplingOfAPredictionErrorEqualsTheModel) {
    const Pattern errors[] = {signedNoise(1, -255, 255),
                              signedNoise(2, -2, 2),
                              signedNoise(3, -32768, 32767),
                              constant(-1),
                              constant(32767),
                              constant(-32768),
                              checkerboard(-255)};
    for (const Pattern &pattern : errors) {
        for (int step : {0, 1, 608}) ASSERT_NO_FATAL_FAILURE(compareError(pattern, step, step % 7));
    }
}

TEST(KelvaraH263, QuotientsOfAPredictionErrorAreCutOffTowardsZero) {
    Source<Kel16s> src(8, 8, 16);
    src.fill(constant(-1)); // (-16 + 8) / 16 inside, (-4 + 2) / 4 at the borders, -1 in the corners
    DstBlock<Kel16s> dst(16, 16, 32);
    ASSERT_EQ(kelStsNoErr, keliUpsampleFour8x8_H263_16s_C1R(src.data(), 16, dst.data(), 32));
    EXPECT_EQ(0, dst(5, 5));
    EXPECT_EQ(0, dst(0, 5));
    EXPECT_EQ(-1, dst(0, 15));
}

TEST(KelvaraH263, UpsamplingOfAPredictionErrorChecksItsArguments) {
    Source<Kel16s> src(8, 8, 16);
    src.fill(constant(3));
    DstBlock<Kel16s> dst(16, 16, 32);
    EXPECT_EQ(kelStsNullPtrErr, keliUpsampleFour8x8_H263_16s_C1R(nullptr, 16, dst.data(), 32));
    EXPECT_EQ(kelStsNullPtrErr, keliUpsampleFour8x8_H263_16s_C1R(src.data(), 16, nullptr, 32));
    EXPECT_EQ(kelStsStepErr, keliUpsampleFour8x8_H263_16s_C1R(src.data(), 15, dst.data(), 32));
    EXPECT_EQ(kelStsStepErr, keliUpsampleFour8x8_H263_16s_C1R(src.data(), 16, dst.data(), 31));
    EXPECT_TRUE(dst.untouched());
}

// h263resampling_test.cpp - reference picture resampling of H.263, against a model sample by sample.

#include "kelvc.h"
#include "planemodel.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using Bytes = DstBlock<Kel8u>;

// ---- the model of a warp -------------------------------------------------------------------

using Params = std::array<int, 8>;

double powerOfTwoFrom(int size) {
    return std::exp2(std::ceil(std::log2(size)));
}

// One component of the displacement in luma samples, with corners moved out to powers of two and rounded
// there to 1/32, halves away from zero.
class Displacement {
public:
    Displacement(const int *w, double unit, int moreRight, int moreDown, KeliSize size) : m_size(size) {
        m_corner[0][0] = unit * w[0];
        m_corner[0][1] = m_corner[0][0] + unit * w[2] + moreRight;
        m_corner[1][0] = m_corner[0][0] + unit * w[4] + moreDown;
        m_corner[1][1] = m_corner[0][1] + m_corner[1][0] - m_corner[0][0] + unit * w[6];
        const double w2 = powerOfTwoFrom(size.width), h2 = powerOfTwoFrom(size.height);
        for (int y = 0; y < 2; ++y) {
            for (int x = 0; x < 2; ++x)
                m_virtual[y][x] =
                    std::round(32 * between(m_corner, w2 / size.width * x, h2 / size.height * y)) / 32;
        }
    }

    // Bilinear between the corners of the picture itself.
    double exact(double x, double y) const { return between(m_corner, x / m_size.width, y / m_size.height); }
    double rounded(double x, double y) const {
        return between(m_virtual, x / powerOfTwoFrom(m_size.width), y / powerOfTwoFrom(m_size.height));
    }

private:
    static double between(const double (&corner)[2][2], double x, double y) {
        return (1 - y) * ((1 - x) * corner[0][0] + x * corner[0][1]) +
               y * ((1 - x) * corner[1][0] + x * corner[1][1]);
    }

    KeliSize m_size;
    double m_corner[2][2], m_virtual[2][2];
};

struct Warp {
    Warp(const Params &w, int wda, KeliSize src, KeliSize dst)
        : x(w.data(), wda ? 1 / 16.0 : 0.5, src.width - dst.width, 0, dst),
          y(w.data() + 1, wda ? 1 / 16.0 : 0.5, 0, src.height - dst.height, dst) {}

    Displacement x, y;
};

// Where a sample of a plane comes from, in samples, to 1/16.
double place(const Displacement &displacement, int along, int row, int col, int sampling) {
    const double v = displacement.rounded((col + 0.5) * sampling, (row + 0.5) * sampling) / sampling;
    return along + std::floor(16 * v + 0.5) / 16;
}

std::optional<int> colorOf(int fillMode, int fillColor, bool luma) {
    switch (fillMode) {
        case 0:
            return fillColor;
        case 1:
            return luma ? 16 : 128;
        case 2:
            return 128;
        default:
            return {};
    }
}

struct Resampling {
    KeliSize src, dst;
    Params params;
    int wda, rounding, fillMode, fillColor;
};

KeliSize half(KeliSize size) {
    return {size.width / 2, size.height / 2};
}

// Source and destination planes of a resampling.
struct Planes {
    explicit Planes(const Resampling &r, const Pattern &pattern, int step = 5) {
        for (int i = 0; i < 3; ++i) {
            const KeliSize srcSize = i ? half(r.src) : r.src, dstSize = i ? half(r.dst) : r.dst;
            src[i] = planeOf(srcSize, step + i, pattern, i);
            dst[i] = std::make_unique<DstBlock<Kel8u>>(dstSize.height, dstSize.width,
                                                       dstSize.width + step + 3 * i);
        }
    }

    KelStatus run(const Resampling &r) {
        return keliResample_H263_8u_P3R(src[0]->data(), src[0]->step(), src[1]->data(), src[1]->step(),
                                        src[2]->data(), src[2]->step(), r.src, dst[0]->data(), dst[0]->step(),
                                        dst[1]->data(), dst[1]->step(), dst[2]->data(), dst[2]->step(), r.dst,
                                        r.params.data(), r.wda, r.rounding, r.fillMode, r.fillColor);
    }

    std::unique_ptr<Plane> src[3];
    std::unique_ptr<DstBlock<Kel8u>> dst[3];
};

void compare(const Resampling &r, const Pattern &pattern) {
    Planes planes(r, pattern);
    ASSERT_EQ(kelStsNoErr, planes.run(r));
    const Warp warp(r.params, r.wda, r.src, r.dst);
    for (int i = 0; i < 3; ++i) {
        const int sampling = i ? 2 : 1;
        const View src = {*planes.src[i], i ? half(r.src) : r.src, colorOf(r.fillMode, r.fillColor, i == 0)};
        DstBlock<Kel8u> &dst = *planes.dst[i];
        EXPECT_TRUE(dst.surroundingsIntact());
        for (int row = 0; row < r.dst.height / sampling; ++row) {
            for (int col = 0; col < r.dst.width / sampling; ++col) {
                const double y = place(warp.y, row, row, col, sampling);
                const double x = place(warp.x, col, row, col, sampling);
                ASSERT_EQ(interpolated(src, y, x, r.rounding), dst(row, col))
                    << "plane " << i << ": " << row << ", " << col;
            }
        }
    }
}

const Params none = {};

// Parameters up to `most` each way.
Params randomParams(unsigned seed, int most) {
    Params params;
    const Pattern draw = noise(seed, 2 * most);
    for (int &w : params) w = draw(0, 0) - most;
    return params;
}

} // namespace

// ---- resampling --------------------------------------------------------------------------------

TEST(KelvaraH263, ResamplingEqualsTheModel) {
    const KeliSize sources[] = {{64, 64}, {52, 36}, {16, 16}, {20, 68}};
    const KeliSize destinations[] = {{64, 64}, {36, 28}, {4, 4}, {32, 48}};
    unsigned seed = 1;
    for (KeliSize src : sources) {
        for (KeliSize dst : destinations) {
            for (int code = 0; code < 16; ++code, ++seed) {
                const int wda = code & 1, rounding = code >> 1 & 1, fillMode = code >> 2;
                const Resampling r = {src,      dst, randomParams(seed, wda ? 100 : 15), wda, rounding,
                                      fillMode, 64};
                SCOPED_TRACE(testing::Message() << "seed " << seed << ", code " << code);
                ASSERT_NO_FATAL_FAILURE(compare(r, noise(seed, 255)));
            }
        }
    }
}

TEST(KelvaraH263, ResamplingEqualsTheModelForTheGreatestParameters) {
    for (unsigned seed = 1; seed <= 16; ++seed) {
        Params params = randomParams(seed, 1);
        for (int &w : params) w *= 4095;
        const Resampling r = {{32, 16}, {28, 20}, params, static_cast<int>(seed % 2), 1, 3, 0};
        ASSERT_NO_FATAL_FAILURE(compare(r, noise(seed, 255))) << seed;
    }
}

TEST(KelvaraH263, WithoutAWarpAPictureOfTheSameSizeIsACopy) {
    for (int rounding : {0, 1}) {
        const Resampling r = {{44, 36}, {44, 36}, none, 1, rounding, 0, 255};
        Planes planes(r, noise(3, 255));
        ASSERT_EQ(kelStsNoErr, planes.run(r));
        for (int i = 0; i < 3; ++i) {
            for (int row = 0; row < 36 / (i ? 2 : 1); ++row) {
                for (int col = 0; col < 44 / (i ? 2 : 1); ++col)
                    ASSERT_EQ((*planes.src[i])(row, col), (*planes.dst[i])(row, col));
            }
        }
    }
}

// Two samples to the right and four down, in both accuracies; chroma moves by half of that.
TEST(KelvaraH263, ADisplacementOfAllCornersMovesThePicture) {
    for (int wda : {0, 1}) {
        const int sample = wda ? 16 : 2;
        const Resampling r = {{32, 32}, {32, 32}, {2 * sample, 4 * sample}, wda, 0, 0, 77};
        Planes planes(r, noise(3, 255));
        ASSERT_EQ(kelStsNoErr, planes.run(r));
        for (int row = 0; row < 32; ++row) {
            for (int col = 0; col < 32; ++col) {
                const bool inside = row + 4 < 32 && col + 2 < 32;
                ASSERT_EQ(inside ? (*planes.src[0])(row + 4, col + 2) : 77, (*planes.dst[0])(row, col));
            }
        }
        for (int row = 0; row < 14; ++row) {
            for (int col = 0; col < 15; ++col)
                ASSERT_EQ((*planes.src[1])(row + 2, col + 1), (*planes.dst[1])(row, col));
        }
    }
}

// A ramp shows where its samples come from: next to the place that the bilinear motion of the four corners
// tells, whose accuracy is limited only by the rounding of corners, places and samples.
TEST(KelvaraH263, AWarpFollowsTheVectorsOfTheFourCorners) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const KeliSize size = {176, 144};
        const Resampling r = {size, size, randomParams(seed, 160), 1, 1, 3, 0};
        const Warp warp(r.params, 1, size, size);
        for (bool across : {true, false}) {
            Planes planes(r, [=](int row, int col) { return across ? col : row; });
            ASSERT_EQ(kelStsNoErr, planes.run(r));
            for (int row = 0; row < size.height; ++row) {
                for (int col = 0; col < size.width; ++col) {
                    const double v = (across ? warp.x : warp.y).exact(col + 0.5, row + 0.5);
                    const double from = (across ? col : row) + v;
                    const double most = (across ? size.width : size.height) - 1;
                    ASSERT_NEAR(std::clamp(from, 0.0, most), (*planes.dst[0])(row, col), 0.6);
                }
            }
        }
    }
}

TEST(KelvaraH263, FillModesColorWhatIsOutside) {
    const struct {
        int mode, luma, chroma;
    } fills[] = {{0, 99, 99}, {1, 16, 128}, {2, 128, 128}, {3, 200, 200}};
    for (const auto &fill : fills) {
        const Resampling r = {{16, 16}, {16, 16}, {200, 200}, 0, 0, fill.mode, 99};
        Planes planes(r, constant(200));
        ASSERT_EQ(kelStsNoErr, planes.run(r));
        EXPECT_EQ(fill.luma, (*planes.dst[0])(0, 0)) << fill.mode;
        EXPECT_EQ(fill.chroma, (*planes.dst[1])(7, 7)) << fill.mode;
        EXPECT_EQ(fill.chroma, (*planes.dst[2])(3, 0)) << fill.mode;
    }
}

TEST(KelvaraH263, ResamplingToTwiceOrHalfTheSizeIsTheFactorOfFourForm) {
    const KeliSize small = {28, 20}, large = {56, 40};
    for (int rounding : {0, 1}) {
        for (int fillMode : {0, 3}) {
            const Resampling r = {small, large, none, 0, rounding, fillMode, 64};
            Planes planes(r, noise(4, 255));
            ASSERT_EQ(kelStsNoErr, planes.run(r));
            Bytes up(large.height, large.width, large.width);
            ASSERT_EQ(kelStsNoErr,
                      keliUpsampleFour_H263_8u_C1R(planes.src[0]->data(), planes.src[0]->step(), small,
                                                   up.data(), large.width, rounding, fillMode ? -1 : 64));
            for (int row = 0; row < large.height; ++row) {
                for (int col = 0; col < large.width; ++col)
                    ASSERT_EQ(up(row, col), (*planes.dst[0])(row, col));
            }
        }
        const Resampling r = {large, small, none, 0, rounding, 0, 64};
        Planes planes(r, noise(4, 255));
        ASSERT_EQ(kelStsNoErr, planes.run(r));
        Bytes down(small.height, small.width, small.width);
        ASSERT_EQ(kelStsNoErr, keliDownsampleFour_H263_8u_C1R(planes.src[0]->data(), planes.src[0]->step(),
                                                              large, down.data(), small.width, rounding));
        for (int row = 0; row < small.height; ++row) {
            for (int col = 0; col < small.width; ++col) ASSERT_EQ(down(row, col), (*planes.dst[0])(row, col));
        }
    }
}

TEST(KelvaraH263, ThePlaceOfWarpParametersIsAnyByte) {
    const Resampling r = {{16, 16}, {16, 16}, {2, 0}, 0, 0, 3, 0};
    Planes planes(r, noise(4, 255));
    std::vector<char> bytes(1 + sizeof r.params);
    std::memcpy(bytes.data() + 1, r.params.data(), sizeof r.params);
    Plane &y = *planes.src[0], &cb = *planes.src[1], &cr = *planes.src[2];
    ASSERT_EQ(kelStsNoErr,
              keliResample_H263_8u_P3R(y.data(), y.step(), cb.data(), cb.step(), cr.data(), cr.step(), r.src,
                                       planes.dst[0]->data(), planes.dst[0]->step(), planes.dst[1]->data(),
                                       planes.dst[1]->step(), planes.dst[2]->data(), planes.dst[2]->step(),
                                       r.dst, reinterpret_cast<const int *>(bytes.data() + 1), 0, 0, 3, 0));
    EXPECT_EQ(y(3, 5), (*planes.dst[0])(3, 4));
}

namespace {

void expectRefused(KelStatus status, const Resampling &r) {
    Planes planes({{16, 16}, {16, 16}, none, 0, 0, 0, 0}, noise(1, 255), 0);
    EXPECT_EQ(status, planes.run(r));
    for (const auto &dst : planes.dst) EXPECT_TRUE(dst->untouched());
}

} // namespace

TEST(KelvaraH263, ResamplingChecksItsSizesStepsAndRanges) {
    const Resampling good = {{16, 16}, {16, 16}, none, 0, 0, 0, 0};
    for (KeliSize size : {KeliSize{0, 16}, {16, 0}, {-16, 16}, {18, 16}, {16, 14}, {2052, 16}, {16, 1156}}) {
        Resampling r = good;
        r.src = size;
        r.wda = 7;
        expectRefused(kelStsSizeErr, r);
        r = good;
        r.dst = size;
        expectRefused(kelStsSizeErr, r);
    }
    Resampling wide = good;
    wide.src.width = 20;
    wide.wda = 7;
    expectRefused(kelStsStepErr, wide);
    wide.src.width = 16;
    wide.dst.width = 20;
    expectRefused(kelStsStepErr, wide);
    for (int bad : {-1, 2, 4, 256, 1 << 30}) {
        Resampling r = good;
        r.wda = bad;
        expectRefused(kelStsRangeErr, r);
        r = good;
        r.rounding = bad;
        expectRefused(kelStsRangeErr, r);
        r = good;
        (bad == 2 || bad == 4 ? r.fillMode : r.fillColor) = bad == 2 ? -1 : bad;
        expectRefused(kelStsRangeErr, r);
    }
    for (int i = 0; i < 8; ++i) {
        for (int w : {-4096, 4096}) {
            Resampling r = good;
            r.params[i] = w;
            expectRefused(kelStsRangeErr, r);
        }
    }
}

TEST(KelvaraH263, ResamplingChecksEveryPointerAndStep) {
    const KeliSize size = {16, 16}, none16 = {0, 0};
    const auto src = planeOf(size, 0, noise(1, 255));
    Bytes dst(16, 16, 16);
    const int warp[8] = {};
    const auto call = [&](int nullAt, int narrowAt, KeliSize srcSize) {
        const Kel8u *s[3] = {src->data(), src->data(), src->data()};
        Kel8u *d[3] = {dst.data(), dst.data(), dst.data()};
        int steps[6] = {16, 16, 8, 8, 8, 8};
        if (nullAt >= 0 && nullAt < 6) (nullAt % 2 ? d[nullAt / 2] = nullptr : s[nullAt / 2] = nullptr);
        if (narrowAt >= 0) --steps[narrowAt];
        return keliResample_H263_8u_P3R(s[0], steps[0], s[1], steps[2], s[2], steps[4], srcSize, d[0],
                                        steps[1], d[1], steps[3], d[2], steps[5], size,
                                        nullAt == 6 ? nullptr : warp, 9, 0, 0, 0);
    };
    for (int i = 0; i < 7; ++i) EXPECT_EQ(kelStsNullPtrErr, call(i, -1, none16)) << i;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(kelStsStepErr, call(-1, i, size)) << i;
    EXPECT_EQ(kelStsRangeErr, call(-1, -1, size));
    EXPECT_TRUE(dst.untouched());
}

// interpolateinterleaved_test.cpp - interpolation of interleaved chroma against the equation of one colour.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

namespace {

const Pattern patterns[] = {noise(1, 255), constant(255), constant(0), checkerboard(255)};

// ITU-T H.264 8.4.2.2.2 with the four samples around the position.
int between(int A, int B, int C, int D, int x, int y) {
    return ((8 - x) * (8 - y) * A + x * (8 - y) * B + (8 - x) * y * C + x * y * D + 32) >> 6;
}

void compareInterpolation(KeliSize size, int dx, int dy, const Pattern &pattern, int step, int slack) {
    const int w = size.width, h = size.height, right = dx ? 1 : 0, down = dy ? 1 : 0;
    Source<Kel8u> src(h + down, 2 * (w + right), 2 * (w + right) + step, slack);
    src.fill(pattern);
    DstBlock<Kel8u> dst[] = {{h, w, w + step, slack}, {h, w, w + step}};
    ASSERT_EQ(kelStsNoErr, keliInterpolateChroma_H264_8u_C2P2R(src.data(), src.step(), dst[0].data(),
                                                               dst[1].data(), w + step, dx, dy, size));
    for (int colour = 0; colour < 2; ++colour) {
        EXPECT_TRUE(dst[colour].surroundingsIntact());
        for (int row = 0; row < h; ++row) {
            for (int col = 0; col < w; ++col) {
                const auto at = [&](int y, int x) { return src(row + y, 2 * (col + x) + colour); };
                ASSERT_EQ(between(at(0, 0), at(0, right), at(down, 0), at(down, right), dx, dy),
                          dst[colour](row, col));
            }
        }
    }
}

const int frameWidth = 20, frameHeight = 12;

struct MovedBlock {
    KeliSize size;
    KeliPoint position, vector;
};

KelStatus interpolateBlock(const MovedBlock &b, const Source<Kel8u> &picture, DstBlock<Kel8u> &u,
                           DstBlock<Kel8u> &v) {
    const KeliInterpolateInfo info = {picture.data(), picture.step(), u.data(),
                                      v.data(),       u.step(),       {frameWidth, frameHeight},
                                      b.size,         b.position,     b.vector};
    return keliInterpolateChromaBlock_H264_8u_C2P2R(&info);
}

// The picture ends at a forbidden page.
std::unique_ptr<Source<Kel8u>> noisyPicture() {
    auto picture = std::make_unique<Source<Kel8u>>(frameHeight, 2 * frameWidth, 2 * frameWidth + 3);
    picture->fill(noise(9, 255));
    return picture;
}

void compareMoved(const MovedBlock &b, const Source<Kel8u> &picture) {
    DstBlock<Kel8u> dst[] = {{b.size.height, b.size.width, 16}, {b.size.height, b.size.width, 16}};
    ASSERT_EQ(kelStsNoErr, interpolateBlock(b, picture, dst[0], dst[1]));
    const double x = b.position.x + b.vector.x / 8.0, y = b.position.y + b.vector.y / 8.0;
    const double left = std::floor(x), top = std::floor(y);
    const int dx = static_cast<int>((x - left) * 8), dy = static_cast<int>((y - top) * 8);
    int rows[17], cols[17]; // of the picture, for those of the block and one more
    for (int i = 0; i < 17; ++i) {
        rows[i] = static_cast<int>(std::clamp(top + i, 0.0, frameHeight - 1.0));
        cols[i] = static_cast<int>(std::clamp(left + i, 0.0, frameWidth - 1.0));
    }
    for (int colour = 0; colour < 2; ++colour) {
        EXPECT_TRUE(dst[colour].surroundingsIntact());
        for (int i = 0; i < b.size.width * b.size.height; ++i) {
            const int row = i / b.size.width, col = i % b.size.width;
            const auto at = [&](int down, int right) {
                return picture(rows[row + down], 2 * cols[col + right] + colour);
            };
            ASSERT_EQ(between(at(0, 0), at(0, 1), at(1, 0), at(1, 1), dx, dy), dst[colour](row, col)) << i;
        }
    }
}

} // namespace

TEST(KelvaraInterpolateInterleaved, EveryPositionOfEverySizeIsThatOfEachColour) {
    for (const KeliSize &size : {KeliSize{2, 2}, {4, 4}, {8, 8}, {16, 16}, {1, 1}, {3, 5}}) {
        for (int position = 0; position < 64; ++position) {
            for (const int step : {0, 1, 40}) {
                SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << " at " << position);
                compareInterpolation(size, position % 8, position / 8, noise(8, 255), step, step % 16);
            }
        }
    }
    for (int position = 0; position < 64; ++position) {
        for (const Pattern &pattern : patterns)
            compareInterpolation({8, 8}, position % 8, position / 8, pattern, 0, 0);
    }
}

TEST(KelvaraInterpolateInterleaved, VectorsMoveABlockThroughThePictureAndBeyondIt) {
    const auto picture = noisyPicture();
    for (const KeliSize &size : {KeliSize{4, 4}, {8, 8}, {2, 2}, {16, 12}}) {
        for (int x = -200; x <= 200; x += 13) {
            for (int y = -150; y <= 150; y += 11) {
                SCOPED_TRACE(testing::Message()
                             << size.width << "x" << size.height << " by " << x << ", " << y);
                compareMoved({size, {4, 0}, {x, y}}, *picture);
                compareMoved({size, {0, 8}, {x, y}}, *picture);
            }
        }
    }
}

TEST(KelvaraInterpolateInterleaved, AVectorMayBeAsLongAsItsNumbersAre) {
    const auto picture = noisyPicture();
    for (const int x : {INT32_MIN, INT32_MAX}) {
        for (const int y : {INT32_MIN, INT32_MAX}) {
            compareMoved({{4, 4}, {0, 0}, {x, y}}, *picture);
            compareMoved({{4, 4}, {x, y}, {x, y}}, *picture);
            compareMoved({{4, 4}, {y, x}, {3, 5}}, *picture);
        }
    }
}

TEST(KelvaraInterpolateInterleaved, InterpolationRefusesBadArgumentsInOrder) {
    Source<Kel8u> src(17, 34, 40);
    const Kel8u *p = src.data();
    DstBlock<Kel8u> u(16, 16, 16), v(16, 16, 16);
    const auto call = [&](const Kel8u *s, int ss, Kel8u *a, Kel8u *b, int ds, int dx, int dy, KeliSize size) {
        return keliInterpolateChroma_H264_8u_C2P2R(s, ss, a, b, ds, dx, dy, size);
    };
    const KeliSize whole = {16, 16}, none = {0, 0};
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, u.data(), v.data(), 0, 8, 8, none));
    EXPECT_EQ(kelStsNullPtrErr, call(p, 0, nullptr, v.data(), 0, 8, 8, none));
    EXPECT_EQ(kelStsNullPtrErr, call(p, 0, u.data(), nullptr, 0, 8, 8, none));
    for (const KeliSize &size :
         {none, KeliSize{17, 16}, KeliSize{16, 17}, KeliSize{-1, 4}, KeliSize{1 << 30, 4}})
        EXPECT_EQ(kelStsSizeErr, call(p, 0, u.data(), v.data(), 0, 8, 8, size));
    for (const int step : {31, 0, -40})
        EXPECT_EQ(kelStsStepErr, call(p, step, u.data(), v.data(), 16, 8, 8, whole));
    for (const int step : {15, 0, -16})
        EXPECT_EQ(kelStsStepErr, call(p, 40, u.data(), v.data(), step, 8, 8, whole));
    for (const int fraction : {-1, 8, 1 << 30}) {
        EXPECT_EQ(kelStsRangeErr, call(p, 40, u.data(), v.data(), 16, fraction, 0, whole));
        EXPECT_EQ(kelStsRangeErr, call(p, 40, u.data(), v.data(), 16, 0, fraction, whole));
    }
    EXPECT_TRUE(u.untouched());
    EXPECT_TRUE(v.untouched());
}

TEST(KelvaraInterpolateInterleaved, InterpolationOfAMovedBlockRefusesABadRecord) {
    Source<Kel8u> picture(8, 16, 16);
    DstBlock<Kel8u> u(4, 4, 4), v(4, 4, 4);
    const KeliInterpolateInfo good = {picture.data(), 16,     u.data(), v.data(), 4,
                                      {8, 8},         {4, 4}, {0, 0},   {0, 0}};
    const auto refused = [](KeliInterpolateInfo info) {
        return keliInterpolateChromaBlock_H264_8u_C2P2R(&info);
    };
    EXPECT_EQ(kelStsNullPtrErr, keliInterpolateChromaBlock_H264_8u_C2P2R(nullptr));
    KeliInterpolateInfo info = good;
    info.sizeFrame = {0, 0};
    info.srcStep = info.dstStep = 0;
    info.pSrc = nullptr;
    EXPECT_EQ(kelStsNullPtrErr, refused(info));
    info.pSrc = good.pSrc;
    info.pDstU = nullptr;
    EXPECT_EQ(kelStsNullPtrErr, refused(info));
    info.pDstU = good.pDstU;
    info.pDstV = nullptr;
    EXPECT_EQ(kelStsNullPtrErr, refused(info));
    info.pDstV = good.pDstV;
    for (const KeliSize &size : {KeliSize{0, 8}, {8, 0}, {-8, 8}}) {
        info.sizeFrame = size;
        EXPECT_EQ(kelStsSizeErr, refused(info));
    }
    info.sizeFrame = good.sizeFrame;
    for (const KeliSize &size : {KeliSize{0, 4}, {17, 4}, {4, 17}}) {
        info.sizeBlock = size;
        EXPECT_EQ(kelStsSizeErr, refused(info));
    }
    info.sizeBlock = good.sizeBlock;
    info.dstStep = 4;
    for (const int step : {15, 0, -16}) {
        info.srcStep = step;
        EXPECT_EQ(kelStsStepErr, refused(info));
    }
    info.srcStep = 16;
    info.dstStep = 3;
    EXPECT_EQ(kelStsStepErr, refused(info));
    EXPECT_TRUE(u.untouched());
    EXPECT_TRUE(v.untouched());
    EXPECT_EQ(kelStsNoErr, refused(good));
}

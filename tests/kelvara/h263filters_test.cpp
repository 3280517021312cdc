// h263filters_test.cpp - loop filter, edge filters and backward prediction, against models sample by sample.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// ---- the loop filter ----------------------------------------------------------------

const Pattern patterns[] = {noise(1, 255), noise(2, 255),     noise(3, 3),
                            constant(255), checkerboard(255), noise(4, 127)};

// The weight of the neighbour at `offset` for a sample at `position` of a line.
double tap(int position, int offset) {
    if (position == 0 || position == 7) return offset ? 0 : 1;
    return offset ? 0.25 : 0.5;
}

int loopFiltered(const Source<Kel8u> &src, int row, int col) {
    double sum = 0;
    for (int y = -1; y <= 1; ++y) {
        for (int x = -1; x <= 1; ++x) {
            const double weight = tap(row, y) * tap(col, x);
            if (weight > 0) sum += weight * src(row + y, col + x);
        }
    }
    return static_cast<int>(std::floor(sum + 0.5));
}

// ---- edges --------------------------------------------------------------------------

using EdgeFunction = KelStatus (*)(Kel8u *, int, int);

struct EdgeFilter {
    const char *name;
    EdgeFunction call;
    bool vertical, deblocking;
    int length, edges;
};

const EdgeFilter edgeFilters[] = {
    {"8x8 hor", keliFilterDeblocking8x8HorEdge_H263_8u_C1IR, false, true, 8, 1},
    {"8x8 ver", keliFilterDeblocking8x8VerEdge_H263_8u_C1IR, true, true, 8, 1},
    {"16x16 hor", keliFilterDeblocking16x16HorEdge_H263_8u_C1IR, false, true, 16, 2},
    {"16x16 ver", keliFilterDeblocking16x16VerEdge_H263_8u_C1IR, true, true, 16, 2},
    {"boundary hor", keliFilterBlockBoundaryHorEdge_H263_8u_C1IR, false, false, 16, 1},
    {"boundary ver", keliFilterBlockBoundaryVerEdge_H263_8u_C1IR, true, false, 16, 1},
};

// The quantisers at which the strength becomes one more.
int strengthOf(int QP) {
    int strength = 0;
    for (int rise : {1, 3, 5, 7, 10, 12, 14, 17, 20, 23, 26, 29}) strength += QP >= rise;
    return strength;
}

// Up to the strength the step itself, from there down to 0 at twice the strength.
double ramp(double step, int strength) {
    const double size = std::abs(step);
    const double height = size <= strength ? size : size <= 2 * strength ? 2 * strength - size : 0;
    return std::copysign(height, step);
}

int limited(double value) {
    return static_cast<int>(std::clamp(value, 0.0, 255.0));
}

void deblockLine(int (&s)[4], int QP) {
    const double step = std::trunc((s[0] - 4 * s[1] + 4 * s[2] - s[3]) / 8.0);
    const double d1 = ramp(step, strengthOf(QP)), most = std::abs(std::trunc(d1 / 2));
    const double d2 = std::clamp(std::trunc((s[0] - s[3]) / 4.0), -most, most);
    const int result[] = {limited(s[0] - d2), limited(s[1] + d1), limited(s[2] - d1), limited(s[3] + d2)};
    std::copy(result, result + 4, s);
}

void smoothLine(int (&s)[4]) {
    const double b = s[1], c = s[2];
    s[1] = static_cast<int>(std::floor(0.75 * b + 0.25 * c + 0.5));
    s[2] = static_cast<int>(std::floor(0.25 * b + 0.75 * c + 0.5));
}

// A picture of 32 x 32, the block at its 16th row and column.
const int width = 32, first = 16;
using Picture = std::vector<Kel8u>;

Picture filtered(const EdgeFilter &f, Picture picture, int step, int QP) {
    for (int edge = 0; edge < f.edges; ++edge) {
        for (int line = 0; line < f.length; ++line) {
            Kel8u *at[4];
            int samples[4];
            for (int i = 0; i < 4; ++i) {
                const int across = first + 8 * edge + i - 2, along = first + line;
                at[i] = &picture[f.vertical ? along * step + across : across * step + along];
                samples[i] = *at[i];
            }
            f.deblocking ? deblockLine(samples, QP) : smoothLine(samples);
            for (int i = 0; i < 4; ++i) *at[i] = static_cast<Kel8u>(samples[i]);
        }
    }
    return picture;
}

Picture pictureOf(const Pattern &pattern, int step) {
    Picture picture(static_cast<size_t>(width) * step);
    for (size_t i = 0; i < picture.size(); ++i)
        picture[i] = static_cast<Kel8u>(pattern(static_cast<int>(i) / step, static_cast<int>(i) % step));
    return picture;
}

// Blocks of one shade each and a little noise: the edges are what the filters are for.
Pattern blocks(unsigned seed, int contrast) {
    return [shade = noise(seed, 3), contrast](int row, int col) {
        const int block = (row / 8 * 3 + col / 8 * 5) % 7;
        return std::clamp(100 + contrast * (block - 3) + shade(row, col), 0, 255);
    };
}

const Pattern pictures[] = {noise(7, 255),  blocks(8, 1),      blocks(9, 3),  blocks(10, 6),
                            blocks(11, 60), checkerboard(255), noise(12, 24), constant(255)};

void compare(const EdgeFilter &f, const Pattern &pattern, int step, int QP) {
    const Picture before = pictureOf(pattern, step);
    Picture after = before;
    ASSERT_EQ(kelStsNoErr, f.call(after.data() + first * step + first, step, QP));
    ASSERT_EQ(filtered(f, before, step, QP), after) << f.name << ", quantiser " << QP << ", step " << step;
}

// ---- backward prediction ----------------------------------------------------------------

const int codeOfAcc[] = {0, 8, 4, 12};

void compare(KeliSize size, int acc, const Pattern &pattern, int step) {
    const int w = size.width, h = size.height;
    RefBlock src(w, h, 1, codeOfAcc[acc], w + 1 + step, step % 8, pattern);
    DstBlock<Kel8u> dst(h, w, w + 2 * step, step % 16);
    Source<Kel8u> forward(h, w, w);
    forward.fill(noise(acc + 20, 255));
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col)
            dst.data()[row * dst.step() + col] = static_cast<Kel8u>(forward(row, col));
    }
    ASSERT_EQ(kelStsNoErr, keliAddBackPredPB_H263_8u_C1R(src.samples.data(), src.samples.step(), size,
                                                         dst.data(), dst.step(), acc));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            const double mean = (forward(row, col) + src.predicted(row, col, 0)) / 2.0;
            ASSERT_EQ(static_cast<int>(std::floor(mean)), dst(row, col)) << row << ", " << col;
        }
    }
}

} // namespace

// ---- loop filter --------------------------------------------------------------------------

TEST(KelvaraH261, LoopFilterEqualsTheModel) {
    for (const Pattern &pattern : patterns) {
        for (int step : {0, 1, 17, 312}) {
            Source<Kel8u> src(8, 8, 8 + step, step % 5);
            src.fill(pattern);
            DstBlock<Kel8u> dst(8, 8, 8 + 2 * step, step % 16);
            ASSERT_EQ(kelStsNoErr, keliFilter8x8_H261_8u_C1R(src.data(), src.step(), dst.data(), dst.step()));
            EXPECT_TRUE(dst.surroundingsIntact());
            for (int i = 0; i < 64; ++i) ASSERT_EQ(loopFiltered(src, i / 8, i % 8), dst(i / 8, i % 8)) << i;
        }
    }
}

TEST(KelvaraH261, LoopFilterLeavesTheCornersOfABlock) {
    Source<Kel8u> src(8, 8, 8);
    src.fill(noise(5, 255));
    DstBlock<Kel8u> dst(8, 8, 8);
    ASSERT_EQ(kelStsNoErr, keliFilter8x8_H261_8u_C1R(src.data(), 8, dst.data(), 8));
    for (int row : {0, 7}) {
        for (int col : {0, 7}) EXPECT_EQ(src(row, col), dst(row, col));
    }
}

TEST(KelvaraH261, LoopFilterChecksItsArguments) {
    Source<Kel8u> src(8, 8, 8);
    src.fill(noise(5, 255));
    DstBlock<Kel8u> dst(8, 8, 8);
    EXPECT_EQ(kelStsNullPtrErr, keliFilter8x8_H261_8u_C1R(nullptr, 8, dst.data(), 8));
    EXPECT_EQ(kelStsNullPtrErr, keliFilter8x8_H261_8u_C1R(src.data(), 8, nullptr, 8));
    for (int step : {7, 0, -8}) {
        EXPECT_EQ(kelStsStepErr, keliFilter8x8_H261_8u_C1R(src.data(), step, dst.data(), 8));
        EXPECT_EQ(kelStsStepErr, keliFilter8x8_H261_8u_C1R(src.data(), 8, dst.data(), step));
    }
    EXPECT_TRUE(dst.untouched());
}

// ---- edge filters -------------------------------------------------------------------------

TEST(KelvaraH263, EdgeFiltersEqualTheModelInTheWholePicture) {
    for (const EdgeFilter &f : edgeFilters) {
        for (const Pattern &pattern : pictures) {
            for (int QP = 1; QP <= 31; ++QP) compare(f, pattern, width + QP % 3, QP);
        }
    }
}

// All steps of an edge, eight in a picture, with A and D beside it: the ramp up and down, and its limits.
TEST(KelvaraH263, DeblockingEqualsTheModelForEveryStepOfAnEdge) {
    for (int QP : {1, 2, 7, 16, 31}) {
        for (int b = 0; b < 256; b += 5) {
            for (int c = 0; c < 256; c += 8) {
                const Pattern line = [=](int row, int col) {
                    const int other = (37 * row + 11 * b) % 256, x = col % 8;
                    return x == 7 ? b : x == 0 ? c + row % 8 : x == 6 ? (b + row * 3) % 256 : other;
                };
                ASSERT_NO_FATAL_FAILURE(compare(edgeFilters[1], line, width, QP));
            }
        }
    }
}

TEST(KelvaraH263, AStepOfThePictureIsLeft) {
    Picture picture = pictureOf([](int, int col) { return col < first ? 20 : 220; }, width);
    const Picture before = picture;
    ASSERT_EQ(kelStsNoErr,
              keliFilterDeblocking8x8VerEdge_H263_8u_C1IR(&picture[first * width + first], width, 31));
    EXPECT_EQ(before, picture);
    ASSERT_EQ(kelStsNoErr,
              keliFilterBlockBoundaryVerEdge_H263_8u_C1IR(&picture[first * width + first], width, 31));
    EXPECT_NE(before, picture);
}

TEST(KelvaraH263, TheBoundaryFilterIsTheSameForAllQuantisers) {
    Picture pictureOf1 = pictureOf(noise(3, 255), width), pictureOf31 = pictureOf1;
    keliFilterBlockBoundaryHorEdge_H263_8u_C1IR(&pictureOf1[first * width + first], width, 1);
    keliFilterBlockBoundaryHorEdge_H263_8u_C1IR(&pictureOf31[first * width + first], width, 31);
    EXPECT_EQ(pictureOf1, pictureOf31);
}

TEST(KelvaraH263, EdgeFiltersCheckTheirArguments) {
    for (const EdgeFilter &f : edgeFilters) {
        SCOPED_TRACE(f.name);
        Picture picture = pictureOf(blocks(1, 3), width);
        const Picture before = picture;
        Kel8u *p = &picture[first * width + first];
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 0, 0));
        for (int step : {f.length - 1, 0, -width}) EXPECT_EQ(kelStsStepErr, f.call(p, step, 0));
        for (int QP : {0, -1, 32, 1 << 30}) EXPECT_EQ(kelStsRangeErr, f.call(p, width, QP));
        EXPECT_EQ(before, picture);
    }
}

// ---- backward prediction ---------------------------------------------------------------------

TEST(KelvaraH263, BackwardPredictionEqualsTheModelAtEverySizeAndPosition) {
    for (int w : {1, 2, 3, 4, 7, 8, 15, 16, 33}) {
        for (int h : {1, 2, 4, 5, 8, 16}) {
            for (int acc = 0; acc < 4; ++acc) {
                for (int step : {0, 3, 300}) {
                    SCOPED_TRACE(testing::Message() << w << "x" << h << ", acc " << acc << ", " << step);
                    ASSERT_NO_FATAL_FAILURE(compare({w, h}, acc, noise(w + h, 255), step));
                }
            }
        }
    }
    for (const Pattern &pattern : patterns) compare({16, 16}, 3, pattern, 8);
}

TEST(KelvaraH263, AHalfInTheMeanOfBothPredictionsGoesDown) {
    const Kel8u src[] = {10};
    Kel8u dst[] = {11};
    ASSERT_EQ(kelStsNoErr, keliAddBackPredPB_H263_8u_C1R(src, 1, {1, 1}, dst, 1, 0));
    EXPECT_EQ(10, dst[0]);
}

TEST(KelvaraH263, BackwardPredictionChecksItsArguments) {
    Source<Kel8u> source(9, 9, 9);
    const Kel8u *src = source.fill(noise(5, 255)).data();
    DstBlock<Kel8u> dst(8, 8, 8);
    Kel8u *d = dst.data();
    EXPECT_EQ(kelStsNullPtrErr, keliAddBackPredPB_H263_8u_C1R(nullptr, 9, {8, 8}, d, 8, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliAddBackPredPB_H263_8u_C1R(src, 9, {0, 8}, nullptr, 8, 0));
    for (KeliSize size : {KeliSize{0, 8}, KeliSize{8, 0}, KeliSize{-8, 8}, KeliSize{8, -1}})
        EXPECT_EQ(kelStsSizeErr, keliAddBackPredPB_H263_8u_C1R(src, 0, size, d, 8, 0));
    for (int step : {7, 0, -9}) {
        EXPECT_EQ(kelStsStepErr, keliAddBackPredPB_H263_8u_C1R(src, step, {8, 8}, d, 8, 9));
        EXPECT_EQ(kelStsStepErr, keliAddBackPredPB_H263_8u_C1R(src, 9, {8, 8}, d, step, 9));
    }
    for (int acc : {-1, 4, 8, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, keliAddBackPredPB_H263_8u_C1R(src, 9, {8, 8}, d, 8, acc));
    EXPECT_TRUE(dst.untouched());
}

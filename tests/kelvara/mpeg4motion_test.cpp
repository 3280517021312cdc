// mpeg4motion_test.cpp - quarter-sample copies and overlapped compensation of MPEG-4, against models that
// work position by position.

#include "kelvc_mpeg4.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Line = std::vector<int>;

// ---- the model of quarter samples ---------------------------------------------------

const int taps[8] = {-1, 3, -6, 20, 20, -6, 3, -1};

// Sample i of a line of n + 1 samples that goes on as its mirror image on both sides.
int mirrored(const Line &line, int i) {
    const int last = static_cast<int>(line.size()) - 1;
    return line[i < 0 ? -1 - i : i > last ? 2 * last + 1 - i : i];
}

int halfBehind(const Line &line, int i, int rounding) {
    double sum = 0;
    for (int k = 0; k < 8; ++k) sum += taps[k] * mirrored(line, i - 3 + k);
    return std::clamp(static_cast<int>(std::floor((sum + 16 - rounding) / 32)), 0, 255);
}

// The n values that lie `quarter` quarters behind the first n samples of a line.
Line moved(const Line &line, int n, int quarter, int rounding) {
    Line values;
    for (int i = 0; i < n; ++i) {
        const int half = quarter ? halfBehind(line, i, rounding) : 0;
        const double neighbour = quarter == 3 ? line[i + 1] : line[i];
        const double between = std::floor((half + neighbour + 1 - rounding) / 2);
        values.push_back(quarter == 0 ? line[i] : quarter == 2 ? half : static_cast<int>(between));
    }
    return values;
}

// The block of w x h that is `right` and `down` quarters from (row, col): rows first, then columns.
std::vector<Line> quarterBlock(const Source<Kel8u> &src, int row, int col, int w, int h, int right, int down,
                               int rounding) {
    std::vector<Line> rows, block(h, Line(w));
    for (int i = 0; i < h + (down ? 1 : 0); ++i) {
        Line line;
        for (int j = 0; j < w + (right ? 1 : 0); ++j) line.push_back(src(row + i, col + j));
        rows.push_back(moved(line, w, right, rounding));
    }
    for (int j = 0; j < w; ++j) {
        Line column;
        for (const Line &line : rows) column.push_back(line[j]);
        const Line values = moved(column, h, down, rounding);
        for (int i = 0; i < h; ++i) block[i][j] = values[i];
    }
    return block;
}

// ---- copies -------------------------------------------------------------------------

struct Copy {
    const char *name;
    KelStatus (*call)(const Kel8u *, int, Kel8u *, int, int acc, int rounding);
    int width, height;
};

const Copy copies[] = {
    {"keliCopy8x8QP_MPEG4_8u_C1R", keliCopy8x8QP_MPEG4_8u_C1R, 8, 8},
    {"keliCopy16x8QP_MPEG4_8u_C1R", keliCopy16x8QP_MPEG4_8u_C1R, 16, 8},
    {"keliCopy16x16QP_MPEG4_8u_C1R", keliCopy16x16QP_MPEG4_8u_C1R, 16, 16},
};

const Pattern patterns[] = {noise(1, 255), noise(2, 255), constant(255), constant(0), checkerboard(255)};

// The source has exactly the samples that the position needs.
void compare(const Copy &f, int acc, int rounding, const Pattern &pattern, int more) {
    const int w = f.width, h = f.height, right = acc % 4, down = acc / 4;
    Source<Kel8u> src(h + (down ? 1 : 0), w + (right ? 1 : 0), w + 1 + more, more % 16);
    src.fill(pattern);
    DstBlock<Kel8u> dst(h, w, w + more, more % 16);
    ASSERT_EQ(kelStsNoErr, f.call(src.data(), src.step(), dst.data(), dst.step(), acc, rounding));
    EXPECT_TRUE(dst.surroundingsIntact());
    const auto expected = quarterBlock(src, 0, 0, w, h, right, down, rounding);
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) ASSERT_EQ(expected[row][col], dst(row, col)) << row << ", " << col;
    }
}

// ---- overlapped compensation ----------------------------------------------------------

struct Overlap {
    const char *name;
    KelStatus (*call)(const Kel8u *, int, Kel8u *, int, const KeliMotionVector *, const KeliMotionVector *,
                      const KeliMotionVector *, const KeliMotionVector *, const KeliMotionVector *, int);
    int size, unit; // of the block; vector units of a sample
};

const Overlap overlaps[] = {
    {"keliOBMC8x8HP_MPEG4_8u_C1R", keliOBMC8x8HP_MPEG4_8u_C1R, 8, 2},
    {"keliOBMC16x16HP_MPEG4_8u_C1R", keliOBMC16x16HP_MPEG4_8u_C1R, 16, 2},
    {"keliOBMC8x8QP_MPEG4_8u_C1R", keliOBMC8x8QP_MPEG4_8u_C1R, 8, 4},
};

// The neighbours count twice at the border, by the shape of a trapezium; the three weights sum up to 8.
int verticalWeight(int row, int col) {
    const bool border = row == 0 || row == 7, next = row == 1 || row == 6;
    return border || (next && col >= 2 && col <= 5) ? 2 : 1;
}
int horizontalWeight(int row, int col) {
    const bool border = col == 0 || col == 7, next = col == 1 || col == 6;
    return border || (next && row >= 1 && row <= 6) ? 2 : 1;
}

int floored(int value, int unit) {
    return static_cast<int>(std::floor(static_cast<double>(value) / unit));
}

int halfSample(const Source<Kel8u> &src, int row2, int col2, int rounding) {
    const int top = floored(row2, 2), left = floored(col2, 2);
    const int bottom = top + (row2 & 1), right = left + (col2 & 1);
    const double mean = (src(top, left) + src(top, right) + src(bottom, left) + src(bottom, right)) / 4.0;
    return static_cast<int>(rounding ? std::ceil(mean - 0.5) : std::floor(mean + 0.5));
}

const int margin = 20; // of the reference around the block

std::vector<Line> predicted(const Overlap &f, const Source<Kel8u> &src, KeliMotionVector mv, int rounding) {
    if (f.unit == 4)
        return quarterBlock(src, margin + floored(mv.y, 4), margin + floored(mv.x, 4), 8, 8,
                            mv.x - 4 * floored(mv.x, 4), mv.y - 4 * floored(mv.y, 4), rounding);
    std::vector<Line> block(f.size, Line(f.size));
    for (int row = 0; row < f.size; ++row) {
        for (int col = 0; col < f.size; ++col)
            block[row][col] = halfSample(src, 2 * (margin + row) + mv.y, 2 * (margin + col) + mv.x, rounding);
    }
    return block;
}

enum { Cur, Left, Right, Above, Below };

void compare(const Overlap &f, const KeliMotionVector (&mv)[5], int rounding, const Pattern &pattern,
             int more) {
    const int n = f.size, area = n + 2 * margin;
    Source<Kel8u> src(area, area, area + more, more % 16);
    src.fill(pattern);
    DstBlock<Kel8u> dst(n, n, n + more, more % 16);
    const Kel8u *place = src.data() + margin * src.step() + margin;
    ASSERT_EQ(kelStsNoErr, f.call(place, src.step(), dst.data(), dst.step(), &mv[Cur], &mv[Left], &mv[Right],
                                  &mv[Above], &mv[Below], rounding));
    EXPECT_TRUE(dst.surroundingsIntact());
    std::vector<Line> by[5];
    for (int i = 0; i < 5; ++i) by[i] = predicted(f, src, mv[i], rounding);
    for (int row = 0; row < n; ++row) {
        for (int col = 0; col < n; ++col) {
            const int v = verticalWeight(8 * row / n, 8 * col / n),
                      h = horizontalWeight(8 * row / n, 8 * col / n);
            const int sum = (8 - v - h) * by[Cur][row][col] + v * by[row < n / 2 ? Above : Below][row][col] +
                            h * by[col < n / 2 ? Left : Right][row][col];
            ASSERT_EQ((sum + 4) / 8, dst(row, col)) << row << ", " << col;
        }
    }
}

KeliMotionVector randomVector(std::mt19937 &generator, int unit) {
    const auto coordinate = [&] {
        const int most = unit * (margin - 1);
        return static_cast<Kel16s>(static_cast<int>(generator() % (2 * most + 1)) - most);
    };
    return {coordinate(), coordinate()};
}

} // namespace

TEST(KelvaraMpeg4Motion, CopiesEqualTheModelAtAllPositions) {
    for (const Copy &f : copies) {
        for (int acc = 0; acc < 16; ++acc) {
            for (int rounding : {0, 1}) {
                for (const Pattern &pattern : patterns) {
                    for (int more : {0, 1, 303}) {
                        SCOPED_TRACE(testing::Message() << f.name << ", acc " << acc << ", rounding "
                                                        << rounding << ", width + " << more);
                        compare(f, acc, rounding, pattern, more);
                    }
                }
            }
        }
    }
}

// A step from 0 to 100 between the columns 4 and 5 of all rows.
TEST(KelvaraMpeg4Motion, LowestBitsOfThePositionAreToTheRight) {
    Source<Kel8u> src(9, 9, 9);
    src.fill([](int, int col) { return col < 5 ? 0 : 100; });
    // The half samples are 0, -1, 2, -4, 16, 36, 30 and 33 times 100 / 32.
    const int expected[4][8] = {{0, 0, 0, 0, 0, 100, 100, 100},
                                {0, 0, 3, 0, 25, 107, 97, 102},
                                {0, 0, 6, 0, 50, 113, 94, 103},
                                {0, 0, 3, 0, 75, 107, 97, 102}};
    for (int acc = 0; acc < 4; ++acc) {
        DstBlock<Kel8u> dst(8, 8, 8);
        ASSERT_EQ(kelStsNoErr, keliCopy8x8QP_MPEG4_8u_C1R(src.data(), 9, dst.data(), 8, acc, 0));
        for (int i = 0; i < 64; ++i) EXPECT_EQ(expected[acc][i % 8], dst(i / 8, i % 8)) << acc << ", " << i;
    }
    for (int down = 0; down < 4; ++down) {
        DstBlock<Kel8u> dst(8, 8, 8);
        ASSERT_EQ(kelStsNoErr, keliCopy8x8QP_MPEG4_8u_C1R(src.data(), 9, dst.data(), 8, 4 * down, 0));
        for (int i = 0; i < 64; ++i) EXPECT_EQ(src(i / 8, i % 8), dst(i / 8, i % 8));
    }
}

// Samples 0 and 8 are 32, all others 0. The half sample behind the first one is 20 - 6 of the sample and its
// mirror image, the one behind the last but one 20 - 6 as well, and the next inner ones -6 + 3.
TEST(KelvaraMpeg4Motion, BordersAreMirrored) {
    Source<Kel8u> src(8, 9, 9);
    src.fill([](int, int col) { return col % 8 == 0 ? 32 : 0; });
    DstBlock<Kel8u> dst(8, 8, 8);
    ASSERT_EQ(kelStsNoErr, keliCopy8x8QP_MPEG4_8u_C1R(src.data(), 9, dst.data(), 8, 2, 0));
    const int expected[8] = {14, 0, 2, 0, 0, 2, 0, 14};
    for (int col = 0; col < 8; ++col) EXPECT_EQ(expected[col], dst(0, col)) << col;
}

TEST(KelvaraMpeg4Motion, OverlappedBlocksEqualTheModel) {
    std::mt19937 generator(1);
    for (const Overlap &f : overlaps) {
        for (int i = 0; i < 150; ++i) {
            KeliMotionVector mv[5];
            for (KeliMotionVector &v : mv) v = randomVector(generator, f.unit);
            SCOPED_TRACE(testing::Message() << f.name << ", " << i);
            compare(f, mv, i % 2, patterns[i % 5], i % 3 * 7);
        }
    }
}

// Each of the five predictions is 0 or 80, so that a sample shows an eighth of its weights by 10.
TEST(KelvaraMpeg4Motion, EachNeighbourWeighsOnItsSide) {
    Source<Kel8u> src(8, 16, 16);
    src.fill([](int, int col) { return col < 8 ? 0 : 80; });
    const KeliMotionVector still = {0, 0}, aside = {16, 0};
    const int corner[5][4] = {
        {40, 40, 40, 40}, {20, 0, 20, 0}, {0, 20, 0, 20}, {20, 20, 0, 0}, {0, 0, 20, 20}};
    for (int i = 0; i < 5; ++i) {
        const auto mv = [&](int n) { return n == i ? &aside : &still; };
        DstBlock<Kel8u> dst(8, 8, 8);
        ASSERT_EQ(kelStsNoErr, keliOBMC8x8HP_MPEG4_8u_C1R(src.data(), 16, dst.data(), 8, mv(Cur), mv(Left),
                                                          mv(Right), mv(Above), mv(Below), 0));
        EXPECT_EQ(corner[i][0], dst(0, 0)) << i;
        EXPECT_EQ(corner[i][1], dst(0, 7)) << i;
        EXPECT_EQ(corner[i][2], dst(7, 0)) << i;
        EXPECT_EQ(corner[i][3], dst(7, 7)) << i;
    }
}

TEST(KelvaraMpeg4Motion, WithoutMotionNothingAroundTheBlockIsRead) {
    for (const Overlap &f : overlaps) {
        Source<Kel8u> src(f.size, f.size, f.size);
        src.fill(noise(1, 255));
        DstBlock<Kel8u> dst(f.size, f.size, f.size);
        const KeliMotionVector mv = {0, 0};
        ASSERT_EQ(kelStsNoErr, f.call(src.data(), f.size, dst.data(), f.size, &mv, &mv, &mv, &mv, &mv, 1));
        for (int i = 0; i < f.size * f.size; ++i)
            EXPECT_EQ(src(i / f.size, i % f.size), dst(i / f.size, i % f.size)) << f.name;
    }
}

TEST(KelvaraMpeg4Motion, VectorsMayLieAtAnyByte) {
    Source<Kel8u> src(9, 9, 9);
    src.fill(noise(1, 255));
    const KeliMotionVector mv = {1, 1};
    alignas(8) char bytes[12];
    std::memcpy(bytes + 1, &mv, sizeof mv);
    const KeliMotionVector *odd = reinterpret_cast<const KeliMotionVector *>(bytes + 1);
    DstBlock<Kel8u> dst(8, 8, 8);
    ASSERT_EQ(kelStsNoErr,
              keliOBMC8x8HP_MPEG4_8u_C1R(src.data(), 9, dst.data(), 8, odd, odd, odd, odd, odd, 0));
    EXPECT_EQ(halfSample(src, 1, 1, 0), dst(0, 0));
}

// ---- bad arguments --------------------------------------------------------------------

TEST(KelvaraMpeg4Motion, CopiesRefuseBadArguments) {
    for (const Copy &f : copies) {
        SCOPED_TRACE(f.name);
        Source<Kel8u> src(17, 17, 40);
        DstBlock<Kel8u> dst(16, 16, 40);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 0, dst.data(), 40, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), 40, nullptr, 40, 16, 0));
        for (int step : {f.width - 1, 0, -40}) {
            EXPECT_EQ(kelStsStepErr, f.call(src.data(), step, dst.data(), 40, 0, 0)) << step;
            EXPECT_EQ(kelStsStepErr, f.call(src.data(), 40, dst.data(), step, 16, 0)) << step;
        }
        for (int acc : {-1, 16, 1 << 30})
            EXPECT_EQ(kelStsRangeErr, f.call(src.data(), 40, dst.data(), 40, acc, 0)) << acc;
        for (int rounding : notRoundControls)
            EXPECT_EQ(kelStsRangeErr, f.call(src.data(), 40, dst.data(), 40, 0, rounding)) << rounding;
        EXPECT_TRUE(dst.untouched());
    }
}

TEST(KelvaraMpeg4Motion, OverlappedCompensationRefusesBadArguments) {
    for (const Overlap &f : overlaps) {
        SCOPED_TRACE(f.name);
        Source<Kel8u> src(16, 16, 40);
        DstBlock<Kel8u> dst(16, 16, 40);
        const KeliMotionVector mv = {0, 0};
        const auto call = [&](int missing, int srcStep, int dstStep, int rounding) {
            const auto vector = [&](int i) { return i == missing ? nullptr : &mv; };
            return f.call(missing == 5 ? nullptr : src.data(), srcStep, missing == 6 ? nullptr : dst.data(),
                          dstStep, vector(0), vector(1), vector(2), vector(3), vector(4), rounding);
        };
        for (int missing = 0; missing < 7; ++missing) EXPECT_EQ(kelStsNullPtrErr, call(missing, 0, 40, 0));
        for (int step : {f.size - 1, 0, -40}) {
            EXPECT_EQ(kelStsStepErr, call(-1, step, 40, 2)) << step;
            EXPECT_EQ(kelStsStepErr, call(-1, 40, step, 2)) << step;
        }
        for (int rounding : notRoundControls)
            EXPECT_EQ(kelStsRangeErr, call(-1, 40, 40, rounding)) << rounding;
        EXPECT_TRUE(dst.untouched());
    }
}

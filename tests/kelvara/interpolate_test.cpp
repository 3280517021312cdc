// interpolate_test.cpp - interpolation of H.264 against the equations of each position, one sample at a time.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// ---- the equations of ITU-T H.264 8.4.2.2 ----------------------------------------------

// The reference sample x to the right and y below the position's full sample.
struct Neighbour {
    int operator()(int x, int y) const { return full[y * width + x]; }

    const int *full;
    int width; // of the rows that it stands in
};

int tap(int e, int f, int g, int h, int i, int j) {
    return e - 5 * f + 20 * g + 20 * h - 5 * i + j;
}
int clip1(int value) {
    return std::min(std::max(value, 0), 255);
}
int half(int sum) {
    return clip1((sum + 16) >> 5);
}
int mean(int a, int b) {
    return (a + b + 1) >> 1;
}

// Sums beside and below a sample, before rounding.
int rightSum(const Neighbour &at, int x, int y) {
    return tap(at(x - 2, y), at(x - 1, y), at(x, y), at(x + 1, y), at(x + 2, y), at(x + 3, y));
}
int downSum(const Neighbour &at, int x, int y) {
    return tap(at(x, y - 2), at(x, y - 1), at(x, y), at(x, y + 1), at(x, y + 2), at(x, y + 3));
}

// Table 8-12 with the letters of figure 8-4; j comes from the columns' sums.
int lumaSample(const Neighbour &at, int xFrac, int yFrac) {
    const int G = at(0, 0), H = at(1, 0), M = at(0, 1);
    const int b = half(rightSum(at, 0, 0)), s = half(rightSum(at, 0, 1));
    const int h = half(downSum(at, 0, 0)), m = half(downSum(at, 1, 0));
    const int j1 = tap(downSum(at, -2, 0), downSum(at, -1, 0), downSum(at, 0, 0), downSum(at, 1, 0),
                       downSum(at, 2, 0), downSum(at, 3, 0));
    const int j = clip1((j1 + 512) >> 10);
    const int samples[4][4] = {
        // xFrac 0 to 3 in each row
        {G, mean(G, b), b, mean(H, b)},
        {mean(G, h), mean(b, h), mean(b, j), mean(b, m)},
        {h, mean(h, j), j, mean(j, m)},
        {mean(M, h), mean(h, s), mean(j, s), mean(s, m)},
    };
    return samples[yFrac][xFrac];
}

int chromaSample(const Neighbour &at, int xFrac, int yFrac) {
    const int A = at(0, 0), B = at(1, 0), C = at(0, 1), D = at(1, 1);
    return ((8 - xFrac) * (8 - yFrac) * A + xFrac * (8 - yFrac) * B + (8 - xFrac) * yFrac * C +
            xFrac * yFrac * D + 32) >>
           6;
}

// ---- the functions ---------------------------------------------------------------------

// Those inside a picture disregard outRows.
using Interpolate = KelStatus (*)(const Kel8u *, int, Kel8u *, int, int dx, int dy, int outRows, KeliSize);

template <KelStatus (*f)(const Kel8u *, int, Kel8u *, int, int, int, KeliSize)>
KelStatus inside(const Kel8u *src, int srcStep, Kel8u *dst, int dstStep, int dx, int dy, int, KeliSize roi) {
    return f(src, srcStep, dst, dstStep, dx, dy, roi);
}

enum Place { Inside, Top, Bottom };

struct Function {
    const char *name;
    Interpolate call;
    int (*sample)(const Neighbour &, int, int);
    int parts;         // of a sample
    int before, after; // samples that a filter reads in front of and behind the block
    Place place;
};

const Function functions[] = {
    {"keliInterpolateLuma_H264_8u_C1R", inside<keliInterpolateLuma_H264_8u_C1R>, lumaSample, 4, 2, 3, Inside},
    {"keliInterpolateLumaTop_H264_8u_C1R", keliInterpolateLumaTop_H264_8u_C1R, lumaSample, 4, 2, 3, Top},
    {"keliInterpolateLumaBottom_H264_8u_C1R", keliInterpolateLumaBottom_H264_8u_C1R, lumaSample, 4, 2, 3,
     Bottom},
    {"keliInterpolateChroma_H264_8u_C1R", inside<keliInterpolateChroma_H264_8u_C1R>, chromaSample, 8, 0, 1,
     Inside},
    {"keliInterpolateChromaTop_H264_8u_C1R", keliInterpolateChromaTop_H264_8u_C1R, chromaSample, 8, 0, 1,
     Top},
    {"keliInterpolateChromaBottom_H264_8u_C1R", keliInterpolateChromaBottom_H264_8u_C1R, chromaSample, 8, 0,
     1, Bottom},
};

const KeliSize sizes[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4},
                          {4, 2},   {2, 4},  {2, 2},  {1, 1}, {3, 5}, {16, 1}};

// Stripes drive the six taps to their extremes.
Pattern stripes(int period) {
    return [period](int row, int col) { return (row / period + col / period) % 2 ? 255 : 0; };
}
const Pattern patterns[] = {noise(1, 255),
                            constant(255),
                            constant(0),
                            checkerboard(255),
                            stripes(2),
                            stripes(3),
                            [](int, int col) { return col % 3 ? 255 : 0; },
                            [](int row, int) { return row % 2 ? 255 : 0; },
                            [](int row, int col) { return (row * col) % 5 < 2 ? 255 : 3; }};

// The rows and columns of a picture that exist, and what a filter takes for the `beyond` rows around them.
class Picture {
public:
    Picture(int rows, int cols, int step, int slack, int beyond, const Pattern &pattern)
        : samples(rows, cols, step, slack), m_width(cols + 2 * beside), m_beyond(beyond) {
        samples.fill(pattern);
        std::vector<int> line(m_width);
        for (int row = -beyond; row < rows + beyond; ++row) {
            if (row == -beyond || (row > 0 && row < rows)) {
                for (int i = 0; i < m_width; ++i)
                    line[i] = samples(std::max(row, 0), std::clamp(i - beside, 0, cols - 1));
            }
            m_extended.insert(m_extended.end(), line.begin(), line.end());
        }
    }
    Neighbour at(int row, int col) const {
        return {&m_extended[(row + m_beyond) * m_width + col + beside], m_width};
    }

    Source<Kel8u> samples;

private:
    static const int beside = 3; // columns: what a position that does not need them may look at

    int m_width, m_beyond;
    std::vector<int> m_extended;
};

struct Case {
    int dx, dy, outRows;
    KeliSize size;
    int step, slack;
};

// The block stands in the picture at (row, col); the picture begins or ends where the function's place has
// it.
void compare(const Function &f, const Case &c, const Pattern &pattern) {
    const int left = c.dx ? f.before : 0, right = c.dx ? f.after : 0;
    const int above = c.dy ? f.before : 0, below = c.dy ? f.after : 0;
    const int cols = left + c.size.width + right;
    int rows = above + c.size.height + below, row = above;
    if (f.place == Top) {
        row = -c.outRows;
        rows = std::max(1, c.size.height + below - c.outRows);
    } else if (f.place == Bottom) {
        rows = above + c.size.height + 1;
        row = rows - c.size.height + c.outRows;
    }
    const Picture picture(rows, cols, cols + c.step, c.slack, c.outRows + 3, pattern);
    DstBlock<Kel8u> dst(c.size.height, c.size.width, c.size.width + c.step, c.slack);
    const Kel8u *src = picture.samples.data() + row * picture.samples.step() + left;
    ASSERT_EQ(kelStsNoErr,
              f.call(src, picture.samples.step(), dst.data(), dst.step(), c.dx, c.dy, c.outRows, c.size));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int y = 0; y < c.size.height; ++y) {
        for (int x = 0; x < c.size.width; ++x)
            ASSERT_EQ(f.sample(picture.at(row + y, left + x), c.dx, c.dy), dst(y, x)) << y << ", " << x;
    }
}

// The full sample of a picture of six by six, with neighbours for all filters.
Neighbour inTheMiddle(const std::vector<int> &sixBySix) {
    return {&sixBySix[2 * 6 + 2], 6};
}

void compareAllPositions(const Function &f, Case c, const Pattern &pattern) {
    for (c.dx = 0; c.dx < f.parts; ++c.dx) {
        for (c.dy = 0; c.dy < f.parts; ++c.dy) {
            SCOPED_TRACE(testing::Message()
                         << f.name << " at " << c.dx << ", " << c.dy << ", block " << c.size.width << "x"
                         << c.size.height << ", width + " << c.step << ", " << c.outRows << " rows outside");
            compare(f, c, pattern);
        }
    }
}

} // namespace

TEST(KelvaraInterpolate, EveryPositionOfEverySizeFollowsItsEquation) {
    const int steps[] = {0, 1, 100};
    for (const Function &f : functions) {
        int i = 0;
        for (const KeliSize &size : sizes) {
            const int step = steps[i++ % 3];
            compareAllPositions(f, {0, 0, 1, size, step, step % 16}, noise(7, 255));
        }
    }
}

TEST(KelvaraInterpolate, ExtremesAreLimitedAsTheEquationsLimitThem) {
    for (const Function &f : functions) {
        for (const Pattern &pattern : patterns) {
            compareAllPositions(f, {0, 0, 1, {8, 8}, 5, 3}, pattern);
            compareAllPositions(f, {0, 0, 2, {4, 8}, 0, 0}, pattern);
        }
    }
}

// A block may also lie outside as a whole.
TEST(KelvaraInterpolate, RowsOutsideRepeatTheBorderHoweverManyThereAre) {
    for (const Function &f : functions) {
        if (f.place == Inside) continue;
        for (const int outRows : {0, 1, 2, 3, 5, 7, 8, 9, 20}) {
            compareAllPositions(f, {0, 0, outRows, {8, 8}, 6, 1}, noise(8, 255));
            compareAllPositions(f, {0, 0, outRows, {4, 4}, 0, 0}, stripes(1));
        }
    }
}

// The data above really meet the limits, at every position between full samples.
TEST(KelvaraInterpolate, DataReachTheLimitsOfAllPositions) {
    for (int position = 1; position < 16; ++position) {
        int low = 0, high = 0;
        for (const Pattern &pattern : patterns) {
            std::vector<int> samples;
            for (int i = 0; i < 36; ++i) samples.push_back(pattern(i / 6 + 2, i % 6 + 2));
            const Neighbour at = inTheMiddle(samples);
            low += lumaSample(at, position % 4, position / 4) == 0;
            high += lumaSample(at, position % 4, position / 4) == 255;
        }
        EXPECT_GT(low, 0) << position;
        EXPECT_GT(high, 0) << position;
    }
}

TEST(KelvaraInterpolate, FullPositionIsACopy) {
    for (const Function &f : functions) {
        Source<Kel8u> src(16, 16, 16);
        src.fill(noise(9, 255));
        DstBlock<Kel8u> dst(16, 16, 16);
        ASSERT_EQ(kelStsNoErr, f.call(src.data(), 16, dst.data(), 16, 0, 0, 0, {16, 16})) << f.name;
        for (int i = 0; i < 256; ++i) ASSERT_EQ(src(i / 16, i % 16), dst(i / 16, i % 16)) << f.name;
    }
}

TEST(KelvaraInterpolate, AFlatPictureStaysFlat) {
    for (const Function &f : functions) {
        for (const int level : {0, 1, 127, 254, 255}) {
            compareAllPositions(f, {0, 0, 3, {8, 8}, 0, 0}, constant(level));
            const std::vector<int> flat(36, level);
            for (int i = 0; i < f.parts * f.parts; ++i)
                EXPECT_EQ(level, f.sample(inTheMiddle(flat), i % f.parts, i / f.parts));
        }
    }
}

TEST(KelvaraInterpolate, BadArgumentsAreRefusedInOrder) {
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        Source<Kel8u> source(40, 40, 40);
        DstBlock<Kel8u> dst(16, 16, 16);
        const Kel8u *src = source.data() + 10 * 40 + 10;
        const KeliSize size = {16, 16}, none = {0, 16};
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 40, dst.data(), 16, 0, 0, 0, none));
        EXPECT_EQ(kelStsNullPtrErr, f.call(src, 40, nullptr, 16, 0, 0, 0, none));
        for (const KeliSize &bad : {none, KeliSize{16, 0}, KeliSize{17, 16}, KeliSize{16, 17},
                                    KeliSize{-8, 8}, KeliSize{8, 1 << 30}})
            EXPECT_EQ(kelStsSizeErr, f.call(src, 0, dst.data(), 0, 0, 0, 0, bad));
        for (const int step : {15, 0, -40}) {
            EXPECT_EQ(kelStsStepErr, f.call(src, step, dst.data(), 16, -1, 0, 0, size));
            EXPECT_EQ(kelStsStepErr, f.call(src, 40, dst.data(), step, 0, -1, 0, size));
        }
        for (const int fraction : {-1, f.parts, 1 << 30}) {
            EXPECT_EQ(kelStsRangeErr, f.call(src, 40, dst.data(), 16, fraction, 0, 0, size));
            EXPECT_EQ(kelStsRangeErr, f.call(src, 40, dst.data(), 16, 0, fraction, 0, size));
        }
        if (f.place != Inside) {
            EXPECT_EQ(kelStsRangeErr, f.call(src, 40, dst.data(), 16, 0, 0, -1, size));
        }
        EXPECT_TRUE(dst.untouched());
    }
}

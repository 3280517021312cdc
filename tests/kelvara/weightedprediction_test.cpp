// weightedprediction_test.cpp - means and weighted predictions of H.264 against the equations in exact
// fractions.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

namespace {

struct Weights {
    int log2wd, w1, w2, o1, o2;
};

// Two sources whose second one also is what a function without a destination of its own changes; the steps
// are those of the sources and of the destination.
struct Function {
    const char *name;
    KelStatus (*call)(const Kel8u *src1, int step1, Kel8u *src2, int step2, Kel8u *dst, int dstStep,
                      const Weights &, KeliSize);
    int sources;
    int steps; // that can differ
    bool inPlace, implicitWeights, oneOffset;
};

KelStatus uniDir(const Kel8u *, int, Kel8u *src2, int step2, Kel8u *, int, const Weights &w, KeliSize size) {
    return keliUniDirWeightBlock_H264_8u_C1R(src2, step2, w.log2wd, w.w2, w.o2, size);
}
KelStatus biDirTwoSteps(const Kel8u *src1, int step1, Kel8u *src2, int, Kel8u *dst, int dstStep,
                        const Weights &w, KeliSize size) {
    return keliBiDirWeightBlock_H264_8u_P2P1R(src1, src2, dst, step1, dstStep, w.log2wd, w.w1, w.w2, w.o1,
                                              w.o2, size);
}
KelStatus biDirThreeSteps(const Kel8u *src1, int step1, Kel8u *src2, int step2, Kel8u *dst, int dstStep,
                          const Weights &w, KeliSize size) {
    return keliBiDirWeightBlock_H264_8u_P3P1R(src1, src2, dst, step1, step2, dstStep, w.log2wd, w.w1, w.w2,
                                              w.o1, w.o2, size);
}
KelStatus implicitWeights(const Kel8u *src1, int step1, Kel8u *src2, int, Kel8u *dst, int dstStep,
                          const Weights &w, KeliSize size) {
    return keliBiDirWeightBlockImplicit_H264_8u_P2P1R(src1, src2, dst, step1, dstStep, w.w1, w.w2, size);
}
KelStatus weightedAverage(const Kel8u *src1, int step1, Kel8u *src2, int, Kel8u *, int, const Weights &w,
                          KeliSize size) {
    return keliWeightedAverage_H264_8u_C1IR(src1, src2, step1, w.w1, w.w2, w.log2wd + 1, w.o1, size);
}

const Function functions[] = {
    {"keliUniDirWeightBlock_H264_8u_C1R", uniDir, 1, 1, true, false, true},
    {"keliBiDirWeightBlock_H264_8u_P2P1R", biDirTwoSteps, 2, 2, false, false, false},
    {"keliBiDirWeightBlockImplicit_H264_8u_P2P1R", implicitWeights, 2, 2, false, true, false},
    {"keliBiDirWeightBlock_H264_8u_P3P1R", biDirThreeSteps, 2, 3, false, false, false},
    {"keliWeightedAverage_H264_8u_C1IR", weightedAverage, 2, 1, true, false, true},
};

// The nearest integer, halves up, as the shifts of ITU-T H.264 8.4.2.3.2 have it.
int64_t nearest(int64_t numerator, int64_t denominator) {
    return static_cast<int64_t>(std::floor(static_cast<double>(numerator) / denominator + 0.5));
}

int model(const Function &f, Weights w, int a, int b) {
    if (f.implicitWeights) w = {5, w.w1, w.w2, 0, 0};
    const int64_t one = int64_t(1) << w.log2wd;
    int64_t value;
    if (f.sources == 1) {
        value = nearest(b * w.w2, one) + w.o2;
    } else {
        value = nearest(a * w.w1 + b * w.w2, 2 * one) + (f.oneOffset ? w.o1 : nearest(w.o1 + w.o2, 2));
    }
    return static_cast<int>(std::clamp<int64_t>(value, 0, 255));
}

template <class Block>
void set(Block &block, KeliSize size, const Pattern &value) {
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            block.data()[row * block.step() + col] = static_cast<Kel8u>(value(row, col));
    }
}

const KeliSize sizes[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8},
                          {4, 4},   {4, 2},  {2, 4},  {2, 2}, {1, 1}, {5, 3}};

void compare(const Function &f, const Weights &w, KeliSize size, const PatternPair &pair, int step,
             int slack) {
    SCOPED_TRACE(testing::Message() << f.name << ", " << pair.name << ", " << size.width << "x" << size.height
                                    << ", weights " << w.w1 << ", " << w.w2 << " of " << (1 << w.log2wd)
                                    << ", offsets " << w.o1 << ", " << w.o2);
    Source<Kel8u> src1(size.height, size.width, size.width + step, slack);
    src1.fill(pair.src);
    const int step2 = src1.step() + (f.steps == 3 ? 7 : 0), dstStep = src1.step() + (f.steps > 1 ? 3 : 0);
    DstBlock<Kel8u> src2(size.height, size.width, step2, slack), dst(size.height, size.width, dstStep);
    DstBlock<Kel8u> before(size.height, size.width, size.width);
    set(before, size, pair.ref);
    set(src2, size, [&](int row, int col) { return before(row, col); });
    ASSERT_EQ(kelStsNoErr,
              f.call(src1.data(), src1.step(), src2.data(), step2, dst.data(), dstStep, w, size));
    EXPECT_TRUE(src2.surroundingsIntact());
    EXPECT_TRUE(dst.surroundingsIntact());
    if (f.inPlace) {
        EXPECT_TRUE(dst.untouched());
    }
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col) {
            const int result = f.inPlace ? src2(row, col) : dst(row, col);
            ASSERT_EQ(model(f, w, src1(row, col), before(row, col)), result) << row << ", " << col;
            if (!f.inPlace) {
                ASSERT_EQ(before(row, col), src2(row, col));
            }
        }
    }
}

const Weights weights[] = {{0, 1, 1, 0, 0},         {5, 32, 32, 0, 0},       {5, 20, 44, 3, -4},
                           {7, 128, 128, 127, 127}, {7, -128, 128, -128, 5}, {7, 127, -128, 1, 1},
                           {0, 128, 128, 0, 0},     {0, -128, -128, 0, 0},   {3, 9, -2, -128, -128},
                           {2, 5, 0, -7, -8},       {6, 0, 0, 100, 101},     {1, 3, 2, -1, 0},
                           {4, -64, 128, 0, 0}};

} // namespace

// ---- weighted predictions -------------------------------------------------------------------

TEST(KelvaraWeightedPrediction, SamplesFollowTheEquations) {
    for (const Function &f : functions) {
        for (const Weights &w : weights) {
            for (const PatternPair &pair : patternPairs(255)) compare(f, w, {16, 16}, pair, 0, 0);
        }
    }
}

TEST(KelvaraWeightedPrediction, BlocksMayHaveAnySizeStepAndAddress) {
    for (const Function &f : functions) {
        for (const KeliSize &size : sizes) {
            for (const int step : {0, 1, 16, 301})
                compare(f, {5, 20, 44, 3, -4}, size, patternPairs(255)[0], step, step % 16);
        }
    }
}

TEST(KelvaraWeightedPrediction, EveryLogarithmRoundsHalvesUp) {
    for (const Function &f : functions) {
        for (int log2wd = 0; log2wd <= 7; ++log2wd) {
            for (const int weight : {1, -1, 3, -37, 127})
                compare(f, {log2wd, weight, 5, 1, 2}, {16, 4}, patternPairs(255)[1], 0, 0);
        }
    }
}

TEST(KelvaraWeightedPrediction, DestinationMayBeASource) {
    const KeliSize size = {8, 8};
    const Weights w = {5, 40, 24, 2, 5};
    for (const Function &f : functions) {
        if (f.inPlace) continue;
        for (const bool first : {true, false}) {
            DstBlock<Kel8u> a(8, 8, 8), b(8, 8, 8), before(8, 8, 8), other(8, 8, 8);
            set(a, size, noise(11, 255));
            set(b, size, noise(12, 255));
            set(before, size, [&](int row, int col) { return first ? a(row, col) : b(row, col); });
            set(other, size, [&](int row, int col) { return first ? b(row, col) : a(row, col); });
            DstBlock<Kel8u> &dst = first ? a : b;
            ASSERT_EQ(kelStsNoErr, f.call(a.data(), 8, b.data(), 8, dst.data(), 8, w, size));
            for (int i = 0; i < 64; ++i) {
                const int x = before(i / 8, i % 8), y = other(i / 8, i % 8);
                ASSERT_EQ(first ? model(f, w, x, y) : model(f, w, y, x), dst(i / 8, i % 8)) << f.name;
            }
        }
    }
}

TEST(KelvaraWeightedPrediction, BadArgumentsAreRefusedInOrder) {
    const Weights good = {5, 32, 32, 0, 0}, bad = {8, 32, 32, 0, 0};
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        Source<Kel8u> src1(16, 16, 16);
        DstBlock<Kel8u> src2(16, 16, 16), dst(16, 16, 16);
        const KeliSize size = {16, 16}, none = {0, 0};
        const auto call = [&](int step1, int step2, int dstStep, const Weights &w, KeliSize s) {
            return f.call(src1.data(), step1, src2.data(), step2, dst.data(), dstStep, w, s);
        };
        EXPECT_EQ(kelStsNullPtrErr, f.call(src1.data(), 0, nullptr, 0, dst.data(), 0, bad, none));
        if (f.sources == 2) {
            EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 0, src2.data(), 0, dst.data(), 0, bad, none));
        }
        if (!f.inPlace) {
            EXPECT_EQ(kelStsNullPtrErr, f.call(src1.data(), 0, src2.data(), 0, nullptr, 0, bad, none));
        }
        for (const KeliSize &wrong :
             {none, KeliSize{17, 16}, KeliSize{16, 17}, KeliSize{-1, 4}, KeliSize{4, 0}})
            EXPECT_EQ(kelStsSizeErr, call(0, 0, 0, bad, wrong));
        const bool firstStep = f.sources == 2, secondStep = f.sources == 1 || f.steps == 3;
        for (const int step : {15, 0, -16}) {
            if (firstStep) {
                EXPECT_EQ(kelStsStepErr, call(step, 16, 16, bad, size));
            }
            if (secondStep) {
                EXPECT_EQ(kelStsStepErr, call(16, step, 16, bad, size));
            }
            if (!f.inPlace) {
                EXPECT_EQ(kelStsStepErr, call(16, 16, step, bad, size));
            }
        }
        for (const int weight : {-129, 129, INT32_MIN, INT32_MAX}) {
            EXPECT_EQ(kelStsRangeErr, call(16, 16, 16, {5, weight, weight, 0, 0}, size));
        }
        if (!f.implicitWeights) {
            for (const int log2wd : {-1, 8, -33, 1 << 30})
                EXPECT_EQ(kelStsRangeErr, call(16, 16, 16, {log2wd, 1, 1, 0, 0}, size));
            for (const int offset : {-129, 128, INT32_MIN, INT32_MAX})
                EXPECT_EQ(kelStsRangeErr, call(16, 16, 16, {5, 1, 1, offset, offset}, size));
        }
        EXPECT_TRUE(dst.untouched());
        EXPECT_TRUE(src2.untouched());
        EXPECT_EQ(kelStsNoErr, call(16, 16, 16, good, size));
    }
}

TEST(KelvaraWeightedPrediction, EachWeightAndOffsetIsJudged) {
    Source<Kel8u> src(4, 4, 4);
    DstBlock<Kel8u> dst(4, 4, 4);
    const auto call = [&](const Weights &w) {
        return keliBiDirWeightBlock_H264_8u_P2P1R(src.data(), src.data(), dst.data(), 4, 4, w.log2wd, w.w1,
                                                  w.w2, w.o1, w.o2, {4, 4});
    };
    for (const Weights &w : {Weights{5, 129, 1, 0, 0},
                             {5, 1, 129, 0, 0},
                             {5, 1, 1, 128, 0},
                             {5, 1, 1, 0, 128},
                             {5, -129, 1, 0, 0}})
        EXPECT_EQ(kelStsRangeErr, call(w));
    EXPECT_TRUE(dst.untouched());
}

TEST(KelvaraWeightedPrediction, ShiftOfTheAverageIsOneToEight) {
    Source<Kel8u> src(4, 4, 4);
    for (const int shift : {INT32_MIN, -1, 0, 9, INT32_MAX}) {
        DstBlock<Kel8u> dst(4, 4, 4);
        EXPECT_EQ(kelStsRangeErr,
                  keliWeightedAverage_H264_8u_C1IR(src.data(), dst.data(), 4, 1, 1, shift, 0, {4, 4}));
        EXPECT_TRUE(dst.untouched());
    }
}

// ---- means ----------------------------------------------------------------------------------

namespace {

// The first two of three sources for the form that has two.
KelStatus average(int sources, const Kel8u *a, const Kel8u *b, const Kel8u *c, Kel8u *dst, int width,
                  int height, int step) {
    if (sources == 2) return keliInterpolateBlock_H264_8u_P2P1R(a, b, dst, width, height, step);
    return keliInterpolateBlock_H264_8u_P3P1R(a, b, c, dst, width, height, step);
}

int halvesUp(int a, int b) {
    return static_cast<int>(std::floor((a + b) / 2.0 + 0.5));
}

void compareMeans(int sources, KeliSize size, const PatternPair &pair, int step, int slack) {
    const int w = size.width, h = size.height, bytes = w + step;
    Source<Kel8u> a(h, w, bytes, slack), b(h, w, bytes), c(h, w, bytes, slack);
    a.fill(pair.src);
    b.fill(pair.ref);
    c.fill(noise(13, 255));
    DstBlock<Kel8u> dst(h, w, bytes, slack);
    ASSERT_EQ(kelStsNoErr, average(sources, a.data(), b.data(), c.data(), dst.data(), w, h, bytes));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            const int two = halvesUp(a(row, col), b(row, col));
            ASSERT_EQ(sources == 2 ? two : halvesUp(two, c(row, col)), dst(row, col)) << row << ", " << col;
        }
    }
}

} // namespace

TEST(KelvaraInterpolateBlock, MeansRoundHalvesUp) {
    for (const int sources : {2, 3}) {
        for (const KeliSize &size : sizes) {
            for (const PatternPair &pair : patternPairs(255)) {
                for (const int step : {0, 1, 112}) {
                    SCOPED_TRACE(testing::Message() << sources << " sources, " << pair.name << ", "
                                                    << size.width << "x" << size.height << " + " << step);
                    compareMeans(sources, size, pair, step, step % 16);
                }
            }
        }
    }
}

TEST(KelvaraInterpolateBlock, DestinationMayBeASource) {
    for (const int sources : {2, 3}) {
        for (int same = 0; same < sources; ++same) {
            DstBlock<Kel8u> blocks[] = {{4, 4, 4}, {4, 4, 4}, {4, 4, 4}},
                            before[] = {{4, 4, 4}, {4, 4, 4}, {4, 4, 4}};
            for (unsigned i = 0; i < 3; ++i) {
                set(blocks[i], {4, 4}, noise(20 + i, 255));
                set(before[i], {4, 4}, noise(20 + i, 255));
            }
            ASSERT_EQ(kelStsNoErr, average(sources, blocks[0].data(), blocks[1].data(), blocks[2].data(),
                                           blocks[same].data(), 4, 4, 4));
            for (int i = 0; i < 16; ++i) {
                const int row = i / 4, col = i % 4, two = halvesUp(before[0](row, col), before[1](row, col));
                EXPECT_EQ(sources == 2 ? two : halvesUp(two, before[2](row, col)), blocks[same](row, col));
            }
        }
    }
}

TEST(KelvaraInterpolateBlock, BadArgumentsAreRefusedInOrder) {
    Source<Kel8u> src(16, 16, 16);
    const Kel8u *p = src.data();
    for (const int sources : {2, 3}) {
        DstBlock<Kel8u> dst(16, 16, 16);
        EXPECT_EQ(kelStsNullPtrErr, average(sources, nullptr, p, p, dst.data(), 0, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, average(sources, p, nullptr, p, dst.data(), 0, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, average(sources, p, p, p, nullptr, 0, 0, 0));
        if (sources == 3) {
            EXPECT_EQ(kelStsNullPtrErr, average(sources, p, p, nullptr, dst.data(), 0, 0, 0));
        }
        for (const int length : {0, 17, -4}) {
            EXPECT_EQ(kelStsSizeErr, average(sources, p, p, p, dst.data(), length, 16, 0));
            EXPECT_EQ(kelStsSizeErr, average(sources, p, p, p, dst.data(), 16, length, 0));
        }
        for (const int step : {15, 0, -16})
            EXPECT_EQ(kelStsStepErr, average(sources, p, p, p, dst.data(), 16, 16, step));
        EXPECT_TRUE(dst.untouched());
    }
}

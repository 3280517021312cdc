// mpeg4filter_test.cpp - the post-filters of MPEG-4 and the deviations of blocks, against models in floating
// point that work line by line and sample by sample.

#include "kelvc_mpeg4.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

// ---- the model of the deblocking filter -----------------------------------------------

using Samples10 = std::array<int, 10>;

// Round's halves go away from zero, as those of the standard's "//" do.
double over8(double value) {
    return std::round(value / 8);
}

double frequency(const Samples10 &v, int from) {
    return over8(2 * v[from] - 5 * v[from + 1] + 5 * v[from + 2] - 2 * v[from + 3]);
}

int smallSteps(const Samples10 &v, int thr1) {
    int count = 0;
    for (int i = 1; i < 10; ++i) count += std::abs(v[i] - v[i - 1]) <= thr1 ? 1 : 0;
    return count;
}

Samples10 lowPassed(const Samples10 &v, int qp) {
    int low = 255, high = 0;
    for (int i = 1; i <= 8; ++i) {
        low = std::min(low, v[i]);
        high = std::max(high, v[i]);
    }
    if (high - low >= 2 * qp) return v;
    const int before = std::abs(v[1] - v[0]) < qp ? v[0] : v[1];
    const int behind = std::abs(v[8] - v[9]) < qp ? v[9] : v[8];
    Samples10 result = v;
    for (int n = 1; n <= 8; ++n) {
        double sum = 0;
        for (int k = -4; k <= 4; ++k) {
            const int sample = n + k < 1 ? before : n + k > 8 ? behind : v[n + k];
            const int distance = std::abs(k);
            sum += sample * (distance == 0 ? 4.0 : distance <= 2 ? 2.0 : 1.0);
        }
        result[n] = static_cast<int>(std::round(sum / 16));
    }
    return result;
}

Samples10 levelled(const Samples10 &v, int qp) {
    const double across = frequency(v, 3);
    if (std::fabs(across) >= qp) return v;
    const double least =
        std::min({std::fabs(across), std::fabs(frequency(v, 1)), std::fabs(frequency(v, 5))});
    const double wanted = std::copysign(least, across), half = std::trunc((v[4] - v[5]) / 2.0);
    const double d = std::clamp(over8(5 * (wanted - across)), std::min(0.0, half), std::max(0.0, half));
    Samples10 result = v;
    result[4] -= static_cast<int>(d);
    result[5] += static_cast<int>(d);
    return result;
}

Samples10 deblocked(const Samples10 &v, int qp, int thr1, int thr2) {
    return smallSteps(v, thr1) >= thr2 ? lowPassed(v, qp) : levelled(v, qp);
}

// ---- eight lines across an edge -----------------------------------------------------------

using Lines = std::array<Samples10, 8>;

// Blocks on both sides of the edge: `contrast` within them, and a step of up to `step` between them.
Lines randomLines(std::mt19937 &generator, int contrast, int step) {
    const auto below = [&](int n) { return static_cast<int>(generator() % static_cast<unsigned>(n + 1)); };
    Lines lines;
    for (Samples10 &line : lines) {
        const int before = below(255 - contrast), behind = before + below(2 * step) - step;
        for (int i = 0; i < 10; ++i)
            line[i] = std::clamp((i < 5 ? before : behind) + below(contrast), 0, 255);
    }
    return lines;
}

// The lines in memory, as rows or as columns, and what a filter makes of them.
class Edge {
public:
    Edge(bool vertical, const Lines &lines, int step)
        : m_vertical(vertical), m_block(vertical ? 8 : 10, vertical ? 10 : 8, step, step % 16) {
        for (int n = 0; n < 8; ++n) {
            for (int i = 0; i < 10; ++i) at(n, i) = static_cast<Kel8u>(lines[n][i]);
        }
    }

    KelStatus filter(int qp, int thr1, int thr2) {
        const auto call = m_vertical ? keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR
                                     : keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR;
        return call(&at(0, 5), m_block.step(), qp, thr1, thr2);
    }
    Samples10 line(int n) {
        Samples10 samples;
        for (int i = 0; i < 10; ++i) samples[i] = at(n, i);
        return samples;
    }
    bool surroundingsIntact() { return m_block.surroundingsIntact(); }

private:
    Kel8u &at(int n, int i) {
        return m_block.data()[(m_vertical ? n : i) * m_block.step() + (m_vertical ? i : n)];
    }

    bool m_vertical;
    DstBlock<Kel8u> m_block;
};

void expectFiltered(const Samples10 &before, const Samples10 &after, int qp, int thr1, int thr2) {
    for (bool vertical : {false, true}) {
        Lines lines;
        lines.fill(before);
        Edge edge(vertical, lines, 16);
        ASSERT_EQ(kelStsNoErr, edge.filter(qp, thr1, thr2));
        for (int n = 0; n < 8; ++n) EXPECT_EQ(after, edge.line(n)) << n;
    }
}

// ---- deringing ----------------------------------------------------------------------------

// 3x3 sides and weighted mean of the standard, for the block that starts at (1, 1) of a source of 10 x 10.
int smoothed(const Source<Kel8u> &src, int row, int col, int qp, int threshold) {
    int above = 0;
    double sum = 0;
    for (int i = 0; i <= 2; ++i) {
        for (int j = 0; j <= 2; ++j) {
            above += src(row + i, col + j) >= threshold ? 1 : 0;
            sum += src(row + i, col + j) * (i == 1 ? 2.0 : 1.0) * (j == 1 ? 2.0 : 1.0);
        }
    }
    const int sample = src(row + 1, col + 1), mean = static_cast<int>(std::floor((sum + 8) / 16));
    return above % 9 ? sample : std::clamp(mean, sample - qp / 2, sample + qp / 2);
}

// A macroblock whose blocks hold only two values each.
struct Macroblock {
    std::array<int, 6> low, high; // Y0 to Y3, Cb, Cr

    std::vector<int> thresholds(int step) const {
        Source<Kel8u> y(16, 16, 16 + step, step % 16), cb(8, 8, 8 + step), cr(8, 8, 8 + step);
        const auto value = [this](int k, int i) { return i == 37 ? high[k] : low[k]; };
        y.fill([&](int row, int col) { return value(row / 8 * 2 + col / 8, row % 8 * 8 + col % 8); });
        cb.fill([&](int row, int col) { return value(4, 8 * row + col); });
        cr.fill([&](int row, int col) { return value(5, 8 * row + col); });
        Destination<Kel32s> result(6, 1);
        EXPECT_EQ(kelStsNoErr,
                  keliFilterDeringingThreshold_MPEG4_8u_P3R(y.data(), y.step(), cb.data(), cb.step(),
                                                            cr.data(), cr.step(), result.data()));
        EXPECT_TRUE(result.surroundingsIntact());
        std::vector<int> values;
        for (int k = 0; k < 6; ++k) values.push_back(result[k]);
        return values;
    }
};

} // namespace

// ---- deblocking ---------------------------------------------------------------------------

TEST(KelvaraMpeg4Filter, DeblockedEdgesEqualTheModel) {
    std::mt19937 generator(1);
    int changed = 0;
    for (int i = 0; i < 2000; ++i) {
        const Lines lines = randomLines(generator, i % 7 * (i % 11), i % 50);
        const int qp = 1 + i % 31, thr1 = i % 4, thr2 = i % 10;
        Edge edge(i % 2, lines, 10 + i % 30);
        SCOPED_TRACE(i);
        ASSERT_EQ(kelStsNoErr, edge.filter(qp, thr1, thr2));
        EXPECT_TRUE(edge.surroundingsIntact());
        for (int n = 0; n < 8; ++n) {
            ASSERT_EQ(deblocked(lines[n], qp, thr1, thr2), edge.line(n)) << n;
            changed += lines[n] != edge.line(n);
        }
    }
    EXPECT_GT(changed, 4000);
}

TEST(KelvaraMpeg4Filter, SmallStepInASmoothAreaBecomesARamp) {
    // DC offset mode: 40 and 48 in shares of 16.
    expectFiltered({40, 40, 40, 40, 40, 48, 48, 48, 48, 48}, {40, 41, 41, 42, 43, 45, 46, 47, 48, 48}, 5, 2,
                   6);
    // The same step, too high for the quantiser.
    expectFiltered({40, 40, 40, 40, 40, 48, 48, 48, 48, 48}, {40, 40, 40, 40, 40, 48, 48, 48, 48, 48}, 4, 2,
                   6);
}

TEST(KelvaraMpeg4Filter, SampleOfAnotherAreaTakesNoPart) {
    expectFiltered({90, 40, 40, 40, 40, 40, 40, 40, 40, 40}, {90, 40, 40, 40, 40, 40, 40, 40, 40, 40}, 5, 2,
                   6);
    expectFiltered({44, 40, 40, 40, 40, 40, 40, 40, 40, 40}, {44, 42, 41, 41, 40, 40, 40, 40, 40, 40}, 5, 2,
                   6);
}

TEST(KelvaraMpeg4Filter, DefaultModeMovesTheTwoSamplesAtTheEdge) {
    // across: (2 * 40 - 5 * 40 + 5 * 48 - 2 * 48) / 8 = 3, beside it (2 - 5 + 5) * 40 - 2 * 40 = 0: 15 / 8.
    expectFiltered({40, 40, 40, 40, 40, 48, 48, 48, 48, 48}, {40, 40, 40, 40, 42, 46, 48, 48, 48, 48}, 5, 2,
                   9);
    // An edge of the picture stays: across is 3 and QP 3.
    expectFiltered({40, 40, 40, 40, 40, 48, 48, 48, 48, 48}, {40, 40, 40, 40, 40, 48, 48, 48, 48, 48}, 3, 2,
                   9);
}

// Eight of the nine steps are 0, one is 8.
TEST(KelvaraMpeg4Filter, ThresholdsChooseTheMode) {
    const Samples10 before = {40, 40, 40, 40, 40, 48, 48, 48, 48, 48};
    const Samples10 smooth = {40, 41, 41, 42, 43, 45, 46, 47, 48, 48};
    const Samples10 moved = {40, 40, 40, 40, 42, 46, 48, 48, 48, 48};
    expectFiltered(before, smooth, 5, 0, 8);
    expectFiltered(before, moved, 5, 0, 9);
    expectFiltered(before, moved, 5, 7, 9);
    expectFiltered(before, smooth, 5, 8, 9);
    expectFiltered(before, moved, 5, 8, 10);
    expectFiltered(before, smooth, 5, 0, 0);
}

// ---- deringing ------------------------------------------------------------------------------

TEST(KelvaraMpeg4Filter, SmoothedBlocksEqualTheModel) {
    const Pattern patterns[] = {noise(1, 255),     noise(2, 40),
                                checkerboard(255), constant(255),
                                constant(0),       [](int row, int col) { return 20 * row + 3 * col; }};
    for (const Pattern &pattern : patterns) {
        for (int more : {0, 7, 310}) {
            Source<Kel8u> src(10, 10, 10 + more, more % 16);
            src.fill(pattern);
            for (int qp = 1; qp <= 31; ++qp) {
                for (int threshold : {0, 15, 32, 128, 255}) {
                    SCOPED_TRACE(testing::Message() << "QP " << qp << ", threshold " << threshold);
                    DstBlock<Kel8u> dst(8, 8, 8 + more, more % 16);
                    ASSERT_EQ(kelStsNoErr, keliFilterDeringingSmooth8x8_MPEG4_8u_C1R(
                                               src.data() + src.step() + 1, src.step(), dst.data(),
                                               dst.step(), qp, threshold));
                    EXPECT_TRUE(dst.surroundingsIntact());
                    for (int i = 0; i < 64; ++i)
                        ASSERT_EQ(smoothed(src, i / 8, i % 8, qp, threshold), dst(i / 8, i % 8)) << i;
                }
            }
        }
    }
}

// One bright sample among dark ones below the threshold: its mean is 64 * 4 / 16 above 0.
TEST(KelvaraMpeg4Filter, SmoothingMovesASampleByHalfTheQuantiser) {
    Source<Kel8u> src(10, 10, 10);
    src.fill([](int row, int col) { return row == 4 && col == 4 ? 64 : 0; });
    const auto centre = [&](int qp, int threshold) {
        DstBlock<Kel8u> dst(8, 8, 8);
        EXPECT_EQ(kelStsNoErr, keliFilterDeringingSmooth8x8_MPEG4_8u_C1R(src.data() + 11, 10, dst.data(), 8,
                                                                         qp, threshold));
        return dst(3, 3);
    };
    EXPECT_EQ(64, centre(31, 64));
    EXPECT_EQ(49, centre(31, 65));
    EXPECT_EQ(62, centre(5, 65));
    EXPECT_EQ(64, centre(1, 65));
}

TEST(KelvaraMpeg4Filter, ThresholdIsTheMiddleOfABlock) {
    for (int step : {0, 1, 304}) {
        const Macroblock m = {{0, 10, 20, 101, 0, 7}, {40, 51, 60, 164, 255, 7}};
        EXPECT_EQ((std::vector<int>{20, 31, 40, 133, 128, 7}), m.thresholds(step));
    }
}

TEST(KelvaraMpeg4Filter, FlatBlockTakesTheThresholdOfTheOneWithTheHighestContrast) {
    const Macroblock m = {{0, 10, 20, 100, 30, 30}, {31, 74, 52, 131, 60, 61}};
    EXPECT_EQ((std::vector<int>{42, 42, 36, 42, 45, 46}), m.thresholds(0));
    const Macroblock less = {{0, 10, 20, 100, 30, 30}, {31, 73, 52, 131, 60, 61}};
    EXPECT_EQ((std::vector<int>{16, 42, 36, 116, 45, 46}), less.thresholds(0));
}

TEST(KelvaraMpeg4Filter, LumaWithoutContrastHasThresholdZero) {
    const Macroblock m = {{0, 10, 20, 100, 30, 0}, {15, 20, 20, 115, 60, 200}};
    EXPECT_EQ((std::vector<int>{0, 0, 0, 0, 45, 100}), m.thresholds(0));
    const Macroblock more = {{0, 10, 20, 100, 30, 0}, {16, 20, 20, 115, 60, 200}};
    EXPECT_EQ((std::vector<int>{8, 15, 20, 108, 45, 100}), more.thresholds(0));
}

// ---- deviations ---------------------------------------------------------------------------

TEST(KelvaraMpeg4Filter, DeviationsAreSummedFromTheMean) {
    const Pattern patterns[] = {noise(1, 255), noise(2, 255), constant(255), checkerboard(255),
                                [](int row, int col) { return row == 0 && col == 0 ? 255 : 0; }};
    for (const Pattern &pattern : patterns) {
        for (int n : {8, 16}) {
            for (int more : {0, 1, 304}) {
                Source<Kel8u> src(n, n, n + more, more % 16);
                src.fill(pattern);
                double sum = 0, deviations = 0;
                for (int i = 0; i < n * n; ++i) sum += src(i / n, i % n);
                const double mean = std::floor(sum / (n * n));
                for (int i = 0; i < n * n; ++i) deviations += std::fabs(src(i / n, i % n) - mean);
                Destination<Kel32s> result(1, more % 16);
                const auto call = n == 8 ? keliMeanAbsDev8x8_8u32s_C1R : keliMeanAbsDev16x16_8u32s_C1R;
                ASSERT_EQ(kelStsNoErr, call(src.data(), src.step(), result.data()));
                EXPECT_TRUE(result.surroundingsIntact());
                EXPECT_EQ(static_cast<int>(deviations), result[0]);
            }
        }
    }
}

// ---- bad arguments ------------------------------------------------------------------------

TEST(KelvaraMpeg4Filter, DeblockingRefusesBadArguments) {
    for (bool vertical : {false, true}) {
        const auto call = vertical ? keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR
                                   : keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR;
        DstBlock<Kel8u> image(16, 16, 16);
        Kel8u *edge = image.data() + 5 * 16 + 5;
        EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, 0, 2, 6));
        for (int step : {vertical ? 9 : 7, 0, -16})
            EXPECT_EQ(kelStsStepErr, call(edge, step, 0, 2, 6)) << step;
        for (int qp : {-1, 0, 32}) EXPECT_EQ(kelStsRangeErr, call(edge, 16, qp, 2, 6)) << qp;
        EXPECT_EQ(kelStsRangeErr, call(edge, 16, 5, -1, 6));
        EXPECT_EQ(kelStsRangeErr, call(edge, 16, 5, 2, -1));
        EXPECT_TRUE(image.untouched());
    }
}

TEST(KelvaraMpeg4Filter, DeringingRefusesBadArguments) {
    Source<Kel8u> src(16, 16, 16);
    DstBlock<Kel8u> dst(8, 8, 8);
    Destination<Kel32s> thresholds(6);
    const Kel8u *p = src.data() + 17;
    const auto smooth = keliFilterDeringingSmooth8x8_MPEG4_8u_C1R;
    EXPECT_EQ(kelStsNullPtrErr, smooth(nullptr, 0, dst.data(), 8, 2, 32));
    EXPECT_EQ(kelStsNullPtrErr, smooth(p, 16, nullptr, 0, 2, 32));
    for (int step : {9, 0, -16}) EXPECT_EQ(kelStsStepErr, smooth(p, step, dst.data(), 8, 0, 32)) << step;
    for (int step : {7, 0, -8}) EXPECT_EQ(kelStsStepErr, smooth(p, 16, dst.data(), step, 0, 32)) << step;
    for (int qp : {-1, 0, 32}) EXPECT_EQ(kelStsRangeErr, smooth(p, 16, dst.data(), 8, qp, 32)) << qp;
    for (int t : {-1, 256}) EXPECT_EQ(kelStsRangeErr, smooth(p, 16, dst.data(), 8, 2, t)) << t;
    const auto threshold = [&](int missing, int y, int cb, int cr) {
        const auto plane = [&](int i) { return i == missing ? nullptr : src.data(); };
        return keliFilterDeringingThreshold_MPEG4_8u_P3R(plane(0), y, plane(1), cb, plane(2), cr,
                                                         missing == 3 ? nullptr : thresholds.data());
    };
    for (int missing = 0; missing < 4; ++missing) EXPECT_EQ(kelStsNullPtrErr, threshold(missing, 0, 8, 8));
    EXPECT_EQ(kelStsStepErr, threshold(-1, 15, 8, 8));
    EXPECT_EQ(kelStsStepErr, threshold(-1, 16, 7, 8));
    EXPECT_EQ(kelStsStepErr, threshold(-1, 16, 8, 7));
    EXPECT_TRUE(dst.untouched());
    EXPECT_TRUE(thresholds.untouched());
}

TEST(KelvaraMpeg4Filter, DeviationsRefuseBadArguments) {
    Source<Kel8u> src(16, 16, 16);
    Destination<Kel32s> result(1);
    EXPECT_EQ(kelStsNullPtrErr, keliMeanAbsDev8x8_8u32s_C1R(nullptr, 0, result.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliMeanAbsDev16x16_8u32s_C1R(src.data(), 0, nullptr));
    EXPECT_EQ(kelStsStepErr, keliMeanAbsDev8x8_8u32s_C1R(src.data(), 7, result.data()));
    EXPECT_EQ(kelStsStepErr, keliMeanAbsDev16x16_8u32s_C1R(src.data(), 15, result.data()));
    EXPECT_TRUE(result.untouched());
}

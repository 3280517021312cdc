// deblocking_test.cpp - deblocking filters against a model that filters a whole picture sample by sample.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>

namespace {

using Bytes = std::vector<Kel8u>;
using Taps = std::array<int, 8>; // of p3 p2 p1 p0 q0 q1 q2 q3

// ---- functions --------------------------------------------------------------------

struct Arguments {
    Kel8u alpha[2], beta[2], thresholds[16], strengths[16];
};

using SixArguments = KelStatus (*)(Kel8u *, int, const Kel8u *, const Kel8u *, const Kel8u *, const Kel8u *);
using OneRecord = KelStatus (*)(const KeliDeblockingInfo *);
using Call =
    std::function<KelStatus(Kel8u *, int, const Kel8u *, const Kel8u *, const Kel8u *, const Kel8u *)>;

Call call(SixArguments function) {
    return function;
}

Call call(OneRecord function) {
    return [function](Kel8u *p, int step, const Kel8u *a, const Kel8u *b, const Kel8u *t, const Kel8u *s) {
        const KeliDeblockingInfo info = {p, step, a, b, t, s};
        return function(&info);
    };
}

struct Function {
    const char *name;
    Call run;
    bool vertical, luma, avs;
    int width, height, channels; // samples a colour, rows that are filtered
    std::vector<int> edges;      // where they lie
    int segment;                 // lines
    int strengthRow;             // strengths from one edge to the next
    bool thresholdEach;          // a threshold for each segment, 4 an edge; else one an edge

    int rowBytes() const { return width * channels; }
    int lines() const { return vertical ? height : width; }
};

// clang-format off
const std::vector<Function> functions = {
    {"luma ver",       call(keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR),         true,  true,  false, 16, 16, 1, {0, 4, 8, 12}, 4, 4, true},
    {"luma hor",       call(keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR),         false, true,  false, 16, 16, 1, {0, 4, 8, 12}, 4, 4, true},
    {"chroma ver",     call(keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR),       true,  false, false, 8,  8,  1, {0, 4},        2, 8, true},
    {"chroma hor",     call(keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR),       false, false, false, 8,  8,  1, {0, 4},        2, 8, true},
    {"pairs ver",      call(keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR),       true,  false, false, 8,  8,  2, {0, 4},        2, 8, true},
    {"pairs hor",      call(keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR),       false, false, false, 8,  8,  2, {0, 4},        2, 8, true},
    {"4:2:2 ver",      call(keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR),     true,  false, false, 8,  16, 1, {0, 4},        4, 8, true},
    {"4:2:2 hor",      call(keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR),     false, false, false, 8,  16, 1, {0, 4, 8, 12}, 2, 4, true},
    {"mixed luma",     call(keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR),   true,  true,  false, 16, 8,  1, {0},           2, 4, true},
    {"mixed chroma",   call(keliFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR), true,  false, false, 8,  4,  1, {0},           1, 4, true},
    {"avs luma ver",   call(keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR),          true,  true,  true,  16, 16, 1, {0, 8},        8, 2, false},
    {"avs luma hor",   call(keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR),          false, true,  true,  16, 16, 1, {0, 8},        8, 2, false},
    {"avs chroma ver", call(keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR),        true,  false, true,  8,  8,  1, {0},           4, 2, false},
    {"avs chroma hor", call(keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR),        false, false, true,  8,  8,  1, {0},           4, 2, false},
};
// clang-format on

// ---- the model of a line ------------------------------------------------------------

int weighted(const Taps &line, const Taps &weights) {
    int sum = 0, total = 0;
    for (int i = 0; i < 8; ++i) {
        sum += line[i] * weights[i];
        total += weights[i];
    }
    return (sum + total / 2) / total;
}

int floorDiv(int a, int b) {
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}

int sample(int value) {
    return std::clamp(value, 0, 255);
}

struct Rule {
    int strength, alpha, beta, threshold;
};

Taps mirrored(Taps line) {
    std::reverse(line.begin(), line.end());
    return line;
}

// p3 to p0 of the line behind the filter of strength 4.
Taps h264Strong(const Taps &x, const Rule &rule, bool luma) {
    Taps y = x;
    const bool deep = luma && std::abs(x[1] - x[3]) < rule.beta && std::abs(x[3] - x[4]) < rule.alpha / 4 + 2;
    y[3] = weighted(x, deep ? Taps{0, 1, 2, 2, 2, 1} : Taps{0, 0, 2, 1, 0, 1});
    if (deep) y[2] = weighted(x, {0, 1, 1, 1, 1});
    if (deep) y[1] = weighted(x, {2, 3, 1, 1, 1});
    return y;
}

Taps avsStrong(const Taps &x, const Rule &rule, bool luma) {
    Taps y = x;
    const bool deep = std::abs(x[1] - x[3]) < rule.beta && std::abs(x[3] - x[4]) < rule.alpha / 4 + 2;
    y[3] = weighted(x, deep ? Taps{0, 0, 1, 2, 1} : Taps{0, 0, 2, 1, 1});
    if (deep && luma) y[2] = weighted(x, {0, 0, 2, 1, 1});
    return y;
}

Taps h264Normal(const Taps &x, const Rule &rule, bool luma) {
    const bool before = std::abs(x[1] - x[3]) < rule.beta, behind = std::abs(x[6] - x[4]) < rule.beta;
    const int tc0 = rule.threshold, tc = luma ? tc0 + before + behind : tc0 + 1;
    const int delta = std::clamp(floorDiv(4 * (x[4] - x[3]) + x[2] - x[5] + 4, 8), -tc, tc);
    Taps y = x;
    y[3] = sample(x[3] + delta);
    y[4] = sample(x[4] - delta);
    const int middle = (x[3] + x[4] + 1) / 2;
    if (luma && before) y[2] += std::clamp(floorDiv(x[1] + middle - 2 * x[2], 2), -tc0, tc0);
    if (luma && behind) y[5] += std::clamp(floorDiv(x[6] + middle - 2 * x[5], 2), -tc0, tc0);
    return y;
}

Taps avsNormal(const Taps &x, const Rule &rule, bool luma) {
    const int tc = rule.threshold;
    const auto limited = [tc](int sum) { return std::clamp(floorDiv(sum + 4, 8), -tc, tc); };
    const int delta = limited(3 * (x[4] - x[3]) + x[2] - x[5]);
    Taps y = x;
    y[3] = sample(x[3] + delta);
    y[4] = sample(x[4] - delta);
    if (luma && std::abs(x[1] - x[3]) < rule.beta)
        y[2] = sample(x[2] + limited(3 * (y[3] - x[2]) + x[1] - y[4]));
    if (luma && std::abs(x[6] - x[4]) < rule.beta)
        y[5] = sample(x[5] - limited(3 * (x[5] - y[4]) + y[3] - x[6]));
    return y;
}

Taps modelLine(const Taps &x, const Rule &rule, bool luma, bool avs) {
    const bool blocky = std::abs(x[3] - x[4]) < rule.alpha && std::abs(x[2] - x[3]) < rule.beta &&
                        std::abs(x[5] - x[4]) < rule.beta;
    if (rule.strength == 0 || !blocky) return x;
    if (rule.strength < (avs ? 2 : 4)) return avs ? avsNormal(x, rule, luma) : h264Normal(x, rule, luma);
    const auto strong = avs ? avsStrong : h264Strong;
    const Taps before = strong(x, rule, luma), behind = mirrored(strong(mirrored(x), rule, luma));
    return {before[0], before[1], before[2], before[3], behind[4], behind[5], behind[6], behind[7]};
}

// ---- the model of a macroblock -------------------------------------------------------

// A macroblock with the samples in front of its first edge. The vector ends with its last sample, so that a
// sanitizer build sees every access outside.
struct Picture {
    Picture(const Function &f, int step, int offset)
        : step(step),
          first(offset + (f.vertical ? 4 * f.channels : 4 * step)),
          bytes(first + (f.height - 1) * step + f.rowBytes()) {}

    Kel8u *macroblock() { return bytes.data() + first; }

    int step, first;
    Bytes bytes;
};

Rule ruleOf(const Function &f, const Arguments &args, int edge, int line) {
    const int segment = line / f.segment, inside = edge ? 1 : 0;
    return {args.strengths[f.strengthRow * edge + segment], args.alpha[inside], args.beta[inside],
            args.thresholds[f.thresholdEach ? 4 * edge + segment : edge]};
}

void modelEdges(const Function &f, Picture &picture, const Arguments &args) {
    for (size_t edge = 0; edge < f.edges.size(); ++edge) {
        for (int line = 0; line < f.lines(); ++line) {
            for (int channel = 0; channel < f.channels; ++channel) {
                const auto at = [&](int i) -> Kel8u & {
                    const int across = f.edges[edge] + i - 4;
                    const int row = f.vertical ? line : across, col = f.vertical ? across : line;
                    return picture.bytes[picture.first + row * picture.step + col * f.channels + channel];
                };
                const int reach = f.luma ? 4 : 3; // chroma lies 4 samples apart: the last one may not exist
                Taps x{};
                for (int i = 4 - reach; i < 4 + reach; ++i) x[i] = at(i);
                const Taps y = modelLine(x, ruleOf(f, args, static_cast<int>(edge), line), f.luma, f.avs);
                for (int i = 4 - reach; i < 4 + reach; ++i) at(i) = static_cast<Kel8u>(y[i]);
            }
        }
    }
}

// ---- data ---------------------------------------------------------------------------

class Data {
public:
    explicit Data(unsigned seed) : m_random(seed) {}

    int below(int n) { return static_cast<int>(m_random() % static_cast<unsigned>(n)); }

    // Values near a common one, so that edges are filtered, or over the whole range; some at its ends.
    void fill(Bytes &bytes) {
        const int spread = 1 << (1 + below(8));
        const int base = below(256);
        for (Kel8u &b : bytes) b = static_cast<Kel8u>(sample(base + below(spread) - spread / 2));
    }

    Arguments arguments(bool avs) {
        Arguments args;
        for (Kel8u &a : args.alpha) a = static_cast<Kel8u>(below(8) ? below(256) : 0);
        for (Kel8u &b : args.beta) b = static_cast<Kel8u>(below(4) ? below(28) : below(256));
        for (Kel8u &t : args.thresholds) t = static_cast<Kel8u>(below(8) ? below(26) : below(256));
        for (Kel8u &s : args.strengths) s = static_cast<Kel8u>(below(avs ? 3 : 5));
        return args;
    }

private:
    std::mt19937 m_random;
};

KelStatus run(const Function &f, Picture &picture, const Arguments &args) {
    return f.run(picture.macroblock(), picture.step, args.alpha, args.beta, args.thresholds, args.strengths);
}

Arguments same(int alpha, int beta, int threshold, int strength) {
    Arguments args;
    std::fill_n(args.alpha, 2, static_cast<Kel8u>(alpha));
    std::fill_n(args.beta, 2, static_cast<Kel8u>(beta));
    std::fill_n(args.thresholds, 16, static_cast<Kel8u>(threshold));
    std::fill_n(args.strengths, 16, static_cast<Kel8u>(strength));
    return args;
}

// A macroblock of `behind` with `before` in front of its first edge.
Picture withStep(const Function &f, int before, int behind) {
    Picture picture(f, f.vertical ? f.rowBytes() + 4 * f.channels : f.rowBytes(), 0);
    picture.bytes.assign(picture.bytes.size(), static_cast<Kel8u>(behind));
    for (int line = 0; line < f.lines() * f.channels; ++line) {
        for (int i = 1; i <= 4; ++i) {
            const int row = f.vertical ? line / f.channels : -i;
            const int col = f.vertical ? line % f.channels - i * f.channels : line;
            picture.bytes[picture.first + row * picture.step + col] = static_cast<Kel8u>(before);
        }
    }
    return picture;
}

// The same with strengths for the first edge alone: the next one would see what this one changed.
Arguments firstEdgeOnly(const Function &f, int threshold, int strength) {
    Arguments args = same(40, 10, threshold, strength);
    std::fill(args.strengths + std::min(f.strengthRow, 4), args.strengths + 16, static_cast<Kel8u>(0));
    return args;
}

// Samples across the first edge in the first line: four in front, four behind.
std::vector<int> across(const Function &f, Picture &picture) {
    std::vector<int> values;
    for (int i = -4; i < 4; ++i)
        values.push_back(picture.macroblock()[i * (f.vertical ? f.channels : picture.step)]);
    return values;
}

} // namespace

// ---- tests --------------------------------------------------------------------------

TEST(KelvaraDeblocking, EveryFilterEqualsTheModel) {
    Data data(1);
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        int changed = 0;
        for (int round = 0; round < 1000; ++round) {
            const int step = f.rowBytes() + (round % 3 ? data.below(40) : 0);
            Picture filtered(f, step, data.below(8));
            data.fill(filtered.bytes);
            const Bytes before = filtered.bytes;
            const Arguments args = data.arguments(f.avs);
            Picture expected = filtered;
            modelEdges(f, expected, args);
            ASSERT_EQ(run(f, filtered, args), kelStsNoErr);
            ASSERT_EQ(filtered.bytes, expected.bytes) << "round " << round;
            changed += filtered.bytes != before;
        }
        EXPECT_GT(changed, 300);
    }
}

TEST(KelvaraDeblocking, EveryStrengthFiltersAndNoneSkips) {
    for (const Function &f : functions) {
        for (int strength = 0; strength <= (f.avs ? 2 : 4); ++strength) {
            SCOPED_TRACE(testing::Message() << f.name << ", strength " << strength);
            Picture picture = withStep(f, 100, 108);
            const Bytes before = picture.bytes;
            ASSERT_EQ(run(f, picture, same(40, 10, 2, strength)), kelStsNoErr);
            EXPECT_EQ(picture.bytes != before, strength > 0);
        }
    }
}

TEST(KelvaraDeblocking, AlphaOrBetaOfZeroLeavesTheEdgeAlone) {
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        Picture picture = withStep(f, 100, 101);
        const Bytes before = picture.bytes;
        ASSERT_EQ(run(f, picture, same(0, 10, 2, 2)), kelStsNoErr);
        ASSERT_EQ(run(f, picture, same(40, 0, 2, 2)), kelStsNoErr);
        EXPECT_EQ(picture.bytes, before);
    }
}

// A step of 8 between flat sides, by the formulas of ITU-T H.264 8.7.2.3 and 8.7.2.4 worked out by hand.
TEST(KelvaraDeblocking, H264FiltersAFlatStepAsTheStandardSays) {
    struct {
        int function, strength, threshold;
        std::vector<int> expected;
    } const cases[] = {
        {0, 4, 0, {100, 101, 102, 103, 105, 106, 107, 108}},
        {1, 4, 0, {100, 101, 102, 103, 105, 106, 107, 108}},
        {0, 3, 1, {100, 100, 101, 103, 105, 107, 108, 108}},
        {1, 1, 0, {100, 100, 100, 102, 106, 108, 108, 108}},
        {2, 4, 0, {100, 100, 100, 102, 106, 108, 108, 108}},
        {4, 4, 0, {100, 100, 100, 102, 106, 108, 108, 108}},
        {3, 2, 1, {100, 100, 100, 102, 106, 108, 108, 108}},
        {5, 2, 0, {100, 100, 100, 101, 107, 108, 108, 108}},
    };
    for (const auto &c : cases) {
        const Function &f = functions[c.function];
        SCOPED_TRACE(testing::Message() << f.name << ", strength " << c.strength);
        Picture picture = withStep(f, 100, 108);
        ASSERT_EQ(run(f, picture, firstEdgeOnly(f, c.threshold, c.strength)), kelStsNoErr);
        EXPECT_EQ(across(f, picture), c.expected);
    }
}

// The same by GB/T 20090.2.
TEST(KelvaraDeblocking, AvsFiltersAFlatStepAsTheStandardSays) {
    struct {
        int function, strength;
        std::vector<int> expected;
    } const cases[] = {
        {10, 2, {100, 100, 102, 102, 106, 106, 108, 108}},
        {13, 2, {100, 100, 100, 102, 106, 108, 108, 108}},
        {11, 1, {100, 100, 100, 102, 106, 108, 108, 108}},
        {12, 1, {100, 100, 100, 102, 106, 108, 108, 108}},
    };
    for (const auto &c : cases) {
        const Function &f = functions[c.function];
        SCOPED_TRACE(testing::Message() << f.name << ", strength " << c.strength);
        Picture picture = withStep(f, 100, 108);
        ASSERT_EQ(run(f, picture, firstEdgeOnly(f, 2, c.strength)), kelStsNoErr);
        EXPECT_EQ(across(f, picture), c.expected);
    }
}

TEST(KelvaraDeblocking, BadArgumentsAreRefusedAndNothingIsWritten) {
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        Picture picture = withStep(f, 100, 108);
        const Bytes before = picture.bytes;
        const Arguments a = same(40, 10, 2, 1);
        Kel8u *p = picture.macroblock();
        const int step = picture.step;
        EXPECT_EQ(f.run(nullptr, step, a.alpha, a.beta, a.thresholds, a.strengths), kelStsNullPtrErr);
        EXPECT_EQ(f.run(p, step, nullptr, a.beta, a.thresholds, a.strengths), kelStsNullPtrErr);
        EXPECT_EQ(f.run(p, step, a.alpha, nullptr, a.thresholds, a.strengths), kelStsNullPtrErr);
        EXPECT_EQ(f.run(p, step, a.alpha, a.beta, nullptr, a.strengths), kelStsNullPtrErr);
        EXPECT_EQ(f.run(p, step, a.alpha, a.beta, a.thresholds, nullptr), kelStsNullPtrErr);
        for (int bad : {f.rowBytes() - 1, 0, -step}) {
            EXPECT_EQ(f.run(p, bad, a.alpha, a.beta, a.thresholds, a.strengths), kelStsStepErr) << bad;
        }
        EXPECT_EQ(picture.bytes, before);
    }
    EXPECT_EQ(keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR(nullptr), kelStsNullPtrErr);
    EXPECT_EQ(keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR(nullptr), kelStsNullPtrErr);
    EXPECT_EQ(keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR(nullptr), kelStsNullPtrErr);
    EXPECT_EQ(keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR(nullptr), kelStsNullPtrErr);
    EXPECT_EQ(keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR(nullptr), kelStsNullPtrErr);
    EXPECT_EQ(keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR(nullptr), kelStsNullPtrErr);
}

// Only the strengths that a filter uses are judged, each of them.
TEST(KelvaraDeblocking, AStrengthOutOfRangeIsRefusedWhereItCounts) {
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        for (int i = 0; i < 16; ++i) {
            Picture picture = withStep(f, 100, 108);
            const Bytes before = picture.bytes;
            Arguments args = same(40, 10, 2, 1);
            args.strengths[i] = f.avs ? 3 : 5;
            const int edge = i / f.strengthRow, segment = i % f.strengthRow;
            const bool used = edge < static_cast<int>(f.edges.size()) && segment < f.lines() / f.segment;
            EXPECT_EQ(run(f, picture, args), used ? kelStsRangeErr : kelStsNoErr) << i;
            EXPECT_EQ(picture.bytes == before, used) << i;
        }
    }
}

// Pairs of alpha and beta from ITU-T H.264 Table 8-16: a step of half of alpha between flat sides.
TEST(KelvaraDeblocking, FiltersMakeStepsSmallerAndNeverTurnThem) {
    const int alphas[] = {4, 10, 15, 28, 45, 63, 113, 162, 255}, betas[] = {2, 4, 6, 8, 10, 12, 15, 16, 18};
    for (const Function &f : functions) {
        for (int i = 0; i < 9; ++i) {
            for (int strength = 1; strength <= (f.avs ? 2 : 4); ++strength) {
                SCOPED_TRACE(testing::Message() << f.name << ", alpha " << alphas[i] << ", " << strength);
                Picture picture = withStep(f, 60, 60 + alphas[i] / 2);
                ASSERT_EQ(run(f, picture, same(alphas[i], betas[i], 1 + i, strength)), kelStsNoErr);
                const std::vector<int> line = across(f, picture);
                EXPECT_LE(line[3], line[4]);
                EXPECT_LT(line[4] - line[3], alphas[i] / 2);
            }
        }
    }
}

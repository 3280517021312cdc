// mpeg4picture_test.cpp - the suites of MPEG-4 that work on pictures: their data and their calls.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

const int pictureWidth = 320;
const Arg step = value(pictureWidth);

const Cells sizes = {"8x8", "16x16", "64x64", "128x128"};
const Cells roundings = {"-", "round"};

// ---- brightness, copies ----------------------------------------------------

char const *const brightness = "keliChangeSpriteBrightness_MPEG4_8u_C1IR";

// Rows are rounded up to 16 bytes.
const std::vector<Expected> brightnesses = {
    Expected("Timvcmp4_Bright", brightness, "e", 0)
        .parm("size", sizes)
        .divisors({64, 256, 4096, 16384})
        .blocks({8 * 16})
        .updates({0}),
};

struct Block {
    char const *function;
    int width, height;
};

const Block copies[] = {
    {"keliCopy8x8QP_MPEG4_8u_C1R", 8, 8},
    {"keliCopy16x8QP_MPEG4_8u_C1R", 16, 8},
    {"keliCopy16x16QP_MPEG4_8u_C1R", 16, 16},
};

std::vector<Expected> copiesOfBlocks() {
    std::vector<Expected> expected;
    for (Block const &b : copies) {
        const int bytes = pictureWidth * b.height;
        expected.push_back(Expected("Timvcmp4_CopyBlk", b.function, "e", b.width * b.height)
                               .parm("acc", suite::numbers(0, 3))
                               .parm("rounding", roundings)
                               .blocks({bytes, bytes})
                               .writes({1}));
    }
    return expected;
}

// ---- post-filters ---------------------------------------------------------------------------

char const *const horEdge = "keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR";
char const *const verEdge = "keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR";
char const *const smoothing = "keliFilterDeringingSmooth8x8_MPEG4_8u_C1R";
char const *const thresholds = "keliFilterDeringingThreshold_MPEG4_8u_P3R";

// Both modes leave a ramp as it is.
Expected edgeFilter(char const *function) {
    return Expected("Timvcmp4_filterDeblock", function, " ", 1)
        .parm("offsetMode", {"DC_mode", "default_mode"})
        .blocks({16 * pictureWidth});
}

const std::vector<Expected> edgeFilters = {edgeFilter(horEdge), edgeFilter(verEdge)};

const std::vector<Expected> smoothings = {
    Expected("Timvcmp4_filterSmooth", smoothing, " ", 1)
        .parm("data", {"mono", "drizzle"})
        .blocks({16 * pictureWidth, 8 * 160})
        .writes({1}),
};

const std::vector<Expected> thresholdsOfBlocks = {
    Expected("Timvcmp4_filterThresh", thresholds, " ", 1).blocks({16 * pictureWidth, 8 * 160, 8 * 160}),
};

// ---- overlapped compensation, differences -------------------------------------------------------

const Block overlaps[] = {
    {"keliOBMC8x8HP_MPEG4_8u_C1R", 8, 8},
    {"keliOBMC16x16HP_MPEG4_8u_C1R", 16, 16},
    {"keliOBMC8x8QP_MPEG4_8u_C1R", 8, 8},
};

std::vector<Expected> overlapped() {
    std::vector<Expected> expected;
    for (Block const &b : overlaps) {
        expected.push_back(Expected("Timvcmp4_OBMC", b.function, "e", b.width * b.height)
                               .parm("motionVector", {"00", "01", "10", "11"})
                               .parm("rounding", {"0", "1"})
                               .blocks({pictureWidth * (b.height + 8), pictureWidth * b.height})
                               .writes({1}));
    }
    return expected;
}

char const *const sad = "keliSAD8x8_8u32s_C1R";
char const *const deviation16 = "keliMeanAbsDev16x16_8u32s_C1R";
char const *const deviation8 = "keliMeanAbsDev8x8_8u32s_C1R";

// The reference of the sum has a row more, for positions half a sample further down.
const std::vector<Expected> differences = {
    Expected("Timvcmp4_SAD", sad, "e", 64)
        .parm("mcType", {"ff", "fh", "hf", "hh"})
        .blocks({8 * pictureWidth, 9 * pictureWidth}),
    Expected("Timvcmp4_SAD", deviation16, "e", 256).blocks({16 * pictureWidth, 16 * pictureWidth}),
    Expected("Timvcmp4_SAD", deviation8, "e", 64).blocks({8 * pictureWidth, 8 * pictureWidth}),
};

std::vector<std::vector<KeliMotionVector>> g_vectors; // of each call, warm-ups too

class Mpeg4Picture : public suite::SuiteTest {};

} // namespace

SUITE_TEST(Mpeg4Bright, "mpeg4bright.cpp", brightnesses);
SUITE_TEST(Mpeg4CopyBlk, "mpeg4copyblk.cpp", copiesOfBlocks());
SUITE_TEST(Mpeg4Deblock, "mpeg4deblock.cpp", edgeFilters);
SUITE_TEST(Mpeg4Smooth, "mpeg4smooth.cpp", smoothings);
SUITE_TEST(Mpeg4Thresh, "mpeg4thresh.cpp", thresholdsOfBlocks);
SUITE_TEST(Mpeg4Obmc, "mpeg4obmc.cpp", overlapped());
SUITE_TEST(Mpeg4Sad, "mpeg4sad.cpp", differences);

// ---- the spies ----------------------------------------------------------------------

// clang-format off

#define SPY_COPY(name) \
    KelStatus name(const Kel8u *s, int ss, Kel8u *d, int ds, int a, int r) { return SPY(name, s, ss, d, ds, a, r); }
#define SPY_OVERLAP(name) \
    KelStatus name(const Kel8u *s, int ss, Kel8u *d, int ds, const KeliMotionVector *m0, const KeliMotionVector *m1, const KeliMotionVector *m2, const KeliMotionVector *m3, const KeliMotionVector *m4, int r) { \
        g_vectors.push_back({*m0, *m1, *m2, *m3, *m4}); \
        return SPY(name, s, ss, d, ds, m0, m1, m2, m3, m4, r); \
    }
#define SPY_EDGE(name) \
    KelStatus name(Kel8u *p, int s, int qp, int thr1, int thr2) { return SPY(name, p, s, qp, thr1, thr2); }
#define SPY_DEVIATION(name) \
    KelStatus name(const Kel8u *p, int s, Kel32s *d) { return SPY(name, p, s, d); }

SPY_COPY(keliCopy8x8QP_MPEG4_8u_C1R)
SPY_COPY(keliCopy16x8QP_MPEG4_8u_C1R)
SPY_COPY(keliCopy16x16QP_MPEG4_8u_C1R)
SPY_OVERLAP(keliOBMC8x8HP_MPEG4_8u_C1R)
SPY_OVERLAP(keliOBMC16x16HP_MPEG4_8u_C1R)
SPY_OVERLAP(keliOBMC8x8QP_MPEG4_8u_C1R)
SPY_EDGE(keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR)
SPY_EDGE(keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR)
SPY_DEVIATION(keliMeanAbsDev16x16_8u32s_C1R)
SPY_DEVIATION(keliMeanAbsDev8x8_8u32s_C1R)

KelStatus keliSAD8x8_8u32s_C1R(const Kel8u *s, int ss, const Kel8u *r, int rs, Kel32s *d, int mc) {
    return SPY(keliSAD8x8_8u32s_C1R, s, ss, r, rs, d, mc);
}
KelStatus keliChangeSpriteBrightness_MPEG4_8u_C1IR(Kel8u *p, int s, int w, int h, int factor) {
    return SPY(keliChangeSpriteBrightness_MPEG4_8u_C1IR, p, s, w, h, factor);
}
KelStatus keliFilterDeringingSmooth8x8_MPEG4_8u_C1R(const Kel8u *s, int ss, Kel8u *d, int ds, int qp, int t) {
    return SPY(keliFilterDeringingSmooth8x8_MPEG4_8u_C1R, s, ss, d, ds, qp, t);
}
KelStatus keliFilterDeringingThreshold_MPEG4_8u_P3R(const Kel8u *y, int ys, const Kel8u *b, int bs, const Kel8u *r, int rs, Kel32s *t) {
    return SPY(keliFilterDeringingThreshold_MPEG4_8u_P3R, y, ys, b, bs, r, rs, t);
}

// clang-format on

namespace {

std::vector<SeenCall> countedCalls(char const *function) {
    g_vectors.clear();
    suite::Outcome outcome;
    return callsOf(outcome, function);
}

// Where an argument points to, in the block that it points into.
int placeIn(SeenArgument const &argument, int blockSize) {
    return blockSize - argument.room;
}

} // namespace

// ---- the calls ------------------------------------------------------------------------

TEST_F(Mpeg4Picture, BrightnessChangesTheWholeImageBy113) {
    std::vector<SeenCall> calls = countedCalls(brightness);
    ASSERT_EQ(calls.size(), 4u);
    const int lengths[] = {8, 16, 64, 128};
    for (int i = 0; i < 4; ++i) {
        const int n = lengths[i], row = n < 16 ? 16 : n;
        expectArgs(calls[i], {block(0), value(row), value(n), value(n), value(113)}, {n * row});
    }
}

TEST_F(Mpeg4Picture, CopiesGetThePositionAndRoundingOfTheirSet) {
    for (Block const &b : copies) {
        std::vector<SeenCall> calls = countedCalls(b.function);
        ASSERT_EQ(calls.size(), 8u);
        const int bytes = b.height * pictureWidth;
        for (int i = 0; i < 8; ++i)
            expectArgs(calls[i], {block(0), step, block(1), step, value(i / 2), value(i % 2)},
                       {bytes, bytes});
    }
}

TEST_F(Mpeg4Picture, EdgeFiltersStandInTheFifthRow) {
    for (char const *function : {horEdge, verEdge}) {
        std::vector<SeenCall> calls = countedCalls(function);
        ASSERT_EQ(calls.size(), 2u);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(calls[i].args[0].block, 0);
            EXPECT_EQ(placeIn(calls[i].args[0], 16 * pictureWidth), 5 * pictureWidth);
            calls[i].args.erase(calls[i].args.begin());
            expectArgs(calls[i], {step, value(5), value(1 - i), value(4)}, {});
        }
    }
}

TEST_F(Mpeg4Picture, SmoothingStartsAtTheSecondRowAndColumn) {
    std::vector<SeenCall> calls = countedCalls(smoothing);
    ASSERT_EQ(calls.size(), 2u);
    for (SeenCall &call : calls) {
        EXPECT_EQ(call.args[0].block, 0);
        EXPECT_EQ(placeIn(call.args[0], 16 * pictureWidth), pictureWidth + 1);
        call.args.erase(call.args.begin());
        expectArgs(call, {step, block(1), value(160), value(2), value(32)}, {0, 8 * 160});
    }
}

TEST_F(Mpeg4Picture, ThresholdsAreThoseOfThreePlanes) {
    std::vector<SeenCall> calls = countedCalls(thresholds);
    ASSERT_EQ(calls.size(), 1u);
    expectArgs(calls[0], {block(0), step, block(1), value(160), block(2), value(160), own()},
               {16 * pictureWidth, 8 * 160, 8 * 160});
}

TEST_F(Mpeg4Picture, OverlappedBlocksGetFiveEqualVectors) {
    for (Block const &b : overlaps) {
        std::vector<SeenCall> calls = countedCalls(b.function);
        ASSERT_EQ(calls.size(), 8u);
        for (int i = 0; i < 8; ++i) {
            expectArgs(calls[i],
                       {block(0), step, block(1), step, own(), own(), own(), own(), own(), value(i % 2)},
                       {(b.height + 8) * pictureWidth, b.height * pictureWidth});
            const int m = i / 2;
            ASSERT_GT(g_vectors.size(), 2u * i + 1);
            for (KeliMotionVector const &mv : g_vectors[2 * i + 1]) {
                EXPECT_EQ(mv.x, m % 2 + 6);
                EXPECT_EQ(mv.y, m / 2 + 6);
            }
        }
    }
}

TEST_F(Mpeg4Picture, FiveVectorsAreFivePlaces) {
    std::vector<SeenCall> calls = countedCalls(overlaps[0].function);
    ASSERT_FALSE(calls.empty());
    for (int i = 5; i < 9; ++i) {
        const auto *first = static_cast<KeliMotionVector const *>(calls[0].args[4].data);
        EXPECT_EQ(calls[0].args[i].data, first + (i - 4));
    }
}

TEST_F(Mpeg4Picture, DifferencesGetThePositionOfTheirSet) {
    std::vector<SeenCall> calls = countedCalls(sad);
    ASSERT_EQ(calls.size(), 4u);
    for (int i = 0; i < 4; ++i)
        expectArgs(calls[i], {block(0), step, block(1), step, own(), value(4 * i)},
                   {8 * pictureWidth, 9 * pictureWidth});
}

TEST_F(Mpeg4Picture, DeviationsTakeTheSourceAlone) {
    for (char const *function : {deviation8, deviation16}) {
        const int height = function == deviation8 ? 8 : 16;
        std::vector<SeenCall> calls = countedCalls(function);
        ASSERT_EQ(calls.size(), 1u);
        expectArgs(calls[0], {block(0), step, own()}, {height * pictureWidth});
    }
}

// ---- the data ---------------------------------------------------------------------------

TEST_F(Mpeg4Picture, ImagesHoldTheDefaultConstant) {
    for (char const *function : {brightness, copies[0].function, thresholds, overlaps[1].function, sad}) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_FALSE(blocks.empty());
        for (suite::Block const &b : blocks) {
            // Of the 8 samples in a row of 16 bytes the rest stays 0.
            for (int i = 0; i < b.size; ++i)
                ASSERT_EQ(b.data[i], b.size == 128 && i % 16 >= 8 ? 0 : 2) << function << ", " << i;
        }
    }
}

TEST_F(Mpeg4Picture, EdgesCrossARampOfTenSamples) {
    for (bool vertical : {false, true}) {
        suite::Sets sets(suite::findTest(vertical ? verEdge : horEdge));
        ASSERT_TRUE(sets.next());
        std::vector<unsigned char> expected(16 * pictureWidth, 2);
        for (int c = 0; c < 9; ++c) {
            for (int i = 0; i < 10; ++i)
                expected[vertical ? (5 + c) * pictureWidth + i - 5 : i * pictureWidth + c] = i;
        }
        suite::Block image = suite::Sets::blocks()[0];
        for (int i = 0; i < image.size; ++i) ASSERT_EQ(image.data[i], expected[i]) << vertical << ", " << i;
    }
}

// With a step in place of the ramp, which neither mode changes.
TEST_F(Mpeg4Picture, EdgeFiltersWorkOnEightLinesAcrossTheEdge) {
    for (bool vertical : {false, true}) {
        suite::Sets sets(suite::findTest(vertical ? verEdge : horEdge));
        ASSERT_TRUE(sets.next());
        suite::Block image = suite::Sets::blocks()[0];
        Kel8u *edge = image.data + 5 * pictureWidth;
        const int across = vertical ? 1 : pictureWidth, along = vertical ? pictureWidth : 1;
        for (int c = 0; c < 9; ++c) {
            for (int i = -5; i < 5; ++i) edge[i * across + c * along] = i < 0 ? 40 : 48;
        }
        EXPECT_EQ(sets.call(), kelStsNoErr);
        const int expected[10] = {40, 41, 41, 42, 43, 45, 46, 47, 48, 48};
        for (int c = 0; c < 9; ++c) {
            for (int i = 0; i < 10; ++i)
                EXPECT_EQ(edge[(i - 5) * across + c * along], c < 8   ? expected[i]
                                                              : i < 5 ? 40
                                                                      : 48)
                    << c << ", " << i;
        }
    }
}

TEST_F(Mpeg4Picture, DrizzleIsEverySecondSampleOfTenRows) {
    suite::Sets sets(suite::findTest(smoothing));
    for (bool drizzle : {false, true}) {
        ASSERT_TRUE(sets.next());
        suite::Block source = suite::Sets::blocks()[0];
        for (int i = 0; i < source.size; ++i) {
            const int row = i / pictureWidth, col = i % pictureWidth;
            const bool bright = drizzle && row < 10 && col < 10 && col % 2 == 1;
            ASSERT_EQ(source.data[i], bright ? 127 : 2) << drizzle << ", " << i;
        }
    }
}

// ---- without memory -----------------------------------------------------------------------------

TEST_F(Mpeg4Picture, WithoutMemoryThereIsNoSet) {
    for (char const *function : {copies[0].function, smoothing, thresholds, overlaps[0].function, sad}) {
        NoSecondBlock full;
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        for (SeenCall const &call : g_seen) EXPECT_NE(call.function, function);
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

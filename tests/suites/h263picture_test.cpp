// h263picture_test.cpp - the suites of H.261 and H.263 that work on pictures: their data and their calls.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

// A size is seen as one number.
static SeenArgument seen(KeliSize size) {
    return {size.width * 10000LL + size.height, nullptr, -1, 0};
}

namespace {

using suite::Cells;
using suite::Expected;

const int pictureWidth = 320;

Arg size(int width, int height) {
    return value(width * 10000 + height);
}

// ---- loop filter and edges --------------------------------------------------------------

char const *const loopFilter = "keliFilter8x8_H261_8u_C1R";

const std::vector<Expected> loopFilters = {
    Expected("Timvch261_Filter", loopFilter, "e", 64)
        .blocks({8 * pictureWidth, 8 * pictureWidth})
        .writes({1}),
};

struct Edge {
    char const *function;
    int blockSize;
    bool vertical;

    int pictureBytes() const { return 2 * blockSize * pictureWidth; }
    int place() const { return vertical ? blockSize : blockSize * pictureWidth; }
};

const Edge edges[] = {
    {"keliFilterDeblocking8x8HorEdge_H263_8u_C1IR", 8, false},
    {"keliFilterDeblocking8x8VerEdge_H263_8u_C1IR", 8, true},
    {"keliFilterDeblocking16x16HorEdge_H263_8u_C1IR", 16, false},
    {"keliFilterDeblocking16x16VerEdge_H263_8u_C1IR", 16, true},
    {"keliFilterBlockBoundaryHorEdge_H263_8u_C1IR", 16, false},
    {"keliFilterBlockBoundaryVerEdge_H263_8u_C1IR", 16, true},
};

std::vector<Expected> edgeFilters() {
    std::vector<Expected> expected;
    for (Edge const &edge : edges)
        expected.push_back(
            Expected("TimmHEdge", edge.function, " ", 1).blocks({edge.pictureBytes()}).updates({0}));
    return expected;
}

// ---- back prediction -----------------------------------------------------------------------

char const *const backPrediction = "keliAddBackPredPB_H263_8u_C1R";

// Rows are rounded up to 16 bytes; the source has two columns and a row more than the block.
const std::vector<Expected> predictions = {
    Expected("Timvc_Predict", backPrediction, "e", 0)
        .parm("size", {"4x4", "8x8", "16x16"})
        .parm("acc", {"0", "1", "2", "3"})
        .divisors({16, 16, 16, 16, 64, 64, 64, 64, 256, 256, 256, 256})
        .blocks({5 * 16, 4 * 16})
        .updates({1}),
};

// ---- resampling -------------------------------------------------------------------------------

char const *const resampling = "keliResample_H263_8u_P3R";

// Fill modes and roundings change neither the data nor the units of a set.
char const *const everySizeAndAccuracy =
    "[keliResample_H263_8u_P3R]\n"
    "fillMode = color\n"
    "rounding = 0\n";

const std::vector<Expected> resamplings = {
    Expected("Timvch263_Resample", resampling, "e", 0)
        .parm("size", {"64x64", "256x256"})
        .parm("wda", {"0", "1"})
        .parm("fillMode", {"color", "black", "gray", "clip"})
        .parm("rounding", {"0", "1"})
        .shortWalk(everySizeAndAccuracy)
        .divisors({64 * 64, 64 * 64, 256 * 256, 256 * 256})
        .blocks({4096, 4096, 4096, 4096, 4096, 4096})
        .writes({3, 4, 5}),
};

// ---- sampling ---------------------------------------------------------------------------------

char const *const upsampling = "keliUpsampleFour_H263_8u_C1R";
char const *const downsampling = "keliDownsampleFour_H263_8u_C1R";
char const *const interpolating = "keliSpatialInterpolation_H263_8u_C1R";
char const *const errorUpsampling = "keliUpsampleFour8x8_H263_16s_C1R";

const int sides[] = {8, 16, 64, 128};
const Cells sourceSizes = {"8x8", "16x16", "64x64", "128x128"};

// So many sets of each size.
std::vector<double> samplingDivisors(int sets) {
    std::vector<double> divisors;
    for (int side : sides) divisors.insert(divisors.end(), sets, side * side);
    return divisors;
}

const std::vector<Expected> samplings = {
    Expected("Timvch263_Sample", upsampling, "e", 0)
        .parm("srcSize", sourceSizes)
        .parm("rounding", {"0"})
        .divisors(samplingDivisors(1))
        .blocks({8 * 16, 16 * 16})
        .writes({1}),
    Expected("Timvch263_Sample", downsampling, "e", 0)
        .parm("srcSize", sourceSizes)
        .parm("rounding", {"0"})
        .divisors(samplingDivisors(1))
        .blocks({8 * 16, 4 * 16})
        .writes({1}),
    Expected("Timvch263_Sample", interpolating, "e", 0)
        .parm("srcSize", sourceSizes)
        .parm("Interpolation", {"horizontal", "vertical", "2D"})
        .divisors(samplingDivisors(3))
        .blocks({8 * 16, 8 * 16})
        .writes({1}),
    Expected("Timvch263_Sample", errorUpsampling, "e", 64)
        .parm("srcSize", {"8x8"})
        .parm("rounding", {"0"})
        .blocks({8 * 16, 16 * 32})
        .writes({1}),
};

int roundedUp(int bytes) {
    return (bytes + 15) / 16 * 16;
}

// Bytes of a picture of samples of one byte.
int bytesOf(int width, int height) {
    return roundedUp(width) * height;
}

// The first blocks of the set in hand are the planes of an image whose rows are drawn from the seed of a run
// on.
void expectDrawn(kmType type, int planes, KeliSize size, double low, double high) {
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_GE(static_cast<int>(blocks.size()), planes);
    const unsigned int seed = kmVector::m_seed;
    kmVector::m_seed = 7;
    kmImage model(type, planes, planes > 1);
    ASSERT_TRUE(model.createVectorExt(size, 0, SetRandom, low, high));
    kmVector::m_seed = seed;
    for (int i = 0; i < planes; ++i) {
        const int bytes = model.m_step * size.height;
        ASSERT_EQ(blocks[i].size, bytes);
        EXPECT_EQ(memcmp(blocks[i].data, planes > 1 ? model.m_planes[i] : model.m_data, bytes), 0) << i;
        const std::set<unsigned char> shades(blocks[i].data, blocks[i].data + bytes);
        EXPECT_GT(shades.size(), 3u) << i;
    }
}

class H263Picture : public suite::SuiteTest {
protected:
    suite::Outcome runWith(std::string const &function, std::string const &setting) {
        IniFile file("[" + function + "]\n" + setting + "\n");
        g_seen.clear();
        return run(function);
    }
};

} // namespace

SUITE_TEST(H261Filter, "h261filter.cpp", loopFilters);
SUITE_TEST(H263Edge, "h263edge.cpp", edgeFilters());
SUITE_TEST(H263Predict, "h263predict.cpp", predictions);
SUITE_TEST(H263Resample, "h263resample.cpp", resamplings);
SUITE_TEST(H263Sample, "h263sample.cpp", samplings);

// ---- the spies --------------------------------------------------------------------------------

// clang-format off

#define SPY_EDGE(name) \
    KelStatus name(Kel8u *p, int step, int QP) { return SPY(name, p, step, QP); }

SPY_EDGE(keliFilterDeblocking8x8HorEdge_H263_8u_C1IR)
SPY_EDGE(keliFilterDeblocking8x8VerEdge_H263_8u_C1IR)
SPY_EDGE(keliFilterDeblocking16x16HorEdge_H263_8u_C1IR)
SPY_EDGE(keliFilterDeblocking16x16VerEdge_H263_8u_C1IR)
SPY_EDGE(keliFilterBlockBoundaryHorEdge_H263_8u_C1IR)
SPY_EDGE(keliFilterBlockBoundaryVerEdge_H263_8u_C1IR)

KelStatus keliFilter8x8_H261_8u_C1R(const Kel8u *s, int ss, Kel8u *d, int ds) {
    return SPY(keliFilter8x8_H261_8u_C1R, s, ss, d, ds);
}
KelStatus keliAddBackPredPB_H263_8u_C1R(const Kel8u *s, int ss, KeliSize size, Kel8u *d, int ds, int acc) {
    return SPY(keliAddBackPredPB_H263_8u_C1R, s, ss, size, d, ds, acc);
}
KelStatus keliUpsampleFour_H263_8u_C1R(const Kel8u *s, int ss, KeliSize size, Kel8u *d, int ds, int r, int color) {
    return SPY(keliUpsampleFour_H263_8u_C1R, s, ss, size, d, ds, r, color);
}
KelStatus keliDownsampleFour_H263_8u_C1R(const Kel8u *s, int ss, KeliSize size, Kel8u *d, int ds, int r) {
    return SPY(keliDownsampleFour_H263_8u_C1R, s, ss, size, d, ds, r);
}
KelStatus keliSpatialInterpolation_H263_8u_C1R(const Kel8u *s, int ss, KeliSize size, Kel8u *d, int ds, int i) {
    return SPY(keliSpatialInterpolation_H263_8u_C1R, s, ss, size, d, ds, i);
}
KelStatus keliUpsampleFour8x8_H263_16s_C1R(const Kel16s *s, int ss, Kel16s *d, int ds) {
    return SPY(keliUpsampleFour8x8_H263_16s_C1R, s, ss, d, ds);
}

// What the warp parameters were at the time of the call.
static std::vector<std::vector<int>> g_warps;

KelStatus keliResample_H263_8u_P3R(const Kel8u *s1, int ss1, const Kel8u *s2, int ss2, const Kel8u *s3, int ss3, KeliSize size, Kel8u *d1, int ds1, Kel8u *d2, int ds2, Kel8u *d3, int ds3, KeliSize dstSize, const int *warp, int wda, int r, int fill, int color) {
    g_warps.emplace_back(warp, warp + 8);
    return SPY(keliResample_H263_8u_P3R, s1, ss1, s2, ss2, s3, ss3, size, d1, ds1, d2, ds2, d3, ds3, dstSize, warp, wda, r, fill, color);
}

// clang-format on

// ---- loop filter and edges ------------------------------------------------------------------------

TEST_F(H263Picture, LoopFilterGoesFromPictureToPicture) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, loopFilter);
    ASSERT_EQ(calls.size(), 1u);
    expectArgs(calls[0], {block(0), value(pictureWidth), block(1), value(pictureWidth)},
               {8 * pictureWidth, 8 * pictureWidth});
}

TEST_F(H263Picture, LoopFilterDrawsOverMoreThanTheRangeOfASample) {
    suite::Sets sets(suite::findTest(loopFilter));
    ASSERT_TRUE(sets.next());
    expectDrawn(8, 1, {pictureWidth, 8}, -300, 300);
    EXPECT_FALSE(sets.next());
}

TEST_F(H263Picture, EdgesStandABlockBelowOrToTheRightOfThePicturesCorner) {
    for (Edge const &edge : edges) {
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, edge.function);
        ASSERT_EQ(calls.size(), 1u) << edge.function;
        ASSERT_EQ(calls[0].args.size(), 3u);
        EXPECT_EQ(calls[0].args[0].block, 0);
        EXPECT_EQ(calls[0].args[0].room, edge.pictureBytes() - edge.place()) << edge.function;
        EXPECT_EQ(calls[0].args[1].value, pictureWidth);
        EXPECT_EQ(calls[0].args[2].value, 2);
    }
}

TEST_F(H263Picture, AnEdgeFilterWithoutASizeInItsNameHasBlocksOf16Rows) {
    run("keliFilterDeblocking8x8HorEdge_H263_8u_C1IR");
    suite::Sets sets(suite::findTest("keliFilterBlockBoundaryVerEdge_H263_8u_C1IR"));
    ASSERT_TRUE(sets.next());
    ASSERT_EQ(suite::Sets::blocks().size(), 1u);
    EXPECT_EQ(suite::Sets::blocks()[0].size, 32 * pictureWidth);
}

TEST_F(H263Picture, EdgesAreDrawnInNearShades) {
    suite::Sets sets(suite::findTest(edges[0].function));
    ASSERT_TRUE(sets.next());
    expectDrawn(8, 1, {pictureWidth, 16}, 124, 132);
}

// ---- back prediction ----------------------------------------------------------------------------------

TEST_F(H263Picture, BackPredictionGetsSizeAndPositionOfItsSet) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, backPrediction);
    ASSERT_EQ(calls.size(), 12u);
    for (int i = 0; i < 12; ++i) {
        const int side = 4 << i / 4, srcStep = roundedUp(side + 2);
        expectArgs(calls[i], {block(0), value(srcStep), size(side, side), block(1), value(16), value(i % 4)},
                   {srcStep * (side + 1), bytesOf(side, side)});
    }
}

// The further row of the source is not drawn.
TEST_F(H263Picture, BackPredictionDrawsTheSourceThenTheDestination) {
    suite::Sets sets(suite::findTest(backPrediction));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 2u);
    const unsigned int seed = kmVector::m_seed;
    kmVector::m_seed = 7;
    kmImage src(8), dst(8);
    ASSERT_TRUE(src.createVectorExt(6, 4, 0, SetRandom, 0, 0));
    ASSERT_TRUE(dst.createVectorExt(4, 4, 0, SetRandom, 0, 0));
    kmVector::m_seed = seed;
    EXPECT_EQ(memcmp(blocks[0].data, src.m_data, 4 * 16), 0);
    EXPECT_EQ(memcmp(blocks[1].data, dst.m_data, 4 * 16), 0);
    for (int col = 0; col < 6; ++col) EXPECT_EQ(blocks[0].data[4 * 16 + col], 2);
}

TEST_F(H263Picture, BackPredictionTakesAnySizeThatMemoryHolds) {
    suite::Outcome outcome = runWith(backPrediction, "size = 5x3");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    EXPECT_EQ(firstCells(outcome.rows), Cells({"5x3", "5x3", "5x3", "5x3"}));
    for (char const *impossible : {"2147483647x4", "4x2147483647"}) {
        outcome = runWith(backPrediction, std::string("size = ") + impossible);
        EXPECT_TRUE(rkIsError(outcome.result)) << impossible;
        EXPECT_TRUE(g_seen.empty()) << impossible;
    }
}

// ---- resampling -----------------------------------------------------------------------------------------

TEST_F(H263Picture, ResamplingGetsItsPlanesAndTheValuesOfItsSet) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, resampling);
    ASSERT_EQ(calls.size(), 32u);
    for (int i = 0; i < 32; ++i) {
        const int side = i / 16 ? 256 : 64;
        const Arg step = value(side);
        expectArgs(calls[i],
                   {block(0), step, block(1), step, block(2), step, size(side, side), block(3), step,
                    block(4), step, block(5), step, size(side, side), own(), value(i / 8 % 2), value(i % 2),
                    value(i / 2 % 4), value(64)},
                   std::vector<int>(6, side * side));
    }
}

TEST_F(H263Picture, BothAccuraciesOfResamplingHaveTheSameWarp) {
    g_warps.clear();
    run(resampling);
    ASSERT_EQ(g_warps.size(), 64u); // each set has a warm-up
    for (int w : g_warps[0]) EXPECT_NE(w, 0);
    for (size_t i = 0; i < g_warps.size(); ++i) {
        const int sixteenths = i / 16 % 2 ? 1 : 8;
        for (int k = 0; k < 8; ++k) EXPECT_EQ(g_warps[i][k] * sixteenths, g_warps[0][k] * 8) << i;
    }
}

TEST_F(H263Picture, AWarpTakesSomeSamplesFromOutside) {
    suite::Sets sets(suite::findTest(resampling));
    for (int set = 0; set < 16; ++set) {
        ASSERT_TRUE(sets.next());
        ASSERT_EQ(sets.call(), 0);
        const suite::Block luma = suite::Sets::blocks()[3];
        const int black = static_cast<int>(std::count(luma.data, luma.data + luma.size, 16));
        if (set % 8 / 2 == 1) {
            EXPECT_GT(black, luma.size / 20) << set;
            EXPECT_LT(black, luma.size / 2) << set;
        }
    }
}

TEST_F(H263Picture, ResamplingDrawsAllPlanesOfTheSource) {
    suite::Sets sets(suite::findTest(resampling));
    ASSERT_TRUE(sets.next());
    expectDrawn(8, 3, {64, 64}, 0, 0);
}

// The library takes pictures of whole blocks of 4x4.
TEST_F(H263Picture, ASizeThatTheLibraryRefusesFailsTheTest) {
    EXPECT_EQ(runWith(resampling, "size = 52x36").result, rkResSuccess);
    suite::Outcome outcome = runWith(resampling, "size = 50x36");
    EXPECT_TRUE(rkIsError(outcome.result));
    outcome = runWith(resampling, "wda = 5");
    EXPECT_TRUE(rkIsError(outcome.result));
}

// ---- sampling ---------------------------------------------------------------------------------------------

TEST_F(H263Picture, FactorOfFourFormsGetPicturesOfTwiceOrHalfTheSize) {
    for (bool down : {false, true}) {
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, down ? downsampling : upsampling);
        ASSERT_EQ(calls.size(), 4u);
        for (int i = 0; i < 4; ++i) {
            const int side = sides[i], dstSide = down ? side / 2 : 2 * side;
            std::vector<Arg> args = {block(0), value(roundedUp(side)),    size(side, side),
                                     block(1), value(roundedUp(dstSide)), value(0)};
            if (!down) args.push_back(value(64));
            expectArgs(calls[i], args, {bytesOf(side, side), bytesOf(dstSide, dstSide)});
        }
    }
}

TEST_F(H263Picture, SpatialInterpolationGrowsInItsDirections) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, interpolating);
    ASSERT_EQ(calls.size(), 12u);
    for (int i = 0; i < 12; ++i) {
        const int side = sides[i / 3], code = i % 3 + 1;
        const int width = code == 2 ? side : 2 * side, height = code == 1 ? side : 2 * side;
        expectArgs(calls[i],
                   {block(0), value(roundedUp(side)), size(side, side), block(1), value(roundedUp(width)),
                    value(code)},
                   {bytesOf(side, side), bytesOf(width, height)});
    }
}

TEST_F(H263Picture, UpsamplingOfAPredictionErrorHasWordsAndNoFurtherArgument) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, errorUpsampling);
    ASSERT_EQ(calls.size(), 1u);
    expectArgs(calls[0], {block(0), value(16), block(1), value(32)}, {8 * 16, 16 * 32});
}

TEST_F(H263Picture, SamplingDrawsItsSource) {
    for (char const *function : {upsampling, downsampling, interpolating}) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        expectDrawn(8, 1, {8, 8}, 0, 255);
    }
    suite::Sets sets(suite::findTest(errorUpsampling));
    ASSERT_TRUE(sets.next());
    expectDrawn(16 | kmTypeSigned, 1, {8, 8}, -255, 255);
}

TEST_F(H263Picture, SamplingTakesAnySizeThatMemoryHolds) {
    suite::Outcome outcome = runWith(upsampling, "srcSize = 5x3");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    EXPECT_EQ(firstCells(outcome.rows), Cells({"5x3"}));
    outcome = runWith(upsampling, "srcSize = 2147483647x4");
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_TRUE(g_seen.empty());
    // A block of 8x8 stays one.
    outcome = runWith(errorUpsampling, "srcSize = 1x1");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    EXPECT_EQ(suite::findTest(errorUpsampling)->getDivisor(), 64.0);
}

TEST_F(H263Picture, WithoutMemoryThereIsNoSet) {
    for (char const *function : {loopFilter, backPrediction, resampling, upsampling, errorUpsampling}) {
        NoSecondBlock full;
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

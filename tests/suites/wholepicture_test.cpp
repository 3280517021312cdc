// wholepicture_test.cpp - the suites of the edge test, of resizing and of rotation: parameters, data and
// calls.

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
using suite::Rows;

char const *const edges = "keliEdgesDetect16x16_16u_C1R";
char const *const resizing = "keliResizeCCRotate_8u_C2R";
char const *const interleaved = "keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R";
char const *const planar = "keliCbYCr422ToYCbCr420_Rotate_8u_P3R";

// ---- what is registered -----------------------------------------------------------------

// The number of points has no column, so that every second row is alike.
Rows edgeRows() {
    Rows rows;
    for (int i = 0; i < 34; ++i) rows.insert(rows.end(), {{"16"}, {"160"}});
    return rows;
}

const std::vector<Expected> edgeTests = {
    Expected("vcEdgeDetect", edges, "pxch", 256)
        .parm("numpoint", suite::numbers(0, 66, 2))
        .parm("srcStep", {"16", "160"})
        .rows(edgeRows())
        .result(rkResDataWarning)
        .blocks({512}),
};

const Cells rotations = {"disable", "90ccw", "90cw", "180"};

// So many sets of each size.
std::vector<double> divisors(std::vector<KeliSize> const &sizes, int sets) {
    std::vector<double> divisors;
    for (KeliSize size : sizes) divisors.insert(divisors.end(), sets, size.width * size.height);
    return divisors;
}

const std::vector<KeliSize> resizedSizes = {{8, 8}, {16, 16}, {256, 256}, {720, 480}};
const std::vector<KeliSize> rotatedSizes = {{64, 64}, {256, 256}, {720, 480}};

// Of the four, whose sets are alike but for the size.
char const *const twoSizes =
    "[keliResizeCCRotate_8u_C2R]\nsrcSize = 16x16; 256x256\n[Rakova]\nsrcSize = 16x16; 256x256\n";

const std::vector<Expected> resizings = {
    Expected("Timvc_ResizeCCRotate", resizing, "px", 0)
        .parm("srcSize", {"8x8", "16x16", "256x256", "720x480"})
        .parm("zoomFactor", {"2", "4", "8"})
        .parm("interpolation", {"nn", "linear"})
        .parm("colorConversion", {"CbYCr422ToBGR565", "CbYCr422ToBGR555"})
        .parm("rotation", rotations)
        .shortWalk(twoSizes)
        .divisors(divisors({{16, 16}, {256, 256}}, 48))
        .blocks({16 * 32, 16 * 64})
        .writes({1}),
};

const std::vector<Expected> turns = {
    Expected("Timvc_YCCRotate", interleaved, "px", 0)
        .parm("srcSize", {"64x64", "256x256", "720x480"})
        .parm("rotation", rotations)
        .divisors(divisors(rotatedSizes, 4))
        .blocks({64 * 128, 4096, 4096, 4096})
        .writes({1, 2, 3}),
    Expected("Timvc_YCCRotate", planar, "px", 0)
        .parm("srcSize", {"64x64", "256x256", "720x480"})
        .parm("rotation", rotations)
        .divisors(divisors(rotatedSizes, 4))
        .blocks({4096, 4096, 4096, 4096, 4096, 4096})
        .writes({3, 4, 5}),
};

Arg size(KeliSize s) {
    return value(s.width * 10000 + s.height);
}

KeliSize turned(KeliSize s, int rotation) {
    return rotation == 1 || rotation == 2 ? KeliSize{s.height, s.width} : s;
}

int roundedUp(int bytes) {
    return (bytes + 15) / 16 * 16;
}

// ---- what the spies keep ------------------------------------------------------------------

std::vector<int> g_verdicts;
std::vector<std::vector<int>> g_planes, g_steps; // blocks, and steps, of the planes of each call

void keepPlanes(Kel8u const *const *planes, const int *steps) {
    std::vector<int> blocks;
    for (int i = 0; i < 3; ++i) {
        int block = -1;
        roomAt(planes[i], &block);
        blocks.push_back(block);
    }
    g_planes.push_back(blocks);
    g_steps.emplace_back(steps, steps + 3);
}

class WholePicture : public suite::SuiteTest {
protected:
    suite::Outcome runWith(std::string const &function, std::string const &lines) {
        IniFile file("[" + function + "]\n" + lines);
        g_seen.clear();
        return run(function);
    }
};

// The image that the first set's source is.
void expectDrawn(char const *function, int channels, bool planes, KeliSize picture) {
    suite::Sets sets(suite::findTest(function));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    const unsigned int seed = kmVector::m_seed;
    kmVector::m_seed = 7;
    kmImage model(8, channels, planes);
    ASSERT_TRUE(model.createVectorExt(picture, 0, SetRandom, 0, 0));
    kmVector::m_seed = seed;
    for (int i = 0; i < (planes ? channels : 1); ++i) {
        const int bytes = model.m_step * picture.height;
        ASSERT_EQ(blocks[i].size, bytes);
        EXPECT_EQ(memcmp(blocks[i].data, planes ? model.m_planes[i] : model.m_data, bytes), 0) << i;
        const std::set<unsigned char> shades(blocks[i].data, blocks[i].data + bytes);
        EXPECT_GT(shades.size(), 3u) << i;
    }
}

} // namespace

SUITE_TEST(EdgeDetect, "edgedetect.cpp", edgeTests);
SUITE_TEST(ResizeCCRotate, "resizeccrotate.cpp", resizings);
SUITE_TEST(YCCRotate, "yccrotate.cpp", turns);

// ---- the spies ----------------------------------------------------------------------------

// clang-format off

KelStatus keliEdgesDetect16x16_16u_C1R(const Kel16u *s, int ss, int difference, int count, Kel8u *result) {
    const KelStatus status = SPY(keliEdgesDetect16x16_16u_C1R, s, ss, difference, count, result);
    g_verdicts.push_back(*result);
    return status;
}
KelStatus keliResizeCCRotate_8u_C2R(const Kel8u *s, int ss, KeliSize size, Kel16u *d, int ds, int zoom, int interpolation, int conversion, int rotation) {
    return SPY(keliResizeCCRotate_8u_C2R, s, ss, size, d, ds, zoom, interpolation, conversion, rotation);
}
KelStatus keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R(const Kel8u *s, int ss, KeliSize size, Kel8u *const d[3], const int ds[3], int rotation) {
    keepPlanes(d, ds);
    return SPY(keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R, s, ss, size, d, ds, rotation);
}
KelStatus keliCbYCr422ToYCbCr420_Rotate_8u_P3R(const Kel8u *const s[3], const int ss[3], KeliSize size, Kel8u *const d[3], const int ds[3], int rotation) {
    keepPlanes(s, ss);
    keepPlanes(d, ds);
    return SPY(keliCbYCr422ToYCbCr420_Rotate_8u_P3R, s, ss, size, d, ds, rotation);
}

// clang-format on

// ---- edges --------------------------------------------------------------------------------

// 1600 lies over the last value.
TEST_F(WholePicture, EdgesHave34CountsOfPointsWithTwoStepsEach) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, edges);
    ASSERT_EQ(calls.size(), 68u);
    for (int i = 0; i < 68; ++i) {
        const int step = i % 2 ? 160 : 16;
        expectArgs(calls[i], {block(0), value(step), value(9), value(i / 2 * 2), own()}, {16 * step * 2});
    }
}

// All that a run says is that its rows are alike.
TEST_F(WholePicture, RowsOfEdgesAreAlikeAndTheRunSaysSo) {
    suite::Outcome outcome = run(edges);
    EXPECT_EQ(outcome.result, rkResDataWarning);
    const std::string warning = "-- Warning: duplicate lines in performance table (csv-file)\n";
    EXPECT_NE(outcome.log.find(warning), std::string::npos) << outcome.log;
    EXPECT_EQ(outcome.log.find("\n-- "), outcome.log.rfind("\n-- ")) << outcome.log;
    suite::Outcome single = runWith(edges, "numpoint = 4\n");
    EXPECT_EQ(single.result, rkResSuccess) << single.log;
    EXPECT_EQ(single.log.find("\n-- "), std::string::npos) << single.log;
    EXPECT_EQ(firstCells(single.rows), Cells({"16", "160"}));
}

TEST_F(WholePicture, EdgesAreTwoDiagonalsInFlatGroundBesideRandomData) {
    suite::Sets sets(suite::findTest(edges));
    kmVector model(16);
    unsigned int seed = 7;
    for (int step : {16, 160, 16}) {
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        const unsigned int after = kmVector::m_seed;
        kmVector::m_seed = seed;
        ASSERT_TRUE(model.createVectorExt(16 * step, 0, SetRandom, 0, 0));
        seed = kmVector::m_seed;
        EXPECT_EQ(seed, after);
        ASSERT_EQ(blocks.size(), 1u);
        ASSERT_EQ(blocks[0].size, 16 * step * 2);
        for (int i = 0; i < 16 * step; ++i) {
            Kel16u sample;
            memcpy(&sample, blocks[0].data + 2 * i, sizeof sample);
            const int row = i / step, col = i % step;
            const int drawn = row == col || row == 15 - col ? 20 : 120;
            ASSERT_EQ(sample, col < 16 ? drawn : model.p16u[i]) << "row " << row << ", column " << col;
        }
        model.deleteVector();
    }
}

// The diagonals are more than any count that is asked for.
TEST_F(WholePicture, EveryBlockHasEdges) {
    g_verdicts.clear();
    run(edges);
    EXPECT_EQ(g_verdicts, std::vector<int>(136, 1));
}

TEST_F(WholePicture, ImpossibleStepsOfEdgesFailWithoutACall) {
    for (char const *step : {"0", "-16", "2000000000", "-2000000000"}) {
        suite::Outcome outcome = runWith(edges, std::string("srcStep = ") + step + "\n");
        EXPECT_TRUE(rkIsError(outcome.result)) << step;
        EXPECT_TRUE(g_seen.empty()) << step;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << step;
    }
}

// The library refuses a step shorter than the block, whose last row does not fit.
TEST_F(WholePicture, AShortStepOfEdgesStaysWithinItsData) {
    for (char const *step : {"1", "8", "15"}) {
        suite::Outcome outcome = runWith(edges, std::string("srcStep = ") + step + "\n");
        EXPECT_EQ(outcome.result, rkResLibError) << step;
        EXPECT_FALSE(g_seen.empty()) << step;
    }
}

TEST_F(WholePicture, WithoutMemoryThereAreNoEdges) {
    IniFile file("[" + std::string(edges) + "]\nsrcStep = 134217727\n"); // rows of 4 GB
    suite::Outcome outcome = run(edges);
    EXPECT_EQ(outcome.result, rkResDataError);
    EXPECT_TRUE(outcome.rows.empty());
}

// ---- resizing -----------------------------------------------------------------------------

TEST_F(WholePicture, ResizingGetsItsSetAndADestinationOfTheFullSize) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, resizing);
    ASSERT_EQ(calls.size(), 192u);
    for (int i = 0; i < 192; ++i) {
        const int rotation = i % 4, conversion = i / 4 % 2, interpolation = 1 + i / 8 % 2;
        const int zoom = 2 << i / 16 % 3;
        const KeliSize src = resizedSizes[i / 48], dst = turned(src, rotation);
        const int srcStep = roundedUp(2 * src.width), dstStep = roundedUp(4 * dst.width);
        expectArgs(calls[i],
                   {block(0), value(srcStep), size(src), block(1), value(dstStep), value(zoom),
                    value(interpolation), value(conversion), value(rotation)},
                   {srcStep * src.height, dstStep * dst.height});
    }
}

TEST_F(WholePicture, ResizingDrawsItsSource) {
    expectDrawn(resizing, 2, false, {8, 8});
}

TEST_F(WholePicture, ResizingRefusesWhatIsNoPicture) {
    for (char const *size : {"7x8", "2x2"}) {
        suite::Outcome outcome = runWith(resizing, "zoomFactor = 4\nsrcSize = " + std::string(size) + "\n");
        EXPECT_EQ(outcome.result, rkResLibError) << size;
    }
    EXPECT_EQ(runWith(resizing, "zoomFactor = 3\n").result, rkResLibError);
    EXPECT_TRUE(rkIsError(runWith(resizing, "srcSize = 2000000000x2000000000\n").result));
    EXPECT_TRUE(g_seen.empty());
}

// ---- rotation -----------------------------------------------------------------------------

TEST_F(WholePicture, TheInterleavedFormGetsItsSetAndThreePlanes) {
    g_planes.clear(), g_steps.clear();
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, interleaved);
    ASSERT_EQ(calls.size(), 12u);
    for (int i = 0; i < 12; ++i) {
        const KeliSize src = rotatedSizes[i / 4], dst = turned(src, i % 4);
        const int srcStep = roundedUp(2 * src.width), dstStep = roundedUp(dst.width);
        expectArgs(calls[i], {block(0), value(srcStep), size(src), own(), own(), value(i % 4)},
                   {srcStep * src.height});
        EXPECT_EQ(g_planes[2 * i], std::vector<int>({1, 2, 3}));
        EXPECT_EQ(g_steps[2 * i], std::vector<int>(3, dstStep));
    }
}

TEST_F(WholePicture, ThePlanarFormGetsItsSetAndSixPlanes) {
    g_planes.clear(), g_steps.clear();
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, planar);
    ASSERT_EQ(calls.size(), 12u);
    for (int i = 0; i < 12; ++i) {
        const KeliSize src = rotatedSizes[i / 4], dst = turned(src, i % 4);
        expectArgs(calls[i], {own(), own(), size(src), own(), own(), value(i % 4)}, {});
        EXPECT_EQ(g_planes[4 * i], std::vector<int>({0, 1, 2}));
        EXPECT_EQ(g_planes[4 * i + 1], std::vector<int>({3, 4, 5}));
        EXPECT_EQ(g_steps[4 * i], std::vector<int>(3, roundedUp(src.width)));
        EXPECT_EQ(g_steps[4 * i + 1], std::vector<int>(3, roundedUp(dst.width)));
    }
}

TEST_F(WholePicture, ARightTurnOf720x480Is480WideAnd720High) {
    for (char const *function : {interleaved, planar}) {
        IniFile file("[" + std::string(function) + "]\nsrcSize = 720x480\nrotation = 90cw\n");
        g_istrm.setIniSection(function);
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        for (size_t i = blocks.size() - 3; i < blocks.size(); ++i) EXPECT_EQ(blocks[i].size, 480 * 720);
        g_steps.clear();
        EXPECT_EQ(sets.call(), 0);
        EXPECT_EQ(g_steps.back(), std::vector<int>(3, 480));
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(WholePicture, RotationsDrawTheirSource) {
    expectDrawn(interleaved, 2, false, {64, 64});
    expectDrawn(planar, 3, true, {64, 64});
}

TEST_F(WholePicture, RotationRefusesWhatIsNoPicture) {
    for (char const *function : {interleaved, planar}) {
        EXPECT_EQ(runWith(function, "srcSize = 63x64\n").result, rkResLibError) << function;
        EXPECT_TRUE(rkIsError(runWith(function, "srcSize = 2000000000x2000000000\n").result)) << function;
        EXPECT_TRUE(rkIsError(runWith(function, "srcSize = 2000000000x1\n").result)) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
    }
}

TEST_F(WholePicture, WithoutMemoryThereIsNoSet) {
    for (char const *function : {resizing, interleaved, planar}) {
        NoSecondBlock full;
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

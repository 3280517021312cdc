// interpolate_test.cpp - the suites of interpolation and weighted prediction of H.264: parameters, calls,
// data.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

const Cells quarters = suite::numbers(0, 3), eighths = suite::numbers(0, 7);
const Cells powers = {"2", "4", "8", "16"};

const std::vector<Expected> inside = {
    Expected("rk_Interpolate", "keliInterpolateLuma_H264_8u_C1R", "all", 1)
        .parm("size_num", suite::numbers(0, 2))
        .parm("dy", quarters)
        .parm("dx", quarters)
        .stat(1023)
        .blocks({2944, 2048})
        .writes({1}),
    Expected("rk_Interpolate", "keliInterpolateChroma_H264_8u_C1R", "all", 1)
        .parm("size_num", suite::numbers(0, 2))
        .parm("dy", suite::numbers(0, 1))
        .parm("dx", suite::numbers(0, 1))
        .stat(1023)
        .blocks({2944, 2048})
        .writes({1}),
};

const std::vector<double> lumaAreas = {256, 128, 128, 64, 32, 32, 16};
const std::vector<double> chromaAreas = {64, 32, 32, 16, 8, 8, 4};

std::vector<double> repeated(std::vector<double> const &values, int times) {
    std::vector<double> result;
    for (int i = 0; i < times; ++i) result.insert(result.end(), values.begin(), values.end());
    return result;
}

Expected throughBoundary(char const *function, Cells const &fractions, std::vector<double> const &areas) {
    const int positions = static_cast<int>(fractions.size() * fractions.size());
    return Expected("rk_InterpolateThroughBoundary", function, "e", 0)
        .parm("dx", fractions)
        .parm("dy", fractions)
        .parm("size", suite::numbers(0, 6))
        .divisors(repeated(areas, positions))
        .blocks({2032, 2032})
        .writes({1});
}

const std::vector<Expected> boundary = {
    throughBoundary("keliInterpolateLumaTop_H264_8u_C1R", quarters, lumaAreas),
    throughBoundary("keliInterpolateLumaBottom_H264_8u_C1R", quarters, lumaAreas),
    throughBoundary("keliInterpolateChromaTop_H264_8u_C1R", eighths, chromaAreas),
    throughBoundary("keliInterpolateChromaBottom_H264_8u_C1R", eighths, chromaAreas),
};

// The weighted average of two blocks that are alike changes nothing.
const std::vector<Expected> average = {
    Expected("rk_WAverage", "keliWeightedAverage_H264_8u_C1IR", "e", 0)
        .parm("len", {"0"})
        .parm("width", powers)
        .parm("height", powers)
        .divisors({4, 8, 16, 32, 8, 16, 32, 64, 16, 32, 64, 128, 32, 64, 128, 256})
        .blocks({256, 256})
        .updates({}),
};

std::vector<double> weightedAreas() {
    std::vector<double> areas = lumaAreas;
    areas.insert(areas.end(), chromaAreas.begin(), chromaAreas.end());
    return areas;
}

Expected weighted(char const *function) {
    return Expected("CWP_H264", function, "e", 0)
        .parm("size", suite::numbers(0, 13))
        .divisors(weightedAreas())
        .blocks({256, 256, 256});
}

// The weight 1 of the form in place changes nothing.
const std::vector<Expected> weightedPrediction = {
    weighted("keliUniDirWeightBlock_H264_8u_C1R").updates({}),
    weighted("keliBiDirWeightBlock_H264_8u_P2P1R").writes({2}),
    weighted("keliBiDirWeightBlockImplicit_H264_8u_P2P1R").writes({2}),
    weighted("keliBiDirWeightBlock_H264_8u_P3P1R").writes({2}),
};

const Cells squares = {"2x2", "4x4", "8x8", "16x16"};

const std::vector<Expected> blocks = {
    Expected("kmvcInterpolateBlock", "keliInterpolateBlock_H264_8u_P2P1R", " ", 1)
        .parm("blockSize", squares)
        .loop(1024)
        .blocks({2944, 2944, 2048})
        .writes({2}),
    Expected("rk_InterpolateBlock", "keliInterpolateBlock_H264_8u_P3P1R", "all", 1)
        .parm("blockSize", squares)
        .loop(1024)
        .blocks({2944, 2944, 2048, 2944})
        .writes({2}),
};

// ---- calls ------------------------------------------------------------------------------

std::vector<KeliSize> g_sizes; // of the blocks, call by call

class InterpolateSuite : public suite::SuiteTest {
protected:
    void SetUp() override {
        suite::SuiteTest::SetUp();
        g_seen.clear();
        g_sizes.clear();
    }
    static void loop(rkTest *test, int calls) {
        g_seen.clear();
        g_sizes.clear();
        long long clocks = 0;
        EXPECT_EQ(test->m_funcLoop(calls - 1, &clocks), rkResSuccess); // and a warm-up
        EXPECT_EQ(g_seen.size(), static_cast<size_t>(calls));
    }
};

long long placeOf(SeenArgument const &argument, std::vector<int> const &sizes) {
    EXPECT_GE(argument.block, 0);
    return argument.block < 0 ? -1 : sizes[argument.block] - argument.room;
}

struct Place {
    int block, first;
};

void expectPlace(SeenArgument const &argument, Place place, std::vector<int> const &sizes) {
    EXPECT_EQ(argument.block, place.block);
    EXPECT_EQ(placeOf(argument, sizes), place.first);
}

void expectValues(SeenCall const &call, size_t first, std::vector<int> const &values) {
    ASSERT_EQ(call.args.size(), first + values.size()) << call.function;
    for (size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(call.args[first + i].value, values[i]) << call.function << ", argument " << first + i;
}

bool equal(KeliSize a, KeliSize b) {
    return a.width == b.width && a.height == b.height;
}

const KeliSize lumaSizes[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4}};
const KeliSize chromaSizes[] = {{8, 8}, {8, 4}, {4, 8}, {4, 4}, {4, 2}, {2, 4}, {2, 2}};

} // namespace

SUITE_TEST(Interpolate, "interpolate.cpp", inside);
SUITE_TEST(InterpolateBoundary, "interpolateboundary.cpp", boundary);
SUITE_TEST(WeightedAverage, "weightedaverage.cpp", average);
SUITE_TEST(WeightedPrediction, "weightedprediction.cpp", weightedPrediction);
SUITE_TEST(InterpolateBlock, "interpolateblock.cpp", blocks);

// ---- the spies ---------------------------------------------------------------------------

// A size is no plain argument: it is noted beside the others.
#define SPY_SIZE(function, size, ...)                    \
    g_sizes.push_back(size);                             \
    g_seen.push_back({#function, seenAll(__VA_ARGS__)}); \
    return callLibrary(&function, #function, __VA_ARGS__, size)

template <class... Args>
std::vector<SeenArgument> seenAll(Args... args) {
    return {seen(args)...};
}

// clang-format off

#define SPY_INSIDE(name) \
    KelStatus name(const Kel8u *s, int ss, Kel8u *d, int ds, int dx, int dy, KeliSize size) { SPY_SIZE(name, size, s, ss, d, ds, dx, dy); }
#define SPY_BOUNDARY(name) \
    KelStatus name(const Kel8u *s, int ss, Kel8u *d, int ds, int dx, int dy, int out, KeliSize size) { SPY_SIZE(name, size, s, ss, d, ds, dx, dy, out); }

SPY_INSIDE(keliInterpolateLuma_H264_8u_C1R)
SPY_INSIDE(keliInterpolateChroma_H264_8u_C1R)
SPY_BOUNDARY(keliInterpolateLumaTop_H264_8u_C1R)
SPY_BOUNDARY(keliInterpolateLumaBottom_H264_8u_C1R)
SPY_BOUNDARY(keliInterpolateChromaTop_H264_8u_C1R)
SPY_BOUNDARY(keliInterpolateChromaBottom_H264_8u_C1R)

KelStatus keliWeightedAverage_H264_8u_C1IR(const Kel8u *s, Kel8u *d, int step, int w1, int w2, int shift, int offset, KeliSize size) {
    SPY_SIZE(keliWeightedAverage_H264_8u_C1IR, size, s, d, step, w1, w2, shift, offset);
}
KelStatus keliUniDirWeightBlock_H264_8u_C1R(Kel8u *s, int step, int log2wd, int weight, int offset, KeliSize size) {
    SPY_SIZE(keliUniDirWeightBlock_H264_8u_C1R, size, s, step, log2wd, weight, offset);
}
KelStatus keliBiDirWeightBlock_H264_8u_P2P1R(const Kel8u *s1, const Kel8u *s2, Kel8u *d, int ss, int ds, int log2wd, int w1, int w2, int o1, int o2, KeliSize size) {
    SPY_SIZE(keliBiDirWeightBlock_H264_8u_P2P1R, size, s1, s2, d, ss, ds, log2wd, w1, w2, o1, o2);
}
KelStatus keliBiDirWeightBlockImplicit_H264_8u_P2P1R(const Kel8u *s1, const Kel8u *s2, Kel8u *d, int ss, int ds, int w1, int w2, KeliSize size) {
    SPY_SIZE(keliBiDirWeightBlockImplicit_H264_8u_P2P1R, size, s1, s2, d, ss, ds, w1, w2);
}
KelStatus keliBiDirWeightBlock_H264_8u_P3P1R(const Kel8u *s1, const Kel8u *s2, Kel8u *d, int ss1, int ss2, int ds, int log2wd, int w1, int w2, int o1, int o2, KeliSize size) {
    SPY_SIZE(keliBiDirWeightBlock_H264_8u_P3P1R, size, s1, s2, d, ss1, ss2, ds, log2wd, w1, w2, o1, o2);
}
KelStatus keliInterpolateBlock_H264_8u_P2P1R(const Kel8u *s1, const Kel8u *s2, Kel8u *d, int width, int height, int step) {
    return SPY(keliInterpolateBlock_H264_8u_P2P1R, s1, s2, d, width, height, step);
}
KelStatus keliInterpolateBlock_H264_8u_P3P1R(const Kel8u *s1, const Kel8u *s2, const Kel8u *s3, Kel8u *d, int width, int height, int step) {
    return SPY(keliInterpolateBlock_H264_8u_P3P1R, s1, s2, s3, d, width, height, step);
}

// clang-format on

// ---- inside a picture ----------------------------------------------------------------------

namespace {

// Calls the function in every set; each of them sees the size and the position of its set.
void expectPositions(char const *function, int fractions, std::vector<KeliSize> const &sizes) {
    suite::Sets sets(suite::findTest(function));
    int set = 0;
    for (; sets.next(); ++set) {
        EXPECT_EQ(sets.call(), 0);
        SeenCall const &call = g_seen.back();
        expectPlace(call.args[0], {0, 512 + set % 64}, {2944, 2048});
        EXPECT_EQ(call.args[1].value, 128);
        expectPlace(call.args[2], {1, 0}, {2944, 2048});
        expectValues(call, 3, {128, set % fractions, set / fractions % fractions});
        EXPECT_TRUE(equal(g_sizes.back(), sizes[set / (fractions * fractions)])) << set;
    }
    EXPECT_EQ(set, 3 * fractions * fractions);
}

} // namespace

TEST_F(InterpolateSuite, LumaWalksItsSizesAndQuarterSamples) {
    expectPositions("keliInterpolateLuma_H264_8u_C1R", 4, {{4, 4}, {8, 8}, {16, 16}});
}

TEST_F(InterpolateSuite, ChromaWalksItsSizesAndTwoPositions) {
    expectPositions("keliInterpolateChroma_H264_8u_C1R", 2, {{2, 2}, {4, 4}, {8, 8}});
}

TEST_F(InterpolateSuite, FirstSizeOfChromaIsABlockOfTwoByTwo) {
    suite::Sets sets(suite::findTest("keliInterpolateChroma_H264_8u_C1R"));
    ASSERT_TRUE(sets.next());
    EXPECT_EQ(sets.call(), 0);
    EXPECT_TRUE(equal(g_sizes.back(), {2, 2}));
}

TEST_F(InterpolateSuite, FullSampleIsTheFirstPositionOfTheWalk) {
    for (Expected const &expected : inside) {
        suite::Sets sets(suite::findTest(expected.m_function));
        ASSERT_TRUE(sets.next());
        EXPECT_EQ(sets.call(), 0);
        expectValues(g_seen.back(), 3, {128, 0, 0});
    }
}

TEST_F(InterpolateSuite, SourceWalksOverAllAlignmentsAndStartsOverBehindSixtyFourCalls) {
    for (Expected const &expected : inside) {
        rkTest *test = suite::findTest(expected.m_function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        loop(test, 130);
        for (int i = 0; i < 130; ++i) expectPlace(g_seen[i].args[0], {0, 512 + i % 64}, {2944, 2048});
    }
}

TEST_F(InterpolateSuite, SourceGoesOnFromSetToSetAndStartsOverWithTheTest) {
    for (int round = 0; round < 2; ++round) {
        rkTest *test = suite::findTest("keliInterpolateLuma_H264_8u_C1R");
        suite::Sets sets(test);
        for (int set = 0; set < 3; ++set) {
            ASSERT_TRUE(sets.next());
            loop(test, 10);
            expectPlace(g_seen[0].args[0], {0, 512 + 10 * set}, {2944, 2048});
        }
    }
}

// ---- across the boundary -------------------------------------------------------------------

TEST_F(InterpolateSuite, BlocksAcrossTheBoundaryHaveOneRowOutside) {
    for (Expected const &expected : boundary) {
        const bool luma = expected.m_function.find("Luma") != std::string::npos;
        const int fractions = luma ? 4 : 8;
        suite::Sets sets(suite::findTest(expected.m_function));
        int set = 0;
        for (; sets.next(); ++set) {
            EXPECT_EQ(sets.call(), 0);
            SeenCall const &call = g_seen.back();
            expectPlace(call.args[0], {0, 1072}, {2032, 2032});
            EXPECT_EQ(call.args[1].value, 48);
            expectPlace(call.args[2], {1, 160}, {2032, 2032});
            expectValues(call, 3, {48, set / 7 / fractions, set / 7 % fractions, 1});
            EXPECT_TRUE(equal(g_sizes.back(), (luma ? lumaSizes : chromaSizes)[set % 7])) << set;
        }
        EXPECT_EQ(set, 7 * fractions * fractions);
    }
}

// ---- weighted prediction ---------------------------------------------------------------------

TEST_F(InterpolateSuite, WeightedAverageHasEqualWeightsAndItsSetsBlock) {
    suite::Sets sets(suite::findTest("keliWeightedAverage_H264_8u_C1IR"));
    int set = 0;
    for (; sets.next(); ++set) {
        EXPECT_EQ(sets.call(), 0);
        expectPlace(g_seen.back().args[0], {0, 0}, {256, 256});
        expectPlace(g_seen.back().args[1], {1, 0}, {256, 256});
        expectValues(g_seen.back(), 2, {16, 32, 32, 6, 0});
        EXPECT_TRUE(equal(g_sizes.back(), {2 << set / 4, 2 << set % 4})) << set;
    }
    EXPECT_EQ(set, 16);
}

TEST_F(InterpolateSuite, WeightedPredictionTakesTheBlocksOfLumaThenOfChroma) {
    for (Expected const &expected : weightedPrediction) {
        suite::Sets sets(suite::findTest(expected.m_function));
        int set = 0;
        for (; sets.next(); ++set) {
            EXPECT_EQ(sets.call(), 0);
            EXPECT_TRUE(equal(g_sizes.back(), set < 7 ? lumaSizes[set] : chromaSizes[set - 7])) << set;
        }
        EXPECT_EQ(set, 14);
    }
}

namespace {

// One call of the function's first set.
SeenCall firstCall(char const *function) {
    suite::Sets sets(suite::findTest(function));
    EXPECT_TRUE(sets.next());
    EXPECT_EQ(sets.call(), 0);
    return g_seen.back();
}

} // namespace

TEST_F(InterpolateSuite, WeightedPredictionFromOneReferenceWorksInTheFirstSource) {
    const SeenCall call = firstCall("keliUniDirWeightBlock_H264_8u_C1R");
    expectPlace(call.args[0], {0, 0}, {256, 256, 256});
    expectValues(call, 1, {16, 0, 1, 0});
}

TEST_F(InterpolateSuite, WeightedPredictionFromTwoReferencesHasTheStepsOfItsForm) {
    struct Form {
        char const *function;
        std::vector<int> values;
    };
    for (Form const &form : {Form{"keliBiDirWeightBlock_H264_8u_P2P1R", {16, 16, 0, 1, 1, 0, 0}},
                             Form{"keliBiDirWeightBlockImplicit_H264_8u_P2P1R", {16, 16, 1, 1}},
                             Form{"keliBiDirWeightBlock_H264_8u_P3P1R", {16, 16, 16, 0, 1, 1, 0, 0}}}) {
        const SeenCall call = firstCall(form.function);
        for (int i = 0; i < 3; ++i) expectPlace(call.args[i], {i, 0}, {256, 256, 256});
        expectValues(call, 3, form.values);
    }
}

// ---- means -------------------------------------------------------------------------------------

namespace {

void expectMean(char const *function, std::vector<int> const &sources, int first,
                std::vector<int> const &sizes) {
    rkTest *test = suite::findTest(function);
    suite::Sets sets(test);
    for (int length = 2; length <= 16; length *= 2) {
        ASSERT_TRUE(sets.next());
        g_seen.clear();
        long long clocks = 0;
        EXPECT_EQ(test->m_funcLoop(129, &clocks), rkResSuccess);
        ASSERT_EQ(g_seen.size(), 130u);
        for (int i = 0; i < 130; ++i) {
            for (size_t k = 0; k < sources.size(); ++k)
                expectPlace(g_seen[i].args[k], {sources[k], first + i % 64}, sizes);
            expectPlace(g_seen[i].args[sources.size()], {2, 0}, sizes);
            expectValues(g_seen[i], sources.size() + 1, {length, length, 128});
        }
    }
    EXPECT_FALSE(sets.next());
}

} // namespace

TEST_F(InterpolateSuite, MeanOfTwoBlocksRotatesItsSourcesFromTheirFirstByteInEverySet) {
    expectMean("keliInterpolateBlock_H264_8u_P2P1R", {0, 1}, 0, {2944, 2944, 2048});
}

TEST_F(InterpolateSuite, MeanOfThreeBlocksRotatesItsSourcesBehindTheirNeighbours) {
    expectMean("keliInterpolateBlock_H264_8u_P3P1R", {0, 1, 3}, 512, {2944, 2944, 2048, 2944});
}

// ---- data --------------------------------------------------------------------------------------

TEST_F(InterpolateSuite, AllDataAreTheDefaultConstant) {
    for (auto const *family : {&inside, &boundary, &average, &weightedPrediction, &blocks}) {
        for (Expected const &expected : *family) {
            suite::Sets sets(suite::findTest(expected.m_function));
            ASSERT_TRUE(sets.next());
            for (suite::Block const &block : suite::Sets::blocks()) {
                for (int i = 0; i < block.size; ++i) ASSERT_EQ(block.data[i], 2) << expected.m_function;
            }
        }
    }
}

TEST_F(InterpolateSuite, ABlockOfNoTableIsNoSet) {
    struct Ask {
        char const *function, *line;
    };
    for (Ask const &ask : {Ask{"keliInterpolateLuma_H264_8u_C1R", "size_num = 3"},
                           Ask{"keliInterpolateLumaTop_H264_8u_C1R", "size = 7"},
                           Ask{"keliInterpolateChromaTop_H264_8u_C1R", "size = -1"},
                           Ask{"keliWeightedAverage_H264_8u_C1IR", "width = 32"},
                           Ask{"keliWeightedAverage_H264_8u_C1IR", "height = 1000"},
                           Ask{"keliUniDirWeightBlock_H264_8u_C1R", "size = 14"},
                           Ask{"keliInterpolateBlock_H264_8u_P2P1R", "blockSize = 16x17"},
                           Ask{"keliInterpolateBlock_H264_8u_P3P1R", "blockSize = 200x2"}}) {
        g_seen.clear();
        IniFile file("[" + std::string(ask.function) + "]\n" + ask.line + "\n");
        const suite::Outcome outcome = run(ask.function);
        EXPECT_TRUE(rkIsError(outcome.result)) << ask.line;
        EXPECT_TRUE(g_seen.empty()) << ask.line;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << ask.line;
    }
}

TEST_F(InterpolateSuite, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    for (auto const *family : {&inside, &boundary, &average, &weightedPrediction, &blocks}) {
        for (Expected const &expected : *family) {
            EXPECT_TRUE(rkIsError(run(expected.m_function).result)) << expected.m_function;
            EXPECT_TRUE(suite::Sets::blocks().empty()) << expected.m_function;
        }
    }
}

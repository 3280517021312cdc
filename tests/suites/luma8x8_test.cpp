// luma8x8_test.cpp - the suites of the 8x8 luma transforms: their data and their calls.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;

const kmType words = 16, signedWords = 16 | kmTypeSigned, longs = 32 | kmTypeSigned;

char const *const forward = "keliTransformFwdLuma8x8_H264_16s_C1";
char const *const forwardLong = "keliTransformFwdLuma8x8_H264_16s32s_C1";
char const *const inverse = "keliTransformInvAddPredLuma8x8_H264_32s16u_C1R";

// The parameter of the forward test has no column.
const std::vector<Expected> transforms = {
    Expected("vcTransformFwdLuma8x8", forward, "pxch", 1)
        .parm("numpoint", {"0"})
        .rows({{}})
        .blocks({128, 128})
        .writes({1}),
    Expected("vcTransformFwdLuma8x8", forwardLong, "pxch", 1)
        .parm("numpoint", {"0"})
        .rows({{}})
        .blocks({128, 256})
        .writes({1}),
    Expected("vcTransformInvAddPredLuma8x8_H264", inverse, "pxch", 1)
        .parm("dstStep", {"8", "80"})
        .blocks({256, 128, 128})
        .writes({1}),
};

class Luma8x8 : public suite::SuiteTest {
protected:
    void expectForward(char const *function, int dstBytes) {
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, function);
        ASSERT_EQ(calls.size(), 1u);
        expectArgs(calls[0], {block(0), block(1)}, {128, dstBytes});
    }
    void expectForwardData(char const *function, kmType dstType) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        expectRandom(suite::Sets::blocks(), {{signedWords, 64, 0, 0}, {dstType, 64, 0, 0}});
        EXPECT_FALSE(sets.next());
    }
    suite::Outcome runWithStep(std::string const &values) {
        IniFile file("[" + std::string(inverse) + "]\ndstStep = " + values + "\n");
        return run(inverse);
    }
};

} // namespace

SUITE_TEST(Luma8x8, "luma8x8.cpp", transforms);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliTransformFwdLuma8x8_H264_16s_C1(const Kel16s *src, Kel16s *dst) {
    return SPY(keliTransformFwdLuma8x8_H264_16s_C1, src, dst);
}

KelStatus keliTransformFwdLuma8x8_H264_16s32s_C1(const Kel16s *src, Kel32s *dst) {
    return SPY(keliTransformFwdLuma8x8_H264_16s32s_C1, src, dst);
}

KelStatus keliTransformInvAddPredLuma8x8_H264_32s16u_C1R(const Kel16u *pred, int predStep,
                                                         const Kel32s *coeffs, Kel16u *dst, int dstStep,
                                                         int bitDepth) {
    return SPY(keliTransformInvAddPredLuma8x8_H264_32s16u_C1R, pred, predStep, coeffs, dst, dstStep,
               bitDepth);
}

// ---- forward --------------------------------------------------------------------------

TEST_F(Luma8x8, ForwardGoesFromSourceToDestination) {
    expectForward(forward, 128);
    expectForward(forwardLong, 256);
}

TEST_F(Luma8x8, ForwardHasOnePassOfRandomData) {
    expectForwardData(forward, signedWords);
    expectForwardData(forwardLong, longs);
}

TEST_F(Luma8x8, ForwardHasNoParameterInItsRow) {
    suite::Rows rows = run(forward).rows;
    ASSERT_EQ(rows.size(), 1u);
    for (size_t i = suite::firstParm; i < suite::comment; ++i) EXPECT_EQ(rows[0][i], "-");
}

// ---- inverse --------------------------------------------------------------------------

// 800 lies over the last value.
TEST_F(Luma8x8, StepHasTwoValues) {
    EXPECT_EQ(firstCells(run(inverse).rows), suite::Cells({"8", "80"}));
}

TEST_F(Luma8x8, InverseGetsItsStepsInBytes) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, inverse);
    ASSERT_EQ(calls.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        const int step = i == 0 ? 8 : 80, bytes = 8 * step * 2;
        expectArgs(calls[i], {block(2), value(2 * step), block(0), block(1), value(2 * step), value(1)},
                   {256, bytes, bytes});
    }
}

TEST_F(Luma8x8, InverseFillsCoefficientsThenDestinationThenPrediction) {
    suite::Sets sets(suite::findTest(inverse));
    ASSERT_TRUE(sets.next());
    expectRandom(suite::Sets::blocks(), {{longs, 64, 0, 0}, {words, 64, 0, 0}, {words, 64, 0, 0}});
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[1].size, 1280);
    EXPECT_EQ(blocks[2].size, 1280);
    EXPECT_FALSE(sets.next());
}

TEST_F(Luma8x8, AnyStepThatMemoryHoldsIsTaken) {
    suite::Outcome outcome = runWithStep("8; 20; +4");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    EXPECT_EQ(firstCells(outcome.rows), suite::Cells({"8", "12", "16", "20"}));
}

TEST_F(Luma8x8, ImpossibleStepsFailWithoutACall) {
    for (char const *step : {"0", "-8", "2000000000", "-2000000000"}) {
        g_seen.clear();
        suite::Outcome outcome = runWithStep(step);
        EXPECT_TRUE(rkIsError(outcome.result)) << step;
        EXPECT_TRUE(outcome.rows.empty()) << step;
        EXPECT_TRUE(g_seen.empty()) << step;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << step;
    }
}

TEST_F(Luma8x8, WithoutMemoryThereIsNoSet) {
    for (char const *function : {forward, forwardLong, inverse}) {
        NoSecondBlock full;
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

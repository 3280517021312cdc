// motionestimation_test.cpp - the suites of differences from predictions.

#include "kmvc.h"
#include "seenargs.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

const Cells positions = {"APX_FF", "APX_FH", "APX_HF", "APX_HH"};

// Forward turns fastest.
const Cells pairs = {"APX_FF_FF", "APX_FH_FF", "APX_HF_FF", "APX_HH_FF", "APX_FF_FH", "APX_FH_FH",
                     "APX_HF_FH", "APX_HH_FH", "APX_FF_HF", "APX_FH_HF", "APX_HF_HF", "APX_HH_HF",
                     "APX_FF_HH", "APX_FH_HH", "APX_HF_HH", "APX_HH_HH"};

// Reference, current, difference or U, prediction or V, sums, variances, means.
const std::vector<int> sizes = {51200, 51200, 102400, 102400, 16, 16, 16};
// Forward and backward reference, current, difference or U, V.
const std::vector<int> sizesB = {51200, 51200, 51200, 102400, 102400};

Expected me(char const *function, double divisor, std::vector<int> writes) {
    return Expected("CME", function, "element", divisor)
        .rows(suite::product({positions}))
        .blocks(sizes)
        .writes(std::move(writes));
}

Expected meB(char const *function, double divisor, std::vector<int> writes) {
    return Expected("CME_B", function, "element", divisor)
        .rows(suite::product({pairs}))
        .blocks(sizesB)
        .writes(std::move(writes));
}

const std::vector<Expected> oneReference = {
    me("keliGetDiff16x16_8u16s_C1", 256, {2, 3}),
    me("keliGetDiff16x8_8u16s_C1", 128, {2, 3}),
    me("keliGetDiff8x16_8u16s_C1", 128, {2, 3}),
    me("keliGetDiff8x8_8u16s_C1", 64, {2, 3}),
    me("keliGetDiff8x4_8u16s_C1", 32, {2, 3}),
    me("keliGetDiff4x4_8u16s_C1", 16, {2, 3}),
    me("keliGetDiff8x8_8u16s_C2P2", 64, {2, 3}),
    me("keliGetDiff8x4_8u16s_C2P2", 32, {2, 3}),
    me("keliSqrDiff16x16_8u32s", 256, {}),
    me("keliSSD8x8_8u32s_C1R", 64, {}),
    me("keliSSD4x4_8u32s_C1R", 1, {}), // counts calls
    me("keliVarMeanDiff16x16_8u32s_C1R", 256, {5, 6}),
    me("keliVarMeanDiff16x8_8u32s_C1R", 128, {5, 6}),
};

const std::vector<Expected> twoReferences = {
    meB("keliGetDiff16x16B_8u16s_C1", 256, {3}),   meB("keliGetDiff16x8B_8u16s_C1", 128, {3}),
    meB("keliGetDiff8x16B_8u16s_C1", 128, {3}),    meB("keliGetDiff8x8B_8u16s_C1", 64, {3}),
    meB("keliGetDiff8x4B_8u16s_C1", 32, {3}),      meB("keliGetDiff8x8B_8u16s_C2P2", 64, {3, 4}),
    meB("keliGetDiff8x4B_8u16s_C2P2", 32, {3, 4}), meB("keliSqrDiff16x16B_8u32s", 256, {}),
};

bool has(std::string const &function, char const *word) {
    return function.find(word) != std::string::npos;
}

// What stands behind current, step, reference and step.
std::vector<Arg> resultsOf(std::string const &function, int position) {
    if (has(function, "SqrDiff")) return {value(position), own()};
    if (has(function, "SSD")) return {own(), value(position)};
    if (has(function, "VarMean")) return {block(4), block(5), block(6), value(position)};
    return {block(2), value(32), block(3), value(32), value(position), value(0)};
}

// What stands behind the references.
std::vector<Arg> resultsOfB(std::string const &function) {
    if (has(function, "SqrDiff")) return {own()};
    if (has(function, "C2P2")) return {block(3), value(32), block(4), value(32), value(0)};
    return {block(3), value(32), value(0)};
}

std::vector<Arg> joined(std::vector<Arg> first, std::vector<Arg> const &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class MotionEstimation : public suite::SuiteTest {};

} // namespace

SUITE_TEST(MotionEstimation, "motionestimation.cpp", oneReference);
SUITE_TEST(MotionEstimationB, "motionestimationb.cpp", twoReferences);

// ---- the spies ----------------------------------------------------------------------

// clang-format off

#define SPY_DIFF(name) \
    KelStatus name(const Kel8u *c, int cs, const Kel8u *r, int rs, Kel16s *d, int ds, Kel16s *p, int ps, int mc, int round) { return SPY(name, c, cs, r, rs, d, ds, p, ps, mc, round); }
#define SPY_SSD(name) \
    KelStatus name(const Kel8u *c, int cs, const Kel8u *r, int rs, Kel32s *d, int mc) { return SPY(name, c, cs, r, rs, d, mc); }
#define SPY_VARMEAN(name) \
    KelStatus name(const Kel8u *c, int cs, const Kel8u *r, int rs, const Kel32s *s, Kel32s *v, Kel32s *m, int mc) { return SPY(name, c, cs, r, rs, s, v, m, mc); }
#define SPY_DIFFB(name) \
    KelStatus name(const Kel8u *c, int cs, const Kel8u *f, int fs, int mcF, const Kel8u *b, int bs, int mcB, Kel16s *d, int ds, int round) { return SPY(name, c, cs, f, fs, mcF, b, bs, mcB, d, ds, round); }
#define SPY_PLANESB(name) \
    KelStatus name(const Kel8u *c, int cs, const Kel8u *f, int fs, int mcF, const Kel8u *b, int bs, int mcB, Kel16s *u, int us, Kel16s *v, int vs, int round) { return SPY(name, c, cs, f, fs, mcF, b, bs, mcB, u, us, v, vs, round); }

SPY_DIFF(keliGetDiff16x16_8u16s_C1)
SPY_DIFF(keliGetDiff16x8_8u16s_C1)
SPY_DIFF(keliGetDiff8x16_8u16s_C1)
SPY_DIFF(keliGetDiff8x8_8u16s_C1)
SPY_DIFF(keliGetDiff8x4_8u16s_C1)
SPY_DIFF(keliGetDiff4x4_8u16s_C1)
SPY_DIFF(keliGetDiff8x8_8u16s_C2P2)
SPY_DIFF(keliGetDiff8x4_8u16s_C2P2)
SPY_SSD(keliSSD8x8_8u32s_C1R)
SPY_SSD(keliSSD4x4_8u32s_C1R)
SPY_VARMEAN(keliVarMeanDiff16x16_8u32s_C1R)
SPY_VARMEAN(keliVarMeanDiff16x8_8u32s_C1R)
SPY_DIFFB(keliGetDiff16x16B_8u16s_C1)
SPY_DIFFB(keliGetDiff16x8B_8u16s_C1)
SPY_DIFFB(keliGetDiff8x16B_8u16s_C1)
SPY_DIFFB(keliGetDiff8x8B_8u16s_C1)
SPY_DIFFB(keliGetDiff8x4B_8u16s_C1)
SPY_PLANESB(keliGetDiff8x8B_8u16s_C2P2)
SPY_PLANESB(keliGetDiff8x4B_8u16s_C2P2)

KelStatus keliSqrDiff16x16_8u32s(const Kel8u *c, int cs, const Kel8u *r, int rs, int mc, Kel32s *d) { return SPY(keliSqrDiff16x16_8u32s, c, cs, r, rs, mc, d); }
KelStatus keliSqrDiff16x16B_8u32s(const Kel8u *c, int cs, const Kel8u *f, int fs, int mcF, const Kel8u *b, int bs, int mcB, Kel32s *d) { return SPY(keliSqrDiff16x16B_8u32s, c, cs, f, fs, mcF, b, bs, mcB, d); }

// clang-format on

// ---- the calls ------------------------------------------------------------------------

TEST_F(MotionEstimation, OneReferenceIsCalledAtEachPositionInTurn) {
    for (Expected const &expected : oneReference) {
        suite::Outcome run;
        std::vector<SeenCall> calls = callsOf(run, expected.m_function);
        ASSERT_EQ(calls.size(), 4u);
        for (int i = 0; i < 4; ++i) {
            expectArgs(
                calls[i],
                joined({block(1), value(32), block(0), value(32)}, resultsOf(expected.m_function, 4 * i)),
                sizes);
        }
    }
}

TEST_F(MotionEstimation, TwoReferencesAreCalledAtEachPairOfPositionsForwardTurningFastest) {
    for (Expected const &expected : twoReferences) {
        suite::Outcome run;
        std::vector<SeenCall> calls = callsOf(run, expected.m_function);
        ASSERT_EQ(calls.size(), 16u);
        for (int i = 0; i < 16; ++i) {
            expectArgs(calls[i],
                       joined({block(2), value(32), block(0), value(160), value(i % 4 * 4), block(1),
                               value(160), value(i / 4 * 4)},
                              resultsOfB(expected.m_function)),
                       sizesB);
        }
    }
}

// ---- the data ---------------------------------------------------------------------------

const Fill picture = {8, 51200, 0.0, 255.0};
const Fill plane = {16 | kmTypeSigned, 51200, 0.0, 255.0};
const Fill four = {32 | kmTypeSigned, 4, 0.0, 255.0};

TEST_F(MotionEstimation, DataAreDrawnInTheOrderOfTheirBlocks) {
    suite::Sets one(suite::findTest("keliGetDiff16x16_8u16s_C1"));
    ASSERT_TRUE(one.next());
    expectRandom(suite::Sets::blocks(), {picture, picture, plane, plane, four, four, four});
}

TEST_F(MotionEstimation, DataOfTwoReferencesAreDrawnInTheOrderOfTheirBlocks) {
    suite::Sets two(suite::findTest("keliGetDiff16x16B_8u16s_C1"));
    ASSERT_TRUE(two.next());
    expectRandom(suite::Sets::blocks(), {picture, picture, picture, plane, plane});
}

// ---- the ini file -----------------------------------------------------------------------

TEST_F(MotionEstimation, TheSectionOfOneReferenceHasTheListAndTheRepeats) {
    IniFile ini("[ME]\nApproximation = HF,HH,XX\nRepeatCounter = 2\n");
    EXPECT_EQ(firstCells(run("keliSSD8x8_8u32s_C1R").rows), (Cells{"APX_HF", "APX_HH", "APX_HF", "APX_HH"}));
}

TEST_F(MotionEstimation, TheSectionOfTwoReferencesHasTheListAndTheRepeats) {
    IniFile ini("[ME_B]\nApproximation = FHHF,XXXX,FFFH\nRepeatCounter = 2\n");
    EXPECT_EQ(firstCells(run("keliSqrDiff16x16B_8u32s").rows),
              (Cells{"APX_FH_HF", "APX_FF_FH", "APX_FH_HF", "APX_FF_FH"}));
    EXPECT_EQ(firstCells(run("keliSqrDiff16x16_8u32s").rows), positions) << "has a section of its own";
}

TEST_F(MotionEstimation, OfMoreThanSixteenItemsTheFirstSixteenAreTaken) {
    std::string list = "HHHH";
    for (int i = 0; i < 16; ++i) list += ",FHFH";
    IniFile ini("[ME_B]\nApproximation = " + list + "\n");
    Cells expected(16, "APX_FH_FH");
    expected[0] = "APX_HH_HH";
    EXPECT_EQ(firstCells(run("keliSqrDiff16x16B_8u32s").rows), expected);
}

TEST_F(MotionEstimation, TheDefaultListOfAnIniFileRunsFullSamplePositionsTwiceAndNoBackwardHalfAlone) {
    IniFile ini("[kelVC]\nRepeatCounter = 1\n");
    suite::Outcome two;
    std::vector<SeenCall> calls = callsOf(two, "keliGetDiff8x8B_8u16s_C1");
    Cells expected = pairs;
    expected[4] = "APX_FF_FF";
    EXPECT_EQ(firstCells(two.rows), expected);
    ASSERT_EQ(calls.size(), 16u);
    int full = 0, backwardHalf = 0;
    for (SeenCall const &call : calls) {
        if (call.args[4].value == 0 && call.args[7].value == 0) ++full;
        if (call.args[4].value == 0 && call.args[7].value == 4) ++backwardHalf;
    }
    EXPECT_EQ(full, 2);
    EXPECT_EQ(backwardHalf, 0);
    EXPECT_EQ(two.result, rkResDataWarning) << "two rows are alike";
}

TEST_F(MotionEstimation, AnIniFileWithoutTheSectionLeavesAllPositionsOfOneReference) {
    IniFile ini("[kelVC]\nRepeatCounter = 1\n");
    suite::Outcome one = run("keliGetDiff8x8_8u16s_C1");
    EXPECT_EQ(firstCells(one.rows), positions);
    EXPECT_EQ(one.result, rkResSuccess);
}

TEST_F(MotionEstimation, WithoutKnownItemsOrRepeatsNothingRuns) {
    for (char const *text : {"[ME]\nApproximation = FX\n[ME_B]\nApproximation = FF,FH\n",
                             "[ME]\nRepeatCounter = 0\n[ME_B]\nRepeatCounter = 0\n"}) {
        IniFile ini(text);
        for (char const *function : {"keliGetDiff8x4_8u16s_C1", "keliGetDiff8x4B_8u16s_C1"}) {
            suite::Outcome nothing;
            EXPECT_TRUE(callsOf(nothing, function).empty()) << text;
            EXPECT_EQ(nothing.result, rkResDataError) << text;
        }
    }
}

TEST_F(MotionEstimation, DifferencesWithoutMemoryAreCalledAndTheLibraryRefuses) {
    NoSecondBlock full;
    for (char const *function : {"keliGetDiff16x16_8u16s_C1", "keliGetDiff16x16B_8u16s_C1"}) {
        suite::Outcome failed;
        EXPECT_FALSE(callsOf(failed, function).empty()) << function;
        EXPECT_EQ(failed.result, rkResLibError) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

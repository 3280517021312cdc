// motioncompensation_test.cpp - the suites of predictions with the residual added.

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

// Reference, destination, residual.
const std::vector<int> sizes = {51200, 51200, 102400};
// Forward and backward reference, destination, residual.
const std::vector<int> sizesB = {51200, 51200, 51200, 102400};

Expected mc(char const *function, double divisor) {
    return Expected("CMC", function, "element", divisor)
        .rows(suite::product({positions}))
        .blocks(sizes)
        .writes({1});
}

Expected mcB(char const *function, double divisor) {
    return Expected("CMC_B", function, "element", divisor)
        .rows(suite::product({pairs}))
        .blocks(sizesB)
        .writes({2});
}

const std::vector<Expected> oneReference = {
    mc("keliMC16x16_8u_C1", 256),  mc("keliMC16x8_8u_C1", 128), mc("keliMC8x16_8u_C1", 128),
    mc("keliMC8x8_8u_C1", 64),     mc("keliMC8x4_8u_C1", 32),   mc("keliMC16x4_8u_C1", 64),
    mc("keliMC16x8UV_8u_C1", 128), mc("keliMC4x8_8u_C1", 32),   mc("keliMC4x4_8u_C1", 16),
    mc("keliMC4x2_8u_C1", 8),      mc("keliMC2x4_8u_C1", 8),    mc("keliMC2x2_8u_C1", 4),
};

const std::vector<Expected> twoReferences = {
    mcB("keliMC16x16B_8u_C1", 256),  mcB("keliMC16x8B_8u_C1", 128), mcB("keliMC8x16B_8u_C1", 128),
    mcB("keliMC8x8B_8u_C1", 64),     mcB("keliMC8x4B_8u_C1", 32),   mcB("keliMC16x4B_8u_C1", 64),
    mcB("keliMC16x8BUV_8u_C1", 128), mcB("keliMC4x8B_8u_C1", 32),   mcB("keliMC4x4B_8u_C1", 16),
    mcB("keliMC2x4B_8u_C1", 8),      mcB("keliMC4x2B_8u_C1", 8),    mcB("keliMC2x2B_8u_C1", 4),
};

class MotionCompensation : public suite::SuiteTest {};

} // namespace

SUITE_TEST(MotionCompensation, "motioncompensation.cpp", oneReference);
SUITE_TEST(MotionCompensationB, "motioncompensationb.cpp", twoReferences);

// ---- the spies ----------------------------------------------------------------------

// clang-format off

#define SPY_MC(name) \
    KelStatus name(const Kel8u *r, int rs, const Kel16s *y, int ys, Kel8u *d, int ds, int mc, int round) { return SPY(name, r, rs, y, ys, d, ds, mc, round); }
#define SPY_MCB(name) \
    KelStatus name(const Kel8u *f, int fs, int mcF, const Kel8u *b, int bs, int mcB, const Kel16s *y, int ys, Kel8u *d, int ds, int round) { return SPY(name, f, fs, mcF, b, bs, mcB, y, ys, d, ds, round); }

SPY_MC(keliMC16x16_8u_C1)
SPY_MC(keliMC16x8_8u_C1)
SPY_MC(keliMC8x16_8u_C1)
SPY_MC(keliMC8x8_8u_C1)
SPY_MC(keliMC8x4_8u_C1)
SPY_MC(keliMC16x4_8u_C1)
SPY_MC(keliMC16x8UV_8u_C1)
SPY_MC(keliMC4x8_8u_C1)
SPY_MC(keliMC4x4_8u_C1)
SPY_MC(keliMC4x2_8u_C1)
SPY_MC(keliMC2x4_8u_C1)
SPY_MC(keliMC2x2_8u_C1)
SPY_MCB(keliMC16x16B_8u_C1)
SPY_MCB(keliMC16x8B_8u_C1)
SPY_MCB(keliMC8x16B_8u_C1)
SPY_MCB(keliMC8x8B_8u_C1)
SPY_MCB(keliMC8x4B_8u_C1)
SPY_MCB(keliMC16x4B_8u_C1)
SPY_MCB(keliMC16x8BUV_8u_C1)
SPY_MCB(keliMC4x8B_8u_C1)
SPY_MCB(keliMC4x4B_8u_C1)
SPY_MCB(keliMC2x4B_8u_C1)
SPY_MCB(keliMC4x2B_8u_C1)
SPY_MCB(keliMC2x2B_8u_C1)

// clang-format on

// ---- the calls ------------------------------------------------------------------------

TEST_F(MotionCompensation, OneReferenceIsCalledAtEachPositionInTurn) {
    for (Expected const &expected : oneReference) {
        suite::Outcome run;
        std::vector<SeenCall> calls = callsOf(run, expected.m_function);
        ASSERT_EQ(calls.size(), 4u);
        for (int i = 0; i < 4; ++i) {
            expectArgs(
                calls[i],
                {block(0), value(160), block(2), value(160), block(1), value(160), value(4 * i), value(0)},
                sizes);
        }
    }
}

TEST_F(MotionCompensation, TwoReferencesAreCalledAtEachPairOfPositionsForwardTurningFastest) {
    for (Expected const &expected : twoReferences) {
        suite::Outcome run;
        std::vector<SeenCall> calls = callsOf(run, expected.m_function);
        ASSERT_EQ(calls.size(), 16u);
        for (int i = 0; i < 16; ++i) {
            expectArgs(calls[i],
                       {block(0), value(160), value(i % 4 * 4), block(1), value(160), value(i / 4 * 4),
                        block(3), value(160), block(2), value(160), value(0)},
                       sizesB);
        }
    }
}

// ---- the data ---------------------------------------------------------------------------

TEST_F(MotionCompensation, DataAreDrawnInTheOrderOfTheirBlocks) {
    const Fill picture = {8, 51200, 0.0, 255.0}, residual = {16 | kmTypeSigned, 51200, 0.0, 255.0};
    suite::Sets one(suite::findTest("keliMC16x16_8u_C1"));
    ASSERT_TRUE(one.next());
    expectRandom(suite::Sets::blocks(), {picture, picture, residual});
}

TEST_F(MotionCompensation, DataOfTwoReferencesAreDrawnInTheOrderOfTheirBlocks) {
    const Fill picture = {8, 51200, 0.0, 255.0}, residual = {16 | kmTypeSigned, 51200, 0.0, 255.0};
    suite::Sets two(suite::findTest("keliMC16x16B_8u_C1"));
    ASSERT_TRUE(two.next());
    expectRandom(suite::Sets::blocks(), {picture, picture, picture, residual});
}

// ---- the ini file -----------------------------------------------------------------------

TEST_F(MotionCompensation, TheSectionOfOneReferenceHasTheListAndTheRepeats) {
    IniFile ini("[kelVC]\nRepeatCounter = 1\n[MC]\nApproximation = HH,XX,FH,ff\nRepeatCounter = 2\n");
    suite::Outcome one = run("keliMC8x8_8u_C1");
    EXPECT_EQ(firstCells(one.rows), (Cells{"APX_HH", "APX_FH", "APX_HH", "APX_FH"}));
    EXPECT_EQ(one.result, rkResDataWarning) << "rows that are alike";
    EXPECT_EQ(firstCells(run("keliMC8x8B_8u_C1").rows), pairs) << "has a section of its own";
}

TEST_F(MotionCompensation, OfOneReferenceAtMostFourPositionsAreTaken) {
    IniFile ini("[MC]\nApproximation = HF,HH,HF,HH,FF,FH\n");
    EXPECT_EQ(firstCells(run("keliMC4x4_8u_C1").rows), (Cells{"APX_HF", "APX_HH", "APX_HF", "APX_HH"}));
}

TEST_F(MotionCompensation, AnIniFileWithoutTheSectionsLeavesTheWholeLists) {
    IniFile ini("[kelVC]\nAlign = 32\n");
    EXPECT_EQ(firstCells(run("keliMC4x4_8u_C1").rows), positions);
    EXPECT_EQ(firstCells(run("keliMC4x4B_8u_C1").rows), pairs);
}

TEST_F(MotionCompensation, AnItemOfTwoReferencesIsTheForwardAndTheBackwardPosition) {
    IniFile ini("[MC_B]\nApproximation = FHHF,HHFF,HFHHxx\n");
    suite::Outcome two;
    std::vector<SeenCall> calls = callsOf(two, "keliMC16x8B_8u_C1");
    EXPECT_EQ(firstCells(two.rows), (Cells{"APX_FH_HF", "APX_HH_FF", "APX_HF_HH"}));
    ASSERT_EQ(calls.size(), 3u);
    const int forward[] = {4, 12, 8}, backward[] = {8, 0, 12};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(calls[i].args[2].value, forward[i]);
        EXPECT_EQ(calls[i].args[5].value, backward[i]);
    }
}

TEST_F(MotionCompensation, UnknownItemsOfTwoReferencesAreSkipped) {
    IniFile ini("[MC_B]\nApproximation = FFXX,XXFF,FF,F,HHHH, FFFF\n");
    EXPECT_EQ(firstCells(run("keliMC2x2B_8u_C1").rows), (Cells{"APX_HH_HH"}));
}

TEST_F(MotionCompensation, OfMoreThanSixteenItemsTheFirstSixteenAreTaken) {
    std::string list = "XXXX";
    Cells expected;
    for (int i = 0; i < 18; ++i) {
        list += i % 3 ? ",HFFH" : ",HHFF";
        if (i < 16) expected.push_back(i % 3 ? "APX_HF_FH" : "APX_HH_FF");
    }
    IniFile ini("[MC_B]\nApproximation = " + list + "\n");
    EXPECT_EQ(firstCells(run("keliMC2x4B_8u_C1").rows), expected);
}

TEST_F(MotionCompensation, TwoReferencesRepeatTheWholeList) {
    IniFile ini("[kelVC]\nRepeatCounter = 3\n[MC_B]\nApproximation = FFHH,HHFF\n");
    const Cells once = {"APX_FF_HH", "APX_HH_FF"};
    EXPECT_EQ(firstCells(run("keliMC4x2B_8u_C1").rows),
              (Cells{once[0], once[1], once[0], once[1], once[0], once[1]}));
}

TEST_F(MotionCompensation, WithoutKnownItemsOrRepeatsNothingRuns) {
    for (char const *text : {"[MC]\nApproximation = FX\n[MC_B]\nApproximation = FFFX\n",
                             "[kelVC]\nRepeatCounter = 0\n", "[kelVC]\nRepeatCounter = -1\n"}) {
        IniFile ini(text);
        for (char const *function : {"keliMC8x4_8u_C1", "keliMC8x4B_8u_C1"}) {
            suite::Outcome nothing;
            EXPECT_TRUE(callsOf(nothing, function).empty()) << text;
            EXPECT_EQ(nothing.result, rkResDataError) << text;
        }
    }
}

// ---- no memory ----------------------------------------------------------------------------

TEST_F(MotionCompensation, TwoReferencesWithoutMemoryAreNotCalled) {
    NoSecondBlock full;
    suite::Outcome failed;
    EXPECT_TRUE(callsOf(failed, "keliMC16x16B_8u_C1").empty());
    EXPECT_EQ(failed.result, rkResDataError);
    EXPECT_TRUE(suite::Sets::blocks().empty());
}

TEST_F(MotionCompensation, OneReferenceWithoutMemoryIsCalledAndTheLibraryRefuses) {
    NoSecondBlock full;
    suite::Outcome failed;
    std::vector<SeenCall> calls = callsOf(failed, "keliMC16x16_8u_C1");
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0].args[4].data, nullptr) << "the second block";
    EXPECT_EQ(failed.result, rkResLibError);
    EXPECT_TRUE(suite::Sets::blocks().empty());
}

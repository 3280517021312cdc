// variance_test.cpp - the suite of variances and means of blocks.

#include "kmvc.h"
#include "seenargs.h"
#include "suitetest.h"

namespace {

using suite::Expected;

const std::vector<Expected> variances = {
    Expected("CME_Variance", "keliVariance16x16_8u32s", "element", 256).blocks({51200}),
    Expected("CVarMean", "keliVarMean8x8_8u32s_C1R", "element", 64).blocks({300, 600}),
    Expected("CVarMean", "keliVarMean8x8_16s32s_C1R", "element", 64).blocks({300, 600}),
};

class Variance : public suite::SuiteTest {};

std::vector<unsigned char> firstBlock() {
    const suite::Block block = suite::Sets::blocks().at(0);
    return std::vector<unsigned char>(block.data, block.data + block.size);
}

// The data of all passes, one set each.
std::vector<std::vector<unsigned char>> passesOf(char const *function) {
    std::vector<std::vector<unsigned char>> passes;
    suite::Sets sets(suite::findTest(function));
    while (sets.next() && passes.size() < 100) passes.push_back(firstBlock());
    return passes;
}

} // namespace

SUITE_TEST(Variance, "variance.cpp", variances);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliVariance16x16_8u32s(const Kel8u *s, int ss, Kel32s *v) {
    return SPY(keliVariance16x16_8u32s, s, ss, v);
}
KelStatus keliVarMean8x8_8u32s_C1R(const Kel8u *s, int ss, Kel32s *v, Kel32s *m) {
    return SPY(keliVarMean8x8_8u32s_C1R, s, ss, v, m);
}
KelStatus keliVarMean8x8_16s32s_C1R(const Kel16s *s, int ss, Kel32s *v, Kel32s *m) {
    return SPY(keliVarMean8x8_16s32s_C1R, s, ss, v, m);
}

// ---- the calls ------------------------------------------------------------------------

TEST_F(Variance, EachFunctionReadsTheFirstSamplesOfItsVector) {
    suite::Outcome run;
    expectArgs(callsOf(run, "keliVariance16x16_8u32s").at(0), {block(0), value(60), own()}, {51200});
    expectArgs(callsOf(run, "keliVarMean8x8_8u32s_C1R").at(0), {block(0), value(32), own(), own()},
               {300, 600});
    expectArgs(callsOf(run, "keliVarMean8x8_16s32s_C1R").at(0), {block(1), value(32), own(), own()},
               {300, 600});
}

TEST_F(Variance, VarianceAndMeanHavePlacesOfTheirOwn) {
    for (char const *function : {"keliVarMean8x8_8u32s_C1R", "keliVarMean8x8_16s32s_C1R"}) {
        suite::Outcome run;
        SeenCall call = callsOf(run, function).at(0);
        EXPECT_NE(call.args[2].data, call.args[3].data) << function;
    }
}

// ---- the data ---------------------------------------------------------------------------

TEST_F(Variance, SamplesOfTheMacroblockAreRandom) {
    suite::Sets sets(suite::findTest("keliVariance16x16_8u32s"));
    ASSERT_TRUE(sets.next());
    expectRandom(suite::Sets::blocks(), {{8, 51200, 0.0, 255.0}});
}

TEST_F(Variance, SamplesOfTheBlocksAreRandomAndTheWideOnesSigned) {
    suite::Sets sets(suite::findTest("keliVarMean8x8_16s32s_C1R"));
    ASSERT_TRUE(sets.next());
    expectRandom(suite::Sets::blocks(), {{8, 300, 0.0, 255.0}, {16 | kmTypeSigned, 300, -2000.0, 2000.0}});
}

// ---- the ini file -----------------------------------------------------------------------

TEST_F(Variance, ThreeRepeatsAreThreePassesWithFreshData) {
    IniFile ini("[ME_Variance]\nRepeatCounter = 3\n[VarMean]\nRepeatCounter = 2\n");
    auto passes = passesOf("keliVariance16x16_8u32s");
    ASSERT_EQ(passes.size(), 3u);
    EXPECT_NE(passes[0], passes[1]);
    EXPECT_NE(passes[0], passes[2]);
    EXPECT_NE(passes[1], passes[2]);
    EXPECT_EQ(passesOf("keliVarMean8x8_8u32s_C1R").size(), 2u);
}

TEST_F(Variance, RowsOfRepeatsAreAlike) {
    IniFile ini("[kelVC]\nRepeatCounter = 3\n");
    for (Expected const &expected : variances) {
        suite::Outcome repeated = run(expected.m_function);
        EXPECT_EQ(repeated.rows.size(), 3u) << expected.m_function;
        EXPECT_EQ(firstCells(repeated.rows), suite::Cells(3, "-")) << expected.m_function;
        EXPECT_EQ(repeated.result, rkResDataWarning) << expected.m_function;
    }
}

TEST_F(Variance, EachClassHasASectionOfItsOwn) {
    IniFile ini("[ME_Variance]\nRepeatCounter = 2\n");
    EXPECT_EQ(run("keliVariance16x16_8u32s").rows.size(), 2u);
    EXPECT_EQ(run("keliVarMean8x8_8u32s_C1R").rows.size(), 1u);
}

TEST_F(Variance, WithoutRepeatsNothingRuns) {
    for (char const *text : {"[kelVC]\nRepeatCounter = 0\n", "[kelVC]\nRepeatCounter = -2\n"}) {
        IniFile ini(text);
        for (Expected const &expected : variances) {
            suite::Outcome nothing;
            EXPECT_TRUE(callsOf(nothing, expected.m_function).empty()) << text;
            EXPECT_EQ(nothing.result, rkResDataError) << text;
        }
    }
}

TEST_F(Variance, AListOfPositionsIsNotRead) {
    IniFile ini("[ME_Variance]\nApproximation = XX\n[VarMean]\nApproximation = XX\n");
    for (Expected const &expected : variances)
        EXPECT_EQ(run(expected.m_function).result, rkResSuccess) << expected.m_function;
}

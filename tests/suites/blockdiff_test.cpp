// blockdiff_test.cpp - the suites of block differences: every test runs, and its data and rows are right.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "../unit/tempdir.h"
#include "blockdiffspies.h"
#include "kmvc.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;
using suite::findTest;
using suite::firstParm;

// ---- what is registered ----------------------------------------------------------------

Expected sad(char const *function, double divisor) {
    return Expected("CSAD", function, "element", divisor)
        .rows({{"APX_FF"}, {"APX_FH"}, {"APX_HF"}, {"APX_HH"}})
        .blocks({51200, 51200});
}

const std::vector<Expected> sads = {
    sad("keliSAD16x16_8u32s", 256),
    sad("keliSAD16x8_8u32s_C1R", 128),
    sad("keliEdgesDetect16x16_8u_C1R", 256),
};

Expected sadH264(char const *function, int sumBytes) {
    return Expected("CSAD_H264", function, "all", 1).blocks({256, 256, 256 * sumBytes}).writes({2});
}

const std::vector<Expected> sadsH264 = {
    sadH264("keliSAD4x4_8u32s", 4),
    sadH264("keliSAD16x16Blocks8x8_8u16u", 2),
    sadH264("keliSAD16x16Blocks4x4_8u16u", 2),
};

Expected sadN(char const *function) {
    return Expected("TarvoSoftware::rk_SADn", function, "per SAD", 4096)
        .stat(1023)
        .blocks({1024, 66560, 4096 * 2})
        .writes({2});
}

const std::vector<Expected> sadsN = {
    sadN("keliSAD4x4xNI_8u16u_C1R"),  sadN("keliSAD8x8xNI_8u16u_C1R"), sadN("keliSAD16x16xNI_8u16u_C1R"),
    sadN("keliSAD2x2xN_8u16u_C1R"),   sadN("keliSAD4x4xN_8u16u_C1R"),  sadN("keliSAD8x8xN_8u16u_C1R"),
    sadN("keliSAD16x16xN_8u16u_C1R"),
};

Expected sums(char const *function, double divisor, int srcBytes, int sumBytes) {
    return Expected("CSUMD_H264", function, "e", divisor)
        .parm("SrcPitch", {"SrcPitch=16", "SrcPitch=18"})
        .parm("PredPitch", {"PredPitch=16", "PredPitch=18"})
        .parm("save_diff", {"save_diff=0", "save_diff=1"})
        .blocks({400 * srcBytes, 400 * srcBytes, 256 * sumBytes})
        .writes({2});
}

const std::vector<Expected> sumsOfDifferences = {
    sums("keliSumsDiff16x16Blocks4x4_8u16s_C1", 256, 1, 2),
    sums("keliSumsDiff8x8Blocks4x4_8u16s_C1", 64, 1, 2),
    sums("keliSumsDiff16x16Blocks4x4_16u32s_C1R", 256, 2, 4),
    sums("keliSumsDiff8x8Blocks4x4_16u32s_C1R", 64, 2, 4),
};

std::vector<Expected> everything() {
    std::vector<Expected> all;
    for (auto const *list : {&sads, &sadsH264, &sadsN, &sumsOfDifferences})
        all.insert(all.end(), list->begin(), list->end());
    return all;
}

} // namespace

SUITE_TEST(Sad, "sad.cpp", sads);
SUITE_TEST(SadH264, "sadh264.cpp", sadsH264);
SUITE_TEST(SadN, "sadn.cpp", sadsN);
SUITE_TEST(SumsDiff, "sumsdiff.cpp", sumsOfDifferences);

// ---- the calls ---------------------------------------------------------------------------

namespace {

// Every call of the library goes through a spy.
class BlockDiff : public suite::SuiteTest {
protected:
    void SetUp() override {
        SuiteTest::SetUp();
        g_spied.clear();
    }

    suite::Rows run(std::string const &function) {
        suite::Outcome run = SuiteTest::run(function);
        m_result = run.result;
        return run.rows;
    }

    rkResult m_result = rkResNotRun;
};

} // namespace

TEST_F(BlockDiff, ASetIsAWarmUpAndACall) {
    for (Expected const &expected : everything()) {
        g_spied.clear();
        size_t sets = run(expected.m_function).size();
        EXPECT_GT(sets, 0u);
        EXPECT_EQ(g_spied.size(), 2 * sets);
        for (SpiedCall const &call : g_spied) EXPECT_EQ(call.function, expected.m_function);
    }
}

// ---- CSAD -----------------------------------------------------------------------------

TEST_F(BlockDiff, SadWalksTheHalfSamplePositions) {
    run("keliSAD16x16_8u32s");
    ASSERT_EQ(g_spied.size(), 8u);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(g_spied[2 * i].last, 4 * i);
}

TEST_F(BlockDiff, SadReadsTheTopLeftOfTwoRandomPictures) {
    run("keliSAD16x8_8u32s_C1R");
    ASSERT_FALSE(g_spied.empty());
    for (SpiedCall const &call : g_spied) {
        EXPECT_EQ(call.srcStep, 160);
        EXPECT_EQ(call.refStep, 160);
        EXPECT_EQ(call.srcRoom, 51200) << "all of the picture, from its first sample on";
        EXPECT_EQ(call.refRoom, 51200);
        EXPECT_FALSE(call.constantSrc);
    }
}

TEST_F(BlockDiff, TheEdgeTestHasFixedLimits) {
    run("keliEdgesDetect16x16_8u_C1R");
    ASSERT_FALSE(g_spied.empty());
    EXPECT_EQ(g_spied[0].srcStep, 160);
    EXPECT_EQ(g_spied[0].edgeDifference, 5);
    EXPECT_EQ(g_spied[0].last, 12);
}

TEST_F(BlockDiff, AListOfOnlyHHRunsOnceForEachRepeat) {
    TempDir dir;
    rkString name = dir.write("sad.ini", "[kelVC]\nRepeatCounter = 2\n[SAD]\nApproximation = HH\n");
    ASSERT_TRUE(g_istrm.setIniFile(name, false));
    suite::Rows rows = run("keliSAD16x16_8u32s");
    ASSERT_EQ(rows.size(), 2u);
    for (Cells const &row : rows) EXPECT_EQ(row[firstParm], "APX_HH");
    ASSERT_EQ(g_spied.size(), 4u);
    for (SpiedCall const &call : g_spied) EXPECT_EQ(call.last, 12);
    g_istrm.close();
}

TEST_F(BlockDiff, AListOfUnknownItemsHasNothingToRun) {
    TempDir dir;
    rkString name = dir.write("sad.ini", "[SAD]\nApproximation = XX,YY\n");
    ASSERT_TRUE(g_istrm.setIniFile(name, false));
    EXPECT_TRUE(run("keliSAD16x16_8u32s").empty());
    EXPECT_TRUE(g_spied.empty());
    EXPECT_EQ(m_result, rkResDataError);
    g_istrm.close();
}

// ---- CSAD_H264 ------------------------------------------------------------------------

TEST_F(BlockDiff, SadOfAMacroblockHasOneConstantBlock) {
    for (Expected const &expected : sadsH264) {
        g_spied.clear();
        run(expected.m_function);
        ASSERT_FALSE(g_spied.empty());
        EXPECT_EQ(g_spied[0].srcStep, 16);
        EXPECT_EQ(g_spied[0].refStep, 16);
        EXPECT_EQ(g_spied[0].last, 0);
        EXPECT_EQ(g_spied[0].srcRoom, 256);
        EXPECT_EQ(g_spied[0].refRoom, 256);
        EXPECT_TRUE(g_spied[0].constantSrc);
        EXPECT_EQ(g_spied[0].firstSrc, 2);
    }
}

TEST_F(BlockDiff, SadOfAMacroblockTakesTheTypesFromTheName) {
    run("keliSAD4x4_8u32s");
    run("keliSAD16x16Blocks4x4_8u16u");
    ASSERT_EQ(g_spied.size(), 4u);
    EXPECT_EQ(g_spied[0].dstRoom, 256 * 4);
    EXPECT_EQ(g_spied[2].dstRoom, 256 * 2);
}

// ---- TarvoSoftware::rk_SADn --------------------------------------------------------------

TEST_F(BlockDiff, SadNSweepsFourThousandPositions) {
    run("keliSAD16x16xN_8u16u_C1R");
    ASSERT_FALSE(g_spied.empty());
    EXPECT_EQ(g_spied[0].srcStep, 64);
    EXPECT_EQ(g_spied[0].refStep, 4160);
    EXPECT_EQ(g_spied[0].last, 4096);
    EXPECT_EQ(g_spied[0].srcRoom, 1024);
    EXPECT_EQ(g_spied[0].refRoom, 66560);
    EXPECT_EQ(g_spied[0].dstRoom, 4096 * 2);
}

// ---- CSUMD_H264 ----------------------------------------------------------------------------

TEST_F(BlockDiff, SumsOfDifferencesWalkTheirPitchesAndTheStoring) {
    run("keliSumsDiff16x16Blocks4x4_8u16s_C1");
    ASSERT_EQ(g_spied.size(), 16u);
    for (int i = 0; i < 8; ++i) {
        int srcPitch = i & 4 ? 18 : 16, predPitch = i & 2 ? 18 : 16, save = i & 1;
        EXPECT_EQ(g_spied[2 * i].srcStep, srcPitch);
        EXPECT_EQ(g_spied[2 * i].refStep, predPitch);
        EXPECT_EQ(g_spied[2 * i].diff, save == 1) << "null asks for the sums alone";
    }
}

TEST_F(BlockDiff, ParametersOfSumsOfDifferencesDefaultToAllTheirValues) {
    rkTest *test = findTest("keliSumsDiff8x8Blocks4x4_8u16s_C1");
    ASSERT_NE(test, nullptr);
    test->beginTest();
    ASSERT_TRUE(test->canStart());
    Cells defaults;
    for (rkParameter *parm : test->m_parms) defaults.push_back(str(parm->defaultString()));
    EXPECT_EQ(defaults,
              (Cells{"SrcPitch=16; SrcPitch=18", "PredPitch=16; PredPitch=18", "save_diff=0; save_diff=1"}));
}

TEST_F(BlockDiff, APitchOf18StaysWithinItsElements) {
    for (Expected const &expected : sumsOfDifferences) {
        g_spied.clear();
        run(expected.m_function);
        const int element = expected.m_function.find("16u") == std::string::npos ? 1 : 2;
        const int side = expected.m_divisors[0] == 256 ? 16 : 8;
        int wide = 0;
        for (SpiedCall const &call : g_spied) {
            EXPECT_EQ(call.srcRoom, 400 * element);
            EXPECT_EQ(call.refRoom, 400 * element);
            EXPECT_LE((side - 1) * call.srcStep + side, 400);
            if (call.srcStep == 18) ++wide;
        }
        EXPECT_EQ(wide, 8) << expected.m_function;
    }
}

TEST_F(BlockDiff, SumsOfDifferencesTakeTheTypesFromTheName) {
    run("keliSumsDiff8x8Blocks4x4_16u32s_C1R");
    ASSERT_FALSE(g_spied.empty());
    EXPECT_EQ(g_spied[0].dstRoom, 256 * 4);
    EXPECT_TRUE(g_spied[0].constantSrc);
    EXPECT_EQ(g_spied[0].firstSrc, 2);
    g_spied.clear();
    run("keliSumsDiff8x8Blocks4x4_8u16s_C1");
    ASSERT_FALSE(g_spied.empty());
    EXPECT_EQ(g_spied[0].dstRoom, 256 * 2);
}

// ---- order ---------------------------------------------------------------------------------

TEST_F(BlockDiff, TheListIsSortedByTheGrammarOfNames) {
    pTestList->sortFunc();
    std::map<std::string, int> place;
    for (rkTest *test : *pTestList) place.emplace(str(test->m_name), static_cast<int>(place.size()));
    char const *const order[] = {
        "keliEdgesDetect16x16_8u_C1R",
        "keliSAD16x16_8u32s",
        "keliSAD16x16Blocks4x4_8u16u",
        "keliSAD16x16Blocks8x8_8u16u",
        "keliSAD16x16xN_8u16u_C1R",
        "keliSAD16x16xNI_8u16u_C1R",
        "keliSAD16x8_8u32s_C1R",
        "keliSAD2x2xN_8u16u_C1R",
        "keliSAD4x4_8u32s",
        "keliSAD4x4xN_8u16u_C1R",
        "keliSAD4x4xNI_8u16u_C1R",
        "keliSAD8x8xN_8u16u_C1R",
        "keliSAD8x8xNI_8u16u_C1R",
        "keliSumsDiff16x16Blocks4x4_8u16s_C1",
        "keliSumsDiff16x16Blocks4x4_16u32s_C1R",
        "keliSumsDiff8x8Blocks4x4_8u16s_C1",
        "keliSumsDiff8x8Blocks4x4_16u32s_C1R",
    };
    ASSERT_EQ(std::size(order), everything().size());
    for (size_t i = 1; i < std::size(order); ++i) {
        ASSERT_EQ(place.count(order[i]), 1u) << order[i];
        EXPECT_LT(place[order[i - 1]], place[order[i]]) << order[i];
    }
}

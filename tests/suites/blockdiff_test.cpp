// blockdiff_test.cpp - the suites of block differences: every test runs, and its data and rows are right.

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "../unit/capture.h"
#include "../unit/tempdir.h"
#include "blockdiffspies.h"
#include "kmvc.h"

namespace {

using Cells = std::vector<std::string>;

// What a registration is to be.
struct Expected {
    char const *function;
    char const *test;
    char const *unit;
    double divisor;
    int sets;
};

[[maybe_unused]] void PrintTo(Expected const &expected, std::ostream *stream) {
    *stream << expected.function;
}

const Expected all[] = {
    {"keliSAD16x16_8u32s", "CSAD", "element", 256, 4},
    {"keliSAD16x8_8u32s_C1R", "CSAD", "element", 128, 4},
    {"keliEdgesDetect16x16_8u_C1R", "CSAD", "element", 256, 4},
    {"keliSAD4x4_8u32s", "CSAD_H264", "all", 1, 1},
    {"keliSAD16x16Blocks8x8_8u16u", "CSAD_H264", "all", 1, 1},
    {"keliSAD16x16Blocks4x4_8u16u", "CSAD_H264", "all", 1, 1},
    {"keliSAD4x4xNI_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSAD8x8xNI_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSAD16x16xNI_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSAD2x2xN_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSAD4x4xN_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSAD8x8xN_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSAD16x16xN_8u16u_C1R", "TarvoSoftware::rk_SADn", "per SAD", 4096, 1},
    {"keliSumsDiff16x16Blocks4x4_8u16s_C1", "CSUMD_H264", "e", 256, 8},
    {"keliSumsDiff8x8Blocks4x4_8u16s_C1", "CSUMD_H264", "e", 64, 8},
    {"keliSumsDiff16x16Blocks4x4_16u32s_C1R", "CSUMD_H264", "e", 256, 8},
    {"keliSumsDiff8x8Blocks4x4_16u32s_C1R", "CSUMD_H264", "e", 64, 8},
};

rkTest *testOf(std::string const &function) {
    for (rkTest *test : *pTestList) {
        if (str(test->m_name) == function) return test;
    }
    return nullptr;
}

Cells cellsOf(std::string const &line) {
    Cells cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
    return cells;
}

class BlockDiff : public testing::Test {
protected:
    void SetUp() override {
        rkCpuTicker::m_freqMHz = 2000; // so that no test measures the frequency
        setKelEnvironment();
        rkSession().putTableTitle();
        g_tool.setMethodLoop(1);
        g_spied.clear();
    }

    // Runs the test of the function; the cells of its rows in the table.
    std::vector<Cells> run(std::string const &function) {
        std::vector<Cells> rows;
        rkTest *test = testOf(function);
        EXPECT_NE(test, nullptr) << function;
        if (!test) return rows;
        CaptureTable table;
        m_result = test->run();
        std::istringstream text(table.text());
        for (std::string line; std::getline(text, line);) rows.push_back(cellsOf(line));
        return rows;
    }

    rkResult m_result = rkResNotRun;
};

class BlockDiffEach : public BlockDiff, public testing::WithParamInterface<Expected> {};

std::string nameOf(testing::TestParamInfo<Expected> const &info) {
    return info.param.function;
}

// Cells of a row: function, type, descriptor, six parameters, then the results.
const size_t firstParm = 3, comment = 9, clocks = 10, per = 11;

} // namespace

// ---- every registration --------------------------------------------------------------

TEST_P(BlockDiffEach, IsRegisteredByItsClass) {
    rkTest *test = testOf(GetParam().function);
    ASSERT_NE(test, nullptr);
    EXPECT_EQ(str(test->m_info.m_name), GetParam().test);
    EXPECT_EQ(str(test->m_info.m_descr), "");
    EXPECT_EQ(str(test->m_info.m_marks), "KM_REG");
    EXPECT_NE(test->m_funcCall, nullptr);
    EXPECT_EQ(test->m_funcInit, nullptr);
    EXPECT_NE(test->m_funcLoop, nullptr);
    EXPECT_NE(test->m_funcStat, nullptr);
}

TEST_P(BlockDiffEach, RunsAllItsSets) {
    std::vector<Cells> rows = run(GetParam().function);
    EXPECT_EQ(m_result, rkResSuccess);
    EXPECT_EQ(static_cast<int>(rows.size()), GetParam().sets);
    EXPECT_EQ(static_cast<int>(g_spied.size()), 2 * GetParam().sets) << "a warm-up and a call for each";
    for (SpiedCall const &call : g_spied) EXPECT_EQ(call.function, GetParam().function);
}

TEST_P(BlockDiffEach, CountsItsUnits) {
    rkTest *test = testOf(GetParam().function);
    ASSERT_NE(test, nullptr);
    EXPECT_EQ(test->getDivisor(), GetParam().divisor);
    EXPECT_EQ(str(test->getUnit()), GetParam().unit);
    for (Cells const &row : run(GetParam().function)) {
        ASSERT_GT(row.size(), per);
        EXPECT_EQ(row[comment], "nLps=1");
        EXPECT_NE(row[clocks], "-");
        EXPECT_EQ(row[per], GetParam().unit);
    }
}

TEST_P(BlockDiffEach, LeavesNoBlockBehind) {
    run(GetParam().function);
    EXPECT_EQ(rkMallocFirst(nullptr, nullptr), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Functions, BlockDiffEach, testing::ValuesIn(all), nameOf);

// ---- CSAD -----------------------------------------------------------------------------

TEST_F(BlockDiff, SadWalksTheHalfSamplePositions) {
    std::vector<Cells> rows = run("keliSAD16x16_8u32s");
    ASSERT_EQ(rows.size(), 4u);
    ASSERT_EQ(g_spied.size(), 8u);
    char const *const names[] = {"APX_FF", "APX_FH", "APX_HF", "APX_HH"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(rows[i][firstParm], names[i]);
        EXPECT_EQ(rows[i][firstParm + 1], "-") << "nothing but the position";
        EXPECT_EQ(g_spied[2 * i].last, 4 * i);
    }
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
    std::vector<Cells> rows = run("keliSAD16x16_8u32s");
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
    for (char const *function :
         {"keliSAD4x4_8u32s", "keliSAD16x16Blocks8x8_8u16u", "keliSAD16x16Blocks4x4_8u16u"}) {
        g_spied.clear();
        std::vector<Cells> rows = run(function);
        ASSERT_EQ(rows.size(), 1u);
        EXPECT_EQ(rows[0][firstParm], "-") << "no parameter";
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

TEST_F(BlockDiff, SadOfAMacroblockKeepsTheMethod) {
    g_tool.setMethodAuto();
    rkTest *test = testOf("keliSAD4x4_8u32s");
    ASSERT_NE(test, nullptr);
    test->m_tool = g_tool;
    ASSERT_TRUE(test->canStart());
    EXPECT_TRUE(test->m_tool.getMethodAuto());
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

TEST_F(BlockDiff, SadNTurnsTheAutoMethodIntoAStatistic) {
    int calls = 0;
    long long least = -1;
    for (Expected const &expected : all) {
        if (std::string(expected.test) != "TarvoSoftware::rk_SADn") continue;
        rkTest *test = testOf(expected.function);
        ASSERT_NE(test, nullptr);
        test->m_tool.setMethodAuto();
        ASSERT_TRUE(test->canStart());
        ASSERT_TRUE(test->m_tool.getMethodStat(calls, least)) << expected.function;
        EXPECT_EQ(calls, 1023);
        EXPECT_EQ(least, 0);
    }
}

TEST_F(BlockDiff, SadNKeepsAnyOtherMethod) {
    rkTest *test = testOf("keliSAD2x2xN_8u16u_C1R");
    ASSERT_NE(test, nullptr);
    test->m_tool.setMethodLoop(6);
    ASSERT_TRUE(test->canStart());
    int loops = 0;
    ASSERT_TRUE(test->m_tool.getMethodLoop(loops));
    EXPECT_EQ(loops, 6);
}

// ---- CSUMD_H264 ----------------------------------------------------------------------------

TEST_F(BlockDiff, SumsOfDifferencesWalkTheirPitchesAndTheStoring) {
    std::vector<Cells> rows = run("keliSumsDiff16x16Blocks4x4_8u16s_C1");
    ASSERT_EQ(rows.size(), 8u);
    ASSERT_EQ(g_spied.size(), 16u);
    for (int i = 0; i < 8; ++i) {
        int srcPitch = i & 4 ? 18 : 16, predPitch = i & 2 ? 18 : 16, save = i & 1;
        EXPECT_EQ(rows[i][firstParm], "SrcPitch=" + std::to_string(srcPitch));
        EXPECT_EQ(rows[i][firstParm + 1], "PredPitch=" + std::to_string(predPitch));
        EXPECT_EQ(rows[i][firstParm + 2], "save_diff=" + std::to_string(save));
        EXPECT_EQ(rows[i][firstParm + 3], "-");
        EXPECT_EQ(g_spied[2 * i].srcStep, srcPitch);
        EXPECT_EQ(g_spied[2 * i].refStep, predPitch);
        EXPECT_EQ(g_spied[2 * i].diff, save == 1) << "null asks for the sums alone";
    }
}

TEST_F(BlockDiff, SumsOfDifferencesNameTheirParametersInOrder) {
    rkTest *test = testOf("keliSumsDiff8x8Blocks4x4_8u16s_C1");
    ASSERT_NE(test, nullptr);
    test->beginTest();
    ASSERT_TRUE(test->canStart());
    std::vector<std::string> names, defaults;
    for (rkParameter *parm : test->m_parms) {
        names.push_back(str(parm->m_name));
        defaults.push_back(str(parm->defaultString()));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"SrcPitch", "PredPitch", "save_diff"}));
    EXPECT_EQ(defaults, (std::vector<std::string>{"SrcPitch=16; SrcPitch=18", "PredPitch=16; PredPitch=18",
                                                  "save_diff=0; save_diff=1"}));
}

TEST_F(BlockDiff, APitchOf18StaysWithinItsElements) {
    for (Expected const &expected : all) {
        if (std::string(expected.test) != "CSUMD_H264") continue;
        g_spied.clear();
        run(expected.function);
        const int element = std::string(expected.function).find("16u") == std::string::npos ? 1 : 2;
        const int side = expected.divisor == 256 ? 16 : 8;
        int wide = 0;
        for (SpiedCall const &call : g_spied) {
            EXPECT_EQ(call.srcRoom, 400 * element);
            EXPECT_EQ(call.refRoom, 400 * element);
            EXPECT_LE((side - 1) * call.srcStep + side, 400);
            if (call.srcStep == 18) ++wide;
        }
        EXPECT_EQ(wide, 8) << expected.function;
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
    ASSERT_EQ(std::size(order), std::size(all));
    for (size_t i = 1; i < std::size(order); ++i) {
        ASSERT_EQ(place.count(order[i]), 1u) << order[i];
        EXPECT_LT(place[order[i - 1]], place[order[i]]) << order[i];
    }
}

// reconstructstrip_test.cpp - the suites of H.264 reconstruction that walk a strip of macroblocks.

#include "stripcalls.h"

namespace {

using suite::Expected;

Expected luma(char const *function, int firstBlock) {
    return Expected("rk_ReconstructLuma", function, "all", 1)
        .parm("block_type", suite::numbers(firstBlock, 3))
        .stat(1023)
        .blocks({coeffBytes, planeBytes})
        .updates({1});
}

const std::vector<Expected> lumaStrip = {
    luma("keliReconstructLumaIntra16x16MB_H264_16s8u_C1R", 0).parm("prediction_type", suite::numbers(0, 3)),
    luma("keliReconstructLumaIntraMB_H264_16s8u_C1R", 1).parm("prediction_type", suite::numbers(0, 8)),
    luma("keliReconstructLumaInterMB_H264_16s8u_C1R", 2),
};

const std::vector<Expected> chromaStrip = {
    Expected("rk_Reconstruct2", "keliReconstructChromaIntraMB_H264_16s8u_P2R", "all", 1)
        .parm("block_type", suite::numbers(0, 3))
        .parm("prediction_type", suite::numbers(0, 3))
        .stat(1023)
        .blocks({coeffBytes, planeBytes, planeBytes})
        .updates({1, 2}),
};

class ReconstructStrip : public Reconstruct {};

} // namespace

SUITE_TEST(ReconstructLuma, "reconstructluma.cpp", lumaStrip);
SUITE_TEST(Reconstruct2, "reconstruct2.cpp", chromaStrip);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliReconstructLumaIntra16x16MB_H264_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, int mode,
                                                         Kel32u cbp, int qp, int missing) {
    noteCoeffs(pp);
    return SPY(keliReconstructLumaIntra16x16MB_H264_16s8u_C1R, pp, p, step, mode, cbp, qp, missing);
}

KelStatus keliReconstructLumaIntraMB_H264_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, const Kel32s *modes,
                                                    Kel32u cbp, int qp, int missing) {
    noteCoeffs(pp);
    noteModes(modes, 16);
    return SPY(keliReconstructLumaIntraMB_H264_16s8u_C1R, pp, p, step, modes, cbp, qp, missing);
}

KelStatus keliReconstructLumaInterMB_H264_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, Kel32u cbp, int qp) {
    noteCoeffs(pp);
    return SPY(keliReconstructLumaInterMB_H264_16s8u_C1R, pp, p, step, cbp, qp);
}

KelStatus keliReconstructChromaIntraMB_H264_16s8u_P2R(Kel16s **pp, Kel8u *u, Kel8u *v, int step, int mode,
                                                      Kel32u cbp, int qp) {
    noteCoeffs(pp);
    return SPY(keliReconstructChromaIntraMB_H264_16s8u_P2R, pp, u, v, step, mode, cbp, qp);
}

// ---- strips -----------------------------------------------------------------------------

TEST_F(ReconstructStrip, StripsHaveCoefficientsOfOne) {
    suite::Sets sets(suite::findTest("keliReconstructLumaInterMB_H264_16s8u_C1R"));
    ASSERT_TRUE(sets.next());
    const suite::Block coeffs = suite::Sets::blocks()[0], plane = suite::Sets::blocks()[1];
    for (int i = 0; i < 278528; ++i) ASSERT_EQ(reinterpret_cast<Kel16s *>(coeffs.data)[i], 1) << i;
    for (int i = 0; i < plane.size; ++i) ASSERT_EQ(plane.data[i], 2) << i;
}

TEST_F(ReconstructStrip, EachCallOfAStatisticTakesOneOfTheMacroblocksOfTheStrip) {
    for (Expected const &expected : lumaStrip) {
        rkTest *test = suite::findTest(expected.m_function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        statistic(test, 1023);
        ASSERT_EQ(g_seen.size(), 1024u);
        int used = 0;
        for (int i = 0; i < 1024; ++i) {
            expectMacroblock(g_seen[static_cast<size_t>(i)].args[1], 1, i, 16);
            const Behind &behind = g_behind[static_cast<size_t>(i)];
            ASSERT_EQ(behind.coeffs.block, 0);
            const int start = coeffsOf(behind);
            ASSERT_EQ(start % 16, 0);
            ASSERT_GE(start, used) << "call " << i;
            used = start;
        }
    }
}

TEST_F(ReconstructStrip, EachCallOfTheChromaStatisticTakesUOneMacroblockAhead) {
    rkTest *test = suite::findTest(chromaStrip[0].m_function);
    suite::Sets sets(test);
    ASSERT_TRUE(sets.next());
    statistic(test, 1023);
    ASSERT_EQ(g_seen.size(), 1024u);
    for (int i = 0; i < 1024; ++i) {
        expectMacroblock(g_seen[static_cast<size_t>(i)].args[1], 1, i + 1, 8);
        expectMacroblock(g_seen[static_cast<size_t>(i)].args[2], 2, i, 8);
    }
}

// With all blocks coded, a 16x16 macroblock takes 272 coefficients, so that 1024 of them take the vector.
TEST_F(ReconstructStrip, AFullStripUsesUpItsCoefficientsAndStartsOver) {
    rkTest *test = suite::findTest("keliReconstructLumaIntra16x16MB_H264_16s8u_C1R");
    suite::Sets sets(test);
    for (int set = 0; set < 13; ++set) ASSERT_TRUE(sets.next());
    statistic(test, 1024 + 5);
    ASSERT_EQ(g_seen.size(), 1030u);
    EXPECT_EQ(g_seen[0].args[4].value, 131071);
    for (int i = 0; i < 1030; ++i) ASSERT_EQ(coeffsOf(g_behind[static_cast<size_t>(i)]), i % 1024 * 272) << i;
    expectMacroblock(g_seen[1024].args[1], 1, 0, 16);
}

TEST_F(ReconstructStrip, AManualCountGoesOnFromSetToSetAndStartsOverWithTheTest) {
    for (int round = 0; round < 2; ++round) {
        suite::Sets sets(suite::findTest("keliReconstructLumaInterMB_H264_16s8u_C1R"));
        for (int i = 0; i < 6; ++i) {
            if (i % 3 == 0) {
                ASSERT_TRUE(sets.next());
            }
            const SeenCall call = callOnce(sets);
            expectMacroblock(call.args[1], 1, i, 16);
            EXPECT_EQ(coeffsOf(g_behind[0]), i % 3 * 16 * (i < 3 ? 8 : 16)) << "blocks of 16";
        }
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(ReconstructStrip, CoefficientsStartOverWithTheStripWhateverWasCountedBefore) {
    rkTest *test = suite::findTest("keliReconstructLumaInterMB_H264_16s8u_C1R");
    {
        suite::Sets before(test);
        ASSERT_TRUE(before.next());
        for (int i = 0; i < 3; ++i) callOnce(before);
    }
    suite::Sets sets(test);
    ASSERT_TRUE(sets.next());
    statistic(test, 1024 + 5);
    ASSERT_EQ(g_behind.size(), 1030u);
    for (int i = 0; i < 1030; ++i)
        ASSERT_EQ(coeffsOf(g_behind[static_cast<size_t>(i)]), i % 1024 * 8 * 16) << i;
}

TEST_F(ReconstructStrip, BlockTypesAreCodedBlockPatterns) {
    struct Strip {
        char const *function;
        int first, predictions;
    };
    for (Strip const &strip : {Strip{"keliReconstructLumaIntra16x16MB_H264_16s8u_C1R", 0, 4},
                               Strip{"keliReconstructLumaIntraMB_H264_16s8u_C1R", 1, 9},
                               Strip{"keliReconstructLumaInterMB_H264_16s8u_C1R", 2, 1}}) {
        suite::Sets sets(suite::findTest(strip.function));
        int set = 0;
        for (; sets.next(); ++set) {
            const int cbp = patterns[static_cast<size_t>(strip.first + set / strip.predictions)];
            const int type = set % strip.predictions;
            const SeenCall call = callOnce(sets);
            if (has(strip.function, "Inter")) {
                expectValues(call, {0, 1}, {16416, cbp, 26});
            } else if (has(strip.function, "16x16")) {
                expectValues(call, {0, 1}, {16416, type, cbp, 26, 0});
            } else {
                expectValues(call, {0, 1, 3}, {16416, cbp, 26, 0});
                EXPECT_EQ(g_behind[0].modes, std::vector<Kel32s>(16, type));
            }
        }
        EXPECT_EQ(set, (4 - strip.first) * strip.predictions);
    }
}

TEST_F(ReconstructStrip, ChromaHasFourBlockTypesWithFourPredictions) {
    suite::Sets sets(suite::findTest(chromaStrip[0].m_function));
    for (int set = 0; set < 16; ++set) {
        ASSERT_TRUE(sets.next());
        expectValues(callOnce(sets), {0, 1, 2}, {16416, set % 4, patterns[static_cast<size_t>(set / 4)], 26});
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(ReconstructStrip, BlockType1IsAnEmptyMacroblock) {
    const std::string function = "keliReconstructLumaIntra16x16MB_H264_16s8u_C1R";
    suite::Outcome outcome = runWith(function, "block_type = 1\nprediction_type = 2");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    ASSERT_EQ(g_seen.size(), 2u);
    EXPECT_EQ(g_seen[0].args[4].value, 0);
    EXPECT_EQ(g_behind[0].coeffs.data, g_behind[1].coeffs.data) << "no coefficient is taken";
}

TEST_F(ReconstructStrip, AnyOtherBlockTypeRefusesTheTest) {
    for (Expected const &expected : {lumaStrip[0], lumaStrip[1], lumaStrip[2], chromaStrip[0]}) {
        for (char const *type : {"4", "-1", "1000000"}) {
            suite::Outcome outcome = runWith(expected.m_function, std::string("block_type = ") + type);
            EXPECT_TRUE(rkIsError(outcome.result)) << expected.m_function;
            EXPECT_TRUE(outcome.rows.empty());
            EXPECT_TRUE(g_seen.empty());
            EXPECT_TRUE(suite::Sets::blocks().empty());
        }
    }
}

TEST_F(ReconstructStrip, AModeThatTheLibraryRefusesIsAnError) {
    suite::Outcome outcome = runWith("keliReconstructLumaIntraMB_H264_16s8u_C1R", "prediction_type = 9");
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_FALSE(g_seen.empty());
}

// ---- failures -----------------------------------------------------------------------------

TEST_F(ReconstructStrip, WithoutMemoryThereIsNoSet) {
    for (std::vector<Expected> const &list : {lumaStrip, chromaStrip}) {
        for (Expected const &expected : list) {
            NoSecondBlock full;
            g_seen.clear();
            suite::Outcome outcome = run(expected.m_function);
            EXPECT_TRUE(rkIsError(outcome.result)) << expected.m_function;
            EXPECT_TRUE(outcome.rows.empty()) << expected.m_function;
            EXPECT_TRUE(g_seen.empty()) << expected.m_function;
            EXPECT_TRUE(suite::Sets::blocks().empty()) << expected.m_function;
        }
    }
}

// avs_test.cpp - the suites of AVS: strips of macroblocks, transform with quantisation, weighted prediction.

#include "stripcalls.h"

namespace {

using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

char const *const chromaIntra = "keliReconstructChromaIntra_AVS_16s8u_C1R";
char const *const chromaInter = "keliReconstructChromaInter_AVS_16s8u_C1R";
char const *const lumaIntra = "keliReconstructLumaIntra_AVS_16s8u_C1R";
char const *const lumaInter = "keliReconstructLumaInter_AVS_16s8u_C1R";
char const *const forward = "keliTransformQuant8x8Fwd_AVS_16s_C1";
char const *const weighting = "keliWeightPrediction_AVS_8u_C1R";

Expected chroma(char const *function, int firstBlock) {
    return Expected("rk_ReconstructChromaAVS", function, "all", 1)
        .parm("block_type", suite::numbers(firstBlock, 3))
        .stat(1023)
        .blocks({coeffBytes, planeBytes, planeBytes})
        .updates({1, 2});
}

Expected luma(char const *function, int firstBlock) {
    return Expected("rk_ReconstructLumaAVS", function, "all", 1)
        .parm("block_type", suite::numbers(firstBlock, 3))
        .stat(1023)
        .blocks({coeffBytes, planeBytes})
        .updates({1});
}

const std::vector<Expected> chromaStrip = {
    chroma(chromaIntra, 0).parm("prediction_type", suite::numbers(0, 3)),
    chroma(chromaInter, 2),
};

const std::vector<Expected> lumaStrip = {
    luma(lumaIntra, 0).parm("prediction_type", suite::numbers(0, 4)),
    luma(lumaInter, 2),
};

const std::vector<Expected> transforms = {
    Expected("rk_TransformQuant8x8", forward, "per iteration", 1)
        .parm("QP value", {"2", "17", "32", "47", "62"})
        .stat(1023)
        .blocks({128, 128})
        .writes({1}),
};

const std::vector<Expected> weights = {
    Expected("rk_WeightPrediction_AVS", weighting, "all", 1)
        .parm("size_num", suite::numbers(0, 3))
        .stat(1023)
        .blocks({2944, 2048})
        .writes({1}),
};

// ---- calls ------------------------------------------------------------------------------

std::vector<KeliSize> g_sizes; // of the blocks of weighted prediction, call by call

class Avs : public Reconstruct {
protected:
    void SetUp() override {
        Reconstruct::SetUp();
        g_seen.clear();
        g_behind.clear();
        g_sizes.clear();
    }
};

} // namespace

SUITE_TEST(AvsReconstructChroma, "avsreconstructchroma.cpp", chromaStrip);
SUITE_TEST(AvsReconstructLuma, "avsreconstructluma.cpp", lumaStrip);
SUITE_TEST(AvsTransformQuant, "avstransformquant.cpp", transforms);
SUITE_TEST(AvsWeightPrediction, "avsweightprediction.cpp", weights);

// ---- the spies ---------------------------------------------------------------------------

KelStatus keliReconstructLumaIntra_AVS_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, const Kel32s *modes,
                                                 Kel32u cbp, int qp, int availability, int bypass) {
    noteCoeffs(pp);
    noteModes(modes, 4);
    return SPY(keliReconstructLumaIntra_AVS_16s8u_C1R, pp, p, step, modes, cbp, qp, availability, bypass);
}

KelStatus keliReconstructLumaInter_AVS_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, Kel32u cbp, int qp,
                                                 int bypass) {
    noteCoeffs(pp);
    return SPY(keliReconstructLumaInter_AVS_16s8u_C1R, pp, p, step, cbp, qp, bypass);
}

KelStatus keliReconstructChromaIntra_AVS_16s8u_C1R(Kel16s **pp, Kel8u *u, Kel8u *v, int step, int mode,
                                                   Kel32u cbp, int qp) {
    noteCoeffs(pp);
    return SPY(keliReconstructChromaIntra_AVS_16s8u_C1R, pp, u, v, step, mode, cbp, qp);
}

KelStatus keliReconstructChromaInter_AVS_16s8u_C1R(Kel16s **pp, Kel8u *u, Kel8u *v, int step, Kel32u cbp,
                                                   int qp) {
    noteCoeffs(pp);
    return SPY(keliReconstructChromaInter_AVS_16s8u_C1R, pp, u, v, step, cbp, qp);
}

KelStatus keliTransformQuant8x8Fwd_AVS_16s_C1(const Kel16s *src, Kel16s *dst, int *count, int qp, int intra) {
    return SPY(keliTransformQuant8x8Fwd_AVS_16s_C1, src, dst, count, qp, intra);
}

// A size is no plain argument: it is noted beside the others.
KelStatus keliWeightPrediction_AVS_8u_C1R(const Kel8u *src, int srcStep, Kel8u *dst, int dstStep, int scale,
                                          int shift, KeliSize size) {
    g_sizes.push_back(size);
    g_seen.push_back({"keliWeightPrediction_AVS_8u_C1R",
                      {seen(src), seen(srcStep), seen(dst), seen(dstStep), seen(scale), seen(shift)}});
    return callLibrary(&keliWeightPrediction_AVS_8u_C1R, "keliWeightPrediction_AVS_8u_C1R", src, srcStep, dst,
                       dstStep, scale, shift, size);
}

// ---- strips -----------------------------------------------------------------------------

TEST_F(Avs, StripsHaveCoefficientsOfOne) {
    for (char const *function : {lumaInter, chromaInter}) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        const std::vector<suite::Block> blocks = suite::Sets::blocks();
        for (int i = 0; i < 278528; ++i) ASSERT_EQ(reinterpret_cast<Kel16s *>(blocks[0].data)[i], 1) << i;
        for (size_t k = 1; k < blocks.size(); ++k) {
            for (int i = 0; i < blocks[k].size; ++i) ASSERT_EQ(blocks[k].data[i], 2) << i;
        }
    }
}

TEST_F(Avs, EachCallOfALumaStatisticTakesOneOfTheMacroblocksOfTheStrip) {
    for (Expected const &expected : lumaStrip) {
        rkTest *test = suite::findTest(expected.m_function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        statistic(test, 1023);
        ASSERT_EQ(g_seen.size(), 1024u);
        const int taken = expected.m_function == lumaIntra ? 64 : 3 * 64; // patterns 1 and 103591
        for (int i = 0; i < 1024; ++i) {
            expectMacroblock(g_seen[static_cast<size_t>(i)].args[1], 1, i, 16);
            ASSERT_EQ(coeffsOf(g_behind[static_cast<size_t>(i)]), i * taken) << i;
        }
    }
}

TEST_F(Avs, LastMacroblockOfTheStripEndsWithinThePlane) {
    rkTest *test = suite::findTest(lumaIntra);
    suite::Sets sets(test);
    ASSERT_TRUE(sets.next());
    statistic(test, 1023);
    ASSERT_EQ(g_seen.size(), 1024u);
    const int first = placeOf(g_seen.back().args[1]).offset;
    EXPECT_EQ(first, 16 * 1023 + 16432);
    EXPECT_EQ(first + 15 * 16416 + 15, 279055);
    EXPECT_EQ(g_seen.back().args[1].room, 279072 - first);
}

TEST_F(Avs, EachCallOfAChromaStatisticTakesUOneMacroblockAhead) {
    for (Expected const &expected : chromaStrip) {
        rkTest *test = suite::findTest(expected.m_function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        statistic(test, 1023);
        ASSERT_EQ(g_seen.size(), 1024u);
        for (int i = 0; i < 1024; ++i) {
            expectMacroblock(g_seen[static_cast<size_t>(i)].args[1], 1, i + 1, 8);
            expectMacroblock(g_seen[static_cast<size_t>(i)].args[2], 2, i, 8);
        }
    }
}

// With all blocks coded a macroblock takes 256 coefficients of the 272 that the vector has for it.
TEST_F(Avs, AFullStripStaysWithinItsCoefficientsAndStartsOver) {
    rkTest *test = suite::findTest(lumaInter);
    suite::Sets sets(test);
    ASSERT_TRUE(sets.next());
    ASSERT_TRUE(sets.next());
    statistic(test, 1024 + 5);
    ASSERT_EQ(g_seen.size(), 1030u);
    EXPECT_EQ(g_seen[0].args[3].value, 131071);
    for (int i = 0; i < 1030; ++i) ASSERT_EQ(coeffsOf(g_behind[static_cast<size_t>(i)]), i % 1024 * 256) << i;
    expectMacroblock(g_seen[1024].args[1], 1, 0, 16);
}

// Of the first sets those of intra chroma take nothing, those of inter chroma V alone.
TEST_F(Avs, ATestStartsWithTheFirstMacroblockWhateverWasCountedBefore) {
    struct Strip {
        char const *function;
        int ahead, taken; // macroblocks, coefficients
    };
    for (Strip const &strip :
         {Strip{lumaIntra, 0, 64}, {lumaInter, 0, 192}, {chromaIntra, 1, 0}, {chromaInter, 1, 64}}) {
        rkTest *test = suite::findTest(strip.function);
        {
            suite::Sets before(test);
            ASSERT_TRUE(before.next());
            for (int i = 0; i < 3; ++i) callOnce(before);
        }
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        statistic(test, 1024 + 5);
        ASSERT_EQ(g_seen.size(), 1030u) << strip.function;
        for (int i = 0; i < 1030; ++i) {
            const SeenCall &call = g_seen[static_cast<size_t>(i)];
            expectMacroblock(call.args[1], 1, i % 1024 + strip.ahead, 8);
            if (strip.ahead) expectMacroblock(call.args[2], 2, i % 1024, 8);
            ASSERT_EQ(coeffsOf(g_behind[static_cast<size_t>(i)]), i % 1024 * strip.taken)
                << strip.function << ", " << i;
        }
    }
}

TEST_F(Avs, LumaBlockTypesAreCodedBlockPatternsWithAllNeighboursThere) {
    suite::Sets sets(suite::findTest(lumaIntra));
    for (int set = 0; set < 20; ++set) {
        ASSERT_TRUE(sets.next());
        const SeenCall call = callOnce(sets);
        expectMacroblock(call.args[1], 1, set, 16);
        expectValues(call, {0, 1, 3}, {16416, patterns[static_cast<size_t>(set / 5)], 26, 99, 0});
        EXPECT_EQ(g_behind[0].modes, std::vector<Kel32s>(4, set % 5));
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(Avs, ChromaBlockTypesAreCodedBlockPatterns) {
    suite::Sets sets(suite::findTest(chromaIntra));
    for (int set = 0; set < 16; ++set) {
        ASSERT_TRUE(sets.next());
        expectValues(callOnce(sets), {0, 1, 2}, {16416, set % 4, patterns[static_cast<size_t>(set / 4)], 26});
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(Avs, InterMacroblocksHaveHalfOrAllOfTheirBlocks) {
    suite::Sets lumaSets(suite::findTest(lumaInter));
    for (int pattern : {103591, 131071}) {
        ASSERT_TRUE(lumaSets.next());
        expectValues(callOnce(lumaSets), {0, 1}, {16416, pattern, 26, 0});
    }
    EXPECT_FALSE(lumaSets.next());
    suite::Sets chromaSets(suite::findTest(chromaInter));
    for (int pattern : {103591, 131071}) {
        ASSERT_TRUE(chromaSets.next());
        expectValues(callOnce(chromaSets), {0, 1, 2}, {16416, pattern, 26});
    }
    EXPECT_FALSE(chromaSets.next());
}

TEST_F(Avs, AnyOtherBlockTypeRefusesTheTest) {
    for (char const *function : {lumaIntra, lumaInter, chromaIntra, chromaInter}) {
        for (char const *type : {"4", "-1", "1000000"}) {
            suite::Outcome outcome = runWith(function, std::string("block_type = ") + type);
            EXPECT_TRUE(rkIsError(outcome.result)) << function;
            EXPECT_TRUE(outcome.rows.empty());
            EXPECT_TRUE(g_seen.empty());
            EXPECT_TRUE(suite::Sets::blocks().empty());
        }
    }
}

TEST_F(Avs, AModeThatTheLibraryRefusesIsAnError) {
    for (char const *function : {lumaIntra, chromaIntra}) {
        suite::Outcome outcome = runWith(function, "prediction_type = 5");
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_FALSE(g_seen.empty());
    }
}

// ---- transform with quantisation ------------------------------------------------------------

TEST_F(Avs, TransformTakesEachQuantiserForAnIntraBlock) {
    suite::Outcome outcome;
    const std::vector<SeenCall> calls = callsOf(outcome, forward);
    ASSERT_EQ(calls.size(), 5u);
    for (int i = 0; i < 5; ++i)
        expectArgs(calls[static_cast<size_t>(i)], {block(0), block(1), own(), value(2 + 15 * i), value(1)},
                   {128, 128});
}

TEST_F(Avs, TransformHasARandomSource) {
    suite::Sets sets(suite::findTest(forward));
    ASSERT_TRUE(sets.next());
    const std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 2u);
    expectRandom({blocks[0]}, {{16 | kmTypeSigned, 64, 1.0, 32.0}});
    for (int i = 0; i < 64; ++i) ASSERT_EQ(reinterpret_cast<Kel16s *>(blocks[1].data)[i], 2) << i;
}

TEST_F(Avs, AQuantiserThatTheLibraryRefusesIsAnError) {
    EXPECT_TRUE(rkIsError(runWith(forward, "QP value = 64").result));
    EXPECT_EQ(runWith(forward, "QP value = 63").result, rkResSuccess);
}

// ---- weighted prediction ----------------------------------------------------------------------

TEST_F(Avs, WeightedPredictionTakesTheBlocksOfAMacroblock) {
    const KeliSize sizes[] = {{8, 8}, {8, 16}, {16, 8}, {16, 16}};
    suite::Sets sets(suite::findTest(weighting));
    for (int set = 0; set < 4; ++set) {
        ASSERT_TRUE(sets.next());
        for (suite::Block const &data : suite::Sets::blocks()) {
            for (int i = 0; i < data.size; ++i) ASSERT_EQ(data.data[i], 2) << i;
        }
        const SeenCall call = callOnce(sets);
        EXPECT_EQ(placeOf(call.args[0]), (Place{0, 512 + set}));
        EXPECT_EQ(placeOf(call.args[2]), (Place{1, 0}));
        expectValues(call, {0, 2}, {128, 128, 32, 0});
        EXPECT_EQ(g_sizes.back().width, sizes[set].width);
        EXPECT_EQ(g_sizes.back().height, sizes[set].height);
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(Avs, SourceOfWeightedPredictionWalksOverAllAlignmentsAndStartsOver) {
    rkTest *test = suite::findTest(weighting);
    for (int round = 0; round < 2; ++round) {
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        statistic(test, 129); // and a warm-up
        ASSERT_EQ(g_seen.size(), 130u);
        for (int i = 0; i < 130; ++i)
            ASSERT_EQ(placeOf(g_seen[static_cast<size_t>(i)].args[0]), (Place{0, 512 + i % 64})) << i;
    }
}

TEST_F(Avs, ABlockOfNoTableIsNoSet) {
    for (char const *line : {"size_num = 4", "size_num = -1"}) {
        const suite::Outcome outcome = runWith(weighting, line);
        EXPECT_TRUE(rkIsError(outcome.result)) << line;
        EXPECT_TRUE(g_seen.empty()) << line;
    }
}

// ---- failures -----------------------------------------------------------------------------

TEST_F(Avs, WithoutMemoryThereIsNoSet) {
    for (auto const *list : {&chromaStrip, &lumaStrip, &transforms, &weights}) {
        for (Expected const &expected : *list) {
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

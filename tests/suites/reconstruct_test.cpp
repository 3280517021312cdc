// reconstruct_test.cpp - the suites of intra prediction and of reconstruction of one macroblock of H.264.

#include "reconstructcalls.h"

namespace {

using suite::Cells;
using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

Expected prediction(char const *function, int last) {
    return Expected("rk_PredictIntra", function, "all", 1)
        .parm("len", {"0"})
        .parm("predMode_code", suite::numbers(0, last))
        .blocks({288})
        .updates({0});
}

const std::vector<Expected> predictions = {
    prediction("keliPredictIntra_4x4_H264_8u_C1IR", 41),
    prediction("keliPredictIntra_16x16_H264_8u_C1IR", 6),
    prediction("keliPredictIntraChroma8x8_H264_8u_C1IR", 6),
};

const std::vector<int> macroblockBlocks = {288, 288, 608};

Expected one(char const *function, std::vector<int> const &written) {
    return Expected("rk_Reconstruct", function, "e", 1).stat(1023).blocks(macroblockBlocks).updates(written);
}
Expected withModes(Expected expected) {
    return expected.parm("predMode_code", suite::numbers(0, 6));
}

// The colours of an intra macroblock lie in one plane.
const std::vector<Expected> reconstruct = {
    withModes(one("keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R", {0})),
    one("keliReconstructLumaIntra4x4MB_H264_16s8u_C1R", {0}),
    one("keliReconstructLumaInter4x4MB_H264_16s8u_C1R", {0}),
    one("keliReconstructChromaInter4x4MB_H264_16s8u_P2R", {0, 1}),
    withModes(one("keliReconstructChromaIntra4x4MB_H264_16s8u_P2R", {0})),
    one("keliReconstructLumaIntra8x8MB_H264_16s8u_C1R", {0}),
    one("keliReconstructLumaInter8x8MB_H264_16s8u_C1R", {0}),
    one("keliReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R", {0}),
    one("keliReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R", {0}),
    withModes(one("keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R", {0})),
};

const std::vector<Expected> mbaff = {
    Expected("rk_ReconstructMBAFF", "keliReconstructLumaIntraHalfMB_H264_16s8u_C1R", "e", 1)
        .blocks(macroblockBlocks)
        .updates({0}),
    Expected("rk_ReconstructMBAFF", "keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R", "e", 1)
        .parm("predMode_code", suite::numbers(0, 6))
        .blocks(macroblockBlocks)
        .updates({0, 1}),
};

struct Mode {
    int mode, availability;
};

// ---- the modes that are measured, code by code -------------------------------------------

const Mode modes4x4[] = {
    {0, 1},  {0, 1},  {1, 2},  {1, 2},  {2, 0},  {2, 2},  {2, 1},  {2, 3},  {3, 1},  {3, 1},  {3, 1},
    {3, 65}, {4, 35}, {4, 35}, {4, 35}, {4, 35}, {4, 35}, {4, 35}, {4, 35}, {4, 35}, {5, 35}, {5, 35},
    {5, 35}, {5, 35}, {5, 35}, {5, 35}, {5, 35}, {5, 35}, {6, 35}, {6, 35}, {6, 35}, {6, 35}, {6, 35},
    {6, 35}, {6, 35}, {6, 35}, {7, 1},  {7, 1},  {7, 65}, {7, 65}, {8, 2},  {8, 2},
};
const Mode modes16x16[] = {{0, 1}, {1, 2}, {2, 0}, {2, 2}, {2, 1}, {2, 3}, {3, 35}};
const Mode modesChroma[] = {{2, 1}, {1, 2}, {0, 0}, {0, 2}, {0, 1}, {0, 3}, {3, 35}};

} // namespace

SUITE_TEST(PredictIntra, "predictintra.cpp", predictions);
SUITE_TEST(Reconstruct, "reconstruct.cpp", reconstruct);
SUITE_TEST(ReconstructMBAFF, "reconstructmbaff.cpp", mbaff);

// ---- the spies ----------------------------------------------------------------------

#define PREDICT_SPY(function)                                                  \
    KelStatus function(Kel8u *pSrcDst, int step, int mode, int availability) { \
        return SPY(function, pSrcDst, step, mode, availability);               \
    }
PREDICT_SPY(keliPredictIntra_4x4_H264_8u_C1IR)
PREDICT_SPY(keliPredictIntra_16x16_H264_8u_C1IR)
PREDICT_SPY(keliPredictIntraChroma8x8_H264_8u_C1IR)

KelStatus keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, int mode,
                                                          Kel32u cbp, int qp, int availability,
                                                          const Kel16s *table, int bypass) {
    noteCoeffs(pp);
    noteTable(table);
    return SPY(keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R, pp, p, step, mode, cbp, qp, availability,
               table, bypass);
}

#define BLOCKS_SPY(function, count)                                                              \
    KelStatus function(Kel16s **pp, Kel8u *p, int step, const Kel32s *modes, Kel32u cbp, int qp, \
                       int availability, const Kel16s *table, int bypass) {                      \
        noteCoeffs(pp);                                                                          \
        noteModes(modes, count);                                                                 \
        noteTable(table);                                                                        \
        return SPY(function, pp, p, step, modes, cbp, qp, availability, table, bypass);          \
    }
BLOCKS_SPY(keliReconstructLumaIntra4x4MB_H264_16s8u_C1R, 16)
BLOCKS_SPY(keliReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R, 16)
BLOCKS_SPY(keliReconstructLumaIntra8x8MB_H264_16s8u_C1R, 4)
BLOCKS_SPY(keliReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R, 4)

#define INTER_SPY(function)                                                                      \
    KelStatus function(Kel16s **pp, Kel8u *p, int step, Kel32u cbp, int qp, const Kel16s *table, \
                       int bypass) {                                                             \
        noteCoeffs(pp);                                                                          \
        noteTable(table);                                                                        \
        return SPY(function, pp, p, step, cbp, qp, table, bypass);                               \
    }
INTER_SPY(keliReconstructLumaInter4x4MB_H264_16s8u_C1R)
INTER_SPY(keliReconstructLumaInter8x8MB_H264_16s8u_C1R)

KelStatus keliReconstructChromaInter4x4MB_H264_16s8u_P2R(Kel16s **pp, Kel8u *u, Kel8u *v, int step,
                                                         Kel32u cbp, int qpU, int qpV, const Kel16s *tableU,
                                                         const Kel16s *tableV, int bypass) {
    noteCoeffs(pp);
    noteTable(tableU);
    noteTable(tableV);
    return SPY(keliReconstructChromaInter4x4MB_H264_16s8u_P2R, pp, u, v, step, cbp, qpU, qpV, tableU, tableV,
               bypass);
}

KelStatus keliReconstructChromaIntra4x4MB_H264_16s8u_P2R(Kel16s **pp, Kel8u *u, Kel8u *v, int step, int mode,
                                                         Kel32u cbp, int qpU, int qpV, int availability,
                                                         const Kel16s *tableU, const Kel16s *tableV,
                                                         int bypass) {
    noteCoeffs(pp);
    noteTable(tableU);
    noteTable(tableV);
    return SPY(keliReconstructChromaIntra4x4MB_H264_16s8u_P2R, pp, u, v, step, mode, cbp, qpU, qpV,
               availability, tableU, tableV, bypass);
}

KelStatus keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(Kel16s **pp, Kel8u *u, Kel8u *v, int step,
                                                              int mode, Kel32u cbp, int qpU, int qpV,
                                                              int availability, int lower,
                                                              const Kel16s *tableU, const Kel16s *tableV,
                                                              int bypass) {
    noteCoeffs(pp);
    noteTable(tableU);
    noteTable(tableV);
    return SPY(keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R, pp, u, v, step, mode, cbp, qpU, qpV,
               availability, lower, tableU, tableV, bypass);
}

KelStatus keliReconstructLumaIntraHalfMB_H264_16s8u_C1R(Kel16s **pp, Kel8u *p, int step, const Kel32s *modes,
                                                        Kel32u cbp, int qp, int availability) {
    noteCoeffs(pp);
    noteModes(modes, 16);
    return SPY(keliReconstructLumaIntraHalfMB_H264_16s8u_C1R, pp, p, step, modes, cbp, qp, availability);
}

KelStatus keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R(Kel16s **pp, Kel8u *u, Kel8u *v, int step,
                                                           int mode, Kel32u cbp, int qp, int availability,
                                                           int lower) {
    noteCoeffs(pp);
    return SPY(keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R, pp, u, v, step, mode, cbp, qp, availability,
               lower);
}

// ---- prediction -----------------------------------------------------------------------

namespace {

template <size_t codes>
void expectModes(char const *function, Mode const (&modes)[codes]) {
    suite::Sets sets(suite::findTest(function));
    size_t code = 0;
    for (; sets.next(); ++code) {
        SCOPED_TRACE(std::string(function) + ", code " + std::to_string(code));
        ASSERT_LT(code, codes);
        g_seen.clear();
        EXPECT_EQ(sets.call(), 0);
        ASSERT_EQ(g_seen.size(), 1u);
        EXPECT_EQ(placeOf(g_seen[0].args[0]), (Place{0, 32}));
        EXPECT_EQ(valuesFrom(g_seen[0], 1),
                  std::vector<long long>({16, modes[code].mode, modes[code].availability}));
    }
    EXPECT_EQ(code, codes);
}

} // namespace

TEST_F(Reconstruct, EachCodeIsAModeWithItsNeighbours) {
    expectModes(predictions[0].m_function.c_str(), modes4x4);
    expectModes(predictions[1].m_function.c_str(), modes16x16);
    expectModes(predictions[2].m_function.c_str(), modesChroma);
}

TEST_F(Reconstruct, Code4PredictsFromNoNeighbours) {
    runWith("keliPredictIntra_4x4_H264_8u_C1IR", "predMode_code = 4");
    ASSERT_FALSE(g_seen.empty());
    EXPECT_EQ(valuesFrom(g_seen[0], 2), std::vector<long long>({2, 0}));
}

// 41 is the last one; the column shows what was entered all the same.
TEST_F(Reconstruct, ACodeBeyondTheListKeepsModeAndNeighbours) {
    for (char const *beyond : {"42", "1000000", "-1"}) {
        suite::Outcome outcome =
            runWith("keliPredictIntra_4x4_H264_8u_C1IR", std::string("predMode_code = 11; ") + beyond);
        EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
        ASSERT_EQ(g_seen.size(), 4u) << beyond;
        for (SeenCall const &call : g_seen) EXPECT_EQ(valuesFrom(call, 2), std::vector<long long>({3, 65}));
        ASSERT_EQ(outcome.rows.size(), 2u);
        EXPECT_EQ(outcome.rows[1][suite::firstParm + 1], beyond);
    }
}

TEST_F(Reconstruct, ACodeBeyondTheListIsAllowedAtTheStart) {
    std::vector<Expected> all = predictions;
    all.insert(all.end(), {reconstruct[0], reconstruct[4], mbaff[1]});
    for (Expected const &expected : all) {
        // The mode that this leaves is vertical in chroma, but has no neighbours.
        runWith("keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R", "predMode_code = 2");
        suite::Outcome outcome = runWith(expected.m_function, "predMode_code = 99");
        EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    }
}

TEST_F(Reconstruct, PredictionFillsItsPlaneWithTheDefault) {
    suite::Sets sets(suite::findTest("keliPredictIntra_4x4_H264_8u_C1IR"));
    ASSERT_TRUE(sets.next());
    for (suite::Block const &block : suite::Sets::blocks())
        for (int i = 0; i < block.size; ++i) ASSERT_EQ(block.data[i], 2) << i;
}

// ---- one macroblock ---------------------------------------------------------------------

namespace {

const std::vector<Kel32s> blockModes = {2, 2, 2, 4, 2, 2, 1, 4, 2, 4, 2, 7, 5, 0, 0, 0};
const std::vector<Kel32s> blockModes8 = {2, 2, 7, 2};

} // namespace

TEST_F(Reconstruct, BlocksHaveModesThatNeedNoNeighbourOutside) {
    for (char const *size : {"4x4", "8x8"}) {
        for (char const *half : {"", "Half"}) {
            const std::string function =
                std::string("keliReconstructLumaIntra") + half + size + "MB_H264_16s8u_C1R";
            suite::Sets sets(suite::findTest(function));
            ASSERT_TRUE(sets.next());
            const SeenCall call = callOnce(sets);
            EXPECT_EQ(call.function, function);
            EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
            const bool eights = has(size, "8x8");
            EXPECT_EQ(g_behind[0].modes, eights ? blockModes8 : blockModes);
            expectValues(call, {0, 1, 3, 7}, {16, eights ? 30 : 131071, 26, 52, 0});
            EXPECT_FALSE(sets.next());
        }
    }
}

TEST_F(Reconstruct, TheMacroblockModeAndItsNeighboursComeFromTheCode) {
    suite::Sets sets(suite::findTest("keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R"));
    for (Mode const &mode : modes16x16) {
        ASSERT_TRUE(sets.next());
        const SeenCall call = callOnce(sets);
        EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
        expectValues(call, {0, 1, 7}, {16, mode.mode, 131071, 26, mode.availability, 0});
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(Reconstruct, IntraChromaGetsOnePlaneForBothColours) {
    for (char const *function : {"keliReconstructChromaIntra4x4MB_H264_16s8u_P2R",
                                 "keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R"}) {
        suite::Sets sets(suite::findTest(function));
        for (Mode const &mode : modesChroma) {
            ASSERT_TRUE(sets.next());
            const SeenCall call = callOnce(sets);
            EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
            EXPECT_EQ(placeOf(call.args[2]), (Place{0, 32}));
            const int a = mode.availability;
            if (has(function, "Halfs")) {
                expectValues(call, {0, 1, 2, 10, 11}, {16, mode.mode, 131071, 26, 26, a, a, 0});
            } else {
                expectValues(call, {0, 1, 2, 9, 10}, {16, mode.mode, 131071, 26, 26, a, 0});
            }
        }
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(Reconstruct, InterFormsAddToTheirPlanes) {
    for (char const *size : {"4x4", "8x8"}) {
        suite::Sets sets(
            suite::findTest(std::string("keliReconstructLumaInter") + size + "MB_H264_16s8u_C1R"));
        ASSERT_TRUE(sets.next());
        const SeenCall call = callOnce(sets);
        EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
        expectValues(call, {0, 1, 5}, {16, has(size, "8x8") ? 30 : 131071, 26, 0});
    }
    suite::Sets sets(suite::findTest("keliReconstructChromaInter4x4MB_H264_16s8u_P2R"));
    ASSERT_TRUE(sets.next());
    const SeenCall call = callOnce(sets);
    EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
    EXPECT_EQ(placeOf(call.args[2]), (Place{1, 32}));
    expectValues(call, {0, 1, 2, 7, 8}, {16, 131071, 26, 26, 0});
}

// One value serves every position.
TEST_F(Reconstruct, QuantisationTablesAreConstant) {
    for (Expected const &expected : reconstruct) {
        suite::Sets sets(suite::findTest(expected.m_function));
        ASSERT_TRUE(sets.next());
        callOnce(sets);
        const std::vector<Kel16s> &tables = g_behind[0].tables;
        ASSERT_EQ(tables.size(), has(expected.m_function, "Chroma") ? 32u : 16u);
        for (Kel16s level : tables) EXPECT_EQ(level, 16 * 13) << expected.m_function;
    }
}

TEST_F(Reconstruct, EveryCallStartsAtTheSameCoefficients) {
    std::vector<Expected> all = reconstruct;
    all.insert(all.end(), mbaff.begin(), mbaff.end());
    for (Expected const &expected : all) {
        rkTest *test = suite::findTest(expected.m_function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        statistic(test, 20);
        ASSERT_EQ(g_behind.size(), 21u);
        for (Behind const &behind : g_behind) {
            ASSERT_EQ(placeOf(behind.coeffs), (Place{2, 64})) << expected.m_function;
            ASSERT_GE(behind.coeffs.room, 2 * 272) << "17 blocks";
        }
    }
}

TEST_F(Reconstruct, FieldMacroblocksGetTheOlderArguments) {
    suite::Sets luma(suite::findTest(mbaff[0].m_function));
    ASSERT_TRUE(luma.next());
    const SeenCall call = callOnce(luma);
    EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
    EXPECT_EQ(g_behind[0].modes, blockModes);
    expectValues(call, {0, 1, 3}, {16, 131071, 26, 52});
    EXPECT_FALSE(luma.next());
}

TEST_F(Reconstruct, FieldChromaHasTwoPlanesAndNeighboursForBothHalves) {
    suite::Sets chroma(suite::findTest(mbaff[1].m_function));
    for (Mode const &mode : modesChroma) {
        ASSERT_TRUE(chroma.next());
        const SeenCall call = callOnce(chroma);
        EXPECT_EQ(placeOf(call.args[1]), (Place{0, 32}));
        EXPECT_EQ(placeOf(call.args[2]), (Place{1, 32}));
        expectValues(call, {0, 1, 2}, {16, mode.mode, 131071, 26, mode.availability, mode.availability});
    }
    EXPECT_FALSE(chroma.next());
}

// ---- failures -----------------------------------------------------------------------------

TEST_F(Reconstruct, WithoutMemoryThereIsNoSet) {
    for (std::vector<Expected> const &list : {reconstruct, mbaff}) {
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

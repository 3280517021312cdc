// reconstruct_test.cpp - the suites of intra prediction and reconstruction of H.264: modes, neighbours, the
// macroblocks of a strip.

#include <algorithm>
#include <set>

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

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

const int coeffBytes = 2 * 278528, planeBytes = 279072;

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

// ---- calls ------------------------------------------------------------------------------

// What stood behind the pointers of each call of g_seen.
struct Behind {
    SeenArgument coeffs;       // where the pointer to the coefficients pointed
    std::vector<Kel32s> modes; // one for each block
    std::vector<Kel16s> tables;
};
std::vector<Behind> g_behind;

void noteCoeffs(Kel16s **pp) {
    g_behind.push_back({seen(*pp), {}, {}});
}
void noteModes(Kel32s const *modes, int count) {
    g_behind.back().modes.assign(modes, modes + count);
}
void noteTable(Kel16s const *table) {
    g_behind.back().tables.insert(g_behind.back().tables.end(), table, table + 16);
}

// A place in a tracked block.
struct Place {
    int block, offset;
    bool operator==(Place const &other) const { return block == other.block && offset == other.offset; }
};
void PrintTo(Place const &place, std::ostream *stream) {
    *stream << "byte " << place.offset << " of block " << place.block;
}

Place placeOf(SeenArgument const &seen) {
    const std::vector<suite::Block> blocks = suite::Sets::blocks();
    if (seen.block < 0 || seen.block >= static_cast<int>(blocks.size())) return {seen.block, 0};
    return {seen.block, blocks[static_cast<size_t>(seen.block)].size - seen.room};
}

std::vector<long long> valuesFrom(SeenCall const &call, size_t first) {
    std::vector<long long> values;
    for (size_t i = first; i < call.args.size(); ++i) values.push_back(call.args[i].value);
    return values;
}

class Reconstruct : public suite::SuiteTest {
protected:
    // One call on the set in hand.
    static SeenCall callOnce(suite::Sets &sets) {
        g_seen.clear();
        g_behind.clear();
        EXPECT_EQ(sets.call(), 0);
        EXPECT_EQ(g_seen.size(), 1u);
        return g_seen.back();
    }
    // The test's own statistic on the set in hand.
    static void statistic(rkTest *test, int calls) {
        g_seen.clear();
        g_behind.clear();
        long long clocks = 0;
        EXPECT_EQ(test->m_funcStat(&calls, &clocks), rkResSuccess);
    }
    suite::Outcome runWith(std::string const &function, std::string const &lines) {
        IniFile file("[" + function + "]\n" + lines + "\n");
        g_seen.clear();
        g_behind.clear();
        return run(function);
    }
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
SUITE_TEST(ReconstructLuma, "reconstructluma.cpp", lumaStrip);
SUITE_TEST(Reconstruct2, "reconstruct2.cpp", chromaStrip);

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
        run(expected.m_function); // leaves its last mode
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

bool has(std::string const &text, char const *word) {
    return text.find(word) != std::string::npos;
}

// All values of a call but those of its pointers, which stand in `pointers`.
void expectValues(SeenCall const &call, std::set<size_t> const &pointers, std::vector<long long> expected) {
    std::vector<long long> values;
    for (size_t i = 0; i < call.args.size(); ++i) {
        if (pointers.count(i)) continue;
        EXPECT_EQ(call.args[i].data, nullptr) << i;
        values.push_back(call.args[i].value);
    }
    EXPECT_EQ(values, expected) << call.function;
}

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

// ---- strips -----------------------------------------------------------------------------

namespace {

const std::vector<int> patterns = {1, 0, 103591, 131071};

int coeffsOf(Behind const &behind) {
    return placeOf(behind.coeffs).offset / 2;
}

// The plane of an argument lies in its block with all neighbours of its macroblock.
void expectMacroblock(SeenArgument const &plane, int block, int position, int size) {
    const int offset = 16432 + 16 * position;
    ASSERT_EQ(placeOf(plane), (Place{block, offset}));
    ASSERT_GE(offset - 16416 - 1, 0);
    ASSERT_LE(offset - 16416 + size + 8, 16416) << "the upper right neighbour is in the row";
    ASSERT_LE(offset + (size - 1) * 16416 + size, planeBytes);
}

} // namespace

TEST_F(Reconstruct, StripsHaveCoefficientsOfOne) {
    suite::Sets sets(suite::findTest("keliReconstructLumaInterMB_H264_16s8u_C1R"));
    ASSERT_TRUE(sets.next());
    const suite::Block coeffs = suite::Sets::blocks()[0], plane = suite::Sets::blocks()[1];
    for (int i = 0; i < 278528; ++i) ASSERT_EQ(reinterpret_cast<Kel16s *>(coeffs.data)[i], 1) << i;
    for (int i = 0; i < plane.size; ++i) ASSERT_EQ(plane.data[i], 2) << i;
}

TEST_F(Reconstruct, EachCallOfAStatisticTakesOneOfTheMacroblocksOfTheStrip) {
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

TEST_F(Reconstruct, EachCallOfTheChromaStatisticTakesUOneMacroblockAhead) {
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
TEST_F(Reconstruct, AFullStripUsesUpItsCoefficientsAndStartsOver) {
    rkTest *test = suite::findTest("keliReconstructLumaIntra16x16MB_H264_16s8u_C1R");
    suite::Sets sets(test);
    for (int set = 0; set < 13; ++set) ASSERT_TRUE(sets.next());
    statistic(test, 1024 + 5);
    ASSERT_EQ(g_seen.size(), 1030u);
    EXPECT_EQ(g_seen[0].args[4].value, 131071);
    for (int i = 0; i < 1030; ++i) ASSERT_EQ(coeffsOf(g_behind[static_cast<size_t>(i)]), i % 1024 * 272) << i;
    expectMacroblock(g_seen[1024].args[1], 1, 0, 16);
}

TEST_F(Reconstruct, AManualCountGoesOnFromSetToSetAndStartsOverWithTheTest) {
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

TEST_F(Reconstruct, BlockTypesAreCodedBlockPatterns) {
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

TEST_F(Reconstruct, ChromaHasFourBlockTypesWithFourPredictions) {
    suite::Sets sets(suite::findTest(chromaStrip[0].m_function));
    for (int set = 0; set < 16; ++set) {
        ASSERT_TRUE(sets.next());
        expectValues(callOnce(sets), {0, 1, 2}, {16416, set % 4, patterns[static_cast<size_t>(set / 4)], 26});
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(Reconstruct, BlockType1IsAnEmptyMacroblock) {
    const std::string function = "keliReconstructLumaIntra16x16MB_H264_16s8u_C1R";
    suite::Outcome outcome = runWith(function, "block_type = 1\nprediction_type = 2");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    ASSERT_EQ(g_seen.size(), 2u);
    EXPECT_EQ(g_seen[0].args[4].value, 0);
    EXPECT_EQ(g_behind[0].coeffs.data, g_behind[1].coeffs.data) << "no coefficient is taken";
}

TEST_F(Reconstruct, AnyOtherBlockTypeRefusesTheTest) {
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

TEST_F(Reconstruct, AModeThatTheLibraryRefusesIsAnError) {
    suite::Outcome outcome = runWith("keliReconstructLumaIntraMB_H264_16s8u_C1R", "prediction_type = 9");
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_FALSE(g_seen.empty());
}

// ---- failures -----------------------------------------------------------------------------

TEST_F(Reconstruct, WithoutMemoryThereIsNoSet) {
    for (std::vector<Expected> const &list : {reconstruct, mbaff, lumaStrip, chromaStrip}) {
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

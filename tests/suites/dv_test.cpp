// dv_test.cpp - the suites of DV: their data and their calls.

#include <algorithm>

#include "../dv/dvformat.h"
#include "dvsegments.h"
#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;
using suite::findTest;

const kmType bytes = 8, words = 16 | kmTypeSigned;

char const *const weighted100 = "keliQuantWeightBlockInv_DV100_16s_C1I";
char const *const weighted = "keliQuantWeightBlockInv_DV_16s_C1I";
char const *const quantInv = "keliQuantInv_DV_16s_C1I";
char const *const zeros = "keliCountZeros8x8_16s_C1";
char const *const forward = "keliDCT2x4x8Frw_16s_C1I";
char const *const inverse = "keliDCT2x4x8Inv_16s_C1I";
char const *const inverse4x4 = "keliDCT8x4x2To4x4Inv_DV_16s_C1I";
char const *const decode = "keliHuffmanDecodeSegment_DV_8u16s";

// A block, or a block and a table, and one set.
Expected ofBlock(char const *test, char const *function, std::vector<int> blocks = {128}) {
    return Expected(test, function, "all", 1).stat(1023).blocks(blocks);
}

const std::vector<Expected> quantisers = {
    ofBlock("rk_Dv100QuantWeight", weighted100, {128, 128}).updates({0}),
    ofBlock("rk_DvQuantWeight", weighted, {128, 128}).updates({0}),
    ofBlock("pQuantInv", quantInv, {128, 128}).updates({0}),
};

const std::vector<Expected> counts = {ofBlock("pCountZeros", zeros)};

const std::vector<Expected> transforms = {
    ofBlock("rk_Dv_Dct2x4x8", forward).updates({0}),
    ofBlock("rk_Dv_Idct2x4x8", inverse).updates({0}),
    ofBlock("rk_DvIdct8x4x2to4x4", inverse4x4).updates({0}),
};

const std::vector<Expected> decoders = {
    Expected("rk_DvHuffmanDecode", decode, "all", 1)
        .parm("tableNumber", {"0", "1"})
        .stat(1023)
        .blocks({400, 3840, 120})
        .writes({1, 2}),
};

int tablesMade, tablesFreed;
KelStatus prepared; // what a call that prepares data answers, if not 0

class Dv : public suite::SuiteTest {
protected:
    // The call behind the data of the first set.
    SeenCall callOf(Expected const &expected) {
        suite::Sets sets(findTest(expected.m_function, expected.m_test));
        EXPECT_TRUE(sets.next());
        g_seen.clear();
        EXPECT_EQ(sets.call(), kelStsNoErr);
        EXPECT_EQ(g_seen.size(), 1u);
        return g_seen.empty() ? SeenCall() : g_seen[0];
    }
    // The data of the first set: random values, then a table of a constant.
    void expectData(Expected const &expected, double low, double high, int constant) {
        suite::Sets sets(findTest(expected.m_function, expected.m_test));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), 2u);
        expectRandom({blocks[0]}, {{words, 64, low, high}});
        for (int i = 0; i < 64; ++i) EXPECT_EQ(reinterpret_cast<Kel16s *>(blocks[1].data)[i], constant);
        EXPECT_FALSE(sets.next());
    }
};

} // namespace

SUITE_TEST(DvQuant, "dvquant.cpp", quantisers);
SUITE_TEST(CountZeros, "countzeros.cpp", counts);
SUITE_TEST(DvTransform, "dvtransform.cpp", transforms);
SUITE_TEST(DvDecode, "dvdecode.cpp", decoders);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliQuantWeightBlockInv_DV100_16s_C1I(Kel16s *c, const Kel16s *weights, int step) {
    return SPY(keliQuantWeightBlockInv_DV100_16s_C1I, c, weights, step);
}

KelStatus keliQuantWeightBlockInv_DV_16s_C1I(Kel16s *c, const Kel16s *steps, const Kel16s *weights) {
    return SPY(keliQuantWeightBlockInv_DV_16s_C1I, c, steps, weights);
}

KelStatus keliQuantInv_DV_16s_C1I(Kel16s *c, const Kel16s *steps) {
    return SPY(keliQuantInv_DV_16s_C1I, c, steps);
}

KelStatus keliCountZeros8x8_16s_C1(const Kel16s *c, int *count) {
    return SPY(keliCountZeros8x8_16s_C1, c, count);
}

KelStatus keliDCT2x4x8Frw_16s_C1I(Kel16s *c) {
    return prepared ? prepared : SPY(keliDCT2x4x8Frw_16s_C1I, c);
}

KelStatus keliDCT2x4x8Inv_16s_C1I(Kel16s *c) {
    return SPY(keliDCT2x4x8Inv_16s_C1I, c);
}

KelStatus keliDCT8x4x2To4x4Inv_DV_16s_C1I(Kel16s *c) {
    return SPY(keliDCT8x4x2To4x4Inv_DV_16s_C1I, c);
}

KelStatus keliHuffmanDecodeSegment_DV_8u16s(const Kel8u *src, const Kel32u *scan, const Kel32u *table,
                                            Kel16s *blocks, Kel32u *params) {
    return SPY(keliHuffmanDecodeSegment_DV_8u16s, src, scan, table, blocks, params);
}

KelStatus keliInitAllocHuffmanTable_DV_32u(const Kel32u *codes1, const Kel32u *codes2, Kel32u **table) {
    if (prepared) return prepared;
    ++tablesMade;
    return callLibrary(&keliInitAllocHuffmanTable_DV_32u, "keliInitAllocHuffmanTable_DV_32u", codes1, codes2,
                       table);
}

void keliFreeHuffmanTable_DV_32u(Kel32u *table) {
    ++tablesFreed;
    auto library = dlsym(RTLD_NEXT, "keliFreeHuffmanTable_DV_32u");
    reinterpret_cast<void (*)(Kel32u *)>(library)(table);
}

// ---- quantisation -----------------------------------------------------------------------

TEST_F(Dv, WeightingOf100GetsItsTableAndTheStepThree) {
    expectArgs(callOf(quantisers[0]), {block(0), block(1), value(3)}, {128, 128});
}

TEST_F(Dv, WeightingGetsItsStepsAndWeightsThatAreAllZero) {
    SeenCall call = callOf(quantisers[1]);
    expectArgs(call, {block(0), block(1), own()}, {128, 128});
    auto table = static_cast<Kel16s const *>(call.args[2].data);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(table[i], 0);
}

TEST_F(Dv, QuantInvGetsItsTable) {
    expectArgs(callOf(quantisers[2]), {block(0), block(1)}, {128, 128});
}

TEST_F(Dv, BlocksAreRandomAndTablesConstant) {
    expectData(quantisers[0], -255, 255, 5);
    expectData(quantisers[1], -255, 255, 5);
}

// Not the values that the lower bound first would give.
TEST_F(Dv, QuantInvDrawsWithTheHigherBoundFirst) {
    expectData(quantisers[2], 65535.0, 32767.0, 3);
    suite::Sets sets(findTest(quantInv, "pQuantInv"));
    ASSERT_TRUE(sets.next());
    kmVector turned(words);
    kmVector::m_seed = 7;
    ASSERT_TRUE(turned.createVectorExt(64, 0, SetRandom, 32767.0, 65535.0));
    EXPECT_NE(memcmp(suite::Sets::blocks()[0].data, turned.m_data, 128), 0);
}

// ---- zeros ---------------------------------------------------------------------------------

// Values between 0 and 1 are cut off to 0.
TEST_F(Dv, TheCountFindsABlockOfZeros) {
    expectArgs(callOf(counts[0]), {block(0), own()}, {128});
    suite::Sets sets(findTest(zeros, "pCountZeros"));
    ASSERT_TRUE(sets.next());
    g_seen.clear();
    ASSERT_EQ(sets.call(), kelStsNoErr);
    auto data = reinterpret_cast<Kel16s *>(suite::Sets::blocks()[0].data);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(data[i], 0);
    EXPECT_EQ(*static_cast<int const *>(g_seen[0].args[1].data), 64);
}

TEST_F(Dv, TheBlockOfTheCountIsDrawnFromTheSeed) {
    suite::Sets sets(findTest(zeros, "pCountZeros"));
    ASSERT_TRUE(sets.next());
    const unsigned int seed = kmVector::m_seed;
    kmVector::m_seed = 7;
    kmVector model(words);
    ASSERT_TRUE(model.createVectorExt(64, 0, SetRandom, 0, 1));
    EXPECT_EQ(kmVector::m_seed, seed) << "64 values were drawn";
    EXPECT_EQ(memcmp(suite::Sets::blocks()[0].data, model.m_data, 128), 0);
}

// ---- transforms ----------------------------------------------------------------------------

TEST_F(Dv, TransformsWorkOnTheirBlock) {
    for (Expected const &expected : transforms) {
        SeenCall call = callOf(expected);
        EXPECT_EQ(call.function, expected.m_function);
        expectArgs(call, {block(0)}, {128});
    }
}

TEST_F(Dv, TheForwardTransformStartsWithSamples) {
    g_seen.clear();
    suite::Sets sets(findTest(forward, "rk_Dv_Dct2x4x8"));
    ASSERT_TRUE(sets.next());
    EXPECT_TRUE(g_seen.empty());
    expectRandom(suite::Sets::blocks(), {{words, 64, -128, 127}});
}

TEST_F(Dv, TheInversesStartWithTheCoefficientsOfSamples) {
    for (int i : {1, 2}) {
        g_seen.clear();
        suite::Sets sets(findTest(transforms[i].m_function, transforms[i].m_test));
        ASSERT_TRUE(sets.next());
        ASSERT_EQ(g_seen.size(), 1u) << "transformed once";
        EXPECT_EQ(g_seen[0].function, forward);
        kmVector model(words);
        kmVector::m_seed = 7;
        ASSERT_TRUE(model.createVectorExt(64, 0, SetRandom, -128, 127));
        ASSERT_EQ(keliDCT2x4x8Frw_16s_C1I(model.p16s), kelStsNoErr);
        EXPECT_EQ(memcmp(suite::Sets::blocks()[0].data, model.m_data, 128), 0);
    }
}

// ---- the decoder ------------------------------------------------------------------------------

TEST_F(Dv, TheDecoderHasALineForEachSegment) {
    suite::Rows rows = run(decode).rows;
    EXPECT_EQ(firstCells(rows), suite::Cells({"0", "1"}));
}

TEST_F(Dv, TheDecoderGetsTheSegmentOfItsNumber) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, decode);
    ASSERT_EQ(calls.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        expectArgs(calls[i], {own(), own(), own(), block(1), block(2)}, {400, 3840, 120});
        EXPECT_EQ(calls[i].args[0].data, i == 0 ? white_noise_table : nature_table);
        auto scan = static_cast<Kel32u const *>(calls[i].args[1].data);
        for (int place = 0; place < 128; ++place)
            EXPECT_EQ(static_cast<int>(scan[place]), dv::scans[place / 64][place % 64]) << place;
    }
}

TEST_F(Dv, DestinationsStartAtZeroAndTheSourceIsRandom) {
    suite::Sets sets(findTest(decode));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 3u);
    expectRandom({blocks[0]}, {{bytes, 400, 0, 255}});
    for (int i : {1, 2}) {
        for (int k = 0; k < blocks[i].size; ++k) ASSERT_EQ(blocks[i].data[k], 0);
    }
}

TEST_F(Dv, BothSegmentsAreDecodedToTheirLastBlock) {
    suite::Sets sets(findTest(decode));
    while (sets.next()) {
        EXPECT_EQ(sets.call(), kelStsNoErr);
        auto params = reinterpret_cast<Kel32u *>(suite::Sets::blocks()[2].data);
        auto levels = reinterpret_cast<Kel16s *>(suite::Sets::blocks()[1].data);
        for (int i = 0; i < 30; ++i) {
            EXPECT_EQ(params[i] >> 31, 0u) << "block " << i;
            EXPECT_TRUE(std::any_of(levels + 64 * i, levels + 64 * i + 64, [](int level) { return level; }));
        }
    }
}

TEST_F(Dv, EachSetMakesATableAndFreesIt) {
    tablesMade = tablesFreed = 0;
    run(decode);
    EXPECT_EQ(tablesMade, 2);
    EXPECT_EQ(tablesFreed, 2);
}

TEST_F(Dv, ThereIsNoThirdSegment) {
    for (char const *number : {"2", "-1", "2000000000"}) {
        IniFile file("[" + std::string(decode) + "]\ntableNumber = " + number + "\n");
        g_seen.clear();
        tablesMade = tablesFreed = 0;
        suite::Outcome outcome = run(decode);
        EXPECT_TRUE(rkIsError(outcome.result)) << number;
        EXPECT_TRUE(g_seen.empty()) << number;
        EXPECT_EQ(tablesMade, tablesFreed) << number;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << number;
    }
}

// ---- errors ------------------------------------------------------------------------------------

TEST_F(Dv, AnErrorOfAPreparingCallRefusesTheSet) {
    for (Expected const *expected : {&transforms[1], &transforms[2], &decoders[0]}) {
        prepared = kelStsMemAllocErr;
        g_seen.clear();
        suite::Outcome outcome = run(expected->m_function, expected->m_test);
        EXPECT_TRUE(rkIsError(outcome.result)) << expected->m_test;
        EXPECT_NE(outcome.log.find("--KEL ERROR."), std::string::npos) << outcome.log;
        EXPECT_TRUE(outcome.rows.empty()) << expected->m_test;
        EXPECT_TRUE(g_seen.empty()) << expected->m_test;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << expected->m_test;
        prepared = kelStsNoErr;
    }
}

// ---- no memory -----------------------------------------------------------------------------------

TEST_F(Dv, WithoutMemoryThereIsNoSet) {
    for (Expected const *expected : {&quantisers[0], &quantisers[1], &quantisers[2], &decoders[0]}) {
        NoSecondBlock full;
        g_seen.clear();
        tablesMade = tablesFreed = 0;
        suite::Outcome outcome = run(expected->m_function, expected->m_test);
        EXPECT_TRUE(rkIsError(outcome.result)) << expected->m_test;
        EXPECT_TRUE(outcome.rows.empty()) << expected->m_test;
        EXPECT_TRUE(g_seen.empty()) << expected->m_test;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << expected->m_test;
        EXPECT_EQ(tablesMade + tablesFreed, 0);
    }
}

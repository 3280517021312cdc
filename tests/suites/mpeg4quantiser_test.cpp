// mpeg4quantiser_test.cpp - the suite of quantisation of MPEG-4: its data and its calls.

#include "kmvc.h"
#include "mpeg4spec.h"

namespace {

using suite::Cells;
using suite::Expected;

enum { Pool, PoolMatrix, PoolSpec };
const std::vector<int> quantSizes = {131072, 64, specBytes};

// ---- what is registered ---------------------------------------------------------------

Expected quant(char const *function, Cells const &lasts) {
    return Expected("Timm4Quant", function, "e", 64)
        .consumes()
        .parm("indxLastNonZero", lasts)
        .parm("bitsPerPixel", {"4", "8", "12"})
        .blocks(quantSizes)
        .updates({Pool});
}

const Cells lasts = {"3", "7", "15", "31", "63"};
const std::vector<Expected> quantTests = {
    quant("keliQuantInvIntra_MPEG4_16s_C1I", lasts),
    quant("keliQuantInvInter_MPEG4_16s_C1I", lasts),
    quant("keliQuantIntra_MPEG4_16s_C1I", {"0"}),
    quant("keliQuantInter_MPEG4_16s_C1I", {"0"}),
};

class Mpeg4Quantiser : public BitStreamSuite {};

} // namespace

SUITE_TEST(Mpeg4Quant, "mpeg4quant.cpp", quantTests);

// ---- the spies ----------------------------------------------------------------------

SPY_SPEC(keliQuantInvIntraGetSize_MPEG4, keliQuantInvIntraInit_MPEG4)
SPY_SPEC(keliQuantInvInterGetSize_MPEG4, keliQuantInvInterInit_MPEG4)
SPY_SPEC(keliQuantIntraGetSize_MPEG4, keliQuantIntraInit_MPEG4)
SPY_SPEC(keliQuantInterGetSize_MPEG4, keliQuantInterInit_MPEG4)

// clang-format off

KelStatus keliQuantInvIntra_MPEG4_16s_C1I(Kel16s *c, int last, const KeliQuantSpec_MPEG4 *spec, int QP, int type) {
    return SPY(keliQuantInvIntra_MPEG4_16s_C1I, c, last, spec, QP, type);
}
KelStatus keliQuantInvInter_MPEG4_16s_C1I(Kel16s *c, int last, const KeliQuantSpec_MPEG4 *spec, int QP) {
    return SPY(keliQuantInvInter_MPEG4_16s_C1I, c, last, spec, QP);
}
KelStatus keliQuantIntra_MPEG4_16s_C1I(Kel16s *c, const KeliQuantSpec_MPEG4 *spec, int QP, int *count, int type) {
    return SPY(keliQuantIntra_MPEG4_16s_C1I, c, spec, QP, count, type);
}
KelStatus keliQuantInter_MPEG4_16s_C1I(Kel16s *c, const KeliQuantSpec_MPEG4 *spec, int QP, int *count) {
    return SPY(keliQuantInter_MPEG4_16s_C1I, c, spec, QP, count);
}

// clang-format on

// ---- quantisers -----------------------------------------------------------------------

TEST_F(Mpeg4Quantiser, InverseQuantisersTakeTheirLastIndexAndAQuantiserByTheirDepth) {
    suite::Outcome outcome;
    std::vector<SeenCall> intra = callsOf(outcome, "keliQuantInvIntra_MPEG4_16s_C1I");
    std::vector<SeenCall> inter = callsOf(outcome, "keliQuantInvInter_MPEG4_16s_C1I");
    ASSERT_EQ(intra.size(), 15u);
    ASSERT_EQ(inter.size(), 15u);
    for (int i = 0; i < 15; ++i) {
        const Arg index = value(std::vector<int>{3, 7, 15, 31, 63}[i / 3]), QP = value(i % 3 == 0 ? 1 : 2);
        std::vector<int> room = quantSizes;
        room[Pool] -= 128; // the warm-up had the first block
        expectArgs(intra[i], {block(Pool), index, block(PoolSpec), QP, value(0)}, room);
        expectArgs(inter[i], {block(Pool), index, block(PoolSpec), QP}, room);
    }
}

TEST_F(Mpeg4Quantiser, QuantisersCountTheirLevels) {
    suite::Outcome outcome;
    std::vector<SeenCall> intra = callsOf(outcome, "keliQuantIntra_MPEG4_16s_C1I");
    std::vector<SeenCall> inter = callsOf(outcome, "keliQuantInter_MPEG4_16s_C1I");
    ASSERT_EQ(intra.size(), 3u);
    ASSERT_EQ(inter.size(), 3u);
    for (int i = 0; i < 3; ++i) {
        const Arg QP = value(i == 0 ? 1 : 2);
        std::vector<int> room = quantSizes;
        room[Pool] -= 128;
        expectArgs(intra[i], {block(Pool), block(PoolSpec), QP, own(), value(0)}, room);
        expectArgs(inter[i], {block(Pool), block(PoolSpec), QP, own()}, room);
    }
}

TEST_F(Mpeg4Quantiser, QuantisersAreMadeOfTheMatrixByTheirOwnFunctionForEachDepth) {
    char const *const names[] = {"keliQuantInvIntraInit_MPEG4", "keliQuantInvInterInit_MPEG4",
                                 "keliQuantIntraInit_MPEG4", "keliQuantInterInit_MPEG4"};
    for (int i = 0; i < 4; ++i) {
        g_inits.clear();
        run(quantTests[i].m_function);
        ASSERT_EQ(g_inits.size(), i < 2 ? 15u : 3u);
        for (size_t set = 0; set < g_inits.size(); ++set) {
            EXPECT_EQ(g_inits[set].function, names[i]);
            EXPECT_EQ(g_inits[set].block, PoolMatrix);
            EXPECT_EQ(g_inits[set].bits, 4 + static_cast<int>(set % 3) * 4);
        }
    }
}

TEST_F(Mpeg4Quantiser, PoolHoldsOneRandomBlockOverAndOver) {
    for (Expected const &expected : quantTests) {
        suite::Sets sets(suite::findTest(expected.m_function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), 3u);
        for (int i = 1; i < 1024; ++i)
            ASSERT_EQ(memcmp(blocks[Pool].data, blocks[Pool].data + 128 * i, 128), 0) << i;
        // The first block and the matrix are what the seed gives for the whole pool and what follows it.
        kmVector::m_seed = 7;
        kmVector pool(16 | kmTypeSigned), matrix(8);
        ASSERT_TRUE(pool.createVectorExt(65536, 0, SetRandom, -300.0, 300.0));
        ASSERT_TRUE(matrix.createVectorExt(64, 0, SetRandom, 2.0, 127.0));
        EXPECT_EQ(memcmp(blocks[Pool].data, pool.m_data, 128), 0);
        EXPECT_EQ(memcmp(blocks[PoolMatrix].data, matrix.m_data, 64), 0);
        for (int i = 0; i < 64; ++i) EXPECT_GE(blocks[PoolMatrix].data[i], 2);
    }
}

// Index 3 reaches elements of the first four rows, 63 all of the block.
TEST_F(Mpeg4Quantiser, LastIndexTellsHowMuchOfTheBlockChanges) {
    suite::Sets sets(suite::findTest("keliQuantInvInter_MPEG4_16s_C1I"));
    for (int set = 0; sets.next(); ++set) {
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        std::vector<Kel16s> before(64), after(64);
        memcpy(before.data(), blocks[Pool].data, 128);
        ASSERT_EQ(sets.call(), 0);
        memcpy(after.data(), blocks[Pool].data, 128);
        int changed = -1;
        for (int i = 0; i < 63; ++i) {
            if (before[i] != after[i]) changed = i;
        }
        if (set / 3 == 0) {
            EXPECT_LE(changed, 24) << set;
        }
        if (set / 3 == 4) {
            EXPECT_GE(changed, 56) << set;
        }
        EXPECT_GT(changed, 0);
    }
}

TEST_F(Mpeg4Quantiser, EachCallMeetsAFreshBlockUntilTheThousandAndTwentyFifth) {
    rkTest *test = suite::findTest("keliQuantInter_MPEG4_16s_C1I");
    suite::Sets sets(test);
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    const std::vector<unsigned char> fresh(blocks[Pool].data, blocks[Pool].data + 128);
    std::vector<unsigned char> quantised;
    for (int i = 0; i < 1024; ++i) {
        unsigned char *block = blocks[Pool].data + 128 * i;
        ASSERT_EQ(memcmp(block, fresh.data(), 128), 0) << i;
        ASSERT_EQ(sets.call(), 0);
        if (i == 0) quantised.assign(block, block + 128);
        ASSERT_EQ(memcmp(block, quantised.data(), 128), 0) << i;
    }
    EXPECT_NE(fresh, quantised);
    g_seen.clear();
    ASSERT_EQ(sets.call(), 0);
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_EQ(g_seen[0].args[0].data, blocks[Pool].data) << "the first block again, quantised already";
    EXPECT_NE(memcmp(blocks[Pool].data, quantised.data(), 128), 0);
}

// The pool is no reason to change the timing method, so a statistic run may go on through it.
TEST_F(Mpeg4Quantiser, NextSetBeginsWithTheFirstBlock) {
    suite::Sets sets(suite::findTest("keliQuantIntra_MPEG4_16s_C1I"));
    ASSERT_TRUE(sets.next());
    for (int i = 0; i < 5; ++i) ASSERT_EQ(sets.call(), 0);
    ASSERT_TRUE(sets.next());
    g_seen.clear();
    ASSERT_EQ(sets.call(), 0);
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_EQ(g_seen[0].args[0].data, suite::Sets::blocks()[Pool].data);
}

// ---- failures -----------------------------------------------------------------------------

TEST_F(Mpeg4Quantiser, AnErrorOfAPreparingCallRefusesTheSet) {
    char const *const preparations[][2] = {
        {"keliQuantInvIntra_MPEG4_16s_C1I", "keliQuantInvIntraGetSize_MPEG4"},
        {"keliQuantInvIntra_MPEG4_16s_C1I", "keliQuantInvIntraInit_MPEG4"},
        {"keliQuantInvInter_MPEG4_16s_C1I", "keliQuantInvInterGetSize_MPEG4"},
        {"keliQuantInvInter_MPEG4_16s_C1I", "keliQuantInvInterInit_MPEG4"},
        {"keliQuantIntra_MPEG4_16s_C1I", "keliQuantIntraGetSize_MPEG4"},
        {"keliQuantIntra_MPEG4_16s_C1I", "keliQuantIntraInit_MPEG4"},
        {"keliQuantInter_MPEG4_16s_C1I", "keliQuantInterGetSize_MPEG4"},
        {"keliQuantInter_MPEG4_16s_C1I", "keliQuantInterInit_MPEG4"},
    };
    g_answer = kelStsRangeErr;
    for (auto const &[function, prepares] : preparations) {
        g_answered = prepares;
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << prepares;
        EXPECT_TRUE(outcome.rows.empty()) << prepares;
        EXPECT_NE(outcome.log.find("--KEL ERROR. status = -5"), std::string::npos) << outcome.log;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << prepares;
    }
}

TEST_F(Mpeg4Quantiser, WithoutMemoryThereIsNoSet) {
    for (Expected const &expected : quantTests) {
        NoSecondBlock full;
        suite::Outcome outcome = run(expected.m_function);
        EXPECT_TRUE(rkIsError(outcome.result)) << expected.m_function;
        EXPECT_TRUE(outcome.rows.empty()) << expected.m_function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << expected.m_function;
    }
}

// deblocking_test.cpp - the suites of deblocking filters: which blocks they filter, with which arrays, and
// that the sets of data do what they are for.

#include <algorithm>
#include <cstring>

#include "../unit/text.h"
#include "deblockingtablesavs.h"
#include "deblockingtablesh264.h"
#include "kmvc.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

// The small vectors stay for the next set.
Expected deblocking(char const *test, char const *function, int samples, int thresholds) {
    Expected expected(test, function, "all", 1);
    if (std::string(function).find("VerEdge") != std::string::npos)
        expected.parm("cache_aling_iterator", suite::numbers(0, 1));
    return expected.parm("deblocking_type", suite::numbers(0, 3))
        .stat(999)
        .blocks({samples, 2000, 2000, thresholds, 16000})
        .updates({0})
        .leaves({2000, 2000, thresholds, 16000});
}

// The ramp is no step that a chroma filter would change.
Expected mixed(char const *function, std::vector<int> const &updates) {
    return Expected("rk_DeblockingMBAFF", function, "all", 1)
        .parm("len", {"0"})
        .parm("betta", {"6", "12"})
        .parm("bs", {"1", "4"})
        .blocks({1024})
        .updates(updates);
}

const int pairsPool = 512 * 16001 + 64; // eight sets of a thousand double steps

const std::vector<Expected> luma = {
    deblocking("rk_Deblocking", "keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR", 512064, 16000),
    deblocking("rk_Deblocking", "keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR", 320000, 16000),
};
const std::vector<Expected> chroma = {
    deblocking("rk_Deblocking", "keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR", 512064, 8000),
    deblocking("rk_Deblocking", "keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR", 96000, 8000),
    deblocking("rk_Deblocking", "keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR", pairsPool, 8000),
    deblocking("rk_Deblocking", "keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR", 192000, 8000),
};
const std::vector<Expected> chroma422 = {
    deblocking("rk_DeblockingRI", "keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR", 1024064 + 8, 16000),
    deblocking("rk_DeblockingRI", "keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR", 320000, 16000),
};
const std::vector<Expected> mbaff = {
    mixed("keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR", {0}),
    mixed("keliFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR", {}),
};
const std::vector<Expected> avsLuma = {
    deblocking("rk_AvsLumaDeblocking", "keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR", 512064, 16000),
    deblocking("rk_AvsLumaDeblocking", "keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR", 320000, 16000),
};
const std::vector<Expected> avsChroma = {
    deblocking("rk_AvsChromaDeblocking", "keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR", 512064, 8000),
    deblocking("rk_AvsChromaDeblocking", "keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR", 96000, 8000),
};

// ---- calls ------------------------------------------------------------------------------

// A call as the filter saw it, whatever the form of its arguments.
struct FilterCall {
    long long plane, alpha, beta, thresholds, strengths; // bytes from the start of the block
    int step;
};

std::vector<FilterCall> g_calls;

long long placeOf(void const *p) {
    for (suite::Block const &block : suite::Sets::blocks()) {
        const unsigned char *at = static_cast<unsigned char const *>(p);
        if (at >= block.data && at < block.data + block.size) return at - block.data;
    }
    return -1;
}

void note(Kel8u *p, int step, Kel8u const *a, Kel8u const *b, Kel8u const *t, Kel8u const *s) {
    g_calls.push_back({placeOf(p), placeOf(a), placeOf(b), placeOf(t), placeOf(s), step});
}

void note(KeliDeblockingInfo const *info) {
    note(info->pSrcDst, info->srcDstStep, info->pAlpha, info->pBeta, info->pThresholds, info->pStrengths);
}

// The blocks of the test in hand: those of other files, which stay behind, are older.
std::vector<suite::Block> poolInHand() {
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    if (blocks.size() > 5) blocks.erase(blocks.begin(), blocks.end() - 5);
    return blocks;
}

class Deblocking : public suite::SuiteTest {
protected:
    // The test's own statistic on the set in hand.
    static void statistic(rkTest *test, int calls) {
        g_calls.clear();
        long long clocks = 0;
        EXPECT_EQ(test->m_funcStat(&calls, &clocks), rkResSuccess);
    }
};

// Where the forms with a pool of their own go in the first set.
struct Place {
    char const *function;
    int block, first, step, thresholds;
    int shift; // of the second half of the sets of vertical edges
};

const Place pooled[] = {
    {"keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR", 512, 16, 32, 16, 16},
    {"keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR", 16, 64000, 16000, 16, 0},
    {"keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR", 512, 8, 64, 8, 56},
    {"keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR", 8, 32000, 8000, 8, 0},
};
const Place paired[] = {
    {"keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR", 512, 8, 64, 8, 56},
    {"keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR", 8, 32000, 8000, 8, 0},
};
const Place repeated[] = {
    {"keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR", 1024, 16, 64, 16, 112},
    {"keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR", 16, 64000, 16000, 16, 0},
    {"keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR", 512, 16, 32, 16, 16},
    {"keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR", 16, 64000, 16000, 16, 0},
    {"keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR", 512, 8, 64, 8, 56},
    {"keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR", 8, 32000, 8000, 8, 0},
};

void expectArrays(FilterCall const &call, Place const &place, int n) {
    EXPECT_EQ(call.alpha, 2 * n);
    EXPECT_EQ(call.beta, 2 * n);
    EXPECT_EQ(call.thresholds, place.thresholds * n);
    EXPECT_EQ(call.strengths, 16 * n);
    EXPECT_EQ(call.step, place.step);
}

} // namespace

SUITE_TEST(DeblockingLuma, "deblockingluma.cpp", luma);
SUITE_TEST(DeblockingChroma, "deblockingchroma.cpp", chroma);
SUITE_TEST(Deblocking422, "deblocking422.cpp", chroma422);
SUITE_TEST(DeblockingMbaff, "deblockingmbaff.cpp", mbaff);
SUITE_TEST(AvsLumaDeblocking, "avslumadeblocking.cpp", avsLuma);
SUITE_TEST(AvsChromaDeblocking, "avschromadeblocking.cpp", avsChroma);

// ---- the spies ---------------------------------------------------------------------------

// clang-format off

#define SPY_SIX(name) \
    KelStatus name(Kel8u *p, int step, const Kel8u *a, const Kel8u *b, const Kel8u *t, const Kel8u *s) { note(p, step, a, b, t, s); return callLibrary(&name, #name, p, step, a, b, t, s); }
#define SPY_INFO(name) \
    KelStatus name(const KeliDeblockingInfo *info) { note(info); return callLibrary(&name, #name, info); }

SPY_SIX(keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR)
SPY_SIX(keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR)
SPY_SIX(keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR)
SPY_SIX(keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR)
SPY_SIX(keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR)
SPY_SIX(keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR)
SPY_SIX(keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR)
SPY_SIX(keliFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR)
SPY_INFO(keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR)
SPY_INFO(keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR)
SPY_INFO(keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR)
SPY_INFO(keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR)
SPY_INFO(keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR)
SPY_INFO(keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR)

// clang-format on

// ---- which blocks are filtered --------------------------------------------------------------

TEST_F(Deblocking, AStatisticFiltersEachBlockOnceWithItsOwnArrays) {
    for (Place const &place : pooled) {
        SCOPED_TRACE(place.function);
        rkTest *test = suite::findTest(place.function);
        suite::Sets sets(test);
        for (int set = 0; sets.next(); ++set) {
            statistic(test, 999);
            ASSERT_EQ(g_calls.size(), 1000u);
            for (int n = 0; n < 1000; ++n) {
                const int shift = set < 4 ? 0 : place.shift;
                ASSERT_EQ(g_calls[n].plane, place.block * n + place.first + shift) << "set " << set;
                expectArrays(g_calls[n], place, n);
            }
        }
    }
}

TEST_F(Deblocking, InterleavedFormsGoInDoubleStepsThroughAllSetsWithoutAnEnd) {
    for (Place const &place : paired) {
        SCOPED_TRACE(place.function);
        rkTest *test = suite::findTest(place.function);
        suite::Sets sets(test);
        for (int set = 0; sets.next(); ++set) {
            statistic(test, 999);
            ASSERT_EQ(g_calls.size(), 1000u);
            for (int n = 0; n < 1000; ++n) {
                const int shift = set < 4 ? 0 : place.shift;
                ASSERT_EQ(g_calls[n].plane, 2 * place.block * (1000 * set + n + 1) + place.first + shift);
                expectArrays(g_calls[n], place, n);
            }
        }
    }
}

// A sanitizer build sees a step out of the pool.
TEST_F(Deblocking, InterleavedFormsStayInTheirPoolInALongRun) {
    for (Place const &place : paired) {
        SCOPED_TRACE(place.function);
        rkTest *test = suite::findTest(place.function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        const int size = poolInHand()[0].size;
        statistic(test, 20000);
        const auto startsOver = [&](FilterCall const &call) { return call.plane == place.first; };
        EXPECT_TRUE(std::any_of(g_calls.begin(), g_calls.end(), startsOver));
        for (FilterCall const &call : g_calls) ASSERT_LE(call.plane + 7 * call.step + 16, size);
    }
}

TEST_F(Deblocking, AllCallsOfASetFilterOneBlockWhereTheArgumentsAreARecord) {
    for (Place const &place : repeated) {
        SCOPED_TRACE(place.function);
        rkTest *test = suite::findTest(place.function);
        suite::Sets sets(test);
        for (int set = 0; sets.next(); ++set) {
            statistic(test, 9);
            ASSERT_EQ(g_calls.size(), 10u);
            for (FilterCall const &call : g_calls) {
                const int shift = set < 4 ? 0 : place.shift;
                ASSERT_EQ(call.plane, place.block * set + place.first + shift) << "set " << set;
                expectArrays(call, place, set);
            }
        }
    }
}

TEST_F(Deblocking, AManualCountAboveAThousandComesBackToTheFirstBlock) {
    for (Place const &place : pooled) {
        SCOPED_TRACE(place.function);
        rkTest *test = suite::findTest(place.function);
        suite::Sets sets(test);
        ASSERT_TRUE(sets.next());
        g_calls.clear();
        long long clocks = 0;
        ASSERT_EQ(test->m_funcLoop(1500, &clocks), rkResSuccess);
        ASSERT_EQ(g_calls.size(), 1501u);
        EXPECT_EQ(g_calls[1000].plane, place.first);
        EXPECT_EQ(g_calls[1500].plane, place.block * 500 + place.first);
        expectArrays(g_calls[1500], place, 500);
    }
}

TEST_F(Deblocking, BlocksGoOnFromSetToSetAndStartOverWithTheTest) {
    rkTest *test = suite::findTest(pooled[0].function);
    for (int round = 0; round < 2; ++round) {
        suite::Sets sets(test);
        for (int set = 0; set < 3; ++set) {
            ASSERT_TRUE(sets.next());
            g_calls.clear();
            EXPECT_EQ(sets.call(), 0);
            ASSERT_EQ(g_calls.size(), 1u);
            EXPECT_EQ(g_calls[0].plane, 512 * set + 16);
        }
    }
}

TEST_F(Deblocking, HorizontalEdgesDoNotShowTheParameterOfTheCacheLine) {
    for (rkTest *test : *pTestList) {
        const std::string name = str(test->m_name);
        if (name.find("FilterDeblocking") == std::string::npos || name.find("HorEdge") == std::string::npos)
            continue;
        if (str(test->m_file).find("deblocking") == std::string::npos) continue;
        run(name);
        ASSERT_EQ(test->m_parms.size(), 1) << name;
        EXPECT_EQ(str((*test->m_parms.begin())->m_name), "deblocking_type");
    }
}

// ---- the pools ---------------------------------------------------------------------------------

// All samples of each block and its arrays, read back from where the filter expects them.
TEST_F(Deblocking, LumaBlocksStandTurnedOrSideBySide) {
    auto const &table = h264::LumaDeblockingData;
    for (int form = 0; form < 2; ++form) {
        suite::Sets sets(suite::findTest(pooled[form].function));
        for (int n = 0; sets.next(); ++n) {
            std::vector<suite::Block> blocks = poolInHand();
            const int shift = n < 4 ? 0 : 16;
            for (int i = 0; i < 1000; ++i) {
                Kel8u const *record = table.record(n % 4, i % 4);
                for (int k = 0; k < 20; ++k) {
                    for (int j = 0; j < 16; ++j) {
                        const int at = form ? k * 16000 + i * 16 + j : 512 * i + k + 32 * j + shift + 12;
                        ASSERT_EQ(blocks[0].data[at], record[16 * k + j]) << i << ", " << k << ", " << j;
                    }
                }
                ASSERT_EQ(memcmp(blocks[1].data + 2 * i, record + 320, 2), 0);
                ASSERT_EQ(memcmp(blocks[2].data + 2 * i, record + 322, 2), 0);
                ASSERT_EQ(memcmp(blocks[3].data + 16 * i, record + 324, 16), 0);
                ASSERT_EQ(memcmp(blocks[4].data + 16 * i, record + 340, 16), 0);
            }
        }
    }
}

TEST_F(Deblocking, PairsStandBesideEachOtherInTurnedBlocks) {
    auto const &table = h264::ChromaDeblockingDataNV12;
    suite::Sets sets(suite::findTest(paired[0].function));
    for (int set = 0; sets.next(); ++set) {
        std::vector<suite::Block> blocks = poolInHand();
        const int shift = set < 4 ? 0 : 56;
        for (int i = 0; i < 16001; ++i) {
            Kel8u const *record = table.record(set % 4, i % 4);
            for (int n = 0; n <= 18; n += 2) {
                for (int m = 0; m < 8; ++m) {
                    Kel8u const *pair = blocks[0].data + (m + 8 * i) * 64 + n + shift + 4;
                    ASSERT_EQ(pair[0], record[m + 8 * n]);
                    ASSERT_EQ(pair[1], record[m + 8 * n + 1]);
                }
            }
        }
    }
}

// The later half of the blocks lies over rows of the first half.
TEST_F(Deblocking, PairsSideBySideOverlap) {
    auto const &table = h264::ChromaDeblockingDataNV12;
    suite::Sets sets(suite::findTest(paired[1].function));
    ASSERT_TRUE(sets.next());
    Kel8u const *pool = poolInHand()[0].data;
    for (int i = 0; i < 1000; ++i) {
        Kel8u const *record = table.record(0, i % 4);
        for (int k = 0; k < 12; ++k) {
            Kel8u const *row = record + 16 * (i < 500 && k > 0 ? k - 1 : k);
            ASSERT_EQ(memcmp(pool + i * 16 + k * 8000, row, 8), 0) << i << ", " << k;
            ASSERT_EQ(pool[i * 16 + k * 8000 + 8], 2) << "the vectors' constant";
        }
    }
}

// Thresholds of 4:2:2 run on into the strengths; arrays of AVS are shorter than their copies.
TEST_F(Deblocking, ArraysAreCopiedInThePoolsSizes) {
    struct {
        char const *function;
        Kel8u const *table;
        int record, alpha, beta, thresholds, strengths, count;
    } const cases[] = {
        {repeated[0].function, h264::ChromaDeblockingData.bytes, 124, 96, 98, 100, 108, 16},
        {repeated[2].function, avs::LumaDeblockingData.bytes, 330, 320, 322, 324, 326, 16},
        {repeated[5].function, avs::ChromaDeblockingData.bytes, 103, 96, 97, 98, 99, 8},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.function);
        suite::Sets sets(suite::findTest(c.function));
        for (int set = 0; sets.next(); ++set) {
            std::vector<suite::Block> blocks = poolInHand();
            for (int i = 0; i < 1000; ++i) {
                Kel8u const *record = c.table + (set % 4 * 4 + i % 4) * c.record;
                ASSERT_EQ(memcmp(blocks[1].data + 2 * i, record + c.alpha, 2), 0);
                ASSERT_EQ(memcmp(blocks[2].data + 2 * i, record + c.beta, 2), 0);
                ASSERT_EQ(memcmp(blocks[3].data + c.count * i, record + c.thresholds, c.count), 0);
                ASSERT_EQ(memcmp(blocks[4].data + 16 * i, record + c.strengths, 16), 0);
            }
        }
    }
}

// ---- what the sets are for -------------------------------------------------------------------

namespace {

// Lines across the edge n of the luma record in hand that the filter changes; the whole strip is filtered
// once, call after call.
struct ChangedLines {
    int lines[4][4][4] = {}; // record, edge, segment: lines with a change on either side
    int deep[4][4] = {};     // record, segment: lines whose third sample in front of the first edge changes
};

ChangedLines changedLines(int set) {
    rkTest *test = suite::findTest("keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR");
    suite::Sets sets(test);
    for (int i = 0; i <= set; ++i) EXPECT_TRUE(sets.next());
    suite::Block pool = poolInHand()[0];
    const std::vector<Kel8u> before(pool.data, pool.data + pool.size);
    ChangedLines changed;
    for (int record = 0; record < 4; ++record) {
        EXPECT_EQ(sets.call(), 0);
        const int block = record + set * 4; // calls go on from set to set
        for (int col = 0; col < 16; ++col) {
            const auto differs = [&](int row) {
                const int at = row * 16000 + block % 4 * 16 + col;
                return pool.data[at] != before[at];
            };
            for (int edge = 0; edge < 4; ++edge)
                changed.lines[record][edge][col / 4] += differs(4 * edge + 3) || differs(4 * edge + 4);
            changed.deep[record][col / 4] += differs(1);
        }
    }
    return changed;
}

} // namespace

TEST_F(Deblocking, Set0FiltersEveryEdgeAndTheFirstOneStrongly) {
    ChangedLines changed = changedLines(0);
    for (int record = 0; record < 4; ++record) {
        for (int segment = 0; segment < 4; ++segment) {
            EXPECT_EQ(changed.deep[record][segment], 4);
            for (int edge = 0; edge < 4; ++edge) EXPECT_EQ(changed.lines[record][edge][segment], 4);
        }
    }
}

TEST_F(Deblocking, Set1FiltersEveryEdge) {
    ChangedLines changed = changedLines(1);
    for (int record = 0; record < 4; ++record) {
        for (int i = 0; i < 16; ++i) EXPECT_EQ(changed.lines[record][i / 4][i % 4], 4) << record << ", " << i;
    }
}

TEST_F(Deblocking, Set2SkipsTheSegmentsOfStrength0AndNoOthers) {
    ChangedLines changed = changedLines(2);
    for (int record = 0; record < 4; ++record) {
        for (int i = 0; i < 16; ++i) {
            const bool skipped = h264::lumaArrays[2][record].strengths[i] == 0;
            EXPECT_EQ(changed.lines[record][i / 4][i % 4], skipped ? 0 : 4) << record << ", " << i;
        }
    }
}

TEST_F(Deblocking, Set3LeavesTheFirstEdgeAloneAndWorksInside) {
    ChangedLines changed = changedLines(3);
    for (int record = 0; record < 4; ++record) {
        int inside = 0, lines = 0;
        for (int i = 0; i < 16; ++i) (i < 4 ? lines : inside) += changed.lines[record][i / 4][i % 4];
        EXPECT_EQ(lines, 0) << record;
        EXPECT_GT(inside, 0) << record;
        EXPECT_LT(inside, 40) << record << ": texture is left as it is";
    }
}

TEST_F(Deblocking, Set3Succeeds) {
    for (Expected const &expected : luma) EXPECT_EQ(run(expected.m_function).result, rkResSuccess);
    for (Expected const &expected : avsLuma) EXPECT_EQ(run(expected.m_function).result, rkResSuccess);
}

// After a default run each block differs from its copy, as if filtered once.
TEST_F(Deblocking, ADefaultRunLeavesEachBlockFilteredOnce) {
    rkTest *test = suite::findTest("keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR");
    suite::Sets sets(test);
    for (int set = 0; set < 4; ++set) {
        ASSERT_TRUE(sets.next());
        suite::Block pool = poolInHand()[0];
        std::vector<Kel8u> expected(pool.data, pool.data + pool.size);
        const std::vector<Kel8u> before = expected;
        for (int i = 0; i < 1000; ++i) {
            DeblockingArrays const &arrays = h264::lumaArrays[set][i % 4];
            keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR(expected.data() + 512 * i + 16, 32, arrays.alpha,
                                                          arrays.beta, arrays.thresholds, arrays.strengths);
            ASSERT_NE(memcmp(&expected[512 * i + 12], &before[512 * i + 12], 500), 0) << "block " << i;
        }
        statistic(test, 999);
        EXPECT_EQ(memcmp(pool.data, expected.data(), expected.size()), 0) << "set " << set;
    }
}

TEST_F(Deblocking, EveryFormHasWorkInEverySet) {
    for (std::vector<Expected> const *list : {&luma, &chroma, &chroma422, &avsLuma, &avsChroma}) {
        for (Expected const &expected : *list) {
            rkTest *test = suite::findTest(expected.m_function);
            suite::Sets sets(test);
            for (int set = 0; sets.next(); ++set) {
                suite::Block pool = poolInHand()[0];
                const std::vector<Kel8u> before(pool.data, pool.data + pool.size);
                statistic(test, 3);
                EXPECT_NE(memcmp(pool.data, before.data(), before.size()), 0)
                    << expected.m_function << ", set " << set;
            }
        }
    }
}

// ---- values that a user enters ------------------------------------------------------------------

TEST_F(Deblocking, ValuesBeyondTheTablesAreLimited) {
    rkTest *test = suite::findTest("keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR");
    suite::Sets sets(test);
    auto parm = test->m_parms.begin();
    (*parm)->translate("-7; 1000000");
    (*++parm)->translate("-1; 4; 2000000000");
    int count = 0;
    for (; sets.next(); ++count) {
        const int set = count % 3 ? 3 : 0;
        const int shift = count / 3 ? 16 : 0;
        std::vector<suite::Block> blocks = poolInHand();
        EXPECT_EQ(blocks[0].data[12 + shift], h264::LumaDeblockingData.record(set, 0)[0]);
        EXPECT_EQ(memcmp(blocks[1].data, h264::lumaArrays[set][0].alpha, 2), 0);
        EXPECT_EQ(sets.call(), 0);
    }
    EXPECT_EQ(count, 6);
}

// ---- the edge between frame and field macroblocks ----------------------------------------------------

TEST_F(Deblocking, MixedEdgesStandInARampWithConstantArrays) {
    for (Expected const &expected : mbaff) {
        suite::Sets sets(suite::findTest(expected.m_function));
        int count = 0;
        for (; sets.next(); ++count) {
            ASSERT_EQ(poolInHand().size(), 1u);
            suite::Block block = poolInHand()[0];
            for (int i = 0; i < 1024; ++i) ASSERT_EQ(block.data[i], i / 32 + i % 32 + 100);
            g_calls.clear();
            EXPECT_EQ(sets.call(), 0);
            ASSERT_EQ(g_calls.size(), 1u);
            EXPECT_EQ(g_calls[0].plane, 144);
            EXPECT_EQ(g_calls[0].step, 32);
        }
        EXPECT_EQ(count, 4);
    }
}

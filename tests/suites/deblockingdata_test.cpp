// deblockingdata_test.cpp - the pools of the suites of deblocking filters, and that their sets of data do
// what they are for.

#include <cstring>

#include "deblockingtablesavs.h"
#include "deblockingtablesh264.h"
#include "kmvc.h"
#include "suitetest.h"

namespace {

// A form with planar data: its table, and where sample (k, j) of block i lies.
struct Layout {
    char const *function;
    Kel8u const *table;
    RecordShape shape;
    int block, row, column, first, shift;
};

// clang-format off
const Layout layouts[] = {
    {"keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR", h264::LumaDeblockingData.bytes, h264::lumaShape, 512, 1, 32, 12, 16},
    {"keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR", h264::LumaDeblockingData.bytes, h264::lumaShape, 16, 16000, 1, 0, 0},
    {"keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR", h264::ChromaDeblockingData.bytes, h264::chromaShape, 512, 1, 64, 4, 56},
    {"keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR", h264::ChromaDeblockingData.bytes, h264::chromaShape, 8, 8000, 1, 0, 0},
    {"keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR", h264::ChromaDeblockingData.bytes, h264::chromaShape, 1024, 1, 64, 12, 112},
    {"keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR", h264::ChromaDeblockingData.bytes, h264::chromaShape, 16, 16000, 1, 0, 0},
    {"keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR", avs::LumaDeblockingData.bytes, avs::lumaShape, 512, 1, 32, 12, 16},
    {"keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR", avs::LumaDeblockingData.bytes, avs::lumaShape, 16, 16000, 1, 0, 0},
    {"keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR", avs::ChromaDeblockingData.bytes, avs::chromaShape, 512, 1, 64, 4, 56},
    {"keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR", avs::ChromaDeblockingData.bytes, avs::chromaShape, 8, 8000, 1, 0, 0},
};
// clang-format on

const char pairsTurned[] = "keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR";
const char pairsInAStrip[] = "keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR";

// The blocks of the test in hand: those of other files, which stay behind, are older.
std::vector<suite::Block> poolInHand() {
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    if (blocks.size() > 5) blocks.erase(blocks.begin(), blocks.end() - 5);
    return blocks;
}

// Bytes of the pool that differ from the table's.
int misplaced(Kel8u const *pool, Kel8u const *record, Layout const &layout, int first) {
    int count = 0;
    for (int k = 0; k < layout.shape.rows; ++k) {
        for (int j = 0; j < layout.shape.cols; ++j)
            count += pool[first + k * layout.row + j * layout.column] != record[k * layout.shape.cols + j];
    }
    return count;
}

class DeblockingData : public suite::SuiteTest {
protected:
    // The test's own statistic on the set in hand.
    static void statistic(rkTest *test, int calls) {
        long long clocks = 0;
        EXPECT_EQ(test->m_funcStat(&calls, &clocks), rkResSuccess);
    }
};

} // namespace

// ---- the pools ---------------------------------------------------------------------------------

TEST_F(DeblockingData, BlocksStandTurnedOrSideBySide) {
    for (Layout const &layout : layouts) {
        SCOPED_TRACE(layout.function);
        suite::Sets sets(suite::findTest(layout.function));
        for (int set = 0; sets.next(); ++set) {
            Kel8u const *pool = poolInHand()[0].data;
            for (int i = 0; i < 1000; ++i) {
                Kel8u const *record = layout.table + (set % 4 * 4 + i % 4) * layout.shape.bytes();
                const int first = i * layout.block + layout.first + set / 4 * layout.shift;
                ASSERT_EQ(misplaced(pool, record, layout, first), 0) << "set " << set << ", block " << i;
            }
        }
    }
}

TEST_F(DeblockingData, PairsStandBesideEachOtherInTurnedBlocks) {
    auto const &table = h264::ChromaDeblockingDataNV12;
    suite::Sets sets(suite::findTest(pairsTurned));
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
TEST_F(DeblockingData, PairsSideBySideOverlap) {
    auto const &table = h264::ChromaDeblockingDataNV12;
    suite::Sets sets(suite::findTest(pairsInAStrip));
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
TEST_F(DeblockingData, ArraysAreCopiedInThePoolsSizes) {
    struct {
        char const *function;
        Kel8u const *table;
        int record, alpha, beta, thresholds, strengths, count;
    } const cases[] = {
        {layouts[0].function, h264::LumaDeblockingData.bytes, 356, 320, 322, 324, 340, 16},
        {layouts[3].function, h264::ChromaDeblockingData.bytes, 124, 96, 98, 100, 108, 8},
        {pairsTurned, h264::ChromaDeblockingDataNV12.bytes, 348, 320, 322, 324, 332, 8},
        {layouts[4].function, h264::ChromaDeblockingData.bytes, 124, 96, 98, 100, 108, 16},
        {layouts[6].function, avs::LumaDeblockingData.bytes, 330, 320, 322, 324, 326, 16},
        {layouts[9].function, avs::ChromaDeblockingData.bytes, 103, 96, 97, 98, 99, 8},
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

TEST_F(DeblockingData, Set0FiltersEveryEdgeAndTheFirstOneStrongly) {
    ChangedLines changed = changedLines(0);
    for (int record = 0; record < 4; ++record) {
        for (int segment = 0; segment < 4; ++segment) {
            EXPECT_EQ(changed.deep[record][segment], 4);
            for (int edge = 0; edge < 4; ++edge) EXPECT_EQ(changed.lines[record][edge][segment], 4);
        }
    }
}

TEST_F(DeblockingData, Set1FiltersEveryEdge) {
    ChangedLines changed = changedLines(1);
    for (int record = 0; record < 4; ++record) {
        for (int i = 0; i < 16; ++i) EXPECT_EQ(changed.lines[record][i / 4][i % 4], 4) << record << ", " << i;
    }
}

TEST_F(DeblockingData, Set2SkipsTheSegmentsOfStrength0AndNoOthers) {
    ChangedLines changed = changedLines(2);
    for (int record = 0; record < 4; ++record) {
        for (int i = 0; i < 16; ++i) {
            const bool skipped = h264::lumaArrays[2][record].strengths[i] == 0;
            EXPECT_EQ(changed.lines[record][i / 4][i % 4], skipped ? 0 : 4) << record << ", " << i;
        }
    }
}

TEST_F(DeblockingData, Set3LeavesTheFirstEdgeAloneAndWorksInside) {
    ChangedLines changed = changedLines(3);
    for (int record = 0; record < 4; ++record) {
        int inside = 0, lines = 0;
        for (int i = 0; i < 16; ++i) (i < 4 ? lines : inside) += changed.lines[record][i / 4][i % 4];
        EXPECT_EQ(lines, 0) << record;
        EXPECT_GT(inside, 0) << record;
        EXPECT_LT(inside, 40) << record << ": texture is left as it is";
    }
}

TEST_F(DeblockingData, Set3Succeeds) {
    for (Layout const &layout : layouts) EXPECT_EQ(run(layout.function).result, rkResSuccess);
}

// After a default run each block differs from its copy, as if filtered once.
TEST_F(DeblockingData, ADefaultRunLeavesEachBlockFilteredOnce) {
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

TEST_F(DeblockingData, EveryFormHasWorkInEverySet) {
    std::vector<std::string> functions = {pairsTurned, pairsInAStrip};
    for (Layout const &layout : layouts) functions.push_back(layout.function);
    for (std::string const &function : functions) {
        rkTest *test = suite::findTest(function);
        suite::Sets sets(test);
        for (int set = 0; sets.next(); ++set) {
            suite::Block pool = poolInHand()[0];
            const std::vector<Kel8u> before(pool.data, pool.data + pool.size);
            statistic(test, 3);
            EXPECT_NE(memcmp(pool.data, before.data(), before.size()), 0) << function << ", set " << set;
        }
    }
}

// ---- values that a user enters ------------------------------------------------------------------

TEST_F(DeblockingData, ValuesBeyondTheTablesAreLimited) {
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

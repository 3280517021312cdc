// deblocking_test.cpp - the suites of deblocking filters: which blocks they filter, with which arrays, and
// that the sets of data do what they are for.

#include <algorithm>

#include "../unit/text.h"
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
    Kel8u const *alphas, *betas, *thresholdBytes, *strengthBytes; // as they were passed
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
    g_calls.push_back({placeOf(p), placeOf(a), placeOf(b), placeOf(t), placeOf(s), step, a, b, t, s});
}

void note(KeliDeblockingInfo const *info) {
    note(info->pSrcDst, info->srcDstStep, info->pAlpha, info->pBeta, info->pThresholds, info->pStrengths);
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
        const int size = suite::Sets::blocks()[0].size;
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
    int forms = 0;
    for (rkTest *test : *pTestList) {
        const std::string name = str(test->m_name);
        if (name.find("FilterDeblocking") == std::string::npos || name.find("HorEdge") == std::string::npos)
            continue;
        if (name.find("_H264_") == std::string::npos && name.find("_AVS_") == std::string::npos) continue;
        run(name);
        ASSERT_EQ(test->m_parms.size(), 1) << name;
        EXPECT_EQ(str((*test->m_parms.begin())->m_name), "deblocking_type");
        ++forms;
    }
    EXPECT_EQ(forms, 6);
}

// ---- the edge between frame and field macroblocks ----------------------------------------------------

namespace {

void expectConstantArrays(FilterCall const &call, int beta, int strength) {
    EXPECT_EQ(call.alphas[0], 12);
    EXPECT_EQ(call.betas[0], beta);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(call.thresholdBytes[i], 1) << i;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(call.strengthBytes[i], strength) << i;
}

} // namespace

TEST_F(Deblocking, MixedEdgesStandInARampWithConstantArrays) {
    for (Expected const &expected : mbaff) {
        suite::Sets sets(suite::findTest(expected.m_function));
        int count = 0;
        for (; sets.next(); ++count) {
            ASSERT_EQ(suite::Sets::blocks().size(), 1u);
            suite::Block block = suite::Sets::blocks()[0];
            for (int i = 0; i < 1024; ++i) ASSERT_EQ(block.data[i], i / 32 + i % 32 + 100);
            g_calls.clear();
            EXPECT_EQ(sets.call(), 0);
            ASSERT_EQ(g_calls.size(), 1u);
            EXPECT_EQ(g_calls[0].plane, 144);
            EXPECT_EQ(g_calls[0].step, 32);
            expectConstantArrays(g_calls[0], count / 2 ? 12 : 6, count % 2 ? 4 : 1);
        }
        EXPECT_EQ(count, 4);
    }
}

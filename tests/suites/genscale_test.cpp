// genscale_test.cpp - the suites of scale levels and of CAVLC for chroma DC: calls, data, and what a failure
// of scale levels stops.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;

const std::vector<Expected> levels = {
    Expected("Timvc_H264_GenScale", "keliGenScaleLevel8x8_H264_8u16s_D2", " ", 1)
        .blocks({64, 2560, 128, 128})
        .writes({2, 3}),
    Expected("Timvc_H264_GenScale", "keliGenScaleLevel4x4_H264_8u16s_C1", " ", 1)
        .blocks({64, 2560, 128, 128})
        .writes({2, 3}),
};

Expected chroma(char const *function, int bytes) {
    return Expected("Timvc_H264_EncodeChroma", function, " ", 1).blocks({bytes, bytes, 8}).writes({1, 2});
}

const std::vector<Expected> chromas = {
    chroma("keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s", 32),
    chroma("keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s", 16),
    chroma("keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s", 32),
};

KelStatus g_status = kelStsNoErr; // what the functions of scale levels answer, if they are to fail

class GenScale : public suite::SuiteTest {
protected:
    void expectCall(Expected const &expected, std::vector<Arg> const &args) {
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, expected.m_function);
        ASSERT_EQ(calls.size(), 1u);
        expectArgs(calls[0], args, expected.m_blocks);
    }
    suite::Outcome runWithStatus(KelStatus status, char const *function) {
        g_status = status;
        suite::Outcome outcome = run(function);
        g_status = kelStsNoErr;
        return outcome;
    }
};

char const *const starters[] = {"keliTransformQuantInvLumaDC4x4_H264_16s_C1I",
                                "keliQuantLuma8x8Inv_H264_16s_C1I"};

} // namespace

SUITE_TEST(GenScale, "genscale.cpp", levels);
SUITE_TEST(EncodeChroma, "encodechroma.cpp", chromas);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliGenScaleLevel8x8_H264_8u16s_D2(const Kel8u *src, int step, Kel16s *inverse, Kel16s *forward,
                                             int qpRem) {
    const KelStatus status = SPY(keliGenScaleLevel8x8_H264_8u16s_D2, src, step, inverse, forward, qpRem);
    return g_status ? g_status : status;
}

KelStatus keliGenScaleLevel4x4_H264_8u16s_C1(const Kel8u *src, Kel16s *inverse, Kel16s *forward, int qpRem) {
    const KelStatus status = SPY(keliGenScaleLevel4x4_H264_8u16s_C1, src, inverse, forward, qpRem);
    return g_status ? g_status : status;
}

#define CHROMA_SPY(function, T)                                                                        \
    KelStatus function(const T *src, Kel8u *ones, Kel8u *signs, Kel8u *count, Kel8u *zeros, T *values, \
                       Kel8u *runs) {                                                                  \
        return SPY(function, src, ones, signs, count, zeros, values, runs);                            \
    }

CHROMA_SPY(keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s, Kel32s)
CHROMA_SPY(keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s, Kel16s)
CHROMA_SPY(keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s, Kel32s)

// ---- scale levels -----------------------------------------------------------------------

TEST_F(GenScale, LevelsOf8x8ComeFromAPicture) {
    expectCall(levels[0], {block(1), value(320), block(2), block(3), value(2)});
}

TEST_F(GenScale, LevelsOf4x4ComeFromAVector) {
    expectCall(levels[1], {block(0), block(2), block(3), value(2)});
}

TEST_F(GenScale, ListsHoldTheDefaultConstant) {
    suite::Sets sets(suite::findTest("keliGenScaleLevel8x8_H264_8u16s_D2"));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 4u);
    for (int which : {0, 1}) {
        for (int i = 0; i < blocks[which].size; ++i) ASSERT_EQ(blocks[which].data[i], 2) << which;
    }
}

// ---- scale levels of other suites -------------------------------------------------------

// In the order of the library: list, inverse levels, forward levels; at QP 2.
TEST_F(GenScale, TransformSuitesMakeTheirLevelsAtTheStart) {
    g_seen.clear();
    run(starters[0]);
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_EQ(g_seen[0].function, "keliGenScaleLevel4x4_H264_8u16s_C1");
    expectArgs(g_seen[0], {block(0), block(2), block(1), value(2)}, {16, 32, 32});
    g_seen.clear();
    run(starters[1]);
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_EQ(g_seen[0].function, "keliGenScaleLevel8x8_H264_8u16s_D2");
    expectArgs(g_seen[0], {block(0), value(8), block(2), block(1), value(2)}, {64, 128, 128});
}

TEST_F(GenScale, TransformSuitesDoNotStartWithoutLevels) {
    for (char const *function : starters) {
        suite::Outcome outcome = runWithStatus(kelStsRangeErr, function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_NE(outcome.log.find("-- Can't start timing\n"), std::string::npos) << outcome.log;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

TEST_F(GenScale, WarningOfTheLevelsDoesNotStopATransformSuite) {
    for (char const *function : starters)
        EXPECT_FALSE(runWithStatus(kelStsOverflow, function).rows.empty()) << function;
}

// ---- chroma DC ----------------------------------------------------------------------------

TEST_F(GenScale, ChromaDCGoesToCountsLevelsAndRuns) {
    for (Expected const &expected : chromas)
        expectCall(expected, {block(0), own(), own(), own(), own(), block(1), block(2)});
}

TEST_F(GenScale, ChromaDCIsAllTwos) {
    suite::Sets sets(suite::findTest("keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s"));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 3u);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(blocks[0].data[i], i % 2 ? 0 : 2);
    EXPECT_EQ(sets.call(), 0);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(blocks[1].data[i], i % 2 ? 0 : 2); // each is a level
    for (int i = 0; i < 8; ++i) EXPECT_EQ(blocks[2].data[i], 0);
}

TEST_F(GenScale, WithoutMemoryThereIsNoSet) {
    for (char const *function :
         {"keliGenScaleLevel4x4_H264_8u16s_C1", "keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s"}) {
        NoSecondBlock full;
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

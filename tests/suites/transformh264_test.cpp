// transformh264_test.cpp - the suites of transforms and quantisers of H.264 with scale levels: parameters,
// calls, data.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

const Cells none = {"-"}; // of the dummy, which has no name either
const Cells intra = {"Intra", "-"}, needTransform = {"NeedTransform", "-"};
const Cells scaleLevels = {"UserScaleLevels", "DefaultScaleLevels"};

Expected withIntra(char const *function, std::vector<int> sizes) {
    return Expected("Timvc_H264_Transform", function, " ", 1)
        .parm("", none)
        .parm("Intra", intra)
        .parm("", none)
        .parm("ScaleLevels", scaleLevels)
        .blocks(std::move(sizes));
}

Expected forwardLumaDC(char const *function, int bytes) {
    return Expected("Timvc_H264_Transform", function, " ", 1)
        .parm("", none)
        .parm("", none)
        .parm("NeedTransform", needTransform)
        .parm("ScaleLevels", scaleLevels)
        .blocks({32, 32, 32, bytes, bytes, 1280, 1280})
        .updates({3, 4});
}

Expected forwardChromaDC(char const *function, int bytes) {
    return Expected("Timvc_H264_Transform", function, " ", 1)
        .parm("", none)
        .parm("Intra", intra)
        .parm("NeedTransform", needTransform)
        .parm("ScaleLevels", scaleLevels)
        .blocks({32, 32, 32, bytes, bytes, 1280, 1280})
        .updates({3, 4});
}

Expected inverseDC(char const *function, int bytes) {
    return Expected("Timvc_H264_Transform", function, " ", 1)
        .parm("", none)
        .parm("", none)
        .parm("", none)
        .parm("ScaleLevels", scaleLevels)
        .blocks({32, 32, 32, bytes, bytes, 1280, 1280})
        .updates({3});
}

const std::vector<int> narrow = {32, 32, 32, 32, 32, 1280, 1280};

const std::vector<Expected> transforms = {
    withIntra("keliTransformQuantFwd4x4_H264_16s_C1", narrow).writes({4}),
    withIntra("keliTransformQuantFwd4x4_H264_16s32s_C1", {32, 32, 32, 32, 64, 1280, 1280}).writes({4}),
    withIntra("keliTransformQuantInvAddPred4x4_H264_16s_C1IR", narrow).writes({5}),
    withIntra("keliTransformQuantInvAddPred4x4_H264_32s_C1IR", {32, 32, 32, 64, 64, 2560, 2560}).writes({5}),
    forwardLumaDC("keliTransformQuantFwdLumaDC4x4_H264_16s_C1I", 32),
    forwardLumaDC("keliTransformQuantFwdLumaDC4x4_H264_32s_C1I", 64),
    inverseDC("keliTransformQuantInvLumaDC4x4_H264_16s_C1I", 32),
    inverseDC("keliTransformQuantInvLumaDC4x4_H264_32s_C1I", 64),
    forwardChromaDC("keliTransformQuantFwdChromaDC2x2_H264_16s_C1I", 32),
    forwardChromaDC("keliTransformQuantFwdChromaDC2x2_H264_32s_C1I", 64),
    inverseDC("keliTransformQuantInvChromaDC2x2_H264_16s_C1I", 32),
    inverseDC("keliTransformQuantInvChromaDC2x2_H264_32s_C1I", 64),
    forwardChromaDC("keliTransformQuantFwdChromaDC2x4_H264_16s_C1I", 32),
    forwardChromaDC("keliTransformQuantFwdChromaDC2x4_H264_32s_C1I", 64),
    inverseDC("keliTransformQuantInvChromaDC2x4_H264_16s_C1I", 32),
    inverseDC("keliTransformQuantInvChromaDC2x4_H264_32s_C1I", 64),
};

Expected quant(char const *function, std::vector<int> sizes) {
    return Expected("Timvc_H264_Quant", function, " ", 1).parm("", none).blocks(std::move(sizes));
}

const std::vector<Expected> quants = {
    quant("keliTransformLuma8x8Fwd_H264_16s_C1I", {128, 128, 128, 128, 128, 2560, 2560}).updates({3}),
    quant("keliQuantLuma8x8_H264_16s_C1", {128, 128, 128, 128, 128, 2560, 2560})
        .parm("Intra", intra)
        .writes({4}),
    quant("keliQuantLuma8x8_H264_32s_C1", {128, 128, 128, 256, 256, 2560, 2560})
        .parm("Intra", intra)
        .writes({4}),
    quant("keliQuantLuma8x8Inv_H264_16s_C1I", {128, 128, 128, 128, 128, 2560, 2560}).updates({3}),
    quant("keliQuantInvLuma8x8_H264_32s_C1I", {128, 128, 128, 256, 256, 2560, 2560}).updates({3}),
    quant("keliTransformLuma8x8InvAddPred_H264_16s8u_C1R", {128, 128, 128, 128, 64, 2560, 2560}).writes({6}),
};

// ---- the blocks of a set ----------------------------------------------------------------

enum { FwdLevels, InvLevels, Scan, Src, Dst, DstImage, Pred };

class TransformH264 : public suite::SuiteTest {
protected:
    // The calls of all sets, in their order.
    void expectCalls(Expected const &expected, std::vector<std::vector<Arg>> const &calls) {
        SCOPED_TRACE(expected.m_function);
        suite::Outcome outcome;
        std::vector<SeenCall> seen = callsOf(outcome, expected.m_function);
        ASSERT_EQ(seen.size(), calls.size());
        for (size_t i = 0; i < calls.size(); ++i) expectArgs(seen[i], calls[i], expected.m_blocks);
    }
};

Arg levelsOf(bool user, int which) {
    return user ? block(which) : value(0);
}

template <class T>
std::vector<int> valuesOf(suite::Block const &data) {
    std::vector<int> values;
    for (int i = 0; i + static_cast<int>(sizeof(T)) <= data.size; i += sizeof(T)) {
        T x;
        memcpy(&x, data.data + i, sizeof x);
        values.push_back(static_cast<int>(x));
    }
    return values;
}

std::vector<int> sequence(int n) {
    std::vector<int> values;
    for (int i = 0; i < n; ++i) values.push_back(i);
    return values;
}

} // namespace

SUITE_TEST(TransformH264, "transformh264.cpp", transforms);
SUITE_TEST(QuantH264, "quanth264.cpp", quants);

// ---- the spies ----------------------------------------------------------------------

#define FORWARD_SPY(function, To)                                                                       \
    KelStatus function(const Kel16s *src, To *dst, int qp, int *count, int isIntra, const Kel16s *scan, \
                       int *last, const Kel16s *levels) {                                               \
        return SPY(function, src, dst, qp, count, isIntra, scan, last, levels);                         \
    }
#define LUMA_DC_SPY(function, T)                                                                    \
    KelStatus function(T *src, T *dst, int qp, int *count, int need, const Kel16s *scan, int *last, \
                       const Kel16s *levels) {                                                      \
        return SPY(function, src, dst, qp, count, need, scan, last, levels);                        \
    }
#define CHROMA_DC_SPY(function, T)                                                                        \
    KelStatus function(T *src, T *dst, int qp, int *count, int isIntra, int need, const Kel16s *levels) { \
        return SPY(function, src, dst, qp, count, isIntra, need, levels);                                 \
    }
#define INVERSE_SPY(function, T)                               \
    KelStatus function(T *src, int qp, const Kel16s *levels) { \
        return SPY(function, src, qp, levels);                 \
    }
#define QUANT_SPY(function, T)                                                                               \
    KelStatus function(const T *src, T *dst, int qp6, int isIntra, const Kel16s *scan, const Kel16s *levels, \
                       int *count, int *last) {                                                              \
        return SPY(function, src, dst, qp6, isIntra, scan, levels, count, last);                             \
    }

FORWARD_SPY(keliTransformQuantFwd4x4_H264_16s_C1, Kel16s)
FORWARD_SPY(keliTransformQuantFwd4x4_H264_16s32s_C1, Kel32s)
LUMA_DC_SPY(keliTransformQuantFwdLumaDC4x4_H264_16s_C1I, Kel16s)
LUMA_DC_SPY(keliTransformQuantFwdLumaDC4x4_H264_32s_C1I, Kel32s)
CHROMA_DC_SPY(keliTransformQuantFwdChromaDC2x2_H264_16s_C1I, Kel16s)
CHROMA_DC_SPY(keliTransformQuantFwdChromaDC2x2_H264_32s_C1I, Kel32s)
CHROMA_DC_SPY(keliTransformQuantFwdChromaDC2x4_H264_16s_C1I, Kel16s)
CHROMA_DC_SPY(keliTransformQuantFwdChromaDC2x4_H264_32s_C1I, Kel32s)
INVERSE_SPY(keliTransformQuantInvLumaDC4x4_H264_16s_C1I, Kel16s)
INVERSE_SPY(keliTransformQuantInvLumaDC4x4_H264_32s_C1I, Kel32s)
INVERSE_SPY(keliTransformQuantInvChromaDC2x2_H264_16s_C1I, Kel16s)
INVERSE_SPY(keliTransformQuantInvChromaDC2x2_H264_32s_C1I, Kel32s)
INVERSE_SPY(keliTransformQuantInvChromaDC2x4_H264_16s_C1I, Kel16s)
INVERSE_SPY(keliTransformQuantInvChromaDC2x4_H264_32s_C1I, Kel32s)
INVERSE_SPY(keliQuantLuma8x8Inv_H264_16s_C1I, Kel16s)
INVERSE_SPY(keliQuantInvLuma8x8_H264_32s_C1I, Kel32s)
QUANT_SPY(keliQuantLuma8x8_H264_16s_C1, Kel16s)
QUANT_SPY(keliQuantLuma8x8_H264_32s_C1, Kel32s)

KelStatus keliTransformQuantInvAddPred4x4_H264_16s_C1IR(const Kel8u *pred, int predStep, const Kel16s *src,
                                                        const Kel16s *dc, Kel8u *dst, int dstStep, int qp,
                                                        int ac, const Kel16s *levels) {
    return SPY(keliTransformQuantInvAddPred4x4_H264_16s_C1IR, pred, predStep, src, dc, dst, dstStep, qp, ac,
               levels);
}

KelStatus keliTransformQuantInvAddPred4x4_H264_32s_C1IR(const Kel16u *pred, int predStep, const Kel32s *src,
                                                        const Kel32s *dc, Kel16u *dst, int dstStep, int qp,
                                                        int ac, int bitDepth, const Kel16s *levels) {
    return SPY(keliTransformQuantInvAddPred4x4_H264_32s_C1IR, pred, predStep, src, dc, dst, dstStep, qp, ac,
               bitDepth, levels);
}

KelStatus keliTransformLuma8x8Fwd_H264_16s_C1I(Kel16s *src) {
    return SPY(keliTransformLuma8x8Fwd_H264_16s_C1I, src);
}

KelStatus keliTransformLuma8x8InvAddPred_H264_16s8u_C1R(const Kel8u *pred, int predStep, const Kel16s *src,
                                                        Kel8u *dst, int dstStep) {
    return SPY(keliTransformLuma8x8InvAddPred_H264_16s8u_C1R, pred, predStep, src, dst, dstStep);
}

// ---- calls of the 4x4 and DC transforms -------------------------------------------------

TEST_F(TransformH264, ForwardBlockGetsQPScanAndLevels) {
    std::vector<std::vector<Arg>> calls;
    for (int isIntra : {1, 0}) {
        for (bool user : {true, false})
            calls.push_back({block(Src), block(Dst), value(2), own(), value(isIntra), block(Scan), own(),
                             levelsOf(user, FwdLevels)});
    }
    expectCalls(transforms[0], calls);
    expectCalls(transforms[1], calls);
}

// "Intra" tells where the DC coefficient is.
TEST_F(TransformH264, InverseWithPredictionTakesItsDCFromTheSourceOrTheBlock) {
    std::vector<std::vector<Arg>> calls, deep;
    for (bool isIntra : {true, false}) {
        for (bool user : {true, false}) {
            const Arg dc = isIntra ? value(0) : block(Src), levels = levelsOf(user, InvLevels);
            calls.push_back({block(Pred), value(320), block(Src), dc, block(DstImage), value(320), value(2),
                             value(1), levels});
            deep.push_back({block(Pred), value(640), block(Src), dc, block(DstImage), value(640), value(2),
                            value(1), value(12), levels});
        }
    }
    expectCalls(transforms[2], calls);
    expectCalls(transforms[3], deep);
}

TEST_F(TransformH264, ForwardLumaDCTellsWhetherToTransform) {
    std::vector<std::vector<Arg>> calls;
    for (int need : {1, 0}) {
        for (bool user : {true, false})
            calls.push_back({block(Src), block(Dst), value(2), own(), value(need), block(Scan), own(),
                             levelsOf(user, FwdLevels)});
    }
    expectCalls(transforms[4], calls);
    expectCalls(transforms[5], calls);
}

TEST_F(TransformH264, ForwardChromaDCHasBothFlags) {
    std::vector<std::vector<Arg>> calls;
    for (int isIntra : {1, 0}) {
        for (int need : {1, 0}) {
            for (bool user : {true, false})
                calls.push_back({block(Src), block(Dst), value(2), own(), value(isIntra), value(need),
                                 levelsOf(user, FwdLevels)});
        }
    }
    for (int i : {8, 9, 12, 13}) expectCalls(transforms[i], calls);
}

TEST_F(TransformH264, InverseDCHasNothingButLevels) {
    const std::vector<std::vector<Arg>> calls = {{block(Src), value(2), block(InvLevels)},
                                                 {block(Src), value(2), value(0)}};
    for (int i : {6, 7, 10, 11, 14, 15}) expectCalls(transforms[i], calls);
}

TEST_F(TransformH264, ChromaInverseShowsTheDummyInTheColumnsOfItsNeighbours) {
    suite::Rows rows = run("keliTransformQuantInvChromaDC2x2_H264_16s_C1I").rows;
    ASSERT_EQ(rows.size(), 2u);
    for (suite::Cells const &row : rows) {
        for (size_t i = 0; i < 3; ++i) EXPECT_EQ(row[suite::firstParm + i], "-");
    }
    EXPECT_EQ(rows[0][suite::firstParm + 3], "UserScaleLevels");
    EXPECT_EQ(rows[1][suite::firstParm + 3], "DefaultScaleLevels");
}

TEST_F(TransformH264, LibraryAcceptsNoScaleLevels) {
    for (Expected const &expected : transforms) {
        suite::Sets sets(suite::findTest(expected.m_function));
        bool isUser = true;
        for (; sets.next(); isUser = !isUser) {
            g_seen.clear();
            EXPECT_EQ(sets.call(), 0) << expected.m_function;
            ASSERT_EQ(g_seen.size(), 1u);
            EXPECT_EQ(g_seen[0].args.back().data != nullptr, isUser) << expected.m_function;
        }
    }
}

// ---- data of the 4x4 and DC transforms --------------------------------------------------

// Levels of the flat list at QP 2.
TEST_F(TransformH264, ScaleLevelsAreThoseOfTheFlatList) {
    suite::Sets sets(suite::findTest("keliTransformQuantFwd4x4_H264_16s_C1"));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 7u);
    const int factors[] = {10082, 6554, 4194}, steps[] = {13, 16, 20};
    std::vector<int> forward, inverse;
    for (int i = 0; i < 16; ++i) {
        const int odd = i / 4 % 2 + i % 2;
        forward.push_back(factors[odd]);
        inverse.push_back(16 * steps[odd]);
    }
    EXPECT_EQ(valuesOf<Kel16s>(blocks[FwdLevels]), forward);
    EXPECT_EQ(valuesOf<Kel16s>(blocks[InvLevels]), inverse);
    EXPECT_EQ(valuesOf<Kel16s>(blocks[Scan]), sequence(16));
}

TEST_F(TransformH264, BlocksAndPicturesHoldTheDefaultConstant) {
    suite::Sets sets(suite::findTest("keliTransformQuantFwd4x4_H264_16s32s_C1"));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 7u);
    EXPECT_EQ(valuesOf<Kel16s>(blocks[Src]), std::vector<int>(16, 2));
    EXPECT_EQ(valuesOf<Kel32s>(blocks[Dst]), std::vector<int>(16, 2));
    EXPECT_EQ(valuesOf<Kel8u>(blocks[DstImage]), std::vector<int>(1280, 2));
    EXPECT_EQ(valuesOf<Kel8u>(blocks[Pred]), std::vector<int>(1280, 2));
}

TEST_F(TransformH264, LevelsAndScanStayFromSetToSet) {
    suite::Sets sets(suite::findTest("keliTransformQuantFwdChromaDC2x2_H264_16s_C1I"));
    ASSERT_TRUE(sets.next());
    unsigned char *const scan = suite::Sets::blocks()[Scan].data;
    memset(scan, 1, 32);
    for (int i = 1; i < 8; ++i) {
        ASSERT_TRUE(sets.next());
        ASSERT_EQ(suite::Sets::blocks().size(), 7u);
        EXPECT_EQ(suite::Sets::blocks()[Scan].data, scan);
        EXPECT_EQ(scan[31], 1);
    }
    EXPECT_FALSE(sets.next());
    EXPECT_EQ(suite::Sets::blocks().size(), 3u);
}

// ---- the 8x8 quantisers -----------------------------------------------------------------

TEST_F(TransformH264, QuantisersOf8x8GetTheirScanAndForwardLevels) {
    std::vector<std::vector<Arg>> calls;
    for (int isIntra : {1, 0})
        calls.push_back(
            {block(Src), block(Dst), value(2), value(isIntra), block(Scan), block(FwdLevels), own(), own()});
    expectCalls(quants[1], calls);
    expectCalls(quants[2], calls);
}

TEST_F(TransformH264, InversesOf8x8GetTheirInverseLevels) {
    const std::vector<std::vector<Arg>> calls = {{block(Src), value(2), block(InvLevels)}};
    expectCalls(quants[3], calls);
    expectCalls(quants[4], calls);
}

TEST_F(TransformH264, TransformsOf8x8GetBlocksAndPictures) {
    expectCalls(quants[0], {{block(Src)}});
    expectCalls(quants[5], {{block(5), value(320), block(Src), block(6), value(320)}});
}

// The scaling list is the first that is drawn.
TEST_F(TransformH264, ScaleLevelsOf8x8AreThoseOfARandomList) {
    suite::Sets sets(suite::findTest("keliQuantLuma8x8_H264_16s_C1"));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 7u);
    kmVector::m_seed = 7;
    kmVector list(8);
    ASSERT_TRUE(list.createVectorExt(64, 0, SetRandom, 1.0, 255.0));
    Kel16s inverse[64], forward[64];
    ASSERT_EQ(kelStsNoErr, keliGenScaleLevel8x8_H264_8u16s_D2(list.p8u, 8, inverse, forward, 2));
    EXPECT_EQ(memcmp(blocks[FwdLevels].data, forward, sizeof forward), 0);
    EXPECT_EQ(memcmp(blocks[InvLevels].data, inverse, sizeof inverse), 0);
    EXPECT_NE(forward[0], forward[4]); // two places of one factor, with weights of their own
    EXPECT_EQ(valuesOf<Kel16s>(blocks[Scan]), sequence(64));
    EXPECT_EQ(valuesOf<Kel16s>(blocks[Src]), std::vector<int>(64, 2));
}

// ---- without memory ---------------------------------------------------------------------

TEST_F(TransformH264, WithoutMemoryNoTestStarts) {
    for (char const *function : {"keliTransformQuantFwd4x4_H264_16s_C1", "keliQuantLuma8x8_H264_16s_C1"}) {
        NoSecondBlock full;
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_NE(outcome.log.find("-- Can't start timing\n"), std::string::npos) << outcome.log;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
        rkTest::m_vectorShift = 0; // as no set has begun that would do it
    }
}

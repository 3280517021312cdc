// transform_test.cpp - the suites of the older transforms of H.264 and of single steps of 4x4 residuals.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

const Cells zero = {"0"};
const Cells acs = {"AC=0", "AC=1"}, dcs = {"pDC=0", "pDC!=0"}, steps = {"step=16", "step=17"};
const Cells switches = {"Switch=0", "Switch=1"}, rcs = {"rc=0", "rc=1"};
const Cells needs = {"NeedTransform=0", "NeedTransform=1"};

// What of the long list of parameters is real.
struct Real {
    bool block = false, step = false, switching = false, rc = false;
};

Expected transform(char const *function, Real real) {
    return Expected("rk_Transform", function, "all", 1)
        .parm("len", zero)
        .parm("AC", real.block ? acs : zero)
        .parm("DC", real.block ? dcs : zero)
        .parm("step", real.step ? steps : zero)
        .parm("Switch", real.switching ? switches : zero)
        .parm("rc", real.rc ? rcs : zero)
        .parm("NeedTransform", zero);
}

Expected dcQuantiser(char const *function, bool hasRc) {
    return Expected("rk_Transform", function, "all", 1)
        .parm("len", zero)
        .parm("rc", hasRc ? rcs : zero)
        .parm("NeedTransform", needs)
        .blocks({800, 400, 800})
        .updates({0, 2});
}

const std::vector<int> bytes = {800, 400, 400}, words = {800, 400, 800};

const std::vector<Expected> transforms = {
    transform("keliTransformDequantLumaDC_H264_16s_C1I", {}).blocks(bytes).updates({0}),
    transform("keliTransformDequantChromaDC_H264_16s_C1I", {}).blocks(bytes).updates({0}),
    transform("keliDequantTransformResidual_H264_16s_C1I", {true, true, false, false})
        .blocks(bytes)
        .updates({0}),
    transform("keliDequantTransformResidualAndAdd_H264_16s_C1I", {true, true, false, false})
        .blocks(bytes)
        .writes({2}),
    transform("keliTransformPrediction_H264_8u16s_C1", {false, true, false, false}).blocks(bytes).writes({0}),
    transform("keliDequantTransformResidual_SISP_H264_16s_C1I", {true, false, true, false})
        .blocks(words)
        .updates({0}),
    transform("keliTransformDequantChromaDC_SISP_H264_16s_C1I", {false, false, true, false})
        .blocks(words)
        .updates({0}),
    dcQuantiser("keliTransformQuantChromaDC_H264_16s_C1I", true),
    dcQuantiser("keliTransformQuantLumaDC_H264_16s_C1I", false),
    transform("keliTransformQuantResidual_H264_16s_C1I", {false, false, false, true})
        .blocks(bytes)
        .updates({0}),
};

Expected quantiser(char const *function, int size) {
    return Expected("rk_QuantResidual4x4", function, "per iteration", 1)
        .parm("QP value", {"2", "17", "32", "47"})
        .stat(1023)
        .blocks({size, size})
        .writes({1});
}

Expected residual(char const *function, int written) {
    return Expected("rk_TransformResidual4x4", function, "per iteration", 1)
        .stat(1023)
        .blocks({32, 32, 64, 64})
        .writes({written});
}

const std::vector<Expected> residuals = {
    quantiser("keliQuantizeResidual4x4Fwd_H264_16s_C1", 32),
    quantiser("keliQuantizeResidual4x4Fwd_H264_16s32s_C1", 32),
    quantiser("keliQuantizeResidual4x4Fwd_H264_32s_C1", 64),
    residual("keliTransformResidual4x4Fwd_H264_16s_C1", 1),
    residual("keliTransformResidual4x4Fwd_H264_32s_C1", 3),
    residual("keliTransformResidual4x4Inv_H264_16s_C1", 1),
    residual("keliTransformResidual4x4Inv_H264_32s_C1", 3),
};

// ---- the blocks of a set ----------------------------------------------------------------

enum { SrcDst, Pred, Rec, DC };

std::vector<Kel16s> g_scan;    // of the last call of a quantiser of residuals
std::vector<Kel32s> g_factors; // of the last call that had some

// Where the last transform with a quantiser was to store its count, and what stood there before.
struct Count {
    int *place;
    int before;
} g_count;

class TransformSuite : public suite::SuiteTest {
protected:
    std::vector<SeenCall> calls(Expected const &expected) {
        suite::Outcome outcome;
        return callsOf(outcome, expected.m_function);
    }
    void expectCalls(Expected const &expected, std::vector<std::vector<Arg>> const &args) {
        SCOPED_TRACE(expected.m_function);
        std::vector<SeenCall> seen = calls(expected);
        ASSERT_EQ(seen.size(), args.size());
        std::vector<int> sizes = expected.m_blocks;
        sizes.push_back(8); // a DC coefficient's block, where there is one
        for (size_t i = 0; i < args.size(); ++i) expectArgs(seen[i], args[i], sizes);
    }
};

Arg dcOf(int flag) {
    return flag ? block(DC) : value(0);
}

} // namespace

SUITE_TEST(Transform, "transform.cpp", transforms);
SUITE_TEST(Residual4x4, "residual4x4.cpp", residuals);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliTransformDequantLumaDC_H264_16s_C1I(Kel16s *data, int qp) {
    return SPY(keliTransformDequantLumaDC_H264_16s_C1I, data, qp);
}

KelStatus keliTransformDequantChromaDC_H264_16s_C1I(Kel16s *data, int qp) {
    return SPY(keliTransformDequantChromaDC_H264_16s_C1I, data, qp);
}

KelStatus keliDequantTransformResidual_H264_16s_C1I(Kel16s *data, int step, const Kel16s *dc, int ac,
                                                    int qp) {
    return SPY(keliDequantTransformResidual_H264_16s_C1I, data, step, dc, ac, qp);
}

KelStatus keliDequantTransformResidualAndAdd_H264_16s_C1I(const Kel8u *pred, const Kel16s *src,
                                                          const Kel16s *dc, Kel8u *dst, int predStep,
                                                          int dstStep, int qp, int ac) {
    return SPY(keliDequantTransformResidualAndAdd_H264_16s_C1I, pred, src, dc, dst, predStep, dstStep, qp,
               ac);
}

KelStatus keliTransformPrediction_H264_8u16s_C1(const Kel8u *pred, int step, Kel16s *dst) {
    return SPY(keliTransformPrediction_H264_8u16s_C1, pred, step, dst);
}

KelStatus keliDequantTransformResidual_SISP_H264_16s_C1I(Kel16s *data, const Kel16s *pred, const Kel16s *dc,
                                                         int ac, int qp, int qs, int switchPicture) {
    return SPY(keliDequantTransformResidual_SISP_H264_16s_C1I, data, pred, dc, ac, qp, qs, switchPicture);
}

KelStatus keliTransformDequantChromaDC_SISP_H264_16s_C1I(Kel16s *data, const Kel16s *pred, int qp, int qs,
                                                         int switchPicture) {
    return SPY(keliTransformDequantChromaDC_SISP_H264_16s_C1I, data, pred, qp, qs, switchPicture);
}

KelStatus keliTransformQuantChromaDC_H264_16s_C1I(Kel16s *data, Kel16s *transformed, int qp, int *count,
                                                  int intra, int need) {
    g_count = {count, *count};
    return SPY(keliTransformQuantChromaDC_H264_16s_C1I, data, transformed, qp, count, intra, need);
}

KelStatus keliTransformQuantLumaDC_H264_16s_C1I(Kel16s *data, Kel16s *transformed, int qp, int *count,
                                                int need, const Kel16s *scan, int *last) {
    g_count = {count, *count};
    g_scan.assign(scan, scan + 16);
    return SPY(keliTransformQuantLumaDC_H264_16s_C1I, data, transformed, qp, count, need, scan, last);
}

KelStatus keliTransformQuantResidual_H264_16s_C1I(Kel16s *data, int qp, int *count, int intra,
                                                  const Kel16s *scan, int *last) {
    g_count = {count, *count};
    g_scan.assign(scan, scan + 16);
    return SPY(keliTransformQuantResidual_H264_16s_C1I, data, qp, count, intra, scan, last);
}

KelStatus keliQuantizeResidual4x4Fwd_H264_16s_C1(const Kel16s *src, Kel16s *dst, int *count, int *last,
                                                 const Kel16s *levels, const Kel16s *scan, int qp,
                                                 int intra) {
    g_scan.assign(scan, scan + 16);
    return SPY(keliQuantizeResidual4x4Fwd_H264_16s_C1, src, dst, count, last, levels, scan, qp, intra);
}

KelStatus keliQuantizeResidual4x4Fwd_H264_32s_C1(const Kel32s *src, Kel32s *dst, int *count, int *last,
                                                 const Kel16s *levels, const Kel16s *scan, int qp,
                                                 int intra) {
    g_scan.assign(scan, scan + 16);
    return SPY(keliQuantizeResidual4x4Fwd_H264_32s_C1, src, dst, count, last, levels, scan, qp, intra);
}

KelStatus keliQuantizeResidual4x4Fwd_H264_16s32s_C1(const Kel16s *src, Kel16s *dst, int *count, int *last,
                                                    const Kel32s *factors, const Kel16s *scan, int qp,
                                                    int intra) {
    g_scan.assign(scan, scan + 16);
    g_factors.assign(factors, factors + 16);
    return SPY(keliQuantizeResidual4x4Fwd_H264_16s32s_C1, src, dst, count, last, factors, scan, qp, intra);
}

KelStatus keliTransformResidual4x4Fwd_H264_16s_C1(const Kel16s *src, Kel16s *dst) {
    return SPY(keliTransformResidual4x4Fwd_H264_16s_C1, src, dst);
}

KelStatus keliTransformResidual4x4Fwd_H264_32s_C1(const Kel32s *src, Kel32s *dst) {
    return SPY(keliTransformResidual4x4Fwd_H264_32s_C1, src, dst);
}

KelStatus keliTransformResidual4x4Inv_H264_16s_C1(const Kel16s *src, Kel16s *dst) {
    return SPY(keliTransformResidual4x4Inv_H264_16s_C1, src, dst);
}

KelStatus keliTransformResidual4x4Inv_H264_32s_C1(const Kel32s *src, Kel32s *dst) {
    return SPY(keliTransformResidual4x4Inv_H264_32s_C1, src, dst);
}

// ---- calls of the transforms --------------------------------------------------------------

TEST_F(TransformSuite, DCIsScaledAtQP20) {
    expectCalls(transforms[0], {{block(SrcDst), value(20)}});
    expectCalls(transforms[1], {{block(SrcDst), value(20)}});
}

TEST_F(TransformSuite, ResidualsWalkACThenDCThenStep) {
    std::vector<std::vector<Arg>> plain, added;
    for (int ac : {0, 1}) {
        for (int dc : {0, 1}) {
            for (int step : {16, 17}) {
                plain.push_back({block(SrcDst), value(step), dcOf(dc), value(ac), value(20)});
                added.push_back({block(Pred), block(SrcDst), dcOf(dc), block(Rec), value(step), value(step),
                                 value(20), value(ac)});
            }
        }
    }
    expectCalls(transforms[2], plain);
    expectCalls(transforms[3], added);
}

TEST_F(TransformSuite, PredictionIsReadAtBothSteps) {
    expectCalls(transforms[4],
                {{block(Pred), value(16), block(SrcDst)}, {block(Pred), value(17), block(SrcDst)}});
}

TEST_F(TransformSuite, SwitchingBlocksHaveOneQPForBoth) {
    std::vector<std::vector<Arg>> blocks, chroma;
    for (int ac : {0, 1}) {
        for (int dc : {0, 1}) {
            for (int isSwitch : {0, 1})
                blocks.push_back(
                    {block(SrcDst), block(Rec), dcOf(dc), value(ac), value(20), value(20), value(isSwitch)});
        }
    }
    for (int isSwitch : {0, 1})
        chroma.push_back({block(SrcDst), block(Rec), value(20), value(20), value(isSwitch)});
    expectCalls(transforms[5], blocks);
    expectCalls(transforms[6], chroma);
}

TEST_F(TransformSuite, QuantisersOfDCGetTheirFlags) {
    std::vector<std::vector<Arg>> chroma, luma;
    for (int rc : {0, 1}) {
        for (int need : {0, 1})
            chroma.push_back({block(SrcDst), block(Rec), value(20), own(), value(rc), value(need)});
    }
    for (int need : {0, 1})
        luma.push_back({block(SrcDst), block(Rec), value(20), own(), value(need), own(), own()});
    expectCalls(transforms[7], chroma);
    expectCalls(transforms[8], luma);
}

TEST_F(TransformSuite, QuantiserOfResidualsGetsItsRounding) {
    expectCalls(transforms[9], {{block(SrcDst), value(20), own(), value(0), own(), own()},
                                {block(SrcDst), value(20), own(), value(1), own(), own()}});
}

TEST_F(TransformSuite, ScanIsTheIdentity) {
    std::vector<Kel16s> identity;
    for (int i = 0; i < 16; ++i) identity.push_back(static_cast<Kel16s>(i));
    for (int i : {8, 9}) {
        g_scan.clear();
        calls(transforms[i]);
        EXPECT_EQ(g_scan, identity);
    }
}

TEST_F(TransformSuite, CountStartsAtZeroInEverySet) {
    for (int i : {7, 8, 9}) {
        suite::Sets sets(suite::findTest(transforms[i].m_function));
        while (sets.next()) {
            EXPECT_EQ(sets.call(), 0);
            EXPECT_EQ(g_count.before, 0) << transforms[i].m_function;
            *g_count.place = 99; // spoiled for the next set
        }
    }
}

// A test with the long list of parameters leaves a value of "DC" behind.
TEST_F(TransformSuite, ShortListDoesNotTakeUpTheDCOfAnotherTest) {
    calls(transforms[2]);
    suite::Sets sets(suite::findTest(transforms[7].m_function));
    ASSERT_TRUE(sets.next());
    EXPECT_EQ(suite::Sets::blocks().size(), 3u);
}

// ---- data of the transforms ----------------------------------------------------------------

TEST_F(TransformSuite, DCHasABlockOfItsOwnOnlyWhereThereIsOne) {
    suite::Sets sets(suite::findTest("keliDequantTransformResidual_H264_16s_C1I"));
    for (int i = 0; i < 8; ++i) {
        ASSERT_TRUE(sets.next());
        const bool hasDC = i % 4 >= 2;
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), hasDC ? 4u : 3u) << i;
        if (hasDC) {
            EXPECT_EQ(blocks[DC].size, 8);
        }
    }
    EXPECT_FALSE(sets.next());
    EXPECT_TRUE(suite::Sets::blocks().empty());
}

TEST_F(TransformSuite, DataHoldTheDefaultConstant) {
    suite::Sets sets(suite::findTest("keliDequantTransformResidual_SISP_H264_16s_C1I"));
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 4u);
    for (int which : {SrcDst, Rec, DC}) {
        for (int i = 0; i < blocks[which].size; ++i) ASSERT_EQ(blocks[which].data[i], i % 2 ? 0 : 2) << which;
    }
    for (int i = 0; i < 400; ++i) ASSERT_EQ(blocks[Pred].data[i], 2);
}

// ---- quantisers of residuals ---------------------------------------------------------------

TEST_F(TransformSuite, QuantisersOfResidualsHaveNoFactorsButOne) {
    for (int i : {0, 1, 2}) {
        std::vector<std::vector<Arg>> args;
        for (int qp : {2, 17, 32, 47})
            args.push_back(
                {block(0), block(1), own(), own(), i == 1 ? own() : value(0), own(), value(qp), value(1)});
        expectCalls(residuals[i], args);
    }
}

TEST_F(TransformSuite, QuantisersOfResidualsTakeTheScanOfFields) {
    for (int i : {0, 1, 2}) {
        g_scan.clear();
        calls(residuals[i]);
        EXPECT_EQ(g_scan, std::vector<Kel16s>({0, 2, 8, 12, 1, 5, 9, 13, 3, 6, 10, 14, 4, 7, 11, 15}));
    }
}

// By QP modulo 6: rows 2, 5, 2 and 5.
TEST_F(TransformSuite, FactorsAreThoseOfTheQP) {
    suite::Sets sets(suite::findTest("keliQuantizeResidual4x4Fwd_H264_16s32s_C1"));
    for (int qp : {2, 17, 32, 47}) {
        ASSERT_TRUE(sets.next());
        ASSERT_EQ(sets.call(), 0);
        const int two[] = {10082, 6554, 4194}, five[] = {7282, 4559, 2893};
        for (int i = 0; i < 16; ++i) {
            const int odd = i / 4 % 2 + i % 2;
            EXPECT_EQ(g_factors[i], qp % 6 == 2 ? two[odd] : five[odd]) << qp << ", " << i;
        }
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(TransformSuite, FactorsOfAllRemaindersAreThoseOfTheLibrary) {
    const std::vector<Kel8u> flat(16, 16);
    for (int qp = 0; qp < 6; ++qp) {
        IniFile file("[" + residuals[1].m_function + "]\nQP value = " + std::to_string(qp) + "\n");
        EXPECT_EQ(calls(residuals[1]).size(), 1u);
        Kel16s inverse[16], forward[16];
        ASSERT_EQ(kelStsNoErr, keliGenScaleLevel4x4_H264_8u16s_C1(flat.data(), inverse, forward, qp));
        EXPECT_EQ(g_factors, std::vector<Kel32s>(forward, forward + 16));
    }
}

TEST_F(TransformSuite, QPOfNoStreamIsRefusedByTheLibrary) {
    for (char const *qp : {"-7", "52", "2000000000", "-2147483648"}) {
        IniFile file(std::string("[keliQuantizeResidual4x4Fwd_H264_16s32s_C1]\nQP value = ") + qp + "\n");
        EXPECT_TRUE(rkIsError(run("keliQuantizeResidual4x4Fwd_H264_16s32s_C1").result)) << qp;
    }
}

TEST_F(TransformSuite, ResidualsAreRandomFrom1To32) {
    for (int i : {0, 2}) {
        suite::Sets sets(suite::findTest(residuals[i].m_function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), 2u);
        const kmType type = (i == 0 ? 16 : 32) | kmTypeSigned;
        expectRandom({blocks[0]}, {{type, 16, 1.0, 32.0}});
    }
}

// ---- transforms of residuals ---------------------------------------------------------------

TEST_F(TransformSuite, TransformsOfResidualsTakeTheBlocksOfTheirType) {
    for (int i : {3, 5}) expectCalls(residuals[i], {{block(0), block(1)}});
    for (int i : {4, 6}) expectCalls(residuals[i], {{block(2), block(3)}});
}

TEST_F(TransformSuite, SourcesOfTransformsAreAllOnes) {
    suite::Sets sets(suite::findTest("keliTransformResidual4x4Fwd_H264_16s_C1"));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 4u);
    for (int i = 0; i < 32; ++i) EXPECT_EQ(blocks[0].data[i], i % 2 ? 0 : 1);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(blocks[2].data[i], i % 4 ? 0 : 1);
}

// ---- without memory ---------------------------------------------------------------------

TEST_F(TransformSuite, WithoutMemoryThereIsNoSet) {
    for (char const *function :
         {"keliTransformDequantLumaDC_H264_16s_C1I", "keliQuantizeResidual4x4Fwd_H264_16s_C1",
          "keliTransformResidual4x4Fwd_H264_16s_C1"}) {
        NoSecondBlock full;
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

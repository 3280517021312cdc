// nv12_test.cpp - the suites of interleaved chroma: parameters, calls and data.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;

// ---- what is registered ---------------------------------------------------------------

Expected nv12(std::string const &test, char const *function) {
    return Expected("rk_test_" + test, function, "all", 1).stat(1023);
}

char const *const chroma = "keliInterpolateChroma_H264_8u_C2P2R";
char const *const chromaBlock = "keliInterpolateChromaBlock_H264_8u_C2P2R";
char const *const sumsDiff = "keliSumsDiff8x8Blocks4x4_8u16s_C2P2";
char const *const sad = "keliSAD8x8_8u32s_C2R";
char const *const forwardDct = "keliDCT8x8Fwd_8u16s_C2P2";
char const *const inverseDct = "keliDCT8x8InvOrSet_16s8u_P2C2";

// The corners of the walk, whose thousands of sets are all alike but for the vector.
char const *const fewVectors =
    "[keliInterpolateChromaBlock_H264_8u_C2P2R]\n"
    "size_num = 0; 2; +2\n"
    "pointVector x = 0; 40; +40\n"
    "pointVector y = 0; 40; +40\n";

const std::vector<Expected> interpolation = {
    nv12(chroma, chroma)
        .parm("size_num", suite::numbers(0, 2))
        .parm("dy", suite::numbers(0, 1))
        .parm("dx", suite::numbers(0, 1))
        .shortWalk(fewVectors)
        .blocks({528, 272, 272})
        .writes({1, 2}),
    nv12(chromaBlock, chromaBlock)
        .parm("size_num", suite::numbers(0, 2))
        .parm("pointVector x", suite::numbers(0, 40))
        .parm("pointVector y", suite::numbers(0, 40))
        .shortWalk(fewVectors)
        .blocks({16384, 272, 272})
        .writes({1, 2}),
};

const std::vector<int> oneReference = {2048, 2048, 2048, 1024};
const std::vector<int> twoReferences = {2048, 2048, 2048, 2048, 1024};

const std::vector<Expected> compensation = {
    nv12("keliMC8x8_8u_C2P2", "keliMC8x8_16s8u_P2C2R").blocks(oneReference).writes({3}),
    nv12("keliMC8x4_8u_C2P2", "keliMC8x4_16s8u_P2C2R").blocks(oneReference).writes({3}),
    nv12("keliMC8x8B_8u_C2P2", "keliMC8x8B_16s8u_P2C2R").blocks(twoReferences).writes({4}),
    nv12("keliMC8x4B_8u_C2P2", "keliMC8x4B_16s8u_P2C2R").blocks(twoReferences).writes({4}),
};

// The sums of absolute differences go to statics.
const std::vector<Expected> differences = {
    nv12(sumsDiff, sumsDiff).parm("iFlag", suite::numbers(0, 1)).blocks({144, 144, 256, 256}).writes({2, 3}),
    nv12(sad, sad).blocks({144, 144}),
};

const std::vector<Expected> transforms = {
    nv12(forwardDct, forwardDct).blocks({128, 128, 128}).writes({1, 2}),
    nv12(inverseDct, inverseDct).blocks({128, 128, 256}).writes({2}),
};

const kmType bytes = 8, signedWords = 16 | kmTypeSigned;

// ---- calls ------------------------------------------------------------------------------

std::vector<KeliSize> g_sizes;            // of the blocks, call by call
std::vector<KeliInterpolateInfo> g_infos; // records of the calls

class Nv12 : public suite::SuiteTest {
protected:
    void SetUp() override {
        suite::SuiteTest::SetUp();
        g_seen.clear();
        g_sizes.clear();
        g_infos.clear();
    }
    // The arguments of the only set.
    static void expectCall(char const *function, std::vector<Arg> const &args,
                           std::vector<int> const &sizes) {
        suite::Outcome outcome;
        const std::vector<SeenCall> calls = callsOf(outcome, function);
        ASSERT_EQ(calls.size(), 1u) << function;
        expectArgs(calls[0], args, sizes);
    }
    // What the data hold that are drawn.
    static void expectDrawn(char const *function, std::vector<Fill> const &fills) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_GE(blocks.size(), fills.size());
        const std::vector<suite::Block> others(blocks.begin() + static_cast<int>(fills.size()), blocks.end());
        blocks.resize(fills.size());
        expectRandom(blocks, fills);
        for (suite::Block const &block : others) expectDefault(block);
    }
    // The constant of bytes or of words.
    static void expectDefault(suite::Block const &block) {
        const bool words = block.data[1] == 0;
        for (int i = 0; i < block.size; ++i) ASSERT_EQ(block.data[i], words && i % 2 ? 0 : 2) << i;
    }
};

} // namespace

SUITE_TEST(Nv12Interpolate, "nv12interpolate.cpp", interpolation);
SUITE_TEST(Nv12Compensation, "nv12compensation.cpp", compensation);
SUITE_TEST(Nv12Differences, "nv12differences.cpp", differences);
SUITE_TEST(Nv12Dct, "nv12dct.cpp", transforms);

// ---- the spies ---------------------------------------------------------------------------

// clang-format off

#define SPY_MC(name) \
    KelStatus name(const Kel8u *r, int rs, const Kel16s *u, const Kel16s *v, int ds, Kel8u *d, int dst, int type, int rc) { return SPY(name, r, rs, u, v, ds, d, dst, type, rc); }
#define SPY_MCB(name) \
    KelStatus name(const Kel8u *f, int fs, int ft, const Kel8u *b, int bs, int bt, const Kel16s *u, const Kel16s *v, int ds, Kel8u *d, int dst, int rc) { return SPY(name, f, fs, ft, b, bs, bt, u, v, ds, d, dst, rc); }

SPY_MC(keliMC8x8_16s8u_P2C2R)
SPY_MC(keliMC8x4_16s8u_P2C2R)
SPY_MCB(keliMC8x8B_16s8u_P2C2R)
SPY_MCB(keliMC8x4B_16s8u_P2C2R)

KelStatus keliSAD8x8_8u32s_C2R(const Kel8u *c, int cs, const Kel8u *r, int rs, Kel32s *u, Kel32s *v, int type) {
    return SPY(keliSAD8x8_8u32s_C2R, c, cs, r, rs, u, v, type);
}
KelStatus keliSumsDiff8x8Blocks4x4_8u16s_C2P2(const Kel8u *s, int ss, const Kel8u *p, int ps, Kel16s *d, int ds, Kel16s *su, Kel16s *du, Kel16s *sv, Kel16s *dv) {
    return SPY(keliSumsDiff8x8Blocks4x4_8u16s_C2P2, s, ss, p, ps, d, ds, su, du, sv, dv);
}
KelStatus keliDCT8x8Fwd_8u16s_C2P2(const Kel8u *s, int ss, Kel16s *u, Kel16s *v) {
    return SPY(keliDCT8x8Fwd_8u16s_C2P2, s, ss, u, v);
}
KelStatus keliDCT8x8InvOrSet_16s8u_P2C2(const Kel16s *u, const Kel16s *v, Kel8u *d, int ds, int flag) {
    return SPY(keliDCT8x8InvOrSet_16s8u_P2C2, u, v, d, ds, flag);
}
KelStatus keliInterpolateChroma_H264_8u_C2P2R(const Kel8u *s, int ss, Kel8u *u, Kel8u *v, int ds, int dx, int dy, KeliSize size) {
    g_sizes.push_back(size);
    g_seen.push_back({chroma, {seen(s), seen(ss), seen(u), seen(v), seen(ds), seen(dx), seen(dy)}});
    return callLibrary(&keliInterpolateChroma_H264_8u_C2P2R, chroma, s, ss, u, v, ds, dx, dy, size);
}
KelStatus keliInterpolateChromaBlock_H264_8u_C2P2R(const KeliInterpolateInfo *info) {
    g_infos.push_back(*info);
    return SPY(keliInterpolateChromaBlock_H264_8u_C2P2R, info);
}

// clang-format on

// ---- the functions ------------------------------------------------------------------------

TEST_F(Nv12, EachClassHasTheOneFunctionThatItsNameTells) {
    int tests = 0;
    for (auto const *family : {&interpolation, &compensation, &differences, &transforms}) {
        for (Expected const &expected : *family) {
            ++tests;
            int registrations = 0;
            for (rkTest *test : *pTestList) registrations += expected.m_test == test->m_info.m_name.c_str();
            EXPECT_EQ(registrations, 1) << expected.m_test;
        }
    }
    EXPECT_EQ(tests, 10);
}

// ---- interpolation ------------------------------------------------------------------------

TEST_F(Nv12, ChromaWalksItsSizesAndTwoPositions) {
    const KeliSize sizes[] = {{2, 2}, {4, 4}, {8, 8}};
    suite::Sets sets(suite::findTest(chroma));
    int set = 0;
    for (; sets.next(); ++set) {
        EXPECT_EQ(sets.call(), 0);
        expectArgs(g_seen.back(),
                   {block(0), value(16), block(1), block(2), value(16), value(set % 2), value(set / 2 % 2)},
                   {528, 272, 272});
        EXPECT_EQ(g_sizes.back().width, sizes[set / 4].width);
        EXPECT_EQ(g_sizes.back().height, sizes[set / 4].height);
    }
    EXPECT_EQ(set, 12);
}

TEST_F(Nv12, VectorTakesAFourByFourBlockThroughThePicture) {
    suite::Sets sets(suite::findTest(chromaBlock));
    for (int set = 0; set < 100; ++set) {
        ASSERT_TRUE(sets.next());
        EXPECT_EQ(sets.call(), 0);
        const std::vector<suite::Block> blocks = suite::Sets::blocks();
        KeliInterpolateInfo const &info = g_infos.back();
        EXPECT_EQ(info.pSrc, blocks[0].data);
        EXPECT_EQ(info.pDstU, blocks[1].data);
        EXPECT_EQ(info.pDstV, blocks[2].data);
        EXPECT_EQ(info.srcStep, 128);
        EXPECT_EQ(info.dstStep, 16);
        EXPECT_TRUE(info.sizeFrame.width == 64 && info.sizeFrame.height == 64);
        EXPECT_TRUE(info.sizeBlock.width == 4 && info.sizeBlock.height == 4);
        EXPECT_TRUE(info.blockPos.x == 0 && info.blockPos.y == 0);
        EXPECT_EQ(info.pointVector.x, set / 41);
        EXPECT_EQ(info.pointVector.y, set % 41);
    }
}

TEST_F(Nv12, InterpolationReadsTheDefaultConstant) {
    expectDrawn(chroma, {});
    expectDrawn(chromaBlock, {});
}

TEST_F(Nv12, ASizeOfNoTableIsNoSet) {
    for (char const *line : {"size_num = 3", "size_num = -1"}) {
        IniFile file("[" + std::string(chroma) + "]\n" + line + "\n");
        EXPECT_TRUE(rkIsError(run(chroma).result)) << line;
        EXPECT_TRUE(g_seen.empty()) << line;
    }
}

// ---- motion compensation ------------------------------------------------------------------

TEST_F(Nv12, CompensationTakesPairsInAndOutAndAResidualForEachColour) {
    for (char const *function : {"keliMC8x8_16s8u_P2C2R", "keliMC8x4_16s8u_P2C2R"})
        expectCall(
            function,
            {block(0), value(32), block(1), block(2), value(32), block(3), value(16), value(0), value(0)},
            oneReference);
    for (char const *function : {"keliMC8x8B_16s8u_P2C2R", "keliMC8x4B_16s8u_P2C2R"})
        expectCall(function,
                   {block(0), value(32), value(0), block(1), value(32), value(0), block(2), block(3),
                    value(32), block(4), value(16), value(0)},
                   twoReferences);
}

TEST_F(Nv12, CompensationDrawsReferencesResidualsAndDestination) {
    const Fill reference = {bytes, 2048, 0, 255}, residual = {signedWords, 1024, -512, 511};
    const Fill destination = {bytes, 1024, 0, 255};
    for (char const *function : {"keliMC8x8_16s8u_P2C2R", "keliMC8x4_16s8u_P2C2R"})
        expectDrawn(function, {reference, residual, residual, destination});
    for (char const *function : {"keliMC8x8B_16s8u_P2C2R", "keliMC8x4B_16s8u_P2C2R"})
        expectDrawn(function, {reference, reference, residual, residual, destination});
}

// ---- differences --------------------------------------------------------------------------

TEST_F(Nv12, SumsOfDifferencesKeepTheDifferencesInTheirSecondSet) {
    suite::Outcome outcome;
    std::vector<SeenCall> calls = callsOf(outcome, sumsDiff);
    ASSERT_EQ(calls.size(), 2u);
    const std::vector<int> sizes = {144, 144, 256, 256};
    for (int set = 0; set < 2; ++set) {
        for (size_t i : {7u, 9u}) { // the places of the differences, behind 64 words
            SeenArgument &argument = calls[set].args[i];
            EXPECT_EQ(argument.data != nullptr, set == 1);
            if (set) {
                EXPECT_EQ(argument.block, i == 7 ? 2 : 3);
                EXPECT_EQ(argument.room, 128);
            }
            argument = seen(0);
        }
        expectArgs(
            calls[set],
            {block(0), value(16), block(1), value(16), block(2), value(16), own(), value(0), own(), value(0)},
            sizes);
    }
}

TEST_F(Nv12, SumsOfAbsoluteDifferencesGoToAPlaceForEachColour) {
    expectCall(sad, {block(0), value(16), block(1), value(16), own(), own(), value(0)}, {144, 144});
    std::vector<SeenArgument> const &args = g_seen.back().args;
    EXPECT_NE(args[4].data, args[5].data);
}

TEST_F(Nv12, DifferencesDrawBothSources) {
    const Fill source = {bytes, 144, 0, 255};
    expectDrawn(sumsDiff, {source, source});
    expectDrawn(sad, {source, source});
}

// ---- transforms ---------------------------------------------------------------------------

TEST_F(Nv12, TransformsGoBetweenPairsAndABlockForEachColour) {
    expectCall(forwardDct, {block(0), value(16), block(1), block(2)}, {128, 128, 128});
    expectCall(inverseDct, {block(0), block(1), block(2), value(16), value(1)}, {128, 128, 256});
}

TEST_F(Nv12, TransformsDrawTheirSources) {
    expectDrawn(forwardDct, {{bytes, 128, 0, 255}});
    expectDrawn(inverseDct, {{signedWords, 64, 0, 255}, {signedWords, 64, 0, 255}});
}

TEST_F(Nv12, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    IniFile file(fewVectors);
    for (auto const *family : {&interpolation, &compensation, &differences, &transforms}) {
        for (Expected const &expected : *family) {
            EXPECT_TRUE(rkIsError(run(expected.m_function).result)) << expected.m_function;
            EXPECT_TRUE(suite::Sets::blocks().empty()) << expected.m_function;
        }
    }
}

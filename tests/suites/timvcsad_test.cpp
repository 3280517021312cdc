// timvcsad_test.cpp - the suite of block differences in a picture.

#include "kmvc.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;

const int pictureWidth = 320;

// The block's size is the one parameter cell; both pictures are as high as the block. No tracked block is
// written: the results are the file's own.
Expected difference(char const *function, int width, int height, int sampleBytes) {
    const int bytes = pictureWidth * height * sampleBytes;
    return Expected("Timvc_SAD", function, "e", width * height)
        .rows({{std::to_string(width) + "x" + std::to_string(height)}})
        .blocks({bytes, bytes});
}

const std::vector<Expected> differences = {
    difference("keliFrameFieldSAD16x16_8u32s_C1R", 16, 16, 1),
    difference("keliFrameFieldSAD16x16_16s32s_C1R", 16, 16, 2),
    difference("keliSAD16x16Blocks4x4_16u32u_C1R", 16, 16, 2),
    difference("keliSAD16x16Blocks8x8_16u32u_C1R", 16, 16, 2),
    difference("keliSAD16x16_16u32s_C1R", 16, 16, 2),
    difference("keliSAD4x4_16u32s_C1R", 4, 4, 2),
    difference("keliSAD8x8_16u32s_C1R", 8, 8, 2),
    difference("keliSATD16x16_8u32s_C1R", 16, 16, 1),
    difference("keliSATD16x8_8u32s_C1R", 16, 8, 1),
    difference("keliSATD8x16_8u32s_C1R", 8, 16, 1),
    difference("keliSATD8x8_8u32s_C1R", 8, 8, 1),
    difference("keliSATD8x4_8u32s_C1R", 8, 4, 1),
    difference("keliSATD4x8_8u32s_C1R", 4, 8, 1),
    difference("keliSATD4x4_8u32s_C1R", 4, 4, 1),
    difference("keliSAT8x8D_8u32s_C1R", 8, 8, 1),
    difference("keliSAT8x8D_16u32s_C1R", 8, 8, 2),
    difference("keliSAD8x16_8u32s_C1R", 8, 16, 1),
    difference("keliSAD8x4_8u32s_C1R", 8, 4, 1),
    difference("keliSAD4x8_8u32s_C1R", 4, 8, 1),
};

bool isFrameField(std::string const &function) {
    return function.find("FrameField") != std::string::npos;
}

bool isTransformed(std::string const &function) {
    return function.find("SAT") != std::string::npos;
}

class TimvcSad : public suite::SuiteTest {
protected:
    // The calls of a run of the test: a warm-up and one more, alike.
    SeenCall callOf(std::string const &function) {
        g_seen.clear();
        run(function);
        EXPECT_EQ(g_seen.size(), 2u) << function;
        return g_seen.empty() ? SeenCall{} : g_seen.back();
    }
};

} // namespace

SUITE_TEST(TimvcSad, "timvcsad.cpp", differences);

// ---- the spies ----------------------------------------------------------------------

// clang-format off

#define SPY_SAD(name, T, D) \
    KelStatus name(const T *s, int ss, const T *r, int rs, D *d, int mc) { return SPY(name, s, ss, r, rs, d, mc); }
#define SPY_SATD(name, T) \
    KelStatus name(const T *s, int ss, const T *r, int rs, Kel32s *d) { return SPY(name, s, ss, r, rs, d); }
#define SPY_FRAMEFIELD(name, T) \
    KelStatus name(const T *s, int ss, Kel32s *frame, Kel32s *field) { return SPY(name, s, ss, frame, field); }

SPY_FRAMEFIELD(keliFrameFieldSAD16x16_8u32s_C1R,  Kel8u)
SPY_FRAMEFIELD(keliFrameFieldSAD16x16_16s32s_C1R, Kel16s)
SPY_SAD(keliSAD16x16Blocks4x4_16u32u_C1R, Kel16u, Kel32u)
SPY_SAD(keliSAD16x16Blocks8x8_16u32u_C1R, Kel16u, Kel32u)
SPY_SAD(keliSAD16x16_16u32s_C1R, Kel16u, Kel32s)
SPY_SAD(keliSAD4x4_16u32s_C1R,   Kel16u, Kel32s)
SPY_SAD(keliSAD8x8_16u32s_C1R,   Kel16u, Kel32s)
SPY_SATD(keliSATD16x16_8u32s_C1R, Kel8u)
SPY_SATD(keliSATD16x8_8u32s_C1R,  Kel8u)
SPY_SATD(keliSATD8x16_8u32s_C1R,  Kel8u)
SPY_SATD(keliSATD8x8_8u32s_C1R,   Kel8u)
SPY_SATD(keliSATD8x4_8u32s_C1R,   Kel8u)
SPY_SATD(keliSATD4x8_8u32s_C1R,   Kel8u)
SPY_SATD(keliSATD4x4_8u32s_C1R,   Kel8u)
SPY_SATD(keliSAT8x8D_8u32s_C1R,   Kel8u)
SPY_SATD(keliSAT8x8D_16u32s_C1R,  Kel16u)
SPY_SAD(keliSAD8x16_8u32s_C1R, Kel8u, Kel32s)
SPY_SAD(keliSAD8x4_8u32s_C1R,  Kel8u, Kel32s)
SPY_SAD(keliSAD4x8_8u32s_C1R,  Kel8u, Kel32s)

// clang-format on

// ---- the calls ------------------------------------------------------------------------

TEST_F(TimvcSad, SourcesAreTheFirstSamplesOfTwoPictures) {
    for (Expected const &expected : differences) {
        SCOPED_TRACE(expected.m_function);
        SeenCall call = callOf(expected.m_function);
        const int sources = isFrameField(expected.m_function) ? 1 : 2;
        ASSERT_GT(call.args.size(), 2u * sources);
        for (int i = 0; i < sources; ++i) {
            EXPECT_EQ(call.args[2 * i].block, i);
            EXPECT_EQ(call.args[2 * i].room, expected.m_blocks[i]);
            const int sampleBytes = expected.m_function.find("_16") == std::string::npos ? 1 : 2;
            EXPECT_EQ(call.args[2 * i + 1].value, pictureWidth * sampleBytes);
        }
    }
}

TEST_F(TimvcSad, ReferencesStandAtFullSamplePositions) {
    for (Expected const &expected : differences) {
        if (isFrameField(expected.m_function) || isTransformed(expected.m_function)) continue;
        SeenCall call = callOf(expected.m_function);
        ASSERT_EQ(call.args.size(), 6u);
        EXPECT_EQ(call.args[5].value, 0) << expected.m_function;
    }
}

TEST_F(TimvcSad, FrameAndFieldSumsHavePlacesOfTheirOwn) {
    for (char const *function : {"keliFrameFieldSAD16x16_8u32s_C1R", "keliFrameFieldSAD16x16_16s32s_C1R"}) {
        SeenCall call = callOf(function);
        ASSERT_EQ(call.args.size(), 4u);
        EXPECT_NE(call.args[2].data, nullptr);
        EXPECT_NE(call.args[3].data, nullptr);
        EXPECT_NE(call.args[2].data, call.args[3].data);
    }
}

TEST_F(TimvcSad, SumsOfAllBlocksAndSingleOnesGoToDifferentPlaces) {
    void const *many = nullptr, *one = nullptr;
    for (Expected const &expected : differences) {
        if (isFrameField(expected.m_function)) continue;
        SeenCall call = callOf(expected.m_function);
        ASSERT_GE(call.args.size(), 5u);
        const bool single = expected.m_function.find("SAD") != std::string::npos &&
                            expected.m_function.find("_16u32s") != std::string::npos;
        void const *&place = single ? one : many;
        if (!place) place = call.args[4].data;
        EXPECT_EQ(call.args[4].data, place) << expected.m_function;
        EXPECT_EQ(call.args[4].block, -1) << expected.m_function;
    }
    EXPECT_NE(one, many);
}

// ---- the data ---------------------------------------------------------------------------

TEST_F(TimvcSad, PicturesHoldTheDefaultConstant) {
    for (char const *function : {"keliSATD8x4_8u32s_C1R", "keliSAD8x8_16u32s_C1R"}) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        const int sampleBytes = function == std::string("keliSAD8x8_16u32s_C1R") ? 2 : 1;
        for (suite::Block const &block : suite::Sets::blocks()) {
            for (int i = 0; i < block.size; ++i) ASSERT_EQ(block.data[i], i % sampleBytes ? 0 : 2);
        }
    }
}

TEST_F(TimvcSad, TheBlockDecidesTheDivisor) {
    run("keliSAD8x4_8u32s_C1R");
    EXPECT_EQ(suite::findTest("keliSAD8x4_8u32s_C1R")->getDivisor(), 32.0);
    run("keliSAD4x4_16u32s_C1R");
    EXPECT_EQ(suite::findTest("keliSAD4x4_16u32s_C1R")->getDivisor(), 16.0);
}

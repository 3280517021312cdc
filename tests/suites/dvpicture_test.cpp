// dvpicture_test.cpp - the suites of DV macroblocks as pictures: their data and their calls.

#include <algorithm>

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;
using suite::findTest;

const kmType words = 16 | kmTypeSigned;

const std::vector<std::string> edges = {"keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R",
                                        "keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R",
                                        "keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R",
                                        "keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R"};

const std::vector<std::string> segments = {
    "keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R",          "keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R",
    "keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R", "keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R",
    "keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R",          "keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R",
    "keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R", "keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R",
    "keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R",          "keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R",
    "keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R", "keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R"};

char const *const halves = "keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R";

const std::vector<std::string> quarters = {
    "keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R", "keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R",
    "keliYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R", "keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R"};

std::vector<std::string> joined(std::vector<std::string> first, std::vector<std::string> const &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::vector<Expected> listOf(std::vector<std::string> const &functions,
                             Expected (*make)(std::string const &)) {
    std::vector<Expected> list;
    for (std::string const &function : functions) list.push_back(make(function));
    return list;
}

const std::vector<Expected> conversions =
    listOf(joined(joined(edges, segments), {halves}), [](std::string const &function) {
        return Expected("rk_ColorConversion", function, "all", 1)
            .parm("dstStep", {"4096", "5120", "6144", "7168", "8192"})
            .stat(1023)
            .blocks({5120, 1048576})
            .writes({1});
    });

const std::vector<Expected> stores = listOf(quarters, [](std::string const &function) {
    return Expected("rk_StoreYCrCB_QuartRes", function, "DV", 1)
        .stat(1048576)
        .blocks({3840, 2560})
        .writes({1});
});

const std::vector<Expected> zooms = listOf(joined(segments, edges), [](std::string const &function) {
    return Expected("Timvc_YCCZoom", function, "block", 5).blocks({3840, 320 * 16}).writes({1});
});

// ---- what the spies keep ----------------------------------------------------------------

// The bytes from each pointer of an array to the end of its tracked block.
struct SeenPointers {
    std::vector<int> blocks, rooms;
};
bool operator==(SeenPointers const &a, SeenPointers const &b) {
    return a.blocks == b.blocks && a.rooms == b.rooms;
}
void PrintTo(SeenPointers const &p, std::ostream *stream) {
    *stream << testing::PrintToString(p.rooms);
}

SeenPointers g_sources, g_pictures; // of the last call

template <class T>
SeenPointers pointersOf(T *const *pointers, int count) {
    SeenPointers seen;
    for (int i = 0; i < count; ++i) {
        int block = -1;
        seen.rooms.push_back(roomAt(pointers[i], &block));
        seen.blocks.push_back(block);
    }
    return seen;
}

// Pointers into a block of `size` bytes, `distance` bytes apart.
SeenPointers apart(int block, int size, int distance, int count) {
    SeenPointers expected;
    for (int i = 0; i < count; ++i) {
        expected.blocks.push_back(block);
        expected.rooms.push_back(size - i * distance);
    }
    return expected;
}

template <class S, class D>
void keep(S *const *src, int sources, D *const *dst, int pictures) {
    g_sources = pointersOf(src, sources);
    g_pictures = pointersOf(dst, pictures);
}

class DvPicture : public suite::SuiteTest {};

bool takesOne(std::string const &function) {
    return function.find("EdgeDV") != std::string::npos || function.find("8x8MB") != std::string::npos;
}

bool takesNoStep(std::string const &function) {
    return function.find("ZoomOut8_5MB") != std::string::npos;
}

// The call of the set in hand: five macroblocks or one, and a step unless there is none.
void expectCall(suite::Sets &sets, Expected const &e, int distance, int step) {
    const int count = takesOne(e.m_function) ? 1 : 5;
    g_seen.clear();
    ASSERT_EQ(sets.call(), kelStsNoErr);
    ASSERT_EQ(g_seen.size(), 1u);
    EXPECT_EQ(g_seen[0].function, e.m_function);
    EXPECT_EQ(g_sources, apart(0, e.m_blocks[0], 768, count));
    EXPECT_EQ(g_pictures, apart(1, e.m_blocks[1], distance, count));
    std::vector<Arg> args = {count == 1 ? block(0) : own(), count == 1 ? block(1) : own()};
    if (!takesNoStep(e.m_function)) args.push_back(value(step));
    expectArgs(g_seen[0], args, e.m_blocks);
}

// Offsets of the bytes of block 1 that the call writes.
std::set<int> writtenBytes(suite::Sets &sets) {
    std::set<int> written;
    for (int mark : {0, 255}) {
        suite::Block block = suite::Sets::blocks()[1];
        memset(block.data, mark, block.size);
        EXPECT_EQ(sets.call(), kelStsNoErr);
        for (int i = 0; i < block.size; ++i) {
            if (block.data[i] != mark) written.insert(i);
        }
    }
    return written;
}

std::set<int> bytesOf(int pictures, int distance, int rows, int rowBytes, int step) {
    std::set<int> bytes;
    for (int i = 0; i < pictures * rows * rowBytes; ++i) {
        const int picture = i / rowBytes / rows, row = i / rowBytes % rows;
        bytes.insert(picture * distance + row * step + i % rowBytes);
    }
    return bytes;
}

} // namespace

SUITE_TEST(ColorConversion, "colorconversion.cpp", conversions);
SUITE_TEST(StoreQuartRes, "storequartres.cpp", stores);
SUITE_TEST(YccZoom, "ycczoom.cpp", zooms);

// ---- the spies ----------------------------------------------------------------------

#define SPY_ONE(name)                                         \
    KelStatus name(const Kel16s *src, Kel8u *dst, int step) { \
        keep(&src, 1, &dst, 1);                               \
        return SPY(name, src, dst, step);                     \
    }
#define SPY_FIVE(name)                                                          \
    KelStatus name(const Kel16s *const src[5], Kel8u *const dst[5], int step) { \
        keep(src, 5, dst, 5);                                                   \
        return SPY(name, src, dst, step);                                       \
    }
#define SPY_TINY(name)                                                \
    KelStatus name(const Kel16s *const src[5], Kel8u *const dst[5]) { \
        keep(src, 5, dst, 5);                                         \
        return SPY(name, src, dst);                                   \
    }

SPY_ONE(keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R)
SPY_ONE(keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R)
SPY_ONE(keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R)
SPY_ONE(keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R)
SPY_TINY(keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R)
SPY_TINY(keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R)
SPY_TINY(keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R)
SPY_FIVE(keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R)
SPY_ONE(keliYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R)

KelStatus keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(const Kel16s *src, Kel8u *const dst[10],
                                                                  int step) {
    keep(&src, 1, dst, 10);
    return SPY(keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R, src, dst, step);
}

// ---- calls --------------------------------------------------------------------------------

TEST_F(DvPicture, ConversionsWalkTheStepsOfTheirPool) {
    for (Expected const &e : conversions) {
        if (e.m_function == halves) continue;
        SCOPED_TRACE(e.m_function);
        suite::Sets sets(findTest(e.m_function, e.m_test));
        for (int step = 4096; step <= 8192; step += 1024) {
            ASSERT_TRUE(sets.next());
            expectCall(sets, e, 32768, step);
        }
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(DvPicture, HalvesGetTheSourceItselfAndTenPictures) {
    suite::Sets sets(findTest(halves));
    for (int step = 4096; step <= 8192; step += 1024) {
        ASSERT_TRUE(sets.next());
        g_seen.clear();
        ASSERT_EQ(sets.call(), kelStsNoErr);
        EXPECT_EQ(g_sources, apart(0, 5120, 0, 1));
        EXPECT_EQ(g_pictures, apart(1, 1048576, 32768, 10));
        expectArgs(g_seen[0], {block(0), own(), value(step)}, {5120, 1048576});
    }
    EXPECT_FALSE(sets.next());
}

TEST_F(DvPicture, StoresHaveOneStep) {
    for (Expected const &e : stores) {
        SCOPED_TRACE(e.m_function);
        suite::Sets sets(findTest(e.m_function));
        ASSERT_TRUE(sets.next());
        expectCall(sets, e, 512, 64);
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(DvPicture, ZoomsHaveTheStepOfTheirImage) {
    for (Expected const &e : zooms) {
        SCOPED_TRACE(e.m_function);
        suite::Sets sets(findTest(e.m_function, e.m_test));
        ASSERT_TRUE(sets.next());
        expectCall(sets, e, 32, 320);
        EXPECT_FALSE(sets.next());
    }
}

// Lines that differ in the step alone are not taken for the same line.
TEST_F(DvPicture, ZoomsWithoutAStepHaveALineForEachStepToo) {
    for (std::string const &function : segments) {
        if (!takesNoStep(function)) continue;
        suite::Outcome outcome = run(function, "rk_ColorConversion");
        EXPECT_EQ(outcome.result, rkResSuccess);
        EXPECT_EQ(firstCells(outcome.rows), suite::Cells({"4096", "5120", "6144", "7168", "8192"}));
        EXPECT_EQ(outcome.log.find("duplicate lines"), std::string::npos) << outcome.log;
    }
}

// ---- data ----------------------------------------------------------------------------------

TEST_F(DvPicture, SourcesAreRandomSamplesAndPicturesStay) {
    for (auto const *list : {&conversions, &stores}) {
        for (Expected const &e : *list) {
            SCOPED_TRACE(e.m_function);
            suite::Sets sets(findTest(e.m_function, e.m_test));
            ASSERT_TRUE(sets.next());
            std::vector<suite::Block> blocks = suite::Sets::blocks();
            ASSERT_EQ(blocks.size(), 2u);
            expectRandom({blocks[0]}, {{words, e.m_blocks[0] / 2, -128, 127}});
            const unsigned char first = blocks[1].data[0];
            EXPECT_TRUE(std::all_of(blocks[1].data, blocks[1].data + blocks[1].size,
                                    [first](unsigned char byte) { return byte == first; }));
        }
    }
}

TEST_F(DvPicture, SourcesOfZoomsAreOfTheWholeRange) {
    for (Expected const &e : zooms) {
        SCOPED_TRACE(e.m_function);
        suite::Sets sets(findTest(e.m_function, e.m_test));
        ASSERT_TRUE(sets.next());
        kmVector::m_seed = 7;
        kmVector model(words);
        ASSERT_TRUE(model.createVector(1920, 0));
        model.setRandom();
        EXPECT_EQ(memcmp(suite::Sets::blocks()[0].data, model.m_data, 3840), 0);
        EXPECT_GT(*std::max_element(model.p16s, model.p16s + 1920), 30000);
        EXPECT_LT(*std::min_element(model.p16s, model.p16s + 1920), -30000);
    }
}

// ---- pictures in their pools ------------------------------------------------------------------

TEST_F(DvPicture, PicturesLieInTheirPool) {
    struct Case {
        char const *function;
        int pictures, rows, rowBytes;
    };
    const Case cases[] = {{"keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R", 1, 16, 32},
                          {"keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R", 1, 4, 8},
                          {"keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R", 5, 8, 64},
                          {"keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R", 5, 16, 32},
                          {"keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R", 5, 8, 16},
                          {"keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R", 5, 1, 8},
                          {"keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R", 5, 1, 4},
                          {halves, 10, 8, 32}};
    for (Case const &c : cases) {
        suite::Sets sets(findTest(c.function, "rk_ColorConversion"));
        for (int step = 4096; sets.next(); step += 1024) {
            EXPECT_EQ(writtenBytes(sets), bytesOf(c.pictures, 32768, c.rows, c.rowBytes, step))
                << c.function << ", step " << step;
        }
    }
}

TEST_F(DvPicture, QuarterPicturesLieInTheirPool) {
    const int pictures[] = {5, 5, 1, 5}, rows[] = {8, 4, 8, 4}, rowBytes[] = {16, 32, 16, 16};
    for (int i = 0; i < 4; ++i) {
        suite::Sets sets(findTest(quarters[i]));
        ASSERT_TRUE(sets.next());
        EXPECT_EQ(writtenBytes(sets), bytesOf(pictures[i], 512, rows[i], rowBytes[i], 64)) << quarters[i];
    }
}

// Macroblocks of 4:1:1 are twice as wide as their places.
TEST_F(DvPicture, NarrowPicturesLieInTheirImage) {
    struct Case {
        char const *function;
        int pictures, rows, rowBytes;
    };
    for (Case const &c : {Case{"keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R", 5, 8, 64},
                          Case{"keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R", 5, 16, 32},
                          Case{"keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R", 5, 8, 32},
                          Case{"keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R", 1, 16, 32}}) {
        suite::Sets sets(findTest(c.function, "Timvc_YCCZoom"));
        ASSERT_TRUE(sets.next());
        EXPECT_EQ(writtenBytes(sets), bytesOf(c.pictures, 32, c.rows, c.rowBytes, 320)) << c.function;
    }
}

// ---- what a user may ask for ----------------------------------------------------------------------

TEST_F(DvPicture, StepsBeyondThePoolMakeNoSet) {
    for (Expected const &e : conversions) {
        for (char const *step : {"45057", "2147483647"}) {
            IniFile file("[" + e.m_function + "]\ndstStep = " + step + "\n");
            g_seen.clear();
            suite::Outcome outcome = run(e.m_function, e.m_test);
            EXPECT_TRUE(rkIsError(outcome.result)) << e.m_function << ", " << step;
            EXPECT_TRUE(g_seen.empty()) << e.m_function << ", " << step;
            EXPECT_TRUE(suite::Sets::blocks().empty());
        }
    }
}

TEST_F(DvPicture, TheLargestStepReachesTheEndOfThePool) {
    for (Expected const &e : conversions) {
        IniFile file("[" + e.m_function + "]\ndstStep = 45056\n");
        suite::Outcome outcome = run(e.m_function, e.m_test);
        EXPECT_EQ(outcome.result, rkResSuccess) << e.m_function;
        EXPECT_EQ(firstCells(outcome.rows), suite::Cells({"45056"})) << e.m_function;
    }
}

TEST_F(DvPicture, StepsTooSmallAreTheLibrarysMatter) {
    IniFile file("[" + edges[0] + "]\ndstStep = -4096\n");
    g_seen.clear();
    suite::Outcome outcome = run(edges[0], "rk_ColorConversion");
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_FALSE(g_seen.empty());
}

TEST_F(DvPicture, WithoutMemoryThereIsNoSet) {
    for (Expected const *e : {&conversions[0], &stores[0], &zooms[0]}) {
        NoSecondBlock full;
        g_seen.clear();
        suite::Outcome outcome = run(e->m_function, e->m_test);
        EXPECT_TRUE(rkIsError(outcome.result)) << e->m_test;
        EXPECT_TRUE(outcome.rows.empty()) << e->m_test;
        EXPECT_TRUE(g_seen.empty()) << e->m_test;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << e->m_test;
    }
}

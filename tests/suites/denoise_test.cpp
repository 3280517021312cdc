// denoise_test.cpp - the suites of the denoising filters: parameters, data, calls and states.

#include <algorithm>

#include "../unit/capture.h"
#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

// A size and a region are seen as one number; the region starts at the corner.
static SeenArgument seen(KeliSize size) {
    return {size.width * 10000LL + size.height, nullptr, -1, 0};
}
static SeenArgument seen(KeliRect roi) {
    return {roi.x == 0 && roi.y == 0 ? roi.width * 10000LL + roi.height : -1, nullptr, -1, 0};
}

namespace {

using suite::Cells;
using suite::Expected;
using suite::Rows;

char const *const adaptive = "keliFilterDenoiseAdaptive_8u_C1R";
char const *const mosquito = "keliFilterDenoiseMosquito_8u_C1R";
char const *const smooth = "keliFilterDenoiseSmooth_8u_C1R";

// ---- what is registered ---------------------------------------------------------------

const Cells counters = {"0", "1", "2"};
const Cells thresholds = {"1", "7", "14", "32", "128", "224"};
const Cells imageSizes[] = {{"352", "288"}, {"704", "576"}, {"1408", "1152"}};
const std::vector<double> areas = {352 * 288, 704 * 576, 1408 * 1152};
const int smallest = 352 * 288, work = (2 * 288 + 6) * (352 + 3); // bytes

// Width and height, and every combination of the other cells.
Rows rowsOf(std::vector<Cells> const &others) {
    Rows rows;
    for (Cells const &size : imageSizes) {
        for (Cells const &rest : suite::product(others)) {
            rows.push_back(size);
            rows.back().insert(rows.back().end(), rest.begin(), rest.end());
        }
    }
    return rows;
}

std::string settings(std::string const &function, std::string const &lines) {
    return "[" + function + "]\n" + lines + "[Rakova]\n" + lines;
}

// The sets of an image size are alike but for what the filter is told.
std::string everySize(std::string const &function) {
    return settings(function, "blur counter = 3\nthreshold = 14\n");
}

const std::vector<Expected> adaptives = {
    Expected("TimDenoiseAdapt", adaptive, "e", 0)
        .parm("resolution counter", counters)
        .parm("blur counter", suite::numbers(0, 3))
        .parm("threshold", thresholds)
        .rows(rowsOf({{"3"}, {"14"}}))
        .shortWalk(everySize(adaptive))
        .divisors(areas)
        .blocks({smallest, smallest, smallest, smallest})
        .writes({3}),
};

const std::vector<Expected> mosquitos = {
    Expected("TimDenoiseMosquito", mosquito, "e", 0)
        .parm("resolution counter", counters)
        .rows(rowsOf({}))
        .divisors(areas)
        .blocks({smallest, smallest, smallest})
        .writes({2}),
};

const std::vector<Expected> smooths = {
    Expected("TimDenoiseSmooth", smooth, "e", 0)
        .parm("resolution counter", counters)
        .parm("threshold", thresholds)
        .rows(rowsOf({thresholds}))
        .shortWalk(everySize(smooth))
        .divisors(areas)
        .blocks({smallest, smallest, work})
        .writes({1, 2}),
};

Arg size(int width, int height) {
    return value(width * 10000 + height);
}

// ---- what the spies keep ----------------------------------------------------------------

std::vector<std::vector<int>> g_planes; // the blocks of the pictures of each call
bool g_refuse = false;                  // the library makes no state

void keepPlanes(Kel8u const *const *planes, int n) {
    std::vector<int> blocks;
    for (int i = 0; i < n; ++i) {
        int block = -1;
        roomAt(planes[i], &block);
        blocks.push_back(block);
    }
    g_planes.push_back(blocks);
}

class Denoise : public suite::SuiteTest {
protected:
    suite::Outcome runWith(std::string const &function, std::string const &lines) {
        IniFile file(settings(function, lines));
        g_seen.clear();
        g_planes.clear();
        return run(function);
    }
    // Only the calls of that function.
    static std::vector<SeenCall> seenOf(std::string const &function) {
        std::vector<SeenCall> calls;
        for (SeenCall const &call : g_seen) {
            if (call.function == function) calls.push_back(call);
        }
        return calls;
    }
    static Cells order() {
        Cells names;
        for (SeenCall const &call : g_seen) names.push_back(call.function);
        return names;
    }
};

// So many images of the first set are random data, drawn one behind the other; other blocks follow.
void expectDrawn(char const *function, int images, size_t others) {
    IniFile file(settings(function, "resolution counter = 0\n"));
    suite::Sets sets(suite::findTest(function));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), images + others);
    const unsigned int seed = kmVector::m_seed;
    kmVector::m_seed = 7;
    for (int i = 0; i < images; ++i) {
        kmImage model(8, 1, false);
        ASSERT_TRUE(model.createVectorExt(352, 288, 0, SetRandom, 0, 0));
        ASSERT_EQ(blocks[i].size, smallest);
        EXPECT_EQ(memcmp(blocks[i].data, model.m_data, smallest), 0) << function << ", block " << i;
        const std::set<unsigned char> shades(blocks[i].data, blocks[i].data + smallest);
        EXPECT_GT(shades.size(), 200u) << function << ", block " << i;
    }
    kmVector::m_seed = seed;
}

} // namespace

// The checks of every suite with a few sets alone, also in that of the rows: 72 sets of large pictures take
// long.
class ShortSuite : public suite::SuiteTest, public testing::WithParamInterface<Expected> {};

TEST_P(ShortSuite, IsRegisteredByItsClass) {
    suite::checkRegistration(GetParam());
}
TEST_P(ShortSuite, RunsItsSets) {
    IniFile file(GetParam().m_shortWalk);
    suite::checkSets(GetParam());
}
TEST_P(ShortSuite, RunsTheSameBehindAnother) {
    suite::checkNextRun(GetParam());
}
TEST_P(ShortSuite, CountsItsUnits) {
    suite::checkUnits(GetParam());
}
TEST_P(ShortSuite, HasItsTimingMethod) {
    suite::checkMethod(GetParam());
}
TEST_P(ShortSuite, LeavesNoBlockBehind) {
    suite::checkMemory(GetParam());
}
TEST_P(ShortSuite, WritesWhereItShould) {
    suite::checkWrites(GetParam());
}

#define SHORT_SUITE_TEST(name, file, expected)                                              \
    INSTANTIATE_TEST_SUITE_P(name, ShortSuite, testing::ValuesIn(expected), suite::nameOf); \
    TEST(SuiteFile, name) {                                                                 \
        suite::checkFile(file, expected);                                                   \
    }

SHORT_SUITE_TEST(DenoiseAdapt, "denoiseadapt.cpp", adaptives);
SUITE_TEST(DenoiseMosquito, "denoisemosquito.cpp", mosquitos);
SUITE_TEST(DenoiseSmooth, "denoisesmooth.cpp", smooths);

// ---- the spies ---------------------------------------------------------------------------

// clang-format off

KelStatus keliFilterDenoiseAdaptiveInitAlloc_8u_C1(KeliDenoiseAdaptiveState_8u_C1 **state, KeliSize size, KeliSize mask) {
    if (g_refuse) return kelStsMemAllocErr;
    return SPY(keliFilterDenoiseAdaptiveInitAlloc_8u_C1, state, size, mask);
}
KelStatus keliFilterDenoiseAdaptiveFree_8u_C1(KeliDenoiseAdaptiveState_8u_C1 *state) {
    return SPY(keliFilterDenoiseAdaptiveFree_8u_C1, state);
}
KelStatus keliFilterDenoiseAdaptive_8u_C1R(const Kel8u *const planes[3], int ss, Kel8u *d, int ds, KeliSize size, KeliSize mask, KeliRect roi, int threshold, int blur, KeliDenoiseAdaptiveState_8u_C1 *state) {
    keepPlanes(planes, 3);
    return SPY(keliFilterDenoiseAdaptive_8u_C1R, planes, ss, d, ds, size, mask, roi, threshold, blur, state);
}
KelStatus keliFilterDenoiseMosquitoInitAlloc_8u_C1(KeliDenoiseMosquitoState_8u_C1 **state, KeliSize size) {
    if (g_refuse) return kelStsMemAllocErr;
    return SPY(keliFilterDenoiseMosquitoInitAlloc_8u_C1, state, size);
}
KelStatus keliFilterDenoiseMosquitoFree_8u_C1(KeliDenoiseMosquitoState_8u_C1 *state) {
    return SPY(keliFilterDenoiseMosquitoFree_8u_C1, state);
}
KelStatus keliFilterDenoiseMosquito_8u_C1R(const Kel8u *const planes[2], int ss, Kel8u *d, int ds, KeliSize size, KeliDenoiseMosquitoState_8u_C1 *state, KeliRect roi) {
    keepPlanes(planes, 2);
    return SPY(keliFilterDenoiseMosquito_8u_C1R, planes, ss, d, ds, size, state, roi);
}
KelStatus keliFilterDenoiseSmooth_8u_C1R(const Kel8u *s, int ss, Kel8u *d, int ds, KeliSize size, int threshold, KeliRect roi, Kel8u *work) {
    return SPY(keliFilterDenoiseSmooth_8u_C1R, s, ss, d, ds, size, threshold, roi, work);
}

// clang-format on

// ---- calls ---------------------------------------------------------------------------------

// The step of a row of 352 and of 704 samples is its width.
TEST_F(Denoise, AdaptiveGetsThreePicturesAndWhatItsSetSays) {
    suite::Outcome outcome =
        runWith(adaptive, "resolution counter = 0; 1; +1\nblur counter = 1; 2; +1\nthreshold = 7; 32\n");
    EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
    std::vector<SeenCall> calls = seenOf(adaptive);
    ASSERT_EQ(calls.size(), 16u);
    for (int i = 0; i < 16; ++i) {
        const int scale = 1 << i / 8, width = 352 * scale, height = 288 * scale, bytes = width * height;
        expectArgs(calls[i],
                   {own(), value(width), block(3), value(width), size(width, height), size(1, 1),
                    size(width, height), value(i / 2 % 2 ? 32 : 7), value(1 + i / 4 % 2), own()},
                   {bytes, bytes, bytes, bytes});
        EXPECT_EQ(g_planes[i], std::vector<int>({0, 1, 2}));
    }
}

TEST_F(Denoise, MosquitoGetsTwoPictures) {
    runWith(mosquito, "resolution counter = 0; 1; +1\n");
    std::vector<SeenCall> calls = seenOf(mosquito);
    ASSERT_EQ(calls.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        const int scale = 1 << i / 2, width = 352 * scale, height = 288 * scale, bytes = width * height;
        expectArgs(
            calls[i],
            {own(), value(width), block(2), value(width), size(width, height), own(), size(width, height)},
            {bytes, bytes, bytes});
        EXPECT_EQ(g_planes[i], std::vector<int>({0, 1}));
    }
}

TEST_F(Denoise, SmoothGetsAPictureAndRoomToWorkIn) {
    runWith(smooth, "resolution counter = 0\nthreshold = 224; 1\n");
    std::vector<SeenCall> calls = seenOf(smooth);
    ASSERT_EQ(calls.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        expectArgs(calls[i],
                   {block(0), value(352), block(1), value(352), size(352, 288), value(i < 2 ? 224 : 1),
                    size(352, 288), block(2)},
                   {smallest, smallest, work});
    }
}

// ---- states --------------------------------------------------------------------------------

// Made in front of the calls of a set, carried from one to the next, released behind them.
TEST_F(Denoise, EverySetHasAStateOfItsOwn) {
    runWith(adaptive, "resolution counter = 0; 1; +1\nblur counter = 0\nthreshold = 7\n");
    char const *const init = "keliFilterDenoiseAdaptiveInitAlloc_8u_C1";
    char const *const release = "keliFilterDenoiseAdaptiveFree_8u_C1";
    ASSERT_EQ(order(), Cells({init, adaptive, adaptive, release, init, adaptive, adaptive, release}));
    expectArgs(g_seen[0], {own(), size(352, 288), size(1, 1)}, {});
    expectArgs(g_seen[4], {own(), size(704, 576), size(1, 1)}, {});
    for (int i : {1, 5}) {
        const void *state = g_seen[i].args[9].data;
        EXPECT_EQ(g_seen[i + 1].args[9].data, state);
        EXPECT_EQ(g_seen[i + 2].args[0].data, state);
    }
}

TEST_F(Denoise, MosquitoStatesComeAndGoToo) {
    runWith(mosquito, "resolution counter = 0\n");
    char const *const init = "keliFilterDenoiseMosquitoInitAlloc_8u_C1";
    char const *const release = "keliFilterDenoiseMosquitoFree_8u_C1";
    ASSERT_EQ(order(), Cells({init, mosquito, mosquito, release}));
    expectArgs(g_seen[0], {own(), size(352, 288)}, {});
    EXPECT_EQ(g_seen[1].args[5].data, g_seen[2].args[5].data);
    EXPECT_EQ(g_seen[3].args[0].data, g_seen[1].args[5].data);
}

TEST_F(Denoise, WithoutAStateThereIsNoSet) {
    for (char const *function : {adaptive, mosquito}) {
        g_refuse = true;
        suite::Outcome outcome = runWith(function, "resolution counter = 0\nthreshold = 7\n");
        EXPECT_EQ(outcome.result, rkResDataError) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
        g_refuse = false;
        EXPECT_EQ(runWith(function, "resolution counter = 0\nthreshold = 7\n").result, rkResSuccess);
    }
}

// ---- data ----------------------------------------------------------------------------------

TEST_F(Denoise, SourcesAndDestinationAreDrawnInTheirOrder) {
    expectDrawn(adaptive, 4, 0);
    expectDrawn(mosquito, 3, 0);
    expectDrawn(smooth, 2, 1);
}

// ---- parameters ----------------------------------------------------------------------------

// The second file is there when the values of all parameters are asked for, and comes too late.
TEST_F(Denoise, ParametersAreReadOnceAndAtTheStart) {
    for (char const *function : {adaptive, mosquito, smooth}) {
        rkTest *test = suite::findTest(function);
        Cells values, later;
        g_istrm.setIniSection(function);
        test->beginTest();
        {
            IniFile file(settings(function, "resolution counter = 1\nblur counter = 2; 0\nthreshold = 5\n"));
            EXPECT_TRUE(test->canStart());
        }
        for (rkParameter *parm : test->m_parms) values.push_back(str(parm->defaultString()));
        const Cells given = {"1", "2; 0", "5"};
        const Cells expected = function == adaptive   ? given
                               : function == mosquito ? Cells{given[0]}
                                                      : Cells{given[0], given[2]};
        EXPECT_EQ(values, expected) << function;
        {
            IniFile file(settings(function, "resolution counter = 2\nblur counter = 3\nthreshold = 9\n"));
            test->parmsFromIstrm();
        }
        for (rkParameter *parm : test->m_parms) later.push_back(str(parm->defaultString()));
        EXPECT_EQ(later, values) << function;
        test->flushStart();
        test->endTest();
    }
}

// The walk alone, without data.
TEST_F(Denoise, AdaptiveHas3Times4Times6Sets) {
    rkTest *test = suite::findTest(adaptive);
    CaptureTable table;
    std::string expected;
    test->beginTest();
    ASSERT_TRUE(test->canStart());
    for (test->m_firstPass = true; test->canContinue(); test->m_firstPass = false) {
        test->parmsToCstrm();
        g_cstrm.lineOut(4);
    }
    test->flushStart();
    test->endTest();
    for (Cells const &row : rowsOf({suite::numbers(0, 3), thresholds}))
        expected += row[0] + "," + row[1] + "," + row[2] + "," + row[3] + "\n";
    EXPECT_EQ(table.text(), expected);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), 72);
}

TEST_F(Denoise, ASizeBehindTheTableFailsWithoutACall) {
    for (char const *function : {adaptive, mosquito, smooth}) {
        for (char const *counter : {"3", "-1", "2000000000"}) {
            suite::Outcome outcome = runWith(function, std::string("resolution counter = ") + counter + "\n");
            EXPECT_EQ(outcome.result, rkResDataError) << function << counter;
            EXPECT_TRUE(outcome.rows.empty()) << function << counter;
            EXPECT_TRUE(g_seen.empty()) << function << counter;
        }
    }
}

TEST_F(Denoise, TheLibraryRefusesABlurFlagBehindTheTable) {
    for (char const *counter : {"4", "-1"}) {
        suite::Outcome outcome =
            runWith(adaptive, std::string("resolution counter = 0\nblur counter = ") + counter + "\n");
        EXPECT_EQ(outcome.result, rkResLibError) << counter;
        std::vector<SeenCall> calls = seenOf(adaptive);
        ASSERT_FALSE(calls.empty()) << counter;
        EXPECT_EQ(calls[0].args[8].value, -1) << counter;
    }
}

TEST_F(Denoise, WithoutMemoryThereIsNoSet) {
    for (char const *function : {adaptive, mosquito, smooth}) {
        NoSecondBlock full;
        suite::Outcome outcome = runWith(function, "resolution counter = 0\n");
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

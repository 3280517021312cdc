// mpeg4warp_test.cpp - the suites of MPEG-4 sprites and global motion: their data and their calls.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

const Cells sizes = {"8x8", "16x16", "64x64", "128x128"};

int specSize() {
    int bytes = 0;
    keliWarpGetSize_MPEG4(&bytes);
    return bytes;
}

// ---- global motion --------------------------------------------------------------------

char const *const globalMotion = "keliCalcGlobalMV_MPEG4";

const std::vector<Expected> globalMotions = {
    Expected("Timvcmp4_CalcMV", globalMotion, " ", 1)
        .parm("numWarpingPoints", suite::numbers(0, 3))
        .blocks({specSize()}),
};

// ---- warping ----------------------------------------------------------------------------------

char const *const warpLuma = "keliWarpLuma_MPEG4_8u_C1R";
char const *const warpChroma = "keliWarpChroma_MPEG4_8u_P2R";

enum { Spec, Src1, Src2, Dst1, Dst2 }; // the blocks, in the order in which they are made

// Ten sets of each size.
std::vector<double> warpDivisors() {
    std::vector<double> divisors;
    for (int size : {8, 16, 64, 128}) divisors.insert(divisors.end(), 10, size * size);
    return divisors;
}

Expected warp(char const *function, std::vector<int> written) {
    return Expected("Timvcmp4_Warp", function, "e", 0)
        .parm("size", sizes)
        .parm("numWarpingPoints", suite::numbers(0, 4))
        .parm("warpingAccuracy", {"2"})
        .parm("clip", {"0", "1"})
        .divisors(warpDivisors())
        .blocks({specSize(), 24 * 32, 24 * 32, 8 * 16, 8 * 16})
        .writes(std::move(written));
}

const std::vector<Expected> warps = {warp(warpLuma, {Dst1}), warp(warpChroma, {Dst1, Dst2})};

// What the spies see behind the pointers.
struct Description {
    std::vector<int> du, dv;
    std::vector<long long> numbers; // points to fcode
    KeliRect sprite, picture;
};
std::vector<Description> g_specs;
std::vector<KeliRect> g_rects;

bool same(KeliRect const &a, KeliRect const &b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

class Mpeg4Warp : public suite::SuiteTest {
protected:
    // A run that calls the function for no set.
    void expectRefused(char const *function, std::string const &line) {
        IniFile file("[" + std::string(function) + "]\n" + line + "\n");
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << line;
        EXPECT_TRUE(outcome.rows.empty()) << line;
        for (SeenCall const &call : g_seen) EXPECT_NE(call.function, function) << line;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << line;
    }
};

} // namespace

SUITE_TEST(Mpeg4CalcMV, "mpeg4calcmv.cpp", globalMotions);
SUITE_TEST(Mpeg4Warp, "mpeg4warp.cpp", warps);

// ---- the spies ----------------------------------------------------------------------

// clang-format off

KelStatus keliWarpInit_MPEG4(KeliWarpSpec_MPEG4 *spec, const int *du, const int *dv, int points, int type, int accuracy, int rounding, int quarter, int fcode, const KeliRect *sprite, const KeliRect *picture) {
    g_specs.push_back({{du, du + 4}, {dv, dv + 4}, {points, type, accuracy, rounding, quarter, fcode}, *sprite, *picture});
    return SPY(keliWarpInit_MPEG4, spec, du, dv, points, type, accuracy, rounding, quarter, fcode, sprite, picture);
}
KelStatus keliCalcGlobalMV_MPEG4(int x, int y, KeliMotionVector *mv, const KeliWarpSpec_MPEG4 *spec) {
    return SPY(keliCalcGlobalMV_MPEG4, x, y, mv, spec);
}
KelStatus keliWarpLuma_MPEG4_8u_C1R(const Kel8u *s, int ss, Kel8u *d, int ds, const KeliRect *rect, const KeliWarpSpec_MPEG4 *spec) {
    g_rects.push_back(*rect);
    return SPY(keliWarpLuma_MPEG4_8u_C1R, s, ss, d, ds, rect, spec);
}
KelStatus keliWarpChroma_MPEG4_8u_P2R(const Kel8u *s1, int ss1, const Kel8u *s2, int ss2, Kel8u *d1, int ds1, Kel8u *d2, int ds2, const KeliRect *rect, const KeliWarpSpec_MPEG4 *spec) {
    g_rects.push_back(*rect);
    return SPY(keliWarpChroma_MPEG4_8u_P2R, s1, ss1, s2, ss2, d1, ds1, d2, ds2, rect, spec);
}

// clang-format on

namespace {

// The calls of the function in a run that count, without those that prepare a set and without the warm-ups.
std::vector<SeenCall> countedCalls(char const *function) {
    g_seen.clear();
    g_specs.clear();
    g_rects.clear();
    suite::runTest(suite::findTest(function));
    std::vector<SeenCall> calls;
    for (SeenCall const &call : g_seen) {
        if (call.function == function) calls.push_back(call);
    }
    for (size_t i = 0; 2 * i + 1 < calls.size(); ++i) calls[i] = calls[2 * i + 1];
    calls.resize(calls.size() / 2);
    return calls;
}

} // namespace

// ---- the calls ------------------------------------------------------------------------

TEST_F(Mpeg4Warp, GlobalMotionIsThatOfTheMacroblockAtTwoAndThree) {
    std::vector<SeenCall> calls = countedCalls(globalMotion);
    ASSERT_EQ(calls.size(), 4u);
    for (SeenCall const &call : calls) expectArgs(call, {value(2), value(3), own(), block(0)}, {specSize()});
    ASSERT_EQ(g_specs.size(), 4u);
    for (int points = 0; points < 4; ++points) {
        Description const &s = g_specs[points];
        EXPECT_EQ(s.du, (std::vector<int>{5, 3, 2, 1}));
        EXPECT_EQ(s.dv, s.du);
        EXPECT_EQ(s.numbers, (std::vector<long long>{points, 1, 0, 0, 0, 1}));
        EXPECT_TRUE(same(s.sprite, {0, 0, 64, 64}));
        EXPECT_TRUE(same(s.picture, {0, 0, 64, 64}));
    }
}

TEST_F(Mpeg4Warp, SpritesWithoutClippingAreLargerBy16) {
    for (char const *function : {warpLuma, warpChroma}) {
        ASSERT_EQ(countedCalls(function).size(), 40u);
        ASSERT_EQ(g_specs.size(), 40u);
        ASSERT_EQ(g_rects.size(), 80u);
        const int lengths[] = {8, 16, 64, 128};
        for (int i = 0; i < 40; ++i) {
            const int n = lengths[i / 10], more = i % 2 ? 0 : 16;
            Description const &s = g_specs[i];
            EXPECT_EQ(s.du, (std::vector<int>{8, 1, 2, 3}));
            EXPECT_EQ(s.dv, s.du);
            EXPECT_EQ(s.numbers, (std::vector<long long>{i / 2 % 5, 1, 2, 0, 0, 1}));
            EXPECT_TRUE(same(s.sprite, {0, 0, n + more, n + more})) << i;
            EXPECT_TRUE(same(s.picture, {0, 0, n, n})) << i;
            EXPECT_TRUE(same(g_rects[2 * i + 1], {0, 0, n, n})) << i;
        }
    }
}

TEST_F(Mpeg4Warp, WarpingTakesItsPlanesInOrder) {
    const std::vector<int> bytes = {specSize(), 24 * 32, 24 * 32, 8 * 16, 8 * 16};
    std::vector<SeenCall> calls = countedCalls(warpLuma);
    ASSERT_FALSE(calls.empty());
    expectArgs(calls[0], {block(Src1), value(32), block(Dst1), value(16), own(), block(Spec)}, bytes);
    calls = countedCalls(warpChroma);
    ASSERT_FALSE(calls.empty());
    expectArgs(calls[0],
               {block(Src1), value(32), block(Src2), value(32), block(Dst1), value(16), block(Dst2),
                value(16), own(), block(Spec)},
               bytes);
}

// ---- the data ---------------------------------------------------------------------------

// A set without points is the picture at its own place.
TEST_F(Mpeg4Warp, WarpingWithoutPointsCopiesTheSprite) {
    suite::Sets sets(suite::findTest(warpLuma));
    for (int clip = 0; clip < 2; ++clip) {
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), 5u);
        const int srcStep = clip ? 16 : 32;
        for (int i = 0; i < blocks[Src1].size; ++i) blocks[Src1].data[i] = static_cast<Kel8u>(7 * i);
        EXPECT_EQ(sets.call(), kelStsNoErr);
        for (int row = 0; row < 8; ++row) {
            for (int col = 0; col < 8; ++col)
                EXPECT_EQ(blocks[Dst1].data[16 * row + col], blocks[Src1].data[srcStep * row + col]);
        }
    }
}

// The first differential moves the picture by 4 samples to the right and down.
TEST_F(Mpeg4Warp, WarpingByOnePointMovesThePicture) {
    suite::Sets sets(suite::findTest(warpLuma));
    for (int set = 0; set < 3; ++set) ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = suite::Sets::blocks();
    ASSERT_EQ(blocks.size(), 5u);
    for (int i = 0; i < blocks[Src1].size; ++i) blocks[Src1].data[i] = static_cast<Kel8u>(7 * i);
    EXPECT_EQ(sets.call(), kelStsNoErr);
    for (int row = 0; row < 8; ++row) {
        for (int col = 0; col < 8; ++col)
            EXPECT_EQ(blocks[Dst1].data[16 * row + col], blocks[Src1].data[32 * (row + 4) + col + 4]);
    }
}

// ---- refusals -----------------------------------------------------------------------------

TEST_F(Mpeg4Warp, DescriptionThatCannotBeMadeRefusesTheTest) {
    expectRefused(globalMotion, "numWarpingPoints = 5");
    expectRefused(warpLuma, "numWarpingPoints = -1");
    expectRefused(warpChroma, "warpingAccuracy = 4");
    expectRefused(warpLuma, "size = 9000x8");
}

TEST_F(Mpeg4Warp, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    g_seen.clear();
    suite::Outcome outcome = run(warpLuma);
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_TRUE(outcome.rows.empty());
    for (SeenCall const &call : g_seen) EXPECT_NE(call.function, warpLuma);
    EXPECT_TRUE(suite::Sets::blocks().empty());
}

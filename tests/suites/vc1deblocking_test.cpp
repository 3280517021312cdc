// vc1deblocking_test.cpp - the suite of VC-1 deblocking: its calls, and that each mode takes the path of its
// label.

#include <cstdlib>
#include <cstring>
#include <set>

#include "kmvc.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

const Cells labels = {"mode1_(full_deblocking)",
                      "mode2_(only_first_pixels_deblocking)",
                      "mode3_(first_edge:_full-second_edge:_first_pixel)",
                      "mode4_(first_edge:_full-second_edge:_none)",
                      "mode5_(second_edge:_full-first_edge:_first_pixel)",
                      "mode6_(second_edge:_full-first_edge:_none)"};

// ---- what is registered ---------------------------------------------------------------

Expected deblocking(char const *function, int bytes) {
    return Expected("rk_VC1Deblocking", function, "all", 1)
        .parm("deblocking_conditions", labels)
        .parm("step", {"step=16", "step=18"})
        .stat(1024)
        .blocks({bytes})
        .updates({0});
}

const std::vector<Expected> filters = {
    deblocking("keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR", 256),
    deblocking("keliFilterDeblockingLuma_HorEdge_VC1_8u_C1IR", 128),
    deblocking("keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR", 128),
    deblocking("keliFilterDeblockingChroma_HorEdge_VC1_8u_C1IR", 128),
    deblocking("keliFilterDeblockingChroma_VerEdge_VC1_8u_C2IR", 128),
    deblocking("keliFilterDeblockingChroma_HorEdge_VC1_8u_C2IR", 128),
};

// ---- modes ----------------------------------------------------------------------------------

// The lines that a call changes, of the edge of luma: those of the first block are 0 to 7. The third line of
// four is filtered first.
using LineNumbers = std::set<int>;

const LineNumbers first = {0, 1, 2, 3, 4, 5, 6, 7}, second = {8, 9, 10, 11, 12, 13, 14, 15};
const LineNumbers firstPixels = {2, 6}, secondPixels = {10, 14}, none = {};

const struct {
    LineNumbers ofFirst, ofSecond;
} changes[] = {{first, second}, {firstPixels, secondPixels}, {first, secondPixels},
               {first, none},   {firstPixels, second},       {none, second}};

// Those of a mode; an edge of chroma has half as many in each of its two blocks.
LineNumbers changedIn(int mode, int lines) {
    LineNumbers expected;
    for (int line = 0; line < lines; ++line) {
        const bool inFirst = line < lines / 2;
        const int ofLuma = inFirst ? line : line - lines / 2 + 8;
        if ((inFirst ? changes[mode].ofFirst : changes[mode].ofSecond).count(ofLuma)) expected.insert(line);
    }
    return expected;
}

// What a function filters, and how it lies in its block.
struct Shape {
    explicit Shape(std::string const &function)
        : vertical(function.find("VerEdge") != std::string::npos),
          lines(function.find("Luma") != std::string::npos ? 16 : 8),
          colours(function.find("C2IR") != std::string::npos ? 2 : 1) {}

    int across(int step) const { return vertical ? colours : step; }
    int along(int step) const { return vertical ? step : colours; }

    bool vertical;
    int lines, colours;
};

using Line = std::vector<int>; // four samples on each side of the edge

Line lineOf(unsigned char const *edge, Shape const &shape, int step, int line, int colour) {
    Line samples;
    for (int i = -4; i < 4; ++i)
        samples.push_back(edge[line * shape.along(step) + i * shape.across(step) + colour]);
    return samples;
}

// SMPTE 421M 8.6: whether the line has a step that the filter takes for that of blocks. With the third line
// of four it goes on to the others.
bool isTaken(Line const &v, int quant) {
    const auto uneven = [&](int a, int b, int c, int d) {
        return (2 * (v[a] - v[d]) - 5 * (v[b] - v[c]) + 4) >> 3;
    };
    const int a0 = std::abs(uneven(2, 3, 4, 5));
    const int a3 = std::min(std::abs(uneven(0, 1, 2, 3)), std::abs(uneven(4, 5, 6, 7)));
    return a0 < quant && a3 < a0 && std::abs(v[3] - v[4]) > 1;
}

// ---- calls ------------------------------------------------------------------------------

struct FilterCall {
    Kel8u *p;
    int quant, step;
    std::vector<int> flags;
};

std::vector<FilterCall> g_calls;

class Vc1Deblocking : public suite::SuiteTest {
protected:
    void SetUp() override {
        suite::SuiteTest::SetUp();
        g_calls.clear();
    }

    static std::vector<unsigned char> bytes() {
        suite::Block const block = suite::Sets::blocks().at(0);
        return {block.data, block.data + block.size};
    }

    // The lines of the colour that differ between two states of the block of the call.
    static LineNumbers changed(std::vector<unsigned char> const &before,
                               std::vector<unsigned char> const &after, Shape const &shape, int colour) {
        FilterCall const &call = g_calls.back();
        const long long place = call.p - suite::Sets::blocks().at(0).data;
        LineNumbers lines;
        for (int line = 0; line < shape.lines; ++line) {
            if (lineOf(before.data() + place, shape, call.step, line, colour) !=
                lineOf(after.data() + place, shape, call.step, line, colour))
                lines.insert(line);
        }
        return lines;
    }

    // The lines of the colour that the filter would take for steps of blocks.
    static LineNumbers taken(Shape const &shape, int colour) {
        FilterCall const &call = g_calls.back();
        LineNumbers lines;
        for (int line = 0; line < shape.lines; ++line) {
            if (isTaken(lineOf(call.p, shape, call.step, line, colour), call.quant)) lines.insert(line);
        }
        return lines;
    }
};

} // namespace

SUITE_TEST(Vc1Deblocking, "vc1deblocking.cpp", filters);

// ---- the spies ---------------------------------------------------------------------------

// clang-format off

#define SPY_ONE(name) \
    KelStatus name(Kel8u *p, Kel32s q, Kel32s step, Kel32s f) { g_calls.push_back({p, q, step, {f}}); return callLibrary(&name, #name, p, q, step, f); }
#define SPY_TWO(name) \
    KelStatus name(Kel8u *p, Kel32s q, Kel32s step, Kel32s u, Kel32s v) { g_calls.push_back({p, q, step, {u, v}}); return callLibrary(&name, #name, p, q, step, u, v); }

SPY_ONE(keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR)
SPY_ONE(keliFilterDeblockingLuma_HorEdge_VC1_8u_C1IR)
SPY_ONE(keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR)
SPY_ONE(keliFilterDeblockingChroma_HorEdge_VC1_8u_C1IR)
SPY_TWO(keliFilterDeblockingChroma_VerEdge_VC1_8u_C2IR)
SPY_TWO(keliFilterDeblockingChroma_HorEdge_VC1_8u_C2IR)

// clang-format on

// ---- arguments ---------------------------------------------------------------------------

TEST_F(Vc1Deblocking, EachCallFiltersTheEdgeInItsBlockAtQuantEightWithNothingLeftOut) {
    for (Expected const &filter : filters) {
        SCOPED_TRACE(filter.m_function);
        const Shape shape(filter.m_function);
        suite::Sets sets(suite::findTest(filter.m_function));
        int set = 0;
        for (; sets.next(); ++set) {
            EXPECT_EQ(sets.call(), 0);
            FilterCall const &call = g_calls.back();
            suite::Block const block = suite::Sets::blocks().at(0);
            const int step = set % 2 ? 18 : 16;
            EXPECT_EQ(block.size, step * (shape.vertical ? shape.lines : 8));
            EXPECT_EQ(call.p - block.data, 4 * shape.across(step));
            EXPECT_EQ(call.quant, 8);
            EXPECT_EQ(call.step, step);
            EXPECT_EQ(call.flags, std::vector<int>(shape.colours, 0));
        }
        EXPECT_EQ(set, 12);
    }
}

// ---- modes -------------------------------------------------------------------------------

TEST_F(Vc1Deblocking, EachModeChangesTheLinesThatItsLabelNames) {
    for (Expected const &filter : filters) {
        const Shape shape(filter.m_function);
        suite::Sets sets(suite::findTest(filter.m_function));
        for (int set = 0; sets.next(); ++set) {
            SCOPED_TRACE(filter.m_function + ", " + labels[set / 2]);
            const std::vector<unsigned char> before = bytes();
            EXPECT_EQ(sets.call(), 0);
            for (int colour = 0; colour < shape.colours; ++colour)
                EXPECT_EQ(changed(before, bytes(), shape, colour), changedIn(set / 2, shape.lines));
        }
    }
}

// What a measurement counts: the calls behind the first one find their own results.
TEST_F(Vc1Deblocking, EachCallOfAMeasurementTakesThePathOfItsMode) {
    for (Expected const &filter : filters) {
        const Shape shape(filter.m_function);
        suite::Sets sets(suite::findTest(filter.m_function));
        for (int set = 0; sets.next(); ++set) {
            SCOPED_TRACE(filter.m_function + ", " + labels[set / 2]);
            for (int call = 0; call < 4; ++call) {
                const std::vector<unsigned char> before = bytes();
                EXPECT_EQ(sets.call(), 0);
                for (int colour = 0; colour < shape.colours; ++colour)
                    EXPECT_EQ(taken(shape, colour), changedIn(set / 2, shape.lines)) << "call " << call;
                if (call > 0) {
                    EXPECT_EQ(bytes(), before) << "call " << call;
                }
            }
        }
    }
}

// An edge that is left out is one of the picture: its third lines are refused, so that no other is looked at.
TEST_F(Vc1Deblocking, AnEdgeLeftOutHasAStepThatIsTooHigh) {
    suite::Sets sets(suite::findTest("keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR"));
    for (int set = 0; set < 7; ++set) ASSERT_TRUE(sets.next());
    EXPECT_EQ(sets.call(), 0); // of mode 4: the second edge has none
    FilterCall const &call = g_calls.back();
    const Shape shape("LumaVerEdge");
    EXPECT_EQ(lineOf(call.p, shape, 16, 2, 0), Line({100, 100, 100, 102, 108, 110, 110, 110}));
    EXPECT_EQ(lineOf(call.p, shape, 16, 10, 0), Line({100, 100, 100, 100, 124, 124, 124, 124}));
}

// vc1blocks_test.cpp - the suites of VC-1 transforms, quantisers, Hadamard sums, range mapping and smoothing.

#include <algorithm>

#include "kmvc.h"
#include "seenargs.h"
#include "suitetest.h"
#include "vc1spies.h"

namespace {

using suite::Cells;
using suite::Expected;

// "name=value" of each value.
Cells named(std::string const &name, std::vector<int> const &values) {
    Cells cells;
    for (int value : values) cells.push_back(name + "=" + std::to_string(value));
    return cells;
}

const std::vector<int> side8 = {8}, sides48 = {4, 8}, areas4 = {1, 2, 4}, areas8 = {1, 2, 4, 8};
const std::vector<int> steps = {16, 18};
const std::vector<int> dequantSteps = {2, 7, 21, 30, 39, 64}, quantSteps = {4, 6, 26, 30, 38, 60};
const std::vector<int> smoothSteps = {32, 36, 40}, fieldFlags = {0, 1, 2, 3}, edgeFlags = {3, 12, 15};
const std::vector<int> rangeParams = {0, 1, 2, 3, 5, 7}, rangeSides = {16, 18};

const int block16s = 800; // bytes of 400 elements

bool has(std::string const &function, char const *word) {
    return function.find(word) != std::string::npos;
}

// ---- what is registered ---------------------------------------------------------------

Expected quantiser(char const *test, char const *function) {
    std::vector<int> const &sides = has(function, "Intra") ? side8 : sides48;
    return Expected(test, function, "all", 1)
        .parm("width", named("width", sides))
        .parm("height", named("height", sides))
        .stat(1024);
}

Expected dequantInPlace(char const *function) {
    return quantiser("rk_VC1Dequant", function)
        .parm("doubleQuant", named("doubleQuant", dequantSteps))
        .parm("srcDstStep", named("srcDstStep", steps))
        .blocks({block16s})
        .updates({0});
}

// Its two blocks stay until they are made anew.
Expected dequant(char const *function) {
    return quantiser("rk_VC1Dequant", function)
        .parm("doubleQuant", named("doubleQuant", dequantSteps))
        .parm("srcStep", named("srcStep", steps))
        .parm("dstStep", named("dstStep", steps))
        .blocks({block16s, block16s})
        .writes({1})
        .leaves({block16s, block16s});
}

const std::vector<Expected> dequants = {
    dequantInPlace("keliQuantInvIntraUniform_VC1_16s_C1IR"),
    dequantInPlace("keliQuantInvIntraNonuniform_VC1_16s_C1IR"),
    dequantInPlace("keliQuantInvInterUniform_VC1_16s_C1IR"),
    dequantInPlace("keliQuantInvInterNonuniform_VC1_16s_C1IR"),
    dequant("keliQuantInvIntraUniform_VC1_16s_C1R"),
    dequant("keliQuantInvIntraNonuniform_VC1_16s_C1R"),
    dequant("keliQuantInvInterUniform_VC1_16s_C1R"),
    dequant("keliQuantInvInterNonuniform_VC1_16s_C1R"),
};

Expected quant(char const *function) {
    return quantiser("rk_VC1Quant", function)
        .parm("srcDstStep", named("srcDstStep", steps))
        .parm("doubleQuant", named("doubleQuant", quantSteps))
        .blocks({block16s})
        .updates({0});
}

const std::vector<Expected> quants = {
    quant("keliQuantIntraUniform_VC1_16s_C1IR"),
    quant("keliQuantIntraNonuniform_VC1_16s_C1IR"),
    quant("keliQuantInterUniform_VC1_16s_C1IR"),
    quant("keliQuantInterNonuniform_VC1_16s_C1IR"),
};

const std::vector<int> hadamardSizes = {131072, 2 * 262144, 128};

Expected hadamard(char const *function) {
    return Expected("rk_VC1HadamardSum", function, "all", 1)
        .rows({{}})
        .stat(1023)
        .blocks(hadamardSizes)
        .writes({2});
}

const std::vector<Expected> hadamards = {hadamard("keliHadamard8x8Sum_VC1_8u16s"),
                                         hadamard("keliHadamard8x8Sum_VC1_16s")};

char const *const rangeMapping = "keliRangeMapping_VC1_8u_C1R";

const std::vector<Expected> rangeMaps = {
    Expected("rk_VC1RangeMap", rangeMapping, "all", 1)
        .parm("width", named("width", rangeSides))
        .parm("height", named("height", rangeSides))
        .parm("step", named("step", steps))
        .parm("rangeMapParam", named("rangeMapParam", rangeParams))
        .stat(1024)
        .blocks({400, 400})
        .writes({1}),
};

// Flat blocks stay as they are when they are smoothed, so that the write to the picture alone is seen.
const std::vector<int> oneColour = {block16s, block16s, 1600};
const std::vector<int> twoColours = {block16s, block16s, block16s, block16s, 12800};

Expected smooth(char const *function, std::vector<int> const &sizes) {
    return Expected("rk_VC1Smooth", function, "all", 1)
        .parm("step", named("step", smoothSteps))
        .parm("fieldNeighbourFlag", named("fieldNeighbourFlag", fieldFlags))
        .parm("edgeDisableFlag", named("edgeDisableFlag", edgeFlags))
        .stat(1024)
        .blocks(sizes)
        .writes({static_cast<int>(sizes.size()) - 1});
}

char const *const lumaVer = "keliSmoothingLuma_VerEdge_VC1_16s8u_C1R";
char const *const lumaHor = "keliSmoothingLuma_HorEdge_VC1_16s8u_C1R";
char const *const chromaVer = "keliSmoothingChroma_VerEdge_VC1_16s8u_C1R";
char const *const chromaHor = "keliSmoothingChroma_HorEdge_VC1_16s8u_C1R";
char const *const bothVer = "keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R";
char const *const bothHor = "keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R";

const std::vector<Expected> smooths = {
    smooth(lumaVer, oneColour),   smooth(lumaHor, oneColour),  smooth(chromaVer, oneColour),
    smooth(chromaHor, oneColour), smooth(bothVer, twoColours), smooth(bothHor, twoColours),
};

// What works in place has the second block all the same.
Expected forward(char const *function) {
    Expected expected("rk_VC1TransformFwd", function, "all", 1);
    expected.parm("step", named("step", steps)).stat(1024).blocks({block16s, block16s});
    return has(function, "C1IR") ? expected.updates({0}) : expected.writes({1});
}

const std::vector<Expected> forwards = {
    forward("keliTransform8x8Fwd_VC1_16s_C1R"),  forward("keliTransform8x4Fwd_VC1_16s_C1R"),
    forward("keliTransform4x8Fwd_VC1_16s_C1R"),  forward("keliTransform4x4Fwd_VC1_16s_C1R"),
    forward("keliTransform8x8Fwd_VC1_16s_C1IR"), forward("keliTransform8x4Fwd_VC1_16s_C1IR"),
    forward("keliTransform4x8Fwd_VC1_16s_C1IR"), forward("keliTransform4x4Fwd_VC1_16s_C1IR"),
};

// The method stays that of the session.
Expected inverse(char const *function, std::vector<int> const &widths, std::vector<int> const &heights) {
    Expected expected("rk_VC1Transform", function, "all", 1);
    expected.parm("width", named("width", widths))
        .parm("height", named("height", heights))
        .parm("step", named("step", steps))
        .blocks({block16s, block16s});
    return has(function, "C1IR") ? expected.updates({0}) : expected.writes({1});
}

const std::vector<Expected> inverses = {
    inverse("keliTransform8x8Inv_VC1_16s_C1R", areas8, areas8),
    inverse("keliTransform8x4Inv_VC1_16s_C1R", areas8, areas4),
    inverse("keliTransform4x8Inv_VC1_16s_C1R", areas4, areas8),
    inverse("keliTransform4x4Inv_VC1_16s_C1R", areas4, areas4),
    inverse("keliTransform8x8Inv_VC1_16s_C1IR", areas8, areas8),
    inverse("keliTransform8x4Inv_VC1_16s_C1IR", areas8, areas4),
    inverse("keliTransform4x8Inv_VC1_16s_C1IR", areas4, areas8),
    inverse("keliTransform4x4Inv_VC1_16s_C1IR", areas4, areas4),
};

// ---- arguments --------------------------------------------------------------------------

// An argument: a number, or a place in a tracked block, or the address of a static of the file.
struct Wanted {
    int block; // -1: a number; -2: a static
    int n;     // the number, or bytes from the start of the block
};

Wanted number(int n) {
    return {-1, n};
}
Wanted area(int width, int height) {
    return {-1, width * 10000 + height};
}
Wanted at(int block, int bytes = 0) {
    return {block, bytes};
}
const Wanted ofTheFile = {-2, 0};

using Wanteds = std::vector<Wanted>;

Wanteds joined(Wanteds first, Wanteds const &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

void expectCall(SeenCall const &call, Wanteds const &wanted, std::vector<int> const &sizes) {
    ASSERT_EQ(call.args.size(), wanted.size()) << call.function;
    for (size_t i = 0; i < wanted.size(); ++i) {
        SCOPED_TRACE(call.function + ", argument " + std::to_string(i));
        SeenArgument const &arg = call.args[i];
        EXPECT_EQ(arg.data != nullptr, wanted[i].block != -1);
        EXPECT_EQ(arg.block, std::max(wanted[i].block, -1));
        if (wanted[i].block == -1) {
            EXPECT_EQ(arg.value, wanted[i].n);
        } else if (wanted[i].block >= 0) {
            EXPECT_EQ(sizes[wanted[i].block] - arg.room, wanted[i].n);
        }
    }
}

// All combinations of values, the last turning fastest.
std::vector<std::vector<int>> combinations(std::vector<std::vector<int>> const &values) {
    std::vector<std::vector<int>> all = {{}};
    for (std::vector<int> const &list : values) {
        std::vector<std::vector<int>> longer;
        for (std::vector<int> const &head : all) {
            for (int value : list) {
                longer.push_back(head);
                longer.back().push_back(value);
            }
        }
        all = longer;
    }
    return all;
}

class Vc1Blocks : public suite::SuiteTest {
protected:
    // wanted(values) are the arguments of the set with these values of the parameters.
    template <class Function>
    void expectCalls(std::string const &function, std::vector<std::vector<int>> const &values,
                     std::vector<int> const &sizes, Function wanted) {
        suite::Outcome outcome;
        const std::vector<SeenCall> calls = callsOf(outcome, function);
        const auto sets = combinations(values);
        ASSERT_EQ(calls.size(), sets.size()) << function << outcome.log;
        for (size_t i = 0; i < sets.size(); ++i) expectCall(calls[i], wanted(sets[i]), sizes);
    }
    void expectConstant(std::string const &function);
};

// All elements of all blocks are 2.
void Vc1Blocks::expectConstant(std::string const &function) {
    suite::Sets sets(suite::findTest(function));
    ASSERT_TRUE(sets.next());
    for (suite::Block const &b : suite::Sets::blocks()) {
        const bool bytes = b.size == 131072 || b.size == 400 || b.size == 1600 || b.size == 12800;
        for (int i = 0; i < b.size; ++i) ASSERT_EQ(b.data[i], bytes || i % 2 == 0 ? 2 : 0) << function;
    }
}

} // namespace

SUITE_TEST(Vc1Dequant, "vc1dequant.cpp", dequants);
SUITE_TEST(Vc1Quant, "vc1quant.cpp", quants);
SUITE_TEST(Vc1HadamardSum, "vc1hadamardsum.cpp", hadamards);
SUITE_TEST(Vc1RangeMap, "vc1rangemap.cpp", rangeMaps);
SUITE_TEST(Vc1Smooth, "vc1smooth.cpp", smooths);
SUITE_TEST(Vc1TransformFwd, "vc1transformfwd.cpp", forwards);
SUITE_TEST(Vc1Transform, "vc1transform.cpp", inverses);

// ---- quantisers ---------------------------------------------------------------------------

TEST_F(Vc1Blocks, InverseQuantisersGetStepsQuantiserAndSizeOfTheirSet) {
    for (Expected const &expected : dequants) {
        std::string const &function = expected.m_function;
        const bool intra = has(function, "Intra"), inPlace = has(function, "C1IR");
        std::vector<int> const &sides = intra ? side8 : sides48;
        std::vector<std::vector<int>> values = {sides, sides, dequantSteps, steps};
        if (!inPlace) values.push_back(steps);
        expectCalls(function, values, expected.m_blocks, [&](std::vector<int> const &v) {
            Wanteds wanted =
                inPlace ? Wanteds{at(0), number(v[3])} : Wanteds{at(0), number(v[3]), at(1), number(v[4])};
            wanted.push_back(number(v[2]));
            if (!intra) wanted.push_back(area(v[0], v[1]));
            wanted.push_back(ofTheFile);
            return wanted;
        });
    }
}

TEST_F(Vc1Blocks, QuantisersGetStepQuantiserAndSizeOfTheirSet) {
    for (Expected const &expected : quants) {
        const bool intra = has(expected.m_function, "Intra");
        std::vector<int> const &sides = intra ? side8 : sides48;
        expectCalls(expected.m_function, {sides, sides, steps, quantSteps}, expected.m_blocks,
                    [&](std::vector<int> const &v) {
                        const Wanteds wanted = {at(0), number(v[2]), number(v[3])};
                        return intra ? wanted : joined(wanted, {area(v[0], v[1])});
                    });
    }
}

TEST_F(Vc1Blocks, FlushOfTheInverseQuantisersFreesTheBlockInPlaceAlone) {
    run("keliQuantInvIntraUniform_VC1_16s_C1IR");
    EXPECT_TRUE(suite::Sets::blocks().empty());
    run("keliQuantInvIntraUniform_VC1_16s_C1R");
    EXPECT_EQ(suite::Sets::blocks().size(), 2u);
    run("keliQuantInvInterUniform_VC1_16s_C1IR");
    EXPECT_EQ(suite::Sets::blocks().size(), 2u);
}

TEST_F(Vc1Blocks, BlocksOfTheInverseQuantisersGoWhenTheyAreMadeAnew) {
    for (char const *function :
         {"keliQuantInvIntraUniform_VC1_16s_C1R", "keliQuantInvInterNonuniform_VC1_16s_C1R"}) {
        run(function);
        EXPECT_EQ(suite::Sets::blocks().size(), 2u) << function;
    }
}

// ---- Hadamard sums -------------------------------------------------------------------------

TEST_F(Vc1Blocks, HadamardReadsFrom64PlacesInTurn) {
    for (Expected const &expected : hadamards) {
        const bool bytes = has(expected.m_function, "8u16s");
        suite::Sets sets(suite::findTest(expected.m_function));
        ASSERT_TRUE(sets.next());
        g_seen.clear();
        for (int call = 0; call < 200; ++call) {
            ASSERT_EQ(sets.call(), 0);
            const int n = call % 64;
            expectCall(g_seen.back(),
                       {bytes ? at(0, n) : at(1, 2 * n), number(bytes ? 16 : 32), at(2), ofTheFile},
                       hadamardSizes);
        }
        EXPECT_FALSE(sets.next());
    }
}

TEST_F(Vc1Blocks, EachHadamardTestBeginsAtTheFirstPlace) {
    for (int round = 0; round < 2; ++round) {
        for (Expected const &expected : hadamards) {
            g_seen.clear();
            run(expected.m_function);
            ASSERT_EQ(g_seen.size(), 2u); // the first one is the warm-up
            const int block = has(expected.m_function, "8u16s") ? 0 : 1;
            EXPECT_EQ(g_seen[0].args[0].block, block);
            EXPECT_EQ(g_seen[0].args[0].room, hadamardSizes[block]);
            EXPECT_EQ(g_seen[1].args[0].room, hadamardSizes[block] - (block ? 2 : 1));
        }
    }
}

// ---- range mapping --------------------------------------------------------------------------

TEST_F(Vc1Blocks, RangeMappingGetsOneStepForBothPictures) {
    expectCalls(rangeMapping, {rangeSides, rangeSides, steps, rangeParams}, {400, 400},
                [](std::vector<int> const &v) {
                    return Wanteds{at(0), number(v[2]), at(1), number(v[2]), area(v[0], v[1]), number(v[3])};
                });
}

// ---- smoothing ------------------------------------------------------------------------------

TEST_F(Vc1Blocks, VerticalLumaEdgesStandTwoSamplesBehindTheSecondRow) {
    expectCalls(lumaVer, {smoothSteps, fieldFlags, edgeFlags}, oneColour, [](std::vector<int> const &v) {
        const int step = v[0];
        return Wanteds{at(0),        number(step), at(1), number(step), at(2, step / 2 + 2), number(step / 2),
                       number(v[1]), number(v[2])};
    });
}

TEST_F(Vc1Blocks, HorizontalLumaEdgesTakeTheRowsFromTheThirteenthOn) {
    expectCalls(lumaHor, {smoothSteps, fieldFlags, edgeFlags}, oneColour, [](std::vector<int> const &v) {
        const int step = v[0];
        return Wanteds{at(0, 12 * step), number(step),     at(1),       number(step),
                       at(2, 6 * step),  number(step / 2), number(v[2])};
    });
}

TEST_F(Vc1Blocks, ChromaEdgesHaveNoFlags) {
    expectCalls(chromaVer, {smoothSteps, fieldFlags, edgeFlags}, oneColour, [](std::vector<int> const &v) {
        const int step = v[0];
        return Wanteds{at(0), number(step), at(1), number(step), at(2, step / 2 + 2), number(step)};
    });
    expectCalls(chromaHor, {smoothSteps, fieldFlags, edgeFlags}, oneColour, [](std::vector<int> const &v) {
        const int step = v[0];
        return Wanteds{at(0, 6 * step), number(step), at(1), number(step), at(2, 6 * step), number(step)};
    });
}

TEST_F(Vc1Blocks, EdgesOfBothColoursHaveFourSources) {
    const auto wanted = [](int step, int place) {
        return Wanteds{at(0),        number(step), at(1),        number(step), at(2),
                       number(step), at(3),        number(step), at(4, place), number(2 * step)};
    };
    expectCalls(bothVer, {smoothSteps, fieldFlags, edgeFlags}, twoColours,
                [&](std::vector<int> const &v) { return wanted(v[0], v[0] + 2); });
    expectCalls(bothHor, {smoothSteps, fieldFlags, edgeFlags}, twoColours,
                [&](std::vector<int> const &v) { return wanted(v[0], 4 * v[0]); });
}

// ---- transforms -----------------------------------------------------------------------------

TEST_F(Vc1Blocks, ForwardTransformsGetOneStepForBothBlocks) {
    for (Expected const &expected : forwards) {
        const bool inPlace = has(expected.m_function, "C1IR");
        expectCalls(expected.m_function, {steps}, expected.m_blocks, [&](std::vector<int> const &v) {
            const Wanteds wanted = {at(0), number(v[0])};
            return inPlace ? wanted : joined(wanted, {at(1), number(v[0])});
        });
    }
}

TEST_F(Vc1Blocks, InverseTransformsGetTheAreaOfTheirSet) {
    for (Expected const &expected : inverses) {
        std::string const &function = expected.m_function;
        const bool inPlace = has(function, "C1IR");
        std::vector<int> const &widths = has(function, "Transform8x") ? areas8 : areas4;
        std::vector<int> const &heights = has(function, "x8Inv") ? areas8 : areas4;
        expectCalls(function, {widths, heights, steps}, expected.m_blocks, [&](std::vector<int> const &v) {
            const Wanteds source = {at(0), number(v[2])};
            const Wanteds both = inPlace ? source : joined(source, {at(1), number(v[2])});
            return joined(both, {area(v[0], v[1])});
        });
    }
}

TEST_F(Vc1Blocks, AreasOf4x4NeverReach8) {
    for (char const *function : {"keliTransform4x4Inv_VC1_16s_C1R", "keliTransform4x4Inv_VC1_16s_C1IR"}) {
        const suite::Rows rows = run(function).rows;
        ASSERT_EQ(rows.size(), 18u);
        for (suite::Cells const &row : rows) {
            EXPECT_NE(row[suite::firstParm], "width=8");
            EXPECT_NE(row[suite::firstParm + 1], "height=8");
        }
    }
}

// ---- data -----------------------------------------------------------------------------------

// A step of 18 puts every second row beside a multiple of 4.
TEST_F(Vc1Blocks, RowsOfASecondStepAreNotAligned) {
    int rows = 0;
    for (Expected const &expected : forwards) {
        suite::Outcome outcome;
        for (SeenCall const &call : callsOf(outcome, expected.m_function)) {
            const auto first = reinterpret_cast<size_t>(call.args[0].data);
            const size_t step = static_cast<size_t>(call.args[1].value);
            EXPECT_EQ(first % 4, 0u);
            EXPECT_EQ((first + step) % 4, step == 18 ? 2u : 0u);
            rows += step == 18;
        }
    }
    EXPECT_EQ(rows, 8);
}

TEST_F(Vc1Blocks, AllBuffersHoldTheDefaultConstant) {
    for (auto const *list : {&dequants, &quants, &hadamards, &rangeMaps, &smooths, &forwards, &inverses}) {
        for (Expected const &expected : *list) expectConstant(expected.m_function);
    }
}

TEST_F(Vc1Blocks, WithoutMemoryThereIsNoSet) {
    for (char const *function :
         {"keliQuantInvInterUniform_VC1_16s_C1R", "keliHadamard8x8Sum_VC1_16s", rangeMapping, lumaVer,
          bothHor, "keliTransform8x8Fwd_VC1_16s_C1R", "keliTransform8x8Inv_VC1_16s_C1IR"}) {
        NoSecondBlock full;
        g_seen.clear();
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_seen.empty()) << function;
    }
}

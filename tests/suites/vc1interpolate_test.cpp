// vc1interpolate_test.cpp - the suites of VC-1 interpolation: parameters, records, places and data.

#include <algorithm>
#include <cstring>

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;
using suite::Rows;

char const *const bilinear = "keliInterpolateQPBilinear_VC1_8u_C1R";
char const *const bicubic = "keliInterpolateQPBicubic_VC1_8u_C1R";
char const *const pairs = "keliInterpolateQPBilinear_VC1_8u_C2R";
char const *const compensated = "keliInterpolateICBilinearBlock_VC1_8u_C1R";
char const *const compensatedBicubic = "keliInterpolateICBicubicBlock_VC1_8u_C1R";
char const *const compensatedPairs = "keliInterpolateICBilinearBlock_VC1_8u_C2R";

// ---- sets ---------------------------------------------------------------------------------

// "name=value" of each value.
Cells named(std::string const &name, std::vector<int> const &values) {
    Cells cells;
    for (int value : values) cells.push_back(name + "=" + std::to_string(value));
    return cells;
}

Cells sizesOf(std::string const &function) {
    if (function.find("C2R") != std::string::npos) return {"blockSize=8x8", "blockSize=8x4", "blockSize=4x4"};
    if (function.find("Bilinear") != std::string::npos)
        return {"blockSize=16x16", "blockSize=8x8", "blockSize=8x4", "blockSize=4x4"};
    return {"blockSize=16x16", "blockSize=16x8", "blockSize=8x8"};
}

using Parms = std::vector<std::pair<std::string, Cells>>;

// All of them.
Parms parmsOf(std::string const &function) {
    return {{"blockSizeIndex", sizesOf(function)},   {"dx", named("dx", {0, 1, 2, 3})},
            {"dy", named("dy", {0, 1, 2, 3})},       {"roundControl", named("roundControl", {0, 1})},
            {"srcStep", named("srcStep", {64, 65})}, {"dstStep", named("dstStep", {32, 33})}};
}

// A set of interpolation has up to 20 million bytes, so that the checks that hold for all suites walk eight
// of them: the last block size and one place between the samples.
Parms partOf(std::string const &function) {
    Parms parms = parmsOf(function);
    parms[0].second = {parms[0].second.back()};
    parms[1].second = {"dx=1"};
    parms[2].second = {"dy=3"};
    return parms;
}

class PartOfTheSets : public testing::Environment {
public:
    void SetUp() override {
        std::string text;
        for (std::string const function : {bilinear, bicubic, pairs}) {
            const Parms parms = partOf(function);
            text += "[" + function + "]\n";
            for (size_t i = 0; i < 3; ++i) text += parms[i].first + " = " + parms[i].second[0] + "\n";
        }
        m_file = new IniFile(text);
    }
    void TearDown() override { delete m_file; }

private:
    IniFile *m_file = nullptr;
};

testing::Environment *const partOfTheSets = testing::AddGlobalTestEnvironment(new PartOfTheSets);

// ---- what is registered ---------------------------------------------------------------

Expected interpolate(std::string const &function, int bytes) {
    Expected expected("rk_VC1Interpolate", function, "all", 1);
    for (auto const &parm : partOf(function)) expected.parm(parm.first, parm.second);
    return expected.stat(256).blocks({bytes, bytes}).writes({1});
}

const std::vector<Expected> interpolation = {
    interpolate(bilinear, 5242880),
    interpolate(bicubic, 5242880),
    interpolate(pairs, 10485760),
};

Expected compensate(std::string const &function, int srcBytes, int dstBytes) {
    Expected expected("rk_VC1InterpolateICBlock", function, "all", 1);
    const Parms parms = parmsOf(function);
    for (size_t i = 0; i < 3; ++i) expected.parm(parms[i].first, parms[i].second);
    return expected.stat(256).blocks({srcBytes, dstBytes, 256, 256}).writes({1});
}

const std::vector<Expected> compensation = {
    compensate(compensated, 1311020, 1310720),
    compensate(compensatedBicubic, 1311020, 1310720),
    compensate(compensatedPairs, 2621740, 2621440),
};

// ---- calls ------------------------------------------------------------------------------

std::vector<KeliInterpolateVC1_8u> g_params; // records of the calls
std::vector<KeliInterpolateICBlockVC1_8u> g_icParams;

class Vc1Interpolate : public suite::SuiteTest {
protected:
    void SetUp() override {
        suite::SuiteTest::SetUp();
        g_params.clear();
        g_icParams.clear();
    }
    // Every byte is the default constant.
    static bool isDefault(suite::Block const &block) {
        return std::all_of(block.data, block.data + block.size, [](unsigned char byte) { return byte == 2; });
    }
};

// The values of the cells "name=value" of the k-th row, in the order of the parameters.
std::vector<int> valuesIn(Cells const &row) {
    std::vector<int> values;
    for (size_t i = 1; i < row.size(); ++i) values.push_back(std::stoi(row[i].substr(row[i].find('=') + 1)));
    return values;
}

std::string textOf(KeliSize size) {
    return "blockSize=" + std::to_string(size.width) + "x" + std::to_string(size.height);
}

Rows rowsOf(Parms const &parms) {
    std::vector<Cells> values;
    for (auto const &parm : parms) values.push_back(parm.second);
    return suite::product(values);
}

// The sets of a test by name, without their data.
Rows walk(rkTest *test) {
    Rows rows;
    test->m_tool = g_tool;
    test->beginTest();
    EXPECT_TRUE(test->canStart());
    for (test->m_firstPass = true; test->canContinue(); test->m_firstPass = false) {
        rows.emplace_back();
        for (rkParameter *parm : test->m_parms) {
            auto const *values = dynamic_cast<rkMapIterator<int> const *>(parm);
            rows.back().push_back(values ? str(values->valueToString(values->m_value)) : "(not a map)");
        }
    }
    test->endTest();
    return rows;
}

} // namespace

SUITE_TEST(Vc1Interpolate, "vc1interpolate.cpp", interpolation);
SUITE_TEST(Vc1InterpolateICBlock, "vc1interpolateicblock.cpp", compensation);

// ---- the spies ---------------------------------------------------------------------------

// clang-format off

#define SPY_INTERPOLATE(name) \
    KelStatus name(const KeliInterpolateVC1_8u *p) { g_params.push_back(*p); return callLibrary(&name, #name, p); }
#define SPY_COMPENSATE(name) \
    KelStatus name(const KeliInterpolateICBlockVC1_8u *p) { g_icParams.push_back(*p); return callLibrary(&name, #name, p); }

SPY_INTERPOLATE(keliInterpolateQPBilinear_VC1_8u_C1R)
SPY_INTERPOLATE(keliInterpolateQPBicubic_VC1_8u_C1R)
SPY_INTERPOLATE(keliInterpolateQPBilinear_VC1_8u_C2R)
SPY_COMPENSATE(keliInterpolateICBilinearBlock_VC1_8u_C1R)
SPY_COMPENSATE(keliInterpolateICBicubicBlock_VC1_8u_C1R)
SPY_COMPENSATE(keliInterpolateICBilinearBlock_VC1_8u_C2R)

// clang-format on

// ---- sets ----------------------------------------------------------------------------------

TEST_F(Vc1Interpolate, AllCombinationsOfTheParametersAreSets) {
    for (std::string const function : {bilinear, bicubic, pairs}) {
        const Rows rows = rowsOf(parmsOf(function));
        EXPECT_EQ(walk(suite::findTest(function)), rows) << function;
        EXPECT_EQ(rows.size(), function == bilinear ? 512u : 384u);
    }
}

TEST_F(Vc1Interpolate, EachSetHasItsRecordAndItsPlace) {
    for (std::string const function : {bilinear, bicubic, pairs}) {
        const Rows rows = rowsOf(partOf(function));
        suite::Sets sets(suite::findTest(function));
        size_t set = 0;
        for (; sets.next(); ++set) {
            ASSERT_LT(set, rows.size());
            EXPECT_EQ(sets.call(), 0);
            const std::vector<suite::Block> blocks = suite::Sets::blocks();
            KeliInterpolateVC1_8u const &p = g_params.back();
            EXPECT_EQ(p.pSrc - blocks[0].data, 5120 + 16 * static_cast<int>(set));
            EXPECT_EQ(p.pDst, blocks[1].data);
            EXPECT_EQ(textOf(p.roiSize), rows[set][0]);
            EXPECT_EQ(std::vector<int>({p.dx, p.dy, p.roundControl, p.srcStep, p.dstStep}),
                      valuesIn(rows[set]))
                << function << ", set " << set;
        }
        EXPECT_EQ(set, rows.size());
    }
}

TEST_F(Vc1Interpolate, EachSetOfCompensationHasItsRecordAndItsPlace) {
    for (std::string const function : {compensated, compensatedBicubic, compensatedPairs}) {
        Parms parms = parmsOf(function);
        parms.resize(3);
        const Rows rows = rowsOf(parms);
        suite::Sets sets(suite::findTest(function));
        size_t set = 0;
        for (; sets.next(); ++set) {
            ASSERT_LT(set, rows.size());
            EXPECT_EQ(sets.call(), 0);
            const std::vector<suite::Block> blocks = suite::Sets::blocks();
            KeliInterpolateICBlockVC1_8u const &p = g_icParams.back();
            EXPECT_EQ(p.pSrc - blocks[0].data, 2560 + 16 * static_cast<int>(set));
            EXPECT_EQ(p.pDst, blocks[1].data);
            EXPECT_EQ(p.pLUTTop, blocks[2].data);
            EXPECT_EQ(p.pLUTBottom, blocks[3].data);
            EXPECT_EQ(p.srcStep, 64);
            EXPECT_EQ(p.dstStep, 32);
            EXPECT_TRUE(p.sizeFrame.width == 320 && p.sizeFrame.height == 200);
            EXPECT_EQ(textOf(p.sizeBlock), rows[set][0]);
            EXPECT_TRUE(p.pointBlockPos.x == 7 && p.pointBlockPos.y == 9);
            EXPECT_EQ(std::vector<int>({p.dx, p.dy}), valuesIn(rows[set])) << function << ", set " << set;
            EXPECT_TRUE(!p.roundControl && !p.fieldPrediction && !p.bottomField && !p.fieldPadding);
        }
        EXPECT_EQ(set, rows.size());
    }
}

TEST_F(Vc1Interpolate, PlacesStartOverWithTheTest) {
    for (int round = 0; round < 2; ++round) {
        for (std::string const function : {bicubic, compensated}) {
            suite::Sets sets(suite::findTest(function));
            for (int set = 0; set < 3; ++set) {
                ASSERT_TRUE(sets.next());
                EXPECT_EQ(sets.call(), 0);
                const unsigned char *begin = suite::Sets::blocks()[0].data;
                if (function == bicubic) {
                    EXPECT_EQ(g_params.back().pSrc, begin + 5120 + 16 * set);
                } else {
                    EXPECT_EQ(g_icParams.back().pSrc, begin + 2560 + 16 * set);
                }
            }
        }
    }
}

// ---- data ----------------------------------------------------------------------------------

TEST_F(Vc1Interpolate, AllDataAreTheDefaultConstant) {
    for (std::string const function :
         {bilinear, bicubic, pairs, compensated, compensatedBicubic, compensatedPairs}) {
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        for (suite::Block const &block : suite::Sets::blocks()) EXPECT_TRUE(isDefault(block)) << function;
    }
}

// Steps of 65 and 33 take the rows off all multiples of 4; the block is written where they say.
TEST_F(Vc1Interpolate, RowsOfOddStepsAreWrittenAsTheyLie) {
    for (std::string const function : {bilinear, bicubic, pairs}) {
        suite::Sets sets(suite::findTest(function));
        int odd = 0;
        while (sets.next()) {
            suite::Block const destination = suite::Sets::blocks()[1];
            memset(destination.data, 0xA5, 1024);
            ASSERT_EQ(sets.call(), 0);
            KeliInterpolateVC1_8u const &p = g_params.back();
            odd += p.dstStep == 33 && p.srcStep == 65;
            const int rowBytes = p.roiSize.width * (function == pairs ? 2 : 1);
            for (int i = 0; i < 1024; ++i) {
                const bool inside = i / p.dstStep < p.roiSize.height && i % p.dstStep < rowBytes;
                ASSERT_EQ(destination.data[i], inside ? 2 : 0xA5) << function << ", byte " << i;
            }
        }
        EXPECT_EQ(odd, 2) << function;
    }
}

TEST_F(Vc1Interpolate, WithoutMemoryThereIsNoSet) {
    for (std::string const function : {bilinear, pairs, compensated, compensatedPairs}) {
        NoSecondBlock full;
        suite::Outcome outcome = run(function);
        EXPECT_TRUE(rkIsError(outcome.result)) << function;
        EXPECT_TRUE(outcome.rows.empty()) << function;
        EXPECT_TRUE(g_params.empty() && g_icParams.empty()) << function;
        EXPECT_TRUE(suite::Sets::blocks().empty()) << function;
    }
}

// idct_test.cpp - the suite of the inverse DCT: its counts, its data and its calls.

#include "../unit/tempdir.h"
#include "kmvc.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;
using suite::findTest;
using suite::firstParm;

// Without an ini file there is one repeat, which the first count uses up.
Expected idct(char const *function, int destination) {
    return Expected("CiDCT", function, "element", 64)
        .rows({{"1"}})
        .blocks({1000, 1000, 1000, 500})
        .writes({destination});
}

const std::vector<Expected> transforms = {
    idct("keliDCT8x8Inv_AANTransposed_16s_C1R", 2),
    idct("keliDCT8x8Inv_AANTransposed_16s8u_C1R", 3),
    idct("keliDCT8x8Inv_AANTransposed_16s_P2C2R", 2),
    idct("keliDCT8x8Inv_AANTransposed_16s8u_P2C2R", 3),
};

class Idct : public suite::SuiteTest {
protected:
    void TearDown() override { g_istrm.close(); }

    void ini(std::string const &text) {
        ASSERT_TRUE(g_istrm.setIniFile(m_dir.write("idct.ini", text), false));
    }
    // The first parameter cell of each row, and what the function was told in the second call of each set.
    Cells countsOf(Expected const &expected) {
        g_seen.clear();
        Cells cells;
        suite::Rows rows = run(expected.m_function).rows;
        EXPECT_EQ(g_seen.size(), 2 * rows.size());
        for (size_t i = 0; i < rows.size() && 2 * i < g_seen.size(); ++i) {
            cells.push_back(rows[i][firstParm]);
            EXPECT_EQ(rows[i][firstParm + 1], "-") << "nothing but the count";
            EXPECT_EQ(std::to_string(g_seen[2 * i].args.back().value), cells.back());
        }
        return cells;
    }
    void expectCounts(std::string const &text, Cells const &counts) {
        ini(text);
        for (Expected const &expected : transforms) {
            EXPECT_EQ(countsOf(expected), counts) << expected.m_function << " with " << text;
        }
        g_istrm.close();
    }

    TempDir m_dir;
};

bool isPair(Expected const &expected) {
    return expected.m_function.find("P2C2R") != std::string::npos;
}

} // namespace

SUITE_TEST(Idct, "idct.cpp", transforms);

// ---- the spies ----------------------------------------------------------------------

// clang-format off
#define SPY_ONE(name, T) \
    KelStatus name(const Kel16s *s, T *d, int step, int n) { return SPY(name, s, d, step, n); }
#define SPY_PAIR(name, T) \
    KelStatus name(const Kel16s *u, const Kel16s *v, T *d, int step, int n, int m) { return SPY(name, u, v, d, step, n, m); }

SPY_ONE(keliDCT8x8Inv_AANTransposed_16s_C1R,      Kel16s)
SPY_ONE(keliDCT8x8Inv_AANTransposed_16s8u_C1R,    Kel8u)
SPY_PAIR(keliDCT8x8Inv_AANTransposed_16s_P2C2R,   Kel16s)
SPY_PAIR(keliDCT8x8Inv_AANTransposed_16s8u_P2C2R, Kel8u)
// clang-format on

// ---- counts -------------------------------------------------------------------------

TEST_F(Idct, FourRepeatsMeasureEachDefaultCountOnce) {
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 4\n", {"1", "4", "12", "64"});
}

TEST_F(Idct, OneRepeatMeasuresTheFirstCountAlone) {
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 1\n", {"1"});
}

TEST_F(Idct, RepeatsBelowTheNumberOfCountsLeaveTheLastOnesOut) {
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 3\n", {"1", "4", "12"});
}

// A turn of the list costs one repeat more, so that the fifth is gone before the list starts anew.
TEST_F(Idct, TheListStartsAnewWithTheRepeatsThatAreLeft) {
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 5\n", {"1", "4", "12", "64"});
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 6\n", {"1", "4", "12", "64", "1"});
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 5\nCounts = 7\n", {"7", "7", "7"});
}

TEST_F(Idct, TheIniFileTellsTheCounts) {
    expectCounts("[kelVC]\nRepeatCounter = 9\n[iDCT]\nRepeatCounter = 3\nCounts = 64,0,2\n",
                 {"64", "0", "2"});
}

TEST_F(Idct, AnEmptyListOfCountsIsSixtyFour) {
    expectCounts("[kelVC]\n[iDCT]\nCounts = \n", {"64"});
    expectCounts("[kelVC]\n[iDCT]\nCounts = ,\n", {"64"});
}

TEST_F(Idct, NoRepeatsRunNothing) {
    expectCounts("[kelVC]\n[iDCT]\nRepeatCounter = 0\n", {});
}

TEST_F(Idct, TheCommonSectionHoldsToo) {
    expectCounts("[kelVC]\nRepeatCounter = 2\n", {"1", "4"});
}

// A longer list than the class has room for is cut, and none of it is written elsewhere.
TEST_F(Idct, AListOfAThousandCountsStaysInItsRoom) {
    std::string counts = "Counts = 5";
    for (int i = 0; i < 999; ++i) counts += ",6";
    ini("[kelVC]\n[iDCT]\nRepeatCounter = 2\n" + counts + "\n");
    EXPECT_EQ(countsOf(transforms[0]), (Cells{"5", "6"}));
}

// The status of the library for a count that no block has fails the test.
TEST_F(Idct, ACountBeyondTheBlockFails) {
    ini("[kelVC]\n[iDCT]\nCounts = 65\n");
    EXPECT_EQ(run(transforms[0].m_function).result, rkResLibError);
}

// ---- data and arguments -----------------------------------------------------------------

TEST_F(Idct, CallsReadTheFirstVectorsAndStoreRowsOf32Bytes) {
    for (Expected const &expected : transforms) {
        g_seen.clear();
        run(expected.m_function);
        ASSERT_EQ(g_seen.size(), 2u);
        SeenCall const &call = g_seen[0];
        const size_t sources = isPair(expected) ? 2 : 1;
        ASSERT_EQ(call.args.size(), 2 * sources + 2) << "a count for each source";
        for (size_t i = 0; i < sources; ++i) {
            EXPECT_EQ(call.args[i].block, static_cast<int>(i));
            EXPECT_EQ(call.args[i].room, 1000);
        }
        EXPECT_EQ(call.args[sources].block, expected.m_writes[0]);
        EXPECT_EQ(call.args[sources].room, expected.m_blocks[expected.m_writes[0]]);
        EXPECT_EQ(call.args[sources + 1].value, 32);
        for (size_t i = sources + 2; i < call.args.size(); ++i) EXPECT_EQ(call.args[i].value, 1);
    }
}

TEST_F(Idct, DataComeFromTheSeedInOrder) {
    suite::Sets sets(findTest(transforms[0].m_function));
    ASSERT_TRUE(sets.next());
    std::vector<suite::Block> blocks = sets.blocks();
    ASSERT_EQ(blocks.size(), 4u);
    kmVector signedData(16 | kmTypeSigned), unsignedData(8);
    kmVector::m_seed = 7;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(signedData.createVectorExt(500, 0, SetRandom, -200.0, 200.0));
        EXPECT_EQ(memcmp(blocks[i].data, signedData.m_data, 1000), 0) << i;
    }
    ASSERT_TRUE(unsignedData.createVectorExt(500, 0, SetRandom, 1.0, 200.0));
    EXPECT_EQ(memcmp(blocks[3].data, unsignedData.m_data, 500), 0);
}

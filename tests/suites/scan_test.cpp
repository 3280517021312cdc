// scan_test.cpp - the suite of the scans: its data and its calls.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

const Cells names = {"zigzag", "horizontal", "vertical"};
const int codes[] = {0, 2, 1}; // of these names

Expected scan(char const *function) {
    return Expected("Timvc_Scan", function, "e", 64)
        .parm("scan", names)
        .rows(suite::product({{"64"}, names}))
        .blocks({128, 128})
        .writes({1});
}

const std::vector<Expected> scans = {scan("keliScanFwd_16s_C1"), scan("keliScanInv_16s_C1")};

class Scan : public suite::SuiteTest {
protected:
    // Each set's call: source, destination, a number, and the code of the scan.
    void expectCalls(std::string const &function, int number) {
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, function);
        ASSERT_EQ(calls.size(), 3u);
        for (int i = 0; i < 3; ++i)
            expectArgs(calls[i], {block(0), block(1), value(number), value(codes[i])}, {128, 128});
    }
};

} // namespace

SUITE_TEST(Scan, "scan.cpp", scans);

// ---- the spies ----------------------------------------------------------------------

KelStatus keliScanFwd_16s_C1(const Kel16s *src, Kel16s *dst, int countNonZero, int scan) {
    return SPY(keliScanFwd_16s_C1, src, dst, countNonZero, scan);
}

KelStatus keliScanInv_16s_C1(const Kel16s *src, Kel16s *dst, int indxLastNonZero, int scan) {
    return SPY(keliScanInv_16s_C1, src, dst, indxLastNonZero, scan);
}

// ---- the calls ------------------------------------------------------------------------

TEST_F(Scan, ForwardTakesABlockWithoutAZero) {
    expectCalls("keliScanFwd_16s_C1", 64);
}

TEST_F(Scan, InverseTakesABlockUpToItsLastPlace) {
    expectCalls("keliScanInv_16s_C1", 63);
}

// ---- the data ---------------------------------------------------------------------------

TEST_F(Scan, SourceIsRandomBetweenItsBoundsAndDestinationConstant) {
    for (Expected const &expected : scans) {
        suite::Sets sets(suite::findTest(expected.m_function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), 2u);
        expectRandom({blocks[0]}, {{16 | kmTypeSigned, 64, -300, 300}});
        for (int i = 0; i < 128; ++i) EXPECT_EQ(blocks[1].data[i], i % 2 ? 0 : 2);
    }
}

TEST_F(Scan, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    suite::Outcome outcome = run("keliScanFwd_16s_C1");
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_TRUE(outcome.rows.empty());
    EXPECT_TRUE(suite::Sets::blocks().empty());
}

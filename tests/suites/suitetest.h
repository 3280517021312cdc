// suitetest.h - what holds for every suite: its test lists what the suite's file registers.

#ifndef RAKOVA_TESTS_SUITETEST_H
#define RAKOVA_TESTS_SUITETEST_H

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "km.h"

namespace suite {

using Cells = std::vector<std::string>;
using Rows = std::vector<Cells>;

// What a registration is to be. What is not said is expected not to be there: no parameter, no change of the
// timing method, no tracked block written by the call.
//
//     Expected("CSUMD_H264", "keliSumsDiff8x8Blocks4x4_8u16s_C1", "e", 64)
//         .parm("SrcPitch", {"SrcPitch=16", "SrcPitch=18"})
//         .parm("save_diff", {"save_diff=0", "save_diff=1"})
//         .blocks({400, 400, 512})
//         .writes({2})
struct Expected {
    // class, function, unit, units of a call
    Expected(std::string test, std::string function, std::string unit, double divisor)
        : m_test(std::move(test)),
          m_function(std::move(function)),
          m_unit(std::move(unit)),
          m_divisors{divisor} {}

    // Registered by KM_REG_I.
    Expected &consumes();
    // The next parameter and its values as the table shows them; the last parameter turns fastest. Without
    // rows or sets, every combination is a row.
    Expected &parm(std::string name, Cells values);
    // The parameter cells of all rows, where they are not those of the parameters.
    Expected &rows(Rows rows);
    // Only the number of rows, and those that row tells.
    Expected &sets(int count);
    Expected &row(int i, Cells cells);
    // An ini file that is in force in the checks of all but the rows, for which a few sets of a long walk do.
    // It may be that of a neighbour in the file, which runs in the check of the next run.
    Expected &shortWalk(std::string iniFile);
    // One for each row.
    Expected &divisors(std::vector<double> divisors);
    // What the auto method becomes.
    Expected &stat(int calls);
    Expected &loop(int count);
    // Bytes of the tracked blocks of the first set, in the order in which they are made.
    Expected &blocks(std::vector<int> sizes);
    // Blocks that the call writes, by that order. Those that are only written are spoiled before the call;
    // those that are read too may stay as they are in some sets, but not in all.
    Expected &writes(std::vector<int> blocks);
    Expected &updates(std::vector<int> blocks);
    // Bytes of the tracked blocks that stay behind, where a suite keeps some for its next set.
    Expected &leaves(std::vector<int> sizes);
    // The result of the whole test, where it is not success.
    Expected &result(rkResult r);

    std::string m_test, m_function, m_unit;
    std::vector<double> m_divisors; // of all rows, or of each
    bool m_consumes = false;
    std::vector<std::pair<std::string, Cells>> m_parms;
    bool m_hasRows = false;
    Rows m_rows;
    int m_sets = -1; // as many as there are rows
    std::map<int, Cells> m_samples;
    std::string m_shortWalk;
    rkTool::Method m_method = rkTool::Auto;
    int m_count = 0; // of the method
    std::vector<int> m_blocks;
    std::vector<int> m_writes, m_updates;
    std::vector<int> m_leaves;
    rkResult m_result = rkResSuccess;
};

void PrintTo(Expected const &expected, std::ostream *stream);

// "first" to "last" in steps, as a step iterator shows its values.
Cells numbers(int first, int last, int step = 1);
// Every combination of the values, the last turning fastest.
Rows product(std::vector<Cells> const &values);

// ---- tests of a suite's own --------------------------------------------------------

// Null and a failure if nothing of that name is registered; a class need only be told for a function that two
// classes register.
rkTest *findTest(std::string const &function, std::string const &test = "");

struct Outcome {
    rkResult result = rkResNotRun;
    Rows rows;       // all cells of each row of the table
    std::string log; // errors and warnings of the console
};

// Columns of a row: function, type, descriptor, six parameters, then the results.
const size_t firstParm = 3, comment = 9, clocks = 10, per = 11, usec = 12;

// All sets with one loop each, by the manual method.
Outcome runTest(rkTest *test);

struct Block {
    unsigned char *data;
    int size;
};

// Walks the sets as a run does, but stops between initData and the call, where a test can look at the data.
class Sets {
public:
    explicit Sets(rkTest *test);
    ~Sets();
    Sets(Sets const &) = delete;
    Sets &operator=(Sets const &) = delete;

    bool next(); // flushes the set in hand and makes the next one; false at the end
    int call();  // of the library's function, prepared if it consumes its input; returns its status
    static std::vector<Block> blocks(); // all tracked blocks that there are

private:
    void leave();

    rkTest *m_test;
    bool m_started;
    bool m_inSet = false;
};

// Fixture: a session ready to run tests, frequency and environment set, the manual method with one loop.
class SuiteTest : public testing::Test {
protected:
    void SetUp() override;
    Outcome run(std::string const &function, std::string const &test = "") {
        return runTest(findTest(function, test));
    }
};

// True in a sanitizer build, where the surroundings of a block cannot be touched; elsewhere checkWrites fills
// and compares them.
extern const bool surroundingsForbidden;

// ---- the checks ---------------------------------------------------------------------

void checkRegistration(Expected const &expected); // its class, its marker, its measuring functions
void checkSets(Expected const &expected);         // result, number of rows, their cells
void checkUnits(Expected const &expected);        // one loop a row, unit, divisor
void checkMethod(Expected const &expected);       // what becomes of auto; any other method stays
void checkMemory(Expected const &expected);       // which tracked blocks stay behind
void checkWrites(Expected const &expected);       // which blocks the call writes, and nothing around them
void checkNextRun(Expected const &expected);      // the same behind another test of its file
// All registrations of a suite's file, and their order.
void checkFile(std::string const &file, std::vector<Expected> const &expected);

// Fixture of the checks of every registration.
class Suite : public SuiteTest, public testing::WithParamInterface<Expected> {};

std::string nameOf(testing::TestParamInfo<Expected> const &info);

} // namespace suite

// The checks of all registrations of a file; name is the suite's in the names of the tests.
#define SUITE_TEST(name, file, expected)                                               \
    INSTANTIATE_TEST_SUITE_P(name, Suite, testing::ValuesIn(expected), suite::nameOf); \
    TEST(SuiteFile, name) {                                                            \
        suite::checkFile(file, expected);                                              \
    }

using suite::Suite;

#endif

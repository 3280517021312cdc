// suitechecks.cpp - the checks that every registration passes.

#include <math.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <memory>

#include "inifile.h"
#include "suitetest.h"

namespace suite {

// ---- registration --------------------------------------------------------------------

void checkRegistration(Expected const &expected) {
    rkTest *test = findTest(expected.m_function, expected.m_test);
    if (!test) return;
    EXPECT_EQ(str(test->m_info.m_descr), "");
    EXPECT_EQ(str(test->m_info.m_marks), expected.m_consumes ? "KM_REG_I" : "KM_REG");
    EXPECT_NE(test->m_funcCall, nullptr);
    EXPECT_EQ(test->m_funcInit != nullptr, expected.m_consumes);
    EXPECT_NE(test->m_funcLoop, nullptr);
    EXPECT_NE(test->m_funcStat, nullptr);
}

void checkFile(std::string const &file, std::vector<Expected> const &expected) {
    Rows registered, listed;
    for (rkTest *test : *pTestList) {
        if (str(test->m_file) == file) registered.push_back({str(test->m_info.m_name), str(test->m_name)});
    }
    for (Expected const &e : expected) listed.push_back({e.m_test, e.m_function});
    EXPECT_EQ(registered, listed) << file;
}

// ---- rows ------------------------------------------------------------------------------

// The file of the checks that need no whole walk.
static std::unique_ptr<IniFile> shortWalk(Expected const &expected) {
    if (expected.m_shortWalk.empty()) return nullptr;
    return std::make_unique<IniFile>(expected.m_shortWalk);
}

static Rows rowsOf(Expected const &expected) {
    if (expected.m_hasRows) return expected.m_rows;
    std::vector<Cells> values;
    for (auto const &parm : expected.m_parms) values.push_back(parm.second);
    return product(values);
}

static Cells parmCells(Cells const &row) {
    Cells cells(row.begin() + std::min(firstParm, row.size()), row.begin() + std::min(comment, row.size()));
    while (!cells.empty() && cells.back() == "-") cells.pop_back();
    return cells;
}

static std::string functionOf(Cells const &row) {
    std::string name;
    for (size_t i = 0; i < firstParm && i < row.size(); ++i) {
        if (row[i] != "-") name += (name.empty() ? "" : "_") + row[i];
    }
    return name;
}

// Cells behind the sixth are overwritten by the results; empty ones at the end are not seen.
static Cells visible(Cells cells) {
    if (cells.size() > comment - firstParm) cells.resize(comment - firstParm);
    while (!cells.empty() && cells.back() == "-") cells.pop_back();
    return cells;
}

static void checkRow(Rows const &rows, size_t i, Cells const &expected) {
    if (i >= rows.size()) {
        ADD_FAILURE() << "there is no row " << i;
        return;
    }
    EXPECT_EQ(parmCells(rows[i]), visible(expected)) << "row " << i;
}

static void checkParmNames(rkTest *test, Expected const &expected) {
    Cells names, listed;
    for (rkParameter *parm : test->m_parms) names.push_back(str(parm->m_name));
    for (auto const &parm : expected.m_parms) listed.push_back(parm.first);
    EXPECT_EQ(names, listed);
}

void checkSets(Expected const &expected) {
    rkTest *test = findTest(expected.m_function, expected.m_test);
    if (!test) return;
    Outcome run = runTest(test);
    EXPECT_EQ(run.result, expected.m_result) << run.log;
    checkParmNames(test, expected);
    for (Cells const &row : run.rows) EXPECT_EQ(functionOf(row), expected.m_function);
    for (auto const &sample : expected.m_samples) checkRow(run.rows, sample.first, sample.second);
    if (expected.m_sets >= 0) {
        EXPECT_EQ(static_cast<int>(run.rows.size()), expected.m_sets);
        return;
    }
    Rows rows = rowsOf(expected);
    EXPECT_EQ(run.rows.size(), rows.size());
    for (size_t i = 0; i < rows.size() && i < run.rows.size(); ++i) checkRow(run.rows, i, rows[i]);
}

// The file's statics are shared by all of its tests: each run builds anew what it needs.
void checkNextRun(Expected const &expected) {
    const auto file = shortWalk(expected);
    rkTest *test = findTest(expected.m_function, expected.m_test);
    if (!test) return;
    Outcome first = runTest(test);
    for (rkTest *other : *pTestList) {
        if (other == test || !(other->m_file == test->m_file)) continue;
        runTest(other);
        break;
    }
    Outcome second = runTest(test);
    EXPECT_EQ(second.result, first.result) << second.log;
    EXPECT_EQ(second.rows.size(), first.rows.size());
    for (size_t i = 0; i < first.rows.size(); ++i) checkRow(second.rows, i, parmCells(first.rows[i]));
}

// ---- units ------------------------------------------------------------------------------

// The row has clocks a unit, and microseconds a call.
static double divisorIn(Cells const &row) {
    double perUnit = strtod(row[clocks].c_str(), nullptr);
    return perUnit > 0 ? strtod(row[usec].c_str(), nullptr) * rkCpuTicker::getFreq() / perUnit : 0.0;
}

void checkUnits(Expected const &expected) {
    const auto file = shortWalk(expected);
    rkTest *test = findTest(expected.m_function, expected.m_test);
    if (!test) return;
    Outcome run = runTest(test);
    std::vector<double> divisors = expected.m_divisors;
    if (divisors.size() == 1) divisors.resize(run.rows.size(), divisors[0]);
    ASSERT_EQ(divisors.size(), run.rows.size()) << run.log;
    for (size_t i = 0; i < run.rows.size(); ++i) {
        Cells const &row = run.rows[i];
        ASSERT_GT(row.size(), usec);
        EXPECT_EQ(row[comment], "nLps=1") << "row " << i;
        EXPECT_EQ(row[per], expected.m_unit.empty() ? "-" : expected.m_unit) << "row " << i;
        EXPECT_NEAR(divisorIn(row), divisors[i], 0.01 * divisors[i]) << "row " << i; // of three digits
    }
    if (expected.m_divisors.size() == 1) {
        EXPECT_EQ(test->getDivisor(), expected.m_divisors[0]);
    }
}

// ---- the timing method --------------------------------------------------------------------

static std::string methodOf(rkTool const &tool) {
    int n = 0;
    long long least = -1;
    if (tool.getMethodAuto()) return "auto";
    if (tool.getMethodLoop(n)) return "loop " + std::to_string(n);
    if (tool.getMethodStat(n, least)) return "statistic " + std::to_string(n) + ", " + std::to_string(least);
    return "another";
}

static std::string methodAfterStart(rkTest *test) {
    test->beginTest();
    EXPECT_TRUE(test->canStart());
    test->flushStart();
    return methodOf(test->m_tool);
}

void checkMethod(Expected const &expected) {
    rkTest *test = findTest(expected.m_function, expected.m_test);
    if (!test) return;
    rkTool becomes;
    becomes.setMethodAuto();
    if (expected.m_method == rkTool::Statistic) becomes.setMethodStat(expected.m_count, 0);
    if (expected.m_method == rkTool::Manual) becomes.setMethodLoop(expected.m_count);
    test->m_tool.setMethodAuto();
    EXPECT_EQ(methodAfterStart(test), methodOf(becomes));
    test->m_tool.setMethodLoop(6);
    EXPECT_EQ(methodAfterStart(test), "loop 6");
    test->m_tool.setMethodStat(5, 40);
    EXPECT_EQ(methodAfterStart(test), "statistic 5, 40");
}

// ---- memory -----------------------------------------------------------------------------

void checkMemory(Expected const &expected) {
    const auto file = shortWalk(expected);
    runTest(findTest(expected.m_function, expected.m_test));
    std::vector<int> left;
    std::string text;
    for (Block const &block : Sets::blocks()) {
        left.push_back(block.size);
        text += "a block of " + std::to_string(block.size) + " bytes is left\n";
    }
    EXPECT_EQ(left, expected.m_leaves) << text;
}

namespace {

// All tracked blocks with their surroundings, as they are before a call.
class Snapshot {
public:
    explicit Snapshot(std::vector<Block> const &blocks) : m_blocks(blocks) {
        for (Block const &b : blocks) {
            memset(b.data - m_guard, 0x5A, m_guard);
            memset(b.data + b.size, 0x5A, m_guard);
            m_copies.emplace_back(b.data, b.data + b.size);
        }
    }

    bool changed(size_t i) const {
        return !std::equal(m_copies[i].begin(), m_copies[i].end(), m_blocks[i].data);
    }

    bool surroundingsIntact(size_t i) const {
        unsigned char const *data = m_blocks[i].data, *end = data + m_blocks[i].size;
        auto intact = [](unsigned char byte) { return byte == 0x5A; };
        return std::all_of(data - m_guard, data, intact) && std::all_of(end, end + m_guard, intact);
    }

private:
    const int m_guard = surroundingsForbidden ? 0 : 64; // bytes on both sides that belong to nobody
    std::vector<Block> m_blocks;
    std::vector<std::vector<unsigned char>> m_copies;
};

std::vector<int> sizesOf(std::vector<Block> const &blocks) {
    std::vector<int> sizes;
    for (Block const &block : blocks) sizes.push_back(block.size);
    return sizes;
}

// Spoiled, so that a result is seen that equals what was there.
void spoil(std::vector<Block> const &blocks, std::vector<int> const &which) {
    for (int i : which) {
        if (i < static_cast<int>(blocks.size())) memset(blocks[i].data, 0xA5, blocks[i].size);
    }
}

// Calls the function on the set in hand; the blocks that it changed go to changed.
void callAndLook(Sets &sets, Expected const &expected, std::set<int> &changed) {
    std::vector<Block> blocks = Sets::blocks();
    spoil(blocks, expected.m_writes);
    Snapshot before(blocks);
    int status = sets.call();
    if (expected.m_result != rkResLibWarning || status < 0) {
        EXPECT_EQ(status, 0);
    }
    for (size_t i = 0; i < blocks.size(); ++i) {
        if (before.changed(i)) changed.insert(static_cast<int>(i));
        EXPECT_TRUE(before.surroundingsIntact(i)) << "beside block " << i;
    }
}

} // namespace

void checkWrites(Expected const &expected) {
    const auto file = shortWalk(expected);
    std::set<int> changed, written(expected.m_writes.begin(), expected.m_writes.end());
    written.insert(expected.m_updates.begin(), expected.m_updates.end());
    Sets sets(findTest(expected.m_function, expected.m_test));
    std::vector<int> sizes;
    int count = 0;
    for (; sets.next(); ++count) {
        if (count == 0) sizes = sizesOf(Sets::blocks());
        callAndLook(sets, expected, changed);
    }
    EXPECT_GT(count, 0) << "no set";
    EXPECT_EQ(changed, written) << "of blocks of " << testing::PrintToString(sizes) << " bytes";
    if (!expected.m_blocks.empty()) {
        EXPECT_EQ(sizes, expected.m_blocks);
    }
}

// ---- for every registration -----------------------------------------------------------------

TEST_P(Suite, IsRegisteredByItsClass) {
    checkRegistration(GetParam());
}
TEST_P(Suite, RunsAllItsSets) {
    checkSets(GetParam());
}
TEST_P(Suite, RunsTheSameBehindAnother) {
    checkNextRun(GetParam());
}
TEST_P(Suite, CountsItsUnits) {
    checkUnits(GetParam());
}
TEST_P(Suite, HasItsTimingMethod) {
    checkMethod(GetParam());
}
TEST_P(Suite, LeavesNoBlockBehind) {
    checkMemory(GetParam());
}
TEST_P(Suite, WritesWhereItShould) {
    checkWrites(GetParam());
}

} // namespace suite

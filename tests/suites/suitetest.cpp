// suitetest.cpp - a test of a suite run and walked, for the checks.

#include "suitetest.h"

#include <sstream>

#include "../unit/capture.h"
#include "../unit/tempdir.h"
#include "rkregister.h"
#include "rksession.h"
#include "rkticker.h"

#if defined(__SANITIZE_ADDRESS__)
#define SUITE_ADDRESS_SANITIZER true
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SUITE_ADDRESS_SANITIZER true
#endif
#endif
#ifndef SUITE_ADDRESS_SANITIZER
#define SUITE_ADDRESS_SANITIZER false
#endif

namespace suite {

const bool surroundingsForbidden = SUITE_ADDRESS_SANITIZER;

// ---- what is expected -----------------------------------------------------------------

Expected &Expected::consumes() {
    m_consumes = true;
    return *this;
}

Expected &Expected::parm(std::string name, Cells values) {
    m_parms.emplace_back(std::move(name), std::move(values));
    return *this;
}

Expected &Expected::rows(Rows rows) {
    m_hasRows = true;
    m_rows = std::move(rows);
    return *this;
}

Expected &Expected::sets(int count) {
    m_sets = count;
    return *this;
}

Expected &Expected::row(int i, Cells cells) {
    m_samples[i] = std::move(cells);
    return *this;
}

Expected &Expected::shortWalk(std::string iniFile) {
    m_shortWalk = std::move(iniFile);
    return *this;
}

Expected &Expected::divisors(std::vector<double> divisors) {
    m_divisors = std::move(divisors);
    return *this;
}

Expected &Expected::stat(int calls) {
    m_method = rkTool::Statistic;
    m_count = calls;
    return *this;
}

Expected &Expected::loop(int count) {
    m_method = rkTool::Manual;
    m_count = count;
    return *this;
}

Expected &Expected::blocks(std::vector<int> sizes) {
    m_blocks = std::move(sizes);
    return *this;
}

Expected &Expected::writes(std::vector<int> blocks) {
    m_writes = std::move(blocks);
    return *this;
}

Expected &Expected::updates(std::vector<int> blocks) {
    m_updates = std::move(blocks);
    return *this;
}

Expected &Expected::leaves(std::vector<int> sizes) {
    m_leaves = std::move(sizes);
    return *this;
}

Expected &Expected::result(rkResult r) {
    m_result = r;
    return *this;
}

void PrintTo(Expected const &expected, std::ostream *stream) {
    *stream << expected.m_test << ", " << expected.m_function;
}

std::string nameOf(testing::TestParamInfo<Expected> const &info) {
    return info.param.m_function;
}

Cells numbers(int first, int last, int step) {
    Cells cells;
    for (int n = first; n <= last; n += step) cells.push_back(std::to_string(n));
    return cells;
}

Rows product(std::vector<Cells> const &values) {
    Rows rows = {{}};
    for (Cells const &column : values) {
        Rows longer;
        for (Cells const &row : rows) {
            for (std::string const &cell : column) {
                longer.push_back(row);
                longer.back().push_back(cell);
            }
        }
        rows.swap(longer);
    }
    return rows;
}

// ---- a run ------------------------------------------------------------------------------

rkTest *findTest(std::string const &function, std::string const &test) {
    for (rkTest *candidate : *pTestList) {
        if (str(candidate->m_name) != function) continue;
        if (test.empty() || str(candidate->m_info.m_name) == test) return candidate;
    }
    ADD_FAILURE() << "nothing is registered for " << function << " " << test;
    return nullptr;
}

static Cells cellsOf(std::string const &line) {
    Cells cells;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');) cells.push_back(cell);
    return cells;
}

Outcome runTest(rkTest *test) {
    Outcome run;
    if (!test) return run;
    CaptureTable table;
    CaptureLog log(MsgError | MsgWarning);
    run.result = test->run();
    run.log = log.text();
    std::istringstream text(table.text());
    for (std::string line; std::getline(text, line);) run.rows.push_back(cellsOf(line));
    return run;
}

void SuiteTest::SetUp() {
    rkCpuTicker::m_freqMHz = 2000; // so that no test measures the frequency
    setKelEnvironment();
    rkSession().putTableTitle();
    g_tool.setMethodLoop(1);
}

// ---- the sets, one by one ----------------------------------------------------------------

Sets::Sets(rkTest *test) : m_test(test), m_started(false) {
    if (!m_test) return;
    kmVector::m_seed = 7;
    m_test->m_tool = g_tool;
    m_test->beginTest();
    m_started = m_test->canStart();
    EXPECT_TRUE(m_started) << "canStart";
    m_test->setIniSection(m_test->m_name);
    m_test->parmsFromIstrm();
    m_test->m_firstPass = true;
}

Sets::~Sets() {
    if (!m_test) return;
    leave();
    m_test->flushStart();
    m_test->endTest();
}

void Sets::leave() {
    if (m_inSet) m_test->flushData();
    m_inSet = false;
}

bool Sets::next() {
    leave();
    if (!m_started) return false;
    rkTest::m_vectorNum = rkTest::m_vectorShift = 0;
    if (!m_test->canContinue()) return false;
    m_test->m_firstPass = false;
    m_inSet = true;
    EXPECT_TRUE(m_test->initData()) << "initData";
    return true;
}

int Sets::call() {
    if (m_test->m_funcInit) {
        EXPECT_EQ(m_test->m_funcInit(), 0);
    }
    return m_test->m_funcCall();
}

std::vector<Block> Sets::blocks() {
    std::vector<Block> blocks;
    int size = 0;
    for (void *p = rkMallocFirst(&size, nullptr); p; p = rkMallocNext(&size, nullptr))
        blocks.push_back({static_cast<unsigned char *>(p), size});
    return blocks;
}

} // namespace suite

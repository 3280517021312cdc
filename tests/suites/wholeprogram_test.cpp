// wholeprogram_test.cpp - the program runs all of its suites.

#include "../cli/program.h"
#include "kmvc.h"

namespace {

class Suites : public Program {
protected:
    // Every set of the edge test makes one of two rows, and the run says so; all others pass.
    static char const *expectedResult(std::string const &function) {
        return function == "keliEdgesDetect16x16_16u_C1R" ? "DATAWRN" : "OK";
    }

    // Class and function of every row of the summary; all have passed.
    Lines summary() const {
        Lines tests, names;
        for (std::string const &line : file("rakova_sum.csv")) {
            Lines cells = cellsIn(line);
            if (line == "END_DATA") return tests;
            if (line.rfind("Function,", 0) == 0) {
                names = cells;
            } else if (!names.empty() && cells.size() == names.size()) {
                auto cell = [&](char const *title) {
                    return cells[std::find(names.begin(), names.end(), title) - names.begin()];
                };
                EXPECT_EQ(cell("Result"), expectedResult(cell("Function"))) << line;
                tests.push_back(cell("Test") + " " + cell("Function"));
            }
        }
        ADD_FAILURE() << "the summary has no end";
        return tests;
    }
};

} // namespace

TEST_F(Suites, WholeProgramRunsOnce) {
    Outcome outcome = run("-B -L WARN -dMethod=Manual -dNumLoops=1 -r -u -l" + m_dir);
    ASSERT_EQ(outcome.status, 0) << outcome.text();
    Lines expected = {"__rkTarvoCpuTest __rkTarvoCpu"}, tests = summary();
    for (rkTest *test : *pTestList)
        expected.push_back(std::string(test->m_info.m_name.c_str()) + " " + test->m_name.c_str());
    std::sort(expected.begin(), expected.end());
    std::sort(tests.begin(), tests.end());
    EXPECT_EQ(tests, expected);
    EXPECT_EQ(linesWith(file("rakova_sum.csv"), ".Failures       ,1").size(), 1u);
    const Lines complaints = linesWith(outcome.lines, "-- ");
    EXPECT_EQ(complaints, Lines({"-- Warning: duplicate lines in performance table (csv-file)"}));
}

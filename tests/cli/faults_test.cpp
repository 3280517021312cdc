// faults_test.cpp - failures stay inside their test: one process, a thousand faults of all kinds, nothing
// lost.

#include <map>

#include "program.h"

namespace {

const std::string faulty = FAULTY;

const int rounds = 44; // 23 faults each

const std::string storage = "--KEL. Signal: Illegal storage access. in ";
const std::string instruction = "--KEL. Signal: Illegal instruction. in ";
const std::string arithmetic =
    "--KEL. Signal: FP error, such as overflow, division by zero, invalid operation. in ";

std::string messageOf(std::string const &kind) {
    static const std::map<std::string, std::string> messages = {
        {"wild", storage},
        {"deep", storage},
        {"illegal", instruction},
        {"integer", arithmetic},
        {"x87", arithmetic},
        {"message", "--KEL. Exception: no such block in "},
        {"literal", "--KEL. Signal: no such table in "},
    };
    auto found = messages.find(kind);
    return found == messages.end() ? "" : found->second;
}

// The trace names the step that was running: of a measured call, the calls themselves.
std::string stepOf(std::string const &place) {
    return place == "call" ? "kelFunctionCalls" : place;
}

class Faults : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        Start start;
        start.words = {
            faulty,         "-B",         "-LPERF",     "-s-",        "-ft0",       "-dMethod=Manual",
            "-dNumLoops=1", "-l" + m_dir, "-rrows.csv", "-usums.csv", "-qnames.csv"};
        start.dir = m_dir;
        start.env = {"FAULTY_ROUNDS=" + std::to_string(rounds)};
        start.seconds = 250;
        m_ended = runToEnd(start);
        m_console = linesIn(m_ended.text);
        for (std::string const &row : file("rows.csv")) {
            Lines cells = cellsIn(row);
            if (cells.size() > 4 && cells[0][0] == 't') m_rows[cells[0]].push_back(row);
        }
        for (std::string const &row : file("sums.csv")) {
            Lines cells = cellsIn(row);
            if (cells.size() > 9 && cells[0][0] == 't') m_results.push_back({cells[0], cells[9]});
        }
    }
    // "t00012_wild_call" is of kind wild at the place call.
    static void split(std::string const &name, std::string &kind, std::string &place) {
        std::string rest = name.substr(name.find('_') + 1);
        size_t line = rest.find('_');
        kind = rest.substr(0, line);
        place = line == std::string::npos ? "" : rest.substr(line + 1);
    }

    Ended m_ended;
    Lines m_console;
    std::map<std::string, Lines> m_rows;                        // of the table, by the test
    std::vector<std::pair<std::string, std::string>> m_results; // name and result, in order
};

} // namespace

TEST_F(Faults, EveryTestRunsAndTheRunEndsInOrder) {
    EXPECT_FALSE(m_ended.timedOut);
    EXPECT_EQ(m_ended.signal, 0);
    EXPECT_EQ(m_ended.status, 1);
    ASSERT_EQ(m_results.size(), rounds * 46u);
    for (size_t i = 0; i < m_results.size(); ++i) {
        char number[32];
        snprintf(number, sizeof number, "t%05zu_", i + 1);
        EXPECT_EQ(m_results[i].first.find(number), 0u) << m_results[i].first;
    }
    Lines sums = file("sums.csv");
    std::string n = std::to_string(rounds * 46), exceptions = std::to_string(rounds * 21);
    EXPECT_EQ(linesWith(sums, ".Number of tests," + n).size(), 1u);
    EXPECT_EQ(linesWith(sums, ".....-EXCPTFAIL ," + exceptions).size(), 1u);
    EXPECT_EQ(linesWith(sums, ".....-FAIL      ," + std::to_string(rounds)).size(), 1u);
    EXPECT_EQ(linesWith(sums, ".....-WARNING   ," + std::to_string(rounds)).size(), 1u);
    EXPECT_EQ(linesWith(sums, ".Successes      ," + std::to_string(rounds * 23)).size(), 1u);
    EXPECT_EQ(linesWith(m_console, "| RK Summary").size(), 1u);
}

TEST_F(Faults, EachHasItsResultInTheSummaryTable) {
    std::string kind, place;
    for (auto const &[name, result] : m_results) {
        split(name, kind, place);
        char const *expected = kind == "sound"     ? "OK"
                               : kind == "error"   ? "FUNCFAIL"
                               : kind == "warning" ? "FUNCWRN"
                                                   : "EXCPTFAIL";
        EXPECT_EQ(result, expected) << name;
    }
}

// A console line is the message, the rule above the result, the result.
TEST_F(Faults, EachTellsWhatHappenedAndWhere) {
    std::string kind, place;
    size_t at = 0;
    int messages = 0;
    for (auto const &[name, result] : m_results) {
        split(name, kind, place);
        std::string expected = messageOf(kind);
        while (at < m_console.size() && m_console[at].find("| -" + result) != 0) ++at;
        ASSERT_LT(at, m_console.size()) << name;
        EXPECT_NE(m_console[at].find(name), std::string::npos) << m_console[at];
        std::string before = m_console[at - 2];
        if (expected.empty()) {
            EXPECT_EQ(before.find("--KEL"), std::string::npos) << before;
        } else {
            EXPECT_EQ(before, expected + stepOf(place)) << name;
            ++messages;
        }
        ++at;
    }
    EXPECT_EQ(messages, rounds * 21);
    EXPECT_EQ(linesWith(m_console, "-- lib function error on test parameters:").size(), size_t(rounds));
    EXPECT_EQ(linesWith(m_console, "-- lib function warning on test parameters:").size(), size_t(rounds));
}

TEST_F(Faults, RowsOfTheSetsBeforeAreKept) {
    std::string kind, place;
    for (auto const &[name, result] : m_results) {
        split(name, kind, place);
        size_t sets = place == "canStart" ? 0 : kind == "sound" || kind == "warning" ? 4 : 2;
        ASSERT_EQ(m_rows[name].size(), sets) << name;
        for (size_t i = 0; i < sets; ++i) {
            EXPECT_EQ(cellsIn(m_rows[name][i])[1], std::to_string(i + 1)) << m_rows[name][i];
        }
    }
}

TEST_F(Faults, TheNameTableHasItsRowOfEveryTestThatStarted) {
    std::string kind, place;
    std::map<std::string, int> names;
    for (std::string const &row : file("names.csv")) ++names[cellsIn(row + ",")[0]];
    for (auto const &[name, result] : m_results) {
        split(name, kind, place);
        EXPECT_EQ(names[name], place == "canStart" ? 0 : 1) << name;
    }
}

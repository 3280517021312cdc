// killed_test.cpp - a run that is killed in its middle: what was shown is in the table, what was there before
// stays.

#include "program.h"

namespace {

const std::string sets = "1000000"; // more than a test waits for

std::string whole(std::string const &path) {
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

// The sets whose performance line was shown to its end: " set=17" and, as the next line, "  nLps=1
// ...clocks".
Lines shownSets(std::string const &text) {
    Lines shown;
    std::string set;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.find("set=") == 0) set = line.substr(4, line.find(' ') - 4);
        if (line.find("perf=") != std::string::npos) shown.push_back(set);
    }
    return shown;
}

class Killed : public Program {
protected:
    // Killed as soon as the console has so many bytes.
    Ended killedAt(ConsoleKind console, std::string const &levels, std::string const &key,
                   size_t bytes) const {
        Start start;
        start.words = {
            FAULTY, "-B", "-L" + levels, "-flong", "-dMethod=Manual", "-dNumLoops=1", key + path("rows.csv")};
        start.dir = m_dir;
        start.env = {"FAULTY_ROUNDS=0", "FAULTY_SETS=" + sets};
        start.console = console;
        Process process(start);
        EXPECT_TRUE(process.shows(bytes));
        process.kill();
        return process.end();
    }
    // Every set that was shown has its row, and the last row is whole.
    void expectNothingLost(Ended const &ended, std::string const &table) const {
        EXPECT_EQ(ended.signal, SIGKILL);
        ASSERT_FALSE(table.empty());
        EXPECT_EQ(table.back(), '\n');
        Lines rows = linesWith(linesIn(table), "_long,");
        Lines shown = shownSets(ended.text);
        EXPECT_FALSE(shown.empty());
        ASSERT_GE(rows.size(), shown.size());
        for (size_t i = 0; i < rows.size(); ++i) {
            Lines cells = cellsIn(rows[i]);
            ASSERT_EQ(cells.size(), 14u) << rows[i];
            EXPECT_EQ(cells[1], std::to_string(i + 1)) << rows[i];
            if (i < shown.size()) {
                EXPECT_EQ(shown[i], cells[1]) << rows[i];
            }
        }
    }
    void killSeveralTimes(ConsoleKind console, std::string const &levels) const {
        const size_t moments[] = {6000, 50001, 100003, 333333, 1000000};
        for (size_t bytes : moments) {
            Ended ended = killedAt(console, levels, "-r", bytes);
            expectNothingLost(ended, whole(path("rows.csv")));
            if (HasFatalFailure()) return;
        }
    }
};

} // namespace

TEST_F(Killed, WhatAPipeShowedIsInTheTable) {
    killSeveralTimes(ToPipe, "PERF");
}

TEST_F(Killed, WhatATerminalShowedIsInTheTable) {
    killSeveralTimes(ToTerminal, "PERF");
}

TEST_F(Killed, WhatAFileShowsIsInTheTable) {
    killSeveralTimes(ToFile, "PERF");
}

TEST_F(Killed, WhatATracedRunShowedIsInTheTable) {
    killSeveralTimes(ToPipe, "TRACE");
}

TEST_F(Killed, EarlierContentOfAnAppendedTableIsIntact) {
    std::string before;
    for (int i = 0; i < 100000; ++i) before += "earlier," + std::to_string(i) + "\n";
    write("rows.csv", before);
    Ended ended = killedAt(ToPipe, "PERF", "-R", 100000);
    std::string table = whole(path("rows.csv"));
    ASSERT_GT(table.size(), before.size());
    EXPECT_EQ(table.compare(0, before.size(), before), 0);
    expectNothingLost(ended, table.substr(before.size()));
}

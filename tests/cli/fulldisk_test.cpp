// fulldisk_test.cpp - nowhere to write: a full disk, a console that is closed or that nobody reads.

#include "badinput.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

namespace {

const std::string old = "what was here before\n";

class FullDisk : public BadInput {
protected:
    Start longRun(int sets, std::string const &table) const {
        Start start;
        start.words = {FAULTY, "-B", "-LPERF", "-flong", "-dMethod=Manual", "-dNumLoops=1", table};
        start.dir = m_dir;
        start.env = {"FAULTY_ROUNDS=0", "FAULTY_SETS=" + std::to_string(sets)};
        return start;
    }
    // Behind the old content whole rows from the first set on, and at most one that is cut.
    static void expectRows(std::string const &table, size_t atLeast) {
        ASSERT_EQ(table.compare(0, old.size(), old), 0) << table.substr(0, 200);
        Lines rows = linesWith(linesIn(table), "_long,");
        ASSERT_GE(rows.size(), atLeast);
        for (size_t i = 0; i + 1 < rows.size(); ++i) {
            Lines cells = cellsIn(rows[i]);
            ASSERT_EQ(cells.size(), 14u) << rows[i];
            ASSERT_EQ(cells[1], std::to_string(i + 1)) << rows[i];
        }
    }
};

void writeFile(char const *name, std::string const &text) {
    int file = open(name, O_WRONLY);
    if (file < 0 || write(file, text.data(), text.size()) != ssize_t(text.size())) _exit(125);
    close(file);
}

// A disk of 64 KB on the directory "dir", seen by this process and its children alone.
void mountSmallDisk() {
    uid_t user = geteuid();
    gid_t group = getegid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) _exit(125);
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    writeFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    if (mount("none", "dir", "tmpfs", 0, "size=64k") != 0) _exit(125);
}

void limitFiles(rlim_t bytes) {
    rlimit limit = {bytes, bytes};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

// ---- the disk ------------------------------------------------------------------------------------

TEST_F(FullDisk, AppendedTableKeepsItsOldContentAndWhatFitted) {
    Start start = longRun(5000, "-R" + path("dir/rows.csv"));
    std::string command = "printf '" + old +
                          "' >dir/rows.csv; \"$0\" \"$@\" >console; status=$?; tail -n 14 console; "
                          "cat dir/rows.csv; exit $status";
    start.words.insert(start.words.begin(), {"/bin/sh", "-c", command});
    start.prepare = mountSmallDisk;
    Ended ended = runToEnd(start);
    if (ended.status == 125) GTEST_SKIP() << "no disk can be mounted here";
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, "| .Successes       : 1 "));
    size_t at = ended.text.find(old);
    ASSERT_NE(at, std::string::npos) << ended.text;
    std::string table = ended.text.substr(at);
    EXPECT_EQ(table.size(), 65536u) << "the disk is full";
    expectRows(table, 500);
}

TEST_F(FullDisk, FilesAtTheirLimitKeepWhatFitted) {
    for (char const *name : {"rows.csv", "log.txt", "sums.csv"}) write(name, old);
    Start start = longRun(5000, "-R" + path("rows.csv"));
    start.words.push_back("-O" + path("log.txt"));
    start.words.push_back("-U" + path("sums.csv"));
    start.prepare = [] { limitFiles(50000); };
    Ended ended = runToEnd(start);
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, "| .Successes       : 1 ")) << "the console is complete";
    expectRows(content("rows.csv"), 500);
    EXPECT_EQ(content("rows.csv").size(), 50000u);
    EXPECT_EQ(content("log.txt").size(), 50000u);
    EXPECT_EQ(content("log.txt").compare(0, old.size(), old), 0);
    EXPECT_TRUE(holds(content("sums.csv"), old));
    EXPECT_TRUE(holds(content("sums.csv"), "END_DATA"));
}

TEST_F(FullDisk, TheOtherTablesAreCompleteWhenOneDiskIsFull) {
    Start start = longRun(500, "-r/dev/full");
    start.words.push_back("-R" + path("rows.csv"));
    start.words.push_back("-o/dev/full");
    start.words.push_back("-u/dev/full");
    write("rows.csv", old);
    Ended ended = runToEnd(start);
    expectOrderlyEnd(ended);
    expectRows(content("rows.csv"), 500);
    EXPECT_EQ(linesWith(linesIn(content("rows.csv")), "_long,").size(), 500u);
}

TEST_F(FullDisk, IniFileAtItsLimitIsCutAndTheRunEndsInOrder) {
    Start start = starting("bare", {"-B", "-I" + path("x.ini")});
    start.prepare = [] { limitFiles(20); };
    expectOrderlyEnd(runToEnd(start));
    EXPECT_EQ(content("x.ini"), "\n[Rakova]\nMethod=Aut");
}

// ---- the console ---------------------------------------------------------------------------------

TEST_F(FullDisk, ClosedConsoleDoesNotReachTheTables) {
    write("rows.csv", old);
    Start start = longRun(500, "-R" + path("rows.csv"));
    start.prepare = [] {
        for (int file : {0, 1, 2}) close(file);
    };
    expectOrderlyEnd(runToEnd(start));
    std::string table = content("rows.csv");
    expectRows(table, 500);
    for (std::string const &line : linesIn(table)) {
        EXPECT_EQ(line.find("| "), std::string::npos) << line;
        EXPECT_EQ(line.find("Sorting"), std::string::npos) << line;
    }
}

TEST_F(FullDisk, ConsoleOnAFullDiskDoesNotStopTheRun) {
    write("rows.csv", old);
    Start start = longRun(500, "-R" + path("rows.csv"));
    start.prepare = [] { dup2(open("/dev/full", O_WRONLY), 1); };
    expectOrderlyEnd(runToEnd(start));
    expectRows(content("rows.csv"), 500);
}

TEST_F(FullDisk, WithoutAReaderTheProgramEnds) {
    write("rows.csv", old);
    Process process(longRun(1000000, "-R" + path("rows.csv")));
    EXPECT_TRUE(process.shows(10000));
    process.closeReader();
    Ended ended = process.end();
    EXPECT_FALSE(ended.timedOut);
    EXPECT_EQ(ended.signal, SIGPIPE);
    expectRows(content("rows.csv"), 10);
}

TEST_F(FullDisk, WithoutAReaderTheRunGoesOnIfTheSignalIsIgnored) {
    write("rows.csv", old);
    Start start = longRun(2000, "-R" + path("rows.csv"));
    start.prepare = [] { signal(SIGPIPE, SIG_IGN); };
    Process process(start);
    process.closeReader();
    expectOrderlyEnd(process.end());
    expectRows(content("rows.csv"), 2000);
}

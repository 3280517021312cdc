// program_test.cpp - a run of the program from the command line to its files.

#include "program.h"

#include <map>
#include <regex>

namespace {

bool matches(std::string const &text, char const *pattern) {
    return std::regex_match(text, std::regex(pattern));
}

// The row that starts with first, and the rows behind it.
Lines tableFrom(Lines const &lines, std::string const &first) {
    auto begin = std::find_if(lines.begin(), lines.end(), [&](std::string const &line) {
        return line.compare(0, first.size(), first) == 0;
    });
    return Lines(begin, lines.end());
}

// A row by the titles of its columns.
std::map<std::string, std::string> named(std::string const &titles, std::string const &row) {
    Lines names = cellsIn(titles), cells = cellsIn(row);
    EXPECT_EQ(cells.size(), names.size()) << row;
    std::map<std::string, std::string> values;
    for (size_t i = 0; i < std::min(names.size(), cells.size()); ++i) values[names[i]] = cells[i];
    return values;
}

class WholeRun : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        m_run = run("-B -LPERF -fkeliSAD16x16_8u32s -r -u -o -g -l" + m_dir);
        ASSERT_EQ(m_run.status, 0) << m_run.text();
    }
    Outcome m_run;
};

} // namespace

// ---- one run with all its files -----------------------------------------------------------

TEST_F(WholeRun, LeavesItsFourFiles) {
    Lines names;
    for (auto const &entry : std::filesystem::directory_iterator(m_dir))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Lines{"rakova.csv", "rakova.end", "rakova.txt", "rakova_sum.csv"}));
}

TEST_F(WholeRun, EveryRowHasTheColumnsOfTheTitle) {
    const std::string titles =
        "funcBase,funcDataType,funcDescriptor,Len/Size,Parm1,Parm2,Parm3,Parm4,scaleFactor,"
        "Comment,Clocks,per,Time (usec),MFlops";
    Lines table = tableFrom(file("rakova.csv"), "funcBase,");
    ASSERT_EQ(table.size(), 5u);
    EXPECT_EQ(table[0], titles);
    char const *const positions[] = {"APX_FF", "APX_FH", "APX_HF", "APX_HH"};
    for (int i = 0; i < 4; ++i) {
        auto row = named(titles, table[i + 1]);
        EXPECT_EQ(row["funcBase"], "keliSAD16x16");
        EXPECT_EQ(row["funcDataType"], "8u32s");
        EXPECT_EQ(row["funcDescriptor"], "-");
        EXPECT_EQ(row["Len/Size"], positions[i]);
        for (char const *empty : {"Parm1", "Parm2", "Parm3", "Parm4", "scaleFactor", "MFlops"})
            EXPECT_EQ(row[empty], "-") << empty;
        EXPECT_TRUE(matches(row["Comment"], "nLps=[0-9]+( acc=[0-9.]+%)?")) << row["Comment"];
        EXPECT_GT(strtod(row["Clocks"].c_str(), nullptr), 0.0) << row["Clocks"];
        EXPECT_EQ(row["per"], "element");
        EXPECT_GT(strtod(row["Time (usec)"].c_str(), nullptr), 0.0) << row["Time (usec)"];
    }
}

TEST_F(WholeRun, TheTableOpensWithTheTitle) {
    Lines lines = file("rakova.csv");
    ASSERT_GE(lines.size(), 5u);
    char const *const labels[] = {"CPU,", "OS,", "Computer,", "Library,libkelvc.so, 2.0 ", "Start,"};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(lines[i].find(labels[i]), 0u) << lines[i];
}

TEST_F(WholeRun, TheSummaryHasTheResultOfTheTestAndTheCounts) {
    Lines table = tableFrom(file("rakova_sum.csv"), "Function,");
    ASSERT_EQ(table.size(), 14u);
    EXPECT_EQ(
        table[0],
        "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),SrcName,Result,ExeName");
    auto row = named(table[0], table[1]);
    EXPECT_EQ(row["Function"], "keliSAD16x16_8u32s");
    EXPECT_EQ(row["Class"], "Timing");
    EXPECT_EQ(row["Test"], "CSAD");
    EXPECT_TRUE(matches(row["Time (sec.)"], "[0-9]+"));
    EXPECT_EQ(row["SrcName"], "sad.cpp");
    // A busy machine may miss the accuracy.
    EXPECT_TRUE(row["Result"] == "OK" || row["Result"] == "ACCURWRN") << row["Result"];
    EXPECT_EQ(row["ExeName"], "rakova");
    EXPECT_EQ(table[2], "END_DATA");
    EXPECT_EQ(table[3], ".Number of tests,1");
    EXPECT_EQ(table[5], ".Failures       ," + std::string(row["Result"] == "OK" ? "0" : "1"));
    EXPECT_TRUE(matches(table[13], "\\.Total time     ,[0-9][0-9]:[0-9][0-9]:[0-9][0-9]")) << table[13];
}

TEST_F(WholeRun, TheSignalFileHasDurationAndEnd) {
    Lines lines = file("rakova.end");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_TRUE(matches(lines[0], "[0-9][0-9]:[0-9][0-9]:[0-9][0-9]")) << lines[0];
    EXPECT_TRUE(matches(lines[1], "[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}")) << lines[1];
    EXPECT_EQ(lines[2], "");
}

TEST_F(WholeRun, TheLogHoldsWhatTheConsoleShows) {
    Lines log = file("rakova.txt");
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(linesWith(log, "perf=").size(), 4u);
    EXPECT_EQ(linesWith(log, "| Function  : keliSAD16x16_8u32s ").size(), 1u);
    EXPECT_TRUE(linesWith(log, "Sorting functions...").empty()) << "goes past the log";
    EXPECT_EQ(linesWith(m_run.lines, "Sorting functions...").size(), 1u);
    for (std::string const &line : log)
        EXPECT_NE(std::find(m_run.lines.begin(), m_run.lines.end(), line), m_run.lines.end()) << line;
}

// ---- all suites ------------------------------------------------------------------------------

TEST_F(Program, EveryTestEndsWell) {
    Outcome all = run(quick + "-fSAD -fQuant -fEdgesDetect16x16_16u");
    EXPECT_EQ(all.status, 0);
    // The edge test shows one of its two parameters: its rows look alike in pairs.
    Lines ends = linesWith(all.lines, "| -OK "), warned = linesWith(all.lines, "| -DATAWRN ");
    ASSERT_EQ(warned.size(), 1u) << all.text();
    EXPECT_NE(warned[0].find(" keliEdgesDetect16x16_16u_C1R "), std::string::npos);
    EXPECT_GE(ends.size(), 75u) << all.text();
    EXPECT_EQ(linesWith(all.lines, "| Function  : ").size(), ends.size() + 1) << all.text();
    EXPECT_TRUE(linesWith(all.lines, "-- Left out").empty());
}

TEST_F(Program, TheFirstLinesTellWhatHappensBeforeTheTests) {
    Outcome all = run(quick + "-fkeliSAD4x4_8u32s");
    char const *const order[] = {"KEL Core library functions have been integrated into RK",
                                 "Command line options: ",
                                 "-B: batch mode",
                                 "KEL Core library functions have been integrated into RK",
                                 "KEL libraries information has been set into RK",
                                 "Sorting functions...",
                                 "| CPU      : ",
                                 " Method = Manual",
                                 " NumLoops = 3",
                                 "| Function  : keliSAD4x4_8u32s",
                                 "  nLps=3 ",
                                 "| -OK         keliSAD4x4_8u32s",
                                 "| RK Summary"};
    size_t at = 0;
    for (char const *text : order) {
        while (at < all.lines.size() && all.lines[at].find(text) != 0) ++at;
        ASSERT_LT(at, all.lines.size()) << text << " is not where it should be in\n" << all.text();
        ++at;
    }
}

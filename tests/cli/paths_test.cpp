// paths_test.cpp - where the program looks for its files and leaves them.

#include "program.h"

namespace {

// The program stands in the directory prog below the one it is started in. A list ends it before it measures,
// and goes to the result table.
class Paths : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        std::filesystem::create_directories(path("prog/out"));
        std::filesystem::create_symlink(RAKOVA, path("prog/rakova"));
    }
    Outcome list(std::string const &args) const {
        return shell("prog/rakova -e -f=keliSAD4x4_8u32s " + args + " 2>&1 </dev/null");
    }
    bool has(std::string const &name) const { return std::filesystem::exists(path(name)); }
};

} // namespace

TEST_F(Paths, FilesAreNamedAfterTheProgramAndStandBesideIt) {
    list("-r -o -q -u -g");
    for (char const *ending : {".csv", ".txt", "_name.csv", "_sum.csv", ".end"})
        EXPECT_TRUE(has(std::string("prog/rakova") + ending)) << ending;
}

TEST_F(Paths, ProgramFoundByPathLeavesItsFilesInTheCurrentDirectory) {
    shell("PATH=\"prog:$PATH\" rakova -e -r >/dev/null");
    EXPECT_TRUE(has("rakova.csv"));
}

TEST_F(Paths, EndingOfTheProgramsNameIsCutOff) {
    std::filesystem::create_symlink(RAKOVA, path("prog/my.rakova.bin"));
    shell("prog/my.rakova.bin -e -r >/dev/null");
    EXPECT_TRUE(has("prog/my.rakova.csv"));
}

TEST_F(Paths, TitleNamesAllFiles) {
    list("-r -o -nother -q -u -g");
    for (char const *ending : {".csv", ".txt", "_name.csv", "_sum.csv", ".end"})
        EXPECT_TRUE(has(std::string("prog/other") + ending)) << ending;
}

TEST_F(Paths, TitleWithADotKeepsItBeforeTheEnding) {
    list("-r -na.b");
    EXPECT_TRUE(has("prog/a.b.csv"));
}

TEST_F(Paths, NameWithoutADotGetsTheEnding) {
    list("-rtable -o log -gmark");
    EXPECT_TRUE(has("prog/table.csv"));
    EXPECT_TRUE(has("prog/log.txt"));
    EXPECT_TRUE(has("prog/mark.end"));
}

TEST_F(Paths, NameWithADotAnywhereGetsNone) {
    list("-rtable.dat -o./out/log");
    EXPECT_TRUE(has("prog/table.dat"));
    EXPECT_TRUE(has("prog/out/log"));
}

TEST_F(Paths, AbsoluteNameStaysAsItIs) {
    list("-lout -r" + path("table"));
    EXPECT_TRUE(has("table"));
    EXPECT_FALSE(has("prog/out/table.csv"));
}

TEST_F(Paths, RelativeOutputDirectoryCountsFromTheProgram) {
    list("-r -lout");
    EXPECT_TRUE(has("prog/out/rakova.csv"));
}

TEST_F(Paths, OutputDirectoryMayEndInASlash) {
    list("-lout/ -rtable");
    EXPECT_TRUE(has("prog/out/table.csv"));
}

TEST_F(Paths, AbsoluteOutputDirectory) {
    list("-l" + m_dir + " -r");
    EXPECT_TRUE(has("rakova.csv"));
}

TEST_F(Paths, LastDirectoryAndLastTitleCountWhereverTheyStand) {
    list("-none -lnowhere -r -lout -ntwo");
    EXPECT_TRUE(has("prog/out/two.csv"));
    EXPECT_FALSE(has("prog/out/one.csv"));
}

TEST_F(Paths, DirectoryIsNotMade) {
    Outcome stopped = list("-lmissing -r -o");
    EXPECT_EQ(stopped.status, 0);
    EXPECT_EQ(linesWith(stopped.lines, "-- Can't open file "),
              (Lines{"-- Can't open file prog/missing/rakova.csv to write: ",
                     "-- Can't open file prog/missing/rakova.txt to write: "}));
    EXPECT_EQ(stopped.lines.back(), "FATAL ERROR: can't open output file for writing");
    EXPECT_TRUE(linesWith(stopped.lines, "keliSAD4x4_8u32s\t").empty()) << "the run is over";
}

TEST_F(Paths, EveryTableAndLogEndsTheRunIfItCannotBeOpened) {
    for (char const *key : {"-o", "-O", "-r", "-R", "-q", "-u", "-U"}) {
        Outcome stopped = list(std::string(key) + "missing/x.y");
        EXPECT_EQ(stopped.lines.back(), "FATAL ERROR: can't open output file for writing") << key;
    }
}

TEST_F(Paths, SignalFileComesThoughTheRunIsStopped) {
    Outcome stopped = list("-r" + path("none/x") + " -g");
    EXPECT_EQ(stopped.lines.back(), "FATAL ERROR: can't open output file for writing");
    EXPECT_EQ(file("prog/rakova.end").size(), 3u);
}

TEST_F(Paths, SignalFileThatCannotBeWrittenIsTold) {
    Outcome stopped = list("-gmissing/x.y");
    EXPECT_EQ(stopped.status, 0);
    ASSERT_GE(stopped.lines.size(), 2u);
    EXPECT_EQ(linesWith(stopped.lines, "-- Can't open file "),
              Lines{"-- Can't open file prog/missing/x.y to write: "});
}

TEST_F(Paths, FileIsFilledAnewOrAddedTo) {
    const std::string row = "   1,keliSAD4x4_8u32s,CSAD_H264,sadh264.cpp";
    for (char const *name : {"prog/r.csv", "prog/R.csv", "prog/o.txt", "prog/O.txt"}) write(name, "before\n");
    list("-rr -RR -oo -OO");
    EXPECT_EQ(file("prog/r.csv"), (Lines{"   #,Function,Test,Source", row}));
    EXPECT_EQ(file("prog/R.csv"), (Lines{"before", "   #,Function,Test,Source", row}));
    Lines fresh = file("prog/o.txt"), added = file("prog/O.txt");
    ASSERT_FALSE(added.empty());
    EXPECT_EQ(added.front(), "before");
    EXPECT_EQ(Lines(added.begin() + 1, added.end()), fresh);
}

TEST_F(Paths, SeveralFilesOfAKindAreAllFilled) {
    list("-ra -rb -oc -od -Oe");
    EXPECT_EQ(file("prog/a.csv"), file("prog/b.csv"));
    EXPECT_EQ(file("prog/a.csv").size(), 2u);
    EXPECT_EQ(file("prog/c.txt"), file("prog/d.txt"));
    EXPECT_EQ(file("prog/c.txt"), file("prog/e.txt"));
    EXPECT_FALSE(file("prog/c.txt").empty());
}

// ---- input ---------------------------------------------------------------------------------

TEST_F(Paths, IniFileStandsBesideTheProgram) {
    Outcome outcome = list("-i");
    EXPECT_EQ(linesWith(outcome.lines, "-- "), Lines{"-- Can't open file prog/rakova.ini to read: "});
    EXPECT_EQ(linesWith(outcome.lines, "keliSAD4x4_8u32s\t").size(), 1u) << "the run goes on";
}

TEST_F(Paths, IniFileTakesTitleAndInputDirectory) {
    EXPECT_EQ(linesWith(list("-i -nother -pin -lout").lines, "-- "),
              Lines{"-- Can't open file prog/in/other.ini to read: "});
}

TEST_F(Paths, IniFileByName) {
    EXPECT_EQ(linesWith(list("-i other -pin/").lines, "-- "),
              Lines{"-- Can't open file prog/in/other.ini to read: "});
    EXPECT_EQ(linesWith(list("-iother.txt").lines, "-- "),
              Lines{"-- Can't open file prog/other.txt to read: "});
    EXPECT_EQ(linesWith(list("-i" + path("other")).lines, "-- "),
              Lines{"-- Can't open file " + path("other") + " to read: "});
}

TEST_F(Paths, InputDirectoryThatTheNameHoldsAlreadyIsNotAddedTwice) {
    std::filesystem::create_directory(path("prog/prog"));
    EXPECT_EQ(linesWith(list("-iprog/x.y").lines, "-- "),
              Lines{"-- Can't open file prog/prog/x.y to read: "});
}

TEST_F(Paths, LastIniKeyCounts) {
    EXPECT_EQ(linesWith(list("-ione -itwo").lines, "-- "),
              Lines{"-- Can't open file prog/two.ini to read: "});
}

TEST_F(Paths, IniFileThatCannotBeWrittenEndsTheRun) {
    Outcome stopped = list("-Imissing/x.y");
    EXPECT_EQ(stopped.status, 0);
    EXPECT_EQ(Lines(stopped.lines.end() - 2, stopped.lines.end()),
              (Lines{"-- Can't open file prog/missing/x.y to write: ",
                     "FATAL ERROR: can't open ini-file for writing"}));
}

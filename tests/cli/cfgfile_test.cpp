// cfgfile_test.cpp - keys from the file beside the program, for a start without any.

#include "program.h"

namespace {

class CfgFile : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        std::filesystem::create_directory(path("prog"));
        std::filesystem::create_symlink(RAKOVA, path("prog/rakova"));
    }
    // The lines from the head of the report on.
    Lines started(std::string const &args = "") const {
        Outcome outcome = shell("prog/rakova " + args + " 2>&1 </dev/null");
        EXPECT_EQ(outcome.status, 0);
        auto begin = std::find_if(outcome.lines.begin(), outcome.lines.end(), [](std::string const &line) {
            return line.find("Command line options: ") == 0;
        });
        return Lines(begin, outcome.lines.end());
    }
};

} // namespace

TEST_F(CfgFile, BesideTheProgram) {
    write("prog/rakova.cfg", "-e -f=keliSAD4x4_8u32s\n");
    EXPECT_EQ(started(),
              (Lines{"Command line options: read from prog/rakova.cfg file",
                     "-e: enumerate tested functions and exit",
                     "-f=keliSAD4x4_8u32s: test function equal to 'keliSAD4x4_8u32s'",
                     "   #\tFunction\tTest\tSource\t", "   1\tkeliSAD4x4_8u32s\tCSAD_H264\tsadh264.cpp\t"}));
}

TEST_F(CfgFile, InTheCurrentDirectoryGoesFirst) {
    write("prog/rakova.cfg", "-e\n");
    write("rakova.cfg", "-v\n");
    Lines lines = started();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[0], "Command line options: read from rakova.cfg file");
    EXPECT_EQ(lines[1], "-v: type the version number of the Rakova and exit");
}

TEST_F(CfgFile, AnyArgumentLeavesItAlone) {
    write("prog/rakova.cfg", "-B\n");
    Lines lines = started("-v");
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[0], "Command line options: ");
    EXPECT_TRUE(linesWith(lines, "-B").empty());
}

TEST_F(CfgFile, OnlyTheFirstLineIsRead) {
    write("prog/rakova.cfg", "-v\n-e\n");
    Lines lines = started();
    EXPECT_EQ(linesWith(lines, "-v: ").size(), 1u);
    EXPECT_TRUE(linesWith(lines, "-e: ").empty());
}

TEST_F(CfgFile, WordsAreCutAtBlanksTabsSemicolonsAndReturns) {
    write("prog/rakova.cfg", "-v;-B\t-f SAD -C\r\n");
    Lines lines = started();
    EXPECT_EQ(linesWith(lines, ": ignored because of -v option"),
              (Lines{"-B: ignored because of -v option", "-fSAD: ignored because of -v option",
                     "-C: ignored because of -v option"}));
}

TEST_F(CfgFile, LineIsReadUpTo1023Characters) {
    write("prog/rakova.cfg", "-v" + std::string(1023 - 2 - 5, ' ') + " -fab0 -C\n"); // 1023 end behind "b"
    Lines lines = started();
    EXPECT_EQ(linesWith(lines, "-fab: ").size(), 1u);
    EXPECT_TRUE(linesWith(lines, "-fab0").empty());
    EXPECT_TRUE(linesWith(lines, "-C").empty());
}

TEST_F(CfgFile, EmptyFileIsAStartWithoutKeys) {
    write("prog/rakova_bare.cfg", "");
    std::filesystem::create_symlink(RAKOVA_BARE, path("prog/rakova_bare"));
    Outcome outcome = shell("prog/rakova_bare </dev/null");
    EXPECT_EQ(linesWith(outcome.lines, "Command line options: "),
              Lines{"Command line options: read from prog/rakova_bare.cfg file"});
    EXPECT_EQ(linesWith(outcome.lines, "Specify timing method, please").size(), 1u) << "asks as without keys";
}

TEST_F(CfgFile, WithoutAFileAndWithoutKeysThereIsNoReport) {
    std::filesystem::create_symlink(RAKOVA_BARE, path("prog/rakova_bare"));
    Outcome outcome = shell("prog/rakova_bare </dev/null");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(linesWith(outcome.lines, "Command line options").empty());
    EXPECT_EQ(linesWith(outcome.lines, "Specify timing method, please").size(), 1u) << "asks for the method";
    EXPECT_TRUE(linesWith(outcome.lines, "vectors alignment").empty()) << "and not for the alignment";
    EXPECT_EQ(linesWith(outcome.lines, "| -OK         __rkTarvoCpu ").size(), 1u) << "errors only: no frames";
    EXPECT_TRUE(linesWith(outcome.lines, "| Source ").empty());
}

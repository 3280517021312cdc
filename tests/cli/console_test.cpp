// console_test.cpp - what the harness asks, and what it makes of the answers.

#include "program.h"
#include "terminal.h"

#include <cstring>

namespace {

class Console : public Program {
protected:
    // Answers come through a pipe. The lines from the first question's frame on.
    Lines talk(std::string const &args, std::string const &answers) const {
        write("answers", answers);
        Outcome outcome = shell("cat answers | '" RAKOVA "' -LERR -f=keliSAD4x4_8u32s " + args + " 2>&1");
        EXPECT_EQ(outcome.status, 0);
        auto end = std::find_if(outcome.lines.begin(), outcome.lines.end(),
                                [](std::string const &line) { return line.find("| Function  : ") == 0; });
        EXPECT_NE(end, outcome.lines.end()) << outcome.text();
        auto begin = std::find(outcome.lines.begin(), end, stars);
        return Lines(begin, end);
    }
    static const std::string stars;
    static std::string title(char const *text) {
        std::string line = " *" + std::string((80 - strlen(text)) / 2 - 2, ' ') + text;
        return line + std::string(78 - line.size(), ' ') + "*";
    }
    const Lines timing = {stars, title("Specify timing method, please"), stars};
    const Lines alignment = {stars, title("Specify vectors alignment, please"), stars};
    const Lines close = {stars, title("End of common specifications"), stars};
    const Lines notAligned = {" AlignVectorsBy = element", " VectorAlign = 0"};
};

const std::string Console::stars = " " + std::string(78, '*');

Lines operator+(Lines first, Lines const &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

TEST_F(Console, AutoAsksForTheAccuracy) {
    EXPECT_EQ(talk("-ATiming", "auto\n20\n"),
              (timing +
               Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] =  Method = Auto", "",
                     " Accuracy, % [5] =  Accuracy = 20"} +
               notAligned + close));
}

TEST_F(Console, ManualAsksForTheLoops) {
    EXPECT_EQ(talk("-ATiming", "M\n12\n"),
              (timing +
               Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] =  Method = Manual", "",
                     " NumLoops [10] =  NumLoops = 12"} +
               notAligned + close));
}

TEST_F(Console, StatisticAsksForCallsAndClocks) {
    EXPECT_EQ(
        talk("-ATiming", "stat\n\n2000\n"),
        (timing +
         Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] =  Method = Statistic", "",
               " NumCalls [3] =  NumCalls = 3", "", " TotalCpuClocks [10000] =  TotalCpuClocks = 2000"} +
         notAligned + close));
}

TEST_F(Console, IterativeAsksForBothLoopCountsAndTheAccuracy) {
    EXPECT_EQ(talk("-ATiming", "ITERATIVE\n2\n4\n51\n"),
              (timing +
               Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] =  Method = Iterative", "",
                     " StartNumLoops [1] =  StartNumLoops = 2", "",
                     " StopNumLoops [2048] =  StopNumLoops = 4", "", " Accuracy, % [5] =  Accuracy = 51"} +
               notAligned + close));
}

TEST_F(Console, BadAnswerLeavesTheDefaultAndIsNotAskedAgain) {
    EXPECT_EQ(talk("-ATiming -AMisalign", "x\nmany\nword\n1y\n"),
              (timing +
               Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] = -Invalid value of Method = x",
                     " Method = Auto", "", " Accuracy, % [5] = -Invalid value of Accuracy = many",
                     " Accuracy = 5"} +
               alignment +
               Lines{"", " AlignVectorsBy {byte|element} [element] = -Invalid value of AlignVectorsBy = word",
                     " AlignVectorsBy = element", "", " VectorAlign by Element, 0..63 [0] =  VectorAlign = 1",
                     "", " MisalignFirstVectorOnly {yes|no} [no] =  MisalignFirstVectorOnly = no"} +
               close));
}

TEST_F(Console, MisalignmentByBytesIsTakenModulo64) {
    EXPECT_EQ(talk("-AMisalign -dMethod=man -dNumLoops=2", "byte\n70\nyes\n"),
              (alignment +
               Lines{"", " AlignVectorsBy {byte|element} [element] =  AlignVectorsBy = byte", "",
                     " VectorAlign by Byte, 0..63 [0] =  VectorAlign = 6", "",
                     " MisalignFirstVectorOnly {yes|no} [no] =  MisalignFirstVectorOnly = yes"} +
               close));
}

TEST_F(Console, EmptyAnswersTakeTheDefaults) {
    EXPECT_EQ(talk("-ATiming -AMisalign", "\n\n\n\n"),
              (timing +
               Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] =  Method = Auto", "",
                     " Accuracy, % [5] =  Accuracy = 5"} +
               alignment +
               Lines{"", " AlignVectorsBy {byte|element} [element] =  AlignVectorsBy = element", "",
                     " VectorAlign by Element, 0..63 [0] =  VectorAlign = 0"} +
               close));
}

TEST_F(Console, EndOfInputTakesTheDefaults) {
    EXPECT_EQ(talk("", "man"),
              (timing +
               Lines{"", " Method {Auto|Manual|Statistic|Iterative} [Auto] =  Method = Manual", "",
                     " NumLoops [10] =  NumLoops = 10"} +
               notAligned + close))
        << "no common parameter, so no frame for them";
}

TEST_F(Console, WhatDataSettlesIsNotAsked) {
    EXPECT_EQ(
        talk("-ATiming -dMethod=man", "7\n"),
        (timing + Lines{" Method = Manual", "", " NumLoops [10] =  NumLoops = 7"} + notAligned + close));
}

TEST_F(Console, AllAsksForTheParametersOfEachTest) {
    write("answers", "\n\nSrcPitch=18\nPredPitch=18; PredPitch=16\nx\n");
    Outcome outcome = shell("cat answers | '" RAKOVA
                            "' -A -LPERF -dMethod=man -dNumLoops=2 "
                            "-f=keliSumsDiff8x8Blocks4x4_8u16s_C1 2>&1");
    EXPECT_EQ(linesWith(outcome.lines, "Pitch} ["), Lines{});
    EXPECT_EQ(
        linesWith(outcome.lines, "Pitch {"),
        (Lines{" SrcPitch {SrcPitch=16|SrcPitch=18} [SrcPitch=16; SrcPitch=18] =  SrcPitch = SrcPitch=18",
               " PredPitch {PredPitch=16|PredPitch=18} [PredPitch=16; PredPitch=18] =  PredPitch = "
               "PredPitch=18; PredPitch=16"}));
    EXPECT_EQ(
        linesWith(outcome.lines, " save_diff ").front(),
        " save_diff {save_diff=0|save_diff=1} [save_diff=0; save_diff=1] = -Invalid value of save_diff = x");
    EXPECT_EQ(linesWith(outcome.lines, "SrcPitch=SrcPitch="),
              (Lines{"SrcPitch=SrcPitch=18 PredPitch=PredPitch=18 save_diff=save_diff=0 ",
                     "SrcPitch=SrcPitch=18 PredPitch=PredPitch=18 save_diff=save_diff=1 ",
                     "SrcPitch=SrcPitch=18 PredPitch=PredPitch=16 save_diff=save_diff=0 ",
                     "SrcPitch=SrcPitch=18 PredPitch=PredPitch=16 save_diff=save_diff=1 "}));
}

TEST_F(Console, QuestionsDoNotReachTheLog) {
    talk("-ATiming -o -l" + m_dir, "man\n5\n");
    Lines log = file("rakova.txt");
    EXPECT_EQ(linesWith(log, "] = "), Lines{});
    EXPECT_EQ(linesWith(log, " NumLoops = 5"), Lines{" NumLoops = 5"});
    EXPECT_EQ(linesWith(log, "Specify timing method, please").size(), 1u);
}

TEST_F(Console, AtATerminalTheQuestionComesBeforeTheAnswer) {
    Terminal terminal({RAKOVA, "-ATiming", "-LERR", "-f=keliSAD4x4_8u32s"});
    ASSERT_TRUE(terminal.shows(" Method {Auto|Manual|Statistic|Iterative} [Auto] = ")) << terminal.screen();
    EXPECT_TRUE(terminal.isSilent(100));
    terminal.type("man\n");
    ASSERT_TRUE(terminal.shows("man\n Method = Manual\n\n NumLoops [10] = ")) << terminal.screen();
    terminal.type("3\n");
    ASSERT_TRUE(terminal.shows("3\n NumLoops = 3\n"));
    ASSERT_TRUE(terminal.shows("| -OK         keliSAD4x4_8u32s"));
    EXPECT_EQ(terminal.end(), 0);
}

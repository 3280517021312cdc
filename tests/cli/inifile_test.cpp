// inifile_test.cpp - runs that leave an ini file, and runs that take their parameters from one.

#include "program.h"

namespace {

class IniFile : public Program {
protected:
    // The files are x.ini, x.csv and so on, in the directory of the test.
    Outcome runHere(std::string const &args) const {
        Outcome outcome = run("-B -LPERF -nx -p" + m_dir + " -l" + m_dir + " " + args);
        EXPECT_EQ(outcome.status, 0) << outcome.text();
        return outcome;
    }
    // Which parameter sets were measured, by function.
    Lines measured() const {
        Lines sets;
        for (std::string const &line : linesWith(file("x.csv"), "keli")) {
            Lines cells = cellsIn(line);
            sets.push_back(cells[0] + " " + cells[3] + " " + cells[4] + " " + cells[5] + " " + cells[9]);
        }
        return sets;
    }
};

const std::string sad = "-f=keliSAD16x16_8u32s ", sums = "-f=keliSumsDiff8x8Blocks4x4_8u16s_C1 ";
const std::string twoLoops = "-dMethod=man -dNumLoops=2 ";

} // namespace

TEST_F(IniFile, WrittenFileHasEveryParameterWithWhatMayStandThere) {
    Outcome outcome = runHere("-I " + sums + sad);
    EXPECT_EQ(file("x.ini"),
              (Lines{"", "[Rakova]", "Method=Auto\t// Auto|Manual|Statistic|Iterative", "Accuracy=5",
                     "AlignVectorsBy=element\t// byte|element", "VectorAlign=0", "", "[keliSAD16x16_8u32s]",
                     "", "[kelVC]", "Align=16", "RepeatCounter=1", "", "[keliSumsDiff8x8Blocks4x4_8u16s_C1]",
                     "SrcPitch=SrcPitch=16; SrcPitch=18\t// SrcPitch=16|SrcPitch=18",
                     "PredPitch=PredPitch=16; PredPitch=18\t// PredPitch=16|PredPitch=18",
                     "save_diff=save_diff=0; save_diff=1\t// save_diff=0|save_diff=1"}));
    EXPECT_TRUE(linesWith(outcome.lines, "perf=").empty()) << "nothing is measured";
    EXPECT_EQ(linesWith(outcome.lines, "| -OK ").size(), 2u);
}

TEST_F(IniFile, WrittenFileReadBackGivesTheSameRun) {
    runHere(twoLoops + "-r -dPredPitch=P " + sums + sad);
    Lines before = measured();
    ASSERT_EQ(before.size(), 8u) << "four positions; two pitches by two ways of saving";
    runHere(twoLoops + "-I -dPredPitch=P " + sums + sad);
    Outcome again = runHere("-i -r " + sums + sad);
    EXPECT_EQ(measured(), before);
    EXPECT_EQ(linesWith(again.lines, " Method = "), Lines{" Method = Manual"});
    EXPECT_EQ(linesWith(again.lines, " PredPitch = "), Lines{" PredPitch = PredPitch=16"});
}

TEST_F(IniFile, WritingLeavesWhatIsThereAndAddsTheRest) {
    write("x.ini", "// mine\n[Rakova]\nAccuracy=7 // of mine\n[other]\nkey=1\nflag\n");
    runHere("-I -f=keliSAD4x4_8u32s");
    EXPECT_EQ(file("x.ini"),
              (Lines{"", "[Rakova]", "Accuracy=7", "Method=Auto\t// Auto|Manual|Statistic|Iterative",
                     "AlignVectorsBy=element\t// byte|element", "VectorAlign=0", "", "[other]", "key=1",
                     "flag", "", "[keliSAD4x4_8u32s]"}));
}

TEST_F(IniFile, ReadingLeavesTheFileAlone) {
    const std::string text = "[Rakova]\nMethod = m // short\nNumLoops=2\n[kelVC]\n";
    write("x.ini", text);
    Outcome outcome = runHere("-i -f=keliSAD4x4_8u32s");
    EXPECT_EQ(file("x.ini"), linesIn(text));
    EXPECT_EQ(linesWith(outcome.lines, " NumLoops = "), Lines{" NumLoops = 2"});
}

TEST_F(IniFile, DataGoesBeforeTheFileAndTheFileBeforeTheDefault) {
    write("x.ini",
          "[Rakova]\nMethod=Manual\nNumLoops=2\n"
          "[keliSumsDiff8x8Blocks4x4_8u16s_C1]\nSrcPitch=SrcPitch=18\nsave_diff=save_diff=1\n");
    Outcome outcome = runHere("-i -r -dNumLoops=3 -dsave_diff=s " + sums);
    EXPECT_EQ(linesWith(outcome.lines, " NumLoops = "), Lines{" NumLoops = 3"});
    const std::string start = "keliSumsDiff8x8Blocks4x4 SrcPitch=18 PredPitch=";
    EXPECT_EQ(measured(), (Lines{start + "16 save_diff=0 nLps=3", start + "18 save_diff=0 nLps=3"}));
}

TEST_F(IniFile, ValuesAreListedAbbreviatedAndCaseless) {
    write("x.ini",
          "[keliSumsDiff8x8Blocks4x4_8u16s_C1]\nSrcPitch=srcpitch=18;S\nPredPitch=PRED\n"
          "save_diff= save_diff=1 ;save_diff=1\n");
    Outcome outcome = runHere("-i -r " + twoLoops + sums);
    const std::string last = "PredPitch=16 save_diff=1 nLps=2", name = "keliSumsDiff8x8Blocks4x4 SrcPitch=";
    EXPECT_EQ(measured(),
              (Lines{name + "18 " + last, name + "18 " + last, name + "16 " + last, name + "16 " + last}))
        << "a value that stands twice is measured twice";
    EXPECT_EQ(linesWith(outcome.lines, "| -").size(), 1u);
    EXPECT_EQ(linesWith(outcome.lines, "| -DATAWRN ").size(), 1u);
    EXPECT_EQ(linesWith(outcome.lines, "-- Warning: duplicate lines in performance table (csv-file)").size(),
              1u);
}

TEST_F(IniFile, BadValueIsToldAndLeavesTheDefault) {
    write("x.ini",
          "[Rakova]\nMethod=fast\nAccuracy=many\nVectorAlign=70\n"
          "[keliSumsDiff8x8Blocks4x4_8u16s_C1]\nsave_diff=0;save_diff=1\nSrcPitch=;\n");
    Outcome outcome = runHere("-i -r -dPredPitch=P " + sums);
    auto behind = [&](char const *text) {
        auto line = std::find(outcome.lines.begin(), outcome.lines.end(), text);
        return line == outcome.lines.end() || line + 1 == outcome.lines.end() ? "" : *(line + 1);
    };
    EXPECT_EQ(linesWith(outcome.lines, "-Invalid value of "),
              (Lines{"-Invalid value of Method = fast", "-Invalid value of Accuracy = many",
                     "-Invalid value of save_diff = 0"}));
    EXPECT_EQ(behind("-Invalid value of Method = fast"), " Method = Auto");
    EXPECT_EQ(behind("-Invalid value of Accuracy = many"), " Accuracy = 5");
    EXPECT_EQ(behind("-Invalid value of save_diff = 0"), " save_diff = save_diff=0; save_diff=1");
    EXPECT_EQ(behind("-"), " SrcPitch = SrcPitch=16; SrcPitch=18") << "an empty list has no text";
    EXPECT_EQ(linesWith(outcome.lines, " VectorAlign = "), Lines{" VectorAlign = 6"});
    EXPECT_EQ(measured().size(), 4u);
}

TEST_F(IniFile, SuitesReadSectionsOfTheirOwn) {
    write("x.ini", "[kelVC]\nRepeatCounter=2\n[SAD]\nApproximation=HH,x,FH\n");
    runHere("-i -r " + twoLoops + sad);
    const std::string name = "keliSAD16x16 APX_";
    EXPECT_EQ(measured(), (Lines{name + "HH - - nLps=2", name + "FH - - nLps=2", name + "HH - - nLps=2",
                                 name + "FH - - nLps=2"}));
}

TEST_F(IniFile, FunctionsWithASectionAlone) {
    write("x.ini", "[keliSAD4x4_8u32s]\n[keliSAD16x16_8u32s]\n[kelVC]\n");
    Outcome outcome = runHere("-i -P -r -tCSAD " + twoLoops);
    EXPECT_EQ(linesWith(outcome.lines, "| Function  : ").size(), 2u);
    EXPECT_EQ(measured().size(), 5u) << "four positions and one";
    EXPECT_EQ(linesWith(outcome.lines, ".Number of tests : 2").size(), 1u) << "the others are not counted";
}

TEST_F(IniFile, DataIsCutAtItsSecondEqualSign) {
    Outcome outcome = runHere(twoLoops + "-dSrcPitch=SrcPitch=18 " + sums);
    EXPECT_EQ(linesWith(outcome.lines, " SrcPitch = "), Lines{" SrcPitch = SrcPitch=16"})
        << "what is left, SrcPitch, fits the first name";
}

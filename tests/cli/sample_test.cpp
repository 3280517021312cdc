// sample_test.cpp - a program of one's own: its session, its keys, its parameters, its timing method.

#include "program.h"
#include "terminal.h"

#include <unistd.h>

namespace {

class Sample : public Program {
protected:
    Outcome sample(std::string const &args, std::string const &answers = "") const {
        write("answers", answers);
        return shell("'" SAMPLE "' " + args + " 2>&1 <answers");
    }
};

const std::string threeCalls = "-B -dMethod=Manual -dNumLoops=3 ";

// The lines between the title of the run and the first test.
Lines commonData(Outcome const &outcome) {
    auto isTest = [](std::string const &line) { return line.find("| Function  : ") == 0; };
    auto isBar = [](std::string const &line) { return line.find("+---") == 0; };
    auto end = std::find_if(outcome.lines.begin(), outcome.lines.end(), isTest);
    auto begin = std::find_if(outcome.lines.begin(), end, isBar);
    if (begin != end) begin = std::find_if(begin + 1, end, isBar);
    return begin == end ? Lines{} : Lines(begin + 1, end);
}

const std::string stars = " ******************************************************************************";

} // namespace

// ---- keys built in ---------------------------------------------------------------------------

TEST_F(Sample, WithoutArgumentsTheBuiltInKeysHold) {
    Outcome outcome = sample("");
    ASSERT_GE(outcome.lines.size(), 4u);
    EXPECT_EQ(Lines(outcome.lines.begin(), outcome.lines.begin() + 4),
              (Lines{"Command line options: set by _FORCE_CMDLINE preprocessor definition", "-B: batch mode",
                     "-LPERF: write errors,warnings,performance results to console",
                     "-f=sampleAlpha: test function equal to 'sampleAlpha'"}));
    EXPECT_EQ(linesWith(outcome.lines, "| Function  : ").size(), 1u);
}

TEST_F(Sample, AnyArgumentLeavesTheBuiltInKeysAlone) {
    Outcome outcome = sample("-v");
    EXPECT_EQ(outcome.lines.front(), "Command line options: ");
    EXPECT_TRUE(linesWith(outcome.lines, "sampleAlpha").empty());
}

TEST_F(Sample, AFileOfKeysGoesBeforeTheBuiltInOnes) {
    write("sample.cfg", "-v");
    Outcome outcome = sample("");
    EXPECT_EQ(outcome.lines.front(), "Command line options: read from sample.cfg file");
    EXPECT_TRUE(linesWith(outcome.lines, "sampleAlpha").empty());
}

// ---- session -----------------------------------------------------------------------------------

TEST_F(Sample, RegisteredSessionStandsInPlaceOfTheDefault) {
    Outcome outcome = sample(threeCalls + "-f=sampleBeta -r -l" + m_dir);
    auto at = std::find(outcome.lines.begin(), outcome.lines.end(), "session of the sample");
    ASSERT_NE(at, outcome.lines.end());
    EXPECT_EQ(*(at + 1), "Sorting functions...") << "right behind the keys";
    EXPECT_EQ(linesWith(file("sample.csv"), "function,"),
              Lines{"function,Parm1,Parm2,Parm3,Parm4,Parm5,Parm6,Parm7,Parm8,Comment,Clocks,per,Time "
                    "(usec),MFlops"});
}

TEST_F(Sample, WithoutALibraryThereIsNoWordOfItAndNoKeyForIt) {
    Outcome outcome = sample(threeCalls + "-TSSE -N2 -f=sampleBeta");
    EXPECT_TRUE(linesWith(outcome.lines, "KEL").empty());
    EXPECT_TRUE(linesWith(outcome.lines, "| Library ").empty());
    EXPECT_EQ(linesWith(outcome.lines, "ignored: incorrect option key"),
              (Lines{"-TSSE: ignored: incorrect option key", "-N2: ignored: incorrect option key"}));
    EXPECT_TRUE(linesWith(sample("-h").lines, "-T[").empty());
    EXPECT_EQ(linesWith(sample("-hN").lines, "Key -N is not valid").size(), 1u);
}

TEST_F(Sample, TestsRunByNameOrAsTheyWereRegistered) {
    Lines sorted = linesWith(sample("-e -fsample").lines, "sample.cpp");
    EXPECT_EQ(sorted,
              (Lines{"   1\tsampleAlpha\tAlpha\tsample.cpp\t", "   2\tsampleBeta\tBeta\tsample.cpp\t",
                     "   3\tsampleCached\tCached\tsample.cpp\t", "   4\tsampleGamma\tGamma\tsample.cpp\t",
                     "   5\tsampleNice\tNice\tsample.cpp\t"}));
    Lines registered = linesWith(sample("-e -s- -fsample").lines, "sample.cpp");
    EXPECT_EQ(registered,
              (Lines{"   1\tsampleGamma\tGamma\tsample.cpp\t", "   2\tsampleBeta\tBeta\tsample.cpp\t",
                     "   3\tsampleAlpha\tAlpha\tsample.cpp\t", "   4\tsampleCached\tCached\tsample.cpp\t",
                     "   5\tsampleNice\tNice\tsample.cpp\t"}));
    EXPECT_EQ(linesWith(sample("-e+ -fsample").lines, "sample.cpp"), registered) << "no list of the library";
}

TEST_F(Sample, UnsortedRunSaysNothingOfSorting) {
    Outcome outcome = sample(threeCalls + "-fAlpha -fBeta -s-");
    EXPECT_TRUE(linesWith(outcome.lines, "Sorting").empty());
    Lines titles = linesWith(outcome.lines, "| Function  : ");
    ASSERT_EQ(titles.size(), 2u);
    EXPECT_EQ(titles[0].find("| Function  : sampleBeta "), 0u);
    EXPECT_EQ(titles[1].find("| Function  : sampleAlpha "), 0u);
}

// ---- common parameters ---------------------------------------------------------------------------

TEST_F(Sample, CommonParametersAreAskedOnceForAllTests) {
    Outcome outcome = sample("-AParams -LERR -fAlpha -fBeta", "1;5;+4\nFU\n");
    EXPECT_EQ(
        commonData(outcome),
        (Lines{" Method = Statistic", " NumCalls = 4", " TotalCpuClocks = 500", stars,
               " *                   Specify common test parameters, please                   *", stars, "",
               " for size [1; 3; +2] =  for (size = 1; size <= 5; size += 4)", "",
               " mode of the sample {fast|full} [fast] =  mode = full", " AlignVectorsBy = element",
               " VectorAlign = 0", stars,
               " *                        End of common specifications                        *", stars}));
    EXPECT_EQ(linesWith(outcome.lines, "] = ").size(), 2u) << "and not again by the tests";
}

TEST_F(Sample, CommonParameterHoldsForEveryTestThatHasIt) {
    Outcome outcome = sample(threeCalls + "-LPERF '-dsize=4;6' -dmode=full -fAlpha -fBeta");
    EXPECT_EQ(linesWith(outcome.lines, "size=4 "), (Lines{"size=4 alpha=5 ", "size=4 mode=full "}));
    EXPECT_EQ(linesWith(outcome.lines, "size=6 "), (Lines{"size=6 alpha=5 ", "size=6 mode=full "}));
}

TEST_F(Sample, CommonParameterOfNoSelectedTestIsNotAsked) {
    Lines gamma = commonData(sample("-AParams -LERR -f=sampleGamma"));
    EXPECT_EQ(linesWith(gamma, "depth of the sample [8] = ").size(), 1u);
    EXPECT_TRUE(linesWith(gamma, "size").empty());
    Outcome none = sample("-AParams -LERR -f=sampleCached");
    EXPECT_TRUE(linesWith(none.lines, "Specify common test parameters, please").empty());
    EXPECT_TRUE(linesWith(none.lines, "End of common specifications").empty());
}

TEST_F(Sample, ParametersOfATestAreAskedUnderAllOnly) {
    Lines all = linesWith(sample("-AAll -LERR -fAlpha").lines, "parameter of Alpha");
    EXPECT_EQ(all, Lines{" parameter of Alpha [5] =  alpha = 5"});
    EXPECT_EQ(linesWith(sample("-A -LERR -fAlpha").lines, "parameter of Alpha"), all) << "no word is All";
    EXPECT_TRUE(
        linesWith(sample("-ATimingParamsMisalign -LERR -fAlpha").lines, "parameter of Alpha").empty());
}

TEST_F(Sample, BatchGoesBeforeAsk) {
    Outcome outcome = sample("-AAll -B -fAlpha");
    EXPECT_TRUE(linesWith(outcome.lines, "] = ").empty());
    EXPECT_TRUE(linesWith(outcome.lines, "****").empty());
}

TEST_F(Sample, WithoutAskAndBatchTimingAndParametersAreAsked) {
    Outcome outcome = sample("-LERR -fAlpha");
    EXPECT_EQ(linesWith(outcome.lines, ", please").size(), 2u);
    EXPECT_EQ(linesWith(outcome.lines, "Specify timing method, please").size(), 1u);
    EXPECT_EQ(linesWith(outcome.lines, "Specify common test parameters, please").size(), 1u);
}

// ---- timing method --------------------------------------------------------------------------------

TEST_F(Sample, RegisteredTimingMethodIsWhatTheQuestionsOffer) {
    Lines common = commonData(sample("-ATiming -LERR -f=sampleCached", "\n\n\n"));
    EXPECT_EQ(linesWith(common, "] = "),
              (Lines{" Method {Auto|Manual|Statistic|Iterative} [Statistic] =  Method = Statistic",
                     " NumCalls [4] =  NumCalls = 4", " TotalCpuClocks [500] =  TotalCpuClocks = 500"}));
}

TEST_F(Sample, RegisteredTimingMethodYieldsToAnAnswer) {
    Lines common = commonData(sample("-ATiming -LERR -f=sampleCached", "man\n\n"));
    EXPECT_EQ(linesWith(common, "] = "),
              (Lines{" Method {Auto|Manual|Statistic|Iterative} [Statistic] =  Method = Manual",
                     " NumLoops [10] =  NumLoops = 10"}));
}

// ---- order of the sources ---------------------------------------------------------------------------

TEST_F(Sample, DataGoesBeforeIniBeforeConsoleBeforeDefault) {
    write("x.ini", "[Rakova]\nMethod=Statistic\nNumCalls=20\nTotalCpuClocks=\n[sampleAlpha]\nalpha=7\n");
    Outcome outcome = sample("-AAll -LERR -fAlpha -i -nx -p" + m_dir + " -dNumCalls=30", "1\n2;4\n\n\n");
    Lines common = commonData(outcome);
    EXPECT_EQ(linesWith(common, "Method"), Lines{" Method = Statistic"});
    EXPECT_EQ(linesWith(common, "NumCalls"), Lines{" NumCalls = 30"});
    EXPECT_EQ(linesWith(common, "TotalCpuClocks"), Lines{" TotalCpuClocks [500] =  TotalCpuClocks = 1"})
        << "an empty value is none";
    EXPECT_EQ(linesWith(common, " size"), Lines{" for size [1; 3; +2] =  size = 2; 4"});
    EXPECT_EQ(linesWith(common, "VectorAlign ="),
              Lines{" VectorAlign by Element, 0..63 [0] =  VectorAlign = 0"});
    EXPECT_EQ(linesWith(outcome.lines, "alpha"), Lines{" alpha = 7"});
}

TEST_F(Sample, CommonParametersStandInTheCommonSection) {
    sample("-B -LERR -fAlpha -fBeta -I -nx -p" + m_dir + " '-dsize=2;3'");
    EXPECT_EQ(file("x.ini"), (Lines{"", "[Rakova]", "Method=Statistic\t// Auto|Manual|Statistic|Iterative",
                                    "NumCalls=4", "TotalCpuClocks=500", "size=2;3", "mode=fast\t// fast|full",
                                    "AlignVectorsBy=element\t// byte|element", "VectorAlign=0", "",
                                    "[sampleAlpha]", "alpha=5", "", "[sampleBeta]"}));
}

TEST_F(Sample, MethodsByData) {
    Outcome loops = sample("-B -LPERF -d Method=Manual -d NumLoops=5 -fGamma");
    EXPECT_EQ(linesWith(loops.lines, "  nLps=5      perf=").size(), 1u);
    Outcome calls = sample("-B -LPERF -dMethod=stat -dNumCalls=6 -dTotalCpuClocks=0 -fGamma");
    EXPECT_EQ(linesWith(calls.lines, "  nCalls=6    perf=").size(), 1u);
    Outcome iterative =
        sample("-B -LPERF -dMethod=iter -dStartNumLoops=2 -dStopNumLoops=8 -dAccuracy=0 -fGamma");
    EXPECT_EQ(linesWith(linesWith(iterative.lines, "  acc="), " perf=").size(), 1u);
}

TEST_F(Sample, LastDataOfANameCounts) {
    Outcome outcome = sample(threeCalls + "-LPERF -dNumLoops=7 '-d NumLoops = 9 ' -fGamma");
    EXPECT_EQ(linesWith(outcome.lines, "  nLps=9 ").size(), 1u);
}

TEST_F(Sample, StartFunctionThatNoTestHasRunsNothing) {
    Outcome outcome = sample(threeCalls + "-FnoSuchFunction");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(linesWith(outcome.lines, "| Function  : ").empty());
    EXPECT_EQ(linesWith(outcome.lines, "| .Number of tests : 0 ").size(), 1u);
    EXPECT_EQ(linesWith(outcome.lines, "Undefined     : 0 ").size(), 1u);
}

TEST_F(Sample, FunctionsOfTheIniFileAreAllWithoutOne) {
    EXPECT_EQ(linesWith(sample(threeCalls + "-P -fAlpha -fBeta").lines, "| Function  : ").size(), 2u);
}

TEST_F(Sample, ClosedInputIsAnEndOfInput) {
    Outcome outcome = shell("'" SAMPLE "' -A -LERR -fAlpha <&-");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(linesWith(outcome.lines, " Method = Statistic").size(), 1u);
    EXPECT_EQ(linesWith(outcome.lines, "| -OK         sampleAlpha ").size(), 1u);
}

TEST_F(Sample, AnswerOfAnyLengthIsReadWhole) {
    std::string list, shown;
    for (int i = 0; i < 600; ++i) list += std::to_string(i) + ";";
    Outcome outcome = sample("-AParams -LERR -fAlpha", list + "\n");
    for (int i = 0; i < 600; ++i) shown += (i ? "; " : "") + std::to_string(i);
    EXPECT_EQ(linesWith(outcome.lines, " for size ["), Lines{" for size [1; 3; +2] =  size = " + shown});
}

// ---- keys whose effect needs a test of its own ---------------------------------------------------------

TEST_F(Sample, HotLinesAreMarked) {
    sample(threeCalls + "-LERR -fAlpha -fBeta -dsize=1 -H -r -l" + m_dir);
    Lines table = file("sample.csv");
    ASSERT_GE(table.size(), 3u);
    EXPECT_EQ(cellsIn(table[table.size() - 3]).back(), "Interest");
    EXPECT_EQ(cellsIn(table[table.size() - 2])[0] + cellsIn(table[table.size() - 2]).back(), "sampleAlpha-");
    EXPECT_EQ(cellsIn(table[table.size() - 1])[0] + cellsIn(table[table.size() - 1]).back(), "sampleBetaHot");
}

TEST_F(Sample, HotFunctionsAlone) {
    Lines titles = linesWith(sample(threeCalls + "-LERR -HONLY").lines, "| Function  : ");
    ASSERT_EQ(titles.size(), 1u);
    EXPECT_EQ(titles[0].find("| Function  : sampleBeta "), 0u);
}

TEST_F(Sample, LastOfTheHotKeysCounts) {
    EXPECT_EQ(linesWith(sample(threeCalls + "-HO -H -fAlpha").lines, "| Function  : ").size(), 1u);
}

TEST_F(Sample, DataInCacheAndOutOfIt) {
    Outcome outcome = sample(threeCalls + "-LPERF -C -fCached");
    EXPECT_EQ(linesWith(outcome.lines, "bytes="), (Lines{"inCache:bytes=1000 ", "outofCache:bytes=8000 "}));
    EXPECT_EQ(linesWith(outcome.lines, "outofCache try: "),
              (Lines{"      outofCache try: cacheParm=1000 totalSize=1000 < 4300",
                     "      outofCache try: cacheParm=4000 totalSize=4000 < 4300"}));
}

TEST_F(Sample, PriorityIsRaisedInsideTheMeasurementAndBackBehindIt) {
    if (geteuid() != 0) GTEST_SKIP() << "an ordinary user may not";
    Outcome high = sample(threeCalls + "-LERR -YHIGH -fNice"),
            low = sample(threeCalls + "-LERR -YLOW -fNice");
    EXPECT_EQ(linesWith(high.lines, "inside: "), Lines{"inside: nice=-20 policy=2"}) << "2 is SCHED_RR";
    EXPECT_EQ(linesWith(low.lines, "inside: "), Lines{"inside: nice=10 policy=0"});
    Outcome none = sample(threeCalls + "-LERR -fNice");
    EXPECT_EQ(linesWith(high.lines, "behind: "), linesWith(none.lines, "behind: "));
    EXPECT_EQ(linesWith(low.lines, "behind: "), linesWith(none.lines, "behind: "));
}

// ---- at a terminal ---------------------------------------------------------------------------------------

TEST_F(Sample, EveryQuestionIsOnTheScreenBeforeItsAnswerIsTyped) {
    Terminal terminal({SAMPLE, "-AAll", "-LERR", "-fAlpha"});
    ASSERT_TRUE(terminal.shows(" Method {Auto|Manual|Statistic|Iterative} [Statistic] = "));
    EXPECT_TRUE(terminal.isSilent(100)) << "waits for the answer";
    terminal.type("manual\n");
    ASSERT_TRUE(terminal.shows("manual\n Method = Manual\n\n NumLoops [10] = "));
    terminal.type("2\n");
    ASSERT_TRUE(terminal.shows("Specify common test parameters, please"));
    ASSERT_TRUE(terminal.shows("\n for size [1; 3; +2] = "));
    terminal.type("1;2;3\n");
    ASSERT_TRUE(terminal.shows("\n size = 1; 2; 3\n")) << terminal.screen();
    ASSERT_TRUE(terminal.shows("\n AlignVectorsBy {byte|element} [element] = "));
    terminal.type("\n");
    ASSERT_TRUE(terminal.shows("\n VectorAlign by Element, 0..63 [0] = "));
    terminal.type("\n");
    ASSERT_TRUE(terminal.shows("End of common specifications"));
    ASSERT_TRUE(terminal.shows("| Function  : sampleAlpha"));
    ASSERT_TRUE(terminal.shows("\n parameter of Alpha [5] = "));
    EXPECT_TRUE(terminal.isSilent(100));
    terminal.type("6\n");
    ASSERT_TRUE(terminal.shows("\n alpha = 6\n"));
    ASSERT_TRUE(terminal.shows("| -OK         sampleAlpha"));
    EXPECT_EQ(terminal.end(), 0);
}

TEST_F(Sample, EndOfInputAtATerminalTakesTheDefaults) {
    Terminal terminal({SAMPLE, "-ATiming", "-LERR", "-fAlpha"});
    ASSERT_TRUE(terminal.shows(" Method {Auto|Manual|Statistic|Iterative} [Statistic] = "));
    terminal.type("\x04");
    ASSERT_TRUE(terminal.shows(" Method = Statistic\n"));
    ASSERT_TRUE(terminal.shows(" NumCalls [4] = "));
    terminal.type("\x04");
    ASSERT_TRUE(terminal.shows(" NumCalls = 4\n"));
    terminal.type("\x04");
    ASSERT_TRUE(terminal.shows(" TotalCpuClocks = 500\n"));
    EXPECT_EQ(terminal.end(), 0);
}

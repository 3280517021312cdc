// keys_test.cpp - what the report at the head of a run says of every key.

#include "program.h"

namespace {

class Keys : public Program {
protected:
    // The lines of the report. A file that cannot be opened ends the run right behind it.
    Lines reportOf(std::string const &args) const {
        const std::string last = "-o" + path("none/x");
        Outcome stopped = run(args + " " + last);
        EXPECT_EQ(stopped.status, 0);
        auto begin = std::find(stopped.lines.begin(), stopped.lines.end(), "Command line options: ");
        auto end = std::find(stopped.lines.begin(), stopped.lines.end(),
                             last + ": write console output to " + path("none/x"));
        if (begin == stopped.lines.end() || end == stopped.lines.end()) {
            ADD_FAILURE() << "no report in\n" << stopped.text();
            return {};
        }
        EXPECT_EQ(stopped.lines.back(), "FATAL ERROR: can't open output file for writing");
        return Lines(begin + 1, end);
    }
};

} // namespace

TEST_F(Keys, StandInTheirOrderWithTheirDuplicates) {
    EXPECT_EQ(reportOf("-s -B -s- -B"),
              (Lines{"-s: sort functions", "-B: batch mode", "-s-: don't sort functions", "-B: batch mode"}));
}

TEST_F(Keys, SlashIsAsGoodAsADash) {
    EXPECT_EQ(reportOf("/B /fSAD"), (Lines{"-B: batch mode", "-fSAD: test functions containing 'SAD'"}));
}

TEST_F(Keys, ArgumentMayBeAWordOfItsOwn) {
    EXPECT_EQ(
        reportOf("-f SAD -f- 16 -f+ 8 -f= x"),
        (Lines{"-fSAD: test functions containing 'SAD'", "-f-16: don't test functions containing '16'",
               "-f+8: don't test functions without '8' in the name", "-f=x: test function equal to 'x'"}));
}

TEST_F(Keys, AWordBehindAKeyWithoutArgumentIsSwallowed) {
    EXPECT_EQ(reportOf("-B word -C"),
              (Lines{"-Bword: batch mode",
                     "-C: test data size will be in cache and out of cache if that is "
                     "supported by test"}));
}

TEST_F(Keys, AWordInFrontOfAllKeysIsDropped) {
    EXPECT_EQ(reportOf("word -B"), (Lines{"-B: batch mode"}));
}

TEST_F(Keys, UnknownKeysAreIgnored) {
    EXPECT_EQ(reportOf("-x -m -xy -b --help"),
              (Lines{"-x: ignored: incorrect option key", "-m: ignored: incorrect option key",
                     "-xy: ignored: incorrect option key", "-b: ignored: incorrect option key",
                     "--help: ignored: incorrect option key"}));
}

TEST_F(Keys, AskTellsWhatWillBeAsked) {
    EXPECT_EQ(
        reportOf("-ATiming -AParams -AMisalign -AAll -A -ATimingParams -AMP -Atiming"),
        (Lines{"-ATiming: ask timing method from console", "-AParams: ask common parameters from console",
               "-AMisalign: ask data misalignment from console",
               "-AAll: ask timing method, common parameters, data misalignment, each test parameters from "
               "console",
               "-A: ask timing method, common parameters, data misalignment, each test parameters from "
               "console",
               "-ATimingParams: ask timing method, common parameters from console",
               "-AMP: ask common parameters, data misalignment from console",
               "-Atiming: ask timing method, common parameters, data misalignment, each test parameters "
               "from console"}));
}

TEST_F(Keys, DataNeedsANameAndAValue) {
    EXPECT_EQ(reportOf("-dNumLoops=3 -d NumLoops=4 -d -dx -d=3 '-d =3' -dx="),
              (Lines{"-dNumLoops=3: set RK parameter NumLoops=3", "-dNumLoops=4: set RK parameter NumLoops=4",
                     "-d: ignored: empty data argument", "-dx: ignored: incorrect data format",
                     "-d=3: ignored: incorrect data format", "-d =3: ignored: incorrect data format",
                     "-dx=: set RK parameter x="}));
}

TEST_F(Keys, FilesAreToldWithTheirPaths) {
    const std::string title = " -l" + m_dir + " -p" + m_dir + " -nx";
    const std::string at = m_dir + "/x";
    EXPECT_EQ(
        reportOf("-o -O -r -R -q -u -U -g -i -I" + title),
        (Lines{"-o: write console output to " + at + ".txt", "-O: add console output to " + at + ".txt",
               "-r: write performance result table to " + at + ".csv",
               "-R: add performance result table to " + at + ".csv",
               "-q: write function parameter name lines to " + at + "_name.csv",
               "-u: write summary table to " + at + "_sum.csv", "-U: add summary table to " + at + "_sum.csv",
               "-g: create file " + at + ".end at the end of RK work",
               "-i: read RK parameters from " + at + ".ini",
               "-I: write RK parameters to " + at + ".ini and exit",
               "-l" + m_dir + ": open output files in " + m_dir,
               "-p" + m_dir + ": open test data files & ini-file in " + m_dir,
               "-nx: name ini-file and output files as x.<proper-ext>"}));
}

TEST_F(Keys, NamesAndDirectoriesMustNotBeEmpty) {
    EXPECT_EQ(reportOf("-n -p -l"),
              (Lines{"-n: ignored: empty default name", "-p: ignored: empty directory name",
                     "-l: ignored: empty directory name"}));
}

TEST_F(Keys, BothDirectoriesOfARepeatedKeyAreTold) {
    EXPECT_EQ(reportOf("-pone -ptwo"), (Lines{"-pone: open test data files & ini-file in one",
                                              "-ptwo: open test data files & ini-file in two"}));
}

TEST_F(Keys, NameTableOfItsOwnOrInTheResults) {
    EXPECT_EQ(reportOf("-q+ -Q"),
              (Lines{"-q+: add function parameter name lines to csv files defined by -r & -R keys",
                     "-Q: exit after function parameter name table creation and don't run tests", ""}));
}

TEST_F(Keys, LevelsAreToldByName) {
    EXPECT_EQ(reportOf("-LERR -LWARN -LPERF -LINFO -LTRACE -LMEM -LDATA -LEM"),
              (Lines{"-LERR: write errors to console", "-LWARN: write errors,warnings to console",
                     "-LPERF: write errors,warnings,performance results to console",
                     "-LINFO: write errors,warnings,performance results,measurement process to console",
                     "-LTRACE: write errors,warnings,performance results,tracing info to console",
                     "-LMEM: write errors,warnings,performance results,memory info to console",
                     "-LDATA: write errors,warnings,performance results,tracing info,data info to console",
                     "-LEM: write errors,warnings,performance results,memory info to console"}));
}

TEST_F(Keys, LevelsAreCapitals) {
    EXPECT_EQ(reportOf("-L -Lx -Lperf"), (Lines{"-L: ignored: incorrect level of console output",
                                                "-Lx: ignored: incorrect level of console output",
                                                "-Lperf: ignored: incorrect level of console output"}));
}

TEST_F(Keys, PatternsOfFunctionsAndTests) {
    EXPECT_EQ(
        reportOf("-fa -f+a -f-a -f=a -ta -t+a -t-a -t=a -f -f+ -f- -f= -t -t+ -t- -t="),
        (Lines{"-fa: test functions containing 'a'", "-f+a: don't test functions without 'a' in the name",
               "-f-a: don't test functions containing 'a'", "-f=a: test function equal to 'a'",
               "-ta: run tests containing a", "-t+a: don't run tests which doesn't contain a",
               "-t-a: don't run tests containing a", "-t=a: run test equal to a",
               "-f: ignored: empty function pattern", "-f+: ignored: empty function pattern",
               "-f-: ignored: empty function pattern", "-f=: ignored: empty function pattern",
               "-t: ignored: empty test pattern", "-t+: ignored: empty test pattern",
               "-t-: ignored: empty test pattern", "-t=: ignored: empty test pattern"}));
}

TEST_F(Keys, PriorityIsAWordByItsFirstLetter) {
    EXPECT_EQ(reportOf("-YHIGH -YNORMAL -YLOW -YH -Yhigh -Y"),
              (Lines{"-YHIGH: set high process priority", "-YNORMAL: set normal process priority",
                     "-YLOW: set low process priority", "-YH: set high process priority",
                     "-Yhigh: ignored: incorrect process priority value",
                     "-Y: ignored: incorrect process priority value"}));
}

TEST_F(Keys, HotFunctionsAreMarkedOrAlone) {
    EXPECT_EQ(
        reportOf("-H -HO -HONLY -Hx"),
        (Lines{"-H: add 'Interest' column to table file", "-HO: run tests for hot functions only",
               "-HONLY: run tests for hot functions only", "-Hx: add 'Interest' column to table file"}));
}

TEST_F(Keys, ProcessorAndThreadsOfTheLibrary) {
    EXPECT_EQ(
        reportOf("-TSSE2 -TT1 -TUnknown -Tzz -N3 -N0 -N-1 -Nx"),
        (Lines{"-TSSE2: call kelInitStaticCpu ( kelCpuSSE2 )", "-TT1: call kelInitStaticCpu ( kelCpuT1 )",
               "-TUnknown: call kelInitStaticCpu ( kelCpuUnknown )", "-Tzz: ignored: incorrect CPU type",
               "-N3: call kelSetNumThreads(3)", "-N0: ignored: incorrect number of threads",
               "-N-1: ignored: incorrect number of threads", "-Nx: ignored: incorrect number of threads"}));
}

TEST_F(Keys, TheRest) {
    EXPECT_EQ(reportOf("-P -Fabc -F -SU -S -C -s- -s"),
              (Lines{"-P: read tested function names from ini-file if any",
                     "-Fabc: start testing from abc function", "-F: start testing from  function",
                     "-SU: include to measurement data set & use time",
                     "-S: include to measurement data set & use time",
                     "-C: test data size will be in cache and out of cache if that is supported by test",
                     "-s-: don't sort functions", "-s: sort functions"}));
}

TEST_F(Keys, ListsHelpAndVersion) {
    EXPECT_EQ(reportOf("-e"), (Lines{"-e: enumerate tested functions and exit"}));
    EXPECT_EQ(reportOf("-e+ -e-"), (Lines{"-e+: enumerate applied and not applied library functions and exit",
                                          "-e-: enumerate not applied library functions and exit"}));
    EXPECT_EQ(reportOf("-v"), (Lines{"-v: type the version number of the Rakova and exit"}));
    EXPECT_EQ(reportOf("-h -hh -hf"),
              (Lines{"-h: type short help and exit", "-hh: type extended help and exit",
                     "-hf: type extended help for -f key and exit"}));
    EXPECT_EQ(reportOf("'-?' '-?"
                       "?' '-?f'"),
              (Lines{"-?: type short help with hidden key sand exit",
                     "-?"
                     "?: type extended help with hidden keys and exit",
                     "-?f: type extended help for -f key and exit"}));
}

// ---- keys that give way to a run that will not measure -------------------------------------

namespace {

// By the least of the three reasons that silences them.
const std::string silencedByAList = "-B -A -dx=1 -i -I -P -LERR -q+ -Q -Fx -YH -S -C";
const std::string silencedByHelp = "-fa -ta -H -s";

} // namespace

TEST_F(Keys, AVersionSilencesAllThatTakesNoticeOfIt) {
    Lines report = reportOf("-v -l" + m_dir + " " + silencedByAList + " -u " + silencedByHelp);
    EXPECT_EQ(linesWith(report, ": ignored because of -v option").size(), 18u);
}

TEST_F(Keys, AListLeavesItsConditionsAlone) {
    Lines report = reportOf("-e -l" + m_dir + " " + silencedByAList + " -u -U " + silencedByHelp);
    EXPECT_EQ(linesWith(report, ": ignored because of -e option").size(), 15u);
    EXPECT_EQ(Lines(report.end() - 4, report.end()),
              (Lines{"-fa: test functions containing 'a'", "-ta: run tests containing a",
                     "-H: add 'Interest' column to table file", "-s: sort functions"}));
}

TEST_F(Keys, HelpSilencesTheListToo) {
    Lines report = reportOf("-h -e " + silencedByHelp + " -B");
    EXPECT_EQ(report, (Lines{"-h: type short help and exit", "-e: ignored because of -h option",
                             "-fa: ignored because of -h option", "-ta: ignored because of -h option",
                             "-H: ignored because of -h option", "-s: ignored because of -h option",
                             "-B: ignored because of -h option"}));
}

TEST_F(Keys, AListGoesBeforeAVersion) {
    EXPECT_EQ(reportOf("-v -e -B"),
              (Lines{"-v: type the version number of the Rakova and exit",
                     "-e: enumerate tested functions and exit", "-B: ignored because of -e option"}));
}

TEST_F(Keys, FilesPathsAndTheLibrarysKeysAreToldInAnyCase) {
    Lines report = reportOf("-h -l" + m_dir + " -o -O -r -R -g -nx -px -TSSE -N2 -v");
    EXPECT_TRUE(linesWith(report, "ignored").empty());
    EXPECT_EQ(report.size(), 12u);
}

TEST_F(Keys, ASilencedKeyStillOpensItsFile) {
    run("-h -q -u -l" + m_dir);
    EXPECT_TRUE(std::filesystem::exists(path("rakova_name.csv")));
    EXPECT_TRUE(std::filesystem::exists(path("rakova_sum.csv")));
}

// effects_test.cpp - what each key does to a run.

#include "program.h"
#include "terminal.h"

namespace {

class Effects : public Program {};

const std::string one = quick + "-f=keliSAD4x4_8u32s ";

Lines functionsOf(Outcome const &list) {
    Lines functions;
    for (std::string const &line : linesWith(list.lines, "\tkeli")) {
        size_t begin = line.find('\t') + 1;
        functions.push_back(line.substr(begin, line.find('\t', begin) - begin));
    }
    return functions;
}

size_t titles(Outcome const &outcome) {
    return linesWith(outcome.lines, "| Function  : ").size();
}

size_t count(Outcome const &outcome, char const *text) {
    return linesWith(outcome.lines, text).size();
}

} // namespace

// ---- selection -----------------------------------------------------------------------------

TEST_F(Effects, AnyOrPatternSelects) {
    EXPECT_EQ(functionsOf(run("-e -fkeliSAD4x4_8 -fkeliSAD16x8_8u32s_C1R -t=CSUMD_H264 -f+_8u")),
              (Lines{"keliSAD16x8_8u32s_C1R", "keliSAD4x4_8u32s", "keliSumsDiff16x16Blocks4x4_8u16s_C1",
                     "keliSumsDiff8x8Blocks4x4_8u16s_C1"}));
}

TEST_F(Effects, NotAndAndPatternsTakeAway) {
    EXPECT_EQ(functionsOf(run("-e -t=CSUMD_H264 -f-16u")),
              (Lines{"keliSumsDiff16x16Blocks4x4_8u16s_C1", "keliSumsDiff8x8Blocks4x4_8u16s_C1"}));
    EXPECT_EQ(functionsOf(run("-e -f+8x8 -t=CSUMD_H264")),
              (Lines{"keliSumsDiff8x8Blocks4x4_8u16s_C1", "keliSumsDiff8x8Blocks4x4_16u32s_C1R"}));
    EXPECT_EQ(functionsOf(run("-e -t+SADn -t-CSUMD -f-xNI -f-16x16 -f-8x8")),
              (Lines{"keliSAD2x2xN_8u16u_C1R", "keliSAD4x4xN_8u16u_C1R"}));
}

TEST_F(Effects, EqualPatternsAreWholeNamesAndMayBeTakenAwayAgain) {
    EXPECT_EQ(functionsOf(run("-e -f=keliSAD4x4_8u32s -f=keliSAD4x4")), Lines{"keliSAD4x4_8u32s"});
    EXPECT_TRUE(functionsOf(run("-e -f=keliSAD4x4_8u32s -f+8x8")).empty());
}

TEST_F(Effects, PatternsHeedTheCase) {
    EXPECT_TRUE(functionsOf(run("-e -fKELISAD -tcsad")).empty());
}

TEST_F(Effects, StartFunctionBeginsTheRunInTheMiddle) {
    Outcome outcome = run(quick + "-t=CSAD_H264 -FkeliSAD16x16Blocks8x8");
    Lines functions = linesWith(outcome.lines, "| Function  : ");
    ASSERT_EQ(functions.size(), 2u);
    EXPECT_EQ(functions[0].find("| Function  : keliSAD16x16Blocks8x8_8u16u "), 0u);
    EXPECT_EQ(functions[1].find("| Function  : keliSAD4x4_8u32s "), 0u);
}

TEST_F(Effects, UnsortedListHasTheOrderOfTheFiles) {
    EXPECT_EQ(functionsOf(run("-e -s- -t=CSUMD_H264")),
              (Lines{"keliSumsDiff16x16Blocks4x4_8u16s_C1", "keliSumsDiff8x8Blocks4x4_8u16s_C1",
                     "keliSumsDiff16x16Blocks4x4_16u32s_C1R", "keliSumsDiff8x8Blocks4x4_16u32s_C1R"}));
}

TEST_F(Effects, LastOfTheSortKeysCounts) {
    EXPECT_EQ(functionsOf(run("-e -s- -s -t=CSUMD_H264")), functionsOf(run("-e -t=CSUMD_H264")));
    EXPECT_EQ(functionsOf(run("-e -s -s- -t=CSUMD_H264")), functionsOf(run("-e -s- -t=CSUMD_H264")));
}

// ---- levels of the console --------------------------------------------------------------------

namespace {

// How many of each kind of line a run of one parameter set shows.
struct Shown {
    size_t details, registration, performance, course, trace, memory, data;
    bool operator==(Shown const &o) const {
        return details == o.details && registration == o.registration && performance == o.performance &&
               course == o.course && trace == o.trace && memory == o.memory && data == o.data;
    }
};

std::ostream &operator<<(std::ostream &stream, Shown const &s) {
    return stream << "details " << s.details << " registration " << s.registration << " performance "
                  << s.performance << " course " << s.course << " trace " << s.trace << " memory " << s.memory
                  << " data " << s.data;
}

class Level : public Effects {
protected:
    Shown at(std::string const &word) {
        Outcome outcome = run("-B -dMethod=man -dNumLoops=2 -f=keliSAD4x4_8u32s " + word);
        EXPECT_EQ(titles(outcome), 1u);
        EXPECT_EQ(count(outcome, "| -OK         keliSAD4x4_8u32s "), 1u);
        return Shown{count(outcome, "| Source "),
                     count(outcome, "Test has been registered by KM_REG macro"),
                     count(outcome, "perf="),
                     count(outcome, "funcClocks = "),
                     count(outcome, " trace into   runTiming"),
                     count(outcome, "- rkMalloc: "),
                     count(outcome, "======== Object ")};
    }
};

} // namespace

TEST_F(Level, WithoutTheKeyErrorsAlone) {
    EXPECT_EQ(at(""), (Shown{0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(Level, Warnings) {
    EXPECT_EQ(at("-LWARN"), (Shown{1, 0, 0, 0, 0, 0, 0}));
}

TEST_F(Level, Performance) {
    EXPECT_EQ(at("-LPERF"), (Shown{1, 1, 1, 0, 0, 0, 0}));
}

TEST_F(Level, CourseOfTheMeasurement) {
    EXPECT_EQ(at("-LINFO"), (Shown{1, 1, 1, 1, 0, 0, 0}));
}

TEST_F(Level, Trace) {
    EXPECT_EQ(at("-LTRACE"), (Shown{1, 1, 1, 0, 1, 0, 0}));
}

TEST_F(Level, Memory) {
    EXPECT_EQ(at("-LMEM"), (Shown{1, 1, 1, 0, 0, 3, 0}));
}

TEST_F(Level, DataBeforeAndAfter) {
    EXPECT_EQ(at("-LDATA"), (Shown{1, 1, 1, 0, 1, 0, 6})) << "the word holds the letter of the trace too";
}

TEST_F(Level, WordsAddUp) {
    EXPECT_EQ(at("-LERR -LI -LM"), (Shown{1, 1, 1, 1, 0, 3, 0}));
}

// ---- files ---------------------------------------------------------------------------------------

TEST_F(Effects, ListingHoldsTheConsoleButForWhatGoesPastIt) {
    write("old.txt", "before\n");
    Outcome outcome = run("-B -LINFO -dMethod=man -dNumLoops=2 -t=CSAD_H264 -o -Oold -l" + m_dir);
    auto head = std::find(outcome.lines.begin(), outcome.lines.end(), "Command line options: ");
    ASSERT_NE(head, outcome.lines.end());
    Lines expected(head, outcome.lines.end());
    expected.erase(std::find(expected.begin(), expected.end(), "Sorting functions..."));
    EXPECT_EQ(file("rakova.txt"), expected);
    expected.insert(expected.begin(), "before");
    EXPECT_EQ(file("old.txt"), expected);
}

TEST_F(Effects, TablesAreWrittenAnewOrAddedTo) {
    for (char const *name : {"rakova.csv", "rakova_sum.csv", "old.csv", "old_sum.csv"})
        write(name, "before\n");
    run(one + "-r -Rold -u -Uold_sum.csv -l" + m_dir);
    Lines table = file("rakova.csv"), summary = file("rakova_sum.csv");
    ASSERT_EQ(table.size(), 7u) << "title of five lines, titles of the columns, one row";
    EXPECT_EQ(table[6].find("keliSAD4x4,8u32s,-,-,-,-,-,-,-,nLps=3,"), 0u) << table[6];
    EXPECT_EQ(summary[5].find("Function,Class,Control87,"), 0u) << summary[5];
    EXPECT_EQ(summary[6].find("keliSAD4x4_8u32s,Timing,-,-,-,-,CSAD_H264,"), 0u) << summary[6];
    table.insert(table.begin(), "before");
    summary.insert(summary.begin(), "before");
    EXPECT_EQ(file("old.csv"), table);
    EXPECT_EQ(file("old_sum.csv"), summary);
}

namespace {

const std::string columns =
    "funcBase,funcDataType,funcDescriptor,Len/Size,Parm1,Parm2,Parm3,Parm4,scaleFactor,Comment,Clocks,per,"
    "Time (usec),MFlops";
const std::string names =
    "keliSumsDiff8x8Blocks4x4,8u16s,C1,SrcPitch,PredPitch,save_diff,-,-,-,parmNames,-,-,-,-";

} // namespace

TEST_F(Effects, NameLinesGoToAFileOfTheirOwn) {
    run(quick + "-f=keliSumsDiff8x8Blocks4x4_8u16s_C1 -q -r -l" + m_dir);
    Lines table = file("rakova.csv"), nameTable = file("rakova_name.csv");
    EXPECT_EQ(table.size(), 14u);
    EXPECT_TRUE(linesWith(table, "parmNames").empty());
    ASSERT_EQ(nameTable.size(), 7u);
    EXPECT_EQ(Lines(nameTable.begin(), nameTable.begin() + 6), Lines(table.begin(), table.begin() + 6));
    EXPECT_EQ(nameTable[5], columns);
    EXPECT_EQ(nameTable[6], names);
}

TEST_F(Effects, NameLinesGoInFrontOfTheResults) {
    run(quick + "-f=keliSumsDiff8x8Blocks4x4_8u16s_C1 -q+ -r -l" + m_dir);
    Lines table = file("rakova.csv");
    ASSERT_EQ(table.size(), 15u);
    EXPECT_EQ(table[5], columns);
    EXPECT_EQ(table[6], names);
    EXPECT_EQ(linesWith(table, "parmNames").size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(path("rakova_name.csv")));
}

TEST_F(Effects, RunMayEndBehindTheNameLines) {
    Outcome outcome = run(quick + "-t=CSUMD_H264 -q -r -Q -l" + m_dir);
    EXPECT_EQ(linesWith(file("rakova_name.csv"), "parmNames").size(), 4u);
    EXPECT_EQ(file("rakova.csv").back(), columns) << "no results";
    EXPECT_EQ(count(outcome, "perf="), 0u);
    EXPECT_EQ(count(outcome, "| -OK "), 4u);
}

TEST_F(Effects, InterestIsAColumnOfItsOwn) {
    run(one + "-H -r -l" + m_dir);
    Lines table = file("rakova.csv");
    ASSERT_EQ(table.size(), 7u);
    EXPECT_EQ(table[5], columns + ",Interest");
    EXPECT_EQ(cellsIn(table[6]).size(), 15u);
    EXPECT_EQ(cellsIn(table[6]).back(), "-");
}

TEST_F(Effects, SignalFileComesOfAVersionToo) {
    run("-v -gmark -l" + m_dir);
    Lines lines = file("mark.end");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].find("00:00:0"), 0u) << lines[0];
    EXPECT_EQ(lines[2], "");
}

// ---- measurement ------------------------------------------------------------------------------------

TEST_F(Effects, DataSetAndUseAreMeasuredThroughTheCall) {
    Outcome outcome = run(one + "-SU");
    EXPECT_EQ(count(outcome, "   funcCall with Set&Use is called for measuring."), 1u);
    EXPECT_EQ(count(outcome, "perf="), 1u);
}

TEST_F(Effects, CacheRunNeedsATestThatCanDoIt) {
    Outcome outcome = run(one + "-C");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(count(outcome,
                    "-- Can't run In-Outof-Cache timing: no program support for function "
                    "keliSAD4x4_8u32s"),
              1u);
    EXPECT_EQ(count(outcome, "| -UNDEFINED  keliSAD4x4_8u32s "), 1u);
    EXPECT_EQ(count(outcome, "| ...Undefined     : 1 "), 1u);
}

// ---- the library's own keys ---------------------------------------------------------------------------

namespace {

// What stands between the report of the keys and the second word of the library. The program is ended before
// it measures.
Lines callsOf(std::vector<std::string> const &keys) {
    std::vector<std::string> words = {RAKOVA, "-B", "-LERR", "-fnone"};
    words.insert(words.end(), keys.begin(), keys.end());
    Terminal terminal(words);
    EXPECT_TRUE(terminal.shows("KEL libraries information has been set into RK\n")) << terminal.screen();
    Lines calls;
    for (std::string const &line : linesIn(terminal.screen())) {
        if (line.compare(0, 2, "--") == 0) calls.push_back(line);
    }
    return calls;
}

} // namespace

TEST_F(Effects, EveryProcessorOfTheHelpIsHandedToTheLibrary) {
    Lines labels;
    for (std::string const &line : linesWith(run("-hT").lines, " : "))
        labels.push_back(line.substr(0, line.find(' ')));
    ASSERT_EQ(labels.size(), 29u);
    Lines numbers;
    for (std::string const &label : labels) {
        Lines calls = callsOf({"-T" + label});
        ASSERT_GE(calls.size(), 2u) << label;
        const std::string start = "--calling kelInitCpu( kelCpu" + label + "=";
        ASSERT_EQ(calls[0].find(start), 0u) << calls[0];
        EXPECT_EQ(calls[0].substr(calls[0].size() - 2), " )");
        numbers.push_back(calls[0].substr(start.size(), calls[0].size() - 2 - start.size()));
        bool taken = calls[1] == "--status = kelStsNoErr";
        bool mismatch = calls[1].find("--KEL WARNING. status = 3: ") == 0; // of a machine that cannot run it
        EXPECT_TRUE(taken || mismatch) << label << ": " << calls[1];
        EXPECT_EQ(calls.size(), 2u) << label;
    }
    EXPECT_EQ(numbers,
              (Lines{"0",  "1",  "2",  "3",  "4",  "5",  "6",  "7",  "8",  "9",  "10", "11", "16", "17", "32",
                     "33", "34", "35", "36", "37", "64", "65", "66", "67", "68", "69", "70", "71", "96"}));
}

TEST_F(Effects, UnknownProcessorIsNotHandedToTheLibrary) {
    EXPECT_TRUE(callsOf({"-TnoSuch"}).empty());
}

TEST_F(Effects, LastProcessorAndLastNumberOfThreadsCount) {
    EXPECT_EQ(callsOf({"-TSSE", "-TSSE2", "-N3", "-N5"}),
              (Lines{"--calling kelInitCpu( kelCpuSSE2=65 )", "--status = kelStsNoErr",
                     "--calling kelSetNumThreads( 5 )", "--status = kelStsNoErr"}));
}

TEST_F(Effects, ProcessorOfTheKeyIsTheOneOfTheTitle) {
    Outcome outcome = run(one + "-TSSE2");
    EXPECT_EQ(count(outcome, "| CPU      : processor with SSE2 instructions, "), 1u);
}

// ---- a program without the library -----------------------------------------------------------------------

TEST_F(Effects, BareProgramTellsOfTheProcessorAlone) {
    Outcome outcome = shell("'" RAKOVA_BARE "' -B -TSSE -N2 -o -l" + m_dir + " 2>&1 </dev/null");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.lines.front(), "Command line options: ");
    EXPECT_EQ(count(outcome, "ignored: incorrect option key"), 2u);
    EXPECT_EQ(titles(outcome), 1u);
    EXPECT_EQ(count(outcome, "| Function  : __rkTarvoCpu "), 1u);
    EXPECT_EQ(count(outcome, "    Tarvo(R) Processor Identification"), 1u);
    EXPECT_EQ(count(outcome, "| .Successes       : 1 "), 1u);
    EXPECT_EQ(count(outcome, "KEL"), 0u);
}

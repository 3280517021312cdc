// golden_test.cpp - whole outputs of the program, line by line; what differs from run to run is masked.

#include "../unit/helptexts.h"
#include "program.h"

#include <regex>

namespace {

std::string masked(std::string line) {
    const std::regex date("[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}");
    const std::regex duration("[0-9]{2}:[0-9]{2}:[0-9]{2}");
    const std::regex machine("\\| (CPU      |OS       |Computer |Library  ): .*\\|");
    line = std::regex_replace(line, date, "<day, month, time, year>");
    line = std::regex_replace(line, duration, "<h:m:s>");
    return std::regex_replace(line, machine, "| $1: <of the machine>|");
}

Lines masked(Lines lines) {
    for (std::string &line : lines) line = masked(line);
    return lines;
}

// Texts are shown by their differing lines.
std::string textOf(Lines const &lines) {
    return Outcome{0, lines}.text();
}

const std::string bar = "+" + std::string(77, '-') + "+";

std::string framed(std::string const &text) {
    return "| " + text + std::string(76 - text.size(), ' ') + "|";
}

// With the mask of a date, which is as long as the date, at the right edge.
std::string dated(std::string const &text) {
    return "| " + text + std::string(52 - text.size(), ' ') + "<day, month, time, year>|";
}

class Golden : public Program {
protected:
    Lines outputOf(std::string const &args) const {
        Outcome outcome = run(args);
        EXPECT_EQ(outcome.status, 0);
        return masked(outcome.lines);
    }
    // What stands in front of the help and the list.
    static Lines head(std::string const &report) {
        return {"", "KEL Core library functions have been integrated into RK",
                "Command line options: ", report};
    }
};

Lines operator+(Lines first, Lines const &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Lines banner = {"", "Tarvo(R) Kelvara. Rakova 2.0, Mar 16 2010"};

const std::string processors =
    "Unknown  : non optimized code\n"
    "T1       : optimized for Tarvo Brook processor\n"
    "T1M      : optimized for Tarvo Brook processor with MMX\n"
    "T2       : optimized for Tarvo Creek processor\n"
    "T2M      : optimized for Tarvo Creek processor with MMX\n"
    "T2S      : optimized for Tarvo Creek processor with SSE\n"
    "T3       : optimized for Tarvo Harbor processor\n"
    "T3L      : optimized for Tarvo Harbor processor for portables\n"
    "T3X      : optimized for Tarvo Harbor processor with SSE3\n"
    "V1       : optimized for Tarvo Voyage processor\n"
    "V2       : optimized for Tarvo Voyage II processor\n"
    "T3D      : optimized for Tarvo Harbor processor with two cores\n"
    "B1       : optimized for Tarvo Beacon processor for servers\n"
    "B2       : optimized for Tarvo Beacon processor for servers with 64 bits\n"
    "M1       : optimized for Tarvo Meridian processor\n"
    "M2D      : optimized for Tarvo Meridian processor with two cores and SSSE3\n"
    "M2Q      : optimized for Tarvo Meridian processor with four cores and SSSE3\n"
    "MER2     : optimized for Tarvo Meridian 2 processor\n"
    "PEB      : optimized for Tarvo Pebble processor\n"
    "SUM      : optimized for Tarvo Summit processor\n"
    "SSE      : optimized for processor with SSE instructions\n"
    "SSE2     : optimized for processor with SSE2 instructions\n"
    "SSE3     : optimized for processor with SSE3 instructions\n"
    "SSSE3    : optimized for processor with SSSE3 instructions\n"
    "SSE41    : optimized for processor with SSE4.1 instructions\n"
    "SSE42    : optimized for processor with SSE4.2 instructions\n"
    "AVX      : optimized for processor with AVX instructions\n"
    "AES      : optimized for processor with AES instructions\n"
    "X8664    : optimized for processor with 64-bit instructions\n";

bool isHidden(char key) {
    return key == 'S' || key == 'C';
}

std::string descriptionOf(HelpText const &row) {
    std::string text = row.descr;
    size_t tab = text.find('\t');
    return tab == std::string::npos ? text : text.replace(tab, 1, processors);
}

Lines shortHelp(bool withHidden) {
    std::string text;
    for (HelpText const &row : HelpTexts) {
        if (withHidden || !isHidden(row.key)) text += row.help;
    }
    return linesIn(text);
}

Lines extendedHelp(bool withHidden) {
    std::string text;
    for (HelpText const &row : HelpTexts) {
        if (!*row.help || (!withHidden && isHidden(row.key))) continue;
        text += std::string("\n") + row.help;
        if (isHidden(row.key)) text += "This is hidden key used by developers only\n";
        text += descriptionOf(row);
    }
    return linesIn(text);
}

} // namespace

TEST_F(Golden, SmallRun) {
    const Lines expected = {
        "",
        "KEL Core library functions have been integrated into RK",
        "Command line options: ",
        "-B: batch mode",
        "-LERR: write errors to console",
        "-f=keliSAD4x4_8u32s: test function equal to 'keliSAD4x4_8u32s'",
        "",
        "KEL Core library functions have been integrated into RK",
        "KEL libraries information has been set into RK",
        "Sorting functions...",
        bar,
        "| CPU      : <of the machine>|",
        "| OS       : <of the machine>|",
        "| Computer : <of the machine>|",
        "| Library  : <of the machine>|",
        framed("Test     : Timing"),
        dated(""),
        bar,
        " Method = Auto",
        " Accuracy = 5",
        " AlignVectorsBy = element",
        " VectorAlign = 0",
        dated("Function  : keliSAD4x4_8u32s"),
        dated("-OK         keliSAD4x4_8u32s"),
        bar,
        framed("RK Summary"),
        framed(".Number of tests : 1"),
        framed(".Successes       : 1"),
        framed(".Failures        : 0"),
        framed("...Fails         : 0"),
        framed(".....-FAIL       : 0"),
        framed(".....-EXCPTFAIL  : 0"),
        framed("...Warnings      : 0"),
        framed(".....-WARNING    : 0"),
        framed(".....-BADSTSWRN  : 0"),
        framed("...Undefined     : 0"),
        "| .Total time      : <h:m:s>" + std::string(49, ' ') + "|",
        bar,
    };
    EXPECT_EQ(textOf(outputOf("-B -L ERR -f=keliSAD4x4_8u32s")), textOf(expected));
}

TEST_F(Golden, TestWithDetailsAndPerformance) {
    Lines lines = outputOf(
        "-B -L PERF -d Method=Manual -d NumLoops=2 -dSrcPitch=S -dPredPitch=P "
        "-f=keliSumsDiff8x8Blocks4x4_8u16s_C1");
    auto title =
        std::find(lines.begin(), lines.end(), dated("Function  : keliSumsDiff8x8Blocks4x4_8u16s_C1"));
    auto summary = std::find(title, lines.end(), framed("RK Summary"));
    ASSERT_NE(summary, lines.end());
    Lines test(title - 1, summary - 1);
    const std::regex clocks("perf= *[0-9.e+]+/ *64= *[0-9.]+ clocks");
    for (std::string &line : test) line = std::regex_replace(line, clocks, "perf=<clocks>");
    const Lines expected = {
        bar,
        dated("Function  : keliSumsDiff8x8Blocks4x4_8u16s_C1"),
        framed("Test      : CSUMD_H264"),
        framed("Source    : sumsdiff.cpp"),
        framed("Description :"),
        bar,
        " SrcPitch = SrcPitch=16",
        " PredPitch = PredPitch=16",
        " save_diff = save_diff=0; save_diff=1",
        "   Test has been registered by KM_REG macro with loopMethod, statMethod, funcCall.",
        "   loopMethod is called for measuring.",
        "SrcPitch=SrcPitch=16 PredPitch=PredPitch=16 save_diff=save_diff=0 ",
        "  nLps=2      perf=<clocks>",
        "SrcPitch=SrcPitch=16 PredPitch=PredPitch=16 save_diff=save_diff=1 ",
        "  nLps=2      perf=<clocks>",
        bar,
        dated("-OK         keliSumsDiff8x8Blocks4x4_8u16s_C1"),
        bar,
    };
    EXPECT_EQ(textOf(test), textOf(expected));
}

TEST_F(Golden, ShortHelp) {
    EXPECT_EQ(outputOf("-h"),
              (head("-h: type short help and exit") + banner + Lines{"QUICK HELP"} + shortHelp(false)));
}

TEST_F(Golden, ShortHelpWithHiddenKeys) {
    EXPECT_EQ(outputOf("'-?'"), (head("-?: type short help with hidden key sand exit") + banner +
                                 Lines{"QUICK HELP with hidden keys"} + shortHelp(true)));
}

TEST_F(Golden, ExtendedHelp) {
    EXPECT_EQ(outputOf("-hh"), (head("-hh: type extended help and exit") + banner + Lines{"EXTENDED HELP"} +
                                extendedHelp(false)));
}

TEST_F(Golden, ExtendedHelpWithHiddenKeys) {
    EXPECT_EQ(outputOf("'-?"
                       "?'"),
              (head("-?"
                    "?: type extended help with hidden keys and exit") +
               banner + Lines{"EXTENDED HELP with hidden keys"} + extendedHelp(true)));
}

TEST_F(Golden, HelpOfEveryKey) {
    for (HelpText const &row : HelpTexts) {
        if (row.key == 'h') continue; // asks for the whole
        const std::string key(1, row.key);
        std::string text = "EXTENDED KEY HELP\n";
        text += *row.help ? std::string(row.help) : "Key -" + key + " is deprecated\n";
        text += *row.descr ? descriptionOf(row) : "No detailed description for this key\n";
        EXPECT_EQ(outputOf("'-h" + key + "'"),
                  (head("-h" + key + ": type extended help for -" + key + " key and exit") + banner +
                   linesIn(text)));
    }
}

TEST_F(Golden, HelpOfAKeyThatIsNone) {
    EXPECT_EQ(outputOf("-hz"), (head("-hz: type extended help for -z key and exit") + banner +
                                Lines{"EXTENDED KEY HELP", "Key -z is not valid"}));
}

TEST_F(Golden, HelpOfTheHelpByTheOtherKey) {
    Lines lines = outputOf("'-?h'");
    ASSERT_GE(lines.size(), 7u);
    EXPECT_EQ(lines[6], "EXTENDED KEY HELP");
    EXPECT_EQ(lines[7], "-h               = type short help and exit");
}

TEST_F(Golden, Version) {
    EXPECT_EQ(outputOf("-v"), (head("-v: type the version number of the Rakova and exit") + banner));
}

TEST_F(Golden, ListOfTests) {
    EXPECT_EQ(outputOf("-e -t=CSAD_H264"),
              (head("-e: enumerate tested functions and exit") +
               Lines{"-t=CSAD_H264: run test equal to CSAD_H264", "   #\tFunction\tTest\tSource\t",
                     "   1\tkeliSAD16x16Blocks4x4_8u16u\tCSAD_H264\tsadh264.cpp\t",
                     "   2\tkeliSAD16x16Blocks8x8_8u16u\tCSAD_H264\tsadh264.cpp\t",
                     "   3\tkeliSAD4x4_8u32s\tCSAD_H264\tsadh264.cpp\t"}));
}

TEST_F(Golden, VersionAndListGoTogether) {
    EXPECT_EQ(outputOf("-e -v -f=keliSAD4x4_8u32s"),
              (head("-e: enumerate tested functions and exit") +
               Lines{"-v: type the version number of the Rakova and exit",
                     "-f=keliSAD4x4_8u32s: test function equal to 'keliSAD4x4_8u32s'"} +
               banner +
               Lines{"   #\tFunction\tTest\tSource\t", "   1\tkeliSAD4x4_8u32s\tCSAD_H264\tsadh264.cpp\t"}));
}

TEST_F(Golden, HelpGoesBeforeTheList) {
    Lines lines = outputOf("-h -e");
    EXPECT_TRUE(linesWith(lines, "Function\tTest").empty());
    EXPECT_EQ(linesWith(lines, "-e: ").front(), "-e: ignored because of -h option");
}

// badkeys_test.cpp - keys with arguments that nobody means: each is reported, none stops the run.

#include "badinput.h"

namespace {

const std::string keys = "BAdiIPoOLrRuUgnplftFYHTNSCsevh?qQmx0";
const std::string tenThousand(10000, 'a');

// A table that cannot be opened ends a run right behind the report of its keys.
const std::string stop = "-r/nonexistent/x";
const std::string stopped = "FATAL ERROR: can't open output file for writing\n";

class BadKeys : public BadInput {
protected:
    // Every key with the same text behind it. The report comes in any case.
    void expectAllReported(std::string const &program, std::string const &arg) const {
        Lines args;
        for (char key : keys) args.push_back(std::string("-") + key + arg);
        args.push_back(stop);
        Ended ended = runToEnd(starting(program, args));
        expectOrderlyEnd(ended);
        for (char key : keys) {
            EXPECT_TRUE(holds(ended.text, std::string("\n-") + key + arg + ": ")) << key;
        }
        EXPECT_TRUE(holds(ended.text, stopped));
        EXPECT_FALSE(holds(ended.text, "| CPU"));
    }
    std::string reportOf(std::string const &program, std::string const &word) const {
        Ended ended = runToEnd(starting(program, {word, stop}));
        expectOrderlyEnd(ended);
        std::string front = "\n" + word + ": ";
        size_t at = ended.text.find(front);
        if (at == std::string::npos) return "(none)";
        at += front.size();
        return ended.text.substr(at, ended.text.find('\n', at) - at);
    }
};

} // namespace

TEST_F(BadKeys, WithoutAnArgument) {
    expectAllReported("rakova", "");
    expectAllReported("bare", "");
}

TEST_F(BadKeys, WithAPrefixAlone) {
    for (char const *prefix : {"-", "+", "="}) {
        expectAllReported("rakova", prefix);
        expectAllReported("bare", prefix);
    }
}

TEST_F(BadKeys, WithAbsurdArguments) {
    for (char const *arg : {"~", "%s%n%n%s%d", "====", "\"\"\"", "-------", ",,,,;;;;", "\t \t", "*?[]{}",
                            "99999999999999999999"}) {
        expectAllReported("rakova", arg);
        expectAllReported("bare", arg);
    }
}

TEST_F(BadKeys, WithTenThousandCharacters) {
    expectAllReported("rakova", tenThousand);
    expectAllReported("bare", tenThousand);
}

TEST_F(BadKeys, WithBytesOutsideOfAscii) {
    for (char const *arg : {"\xff\xfe\x80", "\xc3\xa9\xe2\x82\xac", "\x01\x02\x1b[2J\x7f"}) {
        expectAllReported("rakova", arg);
        expectAllReported("bare", arg);
    }
}

TEST_F(BadKeys, WhatCannotBeHonouredIsIgnored) {
    std::string const values[][2] = {{"-L~", "ignored: incorrect level of console output"},
                                     {"-L" + tenThousand, "ignored: incorrect level of console output"},
                                     {"-Y\xff", "ignored: incorrect process priority value"},
                                     {"-T" + tenThousand, "ignored: incorrect CPU type"},
                                     {"-N-1", "ignored: incorrect number of threads"},
                                     {"-N~", "ignored: incorrect number of threads"},
                                     {"-d" + tenThousand, "ignored: incorrect data format"},
                                     {"-d====", "ignored: incorrect data format"},
                                     {"-f-", "ignored: empty function pattern"},
                                     {"-t=", "ignored: empty test pattern"},
                                     {"-\xc3\xa9", "ignored: incorrect option key"},
                                     {"-1", "ignored: incorrect option key"}};
    for (auto const &[word, text] : values) EXPECT_EQ(reportOf("rakova", word), text) << word.substr(0, 20);
}

TEST_F(BadKeys, WhatIsTakenAsItStands) {
    std::string const values[][2] = {
        {"-f" + tenThousand, "test functions containing '" + tenThousand + "'"},
        {"-t=\xff", "run test equal to \xff"},
        {"-F\xc3\xa9", "start testing from \xc3\xa9 function"},
        {"-n" + tenThousand, "name ini-file and output files as " + tenThousand + ".<proper-ext>"},
        {"-H~", "add 'Interest' column to table file"},
        {"-s~", "sort functions"},
        {"-d\xff=" + tenThousand, "set RK parameter \xff=" + tenThousand}};
    for (auto const &[word, text] : values) EXPECT_EQ(reportOf("rakova", word), text) << word.substr(0, 20);
}

TEST_F(BadKeys, LoneDashesAreNoKeysAndSignsAreUnknownOnes) {
    Ended ended = runBare({"", "-", "/", "", "--", "-=", "//", "/-", "-v"});
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text,
                      "Command line options: \n"
                      "--: ignored: incorrect option key\n"
                      "-=: ignored: incorrect option key\n"
                      "-/: ignored: incorrect option key\n"
                      "--: ignored: incorrect option key\n"
                      "-v: type the version number of the Rakova and exit\n"))
        << ended.text;
}

TEST_F(BadKeys, ThousandsOfKeysAreAllReported) {
    Lines args;
    for (int i = 0; i < 3000; ++i) {
        std::string number = std::to_string(i);
        for (std::string key : {"-B", "-dn", "-fx", "-t-", "-x"}) args.push_back(key + number + "=1");
    }
    args.push_back("-v");
    Ended ended = runBare(args);
    expectOrderlyEnd(ended);
    Lines lines = linesIn(ended.text);
    EXPECT_EQ(linesWith(lines, "ignored because of -v option").size(), 4 * 3000u);
    EXPECT_EQ(linesWith(lines, "ignored: incorrect option key").size(), 3000u);
    EXPECT_TRUE(holds(ended.text, "Rakova 2.0"));
}

TEST_F(BadKeys, NoiseIsReportedOrDropped) {
    std::string bytes = noise(100000, std::string("/\0", 2));
    Lines args;
    for (size_t at = 0; at < bytes.size(); at += 100) args.push_back(bytes.substr(at, 100));
    for (size_t i = 0; i < args.size(); i += 2) args[i][0] = '-';
    args.push_back(stop);
    Ended ended = runToEnd(starting("rakova", args));
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, stopped));
}

// badfiles_test.cpp - files that are none, that may not be opened, or that hold anything.

#include "badinput.h"

#include <grp.h>

namespace {

const std::string title = "| CPU      : ";
const std::string summary = "| RK Summary";

class BadFiles : public BadInput {
protected:
    std::string noFile(std::string const &name, char const *use) const {
        return "-- Can't open file " + path(name) + " to " + use + ": \n";
    }
    // The name of the run's ini file is x.ini; returns the console of the run.
    std::string runWithIni(std::string const &bytes) const {
        write("x.ini", bytes);
        Ended ended = runBare({"-B", "-i" + path("x.ini")});
        expectOrderlyEnd(ended);
        EXPECT_TRUE(holds(ended.text, summary)) << ended.text.substr(0, 4000);
        return ended.text;
    }
};

const Lines noPlaces = {"dir", "plain/below", "none/x", std::string(300, 'n'), std::string(5000, 'p')};

// An ordinary user, who may read but not write here.
void becomeNobody() {
    if (geteuid() != 0) return;
    if (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0) _exit(125);
}

} // namespace

// ---- places ------------------------------------------------------------------------------------

TEST_F(BadFiles, OutputIntoNoPlaceEndsTheRun) {
    for (char key : std::string("oOrRuU")) {
        for (std::string const &place : noPlaces) {
            Ended ended = runBare({"-B", std::string("-") + key + path(place)});
            expectOrderlyEnd(ended);
            EXPECT_TRUE(holds(ended.text, noFile(place, "write"))) << key << " " << ended.text;
            EXPECT_TRUE(holds(ended.text, "FATAL ERROR: can't open output file for writing\n")) << key;
            EXPECT_FALSE(holds(ended.text, title));
        }
    }
    EXPECT_EQ(content("plain"), "a file\n");
}

TEST_F(BadFiles, IniFileWrittenIntoNoPlaceEndsTheRun) {
    for (std::string const &place : noPlaces) {
        if (place == "dir") continue; // can be opened to read
        Ended ended = runBare({"-B", "-I" + path(place)});
        expectOrderlyEnd(ended);
        EXPECT_TRUE(holds(ended.text, noFile(place, "write"))) << ended.text;
        EXPECT_TRUE(holds(ended.text, "FATAL ERROR: can't open ini-file for writing\n"));
        EXPECT_FALSE(holds(ended.text, title));
    }
}

TEST_F(BadFiles, IniFileReadFromNoPlaceIsToldAndTheRunGoesOn) {
    for (std::string const &place : noPlaces) {
        if (place == "dir") continue;
        Ended ended = runBare({"-v", "-i" + path(place)});
        expectOrderlyEnd(ended);
        EXPECT_TRUE(holds(ended.text, noFile(place, "read"))) << ended.text;
        EXPECT_TRUE(holds(ended.text, "Rakova 2.0"));
    }
}

TEST_F(BadFiles, DirectoryAsIniFileIsAnEmptyOne) {
    Ended ended = runBare({"-B", "-i" + path("dir")});
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, " Method = Auto\n"));
    EXPECT_TRUE(holds(ended.text, summary));
}

TEST_F(BadFiles, DirectoryAsIniFileToWriteStaysADirectory) {
    Ended ended = runBare({"-B", "-I" + path("dir")});
    expectOrderlyEnd(ended);
    EXPECT_TRUE(std::filesystem::is_directory(path("dir")));
}

TEST_F(BadFiles, SignalFileIntoNoPlaceIsTold) {
    for (std::string const &place : noPlaces) {
        Ended ended = runBare({"-v", "-g" + path(place)});
        expectOrderlyEnd(ended);
        EXPECT_TRUE(holds(ended.text, noFile(place, "write"))) << ended.text;
    }
}

TEST_F(BadFiles, WhatAUserMayNotOpenStaysAsItIs) {
    for (char const *name : {"locked.csv", "locked.ini"}) {
        write(name, "[old]\n");
        std::filesystem::permissions(path(name), std::filesystem::perms::none);
    }
    std::filesystem::permissions(m_dir, std::filesystem::perms(0555));
    for (char const *key : {"-R", "-r", "-O", "-U"}) {
        Start start = starting("bare", {"-B", key + path("locked.csv"), "-i" + path("locked.ini")});
        start.prepare = becomeNobody;
        Ended ended = runToEnd(start);
        if (ended.status == 125 || ended.status == 127) GTEST_SKIP() << "no other user can be taken here";
        expectOrderlyEnd(ended);
        EXPECT_TRUE(holds(ended.text, noFile("locked.csv", "write"))) << ended.text;
    }
    Start start = starting("bare", {"-v", "-r" + path("new.csv"), "-i" + path("locked.ini")});
    start.prepare = becomeNobody;
    EXPECT_TRUE(holds(runToEnd(start).text, noFile("new.csv", "write")));
    start.words = {path("bare"), "-v", "-i" + path("locked.ini")};
    EXPECT_TRUE(holds(runToEnd(start).text, noFile("locked.ini", "read")));

    std::filesystem::permissions(m_dir, std::filesystem::perms(0700));
    for (char const *name : {"locked.csv", "locked.ini"}) {
        std::filesystem::permissions(path(name), std::filesystem::perms(0600));
        EXPECT_EQ(content(name), "[old]\n");
    }
    EXPECT_FALSE(std::filesystem::exists(path("new.csv")));
}

// ---- ini files --------------------------------------------------------------------------------

TEST_F(BadFiles, IniFileOfTenMegabytesIsRead) {
    std::string bytes = "[Rakova]\n";
    for (int i = 0; bytes.size() < 10000000; ++i)
        bytes += "key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    std::string console = runWithIni(bytes + "Method=Manual\nNumLoops=7\n");
    EXPECT_TRUE(holds(console, "\n Method = Manual\n NumLoops = 7\n"));
}

TEST_F(BadFiles, IniLineOfTenMegabytesHidesNothingBehindIt) {
    std::string console =
        runWithIni("[Rakova]\nx=" + std::string(10000000, 'x') + "\nMethod=Manual\nNumLoops=7");
    EXPECT_TRUE(holds(console, "\n Method = Manual\n NumLoops = 7\n")) << "also without a line end";
}

TEST_F(BadFiles, IniValueOfTenMegabytesIsRefused) {
    std::string console = runWithIni("[Rakova]\nMethod=" + std::string(10000000, 'x') + "\n");
    EXPECT_TRUE(holds(console, "\n-Invalid value of Method = xxx"));
    EXPECT_TRUE(holds(console, "\n Method = Auto\n"));
    EXPECT_LT(console.size(), 10000u) << "a message is short";
}

TEST_F(BadFiles, IniLineEndsAtANul) {
    static char const bytes[] = "[Rakova]\0]]\n\0\0\n\0Method=Auto\nMethod=Manual\0x\nNumLoops=7\0";
    std::string console = runWithIni(std::string(bytes, sizeof bytes));
    EXPECT_TRUE(holds(console, "\n Method = Manual\n NumLoops = 7\n")) << console;
}

TEST_F(BadFiles, IniValueKeepsTheReturnOfItsLine) {
    std::string console = runWithIni("[Rakova]\r\nMethod=Manual\r\nAccuracy=9\r\n");
    EXPECT_TRUE(holds(console, "\n-Invalid value of Method = Manual\r\n Method = Auto\n Accuracy = 9\n"))
        << console;
}

TEST_F(BadFiles, IniNoiseIsPassedOver) {
    std::string console = runWithIni(noise(1000000) + "\n[Rakova]\nMethod=Manual\nNumLoops=7\n");
    EXPECT_TRUE(holds(console, "\n Method = Manual\n NumLoops = 7\n"));
}

// ---- file of keys -------------------------------------------------------------------------------

TEST_F(BadFiles, NoiseInTheFileOfKeysIsReportedOrDropped) {
    write("bare.cfg", noise(900, std::string("\n\0-/", 4)) + " -v\n" + noise(100000));
    Ended ended = runBare({});
    expectOrderlyEnd(ended);
    EXPECT_TRUE(holds(ended.text, "Command line options: read from bare.cfg file\n-v: type the version"));
    EXPECT_TRUE(holds(ended.text, "Rakova 2.0"));
}

TEST_F(BadFiles, DirectoryAsFileOfKeysIsNone) {
    std::filesystem::create_directory(path("bare.cfg"));
    Ended ended = runBare({});
    expectOrderlyEnd(ended);
    EXPECT_FALSE(holds(ended.text, "Command line options"));
    EXPECT_TRUE(holds(ended.text, summary));
}

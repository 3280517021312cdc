// libraries_test.cpp - one program with other builds of the library, found by LD_LIBRARY_PATH.

#include "program.h"

namespace {

// Functions of the result lines of tests that went well, in their order.
Lines functionsThatRan(Outcome const &outcome) {
    Lines functions;
    for (std::string const &line : linesWith(outcome.lines, "| -OK ")) {
        std::istringstream words(line);
        std::string bar, result, function;
        words >> bar >> result >> function;
        functions.push_back(function);
    }
    return functions;
}

std::string onlyLineWith(Outcome const &outcome, std::string const &text) {
    Lines found = linesWith(outcome.lines, text);
    EXPECT_EQ(found.size(), 1u) << text << " in\n" << outcome.text();
    return found.empty() ? "" : found[0];
}

} // namespace

TEST_F(Program, AnotherBuildOfTheLibraryShowsInTheTitle) {
    Outcome one = run(quick + "-fkeliSAD4x4_8u32s"), other = run(quick + "-fkeliSAD4x4_8u32s", LIBRARIES_V2);
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(other.status, 0);
    std::string title = onlyLineWith(one, "| Library  : "), otherTitle = onlyLineWith(other, "| Library  : ");
    EXPECT_NE(title, otherTitle);
    EXPECT_NE(title.find("libkelvc.so, 2.0 " KELVARA_ARCH ", "), std::string::npos) << title;
    EXPECT_NE(otherTitle.find("libkelvc.so, 2.0 v2, "), std::string::npos) << otherTitle;
}

TEST_F(Program, AnotherBuildOfTheLibraryRunsTheSameTests) {
    const std::string many = quick + "-fSAD -fQuant -fTransform";
    Outcome one = run(many), other = run(many, LIBRARIES_V2);
    EXPECT_EQ(other.status, 0);
    EXPECT_GE(functionsThatRan(one).size(), 100u);
    EXPECT_EQ(functionsThatRan(one), functionsThatRan(other));
}

TEST_F(Program, FunctionsThatTheLibraryLacksAreNamedInOneLineAndLeftOut) {
    const std::string many = quick + "-fSAD -fTransform";
    Outcome all = run(many), without = run(many, LIBRARIES_WITHOUT_SADN);
    EXPECT_EQ(without.status, 0) << without.text();
    EXPECT_EQ(
        onlyLineWith(without, "-- Left out"),
        "-- Left out, this build of the library has no keliSAD4x4xNI_8u16u_C1R, keliSAD8x8xNI_8u16u_C1R, "
        "keliSAD16x16xNI_8u16u_C1R, keliSAD2x2xN_8u16u_C1R, keliSAD4x4xN_8u16u_C1R, "
        "keliSAD8x8xN_8u16u_C1R, keliSAD16x16xN_8u16u_C1R");
    Lines expected;
    for (std::string const &function : functionsThatRan(all)) {
        if (function.find("xN") == std::string::npos) expected.push_back(function);
    }
    EXPECT_EQ(functionsThatRan(without), expected) << "all others";
    EXPECT_EQ(functionsThatRan(all).size(), expected.size() + 7);
}

TEST_F(Program, ALibraryWithoutAVersionHasNoLineInTheTitle) {
    Outcome outcome = run(quick + "-fkeliSAD4x4_8u32s", LIBRARIES_WITHOUT_VERSION);
    EXPECT_EQ(outcome.status, 0) << outcome.text();
    EXPECT_TRUE(linesWith(outcome.lines, "| Library ").empty());
    EXPECT_EQ(linesWith(outcome.lines, "| CPU ").size(), 1u);
    EXPECT_EQ(functionsThatRan(outcome), Lines{"keliSAD4x4_8u32s"});
}

TEST_F(Program, ACoreWithoutItsFunctionsGivesWayToOurOwn) {
    Outcome outcome = run(quick + "-T70 -N2 -fkeliSAD4x4_8u32s", LIBRARIES_WITHOUT_CORE);
    EXPECT_EQ(outcome.status, 0) << outcome.text();
    EXPECT_EQ(linesWith(outcome.lines, "-T70: ignored: incorrect option key").size(), 1u) << outcome.text();
    EXPECT_EQ(linesWith(outcome.lines, "-N2: ignored: incorrect option key").size(), 1u) << outcome.text();
    EXPECT_EQ(functionsThatRan(outcome), Lines{"keliSAD4x4_8u32s"});
    EXPECT_TRUE(linesWith(outcome.lines, "-- Left out").empty()) << "no test is of the core";
}

TEST_F(Program, ACoreWithoutThreadsStartsAndSaysThatItCannotSetThem) {
    Outcome outcome = run(quick + "-N2 -fkeliSAD4x4_8u32s", LIBRARIES_WITHOUT_THREADS);
    EXPECT_EQ(outcome.status, 0) << outcome.text();
    EXPECT_EQ(linesWith(outcome.lines, "--calling kelSetNumThreads( 2 )").size(), 1u) << outcome.text();
    EXPECT_EQ(linesWith(outcome.lines, "--KEL ERROR. status = -2: ").size(), 1u) << outcome.text();
    EXPECT_EQ(functionsThatRan(outcome), Lines{"keliSAD4x4_8u32s"});
}

TEST_F(Program, WithoutTheOtherBuildTheKeysOfTheCoreWork) {
    Outcome outcome = run(quick + "-N2 -fkeliSAD4x4_8u32s");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(linesWith(outcome.lines, "--calling kelSetNumThreads( 2 )").size(), 1u) << outcome.text();
    EXPECT_EQ(linesWith(outcome.lines, "--status = kelStsNoErr").size(), 1u) << outcome.text();
}

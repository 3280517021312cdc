// swap_test.cpp - one program started with other builds of the library.

#include "command.h"

#include <algorithm>

namespace {

using Lines = std::vector<std::string>;

Lines probe(const std::string &libraryPath) {
    return linesOf(libraryPath.empty() ? KELVARA_PROBE
                                       : "LD_LIBRARY_PATH='" + libraryPath + "' " + KELVARA_PROBE);
}

bool holds(const Lines &lines, const std::string &line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

bool holdsVersion(const Lines &lines, const std::string &start) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string &line) { return line.compare(0, start.size(), start) == 0; });
}

} // namespace

TEST(KelvaraSwap, TheProgramFindsTheBuildItWasLinkedWith) {
    const Lines lines = probe("");
    EXPECT_TRUE(holds(lines, "kelInit present"));
    EXPECT_TRUE(holds(lines, "kelsFree present"));
    EXPECT_TRUE(holds(lines, "keliSAD16x16_8u32s present"));
    EXPECT_TRUE(holds(lines, "keliSAD4x4_8u32s present"));
    EXPECT_TRUE(holdsVersion(lines, "libkelvc.so, 2.0 " KELVARA_ARCH ", "));
    EXPECT_TRUE(holdsVersion(lines, "libkeli.so, 2.0 " KELVARA_ARCH ", "));
}

TEST(KelvaraSwap, AnotherBuildComesInByTheLibraryPath) {
    const Lines lines = probe(KELVARA_OTHER_DIR);
    EXPECT_TRUE(holds(lines, "keliSAD4x4_8u32s present"));
    EXPECT_TRUE(holdsVersion(lines, "libkelvc.so, 2.0 v2, "));
    EXPECT_TRUE(holdsVersion(lines, "libkeli.so, 2.0 v2, "));
    EXPECT_FALSE(holdsVersion(lines, "libkelvc.so, 2.0 baseline, "));
}

TEST(KelvaraSwap, AFunctionThatTheLibraryLacksIsNullAndTheProgramStarts) {
    const Lines lines = probe(KELVARA_PARTIAL_DIR);
    EXPECT_TRUE(holdsVersion(lines, "libkelvc.so, 1.0 partial, "));
    EXPECT_TRUE(holds(lines, "kelvcGetLibVersion present"));
    EXPECT_TRUE(holds(lines, "keliSAD16x16_8u32s present"));
    EXPECT_TRUE(holds(lines, "keliSAD4x4_8u32s missing"));
}

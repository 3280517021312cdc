// rkhost_test.cpp - tests of the names of the computer.

#include <gtest/gtest.h>

#include <sys/sysinfo.h>
#include <sys/utsname.h>

#include <string>

#include "rkhost.h"

TEST(RkHost, IsTheNameOfTheNode) {
    utsname names;
    ASSERT_EQ(uname(&names), 0);
    EXPECT_STREQ(rkHost().text(), names.nodename);
}

TEST(RkHost, HasRoomForAThousandCharacters) {
    EXPECT_EQ(sizeof rkHost().m_text, 1024u);
}

TEST(RkOS, IsSystemReleaseAndMachine) {
    utsname names;
    ASSERT_EQ(uname(&names), 0);
    std::string expected = std::string(names.sysname) + " (" + names.release + ", " + names.machine + ")";
    EXPECT_EQ(rkOS().text(), expected);
}

TEST(RkGetNumOfProcessors, IsAtLeastOne) {
    EXPECT_GE(rkGetNumOfProcessors(), 1);
}

TEST(RkGetNumOfProcessors, CountsThoseThatAreOnline) {
    EXPECT_EQ(rkGetNumOfProcessors(), get_nprocs());
}

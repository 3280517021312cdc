// rknames_test.cpp - names of flags and enumerations.

#include <gtest/gtest.h>

#include "rkstring.h"

namespace {

int const g_values[] = {1, 2, 4, 6};
rkString const g_names[] = {"rkAlpha", "rkBeta", "rkBetter", "rkGamma"};
int const g_count = 4;
int const g_skip = 2;

struct Read {
    int value;
    bool failed;
};

bool operator==(Read a, Read b) {
    return a.value == b.value && a.failed == b.failed;
}

std::ostream &operator<<(std::ostream &out, Read r) {
    return out << r.value << (r.failed ? " failed" : " read");
}

Read flags(char const *s) {
    rkString text = s;
    text.m_failed = true; // what stood there before does not count
    int value = rkString::flagValue(text, g_values, g_names, g_count, g_skip);
    return {value, text.failed()};
}

Read enumeration(char const *s) {
    rkString text = s;
    text.m_failed = true;
    int value = rkString::enumValue(text, g_values, g_names, g_count, g_skip);
    return {value, text.failed()};
}

} // namespace

TEST(RkNames, AnyLeadingPartFitsWithAndWithoutThePrefix) {
    EXPECT_TRUE(fitString("al", "rkAlpha", 2));
    EXPECT_TRUE(fitString("RKAL", "rkAlpha", 2));
    EXPECT_TRUE(fitString("rkalpha", "rkAlpha", 2));
    EXPECT_TRUE(fitString("r", "rkAlpha", 2));
}

TEST(RkNames, OnlyAStartFits) {
    EXPECT_FALSE(fitString("lpha", "rkAlpha", 2));
    EXPECT_FALSE(fitString("kalpha", "rkAlpha", 2));
    EXPECT_FALSE(fitString("alphas", "rkAlpha", 2));
}

TEST(RkNames, EmptyValueFitsEverything) {
    EXPECT_TRUE(fitString("", "rkAlpha", 2));
    EXPECT_TRUE(fitString("", "", 0));
    EXPECT_TRUE(fitString("", "a", 100));
}

TEST(RkNames, SkipBeyondTheNameFitsItsStartAlone) {
    EXPECT_TRUE(fitString("ab", "abc", 100));
    EXPECT_FALSE(fitString("c", "abc", 100));
    EXPECT_TRUE(fitString("ab", "abc", -1));
}

TEST(RkNames, FlagNamesAreJoinedInTableOrder) {
    EXPECT_STREQ(rkString::flagString(1, g_values, g_names, g_count).c_str(), "rkAlpha");
    EXPECT_STREQ(rkString::flagString(5, g_values, g_names, g_count).c_str(), "rkAlpha|rkBetter|rkGamma");
}

TEST(RkNames, FlagsWithoutANameAreDecimal) {
    EXPECT_STREQ(rkString::flagString(8, g_values, g_names, g_count).c_str(), "8");
    EXPECT_STREQ(rkString::flagString(0, g_values, g_names, g_count).c_str(), "0");
    EXPECT_STREQ(rkString::flagString(-16, g_values, g_names, g_count).c_str(), "-16");
}

TEST(RkNames, FlagsAreReadAtAllSeparators) {
    EXPECT_EQ(flags("alpha|beta"), (Read{3, false}));
    EXPECT_EQ(flags("alpha,rkBeta;better rkG"), (Read{7, false}));
}

TEST(RkNames, EmptyFlagTextIsZeroWithoutFailure) {
    EXPECT_EQ(flags(""), (Read{0, false}));
    EXPECT_EQ(flags(" | "), (Read{0, false}));
}

TEST(RkNames, UnknownFlagFailsAndTheOthersCount) {
    EXPECT_EQ(flags("a|zz"), (Read{1, true}));
    EXPECT_EQ(flags("zz|beta"), (Read{2, true}));
}

TEST(RkNames, FirstFlagOfTheTableWins) {
    EXPECT_EQ(flags("bet"), (Read{2, false}));
    EXPECT_EQ(flags("bett"), (Read{4, false}));
}

TEST(RkNames, EnumNameIsTheFirstEqualEntry) {
    int const values[] = {3, 3};
    rkString const names[] = {"first", "second"};
    EXPECT_STREQ(rkString::enumString(3, values, names, 2).c_str(), "first");
    EXPECT_STREQ(rkString::enumString(-4, values, names, 2).c_str(), "-4");
}

TEST(RkNames, EnumIsReadByTheOrderOfTheTable) {
    EXPECT_EQ(enumeration("bet"), (Read{2, false}));
    EXPECT_EQ(enumeration("rkgamma"), (Read{6, false}));
    EXPECT_EQ(enumeration(""), (Read{1, false}));
}

TEST(RkNames, UnknownEnumFails) {
    EXPECT_EQ(enumeration("zz"), (Read{0, true}));
    EXPECT_EQ(enumeration("2"), (Read{0, true}));
    EXPECT_EQ(enumeration(" beta"), (Read{0, true}));
}

TEST(RkNames, EmptyTablesKnowNothing) {
    rkString text = "a";
    EXPECT_EQ(rkString::enumValue(text, nullptr, nullptr, 0, 0), 0);
    EXPECT_TRUE(text.failed());
    EXPECT_STREQ(rkString::flagString(3, nullptr, nullptr, 0).c_str(), "3");
}

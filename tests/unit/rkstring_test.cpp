// rkstring_test.cpp - the string: its block, searching, cutting, file names.

#include <gtest/gtest.h>

#include <limits.h>

#include <string>
#include <utility>

#include "rkstring.h"
#include "text.h"

static rkString trimmed(rkString s) {
    s.trim();
    return s;
}

// ---- block --------------------------------------------------------------------

TEST(RkString, BlockSizesAreMultiplesOf16) {
    EXPECT_EQ(getBufSize(0), 16);
    EXPECT_EQ(getBufSize(14), 16);
    EXPECT_EQ(getBufSize(15), 16);
    EXPECT_EQ(getBufSize(16), 32);
}

TEST(RkString, DefaultIsAnEmptyTextThatCanBeRead) {
    rkString s;
    EXPECT_EQ(s.length(), 0);
    EXPECT_STREQ(s.c_str(), "");
    EXPECT_EQ(s[0], 0);
    EXPECT_FALSE(s.failed());
    EXPECT_TRUE(s == "");
}

TEST(RkString, AssignedEmptyTextOwnsABlockOf16) {
    rkString s;
    s.assign("");
    ASSERT_NE(s.m_buffer, nullptr);
    EXPECT_EQ(s.m_bufSize, 16);
    EXPECT_EQ(s.m_length, 0);
    EXPECT_EQ(s.m_buffer[0], 0);
}

TEST(RkString, ConstructsFromTextCharacterAndString) {
    EXPECT_EQ(str(rkString("abc")), "abc");
    EXPECT_EQ(str(rkString('x')), "x");
    rkString a = "one";
    rkString b = a;
    a.assign("two");
    EXPECT_EQ(str(b), "one");
}

TEST(RkString, NullPointerCountsAsEmpty) {
    EXPECT_EQ(str(rkString(static_cast<char const *>(nullptr))), "");
}

TEST(RkString, CopyDoesNotTakeTheFailureAlong) {
    rkString s = "x";
    s.m_failed = true;
    rkString copy = s;
    EXPECT_FALSE(copy.failed());
}

TEST(RkString, AllocateGivesZeroedText) {
    rkString s = "0123456789";
    s.allocate(5);
    EXPECT_EQ(str(s), std::string(5, '\0'));
    EXPECT_EQ(s.m_buffer[9], 0);
    s.allocate(40);
    EXPECT_EQ(str(s), std::string(40, '\0'));
    EXPECT_EQ(s.m_bufSize, 48);
}

TEST(RkString, AllocateOfANegativeCountIsEmpty) {
    rkString s = "abc";
    s.allocate(-3);
    EXPECT_EQ(str(s), "");
    EXPECT_EQ(s.m_bufSize, 16);
}

TEST(RkString, ReassignmentOfASimilarLengthKeepsTheBlock) {
    rkString s = "one", other = "fourteen chars";
    char *block = s.m_buffer;
    s = other;
    EXPECT_EQ(s.m_buffer, block);
    EXPECT_EQ(str(s), "fourteen chars");
}

TEST(RkString, FreeReleasesTheBlock) {
    rkString s = "abc";
    s.free();
    EXPECT_EQ(s.m_buffer, nullptr);
    EXPECT_EQ(s.m_bufSize, 0);
    EXPECT_EQ(s.length(), 0);
    s += "x";
    EXPECT_EQ(str(s), "x");
}

TEST(RkString, GrowByKeepsTheText) {
    rkString s = "abc";
    s.growBy(20);
    EXPECT_EQ(str(s), "abc" + std::string(20, '\0'));
    EXPECT_EQ(s.m_bufSize, 32);
}

TEST(RkString, GrowByWithinTheBlockKeepsIt) {
    rkString s = "abc";
    char *block = s.m_buffer;
    s.growBy(12);
    EXPECT_EQ(s.m_buffer, block);
    EXPECT_EQ(s.length(), 15);
    s.growBy(1);
    EXPECT_EQ(s.m_bufSize, 32);
}

TEST(RkString, GrowByANegativeCountCuts) {
    rkString s = "abcdef";
    s.growBy(-4);
    EXPECT_EQ(str(s), "ab");
    EXPECT_STREQ(s.c_str(), "ab");
    s.growBy(-10);
    EXPECT_EQ(str(s), "");
}

TEST(RkString, GrowByShowsNothingOfACutText) {
    rkString s = "abcdef";
    s.growBy(-4);
    s.growBy(3);
    EXPECT_EQ(str(s), std::string("ab\0\0\0", 5));
}

TEST(RkString, ResizePadsAndCuts) {
    rkString s = "ab";
    s.resize(20, '.');
    EXPECT_EQ(str(s), "ab" + std::string(18, '.'));
    s.resize(1, '.');
    EXPECT_EQ(str(s), "a");
    s.resize(1, '.');
    EXPECT_EQ(str(s), "a");
    s.resize(-1, '.');
    EXPECT_EQ(str(s), "");
}

TEST(RkString, SelfAssignmentStaysInItsMemory) {
    rkString s = "0123456789abcdefgh";
    rkString &same = s;
    s = same;
    EXPECT_EQ(str(s), std::string(18, '\0'));
    EXPECT_EQ(s.m_buffer[18], 0);
}

TEST(RkString, AssignmentOfItsOwnTailIsSafe) {
    rkString s = "0123456789abcdefghij";
    s.assign(s.c_str() + 2);
    EXPECT_EQ(str(s), "23456789abcdefghij");
    s.assign(s.c_str() + 14);
    EXPECT_EQ(str(s), "ghij");
}

TEST(RkString, MovedTextKeepsItsBlock) {
    rkString a = "some text";
    char *block = a.m_buffer;
    rkString b = std::move(a);
    EXPECT_EQ(b.m_buffer, block);
    rkString c = "old";
    c = std::move(b);
    EXPECT_EQ(c.m_buffer, block);
    EXPECT_EQ(str(c), "some text");
}

// ---- joining and comparing ------------------------------------------------------

TEST(RkString, AppendsAcrossBlocks) {
    rkString s;
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        s += "abc";
        expected += "abc";
        ASSERT_EQ(str(s), expected);
        ASSERT_EQ(s.m_bufSize, getBufSize(s.length()));
    }
}

TEST(RkString, AppendsToItself) {
    rkString s = "0123456789";
    s += s;
    EXPECT_EQ(str(s), "01234567890123456789");
    rkString empty;
    empty += empty;
    EXPECT_EQ(str(empty), "");
}

TEST(RkString, SumHasTheExactLength) {
    rkString a = "ab", b = "cde";
    rkString sum = a + b;
    EXPECT_EQ(str(sum), "abcde");
    EXPECT_EQ(sum.m_bufSize, 16);
    EXPECT_EQ(str(rkString() + rkString()), "");
    EXPECT_EQ(str(a), "ab");
}

TEST(RkString, EqualityEndsAtANul) {
    rkString a = "ab", b = "ab";
    a.growBy(1);
    a += "x";
    EXPECT_EQ(a.length(), 4);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == "abc");
    EXPECT_TRUE(a != "abc");
}

TEST(RkString, CompareGivesTheFirstDifferenceOrTheLengths) {
    EXPECT_EQ(rkString("abc").compare("abd"), -1);
    EXPECT_EQ(rkString("b").compare("az"), 1);
    EXPECT_EQ(rkString("abcd").compare("ab"), 2);
    EXPECT_EQ(rkString("").compare("ab"), -2);
    EXPECT_EQ(rkString("ab").compare(rkString()), 2);
    EXPECT_EQ(rkString("ab").compare("ab"), 0);
}

TEST(RkString, CompareTakesBytesAsSigned) {
    EXPECT_EQ(rkString("\x80").compare("a"), -1);
}

TEST(RkString, CompareGoesBeyondANul) {
    rkString a = "a", b = "a";
    a.resize(2, '\0');
    b.resize(2, '\0');
    a += "x";
    b += "y";
    EXPECT_EQ(a.compare(b), -1);
}

// ---- searching and cutting --------------------------------------------------------

TEST(RkString, FindCountsFromTheStart) {
    rkString s = "abcabc";
    EXPECT_EQ(s.find("bc", 0), 1);
    EXPECT_EQ(s.find("bc", 2), 4);
    EXPECT_EQ(s.find("bc", 5), rkString::npos);
    EXPECT_EQ(s.find("x", 0), -1);
}

TEST(RkString, FindOfAnEmptyTextIsWhereItStarts) {
    rkString s = "abcdef";
    EXPECT_EQ(s.find("", 3), 3);
    EXPECT_EQ(s.find("", 6), 6);
    EXPECT_EQ(rkString().find("", 0), 0);
}

TEST(RkString, FindFromOutsideOfTheTextFindsNothing) {
    rkString s = "abc";
    EXPECT_EQ(s.find("a", 4), rkString::npos);
    EXPECT_EQ(s.find("", 100), rkString::npos);
    EXPECT_EQ(s.find("a", -1), rkString::npos);
}

TEST(RkString, RfindGivesTheLastPlace) {
    rkString s = "abcabc";
    EXPECT_EQ(s.rfind("bc"), 4);
    EXPECT_EQ(s.rfind("abc"), 3);
    EXPECT_EQ(s.rfind("x"), rkString::npos);
    EXPECT_EQ(s.rfind("abcabca"), rkString::npos);
}

TEST(RkString, RfindOfAnEmptyTextIsTheLength) {
    EXPECT_EQ(rkString("abcd").rfind(""), 4);
    EXPECT_EQ(rkString().rfind(""), 0);
}

TEST(RkString, SubstrOfTheTail) {
    rkString s = "abc";
    EXPECT_EQ(str(s.substr(1)), "bc");
    EXPECT_EQ(str(s.substr(0)), "abc");
    EXPECT_EQ(str(s.substr(3)), "");
    EXPECT_EQ(str(s.substr(4)), "");
    EXPECT_EQ(str(s.substr(INT_MAX)), "");
}

TEST(RkString, SubstrOfACount) {
    rkString s = "abcdef";
    EXPECT_EQ(str(s.substr(2, 3)), "cde");
    EXPECT_EQ(str(s.substr(2, 100)), "cdef");
    EXPECT_EQ(str(s.substr(2, INT_MAX)), "cdef");
    EXPECT_EQ(str(s.substr(2, 0)), "");
    EXPECT_EQ(str(s.substr(2, -1)), "");
    EXPECT_EQ(str(s.substr(6, 1)), "");
}

TEST(RkString, SubstrFromOutsideStaysInItsMemory) {
    rkString s = "abc";
    EXPECT_EQ(str(s.substr(7, 2)), "");
    EXPECT_EQ(str(s.substr(-2, 2)), "ab");
    EXPECT_EQ(str(rkString().substr(0, 1)), "");
}

TEST(RkString, TrailingCarriageReturnSurvivesTrim) {
    EXPECT_EQ(str(trimmed("\r abc \r")), "abc \r");
    EXPECT_EQ(str(trimmed("abc\r")), "abc\r");
    EXPECT_EQ(str(trimmed("abc\r \t")), "abc\r");
}

TEST(RkString, TrimCutsBlanksAndTabsOnBothSides) {
    EXPECT_EQ(str(trimmed(" \t a b\t ")), "a b");
    EXPECT_EQ(str(trimmed("\n a")), "\n a");
    EXPECT_EQ(str(trimmed("a")), "a");
}

TEST(RkString, TrimOfBlanksIsEmpty) {
    EXPECT_EQ(str(trimmed(" \t \r ")), "");
    EXPECT_EQ(str(trimmed("")), "");
    EXPECT_EQ(str(trimmed(rkString())), "");
}

TEST(RkString, ToLowerIsACopy) {
    rkString s = "AbC9_\xC4";
    EXPECT_EQ(str(s.toLower()), "abc9_\xC4");
    EXPECT_EQ(str(s), "AbC9_\xC4");
}

// ---- file names -------------------------------------------------------------------

TEST(RkString, FileNameStandsBehindTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(str(rkString("/a/b.c").getFileName()), "b.c");
    EXPECT_EQ(str(rkString("a\\b/c\\d").getFileName()), "d");
    EXPECT_EQ(str(rkString("a\\b/c").getFileName()), "c");
    EXPECT_EQ(str(rkString("plain").getFileName()), "plain");
    EXPECT_EQ(str(rkString("dir/").getFileName()), "");
}

TEST(RkString, FileDirKeepsItsSeparator) {
    EXPECT_EQ(str(rkString("/a/b.c").getFileDir()), "/a/");
    EXPECT_EQ(str(rkString("a\\b").getFileDir()), "a\\");
    EXPECT_EQ(str(rkString("/b").getFileDir()), "/");
    EXPECT_EQ(str(rkString("plain").getFileDir()), "");
    EXPECT_EQ(str(rkString().getFileDir()), "");
}

TEST(RkString, FileTitleIsCutBeforeTheLastDot) {
    EXPECT_EQ(str(rkString("/a.x/b.c.d").getFileTitle()), "b.c");
    EXPECT_EQ(str(rkString("/a.x/b").getFileTitle()), "b");
    EXPECT_EQ(str(rkString(".rc").getFileTitle()), "");
}

// rkconvert_test.cpp - numbers to text and back.

#include <gtest/gtest.h>

#include <limits.h>

#include <cmath>
#include <string>

#include "rkstring.h"

namespace {

template <class T>
std::string shown(T value) {
    rkString text = ">";
    EXPECT_EQ(&(text << value), &text);
    return text.c_str();
}

// Reads text into a variable that holds start.
template <class T>
T read(char const *text, T start, bool &failed) {
    rkString source = text;
    T value = start;
    EXPECT_EQ(&(value << source), &value);
    failed = source.failed();
    return value;
}

template <class T>
void expectReads(char const *text, T expected) {
    bool failed = true;
    EXPECT_EQ(read<T>(text, 77, failed), expected) << text;
    EXPECT_FALSE(failed) << text;
}

// The variable keeps its value in both cases; only a text that is no number fails.
template <class T>
void expectKeeps(char const *text, bool failure) {
    bool failed = !failure;
    EXPECT_EQ(read<T>(text, 77, failed), T(77)) << text;
    EXPECT_EQ(failed, failure) << text;
}

void expectBool(char const *text, bool expected, bool failure) {
    for (bool start : {false, true}) {
        bool failed = !failure;
        EXPECT_EQ(read(text, start, failed), expected) << text;
        EXPECT_EQ(failed, failure) << text;
    }
}

} // namespace

// ---- to text --------------------------------------------------------------------

TEST(RkConvert, AppendsTexts) {
    EXPECT_EQ(shown("abc"), ">abc");
    EXPECT_EQ(shown('c'), ">c");
    EXPECT_EQ(shown(rkString("s")), ">s");
}

TEST(RkConvert, AppendsTextToItself) {
    rkString text = "0123456789";
    text << text;
    EXPECT_STREQ(text.c_str(), "01234567890123456789");
    text << text.c_str();
    EXPECT_EQ(text.length(), 40);
}

TEST(RkConvert, ChainsFromLeftToRight) {
    rkString text;
    text << "n = " << 5 << ',' << true;
    EXPECT_STREQ(text.c_str(), "n = 5,yes");
}

TEST(RkConvert, PointersAreUpperCaseHexadecimal) {
    EXPECT_EQ(shown(static_cast<void *>(nullptr)), ">NULL");
    EXPECT_EQ(shown(reinterpret_cast<void *>(0xAB12cdefULL)), ">AB12CDEF");
    EXPECT_EQ(shown(reinterpret_cast<void *>(0xFEDCBA9876543210ULL)), ">FEDCBA9876543210");
}

TEST(RkConvert, BooleansAreYesAndNo) {
    EXPECT_EQ(shown(true), ">yes");
    EXPECT_EQ(shown(false), ">no");
}

TEST(RkConvert, IntegersAreDecimal) {
    EXPECT_EQ(shown(0), ">0");
    EXPECT_EQ(shown(INT_MIN), ">-2147483648");
    EXPECT_EQ(shown(INT_MAX), ">2147483647");
    EXPECT_EQ(shown(LLONG_MIN), ">-9223372036854775808");
    EXPECT_EQ(shown(LLONG_MAX), ">9223372036854775807");
}

TEST(RkConvert, FloatingPointHasThreeDigits) {
    EXPECT_EQ(shown(1.23456), ">1.23");
    EXPECT_EQ(shown(1234.0), ">1.23e+03");
    EXPECT_EQ(shown(0.5f), ">0.5");
    EXPECT_EQ(shown(-2.0), ">-2");
    EXPECT_EQ(shown(-1.2345e-300), ">-1.23e-300");
}

TEST(RkConvert, The64BitPrefixIsL) {
    EXPECT_STREQ(rkString::prefixI64().c_str(), "L");
}

// ---- integers from text -----------------------------------------------------------

TEST(RkConvert, EmptyTextKeepsTheIntegerWithoutFailure) {
    expectKeeps<int>("", false);
    expectKeeps<long long>("", false);
    expectKeeps<int>(" \t ", false);
}

TEST(RkConvert, TextThatIsNoNumberFails) {
    expectKeeps<int>("abc", true);
    expectKeeps<long long>("abc", true);
    expectKeeps<int>("-", true);
}

TEST(RkConvert, HexadecimalBehind0x) {
    expectReads<int>("0x10", 16);
    expectReads<int>("0X10", 16);
    expectReads<long long>("0x7FFFFFFFFFFFFFFF", LLONG_MAX);
    expectReads<long long>("0X10", 16);
    expectReads<int>("0xffffffff", -1);
}

TEST(RkConvert, LeadingZeroIsDecimal) {
    expectReads<int>("010", 10);
    expectReads<int>("0", 0);
    expectReads<long long>("010", 10);
    expectReads<int>("09", 9);
}

TEST(RkConvert, HexadecimalNeedsItsPrefixAtTheVeryStart) {
    expectReads<int>(" 0x10", 0);
    expectReads<int>("-0x10", 0);
}

TEST(RkConvert, TrailingJunkIsAccepted) {
    expectReads<int>("12abc", 12);
    expectReads<long long>(" -12 13", -12);
}

TEST(RkConvert, DefaultStringReadsLikeEmptyText) {
    rkString text;
    int n = 5;
    n << text;
    EXPECT_EQ(n, 5);
    EXPECT_FALSE(text.failed());
}

TEST(RkConvert, EachConversionOverwritesTheFailure) {
    rkString text = "x1";
    int n = 0;
    n << text;
    EXPECT_TRUE(text.failed());
    text = "1";
    n << text;
    EXPECT_FALSE(text.failed());
    EXPECT_EQ(n, 1);
}

TEST(RkConvert, NumbersOfAnyLengthAreSafe) {
    rkString text = std::string(5000, '9').c_str();
    long long n = 0;
    n << text;
    EXPECT_FALSE(text.failed());
    double x = 0;
    x << text;
    EXPECT_TRUE(std::isinf(x));
}

// ---- floating point from text -------------------------------------------------------

TEST(RkConvert, FloatingPointFromText) {
    expectReads<double>("1.5e3", 1500.0);
    expectReads<float>(" -0.25x", -0.25f);
    expectReads<double>("7", 7.0);
}

TEST(RkConvert, FloatingPointFailsLikeIntegers) {
    expectKeeps<double>("", false);
    expectKeeps<float>("  ", false);
    expectKeeps<double>("x", true);
    expectKeeps<float>("x", true);
}

// ---- bool from text -----------------------------------------------------------------

TEST(RkConvert, BoolLooksAtTheFirstLetter) {
    expectBool("YES", true, false);
    expectBool("true", true, false);
    expectBool("Tuesday", true, false);
    expectBool(" y", true, false);
    expectBool("No", false, false);
    expectBool("false", false, false);
    expectBool("nine", false, false);
}

TEST(RkConvert, BoolTakesOneAndZeroAlone) {
    expectBool("1", true, false);
    expectBool("0 ", false, false);
    expectBool("11", false, true);
    expectBool("00", false, true);
    expectBool("10", false, true);
}

TEST(RkConvert, BoolFailsOnAnythingElse) {
    expectBool("", false, true);
    expectBool("  ", false, true);
    expectBool("maybe", false, true);
    expectBool("1\r", false, true);
}

TEST(RkConvert, BoolLeavesTheTextAsItIs) {
    rkString text = " Yes ";
    bool b = false;
    b << text;
    EXPECT_STREQ(text.c_str(), " Yes ");
}

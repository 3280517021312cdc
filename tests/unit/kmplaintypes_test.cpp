// kmplaintypes_test.cpp - tests of kmplaintypes: texts of points, rectangles and sizes.

#include "kmplaintypes.h"

#include <string>

#include <gtest/gtest.h>

namespace {

template <class T>
std::string written(T value) {
    rkString text;
    text << value;
    return text.c_str();
}

// The value read over a spoiled one, in front of it "failed " if it was none.
std::string rect(char const *words) {
    rkString text(words);
    KeliRect value = {77, 77, 77, 77};
    value << text;
    return (text.failed() ? "failed " : "") + written(value);
}

std::string point(char const *words) {
    rkString text(words);
    KeliPoint value = {77, 77};
    value << text;
    return (text.failed() ? "failed " : "") + written(value);
}

std::string size(char const *words) {
    rkString text(words);
    KeliSize value = {77, 77};
    value << text;
    return (text.failed() ? "failed " : "") + written(value);
}

} // namespace

TEST(KmPlainTypes, WrittenForms) {
    EXPECT_EQ(written(KeliRect{1, -2, 3, 4}), "(1,-2)3x4");
    EXPECT_EQ(written(KeliPoint{-1, 2}), "(-1,2)");
    EXPECT_EQ(written(KeliSize{16, 8}), "16x8");
}

TEST(KmPlainTypes, FormsAppend) {
    rkString text("at ");
    text << KeliPoint{1, 2} << KeliRect{3, 4, 5, 6};
    EXPECT_STREQ(text.c_str(), "at (1,2)(3,4)5x6");
}

TEST(KmPlainTypes, WrittenRectReadsBack) {
    EXPECT_EQ(rect(written(KeliRect{1, 2, 3, 4}).c_str()), "(1,2)3x4");
    EXPECT_EQ(rect("(-1,-2)3x4"), "(-1,-2)3x4");
}

TEST(KmPlainTypes, RectTakesFourNumbersBetweenAnySeparators) {
    EXPECT_EQ(rect("{1 2 3 4}"), "(1,2)3x4");
    EXPECT_EQ(rect("1,2,3,4"), "(1,2)3x4");
    EXPECT_EQ(rect("1 2 3 4 5"), "(1,2)3x4");
}

TEST(KmPlainTypes, AbsentFieldsOfARectAre0AndFail) {
    EXPECT_EQ(rect("(1,2)3"), "failed (1,2)3x0");
    EXPECT_EQ(rect("1"), "failed (1,0)0x0");
    EXPECT_EQ(rect(""), "failed (0,0)0x0");
}

TEST(KmPlainTypes, SidesOfARectAreAtLeast1) {
    EXPECT_EQ(rect("(1,2)0x4"), "failed (1,2)0x4");
    EXPECT_EQ(rect("(1,2)3x-4"), "failed (1,2)3x-4");
    EXPECT_EQ(rect("(0,0)1x1"), "(0,0)1x1");
}

TEST(KmPlainTypes, FieldOfARectThatIsNoNumberFails) {
    EXPECT_EQ(rect("(a,2)3x4").substr(0, 7), "failed ");
    EXPECT_EQ(rect("(1,2)3xb").substr(0, 7), "failed ");
}

TEST(KmPlainTypes, PointTakesTwoNumbers) {
    EXPECT_EQ(point("(-1,2)"), "(-1,2)");
    EXPECT_EQ(point("{5 6}"), "(5,6)");
    EXPECT_EQ(point("0,0"), "(0,0)");
}

TEST(KmPlainTypes, PointWithoutBothNumbersFails) {
    EXPECT_EQ(point("5"), "failed (5,0)");
    EXPECT_EQ(point(""), "failed (0,0)");
    EXPECT_EQ(point("(1,b)").substr(0, 7), "failed ");
    EXPECT_EQ(point("1x2").substr(0, 7), "failed "); // no separator of points
}

TEST(KmPlainTypes, SizeTakesTwoNumbersWithAnXOrInBraces) {
    EXPECT_EQ(size("16x8"), "16x8");
    EXPECT_EQ(size("{16 8}"), "16x8");
}

TEST(KmPlainTypes, LoneNumberIsNoSize) {
    EXPECT_EQ(size("16"), "failed 16x0");
}

TEST(KmPlainTypes, WidthOf0IsNoSize) {
    EXPECT_EQ(size("0x8"), "failed 0x8");
}

TEST(KmPlainTypes, GoodTextClearsAnOldFailure) {
    rkString text("(1,2)3x4");
    text.m_failed = true;
    KeliRect value = {};
    value << text;
    EXPECT_FALSE(text.failed());
}

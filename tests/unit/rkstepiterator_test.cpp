// rkstepiterator_test.cpp - tests of rkstepiterator.

#include <gtest/gtest.h>
#include <limits.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkstepiterator.h"
#include "text.h"
#include "walk.h"

namespace {

// The walk of a text, or the message that refuses it.
template <class T>
std::string walkOf(char const *text, T *left = nullptr) {
    rkStepIterator<T> parm;
    parm.init("size");
    try {
        parm.translate(text);
    } catch (rkException &e) {
        return e.msg();
    }
    std::string values = walk(parm);
    if (left) *left = parm.value();
    return values;
}

std::string ints(char const *text) {
    return walkOf<int>(text);
}

const std::string conflict = "--KEL. Exception: Conflict between iterator limits and operation";

template <class T>
bool conflicts(T first, T last, T step, char oprtn) {
    rkStepIterator<T> parm;
    StepOprtn op = StepOprtn(oprtn);
    bool descending = first <= last; // the wrong way round
    try {
        parm.validate(first, last, step, op, descending);
    } catch (rkException &e) {
        EXPECT_EQ(conflict, e.msg());
        EXPECT_EQ(first > last, descending);
        return true;
    }
    EXPECT_EQ(first > last, descending);
    return false;
}

} // namespace

// ---- walking ------------------------------------------------------------------

TEST(RkStepIterator, UpByOneEndsOneBeyond) {
    int left = 0;
    EXPECT_EQ("1 2 3 4 ", walkOf<int>("1;4;+1", &left));
    EXPECT_EQ(5, left);
}

TEST(RkStepIterator, UpByTwoMayMissTheLimit) {
    int left = 0;
    EXPECT_EQ("1 3 ", walkOf<int>("1;4;+2", &left));
    EXPECT_EQ(5, left);
}

TEST(RkStepIterator, DownByThree) {
    EXPECT_EQ("10 7 4 1 ", ints("10;1;-3"));
}

TEST(RkStepIterator, TimesThree) {
    EXPECT_EQ("1 3 9 27 81 ", ints("1;100;*3"));
}

TEST(RkStepIterator, NegativeTimesTwoGoesDown) {
    EXPECT_EQ("-1 -2 -4 -8 ", ints("-1;-8;*2"));
}

TEST(RkStepIterator, EqualLimitsWithPlusAreOneValue) {
    EXPECT_EQ("5 ", ints("5;5;+1"));
}

TEST(RkStepIterator, NegativeStepTurnsTheSignAround) {
    EXPECT_EQ("10 7 4 1 ", ints("10;1;+-3"));
    EXPECT_EQ("1 4 7 10 ", ints("1;10;--3"));
}

TEST(RkStepIterator, WalksAgainFromItsFirst) {
    rkStepIterator<int> parm;
    parm.init("size", 1, 3, 1, StepPlus);
    EXPECT_EQ("1 2 3 ", walk(parm));
    EXPECT_EQ("1 2 3 ", walk(parm));
    parm.firstValue();
    parm.nextValue();
    EXPECT_EQ("1 2 3 ", walk(parm));
}

TEST(RkStepIterator, PlusZeroDownwardNeverEnds) {
    EXPECT_EQ("...", ints("5;1;+0"));
    rkStepIterator<int> parm;
    parm.init("size", 5, 1, 0, StepPlus);
    parm.firstValue();
    for (int i = 0; i < walkBound; ++i) ASSERT_TRUE(parm.nextValue());
    EXPECT_EQ(5, parm.value());
}

TEST(RkStepIterator, StepOutOfTheTypeEndsTheWalk) {
    rkStepIterator<int> parm;
    parm.init("size", INT_MAX - 2, INT_MAX, 1, StepPlus);
    EXPECT_EQ("2147483645 2147483646 2147483647 ", walk(parm));
    parm.init("size", INT_MIN + 1, INT_MIN, 1, StepMinus);
    EXPECT_EQ("-2147483647 -2147483648 ", walk(parm));
    parm.init("size", 1 << 29, INT_MAX, 2, StepTimes);
    EXPECT_EQ("536870912 1073741824 ", walk(parm));
    parm.init("size", 1, INT_MAX, 65536, StepTimes);
    EXPECT_EQ("1 65536 ", walk(parm)) << "the wrapped product 0 is below the limit";
    parm.init("size", -1, INT_MIN, 65536, StepTimes);
    EXPECT_EQ("-1 -65536 ", walk(parm));
}

TEST(RkStepIterator, SmallTypesEndAtTheirLimits) {
    EXPECT_EQ("125 126 127 ", walkOf<signed char>("125;127;+1"));
    EXPECT_EQ("-127 -128 ", walkOf<signed char>("-127;-128;-1"));
    EXPECT_EQ("3 2 1 0 ", walkOf<unsigned int>("3;0;-1"));
    EXPECT_EQ("4294967294 4294967295 ", walkOf<unsigned int>("4294967294;4294967295;+1"));
    EXPECT_EQ("1 65536 ", walkOf<unsigned int>("1;4294967295;*65536"));
}

// ---- conflicts ----------------------------------------------------------------

TEST(RkStepIterator, ConflictingTexts) {
    for (char const *text : {"1;10;-1", "10;1;+1", "0;8;*2", "1;8;*1", "-1;8;*2", "1;10;*0", "5;5;-1"}) {
        EXPECT_EQ(conflict, ints(text)) << text;
    }
}

TEST(RkStepIterator, PlusGoesUpWithPositiveSteps) {
    EXPECT_FALSE(conflicts(1, 2, 1, '+'));
    EXPECT_FALSE(conflicts(2, 2, 1, '+'));
    EXPECT_TRUE(conflicts(3, 2, 1, '+'));
}

TEST(RkStepIterator, PlusGoesDownWithTheOthers) {
    for (int step : {0, -1}) {
        EXPECT_TRUE(conflicts(1, 2, step, '+'));
        EXPECT_TRUE(conflicts(2, 2, step, '+'));
        EXPECT_FALSE(conflicts(3, 2, step, '+'));
    }
}

TEST(RkStepIterator, MinusGoesDownWithPositiveSteps) {
    EXPECT_TRUE(conflicts(1, 2, 1, '-'));
    EXPECT_TRUE(conflicts(2, 2, 1, '-'));
    EXPECT_FALSE(conflicts(3, 2, 1, '-'));
}

TEST(RkStepIterator, MinusGoesUpWithTheOthers) {
    for (int step : {0, -1}) {
        EXPECT_FALSE(conflicts(1, 2, step, '-'));
        EXPECT_FALSE(conflicts(2, 2, step, '-'));
        EXPECT_TRUE(conflicts(3, 2, step, '-'));
    }
}

TEST(RkStepIterator, TimesNeedsAStepOfTwo) {
    for (int step : {-2, -1, 0, 1}) EXPECT_TRUE(conflicts(1, 8, step, '*')) << step;
    EXPECT_FALSE(conflicts(1, 8, 2, '*'));
}

TEST(RkStepIterator, TimesNeedsLimitsOfOneSign) {
    EXPECT_TRUE(conflicts(0, 8, 2, '*'));
    EXPECT_TRUE(conflicts(-8, 0, 2, '*'));
    EXPECT_TRUE(conflicts(0, 0, 2, '*'));
    EXPECT_TRUE(conflicts(-1, 8, 2, '*'));
    EXPECT_TRUE(conflicts(8, -1, 2, '*'));
}

TEST(RkStepIterator, TimesGrowsAwayFromZero) {
    EXPECT_TRUE(conflicts(8, 1, 2, '*'));
    EXPECT_FALSE(conflicts(8, 8, 2, '*'));
    EXPECT_FALSE(conflicts(-1, -8, 2, '*'));
    EXPECT_TRUE(conflicts(-8, -1, 2, '*'));
    EXPECT_TRUE(conflicts(-8, -8, 2, '*'));
}

TEST(RkStepIterator, UnsignedStepsAreZeroOrPositive) {
    EXPECT_FALSE(conflicts(1u, 2u, 4294967295u, '+'));
    EXPECT_TRUE(conflicts(1u, 2u, 0u, '+'));
    EXPECT_TRUE(conflicts(2u, 1u, 4294967295u, '+'));
    EXPECT_FALSE(conflicts(2u, 1u, 0u, '+'));
    EXPECT_FALSE(conflicts(1u, 4294967295u, 2u, '*'));
    EXPECT_TRUE(conflicts(0u, 8u, 2u, '*'));
    EXPECT_TRUE(conflicts(1u, 8u, 0u, '*'));
}

// ---- texts --------------------------------------------------------------------

TEST(RkStepIterator, SemicolonsAndBlanksSeparateAlike) {
    EXPECT_EQ(ints("1;9;+4"), "1 5 9 ");
    EXPECT_EQ(ints("1 9 +4"), "1 5 9 ");
    EXPECT_EQ(ints(" 1 ;; 9;  +4;"), "1 5 9 ");
    EXPECT_EQ(ints("64; 8; -28"), "64 36 8 ");
}

TEST(RkStepIterator, HexadecimalLimits) {
    EXPECT_EQ("16 32 64 128 256 ", ints("0x10;0x100;*2"));
    EXPECT_EQ("16 32 ", walkOf<unsigned int>("0x10;0x20;*0x2"));
}

TEST(RkStepIterator, BadWordsAreNamed) {
    EXPECT_EQ("--KEL. Exception: Invalid first value = a", ints("a;2;+1"));
    EXPECT_EQ("--KEL. Exception: Invalid last value = b", ints("1;b;+1"));
    EXPECT_EQ("--KEL. Exception: Invalid step = x", ints("1;2;+x"));
}

TEST(RkStepIterator, WithoutAnOperatorTheTextIsAList) {
    EXPECT_EQ("1 2 3 ", ints("1;2;3"));
    EXPECT_EQ("1 ", ints("1 2 3"));
    EXPECT_EQ("--KEL. Exception: Invalid value of size = x1", ints("1;2;x1"));
}

TEST(RkStepIterator, OtherCountsOfWordsAreLists) {
    EXPECT_EQ("1 2 3 4 ", ints("1;2;+3;4"));
    EXPECT_EQ("1 2 ", ints("1;+2"));
    EXPECT_EQ("--KEL. Signal: Empty iterator definition", ints(""));
}

TEST(RkStepIterator, BlankBehindTheOperatorMakesAList) {
    EXPECT_EQ("--KEL. Exception: Invalid value of size = + 1", ints("1;4;+ 1"));
}

TEST(RkStepIterator, BadTextLeavesAllAsItWas) {
    rkStepIterator<int> parm;
    parm.init("size", 1, 9, 4, StepPlus);
    for (char const *text : {"a;2;+1", "1;2;+x", "9;1;+1", "1;q", ""}) {
        EXPECT_THROW(parm.translate(text), rkException) << text;
    }
    EXPECT_EQ("1; 9; +4", str(parm.defaultString()));
    EXPECT_FALSE(parm.m_descending);
}

TEST(RkStepIterator, ListTextKeepsTheSteppedFields) {
    rkStepIterator<int> parm;
    parm.init("size", 1, 9, 4, StepPlus);
    parm.translate("7;8");
    EXPECT_EQ("7 8 ", walk(parm));
    EXPECT_EQ(StepList, parm.m_oprtn);
    EXPECT_EQ(1, parm.m_first);
    EXPECT_EQ(9, parm.m_last);
    EXPECT_EQ(4, parm.m_step);
}

TEST(RkStepIterator, SteppedTextKeepsTheOldList) {
    rkStepIterator<int> parm;
    parm.init("size");
    parm.add(7);
    parm.translate("9;1;-4");
    EXPECT_EQ("9 5 1 ", walk(parm));
    EXPECT_TRUE(parm.m_descending);
    EXPECT_EQ(1, parm.size());
}

TEST(RkStepIterator, TranslateStepTellsTheForm) {
    rkStepIterator<int> parm;
    EXPECT_TRUE(parm.translateStep("1;2;+1"));
    EXPECT_FALSE(parm.translateStep("5;6;7"));
    EXPECT_EQ("1; 2; +1", str(parm.defaultString()));
}

// ---- init and descriptions ----------------------------------------------------

TEST(RkStepIterator, StartsAsAnEmptyList) {
    rkStepIterator<int> parm;
    EXPECT_EQ(StepList, parm.m_oprtn);
    EXPECT_EQ(63, int(parm.m_oprtn));
    EXPECT_EQ("", str(parm.m_name));
    EXPECT_FALSE(parm.firstValue());
}

TEST(RkStepIterator, SteppedInitTellsItsLoop) {
    rkStepIterator<int> parm;
    parm.init("size", 1, 31, 2, StepPlus, "Size of block");
    EXPECT_EQ("1; 31; +2", str(parm.defaultString()));
    EXPECT_EQ("for (size = 1; size <= 31; size += 2)", str(parm.description()));
    EXPECT_EQ("for size", str(parm.prompt()));
    EXPECT_EQ("Size of block", str(parm.m_descr));
    parm.init("size", 31, 1, 2, StepMinus);
    EXPECT_EQ("31; 1; -2", str(parm.defaultString()));
    EXPECT_EQ("for (size = 31; size >= 1; size -= 2)", str(parm.description()));
    parm.init("size", 1, 8, 2, StepTimes);
    EXPECT_EQ("for (size = 1; size <= 8; size *= 2)", str(parm.description()));
}

TEST(RkStepIterator, ListInitIgnoresTheDescriptionInItsPrompt) {
    rkStepIterator<int> parm;
    parm.init("size", 1, 31, 2, StepPlus);
    parm.init("mode", "Mode of prediction");
    parm.add(0);
    parm.add(3);
    EXPECT_EQ("0; 3", str(parm.defaultString()));
    EXPECT_EQ("mode = 0; 3", str(parm.description()));
    EXPECT_EQ("mode", str(parm.prompt()));
    EXPECT_EQ("0 3 ", walk(parm));
}

TEST(RkStepIterator, InitThrowsOnAConflict) {
    rkStepIterator<int> parm;
    EXPECT_THROW(parm.init("size", 9, 1, 1, StepPlus), rkException);
}

TEST(RkStepIterator, DefaultTextReadsBackUnchanged) {
    rkStepIterator<unsigned int> parm;
    parm.init("size", 1, 4294967295u, 65536, StepTimes);
    EXPECT_EQ("1; -1; *65536", str(parm.defaultString()));
    parm.translate(parm.defaultString());
    EXPECT_EQ(4294967295u, parm.m_last);
}

TEST(RkStepIterator, SmallTypeShowsNumbersAndNotCharacters) {
    rkStepIterator<signed char> parm;
    parm.init("size", 65, 70, 5, StepPlus);
    EXPECT_EQ("65; 70; +5", str(parm.defaultString()));
    EXPECT_EQ("for (size = 65; size <= 70; size += 5)", str(parm.description()));
    EXPECT_EQ("65 70 ", walk(parm));
}

TEST(RkStepIterator, AsksWithItsLoop) {
    CaptureLog log;
    ConsoleScript console("8;2;-2\n");
    g_istrm.setIStream(&c_in);
    rkStepIterator<int> parm;
    parm.init("size", 1, 31, 2, StepPlus);
    parm.fromIStream(g_istrm);
    EXPECT_EQ("\n for size [1; 31; +2] = ", console.questions());
    EXPECT_EQ(" for (size = 8; size >= 2; size -= 2)\n", log.text());
}

TEST(RkStepIterator, ConflictAtTheConsoleKeepsTheFamily) {
    CaptureLog log;
    ConsoleScript console("8;2;+2\n");
    g_istrm.setIStream(&c_in);
    rkStepIterator<int> parm;
    parm.init("size", 1, 3, 1, StepPlus);
    parm.fromIStream(g_istrm);
    EXPECT_EQ("-Conflict between iterator limits and operation\n for (size = 1; size <= 3; size += 1)\n",
              log.text());
    EXPECT_EQ("1 2 3 ", walk(parm));
}

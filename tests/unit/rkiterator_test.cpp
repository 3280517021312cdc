// rkiterator_test.cpp - tests of rkiterator.

#include <gtest/gtest.h>

#include "consolescript.h"
#include "freshstart.h"
#include "rkiterator.h"
#include "text.h"
#include "walk.h"

namespace {

// How a text is refused: msg() of the exception, or "accepted".
template <class Parm>
std::string refusal(Parm &parm, char const *text) {
    try {
        parm.translate(text);
    } catch (rkException &e) {
        return e.msg();
    }
    return "accepted";
}

struct IntFamily : rkIterator<int> {
    IntFamily(std::initializer_list<int> values) : rkIterator<int>("size", "Size of block") {
        for (int value : values) add(value);
    }
};

} // namespace

TEST(RkIterator, WalksItsListAndEndsWithTheSentinelsValue) {
    IntFamily parm{8, 16, 4};
    EXPECT_EQ("8 16 4 ", walk(parm));
    EXPECT_EQ(0, parm.value());
    EXPECT_FALSE(parm.m_done);
    EXPECT_EQ("8 16 4 ", walk(parm));
}

TEST(RkIterator, EmptyListHasNoFirstValue) {
    IntFamily parm{};
    parm.m_value = 5;
    EXPECT_FALSE(parm.firstValue());
    EXPECT_EQ(0, parm.value());
}

TEST(RkIterator, FirstValueStartsOverInTheMiddle) {
    IntFamily parm{8, 16, 4};
    parm.firstValue();
    parm.nextValue();
    EXPECT_TRUE(parm.firstValue());
    EXPECT_EQ(8, parm.value());
}

TEST(RkIterator, DuplicatesAreWalkedTwice) {
    IntFamily parm{8, 8};
    EXPECT_EQ("8 8 ", walk(parm));
    parm.translate("3;3;1");
    EXPECT_EQ("3 3 1 ", walk(parm));
}

TEST(RkIterator, ResetForgetsTheFamily) {
    IntFamily parm{8, 16};
    parm.firstValue();
    parm.reset();
    EXPECT_TRUE(parm.empty());
    EXPECT_FALSE(parm.m_done);
    EXPECT_EQ(0, parm.value());
}

TEST(RkIterator, InitTakesNameAndEmptyList) {
    rkIterator<int> parm;
    parm.add(8);
    parm.m_readable = false;
    parm.init("size", "Size of block");
    EXPECT_TRUE(parm.empty());
    EXPECT_EQ("size", str(parm.m_name));
    EXPECT_EQ("Size of block", str(parm.m_descr));
    EXPECT_TRUE(parm.m_readable);
    parm.init("step");
    EXPECT_EQ("step", str(parm.m_descr));
}

TEST(RkIterator, DefaultTextReadsBackUnchanged) {
    IntFamily parm{8, 16, -4};
    EXPECT_EQ("8; 16; -4", str(parm.defaultString()));
    EXPECT_EQ("size = 8; 16; -4", str(parm.description()));
    EXPECT_EQ("Size of block", str(parm.prompt()));
    parm.translate(parm.defaultString());
    EXPECT_EQ("8 16 -4 ", walk(parm));
}

TEST(RkIterator, ListDescriptionOfAnyList) {
    IntFamily parm{};
    rkList<int> list;
    EXPECT_EQ("", str(parm.listDescr(list, "|")));
    list.push_back(1);
    EXPECT_EQ("1", str(parm.listDescr(list, "|")));
    list.push_back(2);
    EXPECT_EQ("1|2", str(parm.listDescr(list, "|")));
}

TEST(RkIterator, ItemsAreTrimmed) {
    IntFamily parm{};
    parm.translate("  3 ;\t4; 0x10 ");
    EXPECT_EQ("3 4 16 ", walk(parm));
}

TEST(RkIterator, BlanksSeparateNothing) {
    IntFamily parm{};
    parm.translate("1 2 3");
    EXPECT_EQ("1 ", walk(parm));
}

TEST(RkIterator, EmptyTextIsRefusedInTheFormOfALiteral) {
    IntFamily parm{8};
    EXPECT_EQ("--KEL. Signal: Empty iterator definition", refusal(parm, ""));
    EXPECT_EQ("--KEL. Signal: Empty iterator definition", refusal(parm, ";"));
    EXPECT_EQ("8 ", walk(parm));
}

TEST(RkIterator, BadItemLeavesTheOldFamily) {
    IntFamily parm{8, 16};
    EXPECT_EQ("--KEL. Exception: Invalid value of size = x", refusal(parm, "1; x ;3"));
    EXPECT_EQ("8 16 ", walk(parm));
}

TEST(RkIterator, NewFamilyInTheMiddleOfAWalkStaysInMemory) {
    IntFamily parm{8, 16};
    parm.firstValue();
    parm.translate("3;4");
    EXPECT_TRUE(parm.nextValue());
    EXPECT_EQ(3, parm.value());
}

TEST(RkIterator, SizesAreAFamilyToo) {
    rkIterator<KeliSize> parm;
    parm.init("block");
    parm.translate("16x8; {4 4}");
    EXPECT_EQ("16x8; 4x4", str(parm.defaultString()));
    EXPECT_EQ("16x8 4x4 ", walk(parm));
    EXPECT_EQ("0x0", str(parm.valueString()));
    EXPECT_EQ("--KEL. Exception: Invalid value of block = 16", refusal(parm, "4x4;16"));
}

TEST(RkIterator, SmallTypesAreCut) {
    rkIterator<unsigned char> bytes("byte", "");
    bytes.translate("255;256;257");
    EXPECT_EQ("255 0 1 ", walk(bytes));
    rkIterator<signed char> chars("char", "");
    chars.translate("-1;200");
    EXPECT_EQ("-1 -56 ", walk(chars));
    rkIterator<unsigned int> words("word", "");
    words.translate("4294967295");
    EXPECT_EQ("4294967295 ", walk(words));
}

TEST(RkIterator, FormWithoutTextsReadsZeros) {
    rkIterator_NSC<int> parm("size", "");
    parm.translate("3;4");
    EXPECT_EQ(2, parm.size());
    EXPECT_EQ(0, *parm.begin());
    EXPECT_EQ("; ", str(parm.defaultString()));
}

TEST(RkIterator, EmptyAnswerAtTheConsoleKeepsTheFamily) {
    CaptureLog log;
    ConsoleScript console("\n");
    g_istrm.setIStream(&c_in);
    IntFamily parm{8, 16};
    parm.fromIStream(g_istrm);
    EXPECT_EQ("\n Size of block [8; 16] = ", console.questions());
    EXPECT_EQ(" size = 8; 16\n", log.text());
    EXPECT_EQ("8 16 ", walk(parm));
}

TEST(RkIterator, EmptyFamilyFromDataIsReportedWithoutItsText) {
    CaptureLog log;
    g_istrm.m_data.set("size", ";");
    IntFamily parm{8, 16};
    parm.fromIStream(g_istrm);
    EXPECT_EQ("-\n size = 8; 16\n", log.text());
}

TEST(RkIterator, TypedMistakeComesBackAsAMessage) {
    CaptureLog log;
    ConsoleScript console("3;q\n");
    g_istrm.setIStream(&c_in);
    IntFamily parm{8, 16};
    parm.fromIStream(g_istrm);
    EXPECT_EQ("-Invalid value of size = q\n size = 8; 16\n", log.text());
}

TEST(RkDummyIterator, IsOnePassThatNobodySees) {
    CaptureLog log;
    rkDummyIterator parm(1, "");
    EXPECT_TRUE(parm.firstValue());
    EXPECT_EQ(1, parm.value());
    EXPECT_FALSE(parm.nextValue());
    parm.fromIStream(g_istrm);
    parm.toOStream(g_ostrm);
    EXPECT_EQ("", log.text());
}

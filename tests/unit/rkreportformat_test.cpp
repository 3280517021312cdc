// rkreportformat_test.cpp - tests of the layout of framed blocks.

#include "rkreportformat.h"

#include <gtest/gtest.h>

#include <string>

#include "text.h"

static std::string blanks(size_t n) {
    return std::string(n, ' ');
}

static rkReportFormat titleFormat(bool frame) {
    return rkReportFormat(frame, 4, 1, 11, 13, -79, -79, -79);
}

TEST(RkReportFormat, ConstructorTakesFrameCountAndPositions) {
    rkReportFormat format(true, 3, 1, 2, 3, -4, -5, -6);
    const int positions[6] = {1, 2, 3, -4, -5, -6};
    EXPECT_TRUE(format.m_frame);
    EXPECT_EQ(format.m_colms, 3);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(format.m_col[i], positions[i]);
}

// ---- frame --------------------------------------------------------------------

TEST(RkReportFormat, SeparatorIs79CharactersAndALineFeed) {
    rkReportFormat format = titleFormat(false);
    EXPECT_EQ(str(format.sepLine()), "+" + std::string(77, '-') + "+\n");
    EXPECT_EQ(format.sepLine().length(), 80);
    EXPECT_FALSE(format.m_frame);
}

TEST(RkReportFormat, FirstLineOpensTheFrameAndLastLineClosesIt) {
    rkReportFormat format = titleFormat(false);
    EXPECT_EQ(str(format.firstLine()), str(format.sepLine()));
    EXPECT_TRUE(format.m_frame);
    EXPECT_EQ(str(format.lastLine()), str(format.sepLine()));
    EXPECT_FALSE(format.m_frame);
}

TEST(RkReportFormat, LineStartsWithTheFrameOrABlank) {
    rkString framed, open;
    titleFormat(true).setStartLine(framed);
    titleFormat(false).setStartLine(open);
    EXPECT_EQ(str(framed), "|");
    EXPECT_EQ(str(open), " ");
}

TEST(RkReportFormat, EndOfAFramedLineIsAtColumn78) {
    rkString line = "|x";
    titleFormat(true).setEndLine(line);
    EXPECT_EQ(str(line), "|x" + blanks(76) + "|\n");
}

TEST(RkReportFormat, LineThatFillsTheFrameExactlyHasItsBorder) {
    std::string text(78, 'x');
    rkString line = text.c_str();
    titleFormat(true).setEndLine(line);
    EXPECT_EQ(str(line), text + "|\n");
}

TEST(RkReportFormat, LineLongerThanTheFrameHasNoRightBorder) {
    std::string text(79, 'x');
    rkString line = text.c_str();
    titleFormat(true).setEndLine(line);
    EXPECT_EQ(str(line), text + "\n");
}

TEST(RkReportFormat, LineWithoutFrameIsNotPadded) {
    rkString line = " x";
    titleFormat(false).setEndLine(line);
    EXPECT_EQ(str(line), " x\n");
}

// ---- items --------------------------------------------------------------------

TEST(RkReportFormat, OffsetPadsTheLastLineOnly) {
    rkReportFormat format = titleFormat(false);
    rkString line = "a long first line\nab";
    EXPECT_TRUE(format.setOffsetLine(line, 5));
    EXPECT_EQ(str(line), "a long first line\nab   ");
    EXPECT_TRUE(format.setOffsetLine(line, 5));
    EXPECT_FALSE(format.setOffsetLine(line, 4));
    EXPECT_EQ(str(line), "a long first line\nab   ");
}

TEST(RkReportFormat, LastLengthCountsBehindTheLastLineFeed) {
    rkReportFormat format = titleFormat(false);
    EXPECT_EQ(format.getLastLen(""), 0);
    EXPECT_EQ(format.getLastLen("abc"), 3);
    EXPECT_EQ(format.getLastLen("abc\nde\nfghi"), 4);
    EXPECT_EQ(format.getLastLen("abc\n"), 0);
}

TEST(RkReportFormat, EmptyItemChangesNothing) {
    rkReportFormat format = titleFormat(false);
    rkString line = "|ab";
    format.setItem(line, "", 40);
    format.setItem(line, "", -40);
    EXPECT_EQ(str(line), "|ab");
}

TEST(RkReportFormat, ItemGoesToItsPositionBeyondTheEnd) {
    rkReportFormat format = titleFormat(false);
    rkString line = "|ab";
    format.setItem(line, "xy", 6);
    EXPECT_EQ(str(line), "|ab   xy");
}

TEST(RkReportFormat, ItemsNeverTouch) {
    rkReportFormat format = titleFormat(false);
    rkString atEnd = "|ab", before = "|ab";
    format.setItem(atEnd, "xy", 3);
    format.setItem(before, "xy", 1);
    EXPECT_EQ(str(atEnd), "|ab xy");
    EXPECT_EQ(str(before), "|ab xy");
}

TEST(RkReportFormat, ItemBehindTheBorderLandsAtColumn2) {
    rkReportFormat format = titleFormat(true);
    rkString line = "|";
    format.setItem(line, "CPU", 1);
    EXPECT_EQ(str(line), "| CPU");
}

TEST(RkReportFormat, RightAlignedItemEndsOneColumnInFront) {
    rkReportFormat format = titleFormat(false);
    rkString line = "|";
    format.setItem(line, "xyz", -11);
    EXPECT_EQ(str(line), "|" + blanks(6) + "xyz"); // columns 7 to 9; column 10 is free
}

TEST(RkReportFormat, RightAlignedItemOf78CharactersFillsAnEmptyLine) {
    rkReportFormat format = titleFormat(false);
    std::string text(78, 'x');
    rkString line;
    format.setItem(line, text.c_str(), -79);
    EXPECT_EQ(str(line), text);
}

TEST(RkReportFormat, RightAlignedItemOf78CharactersGoesBehindALongerLine) {
    rkReportFormat format = titleFormat(false);
    std::string text(78, 'x');
    rkString line = "|a";
    format.setItem(line, text.c_str(), -79);
    EXPECT_EQ(str(line), "|a " + text);
}

TEST(RkReportFormat, RightAlignedItemThatDoesNotFitIsDropped) {
    rkReportFormat format = titleFormat(false);
    rkString line;
    format.setItem(line, std::string(79, 'x').c_str(), -79);
    EXPECT_EQ(str(line), "");
}

TEST(RkReportFormat, LeftItemIsPaddedTo) {
    rkReportFormat format = titleFormat(false);
    rkString line = "ab";
    format.setItemLeft(line, "x", 4);
    EXPECT_EQ(str(line), "ab  x");
    format.setItemLeft(line, "y", 2);
    EXPECT_EQ(str(line), "ab  xy");
}

// ---- lines --------------------------------------------------------------------

TEST(RkReportFormat, LabelColonAndTextStandAtColumns2And11And13) {
    rkReportFormat format = titleFormat(true);
    EXPECT_EQ(str(format.getLine("CPU", ":", "text", "", "", "")),
              "| CPU" + blanks(6) + ": text" + blanks(61) + "|\n");
}

TEST(RkReportFormat, RightItemEndsAtTheBorder) {
    rkReportFormat format = titleFormat(true);
    EXPECT_EQ(str(format.getLine("", "", "", "right", "", "")), "|" + blanks(72) + "right|\n");
}

TEST(RkReportFormat, OpenLineHasABlankInPlaceOfTheBorder) {
    rkReportFormat format = titleFormat(false);
    EXPECT_EQ(str(format.getLine("a", "b", "", "", "", "")), "  a" + blanks(8) + "b\n");
}

TEST(RkReportFormat, AllSixItemsHaveAPlace) {
    rkReportFormat format(false, 6, 2, 4, 6, 8, 10, -20);
    EXPECT_EQ(str(format.getLine("a", "b", "c", "d", "e", "f")), "  a b c d e       f\n");
}

// ---- pieces -------------------------------------------------------------------

TEST(RkReportFormat, TextThatFitsIsNotCut) {
    rkReportFormat format = titleFormat(false);
    rkString text = "ab cd", piece = "old";
    EXPECT_FALSE(format.getPieceItem(text, piece, 5));
    EXPECT_EQ(str(text), "ab cd");
}

TEST(RkReportFormat, LongTextIsCutAtItsLastFittingBlank) {
    rkReportFormat format = titleFormat(false);
    rkString text = "one two three four", piece;
    EXPECT_TRUE(format.getPieceItem(text, piece, 10));
    EXPECT_EQ(str(piece), "one two");
    EXPECT_EQ(str(text), "three four");
}

TEST(RkReportFormat, BlankAtTheWidthItselfIsGoodToCutAt) {
    rkReportFormat format = titleFormat(false);
    rkString text = "one two three", piece;
    EXPECT_TRUE(format.getPieceItem(text, piece, 7));
    EXPECT_EQ(str(piece), "one two");
    EXPECT_EQ(str(text), "three");
}

TEST(RkReportFormat, LongTextWithoutBlankStaysWhole) {
    rkReportFormat format = titleFormat(false);
    rkString text = "onetwothree", piece;
    EXPECT_FALSE(format.getPieceItem(text, piece, 5));
    EXPECT_EQ(str(text), "onetwothree");
}

TEST(RkReportFormat, TextWhoseBlanksAllStandTooFarBehindStaysWhole) {
    rkReportFormat format = titleFormat(false);
    rkString text = "onetwothree four five", piece;
    EXPECT_FALSE(format.getPieceItem(text, piece, 5));
    EXPECT_EQ(str(text), "onetwothree four five");
}

TEST(RkReportFormat, PiecesGiveTheWholeTextBack) {
    rkReportFormat format = titleFormat(false);
    rkString text = "the quick brown fox jumps over the lazy dog", piece;
    std::string all;
    while (format.getPieceItem(text, piece, 11)) {
        EXPECT_LE(piece.length(), 11);
        all += str(piece) + " ";
    }
    EXPECT_EQ(all + str(text), "the quick brown fox jumps over the lazy dog");
}

// ---- texts --------------------------------------------------------------------

TEST(RkReportFormat, TimeInHoursMinutesSeconds) {
    EXPECT_EQ(str(rkReportFormat::getTimeStr(0)), "00:00:00");
    EXPECT_EQ(str(rkReportFormat::getTimeStr(59)), "00:00:59");
    EXPECT_EQ(str(rkReportFormat::getTimeStr(3661)), "01:01:01");
    EXPECT_EQ(str(rkReportFormat::getTimeStr(86399)), "23:59:59");
}

TEST(RkReportFormat, HundredHoursTakeThreeDigits) {
    EXPECT_EQ(str(rkReportFormat::getTimeStr(360000)), "100:00:00");
}

TEST(RkReportFormat, TextIsCutAtItsFirstLineFeed) {
    EXPECT_EQ(str(cutoffNL("one\ntwo\n")), "one");
    EXPECT_EQ(str(cutoffNL("one")), "one");
    EXPECT_EQ(str(cutoffNL("\n")), "");
}

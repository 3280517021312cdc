// kmbitvector_test.cpp - tests of kmbitvector.

#include "km.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "capture.h"
#include "text.h"

namespace {

class KmBitVectorTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(v.createVector(4, SetZero, 0.0, 0.0)); }
    kmBitVector v;
};

} // namespace

TEST(KmBitVector, StartsAsEmptyBytesWithTheCursorAtZero) {
    kmBitVector v;
    EXPECT_EQ(v.m_type, 8);
    EXPECT_EQ(v.m_bytePos, 0);
    EXPECT_EQ(v.m_bitPos, 0);
    EXPECT_EQ(v.getBitPos(), 0);
}

TEST(KmBitVector, WithoutABlockTheCursorStays) {
    kmBitVector v;
    v.setBitPos(5);
    v.setBit(1);
    EXPECT_EQ(v.getBitPos(), 5);
    EXPECT_EQ(v.getBit(), 0);
    EXPECT_EQ(v.getBitPos(), 5);
    EXPECT_EQ(str(v.getBitString()), "");
}

TEST_F(KmBitVectorTest, InfoTellsItsBytes) {
    EXPECT_EQ(str(v.objectInfo()), "BitVector byteLen=4");
}

TEST_F(KmBitVectorTest, CursorIsByteAndBit) {
    v.setBitPos(21);
    EXPECT_EQ(v.m_bytePos, 2);
    EXPECT_EQ(v.m_bitPos, 5);
    EXPECT_EQ(v.getBitPos(), 21);
    v.setBitPos(23);
    v.incrementPos();
    EXPECT_EQ(v.m_bytePos, 3);
    EXPECT_EQ(v.m_bitPos, 0);
}

TEST_F(KmBitVectorTest, FirstBitOfAByteIsItsHighest) {
    v.setBit(1);
    EXPECT_EQ(v.p8u[0], 0x80);
    v.setBitPos(15);
    v.setBit(1);
    EXPECT_EQ(v.p8u[1], 0x01);
}

TEST_F(KmBitVectorTest, OnlyTheLowBitCountsAndZeroClears) {
    v.p8u[0] = 0xff;
    v.setBit(2);
    v.setBit(3);
    EXPECT_EQ(v.p8u[0], 0x7f);
}

TEST_F(KmBitVectorTest, WritingPastTheEndMovesTheCursorAlone) {
    v.setConst(0xaa, 0.0);
    v.setBitPos(31);
    v.setBit(1);
    v.setBit(0);
    v.setBit(1);
    EXPECT_EQ(v.getBitPos(), 34);
    EXPECT_EQ(str(v.getString()), " AA AA AA AB");
}

TEST_F(KmBitVectorTest, ReadingPastTheEndGivesZerosAndMovesTheCursor) {
    v.setConst(0xff, 0.0);
    v.setBitPos(31);
    EXPECT_EQ(v.getBit(), 1);
    EXPECT_EQ(v.getBit(), 0);
    EXPECT_EQ(v.getBitPos(), 33);
}

TEST_F(KmBitVectorTest, CursorInFrontOfTheDataChangesNothing) {
    v.p8u[0] = 0xee;
    ++v.m_data; // the first byte is now what lies in front
    v.m_len = 3;
    v.setBitPos(-4);
    EXPECT_EQ(v.getBitPos(), -4);
    v.setBit(0);
    EXPECT_EQ(v.getBit(), 0);
    EXPECT_EQ(v.getBitPos(), -2);
    --v.m_data;
    EXPECT_EQ(v.p8u[0], 0xee);
}

TEST_F(KmBitVectorTest, NumbersGoInAndOutFromTheirHighestBit) {
    v.setBitPos(3);
    v.setBits(0x15u, 5);
    v.setBits(0xabcu, 12);
    EXPECT_EQ(v.p8u[0], 0x15);
    EXPECT_EQ(v.p8u[1], 0xab);
    EXPECT_EQ(v.p8u[2], 0xc0);
    unsigned int value = 99;
    v.setBitPos(8);
    v.getBits(value, 12);
    EXPECT_EQ(value, 0xabcu);
    v.setBitPos(3);
    v.getBits(value, 5);
    EXPECT_EQ(value, 0x15u);
    v.getBits(value, 0);
    EXPECT_EQ(value, 0u);
}

TEST_F(KmBitVectorTest, WholeWordGoesInAndOut) {
    unsigned int value = 0;
    v.setBits(0xdeadbeefu, 32);
    v.setBitPos(0);
    v.getBits(value, 32);
    EXPECT_EQ(value, 0xdeadbeefu);
}

TEST_F(KmBitVectorTest, BitsBeyondAWordAreZero) {
    v.setConst(0xff, 0.0);
    v.setBits(0x80000001u, 36);
    EXPECT_EQ(str(v.getString()), " 08 00 00 00");
    EXPECT_EQ(v.getBitPos(), 36);
}

TEST_F(KmBitVectorTest, TextWritesItsBitsAndSkipsAllElse) {
    v.setBits(" 10x1\n0 2 11-01z1");
    EXPECT_EQ(v.getBitPos(), 9);
    EXPECT_EQ(v.p8u[0], 0xad);
    EXPECT_EQ(v.p8u[1], 0x80);
}

TEST_F(KmBitVectorTest, TextOfBitsHasABlankAtMultiplesOfFour) {
    v.setBits(0xa5f0u, 16);
    rkString text = "old";
    v.setBitPos(0);
    v.getBits(text, 9);
    EXPECT_EQ(str(text), "1010 0101 1");
    v.setBitPos(2);
    v.getBits(text, 4);
    EXPECT_EQ(str(text), "10 01");
    v.getBits(text, 0);
    EXPECT_EQ(str(text), "");
}

TEST_F(KmBitVectorTest, StringIsHexadecimal) {
    v.p8u[1] = 0x1f;
    EXPECT_EQ(str(v.getString()), " 00 1F 00 00");
}

// ---- texts of bits -----------------------------------------------------------

TEST(KmBitString, WholeByteHasABlankInItsMiddle) {
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xa5), 0, 8)), "1010 0101");
}

TEST(KmBitString, PositionsInFrontAreBlank) {
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xff), 2, 8)), "  11 1111");
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xff), 5, 2)), "      11");
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xff), 1, 2)), " 11");
}

TEST(KmBitString, BitsThatBeganBeforeEndInTheByte) {
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xf0), -5, 10)), "1111 0");
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xf0), -5, 5)), "");
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xf0), INT_MIN, INT_MAX)), "");
    EXPECT_EQ(str(kmBitVector::bitString(static_cast<unsigned char>(0xf0), INT_MAX, INT_MAX)), "         ");
}

TEST(KmBitString, WordIsFourBytesFromTheHighest) {
    EXPECT_EQ(str(kmBitVector::bitString(0x12345678u, 0, 32)), "0001 0010 0011 0100 0101 0110 0111 1000");
    EXPECT_EQ(str(kmBitVector::bitString(0xffffffffu, 3, 8)), "   1 1111 111  ");
}

TEST_F(KmBitVectorTest, BitStringOfAllBits) {
    v.setBits(0x12345678u, 32);
    EXPECT_EQ(str(v.getBitString()), "0001 0010 0011 0100 0101 0110 0111 1000\n");
}

TEST_F(KmBitVectorTest, BitStringOfARange) {
    v.setBits(0xffffffffu, 32);
    EXPECT_EQ(str(v.getBitString(11, 8)), "   1 1111 111\n");
    EXPECT_EQ(str(v.getBitString(8, 8)), "1111 1111\n");
}

TEST_F(KmBitVectorTest, BitStringIsClippedToTheEnd) {
    v.setBits(0xffffffffu, 32);
    EXPECT_EQ(str(v.getBitString(28, 100)), "     1111\n");
    EXPECT_EQ(str(v.getBitString(28, 0)), "     1111\n");
    EXPECT_EQ(str(v.getBitString(32, 1)), "");
    EXPECT_EQ(str(v.getBitString(-1, 1)), "");
}

TEST(KmBitVector, BitStringHasLinesOf64Bits) {
    kmBitVector v;
    ASSERT_TRUE(v.createVector(17, SetZero, 0.0, 0.0));
    std::string line = "0000 0000";
    for (int i = 1; i < 8; ++i) line += " 0000 0000";
    EXPECT_EQ(str(v.getBitString()), line + "\n" + line + "\n0000 0000\n");
    EXPECT_EQ(str(v.getBitString(0, 128)), line + "\n" + line + "\n");
}

TEST_F(KmBitVectorTest, BitStringCanBePrinted) {
    CaptureLog log(MsgError);
    v.setBits(0xf0000000u, 32);
    g_ostrm << MsgError;
    v.bitprn(g_ostrm, 0, 8);
    g_ostrm << EndMessage;
    EXPECT_EQ(log.text(), "1111 0000\n");
}

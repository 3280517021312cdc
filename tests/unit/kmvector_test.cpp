// kmvector_test.cpp - tests of kmvector: blocks, types, elements, copies and texts. Fills: kmfill_test.cpp.

#include "km.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "capture.h"
#include "text.h"
#include "vectors.h"

namespace {

int countOf(std::vector<void *> const &pointers, void *pointer) {
    int n = 0;
    for (void *p : pointers) n += p == pointer;
    return n;
}

} // namespace

// ---- construction ------------------------------------------------------------

TEST(KmVector, DefaultIsEmptyAndUndefined) {
    kmVector v;
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_EQ(v.m_reserved, nullptr);
    EXPECT_EQ(v.m_len, 0);
    EXPECT_EQ(v.m_type, 0);
    EXPECT_EQ(str(v.m_func), "_undef_");
    EXPECT_EQ(countOf(views(v), nullptr), 17);
    EXPECT_EQ(v.size(), 0);
}

TEST(KmVector, TypeGivesThePseudoName) {
    kmVector v(1296);
    EXPECT_EQ(v.m_type, 1296);
    EXPECT_EQ(str(v.m_func), "_16sc_");
}

TEST(KmVector, FunctionGivesTypeAndChannelsByNumber) {
    kmVector v(kmFunc("keliX_8u16s_C3P3R"), 2);
    EXPECT_EQ(v.m_type, 272);
    EXPECT_EQ(str(v.m_func), "_16s_P3");
}

TEST(KmVector, FunctionGivesTypeAndChannelsByArgument) {
    kmVector v(kmFunc("keliX_8u16s_C3P3R"), kmSrc);
    EXPECT_EQ(v.m_type, 8);
    EXPECT_EQ(str(v.m_func), "_8u_C3");
    v.init(kmFunc("keliX_8u16s_C3P3R"), kmDst);
    EXPECT_EQ(str(v.m_func), "_16s_P3");
}

TEST(KmVector, InitDeletesTheBlock) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(10, 0));
    void *block = v.m_data;
    v.init(16);
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_FALSE(rkMallocInfo(block, nullptr, nullptr));
}

TEST(KmVector, SeedIsZeroAtFirst) {
    EXPECT_EQ(kmVector::m_seed, 0u);
}

// ---- blocks ------------------------------------------------------------------

TEST(KmVector, OnlyTheViewOfTheTypeHoldsTheBlock) {
    const kmType inOrder[] = {8,    16,   32,   64,   264, 272, 288,  320, 1288,
                              1296, 1040, 1312, 1344, 544, 576, 1568, 1600};
    for (int i = 0; i < 17; ++i) {
        kmVector v(inOrder[i]);
        ASSERT_TRUE(v.createVector(4, 0));
        EXPECT_EQ(views(v)[i], v.m_data);
        EXPECT_EQ(countOf(views(v), nullptr), 16);
    }
}

TEST(KmVector, DeleteClearsEveryViewBut16uc) {
    for (kmType type : allTypes) {
        kmVector v(type);
        ASSERT_TRUE(v.createVector(4, 0));
        v.deleteVector();
        EXPECT_EQ(v.m_data, nullptr);
        EXPECT_EQ(v.m_len, 0);
        EXPECT_EQ(countOf(views(v), nullptr), type == 1040 ? 16 : 17) << type;
    }
}

TEST(KmVector, View16ucKeepsItsPointerAfterDelete) {
    kmVector v(1040);
    ASSERT_TRUE(v.createVector(4, 0));
    Kel16uc *pointer = v.p16uc;
    v.deleteVector();
    EXPECT_EQ(v.p16uc, pointer);
}

TEST(KmVector, NextAllocationClearsTheKeptView) {
    kmVector v(1040);
    ASSERT_TRUE(v.createVector(4, 0));
    v.init(8);
    ASSERT_TRUE(v.createVector(4, 0));
    EXPECT_EQ(v.p16uc, nullptr);
    EXPECT_EQ(v.p8u, v.m_data);
}

TEST(KmVector, NoElementsGiveAMessageAndDeleteTheOldBlock) {
    CaptureLog log(MsgError);
    kmVector v(8);
    ASSERT_TRUE(v.createVector(10, 0));
    void *old = v.m_data;
    EXPECT_FALSE(v.createVector(0, 0));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 0 bytes\n");
    EXPECT_EQ(v.m_data, nullptr);
    EXPECT_FALSE(rkMallocInfo(old, nullptr, nullptr));
}

TEST(KmVector, UndefinedTypeHasNoBytes) {
    CaptureLog log(MsgError);
    kmVector v;
    EXPECT_FALSE(v.createVector(10, 0));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 0 bytes\n");
}

TEST(KmVector, MessageOfAFailureRestoresTheLevel) {
    CaptureLog log(MsgError);
    MessageLevel level = g_ostrm.msgLevel();
    kmVector v(8);
    EXPECT_FALSE(v.allocateVector(-5, 0, nullptr));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate -5 bytes\n");
    EXPECT_EQ(g_ostrm.msgLevel(), level);
}

TEST(KmVector, SizeThatIsNoIntFails) {
    CaptureLog log(MsgError);
    kmVector v(1600);
    EXPECT_FALSE(v.createVector(INT_MAX, 0));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 34359738352 bytes\n");
    EXPECT_FALSE(v.createVector(-1500000000, 0));
    EXPECT_EQ(v.m_data, nullptr);
}

TEST(KmVector, AllocatedBlockIsZeroAndHasNoLength) {
    kmVector v(8);
    rkSetVectorShift(0);
    ASSERT_TRUE(v.createVector(100, SetValue, 0xee, 0.0)); // the memory that is given again
    ASSERT_TRUE(v.allocateVector(100, 0, nullptr));
    for (int i = 0; i < 100; ++i) ASSERT_EQ(v.m_data[i], 0);
    EXPECT_EQ(v.m_len, 0);
    EXPECT_EQ(v.p8u, v.m_data);
}

TEST(KmVector, BlockIsTrackedWithTheVectorAsItsOwner) {
    kmVector v(272);
    ASSERT_TRUE(v.createVector(128, 0));
    int size = 0;
    void *owner = nullptr;
    ASSERT_TRUE(rkMallocInfo(v.m_data, &size, &owner));
    EXPECT_EQ(size, 256);
    EXPECT_EQ(owner, static_cast<rkObject *>(&v));
}

TEST(KmVector, BlockMayHaveAnotherOwner) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(8, 0, MEM_OBJECT_IS_SUBOBJECT));
    void *owner = nullptr;
    ASSERT_TRUE(rkMallocInfo(v.m_data, nullptr, &owner));
    EXPECT_EQ(owner, MEM_OBJECT_IS_SUBOBJECT);
}

TEST(KmVector, NegativeAlignCountsBytesOrElementsOfTheSetting) {
    rkSetVectorAlign(3);
    kmVector bytes(272), elements(272);
    rkSetAlignSrc(false);
    ASSERT_TRUE(bytes.createVector(8, -1));
    rkSetAlignByByte(false);
    ASSERT_TRUE(elements.createVector(8, -7));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(bytes.m_data) % 64, 3u);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(elements.m_data) % 64, 6u);
    rkSetVectorAlign(0);
}

TEST(KmVector, AlignOfTheExtendedFormHasNoEffect) {
    kmVector v(8);
    ASSERT_TRUE(v.createVectorExt(8, 5, SetValue, 9.0, 0.0));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(v.m_data) % 64, 0u);
    EXPECT_EQ(v.p8u[7], 9);
}

TEST(KmVector, DestructorFreesTheBlock) {
    void *block = nullptr;
    {
        kmVector v(8);
        ASSERT_TRUE(v.createVector(8, 0));
        block = v.m_data;
        EXPECT_TRUE(rkMallocInfo(block, nullptr, nullptr));
    }
    EXPECT_FALSE(rkMallocInfo(block, nullptr, nullptr));
}

// The process forgets all blocks before file statics of tests are destroyed.
TEST(KmVector, DestructionAfterAllBlocksWereForgottenIsHarmless) {
    void *leaked = nullptr;
    {
        kmVector v(8);
        ASSERT_TRUE(v.createVector(8, 0));
        Address record;
        ASSERT_TRUE(pAddressList->find(v.m_data, record));
        leaked = record.address;
        AddressList *list = pAddressList;
        rkFreeAll();
        delete list;
    }
    EXPECT_FALSE(rkMallocInfo(leaked, nullptr, nullptr));
    rk_free(leaked);
}

// ---- elements and limits -----------------------------------------------------

TEST(KmVector, ItemIsTheSizeOfTheFirstType) {
    EXPECT_EQ(kmVector::item("_8u_"), 1);
    EXPECT_EQ(kmVector::item("_16sc_C3"), 4);
    EXPECT_EQ(kmVector::item("keliX_32f8u"), 4);
    EXPECT_EQ(kmVector::item("_64fc_"), 16);
    EXPECT_EQ(kmVector::item("_1u_"), 1);
    EXPECT_EQ(kmVector::item("_undef_"), 0);
}

TEST(KmVector, SizeIsInBytes) {
    kmVector v(1312);
    ASSERT_TRUE(v.createVector(5, 0));
    EXPECT_EQ(v.size(), 40);
    EXPECT_EQ(v.objectSize(), 40);
    EXPECT_EQ(v.getDataConst(), v.m_data);
}

TEST(KmVector, InfoTellsTypeAndLength) {
    kmVector v(272);
    ASSERT_TRUE(v.createVector(128, 0));
    EXPECT_EQ(str(v.objectInfo()), "Vector 16s len=128");
}

TEST(KmVector, PointerAtCountsElements) {
    kmVector v(1296);
    EXPECT_EQ(v.getPointerAt(0), nullptr);
    ASSERT_TRUE(v.createVector(8, 0));
    EXPECT_EQ(v.getPointerAt(3), v.m_data + 12);
    kmVector const &constant = v;
    EXPECT_EQ(constant.getPointerAt(3), v.m_data + 12);
}

TEST(KmVector, LimitsOfTheTypes) {
    const double f = std::sqrt(3.4028234663852886e38) / 2.0, d = std::sqrt(1.7976931348623157e308) / 2.0;
    const double two63 = 9223372036854775808.0;
    struct {
        kmType type;
        double low, high;
    } rows[] = {{8, 0, 255},
                {16, 0, 65535},
                {32, 0, 4294967295.0},
                {64, 0, two63},
                {264, -128, 127},
                {272, -32768, 32767},
                {288, -2147483648.0, 2147483647},
                {320, -two63, two63},
                {544, -f, f},
                {576, -d, d}};
    for (auto const &row : rows) {
        EXPECT_EQ(kmVector::getMinValue(row.type), row.low) << row.type;
        EXPECT_EQ(kmVector::getMaxValue(row.type), row.high) << row.type;
        kmVector v(row.type);
        EXPECT_EQ(v.minValue(), row.low);
        EXPECT_EQ(v.maxValue(), row.high);
    }
}

TEST(KmVector, ComplexTypesHaveTheLimitsOfTheirComponents) {
    EXPECT_EQ(kmVector(1040).maxValue(), 65535.0);
    EXPECT_EQ(kmVector(1296).minValue(), -32768.0);
    EXPECT_EQ(kmVector::getMaxValue(1288), 127.0);
}

TEST(KmVector, UndefinedTypesHaveFixedLimits) {
    EXPECT_EQ(kmVector::getMinValue(0), 0.0);
    EXPECT_EQ(kmVector::getMaxValue(0), 1.0);
    EXPECT_EQ(kmVector().minValue(), 1.0);
    EXPECT_EQ(kmVector().maxValue(), 1.0);
}

TEST(KmVector, SmallestMagnitudes) {
    EXPECT_EQ(kmVector::getMinAbsValue(8), 1.0);
    EXPECT_EQ(kmVector::getMinAbsValue(320), 1.0);
    EXPECT_EQ(kmVector::getMinAbsValue(544), 1.1754943508222875e-38);
    EXPECT_EQ(kmVector::getMinAbsValue(576), 2.2250738585072014e-308);
    EXPECT_EQ(kmVector::getMinAbsValue(1568), 1.1754943508222875e-38);
}

TEST(KmVector, ReadOfARealElementLeavesTheImaginaryPart) {
    kmVector v(272);
    ASSERT_TRUE(v.createVector(4, SetValue, -5.0, 0.0));
    double re = 77.0, im = 77.0;
    v.getIndex(2, re, im);
    EXPECT_EQ(re, -5.0);
    EXPECT_EQ(im, 77.0);
    EXPECT_EQ(v.getIndex(3), -5.0);
}

TEST(KmVector, ReadOfAComplexElementGivesBothParts) {
    kmVector v(1568);
    ASSERT_TRUE(v.createVector(4, SetValue, 1.5, -2.5));
    double re = 0.0, im = 0.0;
    v.getIndex(2, re, im);
    EXPECT_EQ(re, 1.5);
    EXPECT_EQ(im, -2.5);
}

TEST(KmVector, ReadWithoutTypeOrBlockLeavesItsResults) {
    double re = 7.0, im = 8.0;
    kmVector(8).getIndex(0, re, im);
    unsigned char byte = 3;
    kmVector().getElement(&byte, re, im);
    EXPECT_EQ(re, 7.0);
    EXPECT_EQ(im, 8.0);
}

// ---- the reserved copy -------------------------------------------------------

TEST(KmVector, ReservedCopyBringsTheDataBack) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(16, SetValue, 5.0, 0.0));
    ASSERT_TRUE(v.reserveCopy());
    EXPECT_EQ(v.getReservedData(), v.m_reserved);
    memset(v.m_data, 0xee, 16);
    ASSERT_TRUE(v.setReservedCopy());
    for (int i = 0; i < 16; ++i) EXPECT_EQ(v.p8u[i], 5);
}

TEST(KmVector, ReservedCopyNeedsABlock) {
    kmVector v(8);
    EXPECT_FALSE(v.reserveCopy());
    EXPECT_FALSE(v.setReservedCopy());
    ASSERT_TRUE(v.createVector(4, 0));
    EXPECT_FALSE(v.setReservedCopy());
}

TEST(KmVector, ReservedCopyOfABlockWithoutLengthFails) {
    kmVector v(8);
    ASSERT_TRUE(v.allocateVector(4, 0, nullptr));
    EXPECT_FALSE(v.reserveCopy());
}

TEST(KmVector, ReservedCopyIsNoTrackedBlock) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(16, 0));
    int vectors = rkTest::m_vectorNum;
    ASSERT_TRUE(v.reserveCopy());
    EXPECT_EQ(pAddressList->size(), 1);
    EXPECT_EQ(rkTest::m_vectorNum, vectors);
}

TEST(KmVector, ReservedCopyGoesWithTheBlock) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(16, 0));
    ASSERT_TRUE(v.reserveCopy());
    v.deleteVector();
    EXPECT_EQ(v.m_reserved, nullptr);
}

TEST(KmVector, AllVectorsAreResetTogether) {
    kmVector a(8), b(272);
    ASSERT_TRUE(a.createVector(4, SetValue, 1.0, 0.0));
    ASSERT_TRUE(b.createVector(4, SetValue, 2.0, 0.0));
    EXPECT_EQ(rkTest::reserveAllVectors(), 2);
    a.setConst(99.0, 0.0);
    b.setConst(99.0, 0.0);
    EXPECT_EQ(rkTest::resetAllVectors(), 2);
    EXPECT_EQ(a.getIndex(3), 1.0);
    EXPECT_EQ(b.getIndex(3), 2.0);
}

// ---- texts -------------------------------------------------------------------

TEST(KmVector, TextsOfRealTypesHaveFixedColumns) {
    struct {
        kmType type;
        char const *text;
    } rows[] = {{8, "   7   7"},
                {16, "     7     7"},
                {32, "          7          7"},
                {64, "                       7                       7"},
                {264, "    7    7"},
                {272, "      7      7"},
                {288, "           7           7"},
                {320, "                       7                       7"},
                {544, "             7             7"},
                {576, "                   7                   7"}};
    for (auto const &row : rows) {
        kmVector v(row.type);
        ASSERT_TRUE(v.createVector(2, SetValue, 7.0, 0.0));
        EXPECT_EQ(str(v.getString()), row.text);
    }
}

TEST(KmVector, TextsOfComplexTypesArePairs) {
    struct {
        kmType type;
        char const *text;
    } rows[] = {{1288, " (    7,    3)"},
                {1296, " (      7,      3)"},
                {1040, " (     7,     3)"},
                {1312, " (           7,           3)"},
                {1344, " (                       7,                       3)"},
                {1568, " (             7,             3)"},
                {1600, " (                   7,                   3)"}};
    for (auto const &row : rows) {
        kmVector v(row.type);
        ASSERT_TRUE(v.createVector(1, SetValue, 7.0, 3.0));
        EXPECT_EQ(str(v.getString()), row.text);
    }
}

TEST(KmVector, TextsShowSignsAndLargeValues) {
    kmVector u64(64), s64(320), f(544), d(576);
    ASSERT_TRUE(u64.createVector(1, SetValue, 9223372036854775808.0, 0.0));
    ASSERT_TRUE(s64.createVector(1, SetValue, -5000000000.0, 0.0));
    ASSERT_TRUE(f.createVector(1, SetValue, -1.0 / 3.0, 0.0));
    ASSERT_TRUE(d.createVector(1, SetValue, -1.0 / 3.0, 0.0));
    EXPECT_EQ(str(u64.getString()), "     9223372036854775808");
    EXPECT_EQ(str(s64.getString()), "             -5000000000");
    EXPECT_EQ(str(f.getString()), "     -0.333333");
    EXPECT_EQ(str(d.getString()), "     -0.333333333333");
}

TEST(KmVector, NothingToPrintIsEmpty) {
    unsigned char byte = 1;
    EXPECT_EQ(str(kmVector(8).getString()), "");
    EXPECT_EQ(str(kmVector::getDataString(8, &byte, 0)), "");
    EXPECT_EQ(str(kmVector::getDataString(8, nullptr, 1)), "");
    EXPECT_EQ(str(kmVector::getDataString(0, &byte, 1)), "");
}

TEST(KmVector, ByteTextIsHexadecimal) {
    unsigned char bytes[] = {0, 10, 255};
    EXPECT_EQ(str(kmVector::getByteString(bytes, 3)), " 00 0A FF");
    EXPECT_EQ(str(kmVector::getByteString(nullptr, 3)), "");
}

TEST(KmVector, LongTextIsComplete) {
    kmVector v(272);
    ASSERT_TRUE(v.createVector(200000, SetValue, -12345.0, 0.0));
    rkString text = v.getString();
    ASSERT_EQ(text.length(), 7 * 200000);
    EXPECT_EQ(str(text.substr(7 * 199999)), " -12345");
}

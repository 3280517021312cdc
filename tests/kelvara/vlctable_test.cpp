// vlctable_test.cpp - tables for decoding variable-length codes, read by the rules of their declaration.

#include "kelvc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using List = std::vector<Kel32s>;

struct Found {
    int length = 0; // 0: no code
    int value = 0;
    bool operator==(const Found &other) const { return length == other.length && value == other.value; }
};

[[maybe_unused]] void PrintTo(const Found &found, std::ostream *stream) {
    *stream << found.value << " in " << found.length << " bits";
}

int number(const std::string &bits) {
    return bits.empty() ? 0 : std::stoi(bits, nullptr, 2);
}

// The code that a text of at least 20 zeros and ones begins with.
Found lookUp(const Kel32s *table, const std::string &bits) {
    const size_t n = static_cast<size_t>(table[0]);
    Kel32s entry = table[1 + number(bits.substr(0, n))];
    if (entry & 128) {
        const size_t more = entry & 127;
        entry = table[(entry >> 8) + number(bits.substr(n, more))];
    }
    return entry == 0 ? Found() : Found{entry & 255, entry >> 8};
}

// Both values of every bit behind a code.
void expectCode(const Kel32s *table, const std::string &code, int value) {
    for (char rest : {'0', '1'}) {
        EXPECT_EQ((Found{static_cast<int>(code.size()), value}), lookUp(table, code + std::string(20, rest)))
            << code;
    }
}

KelStatus statusOf(const List &list) {
    Kel32s *table = nullptr;
    const KelStatus status = keliHuffmanTableInitAlloc_32s(list.data(), &table);
    EXPECT_EQ(status == kelStsNoErr, table != nullptr) << "written on success only";
    keliHuffmanTableFree_32s(table);
    return status;
}

KelStatus runLevelStatusOf(const List &list) {
    Kel32s *table = nullptr;
    const KelStatus status = keliHuffmanRunLevelTableInitAlloc_32s(list.data(), &table);
    EXPECT_EQ(status == kelStsNoErr, table != nullptr);
    keliHuffmanTableFree_32s(table);
    return status;
}

KelStatus dvStatusOf(const std::vector<Kel32u> &first, const std::vector<Kel32u> &second) {
    Kel32u *table = nullptr;
    const KelStatus status = keliInitAllocHuffmanTable_DV_32u(first.data(), second.data(), &table);
    EXPECT_EQ(status == kelStsNoErr, table != nullptr);
    keliFreeHuffmanTable_DV_32u(table);
    return status;
}

int runLevel(int run, int level) {
    return (run << 16) + (level & 65535);
}

} // namespace

TEST(KelvaraVlcTable, ShortCodesAreFoundInOneStep) {
    const List list = {1, 0b0, -7, 2, 0b10, 32767, 3, 0b110, -32768, 0};
    Kel32s *table = nullptr;
    ASSERT_EQ(kelStsNoErr, keliHuffmanTableInitAlloc_32s(list.data(), &table));
    EXPECT_EQ(3, table[0]) << "no more bits than the longest code";
    expectCode(table, "0", -7);
    expectCode(table, "10", 32767);
    expectCode(table, "110", -32768);
    EXPECT_EQ(Found(), lookUp(table, "111" + std::string(20, '0')));
    keliHuffmanTableFree_32s(table);
}

TEST(KelvaraVlcTable, LongCodesAreFoundInTwoSteps) {
    const List list = {8,  0b00000001,     1,  9,  0b000000001,  2, 12, 0b000000000111, 3,
                       20, 0b000000000001, -4, 10, 0b1111111110, 5, 10, 0b1111111111,   6,
                       0};
    Kel32s *table = nullptr;
    ASSERT_EQ(kelStsNoErr, keliHuffmanTableInitAlloc_32s(list.data(), &table));
    EXPECT_EQ(8, table[0]);
    expectCode(table, "00000001", 1);
    expectCode(table, "000000001", 2);
    expectCode(table, "000000000111", 3);
    expectCode(table, "00000000000000000001", -4);
    expectCode(table, "1111111110", 5);
    expectCode(table, "1111111111", 6);
    EXPECT_EQ(Found(), lookUp(table, std::string(20, '0')));
    EXPECT_EQ(Found(), lookUp(table, "0000000000011111111111"));
    EXPECT_EQ(Found(), lookUp(table, "0100000000000000000000"));
    keliHuffmanTableFree_32s(table);
}

TEST(KelvaraVlcTable, RunsAndLevelsShareTheValue) {
    const List list = {2, 0b10, 127, -2047, 2, 0b11, 0, 32767, 17, 0b1, 31, -1, 0};
    Kel32s *table = nullptr;
    ASSERT_EQ(kelStsNoErr, keliHuffmanRunLevelTableInitAlloc_32s(list.data(), &table));
    expectCode(table, "10", runLevel(127, -2047));
    expectCode(table, "11", runLevel(0, 32767));
    expectCode(table, "00000000000000001", runLevel(31, -1));
    keliHuffmanTableFree_32s(table);
}

TEST(KelvaraVlcTable, ACodeThatBeginsAnotherIsRefused) {
    EXPECT_EQ(kelStsBitStreamErr, statusOf({1, 0b1, 1, 1, 0b1, 2, 0})) << "the same twice";
    EXPECT_EQ(kelStsBitStreamErr, statusOf({1, 0b1, 1, 3, 0b101, 2, 0}));
    EXPECT_EQ(kelStsBitStreamErr, statusOf({3, 0b101, 1, 1, 0b1, 2, 0}));
    EXPECT_EQ(kelStsBitStreamErr, statusOf({4, 0b1010, 1, 12, 0b101011111111, 2, 0}));
    EXPECT_EQ(kelStsBitStreamErr, statusOf({12, 0b101011111111, 1, 4, 0b1010, 2, 0}));
    EXPECT_EQ(kelStsBitStreamErr, statusOf({10, 0b1010111111, 1, 12, 0b101011111111, 2, 0}));
    EXPECT_EQ(kelStsBitStreamErr, statusOf({12, 0b101011111111, 1, 10, 0b1010111111, 2, 0}));
}

TEST(KelvaraVlcTable, NumbersOutOfRangeAreRefused) {
    EXPECT_EQ(kelStsNoErr, statusOf({20, 0xfffff, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({21, 0, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({-1, 0, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({1 << 30, 0, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({2, 4, 1, 0})) << "a code of three bits";
    EXPECT_EQ(kelStsRangeErr, statusOf({2, -1, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({2, 1, 32768, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({2, 1, -32769, 0}));
    EXPECT_EQ(kelStsRangeErr, statusOf({0})) << "no code";
    EXPECT_EQ(kelStsNoErr, runLevelStatusOf({2, 1, 127, -32768, 0}));
    EXPECT_EQ(kelStsRangeErr, runLevelStatusOf({2, 1, 128, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, runLevelStatusOf({2, 1, -1, 1, 0}));
    EXPECT_EQ(kelStsRangeErr, runLevelStatusOf({2, 1, 1, 32768, 0}));
}

TEST(KelvaraVlcTable, NullIsRefused) {
    const List list = {1, 0, 1, 0};
    Kel32s *table = nullptr;
    EXPECT_EQ(kelStsNullPtrErr, keliHuffmanTableInitAlloc_32s(nullptr, &table));
    EXPECT_EQ(kelStsNullPtrErr, keliHuffmanTableInitAlloc_32s(list.data(), nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliHuffmanRunLevelTableInitAlloc_32s(nullptr, &table));
    EXPECT_EQ(kelStsNullPtrErr, keliHuffmanRunLevelTableInitAlloc_32s(list.data(), nullptr));
    EXPECT_EQ(nullptr, table);
    keliHuffmanTableFree_32s(nullptr);
    keliFreeHuffmanTable_DV_32u(nullptr);
}

// ---- DV --------------------------------------------------------------------------------

TEST(KelvaraVlcTable, DvCodesOfAmplitudesHaveASign) {
    const Kel32u first[] = {0b100u << 16 | 3 << 8 | 200, 0b101u << 16 | 127 << 8, 0};
    const Kel32u second[] = {0b1110000111u << 16 | 61 << 8, 0};
    Kel32u *table = nullptr;
    ASSERT_EQ(kelStsNoErr, keliInitAllocHuffmanTable_DV_32u(first, second, &table));
    const auto entries = reinterpret_cast<const Kel32s *>(table);
    expectCode(entries, "000", runLevel(3, 200));
    expectCode(entries, "001", runLevel(3, -200));
    expectCode(entries, "01", runLevel(127, 0));
    expectCode(entries, "110000111", runLevel(61, 0));
    keliFreeHuffmanTable_DV_32u(table);
}

TEST(KelvaraVlcTable, BadDvCodesAreRefused) {
    const Kel32u good = 0b10u << 16 | 1;
    EXPECT_EQ(kelStsNoErr, dvStatusOf({good, 0}, {0}));
    EXPECT_EQ(kelStsNoErr, dvStatusOf({0}, {good, 0}));
    EXPECT_EQ(kelStsRangeErr, dvStatusOf({0}, {0})) << "no code";
    EXPECT_EQ(kelStsRangeErr, dvStatusOf({1u << 16 | 1, 0}, {0})) << "a marker alone";
    EXPECT_EQ(kelStsRangeErr, dvStatusOf({5, 0}, {0})) << "no marker";
    EXPECT_EQ(kelStsRangeErr, dvStatusOf({0b10u << 16 | 128 << 8, 0}, {0}));
    EXPECT_EQ(kelStsBitStreamErr, dvStatusOf({good, 0}, {good, 0}));
    Kel32u *table = nullptr;
    EXPECT_EQ(kelStsNullPtrErr, keliInitAllocHuffmanTable_DV_32u(nullptr, &good, &table));
    EXPECT_EQ(kelStsNullPtrErr, keliInitAllocHuffmanTable_DV_32u(&good, nullptr, &table));
    EXPECT_EQ(kelStsNullPtrErr, keliInitAllocHuffmanTable_DV_32u(&good, &good, nullptr));
    EXPECT_EQ(nullptr, table);
}

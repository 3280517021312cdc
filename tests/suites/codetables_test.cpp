// codetables_test.cpp - every code of the MPEG-2 and DV tables, against the codes as text.

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "dvtables.h"
#include "mpeg2tables.h"

namespace {

using Words = std::vector<std::string>;

Words words(std::string const &text) {
    std::istringstream stream(text);
    Words result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

// ---- the codes of ISO/IEC 13818-2 Annex B ------------------------------------------------

// Table B-1, increments 1 to 33 and the escape.
char const *const increments =
    "1 011 010 0011 0010 00011 00010 0000111 0000110 00001011 00001010 00001001 00001000 "
    "00000111 00000110 0000010111 0000010110 0000010101 0000010100 0000010011 0000010010 "
    "00000100011 00000100010 00000100001 00000100000 00000011111 00000011110 00000011101 "
    "00000011100 00000011011 00000011010 00000011001 00000011000 00000001000";

// Table B-9, 0 to 63.
char const *const patterns =
    "000000001 01011 01001 001101 1101 0010111 0010011 00011111 1100 0010110 0010010 "
    "00011110 10011 00011011 00010111 00010011 1011 0010101 0010001 00011101 10001 00011001 "
    "00010101 00010001 001111 00001111 00001101 000000011 01111 00001011 00000111 000000111 "
    "1010 0010100 0010000 00011100 001110 00001110 00001100 000000010 10000 00011000 "
    "00010100 00010000 01110 00001010 00000110 000000110 10010 00011010 00010110 00010010 "
    "01101 00001001 00000101 000000101 01100 00001000 00000100 000000100 111 01010 01000 "
    "001100";

// Table B-10, 0 without a sign, then 1 to 16 with theirs.
char const *const motions =
    "1 010 0010 00010 0000110 00001010 00001000 00000110 0000010110 0000010100 0000010010 "
    "00000100010 00000100000 00000011110 00000011100 00000011010 00000011000";

// Table B-12, 0 to 11.
char const *const lumaSizes = "100 00 01 101 110 1110 11110 111110 1111110 11111110 111111110 111111111";

// Table B-13, 0 to 11.
char const *const chromaSizes =
    "00 01 10 110 1110 11110 111110 1111110 11111110 111111110 1111111110 1111111111";

// Table B-14 without signs: a line for each run from 0 on, levels from 1 on.
const std::vector<Words> tableB14 = {
    words("11 0100 00101 0000110 00100110 00100001 0000001010 000000011101 000000011000 "
          "000000010011 000000010000 0000000011010 0000000011001 0000000011000 0000000010111 "
          "00000000011111 00000000011110 00000000011101 00000000011100 00000000011011 "
          "00000000011010 00000000011001 00000000011000 00000000010111 00000000010110 "
          "00000000010101 00000000010100 00000000010011 00000000010010 00000000010001 "
          "00000000010000 000000000011000 000000000010111 000000000010110 000000000010101 "
          "000000000010100 000000000010011 000000000010010 000000000010001 000000000010000"),
    words("011 000110 00100101 0000001100 000000011011 0000000010110 0000000010101 000000000011111 "
          "000000000011110 000000000011101 000000000011100 000000000011011 000000000011010 "
          "000000000011001 0000000000010011 0000000000010010 0000000000010001 0000000000010000"),
    words("0101 0000100 0000001011 000000010100 0000000010100"),
    words("00111 00100100 000000011100 0000000010011"),
    words("00110 0000001111 000000010010"),
    words("000111 0000001001 0000000010010"),
    words("000101 000000011110 0000000000010100"),
    words("000100 000000010101"),
    words("0000111 000000010001"),
    words("0000101 0000000010001"),
    words("00100111 0000000010000"),
    words("00100011 0000000000011010"),
    words("00100010 0000000000011001"),
    words("00100000 0000000000011000"),
    words("0000001110 0000000000010111"),
    words("0000001101 0000000000010110"),
    words("0000001000 0000000000010101"),
    words("000000011111"),
    words("000000011010"),
    words("000000011001"),
    words("000000010111"),
    words("000000010110"),
    words("0000000011111"),
    words("0000000011110"),
    words("0000000011101"),
    words("0000000011100"),
    words("0000000011011"),
    words("0000000000011111"),
    words("0000000000011110"),
    words("0000000000011101"),
    words("0000000000011100"),
    words("0000000000011011"),
};

// Table B-15 without signs: a line for each run from 0 on, levels from 1 on.
const std::vector<Words> tableB15 = {
    words("10 110 0111 11100 11101 000101 000100 1111011 1111100 00100011 00100010 11111010 "
          "11111011 11111110 11111111 00000000011111 00000000011110 00000000011101 00000000011100 "
          "00000000011011 00000000011010 00000000011001 00000000011000 00000000010111 "
          "00000000010110 00000000010101 00000000010100 00000000010011 00000000010010 "
          "00000000010001 00000000010000 000000000011000 000000000010111 000000000010110 "
          "000000000010101 000000000010100 000000000010011 000000000010010 000000000010001 "
          "000000000010000"),
    words("010 00110 1111001 00100111 00100000 0000000010110 0000000010101 000000000011111 "
          "000000000011110 000000000011101 000000000011100 000000000011011 000000000011010 "
          "000000000011001 0000000000010011 0000000000010010 0000000000010001 0000000000010000"),
    words("00101 0000111 11111100 0000001100 0000000010100"),
    words("00111 00100110 000000011100 0000000010011"),
    words("000110 11111101 000000010010"),
    words("000111 000000100 0000000010010"),
    words("0000110 000000011110 0000000000010100"),
    words("0000100 000000010101"),
    words("0000101 000000010001"),
    words("1111000 0000000010001"),
    words("1111010 0000000010000"),
    words("00100001 0000000000011010"),
    words("00100101 0000000000011001"),
    words("00100100 0000000000011000"),
    words("000000101 0000000000010111"),
    words("000000111 0000000000010110"),
    words("0000001101 0000000000010101"),
    words("000000011111"),
    words("000000011010"),
    words("000000011001"),
    words("000000010111"),
    words("000000010110"),
    words("0000000011111"),
    words("0000000011110"),
    words("0000000011101"),
    words("0000000011100"),
    words("0000000011011"),
    words("0000000000011111"),
    words("0000000000011110"),
    words("0000000000011101"),
    words("0000000000011100"),
    words("0000000000011011"),
};

// ---- the codes of SMPTE 314M and IEC 61834-2 ---------------------------------------------------

// DV without signs: a line for each run from 0 on, amplitudes from 1 on, to 22 for run 0.
const std::vector<Words> amplitudes = {
    words("00 010 1000 1001 10110 10111 110010 110011 1101101 1101110 1101111 11101010 11101011 "
          "11101100 11101101 11101110 11101111 111101011 111101100 111101101 111101110 111101111"),
    words("0111 10101 1101011 1101100 11100111 11101000 11101001 111101010 1111100100 1111100101 "
          "1111100110 11111010011 11111010100 11111010101 111110111101 111110111110 111110111111"),
    words("10100 1101010 11100110 111101000 111101001 1111100011 111110111000 111110111001 "
          "111110111010 111110111011 111110111100"),
    words("110000 11100100 111100110 1111100001 1111100010 11111010010 111110110111"),
    words("110001 11100101 111100111 11111010001 111110110110"),
    words("1101000 111100100 1111100000"),
    words("1101001 111100101 11111010000"),
    words("11100000 111110110000 111110110100"),
    words("11100001 111110110001 111110110101"),
    words("11100010 111110110010"),
    words("11100011 111110110011"),
    words("111100000"),
    words("111100001"),
    words("111100010"),
    words("111100011"),
};

// DV, amplitude 0 with runs 0 to 5.
char const *const dvRuns = "11111001110 11111001111 111110101100 111110101101 111110101110 111110101111";

// ---- how the tables have them ----------------------------------------------------------------

std::string bitsOf(int length, int code) {
    std::string bits;
    for (int i = length - 1; i >= 0; --i) bits += code >> i & 1 ? '1' : '0';
    return bits;
}

std::string line(std::string const &bits, int first, int second = 0) {
    return bits + " " + std::to_string(first) + " " + std::to_string(second);
}

// A line of code and what it stands for; the order of a table is free.
using Lines = std::multiset<std::string>;

Lines valuesOf(int const *table) {
    Lines lines;
    for (; table[0] != 0; table += 3) lines.insert(line(bitsOf(table[0], table[1]), table[2]));
    return lines;
}

Lines runLevelsOf(int const *table) {
    Lines lines;
    for (; table[0] != 0; table += 4) lines.insert(line(bitsOf(table[0], table[1]), table[2], table[3]));
    return lines;
}

Lines dvLines() {
    Lines lines;
    for (unsigned int const *table : {dvTable1, dvTable2}) {
        for (; *table != 0; ++table) {
            int length = 15; // below the 1 in front
            while (*table >> 16 >> length == 0) --length;
            lines.insert(line(bitsOf(length, *table >> 16), *table >> 8 & 255, *table & 255));
        }
    }
    return lines;
}

Lines counted(char const *codes, int first) {
    Lines lines;
    for (std::string const &code : words(codes)) lines.insert(line(code, first++));
    return lines;
}

// Codes with flags: quant, motion forward, motion backward, pattern, intra.
Lines flagged(Words const &codesAndFlags) {
    Lines lines;
    for (size_t i = 0; i < codesAndFlags.size(); i += 2)
        lines.insert(line(codesAndFlags[i], std::stoi(codesAndFlags[i + 1], nullptr, 2)));
    return lines;
}

Lines withSigns(std::vector<Words> const &runs) {
    Lines lines;
    for (size_t run = 0; run < runs.size(); ++run) {
        for (size_t i = 0; i < runs[run].size(); ++i) {
            const int level = static_cast<int>(i) + 1;
            lines.insert(line(runs[run][i] + "0", static_cast<int>(run), level));
            lines.insert(line(runs[run][i] + "1", static_cast<int>(run), -level));
        }
    }
    return lines;
}

} // namespace

TEST(CodeTables, MacroblockIncrements) {
    EXPECT_EQ(valuesOf(MBAdressing), counted(increments, 1));
}

TEST(CodeTables, MacroblockTypes) {
    EXPECT_EQ(valuesOf(IMBType), flagged(words("1 00001 01 10001")));
    EXPECT_EQ(valuesOf(PMBType), flagged(words("1 01010 01 00010 001 01000 00011 00001 00010 11010 "
                                               "00001 10010 000001 10001")));
    EXPECT_EQ(valuesOf(BMBType), flagged(words("11 01110 10 01100 011 00110 010 00100 0011 01010 0010 01000 "
                                               "00011 00001 00010 11110 000011 11010 000010 10110 "
                                               "000001 10001")));
}

TEST(CodeTables, MacroblockPatterns) {
    EXPECT_EQ(valuesOf(MBPattern), counted(patterns, 0));
}

// The last bit of a code is its sign.
TEST(CodeTables, MotionCodes) {
    Lines expected = counted(motions, 0);
    int value = 0;
    for (std::string code : words(motions)) {
        if (value > 0) {
            ASSERT_EQ(code.back(), '0');
            code.back() = '1';
            expected.insert(line(code, -value));
        }
        ++value;
    }
    EXPECT_EQ(valuesOf(MotionVector), expected);
}

TEST(CodeTables, SizesOfDc) {
    EXPECT_EQ(valuesOf(dct_dc_size_luma), counted(lumaSizes, 0));
    EXPECT_EQ(valuesOf(dct_dc_size_chroma), counted(chromaSizes, 0));
}

TEST(CodeTables, CoefficientsOfTableZero) {
    Lines next = withSigns(tableB14);
    next.insert(line("000001", mpeg2Escape));
    Lines first = next;
    next.insert(line("10", mpeg2EndOfBlock));
    EXPECT_EQ(runLevelsOf(dct_coeff_next_RL), next);
    first.erase(line("110", 0, 1));
    first.erase(line("111", 0, -1));
    first.insert(line("10", 0, 1));
    first.insert(line("11", 0, -1));
    EXPECT_EQ(runLevelsOf(dct_coeff_first_RL), first);
}

TEST(CodeTables, CoefficientsOfTableOne) {
    Lines expected = withSigns(tableB15);
    expected.insert(line("000001", mpeg2Escape));
    expected.insert(line("0110", mpeg2EndOfBlock));
    EXPECT_EQ(runLevelsOf(Table15), expected);
}

// Long codes hold the run or the amplitude as a number.
TEST(CodeTables, CoefficientsOfDv) {
    Lines expected = counted(dvRuns, 0);
    expected.insert(line("0110", 127));
    for (int run = 6; run <= 61; ++run) expected.insert(line("1111110" + bitsOf(6, run), run));
    for (int run = 0; run < static_cast<int>(amplitudes.size()); ++run) {
        int amplitude = 0;
        for (std::string const &code : amplitudes[run]) expected.insert(line(code, run, ++amplitude));
    }
    for (int amplitude = 23; amplitude <= 255; ++amplitude)
        expected.insert(line("1111111" + bitsOf(8, amplitude), 0, amplitude));
    EXPECT_EQ(dvLines(), expected);
}

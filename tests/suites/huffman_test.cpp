// huffman_test.cpp - the tests of code tables, which only this program registers, and the tables themselves.

#include "huffman.h"

#include "../unit/tempdir.h"
#include "suitetest.h"

// clang-format off
KM_REG_I(CHuffman,    keliHuffmanTableInitAlloc_32s,         CHuffman::freeTable(),    CHuffman::pSrcTbl, &CHuffman::pDecodeTable);
KM_REG_I(CHuffman_RL, keliHuffmanRunLevelTableInitAlloc_32s, CHuffman_RL::freeTable(), CHuffman_RL::pSrcTbl, &CHuffman_RL::pDecodeTable);
KM_REG_I(CDVHuffman,  keliInitAllocHuffmanTable_DV_32u,      CDVHuffman::freeTable(),  dvTable1, dvTable2, &CDVHuffman::pDecodeTable);
// clang-format on

namespace {

using suite::Cells;
using suite::Expected;
using suite::findTest;
using suite::firstParm;

char const *const valueForm = "keliHuffmanTableInitAlloc_32s";
char const *const runLevelForm = "keliHuffmanRunLevelTableInitAlloc_32s";
char const *const dvForm = "keliInitAllocHuffmanTable_DV_32u";

const std::vector<Expected> tests = {
    Expected("CHuffman", valueForm, "codes", 34)
        .consumes()
        .rows({{"MBAdressing"}, {"MotionVector"}, {"IMBType"}, {"PMBType"}, {"BMBType"}, {"MBPattern"}})
        .divisors({34, 33, 2, 7, 15, 64}),
    Expected("CHuffman_RL", runLevelForm, "codes", 159)
        .consumes()
        .rows({{"dct_coeff_first_RL"}, {"dct_coeff_next_RL"}, {"Table15"}})
        .divisors({159, 160, 224}),
    Expected("CDVHuffman", dvForm, "codes", 378).consumes(),
};

class Huffman : public suite::SuiteTest {
protected:
    void TearDown() override { g_istrm.close(); }

    void ini(std::string const &text) {
        ASSERT_TRUE(g_istrm.setIniFile(m_dir.write("huffman.ini", text), false));
    }
    Cells tablesOf(char const *function) {
        Cells names;
        for (Cells const &row : run(function).rows) names.push_back(row[firstParm]);
        return names;
    }

    TempDir m_dir;
};

} // namespace

SUITE_TEST(Huffman, "huffman_test.cpp", tests);

// ---- the walk ---------------------------------------------------------------------------

TEST_F(Huffman, TheProgramRegistersNone) {
    for (rkTest *test : *pTestList) {
        if (str(test->m_file) == "huffman_test.cpp") continue;
        EXPECT_NE(str(test->m_info.m_name), "CHuffman_RL");
        EXPECT_NE(str(test->m_info.m_name), "CHuffman");
        EXPECT_NE(str(test->m_info.m_name), "CDVHuffman");
    }
}

TEST_F(Huffman, AKeySelectsTables) {
    ini("[kelVC]\n[Huffman]\nTable = BMBType,MotionVector\n[HuffmanRL]\nTable = Table15\n");
    EXPECT_EQ(tablesOf(valueForm), (Cells{"MotionVector", "BMBType"})) << "in the order of the class";
    EXPECT_EQ(tablesOf(runLevelForm), (Cells{"Table15"}));
}

TEST_F(Huffman, OnlyUnknownNamesSelectTheFirstTable) {
    ini("[kelVC]\n[Huffman]\nTable = Nothing,mbadressing,MBPattern2\n[HuffmanRL]\nTable = Table14\n");
    EXPECT_EQ(tablesOf(valueForm), (Cells{"MBAdressing"}));
    EXPECT_EQ(tablesOf(runLevelForm), (Cells{"dct_coeff_first_RL"}));
}

TEST_F(Huffman, UnknownNamesBesideAKnownOneArePassedOver) {
    ini("[kelVC]\n[Huffman]\nTable = Nothing,PMBType\n");
    EXPECT_EQ(tablesOf(valueForm), (Cells{"PMBType"}));
}

TEST_F(Huffman, RepeatsAreTheOuterLoop) {
    ini("[kelVC]\nRepeatCounter = 2\n[Huffman]\nTable = PMBType,IMBType\n[DVHuffman]\nRepeatCounter = 3\n");
    EXPECT_EQ(tablesOf(valueForm), (Cells{"IMBType", "PMBType", "IMBType", "PMBType"}));
    EXPECT_EQ(tablesOf(runLevelForm).size(), 6u);
    EXPECT_EQ(tablesOf(dvForm), (Cells{"-", "-", "-"}));
}

TEST_F(Huffman, NoRepeatsRunNothing) {
    ini("[kelVC]\nRepeatCounter = 0\n");
    for (Expected const &expected : tests) EXPECT_TRUE(tablesOf(expected.m_function.c_str()).empty());
}

TEST_F(Huffman, TheTableInHandIsFreedBehindEachSet) {
    suite::Sets sets(findTest(valueForm));
    for (int i = 0; i < 6; ++i) {
        ASSERT_TRUE(sets.next());
        EXPECT_EQ(CHuffman::pDecodeTable, nullptr);
        EXPECT_EQ(CHuffman::pSrcTbl, CHuffman::pSrcTable[i]);
        EXPECT_EQ(sets.call(), kelStsNoErr);
        EXPECT_NE(CHuffman::pDecodeTable, nullptr);
    }
    EXPECT_FALSE(sets.next());
    EXPECT_EQ(CHuffman::pDecodeTable, nullptr);
}

// ---- the tables --------------------------------------------------------------------------

namespace {

// What a table has: the library made a decoding table of it, so that no code begins another.
struct Census {
    int codes = 0;
    double space = 0; // of all codes, 1 for a full set
};

Census census(int const *table, int numbers, KelStatus (*init)(Kel32s const *, Kel32s **)) {
    Census result;
    for (int const *code = table; code[0] != 0; code += numbers) {
        ++result.codes;
        result.space += 1.0 / (1 << code[0]);
    }
    Kel32s *made = nullptr;
    EXPECT_EQ(init(table, &made), kelStsNoErr);
    keliHuffmanTableFree_32s(made);
    return result;
}

void expectValues(int const *table, int codes, double space) {
    Census found = census(table, 3, keliHuffmanTableInitAlloc_32s);
    EXPECT_EQ(found.codes, codes);
    EXPECT_EQ(found.space, space);
    std::set<int> values;
    for (int const *code = table; code[0] != 0; code += 3) values.insert(code[2]);
    EXPECT_EQ(static_cast<int>(values.size()), codes) << "no value twice";
}

void expectRunLevels(int const *table, int codes, double space) {
    Census found = census(table, 4, keliHuffmanRunLevelTableInitAlloc_32s);
    EXPECT_EQ(found.codes, codes);
    EXPECT_EQ(found.space, space);
    std::set<std::pair<int, int>> values;
    for (int const *code = table; code[0] != 0; code += 4) values.insert({code[2], code[3]});
    EXPECT_EQ(static_cast<int>(values.size()), codes);
    for (auto const &value : values) {
        EXPECT_EQ(values.count({value.first, -value.second}), 1u) << "both signs";
    }
}

// The code of a value as a text of zeros and ones.
std::string codeOf(int const *table, int value) {
    for (int const *code = table; code[0] != 0; code += 3) {
        if (code[2] != value) continue;
        std::string bits;
        for (int i = code[0] - 1; i >= 0; --i) bits += code[1] >> i & 1 ? '1' : '0';
        return bits;
    }
    return "none";
}

std::string codeOf(int const *table, int run, int level) {
    for (int const *code = table; code[0] != 0; code += 4) {
        const int one[] = {code[0], code[1], 0, 0};
        if (code[2] == run && code[3] == level) return codeOf(one, 0);
    }
    return "none";
}

} // namespace

// The numbers of codes and the code space of ISO/IEC 13818-2 Annex B.
TEST(Mpeg2Tables, AreCompleteAndFreeOfPrefixes) {
    expectValues(MBAdressing, 34, 2025 / 2048.0);
    expectValues(IMBType, 2, 3 / 4.0);
    expectValues(PMBType, 7, 63 / 64.0);
    expectValues(BMBType, 11, 63 / 64.0);
    expectValues(MBPattern, 64, 511 / 512.0);
    expectValues(MotionVector, 33, 253 / 256.0);
    expectValues(dct_dc_size_luma, 12, 1);
    expectValues(dct_dc_size_chroma, 12, 1);
    expectRunLevels(dct_coeff_first_RL, 223, 4095 / 4096.0);
    expectRunLevels(dct_coeff_next_RL, 224, 4095 / 4096.0);
    expectRunLevels(Table15, 224, 4087 / 4096.0);
}

TEST(Mpeg2Tables, HaveTheCodesOfTheStandard) {
    EXPECT_EQ(codeOf(MBAdressing, 1), "1");
    EXPECT_EQ(codeOf(MBAdressing, 33), "00000011000");
    EXPECT_EQ(codeOf(MBAdressing, 34), "00000001000") << "macroblock_escape";
    EXPECT_EQ(codeOf(IMBType, 0b10001), "01") << "quantiser, intra";
    EXPECT_EQ(codeOf(PMBType, 0b01000), "001") << "motion forward";
    EXPECT_EQ(codeOf(BMBType, 0b01110), "11") << "both directions, pattern";
    EXPECT_EQ(codeOf(MBPattern, 60), "111");
    EXPECT_EQ(codeOf(MotionVector, 0), "1");
    EXPECT_EQ(codeOf(MotionVector, -1), "011");
    EXPECT_EQ(codeOf(MotionVector, 16), "00000011000");
    EXPECT_EQ(codeOf(dct_dc_size_luma, 0), "100");
    EXPECT_EQ(codeOf(dct_dc_size_luma, 11), "111111111");
    EXPECT_EQ(codeOf(dct_dc_size_chroma, 0), "00");
    EXPECT_EQ(codeOf(dct_dc_size_chroma, 11), "1111111111");
    EXPECT_EQ(codeOf(dct_coeff_first_RL, 0, -1), "11");
    EXPECT_EQ(codeOf(dct_coeff_first_RL, mpeg2EndOfBlock, 0), "none");
    EXPECT_EQ(codeOf(dct_coeff_next_RL, 0, -1), "111");
    EXPECT_EQ(codeOf(dct_coeff_next_RL, mpeg2EndOfBlock, 0), "10");
    EXPECT_EQ(codeOf(dct_coeff_next_RL, mpeg2Escape, 0), "000001");
    EXPECT_EQ(codeOf(dct_coeff_next_RL, 31, 1), "00000000000110110");
    EXPECT_EQ(codeOf(Table15, mpeg2EndOfBlock, 0), "0110");
    EXPECT_EQ(codeOf(Table15, 0, 1), "100");
}

// The two tables of coefficients differ in codes, not in what they have a code for.
TEST(Mpeg2Tables, BothTablesOfCoefficientsHaveTheSameRunsAndLevels) {
    for (int const *code = dct_coeff_next_RL; code[0] != 0; code += 4)
        EXPECT_NE(codeOf(Table15, code[2], code[3]), "none") << code[2] << ", " << code[3];
}

// ---- DV ------------------------------------------------------------------------------------

namespace {

struct DvCode {
    std::string bits;
    int run, amplitude;
};

std::vector<DvCode> dvCodes() {
    std::vector<DvCode> codes;
    for (unsigned int const *table : {dvTable1, dvTable2}) {
        for (; *table != 0; ++table) {
            DvCode code = {"", static_cast<int>(*table >> 8 & 255), static_cast<int>(*table & 255)};
            for (unsigned int marked = *table >> 16; marked > 1; marked >>= 1)
                code.bits.insert(code.bits.begin(), marked & 1 ? '1' : '0');
            codes.push_back(code);
        }
    }
    return codes;
}

std::string dvCodeOf(int run, int amplitude) {
    for (DvCode const &code : dvCodes()) {
        if (code.run == run && code.amplitude == amplitude) return code.bits;
    }
    return "none";
}

} // namespace

TEST(DvTables, HaveTheSizesThatTheLibraryTakes) {
    EXPECT_EQ(sizeof dvTable1, 960u);
    EXPECT_EQ(sizeof dvTable2, 1984u);
    EXPECT_EQ(dvTable1[dvTable1Size - 1], 0u) << "ended within";
    EXPECT_EQ(dvTable2[dvTable2Size - 1], 0u);
}

TEST(DvTables, AreCompleteAndFreeOfPrefixes) {
    std::vector<DvCode> codes = dvCodes();
    EXPECT_EQ(codes.size(), 378u);
    double space = 0;
    for (DvCode const &code : codes) space += 1.0 / (1 << code.bits.size());
    EXPECT_EQ(space, 32713 / 32768.0) << "the standard leaves the rest unused";
    Kel32u *table = nullptr;
    EXPECT_EQ(keliInitAllocHuffmanTable_DV_32u(dvTable1, dvTable2, &table), kelStsNoErr);
    keliFreeHuffmanTable_DV_32u(table);
}

TEST(DvTables, HaveTheCodesOfTheStandard) {
    EXPECT_EQ(dvCodeOf(0, 1), "00");
    EXPECT_EQ(dvCodeOf(127, 0), "0110") << "end of block";
    EXPECT_EQ(dvCodeOf(1, 1), "0111");
    EXPECT_EQ(dvCodeOf(0, 0), "11111001110");
    for (int run = 6; run <= 61; ++run) {
        std::string bits = "1111110";
        for (int i = 5; i >= 0; --i) bits += run >> i & 1 ? '1' : '0';
        EXPECT_EQ(dvCodeOf(run, 0), bits);
    }
    for (int amplitude = 23; amplitude <= 255; ++amplitude) {
        std::string bits = "1111111";
        for (int i = 7; i >= 0; --i) bits += amplitude >> i & 1 ? '1' : '0';
        EXPECT_EQ(dvCodeOf(0, amplitude), bits);
    }
}

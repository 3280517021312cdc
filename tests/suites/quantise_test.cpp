// quantise_test.cpp - the suites of MPEG-2 quantisation and of what a DV coder does beside it.

#include "../unit/tempdir.h"
#include "kmvc.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Expected;
using suite::findTest;

Expected quantize(char const *function) {
    return Expected("CQuantize", function, "element", 64).blocks({64 * 4, 64 * 2}).updates({1});
}

Expected dequantize(char const *function) {
    return Expected("CDequantize", function, "element", 64).blocks({64 * 2, 64 * 2});
}

const std::vector<Expected> quantisers = {
    quantize("keliQuantIntra_MPEG2_16s_C1I"),
    quantize("keliQuant_MPEG2_16s_C1I"),
    dequantize("keliQuantInvIntra_MPEG2_16s_C1I").updates({1}),
    dequantize("keliQuantInv_MPEG2_16s_C1I").updates({1}),
    dequantize("keliQuantInv_DV_16s_C1I").updates({1}),
    dequantize("keliDCT2x4x8Frw_16s_C1I").updates({1}),
    dequantize("keliDCT2x4x8Inv_16s_C1I").updates({1}),
    dequantize("keliCountZeros8x8_16s_C1"),
};

class Quantise : public suite::SuiteTest {
protected:
    void TearDown() override { g_istrm.close(); }

    void ini(std::string const &text) {
        ASSERT_TRUE(g_istrm.setIniFile(m_dir.write("quantise.ini", text), false));
    }
    // The sets of a run of the class's test.
    size_t setsOf(Expected const &expected) { return run(expected.m_function, expected.m_test).rows.size(); }

    // The call of the first set, with the data as the test made them.
    SeenCall firstCall(Expected const &expected) {
        g_seen.clear();
        suite::Sets sets(findTest(expected.m_function, expected.m_test));
        EXPECT_TRUE(sets.next());
        EXPECT_EQ(sets.call(), kelStsNoErr);
        EXPECT_EQ(g_seen.size(), 1u);
        return g_seen.empty() ? SeenCall{} : g_seen[0];
    }

    TempDir m_dir;
};

template <class T>
void expectBetween(suite::Block const &block, double low, double high) {
    auto values = reinterpret_cast<T const *>(block.data);
    double least = high, greatest = low;
    for (int i = 0; i < block.size / static_cast<int>(sizeof(T)); ++i) {
        EXPECT_GE(values[i], low);
        EXPECT_LE(values[i], high);
        if (values[i] < least) least = values[i];
        if (values[i] > greatest) greatest = values[i];
    }
    EXPECT_LT(least, low + 0.2 * (high - low)) << "all of the range";
    EXPECT_GT(greatest, high - 0.2 * (high - low));
}

} // namespace

SUITE_TEST(Quantise, "quantise.cpp", quantisers);

// ---- the spies ----------------------------------------------------------------------

// clang-format off
#define SPY_QUANTIZE(name) \
    KelStatus name(Kel16s *c, int q, const Kel32f *m, int *n) { return SPY(name, c, q, m, n); }
#define SPY_DEQUANTIZE(name) \
    KelStatus name(Kel16s *c, int q, const Kel16s *m) { return SPY(name, c, q, m); }

SPY_QUANTIZE(keliQuantIntra_MPEG2_16s_C1I)
SPY_QUANTIZE(keliQuant_MPEG2_16s_C1I)
SPY_DEQUANTIZE(keliQuantInvIntra_MPEG2_16s_C1I)
SPY_DEQUANTIZE(keliQuantInv_MPEG2_16s_C1I)
KelStatus keliQuantInv_DV_16s_C1I(Kel16s *c, const Kel16s *m) { return SPY(keliQuantInv_DV_16s_C1I, c, m); }
KelStatus keliDCT2x4x8Frw_16s_C1I(Kel16s *c) { return SPY(keliDCT2x4x8Frw_16s_C1I, c); }
KelStatus keliDCT2x4x8Inv_16s_C1I(Kel16s *c) { return SPY(keliDCT2x4x8Inv_16s_C1I, c); }
KelStatus keliCountZeros8x8_16s_C1(const Kel16s *c, int *n) { return SPY(keliCountZeros8x8_16s_C1, c, n); }
// clang-format on

// ---- the calls ------------------------------------------------------------------------

TEST_F(Quantise, CoefficientsAreTheSecondBlock) {
    for (Expected const &expected : quantisers) {
        SCOPED_TRACE(expected.m_function);
        SeenCall call = firstCall(expected);
        EXPECT_EQ(call.function, expected.m_function);
        ASSERT_FALSE(call.args.empty());
        EXPECT_EQ(call.args[0].block, 1);
        EXPECT_EQ(call.args[0].room, 128);
    }
}

TEST_F(Quantise, TheQuantiserIsElevenAndTheMatrixTheFirstBlock) {
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(quantisers[i].m_function);
        SeenCall call = firstCall(quantisers[i]);
        ASSERT_GE(call.args.size(), 3u);
        EXPECT_EQ(call.args[1].value, 11);
        EXPECT_EQ(call.args[2].block, 0);
        EXPECT_EQ(call.args[2].room, quantisers[i].m_blocks[0]);
    }
    EXPECT_EQ(firstCall(quantisers[4]).args[1].block, 0) << "DV has no quantiser of its own";
}

TEST_F(Quantise, TheCountIsAStaticOfTheFile) {
    for (int i : {0, 1, 7}) {
        SeenCall call = firstCall(quantisers[i]);
        EXPECT_NE(call.args.back().data, nullptr);
        EXPECT_EQ(call.args.back().block, -1);
    }
}

TEST_F(Quantise, MatrixAndCoefficientsAreRandom) {
    {
        suite::Sets sets(findTest("keliQuant_MPEG2_16s_C1I", "CQuantize"));
        ASSERT_TRUE(sets.next());
        expectBetween<Kel32f>(sets.blocks()[0], 1, 200);
        expectBetween<Kel16s>(sets.blocks()[1], -2000, 2000);
    }
    suite::Sets sets(findTest("keliQuantInv_MPEG2_16s_C1I", "CDequantize"));
    ASSERT_TRUE(sets.next());
    expectBetween<Kel16s>(sets.blocks()[0], 1, 100);
    expectBetween<Kel16s>(sets.blocks()[1], -2000, 2000);
}

// The matrix is filled first: the same seed always gives the same data.
TEST_F(Quantise, DataComeFromTheSeedInOrder) {
    for (Expected const &expected : quantisers) {
        const bool forward = expected.m_test == "CQuantize";
        suite::Sets sets(findTest(expected.m_function, expected.m_test));
        ASSERT_TRUE(sets.next());
        kmVector matrix(forward ? 32 | kmTypeFloat : 16 | kmTypeSigned), coeffs(16 | kmTypeSigned);
        kmVector::m_seed = 7;
        ASSERT_TRUE(matrix.createVectorExt(64, 0, SetRandom, 1.0, forward ? 200.0 : 100.0));
        ASSERT_TRUE(coeffs.createVectorExt(64, 0, SetRandom, -2000.0, 2000.0));
        std::vector<suite::Block> blocks = sets.blocks();
        ASSERT_EQ(blocks.size(), 4u) << "those of the suite, then these";
        EXPECT_EQ(memcmp(blocks[0].data, matrix.m_data, matrix.size()), 0) << expected.m_function;
        EXPECT_EQ(memcmp(blocks[1].data, coeffs.m_data, coeffs.size()), 0) << expected.m_function;
    }
}

TEST_F(Quantise, EachCallSeesTheResultOfTheOneBefore) {
    suite::Sets sets(findTest("keliQuantInv_MPEG2_16s_C1I", "CDequantize"));
    ASSERT_TRUE(sets.next());
    auto coeffs = reinterpret_cast<Kel16s *>(sets.blocks()[1].data);
    for (int i = 0; i < 64; ++i) coeffs[i] = 0;
    EXPECT_EQ(sets.call(), kelStsNoErr);
    EXPECT_EQ(coeffs[63], 1) << "mismatch control";
    EXPECT_EQ(sets.call(), kelStsNoErr);
    EXPECT_GT(coeffs[63], 1) << "and quantised again";
}

// ---- the ini file ------------------------------------------------------------------------

TEST_F(Quantise, RepeatsAreSets) {
    ini("[kelVC]\nRepeatCounter = 2\n");
    for (Expected const &expected : quantisers) EXPECT_EQ(setsOf(expected), 2u) << expected.m_function;
}

TEST_F(Quantise, EachClassHasItsSection) {
    ini("[kelVC]\nRepeatCounter = 2\n[Quantize]\nRepeatCounter = 3\n[Dequantize]\nRepeatCounter = 4\n");
    for (Expected const &expected : quantisers)
        EXPECT_EQ(setsOf(expected), expected.m_test == "CQuantize" ? 3u : 4u) << expected.m_function;
}

TEST_F(Quantise, NoRepeatsRunNothing) {
    ini("[kelVC]\nRepeatCounter = 0\n");
    for (Expected const &expected : quantisers) EXPECT_EQ(setsOf(expected), 0u) << expected.m_function;
}

// idct.cpp - the inverse DCT of blocks with few or many coefficients.

#include <stdlib.h>

#include "kmvc.h"

// ---- data ---------------------------------------------------------------------

static const int length = 500; // room for eight rows at the step

static kmVector g_tst_pSrc(16 | kmTypeSigned), g_tst_pSrcV(16 | kmTypeSigned); // 64 coefficients are read
static kmVector g_tst_pDst(16 | kmTypeSigned);
static kmVector g_tst_pDst_8u(8);
static int g_tst_step; // bytes: two interleaved rows of 16s samples
static int g_tst_count, g_countV;

// ---- class --------------------------------------------------------------------

class CiDCT : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canStart() override;
    bool canContinue() override;
    void flushData() override;
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "element"; }
    void parmsToCstrm() override;

    void readCounts();
    void prepareSet();

    static const int maxCounts = 256;
    int m_counts[maxCounts] = {}; // the function takes them for how many coefficients there are
    int m_numCounts = 0;
    int m_index = 0; // of the count in hand
};

bool CiDCT::canStart() {
    CPerfTest::canStart();
    readSettings("iDCT");
    readCounts();
    return true;
}

void CiDCT::readCounts() {
    rkStringList words;
    readKey("iDCT", "Counts", "1,4,12,64").parse(words, ",");
    m_numCounts = m_index = 0;
    for (auto word = words.begin(); word != words.end() && m_numCounts < maxCounts; ++word)
        m_counts[m_numCounts++] = static_cast<int>(strtol((*word).c_str(), nullptr, 10));
    if (m_numCounts == 0) m_counts[m_numCounts++] = 64;
}

// The repeat counter goes down with each count too: it limits the sets, and all counts need as many repeats.
bool CiDCT::canContinue() {
    if (m_repeat <= 0) return false;
    if (m_index == m_numCounts) {
        --m_repeat;
        m_index = 0;
        if (m_repeat == 0) return false;
    }
    --m_repeat;
    prepareSet();
    return true;
}

void CiDCT::prepareSet() {
    g_tst_pSrc.createVectorExt(length, m_align, SetRandom, -200.0, 200.0);
    g_tst_pSrcV.createVectorExt(length, m_align, SetRandom, -200.0, 200.0);
    g_tst_pDst.createVectorExt(length, m_align, SetRandom, -200.0, 200.0);
    g_tst_pDst_8u.createVectorExt(length, m_align, SetRandom, 1.0, 200.0);
    g_tst_step = 32;
    g_tst_count = g_countV = m_counts[m_index];
}

void CiDCT::flushData() {
    ++m_index;
    g_tst_pSrc.deleteVector();
    g_tst_pSrcV.deleteVector();
    g_tst_pDst.deleteVector();
    g_tst_pDst_8u.deleteVector();
}

void CiDCT::parmsToCstrm() {
    rkString count;
    count << m_counts[m_index];
    g_cstrm << count;
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define SRC_UV g_tst_pSrc.p16s, g_tst_pSrcV.p16s

KM_REG(CiDCT, keliDCT8x8Inv_AANTransposed_16s_C1R,     g_tst_pSrc.p16s, g_tst_pDst.p16s, g_tst_step, g_tst_count);
KM_REG(CiDCT, keliDCT8x8Inv_AANTransposed_16s8u_C1R,   g_tst_pSrc.p16s, g_tst_pDst_8u.p8u, g_tst_step, g_tst_count);
KM_REG(CiDCT, keliDCT8x8Inv_AANTransposed_16s_P2C2R,   SRC_UV, g_tst_pDst.p16s, g_tst_step, g_tst_count, g_countV);
KM_REG(CiDCT, keliDCT8x8Inv_AANTransposed_16s8u_P2C2R, SRC_UV, g_tst_pDst_8u.p8u, g_tst_step, g_tst_count, g_countV);

// sumsdiff.cpp - sums of the differences of 4x4 blocks.

#include <initializer_list>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> SrcPitch, PredPitch; // elements from row to row
static rkMapIterator<int> save_diff;           // 1: the differences are stored too

// ---- data ---------------------------------------------------------------------

static kmVector g_src, g_pred; // 16 rows of at most 18 samples, rounded up to 400
static kmVector g_sums;
static Kel16s *pdiff; // from kelsMalloc_16s; null asks the library for the sums alone

// ---- class --------------------------------------------------------------------

class CSUMD_H264 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return m_func.find("16x16", 0) >= 0 ? 256.0 : 64.0; }
    rkString getUnit() override { return "e"; }
};

// The value is shown as the parameter's name, "=" and the value.
static void addNamed(rkMapIterator<int> &parm, char const *name, int value) {
    rkString label(name);
    label << "=" << value;
    parm[value] = label;
    parm.add(value);
}

static void initParameter(rkMapIterator<int> &parm, char const *name, int first, int second) {
    parm.init(name);
    addNamed(parm, name, first);
    addNamed(parm, name, second);
}

bool CSUMD_H264::canStart() {
    g_src.init(m_func, kmSrc);
    g_pred.init(m_func, kmSrc);
    g_sums.init(m_func, kmDst);
    m_parms.push_back(&SrcPitch);
    m_parms.push_back(&PredPitch);
    m_parms.push_back(&save_diff);
    initParameter(SrcPitch, "SrcPitch", 16, 18);
    initParameter(PredPitch, "PredPitch", 16, 18);
    initParameter(save_diff, "save_diff", 0, 1);
    return true;
}

bool CSUMD_H264::initData() {
    pdiff = nullptr;
    if (!g_src.createVectorExt(400, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    if (!g_pred.createVectorExt(400, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    if (!g_sums.createVectorExt(256, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    if (!save_diff.value()) return true;
    if (kelsMalloc_16s) pdiff = kelsMalloc_16s(256);
    return pdiff != nullptr;
}

void CSUMD_H264::flushData() {
    g_src.deleteVector();
    g_pred.deleteVector();
    g_sums.deleteVector();
    if (pdiff && kelsFree) kelsFree(pdiff);
    pdiff = nullptr;
}

// ---- registration -------------------------------------------------------------

// clang-format off
#define SUMD_8u  g_src.p8u,  SrcPitch.value(), g_pred.p8u,  PredPitch.value(), g_sums.p16s, pdiff
#define SUMD_16u g_src.p16u, SrcPitch.value(), g_pred.p16u, PredPitch.value(), g_sums.p32s, pdiff

KM_REG(CSUMD_H264, keliSumsDiff16x16Blocks4x4_8u16s_C1,   SUMD_8u);
KM_REG(CSUMD_H264, keliSumsDiff8x8Blocks4x4_8u16s_C1,     SUMD_8u);
KM_REG(CSUMD_H264, keliSumsDiff16x16Blocks4x4_16u32s_C1R, SUMD_16u);
KM_REG(CSUMD_H264, keliSumsDiff8x8Blocks4x4_16u32s_C1R,   SUMD_16u);

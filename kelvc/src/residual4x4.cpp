// residual4x4.cpp - transforms and quantisers of 4x4 residuals of H.264, each by itself.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> QP_value;

// ---- data ---------------------------------------------------------------------

static const int blockLength = 16;

// The place of each position in the scan of frames and in that of fields.
static const Kel16s defScanTable[2][16] = {{0, 1, 5, 6, 2, 4, 7, 12, 3, 8, 11, 13, 9, 10, 14, 15},
                                           {0, 2, 8, 12, 1, 5, 9, 13, 3, 6, 10, 14, 4, 7, 11, 15}};

// Forward factors of H.264 by QP modulo 6.
static const Kel32s refH264FwdQuant_32s[6][16] = {
    {13107, 8066, 13107, 8066, 8066, 5243, 8066, 5243, 13107, 8066, 13107, 8066, 8066, 5243, 8066, 5243},
    {11916, 7490, 11916, 7490, 7490, 4660, 7490, 4660, 11916, 7490, 11916, 7490, 7490, 4660, 7490, 4660},
    {10082, 6554, 10082, 6554, 6554, 4194, 6554, 4194, 10082, 6554, 10082, 6554, 6554, 4194, 6554, 4194},
    {9362, 5825, 9362, 5825, 5825, 3647, 5825, 3647, 9362, 5825, 9362, 5825, 5825, 3647, 5825, 3647},
    {8192, 5243, 8192, 5243, 5243, 3355, 5243, 3355, 8192, 5243, 8192, 5243, 5243, 3355, 5243, 3355},
    {7282, 4559, 7282, 4559, 4559, 2893, 4559, 2893, 7282, 4559, 7282, 4559, 4559, 2893, 4559, 2893}};

static kmVector g_src, g_dst;
static Kel16s *pSrc16, *pDst16; // the block in its own type, the other pointers are null
static Kel32s *pSrc32, *pDst32;
static int QP; // the value of QP_value
static int numCoeffs, lastCoeff;

static kmVector g_src16(16 | kmTypeSigned), g_dst16(16 | kmTypeSigned);
static kmVector g_src32(32 | kmTypeSigned), g_dst32(32 | kmTypeSigned);

// A user may type any number.
static Kel32s const *factorsOf(int qp) {
    return refH264FwdQuant_32s[(qp % 6 + 6) % 6];
}

// ---- classes ------------------------------------------------------------------

class rk_QuantResidual4x4 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "per iteration"; }
};

class rk_TransformResidual4x4 : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "per iteration"; }
};

// ---- quantisers -----------------------------------------------------------------

bool rk_QuantResidual4x4::canStart() {
    m_parms.push_back(&QP_value);
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    QP_value.init("QP value", 2, 51, 15, StepPlus);
    return true;
}

bool rk_QuantResidual4x4::initData() {
    const bool isWide = m_func == "keliQuantizeResidual4x4Fwd_H264_32s_C1";
    const kmType type = (isWide ? 32 : 16) | kmTypeSigned;
    g_src.init(type);
    g_dst.init(type);
    if (!g_src.createVectorExt(blockLength, rkGetVectorShift(), SetRandom, 1.0, 32.0)) return false;
    if (!g_dst.createVectorExt(blockLength, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    pSrc16 = g_src.p16s;
    pDst16 = g_dst.p16s;
    pSrc32 = g_src.p32s;
    pDst32 = g_dst.p32s;
    QP = QP_value.value();
    return true;
}

void rk_QuantResidual4x4::flushData() {
    g_src.deleteVector();
    g_dst.deleteVector();
}

// ---- transforms -----------------------------------------------------------------

bool rk_TransformResidual4x4::canStart() {
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    return true;
}

bool rk_TransformResidual4x4::initData() {
    const int shift = rkGetVectorShift();
    return g_src16.createVectorExt(blockLength, shift, SetValue, 1.0, 0) &&
           g_dst16.createVectorExt(blockLength, shift, SetDefault, 0, 0) &&
           g_src32.createVectorExt(blockLength, shift, SetValue, 1.0, 0) &&
           g_dst32.createVectorExt(blockLength, shift, SetDefault, 0, 0);
}

void rk_TransformResidual4x4::flushData() {
    g_src16.deleteVector();
    g_dst16.deleteVector();
    g_src32.deleteVector();
    g_dst32.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define COUNTS     &numCoeffs, &lastCoeff
#define SCAN_AT_QP defScanTable[1], QP_value.value(), 1

// clang-format off
KM_REG(rk_QuantResidual4x4, keliQuantizeResidual4x4Fwd_H264_16s_C1,    pSrc16, pDst16, COUNTS, 0, SCAN_AT_QP);
KM_REG(rk_QuantResidual4x4, keliQuantizeResidual4x4Fwd_H264_16s32s_C1, pSrc16, pDst16, COUNTS, factorsOf(QP), SCAN_AT_QP);
KM_REG(rk_QuantResidual4x4, keliQuantizeResidual4x4Fwd_H264_32s_C1,    pSrc32, pDst32, COUNTS, 0, SCAN_AT_QP);

KM_REG(rk_TransformResidual4x4, keliTransformResidual4x4Fwd_H264_16s_C1, g_src16.p16s, g_dst16.p16s);
KM_REG(rk_TransformResidual4x4, keliTransformResidual4x4Fwd_H264_32s_C1, g_src32.p32s, g_dst32.p32s);
KM_REG(rk_TransformResidual4x4, keliTransformResidual4x4Inv_H264_16s_C1, g_src16.p16s, g_dst16.p16s);
KM_REG(rk_TransformResidual4x4, keliTransformResidual4x4Inv_H264_32s_C1, g_src32.p32s, g_dst32.p32s);
// clang-format on

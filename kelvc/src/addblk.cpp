// addblk.cpp - differences, copies, means and sums of blocks in a picture.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> acc;         // half a sample: 1 to the right, 2 down, 3 both
static rkMapIterator<int> rounding; // 1: halves in half-sample values are rounded down

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage pSrc1, pSrc2, pDst;
static int src1Step, src2Step, dstStep;
static KeliSize blockSize; // from the function's name
static const Kel16s value = 7;
static Kel32s SAD;

// ---- class --------------------------------------------------------------------

class Timvc_AddBlk : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return blockSize.width * blockSize.height; }
    rkString getUnit() override { return "e"; }
    void parmsToCstrm() override;

private:
    bool isAtHalfSamples() { return m_func.find("HP") >= 0 || m_func.find("Interpolate") >= 0; }
    void initParameters();
    void initTypes();
};

void Timvc_AddBlk::initParameters() {
    m_parms.push_back(&acc);
    m_parms.push_back(&rounding);
    acc.init("acc");
    for (int position = 0; position < 4; ++position) acc.add(position);
    rounding.init("rounding");
    rounding[0] = "-";
    rounding[1] = "round";
    rounding.add(0);
    rounding.add(1);
}

bool Timvc_AddBlk::canStart() {
    if (!getBlockSize(blockSize, 1)) return false;
    if (isAtHalfSamples()) initParameters();
    return true;
}

// Both operands of a difference are samples; elsewhere the first may be a residual.
void Timvc_AddBlk::initTypes() {
    pSrc1.init(m_func.srcType(), 1, false);
    pSrc2.init(m_func.find("Sub") >= 0 ? m_func.srcType() : m_func.dstType(), 1, false);
    pDst.init(m_func.dstType(), 1, false);
}

// A block half a sample further down reads one row more than it has.
bool Timvc_AddBlk::initData() {
    const int height = blockSize.height, srcHeight = height + (isAtHalfSamples() ? 1 : 0);
    const int shift = rkGetVectorShift();
    initTypes();
    if (!pSrc1.createVectorExt(pictureWidth, srcHeight, shift, SetDefault, 0, 0)) return false;
    if (!pSrc2.createVectorExt(pictureWidth, srcHeight, 2 * shift, SetDefault, 0, 0)) return false;
    if (!pDst.createVectorExt(pictureWidth, height, 3 * shift, SetDefault, 0, 0)) return false;
    src1Step = pSrc1.m_step;
    src2Step = pSrc2.m_step;
    dstStep = pDst.m_step;
    return true;
}

void Timvc_AddBlk::flushData() {
    pSrc1.deleteVector();
    pSrc2.deleteVector();
    pDst.deleteVector();
}

void Timvc_AddBlk::parmsToCstrm() {
    g_cstrm << rkValueToString(blockSize);
    kmvcTest::parmsToCstrm();
}

// ---- registration -------------------------------------------------------------

#define SRC1     pSrc1.p8u, src1Step
#define RESIDUAL pSrc1.p16s, src1Step
#define SRC2     pSrc2.p8u, src2Step
#define DST_8u   pDst.p8u, dstStep
#define DST_16s  pDst.p16s, dstStep
#define HALF     acc.value(), rounding.value()

// clang-format off
KM_REG(Timvc_AddBlk, keliSub8x8_8u16s_C1R,                  SRC1, SRC2, DST_16s);
KM_REG(Timvc_AddBlk, keliSub16x16_8u16s_C1R,                SRC1, SRC2, DST_16s);
KM_REG(Timvc_AddBlk, keliSubSAD8x8_8u16s_C1R,               SRC1, SRC2, DST_16s, &SAD);
KM_REG(Timvc_AddBlk, keliCopy8x8_8u_C1R,                    SRC1, DST_8u);
KM_REG(Timvc_AddBlk, keliCopy16x16_8u_C1R,                  SRC1, DST_8u);
KM_REG(Timvc_AddBlk, keliAverage8x8_8u_C1IR,                SRC1, SRC2);
KM_REG(Timvc_AddBlk, keliAverage16x16_8u_C1IR,              SRC1, SRC2);
KM_REG(Timvc_AddBlk, keliAdd8x8_16s8u_C1IRS,                RESIDUAL, SRC2);
KM_REG(Timvc_AddBlk, keliCopy8x4HP_8u_C1R,                  SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliCopy8x8HP_8u_C1R,                  SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliCopy16x8HP_8u_C1R,                 SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliCopy16x16HP_8u_C1R,                SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliAdd8x8HP_16s8u_C1RS,               RESIDUAL, SRC2, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliInterpolateAverage8x4_8u_C1IR,     SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliInterpolateAverage8x8_8u_C1IR,     SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliInterpolateAverage16x8_8u_C1IR,    SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliInterpolateAverage16x16_8u_C1IR,   SRC1, DST_8u, HALF);
KM_REG(Timvc_AddBlk, keliAddC8x8_16s8u_C1IR,                value, DST_8u);
// clang-format on

// transform.cpp - the older transforms of H.264: DC, residuals, predictions, SP and SI blocks.

#include <initializer_list>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

// A parameter that some functions have; the others show its column with the one value 0.
class OptionalParameter {
public:
    void init(char const *name, bool isReal, int first, char const *firstLabel, int second,
              char const *secondLabel);
    rkParameter *parameter() { return m_isReal ? static_cast<rkParameter *>(&m_values) : &m_zero; }
    int value() const { return m_isReal ? m_values.value() : 0; }

private:
    rkMapIterator<int> m_values;
    rkIterator<int> m_zero;
    bool m_isReal = false;
};

static rkIterator<int> len;
static OptionalParameter AC, DC, step, Switch, rc, NeedTransform;

// ---- data ---------------------------------------------------------------------

static const int dataLength = 400; // 16 rows of step 17 and a margin

static const Kel16s scan[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

static kmVector pSrcDst(16 | kmTypeSigned);
static kmVector pPred(8);
static kmVector pRec;
static kmVector pDCv(16 | kmTypeSigned);
static Kel16s *pDC; // null: DC is in the block
static int qp;
static int NumCoeffs, LastCoeff;

// ---- the optional parameter -----------------------------------------------------

void OptionalParameter::init(char const *name, bool isReal, int first, char const *firstLabel, int second,
                             char const *secondLabel) {
    m_isReal = isReal;
    m_zero.init(name);
    m_zero.add(0);
    m_values.init(name);
    m_values[first] = firstLabel;
    m_values[second] = secondLabel;
    m_values.add(first);
    m_values.add(second);
}

// ---- class --------------------------------------------------------------------

class rk_Transform : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 1.0; }
    rkString getUnit() override { return "all"; }

private:
    void readName();
    void initParameters();
    bool is(char const *name) { return m_func == name; }

    bool m_scalesBlock = false; // takes an AC flag and a DC coefficient
    bool m_hasStep = false;
    bool m_isSwitching = false; // of SP and SI slices
    bool m_quantisesDC = false; // may get coefficients that are transformed already
    bool m_hasRounding = false; // tells intra from inter
};

// ---- start ----------------------------------------------------------------------

void rk_Transform::readName() {
    const bool isResidual = is("keliDequantTransformResidual_H264_16s_C1I");
    const bool isSum = is("keliDequantTransformResidualAndAdd_H264_16s_C1I");
    const bool isSwitchingBlock = is("keliDequantTransformResidual_SISP_H264_16s_C1I");
    const bool isChromaDC = is("keliTransformQuantChromaDC_H264_16s_C1I");
    m_scalesBlock = isResidual || isSum || isSwitchingBlock;
    m_hasStep = isResidual || isSum || is("keliTransformPrediction_H264_8u16s_C1");
    m_isSwitching = isSwitchingBlock || is("keliTransformDequantChromaDC_SISP_H264_16s_C1I");
    m_quantisesDC = isChromaDC || is("keliTransformQuantLumaDC_H264_16s_C1I");
    m_hasRounding = isChromaDC || is("keliTransformQuantResidual_H264_16s_C1I");
}

void rk_Transform::initParameters() {
    len.init("len");
    len.add(0);
    AC.init("AC", m_scalesBlock, 0, "AC=0", 1, "AC=1");
    DC.init("DC", m_scalesBlock, 0, "pDC=0", 1, "pDC!=0");
    step.init("step", m_hasStep, 16, "step=16", 17, "step=17");
    Switch.init("Switch", m_isSwitching, 0, "Switch=0", 1, "Switch=1");
    rc.init("rc", m_hasRounding, 0, "rc=0", 1, "rc=1");
    NeedTransform.init("NeedTransform", m_quantisesDC, 0, "NeedTransform=0", 1, "NeedTransform=1");
}

bool rk_Transform::canStart() {
    readName();
    initParameters();
    m_parms.push_back(&len);
    if (!m_quantisesDC) {
        for (OptionalParameter *parm : {&AC, &DC, &step, &Switch}) m_parms.push_back(parm->parameter());
    }
    m_parms.push_back(rc.parameter());
    m_parms.push_back(NeedTransform.parameter());
    qp = 20;
    return true;
}

// ---- data of a set ----------------------------------------------------------------

bool rk_Transform::initData() {
    const int shift = rkGetVectorShift();
    const bool hasCoefficients = m_func.find("SISP", 0) >= 0 || m_quantisesDC;
    pRec.init(hasCoefficients ? 16 | kmTypeSigned : 8);
    if (!pSrcDst.createVectorExt(dataLength, shift, SetDefault, 0, 0)) return false;
    if (!pPred.createVectorExt(dataLength, shift, SetDefault, 0, 0)) return false;
    if (!pRec.createVectorExt(dataLength, shift, SetDefault, 0, 0)) return false;
    pDC = nullptr;
    if (DC.value() > 0) {
        if (!pDCv.createVectorExt(4, shift, SetDefault, 0, 0)) return false;
        pDC = pDCv.p16s;
    }
    NumCoeffs = 0;
    return true;
}

void rk_Transform::flushData() {
    pSrcDst.deleteVector();
    pPred.deleteVector();
    pRec.deleteVector();
    if (DC.value() > 0) pDCv.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_Transform, keliTransformDequantLumaDC_H264_16s_C1I,        pSrcDst.p16s, qp);
KM_REG(rk_Transform, keliTransformDequantChromaDC_H264_16s_C1I,      pSrcDst.p16s, qp);
KM_REG(rk_Transform, keliDequantTransformResidual_H264_16s_C1I,      pSrcDst.p16s, step.value(), pDC, AC.value(), qp);
KM_REG(rk_Transform, keliDequantTransformResidualAndAdd_H264_16s_C1I,
       pPred.p8u, pSrcDst.p16s, pDC, pRec.p8u, step.value(), step.value(), qp, AC.value());
KM_REG(rk_Transform, keliTransformPrediction_H264_8u16s_C1,          pPred.p8u, step.value(), pSrcDst.p16s);
KM_REG(rk_Transform, keliDequantTransformResidual_SISP_H264_16s_C1I,
       pSrcDst.p16s, pRec.p16s, pDC, AC.value(), qp, qp, Switch.value());
KM_REG(rk_Transform, keliTransformDequantChromaDC_SISP_H264_16s_C1I, pSrcDst.p16s, pRec.p16s, qp, qp, Switch.value());
KM_REG(rk_Transform, keliTransformQuantChromaDC_H264_16s_C1I,
       pSrcDst.p16s, pRec.p16s, qp, &NumCoeffs, rc.value(), NeedTransform.value());
KM_REG(rk_Transform, keliTransformQuantLumaDC_H264_16s_C1I,
       pSrcDst.p16s, pRec.p16s, qp, &NumCoeffs, NeedTransform.value(), scan, &LastCoeff);
KM_REG(rk_Transform, keliTransformQuantResidual_H264_16s_C1I,        pSrcDst.p16s, qp, &NumCoeffs, rc.value(), scan, &LastCoeff);
// clang-format on

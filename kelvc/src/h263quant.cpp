// h263quant.cpp - quantisation of H.263 coefficients and its inverse.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> indxLastNonZero;
static rkMapIterator<int> advIntraFlag, modQuantFlag;

// ---- data ---------------------------------------------------------------------

static kmVector coeffs(16 | kmTypeSigned); // every call works on the results of the one before
static const int QP = 2;
static int countNonZero;

// ---- class --------------------------------------------------------------------

class Timvch263_Quant : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { coeffs.deleteVector(); }
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }

private:
    void initParameters(bool inverse, bool intra);
};

static void initFlag(rkMapIterator<int> &flag, char const *name, char const *label) {
    flag.init(name);
    flag[0] = "-";
    flag[1] = label;
    flag.add(0);
}

void Timvch263_Quant::initParameters(bool inverse, bool intra) {
    indxLastNonZero.init("indxLastNonZero");
    if (!inverse) indxLastNonZero.add(0);
    for (int last = 3; inverse && last <= 31; last = 2 * last + 1) indxLastNonZero.add(last);
    initFlag(advIntraFlag, "advIntraFlag", "advanced");
    if (intra) advIntraFlag.add(1);
    initFlag(modQuantFlag, "modQuantFlag", "modQuant");
    modQuantFlag.add(1);
}

bool Timvch263_Quant::canStart() {
    m_parms.push_back(&indxLastNonZero);
    m_parms.push_back(&advIntraFlag);
    m_parms.push_back(&modQuantFlag);
    initParameters(m_func.find("Inv") >= 0, m_func.find("Intra") >= 0);
    return true;
}

bool Timvch263_Quant::initData() {
    return coeffs.createVectorExt(64, rkGetVectorShift(), SetRandom, -300.0, 300.0);
}

// ---- registration -------------------------------------------------------------

#define INVERSE coeffs.p16s, indxLastNonZero.value(), QP
#define FORWARD coeffs.p16s, QP, &countNonZero
#define INTRA   advIntraFlag.value(), modQuantFlag.value()
#define INTER   modQuantFlag.value()

// clang-format off
KM_REG(Timvch263_Quant, keliQuantInvIntra_H263_16s_C1I, INVERSE, INTRA);
KM_REG(Timvch263_Quant, keliQuantInvInter_H263_16s_C1I, INVERSE, INTER);
KM_REG(Timvch263_Quant, keliQuantIntra_H263_16s_C1I,    FORWARD, INTRA);
KM_REG(Timvch263_Quant, keliQuantInter_H263_16s_C1I,    FORWARD, INTER);
// clang-format on

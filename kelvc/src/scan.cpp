// scan.cpp - the coefficients of a block brought into the order of a scan, and back.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> scan;

// ---- data ---------------------------------------------------------------------

static kmVector pSrc, pDst;
static const int countNonZero = 64;    // a block without a zero
static const int indxLastNonZero = 63; // the same

// ---- class --------------------------------------------------------------------

class Timvc_Scan : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }
    void parmsToCstrm() override;
};

static void addScan(char const *name, int code) {
    scan[code] = name;
    scan.add(code);
}

bool Timvc_Scan::canStart() {
    pSrc.init(m_func, kmSrc);
    pDst.init(m_func, kmDst);
    m_parms.push_back(&scan);
    scan.init("scan");
    addScan("zigzag", 0);
    addScan("horizontal", 2);
    addScan("vertical", 1);
    return true;
}

bool Timvc_Scan::initData() {
    return pSrc.createVectorExt(64, 0, SetRandom, -300, 300) &&
           pDst.createVectorExt(64, rkGetVectorShift(), SetDefault, 0, 0);
}

void Timvc_Scan::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

void Timvc_Scan::parmsToCstrm() {
    g_cstrm << "64";
    kmvcTest::parmsToCstrm();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvc_Scan, keliScanFwd_16s_C1, pSrc.p16s, pDst.p16s, countNonZero, scan.value());
KM_REG(Timvc_Scan, keliScanInv_16s_C1, pSrc.p16s, pDst.p16s, indxLastNonZero, scan.value());
// clang-format on

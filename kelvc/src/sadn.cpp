// sadn.cpp - sums of absolute differences at 4096 positions of the reference in one call.

#include "kmvc.h"

namespace TarvoSoftware {

static const int positions = 4096;
static const int srcStep = 64;
static const int refStep = 4160; // the positions and one width of the source

// ---- data ---------------------------------------------------------------------

static kmVector pSrc(8), pRef(8); // 16 rows each
static kmVector pSAD(16);
static Kel32s minSADIndex;

// ---- class --------------------------------------------------------------------

class rk_SADn : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return positions; }
    rkString getUnit() override { return "per SAD"; }
};

bool rk_SADn::canStart() {
    if (m_tool.getMethodAuto()) m_tool.setMethodStat(1023, 0);
    return true;
}

bool rk_SADn::initData() {
    return pSrc.createVectorExt(16 * srcStep, rkGetVectorShift(), SetDefault, 0, 0) &&
           pRef.createVectorExt(16 * refStep, rkGetVectorShift(), SetDefault, 0, 0) &&
           pSAD.createVectorExt(positions, rkGetVectorShift(), SetDefault, 0, 0);
}

void rk_SADn::flushData() {
    pSrc.deleteVector();
    pRef.deleteVector();
    pSAD.deleteVector();
}

} // namespace TarvoSoftware

// ---- registration -------------------------------------------------------------

using namespace TarvoSoftware;

// clang-format off
#define SADN_ARGS pSrc.p8u, srcStep, pRef.p8u, refStep, pSAD.p16u, positions

KM_REG(TarvoSoftware::rk_SADn, keliSAD4x4xNI_8u16u_C1R,   SADN_ARGS, &minSADIndex);
KM_REG(TarvoSoftware::rk_SADn, keliSAD8x8xNI_8u16u_C1R,   SADN_ARGS, &minSADIndex);
KM_REG(TarvoSoftware::rk_SADn, keliSAD16x16xNI_8u16u_C1R, SADN_ARGS, &minSADIndex);
KM_REG(TarvoSoftware::rk_SADn, keliSAD2x2xN_8u16u_C1R,    SADN_ARGS);
KM_REG(TarvoSoftware::rk_SADn, keliSAD4x4xN_8u16u_C1R,    SADN_ARGS);
KM_REG(TarvoSoftware::rk_SADn, keliSAD8x8xN_8u16u_C1R,    SADN_ARGS);
KM_REG(TarvoSoftware::rk_SADn, keliSAD16x16xN_8u16u_C1R,  SADN_ARGS);

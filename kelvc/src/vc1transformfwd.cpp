// vc1transformfwd.cpp - forward transforms of VC-1.

#include "vc1test.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> step; // bytes; with 18 the rows are not aligned

// ---- data ---------------------------------------------------------------------

static kmVector pSrc(16 | kmTypeSigned); // what is done in place is done to the results of the call before
static kmVector pDst(16 | kmTypeSigned);

// ---- class --------------------------------------------------------------------

class rk_VC1TransformFwd : public VC1Test {
public:
    using VC1Test::VC1Test;

    bool canStart() override;
    bool initData() override { return makeDefault(pSrc, 400) && makeDefault(pDst, 400); }
    void flushData() override;
};

bool rk_VC1TransformFwd::canStart() {
    addParameter(step, "step", {16, 18});
    makeAutoStatistic(1024);
    return true;
}

void rk_VC1TransformFwd::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define IN_PLACE pSrc.p16s, step.value()
#define ACROSS   IN_PLACE, pDst.p16s, step.value()

// clang-format off
KM_REG(rk_VC1TransformFwd, keliTransform8x8Fwd_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1TransformFwd, keliTransform8x4Fwd_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1TransformFwd, keliTransform4x8Fwd_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1TransformFwd, keliTransform4x4Fwd_VC1_16s_C1R,  ACROSS);
KM_REG(rk_VC1TransformFwd, keliTransform8x8Fwd_VC1_16s_C1IR, IN_PLACE);
KM_REG(rk_VC1TransformFwd, keliTransform8x4Fwd_VC1_16s_C1IR, IN_PLACE);
KM_REG(rk_VC1TransformFwd, keliTransform4x8Fwd_VC1_16s_C1IR, IN_PLACE);
KM_REG(rk_VC1TransformFwd, keliTransform4x4Fwd_VC1_16s_C1IR, IN_PLACE);
// clang-format on

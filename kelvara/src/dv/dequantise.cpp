// dequantise.cpp - inverse quantisation of DV coefficients.

#include "../common/block8x8.h"
#include "../common/checks.h"
#include "kelvc.h"

using namespace kelvara;

KelStatus keliQuantInv_DV_16s_C1I(Kel16s *pSrcDst, const Kel16s *pMatrix) {
    if (anyNull(pSrcDst, pMatrix)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    const Block8x8<Kel16s> steps(pMatrix);
    for (int i = 0; i < 64; ++i) {
        block.at[i] = static_cast<Kel16s>(std::clamp(block.at[i] * steps.at[i], -32768, 32767));
    }
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

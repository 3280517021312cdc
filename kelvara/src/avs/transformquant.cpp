// transformquant.cpp - the exported forward transform with quantisation of AVS.

#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"
#include "quantisers.h"

using namespace kelvara;

KelStatus keliTransformQuant8x8Fwd_AVS_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int *pNumCoeffs, int QP,
                                              int intra) {
    if (anyNull(pSrc, pDst) || anyNull(pNumCoeffs)) return kelStsNullPtrErr;
    if (!avs::isQp(QP)) return kelStsRangeErr;
    const auto levels = avs::quantised(avs::forwardTransformed(Block8x8<Kel16s>(pSrc)), QP, intra != 0);
    levels.storeTo(pDst);
    store(pNumCoeffs, 64 - static_cast<int>(std::count(levels.at, levels.at + 64, 0)));
    return kelStsNoErr;
}

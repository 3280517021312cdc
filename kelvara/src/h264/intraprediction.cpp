// intraprediction.cpp - the exported intra predictions of H.264.

#include "intraprediction.h"
#include "../common/checks.h"
#include "kelvc.h"

namespace kelvara {

// Predicts a block of N x N in place from the samples around it.
template <int N, int modes>
static KelStatus predict(Kel8u *pSrcDst, int srcDstStep, int mode, int availability,
                         const int (&needs)[modes], Square<N> (*predicted)(const Border<N> &, int)) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcDstStep, N)) return kelStsStepErr;
    const int available = withWholeLeft(availability);
    if (!allows(needs, mode, available)) return kelStsRangeErr;
    const Border<N> border(Samples<Kel8u>(pSrcDst, srcDstStep), available);
    predicted(border, mode).storeTo(Target<Kel8u>(pSrcDst, srcDstStep));
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliPredictIntra_4x4_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int predMode, int availability) {
    return predict<4>(pSrcDst, srcDstStep, predMode, availability, blockNeeds, predictedBlock<4>);
}

KelStatus keliPredictIntra_16x16_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int predMode,
                                              int availability) {
    return predict<16>(pSrcDst, srcDstStep, predMode, availability, lumaNeeds, predictedLuma);
}

KelStatus keliPredictIntraChroma8x8_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int predMode,
                                                 int availability) {
    return predict<8>(pSrcDst, srcDstStep, predMode, availability, chromaNeeds, predictedChroma);
}

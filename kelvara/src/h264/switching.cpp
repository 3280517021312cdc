// switching.cpp - the exported reconstruction of blocks of SP and SI slices of H.264.

#include "quantise.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// The prediction is transformed and quantised together with the levels, so that other predictions and levels
// give the same samples. QP scales the levels, QS their sum.
struct Switching {
    int qp, qs;
    bool switchPicture;
};

// Of ITU-T H.264 8.6.1: the norms of the forward transform's coefficients, 16 times.
static int normOf(int i) {
    static const int norms[3] = {16, 25, 20};
    return norms[factorClass4x4(i)];
}

// Of 8.6.1 and 8.6.2: the level at QS of coefficient i, with twice the step for chroma DC. `bits` is how much
// larger the product of level, scale and norm is than a coefficient of the prediction.
static Kel32u requantised(Kel32s level, Kel32s predicted, int i, int bits, bool twofold,
                          const Switching &order) {
    const int factor = forwardFactor4x4(order.qs % 6, i), shift = 15 + (twofold ? 1 : 0) + order.qs / 6;
    const Kel64s half = Kel64s(1) << (shift - 1);
    if (order.switchPicture)
        return static_cast<Kel32u>(level) +
               static_cast<Kel32u>(levelOf<Kel32s>(predicted, factor, half, shift));
    const Kel64s scale = Kel64s{normAdjust4x4(order.qp % 6, i)} * normOf(i) << (order.qp / 6);
    const Kel64s sum = predicted + ((level * scale) >> bits);
    return static_cast<Kel32u>(levelOf<Kel32s>(static_cast<Kel32s>(sum), factor, half, shift));
}

static bool inRange(const Switching &order) {
    return isQP<Kel16s>(order.qp) && isQP<Kel16s>(order.qs);
}

static KelStatus reconstructBlock(Kel16s *pSrcDst, const Kel16s *pPredCoeffs, const Kel16s *pDC, bool hasAC,
                                  const Switching &order) {
    if (anyNull(pSrcDst, pPredCoeffs)) return kelStsNullPtrErr;
    if (!inRange(order)) return kelStsRangeErr;
    const Samples<Kel16s> given(pSrcDst, 0);
    const Words4x4 predicted(pPredCoeffs);
    Words4x4 levels;
    for (int i = 0; i < 16; ++i) {
        const bool isThere = i == 0 ? !pDC : hasAC;
        levels.at[i] = requantised(isThere ? given(0, i) : 0, predicted(i), i, 6, false, order);
    }
    Words4x4 scaled = dequantised4x4(levels, order.qs, nullptr);
    if (pDC) scaled.at[0] = static_cast<Kel32u>(load<Kel16s>(reinterpret_cast<const unsigned char *>(pDC)));
    Residual4x4(scaled).words().storeTo(pSrcDst);
    return kelStsNoErr;
}

static KelStatus scaleChromaDC(Kel16s *pSrcDst, const Kel16s *pPredDC, const Switching &order) {
    if (anyNull(pSrcDst, pPredDC)) return kelStsNullPtrErr;
    if (!inRange(order)) return kelStsRangeErr;
    const Words<4> given(pSrcDst), predicted = transformedDC(Words<4>(pPredDC));
    Words<4> levels;
    for (int i = 0; i < 4; ++i) levels.at[i] = requantised(given(i), predicted(i), 0, 5, true, order);
    dequantisedDC(levels, order.qs, dcLevelScale(order.qs, nullptr)).storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliDequantTransformResidual_SISP_H264_16s_C1I(Kel16s *pSrcDst, const Kel16s *pPredCoeffs,
                                                         const Kel16s *pDC, int AC, int QP, int QS,
                                                         int switchPicture) {
    return reconstructBlock(pSrcDst, pPredCoeffs, pDC, AC != 0, {QP, QS, switchPicture != 0});
}

KelStatus keliTransformDequantChromaDC_SISP_H264_16s_C1I(Kel16s *pSrcDst, const Kel16s *pPredDC, int QP,
                                                         int QS, int switchPicture) {
    return scaleChromaDC(pSrcDst, pPredDC, {QP, QS, switchPicture != 0});
}

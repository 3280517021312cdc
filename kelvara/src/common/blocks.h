// blocks.h - arithmetic of blocks: kernels and argument checks.

#ifndef KELVARA_BLOCKS_H
#define KELVARA_BLOCKS_H

#include "compensation.h"
#include "differences.h"
#include "sad.h"

namespace kelvara {

static_assert(McHF + McFH == McHH, "the position of both directions is their sum");

// The position that the lowest bits of a motion vector in half samples tell, the horizontal one in bit 0. A
// number that is none becomes no position.
inline int mcTypeOfAcc(int acc) {
    if (acc < 0 || acc > 3) return -1;
    return (acc & 1 ? McHF : McFF) + (acc & 2 ? McFH : McFF);
}

// ---- argument checks -----------------------------------------------------------

// From is Reference or Bidirectional; one of its blocks may be the destination.
template <int W, int H, class From>
inline KelStatus storePrediction(const From &from, Kel8u *pDst, int dstStep, int rounding) {
    if (anyNull(from) || anyNull(pDst)) return kelStsNullPtrErr;
    if (tooNarrow(from, W) || tooNarrow<Kel8u>(dstStep, W)) return kelStsStepErr;
    if (!isMcType(from) || !isRoundControl(rounding)) return kelStsRangeErr;
    const Prediction<W, H> pred(from, rounding);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) dst.set(row, col, pred(row, col));
    }
    return kelStsNoErr;
}

// Source, step, second source and destination, step, acc, rounding. The mean is that of two predictions, the
// second at its full-sample position.
template <int W, int H>
inline KelStatus averageInto(const Kel8u *pSrc, int srcStep, Kel8u *pSrcDst, int srcDstStep, int acc,
                             int rounding) {
    const Bidirectional both{{pSrc, srcStep, mcTypeOfAcc(acc)}, {pSrcDst, srcDstStep, McFF}};
    return storePrediction<W, H>(both, pSrcDst, srcDstStep, rounding);
}

template <int Size>
inline KelStatus subtractSad(const Kel8u *pSrc1, int src1Step, const Kel8u *pSrc2, int src2Step, Kel16s *pDst,
                             int dstStep, Kel32s *pSAD) {
    if (anyNull(pSAD)) return kelStsNullPtrErr;
    const Reference second{pSrc2, src2Step, McFF};
    const KelStatus status = getDiff<Size, Size>(pSrc1, src1Step, second, pDst, dstStep, 0);
    if (status != kelStsNoErr) return status;
    Sad<Size, Size>::run(Samples<Kel8u>(pSrc1, src1Step), Samples<Kel8u>(pSrc2, src2Step), pSAD);
    return kelStsNoErr;
}

template <int Size>
inline KelStatus addConstant(int value, Kel8u *pSrcDst, int srcDstStep) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcDstStep, Size)) return kelStsStepErr;
    const Prediction<Size, Size> present(Reference{pSrcDst, srcDstStep, McFF}, 0);
    addResidual<Size, Size>(
        present, [value](int, int) { return value; }, Target<Kel8u>(pSrcDst, srcDstStep));
    return kelStsNoErr;
}

} // namespace kelvara

#endif

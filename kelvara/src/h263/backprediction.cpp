// backprediction.cpp - the exported backward prediction of PB-frames of H.263.

#include "../common/blocks.h"
#include "kelvc.h"

using namespace kelvara;

// ITU-T H.263 G.5: the sum of both predictions divided by two, cut off.
template <class Block>
static void addBackward(Block backward, KeliSize size, Kel8u *pSrcDst, int srcDstStep) {
    const Samples<Kel8u> forward(pSrcDst, srcDstStep);
    const Target<Kel8u> dst(pSrcDst, srcDstStep);
    for (int row = 0; row < size.height; ++row) {
        for (int col = 0; col < size.width; ++col)
            dst.set(row, col, (forward(row, col) + backward(row, col)) >> 1);
    }
}

KelStatus keliAddBackPredPB_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pSrcDst,
                                        int srcDstStep, int acc) {
    if (anyNull(pSrc, pSrcDst)) return kelStsNullPtrErr;
    if (size.width < 1 || size.height < 1) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(srcStep, size.width) || tooNarrow<Kel8u>(srcDstStep, size.width))
        return kelStsStepErr;
    const int mcType = mcTypeOfAcc(acc);
    if (!isMcType(mcType)) return kelStsRangeErr;
    atPosition(mcType, Samples<Kel8u>(pSrc, srcStep),
               [&](auto backward) { addBackward(backward, size, pSrcDst, srcDstStep); });
    return kelStsNoErr;
}

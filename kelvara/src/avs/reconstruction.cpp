// reconstruction.cpp - AVS macroblocks (GB/T 20090.2) from prediction and residual.

#include "../common/checks.h"
#include "../common/macroblock.h"
#include "intraprediction.h"
#include "kelvc.h"
#include "quantisers.h"

namespace kelvara {

namespace avs {

namespace {

const int lumaBlocks = 4;

// Bits of the pattern behind those of luma.
const int chromaBlocks = 4;

struct Scaling {
    int qp;
    bool bypass; // coefficients are differences already
};

// ---- blocks ---------------------------------------------------------------------------

Differences<8> differencesOf(const Block8x8<Kel16s> &coeffs, const Scaling &scaling) {
    Differences<8> result;
    if (scaling.bypass) {
        result.set<8>(0, 0, [&](int row, int col) { return coeffs.at[8 * row + col]; });
    } else {
        result.set<8>(0, 0, Residual(dequantised(coeffs, scaling.qp)));
    }
    return result;
}

// The plane's block behind bit `bit` of the pattern, from its prediction.
void storeIntra(CodedBlocks &coded, int bit, Plane block, const Square<8> &predicted,
                const Scaling &scaling) {
    if (!coded.has(bit)) return predicted.storeTo(block.target());
    storeSum(predicted, differencesOf(coded.take<Block8x8<Kel16s>>(bit), scaling), block.target());
}

// The same where the plane holds the prediction.
void addInter(CodedBlocks &coded, int bit, Plane block, const Scaling &scaling) {
    if (!coded.has(bit)) return;
    storeSum(block.samples(), differencesOf(coded.take<Block8x8<Kel16s>>(bit), scaling), block.target());
}

Plane lumaBlock(Plane plane, int k) {
    const BlockPlace<8> place(k);
    return plane.at(place.row, place.col);
}

// ---- argument checks --------------------------------------------------------------------

bool allowAll(const Kel32s *modes, int available) {
    for (int k = 0; k < lumaBlocks; ++k) {
        if (!allows(lumaNeeds, modeOf(modes, k), avs::neighboursOf(k, available))) return false;
    }
    return true;
}

KelStatus intraLuma(Kel16s **pp, Plane plane, const Kel32s *modes, Kel32u cbp, int available,
                    const Scaling &scaling) {
    const CoeffPointer coeffs(pp);
    if (anyNull(coeffs.get(), plane.p) || anyNull(modes)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(plane.step, 16)) return kelStsStepErr;
    if (!isQp(scaling.qp) || !allowAll(modes, available)) return kelStsRangeErr;
    CodedBlocks coded(coeffs.get(), cbp);
    for (int k = 0; k < lumaBlocks; ++k) { // each is predicted from those before it
        const Plane block = lumaBlock(plane, k);
        const Border border(block.samples(), avs::neighboursOf(k, available));
        storeIntra(coded, k, block, predictedLuma(border, modeOf(modes, k)), scaling);
    }
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

KelStatus interLuma(Kel16s **pp, Plane plane, Kel32u cbp, const Scaling &scaling) {
    const CoeffPointer coeffs(pp);
    if (anyNull(coeffs.get(), plane.p)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(plane.step, 16)) return kelStsStepErr;
    if (!isQp(scaling.qp)) return kelStsRangeErr;
    CodedBlocks coded(coeffs.get(), cbp);
    for (int k = 0; k < lumaBlocks; ++k) addInter(coded, k, lumaBlock(plane, k), scaling);
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

KelStatus checkChroma(Kel16s **pp, const Plane (&planes)[2], int qp) {
    if (anyNull(CoeffPointer(pp).get(), planes[0].p, planes[1].p)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(planes[0].step, 8)) return kelStsStepErr;
    return isQp(qp) ? kelStsNoErr : kelStsRangeErr;
}

KelStatus intraChroma(Kel16s **pp, const Plane (&planes)[2], int mode, Kel32u cbp, int qp) {
    if (const KelStatus status = checkChroma(pp, planes, qp)) return status;
    if (!allows(chromaNeeds, mode, AllAround)) return kelStsRangeErr;
    const CoeffPointer coeffs(pp);
    CodedBlocks coded(coeffs.get(), cbp);
    for (int c = 0; c < 2; ++c) {
        const Border border(planes[c].samples(), AllAround);
        storeIntra(coded, chromaBlocks + c, planes[c], predictedChroma(border, mode), {qp, false});
    }
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

KelStatus interChroma(Kel16s **pp, const Plane (&planes)[2], Kel32u cbp, int qp) {
    if (const KelStatus status = checkChroma(pp, planes, qp)) return status;
    const CoeffPointer coeffs(pp);
    CodedBlocks coded(coeffs.get(), cbp);
    for (int c = 0; c < 2; ++c) addInter(coded, chromaBlocks + c, planes[c], {qp, false});
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

} // namespace

} // namespace avs

} // namespace kelvara

using namespace kelvara;

// ---- exports ------------------------------------------------------------------------------

KelStatus keliReconstructLumaIntra_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                 const Kel32s *pPredModes, Kel32u cbp, int QP,
                                                 int availability, int bypassFlag) {
    return avs::intraLuma(ppSrcDstCoeff, {pSrcDst, srcDstStep}, pPredModes, cbp, withWholeLeft(availability),
                          {QP, bypassFlag != 0});
}

KelStatus keliReconstructLumaInter_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                 Kel32u cbp, int QP, int bypassFlag) {
    return avs::interLuma(ppSrcDstCoeff, {pSrcDst, srcDstStep}, cbp, {QP, bypassFlag != 0});
}

KelStatus keliReconstructChromaIntra_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV,
                                                   int srcDstStep, int predMode, Kel32u cbp, int QP) {
    const Plane planes[2] = {{pSrcDstU, srcDstStep}, {pSrcDstV, srcDstStep}};
    return avs::intraChroma(ppSrcDstCoeff, planes, predMode, cbp, QP);
}

KelStatus keliReconstructChromaInter_AVS_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU, Kel8u *pSrcDstV,
                                                   int srcDstStep, Kel32u cbp, int QP) {
    const Plane planes[2] = {{pSrcDstU, srcDstStep}, {pSrcDstV, srcDstStep}};
    return avs::interChroma(ppSrcDstCoeff, planes, cbp, QP);
}

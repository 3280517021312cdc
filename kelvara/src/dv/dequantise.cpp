// dequantise.cpp - inverse quantisation and weighting of DV coefficients.

#include "../common/block8x8.h"
#include "../common/checks.h"
#include "kelvc.h"

namespace kelvara {

static constexpr int dvWeightBits = 12, dv100WeightBits = 5; // behind the binary point
static constexpr int maxStep100 = 52 << 3;                   // SMPTE 370M: 52, doubled for class number 3

static Kel16s limited(Kel64s value) {
    return static_cast<Kel16s>(std::clamp<Kel64s>(value, -32768, 32767));
}

// Of a number with `bits` bits behind the point.
static Kel16s nearest(Kel64s value, int bits) {
    return limited((value + (Kel64s{1} << (bits - 1))) >> bits);
}

static KelStatus dequantise(Kel16s *pSrcDst, const Kel16s *pSteps) {
    if (anyNull(pSrcDst, pSteps)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    const Block8x8<Kel16s> steps(pSteps);
    for (int i = 0; i < 64; ++i) block.at[i] = limited(block.at[i] * steps.at[i]);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

// SMPTE 314M and IEC 61834-2: quantisation and weighting undone.
static KelStatus dequantiseWeighted(Kel16s *pSrcDst, const Kel16s *pSteps, const Kel16s *pInverseWeights) {
    if (anyNull(pSrcDst, pSteps, pInverseWeights)) return kelStsNullPtrErr;
    Block8x8<Kel16s> block(pSrcDst);
    const Block8x8<Kel16s> steps(pSteps), weights(pInverseWeights);
    for (int i = 0; i < 64; ++i) {
        block.at[i] = nearest(Kel64s{block.at[i]} * steps.at[i] * weights.at[i], dvWeightBits);
    }
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

// SMPTE 370M: the same with one step for all coefficients but DC.
static KelStatus dequantiseWeighted100(Kel16s *pSrcDst, const Kel16s *pWeights, int step) {
    if (anyNull(pSrcDst, pWeights)) return kelStsNullPtrErr;
    if (step < 1 || step > maxStep100) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    const Block8x8<Kel16s> weights(pWeights);
    for (int i = 0; i < 64; ++i) {
        const Kel64s weighted = Kel64s{block.at[i]} * weights.at[i];
        block.at[i] = nearest(i == 0 ? weighted : weighted * step, dv100WeightBits);
    }
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliQuantInv_DV_16s_C1I(Kel16s *pSrcDst, const Kel16s *pMatrix) {
    return dequantise(pSrcDst, pMatrix);
}

KelStatus keliQuantWeightBlockInv_DV_16s_C1I(Kel16s *pSrcDst, const Kel16s *pDeQuantTable,
                                             const Kel16s *pWeightInvTable) {
    return dequantiseWeighted(pSrcDst, pDeQuantTable, pWeightInvTable);
}

KelStatus keliQuantWeightBlockInv_DV100_16s_C1I(Kel16s *pSrcDst, const Kel16s *pWeightInvTable,
                                                int quantStep) {
    return dequantiseWeighted100(pSrcDst, pWeightInvTable, quantStep);
}

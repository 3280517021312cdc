// quantise.cpp - quantisation of H.263 coefficients and its inverse.

#include "../common/checks.h"
#include "../common/intradc.h"
#include "../common/samples.h"
#include "kelvc.h"
#include "levels.h"

namespace kelvara {

// ---- forward -------------------------------------------------------------------

// Where intervals begin is the encoder's choice. Test Model 8 drops the fraction of intra levels and widens
// the interval around zero of inter levels by half a QUANT. Annex I rebuilds multiples of the step, to which
// rounding to the nearest belongs.
enum class Rounding { Down, WideZero, Nearest };

static int quantised(int value, int QP, Rounding rounding) {
    const int offset = rounding == Rounding::WideZero ? -(QP / 2) : rounding == Rounding::Nearest ? QP : 0;
    const int magnitude = std::max(std::abs(value) + offset, 0) / (2 * QP);
    return value < 0 ? -magnitude : magnitude;
}

// To the nearest level.
static Kel16s quantisedDc(int value) {
    return static_cast<Kel16s>(limitedDcLevel((std::max(value, 0) + DcStep / 2) / DcStep));
}

// Elements first to 63; returns how many levels other than 0 there are.
static int quantiseFrom(int first, Block8x8<Kel16s> &block, int QP, Rounding rounding, bool modQuant) {
    const LevelRange range(modQuant);
    int count = 0;
    for (int i = first; i < 64; ++i) {
        const int level = std::clamp(quantised(block.at[i], QP, rounding), range.low, range.high);
        block.at[i] = static_cast<Kel16s>(level);
        count += level != 0;
    }
    return count;
}

static KelStatus quantiseIntra(Kel16s *pSrcDst, int QP, int *pCount, int advIntra, int modQuant) {
    if (anyNull(pSrcDst) || anyNull(pCount)) return kelStsNullPtrErr;
    if (!isQuant(QP) || !isFlag(advIntra) || !isFlag(modQuant)) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    if (!advIntra) block.at[0] = quantisedDc(block.at[0]);
    const Rounding rounding = advIntra ? Rounding::Nearest : Rounding::Down;
    const int count = quantiseFrom(advIntra ? 0 : 1, block, QP, rounding, modQuant != 0);
    store(pCount, count);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

static KelStatus quantiseInter(Kel16s *pSrcDst, int QP, int *pCount, int modQuant) {
    if (anyNull(pSrcDst) || anyNull(pCount)) return kelStsNullPtrErr;
    if (!isQuant(QP) || !isFlag(modQuant)) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    const int count = quantiseFrom(0, block, QP, Rounding::WideZero, modQuant != 0);
    store(pCount, count);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

// ---- inverse -------------------------------------------------------------------

static KelStatus dequantiseIntra(Kel16s *pSrcDst, int last, int QP, int advIntra, int modQuant) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (!isLastIndex(last) || !isQuant(QP) || !isFlag(advIntra) || !isFlag(modQuant)) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    reconstructIntra(block, last, QP, advIntra != 0);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

static KelStatus dequantiseInter(Kel16s *pSrcDst, int last, int QP, int modQuant) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (!isLastIndex(last) || !isQuant(QP) || !isFlag(modQuant)) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    reconstruct(block, 0, last, QP);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliQuantIntra_H263_16s_C1I(Kel16s *pSrcDst, int QP, int *pCountNonZero, int advIntraFlag,
                                      int modQuantFlag) {
    return quantiseIntra(pSrcDst, QP, pCountNonZero, advIntraFlag, modQuantFlag);
}

KelStatus keliQuantInter_H263_16s_C1I(Kel16s *pSrcDst, int QP, int *pCountNonZero, int modQuantFlag) {
    return quantiseInter(pSrcDst, QP, pCountNonZero, modQuantFlag);
}

KelStatus keliQuantInvIntra_H263_16s_C1I(Kel16s *pSrcDst, int indxLastNonZero, int QP, int advIntraFlag,
                                         int modQuantFlag) {
    return dequantiseIntra(pSrcDst, indxLastNonZero, QP, advIntraFlag, modQuantFlag);
}

KelStatus keliQuantInvInter_H263_16s_C1I(Kel16s *pSrcDst, int indxLastNonZero, int QP, int modQuantFlag) {
    return dequantiseInter(pSrcDst, indxLastNonZero, QP, modQuantFlag);
}

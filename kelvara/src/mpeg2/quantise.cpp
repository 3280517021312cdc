// quantise.cpp - quantisation of MPEG-2 coefficients and its inverse.

#include "../common/block8x8.h"
#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// The largest quantiser_scale of ISO/IEC 13818-2 Table 7-6.
static bool isQuantiserScale(int scale) {
    return scale >= 1 && scale <= 112;
}

// ---- forward -------------------------------------------------------------------

// The escape code carries -2047 to 2047 (ISO/IEC 13818-2 Table B-16). The order of the arguments makes a
// limit of what is not a number.
static Kel16s limitedLevel(double level) {
    return static_cast<Kel16s>(std::max(-2047.0, std::min(2047.0, level)));
}

// The rounding is the encoder's choice: dropping the fraction of inter blocks, and in intra blocks a step of
// 5/8 for the interval around zero, as in Test Model 5.
template <bool intra>
static KelStatus quantise(Kel16s *pSrcDst, int scale, const Kel32f *pInvMatrix, int *pCount) {
    if (anyNull(pSrcDst) || anyNull(pInvMatrix) || anyNull(pCount)) return kelStsNullPtrErr;
    if (!isQuantiserScale(scale)) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    const Block8x8<Kel32f> reciprocals(pInvMatrix);
    int count = 0;
    for (int i = intra; i < 64; ++i) {
        double level = 16.0 * block.at[i] * reciprocals.at[i] / scale;
        if (intra) level += level > 0 ? 0.375 : -0.375;
        block.at[i] = limitedLevel(level);
        count += block.at[i] != 0;
    }
    block.storeTo(pSrcDst);
    store<int>(pCount, count);
    return kelStsNoErr;
}

// ---- inverse -------------------------------------------------------------------

static Kel16s saturated(Kel64s value) {
    return static_cast<Kel16s>(std::clamp<Kel64s>(value, -2048, 2047));
}

// ISO/IEC 13818-2 7.4.4: the sum of a block is to be odd.
static void controlMismatch(Block8x8<Kel16s> &block) {
    int sum = 0;
    for (Kel16s value : block.at) sum += value;
    if (sum % 2 == 0) block.at[63] = static_cast<Kel16s>(block.at[63] ^ 1);
}

// ISO/IEC 13818-2 7.4.2.3 and 7.4.3.
template <bool intra>
static KelStatus dequantise(Kel16s *pSrcDst, int scale, const Kel16s *pMatrix) {
    if (anyNull(pSrcDst, pMatrix)) return kelStsNullPtrErr;
    if (!isQuantiserScale(scale)) return kelStsRangeErr;
    Block8x8<Kel16s> block(pSrcDst);
    const Block8x8<Kel16s> weights(pMatrix);
    const Kel16s dc = block.at[0];
    for (int i = 0; i < 64; ++i) {
        const int level = block.at[i];
        const int k = intra ? 0 : (level > 0) - (level < 0);
        block.at[i] = saturated(static_cast<Kel64s>(2 * level + k) * (weights.at[i] * scale) / 32);
    }
    if (intra) block.at[0] = saturated(dc);
    controlMismatch(block);
    block.storeTo(pSrcDst);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliQuantIntra_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel32f *pInvMatrix,
                                       int *pCount) {
    return quantise<true>(pSrcDst, quantiserScale, pInvMatrix, pCount);
}

KelStatus keliQuant_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel32f *pInvMatrix,
                                  int *pCount) {
    return quantise<false>(pSrcDst, quantiserScale, pInvMatrix, pCount);
}

KelStatus keliQuantInvIntra_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel16s *pMatrix) {
    return dequantise<true>(pSrcDst, quantiserScale, pMatrix);
}

KelStatus keliQuantInv_MPEG2_16s_C1I(Kel16s *pSrcDst, int quantiserScale, const Kel16s *pMatrix) {
    return dequantise<false>(pSrcDst, quantiserScale, pMatrix);
}

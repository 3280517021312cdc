// quantise.h - quantisers of MPEG-4 blocks and their inverses.

#ifndef KELVARA_MPEG4QUANTISE_H
#define KELVARA_MPEG4QUANTISE_H

#include "../common/block8x8.h"
#include "kelvc_mpeg4bits.h"

namespace kelvara {

enum class QuantKind : Kel32u { InvIntra = 0x6d347131, InvInter, Intra, Inter };

// What lies in the caller's memory. The bytes may come from anywhere, so what is read of them is judged.
struct Quantiser {
    // kelStsContextErr if an object of the kind does not lie there.
    KelStatus loadFrom(const KeliQuantSpec_MPEG4 *pSpec, QuantKind wanted);

    // Range of coefficients, 7.4.4.4.
    int highest() const { return (8 << bitsPerPixel) - 1; }
    int lowest() const { return -(8 << bitsPerPixel); }

    QuantKind kind;
    Kel32s bitsPerPixel;
    Kel32s weighted; // 1: the first method
    Kel8u weights[64];
};

// quantiser_scale has quant_precision bits, 3 to 9.
inline bool isQuantiserScale(int QP) {
    return QP >= 1 && QP <= 511;
}

inline bool isBlockType(int blockType) {
    return blockType == 0 || blockType == 1;
}

// ISO/IEC 14496-2 Table 7-1. REQUIRES isBlockType(blockType).
inline int dcScaler(int QP, int blockType) {
    if (QP <= 4) return 8;
    if (blockType == 1) return QP <= 24 ? (QP + 13) / 2 : QP - 6;
    return QP <= 8 ? 2 * QP : QP <= 24 ? QP + 8 : 2 * QP - 16;
}

// The steps of ISO/IEC 14496-2 7.4.4 on elements 0 to end - 1; intra blocks have their DC set afterwards.
void dequantise(Block8x8<Kel16s> &block, int end, const Quantiser &quantiser, int QP, bool intra);
// 7.4.4.5, of the first method alone: the sum of elements 0 to end - 1 and the last one is to be odd.
void controlMismatch(Block8x8<Kel16s> &block, int end, const Quantiser &quantiser);

} // namespace kelvara

#endif

// quantise.cpp - how MPEG-4 coefficients are quantised, and the inverse.

#include "quantise.h"

#include "../common/blockevents.h"
#include "../common/checks.h"
#include "../common/samples.h"

#include <cstdlib>

namespace kelvara {

// ---- quantisers in the caller's memory ---------------------------------------------

static bool isBitsPerPixel(int bits) {
    return bits >= 4 && bits <= 12;
}

static bool hasZero(const Kel8u *weights) {
    return std::find(weights, weights + 64, 0) != weights + 64;
}

KelStatus Quantiser::loadFrom(const KeliQuantSpec_MPEG4 *pSpec, QuantKind wanted) {
    std::memcpy(static_cast<void *>(this), static_cast<const void *>(pSpec), sizeof *this);
    if (kind != wanted || !isBitsPerPixel(bitsPerPixel)) return kelStsContextErr;
    const bool divides = kind == QuantKind::Intra || kind == QuantKind::Inter;
    return divides && weighted && hasZero(weights) ? kelStsContextErr : kelStsNoErr;
}

static KelStatus getSize(int *pSpecSize) {
    if (anyNull(pSpecSize)) return kelStsNullPtrErr;
    store<int>(pSpecSize, sizeof(Quantiser));
    return kelStsNoErr;
}

static KelStatus init(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel,
                      QuantKind kind) {
    if (anyNull(pSpec)) return kelStsNullPtrErr;
    if (!isBitsPerPixel(bitsPerPixel) || (pQuantMatrix && hasZero(pQuantMatrix))) return kelStsRangeErr;
    Quantiser quantiser{kind, bitsPerPixel, pQuantMatrix != nullptr, {}};
    if (pQuantMatrix) std::copy(pQuantMatrix, pQuantMatrix + 64, quantiser.weights);
    std::memcpy(static_cast<void *>(pSpec), &quantiser, sizeof quantiser);
    return kelStsNoErr;
}

// ---- inverse -------------------------------------------------------------------------

// 7.4.4.1.2. The product has up to 34 bits.
static Kel64s weightedCoefficient(int level, int weight, int QP, bool intra) {
    const int k = intra ? 0 : (level > 0) - (level < 0);
    return static_cast<Kel64s>(2 * level + k) * (weight * QP) / 16;
}

// 7.4.4.2.
static int unweightedCoefficient(int level, int QP) {
    const int magnitude = (2 * std::abs(level) + 1) * QP - (QP % 2 == 0);
    return level > 0 ? magnitude : level < 0 ? -magnitude : 0;
}

void dequantise(Block8x8<Kel16s> &block, int end, const Quantiser &quantiser, int QP, bool intra) {
    const Kel64s lowest = quantiser.lowest(), highest = quantiser.highest();
    for (int i = 0; i < end; ++i) {
        const int level = block.at[i];
        const Kel64s value = quantiser.weighted ? weightedCoefficient(level, quantiser.weights[i], QP, intra)
                                                : unweightedCoefficient(level, QP);
        block.at[i] = static_cast<Kel16s>(std::clamp(value, lowest, highest));
    }
}

void controlMismatch(Block8x8<Kel16s> &block, int end, const Quantiser &quantiser) {
    if (!quantiser.weighted) return;
    int sum = end < 64 ? block.at[63] : 0;
    for (int i = 0; i < end; ++i) sum += block.at[i];
    if (sum % 2 == 0) block.at[63] = static_cast<Kel16s>(block.at[63] ^ 1);
}

// How many elements a block has in memory up to a place in the order of its codes, by whichever scan.
struct Ends {
    Kel8u at[64];
};

static constexpr Ends endsOfScans() {
    Ends ends{};
    int end = 0;
    for (int place = 0; place < 64; ++place) {
        for (const auto &order : scanOrders) end = order[place] >= end ? order[place] + 1 : end;
        ends.at[place] = static_cast<Kel8u>(end);
    }
    return ends;
}

static constexpr Ends scanEnds = endsOfScans();

// The DC coefficient is the caller's to set between dequantising and mismatch control.
template <class SetDc>
static KelStatus dequantiseBlock(Kel16s *pCoeffs, int indxLastNonZero, const KeliQuantSpec_MPEG4 *pSpec,
                                 int QP, QuantKind kind, SetDc setDc) {
    if (indxLastNonZero < 0 || indxLastNonZero > 63 || !isQuantiserScale(QP)) return kelStsRangeErr;
    Quantiser quantiser;
    const KelStatus status = quantiser.loadFrom(pSpec, kind);
    if (status != kelStsNoErr) return status;
    Block8x8<Kel16s> block(pCoeffs);
    const int dc = block.at[0], end = scanEnds.at[indxLastNonZero];
    dequantise(block, end, quantiser, QP, kind == QuantKind::InvIntra);
    setDc(block, dc, quantiser);
    controlMismatch(block, end, quantiser);
    block.storeTo(pCoeffs);
    return kelStsNoErr;
}

// ---- forward -------------------------------------------------------------------------

// The quotient of numbers that are not negative, to the nearest.
static int rounded(int a, int b) {
    return (a + b / 2) / b;
}

// The escape codes carry 11 bits and a sign (7.4.1.3).
static int limitedLevel(int magnitude) {
    return std::min(magnitude, 2047);
}

static int weightedLevel(int magnitude, int weight, int QP, bool intra) {
    return (rounded(16 * magnitude, weight) + (intra ? rounded(3 * QP, 4) : 0)) / (2 * QP);
}

static int unweightedLevel(int magnitude, int QP, bool intra) {
    return std::max(0, magnitude - (intra ? 0 : QP / 2)) / (2 * QP);
}

static void quantise(Block8x8<Kel16s> &block, const Quantiser &quantiser, int QP, bool intra) {
    for (int i = 0; i < 64; ++i) {
        const int magnitude = std::abs(block.at[i]);
        const int level =
            limitedLevel(quantiser.weighted ? weightedLevel(magnitude, quantiser.weights[i], QP, intra)
                                            : unweightedLevel(magnitude, QP, intra));
        block.at[i] = static_cast<Kel16s>(block.at[i] < 0 ? -level : level);
    }
}

static Kel16s dcLevel(int dc, int scaler, const Quantiser &quantiser) {
    const int level = rounded(std::abs(dc), scaler);
    return static_cast<Kel16s>(
        std::clamp(dc < 0 ? -level : level, quantiser.lowest() / scaler, quantiser.highest() / scaler));
}

template <class SetDc>
static KelStatus quantiseBlock(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP, int *pCountNonZero,
                               QuantKind kind, SetDc setDc) {
    if (!isQuantiserScale(QP)) return kelStsRangeErr;
    Quantiser quantiser;
    const KelStatus status = quantiser.loadFrom(pSpec, kind);
    if (status != kelStsNoErr) return status;
    Block8x8<Kel16s> block(pCoeffs);
    const int dc = block.at[0];
    quantise(block, quantiser, QP, kind == QuantKind::Intra);
    setDc(block, dc, quantiser);
    block.storeTo(pCoeffs);
    store<int>(pCountNonZero, 64 - static_cast<int>(std::count(block.at, block.at + 64, 0)));
    return kelStsNoErr;
}

// ---- the checks of each signature ------------------------------------------------------

static const auto keepDc = [](Block8x8<Kel16s> &, int, const Quantiser &) {};

static KelStatus dequantiseIntra(Kel16s *pCoeffs, int indxLastNonZero, const KeliQuantSpec_MPEG4 *pSpec,
                                 int QP, int blockType) {
    if (anyNull(pCoeffs) || anyNull(pSpec)) return kelStsNullPtrErr;
    if (!isBlockType(blockType)) return kelStsRangeErr;
    return dequantiseBlock(pCoeffs, indxLastNonZero, pSpec, QP, QuantKind::InvIntra,
                           [=](Block8x8<Kel16s> &block, int dc, const Quantiser &q) {
                               const int value = dc * dcScaler(QP, blockType);
                               block.at[0] = static_cast<Kel16s>(std::clamp(value, q.lowest(), q.highest()));
                           });
}

static KelStatus dequantiseInter(Kel16s *pCoeffs, int indxLastNonZero, const KeliQuantSpec_MPEG4 *pSpec,
                                 int QP) {
    if (anyNull(pCoeffs) || anyNull(pSpec)) return kelStsNullPtrErr;
    return dequantiseBlock(pCoeffs, indxLastNonZero, pSpec, QP, QuantKind::InvInter, keepDc);
}

static KelStatus quantiseIntra(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP, int *pCountNonZero,
                               int blockType) {
    if (anyNull(pCoeffs) || anyNull(pSpec) || anyNull(pCountNonZero)) return kelStsNullPtrErr;
    if (!isBlockType(blockType)) return kelStsRangeErr;
    return quantiseBlock(pCoeffs, pSpec, QP, pCountNonZero, QuantKind::Intra,
                         [=](Block8x8<Kel16s> &block, int dc, const Quantiser &q) {
                             block.at[0] = dcLevel(dc, dcScaler(QP, blockType), q);
                         });
}

static KelStatus quantiseInter(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP,
                               int *pCountNonZero) {
    if (anyNull(pCoeffs) || anyNull(pSpec) || anyNull(pCountNonZero)) return kelStsNullPtrErr;
    return quantiseBlock(pCoeffs, pSpec, QP, pCountNonZero, QuantKind::Inter, keepDc);
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliQuantInvIntraGetSize_MPEG4(int *pSpecSize) {
    return getSize(pSpecSize);
}

KelStatus keliQuantInvInterGetSize_MPEG4(int *pSpecSize) {
    return getSize(pSpecSize);
}

KelStatus keliQuantIntraGetSize_MPEG4(int *pSpecSize) {
    return getSize(pSpecSize);
}

KelStatus keliQuantInterGetSize_MPEG4(int *pSpecSize) {
    return getSize(pSpecSize);
}

KelStatus keliQuantInvIntraInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec,
                                      int bitsPerPixel) {
    return init(pQuantMatrix, pSpec, bitsPerPixel, QuantKind::InvIntra);
}

KelStatus keliQuantInvInterInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec,
                                      int bitsPerPixel) {
    return init(pQuantMatrix, pSpec, bitsPerPixel, QuantKind::InvInter);
}

KelStatus keliQuantIntraInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel) {
    return init(pQuantMatrix, pSpec, bitsPerPixel, QuantKind::Intra);
}

KelStatus keliQuantInterInit_MPEG4(const Kel8u *pQuantMatrix, KeliQuantSpec_MPEG4 *pSpec, int bitsPerPixel) {
    return init(pQuantMatrix, pSpec, bitsPerPixel, QuantKind::Inter);
}

KelStatus keliQuantInvIntra_MPEG4_16s_C1I(Kel16s *pCoeffs, int indxLastNonZero,
                                          const KeliQuantSpec_MPEG4 *pSpec, int QP, int blockType) {
    return dequantiseIntra(pCoeffs, indxLastNonZero, pSpec, QP, blockType);
}

KelStatus keliQuantInvInter_MPEG4_16s_C1I(Kel16s *pCoeffs, int indxLastNonZero,
                                          const KeliQuantSpec_MPEG4 *pSpec, int QP) {
    return dequantiseInter(pCoeffs, indxLastNonZero, pSpec, QP);
}

KelStatus keliQuantIntra_MPEG4_16s_C1I(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP,
                                       int *pCountNonZero, int blockType) {
    return quantiseIntra(pCoeffs, pSpec, QP, pCountNonZero, blockType);
}

KelStatus keliQuantInter_MPEG4_16s_C1I(Kel16s *pCoeffs, const KeliQuantSpec_MPEG4 *pSpec, int QP,
                                       int *pCountNonZero) {
    return quantiseInter(pCoeffs, pSpec, QP, pCountNonZero);
}

// quantise.cpp - the exported quantisers of VC-1.

#include "quantisers.h"

#include <cstdlib>

namespace kelvara {
namespace vc1 {

// A quotient of 16 bits by 6 bits is at least 1/64 below the next integer, which float keeps apart: cut off,
// it is that of the integers.
template <Quantiser quantiser>
static int levelOf(int coeff, float doubleQuant, int half) {
    const int magnitude = std::abs(coeff) + (quantiser == Uniform ? half : 0);
    const int level = static_cast<int>(static_cast<float>(magnitude) / doubleQuant);
    return coeff < 0 ? -level : level;
}

template <Quantiser quantiser, BlockKind kind, int W>
static void quantiseRows(Samples<Kel16s> src, Target<Kel16s> dst, int height, int doubleQuant) {
    const int dc = src(0, 0), half = doubleQuant / 2;
    const float divisor = static_cast<float>(doubleQuant);
    for (int row = 0; row < height; ++row) {
        int levels[W];
        for (int col = 0; col < W; ++col) levels[col] = levelOf<quantiser>(src(row, col), divisor, half);
        for (int col = 0; col < W; ++col) dst.set(row, col, levels[col]);
    }
    if (kind == Intra) dst.set(0, 0, dc);
}

// block, step, doubleQuant, size
template <Quantiser quantiser, BlockKind kind>
static KelStatus quantise(Kel16s *pSrcDst, int srcDstStep, int doubleQuant, KeliSize size) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    const KelStatus status = checkBlock(size, srcDstStep, srcDstStep, doubleQuant);
    if (status != kelStsNoErr) return status;
    const Samples<Kel16s> src(pSrcDst, srcDstStep);
    const Target<Kel16s> dst(pSrcDst, srcDstStep);
    if (size.width == 8) {
        quantiseRows<quantiser, kind, 8>(src, dst, size.height, doubleQuant);
    } else {
        quantiseRows<quantiser, kind, 4>(src, dst, size.height, doubleQuant);
    }
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara::vc1;

KelStatus keliQuantIntraUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant) {
    return quantise<Uniform, Intra>(pSrcDst, srcDstStep, doubleQuant, intraSize);
}

KelStatus keliQuantIntraNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant) {
    return quantise<Nonuniform, Intra>(pSrcDst, srcDstStep, doubleQuant, intraSize);
}

KelStatus keliQuantInterUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant,
                                             KeliSize roiSize) {
    return quantise<Uniform, Inter>(pSrcDst, srcDstStep, doubleQuant, roiSize);
}

KelStatus keliQuantInterNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant,
                                                KeliSize roiSize) {
    return quantise<Nonuniform, Inter>(pSrcDst, srcDstStep, doubleQuant, roiSize);
}

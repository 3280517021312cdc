// dequantise.cpp - the exported inverse quantisers of VC-1.

#include "quantisers.h"

#include <algorithm>
#include <limits>

namespace kelvara {
namespace vc1 {

// SMPTE 421M 8.1.3.8
template <Quantiser quantiser>
static int reconstructed(int level, int doubleQuant) {
    const int sign = (level > 0) - (level < 0);
    const int value = level * doubleQuant + (quantiser == Nonuniform ? sign * mquant(doubleQuant) : 0);
    return std::clamp<int>(value, std::numeric_limits<Kel16s>::min(), std::numeric_limits<Kel16s>::max());
}

namespace {

// Grows by rows of W values to the area that holds all that are not 0.
template <int W>
class Extent {
public:
    void add(const int (&values)[W]) {
        int any = 0;
        for (int col = 0; col < W; ++col) {
            any |= values[col];
            m_columns[col] |= values[col];
        }
        ++m_rows;
        if (any) m_height = m_rows;
    }

    KeliSize size() const {
        int width = W;
        while (width > 0 && !m_columns[width - 1]) --width;
        return {width, m_height};
    }

private:
    int m_columns[W] = {};
    int m_rows = 0, m_height = 0;
};

} // namespace

template <Quantiser quantiser, BlockKind kind, int W>
static KeliSize dequantiseRows(Samples<Kel16s> src, Target<Kel16s> dst, int height, int doubleQuant) {
    Extent<W> extent;
    for (int row = 0; row < height; ++row) {
        int values[W];
        const int first = src(row, 0);
        for (int col = 0; col < W; ++col) values[col] = reconstructed<quantiser>(src(row, col), doubleQuant);
        if (kind == Intra && row == 0) values[0] = first;
        for (int col = 0; col < W; ++col) dst.set(row, col, values[col]);
        extent.add(values);
    }
    return extent.size();
}

// source, step, destination, step, doubleQuant, size, area other than 0; source and destination may be the
// same
template <Quantiser quantiser, BlockKind kind>
static KelStatus dequantise(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, int doubleQuant,
                            KeliSize size, KeliSize *pDstSizeNZ) {
    if (anyNull(pSrc, pDst, pDstSizeNZ)) return kelStsNullPtrErr;
    const KelStatus status = checkBlock(size, srcStep, dstStep, doubleQuant);
    if (status != kelStsNoErr) return status;
    const Samples<Kel16s> src(pSrc, srcStep);
    const Target<Kel16s> dst(pDst, dstStep);
    store(pDstSizeNZ, size.width == 8
                          ? dequantiseRows<quantiser, kind, 8>(src, dst, size.height, doubleQuant)
                          : dequantiseRows<quantiser, kind, 4>(src, dst, size.height, doubleQuant));
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara::vc1;

// ---- in place --------------------------------------------------------------------

KelStatus keliQuantInvIntraUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant,
                                                KeliSize *pDstSizeNZ) {
    return dequantise<Uniform, Intra>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, doubleQuant, intraSize,
                                      pDstSizeNZ);
}

KelStatus keliQuantInvIntraNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant,
                                                   KeliSize *pDstSizeNZ) {
    return dequantise<Nonuniform, Intra>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, doubleQuant, intraSize,
                                         pDstSizeNZ);
}

KelStatus keliQuantInvInterUniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant,
                                                KeliSize roiSize, KeliSize *pDstSizeNZ) {
    return dequantise<Uniform, Inter>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, doubleQuant, roiSize,
                                      pDstSizeNZ);
}

KelStatus keliQuantInvInterNonuniform_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, int doubleQuant,
                                                   KeliSize roiSize, KeliSize *pDstSizeNZ) {
    return dequantise<Nonuniform, Inter>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, doubleQuant, roiSize,
                                         pDstSizeNZ);
}

// ---- to another block --------------------------------------------------------------

KelStatus keliQuantInvIntraUniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                               int doubleQuant, KeliSize *pDstSizeNZ) {
    return dequantise<Uniform, Intra>(pSrc, srcStep, pDst, dstStep, doubleQuant, intraSize, pDstSizeNZ);
}

KelStatus keliQuantInvIntraNonuniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                                  int doubleQuant, KeliSize *pDstSizeNZ) {
    return dequantise<Nonuniform, Intra>(pSrc, srcStep, pDst, dstStep, doubleQuant, intraSize, pDstSizeNZ);
}

KelStatus keliQuantInvInterUniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                               int doubleQuant, KeliSize roiSize, KeliSize *pDstSizeNZ) {
    return dequantise<Uniform, Inter>(pSrc, srcStep, pDst, dstStep, doubleQuant, roiSize, pDstSizeNZ);
}

KelStatus keliQuantInvInterNonuniform_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                                  int doubleQuant, KeliSize roiSize, KeliSize *pDstSizeNZ) {
    return dequantise<Nonuniform, Inter>(pSrc, srcStep, pDst, dstStep, doubleQuant, roiSize, pDstSizeNZ);
}

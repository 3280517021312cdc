// transform.cpp - the exported transforms of VC-1.

#include "transform.h"
#include "../common/checks.h"
#include "kelvc.h"

#include <limits>

namespace kelvara {
namespace vc1 {

template <int W, int H, class Block>
static void storeLimited(const Block &block, Kel16s *pDst, int dstStep) {
    const Target<Kel16s> dst(pDst, dstStep);
    const int low = std::numeric_limits<Kel16s>::min(), high = std::numeric_limits<Kel16s>::max();
    for (int row = 0; row < H; ++row) {
        for (int col = 0; col < W; ++col) dst.set(row, col, std::clamp(block(row, col), low, high));
    }
}

// source, step, destination, step, area other than 0; source and destination may be the same
template <int W, int H>
static KelStatus inverseTransform(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep, KeliSize nz) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (nz.width < 0 || nz.width > W || nz.height < 0 || nz.height > H) return kelStsSizeErr;
    if (tooNarrow<Kel16s>(srcStep, W) || tooNarrow<Kel16s>(dstStep, W)) return kelStsStepErr;
    storeLimited<W, H>(Residual<W, H>(Samples<Kel16s>(pSrc, srcStep), nz), pDst, dstStep);
    return kelStsNoErr;
}

// source, step, destination, step; source and destination may be the same
template <int W, int H>
static KelStatus forwardTransform(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel16s>(srcStep, W) || tooNarrow<Kel16s>(dstStep, W)) return kelStsStepErr;
    storeLimited<W, H>(Coefficients<W, H>(Samples<Kel16s>(pSrc, srcStep)), pDst, dstStep);
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara::vc1;

// ---- inverse ---------------------------------------------------------------------

KelStatus keliTransform8x8Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                          KeliSize srcSizeNZ) {
    return inverseTransform<8, 8>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}

KelStatus keliTransform8x4Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                          KeliSize srcSizeNZ) {
    return inverseTransform<8, 4>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}

KelStatus keliTransform4x8Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                          KeliSize srcSizeNZ) {
    return inverseTransform<4, 8>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}

KelStatus keliTransform4x4Inv_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep,
                                          KeliSize srcSizeNZ) {
    return inverseTransform<4, 4>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}

KelStatus keliTransform8x8Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ) {
    return inverseTransform<8, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}

KelStatus keliTransform8x4Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ) {
    return inverseTransform<8, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}

KelStatus keliTransform4x8Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ) {
    return inverseTransform<4, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}

KelStatus keliTransform4x4Inv_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep, KeliSize srcSizeNZ) {
    return inverseTransform<4, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}

// ---- forward ---------------------------------------------------------------------

KelStatus keliTransform8x8Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep) {
    return forwardTransform<8, 8>(pSrc, srcStep, pDst, dstStep);
}

KelStatus keliTransform8x4Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep) {
    return forwardTransform<8, 4>(pSrc, srcStep, pDst, dstStep);
}

KelStatus keliTransform4x8Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep) {
    return forwardTransform<4, 8>(pSrc, srcStep, pDst, dstStep);
}

KelStatus keliTransform4x4Fwd_VC1_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep) {
    return forwardTransform<4, 4>(pSrc, srcStep, pDst, dstStep);
}

KelStatus keliTransform8x8Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep) {
    return forwardTransform<8, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

KelStatus keliTransform8x4Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep) {
    return forwardTransform<8, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

KelStatus keliTransform4x8Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep) {
    return forwardTransform<4, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

KelStatus keliTransform4x4Fwd_VC1_16s_C1IR(Kel16s *pSrcDst, int srcDstStep) {
    return forwardTransform<4, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

// deblocking.cpp - the exported deblocking filters of H.264.

#include "kelvc.h"
#include "deblocking.h"

using namespace kelvara;

// ---- shapes ---------------------------------------------------------------------

// A macroblock has 16 strengths whatever the format of its chroma; chroma edges take those of the luma edges
// at the same place (8.7.2).

namespace {

struct LumaEdges {
    static constexpr EdgeShape value = {4, 4, 4, 4, 4, 4, true, 1};
};
template <int channels>
struct Chroma420Edges {
    static constexpr EdgeShape value = {2, 4, 4, 2, 8, 4, true, channels};
};
struct Chroma422VerEdges {
    static constexpr EdgeShape value = {2, 4, 4, 4, 8, 4, true, 1};
};
struct Chroma422HorEdges {
    static constexpr EdgeShape value = {4, 4, 4, 2, 4, 4, true, 1};
};
template <int lines>
struct MixedLeftEdge {
    static constexpr EdgeShape value = {1, 4, 4, lines, 4, 4, true, 1};
};

template <class Shape, Direction direction>
KelStatus deblockChroma(const KeliDeblockingInfo *info) {
    if (anyNull(info)) return kelStsNullPtrErr;
    return deblock<ChromaFilter, Shape, direction>(info->pSrcDst, info->srcDstStep, 8, info->pAlpha,
                                                   info->pBeta, info->pThresholds, info->pStrengths);
}

} // namespace

// ---- luma -----------------------------------------------------------------------

KelStatus keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha,
                                                        const Kel8u *pBeta, const Kel8u *pThresholds,
                                                        const Kel8u *pStrengths) {
    return deblock<LumaFilter, LumaEdges, VerEdge>(pSrcDst, srcDstStep, 16, pAlpha, pBeta, pThresholds,
                                                   pStrengths);
}

KelStatus keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha,
                                                        const Kel8u *pBeta, const Kel8u *pThresholds,
                                                        const Kel8u *pStrengths) {
    return deblock<LumaFilter, LumaEdges, HorEdge>(pSrcDst, srcDstStep, 16, pAlpha, pBeta, pThresholds,
                                                   pStrengths);
}

KelStatus keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep,
                                                              const Kel8u *pAlpha, const Kel8u *pBeta,
                                                              const Kel8u *pThresholds,
                                                              const Kel8u *pStrengths) {
    return deblock<LumaFilter, MixedLeftEdge<2>, VerEdge>(pSrcDst, srcDstStep, 16, pAlpha, pBeta, pThresholds,
                                                          pStrengths);
}

// ---- chroma -----------------------------------------------------------------------

KelStatus keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha,
                                                          const Kel8u *pBeta, const Kel8u *pThresholds,
                                                          const Kel8u *pStrengths) {
    return deblock<ChromaFilter, Chroma420Edges<1>, VerEdge>(pSrcDst, srcDstStep, 8, pAlpha, pBeta,
                                                             pThresholds, pStrengths);
}

KelStatus keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha,
                                                          const Kel8u *pBeta, const Kel8u *pThresholds,
                                                          const Kel8u *pStrengths) {
    return deblock<ChromaFilter, Chroma420Edges<1>, HorEdge>(pSrcDst, srcDstStep, 8, pAlpha, pBeta,
                                                             pThresholds, pStrengths);
}

KelStatus keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha,
                                                          const Kel8u *pBeta, const Kel8u *pThresholds,
                                                          const Kel8u *pStrengths) {
    return deblock<ChromaFilter, Chroma420Edges<2>, VerEdge>(pSrcDst, srcDstStep, 16, pAlpha, pBeta,
                                                             pThresholds, pStrengths);
}

KelStatus keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha,
                                                          const Kel8u *pBeta, const Kel8u *pThresholds,
                                                          const Kel8u *pStrengths) {
    return deblock<ChromaFilter, Chroma420Edges<2>, HorEdge>(pSrcDst, srcDstStep, 16, pAlpha, pBeta,
                                                             pThresholds, pStrengths);
}

KelStatus keliFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep,
                                                                const Kel8u *pAlpha, const Kel8u *pBeta,
                                                                const Kel8u *pThresholds,
                                                                const Kel8u *pStrengths) {
    return deblock<ChromaFilter, MixedLeftEdge<1>, VerEdge>(pSrcDst, srcDstStep, 8, pAlpha, pBeta,
                                                            pThresholds, pStrengths);
}

KelStatus keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR(const KeliDeblockingInfo *pInfo) {
    return deblockChroma<Chroma422VerEdges, VerEdge>(pInfo);
}

KelStatus keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR(const KeliDeblockingInfo *pInfo) {
    return deblockChroma<Chroma422HorEdges, HorEdge>(pInfo);
}

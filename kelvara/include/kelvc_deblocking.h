// kelvc_deblocking.h - the video coding functions that filter the edges of blocks, for H.264 and AVS.

#ifndef KELVC_DEBLOCKING_H
#define KELVC_DEBLOCKING_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. A filter changes the samples on both sides of the edges of one
// macroblock in place; pSrcDst is the macroblock's first sample and lies on its first edge. At most four
// samples in front of an edge and four behind it are read. VerEdge filters vertical edges, from left to
// right, HorEdge horizontal ones, from the top down. C1: one plane; C2: rows of pairs of chroma samples, both
// filtered alike. Steps are in bytes and at least a row of the macroblock: 16 bytes for luma and for C2,
// else 8.
//
// pAlpha[0] and pBeta[0] are for the first edge, the macroblock's own, pAlpha[1] and pBeta[1] for the edges
// in its inside. A value of 0 leaves the edges alone. An edge is cut into segments of equal length, each with
// a filtering strength: 0 leaves the segment alone.

// A filter's arguments in one record.
typedef struct {
    Kel8u *pSrcDst;
    Kel32s srcDstStep; // bytes
    const Kel8u *pAlpha;
    const Kel8u *pBeta;
    const Kel8u *pThresholds;
    const Kel8u *pStrengths;
} KeliDeblockingInfo;

// clang-format off

// ITU-T H.264 8.7. Strengths are 0 to 4, else kelStsRangeErr. pStrengths[4 * n + s] is that of the segment s,
// from 0 to 3, of the luma edge n, from 0 to 3; pThresholds[4 * n + s] is its tC0, for strengths 1 to 3.
KELAPI KelStatus keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);
KELAPI KelStatus keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);

// The chroma of 4:2:0, 8x8 samples a colour. It has two edges, which are the luma edges 0 and 2: strengths are
// those of the luma, 0 to 3 and 8 to 11. pThresholds has 8 values, 0 to 3 for the first edge.
KELAPI KelStatus keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);
KELAPI KelStatus keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);
KELAPI KelStatus keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);
KELAPI KelStatus keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);

// The chroma of 4:2:2, 8 samples wide and 16 high. Its two vertical edges have arrays as in 4:2:0, its four
// horizontal ones as the luma.
KELAPI KelStatus keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR(const KeliDeblockingInfo *pInfo);
KELAPI KelStatus keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR(const KeliDeblockingInfo *pInfo);

// The left edge of a macroblock whose left neighbours are a pair of the other kind, frame or field: each of
// the pair has a quantiser of its own and touches half of the rows, so that an edge takes two calls. One call
// filters 8 luma or 4 chroma rows with *pAlpha and *pBeta; each of the four strengths and thresholds is for 2
// luma rows or one chroma row.
KELAPI KelStatus keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);
KELAPI KelStatus keliFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds, const Kel8u *pStrengths);

// GB/T 20090.2, loop filter. Strengths are 0 to 2, else kelStsRangeErr. The luma has the edges of its 8x8
// blocks: pStrengths[2 * n + s] is that of the segment s of the edge n, both 0 or 1, and pThresholds[n] the
// edge's clipping value, for strength 1. The chroma of 4:2:0 has its first edge alone, with two segments.
KELAPI KelStatus keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo);
KELAPI KelStatus keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo);
KELAPI KelStatus keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo);
KELAPI KelStatus keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif

// kelvc_vc1motion.h - interpolation, intensity compensation and deblocking of VC-1.

#ifndef KELVC_VC1MOTION_H
#define KELVC_VC1MOTION_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// kelvc.h tells what all functions share. All steps are in bytes. C2 functions work on two colours,
// interleaved: their sizes and positions count pairs. Clauses are those of SMPTE 421M.

// clang-format off

// A block and where in its reference it is.
typedef struct {
    const Kel8u *pSrc; // the sample at the full-sample position of the block's first one
    Kel32s srcStep;    // at least a row of the block
    Kel8u *pDst;
    Kel32s dstStep;    // at least a row of the block
    Kel32s dx, dy;     // quarters of a sample to the right and down, 0 to 3
    KeliSize roiSize;  // 1 to 16 samples wide and high
    Kel32s roundControl; // RNDCTRL, 0 or 1
} KeliInterpolateVC1_8u;

// Prediction at quarters of a sample (8.3.6.5), bilinear or bicubic. Samples beside the block are read only in the
// directions in which it is between the samples: to the right for a dx other than 0, below it for a dy other
// than 0, one column or row by the bilinear functions. The bicubic one reads two and one more on the other side.
// kelStsNullPtrErr for a null pointer in the record, too.
KELAPI KelStatus keliInterpolateQPBilinear_VC1_8u_C1R(const KeliInterpolateVC1_8u *pParam);
KELAPI KelStatus keliInterpolateQPBilinear_VC1_8u_C2R(const KeliInterpolateVC1_8u *pParam);
KELAPI KelStatus keliInterpolateQPBicubic_VC1_8u_C1R(const KeliInterpolateVC1_8u *pParam);

// A block and where in a reference frame whose intensity is compensated it is.
typedef struct {
    const Kel8u *pSrc; // the first sample of the frame
    Kel32s srcStep;    // from row to row of the frame, at least a row of the block; shorter than a row of
                       // the frame it makes rows overlap
    Kel8u *pDst;
    Kel32s dstStep;    // at least a row of the block
    const Kel8u *pLUTBottom; // 256 compensated values each, for samples of the bottom and of the top field:
    const Kel8u *pLUTTop;    // rows of the frame with an odd and with an even number
    KeliSize sizeFrame;  // at least 1x1, with fieldPrediction or fieldPadding at least 1x2
    KeliSize sizeBlock;  // 1 to 16 samples wide and high
    KeliPoint pointBlockPos; // the full-sample position in the frame, anywhere; with fieldPrediction in the field
    Kel32s dx, dy;       // quarters of a sample from there, 0 to 3
    Kel32s roundControl;    // RNDCTRL, 0 or 1
    Kel32s fieldPrediction; // 1: the reference is one field, every second row of the frame
    Kel32s bottomField;     // 1: of these it is the bottom field, whose first row is that with number 1
    Kel32s fieldPadding;    // 1: rows above and below the frame have the samples of the nearest row of their own
                            // field, as in interlaced frames; 0: of the nearest row
} KeliInterpolateICBlockVC1_8u;

// The same prediction from a reference that is compensated first: each sample goes through the table of
// its field. Samples outside of the reference have the compensated value of the nearest one in it, and nothing
// outside of it is read. Progressive frames take the same table twice. kelStsRangeErr for a flag other than 0 and
// 1, too.
KELAPI KelStatus keliInterpolateICBilinearBlock_VC1_8u_C1R(const KeliInterpolateICBlockVC1_8u *pParam);
KELAPI KelStatus keliInterpolateICBilinearBlock_VC1_8u_C2R(const KeliInterpolateICBlockVC1_8u *pParam);
KELAPI KelStatus keliInterpolateICBicubicBlock_VC1_8u_C1R(const KeliInterpolateICBlockVC1_8u *pParam);

// In-loop deblocking (8.6) of one edge: of a macroblock of 16 lines for luma, of a block of 8 lines for chroma.
// VerEdge: a line is a row; HorEdge: a column. pSrcDst is the sample of the first line right behind the edge;
// four samples on each side are read, and the two next to the edge may change. The lines are filtered in segments
// of four, the third line first: it decides whether the three others are looked at. Bit n of edgeDisableFlag
// leaves out segment n: 0 to 15 for luma, 0 to 3 for chroma, else kelStsRangeErr. pQuant is PQUANT, 1 to 31, else
// kelStsRangeErr. The step is at least 8 samples for VerEdge, and as many as there are lines for HorEdge. C2IR:
// two colours, each with a flag of its own, the first one's in front.
KELAPI KelStatus keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep, Kel32s edgeDisableFlag);
KELAPI KelStatus keliFilterDeblockingLuma_HorEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep, Kel32s edgeDisableFlag);
KELAPI KelStatus keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep, Kel32s edgeDisableFlag);
KELAPI KelStatus keliFilterDeblockingChroma_HorEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep, Kel32s edgeDisableFlag);
KELAPI KelStatus keliFilterDeblockingChroma_VerEdge_VC1_8u_C2IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep, Kel32s edgeDisableFlagU, Kel32s edgeDisableFlagV);
KELAPI KelStatus keliFilterDeblockingChroma_HorEdge_VC1_8u_C2IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep, Kel32s edgeDisableFlagU, Kel32s edgeDisableFlagV);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif

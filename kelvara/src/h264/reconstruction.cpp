// reconstruction.cpp - the exported reconstructions of H.264 macroblocks.

#include "reconstruction.h"
#include "../common/checks.h"
#include "kelvc.h"

using namespace kelvara;

namespace {

// ---- arguments ------------------------------------------------------------------------

Scaling scalingOf(int qp, const Kel16s *pQuantTable, int bypass) {
    return {qp, pQuantTable, bypass != 0};
}

// ---- luma -----------------------------------------------------------------------------

KelStatus whole(Kel16s **pp, Plane plane, int mode, Kel32u cbp, int available, const Scaling &scaling) {
    const CoeffPointer coeffs(pp);
    if (anyNull(coeffs.get(), plane.p)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(plane.step, 16)) return kelStsStepErr;
    if (!isQp(scaling.qp) || !allows(lumaNeeds, mode, available)) return kelStsRangeErr;
    CodedBlocks coded(coeffs.get(), cbp);
    reconstructWhole(coded, plane, mode, available, scaling);
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

template <int N>
KelStatus intra(Kel16s **pp, Plane plane, const Kel32s *modes, Kel32u cbp, int available,
                const Scaling &scaling) {
    const CoeffPointer coeffs(pp);
    if (anyNull(coeffs.get(), plane.p) || anyNull(modes)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(plane.step, 16)) return kelStsStepErr;
    if (!isQp(scaling.qp) || !allowAll<N>(modes, available)) return kelStsRangeErr;
    CodedBlocks coded(coeffs.get(), cbp);
    reconstructBlocks<N>(coded, plane, modes, available, scaling);
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

template <int N>
KelStatus inter(Kel16s **pp, Plane plane, Kel32u cbp, const Scaling &scaling) {
    const CoeffPointer coeffs(pp);
    if (anyNull(coeffs.get(), plane.p)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(plane.step, 16)) return kelStsStepErr;
    if (!isQp(scaling.qp)) return kelStsRangeErr;
    CodedBlocks coded(coeffs.get(), cbp);
    addBlocks<N>(coded, plane, scaling);
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

// ---- chroma -----------------------------------------------------------------------------

KelStatus checkChroma(Kel16s **pp, const ColourPlane (&planes)[2]) {
    if (anyNull(CoeffPointer(pp).get(), planes[0].plane.p, planes[1].plane.p)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(planes[0].plane.step, 8)) return kelStsStepErr;
    if (!isQp(planes[0].scaling.qp) || !isQp(planes[1].scaling.qp)) return kelStsRangeErr;
    return kelStsNoErr;
}

KelStatus intraChroma(Kel16s **pp, const ColourPlane (&planes)[2], int mode, Kel32u cbp, int available) {
    if (const KelStatus status = checkChroma(pp, planes)) return status;
    if (!allows(chromaNeeds, mode, available)) return kelStsRangeErr;
    const CoeffPointer coeffs(pp);
    CodedBlocks coded(coeffs.get(), cbp);
    reconstructChroma(coded, planes, mode, available);
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

KelStatus interChroma(Kel16s **pp, const ColourPlane (&planes)[2], Kel32u cbp) {
    if (const KelStatus status = checkChroma(pp, planes)) return status;
    const CoeffPointer coeffs(pp);
    CodedBlocks coded(coeffs.get(), cbp);
    addChroma(coded, planes);
    coeffs.advance(coded.next());
    return kelStsNoErr;
}

} // namespace

// ---- exported: luma --------------------------------------------------------------------

KelStatus keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst,
                                                          int srcDstStep, int predMode, Kel32u cbp, int QP,
                                                          int availability, const Kel16s *pQuantTable,
                                                          int bypassFlag) {
    return whole(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, predMode, cbp, withWholeLeft(availability),
                 scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaIntra4x4MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                       const Kel32s *pPredModes, Kel32u cbp, int QP,
                                                       int availability, const Kel16s *pQuantTable,
                                                       int bypassFlag) {
    return intra<4>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, pPredModes, cbp, withWholeLeft(availability),
                    scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst,
                                                           int srcDstStep, const Kel32s *pPredModes,
                                                           Kel32u cbp, int QP, int availability,
                                                           const Kel16s *pQuantTable, int bypassFlag) {
    return intra<4>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, pPredModes, cbp, availability,
                    scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaIntra8x8MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                       const Kel32s *pPredModes, Kel32u cbp, int QP,
                                                       int availability, const Kel16s *pQuantTable,
                                                       int bypassFlag) {
    return intra<8>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, pPredModes, cbp, withWholeLeft(availability),
                    scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst,
                                                           int srcDstStep, const Kel32s *pPredModes,
                                                           Kel32u cbp, int QP, int availability,
                                                           const Kel16s *pQuantTable, int bypassFlag) {
    return intra<8>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, pPredModes, cbp, availability,
                    scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaInter4x4MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                       Kel32u cbp, int QP, const Kel16s *pQuantTable,
                                                       int bypassFlag) {
    return inter<4>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, cbp, scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaInter8x8MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                       Kel32u cbp, int QP, const Kel16s *pQuantTable,
                                                       int bypassFlag) {
    return inter<8>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, cbp, scalingOf(QP, pQuantTable, bypassFlag));
}

KelStatus keliReconstructLumaIntra16x16MB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst,
                                                         int srcDstStep, int predMode, Kel32u cbp, int QP,
                                                         int missing) {
    return whole(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, predMode, cbp, withWholeLeft(~missing),
                 scalingOf(QP, nullptr, 0));
}

KelStatus keliReconstructLumaIntraMB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                    const Kel32s *pPredModes, Kel32u cbp, int QP,
                                                    int missing) {
    return intra<4>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, pPredModes, cbp, withWholeLeft(~missing),
                    scalingOf(QP, nullptr, 0));
}

KelStatus keliReconstructLumaIntraHalfMB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst,
                                                        int srcDstStep, const Kel32s *pPredModes, Kel32u cbp,
                                                        int QP, int availability) {
    return intra<4>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, pPredModes, cbp, availability,
                    scalingOf(QP, nullptr, 0));
}

KelStatus keliReconstructLumaInterMB_H264_16s8u_C1R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDst, int srcDstStep,
                                                    Kel32u cbp, int QP) {
    return inter<4>(ppSrcDstCoeff, Plane{pSrcDst, srcDstStep}, cbp, scalingOf(QP, nullptr, 0));
}

// ---- exported: chroma --------------------------------------------------------------------

KelStatus keliReconstructChromaInter4x4MB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU,
                                                         Kel8u *pSrcDstV, int srcDstStep, Kel32u cbp, int QPu,
                                                         int QPv, const Kel16s *pQuantTableU,
                                                         const Kel16s *pQuantTableV, int bypassFlag) {
    const ColourPlane planes[2] = {{{pSrcDstU, srcDstStep}, scalingOf(QPu, pQuantTableU, bypassFlag)},
                                   {{pSrcDstV, srcDstStep}, scalingOf(QPv, pQuantTableV, bypassFlag)}};
    return interChroma(ppSrcDstCoeff, planes, cbp);
}

KelStatus keliReconstructChromaIntra4x4MB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU,
                                                         Kel8u *pSrcDstV, int srcDstStep, int predMode,
                                                         Kel32u cbp, int QPu, int QPv, int availability,
                                                         const Kel16s *pQuantTableU,
                                                         const Kel16s *pQuantTableV, int bypassFlag) {
    const ColourPlane planes[2] = {{{pSrcDstU, srcDstStep}, scalingOf(QPu, pQuantTableU, bypassFlag)},
                                   {{pSrcDstV, srcDstStep}, scalingOf(QPv, pQuantTableV, bypassFlag)}};
    return intraChroma(ppSrcDstCoeff, planes, predMode, cbp, withWholeLeft(availability));
}

KelStatus keliReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU,
                                                              Kel8u *pSrcDstV, int srcDstStep, int predMode,
                                                              Kel32u cbp, int QPu, int QPv, int availability,
                                                              int lowerAvailability,
                                                              const Kel16s *pQuantTableU,
                                                              const Kel16s *pQuantTableV, int bypassFlag) {
    const ColourPlane planes[2] = {{{pSrcDstU, srcDstStep}, scalingOf(QPu, pQuantTableU, bypassFlag)},
                                   {{pSrcDstV, srcDstStep}, scalingOf(QPv, pQuantTableV, bypassFlag)}};
    return intraChroma(ppSrcDstCoeff, planes, predMode, cbp, withLowerLeft(availability, lowerAvailability));
}

KelStatus keliReconstructChromaIntraHalfsMB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU,
                                                           Kel8u *pSrcDstV, int srcDstStep, int predMode,
                                                           Kel32u cbp, int QP, int availability,
                                                           int lowerAvailability) {
    const ColourPlane planes[2] = {{{pSrcDstU, srcDstStep}, scalingOf(QP, nullptr, 0)},
                                   {{pSrcDstV, srcDstStep}, scalingOf(QP, nullptr, 0)}};
    return intraChroma(ppSrcDstCoeff, planes, predMode, cbp, withLowerLeft(availability, lowerAvailability));
}

KelStatus keliReconstructChromaIntraMB_H264_16s8u_P2R(Kel16s **ppSrcDstCoeff, Kel8u *pSrcDstU,
                                                      Kel8u *pSrcDstV, int srcDstStep, int predMode,
                                                      Kel32u cbp, int QP) {
    const ColourPlane planes[2] = {{{pSrcDstU, srcDstStep}, scalingOf(QP, nullptr, 0)},
                                   {{pSrcDstV, srcDstStep}, scalingOf(QP, nullptr, 0)}};
    return intraChroma(ppSrcDstCoeff, planes, predMode, cbp, AllAround);
}

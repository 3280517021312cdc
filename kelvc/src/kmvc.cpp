// kmvc.cpp - the library's core functions bound to the framework, and the functions that matter most.

#include "kmvc.h"

KelLibraryVersion const *kmGetKelVersion_kelvc() {
    return kelvcGetLibVersion ? kelvcGetLibVersion() : nullptr;
}

// What this build of the library lacks stays null, and the framework uses its own.
void kmSetKelEnvironment() {
    kel_InitCpu = kelInitCpu;
    kel_GetCpuType = kelGetCpuType;
    kel_SetNumThreads = kelSetNumThreads;
    kel_GetNumCoresOnDie = kelGetNumCoresOnDie;
    kel_GetMaxCacheSizeB = kelGetMaxCacheSizeB;
    kel_GetStatusString = kelGetStatusString;
    kel_Init = kelInit;
}

[[maybe_unused]] static const bool regKelEnvironment = rkRegKelEnvironment(kmSetKelEnvironment);

#define KM_HOT(function) [[maybe_unused]] static const bool hot_##function = rkRegHotFunction(#function)

KM_HOT(keliCopy16x16QP_MPEG4_8u_C1R);
KM_HOT(keliCopy16x8QP_MPEG4_8u_C1R);
KM_HOT(keliCopy8x8QP_MPEG4_8u_C1R);
KM_HOT(keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR);
KM_HOT(keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR);
KM_HOT(keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR);
KM_HOT(keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR);
KM_HOT(keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR);
KM_HOT(keliInterpolateChroma_H264_8u_C1R);
KM_HOT(keliInterpolateLuma_H264_8u_C1R);
KM_HOT(keliInterpolateLumaBottom_H264_8u_C1R);
KM_HOT(keliInterpolateLumaTop_H264_8u_C1R);
KM_HOT(keliPredictIntra_16x16_H264_8u_C1IR);
KM_HOT(keliPredictIntra_4x4_H264_8u_C1IR);
KM_HOT(keliPredictIntraChroma8x8_H264_8u_C1IR);
KM_HOT(keliReconstructChromaIntra4x4MB_H264_16s8u_P2R);
KM_HOT(keliReconstructChromaIntraMB_H264_16s8u_P2R);
KM_HOT(keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R);
KM_HOT(keliReconstructLumaIntra4x4MB_H264_16s8u_C1R);
KM_HOT(keliReconstructLumaIntra8x8MB_H264_16s8u_C1R);
KM_HOT(keliReconstructLumaIntraMB_H264_16s8u_C1R);

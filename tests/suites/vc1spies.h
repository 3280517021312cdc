// vc1spies.h - spies of the VC-1 functions on blocks; for one file of a program.

#ifndef RAKOVA_TESTS_VC1SPIES_H
#define RAKOVA_TESTS_VC1SPIES_H

#include "kmvc.h"
#include "spy.h"

// A size is seen as one number.
static SeenArgument seen(KeliSize size) {
    return {size.width * 10000LL + size.height, nullptr, -1, 0};
}

// clang-format off

#define SPY_DEQUANT(kind) \
    KelStatus keliQuantInvIntra##kind##_VC1_16s_C1IR(Kel16s *p, int step, int quant, KeliSize *nz) { return SPY(keliQuantInvIntra##kind##_VC1_16s_C1IR, p, step, quant, nz); } \
    KelStatus keliQuantInvInter##kind##_VC1_16s_C1IR(Kel16s *p, int step, int quant, KeliSize size, KeliSize *nz) { return SPY(keliQuantInvInter##kind##_VC1_16s_C1IR, p, step, quant, size, nz); } \
    KelStatus keliQuantInvIntra##kind##_VC1_16s_C1R(const Kel16s *s, int ss, Kel16s *d, int ds, int quant, KeliSize *nz) { return SPY(keliQuantInvIntra##kind##_VC1_16s_C1R, s, ss, d, ds, quant, nz); } \
    KelStatus keliQuantInvInter##kind##_VC1_16s_C1R(const Kel16s *s, int ss, Kel16s *d, int ds, int quant, KeliSize size, KeliSize *nz) { return SPY(keliQuantInvInter##kind##_VC1_16s_C1R, s, ss, d, ds, quant, size, nz); } \
    KelStatus keliQuantIntra##kind##_VC1_16s_C1IR(Kel16s *p, int step, int quant) { return SPY(keliQuantIntra##kind##_VC1_16s_C1IR, p, step, quant); } \
    KelStatus keliQuantInter##kind##_VC1_16s_C1IR(Kel16s *p, int step, int quant, KeliSize size) { return SPY(keliQuantInter##kind##_VC1_16s_C1IR, p, step, quant, size); }

SPY_DEQUANT(Uniform)
SPY_DEQUANT(Nonuniform)

#define SPY_TRANSFORM(size) \
    KelStatus keliTransform##size##Inv_VC1_16s_C1R(const Kel16s *s, int ss, Kel16s *d, int ds, KeliSize nz) { return SPY(keliTransform##size##Inv_VC1_16s_C1R, s, ss, d, ds, nz); } \
    KelStatus keliTransform##size##Inv_VC1_16s_C1IR(Kel16s *p, int step, KeliSize nz) { return SPY(keliTransform##size##Inv_VC1_16s_C1IR, p, step, nz); } \
    KelStatus keliTransform##size##Fwd_VC1_16s_C1R(const Kel16s *s, int ss, Kel16s *d, int ds) { return SPY(keliTransform##size##Fwd_VC1_16s_C1R, s, ss, d, ds); } \
    KelStatus keliTransform##size##Fwd_VC1_16s_C1IR(Kel16s *p, int step) { return SPY(keliTransform##size##Fwd_VC1_16s_C1IR, p, step); }

SPY_TRANSFORM(8x8)
SPY_TRANSFORM(8x4)
SPY_TRANSFORM(4x8)
SPY_TRANSFORM(4x4)

KelStatus keliHadamard8x8Sum_VC1_8u16s(const Kel8u *s, int ss, Kel16s *d, Kel32s *sum) {
    return SPY(keliHadamard8x8Sum_VC1_8u16s, s, ss, d, sum);
}
KelStatus keliHadamard8x8Sum_VC1_16s(const Kel16s *s, int ss, Kel16s *d, Kel32s *sum) {
    return SPY(keliHadamard8x8Sum_VC1_16s, s, ss, d, sum);
}
KelStatus keliRangeMapping_VC1_8u_C1R(const Kel8u *s, int ss, Kel8u *d, int ds, KeliSize size, int parm) {
    return SPY(keliRangeMapping_VC1_8u_C1R, s, ss, d, ds, size, parm);
}
KelStatus keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(Kel16s *s1, int ss1, Kel16s *s2, int ss2, Kel8u *d, int ds, int fields, int disable) {
    return SPY(keliSmoothingLuma_VerEdge_VC1_16s8u_C1R, s1, ss1, s2, ss2, d, ds, fields, disable);
}
KelStatus keliSmoothingLuma_HorEdge_VC1_16s8u_C1R(const Kel16s *s1, int ss1, const Kel16s *s2, int ss2, Kel8u *d, int ds, int disable) {
    return SPY(keliSmoothingLuma_HorEdge_VC1_16s8u_C1R, s1, ss1, s2, ss2, d, ds, disable);
}
KelStatus keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(Kel16s *s1, int ss1, Kel16s *s2, int ss2, Kel8u *d, int ds) {
    return SPY(keliSmoothingChroma_VerEdge_VC1_16s8u_C1R, s1, ss1, s2, ss2, d, ds);
}
KelStatus keliSmoothingChroma_HorEdge_VC1_16s8u_C1R(const Kel16s *s1, int ss1, const Kel16s *s2, int ss2, Kel8u *d, int ds) {
    return SPY(keliSmoothingChroma_HorEdge_VC1_16s8u_C1R, s1, ss1, s2, ss2, d, ds);
}
KelStatus keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(Kel16s *s1, int ss1, Kel16s *s2, int ss2, Kel16s *s3, int ss3, Kel16s *s4, int ss4, Kel8u *d, int ds) {
    return SPY(keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R, s1, ss1, s2, ss2, s3, ss3, s4, ss4, d, ds);
}
KelStatus keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(const Kel16s *s1, int ss1, const Kel16s *s2, int ss2, const Kel16s *s3, int ss3, const Kel16s *s4, int ss4, Kel8u *d, int ds) {
    return SPY(keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R, s1, ss1, s2, ss2, s3, ss3, s4, ss4, d, ds);
}

// clang-format on

#endif

// reconstruct.h - one H.264 macroblock with its coefficients, for the tests that put it together.

#ifndef RAKOVA_RECONSTRUCT_H
#define RAKOVA_RECONSTRUCT_H

#include "predmodecodes.h"

const int srcdstStep = 16;

// What all calls of a test work on. Where a macroblock has modes for each of its blocks, they are legal
// without neighbours outside of it.
struct ReconstructedMacroblock {
    bool create();
    void flush();
    // The library moves the pointer on: each call starts at the same place, two rows behind the first.
    Kel16s **coefficients() {
        ppSrcDstCoeff = pSrcDstCoeff.p16s + 2 * srcdstStep;
        return &ppSrcDstCoeff;
    }

    kmVector srcDst1{8}, srcDst2{8};
    kmVector pSrcDstCoeff{16 | kmTypeSigned};
    Kel8u *pSrcDst1 = nullptr, *pSrcDst2 = nullptr; // row 2
    Kel16s *ppSrcDstCoeff = nullptr;

    PredMode predMode; // where the macroblock has one
    int availability1 = 0, availability2 = 0;
    Kel32s predModeArr[16] = {2, 2, 2, 4, 2, 2, 1, 4, 2, 4, 2, 7, 5, 0, 0, 0};
    Kel32s predModeArr8[4] = {2, 2, 7, 2};
    Kel32u cbp4x4 = 131071; // all blocks and DC
    Kel32u cbp8x8 = 30;     // all four
    int QP = 26;
};

inline bool ReconstructedMacroblock::create() {
    const int shift = rkGetVectorShift();
    // A 16x16 prediction has a block of DC coefficients more than samples: 272 behind the two rows.
    if (!srcDst1.createVectorExt(16 * 9 * 2, shift, SetDefault, 0, 0)) return false;
    if (!srcDst2.createVectorExt(16 * 9 * 2, shift, SetDefault, 0, 0)) return false;
    if (!pSrcDstCoeff.createVectorExt(2 * srcdstStep + 17 * 16, shift, SetDefault, 0, 0)) return false;
    pSrcDst1 = srcDst1.p8u + 2 * srcdstStep;
    pSrcDst2 = srcDst2.p8u + 2 * srcdstStep;
    return true;
}

inline void ReconstructedMacroblock::flush() {
    srcDst1.deleteVector();
    srcDst2.deleteVector();
    pSrcDstCoeff.deleteVector();
}

#endif

// nv12compensation.cpp - motion compensation of interleaved chroma.

#include "nv12.h"

// ---- data ---------------------------------------------------------------------

static kmVector tst_SrcRefF(8), tst_SrcRefB(8);                                   // rows of 16 pairs
static kmVector tst_SrcDataU(16 | kmTypeSigned), tst_SrcDataV(16 | kmTypeSigned); // rows of 16 words
static kmVector tst_Dst(8);                                                       // rows of 8 pairs
static const int refStep = 32, dataStep = 32;
static const int mcTypeF = 0, mcTypeB = 0; // at full samples
static const int roundControl = 0;

// ---- classes ------------------------------------------------------------------

class NV12Compensation : public NV12Test {
public:
    using NV12Test::NV12Test;

    bool initData() override { return makeSamples(tst_SrcRefF, 2048) && makeOthers(); }
    void flushData() override;

protected:
    bool makeOthers();
};

class NV12BidirectionalCompensation : public NV12Compensation {
public:
    using NV12Compensation::NV12Compensation;

    bool initData() override {
        return makeSamples(tst_SrcRefF, 2048) && makeSamples(tst_SrcRefB, 2048) && makeOthers();
    }
};

class rk_test_keliMC8x8_8u_C2P2 : public NV12Compensation {
public:
    using NV12Compensation::NV12Compensation;
};

class rk_test_keliMC8x4_8u_C2P2 : public NV12Compensation {
public:
    using NV12Compensation::NV12Compensation;
};

class rk_test_keliMC8x8B_8u_C2P2 : public NV12BidirectionalCompensation {
public:
    using NV12BidirectionalCompensation::NV12BidirectionalCompensation;
};

class rk_test_keliMC8x4B_8u_C2P2 : public NV12BidirectionalCompensation {
public:
    using NV12BidirectionalCompensation::NV12BidirectionalCompensation;
};

// The residuals and what the destination holds at first.
bool NV12Compensation::makeOthers() {
    return makeRandom(tst_SrcDataU, 1024, -512.0, 511.0) && makeRandom(tst_SrcDataV, 1024, -512.0, 511.0) &&
           makeSamples(tst_Dst, 1024);
}

void NV12Compensation::flushData() {
    tst_SrcRefF.deleteVector();
    tst_SrcRefB.deleteVector();
    tst_SrcDataU.deleteVector();
    tst_SrcDataV.deleteVector();
    tst_Dst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define REFERENCE  tst_SrcRefF.p8u, refStep
#define REFERENCES tst_SrcRefF.p8u, refStep, mcTypeF, tst_SrcRefB.p8u, refStep, mcTypeB
#define BLOCKS     tst_SrcDataU.p16s, tst_SrcDataV.p16s, dataStep, tst_Dst.p8u, nv12Step

// clang-format off
KM_REG(rk_test_keliMC8x8_8u_C2P2,  keliMC8x8_16s8u_P2C2R,  REFERENCE, BLOCKS, mcTypeF, roundControl);
KM_REG(rk_test_keliMC8x4_8u_C2P2,  keliMC8x4_16s8u_P2C2R,  REFERENCE, BLOCKS, mcTypeF, roundControl);
KM_REG(rk_test_keliMC8x8B_8u_C2P2, keliMC8x8B_16s8u_P2C2R, REFERENCES, BLOCKS, roundControl);
KM_REG(rk_test_keliMC8x4B_8u_C2P2, keliMC8x4B_16s8u_P2C2R, REFERENCES, BLOCKS, roundControl);
// clang-format on

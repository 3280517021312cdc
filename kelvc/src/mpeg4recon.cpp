// mpeg4recon.cpp - MPEG-4 blocks out of a bit stream, dequantised at once.

#include "blockstream.h"
#include "mpeg4codes.h"
#include "quantspec.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> countNonZero;
static rkMapIterator<int> rvlcFlag, scan;

// ---- data ---------------------------------------------------------------------

static BlockStream stream;
static kmVector matrix(8);
static KeliQuantSpec_MPEG4 *pSpec; // tracked
static int lastNonZero;
static const int bitsPerPixel = 8, QP = 2;

// ---- class --------------------------------------------------------------------

class Timvcmp4_Recon : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }

private:
    bool encodeLevels();
};

bool Timvcmp4_Recon::canStart() {
    m_parms.push_back(&countNonZero);
    m_parms.push_back(&rvlcFlag);
    m_parms.push_back(&scan);
    initCounts(countNonZero);
    initCodes(rvlcFlag, false);
    initScans(scan, false);
    return true;
}

bool Timvcmp4_Recon::initData() {
    if (!stream.create()) return false;
    setRandNonZero(stream.coeffs, countNonZero.value(), -127, 127);
    if (!encodeLevels()) return false;
    if (!matrix.createVectorExt(64, rkGetVectorShift(), SetRandom, 2.0, 127.0)) return false;
    return createQuantSpec(pSpec, {true, false}, matrix.p8u, bitsPerPixel);
}

// What the function is to meet.
bool Timvcmp4_Recon::encodeLevels() {
    if (!keliEncodeCoeffsInter_MPEG4_16s1u) return false;
    const KelStatus status =
        keliEncodeCoeffsInter_MPEG4_16s1u(stream.coeffs.p16s, &stream.pBitStream, &stream.bitOffset,
                                          countNonZero.value(), rvlcFlag.value(), scan.value());
    return !rkIsError(checkStatus(status));
}

void Timvcmp4_Recon::flushData() {
    deleteQuantSpec(pSpec);
    stream.flush();
    matrix.deleteVector();
}

// ---- registration -------------------------------------------------------------

KM_REG_I(Timvcmp4_Recon, keliReconstructCoeffsInter_MPEG4_1u16s, stream.reset(), &stream.pBitStream,
         &stream.bitOffset, stream.coeffs.p16s, &lastNonZero, rvlcFlag.value(), scan.value(), pSpec, QP);

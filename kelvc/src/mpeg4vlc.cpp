// mpeg4vlc.cpp - coefficients of MPEG-4 into bit streams and back, from either end.

#include "mpeg4codes.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> countNonZero;
static rkMapIterator<int> rvlcFlag, scan;

// ---- data ---------------------------------------------------------------------

static kmVector coeffs(16 | kmTypeSigned);
static kmBitVector bitStream;
static Kel8u *pBitStream, *pBitStreamStart; // the next bit is bit bitOffset of the byte
static int bitOffset, bitOffsetStart;
static int lastNonZero;

static void reset() {
    pBitStream = pBitStreamStart;
    bitOffset = bitOffsetStart;
}

// A backward decoder begins with the last bit that is written.
static void startAtEnd() {
    pBitStreamStart = pBitStream;
    bitOffsetStart = bitOffset - 1;
    if (bitOffsetStart >= 0) return;
    --pBitStreamStart;
    bitOffsetStart = 7;
}

// ---- class --------------------------------------------------------------------

class Timm4EncVlc : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }

private:
    bool prepareStream();
    bool encodeLevels();

    bool m_intra = false, m_encodes = false, m_backward = false;
};

bool Timm4EncVlc::canStart() {
    m_intra = m_func.find("Intra") >= 0;
    m_encodes = m_func.find("Encode") >= 0;
    m_backward = m_func.find("RVLC") >= 0;
    m_parms.push_back(&countNonZero);
    m_parms.push_back(&rvlcFlag);
    m_parms.push_back(&scan);
    initCounts(countNonZero);
    initCodes(rvlcFlag, m_backward);
    initScans(scan, m_backward);
    return true;
}

bool Timm4EncVlc::initData() {
    if (!coeffs.createVectorExt(64, rkGetVectorShift(), SetZero, 0, 0)) return false;
    setRandNonZero(coeffs, countNonZero.value(), -127, 127);
    bitStream.setBitPos(0);
    if (!bitStream.createVectorExt(mpeg4StreamBytes, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    pBitStreamStart = bitStream.p8u;
    bitOffsetStart = 0;
    reset();
    return m_encodes || prepareStream();
}

// What the decoder is to meet. From its end a block goes on up to the end of another one in front.
bool Timm4EncVlc::prepareStream() {
    if (!encodeLevels()) return false;
    if (!m_backward) return true;
    if (!encodeLevels()) return false;
    startAtEnd();
    return true;
}

void Timm4EncVlc::flushData() {
    coeffs.deleteVector();
    bitStream.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define STREAM  &pBitStream, &bitOffset
#define ENCODE  coeffs.p16s, STREAM, countNonZero.value(), rvlcFlag.value()
#define DECODE  STREAM, coeffs.p16s, &lastNonZero
#define WITH_DC 0 // no code of its own: the block begins with DC

bool Timm4EncVlc::encodeLevels() {
    if (!keliEncodeCoeffsIntra_MPEG4_16s1u || !keliEncodeCoeffsInter_MPEG4_16s1u) return false;
    const KelStatus status = m_intra ? keliEncodeCoeffsIntra_MPEG4_16s1u(ENCODE, WITH_DC, scan.value())
                                     : keliEncodeCoeffsInter_MPEG4_16s1u(ENCODE, scan.value());
    return !rkIsError(checkStatus(status));
}

// clang-format off
KM_REG_I(Timm4EncVlc, keliEncodeCoeffsIntra_MPEG4_16s1u,         reset(), ENCODE, WITH_DC, scan.value());
KM_REG_I(Timm4EncVlc, keliEncodeCoeffsInter_MPEG4_16s1u,         reset(), ENCODE, scan.value());
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsIntra_MPEG4_1u16s,         reset(), DECODE, rvlcFlag.value(), WITH_DC, scan.value());
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s, reset(), DECODE, WITH_DC);
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsInter_MPEG4_1u16s,         reset(), DECODE, rvlcFlag.value(), scan.value());
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s, reset(), DECODE);
// clang-format on

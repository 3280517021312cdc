// mpeg4vlc.cpp - coefficients of MPEG-4 into bit streams and back, from either end.

#include "blockstream.h"
#include "mpeg4codes.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> countNonZero;
static rkMapIterator<int> rvlcFlag, scan;

// ---- data ---------------------------------------------------------------------

static BlockStream stream;
static int lastNonZero;

// A backward decoder begins with the last bit that is written. False if there is none.
static bool startAtEnd() {
    if (stream.pBitStream == stream.pBitStreamStart && stream.bitOffset == 0) return false;
    stream.pBitStreamStart = stream.pBitStream;
    stream.bitOffsetStart = stream.bitOffset - 1;
    if (stream.bitOffsetStart >= 0) return true;
    --stream.pBitStreamStart;
    stream.bitOffsetStart = 7;
    return true;
}

// ---- class --------------------------------------------------------------------

class Timm4EncVlc : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { stream.flush(); }
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
    if (!stream.create()) return false;
    setRandNonZero(stream.coeffs, countNonZero.value(), -127, 127);
    return m_encodes || prepareStream();
}

// What the decoder is to meet. From its end a block goes on up to the end of another one in front.
bool Timm4EncVlc::prepareStream() {
    if (!encodeLevels()) return false;
    return !m_backward || (encodeLevels() && startAtEnd());
}

// ---- registration -------------------------------------------------------------

#define STREAM  &stream.pBitStream, &stream.bitOffset
#define ENCODE  stream.coeffs.p16s, STREAM, countNonZero.value(), rvlcFlag.value()
#define DECODE  STREAM, stream.coeffs.p16s, &lastNonZero
#define WITH_DC 0 // no code of its own: the block begins with DC

bool Timm4EncVlc::encodeLevels() {
    if (!keliEncodeCoeffsIntra_MPEG4_16s1u || !keliEncodeCoeffsInter_MPEG4_16s1u) return false;
    const KelStatus status = m_intra ? keliEncodeCoeffsIntra_MPEG4_16s1u(ENCODE, WITH_DC, scan.value())
                                     : keliEncodeCoeffsInter_MPEG4_16s1u(ENCODE, scan.value());
    return !rkIsError(checkStatus(status));
}

// clang-format off
KM_REG_I(Timm4EncVlc, keliEncodeCoeffsIntra_MPEG4_16s1u,         stream.reset(), ENCODE, WITH_DC, scan.value());
KM_REG_I(Timm4EncVlc, keliEncodeCoeffsInter_MPEG4_16s1u,         stream.reset(), ENCODE, scan.value());
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsIntra_MPEG4_1u16s,         stream.reset(), DECODE, rvlcFlag.value(), WITH_DC, scan.value());
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s, stream.reset(), DECODE, WITH_DC);
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsInter_MPEG4_1u16s,         stream.reset(), DECODE, rvlcFlag.value(), scan.value());
KM_REG_I(Timm4EncVlc, keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s, stream.reset(), DECODE);
// clang-format on

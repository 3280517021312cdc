// h261vlc.cpp - coefficients of H.261 into bit streams and back.

#include "blockstream.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> countNonZero;
static rkMapIterator<int> scan;

// ---- data ---------------------------------------------------------------------

static BlockStream stream;
static int indxLastNonZero;
static const int QP = 2;

// ---- class --------------------------------------------------------------------

class Timvch261_VLC : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { stream.flush(); }
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }

private:
    bool encodeBlock();

    bool m_intra = false, m_encodes = false, m_reconstructs = false;
};

static void addScan(char const *name, int code) {
    scan[code] = name;
    scan.add(code);
}

bool Timvch261_VLC::canStart() {
    m_intra = m_func.find("Intra") >= 0;
    m_encodes = m_func.find("Encode") >= 0;
    m_reconstructs = m_func.find("Reconstruct") >= 0;
    m_parms.push_back(&countNonZero);
    m_parms.push_back(&scan);
    countNonZero.init("countNonZero");
    for (int count = 4; count <= 64; count *= 2) countNonZero.add(count);
    scan.init("scan");
    addScan("none", -1);
    if (!m_reconstructs) addScan("zigzag", 0);
    return true;
}

bool Timvch261_VLC::initData() {
    if (!stream.create()) return false;
    setRandNonZero(stream.coeffs, countNonZero.value(), -127, 127);
    return m_encodes || encodeBlock();
}

// What the decoder is to meet.
bool Timvch261_VLC::encodeBlock() {
    auto encode = m_intra ? keliEncodeCoeffsIntra_H261_16s1u : keliEncodeCoeffsInter_H261_16s1u;
    if (!encode) return false;
    const KelStatus status =
        encode(stream.coeffs.p16s, &stream.pBitStream, &stream.bitOffset, countNonZero.value(), scan.value());
    return !rkIsError(checkStatus(status));
}

// ---- registration -------------------------------------------------------------

#define STREAM      &stream.pBitStream, &stream.bitOffset
#define DECODE      STREAM, stream.coeffs.p16s, &indxLastNonZero, scan.value()
#define RECONSTRUCT STREAM, stream.coeffs.p16s, &indxLastNonZero, QP
#define ENCODE      stream.coeffs.p16s, STREAM, countNonZero.value(), scan.value()

// clang-format off
KM_REG_I(Timvch261_VLC, keliDecodeCoeffsIntra_H261_1u16s,      stream.reset(), DECODE);
KM_REG_I(Timvch261_VLC, keliDecodeCoeffsInter_H261_1u16s,      stream.reset(), DECODE);
KM_REG_I(Timvch261_VLC, keliReconstructCoeffsIntra_H261_1u16s, stream.reset(), RECONSTRUCT);
KM_REG_I(Timvch261_VLC, keliReconstructCoeffsInter_H261_1u16s, stream.reset(), RECONSTRUCT);
KM_REG_I(Timvch261_VLC, keliEncodeCoeffsIntra_H261_16s1u,      stream.reset(), ENCODE);
KM_REG_I(Timvch261_VLC, keliEncodeCoeffsInter_H261_16s1u,      stream.reset(), ENCODE);
// clang-format on

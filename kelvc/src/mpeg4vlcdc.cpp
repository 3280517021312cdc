// mpeg4vlcdc.cpp - DC of intra blocks of MPEG-4 into bit streams and back.

#include "mpeg4codes.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> blockType;

// ---- data ---------------------------------------------------------------------

static const int streamBytes = 1024;

static kmBitVector bitStream;
static Kel8u *pBitStream; // the next bit is bit bitOffset of the byte
static int bitOffset;
static Kel16s dcCoeff = 2;

static void reset() {
    pBitStream = bitStream.p8u;
    bitOffset = 0;
}

// ---- class --------------------------------------------------------------------

class Timm4EncVlcDC : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { bitStream.deleteVector(); }

private:
    bool encodeLevel();
};

bool Timm4EncVlcDC::canStart() {
    m_parms.push_back(&blockType);
    blockType.init("blockType");
    addNamed(blockType, 0, "luma");
    addNamed(blockType, 1, "chroma");
    return true;
}

bool Timm4EncVlcDC::initData() {
    bitStream.setBitPos(0);
    if (!bitStream.createVectorExt(streamBytes, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    reset();
    return m_func.find("Decode") < 0 || encodeLevel();
}

// What the decoder is to meet.
bool Timm4EncVlcDC::encodeLevel() {
    if (!keliEncodeDCIntra_MPEG4_16s1u) return false;
    const KelStatus status =
        keliEncodeDCIntra_MPEG4_16s1u(dcCoeff, &pBitStream, &bitOffset, blockType.value());
    return !rkIsError(checkStatus(status));
}

// ---- registration -------------------------------------------------------------

#define STREAM &pBitStream, &bitOffset

// clang-format off
KM_REG_I(Timm4EncVlcDC, keliEncodeDCIntra_MPEG4_16s1u, reset(), dcCoeff, STREAM, blockType.value());
KM_REG_I(Timm4EncVlcDC, keliDecodeDCIntra_MPEG4_1u16s, reset(), STREAM, &dcCoeff, blockType.value());
// clang-format on

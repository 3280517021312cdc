// h263vlcdc.cpp - DC of intra blocks of H.263 into bit streams and back.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> blockType; // for the table: both have one code

// ---- data ---------------------------------------------------------------------

static kmBitVector bitStream;
static Kel8u *pBitStream; // the next bit is bit bitOffset of the byte
static int bitOffset;
static Kel16s dcCoeff = 2;

static void reset() {
    pBitStream = bitStream.p8u;
    bitOffset = 0;
}

// ---- class --------------------------------------------------------------------

class Timvch263_VLCDC : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { bitStream.deleteVector(); }

private:
    bool encodeLevel();
};

bool Timvch263_VLCDC::canStart() {
    m_parms.push_back(&blockType);
    blockType.init("blockType");
    blockType[0] = "luma";
    blockType[1] = "chroma";
    blockType.add(0);
    blockType.add(1);
    return true;
}

bool Timvch263_VLCDC::initData() {
    bitStream.setBitPos(0);
    if (!bitStream.createVectorExt(1024, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    reset();
    return m_func.find("Encode") >= 0 || encodeLevel();
}

// What the decoder is to meet.
bool Timvch263_VLCDC::encodeLevel() {
    if (!keliEncodeDCIntra_H263_16s1u) return false;
    return !rkIsError(checkStatus(keliEncodeDCIntra_H263_16s1u(dcCoeff, &pBitStream, &bitOffset)));
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG_I(Timvch263_VLCDC, keliDecodeDCIntra_H263_1u16s, reset(), &pBitStream, &bitOffset, &dcCoeff);
KM_REG_I(Timvch263_VLCDC, keliEncodeDCIntra_H263_16s1u, reset(), dcCoeff, &pBitStream, &bitOffset);
// clang-format on

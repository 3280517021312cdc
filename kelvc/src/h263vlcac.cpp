// h263vlcac.cpp - coefficients of H.263 into bit streams and back.

#include "blockstream.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> countNonZero;
static const int counts[] = {4, 8, 16, 32, 63}; // DC of an intra block is coded apart
static rkMapIterator<int> advIntraFlag, modQuantFlag, scan;

// ---- data ---------------------------------------------------------------------

static BlockStream stream;
static int indxLastNonZero;
static const int QP = 2;

// A block of levels may begin behind the code of its DC.
static void startHere() {
    stream.pBitStreamStart = stream.pBitStream;
    stream.bitOffsetStart = stream.bitOffset;
}

// ---- class --------------------------------------------------------------------

class Timvch263_VLCAC : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { stream.flush(); }
    double getDivisor() override { return 64.0; }
    rkString getUnit() override { return "e"; }

private:
    void initFlags();
    void initScans();
    bool prepareStream();
    bool encodeDC();
    bool encodeLevels();

    bool m_intra = false, m_encodes = false, m_reconstructs = false;
};

static void add(rkMapIterator<int> &parm, int value, char const *name) {
    parm[value] = name;
    parm.add(value);
}

// Inter functions do not take the first flag: there it only fills its column.
void Timvch263_VLCAC::initFlags() {
    advIntraFlag.init("advIntraFlag");
    if (m_intra) add(advIntraFlag, 0, "-");
    add(advIntraFlag, 1, "advanced");
    modQuantFlag.init("modQuantFlag");
    add(modQuantFlag, 0, "-");
    add(modQuantFlag, 1, "modQuant");
}

void Timvch263_VLCAC::initScans() {
    scan.init("scan");
    add(scan, -1, "none");
    if (m_intra || !m_reconstructs) add(scan, 0, "zigzag");
}

bool Timvch263_VLCAC::canStart() {
    m_intra = m_func.find("Intra") >= 0;
    m_encodes = m_func.find("Encode") >= 0;
    m_reconstructs = m_func.find("Reconstruct") >= 0;
    m_parms.push_back(&countNonZero);
    m_parms.push_back(&advIntraFlag);
    m_parms.push_back(&modQuantFlag);
    m_parms.push_back(&scan);
    countNonZero.init("countNonZero");
    for (int count : counts) countNonZero.add(count);
    initFlags();
    initScans();
    return true;
}

bool Timvch263_VLCAC::initData() {
    if (!stream.create()) return false;
    setRandNonZero(stream.coeffs, countNonZero.value(), -127, 127);
    return m_encodes || prepareStream();
}

// What the decoder is to meet. Of the functions that decode, only the one that reconstructs takes the code of
// DC, and that only without advanced intra coding; the others start behind it.
bool Timvch263_VLCAC::prepareStream() {
    if (m_intra && !encodeDC()) return false;
    if (!m_reconstructs || advIntraFlag.value() == 1) startHere();
    return encodeLevels();
}

#define STREAM &stream.pBitStream, &stream.bitOffset

bool Timvch263_VLCAC::encodeDC() {
    if (!keliEncodeDCIntra_H263_16s1u) return false;
    const KelStatus status = keliEncodeDCIntra_H263_16s1u(stream.coeffs.p16s[0], STREAM);
    return !rkIsError(checkStatus(status));
}

// ---- registration -------------------------------------------------------------

#define ENCODE  stream.coeffs.p16s, STREAM, countNonZero.value()
#define DECODE  STREAM, stream.coeffs.p16s, &indxLastNonZero
#define INTRA   advIntraFlag.value(), modQuantFlag.value(), scan.value()
#define INTER   modQuantFlag.value(), scan.value()
#define REBUILT 1, QP, advIntraFlag.value(), scan.value(), modQuantFlag.value() // 1: it has levels besides DC

bool Timvch263_VLCAC::encodeLevels() {
    if (!keliEncodeCoeffsIntra_H263_16s1u || !keliEncodeCoeffsInter_H263_16s1u) return false;
    const KelStatus status = m_intra ? keliEncodeCoeffsIntra_H263_16s1u(ENCODE, INTRA)
                                     : keliEncodeCoeffsInter_H263_16s1u(ENCODE, INTER);
    return !rkIsError(checkStatus(status));
}

// clang-format off
KM_REG_I(Timvch263_VLCAC, keliEncodeCoeffsIntra_H263_16s1u,      stream.reset(), ENCODE, INTRA);
KM_REG_I(Timvch263_VLCAC, keliEncodeCoeffsInter_H263_16s1u,      stream.reset(), ENCODE, INTER);
KM_REG_I(Timvch263_VLCAC, keliDecodeCoeffsIntra_H263_1u16s,      stream.reset(), DECODE, INTRA);
KM_REG_I(Timvch263_VLCAC, keliDecodeCoeffsInter_H263_1u16s,      stream.reset(), DECODE, INTER);
KM_REG_I(Timvch263_VLCAC, keliReconstructCoeffsIntra_H263_1u16s, stream.reset(), DECODE, REBUILT);
KM_REG_I(Timvch263_VLCAC, keliReconstructCoeffsInter_H263_1u16s, stream.reset(), DECODE, QP, modQuantFlag.value());
// clang-format on

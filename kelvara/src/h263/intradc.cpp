// intradc.cpp - DC of intra blocks of H.263 in bit streams.

#include "../common/blockcodes.h"
#include "kelvc.h"

using namespace kelvara;

KelStatus keliEncodeDCIntra_H263_16s1u(Kel16s dcCoeff, Kel8u **ppBitStream, int *pBitOffset) {
    BitPosition position(ppBitStream, pBitOffset);
    if (position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte()) return kelStsRangeErr;
    BitWriter writer = position.writer();
    putDc(writer, dcCoeff);
    position.moveTo(writer);
    return kelStsNoErr;
}

KelStatus keliDecodeDCIntra_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pDcCoeff) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pDcCoeff) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte()) return kelStsRangeErr;
    BitReader reader = position.reader();
    const int level = readDc(reader);
    if (level == 0) return kelStsBitStreamErr;
    store(pDcCoeff, static_cast<Kel16s>(level));
    position.moveTo(reader);
    return kelStsNoErr;
}

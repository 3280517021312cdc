// coefficients.cpp - the exported encoders and decoders of MPEG-4 blocks.

#include "../common/bitposition.h"
#include "../common/samples.h"
#include "blockcoding.h"
#include "kelvc_mpeg4bits.h"
#include "quantise.h"

namespace kelvara {

static bool isFlag(int value) {
    return value == 0 || value == 1;
}

static KelStatus encode(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero,
                        bool intra, int rvlcFlag, int dcVlcFlag, int scan) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isLevelCount(countNonZero)) return kelStsRangeErr;
    if (!isFlag(rvlcFlag) || !isFlag(dcVlcFlag) || !isScanOrNone(scan)) return kelStsRangeErr;
    const Block8x8<Kel16s> block(pCoeffs);
    const BlockEvents events = someEventsOf(block, scanOrder(scan), dcVlcFlag, countNonZero);
    if (!levelsWithin(events, -2047, 2047)) return kelStsRangeErr;
    BitWriter writer = position.writer();
    writeBlock(writer, {intra, rvlcFlag == 1}, events);
    position.moveTo(writer);
    return kelStsNoErr;
}

// ---- decoding ----------------------------------------------------------------------

// Element 0 stays the caller's where DC has a code of its own: it is first in every order.
static void storeBlock(Block8x8<Kel16s> &block, int first, Kel16s *pCoeffs) {
    if (first == 1) block.at[0] = Samples<Kel16s>(pCoeffs, 0)(0, 0);
    block.storeTo(pCoeffs);
}

static KelStatus decode(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero,
                        bool intra, int rvlcFlag, int dcVlcFlag, int scan) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isFlag(rvlcFlag) || !isFlag(dcVlcFlag) || !isScanOrNone(scan))
        return kelStsRangeErr;
    BitReader reader = position.reader();
    Block8x8<Kel16s> block{};
    int last = 0;
    if (!readBlock(reader, {intra, rvlcFlag == 1}, {scanOrder(scan), dcVlcFlag}, block, last))
        return kelStsBitStreamErr;
    storeBlock(block, dcVlcFlag, pCoeffs);
    store(pIndxLastNonZero, last);
    position.moveTo(reader);
    return kelStsNoErr;
}

static KelStatus decodeBackwards(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero,
                                 bool intra, int dcVlcFlag) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isFlag(dcVlcFlag)) return kelStsRangeErr;
    BackwardBitReader reader = position.backwardReader();
    Block8x8<Kel16s> block{};
    int last = 0;
    if (!readBlockBackwards(reader, intra, {scanOrder(ScanNone), dcVlcFlag}, block, last))
        return kelStsBitStreamErr;
    storeBlock(block, dcVlcFlag, pCoeffs);
    store(pIndxLastNonZero, last);
    position.moveTo(reader);
    return kelStsNoErr;
}

static KelStatus reconstruct(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero,
                             int rvlcFlag, int scan, const KeliQuantSpec_MPEG4 *pSpec, int QP) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || anyNull(pSpec) || position.isNull())
        return kelStsNullPtrErr;
    if (!position.isInByte() || !isFlag(rvlcFlag) || !isScanOrNone(scan) || !isQuantiserScale(QP))
        return kelStsRangeErr;
    Quantiser quantiser;
    const KelStatus status = quantiser.loadFrom(pSpec, QuantKind::InvInter);
    if (status != kelStsNoErr) return status;
    BitReader reader = position.reader();
    Block8x8<Kel16s> block{};
    int last = 0;
    if (!readBlock(reader, {false, rvlcFlag == 1}, {scanOrder(scan), 0}, block, last))
        return kelStsBitStreamErr;
    dequantise(block, 64, quantiser, QP, false);
    controlMismatch(block, 64, quantiser);
    block.storeTo(pCoeffs);
    store(pIndxLastNonZero, last);
    position.moveTo(reader);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliEncodeCoeffsIntra_MPEG4_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset,
                                            int countNonZero, int rvlcFlag, int dcVlcFlag, int scan) {
    return encode(pCoeffs, ppBitStream, pBitOffset, countNonZero, true, rvlcFlag, dcVlcFlag, scan);
}

KelStatus keliEncodeCoeffsInter_MPEG4_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset,
                                            int countNonZero, int rvlcFlag, int scan) {
    return encode(pCoeffs, ppBitStream, pBitOffset, countNonZero, false, rvlcFlag, 0, scan);
}

KelStatus keliDecodeCoeffsIntra_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                            int *pIndxLastNonZero, int rvlcFlag, int dcVlcFlag, int scan) {
    return decode(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, true, rvlcFlag, dcVlcFlag, scan);
}

KelStatus keliDecodeCoeffsInter_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                            int *pIndxLastNonZero, int rvlcFlag, int scan) {
    return decode(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, false, rvlcFlag, 0, scan);
}

KelStatus keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                    int *pIndxLastNonZero, int dcVlcFlag) {
    return decodeBackwards(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, true, dcVlcFlag);
}

KelStatus keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                    int *pIndxLastNonZero) {
    return decodeBackwards(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, false, 0);
}

KelStatus keliReconstructCoeffsInter_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                 int *pIndxLastNonZero, int rvlcFlag, int scan,
                                                 const KeliQuantSpec_MPEG4 *pSpec, int QP) {
    return reconstruct(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, rvlcFlag, scan, pSpec, QP);
}

// coefficients.cpp - coefficients of H.261 in bit streams.

#include "../common/blockcodes.h"
#include "../common/reconstruction.h"
#include "kelvc.h"
#include "tcoeff.h"

namespace kelvara {

enum class Kind { Intra, Inter };

// H.261 has no other scan.
static bool isH261Scan(int scan) {
    return scan == ScanNone || scan == ScanZigzag;
}

// ---- encoding --------------------------------------------------------------------

static void putEvent(BitWriter &writer, const Event &event) {
    const EventCode *code = tcoeffEncoder.find(0, event.run, std::abs(event.level));
    if (code) {
        putCode(writer, *code, event.level);
        return;
    }
    writer.put(tcoeffEscape.code, tcoeffEscape.bits);
    writer.put(static_cast<Kel32u>(event.run), 6);
    writer.put(lowBits(static_cast<Kel32u>(event.level), EscapedBits), EscapedBits);
}

// As no end of block comes first, run 0 level 1 does without its second bit there.
static void putFirstEvent(BitWriter &writer, const Event &event) {
    if (event.run == 0 && std::abs(event.level) == 1) {
        writer.put(event.level < 0 ? 3 : 2, 2);
    } else {
        putEvent(writer, event);
    }
}

static void putEvents(BitWriter &writer, const BlockEvents &events, Kind kind) {
    if (kind == Kind::Inter && events.count == 0) return;
    for (int i = 0; i < events.count; ++i) {
        if (kind == Kind::Inter && i == 0) {
            putFirstEvent(writer, events.at[i]);
        } else {
            putEvent(writer, events.at[i]);
        }
    }
    writer.put(tcoeffEndOfBlock.code, tcoeffEndOfBlock.bits);
}

static KelStatus encode(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset, int countNonZero,
                        int scan, Kind kind) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isLevelCount(countNonZero) || !isH261Scan(scan)) return kelStsRangeErr;
    const Block8x8<Kel16s> block(pCoeffs);
    const bool intra = kind == Kind::Intra;
    const int counted = intra && block.at[0] != 0; // of DC
    const BlockEvents events = someEventsOf(block, scanOrder(scan), intra, countNonZero - counted);
    if (!levelsWithin(events, -127, 127)) return kelStsRangeErr;
    BitWriter writer = position.writer();
    if (intra) putDc(writer, block.at[0]);
    putEvents(writer, events, kind);
    position.moveTo(writer);
    return kelStsNoErr;
}

// ---- decoding --------------------------------------------------------------------

static bool readEscape(BitReader &reader, BlockFiller &filler) {
    const int run = static_cast<int>(reader.read(6));
    const int level = readEscapedLevel(reader);
    return level != 0 && level != NoEscapedLevel && filler.put(run, level);
}

// Levels up to the end of the block; false if there is a code that cannot be.
static bool readEvents(BitReader &reader, BlockFiller &filler) {
    for (;;) {
        const Kel32s code = readCode(reader, decoderTable<tcoeffCodes>);
        if (code == noCode) return false;
        const int run = runOf(code), level = levelOf(code);
        if (level == 0 && run == tcoeffEndOfBlock.run) return true;
        const bool put = level == 0 ? readEscape(reader, filler) : filler.put(run, readSign(reader, level));
        if (!put) return false;
    }
}

// The short form of run 0 level 1, if it is there.
static void readShortForm(BitReader &reader, BlockFiller &filler) {
    if (reader.peek(1) == 0) return;
    reader.skip(1);
    filler.put(0, readSign(reader, 1));
}

static bool readBlock(BitReader &reader, Kind kind, const Kel8u *order, Block8x8<Kel16s> &block, int &last) {
    block = {};
    BlockFiller filler(block, order, kind == Kind::Intra);
    if (kind == Kind::Intra) {
        block.at[0] = static_cast<Kel16s>(readDc(reader));
        if (block.at[0] == 0) return false;
    } else {
        readShortForm(reader, filler);
    }
    if (!readEvents(reader, filler)) return false;
    last = filler.place();
    return true;
}

// Calls reconstruct(block) before anything is written.
template <class Reconstruct>
static KelStatus decode(BitPosition &position, Kel16s *pCoeffs, int *pIndxLastNonZero, int scan, Kind kind,
                        Reconstruct reconstruct) {
    BitReader reader = position.reader();
    Block8x8<Kel16s> block;
    int last;
    if (!readBlock(reader, kind, scanOrder(scan), block, last)) return kelStsBitStreamErr;
    reconstruct(block);
    block.storeTo(pCoeffs);
    store(pIndxLastNonZero, last);
    position.moveTo(reader);
    return kelStsNoErr;
}

static KelStatus decodeLevels(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs, int *pIndxLastNonZero,
                              int scan, Kind kind) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isH261Scan(scan)) return kelStsRangeErr;
    return decode(position, pCoeffs, pIndxLastNonZero, scan, kind, [](Block8x8<Kel16s> &) {});
}

static KelStatus decodeCoefficients(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                    int *pIndxLastNonZero, int QP, Kind kind) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isQuant(QP)) return kelStsRangeErr;
    return decode(position, pCoeffs, pIndxLastNonZero, ScanZigzag, kind, [=](Block8x8<Kel16s> &block) {
        if (kind == Kind::Intra) {
            reconstructIntra(block, 63, QP);
        } else {
            reconstruct(block, 0, 63, QP);
        }
    });
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliEncodeCoeffsIntra_H261_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset,
                                           int countNonZero, int scan) {
    return encode(pCoeffs, ppBitStream, pBitOffset, countNonZero, scan, Kind::Intra);
}

KelStatus keliEncodeCoeffsInter_H261_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset,
                                           int countNonZero, int scan) {
    return encode(pCoeffs, ppBitStream, pBitOffset, countNonZero, scan, Kind::Inter);
}

KelStatus keliDecodeCoeffsIntra_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                           int *pIndxLastNonZero, int scan) {
    return decodeLevels(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, scan, Kind::Intra);
}

KelStatus keliDecodeCoeffsInter_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                           int *pIndxLastNonZero, int scan) {
    return decodeLevels(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, scan, Kind::Inter);
}

KelStatus keliReconstructCoeffsIntra_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                int *pIndxLastNonZero, int QP) {
    return decodeCoefficients(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, QP, Kind::Intra);
}

KelStatus keliReconstructCoeffsInter_H261_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                int *pIndxLastNonZero, int QP) {
    return decodeCoefficients(ppBitStream, pBitOffset, pCoeffs, pIndxLastNonZero, QP, Kind::Inter);
}

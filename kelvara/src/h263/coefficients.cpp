// coefficients.cpp - coefficients of H.263 in bit streams.

#include "../common/blockcodes.h"
#include "kelvc.h"
#include "levels.h"
#include "tcoef.h"

namespace kelvara {

// Which of the codes a block has.
struct Codes {
    bool advanced; // an intra block of advanced intra coding
    bool modQuant;
    int first; // place of the first level: DC of intra blocks is coded apart
};

static Codes intraCodes(int advIntra, int modQuant) {
    return {advIntra != 0, modQuant != 0, advIntra ? 0 : 1};
}

static Codes interCodes(int modQuant) {
    return {false, modQuant != 0, 0};
}

// The levels of 11 bits of ITU-T H.263 T.4 stand with their lowest five bits in front.
enum { ExtendedBits = 11, ExtendedLow = 5, ExtendedHigh = ExtendedBits - ExtendedLow };

// ---- encoding --------------------------------------------------------------------

static void putExtendedLevel(BitWriter &writer, int level) {
    const Kel32u bits = lowBits(static_cast<Kel32u>(level), ExtendedBits);
    writer.put(lowBits(static_cast<Kel32u>(NoEscapedLevel), EscapedBits), EscapedBits);
    writer.put(lowBits(bits, ExtendedLow), ExtendedLow);
    writer.put(bits >> ExtendedLow, ExtendedHigh);
}

static void putEscaped(BitWriter &writer, const Event &event) {
    writer.put(escapeCode.code, escapeCode.bits);
    writer.put(static_cast<Kel32u>(event.last), 1);
    writer.put(static_cast<Kel32u>(event.run), 6);
    if (LevelRange(false).holds(event.level)) {
        writer.put(lowBits(static_cast<Kel32u>(event.level), EscapedBits), EscapedBits);
    } else {
        putExtendedLevel(writer, event.level);
    }
}

static void putEvents(BitWriter &writer, const BlockEvents &events, const EncoderTable &table) {
    for (int i = 0; i < events.count; ++i) {
        const Event &event = events.at[i];
        const EventCode *code = table.find(event.last, event.run, std::abs(event.level));
        if (code) {
            putCode(writer, *code, event.level);
        } else {
            putEscaped(writer, event);
        }
    }
}

static KelStatus encode(const Kel16s *pCoeffs, BitPosition &position, int countNonZero, const Codes &codes,
                        int scan) {
    const Block8x8<Kel16s> block(pCoeffs);
    const BlockEvents events = someEventsOf(block, scanOrder(scan), codes.first, countNonZero);
    const LevelRange range(codes.modQuant);
    if (!levelsWithin(events, range.low, range.high)) return kelStsRangeErr;
    BitWriter writer = position.writer();
    putEvents(writer, events, codes.advanced ? advancedTcoefEncoder : tcoefEncoder);
    position.moveTo(writer);
    return kelStsNoErr;
}

// ---- decoding --------------------------------------------------------------------

static int readExtendedLevel(BitReader &reader) {
    const int low = static_cast<int>(reader.read(ExtendedLow));
    const int high = static_cast<int>(reader.read(ExtendedHigh)); // with the sign
    return (high < 32 ? high : high - 64) * 32 + low;
}

// 0: the codes have no such level.
static int readLevel(BitReader &reader, bool modQuant) {
    const int level = readEscapedLevel(reader);
    if (level != NoEscapedLevel) return level;
    return modQuant ? readExtendedLevel(reader) : 0;
}

// False if there is no such code.
static bool readEvent(BitReader &reader, const Codes &codes, Event &event) {
    const auto &table = codes.advanced ? decoderTable<advancedTcoefCodes> : decoderTable<interEventCodes>;
    const Kel32s code = readCode(reader, table);
    if (code == noCode) return false;
    if (levelOf(code) != 0) {
        event = {lastOf(code), runOf(code), readSign(reader, levelOf(code))};
        return true;
    }
    event.last = reader.readBit();
    event.run = static_cast<int>(reader.read(6));
    event.level = readLevel(reader, codes.modQuant);
    return event.level != 0;
}

// The levels of a block up to its last one; returns the place of that, or -1 if there is a code that cannot
// be.
static int readLevels(BitReader &reader, const Codes &codes, const Kel8u *order, Block8x8<Kel16s> &block) {
    BlockFiller filler(block, order, codes.first);
    while (filler.place() < 63) {
        Event event;
        if (!readEvent(reader, codes, event) || !filler.put(event.run, event.level)) return -1;
        if (event.last) return filler.place();
    }
    return -1;
}

// Hands the block from the place `first` on to the caller, unless last tells that there is none.
static KelStatus give(const BitReader &reader, BitPosition &position, const Block8x8<Kel16s> &block,
                      int first, Kel16s *pCoeffs, int last, int *pIndxLastNonZero) {
    if (last < 0) return kelStsBitStreamErr;
    const size_t kept = static_cast<size_t>(first) * sizeof(Kel16s);
    std::memcpy(reinterpret_cast<Kel8u *>(pCoeffs) + kept, block.at + first, sizeof block.at - kept);
    store(pIndxLastNonZero, last);
    position.moveTo(reader);
    return kelStsNoErr;
}

static KelStatus decode(BitPosition &position, Kel16s *pCoeffs, int *pIndxLastNonZero, const Codes &codes,
                        int scan) {
    BitReader reader = position.reader();
    Block8x8<Kel16s> block{};
    const int last = readLevels(reader, codes, scanOrder(scan), block);
    return give(reader, position, block, codes.first, pCoeffs, last, pIndxLastNonZero);
}

static KelStatus reconstructInter(BitPosition &position, Kel16s *pCoeffs, int *pIndxLastNonZero, int QP,
                                  const Codes &codes) {
    BitReader reader = position.reader();
    Block8x8<Kel16s> block{};
    const int last = readLevels(reader, codes, scanOrder(ScanZigzag), block);
    reconstruct(block, 0, 63, QP);
    return give(reader, position, block, 0, pCoeffs, last, pIndxLastNonZero);
}

// DC, where it is coded apart, and the others; returns as readLevels does.
static int readIntraBlock(BitReader &reader, bool hasLevels, const Codes &codes, int scan,
                          Block8x8<Kel16s> &block) {
    if (!codes.advanced) {
        block.at[0] = static_cast<Kel16s>(readDc(reader));
        if (block.at[0] == 0) return -1;
    }
    return hasLevels ? readLevels(reader, codes, scanOrder(scan), block) : 0;
}

static KelStatus reconstructIntra(BitPosition &position, Kel16s *pCoeffs, int *pIndxLastNonZero,
                                  bool hasLevels, int QP, const Codes &codes, int scan) {
    BitReader reader = position.reader();
    Block8x8<Kel16s> block{};
    const int last = readIntraBlock(reader, hasLevels, codes, scan, block);
    reconstructIntra(block, 63, QP, codes.advanced);
    return give(reader, position, block, 0, pCoeffs, last, pIndxLastNonZero);
}

// A block that is not in the stream.
static KelStatus storeEmpty(Kel16s *pCoeffs, int *pIndxLastNonZero) {
    const Block8x8<Kel16s> block{};
    block.storeTo(pCoeffs);
    store(pIndxLastNonZero, -1);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

// ---- encoding ----------------------------------------------------------------------

KelStatus keliEncodeCoeffsIntra_H263_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset,
                                           int countNonZero, int advIntraFlag, int modQuantFlag, int scan) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isLevelCount(countNonZero) || !isFlag(advIntraFlag) ||
        !isFlag(modQuantFlag) || !isScanOrNone(scan)) {
        return kelStsRangeErr;
    }
    return encode(pCoeffs, position, countNonZero, intraCodes(advIntraFlag, modQuantFlag), scan);
}

KelStatus keliEncodeCoeffsInter_H263_16s1u(const Kel16s *pCoeffs, Kel8u **ppBitStream, int *pBitOffset,
                                           int countNonZero, int modQuantFlag, int scan) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isLevelCount(countNonZero) || !isFlag(modQuantFlag) || !isScanOrNone(scan)) {
        return kelStsRangeErr;
    }
    return encode(pCoeffs, position, countNonZero, interCodes(modQuantFlag), scan);
}

// ---- decoding ----------------------------------------------------------------------

KelStatus keliDecodeCoeffsIntra_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                           int *pIndxLastNonZero, int advIntraFlag, int modQuantFlag,
                                           int scan) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isFlag(advIntraFlag) || !isFlag(modQuantFlag) || !isScanOrNone(scan)) {
        return kelStsRangeErr;
    }
    return decode(position, pCoeffs, pIndxLastNonZero, intraCodes(advIntraFlag, modQuantFlag), scan);
}

KelStatus keliDecodeCoeffsInter_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                           int *pIndxLastNonZero, int modQuantFlag, int scan) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isFlag(modQuantFlag) || !isScanOrNone(scan)) return kelStsRangeErr;
    return decode(position, pCoeffs, pIndxLastNonZero, interCodes(modQuantFlag), scan);
}

KelStatus keliReconstructCoeffsIntra_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                int *pIndxLastNonZero, int cbp, int QP, int advIntraFlag,
                                                int scan, int modQuantFlag) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isQuant(QP) || !isFlag(advIntraFlag) || !isScanOrNone(scan) ||
        !isFlag(modQuantFlag)) {
        return kelStsRangeErr;
    }
    if (advIntraFlag && cbp == 0) return storeEmpty(pCoeffs, pIndxLastNonZero);
    const Codes codes = intraCodes(advIntraFlag, modQuantFlag);
    return reconstructIntra(position, pCoeffs, pIndxLastNonZero, cbp != 0, QP, codes, scan);
}

KelStatus keliReconstructCoeffsInter_H263_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pCoeffs,
                                                int *pIndxLastNonZero, int QP, int modQuantFlag) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pCoeffs) || anyNull(pIndxLastNonZero) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isQuant(QP) || !isFlag(modQuantFlag)) return kelStsRangeErr;
    return reconstructInter(position, pCoeffs, pIndxLastNonZero, QP, interCodes(modQuantFlag));
}

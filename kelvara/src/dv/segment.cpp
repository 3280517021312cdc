// segment.cpp - decoding of a compressed video segment of DV.

#include "../common/checks.h"
#include "../common/samples.h"
#include "../common/vlctable.h"
#include "bitspan.h"
#include "kelvc.h"

namespace kelvara {

static constexpr int macroblocks = 5, blocksOfMacroblock = 6, blocks = macroblocks * blocksOfMacroblock;
static constexpr int difBytes = 80, segmentBytes = macroblocks * difBytes;
static constexpr int statusByte = 3; // behind the ID
static constexpr int areaByte[blocksOfMacroblock + 1] = {4, 18, 32, 46, 60, 70, 80};
static constexpr int codedBytes = difBytes - areaByte[0];
static constexpr int dcBits = 9, modeBits = 1, classBits = 2;
static constexpr int maxCodeLength = 16; // with its sign
static constexpr int endOfBlock = 127;   // as a run of zeros

// Where levels of the 8-8 and of the 2-4-8 mode go. False for a place outside of the block.
struct Scan {
    bool loadFrom(const Kel32u *pDezigzag) {
        const auto bytes = reinterpret_cast<const unsigned char *>(pDezigzag);
        Kel32u all = 0;
        for (int i = 0; i < 128; ++i) {
            const auto position = load<Kel32u>(bytes + i * sizeof(Kel32u));
            all |= position;
            at[i / 64][i % 64] = static_cast<Kel8u>(position);
        }
        return all < 64;
    }

    Kel8u at[2][64];
};

// What all blocks of a call share.
struct Decoder {
    Scan scan;
    const Kel32s *table;
};

// A block between two passes. `pending` is the beginning of a code whose end the pass did not have.
class Block {
public:
    // Reads what stands in front of the codes.
    void begin(BitSpan &area, Kel16s *pLevels) {
        const int dc = static_cast<int>(area.take(dcBits));
        m_levels = pLevels;
        m_mode = area.take(modeBits);
        m_class = area.take(classBits);
        setLevel(0, 0, dc < 256 ? dc : dc - 512);
        m_place = 1;
    }

    // Decodes until the block ends or breaks, or until the bits do not hold another code.
    void resume(BitSpan &bits, const Decoder &decoder) {
        while (!m_ended && !m_broken && step(bits, decoder)) {
        }
    }

    bool ended() const { return m_ended; }
    bool broken() const { return m_broken; }

    Kel32u params(int quantiser) const {
        const Kel32u notWhole = m_ended ? 0 : 1;
        return static_cast<Kel32u>(quantiser) | m_class << 4 | m_mode << 6 |
               static_cast<Kel32u>(m_count) << 8 | notWhole << 31;
    }

private:
    void setLevel(int place, int position, int level) {
        store(m_levels + position, static_cast<Kel16s>(level));
        if (level != 0) m_count = place + 1;
    }

    // One code. False if its end is missing; then all bits are in `pending`.
    bool step(BitSpan &bits, const Decoder &decoder) {
        const int ahead = maxVlcLength - m_pendingBits, available = m_pendingBits + bits.left();
        const Kel32s entry = lookUpVlc(decoder.table, m_pending << ahead | bits.peek(ahead));
        const int length = entry & 255;
        if (entry == 0 && available >= maxCodeLength) {
            m_broken = true;
            return false;
        }
        if (entry == 0 || length > available) {
            const int left = bits.left();
            m_pending = m_pending << left | bits.take(left);
            m_pendingBits = available;
            return false;
        }
        bits.skip(length - m_pendingBits);
        m_pending = 0;
        m_pendingBits = 0;
        apply(entry >> 24, static_cast<Kel16s>(entry >> 8), decoder.scan);
        return true;
    }

    void apply(int run, int level, const Scan &scan) {
        if (level == 0 && run == endOfBlock) {
            m_ended = true;
            return;
        }
        const int place = m_place + run;
        m_broken = place > 63;
        if (m_broken) return;
        if (level != 0) setLevel(place, scan.at[m_mode][place], level);
        m_place = place + 1;
    }

    Kel16s *m_levels = nullptr;
    Kel32u m_mode = 0, m_class = 0;
    int m_place = 0; // of the next level in the scan
    int m_count = 0; // places up to the last level other than 0
    Kel32u m_pending = 0;
    int m_pendingBits = 0;
    bool m_ended = false, m_broken = false;
};

class Macroblock {
public:
    // The first two passes. What they leave of the bits goes to `spare`.
    void decode(const Kel8u *dif, Kel16s *pLevels, const Decoder &decoder) {
        SpareBits<codedBytes> own;
        for (int i = 0; i < blocksOfMacroblock; ++i) {
            BitSpan area(dif, 8 * areaByte[i], 8 * (areaByte[i + 1] - areaByte[i]));
            m_blocks[i].begin(area, pLevels + 64 * i);
            m_blocks[i].resume(area, decoder);
            if (m_blocks[i].broken()) m_broken = true;
            own.append(area); // nothing, if the block goes on
        }
        BitSpan rest = own.span();
        resume(rest, decoder);
        m_spare.append(rest);
    }

    // Behind a break nobody knows where the next block goes on.
    void resume(BitSpan &bits, const Decoder &decoder) {
        for (Block &block : m_blocks) {
            if (m_broken) return;
            if (!block.ended()) block.resume(bits, decoder);
            m_broken = block.broken();
        }
    }

    bool broken() const { return m_broken; }
    BitSpan spare() const { return m_spare.span(); }
    const Block &block(int i) const { return m_blocks[i]; }

private:
    Block m_blocks[blocksOfMacroblock];
    SpareBits<codedBytes> m_spare;
    bool m_broken = false;
};

// SMPTE 314M and IEC 61834-2, arrangement of a compressed macroblock and of a video segment.
static void decodeSegment(const Kel8u *segment, Kel16s *pLevels, const Decoder &decoder,
                          Macroblock (&all)[macroblocks]) {
    SpareBits<macroblocks * codedBytes> spare;
    bool broken = false;
    for (int m = 0; m < macroblocks; ++m) {
        all[m].decode(segment + m * difBytes, pLevels + m * blocksOfMacroblock * 64, decoder);
        broken = broken || all[m].broken();
        if (!broken) spare.append(all[m].spare());
    }
    BitSpan bits = spare.span();
    for (Macroblock &macroblock : all) {
        macroblock.resume(bits, decoder);
        if (macroblock.broken()) return;
    }
}

static KelStatus decode(const Kel8u *pSrc, const Kel32u *pDezigzag, const Kel32u *pHuffTable,
                        Kel16s *pDstBlocks, Kel32u *pBlParams) {
    if (anyNull(pSrc) || anyNull(pDezigzag, pHuffTable, pBlParams) || anyNull(pDstBlocks)) {
        return kelStsNullPtrErr;
    }
    Decoder decoder;
    if (!decoder.scan.loadFrom(pDezigzag)) return kelStsRangeErr;
    decoder.table = reinterpret_cast<const Kel32s *>(pHuffTable);

    Kel8u segment[segmentBytes + bitSlack] = {};
    std::memcpy(segment, pSrc, segmentBytes);
    std::memset(static_cast<void *>(pDstBlocks), 0, blocks * 64 * sizeof(Kel16s));
    Macroblock all[macroblocks];
    decodeSegment(segment, pDstBlocks, decoder, all);

    Kel32u everything = 0;
    for (int i = 0; i < blocks; ++i) {
        const int m = i / blocksOfMacroblock, quantiser = segment[m * difBytes + statusByte] & 15;
        const Kel32u params = all[m].block(i % blocksOfMacroblock).params(quantiser);
        store(pBlParams + i, params);
        everything |= params;
    }
    return everything >> 31 ? kelStsBitStreamErr : kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliHuffmanDecodeSegment_DV_8u16s(const Kel8u *pSrc, const Kel32u *pDezigzag,
                                            const Kel32u *pHuffTable, Kel16s *pDstBlocks, Kel32u *pBlParams) {
    return decode(pSrc, pDezigzag, pHuffTable, pDstBlocks, pBlParams);
}

// blockcodes.h - what the coders of H.261 and H.263 blocks share.

#ifndef KELVARA_BLOCKCODES_H
#define KELVARA_BLOCKCODES_H

#include "intradc.h"
#include "runlevel.h"
#include "samples.h"

#include <cstdlib>

namespace kelvara {

// ---- positions -------------------------------------------------------------------

// Where the caller's stream stands.
class BitPosition {
public:
    BitPosition(Kel8u **ppStream, int *pOffset)
        : m_ppStream(ppStream),
          m_pOffset(pOffset),
          m_status(takePosition(ppStream, pOffset, m_stream, m_offset)) {}

    bool isNull() const { return m_status == kelStsNullPtrErr; }
    bool isInByte() const { return m_status == kelStsNoErr; }

    BitReader reader() const { return BitReader(m_stream, m_offset); }
    BitWriter writer() const { return BitWriter(m_stream, m_offset); }
    void moveTo(const BitReader &reader) { reader.commit(const_cast<const Kel8u **>(m_ppStream), m_pOffset); }
    void moveTo(const BitWriter &writer) { writer.commit(m_ppStream, m_pOffset); }

private:
    Kel8u **m_ppStream;
    int *m_pOffset;
    Kel8u *m_stream = nullptr;
    int m_offset = 0;
    KelStatus m_status;
};

// ---- levels ----------------------------------------------------------------------

inline bool isLevelCount(int countNonZero) {
    return countNonZero >= 0 && countNonZero <= 64;
}

// The events of the levels from the place `first` on, at most countNonZero of them; the last one is marked.
inline BlockEvents someEventsOf(const Block8x8<Kel16s> &block, const Kel8u *order, int first,
                                int countNonZero) {
    BlockEvents events;
    eventsOf(block, order, first, countNonZero, events);
    if (events.count > 0) events.at[events.count - 1].last = 1;
    return events;
}

inline bool levelsWithin(const BlockEvents &events, int low, int high) {
    for (int i = 0; i < events.count; ++i) {
        if (events.at[i].level < low || events.at[i].level > high) return false;
    }
    return true;
}

// A code of the tables and the sign bit behind it.
inline void putCode(BitWriter &writer, const EventCode &code, int level) {
    writer.put(code.code * 2u + (level < 0), code.bits + 1);
}

inline int readSign(BitReader &reader, int magnitude) {
    return reader.readBit() ? -magnitude : magnitude;
}

// The level of 8 bits in escape codes. 0 and -128 stand for no level.
enum { EscapedBits = 8, NoEscapedLevel = -128 };

inline int readEscapedLevel(BitReader &reader) {
    return static_cast<Kel8s>(reader.read(EscapedBits));
}

// ---- DC of intra blocks -------------------------------------------------------------

inline void putDc(BitWriter &writer, int level) {
    writer.put(dcCode(limitedDcLevel(level)), DcBits);
}

// 0 if there is no such code.
inline int readDc(BitReader &reader) {
    return dcLevel(reader.read(DcBits));
}

} // namespace kelvara

#endif

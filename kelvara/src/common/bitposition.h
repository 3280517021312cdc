// bitposition.h - where the caller's bit stream stands.

#ifndef KELVARA_BITPOSITION_H
#define KELVARA_BITPOSITION_H

#include "bits.h"

namespace kelvara {

class BitPosition {
public:
    BitPosition(Kel8u **ppStream, int *pOffset)
        : m_ppStream(ppStream),
          m_pOffset(pOffset),
          m_status(takePosition(ppStream, pOffset, m_stream, m_offset)) {}

    bool isNull() const { return m_status == kelStsNullPtrErr; }
    bool isInByte() const { return m_status == kelStsNoErr; }

    BitReader reader() const { return BitReader(m_stream, m_offset); }
    BackwardBitReader backwardReader() const { return BackwardBitReader(m_stream, m_offset); }
    BitWriter writer() const { return BitWriter(m_stream, m_offset); }
    // Tells the caller where a reader or writer has come to.
    template <class Bits>
    void moveTo(const Bits &bits) {
        bits.commit(m_ppStream, m_pOffset);
    }

private:
    Kel8u **m_ppStream;
    int *m_pOffset;
    Kel8u *m_stream = nullptr;
    int m_offset = 0;
    KelStatus m_status;
};

} // namespace kelvara

#endif

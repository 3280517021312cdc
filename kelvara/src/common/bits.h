// bits.h - reading bits of a stream in either direction, and writing them.

#ifndef KELVARA_BITS_H
#define KELVARA_BITS_H

#include "checks.h"
#include "keltypes.h"

#include <cstring>

namespace kelvara {

// A position in a stream is a byte and an offset in it, 0 for its highest bit to 7 for its lowest. Callers of
// the library hand in the addresses of both. The stream has no length: it ends with the last code, and the
// byte behind that may not exist. So a reader loads a byte only when a bit of it is asked for, and the table
// look-ups (runlevel.h) ask for as many bits as the code turns out to have. Only codes that do not exist cost
// more: up to the length of the longest one.

// Takes the caller's position, whose parts may stand at any address. kelStsNullPtrErr for one of them or the
// stream, kelStsRangeErr for an offset that is none.
template <class Byte>
inline KelStatus takePosition(Byte *const *ppStream, const int *pOffset, Byte *&pStream, int &offset) {
    if (anyNull(ppStream) || anyNull(pOffset)) return kelStsNullPtrErr;
    std::memcpy(&pStream, static_cast<const void *>(ppStream), sizeof pStream);
    std::memcpy(&offset, static_cast<const void *>(pOffset), sizeof offset);
    if (!pStream) return kelStsNullPtrErr;
    return offset >= 0 && offset <= 7 ? kelStsNoErr : kelStsRangeErr;
}

// The lowest n bits, n at most 31.
constexpr Kel32u lowBits(Kel32u value, int n) {
    return value & ((1u << n) - 1);
}

// The n bits in opposite order.
constexpr Kel32u mirrored(Kel32u value, int n) {
    Kel32u result = 0;
    for (int i = 0; i < n; ++i) result |= (value >> i & 1) << (n - 1 - i);
    return result;
}

// ---- the two directions of reading -----------------------------------------------

// The position is that of the first bit that is read; bits follow from the highest to the lowest, bytes
// upward.
struct Forwards {
    static constexpr int skipped(int offset) { return offset; }
    static constexpr int offsetAt(int used) { return used; }
    static Kel32u next(const Kel8u *&p) { return *p++; }
    static const Kel8u *back(const Kel8u *p, int bytes) { return p - bytes; }
    static constexpr Kel32u number(Kel32u bits, int) { return bits; }
};

// The position is that of the last bit of a code, which is read first; it all runs downward.
struct Backwards {
    static constexpr int skipped(int offset) { return 7 - offset; }
    static constexpr int offsetAt(int used) { return 7 - used; }
    static Kel32u next(const Kel8u *&p) { return mirrored(*p--, 8); }
    static const Kel8u *back(const Kel8u *p, int bytes) { return p + bytes; }
    static constexpr Kel32u number(Kel32u bits, int n) { return mirrored(bits, n); }
};

// Works on a copy of the position, which the caller sees moved only by `commit`: a decoder that fails leaves
// it where it was. REQUIRES of all counts: at most 32 bits at once; of the offset: 0 to 7. The first byte is
// loaded at once, since every code has a bit.
template <class Direction>
class BitSource {
public:
    BitSource(const Kel8u *pStream, int offset) : m_next(pStream) {
        load();
        skip(Direction::skipped(offset));
    }

    // How many bits are loaded and not yet read.
    int loaded() const { return m_loaded; }
    // Loads the next byte; there must be room for it: at most 56 bits are loaded.
    void load() {
        m_bits |= Kel64u{Direction::next(m_next)} << 56 >> m_loaded;
        m_loaded += 8;
    }
    void need(int n) {
        while (m_loaded < n) load();
    }

    // The next n bits, 1 to 32, in the order of reading, the first one highest. Those that are not loaded
    // show as 0.
    Kel32u ahead(int n) const { return static_cast<Kel32u>(m_bits >> (64 - n)); }
    // The same, all of them loaded.
    Kel32u peek(int n) {
        need(n);
        return ahead(n);
    }
    // Moves over n bits, which are loaded.
    void skip(int n) {
        m_bits <<= n;
        m_loaded -= n;
    }
    Kel32u read(int n) {
        const Kel32u bits = peek(n);
        skip(n);
        return bits;
    }
    bool readBit() { return read(1) != 0; }
    // A field of n bits as the number that was written, whatever the direction of reading.
    Kel32u readNumber(int n) { return Direction::number(read(n), n); }

    // Tells the caller where the next bit stands. Backwards that may be in the byte in front of the stream.
    template <class Byte>
    void commit(Byte **ppStream, int *pOffset) const {
        const int started = (m_loaded + 7) / 8; // bytes that still hold bits
        const Kel8u *position = Direction::back(m_next, started);
        const int offset = Direction::offsetAt(started * 8 - m_loaded);
        std::memcpy(static_cast<void *>(ppStream), &position, sizeof position);
        std::memcpy(static_cast<void *>(pOffset), &offset, sizeof offset);
    }

private:
    const Kel8u *m_next;
    Kel64u m_bits = 0; // the loaded bits from the highest down, then zeros
    int m_loaded = 0;
};

using BitReader = BitSource<Forwards>;
using BackwardBitReader = BitSource<Backwards>;

// ---- writing ----------------------------------------------------------------------

// Works on a copy of the position too, and changes no bit but those it is given, neither in front of them nor
// behind. What is to be written must be judged before: bits that are put are in the stream.
class BitWriter {
public:
    BitWriter(Kel8u *pStream, int offset) : m_byte(pStream), m_offset(offset) {}

    // The lowest n bits of `bits`, 0 to 32 of them, from the highest down.
    void put(Kel32u bits, int n) {
        while (n > 0) {
            const int room = 8 - m_offset;
            const int count = n < room ? n : room;
            n -= count;
            putInByte(lowBits(bits >> n, count), count);
        }
    }
    void commit(Kel8u **ppStream, int *pOffset) const {
        std::memcpy(static_cast<void *>(ppStream), &m_byte, sizeof m_byte);
        std::memcpy(static_cast<void *>(pOffset), &m_offset, sizeof m_offset);
    }

private:
    void putInByte(Kel32u bits, int count) {
        const int behind = 8 - m_offset - count;
        const Kel32u mask = lowBits(~0u, count) << behind;
        const Kel32u others = count == 8 ? 0 : *m_byte & ~mask;
        *m_byte = static_cast<Kel8u>(others | bits << behind);
        m_offset += count;
        if (m_offset == 8) {
            ++m_byte;
            m_offset = 0;
        }
    }

    Kel8u *m_byte;
    int m_offset;
};

} // namespace kelvara

#endif

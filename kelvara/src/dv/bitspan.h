// bitspan.h - bits of a compressed segment, taken from the front, and spare bits put together.

#ifndef KELVARA_BITSPAN_H
#define KELVARA_BITSPAN_H

#include "keltypes.h"

namespace kelvara {

constexpr int bitSlack = 4; // bytes behind the last bit that a look ahead may read

inline Kel32u loadBigEndian(const Kel8u *p) {
    return Kel32u{p[0]} << 24 | Kel32u{p[1]} << 16 | Kel32u{p[2]} << 8 | p[3];
}

// Bits of somebody else's bytes, behind which there are bitSlack more.
class BitSpan {
public:
    BitSpan(const Kel8u *bytes, int first, int count)
        : m_bytes(bytes), m_first(first), m_end(first + count) {}

    int left() const { return m_end - m_first; }

    // The next n bits, 1 to 25. What lies behind the end may be anything.
    Kel32u peek(int n) const { return (loadBigEndian(m_bytes + m_first / 8) << (m_first % 8)) >> (32 - n); }
    void skip(int n) { m_first += n; }
    // REQUIRES: n at most left() and 25.
    Kel32u take(int n) {
        if (n == 0) return 0;
        const Kel32u bits = peek(n);
        skip(n);
        return bits;
    }

private:
    const Kel8u *m_bytes;
    int m_first, m_end;
};

// Bits of several spans behind each other. Capacity is in bytes.
template <int Capacity>
class SpareBits {
public:
    void append(BitSpan span) {
        while (span.left() > 0) {
            const int n = span.left() < 16 ? span.left() : 16;
            put(span.take(n), n);
        }
    }
    BitSpan span() const { return BitSpan(m_bytes, 0, m_count); }

private:
    void put(Kel32u bits, int n) {
        Kel8u *p = m_bytes + m_count / 8;
        const Kel32u word = loadBigEndian(p) | bits << (32 - n - m_count % 8);
        for (int i = 0; i < 4; ++i) p[i] = static_cast<Kel8u>(word >> (24 - 8 * i));
        m_count += n;
    }

    Kel8u m_bytes[Capacity + bitSlack] = {};
    int m_count = 0;
};

} // namespace kelvara

#endif

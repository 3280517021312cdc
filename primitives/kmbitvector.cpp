// kmbitvector.cpp - reading and writing bits, and their texts.

#include "kmbitvector.h"

#include "rkstream.h"

#include "kmtext.h"

namespace {

const unsigned char byteMask[8] = {128, 64, 32, 16, 8, 4, 2, 1};

// Positions 0 to the end of the n bits from first on. first is below 0 where the bits began in a byte before.
void addBits(kmText &text, unsigned char byte, long long first, long long n) {
    long long end = first + (8 - first < n ? 8 - first : n);
    for (int i = 0; i < end; ++i) {
        if (i == 4) text.add(' ');
        text.add(i < first ? ' ' : byte & byteMask[i] ? '1' : '0');
    }
}

} // namespace

rkString kmBitVector::objectInfo() const {
    rkString text = "BitVector byteLen=";
    return text << m_len;
}

rkString kmBitVector::getString() const {
    return getByteString(m_data, m_len);
}

// ---- the cursor --------------------------------------------------------------

void kmBitVector::setBitPos(int bit) {
    m_bytePos = bit >> 3;
    m_bitPos = bit & 7;
}

int kmBitVector::getBitPos() const {
    return static_cast<int>(m_bitPos + 8u * static_cast<unsigned int>(m_bytePos));
}

void kmBitVector::incrementPos() {
    m_bitPos = (m_bitPos + 1) & 7;
    if (m_bitPos == 0) ++m_bytePos;
}

bool kmBitVector::inRange() const {
    return m_data && m_bytePos >= 0 && m_bytePos < m_len;
}

// ---- bits --------------------------------------------------------------------

void kmBitVector::setBit(unsigned char b) {
    if (!m_data) return;
    if (inRange()) {
        unsigned char mask = byteMask[m_bitPos & 7];
        unsigned char &byte = m_data[m_bytePos];
        byte = static_cast<unsigned char>(b & 1 ? byte | mask : byte & ~mask);
    }
    incrementPos();
}

int kmBitVector::getBit() {
    if (!m_data) return 0;
    int bit = inRange() && (m_data[m_bytePos] & byteMask[m_bitPos & 7]);
    incrementPos();
    return bit;
}

void kmBitVector::setBits(unsigned int value, int n) {
    for (int i = n - 1; i >= 0; --i) setBit(i < 32 ? (value >> i) & 1 : 0);
}

void kmBitVector::getBits(unsigned int &value, int n) {
    value = 0;
    for (int i = 0; i < n; ++i) value = value << 1 | static_cast<unsigned int>(getBit());
}

void kmBitVector::setBits(rkString const &text) {
    for (char const *c = text.c_str(); *c; ++c) {
        if (*c == '0' || *c == '1') setBit(*c == '1');
    }
}

void kmBitVector::getBits(rkString &text, int n) {
    kmText bits;
    for (int i = 0; i < n; ++i) {
        if (i > 0 && getBitPos() % 4 == 0) bits.add(' ');
        bits.add(getBit() ? '1' : '0');
    }
    text = bits.text();
}

// ---- texts -------------------------------------------------------------------

rkString kmBitVector::bitString(unsigned char byte, int first, int n) {
    kmText text;
    addBits(text, byte, first, n);
    return text.text();
}

rkString kmBitVector::bitString(unsigned int word, int first, int n) {
    kmText text;
    for (int i = 0; i < 4; ++i) {
        if (i > 0) text.add(' ');
        addBits(text, static_cast<unsigned char>(word >> (24 - 8 * i)), first - 8LL * i, n);
    }
    return text.text();
}

rkString kmBitVector::getBitString(int firstBit, int n) const {
    long long rest = 8LL * m_len - firstBit;
    if (!m_data || firstBit < 0 || n < 0 || rest <= 0) return "";
    long long count = n == 0 || n > rest ? rest : n;
    long long first = firstBit & 7;
    unsigned char const *byte = m_data + (firstBit >> 3);
    kmText text;
    for (int column = 0; first + count > 0; first -= 8, ++byte) {
        addBits(text, *byte, first, count);
        column = (column + 1) % 8;
        bool last = first + count <= 8;
        text.add(last || column == 0 ? '\n' : ' ');
    }
    return text.text();
}

rkString kmBitVector::getBitString() const {
    return getBitString(0, 0);
}

void kmBitVector::bitprn(rkOStream &stream, int firstBit, int n) const {
    stream << getBitString(firstBit, n);
}

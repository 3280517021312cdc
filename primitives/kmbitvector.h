// kmbitvector.h - a vector of bytes with a bit cursor, for bit streams.

#ifndef RAKOVA_KMBITVECTOR_H
#define RAKOVA_KMBITVECTOR_H

#include "kmvector.h"

class rkOStream;

// Bit 0 of a byte is its highest. Behind the end, reads give 0 and writes change nothing, but the cursor
// moves.
class kmBitVector : public kmVector {
public:
    kmBitVector() : kmVector(8) {}
    ~kmBitVector() override = default;

    rkString objectInfo() const override;
    rkString getString() const override;   // bytes in hexadecimal
    virtual rkString getBitString() const; // all bits

    void setBitPos(int bit);
    int getBitPos() const;
    void incrementPos();
    // Both do nothing without a block.
    void setBit(unsigned char b); // the low bit of b
    int getBit();

    void setBits(unsigned int value, int n);  // the low n bits, from the highest of them down
    void getBits(unsigned int &value, int n); // the first bit read is the highest
    void setBits(rkString const &text);       // a bit for each "0" or "1", all else is skipped
    void getBits(rkString &text, int n);      // "0" and "1", a blank where the position is a multiple of 4

    // Texts of "0" and "1"; positions in front of first are blank, n bits from there on.
    static rkString bitString(unsigned char byte, int first, int n);
    static rkString bitString(unsigned int word, int first, int n);
    rkString getBitString(int firstBit, int n) const; // lines of 64 bits; n 0: to the end
    void bitprn(rkOStream &stream, int firstBit, int n) const;

    int m_bytePos = 0;
    int m_bitPos = 0;

private:
    bool inRange() const;
};

#endif

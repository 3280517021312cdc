// blockstream.h - a block of coefficients and the bit stream that it is coded into.

#ifndef RAKOVA_BLOCKSTREAM_H
#define RAKOVA_BLOCKSTREAM_H

#include "kmvc.h"

// Coders move the position on; reset brings it back to the start, which may be moved too.
struct BlockStream {
    // 64 zeros, and a stream of 1024 bytes that starts with its first bit.
    bool create();
    void reset() {
        pBitStream = pBitStreamStart;
        bitOffset = bitOffsetStart;
    }
    void flush() {
        coeffs.deleteVector();
        bitStream.deleteVector();
    }

    kmVector coeffs{16 | kmTypeSigned};
    kmBitVector bitStream;
    Kel8u *pBitStream = nullptr, *pBitStreamStart = nullptr; // the next bit is bit bitOffset of the byte
    int bitOffset = 0, bitOffsetStart = 0;
};

inline bool BlockStream::create() {
    if (!coeffs.createVectorExt(64, rkGetVectorShift(), SetZero, 0, 0)) return false;
    bitStream.setBitPos(0);
    if (!bitStream.createVectorExt(1024, rkGetVectorShift(), SetDefault, 0, 0)) return false;
    pBitStreamStart = bitStream.p8u;
    bitOffsetStart = 0;
    reset();
    return true;
}

#endif

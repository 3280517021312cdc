// reconstructionstrip.h - strips of macroblocks, of which each call of a test reconstructs one.

#ifndef RAKOVA_RECONSTRUCTIONSTRIP_H
#define RAKOVA_RECONSTRUCTIONSTRIP_H

#include "kmvc.h"

const int stripMacroblocks = 1024;     // one for each call of a statistic of 1023 calls and for its warm-up
const int stripStep = 16416;           // two macroblocks more, which are neighbours only
const int stripBytes = 17 * stripStep; // a row of neighbours on top

// Goes round and round the macroblocks, from one set to the next, too.
class StripPosition {
public:
    void restart() { m_next = 0; }
    int next() {
        const int position = m_next;
        m_next = (position + 1) % stripMacroblocks;
        return position;
    }

private:
    int m_next = 0;
};

class StripPlane {
public:
    bool create() { return m_samples.createVectorExt(stripBytes, rkGetVectorShift(), SetDefault, 0, 0); }
    void flush() { m_samples.deleteVector(); }
    void restart() { m_position.restart(); }
    // The first sample of the next macroblock; ahead: macroblocks further to the right.
    Kel8u *next(int ahead = 0) { return m_samples.p8u + 16 * (m_position.next() + ahead) + stripStep + 16; }

private:
    kmVector m_samples{8};
    StripPosition m_position;
};

// 17 blocks of 16 for each macroblock, as many as H.264 has. A call takes those of the coded blocks.
class StripCoefficients {
public:
    bool create() {
        const int count = stripMacroblocks * 17 * 16;
        if (!m_coeffs.createVectorExt(count, rkGetVectorShift(), SetValue, 1, 1)) return false;
        m_next = m_coeffs.p16s;
        return true;
    }
    void flush() { m_coeffs.deleteVector(); }
    void restart() { m_position.restart(); }
    // Where the call before has left the pointer, or the start for the first macroblock.
    Kel16s **next() {
        if (m_position.next() == 0) m_next = m_coeffs.p16s;
        return &m_next;
    }

private:
    kmVector m_coeffs{16 | kmTypeSigned};
    Kel16s *m_next = nullptr;
    StripPosition m_position;
};

// The coded block pattern of "block_type": its first bit alone, which is DC in H.264 and a block in AVS,
// nothing, about half of the blocks, all. False for any other number, which a user may have entered.
inline bool patternOfBlockType(int type, Kel32u &cbp) {
    static const Kel32u patterns[] = {1, 0, 103591, 131071};
    if (type < 0 || type > 3) return false;
    cbp = patterns[type];
    return true;
}

#endif

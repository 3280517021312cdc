// rotatingoffset.h - where each call of a test reads its source: one byte further than the call before.

#ifndef RAKOVA_ROTATINGOFFSET_H
#define RAKOVA_ROTATINGOFFSET_H

const unsigned int offset_modul = 64; // all alignments within a cache line count alike

class RotatingOffset {
public:
    void restart() { m_next = 0; }
    unsigned int next() { return m_next++ % offset_modul; }

private:
    unsigned int m_next = 0;
};

#endif

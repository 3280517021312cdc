// approximationpairs.h - tests that walk over the half-sample positions of two references.

#ifndef RAKOVA_APPROXIMATIONPAIRS_H
#define RAKOVA_APPROXIMATIONPAIRS_H

#include "cperftest.h"

// The list holds a forward and a backward position in each entry.
class CApproximationPairTest : public CListTest {
public:
    using CListTest::CListTest;

    void parmsToCstrm() override;

    // Key "Approximation" of the section. Without an ini file every pair once, forward turning fastest.
    void readPairs(char const *section, char const *defaultList);
    // An item is the forward letters and the backward letters, "FHHH".
    void setPairs(rkString list);
    int forward() const { return m_forward[m_index]; } // REQUIRES: in a pass
    int backward() const { return m_backward[m_index]; }

    static const int maxPairs = 16;
    int m_forward[maxPairs] = {};
    int m_backward[maxPairs] = {};

private:
    void addPair(int forwardCode, int backwardCode);
};

// Names of the pairs in tables, forward turning fastest.
extern char const *const gme_aszApproximation[16];

#endif

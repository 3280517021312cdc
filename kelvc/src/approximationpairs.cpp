// approximationpairs.cpp - the walk over the half-sample positions of two references.

#include "approximationpairs.h"

// clang-format off
char const *const gme_aszApproximation[16] = {
    "APX_FF_FF", "APX_FH_FF", "APX_HF_FF", "APX_HH_FF",
    "APX_FF_FH", "APX_FH_FH", "APX_HF_FH", "APX_HH_FH",
    "APX_FF_HF", "APX_FH_HF", "APX_HF_HF", "APX_HH_HF",
    "APX_FF_HH", "APX_FH_HH", "APX_HF_HH", "APX_HH_HH",
};
// clang-format on

void CApproximationPairTest::readPairs(char const *section, char const *defaultList) {
    if (g_istrm.m_iniFile) {
        setPairs(readKey(section, "Approximation", defaultList));
        return;
    }
    m_count = m_index = 0;
    for (int backwardCode : g_sad_aiApproximation) {
        for (int forwardCode : g_sad_aiApproximation) addPair(forwardCode, backwardCode);
    }
}

void CApproximationPairTest::setPairs(rkString list) {
    m_count = m_index = 0;
    rkStringList words;
    list.parse(words, ",");
    for (auto word = words.begin(); word != words.end() && m_count < maxPairs; ++word) {
        int forwardCode = approximationCode(*word, 0), backwardCode = approximationCode(*word, 2);
        if (forwardCode >= 0 && backwardCode >= 0) addPair(forwardCode, backwardCode);
    }
}

void CApproximationPairTest::addPair(int forwardCode, int backwardCode) {
    m_forward[m_count] = forwardCode;
    m_backward[m_count] = backwardCode;
    ++m_count;
}

// Codes are 0, 4, 8 and 12.
void CApproximationPairTest::parmsToCstrm() {
    g_cstrm << gme_aszApproximation[forward() / 4 + backward()];
}

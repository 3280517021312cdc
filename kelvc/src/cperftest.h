// cperftest.h - tests that take their settings from sections of the ini file.

#ifndef RAKOVA_CPERFTEST_H
#define RAKOVA_CPERFTEST_H

#include "km.h"

// Section "kelVC" holds the settings for all of these tests; a section of the class's own goes before it.
class CPerfTest : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override; // reads section "kelVC"

    // Reads the class's own section over what canStart found. Without an ini file all is default.
    void readSettings(char const *section);
    // A key of the class's own section, or the default.
    static rkString readKey(char const *section, char const *key, rkString defaultValue);

    // Reads through as much memory as the largest cache holds. Nothing calls it: the key is there, its use is
    // not.
    static void TrashCache();

    rkString m_repeatText = "1";
    rkString m_alignText = "16";
    rkString m_trashText = "0";
    int m_repeat = 1; // passes that are left
    int m_align = 16; // handed to the vectors, which place themselves by the session's settings
};

// Runs every half-sample position of the list in each pass.
class CApproximationTest : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canContinue() override; // the repeat walk, then prepareSet
    void flushData() override;
    void parmsToCstrm() override;

    void readApproximations(char const *section); // key "Approximation"
    void setApproximations(rkString list); // by the first two characters of an item; a blank is one of them
    int approximation() const { return m_codes[m_index]; } // REQUIRES: in a pass

    virtual void prepareSet() = 0; // allocates and fills what the set needs
    virtual void releaseSet() = 0;

    static const int maxCodes = 4;
    int m_codes[maxCodes] = {0, 0, 0, 0};
    int m_count = 0;
    int m_index = 0; // of the code in hand
};

// Codes of the half-sample positions and their names in tables.
extern const int g_sad_aiApproximation[4];
extern char const *const g_sad_aszApproximation[4];

#endif

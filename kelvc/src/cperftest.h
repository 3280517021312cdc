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

    // For a class without a list: begins the next pass; false if none is left.
    bool nextPass();

    // Units of a call: the number that stands where the function's name does; 1 for a name that is not there.
    double divisorOf(char const *const *functions, int const *divisions, int count) const;

    // Reads through as much memory as the largest cache holds. Nothing calls it: the key is there, its use is
    // not.
    static void TrashCache();

    rkString m_repeatText = "1";
    rkString m_alignText = "16";
    rkString m_trashText = "0";
    int m_repeat = 1; // passes that are left
    int m_align = 16; // handed to the vectors, which place themselves by the session's settings
};

// Runs every entry of a list in each pass.
class CListTest : public CPerfTest {
public:
    using CPerfTest::CPerfTest;

    bool canContinue() override; // the repeat walk, then prepareSet
    void flushData() override;

    virtual void prepareSet() = 0; // allocates and fills what the set needs
    virtual void releaseSet() = 0;

    int m_count = 0; // entries
    int m_index = 0; // of the entry in hand
};

// The list holds the half-sample positions of a reference.
class CApproximationTest : public CListTest {
public:
    using CListTest::CListTest;

    void parmsToCstrm() override;

    void readApproximations(char const *section); // key "Approximation"
    void setApproximations(rkString list); // by the first two characters of an item; a blank is one of them
    int approximation() const { return m_codes[m_index]; } // REQUIRES: in a pass

    static const int maxCodes = 4;
    int m_codes[maxCodes] = {0, 0, 0, 0};
};

// The code of the two letters at pos, "FF" to "HH"; -1 for any others.
int approximationCode(rkString const &item, int pos);

// Codes of the half-sample positions and their names in tables.
extern const int g_sad_aiApproximation[4];
extern char const *const g_sad_aszApproximation[4];

#endif

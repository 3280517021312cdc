// cperftest.cpp - settings from sections of the ini file, and the walk over half-sample positions.

#include "cperftest.h"

#include <stdlib.h>

const int g_sad_aiApproximation[4] = {0, 4, 8, 12};
char const *const g_sad_aszApproximation[4] = {"APX_FF", "APX_FH", "APX_HF", "APX_HH"};

static char const *const commonSection = "kelVC";

static int toInt(rkString const &text) {
    return static_cast<int>(strtol(text.c_str(), nullptr, 10));
}

bool CPerfTest::canStart() {
    m_alignText = "16";
    m_repeatText = "1";
    m_trashText = "0";
    rkIniFile *ini = g_istrm.m_iniFile;
    if (!ini) return true;
    if (!ini->sectionExist(commonSection)) {
        ini->write(commonSection, "Align", "16", "");
        ini->write(commonSection, "RepeatCounter", "1", "");
        return true;
    }
    m_alignText = ini->read(commonSection, "Align", "16");
    m_repeatText = ini->read(commonSection, "RepeatCounter", "1");
    m_trashText = ini->read(commonSection, "TrashCache", "0");
    return true;
}

rkString CPerfTest::readKey(char const *section, char const *key, rkString defaultValue) {
    return g_istrm.m_iniFile ? g_istrm.m_iniFile->read(section, key, defaultValue) : defaultValue;
}

void CPerfTest::readSettings(char const *section) {
    m_trashText = readKey(section, "TrashCache", m_trashText);
    m_alignText = readKey(section, "Align", m_alignText);
    m_repeatText = readKey(section, "RepeatCounter", m_repeatText);
    m_align = toInt(m_alignText);
    m_repeat = toInt(m_repeatText);
}

bool CPerfTest::nextPass() {
    if (m_repeat <= 0) return false;
    --m_repeat;
    return true;
}

double CPerfTest::divisorOf(char const *const *functions, int const *divisions, int count) const {
    for (int i = 0; i < count; ++i) {
        if (m_name == functions[i]) return divisions[i];
    }
    return 1.0;
}

void CPerfTest::TrashCache() {
    int size = 0;
    if (kel_GetMaxCacheSizeB(&size) < 0 || size < 0) return;
    signed char const *block = static_cast<signed char const *>(calloc(size, 1));
    if (!block) return;
    volatile int sum = 0;
    for (int i = 0; i < size; ++i) sum = sum + block[i];
    ::free(const_cast<signed char *>(block));
}

void CApproximationTest::readApproximations(char const *section) {
    setApproximations(readKey(section, "Approximation", "FF,FH,HF,HH"));
}

void CApproximationTest::setApproximations(rkString list) {
    m_count = m_index = 0;
    rkStringList words;
    list.parse(words, ",");
    for (auto word = words.begin(); word != words.end() && m_count < maxCodes; ++word) {
        int code = approximationCode(*word, 0);
        if (code >= 0) m_codes[m_count++] = code;
    }
}

int approximationCode(rkString const &item, int pos) {
    static char const *const items[] = {"FF", "FH", "HF", "HH"};
    for (int i = 0; i < CApproximationTest::maxCodes; ++i) {
        if (item.substr(pos, 2) == items[i]) return g_sad_aiApproximation[i];
    }
    return -1;
}

// Every entry in list order, as often as the repeat counter says. Without entries there is nothing to run.
bool CListTest::canContinue() {
    if (m_repeat <= 0 || m_count == 0) return false;
    if (m_index == m_count) {
        --m_repeat;
        m_index = 0;
        if (m_repeat == 0) return false;
    }
    prepareSet();
    return true;
}

void CListTest::flushData() {
    ++m_index;
    releaseSet();
}

void CApproximationTest::parmsToCstrm() {
    for (int i = 0; i < maxCodes; ++i) {
        if (g_sad_aiApproximation[i] == approximation()) g_cstrm << g_sad_aszApproximation[i];
    }
}

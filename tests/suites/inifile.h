// inifile.h - the ini file of a test of a suite.

#ifndef RAKOVA_TESTS_INIFILE_H
#define RAKOVA_TESTS_INIFILE_H

#include <gtest/gtest.h>

#include <string>

#include "../unit/tempdir.h"
#include "km.h"

// In force for as long as it lives.
class IniFile {
public:
    explicit IniFile(std::string const &text) {
        EXPECT_TRUE(g_istrm.setIniFile(m_dir.write("suite.ini", text), false));
    }
    ~IniFile() { g_istrm.close(); }

private:
    TempDir m_dir;
};

#endif

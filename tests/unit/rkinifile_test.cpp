// rkinifile_test.cpp - sections and keys of a text file.

#include "rkinifile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "rkstream.h"
#include "tempdir.h"

class IniFile : public testing::Test {
protected:
    void open(std::string const &bytes, bool write = false) {
        EXPECT_TRUE(m_ini.open(m_dir.write("f.ini", bytes), write));
    }
    std::string written() { return fileText(m_dir / "f.ini"); }
    std::string value(char const *section, char const *key) {
        return str(m_ini.read(section, key, "(none)"));
    }

    // "[section] key=value key=value [section] ..."
    std::string all() {
        std::string text;
        for (rkSectionItem *section : m_ini.m_sections) {
            text += "[" + str(section->name) + "] ";
            for (rkValueItem *item : *section->values) text += str(item->name) + "=" + str(item->value) + " ";
        }
        return text;
    }

    TempDir m_dir;
    rkIniFile m_ini;
};

// ---- reading ------------------------------------------------------------------

TEST_F(IniFile, KeyWithoutASectionIsDropped) {
    open("a=1");
    EXPECT_EQ(all(), "");
    EXPECT_FALSE(m_ini.valueExist("", "a"));
}

TEST_F(IniFile, LastValueOfAKeyWinsAtThePlaceOfTheFirst) {
    open("[s]\na=1\nb=5\na=2\n");
    EXPECT_EQ(value("s", "a"), "2");
    EXPECT_EQ(all(), "[s] a=2 b=5 ");
}

TEST_F(IniFile, SectionsOfOneNameMerge) {
    open("[s]\na=1\n[t]\n[s]\nb=2\n");
    EXPECT_EQ(all(), "[s] a=1 b=2 [t] ");
}

TEST_F(IniFile, KeyWithoutAValueReadsAsTheMark) {
    open("[s]\na\n");
    EXPECT_EQ(value("s", "a"), "~~~");
}

TEST_F(IniFile, CommentIsCutOff) {
    open("[s] // head\na = 1 // note\n// b=2\nurl=http://x\n");
    EXPECT_EQ(all(), "[s] a=1 url=http: ");
}

TEST_F(IniFile, BlankValueReadsAsEmpty) {
    open("[s]\na= \n");
    EXPECT_TRUE(m_ini.valueExist("s", "a"));
    EXPECT_EQ(value("s", "a"), "");
}

TEST_F(IniFile, NamesAreTrimmed) {
    open(" [ my section ] \n\t key one \t=  two words \n");
    EXPECT_EQ(all(), "[my section] key one=two words ");
}

TEST_F(IniFile, BracketsInAValueAreASection) {
    open("[s]\na=[1]\nb=2\n");
    EXPECT_EQ(all(), "[s] [1] b=2 ");
}

TEST_F(IniFile, ClosingBracketInFrontIsNoSection) {
    open("[s]\na=]1[\n[open\n");
    EXPECT_EQ(all(), "[s] a=]1[ [open=~~~ ");
}

TEST_F(IniFile, ValueRunsFromTheFirstEqualSign) {
    open("[s]\na=b=c\n");
    EXPECT_EQ(all(), "[s] a=b=c ");
}

TEST_F(IniFile, LineWithoutAKeyIsDropped) {
    open("[s]\n=5\n  = 6\n");
    EXPECT_EQ(all(), "[s] ");
}

TEST_F(IniFile, EmptyLinesAreSkipped) {
    open("\n  \t\n[s]\n\n// only a comment\na=1\n\n");
    EXPECT_EQ(all(), "[s] a=1 ");
}

TEST_F(IniFile, CarriageReturnStaysAtTheEndOfAValue) {
    open("[s]\r\na=1\r\n\r\nb\r\n");
    EXPECT_EQ(all(), "[s] a=1\r b\r=~~~ ");
}

TEST_F(IniFile, NamesAreCaseSensitive) {
    open("[s]\na=1\nA=2\n[S]\na=3\n");
    EXPECT_EQ(all(), "[s] a=1 A=2 [S] a=3 ");
}

TEST_F(IniFile, SameKeyInTwoSectionsIsTwoKeys) {
    open("[s]\na=1\n[t]\na=2\n");
    EXPECT_EQ(value("s", "a"), "1");
    EXPECT_EQ(value("t", "a"), "2");
}

TEST_F(IniFile, ReadTrimsTheKeyAndFallsBackToTheDefault) {
    open("[s]\na=1\n");
    EXPECT_EQ(value("s", " a\t"), "1");
    EXPECT_EQ(value("s", "b"), "(none)");
    EXPECT_EQ(value("t", "a"), "(none)");
}

TEST_F(IniFile, GetSectionFindsWhatStandsBetweenTheBrackets) {
    rkString name = "kept";
    EXPECT_FALSE(m_ini.getSection("a=1", name));
    EXPECT_FALSE(m_ini.getSection("]a[", name));
    EXPECT_FALSE(m_ini.getSection("", name));
    EXPECT_EQ(str(name), "kept");
    EXPECT_TRUE(m_ini.getSection("x[a]b]", name));
    EXPECT_EQ(str(name), "a");
    EXPECT_TRUE(m_ini.getSection("]x[]", name));
    EXPECT_EQ(str(name), "");
}

TEST_F(IniFile, GetValueSplitsAtTheFirstEqualSign) {
    rkString key, text;
    EXPECT_TRUE(m_ini.getValue("a=b=c", key, text));
    EXPECT_EQ(str(key) + "|" + str(text), "a|b=c");
    EXPECT_TRUE(m_ini.getValue("a=", key, text));
    EXPECT_EQ(str(key) + "|" + str(text), "a|");
    EXPECT_TRUE(m_ini.getValue("alone", key, text));
    EXPECT_EQ(str(key) + "|" + str(text), "alone|~~~");
}

// ---- outside input ------------------------------------------------------------

TEST_F(IniFile, LastLineWithoutALineFeedIsRead) {
    open("[s]\na=1");
    EXPECT_EQ(value("s", "a"), "1");
}

TEST_F(IniFile, EmptyFileIsAFile) {
    open("");
    EXPECT_EQ(all(), "");
}

TEST_F(IniFile, NulEndsItsLine) {
    open(std::string("[s]\na=1\0=2\nb=\0003\n\0c=4\nd=5\n", 26));
    EXPECT_EQ(all(), "[s] a=1 b= d=5 ");
}

TEST_F(IniFile, DirectoryIsAnEmptyFile) {
    EXPECT_TRUE(m_ini.open(m_dir / "", false));
    EXPECT_EQ(all(), "");
}

TEST_F(IniFile, DirectoryIsNotReplacedAtClose) {
    m_ini.open(m_dir / "", true);
    m_ini.write("s", "a", "1", "");
    m_ini.close();
    EXPECT_TRUE(std::filesystem::is_directory(m_dir.path()));
}

TEST_F(IniFile, LineOfMegabytesIsRead) {
    std::string text(5 * 1000 * 1000, 'v');
    open("[s]\na=" + text + "\nb=2\n");
    EXPECT_EQ(value("s", "a"), text);
    EXPECT_EQ(value("s", "b"), "2");
}

TEST_F(IniFile, ManyKeysAreRead) {
    std::string text = "[s]\n";
    for (int i = 0; i < 200000; ++i)
        text += "key number " + std::to_string(i) + " of very many = " + std::to_string(i) + "\n";
    open(text + "key number 77 of very many=again\n");
    EXPECT_EQ(m_ini.getSectionValues("s")->size(), 200000);
    EXPECT_EQ(value("s", "key number 199999 of very many"), "199999");
    EXPECT_EQ(value("s", "key number 77 of very many"), "again");
}

TEST_F(IniFile, ManySectionsAreRead) {
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += "[s" + std::to_string(i % 100000) + "]\na" + std::to_string(i / 100000) + "=1\n";
    open(text);
    EXPECT_EQ(m_ini.m_sections.size(), 100000);
    EXPECT_EQ(m_ini.getSectionValues("s99999")->size(), 2);
}

// ---- opening ------------------------------------------------------------------

static std::string messageOf(rkIniFile &ini, rkString name, bool write, bool &result) {
    TempDir dir;
    g_ostrm.setOutLevel(7);
    g_ostrm.addStream(dir / "log", false);
    result = ini.open(name, write);
    g_ostrm.close();
    return fileText(dir / "log");
}

TEST_F(IniFile, MissingFileToReadIsReported) {
    bool result = true;
    EXPECT_EQ(messageOf(m_ini, "/nowhere/f.ini", false, result),
              "-- Can't open file /nowhere/f.ini to read: \n");
    EXPECT_FALSE(result);
    EXPECT_FALSE(m_ini.m_writable);
}

TEST_F(IniFile, MissingFileToWriteIsCreatedWithoutAWord) {
    bool result = false;
    EXPECT_EQ(messageOf(m_ini, m_dir / "new.ini", true, result), "");
    EXPECT_TRUE(result);
    EXPECT_TRUE(m_ini.m_writable);
    EXPECT_EQ(fileText(m_dir / "new.ini"), "");
}

TEST_F(IniFile, FileThatCannotBeCreatedIsReportedAndNotWritten) {
    bool result = true;
    EXPECT_EQ(messageOf(m_ini, "/nowhere/f.ini", true, result),
              "-- Can't open file /nowhere/f.ini to write: \n");
    EXPECT_FALSE(result);
    EXPECT_FALSE(m_ini.m_writable);
}

// ---- writing ------------------------------------------------------------------

TEST_F(IniFile, KeyWithoutAValueIsWrittenAlone) {
    open("[s]\na\n", true);
    m_ini.updateFile();
    EXPECT_EQ(written(), "\n[s]\na\n");
}

TEST_F(IniFile, SectionsAndCommentsAreWritten) {
    open("", true);
    m_ini.write("s", "a", "1", "int > 0");
    m_ini.write("s", "b", "", "");
    m_ini.write("t");
    m_ini.write("u", "c");
    m_ini.updateFile();
    EXPECT_EQ(written(), "\n[s]\na=1\t// int > 0\nb=\n\n[t]\n\n[u]\nc\n");
}

TEST_F(IniFile, CommentsOfTheFileAreNotKept) {
    open("[s]\na=1 // old\n", true);
    m_ini.close();
    EXPECT_EQ(written(), "\n[s]\na=1\n");
}

TEST_F(IniFile, WhatIsWrittenReadsBack) {
    open("", true);
    m_ini.write("s", "a", "two words", "comment");
    m_ini.write("s", "b");
    m_ini.write("t", "a", "3", "");
    m_ini.close();
    EXPECT_TRUE(m_ini.open(m_dir / "f.ini", false));
    EXPECT_EQ(all(), "[s] a=two words b=~~~ [t] a=3 ");
}

TEST_F(IniFile, ReadOnlyFileIsNotWritten) {
    open("[s]\na=1\n");
    m_ini.write("s", "a", "2", "");
    m_ini.updateFile();
    m_ini.close();
    EXPECT_EQ(written(), "[s]\na=1\n");
}

TEST_F(IniFile, WriteChangesTheValueAndKeepsTheComment) {
    m_ini.write("s", "a", "1", "first");
    m_ini.write("s", " a ", "2", "second");
    EXPECT_EQ(all(), "[s] a=2 ");
    EXPECT_EQ(str((*m_ini.getSectionValues("s")->begin())->comment), "first");
}

TEST_F(IniFile, WriteWithoutAKeyOnlyCreatesTheSection) {
    m_ini.write("s", " \t", "1", "x");
    m_ini.write("t");
    EXPECT_EQ(all(), "[s] [t] ");
}

TEST_F(IniFile, WriteOfAKeyAloneMarksItAsWithoutValue) {
    m_ini.write("s", "a", "1", "");
    m_ini.write("s", "a");
    EXPECT_EQ(value("s", "a"), "~~~");
}

TEST_F(IniFile, NewSectionsAndKeysGoToTheEnd) {
    open("[s]\na=1\n[t]\n");
    m_ini.write("u", "x", "1", "");
    m_ini.write("s", "b", "2", "");
    EXPECT_EQ(all(), "[s] a=1 b=2 [t] [u] x=1 ");
}

TEST_F(IniFile, DestructorWritesTheFile) {
    {
        rkIniFile ini;
        ini.open(m_dir / "f.ini", true);
        ini.write("s", "a", "1", "");
        EXPECT_EQ(written(), "");
    }
    EXPECT_EQ(written(), "\n[s]\na=1\n");
}

TEST_F(IniFile, SecondCloseDoesNothing) {
    open("[s]\na=1\n", true);
    m_ini.close();
    EXPECT_EQ(all(), "");
    m_dir.write("f.ini", "changed by another");
    m_ini.close();
    EXPECT_EQ(written(), "changed by another");
}

TEST_F(IniFile, FileThatCannotBeWrittenAnyMoreIsGivenUp) {
    std::filesystem::create_directory(m_dir.path() + "/sub");
    EXPECT_TRUE(m_ini.open(m_dir / "sub/f.ini", true));
    m_ini.write("s", "a", "1", "");
    std::filesystem::remove_all(m_dir.path() + "/sub");
    m_ini.updateFile();
    EXPECT_EQ(value("s", "a"), "1");
    m_ini.close();
    EXPECT_FALSE(std::filesystem::exists(m_dir.path() + "/sub"));
}

TEST_F(IniFile, FullDeviceIsGivenUp) {
    EXPECT_TRUE(m_ini.open("/dev/null", true));
    m_ini.m_fileName = "/dev/full";
    m_ini.write("s", "a", "1", "");
    m_ini.updateFile();
    EXPECT_EQ(value("s", "a"), "1");
}

// ---- access -------------------------------------------------------------------

TEST_F(IniFile, ExistenceIsExact) {
    open("[s]\na=1\n");
    EXPECT_TRUE(m_ini.sectionExist("s"));
    EXPECT_FALSE(m_ini.sectionExist("S"));
    EXPECT_TRUE(m_ini.valueExist("s", "a"));
    EXPECT_FALSE(m_ini.valueExist("s", "A"));
    EXPECT_FALSE(m_ini.valueExist("t", "a"));
    EXPECT_EQ(m_ini.getSectionValues("t"), nullptr);
}

TEST_F(IniFile, EraseSectionTakesItsKeysAlong) {
    open("[s]\na=1\n[t]\nb=2\n");
    m_ini.eraseSection("s");
    m_ini.eraseSection("absent");
    EXPECT_EQ(all(), "[t] b=2 ");
}

TEST_F(IniFile, DeleteKeyTakesOneKey) {
    open("[s]\na=1\nb=2\nc=3\n");
    m_ini.deleteKey("s", "b");
    m_ini.deleteKey("s", "absent");
    m_ini.deleteKey("absent", "a");
    EXPECT_EQ(all(), "[s] a=1 c=3 ");
}

TEST(IniFileDevice, AFileThatNeverEndsIsReadAsAnEmptyOne) {
    alarm(20); // ends a reading that goes on for ever
    for (char const *name : {"/dev/zero", "/dev/urandom"}) {
        rkIniFile ini;
        EXPECT_TRUE(ini.open(name, false)) << name;
        EXPECT_TRUE(ini.m_sections.empty()) << name;
    }
    alarm(0);
}

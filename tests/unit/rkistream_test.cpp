// rkistream_test.cpp - where parameter values come from.

#include "rkistream.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "rksession.h"
#include "tempdir.h"

// ---- -d data ------------------------------------------------------------------

static std::string pairs(rkDataList const &list) {
    std::string text;
    for (rkData const &data : list) text += str(data.name) + "=" + str(data.value) + ";";
    return text;
}

TEST(RkDataList, LastOfANameWins) {
    rkDataList list;
    list.set("x=1");
    list.set("y=5");
    list.set("x=2");
    rkString value;
    EXPECT_TRUE(list.get("x", value));
    EXPECT_EQ(str(value), "2");
    EXPECT_EQ(pairs(list), "y=5;x=2;");
}

TEST(RkDataList, WithoutAnEqualSignTheValueIsEmpty) {
    rkDataList list;
    list.set("x");
    rkString value = "stale";
    EXPECT_TRUE(list.get("x", value));
    EXPECT_EQ(str(value), "");
}

TEST(RkDataList, NamesAndValuesAreTrimmed) {
    rkDataList list;
    list.set(" src size =\t8 16 ");
    list.set(" z ", " 1 ");
    EXPECT_EQ(pairs(list), "src size=8 16;z=1;");
}

TEST(RkDataList, EmptyNameIsIgnored) {
    rkDataList list;
    list.set("");
    list.set(" =5");
    list.set(" ", "5");
    EXPECT_EQ(pairs(list), "");
}

TEST(RkDataList, SurplusWordsAreDropped) {
    rkDataList list;
    list.set("x=1=2");
    EXPECT_EQ(pairs(list), "x=1;");
}

TEST(RkDataList, AbsentNameIsFalseAndLeavesTheValue) {
    rkDataList list;
    list.set("x=1");
    rkString value = "kept";
    EXPECT_FALSE(list.get("X", value));
    EXPECT_EQ(str(value), "kept");
    EXPECT_TRUE(list.find("X") == list.end());
    EXPECT_TRUE(list.find("x") == list.begin());
}

// ---- the question -------------------------------------------------------------

class Input : public testing::Test {
protected:
    void console(char const *typed) {
        m_input.setIStream(
            new i_stream(m_dir.write("typed", typed), io_stream::Read | io_stream::AsIs, false));
    }
    void ini(char const *text, bool write = false) {
        EXPECT_TRUE(m_input.setIniFile(m_dir.write("f.ini", text), write));
    }
    // The value of "size" with default "8"; what went to the console stands in m_asked.
    std::string size(char const *prompt = "") {
        testing::internal::CaptureStdout();
        rkString value = m_input.getItemValue("size", "8", prompt, "int");
        fflush(stdout);
        m_asked = testing::internal::GetCapturedStdout();
        return str(value);
    }

    TempDir m_dir;
    rkIStream m_input;
    std::string m_asked;
};

TEST_F(Input, StartsWithNoSourceAtAll) {
    EXPECT_EQ(m_input.m_console, nullptr);
    EXPECT_EQ(m_input.m_iniFile, nullptr);
    EXPECT_TRUE(m_input.m_data.empty());
    EXPECT_EQ(str(m_input.m_section), "Rakova");
    EXPECT_FALSE(m_input.m_writeIni);
    EXPECT_EQ(m_input.m_source, 4);
    EXPECT_TRUE(std::has_virtual_destructor_v<rkIStream>);
}

TEST_F(Input, WithoutASourceTheDefaultComesWithoutAnyOutput) {
    EXPECT_EQ(size(), "8");
    EXPECT_EQ(m_input.m_source, 0);
    EXPECT_EQ(m_asked, "");
}

TEST_F(Input, AnswerIsReturnedAsItWasTyped) {
    console(" 16 \n");
    EXPECT_EQ(size("Size in bytes"), " 16 ");
    EXPECT_EQ(m_input.m_source, 1);
    EXPECT_EQ(m_asked, "\n Size in bytes [8] = ");
}

TEST_F(Input, EmptyPromptIsTheName) {
    console("16\n");
    EXPECT_EQ(size(), "16");
    EXPECT_EQ(m_asked, "\n size [8] = ");
}

TEST_F(Input, EmptyAnswerIsTheDefault) {
    console("\n");
    EXPECT_EQ(size(), "8");
    EXPECT_EQ(m_input.m_source, 0);
}

TEST_F(Input, EndOfTheConsoleIsTheDefault) {
    console("");
    EXPECT_EQ(size(), "8");
    EXPECT_EQ(size(), "8");
    EXPECT_EQ(m_input.m_source, 0);
}

TEST_F(Input, QuestionPassesLevelsAndLogs) {
    g_ostrm.setOutLevel(0);
    g_ostrm.addStream(m_dir / "log", false);
    console("16\n");
    EXPECT_EQ(size(), "16");
    g_ostrm.close();
    EXPECT_EQ(m_asked, "\n size [8] = ");
    EXPECT_EQ(fileText(m_dir / "log"), "");
}

// The child leaves without flushing anything itself, so what stands in the file was flushed by the question.
TEST_F(Input, PromptIsSeenBeforeTheAnswerIsAwaitedHoweverTheOutputIsBuffered) {
    rkString shown = m_dir / "shown";
    EXPECT_EXIT(
        {
            if (!freopen(shown.c_str(), "w", stdout)) _exit(1);
            setvbuf(stdout, nullptr, _IOFBF, 1 << 16);
            i_stream none(nullptr);
            m_input.getItemValue(none, "Size", "8");
            _exit(7);
        },
        testing::ExitedWithCode(7), "");
    EXPECT_EQ(fileText(shown), "\n Size [8] = ");
}

// ---- priority -----------------------------------------------------------------

TEST_F(Input, DataComeFirst) {
    m_input.m_data.set("size=64");
    ini("[Rakova]\nsize=32\n");
    console("16\n");
    EXPECT_EQ(size(), "64");
    EXPECT_EQ(m_input.m_source, 3);
    EXPECT_EQ(m_asked, "");
}

TEST_F(Input, EmptyDataCountAsAValue) {
    m_input.m_data.set("size");
    ini("[Rakova]\nsize=32\n");
    console("16\n");
    EXPECT_EQ(size(), "");
    EXPECT_EQ(m_input.m_source, 3);
}

TEST_F(Input, IniFileComesBeforeTheConsole) {
    ini("[Rakova]\nsize=32\n");
    console("16\n");
    EXPECT_EQ(size(), "32");
    EXPECT_EQ(m_input.m_source, 2);
    EXPECT_EQ(m_asked, "");
}

TEST_F(Input, EmptyIniValueCountsAsAbsent) {
    ini("[Rakova]\nsize= \n");
    EXPECT_EQ(size(), "8");
    EXPECT_EQ(m_input.m_source, 0);
    console("16\n");
    EXPECT_EQ(size(), "16");
    EXPECT_EQ(m_input.m_source, 1);
}

TEST_F(Input, IniFileIsReadInTheSectionThatIsSet) {
    ini("[Rakova]\nsize=32\n[keliTest]\nsize=4\n");
    EXPECT_EQ(str(m_input.setIniSection("keliTest")), "Rakova");
    EXPECT_EQ(size(), "4");
    EXPECT_EQ(str(m_input.setIniSection("Rakova")), "keliTest");
    EXPECT_EQ(size(), "32");
}

// ---- writing back -------------------------------------------------------------

TEST_F(Input, ValuesOfAllSourcesAreWrittenBack) {
    ini("[Rakova]\nfrom ini=1\n", true);
    EXPECT_TRUE(m_input.iniIsWritten());
    m_input.m_data.set("from data=2");
    m_input.getItemValue("from ini", "0", "", "a");
    m_input.getItemValue("from data", "0", "", "b");
    m_input.setIniSection("keliTest");
    m_input.getItemValue("from default", "0", "", "");
    m_input.close();
    EXPECT_EQ(fileText(m_dir / "f.ini"),
              "\n[Rakova]\nfrom ini=1\nfrom data=2\t// b\n\n[keliTest]\nfrom default=0\n");
}

TEST_F(Input, AnswersAreWrittenBack) {
    ini("", true);
    console("16\n");
    EXPECT_EQ(size(), "16");
    m_input.deleteIniFile();
    EXPECT_FALSE(m_input.m_writeIni);
    EXPECT_FALSE(m_input.iniIsWritten());
    EXPECT_EQ(fileText(m_dir / "f.ini"), "\n[Rakova]\nsize=16\t// int\n");
}

TEST_F(Input, FileToReadIsLeftAsItIs) {
    ini("[Rakova]\nother=1\n");
    EXPECT_FALSE(m_input.iniIsWritten());
    EXPECT_EQ(size(), "8");
    EXPECT_FALSE(m_input.m_iniFile->valueExist("Rakova", "size"));
    m_input.close();
    EXPECT_EQ(fileText(m_dir / "f.ini"), "[Rakova]\nother=1\n");
}

TEST_F(Input, SecondIniFileReplacesTheFirstWhichIsWritten) {
    ini("[Rakova]\nsize=32\n", true);
    EXPECT_TRUE(m_input.setIniFile(m_dir.write("g.ini", "[Rakova]\nsize=2\n"), false));
    EXPECT_EQ(size(), "2");
    EXPECT_EQ(fileText(m_dir / "f.ini"), "\n[Rakova]\nsize=32\n");
}

TEST_F(Input, IniNameIsResolvedByTheInputDirectory) {
    m_dir.write("my.ini", "[Rakova]\nsize=32\n");
    rkSession::setInDir(m_dir.path().c_str());
    EXPECT_TRUE(m_input.setIniFile("my.ini", false));
    EXPECT_EQ(size(), "32");
}

TEST_F(Input, MissingIniFileIsFalseAndTheDefaultHolds) {
    EXPECT_FALSE(m_input.setIniFile("/nowhere/f.ini", false));
    EXPECT_EQ(size(), "8");
    EXPECT_FALSE(m_input.setIniFile("/nowhere/f.ini", true));
    EXPECT_FALSE(m_input.iniIsWritten());
    EXPECT_EQ(size(), "8");
}

// ---- attaching ----------------------------------------------------------------

TEST_F(Input, TheConsoleItselfIsNeverDeleted) {
    m_input.setIStream(&c_in);
    EXPECT_TRUE(m_input.hasConsole());
    m_input.setIStream(&c_in);
    m_input.deleteIStream();
    EXPECT_FALSE(m_input.hasConsole());
    EXPECT_EQ(c_in.m_file, stdin);
}

class WatchedStream : public i_stream {
public:
    explicit WatchedStream(int &deleted) : i_stream(nullptr), m_deleted(deleted) {}
    ~WatchedStream() override { ++m_deleted; }

private:
    int &m_deleted;
};

TEST_F(Input, AnyOtherConsoleIsDeletedOnce) {
    int deleted = 0;
    i_stream *watched = new WatchedStream(deleted);
    m_input.setIStream(watched);
    m_input.setIStream(watched);
    EXPECT_EQ(deleted, 0);
    m_input.setIStream(nullptr);
    EXPECT_EQ(deleted, 1);
    m_input.setIStream(new WatchedStream(deleted));
    m_input.close();
    m_input.close();
    EXPECT_EQ(deleted, 2);
}

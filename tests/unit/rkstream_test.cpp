// rkstream_test.cpp - files, lines and the console log.

#include "rkstream.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "rkoption.h"
#include "rksession.h"
#include "tempdir.h"

// ---- files --------------------------------------------------------------------

TEST(IoStream, FailedOpenLeavesNoFile) {
    TempDir dir;
    i_stream file(dir / "absent", io_stream::Read | io_stream::AsIs, false);
    EXPECT_EQ(file.m_file, nullptr);
}

TEST(IoStream, NeitherReadNorWriteDoesNotOpen) {
    TempDir dir;
    rkString name = dir.write("there", "x");
    EXPECT_EQ(io_stream(name, io_stream::AsIs, false).m_file, nullptr);
    EXPECT_EQ(io_stream(name, io_stream::AsIs | io_stream::Binary | io_stream::Append, false).m_file,
              nullptr);
    EXPECT_EQ(fileText(name), "x");
}

TEST(IoStream, ReadTakesPrecedenceOverWrite) {
    TempDir dir;
    rkString name = dir.write("there", "kept");
    i_stream file(name, io_stream::Read | io_stream::Write | io_stream::AsIs, false);
    rkString line;
    EXPECT_TRUE(file.getline(line));
    EXPECT_EQ(str(line), "kept");
}

TEST(IoStream, WriteReplacesAndAppendAdds) {
    TempDir dir;
    rkString name = dir.write("f", "old\n");
    {
        o_stream file(name, io_stream::Write | io_stream::AsIs, false);
        file << "new\n";
    }
    EXPECT_EQ(fileText(name), "new\n");
    {
        o_stream file(name, io_stream::Write | io_stream::Append | io_stream::AsIs, false);
        file << "more\n";
    }
    EXPECT_EQ(fileText(name), "new\nmore\n");
}

TEST(IoStream, NameIsResolvedByTheDirectoriesOfTheSession) {
    TempDir dir;
    dir.write("in.bin", "data");
    std::filesystem::create_directory(dir.path() + "/out");
    rkSession::setInDir(dir.path().c_str());
    rkSession::setOutDir((dir.path() + "/out").c_str());
    i_stream in("in.bin", io_stream::Read | io_stream::Binary, false);
    EXPECT_NE(in.m_file, nullptr);
    { o_stream out("made.txt", io_stream::Write, false); }
    EXPECT_EQ(fileText(dir / "out/made.txt"), "");
}

static std::string messageOfFailedOpen(rkString name, int flags, int outLevel) {
    TempDir dir;
    rkString log = dir / "log";
    g_ostrm.addStream(log, false);
    g_ostrm.setOutLevel(outLevel);
    { io_stream file(name, flags, true); }
    EXPECT_EQ(g_ostrm.msgLevel(), MsgResult); // the message's level was taken back
    g_ostrm.close();
    return fileText(log);
}

TEST(IoStream, MessageOfAFailedOpenToReadNamesTheResolvedPath) {
    rkSession::setInDir("/nowhere");
    EXPECT_EQ(messageOfFailedOpen("a.dat", io_stream::Read, 7),
              "-- Can't open file /nowhere/a.dat to read: \n");
}

TEST(IoStream, MessageOfAFailedOpenToWrite) {
    EXPECT_EQ(messageOfFailedOpen("/nowhere/a.txt", io_stream::Write | io_stream::AsIs, 1),
              "-- Can't open file /nowhere/a.txt to write: \n");
}

TEST(IoStream, MessageWithoutADirectionNamesNone) {
    EXPECT_EQ(messageOfFailedOpen("/nowhere/a.txt", io_stream::AsIs, 1),
              "-- Can't open file /nowhere/a.txt: \n");
}

TEST(IoStream, MessageOfAFailedOpenIsOfLevelError) {
    EXPECT_EQ(messageOfFailedOpen("/nowhere/a.txt", io_stream::Read | io_stream::AsIs, 6), "");
}

TEST(IoStream, SilentWhenErrorsAreNotToBeShown) {
    TempDir dir;
    rkString log = dir / "log";
    g_ostrm.addStream(log, false);
    { io_stream file("/nowhere/a", io_stream::Read | io_stream::AsIs, false); }
    g_ostrm.close();
    EXPECT_EQ(fileText(log), "");
}

TEST(IoStream, ConsoleIsBoundToTheStandardStreams) {
    EXPECT_EQ(c_in.m_file, stdin);
    EXPECT_EQ(c_out.m_file, stdout);
}

TEST(IoStream, DestructorLeavesTheStandardStreamsOpen) {
    { o_stream out(stdout); }
    { i_stream in(stdin); }
    EXPECT_GE(printf(" "), 1);
    EXPECT_EQ(fflush(stdout), 0);
}

TEST(IoStream, DestructorIsVirtual) {
    EXPECT_TRUE(std::has_virtual_destructor_v<io_stream>);
    EXPECT_TRUE(std::has_virtual_destructor_v<rkOStream>);
}

TEST(OStream, TextForAStreamWithoutAFileGoesToStandardOutput) {
    o_stream none(nullptr);
    testing::internal::CaptureStdout();
    none << "100% kept";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "100% kept");
}

TEST(OStream, PercentSignsAreNoFormat) {
    TempDir dir;
    {
        o_stream file(dir / "f", io_stream::Write | io_stream::AsIs, false);
        file << "%s %n %d";
    }
    EXPECT_EQ(fileText(dir / "f"), "%s %n %d");
}

TEST(OStream, CreateGivesNullIfTheFileCannotBeOpened) {
    EXPECT_EQ(createOStream("/nowhere/x", false), nullptr);
    EXPECT_EQ(createOStream("/nowhere/x", true), nullptr);
}

TEST(OStream, CreateReplacesOrAppends) {
    TempDir dir;
    rkString name = dir.write("f", "1");
    o_stream *stream = createOStream(name, true);
    *stream << "2";
    delete stream;
    EXPECT_EQ(fileText(name), "12");
    stream = createOStream(name, false);
    *stream << "3";
    delete stream;
    EXPECT_EQ(fileText(name), "3");
}

TEST(OStream, LastErrorMessageIsEmpty) {
    fclose(fopen("/dev/null", "r"));
    EXPECT_EQ(fopen("/nowhere/x", "r"), nullptr);
    EXPECT_EQ(str(getLastErrorMessage()), "");
}

// ---- lines --------------------------------------------------------------------

class Lines : public testing::Test {
protected:
    // Every line of the bytes that getline calls true, each followed by "|".
    std::string all(std::string const &bytes) {
        i_stream file(m_dir.write("f", bytes), io_stream::Read | io_stream::AsIs, false);
        std::string text;
        rkString line;
        while (file.getline(line)) text += str(line) + "|";
        EXPECT_EQ(str(line), "");
        return text;
    }

    TempDir m_dir;
};

TEST_F(Lines, LastLineWithoutALineFeedIsDelivered) {
    i_stream file(m_dir.write("f", "one\ntwo"), io_stream::Read | io_stream::AsIs, false);
    rkString line;
    EXPECT_TRUE(file.getline(line));
    EXPECT_EQ(str(line), "one");
    EXPECT_TRUE(file.getline(line));
    EXPECT_EQ(str(line), "two");
    EXPECT_FALSE(file.getline(line));
    EXPECT_EQ(str(line), "");
}

TEST_F(Lines, EmptyLineIsALine) {
    EXPECT_EQ(all("\na\n\n"), "|a||");
}

TEST_F(Lines, EmptyFileHasNone) {
    EXPECT_EQ(all(""), "");
}

TEST_F(Lines, CarriageReturnStays) {
    EXPECT_EQ(all("a\r\nb\r"), "a\r|b\r|");
}

TEST_F(Lines, LineOf511CharactersIsWhole) {
    std::string text(511, 'x');
    EXPECT_EQ(all(text + "\nnext"), text + "|next|");
    EXPECT_EQ(all(text), text + "|");
}

TEST_F(Lines, LineOf512CharactersIsWhole) {
    std::string text(512, 'x');
    EXPECT_EQ(all(text + "\nnext"), text + "|next|");
    EXPECT_EQ(all(text), text + "|");
}

TEST_F(Lines, LineOf513CharactersIsWhole) {
    std::string text(513, 'x');
    EXPECT_EQ(all(text + "\nnext"), text + "|next|");
    EXPECT_EQ(all(text), text + "|");
}

TEST_F(Lines, LineOfMegabytesIsWhole) {
    std::string text(10 * 1000 * 1000, 'x');
    text[9999999] = 'y';
    EXPECT_EQ(all(text + "\nnext\n"), text + "|next|");
}

TEST_F(Lines, NulEndsItsLineAndTheNextIsRead) {
    EXPECT_EQ(all(std::string("ab\0cd\nef\n", 9)), "ab|ef|");
    EXPECT_EQ(all(std::string("\0\n\0x\nef\n", 8)), "||ef|");
}

TEST_F(Lines, DirectoryHasNoLines) {
    i_stream file(m_dir / "", io_stream::Read | io_stream::AsIs, false);
    rkString line = "stale";
    EXPECT_FALSE(file.getline(line));
    EXPECT_EQ(str(line), "");
}

TEST_F(Lines, WithoutAFileThereIsNone) {
    i_stream none(nullptr);
    rkString line = "stale";
    EXPECT_FALSE(none.getline(line));
    EXPECT_EQ(str(line), "");
}

TEST_F(Lines, BufferTakesAtMostItsSizeLessOne) {
    i_stream file(m_dir.write("f", "abcdef\n"), io_stream::Read | io_stream::AsIs, false);
    char buffer[6] = {'#', '#', '#', '#', '#', '#'};
    bool atEnd = true;
    EXPECT_FALSE(getlinebuf(file.m_file, buffer, 5, atEnd));
    EXPECT_STREQ(buffer, "abcd");
    EXPECT_EQ(buffer[5], '#');
    EXPECT_FALSE(atEnd);
    EXPECT_TRUE(getlinebuf(file.m_file, buffer, 5, atEnd));
    EXPECT_STREQ(buffer, "ef");
    EXPECT_FALSE(atEnd);
    EXPECT_TRUE(getlinebuf(file.m_file, buffer, 5, atEnd));
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(atEnd);
}

TEST_F(Lines, BufferWithoutRoomSeesTheEnd) {
    i_stream file(m_dir.write("f", "abc\n"), io_stream::Read | io_stream::AsIs, false);
    char buffer[2] = {'#', '#'};
    bool atEnd = false;
    EXPECT_TRUE(getlinebuf(file.m_file, buffer, 1, atEnd));
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(buffer[0], '\0');
    EXPECT_EQ(buffer[1], '#');
    EXPECT_TRUE(getlinebuf(nullptr, buffer, 2, atEnd));
    EXPECT_TRUE(atEnd);
}

// ---- levels -------------------------------------------------------------------

class Log : public testing::Test {
protected:
    Log() { EXPECT_TRUE(m_log.addStream(m_dir / "log", false)); }
    std::string written() {
        m_log.flush();
        return fileText(m_dir / "log");
    }

    TempDir m_dir;
    rkOStream m_log;
};

TEST_F(Log, StartsWithErrorsSeenAndResultsWritten) {
    rkOStream fresh;
    EXPECT_TRUE(fresh.empty());
    EXPECT_EQ(fresh.outLevel(), 1);
    EXPECT_EQ(fresh.msgLevel(), 4);
    EXPECT_TRUE(fresh.m_msgStack.empty());
}

TEST_F(Log, TheGlobalLogStartsWithoutAnyStream) {
    EXPECT_TRUE(g_ostrm.empty());
}

TEST_F(Log, LevelsAreBits) {
    EXPECT_EQ(MsgError | MsgWarning | MsgResult | MsgProcess | MsgTrace | MsgMemory | MsgData, 127);
    EXPECT_EQ(EndMessage, -10);
    EXPECT_EQ(EndMessageFlush, -11);
}

TEST_F(Log, MessageOfALevelThatIsNotWantedIsDropped) {
    m_log.setOutLevel(7);
    m_log << MsgProcess << "dropped" << EndMessage << MsgResult << "seen" << EndMessage;
    EXPECT_EQ(written(), "seen");
}

TEST_F(Log, BeginMessageRefusesALevelAboveTheOutputLevel) {
    m_log.setOutLevel(7);
    EXPECT_FALSE(m_log.beginMessage(MsgProcess));
    EXPECT_EQ(m_log.msgLevel(), MsgResult);
    EXPECT_TRUE(m_log.m_msgStack.empty());
}

TEST_F(Log, BeginMessageIsPairedWithEndMessage) {
    m_log.setOutLevel(7);
    m_log.setMsgLevel(MsgWarning);
    EXPECT_TRUE(m_log.beginMessage(MsgResult));
    EXPECT_EQ(m_log.msgLevel(), MsgResult);
    m_log << "seen";
    m_log.endMessage();
    EXPECT_EQ(m_log.msgLevel(), MsgWarning);
    EXPECT_EQ(m_log.m_msgStack.size(), 1);
    EXPECT_EQ(written(), "seen");
}

TEST_F(Log, BeginMessageOfAWarningIsRefusedWhenOnlyErrorsAreSeen) {
    m_log.setOutLevel(1);
    EXPECT_FALSE(m_log.beginMessage(MsgWarning));
}

TEST_F(Log, BeginMessageComparesNumbersWhereTheTextIsFilteredByBits) {
    m_log.setOutLevel(64);
    EXPECT_TRUE(m_log.beginMessage(MsgError));
    m_log << "dropped";
    m_log.endMessage();
    EXPECT_EQ(written(), "");
}

TEST_F(Log, RestoreWithoutALevelBeforeGivesError) {
    EXPECT_EQ(m_log.msgLevel(), MsgResult);
    m_log.restoreMsgLevel();
    EXPECT_EQ(m_log.msgLevel(), MsgError);
}

TEST_F(Log, MessagesNest) {
    m_log.setOutLevel(5);
    m_log << MsgError << "a" << MsgWarning << "b" << MsgResult << "c" << EndMessage << "d" << EndMessage
          << "e" << EndMessage;
    EXPECT_EQ(written(), "ace");
    EXPECT_EQ(m_log.msgLevel(), MsgResult);
}

TEST_F(Log, EndMessageFlushBringsTheTextToTheFile) {
    m_log << MsgError << "now" << EndMessageFlush;
    EXPECT_EQ(fileText(m_dir / "log"), "now");
    EXPECT_EQ(m_log.msgLevel(), MsgResult);
    m_log.setMsgLevel(MsgError);
    m_log << "!";
    m_log.endMessageFlush();
    EXPECT_EQ(fileText(m_dir / "log"), "now!");
}

TEST_F(Log, EveryTypeThatAStringTakesCanBePrinted) {
    m_log.setOutLevel(4);
    m_log << rkString("s") << "t" << 'c' << true << -3 << 12345678901LL << 0.12345
          << static_cast<void *>(nullptr);
    EXPECT_EQ(written(), "stcyes-3123456789010.123NULL");
}

TEST_F(Log, NumbersOfALevelThatIsNotWantedAreDropped) {
    m_log.setOutLevel(1);
    m_log << 'c' << true << -3 << 12345678901LL << 0.12345;
    EXPECT_EQ(written(), "");
}

TEST_F(Log, IsOnLooksAtBits) {
    m_log.setOutLevel(23);
    EXPECT_TRUE(m_log.isOn(MsgTrace));
    EXPECT_FALSE(m_log.isOn(MsgProcess));
}

// ---- lists of streams ---------------------------------------------------------

TEST_F(Log, EveryStreamReceivesTheSameText) {
    EXPECT_TRUE(m_log.addStream(m_dir / "copy", false));
    m_log << MsgError << "both\n" << EndMessage;
    EXPECT_EQ(written(), "both\n");
    EXPECT_EQ(fileText(m_dir / "copy"), "both\n");
}

TEST_F(Log, AddStreamAppendsToAFile) {
    m_dir.write("old", "old ");
    EXPECT_TRUE(m_log.addStream(m_dir / "old", true));
    m_log << MsgError << "new" << EndMessageFlush;
    EXPECT_EQ(fileText(m_dir / "old"), "old new");
}

TEST_F(Log, AddStreamThatCannotBeOpenedIsFalseAndNotInTheList) {
    EXPECT_FALSE(m_log.addStream("/nowhere/x", false));
    EXPECT_EQ(m_log.size(), 1);
}

TEST_F(Log, CloseWritesWhatIsBuffered) {
    m_log << MsgError << "text" << EndMessage;
    m_log.close();
    EXPECT_EQ(fileText(m_dir / "log"), "text");
}

TEST_F(Log, SecondCloseIsHarmless) {
    m_log.close();
    m_log.close();
    m_log.flush();
    EXPECT_EQ(fileText(m_dir / "log"), "");
}

TEST_F(Log, TextBehindCloseGoesNowhere) {
    m_log << MsgError << "before";
    m_log.close();
    testing::internal::CaptureStdout();
    m_log << "behind";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(fileText(m_dir / "log"), "before");
}

TEST_F(Log, CloseClearsTheHandlesSoThatNoFileIsClosedTwice) {
    o_stream *first = createOStream(m_dir / "shared", false);
    o_stream second(first->m_file);
    m_log.push_back(first);
    m_log.push_back(&second);
    m_log.push_back(first);
    m_log.close();
    EXPECT_EQ(first->m_file, nullptr);
    EXPECT_EQ(second.m_file, nullptr);
    delete first;
}

// Closing the console cannot be undone, so a child does it, with its console in a file.
TEST_F(Log, ConsoleInTheListIsClosedOnceAndNotWrittenAnyMore) {
    rkString console = m_dir / "console";
    EXPECT_EXIT(
        {
            if (!freopen(console.c_str(), "w", stdout)) exit(1);
            g_ostrm.setOutLevel(MsgError);
            g_ostrm.push_back(&c_out);
            g_ostrm << MsgError << "last words" << EndMessage;
            g_ostrm.close();
            g_ostrm.close();
            o_stream none(nullptr);
            none << "lost";
            c_out << "lost";
            g_ostrm.push_back(&c_out);
            g_ostrm << MsgError << "lost" << EndMessageFlush;
            exit(c_out.m_file == nullptr ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
    EXPECT_EQ(fileText(console), "last words");
}

TEST_F(Log, ConsoleClosedThroughAnotherStreamIsNotWrittenAnyMore) {
    EXPECT_EXIT(
        {
            o_stream console(stdout);
            m_log.push_back(&console);
            m_log.close();
            exit(c_out.m_file == nullptr ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

static struct AtStaticExit {
    ~AtStaticExit() { g_ostrm << MsgError << "from a destructor\n" << EndMessageFlush; }
} s_printsWhenItGoes;

TEST_F(Log, OtherStaticObjectsMayPrintWhenTheyGo) {
    EXPECT_EXIT(
        {
            g_ostrm.setOutLevel(MsgError);
            g_ostrm.push_back(new o_stream(stderr));
            exit(0);
        },
        testing::ExitedWithCode(0), "from a destructor");
}

// ---- letters of the levels ----------------------------------------------------

TEST(OutputLevelLetters, UnknownAndLowerCaseLettersAddNothing) {
    EXPECT_EQ(getLevel("x"), 0);
    EXPECT_EQ(getLevel("e"), 0);
}

TEST(OutputLevelLetters, LettersAddUp) {
    EXPECT_EQ(getLevel("EM"), 39);
    EXPECT_EQ(getLevel("WT"), 23);
}

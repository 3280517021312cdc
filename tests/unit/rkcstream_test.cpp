// rkcstream_test.cpp - comma-separated tables.

#include "rkcstream.h"

#include <gtest/gtest.h>

#include "tempdir.h"

class Table : public testing::Test {
protected:
    Table() { EXPECT_TRUE(m_table.addStream(m_dir / "table.csv", false)); }

    // Every line is flushed, so the file is read while it is open.
    std::string written() { return fileText(m_dir / "table.csv"); }
    void line(char const *a, char const *b, char const *c) {
        m_table << a << b << c;
        m_table.lineOut(3);
    }

    TempDir m_dir;
    rkCStream m_table;
};

// ---- lines --------------------------------------------------------------------

TEST_F(Table, MissingCellsAreDashes) {
    m_table << "a"
            << "b"
            << "c";
    m_table.lineOut(5);
    EXPECT_EQ(written(), "a,b,c,-,-\n");
}

TEST_F(Table, CellsBehindTheColumnsAreNotWrittenAndGone) {
    m_table << "a"
            << "b"
            << "c";
    m_table.lineOut(2);
    m_table.lineOut(3);
    EXPECT_EQ(written(), "a,b\n-,-,-\n");
}

TEST_F(Table, EmptyCellIsADash) {
    m_table << "a"
            << ""
            << "c"
            << "\n";
    EXPECT_EQ(written(), "a,-,c\n");
}

TEST_F(Table, LineEndFirstOnALineWritesAnEmptyLineAndCountsIt) {
    m_table << "\n";
    EXPECT_EQ(written(), "\n");
    EXPECT_EQ(m_table.m_lineCount, 1);
}

TEST_F(Table, NothingIsQuoted) {
    m_table << "a,b"
            << "say \"x\""
            << "\n";
    EXPECT_EQ(written(), "a,b,say \"x\"\n");
}

TEST_F(Table, TableOutNeitherClearsNorCounts) {
    m_table << "a"
            << "b";
    m_table.tableOut(0);
    m_table.tableOut(3);
    EXPECT_EQ(written(), "a,b\na,b,-\n");
    EXPECT_EQ(m_table.m_lineCount, 0);
    EXPECT_EQ(m_table.m_colmCount, 2);
}

TEST_F(Table, TableFlushForgetsTheLine) {
    m_table << "a"
            << "b";
    m_table.tableFlush();
    rkString cell = "stale";
    EXPECT_TRUE(m_table.getColm(1, cell));
    EXPECT_EQ(str(cell), "");
    EXPECT_EQ(m_table.m_colmCount, 0);
}

TEST_F(Table, ThirtyThirdCellIsDropped) {
    std::string expected;
    for (int i = 0; i < 33; ++i) {
        rkString cell;
        cell << i;
        m_table << cell;
        if (i < 32) expected += std::to_string(i) + (i < 31 ? "," : "\n");
    }
    EXPECT_EQ(m_table.m_colmCount, 32);
    m_table << "\n";
    EXPECT_EQ(written(), expected);
}

TEST_F(Table, LineHasAsManyCellsAsAskedForEvenBeyondTheLimit) {
    m_table.m_colmCount = 40;
    m_table.lineOut(34);
    std::string dashes;
    for (int i = 0; i < 34; ++i) dashes += i < 33 ? "-," : "-\n";
    EXPECT_EQ(written(), dashes);
}

TEST_F(Table, NegativeNumberOfColumnsIsAnEmptyLine) {
    m_table << "a";
    m_table.lineOut(-3);
    EXPECT_EQ(written(), "\n");
}

TEST_F(Table, WithoutAFileEverythingIsAcceptedAndCounted) {
    rkCStream none;
    testing::internal::CaptureStdout();
    none << "a"
         << "\n"
         << "b"
         << "\n";
    none.flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(none.m_lineCount, 2);
}

// ---- cells --------------------------------------------------------------------

TEST_F(Table, SetColmLeavesTheNumberOfCells) {
    m_table.setColm(1, "b");
    EXPECT_EQ(m_table.m_colmCount, 0);
    m_table.tableOut(2);
    m_table.m_colmCount = 2;
    m_table.tableOut(2);
    EXPECT_EQ(written(), "-,-\n-,b\n");
}

TEST_F(Table, CellsOutsideOfTheTableAreIgnored) {
    m_table.setColm(40, "x");
    m_table.setColm(32, "x");
    m_table.setColm(-1, "x");
    rkString cell = "kept";
    EXPECT_FALSE(m_table.getColm(40, cell));
    EXPECT_FALSE(m_table.getColm(32, cell));
    EXPECT_FALSE(m_table.getColm(-1, cell));
    EXPECT_EQ(str(cell), "kept");
    for (int i = 0; i < rkCStream::maxColms; ++i) EXPECT_EQ(m_table.m_colm[i].length(), 0);
}

TEST_F(Table, LastCellIsInTheTable) {
    m_table.setColm(31, "x");
    rkString cell;
    EXPECT_TRUE(m_table.getColm(31, cell));
    EXPECT_EQ(str(cell), "x");
}

// ---- files --------------------------------------------------------------------

TEST_F(Table, EveryFileReceivesTheLine) {
    EXPECT_TRUE(m_table.addStream(m_dir / "copy.csv", false));
    m_table << "a"
            << "\n";
    EXPECT_EQ(written(), "a\n");
    EXPECT_EQ(fileText(m_dir / "copy.csv"), "a\n");
}

TEST_F(Table, FileIsAddedTo) {
    rkCStream table;
    m_dir.write("old.csv", "old\n");
    EXPECT_TRUE(table.addStream(m_dir / "old.csv", true));
    table << "new"
          << "\n";
    EXPECT_EQ(fileText(m_dir / "old.csv"), "old\nnew\n");
}

TEST_F(Table, FileThatCannotBeOpenedIsReported) {
    EXPECT_FALSE(m_table.addStream("/nowhere/x.csv", false));
    EXPECT_EQ(m_table.size(), 1);
}

TEST_F(Table, RowsBehindCloseGoNowhere) {
    m_table << "a"
            << "\n";
    m_table.close();
    m_table.close();
    testing::internal::CaptureStdout();
    m_table << "b"
            << "\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(written(), "a\n");
}

TEST_F(Table, TheGlobalTablesStartWithoutFiles) {
    for (rkCStream *table : {&g_cstrm, &g_qstrm, &g_ustrm, &g_mstrm}) {
        EXPECT_TRUE(table->empty());
        EXPECT_EQ(table->m_lineCount, 0);
        EXPECT_EQ(table->m_identColms, 0);
    }
}

// ---- lines held back ----------------------------------------------------------

TEST_F(Table, PostponedLinesComeOutInOrderAndCount) {
    m_table << "a"
            << "b";
    m_table.linePostpone();
    m_table << "c";
    m_table.linePostpone();
    EXPECT_EQ(written(), "");
    EXPECT_EQ(m_table.m_lineCount, 0);
    EXPECT_EQ(m_table.m_colmCount, 0);
    m_table.linePostponeOut(3);
    EXPECT_EQ(written(), "a,b,-\nc,-,-\n");
    EXPECT_EQ(m_table.m_lineCount, 2);
    m_table.linePostponeOut(3);
    EXPECT_EQ(m_table.m_lineCount, 2);
}

TEST_F(Table, PostponedLinesAreWatchedWhenTheyComeOut) {
    m_table.identicalLinesStart(1);
    m_table << "a";
    m_table.linePostpone();
    EXPECT_EQ(getStoreCount(m_table.m_lineStore), 0);
    m_table.linePostponeOut(1);
    EXPECT_EQ(getStoreCount(m_table.m_lineStore), 1);
}

TEST(TableStore, GivesBackItsLinesInOrder) {
    rkStringList store[rkCStream::maxColms];
    rkString line[rkCStream::maxColms];
    line[0] = "a";
    line[31] = "z";
    addStore(store, line);
    line[0] = "b";
    addStore(store, line);
    EXPECT_EQ(getStoreCount(store), 2);

    rkList<rkString>::iterator iterators[rkCStream::maxColms];
    rkString out[rkCStream::maxColms];
    resetStoreIterator(store, iterators);
    EXPECT_TRUE(getStoreNext(store, out, iterators));
    EXPECT_EQ(str(out[0]) + str(out[31]), "az");
    EXPECT_TRUE(getStoreNext(store, out, iterators));
    EXPECT_EQ(str(out[0]) + str(out[31]), "bz");
    EXPECT_FALSE(getStoreNext(store, out, iterators));
    EXPECT_EQ(str(out[0]) + str(out[31]), "bz");
}

TEST(TableStore, StopsAtTheFirstListThatHasEnded) {
    rkStringList store[rkCStream::maxColms];
    rkString line[rkCStream::maxColms], out[rkCStream::maxColms];
    for (rkString &cell : line) cell = "new";
    addStore(store, line);
    store[1].clear();
    out[1] = out[2] = "old";
    rkList<rkString>::iterator iterators[rkCStream::maxColms];
    resetStoreIterator(store, iterators);
    EXPECT_TRUE(getStoreNext(store, out, iterators));
    EXPECT_EQ(str(out[0]), "new");
    EXPECT_EQ(str(out[1]), "old");
    EXPECT_EQ(str(out[2]), "old");
}

TEST(TableStore, ClearEmptiesAllColumns) {
    rkStringList store[rkCStream::maxColms];
    rkString line[rkCStream::maxColms];
    addStore(store, line);
    clearStore(store);
    for (rkStringList &column : store) EXPECT_TRUE(column.empty());
}

// ---- identical lines ----------------------------------------------------------

// The warnings go to a log of the test's own.
class IdenticalLines : public Table {
protected:
    IdenticalLines() {
        g_ostrm.setOutLevel(MsgWarning);
        g_ostrm.addStream(m_dir / "log", false);
    }
    ~IdenticalLines() override { g_ostrm.close(); }
    std::string warning() { return fileText(m_dir / "log"); }
    static std::string about(int a, int b) {
        return " Performance table warning:\n Lines " + std::to_string(a) + " & " + std::to_string(b) +
               " have identical parameters\n";
    }
};

TEST_F(IdenticalLines, LinesThatDifferBehindTheParametersAreIdentical) {
    m_table << "title"
            << "\n";
    m_table.identicalLinesStart(2);
    line("8", "16", "1.5");
    line("8", "32", "1.5");
    line("8", "16", "2.5");
    EXPECT_TRUE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), about(2, 4));
    EXPECT_EQ(m_table.m_identColms, 0);
    EXPECT_EQ(getStoreCount(m_table.m_lineStore), 0);
    EXPECT_EQ(g_ostrm.msgLevel(), MsgResult);
}

TEST_F(IdenticalLines, LinesThatDifferInAParameterAreNot) {
    m_table.identicalLinesStart(2);
    line("8", "16", "1.5");
    line("8", "32", "1.5");
    line("81", "6", "1.5");
    EXPECT_FALSE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), "");
    EXPECT_EQ(m_table.m_identColms, 0);
    EXPECT_EQ(getStoreCount(m_table.m_lineStore), 0);
}

TEST_F(IdenticalLines, OnlyTheComparedCellsAreKept) {
    m_table.identicalLinesStart(2);
    line("8", "16", "1.5");
    line("8", "32", "1.5");
    EXPECT_EQ(m_table.m_lineStore[0].size(), 2);
    EXPECT_EQ(m_table.m_lineStore[1].size(), 2);
    EXPECT_TRUE(m_table.m_lineStore[2].empty());
}

TEST_F(IdenticalLines, OneLineHasNoPartner) {
    m_table.identicalLinesStart(2);
    line("8", "16", "1.5");
    EXPECT_FALSE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), "");
}

TEST_F(IdenticalLines, FirstPairIsThatOfTheEarliestFirstLine) {
    m_table.identicalLinesStart(1);
    for (char const *name : {"z", "b", "b", "c", "c", "z", "z"}) line(name, "", "");
    EXPECT_TRUE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), about(1, 6)); // 1 & 6 stands before 2 & 3 though 3 is seen earlier
}

TEST_F(IdenticalLines, PairIsFoundWhereverItSorts) {
    m_table.identicalLinesStart(1);
    for (char const *name : {"m", "z", "a", "z", "a"}) line(name, "", "");
    EXPECT_TRUE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), about(2, 4));
}

TEST_F(IdenticalLines, FirstTwoOfManyAreNamed) {
    m_table.identicalLinesStart(1);
    line("different", "", "");
    for (int i = 0; i < 500; ++i) line("same", "", "");
    EXPECT_TRUE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), about(2, 3));
}

TEST_F(IdenticalLines, TenThousandLinesAreCompared) {
    m_table.close();
    m_table.identicalLinesStart(32);
    rkString number;
    for (int i = 0; i < 10000; ++i) {
        number = "";
        m_table << "same" << (number << i) << "\n";
    }
    m_table << "same"
            << "7777"
            << "\n";
    EXPECT_TRUE(m_table.identicalLinesStop());
    EXPECT_EQ(warning(), about(7778, 10001));
}

TEST_F(IdenticalLines, StopWithoutAWatchIsFalse) {
    line("a", "b", "c");
    line("a", "b", "c");
    EXPECT_FALSE(m_table.identicalLinesStop());
    EXPECT_EQ(getStoreCount(m_table.m_lineStore), 0);
}

TEST_F(IdenticalLines, StopWithoutLinesLeavesTheWatchOpen) {
    m_table.identicalLinesStart(2);
    EXPECT_FALSE(m_table.identicalLinesStop());
    EXPECT_EQ(m_table.m_identColms, 2);
}

TEST_F(IdenticalLines, StartForgetsEarlierLines) {
    m_table.identicalLinesStart(1);
    line("a", "b", "c");
    m_table.identicalLinesStart(1);
    line("a", "b", "c");
    EXPECT_FALSE(m_table.identicalLinesStop());
}

TEST_F(IdenticalLines, StartComparesAtMostTheColumnsOfTheTable) {
    m_table.identicalLinesStart(40);
    EXPECT_EQ(m_table.m_identColms, 32);
    m_table.identicalLinesStart(-1);
    EXPECT_EQ(m_table.m_identColms, 0);
}

TEST_F(IdenticalLines, LastColumnDecidesToo) {
    m_table.identicalLinesStart(40);
    m_table.setColm(31, "x");
    m_table.lineOut(1);
    m_table.setColm(31, "y");
    m_table.lineOut(1);
    EXPECT_FALSE(m_table.identicalLinesStop());
}

TEST_F(IdenticalLines, WithoutColumnsAllLinesAgree) {
    rkString a[rkCStream::maxColms], b[rkCStream::maxColms];
    a[0] = "a";
    b[0] = "b";
    b[1] = a[1] = "same";
    EXPECT_TRUE(rkCStream::identicalColms(a, b, 0));
    EXPECT_FALSE(rkCStream::identicalColms(a, b, 1));
    b[0] = "a";
    EXPECT_TRUE(rkCStream::identicalColms(a, b, 2));
}

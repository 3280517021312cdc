// rkpath_test.cpp - default directories and names of files.

#include <gtest/gtest.h>

#include "rksession.h"
#include "tempdir.h"

class Paths : public testing::Test {
protected:
    Paths() {
        rkSession::m_exePath = "/opt/rk/rakova.bin";
        rkSession::setInDir("");
        rkSession::setOutDir("");
        rkSession::setDefName("");
    }
};

TEST_F(Paths, AbsoluteBySeparatorOrColon) {
    EXPECT_TRUE(isAbsolutePath("/a"));
    EXPECT_TRUE(isAbsolutePath("\\a"));
    EXPECT_TRUE(isAbsolutePath("c:a"));
    EXPECT_TRUE(isAbsolutePath("/"));
    EXPECT_FALSE(isAbsolutePath(""));
    EXPECT_FALSE(isAbsolutePath("a"));
    EXPECT_FALSE(isAbsolutePath("a/b"));
    EXPECT_FALSE(isAbsolutePath("./a"));
    EXPECT_FALSE(isAbsolutePath("ab:c"));
}

TEST_F(Paths, DirectoryIsThatOfTheProgramByDefault) {
    EXPECT_EQ(str(genDirName("")), "/opt/rk/");
}

TEST_F(Paths, RelativeDirectoryCountsFromTheProgram) {
    EXPECT_EQ(str(genDirName("out")), "/opt/rk/out/");
    EXPECT_EQ(str(genDirName("out/")), "/opt/rk/out/");
    EXPECT_EQ(str(genDirName("out\\")), "/opt/rk/out\\");
    rkSession::setOutDir("out");
    EXPECT_EQ(str(rkSession::m_outDir), "/opt/rk/out/");
}

TEST_F(Paths, AbsoluteDirectoryStays) {
    EXPECT_EQ(str(genDirName("/tmp")), "/tmp/");
    EXPECT_EQ(str(genDirName("c:\\x\\")), "c:\\x\\");
    EXPECT_EQ(str(genDirName("/")), "/");
}

TEST_F(Paths, ProgramWithoutADirectoryGivesNone) {
    rkSession::m_exePath = "rakova";
    EXPECT_EQ(str(genDirName("")), "");
    EXPECT_EQ(str(genDirName("out")), "out/");
    EXPECT_EQ(str(getDirPath("a.dat", "")), "a.dat");
}

TEST_F(Paths, DirectoriesAreKeptApart) {
    rkSession::setInDir("/in");
    rkSession::setOutDir("/out");
    EXPECT_EQ(str(rkSession::genInPath("a.x", "")), "/in/a.x");
    EXPECT_EQ(str(rkSession::genOutPath("a.x", "")), "/out/a.x");
    EXPECT_EQ(str(rkSession::getInPath("a.x")), "/in/a.x");
    EXPECT_EQ(str(rkSession::getOutPath("a.x")), "/out/a.x");
}

TEST_F(Paths, DefaultNameIsTheTitleOfTheProgram) {
    EXPECT_EQ(str(rkSession::m_defName), "rakova");
    rkSession::setDefName("mine");
    EXPECT_EQ(str(rkSession::m_defName), "mine");
}

TEST_F(Paths, EmptyNameIsTheDefaultNameWithItsExtension) {
    EXPECT_EQ(str(genPathName("/d/", "", ".csv")), "/d/rakova.csv");
    EXPECT_EQ(str(genPathName("/d/", "", "_sum.csv")), "/d/rakova_sum.csv");
    rkSession::setDefName("v1.2");
    EXPECT_EQ(str(genPathName("/d/", "", ".csv")), "/d/v1.2.csv");
}

TEST_F(Paths, NameWithoutADotGetsTheExtension) {
    EXPECT_EQ(str(genPathName("/d/", "log", ".txt")), "/d/log.txt");
    EXPECT_EQ(str(genPathName("/d/", "log.old", ".txt")), "/d/log.old");
}

TEST_F(Paths, DotAnywhereInAPathKeepsTheExtensionAway) {
    rkSession::setOutDir("/out");
    EXPECT_EQ(str(rkSession::genOutPath("./out", extOut)), "/out/./out");
    EXPECT_EQ(str(rkSession::genOutPath("v1.2/out", extOut)), "/out/v1.2/out");
}

TEST_F(Paths, AbsoluteNameIsReturnedAsItIs) {
    EXPECT_EQ(str(genPathName("/d/", "/x/log", ".txt")), "/x/log");
    EXPECT_EQ(str(getDirPath("/x/log", "/d/")), "/x/log");
}

TEST_F(Paths, DataAreOpenedInTheDirectory) {
    EXPECT_EQ(str(getDirPath("a.dat", "/d/")), "/d/a.dat");
    EXPECT_EQ(str(getDirPath("a.dat", "")), "/opt/rk/a.dat");
}

TEST_F(Paths, DirectoryIsNotPutInFrontTwice) {
    EXPECT_EQ(str(getDirPath("sub/a.dat", "sub/")), "sub/a.dat");
    EXPECT_EQ(str(getDirPath("x/sub/a.dat", "sub/")), "sub/x/sub/a.dat");
    EXPECT_EQ(str(getDirPath("su", "sub/")), "sub/su");
}

TEST_F(Paths, SuffixesOfFiles) {
    EXPECT_EQ(str(extIni), ".ini");
    EXPECT_EQ(str(extCsv), ".csv");
    EXPECT_EQ(str(extOut), ".txt");
    EXPECT_EQ(str(extSgl), ".end");
    EXPECT_EQ(str(extName), "_name.csv");
    EXPECT_EQ(str(extSum), "_sum.csv");
    EXPECT_EQ(str(extMem), "_mem.csv");
}

// cachecopy_test.cpp - the example of cache-sized data, with a cache of 65536 bytes.

#include "../cli/program.h"

namespace {

// In the cache: 6553 to 58982 bytes; out of it: 68812 bytes and more.
class CacheCopy : public Program {
protected:
    Outcome copies(std::string const &args) const {
        Outcome outcome = run(quick + "-r'" + path("out.csv") + "' " + args);
        EXPECT_EQ(0, outcome.status) << outcome.text();
        return outcome;
    }
    // Parameter and comment of each row of a function, whose first cells name it.
    Lines rows(std::string const &function) const {
        Lines found;
        for (std::string const &line : file("out.csv")) {
            Lines cells = cellsIn(line);
            bool mine = line.rfind(function + ",", 0) == 0 && cells.size() > 9;
            if (mine) found.push_back(cells[3] + " " + cells[9]);
        }
        return found;
    }
};

} // namespace

TEST_F(CacheCopy, VectorIsMeasuredInBothStates) {
    Outcome outcome = copies("-C -f=copy_16s");
    EXPECT_EQ(rows("copy,16s"), (Lines{"2048 inCache nLps=3", "32768 outofCache nLps=3"})) << outcome.text();
    EXPECT_EQ(1u, linesWith(outcome.lines, "inCache:len=2048 ").size());
    EXPECT_EQ(1u, linesWith(outcome.lines, "outofCache:len=32768 ").size());
}

TEST_F(CacheCopy, TriesOfAVectorTellTheSumOfAllData) {
    Outcome outcome = copies("-C -f=copy_16s");
    EXPECT_EQ(linesWith(outcome.lines, " try: "),
              (Lines{"      inCache try: cacheParm=1024 totalSize=4096 < 6553",
                     "      inCache try: cacheParm=1024 totalSize=4096 < 6553",
                     "      outofCache try: cacheParm=1024 totalSize=4096 < 68812",
                     "      outofCache try: cacheParm=16384 totalSize=65536 < 68812"}));
}

TEST_F(CacheCopy, ImageIsMeasuredInBothStates) {
    Outcome outcome = copies("-C -f=copyImage_8u_C1R");
    EXPECT_EQ(rows("copyImage,8u,C1R"), (Lines{"128x64 inCache nLps=3", "512x256 outofCache nLps=3"}))
        << outcome.text();
}

TEST_F(CacheCopy, TriesOfAnImageTellItsOwnSize) {
    Outcome outcome = copies("-C -f=copyImage_8u_C1R");
    EXPECT_EQ(linesWith(outcome.lines, " try: "),
              (Lines{"      inCache try: cacheParm=64x64 objectSize=4096 < 6553",
                     "      inCache try: cacheParm=64x64 objectSize=4096 < 6553",
                     "      outofCache try: cacheParm=64x64 objectSize=4096 < 68812",
                     "      outofCache try: cacheParm=256x256 objectSize=65536 < 68812"}));
}

TEST_F(CacheCopy, DataThatAreTooLargeShrinkIntoTheCache) {
    Outcome outcome = copies("-C -f=copy_16s -dlen=1048576");
    EXPECT_EQ(linesWith(outcome.lines, " try: "),
              Lines{"      inCache try: cacheParm=1048576 totalSize=4194304 > 58982"});
    EXPECT_EQ(rows("copy,16s"), (Lines{"8192 inCache nLps=3", "1048576 outofCache nLps=3"}))
        << outcome.text();
}

TEST_F(CacheCopy, WithoutTheKeyThereAreNoStates) {
    Outcome outcome = copies("-f=copy_16s -f=copyImage_8u_C1R");
    EXPECT_EQ(rows("copy,16s"), Lines{"1024 nLps=3"}) << outcome.text();
    EXPECT_EQ(rows("copyImage,8u,C1R"), Lines{"64x64 nLps=3"});
    EXPECT_TRUE(linesWith(outcome.lines, " try: ").empty());
}

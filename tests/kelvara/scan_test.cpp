// scan_test.cpp - the scans of coefficients, against walks that are worked out step by step.

#include "blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

enum { Zigzag = 0, Vertical = 1, Horizontal = 2 };
const int scans[] = {Zigzag, Vertical, Horizontal};
const int notScans[] = {-1, 3, 4, 1 << 30};

// Up and down the diagonals, the first one upwards.
std::array<int, 64> zigzagWalk() {
    std::array<int, 64> order{};
    int i = 0;
    for (int diagonal = 0; diagonal < 15; ++diagonal) {
        for (int k = 0; k <= diagonal; ++k) {
            const int row = diagonal % 2 ? k : diagonal - k, col = diagonal - row;
            if (row < 8 && col < 8) order[i++] = 8 * row + col;
        }
    }
    return order;
}

// The numbers that ISO/IEC 13818-2 Figure 7-3 (alternate scan) prints into the block: place by position.
const int verticalPlaces[8][8] = {
    {0, 4, 6, 20, 22, 36, 38, 52},    {1, 5, 7, 21, 23, 37, 39, 53},    {2, 8, 19, 24, 34, 40, 50, 54},
    {3, 9, 18, 25, 35, 41, 51, 55},   {10, 17, 26, 30, 42, 46, 56, 60}, {11, 16, 27, 31, 43, 47, 57, 61},
    {12, 15, 28, 32, 44, 48, 58, 62}, {13, 14, 29, 33, 45, 49, 59, 63},
};

// The same for the alternate-horizontal scan (ISO/IEC 14496-2 7.4.2).
const int horizontalPlaces[8][8] = {
    {0, 1, 2, 3, 10, 11, 12, 13},     {4, 5, 8, 9, 17, 16, 15, 14},     {6, 7, 19, 18, 26, 27, 28, 29},
    {20, 21, 24, 25, 30, 31, 32, 33}, {22, 23, 34, 35, 42, 43, 44, 45}, {36, 37, 40, 41, 46, 47, 48, 49},
    {38, 39, 50, 51, 56, 57, 58, 59}, {52, 53, 54, 55, 60, 61, 62, 63},
};

std::array<int, 64> walkOf(const int (&places)[8][8]) {
    std::array<int, 64> order{};
    for (int i = 0; i < 64; ++i) order[places[i / 8][i % 8]] = i;
    return order;
}

std::array<int, 64> walk(int scan) {
    if (scan == Zigzag) return zigzagWalk();
    return walkOf(scan == Vertical ? verticalPlaces : horizontalPlaces);
}

// Every second one is 0.
Values<Kel16s> sparseBlock() {
    std::mt19937 generator(5);
    Values<Kel16s> values = randomBlock<Kel16s>(generator, 1, 300);
    for (int i = 0; i < 64; i += 2) values[i] = 0;
    return values;
}

} // namespace

TEST(KelvaraScan, ForwardReadsTheBlockInTheOrderOfTheScan) {
    Values<Kel16s> raster;
    std::iota(raster.begin(), raster.end(), 100);
    for (int scan : scans) {
        for (int offset : {0, 1, 2, 7}) {
            const SourceBlock<Kel16s> src(raster, offset);
            Destination<Kel16s> dst(64, offset);
            ASSERT_EQ(kelStsNoErr, keliScanFwd_16s_C1(src.data(), dst.data(), 64, scan));
            EXPECT_TRUE(dst.surroundingsIntact());
            for (int i = 0; i < 64; ++i) EXPECT_EQ(100 + walk(scan)[i], dst[i]) << scan << ", " << i;
        }
    }
}

TEST(KelvaraScan, InverseWritesTheBlockInTheOrderOfTheScan) {
    Values<Kel16s> scanned;
    std::iota(scanned.begin(), scanned.end(), 100);
    for (int scan : scans) {
        for (int offset : {0, 1, 2, 7}) {
            const SourceBlock<Kel16s> src(scanned, offset);
            Destination<Kel16s> dst(64, offset);
            ASSERT_EQ(kelStsNoErr, keliScanInv_16s_C1(src.data(), dst.data(), 63, scan));
            EXPECT_TRUE(dst.surroundingsIntact());
            for (int i = 0; i < 64; ++i) EXPECT_EQ(100 + i, dst[walk(scan)[i]]) << scan << ", " << i;
        }
    }
}

TEST(KelvaraScan, InverseUndoesForward) {
    std::mt19937 generator(4);
    for (int scan : scans) {
        const Values<Kel16s> values = randomBlock<Kel16s>(generator, -32768, 32767);
        const SourceBlock<Kel16s> src(values);
        Destination<Kel16s> scanned(64), back(64);
        ASSERT_EQ(kelStsNoErr, keliScanFwd_16s_C1(src.data(), scanned.data(), 64, scan));
        ASSERT_EQ(kelStsNoErr, keliScanInv_16s_C1(scanned.data(), back.data(), 63, scan));
        for (int i = 0; i < 64; ++i) EXPECT_EQ(values[i], back[i]) << scan << ", " << i;
    }
}

// 32 of the 64 are not 0: fewer than that cut the block off, more change nothing.
TEST(KelvaraScan, ForwardEndsBehindThatManyNonZeros) {
    const SourceBlock<Kel16s> src(sparseBlock());
    for (int scan : scans) {
        for (int count : {0, 1, 2, 31, 32, 33, 64}) {
            Destination<Kel16s> dst(64);
            ASSERT_EQ(kelStsNoErr, keliScanFwd_16s_C1(src.data(), dst.data(), count, scan));
            int seen = 0;
            for (int i = 0; i < 64; ++i) {
                const int value = src(0, walk(scan)[i]);
                EXPECT_EQ(seen < count ? value : 0, dst[i]) << scan << ", " << count << ", " << i;
                seen += value != 0;
            }
        }
    }
}

TEST(KelvaraScan, InverseTakesZeroBehindTheLastPlace) {
    std::mt19937 generator(6);
    const SourceBlock<Kel16s> src(randomBlock<Kel16s>(generator, 1, 300));
    for (int scan : scans) {
        for (int last : {-1, 0, 1, 31, 62, 63}) {
            Destination<Kel16s> dst(64);
            ASSERT_EQ(kelStsNoErr, keliScanInv_16s_C1(src.data(), dst.data(), last, scan));
            for (int i = 0; i < 64; ++i)
                EXPECT_EQ(i <= last ? src(0, i) : 0, dst[walk(scan)[i]]) << scan << ", " << last << ", " << i;
        }
    }
}

TEST(KelvaraScan, BadArgumentsAreRefusedAndNothingIsWritten) {
    const SourceBlock<Kel16s> src(sparseBlock());
    Destination<Kel16s> dst(64);
    EXPECT_EQ(kelStsNullPtrErr, keliScanFwd_16s_C1(nullptr, dst.data(), 99, 9));
    EXPECT_EQ(kelStsNullPtrErr, keliScanFwd_16s_C1(src.data(), nullptr, 64, Zigzag));
    EXPECT_EQ(kelStsNullPtrErr, keliScanInv_16s_C1(nullptr, dst.data(), 99, 9));
    EXPECT_EQ(kelStsNullPtrErr, keliScanInv_16s_C1(src.data(), nullptr, 63, Zigzag));
    for (int count : {-1, 65, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, keliScanFwd_16s_C1(src.data(), dst.data(), count, Zigzag)) << count;
    for (int last : {-2, 64, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, keliScanInv_16s_C1(src.data(), dst.data(), last, Zigzag)) << last;
    for (int scan : notScans) {
        EXPECT_EQ(kelStsRangeErr, keliScanFwd_16s_C1(src.data(), dst.data(), 64, scan)) << scan;
        EXPECT_EQ(kelStsRangeErr, keliScanInv_16s_C1(src.data(), dst.data(), 63, scan)) << scan;
    }
    EXPECT_TRUE(dst.untouched());
}

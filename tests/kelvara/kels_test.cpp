// kels_test.cpp - memory and copies of 16-bit data.

#include "kels.h"
#include "kelvara_test.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

TEST(KelvaraKels, MemoryIsAlignedTo64AndUsableToItsLastElement) {
    for (int length : {1, 2, 31, 32, 33, 256, 1000, 51200}) {
        Kel16s *p = kelsMalloc_16s(length);
        ASSERT_NE(nullptr, p);
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(p) % 64);
        for (int i = 0; i < length; ++i) p[i] = static_cast<Kel16s>(i);
        EXPECT_EQ(static_cast<Kel16s>(length - 1), p[length - 1]);
        kelsFree(p);
    }
}

TEST(KelvaraKels, NoMemoryForLengthsBelowOne) {
    for (int length : {0, -1, std::numeric_limits<int>::min()}) EXPECT_EQ(nullptr, kelsMalloc_16s(length));
}

TEST(KelvaraKels, FreeTakesNull) {
    EXPECT_NO_FATAL_FAILURE(kelsFree(nullptr));
}

TEST(KelvaraKels, CopyMovesAllElementsAndNoOther) {
    for (int length : {1, 2, 7, 64, 65, 1000}) {
        for (int slack : {0, 1, 2, 5}) {
            Source<Kel16s> src(1, length, 2 * length, slack);
            src.fill([](int, int col) { return col * 257 - 32768; });
            Destination<Kel16s> dst(length, slack);
            ASSERT_EQ(kelStsNoErr, kelsCopy_16s(src.data(), dst.data(), length));
            EXPECT_TRUE(dst.surroundingsIntact());
            for (int i = 0; i < length; ++i) ASSERT_EQ(src(0, i), dst[i]);
        }
    }
}

TEST(KelvaraKels, CopyMayOverlapInBothDirections) {
    Kel16s data[] = {1, 2, 3, 4, 5, 6};
    ASSERT_EQ(kelStsNoErr, kelsCopy_16s(data, data + 2, 4));
    const Kel16s up[] = {1, 2, 1, 2, 3, 4};
    EXPECT_EQ(0, std::memcmp(up, data, sizeof data));
    ASSERT_EQ(kelStsNoErr, kelsCopy_16s(data + 1, data, 5));
    const Kel16s downwards[] = {2, 1, 2, 3, 4, 4};
    EXPECT_EQ(0, std::memcmp(downwards, data, sizeof data));
}

TEST(KelvaraKels, BadArgumentsOfCopyAreRefusedAndNothingIsWritten) {
    const Kel16s src[4] = {1, 2, 3, 4};
    Destination<Kel16s> dst(4);
    EXPECT_EQ(kelStsNullPtrErr, kelsCopy_16s(nullptr, dst.data(), 4));
    EXPECT_EQ(kelStsNullPtrErr, kelsCopy_16s(src, nullptr, 4));
    EXPECT_EQ(kelStsSizeErr, kelsCopy_16s(src, dst.data(), 0));
    EXPECT_EQ(kelStsSizeErr, kelsCopy_16s(src, dst.data(), -4));
    EXPECT_TRUE(dst.untouched());
}

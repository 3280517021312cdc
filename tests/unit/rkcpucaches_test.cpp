// rkcpucaches_test.cpp - tests of the processor's caches: descriptors, and the largest one.

#include <gtest/gtest.h>
#include <limits.h>

#include "rkcpu.h"
#include "rkregister.h"
#include "scriptedcpu.h"
#include "text.h"

extern int ownStatus; // the stored answer of rk_kelGetMaxCacheSizeB
extern int cacheSize;

static int const statusAtStart = ownStatus;

// ---- cache descriptors --------------------------------------------------------

TEST(RkCpu, CacheTableHas55RowsAndAnEndRow) {
    int n = 0;
    while (tableCache[n].descriptor) ++n;
    EXPECT_EQ(n, 55);
    EXPECT_EQ(tableCache[n].size, 0);
}

TEST(RkCpu, CacheTableFallsInSizeAndNamesEachDescriptorOnce) {
    std::set<int> seen;
    for (CacheDescriptor const *row = tableCache; row->descriptor; ++row) {
        EXPECT_TRUE(seen.insert(row->descriptor).second) << row->descriptor;
        EXPECT_TRUE(row->descriptor > 0 && row->descriptor < 256) << row->descriptor;
        EXPECT_GE(row->size, row[1].size) << row->descriptor;
    }
}

TEST(RkCpu, CacheTableBeginsAndEndsWithTheseRows) {
    const CacheDescriptor first[] = {{236, 25165824}, {235, 18874368}, {77, 16777216}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(tableCache[i].descriptor, first[i].descriptor);
        EXPECT_EQ(tableCache[i].size, first[i].size);
    }
    EXPECT_EQ(tableCache[54].descriptor, 65);
    EXPECT_EQ(tableCache[54].size, 131072);
}

static int sizeOf(ScriptedCpu::Registers const &descriptors) {
    ScriptedCpu cpu;
    cpu.set(2, 0, descriptors);
    return ownGetCacheSize(tableCache);
}

TEST(RkCpu, LargestDescribedCacheIsFoundInAnyRegister) {
    EXPECT_EQ(sizeOf({0x00004101u, 0, 0, 0}), 128 * 1024);
    EXPECT_EQ(sizeOf({0x4d004101u, 0, 0, 0}), 16 * 1024 * 1024);
    EXPECT_EQ(sizeOf({0x00004101u, 0x43u, 0, 0}), 512 * 1024);
    EXPECT_EQ(sizeOf({0x00004101u, 0, 0x45000000u, 0x43u}), 2 * 1024 * 1024);
    EXPECT_EQ(sizeOf({0x00004101u, 0x43u, 0x44u, 0x6c000000u | 0x85u << 16}), 2 * 1024 * 1024);
}

TEST(RkCpu, LastByteOfTheLastRegisterCounts) {
    EXPECT_EQ(sizeOf({0x00004101u, 1, 1, 0x45000000u}), 2 * 1024 * 1024);
}

TEST(RkCpu, CountByteOfLeaf2IsNoDescriptorAndMustBe1) {
    EXPECT_EQ(sizeOf({0x00004102u, 0, 0, 0}), -1);
    EXPECT_EQ(sizeOf({0x00004145u, 0x45u, 0, 0}), -1);
}

TEST(RkCpu, RegisterWithItsTopBitSetHoldsNoDescriptors) {
    EXPECT_EQ(sizeOf({0x00004101u, 0x80004d45u, 0, 0}), 128 * 1024);
    EXPECT_EQ(sizeOf({0x80004d01u, 0, 0, 0}), -1);
}

// The place of the count byte is passed over whatever register stands there.
TEST(RkCpu, FirstStoredByteIsNeverADescriptor) {
    EXPECT_EQ(sizeOf({0x80000001u, 0x00000045u, 0, 0}), -1);
    EXPECT_EQ(sizeOf({0x80000001u, 0x00004500u, 0, 0}), 2 * 1024 * 1024);
}

TEST(RkCpu, UnknownDescriptorsGiveNoSize) {
    EXPECT_EQ(sizeOf({0x00fefd01u, 0xffu, 0, 0}), -1);
    EXPECT_EQ(sizeOf({0x00000001u, 0, 0, 0}), -1);
}

TEST(RkCpu, FirstRowOfTheTableWithAMatchDecides) {
    const CacheDescriptor table[] = {{7, 100}, {9, 5000}, {0, 0}};
    ScriptedCpu cpu;
    cpu.set(2, 0, {0x00070901u, 0, 0, 0});
    EXPECT_EQ(ownGetCacheSize(table), 100);
}

// ---- largest cache ------------------------------------------------------------

static int askLargest(int &size) {
    ownStatus = 1;
    cacheSize = 0;
    size = -77;
    return rk_kelGetMaxCacheSizeB(&size);
}

TEST(RkCpu, LargestCacheIsNotKnownOnAProcessorOfAnotherVendor) {
    ScriptedCpu cpu("SomeoneElses");
    cpu.cache(0, 3, 64, 64, 1, 8);
    int size;
    EXPECT_EQ(askLargest(size), 36);
    EXPECT_EQ(size, 0);
}

TEST(RkCpu, LargestCacheIsNotKnownWithoutLeaf2) {
    ScriptedCpu cpu("GenuineTarvo", 1);
    int size;
    EXPECT_EQ(askLargest(size), 36);
    EXPECT_EQ(size, 0);
}

TEST(RkCpu, BelowLeaf4TheDescriptorsDecide) {
    ScriptedCpu cpu("GenuineTarvo", 3);
    cpu.set(2, 0, {0x00004401u, 0, 0, 0});
    int size;
    EXPECT_EQ(askLargest(size), 0);
    EXPECT_EQ(size, 1024 * 1024);
}

TEST(RkCpu, BelowLeaf4WithoutDescriptorsNothingIsFound) {
    ScriptedCpu cpu("GenuineTarvo", 2);
    int size;
    EXPECT_EQ(askLargest(size), 37);
    EXPECT_EQ(size, 0);
}

TEST(RkCpu, LargestDataOrUnifiedCacheOfLeaf4) {
    ScriptedCpu cpu;
    cpu.cache(0, 1, 64, 64, 1, 8);
    cpu.cache(1, 2, 1024, 64, 2, 32); // 4 MB of instructions
    cpu.cache(2, 3, 512, 64, 2, 8);
    cpu.cache(3, 3, 16, 64, 1, 4);
    int size;
    EXPECT_EQ(askLargest(size), 0);
    EXPECT_EQ(size, 512 * 64 * 2 * 8);
}

TEST(RkCpu, InstructionCacheAloneIsNoLargestCache) {
    ScriptedCpu cpu;
    cpu.cache(0, 2, 64, 64, 1, 8);
    int size;
    EXPECT_EQ(askLargest(size), 37);
    EXPECT_EQ(size, 0);
}

TEST(RkCpu, ProcessorWithoutCachesInLeaf4) {
    ScriptedCpu cpu;
    int size;
    EXPECT_EQ(askLargest(size), 37);
    EXPECT_EQ(size, 0);
}

TEST(RkCpu, WalkOfLeaf4EndsAt32Caches) {
    ScriptedCpu cpu;
    for (unsigned int i = 0; i < 40; ++i) cpu.cache(i, 1, i == 32 ? 1024 : 64, 64, 1, 8);
    int size;
    EXPECT_EQ(askLargest(size), 0);
    EXPECT_EQ(size, 64 * 64 * 8);
}

TEST(RkCpu, LargestCacheIsAskedForOnce) {
    int size;
    {
        ScriptedCpu cpu;
        cpu.cache(0, 1, 64, 64, 1, 8);
        ASSERT_EQ(askLargest(size), 0);
    }
    ScriptedCpu other("SomeoneElses");
    size = 0;
    EXPECT_EQ(rk_kelGetMaxCacheSizeB(&size), 0);
    EXPECT_EQ(size, 32768);
    EXPECT_EQ(other.asked(0), 0);
}

TEST(RkCpu, FailureIsStoredToo) {
    int size;
    {
        ScriptedCpu cpu("SomeoneElses");
        ASSERT_EQ(askLargest(size), 36);
    }
    ScriptedCpu cpu;
    cpu.cache(0, 1, 64, 64, 1, 8);
    EXPECT_EQ(rk_kelGetMaxCacheSizeB(&size), 36);
    EXPECT_EQ(size, 0);
}

TEST(RkCpu, AnswerIsNotKnownBeforeTheFirstCall) {
    EXPECT_EQ(statusAtStart, 1);
}

TEST(RkCpu, SizeOfEachCache) {
    ScriptedCpu cpu;
    cpu.cache(0, 1, 64, 64, 1, 8);
    cpu.cache(1, 2, 32, 128, 2, 4);
    EXPECT_EQ(getCacheSizeB(0), 32768);
    EXPECT_EQ(getCacheSizeB(1), 32768);
    EXPECT_EQ(getCacheSizeB(2), -1);
}

TEST(RkCpu, SizeBeyondAnIntIsCutOff) {
    ScriptedCpu cpu;
    cpu.set(4, 0, {3, 0xffffffffu, 0xffffffffu, 0});
    EXPECT_EQ(getCacheSizeB(0), INT_MAX);
}

TEST(RkCpu, MaxCacheSizeCountsInstructionCachesToo) {
    ScriptedCpu cpu("SomeoneElses");
    cpu.cache(0, 1, 64, 64, 1, 8);
    cpu.cache(1, 2, 1024, 64, 2, 32);
    EXPECT_EQ(getMaxCacheSizeB(), 4u * 1024 * 1024);
}

TEST(RkCpu, MaxCacheSizeIsZeroWithoutLeaf4) {
    ScriptedCpu cpu("GenuineTarvo", 3);
    cpu.cache(0, 1, 64, 64, 1, 8);
    EXPECT_EQ(getMaxCacheSizeB(), 0u);
}

TEST(RkCpu, MaxCacheSizeOfABrokenProcessorEnds) {
    ScriptedCpu cpu;
    for (unsigned int i = 0; i < 100; ++i) cpu.cache(i, 1, 64, 64, 1, 8);
    EXPECT_EQ(getMaxCacheSizeB(), 32768u);
    EXPECT_LE(cpu.asked(4), 32);
}

TEST(RkCpu, HarnessTakesTheKnownSizeFirst) {
    ScriptedCpu cpu;
    cpu.cache(0, 1, 64, 64, 1, 8);
    cpu.cache(1, 2, 1024, 64, 2, 32);
    ownStatus = 1;
    EXPECT_EQ(rkGetMaxCacheSizeB(), 32768u);
}

TEST(RkCpu, HarnessFallsBackToLeaf4OfAnyVendor) {
    ScriptedCpu cpu("SomeoneElses");
    cpu.cache(0, 3, 64, 64, 1, 16);
    ownStatus = 1;
    EXPECT_EQ(rkGetMaxCacheSizeB(), 65536u);
}

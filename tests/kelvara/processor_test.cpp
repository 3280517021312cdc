// processor_test.cpp - the judgement on processors that this machine is not.

#include "../../kelvara/src/core/processor.h"

#include <gtest/gtest.h>

using namespace kelvara;

namespace {
const unsigned sse2 = HasSSE | HasSSE2, ssse3 = sse2 | HasSSE3 | HasSSSE3,
               sse42 = ssse3 | HasSSE41 | HasSSE42;
const unsigned level2 = sse42 | HasV2Rest, level3 = level2 | HasMOVBE | HasAVX | HasV3Rest;
} // namespace

TEST(KelvaraProcessor, ALevelNeedsAllOfItsInstructions) {
    EXPECT_EQ(kelStsNoErr, judgeLevel(sse2, 1));
    EXPECT_EQ(kelStsNoErr, judgeLevel(level2, 2));
    EXPECT_EQ(kelStsNoErr, judgeLevel(level3, 2));
    EXPECT_EQ(kelStsNoErr, judgeLevel(level3, 3));
    EXPECT_EQ(kelStsCpuMismatch, judgeLevel(level2, 3));
    for (unsigned bit = 1; bit <= level3; bit <<= 1) {
        if (level2 & bit) {
            EXPECT_EQ(kelStsCpuMismatch, judgeLevel(level2 & ~bit, 2)) << bit;
        }
        if (level3 & bit) {
            EXPECT_EQ(kelStsCpuMismatch, judgeLevel(level3 & ~bit, 3)) << bit;
        }
    }
}

TEST(KelvaraProcessor, ACodeNeedsItsInstructions) {
    const struct {
        int code;
        unsigned needs;
    } rows[] = {{32, sse2 | HasSSE3},         {33, ssse3}, {34, ssse3},          {35, ssse3 | HasSSE41},
                {36, ssse3 | HasMOVBE},       {37, sse42}, {65, sse2},           {67, ssse3},
                {68, ssse3 | HasSSE41},       {69, sse42}, {70, sse42 | HasAVX}, {96, sse2},
                {71, sse42 | HasAVX | HasAES}};
    for (const auto &row : rows) {
        EXPECT_EQ(kelStsNoErr, judgeCode(row.needs, row.code)) << row.code;
        for (unsigned bit = 1; bit <= row.needs; bit <<= 1) {
            if (row.needs & bit) {
                EXPECT_EQ(kelStsCpuMismatch, judgeCode(row.needs & ~bit, row.code)) << row.code;
            }
        }
    }
}

TEST(KelvaraProcessor, CodeZeroNeedsNothingAndAnUnknownCodeIsRefused) {
    EXPECT_EQ(kelStsNoErr, judgeCode(0, 0));
    for (int code : {-1, 12, 15, 18, 31, 39, 63, 72, 95, 97}) EXPECT_EQ(kelStsRangeErr, judgeCode(~0u, code));
}

TEST(KelvaraProcessor, TheBestCodeGrowsWithTheInstructions) {
    EXPECT_EQ(0, bestCode(0));
    EXPECT_EQ(64, bestCode(HasSSE));
    EXPECT_EQ(65, bestCode(sse2));
    EXPECT_EQ(66, bestCode(sse2 | HasSSE3));
    EXPECT_EQ(67, bestCode(ssse3));
    EXPECT_EQ(68, bestCode(ssse3 | HasSSE41));
    EXPECT_EQ(69, bestCode(sse42));
    EXPECT_EQ(70, bestCode(sse42 | HasAVX));
    EXPECT_EQ(71, bestCode(sse42 | HasAVX | HasAES));
}

// 8 ways, 1 partition, lines of 64 bytes, 64 sets.
TEST(KelvaraProcessor, ACacheIsWaysTimesPartitionsTimesLineTimesSets) {
    const unsigned waysAndLine = 7u << 22 | 63;
    EXPECT_EQ(32768, cacheBytes({1, waysAndLine, 63, 0}));
    EXPECT_EQ(65536, cacheBytes({3, waysAndLine | 1u << 12, 63, 0}));
    EXPECT_EQ(0, cacheBytes({2, waysAndLine, 63, 0})) << "instruction cache";
    EXPECT_EQ(0, cacheBytes({0, waysAndLine, 63, 0})) << "no cache";
}

TEST(KelvaraProcessor, ALeafBeyondTheLastOneIsAllZero) {
    const CpuRegisters r = cpuid(0x7fffffffu, 0);
    EXPECT_EQ(0u, r.eax | r.ebx | r.ecx | r.edx);
}

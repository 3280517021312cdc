// core_test.cpp - the exported core functions.

#include "kelcore.h"

#include <gtest/gtest.h>

#include <cpuid.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <set>
#include <string>

namespace {

bool isKnown(int code) {
    return (code >= 0 && code <= 11) || code == 16 || code == 17 || (code >= 32 && code <= 38) ||
           (code >= 64 && code <= 71) || code == 96;
}

// The largest data or unified cache by one cache leaf, 0 where the processor does not have it.
long long largestCache(unsigned leaf) {
    long long largest = 0;
    unsigned a, b, c, d;
    for (unsigned i = 0; __get_cpuid_count(leaf, i, &a, &b, &c, &d) && a % 32 != 0; ++i) {
        if (a % 32 == 2) continue;
        const long long size = (b / (1 << 22) + 1LL) * (b / 4096 % 1024 + 1LL) * (b % 4096 + 1LL) * (c + 1LL);
        largest = std::max(largest, size);
    }
    return largest;
}

int bestByCompiler() {
    if (__builtin_cpu_supports("avx")) return __builtin_cpu_supports("aes") ? 71 : 70;
    if (__builtin_cpu_supports("sse4.2")) return 69;
    if (__builtin_cpu_supports("sse4.1")) return 68;
    if (__builtin_cpu_supports("ssse3")) return 67;
    return __builtin_cpu_supports("sse3") ? 66 : 65;
}

} // namespace

TEST(KelvaraCore, InitTakesTheBestCodeOfTheMachine) {
    EXPECT_EQ(kelStsNoErr, kelInit()); // the build under test runs on this machine
    EXPECT_EQ(bestByCompiler(), kelGetCpuType());
}

TEST(KelvaraCore, CodeBeforeInitIsTheOneInitWouldChoose) {
    const int before = kelGetCpuType();
    kelInit();
    EXPECT_EQ(before, kelGetCpuType());
}

TEST(KelvaraCore, InitCpuPutsACodeInForceAndInitTheBestOneAgain) {
    const int best = kelGetCpuType();
    EXPECT_EQ(kelStsNoErr, kelInitCpu(65));
    EXPECT_EQ(65, kelGetCpuType());
    EXPECT_EQ(kelStsNoErr, kelInitCpu(0));
    EXPECT_EQ(0, kelGetCpuType());
    EXPECT_EQ(kelStsNoErr, kelInit());
    EXPECT_EQ(best, kelGetCpuType());
}

TEST(KelvaraCore, InitCpuJudgesEveryCode) {
    for (int code = -3; code < 300; ++code) {
        ASSERT_EQ(kelStsNoErr, kelInitCpu(65));
        const KelStatus status = kelInitCpu(code);
        SCOPED_TRACE(code);
        if (!isKnown(code)) {
            EXPECT_EQ(kelStsRangeErr, status);
        } else {
            EXPECT_TRUE(status == kelStsNoErr || status == kelStsCpuMismatch) << status;
        }
        EXPECT_EQ(status == kelStsNoErr ? code : 65, kelGetCpuType());
    }
    EXPECT_EQ(kelStsRangeErr, kelInitCpu(INT_MIN));
    EXPECT_EQ(kelStsRangeErr, kelInitCpu(INT_MAX));
}

TEST(KelvaraCore, InitCpuTakesTheCodesOfThisMachinesInstructionSets) {
    for (int code = 64; code <= bestByCompiler(); ++code) EXPECT_EQ(kelStsNoErr, kelInitCpu(code)) << code;
    EXPECT_EQ(kelStsNoErr, kelInitCpu(96));
}

TEST(KelvaraCore, ThreadsAreOneOrMore) {
    EXPECT_EQ(kelStsNoErr, kelSetNumThreads(1));
    EXPECT_EQ(kelStsNoErr, kelSetNumThreads(64));
    EXPECT_EQ(kelStsNoErr, kelSetNumThreads(INT_MAX));
    EXPECT_EQ(kelStsRangeErr, kelSetNumThreads(0));
    EXPECT_EQ(kelStsRangeErr, kelSetNumThreads(-1));
}

TEST(KelvaraCore, CoresOnDieAreWhatCpuidSays) {
    unsigned a = 0, b, c, d;
    const bool known = __get_cpuid_count(4, 0, &a, &b, &c, &d);
    EXPECT_EQ(known ? static_cast<int>(a / (1u << 26)) + 1 : 1, kelGetNumCoresOnDie());
}

TEST(KelvaraCore, LargestCacheIsWhatCpuidSays) {
    const long long expected = std::max(largestCache(4), largestCache(0x8000001Du));
    int size = -77;
    if (expected == 0) {
        EXPECT_EQ(kelStsNotSupportedErr, kelGetMaxCacheSizeB(&size));
        EXPECT_EQ(-77, size);
    } else {
        EXPECT_EQ(kelStsNoErr, kelGetMaxCacheSizeB(&size));
        EXPECT_EQ(std::min<long long>(expected, INT_MAX), size);
    }
    EXPECT_EQ(kelStsNullPtrErr, kelGetMaxCacheSizeB(nullptr));
}

TEST(KelvaraCore, EachStatusHasATextOfItsOwn) {
    std::set<std::string> texts;
    for (int status = -9; status <= 3; ++status) texts.insert(kelGetStatusString(status));
    EXPECT_EQ(13u, texts.size());
    EXPECT_EQ(0u, texts.count(""));
}

TEST(KelvaraCore, AnUnknownStatusIsNamedByItsSign) {
    EXPECT_NE(nullptr, std::strstr(kelGetStatusString(-1000), "error"));
    EXPECT_NE(nullptr, std::strstr(kelGetStatusString(1000), "warning"));
}

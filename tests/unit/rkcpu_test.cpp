// rkcpu_test.cpp - tests of the processor's codes, names and features.

#include "rkcpu.h"

#include <gtest/gtest.h>
#include <string.h>

#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "capture.h"
#include "rkhost.h"
#include "rkregister.h"
#include "rkticker.h"
#include "scriptedcpu.h"
#include "text.h"

// ---- feature flags ------------------------------------------------------------

TEST(RkCpu, FeatureTableHas68Rows) {
    EXPECT_EQ(FeatureFlagsCount, 68);
}

TEST(RkCpu, FeatureRowsDifferInNameAndInBit) {
    std::set<std::string> names;
    std::set<std::tuple<unsigned int, int, int>> bits;
    for (int i = 0; i < FeatureFlagsCount; ++i) {
        FeatureFlag const &flag = FeatureFlags[i];
        EXPECT_TRUE(names.insert(flag.name).second) << flag.name;
        EXPECT_TRUE(bits.insert({flag.leaf, flag.reg, flag.bit}).second) << flag.name;
        EXPECT_TRUE(flag.leaf == 1 || flag.leaf == 0x80000001u) << flag.name;
        EXPECT_TRUE(flag.reg == CpuidECX || flag.reg == CpuidEDX) << flag.name;
        EXPECT_TRUE(flag.bit >= 0 && flag.bit <= 31) << flag.name;
        EXPECT_LT(strlen(flag.name), 11u) << flag.name; // the column of names
        EXPECT_GT(strlen(flag.description), 0u) << flag.name;
    }
}

TEST(RkCpu, FeaturesThatTheReportShowsStandAtTheirBits) {
    const struct {
        char const *name;
        unsigned int leaf;
        int reg, bit;
    } rows[] = {
        {"HTT", 1, CpuidEDX, 28},    {"MMX", 1, CpuidEDX, 23},    {"SSE", 1, CpuidEDX, 25},
        {"SSE2", 1, CpuidEDX, 26},   {"SSE3", 1, CpuidECX, 0},    {"SSSE3", 1, CpuidECX, 9},
        {"SSE4.1", 1, CpuidECX, 19}, {"SSE4.2", 1, CpuidECX, 20}, {"x2APIC", 1, CpuidECX, 21},
        {"AVX", 1, CpuidECX, 28},    {"AES", 1, CpuidECX, 25},    {"Tarvo(R)64", 0x80000001u, CpuidEDX, 29},
    };
    for (auto const &row : rows) {
        FeatureFlag const *flag = findFlagInfo(row.name);
        ASSERT_NE(flag, nullptr) << row.name;
        EXPECT_EQ(flag->leaf, row.leaf) << row.name;
        EXPECT_EQ(flag->reg, row.reg) << row.name;
        EXPECT_EQ(flag->bit, row.bit) << row.name;
    }
}

TEST(RkCpu, FlagIsFoundByItsWholeNameOnly) {
    EXPECT_EQ(findFlagInfo("SSE4"), nullptr);
    EXPECT_EQ(findFlagInfo("sse2"), nullptr);
    EXPECT_EQ(findFlagInfo(""), nullptr);
}

TEST(RkCpu, FeatureFlagFollowsItsBit) {
    ScriptedCpu cpu;
    EXPECT_FALSE(isFeatureFlag("SSE4.2"));
    cpu.setBit(1, CpuidECX, 20);
    EXPECT_TRUE(isFeatureFlag("SSE4.2"));
    EXPECT_FALSE(isFeatureFlag("SSE4.1"));
}

TEST(RkCpu, FeatureFlagOfAnAbsentLeafIsFalse) {
    ScriptedCpu cpu("GenuineTarvo", 1, 0x80000000u);
    cpu.setBit(0x80000001u, CpuidEDX, 29);
    EXPECT_FALSE(isFeatureFlag("Tarvo(R)64"));
}

TEST(RkCpu, UnknownFeatureFlagIsFalse) {
    ScriptedCpu cpu;
    cpu.at(1) = {~0u, ~0u, ~0u, ~0u};
    EXPECT_FALSE(isFeatureFlag("SSE9"));
}

TEST(RkCpu, FlagLineHasNameBitAndDescription) {
    ScriptedCpu cpu;
    cpu.setBit(1, CpuidEDX, 26);
    CaptureLog log(MsgResult);
    printFeatureFlag("SSE2");
    printFeatureFlag("Tarvo(R)64");
    EXPECT_EQ(log.text(),
              "SSE2       1 - SSE2 instructions\n"
              "Tarvo(R)64 0 - 64-bit architecture\n");
}

TEST(RkCpu, FlagLineTakesAGivenValueInPlaceOfTheProcessors) {
    ScriptedCpu cpu;
    CaptureLog log(MsgResult);
    printFeatureFlag("SSE2", 1);
    EXPECT_EQ(log.text(), "SSE2       1 - SSE2 instructions\n");
    EXPECT_EQ(cpu.asked(1), 0);
}

TEST(RkCpu, UnknownFeaturePrintsQuestionMarks) {
    CaptureLog log(MsgResult);
    printFeatureFlag("SSE9");
    printFeatureFlag("SSE9", 1);
    printFeatureFlag("longer than the column");
    EXPECT_EQ(log.text(),
              "SSE9       ? - unknown flag???????\n"
              "SSE9       ? - unknown flag???????\n"
              "longer than the column? - unknown flag???????\n");
}

TEST(RkCpu, FlagLineGoesOutAtTheLevelOfTheMessage) {
    CaptureLog log(MsgError); // the log starts at the level of results
    printFeatureFlag("SSE2", 1);
    EXPECT_EQ(log.text(), "");
}

// ---- processor names ----------------------------------------------------------

static const int kCodes[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17, 32,
                             33, 34, 35, 36, 37, 38, 64, 65, 66, 67, 68, 69, 70, 71, 96};

TEST(RkCpu, CodeOutsideOfTheTable) {
    EXPECT_EQ(str(rkCpuType::cpuLabel(9999)), "Undefined");
    EXPECT_EQ(str(rkCpuType::cpuName(9999)), "Unknown processor");
    EXPECT_EQ(str(rkCpuType::cpuLabel(-1)), "Undefined");
}

TEST(RkCpu, LabelOutsideOfTheTableIsMinusOne) {
    EXPECT_EQ(rkCpuType::cpuType("SSE9"), -1);
    EXPECT_EQ(rkCpuType::cpuType(""), -1);
    EXPECT_EQ(rkCpuType::cpuType("sse2"), -1);
}

TEST(RkCpu, CodeZeroIsTheUnknownProcessor) {
    EXPECT_EQ(str(rkCpuType::cpuLabel(0)), "Unknown");
    EXPECT_EQ(str(rkCpuType::cpuName(0)), "Unknown processor");
    EXPECT_EQ(rkCpuType::cpuType("Unknown"), 0);
}

TEST(RkCpu, ExactlyThirtyCodesHaveALabelAndEachLabelItsCode) {
    std::set<int> known(std::begin(kCodes), std::end(kCodes));
    ASSERT_EQ(known.size(), 30u);
    for (int code = -1; code < 300; ++code) {
        rkString label = rkCpuType::cpuLabel(code);
        if (known.count(code)) {
            EXPECT_EQ(rkCpuType::cpuType(label), code);
            EXPECT_LT(label.length(), 9) << label.c_str();
        } else {
            EXPECT_EQ(str(label), "Undefined") << code;
        }
    }
}

TEST(RkCpu, LabelsOfTheInstructionSets) {
    const std::pair<int, char const *> rows[] = {{64, "SSE"},   {65, "SSE2"},  {66, "SSE3"},
                                                 {67, "SSSE3"}, {68, "SSE41"}, {69, "SSE42"},
                                                 {70, "AVX"},   {71, "AES"},   {96, "X8664"}};
    for (auto const &row : rows) {
        EXPECT_EQ(str(rkCpuType::cpuLabel(row.first)), row.second);
        EXPECT_EQ(rkCpuType::cpuType(row.second), row.first);
    }
}

TEST(RkCpu, NameOfCode35TellsTheNumberOfCores) {
    ScriptedCpu cpu;
    cpu.cores(1);
    EXPECT_EQ(str(rkCpuType::cpuName(35)), "Tarvo Meridian 2 processor");
    cpu.cores(2);
    EXPECT_EQ(str(rkCpuType::cpuName(35)), "Tarvo Meridian 2 Dual processor");
    cpu.cores(3);
    EXPECT_EQ(str(rkCpuType::cpuName(35)), "Tarvo Meridian 2 processor");
    cpu.cores(4);
    EXPECT_EQ(str(rkCpuType::cpuName(35)), "Tarvo Meridian 2 Quad processor");
}

TEST(RkCpu, OnlyCode35WithA2InItsNameIsChanged) {
    ScriptedCpu cpu;
    cpu.cores(2);
    rkString name = "a 2 b";
    updateCpuName(34, name);
    EXPECT_EQ(str(name), "a 2 b");
    updateCpuName(35, name);
    EXPECT_EQ(str(name), "a 2 Dual b");
    rkString without = "a2 b";
    updateCpuName(35, without);
    EXPECT_EQ(str(without), "a2 b");
}

TEST(RkCpu, LabelIsPaddedToNineCharacters) {
    EXPECT_EQ(str(formatLabel("SSE2")), "SSE2     ");
    EXPECT_EQ(str(formatLabel("")), "         ");
}

TEST(RkCpu, LabelOfNineCharactersOrMoreStays) {
    EXPECT_EQ(str(formatLabel("123456789")), "123456789");
    EXPECT_EQ(str(formatLabel("1234567890")), "1234567890");
}

TEST(RkCpu, OptimizedListHasALineForEveryRowButTheFutureProcessor) {
    std::string expected = "Unknown  : non optimized code\n";
    for (int code : kCodes) {
        if (code == 0 || code == 38) continue;
        expected += str(formatLabel(rkCpuType::cpuLabel(code))) + ": optimized for ";
        expected += (code == 35 ? "Tarvo Meridian 2 processor" : str(rkCpuType::cpuName(code))) + "\n";
    }
    EXPECT_EQ(str(rkCpuType::optimizedList()), expected);
}

TEST(RkCpu, FutureProcessorIsMarkedByTheVendorSignature) {
    int marked = 0;
    for (int code : kCodes) marked += rkCpuType::cpuName(code).find("GenuineTarvo", 0) == 0;
    EXPECT_EQ(marked, 1);
    EXPECT_EQ(rkCpuType::cpuName(38).find("GenuineTarvo", 0), 0);
}

// ---- processor code -----------------------------------------------------------

namespace {

const unsigned int kSsse3 = 1u << 9, kSse41 = 1u << 19, kSse42 = 1u << 20, kMovbe = 1u << 22;
const unsigned int kAvx = 1u << 27 | 1u << 28, kSse3 = 1u;     // ECX
const unsigned int kSse = 1u << 25, kSse2 = 1u << 26;          // EDX
const unsigned int kAllSse = kSse3 | kSsse3 | kSse41 | kSse42; // ECX
const unsigned int kFamily6 = 6u << 8, kFamily15 = 15u << 8;   // EAX
unsigned int model(unsigned int m) {
    return (m & 15) << 4 | (m >> 4) << 16;
}

int codeOf(unsigned int signature, unsigned int ecx, unsigned int edx, char const *vendor = "GenuineTarvo",
           unsigned int cores = 2) {
    ScriptedCpu cpu(vendor);
    cpu.at(1) = {signature, 0, ecx, edx};
    cpu.cores(cores);
    cpu.enabledStates(7);
    return rk_kelGetCpuType();
}

} // namespace

TEST(RkCpu, Model15HasTwoCodesByItsCores) {
    EXPECT_EQ(codeOf(kFamily6 | model(15), kSsse3, kSse2, "GenuineTarvo", 1), 33);
    EXPECT_EQ(codeOf(kFamily6 | model(15), kSsse3, kSse2, "GenuineTarvo", 2), 33);
    EXPECT_EQ(codeOf(kFamily6 | model(15), kSsse3, kSse2, "GenuineTarvo", 3), 34);
    EXPECT_EQ(codeOf(kFamily6 | model(15), kSse3, kSse2), 66);
}

TEST(RkCpu, Model23NeedsSse41) {
    EXPECT_EQ(codeOf(kFamily6 | model(23), kSse41 | kSsse3, kSse2), 35);
    EXPECT_EQ(codeOf(kFamily6 | model(23), kSsse3, kSse2), 67);
}

TEST(RkCpu, Model26IsTakenByAvxFirst) {
    EXPECT_EQ(codeOf(kFamily6 | model(26), kAvx | kAllSse, kSse2), 70);
    EXPECT_EQ(codeOf(kFamily6 | model(26), kAllSse, kSse2), 37);
    EXPECT_EQ(codeOf(kFamily6 | model(26), kSse41, kSse2), 68);
}

TEST(RkCpu, Model28NeedsSsse3AndMovbe) {
    EXPECT_EQ(codeOf(kFamily6 | model(28), kSsse3 | kMovbe, kSse2), 36);
    EXPECT_EQ(codeOf(kFamily6 | model(28), kSsse3, kSse2), 67);
    EXPECT_EQ(codeOf(kFamily6 | model(28), kMovbe, kSse2), 65);
}

TEST(RkCpu, Family15WithoutExtensionIs66WhateverItsInstructions) {
    EXPECT_EQ(codeOf(kFamily15, kAllSse, kSse2), 66);
    EXPECT_EQ(codeOf(kFamily15, 0, 0), 66);
    EXPECT_EQ(codeOf(kFamily15 | 1u << 20, kSsse3, kSse2), 67);
}

TEST(RkCpu, ExtendedModelCountsInFamilies6And15Only) {
    EXPECT_EQ(codeOf(5u << 8 | model(23), kSse41, kSse2), 68);
    EXPECT_EQ(codeOf(kFamily6 | 7u << 4, kSse41, kSse2), 68); // 7 is not 23
}

TEST(RkCpu, AnotherVendorGetsTheBestInstructionSet) {
    EXPECT_EQ(codeOf(kFamily6 | model(15), kSsse3, kSse2, "SomeoneElses"), 67);
    EXPECT_EQ(codeOf(kFamily15, kSse3, kSse2, "SomeoneElses"), 66);
    EXPECT_EQ(codeOf(kFamily15, 0, kSse, "SomeoneElses"), 64);
}

TEST(RkCpu, BestInstructionSetWins) {
    EXPECT_EQ(codeOf(kFamily6, kAvx | kAllSse, kSse | kSse2), 70);
    EXPECT_EQ(codeOf(kFamily6, kAllSse, kSse | kSse2), 69);
    EXPECT_EQ(codeOf(kFamily6, kSse41 | kSsse3 | kSse3, kSse | kSse2), 68);
    EXPECT_EQ(codeOf(kFamily6, kSsse3 | kSse3, kSse | kSse2), 67);
    EXPECT_EQ(codeOf(kFamily6, kSse3, kSse | kSse2), 66);
    EXPECT_EQ(codeOf(kFamily6, 0, kSse | kSse2), 65);
    EXPECT_EQ(codeOf(kFamily6, 0, kSse), 64);
    EXPECT_EQ(codeOf(kFamily6, 0, 0), 0);
}

TEST(RkCpu, ProcessorThatIsOnly64Bit) {
    ScriptedCpu cpu;
    cpu.setBit(0x80000001u, CpuidEDX, 29);
    EXPECT_EQ(rk_kelGetCpuType(), 96);
}

TEST(RkCpu, AvxWithoutKeptRegistersIsNotUsed) {
    ScriptedCpu cpu;
    cpu.at(1) = {kFamily6 | model(26), 0, kAvx | kAllSse, kSse2};
    cpu.enabledStates(3);
    EXPECT_EQ(rk_kelGetCpuType(), 37);
}

TEST(RkCpu, CodeOfTheRealProcessorIsOneOfTheTable) {
    EXPECT_NE(str(rkCpuType::cpuLabel(rk_kelGetCpuType())), "Undefined");
    EXPECT_GE(rk_kelGetCpuType(), 33); // every 64-bit machine has SSE2
}

TEST(RkCpu, CoresOnDieComeFromLeaf4) {
    ScriptedCpu cpu;
    cpu.cores(4);
    EXPECT_EQ(rk_kelGetNumCoresOnDie(), 4);
}

// ---- texts of the report ------------------------------------------------------

static int codeAvx() {
    return 70;
}

TEST(RkCpu, CpuInfoTellsNameFrequencyAndProcessors) {
    rkCpuTicker::m_freqMHz = 2345;
    kel_GetCpuType = codeAvx;
    int n = rkGetNumOfProcessors();
    EXPECT_EQ(str(cpuInfo()), "processor with AVX instructions, 2345 MHz, " + std::to_string(n) +
                                  (n > 1 ? " processors" : " processor"));
}

TEST(RkCpu, CpuInfoAsksTheProcessorItselfBeforeAnyCoreIsBound) {
    ScriptedCpu cpu;
    cpu.at(1) = {kFamily6, 0, kSsse3, kSse2};
    rkCpuTicker::m_freqMHz = 1;
    kel_GetCpuType = nullptr;
    EXPECT_EQ(cpuInfo().find("processor with SSSE3 instructions, 1 MHz, ", 0), 0);
}

TEST(RkCpu, LibraryInfoIsRegisteredOnce) {
    EXPECT_TRUE(rkRegLibInfo("a library"));
    EXPECT_FALSE(rkRegLibInfo("a library"));
    EXPECT_TRUE(rkRegLibInfo("another"));
    ASSERT_EQ(g_pLibInfoList->size(), 2);
    EXPECT_EQ(str(*g_pLibInfoList->begin()), "a library");
}

TEST(RkCpu, LibraryFunctionsMayRepeatButNotBeEmpty) {
    EXPECT_EQ(g_pLibFuncList, nullptr);
    EXPECT_FALSE(rkRegLibFunc(""));
    EXPECT_TRUE(rkRegLibFunc("keliX"));
    EXPECT_TRUE(rkRegLibFunc("keliX"));
    EXPECT_EQ(g_pLibFuncList->size(), 2);
}

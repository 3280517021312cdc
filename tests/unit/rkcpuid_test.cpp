// rkcpuid_test.cpp - tests of the CPUID instruction and its questions.

#include "rkcpuid.h"

#include <gtest/gtest.h>

#include "scriptedcpu.h"

// ---- on the processor that runs the tests -------------------------------------

TEST(RkCpuid, LowestStandardAndExtendedLeafAreValidOnEveryProcessor) {
    EXPECT_TRUE(validFunction(0));
    EXPECT_TRUE(validFunction(0x80000000u));
}

TEST(RkCpuid, LeafAboveTheLargestGivesFourZeros) {
    CPUID standard(largestFunction() + 1), extended(largestExFunction() + 1);
    for (int r = 0; r < 4; ++r) {
        EXPECT_EQ(standard.reg[r], 0u);
        EXPECT_EQ(extended.reg[r], 0u);
    }
}

TEST(RkCpuid, RealProcessorHasTheInstructionSetThatThisBuildNeeds) {
    EXPECT_GE(largestFunction(), 1u);
    EXPECT_EQ(kel_has_cpuid(), 1);
    EXPECT_EQ(kel_has_rdtsc(), 1);
    EXPECT_EQ(kel_is_mmx_extension(), 1);
    EXPECT_EQ(kel_is_ssx_extension(), 1);
    EXPECT_EQ(kel_is_simd2_extension(), 1);
}

TEST(RkCpuid, RealProcessorSays64Bit) {
    kelTarvoCpuId id;
    kel_get_cpu_ident(&id);
    EXPECT_EQ(id.x64, 1);
}

TEST(RkCpuid, AvxOfTheRealProcessorIsWhatTheCompilerFinds) {
    __builtin_cpu_init();
    EXPECT_EQ(kel_is_avx_extension() != 0, __builtin_cpu_supports("avx") != 0);
}

// ---- leaves -------------------------------------------------------------------

TEST(RkCpuid, RegistersAreNumberedInTheirOrder) {
    ScriptedCpu cpu;
    cpu.set(3, 0, {10, 20, 30, 40});
    CPUID leaf(3);
    EXPECT_EQ(leaf.reg[CpuidEAX], 10u);
    EXPECT_EQ(leaf.reg[CpuidEBX], 20u);
    EXPECT_EQ(leaf.reg[CpuidECX], 30u);
    EXPECT_EQ(leaf.reg[CpuidEDX], 40u);
}

TEST(RkCpuid, SubleafReachesTheProcessor) {
    ScriptedCpu cpu;
    cpu.set(4, 0, {1, 1, 1, 1});
    cpu.set(4, 2, {7, 8, 9, 10});
    EXPECT_EQ(CPUID(4, 2).reg[CpuidEBX], 8u);
    EXPECT_EQ(CPUID(4).reg[CpuidEBX], 1u);
}

TEST(RkCpuid, OwnGetRegStoresAllFourWithoutAskingWhetherTheLeafExists) {
    ScriptedCpu cpu("GenuineTarvo", 1);
    cpu.set(9, 3, {1, 2, 3, 4});
    unsigned int regs[4] = {0, 0, 0, 0};
    ownGetReg(regs, 9, 3);
    EXPECT_EQ(regs[0], 1u);
    EXPECT_EQ(regs[1], 2u);
    EXPECT_EQ(regs[2], 3u);
    EXPECT_EQ(regs[3], 4u);
}

TEST(RkCpuid, LargestFunctionsComeFromTheTwoLowestLeaves) {
    ScriptedCpu cpu("GenuineTarvo", 11, 0x80000004u);
    EXPECT_EQ(largestFunction(), 11u);
    EXPECT_EQ(kel_max_cpuid_input(), 11);
    EXPECT_EQ(largestExFunction(), 0x80000004u);
}

TEST(RkCpuid, ValidFunctionEndsAtTheLargestOfEachRange) {
    ScriptedCpu cpu("GenuineTarvo", 5, 0x80000004u);
    EXPECT_TRUE(validFunction(5));
    EXPECT_FALSE(validFunction(6));
    EXPECT_FALSE(validFunction(0x7fffffffu));
    EXPECT_TRUE(validFunction(0x80000004u));
    EXPECT_FALSE(validFunction(0x80000005u));
}

TEST(RkCpuid, ProcessorWithoutExtendedLeavesHasOnlyTheLowestOne) {
    ScriptedCpu cpu("GenuineTarvo", 2, 0); // such a processor answers with anything small
    EXPECT_TRUE(validFunction(0x80000000u));
    EXPECT_FALSE(validFunction(0x80000001u));
}

TEST(RkCpuid, AbsentLeafIsZeroThoughTheProcessorWouldAnswer) {
    ScriptedCpu cpu("GenuineTarvo", 1);
    cpu.set(2, 0, {ScriptedCpu::poison, 1, 2, 3});
    CPUID leaf(2);
    for (unsigned int value : leaf.reg) EXPECT_EQ(value, 0u);
}

// ---- bits ---------------------------------------------------------------------

TEST(RkCpuid, BitsFrom31To0AreTheWholeRegister) {
    ScriptedCpu cpu;
    cpu.set(3, 0, {0x89abcdefu, 0, 0, 0xffffffffu});
    EXPECT_EQ(CPUID(3).getBits(0, 31, 0), 0x89abcdefu);
    EXPECT_EQ(CPUID(3).getBits(3, 31, 0), 0xffffffffu);
}

TEST(RkCpuid, BitsComeInTheLowEnd) {
    ScriptedCpu cpu;
    cpu.set(3, 0, {0, 0x12345678u, 0, 0});
    CPUID leaf(3);
    EXPECT_EQ(leaf.getBits(CpuidEBX, 15, 8), 0x56u);
    EXPECT_EQ(leaf.getBits(CpuidEBX, 31, 28), 0x1u);
    EXPECT_EQ(leaf.getBits(CpuidEBX, 3, 3), 1u);
}

TEST(RkCpuid, SingleBitOfEitherEnd) {
    ScriptedCpu cpu;
    cpu.set(3, 0, {0, 0, 0x80000001u, 0});
    CPUID leaf(3);
    EXPECT_EQ(leaf.getBit(CpuidECX, 0), 1);
    EXPECT_EQ(leaf.getBit(CpuidECX, 1), 0);
    EXPECT_EQ(leaf.getBit(CpuidECX, 31), 1);
}

TEST(RkCpuid, BytesCountFromTheLowEndAndKeepTheirSign) {
    ScriptedCpu cpu;
    cpu.set(3, 0, {0x80ff4241u, 0, 0, 0});
    CPUID leaf(3);
    EXPECT_EQ(leaf.getByte(0, 0), 'A');
    EXPECT_EQ(leaf.getByte(0, 1), 'B');
    EXPECT_EQ(static_cast<int>(leaf.getByte(0, 2)), -1);
    EXPECT_EQ(static_cast<int>(leaf.getByte(0, 3)), -128);
}

// ---- the identification record ------------------------------------------------

// Extended family 0x5a, extended model 0xc, bits 13..11 101, family 6, model 0xf, stepping 0xb. A
// type field of 10 binary reads as 01 one bit lower.
static const unsigned int kSignature = 0x5au << 20 | 0xcu << 16 | 2u << 12 | 1u << 11 | 6u << 8 | 0xfbu;

// Bit 11 belongs to the family too, so that a family of 6 reads as 14.
static void expectSignature(kelTarvoCpuId const &id) {
    EXPECT_EQ(id.family, 14);
    EXPECT_EQ(id.model, 15);
    EXPECT_EQ(id.stepping, 11);
    EXPECT_EQ(id.extFamily, 0x5a);
    EXPECT_EQ(id.extModel, 12);
}

TEST(RkCpuid, IdentTakesTheTypeOneBitLower) {
    ScriptedCpu cpu;
    cpu.at(1)[CpuidEAX] = kSignature;
    kelTarvoCpuId id;
    kel_get_cpu_ident(&id);
    expectSignature(id);
    EXPECT_EQ(id.type, 1);
}

TEST(RkCpuid, OwnIdentTakesTheTypeField) {
    ScriptedCpu cpu;
    cpu.at(1)[CpuidEAX] = kSignature;
    kelTarvoCpuId id;
    ownGetCpuIdent(&id);
    expectSignature(id);
    EXPECT_EQ(id.type, 2);
}

using Ident = void (*)(kelTarvoCpuId *);
static const Ident kIdents[] = {kel_get_cpu_ident, ownGetCpuIdent};

TEST(RkCpuid, EachFlagOfTheRecordFollowsItsOwnBit) {
    const struct {
        unsigned int leaf;
        int reg, bit;
        int kelTarvoCpuId::*field;
    } rows[] = {
        {1, CpuidEDX, 23, &kelTarvoCpuId::mmx},           {1, CpuidEDX, 25, &kelTarvoCpuId::sse},
        {1, CpuidEDX, 26, &kelTarvoCpuId::sse2},          {1, CpuidECX, 0, &kelTarvoCpuId::sse3},
        {1, CpuidECX, 9, &kelTarvoCpuId::ssse3},          {1, CpuidECX, 19, &kelTarvoCpuId::sse41},
        {1, CpuidECX, 20, &kelTarvoCpuId::sse42},         {1, CpuidECX, 22, &kelTarvoCpuId::movbe},
        {1, CpuidECX, 28, &kelTarvoCpuId::avx},           {1, CpuidECX, 27, &kelTarvoCpuId::osxsave},
        {0x80000001u, CpuidEDX, 29, &kelTarvoCpuId::x64},
    };
    for (Ident ident : kIdents) {
        for (auto const &set : rows) {
            ScriptedCpu cpu;
            cpu.setBit(set.leaf, set.reg, set.bit);
            kelTarvoCpuId id;
            ident(&id);
            for (auto const &row : rows) EXPECT_EQ(id.*row.field, &row == &set) << set.bit << row.bit;
        }
    }
}

TEST(RkCpuid, RecordKeepsFeatureAndCacheWords) {
    for (Ident ident : kIdents) {
        ScriptedCpu cpu;
        cpu.at(1)[CpuidEDX] = 0x12345678u;
        cpu.set(2, 0, {0x03020101u, 0xeeeeeeeeu, 0xeeeeeeeeu, 0x0c040841u});
        kelTarvoCpuId id;
        ident(&id);
        EXPECT_EQ(id.features, 0x12345678);
        EXPECT_EQ(id.cache1, 0x03020101);
        EXPECT_EQ(id.cache2, 0x0c040841);
    }
}

TEST(RkCpuid, OwnIdentLeavesAnAbsentCacheLeafAlone) {
    ScriptedCpu cpu("GenuineTarvo", 1);
    cpu.set(2, 0, {ScriptedCpu::poison, 0, 0, ScriptedCpu::poison});
    kelTarvoCpuId id;
    ownGetCpuIdent(&id);
    EXPECT_EQ(id.cache1, 0);
    EXPECT_EQ(id.cache2, 0);
    EXPECT_EQ(cpu.asked(2), 0);
    kel_get_cpu_ident(&id);
    EXPECT_EQ(cpu.asked(2), 1);
}

TEST(RkCpuid, LogicalProcessorsNeedTheFlagAndMoreThanOne) {
    for (Ident ident : kIdents) {
        ScriptedCpu cpu;
        kelTarvoCpuId id;
        cpu.at(1) = {0, 2u << 16, 0, 0};
        ident(&id);
        EXPECT_EQ(id.logicalProcessors, 0);
        cpu.at(1) = {0, 1u << 16, 0, 1u << 28};
        ident(&id);
        EXPECT_EQ(id.logicalProcessors, 0);
        cpu.at(1) = {0, 2u << 16, 0, 1u << 28};
        ident(&id);
        EXPECT_EQ(id.logicalProcessors, 1);
    }
}

TEST(RkCpuid, SixtyFourBitFlagNeedsItsLeaf) {
    for (Ident ident : kIdents) {
        ScriptedCpu cpu("GenuineTarvo", 4, 0x80000000u);
        cpu.setBit(0x80000001u, CpuidEDX, 29);
        kelTarvoCpuId id;
        ident(&id);
        EXPECT_EQ(id.x64, 0);
    }
}

TEST(RkCpuid, RecordCountsTheCoresOnDie) {
    for (Ident ident : kIdents) {
        ScriptedCpu cpu;
        cpu.cores(6);
        kelTarvoCpuId id;
        ident(&id);
        EXPECT_EQ(id.coresOnDie, 6);
    }
}

// ---- single questions ---------------------------------------------------------

TEST(RkCpuid, EachQuestionFollowsItsOwnBit) {
    const struct {
        int (*ask)();
        int reg, bit;
    } rows[] = {
        {kel_has_rdtsc, CpuidEDX, 4},           {kel_is_mmx_extension, CpuidEDX, 23},
        {kel_is_ssx_extension, CpuidEDX, 25},   {kel_is_simd2_extension, CpuidEDX, 26},
        {kel_is_simd3_extension, CpuidECX, 0},  {kel_is_ssse3_extension, CpuidECX, 9},
        {kel_is_sse41_extension, CpuidECX, 19}, {kel_is_sse42_extension, CpuidECX, 20},
        {kel_is_movbe, CpuidECX, 22},
    };
    for (auto const &set : rows) {
        ScriptedCpu cpu;
        cpu.setBit(1, set.reg, set.bit);
        for (auto const &row : rows) EXPECT_EQ(row.ask(), &row == &set) << set.bit << " " << row.bit;
    }
}

TEST(RkCpuid, HyperThreadingNeedsTheFlagAndMoreThanOneProcessor) {
    ScriptedCpu cpu;
    cpu.at(1) = {0, 8u << 16, 0, 0};
    EXPECT_FALSE(kel_is_htt_extension());
    cpu.at(1) = {0, 1u << 16, 0, 1u << 28};
    EXPECT_FALSE(kel_is_htt_extension());
    cpu.at(1) = {0, 0xffu << 24 | 2u << 16, 0, 1u << 28};
    EXPECT_TRUE(kel_is_htt_extension());
}

TEST(RkCpuid, AvxNeedsBothBitsAndBothKeptStates) {
    ScriptedCpu cpu;
    const unsigned int osxsave = 1u << 27, avx = 1u << 28;
    cpu.enabledStates(7);
    cpu.at(1)[CpuidECX] = avx;
    EXPECT_FALSE(kel_is_avx_extension());
    cpu.at(1)[CpuidECX] = osxsave;
    EXPECT_FALSE(kel_is_avx_extension());
    cpu.at(1)[CpuidECX] = osxsave | avx;
    EXPECT_TRUE(kel_is_avx_extension());
    for (unsigned int states : {0u, 1u, 2u, 3u, 4u, 5u}) {
        cpu.enabledStates(states);
        EXPECT_FALSE(kel_is_avx_extension()) << states;
    }
    cpu.enabledStates(6);
    EXPECT_TRUE(kel_is_avx_extension());
}

static unsigned int failIfAsked() {
    ADD_FAILURE() << "XGETBV faults on a processor without OSXSAVE";
    return 0;
}

TEST(RkCpuid, KeptStatesAreNotAskedForWithoutTheFlag) {
    ScriptedCpu cpu;
    xgetbvSource = failIfAsked;
    EXPECT_FALSE(kel_is_avx_extension());
}

TEST(RkCpuid, VendorIsComparedWhole) {
    EXPECT_TRUE((ScriptedCpu("GenuineTarvo"), kel_is_GenuineTarvo()));
    EXPECT_FALSE((ScriptedCpu("GenuineTarvX"), kel_is_GenuineTarvo()));
    EXPECT_FALSE((ScriptedCpu("genuineTarvo"), kel_is_GenuineTarvo()));
    EXPECT_FALSE((ScriptedCpu(""), kel_is_GenuineTarvo()));
}

TEST(RkCpuid, CoresOnDieAreOneBelowLeaf4) {
    ScriptedCpu cpu("GenuineTarvo", 3);
    cpu.set(4, 0, {ScriptedCpu::poison, 0, 0, 0});
    EXPECT_EQ(kel_get_cores_on_die(), 1);
}

TEST(RkCpuid, CoresOnDieAreTheTopSixBitsPlusOne) {
    ScriptedCpu cpu;
    cpu.at(4)[CpuidEAX] = 0x03ffffffu;
    EXPECT_EQ(kel_get_cores_on_die(), 1);
    cpu.at(4)[CpuidEAX] = 0xffffffffu;
    EXPECT_EQ(kel_get_cores_on_die(), 64);
}

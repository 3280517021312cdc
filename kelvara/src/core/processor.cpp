// processor.cpp - what CPUID tells of the processor, and what a processor code needs of it.

#include "processor.h"

#include <cpuid.h>

namespace kelvara {

CpuRegisters cpuid(unsigned leaf, unsigned subleaf) {
    CpuRegisters r = {0, 0, 0, 0};
    if (!__get_cpuid_count(leaf, subleaf, &r.eax, &r.ebx, &r.ecx, &r.edx)) return {0, 0, 0, 0};
    return r;
}

static bool bits(unsigned word, unsigned mask) {
    return (word & mask) == mask;
}

// XGETBV tells whether the system saves the 256-bit registers.
static bool systemSavesAvx(unsigned ecx) {
    const unsigned osxsave = 1u << 27;
    if (!bits(ecx, osxsave)) return false;
    unsigned low, high;
    __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return bits(low, 6);
}

static unsigned avxFeatures(unsigned ecx) {
    const unsigned avx = 1u << 28, aes = 1u << 25, fma = 1u << 12, f16c = 1u << 29;
    const unsigned avx2Bmi = 1u << 3 | 1u << 5 | 1u << 8, lzcnt = 1u << 5;
    if (!bits(ecx, avx) || !systemSavesAvx(ecx)) return 0;
    const bool rest =
        bits(ecx, fma | f16c) && bits(cpuid(7, 0).ebx, avx2Bmi) && bits(cpuid(0x80000001u, 0).ecx, lzcnt);
    return HasAVX | (bits(ecx, aes) ? HasAES : 0u) | (rest ? HasV3Rest : 0u);
}

unsigned cpuFeatures() {
    static const struct {
        bool inEcx;
        int bit;
        Feature feature;
    } table[] = {{false, 25, HasSSE},  {false, 26, HasSSE2}, {true, 0, HasSSE3},  {true, 9, HasSSSE3},
                 {true, 19, HasSSE41}, {true, 20, HasSSE42}, {true, 22, HasMOVBE}};
    const CpuRegisters leaf1 = cpuid(1, 0);
    unsigned features = avxFeatures(leaf1.ecx);
    for (const auto &row : table) {
        if ((row.inEcx ? leaf1.ecx : leaf1.edx) >> row.bit & 1) features |= row.feature;
    }
    const unsigned popcntCx16 = 1u << 23 | 1u << 13, lahf = 1;
    if (bits(leaf1.ecx, popcntCx16) && bits(cpuid(0x80000001u, 0).ecx, lahf)) features |= HasV2Rest;
    return features;
}

static const unsigned needSSE2 = HasSSE | HasSSE2, needSSE3 = needSSE2 | HasSSE3,
                      needSSSE3 = needSSE3 | HasSSSE3, needSSE41 = needSSSE3 | HasSSE41,
                      needSSE42 = needSSE41 | HasSSE42, needAVX = needSSE42 | HasAVX,
                      needLevel2 = needSSE42 | HasV2Rest,
                      needLevel3 = needLevel2 | needAVX | HasMOVBE | HasV3Rest;

KelStatus judgeLevel(unsigned features, int level) {
    const unsigned needs = level < 2 ? 0 : level == 2 ? needLevel2 : needLevel3;
    return bits(features, needs) ? kelStsNoErr : kelStsCpuMismatch;
}

KelStatus judgeCode(unsigned features, KelCpuType code) {
    static const struct {
        int first, last;
        unsigned needs;
    } table[] = {{0, 11, 0},          {16, 17, needSSE2},  {32, 32, needSSE3},
                 {33, 34, needSSSE3}, {35, 35, needSSE41}, {36, 36, needSSSE3 | HasMOVBE},
                 {37, 38, needSSE42}, {64, 64, HasSSE},    {65, 65, needSSE2},
                 {66, 66, needSSE3},  {67, 67, needSSSE3}, {68, 68, needSSE41},
                 {69, 69, needSSE42}, {70, 70, needAVX},   {71, 71, needAVX | HasAES},
                 {96, 96, needSSE2}};
    for (const auto &row : table) {
        if (code < row.first || code > row.last) continue;
        return bits(features, row.needs) ? kelStsNoErr : kelStsCpuMismatch;
    }
    return kelStsRangeErr;
}

KelCpuType bestCode(unsigned features) {
    for (KelCpuType code = 71; code >= 64; --code) {
        if (judgeCode(features, code) == kelStsNoErr) return code;
    }
    return 0;
}

long long cacheBytes(CpuRegisters subleaf) {
    const unsigned type = subleaf.eax & 31, instructions = 2;
    if (type == 0 || type == instructions) return 0;
    const long long ways = (subleaf.ebx >> 22) + 1LL, partitions = (subleaf.ebx >> 12 & 1023) + 1LL,
                    line = (subleaf.ebx & 4095) + 1LL, sets = subleaf.ecx + 1LL;
    return ways * partitions * line * sets;
}

} // namespace kelvara

// processor.h - what CPUID tells of the processor, and what a processor code needs of it.

#ifndef KELVARA_PROCESSOR_H
#define KELVARA_PROCESSOR_H

#include "keltypes.h"

namespace kelvara {

struct CpuRegisters {
    unsigned eax, ebx, ecx, edx;
};

// The answer of CPUID; all 0 for a leaf that the processor does not have.
CpuRegisters cpuid(unsigned leaf, unsigned subleaf);

// Instruction sets that a build or a processor code can ask for. A bit is set only if the system saves the
// registers too.
enum Feature : unsigned {
    HasSSE = 1u << 0,
    HasSSE2 = 1u << 1,
    HasSSE3 = 1u << 2,
    HasSSSE3 = 1u << 3,
    HasSSE41 = 1u << 4,
    HasSSE42 = 1u << 5,
    HasMOVBE = 1u << 6,
    HasAVX = 1u << 7,
    HasAES = 1u << 8,
    HasV2Rest = 1u << 9,  // CMPXCHG16B, LAHF, POPCNT
    HasV3Rest = 1u << 10, // AVX2, BMI1, BMI2, F16C, FMA, LZCNT
};

// The Feature bits of this machine.
unsigned cpuFeatures();

// kelStsNoErr if a machine with these features runs code built for x86-64 level 1, 2 or 3, else
// kelStsCpuMismatch.
KelStatus judgeLevel(unsigned features, int level);

// The same for a processor code; kelStsRangeErr for an unknown one.
KelStatus judgeCode(unsigned features, KelCpuType code);

// The best instruction set code for these features.
KelCpuType bestCode(unsigned features);

// The size in bytes of the cache that a subleaf of the cache leaf describes; 0 for an instruction cache or
// none.
long long cacheBytes(CpuRegisters subleaf);

} // namespace kelvara

#endif

// kelcore.cpp - the exported core functions.

#include "kelcore.h"
#include "processor.h"

#include <algorithm>
#include <climits>

using namespace kelvara;

static const KelCpuType notChosen = -1;
static KelCpuType codeInForce = notChosen;

KelStatus kelInit(void) {
    const unsigned features = cpuFeatures();
    codeInForce = bestCode(features);
    return judgeLevel(features, KELVARA_ARCH_LEVEL);
}

KelStatus kelInitCpu(KelCpuType cpu) {
    const KelStatus status = judgeCode(cpuFeatures(), cpu);
    if (status == kelStsNoErr) codeInForce = cpu;
    return status;
}

KelCpuType kelGetCpuType(void) {
    return codeInForce == notChosen ? bestCode(cpuFeatures()) : codeInForce;
}

KelStatus kelSetNumThreads(int numThreads) {
    return numThreads < 1 ? kelStsRangeErr : kelStsNoErr;
}

int kelGetNumCoresOnDie(void) {
    return static_cast<int>(cpuid(4, 0).eax >> 26) + 1;
}

static long long largestCache(unsigned leaf) {
    long long largest = 0;
    for (unsigned i = 0; i < 32; ++i) {
        const CpuRegisters subleaf = cpuid(leaf, i);
        if ((subleaf.eax & 31) == 0) break;
        largest = std::max(largest, cacheBytes(subleaf));
    }
    return largest;
}

KelStatus kelGetMaxCacheSizeB(int *pSizeByte) {
    if (!pSizeByte) return kelStsNullPtrErr;
    // Makers describe the caches in the same form under either of two leaves.
    const long long bytes = std::max(largestCache(4), largestCache(0x8000001Du));
    if (bytes == 0) return kelStsNotSupportedErr;
    *pSizeByte = static_cast<int>(std::min<long long>(bytes, INT_MAX));
    return kelStsNoErr;
}

const char *kelGetStatusString(KelStatus status) {
    switch (status) {
        case kelStsNoErr:
            return "no error";
        case kelStsUnknownErr:
            return "unknown error";
        case kelStsNullPtrErr:
            return "a pointer is null";
        case kelStsSizeErr:
            return "a size is out of range";
        case kelStsStepErr:
            return "a step is too small";
        case kelStsRangeErr:
            return "an argument is out of range";
        case kelStsMemAllocErr:
            return "not enough memory";
        case kelStsContextErr:
            return "a state structure does not fit the function";
        case kelStsBitStreamErr:
            return "the bit stream is damaged";
        case kelStsNotSupportedErr:
            return "not supported on this machine";
        case kelStsNoOperation:
            return "nothing was done";
        case kelStsOverflow:
            return "a result was cut to its range";
        case kelStsCpuMismatch:
            return "the processor lacks instructions that are asked for";
    }
    return status < 0 ? "an error without a name" : "a warning without a name";
}

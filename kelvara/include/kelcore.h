// kelcore.h - the core of the Kelvara library: processor, threads and status texts (libkelcore.so).

#ifndef KELCORE_H
#define KELCORE_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// clang-format off

// Processor codes: 0 code without special instructions; 64 SSE, 65 SSE2, 66 SSE3, 67 SSSE3, 68 SSE4.1, 69
// SSE4.2, 70 AVX, 71 AVX and AES, 96 the 64-bit baseline; 1 to 11, 16, 17 and 32 to 38 are processor models.
//
// kelInit puts the best instruction set code of this machine in force. kelStsCpuMismatch warns that the
// library was built for a higher level than this machine has: its functions may then stop with an illegal
// instruction. libkelcore itself runs on any x86-64 machine.
// kelInitCpu puts `cpu` in force: kelStsRangeErr for a code that is not in the list above, kelStsCpuMismatch
// for one whose instructions this machine lacks; in both cases the code in force stays. The results of no
// function depend on it.
// kelGetCpuType returns the code in force; before any call of the two it is what kelInit would choose.
KELAPI KelStatus kelInit(void);
KELAPI KelStatus kelInitCpu(KelCpuType cpu);
KELAPI KelCpuType kelGetCpuType(void);

// The number of threads that a function may use, 1 or more, else kelStsRangeErr. This library uses one
// whatever it is.
KELAPI KelStatus kelSetNumThreads(int numThreads);

// The number of cores on the processor's die as CPUID tells it; 1 where it does not.
KELAPI int kelGetNumCoresOnDie(void);

// Stores the size in bytes of the largest data or unified cache. kelStsNullPtrErr for a null pointer;
// kelStsNotSupportedErr, and nothing stored, where CPUID does not describe the caches.
KELAPI KelStatus kelGetMaxCacheSizeB(int *pSizeByte);

// A constant text for a status; never null.
KELAPI const char *kelGetStatusString(KelStatus status);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif

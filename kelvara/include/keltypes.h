// keltypes.h - plain types of the Kelvara library and how its functions are declared.

#ifndef KELTYPES_H
#define KELTYPES_H

#include <stdint.h>

// A program that must start with any build of the library, also with one that lacks some functions,
// defines KEL_WEAK_IMPORT: a missing function then has a null address.
#if defined(KEL_WEAK_IMPORT)
#define KELAPI __attribute__((weak))
#else
#define KELAPI __attribute__((visibility("default")))
#endif

typedef uint8_t Kel8u;
typedef uint16_t Kel16u;
typedef uint32_t Kel32u;
typedef uint64_t Kel64u;
typedef int8_t Kel8s;
typedef int16_t Kel16s;
typedef int32_t Kel32s;
typedef int64_t Kel64s;
typedef float Kel32f;
typedef double Kel64f;

typedef struct {
    Kel8s re, im;
} Kel8sc;
typedef struct {
    Kel16s re, im;
} Kel16sc;
typedef struct {
    Kel16u re, im;
} Kel16uc;
typedef struct {
    Kel32s re, im;
} Kel32sc;
typedef struct {
    Kel64s re, im;
} Kel64sc;
typedef struct {
    Kel32f re, im;
} Kel32fc;
typedef struct {
    Kel64f re, im;
} Kel64fc;

// The harness declares these two for itself where it is built without the library.
#ifndef KEL_PLAIN_TYPES_DEFINED
#define KEL_PLAIN_TYPES_DEFINED

struct KeliSize {
    int width;
    int height;
};

// What a library says of itself; the texts live as long as the library.
struct KelLibraryVersion {
    int major;
    int minor;
    int build;
    const char *Name;
    const char *Version;
    const char *BuildDate;
};

#endif

typedef struct KeliSize KeliSize;
typedef struct KelLibraryVersion KelLibraryVersion;
typedef struct {
    int x, y;
} KeliPoint;
typedef struct {
    int x, y, width, height;
} KeliRect;

typedef int KelCpuType; // a processor code, such as 69 for an SSE4.2 processor

// 0 is success, errors are negative, warnings positive.
typedef int KelStatus;
enum {
    kelStsNoErr = 0,
    kelStsUnknownErr = -1,
    kelStsNullPtrErr = -2,
    kelStsSizeErr = -3,
    kelStsStepErr = -4,
    kelStsRangeErr = -5,
    kelStsMemAllocErr = -6,
    kelStsContextErr = -7,
    kelStsBitStreamErr = -8,
    kelStsNotSupportedErr = -9,
    kelStsNoOperation = 1,
    kelStsOverflow = 2,
    kelStsCpuMismatch = 3
};

#endif

// rkcpu.h - the processor in the library's terms: its code, names, caches, features.

#ifndef RAKOVA_RKCPU_H
#define RAKOVA_RKCPU_H

#include "rkcpuid.h"

// One feature bit.
struct FeatureFlag {
    unsigned int leaf;
    int reg;
    int bit;
    char const *name;
    char const *description;
};
extern const FeatureFlag FeatureFlags[];
extern const int FeatureFlagsCount;

FeatureFlag const *findFlagInfo(rkString name); // null for a name that is not in the table
bool isFeatureFlag(rkString name);
void printFeatureFlag(rkString name);
void printFeatureFlag(rkString name, unsigned char value);

// The library's processor codes.
class rkCpuType {
public:
    static int cpuType(rkString label); // -1 for an unknown label
    static rkString cpuName(int code);
    static rkString cpuLabel(int code);
    static rkString optimizedList(); // a line for each processor, for the help of -T
};
rkString formatLabel(rkString text); // padded to 9 characters
void updateCpuName(int code, rkString &name);

// The harness's own versions of the library's core functions.
int rk_kelGetCpuType();
int rk_kelGetNumCoresOnDie();
int rk_kelGetMaxCacheSizeB(int *size); // status 0 and the size, or 36, 37: not known

struct CacheDescriptor {
    int descriptor;
    int size; // bytes
};
extern const CacheDescriptor tableCache[];         // by falling size, ends with a row of 0
int ownGetCacheSize(CacheDescriptor const *table); // by the descriptors of leaf 2, -1 if there are none
int getCacheSizeB(unsigned int i);                 // cache i of leaf 4, -1 if there is none
unsigned int getMaxCacheSizeB();
unsigned int rkGetMaxCacheSizeB();

// Text of the report's processor line: name, MHz, number of processors. Measures the frequency if need be.
rkString cpuInfo();

// Texts of the libraries, and the library's own list of its functions; null until the first entry.
extern rkList<rkString> *g_pLibInfoList;
extern rkList<rkString> *g_pLibFuncList;
bool rkRegLibInfo(rkString text); // false if the text is there already
bool rkRegLibFunc(rkString name); // false for an empty name

#endif

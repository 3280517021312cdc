// rkcpu.cpp - the processor in the library's terms.

#include "rkcpu.h"

#include <limits.h>
#include <string.h>

#include "rkhost.h"
#include "rkregister.h"
#include "rkstream.h"
#include "rkticker.h"

// ---- feature flags ------------------------------------------------------------

FeatureFlag const *findFlagInfo(rkString name) {
    for (int i = 0; i < FeatureFlagsCount; ++i)
        if (name == FeatureFlags[i].name) return &FeatureFlags[i];
    return nullptr;
}

static unsigned char readFlag(FeatureFlag const &flag) {
    return CPUID(flag.leaf).getBit(flag.reg, flag.bit);
}

bool isFeatureFlag(rkString name) {
    FeatureFlag const *flag = findFlagInfo(name);
    return flag && readFlag(*flag);
}

void printFeatureFlag(rkString name) {
    FeatureFlag const *flag = findFlagInfo(name);
    printFeatureFlag(name, flag ? readFlag(*flag) : 0);
}

void printFeatureFlag(rkString name, unsigned char value) {
    const int width = 11;
    FeatureFlag const *flag = findFlagInfo(name);
    if (name.length() < width) name.resize(width, ' ');
    g_ostrm << name;
    if (flag) {
        g_ostrm << static_cast<int>(value) << " - " << flag->description << "\n";
    } else {
        g_ostrm << "? - unknown flag???????\n";
    }
}

// ---- processor code -----------------------------------------------------------

static int displayModel(kelTarvoCpuId const &id) {
    bool extended = id.family == 6 || id.family == 15;
    return id.model + (extended ? id.extModel * 16 : 0);
}

// 0: none of the maker's processors that have a code of their own.
static int codeOfModel(kelTarvoCpuId const &id, bool avx) {
    if (id.family == 15 && id.extFamily == 0) return 66;
    if (id.family != 6) return 0;
    switch (displayModel(id)) {
        case 15:
            return !id.ssse3 ? 0 : id.coresOnDie < 3 ? 33 : 34;
        case 23:
            return id.sse41 ? 35 : 0;
        case 26:
            return avx ? 70 : id.sse42 ? 37 : 0;
        case 28:
            return id.ssse3 && id.movbe ? 36 : 0;
    }
    return 0;
}

static int codeOfInstructions(kelTarvoCpuId const &id, bool avx) {
    const struct {
        int present;
        int code;
    } best[] = {{avx, 70},     {id.sse42, 69}, {id.sse41, 68}, {id.ssse3, 67},
                {id.sse3, 66}, {id.sse2, 65},  {id.sse, 64},   {id.x64, 96}};
    for (auto const &set : best)
        if (set.present) return set.code;
    return 0;
}

int rk_kelGetCpuType() {
    if (!kel_has_cpuid()) return 0;
    kelTarvoCpuId id;
    kel_get_cpu_ident(&id);
    // AVX code faults where the operating system does not keep the registers.
    bool avx = kel_is_avx_extension() != 0;
    int code = kel_is_GenuineTarvo() ? codeOfModel(id, avx) : 0;
    return code ? code : codeOfInstructions(id, avx);
}

int rk_kelGetNumCoresOnDie() {
    return kel_has_cpuid() ? kel_get_cores_on_die() : 1;
}

// ---- caches -------------------------------------------------------------------

static const int kMaxCaches = 32; // of leaf 4; a processor that tells of more is broken

enum { CacheKnown = 0, CacheAskFirst = 1, CacheNoAnswer = 36, CacheNotFound = 37 };

// The answer of rk_kelGetMaxCacheSizeB, found at its first call.
int ownStatus = CacheAskFirst;
int cacheSize = 0;

// The bytes of the registers of leaf 2 that hold descriptors; the result is the number of the last one.
static int storeDescriptors(unsigned int const *regs, unsigned char *bytes) {
    int stored = 0, count = 0;
    for (int r = CpuidEAX; r <= CpuidEDX; ++r) {
        if (regs[r] == 0 || regs[r] >> 31) continue;
        memcpy(bytes + stored, &regs[r], 4);
        stored += 4;
        count += r == CpuidEAX ? 3 : 4; // the low byte of EAX is no descriptor
    }
    return count;
}

int ownGetCacheSize(CacheDescriptor const *table) {
    unsigned int regs[4];
    ownGetReg(regs, 2, 0);
    if ((regs[CpuidEAX] & 0xff) != 1) return -1;
    unsigned char bytes[17] = {0};
    int count = storeDescriptors(regs, bytes);
    for (; count > 0 && table->descriptor; ++table)
        for (int n = count; n >= 1; --n)
            if (bytes[n] == table->descriptor) return table->size;
    return -1;
}

// What does not fit an int is cut off; all fields at their largest would be 2 to the power 64.
static int sizeOfCache(CPUID const &leaf) {
    unsigned long long sets = leaf.reg[CpuidECX] + 1ull;
    unsigned long long set = leaf.getBits(CpuidEBX, 11, 0) + 1;
    set *= leaf.getBits(CpuidEBX, 21, 12) + 1;
    set *= leaf.getBits(CpuidEBX, 31, 22) + 1;
    return sets > INT_MAX / set ? INT_MAX : static_cast<int>(sets * set);
}

static unsigned int cacheType(CPUID const &leaf) {
    return leaf.getBits(CpuidEAX, 4, 0);
}

static int largestDataCache() {
    const unsigned int instructionCache = 2;
    int largest = 0;
    for (int i = 0; i < kMaxCaches; ++i) {
        CPUID leaf(4, i);
        if (cacheType(leaf) == 0) break;
        if (cacheType(leaf) == instructionCache) continue;
        int size = sizeOfCache(leaf);
        if (size > largest) largest = size;
    }
    return largest;
}

static void askCacheSize() {
    if (!kel_has_cpuid() || largestFunction() <= 1 || !kel_is_GenuineTarvo()) {
        ownStatus = CacheNoAnswer;
        return;
    }
    int size = largestFunction() < 4 ? ownGetCacheSize(tableCache) : largestDataCache();
    ownStatus = size > 0 ? CacheKnown : CacheNotFound;
    cacheSize = size > 0 ? size : 0;
}

int rk_kelGetMaxCacheSizeB(int *size) {
    if (ownStatus == CacheAskFirst) askCacheSize();
    if (size) *size = cacheSize;
    return ownStatus;
}

int getCacheSizeB(unsigned int i) {
    CPUID leaf(4, i);
    return cacheType(leaf) == 0 ? -1 : sizeOfCache(leaf);
}

unsigned int getMaxCacheSizeB() {
    int largest = 0;
    for (int i = 0; i < kMaxCaches; ++i) {
        int size = getCacheSizeB(i);
        if (size == -1) break;
        if (size > largest) largest = size;
    }
    return static_cast<unsigned int>(largest);
}

unsigned int rkGetMaxCacheSizeB() {
    int size = 0;
    if (rk_kelGetMaxCacheSizeB(&size) == CacheKnown && size > 0) return static_cast<unsigned int>(size);
    return getMaxCacheSizeB();
}

// ---- texts of the report ------------------------------------------------------

rkString cpuInfo() {
    int n = rkGetNumOfProcessors();
    rkString text = rkCpuType::cpuName(kel_GetCpuType ? kel_GetCpuType() : rk_kelGetCpuType());
    text << ", " << rkCpuTicker::getFreq() << " MHz, " << n << " processor" << (n > 1 ? "s" : "");
    return text;
}

rkList<rkString> *g_pLibInfoList = nullptr;
rkList<rkString> *g_pLibFuncList = nullptr;

bool rkRegLibInfo(rkString text) {
    if (!g_pLibInfoList) g_pLibInfoList = new rkList<rkString>;
    for (rkString const &known : *g_pLibInfoList)
        if (known == text) return false;
    g_pLibInfoList->push_back(text);
    return true;
}

bool rkRegLibFunc(rkString name) {
    if (name.length() == 0) return false;
    if (!g_pLibFuncList) g_pLibFuncList = new rkList<rkString>;
    g_pLibFuncList->push_back(name);
    return true;
}

// rkcputables.cpp - feature bits, cache descriptors, and the library's processor codes with their names.

#include "rkcpu.h"

#include <string.h>

// ---- feature bits -------------------------------------------------------------

static const unsigned int kExtended = 0x80000001u;

const FeatureFlag FeatureFlags[] = {
    {1, CpuidEDX, 0, "FPU", "Floating point unit on the chip"},
    {1, CpuidEDX, 1, "VME", "Enhancements of virtual 8086 mode"},
    {1, CpuidEDX, 2, "DE", "Debugging extensions, breakpoints on I/O"},
    {1, CpuidEDX, 3, "PSE", "Large pages"},
    {1, CpuidEDX, 4, "TSC", "Time-stamp counter"},
    {1, CpuidEDX, 5, "MSR", "Model specific registers"},
    {1, CpuidEDX, 6, "PAE", "Physical addresses above 32 bits"},
    {1, CpuidEDX, 7, "MCE", "Machine check exception"},
    {1, CpuidEDX, 8, "CX8", "CMPXCHG8B instruction"},
    {1, CpuidEDX, 9, "APIC", "Local interrupt controller"},
    {1, CpuidEDX, 11, "SEP", "SYSENTER and SYSEXIT instructions"},
    {1, CpuidEDX, 12, "MTRR", "Memory type range registers"},
    {1, CpuidEDX, 13, "PGE", "Global pages"},
    {1, CpuidEDX, 14, "MCA", "Machine check registers"},
    {1, CpuidEDX, 15, "CMOV", "Conditional move instructions"},
    {1, CpuidEDX, 16, "PAT", "Page attribute table"},
    {1, CpuidEDX, 17, "PSE-36", "Large pages with 36-bit addresses"},
    {1, CpuidEDX, 18, "PSN", "Processor serial number"},
    {1, CpuidEDX, 19, "CLFSH", "CLFLUSH instruction"},
    {1, CpuidEDX, 21, "DS", "Debug store in memory"},
    {1, CpuidEDX, 22, "ACPI", "Thermal monitor and clock control by software"},
    {1, CpuidEDX, 23, "MMX", "MMX instructions"},
    {1, CpuidEDX, 24, "FXSR", "FXSAVE and FXRSTOR instructions"},
    {1, CpuidEDX, 25, "SSE", "SSE instructions"},
    {1, CpuidEDX, 26, "SSE2", "SSE2 instructions"},
    {1, CpuidEDX, 27, "SS", "Self snoop of the caches"},
    {1, CpuidEDX, 28, "HTT", "Several logical processors in a package"},
    {1, CpuidEDX, 29, "TM", "Thermal monitor with automatic clock control"},
    {1, CpuidEDX, 31, "PBE", "Pending break wakes the processor"},

    {1, CpuidECX, 0, "SSE3", "SSE3 instructions"},
    {1, CpuidECX, 1, "PCLMULQDQ", "Multiplication without carries"},
    {1, CpuidECX, 2, "DTES64", "Debug store with 64-bit addresses"},
    {1, CpuidECX, 3, "MONITOR", "MONITOR and MWAIT instructions"},
    {1, CpuidECX, 4, "DS-CPL", "Debug store by privilege level"},
    {1, CpuidECX, 5, "VMX", "Virtual machine instructions"},
    {1, CpuidECX, 6, "SMX", "Safer mode instructions"},
    {1, CpuidECX, 7, "PSTATE", "Frequency and voltage set by software"},
    {1, CpuidECX, 8, "TM2", "Thermal monitor with frequency control"},
    {1, CpuidECX, 9, "SSSE3", "SSSE3 instructions"},
    {1, CpuidECX, 10, "CNXT-ID", "Context mode of the first-level cache"},
    {1, CpuidECX, 11, "SDBG", "Debug register of the chip"},
    {1, CpuidECX, 12, "FMA", "Fused multiply and add instructions"},
    {1, CpuidECX, 13, "CX16", "CMPXCHG16B instruction"},
    {1, CpuidECX, 14, "xTPR", "Task priority messages can be switched off"},
    {1, CpuidECX, 15, "PDCM", "Performance capabilities register"},
    {1, CpuidECX, 17, "PCID", "Process-context identifiers"},
    {1, CpuidECX, 18, "DCA", "Devices prefetch into the cache"},
    {1, CpuidECX, 19, "SSE4.1", "SSE4.1 instructions"},
    {1, CpuidECX, 20, "SSE4.2", "SSE4.2 instructions"},
    {1, CpuidECX, 21, "x2APIC", "Interrupt controller with 32-bit identifiers"},
    {1, CpuidECX, 22, "MOVBE", "Move with byte swap"},
    {1, CpuidECX, 23, "POPCNT", "Count of set bits"},
    {1, CpuidECX, 24, "TSC-DL", "Timer deadline by the time-stamp counter"},
    {1, CpuidECX, 25, "AES", "AES instructions"},
    {1, CpuidECX, 26, "XSAVE", "XSAVE and XRSTOR instructions"},
    {1, CpuidECX, 27, "OSXSAVE", "The operating system uses XSAVE"},
    {1, CpuidECX, 28, "AVX", "AVX instructions"},
    {1, CpuidECX, 29, "F16C", "Conversion of 16-bit floating point"},
    {1, CpuidECX, 30, "RDRAND", "Random numbers"},
    {1, CpuidECX, 31, "HYPERVISOR", "Runs in a virtual machine"},

    {kExtended, CpuidECX, 0, "LAHF", "LAHF and SAHF in 64-bit mode"},
    {kExtended, CpuidECX, 5, "LZCNT", "Count of leading zero bits"},
    {kExtended, CpuidECX, 8, "PREFETCHW", "Prefetch for writing"},
    {kExtended, CpuidEDX, 11, "SYSCALL", "SYSCALL and SYSRET in 64-bit mode"},
    {kExtended, CpuidEDX, 20, "NX", "Pages can be closed to execution"},
    {kExtended, CpuidEDX, 26, "PAGE1GB", "Pages of 1 GB"},
    {kExtended, CpuidEDX, 27, "RDTSCP", "RDTSCP instruction"},
    {kExtended, CpuidEDX, 29, "Tarvo(R)64", "64-bit architecture"},
};
const int FeatureFlagsCount = sizeof(FeatureFlags) / sizeof(FeatureFlags[0]);

// ---- cache descriptors --------------------------------------------------------

static const int KB = 1024;
static const int MB = 1024 * KB;

// Second and third level caches. The first match of a walk is the largest cache.
const CacheDescriptor tableCache[] = {
    {0xEC, 24 * MB},  {0xEB, 18 * MB},   {0x4D, 16 * MB},  {0x4C, 12 * MB},
    {0xEA, 12 * MB},  {0x47, 8 * MB},    {0x4B, 8 * MB},   {0xE4, 8 * MB},
    {0x4A, 6 * MB},   {0x4E, 6 * MB},    {0xDE, 6 * MB},   {0x29, 4 * MB},
    {0x46, 4 * MB},   {0x49, 4 * MB},    {0xD8, 4 * MB},   {0xE3, 4 * MB},
    {0x48, 3 * MB},   {0xDD, 3 * MB},    {0x25, 2 * MB},   {0x45, 2 * MB},
    {0x7D, 2 * MB},   {0x85, 2 * MB},    {0xD2, 2 * MB},   {0xD7, 2 * MB},
    {0xE2, 2 * MB},   {0xDC, 1536 * KB}, {0x23, 1 * MB},   {0x24, 1 * MB},
    {0x44, 1 * MB},   {0x78, 1 * MB},    {0x7C, 1 * MB},   {0x84, 1 * MB},
    {0x87, 1 * MB},   {0xD1, 1 * MB},    {0xD6, 1 * MB},   {0x22, 512 * KB},
    {0x3E, 512 * KB}, {0x43, 512 * KB},  {0x7B, 512 * KB}, {0x7F, 512 * KB},
    {0x80, 512 * KB}, {0x83, 512 * KB},  {0x86, 512 * KB}, {0xD0, 512 * KB},
    {0x3D, 384 * KB}, {0x21, 256 * KB},  {0x3C, 256 * KB}, {0x42, 256 * KB},
    {0x7A, 256 * KB}, {0x82, 256 * KB},  {0x3A, 192 * KB}, {0x39, 128 * KB},
    {0x3B, 128 * KB}, {0x79, 128 * KB},  {0x41, 128 * KB}, {0, 0},
};

// ---- processor codes ----------------------------------------------------------

struct CpuTypeRow {
    int code;
    char const *label;
    char const *name;
};

// The row of a processor that is not on sale yet is named by this mark, and is offered to nobody.
static const char futureMark[] = "GenuineTarvo";

static const CpuTypeRow cpuTypeArray[] = {
    {0, "Unknown", "Unknown processor"},
    {1, "T1", "Tarvo Brook processor"},
    {2, "T1M", "Tarvo Brook processor with MMX"},
    {3, "T2", "Tarvo Creek processor"},
    {4, "T2M", "Tarvo Creek processor with MMX"},
    {5, "T2S", "Tarvo Creek processor with SSE"},
    {6, "T3", "Tarvo Harbor processor"},
    {7, "T3L", "Tarvo Harbor processor for portables"},
    {8, "T3X", "Tarvo Harbor processor with SSE3"},
    {9, "V1", "Tarvo Voyage processor"},
    {10, "V2", "Tarvo Voyage II processor"},
    {11, "T3D", "Tarvo Harbor processor with two cores"},
    {16, "B1", "Tarvo Beacon processor for servers"},
    {17, "B2", "Tarvo Beacon processor for servers with 64 bits"},
    {32, "M1", "Tarvo Meridian processor"},
    {33, "M2D", "Tarvo Meridian processor with two cores and SSSE3"},
    {34, "M2Q", "Tarvo Meridian processor with four cores and SSSE3"},
    {35, "MER2", "Tarvo Meridian 2 processor"},
    {36, "PEB", "Tarvo Pebble processor"},
    {37, "SUM", "Tarvo Summit processor"},
    {38, "NEXT", "GenuineTarvo future processor"},
    {64, "SSE", "processor with SSE instructions"},
    {65, "SSE2", "processor with SSE2 instructions"},
    {66, "SSE3", "processor with SSE3 instructions"},
    {67, "SSSE3", "processor with SSSE3 instructions"},
    {68, "SSE41", "processor with SSE4.1 instructions"},
    {69, "SSE42", "processor with SSE4.2 instructions"},
    {70, "AVX", "processor with AVX instructions"},
    {71, "AES", "processor with AES instructions"},
    {96, "X8664", "processor with 64-bit instructions"},
};

static CpuTypeRow const *findCode(int code) {
    for (CpuTypeRow const &row : cpuTypeArray)
        if (row.code == code) return &row;
    return nullptr;
}

int rkCpuType::cpuType(rkString label) {
    for (CpuTypeRow const &row : cpuTypeArray)
        if (label == row.label) return row.code;
    return -1;
}

rkString rkCpuType::cpuName(int code) {
    CpuTypeRow const *row = findCode(code);
    if (!row) return "Unknown processor";
    rkString name = row->name;
    updateCpuName(code, name);
    return name;
}

rkString rkCpuType::cpuLabel(int code) {
    CpuTypeRow const *row = findCode(code);
    return row ? row->label : "Undefined";
}

static bool isFuture(CpuTypeRow const &row) {
    return strncmp(row.name, futureMark, strlen(futureMark)) == 0;
}

rkString rkCpuType::optimizedList() {
    rkString list;
    for (CpuTypeRow const &row : cpuTypeArray) {
        if (row.code == 0) {
            list << formatLabel(row.label) << ": non optimized code\n";
        } else if (!isFuture(row)) {
            list << formatLabel(row.label) << ": optimized for " << row.name << "\n";
        }
    }
    return list;
}

rkString formatLabel(rkString text) {
    const int width = 9;
    if (text.length() < width) text.resize(width, ' ');
    return text;
}

// The processors of code 35 were made with two cores and with four.
void updateCpuName(int code, rkString &name) {
    const rkString mark = " 2 ";
    int at = name.find(mark, 0);
    if (code != 35 || at < 0) return;
    int cores = rk_kelGetNumCoresOnDie();
    rkString word = cores == 2 ? "Dual " : cores == 4 ? "Quad " : "";
    int behind = at + mark.length();
    name = name.substr(0, behind) + word + name.substr(behind);
}

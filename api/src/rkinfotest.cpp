// rkinfotest.cpp - the report on the processor, the operating system and the computer.

#include "rkinfotest.h"

#include <stdio.h>

#include "rkcpu.h"
#include "rkhost.h"

// ---- lines --------------------------------------------------------------------

static rkString line(char fill) {
    rkString text;
    text.resize(79, fill);
    return text + "\n";
}

static const rkString starLine = line('*');
static const rkString doubleLine = line('=');
static const rkString singleLine = line('-');

static rkString formatted(char const *format, unsigned int value) {
    char text[32];
    snprintf(text, sizeof(text), format, value);
    return text;
}

static rkString hex8(unsigned int value) {
    return formatted("0x%08X", value);
}

static rkString hex2(unsigned int value) {
    return formatted("0x%02X", value);
}

// A number in front of a description.
static rkString field4(unsigned int value) {
    return formatted("%-4u", value);
}

static void print(char const *label, rkString value, char const *description = "") {
    g_ostrm << label << value << description << "\n";
}

static void print(char const *label, unsigned int value, char const *description = "") {
    print(label, formatted("%u", value), description);
}

static void printSection(char const *title) {
    g_ostrm << "\n" << doubleLine << "    " << title << "\n";
}

// ---- processor ----------------------------------------------------------------

void __rkTarvoCpuTest::printInformation() {
    printHeader();
    printSignature();
    printFlags();
    printMultiThreading();
    printCacheParms();
    printL2Features();
    g_ostrm << starLine;
}

static char *putBytes(char *to, CPUID const &leaf, int r) {
    for (int i = 0; i < 4; ++i) *to++ = leaf.getByte(r, i);
    return to;
}

static rkString vendorText() {
    char text[13] = {0};
    CPUID leaf(0);
    putBytes(putBytes(putBytes(text, leaf, CpuidEBX), leaf, CpuidEDX), leaf, CpuidECX);
    return text;
}

static rkString brandText() {
    const unsigned int first = 0x80000002u, last = 0x80000004u;
    char text[49] = {0};
    if (!validFunction(last)) return "";
    char *to = text;
    for (unsigned int f = first; f <= last; ++f) {
        CPUID leaf(f);
        for (int r = CpuidEAX; r <= CpuidEDX; ++r) to = putBytes(to, leaf, r);
    }
    return text;
}

void __rkTarvoCpuTest::printHeader() {
    rkString vendor = vendorText(), brand = brandText();
    g_ostrm << starLine << "    Tarvo(R) Processor Identification\n"
            << "    Got by CPUID Instruction Functions\n";
    if (vendor != "GenuineTarvo") {
        g_ostrm << "\n    ATTENTION! It is not Genuine Tarvo processor.\n"
                << "    Information below may be inadequate.\n";
    }
    g_ostrm << starLine << "\n" << MsgResult;
    print("Largest Standard Function ", hex8(largestFunction()));
    print("Largest Extended Function ", hex8(largestExFunction()));
    g_ostrm << EndMessage;
    print("Vendor-ID      ", vendor);
    if (brand.length() > 0) print("Brand String   ", brand);
}

void __rkTarvoCpuTest::printSignature() {
    if (!validFunction(1)) return;
    CPUID leaf(1);
    unsigned int brandId = leaf.getBits(CpuidEBX, 7, 0);
    printSection("Processor Identification Signature\n");
    print("Family   ", leaf.getBits(CpuidEAX, 27, 20) + leaf.getBits(CpuidEAX, 11, 8));
    print("Model    ", leaf.getBits(CpuidEAX, 19, 16) * 16 + leaf.getBits(CpuidEAX, 7, 4));
    print("Stepping ", leaf.getBits(CpuidEAX, 3, 0));
    print("Type     ", leaf.getBits(CpuidEAX, 13, 12));
    if (brandId != 0) print("Brand ID ", hex2(brandId));
}

void __rkTarvoCpuTest::printFlags() {
    static char const *const selected[] = {"MMX",    "SSE",    "SSE2",   "SSE3",      "SSSE3",
                                           "SSE4.1", "SSE4.2", "x2APIC", "Tarvo(R)64"};
    if (!validFunction(1)) return;
    printSection("Selected Feature Flags\n");
    for (char const *name : selected) printFeatureFlag(name);
}

void __rkTarvoCpuTest::printMultiThreading() {
    if (!validFunction(1)) return;
    unsigned int logical = CPUID(1).getBits(CpuidEBX, 23, 16);
    unsigned int cores = validFunction(4) ? CPUID(4).getBits(CpuidEAX, 31, 26) + 1 : 0;
    bool several = isFeatureFlag("HTT") && logical >= 2;
    printSection("Multi Threading Features\n");
    g_ostrm << "Several logical processors or cores are " << (several ? "supported\n" : "not supported\n");
    print("Logical Processors ", logical, " - Number of logical processors per physical package");
    if (cores) print("Cores per Package  ", cores, " - Maximum number of processor cores per package");
}

// ---- caches -------------------------------------------------------------------

void __rkTarvoCpuTest::printCacheParms() {
    const unsigned int mostCaches = 32; // a processor that tells of more is broken
    if (!validFunction(4)) return;
    printSection("Deterministic Cache Parameters");
    for (unsigned int i = 0; i < mostCaches && printCacheParms(i);) ++i;
}

static rkString cacheTypeName(unsigned int type) {
    static char const *const names[] = {"", "Data Cache", "Instruction Cache", "Unified Cache"};
    if (type < 4) return names[type];
    return formatted("Cache Type %u", type);
}

static void printCacheMarks(CPUID const &leaf) {
    if (leaf.getBit(CpuidEAX, 9)) g_ostrm << "Fully Associative cache\n";
    if (leaf.getBit(CpuidEAX, 8)) g_ostrm << "Self Initializing cache level\n";
    if (leaf.getBit(CpuidEDX, 1)) g_ostrm << "Cache is inclusive to lower cache levels\n";
    if (leaf.getBit(CpuidEDX, 0)) g_ostrm << "WBINVD/INVD behavior on lower level caches\n";
}

// The product in bytes may need 65 bits.
static long long sizeKb(unsigned long long sets, unsigned long long setBytes) {
    return static_cast<long long>(sets * (setBytes / 1024) + sets * (setBytes % 1024) / 1024);
}

bool __rkTarvoCpuTest::printCacheParms(unsigned int i) {
    CPUID leaf(4, i);
    unsigned int type = leaf.getBits(CpuidEAX, 4, 0);
    if (type == 0) return false;
    unsigned int line = leaf.getBits(CpuidEBX, 11, 0) + 1;
    unsigned int partitions = leaf.getBits(CpuidEBX, 21, 12) + 1;
    unsigned int ways = leaf.getBits(CpuidEBX, 31, 22) + 1;
    unsigned long long sets = leaf.reg[CpuidECX] + 1ull;
    rkString setsText, sizeText;
    setsText << static_cast<long long>(sets);
    sizeText << sizeKb(sets, 1ull * line * partitions * ways);

    g_ostrm << "\n" << singleLine << "    " << cacheTypeName(type) << "\n\n";
    print("Cache Level       ", leaf.getBits(CpuidEAX, 7, 5));
    print("Cache Size Kb     ", sizeText);
    print("Threads Sharing   ", field4(leaf.getBits(CpuidEAX, 25, 14) + 1),
          " - Maximum number of threads sharing this cache");
    print("Number of Sets    ", setsText);
    print("Line Size         ", field4(line), " - System coherency line size");
    print("Line Partitions   ", field4(partitions), " - Physical line partitions");
    print("Associativity     ", field4(ways), " - Ways of associativity");
    printCacheMarks(leaf);
    return true;
}

static rkString associativityText(unsigned int code) {
    switch (code) {
        case 0:
            return "Disabled";
        case 1:
            return "Direct mapped";
        case 2:
            return "2-Way";
        case 4:
            return "4-Way";
        case 6:
            return "8-Way";
        case 8:
            return "16-Way";
        case 15:
            return "Fully associative";
    }
    return rkString("code ") + hex2(code);
}

void __rkTarvoCpuTest::printL2Features() {
    const unsigned int f = 0x80000006u;
    if (!validFunction(f)) return;
    CPUID leaf(f);
    printSection("Extended L2 Cache Features\n");
    print("L2 Cache Size Kb       ", leaf.getBits(CpuidECX, 31, 16));
    print("L2 Cache Line Size     ", leaf.getBits(CpuidECX, 7, 0));
    print("L2 Cache Associativity ", associativityText(leaf.getBits(CpuidECX, 15, 12)));
}

// ---- operating system and computer --------------------------------------------

char const *__rkOSTest::s_os = " OS       : ";

void __rkOSTest::printInformation() {
    g_ostrm << s_os << rkOS().text() << "\n";
}

char const *__rkHostTest::shost = " Computer : ";

void __rkHostTest::printInformation() {
    g_ostrm << shost << rkHost().text() << "\n";
}

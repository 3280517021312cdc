// rkcpuid.cpp - the CPUID instruction.

#include "rkcpuid.h"

#include <string.h>

static const unsigned int kExtended = 0x80000000u;

// ---- the instruction ----------------------------------------------------------

static void askProcessor(unsigned int *regs, int leaf, int subleaf) {
    __asm__ volatile("cpuid"
                     : "=a"(regs[CpuidEAX]), "=b"(regs[CpuidEBX]), "=c"(regs[CpuidECX]), "=d"(regs[CpuidEDX])
                     : "0"(leaf), "1"(0), "2"(subleaf), "3"(0));
}

// Written as bytes, since an older assembler knows XGETBV only with its option.
static unsigned int askEnabledStates() {
    unsigned int low, high;
    __asm__ volatile(".byte 0x0f, 0x01, 0xd0" : "=a"(low), "=d"(high) : "c"(0));
    return low;
}

void (*cpuidSource)(unsigned int *regs, int leaf, int subleaf) = askProcessor;
unsigned int (*xgetbvSource)() = askEnabledStates;

void ownGetReg(unsigned int *regs, int leaf, int subleaf) {
    cpuidSource(regs, leaf, subleaf);
}

static unsigned int readReg(unsigned int leaf, int reg) {
    unsigned int regs[4];
    ownGetReg(regs, static_cast<int>(leaf), 0);
    return regs[reg];
}

static int readFlag(int reg, int bit) {
    return readReg(1, reg) >> bit & 1;
}

// ---- leaves -------------------------------------------------------------------

unsigned int largestFunction() {
    return readReg(0, CpuidEAX);
}

unsigned int largestExFunction() {
    return readReg(kExtended, CpuidEAX);
}

bool validFunction(unsigned int f) {
    if (f == 0 || f == kExtended) return true;
    return f <= (f < kExtended ? largestFunction() : largestExFunction());
}

CPUID::CPUID(unsigned int leaf, unsigned int subleaf) : reg{0, 0, 0, 0} {
    if (validFunction(leaf)) ownGetReg(reg, static_cast<int>(leaf), static_cast<int>(subleaf));
}

// REQUIRES: 0 <= lo <= hi <= 31; other numbers are taken modulo their range.
unsigned int CPUID::getBits(int r, int hi, int lo) const {
    unsigned int mask = 0xffffffffu >> ((31 - (hi - lo)) & 31);
    return reg[r & 3] >> (lo & 31) & mask;
}

unsigned char CPUID::getBit(int r, int bit) const {
    return static_cast<unsigned char>(getBits(r, bit, bit));
}

char CPUID::getByte(int r, int i) const {
    unsigned char byte = static_cast<unsigned char>(reg[r & 3] >> ((i & 3) * 8));
    return static_cast<char>(byte);
}

// ---- the identification record ------------------------------------------------

static int bits(unsigned int word, int hi, int lo) {
    return static_cast<int>(word >> lo & ((1u << (hi - lo + 1)) - 1));
}

static int has64Bit() {
    return largestExFunction() > kExtended ? bits(readReg(kExtended + 1, CpuidEDX), 29, 29) : 0;
}

static void setFeatures(kelTarvoCpuId *id, unsigned int const *regs) {
    unsigned int c = regs[CpuidECX], d = regs[CpuidEDX];
    id->features = static_cast<int>(d);
    id->mmx = bits(d, 23, 23);
    id->sse = bits(d, 25, 25);
    id->sse2 = bits(d, 26, 26);
    id->logicalProcessors = bits(d, 28, 28) && bits(regs[CpuidEBX], 23, 16) > 1;
    id->sse3 = bits(c, 0, 0);
    id->x64 = has64Bit();
    id->ssse3 = bits(c, 9, 9);
    id->coresOnDie = kel_get_cores_on_die();
    id->sse41 = bits(c, 19, 19);
    id->sse42 = bits(c, 20, 20);
    id->movbe = bits(c, 22, 22);
    id->avx = bits(c, 28, 28);
    id->osxsave = bits(c, 27, 27);
}

static void setSignature(kelTarvoCpuId *id, unsigned int eax) {
    id->family = bits(eax, 11, 8);
    id->stepping = bits(eax, 3, 0);
    id->model = bits(eax, 7, 4);
    id->extFamily = bits(eax, 27, 20);
    id->extModel = bits(eax, 19, 16);
}

static void setCacheWords(kelTarvoCpuId *id) {
    unsigned int regs[4];
    ownGetReg(regs, 2, 0);
    id->cache1 = static_cast<int>(regs[CpuidEAX]);
    id->cache2 = static_cast<int>(regs[CpuidEDX]);
}

void kel_get_cpu_ident(kelTarvoCpuId *id) {
    unsigned int regs[4];
    *id = kelTarvoCpuId();
    ownGetReg(regs, 1, 0);
    setSignature(id, regs[CpuidEAX]);
    // One bit lower than the type field lies: users compare the record with older ones.
    id->type = bits(regs[CpuidEAX], 12, 11);
    setFeatures(id, regs);
    setCacheWords(id);
}

void ownGetCpuIdent(kelTarvoCpuId *id) {
    unsigned int regs[4];
    *id = kelTarvoCpuId();
    ownGetReg(regs, 1, 0);
    setSignature(id, regs[CpuidEAX]);
    id->type = bits(regs[CpuidEAX], 13, 12);
    setFeatures(id, regs);
    if (largestFunction() > 1) setCacheWords(id);
}

// ---- single questions ---------------------------------------------------------

int kel_has_cpuid() {
    return 1;
}
int kel_max_cpuid_input() {
    return static_cast<int>(largestFunction());
}
int kel_is_GenuineTarvo() {
    unsigned int regs[4];
    ownGetReg(regs, 0, 0);
    unsigned int signature[3] = {regs[CpuidEBX], regs[CpuidEDX], regs[CpuidECX]};
    return memcmp(signature, "GenuineTarvo", sizeof(signature)) == 0;
}
int kel_has_rdtsc() {
    return readFlag(CpuidEDX, 4);
}
int kel_is_mmx_extension() {
    return readFlag(CpuidEDX, 23);
}
int kel_is_ssx_extension() {
    return readFlag(CpuidEDX, 25);
}
int kel_is_simd2_extension() {
    return readFlag(CpuidEDX, 26);
}
int kel_is_simd3_extension() {
    return readFlag(CpuidECX, 0);
}
int kel_is_ssse3_extension() {
    return readFlag(CpuidECX, 9);
}
int kel_is_sse41_extension() {
    return readFlag(CpuidECX, 19);
}
int kel_is_sse42_extension() {
    return readFlag(CpuidECX, 20);
}
int kel_is_movbe() {
    return readFlag(CpuidECX, 22);
}
int kel_is_htt_extension() {
    return readFlag(CpuidEDX, 28) && bits(readReg(1, CpuidEBX), 23, 16) > 1;
}
int kel_is_avx_extension() {
    if (!readFlag(CpuidECX, 27) || !readFlag(CpuidECX, 28)) return 0;
    const unsigned int sseAndAvxStates = 6;
    return (xgetbvSource() & sseAndAvxStates) == sseAndAvxStates;
}
int kel_get_cores_on_die() {
    return largestFunction() < 4 ? 1 : static_cast<int>(readReg(4, CpuidEAX) >> 26) + 1;
}

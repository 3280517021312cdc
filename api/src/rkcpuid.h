// rkcpuid.h - what the CPUID instruction tells of the processor.

#ifndef RAKOVA_RKCPUID_H
#define RAKOVA_RKCPUID_H

#include "rkstring.h"

// The four registers of one CPUID instruction, numbered 0 to 3: EAX, EBX, ECX, EDX. Zero for an absent leaf.
class CPUID {
public:
    explicit CPUID(unsigned int leaf, unsigned int subleaf = 0);
    unsigned int getBits(int reg, int hi, int lo) const;
    unsigned char getBit(int reg, int bit) const;
    char getByte(int reg, int i) const; // byte i from the low end
    unsigned int reg[4];
};

enum CpuidRegister { CpuidEAX, CpuidEBX, CpuidECX, CpuidEDX };

// The identification record.
struct kelTarvoCpuId {
    int family, stepping, model, type;
    int features;       // leaf 1 EDX
    int cache1, cache2; // leaf 2 EAX, EDX
    int mmx;
    int unused;
    int sse, sse2;
    int logicalProcessors; // more than one
    int sse3;
    int x64;
    int ssse3;
    int coresOnDie;
    int sse41, sse42;
    int extFamily, extModel;
    int movbe, avx, osxsave;
};

// What answers: the instructions themselves, but in tests that script a processor. xgetbvSource gives the low
// word of the register states that the operating system keeps.
extern void (*cpuidSource)(unsigned int *regs, int leaf, int subleaf);
extern unsigned int (*xgetbvSource)();

void ownGetReg(unsigned int *regs, int leaf, int subleaf);
unsigned int largestFunction();
unsigned int largestExFunction();
bool validFunction(unsigned int f);

void kel_get_cpu_ident(kelTarvoCpuId *id);
void ownGetCpuIdent(kelTarvoCpuId *id);

int kel_has_cpuid();
int kel_max_cpuid_input();
int kel_is_GenuineTarvo();
int kel_has_rdtsc();
int kel_is_mmx_extension();
int kel_is_ssx_extension();
int kel_is_simd2_extension();
int kel_is_simd3_extension();
int kel_is_ssse3_extension();
int kel_is_sse41_extension();
int kel_is_sse42_extension();
int kel_is_movbe();
int kel_is_htt_extension();
int kel_is_avx_extension(); // and the operating system keeps the registers
int kel_get_cores_on_die();

#endif

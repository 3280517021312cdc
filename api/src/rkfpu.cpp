// rkfpu.cpp - the registers of the floating-point and SIMD units.

#include "rkfpu.h"

#include <stdint.h>
#include <string.h>

static const unsigned int ssxRounding = 24576;
static const unsigned int ssxDenormalsAreZero = 64;
static const unsigned int ssxWritable = 65535; // the processor faults on any other bit

static unsigned int masked(unsigned int old, unsigned int value, unsigned int mask) {
    return (old & ~mask) | (value & mask);
}

// ---- x87 ----------------------------------------------------------------------

unsigned int rk_get_cw_fpu() {
    uint16_t cw;
    __asm__ volatile("fnstcw %0" : "=m"(cw));
    return cw;
}

unsigned int rk_get_sw_fpu() {
    uint16_t sw;
    __asm__ volatile("fnstsw %0" : "=a"(sw));
    return sw;
}

void kel_set_cw_fpu(unsigned int value) {
    uint16_t cw = static_cast<uint16_t>(value);
    __asm__ volatile("fldcw %0" : : "m"(cw));
}

unsigned int rk_set_cw_fpu(unsigned int value, unsigned int mask) {
    unsigned int old = rk_get_cw_fpu();
    kel_set_cw_fpu(masked(old, value, mask));
    return old;
}

unsigned int rk_clear_fpu() {
    unsigned int old = rk_get_sw_fpu();
    __asm__ volatile("fnclex");
    return old;
}

unsigned int kel_set_rcpc_fpu(unsigned int value, unsigned int mask) {
    unsigned int old = rk_get_cw_fpu();
    if ((old & mask) != value) rk_set_cw_fpu(value, mask);
    return old;
}

// ---- SIMD ---------------------------------------------------------------------

unsigned int rk_get_ssx() {
    uint32_t ssx;
    __asm__ volatile("stmxcsr %0" : "=m"(ssx));
    return ssx;
}

void kel_set_cw_ssx(unsigned int value) {
    uint32_t ssx = value & ssxWritable;
    __asm__ volatile("ldmxcsr %0" : : "m"(ssx));
}

unsigned int rk_set_ssx(unsigned int value, unsigned int mask) {
    unsigned int old = rk_get_ssx();
    kel_set_cw_ssx(masked(old, value, mask));
    return old;
}

unsigned int kel_clear_ssx() {
    unsigned int old = rk_get_ssx();
    kel_set_cw_ssx(8064);
    return old;
}

unsigned int kel_set_rc_ssx(unsigned int rc) {
    unsigned int old = rk_get_ssx();
    if ((old & ssxRounding) != rc) rk_set_ssx(rc, ssxRounding);
    return old;
}

bool kel_tst_daz_ssx() {
    struct alignas(16) SaveArea {
        unsigned char bytes[512];
    } area = {};
    __asm__ volatile("fxsave %0" : "+m"(area));
    uint32_t mask;
    memcpy(&mask, area.bytes + 28, sizeof mask);
    return (mask & ssxDenormalsAreZero) != 0;
}

void rk_destroy_ssx() {
    __asm__ volatile(
        "pcmpeqd %%xmm0, %%xmm0\n\t"
        "pcmpeqd %%xmm1, %%xmm1\n\t"
        "pcmpeqd %%xmm2, %%xmm2\n\t"
        "pcmpeqd %%xmm3, %%xmm3\n\t"
        "pcmpeqd %%xmm4, %%xmm4\n\t"
        "pcmpeqd %%xmm5, %%xmm5\n\t"
        "pcmpeqd %%xmm6, %%xmm6\n\t"
        "pcmpeqd %%xmm7, %%xmm7\n\t"
        "pcmpeqd %%xmm8, %%xmm8\n\t"
        "pcmpeqd %%xmm9, %%xmm9\n\t"
        "pcmpeqd %%xmm10, %%xmm10\n\t"
        "pcmpeqd %%xmm11, %%xmm11\n\t"
        "pcmpeqd %%xmm12, %%xmm12\n\t"
        "pcmpeqd %%xmm13, %%xmm13\n\t"
        "pcmpeqd %%xmm14, %%xmm14\n\t"
        "pcmpeqd %%xmm15, %%xmm15"
        :
        :
        : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8", "xmm9", "xmm10", "xmm11",
          "xmm12", "xmm13", "xmm14", "xmm15");
}

// ---- doubles ------------------------------------------------------------------

static uint64_t bitsOf(double x) {
    uint64_t bits;
    memcpy(&bits, &x, sizeof bits);
    return bits;
}

static bool isExponentFull(uint64_t bits) {
    return ((bits >> 52) & 0x7FF) == 0x7FF;
}

int kel_isnan(double x) {
    uint64_t bits = bitsOf(x);
    return isExponentFull(bits) && (bits & 0xFFFFFFFFFFFFFull) != 0 ? 1 : 0;
}

int kel_finite(double x) {
    return isExponentFull(bitsOf(x)) ? 0 : 1;
}

// ---- portable word ------------------------------------------------------------

namespace {

struct BitPair {
    unsigned int portable;
    unsigned int x87;
};

// Masks in the control word, flags in the status word.
const BitPair exceptionBits[] = {{16, 1}, {8, 4}, {4, 8}, {2, 16}, {1, 32}, {524288, 2}};

const unsigned int x87Precision = 768, x87Rounding = 3072, x87Infinity = 4096;
const unsigned int x87Precision53 = 512;
const unsigned int portablePrecision = 196608, portablePrecision53 = 65536;
const unsigned int portableRounding = 768, portableInfinity = 262144;

} // namespace

static unsigned int exceptionsToPortable(unsigned int word) {
    unsigned int portable = 0;
    for (BitPair const &bit : exceptionBits) {
        if (word & bit.x87) portable |= bit.portable;
    }
    return portable;
}

// A precision of 24 bits reads as none at all, so that a later write makes it 64.
static unsigned int controlToPortable(unsigned int cw) {
    unsigned int portable = exceptionsToPortable(cw) | (cw & x87Rounding) >> 2;
    if ((cw & x87Precision) == x87Precision53) portable |= portablePrecision53;
    if (cw & x87Infinity) portable |= portableInfinity;
    return portable;
}

static unsigned int precisionFromPortable(unsigned int portable) {
    unsigned int field = portable & portablePrecision;
    if (field == 0) return x87Precision;
    return field == portablePrecision53 ? x87Precision53 : 0;
}

static unsigned int controlFromPortable(unsigned int portable) {
    unsigned int cw = (portable & portableRounding) << 2 | precisionFromPortable(portable);
    for (BitPair const &bit : exceptionBits) {
        if (portable & bit.portable) cw |= bit.x87;
    }
    if (portable & portableInfinity) cw |= x87Infinity;
    return cw;
}

unsigned int kel_control87(unsigned int value, unsigned int mask) {
    unsigned int portable = masked(controlToPortable(rk_get_cw_fpu()), value, mask);
    kel_set_cw_fpu(controlFromPortable(portable));
    return portable;
}

unsigned int kel_status87() {
    return exceptionsToPortable(rk_get_sw_fpu());
}

unsigned int kel_clear87() {
    return exceptionsToPortable(rk_clear_fpu());
}

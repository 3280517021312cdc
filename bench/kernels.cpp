// kernels.cpp - chains of dependent multiplications.

#include "kernels.h"

static unsigned int link = 3;

template <int Multiplications>
static inline __attribute__((always_inline)) int multiplyChain() {
    unsigned int x = link;
#pragma GCC unroll 10
    for (int i = 0; i < Multiplications; ++i) {
        x *= 2654435761u;
        __asm__ volatile("" : "+r"(x)); // no two of them become one
    }
    link = x;
    return 0;
}

int emptyKernel() {
    return 0;
}
int kernel20() {
    return multiplyChain<8>();
}
int kernel200() {
    return multiplyChain<90>();
}
int kernel2000() {
    return multiplyChain<900>();
}

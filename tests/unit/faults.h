// faults.h - hardware faults, made by the processor itself.

#ifndef RAKOVA_TESTS_FAULTS_H
#define RAKOVA_TESTS_FAULTS_H

inline void writeWild() {
    int volatile *volatile p = reinterpret_cast<int *>(16);
    *p = 1;
}

inline void illegal() {
    asm volatile("ud2");
}

inline void divideInteger() {
    int low = 1, high = 0;
    asm volatile("idivl %2" : "+a"(low), "+d"(high) : "r"(0) : "cc");
}

inline void divideX87() {
    unsigned short control;
    asm volatile("fnstcw %0" : "=m"(control));
    control &= ~4; // division by zero traps
    asm volatile("fldcw %0\n\tfld1\n\tfldz\n\tfdivrp\n\tfwait" : : "m"(control) : "st", "st(1)");
}

inline bool volatile g_deeper = true;

__attribute__((noinline)) inline int recurse(int depth) {
    char volatile frame[1024];
    frame[depth % 1024] = 1;
    return g_deeper ? recurse(depth + 1) + frame[depth % 1024] : 0;
}

inline int volatile g_depth;

inline void overflowStack() {
    g_depth = recurse(0);
}

#endif

// kmreg.h - registration of the tests of primitives.

#ifndef RAKOVA_KMREG_H
#define RAKOVA_KMREG_H

#include "rkregister.h"

#include "kmmeasure.h"

// KM_REG(CSAD, keliSAD16x16_8u32s, arguments...); expands to
//
//     static KM_INLINE int tcall_keliSAD16x16_8u32s() { return keliSAD16x16_8u32s(arguments...); }
//     static rkResult tim_keliSAD16x16_8u32s_loop(int count, long long *clocks) {
//         return kmTimLoop<tcall_keliSAD16x16_8u32s, kmNoReset>(count, clocks, "keliSAD16x16_8u32s");
//     }
//     static rkResult tim_keliSAD16x16_8u32s_stat(int *count, long long *clocks) { ... kmTimStat ... }
//     [[maybe_unused]] static const bool reg_keliSAD16x16_8u32s = ...rkRegTest(new CSAD(...))...;
//
// The arguments are statics of the file, read afresh in each call. The functions of the library are weak
// symbols: one that this build of it lacks has a null address, and its test is left out.
#define KM_REG(test, function, ...)                                                            \
    static KM_INLINE int tcall_##function() {                                                  \
        return function(__VA_ARGS__);                                                          \
    }                                                                                          \
    KM_MEASURE(function, kmNoReset)                                                            \
    [[maybe_unused]] static const bool reg_##function =                                        \
        kmRegTest<test>(function != nullptr, tcall_##function, nullptr, tim_##function##_loop, \
                        tim_##function##_stat, #function, __FILE__, #test "//KM_REG")

// For functions that consume their input: reset is a statement that arms it again. In the manual loop it
// stands inside the interval, in the statistic loop outside.
#define KM_REG_I(test, function, reset, ...)                                                            \
    static KM_INLINE int tcall_##function() {                                                           \
        return function(__VA_ARGS__);                                                                   \
    }                                                                                                   \
    static KM_INLINE int tinit_##function() {                                                           \
        reset;                                                                                          \
        return 0;                                                                                       \
    }                                                                                                   \
    KM_MEASURE(function, tinit_##function)                                                              \
    [[maybe_unused]] static const bool reg_##function =                                                 \
        kmRegTest<test>(function != nullptr, tcall_##function, tinit_##function, tim_##function##_loop, \
                        tim_##function##_stat, #function, __FILE__, #test "//KM_REG_I")

// The two measuring functions of a library function.
#define KM_MEASURE(function, reset)                                          \
    static rkResult tim_##function##_loop(int count, long long *clocks) {    \
        return kmTimLoop<tcall_##function, reset>(count, clocks, #function); \
    }                                                                        \
    static rkResult tim_##function##_stat(int *count, long long *clocks) {   \
        return kmTimStat<tcall_##function, reset>(count, clocks, #function); \
    }

template <class Test>
int kmRegTest(bool present, rkFuncCall call, rkFuncInit init, rkFuncLoop loop, rkFuncStat stat,
              char const *name, char const *file, char const *info) {
    if (!present) return rkRegMissing(name);
    return rkRegTest(new Test(call, init, loop, stat, name, file, info));
}

#endif

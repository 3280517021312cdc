// spy.h - stands in for functions of the library, to see with which arguments a suite calls them.

#ifndef RAKOVA_TESTS_SPY_H
#define RAKOVA_TESTS_SPY_H

#include <dlfcn.h>

#include <string>
#include <type_traits>
#include <vector>

#include "keltypes.h"

// A test program that defines a function of the library gets the suites' calls, and hands them on:
//
//     KelStatus keliSATD4x4_8u32s_C1R(const Kel8u *src, int ss, const Kel8u *ref, int rs, Kel32s *dst) {
//         return SPY(keliSATD4x4_8u32s_C1R, src, ss, ref, rs, dst);
//     }

struct SeenArgument {
    long long value;  // of an integer
    void const *data; // a pointer
    int block;        // which tracked block it points into; -1: none
    int room;         // bytes from there to the end of that block
};

struct SeenCall {
    std::string function;
    std::vector<SeenArgument> args;
};

extern std::vector<SeenCall> g_seen;

// Bytes from p to the end of the tracked block that holds it; 0 if none does.
int roomAt(void const *p, int *block = nullptr);

template <class T>
SeenArgument seen(T value) {
    SeenArgument argument = {0, nullptr, -1, 0};
    if constexpr (std::is_pointer_v<T>) {
        argument.data = value;
        argument.room = roomAt(value, &argument.block);
    } else {
        argument.value = static_cast<long long>(value);
    }
    return argument;
}

// The library's function behind the spy, called. The first argument only tells the type.
template <class... Params, class... Args>
KelStatus callLibrary(KelStatus (*)(Params...), char const *name, Args... args) {
    auto function = reinterpret_cast<KelStatus (*)(Params...)>(dlsym(RTLD_NEXT, name));
    return function ? function(args...) : kelStsNotSupportedErr;
}

template <class Function, class... Args>
KelStatus spy(Function *function, char const *name, Args... args) {
    g_seen.push_back({name, {seen(args)...}});
    return callLibrary(function, name, args...);
}

#define SPY(function, ...) spy(&function, #function, __VA_ARGS__)

#endif

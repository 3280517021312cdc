// vectors.h - what tests ask of vectors and images: elements, views, blocks; and a model of random data.

#ifndef RAKOVA_TESTS_VECTORS_H
#define RAKOVA_TESTS_VECTORS_H

#include <cmath>
#include <cstdint>
#include <vector>

#include "km.h"

using Values = std::vector<double>;

const kmType allTypes[] = {8,   16,   32,   64,   264,  272,  288,  320, 544,
                           576, 1040, 1288, 1296, 1312, 1344, 1568, 1600};

inline Values values(kmVector const &v) {
    Values all;
    for (int i = 0; i < v.m_len; ++i) all.push_back(v.getIndex(i));
    return all;
}

// Both parts of complex elements, one after the other.
inline Values parts(kmVector const &v) {
    Values all;
    for (int i = 0; i < v.m_len; ++i) {
        double re = 0.0, im = 0.0;
        v.getIndex(i, re, im);
        all.push_back(re);
        all.push_back(im);
    }
    return all;
}

// All 17 views in their order.
inline std::vector<void *> views(kmVector const &v) {
    return {v.p8u,   v.p16u,  v.p32u,  v.p64u,  v.p8s,  v.p16s, v.p32s,  v.p64s, v.p8sc,
            v.p16sc, v.p16uc, v.p32sc, v.p64sc, v.p32f, v.p64f, v.p32fc, v.p64fc};
}

inline std::vector<void *> planeViews(kmImage const &i) {
    return {i.planes8u,   i.planes16u, i.planes32u, i.planes64u,  i.planes8s,   i.planes16s,
            i.planes32s,  i.planes64s, i.planes8sc, i.planes16sc, i.planes16uc, i.planes32sc,
            i.planes64sc, i.planes32f, i.planes64f, i.planes32fc, i.planes64fc};
}

// ---- blocks ------------------------------------------------------------------

inline unsigned offset(void *p) {
    return reinterpret_cast<uintptr_t>(p) % 64;
}

inline int blockSize(void *block, void **owner = nullptr) {
    int size = -1;
    return rkMallocInfo(block, &size, owner) ? size : -1;
}

inline int countBlocks() {
    int n = 0;
    for (void *p = rkMallocFirst(nullptr, nullptr); p; p = rkMallocNext(nullptr, nullptr)) ++n;
    return n;
}

// ---- random data -------------------------------------------------------------

// A straightforward model of the generator in 64-bit arithmetic: all numbers of a seed.
inline std::vector<int32_t> modelRandom(uint32_t seed, int n, uint32_t *seedAfter = nullptr) {
    const uint64_t mask = 0xffffffffu;
    uint64_t x0 = seed, x1 = (x0 * 69069 + 1013904243) & mask, x2 = (x1 * 69069 + 1013904243) & mask;
    uint64_t lcg = 1131199209;
    int64_t carry = -1;
    std::vector<int32_t> numbers;
    for (int i = 0; i < n; ++i) {
        lcg = (lcg * 69069 + 1013904243) & mask;
        uint64_t t =
            static_cast<uint64_t>(carry + static_cast<int64_t>(x1) - static_cast<int64_t>(x2)) & mask;
        carry = t >= 0x80000000u ? -1 : 0;
        if (carry) t = (t - 18) & mask;
        x2 = x1;
        x1 = x0;
        x0 = t;
        numbers.push_back(static_cast<int32_t>((lcg + t) & mask));
    }
    if (seedAfter) *seedAfter = static_cast<uint32_t>(x0);
    return numbers;
}

inline Values modelRange(uint32_t seed, int n, double low, double high) {
    Values all;
    for (int32_t r : modelRandom(seed, n)) {
        all.push_back(r * ((high - low) * 2.3283064365387e-10) + (high + low) * 0.5);
    }
    return all;
}

inline Values truncated(Values all) {
    for (double &v : all) v = std::trunc(v);
    return all;
}

#endif

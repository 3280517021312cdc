// blockdiffspies.cpp - the functions of block differences, each handed on to the library and judged.

#include "blockdiffspies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "kmvc.h"
#include "spy.h"

std::vector<SpiedCall> g_spied;

namespace {

const int positions[] = {0, 4, 8, 12};

template <class T>
SpiedCall blocks(char const *name, T const *src, int srcStep, T const *ref, int refStep, int w, int h) {
    SpiedCall call{name, srcStep, refStep, 0, 0, false, roomAt(src), roomAt(ref), 0, true, 0};
    const int size = sizeof(T);
    EXPECT_LE(((h - 1) * srcStep + w) * size, call.srcRoom) << name;
    if (ref) {
        EXPECT_LE(((h - 1) * refStep + w) * size, call.refRoom) << name;
    }
    call.firstSrc = src[0];
    for (int i = 0; i < h * w; ++i)
        call.constantSrc = call.constantSrc && src[i / w * srcStep + i % w] == src[0];
    return call;
}

template <class T>
std::vector<T> poisoned(T *dst, int n) {
    memset(dst, 0xA5, n * sizeof(T));
    return std::vector<T>(dst, dst + n);
}

// The call is written down and handed on to the library.
template <class Function, class... Args>
KelStatus handOn(Function *function, SpiedCall const &call, Args... args) {
    g_spied.push_back(call);
    KelStatus status = callLibrary(function, call.function.c_str(), args...);
    EXPECT_EQ(status, kelStsNoErr) << call.function;
    return status;
}

int atHalf(Kel8u const *r, int step, int position) {
    int right = position & 8 ? 1 : 0;
    int down = position & 4 ? step : 0;
    int sum = r[0] + r[right] + r[down] + r[right + down];
    return (sum + 2) >> 2;
}

int sadOf(Kel8u const *src, int srcStep, Kel8u const *ref, int refStep, int w, int h, int position) {
    int sum = 0;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x)
            sum += abs(src[y * srcStep + x] - atHalf(ref + y * refStep + x, refStep, position));
    }
    return sum;
}

// w x h in blocks of bw x bh; a sum for each.
template <class T>
KelStatus sad(KelStatus (*f)(Kel8u const *, int, Kel8u const *, int, T *, int), char const *name, int w,
              int h, int bw, int bh, Kel8u const *src, int srcStep, Kel8u const *ref, int refStep, T *dst,
              int position) {
    SpiedCall call = blocks(name, src, srcStep, ref, refStep, w, h);
    call.last = position;
    call.dstRoom = roomAt(dst);
    EXPECT_NE(std::find(std::begin(positions), std::end(positions), position), std::end(positions));
    const int n = (w / bw) * (h / bh);
    poisoned(dst, n);
    KelStatus status = handOn(f, call, src, srcStep, ref, refStep, dst, position);
    for (int i = 0; i < n; ++i) {
        int x = i % (w / bw) * bw, y = i / (w / bw) * bh;
        EXPECT_EQ(static_cast<int>(dst[i]),
                  sadOf(src + y * srcStep + x, srcStep, ref + y * refStep + x, refStep, bw, bh, position))
            << name << " block " << i;
    }
    return status;
}

template <class F, class... More>
KelStatus sadN(F f, char const *name, int side, Kel8u const *src, int srcStep, Kel8u const *ref, int refStep,
               Kel16u *dst, int n, More... minIndex) {
    SpiedCall call = blocks(name, src, srcStep, ref, refStep, side, side);
    call.last = n;
    call.dstRoom = roomAt(dst);
    EXPECT_LE(n * 2, call.dstRoom) << name;
    EXPECT_LE((side - 1) * refStep + n - 1 + side, call.refRoom) << name;
    poisoned(dst, n);
    (..., (*minIndex = -77));
    KelStatus status = handOn(f, call, src, srcStep, ref, refStep, dst, n, minIndex...);
    for (int i = 0; i < n; ++i) {
        int sum = sadOf(src, srcStep, ref + i, refStep, side, side, 0);
        if (dst[i] == sum) continue;
        ADD_FAILURE() << name << " at " << i << ": " << dst[i] << ", not " << sum;
        break;
    }
    const int least = static_cast<int>(std::min_element(dst, dst + n) - dst);
    const bool found = (... && (*minIndex == least));
    EXPECT_TRUE(found) << name << ": the least sum is at " << least;
    return status;
}

template <class T, class S>
KelStatus sums(KelStatus (*f)(T const *, int, T const *, int, S *, Kel16s *), char const *name, int side,
               T const *src, int srcStep, T const *pred, int predStep, S *dst, Kel16s *diff) {
    SpiedCall call = blocks(name, src, srcStep, pred, predStep, side, side);
    call.diff = diff != nullptr;
    call.dstRoom = roomAt(dst);
    const int n = side * side / 16;
    poisoned(dst, n);
    if (diff) poisoned(diff, side * side);
    KelStatus status = handOn(f, call, src, srcStep, pred, predStep, dst, diff);
    for (int block = 0; block < n; ++block) {
        int sum = 0;
        for (int i = 0; i < 16; ++i) {
            int x = block % (side / 4) * 4 + i % 4, y = block / (side / 4) * 4 + i / 4;
            int d = src[y * srcStep + x] - pred[y * predStep + x];
            EXPECT_EQ(diff ? diff[block * 16 + i] : d, d) << name;
            sum += d;
        }
        EXPECT_EQ(static_cast<int>(dst[block]), sum) << name << " block " << block;
    }
    return status;
}

int edgesOf(Kel8u const *src, int step, int difference) {
    int edges = 0;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            int here = src[y * step + x];
            if (x < 15 && abs(here - src[y * step + x + 1]) > difference) ++edges;
            if (y < 15 && abs(here - src[(y + 1) * step + x]) > difference) ++edges;
        }
    }
    return edges;
}

} // namespace

// clang-format off

#define SPY_SAD(name, T, w, h, bw, bh) \
    KelStatus name(Kel8u const *s, int ss, Kel8u const *r, int rs, T *d, int mc) { return sad(&name, #name, w, h, bw, bh, s, ss, r, rs, d, mc); }
#define SPY_SADN(name, side) \
    KelStatus name(Kel8u const *s, int ss, Kel8u const *r, int rs, Kel16u *d, int n) { return sadN(&name, #name, side, s, ss, r, rs, d, n); }
#define SPY_SADNI(name, side) \
    KelStatus name(Kel8u const *s, int ss, Kel8u const *r, int rs, Kel16u *d, int n, Kel32s *i) { return sadN(&name, #name, side, s, ss, r, rs, d, n, i); }
#define SPY_SUMS(name, T, S, side) \
    KelStatus name(T const *s, int ss, T const *p, int ps, S *d, Kel16s *diff) { return sums(&name, #name, side, s, ss, p, ps, d, diff); }

SPY_SAD(keliSAD16x16_8u32s,          Kel32s, 16, 16, 16, 16)
SPY_SAD(keliSAD16x8_8u32s_C1R,       Kel32s, 16,  8, 16,  8)
SPY_SAD(keliSAD4x4_8u32s,            Kel32s,  4,  4,  4,  4)
SPY_SAD(keliSAD16x16Blocks8x8_8u16u, Kel16u, 16, 16,  8,  8)
SPY_SAD(keliSAD16x16Blocks4x4_8u16u, Kel16u, 16, 16,  4,  4)
SPY_SADN(keliSAD2x2xN_8u16u_C1R,     2)
SPY_SADN(keliSAD4x4xN_8u16u_C1R,     4)
SPY_SADN(keliSAD8x8xN_8u16u_C1R,     8)
SPY_SADN(keliSAD16x16xN_8u16u_C1R,   16)
SPY_SADNI(keliSAD4x4xNI_8u16u_C1R,   4)
SPY_SADNI(keliSAD8x8xNI_8u16u_C1R,   8)
SPY_SADNI(keliSAD16x16xNI_8u16u_C1R, 16)
SPY_SUMS(keliSumsDiff16x16Blocks4x4_8u16s_C1,   Kel8u,  Kel16s, 16)
SPY_SUMS(keliSumsDiff8x8Blocks4x4_8u16s_C1,     Kel8u,  Kel16s, 8)
SPY_SUMS(keliSumsDiff16x16Blocks4x4_16u32s_C1R, Kel16u, Kel32s, 16)
SPY_SUMS(keliSumsDiff8x8Blocks4x4_16u32s_C1R,   Kel16u, Kel32s, 8)

// clang-format on

KelStatus keliEdgesDetect16x16_8u_C1R(Kel8u const *src, int step, int difference, int count, Kel8u *result) {
    SpiedCall call =
        blocks("keliEdgesDetect16x16_8u_C1R", src, step, static_cast<Kel8u const *>(nullptr), 0, 16, 16);
    call.edgeDifference = difference;
    call.last = count;
    *result = 0xA5;
    KelStatus status = handOn(&keliEdgesDetect16x16_8u_C1R, call, src, step, difference, count, result);
    EXPECT_EQ(*result, edgesOf(src, step, difference) > count ? 1 : 0);
    return status;
}

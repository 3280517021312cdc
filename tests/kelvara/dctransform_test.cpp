// dctransform_test.cpp - DC coefficients, against the matrices and equations of ITU-T H.264 8.5.10
// and 8.5.11.

#include "h264model.h"
#include "kelvc.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

struct Orders {
    int qp;
    int intra, needTransform;
    Numbers levels; // empty: the library's own
};

Orders ordersOf(std::mt19937 &generator, int maxQP) {
    Orders orders = {static_cast<int>(generator() % static_cast<unsigned>(maxQP + 1)),
                     generator() % 2 ? 1 : 0,
                     generator() % 2 ? 1 : 0,
                     {}};
    if (generator() % 2) orders.levels = Numbers(16, 1 + generator() % 32767);
    for (size_t i = 1; i < orders.levels.size(); ++i) orders.levels[i] = 9; // the first one counts
    return orders;
}

struct Optional {
    explicit Optional(const Numbers &numbers) : given(numbers.empty() ? Numbers(1) : numbers, 1) {
        p = numbers.empty() ? nullptr : given.data();
    }
    Given<Kel16s> given;
    const Kel16s *p;
};

// ---- one form of the call for all sizes -----------------------------------------------------

template <class T>
struct Forward {
    T *srcDst, *transformed;
    int qp;
    int *count;
    int intra, needTransform;
    const Kel16s *scan;
    int *last;
    const Kel16s *levels;
};

KelStatus forward(int n, const Forward<Kel16s> &c) {
    if (n == 16)
        return keliTransformQuantFwdLumaDC4x4_H264_16s_C1I(c.srcDst, c.transformed, c.qp, c.count,
                                                           c.needTransform, c.scan, c.last, c.levels);
    const auto chroma = n == 4 ? keliTransformQuantFwdChromaDC2x2_H264_16s_C1I
                               : keliTransformQuantFwdChromaDC2x4_H264_16s_C1I;
    return chroma(c.srcDst, c.transformed, c.qp, c.count, c.intra, c.needTransform, c.levels);
}

KelStatus forward(int n, const Forward<Kel32s> &c) {
    if (n == 16)
        return keliTransformQuantFwdLumaDC4x4_H264_32s_C1I(c.srcDst, c.transformed, c.qp, c.count,
                                                           c.needTransform, c.scan, c.last, c.levels);
    const auto chroma = n == 4 ? keliTransformQuantFwdChromaDC2x2_H264_32s_C1I
                               : keliTransformQuantFwdChromaDC2x4_H264_32s_C1I;
    return chroma(c.srcDst, c.transformed, c.qp, c.count, c.intra, c.needTransform, c.levels);
}

// The older forms, without scale levels.
KelStatus plainForward(int n, const Forward<Kel16s> &c) {
    if (n == 16)
        return keliTransformQuantLumaDC_H264_16s_C1I(c.srcDst, c.transformed, c.qp, c.count, c.needTransform,
                                                     c.scan, c.last);
    return keliTransformQuantChromaDC_H264_16s_C1I(c.srcDst, c.transformed, c.qp, c.count, c.intra,
                                                   c.needTransform);
}

KelStatus inverse(int n, Kel16s *srcDst, int qp, const Kel16s *levels) {
    const auto call = n == 16  ? keliTransformQuantInvLumaDC4x4_H264_16s_C1I
                      : n == 4 ? keliTransformQuantInvChromaDC2x2_H264_16s_C1I
                               : keliTransformQuantInvChromaDC2x4_H264_16s_C1I;
    return call(srcDst, qp, levels);
}

KelStatus inverse(int n, Kel32s *srcDst, int qp, const Kel16s *levels) {
    const auto call = n == 16  ? keliTransformQuantInvLumaDC4x4_H264_32s_C1I
                      : n == 4 ? keliTransformQuantInvChromaDC2x2_H264_32s_C1I
                               : keliTransformQuantInvChromaDC2x4_H264_32s_C1I;
    return call(srcDst, qp, levels);
}

template <class T>
int maxQP(int n) {
    return (sizeof(T) == 4 ? 87 : 51) + (n == 8 ? 3 : 0);
}

const int sizes[] = {16, 4, 8};

// ---- the model ------------------------------------------------------------------------------

// Luma is always intra, and halved.
Numbers forwardModel(const Numbers &block) {
    Numbers dc = transformedDC(block);
    for (long long &x : dc) x = dc.size() == 16 ? floorOf((x + 1) / 2.0) : x;
    return dc;
}

template <class T>
Numbers levelsModel(const Numbers &dc, const Orders &orders) {
    const long long factor = orders.levels.empty() ? forward4x4[orders.qp % 6][0] : orders.levels[0];
    Numbers levels;
    for (long long x : dc)
        levels.push_back(
            limitedTo<T>(level(x, factor, 16 + orders.qp / 6, dc.size() == 16 || orders.intra != 0)));
    return levels;
}

template <class T, class Function>
void expectForward(Function function, int n, std::mt19937 &generator, long long limit, const Orders &orders) {
    const Numbers block = randomNumbers(generator, n, limit), kept = randomNumbers(generator, n, limit);
    const Numbers scan = randomScan(generator, 16);
    const Given<Kel16s> positions(scan);
    const Optional levels(orders.levels);
    Changed<T> srcDst(block, orders.qp % 3), transformed(kept, orders.qp % 2);
    Destination<int> count(1, 1), last(1, 1);
    ASSERT_EQ(kelStsNoErr,
              function(n, Forward<T>{srcDst.data(), transformed.data(), orders.qp, count.data(), orders.intra,
                                     orders.needTransform, positions.data(), last.data(), levels.p}));
    const Numbers dc = orders.needTransform ? forwardModel(block) : kept;
    const Numbers expected = levelsModel<T>(dc, orders);
    EXPECT_EQ(dc, transformed.numbers());
    EXPECT_EQ(expected, srcDst.numbers());
    EXPECT_EQ(countOf(expected), count[0]);
    if (n == 16) {
        EXPECT_EQ(lastOf(expected, scan), last[0]);
    } else {
        EXPECT_TRUE(last.untouched());
    }
    EXPECT_TRUE(srcDst.surroundingsIntact() && transformed.surroundingsIntact());
}

} // namespace

// ---- forward ---------------------------------------------------------------------------

// 4080 is the DC coefficient of a block of differences of 8 bits.
TEST(KelvaraDCTransform, ForwardIsTransformedAndQuantised) {
    std::mt19937 generator(1);
    for (int n : sizes) {
        for (int round = 0; round < 300; ++round) {
            const auto call16 = [](int size, const Forward<Kel16s> &c) { return forward(size, c); };
            const auto call32 = [](int size, const Forward<Kel32s> &c) { return forward(size, c); };
            expectForward<Kel16s>(call16, n, generator, round % 3 ? 4080 : 20,
                                  ordersOf(generator, maxQP<Kel16s>(n)));
            expectForward<Kel32s>(call32, n, generator, round % 3 ? 16 * 16383 : 90,
                                  ordersOf(generator, maxQP<Kel32s>(n)));
        }
    }
}

TEST(KelvaraDCTransform, PlainForwardIsThatOfTheFlatList) {
    std::mt19937 generator(2);
    for (int n : {16, 4}) {
        for (int round = 0; round < 200; ++round) {
            Orders orders = ordersOf(generator, 51);
            orders.levels.clear();
            expectForward<Kel16s>(plainForward, n, generator, 4080, orders);
        }
    }
}

TEST(KelvaraDCTransform, LargestCoefficientsFit16Bits) {
    for (int n : sizes) {
        for (int sign : {-1, 1}) {
            Changed<Kel16s> srcDst(Numbers(n, sign * 4080)), transformed(Numbers(n, 5));
            int count = 0, last = 0;
            Numbers scan(16);
            for (int i = 0; i < 16; ++i) scan[i] = i;
            const Given<Kel16s> positions(scan);
            ASSERT_EQ(kelStsNoErr, forward(n, Forward<Kel16s>{srcDst.data(), transformed.data(), 0, &count, 1,
                                                              1, positions.data(), &last, nullptr}));
            EXPECT_EQ(sign * (n == 16 ? 16 * 4080 / 2 : n * 4080), transformed.numbers()[0]);
            EXPECT_EQ(1, count);
        }
    }
}

// With needTransform 0 a block is quantised at another QP from what the first call left.
TEST(KelvaraDCTransform, BlockIsQuantisedOnceMoreWithoutItsTransform) {
    std::mt19937 generator(3);
    const Numbers block = randomNumbers(generator, 4, 3000);
    Changed<Kel16s> first(block), transformed(Numbers(4)), again(block), other(Numbers(4));
    int count = 0;
    const auto call = keliTransformQuantFwdChromaDC2x2_H264_16s_C1I;
    ASSERT_EQ(kelStsNoErr, call(first.data(), transformed.data(), 40, &count, 0, 1, nullptr));
    ASSERT_EQ(kelStsNoErr, call(first.data(), transformed.data(), 12, &count, 0, 0, nullptr));
    ASSERT_EQ(kelStsNoErr, call(again.data(), other.data(), 12, &count, 0, 1, nullptr));
    EXPECT_EQ(again.numbers(), first.numbers());
}

// ---- inverse ---------------------------------------------------------------------------

template <class T>
static void expectInverse(int n, std::mt19937 &generator, long long limit) {
    for (int qp = 0; qp <= maxQP<T>(n); ++qp) {
        for (int round = 0; round < 6; ++round) {
            const Numbers block = randomNumbers(generator, n, std::max(2LL, limit >> (qp / 6)));
            const Numbers own = round % 2 ? Numbers(16, 1 + generator() % 4000) : Numbers();
            const Optional levels(own);
            Changed<T> data(block, round % 4);
            ASSERT_EQ(kelStsNoErr, inverse(n, data.data(), qp, levels.p));
            Numbers expected = scaledDC(block, qp, own.empty() ? 16 * normAdjust4x4[qp % 6][0] : own[0]);
            for (long long &x : expected) x = limitedTo<T>(x);
            EXPECT_EQ(expected, data.numbers()) << n << " coefficients at " << qp;
            EXPECT_TRUE(data.surroundingsIntact());
        }
    }
}

TEST(KelvaraDCTransform, InverseFollowsTheEquations) {
    std::mt19937 generator(4);
    for (int n : sizes) {
        expectInverse<Kel16s>(n, generator, 2063);
        expectInverse<Kel32s>(n, generator, 20000);
    }
}

TEST(KelvaraDCTransform, PlainInverseIsThatOfTheFlatList) {
    std::mt19937 generator(5);
    for (int qp = 0; qp <= 51; ++qp) {
        const Numbers luma = randomNumbers(generator, 16, 30), chroma = randomNumbers(generator, 4, 30);
        Changed<Kel16s> lumaData(luma, 1), chromaData(chroma, 1);
        ASSERT_EQ(kelStsNoErr, keliTransformDequantLumaDC_H264_16s_C1I(lumaData.data(), qp));
        ASSERT_EQ(kelStsNoErr, keliTransformDequantChromaDC_H264_16s_C1I(chromaData.data(), qp));
        Numbers expected = scaledDC(luma, qp, 16 * normAdjust4x4[qp % 6][0]);
        for (long long &x : expected) x = limitedTo<Kel16s>(x);
        EXPECT_EQ(expected, lumaData.numbers());
        expected = scaledDC(chroma, qp, 16 * normAdjust4x4[qp % 6][0]);
        for (long long &x : expected) x = limitedTo<Kel16s>(x);
        EXPECT_EQ(expected, chromaData.numbers());
        EXPECT_TRUE(lumaData.surroundingsIntact() && chromaData.surroundingsIntact());
    }
}

// A scaled coefficient is 4 times the transformed one, within half a step of it and more for the wide zero.
TEST(KelvaraDCTransform, InverseOfForwardIsWithinTheStep) {
    std::mt19937 generator(6);
    Numbers scan(16);
    for (int i = 0; i < 16; ++i) scan[i] = i;
    const Given<Kel16s> positions(scan);
    for (int n : sizes) {
        for (int qp = 0; qp <= maxQP<Kel16s>(n); ++qp) {
            const Numbers block = randomNumbers(generator, n, 4080);
            Changed<Kel32s> data(block), transformed(Numbers(n, 0));
            int count = 0, last = 0;
            ASSERT_EQ(kelStsNoErr, forward(n, Forward<Kel32s>{data.data(), transformed.data(), qp, &count, 1,
                                                              1, positions.data(), &last, nullptr}));
            ASSERT_EQ(kelStsNoErr, inverse(n, data.data(), qp, nullptr));
            // all of a level's errors reach all coefficients
            const double step = 16.0 * normAdjust4x4[qp % 6][0] * power(qp) / (n == 4 ? 32 : 64);
            for (int i = 0; i < n; ++i)
                EXPECT_LE(std::abs(data.numbers()[i] - 4.0 * block[i]), n * step * 2 / 3 + 3)
                    << n << " at " << qp;
        }
    }
}

// ---- arguments -------------------------------------------------------------------------

template <class T>
static void expectRefusals(int n) {
    Destination<T> srcDst(n), transformed(n);
    Destination<int> count(1), last(1);
    const Given<Kel16s> scan(Numbers(16, 3));
    const Forward<T> good = {srcDst.data(), transformed.data(), 20,     count.data(), 1, 1,
                             scan.data(),   last.data(),        nullptr};
    const auto refused = [&](auto change) {
        Forward<T> call = good;
        change(call);
        return forward(n, call);
    };
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.srcDst = nullptr, call.qp = -1; }));
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.transformed = nullptr; }));
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.count = nullptr; }));
    for (int qp : {-1, maxQP<T>(n) + 1, INT32_MAX}) {
        EXPECT_EQ(kelStsRangeErr, refused([qp](auto &call) { call.qp = qp; })) << n << ", " << qp;
        EXPECT_EQ(kelStsRangeErr, inverse(n, srcDst.data(), qp, nullptr)) << n << ", " << qp;
    }
    EXPECT_EQ(kelStsNullPtrErr, inverse(n, static_cast<T *>(nullptr), -1, nullptr));
    if (n == 16) {
        const Given<Kel16s> bad(Numbers(16, 16));
        EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.scan = nullptr; }));
        EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.last = nullptr; }));
        EXPECT_EQ(kelStsRangeErr, refused([&](auto &call) { call.scan = bad.data(); }));
    }
    EXPECT_TRUE(srcDst.untouched() && transformed.untouched() && count.untouched() && last.untouched());
}

TEST(KelvaraDCTransform, BadArgumentsAreRefused) {
    for (int n : sizes) {
        expectRefusals<Kel16s>(n);
        expectRefusals<Kel32s>(n);
    }
}

TEST(KelvaraDCTransform, PlainFormsRefuseBadArguments) {
    Destination<Kel16s> data(16), transformed(16);
    Destination<int> count(1), last(1);
    const Given<Kel16s> scan(Numbers(16, 3)), bad(Numbers(16, -1));
    const auto luma = keliTransformQuantLumaDC_H264_16s_C1I;
    const auto chroma = keliTransformQuantChromaDC_H264_16s_C1I;
    EXPECT_EQ(kelStsNullPtrErr,
              luma(nullptr, transformed.data(), 20, count.data(), 1, scan.data(), last.data()));
    EXPECT_EQ(kelStsNullPtrErr, luma(data.data(), nullptr, 20, count.data(), 1, scan.data(), last.data()));
    EXPECT_EQ(kelStsNullPtrErr,
              luma(data.data(), transformed.data(), 20, nullptr, 1, scan.data(), last.data()));
    EXPECT_EQ(kelStsNullPtrErr,
              luma(data.data(), transformed.data(), 20, count.data(), 1, nullptr, last.data()));
    EXPECT_EQ(kelStsNullPtrErr,
              luma(data.data(), transformed.data(), 20, count.data(), 1, scan.data(), nullptr));
    EXPECT_EQ(kelStsRangeErr,
              luma(data.data(), transformed.data(), 52, count.data(), 1, scan.data(), last.data()));
    EXPECT_EQ(kelStsRangeErr,
              luma(data.data(), transformed.data(), 20, count.data(), 1, bad.data(), last.data()));
    EXPECT_EQ(kelStsNullPtrErr, chroma(nullptr, transformed.data(), 20, count.data(), 1, 1));
    EXPECT_EQ(kelStsNullPtrErr, chroma(data.data(), nullptr, 20, count.data(), 1, 1));
    EXPECT_EQ(kelStsNullPtrErr, chroma(data.data(), transformed.data(), 20, nullptr, 1, 1));
    EXPECT_EQ(kelStsRangeErr, chroma(data.data(), transformed.data(), -1, count.data(), 1, 1));
    for (auto call : {keliTransformDequantLumaDC_H264_16s_C1I, keliTransformDequantChromaDC_H264_16s_C1I}) {
        EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 52));
        EXPECT_EQ(kelStsRangeErr, call(data.data(), 52));
        EXPECT_EQ(kelStsRangeErr, call(data.data(), -1));
    }
    EXPECT_TRUE(data.untouched() && transformed.untouched() && count.untouched() && last.untouched());
}

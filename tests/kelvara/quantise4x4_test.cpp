// quantise4x4_test.cpp - the quantisers of 4x4 blocks, coefficient by coefficient, and their counts.

#include "h264model.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <functional>

using namespace h264;

namespace {

// What a call is given beside the block.
struct Orders {
    int qp = 0;
    int intra = 1;
    Numbers scan;
    Numbers levels; // empty: the library's own
};

struct Answer {
    Numbers levels;
    int count, last;
};

Orders ordersOf(std::mt19937 &generator, int maxQP) {
    Orders orders;
    orders.qp = static_cast<int>(generator() % static_cast<unsigned>(maxQP + 1));
    orders.intra = generator() % 2 ? 1 : 0;
    orders.scan = randomScan(generator, 16);
    if (generator() % 2) {
        for (int i = 0; i < 16; ++i) orders.levels.push_back(generator() % 32768);
    }
    return orders;
}

// The levels of transformed coefficients.
Answer model(const Numbers &coeffs, const Orders &orders, long long limit) {
    const Numbers factors = orders.levels.empty() ? forwardFlat4x4(orders.qp) : orders.levels;
    Answer answer;
    for (int i = 0; i < 16; ++i) {
        const long long x = level(coeffs[i], factors[i], 15 + orders.qp / 6, orders.intra != 0);
        answer.levels.push_back(limited(x, -limit - 1, limit));
    }
    answer.count = countOf(answer.levels);
    answer.last = lastOf(answer.levels, orders.scan);
    return answer;
}

void expectAnswer(const Answer &expected, const Numbers &levels, int count, int last) {
    EXPECT_EQ(expected.levels, levels);
    EXPECT_EQ(expected.count, count);
    EXPECT_EQ(expected.last, last);
}

// A vector that may be left out, for the length of a call.
struct Optional {
    explicit Optional(const Numbers &numbers) : given(numbers.empty() ? Numbers(1) : numbers, 1) {
        p = numbers.empty() ? nullptr : given.data();
    }
    Given<Kel16s> given;
    const Kel16s *p;
};

// ---- one form of the call for all functions -------------------------------------------------

template <class From, class To>
struct Call {
    const From *src;
    To *dst;
    int qp;
    int *count;
    int intra;
    const Kel16s *scan;
    int *last;
    const Kel16s *levels;
};

using Residual16 = Call<Kel16s, Kel16s>;
using Residual32 = Call<Kel16s, Kel32s>;
using Coeffs32 = Call<Kel32s, Kel32s>;

template <class From, class To>
using Quantiser = std::function<KelStatus(const Call<From, To> &)>;

const Quantiser<Kel16s, Kel16s> residual16 = [](const Residual16 &c) {
    return keliTransformQuantFwd4x4_H264_16s_C1(c.src, c.dst, c.qp, c.count, c.intra, c.scan, c.last,
                                                c.levels);
};
const Quantiser<Kel16s, Kel32s> residual32 = [](const Residual32 &c) {
    return keliTransformQuantFwd4x4_H264_16s32s_C1(c.src, c.dst, c.qp, c.count, c.intra, c.scan, c.last,
                                                   c.levels);
};
const Quantiser<Kel16s, Kel16s> coeffs16 = [](const Residual16 &c) {
    return keliQuantizeResidual4x4Fwd_H264_16s_C1(c.src, c.dst, c.count, c.last, c.levels, c.scan, c.qp,
                                                  c.intra);
};
const Quantiser<Kel32s, Kel32s> coeffs32 = [](const Coeffs32 &c) {
    return keliQuantizeResidual4x4Fwd_H264_32s_C1(c.src, c.dst, c.count, c.last, c.levels, c.scan, c.qp,
                                                  c.intra);
};

template <class From, class To>
void expectModel(const Quantiser<From, To> &quantiser, const Numbers &block, const Orders &orders,
                 const Answer &expected) {
    const int misfit = orders.qp % 4;
    const Given<From> src(block, misfit);
    const Given<Kel16s> scan(orders.scan, misfit);
    const Optional levels(orders.levels);
    Destination<To> dst(16, misfit);
    Destination<int> count(1, misfit), last(1, misfit);
    ASSERT_EQ(kelStsNoErr, quantiser({src.data(), dst.data(), orders.qp, count.data(), orders.intra,
                                      scan.data(), last.data(), levels.p}));
    expectAnswer(expected, numbersOf(dst, 16), count[0], last[0]);
    EXPECT_TRUE(dst.surroundingsIntact());
    EXPECT_TRUE(count.surroundingsIntact());
    EXPECT_TRUE(last.surroundingsIntact());
}

template <class From, class To>
void expectRefusals(const Quantiser<From, To> &quantiser, int maxQP) {
    const Given<From> src(Numbers(16, 500));
    std::mt19937 generator(1);
    const Given<Kel16s> scan(randomScan(generator, 16));
    Destination<To> dst(16);
    Destination<int> count(1), last(1);
    const Call<From, To> good = {src.data(), dst.data(),  20,          count.data(),
                                 1,          scan.data(), last.data(), nullptr};
    const auto refused = [&](auto change) {
        Call<From, To> call = good;
        change(call);
        return quantiser(call);
    };
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.src = nullptr, call.qp = -1; }));
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.dst = nullptr; }));
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.count = nullptr; }));
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.scan = nullptr; }));
    EXPECT_EQ(kelStsNullPtrErr, refused([](auto &call) { call.last = nullptr; }));
    for (int qp : {-1, maxQP + 1, 1 << 30, INT32_MIN})
        EXPECT_EQ(kelStsRangeErr, refused([qp](auto &call) { call.qp = qp; })) << qp;
    for (int position : {-1, 16, 32767, -32768}) {
        Numbers positions = randomScan(generator, 16);
        positions[15] = position;
        const Given<Kel16s> bad(positions);
        EXPECT_EQ(kelStsRangeErr, refused([&](auto &call) { call.scan = bad.data(); })) << position;
    }
    EXPECT_TRUE(dst.untouched() && count.untouched() && last.untouched());
    EXPECT_EQ(kelStsNoErr, quantiser(good));
}

} // namespace

// ---- residuals -------------------------------------------------------------------------

TEST(KelvaraQuantise4x4, ResidualsAreTransformedAndQuantised) {
    std::mt19937 generator(1);
    for (int round = 0; round < 500; ++round) {
        const Numbers block = randomNumbers(generator, 16, round % 2 ? 255 : 40);
        const Numbers coeffs = product(core, block, core);
        const Orders orders = ordersOf(generator, 51);
        expectModel(residual16, block, orders, model(coeffs, orders, 32767));
        expectModel(residual32, block, orders, model(coeffs, orders, INT32_MAX));
    }
}

TEST(KelvaraQuantise4x4, WideResidualFormTakesTheQPsAndSamplesOf14Bits) {
    std::mt19937 generator(2);
    for (int round = 0; round < 300; ++round) {
        const Numbers block = randomNumbers(generator, 16, 16383);
        const Orders orders = ordersOf(generator, 87);
        expectModel(residual32, block, orders, model(product(core, block, core), orders, INT32_MAX));
    }
}

TEST(KelvaraQuantise4x4, ResidualIsQuantisedInPlaceByTheFlatList) {
    std::mt19937 generator(3);
    for (int round = 0; round < 300; ++round) {
        const Numbers block = randomNumbers(generator, 16, 255);
        Orders orders = ordersOf(generator, 51);
        orders.levels.clear();
        const Given<Kel16s> scan(orders.scan);
        Changed<Kel16s> data(block, round % 3);
        int count = 99, last = 99;
        ASSERT_EQ(kelStsNoErr, keliTransformQuantResidual_H264_16s_C1I(data.data(), orders.qp, &count,
                                                                       orders.intra, scan.data(), &last));
        expectAnswer(model(product(core, block, core), orders, 32767), data.numbers(), count, last);
        EXPECT_TRUE(data.surroundingsIntact());
    }
}

// ---- coefficients ----------------------------------------------------------------------

TEST(KelvaraQuantise4x4, CoefficientsAreQuantised) {
    std::mt19937 generator(4);
    for (int limit : {1, 60, 9180, 32767}) {
        for (int round = 0; round < 150; ++round) {
            const Numbers coeffs = randomNumbers(generator, 16, limit);
            const Orders orders = ordersOf(generator, 51);
            expectModel(coeffs16, coeffs, orders, model(coeffs, orders, 32767));
            expectModel(coeffs32, coeffs, orders, model(coeffs, orders, INT32_MAX));
        }
    }
}

TEST(KelvaraQuantise4x4, WideCoefficientsOfAnySizeAreExact) {
    std::mt19937 generator(5);
    for (int round = 0; round < 200; ++round) {
        Numbers coeffs = randomNumbers(generator, 16, INT32_MAX);
        coeffs[round % 16] = INT32_MIN;
        const Orders orders = ordersOf(generator, 87);
        expectModel(coeffs32, coeffs, orders, model(coeffs, orders, INT32_MAX));
    }
}

TEST(KelvaraQuantise4x4, FactorsOf32BitsReplaceTheLevels) {
    std::mt19937 generator(6);
    const auto call = keliQuantizeResidual4x4Fwd_H264_16s32s_C1;
    for (int round = 0; round < 300; ++round) {
        const Numbers coeffs = randomNumbers(generator, 16, 32767);
        Orders orders = ordersOf(generator, 51);
        orders.levels.clear();
        for (int i = 0; i < 16; ++i) orders.levels.push_back(generator() % (round % 2 ? 20000 : 1u << 31));
        const Given<Kel16s> src(coeffs), scan(orders.scan);
        const Given<Kel32s> factors(orders.levels, round % 4);
        Destination<Kel16s> dst(16, round % 4);
        int count = 99, last = 99;
        ASSERT_EQ(kelStsNoErr, call(src.data(), dst.data(), &count, &last, factors.data(), scan.data(),
                                    orders.qp, orders.intra));
        expectAnswer(model(coeffs, orders, 32767), numbersOf(dst, 16), count, last);
        EXPECT_TRUE(dst.surroundingsIntact());
    }
}

// The interval of zero is two thirds of a step wide on each side for intra, five sixths for inter.
TEST(KelvaraQuantise4x4, IntraRoundsUpEarlierThanInter) {
    Orders orders;
    std::mt19937 generator(7);
    orders.scan = randomScan(generator, 16);
    orders.qp = 24;
    orders.levels = Numbers(16, 1 << 13); // a step of 64
    Numbers coeffs(16);
    coeffs[0] = 43;
    coeffs[1] = -43;
    coeffs[2] = 42;
    for (int intra : {0, 1}) {
        orders.intra = intra;
        Answer expected = {Numbers(16), 2 * intra, -1};
        expected.levels[0] = intra;
        expected.levels[1] = -intra;
        expected.last = lastOf(expected.levels, orders.scan);
        expectModel(coeffs16, coeffs, orders, expected);
        expectModel(coeffs32, coeffs, orders, expected);
    }
    coeffs[0] = 54; // the first one of inter
    expectModel(coeffs16, coeffs, {24, 0, orders.scan, orders.levels},
                model(coeffs, {24, 0, orders.scan, orders.levels}, 32767));
}

// The third coefficient of the zigzag scan is the fifth of the block.
TEST(KelvaraQuantise4x4, LastIsAPlaceInTheScan) {
    Orders orders;
    orders.scan = {0, 1, 5, 6, 2, 4, 7, 12, 3, 8, 11, 13, 9, 10, 14, 15};
    Numbers coeffs(16), levels(16);
    coeffs[4] = 1000;
    levels[4] = level(1000, 8066, 15, true);
    expectModel(coeffs16, coeffs, orders, {levels, 1, 2});
}

TEST(KelvaraQuantise4x4, BlockOfZerosHasNoLast) {
    std::mt19937 generator(8);
    const Orders orders = {30, 1, randomScan(generator, 16), {}};
    expectModel(residual16, Numbers(16), orders, {Numbers(16), 0, -1});
    expectModel(coeffs16, Numbers(16), orders, {Numbers(16), 0, -1});
}

// Any value other than 0 is true.
TEST(KelvaraQuantise4x4, IntraIsAnyValueButZero) {
    std::mt19937 generator(9);
    for (int intra : {-1, 2, 1 << 30}) {
        Orders orders = ordersOf(generator, 51);
        orders.intra = intra;
        const Numbers coeffs = randomNumbers(generator, 16, 2000);
        expectModel(coeffs16, coeffs, orders, model(coeffs, orders, 32767));
    }
}

TEST(KelvaraQuantise4x4, SourceMayBeTheDestination) {
    std::mt19937 generator(10);
    const Numbers coeffs = randomNumbers(generator, 16, 3000), scan = randomScan(generator, 16);
    Changed<Kel16s> data(coeffs);
    const Given<Kel16s> positions(scan);
    int count = 0, last = 0;
    ASSERT_EQ(kelStsNoErr, keliQuantizeResidual4x4Fwd_H264_16s_C1(data.data(), data.data(), &count, &last,
                                                                  nullptr, positions.data(), 20, 1));
    expectAnswer(model(coeffs, {20, 1, scan, {}}, 32767), data.numbers(), count, last);
}

// ---- arguments -------------------------------------------------------------------------

TEST(KelvaraQuantise4x4, BadArgumentsAreRefused) {
    expectRefusals(residual16, 51);
    expectRefusals(residual32, 87);
    expectRefusals(coeffs16, 51);
    expectRefusals(coeffs32, 87);
    const Quantiser<Kel16s, Kel16s> inPlace = [](const Residual16 &c) {
        return keliTransformQuantResidual_H264_16s_C1I(c.src ? c.dst : nullptr, c.qp, c.count, c.intra,
                                                       c.scan, c.last);
    };
    expectRefusals(inPlace, 51);
    const Given<Kel32s> factors(Numbers(16, 8192));
    const Quantiser<Kel16s, Kel16s> byFactors = [&](const Residual16 &c) {
        return keliQuantizeResidual4x4Fwd_H264_16s32s_C1(c.src, c.dst, c.count, c.last, factors.data(),
                                                         c.scan, c.qp, c.intra);
    };
    expectRefusals(byFactors, 51);
}

TEST(KelvaraQuantise4x4, FactorsMustBeThere) {
    const Given<Kel16s> src(Numbers(16, 5)), scan(Numbers(16, 0));
    Destination<Kel16s> dst(16);
    int count = 7, last = 7;
    EXPECT_EQ(kelStsNullPtrErr, keliQuantizeResidual4x4Fwd_H264_16s32s_C1(
                                    src.data(), dst.data(), &count, &last, nullptr, scan.data(), 99, 1));
    EXPECT_TRUE(dst.untouched());
    EXPECT_EQ(7, count);
    EXPECT_EQ(7, last);
}

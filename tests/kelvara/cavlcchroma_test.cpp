// cavlcchroma_test.cpp - what CAVLC codes of chroma DC: decoded again by the order of ITU-T H.264 9.2.

#include "h264model.h"
#include "kelvc.h"

#include <gtest/gtest.h>

using namespace h264;

namespace {

const int order2x2[] = {0, 1, 2, 3};
const int order2x4[] = {0, 2, 1, 4, 6, 3, 5, 7}; // of rows of two: 8.5.4

struct Coded {
    int ones, signs, count, zeros;
    Numbers levels, runs; // with what stayed behind those that were stored
    bool intact;
};

const long long untouched16 = -23131; // two marked bytes
const long long untouched32 = -1515870811;
const long long untouched8 = 0xA5;

template <class T, class Function>
Coded coded(Function call, const Numbers &block, int misfit) {
    const int n = static_cast<int>(block.size());
    const Given<T> src(block, misfit);
    Destination<Kel8u> ones(1), signs(1), count(1), zeros(1), runs(n);
    Destination<T> levels(n, misfit);
    EXPECT_EQ(kelStsNoErr, call(src.data(), ones.data(), signs.data(), count.data(), zeros.data(),
                                levels.data(), runs.data()));
    const bool intact = ones.surroundingsIntact() && signs.surroundingsIntact() &&
                        count.surroundingsIntact() && zeros.surroundingsIntact() &&
                        runs.surroundingsIntact() && levels.surroundingsIntact();
    return {ones[0], signs[0], count[0], zeros[0], numbersOf(levels, n), numbersOf(runs, n), intact};
}

// A decoder's way: all levels from the last to the first, then their places by total zeros and runs.
Numbers decoded(const Coded &c, int n, const int *order) {
    Numbers block(n), levels;
    for (int i = 0; i < c.ones; ++i) levels.push_back(c.signs >> (c.ones - 1 - i) & 1 ? -1 : 1);
    for (int i = c.ones; i < c.count; ++i) levels.push_back(c.levels[i - c.ones]);
    int place = c.count + c.zeros - 1;
    for (int i = 0; i < c.count; ++i) {
        block[order[place]] = levels[i];
        place -= 1 + static_cast<int>(c.runs[i]);
    }
    EXPECT_EQ(-1, place) << "the runs add up to the zeros";
    return block;
}

// As many of the last levels as are 1 or -1, three at most.
int trailingOnes(const Numbers &block, const int *order) {
    int ones = 0;
    for (size_t i = block.size(); i-- > 0 && ones < 3;) {
        const long long x = block[order[i]];
        if (x != 0 && x != 1 && x != -1) break;
        ones += x != 0;
    }
    return ones;
}

template <class T, class Function>
void expectDecodable(Function call, const Numbers &block, const int *order, long long stays, int misfit) {
    const Coded c = coded<T>(call, block, misfit);
    const int n = static_cast<int>(block.size());
    EXPECT_TRUE(c.intact);
    ASSERT_EQ(countOf(block), c.count);
    ASSERT_EQ(trailingOnes(block, order), c.ones);
    EXPECT_LT(c.signs, 1 << c.ones);
    ASSERT_LE(c.count + c.zeros, n);
    EXPECT_EQ(block, decoded(c, n, order));
    for (int i = c.count - c.ones; i < n; ++i) EXPECT_EQ(stays, c.levels[i]);
    for (int i = c.count; i < n; ++i) EXPECT_EQ(untouched8, c.runs[i]);
}

// Blocks of many zeros, ones and some other levels.
Numbers sparse(std::mt19937 &generator, int n) {
    static const int values[] = {0, 0, 0, 0, 1, -1, 1, -1, 2, -3, 300, -2063};
    Numbers block(n);
    for (long long &x : block) x = values[generator() % 12];
    return block;
}

} // namespace

TEST(KelvaraCavlcChroma, DecoderGetsTheBlockBack) {
    std::mt19937 generator(1);
    for (int round = 0; round < 3000; ++round) {
        const Numbers small = sparse(generator, 4), large = sparse(generator, 8);
        expectDecodable<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s, small, order2x2, untouched32,
                                round % 4);
        expectDecodable<Kel16s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s, large, order2x4, untouched16,
                                round % 4);
        expectDecodable<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s, large, order2x4, untouched32,
                                round % 4);
    }
}

TEST(KelvaraCavlcChroma, EveryBlockOfOnesAndZerosIsDecodable) {
    for (int pattern = 0; pattern < 6561; ++pattern) {
        Numbers block(8);
        for (int i = 0, rest = pattern; i < 8; ++i, rest /= 3) block[i] = rest % 3 - 1;
        expectDecodable<Kel16s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s, block, order2x4, untouched16, 0);
    }
}

// Worked out by hand: in coding order 5 0 -1 0 0 1 -1 0.
TEST(KelvaraCavlcChroma, TrailingOnesAreTheLastOnes) {
    const Numbers block = {5, -1, 0, 1, 0, -1, 0, 0};
    const Coded c = coded<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s, block, 0);
    EXPECT_EQ(3, c.ones);
    EXPECT_EQ(5, c.signs); // minus, plus, minus
    EXPECT_EQ(4, c.count);
    EXPECT_EQ(3, c.zeros);
    EXPECT_EQ(5, c.levels[0]);
    EXPECT_EQ(Numbers({0, 2, 1, 0}), Numbers(c.runs.begin(), c.runs.begin() + 4));
}

TEST(KelvaraCavlcChroma, FourthOneIsAnOrdinaryLevel) {
    const Coded c = coded<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s, {-1, 1, 1, 1}, 0);
    EXPECT_EQ(3, c.ones);
    EXPECT_EQ(0, c.signs);
    EXPECT_EQ(-1, c.levels[0]);
}

TEST(KelvaraCavlcChroma, OneInFrontOfAGreaterLevelIsNotTrailing) {
    const Coded c = coded<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s, {1, 2, -1, 0}, 0);
    EXPECT_EQ(1, c.ones);
    EXPECT_EQ(1, c.signs);
    EXPECT_EQ(2, c.levels[0]);
    EXPECT_EQ(1, c.levels[1]);
}

TEST(KelvaraCavlcChroma, BlockOfZerosHasNothingToCode) {
    const Coded c = coded<Kel16s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s, Numbers(8), 0);
    EXPECT_EQ(0, c.ones);
    EXPECT_EQ(0, c.signs);
    EXPECT_EQ(0, c.count);
    EXPECT_EQ(0, c.zeros);
    EXPECT_EQ(Numbers(8, untouched16), c.levels);
    EXPECT_EQ(Numbers(8, untouched8), c.runs);
}

template <class T, class Function>
static void expectRefusals(Function call) {
    const Given<T> src(Numbers(8, 1));
    Destination<Kel8u> bytes(5);
    Destination<T> levels(8);
    Kel8u *const p = bytes.data();
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, p, p, p, p, levels.data(), p));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), nullptr, p, p, p, levels.data(), p));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), p, nullptr, p, p, levels.data(), p));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), p, p, nullptr, p, levels.data(), p));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), p, p, p, nullptr, levels.data(), p));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), p, p, p, p, nullptr, p));
    EXPECT_EQ(kelStsNullPtrErr, call(src.data(), p, p, p, p, levels.data(), nullptr));
    EXPECT_TRUE(bytes.untouched() && levels.untouched());
}

TEST(KelvaraCavlcChroma, NullPointersAreRefused) {
    expectRefusals<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s);
    expectRefusals<Kel16s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s);
    expectRefusals<Kel32s>(keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s);
}

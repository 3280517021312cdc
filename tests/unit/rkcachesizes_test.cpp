// rkcachesizes_test.cpp - tests of rkcache: the next value of a size parameter.

#include <gtest/gtest.h>
#include <limits.h>

#include "rkcache.h"
#include "text.h"

namespace {

int jumped(int value, int size, int limit) {
    bool good = rkCacheIteratorInt::updateValue(value, size, limit, false);
    EXPECT_EQ(value > 0, good);
    return value;
}

int crept(int value, int size, int limit) {
    bool good = rkCacheIteratorInt::updateValue(value, size, limit, true);
    EXPECT_EQ(value > 0, good);
    return value;
}

std::string sized(KeliSize value, int size, int limit, bool fine) {
    bool good = rkCacheIteratorSize::updateValue(value, size, limit, fine);
    rkString text;
    text << value;
    return (good ? "" : "failed ") + str(text);
}

} // namespace

TEST(RkCacheIteratorInt, JumpsUp) {
    EXPECT_EQ(32, jumped(16, 1000, 4000));
    EXPECT_EQ(32, jumped(16, 1000, 2001));
}

TEST(RkCacheIteratorInt, JumpsDown) {
    EXPECT_EQ(4, jumped(16, 8000, 4000));
}

TEST(RkCacheIteratorInt, SizeOnTheLimitGoesBelowIt) {
    EXPECT_EQ(8, jumped(16, 4000, 4000));
}

TEST(RkCacheIteratorInt, SizeJustBelowTheLimitStays) {
    EXPECT_EQ(16, jumped(16, 3999, 4000));
}

TEST(RkCacheIteratorInt, CreepsByOneStep) {
    EXPECT_EQ(8, crept(16, 4000, 4000));
    EXPECT_EQ(32, crept(16, 3999, 4000));
    EXPECT_EQ(7, crept(15, 4000, 4000));
}

TEST(RkCacheIteratorInt, OneCannotBeHalved) {
    EXPECT_EQ(0, crept(1, 4000, 4000));
    EXPECT_EQ(0, jumped(1, 8000, 4000));
}

TEST(RkCacheIteratorInt, LimitsOfZeroEndTheJumpWithoutAResult) {
    int value = 16;
    EXPECT_FALSE(rkCacheIteratorInt::updateValue(value, 1000, 0, false));
    EXPECT_FALSE(rkCacheIteratorInt::updateValue(value, 0, 4000, false));
    EXPECT_FALSE(rkCacheIteratorInt::updateValue(value, 0, 0, false));
    EXPECT_FALSE(rkCacheIteratorInt::updateValue(value, -1, 4000, false));
    EXPECT_EQ(16, value);
}

TEST(RkCacheIteratorInt, GreatestLimitIsReached) {
    EXPECT_EQ(1 << 30, jumped(1, 1, INT_MAX));
    EXPECT_EQ(1, jumped(1 << 30, INT_MAX, 2));
}

TEST(RkCacheIteratorInt, WhatNoIntHoldsIsNoValue) {
    EXPECT_EQ(0, jumped(INT_MAX, 1000, 4000));
    EXPECT_EQ(0, crept(INT_MAX, 1000, 4000));
    EXPECT_EQ(0, jumped(5, 1, INT_MAX));
}

TEST(RkCacheIteratorSize, JumpsWithBothSidesInTurn) {
    EXPECT_EQ("32x16", sized({16, 16}, 1000, 4000, false));
    EXPECT_EQ("8x8", sized({16, 16}, 8000, 4000, false));
    EXPECT_EQ("32x32", sized({16, 16}, 1000, 8000, false));
    EXPECT_EQ("16x8", sized({16, 16}, 4000, 4000, false));
}

TEST(RkCacheIteratorSize, JumpLooksAtCountsAndNotAtSides) {
    EXPECT_EQ("128x8", sized({64, 8}, 1000, 4000, false));
}

TEST(RkCacheIteratorSize, GrowsTheSmallerSide) {
    EXPECT_EQ("32x16", sized({16, 16}, 3999, 4000, true));
    EXPECT_EQ("32x32", sized({32, 16}, 3999, 4000, true));
    EXPECT_EQ("16x32", sized({8, 32}, 3999, 4000, true));
}

TEST(RkCacheIteratorSize, ShrinksTheGreaterSide) {
    EXPECT_EQ("16x8", sized({16, 16}, 4000, 4000, true));
    EXPECT_EQ("16x16", sized({32, 16}, 4000, 4000, true));
}

TEST(RkCacheIteratorSize, BothSidesMustBeLeft) {
    EXPECT_EQ("failed 1x0", sized({1, 1}, 4000, 4000, true));
    EXPECT_EQ("failed 8x0", sized({16, 1}, 8000, 4000, false));
}

TEST(RkCacheIteratorSize, LimitsOfZeroEndTheJumpWithoutAResult) {
    EXPECT_EQ("failed 16x16", sized({16, 16}, 1000, 0, false));
    EXPECT_EQ("failed 16x16", sized({16, 16}, 0, 4000, false));
}

TEST(RkCacheIteratorSize, WhatNoIntHoldsIsNoValue) {
    EXPECT_EQ("failed 0x2147483647", sized({INT_MAX, INT_MAX}, 3999, 4000, true));
}

// kmrandom_test.cpp - tests of the generator and of random data in vectors.

#include "km.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "vectors.h"

TEST(KmRandom, FirstNumbersOfSeedSeven) {
    kmRandom random(7);
    for (int expected : {-1176842132, -1588937022, -271677650, -1382873842, 335429024, -898892348}) {
        EXPECT_EQ(random.next(), expected);
    }
}

TEST(KmRandom, FollowsItsModelForLong) {
    for (uint32_t seed : {0u, 1u, 7u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        uint32_t after = 0;
        std::vector<int32_t> expected = modelRandom(seed, 10000, &after);
        kmRandom random(seed);
        for (int32_t number : expected) ASSERT_EQ(random.next(), number) << seed;
        EXPECT_EQ(random.state(), after);
    }
}

TEST(KmVectorFill, RandomBytesOfSeedSeven) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(8, 0));
    v.setRandom(0.0, 255.0, 7);
    EXPECT_EQ(values(v), (Values{57, 33, 111, 45, 147, 74, 70, 143}));
    EXPECT_EQ(kmVector::m_seed, 3392750990u);
}

TEST(KmVectorFill, NextFillGoesOnFromTheSeedThatWasLeft) {
    kmVector v(288);
    ASSERT_TRUE(v.createVector(4, 0));
    kmVector::m_seed = 3392750990u;
    v.setRandom(-2147483648.0, 2147483647.0);
    EXPECT_EQ(values(v), truncated(modelRange(3392750990u, 4, -2147483648.0, 2147483647.0)));
    EXPECT_EQ(kmVector::m_seed, 2258166404u);
}

TEST(KmVectorFill, RandomShortsRunOverTheTypesRange) {
    kmVector v(272);
    ASSERT_TRUE(v.createVector(8, 0));
    kmVector::m_seed = 7;
    v.setRandom();
    EXPECT_EQ(values(v), (Values{-17957, -24245, -4145, -21101, 5117, -13716, -14754, 4011}));
}

TEST(KmVectorFill, RandomDoublesRunFromMinusOneToOne) {
    kmVector v(576);
    ASSERT_TRUE(v.createVector(50, 0));
    kmVector::m_seed = 7;
    v.setRandom();
    EXPECT_EQ(values(v), modelRange(7, 50, -1.0, 1.0));
}

TEST(KmVectorFill, RandomComplexElementsHaveIndependentParts) {
    kmVector v(1600);
    ASSERT_TRUE(v.createVector(5, 0));
    v.setRandom(-10.0, 20.0, 7);
    EXPECT_EQ(parts(v), modelRange(7, 10, -10.0, 20.0));
}

TEST(KmVectorFill, RandomRangeIsLimitedToTheType) {
    kmVector v(264);
    ASSERT_TRUE(v.createVector(100, 0));
    v.setRandom(-1000.0, 1000.0, 7);
    EXPECT_EQ(values(v), truncated(modelRange(7, 100, -128.0, 127.0)));
}

TEST(KmVectorFill, RandomBytesFillTheirRangeWithoutWrapping) {
    kmVector v(8);
    ASSERT_TRUE(v.createVector(100000, 0));
    v.setRandom(0.0, 255.0, 7);
    Values expected = modelRange(7, 100000, 0.0, 255.0);
    std::vector<int> counts(256);
    for (int i = 0; i < v.m_len; ++i) {
        ASSERT_GT(expected[i], -1.0);
        ASSERT_LT(expected[i], 256.0);
        ASSERT_EQ(v.p8u[i], std::trunc(expected[i]));
        ++counts[v.p8u[i]];
    }
    for (int value = 0; value < 255; ++value) EXPECT_GT(counts[value], 0) << value;
}

TEST(KmVectorFill, EndsOfTheGeneratorsRangeTruncateIntoBytes) {
    const double scale = 255.0 * 2.3283064365387e-10;
    EXPECT_LT(INT_MAX * scale + 127.5, 256.0);
    EXPECT_EQ(kmConvert<Kel8u>(INT_MAX * scale + 127.5), 254);
    EXPECT_EQ(kmConvert<Kel8u>(INT_MIN * scale + 127.5), 0);
}

TEST(KmVectorFill, RandomModeWithEqualArgumentsTakesTheWholeRange) {
    kmVector v(272), range(272);
    ASSERT_TRUE(v.createVector(8, 0) && range.createVector(8, 0));
    kmVector::m_seed = 7;
    v.setVector(SetRandom, 3.0, 3.0);
    kmVector::m_seed = 7;
    range.setVector(SetRandom, 10.0, 20.0);
    EXPECT_EQ(values(v)[0], -17957);
    EXPECT_EQ(values(range), truncated(modelRange(7, 8, 10.0, 20.0)));
}

TEST(KmVectorFill, SameSeedAndOrderGiveTheSameData) {
    kmVector a(8), b(272), c(8), d(272);
    ASSERT_TRUE(a.createVector(33, 0) && b.createVector(12, 0) && c.createVector(33, 0) &&
                d.createVector(12, 0));
    kmVector::m_seed = 7;
    a.setRandom();
    b.setRandom();
    kmVector::m_seed = 7;
    c.setRandom();
    d.setRandom();
    EXPECT_EQ(values(a), values(c));
    EXPECT_EQ(values(b), values(d));
}

TEST(KmVectorFill, RandomWithoutABlockConsumesNothing) {
    kmVector v(8);
    kmVector::m_seed = 7;
    v.setRandom();
    v.setRandom(0.0, 1.0);
    EXPECT_EQ(kmVector::m_seed, 7u);
}

TEST(KmVectorFill, RandomWithASeedKeepsItWithoutABlock) {
    kmVector v(8);
    v.setRandom(0.0, 1.0, 99u);
    EXPECT_EQ(kmVector::m_seed, 99u);
}

TEST(KmVectorFill, RandomFillOfNothingKeepsTheSeed) {
    kmVector v(8);
    unsigned char byte = 77;
    kmVector::m_seed = 123;
    v.setDataRandom(&byte, 0, 0.0, 255.0);
    EXPECT_EQ(kmVector::m_seed, 123u);
    EXPECT_EQ(byte, 77);
}

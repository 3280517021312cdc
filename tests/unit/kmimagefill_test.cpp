// kmimagefill_test.cpp - tests of kmimagefill: fills of images.

#include "km.h"

#include <cmath>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "vectors.h"

namespace {

// All elements of the rows, plane behind plane, real parts only.
std::vector<double> elements(kmImage const &image) {
    std::vector<double> all;
    for (int row = 0; row < image.getNumRows(); ++row) {
        auto *data = static_cast<unsigned char const *>(image.getRowPointer(row));
        for (int x = 0; x < image.getRowLen(); ++x) {
            all.push_back(image.getElement(data + static_cast<size_t>(x) * kmVector::item(image.m_func)));
        }
    }
    return all;
}

// What a vector of the type draws from the same seed.
std::vector<double> drawn(kmType type, int n, unsigned seed) {
    kmVector v(type);
    EXPECT_TRUE(v.createVector(n, -1));
    kmVector::m_seed = seed;
    v.setRandom();
    std::vector<double> all;
    for (int i = 0; i < n; ++i) all.push_back(v.getIndex(i));
    return all;
}

double ring(int x, int y, int w, int h, double magn, double offset) {
    double dy = y - (h - 1) * 0.5, dx = x - 0.5 * (w - 1);
    return (std::sin((dx * dx + dy * dy) * 6.283185307179586 / (h * 4.0)) + 1.0) * magn + offset;
}

} // namespace

// ---- constants ---------------------------------------------------------------

TEST(KmImageFill, FreshImageHoldsTheDefault) {
    for (kmType type : allTypes) {
        for (bool plane : {false, true}) {
            kmImage image(type, 3, plane);
            ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
            double expected = type == 544 || type == 1568 ? 1.00001f : type & kmTypeFloat ? 1.00001 : 2.0;
            EXPECT_EQ(elements(image), std::vector<double>(18, expected)) << type;
        }
    }
}

TEST(KmImageFill, RoomBetweenRowsOfAChunkyImageStaysAsItIs) {
    kmImage image(8, 3, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false)); // rows of 9 bytes, 16 apart
    memset(image.m_data, 0xAB, image.size());
    image.setConst(1.0, 1.0);
    image.setRandom(0.0, 5.0);
    image.setSequence(0.0, 5.0, 1.0, true);
    image.setJaehne(2.0);
    for (int i : {9, 15, 25, 31}) EXPECT_EQ(image.m_data[i], 0xAB);
}

TEST(KmImageFill, ConstantReachesEveryRowAndNothingElse) {
    kmImage image(272, 2, true);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    for (int i = 0; i < 2; ++i) memset(image.m_planes[i], 0x11, 32);
    image.setConst(-5.0, 0.0);
    EXPECT_EQ(elements(image), std::vector<double>(12, -5.0));
    EXPECT_EQ(image.planes16s[1][3], 0x1111);
    EXPECT_EQ(image.planes16s[1][11], 0x1111);
}

TEST(KmImageFill, LimitsOfTheType) {
    kmImage image(264, 3, true);
    ASSERT_TRUE(image.createVector(3, 2, SetMin, 0.0, 0.0));
    EXPECT_EQ(elements(image), std::vector<double>(18, -128.0));
    image.setMaxValue();
    EXPECT_EQ(elements(image), std::vector<double>(18, 127.0));
}

TEST(KmImageFill, ImageWithoutDataIsLeftAlone) {
    kmVector::m_seed = 7;
    kmImage chunky(8, 3, false), planar(8, 3, true);
    for (kmImage *image : {&chunky, &planar}) {
        image->setConst();
        image->setRandom();
        image->setSequence(0.0, 1.0);
        image->setJaehne();
    }
    EXPECT_EQ(kmVector::m_seed, 7u);
}

// ---- sequences ---------------------------------------------------------------

TEST(KmImageFill, EachRowOfASequenceStartsAgain) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    image.setSequence(10.0, 100.0, 5.0, true);
    EXPECT_EQ(elements(image), (std::vector<double>{10, 15, 20, 10, 15, 20}));
    image.setSequence(10.0, 15.0, 5.0, false);
    EXPECT_EQ(elements(image), (std::vector<double>{10, 15, 15, 10, 15, 15}));
}

TEST(KmImageFill, SequenceBetweenTwoValuesFallsByTheirDistance) {
    kmImage image(272, 1, false);
    ASSERT_TRUE(image.createImage(4, 2, -1, -1, false));
    image.setSequence(10.0, 13.0);
    EXPECT_EQ(elements(image), (std::vector<double>{10, 7, 4, 1, 10, 7, 4, 1}));
}

TEST(KmImageFill, SequenceDownwardsWraps) {
    kmImage image(272, 1, false);
    ASSERT_TRUE(image.createImage(4, 1, -1, -1, false));
    image.setSequence(5.0, 3.0); // the first step passes the high end
    EXPECT_EQ(elements(image), (std::vector<double>{5, 5, 5, 5}));
}

TEST(KmImageFill, SequenceAsAModeCounts256Elements) {
    kmImage image(544, 1, false);
    ASSERT_TRUE(image.createVector(3, 2, SetSequence, 0.0, 512.0));
    EXPECT_EQ(elements(image), (std::vector<double>{0, 2, 4, 0, 2, 4}));
}

// ---- random data -------------------------------------------------------------

TEST(KmImageFill, RandomDataRunOnThroughTheRows) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    kmVector::m_seed = 7;
    image.setRandom();
    std::vector<double> both = drawn(8, 3, 7);
    unsigned between = kmVector::m_seed;
    EXPECT_NE(between, 7u);
    for (double v : drawn(8, 3, between)) both.push_back(v);
    EXPECT_EQ(elements(image), both);
}

TEST(KmImageFill, RandomDataRunOnThroughThePlanes) {
    kmImage image(1296, 2, true);
    ASSERT_TRUE(image.createImage(3, 1, -1, -1, false));
    kmVector::m_seed = 7;
    image.setRandom();
    unsigned after = kmVector::m_seed;
    std::vector<double> both = drawn(1296, 3, 7);
    for (double v : drawn(1296, 3, kmVector::m_seed)) both.push_back(v);
    EXPECT_EQ(elements(image), both);
    EXPECT_EQ(kmVector::m_seed, after);
}

TEST(KmImageFill, RandomDataOfAGivenSeed) {
    kmImage image(544, 1, false);
    ASSERT_TRUE(image.createImage(4, 1, -1, -1, false));
    image.setRandom(-1.0, 1.0, 99);
    EXPECT_EQ(elements(image), drawn(544, 4, 99));
}

TEST(KmImageFill, RandomMode) {
    kmImage image(8, 3, true);
    kmVector::m_seed = 7;
    ASSERT_TRUE(image.createVector(16, 16, SetRandom, 3.0, 5.0));
    double low = 255.0, high = 0.0;
    for (double v : elements(image)) {
        low = std::fmin(low, v);
        high = std::fmax(high, v);
    }
    EXPECT_EQ(low, 3.0);
    EXPECT_EQ(high, 4.0);
}

// ---- rings -------------------------------------------------------------------

TEST(KmImageFill, NegativeMagnitudeWritesNothing) {
    kmImage image(8, 3, false);
    ASSERT_TRUE(image.createVector(3, 2, SetValue, 77.0, 0.0));
    image.setJaehne(-1.0);
    EXPECT_EQ(elements(image), std::vector<double>(18, 77.0));
}

TEST(KmImageFill, RingsOfAFloatingImage) {
    kmImage image(576, 1, false);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    image.setJaehne();
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 5; ++x) EXPECT_EQ(image.getIndex(x, y, 0), ring(x, y, 5, 4, 1.0, 0.0));
    }
}

TEST(KmImageFill, RingsAreAlikeInAllChannelsAndParts) {
    kmImage image(1600, 3, false);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    image.setJaehne(0.5);
    for (int c = 0; c < 3; ++c) {
        double re = 0.0, im = 0.0;
        image.getIndex(4, 3, c, re, im);
        EXPECT_EQ(re, ring(4, 3, 5, 4, 0.5, 0.0));
        EXPECT_EQ(im, re);
        image.getIndex(2, 1, c, re, im);
        EXPECT_EQ(re, ring(2, 1, 5, 4, 0.5, 0.0));
        EXPECT_EQ(im, re);
    }
}

TEST(KmImageFill, UpperHalfOfUnsignedRingsWrapsAround) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(16, 16, -1, -1, false));
    image.setJaehne();
    bool wrapped = false;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            int v = static_cast<int>(ring(x, y, 16, 16, 127.5, 127.5));
            wrapped = wrapped || v > 255;
            EXPECT_EQ(image.getIndex(x, y, 0), v % 256);
        }
    }
    EXPECT_TRUE(wrapped);
    EXPECT_EQ(kmConvert<Kel8u>(300.0), 44);
}

TEST(KmImageFill, MagnitudeIsLimitedToHalfTheRange) {
    kmImage large(264, 1, false), half(264, 1, false);
    ASSERT_TRUE(large.createImage(8, 8, -1, -1, false));
    ASSERT_TRUE(half.createImage(8, 8, -1, -1, false));
    large.setJaehne(1e9);
    half.setJaehne(127.5);
    EXPECT_EQ(elements(large), elements(half));
}

TEST(KmImageFill, SeparatePlanesGetNoRings) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createVector(3, 2, SetValue, 77.0, 0.0));
    image.setJaehne();
    EXPECT_EQ(elements(image), std::vector<double>(18, 77.0));
}

TEST(KmImageFill, PlanesInOneBlockGetRings) {
    kmImage image(1568, 2, true);
    ASSERT_TRUE(image.allocateVector(2 * 4 * 48, 0, nullptr));
    image.m_width = 5;
    image.m_height = 4;
    image.m_step = 48;
    image.setJaehne();
    for (int c = 0; c < 2; ++c) {
        double re = 0.0, im = 0.0;
        image.getIndex(4, 3, c, re, im);
        EXPECT_EQ(re, static_cast<float>(ring(4, 3, 5, 4, 1.0, 0.0)));
        EXPECT_EQ(im, re);
    }
}

TEST(KmImageFill, RingsOfEveryTypeStayInTheirBlock) {
    for (kmType type : allTypes) {
        for (int channels = 1; channels <= 4; ++channels) {
            kmImage image(type, channels, false);
            ASSERT_TRUE(image.createVector(3, 3, SetZero, 0.0, 0.0));
            image.setJaehne();
            for (int c = 0; c < channels; ++c) {
                EXPECT_EQ(image.getIndex(0, 0, c), image.getIndex(2, 2, c)) << type;
                EXPECT_NE(image.getIndex(0, 0, c), 0.0) << type;
            }
        }
    }
}

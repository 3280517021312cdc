// kmbmppixels_test.cpp - tests of kmbmp: palettes and pixels of bitmap files.

#include <climits>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "bitmapfile.h"

// ---- palettes ----------------------------------------------------------------

TEST_F(KmBmpFile, EntriesOfThePalette) {
    auto entries = [&](unsigned bits, unsigned used, unsigned compression = 0) {
        m_file.m_infoHeader.biBitCount = static_cast<Kel16u>(bits);
        m_file.m_infoHeader.biClrUsed = used;
        m_file.m_infoHeader.biCompression = compression;
        return m_file.GetPaletteNum();
    };
    EXPECT_EQ(entries(8, 300), 256);
    EXPECT_EQ(entries(8, 0), 256);
    EXPECT_EQ(entries(8, 2), 2);
    EXPECT_EQ(entries(8, 0xFFFFFFFF), 256);
    EXPECT_EQ(entries(4, 0), 16);
    EXPECT_EQ(entries(1, 0), 2);
    EXPECT_EQ(entries(1, 1), 1);
    EXPECT_EQ(entries(24, 5), 0);
    EXPECT_EQ(entries(8, 5, 1), 0);
}

TEST_F(KmBmpFile, IndexBehindThePalettePaintsWithItsLastEntry) {
    Bitmap b;
    b.width = 4;
    b.used = 2;
    b.palette = std::vector<Color>{{10, 10, 10}, {20, 20, 20}};
    b.pixels = raw({0, 1, 5, 255});
    ASSERT_TRUE(load(b));
    EXPECT_EQ(row(0), (std::vector<int>{10, 20, 20, 20}));
}

TEST_F(KmBmpFile, MoreEntriesThanTheBitsCountAreNotRead) {
    Bitmap b;
    b.width = 2;
    b.bits = 1;
    b.used = 300;
    b.palette = std::vector<Color>{{10, 10, 10}, {20, 20, 20}, red};
    b.pixels = raw({2, 0, 0, 0});
    ASSERT_TRUE(load(b));
    expectImage("Image 8u_C1 size=2x1");
    EXPECT_EQ(row(0), (std::vector<int>{10, 20}));
}

TEST_F(KmBmpFile, BlackAndWhiteIsGray) {
    Bitmap b;
    b.bits = 1;
    b.palette = std::vector<Color>{black, white};
    b.pixels = raw({1, 0, 0, 0});
    ASSERT_TRUE(load(b));
    expectImage("Image 8u_C1 size=1x1");
    EXPECT_EQ(row(0), std::vector<int>{255});
}

TEST_F(KmBmpFile, OneColorMakesThreeChannels) {
    Bitmap b;
    b.bits = 1;
    b.palette = std::vector<Color>{black, red};
    b.pixels = raw({1, 0, 0, 0});
    ASSERT_TRUE(load(b));
    expectImage("Image 8u_C3 size=1x1");
    EXPECT_EQ(row(0), (std::vector<int>{0, 0, 255}));
}

TEST_F(KmBmpFile, NoEntriesAreGray) {
    m_file.m_infoHeader.biBitCount = 24;
    EXPECT_TRUE(m_file.IsGrayPalette());
}

TEST_F(KmBmpFile, PaletteOfAnEarlierFileDoesNotStay) {
    Bitmap b;
    b.palette = colorRamp(256);
    b.pixels = raw({1, 0, 0, 0});
    ASSERT_TRUE(m_file.load(m_dir.write("a.bmp", b.bytes()), -1));
    expectImage("Image 8u_C3 size=1x1");
    b.palette = grayRamp(256);
    ASSERT_TRUE(m_file.load(m_dir.write("b.bmp", b.bytes()), -1));
    expectImage("Image 8u_C1 size=1x1");
}

TEST_F(KmBmpFile, PixelInColorIsBlueGreenRed) {
    unsigned char data[9];
    memset(data, 0xEE, sizeof data);
    m_image.init(8, 3, false);
    m_file.m_infoHeader.biBitCount = 4;
    m_file.m_palette[15] = {1, 2, 3, 4};
    m_file.SetPixel(200, data, 1);
    EXPECT_EQ(memcmp(data, "\xEE\xEE\xEE\1\2\3\xEE\xEE\xEE", 9), 0);
}

TEST_F(KmBmpFile, PixelInGrayIsBlue) {
    unsigned char data[3] = {9, 9, 9};
    m_image.init(8, 1, false);
    m_file.m_infoHeader.biBitCount = 8;
    m_file.m_palette[200] = {1, 2, 3, 4};
    m_file.SetPixel(200, data, 1);
    EXPECT_EQ(memcmp(data, "\x9\1\x9", 3), 0);
}

// ---- pixels ------------------------------------------------------------------

TEST_F(KmBmpFile, RowsOfAFileAreMultiplesOf4Bytes) {
    auto step = [&](unsigned bits, int width) {
        m_file.m_infoHeader.biBitCount = static_cast<Kel16u>(bits);
        m_file.m_infoHeader.biWidth = width;
        m_file.m_infoHeader.biHeight = 10;
        m_file.m_infoHeader.biPlanes = 1;
        EXPECT_EQ(m_file.GetDataSize(), m_file.GetDataStep() * 10);
        return m_file.GetDataStep();
    };
    EXPECT_EQ(step(1, 1), 4);
    EXPECT_EQ(step(1, 32), 4);
    EXPECT_EQ(step(1, 33), 8);
    EXPECT_EQ(step(4, 9), 8);
    EXPECT_EQ(step(8, 5), 8);
    EXPECT_EQ(step(24, 3), 12);
    EXPECT_EQ(step(32, 3), 12);
}

TEST_F(KmBmpFile, SizesThatNoIntHoldsAreCut) {
    m_file.m_infoHeader.biBitCount = 65535;
    m_file.m_infoHeader.biWidth = INT_MAX;
    m_file.m_infoHeader.biHeight = INT_MAX;
    m_file.m_infoHeader.biPlanes = 65535;
    EXPECT_EQ(m_file.GetDataStep(), INT_MAX);
    EXPECT_EQ(m_file.GetDataSize(), INT_MAX);
    m_file.m_infoHeader.biHeight = INT_MIN;
    EXPECT_EQ(m_file.GetDataSize(), INT_MIN);
}

TEST_F(KmBmpFile, PackedPixelsAreThoseOfUpTo8Bits) {
    m_file.m_infoHeader.biBitCount = 8;
    EXPECT_TRUE(m_file.IsCompressed());
    m_file.m_infoHeader.biBitCount = 9;
    EXPECT_FALSE(m_file.IsCompressed());
    m_file.m_infoHeader.biBitCount = 8;
    m_file.m_infoHeader.biCompression = 1;
    EXPECT_FALSE(m_file.IsCompressed());
    unsigned char none = 0;
    m_file.m_infoHeader.biBitCount = 24;
    EXPECT_FALSE(m_file.SetImageData(&none));
}

TEST_F(KmBmpFile, EightBitsAreOneIndex) {
    Bitmap b;
    b.width = 3;
    b.height = 2;
    b.palette = colorRamp(256);
    b.pixels = raw({7, 8, 9, 99, 250, 0, 255, 99}); // a byte of room behind each row
    ASSERT_TRUE(load(b));
    expectImage("Image 8u_C3 size=3x2");
    EXPECT_EQ(row(0), (std::vector<int>{7, 100, 200, 8, 100, 200, 9, 100, 200}));
    EXPECT_EQ(row(1), (std::vector<int>{250, 100, 200, 0, 100, 200, 255, 100, 200}));
}

TEST_F(KmBmpFile, FourBitsGoFromTheHighHalfToTheLow) {
    Bitmap b;
    b.bits = 4;
    b.width = 5;
    b.height = 2;
    b.palette = grayRamp(16);
    b.pixels = raw({0x12, 0x34, 0x5F, 0xFF, 0xAB, 0xCD, 0xE0, 0xFF});
    ASSERT_TRUE(load(b));
    EXPECT_EQ(row(0), (std::vector<int>{1, 2, 3, 4, 5})); // the fifth is the high half of byte 2
    EXPECT_EQ(row(1), (std::vector<int>{10, 11, 12, 13, 14}));
}

TEST_F(KmBmpFile, OneBitGoesFromTheTopInWholeBytesAndFromTheLowEndInTheRest) {
    Bitmap b;
    b.bits = 1;
    b.width = 9;
    b.height = 2;
    b.palette = std::vector<Color>{{10, 10, 10}, {20, 20, 20}};
    b.pixels = raw({0xB1, 0x01, 0xFF, 0xFF, 0x4E, 0xFE, 0xFF, 0xFF});
    ASSERT_TRUE(load(b));
    EXPECT_EQ(row(0), (std::vector<int>{20, 10, 20, 20, 10, 10, 10, 20, 20}));
    EXPECT_EQ(row(1), (std::vector<int>{10, 20, 10, 10, 20, 20, 20, 10, 10}));
}

TEST_F(KmBmpFile, RestOfABitRowRunsUpwards) {
    Bitmap b;
    b.bits = 1;
    b.width = 3;
    b.palette = std::vector<Color>{{10, 10, 10}, {20, 20, 20}};
    b.pixels = raw({0x06, 0, 0, 0});
    ASSERT_TRUE(load(b));
    EXPECT_EQ(row(0), (std::vector<int>{10, 20, 20}));
}

TEST_F(KmBmpFile, BitImageOfOneEntryHasOneColor) {
    Bitmap b;
    b.bits = 1;
    b.width = 9;
    b.used = 1;
    b.palette = std::vector<Color>{mixed};
    b.pixels = raw({0xB1, 0x01, 0, 0});
    ASSERT_TRUE(load(b));
    for (int x = 0; x < 9; ++x) {
        for (int c = 0; c < 3; ++c) EXPECT_EQ(m_image.getIndex(x, 0, c), c + 1.0);
    }
}

TEST_F(KmBmpFile, DirectPixelsHaveAChannelForEachByte) {
    struct {
        unsigned bits;
        char const *info;
    } cases[] = {
        {16, "Image 8u_C2 size=16x2"}, {24, "Image 8u_C3 size=16x2"}, {32, "Image 8u_AC4 size=16x2"}};
    for (auto const &c : cases) {
        Bitmap b;
        b.bits = c.bits;
        b.width = 16;
        b.height = 2;
        int bytes = 16 * static_cast<int>(c.bits) / 8;
        for (int i = 0; i < 2 * bytes; ++i) b.pixels += static_cast<char>(i);
        ASSERT_TRUE(load(b));
        expectImage(c.info);
        for (int i = 0; i < bytes; ++i) {
            EXPECT_EQ(row(0)[static_cast<size_t>(i)], i);
            EXPECT_EQ(row(1)[static_cast<size_t>(i)], bytes + i);
        }
    }
}

TEST_F(KmBmpFile, DirectPixelsAreCopiedInOnePieceWhateverTheStep) {
    Bitmap b;
    b.bits = 24;
    b.width = 4; // rows of 12 bytes in the file, of 16 in the image
    b.height = 2;
    for (int i = 0; i < 24; ++i) b.pixels += static_cast<char>(100 + i);
    ASSERT_TRUE(load(b));
    EXPECT_EQ(m_image.m_step, 16);
    EXPECT_EQ(row(0)[0], 100);
    EXPECT_EQ(row(1)[0], 116);
    EXPECT_EQ(row(1)[7], 123);
    EXPECT_EQ(row(1)[8], 2); // behind the end of the file
}

TEST_F(KmBmpFile, GapInFrontOfThePixelsIsPassed) {
    Bitmap b;
    b.palette = grayRamp(256);
    b.gap = 7;
    b.pixels = raw({77, 0, 0, 0});
    ASSERT_TRUE(load(b));
    EXPECT_EQ(row(0), std::vector<int>{77});
}

TEST_F(KmBmpFile, AlignIsThatOfTheImage) {
    Bitmap b;
    b.palette = grayRamp(256);
    b.pixels = raw({77, 0, 0, 0});
    ASSERT_TRUE(m_file.load(m_dir.write("a.bmp", b.bytes()), 5));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(m_image.m_data) % 64, 5u);
}

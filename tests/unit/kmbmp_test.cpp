// kmbmp_test.cpp - tests of kmbmp: headers, checks, palettes and pixels of bitmap files.

#include "km.h"

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "capture.h"
#include "tempdir.h"

namespace {

struct Color {
    int blue, green, red;
};

const Color black = {0, 0, 0}, white = {255, 255, 255}, red = {0, 0, 255}, mixed = {1, 2, 3};

// A bitmap file as a writer sees it. The pixels stand directly behind the palette, but for a gap.
struct Bitmap {
    unsigned type = 0x4D42; // "BM"
    int width = 1, height = 1;
    unsigned planes = 1, bits = 8, compression = 0, used = 0;
    std::vector<Color> palette;
    std::string pixels;
    int gap = 0;
    bool reversed = false;

    std::string bytes() const {
        std::string file;
        put(file, type, 2);
        put(file, 0x11111111, 4); // what no reader looks at is spoiled
        put(file, 0x2222, 2);
        put(file, 0x3333, 2);
        put(file, static_cast<unsigned>(54 + 4 * palette.size()) + gap, 4);
        put(file, 0x44444444, 4);
        put(file, static_cast<unsigned>(width), 4);
        put(file, static_cast<unsigned>(height), 4);
        put(file, planes, 2);
        put(file, bits, 2);
        put(file, compression, 4);
        for (unsigned spoiled : {0x55555555u, 0x66666666u, 0x77777777u}) put(file, spoiled, 4);
        put(file, used, 4);
        put(file, 0x88888888u, 4);
        for (Color const &c : palette) {
            for (int v : {c.blue, c.green, c.red, 0xEE}) file += static_cast<char>(v);
        }
        return file + std::string(static_cast<size_t>(gap), '\xDD') + pixels;
    }

private:
    void put(std::string &file, unsigned value, int n) const {
        for (int i = 0; i < n; ++i) {
            file += static_cast<char>(value >> 8 * (reversed ? n - 1 - i : i));
        }
    }
};

std::vector<Color> grayRamp(int n) {
    std::vector<Color> palette;
    for (int i = 0; i < n; ++i) palette.push_back({i, i, i});
    return palette;
}

// Blue encodes the index, so that every entry is known by its first byte.
std::vector<Color> colorRamp(int n) {
    std::vector<Color> palette;
    for (int i = 0; i < n; ++i) palette.push_back({i, 100, 200});
    return palette;
}

std::string raw(std::initializer_list<int> bytes) {
    std::string text;
    for (int b : bytes) text += static_cast<char>(b);
    return text;
}

#if defined(__SANITIZE_ADDRESS__)
const bool underAddressSanitizer = true;
#elif defined(__has_feature)
const bool underAddressSanitizer = __has_feature(address_sanitizer);
#else
const bool underAddressSanitizer = false;
#endif

class KmBmpFile : public testing::Test {
protected:
    bool load(Bitmap const &bitmap) { return load(bitmap.bytes()); }
    bool load(std::string const &bytes) {
        m_name = str(m_dir.write("picture.bmp", bytes));
        return m_image.loadImage(m_name.c_str(), -1);
    }
    std::string said() { return m_log.text(); }
    std::string message(std::string const &text) {
        return "--- Can't load file " + m_name + ": " + text + "\n";
    }
    // The bytes of a row's elements.
    std::vector<int> row(int y) {
        auto *data = static_cast<unsigned char *>(m_image.getRowPointer(y));
        return std::vector<int>(data, data + m_image.getRowLen());
    }
    void expectImage(char const *info) { EXPECT_EQ(str(m_image.objectInfo()), info); }

    TempDir m_dir;
    CaptureLog m_log{MsgError};
    kmImage m_image{544, 2, true};
    kmBmpFile m_file{&m_image};
    std::string m_name;
};

} // namespace

// ---- headers -----------------------------------------------------------------

TEST_F(KmBmpFile, PlainFileLoadsAsItIs) {
    Bitmap b;
    b.width = 4;
    b.height = 2;
    b.palette = grayRamp(256);
    b.pixels = raw({1, 2, 3, 4, 5, 6, 7, 250});
    ASSERT_TRUE(load(b));
    expectImage("Image 8u_C1 size=4x2");
    EXPECT_EQ(m_image.m_step, 16);
    EXPECT_EQ(row(0), (std::vector<int>{1, 2, 3, 4})); // the order of the file
    EXPECT_EQ(row(1), (std::vector<int>{5, 6, 7, 250}));
    EXPECT_EQ(said(), "");
}

TEST_F(KmBmpFile, FileWithItsBytesTheOtherWayRoundLoadsToo) {
    Bitmap b;
    b.reversed = true;
    b.width = 4;
    b.palette = grayRamp(200);
    b.used = 200;
    b.gap = 3;
    b.pixels = raw({9, 8, 7, 6});
    ASSERT_EQ(b.bytes().substr(0, 2), "MB");
    ASSERT_TRUE(load(b));
    expectImage("Image 8u_C1 size=4x1");
    EXPECT_EQ(row(0), (std::vector<int>{9, 8, 7, 6}));
}

TEST_F(KmBmpFile, AllFieldsAreReversed) {
    for (bool reversed : {false, true}) {
        Bitmap b;
        b.reversed = reversed;
        b.width = 0x01020304;
        b.height = -2;
        b.planes = 0x0506;
        b.bits = 0x0708;
        b.compression = 0x090A0B0C;
        b.used = 0x0D0E0F10;
        ASSERT_TRUE(m_file.readInfoHeader(m_dir.write("h.bmp", b.bytes())));
        EXPECT_EQ(m_file.m_fileHeader.bfType, 0x4D42);
        EXPECT_EQ(m_file.m_fileHeader.bfSize, 0x11111111u);
        EXPECT_EQ(m_file.m_fileHeader.bfReserved1, 0x2222);
        EXPECT_EQ(m_file.m_fileHeader.bfReserved2, 0x3333);
        EXPECT_EQ(m_file.m_fileHeader.bfOffBits, 54u);
        EXPECT_EQ(m_file.m_infoHeader.biSize, 0x44444444u);
        EXPECT_EQ(m_file.m_infoHeader.biWidth, 0x01020304);
        EXPECT_EQ(m_file.m_infoHeader.biHeight, -2);
        EXPECT_EQ(m_file.m_infoHeader.biPlanes, 0x0506);
        EXPECT_EQ(m_file.m_infoHeader.biBitCount, 0x0708);
        EXPECT_EQ(m_file.m_infoHeader.biCompression, 0x090A0B0Cu);
        EXPECT_EQ(m_file.m_infoHeader.biSizeImage, 0x55555555u);
        EXPECT_EQ(m_file.m_infoHeader.biXPelsPerMeter, 0x66666666);
        EXPECT_EQ(m_file.m_infoHeader.biYPelsPerMeter, 0x77777777);
        EXPECT_EQ(m_file.m_infoHeader.biClrUsed, 0x0D0E0F10u);
        EXPECT_EQ(m_file.m_infoHeader.biClrImportant, 0x88888888u);
    }
}

TEST_F(KmBmpFile, HeadersAloneLeaveTheImage) {
    Bitmap b;
    b.width = -5;
    ASSERT_TRUE(m_file.readInfoHeader(m_dir.write("h.bmp", b.bytes())));
    EXPECT_EQ(m_file.m_infoHeader.biWidth, -5);
    EXPECT_EQ(m_image.m_type, 544);
    EXPECT_EQ(said(), "");
}

TEST_F(KmBmpFile, FileThatIsNotThere) {
    rkString name = m_dir / "none.bmp";
    EXPECT_FALSE(m_file.load(name, -1));
    EXPECT_FALSE(m_file.readInfoHeader(name));
    std::string line = "--- Can't load file " + str(name) + ": Open error\n";
    EXPECT_EQ(said(), line + line);
}

TEST_F(KmBmpFile, OtherFilesAreNoBitmaps) {
    Bitmap b;
    b.type = 0x4D43;
    EXPECT_FALSE(load(b));
    EXPECT_EQ(said(), message("Bitmap files are valid only"));
}

TEST_F(KmBmpFile, EmptyFileIsNoBitmap) {
    EXPECT_FALSE(load(std::string()));
    EXPECT_EQ(said(), message("Bitmap files are valid only"));
}

TEST_F(KmBmpFile, DirectoryIsNoBitmap) {
    m_name = m_dir.path();
    EXPECT_FALSE(m_file.load(m_name.c_str(), -1));
    EXPECT_EQ(said(), message("Bitmap files are valid only"));
}

TEST_F(KmBmpFile, MessageLevelIsRestored) {
    m_file.m_name = "x";
    EXPECT_FALSE(m_file.error("y"));
    EXPECT_EQ(said(), "--- Can't load file x: y\n");
    EXPECT_TRUE(g_ostrm.m_msgStack.empty());
}

// ---- cut files ---------------------------------------------------------------

TEST_F(KmBmpFile, CutFileHeaderFails) {
    Bitmap b;
    EXPECT_FALSE(load(b.bytes().substr(0, 13)));
    EXPECT_FALSE(m_file.readInfoHeader(m_dir.write("h.bmp", b.bytes().substr(0, 13))));
}

TEST_F(KmBmpFile, CutInfoHeaderFailsByTheFieldThatIsMissing) {
    Bitmap b;
    b.palette = grayRamp(256);
    EXPECT_FALSE(load(b.bytes().substr(0, 18)));
    EXPECT_EQ(said(), message("Bitmap header is corrupted: biWidth is invalid"));
    EXPECT_FALSE(m_file.readInfoHeader(m_dir.write("h.bmp", b.bytes().substr(0, 53))));
}

TEST_F(KmBmpFile, CutPaletteFailsWithoutAMessage) {
    Bitmap b;
    b.palette = grayRamp(255); // of the 256 that 8 bits can count
    b.width = b.height = 16000;
    EXPECT_FALSE(load(b));
    EXPECT_EQ(said(), "");
    EXPECT_EQ(m_image.m_data, nullptr); // no room is taken for it
}

TEST_F(KmBmpFile, CutIndexesFailWithoutAMessage) {
    Bitmap b;
    b.width = 4;
    b.height = 2;
    b.palette = grayRamp(256);
    b.pixels = raw({1, 2, 3, 4, 5, 6, 7});
    EXPECT_FALSE(load(b));
    EXPECT_EQ(said(), "");
    expectImage("Image 8u_C1 size=4x2"); // with its default content
    EXPECT_EQ(row(0), (std::vector<int>{2, 2, 2, 2}));
}

TEST_F(KmBmpFile, CutDirectPixelsAreTakenAsFarAsTheyGo) {
    Bitmap b;
    b.width = 4;
    b.bits = 32;
    b.pixels = raw({1, 2, 3, 4, 5});
    EXPECT_TRUE(load(b));
    EXPECT_EQ(row(0), (std::vector<int>{1, 2, 3, 4, 5, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2}));
}

TEST_F(KmBmpFile, PixelsMayBeginBehindTheEndOfTheFile) {
    Bitmap b;
    b.palette = grayRamp(256);
    std::string bytes = b.bytes();
    bytes.replace(10, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_FALSE(load(bytes));
    EXPECT_EQ(said(), "");
}

// ---- checks ------------------------------------------------------------------

TEST_F(KmBmpFile, ChecksHaveTheirMessages) {
    struct {
        void (*spoil)(Bitmap &);
        char const *text;
    } cases[] = {
        {[](Bitmap &b) { b.compression = 1; }, "Compression is not valid"},
        {[](Bitmap &b) { b.width = 0; }, "Bitmap header is corrupted: biWidth is invalid"},
        {[](Bitmap &b) { b.width = INT_MIN; }, "Bitmap header is corrupted: biWidth is invalid"},
        {[](Bitmap &b) { b.height = 0; }, "Bitmap header is corrupted: biHeight is invalid"},
        {[](Bitmap &b) { b.height = -1; }, "Bitmap header is corrupted: biHeight is invalid"},
        {[](Bitmap &b) { b.bits = 2; }, "Bitmap header is corrupted: biBitCount is invalid"},
        {[](Bitmap &b) { b.bits = 0; }, "Bitmap header is corrupted: biBitCount is invalid"},
        {[](Bitmap &b) { b.bits = 65535; }, "Bitmap header is corrupted: biBitCount is invalid"},
        {[](Bitmap &b) { b.planes = 0; }, "Bitmap header is corrupted: biPlanes is invalid"},
        {[](Bitmap &b) { b.planes = 3; }, "Bitmap header is corrupted: biPlanes is invalid"},
    };
    std::string expected;
    for (auto const &c : cases) {
        Bitmap b;
        b.palette = grayRamp(256);
        b.pixels = raw({1, 0, 0, 0});
        c.spoil(b);
        EXPECT_FALSE(load(b));
        expected += message(c.text);
        EXPECT_EQ(said(), expected);
        EXPECT_EQ(m_image.m_data, nullptr);
    }
}

TEST_F(KmBmpFile, FirstFailedCheckSpeaks) {
    Bitmap b;
    b.compression = 1;
    b.width = b.height = -1;
    b.bits = 2;
    b.planes = 9;
    std::string expected;
    EXPECT_FALSE(load(b));
    expected += message("Compression is not valid");
    b.compression = 0;
    EXPECT_FALSE(load(b));
    expected += message("Bitmap header is corrupted: biWidth is invalid");
    b.width = 1;
    EXPECT_FALSE(load(b));
    expected += message("Bitmap header is corrupted: biHeight is invalid");
    b.height = 1;
    EXPECT_FALSE(load(b));
    expected += message("Bitmap header is corrupted: biBitCount is invalid");
    b.bits = 24;
    EXPECT_FALSE(load(b));
    expected += message("Bitmap header is corrupted: biPlanes is invalid");
    EXPECT_EQ(said(), expected);
}

TEST_F(KmBmpFile, SingleChecksGiveTheirValue) {
    m_file.m_infoHeader.biWidth = 7;
    m_file.m_infoHeader.biHeight = 9;
    m_file.m_infoHeader.biBitCount = 24;
    m_file.m_infoHeader.biPlanes = 1;
    int width = 0, height = 0, channels = 0;
    kmType type = 0;
    bool plane = true;
    EXPECT_TRUE(m_file.ValidCompression() && m_file.SetImageWidth(width) && m_file.SetImageHeight(height));
    EXPECT_TRUE(m_file.SetImageType(type) && m_file.SetImagePlane(plane) &&
                m_file.SetImageChannels(channels));
    EXPECT_EQ(width, 7);
    EXPECT_EQ(height, 9);
    EXPECT_EQ(type, 8);
    EXPECT_FALSE(plane);
    EXPECT_EQ(channels, 3);
    m_file.m_infoHeader.biCompression = 1;
    EXPECT_FALSE(m_file.SetImageType(type));
    EXPECT_FALSE(m_file.SetImagePlane(plane));
    m_file.m_infoHeader.biBitCount = 2;
    EXPECT_FALSE(m_file.SetImageChannels(channels));
}

TEST_F(KmBmpFile, ImageThatNoMemoryHoldsFails) {
    Bitmap b;
    b.width = b.height = INT_MAX;
    b.bits = 32;
    EXPECT_FALSE(load(b));
    EXPECT_EQ(said().substr(0, 32), "-- Memory error: can't allocate ");
    EXPECT_EQ(m_image.m_data, nullptr);
}

TEST_F(KmBmpFile, ImageThatAsksForMoreThanThereIsFails) {
    if (underAddressSanitizer) GTEST_SKIP() << "it needs the room";
    rlimit old, small;
    ASSERT_EQ(getrlimit(RLIMIT_AS, &old), 0);
    small = {1 << 28, old.rlim_max};
    Bitmap b;
    b.width = b.height = 16384;
    b.bits = 32;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &small), 0);
    bool loaded = load(b);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &old), 0);
    EXPECT_FALSE(loaded);
    EXPECT_EQ(said(), "-- Memory error: can't allocate 1073741824 bytes\n");
}

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

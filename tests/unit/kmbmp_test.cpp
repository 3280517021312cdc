// kmbmp_test.cpp - tests of kmbmp: headers and checks of bitmap files.

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "bitmapfile.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
const bool underAddressSanitizer = true;
#elif defined(__has_feature)
const bool underAddressSanitizer = __has_feature(address_sanitizer);
#else
const bool underAddressSanitizer = false;
#endif

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

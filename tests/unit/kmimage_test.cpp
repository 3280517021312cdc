// kmimage_test.cpp - tests of kmimage: blocks, planes, rows, elements and copies. Fills:
// kmimagefill_test.cpp.

#include "km.h"

#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "capture.h"
#include "text.h"
#include "vectors.h"

namespace {

int stepOf(kmType type, int channels, bool plane, int w) {
    kmImage image(type, channels, plane);
    return image.createImage(w, 2, -1, -1, false) ? image.m_step : -1;
}

} // namespace

// ---- construction ------------------------------------------------------------

TEST(KmImage, IsEmptyAtFirst) {
    kmImage image(8, 1, false);
    EXPECT_EQ(image.m_width, 0);
    EXPECT_EQ(image.m_height, 0);
    EXPECT_EQ(image.m_step, 0);
    EXPECT_EQ(image.m_len, 0);
    EXPECT_EQ(image.getDataConst(), nullptr);
    EXPECT_EQ(image.size(), 0);
    EXPECT_EQ(image.objectSize(), 0);
    EXPECT_EQ(str(image.getString()), "");
    for (void *view : planeViews(image)) EXPECT_EQ(view, nullptr);
}

TEST(KmImage, PseudoNameTellsTypeAndChannels) {
    EXPECT_EQ(str(kmImage(8, 1, false).m_func), "_8u_C1");
    EXPECT_EQ(str(kmImage(272, 3, true).m_func), "_16s_P3");
    EXPECT_EQ(str(kmImage(1568, 4, false).m_func), "_32fc_AC4");
}

TEST(KmImage, ChannelStringOfFourHoldsAlpha) {
    EXPECT_EQ(str(kmImage::channelString(4, false)), "AC4");
    EXPECT_EQ(str(kmImage::channelString(4, true)), "AP4");
    EXPECT_EQ(str(kmImage::channelString(3, false)), "C3");
}

TEST(KmImage, ChannelStringOfOnePlane) {
    EXPECT_EQ(str(kmImage::channelString(1, true)), "P1");
}

TEST(KmImage, AlphaIsAChannelButNoPayload) {
    EXPECT_EQ(kmImage::numChannels("_8u_AC4"), 4);
    EXPECT_EQ(kmImage::numActualChannels("_8u_AC4"), 3);
    EXPECT_EQ(kmImage::numActualChannels("_8u_C4"), 4);
}

TEST(KmImage, ChannelsAreTheGreatestDigitOfTheDescriptor) {
    EXPECT_EQ(kmImage::numChannels("_8u_C1"), 1);
    EXPECT_EQ(kmImage::numChannels("_8u_P2"), 2);
    EXPECT_EQ(kmImage::numChannels("_8u_C3P4"), 4);
    EXPECT_EQ(kmImage::numChannels("_8u_R"), 1);
    EXPECT_EQ(kmImage::numActualChannels("_8u_AC3"), 3);
}

TEST(KmImage, PlanesAreTheLetterPOfTheDescriptor) {
    EXPECT_TRUE(kmImage::isPlane("_8u_P3"));
    EXPECT_TRUE(kmImage::isPlane("_8u_AP4"));
    EXPECT_FALSE(kmImage::isPlane("keliPrepare_8u_C3"));
}

TEST(KmImage, InitDeletesTheBlock) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    image.init(544, 3, false);
    EXPECT_EQ(image.m_data, nullptr);
    EXPECT_EQ(image.m_width, 0);
    EXPECT_EQ(image.m_type, 544);
    EXPECT_EQ(countBlocks(), 0);
}

// ---- one block ---------------------------------------------------------------

TEST(KmImage, StepIsTheRowRoundedUpTo16) {
    EXPECT_EQ(stepOf(8, 1, false, 3), 16);
    EXPECT_EQ(stepOf(8, 3, false, 3), 16);
    EXPECT_EQ(stepOf(272, 3, false, 6), 48);
    EXPECT_EQ(stepOf(8, 1, false, 16), 16);
    EXPECT_EQ(stepOf(8, 1, false, 17), 32);
    EXPECT_EQ(stepOf(1600, 4, false, 3), 192);
    EXPECT_EQ(stepOf(8, 3, true, 16), 16);
}

TEST(KmImage, GivenStepIsTakenAsItStands) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 4, 5, 0, false));
    EXPECT_EQ(image.m_step, 5);
    EXPECT_EQ(image.size(), 20);
    EXPECT_EQ(blockSize(image.m_data), 20);
    EXPECT_EQ(image.getRowPointer(2), image.m_data + 10);
}

TEST(KmImage, ChunkyImageIsOneTrackedBlockOfItsOwn) {
    kmImage image(272, 3, false);
    ASSERT_TRUE(image.createImage(6, 4, -1, 0, false));
    void *owner = nullptr;
    EXPECT_EQ(blockSize(image.m_data, &owner), 192);
    EXPECT_EQ(owner, static_cast<rkObject *>(&image));
    EXPECT_EQ(image.getDataConst(), image.m_data);
    EXPECT_EQ(static_cast<void *>(image.p16s), image.m_data);
    EXPECT_EQ(countBlocks(), 1);
    EXPECT_EQ(image.m_len, 0);
}

TEST(KmImage, SizesOfAChunkyImage) {
    kmImage image(272, 4, false);
    ASSERT_TRUE(image.createImage(5, 3, -1, 0, false));
    EXPECT_EQ(image.getNumRows(), 3);
    EXPECT_EQ(image.getRowLen(), 20);
    EXPECT_EQ(image.numItems(), 60);
    EXPECT_EQ(image.numActualItems(), 45);
    EXPECT_EQ(image.objectSize(), 120);
    EXPECT_EQ(image.size(), 144);
    EXPECT_EQ(str(image.objectInfo()), "Image 16s_AC4 size=5x3");
}

TEST(KmImage, SizeFormMakesTheSame) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(KeliSize{7, 2}, 24, 0, false));
    EXPECT_EQ(str(image.objectInfo()), "Image 8u_C1 size=7x2");
    EXPECT_EQ(image.m_step, 24);
}

TEST(KmImage, AlignIsThatOfAVector) {
    rkTest::m_vectorNum = 0;
    rkSetVectorAlign(3);
    kmImage image(272, 1, false);
    ASSERT_TRUE(image.createImage(4, 4, -1, -1, false));
    EXPECT_EQ(offset(image.m_data), 3u);
    ASSERT_TRUE(image.createImage(4, 4, -1, 9, false));
    EXPECT_EQ(offset(image.m_data), 9u);
    rkSetVectorAlign(0);
}

TEST(KmImage, FormsOfCreationFill) {
    kmImage image(8, 3, false);
    ASSERT_TRUE(image.createVector(3, 2, SetValue, 7.0, 0.0));
    EXPECT_EQ(image.getIndex(2, 1, 2), 7.0);
    ASSERT_TRUE(image.createVector(KeliSize{3, 2}, SetMax, 0.0, 0.0));
    EXPECT_EQ(image.getIndex(2, 1, 2), 255.0);
    ASSERT_TRUE(image.createVectorExt(3, 2, 5, SetOne, 0.0, 0.0));
    EXPECT_EQ(image.getIndex(2, 1, 2), 1.0);
    ASSERT_TRUE(image.createVectorExt(KeliSize{3, 2}, 5, SetZero, 0.0, 0.0));
    EXPECT_EQ(image.getIndex(2, 1, 2), 0.0);
    ASSERT_TRUE(image.createImageExt(3, 2, 64, 5, SetValue, 9.0, 0.0));
    EXPECT_EQ(image.getIndex(2, 1, 2), 9.0);
    ASSERT_TRUE(image.createImageExt(KeliSize{3, 2}, 64, 5, SetDefault, 0.0, 0.0));
    EXPECT_EQ(image.getIndex(2, 1, 2), 2.0);
}

TEST(KmImage, StepAndAlignOfTheExtendedFormsHaveNoEffect) {
    kmImage image(8, 3, false);
    ASSERT_TRUE(image.createImageExt(3, 2, 64, 5, SetZero, 0.0, 0.0));
    EXPECT_EQ(image.m_step, 16);
    EXPECT_EQ(offset(image.m_data), 0u);
    ASSERT_TRUE(image.createVectorExt(3, 2, 5, SetZero, 0.0, 0.0));
    EXPECT_EQ(offset(image.m_data), 0u);
}

TEST(KmImage, SecondCreationReleasesTheFirst) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    ASSERT_TRUE(image.createImage(5, 5, -1, -1, false));
    EXPECT_EQ(countBlocks(), 1);
}

TEST(KmImage, DestructorFreesAllPlanes) {
    {
        kmImage image(8, 4, true);
        ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
        EXPECT_EQ(countBlocks(), 4);
    }
    EXPECT_EQ(countBlocks(), 0);
}

// ---- failures ----------------------------------------------------------------

TEST(KmImage, NoRowsGiveTheMemoryMessage) {
    CaptureLog log(MsgError);
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    EXPECT_FALSE(image.createImage(3, 0, -1, -1, false));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 0 bytes\n");
    EXPECT_EQ(image.m_width, 0);
    EXPECT_EQ(image.m_data, nullptr);
}

TEST(KmImage, NoColumnsGiveTheMemoryMessage) {
    CaptureLog log(MsgError);
    kmImage image(8, 3, true);
    EXPECT_FALSE(image.createVector(0, 5, SetZero, 0.0, 0.0));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 0 bytes\n");
}

TEST(KmImage, NegativeSidesFailAlsoTogether) {
    CaptureLog log(MsgError);
    kmImage image(8, 1, false);
    EXPECT_FALSE(image.createImage(-100, -100, -1, -1, false));
    EXPECT_FALSE(image.createImage(-1, 4, 16, -1, false));
    EXPECT_FALSE(image.createImage(16, -4, -1, -1, false));
    EXPECT_EQ(image.m_data, nullptr);
    EXPECT_EQ(countBlocks(), 0);
}

TEST(KmImage, SizeThatIsNoIntFails) {
    CaptureLog log(MsgError);
    kmImage image(1600, 4, false), planes(1600, 4, true);
    for (kmImage *i : {&image, &planes}) {
        EXPECT_FALSE(i->createImage(INT_MAX, INT_MAX, -1, -1, false));
        EXPECT_FALSE(i->createImage(65536, 65536, 1, -1, false));
        EXPECT_FALSE(i->createImage(INT_MIN, INT_MIN, -1, -1, false));
        EXPECT_FALSE(i->createImage(1, INT_MAX, INT_MAX, -1, false));
    }
    EXPECT_EQ(countBlocks(), 0);
}

TEST(KmImage, UndefinedTypeHasNoBytes) {
    CaptureLog log(MsgError);
    kmImage image(0, 3, false);
    EXPECT_FALSE(image.createImage(3, 2, -1, -1, false));
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 0 bytes\n");
    EXPECT_FALSE(image.createImage(65536, 65536, 1, -1, false)); // its items cannot be counted
}

TEST(KmImage, PlanesBeforeTheFailedOneStayUntilTheDelete) {
    CaptureLog log(MsgError);
    kmImage image(8, 3, true);
    rkTest::m_vectorShift = 0;
    rkSetVectorShift(-100000); // no second block finds its place
    EXPECT_FALSE(image.createImage(5, 4, -1, -1, false));
    rkSetVectorShift(512);
    rkTest::m_vectorShift = 0;
    EXPECT_EQ(log.text(), "-- Memory error: can't allocate 64 bytes\n");
    EXPECT_EQ(countBlocks(), 1);
    EXPECT_NE(image.m_planes[0], nullptr);
    EXPECT_EQ(image.m_planes[1], nullptr);
    EXPECT_EQ(image.m_width, 0);
    EXPECT_FALSE(image.reserveCopy());
    image.deleteVector();
    EXPECT_EQ(countBlocks(), 0);
}

TEST(KmImage, StepShorterThanTheRowStaysInItsMemory) {
    kmImage chunky(8, 3, false), planar(8, 3, true);
    ASSERT_TRUE(chunky.createImage(10, 2, 4, 0, false));
    ASSERT_TRUE(planar.createImage(10, 2, 4, 0, false));
    EXPECT_EQ(chunky.m_step, 4);
    EXPECT_EQ(chunky.size(), 8);
    EXPECT_GE(blockSize(chunky.m_data), 4 + 30);
    EXPECT_GE(blockSize(planar.m_planes[2]), 4 + 10);
    chunky.setRandom();
    planar.setRandom();
    EXPECT_EQ(chunky.getString().length(), 2 * 30 * 4 + 1);
}

// ---- elements ----------------------------------------------------------------

TEST(KmImage, PixelsOfAChunkyImageLieSideBySide) {
    kmImage image(272, 3, false);
    ASSERT_TRUE(image.createImage(6, 2, -1, -1, false));
    EXPECT_EQ(image.getPointerAt(4, 1, 2), image.m_data + 48 + (4 * 3 + 2) * 2);
    kmImage const &same = image;
    EXPECT_EQ(same.getPointerAt(4, 1, 2), image.getPointerAt(4, 1, 2));
}

TEST(KmImage, PixelsOfAPlanarImageLieInTheirPlane) {
    kmImage image(272, 3, true);
    ASSERT_TRUE(image.createImage(6, 2, -1, -1, false));
    EXPECT_EQ(image.getPointerAt(4, 1, 2), static_cast<unsigned char *>(image.m_planes[2]) + 16 + 8);
    EXPECT_EQ(kmImage(8, 3, true).getPointerAt(0, 0, 0), nullptr);
}

TEST(KmImage, SetIndexIgnoresTheMode) {
    kmImage image(8, 3, false);
    ASSERT_TRUE(image.createImage(6, 2, -1, -1, false));
    image.setIndex(4, 1, 2, SetZero, 5.0, 0.0);
    EXPECT_EQ(image.getIndex(4, 1, 2), 5.0);
    EXPECT_EQ(image.getIndex(4, 1, 1), 2.0);
    EXPECT_EQ(image.getIndex(5, 1, 0), 2.0);
}

TEST(KmImage, ElementsOfAComplexImageHaveTwoParts) {
    kmImage image(1296, 2, true);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    image.setImageAt(2, 1, 1, -3.0, 4.0);
    double re = 0.0, im = 0.0;
    image.getImageAt(2, 1, 1, re, im);
    EXPECT_EQ(re, -3.0);
    EXPECT_EQ(im, 4.0);
    image.getIndex(2, 1, 0, re, im);
    EXPECT_EQ(re, 2.0);
    EXPECT_EQ(image.getImageAt(2, 1, 1), -3.0);
}

TEST(KmImage, ReadOfARealElementLeavesTheImaginaryPart) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    double re = 0.0, im = 55.0;
    image.getIndex(1, 1, 0, re, im);
    EXPECT_EQ(re, 2.0);
    EXPECT_EQ(im, 55.0);
}

TEST(KmImage, LinearIndexCountsTheRoomBetweenRows) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    image.setIndex(17, SetValue, 9.0, 0.0);
    EXPECT_EQ(image.getIndex(1, 1, 0), 9.0);
    EXPECT_EQ(image.getIndex(17), 9.0);
    double re = 0.0, im = 1.0;
    image.getIndex(17, re, im);
    EXPECT_EQ(re, 9.0);
    image.setIndex(17, SetDefault, 0.0, 0.0);
    EXPECT_EQ(image.getIndex(17), 0.0);
}

TEST(KmImage, LinearIndexHasNoEffectOnSeparatePlanes) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    image.setIndex(0, SetValue, 9.0, 0.0);
    EXPECT_EQ(image.getIndex(0, 0, 0), 2.0);
    EXPECT_EQ(image.getIndex(0), 0.0);
}

// ---- the reserved copy -------------------------------------------------------

TEST(KmImage, CopyOfAChunkyImageIsItsBlock) {
    kmImage image(8, 1, false);
    ASSERT_TRUE(image.createVector(3, 2, SetValue, 7.0, 0.0));
    image.m_data[5] = 99; // between the rows
    ASSERT_TRUE(image.reserveCopy());
    memset(image.m_data, 1, image.size());
    ASSERT_TRUE(image.setReservedCopy());
    EXPECT_EQ(image.getIndex(2, 1, 0), 7.0);
    EXPECT_EQ(image.m_data[5], 99);
}

TEST(KmImage, CopyOfSeparatePlanesHoldsRowsTimesStepOfEach) {
    kmImage image(272, 3, true);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    for (int c = 0; c < 3; ++c) image.setImageAt(2, 1, c, 10.0 + c, 0.0);
    ASSERT_TRUE(image.reserveCopy());
    auto *copy = static_cast<unsigned char *>(image.getReservedData());
    for (int c = 0; c < 3; ++c) EXPECT_EQ(memcmp(copy + 32 * c, image.m_planes[c], 32), 0);
    image.setConst(1.0, 1.0);
    ASSERT_TRUE(image.setReservedCopy());
    for (int c = 0; c < 3; ++c) EXPECT_EQ(image.getIndex(2, 1, c), 10.0 + c);
    EXPECT_EQ(countBlocks(), 3);
}

TEST(KmImage, CopyNeedsData) {
    kmImage chunky(8, 1, false), planar(8, 3, true);
    for (kmImage *image : {&chunky, &planar}) {
        EXPECT_FALSE(image->reserveCopy());
        EXPECT_FALSE(image->setReservedCopy());
    }
    ASSERT_TRUE(planar.createImage(3, 2, -1, -1, false));
    EXPECT_FALSE(planar.setReservedCopy());
}

TEST(KmImage, CopyGoesWithTheImage) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(3, 2, -1, -1, false));
    ASSERT_TRUE(image.reserveCopy());
    image.deleteReservedCopy();
    EXPECT_FALSE(image.setReservedCopy());
    ASSERT_TRUE(image.reserveCopy());
    image.deleteVector();
    EXPECT_EQ(image.getReservedData(), nullptr);
}

TEST(KmImage, IsResetWithAllOtherData) {
    kmImage image(8, 3, true);
    kmVector vector(8);
    ASSERT_TRUE(image.createVector(3, 2, SetValue, 7.0, 0.0));
    ASSERT_TRUE(vector.createVector(4, SetValue, 8.0, 0.0));
    EXPECT_EQ(rkTest::reserveAllVectors(), 2);
    image.setConst(1.0, 1.0);
    EXPECT_EQ(rkTest::resetAllVectors(), 2);
    for (int c = 0; c < 3; ++c) EXPECT_EQ(image.getIndex(2, 1, c), 7.0);
}

// ---- texts -------------------------------------------------------------------

TEST(KmImage, TextHasALineForEachRow) {
    kmImage image(8, 2, false);
    ASSERT_TRUE(image.createVector(2, 2, SetValue, 7.0, 0.0));
    image.setImageAt(1, 0, 0, 123.0, 0.0);
    EXPECT_EQ(str(image.getString()), "   7   7 123   7\n   7   7   7   7");
}

TEST(KmImage, TextHasAnEmptyLineBetweenPlanes) {
    kmImage image(1288, 2, true);
    ASSERT_TRUE(image.createVector(1, 2, SetValue, 7.0, -7.0));
    EXPECT_EQ(str(image.getString()), " (    7,   -7)\n (    7,   -7)\n\n (    7,   -7)\n (    7,   -7)");
}

TEST(KmImage, IsOneObjectOfTheDebugView) {
    class Probe : public kmTest {
    public:
        Probe()
            : kmTest([](int, long long *) { return rkResSuccess; }, rkFuncStat(nullptr), "keliA_8u", "", "") {
        }
    } test;
    CaptureLog log(MsgError | MsgData);
    kmImage image(8, 2, true);
    ASSERT_TRUE(image.createVector(1, 1, SetValue, 7.0, 0.0));
    EXPECT_EQ(test.printAllMemoryBlocks("t"), 1);
    EXPECT_NE(log.text().find("======== Object 1: Image 8u_P2 size=1x1\n   7\n\n   7\n\n"),
              std::string::npos);
}

TEST(KmImage, CanLoadImages) {
    EXPECT_TRUE(kmImage(8, 1, false).canLoadImage());
}

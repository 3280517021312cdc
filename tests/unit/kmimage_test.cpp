// kmimage_test.cpp - tests of kmimage: blocks, planes, rows, elements and copies. Fills:
// kmimagefill_test.cpp.

#include "km.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "capture.h"
#include "text.h"

namespace {

std::vector<void *> views(kmVector const &v) {
    return {v.p8u,   v.p16u,  v.p32u,  v.p64u,  v.p8s,  v.p16s, v.p32s,  v.p64s, v.p8sc,
            v.p16sc, v.p16uc, v.p32sc, v.p64sc, v.p32f, v.p64f, v.p32fc, v.p64fc};
}

std::vector<void *> planeViews(kmImage const &i) {
    return {i.planes8u,   i.planes16u, i.planes32u, i.planes64u,  i.planes8s,   i.planes16s,
            i.planes32s,  i.planes64s, i.planes8sc, i.planes16sc, i.planes16uc, i.planes32sc,
            i.planes64sc, i.planes32f, i.planes64f, i.planes32fc, i.planes64fc};
}

// In the order of the views.
const kmType allTypes[] = {8,    16,   32,   64,   264, 272, 288,  320, 1288,
                           1296, 1040, 1312, 1344, 544, 576, 1568, 1600};

int stepOf(kmType type, int channels, bool plane, int w) {
    kmImage image(type, channels, plane);
    return image.createImage(w, 2, -1, -1, false) ? image.m_step : -1;
}

int blockSize(void *block, void **owner = nullptr) {
    int size = -1;
    return rkMallocInfo(block, &size, owner) ? size : -1;
}

int countBlocks() {
    int n = 0;
    for (void *p = rkMallocFirst(nullptr, nullptr); p; p = rkMallocNext(nullptr, nullptr)) ++n;
    return n;
}

unsigned offset(void *p) {
    return reinterpret_cast<uintptr_t>(p) % 64;
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

// ---- planes ------------------------------------------------------------------

TEST(KmImage, RowsOfAPlanarImageRunThroughAllPlanes) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    EXPECT_EQ(image.getNumRows(), 12);
    EXPECT_EQ(image.getRowLen(), 5);
    EXPECT_EQ(image.getRowPointer(0), image.m_planes[0]);
    EXPECT_EQ(image.getRowPointer(4), image.m_planes[1]);
    EXPECT_EQ(image.getRowPointer(9), static_cast<unsigned char *>(image.m_planes[2]) + 16);
    kmImage const &same = image;
    EXPECT_EQ(same.getRowPointer(4), image.m_planes[1]);
}

TEST(KmImage, RowsThatAreNotThereAreNull) {
    kmImage image(8, 3, true);
    EXPECT_EQ(image.getRowPointer(0), nullptr);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    EXPECT_EQ(image.getRowPointer(12), nullptr);
    EXPECT_EQ(image.getRowPointer(16), nullptr);
    EXPECT_EQ(image.getRowPointer(-1), nullptr);
}

TEST(KmImage, SizesOfAPlanarImage) {
    kmImage image(272, 4, true);
    ASSERT_TRUE(image.createImage(5, 3, -1, 0, false));
    EXPECT_EQ(image.m_step, 16);
    EXPECT_EQ(image.numItems(), 60);
    EXPECT_EQ(image.numActualItems(), 45);
    EXPECT_EQ(image.objectSize(), 120);
    EXPECT_EQ(image.size(), 192);
    EXPECT_EQ(str(image.objectInfo()), "Image 16s_AP4 size=5x3");
}

TEST(KmImage, FirstPlaneIsOwnedByTheImageTheOthersAreParts) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    void *owners[3];
    for (int i = 0; i < 3; ++i) EXPECT_EQ(blockSize(image.m_planes[i], &owners[i]), 64);
    EXPECT_EQ(owners[0], static_cast<rkObject *>(&image));
    EXPECT_EQ(owners[1], MEM_OBJECT_IS_SUBOBJECT);
    EXPECT_EQ(owners[2], MEM_OBJECT_IS_SUBOBJECT);
    EXPECT_EQ(image.m_data, nullptr);
    EXPECT_EQ(image.getDataConst(), nullptr);
    EXPECT_EQ(image.m_planes[3], nullptr);
}

TEST(KmImage, PlanesOfWiderTypesHaveRoomBehindThem) {
    kmImage image(288, 2, true);
    ASSERT_TRUE(image.createImage(5, 3, -1, -1, false));
    EXPECT_EQ(image.m_step, 32);
    EXPECT_EQ(blockSize(image.m_planes[0]), 3 * 32 * 4);
    EXPECT_EQ(image.size(), 2 * 3 * 32);
}

TEST(KmImage, AllPlanesHaveTheAlignmentOfTheFirstVector) {
    rkTest::m_vectorNum = 0;
    rkSetVectorAlign(5);
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(offset(image.m_planes[i]), 5u);
    EXPECT_EQ(rkTest::m_vectorNum, 1);
    rkSetVectorAlign(0);
}

TEST(KmImage, PlanesOfALaterImageAreAlignedAsItsPlaceInTheTest) {
    rkTest::m_vectorNum = 0;
    rkSetVectorAlign(5);
    kmVector first(8);
    kmImage image(8, 3, true);
    ASSERT_TRUE(first.createVector(8, -1));
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(offset(image.m_planes[i]), 0u);
    EXPECT_EQ(rkTest::m_vectorNum, 2);
    rkSetVectorAlign(0);
}

TEST(KmImage, AlignOfTheFirstPlaneAlone) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(5, 4, -1, 7, true));
    EXPECT_EQ(offset(image.m_planes[0]), 7u);
    EXPECT_EQ(offset(image.m_planes[1]), 0u);
    EXPECT_EQ(offset(image.m_planes[2]), 0u);
    ASSERT_TRUE(image.createImage(5, 4, -1, 7, false));
    EXPECT_EQ(offset(image.m_planes[2]), 7u);
}

TEST(KmImage, OnlyThePlaneViewOfTheTypeIsSet) {
    for (int t = 0; t < 17; ++t) {
        kmImage image(allTypes[t], 3, true);
        ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
        for (int i = 0; i < 17; ++i) {
            EXPECT_EQ(planeViews(image)[i], i == t ? image.m_planes : nullptr) << t << " " << i;
            EXPECT_EQ(views(image)[i], i == t ? image.m_planes[0] : nullptr) << t << " " << i;
        }
    }
}

TEST(KmImage, PlaneViewLeadsToThePlanes) {
    kmImage image(272, 3, true);
    ASSERT_TRUE(image.createVector(5, 4, SetZero, 0.0, 0.0));
    image.planes16s[2][8 + 3] = -77; // a row is 16 bytes
    EXPECT_EQ(image.getIndex(3, 1, 2), -77.0);
}

TEST(KmImage, DeleteClearsThePlaneViewsButThatOf16uc) {
    for (kmType type : allTypes) {
        kmImage image(type, 3, true);
        ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
        image.deleteVector();
        for (int i = 0; i < 17; ++i) {
            EXPECT_EQ(planeViews(image)[i], type == 1040 && i == 10 ? image.m_planes : nullptr) << type;
        }
        for (void *plane : image.m_planes) EXPECT_EQ(plane, nullptr);
        EXPECT_EQ(image.m_width + image.m_height + image.m_step, 0);
        EXPECT_EQ(countBlocks(), 0);
    }
}

TEST(KmImage, PlanesOfAnImageInOneBlock) {
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.allocateVector(3 * 2 * 16, 0, nullptr));
    image.m_width = 5;
    image.m_height = 2;
    ASSERT_TRUE(image.setPlaneArray()); // the step is not set yet: that of a row of 5
    for (int i = 0; i < 3; ++i) EXPECT_EQ(image.m_planes[i], image.m_data + 32 * i);
    EXPECT_EQ(image.size(), 96);
    image.m_step = 8;
    ASSERT_TRUE(image.setPlaneArray());
    EXPECT_EQ(image.m_planes[2], image.m_data + 32);
    EXPECT_EQ(image.getRowPointer(3), image.m_data + 24);
    image.setPlanePtrs();
    EXPECT_EQ(static_cast<void *>(image.planes8u), image.m_planes);
    EXPECT_EQ(image.p8u, image.m_data);
}

TEST(KmImage, ChunkyImageHasNoPlaneArray) {
    kmImage image(8, 3, false);
    ASSERT_TRUE(image.createImage(5, 2, -1, -1, false));
    image.m_planes[1] = image.m_data;
    EXPECT_FALSE(image.setPlaneArray());
    for (void *plane : image.m_planes) EXPECT_EQ(plane, nullptr);
}

TEST(KmImage, PlaneArrayNeedsTheOneBlock) {
    kmImage image(8, 3, true);
    EXPECT_FALSE(image.setPlaneArray());
    EXPECT_EQ(image.m_planes[0], nullptr);
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

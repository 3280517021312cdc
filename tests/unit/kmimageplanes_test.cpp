// kmimageplanes_test.cpp - tests of kmimage: planes.

#include "km.h"

#include <gtest/gtest.h>

#include "capture.h"
#include "text.h"
#include "vectors.h"

namespace {

// In the order of the views.
const kmType viewTypes[] = {8,    16,   32,   64,   264, 272, 288,  320, 1288,
                            1296, 1040, 1312, 1344, 544, 576, 1568, 1600};

} // namespace

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
        kmImage image(viewTypes[t], 3, true);
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
    for (kmType type : viewTypes) {
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

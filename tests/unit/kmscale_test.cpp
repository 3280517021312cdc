// kmscale_test.cpp - tests of kmscale.

#include "km.h"

#include <vector>

#include <gtest/gtest.h>

#include "capture.h"

namespace {

std::vector<int> walk(kmScaleIterator &scale) {
    std::vector<int> values;
    for (bool more = scale.firstValue(); more; more = scale.nextValue()) values.push_back(scale.value());
    return values;
}

char const *const scaled = "kelsAdd_16s_ISfs";
char const *const plain = "keliSAD16x16_8u32s_C1R";

} // namespace

TEST(KmScaleIterator, ScaledFunctionsHaveSfsOrFixInTheirDescriptor) {
    kmScaleIterator scale;
    EXPECT_TRUE(scale.isScaled("kelsAdd_16s_ISfs"));
    EXPECT_TRUE(scale.isScaled("kelsMul_16s_Fix"));
    EXPECT_FALSE(scale.isScaled("kelsAdd_16s_I"));
    EXPECT_FALSE(scale.isScaled("kelsFixSfs_16s_I")); // in the base alone
}

TEST(KmScaleIterator, ScaledFunctionWalksFourFactors) {
    kmScaleIterator scale;
    EXPECT_FALSE(scale.m_scaled);
    scale.init(scaled);
    EXPECT_TRUE(scale.m_scaled);
    EXPECT_STREQ(scale.m_name.c_str(), "ScaleFactor");
    EXPECT_STREQ(scale.m_descr.c_str(), "ScaleFactor");
    EXPECT_EQ(walk(scale), (std::vector<int>{0, 1, 2, -1}));
}

TEST(KmScaleIterator, OtherFunctionHasOnePassAt0) {
    kmScaleIterator scale;
    scale.init(plain);
    EXPECT_FALSE(scale.m_scaled);
    EXPECT_STREQ(scale.m_name.c_str(), "");
    EXPECT_STREQ(scale.m_descr.c_str(), "");
    EXPECT_EQ(walk(scale), std::vector<int>{0});
}

TEST(KmScaleIterator, HiddenPassIsNotSeen) {
    kmScaleIterator scale;
    scale.init(plain);
    scale.firstValue();
    rkTest::m_numParmsColm = 3;
    CaptureLog log(MsgError);
    CaptureTable table;
    g_ostrm << MsgError;
    scale.toOStream(g_ostrm);
    g_ostrm << EndMessage;
    g_cstrm.m_colmCount = 3;
    scale.toCStream(g_cstrm);
    scale.nameToCStream(g_cstrm);
    g_cstrm.lineOut(3);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(table.text(), "-,-,-\n");
}

TEST(KmScaleIterator, FactorStandsInTheLastColumnOfTheParameters) {
    kmScaleIterator scale;
    scale.init(scaled, 5);
    scale.firstValue();
    rkTest::m_numParmsColm = 3;
    EXPECT_EQ(scale.colmIndex(), 2);
    CaptureTable table;
    g_cstrm.m_colmCount = 3;
    scale.toCStream(g_cstrm);
    g_cstrm.lineOut(3);
    EXPECT_EQ(table.text(), "-,-,5\n");
}

TEST(KmScaleIterator, GivenFactorsReplaceTheFour) {
    kmScaleIterator scale;
    scale.init(scaled, 9);
    EXPECT_EQ(walk(scale), std::vector<int>{9});
    scale.init(scaled, 9, 8);
    EXPECT_EQ(walk(scale), (std::vector<int>{9, 8}));
    scale.init(scaled, 9, 8, 7);
    EXPECT_EQ(walk(scale), (std::vector<int>{9, 8, 7}));
    scale.init(scaled, 9, 8, 7, -6);
    EXPECT_EQ(walk(scale), (std::vector<int>{9, 8, 7, -6}));
    scale.init(scaled, 9, 8, 7, -6, 5);
    EXPECT_EQ(walk(scale), (std::vector<int>{9, 8, 7, -6, 5}));
    scale.init(scaled, 9, 8, 7, -6, 5, 4);
    EXPECT_EQ(walk(scale), (std::vector<int>{9, 8, 7, -6, 5, 4}));
    EXPECT_STREQ(scale.m_name.c_str(), "ScaleFactor");
}

TEST(KmScaleIterator, GivenFactorsDoNotReplaceTheHiddenPass) {
    kmScaleIterator scale;
    scale.init(plain, 9, 8);
    EXPECT_EQ(walk(scale), std::vector<int>{0});
    EXPECT_STREQ(scale.m_name.c_str(), "");
}

TEST(KmScaleIterator, IsUsedAgainForTheNextFunction) {
    kmScaleIterator scale;
    scale.init(scaled, 9, 8);
    scale.init(plain);
    EXPECT_EQ(walk(scale), std::vector<int>{0});
    scale.init(scaled);
    EXPECT_EQ(walk(scale), (std::vector<int>{0, 1, 2, -1}));
}

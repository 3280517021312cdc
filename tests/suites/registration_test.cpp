// registration_test.cpp - what all suites leave behind before the program starts.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "../unit/tempdir.h"
#include "kmvc.h"

TEST(Suites, TheHotListHasTheFunctionsThatMatterMost) {
    char const *const hot[] = {
        "keliCopy16x16QP_MPEG4_8u_C1R",
        "keliCopy16x8QP_MPEG4_8u_C1R",
        "keliCopy8x8QP_MPEG4_8u_C1R",
        "keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR",
        "keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR",
        "keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR",
        "keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR",
        "keliFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR",
        "keliInterpolateChroma_H264_8u_C1R",
        "keliInterpolateLuma_H264_8u_C1R",
        "keliInterpolateLumaBottom_H264_8u_C1R",
        "keliInterpolateLumaTop_H264_8u_C1R",
        "keliPredictIntra_16x16_H264_8u_C1IR",
        "keliPredictIntra_4x4_H264_8u_C1IR",
        "keliPredictIntraChroma8x8_H264_8u_C1IR",
        "keliReconstructChromaIntra4x4MB_H264_16s8u_P2R",
        "keliReconstructChromaIntraMB_H264_16s8u_P2R",
        "keliReconstructLumaIntra_16x16MB_H264_16s8u_C1R",
        "keliReconstructLumaIntra4x4MB_H264_16s8u_C1R",
        "keliReconstructLumaIntra8x8MB_H264_16s8u_C1R",
        "keliReconstructLumaIntraMB_H264_16s8u_C1R",
    };
    ASSERT_NE(g_pHotList, nullptr);
    ASSERT_EQ(g_pHotList->size(), 21);
    size_t i = 0;
    for (rkString const &name : *g_pHotList) EXPECT_EQ(str(name), hot[i++]);
}

TEST(Suites, EveryFileRegistersTheVersionOfTheLibrary) {
    std::set<std::string> files;
    for (rkTest *test : *pTestList) files.insert(str(test->m_file));
    ASSERT_NE(kelVersionList, nullptr);
    EXPECT_GE(kelVersionList->size(), static_cast<int>(files.size()));
    for (auto version : *kelVersionList) EXPECT_EQ(version, &kmGetKelVersion_kelvc);
    KelLibraryVersion const *version = kmGetKelVersion_kelvc();
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version, kelvcGetLibVersion());
}

TEST(Suites, EveryFileOfASuiteHasItsTest) {
    std::string tests;
    for (auto const &entry : std::filesystem::directory_iterator(SUITE_TESTS))
        tests += fileText(entry.path().c_str());
    std::set<std::string> files;
    for (rkTest *test : *pTestList) files.insert(str(test->m_file));
    ASSERT_GE(files.size(), 5u);
    for (std::string const &file : files) {
        const bool listed = tests.find(", \"" + file + "\", ") != std::string::npos;
        EXPECT_TRUE(listed) << "no SUITE_TEST in " SUITE_TESTS " for " << file;
    }
}

TEST(Suites, TheHookBindsTheSevenFunctionsOfTheCore) {
    EXPECT_EQ(kelEnvironment, &kmSetKelEnvironment);
    kmSetKelEnvironment();
    EXPECT_EQ(kel_InitCpu, &kelInitCpu);
    EXPECT_EQ(kel_GetCpuType, &kelGetCpuType);
    EXPECT_EQ(kel_SetNumThreads, &kelSetNumThreads);
    EXPECT_EQ(kel_GetNumCoresOnDie, &kelGetNumCoresOnDie);
    EXPECT_EQ(kel_GetMaxCacheSizeB, &kelGetMaxCacheSizeB);
    EXPECT_EQ(kel_GetStatusString, &kelGetStatusString);
    EXPECT_EQ(kel_Init, &kelInit);
    EXPECT_NE(kel_Init, nullptr);
}

TEST(Suites, TheNamesOfModesAndTheirValuesBelongTogether) {
    EXPECT_EQ(str(RndStr[RndNum - 1]), "near");
    EXPECT_EQ(RndVal[RndNum - 1], 1);
    EXPECT_EQ(str(HintStr[HintNum - 1]), "accurate");
    EXPECT_EQ(HintVal[HintNum - 1], 2);
    EXPECT_EQ(str(CmpStr[CmpNum - 1]), "GT");
    EXPECT_EQ(CmpVal[CmpNum - 1], 4);
    EXPECT_EQ(str(FlagStr[FlagNum - 1]), "nodivByAny");
    EXPECT_EQ(FlagVal[FlagNum - 1], 8);
    EXPECT_EQ(std::size(RndStr), 2u);
    EXPECT_EQ(std::size(HintStr), 3u);
    EXPECT_EQ(std::size(CmpStr), 5u);
    EXPECT_EQ(std::size(FlagStr), 4u);
}

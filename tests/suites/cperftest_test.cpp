// cperftest_test.cpp - settings from sections of the ini file, and the walk over half-sample positions.

#include <gtest/gtest.h>

#include <string>

#include "../unit/capture.h"
#include "../unit/tempdir.h"
#include "kmvc.h"

namespace {

rkResult noLoop(int, long long *) {
    return rkResSuccess;
}

// Writes down each set that is prepared.
class Walk : public CApproximationTest {
public:
    Walk() : CApproximationTest(noLoop, rkFuncStat(nullptr), "keliWalk_8u", "walk.cpp", "Walk//KM_REG") {}

    void prepareSet() override { m_sets += std::to_string(approximation()) + " "; }
    void releaseSet() override { ++m_released; }

    bool start(char const *section) {
        if (!canStart()) return false;
        readSettings(section);
        readApproximations(section);
        return true;
    }
    // All sets of the walk, as codes.
    std::string walk() {
        m_sets = "";
        for (int sets = 0; sets < 100 && canContinue(); ++sets) flushData();
        return m_sets;
    }
    std::string codes() const {
        std::string text;
        for (int i = 0; i < m_count; ++i) text += std::to_string(m_codes[i]) + " ";
        return text;
    }

    std::string m_sets;
    int m_released = 0;
};

class PerfTest : public testing::Test {
protected:
    // From here on the ini file holds text.
    void ini(std::string const &text, bool write = false) {
        m_name = m_dir.write("perf.ini", text);
        ASSERT_TRUE(g_istrm.setIniFile(m_name, write));
    }
    void TearDown() override { g_istrm.close(); }

    TempDir m_dir;
    rkString m_name;
    Walk m_test;
};

std::string codesOf(char const *list) {
    Walk test;
    test.setApproximations(list);
    return test.codes();
}

} // namespace

// ---- settings ----------------------------------------------------------------------

TEST_F(PerfTest, WithoutAnIniFileAllIsDefault) {
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(str(m_test.m_alignText), "16");
    EXPECT_EQ(str(m_test.m_repeatText), "1");
    EXPECT_EQ(str(m_test.m_trashText), "0");
    EXPECT_EQ(m_test.m_align, 16);
    EXPECT_EQ(m_test.m_repeat, 1);
    EXPECT_EQ(m_test.codes(), "0 4 8 12 ");
}

TEST_F(PerfTest, TheCommonSectionHoldsForAll) {
    ini("[kelVC]\nAlign = 32\nRepeatCounter = 3\nTrashCache = 1\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(str(m_test.m_alignText), "32");
    EXPECT_EQ(str(m_test.m_repeatText), "3");
    EXPECT_EQ(str(m_test.m_trashText), "1");
    EXPECT_EQ(m_test.m_align, 32);
    EXPECT_EQ(m_test.m_repeat, 3);
}

TEST_F(PerfTest, MissingKeysOfTheCommonSectionAreDefault) {
    ini("[kelVC]\nRepeatCounter = 4\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(str(m_test.m_alignText), "16");
    EXPECT_EQ(str(m_test.m_trashText), "0");
    EXPECT_EQ(m_test.m_repeat, 4);
}

TEST_F(PerfTest, TheSectionOfTheClassGoesBeforeTheCommonOne) {
    ini("[kelVC]\nAlign = 32\nRepeatCounter = 3\n[SAD]\nRepeatCounter = 2\nTrashCache = 7\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_repeat, 2);
    EXPECT_EQ(m_test.m_align, 32) << "not in the section of the class";
    EXPECT_EQ(str(m_test.m_trashText), "7");
}

TEST_F(PerfTest, TheSectionOfAnotherClassIsNotRead) {
    ini("[kelVC]\nAlign = 32\n[ME]\nAlign = 64\nApproximation = HH\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_align, 32);
    EXPECT_EQ(m_test.codes(), "0 4 8 12 ");
}

TEST_F(PerfTest, TextsAreNumbersInBaseTen) {
    ini("[kelVC]\nAlign = 0x20\nRepeatCounter = 5 times\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_align, 0);
    EXPECT_EQ(m_test.m_repeat, 5);
}

TEST_F(PerfTest, AnIniFileWithoutTheCommonSectionGetsTwoOfItsKeys) {
    ini("[SAD]\nTrashCache = 1\n", true);
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_align, 16);
    EXPECT_EQ(m_test.m_repeat, 1);
    rkIniFile *file = g_istrm.m_iniFile;
    ASSERT_TRUE(file->sectionExist("kelVC"));
    EXPECT_EQ(str(file->read("kelVC", "Align", "?")), "16");
    EXPECT_EQ(str(file->read("kelVC", "RepeatCounter", "?")), "1");
    EXPECT_FALSE(file->valueExist("kelVC", "TrashCache"));
    EXPECT_FALSE(file->valueExist("SAD", "Align")) << "the section of the class is only read";
    for (rkValueItem *item : *file->getSectionValues("kelVC")) EXPECT_EQ(str(item->comment), "");
    g_istrm.close();
    std::string text = fileText(m_name);
    size_t section = text.find("[kelVC]"), align = text.find("Align"), repeat = text.find("RepeatCounter");
    ASSERT_NE(section, std::string::npos) << text;
    EXPECT_LT(section, align);
    EXPECT_LT(align, repeat);
    ASSERT_NE(repeat, std::string::npos) << text;
}

TEST_F(PerfTest, AnIniFileWithTheCommonSectionIsLeftAlone) {
    ini("[kelVC]\nAlign = 8\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_FALSE(g_istrm.m_iniFile->valueExist("kelVC", "RepeatCounter"));
}

TEST_F(PerfTest, EachRunReadsTheSettingsAnew) {
    ini("[kelVC]\nAlign = 32\nRepeatCounter = 2\nTrashCache = 1\n");
    ASSERT_TRUE(m_test.start("SAD"));
    m_test.walk();
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_repeat, 2);
    g_istrm.close();
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_align, 16);
    EXPECT_EQ(m_test.m_repeat, 1);
    EXPECT_EQ(str(m_test.m_trashText), "0");
}

// ---- the list of half-sample positions ------------------------------------------------

TEST(ApproximationList, EachPositionHasItsCode) {
    EXPECT_EQ(codesOf("FF,FH,HF,HH"), "0 4 8 12 ");
}

TEST(ApproximationList, TheOrderOfTheListStays) {
    EXPECT_EQ(codesOf("HH,FF,HF"), "12 0 8 ");
}

TEST(ApproximationList, OnlyTheFirstTwoCharactersCount) {
    EXPECT_EQ(codesOf("FHalf,HHxx"), "4 12 ");
}

TEST(ApproximationList, UnknownItemsAreSkipped) {
    EXPECT_EQ(codesOf("XX,HF,ff,F,,HH"), "8 12 ");
}

TEST(ApproximationList, ABlankInFrontMakesAnItemUnknown) {
    EXPECT_EQ(codesOf("FF, FH,HH "), "0 12 ");
}

TEST(ApproximationList, AtMostFourItemsAreTaken) {
    EXPECT_EQ(codesOf("HH,HH,XX,FF,FH,HF,FF"), "12 12 0 4 ");
}

TEST(ApproximationList, AListWithoutKnownItemsIsEmpty) {
    EXPECT_EQ(codesOf("AA,BB"), "");
    EXPECT_EQ(codesOf(""), "");
}

TEST(ApproximationList, CodesAndNamesOfTheTablesBelongTogether) {
    int const codes[] = {0, 4, 8, 12};
    char const *const names[] = {"APX_FF", "APX_FH", "APX_HF", "APX_HH"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(g_sad_aiApproximation[i], codes[i]);
        EXPECT_STREQ(g_sad_aszApproximation[i], names[i]);
    }
}

// ---- the walk ---------------------------------------------------------------------------

TEST_F(PerfTest, TheWalkTakesEveryCodeInListOrder) {
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.walk(), "0 4 8 12 ");
    EXPECT_EQ(m_test.m_released, 4);
    EXPECT_FALSE(m_test.canContinue()) << "and ends for good";
}

TEST_F(PerfTest, RepeatsAreTheOuterLoop) {
    ini("[kelVC]\nRepeatCounter = 3\n[SAD]\nApproximation = HF,FF\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.walk(), "8 0 8 0 8 0 ");
}

TEST_F(PerfTest, AListWithOnlyOneCodeRunsOnceARepeat) {
    ini("[kelVC]\nRepeatCounter = 2\n[SAD]\nApproximation = HH\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.walk(), "12 12 ");
}

TEST_F(PerfTest, NoRepeatsRunNothing) {
    ini("[kelVC]\nRepeatCounter = 0\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.walk(), "");
}

TEST_F(PerfTest, AnEmptyListEndsAtOnceWhateverTheRepeats) {
    ini("[kelVC]\nRepeatCounter = 5\n[SAD]\nApproximation = AA,BB\n");
    ASSERT_TRUE(m_test.start("SAD"));
    EXPECT_EQ(m_test.m_repeat, 5);
    EXPECT_EQ(m_test.walk(), "");
}

TEST_F(PerfTest, TheTableShowsTheNameOfTheCodeInHand) {
    rkString cell;
    ASSERT_TRUE(m_test.start("SAD"));
    for (char const *name : {"APX_FF", "APX_FH", "APX_HF", "APX_HH"}) {
        ASSERT_TRUE(m_test.canContinue());
        g_cstrm.tableFlush();
        m_test.parmsToCstrm();
        EXPECT_EQ(g_cstrm.m_colmCount, 1);
        ASSERT_TRUE(g_cstrm.getColm(0, cell));
        EXPECT_EQ(str(cell), name);
        m_test.flushData();
    }
}

// ---- the cache ----------------------------------------------------------------------------

static int s_asked;

static int smallCache(int *size) {
    ++s_asked;
    *size = 4096;
    return 0;
}

static int unknownCache(int *) {
    ++s_asked;
    return -1;
}

static int negativeCache(int *size) {
    ++s_asked;
    *size = -1;
    return 0;
}

TEST(TrashCache, AsksForTheSizeOfTheCacheOnceAndComesBack) {
    for (int (*size)(int *) : {smallCache, unknownCache, negativeCache}) {
        s_asked = 0;
        kel_GetMaxCacheSizeB = size;
        CPerfTest::TrashCache();
        EXPECT_EQ(s_asked, 1);
    }
}

TEST(TrashCache, NoTestCallsIt) {
    TempDir dir;
    ASSERT_TRUE(g_istrm.setIniFile(dir.write("perf.ini", "[kelVC]\nTrashCache = 1\n"), false));
    s_asked = 0;
    kel_GetMaxCacheSizeB = smallCache;
    Walk test;
    ASSERT_TRUE(test.start("SAD"));
    EXPECT_EQ(test.walk(), "0 4 8 12 ");
    EXPECT_EQ(s_asked, 0);
    g_istrm.close();
}

// kmtest_test.cpp - tests of kmtest.

#include "km.h"

#include <signal.h>
#include <sys/time.h>

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "capture.h"
#include "freshstart.h"
#include "text.h"

namespace {

rkResult noLoop(int, long long *) {
    return rkResSuccess;
}

char const *scriptedStatus(int status) {
    return status < 0 ? "a bad thing" : "a strange thing";
}

class Probe : public kmvcTest {
public:
    using kmvcTest::kmvcTest;
    explicit Probe(char const *name, char const *info = "Test//KM_REG")
        : kmvcTest(noLoop, rkFuncStat(nullptr), name, "some/where/suite.cpp", info) {}

    bool canStart() override {
        m_seedAtStart = kmVector::m_seed;
        return false;
    }
    double getFlops() override { return m_flops; }

    unsigned int m_seedAtStart = 0;
    double m_flops = -1.0;
};

class KmTestStatus : public testing::Test {
protected:
    void SetUp() override {
        kel_GetStatusString = scriptedStatus;
        rkTest::m_currentResult = rkResNotRun;
        kmTest::m_checkErrorsOnly = false;
    }
};

bool sizeOf(char const *name, int n, KeliSize &size) {
    size = KeliSize{-7, -7};
    return Probe(name).getBlockSize(size, n);
}

std::string sizeText(char const *name, int n) {
    KeliSize size;
    bool found = sizeOf(name, n, size);
    return std::string(found ? "" : "none ") + std::to_string(size.width) + "x" + std::to_string(size.height);
}

} // namespace

// ---- names and order ---------------------------------------------------------

TEST(KmTest, NameIsParsedFromEveryConstructor) {
    Probe loopAndStat("keliA_8u");
    Probe old(rkTool::FuncOld(nullptr), "keliB_16s_C1", "f", "i");
    Probe routines(nullptr, nullptr, noLoop, nullptr, "keliC_32f", "f", "i");
    EXPECT_EQ(str(loopAndStat.m_func), "keliA_8u");
    EXPECT_EQ(str(old.m_func.descrName()), "C1");
    EXPECT_EQ(routines.m_func.srcType(), 544);
    EXPECT_EQ(str(routines.m_name), "keliC_32f");
}

TEST(KmTest, OrderIsByTheGrammarOfNames) {
    Probe bytes("keliA_8u_C1R"), shorts("keliA_16s_C1R"), inplace("keliA_8u_C1IR");
    EXPECT_LT(bytes.compareFunc(&shorts), 0);
    EXPECT_LT(bytes.compareFunc(&inplace), 0);
    EXPECT_GT(shorts.compareFunc(&inplace), 0);
    EXPECT_EQ(bytes.compareFunc(&bytes), 0);
}

TEST(KmTest, RegistrationShowsOurMacro) {
    Probe other("keliA_8u", "Test//RK_REG RK_X");
    EXPECT_NE(str(other.regInfo()).find(" by KM_REG RK_X macro"), std::string::npos) << str(other.regInfo());
    Probe own("keliA_8u", "Test//KM_REG_I");
    EXPECT_NE(str(own.regInfo()).find(" by KM_REG_I macro"), std::string::npos);
}

TEST(KmTest, TableHasThreeColumnsForTheName) {
    Probe test("keliFilter_AVS_8u16s_C1R");
    g_cstrm.tableFlush();
    test.funcToCstrm();
    EXPECT_EQ(g_cstrm.m_colmCount, 3);
    EXPECT_EQ(str(g_cstrm.m_colm[0]), "keliFilter_AVS");
    EXPECT_EQ(str(g_cstrm.m_colm[1]), "8u16s");
    EXPECT_EQ(str(g_cstrm.m_colm[2]), "C1R");
}

TEST(KmTest, FloatFunctionNeedsFlopsAndAFloatType) {
    Probe single("keliA_32f_C1"), twice("kelsA_16s64fc"), integer("keliA_16s_C1");
    EXPECT_FALSE(single.isFloatFunction());
    single.m_flops = twice.m_flops = integer.m_flops = 5.0;
    EXPECT_TRUE(single.isFloatFunction());
    EXPECT_TRUE(twice.isFloatFunction());
    EXPECT_FALSE(integer.isFloatFunction());
}

TEST(KmTest, EveryRunStartsAtTheSameSeed) {
    Probe test("keliA_8u");
    kmVector::m_seed = 99;
    kmTest::m_checkErrorsOnly = true;
    test.run();
    EXPECT_EQ(test.m_seedAtStart, 7u);
    EXPECT_FALSE(kmTest::m_checkErrorsOnly);
}

// ---- the status of the library -----------------------------------------------

TEST_F(KmTestStatus, SuccessPrintsNothingAndLeavesTheResult) {
    CaptureLog log(127);
    EXPECT_EQ(kmTest::checkStatus(0, "keliA_8u"), rkResSuccess);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(rkTest::m_currentResult, rkResNotRun);
}

TEST_F(KmTestStatus, ErrorIsSaidAndRaisesTheResult) {
    CaptureLog log(MsgError);
    EXPECT_EQ(kmTest::checkStatus(-3, "keliA_8u"), rkResLibError);
    EXPECT_EQ(log.text(), "--KEL ERROR. status = -3 in keliA_8u: a bad thing\n");
    EXPECT_EQ(rkTest::m_currentResult, rkResLibError);
}

TEST_F(KmTestStatus, WarningIsSaidAndRaisesTheResult) {
    CaptureLog log(MsgError | MsgWarning);
    EXPECT_EQ(kmTest::checkStatus(2, "keliA_8u"), rkResLibWarning);
    EXPECT_EQ(log.text(), "--KEL WARNING. status = 2 in keliA_8u: a strange thing\n");
    EXPECT_EQ(rkTest::m_currentResult, rkResLibWarning);
}

TEST_F(KmTestStatus, EmptyNameDropsItsPartOfTheLine) {
    CaptureLog log(MsgError);
    kmTest::checkStatus(-3, "");
    EXPECT_EQ(log.text(), "--KEL ERROR. status = -3: a bad thing\n");
}

TEST_F(KmTestStatus, NameOfTheTestIsTheDefault) {
    CaptureLog log(MsgError);
    EXPECT_EQ(Probe("keliB_16s").checkStatus(-2), rkResLibError);
    EXPECT_EQ(log.text(), "--KEL ERROR. status = -2 in keliB_16s: a bad thing\n");
}

TEST_F(KmTestStatus, WarningBelowItsLevelIsReturnedButNotCounted) {
    CaptureLog log(MsgError);
    EXPECT_EQ(kmTest::checkStatus(2, "keliA_8u"), rkResLibWarning);
    EXPECT_EQ(log.text(), "");
    EXPECT_LE(rkTest::m_currentResult, rkResSuccess);
}

TEST_F(KmTestStatus, UnseenWarningNeverLowersAResult) {
    CaptureLog log(MsgError);
    rkTest::m_currentResult = rkResDataError;
    kmTest::checkStatus(2, "keliA_8u");
    EXPECT_EQ(rkTest::m_currentResult, rkResDataError);
}

TEST_F(KmTestStatus, ErrorAfterAWarningWins) {
    CaptureLog log(MsgError | MsgWarning);
    kmTest::checkStatus(2, "");
    kmTest::checkStatus(-2, "");
    EXPECT_EQ(rkTest::m_currentResult, rkResLibError);
}

TEST_F(KmTestStatus, WarningAfterAnErrorChangesNothing) {
    CaptureLog log(MsgError | MsgWarning);
    kmTest::checkStatus(-2, "");
    EXPECT_EQ(kmTest::checkStatus(2, ""), rkResLibWarning);
    EXPECT_EQ(rkTest::m_currentResult, rkResLibError);
}

TEST_F(KmTestStatus, WarningsPassWhereErrorsAloneCount) {
    CaptureLog log(127);
    kmTest::m_checkErrorsOnly = true;
    EXPECT_EQ(kmTest::checkStatus(2, "keliA_8u"), rkResSuccess);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(kmTest::checkStatus(-2, "keliA_8u"), rkResLibError);
}

TEST_F(KmTestStatus, MessageLevelIsRestored) {
    CaptureLog log(MsgError | MsgWarning);
    MessageLevel level = g_ostrm.msgLevel();
    kmTest::checkStatus(-2, "");
    kmTest::checkStatus(2, "");
    EXPECT_EQ(g_ostrm.msgLevel(), level);
}

// ---- cache runs --------------------------------------------------------------

TEST(KmTest, SizeParameterGoesToTheListAsItIs) {
    Probe test("keliA_8u");
    rkIterator<KeliSize> first("first", ""), second("second", "");
    test.initSettings();
    test.m_parms.push_back(&first);
    test.regCacheParm(second, nullptr);
    ASSERT_EQ(test.m_parms.size(), 2);
    EXPECT_EQ(*--test.m_parms.end(), static_cast<rkParameter *>(&second));
    EXPECT_EQ(test.m_cacheIterator, nullptr);
}

TEST(KmTest, FirstSizeParameterOfACacheRunIsWrapped) {
    Probe test("keliA_8u");
    rkIterator<KeliSize> first("first", ""), second("second", "");
    test.initSettings();
    rkTest::m_cache = true;
    test.regCacheParm(first, nullptr);
    test.regCacheParm(second, nullptr);
    ASSERT_NE(test.m_cacheIterator, nullptr);
    EXPECT_EQ(test.m_cacheIterator->m_parm, static_cast<rkParameter *>(&first));
    EXPECT_EQ(test.m_cacheIterator->m_object, nullptr);
    ASSERT_EQ(test.m_parms.size(), 2);
    EXPECT_EQ(*test.m_parms.begin(), static_cast<rkParameter *>(test.m_cacheIterator));
    EXPECT_EQ(*--test.m_parms.end(), static_cast<rkParameter *>(&second));
}

TEST(KmTest, ImageOfACacheRunTellsItsOwnSize) {
    Probe test("keliA_8u");
    rkIterator<KeliSize> sizes("size", "");
    kmImage image(8, 3, true);
    ASSERT_TRUE(image.createImage(5, 4, -1, -1, false));
    test.initSettings();
    rkTest::m_cache = true;
    auto set = [](rkParameter *, int, int, bool) { return false; };
    test.regCacheParm(sizes, image, set);
    ASSERT_NE(test.m_cacheIterator, nullptr);
    EXPECT_EQ(test.m_cacheIterator->getObjectSize(), 60);
    EXPECT_EQ(test.m_cacheIterator->m_setNewValue, +set);
    EXPECT_EQ(*test.m_parms.begin(), static_cast<rkParameter *>(test.m_cacheIterator));
}

TEST(KmTest, SizeParameterOfAnImageGoesToTheListAsItIs) {
    Probe test("keliA_8u");
    rkIterator<KeliSize> sizes("size", "");
    kmImage image(8, 1, false);
    test.initSettings();
    rkTest::m_cache = false;
    test.regCacheParm(sizes, image, nullptr);
    EXPECT_EQ(test.m_cacheIterator, nullptr);
    EXPECT_EQ(*test.m_parms.begin(), static_cast<rkParameter *>(&sizes));
}

// ---- the debug view of the data ----------------------------------------------

TEST(KmTest, AllBlocksAreShownButThoseWithoutAnOwnerOfTheirOwn) {
    CaptureLog log(MsgError | MsgData);
    kmVector v(272), part(8);
    ASSERT_TRUE(v.createVector(2, SetValue, 5.0, 0.0));
    ASSERT_TRUE(part.createVector(3, 0, MEM_OBJECT_IS_SUBOBJECT));
    void *pointer = nullptr;
    void *ownerless = rkMalloc(pointer, 16, 0, 0);
    auto *buffer = static_cast<unsigned char *>(rkTest::allocate(2, 0));
    ASSERT_TRUE(ownerless && buffer);
    buffer[0] = 0xab;
    buffer[1] = 0x01;

    EXPECT_EQ(Probe("keliA_8u").printAllMemoryBlocks("before"), 2);
    EXPECT_EQ(log.text(),
              "======== OBJECTS OUTPUT START === before === OBJECTS OUTPUT START ========\n"
              "======== Object 1: Vector 16s len=2\n"
              "      5      5\n"
              "\n"
              "======== Object 2: \n"
              " AB 01\n"
              "\n"
              "======== OBJECTS OUTPUT END === before === OBJECTS OUTPUT END ========\n");
    rkTest::deallocate(ownerless);
    rkTest::deallocate(buffer);
}

TEST(KmTest, BlocksAreNotShownBelowTheDataLevel) {
    CaptureLog log(63);
    kmVector v(8);
    ASSERT_TRUE(v.createVector(2, 0));
    std::string before = log.text(); // the allocation itself
    EXPECT_EQ(Probe("keliA_8u").printAllMemoryBlocks("title"), 0);
    EXPECT_EQ(log.text(), before);
}

TEST(KmTest, BlockViewLeavesLevelAndTraceAsTheyWere) {
    CaptureLog log(MsgData);
    MessageLevel level = g_ostrm.msgLevel();
    g_trace.traceIn("outer");
    Probe("keliA_8u").printAllMemoryBlocks("");
    EXPECT_EQ(g_ostrm.msgLevel(), level);
    EXPECT_EQ(str(g_trace.getCurName()), "outer");
}

TEST(KmTest, BlockWithoutAnObjectIsCalledAMemoryBlock) {
    CaptureLog log(MsgData);
    Probe("keliA_8u").printFirstBlockLine(3, nullptr, 100);
    EXPECT_EQ(log.text(), "======== Object 3: MemoryBlock size=100\n");
}

// ---- block sizes -------------------------------------------------------------

TEST(KmvcTest, BlockSizeOfAName) {
    EXPECT_EQ(sizeText("keliSAD8x8_8u32s_C1R", 1), "8x8");
    EXPECT_EQ(sizeText("keliCopy16x8QP_MPEG4_8u_C1R", 1), "16x8");
    EXPECT_EQ(sizeText("keliA8x16_8u", 1), "8x16");
    EXPECT_EQ(sizeText("keliA4x2_8u", 1), "4x2");
}

TEST(KmvcTest, NameWithTwoSizes) {
    char const *name = "keliSumsDiff16x16Blocks4x4_8u16s_C1";
    EXPECT_EQ(sizeText(name, 1), "16x16");
    EXPECT_EQ(sizeText(name, 2), "4x4");
    EXPECT_EQ(sizeText(name, 3), "none 4x4");
}

TEST(KmvcTest, NameWithoutXHasNoSize) {
    EXPECT_EQ(sizeText("keliSAD_8u", 1), "none -7x-7");
    EXPECT_EQ(sizeText("", 1), "none -7x-7");
}

TEST(KmvcTest, NoSizeIsAskedForBelowOne) {
    EXPECT_EQ(sizeText("keliSAD8x8_8u", 0), "none -7x-7");
    EXPECT_EQ(sizeText("keliSAD8x8_8u", -1), "none -7x-7");
}

TEST(KmvcTest, XThatBelongsToNoSizeEndsTheSearch) {
    EXPECT_EQ(sizeText("keliMax_8x8_8u", 1), "none -7x-7");
    EXPECT_EQ(sizeText("keliBlock4xN_8x8_8u", 1), "none -7x-7");
    EXPECT_EQ(sizeText("keli3x3_8u", 1), "none -7x-7");
}

// ---- random values that are not zero -----------------------------------------

TEST(KmvcTest, RandomValuesAreNeverZero) {
    kmVector v(264);
    ASSERT_TRUE(v.createVector(1000, SetValue, 99.0, 0.0));
    Probe("keliA_8u").setRandNonZero(v, 999, -2, 2);
    for (int i = 0; i < 999; ++i) {
        EXPECT_NE(v.p8s[i], 0);
        EXPECT_LE(std::abs(v.p8s[i]), 2);
    }
    EXPECT_EQ(v.p8s[999], 99);
}

TEST(KmvcTest, RandomValuesEndWithTheVector) {
    kmVector v(8 | kmTypeSigned);
    ASSERT_TRUE(v.createVector(16, SetValue, 99.0, 0.0));
    Probe("keliA_8u").setRandNonZero(v, 100000, -2, 2);
    EXPECT_NE(v.p8s[15], 99);
}

TEST(KmvcTest, RandomValuesComeFromTheCLibrary) {
    std::vector<int> expected;
    srand(1);
    while (expected.size() < 50) {
        int r = rand() % 7 - 3;
        if (r != 0) expected.push_back(r);
    }
    srand(1);
    kmVector v(272);
    ASSERT_TRUE(v.createVector(50, 0));
    kmVector::m_seed = 4711;
    Probe("keliA_8u").setRandNonZero(v, 50, -3, 3);
    for (int i = 0; i < 50; ++i) EXPECT_EQ(v.p16s[i], expected[i]);
    EXPECT_EQ(kmVector::m_seed, 4711u);
}

TEST(KmvcTest, ExtremeRangesOfRandomValuesAreSafe) {
    kmVector v(288);
    ASSERT_TRUE(v.createVector(4, SetValue, 5.0, 0.0));
    Probe test("keliA_8u");
    test.setRandNonZero(v, 4, -2147483647 - 1, 2147483647);
    test.setRandNonZero(v, 4, 3, 2);
    EXPECT_EQ(v.p32s[0], 5);
    test.setRandNonZero(v, 4, 2147483647, 2147483647);
    EXPECT_EQ(v.p32s[3], 2147483647);
}

namespace {

// Works until the timer of its own processor time kills it.
void drawZerosForAWhile() {
    kmVector v(8);
    v.createVector(1, 0);
    signal(SIGVTALRM, SIG_DFL);
    itimerval timer = {{0, 0}, {0, 50000}};
    setitimer(ITIMER_VIRTUAL, &timer, nullptr);
    Probe("keliA_8u").setRandNonZero(v, 1, 0, 0);
    exit(0);
}

} // namespace

TEST(KmvcTest, NothingButZeroToDrawNeverEnds) {
    EXPECT_EXIT(drawZerosForAWhile(), testing::KilledBySignal(SIGVTALRM), "");
}

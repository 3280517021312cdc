// rktest_test.cpp - the life cycle of a test.

#include <gtest/gtest.h>

#include <signal.h>

#include "capture.h"
#include "freshstart.h"
#include "rkctrlbase.h"
#include "rkpriority.h"
#include "rksession.h"
#include "rktrace.h"
#include "scriptedtest.h"
#include "tempdir.h"

using std::string;

TEST(RkTestInfo, CutsAtTheFirstTwoSlashes) {
    rkTestInfo all("Name/what it does/KM_REG/more");
    EXPECT_STREQ(all.m_name.c_str(), "Name");
    EXPECT_STREQ(all.m_descr.c_str(), "what it does");
    EXPECT_STREQ(all.m_marks.c_str(), "KM_REG/more");
    rkTestInfo none("Name");
    EXPECT_STREQ(none.m_name.c_str(), "Name");
    EXPECT_STREQ(none.m_descr.c_str(), "");
    rkTestInfo noMarks("Name/descr");
    EXPECT_STREQ(noMarks.m_descr.c_str(), "descr");
    EXPECT_STREQ(noMarks.m_marks.c_str(), "");
    rkTestInfo emptyDescr("Name//KM_REG");
    EXPECT_STREQ(emptyDescr.m_descr.c_str(), "");
    EXPECT_STREQ(emptyDescr.m_marks.c_str(), "KM_REG");
}

TEST(RkTest, KeepsTheFileNameOfItsSourcePath) {
    ScriptedTest test;
    EXPECT_STREQ(test.m_file.c_str(), "script.cpp");
}

TEST(RkTest, StepsRunInTheOrderOfTheLifeCycle) {
    ScriptedTest test;
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_EQ(test.m_steps, "SitfFE");
    EXPECT_EQ(test.m_result, rkResSuccess);
}

TEST(RkTest, ATestThatCannotStartHasADataError) {
    ScriptedTest test;
    test.m_canStart = false;
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResDataError);
    EXPECT_EQ(test.m_steps, "SFE");
    EXPECT_TRUE(holds(log.text(), "-- Can't start timing\n"));
}

TEST(RkTest, EachRunMeasuresWithACopyOfTheSessionsTool) {
    g_tool.setMethodLoop(77);
    ScriptedTest test;
    test.run();
    int n = 0;
    EXPECT_TRUE(test.m_tool.getMethodLoop(n));
    EXPECT_EQ(n, 77);
}

TEST(RkTest, TheMarkIbsAsksToAvoidBadStatus) {
    ScriptedTest plain, marked("f", "Script//KM_REG_Ibs");
    plain.run();
    marked.run();
    EXPECT_FALSE(plain.m_tool.m_avoidBad);
    EXPECT_TRUE(marked.m_tool.m_avoidBad);
}

// ---- failures ------------------------------------------------------------------

namespace {

class Failing : public ScriptedTest {
public:
    using ScriptedTest::ScriptedTest;
    enum How { Throw, Signal } m_how = Throw;
    char m_where = 't';

    void step(char name) {
        if (name != m_where) return;
        if (m_how == Throw) throw rkException(rkString("broken"));
        raise(SIGSEGV);
    }
    bool canStart() override {
        step('S');
        return ScriptedTest::canStart();
    }
    bool initData() override {
        step('i');
        return ScriptedTest::initData();
    }
    rkResult runTiming() override {
        g_ostrm.setOutLevel(127);
        g_ostrm << MsgData;
        step('t');
        return ScriptedTest::runTiming();
    }
};

} // namespace

TEST(RkTest, AnExceptionIsToldWithTheNameOfItsStep) {
    for (auto [where, name] : {std::pair{'S', "canStart"}, {'i', "initData"}, {'t', "runTiming"}}) {
        Failing test;
        test.m_where = where;
        CaptureLog log(1);
        EXPECT_EQ(test.run(), rkResException);
        EXPECT_TRUE(holds(log.text(), string("--KEL. Exception: broken in ") + name + "\n")) << log.text();
    }
}

TEST(RkTest, ASignalIsAnExceptionTooAndTheNextTestStartsNormally) {
    for (int i = 0; i < 3; ++i) {
        Failing test;
        test.m_how = Failing::Signal;
        CaptureLog log(1);
        EXPECT_EQ(test.run(), rkResException);
        EXPECT_TRUE(holds(log.text(), "--KEL. Signal: Illegal storage access. in runTiming\n")) << log.text();
        ScriptedTest next;
        EXPECT_EQ(next.run(), rkResSuccess);
    }
}

TEST(RkTest, AfterAnExceptionTheLevelsAreBackAndFlushStartIsPassedOver) {
    Failing test;
    CaptureLog log(1);
    MessageLevel before = g_ostrm.msgLevel();
    test.run();
    EXPECT_EQ(g_ostrm.outLevel(), 1);
    EXPECT_EQ(g_ostrm.msgLevel(), before);
    EXPECT_EQ(test.m_steps, "SiE");
}

TEST(RkTest, AfterAFaultThePriorityIsNotLeftRaised) {
    class RaisedThenFaulting : public ScriptedTest {
    public:
        rkResult runTiming() override {
            rkSetPriority(3);
            raise(SIGSEGV);
            return rkResSuccess;
        }
    } test;
    EXPECT_EQ(test.run(), rkResException);
    EXPECT_FALSE(_bSavedPrio);
}

TEST(RkTest, ARowLeftInItsMiddleDoesNotReachTheNextTest) {
    class FailingRow : public ScriptedTest {
    public:
        using ScriptedTest::ScriptedTest;
        rkString getUnit() override { throw rkException(rkString("no unit")); }
    } broken("broken");
    rkTest::m_numParmsColm = 1;
    rkTest::m_numResultColm = 5;
    CaptureTable table;
    EXPECT_EQ(broken.run(), rkResException);
    ScriptedTest next("next");
    EXPECT_EQ(next.run(), rkResSuccess);
    EXPECT_EQ(table.text(), "next,nLps=8,100, ,0.1,-\n");
}

TEST(RkTest, RowsHeldBackBeforeAFaultStayWithTheirTest) {
    class FailingLater : public ScriptedTest {
    public:
        using ScriptedTest::ScriptedTest;
        rkResult runTiming() override {
            if (m_timed == 2) throw rkException(rkString("third set"));
            return ScriptedTest::runTiming();
        }
    } broken("broken");
    Counted size("size", 3);
    size.addDeprecated(1, "small");
    broken.m_declared = {&size};
    rkTest::m_numParmsColm = 2;
    rkTest::m_numResultColm = 2;
    CaptureTable table;
    EXPECT_EQ(broken.run(), rkResException);
    ScriptedTest next("next");
    EXPECT_EQ(next.run(), rkResSuccess);
    EXPECT_EQ(table.text(),
              "broken,1,nLps=8,100\n"
              "broken,2,nLps=8,100\n"
              "broken,small,deprecated,100\n"
              "next,-,nLps=8,100\n");
}

TEST(RkTest, AfterAnExceptionTheFloatingPointUnitsTrapNothingNew) {
    class Trapping : public ScriptedTest {
    public:
        rkResult runTiming() override {
            tsSSXBase().enableExceptions();
            throw rkException(rkString("with all traps open"));
        }
    } test;
    EXPECT_EQ(test.run(), rkResException);
    double volatile one = 1.0, three = 3.0;
    EXPECT_LT(one / three, 1.0) << "inexact";
}

TEST(RkTest, AFaultAfterParametersWereReadReachesTheTest) {
    Failing test;
    test.m_how = Failing::Signal;
    Counted size("size", 2);
    test.m_declared = {&size};
    EXPECT_EQ(test.run(), rkResException);
}

TEST(RkTest, TheReportOfAFailedTestIsWritten) {
    Failing test;
    CaptureLog log(1);
    test.run();
    EXPECT_TRUE(holds(log.text(), "-EXCPTFAIL")) << log.text();
}

TEST(RkTest, StartAndStopTellsExceptionsAndKeepsTheLevel) {
    Failing test;
    test.m_where = 'S';
    CaptureLog log(23);
    test.startAndStop();
    EXPECT_EQ(log.text(), "--KEL. Exception: broken in startAndStop of keliScript_8u test\n");
    EXPECT_EQ(g_ostrm.outLevel(), 23);
}

TEST(RkTest, StartAndStopIgnoresWhetherTheTestCanStart) {
    ScriptedTest test;
    test.m_canStart = false;
    test.startAndStop();
    EXPECT_EQ(test.m_steps, "SFE");
}

// ---- runs without measuring ------------------------------------------------------

TEST(RkTest, ARunThatOnlyWritesNamesDoesNotMeasure) {
    rkSession::m_nameExit = true;
    rkSession::m_nameMode = 1;
    rkTest::m_numParmsColm = 3;
    rkTest::m_numResultColm = 2;
    ScriptedTest test;
    Counted size("size", 3);
    test.m_declared = {&size};
    CaptureTable table;
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_EQ(test.m_steps, "SFE");
    EXPECT_EQ(table.text(), "keliScript_8u,size,-,parmNames,-\n");
}

TEST(RkTest, ARunThatWritesAnIniFileTakesTheParametersAndDoesNotMeasure) {
    TempDir dir;
    ASSERT_TRUE(g_istrm.setIniFile(dir / "f.ini", true));
    ScriptedTest test;
    Counted size("size", 3);
    test.m_declared = {&size};
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_EQ(test.m_steps, "SFE");
    EXPECT_STREQ(g_istrm.m_iniFile->read("keliScript_8u", "size", "").c_str(), "1; 2; 3");
    g_istrm.deleteIniFile();
}

TEST(RkTest, WithPressingATestWithoutASectionIsLeftOut) {
    TempDir dir;
    ASSERT_TRUE(g_istrm.setIniFile(dir.write("f.ini", "[wanted]\n"), false));
    rkTest::m_pressing = true;
    ScriptedTest other("other"), wanted("wanted");
    CaptureLog log(7);
    EXPECT_EQ(other.run(), rkResNotRun);
    EXPECT_EQ(other.m_result, rkResSuccess) << "this pair says left out";
    EXPECT_EQ(other.m_steps, "");
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(wanted.run(), rkResSuccess);
    g_istrm.deleteIniFile();
}

TEST(RkTest, ACacheRunOfATestWithoutACacheParameterIsRefused) {
    rkTest::m_cache = true;
    ScriptedTest test;
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResNotRun);
    EXPECT_EQ(test.m_result, rkResNotRun) << "counted as not run";
    EXPECT_EQ(test.m_steps, "SFE");
    EXPECT_TRUE(holds(log.text(),
                      "-- Can't run In-Outof-Cache timing: no program support for function keliScript_8u\n"));
}

// ---- selection, hot lines, parameters --------------------------------------------

TEST(RkTest, OnlyHotFunctionsRunWhenOnlyTheyAreWanted) {
    g_pHotList = new rkList<rkString>;
    g_pHotList->push_back("hot");
    ScriptedTest hot("hot"), cold("hotter");
    rkConditions all;
    EXPECT_TRUE(cold.tobeRun(all));
    rkTest::m_hot = 2;
    EXPECT_TRUE(hot.tobeRun(all));
    EXPECT_FALSE(cold.tobeRun(all));
    EXPECT_TRUE(hot.isHotLine());
    EXPECT_FALSE(cold.isHotLine());
}

TEST(RkTest, WithoutAListNothingIsHot) {
    ScriptedTest test;
    EXPECT_FALSE(test.isHotLine());
}

TEST(RkTest, OneParameterAtMostVariesWithTheCache) {
    rkTest::m_cache = true;
    ScriptedTest test;
    Counted a("a", 1), b("b", 1);
    test.regCacheParm(a);
    test.regCacheParm(b);
    ASSERT_EQ(test.m_parms.size(), 2);
    EXPECT_EQ(*test.m_parms.begin(), test.m_cacheIterator);
    EXPECT_EQ(test.m_cacheIterator->m_parm, &a);
    EXPECT_EQ(*++test.m_parms.begin(), &b);
}

TEST(RkTest, EveryCacheIteratorIsFreed) {
    static int living = 0;
    class CountedCache : public rkCacheIteratorInt {
    public:
        explicit CountedCache(rkIterator<int> &parm) : rkCacheIteratorInt(parm, nullptr, nullptr) {
            ++living;
        }
        ~CountedCache() override { --living; }
    };
    Counted size("size", 1);
    {
        ScriptedTest test;
        for (int begin = 0; begin < 3; ++begin) {
            test.beginTest();
            test.m_cacheIterator = new CountedCache(size);
            EXPECT_EQ(living, 1) << "a new begin frees the one before";
        }
    }
    EXPECT_EQ(living, 0);
}

TEST(RkTest, WithoutACacheRunTheParameterItselfIsTaken) {
    ScriptedTest test;
    Counted a("a", 1);
    test.regCacheParm(a);
    EXPECT_EQ(*test.m_parms.begin(), &a);
    EXPECT_EQ(test.m_cacheIterator, nullptr);
}

TEST(RkTest, SettingsStartOverWithEachBegin) {
    ScriptedTest test;
    Counted a("a", 1);
    test.m_parms.push_back(&a);
    test.m_firstPass = false;
    test.m_bad87 = test.m_badSsx = test.m_deprecatedFlag = test.m_cacheOverflow = true;
    test.initSettings();
    EXPECT_TRUE(test.m_parms.empty());
    EXPECT_TRUE(test.m_firstPass);
    EXPECT_FALSE(test.m_bad87 || test.m_badSsx || test.m_deprecatedFlag || test.m_cacheOverflow);
}

TEST(RkTest, DeprecatedFlagNeedsADeprecatedValueInEachDeprecatedParameter) {
    ScriptedTest test;
    rkDefault<int> plain(1, "plain"), old(2, "old"), alsoOld(3, "alsoOld");
    for (rkParameter *p : std::initializer_list<rkParameter *>{&plain, &old}) test.m_parms.push_back(p);
    EXPECT_FALSE(test.setDeprecatedFlag(true)) << "no deprecated parameter";
    old.addDeprecated(2, "two");
    EXPECT_TRUE(test.setDeprecatedFlag(true));
    alsoOld.addDeprecated(7, "seven");
    test.m_parms.push_back(&alsoOld);
    EXPECT_FALSE(test.setDeprecatedFlag(true)) << "3 is not among its deprecated values";
    EXPECT_FALSE(test.setDeprecatedFlag(false));
    EXPECT_FALSE(old.m_deprecated);
}

// ---- test data -------------------------------------------------------------------

TEST(RkTestData, SuccessiveBlocksAreShiftedUntilTheRangeStartsOver) {
    rkTest::m_vectorShift = 31744;
    void *a = rkTest::allocate(16, 0);
    EXPECT_EQ(rkTest::m_vectorShift, 32256);
    void *b = rkTest::allocate(16, 0);
    EXPECT_EQ(rkTest::m_vectorShift, 0);
    EXPECT_EQ(rkTest::m_vectorNum, 2);
    rkTest::deallocate(a);
    rkTest::deallocate(b);
}

TEST(RkTestData, BlocksLieTheirShiftBehindTheBoundaryAndStartOverBehindTheLast) {
    Address record;
    for (int expected = 0; expected <= 32768; expected += 512) {
        void *p = rkTest::allocate(16, 0);
        ASSERT_TRUE(pAddressList->find(p, record));
        EXPECT_EQ(static_cast<char *>(p) - static_cast<char *>(record.address), expected % 32768);
        rkTest::deallocate(p);
    }
}

TEST(RkTestData, NegativeAlignMeansMultiplesOfTheSetting) {
    rkSetVectorAlign(3);
    rkSetAlignSrc(false);
    void *a = rkTest::allocate(16, -2);
    EXPECT_EQ(reinterpret_cast<size_t>(a) % 64, 6u);
    rkTest::deallocate(a);
}

TEST(RkTestData, WithFirstVectorOnlyLaterBlocksAreAligned) {
    rkSetVectorAlign(5);
    rkSetAlignSrc(true);
    void *first = rkTest::allocate(16, -1), *later = rkTest::allocate(16, -1),
         *fixed = rkTest::allocate(16, 7);
    EXPECT_EQ(reinterpret_cast<size_t>(first) % 64, 5u);
    EXPECT_EQ(reinterpret_cast<size_t>(later) % 64, 0u);
    EXPECT_EQ(reinterpret_cast<size_t>(fixed) % 64, 7u) << "only multiples are set back";
    for (void *p : {first, later, fixed}) rkTest::deallocate(p);
}

TEST(RkTestData, ABlockWithoutAnOwnerIsABuffer) {
    void *p = rkTest::allocate(16, 0, nullptr);
    void *owner = nullptr;
    ASSERT_TRUE(rkMallocInfo(p, nullptr, &owner));
    EXPECT_EQ(owner, MEM_OBJECT_IS_BUFFER);
    rkTest::deallocate(p);
}

TEST(RkTestData, AFailedAllocationChangesNothing) {
    rkTest::m_vectorShift = 512;
    rkTest::m_vectorNum = 1;
    EXPECT_EQ(rkTest::allocate(-5, 0), nullptr);
    EXPECT_EQ(rkTest::m_vectorShift, 512);
    EXPECT_EQ(rkTest::m_vectorNum, 1);
}

TEST(RkTestData, AllOwnersAreAskedAndTheSuccessesCounted) {
    class Owner : public rkObject {
    public:
        bool reserveCopy() override { return ++m_reserved != 0; }
        bool setReservedCopy() override { return ++m_reset != 0; }
        int m_reserved = 0, m_reset = 0;
    } owner;
    void *blocks[] = {rkTest::allocate(16, 0, &owner), rkTest::allocate(16, 0),
                      rkTest::allocate(16, 0, &owner)};
    EXPECT_EQ(rkTest::reserveAllVectors(), 2) << "a plain buffer has no copy";
    EXPECT_EQ(rkTest::resetAllVectors(), 2);
    EXPECT_EQ(owner.m_reserved, 2);
    EXPECT_EQ(owner.m_reset, 2);
    for (void *p : blocks) rkTest::deallocate(p);
}

TEST(RkInfoTest, PrintsAtTheLevelOfErrorsAndSucceeds) {
    class Info : public __rkInfoTest {
    public:
        Info() : __rkInfoTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), "__rkInfo", "x", "Info") {}
        void printInformation() override { g_ostrm << "information\n"; }
    } test;
    CaptureLog log(1);
    EXPECT_EQ(test.run(), rkResSuccess);
    EXPECT_TRUE(holds(log.text(), "information\n"));
    EXPECT_FALSE(holds(log.text(), "registered")) << "it has no registration line";
}

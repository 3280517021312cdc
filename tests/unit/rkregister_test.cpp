// rkregister_test.cpp - tests of rkregister and of the binding of the library's core.

#include "rkregister.h"

#include "sessionfixture.h"

namespace {

class Rk_Register : public SessionFixture {};

template <class List>
std::string joined(List *list) {
    std::string text;
    for (rkString &name : *list) text += std::string(name.c_str()) + ";";
    return text;
}

rkTest *newTest(char const *name) {
    return new rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), name, "file", "Class/text");
}

void firstHook() {}
void secondHook() {}
void presetMethod(rkTool &) {}

TEST(RkRegister, NothingIsThereBeforeTheFirstCall) {
    EXPECT_EQ(pSession, nullptr);
    EXPECT_EQ(pTestList, nullptr);
    EXPECT_EQ(g_pParmList, nullptr);
    EXPECT_EQ(g_pHotList, nullptr);
    EXPECT_EQ(g_pMissingList, nullptr);
    EXPECT_EQ(pCmdLine, nullptr);
    EXPECT_EQ(kelVersionList, nullptr);
    EXPECT_EQ(kelEnvironment, nullptr);
    EXPECT_EQ(s_parmFunc, nullptr);
    EXPECT_EQ(initTimingMethod, nullptr);
    EXPECT_TRUE(qKeys);
}

TEST(RkRegister, TestsAreAppendedInOrder) {
    rkTest *a = newTest("a"), *b = newTest("b");
    EXPECT_EQ(rkRegTest(a), 1);
    EXPECT_EQ(rkRegTest(b), 1);
    ASSERT_NE(pTestList, nullptr);
    ASSERT_EQ(pTestList->size(), 2);
    EXPECT_EQ(*pTestList->begin(), a);
    EXPECT_EQ(*++pTestList->begin(), b);
    deleteTestList();
}

TEST(RkRegister, ParametersAreRegisteredByAddress) {
    static rkDefault<int> parm(1, "n");
    EXPECT_EQ(rkRegParm(parm), 1);
    ASSERT_NE(g_pParmList, nullptr);
    ASSERT_EQ(g_pParmList->size(), 1);
    EXPECT_EQ(*g_pParmList->begin(), &parm);
}

TEST(RkRegister, LaterParameterFunctionReplacesTheEarlier) {
    EXPECT_EQ(rkRegParmFunc(firstHook), 1);
    EXPECT_EQ(rkRegParmFunc(secondHook), 1);
    EXPECT_EQ(s_parmFunc, secondHook);
}

TEST(RkRegister, CommandLinesAreJoinedByBlanks) {
    EXPECT_EQ(rkRegCmdLine("-B"), 1);
    EXPECT_STREQ(pCmdLine->c_str(), " -B");
    EXPECT_EQ(rkRegCmdLine("-L PERF"), 1);
    EXPECT_STREQ(pCmdLine->c_str(), " -B -L PERF");
}

TEST(RkRegister, SessionIsStored) {
    static rkSession session;
    EXPECT_EQ(rkRegSession(&session), 1);
    EXPECT_EQ(pSession, &session);
}

TEST(RkRegister, HooksAreStored) {
    EXPECT_EQ(rkRegKelEnvironment(firstHook), 1);
    EXPECT_EQ(kelEnvironment, firstHook);
    EXPECT_EQ(rkRegTimingMethod(presetMethod), 1);
    EXPECT_EQ(initTimingMethod, presetMethod);
}

TEST(RkRegister, HotAndMissingFunctionsAreListed) {
    EXPECT_EQ(rkRegHotFunction("keliA"), 1);
    EXPECT_EQ(rkRegHotFunction("keliB"), 1);
    EXPECT_EQ(joined(g_pHotList), "keliA;keliB;");
    EXPECT_EQ(rkRegMissing("keliC"), 1);
    EXPECT_EQ(joined(g_pMissingList), "keliC;");
}

TEST(RkRegister, QKeysAreSwitchedOn) {
    qKeys = false;
    EXPECT_EQ(rkRegQKeys(), 1);
    EXPECT_TRUE(qKeys);
}

// ---- versions of the library ------------------------------------------------------

int versionCalls = 0;
KelLibraryVersion const *versionA() {
    static const KelLibraryVersion v = {1, 2, 3, "libA", "1.2", "Jan 1"};
    ++versionCalls;
    return &v;
}
KelLibraryVersion const *versionB() {
    static const KelLibraryVersion v = {1, 2, 3, "libB", "4.5", "Feb 2"};
    return &v;
}
KelLibraryVersion const *noVersion() {
    return nullptr;
}

TEST(RkRegister, VersionFunctionsKeepTheirDoubles) {
    EXPECT_EQ(rkRegKelVersion(versionA), 1);
    EXPECT_EQ(rkRegKelVersion(versionA), 1);
    EXPECT_EQ(kelVersionList->size(), 2);
}

TEST_F(Rk_Register, EveryRegisteredVersionIsAskedInOrder) {
    catchLog();
    g_ostrm.setOutLevel(7);
    rkRegKelVersion(versionB);
    rkRegKelVersion(versionA);
    rkRegKelVersion(versionA);
    setKelLibInfo();
    EXPECT_EQ(versionCalls, 2);
    ASSERT_NE(g_pLibInfoList, nullptr);
    EXPECT_EQ(joined(g_pLibInfoList), "libB, 4.5, Feb 2;libA, 1.2, Jan 1;");
    EXPECT_EQ(log(), "KEL libraries information has been set into RK\n");
}

TEST_F(Rk_Register, LibraryWithoutAVersionIsPassedOver) {
    catchLog();
    g_ostrm.setOutLevel(7);
    rkRegKelVersion(noVersion);
    rkRegKelVersion(nullptr);
    setKelLibInfo();
    EXPECT_EQ(g_pLibInfoList, nullptr);
    EXPECT_EQ(log(), "KEL libraries information has been set into RK\n");
}

TEST_F(Rk_Register, WithoutVersionFunctionsNothingIsSaid) {
    catchLog();
    g_ostrm.setOutLevel(7);
    setKelLibInfo();
    EXPECT_EQ(g_pLibInfoList, nullptr);
    EXPECT_EQ(log(), "");
}

// ---- the core -----------------------------------------------------------------------

TEST_F(Rk_Register, WithoutALibraryTheFallbacksAreBound) {
    catchLog();
    setKelEnvironment();
    EXPECT_EQ(kel_GetCpuType, rk_kelGetCpuType);
    EXPECT_EQ(kel_GetNumCoresOnDie, rk_kelGetNumCoresOnDie);
    EXPECT_EQ(kel_GetMaxCacheSizeB, rk_kelGetMaxCacheSizeB);
    EXPECT_EQ(kel_Init(), -2);
    EXPECT_EQ(kel_InitCpu(70), -2);
    EXPECT_EQ(kel_SetNumThreads(1), -2);
    EXPECT_EQ(log(), "");
}

TEST_F(Rk_Register, FallbackStatusTexts) {
    setKelEnvironment();
    EXPECT_STREQ(kel_GetStatusString(-7), "Error");
    EXPECT_STREQ(kel_GetStatusString(0), "OK");
    EXPECT_STREQ(kel_GetStatusString(3), "Warning");
}

TEST_F(Rk_Register, HookIsCalledAndSaidAtTheLowestLevel) {
    catchLog();
    g_ostrm.setOutLevel(MsgError);
    rkRegKelEnvironment(FakeCore::bind);
    setKelEnvironment();
    EXPECT_EQ(FakeCore::binds, 1);
    EXPECT_EQ(kel_Init, FakeCore::init);
    EXPECT_EQ(log(), "\nKEL Core library functions have been integrated into RK\n");
    EXPECT_EQ(g_ostrm.msgLevel(), MsgResult);
}

TEST_F(Rk_Register, WhatTheHookLeavesOpenIsFilled) {
    rkRegKelEnvironment(FakeCore::bind);
    setKelEnvironment();
    EXPECT_EQ(kel_GetCpuType, rk_kelGetCpuType);
    EXPECT_EQ(kel_GetNumCoresOnDie, rk_kelGetNumCoresOnDie);
    EXPECT_EQ(kel_GetMaxCacheSizeB, rk_kelGetMaxCacheSizeB);
}

// ---- processor and threads --------------------------------------------------------------

class Rk_Core : public SessionFixture {
protected:
    void SetUp() override {
        SessionFixture::SetUp();
        rkRegKelEnvironment(FakeCore::bind);
        setKelEnvironment();
        catchLog();
        g_ostrm.setOutLevel(MsgError);
    }
};

TEST_F(Rk_Core, WithoutAProcessorKeyTheCoreInitialisesItselfSilently) {
    initStaticCpu();
    EXPECT_EQ(FakeCore::inits, 1);
    EXPECT_EQ(FakeCore::cpu, -1);
    EXPECT_EQ(log(), "");
}

TEST_F(Rk_Core, AskedProcessorIsSet) {
    s_cpuType = 70;
    initStaticCpu();
    EXPECT_EQ(FakeCore::cpu, 70);
    EXPECT_EQ(FakeCore::inits, 0);
    EXPECT_EQ(log(), "\n--calling kelInitCpu( kelCpuAVX=70 )\n--status = kelStsNoErr\n");
}

TEST_F(Rk_Core, WarningOfTheProcessorIsReported) {
    s_cpuType = 70;
    FakeCore::initCpuStatus = 3;
    initStaticCpu();
    EXPECT_EQ(FakeCore::inits, 0);
    EXPECT_EQ(log(), "\n--calling kelInitCpu( kelCpuAVX=70 )\n--KEL WARNING. status = 3: take care\n");
}

TEST_F(Rk_Core, RefusedProcessorFallsBackToInit) {
    s_cpuType = 70;
    FakeCore::initCpuStatus = -9;
    initStaticCpu();
    EXPECT_EQ(FakeCore::inits, 1);
    EXPECT_EQ(log(),
              "\n--calling kelInitCpu( kelCpuAVX=70 )\n--KEL ERROR. status = -9: no such thing\n"
              "--calling kelInit()\n");
}

TEST_F(Rk_Core, FailedFallbackIsReportedToo) {
    s_cpuType = 70;
    FakeCore::initCpuStatus = -9;
    FakeCore::initStatus = -5;
    initStaticCpu();
    EXPECT_EQ(log(),
              "\n--calling kelInitCpu( kelCpuAVX=70 )\n--KEL ERROR. status = -9: no such thing\n"
              "--calling kelInit()\n--KEL ERROR. status = -5: no such thing\n");
}

TEST_F(Rk_Core, ThreadsAreSet) {
    s_numThreads = 2;
    setNumThreads();
    EXPECT_EQ(FakeCore::threads, 2);
    EXPECT_EQ(log(), "\n--calling kelSetNumThreads( 2 )\n--status = kelStsNoErr\n");
}

TEST_F(Rk_Core, RefusedThreadsHaveNoFallback) {
    s_numThreads = 2;
    FakeCore::threadsStatus = -9;
    setNumThreads();
    EXPECT_EQ(FakeCore::inits, 0);
    EXPECT_EQ(log(), "\n--calling kelSetNumThreads( 2 )\n--KEL ERROR. status = -9: no such thing\n");
}

TEST_F(Rk_Core, NoThreadsAskedNoneSet) {
    FakeCore::threads = -100;
    setNumThreads();
    EXPECT_EQ(FakeCore::threads, -100);
    EXPECT_EQ(log(), "");
}

TEST_F(Rk_Register, WithoutAHookNeitherIsCalled) {
    setKelEnvironment();
    kel_InitCpu = FakeCore::initCpu;
    kel_SetNumThreads = FakeCore::setThreads;
    kel_Init = FakeCore::init;
    s_cpuType = 70;
    s_numThreads = 2;
    catchLog();
    initStaticCpu();
    setNumThreads();
    EXPECT_EQ(FakeCore::cpu, -1);
    EXPECT_EQ(FakeCore::threads, 0);
    EXPECT_EQ(FakeCore::inits, 0);
    EXPECT_EQ(log(), "");
}

} // namespace

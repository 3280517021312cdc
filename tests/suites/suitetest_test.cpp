// suitetest_test.cpp - each check of the suites says no to the fault that it is for.

#include "suitetest.h"

#include <gtest/gtest-spi.h>

#include "../unit/tempdir.h"
#include "kmmeasure.h"
#include "rkregister.h"

namespace {

using suite::Expected;

// ---- a suite with faults ---------------------------------------------------------------

enum Fault { None, Beside, Before, WritesSource, WritesNothing, Fails, Leaks, Overrides, Alike, Remembers };
Fault s_fault;

rkStepIterator<int> s_len;
kmVector s_src(8), s_dst(8);
void *s_leak;
int s_runs, s_sets;

int call() {
    if (s_fault == Beside) s_dst.p8u[100] = 1;
    if (s_fault == Before) s_dst.p8u[-1] = 1;
    if (s_fault == WritesSource) s_src.p8u[7] = 77;
    if (s_fault == Fails) return -1;
    if (s_fault != WritesNothing) s_dst.p8u[0] = s_src.p8u[0];
    return 0;
}

rkResult loop(int count, long long *clocks) {
    return kmTimLoop<call, kmNoReset>(count, clocks, "keliFake4x4_8u_C1R");
}

rkResult stat(int *count, long long *clocks) {
    return kmTimStat<call, kmNoReset>(count, clocks, "keliFake4x4_8u_C1R");
}

class Fake : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override {
        ++s_runs;
        if (s_fault == Overrides || m_tool.getMethodAuto()) m_tool.setMethodStat(99, 0);
        m_parms.push_back(&s_len);
        s_len.init("len", 4, 8, 4, StepPlus);
        return true;
    }
    bool initData() override {
        ++s_sets;
        if (s_fault == Leaks) s_leak = rkTest::allocate(16, 0);
        return s_src.createVector(50, SetDefault, 0, 0) && s_dst.createVector(100, SetDefault, 0, 0);
    }
    void flushData() override {
        s_src.deleteVector();
        s_dst.deleteVector();
    }
    double getDivisor() override { return s_len.value(); }
    rkString getUnit() override { return "e"; }
    void parmsToCstrm() override {
        if (s_fault == Alike)
            g_cstrm << "alike";
        else if (s_fault == Remembers)
            g_cstrm << s_runs;
        else
            rkTest::parmsToCstrm();
    }
};

[[maybe_unused]] const bool registered = rkRegTest(
    new Fake(call, nullptr, loop, stat, "keliFake4x4_8u_C1R", "some/where/fake.cpp", "Fake//KM_REG"));

Expected fake(char const *unit = "e") {
    return Expected("Fake", "keliFake4x4_8u_C1R", unit, 0)
        .parm("len", {"4", "8"})
        .divisors({4, 8})
        .stat(99)
        .blocks({50, 100})
        .writes({1});
}

class SuiteChecks : public suite::SuiteTest {
protected:
    // All that the check finds wrong.
    static std::string wrong(void (*check)(Expected const &), Expected const &expected, Fault fault = None) {
        s_fault = fault;
        testing::TestPartResultArray results;
        {
            testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
            check(expected);
        }
        s_fault = None;
        std::string text;
        for (int i = 0; i < results.size(); ++i) text += results.GetTestPartResult(i).message();
        return text;
    }
};

bool has(std::string const &text, char const *part) {
    return text.find(part) != std::string::npos;
}

} // namespace

SUITE_TEST(Fake, "fake.cpp", std::vector<Expected>{fake()});

TEST_F(SuiteChecks, FindAMissingRegistration) {
    EXPECT_TRUE(has(wrong(suite::checkRegistration, Expected("Other", "keliFake4x4_8u_C1R", "e", 1)),
                    "nothing is registered for keliFake4x4_8u_C1R Other"));
}

TEST_F(SuiteChecks, FindAnotherMarker) {
    EXPECT_TRUE(has(wrong(suite::checkRegistration, fake().consumes()), "KM_REG_I"));
}

TEST_F(SuiteChecks, FindAFileThatRegistersMoreOrLessOrInAnotherOrder) {
    EXPECT_NONFATAL_FAILURE(suite::checkFile("fake.cpp", {}), "keliFake4x4_8u_C1R");
    EXPECT_NONFATAL_FAILURE(suite::checkFile("none.cpp", {fake()}), "keliFake4x4_8u_C1R");
    suite::checkFile("fake.cpp", {fake()});
}

TEST_F(SuiteChecks, FindAFailingCall) {
    EXPECT_TRUE(has(wrong(suite::checkSets, fake(), Fails), "--KEL ERROR"));
    EXPECT_TRUE(has(wrong(suite::checkWrites, fake(), Fails), "status"));
}

TEST_F(SuiteChecks, FindRowsThatAreAlike) {
    EXPECT_TRUE(has(wrong(suite::checkSets, fake().rows({{"alike"}, {"alike"}}), Alike), "duplicate lines"));
    EXPECT_EQ(wrong(suite::checkSets, fake().rows({{"alike"}, {"alike"}}).result(rkResDataWarning), Alike),
              "");
}

TEST_F(SuiteChecks, FindWrongCells) {
    EXPECT_TRUE(has(wrong(suite::checkSets, fake().rows({{"4"}, {"9"}})), "row 1"));
    EXPECT_TRUE(has(wrong(suite::checkSets, fake().rows({{"4"}})), "rows.size()"));
    EXPECT_TRUE(has(wrong(suite::checkSets, fake().sets(3)), "rows.size()"));
    EXPECT_TRUE(has(wrong(suite::checkSets, fake().sets(2).row(1, {"7"})), "row 1"));
    EXPECT_TRUE(has(wrong(suite::checkSets, fake().sets(2).row(2, {"8"})), "there is no row 2"));
}

TEST_F(SuiteChecks, FindAnotherParameter) {
    Expected expected = fake();
    expected.m_parms[0].first = "size";
    EXPECT_TRUE(has(wrong(suite::checkSets, expected), "size"));
}

TEST_F(SuiteChecks, FindAStateThatIsNotBuiltAnew) {
    EXPECT_TRUE(has(wrong(suite::checkNextRun, fake(), Remembers), "row 0"));
}

TEST_F(SuiteChecks, FindAnotherUnitOrDivisor) {
    EXPECT_TRUE(has(wrong(suite::checkUnits, fake("px")), "row 0"));
    EXPECT_TRUE(has(wrong(suite::checkUnits, fake().divisors({4, 9})), "row 1"));
}

TEST_F(SuiteChecks, NeedTheWholeWalkForTheRowsAlone) {
    const Expected expected = fake().shortWalk("[keliFake4x4_8u_C1R]\nlen = 8\n").divisors({8});
    EXPECT_EQ(wrong(suite::checkSets, expected), "");
    for (auto *check : {suite::checkNextRun, suite::checkUnits, suite::checkMemory, suite::checkWrites}) {
        s_sets = 0;
        EXPECT_EQ(wrong(check, expected), "");
        EXPECT_EQ(s_sets, check == suite::checkNextRun ? 2 : 1);
    }
}

TEST_F(SuiteChecks, FindAnotherTimingMethod) {
    EXPECT_TRUE(has(wrong(suite::checkMethod, fake().stat(98)), "statistic 98, 0"));
    EXPECT_TRUE(has(wrong(suite::checkMethod, fake().loop(99)), "loop 99"));
    EXPECT_TRUE(has(wrong(suite::checkMethod, fake(), Overrides), "loop 6"));
}

TEST_F(SuiteChecks, FindABlockThatIsLeft) {
    EXPECT_TRUE(has(wrong(suite::checkMemory, fake(), Leaks), "a block of 16 bytes is left"));
    while (!suite::Sets::blocks().empty()) rkFree(suite::Sets::blocks().front().data);
}

TEST_F(SuiteChecks, FindThatABlockToBeLeftIsGone) {
    EXPECT_TRUE(has(wrong(suite::checkMemory, fake().leaves({16}), None), "{ 16 }"));
}

TEST_F(SuiteChecks, FindWritesToOtherBlocks) {
    EXPECT_TRUE(has(wrong(suite::checkWrites, fake(), WritesSource), "{ 0, 1 }"));
    EXPECT_EQ(wrong(suite::checkWrites, fake().updates({0}), WritesSource), "");
    EXPECT_TRUE(has(wrong(suite::checkWrites, fake(), WritesNothing), "{}"));
}

TEST_F(SuiteChecks, FindOtherSizesOfBlocks) {
    EXPECT_TRUE(has(wrong(suite::checkWrites, fake().blocks({50, 101})), "101"));
}

TEST_F(SuiteChecks, FindWritesBesideABlock) {
    for (Fault fault : {Beside, Before}) {
        if (suite::surroundingsForbidden) {
            EXPECT_DEATH(wrong(suite::checkWrites, fake(), fault), "poison");
        } else {
            EXPECT_TRUE(has(wrong(suite::checkWrites, fake(), fault), "beside block 1"));
        }
    }
}

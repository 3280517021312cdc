// rktestlist_test.cpp - order, run and count of the tests.

#include <gtest/gtest.h>

#include "capture.h"
#include "freshstart.h"
#include "rkconditions.h"
#include "rkregister.h"
#include "rksession.h"
#include "rktestlist.h"
#include "rkticker.h"

namespace {

std::string g_order; // names of the tests that ran

class Scripted : public rkTest {
public:
    explicit Scripted(rkString name, rkResult result = rkResSuccess)
        : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), name, "f.cpp", "Scripted"), m_script(result) {}
    rkResult run() override {
        g_order += m_name.c_str();
        m_result = m_script;
        return m_script;
    }
    rkResult m_script;
};

std::string names(rkTestList &list) {
    std::string all;
    for (auto i = list.begin(); i != list.end(); ++i) all += (*i)->m_name.c_str();
    return all;
}

void fill(rkTestList &list, std::initializer_list<char const *> testNames) {
    for (char const *name : testNames) list.push_back(new Scripted(name));
}

void empty(rkTestList &list) {
    for (auto i = list.begin(); i != list.end(); ++i) delete *i;
    list.clear();
}

} // namespace

TEST(RkTestList, SortsByName) {
    rkTestList list;
    fill(list, {"c", "a", "b"});
    list.sortFunc();
    EXPECT_EQ(names(list), "abc");
    empty(list);
}

TEST(RkTestList, OneTestStaysAsItIs) {
    rkTestList list;
    fill(list, {"a"});
    list.sortFunc();
    EXPECT_EQ(names(list), "a");
    empty(list);
}

TEST(RkTestList, SeventeenAndMoreTestsSortProperly) {
    for (int count : {17, 40, 400}) {
        rkTestList list;
        for (int i = 0; i < count; ++i) {
            char name[16];
            snprintf(name, sizeof name, "%04d", i * 7919 % count);
            list.push_back(new Scripted(name));
        }
        list.sortFunc();
        rkString previous;
        for (auto i = list.begin(); i != list.end(); ++i) {
            EXPECT_LE(previous.compare((*i)->m_name), 0);
            previous = (*i)->m_name;
        }
        EXPECT_EQ(list.size(), count);
        empty(list);
    }
}

TEST(RkTestList, EqualNamesKeepTheOrderOfRegistration) {
    rkTestList list;
    Scripted first("b"), second("b"), other("a");
    list.push_back(&first);
    list.push_back(&other);
    list.push_back(&second);
    list.sortFunc();
    auto i = list.begin();
    EXPECT_EQ(*i++, &other);
    EXPECT_EQ(*i++, &first);
    EXPECT_EQ(*i++, &second);
    list.clear();
}

TEST(RkTestList, OrderIsFalseForANullTest) {
    Scripted test("a");
    rkTest *a = &test, *none = nullptr;
    EXPECT_FALSE(aless(a, none));
    EXPECT_FALSE(aless(none, a));
}

TEST(RkTestList, RunsFromTheFirstNameThatHoldsTheStartText) {
    rkTestList list;
    fill(list, {"keliAdd", "keliSAD4x4", "keliZero"});
    rkConditions all;
    rkTestList::m_startFunc = "keliSAD";
    g_order = "";
    list.runTests(all);
    EXPECT_EQ(g_order, "keliSAD4x4keliZero");
    EXPECT_EQ(rkTestList::m_startFunc.length(), 0);
    empty(list);
}

TEST(RkTestList, AStartTextThatNoTestHasRunsNothing) {
    rkTestList list;
    fill(list, {"a", "b"});
    rkConditions all;
    rkTestList::m_startFunc = "zz";
    g_order = "";
    EXPECT_EQ(list.runTests(all), 0);
    EXPECT_EQ(g_order, "");
    EXPECT_EQ(list.m_total, 0);
    empty(list);
}

TEST(RkTestList, ATestTakenAwayByAConditionDoesNotEndTheWaitingForTheStart) {
    rkTestList list;
    fill(list, {"startHere", "other", "startAgain"});
    rkConditions conditions;
    RunCondition_fNot notHere("Here");
    conditions.push_back(&notHere);
    rkTestList::m_startFunc = "start";
    g_order = "";
    list.runTests(conditions);
    EXPECT_EQ(g_order, "startAgain");
    empty(list);
}

TEST(RkTestList, WarningsAreSummedAndErrorsAreSummed) {
    rkTestList list;
    for (int r = 0; r <= 11; ++r) list.plus(static_cast<rkResult>(r));
    EXPECT_EQ(list.m_total, 12);
    EXPECT_EQ(list.m_counts[rkResWarning], 1 + 4);
    EXPECT_EQ(list.m_counts[rkResError], 1 + 4);
    EXPECT_EQ(list.m_counts[rkResLibError], 1);
}

TEST(RkTestList, SumClassesCountOnce) {
    rkTestList list;
    list.plus(rkResError);
    EXPECT_EQ(list.m_counts[rkResError], 1);
    list.plus(rkResWarning);
    EXPECT_EQ(list.m_counts[rkResWarning], 1);
}

TEST(RkTestList, StatusIsOneOnlyAfterAnError) {
    rkConditions all;
    rkTestList warned;
    warned.push_back(new Scripted("a", rkResLibWarning));
    EXPECT_EQ(warned.runTests(all), 0);
    empty(warned);
    rkTestList failed;
    failed.push_back(new Scripted("a", rkResDataError));
    EXPECT_EQ(failed.runTests(all), 1);
    empty(failed);
}

namespace {

// Left out in its own ini section: comes back as 0 with its result field at success.
class LeftOut : public Scripted {
public:
    LeftOut() : Scripted("leftOut") {}
    rkResult run() override {
        m_result = rkResSuccess;
        return rkResNotRun;
    }
};

class WithParms : public rkTest {
public:
    WithParms(char const *name, std::initializer_list<rkParameter *> parms)
        : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), name, "f.cpp", "WithParms"), m_wanted(parms) {}
    bool canStart() override {
        ++m_starts;
        for (rkParameter *p : m_wanted) m_parms.push_back(p);
        return true;
    }
    std::vector<rkParameter *> m_wanted;
    int m_starts = 0;
};

} // namespace

TEST(RkTestList, ALeftOutTestIsNotCounted) {
    rkTestList list;
    list.push_back(new LeftOut);
    list.push_back(new Scripted("notRun", rkResNotRun));
    rkConditions all;
    list.runTests(all);
    EXPECT_EQ(list.m_total, 1) << "only the one that ran to 0 for other reasons";
    EXPECT_EQ(list.m_counts[rkResNotRun], 1);
    empty(list);
}

TEST(RkTestList, CommonParametersThatNoSelectedTestTakesAreRemoved) {
    rkDefault<int> used(1, "used"), unused(2, "unused");
    rkIterator<int> size("size", "");
    size.add(4);
    rkTestList list;
    WithParms first("first", {&used}), hidden("hidden", {&unused}), last("last", {&size});
    for (rkTest *t : {&first, &hidden, &last}) list.push_back(t);
    rkConditions conditions;
    RunCondition_fNot notHidden("hidden");
    conditions.push_back(&notHidden);
    rkList<rkParameter *> common;
    for (rkParameter *p : std::initializer_list<rkParameter *>{&used, &unused, &size}) common.push_back(p);

    list.selectCommonParms(conditions, common);

    ASSERT_EQ(common.size(), 2);
    EXPECT_EQ(*common.begin(), &used);
    EXPECT_TRUE(used.m_readable);
    EXPECT_TRUE(size.m_readable);
    EXPECT_FALSE(unused.m_readable);
    EXPECT_TRUE(first.m_parms.empty());
    list.clear();
}

TEST(RkTestList, SelectionStopsOneTestAfterTheLastMark) {
    rkDefault<int> parm(1, "parm");
    WithParms first("a", {&parm}), second("b", {}), third("c", {});
    rkTestList list;
    for (rkTest *t : {&first, &second, &third}) list.push_back(t);
    rkConditions all;
    rkList<rkParameter *> common;
    common.push_back(&parm);
    list.selectCommonParms(all, common);
    EXPECT_EQ(first.m_starts, 1);
    EXPECT_EQ(second.m_starts, 1);
    EXPECT_EQ(third.m_starts, 0);
    list.clear();
}

namespace {

class CacheSized : public rkTest {
public:
    explicit CacheSized(rkIterator<int> &parm)
        : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), "cacheSized", "f.cpp", "CacheSized"),
          m_size(parm) {}
    bool canStart() override {
        regCacheParm(m_size);
        return true;
    }
    rkIterator<int> &m_size;
};

} // namespace

TEST(RkTestList, ACacheIteratorStandsForTheParameterItWraps) {
    rkIterator<int> size("size", "");
    size.add(64);
    CacheSized test(size);
    rkTest::m_cache = true;
    rkTestList list;
    list.push_back(&test);
    rkConditions all;
    rkList<rkParameter *> common;
    common.push_back(&size);
    list.selectCommonParms(all, common);
    EXPECT_EQ(common.size(), 1);
    EXPECT_EQ(test.m_cacheIterator, nullptr);
    EXPECT_TRUE(test.m_parms.empty());
    list.clear();
}

TEST(RkTestList, ATestThatThrowsLeavesItsParametersUnmarked) {
    class Throwing : public rkTest {
    public:
        Throwing() : rkTest(rkFuncLoop(nullptr), rkFuncStat(nullptr), "thrower", "f.cpp", "Throwing") {}
        bool canStart() override { throw rkException(rkString("no data")); }
    } test;
    CaptureLog log(7);
    rkDefault<int> parm(1, "parm");
    rkTestList list;
    list.push_back(&test);
    rkConditions all;
    rkList<rkParameter *> common;
    common.push_back(&parm);
    list.selectCommonParms(all, common);
    EXPECT_TRUE(common.empty());
    EXPECT_EQ(log.text(), "--KEL. Exception: no data in startAndStop of thrower test\n");
    list.clear();
}

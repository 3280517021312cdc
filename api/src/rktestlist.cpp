// rktestlist.cpp - order, run and count of the tests.

#include "rktestlist.h"

rkString rkTestList::m_startFunc;
rkTest *rkTestList::m_pCurrentTest;
rkTestList *pTestList;

rkTestList::rkTestList() : m_startTime(time(nullptr)), m_endTime(m_startTime), m_total(0), m_counts() {}

void beforeAll() {}
void beforeTest() {}
void afterTest(rkTest *) {}

bool aless(rkTest *&a, rkTest *&b) {
    return a && b && a->compareFunc(b) < 0;
}

void rkTestList::sortFunc() {
    sort(aless);
}

int rkTestList::runTests(rkConditions &conditions) {
    beforeAll();
    for (iterator i = begin(); i != end(); ++i) {
        rkTest *test = *i;
        if (!test->tobeRun(conditions)) continue;
        if (m_startFunc.length() > 0 && test->m_name.find(m_startFunc, 0) == rkString::npos) continue;
        m_startFunc = "";
        runTest(test);
    }
    return m_counts[rkResError] != 0;
}

// A test that was left out comes back as 0 with its result field still at 1, and is not counted.
void rkTestList::runTest(rkTest *test) {
    m_pCurrentTest = test;
    beforeTest();
    rkResult r = test->run();
    afterTest(test);
    if (r != rkResNotRun || test->m_result != rkResSuccess) plus(r);
    m_pCurrentTest = nullptr;
}

void rkTestList::plus(rkResult r) {
    ++m_total;
    if (r >= rkResNotRun && r <= rkResError) ++m_counts[r];
    if (r >= rkResAccuracyWarning && r <= rkResLibWarning) ++m_counts[rkResWarning];
    if (r >= rkResAccuracyError && r <= rkResException) ++m_counts[rkResError];
}

static bool takesParm(rkTest *test, rkParameter *parm) {
    for (auto i = test->m_parms.begin(); i != test->m_parms.end(); ++i) {
        bool wrapped = test->m_cacheIterator && *i == test->m_cacheIterator;
        if ((wrapped ? test->m_cacheIterator->m_parm : *i) == parm) return true;
    }
    return false;
}

// m_readable serves as the used mark. True if all had their mark before this test.
bool rkTestList::markUsed(rkTest *test, rkList<rkParameter *> &parms) {
    bool allUsed = true;
    for (auto i = parms.begin(); i != parms.end(); ++i) {
        if ((*i)->m_readable) continue;
        allUsed = false;
        if (takesParm(test, *i)) (*i)->m_readable = true;
    }
    return allUsed;
}

void rkTestList::selectCommonParms(rkConditions &conditions, rkList<rkParameter *> &parms) {
    for (auto i = parms.begin(); i != parms.end(); ++i) (*i)->m_readable = false;
    bool allUsed = false;
    for (iterator i = begin(); i != end() && !allUsed; ++i) {
        if (!(*i)->tobeRun(conditions)) continue;
        (*i)->startAndStop();
        allUsed = markUsed(*i, parms);
        delete (*i)->m_cacheIterator;
        (*i)->m_cacheIterator = nullptr;
        (*i)->m_parms.clear();
    }
    for (auto i = parms.begin(); i != parms.end();) {
        if ((*i)->m_readable) {
            ++i;
        } else {
            i = parms.erase(i);
        }
    }
}

void deleteTestList() {
    for (auto i = pTestList->begin(); i != pTestList->end(); ++i) delete *i;
    delete pTestList;
}

// rktestlist.h - all tests of the program: their order, their run, the count of their results.

#ifndef RAKOVA_RKTESTLIST_H
#define RAKOVA_RKTESTLIST_H

#include <time.h>

#include "rktest.h"

class rkTestList : public rkList<rkTest *> { // owns its tests, see deleteTestList
public:
    rkTestList();

    int runTests(rkConditions &conditions); // 1 if a test ended with an error, else 0
    void plus(rkResult r);                  // counts one result
    void sortFunc();
    // Leaves in parms those that a selected test takes; they are then m_readable.
    void selectCommonParms(rkConditions &conditions, rkList<rkParameter *> &parms);

    time_t m_startTime;
    time_t m_endTime;
    int m_total;
    int m_counts[12]; // by rkResult; 6 and 11 are also the sums of all warnings and errors

    static rkString m_startFunc;   // of -F; empty once it was met
    static rkTest *m_pCurrentTest; // null between tests

private:
    void runTest(rkTest *test);
    static bool markUsed(rkTest *test, rkList<rkParameter *> &parms);
};

// Extension points, empty here.
void beforeAll();
void beforeTest();
void afterTest(rkTest *test);

bool aless(rkTest *&a, rkTest *&b); // the order of sortFunc

extern rkTestList *pTestList; // created by the first rkRegTest
void deleteTestList();        // the tests and the list; the pointer stays

#endif

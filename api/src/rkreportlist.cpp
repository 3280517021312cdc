// rkreportlist.cpp - the list of functions that have a test, and of those that want one.

#include "rkreport.h"

#include <stdio.h>

#include "rkcpu.h"
#include "rktestlist.h"

static const char rowEnd[] = "\n";

rkReportList::rkReportList(rkTestList &tests, rkConditions &conditions, int mode) {
    if (mode != 0 && createFuncList()) {
        markFunctions(tests, mode);
    } else {
        addTests(tests, conditions);
    }
}

// Functions that only prepare or release what others work on; none of them is measured.
static bool isUtility(rkString const &name) {
    static char const *const words[] = {"Init",   "Close",        "Alloc",       "Malloc",  "Free",
                                        "PutVal", "RotateCenter", "ResizeShift", "DrawText"};
    for (char const *word : words)
        if (name.find(word, 0) >= 0) return true;
    return (name.find("Get", 0) >= 0 && name.find("Get_", 0) < 0) ||
           (name.find("Set", 0) >= 0 && name.find("Set_", 0) < 0);
}

bool rkReportList::createFuncList() {
    bool found = false;
    if (!g_pLibFuncList) return false;
    for (rkString const &name : *g_pLibFuncList) {
        if (isUtility(name)) continue;
        push_back(name);
        found = true;
    }
    return found;
}

bool rkReportList::presentInTestList(rkString name, rkTestList &tests) {
    for (rkTest const *test : tests)
        if (test->m_name == name) return true;
    return false;
}

void rkReportList::markFunctions(rkTestList &tests, int mode) {
    for (iterator it = begin(); it != end();) {
        bool present = presentInTestList(*it, tests);
        if (present && mode < 1) {
            it = erase(it);
            continue;
        }
        insert(it, present ? "+" : "-");
        insert(++it, rowEnd);
    }
    push_front(rowEnd);
    push_front("Function");
    push_front("Exist");
}

void rkReportList::addTests(rkTestList &tests, rkConditions &conditions) {
    static char const *const heads[] = {"   #", "Function", "Test", "Source", rowEnd};
    for (char const *head : heads) push_back(head);
    int n = 0;
    for (rkTest *test : tests) {
        if (!test->tobeRun(conditions)) continue;
        char number[16];
        snprintf(number, sizeof(number), "%4d", ++n);
        push_back(number);
        push_back(test->m_name);
        push_back(test->m_info.m_name);
        push_back(test->m_file);
        push_back(rowEnd);
    }
}

rkOStream &operator<<(rkOStream &stream, rkReportList &list) {
    if (!stream.isOn(stream.msgLevel())) return stream;
    for (rkString const &cell : list) stream << (cell == rowEnd ? cell : cell + "\t");
    return stream;
}

rkCStream &operator<<(rkCStream &stream, rkReportList &list) {
    for (rkString const &cell : list) {
        if (cell == rowEnd) {
            stream.lineOut(0);
        } else {
            stream << cell;
        }
    }
    return stream;
}

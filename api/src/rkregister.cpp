// rkregister.cpp - what the static initialisers of test files leave behind for the session.

#include "rkregister.h"

// All of these are set before main, some before any constructor of the framework has run, so none of them may
// need one.
rkSession *pSession = nullptr;
rkList<rkParameter *> *g_pParmList = nullptr;
rkList<rkString> *g_pHotList = nullptr;
rkList<rkString> *g_pMissingList = nullptr;
rkString *pCmdLine = nullptr;
void (*s_parmFunc)() = nullptr;
void (*kelEnvironment)() = nullptr;
rkList<KelLibraryVersion const *(*)()> *kelVersionList = nullptr;
void (*initTimingMethod)(rkTool &) = nullptr;
bool qKeys = true;

template <class List, class T>
static int append(List *&list, T const &value) {
    if (!list) list = new List;
    list->push_back(value);
    return 1;
}

int rkRegTest(rkTest *test) {
    return append(pTestList, test);
}

int rkRegParm(rkParameter &parm) {
    return append(g_pParmList, &parm);
}

int rkRegParmFunc(void (*func)()) {
    s_parmFunc = func;
    return 1;
}

int rkRegCmdLine(rkString line) {
    if (!pCmdLine) pCmdLine = new rkString("");
    *pCmdLine << " " << line;
    return 1;
}

int rkRegSession(rkSession *session) {
    pSession = session;
    return 1;
}

int rkRegKelVersion(KelLibraryVersion const *(*func)()) {
    return append(kelVersionList, func);
}

int rkRegKelEnvironment(void (*hook)()) {
    kelEnvironment = hook;
    return 1;
}

int rkRegTimingMethod(void (*func)(rkTool &)) {
    initTimingMethod = func;
    return 1;
}

int rkRegHotFunction(rkString name) {
    return append(g_pHotList, name);
}

int rkRegQKeys() {
    qKeys = true;
    return 1;
}

int rkRegMissing(rkString name) {
    return append(g_pMissingList, name);
}

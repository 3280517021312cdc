// rkresult.cpp - words and names of results.

#include "rkresult.h"

static char const *const g_results[][2] = {
    {"was not run", "UNDEFINED"},
    {"successfully", "OK"},
    {"wrong measure accuracy", "ACCURWRN"},
    {"modified control status", "BADSTSWRN"},
    {"test data warning", "DATAWRN"},
    {"lib function warning", "FUNCWRN"},
    {"warning", "WARNING"},
    {"accuracy error", "ACCURFAIL"},
    {"test data error", "DATAFAIL"},
    {"lib function error", "FUNCFAIL"},
    {"exception", "EXCPTFAIL"},
    {"error", "FAIL"},
};

static bool isKnown(int result) {
    return result >= rkResNotRun && result <= rkResError;
}

char const *rkResultString(rkResult result) {
    return isKnown(result) ? g_results[result][0] : "unknown result";
}

char const *rkResultName(rkResult result) {
    return isKnown(result) ? g_results[result][1] : "UNKNOWN";
}

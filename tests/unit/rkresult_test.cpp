// rkresult_test.cpp - words and names of results.

#include <gtest/gtest.h>

#include "rkresult.h"

namespace {

struct Row {
    int value;
    char const *words;
    char const *name;
};

Row const g_rows[] = {
    {0, "was not run", "UNDEFINED"},
    {1, "successfully", "OK"},
    {2, "wrong measure accuracy", "ACCURWRN"},
    {3, "modified control status", "BADSTSWRN"},
    {4, "test data warning", "DATAWRN"},
    {5, "lib function warning", "FUNCWRN"},
    {6, "warning", "WARNING"},
    {7, "accuracy error", "ACCURFAIL"},
    {8, "test data error", "DATAFAIL"},
    {9, "lib function error", "FUNCFAIL"},
    {10, "exception", "EXCPTFAIL"},
    {11, "error", "FAIL"},
    {12, "unknown result", "UNKNOWN"},
};

} // namespace

TEST(RkResult, WordsForTheConsole) {
    for (Row const &row : g_rows) EXPECT_STREQ(rkResultString(static_cast<rkResult>(row.value)), row.words);
}

TEST(RkResult, NamesForReports) {
    for (Row const &row : g_rows) EXPECT_STREQ(rkResultName(static_cast<rkResult>(row.value)), row.name);
}

TEST(RkResult, WarningsAre2To6AndErrorsAbove) {
    for (int i = 0; i <= 11; ++i) {
        rkResult r = static_cast<rkResult>(i);
        EXPECT_EQ(rkIsWarning(r), i >= 2 && i <= 6) << i;
        EXPECT_EQ(rkIsError(r), i >= 7) << i;
    }
}

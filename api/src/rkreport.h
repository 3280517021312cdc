// rkreport.h - the blocks of the report: title, test title, test result, end, list of functions.

#ifndef RAKOVA_RKREPORT_H
#define RAKOVA_RKREPORT_H

#include "rkcstream.h"
#include "rkreportformat.h"

class rkTest;
class rkTestList;
class rkConditions;

// Each block gathers its texts at construction and is then written to the console and to a table.

class rkReportTitle : public rkList<rkString> { // labels and values in turn
public:
    explicit rkReportTitle(rkTestList const &tests);
    rkString m_format;
};

class rkReportEnd : public rkList<rkString> { // keys and values in turn
public:
    explicit rkReportEnd(rkTestList const &tests);
    rkString m_format;
};

class rkReportTestTitle : public rkList<rkString> { // label, value, right-hand item in turn
public:
    explicit rkReportTestTitle(rkTest const *test);
};

class rkReportTestResult {
public:
    explicit rkReportTestResult(rkTest const *test); // null: the header row of the summary
    rkString m_resultName;
    rkString m_name;
    rkString m_time;
    rkString m_comment;
    rkString m_csvLine;
};

class rkReportList : public rkList<rkString> { // cells; "\n" ends a row
public:
    // mode 0: tested functions; 1: the library's functions, tested or not; -1: those not tested
    rkReportList(rkTestList &tests, rkConditions &conditions, int mode);

    bool createFuncList(); // the library's functions that a test is wanted for; false if there are none
    static bool presentInTestList(rkString name, rkTestList &tests);

private:
    void markFunctions(rkTestList &tests, int mode);
    void addTests(rkTestList &tests, rkConditions &conditions);
};

rkOStream &operator<<(rkOStream &stream, rkReportTitle &title);
rkCStream &operator<<(rkCStream &stream, rkReportTitle &title);
rkOStream &operator<<(rkOStream &stream, rkReportEnd &end);
rkCStream &operator<<(rkCStream &stream, rkReportEnd &end);
rkOStream &operator<<(rkOStream &stream, rkReportTestTitle &title);
rkCStream &operator<<(rkCStream &stream, rkReportTestTitle &title);
rkOStream &operator<<(rkOStream &stream, rkReportTestResult &result);
rkCStream &operator<<(rkCStream &stream, rkReportTestResult &result);
rkOStream &operator<<(rkOStream &stream, rkReportList &list);
rkCStream &operator<<(rkCStream &stream, rkReportList &list);

#endif

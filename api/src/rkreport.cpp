// rkreport.cpp - title, test title, test result and end of the report.

#include "rkreport.h"

#include <time.h>

#include "rkcpu.h"
#include "rkhost.h"
#include "rksession.h"
#include "rktestlist.h"

static rkString timeText(time_t time) {
    char const *text = ctime(&time);
    return text ? cutoffNL(text) : rkString();
}

static int wholeSeconds(time_t start, time_t end) {
    return static_cast<int>(difftime(end, start));
}

static bool isFullForm(rkOStream const &stream) {
    return stream.outLevel() > 2;
}

static void addPair(rkList<rkString> &list, rkString label, rkString value) {
    list.push_back(label);
    list.push_back(value);
}

static void pairsOut(rkCStream &stream, rkList<rkString> const &list) {
    for (auto it = list.begin(); it != list.end(); ++it) {
        stream << *it;
        stream << *++it;
        stream.lineOut(0);
    }
}

// ---- title --------------------------------------------------------------------

static const char startLabel[] = "Start";

rkReportTitle::rkReportTitle(rkTestList const &tests) : m_format(" %-9s: %s") {
    addPair(*this, "CPU", cpuInfo());
    addPair(*this, "OS", rkOS().text());
    addPair(*this, "Computer", rkHost().text());
    if (g_pLibInfoList)
        for (rkString const &text : *g_pLibInfoList) addPair(*this, "Library", text);
    addPair(*this, startLabel, timeText(tests.m_startTime));
}

rkOStream &operator<<(rkOStream &stream, rkReportTitle &title) {
    rkReportFormat format(false, 4, 1, 11, 13, -79, -79, -79);
    stream << MsgError << format.firstLine();
    auto it = title.begin();
    for (; it != title.end() && *it != startLabel; ++it) {
        rkString label = *it;
        stream << format.getLine(label, ":", *++it, "", "", "");
    }
    stream << format.getLine("Test", ":", "Timing", "", "", "");
    if (it != title.end()) stream << format.getLine("", "", "", *++it, "", "");
    stream << format.lastLine() << EndMessageFlush;
    return stream;
}

rkCStream &operator<<(rkCStream &stream, rkReportTitle &title) {
    pairsOut(stream, title);
    return stream;
}

// ---- end ----------------------------------------------------------------------

static rkString number(int n) {
    rkString text;
    text << n;
    return text;
}

// The classes of WARNING and FAIL are sums already, so neither is in a sum here: a test that ends with one of
// them is undefined.
rkReportEnd::rkReportEnd(rkTestList const &tests) {
    int const *n = tests.m_counts;
    int ok = n[rkResSuccess], exceptions = n[rkResException], badStatus = n[rkResCtrlStatusWarning];
    int warnings = n[rkResAccuracyWarning] + n[rkResDataWarning] + n[rkResLibWarning];
    int fails = n[rkResAccuracyError] + n[rkResDataError] + n[rkResLibError];
    int failures = exceptions + fails + warnings + badStatus;

    addPair(*this, ".Number of tests", number(tests.m_total));
    addPair(*this, ".Successes      ", number(ok));
    addPair(*this, ".Failures       ", number(failures));
    addPair(*this, "...Fails        ", number(exceptions + fails));
    addPair(*this, ".....-FAIL      ", number(fails));
    addPair(*this, ".....-EXCPTFAIL ", number(exceptions));
    addPair(*this, "...Warnings     ", number(badStatus + warnings));
    addPair(*this, ".....-WARNING   ", number(warnings));
    addPair(*this, ".....-BADSTSWRN ", number(badStatus));
    addPair(*this, "...Undefined    ", number(tests.m_total - ok - failures));
    addPair(*this, ".Total time     ",
            rkReportFormat::getTimeStr(wholeSeconds(tests.m_startTime, tests.m_endTime)));
}

rkOStream &operator<<(rkOStream &stream, rkReportEnd &end) {
    rkReportFormat format(false, 3, 1, 33, 34, -79, -79, -79);
    stream << MsgError << format.firstLine();
    stream << format.getLine("RK Summary", "", "", "", "", "");
    for (auto it = end.begin(); it != end.end(); ++it) {
        rkString key = *it;
        stream << format.getLine(key + " : " + *++it, "", "", "", "", "");
    }
    stream << format.lastLine() << EndMessageFlush;
    return stream;
}

rkCStream &operator<<(rkCStream &stream, rkReportEnd &end) {
    stream << "END_DATA";
    stream.lineOut(0);
    pairsOut(stream, end);
    return stream;
}

// ---- test title ---------------------------------------------------------------

static void addTriple(rkList<rkString> &list, rkString label, rkString value, rkString right) {
    addPair(list, label, value);
    list.push_back(right);
}

rkReportTestTitle::rkReportTestTitle(rkTest const *test) {
    addTriple(*this, "Function", test->m_name, timeText(test->m_startTime));
    if (g_ostrm.outLevel() <= 1) return;
    addTriple(*this, "Test", test->m_info.m_name, "");
    addTriple(*this, "Source", test->m_file, "");
    addTriple(*this, "Description", test->m_info.m_descr, "");
}

rkOStream &operator<<(rkOStream &stream, rkReportTestTitle &title) {
    rkReportFormat format(true, 4, 1, 12, 14, -79, -79, -79);
    bool full = isFullForm(stream);
    if (full) stream << format.firstLine();
    for (auto it = title.begin(); it != title.end(); ++it) {
        rkString label = *it;
        rkString value = *++it;
        stream << format.getLine(label, ":", value, *++it, "", "");
        if (!full) break;
    }
    if (full) stream << format.lastLine();
    stream.flush();
    return stream;
}

rkCStream &operator<<(rkCStream &stream, rkReportTestTitle &title) {
    rkString name = *++title.begin();
    stream << name;
    stream << (name.find("__rk", 0) == 0 ? "Information" : "Timing");
    return stream;
}

// ---- test result --------------------------------------------------------------

rkReportTestResult::rkReportTestResult(rkTest const *test) {
    if (!test) {
        m_csvLine =
            "Function,Class,Control87,Status87,ControlSSX,StatusSSX,Test,Time (sec.),SrcName,Result,"
            "ExeName";
        return;
    }
    m_resultName = rkResultName(test->m_result);
    m_name = test->m_name;
    m_time = timeText(test->m_endTime);
    if (test->m_result == rkResNotRun) m_comment << "--No measurements have been done\n";
    m_csvLine << "-," << (test->m_bad87 ? "?" : "-") << ",-," << (test->m_badSsx ? "?" : "-") << ","
              << test->m_info.m_name << "," << wholeSeconds(test->m_startTime, test->m_endTime) << ","
              << test->m_file << "," << m_resultName << "," << rkSession::m_exePath.getFileName();
}

rkOStream &operator<<(rkOStream &stream, rkReportTestResult &result) {
    rkReportFormat format(true, 3, 1, 14, -79, -79, -79, -79);
    bool full = isFullForm(stream);
    stream << MsgError;
    if (full) stream << format.firstLine();
    stream << format.getLine(rkString("-") + result.m_resultName, result.m_name, result.m_time, "", "", "");
    if (full) stream << format.lastLine();
    stream << EndMessageFlush;
    return stream;
}

rkCStream &operator<<(rkCStream &stream, rkReportTestResult &result) {
    if (result.m_csvLine.length() == 0) return stream;
    stream << result.m_csvLine;
    stream.lineOut(0);
    return stream;
}

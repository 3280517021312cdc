// rktrace.cpp - which step of the program is running.

#include "rktrace.h"

#include <string.h>

#include "rkstream.h"

__attribute__((init_priority(200))) rkTrace g_trace;

static const int logSize = 64 * 1024;

// ---- the log ------------------------------------------------------------------

static void truncateLog(rkString &log) {
    memset(log.m_buffer, 0, log.m_length);
    log.m_length = 0;
}

static void reserveLog(rkString &log) {
    if (log.m_bufSize == getBufSize(logSize)) return;
    log.allocate(logSize);
    log.m_length = 0;
}

// The later half stays, from the start of a line on.
static void halveLog(rkString &log) {
    char *half = log.m_buffer + log.m_length / 2;
    char *end = log.m_buffer + log.m_length;
    char *lineEnd = static_cast<char *>(memchr(half, '\n', end - half));
    if (lineEnd && lineEnd + 1 < end) half = lineEnd + 1;
    int kept = static_cast<int>(end - half);
    memmove(log.m_buffer, half, kept);
    memset(log.m_buffer + kept, 0, log.m_length - kept);
    log.m_length = kept;
}

static void addToLog(rkString &log, char const *text, int length) {
    reserveLog(log);
    if (length > logSize / 2) length = logSize / 2;
    if (log.m_length + length > logSize) halveLog(log);
    memcpy(log.m_buffer + log.m_length, text, length);
    log.m_length += length;
}

static void addLine(rkTrace &trace, char const *direction, rkString const &name) {
    rkString &log = trace.m_traceLog;
    addToLog(log, trace.m_level.c_str(), trace.m_level.length());
    addToLog(log, direction, static_cast<int>(strlen(direction)));
    addToLog(log, name.c_str(), name.length());
    addToLog(log, "\n", 1);
    if (g_ostrm.outLevel() < MsgTrace) return; // neither seen nor flushed
    g_ostrm << MsgTrace << trace.m_level << direction << name << "\n";
    trace.flush();
    g_ostrm << EndMessage;
}

static void takeStar(rkString &level) {
    if (level.length() > 0) level.resize(level.length() - 1, '\0');
}

// ---- steps --------------------------------------------------------------------

void rkTrace::traceIn(rkString name) {
    m_level += '*';
    addLine(*this, "***** trace into   ", name);
    push_front(name);
}

void rkTrace::traceOut(rkString name) {
    addLine(*this, "***** trace out of ", name);
    for (iterator step = begin(); step != end(); ++step) {
        takeStar(m_level);
        if (*step == name) {
            erase(begin(), ++step);
            return;
        }
    }
}

rkString rkTrace::getCurName() const {
    return empty() ? rkString("") : *begin();
}

void rkTrace::setCurName(rkString name) {
    iterator step = begin();
    while (step != end() && *step != name) ++step;
    if (step == end()) return;
    while (begin() != step) {
        takeStar(m_level);
        erase(begin());
    }
}

void rkTrace::clearText() {
    if (m_traceLog.m_buffer) truncateLog(m_traceLog);
    m_level = "";
}

void rkTrace::flush() {
    if (g_ostrm.msgLevel() <= g_ostrm.outLevel()) g_ostrm.flush();
}

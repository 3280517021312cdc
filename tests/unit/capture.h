// capture.h - catches what goes to the console log and to the tables, for tests.

#ifndef RAKOVA_TESTS_CAPTURE_H
#define RAKOVA_TESTS_CAPTURE_H

#include <stdio.h>

#include <string>

#include "rkcstream.h"
#include "rkstream.h"

// A temporary file as an o_stream, read from its start; text() is all that it holds, and what is written
// later goes behind it.
class CaptureFile {
public:
    explicit CaptureFile(std::string const &content = "") : m_stream(tmpfile()) {
        fputs(content.c_str(), m_stream.m_file);
        rewind(m_stream.m_file);
    }
    CaptureFile(CaptureFile const &) = delete;
    CaptureFile &operator=(CaptureFile const &) = delete;

    std::string text() {
        fflush(m_stream.m_file);
        rewind(m_stream.m_file);
        std::string all;
        for (int c; (c = getc(m_stream.m_file)) != EOF;) all += static_cast<char>(c);
        fseek(m_stream.m_file, 0, SEEK_END);
        return all;
    }

    o_stream m_stream;
};

// Attached to a log or table stream for as long as it lives.
template <class Stream>
class Capture : public CaptureFile {
public:
    explicit Capture(Stream &stream) : m_target(stream) { stream.push_back(&m_stream); }
    ~Capture() {
        for (auto i = m_target.begin(); i != m_target.end(); ++i) {
            if (*i != &m_stream) continue;
            m_target.erase(i);
            break;
        }
    }

private:
    Stream &m_target;
};

// The console log at a given output level, for its time; 7 is the level of a run with results.
class CaptureLog : public Capture<rkOStream> {
public:
    explicit CaptureLog(OutputLevel level = 7) : Capture(g_ostrm), m_oldLevel(g_ostrm.outLevel()) {
        g_ostrm.setOutLevel(level);
    }
    ~CaptureLog() { g_ostrm.setOutLevel(m_oldLevel); }

private:
    OutputLevel m_oldLevel;
};

// The table of results.
class CaptureTable : public Capture<rkCStream> {
public:
    CaptureTable() : Capture(g_cstrm) {}
};

#endif

// capture.h - catches what goes to the console log and to the tables, for tests.

#ifndef RAKOVA_TESTS_CAPTURE_H
#define RAKOVA_TESTS_CAPTURE_H

#include <stdio.h>

#include <string>

#include "rkcstream.h"
#include "rkstream.h"

// A temporary file as an o_stream; text() is all that has been written to it.
class CaptureFile {
public:
    CaptureFile() : m_stream(tmpfile()) {}

    std::string text() {
        fflush(m_stream.m_file);
        std::string all;
        char buffer[4096];
        long end = ftell(m_stream.m_file);
        rewind(m_stream.m_file);
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, m_stream.m_file)) > 0;) all.append(buffer, n);
        fseek(m_stream.m_file, end, SEEK_SET);
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
        for (auto i = m_target.begin(); i != m_target.end();) {
            if (*i == &m_stream) {
                i = m_target.erase(i);
            } else {
                ++i;
            }
        }
    }

private:
    Stream &m_target;
};

// The console log at a given output level.
class CaptureLog : public Capture<rkOStream> {
public:
    explicit CaptureLog(OutputLevel level) : Capture(g_ostrm) { g_ostrm.setOutLevel(level); }
};

// The table of results.
class CaptureTable : public Capture<rkCStream> {
public:
    CaptureTable() : Capture(g_cstrm) {}
};

#endif

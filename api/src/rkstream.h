// rkstream.h - files, and the console log that filters messages by level.

#ifndef RAKOVA_RKSTREAM_H
#define RAKOVA_RKSTREAM_H

#include <stdio.h>

#include "rkstring.h"

// A C file. The name is resolved by the session's directories unless it is to be taken as it is.
class io_stream {
public:
    enum Flags { Read = 1, Write = 2, Append = 4, Binary = 8, AsIs = 256 };

    explicit io_stream(FILE *file) : m_file(file) {}
    // On failure m_file is null, and with showError a message says so.
    io_stream(rkString name, int flags, bool showError);
    virtual ~io_stream(); // closes, but not stdin and stdout
    io_stream(io_stream const &) = delete;
    io_stream &operator=(io_stream const &) = delete;

    FILE *m_file;
};

class o_stream : public io_stream {
public:
    using io_stream::io_stream;
};

class i_stream : public io_stream {
public:
    using io_stream::io_stream;
    // A line of any length without its line feed. False at the end of the file.
    bool getline(rkString &line);
};

// Text for a stream without a file goes to standard output.
o_stream &operator<<(o_stream &stream, rkString text);

// Reads at most size - 1 characters of a line. True if the line is complete.
bool getlinebuf(FILE *file, char *buffer, int size, bool &atEnd);
o_stream *createOStream(rkString name, bool append); // null if it cannot be opened
rkString getLastErrorMessage();

// A message of level m is seen if m & outLevel is not 0.
using OutputLevel = int;
enum MessageLevel {
    MsgError = 1, // errors and mandatory text
    MsgWarning = 2,
    MsgResult = 4,  // performance
    MsgProcess = 8, // measuring course
    MsgTrace = 16,
    MsgMemory = 32,
    MsgData = 64,
    EndMessage = -10, // manipulators: back to the level before
    EndMessageFlush = -11
};

// What lists of streams share. Closing empties the list and clears the handles, so that no file is closed
// twice and what comes later goes nowhere; standard output, once closed, is not written any more.
bool addStream(rkList<o_stream *> &streams, rkString name, bool append); // false if it cannot be opened
void closeStreams(rkList<o_stream *> &streams);
void flushStreams(rkList<o_stream *> const &streams);

// Every text goes to each file of the list, the console among them, if its level is wanted. Levels nest:
//     g_ostrm << MsgError << "text" << EndMessage;
// The list does not own its streams.
class rkOStream : public rkList<o_stream *> {
public:
    rkOStream();
    ~rkOStream() override;

    bool addStream(rkString name, bool append); // false if it cannot be opened
    void close();
    void flush();

    void setOutLevel(OutputLevel level) { m_outLevel = level; }
    OutputLevel outLevel() const { return m_outLevel; }
    MessageLevel msgLevel() const { return m_msgLevel; }
    bool isOn(int level) const { return (level & m_outLevel) != 0; }

    void setMsgLevel(MessageLevel level); // pushes the present one
    void restoreMsgLevel();               // pops; 1 if there is none
    // False, and nothing pushed, if level is numerically above the output level.
    bool beginMessage(MessageLevel level);
    void endMessage();
    void endMessageFlush();

    OutputLevel m_outLevel;
    MessageLevel m_msgLevel;
    rkList<MessageLevel> m_msgStack; // latest first
    bool m_held;                     // texts stay in their buffers: flush does nothing
};

rkOStream &operator<<(rkOStream &stream, MessageLevel level);
rkOStream &operator<<(rkOStream &stream, rkString text);

// Whatever can be appended to a string can be printed.
template <class T>
rkOStream &tsOutTpl(rkOStream &stream, T value) {
    if (!(stream.m_msgLevel & stream.m_outLevel)) return stream;
    rkString text;
    text << value;
    return stream << text;
}
inline rkOStream &operator<<(rkOStream &stream, char const *text) {
    return tsOutTpl(stream, text);
}
inline rkOStream &operator<<(rkOStream &stream, char c) {
    return tsOutTpl(stream, c);
}
inline rkOStream &operator<<(rkOStream &stream, bool b) {
    return tsOutTpl(stream, b);
}
inline rkOStream &operator<<(rkOStream &stream, int n) {
    return tsOutTpl(stream, n);
}
inline rkOStream &operator<<(rkOStream &stream, long long n) {
    return tsOutTpl(stream, n);
}
inline rkOStream &operator<<(rkOStream &stream, double x) {
    return tsOutTpl(stream, x);
}
inline rkOStream &operator<<(rkOStream &stream, void *p) {
    return tsOutTpl(stream, p);
}

extern rkOStream g_ostrm; // console and log
extern i_stream c_in;
extern o_stream c_out;

#endif

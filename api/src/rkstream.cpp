// rkstream.cpp - files and the console log.

#include "rkstream.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "rksession.h"

// Static objects of other files may print when they are made and when they go, so these come first and go
// last. The log goes before the console that stands in its list.
__attribute__((init_priority(200))) i_stream c_in(stdin);
__attribute__((init_priority(200))) o_stream c_out(stdout);
__attribute__((init_priority(200))) rkOStream g_ostrm;

static bool s_stdoutClosed = false;

// ---- files --------------------------------------------------------------------

static FILE *openFile(rkString const &name, int flags) {
    char mode[3] = "";
    if (flags & io_stream::Read) {
        mode[0] = 'r';
    } else if (flags & io_stream::Write) {
        mode[0] = flags & io_stream::Append ? 'a' : 'w';
    } else {
        return nullptr;
    }
    if (flags & io_stream::Binary) mode[1] = 'b';
    return fopen(name.c_str(), mode);
}

static void reportUnopened(rkString const &name, int flags) {
    g_ostrm << MsgError << "-- Can't open file " << name;
    if (flags & io_stream::Read) {
        g_ostrm << " to read";
    } else if (flags & io_stream::Write) {
        g_ostrm << " to write";
    }
    g_ostrm << ": " << getLastErrorMessage() << "\n" << EndMessage;
}

io_stream::io_stream(rkString name, int flags, bool showError) : m_file(nullptr) {
    if (!(flags & AsIs)) {
        if (flags & Read) {
            name = rkSession::getInPath(name);
        } else if (flags & Write) {
            name = rkSession::getOutPath(name);
        }
    }
    m_file = openFile(name, flags);
    if (!m_file && showError) reportUnopened(name, flags);
}

io_stream::~io_stream() {
    if (m_file && m_file != stdin && m_file != stdout) fclose(m_file);
}

o_stream &operator<<(o_stream &stream, rkString text) {
    if (stream.m_file) {
        fputs(text.c_str(), stream.m_file);
    } else if (!s_stdoutClosed) {
        printf("%s", text.c_str());
    }
    return stream;
}

o_stream *createOStream(rkString name, bool append) {
    int flags =
        append ? io_stream::Write | io_stream::Append | io_stream::AsIs : io_stream::Write | io_stream::AsIs;
    o_stream *stream = new o_stream(name, flags, true);
    if (stream->m_file) return stream;
    delete stream;
    return nullptr;
}

rkString getLastErrorMessage() {
    return "";
}

// ---- lines --------------------------------------------------------------------

bool getlinebuf(FILE *file, char *buffer, int size, bool &atEnd) {
    atEnd = false;
    if (size > 0) buffer[0] = '\0';
    // A buffer without room for a character would never get to the end of the file.
    if (!file || size < 2 || !fgets(buffer, size, file)) {
        atEnd = true;
        return true;
    }
    size_t length = strlen(buffer);
    if (length > 0 && buffer[length - 1] == '\n') {
        buffer[length - 1] = '\0';
        return true;
    }
    return length < static_cast<size_t>(size) - 1;
}

namespace {

// Gathers a long line; the block doubles, so that the work stays in proportion to the length.
class LineBuffer {
public:
    LineBuffer() = default;
    ~LineBuffer() { ::free(m_block); }
    LineBuffer(LineBuffer const &) = delete;
    LineBuffer &operator=(LineBuffer const &) = delete;

    // What no string can hold is cut off.
    void add(char const *text) {
        size_t n = strlen(text);
        if (n == 0 || n > maxLength - m_length || !reserve(m_length + n)) return;
        memcpy(m_block + m_length, text, n);
        m_length += n;
    }
    void moveTo(rkString &line) const {
        line.allocate(static_cast<int>(m_length));
        if (m_length > 0) memcpy(line.m_buffer, m_block, m_length);
    }

private:
    static const size_t maxLength = INT_MAX / 2;

    bool reserve(size_t n) {
        if (n <= m_size) return true;
        size_t size = n > 2 * m_size ? 2 * n : 2 * m_size;
        char *block = static_cast<char *>(realloc(m_block, size));
        if (!block) return false;
        m_block = block;
        m_size = size;
        return true;
    }

    char *m_block = nullptr;
    size_t m_length = 0;
    size_t m_size = 0;
};

} // namespace

bool i_stream::getline(rkString &line) {
    line = "";
    if (!m_file) return false;
    char chunk[512];
    bool atEnd;
    if (getlinebuf(m_file, chunk, sizeof chunk, atEnd)) {
        line = chunk;
    } else {
        LineBuffer whole;
        whole.add(chunk);
        bool complete;
        do {
            complete = getlinebuf(m_file, chunk, sizeof chunk, atEnd);
            whole.add(chunk);
        } while (!complete);
        whole.moveTo(line);
    }
    return line.length() > 0 || !atEnd;
}

// ---- lists of streams ---------------------------------------------------------

// Streams of lists live until the exit. The list that remembers them is itself never freed.
static void keepForever(o_stream *stream) {
    static rkList<o_stream *> *s_opened = new rkList<o_stream *>;
    s_opened->push_back(stream);
}

bool addStream(rkList<o_stream *> &streams, rkString name, bool append) {
    o_stream *stream = createOStream(name, append);
    if (!stream) return false;
    keepForever(stream);
    streams.push_back(stream);
    return true;
}

static void closeHandle(FILE *file) {
    if (file == stdout) {
        if (s_stdoutClosed) return;
        s_stdoutClosed = true;
        c_out.m_file = nullptr;
    }
    fclose(file);
}

void closeStreams(rkList<o_stream *> &streams) {
    for (; !streams.empty(); streams.erase(streams.begin())) {
        FILE *file = (*streams.begin())->m_file;
        if (!file) continue;
        for (o_stream *stream : streams) {
            if (stream->m_file == file) stream->m_file = nullptr;
        }
        closeHandle(file);
    }
}

void flushStreams(rkList<o_stream *> const &streams) {
    for (o_stream *stream : streams) {
        if (stream->m_file) fflush(stream->m_file);
    }
}

// ---- the log ------------------------------------------------------------------

rkOStream::rkOStream() : m_outLevel(MsgError), m_msgLevel(MsgResult), m_held(false) {}

rkOStream::~rkOStream() {
    close();
}

bool rkOStream::addStream(rkString name, bool append) {
    return ::addStream(*this, name, append);
}

void rkOStream::close() {
    closeStreams(*this);
}

void rkOStream::flush() {
    if (!m_held) flushStreams(*this);
}

void rkOStream::setMsgLevel(MessageLevel level) {
    m_msgStack.push_front(m_msgLevel);
    m_msgLevel = level;
}

void rkOStream::restoreMsgLevel() {
    if (m_msgStack.empty()) {
        m_msgLevel = MsgError;
        return;
    }
    m_msgLevel = *m_msgStack.begin();
    m_msgStack.erase(m_msgStack.begin());
}

bool rkOStream::beginMessage(MessageLevel level) {
    if (level > m_outLevel) return false;
    setMsgLevel(level);
    return true;
}

void rkOStream::endMessage() {
    restoreMsgLevel();
}

void rkOStream::endMessageFlush() {
    restoreMsgLevel();
    flush();
}

rkOStream &operator<<(rkOStream &stream, MessageLevel level) {
    if (level == EndMessage) {
        stream.endMessage();
    } else if (level == EndMessageFlush) {
        stream.endMessageFlush();
    } else {
        stream.setMsgLevel(level);
    }
    return stream;
}

rkOStream &operator<<(rkOStream &stream, rkString text) {
    if (!stream.isOn(stream.m_msgLevel)) return stream;
    for (o_stream *target : stream) *target << text;
    return stream;
}

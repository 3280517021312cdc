// rkcstream.cpp - comma-separated tables.

#include "rkcstream.h"

#include <string.h>

#include <algorithm>

__attribute__((init_priority(200))) rkCStream g_cstrm;
__attribute__((init_priority(200))) rkCStream g_qstrm;
__attribute__((init_priority(200))) rkCStream g_ustrm;
__attribute__((init_priority(200))) rkCStream g_mstrm;

// ---- stores of lines ----------------------------------------------------------

void clearStore(rkStringList *store) {
    for (int i = 0; i < rkCStream::maxColms; ++i) store[i].clear();
}

void addStore(rkStringList *store, rkString *line) {
    for (int i = 0; i < rkCStream::maxColms; ++i) store[i].push_back(line[i]);
}

int getStoreCount(rkStringList *store) {
    return store[0].size();
}

void resetStoreIterator(rkStringList *store, rkList<rkString>::iterator *iterators) {
    for (int i = 0; i < rkCStream::maxColms; ++i) iterators[i] = store[i].begin();
}

bool getStoreNext(rkStringList *store, rkString *line, rkList<rkString>::iterator *iterators) {
    if (iterators[0] == store[0].end()) return false;
    for (int i = 0; i < rkCStream::maxColms && iterators[i] != store[i].end(); ++i) line[i] = *iterators[i]++;
    return true;
}

// ---- the line in hand ---------------------------------------------------------

rkCStream::rkCStream() : m_colmCount(0), m_lineCount(0), m_identColms(0) {}

rkCStream::~rkCStream() {
    close();
}

bool rkCStream::addStream(rkString name, bool append) {
    return ::addStream(*this, name, append);
}

void rkCStream::close() {
    closeStreams(*this);
}

void rkCStream::flush() {
    flushStreams(*this);
}

void rkCStream::setColm(int index, rkString text) {
    if (index >= 0 && index < maxColms) m_colm[index] = text;
}

bool rkCStream::getColm(int index, rkString &text) {
    if (index < 0 || index >= maxColms) return false;
    text = m_colm[index];
    return true;
}

rkCStream &operator<<(rkCStream &stream, rkString text) {
    if (text == "\n") {
        stream.lineOut(0);
    } else if (stream.m_colmCount < rkCStream::maxColms) {
        stream.setColm(stream.m_colmCount++, text);
    }
    return stream;
}

void rkCStream::tableFlush() {
    m_colmCount = 0;
    for (rkString &cell : m_colm) cell = "";
}

void rkCStream::tableOut(int columns) {
    if (empty()) return;
    if (columns == 0) columns = m_colmCount;
    int filled = m_colmCount < maxColms ? m_colmCount : maxColms;
    rkString line = "";
    for (int i = 0; i < columns; ++i) {
        if (i > 0) line << ",";
        line << (i < filled && m_colm[i].length() > 0 ? m_colm[i] : rkString("-"));
    }
    line << "\n";
    for (o_stream *target : *this) *target << line;
    flush();
}

// Of a watched line only the cells that are compared are kept: the rest would be most of the work of a row.
void rkCStream::lineOut(int columns) {
    tableOut(columns);
    ++m_lineCount;
    for (int i = 0; i < m_identColms; ++i) m_lineStore[i].push_back(m_colm[i]);
    tableFlush();
}

void rkCStream::linePostpone() {
    addStore(m_postponed, m_colm);
    tableFlush();
}

void rkCStream::linePostponeOut(int columns) {
    rkList<rkString>::iterator iterators[maxColms];
    resetStoreIterator(m_postponed, iterators);
    while (getStoreNext(m_postponed, m_colm, iterators)) {
        m_colmCount = columns;
        lineOut(columns);
    }
    clearStore(m_postponed);
}

// ---- identical lines ----------------------------------------------------------

namespace {

struct StoredLine {
    rkString const *const *cells; // columns of them
    int columns;
    int number;
};

int compareCells(StoredLine const &a, StoredLine const &b) {
    for (int i = 0; i < a.columns; ++i) {
        if (int order = strcmp(a.cells[i]->c_str(), b.cells[i]->c_str())) return order;
    }
    return 0;
}

bool lineLess(StoredLine const &a, StoredLine const &b) {
    int order = compareCells(a, b);
    return order != 0 ? order < 0 : a.number < b.number;
}

// The two smallest numbers of the group of equal lines that begins first. Sorting takes n log n comparisons,
// where comparing every pair would hold up a test of many lines.
bool firstIdenticalPair(StoredLine *lines, int count, int &a, int &b) {
    std::sort(lines, lines + count, lineLess);
    bool found = false;
    for (int i = 1; i < count; ++i) {
        if (compareCells(lines[i - 1], lines[i]) != 0) continue;
        if (found && lines[i - 1].number >= a) continue;
        a = lines[i - 1].number;
        b = lines[i].number;
        found = true;
    }
    return found;
}

} // namespace

void rkCStream::identicalLinesStart(int columns) {
    m_identColms = columns < 0 ? 0 : columns < maxColms ? columns : maxColms;
    clearStore(m_lineStore);
}

bool rkCStream::identicalLinesStop() {
    if (m_identColms == 0 || m_lineStore[0].empty()) return false;
    bool found = identicalLinesCheck();
    m_identColms = 0;
    clearStore(m_lineStore);
    return found;
}

bool rkCStream::identicalLinesCheck() {
    int count = getStoreCount(m_lineStore);
    StoredLine *lines = new StoredLine[count];
    rkString const **cells = new rkString const *[static_cast<size_t>(count) * maxColms];
    for (int row = 0; row < count; ++row) {
        lines[row] = {cells + static_cast<size_t>(row) * maxColms, m_identColms,
                      m_lineCount - count + 1 + row};
    }
    for (int column = 0; column < m_identColms; ++column) {
        rkString const **cell = cells + column;
        for (rkString const &text : m_lineStore[column]) {
            *cell = &text;
            cell += maxColms;
        }
    }
    int a = 0, b = 0;
    bool found = firstIdenticalPair(lines, count, a, b);
    delete[] cells;
    delete[] lines;
    if (!found) return false;
    g_ostrm << MsgWarning << " Performance table warning:\n"
            << " Lines " << a << " & " << b << " have identical parameters\n"
            << EndMessageFlush;
    return true;
}

bool rkCStream::identicalColms(rkString const *a, rkString const *b, int columns) {
    for (int i = 0; i < columns; ++i) {
        if (a[i] != b[i]) return false;
    }
    return true;
}

// rkcstream.h - a comma-separated table, written line by line.

#ifndef RAKOVA_RKCSTREAM_H
#define RAKOVA_RKCSTREAM_H

#include "rkstream.h"

// Collects the cells of one line and writes it when it is complete. Lines can be held back, and lines with
// the same leading columns are found. Without a file it accepts everything and writes nothing.
class rkCStream : public rkList<o_stream *> {
public:
    static const int maxColms = 32; // what is beyond is dropped

    rkCStream();
    ~rkCStream() override;

    bool addStream(rkString name, bool append); // false if it cannot be opened
    void close();
    void flush();

    void setColm(int index, rkString text); // m_colmCount stays
    bool getColm(int index, rkString &text);
    void tableFlush();          // forgets the line in hand
    void tableOut(int columns); // writes it; 0 columns: as many as there are
    void lineOut(int columns);  // writes it, counts it and begins the next
    void linePostpone();        // holds it back
    void linePostponeOut(int columns);

    // Between start and stop the lines are kept; stop tells whether two agree in their first columns.
    void identicalLinesStart(int columns);
    bool identicalLinesStop();
    bool identicalLinesCheck();
    static bool identicalColms(rkString const *a, rkString const *b, int columns);

    rkString m_colm[maxColms];
    int m_colmCount;                    // index of the next cell
    int m_lineCount;                    // lines written so far
    int m_identColms;                   // columns compared, 0: no watch
    rkStringList m_lineStore[maxColms]; // one list a column that is compared
    rkStringList m_postponed[maxColms];
};

// The next cell; "\n" ends the line.
rkCStream &operator<<(rkCStream &stream, rkString text);

// Stores of lines: arrays of rkCStream::maxColms lists, one a column.
void clearStore(rkStringList *store);
void addStore(rkStringList *store, rkString *line);
int getStoreCount(rkStringList *store);
void resetStoreIterator(rkStringList *store, rkList<rkString>::iterator *iterators);
bool getStoreNext(rkStringList *store, rkString *line, rkList<rkString>::iterator *iterators);

extern rkCStream g_cstrm; // results
extern rkCStream g_qstrm; // function parameter names
extern rkCStream g_ustrm; // summary
extern rkCStream g_mstrm; // memory blocks

#endif

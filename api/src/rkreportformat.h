// rkreportformat.h - layout of the framed blocks of the console, 79 columns wide.

#ifndef RAKOVA_RKREPORTFORMAT_H
#define RAKOVA_RKREPORTFORMAT_H

#include "rkstring.h"

// A position of 0 or more is the column where an item starts; -p ends it in front of column p - 1.
class rkReportFormat {
public:
    rkReportFormat(bool frame, int colms, int c0, int c1, int c2, int c3, int c4, int c5);

    rkString sepLine();
    rkString firstLine(); // opens the frame
    rkString lastLine();  // closes it
    rkString getLine(rkString a, rkString b, rkString c, rkString d, rkString e, rkString f);

    void setStartLine(rkString &line);
    void setEndLine(rkString &line);
    bool setOffsetLine(rkString &line, int column); // pads; false if the line is longer already
    int getLastLen(rkString s);                     // length behind the last line feed
    void setItem(rkString &line, rkString text, int position);
    void setItemLeft(rkString &line, rkString text, int position);
    // Cuts a text longer than width at a blank: piece takes the front, text keeps the rest.
    bool getPieceItem(rkString &text, rkString &piece, int width);
    static rkString getTimeStr(int seconds); // hh:mm:ss

    bool m_frame; // "|" at columns 0 and 78
    int m_colms;  // number of meaningful columns
    int m_col[6];
};

rkString cutoffNL(rkString s); // up to the first line feed

#endif

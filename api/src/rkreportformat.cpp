// rkreportformat.cpp - layout of the framed blocks.

#include "rkreportformat.h"

#include <stdio.h>

static const int kLastColumn = 78;

rkReportFormat::rkReportFormat(bool frame, int colms, int c0, int c1, int c2, int c3, int c4, int c5)
    : m_frame(frame), m_colms(colms), m_col{c0, c1, c2, c3, c4, c5} {}

rkString rkReportFormat::sepLine() {
    rkString line = "+";
    line.resize(kLastColumn, '-');
    return line + "+\n";
}

rkString rkReportFormat::firstLine() {
    m_frame = true;
    return sepLine();
}

rkString rkReportFormat::lastLine() {
    m_frame = false;
    return sepLine();
}

rkString rkReportFormat::getLine(rkString a, rkString b, rkString c, rkString d, rkString e, rkString f) {
    rkString const *items[6] = {&a, &b, &c, &d, &e, &f};
    rkString line;
    setStartLine(line);
    for (int i = 0; i < 6; ++i) setItem(line, *items[i], m_col[i]);
    setEndLine(line);
    return line;
}

void rkReportFormat::setStartLine(rkString &line) {
    line << (m_frame ? "|" : " ");
}

void rkReportFormat::setEndLine(rkString &line) {
    if (m_frame && setOffsetLine(line, kLastColumn)) line << "|";
    line << "\n";
}

bool rkReportFormat::setOffsetLine(rkString &line, int column) {
    int present = getLastLen(line);
    if (present > column) return false;
    line.resize(line.length() + column - present, ' ');
    return true;
}

int rkReportFormat::getLastLen(rkString s) {
    return s.length() - (s.rfind("\n") + 1);
}

void rkReportFormat::setItem(rkString &line, rkString text, int position) {
    if (text.length() == 0) return;
    if (position < 0) position = -position - text.length() - 1;
    if (position < 0) return;
    int end = getLastLen(line);
    bool free = position > end || end == 0; // an empty line has nothing that a blank must part from
    setItemLeft(line, text, free ? position : end + 1);
}

void rkReportFormat::setItemLeft(rkString &line, rkString text, int position) {
    setOffsetLine(line, position);
    line << text;
}

bool rkReportFormat::getPieceItem(rkString &text, rkString &piece, int width) {
    if (text.length() <= width) return false;
    int cut;
    piece = text;
    do {
        cut = piece.rfind(" ");
        if (cut < 0) return false;
        piece = piece.substr(0, cut);
    } while (cut > width);
    text = text.substr(cut + 1);
    return true;
}

rkString rkReportFormat::getTimeStr(int seconds) {
    char text[48];
    snprintf(text, sizeof(text), "%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    return text;
}

rkString cutoffNL(rkString s) {
    int end = s.find("\n", 0);
    return end < 0 ? s : s.substr(0, end);
}

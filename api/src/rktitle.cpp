// rktitle.cpp - title rows of the tables.

#include "rkcstream.h"
#include "rksession.h"
#include "rktest.h"

static void putTitles(char const *const *titles, int count) {
    for (int i = 0; i < count; ++i) g_cstrm << titles[i];
}

void rkFuncTitleToCStream() {
    g_cstrm << "function";
}

void rkParmsTitleToCStream() {
    static char const *const titles[] = {"Parm1", "Parm2", "Parm3", "Parm4",
                                         "Parm5", "Parm6", "Parm7", "Parm8"};
    putTitles(titles, 8);
}

void kmFuncTitleToCStream() {
    static char const *const titles[] = {"funcBase", "funcDataType", "funcDescriptor"};
    putTitles(titles, 3);
}

void kmParmsTitleToCStream() {
    static char const *const titles[] = {"Len/Size", "Parm1", "Parm2", "Parm3", "Parm4", "scaleFactor"};
    putTitles(titles, 6);
}

void rkSession::funcTitleToCStream() {
    kmFuncTitleToCStream();
}
void rkSession::parmsTitleToCStream() {
    kmParmsTitleToCStream();
}

void rkSession::resultTitleToCStream() {
    static char const *const titles[] = {"Comment", "Clocks", "per", "Time (usec)", "MFlops", "Interest"};
    putTitles(titles, rkTest::m_hot ? 6 : 5);
}

void rkSession::putTableTitleLine() {
    funcTitleToCStream();
    parmsTitleToCStream();
    rkTest::m_numParmsColm = g_cstrm.m_colmCount;
    resultTitleToCStream();
    rkTest::m_numResultColm = g_cstrm.m_colmCount - rkTest::m_numParmsColm;
    g_cstrm.lineOut(0);
}

// The name file gets its rows through the table of results, which lends it its place for the time.
void rkSession::putTableTitle() {
    putTableTitleLine();
    if (!(m_nameMode & 2)) return;
    g_cstrm.swap(g_qstrm);
    putTableTitleLine();
    g_cstrm.swap(g_qstrm);
}

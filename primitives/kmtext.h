// kmtext.h - builds long texts piece by piece without a copy for each piece.

#ifndef RAKOVA_KMTEXT_H
#define RAKOVA_KMTEXT_H

#include <limits.h>
#include <string.h>

#include "rkstring.h"

class kmText {
public:
    void add(char const *piece) { add(piece, static_cast<int>(strlen(piece))); }
    void add(char c) { add(&c, 1); }
    rkString text() const { return m_used ? m_text.substr(0, m_used) : rkString(); }

private:
    void add(char const *piece, int n) {
        if (n > INT_MAX / 4 - m_used) return; // as much as a text can hold while it doubles
        if (m_text.length() - m_used < n) m_text.growBy(m_used + n);
        memcpy(m_text.m_buffer + m_used, piece, n);
        m_used += n;
    }

    rkString m_text;
    int m_used = 0;
};

#endif

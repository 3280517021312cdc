// rkparse.h - cuts a text into words at separators, with double quotes that protect separators inside a word.

#ifndef RAKOVA_RKPARSE_H
#define RAKOVA_RKPARSE_H

#include "rkstring.h"

// The base holds the text that is split.
class rkParse : public rkString {
public:
    explicit rkParse(rkString const &text);

    void initParse(rkString separators);
    bool isSeparator(int index); // moves the quote state along
    void removeQuote(rkString &word);
    bool nextWord(rkString &word); // false at the end of the text

    // All return the number of words in the text; surplus words are dropped.
    int parse(rkStringList &list, rkString separators);
    int parse(rkString &a, rkString &b, rkString separators);
    int parse(rkString &a, rkString &b, rkString &c, rkString separators);

    rkString m_separators;
    int m_pos;   // where the search for the next word starts
    int m_quote; // -100: quotes are not special; -1: outside; 0 or more: inside, opened at that index
};

#endif

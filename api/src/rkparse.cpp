// rkparse.cpp - cuts a text into words.

#include "rkparse.h"

#include <string.h>

enum QuoteState { QuotesOff = -100, Outside = -1, InsideForGood = 0 };

rkParse::rkParse(rkString const &text) : rkString(text), m_pos(0), m_quote(Outside) {}

void rkParse::initParse(rkString separators) {
    m_pos = 0;
    m_quote = separators.find("\"") == npos ? Outside : QuotesOff;
    m_separators = separators;
}

bool rkParse::isSeparator(int index) {
    if (index < 0 || index >= m_length) return false;
    char c = m_buffer[index];
    if (m_quote >= 0) {
        // An empty pair leaves the quotation open: 0 is an index like any other.
        if (c == '"') m_quote = m_quote == index - 1 ? InsideForGood : Outside;
        return false;
    }
    if (m_quote == Outside && c == '"') {
        m_quote = index;
        return false;
    }
    return memchr(m_separators.c_str(), c, m_separators.length()) != nullptr;
}

// As long as the word has two quotes side by side, its second character goes, wherever the pair stands. So
// all goes up to the first quote of the last pair, and one more if the quote that is left makes a pair with
// the first character.
void rkParse::removeQuote(rkString &word) {
    if (m_quote < Outside) return;
    int lastPair = word.rfind("\"\"");
    if (lastPair == npos) return;
    int rest = lastPair + 1;
    if (word[0] == '"' && word[rest] == '"') ++rest;
    word = word.substr(0, 1) + word.substr(rest);
}

// The first character of a word is looked at twice. So a quote that begins a word is opened and closed at
// once and protects nothing, while one inside a word protects the separators up to its partner.
bool rkParse::nextWord(rkString &word) {
    word = "";
    int start = m_pos;
    while (start < m_length && isSeparator(start)) ++start;
    if (start >= m_length) return false;
    int stop = start;
    while (stop < m_length && !isSeparator(stop)) ++stop;
    word = substr(start, stop - start);
    removeQuote(word);
    m_pos = stop;
    return true;
}

int rkParse::parse(rkStringList &list, rkString separators) {
    initParse(separators);
    list.clear();
    int n = 0;
    for (rkString word; nextWord(word); ++n) list.push_back(word);
    return n;
}

// The first words of list into outputs; the others become "".
static void firstWords(rkStringList const &list, rkString *const *outputs, int count) {
    auto word = list.begin();
    for (int i = 0; i < count; ++i) {
        *outputs[i] = "";
        if (word != list.end()) *outputs[i] = *word++;
    }
}

int rkParse::parse(rkString &a, rkString &b, rkString separators) {
    rkStringList list;
    int n = parse(list, separators);
    rkString *outputs[] = {&a, &b};
    firstWords(list, outputs, 2);
    return n;
}

int rkParse::parse(rkString &a, rkString &b, rkString &c, rkString separators) {
    rkStringList list;
    int n = parse(list, separators);
    rkString *outputs[] = {&a, &b, &c};
    firstWords(list, outputs, 3);
    return n;
}

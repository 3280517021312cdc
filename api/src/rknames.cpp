// rknames.cpp - names of flags and enumerations.

#include <ctype.h>

#include "rkstring.h"

static bool startsWith(char const *text, char const *start) {
    for (; *start; ++start, ++text) {
        if (tolower(static_cast<unsigned char>(*start)) != tolower(static_cast<unsigned char>(*text)))
            return false;
    }
    return true;
}

bool fitString(rkString const &value, rkString const &name, int skip) {
    if (skip < 0) skip = 0;
    if (skip > name.length()) skip = name.length();
    return startsWith(name.c_str() + skip, value.c_str()) || startsWith(name.c_str(), value.c_str());
}

// Index of the first name that fits, or npos.
static int fitIndex(rkString const &word, rkString const *names, int count, int skip) {
    for (int i = 0; i < count; ++i) {
        if (fitString(word, names[i], skip)) return i;
    }
    return rkString::npos;
}

rkString rkString::flagString(int value, int const *flags, rkString const *names, int count) {
    rkString text;
    bool any = false;
    for (int i = 0; i < count; ++i) {
        if (!(value & flags[i])) continue;
        if (any) text << '|';
        text << names[i];
        any = true;
    }
    if (!any) text << value;
    return text;
}

int rkString::flagValue(rkString &text, int const *flags, rkString const *names, int count, int skip) {
    text.m_failed = false;
    rkStringList words;
    text.parse(words, "|,; ");
    int value = 0;
    for (auto word = words.begin(); word != words.end(); ++word) {
        int i = fitIndex(*word, names, count, skip);
        if (i == npos) {
            text.m_failed = true;
        } else {
            value |= flags[i];
        }
    }
    return value;
}

rkString rkString::enumString(int value, int const *values, rkString const *names, int count) {
    for (int i = 0; i < count; ++i) {
        if (values[i] == value) return names[i];
    }
    rkString text;
    text << value;
    return text;
}

int rkString::enumValue(rkString &text, int const *values, rkString const *names, int count, int skip) {
    int i = fitIndex(text, names, count, skip);
    text.m_failed = i == npos;
    return i == npos ? 0 : values[i];
}

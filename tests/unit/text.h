// text.h - the small questions that tests ask of texts.

#ifndef RAKOVA_TESTS_TEXT_H
#define RAKOVA_TESTS_TEXT_H

#include <string>

#include "rkstring.h"

inline std::string str(rkString const &text) {
    return std::string(text.c_str(), text.length());
}

inline bool holds(std::string const &text, std::string const &part) {
    return text.find(part) != std::string::npos;
}

inline int countOf(std::string const &text, std::string const &part) {
    int n = 0;
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++n;
    return n;
}

#endif

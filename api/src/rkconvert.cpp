// rkconvert.cpp - conversions between text and numbers.

#include <stdio.h>

#include "rkstring.h"

rkString rkString::prefixI64() {
    return "L";
}

static rkString formatI64(char letter) {
    return rkString("%") + rkString::prefixI64() + letter;
}

rkString &operator<<(rkString &text, rkString const &s) {
    return text += s;
}

rkString &operator<<(rkString &text, char const *s) {
    return text += s;
}

rkString &operator<<(rkString &text, char c) {
    text.append(&c, 1);
    return text;
}

rkString &operator<<(rkString &text, void *p) {
    if (!p) return text << "NULL";
    char digits[32];
    int n = snprintf(digits, sizeof digits, formatI64('X').c_str(), reinterpret_cast<unsigned long long>(p));
    text.append(digits, n);
    return text;
}

rkString &operator<<(rkString &text, bool b) {
    return text << (b ? "yes" : "no");
}

rkString &operator<<(rkString &text, long long n) {
    char digits[32];
    int length = snprintf(digits, sizeof digits, formatI64('d').c_str(), n);
    text.append(digits, length);
    return text;
}

rkString &operator<<(rkString &text, double x) {
    char digits[32];
    int n = snprintf(digits, sizeof digits, "%.3g", x);
    text.append(digits, n);
    return text;
}

rkString &operator<<(rkString &text, float x) {
    return text << static_cast<double>(x);
}

rkString &operator<<(rkString &text, int n) {
    char digits[16];
    int length = snprintf(digits, sizeof digits, "%d", n);
    text.append(digits, length);
    return text;
}

// A scan that meets the end of the text before a number is no failure.
template <class T>
static T &scan(T &value, rkString &text, char const *format) {
    text.m_failed = sscanf(text.c_str(), format, &value) == 0;
    return value;
}

// The conversion letter of an integer: x or X behind "0x", otherwise d, so that a leading zero means nothing.
static char integerLetter(rkString const &text) {
    if (text.length() < 2 || text[0] != '0') return 'd';
    return text[1] == 'x' || text[1] == 'X' ? text[1] : 'd';
}

bool &operator<<(bool &value, rkString &text) {
    rkString word = text.toLower();
    word.trim();
    char first = word[0];
    value = first == 'y' || first == 't' || word == "1";
    text.m_failed = !value && first != 'n' && first != 'f' && word != "0";
    return value;
}

long long &operator<<(long long &value, rkString &text) {
    return scan(value, text, formatI64(integerLetter(text)).c_str());
}

double &operator<<(double &value, rkString &text) {
    return scan(value, text, "%lf");
}

float &operator<<(float &value, rkString &text) {
    double wide = value;
    wide << text;
    return value = static_cast<float>(wide);
}

int &operator<<(int &value, rkString &text) {
    char const format[] = {'%', integerLetter(text), 0};
    return scan(value, text, format);
}

// rkstring.h - the one string class, and its conversions to and from numbers.

#ifndef RAKOVA_RKSTRING_H
#define RAKOVA_RKSTRING_H

#include "rklist.h"

class rkStringList;

// Size of the block for n characters: n + 1 rounded up to a multiple of 16.
int getBufSize(int n);

// A text in a zeroed heap block of its own. Passed by value; nothing is shared.
// Positions are indices from 0; npos says that nothing was found.
class rkString {
public:
    static constexpr int npos = -1;

    rkString();
    rkString(char const *text);
    rkString(char c);
    rkString(rkString const &other);
    rkString(rkString &&other) noexcept;
    virtual ~rkString();

    rkString &operator=(rkString const &other);
    rkString &operator=(rkString &&other) noexcept; // exchanges the texts

    char const *c_str() const { return m_buffer ? m_buffer : ""; }
    int length() const { return m_length; }
    char operator[](int i) const { return m_buffer ? m_buffer[i] : '\0'; } // REQUIRES: 0 <= i <= length()
    bool failed() const { return m_failed; } // the last conversion out of this string

    void init();          // all fields zero
    void allocate(int n); // a zeroed block for n characters; the old text is gone
    void free();
    void growBy(int n); // keeps the text; the new characters are NUL
    void assign(char c);
    void assign(char const *text); // null counts as ""
    void assign(rkString const &other);
    void resize(int n, char fill);

    void append(char const *text, int n); // the first n bytes; text is not part of this string, or all of it
    rkString &operator+=(rkString const &other);
    rkString operator+(rkString const &other) const;
    bool operator==(rkString const &other) const; // up to the first NUL of either
    bool operator!=(rkString const &other) const { return !(*this == other); }

    // An empty s is found at from; from outside of the text finds nothing.
    int find(rkString const &s, int from = 0) const;
    int rfind(rkString const &s) const;
    rkString substr(int pos) const;
    rkString substr(int pos, int n) const;
    // Negative, 0 or positive; the first different byte gives -1 or 1, otherwise the difference of the
    // lengths.
    int compare(rkString const &s) const;

    // Cuts blanks and tabs on both sides and carriage returns on the left; a trailing carriage return stays.
    void trim();
    rkString toLower() const;

    rkString getFileName() const;  // behind the last "/" or "\"
    rkString getFileDir() const;   // up to and with that separator
    rkString getFileTitle() const; // the file name before its last "."

    // Split into words (rkParse); the result is the number of words in the text.
    int parse(rkStringList &out, rkString separators) const;
    int parse(rkString &a, rkString &b, rkString separators) const;
    int parse(rkString &a, rkString &b, rkString &c, rkString separators) const;

    static rkString prefixI64(); // length modifier of the C formats for 64-bit integers

    // Names of flags and enumerations, see rknames.cpp. values, flags and names have count entries.
    static rkString flagString(int value, int const *flags, rkString const *names, int count);
    static int flagValue(rkString &text, int const *flags, rkString const *names, int count, int skip);
    static rkString enumString(int value, int const *values, rkString const *names, int count);
    static int enumValue(rkString &text, int const *values, rkString const *names, int count, int skip);

    char *m_buffer;
    int m_length;
    int m_bufSize;
    bool m_failed;

private:
    void put(char const *text, int n);
    void setLength(long long n);
    void swapBlocks(rkString &other);
};

class rkStringList : public rkList<rkString> {};

// text << value appends the value in text form.
rkString &operator<<(rkString &text, rkString const &s);
rkString &operator<<(rkString &text, char const *s);
rkString &operator<<(rkString &text, char c);
rkString &operator<<(rkString &text, void *p); // "NULL" or upper-case hexadecimal
rkString &operator<<(rkString &text, bool b);  // "yes" or "no"
rkString &operator<<(rkString &text, long long n);
rkString &operator<<(rkString &text, double x); // three significant digits
rkString &operator<<(rkString &text, float x);
rkString &operator<<(rkString &text, int n);

// value << text reads the value; text.failed() tells the outcome, and a failure leaves the value
// (a bool becomes false). A blank text reads as success without a change, but for bool.
bool &operator<<(bool &value, rkString &text);
long long &operator<<(long long &value, rkString &text);
double &operator<<(double &value, rkString &text);
float &operator<<(float &value, rkString &text);
int &operator<<(int &value, rkString &text); // hexadecimal behind "0x"

// True if value, in any case, starts name or starts name behind its first skip characters.
bool fitString(rkString const &value, rkString const &name, int skip);

#endif

// rkstring.cpp - the one string class.

#include "rkstring.h"

#include <ctype.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "rkparse.h"

// Longest text whose block size is still an int; what is longer is cut off.
static const int maxLength = INT_MAX - 32;

int getBufSize(int n) {
    return (n + 16) / 16 * 16;
}

static int limited(long long n) {
    if (n < 0) return 0;
    return n > maxLength ? maxLength : static_cast<int>(n);
}

static char *checked(void *block) {
    if (!block) abort();
    return static_cast<char *>(block);
}

static bool isSlash(char c) {
    return c == '/' || c == '\\';
}

rkString::rkString() {
    init();
}

rkString::rkString(char const *text) {
    init();
    assign(text);
}

rkString::rkString(char c) {
    init();
    assign(c);
}

rkString::rkString(rkString const &other) {
    init();
    put(other.c_str(), other.m_length);
}

rkString::rkString(rkString &&other) noexcept {
    init();
    swapBlocks(other);
}

rkString::~rkString() {
    ::free(m_buffer);
}

rkString &rkString::operator=(rkString const &other) {
    assign(other);
    return *this;
}

rkString &rkString::operator=(rkString &&other) noexcept {
    swapBlocks(other);
    return *this;
}

void rkString::init() {
    m_buffer = nullptr;
    m_length = 0;
    m_bufSize = 0;
    m_failed = false;
}

void rkString::swapBlocks(rkString &other) {
    char *buffer = other.m_buffer;
    int length = other.m_length, bufSize = other.m_bufSize;
    other.m_buffer = m_buffer;
    other.m_length = m_length;
    other.m_bufSize = m_bufSize;
    m_buffer = buffer;
    m_length = length;
    m_bufSize = bufSize;
}

// The text may lie in the old block.
void rkString::put(char const *text, int n) {
    char *old = m_buffer;
    int size = getBufSize(n);
    if (!m_buffer || size != m_bufSize) m_buffer = checked(malloc(size));
    memmove(m_buffer, text, n);
    m_buffer[n] = 0;
    m_length = n;
    m_bufSize = size;
    if (m_buffer != old) ::free(old);
}

void rkString::allocate(int n) {
    n = limited(n);
    int size = getBufSize(n);
    if (!m_buffer || size != m_bufSize) {
        ::free(m_buffer);
        m_buffer = checked(malloc(size));
        m_bufSize = size;
    }
    memset(m_buffer, 0, size);
    m_length = n;
}

void rkString::free() {
    ::free(m_buffer);
    m_buffer = nullptr;
    m_length = 0;
    m_bufSize = 0;
}

// New characters are left unset.
void rkString::setLength(long long n) {
    int length = limited(n);
    if (length >= m_bufSize) {
        m_bufSize = getBufSize(length);
        m_buffer = checked(realloc(m_buffer, m_bufSize));
    }
    m_buffer[length] = 0;
    m_length = length;
}

void rkString::growBy(int n) {
    int old = m_length;
    setLength(static_cast<long long>(old) + n);
    if (m_length > old) memset(m_buffer + old, 0, m_length - old);
}

void rkString::assign(char c) {
    put(&c, 1);
}

void rkString::assign(char const *text) {
    if (!text) text = "";
    size_t n = strlen(text);
    put(text, n > static_cast<size_t>(maxLength) ? maxLength : static_cast<int>(n));
}

// A string assigned to itself loses its text like any other that gets a new one.
void rkString::assign(rkString const &other) {
    if (&other == this) {
        allocate(m_length);
    } else {
        put(other.c_str(), other.m_length);
    }
}

void rkString::resize(int n, char fill) {
    int old = m_length;
    n = limited(n);
    if (n == old) return;
    setLength(n);
    if (n > old) memset(m_buffer + old, fill, n - old);
}

rkString &rkString::operator+=(rkString const &other) {
    append(other.c_str(), other.m_length);
    return *this;
}

void rkString::append(char const *text, int n) {
    int old = m_length;
    bool own = text == m_buffer; // moves with the block
    setLength(static_cast<long long>(old) + n);
    memcpy(m_buffer + old, own ? m_buffer : text, m_length - old);
}

rkString rkString::operator+(rkString const &other) const {
    rkString sum;
    int length = limited(static_cast<long long>(m_length) + other.m_length);
    sum.m_bufSize = getBufSize(length);
    sum.m_buffer = checked(malloc(sum.m_bufSize));
    memcpy(sum.m_buffer, c_str(), m_length);
    memcpy(sum.m_buffer + m_length, other.c_str(), length - m_length);
    sum.m_buffer[length] = 0;
    sum.m_length = length;
    return sum;
}

bool rkString::operator==(rkString const &other) const {
    return strcmp(c_str(), other.c_str()) == 0;
}

int rkString::find(rkString const &s, int from) const {
    if (from < 0 || from > m_length) return npos;
    char const *found = strstr(c_str() + from, s.c_str());
    return found ? static_cast<int>(found - c_str()) : npos;
}

int rkString::rfind(rkString const &s) const {
    for (int i = m_length - s.m_length; i >= 0; --i) {
        if (memcmp(c_str() + i, s.c_str(), s.m_length) == 0) return i;
    }
    return npos;
}

rkString rkString::substr(int pos) const {
    return substr(pos, m_length);
}

rkString rkString::substr(int pos, int n) const {
    if (pos < 0) pos = 0;
    if (n < 1 || pos >= m_length) return "";
    rkString part;
    part.put(m_buffer + pos, n < m_length - pos ? n : m_length - pos);
    return part;
}

int rkString::compare(rkString const &s) const {
    int common = m_length < s.m_length ? m_length : s.m_length;
    for (int i = 0; i < common; ++i) {
        signed char a = m_buffer[i], b = s.m_buffer[i];
        if (a != b) return a < b ? -1 : 1;
    }
    return m_length - s.m_length;
}

void rkString::trim() {
    int first = 0, end = m_length;
    char const *text = c_str();
    while (first < end && (text[first] == ' ' || text[first] == '\t' || text[first] == '\r')) ++first;
    while (end > first && (text[end - 1] == ' ' || text[end - 1] == '\t')) --end;
    put(text + first, end - first);
}

rkString rkString::toLower() const {
    rkString lower = *this;
    for (int i = 0; i < m_length; ++i) {
        lower.m_buffer[i] = static_cast<char>(tolower(static_cast<unsigned char>(m_buffer[i])));
    }
    return lower;
}

rkString rkString::getFileName() const {
    return substr(getFileDir().m_length);
}

rkString rkString::getFileDir() const {
    int n = m_length;
    while (n > 0 && !isSlash(m_buffer[n - 1])) --n;
    return substr(0, n);
}

rkString rkString::getFileTitle() const {
    rkString name = getFileName();
    int dot = name.rfind(".");
    return dot == npos ? name : name.substr(0, dot);
}

int rkString::parse(rkStringList &out, rkString separators) const {
    return rkParse(*this).parse(out, separators);
}

int rkString::parse(rkString &a, rkString &b, rkString separators) const {
    return rkParse(*this).parse(a, b, separators);
}

int rkString::parse(rkString &a, rkString &b, rkString &c, rkString separators) const {
    return rkParse(*this).parse(a, b, c, separators);
}

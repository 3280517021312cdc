// streamtest.h - bit streams for the golden tests: nobody may look behind their end or in front of them.

#ifndef KELVARA_STREAMTEST_H
#define KELVARA_STREAMTEST_H

#include "keltypes.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

using Bytes = std::vector<Kel8u>;

// Bytes between two forbidden pages, right at the second one, or with `front` right behind the first one: a
// byte too many that is read or written stops the test in every build. Up to a page of them.
class GuardedStream {
public:
    explicit GuardedStream(size_t size, bool front = false) {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        m_mapped = 3 * page;
        void *p = mmap(nullptr, m_mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED || size > page) throw std::runtime_error("mmap");
        m_base = static_cast<Kel8u *>(p);
        m_first = m_base + (front ? page : 2 * page - size);
        mprotect(m_base, page, PROT_NONE);
        mprotect(m_base + 2 * page, page, PROT_NONE);
    }
    explicit GuardedStream(const Bytes &bytes, bool front = false) : GuardedStream(bytes.size(), front) {
        std::copy(bytes.begin(), bytes.end(), m_first);
    }
    GuardedStream(const GuardedStream &) = delete;
    GuardedStream &operator=(const GuardedStream &) = delete;
    ~GuardedStream() { munmap(m_base, m_mapped); }

    Kel8u *data() const { return m_first; }

private:
    Kel8u *m_base, *m_first;
    size_t m_mapped;
};

// All bits as a text of 0 and 1.
inline std::string bitsOf(const Bytes &bytes) {
    std::string text;
    for (Kel8u byte : bytes) {
        for (int i = 7; i >= 0; --i) text += byte >> i & 1 ? '1' : '0';
    }
    return text;
}

// A text with blanks between its codes.
inline std::string bits(const std::string &codes) {
    std::string text;
    std::copy_if(codes.begin(), codes.end(), std::back_inserter(text), [](char c) { return c != ' '; });
    return text;
}

// The other way round: blanks are skipped, the last byte is filled up.
inline Bytes bytesOf(const std::string &codes, char filling = '0') {
    std::string text = bits(codes);
    while (text.size() % 8) text += filling;
    Bytes bytes;
    for (size_t i = 0; i < text.size(); i += 8) {
        bytes.push_back(static_cast<Kel8u>(std::stoi(text.substr(i, 8), nullptr, 2)));
    }
    return bytes;
}

inline Bytes randomBytes(std::mt19937 &generator, size_t n) {
    Bytes bytes(n);
    for (Kel8u &byte : bytes) byte = static_cast<Kel8u>(generator());
    return bytes;
}

#endif

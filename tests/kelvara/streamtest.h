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

inline const std::string &bitsOfByte(Kel8u byte) {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> all(256, "00000000");
        for (int value = 0; value < 256; ++value) {
            for (int i = 0; i < 8; ++i) all[value][7 - i] = value >> i & 1 ? '1' : '0';
        }
        return all;
    }();
    return texts[byte];
}

// All bits as a text of 0 and 1. Made and taken apart a hundred thousand times, so byte by byte.
inline std::string bitsOf(const Bytes &bytes) {
    std::string text;
    for (Kel8u byte : bytes) text += bitsOfByte(byte);
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
    Bytes bytes;
    int byte = 0, count = 0;
    const auto add = [&](char bit) {
        byte = byte % 128 * 2 + (bit == '1');
        if (++count % 8 == 0) bytes.push_back(static_cast<Kel8u>(byte));
    };
    for (char bit : codes) {
        if (bit != ' ') add(bit);
    }
    while (count % 8) add(filling);
    return bytes;
}

inline Bytes randomBytes(std::mt19937 &generator, size_t n) {
    Bytes bytes(n);
    for (Kel8u &byte : bytes) byte = static_cast<Kel8u>(generator());
    return bytes;
}

#endif

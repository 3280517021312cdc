// kelvara_test.h - data for the golden tests: sources before a forbidden page, destinations between marks.

#ifndef KELVARA_TEST_H
#define KELVARA_TEST_H

#include "keltypes.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

// Source data, read-only for the function under test. The last byte stands `slack` bytes before a page that
// nobody may touch, so that with slack 0 a read past the end stops the test in every build.
template <class T>
class Source {
public:
    // Room for exactly `rows` rows of `width` samples, stepBytes from row to row.
    Source(int rows, int width, int stepBytes, int slack = 0)
        : m_step(stepBytes), m_rows(rows), m_width(width) {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t bytes = static_cast<size_t>(rows - 1) * stepBytes + width * sizeof(T);
        m_area = (bytes + slack + page - 1) / page * page;
        m_mapped = m_area + page;
        void *p = mmap(nullptr, m_mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED) throw std::runtime_error("mmap");
        m_base = static_cast<unsigned char *>(p);
        mprotect(m_base + m_area, page, PROT_NONE);
        m_first = m_base + m_area - slack - bytes;
    }
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;
    ~Source() { munmap(m_base, m_mapped); }

    // Sets every sample to value(row, col), then forbids writing.
    Source &fill(const std::function<int(int, int)> &value) {
        for (int row = 0; row < m_rows; ++row) {
            for (int col = 0; col < m_width; ++col) {
                const T sample = static_cast<T>(value(row, col));
                std::memcpy(address(row, col), &sample, sizeof sample);
            }
        }
        mprotect(m_base, m_area, PROT_READ);
        return *this;
    }

    int operator()(int row, int col) const {
        T sample;
        std::memcpy(&sample, address(row, col), sizeof sample);
        return sample;
    }

    const T *data() const { return reinterpret_cast<const T *>(m_first); }
    int step() const { return m_step; }

private:
    unsigned char *address(int row, int col) const {
        return m_first + static_cast<ptrdiff_t>(row) * m_step + col * static_cast<ptrdiff_t>(sizeof(T));
    }

    unsigned char *m_base, *m_first;
    size_t m_area, m_mapped;
    int m_step, m_rows, m_width;
};

// A destination of `count` elements that starts `offset` bytes behind a multiple of 64, between marked bytes.
template <class T>
class Destination {
public:
    explicit Destination(int count, int offset = 0)
        : m_bytes(64 + 64 + offset + count * sizeof(T) + 64, mark), m_count(count) {
        const size_t misfit = reinterpret_cast<size_t>(m_bytes.data()) % 64;
        m_start = 64 + (64 - misfit) % 64 + offset;
    }

    T *data() { return reinterpret_cast<T *>(m_bytes.data() + m_start); }
    T operator[](int i) const {
        T value;
        std::memcpy(&value, m_bytes.data() + m_start + i * sizeof(T), sizeof value);
        return value;
    }

    // The bytes in front of and behind the elements are as they were.
    bool surroundingsIntact() const {
        return intact(0, m_start) && intact(m_start + m_count * sizeof(T), m_bytes.size());
    }
    // All bytes are as they were.
    bool untouched() const { return intact(0, m_bytes.size()); }

private:
    static constexpr unsigned char mark = 0xA5;

    bool intact(size_t from, size_t to) const {
        for (size_t i = from; i < to; ++i) {
            if (m_bytes[i] != mark) return false;
        }
        return true;
    }

    std::vector<unsigned char> m_bytes;
    size_t m_start;
    int m_count;
};

using Pattern = std::function<int(int, int)>;

inline Pattern constant(int value) {
    return [value](int, int) { return value; };
}

// Values between 0 and max; each seed its own sequence.
inline Pattern noise(unsigned seed, int max) {
    auto generator = std::make_shared<std::mt19937>(seed);
    return [generator, max](int, int) {
        return static_cast<int>((*generator)() % (static_cast<unsigned>(max) + 1));
    };
}

inline Pattern checkerboard(int max) {
    return [max](int row, int col) { return (row + col) % 2 ? max : 0; };
}

// Pairs of source and reference data: random ones and the extremes of the range.
struct PatternPair {
    const char *name;
    Pattern src, ref;
};

inline std::vector<PatternPair> patternPairs(int max) {
    return {{"noise", noise(1, max), noise(2, max)},
            {"more noise", noise(3, max), noise(4, max)},
            {"lowest against highest", constant(0), constant(max)},
            {"highest against lowest", constant(max), constant(0)},
            {"equal", constant(max), constant(max)},
            {"checkerboard", checkerboard(max), noise(5, max)},
            {"noise against checkerboard", noise(6, max), checkerboard(max)}};
}

#endif

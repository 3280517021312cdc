// samples.h - how the kernels see a block of samples in memory.

#ifndef KELVARA_SAMPLES_H
#define KELVARA_SAMPLES_H

#include "keltypes.h"

#include <cstddef>
#include <cstring>

namespace kelvara {

// Callers may place data at any byte, so that elements are never dereferenced as what they are.
template <class T>
inline T load(const unsigned char *p) {
    T value;
    std::memcpy(&value, p, sizeof value);
    return value;
}

template <class T>
inline void store(T *p, T value) {
    std::memcpy(static_cast<void *>(p), &value, sizeof value);
}

// A block at its full-sample position; rows lie stepBytes apart.
template <class T>
class Samples {
public:
    Samples(const T *p, std::ptrdiff_t stepBytes)
        : m_bytes(reinterpret_cast<const unsigned char *>(p)), m_step(stepBytes) {}

    int operator()(int row, int col) const {
        return load<T>(m_bytes + row * m_step + col * static_cast<std::ptrdiff_t>(sizeof(T)));
    }

    // The same samples counted from another first one.
    Samples from(int row, int col) const {
        Samples moved(*this);
        moved.m_bytes += row * m_step + col * static_cast<std::ptrdiff_t>(sizeof(T));
        return moved;
    }

private:
    const unsigned char *m_bytes;
    std::ptrdiff_t m_step;
};

// A block that is written; rows lie stepBytes apart.
template <class T>
class Target {
public:
    Target(T *p, std::ptrdiff_t stepBytes)
        : m_bytes(reinterpret_cast<unsigned char *>(p)), m_step(stepBytes) {}

    void set(int row, int col, int value) const {
        const T sample = static_cast<T>(value);
        std::memcpy(m_bytes + row * m_step + col * static_cast<std::ptrdiff_t>(sizeof(T)), &sample,
                    sizeof(T));
    }

private:
    unsigned char *m_bytes;
    std::ptrdiff_t m_step;
};

// Every second column of a block, from column `first` on: one of the two colours of an interleaved row.
template <class Block>
class Interleaved {
public:
    Interleaved(Block block, int first) : m_block(block), m_first(first) {}

    int operator()(int row, int col) const { return m_block(row, 2 * col + m_first); }
    void set(int row, int col, int value) const { m_block.set(row, 2 * col + m_first, value); }

    Interleaved from(int row, int col) const { return Interleaved(m_block.from(row, 2 * col), m_first); }

private:
    Block m_block;
    int m_first;
};

} // namespace kelvara

#endif

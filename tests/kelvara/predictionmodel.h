// predictionmodel.h - predictions worked out in exact fractions, and blocks that are written row by row.

#ifndef KELVARA_PREDICTIONMODEL_H
#define KELVARA_PREDICTIONMODEL_H

#include "kelvara_test.h"

#include <cmath>

const int mcTypes[] = {0, 4, 8, 12};
const int notMcTypes[] = {-4, -1, 1, 2, 3, 5, 7, 9, 11, 13, 16, 1 << 30};
const int notRoundControls[] = {-1, 2, 4, 1 << 30};

inline int toTheRight(int mcType) {
    return mcType >= 8 ? 1 : 0;
}
inline int down(int mcType) {
    return mcType % 8 == 4 ? 1 : 0;
}

// A reference with exactly the samples that a block of width x height at mcType needs, and its code.
struct RefBlock {
    RefBlock(int width, int height, int channels, int type, int step, int slack, const Pattern &pattern)
        : samples(height + down(type), width + channels * toTheRight(type), step, slack),
          mcType(type),
          channelCount(channels) {
        samples.fill(pattern);
    }

    // The mean of the four samples at the floor and the ceiling of both coordinates, to the nearest integer;
    // halves go up, or down with roundControl 1.
    int predicted(int row, int col, int roundControl) const {
        const int below = row + down(mcType), beside = col + channelCount * toTheRight(mcType);
        const double mean =
            (samples(row, col) + samples(row, beside) + samples(below, col) + samples(below, beside)) / 4.0;
        return static_cast<int>(roundControl ? std::ceil(mean - 0.5) : std::floor(mean + 0.5));
    }

    Source<Kel8u> samples;
    int mcType;
    int channelCount;
};

// The mean of two predictions; halves go up whatever roundControl is.
inline int predicted(const RefBlock &f, const RefBlock &b, int row, int col, int roundControl) {
    return static_cast<int>(
        std::floor((f.predicted(row, col, roundControl) + b.predicted(row, col, roundControl)) / 2.0 + 0.5));
}

// A destination of `rows` rows of `width` samples, stepBytes from row to row, between and around them marks.
template <class T>
class DstBlock {
public:
    DstBlock(int rows, int width, int stepBytes, int offset = 0)
        : m_bytes((rows - 1) * stepBytes + width * static_cast<int>(sizeof(T)), offset),
          m_rows(rows),
          m_width(width),
          m_step(stepBytes) {}

    T *data() { return reinterpret_cast<T *>(m_bytes.data()); }
    int step() const { return m_step; }

    int operator()(int row, int col) {
        T sample;
        std::memcpy(&sample, m_bytes.data() + row * m_step + col * sizeof(T), sizeof sample);
        return sample;
    }

    // All bytes that are no samples are as they were.
    bool surroundingsIntact() {
        const int used = m_width * static_cast<int>(sizeof(T));
        for (int row = 0; row + 1 < m_rows; ++row) {
            for (int i = used; i < m_step; ++i) {
                if (m_bytes[row * m_step + i] != 0xA5) return false;
            }
        }
        return m_bytes.surroundingsIntact();
    }
    bool untouched() const { return m_bytes.untouched(); }

private:
    Destination<unsigned char> m_bytes;
    int m_rows, m_width, m_step;
};

// The noise, moved so that it begins at low.
inline Pattern signedNoise(unsigned seed, int low, int high) {
    return [positive = noise(seed, high - low), low](int row, int col) { return positive(row, col) + low; };
}

#endif

// macroblock.h - macroblocks from their coefficients: what stands in memory, and sums with the prediction.

#ifndef KELVARA_MACROBLOCK_H
#define KELVARA_MACROBLOCK_H

#include "samples.h"

#include <algorithm>
#include <iterator>

namespace kelvara {

// ---- coefficients -------------------------------------------------------------------

// The caller's pointer to the coefficients, at any address.
class CoeffPointer {
public:
    explicit CoeffPointer(Kel16s **pp) : m_pp(pp) {}

    Kel16s *get() const { return m_pp ? load<Kel16s *>(reinterpret_cast<unsigned char *>(m_pp)) : nullptr; }
    // Past the blocks that have been taken.
    void advance(const Kel16s *pNext) const { store(m_pp, get() + (pNext - get())); }

private:
    Kel16s **m_pp;
};

// The coefficients of coded blocks, one block behind the other; bit `bit` of the pattern tells of each block
// whether it is coded.
class CodedBlocks {
public:
    CodedBlocks(const Kel16s *pCoeffs, Kel32u pattern) : m_next(pCoeffs), m_pattern(pattern) {}

    bool has(int bit) const { return m_pattern >> bit & 1; }
    // Zeros for a block that is not coded. REQUIRES: the blocks in their order.
    template <class Block>
    Block take(int bit) {
        if (!has(bit)) return Block{};
        const Block coeffs(m_next);
        m_next += std::size(coeffs.at);
        return coeffs;
    }
    const Kel16s *next() const { return m_next; }

private:
    const Kel16s *m_next;
    Kel32u m_pattern;
};

// ---- samples --------------------------------------------------------------------------

// A plane that holds a prediction or is to get it.
struct Plane {
    Plane at(int row, int col) const { return {p + row * static_cast<std::ptrdiff_t>(step) + col, step}; }
    Samples<Kel8u> samples() const { return {p, step}; }
    Target<Kel8u> target() const { return {p, step}; }

    Kel8u *p;
    int step;
};

template <int N>
struct Differences {
    template <int n, class Value>
    void set(int top, int left, Value value) {
        for (int row = 0; row < n; ++row) {
            for (int col = 0; col < n; ++col) at[top + row][left + col] = value(row, col);
        }
    }

    int at[N][N];
};

// Stores the sum of N x N predicted samples and their differences.
template <int N, class Predicted>
void storeSum(const Predicted &predicted, const Differences<N> &differences, Target<Kel8u> dst) {
    for (int row = 0; row < N; ++row) {
        for (int col = 0; col < N; ++col)
            dst.set(row, col, std::clamp(predicted(row, col) + differences.at[row][col], 0, 255));
    }
}

// The mode of block k.
inline int modeOf(const Kel32s *modes, int k) {
    return load<Kel32s>(reinterpret_cast<const unsigned char *>(modes + k));
}

} // namespace kelvara

#endif

// quartersample.h - blocks at quarter-sample positions.

#ifndef KELVARA_MPEG4_QUARTERSAMPLE_H
#define KELVARA_MPEG4_QUARTERSAMPLE_H

#include "../common/samples.h"

#include <algorithm>

namespace kelvara {

// ISO/IEC 14496-2 7.6.2.2: the sample `quarter` quarters behind p(0), of the samples p(-3) to p(4) of a line:
// the half sample of the 8-tap filter, or its mean with the nearer neighbour.
template <class Samples8>
inline int behindBy(int quarter, Samples8 p, int rounding) {
    const int sum = 20 * (p(0) + p(1)) - 6 * (p(-1) + p(2)) + 3 * (p(-2) + p(3)) - (p(-3) + p(4));
    const int half = std::clamp((sum + 16 - rounding) >> 5, 0, 255);
    return quarter == 2 ? half : (half + p(quarter / 2) + 1 - rounding) >> 1;
}

// Three samples in front of a line of `count` samples and three behind it: its mirror image, the outermost
// sample repeated. line points to the first sample.
template <class T>
inline void mirrorEnds(T *line, int count) {
    for (int i = 0; i < 3; ++i) {
        line[-1 - i] = line[i];
        line[count + i] = line[count - 1 - i];
    }
}

// A block of W x H samples. Horizontal positions are interpolated first, to the quarter, in all rows that the
// vertical ones need.
template <int W, int H>
class QuarterSamples {
public:
    // Quarters to the right and down, 0 to 3. full is the block at its full-sample position, one sample wider
    // or one row higher where there is a quarter.
    QuarterSamples(Samples<Kel8u> full, int right, int down, int rounding) {
        const int rows = H + (down ? 1 : 0);
        for (int row = 0; row < rows; ++row) {
            right ? goRight(full.from(row, 0), m_samples[row], right, rounding)
                  : copy(full.from(row, 0), m_samples[row]);
        }
        if (down) goDown(down, rounding);
    }

    int operator()(int row, int col) const { return m_samples[row][col]; }

private:
    static void copy(Samples<Kel8u> in, Kel8u *out) {
        for (int col = 0; col < W; ++col) out[col] = static_cast<Kel8u>(in(0, col));
    }

    static void goRight(Samples<Kel8u> in, Kel8u *out, int right, int rounding) {
        Kel8u mirrored[W + 7], *line = mirrored + 3;
        for (int col = 0; col <= W; ++col) line[col] = static_cast<Kel8u>(in(0, col));
        mirrorEnds(line, W + 1);
        for (int col = 0; col < W; ++col) {
            out[col] = static_cast<Kel8u>(behindBy(
                right, [=](int k) { return static_cast<int>(line[col + k]); }, rounding));
        }
    }

    void goDown(int down, int rounding) {
        Kel8u columns[H + 1][W];
        const Kel8u *mirrored[H + 7], **lines = mirrored + 3;
        for (int row = 0; row <= H; ++row) {
            std::copy_n(m_samples[row], W, columns[row]);
            lines[row] = columns[row];
        }
        mirrorEnds(lines, H + 1);
        for (int row = 0; row < H; ++row) {
            for (int col = 0; col < W; ++col) {
                m_samples[row][col] = static_cast<Kel8u>(behindBy(
                    down, [=](int k) { return static_cast<int>(lines[row + k][col]); }, rounding));
            }
        }
    }

    Kel8u m_samples[H + 1][W];
};

} // namespace kelvara

#endif

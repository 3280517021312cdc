// quartersample.h - blocks at quarter-sample positions.

#ifndef KELVARA_MPEG4_QUARTERSAMPLE_H
#define KELVARA_MPEG4_QUARTERSAMPLE_H

#include "../common/samples.h"

#include <algorithm>

namespace kelvara {

// ISO/IEC 14496-2 7.6.2.2 for N positions of a line of N + 1 samples, `quarter` quarters behind a sample
// each: the half sample of the 8-tap filter, or its mean with the nearer neighbour. Samples outside the line
// are its mirror image, the outermost one repeated.
template <int N, class In, class Out>
inline void interpolateLine(In in, int quarter, int rounding, Out out) {
    int line[N + 7]; // from sample -3 on
    for (int i = 0; i <= N; ++i) line[i + 3] = in(i);
    for (int i = 0; i < 3; ++i) {
        line[2 - i] = line[3 + i];
        line[N + 4 + i] = line[N + 3 - i];
    }
    for (int i = 0; i < N; ++i) {
        const int *p = line + i + 3;
        const int sum = 20 * (p[0] + p[1]) - 6 * (p[-1] + p[2]) + 3 * (p[-2] + p[3]) - (p[-3] + p[4]);
        const int half = std::clamp((sum + 16 - rounding) >> 5, 0, 255);
        out(i, quarter == 2 ? half : (half + p[quarter / 2] + 1 - rounding) >> 1);
    }
}

// A block of W x H samples. Horizontal positions are interpolated first, to the quarter, with all rows that
// the vertical ones need.
template <int W, int H>
class QuarterSamples {
public:
    // Quarters to the right and down, 0 to 3. full is the block at its full-sample position, one sample wider
    // or one row higher where there is a quarter.
    QuarterSamples(Samples<Kel8u> full, int right, int down, int rounding) {
        const int rows = H + (down ? 1 : 0);
        for (int row = 0; row < rows; ++row) goRight(full.from(row, 0), m_samples[row], right, rounding);
        for (int col = 0; down && col < W; ++col) goDown(col, down, rounding);
    }

    int operator()(int row, int col) const { return m_samples[row][col]; }

private:
    static void goRight(Samples<Kel8u> in, Kel8u *out, int right, int rounding) {
        const auto keep = [out](int col, int value) { out[col] = static_cast<Kel8u>(value); };
        if (right) return interpolateLine<W>([in](int col) { return in(0, col); }, right, rounding, keep);
        for (int col = 0; col < W; ++col) keep(col, in(0, col));
    }

    void goDown(int col, int down, int rounding) {
        interpolateLine<H>(
            [this, col](int row) { return static_cast<int>(m_samples[row][col]); }, down, rounding,
            [this, col](int row, int value) { m_samples[row][col] = static_cast<Kel8u>(value); });
    }

    Kel8u m_samples[H + 1][W];
};

} // namespace kelvara

#endif

// sampling.cpp - the exported up- and downsampling of H.263.

#include "../common/prediction.h"
#include "kelvc.h"

using namespace kelvara;

namespace {

// ---- kernels ----------------------------------------------------------------------

struct DividedDown {
    static int by16(int sum) { return sum >> 4; }
};
struct DividedTowardsZero {
    static int by16(int sum) { return sum / 16; }
};

// The two rows that a row of the result lies between, at a quarter from the nearer one.
template <class T>
struct BetweenRows {
    Samples<T> near, far;

    int operator()(int col) const { return 3 * near(0, col) + far(0, col); }
};

// The same where the farther one is outside and has one color.
struct BeforeColor {
    Samples<Kel8u> near;
    int color;

    int operator()(int col) const { return 3 * near(0, col) + color; }
};

// A row of twice the width; each sample lies at a quarter between two columns, of which those outside have
// the sums `left` and `right`.
template <class Divided, class Rows, class Dst>
inline void upsampleRow(Rows rows, int width, int left, int right, int bias, Dst dst, int row) {
    const auto sample = [=](int near, int far) { return Divided::by16(3 * near + far + bias); };
    dst.set(row, 0, sample(rows(0), left));
    for (int col = 1; col < width; ++col) {
        dst.set(row, 2 * col - 1, sample(rows(col - 1), rows(col)));
        dst.set(row, 2 * col, sample(rows(col), rows(col - 1)));
    }
    dst.set(row, 2 * width - 1, sample(rows(width - 1), right));
}

// With the nearest samples outside. By 16ths the corners and borders are what they are by quarters:
// (12 * A + 4 * B + 8) / 16 = (3 * A + B + 2) / 4.
template <class Divided, class T, class Dst>
inline void upsampleRowClipped(Samples<T> near, Samples<T> far, int width, int bias, Dst dst, int row) {
    const BetweenRows<T> rows{near, far};
    upsampleRow<Divided>(rows, width, rows(0), rows(width - 1), bias, dst, row);
}

// The row of the source that is second nearest to a row of twice the height.
inline int farRow(int row) {
    return row / 2 + (row % 2 ? 1 : -1);
}
inline int farRowClipped(int row, int height) {
    const int far = farRow(row);
    return far < 0 || far >= height ? row / 2 : far;
}

template <class Divided, class T>
void upsampleClipped(Samples<T> src, KeliSize size, int bias, Target<T> dst) {
    for (int row = 0; row < 2 * size.height; ++row) {
        const int far = farRowClipped(row, size.height);
        upsampleRowClipped<Divided>(src.from(row / 2, 0), src.from(far, 0), size.width, bias, dst, row);
    }
}

void upsampleFilled(Samples<Kel8u> src, KeliSize size, int bias, int color, Target<Kel8u> dst) {
    const int w = size.width, outside = 4 * color;
    for (int row = 0; row < 2 * size.height; ++row) {
        const int far = farRow(row);
        const Samples<Kel8u> near = src.from(row / 2, 0);
        if (far < 0 || far >= size.height) {
            upsampleRow<DividedDown>(BeforeColor{near, color}, w, outside, outside, bias, dst, row);
        } else {
            const BetweenRows<Kel8u> rows{near, src.from(far, 0)};
            upsampleRow<DividedDown>(rows, w, outside, outside, bias, dst, row);
        }
    }
}

void downsample(Samples<Kel8u> src, KeliSize size, int bias, Target<Kel8u> dst) {
    for (int row = 0; row < size.height / 2; ++row) {
        for (int col = 0; col < size.width / 2; ++col) {
            const int upper = src(2 * row, 2 * col) + src(2 * row, 2 * col + 1);
            const int lower = src(2 * row + 1, 2 * col) + src(2 * row + 1, 2 * col + 1);
            dst.set(row, col, (upper + lower + bias) >> 2);
        }
    }
}

// ITU-T H.263 O.6
void widen(Samples<Kel8u> src, KeliSize size, Target<Kel8u> dst) {
    for (int row = 0; row < size.height; ++row) {
        const Samples<Kel8u> line = src.from(row, 0);
        upsampleRowClipped<DividedDown>(line, line, size.width, 8, dst, row);
    }
}

void heighten(Samples<Kel8u> src, KeliSize size, Target<Kel8u> dst) {
    for (int row = 0; row < 2 * size.height; ++row) {
        const BetweenRows<Kel8u> rows{src.from(row / 2, 0), src.from(farRowClipped(row, size.height), 0)};
        for (int col = 0; col < size.width; ++col) dst.set(row, col, (rows(col) + 2) >> 2);
    }
}

enum Interpolation { Horizontal = 1, Vertical, Both };

// ---- argument checks --------------------------------------------------------------

template <class T>
bool anyTooNarrow(int srcStep, long long srcWidth, int dstStep, long long dstWidth) {
    return tooNarrow<T>(srcStep, srcWidth) || tooNarrow<T>(dstStep, dstWidth);
}

} // namespace

// ---- factor of four -----------------------------------------------------------------

KelStatus keliUpsampleFour_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pDst,
                                       int dstStep, int rounding, int fillColor) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (size.width < 1 || size.height < 1) return kelStsSizeErr;
    if (anyTooNarrow<Kel8u>(srcStep, size.width, dstStep, 2LL * size.width)) return kelStsStepErr;
    if (!isRoundControl(rounding) || fillColor < -1 || fillColor > 255) return kelStsRangeErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    const Target<Kel8u> dst(pDst, dstStep);
    if (fillColor < 0) {
        upsampleClipped<DividedDown>(src, size, 7 + rounding, dst);
    } else {
        upsampleFilled(src, size, 7 + rounding, fillColor, dst);
    }
    return kelStsNoErr;
}

KelStatus keliDownsampleFour_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pDst,
                                         int dstStep, int rounding) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (size.width < 2 || size.height < 2 || size.width % 2 || size.height % 2) return kelStsSizeErr;
    if (anyTooNarrow<Kel8u>(srcStep, size.width, dstStep, size.width / 2)) return kelStsStepErr;
    if (!isRoundControl(rounding)) return kelStsRangeErr;
    downsample(Samples<Kel8u>(pSrc, srcStep), size, 1 + rounding, Target<Kel8u>(pDst, dstStep));
    return kelStsNoErr;
}

// ---- spatial scalability --------------------------------------------------------------

KelStatus keliSpatialInterpolation_H263_8u_C1R(const Kel8u *pSrc, int srcStep, KeliSize size, Kel8u *pDst,
                                               int dstStep, int interpolation) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (size.width < 1 || size.height < 1) return kelStsSizeErr;
    const long long dstWidth = interpolation == Vertical ? size.width : 2LL * size.width;
    if (anyTooNarrow<Kel8u>(srcStep, size.width, dstStep, dstWidth)) return kelStsStepErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    const Target<Kel8u> dst(pDst, dstStep);
    switch (interpolation) {
        case Horizontal:
            widen(src, size, dst);
            return kelStsNoErr;
        case Vertical:
            heighten(src, size, dst);
            return kelStsNoErr;
        case Both:
            upsampleClipped<DividedDown>(src, size, 8, dst);
            return kelStsNoErr;
        default:
            return kelStsRangeErr;
    }
}

// ---- reduced resolution -----------------------------------------------------------------

// ITU-T H.263 Q.6; the corners are copies, which rounding towards zero would not leave them for values below
// 0.
KelStatus keliUpsampleFour8x8_H263_16s_C1R(const Kel16s *pSrc, int srcStep, Kel16s *pDst, int dstStep) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (anyTooNarrow<Kel16s>(srcStep, 8, dstStep, 16)) return kelStsStepErr;
    const Samples<Kel16s> src(pSrc, srcStep);
    const Target<Kel16s> dst(pDst, dstStep);
    upsampleClipped<DividedTowardsZero>(src, KeliSize{8, 8}, 8, dst);
    for (int corner = 0; corner < 4; ++corner) {
        const int row = corner / 2, col = corner % 2;
        dst.set(15 * row, 15 * col, src(7 * row, 7 * col));
    }
    return kelStsNoErr;
}

// resizerotate.cpp - reduction of a 4:2:2 picture, its conversion to 16-bit pixels and rotation.

#include "kelvc.h"
#include "turnedpicture.h"
#include "wholepicture.h"

#include <algorithm>

using namespace kelvara;

namespace {

enum Interpolation { Nearest = 1, Linear = 2 };
enum Conversion { ToBGR565, ToBGR555 };

// Rows of Cb Y Cr Y.
struct Source {
    const Kel8u *p;
    std::ptrdiff_t step;
    KeliSize size;
};

struct Colour {
    int y, cb, cr;
};

// ---- reduction --------------------------------------------------------------------

// A row of the reduced picture. Factors are even, so that the first column of a pixel is one with chroma.
template <int zoom>
class NearestRow {
public:
    NearestRow(const Source &src, int row) : m_row(src.p + row * zoom * src.step) {}

    Colour operator()(int col) const {
        const Kel8u *p = m_row + 2 * zoom * static_cast<std::ptrdiff_t>(col);
        return {p[1], p[0], p[2]};
    }

private:
    const Kel8u *m_row;
};

// The middle of a pixel lies halfway between two rows and two columns, and a column of chroma, which stands
// at every second one, a quarter or three quarters away.
template <int zoom>
class LinearRow {
public:
    LinearRow(const Source &src, int row)
        : m_upper(src.p + (row * zoom + zoom / 2 - 1) * src.step),
          m_lower(m_upper + src.step),
          m_lastPair(src.size.width / 2 - 1) {}

    Colour operator()(int col) const {
        const std::ptrdiff_t luma = 2 * (col * zoom + zoom / 2 - 1) + 1;
        const int y = (bothRows(luma) + bothRows(luma + 2) + 2) >> 2;
        const int pair = (2 * zoom * col + zoom - 1) >> 2;
        const std::ptrdiff_t left = 4 * pair, right = 4 * (pair < m_lastPair ? pair + 1 : m_lastPair);
        return {y, chroma(left, right), chroma(left + 2, right + 2)};
    }

private:
    int bothRows(std::ptrdiff_t i) const { return m_upper[i] + m_lower[i]; }
    int chroma(std::ptrdiff_t left, std::ptrdiff_t right) const {
        constexpr int quarters = (zoom - 1) & 3;
        return ((4 - quarters) * bothRows(left) + quarters * bothRows(right) + 4) >> 3;
    }

    const Kel8u *m_upper, *m_lower;
    int m_lastPair;
};

// ---- conversion -------------------------------------------------------------------

// ITU-R BT.601, coefficients in 1/256
inline int limited(int value) {
    return std::clamp((value + 128) >> 8, 0, 255);
}

template <int greenBits>
inline int toPixel(Colour colour) {
    const int y = 298 * (colour.y - 16), cb = colour.cb - 128, cr = colour.cr - 128;
    const int red = limited(y + 409 * cr);
    const int green = limited(y - 100 * cb - 208 * cr);
    const int blue = limited(y + 516 * cb);
    return red >> 3 << (5 + greenBits) | green >> (8 - greenBits) << 5 | blue >> 3;
}

// ---- the whole picture ------------------------------------------------------------

template <class Row, int greenBits>
void convert(const Source &src, const TurnedPicture<Kel16u> &dst, KeliSize size) {
    for (int y = 0; y < size.height; ++y) {
        const Row row(src, y);
        dst.setRow(y, size.width, [&](int x) { return toPixel<greenBits>(row(x)); });
    }
}

template <int zoom>
void resize(const Source &src, const TurnedPicture<Kel16u> &dst, KeliSize size, int interpolation,
            int conversion) {
    if (interpolation == Nearest) {
        if (conversion == ToBGR565) return convert<NearestRow<zoom>, 6>(src, dst, size);
        return convert<NearestRow<zoom>, 5>(src, dst, size);
    }
    if (conversion == ToBGR565) return convert<LinearRow<zoom>, 6>(src, dst, size);
    return convert<LinearRow<zoom>, 5>(src, dst, size);
}

bool isZoomFactor(int zoom) {
    return zoom == 2 || zoom == 4 || zoom == 8;
}

bool areModes(int interpolation, int conversion, int rotation) {
    return (interpolation == Nearest || interpolation == Linear) &&
           (conversion == ToBGR565 || conversion == ToBGR555) && isRotation(rotation);
}

} // namespace

// The size and the step of the destination are judged by the factor and the rotation, so that unknown ones
// stand for none; they are refused thereafter.
KelStatus keliResizeCCRotate_8u_C2R(const Kel8u *pSrc, int srcStep, KeliSize srcSize, Kel16u *pDst,
                                    int dstStep, int zoomFactor, int interpolation, int colorConversion,
                                    int rotation) {
    if (anyNull(pSrc) || anyNull(pDst)) return kelStsNullPtrErr;
    const int zoom = isZoomFactor(zoomFactor) ? zoomFactor : 1;
    const KeliSize size = {srcSize.width / zoom, srcSize.height / zoom};
    if (!isPictureSize(srcSize) || srcSize.width % 2 != 0 || !isPictureSize(size)) return kelStsSizeErr;
    const bool narrow = tooNarrow<Kel16u>(dstStep, turnedSize(size, rotation).width);
    if (tooNarrow<Kel8u>(srcStep, 2 * srcSize.width) || narrow) return kelStsStepErr;
    if (zoom == 1 || !areModes(interpolation, colorConversion, rotation)) return kelStsRangeErr;
    const Source src = {pSrc, srcStep, srcSize};
    const TurnedPicture<Kel16u> dst(pDst, dstStep, size, rotation);
    if (zoom == 2) resize<2>(src, dst, size, interpolation, colorConversion);
    if (zoom == 4) resize<4>(src, dst, size, interpolation, colorConversion);
    if (zoom == 8) resize<8>(src, dst, size, interpolation, colorConversion);
    return kelStsNoErr;
}

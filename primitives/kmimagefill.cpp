// kmimagefill.cpp - fills of images, row by row, and the pattern of rings.

#include "kmfill.h"
#include "kmimage.h"

// ---- rows --------------------------------------------------------------------

void kmImage::setConst() {
    kmVector::setConst();
}

void kmImage::setConst(double re, double im) {
    int rows = getNumRows(), len = getRowLen();
    for (int row = 0; row < rows; ++row) setDataConst(getRowPointer(row), len, re, im);
}

void kmImage::setSequence(double a, double b) {
    kmVector::setSequence(a, b);
}

void kmImage::setSequence(double low, double high, double step, bool wrap) {
    int rows = getNumRows(), len = getRowLen();
    for (int row = 0; row < rows; ++row) {
        setDataSequence(getRowPointer(row), len, low, high, step, wrap ? 1.0 : 0.0);
    }
}

void kmImage::setRandom() {
    kmVector::setRandom();
}

void kmImage::setRandom(double low, double high) {
    int rows = getNumRows(), len = getRowLen();
    for (int row = 0; row < rows; ++row) setDataRandom(getRowPointer(row), len, low, high);
}

// ---- rings -------------------------------------------------------------------

namespace {

// A chirp around the middle. It runs up to offset + 2 * magn: in unsigned types the upper half of its range
// wraps around. pixStep counts components, step bytes.
template <class T>
void setRealJaehne(unsigned char *data, int w, int h, int pixStep, int step, double magn, double offset) {
    for (int y = 0; y < h; ++y, data += step) {
        for (int x = 0; x < w; ++x) {
            double dy = y - (h - 1) * 0.5, dx = x - 0.5 * (w - 1);
            double v = (sin((dx * dx + dy * dy) * 6.283185307179586 / (h * 4.0)) + 1.0) * magn + offset;
            kmStore(data, static_cast<long long>(x) * pixStep, kmConvert<T>(v));
        }
    }
}

} // namespace

void kmImage::setJaehne() {
    kmVector::setJaehne();
}

void kmImage::setJaehne(double magn) {
    if (!m_data) return;
    int n = numChannels(m_func), bytes = item(m_func);
    bool planar = isPlane(m_func), pairs = m_type & kmTypeComplex;
    int pixStep = (planar ? 1 : n) * (pairs ? 2 : 1);
    unsigned char *channel = m_data;
    for (int c = 0; c < n; ++c, channel += planar ? planeSize() : bytes) {
        setPlaneJaehne(channel, pixStep, magn);
        if (pairs) setPlaneJaehne(channel + bytes / 2, pixStep, magn);
    }
}

void kmImage::setPlaneJaehne(unsigned char *data, int pixStep, double magn) {
    double offset = 0.0;
    if (!updateJaehneMagn(magn, offset)) return;
    kmForType(m_type, [&](auto component, int) {
        using T = typename decltype(component)::type;
        setRealJaehne<T>(data, m_width, m_height, pixStep, m_step, magn, offset);
    });
}

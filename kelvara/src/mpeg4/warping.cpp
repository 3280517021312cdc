// warping.cpp - the mappings of ISO/IEC 14496-2 7.8.4 and 7.8.5.

#include "warping.h"

#include <algorithm>
#include <cstring>

namespace kelvara {

namespace {

// ---- arithmetic ---------------------------------------------------------------------

// The smallest n with 2^n >= size.
int exponentOf(int size) {
    int n = 0;
    while (1 << n < size) ++n;
    return n;
}

long long halfOf(int shift) {
    return shift > 0 ? 1LL << (shift - 1) : 0;
}

// "//": to the nearest, halves away from zero.
long long nearest(long long value, long long divisor) {
    const long long magnitude = ((value < 0 ? -value : value) * 2 + divisor) / (2 * divisor);
    return value < 0 ? -magnitude : magnitude;
}

Wide flooredQuotient(Wide value, Wide divisor) {
    const Wide quotient = value / divisor;
    return value % divisor < 0 ? quotient - 1 : quotient;
}

// ---- points -------------------------------------------------------------------------

struct Point {
    long long x, y;
};

// 7.8.4: the corners of the picture, each with the sum of the differentials on its way, in the units of the
// sprite.
void referencePoints(const WarpSpec &spec, const int *pDU, const int *pDV, Point points[4]) {
    const KeliRect &rect = spec.picture;
    int du[4] = {}, dv[4] = {};
    std::copy_n(pDU, spec.points, du);
    std::copy_n(pDV, spec.points, dv);
    const int alongU[4] = {du[0], du[0] + du[1], du[0] + du[2], du[0] + du[1] + du[2] + du[3]};
    const int alongV[4] = {dv[0], dv[0] + dv[1], dv[0] + dv[2], dv[0] + dv[1] + dv[2] + dv[3]};
    for (int n = 0; n < 4; ++n) {
        const int x = rect.x + (n & 1 ? rect.width : 0), y = rect.y + (n & 2 ? rect.height : 0);
        points[n] = {spec.unit() / 2 * (2LL * x + alongU[n]), spec.unit() / 2 * (2LL * y + alongV[n])};
    }
}

// 7.8.5: the coordinate of a virtual point in 1/16 sample. It lies on the line from the first point to the
// second, at a power of two in place of the length; r makes 1/16 of the units. start is the coordinate of the
// picture's first corner, and ahead the length if it grows along that line, else 0.
struct Edge {
    long long length, power, r;

    long long virtualPoint(long long start, bool ahead, long long first, long long second) const {
        const long long end = start + (ahead ? length : 0);
        return 16 * (start + (ahead ? power : 0)) +
               nearest((length - power) * (r * first - 16 * start) + power * (r * second - 16 * end), length);
    }
};

// ---- linear mappings ------------------------------------------------------------------

// One coordinate of both planes; right and down are what it grows by, times 2^shift. A chroma sample lies
// between four luma samples.
void setLinear(Linear &luma, Linear &chroma, long long right, long long down, long long start, int shift,
               int unit) {
    luma = {right, down, start * (1LL << shift) + halfOf(shift), shift};
    chroma = {4 * right, 4 * down, right + down + (2 * start - unit) * (1LL << shift) + halfOf(shift + 2),
              shift + 2};
}

// Without a slope chroma moves as in block compensation: odd halves become half samples.
void setTranslation(WarpSpec &spec, Point p) {
    const int unit = spec.unit();
    const auto halved = [](long long value) { return (value >> 1) | (value & 1); };
    spec.luma.x = {unit, 0, p.x, 0};
    spec.luma.y = {0, unit, p.y, 0};
    spec.chroma.x = {unit, 0, halved(p.x), 0};
    spec.chroma.y = {0, unit, halved(p.y), 0};
}

void setLinearMappings(WarpSpec &spec, const Point p[4]) {
    const int alpha = exponentOf(spec.picture.width), beta = exponentOf(spec.picture.height);
    const int rho = 3 - spec.accuracy;
    const long long r = 1LL << rho, x0 = spec.picture.x, y0 = spec.picture.y;
    const Edge top = {spec.picture.width, 1LL << alpha, r}, left = {spec.picture.height, 1LL << beta, r};
    const Point across = {top.virtualPoint(x0, true, p[0].x, p[1].x) - r * p[0].x,
                          top.virtualPoint(y0, false, p[0].y, p[1].y) - r * p[0].y};
    Mapping &luma = spec.luma, &chroma = spec.chroma;
    if (spec.points == 2) { // a rotation, perhaps with a change of size
        setLinear(luma.x, chroma.x, across.x, -across.y, p[0].x, alpha + rho, spec.unit());
        setLinear(luma.y, chroma.y, across.y, across.x, p[0].y, alpha + rho, spec.unit());
        return;
    }
    const Point along = {left.virtualPoint(x0, false, p[0].x, p[2].x) - r * p[0].x,
                         left.virtualPoint(y0, true, p[0].y, p[2].y) - r * p[0].y};
    const int shift = alpha + beta + rho;
    setLinear(luma.x, chroma.x, across.x * left.power, along.x * top.power, p[0].x, shift, spec.unit());
    setLinear(luma.y, chroma.y, across.y * left.power, along.y * top.power, p[0].y, shift, spec.unit());
}

// ---- perspective ------------------------------------------------------------------------

// The form at the place of a chroma sample, with (4 * col + 1) for twice a luma column, times `times` / 2.
Form atChroma(const Form &f, int times) {
    return {times * 4 * f.right, times * 4 * f.down, times * (f.right + f.down + 2 * f.origin)};
}

Quotient chromaOf(const Quotient &luma, int unit) {
    const Form n = atChroma(luma.numerator, 2), d = atChroma(luma.divisor, unit);
    return {{n.right - d.right, n.down - d.down, n.origin - d.origin}, atChroma(luma.divisor, 4)};
}

void setPerspective(WarpSpec &spec, const Point p[4]) {
    const Wide w = spec.picture.width, h = spec.picture.height;
    const Wide x13 = p[1].x - p[3].x, y13 = p[1].y - p[3].y, x23 = p[2].x - p[3].x, y23 = p[2].y - p[3].y;
    const Wide x = p[0].x - p[1].x - p[2].x + p[3].x, y = p[0].y - p[1].y - p[2].y + p[3].y;
    const Wide area = x13 * y23 - x23 * y13;
    const Form divisor = {(x * y23 - x23 * y) * h, (x13 * y - x * y13) * w, area * w * h};
    const auto quotient = [&](long long p0, long long p1, long long p2) {
        const Form numerator = {area * (p1 - p0) * h + divisor.right * p1,
                                area * (p2 - p0) * w + divisor.down * p2, area * p0 * w * h};
        return Quotient{numerator, divisor};
    };
    spec.luma.px = quotient(p[0].x, p[1].x, p[2].x);
    spec.luma.py = quotient(p[0].y, p[1].y, p[2].y);
    spec.chroma.px = chromaOf(spec.luma.px, spec.unit());
    spec.chroma.py = chromaOf(spec.luma.py, spec.unit());
    spec.luma.perspective = spec.chroma.perspective = true;
}

} // namespace

// A position that far outside is that of the sprite's edge anyhow.
int Quotient::at(int col, int row) const {
    Wide value = numerator.at(col, row), by = divisor.at(col, row);
    if (by < 0) {
        value = -value;
        by = -by;
    }
    const Wide limit = 1 << 28;
    return static_cast<int>(std::clamp<Wide>(flooredQuotient(2 * value + by, 2 * by), -limit, limit));
}

bool WarpSpec::keepsSide(int x, int y, int width, int height) const {
    if (!luma.perspective) return true;
    const Form &divisor = luma.px.divisor;
    const Wide corners[4] = {divisor.at(x, y), divisor.at(x + width, y), divisor.at(x, y + height),
                             divisor.at(x + width, y + height)};
    return *std::min_element(corners, corners + 4) > 0 || *std::max_element(corners, corners + 4) < 0;
}

void setMappings(WarpSpec &spec, const int *pDU, const int *pDV) {
    Point points[4];
    referencePoints(spec, pDU, pDV, points);
    if (spec.points < 2) return setTranslation(spec, points[0]);
    if (spec.points < 4) return setLinearMappings(spec, points);
    setPerspective(spec, points);
}

bool loadSpec(const KeliWarpSpec_MPEG4 *pSpec, WarpSpec &spec) {
    std::memcpy(&spec, static_cast<const void *>(pSpec), sizeof spec);
    return spec.mark == WarpSpec::made;
}

} // namespace kelvara

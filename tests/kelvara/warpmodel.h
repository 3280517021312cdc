// warpmodel.h - descriptions of MPEG-4 warpings for the golden tests, and the mappings of the standard in
// floating point.

#ifndef KELVARA_WARPMODEL_H
#define KELVARA_WARPMODEL_H

#include "kelvc_mpeg4.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

struct Setting {
    std::vector<int> du, dv; // as many as there are points
    int accuracy;
    KeliRect sprite, picture;
    int type = 1, rounding = 0, quarterSample = 0, fcode = 7;

    int points() const { return static_cast<int>(du.size()); }
    int s() const { return 2 << accuracy; }
};

// A description in memory of exactly its size, at an odd address.
class Spec {
public:
    explicit Spec(const Setting &setting) : m_bytes(size(), 1), m_status(init(setting)) {}

    KeliWarpSpec_MPEG4 *get() { return reinterpret_cast<KeliWarpSpec_MPEG4 *>(m_bytes.data()); }
    KelStatus status() const { return m_status; }
    bool untouched() const { return m_bytes.untouched(); }
    bool surroundingsIntact() const { return m_bytes.surroundingsIntact(); }

    static int size() {
        int bytes = 0;
        EXPECT_EQ(kelStsNoErr, keliWarpGetSize_MPEG4(&bytes));
        EXPECT_GT(bytes, 0);
        return bytes;
    }

private:
    KelStatus init(const Setting &t) {
        const int none = 0;
        return keliWarpInit_MPEG4(get(), t.du.empty() ? &none : t.du.data(),
                                  t.dv.empty() ? &none : t.dv.data(), t.points(), t.type, t.accuracy,
                                  t.rounding, t.quarterSample, t.fcode, &t.sprite, &t.picture);
    }

    Destination<unsigned char> m_bytes;
    KelStatus m_status;
};

// ---- the formulas -----------------------------------------------------------------------

using Real = long double; // 64 bits: exact for the numerators of these tests

inline Real upwards(Real value) { // "///"
    return std::floor(value + 0.5L);
}

// 7.8.4 and 7.8.5, letter by letter. I and J count from the picture's first sample.
struct Model {
    explicit Model(const Setting &t)
        : n(t.points()), s(t.s()), r(16 / s), W(t.picture.width), H(t.picture.height) {
        i0 = t.picture.x;
        j0 = t.picture.y;
        Real du[4] = {}, dv[4] = {};
        std::copy(t.du.begin(), t.du.end(), du);
        std::copy(t.dv.begin(), t.dv.end(), dv);
        i0s = s / 2 * (2 * i0 + du[0]);
        j0s = s / 2 * (2 * j0 + dv[0]);
        i1s = s / 2 * (2 * (i0 + W) + du[1] + du[0]);
        j1s = s / 2 * (2 * j0 + dv[1] + dv[0]);
        i2s = s / 2 * (2 * i0 + du[2] + du[0]);
        j2s = s / 2 * (2 * (j0 + H) + dv[2] + dv[0]);
        i3s = s / 2 * (2 * (i0 + W) + du[3] + du[2] + du[1] + du[0]);
        j3s = s / 2 * (2 * (j0 + H) + dv[3] + dv[2] + dv[1] + dv[0]);
        while (Wp < W) Wp *= 2;
        while (Hp < H) Hp *= 2;
        i1v = 16 * (i0 + Wp) +
              std::round(((W - Wp) * (r * i0s - 16 * i0) + Wp * (r * i1s - 16 * (i0 + W))) / W);
        j1v = 16 * j0 + std::round(((W - Wp) * (r * j0s - 16 * j0) + Wp * (r * j1s - 16 * j0)) / W);
        i2v = 16 * i0 + std::round(((H - Hp) * (r * i0s - 16 * i0) + Hp * (r * i2s - 16 * i0)) / H);
        j2v = 16 * (j0 + Hp) +
              std::round(((H - Hp) * (r * j0s - 16 * j0) + Hp * (r * j2s - 16 * (j0 + H))) / H);
        D = (i1s - i3s) * (j2s - j3s) - (i2s - i3s) * (j1s - j3s);
        g = ((i0s - i1s - i2s + i3s) * (j2s - j3s) - (i2s - i3s) * (j0s - j1s - j2s + j3s)) * H;
        h = ((i1s - i3s) * (j0s - j1s - j2s + j3s) - (i0s - i1s - i2s + i3s) * (j1s - j3s)) * W;
        a = D * (i1s - i0s) * H + g * i1s;
        b = D * (i2s - i0s) * W + h * i2s;
        c = D * i0s * W * H;
        d = D * (j1s - j0s) * H + g * j1s;
        e = D * (j2s - j0s) * W + h * j2s;
        f = D * j0s * W * H;
    }

    Real F(Real I, Real J) const {
        if (n == 0) return s * (i0 + I);
        if (n == 1) return i0s + s * I;
        if (n == 2) return i0s + upwards(((-r * i0s + i1v) * I + (r * j0s - j1v) * J) / (Wp * r));
        if (n == 3)
            return i0s + upwards(((-r * i0s + i1v) * Hp * I + (-r * i0s + i2v) * Wp * J) / (Wp * Hp * r));
        return upwards((a * I + b * J + c) / (g * I + h * J + D * W * H));
    }
    Real G(Real I, Real J) const {
        if (n == 0) return s * (j0 + J);
        if (n == 1) return j0s + s * J;
        if (n == 2) return j0s + upwards(((-r * j0s + j1v) * I + (-r * i0s + i1v) * J) / (Wp * r));
        if (n == 3)
            return j0s + upwards(((-r * j0s + j1v) * Hp * I + (-r * j0s + j2v) * Wp * J) / (Wp * Hp * r));
        return upwards((d * I + e * J + f) / (g * I + h * J + D * W * H));
    }
    Real Fc(Real I, Real J) const { return chroma(I, J, i0, i0s, i1v, i2v, r * j0s - j1v, a, b, c, I); }
    Real Gc(Real I, Real J) const {
        // The second of two points turns: x and y change places and one its sign.
        if (n == 2)
            return upwards(((-r * j0s + j1v) * (4 * I + 1) + (-r * i0s + i1v) * (4 * J + 1) +
                            2 * Wp * r * j0s - 16 * Wp) /
                           (4 * Wp * r));
        return chroma(I, J, j0, j0s, j1v, j2v, 0, d, e, f, J);
    }

    int n;
    Real s, r, W, H, Wp = 1, Hp = 1;
    Real i0, j0, i0s, j0s, i1s, j1s, i2s, j2s, i3s, j3s, i1v, j1v, i2v, j2v;
    Real D, g, h, a, b, c, d, e, f;

private:
    // A luma vector of one point becomes one of chroma by Table 7-9: quarters become halves.
    static Real halved(Real value) {
        const Real whole = std::floor(value / 4) * 4, rest = value - whole;
        return whole / 2 + (rest == 0 ? 0 : 1);
    }

    Real chroma(Real I, Real J, Real first, Real p0, Real v1, Real v2, Real turned, Real x, Real y, Real z,
                Real own) const {
        const Real X = 4 * I + 1, Y = 4 * J + 1;
        if (n == 0) return s * (first / 2 + own);
        if (n == 1) return halved(p0) + s * own;
        if (n == 2)
            return upwards(((-r * p0 + v1) * X + turned * Y + 2 * Wp * r * p0 - 16 * Wp) / (4 * Wp * r));
        if (n == 3)
            return upwards(
                ((-r * p0 + v1) * Hp * X + (-r * p0 + v2) * Wp * Y + 2 * Wp * Hp * r * p0 - 16 * Wp * Hp) /
                (4 * Wp * Hp * r));
        const Real divisor = g * X + h * Y + 2 * D * W * H;
        return upwards((2 * x * X + 2 * y * Y + 4 * z - divisor * s) / (4 * divisor));
    }
};

// ---- settings ---------------------------------------------------------------------------

const KeliRect square = {0, 0, 16, 16};
const KeliRect wide = {0, 0, 64, 64};

inline std::vector<int> differentials(std::mt19937 &generator, int points, int most) {
    std::vector<int> values;
    for (int i = 0; i < points; ++i) values.push_back(static_cast<int>(generator() % (2 * most + 1)) - most);
    return values;
}

inline Setting randomSetting(std::mt19937 &generator, int points) {
    const auto even = [&](int low, int high) {
        return low + 2 * static_cast<int>(generator() % static_cast<unsigned>((high - low) / 2 + 1));
    };
    const auto size = [&] { return 17 + static_cast<int>(generator() % 40); };
    Setting t;
    t.picture = {even(-40, 40), even(-40, 40), size(), size()};
    t.sprite = {t.picture.x + even(-10, 10), t.picture.y + even(-10, 10), size() + 8, size() + 8};
    // Four corners that move by less than a quarter of a side never turn over.
    t.du = differentials(generator, points, points == 4 ? 4 : 60);
    t.dv = differentials(generator, points, points == 4 ? 4 : 60);
    t.accuracy = static_cast<int>(generator() % 4);
    t.rounding = static_cast<int>(generator() % 2);
    return t;
}

#endif

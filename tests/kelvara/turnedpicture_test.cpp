// turnedpicture_test.cpp - reduction to 16-bit pixels and rotation of pictures against models.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

// ---- rotation -------------------------------------------------------------------------

struct Place {
    int row, col;
};

// Where a sample of a picture goes: quarter turns to the left, one after the other.
Place turned(Place at, KeliSize size, int rotation) {
    static const int quarters[] = {0, 1, 3, 2};
    for (int i = 0; i < quarters[rotation]; ++i) {
        at = {size.width - 1 - at.col, at.row};
        size = {size.height, size.width};
    }
    return at;
}

KeliSize turned(KeliSize size, int rotation) {
    return rotation == 1 || rotation == 2 ? KeliSize{size.height, size.width} : size;
}

// A destination plane in whose rows some elements are left over.
template <class T>
struct TurnedPlane {
    TurnedPlane(KeliSize before, int code, int slackBytes)
        : size(before),
          rotation(code),
          width(turned(before, code).width),
          height(turned(before, code).height),
          step(width * static_cast<int>(sizeof(T)) + slackBytes),
          bytes((height - 1) * step + width * static_cast<int>(sizeof(T)), 1) {}

    T *data() { return reinterpret_cast<T *>(bytes.data()); }

    // value(row, col) is the model by the place before rotation; bytes behind the rows stay.
    template <class Value>
    void expect(const Value &value) const {
        EXPECT_TRUE(bytes.surroundingsIntact());
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) {
                const Place to = turned(Place{row, col}, size, rotation);
                ASSERT_EQ(value(row, col), at(to)) << "row " << row << ", column " << col;
            }
        }
        for (int row = 0; row + 1 < height; ++row) {
            for (int i = row * step + width * static_cast<int>(sizeof(T)); i < (row + 1) * step; ++i)
                ASSERT_EQ(0xA5, bytes[i]);
        }
    }

    int at(Place place) const {
        const int i = place.row * step + place.col * static_cast<int>(sizeof(T));
        return sizeof(T) == 1 ? bytes[i] : bytes[i] + 256 * bytes[i + 1];
    }

    KeliSize size;
    int rotation, width, height, step;
    Destination<Kel8u> bytes;
};

const Pattern patterns[] = {noise(1, 255), noise(2, 255), constant(0), constant(255), checkerboard(255)};

// ---- reduction --------------------------------------------------------------------------

int floorQuotient(int dividend, int divisor) {
    return static_cast<int>(std::floor(static_cast<double>(dividend) / divisor));
}

struct Colour {
    double y, cb, cr;
};

// The picture as a function of any place, by bilinear interpolation between the samples of each component;
// those of chroma stand at every second column. Beyond the border stands the nearest sample.
class Interpolated {
public:
    Interpolated(const Source<Kel8u> &src, KeliSize size) : m_src(src), m_size(size) {}

    Colour operator()(double row, double col) const {
        return {component(row, col, m_size.width, 2, 1), component(row, col / 2, m_size.width / 2, 4, 0),
                component(row, col / 2, m_size.width / 2, 4, 2)};
    }

private:
    double component(double row, double col, int width, int distance, int first) const {
        const int top = static_cast<int>(std::floor(row)), left = static_cast<int>(std::floor(col));
        double sum = 0;
        for (int i = 0; i < 4; ++i) {
            const int y = top + i / 2, x = left + i % 2;
            const double weight = (1 - std::abs(row - y)) * (1 - std::abs(col - x));
            const int inside = std::clamp(y, 0, m_size.height - 1);
            sum += weight * m_src(inside, std::clamp(x, 0, width - 1) * distance + first);
        }
        return std::floor(sum + 0.5);
    }

    const Source<Kel8u> &m_src;
    KeliSize m_size;
};

Colour reduced(const Source<Kel8u> &src, KeliSize size, int zoom, int interpolation, int row, int col) {
    const double middle = interpolation == 2 ? (zoom - 1) / 2.0 : 0.0;
    return Interpolated(src, size)(row * zoom + middle, col * zoom + middle);
}

int pixelModel(Colour colour, int conversion) {
    const int y = static_cast<int>(colour.y) - 16, cb = static_cast<int>(colour.cb) - 128;
    const int cr = static_cast<int>(colour.cr) - 128;
    const auto limited = [](int sum) { return std::clamp(floorQuotient(sum + 128, 256), 0, 255); };
    const int r = limited(298 * y + 409 * cr), g = limited(298 * y - 100 * cb - 208 * cr);
    const int b = limited(298 * y + 516 * cb);
    return conversion == 0 ? r / 8 * 2048 + g / 4 * 32 + b / 8 : r / 8 * 1024 + g / 8 * 32 + b / 8;
}

void expectReduced(KeliSize size, int zoom, const Pattern &pattern, int slack) {
    Source<Kel8u> src(size.height, 2 * size.width, 2 * size.width + slack);
    src.fill(pattern);
    for (int mode = 0; mode < 16; ++mode) {
        const int interpolation = 1 + mode % 2, conversion = mode / 2 % 2, rotation = mode / 4;
        SCOPED_TRACE(testing::Message()
                     << size.width << "x" << size.height << ", factor " << zoom << ", interpolation "
                     << interpolation << ", conversion " << conversion << ", rotation " << rotation);
        TurnedPlane<Kel16u> dst({size.width / zoom, size.height / zoom}, rotation, slack);
        ASSERT_EQ(kelStsNoErr, keliResizeCCRotate_8u_C2R(src.data(), src.step(), size, dst.data(), dst.step,
                                                         zoom, interpolation, conversion, rotation));
        dst.expect([&](int row, int col) {
            return pixelModel(reduced(src, size, zoom, interpolation, row, col), conversion);
        });
    }
}

// ---- 4:2:2 -------------------------------------------------------------------------------

// Three planes of a 4:2:0 picture that is turned.
struct TurnedPlanes {
    TurnedPlanes(KeliSize size, int rotation, int slack)
        : y(size, rotation, slack),
          cb({size.width / 2, size.height / 2}, rotation, slack),
          cr({size.width / 2, size.height / 2}, rotation, slack + 1),
          data{y.data(), cb.data(), cr.data()},
          steps{y.step, cb.step, cr.step} {}

    bool untouched() const { return y.bytes.untouched() && cb.bytes.untouched() && cr.bytes.untouched(); }

    TurnedPlane<Kel8u> y, cb, cr;
    Kel8u *data[3];
    int steps[3];
};

template <class Chroma>
void expectHalved(const TurnedPlane<Kel8u> &plane, const Chroma &chroma) {
    plane.expect([&](int row, int col) {
        return static_cast<int>(std::floor((chroma(2 * row, col) + chroma(2 * row + 1, col)) / 2.0 + 0.5));
    });
}

const KeliSize pictures[] = {{2, 2}, {64, 4}, {6, 34}, {36, 22}};

} // namespace

TEST(KelvaraResizeCCRotate, IsTheModelForEveryMode) {
    for (int zoom : {2, 4, 8}) {
        for (const Pattern &pattern : patterns) {
            expectReduced({zoom, zoom}, zoom, pattern, 0);
            expectReduced({48, 24}, zoom, pattern, 3);
        }
    }
}

// What does not fill a pixel at the right and at the bottom is left out.
TEST(KelvaraResizeCCRotate, RestsAreLeftOut) {
    for (int zoom : {2, 4, 8}) {
        expectReduced({4 * zoom - 2, 3 * zoom - 1}, zoom, patterns[0], 1);
        expectReduced({2 * zoom + 2, 2 * zoom + 1}, zoom, patterns[1], 0);
    }
}

// Black, white and the bars of ITU-R BT.601 at full colour are what they should be.
TEST(KelvaraResizeCCRotate, ColoursAreThoseOfTheStandard) {
    const struct {
        int y, cb, cr, pixel565, pixel555;
    } bars[] = {{16, 128, 128, 0x0000, 0x0000}, {235, 128, 128, 0xFFFF, 0x7FFF},
                {82, 90, 240, 0xF800, 0x7C00},  {145, 54, 34, 0x07E0, 0x03E0},
                {41, 240, 110, 0x001F, 0x001F}, {0, 0, 0, 0x0420, 0x0200}};
    for (const auto &bar : bars) {
        Source<Kel8u> src(2, 4, 4);
        src.fill([&](int, int col) { return col % 2 == 1 ? bar.y : col == 0 ? bar.cb : bar.cr; });
        for (int interpolation : {1, 2}) {
            Kel16u pixel = 0;
            EXPECT_EQ(kelStsNoErr,
                      keliResizeCCRotate_8u_C2R(src.data(), 4, {2, 2}, &pixel, 2, 2, interpolation, 0, 0));
            EXPECT_EQ(bar.pixel565, pixel) << bar.y;
            EXPECT_EQ(kelStsNoErr,
                      keliResizeCCRotate_8u_C2R(src.data(), 4, {2, 2}, &pixel, 2, 2, interpolation, 1, 0));
            EXPECT_EQ(bar.pixel555, pixel) << bar.y;
        }
    }
}

// The real matrix in double precision, before the low bits go.
TEST(KelvaraResizeCCRotate, ThePixelIsAtMostOneStepFromTheRealMatrix) {
    const Pattern random = noise(9, 255);
    for (int i = 0; i < 5000; ++i) {
        const Kel8u cb = random(0, 0), y = random(0, 0), cr = random(0, 0);
        const Kel8u src[8] = {cb, y, cr, y, cb, y, cr, y};
        Kel16u pixel = 0;
        ASSERT_EQ(kelStsNoErr, keliResizeCCRotate_8u_C2R(src, 4, {2, 2}, &pixel, 2, 2, 1, 0, 0));
        const double luma = 255 / 219.0 * (y - 16), b = cb - 128, r = cr - 128, scale = 255 / 112.0;
        const double red = luma + 0.701 * scale * r, blue = luma + 0.886 * scale * b;
        const double green = luma - 0.886 * 0.114 / 0.587 * scale * b - 0.701 * 0.299 / 0.587 * scale * r;
        const auto expectNear = [&](double value, int bits, int shift) {
            const double expected = std::clamp(value, 0.0, 255.0) / (256 >> bits);
            const int got = pixel >> shift & ((1 << bits) - 1);
            ASSERT_NEAR(expected, got + 0.5, 0.5 + 1.0 / (1 << (8 - bits)))
                << int(y) << " " << int(cb) << " " << int(cr);
        };
        expectNear(red, 5, 11), expectNear(green, 6, 5), expectNear(blue, 5, 0);
    }
}

TEST(KelvaraResizeCCRotate, BadArgumentsAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(8, 32, 32);
    src.fill(noise(1, 255));
    Destination<Kel16u> dst(32);
    const Kel8u *s = src.data();
    Kel16u *d = dst.data();
    const auto call = [](const Kel8u *from, int srcStep, KeliSize size, Kel16u *to, int dstStep, int zoom,
                         int interpolation, int conversion, int rotation) {
        return keliResizeCCRotate_8u_C2R(from, srcStep, size, to, dstStep, zoom, interpolation, conversion,
                                         rotation);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 32, {16, 8}, d, 16, 2, 1, 0, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(s, 32, {16, 8}, nullptr, 16, 2, 1, 0, 0));
    for (KeliSize size :
         {KeliSize{0, 8}, {16, 0}, {-16, 8}, {15, 8}, {16386, 8}, {16, 16385}, {2, 8}, {16, 3}})
        EXPECT_EQ(kelStsSizeErr, call(s, 32, size, d, 16, 4, 1, 0, 0)) << size.width << "x" << size.height;
    EXPECT_EQ(kelStsStepErr, call(s, 31, {16, 8}, d, 16, 2, 1, 0, 0));
    EXPECT_EQ(kelStsStepErr, call(s, 32, {16, 8}, d, 15, 2, 1, 0, 0));
    EXPECT_EQ(kelStsStepErr, call(s, 32, {16, 8}, d, 7, 2, 1, 0, 1));
    EXPECT_EQ(kelStsStepErr, call(s, 32, {16, 8}, d, 7, 2, 1, 0, 2));
    for (int zoom : {-2, 0, 1, 3, 16}) EXPECT_EQ(kelStsRangeErr, call(s, 32, {16, 8}, d, 64, zoom, 1, 0, 0));
    for (int interpolation : {0, 3})
        EXPECT_EQ(kelStsRangeErr, call(s, 32, {16, 8}, d, 16, 2, interpolation, 0, 0));
    for (int conversion : {-1, 2})
        EXPECT_EQ(kelStsRangeErr, call(s, 32, {16, 8}, d, 16, 2, 1, conversion, 0));
    for (int rotation : {-1, 4}) EXPECT_EQ(kelStsRangeErr, call(s, 32, {16, 8}, d, 16, 2, 1, 0, rotation));
    EXPECT_TRUE(dst.untouched());
}

TEST(KelvaraRotate420, InterleavedIsTheModel) {
    for (KeliSize size : pictures) {
        for (const Pattern &pattern : patterns) {
            for (int rotation = 0; rotation < 4; ++rotation) {
                SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << " by " << rotation);
                Source<Kel8u> src(size.height, 2 * size.width, 2 * size.width + rotation);
                src.fill(pattern);
                TurnedPlanes dst(size, rotation, rotation + 1);
                ASSERT_EQ(kelStsNoErr, keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R(src.data(), src.step(), size,
                                                                              dst.data, dst.steps, rotation));
                dst.y.expect([&](int row, int col) { return src(row, 2 * col + 1); });
                expectHalved(dst.cb, [&](int row, int col) { return src(row, 4 * col); });
                expectHalved(dst.cr, [&](int row, int col) { return src(row, 4 * col + 2); });
            }
        }
    }
}

TEST(KelvaraRotate420, PlanarIsTheModel) {
    for (KeliSize size : pictures) {
        for (int rotation = 0; rotation < 4; ++rotation) {
            SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << " by " << rotation);
            Source<Kel8u> y(size.height, size.width, size.width + 3);
            Source<Kel8u> cb(size.height, size.width / 2, size.width / 2 + rotation);
            Source<Kel8u> cr(size.height, size.width / 2, size.width);
            y.fill(noise(1, 255)), cb.fill(noise(2, 255)), cr.fill(noise(3, 255));
            const Kel8u *planes[] = {y.data(), cb.data(), cr.data()};
            const int steps[] = {y.step(), cb.step(), cr.step()};
            TurnedPlanes dst(size, rotation, 0);
            ASSERT_EQ(kelStsNoErr, keliCbYCr422ToYCbCr420_Rotate_8u_P3R(planes, steps, size, dst.data,
                                                                        dst.steps, rotation));
            dst.y.expect(y);
            expectHalved(dst.cb, cb);
            expectHalved(dst.cr, cr);
        }
    }
}

// 1 2        2 4        3 1        4 3
// 3 4  left  1 3  right 4 2  both  2 1
TEST(KelvaraRotate420, ACornerGoesWhereItShould) {
    const Kel8u src[8] = {0, 1, 0, 2, 0, 3, 0, 4};
    const Kel8u expected[4][4] = {{1, 2, 3, 4}, {2, 4, 1, 3}, {3, 1, 4, 2}, {4, 3, 2, 1}};
    for (int rotation = 0; rotation < 4; ++rotation) {
        Kel8u y[4] = {}, cb = 9, cr = 9;
        Kel8u *const planes[] = {y, &cb, &cr};
        const int steps[] = {2, 1, 1};
        EXPECT_EQ(kelStsNoErr,
                  keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R(src, 4, {2, 2}, planes, steps, rotation));
        EXPECT_EQ(0, memcmp(y, expected[rotation], 4)) << rotation;
        EXPECT_EQ(0, cb + cr);
    }
}

TEST(KelvaraRotate420, BadArgumentsOfTheInterleavedFormAreRefused) {
    Source<Kel8u> src(4, 16, 16);
    src.fill(noise(1, 255));
    TurnedPlanes dst({8, 4}, 0, 8);
    const Kel8u *s = src.data();
    const auto call = [](const Kel8u *from, int step, KeliSize size, Kel8u *const *to, const int *steps,
                         int rotation) {
        return keliCbYCr422ToYCbCr420_Rotate_8u_C2P3R(from, step, size, to, steps, rotation);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 16, {8, 4}, dst.data, dst.steps, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(s, 16, {8, 4}, nullptr, dst.steps, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(s, 16, {8, 4}, dst.data, nullptr, 0));
    for (Kel8u *&plane : dst.data) {
        Kel8u *kept = plane;
        plane = nullptr;
        EXPECT_EQ(kelStsNullPtrErr, call(s, 16, {8, 4}, dst.data, dst.steps, 0));
        plane = kept;
    }
    for (KeliSize size : {KeliSize{0, 4}, {8, 0}, {7, 4}, {8, 3}, {-8, 4}, {16386, 4}})
        EXPECT_EQ(kelStsSizeErr, call(s, 16, size, dst.data, dst.steps, 0));
    EXPECT_EQ(kelStsStepErr, call(s, 15, {8, 4}, dst.data, dst.steps, 0));
    const int narrow[4][3] = {{7, 4, 4}, {8, 3, 4}, {8, 4, 3}, {3, 2, 2}};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(kelStsStepErr, call(s, 16, {8, 4}, dst.data, narrow[i], i < 3 ? 0 : 2));
    for (int rotation : {-1, 4})
        EXPECT_EQ(kelStsRangeErr, call(s, 16, {8, 4}, dst.data, dst.steps, rotation));
    EXPECT_TRUE(dst.untouched());
}

TEST(KelvaraRotate420, BadArgumentsOfThePlanarFormAreRefused) {
    Source<Kel8u> src(4, 8, 8);
    src.fill(noise(1, 255));
    TurnedPlanes dst({8, 4}, 0, 8);
    const Kel8u *planes[] = {src.data(), src.data(), src.data()};
    const int steps[] = {8, 4, 4};
    const auto call = [](const Kel8u *const *from, const int *step, KeliSize size, Kel8u *const *to,
                         const int *dstSteps, int rotation) {
        return keliCbYCr422ToYCbCr420_Rotate_8u_P3R(from, step, size, to, dstSteps, rotation);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, steps, {8, 4}, dst.data, dst.steps, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, nullptr, {8, 4}, dst.data, dst.steps, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, steps, {8, 4}, nullptr, dst.steps, 0));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, steps, {8, 4}, dst.data, nullptr, 0));
    for (const Kel8u *&plane : planes) {
        plane = nullptr;
        EXPECT_EQ(kelStsNullPtrErr, call(planes, steps, {8, 4}, dst.data, dst.steps, 0));
        plane = src.data();
    }
    EXPECT_EQ(kelStsSizeErr, call(planes, steps, {7, 4}, dst.data, dst.steps, 0));
    const int narrow[3][3] = {{7, 4, 4}, {8, 3, 4}, {8, 4, 3}};
    for (const int(&row)[3] : narrow) {
        EXPECT_EQ(kelStsStepErr, call(planes, row, {8, 4}, dst.data, dst.steps, 0));
        EXPECT_EQ(kelStsStepErr, call(planes, steps, {8, 4}, dst.data, row, 0));
    }
    for (int rotation : {-1, 4})
        EXPECT_EQ(kelStsRangeErr, call(planes, steps, {8, 4}, dst.data, dst.steps, rotation));
    EXPECT_TRUE(dst.untouched());
}

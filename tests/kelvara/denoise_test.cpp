// denoise_test.cpp - the denoising filters of whole pictures against models that work sample by sample.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

using Adaptive = KeliDenoiseAdaptiveState_8u_C1;
using Mosquito = KeliDenoiseMosquitoState_8u_C1;

// ---- data -----------------------------------------------------------------------------

// Samples by column and row; beyond the border of the region in hand stands its nearest sample.
class Plane {
public:
    explicit Plane(KeliSize size, int value = 0) : m_size(size), m_values(size.width * size.height, value) {}
    Plane(const Source<Kel8u> &src, KeliSize size) : Plane(size) {
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) at(x, y) = src(y, x);
        }
    }

    int &at(int x, int y) { return m_values[y * m_size.width + x]; }
    int at(int x, int y) const { return m_values[y * m_size.width + x]; }
    int nearest(int x, int y, KeliRect roi) const {
        return at(std::clamp(x, roi.x, roi.x + roi.width - 1), std::clamp(y, roi.y, roi.y + roi.height - 1));
    }

private:
    KeliSize m_size;
    std::vector<int> m_values;
};

template <class Visit>
void forEach(KeliRect roi, Visit visit) {
    for (int y = roi.y; y < roi.y + roi.height; ++y) {
        for (int x = roi.x; x < roi.x + roi.width; ++x) visit(x, y);
    }
}

KeliRect whole(KeliSize size) {
    return {0, 0, size.width, size.height};
}

// A scene with edges and slopes, and noise of so much on it.
Pattern scene(unsigned seed, int noiseOf) {
    Pattern random = noise(seed, 2 * noiseOf);
    return [=](int row, int col) {
        const int block = (row / 5 + col / 11) % 3 * 90, slope = 2 * (row % 5) + col % 11;
        return std::clamp(10 + block + slope + random(row, col) - noiseOf, 0, 255);
    };
}

const std::vector<Pattern> sequence = {scene(1, 3),   scene(2, 3),   scene(3, 12),      scene(4, 40),
                                       noise(5, 255), constant(255), checkerboard(255), constant(0),
                                       scene(6, 5),   scene(7, 5)};

struct Shape {
    KeliSize size;
    KeliRect roi;
    int srcStep, dstStep;
};

const Shape shapes[] = {
    {{1, 1}, {0, 0, 1, 1}, 1, 1},       {{40, 19}, {0, 0, 40, 19}, 40, 40},
    {{40, 19}, {3, 5, 30, 11}, 43, 64}, {{17, 33}, {16, 0, 1, 33}, 17, 19},
    {{33, 9}, {0, 8, 33, 1}, 48, 33},   {{24, 24}, {7, 9, 2, 2}, 25, 31},
};

// The destination of a picture, which is marked at first.
class Result {
public:
    explicit Result(const Shape &shape)
        : m_shape(shape), m_samples((shape.size.height - 1) * shape.dstStep + shape.size.width, 1) {}

    Kel8u *data() { return m_samples.data(); }
    bool untouched() const { return m_samples.untouched(); }

    // The region is as the model has it, all other bytes are as they were.
    void expect(const Plane &model) const {
        const KeliRect roi = m_shape.roi;
        EXPECT_TRUE(m_samples.surroundingsIntact());
        const int bytes = (m_shape.size.height - 1) * m_shape.dstStep + m_shape.size.width;
        for (int i = 0; i < bytes; ++i) {
            const int x = i % m_shape.dstStep, y = i / m_shape.dstStep;
            const bool inside = x >= roi.x && y >= roi.y && x < roi.x + roi.width && y < roi.y + roi.height;
            ASSERT_EQ(inside ? model.at(x, y) : 0xA5, m_samples[i]) << "column " << x << ", row " << y;
        }
    }

private:
    Shape m_shape;
    Destination<Kel8u> m_samples;
};

int nearOr(int value, int sample, int limit) {
    return std::abs(value - sample) <= limit ? value : sample;
}

// Rounded down.
int quotient(int dividend, int divisor) {
    return static_cast<int>(std::floor(static_cast<double>(dividend) / divisor));
}

// ---- models ----------------------------------------------------------------------------

struct AdaptiveModel {
    AdaptiveModel(const Shape &shape, KeliSize mask) : m_roi(shape.roi), m_mask(mask), m_motion(shape.size) {}

    Plane run(const Plane &p, const Plane &c, const Plane &n, KeliSize size, int threshold, int blurFlag) {
        Plane t(size), result(size);
        forEach(m_roi, [&](int x, int y) {
            m_motion.at(x, y) = std::max(moving(p, c, n, x, y), quotient(3 * m_motion.at(x, y), 4));
            const int w = std::clamp(threshold - m_motion.at(x, y), 0, 16);
            const int mean = quotient(p.at(x, y) + 2 * c.at(x, y) + n.at(x, y) + 2, 4);
            t.at(x, y) = quotient((16 - w) * c.at(x, y) + w * mean + 8, 16);
        });
        forEach(m_roi, [&](int x, int y) {
            result.at(x, y) = nearOr(blurred(t, x, y, blurFlag), t.at(x, y), threshold);
        });
        return result;
    }

private:
    int moving(const Plane &p, const Plane &c, const Plane &n, int x, int y) const {
        int sum = 0;
        for (int v = y - m_mask.height / 2; v <= y + m_mask.height / 2; ++v) {
            for (int u = x - m_mask.width / 2; u <= x + m_mask.width / 2; ++u) {
                const int now = c.nearest(u, v, m_roi);
                sum +=
                    std::max(std::abs(now - p.nearest(u, v, m_roi)), std::abs(now - n.nearest(u, v, m_roi)));
            }
        }
        return quotient(sum, m_mask.width * m_mask.height);
    }

    int blurred(const Plane &t, int x, int y, int blurFlag) const {
        static const int weights[2][3] = {{0, 1, 0}, {1, 2, 1}};
        int sum = 0, all = 0;
        for (int v = -1; v <= 1; ++v) {
            for (int u = -1; u <= 1; ++u) {
                const int weight = weights[blurFlag & 1][u + 1] * weights[blurFlag >> 1][v + 1];
                sum += weight * t.nearest(x + u, y + v, m_roi);
                all += weight;
            }
        }
        return static_cast<int>(std::floor(static_cast<double>(sum) / all + 0.5));
    }

    KeliRect m_roi;
    KeliSize m_mask;
    Plane m_motion;
};

struct MosquitoModel {
    explicit MosquitoModel(const Shape &shape) : m_roi(shape.roi), m_contrast(shape.size) {}

    Plane run(const Plane &p, const Plane &c, KeliSize size) {
        Plane limit(size), t(size), result(size), contrast(size);
        forEach(m_roi, [&](int x, int y) {
            contrast.at(x, y) = std::max(rangeAround(c, x, y), quotient(3 * m_contrast.at(x, y), 4));
            limit.at(x, y) = quotient(contrast.at(x, y), 8);
            const int now = c.at(x, y);
            t.at(x, y) = quotient(now + nearOr(p.at(x, y), now, limit.at(x, y)) + 1, 2);
        });
        forEach(m_roi, [&](int x, int y) {
            int sum = 7 * t.at(x, y); // the loop has the sample itself too
            for (int i = 0; i < 9; ++i)
                sum += nearOr(t.nearest(x - 1 + i % 3, y - 1 + i / 3, m_roi), t.at(x, y), limit.at(x, y));
            result.at(x, y) = quotient(sum + 8, 16);
        });
        m_contrast = contrast;
        return result;
    }

private:
    int rangeAround(const Plane &c, int x, int y) const {
        int least = 255, greatest = 0;
        forEach(m_roi, [&](int u, int v) {
            if (u / 8 != x / 8 || v / 8 != y / 8) return;
            least = std::min(least, c.at(u, v));
            greatest = std::max(greatest, c.at(u, v));
        });
        return greatest - least;
    }

    KeliRect m_roi;
    Plane m_contrast; // of the block that the sample is in
};

Plane smoothModel(const Plane &src, KeliSize size, KeliRect roi, int threshold) {
    Plane along(size), result(size);
    const auto mean = [&](const Plane &plane, int x, int y, int right, int down) {
        const int c = plane.at(x, y), a = nearOr(plane.nearest(x - right, y - down, roi), c, threshold);
        const int b = nearOr(plane.nearest(x + right, y + down, roi), c, threshold);
        return quotient(a + 2 * c + b + 2, 4);
    };
    forEach(roi, [&](int x, int y) { along.at(x, y) = mean(src, x, y, 1, 0); });
    forEach(roi, [&](int x, int y) { result.at(x, y) = mean(along, x, y, 0, 1); });
    return result;
}

// ---- adaptive --------------------------------------------------------------------------

Adaptive *adaptiveState(KeliSize size, KeliSize mask) {
    Adaptive *state = nullptr;
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseAdaptiveInitAlloc_8u_C1(&state, size, mask));
    return state;
}

// Three pictures further each time, by one state.
void expectAdaptive(const Shape &shape, KeliSize mask, int threshold, int blurFlag) {
    SCOPED_TRACE(testing::Message() << "size " << shape.size.width << "x" << shape.size.height << ", mask "
                                    << mask.width << "x" << mask.height << ", threshold " << threshold
                                    << ", blur " << blurFlag);
    Adaptive *state = adaptiveState(shape.size, mask);
    AdaptiveModel model(shape, mask);
    for (size_t i = 0; i + 2 < sequence.size(); ++i) {
        const int rows = shape.size.height, width = shape.size.width, step = shape.srcStep;
        Source<Kel8u> p(rows, width, step), c(rows, width, step), n(rows, width, step);
        p.fill(sequence[i]), c.fill(sequence[i + 1]), n.fill(sequence[i + 2]);
        const Kel8u *planes[] = {p.data(), c.data(), n.data()};
        Result result(shape);
        ASSERT_EQ(kelStsNoErr,
                  keliFilterDenoiseAdaptive_8u_C1R(planes, step, result.data(), shape.dstStep, shape.size,
                                                   mask, shape.roi, threshold, blurFlag, state));
        result.expect(model.run(Plane(p, shape.size), Plane(c, shape.size), Plane(n, shape.size), shape.size,
                                threshold, blurFlag));
    }
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseAdaptiveFree_8u_C1(state));
}

// ---- mosquito ---------------------------------------------------------------------------

Mosquito *mosquitoState(KeliSize size) {
    Mosquito *state = nullptr;
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseMosquitoInitAlloc_8u_C1(&state, size));
    return state;
}

} // namespace

TEST(KelvaraDenoiseAdaptive, IsTheModelForEveryThresholdAndBlur) {
    for (int threshold : {0, 1, 7, 14, 32, 128, 224, 255}) {
        for (int blurFlag = 0; blurFlag < 4; ++blurFlag)
            expectAdaptive(shapes[2], {1, 1}, threshold, blurFlag);
    }
}

TEST(KelvaraDenoiseAdaptive, IsTheModelForEveryShapeAndMask) {
    for (const Shape &shape : shapes) {
        for (KeliSize mask : {KeliSize{1, 1}, {3, 1}, {1, 3}, {5, 7}, {15, 15}})
            expectAdaptive(shape, mask, 20, 3);
    }
}

// The same picture again and again is what the mean over time gives too.
TEST(KelvaraDenoiseAdaptive, AStillPictureWithoutBlurStays) {
    const Shape shape = shapes[1];
    Source<Kel8u> src(19, 40, 40);
    src.fill(scene(1, 20));
    const Kel8u *planes[] = {src.data(), src.data(), src.data()};
    Adaptive *state = adaptiveState(shape.size, {1, 1});
    Result result(shape);
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseAdaptive_8u_C1R(planes, 40, result.data(), 40, shape.size, {1, 1},
                                                            shape.roi, 200, 0, state));
    result.expect(Plane(src, shape.size));
    keliFilterDenoiseAdaptiveFree_8u_C1(state);
}

// A change of 255 leaves 191, 143, 107, 80 behind.
TEST(KelvaraDenoiseAdaptive, MotionFadesFromCallToCall) {
    const KeliSize one = {1, 1};
    const Kel8u black = 0, white = 255, grey = 8;
    const Kel8u *const moving[] = {&black, &white, &white}, *const still[] = {&grey, &black, &grey};
    Adaptive *state = adaptiveState(one, one);
    Kel8u result = 0;
    const auto call = [&](const Kel8u *const *planes, int threshold) {
        EXPECT_EQ(kelStsNoErr, keliFilterDenoiseAdaptive_8u_C1R(planes, 1, &result, 1, one, one, {0, 0, 1, 1},
                                                                threshold, 0, state));
        return result;
    };
    EXPECT_EQ(255, call(moving, 16));
    EXPECT_EQ(0, call(still, 191));
    EXPECT_EQ(2, call(still, 143 + 8)); // 8 / 16 of a mean of 4
    EXPECT_EQ(4, call(still, 107 + 16));
    EXPECT_EQ(0, call(still, 80));
    keliFilterDenoiseAdaptiveFree_8u_C1(state);
}

TEST(KelvaraDenoiseAdaptive, BadArgumentsAreRefusedAndNothingIsWritten) {
    const KeliSize size = {40, 19}, mask = {3, 3};
    const KeliRect roi = {0, 0, 40, 19};
    Source<Kel8u> src(19, 40, 40);
    src.fill(noise(1, 255));
    const Kel8u *planes[] = {src.data(), src.data(), src.data()};
    Adaptive *state = adaptiveState(size, mask);
    Destination<Kel8u> dst(19 * 40);
    const auto call = [&](const Kel8u *const *from, Kel8u *to, int srcStep, int dstStep, KeliSize s,
                          KeliSize m, KeliRect r, int threshold, int blur, Adaptive *by) {
        return keliFilterDenoiseAdaptive_8u_C1R(from, srcStep, to, dstStep, s, m, r, threshold, blur, by);
    };
    Kel8u *d = dst.data();
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, d, 40, 40, size, mask, roi, 9, 0, state));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, nullptr, 40, 40, size, mask, roi, 9, 0, state));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, d, 40, 40, size, mask, roi, 9, 0, nullptr));
    for (const Kel8u *&plane : planes) {
        plane = nullptr;
        EXPECT_EQ(kelStsNullPtrErr, call(planes, d, 40, 40, size, mask, roi, 9, 0, state));
        plane = src.data();
    }
    for (KeliSize other : {KeliSize{39, 19}, {40, 18}, {0, 19}, {40, -1}})
        EXPECT_EQ(kelStsSizeErr, call(planes, d, 40, 40, other, mask, roi, 9, 0, state));
    EXPECT_EQ(kelStsSizeErr, call(planes, d, 40, 40, size, {1, 1}, roi, 9, 0, state));
    for (KeliRect other : {KeliRect{-1, 0, 1, 1},
                           {0, -1, 1, 1},
                           {0, 0, 0, 1},
                           {0, 0, 1, 0},
                           {1, 0, 40, 1},
                           {0, 1, 1, 19},
                           {40, 0, 1, 1},
                           {2147483647, 0, 2147483647, 1}})
        EXPECT_EQ(kelStsSizeErr, call(planes, d, 40, 40, size, mask, other, 9, 0, state));
    EXPECT_EQ(kelStsStepErr, call(planes, d, 39, 40, size, mask, roi, 9, 0, state));
    EXPECT_EQ(kelStsStepErr, call(planes, d, 40, 39, size, mask, roi, 9, 0, state));
    for (int threshold : {-1, 256})
        EXPECT_EQ(kelStsRangeErr, call(planes, d, 40, 40, size, mask, roi, threshold, 0, state));
    for (int blur : {-1, 4})
        EXPECT_EQ(kelStsRangeErr, call(planes, d, 40, 40, size, mask, roi, 9, blur, state));
    EXPECT_TRUE(dst.untouched());
    keliFilterDenoiseAdaptiveFree_8u_C1(state);
}

TEST(KelvaraDenoiseAdaptive, OnlyProperStatesAreMadeAndReleased) {
    Adaptive *state = nullptr;
    const auto init = [&](KeliSize size, KeliSize mask) {
        return keliFilterDenoiseAdaptiveInitAlloc_8u_C1(&state, size, mask);
    };
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseAdaptiveInitAlloc_8u_C1(nullptr, {8, 8}, {1, 1}));
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseAdaptiveFree_8u_C1(nullptr));
    for (KeliSize size : {KeliSize{0, 8}, {8, 0}, {-8, 8}, {16385, 1}, {1, 16385}})
        EXPECT_EQ(kelStsSizeErr, init(size, {1, 1}));
    for (KeliSize mask : {KeliSize{0, 1}, {1, 0}, {2, 1}, {1, 2}, {17, 1}, {1, 17}, {-1, 1}})
        EXPECT_EQ(kelStsSizeErr, init({8, 8}, mask));
    EXPECT_EQ(nullptr, state);
}

// A state of the other filter is none.
TEST(KelvaraDenoise, AStateServesItsOwnFilterAlone) {
    const KeliSize size = {8, 8};
    const Kel8u samples[64] = {};
    const Kel8u *planes[] = {samples, samples, samples};
    Destination<Kel8u> dst(64);
    Adaptive *adaptive = adaptiveState(size, {1, 1});
    Mosquito *mosquito = mosquitoState(size);
    Adaptive *wrongAdaptive = reinterpret_cast<Adaptive *>(mosquito);
    Mosquito *wrongMosquito = reinterpret_cast<Mosquito *>(adaptive);
    EXPECT_EQ(kelStsContextErr, keliFilterDenoiseAdaptive_8u_C1R(planes, 8, dst.data(), 8, size, {1, 1},
                                                                 whole(size), 9, 0, wrongAdaptive));
    EXPECT_EQ(kelStsContextErr,
              keliFilterDenoiseMosquito_8u_C1R(planes, 8, dst.data(), 8, size, wrongMosquito, whole(size)));
    EXPECT_EQ(kelStsContextErr, keliFilterDenoiseAdaptiveFree_8u_C1(wrongAdaptive));
    EXPECT_EQ(kelStsContextErr, keliFilterDenoiseMosquitoFree_8u_C1(wrongMosquito));
    EXPECT_TRUE(dst.untouched());
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseAdaptiveFree_8u_C1(adaptive));
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseMosquitoFree_8u_C1(mosquito));
}

TEST(KelvaraDenoiseMosquito, IsTheModelForEveryShape) {
    for (const Shape &shape : shapes) {
        SCOPED_TRACE(testing::Message() << "size " << shape.size.width << "x" << shape.size.height
                                        << ", roi from " << shape.roi.x << ", " << shape.roi.y);
        Mosquito *state = mosquitoState(shape.size);
        MosquitoModel model(shape);
        for (size_t i = 0; i + 1 < sequence.size(); ++i) {
            const int rows = shape.size.height, width = shape.size.width, step = shape.srcStep;
            Source<Kel8u> p(rows, width, step), c(rows, width, step);
            p.fill(sequence[i]), c.fill(sequence[i + 1]);
            const Kel8u *planes[] = {p.data(), c.data()};
            Result result(shape);
            ASSERT_EQ(kelStsNoErr,
                      keliFilterDenoiseMosquito_8u_C1R(planes, step, result.data(), shape.dstStep, shape.size,
                                                       state, shape.roi));
            result.expect(model.run(Plane(p, shape.size), Plane(c, shape.size), shape.size));
        }
        EXPECT_EQ(kelStsNoErr, keliFilterDenoiseMosquitoFree_8u_C1(state));
    }
}

// The ripple of 16 beside the edge of 200 goes, that of a block without an edge stays.
TEST(KelvaraDenoiseMosquito, RippleIsSmoothedBesideEdgesAlone) {
    const KeliSize size = {16, 8};
    Source<Kel8u> src(8, 16, 16);
    src.fill([](int row, int col) { return col == 0 ? 220 : 20 + (row + col) % 2 * 16; });
    const Kel8u *planes[] = {src.data(), src.data()};
    Mosquito *state = mosquitoState(size);
    Destination<Kel8u> dst(16 * 8);
    EXPECT_EQ(kelStsNoErr,
              keliFilterDenoiseMosquito_8u_C1R(planes, 16, dst.data(), 16, size, state, whole(size)));
    for (int i = 0; i < 128; ++i) {
        const int row = i / 16, col = i % 16, change = std::abs(dst[i] - src(row, col));
        if (col == 0 || col >= 8) {
            EXPECT_EQ(0, change) << i;
        } else {
            EXPECT_GT(change, 1) << i;
        }
    }
    keliFilterDenoiseMosquitoFree_8u_C1(state);
}

TEST(KelvaraDenoiseMosquito, BadArgumentsAreRefusedAndNothingIsWritten) {
    const KeliSize size = {40, 19};
    const KeliRect roi = whole(size);
    Source<Kel8u> src(19, 40, 40);
    src.fill(noise(1, 255));
    const Kel8u *planes[] = {src.data(), src.data()};
    Destination<Kel8u> dst(19 * 40);
    Mosquito *state = mosquitoState(size);
    const auto call = [&](const Kel8u *const *from, Kel8u *to, int srcStep, int dstStep, KeliSize s,
                          Mosquito *by, KeliRect r) {
        return keliFilterDenoiseMosquito_8u_C1R(from, srcStep, to, dstStep, s, by, r);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, dst.data(), 40, 40, size, state, roi));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, nullptr, 40, 40, size, state, roi));
    EXPECT_EQ(kelStsNullPtrErr, call(planes, dst.data(), 40, 40, size, nullptr, roi));
    for (const Kel8u *&plane : planes) {
        plane = nullptr;
        EXPECT_EQ(kelStsNullPtrErr, call(planes, dst.data(), 40, 40, size, state, roi));
        plane = src.data();
    }
    EXPECT_EQ(kelStsSizeErr, call(planes, dst.data(), 40, 40, {40, 18}, state, roi));
    EXPECT_EQ(kelStsSizeErr, call(planes, dst.data(), 40, 40, size, state, {1, 0, 40, 19}));
    EXPECT_EQ(kelStsStepErr, call(planes, dst.data(), 39, 40, size, state, roi));
    EXPECT_EQ(kelStsStepErr, call(planes, dst.data(), 40, 39, size, state, roi));
    EXPECT_TRUE(dst.untouched());
    EXPECT_EQ(kelStsNoErr, keliFilterDenoiseMosquitoFree_8u_C1(state));
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseMosquitoFree_8u_C1(nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseMosquitoInitAlloc_8u_C1(nullptr, size));
    EXPECT_EQ(kelStsSizeErr, keliFilterDenoiseMosquitoInitAlloc_8u_C1(&state, {0, 19}));
}

TEST(KelvaraDenoiseSmooth, IsTheModelForEveryShapeAndThreshold) {
    for (const Shape &shape : shapes) {
        for (int threshold : {0, 1, 7, 14, 32, 128, 224, 255}) {
            SCOPED_TRACE(testing::Message() << "size " << shape.size.width << "x" << shape.size.height
                                            << ", threshold " << threshold);
            for (const Pattern &pattern : sequence) {
                Source<Kel8u> src(shape.size.height, shape.size.width, shape.srcStep);
                src.fill(pattern);
                Destination<Kel8u> work((2 * shape.size.height + 6) * (shape.size.width + 3), 1);
                Result result(shape);
                ASSERT_EQ(kelStsNoErr, keliFilterDenoiseSmooth_8u_C1R(
                                           src.data(), shape.srcStep, result.data(), shape.dstStep,
                                           shape.size, threshold, shape.roi, work.data()));
                EXPECT_TRUE(work.surroundingsIntact());
                result.expect(smoothModel(Plane(src, shape.size), shape.size, shape.roi, threshold));
            }
        }
    }
}

TEST(KelvaraDenoiseSmooth, BadArgumentsAreRefusedAndNothingIsWritten) {
    const KeliSize size = {40, 19};
    const KeliRect roi = whole(size);
    Source<Kel8u> src(19, 40, 40);
    src.fill(noise(1, 255));
    Destination<Kel8u> dst(19 * 40), work(44 * 43);
    const Kel8u *s = src.data();
    Kel8u *d = dst.data(), *w = work.data();
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseSmooth_8u_C1R(nullptr, 40, d, 40, size, 9, roi, w));
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseSmooth_8u_C1R(s, 40, nullptr, 40, size, 9, roi, w));
    EXPECT_EQ(kelStsNullPtrErr, keliFilterDenoiseSmooth_8u_C1R(s, 40, d, 40, size, 9, roi, nullptr));
    for (KeliSize other : {KeliSize{0, 19}, {40, 0}, {16385, 1}, {39, 19}, {40, 18}})
        EXPECT_EQ(kelStsSizeErr, keliFilterDenoiseSmooth_8u_C1R(s, 40, d, 40, other, 9, roi, w));
    EXPECT_EQ(kelStsStepErr, keliFilterDenoiseSmooth_8u_C1R(s, 39, d, 40, size, 9, roi, w));
    EXPECT_EQ(kelStsStepErr, keliFilterDenoiseSmooth_8u_C1R(s, 40, d, 39, size, 9, roi, w));
    for (int threshold : {-1, 256})
        EXPECT_EQ(kelStsRangeErr, keliFilterDenoiseSmooth_8u_C1R(s, 40, d, 40, size, threshold, roi, w));
    EXPECT_TRUE(dst.untouched());
    EXPECT_TRUE(work.untouched());
}

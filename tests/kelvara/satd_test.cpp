// satd_test.cpp - sums of absolute transformed differences against matrix products, and the frame/field
// measures.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace {

// Sylvester's matrix: the sign is the parity of the bits that row and column have in common.
int sign(int row, int col) {
    return __builtin_parity(row & col) ? -1 : 1;
}

// Sum of the magnitudes of H D H' for the n x n block of differences at row0, col0.
template <class T>
long long transformedSum(const Source<T> &src, const Source<T> &ref, int n, int row0, int col0) {
    long long sum = 0;
    for (int u = 0; u < n; ++u) {
        for (int v = 0; v < n; ++v) {
            long long coefficient = 0;
            for (int row = 0; row < n; ++row) {
                for (int col = 0; col < n; ++col) {
                    const int d = src(row0 + row, col0 + col) - ref(row0 + row, col0 + col);
                    coefficient += sign(u, row) * sign(v, col) * d;
                }
            }
            sum += std::llabs(coefficient);
        }
    }
    return sum;
}

template <class T>
struct SatdFunction {
    const char *name;
    KelStatus (*call)(const T *, int, const T *, int, Kel32s *);
    int width, height;
    int transform; // 4 or 8
};

const SatdFunction<Kel8u> functions8u[] = {
    {"keliSATD16x16_8u32s_C1R", keliSATD16x16_8u32s_C1R, 16, 16, 4},
    {"keliSATD16x8_8u32s_C1R", keliSATD16x8_8u32s_C1R, 16, 8, 4},
    {"keliSATD8x16_8u32s_C1R", keliSATD8x16_8u32s_C1R, 8, 16, 4},
    {"keliSATD8x8_8u32s_C1R", keliSATD8x8_8u32s_C1R, 8, 8, 4},
    {"keliSATD8x4_8u32s_C1R", keliSATD8x4_8u32s_C1R, 8, 4, 4},
    {"keliSATD4x8_8u32s_C1R", keliSATD4x8_8u32s_C1R, 4, 8, 4},
    {"keliSATD4x4_8u32s_C1R", keliSATD4x4_8u32s_C1R, 4, 4, 4},
    {"keliSAT8x8D_8u32s_C1R", keliSAT8x8D_8u32s_C1R, 8, 8, 8},
};
const SatdFunction<Kel16u> functions16u[] = {
    {"keliSAT8x8D_16u32s_C1R", keliSAT8x8D_16u32s_C1R, 8, 8, 8},
};

template <class T>
long long model(const SatdFunction<T> &f, const Source<T> &src, const Source<T> &ref) {
    long long sum = 0;
    for (int row = 0; row < f.height; row += f.transform) {
        for (int col = 0; col < f.width; col += f.transform) {
            const double magnitudes = static_cast<double>(transformedSum(src, ref, f.transform, row, col));
            sum += std::llround(std::floor(magnitudes / (f.transform / 2) + 0.5));
        }
    }
    return sum;
}

template <class T>
void compareAll(const SatdFunction<T> &f, int max) {
    for (const PatternPair &pair : patternPairs(max)) {
        for (int slack : {0, 1, 8}) {
            SCOPED_TRACE(testing::Message() << f.name << ", " << pair.name << ", slack " << slack);
            const int widthBytes = f.width * static_cast<int>(sizeof(T));
            Source<T> src(f.height, f.width, widthBytes + slack), ref(f.height, f.width, widthBytes, slack);
            src.fill(pair.src);
            ref.fill(pair.ref);
            Destination<Kel32s> dst(1, slack);
            ASSERT_EQ(kelStsNoErr, f.call(src.data(), src.step(), ref.data(), ref.step(), dst.data()));
            EXPECT_TRUE(dst.surroundingsIntact());
            EXPECT_EQ(model(f, src, ref), dst[0]);
        }
    }
}

template <class T>
void expectRefused(const SatdFunction<T> &f) {
    SCOPED_TRACE(f.name);
    Source<T> src(16, 16, 64), ref(16, 16, 64);
    Destination<Kel32s> dst(1);
    EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 64, ref.data(), 64, dst.data()));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), 64, nullptr, 64, dst.data()));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), 64, ref.data(), 64, nullptr));
    const int tooSmall = f.width * static_cast<int>(sizeof(T)) - 1;
    EXPECT_EQ(kelStsStepErr, f.call(src.data(), tooSmall, ref.data(), 64, dst.data()));
    EXPECT_EQ(kelStsStepErr, f.call(src.data(), 64, ref.data(), tooSmall, dst.data()));
    EXPECT_TRUE(dst.untouched());
}

} // namespace

TEST(KelvaraSatd, SumsEqualTheMatrixProductOverAllData) {
    for (const auto &f : functions8u) compareAll(f, 255);
    for (const auto &f : functions16u) compareAll(f, 65535);
}

TEST(KelvaraSatd, BadArgumentsAreRefusedAndNothingIsWritten) {
    for (const auto &f : functions8u) expectRefused(f);
    for (const auto &f : functions16u) expectRefused(f);
}

// A flat difference of 3 has one coefficient, 3 times the number of samples.
TEST(KelvaraSatd, AFlatDifferenceHasOneCoefficient) {
    Source<Kel8u> src(8, 8, 8), ref(8, 8, 8);
    src.fill(constant(13));
    ref.fill(constant(10));
    Destination<Kel32s> four(1), eight(1);
    ASSERT_EQ(kelStsNoErr, keliSATD8x8_8u32s_C1R(src.data(), 8, ref.data(), 8, four.data()));
    ASSERT_EQ(kelStsNoErr, keliSAT8x8D_8u32s_C1R(src.data(), 8, ref.data(), 8, eight.data()));
    EXPECT_EQ(4 * (3 * 16 / 2), four[0]);
    EXPECT_EQ(3 * 64 / 4, eight[0]);
}

// ---- frame and field -------------------------------------------------------------

namespace {

template <class T>
struct FrameFieldFunction {
    KelStatus (*call)(const T *, int, Kel32s *, Kel32s *);
    int low, high;
};

template <class T>
long long lineDifferences(const Source<T> &src, int distance) {
    long long sum = 0;
    for (int row = 0; row < 14; ++row) {
        for (int col = 0; col < 16; ++col) sum += std::abs(src(row, col) - src(row + distance, col));
    }
    return sum;
}

template <class T>
void checkFrameField(const FrameFieldFunction<T> &f) {
    const int bytes = 16 * static_cast<int>(sizeof(T));
    for (const PatternPair &pair : patternPairs(f.high - f.low)) {
        SCOPED_TRACE(pair.name);
        Source<T> src(16, 16, bytes + 3);
        src.fill([&](int row, int col) { return pair.src(row, col) + f.low; });
        Destination<Kel32s> frame(1), field(1);
        ASSERT_EQ(kelStsNoErr, f.call(src.data(), src.step(), frame.data(), field.data()));
        EXPECT_EQ(lineDifferences(src, 1), frame[0]);
        EXPECT_EQ(lineDifferences(src, 2), field[0]);
        EXPECT_TRUE(frame.surroundingsIntact() && field.surroundingsIntact());
    }
    Source<T> src(16, 16, bytes);
    Destination<Kel32s> frame(1), field(1);
    EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, bytes, frame.data(), field.data()));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), bytes, nullptr, field.data()));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), bytes, frame.data(), nullptr));
    EXPECT_EQ(kelStsStepErr, f.call(src.data(), bytes - 1, frame.data(), field.data()));
    EXPECT_TRUE(frame.untouched() && field.untouched());
}

} // namespace

TEST(KelvaraFrameField, BothMeasuresEqualTheModel) {
    checkFrameField<Kel8u>({keliFrameFieldSAD16x16_8u32s_C1R, 0, 255});
    checkFrameField<Kel16s>({keliFrameFieldSAD16x16_16s32s_C1R, -32768, 32767});
}

// Lines that go 0, 200, 0, 200 are two flat fields.
TEST(KelvaraFrameField, ACombedBlockIsSmootherByFields) {
    Source<Kel8u> src(16, 16, 16);
    src.fill([](int row, int) { return row % 2 * 200; });
    Destination<Kel32s> frame(1), field(1);
    ASSERT_EQ(kelStsNoErr, keliFrameFieldSAD16x16_8u32s_C1R(src.data(), 16, frame.data(), field.data()));
    EXPECT_EQ(14 * 16 * 200, frame[0]);
    EXPECT_EQ(0, field[0]);
}

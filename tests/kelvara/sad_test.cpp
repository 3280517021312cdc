// sad_test.cpp - sums of absolute differences at a sample position, against a model in half-sample
// coordinates.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

namespace {

template <class T, class R>
struct SadFunction {
    const char *name;
    KelStatus (*call)(const T *, int, const T *, int, R *, int);
    int width, height;    // of the whole block
    int block, blockRows; // each result covers block x blockRows samples
    int results() const { return width / block * (height / blockRows); }
};

const SadFunction<Kel8u, Kel32s> functions8u32s[] = {
    {"keliSAD16x16_8u32s", keliSAD16x16_8u32s, 16, 16, 16, 16},
    {"keliSAD16x8_8u32s_C1R", keliSAD16x8_8u32s_C1R, 16, 8, 16, 8},
    {"keliSAD8x8_8u32s_C1R", keliSAD8x8_8u32s_C1R, 8, 8, 8, 8},
    {"keliSAD4x4_8u32s", keliSAD4x4_8u32s, 4, 4, 4, 4},
    {"keliSAD8x16_8u32s_C1R", keliSAD8x16_8u32s_C1R, 8, 16, 8, 16},
    {"keliSAD8x4_8u32s_C1R", keliSAD8x4_8u32s_C1R, 8, 4, 8, 4},
    {"keliSAD4x8_8u32s_C1R", keliSAD4x8_8u32s_C1R, 4, 8, 4, 8},
};

const SadFunction<Kel8u, Kel16u> functions8u16u[] = {
    {"keliSAD16x16Blocks8x8_8u16u", keliSAD16x16Blocks8x8_8u16u, 16, 16, 8, 8},
    {"keliSAD16x16Blocks4x4_8u16u", keliSAD16x16Blocks4x4_8u16u, 16, 16, 4, 4},
};

const SadFunction<Kel16u, Kel32s> functions16u32s[] = {
    {"keliSAD16x16_16u32s_C1R", keliSAD16x16_16u32s_C1R, 16, 16, 16, 16},
    {"keliSAD8x8_16u32s_C1R", keliSAD8x8_16u32s_C1R, 8, 8, 8, 8},
    {"keliSAD4x4_16u32s_C1R", keliSAD4x4_16u32s_C1R, 4, 4, 4, 4},
};

const SadFunction<Kel16u, Kel32u> functions16u32u[] = {
    {"keliSAD16x16Blocks8x8_16u32u_C1R", keliSAD16x16Blocks8x8_16u32u_C1R, 16, 16, 8, 8},
    {"keliSAD16x16Blocks4x4_16u32u_C1R", keliSAD16x16Blocks4x4_16u32u_C1R, 16, 16, 4, 4},
};

const int mcTypes[] = {0, 4, 8, 12};
int toTheRight(int mcType) {
    return mcType >= 8 ? 1 : 0;
}
int down(int mcType) {
    return mcType % 8 == 4 ? 1 : 0;
}

// The mean of the four full samples at the floor and the ceiling of both half-sample coordinates.
template <class T>
int halfSample(const Source<T> &ref, int row2, int col2) {
    const int top = row2 / 2, bottom = (row2 + 1) / 2, left = col2 / 2, right = (col2 + 1) / 2;
    return (ref(top, left) + ref(top, right) + ref(bottom, left) + ref(bottom, right) + 2) / 4;
}

template <class T>
long long model(const Source<T> &src, const Source<T> &ref, int mcType, int row0, int col0, int rows,
                int cols) {
    long long sum = 0;
    for (int row = row0; row < row0 + rows; ++row) {
        for (int col = col0; col < col0 + cols; ++col) {
            sum += std::abs(src(row, col) -
                            halfSample(ref, 2 * row + down(mcType), 2 * col + toTheRight(mcType)));
        }
    }
    return sum;
}

template <class T, class R>
void expectModel(const SadFunction<T, R> &f, const Source<T> &src, const Source<T> &ref, int mcType,
                 int dstOffset) {
    Destination<R> dst(f.results(), dstOffset);
    ASSERT_EQ(kelStsNoErr, f.call(src.data(), src.step(), ref.data(), ref.step(), dst.data(), mcType));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int i = 0; i < f.results(); ++i) {
        const int perRow = f.width / f.block;
        const int row = i / perRow * f.blockRows, col = i % perRow * f.block;
        EXPECT_EQ(model(src, ref, mcType, row, col, f.blockRows, f.block), dst[i]) << "block " << i;
    }
}

template <class T, class R>
void compareAll(const SadFunction<T, R> &f) {
    for (const PatternPair &pair : patternPairs(std::numeric_limits<T>::max())) {
        for (int mcType : mcTypes) {
            for (int step : {0, 1, 2, 15, 48, 144}) {
                for (int slack : {0, 1, 3, 8}) {
                    SCOPED_TRACE(testing::Message() << f.name << ", " << pair.name << ", mcType " << mcType
                                                    << ", width + " << step << ", slack " << slack);
                    const int widthBytes = f.width * static_cast<int>(sizeof(T));
                    Source<T> src(f.height, f.width, widthBytes + step, slack);
                    Source<T> ref(f.height + down(mcType), f.width + toTheRight(mcType), widthBytes + step,
                                  2 * slack);
                    src.fill(pair.src);
                    ref.fill(pair.ref);
                    expectModel(f, src, ref, mcType, slack);
                }
            }
        }
    }
}

template <class T, class R>
void expectRefused(const SadFunction<T, R> &f) {
    SCOPED_TRACE(f.name);
    const int w = f.width * static_cast<int>(sizeof(T));
    Source<T> src(17, 17, 160), ref(17, 17, 160);
    Destination<R> dst(f.results());
    EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 160, ref.data(), 160, dst.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), 160, nullptr, 160, dst.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), 160, ref.data(), 160, nullptr, 0));
    for (int step : {w - 1, 0, -160}) {
        EXPECT_EQ(kelStsStepErr, f.call(src.data(), step, ref.data(), 160, dst.data(), 0));
        EXPECT_EQ(kelStsStepErr, f.call(src.data(), 160, ref.data(), step, dst.data(), 0));
    }
    for (int mcType : {-4, -1, 1, 2, 3, 5, 7, 9, 11, 13, 16, 1 << 30}) {
        EXPECT_EQ(kelStsRangeErr, f.call(src.data(), 160, ref.data(), 160, dst.data(), mcType)) << mcType;
    }
    EXPECT_TRUE(dst.untouched());
}

} // namespace

TEST(KelvaraSad, OneSumEqualsTheModelAtEveryPosition) {
    for (const auto &f : functions8u32s) compareAll(f);
    for (const auto &f : functions16u32s) compareAll(f);
}

TEST(KelvaraSad, BlockSumsEqualTheModelAtEveryPosition) {
    for (const auto &f : functions8u16u) compareAll(f);
    for (const auto &f : functions16u32u) compareAll(f);
}

TEST(KelvaraSad, BadArgumentsAreRefusedAndNothingIsWritten) {
    for (const auto &f : functions8u32s) expectRefused(f);
    for (const auto &f : functions8u16u) expectRefused(f);
    for (const auto &f : functions16u32s) expectRefused(f);
    for (const auto &f : functions16u32u) expectRefused(f);
}

// Columns go 0, 100, 0, 100 and all rows are alike: only a horizontal half position sees 50.
TEST(KelvaraSad, FirstLetterOfThePositionIsHorizontal) {
    Source<Kel8u> src(4, 4, 4), ref(5, 5, 5);
    src.fill([](int, int col) { return col % 2 * 100; });
    ref.fill([](int, int col) { return col % 2 * 100; });
    const int expected[] = {0, 0, 16 * 50, 16 * 50};
    for (int i = 0; i < 4; ++i) {
        Destination<Kel32s> sad(1);
        ASSERT_EQ(kelStsNoErr, keliSAD4x4_8u32s(src.data(), 4, ref.data(), 5, sad.data(), mcTypes[i]));
        EXPECT_EQ(expected[i], sad[0]) << mcTypes[i];
    }
}

// Rows go 0, 1, 0, 1: the mean of two is 0.5 and the mean of four 0.5, both rounded up to 1.
TEST(KelvaraSad, HalvesAreRoundedUp) {
    Source<Kel8u> src(4, 4, 4), ref(5, 5, 5);
    src.fill(constant(0));
    ref.fill([](int row, int) { return row % 2; });
    for (int mcType : {4, 12}) {
        Destination<Kel32s> sad(1);
        ASSERT_EQ(kelStsNoErr, keliSAD4x4_8u32s(src.data(), 4, ref.data(), 5, sad.data(), mcType));
        EXPECT_EQ(16, sad[0]) << mcType;
    }
}

// Each 4x4 block has its own raster number everywhere, so that its sum is 16 times that number.
TEST(KelvaraSad, BlocksAreCountedInRasterOrder) {
    Source<Kel8u> src(16, 16, 16), ref(16, 16, 16);
    src.fill([](int row, int col) { return row / 4 * 4 + col / 4; });
    ref.fill(constant(0));
    Destination<Kel16u> sad(16);
    ASSERT_EQ(kelStsNoErr, keliSAD16x16Blocks4x4_8u16u(src.data(), 16, ref.data(), 16, sad.data(), 0));
    for (int i = 0; i < 16; ++i) EXPECT_EQ(16 * i, sad[i]);
}

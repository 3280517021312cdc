// idct_test.cpp - the inverse 8x8 DCT: the accuracy test of IEEE 1180-1990, and the forms of its destination.

#include "blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

namespace {

using Block = std::array<std::array<double, 8>, 8>;

// Row k of the orthonormal 8-point DCT.
const Block &basis() {
    static const Block rows = [] {
        Block result{};
        for (int k = 0; k < 8; ++k) {
            for (int n = 0; n < 8; ++n) {
                result[k][n] = (k ? 0.5 : std::sqrt(0.125)) * std::cos((2 * n + 1) * k * M_PI / 16);
            }
        }
        return result;
    }();
    return rows;
}

Block product(const Block &a, const Block &b, bool transposedA, bool transposedB) {
    Block result{};
    for (int i = 0; i < 8; ++i) {
        for (int j = 0; j < 8; ++j) {
            for (int k = 0; k < 8; ++k) {
                result[i][j] += (transposedA ? a[k][i] : a[i][k]) * (transposedB ? b[j][k] : b[k][j]);
            }
        }
    }
    return result;
}

Block forwardDct(const Block &samples) {
    return product(product(basis(), samples, false, false), basis(), false, true);
}

Block inverseDct(const Block &coeffs) {
    return product(product(basis(), coeffs, true, false), basis(), false, false);
}

double clipped(double value, double low, double high) {
    return std::max(low, std::min(high, value));
}

// The function's source: transposed.
Values<Kel16s> transposed(const Block &coeffs) {
    Values<Kel16s> result;
    for (int i = 0; i < 64; ++i) result[i] = static_cast<Kel16s>(coeffs[i % 8][i / 8]);
    return result;
}

Block asMatrix(const Values<Kel16s> &coeffs) {
    Block result;
    for (int i = 0; i < 64; ++i) result[i % 8][i / 8] = coeffs[i];
    return result;
}

// ---- IEEE 1180-1990 -----------------------------------------------------------------

// The generator that the standard prescribes: 32 bits, the low one dropped, scaled to -low to high.
class StandardRandom {
public:
    int operator()(int low, int high) {
        m_state = m_state * 1103515245u + 12345u;
        const double fraction = (m_state & 0x7ffffffeu) / static_cast<double>(0x7fffffff);
        return static_cast<int>(fraction * (low + high + 1)) - low;
    }

private:
    unsigned m_state = 1;
};

struct Errors {
    double peak = 0;
    Block sum{}, squares{};
    int blocks = 0;

    void add(const Block &expected, const Values<Kel16s> &samples) {
        ++blocks;
        for (int i = 0; i < 64; ++i) {
            const double error = clipped(samples[i], -256, 255) - expected[i / 8][i % 8];
            peak = std::max(peak, std::abs(error));
            sum[i / 8][i % 8] += error;
            squares[i / 8][i % 8] += error * error;
        }
    }
};

using Transform = Values<Kel16s> (*)(const Values<Kel16s> &transposedCoeffs);

Values<Kel16s> library(const Values<Kel16s> &coeffs) {
    Values<Kel16s> samples;
    EXPECT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(coeffs.data(), samples.data(), 16, 64));
    return samples;
}

// Samples from the generator, their DCT in doubles rounded and limited to 12 bits, then both inverse
// transforms.
Errors measure(Transform transform, int low, int high, int sign) {
    StandardRandom random;
    Errors errors;
    for (int n = 0; n < 10000; ++n) {
        Block samples;
        for (auto &row : samples) {
            for (double &sample : row) sample = sign * random(low, high);
        }
        Block coeffs = forwardDct(samples);
        for (auto &row : coeffs) {
            for (double &c : row) c = clipped(std::round(c), -2048, 2047);
        }
        Block reference = inverseDct(coeffs);
        for (auto &row : reference) {
            for (double &sample : row) sample = clipped(std::round(sample), -256, 255);
        }
        errors.add(reference, transform(transposed(coeffs)));
    }
    return errors;
}

// The limits that are not kept.
std::string broken(const Errors &errors) {
    std::string limits;
    double mean = 0, squares = 0, worstMean = 0, worstSquares = 0;
    for (int i = 0; i < 64; ++i) {
        const double sum = errors.sum[i / 8][i % 8] / errors.blocks;
        const double square = errors.squares[i / 8][i % 8] / errors.blocks;
        worstMean = std::max(worstMean, std::abs(sum));
        worstSquares = std::max(worstSquares, square);
        mean += sum / 64;
        squares += square / 64;
    }
    if (errors.peak > 1) limits += "peak ";
    if (worstSquares > 0.06) limits += "square ";
    if (squares > 0.02) limits += "all squares ";
    if (worstMean > 0.015) limits += "mean ";
    if (std::abs(mean) > 0.0015) limits += "all means ";
    return limits;
}

void expectAccuracy(int low, int high) {
    for (int sign : {1, -1}) EXPECT_EQ("", broken(measure(library, low, high, sign))) << "sign " << sign;
}

// ---- the four functions ----------------------------------------------------------------

// One or two blocks into one destination.
template <class T>
struct Function {
    const char *name;
    int blocks;
    KelStatus (*call)(const Kel16s *, const Kel16s *, T *, int, int, int);
};

template <class T, KelStatus (*f)(const Kel16s *, T *, int, int)>
KelStatus single(const Kel16s *src, const Kel16s *, T *dst, int step, int count, int) {
    return f(src, dst, step, count);
}

const Function<Kel16s> functions16s[] = {
    {"keliDCT8x8Inv_AANTransposed_16s_C1R", 1, single<Kel16s, keliDCT8x8Inv_AANTransposed_16s_C1R>},
    {"keliDCT8x8Inv_AANTransposed_16s_P2C2R", 2, keliDCT8x8Inv_AANTransposed_16s_P2C2R}};
const Function<Kel8u> functions8u[] = {
    {"keliDCT8x8Inv_AANTransposed_16s8u_C1R", 1, single<Kel8u, keliDCT8x8Inv_AANTransposed_16s8u_C1R>},
    {"keliDCT8x8Inv_AANTransposed_16s8u_P2C2R", 2, keliDCT8x8Inv_AANTransposed_16s8u_P2C2R}};

// What the function has to make of coefficients and count.
Block model(const Values<Kel16s> &coeffs, int count) {
    Values<Kel16s> read = coeffs;
    if (count <= 1) std::fill(read.begin() + count, read.end(), Kel16s(0));
    return inverseDct(asMatrix(read));
}

// Rounded to the nearest and limited; near a half either neighbour is right.
template <class T>
void expectSample(double exact, int sample) {
    const double low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
    EXPECT_LE(std::abs(clipped(exact, low, high) - sample), 0.5 + 0.03);
}

template <class T>
void expectModel(const Function<T> &f, int range, int countU, int countV, int extraStep, int offset) {
    SCOPED_TRACE(testing::Message() << f.name << ", counts " << countU << " " << countV << ", step + "
                                    << extraStep << ", offset " << offset);
    std::mt19937 generator(static_cast<unsigned>(range + countU));
    const int size = sizeof(T), width = 8 * f.blocks, step = width * size + extraStep;
    const auto u = randomBlock<Kel16s>(generator, -range, range),
               v = randomBlock<Kel16s>(generator, -range, range);
    SourceBlock<Kel16s> srcU(u, offset), srcV(v, 2 * offset);
    Destination<Kel8u> dst(7 * step + width * size, offset);
    const Destination<Kel8u> before(7 * step + width * size, offset);
    ASSERT_EQ(kelStsNoErr,
              f.call(srcU.data(), srcV.data(), reinterpret_cast<T *>(dst.data()), step, countU, countV));
    EXPECT_TRUE(dst.surroundingsIntact());
    const Block models[] = {model(u, countU), model(v, countV)};
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < width; ++x) {
            T sample;
            std::memcpy(&sample, dst.data() + y * step + x * size, sizeof sample);
            expectSample<T>(models[x % f.blocks][y][x / f.blocks], sample);
        }
        for (int i = width * size; i < step && y < 7; ++i)
            EXPECT_EQ(before[i], dst[y * step + i]) << "between rows";
    }
}

template <class T>
void compareAll(const Function<T> &f) {
    for (int range : {1, 20, 200, 2048, 32767}) {
        for (int extraStep : {0, 1, 16, 131}) {
            for (int offset : {0, 1, 3}) expectModel(f, range, 64, 64, extraStep, offset);
        }
    }
    for (int count : {0, 1, 2, 4, 12, 63, 64}) {
        expectModel(f, 200, count, 64, 0, 0);
        expectModel(f, 200, 64, count, 0, 0);
    }
}

template <class T>
void expectRefused(const Function<T> &f) {
    SCOPED_TRACE(f.name);
    const Values<Kel16s> src{};
    const int narrow = 8 * f.blocks * static_cast<int>(sizeof(T)) - 1;
    Destination<T> dst(8 * 64);
    EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, src.data(), dst.data(), 64, 64, 64));
    EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), src.data(), nullptr, 64, 64, 64));
    if (f.blocks == 2) {
        EXPECT_EQ(kelStsNullPtrErr, f.call(src.data(), nullptr, dst.data(), 64, 64, 64));
        EXPECT_EQ(kelStsRangeErr, f.call(src.data(), src.data(), dst.data(), 64, 64, 65));
    }
    for (int step : {narrow, 0, -64}) {
        EXPECT_EQ(kelStsStepErr, f.call(src.data(), src.data(), dst.data(), step, 65, 64))
            << "before the count";
    }
    for (int count : {-1, 65, 1 << 30}) {
        EXPECT_EQ(kelStsRangeErr, f.call(src.data(), src.data(), dst.data(), 64, count, 64));
    }
    EXPECT_TRUE(dst.untouched());
}

} // namespace

TEST(KelvaraIdctAccuracy, SamplesOfNineBits) {
    expectAccuracy(256, 255);
}
TEST(KelvaraIdctAccuracy, SmallSamples) {
    expectAccuracy(5, 5);
}
TEST(KelvaraIdctAccuracy, SamplesBeyondTheRange) {
    expectAccuracy(300, 300);
}

// What the measurement is to notice: fractions dropped, and one coefficient off by a little.
TEST(KelvaraIdctAccuracy, LessAccurateTransformsAreFoundOut) {
    const Transform dropping = [](const Values<Kel16s> &coeffs) {
        Values<Kel16s> samples;
        const Block exact = inverseDct(asMatrix(coeffs));
        for (int i = 0; i < 64; ++i) samples[i] = static_cast<Kel16s>(exact[i / 8][i % 8]);
        return samples;
    };
    const Transform careless = [](const Values<Kel16s> &coeffs) {
        Values<Kel16s> wrong = coeffs;
        wrong[9] = static_cast<Kel16s>(wrong[9] + 1);
        return library(wrong);
    };
    EXPECT_NE("", broken(measure(dropping, 256, 255, 1)));
    EXPECT_NE("", broken(measure(careless, 256, 255, 1)));
}

TEST(KelvaraIdctAccuracy, ZerosStayZeros) {
    Values<Kel16s> result;
    result.fill(77);
    ASSERT_EQ(kelStsNoErr,
              keliDCT8x8Inv_AANTransposed_16s_C1R(Values<Kel16s>{}.data(), result.data(), 16, 64));
    EXPECT_EQ(Values<Kel16s>{}, result);
}

TEST(KelvaraIdct, SamplesEqualTheModelInDoubles) {
    for (const auto &f : functions16s) compareAll(f);
    for (const auto &f : functions8u) compareAll(f);
}

TEST(KelvaraIdct, BadArgumentsAreRefusedAndNothingIsWritten) {
    for (const auto &f : functions16s) expectRefused(f);
    for (const auto &f : functions8u) expectRefused(f);
}

// Horizontal frequency 1 alone: all rows are alike, and it is the ninth coefficient of the source.
TEST(KelvaraIdct, SourceIsTransposed) {
    Values<Kel16s> src{}, dst;
    src[8] = 400;
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(src.data(), dst.data(), 16, 64));
    for (int i = 0; i < 64; ++i) EXPECT_EQ(dst[i % 8], dst[i]);
    EXPECT_GT(dst[0], dst[3]);
    EXPECT_EQ(dst[0], -dst[7]);
}

TEST(KelvaraIdct, DcAloneEqualsAllCoefficientsWithZeros) {
    for (int dc = -2048; dc < 2048; ++dc) {
        Values<Kel16s> src{}, one, all;
        src[0] = static_cast<Kel16s>(dc);
        ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(src.data(), one.data(), 16, 1));
        ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(src.data(), all.data(), 16, 64));
        ASSERT_EQ(one, all) << dc;
        ASSERT_EQ(std::round(dc / 8.0), one[0]);
    }
}

TEST(KelvaraIdct, WithoutCoefficientsNoneIsRead) {
    Values<Kel16s> src, dst;
    src.fill(99);
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(src.data(), dst.data(), 16, 0));
    EXPECT_EQ(Values<Kel16s>{}, dst);
}

TEST(KelvaraIdct, SamplesAreLimitedToTheirType) {
    Values<Kel16s> src;
    src.fill(32767);
    Values<Kel16s> wide;
    Values<Kel8u> narrow;
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(src.data(), wide.data(), 16, 64));
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s8u_C1R(src.data(), narrow.data(), 8, 64));
    EXPECT_EQ(32767, wide[0]);
    EXPECT_EQ(255, narrow[0]);
    src.fill(-32768);
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(src.data(), wide.data(), 16, 64));
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s8u_C1R(src.data(), narrow.data(), 8, 64));
    EXPECT_EQ(-32768, wide[0]);
    EXPECT_EQ(0, narrow[0]);
}

// variance_test.cpp - variances and means, against two passes over the samples in exact fractions.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

struct Statistics {
    double mean, variance;
};

// Every quotient has a power of two below the line, so that doubles hold all of them exactly.
Statistics statisticsOf(int size, const std::function<int(int, int)> &sample) {
    double sum = 0, squares = 0;
    for (int i = 0; i < size * size; ++i) sum += sample(i / size, i % size);
    const double mean = sum / (size * size);
    for (int i = 0; i < size * size; ++i) {
        const double distance = sample(i / size, i % size) - mean;
        squares += distance * distance;
    }
    return {mean, squares / (size * size)};
}

long long nearest(double value) {
    return static_cast<long long>(std::floor(value + 0.5));
}

template <class T>
void compareVarMean(KelStatus (*f)(const T *, int, Kel32s *, Kel32s *), const Pattern &pattern, int step,
                    int slack) {
    Source<T> src(8, 8, 8 * static_cast<int>(sizeof(T)) + step, slack);
    src.fill(pattern);
    Destination<Kel32s> var(1, slack), mean(1, slack + 1);
    ASSERT_EQ(kelStsNoErr, f(src.data(), src.step(), var.data(), mean.data()));
    EXPECT_TRUE(var.surroundingsIntact());
    EXPECT_TRUE(mean.surroundingsIntact());
    const Statistics expected = statisticsOf(8, [&](int row, int col) { return src(row, col); });
    EXPECT_EQ(nearest(expected.variance), var[0]);
    EXPECT_EQ(nearest(expected.mean), mean[0]);
}

const int low16 = std::numeric_limits<Kel16s>::min(), high16 = std::numeric_limits<Kel16s>::max();

std::vector<Pattern> patterns8u() {
    return {noise(1, 255), noise(2, 1), constant(0), constant(255), checkerboard(255), checkerboard(1)};
}

std::vector<Pattern> patterns16s() {
    return {signedNoise(1, -2000, 2000),
            signedNoise(2, low16, high16),
            signedNoise(3, -1, 0),
            constant(low16),
            constant(high16),
            [](int row, int col) { return (row + col) % 2 ? low16 : high16; }};
}

struct DiffFunction {
    const char *name;
    KelStatus (*call)(const Kel8u *, int, const Kel8u *, int, const Kel32s *, Kel32s *, Kel32s *, int);
    int height;
    int blocks() const { return height / 4; }
};

const DiffFunction diffFunctions[] = {
    {"keliVarMeanDiff16x16_8u32s_C1R", keliVarMeanDiff16x16_8u32s_C1R, 16},
    {"keliVarMeanDiff16x8_8u32s_C1R", keliVarMeanDiff16x8_8u32s_C1R, 8},
};

void compareDiff(const DiffFunction &f, const PatternPair &data, int mcType, int step, int slack) {
    Source<Kel8u> cur(f.height, 16, 16 + step, slack);
    cur.fill(data.src);
    RefBlock ref(16, f.height, 1, mcType, 16 + 2 * step, slack + 1, data.ref);
    Source<Kel32s> sums(1, f.blocks(), 16, slack);
    sums.fill([&](int, int block) {
        int sum = 0;
        for (int i = 0; i < 64; ++i) sum += cur(block / 2 * 8 + i / 8, block % 2 * 8 + i % 8);
        return sum;
    });
    Destination<Kel32s> var(f.blocks(), slack), mean(f.blocks(), slack + 1);
    ASSERT_EQ(kelStsNoErr, f.call(cur.data(), cur.step(), ref.samples.data(), ref.samples.step(), sums.data(),
                                  var.data(), mean.data(), mcType));
    EXPECT_TRUE(var.surroundingsIntact());
    EXPECT_TRUE(mean.surroundingsIntact());
    for (int block = 0; block < f.blocks(); ++block) {
        const int top = block / 2 * 8, left = block % 2 * 8;
        const Statistics expected = statisticsOf(8, [&](int row, int col) {
            return cur(top + row, left + col) - ref.predicted(top + row, left + col, 0);
        });
        EXPECT_EQ(nearest(expected.variance), var[block]) << "block " << block;
        EXPECT_EQ(nearest(expected.mean), mean[block]) << "block " << block;
    }
}

// Variance and mean of a block of 10 against a prediction of 3, with a sum that is given.
std::vector<int> withSum(int sum) {
    Source<Kel8u> cur(8, 16, 16), ref(8, 16, 16);
    cur.fill(constant(10));
    ref.fill(constant(3));
    const Kel32s sums[2] = {sum, sum};
    Kel32s var[2], mean[2];
    EXPECT_EQ(kelStsNoErr, keliVarMeanDiff16x8_8u32s_C1R(cur.data(), 16, ref.data(), 16, sums, var, mean, 0));
    EXPECT_EQ(var[0], var[1]);
    EXPECT_EQ(mean[0], mean[1]);
    return {var[0], mean[0]};
}

} // namespace

TEST(KelvaraVariance, OfAMacroblockEqualsTheModel) {
    for (const Pattern &pattern : patterns8u()) {
        for (int step : {0, 1, 44}) {
            for (int slack : {0, 1, 3}) {
                Source<Kel8u> src(16, 16, 16 + step, slack);
                src.fill(pattern);
                Destination<Kel32s> var(1, slack);
                ASSERT_EQ(kelStsNoErr, keliVariance16x16_8u32s(src.data(), src.step(), var.data()));
                EXPECT_TRUE(var.surroundingsIntact());
                const Statistics expected = statisticsOf(16, [&](int row, int col) { return src(row, col); });
                EXPECT_EQ(nearest(expected.variance), var[0]);
            }
        }
    }
}

TEST(KelvaraVariance, VarianceAndMeanOfABlockEqualTheModel) {
    for (int step : {0, 1, 24}) {
        for (int slack : {0, 1, 3}) {
            for (const Pattern &pattern : patterns8u())
                compareVarMean(keliVarMean8x8_8u32s_C1R, pattern, step, slack);
            for (const Pattern &pattern : patterns16s())
                compareVarMean(keliVarMean8x8_16s32s_C1R, pattern, step, slack);
        }
    }
}

// 32 samples of -1 and 32 of 0: the mean -0.5 goes up to 0, the variance 0.25 to 0.
TEST(KelvaraVariance, HalvesGoUpBelowZeroToo) {
    Source<Kel16s> src(8, 8, 16);
    src.fill([](int row, int) { return -(row % 2); });
    Kel32s var = 7, mean = 7;
    ASSERT_EQ(kelStsNoErr, keliVarMean8x8_16s32s_C1R(src.data(), 16, &var, &mean));
    EXPECT_EQ(0, mean);
    EXPECT_EQ(0, var);
}

TEST(KelvaraVariance, OfDifferencesEqualsTheModelAtEveryPosition) {
    for (const DiffFunction &f : diffFunctions) {
        for (const PatternPair &data : patternPairs(255)) {
            for (int mcType : mcTypes) {
                for (int i = 0; i < 3; ++i) {
                    SCOPED_TRACE(testing::Message() << f.name << ", " << data.name << ", mcType " << mcType);
                    compareDiff(f, data, mcType, 7 * i, i);
                }
            }
        }
    }
}

// The differences are 7 each, 49 squared. The sum says 640 - 192 for 64 of them, or what it likes.
TEST(KelvaraVariance, TheSumsOfTheCurrentBlocksAreTrusted) {
    EXPECT_EQ((std::vector<int>{0, 7}), withSum(640));
    EXPECT_EQ((std::vector<int>{49, 0}), withSum(192));
    EXPECT_EQ((std::vector<int>{49 - 100, -10}), withSum(192 - 640));
}

TEST(KelvaraVariance, ResultsOfSumsThatCannotBeAreLimitedTo32Bits) {
    const int low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    EXPECT_EQ((std::vector<int>{low, high / 64 - 2}), withSum(high));
    EXPECT_EQ((std::vector<int>{low, low / 64 - 3}), withSum(low));
}

TEST(KelvaraVariance, BadArgumentsAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(17, 17, 32);
    Source<Kel16s> src16(8, 8, 16);
    Destination<Kel32s> var(4), mean(4);
    for (int step : {15, 0, -32})
        EXPECT_EQ(kelStsStepErr, keliVariance16x16_8u32s(src.data(), step, var.data())) << step;
    EXPECT_EQ(kelStsNullPtrErr, keliVariance16x16_8u32s(nullptr, 0, var.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliVariance16x16_8u32s(src.data(), 32, nullptr));

    for (int step : {7, 0, -32}) {
        EXPECT_EQ(kelStsStepErr, keliVarMean8x8_8u32s_C1R(src.data(), step, var.data(), mean.data()));
        EXPECT_EQ(kelStsStepErr, keliVarMean8x8_16s32s_C1R(src16.data(), 8 + step, var.data(), mean.data()));
    }
    EXPECT_EQ(kelStsNullPtrErr, keliVarMean8x8_8u32s_C1R(nullptr, 0, var.data(), mean.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliVarMean8x8_8u32s_C1R(src.data(), 32, nullptr, mean.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliVarMean8x8_8u32s_C1R(src.data(), 32, var.data(), nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliVarMean8x8_16s32s_C1R(nullptr, 0, var.data(), mean.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliVarMean8x8_16s32s_C1R(src16.data(), 16, nullptr, mean.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliVarMean8x8_16s32s_C1R(src16.data(), 16, var.data(), nullptr));
    EXPECT_TRUE(var.untouched());
    EXPECT_TRUE(mean.untouched());
}

TEST(KelvaraVariance, BadArgumentsOfDifferencesAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(17, 17, 32);
    const Kel8u *s = src.data();
    const Kel32s sums[4] = {0, 0, 0, 0};
    for (const DiffFunction &f : diffFunctions) {
        SCOPED_TRACE(f.name);
        Destination<Kel32s> var(4), mean(4);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 0, s, 32, sums, var.data(), mean.data(), 1));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 32, nullptr, 32, sums, var.data(), mean.data(), 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 32, s, 32, nullptr, var.data(), mean.data(), 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 32, s, 32, sums, nullptr, mean.data(), 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 32, s, 32, sums, var.data(), nullptr, 0));
        for (int step : {15, 0, -32}) {
            EXPECT_EQ(kelStsStepErr, f.call(s, step, s, 32, sums, var.data(), mean.data(), 0));
            EXPECT_EQ(kelStsStepErr, f.call(s, 32, s, step, sums, var.data(), mean.data(), 1));
        }
        for (int mcType : notMcTypes)
            EXPECT_EQ(kelStsRangeErr, f.call(s, 32, s, 32, sums, var.data(), mean.data(), mcType)) << mcType;
        EXPECT_TRUE(var.untouched());
        EXPECT_TRUE(mean.untouched());
    }
}

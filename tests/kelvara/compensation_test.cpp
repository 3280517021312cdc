// compensation_test.cpp - predictions with the residual added, against a model in exact fractions.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

struct OneReference {
    const char *name;
    KelStatus (*call)(const Kel8u *, int, const Kel16s *, int, Kel8u *, int, int, int);
    int width, height;
    int channels = 1;
};

struct TwoReferences {
    const char *name;
    KelStatus (*call)(const Kel8u *, int, int, const Kel8u *, int, int, const Kel16s *, int, Kel8u *, int,
                      int);
    int width, height;
    int channels = 1;
};

const OneReference functions[] = {
    {"keliMC16x16_8u_C1", keliMC16x16_8u_C1, 16, 16},     {"keliMC16x8_8u_C1", keliMC16x8_8u_C1, 16, 8},
    {"keliMC8x16_8u_C1", keliMC8x16_8u_C1, 8, 16},        {"keliMC8x8_8u_C1", keliMC8x8_8u_C1, 8, 8},
    {"keliMC8x4_8u_C1", keliMC8x4_8u_C1, 8, 4},           {"keliMC16x4_8u_C1", keliMC16x4_8u_C1, 16, 4},
    {"keliMC16x8UV_8u_C1", keliMC16x8UV_8u_C1, 16, 8, 2}, {"keliMC4x8_8u_C1", keliMC4x8_8u_C1, 4, 8},
    {"keliMC4x4_8u_C1", keliMC4x4_8u_C1, 4, 4},           {"keliMC4x2_8u_C1", keliMC4x2_8u_C1, 4, 2},
    {"keliMC2x4_8u_C1", keliMC2x4_8u_C1, 2, 4},           {"keliMC2x2_8u_C1", keliMC2x2_8u_C1, 2, 2},
};

const TwoReferences functionsB[] = {
    {"keliMC16x16B_8u_C1", keliMC16x16B_8u_C1, 16, 16},     {"keliMC16x8B_8u_C1", keliMC16x8B_8u_C1, 16, 8},
    {"keliMC8x16B_8u_C1", keliMC8x16B_8u_C1, 8, 16},        {"keliMC8x8B_8u_C1", keliMC8x8B_8u_C1, 8, 8},
    {"keliMC8x4B_8u_C1", keliMC8x4B_8u_C1, 8, 4},           {"keliMC16x4B_8u_C1", keliMC16x4B_8u_C1, 16, 4},
    {"keliMC16x8BUV_8u_C1", keliMC16x8BUV_8u_C1, 16, 8, 2}, {"keliMC4x8B_8u_C1", keliMC4x8B_8u_C1, 4, 8},
    {"keliMC4x4B_8u_C1", keliMC4x4B_8u_C1, 4, 4},           {"keliMC2x4B_8u_C1", keliMC2x4B_8u_C1, 2, 4},
    {"keliMC4x2B_8u_C1", keliMC4x2B_8u_C1, 4, 2},           {"keliMC2x2B_8u_C1", keliMC2x2B_8u_C1, 2, 2},
};

struct Data {
    const char *name;
    Pattern forward, backward, residual;
};

std::vector<Data> dataSets() {
    return {{"small residual", noise(1, 255), noise(2, 255), signedNoise(3, -255, 255)},
            {"any residual", noise(4, 255), noise(5, 255), signedNoise(6, -32768, 32767)},
            {"no residual", noise(7, 255), checkerboard(255), constant(0)},
            {"highest", constant(255), constant(255), constant(32767)},
            {"lowest", constant(0), constant(0), constant(-32768)},
            {"checkerboards", checkerboard(255), checkerboard(1), signedNoise(8, -1, 1)}};
}

// Bytes beyond the width: of the first and the second reference, of the residual, of the destination.
struct Steps {
    int forward, backward, residual, dst;
};
const Steps allSteps[] = {{0, 0, 0, 0}, {1, 2, 3, 5}, {144, 16, 128, 48}};

int limited(int value) {
    return std::clamp(value, 0, 255);
}

void compare(const OneReference &f, const Data &data, int mcType, int roundControl, const Steps &steps,
             int slack) {
    const int w = f.width, h = f.height;
    RefBlock ref(w, h, f.channels, mcType, w + steps.forward, slack, data.forward);
    Source<Kel16s> residual(h, w, 2 * w + steps.residual, 2 * slack + 1);
    residual.fill(data.residual);
    DstBlock<Kel8u> dst(h, w, w + steps.dst, slack);
    ASSERT_EQ(kelStsNoErr, f.call(ref.samples.data(), ref.samples.step(), residual.data(), residual.step(),
                                  dst.data(), dst.step(), mcType, roundControl));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            ASSERT_EQ(limited(ref.predicted(row, col, roundControl) + residual(row, col)), dst(row, col))
                << "row " << row << ", column " << col;
        }
    }
}

void compare(const TwoReferences &f, const Data &data, int mcTypeF, int mcTypeB, int roundControl,
             const Steps &steps, int slack) {
    const int w = f.width, h = f.height;
    RefBlock forward(w, h, f.channels, mcTypeF, w + steps.forward, slack, data.forward);
    RefBlock backward(w, h, f.channels, mcTypeB, w + steps.backward, slack + 1, data.backward);
    Source<Kel16s> residual(h, w, 2 * w + steps.residual, 2 * slack + 1);
    residual.fill(data.residual);
    DstBlock<Kel8u> dst(h, w, w + steps.dst, slack);
    ASSERT_EQ(kelStsNoErr, f.call(forward.samples.data(), forward.samples.step(), mcTypeF,
                                  backward.samples.data(), backward.samples.step(), mcTypeB, residual.data(),
                                  residual.step(), dst.data(), dst.step(), roundControl));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            const int pred = predicted(forward, backward, row, col, roundControl);
            ASSERT_EQ(limited(pred + residual(row, col)), dst(row, col))
                << "row " << row << ", column " << col;
        }
    }
}

// A prediction from one row of samples, without a residual.
std::vector<int> predictRow(const OneReference &f, Pattern ref, int mcType, int roundControl) {
    RefBlock block(f.width, f.height, f.channels, mcType, 32, 0, ref);
    Source<Kel16s> residual(f.height, f.width, 32);
    residual.fill(constant(0));
    DstBlock<Kel8u> dst(f.height, f.width, 32);
    EXPECT_EQ(kelStsNoErr,
              f.call(block.samples.data(), 32, residual.data(), 32, dst.data(), 32, mcType, roundControl));
    std::vector<int> row;
    for (int col = 0; col < f.width; ++col) row.push_back(dst(0, col));
    return row;
}

const OneReference &mc2x2 = functions[11];
const OneReference &mcUV = functions[6];

} // namespace

TEST(KelvaraCompensation, OneReferenceEqualsTheModelAtEveryPositionWithBothRoundings) {
    for (const OneReference &f : functions) {
        for (const Data &data : dataSets()) {
            for (int mcType : mcTypes) {
                for (int i = 0; i < 6; ++i) {
                    SCOPED_TRACE(testing::Message() << f.name << ", " << data.name << ", mcType " << mcType
                                                    << ", rounding " << i % 2 << ", steps " << i / 2);
                    compare(f, data, mcType, i % 2, allSteps[i / 2], i);
                }
            }
        }
    }
}

TEST(KelvaraCompensation, TwoReferencesEqualTheModelAtEveryPairOfPositionsWithBothRoundings) {
    for (const TwoReferences &f : functionsB) {
        for (const Data &data : dataSets()) {
            for (int pair = 0; pair < 16; ++pair) {
                for (int i = 0; i < 6; ++i) {
                    const int mcTypeF = mcTypes[pair % 4], mcTypeB = mcTypes[pair / 4];
                    SCOPED_TRACE(testing::Message()
                                 << f.name << ", " << data.name << ", " << mcTypeF << " and " << mcTypeB
                                 << ", rounding " << i % 2 << ", steps " << i / 2);
                    compare(f, data, mcTypeF, mcTypeB, i % 2, allSteps[i / 2], i);
                }
            }
        }
    }
}

// 0 and 1 below and beside each other: the means are 0.5.
TEST(KelvaraCompensation, RoundControlTurnsHalvesFromUpToDown) {
    const Pattern halves = checkerboard(1);
    for (int mcType : {4, 8, 12}) {
        EXPECT_EQ((std::vector<int>{1, 1}), predictRow(mc2x2, halves, mcType, 0)) << mcType;
        EXPECT_EQ((std::vector<int>{0, 0}), predictRow(mc2x2, halves, mcType, 1)) << mcType;
    }
}

// Of 0, 0, 0, 1 a quarter and of 0, 1, 1, 1 three quarters: no halves.
TEST(KelvaraCompensation, RoundControlLeavesQuartersToTheNearest) {
    const Pattern one = [](int row, int col) { return row == 0 && col == 0; };
    const Pattern three = [](int row, int col) { return row != 0 || col != 0; };
    for (int roundControl : {0, 1}) {
        EXPECT_EQ(0, predictRow(mc2x2, one, 12, roundControl)[0]);
        EXPECT_EQ(1, predictRow(mc2x2, three, 12, roundControl)[0]);
    }
}

// U is 10, 20, 30 ... and V is 200 everywhere: neither may see the other.
TEST(KelvaraCompensation, NeighboursInInterleavedRowsAreOfTheSameColour) {
    const Pattern uv = [](int, int col) { return col % 2 ? 200 : 10 * (col / 2 + 1); };
    const std::vector<int> row = predictRow(mcUV, uv, 8, 0);
    for (int col = 0; col < 16; ++col) EXPECT_EQ(col % 2 ? 200 : 5 * col + 15, row[col]) << col;
}

// Columns go 0, 100, 0: only a position between columns sees 50.
TEST(KelvaraCompensation, FirstLetterOfThePositionIsHorizontal) {
    const Pattern columns = [](int, int col) { return col % 2 * 100; };
    EXPECT_EQ((std::vector<int>{0, 100}), predictRow(mc2x2, columns, 4, 0));
    EXPECT_EQ((std::vector<int>{50, 50}), predictRow(mc2x2, columns, 8, 0));
}

// Forward 10, backward 11: 10.5 is 11 for both roundings.
TEST(KelvaraCompensation, TheMeanOfTwoPredictionsIsRoundedUpWhateverTheControl) {
    RefBlock forward(2, 2, 1, 0, 2, 0, constant(10)), backward(2, 2, 1, 0, 2, 0, constant(11));
    Source<Kel16s> residual(2, 2, 4);
    residual.fill(constant(0));
    for (int roundControl : {0, 1}) {
        DstBlock<Kel8u> dst(2, 2, 2);
        ASSERT_EQ(kelStsNoErr, keliMC2x2B_8u_C1(forward.samples.data(), 2, 0, backward.samples.data(), 2, 0,
                                                residual.data(), 4, dst.data(), 2, roundControl));
        for (int i = 0; i < 4; ++i) EXPECT_EQ(11, dst(i / 2, i % 2)) << roundControl;
    }
}

TEST(KelvaraCompensation, BadArgumentsOfOneReferenceAreRefusedAndNothingIsWritten) {
    Source<Kel8u> ref(17, 18, 64);
    Source<Kel16s> residual(16, 16, 64);
    const Kel8u *r = ref.data();
    const Kel16s *d = residual.data();
    for (const OneReference &f : functions) {
        SCOPED_TRACE(f.name);
        const int w = f.width;
        DstBlock<Kel8u> dst(16, 16, 64);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 64, d, 64, dst.data(), 64, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(r, 64, nullptr, 64, dst.data(), 64, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(r, 64, d, 64, nullptr, 64, 0, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 0, d, 64, dst.data(), 64, 1, 2)) << "judged first";
        for (int step : {-64, 0, w - 1}) {
            EXPECT_EQ(kelStsStepErr, f.call(r, step, d, 64, dst.data(), 64, 0, 0));
            EXPECT_EQ(kelStsStepErr, f.call(r, 64, d, w + step, dst.data(), 64, 0, 0));
            EXPECT_EQ(kelStsStepErr, f.call(r, 64, d, 64, dst.data(), step, 1, 2)) << "before the codes";
        }
        for (int mcType : notMcTypes)
            EXPECT_EQ(kelStsRangeErr, f.call(r, 64, d, 64, dst.data(), 64, mcType, 0)) << mcType;
        for (int control : notRoundControls)
            EXPECT_EQ(kelStsRangeErr, f.call(r, 64, d, 64, dst.data(), 64, 0, control)) << control;
        EXPECT_TRUE(dst.untouched());
    }
}

TEST(KelvaraCompensation, BadArgumentsOfTwoReferencesAreRefusedAndNothingIsWritten) {
    Source<Kel8u> ref(17, 18, 64);
    Source<Kel16s> residual(16, 16, 64);
    const Kel8u *r = ref.data();
    const Kel16s *d = residual.data();
    for (const TwoReferences &f : functionsB) {
        SCOPED_TRACE(f.name);
        const int w = f.width;
        DstBlock<Kel8u> dst(16, 16, 64);
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 64, 0, r, 64, 0, d, 64, dst.data(), 64, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(r, 64, 0, nullptr, 64, 0, d, 64, dst.data(), 64, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(r, 64, 0, r, 64, 0, nullptr, 64, dst.data(), 64, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(r, 64, 0, r, 64, 0, d, 64, nullptr, 64, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(r, 0, 1, r, 64, 0, d, 64, nullptr, 64, 2)) << "judged first";
        for (int step : {-64, 0, w - 1}) {
            EXPECT_EQ(kelStsStepErr, f.call(r, step, 0, r, 64, 0, d, 64, dst.data(), 64, 0));
            EXPECT_EQ(kelStsStepErr, f.call(r, 64, 0, r, step, 0, d, 64, dst.data(), 64, 0));
            EXPECT_EQ(kelStsStepErr, f.call(r, 64, 0, r, 64, 0, d, w + step, dst.data(), 64, 0));
            EXPECT_EQ(kelStsStepErr, f.call(r, 64, 1, r, 64, 0, d, 64, dst.data(), step, 2))
                << "before codes";
        }
        for (int mcType : notMcTypes) {
            EXPECT_EQ(kelStsRangeErr, f.call(r, 64, mcType, r, 64, 0, d, 64, dst.data(), 64, 0)) << mcType;
            EXPECT_EQ(kelStsRangeErr, f.call(r, 64, 0, r, 64, mcType, d, 64, dst.data(), 64, 0)) << mcType;
        }
        for (int control : notRoundControls)
            EXPECT_EQ(kelStsRangeErr, f.call(r, 64, 0, r, 64, 0, d, 64, dst.data(), 64, control)) << control;
        EXPECT_TRUE(dst.untouched());
    }
}

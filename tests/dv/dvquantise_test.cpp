// dvquantise_test.cpp - inverse quantisation and weighting of DV and DV100, against exact products and the
// formulas of the standards.

#include "../kelvara/blocktest.h"
#include "dv100tables.h"
#include "dvformat.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

namespace {

Kel16s nearest(double value) {
    return static_cast<Kel16s>(std::clamp(std::floor(value + 0.5), -32768.0, 32767.0));
}

// Products of three 16-bit numbers are exact in doubles.
void expectDv(const Values<Kel16s> &x, const Values<Kel16s> &steps, const Values<Kel16s> &weights,
              int offset) {
    InPlace block(x, offset);
    SourceBlock<Kel16s> stepTable(steps, offset), weightTable(weights, offset);
    ASSERT_EQ(kelStsNoErr,
              keliQuantWeightBlockInv_DV_16s_C1I(block.data(), stepTable.data(), weightTable.data()));
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(nearest(1.0 * x[i] * steps[i] * weights[i] / 4096), block[i]) << "at " << i;
    EXPECT_TRUE(block.surroundingsIntact());
}

void expectDv100(const Values<Kel16s> &x, const Values<Kel16s> &weights, int step, int offset) {
    InPlace block(x, offset);
    SourceBlock<Kel16s> weightTable(weights, offset);
    ASSERT_EQ(kelStsNoErr, keliQuantWeightBlockInv_DV100_16s_C1I(block.data(), weightTable.data(), step));
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(nearest(1.0 * x[i] * weights[i] * (i == 0 ? 1 : step) / 32), block[i]) << "at " << i;
    EXPECT_TRUE(block.surroundingsIntact());
}

const Values<Kel16s> one = [] {
    Values<Kel16s> values;
    values.fill(1);
    return values;
}();

} // namespace

// ---- DV ------------------------------------------------------------------------------------

TEST(KelvaraQuantWeightDv, EachLevelIsMultipliedByStepAndWeight) {
    std::mt19937 generator(1);
    for (int pass = 0; pass < 30; ++pass) {
        for (int offset : {0, 1, 2, 7}) {
            expectDv(randomBlock<Kel16s>(generator, -256, 255), randomBlock<Kel16s>(generator, 1, 32),
                     randomBlock<Kel16s>(generator, 8192, 16384), offset);
            for (int limit : {20, 400, 32767}) {
                expectDv(randomBlock<Kel16s>(generator, -limit - 1, limit),
                         randomBlock<Kel16s>(generator, -limit - 1, limit),
                         randomBlock<Kel16s>(generator, -limit - 1, limit), offset);
            }
        }
    }
}

TEST(KelvaraQuantWeightDv, HalvesAreRoundedUp) {
    Values<Kel16s> x, weights;
    for (int i = 0; i < 64; ++i) x[i] = static_cast<Kel16s>(i - 32);
    weights.fill(2048);
    expectDv(x, one, weights, 0);
    InPlace block(x);
    ASSERT_EQ(kelStsNoErr, keliQuantWeightBlockInv_DV_16s_C1I(block.data(), one.data(), weights.data()));
    EXPECT_EQ(1, block[33]) << "a half";
    EXPECT_EQ(0, block[31]) << "minus a half";
}

// With the tables of the standard a coefficient is level * step / weight, but for the 12 bits of the weights.
TEST(KelvaraQuantWeightDv, TablesOfTheStandardUndoTheCoder) {
    std::mt19937 generator(2);
    for (int mode : {0, 1}) {
        for (int row = 0; row < 64; ++row) {
            Values<Kel16s> steps, weights;
            for (int place = 0; place < 64; ++place) {
                const int index = dv::scans[mode][place];
                steps[index] = static_cast<Kel16s>(dv::stepOf(place, row / 16, row % 16));
                weights[index] = static_cast<Kel16s>(std::lround(4096 / dv::weightOf(index, mode)));
            }
            const auto levels = randomBlock<Kel16s>(generator, -255, 255);
            InPlace block(levels);
            ASSERT_EQ(kelStsNoErr,
                      keliQuantWeightBlockInv_DV_16s_C1I(block.data(), steps.data(), weights.data()));
            for (int i = 0; i < 64; ++i) {
                const double exact = levels[i] * steps[i] / dv::weightOf(i, mode);
                const double slack = std::abs(levels[i] * steps[i]) * 0.5 / 4096;
                EXPECT_LE(std::abs(exact - block[i]), 0.5 + slack + 1e-9) << "at " << i;
            }
        }
    }
}

TEST(KelvaraQuantWeightDv, ZeroWeightsGiveZeros) {
    std::mt19937 generator(3);
    InPlace block(randomBlock<Kel16s>(generator, -255, 255));
    const Values<Kel16s> zeros = {};
    ASSERT_EQ(kelStsNoErr, keliQuantWeightBlockInv_DV_16s_C1I(block.data(), one.data(), zeros.data()));
    for (int i = 0; i < 64; ++i) EXPECT_EQ(0, block[i]);
}

TEST(KelvaraQuantWeightDv, BadArgumentsAreRefusedAndNothingIsWritten) {
    Destination<Kel16s> block(64);
    EXPECT_EQ(kelStsNullPtrErr, keliQuantWeightBlockInv_DV_16s_C1I(nullptr, one.data(), one.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantWeightBlockInv_DV_16s_C1I(block.data(), nullptr, one.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantWeightBlockInv_DV_16s_C1I(block.data(), one.data(), nullptr));
    EXPECT_TRUE(block.untouched());
}

// ---- DV100 -----------------------------------------------------------------------------------

TEST(KelvaraQuantWeightDv100, EachLevelButDcIsMultipliedByTheStep) {
    std::mt19937 generator(4);
    for (int pass = 0; pass < 30; ++pass) {
        for (int offset : {0, 1, 2, 7}) {
            for (int step : {1, 3, 52, 415, 416}) {
                expectDv100(randomBlock<Kel16s>(generator, -256, 255),
                            randomBlock<Kel16s>(generator, 16, 492), step, offset);
                expectDv100(randomBlock<Kel16s>(generator, -32768, 32767),
                            randomBlock<Kel16s>(generator, -32768, 32767), step, offset);
            }
        }
    }
}

TEST(KelvaraQuantWeightDv100, TablesOfTheStandardFit) {
    std::mt19937 generator(5);
    for (const int(&weights)[64] : dv100::weights) {
        Values<Kel16s> table;
        for (int place = 0; place < 64; ++place)
            table[dv::scans[0][place]] = static_cast<Kel16s>(weights[place]);
        for (int step : dv100::steps) {
            for (int classNumber = 0; classNumber < 4; ++classNumber)
                expectDv100(randomBlock<Kel16s>(generator, -255, 255), table, step << classNumber, 0);
        }
    }
}

// A flat block of level 100 above the middle, whose orthonormal DC is 800, is coded as 200.
TEST(KelvaraQuantWeightDv100, DcHasTheScaleOfDv) {
    Values<Kel16s> x = {}, weights = one, inverse = one;
    x[0] = 200;
    weights[0] = 128;
    inverse[0] = 4 * 4096;
    InPlace dv100(x), dv(x);
    ASSERT_EQ(kelStsNoErr, keliQuantWeightBlockInv_DV100_16s_C1I(dv100.data(), weights.data(), 28));
    ASSERT_EQ(kelStsNoErr, keliQuantWeightBlockInv_DV_16s_C1I(dv.data(), one.data(), inverse.data()));
    EXPECT_EQ(800, dv100[0]);
    EXPECT_EQ(800, dv[0]);
}

TEST(KelvaraQuantWeightDv100, BadArgumentsAreRefusedAndNothingIsWritten) {
    Destination<Kel16s> block(64);
    EXPECT_EQ(kelStsNullPtrErr, keliQuantWeightBlockInv_DV100_16s_C1I(nullptr, one.data(), 1));
    EXPECT_EQ(kelStsNullPtrErr, keliQuantWeightBlockInv_DV100_16s_C1I(block.data(), nullptr, 0));
    for (int step : {0, -1, 417, INT_MAX, INT_MIN})
        EXPECT_EQ(kelStsRangeErr, keliQuantWeightBlockInv_DV100_16s_C1I(block.data(), one.data(), step));
    EXPECT_TRUE(block.untouched());
}

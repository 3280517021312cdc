// intraprediction_test.cpp - intra prediction of single blocks, against the equations of ITU-T H.264.

#include "intramodel.h"
#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

namespace {

using Predict = KelStatus (*)(Kel8u *, int, int, int);

struct Form {
    const char *name;
    Predict predict;
    int size, modes;
    bool (*allowed)(const Neighbours &, int mode);
    int (*sample)(const Neighbours &, int mode, int x, int y);
};

bool allowed4x4(const Neighbours &p, int mode) {
    return blockModeAllowed(p, 4, mode);
}
int sample4x4(const Neighbours &p, int mode, int x, int y) {
    return blockSample(withUpperRight(p, 4), 4, mode, x, y);
}

const Form forms[] = {
    {"4x4", keliPredictIntra_4x4_H264_8u_C1IR, 4, 9, allowed4x4, sample4x4},
    {"16x16", keliPredictIntra_16x16_H264_8u_C1IR, 16, 4, lumaModeAllowed, lumaSample},
    {"chroma", keliPredictIntraChroma8x8_H264_8u_C1IR, 8, 4, chromaModeAllowed, chromaSample},
};

// What a caller means: one bit for the whole left neighbour.
int modelBits(int availability) {
    const int bits = availability & (hasUpper | hasLeftTop | hasCorner | hasUpperRight);
    return bits & hasLeftTop ? bits | hasLeftBottom : bits;
}

// A block in the middle of a picture of 48 rows.
struct Picture {
    Picture(int step, const Pattern &pattern) : step(step), bytes(48 * static_cast<size_t>(step)) {
        for (size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<Kel8u>(pattern(static_cast<int>(i) / step, static_cast<int>(i) % step));
    }
    Kel8u *block() { return bytes.data() + 16 * step + (step >= 48 ? 16 : 0); }

    int step;
    std::vector<Kel8u> bytes;
};

void expectPredicted(const Form &form, Picture picture, int mode, int availability) {
    SCOPED_TRACE(std::string(form.name) + ", mode " + std::to_string(mode) + ", availability " +
                 std::to_string(availability) + ", step " + std::to_string(picture.step));
    Picture expected = picture;
    const Neighbours p = neighboursBy(modelBits(availability), form.size, picture.block(), picture.step);
    const bool allowed = form.allowed(p, mode);
    for (int y = 0; allowed && y < form.size; ++y) {
        for (int x = 0; x < form.size; ++x)
            expected.block()[y * expected.step + x] = static_cast<Kel8u>(form.sample(p, mode, x, y));
    }
    EXPECT_EQ(allowed ? kelStsNoErr : kelStsRangeErr,
              form.predict(picture.block(), picture.step, mode, availability));
    EXPECT_EQ(expected.bytes, picture.bytes);
}

void expectAllModes(const Form &form, const Picture &picture, int availability) {
    for (int mode = -1; mode <= form.modes; ++mode) expectPredicted(form, picture, mode, availability);
}

} // namespace

// ---- values ----------------------------------------------------------------------------

TEST(KelvaraPredictIntra, EveryModeAndAvailabilityFollowsTheEquations) {
    for (const Form &form : forms) {
        for (int availability = 0; availability < 128; ++availability)
            expectAllModes(form, Picture(48, noise(static_cast<unsigned>(availability), 255)), availability);
    }
}

TEST(KelvaraPredictIntra, ExtremeNeighboursAreClippedAsTheEquationsDo) {
    const auto blackAbove = [](int row, int) { return row < 16 ? 0 : 255; };
    const auto blackBeside = [](int, int col) { return col < 16 ? 0 : 255; };
    const auto diagonal = [](int row, int col) { return row + col < 40 ? 255 : 0; };
    const auto rows = [](int row, int) { return row % 2 ? 255 : 0; };
    for (const Form &form : forms) {
        for (const Pattern &pattern : {constant(0), constant(255), checkerboard(255), Pattern(blackAbove),
                                       Pattern(blackBeside), Pattern(diagonal), Pattern(rows)}) {
            for (int availability : {0, 1, 2, 3, 35, 65, 67, 99, 127})
                expectAllModes(form, Picture(48, pattern), availability);
        }
    }
}

// A step from black to white above and one back at the left make a slope that leaves the range.
TEST(KelvaraPredictIntra, PlanesClipAtBothEnds) {
    for (const Form &form : forms) {
        if (form.size == 4) continue;
        const int middle = 16 + form.size / 2;
        Picture picture(48, [middle](int row, int col) {
            const bool white = row < 16 ? col >= middle : row < middle;
            return white ? 255 : 0;
        });
        expectPredicted(form, picture, 3, 35);
        ASSERT_EQ(kelStsNoErr, form.predict(picture.block(), picture.step, 3, 35));
        const Kel8u *block = picture.block();
        EXPECT_EQ(255, block[form.size - 1]) << form.name;
        EXPECT_EQ(0, block[(form.size - 1) * picture.step]) << form.name;
    }
}

TEST(KelvaraPredictIntra, AnyStepAndAddress) {
    for (const Form &form : forms) {
        for (int step : {48, 49, 61, 200}) {
            for (int mode = 0; mode < form.modes; ++mode)
                expectPredicted(form, Picture(step, noise(static_cast<unsigned>(step), 255)), mode, 99);
        }
    }
}

// The left neighbours are the last samples of the rows above then.
TEST(KelvaraPredictIntra, TheLeastStepReadsTheNeighboursBeforeItWrites) {
    for (const Form &form : forms) expectAllModes(form, Picture(form.size, noise(7, 255)), 35);
}

TEST(KelvaraPredictIntra, DcWithoutNeighboursIsMidGrey) {
    for (const Form &form : forms) {
        Picture picture(48, noise(8, 255));
        const int dc = form.modes == 4 && form.size == 8 ? 0 : 2;
        EXPECT_EQ(kelStsNoErr, form.predict(picture.block(), picture.step, dc, 0));
        for (int y = 0; y < form.size; ++y) {
            for (int x = 0; x < form.size; ++x) EXPECT_EQ(128, picture.block()[y * picture.step + x]);
        }
    }
}

// ---- what is read -------------------------------------------------------------------------

// A sanitizer sees any byte beside the block.
TEST(KelvaraPredictIntra, WithoutNeighboursNothingBesideTheBlockIsRead) {
    for (const Form &form : forms) {
        const std::unique_ptr<Kel8u[]> block(new Kel8u[static_cast<size_t>(form.size) * form.size]);
        const int dc = form.size == 8 ? 0 : 2;
        EXPECT_EQ(kelStsNoErr, form.predict(block.get(), form.size, dc, 0));
        EXPECT_EQ(128, block[0]);
    }
}

TEST(KelvaraPredictIntra, WhatIsNotAvailableHasNoInfluence) {
    for (const Form &form : forms) {
        for (int availability = 0; availability < 128; ++availability) {
            const Neighbours p =
                neighboursBy(modelBits(availability), form.size, Picture(48, constant(0)).block(), 48);
            for (int mode = 0; mode < form.modes; ++mode) {
                if (!form.allowed(p, mode)) continue;
                Picture one(48, noise(9, 255)), other(48, noise(9, 255));
                Kel8u *block = other.block();
                for (int i = -1; i < 2 * form.size; ++i) {
                    const bool beside = i >= 0 && i < form.size;
                    const int bit = i < 0 ? hasCorner : beside ? hasUpper : hasUpperRight;
                    if (!(availability & bit)) block[i - other.step] ^= 0xFF;
                    if (beside && !(availability & hasLeftTop)) block[i * other.step - 1] ^= 0xFF;
                }
                ASSERT_EQ(kelStsNoErr, form.predict(one.block(), 48, mode, availability));
                ASSERT_EQ(kelStsNoErr, form.predict(other.block(), 48, mode, availability));
                for (int y = 0; y < form.size; ++y)
                    ASSERT_EQ(0, memcmp(one.block() + y * 48, block + y * 48, form.size))
                        << form.name << ", mode " << mode << ", availability " << availability;
            }
        }
    }
}

// ---- arguments ------------------------------------------------------------------------------

TEST(KelvaraPredictIntra, BadArgumentsAreRefusedInTheirOrder) {
    for (const Form &form : forms) {
        Picture picture(48, noise(10, 255));
        const Picture before = picture;
        EXPECT_EQ(kelStsNullPtrErr, form.predict(nullptr, 0, -1, 0));
        for (int step : {form.size - 1, 0, -48})
            EXPECT_EQ(kelStsStepErr, form.predict(picture.block(), step, -1, 0));
        for (int mode : {-1, form.modes, 1 << 30, INT32_MIN})
            EXPECT_EQ(kelStsRangeErr, form.predict(picture.block(), 48, mode, -1));
        EXPECT_EQ(before.bytes, picture.bytes);
    }
}

// mpeg4sprite_test.cpp - the motion vectors of global motion and the brightness of sprites.

#include "warpmodel.h"

namespace {

KeliMotionVector vectorOf(const Setting &t, int x, int y) {
    Spec spec(t);
    EXPECT_EQ(kelStsNoErr, spec.status());
    Destination<KeliMotionVector> mv(1, 1);
    EXPECT_EQ(kelStsNoErr, keliCalcGlobalMV_MPEG4(x, y, mv.data(), spec.get()));
    EXPECT_TRUE(mv.surroundingsIntact());
    return mv[0];
}

} // namespace

// ---- global motion ----------------------------------------------------------------------

TEST(KelvaraMpeg4Sprite, VectorIsTheMeanMotionOfTheMacroblock) {
    std::mt19937 generator(3);
    for (int i = 0; i < 200; ++i) {
        Setting t = randomSetting(generator, i % 5);
        t.quarterSample = i / 5 % 2;
        t.fcode = 1 + i / 10 % 2;
        const int x = static_cast<int>(generator() % 17), y = static_cast<int>(generator() % 17);
        const Model model(t);
        Real sumX = 0, sumY = 0;
        for (int k = 0; k < 256; ++k) {
            const int I = x + k % 16, J = y + k / 16;
            sumX += model.F(I, J) / model.s - (t.picture.x + I);
            sumY += model.G(I, J) / model.s - (t.picture.y + J);
        }
        const int unit = t.quarterSample ? 4 : 2, range = 16 << t.fcode;
        const auto mean = [&](Real sum) {
            return std::clamp(static_cast<int>(std::round(sum * unit / 256)), -range, range - 1);
        };
        if (i % 5 == 4 && x + 15 > t.picture.width) continue;
        SCOPED_TRACE(testing::Message() << t.points() << " points, " << i);
        const KeliMotionVector mv = vectorOf(t, x, y);
        EXPECT_EQ(mean(sumX), mv.x);
        EXPECT_EQ(mean(sumY), mv.y);
    }
}

TEST(KelvaraMpeg4Sprite, VectorOfOnePointIsItsDifferential) {
    for (int accuracy = 0; accuracy < 4; ++accuracy) {
        Setting t{{3}, {-5}, accuracy, wide, wide, 2};
        EXPECT_EQ(3, vectorOf(t, 16, 32).x);
        EXPECT_EQ(-5, vectorOf(t, 16, 32).y);
        t.quarterSample = 1;
        EXPECT_EQ(6, vectorOf(t, 16, 32).x);
        EXPECT_EQ(-10, vectorOf(t, 16, 32).y);
    }
}

TEST(KelvaraMpeg4Sprite, VectorIsZeroWithoutPoints) {
    const KeliMotionVector mv = vectorOf({{}, {}, 0, wide, wide}, 2, 3);
    EXPECT_EQ(0, mv.x);
    EXPECT_EQ(0, mv.y);
}

// Sample (col, row) moves by (col + row) / 16, on the average from (5, 0) on by 20 / 16: 2.5 half samples.
TEST(KelvaraMpeg4Sprite, HalvesOfAVectorGoAwayFromZero) {
    EXPECT_EQ(3, vectorOf({{0, 2, 2}, {0, 0, 0}, 3, wide, square}, 5, 0).x);
    EXPECT_EQ(-3, vectorOf({{0, -2, -2}, {0, 0, 0}, 3, wide, square}, 5, 0).x);
}

TEST(KelvaraMpeg4Sprite, VectorIsLimitedByTheRangeOfFcode) {
    for (int fcode = 1; fcode <= 7; ++fcode) {
        Setting t{{16383}, {-16383}, 0, wide, wide, 2};
        t.fcode = fcode;
        EXPECT_EQ((16 << fcode) - 1, vectorOf(t, 0, 0).x);
        EXPECT_EQ(-(16 << fcode), vectorOf(t, 0, 0).y);
    }
}

// ---- brightness -------------------------------------------------------------------------

TEST(KelvaraMpeg4Sprite, BrightnessChangesByHundredths) {
    for (int factor : {-112, -100, -99, -50, -1, 0, 1, 13, 50, 100, 113, 1648}) {
        for (int more : {0, 5}) {
            DstBlock<Kel8u> image(16, 16, 16 + more, more);
            for (int i = 0; i < 256; ++i)
                image.data()[i / 16 * image.step() + i % 16] = static_cast<Kel8u>(i);
            ASSERT_EQ(kelStsNoErr,
                      keliChangeSpriteBrightness_MPEG4_8u_C1IR(image.data(), image.step(), 16, 16, factor));
            EXPECT_TRUE(image.surroundingsIntact());
            for (int i = 0; i < 256; ++i) {
                const double exact = i * (100 + factor) / 100.0;
                const int expected = static_cast<int>(std::clamp(std::floor(exact + 0.5), 0.0, 255.0));
                EXPECT_EQ(expected, image(i / 16, i % 16)) << factor << ", " << i;
            }
        }
    }
}

// ---- bad arguments ------------------------------------------------------------------------

TEST(KelvaraMpeg4Sprite, BrightnessRefusesBadArguments) {
    DstBlock<Kel8u> image(8, 8, 8);
    const auto call = [&](int step, int w, int h, int factor) {
        return keliChangeSpriteBrightness_MPEG4_8u_C1IR(image.data(), step, w, h, factor);
    };
    EXPECT_EQ(kelStsNullPtrErr, keliChangeSpriteBrightness_MPEG4_8u_C1IR(nullptr, 8, 0, 8, 1));
    for (int size : {0, -1, -8}) {
        EXPECT_EQ(kelStsSizeErr, call(0, size, 8, 1));
        EXPECT_EQ(kelStsSizeErr, call(0, 8, size, 1));
    }
    for (int step : {7, 0, -8}) EXPECT_EQ(kelStsStepErr, call(step, 8, 8, 5000));
    for (int factor : {-113, 1649, 1 << 30}) EXPECT_EQ(kelStsRangeErr, call(8, 8, 8, factor));
    EXPECT_TRUE(image.untouched());
}

// The lower edge of a picture of 8 rows is twice as long as the upper one: what is w there goes from 1 to
// 1/2, and is 0 in row 16.
TEST(KelvaraMpeg4Sprite, VectorRefusesAMacroblockThatTurnsOver) {
    Spec spec({{0, 0, -8, 16}, {0, 0, 0, 0}, 1, wide, {0, 0, 8, 8}});
    ASSERT_EQ(kelStsNoErr, spec.status());
    Destination<KeliMotionVector> mv(1);
    EXPECT_EQ(kelStsRangeErr, keliCalcGlobalMV_MPEG4(0, 1, mv.data(), spec.get()));
    EXPECT_TRUE(mv.untouched());
    EXPECT_EQ(kelStsNoErr, keliCalcGlobalMV_MPEG4(0, 0, mv.data(), spec.get()));
}

TEST(KelvaraMpeg4Sprite, VectorRefusesBadArguments) {
    Spec good({{1}, {1}, 1, square, square});
    Destination<unsigned char> bytes(Spec::size());
    Destination<KeliMotionVector> mv(1);
    EXPECT_EQ(kelStsNullPtrErr, keliCalcGlobalMV_MPEG4(0, 0, nullptr, good.get()));
    EXPECT_EQ(kelStsNullPtrErr, keliCalcGlobalMV_MPEG4(0, 0, mv.data(), nullptr));
    EXPECT_EQ(kelStsContextErr,
              keliCalcGlobalMV_MPEG4(0, 0, mv.data(), reinterpret_cast<KeliWarpSpec_MPEG4 *>(bytes.data())));
    for (int place : {-1, 16, 1 << 30}) {
        EXPECT_EQ(kelStsRangeErr, keliCalcGlobalMV_MPEG4(place, 0, mv.data(), good.get()));
        EXPECT_EQ(kelStsRangeErr, keliCalcGlobalMV_MPEG4(0, place, mv.data(), good.get()));
    }
    EXPECT_TRUE(mv.untouched());
}

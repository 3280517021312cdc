// mpeg4warp_test.cpp - the warping of MPEG-4 sprites: against the formulas of the standard in floating point,
// and against mappings whose result can be told without them.

#include "warpmodel.h"

namespace {

// 7.8.6: bilinear, the sprite's border samples go on for ever.
int sampleAt(const Source<Kel8u> &sprite, KeliRect rect, Real x, Real y, Real s, int rounding) {
    const Real left = std::floor(x / s), top = std::floor(y / s), ri = x - left * s, rj = y - top * s;
    const auto at = [&](Real row, Real col) {
        return sprite(std::clamp(static_cast<int>(row) - rect.y, 0, rect.height - 1),
                      std::clamp(static_cast<int>(col) - rect.x, 0, rect.width - 1));
    };
    const Real sum = (s - rj) * ((s - ri) * at(top, left) + ri * at(top, left + 1)) +
                     rj * ((s - ri) * at(top + 1, left) + ri * at(top + 1, left + 1));
    return static_cast<int>(std::floor((sum + s * s / 2 - rounding) / (s * s)));
}

// ---- planes -------------------------------------------------------------------------------

int halved(int size) {
    return (size + 1) / 2;
}
KeliRect chromaRect(KeliRect rect) {
    return {rect.x / 2, rect.y / 2, halved(rect.width), halved(rect.height)};
}

void compareLuma(const Setting &t, KeliRect part, const Pattern &pattern, int more) {
    Spec spec(t);
    ASSERT_EQ(kelStsNoErr, spec.status());
    EXPECT_TRUE(spec.surroundingsIntact());
    Source<Kel8u> sprite(t.sprite.height, t.sprite.width, t.sprite.width + more, more % 16);
    sprite.fill(pattern);
    DstBlock<Kel8u> dst(part.height, part.width, part.width + more, more % 16);
    ASSERT_EQ(kelStsNoErr, keliWarpLuma_MPEG4_8u_C1R(sprite.data(), sprite.step(), dst.data(), dst.step(),
                                                     &part, spec.get()));
    EXPECT_TRUE(dst.surroundingsIntact());
    const Model model(t);
    for (int row = 0; row < part.height; ++row) {
        for (int col = 0; col < part.width; ++col) {
            const int I = part.x - t.picture.x + col, J = part.y - t.picture.y + row;
            ASSERT_EQ(sampleAt(sprite, t.sprite, model.F(I, J), model.G(I, J), model.s, t.rounding),
                      dst(row, col))
                << row << ", " << col;
        }
    }
}

void compareChroma(const Setting &t, KeliRect part, int more) {
    Spec spec(t);
    ASSERT_EQ(kelStsNoErr, spec.status());
    const KeliRect rect = chromaRect(t.sprite);
    const int w = halved(part.width), h = halved(part.height);
    Source<Kel8u> cb(rect.height, rect.width, rect.width + more), cr(rect.height, rect.width, rect.width);
    cb.fill(noise(3, 255));
    cr.fill(noise(4, 255));
    DstBlock<Kel8u> dstCb(h, w, w), dstCr(h, w, w + more, more);
    ASSERT_EQ(kelStsNoErr,
              keliWarpChroma_MPEG4_8u_P2R(cb.data(), cb.step(), cr.data(), cr.step(), dstCb.data(),
                                          dstCb.step(), dstCr.data(), dstCr.step(), &part, spec.get()));
    EXPECT_TRUE(dstCb.surroundingsIntact());
    EXPECT_TRUE(dstCr.surroundingsIntact());
    const Model model(t);
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < w; ++col) {
            const int I = (part.x - t.picture.x) / 2 + col, J = (part.y - t.picture.y) / 2 + row;
            const Real x = model.Fc(I, J), y = model.Gc(I, J);
            ASSERT_EQ(sampleAt(cb, rect, x, y, model.s, t.rounding), dstCb(row, col)) << row << ", " << col;
            ASSERT_EQ(sampleAt(cr, rect, x, y, model.s, t.rounding), dstCr(row, col)) << row << ", " << col;
        }
    }
}

KeliRect evenPart(std::mt19937 &generator, KeliRect rect) {
    const int x = 2 * static_cast<int>(generator() % 5), y = 2 * static_cast<int>(generator() % 5);
    return {rect.x + x, rect.y + y, 1 + static_cast<int>(generator() % (rect.width - x)),
            1 + static_cast<int>(generator() % (rect.height - y))};
}

// What becomes of a sprite whose samples tell their column, 4 for each; rows are alike.
std::vector<int> columnsOf(const Setting &t) {
    Spec spec(t);
    EXPECT_EQ(kelStsNoErr, spec.status());
    Source<Kel8u> sprite(t.sprite.height, t.sprite.width, t.sprite.width);
    sprite.fill([](int, int col) { return 4 * col; });
    DstBlock<Kel8u> dst(t.picture.height, t.picture.width, t.picture.width);
    EXPECT_EQ(kelStsNoErr, keliWarpLuma_MPEG4_8u_C1R(sprite.data(), sprite.step(), dst.data(), dst.step(),
                                                     &t.picture, spec.get()));
    std::vector<int> columns;
    for (int col = 0; col < t.picture.width; ++col) columns.push_back(dst(3, col));
    return columns;
}

} // namespace

// ---- planes against the formulas --------------------------------------------------------

TEST(KelvaraMpeg4Warp, LumaEqualsTheFormulas) {
    std::mt19937 generator(1);
    for (int points = 0; points <= 4; ++points) {
        for (int i = 0; i < 60; ++i) {
            SCOPED_TRACE(testing::Message() << points << " points, " << i);
            const Setting t = randomSetting(generator, points);
            compareLuma(t, i % 2 ? t.picture : evenPart(generator, t.picture),
                        i % 3 ? noise(i, 255) : checkerboard(255), i % 4);
        }
    }
}

TEST(KelvaraMpeg4Warp, ChromaEqualsTheFormulas) {
    std::mt19937 generator(2);
    for (int points = 0; points <= 4; ++points) {
        for (int i = 0; i < 60; ++i) {
            SCOPED_TRACE(testing::Message() << points << " points, " << i);
            const Setting t = randomSetting(generator, points);
            compareChroma(t, i % 2 ? t.picture : evenPart(generator, t.picture), i % 4);
        }
    }
}

// ---- mappings that can be told ------------------------------------------------------------

TEST(KelvaraMpeg4Warp, WithoutPointsThePictureIsTheSpriteAtItsPlace) {
    Setting t{{}, {}, 2, {-2, -4, 30, 30}, {4, 2, 16, 16}};
    Spec spec(t);
    Source<Kel8u> sprite(30, 30, 30);
    sprite.fill(noise(1, 255));
    DstBlock<Kel8u> dst(16, 16, 16);
    ASSERT_EQ(kelStsNoErr,
              keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 30, dst.data(), 16, &t.picture, spec.get()));
    for (int i = 0; i < 256; ++i) EXPECT_EQ(sprite(6 + i / 16, 6 + i % 16), dst(i / 16, i % 16)) << i;
}

TEST(KelvaraMpeg4Warp, OnePointMovesByHalfSamplesAtEveryAccuracy) {
    for (int accuracy = 0; accuracy < 4; ++accuracy) {
        const std::vector<int> columns = columnsOf({{3}, {0}, accuracy, wide, square});
        for (int col = 0; col < 16; ++col) EXPECT_EQ(4 * col + 6, columns[col]) << accuracy;
    }
}

// The right corner comes from column 32 in place of 16.
TEST(KelvaraMpeg4Warp, TwoPointsMakeThePictureSmaller) {
    const std::vector<int> columns = columnsOf({{0, 32}, {0, 0}, 1, wide, square});
    for (int col = 0; col < 16; ++col) EXPECT_EQ(8 * col, columns[col]);
}

// The first row of the picture runs down the sprite's first column.
TEST(KelvaraMpeg4Warp, TwoPointsTurnThePicture) {
    Setting t{{40, -32}, {0, 32}, 3, wide, square};
    Spec spec(t);
    ASSERT_EQ(kelStsNoErr, spec.status());
    Source<Kel8u> sprite(64, 64, 64);
    sprite.fill(noise(1, 255));
    DstBlock<Kel8u> dst(16, 16, 16);
    ASSERT_EQ(kelStsNoErr, keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 64, dst.data(), 16, &square, spec.get()));
    for (int row = 0; row < 16; ++row) {
        for (int col = 0; col < 16; ++col)
            EXPECT_EQ(sprite(col, 20 - row), dst(row, col)) << row << ", " << col;
    }
}

// With the lower corner 16 samples aside every row starts one sample further.
TEST(KelvaraMpeg4Warp, ThreePointsShearThePicture) {
    Setting t{{0, 0, 32}, {0, 0, 0}, 2, wide, square};
    Spec spec(t);
    Source<Kel8u> sprite(64, 64, 64);
    sprite.fill(noise(1, 255));
    DstBlock<Kel8u> dst(16, 16, 16);
    ASSERT_EQ(kelStsNoErr, keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 64, dst.data(), 16, &square, spec.get()));
    for (int row = 0; row < 16; ++row) {
        for (int col = 0; col < 16; ++col)
            EXPECT_EQ(sprite(row, col + row), dst(row, col)) << row << ", " << col;
    }
}

// Corners of a parallelogram: the fourth point says nothing new.
TEST(KelvaraMpeg4Warp, FourPointsOfAParallelogramAreThree) {
    Setting three{{5, 9, -7}, {-3, 4, 11}, 3, wide, {8, 8, 32, 32}};
    Setting four = three;
    four.du.push_back(0);
    four.dv.push_back(0);
    Source<Kel8u> sprite(64, 64, 64);
    sprite.fill(noise(1, 255));
    DstBlock<Kel8u> dst3(32, 32, 32), dst4(32, 32, 32);
    Spec spec3(three), spec4(four);
    ASSERT_EQ(kelStsNoErr,
              keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 64, dst3.data(), 32, &three.picture, spec3.get()));
    ASSERT_EQ(kelStsNoErr,
              keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 64, dst4.data(), 32, &four.picture, spec4.get()));
    for (int i = 0; i < 1024; ++i) EXPECT_EQ(dst3(i / 32, i % 32), dst4(i / 32, i % 32)) << i;
}

// The lower edge has half the length of the upper one: the perspective middle of the left edge lies at a
// third of the way. A homogeneous w grows from 1 to 2 there, so that the picture's row 8 of 16 is at w 1.5.
TEST(KelvaraMpeg4Warp, FourPointsArePerspective) {
    Setting t{{0, 0, 8, -16}, {0, 0, 0, 0}, 3, square, square};
    Spec spec(t);
    ASSERT_EQ(kelStsNoErr, spec.status());
    Source<Kel8u> sprite(16, 16, 16);
    sprite.fill([](int row, int) { return 12 * row; });
    DstBlock<Kel8u> dst(16, 16, 16);
    ASSERT_EQ(kelStsNoErr, keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 16, dst.data(), 16, &square, spec.get()));
    // y = 16 * 2 * t / (1 + t) with t = 0.5
    EXPECT_NEAR(12 * 16 * 2 * 0.5 / 1.5, dst(8, 8), 1);
    EXPECT_EQ(0, dst(0, 8));
}

TEST(KelvaraMpeg4Warp, PositionsOutsideTakeTheBorder) {
    for (int far : {400, -400}) {
        const std::vector<int> columns = columnsOf({{far}, {far}, 2, wide, square});
        for (int col = 0; col < 16; ++col) EXPECT_EQ(far > 0 ? 4 * 63 : 0, columns[col]);
    }
}

TEST(KelvaraMpeg4Warp, RoundingDownConcernsHalves) {
    for (int rounding : {0, 1}) {
        Setting t{{1}, {0}, 3, square, square, 2, rounding};
        Spec spec(t);
        Source<Kel8u> sprite(16, 16, 16);
        sprite.fill([](int, int col) { return col; });
        DstBlock<Kel8u> dst(16, 16, 16);
        ASSERT_EQ(kelStsNoErr,
                  keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 16, dst.data(), 16, &square, spec.get()));
        for (int col = 0; col < 15; ++col) EXPECT_EQ(col + 1 - rounding, dst(0, col));
    }
}

TEST(KelvaraMpeg4Warp, ExtremesOfFourPointsStayInTheSprite) {
    Setting t{{16383, -16383, 16383, -16383}, {-16383, 16383, -16383, 16383}, 3, square, {0, 0, 8191, 8191}};
    int made = 0;
    for (int i = 0; i < 256; ++i) {
        for (int k = 0; k < 4; ++k) {
            t.du[k] = i >> k & 1 ? 16383 : -16383;
            t.dv[k] = i >> (4 + k) & 1 ? 16383 : -16383;
        }
        Spec spec(t);
        if (spec.status() != kelStsNoErr) {
            EXPECT_EQ(kelStsRangeErr, spec.status());
            EXPECT_TRUE(spec.untouched());
            continue;
        }
        ++made;
        Source<Kel8u> sprite(16, 16, 16);
        sprite.fill(noise(1, 255));
        for (KeliRect part : {KeliRect{0, 0, 8, 8}, KeliRect{8182, 8182, 9, 9}}) {
            DstBlock<Kel8u> dst(9, 9, 9);
            EXPECT_EQ(kelStsNoErr,
                      keliWarpLuma_MPEG4_8u_C1R(sprite.data(), 16, dst.data(), 9, &part, spec.get()));
            KeliMotionVector mv;
            EXPECT_EQ(kelStsNoErr, keliCalcGlobalMV_MPEG4(part.x, part.y, &mv, spec.get()));
        }
    }
    EXPECT_GT(made, 0);
}

// ---- bad arguments ------------------------------------------------------------------------

TEST(KelvaraMpeg4Warp, InitRefusesNullPointers) {
    int d = 0;
    Destination<unsigned char> bytes(Spec::size());
    auto *spec = reinterpret_cast<KeliWarpSpec_MPEG4 *>(bytes.data());
    EXPECT_EQ(kelStsNullPtrErr, keliWarpGetSize_MPEG4(nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliWarpInit_MPEG4(nullptr, &d, &d, 1, 1, 0, 0, 0, 1, &square, &square));
    EXPECT_EQ(kelStsNullPtrErr, keliWarpInit_MPEG4(spec, nullptr, &d, 1, 1, 0, 0, 0, 1, &square, &square));
    EXPECT_EQ(kelStsNullPtrErr, keliWarpInit_MPEG4(spec, &d, nullptr, 1, 1, 0, 0, 0, 1, &square, &square));
    EXPECT_EQ(kelStsNullPtrErr, keliWarpInit_MPEG4(spec, &d, &d, 1, 1, 0, 0, 0, 1, nullptr, &square));
    EXPECT_EQ(kelStsNullPtrErr, keliWarpInit_MPEG4(spec, &d, &d, 1, 1, 0, 0, 0, 1, &square, nullptr));
    EXPECT_TRUE(bytes.untouched());
}

TEST(KelvaraMpeg4Warp, InitRefusesWhatIsOutOfRange) {
    const Setting good{{1, 2}, {3, 4}, 1, square, square};
    const auto expect = [&](KelStatus status, auto change) {
        Setting t = good;
        change(t);
        Spec spec(t);
        EXPECT_EQ(status, spec.status());
        EXPECT_TRUE(spec.untouched());
    };
    for (int size : {0, -1, 8192}) {
        expect(kelStsSizeErr, [=](Setting &t) { t.sprite.width = size, t.accuracy = 9; });
        expect(kelStsSizeErr, [=](Setting &t) { t.sprite.height = size; });
        expect(kelStsSizeErr, [=](Setting &t) { t.picture.width = size; });
        expect(kelStsSizeErr, [=](Setting &t) { t.picture.height = size; });
    }
    for (int place : {1, -1, -4098, 4096}) {
        expect(kelStsRangeErr, [=](Setting &t) { t.sprite.x = place; });
        expect(kelStsRangeErr, [=](Setting &t) { t.sprite.y = place; });
        expect(kelStsRangeErr, [=](Setting &t) { t.picture.x = place; });
        expect(kelStsRangeErr, [=](Setting &t) { t.picture.y = place; });
    }
    for (int bad : {-1, 4}) expect(kelStsRangeErr, [=](Setting &t) { t.accuracy = bad; });
    for (int bad : {-1, 2}) expect(kelStsRangeErr, [=](Setting &t) { t.rounding = bad; });
    for (int bad : {-1, 2}) expect(kelStsRangeErr, [=](Setting &t) { t.quarterSample = bad; });
    for (int bad : {0, 8}) expect(kelStsRangeErr, [=](Setting &t) { t.fcode = bad; });
    for (int bad : {0, 3}) expect(kelStsRangeErr, [=](Setting &t) { t.type = bad; });
    for (int bad : {-16384, 16384}) {
        expect(kelStsRangeErr, [=](Setting &t) { t.du[1] = bad; });
        expect(kelStsRangeErr, [=](Setting &t) { t.dv[0] = bad; });
    }
    expect(kelStsRangeErr, [](Setting &t) { t.du = t.dv = {0, 0, 0, 0, 0}; });
    expect(kelStsRangeErr, [](Setting &t) { t.du = t.dv = {0, 0, 0, 0}, t.type = 2; });
}

// All four corners on a line, and the lower right one inside the triangle of the others, behind its edge.
TEST(KelvaraMpeg4Warp, InitRefusesFourPointsThatTurnOver) {
    Spec line({{0, 0, 0, 0}, {0, 0, -32, 0}, 1, square, square});
    EXPECT_EQ(kelStsRangeErr, line.status());
    Spec turned({{0, 0, 0, -28}, {0, 0, 0, -28}, 1, square, square});
    EXPECT_EQ(kelStsRangeErr, turned.status());
    EXPECT_TRUE(turned.untouched());
}

TEST(KelvaraMpeg4Warp, PlanesRefuseBadArguments) {
    Setting t{{1}, {1}, 1, square, {2, 2, 8, 8}};
    Spec good(t);
    Destination<unsigned char> bytes(Spec::size());
    auto *unmade = reinterpret_cast<KeliWarpSpec_MPEG4 *>(bytes.data());
    Source<Kel8u> src(16, 16, 16);
    DstBlock<Kel8u> dst(16, 16, 16);
    const KeliRect all = t.picture, odd = {3, 2, 4, 4};
    const auto luma = [&](int srcStep, int dstStep, const KeliRect *rect, KeliWarpSpec_MPEG4 *spec) {
        return keliWarpLuma_MPEG4_8u_C1R(src.data(), srcStep, dst.data(), dstStep, rect, spec);
    };
    const auto chroma = [&](std::vector<int> steps, const KeliRect *rect, KeliWarpSpec_MPEG4 *spec) {
        return keliWarpChroma_MPEG4_8u_P2R(src.data(), steps[0], src.data(), steps[1], dst.data(), steps[2],
                                           dst.data() + 128, steps[3], rect, spec);
    };
    EXPECT_EQ(kelStsNullPtrErr, keliWarpLuma_MPEG4_8u_C1R(nullptr, 16, dst.data(), 16, &all, good.get()));
    EXPECT_EQ(kelStsNullPtrErr, keliWarpLuma_MPEG4_8u_C1R(src.data(), 16, nullptr, 16, &all, good.get()));
    EXPECT_EQ(kelStsNullPtrErr, luma(16, 16, nullptr, good.get()));
    EXPECT_EQ(kelStsNullPtrErr, luma(16, 16, &all, nullptr));
    EXPECT_EQ(kelStsNullPtrErr, chroma({16, 16, 16, 16}, nullptr, good.get()));
    EXPECT_EQ(kelStsNullPtrErr, chroma({16, 16, 16, 16}, &all, nullptr));
    for (int missing = 0; missing < 4; ++missing) {
        const auto in = [&](int i) { return i == missing ? nullptr : src.data(); };
        const auto out = [&](int i) { return i == missing ? nullptr : dst.data(); };
        EXPECT_EQ(kelStsNullPtrErr, keliWarpChroma_MPEG4_8u_P2R(in(0), 16, in(1), 16, out(2), 16, out(3), 16,
                                                                &all, good.get()));
    }
    EXPECT_EQ(kelStsContextErr, luma(16, 16, &all, unmade));
    EXPECT_EQ(kelStsContextErr, chroma({16, 16, 16, 16}, &all, unmade));
    const int most = 2147483647;
    for (KeliRect rect :
         {KeliRect{0, 2, 8, 8}, KeliRect{2, 0, 8, 8}, KeliRect{2, 2, 9, 8}, KeliRect{2, 2, 8, 9},
          KeliRect{2, 2, 0, 8}, KeliRect{2, 2, 8, -1}, KeliRect{2, 2, most, 8}, KeliRect{most, 2, most, 8}}) {
        EXPECT_EQ(kelStsSizeErr, luma(0, 16, &rect, good.get()));
        EXPECT_EQ(kelStsSizeErr, chroma({0, 16, 16, 16}, &rect, good.get()));
    }
    EXPECT_EQ(kelStsStepErr, luma(15, 16, &all, good.get()));
    EXPECT_EQ(kelStsStepErr, luma(16, 7, &all, good.get()));
    EXPECT_EQ(kelStsStepErr, chroma({7, 16, 16, 16}, &odd, good.get()));
    EXPECT_EQ(kelStsStepErr, chroma({16, 7, 16, 16}, &all, good.get()));
    EXPECT_EQ(kelStsStepErr, chroma({16, 16, 3, 16}, &all, good.get()));
    EXPECT_EQ(kelStsStepErr, chroma({16, 16, 16, 3}, &all, good.get()));
    EXPECT_EQ(kelStsRangeErr, chroma({16, 16, 16, 16}, &odd, good.get()));
    EXPECT_TRUE(dst.untouched());
}

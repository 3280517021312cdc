// vc1transform_test.cpp - the transforms of VC-1, against the matrices of SMPTE 421M Annex A.

#include "kelvc.h"
#include "vc1block.h"

namespace {

using vc1model::blockOf;
using vc1model::expectBlock;
using vc1model::Plane;

using Inverse = KelStatus (*)(const Kel16s *, int, Kel16s *, int, KeliSize);
using InverseInPlace = KelStatus (*)(Kel16s *, int, KeliSize);
using Forward = KelStatus (*)(const Kel16s *, int, Kel16s *, int);
using ForwardInPlace = KelStatus (*)(Kel16s *, int);

struct Shape {
    int width, height;
    Inverse inverse;
    InverseInPlace inverseInPlace;
    Forward forward;
    ForwardInPlace forwardInPlace;

    std::string name() const { return std::to_string(width) + "x" + std::to_string(height); }
};

const Shape shapes[] = {
    {8, 8, keliTransform8x8Inv_VC1_16s_C1R, keliTransform8x8Inv_VC1_16s_C1IR, keliTransform8x8Fwd_VC1_16s_C1R,
     keliTransform8x8Fwd_VC1_16s_C1IR},
    {8, 4, keliTransform8x4Inv_VC1_16s_C1R, keliTransform8x4Inv_VC1_16s_C1IR, keliTransform8x4Fwd_VC1_16s_C1R,
     keliTransform8x4Fwd_VC1_16s_C1IR},
    {4, 8, keliTransform4x8Inv_VC1_16s_C1R, keliTransform4x8Inv_VC1_16s_C1IR, keliTransform4x8Fwd_VC1_16s_C1R,
     keliTransform4x8Fwd_VC1_16s_C1IR},
    {4, 4, keliTransform4x4Inv_VC1_16s_C1R, keliTransform4x4Inv_VC1_16s_C1IR, keliTransform4x4Fwd_VC1_16s_C1R,
     keliTransform4x4Fwd_VC1_16s_C1IR},
};

Plane planeOf(const Shape &shape, const Pattern &pattern) {
    return vc1model::planeOf(shape.width, shape.height, pattern);
}

// All coefficients outside the area are 0.
Plane within(Plane block, KeliSize area) {
    for (int row = 0; row < static_cast<int>(block.size()); ++row) {
        for (int col = 0; col < static_cast<int>(block[0].size()); ++col) {
            if (row >= area.height || col >= area.width) block[row][col] = 0;
        }
    }
    return block;
}

// Both forms of the inverse give the values.
void expectInverse(const Shape &shape, const Plane &coeffs, KeliSize area, const Plane &expected,
                   int moreStep = 0, int slack = 0) {
    const int step = 2 * shape.width + moreStep;
    Source<Kel16s> src(shape.height, shape.width, step, slack);
    src.fill([&](int row, int col) { return static_cast<int>(coeffs[row][col]); });
    DstBlock<Kel16s> dst(shape.height, shape.width, step + 3, slack), both = blockOf(coeffs, step, slack);
    ASSERT_EQ(kelStsNoErr, shape.inverse(src.data(), step, dst.data(), dst.step(), area));
    ASSERT_EQ(kelStsNoErr, shape.inverseInPlace(both.data(), step, area));
    expectBlock(dst, expected, shape.name());
    expectBlock(both, expected, shape.name() + " in place");
}

void expectForward(const Shape &shape, const Plane &block, int moreStep = 0, int slack = 0) {
    const int step = 2 * shape.width + moreStep;
    Source<Kel16s> src(shape.height, shape.width, step, slack);
    src.fill([&](int row, int col) { return static_cast<int>(block[row][col]); });
    DstBlock<Kel16s> dst(shape.height, shape.width, step + 5, slack), both = blockOf(block, step, slack);
    ASSERT_EQ(kelStsNoErr, shape.forward(src.data(), step, dst.data(), dst.step()));
    ASSERT_EQ(kelStsNoErr, shape.forwardInPlace(both.data(), step));
    const Plane expected = vc1model::forward(block);
    expectBlock(dst, expected, shape.name());
    expectBlock(both, expected, shape.name() + " in place");
}

// Ranges of residuals, of coefficients, and whatever a caller may pass.
const int limits[] = {3, 255, 2048, 32767};

} // namespace

// ---- inverse ---------------------------------------------------------------------------

// What lies outside of the area is noise that must not be seen.
TEST(KelvaraVc1Transform, InverseFollowsTheMatricesForEachAreaOfCoefficients) {
    unsigned seed = 1;
    for (const Shape &shape : shapes) {
        for (int width = 0; width <= shape.width; ++width) {
            for (int height = 0; height <= shape.height; ++height) {
                for (int limit : limits) {
                    const Plane coeffs = planeOf(shape, signedNoise(++seed, -limit, limit));
                    const KeliSize area = {width, height};
                    expectInverse(shape, coeffs, area, vc1model::inverse(within(coeffs, area)), seed % 7,
                                  seed % 5);
                }
            }
        }
    }
}

TEST(KelvaraVc1Transform, EachCoefficientHasItsBasisFunction) {
    for (const Shape &shape : shapes) {
        for (int v = 0; v < shape.height; ++v) {
            for (int u = 0; u < shape.width; ++u) {
                Plane coeffs = vc1model::plane(shape.width, shape.height), expected = coeffs;
                coeffs[v][u] = 1024; // nothing is rounded
                for (int y = 0; y < shape.height; ++y) {
                    for (int x = 0; x < shape.width; ++x) {
                        expected[y][x] =
                            vc1model::basis(shape.height, v, y) * vc1model::basis(shape.width, u, x);
                    }
                }
                expectInverse(shape, coeffs, {u + 1, v + 1}, expected);
            }
        }
    }
}

// For one: (16 * 12 + 4) >> 3 is 24, and (24 * 12 + 64) >> 7 is 2.
TEST(KelvaraVc1Transform, FlatBlocksHaveTheValuesWorkedOutByHand) {
    const auto flat = [](const Shape &shape, int dc) {
        Plane coeffs = vc1model::plane(shape.width, shape.height);
        coeffs[0][0] = dc;
        return coeffs;
    };
    expectInverse(shapes[0], flat(shapes[0], 16), {1, 1}, planeOf(shapes[0], constant(2)));
    expectInverse(shapes[0], flat(shapes[0], 7), {1, 1}, planeOf(shapes[0], constant(1)));
    expectInverse(shapes[3], flat(shapes[3], 10), {1, 1}, planeOf(shapes[3], constant(3)));
    expectInverse(shapes[3], flat(shapes[3], -10), {1, 1}, planeOf(shapes[3], constant(-3)));
}

TEST(KelvaraVc1Transform, LowerHalfOfEightRowsIsRoundedUpALittleMore) {
    int seen = 0;
    for (const Shape &shape : {shapes[0], shapes[2]}) {
        for (unsigned seed = 0; seed < 100; ++seed) {
            const Plane coeffs = planeOf(shape, signedNoise(seed, -100, 100));
            const Plane expected = vc1model::inverse(coeffs);
            expectInverse(shape, coeffs, {shape.width, shape.height}, expected);
            // Odd rows of the opposite sign turn the block upside down, all but what is added to its lower
            // half.
            Plane turned = coeffs;
            for (int row = 1; row < shape.height; row += 2) {
                for (long long &coeff : turned[row]) coeff = -coeff;
            }
            const Plane mirrored = vc1model::inverse(turned);
            expectInverse(shape, turned, {shape.width, shape.height}, mirrored);
            for (int x = 0; x < shape.width; ++x) seen += mirrored[0][x] != expected[7][x];
        }
    }
    EXPECT_GT(seen, 0);
}

TEST(KelvaraVc1Transform, InverseTakesTheRowsFirst) {
    int different = 0;
    for (unsigned seed = 0; seed < 50; ++seed) {
        const Plane coeffs = planeOf(shapes[3], signedNoise(seed, -300, 300));
        Plane turned = coeffs;
        for (int i = 0; i < 16; ++i) turned[i % 4][i / 4] = coeffs[i / 4][i % 4];
        const Plane rowsFirst = vc1model::inverse(coeffs), columnsFirst = vc1model::inverse(turned);
        for (int i = 0; i < 16; ++i) different += rowsFirst[i / 4][i % 4] != columnsFirst[i % 4][i / 4];
        expectInverse(shapes[3], coeffs, {4, 4}, rowsFirst);
    }
    EXPECT_GT(different, 0);
}

TEST(KelvaraVc1Transform, ExtremeCoefficientsAreLimited) {
    for (const Shape &shape : shapes) {
        for (const Pattern &pattern : {constant(32767), constant(-32768), checkerboard(32767)}) {
            const Plane coeffs = planeOf(shape, pattern);
            expectInverse(shape, coeffs, {shape.width, shape.height}, vc1model::inverse(coeffs));
        }
    }
}

TEST(KelvaraVc1Transform, InverseRefusesBadArguments) {
    for (const Shape &shape : shapes) {
        const int step = 2 * shape.width;
        const KeliSize all = {shape.width, shape.height};
        const KeliSize wrong[] = {{-1, 1}, {1, -1}, {shape.width + 1, 1}, {1, shape.height + 1}};
        Source<Kel16s> src(8, 8, 16);
        DstBlock<Kel16s> dst(8, 8, 16);
        EXPECT_EQ(kelStsNullPtrErr, shape.inverse(nullptr, 0, dst.data(), 0, {9, 9}));
        EXPECT_EQ(kelStsNullPtrErr, shape.inverse(src.data(), step, nullptr, step, all));
        EXPECT_EQ(kelStsNullPtrErr, shape.inverseInPlace(nullptr, 0, {9, 9}));
        for (KeliSize area : wrong) {
            EXPECT_EQ(kelStsSizeErr, shape.inverse(src.data(), 0, dst.data(), 0, area));
            EXPECT_EQ(kelStsSizeErr, shape.inverseInPlace(dst.data(), 0, area));
        }
        for (int bad : {step - 1, 0, -step}) {
            EXPECT_EQ(kelStsStepErr, shape.inverse(src.data(), bad, dst.data(), step, all));
            EXPECT_EQ(kelStsStepErr, shape.inverse(src.data(), step, dst.data(), bad, all));
            EXPECT_EQ(kelStsStepErr, shape.inverseInPlace(dst.data(), bad, all));
        }
        EXPECT_TRUE(dst.untouched());
    }
}

// ---- forward ---------------------------------------------------------------------------

TEST(KelvaraVc1Transform, ForwardIsTheProductWithTheMatricesByTheirNorms) {
    unsigned seed = 1;
    for (const Shape &shape : shapes) {
        for (int limit : limits) {
            for (int round = 0; round < 60; ++round) {
                const Plane block = planeOf(shape, signedNoise(++seed, -limit, limit));
                expectForward(shape, block, seed % 7, seed % 5);
            }
        }
        for (const Pattern &pattern : {constant(32767), constant(-32768), checkerboard(32767)})
            expectForward(shape, planeOf(shape, pattern));
    }
}

// No quotient is a half. The nearest to one are those by 1156 * 1156, odd multiples of 1 / (2 * 83521) beside
// it.
TEST(KelvaraVc1Transform, ForwardRoundsWhatIsNextToAHalf) {
    for (int sign : {1, -1}) {
        for (int remainder : {41760, 41761}) {
            long long sum = 0; // 1024 / 1156^2 of it is 64 / 83521
            while (64 * sum % 83521 != remainder) ++sum;
            Plane block = vc1model::plane(8, 8);
            // The samples of the first and second diagonal place count 16 * 16 and 15 * 15 in coefficient (1,
            // 1).
            while ((sum - 225 * block[1][1]) % 256 != 0) ++block[1][1];
            block[0][0] = sign * (sum - 225 * block[1][1]) / 256;
            block[1][1] *= sign;
            ASSERT_EQ(vc1model::product(block)[1][1], sign * sum);
            expectForward(shapes[0], block);
        }
    }
}

TEST(KelvaraVc1Transform, InverseOfTheForwardTransformIsNearTheBlock) {
    for (const Shape &shape : shapes) {
        int all = 0, near = 0;
        for (unsigned seed = 0; seed < 500; ++seed) {
            const Plane block = planeOf(shape, signedNoise(seed, -255, 255));
            DstBlock<Kel16s> both = blockOf(block, 16, 0);
            ASSERT_EQ(kelStsNoErr, shape.forwardInPlace(both.data(), 16));
            ASSERT_EQ(kelStsNoErr, shape.inverseInPlace(both.data(), 16, {shape.width, shape.height}));
            for (int row = 0; row < shape.height; ++row) {
                for (int col = 0; col < shape.width; ++col) {
                    const long long error = std::llabs(both(row, col) - block[row][col]);
                    ASSERT_LE(error, 4) << shape.name();
                    ++all;
                    near += error <= 1;
                }
            }
        }
        EXPECT_GT(near, all * 99 / 100) << shape.name();
    }
}

TEST(KelvaraVc1Transform, ForwardRefusesBadArguments) {
    for (const Shape &shape : shapes) {
        const int step = 2 * shape.width;
        Source<Kel16s> src(8, 8, 16);
        DstBlock<Kel16s> dst(8, 8, 16);
        EXPECT_EQ(kelStsNullPtrErr, shape.forward(nullptr, 0, dst.data(), 0));
        EXPECT_EQ(kelStsNullPtrErr, shape.forward(src.data(), 0, nullptr, 0));
        EXPECT_EQ(kelStsNullPtrErr, shape.forwardInPlace(nullptr, 0));
        for (int bad : {step - 1, 0, -step}) {
            EXPECT_EQ(kelStsStepErr, shape.forward(src.data(), bad, dst.data(), step));
            EXPECT_EQ(kelStsStepErr, shape.forward(src.data(), step, dst.data(), bad));
            EXPECT_EQ(kelStsStepErr, shape.forwardInPlace(dst.data(), bad));
        }
        EXPECT_TRUE(dst.untouched());
    }
}

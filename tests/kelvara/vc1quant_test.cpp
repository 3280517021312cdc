// vc1quant_test.cpp - the quantisers of VC-1 and their inverses, against the rules of SMPTE 421M 8.1.3.

#include "kelvc.h"
#include "vc1block.h"

namespace {

using vc1model::blockOf;
using vc1model::expectBlock;
using vc1model::Plane;

const KeliSize interSizes[] = {{4, 4}, {4, 8}, {8, 4}, {8, 8}};
const KeliSize notInterSizes[] = {{0, 4}, {4, 0}, {5, 8}, {8, 16}, {-4, 4}, {8, 2}};
const int doubleQuants[] = {2, 3, 7, 12, 21, 30, 39, 62, 63, 64};

// ---- the functions, by what they have in common ------------------------------------------

struct Inverse {
    bool intra, nonuniform;

    KelStatus inPlace(Kel16s *block, int step, int quant, KeliSize size, KeliSize *nz) const {
        if (intra) {
            return nonuniform ? keliQuantInvIntraNonuniform_VC1_16s_C1IR(block, step, quant, nz)
                              : keliQuantInvIntraUniform_VC1_16s_C1IR(block, step, quant, nz);
        }
        return nonuniform ? keliQuantInvInterNonuniform_VC1_16s_C1IR(block, step, quant, size, nz)
                          : keliQuantInvInterUniform_VC1_16s_C1IR(block, step, quant, size, nz);
    }
    KelStatus across(const Kel16s *src, int srcStep, Kel16s *dst, int dstStep, int quant, KeliSize size,
                     KeliSize *nz) const {
        if (intra) {
            return nonuniform ? keliQuantInvIntraNonuniform_VC1_16s_C1R(src, srcStep, dst, dstStep, quant, nz)
                              : keliQuantInvIntraUniform_VC1_16s_C1R(src, srcStep, dst, dstStep, quant, nz);
        }
        return nonuniform
                   ? keliQuantInvInterNonuniform_VC1_16s_C1R(src, srcStep, dst, dstStep, quant, size, nz)
                   : keliQuantInvInterUniform_VC1_16s_C1R(src, srcStep, dst, dstStep, quant, size, nz);
    }
    std::vector<KeliSize> sizes() const {
        return intra ? std::vector<KeliSize>{{8, 8}} : std::vector<KeliSize>(interSizes, interSizes + 4);
    }
};

const Inverse inverses[] = {{true, false}, {true, true}, {false, false}, {false, true}};

KelStatus quantise(const Inverse &of, Kel16s *block, int step, int quant, KeliSize size) {
    if (of.intra) {
        return of.nonuniform ? keliQuantIntraNonuniform_VC1_16s_C1IR(block, step, quant)
                             : keliQuantIntraUniform_VC1_16s_C1IR(block, step, quant);
    }
    return of.nonuniform ? keliQuantInterNonuniform_VC1_16s_C1IR(block, step, quant, size)
                         : keliQuantInterUniform_VC1_16s_C1IR(block, step, quant, size);
}

// ---- models --------------------------------------------------------------------------------

int reconstructed(long long level, int doubleQuant, bool nonuniform) {
    const int halfQp = doubleQuant % 2, mquant = (doubleQuant - halfQp) / 2;
    long long value = level * (2 * mquant + halfQp);
    if (nonuniform && level > 0) value += mquant;
    if (nonuniform && level < 0) value -= mquant;
    return static_cast<int>(std::clamp<long long>(value, -32768, 32767));
}

int quantised(long long coeff, int doubleQuant, bool nonuniform) {
    const double quotient = static_cast<double>(coeff) / doubleQuant;
    return static_cast<int>(nonuniform ? std::trunc(quotient) : std::round(quotient));
}

Plane planeOf(KeliSize size, const Pattern &pattern) {
    return vc1model::planeOf(size.width, size.height, pattern);
}

KeliSize extent(const Plane &values) {
    KeliSize area = {0, 0};
    for (int row = 0; row < vc1model::heightOf(values); ++row) {
        for (int col = 0; col < vc1model::widthOf(values); ++col) {
            if (values[row][col] == 0) continue;
            area.width = std::max(area.width, col + 1);
            area.height = std::max(area.height, row + 1);
        }
    }
    return area;
}

// ---- blocks --------------------------------------------------------------------------------

void expectSize(KeliSize seen, KeliSize expected) {
    EXPECT_EQ(seen.width, expected.width);
    EXPECT_EQ(seen.height, expected.height);
}

void expectInverse(const Inverse &inverse, const Plane &levels, int quant, int moreStep, int slack) {
    const KeliSize size = {vc1model::widthOf(levels), vc1model::heightOf(levels)};
    Plane expected = levels;
    for (std::vector<long long> &row : expected) {
        for (long long &level : row) level = reconstructed(level, quant, inverse.nonuniform);
    }
    if (inverse.intra) expected[0][0] = levels[0][0];

    const int step = 2 * size.width + moreStep;
    Source<Kel16s> src(size.height, size.width, step, slack);
    src.fill([&](int row, int col) { return static_cast<int>(levels[row][col]); });
    DstBlock<Kel16s> dst(size.height, size.width, step + 3, slack), both = blockOf(levels, step, slack);
    KeliSize nz = {-1, -1}, nzInPlace = {-1, -1};
    ASSERT_EQ(kelStsNoErr, inverse.across(src.data(), step, dst.data(), dst.step(), quant, size, &nz));
    ASSERT_EQ(kelStsNoErr, inverse.inPlace(both.data(), step, quant, size, &nzInPlace));
    expectBlock(dst, expected);
    expectBlock(both, expected);
    expectSize(nz, extent(expected));
    expectSize(nzInPlace, extent(expected));
}

} // namespace

// ---- inverse ---------------------------------------------------------------------------

TEST(KelvaraVc1Quant, InverseMultipliesTheLevels) {
    unsigned seed = 1;
    for (const Inverse &inverse : inverses) {
        for (KeliSize size : inverse.sizes()) {
            for (int quant : doubleQuants) {
                for (int limit : {1, 127, 2047, 32767}) {
                    const Pattern pattern = signedNoise(++seed, -limit, limit);
                    expectInverse(inverse, planeOf(size, pattern), quant, seed % 7, seed % 5);
                }
            }
        }
    }
}

TEST(KelvaraVc1Quant, InverseOfExtremeLevelsIsLimited) {
    for (const Inverse &inverse : inverses) {
        for (int level : {-32768, 32767}) expectInverse(inverse, planeOf({8, 8}, constant(level)), 64, 0, 0);
    }
}

TEST(KelvaraVc1Quant, InverseTellsTheAreaOfEachSingleCoefficient) {
    for (const Inverse &inverse : inverses) {
        for (KeliSize size : inverse.sizes()) {
            for (int i = 0; i < size.width * size.height; ++i) {
                Plane levels = planeOf(size, constant(0));
                levels[i / size.width][i % size.width] = i % 2 ? 1 : -1;
                expectInverse(inverse, levels, 9, 0, 0);
            }
        }
    }
}

TEST(KelvaraVc1Quant, InverseTellsAnEmptyAreaWhereAllIsZero) {
    for (const Inverse &inverse : inverses) {
        for (KeliSize size : inverse.sizes()) {
            DstBlock<Kel16s> block = blockOf(planeOf(size, constant(0)), 16, 0);
            KeliSize nz = {8, 8};
            ASSERT_EQ(kelStsNoErr, inverse.inPlace(block.data(), 16, 30, size, &nz));
            expectSize(nz, {0, 0});
        }
    }
}

// MQUANT 3 with half a step: 7 a level; nonuniform 3 more. DC of intra blocks has a step size of its own.
TEST(KelvaraVc1Quant, InverseHasTheValuesWorkedOutByHand) {
    const Plane levels = {{5, 1, -1, 0}, {2, -2, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}};
    const Plane uniform = {{35, 7, -7, 0}, {14, -14, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}};
    const Plane nonuniform = {{38, 10, -10, 0}, {17, -17, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}};
    KeliSize nz;
    DstBlock<Kel16s> block = blockOf(levels, 8, 0);
    ASSERT_EQ(kelStsNoErr, keliQuantInvInterUniform_VC1_16s_C1IR(block.data(), 8, 7, {4, 4}, &nz));
    expectBlock(block, uniform);
    expectSize(nz, {3, 2});
    block = blockOf(levels, 8, 0);
    ASSERT_EQ(kelStsNoErr, keliQuantInvInterNonuniform_VC1_16s_C1IR(block.data(), 8, 7, {4, 4}, &nz));
    expectBlock(block, nonuniform);
    DstBlock<Kel16s> intra = blockOf(planeOf({8, 8}, constant(5)), 16, 0);
    ASSERT_EQ(kelStsNoErr, keliQuantInvIntraUniform_VC1_16s_C1IR(intra.data(), 16, 7, &nz));
    EXPECT_EQ(intra(0, 0), 5);
    EXPECT_EQ(intra(0, 1), 35);
    EXPECT_EQ(intra(1, 0), 35);
}

TEST(KelvaraVc1Quant, InverseRefusesBadArguments) {
    for (const Inverse &inverse : inverses) {
        Source<Kel16s> src(8, 8, 16);
        DstBlock<Kel16s> dst(8, 8, 16);
        KeliSize nz = {-7, -7};
        const KeliSize all = {8, 8}, none = {0, 0};
        EXPECT_EQ(kelStsNullPtrErr, inverse.across(nullptr, 0, dst.data(), 0, 0, none, &nz));
        EXPECT_EQ(kelStsNullPtrErr, inverse.across(src.data(), 0, nullptr, 0, 0, none, &nz));
        EXPECT_EQ(kelStsNullPtrErr, inverse.across(src.data(), 0, dst.data(), 0, 0, none, nullptr));
        EXPECT_EQ(kelStsNullPtrErr, inverse.inPlace(nullptr, 0, 0, none, &nz));
        EXPECT_EQ(kelStsNullPtrErr, inverse.inPlace(dst.data(), 0, 0, none, nullptr));
        for (KeliSize size : notInterSizes) {
            if (inverse.intra) break;
            EXPECT_EQ(kelStsSizeErr, inverse.across(src.data(), 0, dst.data(), 0, 0, size, &nz));
            EXPECT_EQ(kelStsSizeErr, inverse.inPlace(dst.data(), 0, 0, size, &nz));
        }
        for (int step : {15, 0, -16}) {
            EXPECT_EQ(kelStsStepErr, inverse.across(src.data(), step, dst.data(), 16, 0, all, &nz));
            EXPECT_EQ(kelStsStepErr, inverse.across(src.data(), 16, dst.data(), step, 0, all, &nz));
            EXPECT_EQ(kelStsStepErr, inverse.inPlace(dst.data(), step, 0, all, &nz));
        }
        for (int quant : {1, 0, -2, 65, 1 << 30}) {
            EXPECT_EQ(kelStsRangeErr, inverse.across(src.data(), 16, dst.data(), 16, quant, all, &nz));
            EXPECT_EQ(kelStsRangeErr, inverse.inPlace(dst.data(), 16, quant, all, &nz));
        }
        EXPECT_TRUE(dst.untouched());
        expectSize(nz, {-7, -7});
    }
}

// ---- forward ---------------------------------------------------------------------------

// Every coefficient there is, 64 of them at a time.
TEST(KelvaraVc1Quant, ForwardGivesTheLevelOfEveryCoefficient) {
    for (const Inverse &of : inverses) {
        for (int quant : doubleQuants) {
            for (int first = -32768; first < 32768; first += 64) {
                Kel16s block[64];
                for (int i = 0; i < 64; ++i) block[i] = static_cast<Kel16s>(first + i);
                ASSERT_EQ(kelStsNoErr, quantise(of, block, 16, quant, {8, 8}));
                for (int i = 0; i < 64; ++i) {
                    const bool stays = of.intra && i == 0;
                    ASSERT_EQ(block[i], stays ? first : quantised(first + i, quant, of.nonuniform)) << quant;
                }
            }
        }
    }
}

TEST(KelvaraVc1Quant, ForwardWorksOnTheBlockAlone) {
    unsigned seed = 1;
    for (const Inverse &of : inverses) {
        for (KeliSize size : of.sizes()) {
            for (int quant : doubleQuants) {
                const Plane coeffs = planeOf(size, signedNoise(++seed, -3000, 3000));
                Plane levels = coeffs;
                for (std::vector<long long> &row : levels) {
                    for (long long &value : row) value = quantised(value, quant, of.nonuniform);
                }
                if (of.intra) levels[0][0] = coeffs[0][0];
                const int step = 2 * size.width + static_cast<int>(seed % 7);
                DstBlock<Kel16s> block = blockOf(coeffs, step, seed % 5);
                ASSERT_EQ(kelStsNoErr, quantise(of, block.data(), step, quant, size));
                expectBlock(block, levels);
            }
        }
    }
}

// Outside of the dead zone no coefficient moves by more than half a step, and within it all become 0.
TEST(KelvaraVc1Quant, InverseOfTheForwardIsWithinHalfAStep) {
    for (const Inverse &of : {inverses[2], inverses[3]}) {
        for (int quant : doubleQuants) {
            for (int first = -2048; first < 2048; first += 64) {
                Kel16s block[64];
                KeliSize nz;
                for (int i = 0; i < 64; ++i) block[i] = static_cast<Kel16s>(first + i);
                ASSERT_EQ(kelStsNoErr, quantise(of, block, 16, quant, {8, 8}));
                ASSERT_EQ(kelStsNoErr, of.inPlace(block, 16, quant, {8, 8}, &nz));
                for (int i = 0; i < 64; ++i) {
                    const int coeff = first + i;
                    if (of.nonuniform && std::abs(coeff) < quant) {
                        ASSERT_EQ(block[i], 0);
                    } else {
                        ASSERT_LE(2 * std::abs(block[i] - coeff), quant) << coeff;
                    }
                }
            }
        }
    }
}

TEST(KelvaraVc1Quant, ForwardRefusesBadArguments) {
    for (const Inverse &of : inverses) {
        DstBlock<Kel16s> block(8, 8, 16);
        EXPECT_EQ(kelStsNullPtrErr, quantise(of, nullptr, 0, 0, {0, 0}));
        for (KeliSize size : notInterSizes) {
            if (!of.intra) {
                EXPECT_EQ(kelStsSizeErr, quantise(of, block.data(), 0, 0, size));
            }
        }
        for (int step : {15, 0, -16}) EXPECT_EQ(kelStsStepErr, quantise(of, block.data(), step, 0, {8, 8}));
        for (int quant : {1, 0, -2, 65, 1 << 30})
            EXPECT_EQ(kelStsRangeErr, quantise(of, block.data(), 16, quant, {8, 8}));
        EXPECT_TRUE(block.untouched());
    }
}

// ---- on the way back to samples -----------------------------------------------------------

// Large steps leave small areas.
TEST(KelvaraVc1Quant, AreaOfTheInverseIsEnoughForTheTransform) {
    int smaller = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        const Pattern noise = signedNoise(seed, -100, 100);
        const auto falling = [&](int row, int col) { return noise(row, col) / (1 + row * row + col * col); };
        DstBlock<Kel16s> block = blockOf(planeOf({8, 8}, falling), 16, 0), whole(8, 8, 16);
        KeliSize nz;
        ASSERT_EQ(kelStsNoErr, keliQuantInterUniform_VC1_16s_C1IR(block.data(), 16, 12, {8, 8}));
        ASSERT_EQ(kelStsNoErr, keliQuantInvInterUniform_VC1_16s_C1IR(block.data(), 16, 12, {8, 8}, &nz));
        smaller += nz.width < 8 && nz.height < 8;
        ASSERT_EQ(kelStsNoErr, keliTransform8x8Inv_VC1_16s_C1R(block.data(), 16, whole.data(), 16, {8, 8}));
        ASSERT_EQ(kelStsNoErr, keliTransform8x8Inv_VC1_16s_C1IR(block.data(), 16, nz));
        for (int i = 0; i < 64; ++i) ASSERT_EQ(block(i / 8, i % 8), whole(i / 8, i % 8));
    }
    EXPECT_GT(smaller, 100);
}

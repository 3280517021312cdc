// interleaved_test.cpp - the functions of interleaved chroma against models of one colour at a time.

#include "blocktest.h"
#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const Pattern patterns[] = {noise(1, 255), noise(2, 255), constant(255), constant(0), checkerboard(255)};

int limited(int value) {
    return std::clamp(value, 0, 255);
}

// ---- motion compensation -----------------------------------------------------------------

// Forms with one reference disregard the backward one.
struct Compensation {
    const char *name;
    KelStatus (*call)(const Kel8u *f, int fStep, int fType, const Kel8u *b, int bStep, int bType,
                      const Kel16s *u, const Kel16s *v, int residualStep, Kel8u *dst, int dstStep,
                      int roundControl);
    int height;
    bool bidirectional;
};

template <KelStatus (*f)(const Kel8u *, int, const Kel16s *, const Kel16s *, int, Kel8u *, int, int, int)>
KelStatus forward(const Kel8u *ref, int refStep, int mcType, const Kel8u *, int, int, const Kel16s *u,
                  const Kel16s *v, int residualStep, Kel8u *dst, int dstStep, int roundControl) {
    return f(ref, refStep, u, v, residualStep, dst, dstStep, mcType, roundControl);
}

const Compensation compensations[] = {
    {"keliMC8x8_16s8u_P2C2R", forward<keliMC8x8_16s8u_P2C2R>, 8, false},
    {"keliMC8x4_16s8u_P2C2R", forward<keliMC8x4_16s8u_P2C2R>, 4, false},
    {"keliMC8x8B_16s8u_P2C2R", keliMC8x8B_16s8u_P2C2R, 8, true},
    {"keliMC8x4B_16s8u_P2C2R", keliMC8x4B_16s8u_P2C2R, 4, true},
};

void compare(const Compensation &c, int fType, int bType, int roundControl, const Pattern &pattern,
             int residualLimit, int step, int slack) {
    const int h = c.height;
    RefBlock f(16, h, 2, fType, 18 + step, slack, pattern);
    RefBlock b(16, h, 2, bType, 18 + 2 * step, slack, noise(3, 255));
    Source<Kel16s> u(h, 8, 16 + step, slack), v(h, 8, 16 + step);
    u.fill(signedNoise(4, -residualLimit, residualLimit));
    v.fill(signedNoise(5, -residualLimit, residualLimit));
    DstBlock<Kel8u> dst(h, 16, 16 + step, slack);
    ASSERT_EQ(kelStsNoErr,
              c.call(f.samples.data(), f.samples.step(), fType, b.samples.data(), b.samples.step(), bType,
                     u.data(), v.data(), u.step(), dst.data(), dst.step(), roundControl));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < 16; ++col) {
            const int residual = col % 2 ? v(row, col / 2) : u(row, col / 2);
            const int pred = c.bidirectional ? predicted(f, b, row, col, roundControl)
                                             : f.predicted(row, col, roundControl);
            ASSERT_EQ(limited(pred + residual), dst(row, col)) << row << ", " << col;
        }
    }
}

KelStatus callWith(const Compensation &c, DstBlock<Kel8u> &dst, int refStep, int backStep, int residualStep,
                   int dstStep, int fType, int bType, int roundControl) {
    RefBlock f(16, 8, 2, 12, 40, 0, noise(1, 255)), b(16, 8, 2, 12, 40, 0, noise(2, 255));
    Source<Kel16s> u(8, 8, 40), v(8, 8, 40);
    return c.call(f.samples.data(), refStep, fType, b.samples.data(), backStep, bType, u.data(), v.data(),
                  residualStep, dst.data(), dstStep, roundControl);
}

} // namespace

TEST(KelvaraInterleaved, CompensationAddsTheResidualOfEachColour) {
    for (const Compensation &c : compensations) {
        for (const int fType : mcTypes) {
            for (const int bType : mcTypes) {
                if (!c.bidirectional && bType != fType) continue;
                for (int roundControl = 0; roundControl < 2; ++roundControl) {
                    for (const Pattern &pattern : patterns) {
                        SCOPED_TRACE(testing::Message() << c.name << ", positions " << fType << ", " << bType
                                                        << ", rounding " << roundControl);
                        compare(c, fType, bType, roundControl, pattern, 255, 0, 0);
                    }
                }
            }
        }
    }
}

TEST(KelvaraInterleaved, CompensationTakesAnyStepAddressAndResidual) {
    for (const Compensation &c : compensations) {
        for (const int step : {0, 1, 16, 303}) {
            for (const int residual : {0, 3, 512, 32767}) {
                SCOPED_TRACE(testing::Message() << c.name << ", " << step << ", " << residual);
                compare(c, 12, 4, 0, noise(6, 255), residual, step, step % 16);
            }
        }
    }
}

TEST(KelvaraInterleaved, CompensationRefusesBadArgumentsInOrder) {
    for (const Compensation &c : compensations) {
        SCOPED_TRACE(c.name);
        DstBlock<Kel8u> dst(8, 16, 40);
        for (const int step : {15, 0, -40}) {
            EXPECT_EQ(kelStsStepErr, callWith(c, dst, step, 40, 40, 40, 1, 1, 2));
            EXPECT_EQ(kelStsStepErr, callWith(c, dst, 40, 40, step, 40, 1, 1, 2));
            EXPECT_EQ(kelStsStepErr, callWith(c, dst, 40, 40, 40, step, 1, 1, 2));
            if (c.bidirectional) {
                EXPECT_EQ(kelStsStepErr, callWith(c, dst, 40, step, 40, 40, 1, 1, 2));
            }
        }
        for (const int type : notMcTypes) {
            EXPECT_EQ(kelStsRangeErr, callWith(c, dst, 40, 40, 40, 40, type, 0, 0));
            if (c.bidirectional) {
                EXPECT_EQ(kelStsRangeErr, callWith(c, dst, 40, 40, 40, 40, 0, type, 0));
            }
        }
        for (const int rounding : notRoundControls)
            EXPECT_EQ(kelStsRangeErr, callWith(c, dst, 40, 40, 40, 40, 0, 0, rounding));
        EXPECT_TRUE(dst.untouched());
    }
}

TEST(KelvaraInterleaved, CompensationRefusesNullPointers) {
    for (const Compensation &c : compensations) {
        Source<Kel8u> ref(9, 18, 40);
        Source<Kel16s> residual(8, 8, 40);
        DstBlock<Kel8u> dst(8, 16, 40);
        const Kel8u *f = ref.data(), *b = ref.data();
        const Kel16s *u = residual.data(), *v = residual.data();
        EXPECT_EQ(kelStsNullPtrErr, c.call(nullptr, 0, 1, b, 0, 1, u, v, 0, dst.data(), 0, 2)) << c.name;
        EXPECT_EQ(kelStsNullPtrErr, c.call(f, 0, 1, b, 0, 1, nullptr, v, 0, dst.data(), 0, 2)) << c.name;
        EXPECT_EQ(kelStsNullPtrErr, c.call(f, 0, 1, b, 0, 1, u, nullptr, 0, dst.data(), 0, 2)) << c.name;
        EXPECT_EQ(kelStsNullPtrErr, c.call(f, 0, 1, b, 0, 1, u, v, 0, nullptr, 0, 2)) << c.name;
        if (c.bidirectional) {
            EXPECT_EQ(kelStsNullPtrErr, c.call(f, 0, 1, nullptr, 0, 1, u, v, 0, dst.data(), 0, 2)) << c.name;
        }
        EXPECT_TRUE(dst.untouched());
    }
}

// ---- sums of absolute differences ------------------------------------------------------------

TEST(KelvaraInterleaved, SadsAreThoseOfEachColour) {
    for (const PatternPair &pair : patternPairs(255)) {
        for (const int mcType : mcTypes) {
            for (const int step : {0, 1, 34}) {
                SCOPED_TRACE(testing::Message() << pair.name << ", position " << mcType << ", step " << step);
                Source<Kel8u> cur(8, 16, 16 + step, step % 16);
                cur.fill(pair.src);
                RefBlock ref(16, 8, 2, mcType, 18 + step, step % 16, pair.ref);
                int sums[2] = {0, 0};
                for (int i = 0; i < 128; ++i)
                    sums[i % 2] += std::abs(cur(i / 16, i % 16) - ref.predicted(i / 16, i % 16, 0));
                Destination<Kel32s> u(1, step % 4), v(1, step % 3);
                ASSERT_EQ(kelStsNoErr, keliSAD8x8_8u32s_C2R(cur.data(), cur.step(), ref.samples.data(),
                                                            ref.samples.step(), u.data(), v.data(), mcType));
                EXPECT_EQ(sums[0], u[0]);
                EXPECT_EQ(sums[1], v[0]);
                EXPECT_TRUE(u.surroundingsIntact());
                EXPECT_TRUE(v.surroundingsIntact());
            }
        }
    }
}

TEST(KelvaraInterleaved, SadRefusesBadArgumentsInOrder) {
    Source<Kel8u> src(9, 18, 20);
    const Kel8u *p = src.data();
    Destination<Kel32s> u(1), v(1);
    EXPECT_EQ(kelStsNullPtrErr, keliSAD8x8_8u32s_C2R(nullptr, 0, p, 0, u.data(), v.data(), 1));
    EXPECT_EQ(kelStsNullPtrErr, keliSAD8x8_8u32s_C2R(p, 0, nullptr, 0, u.data(), v.data(), 1));
    EXPECT_EQ(kelStsNullPtrErr, keliSAD8x8_8u32s_C2R(p, 0, p, 0, nullptr, v.data(), 1));
    EXPECT_EQ(kelStsNullPtrErr, keliSAD8x8_8u32s_C2R(p, 0, p, 0, u.data(), nullptr, 1));
    for (const int step : {15, 0, -20}) {
        EXPECT_EQ(kelStsStepErr, keliSAD8x8_8u32s_C2R(p, step, p, 20, u.data(), v.data(), 1));
        EXPECT_EQ(kelStsStepErr, keliSAD8x8_8u32s_C2R(p, 20, p, step, u.data(), v.data(), 1));
    }
    for (const int type : notMcTypes)
        EXPECT_EQ(kelStsRangeErr, keliSAD8x8_8u32s_C2R(p, 20, p, 20, u.data(), v.data(), type));
    EXPECT_TRUE(u.untouched());
    EXPECT_TRUE(v.untouched());
}

// ---- sums of differences -----------------------------------------------------------------------

namespace {

// The difference of one colour at (row, col) of its plane.
struct Differences {
    Differences(const PatternPair &pair, int step, int slack)
        : src(8, 16, 16 + step, slack), pred(8, 16, 16 + 2 * step, slack) {
        src.fill(pair.src);
        pred.fill(pair.ref);
    }
    int operator()(int colour, int row, int col) const {
        return src(row, 2 * col + colour) - pred(row, 2 * col + colour);
    }
    int sum(int colour, int block) const {
        int result = 0;
        for (int i = 0; i < 16; ++i) result += (*this)(colour, block / 2 * 4 + i / 4, block % 2 * 4 + i % 4);
        return result;
    }

    Source<Kel8u> src, pred;
};

void compareDifferences(const PatternPair &pair, int step, int slack, bool keepU, bool keepV) {
    const Differences expected(pair, step, slack);
    DstBlock<Kel16s> sums(2, 4, 8 + step, slack);
    Destination<Kel16s> total[] = {Destination<Kel16s>(1, slack), Destination<Kel16s>(1)};
    Destination<Kel16s> diff[] = {Destination<Kel16s>(64, slack), Destination<Kel16s>(64)};
    const bool keep[] = {keepU, keepV};
    ASSERT_EQ(kelStsNoErr,
              keliSumsDiff8x8Blocks4x4_8u16s_C2P2(
                  expected.src.data(), expected.src.step(), expected.pred.data(), expected.pred.step(),
                  sums.data(), sums.step(), total[0].data(), keepU ? diff[0].data() : nullptr,
                  total[1].data(), keepV ? diff[1].data() : nullptr));
    EXPECT_TRUE(sums.surroundingsIntact());
    for (int colour = 0; colour < 2; ++colour) {
        EXPECT_TRUE(total[colour].surroundingsIntact());
        EXPECT_TRUE(keep[colour] ? diff[colour].surroundingsIntact() : diff[colour].untouched());
        int all = 0;
        for (int block = 0; block < 4; ++block) {
            EXPECT_EQ(expected.sum(colour, block), sums(colour, block)) << colour << ", block " << block;
            all += expected.sum(colour, block);
            for (int i = 0; keep[colour] && i < 16; ++i) {
                ASSERT_EQ(expected(colour, block / 2 * 4 + i / 4, block % 2 * 4 + i % 4),
                          diff[colour][16 * block + i]);
            }
        }
        EXPECT_EQ(all, total[colour][0]);
    }
}

} // namespace

TEST(KelvaraInterleaved, SumsOfDifferencesAreThoseOfEachColour) {
    for (const PatternPair &pair : patternPairs(255)) {
        for (const int step : {0, 1, 16, 33}) {
            for (int keep = 0; keep < 4; ++keep) {
                SCOPED_TRACE(testing::Message() << pair.name << ", step " << step << ", keep " << keep);
                compareDifferences(pair, step, step % 16, keep & 1, keep & 2);
            }
        }
    }
}

TEST(KelvaraInterleaved, SumsOfDifferencesRefuseBadArgumentsInOrder) {
    Source<Kel8u> src(8, 16, 20);
    const Kel8u *p = src.data();
    DstBlock<Kel16s> sums(2, 4, 16);
    Destination<Kel16s> u(1), v(1), diff(64);
    const auto call = [&](const Kel8u *s, int ss, const Kel8u *r, int rs, Kel16s *d, int ds, Kel16s *su,
                          Kel16s *sv) {
        return keliSumsDiff8x8Blocks4x4_8u16s_C2P2(s, ss, r, rs, d, ds, su, diff.data(), sv, diff.data());
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 0, p, 0, sums.data(), 0, u.data(), v.data()));
    EXPECT_EQ(kelStsNullPtrErr, call(p, 0, nullptr, 0, sums.data(), 0, u.data(), v.data()));
    EXPECT_EQ(kelStsNullPtrErr, call(p, 0, p, 0, nullptr, 0, u.data(), v.data()));
    EXPECT_EQ(kelStsNullPtrErr, call(p, 0, p, 0, sums.data(), 0, nullptr, v.data()));
    EXPECT_EQ(kelStsNullPtrErr, call(p, 0, p, 0, sums.data(), 0, u.data(), nullptr));
    for (const int step : {15, 0, -20}) {
        EXPECT_EQ(kelStsStepErr, call(p, step, p, 20, sums.data(), 16, u.data(), v.data()));
        EXPECT_EQ(kelStsStepErr, call(p, 20, p, step, sums.data(), 16, u.data(), v.data()));
    }
    for (const int step : {7, 0, -16})
        EXPECT_EQ(kelStsStepErr, call(p, 20, p, 20, sums.data(), step, u.data(), v.data()));
    EXPECT_TRUE(sums.untouched());
    EXPECT_TRUE(u.untouched());
    EXPECT_TRUE(v.untouched());
    EXPECT_TRUE(diff.untouched());
}

// ---- transforms -----------------------------------------------------------------------------------

namespace {

double basis(int k, int n) {
    return (k ? 0.5 : std::sqrt(0.125)) * std::cos((2 * n + 1) * k * M_PI / 16);
}

// Coefficient (v, u), or the sample at (v, u) with the roles of both changed.
template <class Block>
double transformed(const Block &block, int v, int u, bool inverse) {
    double sum = 0;
    for (int i = 0; i < 64; ++i) {
        const int y = i / 8, x = i % 8;
        sum += block(y, x) * (inverse ? basis(y, v) * basis(x, u) : basis(v, y) * basis(u, x));
    }
    return sum;
}

// The nearest integer to the exact value, but for what single precision cannot tell.
void expectNearest(double exact, int value, const char *what) {
    EXPECT_LE(std::abs(exact - value), 0.5 + 2e-3) << what << ", " << exact << ", " << value;
}

Values<Kel16s> valuesOf(const Destination<Kel16s> &block) {
    Values<Kel16s> values;
    for (int i = 0; i < 64; ++i) values[i] = block[i];
    return values;
}

} // namespace

TEST(KelvaraInterleaved, ForwardTransformIsThatOfEachColour) {
    for (const Pattern &pattern : patterns) {
        for (const int step : {0, 1, 18}) {
            Source<Kel8u> src(8, 16, 16 + step, step % 16);
            src.fill(pattern);
            Destination<Kel16s> dst[] = {Destination<Kel16s>(64, step % 8), Destination<Kel16s>(64)};
            ASSERT_EQ(kelStsNoErr,
                      keliDCT8x8Fwd_8u16s_C2P2(src.data(), src.step(), dst[0].data(), dst[1].data()));
            for (int colour = 0; colour < 2; ++colour) {
                EXPECT_TRUE(dst[colour].surroundingsIntact());
                const auto plane = [&](int y, int x) { return src(y, 2 * x + colour); };
                for (int i = 0; i < 64; ++i)
                    expectNearest(transformed(plane, i / 8, i % 8, false), dst[colour][i], "coefficient");
            }
        }
    }
}

TEST(KelvaraInterleaved, FirstCoefficientIsAnEighthOfTheSum) {
    Source<Kel8u> src(8, 16, 16);
    src.fill([](int, int col) { return col % 2 ? 255 : 100; });
    Destination<Kel16s> u(64), v(64);
    ASSERT_EQ(kelStsNoErr, keliDCT8x8Fwd_8u16s_C2P2(src.data(), 16, u.data(), v.data()));
    EXPECT_EQ(800, u[0]);
    EXPECT_EQ(2040, v[0]);
    for (int i = 1; i < 64; ++i) EXPECT_TRUE(u[i] == 0 && v[i] == 0) << i;
}

TEST(KelvaraInterleaved, InverseTransformIsThatOfEachColour) {
    std::mt19937 generator(7);
    for (int round = 0; round < 60; ++round) {
        const int limit = round % 3 == 0 ? 10 : round % 3 == 1 ? 255 : 2048, slack = round % 5;
        auto u = randomBlock<Kel16s>(generator, -limit, limit);
        const auto v = randomBlock<Kel16s>(generator, -limit, limit);
        u[0] = 1024;
        const SourceBlock<Kel16s> srcU(u, slack), srcV(v);
        DstBlock<Kel8u> dst(8, 16, 16 + 3 * slack, slack);
        ASSERT_EQ(kelStsNoErr,
                  keliDCT8x8InvOrSet_16s8u_P2C2(srcU.data(), srcV.data(), dst.data(), dst.step(), 1));
        EXPECT_TRUE(dst.surroundingsIntact());
        for (int i = 0; i < 128; ++i) {
            const auto &block = i % 2 ? v : u;
            const auto coeffs = [&](int y, int x) { return block[8 * y + x]; };
            const double exact = transformed(coeffs, i / 16, i % 16 / 2, true);
            expectNearest(std::min(std::max(exact, 0.0), 255.0), dst(i / 16, i % 16), "sample");
        }
    }
}

TEST(KelvaraInterleaved, SetTakesTheFirstCoefficientAlone) {
    struct Level {
        int coefficient, sample;
    };
    for (const Level &level :
         {Level{0, 0}, {800, 100}, {804, 101}, {803, 100}, {2040, 255}, {32767, 255}, {-9, 0}, {-32768, 0}}) {
        // One word in front of the forbidden page.
        Source<Kel16s> u(1, 1, 2), v(1, 1, 2);
        u.fill(constant(level.coefficient));
        v.fill(constant(480));
        DstBlock<Kel8u> dst(8, 16, 21);
        ASSERT_EQ(kelStsNoErr, keliDCT8x8InvOrSet_16s8u_P2C2(u.data(), v.data(), dst.data(), 21, 0));
        EXPECT_TRUE(dst.surroundingsIntact());
        for (int i = 0; i < 128; ++i)
            EXPECT_EQ(i % 2 ? 60 : level.sample, dst(i / 16, i % 16)) << level.coefficient;
    }
}

TEST(KelvaraInterleaved, InverseOfTheForwardTransformGivesTheSamplesBack) {
    for (unsigned round = 0; round < 200; ++round) {
        Source<Kel8u> src(8, 16, 16);
        src.fill(noise(100 + round, 255));
        Destination<Kel16s> u(64), v(64);
        ASSERT_EQ(kelStsNoErr, keliDCT8x8Fwd_8u16s_C2P2(src.data(), 16, u.data(), v.data()));
        const SourceBlock<Kel16s> srcU(valuesOf(u)), srcV(valuesOf(v));
        DstBlock<Kel8u> dst(8, 16, 16);
        ASSERT_EQ(kelStsNoErr, keliDCT8x8InvOrSet_16s8u_P2C2(srcU.data(), srcV.data(), dst.data(), 16, 1));
        for (int i = 0; i < 128; ++i) ASSERT_NEAR(src(i / 16, i % 16), dst(i / 16, i % 16), 1) << i;
    }
}

TEST(KelvaraInterleaved, TransformsRefuseBadArgumentsInOrder) {
    Source<Kel8u> src(8, 16, 20);
    const SourceBlock<Kel16s> block(Values<Kel16s>{});
    const Kel16s *c = block.data();
    Destination<Kel16s> u(64), v(64);
    DstBlock<Kel8u> dst(8, 16, 20);
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x8Fwd_8u16s_C2P2(nullptr, 0, u.data(), v.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x8Fwd_8u16s_C2P2(src.data(), 0, nullptr, v.data()));
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x8Fwd_8u16s_C2P2(src.data(), 0, u.data(), nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x8InvOrSet_16s8u_P2C2(nullptr, c, dst.data(), 0, 2));
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x8InvOrSet_16s8u_P2C2(c, nullptr, dst.data(), 0, 2));
    EXPECT_EQ(kelStsNullPtrErr, keliDCT8x8InvOrSet_16s8u_P2C2(c, c, nullptr, 0, 2));
    for (const int step : {15, 0, -20}) {
        EXPECT_EQ(kelStsStepErr, keliDCT8x8Fwd_8u16s_C2P2(src.data(), step, u.data(), v.data()));
        EXPECT_EQ(kelStsStepErr, keliDCT8x8InvOrSet_16s8u_P2C2(c, c, dst.data(), step, 2));
    }
    for (const int flag : {-1, 2, 3, 1 << 30})
        EXPECT_EQ(kelStsRangeErr, keliDCT8x8InvOrSet_16s8u_P2C2(c, c, dst.data(), 20, flag));
    EXPECT_TRUE(u.untouched());
    EXPECT_TRUE(v.untouched());
    EXPECT_TRUE(dst.untouched());
}

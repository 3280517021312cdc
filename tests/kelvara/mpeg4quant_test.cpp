// mpeg4quant_test.cpp - quantisation of MPEG-4 blocks both ways.

#include "mpeg4kinds.h"
#include "mpeg4quantiser.h"

using namespace mpeg4;

namespace {

const int scales[] = {1, 2, 3, 4, 5, 8, 9, 16, 24, 25, 31, 32, 100, 511};
const int depths[] = {4, 5, 8, 10, 12};

// ---- the functions ----------------------------------------------------------------------

KelStatus inverse(Kel16s *block, int last, const KeliQuantSpec_MPEG4 *spec, int QP, int blockType) {
    return blockType >= 0 ? keliQuantInvIntra_MPEG4_16s_C1I(block, last, spec, QP, blockType)
                          : keliQuantInvInter_MPEG4_16s_C1I(block, last, spec, QP);
}

KelStatus forward(Kel16s *block, const KeliQuantSpec_MPEG4 *spec, int QP, int *count, int blockType) {
    return blockType >= 0 ? keliQuantIntra_MPEG4_16s_C1I(block, spec, QP, count, blockType)
                          : keliQuantInter_MPEG4_16s_C1I(block, spec, QP, count);
}

void expectInverse(const Block &levels, const Matrix *matrix, int depth, int QP, int blockType, int last = 63,
                   int offset = 0) {
    SCOPED_TRACE(testing::Message() << (matrix ? "weighted" : "plain") << ", depth " << depth << ", QP " << QP
                                    << ", type " << blockType << ", last " << last);
    Quantiser quantiser(blockType >= 0 ? InvIntra : InvInter, matrix, depth, offset);
    InPlace block(levels, offset);
    ASSERT_EQ(kelStsNoErr, inverse(block.data(), last, quantiser.get(), QP, blockType));
    EXPECT_EQ(dequantised(levels, matrix, depth, QP, blockType), block.values());
    EXPECT_TRUE(block.surroundingsIntact());
}

// In intervals, so that no rounding of the function's own is told again: twice the weight times QP is the
// step of the first method, in 16ths, 2 * QP that of the second one.
void expectLevel(int x, int level, const Matrix *matrix, int index, int QP, bool intra) {
    const int magnitude = std::abs(x), result = std::abs(level);
    double scaled = magnitude;
    if (matrix) {
        scaled = std::floor(16.0 * magnitude / (*matrix)[index] + 0.5);
        if (intra) scaled += std::floor(0.75 * QP + 0.5);
    } else if (!intra) {
        scaled -= std::floor(QP / 2.0);
    }
    EXPECT_LE(result, 2047);
    if (scaled >= 0) {
        EXPECT_LE(2.0 * QP * result, scaled) << x;
    } else {
        EXPECT_EQ(0, result) << x;
    }
    if (result < 2047) {
        EXPECT_GT(2.0 * QP * (result + 1), scaled) << x;
    }
    if (level != 0) {
        EXPECT_EQ(x < 0, level < 0);
    }
}

// DC goes to the nearest level that does not saturate.
void expectDcLevel(int x, int level, int scaler, int depth) {
    const double limit = std::ldexp(1.0, depth + 3);
    EXPECT_LE(level * scaler, limit - 1);
    EXPECT_GE(level * scaler, -limit);
    if (x >= -limit + scaler && x <= limit - 1 - scaler) {
        EXPECT_LE(2 * std::abs(level * scaler - x), scaler) << x;
    }
    if (level != 0) {
        EXPECT_EQ(x < 0, level < 0);
    }
}

void expectForward(const Block &x, const Matrix *matrix, int depth, int QP, int blockType, int offset = 0) {
    SCOPED_TRACE(testing::Message() << (matrix ? "weighted" : "plain") << ", depth " << depth << ", QP " << QP
                                    << ", type " << blockType);
    Quantiser quantiser(blockType >= 0 ? Intra : Inter, matrix, depth, offset);
    InPlace block(x, offset);
    Destination<int> count(1, offset);
    ASSERT_EQ(kelStsNoErr, forward(block.data(), quantiser.get(), QP, count.data(), blockType));
    int nonZero = 0;
    for (int i = 0; i < 64; ++i) {
        if (i == 0 && blockType >= 0) {
            expectDcLevel(x[0], block[0], dcScaler(QP, blockType), depth);
        } else {
            expectLevel(x[i], block[i], matrix, i, QP, blockType >= 0);
        }
        nonZero += block[i] != 0;
    }
    EXPECT_EQ(nonZero, count[0]);
    EXPECT_TRUE(block.surroundingsIntact());
    EXPECT_TRUE(count.surroundingsIntact());
}

Block all(int value) {
    Block block;
    block.fill(static_cast<Kel16s>(value));
    return block;
}

Matrix weights(int value) {
    Matrix matrix;
    matrix.fill(static_cast<Kel8u>(value));
    return matrix;
}

} // namespace

// ---- inverse ---------------------------------------------------------------------------

TEST(KelvaraMpeg4Quant, InverseEqualsTheStandard) {
    std::mt19937 generator(1);
    for (int QP : scales) {
        for (int depth : depths) {
            for (int blockType = -1; blockType < 2; ++blockType) {
                const Matrix random = randomBlock<Kel8u>(generator, 1, 255);
                for (const Matrix *matrix : {&random, static_cast<const Matrix *>(nullptr)}) {
                    for (int limit : {3, 60, 2047, 32767}) {
                        const Block levels = randomBlock<Kel16s>(generator, -limit, limit);
                        expectInverse(levels, matrix, depth, QP, blockType, 63, limit % 8);
                    }
                }
            }
        }
    }
}

TEST(KelvaraMpeg4Quant, InverseOfEachLevelEqualsTheStandard) {
    for (int QP = 1; QP <= 31; ++QP) {
        for (int blockType = -1; blockType < 2; ++blockType) {
            for (int start = -2048; start < 2048; start += 64) {
                Block levels;
                for (int i = 0; i < 64; ++i) levels[i] = static_cast<Kel16s>(start + i);
                const Matrix matrix = weights(8 + QP);
                expectInverse(levels, &matrix, 12, QP, blockType);
                expectInverse(levels, nullptr, 12, QP, blockType);
            }
        }
    }
}

TEST(KelvaraMpeg4Quant, InverseOfExtremesSaturates) {
    const Matrix largest = weights(255);
    for (int level : {-32768, 32767, -2047, 2047}) {
        for (int depth : depths) {
            for (int blockType = -1; blockType < 2; ++blockType) {
                expectInverse(all(level), &largest, depth, 511, blockType);
                expectInverse(all(level), nullptr, depth, 511, blockType);
            }
        }
    }
}

// Wherever a scan may have put the levels up to the place, they are dequantised.
TEST(KelvaraMpeg4Quant, LevelsUpToTheLastPlaceOfEachScanAreDequantised) {
    std::mt19937 generator(2);
    const Matrix matrix = randomBlock<Kel8u>(generator, 2, 127);
    for (int last = 0; last < 64; ++last) {
        for (int scan = -1; scan < 3; ++scan) {
            Block levels{};
            for (int i = 0; i <= last; ++i)
                levels[i] = static_cast<Kel16s>(20 - static_cast<int>(generator() % 41));
            const Block block = placed(levels, scan);
            for (int blockType = -1; blockType < 2; ++blockType) {
                expectInverse(block, &matrix, 8, 5, blockType, last);
                expectInverse(block, nullptr, 8, 6, blockType, last);
            }
        }
    }
}

TEST(KelvaraMpeg4Quant, ElementsThatNoScanReachesStay) {
    const Matrix matrix = weights(16);
    Quantiser weighted(InvInter, &matrix, 8), plain(InvInter, nullptr, 8);
    for (int last : {3, 7, 15, 31}) {
        for (Quantiser *quantiser : {&weighted, &plain}) {
            InPlace block(all(100));
            ASSERT_EQ(kelStsNoErr, inverse(block.data(), last, quantiser->get(), 2, -1));
            for (int i = 0; i <= last; ++i) EXPECT_NE(100, block[i]);
            // The vertical scan goes furthest: its places 3, 7, 15 and 31 are in rows 3, 3, 7 and 7.
            const int end = last == 3 ? 25 : last == 7 ? 26 : last == 15 ? 58 : 60;
            for (int i = end; i < 63; ++i) EXPECT_EQ(100, block[i]) << i;
        }
    }
}

TEST(KelvaraMpeg4Quant, ElementsThatStayDoNotCountInMismatchControl) {
    const Matrix matrix = weights(16);
    Quantiser quantiser(InvInter, &matrix, 8);
    for (int stay : {100, 101}) {
        for (int lastElement : {100, 101}) {
            Block levels = all(3);
            std::fill(levels.begin() + 25, levels.end(), Kel16s{0}); // behind place 3 of all scans
            levels[40] = static_cast<Kel16s>(stay);
            levels[63] = static_cast<Kel16s>(lastElement);
            InPlace block(levels);
            ASSERT_EQ(kelStsNoErr, inverse(block.data(), 3, quantiser.get(), 1, -1));
            int sum = block[63];
            for (int i = 0; i < 25; ++i) sum += block[i];
            EXPECT_EQ(1, sum & 1) << stay << ", " << lastElement;
            EXPECT_EQ(100, block[63] & ~1) << stay << ", " << lastElement;
        }
    }
}

TEST(KelvaraMpeg4Quant, MismatchControlMakesTheSumOddInTheFirstMethodAlone) {
    std::mt19937 generator(3);
    int flipped = 0;
    for (int pass = 0; pass < 200; ++pass) {
        const Matrix matrix = randomBlock<Kel8u>(generator, 1, 40);
        const Block levels = randomBlock<Kel16s>(generator, -50, 50);
        for (int blockType = -1; blockType < 2; ++blockType) {
            Quantiser quantiser(blockType >= 0 ? InvIntra : InvInter, &matrix, 8);
            InPlace block(levels);
            ASSERT_EQ(kelStsNoErr, inverse(block.data(), 63, quantiser.get(), 3, blockType));
            int sum = 0;
            for (int i = 0; i < 64; ++i) sum += block[i];
            EXPECT_NE(0, sum % 2);
            flipped += block[63] != dequantised(levels[63], &matrix, 63, 3, blockType);
        }
    }
    EXPECT_GT(flipped, 200);
    Quantiser plain(InvIntra, nullptr, 8);
    InPlace block({2});
    ASSERT_EQ(kelStsNoErr, inverse(block.data(), 0, plain.get(), 3, 0));
    EXPECT_EQ((Block{16}), block.values()) << "even, and stays";
}

TEST(KelvaraMpeg4Quant, KnownLevels) {
    Quantiser inter(InvInter, nullptr, 8), intra(InvIntra, nullptr, 8);
    InPlace odd({1, -1, 0, 2, 127}), even({1, -1, 0, 2, 127}), dc({100, 1});
    ASSERT_EQ(kelStsNoErr, inverse(odd.data(), 63, inter.get(), 5, -1));
    EXPECT_EQ((Block{15, -15, 0, 25, 1275}), odd.values());
    ASSERT_EQ(kelStsNoErr, inverse(even.data(), 63, inter.get(), 6, -1));
    EXPECT_EQ((Block{17, -17, 0, 29, 1529}), even.values());
    ASSERT_EQ(kelStsNoErr, inverse(dc.data(), 63, intra.get(), 10, 1));
    EXPECT_EQ((Block{1100, 29}), dc.values()) << "the DC step of chroma is 11";
}

// ---- forward ---------------------------------------------------------------------------

TEST(KelvaraMpeg4Quant, LevelsLieInTheirIntervals) {
    std::mt19937 generator(4);
    for (int QP : scales) {
        for (int depth : depths) {
            for (int blockType = -1; blockType < 2; ++blockType) {
                const Matrix random = randomBlock<Kel8u>(generator, 1, 255);
                for (const Matrix *matrix : {&random, static_cast<const Matrix *>(nullptr)}) {
                    for (int limit : {30, 300, 2048, 32767}) {
                        const Block x = randomBlock<Kel16s>(generator, -limit - 1, limit);
                        expectForward(x, matrix, depth, QP, blockType, limit % 8);
                    }
                }
            }
        }
    }
}

TEST(KelvaraMpeg4Quant, EachCoefficientLiesInItsInterval) {
    const Matrix flat = weights(16);
    for (int QP : {1, 2, 7, 31}) {
        for (int blockType = -1; blockType < 2; ++blockType) {
            for (int start = -2048; start < 2048; start += 64) {
                Block x;
                for (int i = 0; i < 64; ++i) x[i] = static_cast<Kel16s>(start + i);
                expectForward(x, &flat, 8, QP, blockType);
                expectForward(x, nullptr, 8, QP, blockType);
            }
        }
    }
}

TEST(KelvaraMpeg4Quant, KnownCoefficients) {
    const Matrix flat = weights(16);
    const Block x = {84, 9, 10, -11, 19, 20, 21, 24, 25, -25};
    const auto levels = [&](Way way, const Matrix *matrix) {
        Quantiser quantiser(way, matrix, 8);
        InPlace block(x);
        int count = 0;
        EXPECT_EQ(kelStsNoErr, forward(block.data(), quantiser.get(), 10, &count, way == Intra ? 0 : -1));
        return block.values();
    };
    EXPECT_EQ((Block{5, 0, 0, 0, 0, 1, 1, 1, 1, -1}), levels(Intra, nullptr)) << "DC: 84 / 18";
    EXPECT_EQ((Block{3, 0, 0, 0, 0, 0, 0, 0, 1, -1}), levels(Inter, nullptr)) << "from 25 on";
    EXPECT_EQ((Block{5, 0, 0, 0, 1, 1, 1, 1, 1, -1}), levels(Intra, &flat)) << "8 more";
    EXPECT_EQ((Block{4, 0, 0, 0, 0, 1, 1, 1, 1, -1}), levels(Inter, &flat));
}

// Back from the level, a coefficient is off by no more than a step and the dead zone's part.
TEST(KelvaraMpeg4Quant, BothWaysComeBackWithinAStep) {
    std::mt19937 generator(5);
    for (int QP : {1, 2, 8, 31}) {
        for (int blockType = -1; blockType < 2; ++blockType) {
            const Matrix random = randomBlock<Kel8u>(generator, 8, 83);
            for (const Matrix *matrix : {&random, static_cast<const Matrix *>(nullptr)}) {
                Quantiser there(blockType >= 0 ? Intra : Inter, matrix, 8);
                Quantiser back(blockType >= 0 ? InvIntra : InvInter, matrix, 8);
                const Block x = randomBlock<Kel16s>(generator, -1000, 1000);
                InPlace block(x);
                int count = 0;
                ASSERT_EQ(kelStsNoErr, forward(block.data(), there.get(), QP, &count, blockType));
                ASSERT_EQ(kelStsNoErr, inverse(block.data(), 63, back.get(), QP, blockType));
                for (int i = 0; i < 64; ++i) {
                    const double step = matrix ? (*matrix)[i] * QP / 8.0 : 2 * QP + QP / 2.0;
                    const double most = i == 0 && blockType >= 0 ? dcScaler(QP, blockType) : step + 2;
                    EXPECT_LE(std::abs(x[i] - block[i]), most) << i << ", QP " << QP;
                }
            }
        }
    }
}

// ---- arguments -------------------------------------------------------------------------

TEST(KelvaraMpeg4Quant, BadMatricesAndDepthsAreRefusedAndNothingIsWritten) {
    Matrix matrix = weights(16);
    for (const Preparation &preparation : preparations) {
        int size = 0;
        EXPECT_EQ(kelStsNullPtrErr, preparation.getSize(nullptr));
        ASSERT_EQ(kelStsNoErr, preparation.getSize(&size));
        Destination<Kel8u> memory(size);
        auto spec = reinterpret_cast<KeliQuantSpec_MPEG4 *>(memory.data());
        EXPECT_EQ(kelStsNullPtrErr, preparation.init(matrix.data(), nullptr, 8));
        for (int depth : {3, 13, -1}) {
            EXPECT_EQ(kelStsRangeErr, preparation.init(matrix.data(), spec, depth));
            EXPECT_EQ(kelStsRangeErr, preparation.init(nullptr, spec, depth));
        }
        for (int i : {0, 63}) {
            Matrix zero = matrix;
            zero[i] = 0;
            EXPECT_EQ(kelStsRangeErr, preparation.init(zero.data(), spec, 8));
        }
        EXPECT_TRUE(memory.untouched());
    }
}

TEST(KelvaraMpeg4Quant, BadInverseArgumentsAreRefusedAndNothingIsWritten) {
    for (int blockType = -1; blockType < 2; ++blockType) {
        Quantiser quantiser(blockType >= 0 ? InvIntra : InvInter, nullptr, 8);
        Destination<Kel16s> block(64);
        EXPECT_EQ(kelStsNullPtrErr, inverse(nullptr, 3, quantiser.get(), 0, blockType)) << "null goes first";
        EXPECT_EQ(kelStsNullPtrErr, inverse(block.data(), 3, nullptr, 2, blockType));
        for (int last : {-1, 64}) {
            EXPECT_EQ(kelStsRangeErr, inverse(block.data(), last, quantiser.get(), 2, blockType));
        }
        for (int QP : {0, -1, 512}) {
            EXPECT_EQ(kelStsRangeErr, inverse(block.data(), 3, quantiser.get(), QP, blockType));
        }
        EXPECT_TRUE(block.untouched());
    }
    Quantiser intra(InvIntra, nullptr, 8);
    Destination<Kel16s> block(64);
    for (int type : {-1, 2}) {
        EXPECT_EQ(kelStsRangeErr, keliQuantInvIntra_MPEG4_16s_C1I(block.data(), 3, intra.get(), 2, type));
    }
    EXPECT_TRUE(block.untouched());
}

TEST(KelvaraMpeg4Quant, BadForwardArgumentsAreRefusedAndNothingIsWritten) {
    for (int blockType = -1; blockType < 2; ++blockType) {
        Quantiser quantiser(blockType >= 0 ? Intra : Inter, nullptr, 8);
        Destination<Kel16s> block(64);
        Destination<int> count(1);
        EXPECT_EQ(kelStsNullPtrErr, forward(nullptr, quantiser.get(), 0, count.data(), blockType));
        EXPECT_EQ(kelStsNullPtrErr, forward(block.data(), nullptr, 2, count.data(), blockType));
        EXPECT_EQ(kelStsNullPtrErr, forward(block.data(), quantiser.get(), 2, nullptr, blockType));
        for (int QP : {0, -1, 512}) {
            EXPECT_EQ(kelStsRangeErr, forward(block.data(), quantiser.get(), QP, count.data(), blockType));
        }
        EXPECT_TRUE(block.untouched());
        EXPECT_TRUE(count.untouched());
    }
    Quantiser intra(Intra, nullptr, 8);
    Destination<Kel16s> block(64);
    int count = 0;
    for (int type : {-1, 2}) {
        EXPECT_EQ(kelStsRangeErr, keliQuantIntra_MPEG4_16s_C1I(block.data(), intra.get(), 2, &count, type));
    }
    EXPECT_TRUE(block.untouched());
}

TEST(KelvaraMpeg4Quant, QuantisersOfAnotherKindAreRefused) {
    for (Way made : ways) {
        Quantiser quantiser(made, nullptr, 8);
        for (Way asked : ways) {
            InPlace block(all(5));
            int count = 0;
            const int type = asked == InvIntra || asked == Intra ? 0 : -1;
            const KelStatus status = asked <= InvInter
                                         ? inverse(block.data(), 63, quantiser.get(), 2, type)
                                         : forward(block.data(), quantiser.get(), 2, &count, type);
            EXPECT_EQ(made == asked ? kelStsNoErr : kelStsContextErr, status) << made << ", " << asked;
            EXPECT_EQ(made == asked, all(5) != block.values());
        }
    }
}

TEST(KelvaraMpeg4Quant, MemoryThatHoldsNoQuantiserIsRefused) {
    std::mt19937 generator(6);
    int size = 0;
    ASSERT_EQ(kelStsNoErr, keliQuantInterGetSize_MPEG4(&size));
    const Bytes noise = randomBytes(generator, static_cast<size_t>(size)), zeros(noise.size());
    for (const Bytes &bytes : {noise, zeros}) {
        auto spec = reinterpret_cast<const KeliQuantSpec_MPEG4 *>(bytes.data());
        InPlace block(all(5));
        int count = 0;
        for (int type : {-1, 0}) {
            EXPECT_EQ(kelStsContextErr, inverse(block.data(), 63, spec, 2, type));
            EXPECT_EQ(kelStsContextErr, forward(block.data(), spec, 2, &count, type));
        }
        EXPECT_EQ(all(5), block.values());
    }
}

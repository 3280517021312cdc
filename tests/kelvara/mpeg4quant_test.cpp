// mpeg4quant_test.cpp - quantisation of MPEG-4 blocks both ways, and reconstruction out of bit streams.

#include "blocktest.h"
#include "mpeg4kinds.h"

namespace {

const int scales[] = {1, 2, 3, 4, 5, 8, 9, 16, 24, 25, 31, 32, 100, 511};
const int depths[] = {4, 5, 8, 10, 12};

using Matrix = Values<Kel8u>;
using Block = Values<Kel16s>;

// ---- the standard in doubles, which hold all products exactly --------------------------

// ISO/IEC 14496-2 Table 7-1, value by value for quantiser_scale 1 to 31.
const int dcScalers[2][31] = {{8,  8,  8,  8,  10, 12, 14, 16, 17, 18, 19, 20, 21, 22, 23, 24,
                               25, 26, 27, 28, 29, 30, 31, 32, 34, 36, 38, 40, 42, 44, 46},
                              {8,  8,  8,  8,  9,  9,  10, 10, 11, 11, 12, 12, 13, 13, 14, 14,
                               15, 15, 16, 16, 17, 17, 18, 18, 19, 20, 21, 22, 23, 24, 25}};

int dcScaler(int QP, int blockType) {
    if (QP <= 31) return dcScalers[blockType][QP - 1];
    return blockType == 0 ? 2 * QP - 16 : QP - 6;
}

double signOf(double value) {
    return (value > 0) - (value < 0);
}

double saturated(double value, int depth) {
    const double limit = std::ldexp(1.0, depth + 3);
    return std::max(-limit, std::min(limit - 1, value));
}

// A block type of -1 is inter.
double dequantised(double level, const Matrix *matrix, int index, int QP, int blockType) {
    if (blockType >= 0 && index == 0) return level * dcScaler(QP, blockType);
    if (level == 0) return 0;
    if (matrix) {
        const double k = blockType >= 0 ? 0 : signOf(level);
        return std::trunc((2 * level + k) * (*matrix)[index] * QP / 16);
    }
    const double magnitude = QP * (2 * std::fabs(level) + 1) - (QP % 2 == 0 ? 1 : 0);
    return signOf(level) * magnitude;
}

// All of a block: behind its last level are noughts.
Block dequantised(const Block &levels, const Matrix *matrix, int depth, int QP, int blockType) {
    Block block;
    double sum = 0;
    for (int i = 0; i < 64; ++i) {
        const double value = dequantised(levels[i], matrix, i, QP, blockType);
        block[i] = static_cast<Kel16s>(saturated(value, depth));
        sum += block[i];
    }
    if (matrix && std::fmod(sum, 2) == 0) {
        block[63] = static_cast<Kel16s>(block[63] % 2 != 0 ? block[63] - 1 : block[63] + 1);
    }
    return block;
}

// ---- the functions -----------------------------------------------------------------------

enum Way { InvIntra, InvInter, Intra, Inter };
const Way ways[] = {InvIntra, InvInter, Intra, Inter};

struct Preparation {
    KelStatus (*getSize)(int *);
    KelStatus (*init)(const Kel8u *, KeliQuantSpec_MPEG4 *, int);
};

const Preparation preparations[] = {{keliQuantInvIntraGetSize_MPEG4, keliQuantInvIntraInit_MPEG4},
                                    {keliQuantInvInterGetSize_MPEG4, keliQuantInvInterInit_MPEG4},
                                    {keliQuantIntraGetSize_MPEG4, keliQuantIntraInit_MPEG4},
                                    {keliQuantInterGetSize_MPEG4, keliQuantInterInit_MPEG4}};

// In memory of exactly its size, which begins at any address.
class Quantiser {
public:
    Quantiser(Way way, const Matrix *matrix, int depth, int offset = 0) : m_memory(sizeOf(way), offset) {
        EXPECT_EQ(kelStsNoErr, preparations[way].init(matrix ? matrix->data() : nullptr, get(), depth));
        EXPECT_TRUE(m_memory.surroundingsIntact());
    }
    KeliQuantSpec_MPEG4 *get() { return reinterpret_cast<KeliQuantSpec_MPEG4 *>(m_memory.data()); }

private:
    static int sizeOf(Way way) {
        int size = 0;
        EXPECT_EQ(kelStsNoErr, preparations[way].getSize(&size));
        return size;
    }

    Destination<Kel8u> m_memory;
};

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

// ---- reconstruction out of bit streams ---------------------------------------------------

namespace {

Decoder reconstructor(int rvlc, int scan, const KeliQuantSpec_MPEG4 *spec, int QP) {
    return [=](Kel8u **pp, int *o, Kel16s *c, int *last) {
        return keliReconstructCoeffsInter_MPEG4_1u16s(pp, o, c, last, rvlc, scan, spec, QP);
    };
}

} // namespace

TEST(KelvaraMpeg4Reconstruct, BlocksAreDecodedScannedAndDequantised) {
    std::mt19937 generator(7);
    for (const mpeg4::Kind &kind : {mpeg4::kinds[2], mpeg4::kinds[5]}) {
        for (int pass = 0; pass < 2000; ++pass) {
            const Matrix random = randomBlock<Kel8u>(generator, 2, 127);
            const Matrix *matrix = pass % 3 ? &random : nullptr;
            const int scan = between(generator, -1, 2), offset = pass % 8,
                      depth = oneOf(generator, {4, 8, 12});
            const int QP = between(generator, 1, 31);
            const Levels levels = mpeg4::randomLevelsOf(kind, generator);
            const std::string text = mpeg4::textOf(kind, levels);
            Quantiser quantiser(InvInter, matrix, depth, offset);
            const Decoded d = decodedText(reconstructor(kind.rvlc, scan, quantiser.get(), QP), text, offset);
            ASSERT_EQ(kelStsNoErr, d.status);
            ASSERT_EQ(dequantised(placed(levels, scan), matrix, depth, QP, -1), d.block);
            ASSERT_EQ(lastPlace(levels), d.last);
            ASSERT_EQ(static_cast<int>(text.size()), d.bits);
        }
    }
}

TEST(KelvaraMpeg4Reconstruct, BitsThatAreNoBlockAreRefused) {
    Quantiser quantiser(InvInter, nullptr, 8);
    expectRefused(reconstructor(0, 0, quantiser.get(), 2), "000000000000");
    expectRefused(reconstructor(1, 0, quantiser.get(), 2), "011111111111111");
}

TEST(KelvaraMpeg4Reconstruct, BadArgumentsAreRefusedAndNothingIsWritten) {
    Quantiser quantiser(InvInter, nullptr, 8), other(InvIntra, nullptr, 8);
    Bytes stream(32, 0x55);
    Kel8u *p = stream.data(), *null = nullptr;
    int offset = 3, bad = 8;
    Destination<Kel16s> block(64);
    Destination<int> last(1);
    const auto call = [&](Kel8u **pp, int *o, int rvlc, int scan, Quantiser &q, int QP) {
        return keliReconstructCoeffsInter_MPEG4_1u16s(pp, o, block.data(), last.data(), rvlc, scan, q.get(),
                                                      QP);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, &offset, 0, 0, quantiser, 2));
    EXPECT_EQ(kelStsNullPtrErr, call(&null, &offset, 0, 0, quantiser, 2));
    EXPECT_EQ(kelStsNullPtrErr, call(&p, nullptr, 0, 0, quantiser, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliReconstructCoeffsInter_MPEG4_1u16s(&p, &offset, nullptr, last.data(), 0,
                                                                       0, quantiser.get(), 2));
    EXPECT_EQ(kelStsNullPtrErr, keliReconstructCoeffsInter_MPEG4_1u16s(&p, &offset, block.data(), nullptr, 0,
                                                                       0, quantiser.get(), 2));
    EXPECT_EQ(kelStsNullPtrErr, keliReconstructCoeffsInter_MPEG4_1u16s(&p, &offset, block.data(), last.data(),
                                                                       0, 0, nullptr, 2));
    EXPECT_EQ(kelStsRangeErr, call(&p, &bad, 0, 0, quantiser, 2));
    for (int rvlc : {-1, 2}) EXPECT_EQ(kelStsRangeErr, call(&p, &offset, rvlc, 0, quantiser, 2));
    for (int scan : {-2, 3}) EXPECT_EQ(kelStsRangeErr, call(&p, &offset, 0, scan, quantiser, 2));
    for (int QP : {0, 512}) EXPECT_EQ(kelStsRangeErr, call(&p, &offset, 0, 0, quantiser, QP));
    EXPECT_EQ(kelStsContextErr, call(&p, &offset, 0, 0, other, 2));
    EXPECT_EQ(stream.data(), p);
    EXPECT_EQ(3, offset);
    EXPECT_TRUE(block.untouched());
    EXPECT_TRUE(last.untouched());
}

// mpeg4quantiser.h - inverse quantisation of MPEG-4 by the letter of the standard, and quantisers of the
// library.

#ifndef KELVARA_MPEG4QUANTISER_H
#define KELVARA_MPEG4QUANTISER_H

#include "blocktest.h"
#include "kelvc.h"

#include <gtest/gtest.h>

namespace mpeg4 {

using Matrix = Values<Kel8u>;
using Block = Values<Kel16s>;

// ---- the standard in doubles, which hold all products exactly --------------------------

// ISO/IEC 14496-2 Table 7-1, value by value for quantiser_scale 1 to 31.
const int dcScalers[2][31] = {{8,  8,  8,  8,  10, 12, 14, 16, 17, 18, 19, 20, 21, 22, 23, 24,
                               25, 26, 27, 28, 29, 30, 31, 32, 34, 36, 38, 40, 42, 44, 46},
                              {8,  8,  8,  8,  9,  9,  10, 10, 11, 11, 12, 12, 13, 13, 14, 14,
                               15, 15, 16, 16, 17, 17, 18, 18, 19, 20, 21, 22, 23, 24, 25}};

inline int dcScaler(int QP, int blockType) {
    if (QP <= 31) return dcScalers[blockType][QP - 1];
    return blockType == 0 ? 2 * QP - 16 : QP - 6;
}

inline double signOf(double value) {
    return (value > 0) - (value < 0);
}

inline double saturated(double value, int depth) {
    const double limit = std::ldexp(1.0, depth + 3);
    return std::max(-limit, std::min(limit - 1, value));
}

// A block type of -1 is inter.
inline double dequantised(double level, const Matrix *matrix, int index, int QP, int blockType) {
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
inline Block dequantised(const Block &levels, const Matrix *matrix, int depth, int QP, int blockType) {
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

} // namespace mpeg4

#endif

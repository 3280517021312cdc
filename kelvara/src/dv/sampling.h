// sampling.h - where the samples of a macroblock of DV are, by its sampling structure.

#ifndef KELVARA_DV_SAMPLING_H
#define KELVARA_DV_SAMPLING_H

namespace kelvara {

// A structure tells how many pixels a macroblock has, of which pixelsOfColour in a row have the same colour,
// which element is the luma of a pixel, and which one in the blocks cr and cb is its colour. Blocks are Side
// samples wide and high, each at the start of its 64 elements.

template <int Side>
constexpr int elementOf(int block, int row, int col) {
    return 64 * block + Side * row + col;
}

struct SixBlocks {
    static constexpr int cr = 4, cb = 5;
};

template <int Side>
struct Sampling411 : SixBlocks {
    static constexpr int width = 4 * Side, height = Side, pixelsOfColour = 4;

    static constexpr int luma(int y, int x) { return elementOf<Side>(x / Side, y, x % Side); }
    static constexpr int colour(int y, int x) { return elementOf<Side>(0, y, x / 4); }
};

// Two by two blocks of luma.
template <int Side>
struct Square : SixBlocks {
    static constexpr int width = 2 * Side, height = 2 * Side;

    static constexpr int luma(int y, int x) {
        return elementOf<Side>(y / Side * 2 + x / Side, y % Side, x % Side);
    }
};

// At the right edge of a picture of 4:1:1, which is no multiple of 32 pixels wide.
template <int Side>
struct Edge411 : Square<Side> {
    static constexpr int pixelsOfColour = 4;

    static constexpr int colour(int y, int x) {
        return elementOf<Side>(0, y % Side, y / Side * (Side / 2) + x / 4);
    }
};

// Lines of colour belong to lines of luma of their own field, unless the fields are mixed already.
template <int Side, bool TwoFields>
struct Sampling420 : Square<Side> {
    static constexpr int pixelsOfColour = 2;

    static constexpr int colour(int y, int x) {
        return elementOf<Side>(0, TwoFields ? y / 4 * 2 + y % 2 : y / 2, x / 2);
    }
};

template <int Side>
struct Sampling422 : SixBlocks {
    static constexpr int width = 2 * Side, height = Side, pixelsOfColour = 2;

    static constexpr int luma(int y, int x) { return elementOf<Side>(x / Side * 2, y, x % Side); }
    static constexpr int colour(int y, int x) { return elementOf<Side>(0, y, x / 2); }
};

// One half, 0 or 1, of a macroblock of DV100 with eight blocks.
template <int Half>
struct Half100 {
    static constexpr int cr = 4 + Half, cb = 6 + Half;
    static constexpr int width = 16, height = 8, pixelsOfColour = 2;

    static constexpr int luma(int y, int x) { return elementOf<8>(2 * Half + x / 8, y, x % 8); }
    static constexpr int colour(int y, int x) { return elementOf<8>(0, y, x / 2); }
};

} // namespace kelvara

#endif

// dvencoder.h - a coder of DV at 25 Mbit/s (SMPTE 314M, IEC 61834-2): makes the compressed segments of the
// suite and of the tests.

#ifndef RAKOVA_TESTS_DVENCODER_H
#define RAKOVA_TESTS_DVENCODER_H

#include <array>
#include <vector>

#include "dvcodes.h"
#include "dvformat.h"

namespace dv {

// Samples 0 to 255 of 30 blocks, the six of a macroblock behind each other: Y0 to Y3, CR, CB.
using Picture = std::array<Block, blocks>;

// A block as its codes tell it; the levels are quantised and in raster order.
struct CodedBlock {
    int mode = 0; // 1: 2-4-8
    int classNumber = 0;
    int quantiser = 0; // of its macroblock
    Block levels = {};

    Bits head() const;
    Bits acCodes() const; // with the end of the block
};

using CodedBlocks = std::array<CodedBlock, blocks>;

struct Segment {
    std::vector<unsigned char> bytes; // 400 of them; none if the codes do not fit
    int placedBits[3] = {};           // of codes, by the three passes
};

// Weighted coefficients of the 8-8 or 2-4-8 transform, neither rounded nor quantised.
Coefficients weighted(Block const &samples, int mode);

// 2-4-8 where lines of one field are more alike than neighbours are.
int modeOf(Block const &samples);

// By the largest AC coefficient; colour counts a class more for CR, and two for CB.
int classOf(Coefficients const &coefficients, int blockOfMacroblock);

// The levels of weighted coefficients, rounded to the nearest and limited to what has a code.
Block quantised(Coefficients const &coefficients, int mode, int classNumber, int quantiser);

// Puts codes into their areas: a block's own one, then the room of its macroblock, then that of the segment.
Segment arrange(CodedBlocks const &coded);

// Modes and classes by the picture, classes coarser where nothing else fits; the finest quantisers that fit,
// first one for all macroblocks, then one more for each as long as there is room. What does not fit all the
// same has no bytes when arranged.
CodedBlocks encode(Picture const &picture);

} // namespace dv

#endif

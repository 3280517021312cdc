// reconstruction.h - ITU-T H.264 macroblocks from prediction and residual.

#ifndef KELVARA_RECONSTRUCTION_H
#define KELVARA_RECONSTRUCTION_H

#include "intraprediction.h"
#include "residual.h"

namespace kelvara {

// ---- reconstruction ---------------------------------------------------------------------

// Bits of the pattern in luma: DC is bit 0, the blocks follow.
const int lumaDC = 0, lumaBlocks = 1;

template <int N>
bool allowAll(const Kel32s *modes, int available) {
    for (int k = 0; k < 256 / (N * N); ++k) {
        if (!allows(blockNeeds, modeOf(modes, k), neighboursOf(BlockPlace<N>(k), available))) return false;
    }
    return true;
}

inline Border<4> borderFor(const Border<4> &border) {
    return border;
}
inline Border<8> borderFor(const Border<8> &border) {
    return smoothed(border);
}

// What transform bypass does for the modes along one direction.
template <int N>
void addUpAlong(Differences<N> &differences, bool vertical, bool horizontal) {
    if (vertical) addUpDown(differences);
    if (horizontal) addUpToTheRight(differences);
}

// Blocks of N x N in their order, as each is predicted from those before it.
template <int N>
void reconstructBlocks(CodedBlocks &coded, Plane plane, const Kel32s *modes, int available,
                       const Scaling &scaling) {
    for (int k = 0; k < 256 / (N * N); ++k) {
        const BlockPlace<N> place(k);
        const int mode = modeOf(modes, k);
        const Plane block = plane.at(place.row, place.col);
        const Square<N> predicted =
            predictedBlock(borderFor(Border<N>(block.samples(), neighboursOf(place, available))), mode);
        if (!coded.has(lumaBlocks + k)) {
            predicted.storeTo(block.target());
            continue;
        }
        Differences<N> differences = differencesOf(coded.take<Words<N * N>>(lumaBlocks + k), scaling);
        if (scaling.bypass) addUpAlong(differences, mode == Vertical, mode == Horizontal);
        storeSum(predicted, differences, block.target());
    }
}

// The same where the plane holds the prediction: blocks that are not coded stay.
template <int N>
void addBlocks(CodedBlocks &coded, Plane plane, const Scaling &scaling) {
    for (int k = 0; k < 256 / (N * N); ++k) {
        if (!coded.has(lumaBlocks + k)) continue;
        const BlockPlace<N> place(k);
        const Plane block = plane.at(place.row, place.col);
        storeSum(block.samples(), differencesOf(coded.take<Words<N * N>>(lumaBlocks + k), scaling),
                 block.target());
    }
}

// 8.5.2: a macroblock that is predicted as a whole.
inline void reconstructWhole(CodedBlocks &coded, Plane plane, int mode, int available,
                             const Scaling &scaling) {
    const Square<16> predicted = predictedLuma(Border<16>(plane.samples(), available), mode);
    const Words<16> dc = scaledDC(coded.take<Words<16>>(lumaDC), scaling);
    Differences<16> all;
    for (int k = 0; k < 16; ++k) {
        const BlockPlace<4> place(k);
        const Differences<4> block =
            differencesOf(coded, lumaBlocks + k, dc(place.row + place.col / 4), scaling);
        all.set<4>(place.row, place.col, [&](int row, int col) { return block.at[row][col]; });
    }
    if (scaling.bypass) addUpAlong(all, mode == Vertical, mode == Horizontal);
    storeSum(predicted, all, plane.target());
}

// ---- chroma of 4:2:0 ----------------------------------------------------------------------

// Bits of the pattern: DC of U and of V, the four blocks of U, those of V.
const int chromaDC = 0, chromaBlocks = 2;

struct ColourPlane {
    Plane plane;
    Scaling scaling;
};

// 8.5.4: the coefficients of both planes, DC of both first.
inline void readChroma(CodedBlocks &coded, const ColourPlane (&planes)[2], Differences<8> (&all)[2]) {
    Words<4> dc[2];
    for (int c = 0; c < 2; ++c) dc[c] = scaledDC(coded.take<Words<4>>(chromaDC + c), planes[c].scaling);
    for (int c = 0; c < 2; ++c) {
        for (int k = 0; k < 4; ++k) {
            const Differences<4> block =
                differencesOf(coded, chromaBlocks + 4 * c + k, dc[c](k), planes[c].scaling);
            all[c].set<4>(4 * (k / 2), 4 * (k % 2), [&](int row, int col) { return block.at[row][col]; });
        }
    }
}

inline void reconstructChroma(CodedBlocks &coded, const ColourPlane (&planes)[2], int mode, int available) {
    Differences<8> differences[2];
    readChroma(coded, planes, differences);
    for (int c = 0; c < 2; ++c) {
        const Plane plane = planes[c].plane;
        if (planes[c].scaling.bypass)
            addUpAlong(differences[c], mode == ChromaVertical, mode == ChromaHorizontal);
        storeSum(predictedChroma(Border<8>(plane.samples(), available), mode), differences[c],
                 plane.target());
    }
}

inline void addChroma(CodedBlocks &coded, const ColourPlane (&planes)[2]) {
    Differences<8> differences[2];
    readChroma(coded, planes, differences);
    for (int c = 0; c < 2; ++c) storeSum(planes[c].plane.samples(), differences[c], planes[c].plane.target());
}

} // namespace kelvara

#endif

// deblockingdata.h - tables of blocks and filter arrays for the tests of deblocking filters.

#ifndef RAKOVA_DEBLOCKINGDATA_H
#define RAKOVA_DEBLOCKINGDATA_H

#include "keltypes.h"

const int deblockingSets = 4;    // intra, coded strongly, mixed, of high quality
const int deblockingRecords = 4; // of a set

// What a record holds: a block of samples in rows, then alphas, betas, thresholds and strengths. Rows follow
// each other in the direction of filtering, and the edge that is filtered first lies in front of row 4.
struct RecordShape {
    int rows, cols, alphas, thresholds, strengths;

    constexpr int alphaAt() const { return rows * cols; }
    constexpr int betaAt() const { return alphaAt() + alphas; }
    constexpr int thresholdsAt() const { return betaAt() + alphas; }
    constexpr int strengthsAt() const { return thresholdsAt() + thresholds; }
    constexpr int bytes() const { return strengthsAt() + strengths; }
};

// The arrays of a record; one with fewer entries takes the first ones.
struct DeblockingArrays {
    Kel8u alpha[2], beta[2], thresholds[16], strengths[16];
};

using DeblockingSets = DeblockingArrays[deblockingSets][deblockingRecords];

// How the samples of a table are made. Sets 0 to 2 are smooth: bands of rows, each a little lighter than the
// one before by the set's contrast, so that the step between two bands passes as the edge of a block; along
// the band the samples rise by one in four. Set 3 is textured: noise in which a filter finds edges of the
// picture, but for two columns in four that have the bands of the others, so that there is some work.
struct DeblockingStyle {
    int band;     // rows
    int channels; // interleaved colours, the second one darker
    int contrast[deblockingSets];
};

constexpr Kel8u noiseAt(int record, int row, int col) {
    unsigned bits = 0x9E3779B9u * static_cast<unsigned>((record * 32 + row) * 32 + col + 1);
    bits ^= bits >> 15;
    bits *= 0x85EBCA6Bu;
    return static_cast<Kel8u>((bits >> 20) % 96);
}

constexpr Kel8u sampleAt(DeblockingStyle const &style, int set, int record, int row, int col) {
    const int base = 64 + 16 * record + (col % style.channels ? 0 : 8);
    if (set == 3 && col % 4 < 2) return static_cast<Kel8u>(base + noiseAt(record, row, col));
    return static_cast<Kel8u>(base + style.contrast[set] * (row / style.band) + col / style.channels / 4);
}

// Four sets of four records, as bytes: filters read their arrays from anywhere in them. The bytes behind the
// last record are for copies that are longer than their field.
template <int recordBytes>
struct DeblockingTable {
    static const int slack = 16;

    RecordShape shape;
    Kel8u bytes[deblockingSets * deblockingRecords * recordBytes + slack];

    constexpr Kel8u const *record(int set, int i) const {
        return bytes + (set * deblockingRecords + i) * recordBytes;
    }
};

constexpr void copyArray(Kel8u *to, Kel8u const *from, int count) {
    for (int i = 0; i < count; ++i) to[i] = from[i];
}

template <int recordBytes>
constexpr DeblockingTable<recordBytes> makeDeblockingTable(RecordShape shape, DeblockingStyle style,
                                                           DeblockingSets const &sets) {
    DeblockingTable<recordBytes> table = {shape, {}};
    Kel8u *to = table.bytes;
    for (int n = 0; n < deblockingSets * deblockingRecords; ++n, to += recordBytes) {
        const int set = n / deblockingRecords, record = n % deblockingRecords;
        for (int i = 0; i < shape.rows * shape.cols; ++i)
            to[i] = sampleAt(style, set, record, i / shape.cols, i % shape.cols);
        DeblockingArrays const &arrays = sets[set][record];
        copyArray(to + shape.alphaAt(), arrays.alpha, shape.alphas);
        copyArray(to + shape.betaAt(), arrays.beta, shape.alphas);
        copyArray(to + shape.thresholdsAt(), arrays.thresholds, shape.thresholds);
        copyArray(to + shape.strengthsAt(), arrays.strengths, shape.strengths);
    }
    return table;
}

#endif

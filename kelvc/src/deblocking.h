// deblocking.h - the pool of blocks that the tests of deblocking filters measure on.

#ifndef RAKOVA_DEBLOCKING_H
#define RAKOVA_DEBLOCKING_H

#include "kmvc.h"

#include "deblockingdata.h"

const int deblockingBlocks = 1000; // one for each call of a statistic of 999 calls and for its warm-up

// Where the samples of a record go: that in row k and column j to the index
// i * block + k * row + j * column + first + cache_align * shift of the pool, for the block i.
struct DeblockingLayout {
    int length;            // of the pool
    int blocks;            // copies
    int rows, cols, pitch; // of the record: what is copied, bytes from row to row
    int block, row, column, first, shift;
    int together;   // samples that are copied at a time and stay side by side
    int thresholds; // bytes that are copied for each block
};

// Vertical edges: each block has a slice of its own and is turned, so that the rows of the record become
// columns, step bytes from one of its columns to the next.
constexpr DeblockingLayout turnedBlocks(RecordShape const &shape, int length, int slice, int step, int first,
                                        int shift, int thresholds) {
    return {length, deblockingBlocks, shape.rows, shape.cols, shape.cols, slice, 1, step, first, shift,
            1,      thresholds};
}

// Horizontal edges: the blocks lie side by side in one wide strip, width bytes apart.
constexpr DeblockingLayout stripOfBlocks(RecordShape const &shape, int length, int width, int step,
                                         int thresholds) {
    return {length, deblockingBlocks, shape.rows, shape.cols, shape.cols, width, step, 1, 0, 0,
            1,      thresholds};
}

// Filters change their input, so that each call of a run gets a block of its own. A file has one pool; its
// tests read it afresh in each call.
struct DeblockingPool {
    // Declares the parameters of a test and, for the auto method, one call for each block.
    void start(rkTest &test, bool verticalEdge);
    // Makes the blocks of the set in hand. False if an allocation fails.
    template <int recordBytes>
    bool fill(DeblockingTable<recordBytes> const &table, DeblockingLayout const &layout) {
        if (!create(layout)) return false;
        fillFrom(table.record(set(), 0), table.shape, layout);
        return true;
    }
    // The small vectors stay until the next fill.
    void flush() { pSrcDst.deleteVector(); }

    // The values in hand. Whatever a user enters, the tables and the pool hold it.
    int set() { return limited(deb_type.value(), deblockingSets - 1); }
    int aligned() { return limited(cache_align.value(), 1); }

    // Places in the pool for one call; each takes its counter one block further. The sample's place is at a
    // distance from the first byte of the block.
    Kel8u *samples(int block, int distance) { return pSrcDst.p8u + block * next(src_offset) + distance; }
    Kel8u *alpha() { return pAlpha.p8u + 2 * next(alpha_offset); }
    Kel8u *beta() { return pBeta.p8u + 2 * next(beta_offset); }
    Kel8u *thresholds(int bytes) { return pThresholds.p8u + bytes * next(thr_offset); }
    Kel8u *strengths() { return pStrengths.p8u + 16 * next(str_offset); }

    // All places at once, for filters that take a record of them.
    KeliDeblockingInfo info(int block, int distance, int step, int thresholdBytes);

    rkStepIterator<int> cache_align; // 1: the block is moved towards the start of a cache line
    rkStepIterator<int> deb_type;    // the set of the table

    kmVector pSrcDst{8};
    kmVector pAlpha{8}, pBeta{8}, pThresholds{8}, pStrengths{8}; // 2, 2, 8 or 16, and 16 bytes for each block

    // The next blocks. They go on from one set to the next, and start over where the pool ends.
    int src_offset = 0, alpha_offset = 0, beta_offset = 0, thr_offset = 0, str_offset = 0;

private:
    bool create(DeblockingLayout const &layout);
    void fillFrom(Kel8u const *records, RecordShape const &shape, DeblockingLayout const &layout);
    void copyBlock(Kel8u const *record, DeblockingLayout const &layout, int i);

    static int limited(int value, int most) { return value < 0 ? 0 : value > most ? most : value; }
    static int next(int &offset) {
        const int block = offset % deblockingBlocks;
        offset = block + 1;
        return block;
    }
};

#endif

// blockcoding.h - MPEG-4 blocks of levels in bit streams.

#ifndef KELVARA_MPEG4BLOCKCODING_H
#define KELVARA_MPEG4BLOCKCODING_H

#include "../common/bits.h"
#include "../common/blockevents.h"

namespace kelvara {

// Which codes: those of intra or inter blocks, variable-length or reversible.
struct BlockCodes {
    bool intra;
    bool reversible;
};

// Where a block's levels stand in memory: at order[first] to order[63].
struct BlockLayout {
    const Kel8u *order;
    int first;
};

// REQUIRES levels of at most 2047.
void writeBlock(BitWriter &writer, BlockCodes codes, const BlockEvents &events);

// Sets the levels of an empty block and the place of the last one. False if the codes make no block.
bool readBlock(BitReader &reader, BlockCodes codes, BlockLayout layout, Block8x8<Kel16s> &block, int &last);

// The same from the end of a block of reversible codes. Its first event is behind the next one to the front
// with LAST set, which is looked at and stays to be read, or where the block is full.
bool readBlockBackwards(BackwardBitReader &reader, bool intra, BlockLayout layout, Block8x8<Kel16s> &block,
                        int &last);

} // namespace kelvara

#endif

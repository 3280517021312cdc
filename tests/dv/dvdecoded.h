// dvdecoded.h - a segment through the library's decoder, and blocks to make segments of.

#ifndef RAKOVA_TESTS_DVDECODED_H
#define RAKOVA_TESTS_DVDECODED_H

#include "../kelvara/kelvara_test.h"
#include "dvencoder.h"
#include "dvtable.h"

using Bytes = std::vector<unsigned char>;

const int levels = dv::blocks * 64;
const Kel32u brokenFlag = 0x80000000u;

// What the decoder makes of a segment. All pointers lie `offset` bytes behind a multiple of their elements,
// and the segment ends in front of a forbidden page.
struct Decoded {
    explicit Decoded(const Bytes &segment, int offset = 0) : blocks(levels, offset), params(30, offset) {
        Source<Kel8u> source(1, 400, 400, offset);
        source.fill([&](int, int col) { return segment[col]; });
        Destination<Kel32u> scan(128, offset);
        std::memcpy(static_cast<void *>(scan.data()), table.scan(), 512);
        status = keliHuffmanDecodeSegment_DV_8u16s(source.data(), scan.data(), table.codes(), blocks.data(),
                                                   params.data());
    }

    bool broken(int block) const { return params[block] & brokenFlag; }

    dv::DecodingTable table;
    Destination<Kel16s> blocks;
    Destination<Kel32u> params;
    KelStatus status;
};

inline int drawn(std::mt19937 &generator, int low, int high) {
    return low + static_cast<int>(generator() % static_cast<unsigned>(high - low + 1));
}

// Blocks with about `density` of 64 levels each, one in `large` of them up to 255.
inline dv::CodedBlocks randomBlocks(std::mt19937 &generator, int density, int large) {
    dv::CodedBlocks coded;
    for (int i = 0; i < dv::blocks; ++i) {
        dv::CodedBlock &block = coded[i];
        block.quantiser = i % 6 == 0 ? drawn(generator, 0, 15) : coded[i - 1].quantiser;
        block.mode = drawn(generator, 0, 1);
        block.classNumber = drawn(generator, 0, 3);
        block.levels[0] = drawn(generator, -256, 255);
        const int own = drawn(generator, 0, 2 * density);
        for (int k = 1; k < 64; ++k) {
            if (drawn(generator, 0, 63) >= own) continue;
            const int limit = drawn(generator, 1, large) == 1 ? 255 : 3;
            block.levels[k] = drawn(generator, -limit, limit);
        }
    }
    return coded;
}

// The same, drawn until they fit into a segment.
inline dv::CodedBlocks fittingBlocks(std::mt19937 &generator) {
    for (;;) {
        const int density = drawn(generator, 1, 14), large = drawn(generator, 10, 40);
        const dv::CodedBlocks coded = randomBlocks(generator, density, large);
        if (!dv::arrange(coded).bytes.empty()) return coded;
    }
}

// A segment of blocks without any level but DC.
inline dv::CodedBlocks emptyBlocks() {
    return dv::CodedBlocks();
}

#endif

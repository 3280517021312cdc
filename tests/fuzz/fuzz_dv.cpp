// fuzz_dv.cpp - the decoder of compressed DV segments, against a reader of single bits.
// Input: a segment; what is missing of its 400 bytes is 0, what is too much is left.

#include <string.h>

#include <memory>

#include "../dv/dvmodel.h"
#include "../dv/dvtable.h"
#include "fuzz.h"

namespace {

const int levels = dv::blocks * 64;
const Kel32u broken = 0x80000000u;

// Arrays of their own, so that a sanitizer sees each byte beside them.
struct Output {
    std::unique_ptr<Kel16s[]> blocks{new Kel16s[levels]};
    std::unique_ptr<Kel32u[]> params{new Kel32u[dv::blocks]};
    KelStatus status = kelStsNoErr;
};

Output decoded(unsigned char const *segment, unsigned char mark) {
    static const dv::DecodingTable table;
    Output output;
    memset(output.blocks.get(), mark, levels * sizeof(Kel16s));
    memset(output.params.get(), mark, dv::blocks * sizeof(Kel32u));
    output.status = keliHuffmanDecodeSegment_DV_8u16s(segment, table.scan(), table.codes(),
                                                      output.blocks.get(), output.params.get());
    return output;
}

bool sameData(Output const &a, Output const &b) {
    return memcmp(a.blocks.get(), b.blocks.get(), levels * sizeof(Kel16s)) == 0 &&
           memcmp(a.params.get(), b.params.get(), dv::blocks * sizeof(Kel32u)) == 0;
}

void checkAgainstModel(Output const &output, unsigned char const *segment) {
    const dv::ModelBlocks model = dv::decodeByModel(segment);
    for (int i = 0; i < dv::blocks; ++i) {
        require(output.params[i] == model[i].params(), "parameters are those of the bits", std::to_string(i));
        for (int k = 0; k < 64; ++k) {
            const bool same = output.blocks[64 * i + k] == model[i].levels[k];
            require(same, "levels are those of the bits", std::to_string(64 * i + k));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    std::unique_ptr<unsigned char[]> segment(new unsigned char[dv::segmentBytes]());
    if (size > 0) memcpy(segment.get(), data, size < dv::segmentBytes ? size : dv::segmentBytes);
    const Output output = decoded(segment.get(), 0);
    bool whole = true;
    for (int i = 0; i < dv::blocks; ++i) whole = whole && !(output.params[i] & broken);
    require(output.status == (whole ? kelStsNoErr : kelStsBitStreamErr), "the status tells of broken blocks");
    require(sameData(output, decoded(segment.get(), 0xa5)), "all of the output is written");
    checkAgainstModel(output, segment.get());
    return 0;
}

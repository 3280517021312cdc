// fuzz_h263.cpp - coders, decoders and quantisers of H.263 blocks on any bits and any levels.
// Input: a byte of choices, a byte for QUANT, then a stream or levels.

#include <stdlib.h>

#include "codedblock.h"

namespace {

struct Choices {
    int offset;
    bool intra, advanced, modQuant;
    int QP;

    int first() const { return intra && !advanced; } // DC is coded apart
    int low() const { return modQuant ? -1024 : -127; }
    int high() const { return modQuant ? 1023 : 127; }
};

Decode decoder(Choices const &c) {
    return [=](Kel8u **pp, int *o, Kel16s *block, int *last) {
        return c.intra ? keliDecodeCoeffsIntra_H263_1u16s(pp, o, block, last, c.advanced, c.modQuant, -1)
                       : keliDecodeCoeffsInter_H263_1u16s(pp, o, block, last, c.modQuant, -1);
    };
}

Decode reconstructor(Choices const &c) {
    return [=](Kel8u **pp, int *o, Kel16s *block, int *last) {
        return c.intra ? keliReconstructCoeffsIntra_H263_1u16s(pp, o, block, last, 1, c.QP, c.advanced, 0,
                                                               c.modQuant)
                       : keliReconstructCoeffsInter_H263_1u16s(pp, o, block, last, c.QP, c.modQuant);
    };
}

Encode encoder(Choices const &c) {
    return [=](const Kel16s *block, Kel8u **pp, int *o, int n) {
        return c.intra ? keliEncodeCoeffsIntra_H263_16s1u(block, pp, o, n, c.advanced, c.modQuant, -1)
                       : keliEncodeCoeffsInter_H263_16s1u(block, pp, o, n, c.modQuant, -1);
    };
}

KelStatus dequantise(Choices const &c, Block &block) {
    return c.intra ? keliQuantInvIntra_H263_16s_C1I(block.data(), 63, c.QP, c.advanced, c.modQuant)
                   : keliQuantInvInter_H263_16s_C1I(block.data(), 63, c.QP, c.modQuant);
}

KelStatus quantise(Choices const &c, Block &block, int &count) {
    return c.intra ? keliQuantIntra_H263_16s_C1I(block.data(), c.QP, &count, c.advanced, c.modQuant)
                   : keliQuantInter_H263_16s_C1I(block.data(), c.QP, &count, c.modQuant);
}

// ---- streams ---------------------------------------------------------------------

void checkLevels(Choices const &c, std::string const &stream) {
    Decoded decoded = decodedFrom(stream, c.offset, decoder(c));
    if (decoded.status != kelStsNoErr) return;
    require(c.first() == 0 || decoded.block[0] == untouched, "DC is not theirs");
    require(decoded.last == lastOf(decoded.block) && decoded.last >= c.first(), "the last index is told");
    for (int i = c.first(); i < 64; ++i)
        require(decoded.block[i] >= c.low() && decoded.block[i] <= c.high(), "levels are in range");
    std::string needed = stream.substr(0, bytesOfBits(c.offset, decoded.bits));
    require(decodedFrom(needed, c.offset, decoder(c)).block == decoded.block, "no byte behind is needed");
    Coded coded = codedBlock(decoded.block, c.offset, 64, encoder(c));
    require(coded.status == kelStsNoErr && coded.bits <= decoded.bits, "the coder is no longer");
    require(decodedFrom(coded.bytes, c.offset, decoder(c)).block == decoded.block,
            "and its block comes back");
}

// The same as DC, levels, inverse scan and inverse quantisation one by one.
void checkReconstruction(Choices const &c, std::string const &stream) {
    Decoded rebuilt = decodedFrom(stream, c.offset, reconstructor(c));
    if (rebuilt.status != kelStsNoErr) return;
    Decoded levels = decodedFrom(stream, c.offset, [&c](Kel8u **pp, int *o, Kel16s *block, int *last) {
        KelStatus status = c.first() ? keliDecodeDCIntra_H263_1u16s(pp, o, block) : kelStsNoErr;
        return status == kelStsNoErr ? decoder(c)(pp, o, block, last) : status;
    });
    require(levels.status == kelStsNoErr && levels.bits == rebuilt.bits, "the parts read the same codes");
    require(levels.last == rebuilt.last, "and tell the same index");
    Block block;
    keliScanInv_16s_C1(levels.block.data(), block.data(), 63, 0);
    dequantise(c, block);
    require(block == rebuilt.block, "the parts rebuild the same block");
}

// ---- levels ----------------------------------------------------------------------

void checkCoder(Choices const &c, Block block) {
    Coded coded = codedBlock(block, c.offset, 64, encoder(c));
    bool inRange = true;
    for (int i = c.first(); i < 64; ++i) inRange = inRange && block[i] >= c.low() && block[i] <= c.high();
    require((coded.status == kelStsNoErr) == inRange, "coded unless out of range");
    if (coded.bits == 0) return;
    if (c.first()) block[0] = untouched;
    Decoded decoded = decodedFrom(coded.bytes, c.offset, decoder(c));
    require(decoded.status == kelStsNoErr && decoded.bits == coded.bits, "what is coded is decoded");
    require(decoded.block == block, "the block comes back");
}

void checkQuantisers(Choices const &c, Block block) {
    Block coefficients = block;
    int count = -1, nonZero = 0;
    require(quantise(c, block, count) == kelStsNoErr, "any block is quantised");
    for (int i = c.first(); i < 64; ++i) {
        nonZero += block[i] != 0;
        require(block[i] >= c.low() && block[i] <= c.high(), "levels have a code");
        require(block[i] == 0 || (block[i] < 0) == (coefficients[i] < 0), "levels keep the sign");
    }
    require(count == nonZero, "the levels are counted");
    checkCoder(c, block);
    require(dequantise(c, block) == kelStsNoErr, "any level is rebuilt");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    if (size < 2) return 0;
    bool intra = (data[0] & 8) != 0, advanced = intra && (data[0] & 16) != 0;
    Choices choices = {data[0] & 7, intra, advanced, (data[0] & 32) != 0, 1 + data[1] % 31};
    std::string rest(reinterpret_cast<char const *>(data) + 2, size - 2);
    if (data[0] & 128) {
        checkCoder(choices, blockOf(rest));
        checkQuantisers(choices, blockOf(rest));
    } else {
        checkLevels(choices, padded(rest));
        checkReconstruction(choices, padded(rest));
    }
    return 0;
}

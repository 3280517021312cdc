// fuzz_h261.cpp - coders and decoders of H.261 blocks on any bits and any levels.
// Input: a byte of choices, a byte for QUANT, then a stream or levels.

#include <stdlib.h>

#include "codedblock.h"

namespace {

struct Choices {
    int offset;
    bool intra;
    int QP;
};

Decode decoder(Choices const &c) {
    auto decode = c.intra ? keliDecodeCoeffsIntra_H261_1u16s : keliDecodeCoeffsInter_H261_1u16s;
    return [=](Kel8u **pp, int *o, Kel16s *block, int *last) { return decode(pp, o, block, last, -1); };
}

Decode reconstructor(Choices const &c) {
    auto decode = c.intra ? keliReconstructCoeffsIntra_H261_1u16s : keliReconstructCoeffsInter_H261_1u16s;
    int QP = c.QP;
    return [=](Kel8u **pp, int *o, Kel16s *block, int *last) { return decode(pp, o, block, last, QP); };
}

Encode encoder(Choices const &c, int scan) {
    auto encode = c.intra ? keliEncodeCoeffsIntra_H261_16s1u : keliEncodeCoeffsInter_H261_16s1u;
    return [=](const Kel16s *block, Kel8u **pp, int *o, int n) { return encode(block, pp, o, n, scan); };
}

// Coefficients are odd but for DC and limits, and keep the sign of their level.
void checkReconstruction(Choices const &c, Block const &levels, Block const &coefficients) {
    Block scanned;
    keliScanFwd_16s_C1(coefficients.data(), scanned.data(), 64, 0);
    for (int i = 0; i < 64; ++i) {
        int level = levels[i], value = scanned[i];
        require((level > 0) == (value > 0) && (level < 0) == (value < 0), "levels keep their sign");
        require(value >= -2048 && value <= 2047, "coefficients are limited");
        if (c.intra && i == 0) {
            require(value == 8 * level, "DC has the step 8");
        } else if (level != 0 && value != -2048) {
            require(value % 2 != 0, "coefficients are odd");
        }
        if (i > 0 && value != -2048 && value != 2047 && level != 0)
            require(abs(abs(value) - c.QP * (2 * abs(level) + 1)) == (c.QP % 2 ? 0 : 1),
                    "the middle of a step");
    }
}

void checkStream(Choices const &c, std::string const &stream) {
    Decoded decoded = decodedFrom(stream, c.offset, decoder(c));
    Decoded rebuilt = decodedFrom(stream, c.offset, reconstructor(c));
    require(rebuilt.status == decoded.status && rebuilt.bits == decoded.bits, "both read the same codes");
    if (decoded.status != kelStsNoErr) return;
    require(decoded.last == lastOf(decoded.block) && rebuilt.last == decoded.last, "the last index is told");
    require(decoded.last >= 0, "a block has a level");
    checkReconstruction(c, decoded.block, rebuilt.block);
    std::string needed = stream.substr(0, bytesOfBits(c.offset, decoded.bits));
    require(decodedFrom(needed, c.offset, decoder(c)).block == decoded.block, "no byte behind is needed");
    Coded coded = codedBlock(decoded.block, c.offset, 64, encoder(c, -1));
    require(coded.status == kelStsNoErr && coded.bits <= decoded.bits, "the coder is no longer");
    require(decodedFrom(coded.bytes, c.offset, decoder(c)).block == decoded.block,
            "and its block comes back");
}

void checkBlock(Choices const &c, std::string const &bytes) {
    Block block = blockOf(bytes);
    int DC = block[0];
    Coded coded = codedBlock(block, c.offset, 64, encoder(c, -1));
    bool inRange = true;
    for (int i = c.intra; i < 64; ++i) inRange = inRange && abs(block[i]) <= 127;
    require((coded.status == kelStsNoErr) == inRange, "coded unless out of range");
    if (coded.bits == 0) return;
    Decoded decoded = decodedFrom(coded.bytes, c.offset, decoder(c));
    require(decoded.status == kelStsNoErr && decoded.bits == coded.bits, "what is coded is decoded");
    if (c.intra) block[0] = static_cast<Kel16s>(DC < 1 ? 1 : DC > 254 ? 254 : DC);
    require(decoded.block == block, "the block comes back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    if (size < 2) return 0;
    Choices choices = {data[0] & 7, (data[0] & 8) != 0, 1 + data[1] % 31};
    std::string rest(reinterpret_cast<char const *>(data) + 2, size - 2);
    if (data[0] & 128) {
        checkBlock(choices, rest);
    } else {
        checkStream(choices, padded(rest));
    }
    return 0;
}

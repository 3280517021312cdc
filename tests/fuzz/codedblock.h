// codedblock.h - what the fuzz targets of coded blocks share: exact streams, and blocks out of any bytes.

#ifndef RAKOVA_FUZZ_CODEDBLOCK_H
#define RAKOVA_FUZZ_CODEDBLOCK_H

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "fuzz.h"
#include "kelvc.h"

using Block = std::array<Kel16s, 64>;

// No block is longer, wherever in its first byte it begins.
const size_t longestBlock = 265;

// The decoders and coders of a kind of blocks.
using Decode = std::function<KelStatus(Kel8u **, int *, Kel16s *, int *)>;
using Encode = std::function<KelStatus(const Kel16s *, Kel8u **, int *, int count)>;

struct Decoded {
    KelStatus status;
    Block block;
    int last;
    int bits; // read
};

const Kel16s untouched = -21846;

// On memory of just these bytes, so that the sanitizer sees a read behind them.
inline Decoded decodedFrom(std::string const &bytes, int offset, Decode const &decode) {
    std::unique_ptr<Kel8u[]> stream(new Kel8u[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), stream.get());
    Decoded decoded = {kelStsNoErr, {}, -7, 0};
    decoded.block.fill(untouched);
    Block before = decoded.block;
    Kel8u *p = stream.get();
    int bit = offset;
    decoded.status = decode(&p, &bit, decoded.block.data(), &decoded.last);
    decoded.bits = static_cast<int>(p - stream.get()) * 8 + bit - offset;
    require(bit >= 0 && bit <= 7, "a bit has eight places");
    require(decoded.status == kelStsNoErr || decoded.status == kelStsBitStreamErr, "a block or an error");
    if (decoded.status == kelStsNoErr) return decoded;
    require(decoded.block == before && decoded.last == -7, "an error leaves the block");
    require(decoded.bits == 0, "an error leaves the position");
    return decoded;
}

inline size_t bytesOfBits(int offset, int bits) {
    return static_cast<size_t>(offset + bits + 7) / 8;
}

// As many bytes as a block may take, zeros behind the given ones.
inline std::string padded(std::string bytes) {
    bytes.resize(longestBlock, '\0');
    return bytes;
}

// The block coded at the offset, on memory of just the bytes that it needs; empty if it needs none.
struct Coded {
    KelStatus status;
    std::string bytes;
    int bits;
};

inline Coded codedBlock(Block const &block, int offset, int count, Encode const &encode) {
    std::string room(longestBlock, '\x5A');
    auto *stream = reinterpret_cast<Kel8u *>(&room[0]), *p = stream;
    int bit = offset;
    Coded coded = {encode(block.data(), &p, &bit, count), "", 0};
    coded.bits = static_cast<int>(p - stream) * 8 + bit - offset;
    require(coded.status == kelStsNoErr || coded.status == kelStsRangeErr, "coded or out of range");
    require(coded.status == kelStsNoErr || coded.bits == 0, "an error leaves the position");
    size_t used = coded.bits == 0 ? 0 : bytesOfBits(offset, coded.bits);
    for (size_t i = used; i < room.size(); ++i) require(room[i] == '\x5A', "what is behind stays");
    coded.bytes = room.substr(0, used);
    return coded;
}

// Levels here and there: a place and a level of one byte, or, where the place has the bit 64, of two.
inline Block blockOf(std::string const &bytes) {
    Block block = {};
    for (size_t i = 0; i + 2 < bytes.size(); i += 3) {
        int low = static_cast<unsigned char>(bytes[i + 1]), high = static_cast<signed char>(bytes[i + 2]);
        int level = bytes[i] & 64 ? high * 256 + low : static_cast<signed char>(low);
        block[bytes[i] & 63] = static_cast<Kel16s>(level);
    }
    return block;
}

inline int lastOf(Block const &block) {
    int last = 63;
    while (last >= 0 && block[last] == 0) --last;
    return last;
}

#endif

// fuzz_mpeg4.cpp - the decoders of MPEG-4 bit streams on any bits.
// Input: a byte of flags (1 intra, 2 reversible codes, 4 DC apart, 8 chroma), a byte with the offset of the
// first bit and eight times the scan plus 1, then the stream.

#include <string.h>

#include <algorithm>

#include "fuzz.h"
#include "kelvc.h"

namespace {

// More than a block can have: 64 codes of 30 bits.
const size_t largestBlock = 264;

struct Form {
    bool intra;
    int rvlc, dcApart, blockType, scan;
};

struct Block {
    Kel16s at[64];
};
bool operator==(Block const &a, Block const &b) {
    return memcmp(a.at, b.at, sizeof a.at) == 0;
}

// The marks that a decoder leaves where it fails.
Block marked() {
    Block block;
    std::fill(block.at, block.at + 64, static_cast<Kel16s>(-21846));
    return block;
}

struct Decoded {
    KelStatus status;
    Block block;
    int last;
    long bits;
};

// ---- the functions ------------------------------------------------------------------

KelStatus encode(Form const &f, Block const &block, Kel8u **pp, int *o) {
    return f.intra ? keliEncodeCoeffsIntra_MPEG4_16s1u(block.at, pp, o, 64, f.rvlc, f.dcApart, f.scan)
                   : keliEncodeCoeffsInter_MPEG4_16s1u(block.at, pp, o, 64, f.rvlc, f.scan);
}

KelStatus decode(Form const &f, Kel8u **pp, int *o, Kel16s *block, int *last) {
    return f.intra ? keliDecodeCoeffsIntra_MPEG4_1u16s(pp, o, block, last, f.rvlc, f.dcApart, f.scan)
                   : keliDecodeCoeffsInter_MPEG4_1u16s(pp, o, block, last, f.rvlc, f.scan);
}

KelStatus decodeBack(Form const &f, Kel8u **pp, int *o, Kel16s *block, int *last) {
    return f.intra ? keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(pp, o, block, last, f.dcApart)
                   : keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s(pp, o, block, last);
}

// On an error nothing has changed.
template <class Decoder>
Decoded decoded(Decoder decoder, Form const &f, Kel8u *stream, int offset) {
    Decoded d = {kelStsNoErr, marked(), -7, 0};
    Kel8u *p = stream;
    int o = offset;
    d.status = decoder(f, &p, &o, d.block.at, &d.last);
    require(o >= 0 && o <= 7, "the offset is one of a byte");
    d.bits = static_cast<long>(p - stream) * 8 + o - offset;
    if (d.status == kelStsNoErr) {
        require(d.last >= f.dcApart && d.last <= 63, "the last level is in the block");
        return d;
    }
    require(d.status == kelStsBitStreamErr, "bits are a block or an error of the stream");
    require(d.block == marked() && d.last == -7 && d.bits == 0, "an error changes nothing");
    return d;
}

// ---- the properties -------------------------------------------------------------------

// A copy that ends with the block: the sanitizer sees who looks further.
void checkExtent(Form const &f, std::vector<Kel8u> const &stream, int offset, Decoded const &d) {
    require(d.bits > 0, "a block has bits");
    const size_t bytes = (static_cast<size_t>(offset + d.bits) + 7) / 8;
    require(bytes <= stream.size(), "a block ends in time");
    std::vector<Kel8u> exact(stream.begin(), stream.begin() + static_cast<long>(bytes));
    exact.shrink_to_fit();
    const Decoded again = decoded(decode, f, exact.data(), offset);
    require(again.status == kelStsNoErr && again.block == d.block && again.bits == d.bits,
            "what lies behind a block does not matter");
}

// Coded anew, twice: both come back, and the second one from its end too.
void checkRoundTrip(Form const &f, Decoded const &d) {
    std::vector<Kel8u> room(2 * largestBlock);
    Kel8u *p = room.data();
    int o = 0;
    require(encode(f, d.block, &p, &o) == kelStsNoErr, "a decoded block can be coded");
    Kel8u *const second = p;
    const int secondOffset = o;
    require(encode(f, d.block, &p, &o) == kelStsNoErr, "a decoded block can be coded again");
    const Decoded first = decoded(decode, f, room.data(), 0),
                  again = decoded(decode, f, second, secondOffset);
    require(first.status == kelStsNoErr && first.block == d.block && first.last == d.last, "it comes back");
    require(again.status == kelStsNoErr && again.block == d.block, "it comes back from any offset");
    if (!f.rvlc || f.scan != -1) return;
    const Decoded back = decoded(decodeBack, f, o ? p : p - 1, o ? o - 1 : 7);
    require(back.status == kelStsNoErr && back.block == d.block && back.last == d.last,
            "it comes back from its end");
    require(back.bits == -again.bits, "its end is as far from its beginning as the other way round");
}

// Reconstruction is decoding and inverse quantisation.
void checkReconstruction(Form const &f, std::vector<Kel8u> &stream, int offset, Decoded const &d) {
    int size = 0;
    require(keliQuantInvInterGetSize_MPEG4(&size) == kelStsNoErr, "a quantiser has a size");
    std::vector<Kel8u> memory(static_cast<size_t>(size));
    auto spec = reinterpret_cast<KeliQuantSpec_MPEG4 *>(memory.data());
    Kel8u weights[64];
    for (int i = 0; i < 64; ++i) weights[i] = static_cast<Kel8u>(8 + i);
    require(keliQuantInvInterInit_MPEG4(weights, spec, 8) == kelStsNoErr, "a quantiser is made");
    Block expected = d.block, block = marked();
    Kel8u *p = stream.data();
    int o = offset, last = -7;
    const KelStatus status =
        keliReconstructCoeffsInter_MPEG4_1u16s(&p, &o, block.at, &last, f.rvlc, f.scan, spec, 3);
    require(status == d.status && last == d.last, "reconstruction decodes");
    if (status == kelStsNoErr)
        require(keliQuantInvInter_MPEG4_16s_C1I(expected.at, 63, spec, 3) == kelStsNoErr,
                "levels dequantise");
    require(block == expected, "reconstruction dequantises");
}

void checkForward(Form const &f, std::vector<Kel8u> stream, int offset) {
    stream.resize(stream.size() + largestBlock);
    const Decoded d = decoded(decode, f, stream.data(), offset);
    if (!f.intra) checkReconstruction(f, stream, offset, d);
    if (d.status != kelStsNoErr) return;
    checkExtent(f, stream, offset, d);
    if (f.dcApart) require(d.block.at[0] == marked().at[0], "DC that is apart stays");
    checkRoundTrip(f, d);
}

// From the last bit of the input, with noughts in front of the first.
void checkBackward(Form const &f, std::vector<Kel8u> const &stream, int offset) {
    std::vector<Kel8u> whole(largestBlock);
    whole.insert(whole.end(), stream.begin(), stream.end());
    const Decoded d = decoded(decodeBack, f, &whole.back(), offset);
    require(d.bits <= 0 && -d.bits <= static_cast<long>(64 * 30), "backwards is to the front");
    Form forward = f;
    forward.rvlc = 1;
    forward.scan = -1;
    if (d.status == kelStsNoErr) checkRoundTrip(forward, d);
}

void checkDc(Form const &f, std::vector<Kel8u> stream, int offset) {
    stream.resize(stream.size() + 8);
    Kel8u *p = stream.data();
    int o = offset;
    Kel16s dc = -21846;
    const KelStatus status = keliDecodeDCIntra_MPEG4_1u16s(&p, &o, &dc, f.blockType);
    if (status != kelStsNoErr) {
        require(status == kelStsBitStreamErr && dc == -21846 && p == stream.data() && o == offset,
                "an error of DC changes nothing");
        return;
    }
    std::vector<Kel8u> again(stream.begin(), stream.begin() + 8);
    Kel8u *q = again.data();
    int e = offset;
    require(keliEncodeDCIntra_MPEG4_16s1u(dc, &q, &e, f.blockType) == kelStsNoErr, "DC can be coded");
    require(q - again.data() == p - stream.data() && e == o, "DC has one code");
    require(std::equal(again.begin(), again.end(), stream.begin()), "and that leaves what is around it");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    if (size < 3) return 0;
    const Form f = {(data[0] & 1) != 0, data[0] >> 1 & 1, data[0] & 1 ? data[0] >> 2 & 1 : 0,
                    data[0] >> 3 & 1, (data[1] >> 3 & 3) - 1};
    const int offset = data[1] & 7;
    const std::vector<Kel8u> stream(data + 2, data + size);
    checkForward(f, stream, offset);
    checkBackward(f, stream, offset);
    checkDc(f, stream, offset);
    return 0;
}

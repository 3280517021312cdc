// dccodes.cpp - the code of the DC coefficient of MPEG-4 intra blocks.

#include "../common/bitposition.h"
#include "../common/runlevel.h"
#include "../common/samples.h"
#include "kelvc_mpeg4bits.h"
#include "quantise.h"

namespace kelvara {

constexpr int largestDcSize = 12;

// dct_dc_size in the place of the run, bits and code. Level 1 keeps the decoder table from taking size 0 for
// something else than an event.
// clang-format off

// ISO/IEC 14496-2 Table B-13, luma.
static constexpr EventCode dcSizeLuma[largestDcSize + 1] = {
    {0, 0, 1, 3, 0b011},           {0, 1, 1, 2, 0b11},            {0, 2, 1, 2, 0b10},
    {0, 3, 1, 3, 0b010},           {0, 4, 1, 3, 0b001},           {0, 5, 1, 4, 0b0001},
    {0, 6, 1, 5, 0b00001},         {0, 7, 1, 6, 0b000001},        {0, 8, 1, 7, 0b0000001},
    {0, 9, 1, 8, 0b00000001},      {0, 10, 1, 9, 0b000000001},    {0, 11, 1, 10, 0b0000000001},
    {0, 12, 1, 11, 0b00000000001}};

// ISO/IEC 14496-2 Table B-14, chroma.
static constexpr EventCode dcSizeChroma[largestDcSize + 1] = {
    {0, 0, 1, 2, 0b11},             {0, 1, 1, 2, 0b10},             {0, 2, 1, 2, 0b01},
    {0, 3, 1, 3, 0b001},            {0, 4, 1, 4, 0b0001},           {0, 5, 1, 5, 0b00001},
    {0, 6, 1, 6, 0b000001},         {0, 7, 1, 7, 0b0000001},        {0, 8, 1, 8, 0b00000001},
    {0, 9, 1, 9, 0b000000001},      {0, 10, 1, 10, 0b0000000001},   {0, 11, 1, 11, 0b00000000001},
    {0, 12, 1, 12, 0b000000000001}};
// clang-format on

static int sizeOf(int dc) {
    int size = 0;
    while (std::abs(dc) >> size) ++size;
    return size;
}

// Behind a long differential a marker keeps start codes from being imitated.
static bool hasMarker(int size) {
    return size > 8;
}

// A negative differential is the complement of its magnitude, so that its first bit is 0 (Table B-15).
static void write(BitWriter &writer, int dc, const EventCode *codes) {
    const int size = sizeOf(dc);
    writer.put(codes[size].code, codes[size].bits);
    writer.put(static_cast<Kel32u>(dc < 0 ? dc - 1 : dc), size);
    if (hasMarker(size)) writer.put(1, 1);
}

static bool read(BitReader &reader, int blockType, int &dc) {
    const Kel32s line = blockType == 0 ? readCode(reader, decoderTable<dcSizeLuma>)
                                       : readCode(reader, decoderTable<dcSizeChroma>);
    if (line == noCode) return false;
    const int size = runOf(line);
    dc = 0;
    if (size == 0) return true;
    const int bits = static_cast<int>(reader.read(size));
    dc = bits >> (size - 1) ? bits : bits + 1 - (1 << size);
    return !hasMarker(size) || reader.readBit();
}

static KelStatus encodeDc(int dc, Kel8u **ppBitStream, int *pBitOffset, int blockType) {
    BitPosition position(ppBitStream, pBitOffset);
    if (position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isBlockType(blockType) || sizeOf(dc) > largestDcSize) return kelStsRangeErr;
    BitWriter writer = position.writer();
    write(writer, dc, blockType == 0 ? dcSizeLuma : dcSizeChroma);
    position.moveTo(writer);
    return kelStsNoErr;
}

static KelStatus decodeDc(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pDcCoeff, int blockType) {
    BitPosition position(ppBitStream, pBitOffset);
    if (anyNull(pDcCoeff) || position.isNull()) return kelStsNullPtrErr;
    if (!position.isInByte() || !isBlockType(blockType)) return kelStsRangeErr;
    BitReader reader = position.reader();
    int dc = 0;
    if (!read(reader, blockType, dc)) return kelStsBitStreamErr;
    store(pDcCoeff, static_cast<Kel16s>(dc));
    position.moveTo(reader);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliEncodeDCIntra_MPEG4_16s1u(Kel16s dcCoeff, Kel8u **ppBitStream, int *pBitOffset, int blockType) {
    return encodeDc(dcCoeff, ppBitStream, pBitOffset, blockType);
}

KelStatus keliDecodeDCIntra_MPEG4_1u16s(Kel8u **ppBitStream, int *pBitOffset, Kel16s *pDcCoeff,
                                        int blockType) {
    return decodeDc(ppBitStream, pBitOffset, pDcCoeff, blockType);
}

// dvsegment_test.cpp - the decoder of compressed DV segments, against the coder that made them and against
// segments made by hand.

#include "dvdecoded.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

int countOf(const dv::CodedBlock &block) {
    int count = 0;
    for (int place = 0; place < 64; ++place) {
        if (block.levels[dv::scans[block.mode][place]] != 0) count = place + 1;
    }
    return count;
}

void expectBlock(const Decoded &decoded, int i, const dv::CodedBlock &block) {
    SCOPED_TRACE(testing::Message() << "block " << i);
    for (int k = 0; k < 64; ++k) ASSERT_EQ(block.levels[k], decoded.blocks[64 * i + k]) << "at " << k;
    const int fields = block.quantiser + 16 * block.classNumber + 64 * block.mode + 256 * countOf(block);
    EXPECT_EQ(static_cast<Kel32u>(fields), decoded.params[i]);
}

void expectDecoded(const dv::CodedBlocks &coded, int offset = 0) {
    const dv::Segment segment = dv::arrange(coded);
    ASSERT_EQ(400u, segment.bytes.size()) << "the codes fit";
    const Decoded decoded(segment.bytes, offset);
    EXPECT_EQ(kelStsNoErr, decoded.status);
    for (int i = 0; i < dv::blocks; ++i) expectBlock(decoded, i, coded[i]);
    EXPECT_TRUE(decoded.blocks.surroundingsIntact());
    EXPECT_TRUE(decoded.params.surroundingsIntact());
}

} // namespace

// ---- whole segments ----------------------------------------------------------------------

TEST(KelvaraDvSegment, DcIsSignedAndHeadsAreReported) {
    for (int dc = -256; dc < 256; ++dc) {
        dv::CodedBlocks coded = emptyBlocks();
        for (int i = 0; i < dv::blocks; ++i) {
            coded[i].levels[0] = (dc + 256 + i * 17) % 512 - 256;
            coded[i].mode = (dc + i) & 1;
            coded[i].classNumber = (dc + i / 2) & 3;
            coded[i].quantiser = (dc + i / 6) & 15;
        }
        expectDecoded(coded);
    }
}

TEST(KelvaraDvSegment, EveryCodeIsDecodedInEitherMode) {
    int block = 0;
    for (const auto &[what, bits] : dv::codes()) {
        const auto [run, amplitude] = what;
        if (amplitude == 0) continue;
        for (int sign : {1, -1}) {
            for (int mode : {0, 1}) {
                dv::CodedBlocks coded = emptyBlocks();
                dv::CodedBlock &one = coded[block++ % dv::blocks];
                one.mode = mode;
                one.levels[dv::scans[mode][1 + run]] = sign * amplitude;
                expectDecoded(coded);
            }
        }
    }
}

// Events without a code are two codes: a run of zeros, then the level.
TEST(KelvaraDvSegment, LongRunsAreDecoded) {
    for (int place = 1; place < 64; ++place) {
        for (int amplitude : {1, 2, 23, 255}) {
            dv::CodedBlocks coded = emptyBlocks();
            for (int i = 0; i < dv::blocks; ++i) {
                coded[i].mode = i % 2;
                coded[i].levels[dv::scans[i % 2][place]] = i % 3 == 0 ? amplitude : -amplitude;
            }
            expectDecoded(coded);
        }
    }
}

TEST(KelvaraDvSegment, RandomBlocksComeBackThroughAllPasses) {
    std::mt19937 generator(1);
    int passes[3] = {};
    for (int pass = 0; pass < 800; ++pass) {
        const dv::CodedBlocks coded = fittingBlocks(generator);
        const dv::Segment segment = dv::arrange(coded);
        for (int i = 0; i < 3; ++i) passes[i] += segment.placedBits[i] > 0;
        expectDecoded(coded, pass % 3);
    }
    EXPECT_GT(passes[1], 150);
    EXPECT_GT(passes[2], 150);
}

// One block fills the segment, the others are empty: its codes are cut at every area in turn.
TEST(KelvaraDvSegment, ABlockMayUseTheRoomOfAllOthers) {
    std::mt19937 generator(2);
    for (int owner = 0; owner < dv::blocks; ++owner) {
        for (int pass = 0; pass < 20; ++pass) {
            dv::CodedBlocks coded = emptyBlocks();
            dv::CodedBlock &block = coded[owner];
            block.mode = pass % 2;
            for (int k = 1; k < 64; ++k)
                block.levels[k] = drawn(generator, 0, 1) ? 255 : -drawn(generator, 20, 255);
            EXPECT_GT(dv::arrange(coded).placedBits[2], 0);
            expectDecoded(coded);
        }
    }
}

TEST(KelvaraDvSegment, IdAndStatusAreNotRead) {
    std::mt19937 generator(3);
    Bytes segment = dv::arrange(fittingBlocks(generator)).bytes;
    const Decoded before(segment);
    for (int m = 0; m < 5; ++m) {
        for (int i = 0; i < 3; ++i) segment[80 * m + i] ^= 255;
        segment[80 * m + 3] ^= 0xf0;
    }
    const Decoded after(segment);
    EXPECT_EQ(kelStsNoErr, after.status);
    for (int i = 0; i < dv::blocks; ++i) EXPECT_EQ(before.params[i], after.params[i]);
    for (int i = 0; i < levels; ++i) ASSERT_EQ(before.blocks[i], after.blocks[i]);
}

TEST(KelvaraDvSegment, LevelsGoWhereTheScanSays) {
    std::mt19937 generator(4);
    const dv::CodedBlocks coded = fittingBlocks(generator);
    const Bytes segment = dv::arrange(coded).bytes;
    Kel32u scan[128];
    for (int i = 0; i < 128; ++i) scan[i] = i < 64 ? 63 - i : (i * 5) % 64;
    const dv::DecodingTable table;
    Destination<Kel16s> blocks(levels);
    Kel32u params[30];
    ASSERT_EQ(kelStsNoErr,
              keliHuffmanDecodeSegment_DV_8u16s(segment.data(), scan, table.codes(), blocks.data(), params));
    for (int i = 0; i < dv::blocks; ++i) {
        dv::Block expected = {};
        const dv::CodedBlock &block = coded[i];
        expected[0] = block.levels[0];
        for (int place = 1; place < 64; ++place) {
            const int level = block.levels[dv::scans[block.mode][place]];
            if (level != 0) expected[scan[64 * block.mode + place]] = level;
        }
        for (int k = 0; k < 64; ++k) ASSERT_EQ(expected[k], blocks[64 * i + k]) << i << ", " << k;
    }
}

// ---- segments made by hand ---------------------------------------------------------------

namespace {

// Blocks of DC 0 that end at once, 0000000000000110 each.
Bytes endedBlocks() {
    Bytes segment(400);
    for (int m = 0; m < 5; ++m) {
        for (int second : {5, 19, 33, 47, 61, 71}) segment[80 * m + second] = 0x06;
    }
    return segment;
}

void put(Bytes &segment, int first, const Bytes &bytes) {
    std::copy(bytes.begin(), bytes.end(), segment.begin() + first);
}

// Six or four levels of 255, 1111111 11111111 0 each, which with an end fill an area to its last bit.
const Bytes fullLuma = {0x00, 0x0f, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xe6};
const Bytes fullColour = {0x00, 0x0f, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xe6};
// Here 001 is a level of -1, and the last bit the first one of an end.
const Bytes overfull = {0x00, 0x0f, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xef, 0xff, 0xe2};

} // namespace

TEST(KelvaraDvSegment, HeadAndCodesStandSideBySide) {
    Bytes segment = endedBlocks();
    segment[83] = 0x0b;
    put(segment, 84, {0xfe, 0xe0, 0xf6}); // 111111101 1 10, 00 0, 0111 1, 0110
    const Decoded decoded(segment);
    EXPECT_EQ(kelStsNoErr, decoded.status);
    EXPECT_EQ(11u + 2 * 16 + 64 + 4 * 256, decoded.params[6]);
    EXPECT_EQ(11u, decoded.params[7]);
    for (int k = 0; k < 64; ++k)
        EXPECT_EQ(k == 0 ? -3 : k == 32 ? 1 : k == 33 ? -1 : 0, decoded.blocks[64 * 6 + k]);
}

TEST(KelvaraDvSegment, ACodeGoesOnInTheRoomOfItsMacroblock) {
    Bytes segment = endedBlocks();
    put(segment, 4, fullLuma);
    put(segment, 18, overfull);
    put(segment, 32, {0x00, 0x06, 0xc0}); // 110 behind the end of the third block
    const Decoded decoded(segment);
    EXPECT_EQ(kelStsNoErr, decoded.status);
    EXPECT_EQ(7u * 256, decoded.params[0]);
    EXPECT_EQ(8u * 256, decoded.params[1]);
    EXPECT_EQ(255, decoded.blocks[64 + dv::scans[0][6]]);
    EXPECT_EQ(-1, decoded.blocks[64 + dv::scans[0][7]]);
    EXPECT_EQ(0u, decoded.params[2]);
}

TEST(KelvaraDvSegment, ACodeGoesOnInTheRoomOfAnotherMacroblock) {
    Bytes segment = endedBlocks();
    for (int first : {164, 178, 206}) put(segment, first, fullLuma);
    put(segment, 192, overfull);
    for (int first : {220, 230}) put(segment, first, fullColour);
    put(segment, 4, {0x00, 0x06, 0xc0}); // 110 in the first room of the segment
    const Decoded decoded(segment);
    EXPECT_EQ(kelStsNoErr, decoded.status);
    for (int i = 0; i < 6; ++i) EXPECT_EQ((i == 2 ? 8u : i < 4 ? 7u : 5u) * 256, decoded.params[12 + i]) << i;
    EXPECT_EQ(-1, decoded.blocks[64 * 14 + dv::scans[0][7]]);
}

// ---- arguments -------------------------------------------------------------------------------

TEST(KelvaraDvSegment, BadArgumentsAreRefusedAndNothingIsWritten) {
    const dv::DecodingTable table;
    const Bytes segment = dv::arrange(emptyBlocks()).bytes;
    Destination<Kel16s> blocks(levels);
    Destination<Kel32u> params(30);
    const auto decode = keliHuffmanDecodeSegment_DV_8u16s;
    const Kel8u *src = segment.data();
    EXPECT_EQ(kelStsNullPtrErr, decode(nullptr, table.scan(), table.codes(), blocks.data(), params.data()));
    EXPECT_EQ(kelStsNullPtrErr, decode(src, nullptr, table.codes(), blocks.data(), params.data()));
    EXPECT_EQ(kelStsNullPtrErr, decode(src, table.scan(), nullptr, blocks.data(), params.data()));
    EXPECT_EQ(kelStsNullPtrErr, decode(src, table.scan(), table.codes(), nullptr, params.data()));
    EXPECT_EQ(kelStsNullPtrErr, decode(src, table.scan(), table.codes(), blocks.data(), nullptr));
    for (int place : {0, 63, 64, 127}) {
        for (Kel32u position : {64u, 256u, 0xffffffffu}) {
            std::vector<Kel32u> scan(table.scan(), table.scan() + 128);
            scan[place] = position;
            EXPECT_EQ(kelStsRangeErr, decode(src, scan.data(), table.codes(), blocks.data(), params.data()));
        }
    }
    EXPECT_TRUE(blocks.untouched());
    EXPECT_TRUE(params.untouched());
}

// dvsegment_test.cpp - the decoder of compressed DV segments: against the coder that made them, and on
// damaged ones against a reader of single bits.

#include "dvencoder.h"
#include "dvmodel.h"
#include "dvtable.h"
#include "../kelvara/kelvara_test.h"

#include <gtest/gtest.h>

namespace {

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

int drawn(std::mt19937 &generator, int low, int high) {
    return low + static_cast<int>(generator() % static_cast<unsigned>(high - low + 1));
}

// Blocks with about `density` of 64 levels each, one in `large` of them up to 255.
dv::CodedBlocks randomBlocks(std::mt19937 &generator, int density, int large) {
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
dv::CodedBlocks fittingBlocks(std::mt19937 &generator) {
    for (;;) {
        const int density = drawn(generator, 1, 14), large = drawn(generator, 10, 40);
        const dv::CodedBlocks coded = randomBlocks(generator, density, large);
        if (!dv::arrange(coded).bytes.empty()) return coded;
    }
}

// A segment of blocks without any level but DC.
dv::CodedBlocks emptyBlocks() {
    return dv::CodedBlocks();
}

void expectModel(const Bytes &segment) {
    const Decoded decoded(segment);
    const dv::ModelBlocks model = dv::decodeByModel(segment.data());
    bool broken = false;
    for (int i = 0; i < dv::blocks; ++i) {
        ASSERT_EQ(model[i].params(), decoded.params[i]) << "block " << i;
        for (int k = 0; k < 64; ++k) ASSERT_EQ(model[i].levels[k], decoded.blocks[64 * i + k]) << i;
        broken = broken || decoded.broken(i);
    }
    EXPECT_EQ(broken ? kelStsBitStreamErr : kelStsNoErr, decoded.status);
    EXPECT_TRUE(decoded.blocks.surroundingsIntact());
    EXPECT_TRUE(decoded.params.surroundingsIntact());
}

// Puts bits where the codes of a block start.
void overwrite(Bytes &segment, int block, const dv::Bits &bits) {
    int first = block / 6 * 80 + dv::headBytes;
    for (int i = 0; i < block % 6; ++i) first += dv::areaBytes(i);
    for (size_t i = 0; i < bits.size(); ++i) {
        const size_t at = first * 8 + dv::headBits + i;
        const int mask = 128 >> at % 8;
        segment[at / 8] = static_cast<unsigned char>((segment[at / 8] & ~mask) | (bits[i] == '1' ? mask : 0));
    }
}

dv::Bits repeated(const dv::Bits &bits, int count) {
    dv::Bits all;
    for (int i = 0; i < count; ++i) all += bits;
    return all;
}

// The blocks that are broken, by a letter each.
std::string brokenBlocks(const Bytes &segment) {
    const Decoded decoded(segment);
    EXPECT_EQ(kelStsBitStreamErr, decoded.status);
    std::string text;
    for (int i = 0; i < dv::blocks; ++i) {
        if (i > 0 && i % 6 == 0) text += ' ';
        text += decoded.broken(i) ? 'x' : '.';
    }
    return text;
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

// ---- broken segments -----------------------------------------------------------------------

TEST(KelvaraDvSegment, AnUnknownCodeBreaksItsBlockAlone) {
    for (const char *unknown : {"1111110000000", "1111110000101", "1111110111110", "1111110111111",
                                "111111100000000", "111111100010110"}) {
        Bytes segment = dv::arrange(emptyBlocks()).bytes;
        overwrite(segment, 8, dv::event(0, 7) + dv::event(2, -1) + unknown);
        EXPECT_EQ("...... ..x... ...... ...... ......", brokenBlocks(segment)) << unknown;
        const Decoded decoded(segment);
        EXPECT_EQ(7, decoded.blocks[64 * 8 + 1]) << "levels in front of the break stay";
        EXPECT_EQ(-1, decoded.blocks[64 * 8 + 9]);
        EXPECT_EQ(brokenFlag | 5 * 256, decoded.params[8]);
        expectModel(segment);
    }
}

TEST(KelvaraDvSegment, ALevelBehindTheBlockBreaksIt) {
    Bytes fits = dv::arrange(emptyBlocks()).bytes, tooFar = fits;
    const dv::Bits zeros = dv::codes().at({61, 0});
    overwrite(fits, 3, zeros + dv::event(0, 9) + dv::endOfBlock());
    EXPECT_EQ(9, Decoded(fits).blocks[64 * 3 + 63]);
    EXPECT_EQ(kelStsNoErr, Decoded(fits).status);
    for (const dv::Bits &rest : {dv::event(1, 9), dv::event(0, 9) + dv::event(0, 1), zeros}) {
        tooFar = fits;
        overwrite(tooFar, 3, zeros + rest + dv::endOfBlock());
        EXPECT_EQ("...x.. ...... ...... ...... ......", brokenBlocks(tooFar));
        expectModel(tooFar);
    }
}

// Codes of 16 bits: six of them in the 100 bits of a luma area, four in the 68 of colour.
TEST(KelvaraDvSegment, WithoutTheirEndsBlocksKeepWhatTheirAreasHold) {
    Bytes segment = dv::arrange(emptyBlocks()).bytes;
    for (int i = 0; i < dv::blocks; ++i) {
        const size_t bits = 8 * dv::areaBytes(i % 6) - dv::headBits;
        overwrite(segment, i, repeated(dv::event(0, -255), 7).substr(0, bits));
    }
    EXPECT_EQ("xxxxxx xxxxxx xxxxxx xxxxxx xxxxxx", brokenBlocks(segment));
    const Decoded decoded(segment);
    for (int i = 0; i < dv::blocks; ++i) {
        const Kel32u held = i % 6 < 4 ? 6 : 4;
        EXPECT_EQ(brokenFlag | (held + 1) * 256, decoded.params[i]) << "places up to the last level";
        for (Kel32u place = 1; place < 64; ++place)
            EXPECT_EQ(place <= held ? -255 : 0, decoded.blocks[64 * i + dv::scans[0][place]]);
    }
    expectModel(segment);
}

// Block 13 waits for the spare bits of its macroblock, which block 15 spoils.
TEST(KelvaraDvSegment, ABreakReachesThoseWhoseCodesCannotBeFound) {
    const dv::Bits full = repeated(dv::event(0, 255), 6) + "111111"; // 102 bits; 100 are there
    Bytes segment = dv::arrange(emptyBlocks()).bytes;
    overwrite(segment, 13, full.substr(0, 100));
    overwrite(segment, 15, "1111110000000");
    EXPECT_EQ("...... ...... .x.x.. ...... ......", brokenBlocks(segment));
    expectModel(segment);

    // The next macroblock has no end of block in its room either: what goes on behind the break is lost.
    for (int i = 18; i < 24; ++i) overwrite(segment, i, repeated("00", i < 22 ? 50 : 34));
    EXPECT_EQ("...... ...... .x.x.. xxxxxx ......", brokenBlocks(segment));
    expectModel(segment);
}

TEST(KelvaraDvSegment, NoiseIsReadAsTheBitsSay) {
    std::mt19937 generator(5);
    for (int pass = 0; pass < 1000; ++pass) {
        Bytes segment(400);
        for (unsigned char &byte : segment) byte = static_cast<unsigned char>(generator());
        expectModel(segment);
    }
    for (int value = 0; value < 256; ++value) expectModel(Bytes(400, static_cast<unsigned char>(value)));
}

TEST(KelvaraDvSegment, DamagedSegmentsAreReadAsTheBitsSay) {
    std::mt19937 generator(6);
    for (int pass = 0; pass < 800; ++pass) {
        Bytes segment = dv::arrange(fittingBlocks(generator)).bytes;
        for (int i = drawn(generator, 1, 4); i > 0; --i)
            segment[drawn(generator, 0, 399)] ^= static_cast<unsigned char>(1 << drawn(generator, 0, 7));
        expectModel(segment);
    }
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

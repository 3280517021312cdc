// dvdamage_test.cpp - damaged DV segments: what of them is decoded, against a reader of single bits.

#include "dvdecoded.h"
#include "dvmodel.h"

#include <gtest/gtest.h>

namespace {

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

TEST(KelvaraDvDamage, AnUnknownCodeBreaksItsBlockAlone) {
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

TEST(KelvaraDvDamage, ALevelBehindTheBlockBreaksIt) {
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
TEST(KelvaraDvDamage, WithoutTheirEndsBlocksKeepWhatTheirAreasHold) {
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
TEST(KelvaraDvDamage, ABreakReachesThoseWhoseCodesCannotBeFound) {
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

TEST(KelvaraDvDamage, NoiseIsReadAsTheBitsSay) {
    std::mt19937 generator(5);
    for (int pass = 0; pass < 1000; ++pass) {
        Bytes segment(400);
        for (unsigned char &byte : segment) byte = static_cast<unsigned char>(generator());
        expectModel(segment);
    }
    for (int value = 0; value < 256; ++value) expectModel(Bytes(400, static_cast<unsigned char>(value)));
}

TEST(KelvaraDvDamage, DamagedSegmentsAreReadAsTheBitsSay) {
    std::mt19937 generator(6);
    for (int pass = 0; pass < 800; ++pass) {
        Bytes segment = dv::arrange(fittingBlocks(generator)).bytes;
        for (int i = drawn(generator, 1, 4); i > 0; --i)
            segment[drawn(generator, 0, 399)] ^= static_cast<unsigned char>(1 << drawn(generator, 0, 7));
        expectModel(segment);
    }
}

// h263bits_test.cpp - DC and reconstruction of H.263 blocks out of bit streams, and what all functions
// refuse.

#include "h263model.h"

using namespace h263;

// ---- DC --------------------------------------------------------------------------------

namespace {

Coded codedDc(int level, int offset = 0, Kel8u before = 0xA5) {
    return codedBy(
        [&](Kel8u **pp, int *o) { return keliEncodeDCIntra_H263_16s1u(static_cast<Kel16s>(level), pp, o); },
        offset, before);
}

struct DecodedDc {
    KelStatus status;
    int level;
    int bits;
};

DecodedDc decodedDc(const std::string &text, int offset = 0) {
    StreamEnd end;
    Kel8u *const stream = end.hold(bytesOf(std::string(offset, '1') + text)), *p = stream;
    int bit = offset;
    Kel16s level = -7;
    const KelStatus status = keliDecodeDCIntra_H263_1u16s(&p, &bit, &level);
    return {status, level, static_cast<int>(p - stream) * 8 + bit - offset};
}

} // namespace

TEST(KelvaraH263Dc, EachLevelHasItsCodeAndComesBack) {
    for (int level = 1; level <= 254; ++level) {
        for (int offset = 0; offset < 8; ++offset) {
            const Coded c = codedDc(level, offset, static_cast<Kel8u>(level * 37));
            ASSERT_EQ(kelStsNoErr, c.status);
            ASSERT_EQ(level == 128 ? "11111111" : field(level, 8), c.text());
            const DecodedDc d = decodedDc(c.text(), offset);
            ASSERT_EQ(kelStsNoErr, d.status);
            ASSERT_EQ(level, d.level);
            ASSERT_EQ(8, d.bits);
        }
    }
}

TEST(KelvaraH263Dc, LevelWithoutACodeTakesTheNearest) {
    for (int level : {-32768, -1, 0}) EXPECT_EQ("00000001", codedDc(level).text());
    for (int level : {255, 256, 32767}) EXPECT_EQ("11111110", codedDc(level).text());
}

TEST(KelvaraH263Dc, CodesThatStandForNoLevelAreErrors) {
    for (const char *code : {"00000000", "10000000"}) {
        for (int offset : {0, 5}) {
            const DecodedDc d = decodedDc(code, offset);
            EXPECT_EQ(kelStsBitStreamErr, d.status);
            EXPECT_EQ(-7, d.level);
            EXPECT_EQ(0, d.bits);
        }
    }
}

TEST(KelvaraH263Dc, BadArgumentsAreRefusedAndNothingIsWritten) {
    Bytes room(4, 0x5A);
    Kel8u *p = room.data(), *none = nullptr;
    int bit = 0;
    Kel16s level = -7;
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeDCIntra_H263_16s1u(2, nullptr, &bit));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeDCIntra_H263_16s1u(2, &none, &bit));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeDCIntra_H263_16s1u(2, &p, nullptr));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_H263_1u16s(nullptr, &bit, &level));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_H263_1u16s(&none, &bit, &level));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_H263_1u16s(&p, nullptr, &level));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_H263_1u16s(&p, &bit, nullptr));
    for (int offset : {-1, 8}) {
        bit = offset;
        EXPECT_EQ(kelStsRangeErr, keliEncodeDCIntra_H263_16s1u(2, &p, &bit));
        EXPECT_EQ(kelStsRangeErr, keliDecodeDCIntra_H263_1u16s(&p, &bit, &level));
        EXPECT_EQ(offset, bit);
    }
    EXPECT_EQ(Bytes(4, 0x5A), room);
    EXPECT_EQ(room.data(), p);
    EXPECT_EQ(-7, level);
}

// ---- reconstruction ----------------------------------------------------------------------

namespace {

const Coding inters[] = {{false, false, false}, {false, false, true}};
const Coding intras[] = {{true, false, false}, {true, false, true}, {true, true, false}, {true, true, true}};

// ITU-T H.263 6.2.1 and 6.2.2.
int modelCoefficient(int level, int quant) {
    const int magnitude = std::abs(level);
    int rec = quant % 2 ? quant * (2 * magnitude + 1) : quant * (2 * magnitude + 1) - 1;
    if (level == 0) rec = 0;
    if (level < 0) rec = -rec;
    return rec > 2047 ? 2047 : rec < -2048 ? -2048 : rec;
}

Levels modelCoefficients(const Coding &c, const Levels &levels, int quant) {
    Levels result;
    for (int i = 0; i < 64; ++i) {
        const int multiple = std::max(-32768, std::min(32767, 2 * quant * levels[i]));
        result[i] = static_cast<Kel16s>(c.adv ? multiple : modelCoefficient(levels[i], quant));
    }
    return c.first() ? withDc(result, 8 * levels[0]) : result;
}

Decoder reconstructor(const Coding &c, int QP, int scan = 0, int cbp = 1) {
    return [=](Kel8u **pp, int *o, Kel16s *block, int *last) {
        return c.intra
                   ? keliReconstructCoeffsIntra_H263_1u16s(pp, o, block, last, cbp, QP, c.adv, scan, c.mod)
                   : keliReconstructCoeffsInter_H263_1u16s(pp, o, block, last, QP, c.mod);
    };
}

void expectReconstruction(const Coding &c, std::mt19937 &generator, int QP) {
    Levels levels = randomLevels(generator, c.first(), c.low(), c.high());
    if (countNonZero(levels, c.first()) == 0) return;
    if (c.first()) levels[0] = static_cast<Kel16s>(between(generator, 1, 254));
    const int scan = c.intra ? between(generator, -1, 2) : 0;
    const std::string text = (c.first() ? dcText(levels[0]) : "") + blockText(c, levels, 64);
    const Decoded d = decodedText(reconstructor(c, QP, scan), text, between(generator, 0, 7));
    ASSERT_EQ(kelStsNoErr, d.status);
    ASSERT_EQ(placed(modelCoefficients(c, levels, QP), scan), d.block) << QP;
    ASSERT_EQ(lastPlace(levels), d.last);
    ASSERT_EQ(static_cast<int>(text.size()), d.bits);
}

} // namespace

TEST(KelvaraH263Reconstruct, InterBlocksAreThoseOfTheStandard) {
    std::mt19937 generator(5);
    for (const Coding &c : inters) {
        for (int pass = 0; pass < 1550; ++pass)
            ASSERT_NO_FATAL_FAILURE(expectReconstruction(c, generator, 1 + pass % 31));
    }
}

TEST(KelvaraH263Reconstruct, IntraBlocksAreThoseOfTheStandard) {
    std::mt19937 generator(6);
    for (const Coding &c : intras) {
        for (int pass = 0; pass < 1550; ++pass)
            ASSERT_NO_FATAL_FAILURE(expectReconstruction(c, generator, 1 + pass % 31));
    }
}

TEST(KelvaraH263Reconstruct, BlockWithoutCodedLevelsIsDcAlone) {
    for (const Coding &c : intras) {
        const Decoded d = decodedText(reconstructor(c, 31, -1, 0), "11111111");
        EXPECT_EQ(kelStsNoErr, d.status);
        EXPECT_EQ(withDc({}, c.adv ? 0 : 1024), d.block);
        EXPECT_EQ(c.adv ? -1 : 0, d.last);
        EXPECT_EQ(c.adv ? 0 : 8, d.bits) << "without DC and levels nothing is in the stream";
    }
}

TEST(KelvaraH263Reconstruct, MeetsTheErrorsOfDcAndLevels) {
    for (const Coding &c : intras) {
        expectRefused(reconstructor(c, 2), (c.adv ? "" : "00000001") + std::string("000000000000"));
        if (c.adv) continue;
        expectRefused(reconstructor(c, 2),
                      "00000000"
                      "0111"
                      "0");
        expectRefused(reconstructor(c, 2, 0, 0), "10000000");
    }
    for (const Coding &c : inters) expectRefused(reconstructor(c, 2), "000000000000");
}

// ---- arguments ---------------------------------------------------------------------------

namespace {

struct EncoderArguments {
    int offset = 0, count = 2, adv = 0, mod = 0, scan = -1;
};

void expectEncoderRefuses(const EncoderArguments &a, const Levels &block) {
    Bytes room(16, 0x5A);
    Kel8u *p = room.data();
    int bit = a.offset;
    EXPECT_EQ(kelStsRangeErr,
              keliEncodeCoeffsIntra_H263_16s1u(block.data(), &p, &bit, a.count, a.adv, a.mod, a.scan));
    if (a.adv == 0) {
        EXPECT_EQ(kelStsRangeErr,
                  keliEncodeCoeffsInter_H263_16s1u(block.data(), &p, &bit, a.count, a.mod, a.scan));
    }
    EXPECT_EQ(Bytes(16, 0x5A), room);
    EXPECT_EQ(room.data(), p);
    EXPECT_EQ(a.offset, bit);
}

} // namespace

TEST(KelvaraH263Vlc, BadArgumentsOfEncodersAreRefusedAndNothingIsWritten) {
    const Levels block = {9, 9};
    for (int offset : {-1, 8}) expectEncoderRefuses({offset, 2, 0, 0, -1}, block);
    for (int count : {-1, 65}) expectEncoderRefuses({0, count, 0, 0, -1}, block);
    for (int flag : {-1, 2}) expectEncoderRefuses({0, 2, flag, 0, -1}, block);
    for (int flag : {-1, 2}) expectEncoderRefuses({0, 2, 0, flag, -1}, block);
    for (int scan : {-2, 3}) expectEncoderRefuses({0, 2, 0, 0, scan}, block);
    for (int level : {-32768, -128, 128, 32767}) expectEncoderRefuses({}, {9, static_cast<Kel16s>(level)});
    for (int level : {-32768, -1025, 1024, 32767})
        expectEncoderRefuses({0, 2, 0, 1, -1}, {9, static_cast<Kel16s>(level)});
}

TEST(KelvaraH263Vlc, NullPointersOfEncodersGoFirst) {
    const Levels block = {9, 9};
    Kel8u byte = 0, *p = &byte, *none = nullptr;
    int bit = 0;
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsIntra_H263_16s1u(nullptr, &p, &bit, 99, 0, 0, -1));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsIntra_H263_16s1u(block.data(), nullptr, &bit, 2, 9, 0, -1));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsIntra_H263_16s1u(block.data(), &none, &bit, 2, 0, 9, -1));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsIntra_H263_16s1u(block.data(), &p, nullptr, 2, 0, 0, 9));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsInter_H263_16s1u(nullptr, &p, &bit, 99, 0, -1));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsInter_H263_16s1u(block.data(), nullptr, &bit, 2, 9, -1));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsInter_H263_16s1u(block.data(), &none, &bit, 2, 0, 9));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeCoeffsInter_H263_16s1u(block.data(), &p, nullptr, 2, 0, -1));
}

namespace {

// A call with good arguments but those that are told.
struct DecoderArguments {
    int offset = 0, QP = 2, adv = 0, mod = 0, scan = -1;
};
using ArgumentDecoder = std::function<KelStatus(Kel8u **, int *, Kel16s *, int *, const DecoderArguments &)>;

const ArgumentDecoder argumentDecoders[] = {
    [](Kel8u **pp, int *o, Kel16s *c, int *last, const DecoderArguments &a) {
        return keliDecodeCoeffsIntra_H263_1u16s(pp, o, c, last, a.adv, a.mod, a.scan);
    },
    [](Kel8u **pp, int *o, Kel16s *c, int *last, const DecoderArguments &a) {
        return keliDecodeCoeffsInter_H263_1u16s(pp, o, c, last, a.mod, a.scan);
    },
    [](Kel8u **pp, int *o, Kel16s *c, int *last, const DecoderArguments &a) {
        return keliReconstructCoeffsIntra_H263_1u16s(pp, o, c, last, 1, a.QP, a.adv, a.scan, a.mod);
    },
    [](Kel8u **pp, int *o, Kel16s *c, int *last, const DecoderArguments &a) {
        return keliReconstructCoeffsInter_H263_1u16s(pp, o, c, last, a.QP, a.mod);
    }};

struct Untouched {
    Bytes stream = bytesOf("00000001 01110");
    Kel8u *p = stream.data(), *none = nullptr;
    int bit = 0, last = 5;
    Destination<Kel16s> block{64};

    ~Untouched() {
        EXPECT_TRUE(block.untouched());
        EXPECT_EQ(stream.data(), p);
        EXPECT_EQ(5, last);
    }
};

void expectDecoderRefuses(int decoder, const DecoderArguments &a) {
    Untouched u;
    u.bit = a.offset;
    EXPECT_EQ(kelStsRangeErr, argumentDecoders[decoder](&u.p, &u.bit, u.block.data(), &u.last, a)) << decoder;
    EXPECT_EQ(a.offset, u.bit);
}

} // namespace

TEST(KelvaraH263Vlc, BadArgumentsOfDecodersAreRefusedAndNothingIsWritten) {
    for (int decoder = 0; decoder < 4; ++decoder) {
        const bool reconstructs = decoder >= 2, intra = decoder % 2 == 0;
        for (int offset : {-1, 8}) expectDecoderRefuses(decoder, {offset, 2, 0, 0, -1});
        for (int flag : {-1, 2}) {
            expectDecoderRefuses(decoder, {0, 2, 0, flag, -1});
            if (intra) expectDecoderRefuses(decoder, {0, 2, flag, 0, -1});
        }
        for (int scan : {-2, 3}) {
            if (intra || !reconstructs) expectDecoderRefuses(decoder, {0, 2, 0, 0, scan});
        }
        for (int QP : {-1, 0, 32}) {
            if (reconstructs) expectDecoderRefuses(decoder, {0, QP, 0, 0, -1});
        }
    }
}

TEST(KelvaraH263Vlc, NullPointersOfDecodersGoFirst) {
    const DecoderArguments bad{0, 99, 9, 9, 9};
    for (const ArgumentDecoder &decode : argumentDecoders) {
        Untouched u;
        EXPECT_EQ(kelStsNullPtrErr, decode(nullptr, &u.bit, u.block.data(), &u.last, bad));
        EXPECT_EQ(kelStsNullPtrErr, decode(&u.none, &u.bit, u.block.data(), &u.last, bad));
        EXPECT_EQ(kelStsNullPtrErr, decode(&u.p, nullptr, u.block.data(), &u.last, bad));
        EXPECT_EQ(kelStsNullPtrErr, decode(&u.p, &u.bit, nullptr, &u.last, bad));
        EXPECT_EQ(kelStsNullPtrErr, decode(&u.p, &u.bit, u.block.data(), nullptr, bad));
    }
}

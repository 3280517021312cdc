// h261vlc_test.cpp - coefficients of H.261 in bit streams, against codes as texts.

#include "h261model.h"

using namespace h261;

namespace {

// ---- the model -----------------------------------------------------------------------

// ITU-T H.261 4.2.4.1, formula by formula.
int modelCoefficient(int level, int quant) {
    int rec = 0;
    if (quant % 2) {
        if (level > 0) rec = quant * (2 * level + 1);
        if (level < 0) rec = quant * (2 * level - 1);
    } else {
        if (level > 0) rec = quant * (2 * level + 1) - 1;
        if (level < 0) rec = quant * (2 * level - 1) + 1;
    }
    return std::max(-2048, std::min(2047, rec));
}

// ---- the functions ---------------------------------------------------------------------

struct Kind {
    const char *name;
    bool intra;
    KelStatus (*encode)(const Kel16s *, Kel8u **, int *, int, int);
    KelStatus (*decode)(Kel8u **, int *, Kel16s *, int *, int);
    KelStatus (*reconstruct)(Kel8u **, int *, Kel16s *, int *, int);
};

const Kind kinds[] = {{"Intra", true, keliEncodeCoeffsIntra_H261_16s1u, keliDecodeCoeffsIntra_H261_1u16s,
                       keliReconstructCoeffsIntra_H261_1u16s},
                      {"Inter", false, keliEncodeCoeffsInter_H261_16s1u, keliDecodeCoeffsInter_H261_1u16s,
                       keliReconstructCoeffsInter_H261_1u16s}};

Coded coded(const Kind &kind, const Levels &block, int count, int scan = -1, int offset = 0,
            Kel8u before = 0xA5) {
    return codedBy([&](Kel8u **pp, int *o) { return kind.encode(block.data(), pp, o, count, scan); }, offset,
                   before);
}

Decoder decoder(const Kind &kind, int scan = -1) {
    return
        [&kind, scan](Kel8u **pp, int *o, Kel16s *c, int *last) { return kind.decode(pp, o, c, last, scan); };
}

Decoder reconstructor(const Kind &kind, int QP) {
    return [&kind, QP](Kel8u **pp, int *o, Kel16s *c, int *last) {
        return kind.reconstruct(pp, o, c, last, QP);
    };
}

Levels randomBlockOf(const Kind &kind, std::mt19937 &generator) {
    const Levels levels = randomLevels(generator, kind.intra, -127, 127);
    return kind.intra ? withDc(levels, between(generator, 1, 254)) : levels;
}

std::string textOf(const Kind &kind, const Levels &block, int count = 64) {
    const Coded c = coded(kind, block, count);
    EXPECT_EQ(kelStsNoErr, c.status);
    return c.text();
}

} // namespace

// ---- the table -----------------------------------------------------------------------

TEST(KelvaraH261Vlc, TableHasNoCodeThatBeginsAnotherAndLittleRoomLeft) {
    std::vector<std::string> codes = {endOfBlock, escape};
    for (const auto &[key, word] : words) codes.push_back(word);
    EXPECT_EQ(65u, codes.size());
    expectPrefixFree(codes);
    EXPECT_EQ((1 << 20) / 512 * 511, kraftSum(codes));
    std::vector<std::string> first = {"1", escape};
    for (const auto &[key, word] : words) {
        if (word != "11") first.push_back(word);
    }
    expectPrefixFree(first);
    EXPECT_EQ((1 << 20) / 512 * 511, kraftSum(first));
}

TEST(KelvaraH261Vlc, EachRunAndLevelHasTheCodeOfTheTableOrIsEscaped) {
    for (const Kind &kind : kinds) {
        for (int run = 0; run < 63; ++run) {
            for (int level = -127; level <= 127; ++level) {
                if (level == 0) continue;
                Levels block = withDc({}, kind.intra ? 77 : 0);
                block[run + kind.intra] = static_cast<Kel16s>(level);
                const std::string event = eventText(run, level, !kind.intra);
                ASSERT_EQ((kind.intra ? "01001101" : "") + event + "10", textOf(kind, block));
            }
        }
    }
}

TEST(KelvaraH261Vlc, KnownBlocksHaveTheirCodes) {
    const Kind &intra = kinds[0], &inter = kinds[1];
    EXPECT_EQ(
        "00000001"
        "10",
        textOf(intra, {1}));
    EXPECT_EQ(
        "11111111"
        "10",
        textOf(intra, {128}))
        << "10000000 is not used";
    EXPECT_EQ(
        "11111110"
        "110"
        "111"
        "10",
        textOf(intra, {254, 1, -1}))
        << "11 wherever DC stands first";
    EXPECT_EQ(
        "10"
        "10",
        textOf(inter, {1}));
    EXPECT_EQ(
        "11"
        "110"
        "10",
        textOf(inter, {-1, 1}))
        << "the short form only as the first";
    EXPECT_EQ(
        "0111"
        "10",
        textOf(inter, {0, -1}));
    EXPECT_EQ(
        "01000"
        "10",
        textOf(inter, {2}));
    EXPECT_EQ(
        "00000000101110"
        "10",
        textOf(inter, {15}));
    EXPECT_EQ(
        "000001"
        "000000"
        "00010000"
        "10",
        textOf(inter, {16}));
    EXPECT_EQ(
        "000001"
        "000001"
        "10000001"
        "10",
        textOf(inter, {0, -127}));
    EXPECT_EQ("", textOf(inter, {})) << "not in the stream";
    EXPECT_EQ(
        "00000001"
        "10",
        textOf(intra, {}))
        << "the lowest level that has a code";
}

// ---- both ways -----------------------------------------------------------------------

namespace {

// LAST is no part of the codes.
void expectBothWays(const Kind &kind) {
    StreamEnd end;
    std::mt19937 generator(1);
    SeenEvents seen, firsts;
    for (int pass = 0; pass < roundTrips; ++pass) {
        const Levels levels = randomBlockOf(kind, generator);
        const int scan = between(generator, -1, 0), offset = between(generator, 0, 7);
        const int all = countNonZero(levels, 0);
        const Levels block = placed(levels, scan);
        const Coded c = coded(kind, block, generator() % 2 ? all : 64, scan, offset);
        ASSERT_EQ(kelStsNoErr, c.status);
        const Decoded d = decodedBy(decoder(kind, scan), end.hold(c.bytes), offset);
        ASSERT_EQ(kelStsNoErr, d.status);
        ASSERT_EQ(block, d.block);
        ASSERT_EQ(lastPlace(levels), d.last);
        ASSERT_EQ(c.bits, d.bits);
        // The short form is not the table's code.
        const bool isShort = !kind.intra && std::abs(levels[0]) == 1;
        (isShort ? firsts : seen).add(levels, kind.intra);
    }
    for (const auto &[key, word] : words)
        EXPECT_TRUE(seen.has({0, key[1], key[2]}) || seen.has({1, key[1], key[2]})) << word;
    EXPECT_GT(seen.countBeside(words, 1, 127), 2500);
    EXPECT_EQ(!kind.intra, firsts.has({0, 0, 1})) << "the short form";
}

} // namespace

TEST(KelvaraH261Vlc, RandomIntraBlocksComeBackAndHaveEveryCode) {
    expectBothWays(kinds[0]);
}

TEST(KelvaraH261Vlc, RandomInterBlocksComeBackAndHaveEveryCode) {
    expectBothWays(kinds[1]);
}

TEST(KelvaraH261Vlc, StreamsAreThoseOfTheModel) {
    for (const Kind &kind : kinds) {
        std::mt19937 generator(2);
        for (int pass = 0; pass < 3000; ++pass) {
            const Levels levels = randomBlockOf(kind, generator);
            const int scan = between(generator, -1, 0), all = countNonZero(levels, 0);
            const int count = between(generator, 0, all), counted = count - (kind.intra && count > 0);
            const Coded c = coded(kind, placed(levels, scan), count, scan, between(generator, 0, 7),
                                  static_cast<Kel8u>(generator()));
            ASSERT_EQ(kelStsNoErr, c.status);
            ASSERT_EQ(blockText(levels, kind.intra, counted), c.text()) << count << " of " << all;
        }
    }
}

// DC is one of the counted levels only where it is not 0.
TEST(KelvaraH261Vlc, CountHasDcOnlyIfItIsThere) {
    EXPECT_EQ(dcText(5) + endOfBlock, textOf(kinds[0], {5, 9, 9}, 1));
    EXPECT_EQ(dcText(1) + eventText(0, 9, false) + endOfBlock, textOf(kinds[0], {0, 9, 9}, 1));
    EXPECT_EQ(dcText(5) + endOfBlock, textOf(kinds[0], {5, 9, 9}, 0));
}

TEST(KelvaraH261Vlc, DcWithoutACodeTakesTheNearest) {
    for (int dc : {-32768, -127, -1, 0}) EXPECT_EQ("0000000110", textOf(kinds[0], withDc({}, dc)));
    for (int dc : {255, 256, 32767}) EXPECT_EQ("1111111010", textOf(kinds[0], withDc({}, dc)));
}

// ---- any bits --------------------------------------------------------------------------

namespace {

// Codes as they may follow one another, and now and then something else.
std::string likelyText(std::mt19937 &generator, const Kind &kind) {
    std::string text = kind.intra ? dcText(between(generator, 1, 254)) : "";
    const unsigned disturbance = generator() % 3 ? 1000 : 20;
    while (text.size() < 8 * 200) {
        auto word = words.begin();
        std::advance(word, generator() % words.size());
        if (generator() % 4 == 0) word = words.begin();
        if (generator() % 8 == 0) text += escape + field(between(generator, 0, 3), 6) + field(generator(), 8);
        text += word->second + sign(generator() % 2 ? 1 : -1);
        if (generator() % disturbance == 0) text += field(generator(), between(generator, 1, 20));
        if (generator() % 30 == 0) text += endOfBlock;
    }
    return text;
}

void expectAsModel(const Kind &kind, const std::string &text, int &blocks, int &errors) {
    Levels levels;
    int last = 0;
    Parser parser(text);
    const bool good = parser.block(kind.intra, levels, last);
    const Decoded d = decodedText(decoder(kind), text);
    ASSERT_EQ(good ? kelStsNoErr : kelStsBitStreamErr, d.status) << text;
    ++(good ? blocks : errors);
    if (!good) return;
    ASSERT_EQ(levels, d.block);
    ASSERT_EQ(last, d.last);
    ASSERT_EQ(parser.bits(), d.bits);
    ASSERT_EQ(kelStsNoErr, decodedText(decoder(kind), text.substr(0, d.bits)).status) << "it needs no more";
}

} // namespace

TEST(KelvaraH261Vlc, RandomBitsAreABlockOrAnError) {
    for (const Kind &kind : kinds) {
        std::mt19937 generator(3);
        int blocks = 0, errors = 0;
        for (int pass = 0; pass < 1500; ++pass) {
            const std::string text =
                pass % 2 ? bitsOf(randomBytes(generator, 200)) : likelyText(generator, kind);
            ASSERT_NO_FATAL_FAILURE(expectAsModel(kind, text, blocks, errors));
        }
        EXPECT_GT(blocks, 250);
        EXPECT_GT(errors, 75);
    }
}

TEST(KelvaraH261Vlc, StreamsThatBreakOffAreABlockOrAnError) {
    for (const Kind &kind : kinds) {
        std::mt19937 generator(4);
        int blocks = 0, errors = 0;
        for (int pass = 0; pass < 1000; ++pass) {
            const std::string whole = blockText(randomBlockOf(kind, generator), kind.intra, 64);
            std::string text = whole.substr(0, between(generator, 0, static_cast<int>(whole.size())));
            text.resize(8 * 200, pass % 2 ? '0' : '1');
            ASSERT_NO_FATAL_FAILURE(expectAsModel(kind, text, blocks, errors));
        }
        EXPECT_GT(errors, 200);
    }
}

TEST(KelvaraH261Vlc, CodesThatCannotBeAreErrors) {
    const Decoder intra = decoder(kinds[0]), inter = decoder(kinds[1]);
    expectRefused(intra,
                  "00000000"
                  "10");
    expectRefused(intra,
                  "10000000"
                  "10");
    expectRefused(inter,
                  "000001"
                  "000000"
                  "00000000"
                  "10");
    expectRefused(inter,
                  "000001"
                  "000000"
                  "10000000"
                  "10");
    expectRefused(inter, "0000000000000");
    expectRefused(inter, "0000000001111");
    expectRefused(inter,
                  "10"
                  "000001"
                  "111111"
                  "00000001");
    expectRefused(intra,
                  "00000001"
                  "000001"
                  "111111"
                  "00000001");
}

TEST(KelvaraH261Vlc, RunsUpToTheEndOfTheBlockAreNoError) {
    const Decoded inter = decodedText(decoder(kinds[1]),
                                      "000001"
                                      "111111"
                                      "00000001"
                                      "10");
    EXPECT_EQ(kelStsNoErr, inter.status);
    EXPECT_EQ(63, inter.last);
    EXPECT_EQ(1, inter.block[63]);
    const Decoded intra = decodedText(decoder(kinds[0]),
                                      "00000001"
                                      "000001"
                                      "111110"
                                      "00000001"
                                      "10");
    EXPECT_EQ(kelStsNoErr, intra.status);
    EXPECT_EQ(63, intra.last);
    EXPECT_EQ(kelStsBitStreamErr, decodedText(decoder(kinds[1]),
                                              "000001"
                                              "111111"
                                              "00000001"
                                              "110"
                                              "10")
                                      .status)
        << "a level behind the last place";
}

TEST(KelvaraH261Vlc, LongestBlockIsReadToItsEndAndNotFurther) {
    Levels levels;
    for (int i = 0; i < 64; ++i) levels[i] = static_cast<Kel16s>(i % 2 ? -100 : 100);
    for (const Kind &kind : kinds) {
        const Coded c = coded(kind, levels, 64, -1, 7);
        ASSERT_EQ(kelStsNoErr, c.status);
        EXPECT_EQ(kind.intra ? 8 + 63 * 20 + 2 : 64 * 20 + 2, c.bits);
        EXPECT_EQ(levels, decodedText(decoder(kind), c.text(), 7).block);
    }
}

// ---- reconstruction --------------------------------------------------------------------

TEST(KelvaraH261Vlc, ReconstructionIsThatOfTheStandard) {
    for (const Kind &kind : kinds) {
        std::mt19937 generator(5);
        for (int QP = 1; QP <= 31; ++QP) {
            for (int pass = 0; pass < 60; ++pass) {
                const Levels levels = randomBlockOf(kind, generator);
                if (countNonZero(levels, 0) == 0) continue;
                Levels expected;
                for (int i = 0; i < 64; ++i)
                    expected[i] = static_cast<Kel16s>(modelCoefficient(levels[i], QP));
                if (kind.intra) expected[0] = static_cast<Kel16s>(8 * levels[0]);
                const std::string text = blockText(levels, kind.intra, 64);
                const Decoded d = decodedText(reconstructor(kind, QP), text, between(generator, 0, 7));
                ASSERT_EQ(kelStsNoErr, d.status);
                ASSERT_EQ(placed(expected, 0), d.block) << QP;
                ASSERT_EQ(lastPlace(levels), d.last);
                ASSERT_EQ(static_cast<int>(text.size()), d.bits);
            }
        }
    }
}

TEST(KelvaraH261Vlc, CoefficientsAreLimited) {
    const Decoded d =
        decodedText(reconstructor(kinds[1], 31), blockText({127, -127, 33, -33, 32}, false, 64));
    EXPECT_EQ(placed({2047, -2048, 2047, -2048, 2015}, 0), d.block);
}

TEST(KelvaraH261Vlc, ReconstructionMeetsTheSameErrors) {
    for (const Kind &kind : kinds) {
        expectRefused(reconstructor(kind, 2), "0000000000000");
        expectRefused(reconstructor(kind, 2),
                      (kind.intra ? "00000001" : "") + std::string("00000000011110000"));
    }
}

// ---- arguments ---------------------------------------------------------------------------

TEST(KelvaraH261Vlc, BadArgumentsOfEncodersAreRefusedAndNothingIsWritten) {
    for (const Kind &kind : kinds) {
        Levels block = {9, 9};
        const auto status = [&](int offset, int count, int scan) {
            Bytes room(16, 0x5A);
            Kel8u *p = room.data();
            int bit = offset;
            const KelStatus result = kind.encode(block.data(), &p, &bit, count, scan);
            EXPECT_EQ(Bytes(16, 0x5A), room);
            EXPECT_EQ(room.data(), p);
            EXPECT_EQ(offset, bit);
            return result;
        };
        for (int offset : {-1, 8}) EXPECT_EQ(kelStsRangeErr, status(offset, 2, -1));
        for (int count : {-1, 65}) EXPECT_EQ(kelStsRangeErr, status(0, count, -1));
        for (int scan : {-2, 1, 2, 3}) EXPECT_EQ(kelStsRangeErr, status(0, 2, scan));
        for (int level : {-32768, -128, 128, 32767}) {
            block[1] = static_cast<Kel16s>(level);
            EXPECT_EQ(kelStsRangeErr, status(0, 2, -1));
        }
        Kel8u *p = nullptr;
        int bit = 0;
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(block.data(), &p, &bit, 99, -1)) << "null goes first";
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(block.data(), nullptr, &bit, 2, -1));
        Kel8u byte = 0;
        p = &byte;
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(block.data(), &p, nullptr, 2, -1));
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(nullptr, &p, &bit, 2, -1));
    }
}

namespace {

// The last argument is a scan or a QP.
void expectDecoderChecks(KelStatus (*decode)(Kel8u **, int *, Kel16s *, int *, int), int good,
                         const std::vector<int> &bad) {
    Bytes stream = bytesOf("00000001 10");
    Kel8u *p = stream.data(), *none = nullptr;
    int bit = 0, last = 5;
    Destination<Kel16s> block(64);
    EXPECT_EQ(kelStsNullPtrErr, decode(nullptr, &bit, block.data(), &last, bad[0])) << "null goes first";
    EXPECT_EQ(kelStsNullPtrErr, decode(&none, &bit, block.data(), &last, good));
    EXPECT_EQ(kelStsNullPtrErr, decode(&p, nullptr, block.data(), &last, good));
    EXPECT_EQ(kelStsNullPtrErr, decode(&p, &bit, nullptr, &last, good));
    EXPECT_EQ(kelStsNullPtrErr, decode(&p, &bit, block.data(), nullptr, good));
    for (int argument : bad) EXPECT_EQ(kelStsRangeErr, decode(&p, &bit, block.data(), &last, argument));
    for (int offset : {-1, 8}) {
        bit = offset;
        EXPECT_EQ(kelStsRangeErr, decode(&p, &bit, block.data(), &last, good));
    }
    EXPECT_TRUE(block.untouched());
    EXPECT_EQ(stream.data(), p);
    EXPECT_EQ(5, last);
}

} // namespace

TEST(KelvaraH261Vlc, BadArgumentsOfDecodersAreRefusedAndNothingIsWritten) {
    for (const Kind &kind : kinds) {
        expectDecoderChecks(kind.decode, -1, {-2, 1, 2, 3});
        expectDecoderChecks(kind.reconstruct, 2, {0, 32, -1});
    }
}

// h263vlc_test.cpp - coefficients of H.263 in bit streams, against codes as texts.

#include "h263model.h"

using namespace h263;

namespace {

// All ways in which a block is coded.
const Coding codings[] = {{false, false, false}, {false, false, true}, {true, false, false},
                          {true, false, true},   {true, true, false},  {true, true, true}};

KelStatus encode(const Coding &c, const Kel16s *block, Kel8u **pp, int *offset, int count, int scan) {
    return c.intra ? keliEncodeCoeffsIntra_H263_16s1u(block, pp, offset, count, c.adv, c.mod, scan)
                   : keliEncodeCoeffsInter_H263_16s1u(block, pp, offset, count, c.mod, scan);
}

KelStatus decode(const Coding &c, Kel8u **pp, int *offset, Kel16s *block, int *last, int scan) {
    return c.intra ? keliDecodeCoeffsIntra_H263_1u16s(pp, offset, block, last, c.adv, c.mod, scan)
                   : keliDecodeCoeffsInter_H263_1u16s(pp, offset, block, last, c.mod, scan);
}

Coded coded(const Coding &c, const Levels &block, int count = 64, int scan = -1, int offset = 0,
            Kel8u before = 0xA5) {
    return codedBy([&](Kel8u **pp, int *o) { return encode(c, block.data(), pp, o, count, scan); }, offset,
                   before);
}

Decoder decoder(const Coding &c, int scan = -1) {
    return [&c, scan](Kel8u **pp, int *o, Kel16s *block, int *last) {
        return decode(c, pp, o, block, last, scan);
    };
}

std::string textOf(const Coding &c, const Levels &block) {
    const Coded result = coded(c, block);
    EXPECT_EQ(kelStsNoErr, result.status);
    return result.text();
}

// What decodedBy leaves where nothing is written.
const int mark = -21846;

Levels decodable(const Coding &c, const Levels &levels) {
    return c.first() ? withDc(levels, mark) : levels;
}

Levels randomBlockOf(const Coding &c, std::mt19937 &generator) {
    return randomLevels(generator, c.first(), c.low(), c.high());
}

// One that is in the stream.
Levels randomBlockWithLevelsOf(const Coding &c, std::mt19937 &generator) {
    Levels levels;
    do levels = randomBlockOf(c, generator);
    while (countNonZero(levels, c.first()) == 0);
    return levels;
}

const Coding &interCoding = codings[0], &extendedCoding = codings[1];
const Coding &intraCoding = codings[2], &advancedCoding = codings[4];

} // namespace

// ---- the tables ------------------------------------------------------------------------

TEST(KelvaraH263Vlc, TablesHaveNoCodeThatBeginsAnotherAndLittleRoomLeft) {
    for (const Words *words : {&inter, &advanced}) {
        std::vector<std::string> codes = {escape};
        for (const auto &[key, word] : *words) codes.push_back(word);
        EXPECT_EQ(103u, codes.size());
        expectPrefixFree(codes);
        EXPECT_EQ((1 << 20) / 512 * 511, kraftSum(codes));
    }
}

// ITU-T H.263 Annex I: the codes stay, and what they say of LAST.
TEST(KelvaraH263Vlc, BothTablesHaveTheSameCodes) {
    std::map<std::string, int> lastOf[2];
    for (const auto &[key, word] : inter) lastOf[0][word] = key[0];
    for (const auto &[key, word] : advanced) lastOf[1][word] = key[0];
    EXPECT_EQ(lastOf[0], lastOf[1]);
}

TEST(KelvaraH263Vlc, EachEventHasTheCodeOfItsTableOrIsEscaped) {
    for (const Coding &c : codings) {
        const std::string lastOne = eventText(c, 1, 0, -1);
        for (int run = 0; run < 62; ++run) {
            for (int level = c.low(); level <= c.high(); level += std::abs(level) < 40 ? 1 : 29) {
                if (level == 0) continue;
                Levels block{};
                block[run + c.first()] = static_cast<Kel16s>(level);
                ASSERT_EQ(eventText(c, 1, run, level), textOf(c, block));
                block[run + c.first() + 1] = -1;
                ASSERT_EQ(eventText(c, 0, run, level) + lastOne, textOf(c, block));
            }
        }
    }
}

TEST(KelvaraH263Vlc, KnownBlocksHaveTheirCodes) {
    EXPECT_EQ(
        "0111"
        "0",
        textOf(interCoding, {1}));
    EXPECT_EQ(
        "0111"
        "1",
        textOf(intraCoding, {99, -1}))
        << "without DC";
    EXPECT_EQ(
        "10"
        "0"
        "0111"
        "1",
        textOf(interCoding, {1, -1}));
    EXPECT_EQ(
        "1111"
        "1"
        "110"
        "0"
        "001111"
        "0",
        textOf(interCoding, {-2, 0, 1, 0, 1}));
    EXPECT_EQ(
        "110"
        "1"
        "1110"
        "0"
        "001111"
        "0",
        textOf(advancedCoding, {-2, 3, 0, 1}));
    EXPECT_EQ(
        "0000011"
        "1"
        "000000"
        "00000100",
        textOf(interCoding, {4}));
    EXPECT_EQ(
        "0000011"
        "1"
        "000000"
        "10000001",
        textOf(extendedCoding, {-127}));
    EXPECT_EQ("", textOf(interCoding, {})) << "not in the stream";
    EXPECT_EQ("", textOf(intraCoding, {99}));
}

// T.4: the lowest five bits go first, so that zeros do not follow zeros.
TEST(KelvaraH263Vlc, LevelsBeyondTheEscapeCodeAreExtended) {
    const std::string start =
        "0000011"
        "1"
        "000000"
        "10000000";
    EXPECT_EQ(start +
                  "00000"
                  "000100",
              textOf(extendedCoding, {128}));
    EXPECT_EQ(start +
                  "11111"
                  "111011",
              textOf(extendedCoding, {-129}));
    EXPECT_EQ(start +
                  "11111"
                  "011111",
              textOf(extendedCoding, {1023}));
    EXPECT_EQ(start +
                  "00000"
                  "100000",
              textOf(extendedCoding, {-1024}));
    EXPECT_EQ(start +
                  "00001"
                  "001000",
              textOf(extendedCoding, {257}));
}

// ---- both ways -------------------------------------------------------------------------

namespace {

void expectBothWays(const Coding &c) {
    StreamEnd end;
    std::mt19937 generator(1);
    SeenEvents seen;
    for (int pass = 0; pass < roundTrips; ++pass) {
        const Levels levels = randomBlockWithLevelsOf(c, generator);
        const int scan = between(generator, -1, 2), offset = between(generator, 0, 7);
        const int all = countNonZero(levels, c.first());
        const Levels block = placed(levels, scan);
        const Coded result = coded(c, block, generator() % 2 ? all : 64, scan, offset);
        ASSERT_EQ(kelStsNoErr, result.status);
        const Decoded d = decodedBy(decoder(c, scan), end.hold(result.bytes), offset);
        ASSERT_EQ(kelStsNoErr, d.status);
        ASSERT_EQ(decodable(c, block), d.block);
        ASSERT_EQ(lastPlace(levels), d.last);
        ASSERT_EQ(result.bits, d.bits);
        seen.add(levels, c.first());
    }
    for (const auto &[key, word] : c.words()) EXPECT_TRUE(seen.has(key)) << word;
    EXPECT_GT(seen.countBeside(c.words(), 1, 127), 2500) << "escaped";
    EXPECT_EQ(c.mod, seen.countBeside(c.words(), 128, 1024) > 1000) << "extended";
}

} // namespace

TEST(KelvaraH263Vlc, RandomInterBlocksComeBackAndHaveEveryCode) {
    expectBothWays({false, false, false});
}
TEST(KelvaraH263Vlc, RandomIntraBlocksComeBackAndHaveEveryCode) {
    expectBothWays({true, false, false});
}
TEST(KelvaraH263Vlc, RandomAdvancedIntraBlocksComeBackAndHaveEveryCode) {
    expectBothWays({true, true, false});
}
TEST(KelvaraH263Vlc, RandomInterBlocksOfLongLevelsComeBackAndHaveEveryCode) {
    expectBothWays({false, false, true});
}
TEST(KelvaraH263Vlc, RandomIntraBlocksOfLongLevelsComeBackAndHaveEveryCode) {
    expectBothWays({true, false, true});
}
TEST(KelvaraH263Vlc, RandomAdvancedIntraBlocksOfLongLevelsComeBackAndHaveEveryCode) {
    expectBothWays({true, true, true});
}

TEST(KelvaraH263Vlc, StreamsAreThoseOfTheModel) {
    for (const Coding &c : codings) {
        std::mt19937 generator(2);
        for (int pass = 0; pass < 2000; ++pass) {
            const Levels levels = withDc(randomBlockOf(c, generator), 3);
            const int scan = between(generator, -1, 2), all = countNonZero(levels, c.first());
            const int count = between(generator, 0, all);
            const Coded result = coded(c, placed(levels, scan), count, scan, between(generator, 0, 7),
                                       static_cast<Kel8u>(generator()));
            ASSERT_EQ(kelStsNoErr, result.status);
            ASSERT_EQ(blockText(c, levels, count), result.text()) << count << " of " << all;
        }
    }
}

// ---- any bits ----------------------------------------------------------------------------

namespace {

// Codes as they may follow one another, and now and then something else.
std::string likelyText(std::mt19937 &generator, const Coding &c) {
    std::string text;
    const unsigned disturbance = generator() % 3 ? 1000 : 20;
    while (text.size() < 8 * streamBytes) {
        const int last = generator() % 16 == 0;
        if (generator() % 8 == 0) {
            text += escape + field(last, 1) + field(between(generator, 0, 3), 6) + field(generator(), 8);
            continue;
        }
        auto word = c.words().lower_bound({last, 0, 0});
        std::advance(word, generator() % 4 == 0 ? 0 : generator() % (last ? 44 : 58));
        text += word->second + field(generator(), 1);
        if (generator() % disturbance == 0) text += field(generator(), between(generator, 1, 20));
        if (generator() % 30 == 0)
            text += escape + field(last, 1) + "00000110000000" + field(generator(), 11);
    }
    return text;
}

void expectAsModel(const Coding &c, const std::string &text, int &blocks, int &errors) {
    Levels levels;
    int last = 0;
    Parser parser(c, text);
    const bool good = parser.block(levels, last);
    const Decoded d = decodedText(decoder(c), text);
    ASSERT_EQ(good ? kelStsNoErr : kelStsBitStreamErr, d.status) << text;
    ++(good ? blocks : errors);
    if (!good) return;
    ASSERT_EQ(decodable(c, levels), d.block);
    ASSERT_EQ(last, d.last);
    ASSERT_EQ(parser.bits(), d.bits);
    ASSERT_EQ(kelStsNoErr, decodedText(decoder(c), text.substr(0, d.bits)).status) << "it needs no more";
}

} // namespace

TEST(KelvaraH263Vlc, RandomBitsAreABlockOrAnError) {
    for (const Coding &c : codings) {
        std::mt19937 generator(3);
        int blocks = 0, errors = 0;
        for (int pass = 0; pass < 400; ++pass) {
            const std::string text =
                pass % 2 ? bitsOf(randomBytes(generator, streamBytes)) : likelyText(generator, c);
            ASSERT_NO_FATAL_FAILURE(expectAsModel(c, text, blocks, errors));
        }
        EXPECT_GT(blocks, 100);
        EXPECT_GT(errors, 20);
    }
}

TEST(KelvaraH263Vlc, StreamsThatBreakOffAreABlockOrAnError) {
    for (const Coding &c : codings) {
        std::mt19937 generator(4);
        int blocks = 0, errors = 0;
        for (int pass = 0; pass < 300; ++pass) {
            const std::string whole = blockText(c, randomBlockOf(c, generator), 64);
            std::string text = whole.substr(0, between(generator, 0, static_cast<int>(whole.size())));
            text.resize(8 * streamBytes, pass % 2 ? '0' : '1');
            ASSERT_NO_FATAL_FAILURE(expectAsModel(c, text, blocks, errors));
        }
        EXPECT_GT(errors, 20);
    }
}

TEST(KelvaraH263Vlc, CodesThatCannotBeAreErrors) {
    for (const Coding &c : codings) {
        expectRefused(decoder(c), "000000000000");
        expectRefused(decoder(c), "000000000111");
        expectRefused(decoder(c), escape +
                                      "1"
                                      "000000"
                                      "00000000");
        expectRefused(decoder(c), escape +
                                      "1"
                                      "000000"
                                      "10000000"
                                      "00000"
                                      "000000");
        expectRefused(decoder(c), escape +
                                      "0"
                                      "111110"
                                      "00000001" +
                                      escape +
                                      "1"
                                      "000001"
                                      "00000001");
    }
    for (const Coding *c : {&codings[0], &codings[2], &codings[4]})
        expectRefused(decoder(*c), escape +
                                       "1"
                                       "000000"
                                       "10000000"
                                       "00000"
                                       "000100");
    expectRefused(decoder(intraCoding), escape +
                                            "1"
                                            "111111"
                                            "00000001");
}

TEST(KelvaraH263Vlc, RunsUpToTheEndOfTheBlockAreNoError) {
    for (const Coding &c : codings) {
        const std::string run = field(63 - c.first(), 6);
        const Decoded d = decodedText(decoder(c), escape + "1" + run + "00000001");
        EXPECT_EQ(kelStsNoErr, d.status);
        EXPECT_EQ(63, d.last);
        EXPECT_EQ(1, d.block[63]);
        expectRefused(decoder(c), escape + "0" + run + "00000001"); // and no level can follow
    }
}

// 264 bytes and a bit begun: nobody reads on where the 64th level is not the last.
TEST(KelvaraH263Vlc, LongestBlockIsReadToItsEndAndNotFurther) {
    for (const Coding &c : codings) {
        Levels levels;
        levels.fill(static_cast<Kel16s>(c.low()));
        const Coded result = coded(c, levels, 64, -1, 7);
        EXPECT_EQ((64 - c.first()) * (c.mod ? 33 : 22), result.bits);
        std::string text = result.text();
        EXPECT_EQ(decodable(c, levels), decodedText(decoder(c), text, 7).block);
        text[text.size() - (c.mod ? 33 : 22) + 7] = '0';
        EXPECT_EQ(kelStsBitStreamErr, decodedText(decoder(c), text, 7).status);
    }
}

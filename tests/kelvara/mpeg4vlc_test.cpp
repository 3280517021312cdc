// mpeg4vlc_test.cpp - coefficients of MPEG-4 blocks in bit streams: both ways, and what is no block.

#include "mpeg4kinds.h"

using namespace mpeg4;

namespace {

// Which events blocks have had, by the form of their codes: 0 a word of the table, 1 to 3 an escape.
class Coverage {
public:
    explicit Coverage(const Kind &kind) : m_kind(kind) {}

    void add(const Levels &levels) {
        int run = 0, last = lastPlace(levels);
        for (int place = m_kind.first; place <= last; ++place, ++run) {
            if (levels[place] == 0) continue;
            addOnce({place == last, run, levels[place]});
            run = -1;
        }
    }
    void expectAll() const {
        EXPECT_EQ(2 * m_kind.codes().words.size(), m_events[0]) << "with both signs";
        for (int form = 1; form < 3; ++form) EXPECT_EQ(!m_kind.rvlc, m_events[form] > 0) << form;
        EXPECT_GT(m_events[3], 1000u);
    }

private:
    void addOnce(const ModelEvent &e) {
        const size_t index = static_cast<size_t>((e.last * 64 + e.run) * 4096 + e.level + 2048);
        if (m_seen[index]) return;
        m_seen[index] = true;
        ++m_events[m_kind.codes().formOf(e)];
    }

    const Kind &m_kind;
    std::vector<bool> m_seen = std::vector<bool>(2 * 64 * 4096);
    size_t m_events[4] = {};
};

// The stream ends in front of a forbidden page.
void expectRoundTrip(const Kind &kind, const Levels &levels, int scan, int offset) {
    static StreamEnd end;
    static Bytes room(streamBytes);
    const Levels block = placed(levels, scan);
    Kel8u *p = room.data();
    int bit = offset;
    ASSERT_EQ(kelStsNoErr, kind.encode(block.data(), &p, &bit, countNonZero(levels, kind.first), scan));
    const Decoded d = decodedBy(kind.decoder(scan), end.hold(Bytes(room.data(), p + (bit > 0))), offset);
    ASSERT_EQ(kelStsNoErr, d.status);
    ASSERT_EQ(placed(marked(kind, levels), scan), d.block);
    ASSERT_EQ(lastPlace(levels), d.last);
    ASSERT_EQ((p - room.data()) * 8 + bit - offset, d.bits);
}

// So many for each scan.
void expectRoundTrips(const Kind &kind) {
    Coverage coverage(kind);
    for (int scan = -1; scan <= 2; ++scan) {
        SCOPED_TRACE(testing::Message() << kind.name << ", scan " << scan);
        std::mt19937 generator(static_cast<unsigned>(scan + 10));
        for (int pass = 0; pass < roundTrips; ++pass) {
            const Levels levels = randomLevelsOf(kind, generator);
            expectRoundTrip(kind, levels, scan, pass % 8);
            if (testing::Test::HasFatalFailure()) return;
            coverage.add(levels);
        }
    }
    coverage.expectAll();
}

// ---- bits that are anything ------------------------------------------------------------

std::string randomText(std::mt19937 &generator, size_t n) {
    return bitsOf(randomBytes(generator, n / 8 + 1)).substr(0, n);
}

// Noise, or a block with bits turned over, and noise behind it or, for backward reading, in front.
std::string spoiltText(const Kind &kind, std::mt19937 &generator, bool backward) {
    std::string text;
    if (generator() % 4 > 0) text = blockText(kind.codes(), randomLevelsOf(kind, generator), kind.first);
    for (int turned = between(generator, 0, 3); turned > 0 && !text.empty(); --turned) {
        text[generator() % text.size()] ^= 1;
    }
    const size_t cut = generator() % 4 ? 0 : generator() % (text.size() + 1);
    const std::string noise = randomText(generator, 64 * 30 + 40);
    return backward ? noise + text.substr(cut) : text.substr(0, text.size() - cut) + noise;
}

void expectParsed(const Kind &kind, const Parsed &expected, const Decoded &d) {
    ASSERT_EQ(expected.good ? kelStsNoErr : kelStsBitStreamErr, d.status);
    if (!expected.good) return;
    ASSERT_EQ(marked(kind, expected.levels), d.block);
    ASSERT_EQ(expected.last, d.last);
    ASSERT_EQ(static_cast<int>(expected.bits), std::abs(d.bits));
}

// The bytes that the bits to be seen lie in stand in front of a forbidden page.
void expectSpoiltIsJudged(const Kind &kind, const std::string &text, int offset) {
    const Parsed expected = parsed(kind.codes(), text, kind.first);
    const Decoded d = decodedText(kind.decoder(), text.substr(0, expected.seen), offset);
    expectParsed(kind, expected, d);
}

// The same behind a forbidden page; offset is that of the last bit.
void expectSpoiltIsJudgedBackwards(const Kind &kind, const std::string &text, int offset) {
    static const GuardedStream room(4096, true);
    const Parsed expected = parsedBackwards(kind.codes(), text, kind.first);
    std::string seen = text.substr(text.size() - expected.seen) + std::string(7 - offset, '1');
    seen.insert(0, (8 - seen.size() % 8) % 8, '1');
    const Bytes bytes = bytesOf(seen);
    std::copy(bytes.begin(), bytes.end(), room.data());
    const Decoded d = decodedBy(kind.backwardDecoder(), room.data() + bytes.size() - 1, offset);
    expectParsed(kind, expected, d);
}

Bytes streamOf(const std::vector<std::string> &blocks, int offset) {
    std::string text(static_cast<size_t>(offset), '1');
    for (const std::string &block : blocks) text += block;
    return bytesOf(text);
}

} // namespace

// ---- both ways -----------------------------------------------------------------------

TEST(KelvaraMpeg4Vlc, RandomIntraBlocksComeBackAndHaveEveryCode) {
    expectRoundTrips(kinds[0]);
}

TEST(KelvaraMpeg4Vlc, RandomIntraBlocksWithDcApartComeBackAndHaveEveryCode) {
    expectRoundTrips(kinds[1]);
}

TEST(KelvaraMpeg4Vlc, RandomInterBlocksComeBackAndHaveEveryCode) {
    expectRoundTrips(kinds[2]);
}

TEST(KelvaraMpeg4Vlc, RandomReversibleIntraBlocksComeBackAndHaveEveryCode) {
    expectRoundTrips(kinds[3]);
}

TEST(KelvaraMpeg4Vlc, RandomReversibleIntraBlocksWithDcApartComeBackAndHaveEveryCode) {
    expectRoundTrips(kinds[4]);
}

TEST(KelvaraMpeg4Vlc, RandomReversibleInterBlocksComeBackAndHaveEveryCode) {
    expectRoundTrips(kinds[5]);
}

TEST(KelvaraMpeg4Vlc, RandomBlocksHaveTheCodesOfTheStandard) {
    for (const Kind &kind : kinds) {
        SCOPED_TRACE(kind.name);
        std::mt19937 generator(2);
        for (int pass = 0; pass < 2000; ++pass) {
            const Levels levels = randomLevelsOf(kind, generator);
            const int offset = between(generator, 0, 7), count = between(generator, 0, 64);
            const Coded c = coded(kind, levels, count, -1, offset, static_cast<Kel8u>(generator()));
            ASSERT_EQ(blockText(kind.codes(), levels, kind.first, count), c.text());
        }
    }
}

TEST(KelvaraMpeg4Vlc, ReversibleCodesGiveTheSameFromTheirEnd) {
    for (const Kind &kind : reversibleKinds()) {
        SCOPED_TRACE(kind.name);
        std::mt19937 generator(3);
        Coverage coverage(kind);
        for (int pass = 0; pass < 6000; ++pass) {
            std::vector<Levels> blocks;
            std::vector<std::string> texts;
            for (int i = 0; i < 4; ++i) {
                blocks.push_back(randomLevelsOf(kind, generator));
                texts.push_back(textOf(kind, blocks.back()));
            }
            const int offset = between(generator, 0, 7);
            const Bytes bytes = streamOf(texts, offset);
            Kel8u *p = const_cast<Kel8u *>(bytes.data());
            int bit = offset +
                      static_cast<int>(texts[0].size() + texts[1].size() + texts[2].size() + texts[3].size());
            for (int i = 3; i > 0; --i) { // the first one is the end of those behind it
                const Decoded d = decodedBy(kind.backwardDecoder(), p + (bit - 1) / 8, (bit - 1) % 8);
                ASSERT_EQ(kelStsNoErr, d.status);
                ASSERT_EQ(marked(kind, blocks[i]), d.block);
                ASSERT_EQ(lastPlace(blocks[i]), d.last);
                ASSERT_EQ(static_cast<int>(texts[i].size()), -d.bits);
                bit += d.bits;
                coverage.add(blocks[i]);
            }
        }
        coverage.expectAll();
    }
}

TEST(KelvaraMpeg4Vlc, FullBlockNeedsNothingInFrontOfIt) {
    static const GuardedStream room(256, true);
    for (const Kind &kind : reversibleKinds()) {
        Levels levels;
        for (int i = 0; i < 64; ++i) levels[i] = static_cast<Kel16s>(i % 3 ? i - 70 : 1 + i % 4);
        const std::string text = textOf(kind, levels);
        const Bytes bytes = bytesOf(text);
        std::copy(bytes.begin(), bytes.end(), room.data());
        const int last = static_cast<int>(text.size()) - 1;
        const Decoded d = decodedBy(kind.backwardDecoder(), room.data() + last / 8, last % 8);
        EXPECT_EQ(kelStsNoErr, d.status);
        EXPECT_EQ(marked(kind, levels), d.block);
        EXPECT_EQ(-last - 1, d.bits) << "the position is in the byte in front";
    }
}

// ---- what is no block ------------------------------------------------------------------

TEST(KelvaraMpeg4Vlc, AnyBitsAreABlockOrRefusedAndNoByteMoreIsRead) {
    for (const Kind &kind : kinds) {
        SCOPED_TRACE(kind.name);
        std::mt19937 generator(4);
        for (int pass = 0; pass < 3000; ++pass) {
            expectSpoiltIsJudged(kind, spoiltText(kind, generator, false), pass % 8);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(KelvaraMpeg4Vlc, AnyBitsAreABlockFromTheirEndOrRefusedAndNoByteMoreIsRead) {
    for (const Kind &kind : reversibleKinds()) {
        SCOPED_TRACE(kind.name);
        std::mt19937 generator(5);
        for (int pass = 0; pass < 3000; ++pass) {
            expectSpoiltIsJudgedBackwards(kind, spoiltText(kind, generator, true), pass % 8);
            if (HasFatalFailure()) return;
        }
    }
}

// Cut off anywhere, with noughts or ones behind: no block becomes the whole one.
TEST(KelvaraMpeg4Vlc, CutBlocksAreOtherBlocksOrRefused) {
    for (const Kind &kind : kinds) {
        SCOPED_TRACE(kind.name);
        std::mt19937 generator(6);
        const std::string text = textOf(kind, randomLevelsOf(kind, generator));
        for (char filling : {'0', '1'}) {
            for (size_t n = 0; n < text.size(); ++n) {
                expectSpoiltIsJudged(kind, text.substr(0, n) + std::string(64 * 30 + 40, filling), 0);
                if (HasFatalFailure()) return;
            }
        }
    }
}

TEST(KelvaraMpeg4Vlc, ForbiddenEscapesAreRefused) {
    for (const Kind &kind : {kinds[0], kinds[2]}) {
        const std::string fixed = "000001111 1 000000";
        EXPECT_EQ(kelStsNoErr, decodedText(kind.decoder(), fixed + "1 000000000001 1").status);
        EXPECT_EQ(kelStsNoErr, decodedText(kind.decoder(), fixed + "1 100000000001 1").status);
        expectRefused(kind.decoder(), fixed + "0 000000000001 1");
        expectRefused(kind.decoder(), fixed + "1 000000000001 0");
        expectRefused(kind.decoder(), fixed + "1 000000000000 1");
        expectRefused(kind.decoder(), fixed + "1 100000000000 1");
        expectRefused(kind.decoder(), "0000011 0 0000011");
        expectRefused(kind.decoder(), "0000011 10 0000011");
        expectRefused(kind.decoder(), "000000000000");
        expectRefused(kind.decoder(), "0000011 0 000000000000");
        expectRefused(kind.decoder(), "0000011 10 000000000000");
    }
    for (const Kind &kind : {kinds[3], kinds[5]}) {
        EXPECT_EQ(kelStsNoErr, decodedText(kind.decoder(), "000011 000000 1 00000000001 1 00000").status);
        expectRefused(kind.decoder(), "000001 000000 1 00000000001 1 00000");
        expectRefused(kind.decoder(), "000011 000000 0 00000000001 1 00000");
        expectRefused(kind.decoder(), "000011 000000 1 00000000000 1 00000");
        expectRefused(kind.decoder(), "000011 000000 1 00000000001 0 00000");
        expectRefused(kind.decoder(), "000011 000000 1 00000000001 1 00010");
        expectRefused(kind.decoder(), "011111111111111");
    }
}

TEST(KelvaraMpeg4Vlc, RunsThatLeaveTheBlockAreRefused) {
    for (const Kind &kind : kinds) {
        const Codes &codes = kind.codes();
        const int room = 63 - kind.first;
        const Decoded d = decodedText(kind.decoder(), codes.text({1, room, 5}));
        EXPECT_EQ(kelStsNoErr, d.status);
        EXPECT_EQ(63, d.last);
        if (room < 63) expectRefused(kind.decoder(), codes.text({1, room + 1, 5}));
        expectRefused(kind.decoder(), codes.text({0, 0, 1}) + codes.text({1, room, 5}));
        std::string many;
        for (int i = 0; i <= room; ++i) many += codes.text({0, 0, 1});
        expectRefused(kind.decoder(), many + codes.text({1, 0, 1}));
    }
}

TEST(KelvaraMpeg4Vlc, BackwardReadingWantsTheEndOfABlockAtBothSides) {
    static const GuardedStream room(64, true);
    for (const Kind &kind : reversibleKinds()) {
        const Codes &codes = kind.codes();
        const std::string end = codes.text({1, 3, 2}), more = codes.text({0, 1, -1});
        const auto statusOf = [&](const std::string &text) {
            const Bytes bytes = bytesOf(std::string((8 - text.size() % 8) % 8, '0') + text);
            std::copy(bytes.begin(), bytes.end(), room.data());
            return decodedBy(kind.backwardDecoder(), room.data() + bytes.size() - 1, 7).status;
        };
        EXPECT_EQ(kelStsNoErr, statusOf(end + more + end));
        EXPECT_EQ(kelStsNoErr, statusOf(end + end));
        EXPECT_EQ(kelStsBitStreamErr, statusOf(end + end + more)) << "no last event";
        // Read from its end, a 1 behind 14 noughts is no code.
        EXPECT_EQ(kelStsBitStreamErr, statusOf("0000000000000000100" + end)) << "no event in front";
        const std::string far = codes.text({0, 40, 1});
        EXPECT_EQ(kelStsBitStreamErr, statusOf(end + far + far + end)) << "82 places";
    }
}

// ---- arguments ---------------------------------------------------------------------------

TEST(KelvaraMpeg4Vlc, CountEndsTheBlockAndMayBeTooLarge) {
    for (const Kind &kind : kinds) {
        const Levels levels = lone({{3, 1}, {5, -2}, {9, 3}});
        EXPECT_EQ(blockText(kind.codes(), levels, kind.first, 2), textOf(kind, levels, 2));
        EXPECT_EQ(textOf(kind, lone({{3, 1}, {5, -2}})), textOf(kind, levels, 2));
        EXPECT_EQ(textOf(kind, levels, 3), textOf(kind, levels, 64));
        EXPECT_EQ("", textOf(kind, levels, 0));
        EXPECT_EQ("", textOf(kind, {}, 64));
        EXPECT_EQ("", textOf(kinds[1], lone({{0, 77}}), 64)) << "DC has its own code";
    }
}

TEST(KelvaraMpeg4Vlc, LevelsWithoutACodeAreRefusedAndNothingIsWritten) {
    for (const Kind &kind : kinds) {
        for (int level : {2047, -2047}) EXPECT_EQ(kelStsNoErr, coded(kind, lone({{5, level}}), 1).status);
        for (int level : {2048, -2048, 32767, -32768}) {
            const Coded c = coded(kind, lone({{2, 1}, {5, level}}), 64);
            EXPECT_EQ(kelStsRangeErr, c.status);
            EXPECT_EQ(0, c.bits);
            EXPECT_TRUE(c.bytes.empty());
            EXPECT_EQ(kelStsNoErr, coded(kind, lone({{2, 1}, {5, level}}), 1).status)
                << "it is behind the end";
        }
    }
}

TEST(KelvaraMpeg4Vlc, BadArgumentsOfEncodersAreRefusedAndNothingIsWritten) {
    const Levels block = lone({{1, 1}});
    for (const Kind &kind : kinds) {
        Bytes room(32, 0x5A);
        Kel8u *p = room.data(), *null = nullptr;
        int offset = 3;
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(nullptr, &p, &offset, 1, -1));
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(block.data(), nullptr, &offset, 1, -1));
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(block.data(), &null, &offset, 1, -1));
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(block.data(), &p, nullptr, 1, -1));
        EXPECT_EQ(kelStsNullPtrErr, kind.encode(nullptr, &p, &offset, 65, -1)) << "null goes first";
        for (int count : {-1, 65}) {
            EXPECT_EQ(kelStsRangeErr, kind.encode(block.data(), &p, &offset, count, -1));
        }
        for (int scan : {-2, 3}) EXPECT_EQ(kelStsRangeErr, kind.encode(block.data(), &p, &offset, 1, scan));
        for (int flag : {-1, 2}) {
            Kind other = kind;
            other.rvlc = flag;
            EXPECT_EQ(kelStsRangeErr, other.encode(block.data(), &p, &offset, 1, -1));
            other = kind;
            other.first = flag;
            if (kind.intra) {
                EXPECT_EQ(kelStsRangeErr, other.encode(block.data(), &p, &offset, 1, -1));
            }
        }
        for (int bad : {-1, 8}) {
            offset = bad;
            EXPECT_EQ(kelStsRangeErr, kind.encode(block.data(), &p, &offset, 1, -1));
            EXPECT_EQ(bad, offset);
        }
        EXPECT_EQ(room.data(), p);
        EXPECT_EQ(Bytes(32, 0x5A), room);
    }
}

TEST(KelvaraMpeg4Vlc, BadArgumentsOfDecodersAreRefusedAndNothingIsWritten) {
    const std::vector<std::pair<const char *, std::function<Decoder(const Kind &)>>> ways = {
        {"forward", [](const Kind &kind) { return kind.decoder(); }},
        {"backward", [](const Kind &kind) { return kind.backwardDecoder(); }}};
    for (const Kind &kind : kinds) {
        for (const auto &[way, make] : ways) {
            SCOPED_TRACE(testing::Message() << kind.name << ", " << way);
            const Decoder decode = make(kind);
            Bytes stream(64, 0x55);
            Kel8u *p = stream.data() + 32, *null = nullptr;
            int offset = 3;
            Destination<Kel16s> block(64);
            Destination<int> last(1);
            EXPECT_EQ(kelStsNullPtrErr, decode(nullptr, &offset, block.data(), last.data()));
            EXPECT_EQ(kelStsNullPtrErr, decode(&null, &offset, block.data(), last.data()));
            EXPECT_EQ(kelStsNullPtrErr, decode(&p, nullptr, block.data(), last.data()));
            EXPECT_EQ(kelStsNullPtrErr, decode(&p, &offset, nullptr, last.data()));
            EXPECT_EQ(kelStsNullPtrErr, decode(&p, &offset, block.data(), nullptr));
            for (int bad : {-1, 8}) {
                EXPECT_EQ(kelStsRangeErr, decode(&p, &bad, block.data(), last.data()));
            }
            Kind other = kind;
            other.first = 2;
            if (kind.intra) {
                EXPECT_EQ(kelStsRangeErr, make(other)(&p, &offset, block.data(), last.data()));
            }
            for (int scan : {-2, 3}) {
                EXPECT_EQ(kelStsRangeErr, kind.decoder(scan)(&p, &offset, block.data(), last.data()));
            }
            other = kind;
            other.rvlc = -1;
            EXPECT_EQ(kelStsRangeErr, other.decoder()(&p, &offset, block.data(), last.data()));
            EXPECT_EQ(stream.data() + 32, p);
            EXPECT_EQ(3, offset);
            EXPECT_TRUE(block.untouched());
            EXPECT_TRUE(last.untouched());
        }
    }
}

// bits_test.cpp - reading and writing bits, events of blocks, and tables of codes.

#include "../../kelvara/src/common/runlevel.h"
#include "streamtest.h"

#include <gtest/gtest.h>

#include <array>

using namespace kelvara;

namespace {

using Position = std::pair<std::ptrdiff_t, int>; // bytes from the first one, offset

template <class Reader>
Position positionOf(const Reader &reader, const Kel8u *stream) {
    const Kel8u *p = nullptr;
    int offset = -1;
    reader.commit(&p, &offset);
    return {p - stream, offset};
}

Position positionOfBit(std::ptrdiff_t bit) {
    return {(bit + 8) / 8 - 1, (bit + 8) % 8}; // down to -8
}

Kel32u valueOf(const std::string &bits) {
    Kel32u value = 0;
    for (char bit : bits) value = value << 1 | (bit == '1');
    return value;
}

std::string reversed(const std::string &bits) {
    return {bits.rbegin(), bits.rend()};
}

constexpr EventCode codes[] = {
    {0, 0, 1, 2, 0b10},     {0, 0, 2, 3, 0b110},           {0, 0, 3, 4, 0b1110},
    {0, 1, 1, 2, 0b00},     {1, 0, 1, 3, 0b011},           {1, 5, 1, 9, 0b010000001},
    {1, 63, 1, 5, 0b11110}, {1, 63, 2, 11, 0b01000000010}, {0, 0, 0, 5, 0b01011} /* the escape */};

// The same, last bit first: prefix-free only for a backward reader.
constexpr EventCode mirroredCodes[] = {
    {0, 0, 1, 2, 0b01},     {0, 0, 2, 3, 0b011},           {0, 0, 3, 4, 0b0111},
    {0, 1, 1, 2, 0b00},     {1, 0, 1, 3, 0b110},           {1, 5, 1, 9, 0b100000010},
    {1, 63, 1, 5, 0b01111}, {1, 63, 2, 11, 0b01000000010}, {0, 0, 0, 5, 0b11010}};

constexpr EncoderTable encoder = makeEncoderTable(codes);

std::string textOf(const EventCode &e) {
    std::string text;
    for (int i = e.bits - 1; i >= 0; --i) text += e.code >> i & 1 ? '1' : '0';
    return text;
}

Block8x8<Kel16s> blockOf(std::initializer_list<std::pair<int, int>> levels) {
    Block8x8<Kel16s> block{};
    for (const auto &[index, level] : levels) block.at[index] = static_cast<Kel16s>(level);
    return block;
}

void expectEvents(const BlockEvents &events, const std::vector<std::array<int, 3>> &expected) {
    ASSERT_EQ(static_cast<int>(expected.size()), events.count);
    for (size_t i = 0; i < expected.size(); ++i) {
        const Event &e = events.at[i];
        EXPECT_EQ(expected[i], (std::array<int, 3>{e.last, e.run, e.level})) << i;
    }
}

} // namespace

// ---- reading ---------------------------------------------------------------------

TEST(KelvaraBits, ReaderGivesTheHighestBitFirstFromEachOffset) {
    std::mt19937 generator(1);
    const Bytes bytes = randomBytes(generator, 40);
    const std::string bits = bitsOf(bytes);
    const GuardedStream stream(bytes);
    for (int n = 1; n <= 32; ++n) {
        for (int start = 0; start < 64; ++start) {
            BitReader reader(stream.data() + start / 8, start % 8);
            for (int at = start; at + n <= 320; at += n) {
                ASSERT_EQ(valueOf(bits.substr(at, n)), reader.peek(n));
                ASSERT_EQ(valueOf(bits.substr(at, n)), reader.readNumber(n));
                ASSERT_EQ(positionOfBit(at + n), positionOf(reader, stream.data()));
            }
        }
    }
}

TEST(KelvaraBits, BackwardReaderGivesTheLowestBitFirstFromEachOffset) {
    std::mt19937 generator(2);
    const Bytes bytes = randomBytes(generator, 40);
    const std::string bits = bitsOf(bytes);
    const GuardedStream stream(bytes, true);
    for (int n = 1; n <= 32; ++n) {
        for (int start = 319; start > 256; --start) {
            BackwardBitReader reader(stream.data() + start / 8, start % 8);
            for (int at = start; at - n >= -1; at -= n) {
                const std::string piece = bits.substr(at - n + 1, n);
                ASSERT_EQ(valueOf(reversed(piece)), reader.peek(n));
                ASSERT_EQ(positionOfBit(at), positionOf(reader, stream.data())) << "a look moves nothing";
                ASSERT_EQ(valueOf(piece), reader.readNumber(n)) << "a number is as it was written";
                ASSERT_EQ(positionOfBit(at - n), positionOf(reader, stream.data()));
            }
        }
    }
}

TEST(KelvaraBits, ReaderLoadsNoByteThatNoBitIsAskedOf) {
    const GuardedStream end(Bytes{0xC1}), front(Bytes{0xC1}, true);
    for (int offset = 0; offset < 8; ++offset) {
        BitReader reader(end.data(), offset);
        EXPECT_EQ(lowBits(0xC1, 8 - offset), reader.read(8 - offset));
        EXPECT_EQ(Position(1, 0), positionOf(reader, end.data()));
        BackwardBitReader backward(front.data(), offset);
        EXPECT_EQ(0xC1u >> (7 - offset), backward.readNumber(offset + 1));
        EXPECT_EQ(Position(-1, 7), positionOf(backward, front.data()));
    }
}

TEST(KelvaraBits, BitsThatAreNotLoadedShowAsZero) {
    const GuardedStream end(Bytes{0xFF}), front(Bytes{0xFF}, true);
    const BitReader reader(end.data(), 3);
    EXPECT_EQ(5, reader.loaded());
    EXPECT_EQ(0xF80u, reader.ahead(12));
    const BackwardBitReader backward(front.data(), 3);
    EXPECT_EQ(4, backward.loaded());
    EXPECT_EQ(0xF00u, backward.ahead(12));
}

TEST(KelvaraBits, SingleBits) {
    const Bytes bytes = {0b10010110, 0b01000000};
    BitReader reader(bytes.data(), 0);
    std::string bits;
    for (int i = 0; i < 10; ++i) bits += reader.readBit() ? '1' : '0';
    EXPECT_EQ("1001011001", bits);
}

// ---- writing ---------------------------------------------------------------------

TEST(KelvaraBits, WriterChangesNoBitButItsOwn) {
    std::mt19937 generator(3);
    for (int n = 0; n <= 32; ++n) {
        for (int offset = 0; offset < 8; ++offset) {
            const Bytes before = randomBytes(generator, (offset + n + 7) / 8);
            const GuardedStream stream(before);
            const Kel32u value = generator(); // bits above the lowest n are no matter
            BitWriter writer(stream.data(), offset);
            writer.put(value, n);
            std::string expected = bitsOf(before);
            for (int i = 0; i < n; ++i) expected[offset + i] = value >> (n - 1 - i) & 1 ? '1' : '0';
            EXPECT_EQ(expected, bitsOf(Bytes(stream.data(), stream.data() + before.size())));
            Kel8u *p = nullptr;
            int end = -1;
            writer.commit(&p, &end);
            EXPECT_EQ(positionOfBit(offset + n), Position(p - stream.data(), end));
        }
    }
}

TEST(KelvaraBits, WhatIsWrittenIsReadInBothDirections) {
    std::mt19937 generator(4);
    for (int pass = 0; pass < 200; ++pass) {
        Bytes bytes = randomBytes(generator, 200);
        std::vector<std::pair<Kel32u, int>> fields;
        const int offset = static_cast<int>(generator() % 8);
        BitWriter writer(bytes.data() + 1, offset);
        for (int i = 0; i < 40; ++i) {
            const int n = 1 + static_cast<int>(generator() % 32);
            fields.emplace_back(n == 32 ? generator() : lowBits(generator(), n), n);
            writer.put(fields.back().first, n);
        }
        Kel8u *end = nullptr;
        int endOffset = 0;
        writer.commit(&end, &endOffset);
        BitReader reader(bytes.data() + 1, offset);
        for (const auto &[value, n] : fields) ASSERT_EQ(value, reader.readNumber(n));
        EXPECT_EQ(Position(end - bytes.data(), endOffset), positionOf(reader, bytes.data()));
        BackwardBitReader backward(endOffset ? end : end - 1, endOffset ? endOffset - 1 : 7);
        std::reverse(fields.begin(), fields.end());
        for (const auto &[value, n] : fields) ASSERT_EQ(value, backward.readNumber(n));
        EXPECT_EQ(positionOfBit(8 + offset - 1), positionOf(backward, bytes.data()));
    }
}

TEST(KelvaraBits, PositionsMayStandAtAnyAddress) {
    const Bytes bytes = {0xAB, 0xCD};
    Kel8u raw[sizeof(Kel8u *) + sizeof(int) + 2];
    auto ppStream = reinterpret_cast<const Kel8u **>(raw + 1);
    auto pOffset = reinterpret_cast<int *>(raw + 1 + sizeof(Kel8u *));
    BitReader reader(bytes.data(), 4);
    EXPECT_EQ(0xBCu, reader.read(8));
    reader.commit(ppStream, pOffset);
    const Kel8u *p = nullptr;
    int offset = -1;
    std::memcpy(&p, raw + 1, sizeof p);
    std::memcpy(&offset, raw + 1 + sizeof p, sizeof offset);
    EXPECT_EQ(Position(1, 4), Position(p - bytes.data(), offset));
    const Kel8u *taken = nullptr;
    int takenOffset = -1;
    EXPECT_EQ(kelStsNoErr, takePosition(ppStream, pOffset, taken, takenOffset));
    EXPECT_EQ(Position(1, 4), Position(taken - bytes.data(), takenOffset));
}

TEST(KelvaraBits, PositionsThatAreNoneAreRefused) {
    Kel8u byte = 0;
    Kel8u *stream = &byte, *taken = nullptr;
    int offset = 0, takenOffset = 0;
    EXPECT_EQ(kelStsNoErr, takePosition(&stream, &offset, taken, takenOffset));
    EXPECT_EQ(kelStsNullPtrErr, takePosition<Kel8u>(nullptr, &offset, taken, takenOffset));
    EXPECT_EQ(kelStsNullPtrErr, takePosition<Kel8u>(&stream, nullptr, taken, takenOffset));
    for (int none : {-1, 8, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(kelStsRangeErr, takePosition<Kel8u>(&stream, &none, taken, takenOffset));
    }
    stream = nullptr;
    offset = 8;
    EXPECT_EQ(kelStsNullPtrErr, takePosition(&stream, &offset, taken, takenOffset)) << "null goes first";
}

// ---- blocks and their events --------------------------------------------------------

TEST(KelvaraEvents, RunsCountTheZerosInFrontOfALevel) {
    const auto block = blockOf({{0, 7}, {1, -1}, {5, 3}, {63, -2048}});
    expectEvents(someEventsOf(block, scanOrder(ScanNone), 0, 4),
                 {{0, 0, 7}, {0, 0, -1}, {0, 3, 3}, {1, 57, -2048}});
    expectEvents(someEventsOf(block, scanOrder(ScanNone), 1, 3), {{0, 0, -1}, {0, 3, 3}, {1, 57, -2048}});
}

TEST(KelvaraEvents, CountEndsTheBlock) {
    const auto block = blockOf({{0, 7}, {1, -1}, {5, 3}});
    expectEvents(someEventsOf(block, scanOrder(ScanNone), 0, 2), {{0, 0, 7}, {1, 0, -1}});
    expectEvents(someEventsOf(block, scanOrder(ScanNone), 0, 0), {});
    expectEvents(someEventsOf(block, scanOrder(ScanNone), 1, 64), {{0, 0, -1}, {1, 3, 3}});
    expectEvents(someEventsOf(blockOf({}), scanOrder(ScanNone), 0, 64), {});
}

TEST(KelvaraEvents, PlacesFollowTheScan) {
    expectEvents(someEventsOf(blockOf({{0, 1}, {8, 2}, {2, 3}}), scanOrder(ScanZigzag), 0, 3),
                 {{0, 0, 1}, {0, 1, 2}, {1, 2, 3}});
    expectEvents(someEventsOf(blockOf({{16, 2}, {57, 3}}), scanOrder(ScanVertical), 0, 2),
                 {{0, 2, 2}, {1, 11, 3}});
    expectEvents(someEventsOf(blockOf({{3, 2}, {14, 3}}), scanOrder(ScanHorizontal), 0, 2),
                 {{0, 3, 2}, {1, 11, 3}});
}

TEST(KelvaraEvents, LevelsAreHeldAgainstLimits) {
    const BlockEvents events = someEventsOf(blockOf({{3, -7}, {9, 12}}), scanOrder(ScanNone), 0, 64);
    EXPECT_TRUE(levelsWithin(events, -7, 12));
    EXPECT_FALSE(levelsWithin(events, -6, 12));
    EXPECT_FALSE(levelsWithin(events, -7, 11));
    for (int count : {0, 64}) EXPECT_TRUE(isLevelCount(count));
    for (int count : {-1, 65}) EXPECT_FALSE(isLevelCount(count));
}

TEST(KelvaraEvents, FillerUndoesTheWalk) {
    std::mt19937 generator(5);
    for (int scan : {ScanNone, +ScanZigzag, +ScanVertical, +ScanHorizontal}) {
        ASSERT_TRUE(isScanOrNone(scan));
        for (int first : {0, 1}) {
            Block8x8<Kel16s> block{};
            int count = 0;
            for (int i = first; i < 64; ++i) {
                if (generator() % 4 > 0) continue;
                block.at[scanOrder(scan)[i]] = static_cast<Kel16s>(1 + generator() % 100);
                ++count;
            }
            const BlockEvents events = someEventsOf(block, scanOrder(scan), first, 64);
            EXPECT_EQ(count, events.count);
            EXPECT_TRUE(levelsWithin(events, 1, 100));
            Block8x8<Kel16s> again{};
            BlockFiller filler(again, scanOrder(scan), first);
            EXPECT_EQ(first - 1, filler.place());
            for (int i = 0; i < events.count; ++i) {
                ASSERT_TRUE(filler.put(events.at[i].run, events.at[i].level));
            }
            EXPECT_EQ(0, std::memcmp(block.at, again.at, sizeof block.at));
        }
    }
    EXPECT_FALSE(isScanOrNone(-2));
    EXPECT_FALSE(isScanOrNone(3));
}

TEST(KelvaraEvents, FillerStaysInItsBlock) {
    Block8x8<Kel16s> block{};
    BlockFiller filler(block, scanOrder(ScanNone), 0);
    EXPECT_FALSE(filler.put(64, 1));
    EXPECT_TRUE(filler.put(61, 2));
    EXPECT_FALSE(filler.put(2, 3));
    EXPECT_TRUE(filler.put(1, 4));
    EXPECT_EQ(63, filler.place());
    EXPECT_FALSE(filler.put(0, 5));
    const auto expected = blockOf({{61, 2}, {63, 4}});
    EXPECT_EQ(0, std::memcmp(expected.at, block.at, sizeof block.at));
}

// ---- tables of codes ----------------------------------------------------------------

TEST(KelvaraEventCodes, EncoderTableFindsEachLineAndNoOther) {
    int found = 0;
    for (int last = 0; last < 2; ++last) {
        for (int run = 0; run < 80; ++run) {
            for (int level = 1; level < 300; ++level) found += encoder.find(last, run, level) != nullptr;
        }
    }
    EXPECT_EQ(8, found);
    for (const EventCode &e : codes) {
        if (e.level != 0) {
            EXPECT_EQ(&e, encoder.find(e.last, e.run, e.level));
        }
    }
}

TEST(KelvaraEventCodes, EncoderTableKnowsTheLargestLevelAndRun) {
    EXPECT_EQ(3, encoder.largestLevel(0, 0));
    EXPECT_EQ(1, encoder.largestLevel(0, 1));
    EXPECT_EQ(0, encoder.largestLevel(0, 2));
    EXPECT_EQ(2, encoder.largestLevel(1, 63));
    EXPECT_EQ(0, encoder.largestLevel(1, 64));
    EXPECT_EQ(1, encoder.largestRun(0, 1));
    EXPECT_EQ(0, encoder.largestRun(0, 3));
    EXPECT_EQ(-1, encoder.largestRun(0, 4));
    EXPECT_EQ(63, encoder.largestRun(1, 2));
}

TEST(KelvaraEventCodes, EachCodeIsReadFromEachOffsetUpToItsLastBitAndNotBeyond) {
    for (const EventCode &e : codes) {
        for (int offset = 0; offset < 8; ++offset) {
            const std::string front(static_cast<size_t>(offset), '1');
            const GuardedStream stream(bytesOf(front + textOf(e), '1'));
            BitReader reader(stream.data(), offset);
            EXPECT_EQ(packed(e), readCode(reader, decoderTable<codes>)) << textOf(e);
            EXPECT_EQ(positionOfBit(offset + e.bits), positionOf(reader, stream.data()));
        }
    }
}

TEST(KelvaraEventCodes, EachCodeIsReadBackwardsUpToItsFirstBitAndNotBeyond) {
    for (const EventCode &e : mirroredCodes) {
        for (int behind = 0; behind < 8; ++behind) {
            std::string text = textOf(e) + std::string(static_cast<size_t>(behind), '1');
            const size_t front = (8 - text.size() % 8) % 8;
            text = std::string(front, '1') + text;
            const GuardedStream stream(bytesOf(text), true);
            const auto last = static_cast<int>(text.size()) - behind - 1;
            BackwardBitReader reader(stream.data() + last / 8, last % 8);
            EXPECT_EQ(packed(e), readCode(reader, backwardDecoderTable<mirroredCodes>)) << textOf(e);
            EXPECT_EQ(positionOfBit(last - e.bits), positionOf(reader, stream.data()));
        }
    }
}

TEST(KelvaraEventCodes, PackedLinesComeApart) {
    for (const EventCode &e : codes) {
        EXPECT_EQ(e.last, lastOf(packed(e)));
        EXPECT_EQ(e.run, runOf(packed(e)));
        EXPECT_EQ(e.level, levelOf(packed(e)));
    }
}

// 11 bits is the longest code: two bytes from offset 0 to 5, three behind that.
TEST(KelvaraEventCodes, WhereNoCodeFitsTheLongestIsAllThatIsRead) {
    for (int offset = 0; offset < 8; ++offset) {
        const GuardedStream stream(Bytes(offset <= 5 ? 2 : 3, 0xFF));
        BitReader reader(stream.data(), offset);
        EXPECT_EQ(noCode, readCode(reader, decoderTable<codes>));
        EXPECT_EQ(positionOfBit(offset), positionOf(reader, stream.data())) << "nothing is read";
    }
}

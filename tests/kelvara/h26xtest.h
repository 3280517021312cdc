// h26xtest.h - blocks of H.261 and H.263 and their codes as texts of 0 and 1, for the golden tests.

#ifndef KELVARA_H26XTEST_H
#define KELVARA_H26XTEST_H

#include "blocktest.h"
#include "kelvc.h"
#include "streamtest.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <map>
#include <sstream>

using Levels = Values<Kel16s>; // in the order of the codes, or in raster order

// ---- tables as texts ---------------------------------------------------------------

using EventKey = std::array<int, 3>; // last, run, magnitude of the level
using Words = std::map<EventKey, std::string>;

// A line for each run from 0 on, in it a code for each level from 1 on.
inline void addWords(Words &words, int last, const std::vector<std::string> &lines) {
    for (size_t run = 0; run < lines.size(); ++run) {
        std::istringstream stream(lines[run]);
        std::string word;
        for (int level = 1; stream >> word; ++level) words[{last, static_cast<int>(run), level}] = word;
    }
}

inline bool begins(const std::string &beginning, const std::string &text) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

inline void expectPrefixFree(const std::vector<std::string> &codes) {
    for (size_t i = 0; i < codes.size(); ++i) {
        for (size_t j = 0; j < codes.size(); ++j) {
            EXPECT_TRUE(i == j || !begins(codes[i], codes[j])) << codes[i] << " begins " << codes[j];
        }
    }
}

// In parts of 2^-20.
inline int kraftSum(const std::vector<std::string> &codes) {
    int sum = 0;
    for (const std::string &code : codes) sum += 1 << (20 - code.size());
    return sum;
}

// The lowest n bits of the value, two's complement.
inline std::string field(int value, int n) {
    std::string text;
    for (int i = n - 1; i >= 0; --i) text += static_cast<unsigned>(value) >> i & 1 ? '1' : '0';
    return text;
}

inline std::string sign(int level) {
    return level < 0 ? "1" : "0";
}

// ITU-T H.263 Table 15, H.261 Table 6. A level without a code takes the nearest that has one.
inline std::string dcText(int level) {
    level = level < 1 ? 1 : level > 254 ? 254 : level;
    return level == 128 ? "11111111" : field(level, 8);
}

// ---- blocks ------------------------------------------------------------------------

struct ModelEvent {
    int last, run, level;
};

// The first `count` levels other than 0 from the place `first` on.
inline std::vector<ModelEvent> modelEvents(const Levels &levels, int first, int count) {
    std::vector<ModelEvent> events;
    int run = 0;
    for (int place = first; place < 64; ++place) {
        if (levels[place] == 0) {
            ++run;
        } else if (static_cast<int>(events.size()) < count) {
            events.push_back({0, run, levels[place]});
            run = 0;
        }
    }
    if (!events.empty()) events.back().last = 1;
    return events;
}

// Which events blocks have had, by last, run and magnitude.
class SeenEvents {
public:
    void add(const Levels &levels, int first) {
        int run = 0;
        char *latest = nullptr;
        for (int place = first; place < 64; ++place, ++run) {
            if (levels[place] == 0) continue;
            if (latest) latest[0] = 1;
            latest = &at(0, run, std::abs(levels[place]));
            run = -1;
        }
        if (latest) latest[lastOffset] = 1;
    }
    bool has(const EventKey &key) const { return m_seen[key[0] * lastOffset + key[1] * levels + key[2]]; }
    // Of those that are no word.
    int countBeside(const Words &words, int low, int high) const {
        int count = 0;
        for (int last : {0, 1}) {
            for (int run = 0; run < 64; ++run) {
                for (int level = low; level <= high; ++level)
                    count += has({last, run, level}) && !words.count({last, run, level});
            }
        }
        return count;
    }

private:
    static constexpr int levels = 1025, lastOffset = 64 * levels;

    char &at(int last, int run, int level) { return m_seen[last * lastOffset + run * levels + level]; }

    std::vector<char> m_seen = std::vector<char>(2 * lastOffset);
};

inline int countNonZero(const Levels &levels, int first) {
    int count = 0;
    for (int place = first; place < 64; ++place) count += levels[place] != 0;
    return count;
}

// What remains where only `count` levels are coded.
inline Levels cutBehind(Levels levels, int first, int count) {
    for (int place = first; place < 64; ++place) {
        if (levels[place] != 0 && --count < 0) levels[place] = 0;
    }
    return levels;
}

inline int lastPlace(const Levels &levels) {
    int place = 63;
    while (place >= 0 && levels[place] == 0) --place;
    return place;
}

// Out of the order of the codes. The scan has a golden test of its own.
inline Levels placed(const Levels &levels, int scan) {
    Levels block = levels;
    if (scan >= 0) {
        EXPECT_EQ(kelStsNoErr, keliScanInv_16s_C1(levels.data(), block.data(), 63, scan));
    }
    return block;
}

template <size_t n>
int oneOf(std::mt19937 &generator, const int (&values)[n]) {
    return values[generator() % n];
}

inline int between(std::mt19937 &generator, int low, int high) {
    return low + static_cast<int>(generator() % static_cast<unsigned>(high - low + 1));
}

// Dense blocks and sparse ones, with small levels and large ones.
inline Levels randomLevels(std::mt19937 &generator, int first, int low, int high) {
    Levels levels{};
    const int runs = oneOf(generator, {1, 1, 2, 4, 8, 16, 28, 64});
    const int bound = oneOf(generator, {1, 1, 2, 3, 5, 12, 27, 200, 2000});
    for (int place = first + between(generator, 0, runs - 1); place < 64;
         place += between(generator, 1, runs)) {
        const int level = between(generator, 1, bound);
        levels[place] = static_cast<Kel16s>(generator() % 2 ? std::min(level, high) : std::max(-level, low));
    }
    return levels;
}

// Element 0 apart from the others.
inline Levels withDc(Levels levels, int dc) {
    levels[0] = static_cast<Kel16s>(dc);
    return levels;
}

// ---- streams -----------------------------------------------------------------------

// Blocks of each kind that are coded and decoded. Builds for the debugger take many times as long and do with
// fewer, which have every code too.
#ifdef __OPTIMIZE__
const int roundTrips = 100000;
#else
const int roundTrips = 10000;
#endif

// What a block and its DC can have at most.
const int streamBytes = 266;

// The bytes that an encoder has written, the position in them, and how far it has moved.
struct Coded {
    KelStatus status;
    Bytes bytes;
    int offset, bits;

    std::string text() const { return bitsOf(bytes).substr(offset, bits); }
};

using Encoder = std::function<KelStatus(Kel8u **, int *)>;

// Whatever bits do not belong to the block stay.
inline Coded codedBy(const Encoder &encode, int offset, Kel8u before) {
    Bytes room(streamBytes + 2, before), expected = room;
    Kel8u *p = room.data() + 1;
    int bit = offset;
    Coded coded{encode(&p, &bit), {}, offset, 0};
    const int end = static_cast<int>(p - room.data() - 1) * 8 + bit, bytes = (end + 7) / 8;
    coded.bits = end - offset;
    if (bit < 0 || bit > 7 || coded.bits < 0 || bytes > streamBytes) {
        ADD_FAILURE() << "the position is lost";
        return coded;
    }
    std::copy_n(room.begin() + 1, bytes, expected.begin() + 1);
    EXPECT_TRUE(expected == room) << "a byte beside the block";
    EXPECT_EQ(0, (room[1] ^ before) >> (8 - offset)) << "a bit in front of it";
    EXPECT_EQ(0, (room[bytes] ^ before) & (0xFF >> (end + 7) % 8 >> 1)) << "a bit behind it";
    coded.bytes.assign(room.begin() + 1, room.begin() + 1 + bytes);
    return coded;
}

// Bytes right in front of a forbidden page, new ones at each call.
class StreamEnd {
public:
    Kel8u *hold(const Bytes &bytes) {
        Kel8u *p = m_room.data() + roomBytes - bytes.size();
        std::copy(bytes.begin(), bytes.end(), p);
        return p;
    }

private:
    static constexpr size_t roomBytes = 2048;
    GuardedStream m_room{roomBytes};
};

// What a decoder has made of a stream.
struct Decoded {
    KelStatus status;
    Levels block;
    int last, bits;
};

using Decoder = std::function<KelStatus(Kel8u **, int *, Kel16s *, int *)>;

// Blocks hold marks before. On an error all is as it was; else the bits that were read are told.
inline Decoded decodedBy(const Decoder &decode, Kel8u *stream, int offset) {
    Decoded decoded{kelStsNoErr, {}, -7, 0};
    decoded.block.fill(-21846);
    const Levels before = decoded.block;
    Kel8u *p = stream;
    int bit = offset;
    decoded.status = decode(&p, &bit, decoded.block.data(), &decoded.last);
    decoded.bits = static_cast<int>(p - stream) * 8 + bit - offset;
    EXPECT_TRUE(bit >= 0 && bit <= 7);
    if (decoded.status != kelStsNoErr) {
        EXPECT_EQ(kelStsBitStreamErr, decoded.status);
        EXPECT_EQ(before, decoded.block);
        EXPECT_EQ(-7, decoded.last);
        EXPECT_EQ(0, decoded.bits);
    }
    return decoded;
}

// The text from bit `offset` on; nobody may look behind its last byte.
inline Decoded decodedText(const Decoder &decode, const std::string &text, int offset = 0,
                           char filling = '0') {
    static StreamEnd end;
    return decodedBy(decode, end.hold(bytesOf(std::string(offset, '1') + text, filling)), offset);
}

inline void expectRefused(const Decoder &decode, const std::string &text) {
    for (int offset : {0, 3, 7}) {
        EXPECT_EQ(kelStsBitStreamErr, decodedText(decode, text, offset).status) << text;
    }
}

#endif

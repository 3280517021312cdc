// runlevel.h - tables of the codes of runs and levels.

#ifndef KELVARA_RUNLEVEL_H
#define KELVARA_RUNLEVEL_H

#include "bits.h"
#include "blockevents.h"
#include "vlctable.h"

#include <cstddef>

namespace kelvara {

// ---- tables of codes ------------------------------------------------------------------

// A line of a standard's table. Levels are magnitudes, and codes have no sign bit. A line of level 0 stands
// for something other than an event, such as the escape; its run tells which.
struct EventCode {
    Kel8u last, run, level;
    Kel8u bits; // length of the code
    Kel16u code;
};

// What look-ups give: the level in the low byte, then run and last.
constexpr Kel32s packed(const EventCode &e) {
    return e.last * 65536 + e.run * 256 + e.level;
}
constexpr int lastOf(Kel32s value) {
    return value >> 16;
}
constexpr int runOf(Kel32s value) {
    return value >> 8 & 255;
}
constexpr int levelOf(Kel32s value) {
    return value & 255;
}

// A line to write: by last, run and level. For each (last, run) of the standards' tables the levels run from
// 1 to a largest one without a gap, so that their lines stand together.
struct EncoderTable {
    const EventCode *codes;
    Kel16u first[2][64];  // line of level 1
    Kel8u largest[2][64]; // level of (last, run), 0 without a code; LMAX of ISO/IEC 14496-2

    constexpr int largestLevel(int last, int run) const { return run < 64 ? largest[last][run] : 0; }
    // The largest run of (last, level), -1 without a code; RMAX of ISO/IEC 14496-2.
    constexpr int largestRun(int last, int level) const {
        int run = 63;
        while (run >= 0 && largest[last][run] < level) --run;
        return run;
    }
    // Null without a code. REQUIRES level > 0, run >= 0.
    constexpr const EventCode *find(int last, int run, int level) const {
        return level <= largestLevel(last, run) ? codes + first[last][run] + level - 1 : nullptr;
    }
};

// The list must be sorted by last, run and level. What is wrong with it stops the compiler.
template <size_t n>
constexpr EncoderTable makeEncoderTable(const EventCode (&codes)[n]) {
    EncoderTable table{codes, {}, {}};
    for (size_t i = 0; i < n; ++i) {
        const EventCode &e = codes[i];
        if (e.level == 0) continue;
        if (e.level == 1) table.first[e.last][e.run] = static_cast<Kel16u>(i);
        if (e.level != table.largest[e.last][e.run] + 1) throw "a level is missing";
        if (i + 1 != table.first[e.last][e.run] + size_t{e.level}) throw "the list is not sorted";
        table.largest[e.last][e.run] = e.level;
    }
    return table;
}

// ---- tables for decoding -----------------------------------------------------------------

// In the form of vlctable.h, made by the compiler: nothing to build at the first call, nothing to free.
template <size_t n>
struct DecoderTable {
    Kel32s entries[n];
    int longest; // bits of the longest code
};

template <size_t n>
constexpr int longestCode(const EventCode (&codes)[n]) {
    int longest = 0;
    for (const EventCode &e : codes) longest = e.bits > longest ? e.bits : longest;
    return longest;
}

// A backward reader meets the last bit of a code first.
template <bool backward>
constexpr Kel32u codeAsRead(const EventCode &e) {
    return backward ? mirrored(e.code, e.bits) : e.code;
}

// For each beginning of vlcRootBits, how many bits the longest code has behind it.
struct CodeRests {
    int bits[1 << vlcRootBits];
};

template <bool backward, size_t n>
constexpr CodeRests codeRests(const EventCode (&codes)[n]) {
    CodeRests rests{};
    for (const EventCode &e : codes) {
        const int rest = e.bits - vlcRootBits;
        if (rest <= 0) continue;
        int &bits = rests.bits[codeAsRead<backward>(e) >> rest];
        bits = rest > bits ? rest : bits;
    }
    return rests;
}

template <bool backward, size_t n>
constexpr size_t decoderEntries(const EventCode (&codes)[n]) {
    const CodeRests rests = codeRests<backward>(codes);
    size_t entries = 1 + (size_t{1} << vlcRootBits);
    for (int bits : rests.bits) entries += bits ? size_t{1} << bits : 0;
    return entries;
}

// The list must have a code of vlcRootBits or more. A code that begins another stops the compiler.
template <const auto &codes, bool backward>
constexpr auto makeDecoderTable() {
    DecoderTable<decoderEntries<backward>(codes)> table{};
    const CodeRests rests = codeRests<backward>(codes);
    table.longest = longestCode(codes);
    table.entries[0] = vlcRootBits;
    Kel32s end = 1 + (1 << vlcRootBits);
    for (int i = 0; i < 1 << vlcRootBits; ++i) {
        if (rests.bits[i] == 0) continue;
        table.entries[1 + i] = end * 256 + vlcLink + rests.bits[i];
        end += 1 << rests.bits[i];
    }
    for (const EventCode &e : codes) {
        const Kel32u code = codeAsRead<backward>(e);
        const int rest = e.bits - vlcRootBits;
        const int free = rest <= 0 ? -rest : rests.bits[code >> rest] - rest;
        const Kel32s begin = rest <= 0 ? 1 : table.entries[1 + (code >> rest)] >> 8;
        const Kel32u place = (rest <= 0 ? code : lowBits(code, rest)) << free;
        for (Kel32u i = 0; i < 1u << free; ++i) {
            Kel32s &entry = table.entries[static_cast<Kel32u>(begin) + place + i];
            if (entry != 0) throw "one code begins another";
            entry = packed(e) * 256 + e.bits;
        }
    }
    return table;
}

template <const auto &codes>
inline constexpr auto decoderTable = makeDecoderTable<codes, false>();
template <const auto &codes>
inline constexpr auto backwardDecoderTable = makeDecoderTable<codes, true>();

constexpr Kel32s noCode = -1;

// Reads a code and gives its packed line, or noCode: then nothing is read. No byte is loaded that does not
// belong to the code; where no code fits, as many as the longest could have.
template <class Reader, size_t n>
inline Kel32s readCode(Reader &reader, const DecoderTable<n> &table) {
    for (;;) {
        // Bits that are not loaded yet count as 0, so the entry holds if its code ends in front of them.
        const Kel32s entry = lookUpVlc(table.entries, reader.ahead(maxVlcLength));
        const int length = entry & 255;
        if (entry != 0 && length <= reader.loaded()) {
            reader.skip(length);
            return entry >> 8;
        }
        if (reader.loaded() >= table.longest) return noCode;
        reader.load();
    }
}

// ---- signs ---------------------------------------------------------------------------------

// A code of the tables and the sign bit behind it.
inline void putCode(BitWriter &writer, const EventCode &code, int level) {
    writer.put(code.code * 2u + (level < 0), code.bits + 1);
}

template <class Reader>
inline int readSign(Reader &reader, int magnitude) {
    return reader.readBit() ? -magnitude : magnitude;
}

} // namespace kelvara

#endif

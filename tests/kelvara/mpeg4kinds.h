// mpeg4kinds.h - the encoders and decoders of MPEG-4 blocks under one signature.

#ifndef KELVARA_MPEG4KINDS_H
#define KELVARA_MPEG4KINDS_H

#include "mpeg4model.h"

namespace mpeg4 {

// Blocks that begin at place `first`: 1 where DC has a code of its own.
struct Kind {
    const char *name;
    bool intra;
    int first;
    int rvlc;

    const Codes &codes() const { return codesOf(intra, rvlc); }

    KelStatus encode(const Kel16s *block, Kel8u **pp, int *o, int count, int scan) const {
        return intra ? keliEncodeCoeffsIntra_MPEG4_16s1u(block, pp, o, count, rvlc, first, scan)
                     : keliEncodeCoeffsInter_MPEG4_16s1u(block, pp, o, count, rvlc, scan);
    }
    Decoder decoder(int scan = -1) const {
        return [this, scan](Kel8u **pp, int *o, Kel16s *c, int *last) {
            return intra ? keliDecodeCoeffsIntra_MPEG4_1u16s(pp, o, c, last, rvlc, first, scan)
                         : keliDecodeCoeffsInter_MPEG4_1u16s(pp, o, c, last, rvlc, scan);
        };
    }
    Decoder backwardDecoder() const {
        return [this](Kel8u **pp, int *o, Kel16s *c, int *last) {
            return intra ? keliDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(pp, o, c, last, first)
                         : keliDecodeCoeffsInterRVLCBack_MPEG4_1u16s(pp, o, c, last);
        };
    }
};

inline const Kind kinds[] = {{"intra", true, 0, 0},
                             {"intra, DC apart", true, 1, 0},
                             {"inter", false, 0, 0},
                             {"intra, reversible", true, 0, 1},
                             {"intra, DC apart, reversible", true, 1, 1},
                             {"inter, reversible", false, 0, 1}};

inline std::vector<Kind> reversibleKinds() {
    return {kinds + 3, kinds + 6};
}

inline Coded coded(const Kind &kind, const Levels &block, int count, int scan = -1, int offset = 0,
                   Kel8u before = 0xA5) {
    return codedBy([&](Kel8u **pp, int *o) { return kind.encode(block.data(), pp, o, count, scan); }, offset,
                   before);
}

inline std::string textOf(const Kind &kind, const Levels &block, int count = 64) {
    const Coded c = coded(kind, block, count);
    EXPECT_EQ(kelStsNoErr, c.status);
    return c.text();
}

// An element apart stays; decodedBy marks all of them before.
inline Levels marked(const Kind &kind, Levels levels) {
    if (kind.first == 1) levels[0] = -21846;
    return levels;
}

inline Levels lone(std::initializer_list<std::pair<int, int>> places) {
    Levels levels{};
    for (const auto &[place, level] : places) levels[place] = static_cast<Kel16s>(level);
    return levels;
}

// As random as randomLevels, up to the largest level, and never empty.
inline Levels randomLevelsOf(const Kind &kind, std::mt19937 &generator) {
    Levels levels = randomLevels(generator, kind.first, -2047, 2047);
    if (generator() % 64 == 0) {
        levels[between(generator, kind.first, 63)] = static_cast<Kel16s>(generator() % 2 ? 2047 : -2047);
    }
    if (countNonZero(levels, kind.first) == 0) levels[63] = 1;
    return levels;
}

} // namespace mpeg4

#endif

// mpeg4tables_test.cpp - the tables of MPEG-4 codes, each against what is known of it.

#include "mpeg4kinds.h"

#include <set>

using namespace mpeg4;

namespace {

std::vector<std::string> allWords(const Codes &codes) {
    std::vector<std::string> all = {codes.escape};
    for (const auto &[key, word] : codes.words) all.push_back(word);
    return all;
}

// Lengths from 1 on, the escape code among them.
std::vector<int> lengthCounts(const Codes &codes) {
    std::vector<int> counts;
    for (const std::string &word : allWords(codes)) {
        counts.resize(std::max(counts.size(), word.size()));
        ++counts[word.size() - 1];
    }
    return counts;
}

std::vector<int> limits(const std::function<int(int)> &limit, int first, int none) {
    std::vector<int> all;
    for (int key = first; limit(key) != none; ++key) all.push_back(limit(key));
    return all;
}

using Runs = std::vector<std::pair<int, int>>; // how many times, what

std::vector<int> spread(const Runs &runs) {
    std::vector<int> all;
    for (const auto &[times, value] : runs) all.insert(all.end(), static_cast<size_t>(times), value);
    return all;
}

void expectLmax(const Codes &codes, int last, const Runs &expected) {
    EXPECT_EQ(spread(expected), limits([&](int run) { return codes.lmax(last, run); }, 0, 0)) << last;
}

void expectRmax(const Codes &codes, int last, const Runs &expected) {
    EXPECT_EQ(spread(expected), limits([&](int level) { return codes.rmax(last, level); }, 1, -1)) << last;
}

} // namespace

// ---- all four ------------------------------------------------------------------------

TEST(KelvaraMpeg4Tables, NoCodeBeginsAnother) {
    for (const Codes *codes : {&vlcIntra, &vlcInter, &rvlcIntra, &rvlcInter}) {
        expectPrefixFree(allWords(*codes));
    }
}

TEST(KelvaraMpeg4Tables, NoReversibleCodeEndsAnother) {
    for (const Codes *codes : {&rvlcIntra, &rvlcInter}) {
        std::vector<std::string> turned;
        for (const std::string &word : allWords(*codes)) turned.push_back(reversed(word));
        expectPrefixFree(turned);
    }
}

TEST(KelvaraMpeg4Tables, NumbersOfCodesAndTheRoomTheyLeave) {
    for (const Codes *codes : {&vlcIntra, &vlcInter}) {
        EXPECT_EQ(102u, codes->words.size());
        EXPECT_EQ((1 << 20) / 512 * 511, kraftSum(allWords(*codes)));
    }
    for (const Codes *codes : {&rvlcIntra, &rvlcInter}) {
        EXPECT_EQ(169u, codes->words.size());
        EXPECT_EQ((1 << 20) / 16384 * 16363, kraftSum(allWords(*codes)));
    }
}

// The inter events took over the codes of an older standard, and the intra events share them.
TEST(KelvaraMpeg4Tables, IntraAndInterEventsHaveTheSameCodes) {
    const auto sorted = [](std::vector<std::string> words) {
        return std::set<std::string>(words.begin(), words.end());
    };
    EXPECT_EQ(sorted(allWords(vlcIntra)), sorted(allWords(vlcInter)));
    EXPECT_EQ(sorted(allWords(rvlcIntra)), sorted(allWords(rvlcInter)));
}

TEST(KelvaraMpeg4Tables, LengthsOfCodes) {
    const std::vector<int> rvlc = {0, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 14};
    const std::vector<int> vlc = {0, 1, 1, 3, 3, 10, 9, 13, 21, 14, 12, 16};
    EXPECT_EQ(vlc, lengthCounts(vlcIntra));
    EXPECT_EQ(vlc, lengthCounts(vlcInter));
    EXPECT_EQ(rvlc, lengthCounts(rvlcIntra));
    EXPECT_EQ(rvlc, lengthCounts(rvlcInter));
}

// ---- the limits that escape forms rest on -----------------------------------------------

TEST(KelvaraMpeg4Tables, LargestLevelsAreThoseOfTablesB19AndB20) {
    expectLmax(vlcIntra, 0, {{1, 27}, {1, 10}, {1, 5}, {1, 4}, {4, 3}, {2, 2}, {5, 1}});
    expectLmax(vlcIntra, 1, {{1, 8}, {1, 3}, {5, 2}, {14, 1}});
    expectLmax(vlcInter, 0, {{1, 12}, {1, 6}, {1, 4}, {4, 3}, {4, 2}, {16, 1}});
    expectLmax(vlcInter, 1, {{1, 3}, {1, 2}, {39, 1}});
}

TEST(KelvaraMpeg4Tables, LargestRunsAreThoseOfTablesB21AndB22) {
    expectRmax(vlcIntra, 0, {{1, 14}, {1, 9}, {1, 7}, {1, 3}, {1, 2}, {5, 1}, {17, 0}});
    expectRmax(vlcIntra, 1, {{1, 20}, {1, 6}, {1, 1}, {5, 0}});
    expectRmax(vlcInter, 0, {{1, 26}, {1, 10}, {1, 6}, {1, 2}, {2, 1}, {6, 0}});
    expectRmax(vlcInter, 1, {{1, 40}, {1, 1}, {1, 0}});
}

// ---- the functions -----------------------------------------------------------------------

// Run by run and level by level, alone and in front of another event.
TEST(KelvaraMpeg4Tables, EachRunAndLevelHasItsCode) {
    for (const Kind &kind : kinds) {
        SCOPED_TRACE(kind.name);
        int forms[4] = {};
        for (int run = 0; run < 64 - kind.first; ++run) {
            for (int level = -64; level <= 64; ++level) {
                if (level == 0) continue;
                const int place = run + kind.first;
                const ModelEvent alone = {1, run, level}, first = {0, run, level};
                ASSERT_EQ(kind.codes().text(alone), textOf(kind, lone({{place, level}})));
                ++forms[kind.codes().formOf(alone)];
                if (place == 63) continue;
                ASSERT_EQ(kind.codes().text(first) + kind.codes().text({1, 62 - place, -1}),
                          textOf(kind, lone({{place, level}, {63, -1}})));
                ++forms[kind.codes().formOf(first)];
            }
        }
        EXPECT_EQ(2 * static_cast<int>(kind.codes().words.size()), forms[0]) << "all codes and both signs";
        for (int form = 1; form < 3; ++form) EXPECT_EQ(!kind.rvlc, forms[form] > 0) << form;
        EXPECT_GT(forms[3], 1000);
    }
}

TEST(KelvaraMpeg4Tables, KnownIntraBlocksHaveTheirCodes) {
    const Kind &intra = kinds[0];
    EXPECT_EQ("01110", textOf(intra, {1}));
    EXPECT_EQ(bits("10 0 0111 1"), textOf(intra, {1, -1}));
    EXPECT_EQ(bits("110 0 0111 0"), textOf(intra, {2, 1}));
    EXPECT_EQ(bits("1111 1 1110 0 0111 0"), textOf(intra, {-3, 0, 1, 1}));
    EXPECT_EQ(bits("000001010010 0 001100 0"), textOf(intra, {27, 2})) << "LMAX";
    EXPECT_EQ(bits("0000011 0 10 0 0111 0"), textOf(intra, {28, 1})) << "escape 1: 28 - 27";
    EXPECT_EQ(bits("0000011 0 000001010010 1 0111 0"), textOf(intra, {-54, 1})) << "27 and 27";
    EXPECT_EQ(bits("0000011 10 10 0 0111 0"), textOf(intra, lone({{15, 1}, {16, 1}})))
        << "escape 2: 15 - (14 + 1)";
    EXPECT_EQ(bits("0000011 11 0 000000 1 000000110111 1 0111 0"), textOf(intra, {55, 1})) << "escape 3";
    EXPECT_EQ(bits("0000011 11 1 111111 1 100000000001 1"), textOf(intra, lone({{63, -2047}})));
}

TEST(KelvaraMpeg4Tables, KnownInterBlocksHaveTheirCodes) {
    const Kind &inter = kinds[2];
    EXPECT_EQ("01111", textOf(inter, {-1}));
    EXPECT_EQ(bits("1111 0 110 0 0111 0"), textOf(inter, {2, 0, 1, 1}));
    EXPECT_EQ(bits("1110 0 001111 1"), textOf(inter, lone({{2, 1}, {4, -1}})));
    EXPECT_EQ(bits("000001011111 0"), textOf(inter, lone({{40, 1}}))) << "RMAX";
    EXPECT_EQ(bits("0000011 10 0111 0"), textOf(inter, lone({{41, 1}}))) << "escape 2: 41 - (40 + 1)";
    EXPECT_EQ(bits("0000011 0 0111 1"), textOf(inter, {-4})) << "escape 1: 4 - 3";
    EXPECT_EQ(bits("0000011 11 1 000001 1 000000000101 1"), textOf(inter, {0, 5})) << "escape 3";
}

TEST(KelvaraMpeg4Tables, KnownReversibleBlocksHaveTheirCodes) {
    const Kind &intra = kinds[3], &inter = kinds[5];
    EXPECT_EQ(bits("1011 1"), textOf(intra, {-1}));
    EXPECT_EQ(bits("110 0 111 1 1010 0 0001 0 1011 0"), textOf(intra, {1, -2, 3, 0, 1, 1}));
    EXPECT_EQ(bits("110 0 111 1 0001 0 1010 1 1011 0"), textOf(inter, {1, 0, -1, 2, 0, 0, -1, 1}));
    EXPECT_EQ(bits("00001 1 111111 1 11111111111 1 0000 1"), textOf(inter, lone({{63, -2047}})));
    EXPECT_EQ(bits("00001 0 000000 1 00000011100 1 0000 0 1011 0"), textOf(intra, {28, 1}));
}

// vc1deblocking_test.cpp - the deblocking filters of VC-1 against the steps of SMPTE 421M 8.6.

#include "kelvc.h"
#include "kelvara_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

namespace {

// ---- the functions, by what they have in common ------------------------------------------

struct Kind {
    char const *name;
    bool vertical;
    int lines, channels;
    KelStatus (*one)(Kel8u *, Kel32s, Kel32s, Kel32s);
    KelStatus (*two)(Kel8u *, Kel32s, Kel32s, Kel32s, Kel32s);

    KelStatus filter(Kel8u *p, int quant, int step, int flag, int secondFlag) const {
        return one ? one(p, quant, step, flag) : two(p, quant, step, flag, secondFlag);
    }
    int minStep() const { return channels * (vertical ? 8 : lines); }
    int across(int step) const { return vertical ? channels : step; }
    int along(int step) const { return vertical ? step : channels; }
    // Bytes from the first sample that is read to the last one.
    int area(int step) const { return 7 * across(step) + (lines - 1) * along(step) + channels; }
};

const Kind kinds[] = {
    {"luma, vertical", true, 16, 1, keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR, nullptr},
    {"luma, horizontal", false, 16, 1, keliFilterDeblockingLuma_HorEdge_VC1_8u_C1IR, nullptr},
    {"chroma, vertical", true, 8, 1, keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR, nullptr},
    {"chroma, horizontal", false, 8, 1, keliFilterDeblockingChroma_HorEdge_VC1_8u_C1IR, nullptr},
    {"pairs, vertical", true, 8, 2, nullptr, keliFilterDeblockingChroma_VerEdge_VC1_8u_C2IR},
    {"pairs, horizontal", false, 8, 2, nullptr, keliFilterDeblockingChroma_HorEdge_VC1_8u_C2IR}};

// ---- the model ---------------------------------------------------------------------------

using Samples8 = int[9]; // v[1] to v[8]

int unevenness(int a, int b, int c, int d) {
    return static_cast<int>(std::floor((2 * (a - d) - 5 * (b - c) + 4) / 8.0));
}

int sign(int value) {
    return (value > 0) - (value < 0);
}

// How a line ends; the lines of a segment go on behind one that came to `Still` or `Changed`.
enum Path { PictureEdge, Smooth, NoStep, Still, Changed };

Path modelLine(Samples8 &v, int quant) {
    const int a0 = unevenness(v[3], v[4], v[5], v[6]);
    if (std::abs(a0) >= quant) return PictureEdge;
    const int a3 =
        std::min(std::abs(unevenness(v[1], v[2], v[3], v[4])), std::abs(unevenness(v[5], v[6], v[7], v[8])));
    if (a3 >= std::abs(a0)) return Smooth;
    const int clip = static_cast<int>(std::trunc((v[4] - v[5]) / 2.0));
    if (clip == 0) return NoStep;
    double d = std::trunc(5 * (sign(a0) * a3 - a0) / 8.0);
    if (sign(static_cast<int>(d)) != sign(v[4] - v[5])) d = 0;
    if (std::abs(d) > std::abs(clip)) d = clip;
    v[4] -= static_cast<int>(d);
    v[5] += static_cast<int>(d);
    return d == 0 ? Still : Changed;
}

// All samples around an edge, one colour behind the other.
class Model {
public:
    Model(const Kind &kind, const std::vector<Kel8u> &bytes, int step) : m_kind(kind), m_step(step) {
        m_bytes.assign(bytes.begin(), bytes.end());
    }

    void filter(int quant, int flag, int secondFlag, std::map<Path, int> &paths) {
        for (int channel = 0; channel < m_kind.channels; ++channel) {
            const int disabled = channel ? secondFlag : flag;
            for (int segment = 0; segment < m_kind.lines / 4; ++segment) {
                if (disabled / (1 << segment) % 2) continue;
                const Path decision = filterLine(4 * segment + 2, channel, quant);
                ++paths[decision];
                if (decision < Still) continue;
                for (int line : {0, 1, 3}) ++paths[filterLine(4 * segment + line, channel, quant)];
            }
        }
    }

    const std::vector<int> &bytes() const { return m_bytes; }

private:
    Path filterLine(int line, int channel, int quant) {
        Samples8 v;
        for (int i = 1; i <= 8; ++i) v[i] = m_bytes[at(line, channel, i)];
        const Path path = modelLine(v, quant);
        for (int i = 4; i <= 5; ++i) m_bytes[at(line, channel, i)] = std::clamp(v[i], 0, 255);
        return path;
    }
    size_t at(int line, int channel, int i) const {
        return line * m_kind.along(m_step) + (i - 1) * m_kind.across(m_step) + channel;
    }

    Kind m_kind;
    int m_step;
    std::vector<int> m_bytes;
};

// A filter's data, without a byte more than it may read.
std::vector<Kel8u> areaOf(const Kind &kind, int step, const Pattern &pattern) {
    std::vector<Kel8u> bytes(kind.area(step));
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<Kel8u>(pattern(static_cast<int>(i) / step, static_cast<int>(i) % step));
    return bytes;
}

std::map<Path, int> compare(const Kind &kind, int step, int quant, int flag, int secondFlag,
                            const Pattern &pattern) {
    std::map<Path, int> paths;
    std::vector<Kel8u> bytes = areaOf(kind, step, pattern);
    Model model(kind, bytes, step);
    model.filter(quant, flag, secondFlag, paths);
    EXPECT_EQ(kelStsNoErr, kind.filter(bytes.data() + 4 * kind.across(step), quant, step, flag, secondFlag));
    EXPECT_EQ(model.bytes(), std::vector<int>(bytes.begin(), bytes.end()))
        << kind.name << ", step " << step << ", quant " << quant << ", flags " << flag << ", " << secondFlag;
    return paths;
}

// Around a mean, so that all conditions are met now and then.
Pattern unevenAround(unsigned seed, int middle, int range) {
    return [values = noise(seed, range), middle, range](int row, int col) {
        return std::clamp(middle - range / 2 + values(row, col), 0, 255);
    };
}

// One line of a vertical edge of chroma whose other lines are flat; its number in the segment tells whether
// it decides.
using LineOf8 = std::vector<int>;

std::vector<Kel8u> lines(const LineOf8 &deciding, const LineOf8 &others) {
    std::vector<Kel8u> bytes;
    for (int line = 0; line < 8; ++line) {
        const LineOf8 &v = line % 4 == 2 ? deciding : others;
        bytes.insert(bytes.end(), v.begin(), v.end());
    }
    return bytes;
}

LineOf8 lineIn(const std::vector<Kel8u> &bytes, int line) {
    return LineOf8(bytes.begin() + 8 * line, bytes.begin() + 8 * line + 8);
}

std::vector<Kel8u> filtered(std::vector<Kel8u> bytes, int quant, int flag = 0) {
    EXPECT_EQ(kelStsNoErr, keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR(bytes.data() + 4, quant, 8, flag));
    return bytes;
}

const LineOf8 step10 = {100, 100, 100, 100, 110, 110, 110, 110};
const LineOf8 step10Filtered = {100, 100, 100, 102, 108, 110, 110, 110};
const LineOf8 step24 = {100, 100, 100, 100, 124, 124, 124, 124};
const LineOf8 flat(8, 100);

} // namespace

// ---- against the model ---------------------------------------------------------------------

TEST(KelvaraVc1Deblocking, EdgesAreFilteredStepByStep) {
    std::map<Path, int> paths;
    unsigned seed = 0;
    for (const Kind &kind : kinds) {
        for (int quant = 1; quant <= 31; ++quant) {
            for (const int range : {3, 9, 20, 60, 255}) {
                for (const int middle : {2, 128, 253}) {
                    for (const int more : {0, 1, 13}) {
                        const auto some = compare(kind, kind.minStep() + more, quant, 0, 0,
                                                  unevenAround(++seed, middle, range));
                        for (const auto &path : some) paths[path.first] += path.second;
                    }
                }
            }
        }
    }
    for (const Path path : {PictureEdge, Smooth, NoStep, Still, Changed}) EXPECT_GT(paths[path], 100) << path;
}

TEST(KelvaraVc1Deblocking, ExtremeSamplesStayInTheirRange) {
    const Pattern blackOrWhite = [choice = noise(3, 1)](int row, int col) { return 255 * choice(row, col); };
    for (const Kind &kind : kinds) {
        for (const Pattern &pattern : {constant(0), constant(255), checkerboard(255), blackOrWhite})
            compare(kind, kind.minStep() + 2, 31, 0, 0, pattern);
    }
}

TEST(KelvaraVc1Deblocking, EachFlagLeavesOutItsSegmentOfItsColour) {
    for (const Kind &kind : kinds) {
        const int all = 1 << kind.lines / 4;
        for (int flag = 0; flag < all; ++flag) {
            for (int secondFlag = 0; secondFlag < (kind.channels == 2 ? all : 1); ++secondFlag)
                compare(kind, kind.minStep() + 1, 12, flag, secondFlag, unevenAround(flag, 128, 12));
        }
    }
}

// ---- worked out by hand --------------------------------------------------------------------

// a0 is 4, a3 is 0, so that d is -20 / 8.
TEST(KelvaraVc1Deblocking, AStepOfTenIsFilteredByTwo) {
    const std::vector<Kel8u> out = filtered(lines(step10, step10), 8);
    for (int line = 0; line < 8; ++line) EXPECT_EQ(lineIn(out, line), step10Filtered) << line;
}

TEST(KelvaraVc1Deblocking, TheThirdLineOfFourDecides) {
    std::vector<Kel8u> out = filtered(lines(flat, step10), 8);
    for (int line = 0; line < 8; ++line) EXPECT_EQ(lineIn(out, line), line % 4 == 2 ? flat : step10) << line;
    out = filtered(lines(step10, flat), 8);
    for (int line = 0; line < 8; ++line)
        EXPECT_EQ(lineIn(out, line), line % 4 == 2 ? step10Filtered : flat) << line;
}

// d has not the sign of the step: the line stays, and the others are filtered all the same.
TEST(KelvaraVc1Deblocking, ADecidingLineThatStaysLetsTheOthersBeFiltered) {
    const LineOf8 still = {80, 84, 92, 100, 102, 108, 110, 110};
    const std::vector<Kel8u> out = filtered(lines(still, step10), 31);
    EXPECT_EQ(lineIn(out, 2), still);
    EXPECT_EQ(lineIn(out, 0), step10Filtered);
    EXPECT_EQ(lineIn(out, 7), step10Filtered);
}

// a0 of a step of 24 is 9.
TEST(KelvaraVc1Deblocking, AnEdgeOfThePictureStays) {
    EXPECT_EQ(filtered(lines(step24, step10), 9), lines(step24, step10));
    EXPECT_NE(filtered(lines(step24, step10), 10), lines(step24, step10));
}

// One sample of difference is no step: half of it is 0.
TEST(KelvaraVc1Deblocking, AStepOfOneStaysAndKeepsTheOthersFromBeingFiltered) {
    const LineOf8 one = {100, 110, 110, 100, 101, 91, 101, 101};
    EXPECT_EQ(filtered(lines(one, step10), 31), lines(one, step10));
}

TEST(KelvaraVc1Deblocking, AFlagOfOneLeavesOutTheFirstFourLines) {
    const std::vector<Kel8u> out = filtered(lines(step10, step10), 8, 1);
    for (int line = 0; line < 8; ++line)
        EXPECT_EQ(lineIn(out, line), line < 4 ? step10 : step10Filtered) << line;
}

// ---- arguments -----------------------------------------------------------------------------

TEST(KelvaraVc1Deblocking, BadArgumentsAreRefusedInOrder) {
    for (const Kind &kind : kinds) {
        SCOPED_TRACE(kind.name);
        const int step = kind.minStep(), all = 1 << kind.lines / 4;
        const std::vector<Kel8u> before = areaOf(kind, step, unevenAround(1, 128, 10));
        std::vector<Kel8u> bytes = before;
        Kel8u *p = bytes.data() + 4 * kind.across(step);
        EXPECT_EQ(kelStsNullPtrErr, kind.filter(nullptr, 0, 0, -1, -1));
        for (const int bad : {step - 1, 0, -step})
            EXPECT_EQ(kelStsStepErr, kind.filter(p, 0, bad, -1, -1)) << bad;
        for (const int bad : {0, 32, -8, 1 << 30})
            EXPECT_EQ(kelStsRangeErr, kind.filter(p, bad, step, 0, 0)) << bad;
        for (const int bad : {-1, all, 1 << 30}) {
            EXPECT_EQ(kelStsRangeErr, kind.filter(p, 8, step, bad, 0)) << bad;
            if (kind.two) {
                EXPECT_EQ(kelStsRangeErr, kind.filter(p, 8, step, 0, bad)) << bad;
            }
        }
        EXPECT_EQ(bytes, before);
    }
}

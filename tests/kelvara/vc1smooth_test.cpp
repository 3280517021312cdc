// vc1smooth_test.cpp - overlap smoothing of VC-1, against the matrix of SMPTE 421M 8.5 on planes of samples.

#include "kelvc.h"
#include "vc1block.h"

namespace {

using vc1model::Plane;
using vc1model::planeOf;

// ---- the model -----------------------------------------------------------------------------

// Lines count from one, so that the first is odd.
std::vector<int> smoothed(const std::vector<long long> &x, int line) {
    static const int matrix[4][4] = {{7, 0, 0, 1}, {-1, 7, 1, 1}, {1, 1, 7, -1}, {1, 0, 0, 7}};
    const int odd[4] = {4, 3, 4, 3}, even[4] = {3, 4, 3, 4};
    std::vector<int> y(4);
    for (int i = 0; i < 4; ++i) {
        double sum = line % 2 ? odd[i] : even[i];
        for (int k = 0; k < 4; ++k) sum += static_cast<double>(matrix[i][k] * x[k]);
        y[i] = static_cast<int>(std::floor(sum / 8));
    }
    return y;
}

// Smooths the edge before column col of one row.
void smoothRow(Plane &plane, int row, int col, int line) {
    const std::vector<int> y =
        smoothed({plane[row][col - 2], plane[row][col - 1], plane[row][col], plane[row][col + 1]}, line);
    for (int i = 0; i < 4; ++i) plane[row][col - 2 + i] = y[i];
}

// Smooths the edge before row `row` of one column.
void smoothColumn(Plane &plane, int row, int col, int line) {
    const std::vector<int> y =
        smoothed({plane[row - 2][col], plane[row - 1][col], plane[row][col], plane[row + 1][col]}, line);
    for (int i = 0; i < 4; ++i) plane[row - 2 + i][col] = y[i];
}

// ---- blocks and pictures -------------------------------------------------------------------

Plane part(const Plane &plane, int top, int left, int rows, int width) {
    return planeOf(width, rows,
                   [&](int row, int col) { return static_cast<int>(plane[top + row][left + col]); });
}

// A block with the rows and columns of the plane from (top, left) on.
class Block {
public:
    Block(const Plane &plane, int top, int left, int rows, int width, int step, int offset = 0)
        : m_block(vc1model::blockOf(part(plane, top, left, rows, width), step, offset)),
          m_rows(rows),
          m_width(width) {}

    Kel16s *data() { return m_block.data(); }
    void expect(const Plane &plane, int top, int left) {
        vc1model::expectBlock(m_block, part(plane, top, left, m_rows, m_width));
    }

private:
    DstBlock<Kel16s> m_block;
    int m_rows, m_width;
};

const int untouchedMark = 0xA5; // of Destination

// A picture with `before` rows and columns in front of the macroblock, all of them marked as not written.
class Picture {
public:
    Picture(int width, int height, int before, int channels = 1)
        : m_bytes(channels * width * height),
          m_step(channels * width),
          m_before(before),
          m_channels(channels) {}

    Kel8u *data() { return m_bytes.data() + m_before * m_step + m_before * m_channels; }
    int step() const { return m_step; }
    bool surroundingsIntact() const { return m_bytes.surroundingsIntact(); }
    bool untouched() const { return m_bytes.untouched(); }
    // -1 stands for the mark, as what is not written has it.
    int operator()(int row, int col, int channel = 0) {
        const int value = m_bytes[(row + m_before) * m_step + (col + m_before) * m_channels + channel];
        return value == untouchedMark ? -1 : value;
    }

private:
    Destination<Kel8u> m_bytes;
    int m_step, m_before, m_channels;
};

// Samples a little beyond those of 8 bits, as they are before they are limited.
Pattern reconstruction(unsigned seed) {
    return signedNoise(seed, -100, 355);
}

// The value that the picture is to hold where the samples were smoothed to it.
int shown(long long value) {
    const int limited = static_cast<int>(std::clamp(value, 0LL, 255LL));
    return limited == untouchedMark ? -1 : limited;
}

// Line of a macroblock sorted by field, or not, that is line `row` of the picture.
int sortedLine(int row, bool sorted) {
    return sorted ? (row % 2 ? 8 : 0) + row / 2 : row;
}

struct LumaRow {
    bool edge[2]; // smoothed before the macroblock, in its middle
};

// The lines of a vertical edge that flags leave on, by line of the macroblock behind it.
LumaRow enabled(int flags, int line) {
    const int half = line / 8;
    return {{!(flags & (half ? 2 : 1)), !(flags & (half ? 8 : 4))}};
}

} // namespace

// ---- luma ---------------------------------------------------------------------------------

// The macroblocks lie in planes as they are sorted; the model smooths lines of both, wherever they lie.
TEST(KelvaraVc1Smooth, VerticalEdgesOfLumaByAllFlags) {
    unsigned seed = 0;
    for (int fields = 0; fields < 4; ++fields) {
        for (int disable = 0; disable < 16; ++disable) {
            Plane left = planeOf(2, 16, reconstruction(++seed)),
                  right = planeOf(16, 16, reconstruction(++seed));
            const int leftStep = 32 + 7 * (seed % 3), rightStep = 32 + seed % 5;
            Block blockL(left, 0, 0, 16, 2, leftStep, seed % 3),
                blockR(right, 0, 0, 16, 16, rightStep, seed % 2);
            Picture picture(40, 24, 4);
            ASSERT_EQ(kelStsNoErr, keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(
                                       blockL.data(), leftStep, blockR.data(), rightStep, picture.data(),
                                       picture.step(), fields, disable));
            Plane shownRows = planeOf(20, 16, constant(-1)); // columns from -4 on
            for (int row = 0; row < 16; ++row) {
                const int l = sortedLine(row, fields & 1), r = sortedLine(row, fields & 2);
                const LumaRow on = enabled(disable, r);
                Plane line(1, left[l]);
                line[0].insert(line[0].end(), right[r].begin(), right[r].end());
                if (on.edge[0]) smoothRow(line, 0, 2, row + 1);
                if (on.edge[1]) smoothRow(line, 0, 10, row + 1);
                for (int i = 0; i < 4; ++i) {
                    if (on.edge[0]) shownRows[row][2 + i] = shown(line[0][i]);
                    if (on.edge[1]) shownRows[row][10 + i] = shown(line[0][8 + i]);
                }
                left[l].assign(line[0].begin(), line[0].begin() + 2);
                right[r].assign(line[0].begin() + 2, line[0].end());
            }
            blockL.expect(left, 0, 0);
            blockR.expect(right, 0, 0);
            EXPECT_TRUE(picture.surroundingsIntact());
            for (int row = -4; row < 20; ++row) {
                for (int col = -4; col < 36; ++col) {
                    const bool inside = row >= 0 && row < 16 && col < 16;
                    ASSERT_EQ(picture(row, col), inside ? shownRows[row][col + 4] : -1)
                        << "flags " << fields << ", " << disable << ", row " << row << ", column " << col;
                }
            }
        }
    }
}

TEST(KelvaraVc1Smooth, HorizontalEdgesOfLumaByAllFlags) {
    unsigned seed = 0;
    for (int disable = 0; disable < 16; ++disable) {
        Plane plane = planeOf(16, 18, reconstruction(++seed)); // two rows before the macroblock
        const int upperStep = 32 + seed % 3, bottomStep = 32 + 7 * (seed % 3);
        Source<Kel16s> upper(2, 16, upperStep, seed % 3), bottom(16, 16, bottomStep, seed % 2);
        upper.fill([&](int row, int col) { return static_cast<int>(plane[row][col]); });
        bottom.fill([&](int row, int col) { return static_cast<int>(plane[2 + row][col]); });
        Picture picture(40, 24, 4);
        ASSERT_EQ(kelStsNoErr,
                  keliSmoothingLuma_HorEdge_VC1_16s8u_C1R(upper.data(), upperStep, bottom.data(), bottomStep,
                                                          picture.data(), picture.step(), disable));
        Plane seen = planeOf(40, 24, constant(-1));
        for (int col = 0; col < 16; ++col) {
            const LumaRow on = enabled(disable, col);
            if (on.edge[0]) smoothColumn(plane, 2, col, col + 1);
            if (on.edge[1]) smoothColumn(plane, 10, col, col + 1);
            for (int i = 0; i < 4; ++i) {
                if (on.edge[0]) seen[2 + i][4 + col] = shown(plane[i][col]);
                if (on.edge[1]) seen[10 + i][4 + col] = shown(plane[8 + i][col]);
            }
        }
        EXPECT_TRUE(picture.surroundingsIntact());
        for (int row = -4; row < 20; ++row) {
            for (int col = -4; col < 36; ++col)
                ASSERT_EQ(picture(row, col), seen[row + 4][col + 4]) << disable << ": " << row << ", " << col;
        }
    }
}

// All vertical edges, then all horizontal ones, over the unlimited results: the corners tell the order.
TEST(KelvaraVc1Smooth, HorizontalEdgesGoOnFromTheUnlimitedVerticalOnes) {
    for (unsigned seed = 1; seed < 20; ++seed) {
        Plane plane = planeOf(18, 18, reconstruction(seed)); // two rows and columns before the macroblock
        Block above(plane, 0, 2, 2, 16, 32), left(plane, 2, 0, 16, 2, 32), block(plane, 2, 2, 16, 16, 32);
        Picture picture(40, 24, 4);
        ASSERT_EQ(kelStsNoErr, keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(left.data(), 32, block.data(), 32,
                                                                       picture.data(), picture.step(), 0, 0));
        ASSERT_EQ(kelStsNoErr, keliSmoothingLuma_HorEdge_VC1_16s8u_C1R(above.data(), 32, block.data(), 32,
                                                                       picture.data(), picture.step(), 0));
        for (int edge : {2, 10}) {
            for (int row = 2; row < 18; ++row) smoothRow(plane, row, edge, row - 1);
        }
        for (int edge : {2, 10}) {
            for (int col = 2; col < 18; ++col) smoothColumn(plane, edge, col, col - 1);
        }
        for (int row = 0; row < 18; ++row) {
            for (int col = 0; col < 18; ++col) {
                const bool byRow = row >= 2 && (col < 4 || (col >= 8 && col < 12));
                const bool byColumn = col >= 2 && (row < 4 || (row >= 8 && row < 12));
                ASSERT_EQ(picture(row - 2, col - 2), byRow || byColumn ? shown(plane[row][col]) : -1)
                    << row << ", " << col;
            }
        }
    }
}

// ---- chroma -------------------------------------------------------------------------------

TEST(KelvaraVc1Smooth, VerticalEdgesOfChroma) {
    for (unsigned seed = 1; seed < 40; ++seed) {
        Plane plane = planeOf(10, 8, reconstruction(seed));
        const int leftStep = 16 + seed % 3, rightStep = 16 + seed % 5;
        Block left(plane, 0, 0, 8, 2, leftStep), right(plane, 0, 2, 8, 8, rightStep, seed % 2);
        Picture picture(16, 16, 4);
        ASSERT_EQ(kelStsNoErr,
                  keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(left.data(), leftStep, right.data(), rightStep,
                                                            picture.data(), picture.step()));
        for (int row = 0; row < 8; ++row) smoothRow(plane, row, 2, row + 1);
        left.expect(plane, 0, 0);
        right.expect(plane, 0, 2);
        for (int row = -4; row < 12; ++row) {
            for (int col = -4; col < 12; ++col) {
                const bool written = row >= 0 && row < 8 && col >= -2 && col < 2;
                ASSERT_EQ(picture(row, col), written ? shown(plane[row][col + 2]) : -1) << row << ", " << col;
            }
        }
    }
}

TEST(KelvaraVc1Smooth, HorizontalEdgesOfChroma) {
    for (unsigned seed = 1; seed < 40; ++seed) {
        Plane plane = planeOf(8, 4, reconstruction(seed));
        const int step = 16 + seed % 5;
        Source<Kel16s> upper(2, 8, step), bottom(2, 8, step, seed % 2); // no more rows are read
        upper.fill([&](int row, int col) { return static_cast<int>(plane[row][col]); });
        bottom.fill([&](int row, int col) { return static_cast<int>(plane[2 + row][col]); });
        Picture picture(16, 16, 4);
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_HorEdge_VC1_16s8u_C1R(
                                   upper.data(), step, bottom.data(), step, picture.data(), picture.step()));
        for (int col = 0; col < 8; ++col) smoothColumn(plane, 2, col, col + 1);
        for (int row = -4; row < 12; ++row) {
            for (int col = -4; col < 12; ++col) {
                const bool written = row >= -2 && row < 2 && col >= 0 && col < 8;
                ASSERT_EQ(picture(row, col), written ? shown(plane[row + 2][col]) : -1) << row << ", " << col;
            }
        }
    }
}

// Two colours are each what the form for one colour gives.
TEST(KelvaraVc1Smooth, InterleavedColoursAreEachTheirOwn) {
    for (unsigned seed = 1; seed < 20; ++seed) {
        const Plane u = planeOf(10, 10, reconstruction(seed)),
                    v = planeOf(10, 10, reconstruction(seed + 1000));
        Block leftU(u, 2, 0, 8, 2, 16), rightU(u, 2, 2, 8, 8, 18), leftV(v, 2, 0, 8, 2, 20),
            rightV(v, 2, 2, 8, 8, 22);
        Block oneLeftU(u, 2, 0, 8, 2, 16), oneRightU(u, 2, 2, 8, 8, 16), oneLeftV(v, 2, 0, 8, 2, 16),
            oneRightV(v, 2, 2, 8, 8, 16);
        Block upperU(u, 0, 2, 2, 8, 16), upperV(v, 0, 2, 2, 8, 18);
        Picture both(16, 16, 4, 2), onlyU(16, 16, 4), onlyV(16, 16, 4);
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(
                                   leftU.data(), 16, rightU.data(), 18, leftV.data(), 20, rightV.data(), 22,
                                   both.data(), both.step()));
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(
                                   oneLeftU.data(), 16, oneRightU.data(), 16, onlyU.data(), onlyU.step()));
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(
                                   oneLeftV.data(), 16, oneRightV.data(), 16, onlyV.data(), onlyV.step()));
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(
                                   upperU.data(), 16, rightU.data(), 18, upperV.data(), 18, rightV.data(), 22,
                                   both.data(), both.step()));
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_HorEdge_VC1_16s8u_C1R(upperU.data(), 16, oneRightU.data(),
                                                                         16, onlyU.data(), onlyU.step()));
        ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_HorEdge_VC1_16s8u_C1R(upperV.data(), 18, oneRightV.data(),
                                                                         16, onlyV.data(), onlyV.step()));
        EXPECT_TRUE(both.surroundingsIntact());
        for (int row = -4; row < 12; ++row) {
            for (int col = -4; col < 12; ++col) {
                ASSERT_EQ(both(row, col, 0), onlyU(row, col)) << row << ", " << col;
                ASSERT_EQ(both(row, col, 1), onlyV(row, col)) << row << ", " << col;
            }
        }
    }
}

// ---- values --------------------------------------------------------------------------------

// x3 of 4 leaves a half in y0: (4 + 4) >> 3 on odd lines, (4 + 3) >> 3 on even ones.
TEST(KelvaraVc1Smooth, HalvesGoUpAndDownInTurn) {
    const Plane plane = planeOf(10, 8, [](int, int col) { return col == 3 ? 4 : 0; });
    Block left(plane, 0, 0, 8, 2, 16), right(plane, 0, 2, 8, 8, 16);
    Picture picture(16, 16, 4);
    ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(left.data(), 16, right.data(), 16,
                                                                     picture.data(), picture.step()));
    for (int row = 0; row < 8; ++row) {
        EXPECT_EQ(picture(row, -2), row % 2 ? 0 : 1);
        EXPECT_EQ(picture(row, -1), row % 2 ? 1 : 0);
        EXPECT_EQ(picture(row, 0), 0);
        EXPECT_EQ(picture(row, 1), row % 2 ? 4 : 3);
    }
}

// All lines of a field have the same rounding, in whatever order the macroblocks hold them.
TEST(KelvaraVc1Smooth, LinesAreRoundedByTheirPlaceInThePicture) {
    const Plane plane = planeOf(18, 16, [](int, int col) { return col == 3 || col == 11 ? 4 : 0; });
    for (int fields = 0; fields < 4; ++fields) {
        Block left(plane, 0, 0, 16, 2, 32), right(plane, 0, 2, 16, 16, 32);
        Picture picture(40, 24, 4);
        ASSERT_EQ(kelStsNoErr,
                  keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(left.data(), 32, right.data(), 32, picture.data(),
                                                          picture.step(), fields, 0));
        for (int row = 0; row < 16; ++row) {
            for (int edge : {0, 8}) {
                EXPECT_EQ(picture(row, edge - 2), row % 2 ? 0 : 1) << fields << ", row " << row;
                EXPECT_EQ(picture(row, edge - 1), row % 2 ? 1 : 0) << fields << ", row " << row;
                EXPECT_EQ(picture(row, edge + 1), row % 2 ? 4 : 3) << fields << ", row " << row;
            }
        }
    }
}

TEST(KelvaraVc1Smooth, FlatBlocksStayAsTheyAre) {
    for (int value = 0; value < 256; ++value) {
        if (value == untouchedMark) continue;
        const Plane plane = planeOf(18, 16, constant(value));
        Block left(plane, 0, 0, 16, 2, 32), right(plane, 0, 2, 16, 16, 32);
        Picture picture(40, 24, 4);
        ASSERT_EQ(kelStsNoErr, keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(left.data(), 32, right.data(), 32,
                                                                       picture.data(), picture.step(), 0, 0));
        left.expect(plane, 0, 0);
        right.expect(plane, 0, 2);
        for (int row = 0; row < 16; ++row) EXPECT_EQ(picture(row, 0), value);
    }
}

TEST(KelvaraVc1Smooth, ExtremesAreLimited) {
    Plane plane = planeOf(10, 8, [](int, int col) { return col == 0 ? -32768 : 32767; });
    Block left(plane, 0, 0, 8, 2, 16), right(plane, 0, 2, 8, 8, 16);
    Picture picture(16, 16, 4);
    ASSERT_EQ(kelStsNoErr, keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(left.data(), 16, right.data(), 16,
                                                                     picture.data(), picture.step()));
    for (int row = 0; row < 8; ++row) {
        smoothRow(plane, row, 2, row + 1);
        EXPECT_GT(plane[row][1], 32767);
        EXPECT_EQ(picture(row, -2), 0);
        EXPECT_EQ(picture(row, -1), 255);
    }
    left.expect(plane, 0, 0);
    right.expect(plane, 0, 2);
}

// ---- arguments -----------------------------------------------------------------------------

TEST(KelvaraVc1Smooth, LumaRefusesBadArguments) {
    const Plane plane = planeOf(16, 16, constant(0));
    Block before(plane, 0, 0, 16, 16, 32), behind(plane, 0, 0, 16, 16, 32);
    Picture picture(40, 24, 4);
    Kel16s *p = before.data(), *q = behind.data();
    Kel8u *d = picture.data();
    const auto ver = keliSmoothingLuma_VerEdge_VC1_16s8u_C1R;
    const auto hor = keliSmoothingLuma_HorEdge_VC1_16s8u_C1R;
    EXPECT_EQ(kelStsNullPtrErr, ver(nullptr, 0, q, 0, d, 0, -1, -1));
    EXPECT_EQ(kelStsNullPtrErr, ver(p, 0, nullptr, 0, d, 0, -1, -1));
    EXPECT_EQ(kelStsNullPtrErr, ver(p, 0, q, 0, nullptr, 0, -1, -1));
    EXPECT_EQ(kelStsNullPtrErr, hor(nullptr, 0, q, 0, d, 0, -1));
    EXPECT_EQ(kelStsNullPtrErr, hor(p, 0, nullptr, 0, d, 0, -1));
    EXPECT_EQ(kelStsNullPtrErr, hor(p, 0, q, 0, nullptr, 0, -1));
    for (int step : {31, 0, -32}) {
        EXPECT_EQ(kelStsStepErr, ver(p, step, q, 32, d, 40, -1, -1));
        EXPECT_EQ(kelStsStepErr, ver(p, 32, q, step, d, 40, -1, -1));
        EXPECT_EQ(kelStsStepErr, ver(p, 32, q, 32, d, step / 2, -1, -1));
        EXPECT_EQ(kelStsStepErr, hor(p, step, q, 32, d, 40, -1));
        EXPECT_EQ(kelStsStepErr, hor(p, 32, q, step, d, 40, -1));
        EXPECT_EQ(kelStsStepErr, hor(p, 32, q, 32, d, step / 2, -1));
    }
    for (int flag : {-1, 4, 16, 1 << 30}) EXPECT_EQ(kelStsRangeErr, ver(p, 32, q, 32, d, 40, flag, 0));
    for (int flag : {-1, 16, 1 << 30}) {
        EXPECT_EQ(kelStsRangeErr, ver(p, 32, q, 32, d, 40, 0, flag));
        EXPECT_EQ(kelStsRangeErr, hor(p, 32, q, 32, d, 40, flag));
    }
    EXPECT_TRUE(picture.untouched());
    before.expect(plane, 0, 0);
    behind.expect(plane, 0, 0);
}

TEST(KelvaraVc1Smooth, ChromaRefusesBadArguments) {
    const Plane plane = planeOf(8, 8, constant(0));
    Block before(plane, 0, 0, 8, 8, 16), behind(plane, 0, 0, 8, 8, 16);
    Picture picture(16, 16, 4);
    Kel16s *p = before.data(), *q = behind.data();
    Kel8u *d = picture.data();
    const auto ver = keliSmoothingChroma_VerEdge_VC1_16s8u_C1R;
    const auto hor = keliSmoothingChroma_HorEdge_VC1_16s8u_C1R;
    EXPECT_EQ(kelStsNullPtrErr, ver(nullptr, 0, q, 0, d, 0));
    EXPECT_EQ(kelStsNullPtrErr, ver(p, 0, nullptr, 0, d, 0));
    EXPECT_EQ(kelStsNullPtrErr, ver(p, 0, q, 0, nullptr, 0));
    EXPECT_EQ(kelStsNullPtrErr, hor(nullptr, 0, q, 0, d, 0));
    EXPECT_EQ(kelStsNullPtrErr, hor(p, 0, nullptr, 0, d, 0));
    EXPECT_EQ(kelStsNullPtrErr, hor(p, 0, q, 0, nullptr, 0));
    for (int step : {15, 0, -16}) {
        EXPECT_EQ(kelStsStepErr, ver(p, step, q, 16, d, 16));
        EXPECT_EQ(kelStsStepErr, ver(p, 16, q, step, d, 16));
        EXPECT_EQ(kelStsStepErr, ver(p, 16, q, 16, d, step / 2));
        EXPECT_EQ(kelStsStepErr, hor(p, step, q, 16, d, 16));
        EXPECT_EQ(kelStsStepErr, hor(p, 16, q, step, d, 16));
        EXPECT_EQ(kelStsStepErr, hor(p, 16, q, 16, d, step / 2));
    }
    EXPECT_TRUE(picture.untouched());
    before.expect(plane, 0, 0);
    behind.expect(plane, 0, 0);
}

TEST(KelvaraVc1Smooth, InterleavedChromaRefusesBadArguments) {
    const Plane plane = planeOf(8, 8, constant(0));
    Block blocks[4] = {Block(plane, 0, 0, 8, 8, 16), Block(plane, 0, 0, 8, 8, 16),
                       Block(plane, 0, 0, 8, 8, 16), Block(plane, 0, 0, 8, 8, 16)};
    Picture picture(16, 16, 4, 2);
    const auto expectBoth = [&](KelStatus status, Kel16s *const(&p)[4], const int(&step)[4], Kel8u *dst,
                                int dstStep) {
        EXPECT_EQ(status, keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(p[0], step[0], p[1], step[1], p[2],
                                                                      step[2], p[3], step[3], dst, dstStep));
        EXPECT_EQ(status, keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(p[0], step[0], p[1], step[1], p[2],
                                                                      step[2], p[3], step[3], dst, dstStep));
    };
    Kel16s *p[4] = {blocks[0].data(), blocks[1].data(), blocks[2].data(), blocks[3].data()};
    int steps[4] = {0, 0, 0, 0};
    for (int i = 0; i < 4; ++i) {
        Kel16s *const kept = p[i];
        p[i] = nullptr;
        expectBoth(kelStsNullPtrErr, p, steps, picture.data(), 0);
        p[i] = kept;
    }
    expectBoth(kelStsNullPtrErr, p, steps, nullptr, 0);
    for (int i = 0; i < 4; ++i) {
        for (int &step : steps) step = 16;
        for (int bad : {15, 0, -16}) {
            steps[i] = bad;
            expectBoth(kelStsStepErr, p, steps, picture.data(), 32);
        }
    }
    for (int &step : steps) step = 16;
    for (int bad : {15, 0, -32}) expectBoth(kelStsStepErr, p, steps, picture.data(), bad);
    EXPECT_TRUE(picture.untouched());
    for (Block &block : blocks) block.expect(plane, 0, 0);
}

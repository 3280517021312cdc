// vc1interpolate_test.cpp - interpolation of VC-1, with and without compensated intensity, sample by sample.

#include "kelvc.h"
#include "predictionmodel.h"
#include "vc1motionmodel.h"

#include <gtest/gtest.h>

#include <climits>
#include <deque>
#include <string>

namespace {

// ---- the functions, by what they have in common ------------------------------------------

struct Kind {
    char const *name;
    bool bicubic;
    int channels;
    KelStatus (*interpolate)(const KeliInterpolateVC1_8u *);
    KelStatus (*compensate)(const KeliInterpolateICBlockVC1_8u *);

    int model(const vc1model::Around &at, int dx, int dy, int roundControl) const {
        return bicubic ? vc1model::bicubic(at, dx, dy, roundControl)
                       : vc1model::bilinear(at, dx, dy, roundControl);
    }
};

const Kind kinds[] = {
    {"bilinear", false, 1, keliInterpolateQPBilinear_VC1_8u_C1R, keliInterpolateICBilinearBlock_VC1_8u_C1R},
    {"pairs", false, 2, keliInterpolateQPBilinear_VC1_8u_C2R, keliInterpolateICBilinearBlock_VC1_8u_C2R},
    {"bicubic", true, 1, keliInterpolateQPBicubic_VC1_8u_C1R, keliInterpolateICBicubicBlock_VC1_8u_C1R}};

const KeliSize sizes[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4}, {1, 1}, {3, 5}};
const KeliSize notBlocks[] = {{0, 4}, {4, 0}, {17, 4}, {4, 17}, {-4, 4}, {4, -4}, {1 << 30, 4}};
const int notFractions[] = {-1, 4, 1 << 30, INT_MIN};

// ---- a block -----------------------------------------------------------------------------

struct Case {
    Kind kind;
    KeliSize size;
    int dx, dy, roundControl;
    int srcStep, dstStep; // beyond the row
    Pattern pattern;
};

// Rows or columns that are read in front of and behind a block.
int inFront(const Kind &kind, int quarters) {
    return kind.bicubic && quarters ? 1 : 0;
}
int behind(const Kind &kind, int quarters) {
    return !quarters ? 0 : kind.bicubic ? 2 : 1;
}

// The source has the samples that the block needs and ends at a forbidden page.
void compare(const Case &c) {
    const int channels = c.kind.channels, w = c.size.width, h = c.size.height;
    const int left = inFront(c.kind, c.dx), top = inFront(c.kind, c.dy);
    const int width = channels * (left + w + behind(c.kind, c.dx)), height = top + h + behind(c.kind, c.dy);
    Source<Kel8u> src(height, width, width + c.srcStep);
    src.fill(c.pattern);
    DstBlock<Kel8u> dst(h, channels * w, channels * w + c.dstStep, c.dstStep % 7);
    const Kel8u *first = src.data() + top * src.step() + channels * left;
    const KeliInterpolateVC1_8u param = {first, src.step(), dst.data(), dst.step(),
                                         c.dx,  c.dy,       c.size,     c.roundControl};
    ASSERT_EQ(kelStsNoErr, c.kind.interpolate(&param));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < channels * w; ++col) {
            const auto at = [&](int y, int x) { return src(top + row + y, channels * (left + x) + col); };
            ASSERT_EQ(c.kind.model(at, c.dx, c.dy, c.roundControl), dst(row, col)) << row << ", " << col;
        }
    }
}

void compareAtAllPositions(const Kind &kind, KeliSize size, int srcStep, int dstStep,
                           const Pattern &pattern) {
    for (int n = 0; n < 32; ++n) {
        SCOPED_TRACE(testing::Message()
                     << kind.name << " " << size.width << "x" << size.height << ", case " << n);
        compare({kind, size, n % 4, n / 4 % 4, n / 16, srcStep, dstStep, pattern});
    }
}

// ---- a frame -----------------------------------------------------------------------------

struct Tables {
    Tables() {
        for (int i = 0; i < 256; ++i) {
            top[i] = static_cast<Kel8u>(std::min(255, 20 + 3 * i / 4));
            bottom[i] = static_cast<Kel8u>(255 - i);
        }
    }

    Kel8u top[256], bottom[256];
};

const Tables tables;

struct Flags {
    int fieldPrediction, bottomField, fieldPadding;
};

// The reference as a decoder makes it: compensated first, then, if so, one of its fields, then enlarged by
// rows and columns on all sides.
class Reference {
public:
    Reference(const Source<Kel8u> &frame, KeliSize size, int channels, const Flags &flags) {
        for (int row = 0; row < size.height; ++row) {
            const Kel8u *table = row % 2 ? tables.bottom : tables.top;
            std::vector<int> samples;
            for (int col = 0; col < channels * size.width; ++col) samples.push_back(table[frame(row, col)]);
            if (!flags.fieldPrediction || row % 2 == flags.bottomField) m_rows.push_back(samples);
        }
        const int period = flags.fieldPadding && !flags.fieldPrediction ? 2 : 1;
        for (int i = 0; i < edge; ++i) {
            const std::vector<int> above = m_rows[period - 1], below = m_rows[m_rows.size() - period];
            m_rows.push_front(above);
            m_rows.push_back(below);
        }
        m_channels = channels;
        m_width = size.width;
    }

    int operator()(int row, int col, int channel) const {
        return m_rows.at(row + edge)[m_channels * std::clamp(col, 0, m_width - 1) + channel];
    }

private:
    static const int edge = 40; // as far as blocks are from the frame

    std::deque<std::vector<int>> m_rows;
    int m_channels, m_width;
};

const KeliSize frameSize = {20, 13};

KeliInterpolateICBlockVC1_8u record(const Source<Kel8u> &frame, KeliSize size, DstBlock<Kel8u> &dst) {
    return {frame.data(),
            frame.step(),
            dst.data(),
            dst.step(),
            tables.bottom,
            tables.top,
            frameSize,
            size,
            {0, 0},
            0,
            0,
            0,
            0,
            0,
            0};
}

struct FrameCase {
    Kind kind;
    KeliSize frame, size;
    KeliPoint position;
    int dx, dy, roundControl;
    Flags flags;
};

// The frame ends at a forbidden page.
void compare(const FrameCase &c) {
    const int channels = c.kind.channels, w = c.size.width, h = c.size.height;
    const int rowBytes = channels * std::max(c.frame.width, w);
    Source<Kel8u> frame(c.frame.height, channels * c.frame.width, rowBytes + 3);
    frame.fill(noise(17, 255));
    DstBlock<Kel8u> dst(h, channels * w, channels * w + 5);
    KeliInterpolateICBlockVC1_8u param = record(frame, c.size, dst);
    param.sizeFrame = c.frame;
    param.pointBlockPos = c.position;
    param.dx = c.dx;
    param.dy = c.dy;
    param.roundControl = c.roundControl;
    param.fieldPrediction = c.flags.fieldPrediction;
    param.bottomField = c.flags.bottomField;
    param.fieldPadding = c.flags.fieldPadding;
    ASSERT_EQ(kelStsNoErr, c.kind.compensate(&param));
    EXPECT_TRUE(dst.surroundingsIntact());
    const Reference reference(frame, c.frame, channels, c.flags);
    for (int row = 0; row < h; ++row) {
        for (int col = 0; col < channels * w; ++col) {
            const auto at = [&](int y, int x) {
                return reference(c.position.y + row + y, c.position.x + col / channels + x, col % channels);
            };
            ASSERT_EQ(c.kind.model(at, c.dx, c.dy, c.roundControl), dst(row, col)) << row << ", " << col;
        }
    }
}

const Flags allFlags[] = {{0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {1, 1, 0}, {1, 0, 1}, {1, 1, 1}};

} // namespace

// ---- interpolation -----------------------------------------------------------------------

TEST(KelvaraVc1Interpolate, EveryPositionOfEverySizeIsThatOfTheEquation) {
    for (const Kind &kind : kinds) {
        for (const KeliSize &size : sizes) {
            compareAtAllPositions(kind, size, 0, 0, noise(1, 255));
            compareAtAllPositions(kind, size, 33, 17, noise(2, 255));
        }
    }
}

TEST(KelvaraVc1Interpolate, ExtremeSamplesAreLimited) {
    const Pattern stripes = [](int, int col) { return col % 4 < 2 ? 255 : 0; };
    const Pattern bands = [](int row, int) { return row % 4 < 2 ? 0 : 255; };
    const Pattern blackOrWhite = [choice = noise(3, 1)](int row, int col) { return 255 * choice(row, col); };
    for (const Kind &kind : kinds) {
        for (const Pattern &pattern :
             {constant(0), constant(255), checkerboard(255), stripes, bands, blackOrWhite})
            compareAtAllPositions(kind, {16, 16}, 1, 2, pattern);
    }
}

// Values of 10.5, worked out by hand.
TEST(KelvaraVc1Interpolate, RoundControlTurnsHalvesTheOtherWay) {
    const Kel8u square[] = {10, 11, 12, 14};
    Kel8u dst = 0;
    KeliInterpolateVC1_8u param = {square, 2, &dst, 1, 2, 0, {1, 1}, 0};
    EXPECT_EQ(kelStsNoErr, keliInterpolateQPBilinear_VC1_8u_C1R(&param));
    EXPECT_EQ(dst, 11);
    param.roundControl = 1;
    EXPECT_EQ(kelStsNoErr, keliInterpolateQPBilinear_VC1_8u_C1R(&param));
    EXPECT_EQ(dst, 10);
    const Kel8u line[] = {10, 10, 11, 11};
    KeliInterpolateVC1_8u across = {line + 1, 4, &dst, 1, 2, 0, {1, 1}, 0};
    EXPECT_EQ(kelStsNoErr, keliInterpolateQPBicubic_VC1_8u_C1R(&across));
    EXPECT_EQ(dst, 11);
    across.roundControl = 1;
    EXPECT_EQ(kelStsNoErr, keliInterpolateQPBicubic_VC1_8u_C1R(&across));
    EXPECT_EQ(dst, 10);
    KeliInterpolateVC1_8u downwards = {line + 1, 1, &dst, 1, 0, 2, {1, 1}, 0};
    EXPECT_EQ(kelStsNoErr, keliInterpolateQPBicubic_VC1_8u_C1R(&downwards));
    EXPECT_EQ(dst, 10); // a column rounds the other way
    downwards.roundControl = 1;
    EXPECT_EQ(kelStsNoErr, keliInterpolateQPBicubic_VC1_8u_C1R(&downwards));
    EXPECT_EQ(dst, 11);
}

TEST(KelvaraVc1Interpolate, ARecordMayHaveAnyAddress) {
    Source<Kel8u> src(4, 4, 4);
    src.fill(noise(4, 255));
    DstBlock<Kel8u> dst(4, 4, 4);
    const KeliInterpolateVC1_8u param = {src.data(), 4, dst.data(), 4, 0, 0, {4, 4}, 0};
    unsigned char bytes[sizeof param + 1];
    std::memcpy(bytes + 1, &param, sizeof param);
    const void *moved = bytes + 1;
    EXPECT_EQ(kelStsNoErr,
              keliInterpolateQPBilinear_VC1_8u_C1R(static_cast<const KeliInterpolateVC1_8u *>(moved)));
    EXPECT_EQ(dst(3, 3), src(3, 3));
}

TEST(KelvaraVc1Interpolate, BadRecordsAreRefusedInOrder) {
    for (const Kind &kind : kinds) {
        Source<Kel8u> src(20, 40, 40);
        DstBlock<Kel8u> dst(16, 32, 32);
        const KeliInterpolateVC1_8u good = {src.data(), 40, dst.data(), 32, 0, 0, {16, 16}, 0};
        KeliInterpolateVC1_8u bad = {nullptr, 0, dst.data(), 0, 4, 4, {0, 0}, 2};
        const int row = 16 * kind.channels;
        EXPECT_EQ(kelStsNullPtrErr, kind.interpolate(nullptr));
        EXPECT_EQ(kelStsNullPtrErr, kind.interpolate(&bad));
        bad.pSrc = good.pSrc;
        bad.pDst = nullptr;
        EXPECT_EQ(kelStsNullPtrErr, kind.interpolate(&bad));
        bad.pDst = good.pDst;
        for (const KeliSize &size : notBlocks) {
            bad.roiSize = size;
            EXPECT_EQ(kelStsSizeErr, kind.interpolate(&bad));
        }
        bad.roiSize = good.roiSize;
        for (const int step : {0, -40, row - 1}) {
            bad.srcStep = step;
            bad.dstStep = 32;
            EXPECT_EQ(kelStsStepErr, kind.interpolate(&bad));
            bad.srcStep = 40;
            bad.dstStep = step;
            EXPECT_EQ(kelStsStepErr, kind.interpolate(&bad));
        }
        for (const int fraction : notFractions) {
            bad = good;
            bad.dx = fraction;
            EXPECT_EQ(kelStsRangeErr, kind.interpolate(&bad));
            bad = good;
            bad.dy = fraction;
            EXPECT_EQ(kelStsRangeErr, kind.interpolate(&bad));
        }
        for (const int roundControl : notRoundControls) {
            bad = good;
            bad.roundControl = roundControl;
            EXPECT_EQ(kelStsRangeErr, kind.interpolate(&bad));
        }
        EXPECT_TRUE(dst.untouched());
    }
}

// ---- intensity compensation --------------------------------------------------------------

TEST(KelvaraVc1Intensity, BlocksInTheFrameAtItsBordersAndOutsideOfItAreThoseOfACompensatedOne) {
    const KeliPoint places[] = {{3, 2},  {0, 0},   {16, 9},  {-1, -1},  {17, 10},
                                {-9, 5}, {6, -12}, {25, 20}, {-30, -20}};
    for (const Kind &kind : kinds) {
        for (const KeliPoint &place : places) {
            for (int n = 0; n < 32; ++n) {
                SCOPED_TRACE(testing::Message()
                             << kind.name << " at " << place.x << ", " << place.y << ", case " << n);
                compare({kind, frameSize, {4, 4}, place, n % 4, n / 4 % 4, n / 16, {0, 0, 0}});
            }
        }
        for (const KeliSize &size : sizes) compare({kind, frameSize, size, {7, -2}, 3, 2, 1, {0, 0, 0}});
    }
}

TEST(KelvaraVc1Intensity, FieldsOfAFrameArePredictedFromAndEnlargedApart) {
    for (const Kind &kind : kinds) {
        for (const Flags &flags : allFlags) {
            for (const int y : {-21, -4, -1, 0, 1, 2, 4, 9, 12, 13, 20}) {
                for (const int dy : {0, 1, 2}) {
                    SCOPED_TRACE(testing::Message()
                                 << kind.name << " at row " << y << " and " << dy << ", flags "
                                 << flags.fieldPrediction << flags.bottomField << flags.fieldPadding);
                    compare({kind, frameSize, {8, 8}, {15, y}, 1, dy, 0, flags});
                    compare({kind, {20, 12}, {4, 8}, {15, y}, 0, dy, 1, flags});
                }
            }
        }
    }
}

TEST(KelvaraVc1Intensity, TheSmallestFramesAreEnlarged) {
    for (const Kind &kind : kinds) {
        for (int n = 0; n < 16; ++n) {
            compare({kind, {1, 1}, {4, 4}, {-2, -1}, n % 4, n / 4, 0, {0, 0, 0}});
            for (const Flags &flags : allFlags)
                compare({kind, {1, 2}, {4, 4}, {-2, -1}, n % 4, n / 4, 1, flags});
        }
    }
}

TEST(KelvaraVc1Intensity, APositionMayBeAsFarAsItsNumbersAre) {
    const Kind &kind = kinds[2];
    for (const int y : {INT_MIN, INT_MAX}) {
        for (const int x : {INT_MIN, INT_MAX}) {
            for (const Flags &flags : allFlags) {
                Source<Kel8u> frame(frameSize.height, frameSize.width, frameSize.width);
                frame.fill(constant(100));
                DstBlock<Kel8u> dst(4, 4, 4);
                KeliInterpolateICBlockVC1_8u param = record(frame, {4, 4}, dst);
                param.pointBlockPos = {x, y};
                param.fieldPrediction = flags.fieldPrediction;
                param.bottomField = flags.bottomField;
                param.fieldPadding = flags.fieldPadding;
                ASSERT_EQ(kelStsNoErr, kind.compensate(&param));
                const bool bottom = flags.fieldPrediction ? flags.bottomField
                                    : flags.fieldPadding  ? y == INT_MAX
                                                          : false; // rows 0 and 12
                EXPECT_EQ(dst(0, 0), (bottom ? tables.bottom : tables.top)[100]);
            }
        }
    }
}

// Rows of a frame may overlap; the sample is found by its address.
TEST(KelvaraVc1Intensity, AFrameMayBeWiderThanItsStep) {
    Source<Kel8u> bytes(1, 320 + 199 * 64, 320 + 199 * 64);
    bytes.fill(noise(5, 255));
    DstBlock<Kel8u> dst(16, 16, 32);
    KeliInterpolateICBlockVC1_8u param = record(bytes, {16, 16}, dst);
    param.srcStep = 64;
    param.sizeFrame = {320, 200};
    param.pointBlockPos = {312, 190};
    ASSERT_EQ(kelStsNoErr, keliInterpolateICBilinearBlock_VC1_8u_C1R(&param));
    for (int row = 0; row < 16; ++row) {
        for (int col = 0; col < 16; ++col) {
            const int y = std::min(199, 190 + row), x = std::min(319, 312 + col);
            EXPECT_EQ(dst(row, col), (y % 2 ? tables.bottom : tables.top)[bytes(0, 64 * y + x)]);
        }
    }
}

TEST(KelvaraVc1Intensity, BadRecordsAreRefusedInOrder) {
    for (const Kind &kind : kinds) {
        Source<Kel8u> frame(frameSize.height, 40, 40);
        DstBlock<Kel8u> dst(16, 32, 32);
        const KeliInterpolateICBlockVC1_8u good = record(frame, {16, 16}, dst);
        EXPECT_EQ(kelStsNullPtrErr, kind.compensate(nullptr));
        const auto refused = [&](auto change) {
            KeliInterpolateICBlockVC1_8u bad = good;
            change(bad);
            return kind.compensate(&bad);
        };
        using Param = KeliInterpolateICBlockVC1_8u;
        const auto spoil = [](Param &p) { // the later reasons
            p.sizeBlock = {0, 0};
            p.srcStep = p.dstStep = 0;
            p.dx = 4;
        };
        EXPECT_EQ(kelStsNullPtrErr, refused([&](Param &p) { p.pSrc = nullptr, spoil(p); }));
        EXPECT_EQ(kelStsNullPtrErr, refused([&](Param &p) { p.pDst = nullptr, spoil(p); }));
        EXPECT_EQ(kelStsNullPtrErr, refused([&](Param &p) { p.pLUTBottom = nullptr, spoil(p); }));
        EXPECT_EQ(kelStsNullPtrErr, refused([&](Param &p) { p.pLUTTop = nullptr, spoil(p); }));
        for (const KeliSize &size : {KeliSize{0, 8}, {8, 0}, {-8, 8}})
            EXPECT_EQ(kelStsSizeErr, refused([&](Param &p) {
                          spoil(p), p.sizeFrame = size, p.sizeBlock = {4, 4};
                      }));
        EXPECT_EQ(kelStsSizeErr, refused([](Param &p) { p.sizeFrame = {8, 1}, p.fieldPrediction = 1; }));
        EXPECT_EQ(kelStsSizeErr, refused([](Param &p) { p.sizeFrame = {8, 1}, p.fieldPadding = 1; }));
        for (const KeliSize &size : notBlocks)
            EXPECT_EQ(kelStsSizeErr, refused([&](Param &p) { spoil(p), p.sizeBlock = size; }));
        for (const int step : {0, -40, 16 * kind.channels - 1}) {
            EXPECT_EQ(kelStsStepErr, refused([&](Param &p) { p.srcStep = step, p.dx = 4; }));
            EXPECT_EQ(kelStsStepErr, refused([&](Param &p) { p.dstStep = step, p.dx = 4; }));
        }
        for (const int fraction : notFractions) {
            EXPECT_EQ(kelStsRangeErr, refused([&](Param &p) { p.dx = fraction; }));
            EXPECT_EQ(kelStsRangeErr, refused([&](Param &p) { p.dy = fraction; }));
        }
        for (const int flag : notRoundControls) {
            EXPECT_EQ(kelStsRangeErr, refused([&](Param &p) { p.roundControl = flag; }));
            EXPECT_EQ(kelStsRangeErr, refused([&](Param &p) { p.fieldPrediction = flag; }));
            EXPECT_EQ(kelStsRangeErr, refused([&](Param &p) { p.bottomField = flag; }));
            EXPECT_EQ(kelStsRangeErr, refused([&](Param &p) { p.fieldPadding = flag; }));
        }
        EXPECT_TRUE(dst.untouched());
    }
}

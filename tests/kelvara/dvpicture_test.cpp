// dvpicture_test.cpp - macroblocks of DV stored as pictures of 4:2:2, against pixels painted one by one.

#include "dvpicturemodel.h"
#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

using namespace dvpicture;

using OneStored = KelStatus (*)(const Kel16s *, Kel8u *, int);
using FiveStored = KelStatus (*)(const Kel16s *const *, Kel8u *const *, int);
using FiveTiny = KelStatus (*)(const Kel16s *const *, Kel8u *const *);

// A function, and what it makes of a macroblock.
struct Conversion {
    Conversion(const char *name, Structure structure, int side, int zoom, OneStored f)
        : name(name), structure(structure), side(side), zoom(zoom), one(f) {}
    Conversion(const char *name, Structure structure, int side, int zoom, FiveStored f)
        : name(name), structure(structure), side(side), zoom(zoom), five(f) {}
    Conversion(const char *name, Structure structure, int side, int zoom, FiveTiny f)
        : name(name), structure(structure), side(side), zoom(zoom), tiny(f) {}

    int macroblocks() const { return one ? 1 : 5; }
    int rows() const { return sizeOf(structure, side).height / zoom; }
    int rowBytes() const { return 2 * sizeOf(structure, side).width / zoom; }
    int elements() const { return side == 8 ? 384 : 5 * 64 + 16; } // behind these nothing is read
    KelStatus call(const Kel16s *const *src, Kel8u *const *dst, int step) const {
        return one ? one(src[0], dst[0], step) : five ? five(src, dst, step) : tiny(src, dst);
    }

    const char *name;
    Structure structure;
    int side, zoom;
    OneStored one = nullptr;
    FiveStored five = nullptr;
    FiveTiny tiny = nullptr;
};

const Conversion conversions[] = {
    {"edge", Edge411, 8, 1, keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R},
    {"edge / 2", Edge411, 8, 2, keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R},
    {"edge / 4", Edge411, 8, 4, keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R},
    {"edge / 8", Edge411, 8, 8, keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R},
    {"411", Four11, 8, 1, keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R},
    {"411 / 2", Four11, 8, 2, keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R},
    {"411 / 4", Four11, 8, 4, keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R},
    {"411 / 8", Four11, 8, 8, keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R},
    {"420", Four20, 8, 1, keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R},
    {"420 / 2", Four20, 8, 2, keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R},
    {"420 / 4", Four20, 8, 4, keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R},
    {"420 / 8", Four20, 8, 8, keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R},
    {"422", Four22, 8, 1, keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R},
    {"422 / 2", Four22, 8, 2, keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R},
    {"422 / 4", Four22, 8, 4, keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R},
    {"422 / 8", Four22, 8, 8, keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R},
    {"420 of 4x4", Four20Mixed, 4, 1, keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R},
    {"411 of 4x4", Four11, 4, 1, keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R},
    {"422 of 4x4", Four22, 4, 1, keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R},
    {"edge of 4x4", Edge411, 4, 1, keliYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R},
};

// Macroblocks of a segment, each in front of a forbidden page, and a place for each picture.
struct Segment {
    Segment(const Conversion &c, const Pattern &pattern, int step, int misfit) {
        for (int i = 0; i < c.macroblocks(); ++i) {
            sources.emplace_back(1, c.elements(), 2 * c.elements(), misfit).fill(pattern);
            pictures.emplace_back(c.rows(), c.rowBytes(), step, misfit);
        }
        for (int i = 0; i < c.macroblocks(); ++i) {
            src[i] = sources[i].data();
            dst[i] = pictures[i].data();
        }
    }

    std::deque<Source<Kel16s>> sources;
    std::deque<DstBlock<Kel8u>> pictures;
    const Kel16s *src[5] = {};
    Kel8u *dst[5] = {};
};

void expectPicture(const Canvas &canvas, int zoom, DstBlock<Kel8u> &picture, int rows, int rowBytes) {
    EXPECT_TRUE(picture.surroundingsIntact());
    for (int i = 0; i < rows * rowBytes; ++i) {
        const int row = i / rowBytes, col = i % rowBytes;
        ASSERT_EQ(canvas.byteAt(row, col, zoom), picture(row, col)) << "row " << row << ", byte " << col;
    }
}

void compare(const Conversion &c, const Pattern &pattern, int step, int misfit) {
    Segment segment(c, pattern, step, misfit);
    ASSERT_EQ(kelStsNoErr, c.call(segment.src, segment.dst, step));
    for (int i = 0; i < c.macroblocks(); ++i) {
        SCOPED_TRACE(testing::Message() << c.name << ", macroblock " << i << ", step " << step);
        const Source<Kel16s> &source = segment.sources[i];
        const Canvas canvas(c.structure, c.side, [&](int element) { return source(0, element); });
        expectPicture(canvas, c.zoom, segment.pictures[i], c.rows(), c.rowBytes());
    }
}

// Samples as a decoder makes them, all there are, small ones whose means have halves, and the limits.
std::vector<Pattern> patterns() {
    return {signedNoise(1, -128, 127), signedNoise(2, -32768, 32767),
            signedNoise(3, -2, 1),     signedNoise(4, -200, -100),
            signedNoise(5, 100, 200),  constant(-32768),
            constant(32767),           [](int, int element) { return element % 3 * 100 - 128; }};
}

Pattern flat(int luma, int red, int blue) {
    return [=](int, int element) { return element < 256 ? luma : element < 320 ? red : blue; };
}

} // namespace

TEST(KelvaraDvPicture, PicturesAreThoseOfTheModel) {
    for (const Conversion &c : conversions) {
        for (const Pattern &pattern : patterns()) {
            for (int extra : {0, 1, 2, 16}) {
                const int step = c.tiny ? c.rowBytes() : c.rowBytes() + extra;
                compare(c, pattern, step, extra);
                if (testing::Test::HasFailure()) return;
            }
        }
    }
}

TEST(KelvaraDvPicture, StepsMayBeLarge) {
    for (const Conversion &c : conversions) {
        if (!c.tiny) compare(c, signedNoise(6, -128, 127), 8192, 0);
    }
}

TEST(KelvaraDvPicture, BytesAreLumaBlueLumaRed) {
    for (const Conversion &c : conversions) {
        Segment segment(c, flat(10, 20, 30), c.rowBytes(), 0);
        ASSERT_EQ(kelStsNoErr, c.call(segment.src, segment.dst, c.rowBytes()));
        const int expected[4] = {138, 158, 138, 148};
        for (int i = 0; i < c.rows() * c.rowBytes(); ++i) {
            const int row = i / c.rowBytes(), col = i % c.rowBytes();
            for (DstBlock<Kel8u> &picture : segment.pictures)
                ASSERT_EQ(expected[col % 4], picture(row, col)) << c.name;
        }
    }
}

TEST(KelvaraDvPicture, SamplesAreLimitedToBytes) {
    const int samples[][2] = {{-32768, 0}, {-129, 0},  {-128, 0},  {-127, 1},
                              {0, 128},    {127, 255}, {128, 255}, {32767, 255}};
    for (const Conversion &c : conversions) {
        for (const auto &[sample, byte] : samples) {
            Segment segment(c, constant(sample), c.rowBytes(), 0);
            ASSERT_EQ(kelStsNoErr, c.call(segment.src, segment.dst, c.rowBytes()));
            EXPECT_EQ(byte, segment.pictures[0](0, 0)) << c.name << ", " << sample;
            EXPECT_EQ(byte, segment.pictures[0](c.rows() - 1, c.rowBytes() - 1)) << c.name << ", " << sample;
        }
    }
}

// The mean is limited, not what it is made of.
TEST(KelvaraDvPicture, SamplesOutOfRangeCountWhole) {
    Source<Kel16s> src(1, 384, 768);
    src.fill([](int, int element) { return element % 2 ? 400 : -200; });
    DstBlock<Kel8u> dst(8, 16, 16);
    ASSERT_EQ(kelStsNoErr, keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R(src.data(), dst.data(), 16));
    EXPECT_EQ(228, dst(0, 0));
}

TEST(KelvaraDvPicture, MeansRoundHalvesUp) {
    Source<Kel16s> src(1, 384, 768);
    src.fill([](int, int element) { return element == 0 || element == 1 ? 1 : element == 2 ? -2 : 0; });
    DstBlock<Kel8u> dst(8, 16, 16);
    ASSERT_EQ(kelStsNoErr, keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R(src.data(), dst.data(), 16));
    EXPECT_EQ(129, dst(0, 0)) << "2 / 4";
    EXPECT_EQ(128, dst(0, 2)) << "-2 / 4";
}

// ---- the places of single samples --------------------------------------------------------------

TEST(KelvaraDvPicture, ColourOf420BelongsToItsField) {
    Source<Kel16s> src(1, 384, 768);
    src.fill([](int, int element) { return element >= 256 && element % 64 / 8 == 3 ? 50 : 0; });
    const Kel16s *sources[5];
    std::fill(sources, sources + 5, src.data());
    DstBlock<Kel8u> dst(16, 32, 32);
    Kel8u *const pictures[5] = {dst.data(), dst.data(), dst.data(), dst.data(), dst.data()};
    ASSERT_EQ(kelStsNoErr, keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R(sources, pictures, 32));
    for (int row = 0; row < 16; ++row) EXPECT_EQ(row == 5 || row == 7 ? 178 : 128, dst(row, 1)) << row;
}

TEST(KelvaraDvPicture, RightHalfOfEdgeColourIsTheLowerHalf) {
    Source<Kel16s> src(1, 384, 768);
    src.fill([](int, int element) { return element >= 256 && element % 8 >= 4 ? 50 : 0; });
    DstBlock<Kel8u> dst(16, 32, 32);
    ASSERT_EQ(kelStsNoErr, keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R(src.data(), dst.data(), 32));
    for (int i = 0; i < 16 * 16; ++i)
        EXPECT_EQ(i / 16 >= 8 ? 178 : 128, dst(i / 16, i % 16 * 2 + 1)) << "row " << i / 16;
}

// ---- several macroblocks ---------------------------------------------------------------------

// Pictures that overlap show the one that was written last.
TEST(KelvaraDvPicture, MacroblocksAreWrittenFromFirstToLast) {
    std::deque<Source<Kel16s>> sources;
    const Kel16s *src[5];
    DstBlock<Kel8u> dst(8, 4 * 32 + 64, 320);
    Kel8u *pictures[5];
    for (int i = 0; i < 5; ++i) {
        src[i] = sources.emplace_back(1, 384, 768).fill(constant(i)).data();
        pictures[i] = dst.data() + 32 * i;
    }
    ASSERT_EQ(kelStsNoErr, keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R(src, pictures, 320));
    EXPECT_TRUE(dst.surroundingsIntact());
    for (int i = 0; i < 8 * 192; ++i)
        ASSERT_EQ(128 + std::min(4, i % 192 / 32), dst(i / 192, i % 192)) << "byte " << i % 192;
}

TEST(KelvaraDvPicture, ArraysOfPointersMayLieAnywhere) {
    for (const Conversion &c : conversions) {
        if (c.one) continue;
        Segment segment(c, signedNoise(7, -128, 127), c.rowBytes(), 0);
        Destination<const Kel16s *> src(5, 1);
        Destination<Kel8u *> dst(5, 3);
        std::memcpy(static_cast<void *>(src.data()), segment.src, sizeof segment.src);
        std::memcpy(static_cast<void *>(dst.data()), segment.dst, sizeof segment.dst);
        ASSERT_EQ(kelStsNoErr, c.call(src.data(), dst.data(), c.rowBytes())) << c.name;
        EXPECT_FALSE(segment.pictures[4].untouched()) << c.name;
    }
}

// ---- DV100 -------------------------------------------------------------------------------------

namespace {

void compareHalves(const Pattern &pattern, int step, int misfit) {
    Source<Kel16s> src(1, 5 * 512, 2 * 5 * 512, misfit);
    src.fill(pattern);
    std::deque<DstBlock<Kel8u>> pictures;
    Kel8u *dst[10];
    for (Kel8u *&p : dst) p = pictures.emplace_back(8, 32, step, misfit).data();
    ASSERT_EQ(kelStsNoErr, keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(src.data(), dst, step));
    for (int i = 0; i < 10; ++i) {
        SCOPED_TRACE(testing::Message() << "half " << i << ", step " << step);
        const Canvas canvas(i % 2 ? LowerHalf100 : UpperHalf100, 8,
                            [&](int element) { return src(0, i / 2 * 512 + element); });
        expectPicture(canvas, 1, pictures[i], 8, 32);
    }
}

} // namespace

TEST(KelvaraDvPicture, HalvesOf100AreThoseOfTheModel) {
    for (const Pattern &pattern : patterns()) {
        for (int extra : {0, 1, 2, 16}) compareHalves(pattern, 32 + extra, extra);
    }
}

TEST(KelvaraDvPicture, HalvesOf100RefuseBadArgumentsInOrder) {
    const auto store = keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R;
    Source<Kel16s> src(1, 2560, 5120);
    DstBlock<Kel8u> picture(8, 32, 32);
    Kel8u *dst[10];
    std::fill(dst, dst + 10, picture.data());
    EXPECT_EQ(kelStsNullPtrErr, store(nullptr, dst, 0));
    EXPECT_EQ(kelStsNullPtrErr, store(src.data(), nullptr, 0));
    for (int step : {31, 0, -32}) EXPECT_EQ(kelStsStepErr, store(src.data(), dst, step));
    for (Kel8u *&p : dst) {
        p = nullptr;
        EXPECT_EQ(kelStsNullPtrErr, store(src.data(), dst, 0));
        p = picture.data();
    }
    EXPECT_TRUE(picture.untouched());
}

// ---- arguments -----------------------------------------------------------------------------------

TEST(KelvaraDvPicture, NullPointersAreRefused) {
    for (const Conversion &c : conversions) {
        SCOPED_TRACE(c.name);
        Segment segment(c, constant(0), c.rowBytes(), 0);
        for (int i = 0; i < c.macroblocks(); ++i) {
            const Kel16s *src = segment.src[i];
            Kel8u *dst = segment.dst[i];
            segment.src[i] = nullptr;
            EXPECT_EQ(kelStsNullPtrErr, c.call(segment.src, segment.dst, 0)) << "source " << i;
            segment.src[i] = src;
            segment.dst[i] = nullptr;
            EXPECT_EQ(kelStsNullPtrErr, c.call(segment.src, segment.dst, 0)) << "destination " << i;
            segment.dst[i] = dst;
        }
        if (!c.one) {
            EXPECT_EQ(kelStsNullPtrErr, c.call(nullptr, segment.dst, 0));
            EXPECT_EQ(kelStsNullPtrErr, c.call(segment.src, nullptr, 0));
        }
        for (DstBlock<Kel8u> &picture : segment.pictures) EXPECT_TRUE(picture.untouched());
    }
}

TEST(KelvaraDvPicture, StepsBelowARowAreRefused) {
    for (const Conversion &c : conversions) {
        if (c.tiny) continue;
        Segment segment(c, constant(0), c.rowBytes(), 0);
        for (int step : {c.rowBytes() - 1, 0, -c.rowBytes(), -100000})
            EXPECT_EQ(kelStsStepErr, c.call(segment.src, segment.dst, step)) << c.name;
        for (DstBlock<Kel8u> &picture : segment.pictures) EXPECT_TRUE(picture.untouched()) << c.name;
    }
}

// ---- pictures at half the size, by way of the transform -----------------------------------------

namespace {

struct HalfSize {
    const char *name;
    FiveStored store, reference; // of 4x4 blocks, and the means of the full picture
    Structure structure;
};

// Slopes and waves, so soft that the frequencies that are left out do not count.
int softly(int, int element) {
    const int block = element / 64, row = element % 64 / 8, col = element % 8;
    return static_cast<int>(std::lround(60 * std::sin(0.1 * col + block) + 3 * row - 20));
}

} // namespace

// The 4x4 samples that the transform leaves are laid out as the conversion reads them.
TEST(KelvaraDvPicture, BlocksOfTheSmallTransformMakeTheSmallPicture) {
    const HalfSize cases[] = {{"420", keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R,
                               keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R, Four20},
                              {"411", keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R,
                               keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R, Four11},
                              {"422", keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R,
                               keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R, Four22}};
    Kel16s samples[384], small[384];
    for (int i = 0; i < 384; ++i) small[i] = samples[i] = static_cast<Kel16s>(softly(0, i));
    for (int block = 0; block < 6; ++block) {
        ASSERT_EQ(kelStsNoErr, keliDCT2x4x8Frw_16s_C1I(small + 64 * block));
        ASSERT_EQ(kelStsNoErr, keliDCT8x4x2To4x4Inv_DV_16s_C1I(small + 64 * block));
    }
    const Kel16s *const full[5] = {samples, samples, samples, samples, samples};
    const Kel16s *const reduced[5] = {small, small, small, small, small};
    for (const HalfSize &c : cases) {
        const Size size = sizeOf(c.structure, 4);
        DstBlock<Kel8u> a(size.height, 2 * size.width, 64), b(size.height, 2 * size.width, 64);
        Kel8u *const first[5] = {a.data(), a.data(), a.data(), a.data(), a.data()};
        Kel8u *const second[5] = {b.data(), b.data(), b.data(), b.data(), b.data()};
        ASSERT_EQ(kelStsNoErr, c.store(reduced, first, 64));
        ASSERT_EQ(kelStsNoErr, c.reference(full, second, 64));
        for (int i = 0; i < 2 * size.width * size.height; ++i) {
            const int row = i / (2 * size.width), col = i % (2 * size.width);
            EXPECT_NEAR(b(row, col), a(row, col), 6) << c.name << ", row " << row << ", byte " << col;
        }
    }
}

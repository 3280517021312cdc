// dvpictures_test.cpp - the compressed segments of the suite: they are what the coder makes, use all passes,
// and hold their pictures.

#include "dvpictures.h"

#include "dvsegments.h"
#include "dvtable.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// A segment of the suite, the picture behind it, and what is known of its decoding.
struct Subject {
    dv::SuitePicture picture;
    unsigned char const *segment;
    double decibels; // reached by the decoded picture
};

const Subject subjects[] = {{dv::suitePictures[0], white_noise_table, 23.5},
                            {dv::suitePictures[1], nature_table, 36.5}};

// A block on its way back to samples, by the functions of the library.
class DecodedBlock {
public:
    DecodedBlock(Kel16s const *levels, Kel32u params) : m_params(params) {
        std::copy(levels, levels + 64, m_at);
    }

    int mode() const { return m_params >> 6 & 1; }
    int step(int place) const { return dv::stepOf(place, m_params >> 4 & 3, m_params & 15); }

    void dequantise() {
        Kel16s steps[64], weights[64];
        for (int place = 0; place < 64; ++place) {
            const int index = dv::scans[mode()][place];
            steps[index] = static_cast<Kel16s>(step(place));
            weights[index] = static_cast<Kel16s>(std::lround(4096 / dv::weightOf(index, mode())));
        }
        ASSERT_EQ(kelStsNoErr, keliQuantWeightBlockInv_DV_16s_C1I(m_at, steps, weights));
    }

    void transform() {
        if (mode() == 1) {
            ASSERT_EQ(kelStsNoErr, keliDCT2x4x8Inv_16s_C1I(m_at));
            return;
        }
        Kel16s turned[64];
        for (int i = 0; i < 64; ++i) turned[i % 8 * 8 + i / 8] = m_at[i];
        ASSERT_EQ(kelStsNoErr, keliDCT8x8Inv_AANTransposed_16s_C1R(turned, m_at, 16, 64));
    }

    Kel16s operator[](int i) const { return m_at[i]; }

private:
    Kel32u m_params;
    Kel16s m_at[64];
};

std::vector<DecodedBlock> decoded(unsigned char const *segment) {
    const dv::DecodingTable table;
    Kel16s levels[64 * dv::blocks];
    Kel32u params[dv::blocks];
    EXPECT_EQ(kelStsNoErr,
              keliHuffmanDecodeSegment_DV_8u16s(segment, table.scan(), table.codes(), levels, params));
    std::vector<DecodedBlock> all;
    for (int i = 0; i < dv::blocks; ++i) all.emplace_back(levels + 64 * i, params[i]);
    return all;
}

double decibels(dv::Picture const &a, dv::Picture const &b) {
    double sum = 0;
    for (int i = 0; i < dv::blocks; ++i) {
        for (int k = 0; k < 64; ++k) sum += (a[i][k] - b[i][k]) * (a[i][k] - b[i][k]);
    }
    return 10 * std::log10(255.0 * 255 * dv::blocks * 64 / sum);
}

// A byte of the five macroblocks side by side, rows of Y CB Y CR.
int pixelByte(dv::Picture const &picture, int byte, int y) {
    const int x = byte / 2 % 16;
    const dv::Block *macroblock = &picture[byte / 32 * dv::blocksOfMacroblock];
    if (byte % 2 == 0) return macroblock[y / 8 * 2 + x / 8][y % 8 * 8 + x % 8];
    const int line = y / 4 * 2 + y % 2; // of colour, of the same field
    return macroblock[byte % 4 == 1 ? 5 : 4][line * 8 + x / 2];
}

} // namespace

TEST(DvPictures, TheSegmentsOfTheSuiteAreWhatTheCoderMakes) {
    for (Subject const &subject : subjects) {
        const dv::Segment segment = dv::arrange(dv::encode(subject.picture.make()));
        ASSERT_EQ(400u, segment.bytes.size()) << subject.picture.name;
        for (int i = 0; i < dvSegmentSize; ++i) {
            ASSERT_EQ(segment.bytes[i], subject.segment[i])
                << subject.picture.name << " at " << i << ": makesegments writes it anew";
        }
    }
}

TEST(DvPictures, AllPassesHaveWork) {
    for (Subject const &subject : subjects) {
        const dv::Segment segment = dv::arrange(dv::encode(subject.picture.make()));
        for (int bits : segment.placedBits) EXPECT_GE(bits, 64) << subject.picture.name;
    }
}

TEST(DvPictures, TheLandscapeHasBothModesAndAllClasses) {
    int modes[2] = {}, classes[4] = {};
    for (dv::CodedBlock const &block : dv::encode(dv::nature())) {
        ++modes[block.mode];
        ++classes[block.classNumber];
    }
    for (int count : modes) EXPECT_GT(count, 3);
    for (int count : classes) EXPECT_GT(count, 2);
}

// A level is the nearest one to its coefficient, so that none is further away than half its step; the library
// rounds the product, and its weights have 12 bits.
TEST(DvPictures, CoefficientsComeBackWithinHalfTheirStep) {
    for (Subject const &subject : subjects) {
        const dv::Picture picture = subject.picture.make();
        std::vector<DecodedBlock> blocks = decoded(subject.segment);
        for (int i = 0; i < dv::blocks; ++i) {
            const int mode = dv::modeOf(picture[i]);
            ASSERT_EQ(mode, blocks[i].mode());
            const dv::Coefficients original = dv::weighted(picture[i], mode);
            blocks[i].dequantise();
            for (int place = 0; place < 64; ++place) {
                const int index = dv::scans[mode][place];
                const double weight = dv::weightOf(index, mode), half = 0.5 * blocks[i].step(place);
                EXPECT_LE(std::abs(original[index] - weight * blocks[i][index]), half + 0.51 * weight + 0.05)
                    << subject.picture.name << ", block " << i << ", place " << place;
            }
        }
    }
}

TEST(DvPictures, PicturesComeBack) {
    for (Subject const &subject : subjects) {
        const dv::Picture picture = subject.picture.make();
        std::vector<DecodedBlock> blocks = decoded(subject.segment);
        dv::Picture shown, gray;
        for (int i = 0; i < dv::blocks; ++i) {
            blocks[i].dequantise();
            blocks[i].transform();
            for (int k = 0; k < 64; ++k) shown[i][k] = std::clamp(blocks[i][k] + 128, 0, 255);
            gray[i].fill(128);
        }
        EXPECT_GT(decibels(picture, shown), subject.decibels) << subject.picture.name;
        EXPECT_GT(decibels(picture, shown), decibels(picture, gray) + 2) << subject.picture.name;
    }
}

// The landscape again, as pixels: each of its macroblocks 16 wide and high, 4:2:0.
TEST(DvPictures, TheLandscapeIsShownAsAPicture) {
    const dv::Picture original = dv::nature();
    std::vector<DecodedBlock> blocks = decoded(nature_table);
    Kel16s samples[64 * dv::blocks];
    for (int i = 0; i < dv::blocks; ++i) {
        blocks[i].dequantise();
        blocks[i].transform();
        for (int k = 0; k < 64; ++k) samples[64 * i + k] = blocks[i][k];
    }
    const int step = 2 * 16 * dv::macroblocks;
    unsigned char shown[16 * step];
    const Kel16s *sources[dv::macroblocks];
    Kel8u *places[dv::macroblocks];
    for (int m = 0; m < dv::macroblocks; ++m) {
        sources[m] = samples + 384 * m;
        places[m] = shown + 32 * m;
    }
    ASSERT_EQ(kelStsNoErr, keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R(sources, places, step));
    double sum = 0;
    for (int i = 0; i < 16 * step; ++i) {
        const double error = shown[i] - pixelByte(original, i % step, i / step);
        sum += error * error;
    }
    EXPECT_GT(10 * std::log10(255.0 * 255 * 16 * step / sum), 36.5);
}

// Nothing but pixels within the range that video has.
TEST(DvPictures, SamplesAreBytes) {
    for (Subject const &subject : subjects) {
        for (dv::Block const &block : subject.picture.make()) {
            for (int sample : block) {
                EXPECT_GE(sample, 0);
                EXPECT_LE(sample, 255);
            }
        }
    }
}

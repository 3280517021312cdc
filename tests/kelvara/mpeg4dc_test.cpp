// mpeg4dc_test.cpp - the codes of DC of MPEG-4 intra blocks.

#include "h26xtest.h"

namespace {

// ISO/IEC 14496-2 Tables B-13 and B-14, by blockType and dct_dc_size.
const std::vector<std::string> sizeWords[2] = {
    {"011", "11", "10", "010", "001", "0001", "00001", "000001", "0000001", "00000001", "000000001",
     "0000000001", "00000000001"},
    {"11", "10", "01", "001", "0001", "00001", "000001", "0000001", "00000001", "000000001", "0000000001",
     "00000000001", "000000000001"}};

// Table B-15: a negative differential is its magnitude with every bit turned over.
std::string modelText(int dc, int blockType) {
    int size = 0;
    while (std::abs(dc) >= 1 << size) ++size;
    std::string bits = field(std::abs(dc), size);
    for (char &bit : bits) bit ^= dc < 0;
    return sizeWords[blockType][size] + bits + (size > 8 ? "1" : "");
}

Coded coded(int dc, int blockType, int offset = 0, Kel8u before = 0xA5) {
    return codedBy(
        [&](Kel8u **pp, int *o) {
            return keliEncodeDCIntra_MPEG4_16s1u(static_cast<Kel16s>(dc), pp, o, blockType);
        },
        offset, before);
}

struct DecodedDc {
    KelStatus status;
    int dc, bits;
};

DecodedDc decodedDc(const std::string &text, int blockType, int offset = 0) {
    static StreamEnd end;
    Kel8u *const stream = end.hold(bytesOf(std::string(static_cast<size_t>(offset), '1') + text));
    Kel8u *p = stream;
    int bit = offset;
    Kel16s dc = -21846;
    const KelStatus status = keliDecodeDCIntra_MPEG4_1u16s(&p, &bit, &dc, blockType);
    return {status, dc, static_cast<int>(p - stream) * 8 + bit - offset};
}

void expectRefused(const std::string &text, int blockType) {
    for (int offset = 0; offset < 8; ++offset) {
        const DecodedDc d = decodedDc(text, blockType, offset);
        EXPECT_EQ(kelStsBitStreamErr, d.status) << text;
        EXPECT_EQ(-21846, d.dc);
        EXPECT_EQ(0, d.bits);
    }
}

} // namespace

TEST(KelvaraMpeg4Dc, SizesHaveNoCodeThatBeginsAnother) {
    for (const auto &words : sizeWords) {
        EXPECT_EQ(13u, words.size());
        expectPrefixFree(words);
    }
    EXPECT_EQ((1 << 20) / 2048 * 2047, kraftSum(sizeWords[0]));
    EXPECT_EQ((1 << 20) / 4096 * 4095, kraftSum(sizeWords[1]));
}

TEST(KelvaraMpeg4Dc, EachValueHasItsCodeAndComesBack) {
    for (int blockType = 0; blockType < 2; ++blockType) {
        for (int dc = -4095; dc <= 4095; ++dc) {
            const int offset = dc & 7;
            const Coded c = coded(dc, blockType, offset);
            ASSERT_EQ(kelStsNoErr, c.status);
            ASSERT_EQ(modelText(dc, blockType), c.text()) << dc;
            const DecodedDc d = decodedDc(c.text(), blockType, offset);
            ASSERT_EQ(kelStsNoErr, d.status);
            ASSERT_EQ(dc, d.dc);
            ASSERT_EQ(c.bits, d.bits);
        }
    }
}

TEST(KelvaraMpeg4Dc, KnownValuesHaveTheirCodes) {
    EXPECT_EQ("011", coded(0, 0).text());
    EXPECT_EQ("11", coded(0, 1).text());
    EXPECT_EQ(bits("11 1"), coded(1, 0).text());
    EXPECT_EQ(bits("11 0"), coded(-1, 0).text());
    EXPECT_EQ(bits("10 10"), coded(2, 0).text());
    EXPECT_EQ(bits("10 00"), coded(-3, 0).text());
    EXPECT_EQ(bits("001 011"), coded(-4, 1).text());
    EXPECT_EQ(bits("0000001 11111111"), coded(255, 0).text());
    EXPECT_EQ(bits("00000001 100000000 1"), coded(256, 0).text()) << "with a marker";
    EXPECT_EQ(bits("000000000001 000000000000 1"), coded(-4095, 1).text());
}

TEST(KelvaraMpeg4Dc, ValuesWithoutACodeAreRefused) {
    for (int dc : {4096, -4096, 32767, -32768}) {
        const Coded c = coded(dc, 0);
        EXPECT_EQ(kelStsRangeErr, c.status);
        EXPECT_EQ(0, c.bits);
    }
}

TEST(KelvaraMpeg4Dc, BitsWithoutACodeAreRefused) {
    expectRefused("00000000000", 0);
    expectRefused("000000000000", 1);
    for (int blockType = 0; blockType < 2; ++blockType) {
        for (int dc : {256, -256, 4095, -4095}) {
            std::string text = modelText(dc, blockType);
            text.back() = '0';
            expectRefused(text, blockType);
        }
    }
}

TEST(KelvaraMpeg4Dc, BitsOutsideTheCodeStay) {
    for (int offset = 0; offset < 8; ++offset) {
        for (int before : {0, 255, 0xA5}) {
            const Coded c = coded(-700, 1, offset, static_cast<Kel8u>(before)); // codedBy looks at the others
            EXPECT_EQ(modelText(-700, 1), c.text());
        }
    }
}

TEST(KelvaraMpeg4Dc, BadArgumentsAreRefusedAndNothingIsWritten) {
    Bytes room(8, 0x5A);
    Kel8u *p = room.data(), *null = nullptr;
    int offset = 3;
    Destination<Kel16s> dc(1);
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeDCIntra_MPEG4_16s1u(1, nullptr, &offset, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeDCIntra_MPEG4_16s1u(1, &null, &offset, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliEncodeDCIntra_MPEG4_16s1u(1, &p, nullptr, 2));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_MPEG4_1u16s(nullptr, &offset, dc.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_MPEG4_1u16s(&null, &offset, dc.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_MPEG4_1u16s(&p, nullptr, dc.data(), 0));
    EXPECT_EQ(kelStsNullPtrErr, keliDecodeDCIntra_MPEG4_1u16s(&p, &offset, nullptr, 2));
    for (int type : {-1, 2}) {
        EXPECT_EQ(kelStsRangeErr, keliEncodeDCIntra_MPEG4_16s1u(1, &p, &offset, type));
        EXPECT_EQ(kelStsRangeErr, keliDecodeDCIntra_MPEG4_1u16s(&p, &offset, dc.data(), type));
    }
    for (int bad : {-1, 8}) {
        EXPECT_EQ(kelStsRangeErr, keliEncodeDCIntra_MPEG4_16s1u(1, &p, &bad, 0));
        EXPECT_EQ(kelStsRangeErr, keliDecodeDCIntra_MPEG4_1u16s(&p, &bad, dc.data(), 0));
    }
    EXPECT_EQ(room.data(), p);
    EXPECT_EQ(3, offset);
    EXPECT_EQ(Bytes(8, 0x5A), room);
    EXPECT_TRUE(dc.untouched());
}

// mpeg4recon_test.cpp - MPEG-4 blocks out of bit streams, dequantised at once.

#include "mpeg4kinds.h"
#include "mpeg4quantiser.h"

using namespace mpeg4;

namespace {

Decoder reconstructor(int rvlc, int scan, const KeliQuantSpec_MPEG4 *spec, int QP) {
    return [=](Kel8u **pp, int *o, Kel16s *c, int *last) {
        return keliReconstructCoeffsInter_MPEG4_1u16s(pp, o, c, last, rvlc, scan, spec, QP);
    };
}

} // namespace

TEST(KelvaraMpeg4Reconstruct, BlocksAreDecodedScannedAndDequantised) {
    std::mt19937 generator(7);
    for (const Kind &kind : {kinds[2], kinds[5]}) {
        for (int pass = 0; pass < 2000; ++pass) {
            const Matrix random = randomBlock<Kel8u>(generator, 2, 127);
            const Matrix *matrix = pass % 3 ? &random : nullptr;
            const int scan = between(generator, -1, 2), offset = pass % 8,
                      depth = oneOf(generator, {4, 8, 12});
            const int QP = between(generator, 1, 31);
            const Levels levels = randomLevelsOf(kind, generator);
            const std::string text = textOf(kind, levels);
            Quantiser quantiser(InvInter, matrix, depth, offset);
            const Decoded d = decodedText(reconstructor(kind.rvlc, scan, quantiser.get(), QP), text, offset);
            ASSERT_EQ(kelStsNoErr, d.status);
            ASSERT_EQ(dequantised(placed(levels, scan), matrix, depth, QP, -1), d.block);
            ASSERT_EQ(lastPlace(levels), d.last);
            ASSERT_EQ(static_cast<int>(text.size()), d.bits);
        }
    }
}

TEST(KelvaraMpeg4Reconstruct, BitsThatAreNoBlockAreRefused) {
    Quantiser quantiser(InvInter, nullptr, 8);
    expectRefused(reconstructor(0, 0, quantiser.get(), 2), "000000000000");
    expectRefused(reconstructor(1, 0, quantiser.get(), 2), "011111111111111");
}

TEST(KelvaraMpeg4Reconstruct, BadArgumentsAreRefusedAndNothingIsWritten) {
    Quantiser quantiser(InvInter, nullptr, 8), other(InvIntra, nullptr, 8);
    Bytes stream(32, 0x55);
    Kel8u *p = stream.data(), *null = nullptr;
    int offset = 3, bad = 8;
    Destination<Kel16s> block(64);
    Destination<int> last(1);
    const auto call = [&](Kel8u **pp, int *o, int rvlc, int scan, Quantiser &q, int QP) {
        return keliReconstructCoeffsInter_MPEG4_1u16s(pp, o, block.data(), last.data(), rvlc, scan, q.get(),
                                                      QP);
    };
    EXPECT_EQ(kelStsNullPtrErr, call(nullptr, &offset, 0, 0, quantiser, 2));
    EXPECT_EQ(kelStsNullPtrErr, call(&null, &offset, 0, 0, quantiser, 2));
    EXPECT_EQ(kelStsNullPtrErr, call(&p, nullptr, 0, 0, quantiser, 0));
    EXPECT_EQ(kelStsNullPtrErr, keliReconstructCoeffsInter_MPEG4_1u16s(&p, &offset, nullptr, last.data(), 0,
                                                                       0, quantiser.get(), 2));
    EXPECT_EQ(kelStsNullPtrErr, keliReconstructCoeffsInter_MPEG4_1u16s(&p, &offset, block.data(), nullptr, 0,
                                                                       0, quantiser.get(), 2));
    EXPECT_EQ(kelStsNullPtrErr, keliReconstructCoeffsInter_MPEG4_1u16s(&p, &offset, block.data(), last.data(),
                                                                       0, 0, nullptr, 2));
    EXPECT_EQ(kelStsRangeErr, call(&p, &bad, 0, 0, quantiser, 2));
    for (int rvlc : {-1, 2}) EXPECT_EQ(kelStsRangeErr, call(&p, &offset, rvlc, 0, quantiser, 2));
    for (int scan : {-2, 3}) EXPECT_EQ(kelStsRangeErr, call(&p, &offset, 0, scan, quantiser, 2));
    for (int QP : {0, 512}) EXPECT_EQ(kelStsRangeErr, call(&p, &offset, 0, 0, quantiser, QP));
    EXPECT_EQ(kelStsContextErr, call(&p, &offset, 0, 0, other, 2));
    EXPECT_EQ(stream.data(), p);
    EXPECT_EQ(3, offset);
    EXPECT_TRUE(block.untouched());
    EXPECT_TRUE(last.untouched());
}

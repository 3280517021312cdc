// sadn_test.cpp - sums of absolute differences at many places in a row.

#include "kelvara_test.h"
#include "kelvc.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using CallN = KelStatus (*)(const Kel8u *, int, const Kel8u *, int, Kel16u *, int);
using CallNI = KelStatus (*)(const Kel8u *, int, const Kel8u *, int, Kel16u *, int, Kel32s *);

struct RowFunction {
    int size;
    CallN n;
    CallNI ni; // null where there is no such form
};

const RowFunction functions[] = {
    {2, keliSAD2x2xN_8u16u_C1R, nullptr},
    {4, keliSAD4x4xN_8u16u_C1R, keliSAD4x4xNI_8u16u_C1R},
    {8, keliSAD8x8xN_8u16u_C1R, keliSAD8x8xNI_8u16u_C1R},
    {16, keliSAD16x16xN_8u16u_C1R, keliSAD16x16xNI_8u16u_C1R},
};

int model(const Source<Kel8u> &src, const Source<Kel8u> &ref, int size, int place) {
    int sum = 0;
    for (int i = 0; i < size * size; ++i) {
        const int row = i % size, col = i / size;
        const int a = src(row, col), b = ref(row, place + col);
        sum += a > b ? a - b : b - a;
    }
    return sum;
}

void compare(const RowFunction &f, int num, const PatternPair &pair, int extraStep, int slack) {
    SCOPED_TRACE(testing::Message() << f.size << "x" << f.size << ", " << num << " places, " << pair.name
                                    << ", step + " << extraStep << ", slack " << slack);
    const int readOfRow = num + f.size - 1;
    Source<Kel8u> src(f.size, f.size, f.size + extraStep, slack);
    Source<Kel8u> ref(f.size, readOfRow, readOfRow + extraStep, 3 * slack);
    src.fill(pair.src);
    ref.fill(pair.ref);
    int least = 0;
    for (int i = 1; i < num; ++i) {
        if (model(src, ref, f.size, i) < model(src, ref, f.size, least)) least = i;
    }
    Destination<Kel16u> sums(num, slack), sumsI(num, slack);
    Destination<Kel32s> index(1, slack);
    ASSERT_EQ(kelStsNoErr, f.n(src.data(), src.step(), ref.data(), ref.step(), sums.data(), num));
    EXPECT_TRUE(sums.surroundingsIntact());
    for (int i = 0; i < num; ++i) ASSERT_EQ(model(src, ref, f.size, i), sums[i]) << "place " << i;
    if (!f.ni) return;
    ASSERT_EQ(kelStsNoErr,
              f.ni(src.data(), src.step(), ref.data(), ref.step(), sumsI.data(), num, index.data()));
    EXPECT_TRUE(sumsI.surroundingsIntact());
    EXPECT_TRUE(index.surroundingsIntact());
    for (int i = 0; i < num; ++i) ASSERT_EQ(sums[i], sumsI[i]) << "place " << i;
    EXPECT_EQ(least, index[0]);
}

} // namespace

TEST(KelvaraSadN, SumsAndIndexEqualTheModel) {
    for (const RowFunction &f : functions) {
        for (const PatternPair &pair : patternPairs(255)) {
            for (int num : {1, 2, 3, 7, 16, 33, 100}) {
                compare(f, num, pair, 0, 0);
                compare(f, num, pair, 0, 1);
                compare(f, num, pair, 13, 5);
            }
        }
    }
}

TEST(KelvaraSadN, TheLargestSearchRunsThrough) {
    for (const RowFunction &f : functions) compare(f, 4096, patternPairs(255)[0], 0, 0);
}

TEST(KelvaraSadN, TheFirstOfEqualSumsIsTheMinimum) {
    Source<Kel8u> src(8, 8, 8), ref(8, 27, 27);
    src.fill(constant(7));
    ref.fill([](int, int col) { return col >= 5 && col < 14 ? 7 : 9; }); // places 5 and 6 match
    Destination<Kel16u> sums(20);
    Destination<Kel32s> index(1);
    ASSERT_EQ(kelStsNoErr,
              keliSAD8x8xNI_8u16u_C1R(src.data(), 8, ref.data(), 27, sums.data(), 20, index.data()));
    EXPECT_EQ(0, sums[5]);
    EXPECT_EQ(0, sums[6]);
    EXPECT_EQ(5, index[0]);
}

TEST(KelvaraSadN, TheGreatestSumFits16Bits) {
    Source<Kel8u> src(16, 16, 16), ref(16, 16, 16);
    src.fill(constant(255));
    ref.fill(constant(0));
    Destination<Kel16u> sum(1);
    ASSERT_EQ(kelStsNoErr, keliSAD16x16xN_8u16u_C1R(src.data(), 16, ref.data(), 16, sum.data(), 1));
    EXPECT_EQ(65280, sum[0]);
}

TEST(KelvaraSadN, BadArgumentsAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(16, 16, 64), ref(16, 64, 64);
    Destination<Kel16u> sums(32);
    Destination<Kel32s> index(1);
    const Kel8u *s = src.data(), *r = ref.data();
    for (const RowFunction &f : functions) {
        // Both forms judge the arguments that they share alike.
        auto call = [&](const Kel8u *pSrc, int srcStep, const Kel8u *pRef, int refStep, Kel16u *pSAD,
                        int num) {
            const KelStatus status = f.n(pSrc, srcStep, pRef, refStep, pSAD, num);
            if (f.ni) {
                EXPECT_EQ(status, f.ni(pSrc, srcStep, pRef, refStep, pSAD, num, index.data()));
            }
            return status;
        };
        SCOPED_TRACE(f.size);
        EXPECT_EQ(kelStsNullPtrErr, call(nullptr, 64, r, 64, sums.data(), 32));
        EXPECT_EQ(kelStsNullPtrErr, call(s, 64, nullptr, 64, sums.data(), 32));
        EXPECT_EQ(kelStsNullPtrErr, call(s, 64, r, 64, nullptr, 32));
        for (int num : {0, -1, std::numeric_limits<int>::min()}) {
            EXPECT_EQ(kelStsSizeErr, call(s, 64, r, 64, sums.data(), num));
        }
        EXPECT_EQ(kelStsStepErr, call(s, f.size - 1, r, 64, sums.data(), 32));
        EXPECT_EQ(kelStsStepErr, call(s, 64, r, 32 + f.size - 2, sums.data(), 32));
        EXPECT_EQ(kelStsStepErr, call(s, 64, r, 64, sums.data(), std::numeric_limits<int>::max()));
        EXPECT_EQ(kelStsStepErr, call(s, -64, r, 64, sums.data(), 32));
        EXPECT_EQ(kelStsStepErr, call(s, 64, r, -64, sums.data(), 32));
        if (f.ni) {
            EXPECT_EQ(kelStsNullPtrErr, f.ni(s, 64, r, 64, sums.data(), 32, nullptr));
        }
    }
    EXPECT_TRUE(sums.untouched());
    EXPECT_TRUE(index.untouched());
}

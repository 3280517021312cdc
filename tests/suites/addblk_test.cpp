// addblk_test.cpp - the suite of block arithmetic: its data and its calls.

#include "kmvc.h"
#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

namespace {

using suite::Cells;
using suite::Expected;

const int pictureWidth = 320;

enum { Src1, Src2, Dst }; // the blocks, in the order in which they are made

struct Operation {
    char const *function;
    int width, height;
    int src1Bytes, src2Bytes, dstBytes; // of a sample
    int written;
    std::vector<Arg> args;
    bool halfSamples;
};

// Pictures are as high as the block, and sources a row higher where half a sample further down is read.
std::vector<int> sizesOf(Operation const &o) {
    const int samples = pictureWidth * o.height, more = o.halfSamples ? pictureWidth : 0;
    return {(samples + more) * o.src1Bytes, (samples + more) * o.src2Bytes, samples * o.dstBytes};
}

const Arg samples = value(pictureWidth), words = value(2 * pictureWidth); // steps

std::vector<Arg> subtraction(bool sum = false) {
    std::vector<Arg> args = {block(Src1), samples, block(Src2), samples, block(Dst), words};
    if (sum) args.push_back(own());
    return args;
}

Operation difference(char const *function, int size, bool sum) {
    return {function, size, size, 1, 1, 2, Dst, subtraction(sum), false};
}
Operation copy(char const *function, int size) {
    return {function, size, size, 1, 1, 1, Dst, {block(Src1), samples, block(Dst), samples}, false};
}
Operation mean(char const *function, int size) {
    return {function, size, size, 1, 1, 1, Src2, {block(Src1), samples, block(Src2), samples}, false};
}
Operation atHalfSamples(char const *function, int width, int height) {
    return {function, width, height, 1, 1, 1, Dst, {block(Src1), samples, block(Dst), samples}, true};
}

const std::vector<Operation> operations = {
    difference("keliSub8x8_8u16s_C1R", 8, false),
    difference("keliSub16x16_8u16s_C1R", 16, false),
    difference("keliSubSAD8x8_8u16s_C1R", 8, true),
    copy("keliCopy8x8_8u_C1R", 8),
    copy("keliCopy16x16_8u_C1R", 16),
    mean("keliAverage8x8_8u_C1IR", 8),
    mean("keliAverage16x16_8u_C1IR", 16),
    {"keliAdd8x8_16s8u_C1IRS", 8, 8, 2, 1, 1, Src2, {block(Src1), words, block(Src2), samples}, false},
    atHalfSamples("keliCopy8x4HP_8u_C1R", 8, 4),
    atHalfSamples("keliCopy8x8HP_8u_C1R", 8, 8),
    atHalfSamples("keliCopy16x8HP_8u_C1R", 16, 8),
    atHalfSamples("keliCopy16x16HP_8u_C1R", 16, 16),
    {"keliAdd8x8HP_16s8u_C1RS",
     8,
     8,
     2,
     1,
     1,
     Dst,
     {block(Src1), words, block(Src2), samples, block(Dst), samples},
     true},
    atHalfSamples("keliInterpolateAverage8x4_8u_C1IR", 8, 4),
    atHalfSamples("keliInterpolateAverage8x8_8u_C1IR", 8, 8),
    atHalfSamples("keliInterpolateAverage16x8_8u_C1IR", 16, 8),
    atHalfSamples("keliInterpolateAverage16x16_8u_C1IR", 16, 16),
    {"keliAddC8x8_16s8u_C1IR", 8, 8, 2, 1, 1, Dst, {value(7), block(Dst), samples}, false},
};

const Cells accs = {"0", "1", "2", "3"}, roundings = {"-", "round"};

// The block's size stands in front of the parameters.
Expected expectedOf(Operation const &o) {
    const Cells size = {std::to_string(o.width) + "x" + std::to_string(o.height)};
    Expected expected("Timvc_AddBlk", o.function, "e", o.width * o.height);
    expected.rows({size}).blocks(sizesOf(o)).writes({o.written});
    if (o.halfSamples)
        expected.parm("acc", accs).parm("rounding", roundings).rows(suite::product({size, accs, roundings}));
    return expected;
}

std::vector<Expected> allExpected() {
    std::vector<Expected> expected;
    for (Operation const &o : operations) expected.push_back(expectedOf(o));
    return expected;
}

Operation const &find(std::string const &function) {
    for (Operation const &o : operations) {
        if (o.function == function) return o;
    }
    return operations[0];
}

class AddBlk : public suite::SuiteTest {
protected:
    std::vector<suite::Block> blocksOf(char const *function) {
        suite::Sets sets(suite::findTest(function));
        EXPECT_TRUE(sets.next());
        return suite::Sets::blocks();
    }
    size_t rowsOf(char const *function) { return run(function).rows.size(); }
};

} // namespace

SUITE_TEST(AddBlk, "addblk.cpp", allExpected());

// ---- the spies ----------------------------------------------------------------------

// clang-format off

#define SPY_SUB(name) \
    KelStatus name(const Kel8u *a, int as, const Kel8u *b, int bs, Kel16s *d, int ds) { return SPY(name, a, as, b, bs, d, ds); }
#define SPY_COPY(name, T) \
    KelStatus name(const T *s, int ss, Kel8u *d, int ds) { return SPY(name, s, ss, d, ds); }
#define SPY_HALF(name) \
    KelStatus name(const Kel8u *s, int ss, Kel8u *d, int ds, int acc, int r) { return SPY(name, s, ss, d, ds, acc, r); }

SPY_SUB(keliSub8x8_8u16s_C1R)
SPY_SUB(keliSub16x16_8u16s_C1R)
SPY_COPY(keliCopy8x8_8u_C1R, Kel8u)
SPY_COPY(keliCopy16x16_8u_C1R, Kel8u)
SPY_COPY(keliAverage8x8_8u_C1IR, Kel8u)
SPY_COPY(keliAverage16x16_8u_C1IR, Kel8u)
SPY_COPY(keliAdd8x8_16s8u_C1IRS, Kel16s)
SPY_HALF(keliCopy8x4HP_8u_C1R)
SPY_HALF(keliCopy8x8HP_8u_C1R)
SPY_HALF(keliCopy16x8HP_8u_C1R)
SPY_HALF(keliCopy16x16HP_8u_C1R)
SPY_HALF(keliInterpolateAverage8x4_8u_C1IR)
SPY_HALF(keliInterpolateAverage8x8_8u_C1IR)
SPY_HALF(keliInterpolateAverage16x8_8u_C1IR)
SPY_HALF(keliInterpolateAverage16x16_8u_C1IR)

KelStatus keliSubSAD8x8_8u16s_C1R(const Kel8u *a, int as, const Kel8u *b, int bs, Kel16s *d, int ds, Kel32s *sad) {
    return SPY(keliSubSAD8x8_8u16s_C1R, a, as, b, bs, d, ds, sad);
}
KelStatus keliAdd8x8HP_16s8u_C1RS(const Kel16s *a, int as, const Kel8u *b, int bs, Kel8u *d, int ds, int acc, int r) {
    return SPY(keliAdd8x8HP_16s8u_C1RS, a, as, b, bs, d, ds, acc, r);
}
KelStatus keliAddC8x8_16s8u_C1IR(Kel16s value, Kel8u *d, int ds) {
    return SPY(keliAddC8x8_16s8u_C1IR, value, d, ds);
}

// clang-format on

// ---- the calls ------------------------------------------------------------------------

TEST_F(AddBlk, CallsTakeTheirOperandsFromTheirPictures) {
    for (Operation const &o : operations) {
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, o.function);
        EXPECT_EQ(calls.size(), o.halfSamples ? 8u : 1u) << o.function;
        for (SeenCall &call : calls) {
            if (o.halfSamples) call.args.resize(call.args.size() - 2);
            expectArgs(call, o.args, sizesOf(o));
        }
        EXPECT_FALSE(outcome.rows.empty()) << o.function;
    }
}

TEST_F(AddBlk, CallsGetThePositionAndRoundingOfTheirSet) {
    for (Operation const &o : operations) {
        if (!o.halfSamples) continue;
        suite::Outcome outcome;
        std::vector<SeenCall> calls = callsOf(outcome, o.function);
        ASSERT_EQ(calls.size(), 8u) << o.function;
        for (int i = 0; i < 8; ++i) {
            std::vector<SeenArgument> const &args = calls[i].args;
            EXPECT_EQ(args[args.size() - 2].value, i / 2) << o.function;
            EXPECT_EQ(args[args.size() - 1].value, i % 2) << o.function;
        }
    }
}

TEST_F(AddBlk, HalfSampleFunctionsHaveEightLinesAndTheOthersOne) {
    EXPECT_EQ(rowsOf("keliCopy8x8HP_8u_C1R"), 8u);
    EXPECT_EQ(rowsOf("keliAdd8x8HP_16s8u_C1RS"), 8u);
    EXPECT_EQ(rowsOf("keliInterpolateAverage16x8_8u_C1IR"), 8u);
    EXPECT_EQ(rowsOf("keliCopy8x8_8u_C1R"), 1u);
}

TEST_F(AddBlk, TheBlockOfTheNameDecidesTheDivisor) {
    for (char const *function : {"keliCopy16x8HP_8u_C1R", "keliInterpolateAverage16x8_8u_C1IR"}) {
        run(function);
        EXPECT_EQ(suite::findTest(function)->getDivisor(), 128.0);
    }
    run("keliCopy8x4HP_8u_C1R");
    EXPECT_EQ(suite::findTest("keliCopy8x4HP_8u_C1R")->getDivisor(), 32.0);
}

// ---- the data ---------------------------------------------------------------------------

TEST_F(AddBlk, SecondOperandOfADifferenceIsOfTheFirstOnesType) {
    std::vector<suite::Block> blocks = blocksOf("keliSub8x8_8u16s_C1R");
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[Src2].size, 8 * pictureWidth);
    EXPECT_EQ(blocks[Dst].size, 8 * pictureWidth * 2);
}

TEST_F(AddBlk, SecondOperandElsewhereIsOfTheResultsType) {
    std::vector<suite::Block> blocks = blocksOf("keliAverage8x8_8u_C1IR");
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[Src2].size, 8 * pictureWidth);
    blocks = blocksOf("keliAdd8x8_16s8u_C1IRS");
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[Src1].size, 8 * pictureWidth * 2);
    EXPECT_EQ(blocks[Src2].size, 8 * pictureWidth);
}

TEST_F(AddBlk, PicturesHoldTheDefaultConstant) {
    for (char const *function : {"keliAdd8x8HP_16s8u_C1RS", "keliSub16x16_8u16s_C1R"}) {
        Operation const &o = find(function);
        const int bytes[] = {o.src1Bytes, o.src2Bytes, o.dstBytes};
        suite::Sets sets(suite::findTest(function));
        ASSERT_TRUE(sets.next());
        std::vector<suite::Block> blocks = suite::Sets::blocks();
        ASSERT_EQ(blocks.size(), 3u);
        for (int b = 0; b < 3; ++b) {
            for (int i = 0; i < blocks[b].size; ++i) ASSERT_EQ(blocks[b].data[i], i % bytes[b] ? 0 : 2);
        }
    }
}

TEST_F(AddBlk, WithoutMemoryThereIsNoSet) {
    NoSecondBlock full;
    suite::Outcome outcome = run("keliCopy8x8_8u_C1R");
    EXPECT_TRUE(rkIsError(outcome.result));
    EXPECT_TRUE(outcome.rows.empty());
    EXPECT_TRUE(suite::Sets::blocks().empty());
}

// differences_test.cpp - differences from predictions and their squares, against a model in exact fractions.

#include "kelvc.h"
#include "predictionmodel.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

// All functions in one form. References that a function has not are null in its calls.
struct Reference {
    const Kel8u *p;
    int step, mcType;
};
struct Output {
    Kel16s *p;
    int step;
};
using Call = std::function<KelStatus(const Kel8u *cur, int curStep, Reference f, Reference b, Output first,
                                     Output second, int roundControl)>;

enum Second { None, Prediction, VPlane };

struct Function {
    const char *name;
    Call call;
    int width, height; // of the current block
    bool two;          // references
    Second second;     // what the second output is
    int channels() const { return second == VPlane ? 2 : 1; }
};

template <class F>
Call one(F f) {
    return [f](auto cur, int curStep, Reference r, Reference, Output first, Output second, int rc) {
        return f(cur, curStep, r.p, r.step, first.p, first.step, second.p, second.step, r.mcType, rc);
    };
}
template <class F>
Call two(F f) {
    return [f](auto cur, int curStep, Reference r, Reference b, Output first, Output, int rc) {
        return f(cur, curStep, r.p, r.step, r.mcType, b.p, b.step, b.mcType, first.p, first.step, rc);
    };
}
template <class F>
Call twoPlanes(F f) {
    return [f](auto cur, int curStep, Reference r, Reference b, Output first, Output second, int rc) {
        return f(cur, curStep, r.p, r.step, r.mcType, b.p, b.step, b.mcType, first.p, first.step, second.p,
                 second.step, rc);
    };
}

const Function functions[] = {
    {"keliGetDiff16x16_8u16s_C1", one(keliGetDiff16x16_8u16s_C1), 16, 16, false, Prediction},
    {"keliGetDiff16x8_8u16s_C1", one(keliGetDiff16x8_8u16s_C1), 16, 8, false, Prediction},
    {"keliGetDiff8x16_8u16s_C1", one(keliGetDiff8x16_8u16s_C1), 8, 16, false, Prediction},
    {"keliGetDiff8x8_8u16s_C1", one(keliGetDiff8x8_8u16s_C1), 8, 8, false, Prediction},
    {"keliGetDiff8x4_8u16s_C1", one(keliGetDiff8x4_8u16s_C1), 8, 4, false, Prediction},
    {"keliGetDiff4x4_8u16s_C1", one(keliGetDiff4x4_8u16s_C1), 4, 4, false, Prediction},
    {"keliGetDiff8x8_8u16s_C2P2", one(keliGetDiff8x8_8u16s_C2P2), 16, 8, false, VPlane},
    {"keliGetDiff8x4_8u16s_C2P2", one(keliGetDiff8x4_8u16s_C2P2), 16, 4, false, VPlane},
    {"keliGetDiff16x16B_8u16s_C1", two(keliGetDiff16x16B_8u16s_C1), 16, 16, true, None},
    {"keliGetDiff16x8B_8u16s_C1", two(keliGetDiff16x8B_8u16s_C1), 16, 8, true, None},
    {"keliGetDiff8x16B_8u16s_C1", two(keliGetDiff8x16B_8u16s_C1), 8, 16, true, None},
    {"keliGetDiff8x8B_8u16s_C1", two(keliGetDiff8x8B_8u16s_C1), 8, 8, true, None},
    {"keliGetDiff8x4B_8u16s_C1", two(keliGetDiff8x4B_8u16s_C1), 8, 4, true, None},
    {"keliGetDiff8x8B_8u16s_C2P2", twoPlanes(keliGetDiff8x8B_8u16s_C2P2), 16, 8, true, VPlane},
    {"keliGetDiff8x4B_8u16s_C2P2", twoPlanes(keliGetDiff8x4B_8u16s_C2P2), 16, 4, true, VPlane},
};

// Bytes beyond the width: of the current block, of the references, of the outputs.
struct Steps {
    int cur, forward, backward, first, second;
};
const Steps allSteps[] = {{0, 0, 0, 0, 0}, {1, 2, 5, 3, 4}, {144, 16, 64, 128, 48}};

struct Data {
    const char *name;
    Pattern cur, forward, backward;
};

std::vector<Data> dataSets() {
    return {{"noise", noise(1, 255), noise(2, 255), noise(3, 255)},
            {"lowest against highest", constant(0), constant(255), constant(255)},
            {"highest against lowest", constant(255), constant(0), constant(0)},
            {"checkerboards", noise(4, 255), checkerboard(255), checkerboard(1)}};
}

// The blocks of a comparison, every one of its exact size.
struct Blocks {
    Blocks(const Function &f, const Data &data, int mcTypeF, int mcTypeB, const Steps &steps, int slack)
        : cur(f.height, f.width, f.width + steps.cur, slack),
          forward(f.width, f.height, f.channels(), mcTypeF, f.width + steps.forward, slack + 1, data.forward),
          backward(f.width, f.height, f.channels(), mcTypeB, f.width + steps.backward, slack, data.backward),
          first(f.height, f.width / f.channels(), 2 * f.width / f.channels() + steps.first, slack),
          second(f.height, f.width / f.channels(), 2 * f.width / f.channels() + steps.second, slack + 1) {
        cur.fill(data.cur);
    }

    static Reference reference(const RefBlock &block) {
        return {block.samples.data(), block.samples.step(), block.mcType};
    }
    KelStatus run(const Function &f, int roundControl) {
        return f.call(cur.data(), cur.step(), reference(forward), reference(backward),
                      {first.data(), first.step()}, {second.data(), second.step()}, roundControl);
    }
    int pred(const Function &f, int row, int col, int roundControl) const {
        return f.two ? predicted(forward, backward, row, col, roundControl)
                     : forward.predicted(row, col, roundControl);
    }

    Source<Kel8u> cur;
    RefBlock forward, backward;
    DstBlock<Kel16s> first, second;
};

void compare(const Function &f, Blocks &blocks, int roundControl) {
    ASSERT_EQ(kelStsNoErr, blocks.run(f, roundControl));
    EXPECT_TRUE(blocks.first.surroundingsIntact());
    EXPECT_TRUE(f.second == None ? blocks.second.untouched() : blocks.second.surroundingsIntact());
    for (int row = 0; row < f.height; ++row) {
        for (int col = 0; col < f.width; ++col) {
            const int pred = blocks.pred(f, row, col, roundControl);
            const int difference = blocks.cur(row, col) - pred;
            DstBlock<Kel16s> &plane = f.second == VPlane && col % 2 ? blocks.second : blocks.first;
            ASSERT_EQ(difference, plane(row, col / f.channels())) << "row " << row << ", column " << col;
            if (f.second == Prediction) {
                ASSERT_EQ(pred, blocks.second(row, col)) << "row " << row << ", column " << col;
            }
        }
    }
}

// ---- sums of squares ----------------------------------------------------------------

using SumCall =
    std::function<KelStatus(const Kel8u *cur, int curStep, Reference f, Reference b, Kel32s *sum)>;

struct SumFunction {
    const char *name;
    SumCall call;
    int width, height;
    bool two;
};

template <class F>
SumCall ssd(F f) {
    return [f](auto cur, int curStep, Reference r, Reference, Kel32s *sum) {
        return f(cur, curStep, r.p, r.step, sum, r.mcType);
    };
}

const SumFunction sumFunctions[] = {
    {"keliSqrDiff16x16_8u32s",
     [](auto cur, int curStep, Reference r, Reference, Kel32s *sum) {
         return keliSqrDiff16x16_8u32s(cur, curStep, r.p, r.step, r.mcType, sum);
     },
     16, 16, false},
    {"keliSqrDiff16x16B_8u32s",
     [](auto cur, int curStep, Reference r, Reference b, Kel32s *sum) {
         return keliSqrDiff16x16B_8u32s(cur, curStep, r.p, r.step, r.mcType, b.p, b.step, b.mcType, sum);
     },
     16, 16, true},
    {"keliSSD8x8_8u32s_C1R", ssd(keliSSD8x8_8u32s_C1R), 8, 8, false},
    {"keliSSD4x4_8u32s_C1R", ssd(keliSSD4x4_8u32s_C1R), 4, 4, false},
};

void compareSum(const SumFunction &f, const Data &data, int mcTypeF, int mcTypeB, const Steps &steps,
                int slack) {
    const int w = f.width, h = f.height;
    Source<Kel8u> cur(h, w, w + steps.cur, slack);
    cur.fill(data.cur);
    RefBlock forward(w, h, 1, mcTypeF, w + steps.forward, slack + 1, data.forward);
    RefBlock backward(w, h, 1, mcTypeB, w + steps.backward, slack, data.backward);
    Destination<Kel32s> sum(1, slack);
    ASSERT_EQ(kelStsNoErr, f.call(cur.data(), cur.step(), Blocks::reference(forward),
                                  Blocks::reference(backward), sum.data()));
    EXPECT_TRUE(sum.surroundingsIntact());
    long long expected = 0;
    for (int i = 0; i < w * h; ++i) {
        const int row = i / w, col = i % w;
        const int pred = f.two ? predicted(forward, backward, row, col, 0) : forward.predicted(row, col, 0);
        expected += static_cast<long long>(cur(row, col) - pred) * (cur(row, col) - pred);
    }
    EXPECT_EQ(expected, sum[0]);
}

} // namespace

TEST(KelvaraDifferences, EveryFunctionEqualsTheModelAtEveryPositionWithBothRoundings) {
    for (const Function &f : functions) {
        for (const Data &data : dataSets()) {
            for (int pair = 0; pair < (f.two ? 16 : 4); ++pair) {
                for (int i = 0; i < 6; ++i) {
                    const int mcTypeF = mcTypes[pair % 4], mcTypeB = mcTypes[pair / 4];
                    SCOPED_TRACE(testing::Message()
                                 << f.name << ", " << data.name << ", " << mcTypeF << " and " << mcTypeB
                                 << ", rounding " << i % 2 << ", steps " << i / 2);
                    Blocks blocks(f, data, mcTypeF, mcTypeB, allSteps[i / 2], i);
                    compare(f, blocks, i % 2);
                }
            }
        }
    }
}

TEST(KelvaraDifferences, SumsOfSquaresEqualTheModelAtEveryPosition) {
    for (const SumFunction &f : sumFunctions) {
        for (const Data &data : dataSets()) {
            for (int pair = 0; pair < (f.two ? 16 : 4); ++pair) {
                for (int i = 0; i < 3; ++i) {
                    const int mcTypeF = mcTypes[pair % 4], mcTypeB = mcTypes[pair / 4];
                    SCOPED_TRACE(testing::Message() << f.name << ", " << data.name << ", " << mcTypeF
                                                    << " and " << mcTypeB << ", steps " << i);
                    compareSum(f, data, mcTypeF, mcTypeB, allSteps[i], i);
                }
            }
        }
    }
}

// U of the current block is 100 above the prediction, V 50 below it.
TEST(KelvaraDifferences, TheFirstPlaneIsThatOfTheFirstColour) {
    Source<Kel8u> cur(8, 16, 16), ref(8, 16, 16);
    cur.fill([](int, int col) { return col % 2 ? 50 : 200; });
    ref.fill(constant(100));
    DstBlock<Kel16s> u(8, 8, 16), v(8, 8, 16);
    ASSERT_EQ(kelStsNoErr,
              keliGetDiff8x8_8u16s_C2P2(cur.data(), 16, ref.data(), 16, u.data(), 16, v.data(), 16, 0, 0));
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(100, u(i / 8, i % 8));
        EXPECT_EQ(-50, v(i / 8, i % 8));
    }
}

// The prediction is the mean of 0 and 1 in all positions but the full one.
TEST(KelvaraDifferences, HalvesAreRoundedUpInSumsOfSquares) {
    Source<Kel8u> cur(4, 4, 4), ref(5, 5, 5);
    cur.fill(constant(0));
    ref.fill(checkerboard(1));
    for (int mcType : {4, 8, 12}) {
        Destination<Kel32s> sum(1);
        ASSERT_EQ(kelStsNoErr, keliSSD4x4_8u32s_C1R(cur.data(), 4, ref.data(), 5, sum.data(), mcType));
        EXPECT_EQ(16, sum[0]) << mcType;
    }
}

TEST(KelvaraDifferences, BadArgumentsAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(17, 18, 64);
    const Kel8u *s = src.data();
    for (const Function &f : functions) {
        SCOPED_TRACE(f.name);
        DstBlock<Kel16s> d1(16, 16, 64), d2(16, 16, 64);
        const Reference ref = {s, 64, 0};
        const Output first = {d1.data(), 64}, second = {d2.data(), 64};
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 64, ref, ref, first, second, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 64, {nullptr, 64, 0}, ref, first, second, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 64, ref, ref, {nullptr, 64}, second, 0));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 0, {s, 0, 1}, ref, {nullptr, 0}, second, 2)) << "judged first";
        const int w = f.width, dw = 2 * w / f.channels();
        for (int less : {1, w, w + 64}) {
            EXPECT_EQ(kelStsStepErr, f.call(s, w - less, ref, ref, first, second, 0));
            EXPECT_EQ(kelStsStepErr, f.call(s, 64, {s, w - less, 0}, ref, first, second, 0));
            EXPECT_EQ(kelStsStepErr, f.call(s, 64, {s, 64, 1}, ref, {d1.data(), dw - less}, second, 2));
        }
        if (f.two) {
            EXPECT_EQ(kelStsNullPtrErr, f.call(s, 64, ref, {nullptr, 64, 0}, first, second, 0));
            EXPECT_EQ(kelStsStepErr, f.call(s, 64, ref, {s, w - 1, 0}, first, second, 0));
        }
        if (f.second != None) {
            EXPECT_EQ(kelStsNullPtrErr, f.call(s, 64, ref, ref, first, {nullptr, 64}, 0));
            EXPECT_EQ(kelStsStepErr, f.call(s, 64, ref, ref, first, {d2.data(), dw - 1}, 0));
        }
        for (int mcType : notMcTypes) {
            EXPECT_EQ(kelStsRangeErr, f.call(s, 64, {s, 64, mcType}, ref, first, second, 0)) << mcType;
            if (!f.two) continue;
            EXPECT_EQ(kelStsRangeErr, f.call(s, 64, ref, {s, 64, mcType}, first, second, 0)) << mcType;
        }
        for (int control : notRoundControls)
            EXPECT_EQ(kelStsRangeErr, f.call(s, 64, ref, ref, first, second, control)) << control;
        EXPECT_TRUE(d1.untouched());
        EXPECT_TRUE(d2.untouched());
    }
}

TEST(KelvaraDifferences, BadArgumentsOfSumsOfSquaresAreRefusedAndNothingIsWritten) {
    Source<Kel8u> src(17, 17, 64);
    const Kel8u *s = src.data();
    for (const SumFunction &f : sumFunctions) {
        SCOPED_TRACE(f.name);
        Destination<Kel32s> sum(1);
        const Reference ref = {s, 64, 0};
        EXPECT_EQ(kelStsNullPtrErr, f.call(nullptr, 64, ref, ref, sum.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 64, {nullptr, 64, 0}, ref, sum.data()));
        EXPECT_EQ(kelStsNullPtrErr, f.call(s, 0, {s, 0, 1}, ref, nullptr)) << "judged first";
        for (int less : {1, f.width, f.width + 64}) {
            EXPECT_EQ(kelStsStepErr, f.call(s, f.width - less, ref, ref, sum.data()));
            EXPECT_EQ(kelStsStepErr, f.call(s, 64, {s, f.width - less, 1}, ref, sum.data()));
        }
        if (f.two) {
            EXPECT_EQ(kelStsNullPtrErr, f.call(s, 64, ref, {nullptr, 64, 0}, sum.data()));
            EXPECT_EQ(kelStsStepErr, f.call(s, 64, ref, {s, f.width - 1, 0}, sum.data()));
        }
        for (int mcType : notMcTypes) {
            EXPECT_EQ(kelStsRangeErr, f.call(s, 64, {s, 64, mcType}, ref, sum.data())) << mcType;
            if (!f.two) continue;
            EXPECT_EQ(kelStsRangeErr, f.call(s, 64, ref, {s, 64, mcType}, sum.data())) << mcType;
        }
        EXPECT_TRUE(sum.untouched());
    }
}

// seenbits.h - calls that read or write a bit stream: where it stood, and with which arguments.

#ifndef RAKOVA_TESTS_SEENBITS_H
#define RAKOVA_TESTS_SEENBITS_H

#include <stdlib.h>

#include <set>
#include <string>
#include <vector>

#include "seenargs.h"
#include "spy.h"
#include "suitetest.h"

// ---- what the spies keep ----------------------------------------------------------------

// Bytes from the position to the end of the stream, and the bit.
struct SeenPosition {
    int block, room, offset;
};
inline bool operator==(SeenPosition const &a, SeenPosition const &b) {
    return a.block == b.block && a.room == b.room && a.offset == b.offset;
}

inline std::vector<SeenPosition> g_positions; // of the calls in g_seen
inline std::string g_answered;                // this function is not called but answers g_answer
inline KelStatus g_answer;

inline void keepPosition(Kel8u *const *ppStream, int const *pOffset) {
    SeenPosition position = {-1, 0, *pOffset};
    position.room = roomAt(*ppStream, &position.block);
    g_positions.push_back(position);
}

// The body of a spy whose stream is pp and o.
#define SPY_BITS(name, ...) (keepPosition(pp, o), g_answered == #name ? g_answer : SPY(name, __VA_ARGS__))

// ---- calls and positions ------------------------------------------------------------------

// One call of the function that counts: its arguments and where its stream stood.
struct CountedCall {
    SeenCall call;
    SeenPosition position;
};

class BitStreamSuite : public suite::SuiteTest {
protected:
    // The function's calls in a run: of each set the warm-up, which must be alike, and one that counts.
    std::vector<CountedCall> calls(std::string const &function) {
        g_seen.clear();
        g_positions.clear();
        suite::Outcome outcome = run(function);
        EXPECT_EQ(outcome.result, rkResSuccess) << outcome.log;
        EXPECT_EQ(g_seen.size(), g_positions.size());
        std::vector<CountedCall> all, counted;
        for (size_t i = 0; i < g_seen.size(); ++i) {
            if (g_seen[i].function == function) all.push_back({g_seen[i], g_positions[i]});
        }
        for (size_t i = 1; i < all.size(); i += 2) {
            EXPECT_EQ(all[i].position, all[i - 1].position) << "the position is armed again";
            counted.push_back(all[i]);
        }
        return counted;
    }

    // One call a set, in the order of the sets, each with these arguments and at this position.
    struct ExpectedCall {
        std::vector<Arg> args;
        SeenPosition position;
    };
    void expectCalls(std::string const &function, std::vector<ExpectedCall> const &expected,
                     std::vector<int> const &blocks) {
        std::vector<CountedCall> seen = calls(function);
        ASSERT_EQ(seen.size(), expected.size()) << function;
        for (size_t i = 0; i < seen.size(); ++i) {
            SCOPED_TRACE("set " + std::to_string(i));
            expectArgs(seen[i].call, expected[i].args, blocks);
            EXPECT_EQ(seen[i].position, expected[i].position) << function;
        }
    }

    void TearDown() override { g_answered.clear(); }
};

// ---- coefficients -------------------------------------------------------------------------

// Elements 0 to count - 1 of the set in hand lie between -127 and 127 and are not 0; the others are.
inline void expectCoefficients(Kel16s const *coeffs, int count) {
    std::set<int> values;
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(coeffs[i] != 0, i < count) << i;
        EXPECT_LE(abs(coeffs[i]), 127);
        if (i < count) values.insert(coeffs[i]);
    }
    EXPECT_GT(static_cast<int>(values.size()), count / 3);
}

#endif
